#include "source/filename.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "records/console.h"
#include "records/records.h"
#include "records/singletons.h"

namespace {

// The 2-byte space of the console, U+3000, in UTF-8.
constexpr std::string_view kZenkakuSpace = "\xE3\x80\x80";

bool IsTrimByte(char c) { return c == ' ' || c == '\t' || c == '@'; }

}  // namespace

std::string TrimFilenameStr(std::string_view name) {
  size_t first = 0, last = name.size();
  for (;;) {
    if (first < last && IsTrimByte(name[first])) {
      ++first;
    } else if (last - first >= kZenkakuSpace.size() && name.substr(first, kZenkakuSpace.size()) == kZenkakuSpace) {
      first += kZenkakuSpace.size();
    } else {
      break;
    }
  }
  for (;;) {
    if (last > first && IsTrimByte(name[last - 1])) {
      --last;
    } else if (last - first >= kZenkakuSpace.size() &&
               name.substr(last - kZenkakuSpace.size(), kZenkakuSpace.size()) == kZenkakuSpace) {
      last -= kZenkakuSpace.size();
    } else {
      break;
    }
  }
  return std::string(name.substr(first, last - first));
}

std::string SlashFilenameStr(std::string_view name) {
  std::string s(name);
  for (char& c : s) {
    if (c == '\\') c = '/';
  }
  return s;
}

std::string NormFilenameStr(std::string_view name) {
  if (name.empty()) return std::string();
  std::string s = SlashFilenameStr(TrimFilenameStr(name));
  if (s.find_first_of(" @") != std::string::npos || s.find(kZenkakuSpace) != std::string::npos) {
    s = "\"" + s + "\"";
  }
  // Backslashes are path separators here and were turned into '/': the
  // doubling of single backslashes has nothing left to do.
  return s;
}

bool FileExistsStr(std::string_view name) {
  std::string s = NormFilenameStr(TrimFilenameStr(name));
  if (s.empty()) return false;
  int fd = ::open(s.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return false;
  struct stat st {};
  bool ok = ::fstat(fd, &st) == 0 && !S_ISDIR(st.st_mode);
  ::close(fd);
  return ok;
}

std::string GetFilenameWithExtStr() {
  static const char* const kExt[] = {"", ".txt", ".asl", ".asm", ".cas", ".casl", ".END"};
  std::string name = TrimFilenameStr(con::ReadLineSkipWs(246, true));
  for (const char* ext : kExt) {
    if (std::string_view(ext) == ".END") break;
    // The extensions pile up on the name, one behind the other.
    name += ext;
    std::string candidate = NormFilenameStr(name);
    if (FileExistsStr(candidate)) {
      if (!candidate.empty()) fileData->LastSrcFileCh = candidate;
      fileData->LastSrcFile = candidate;
      fileData->LastSrcFileW = Utf8ToU16(candidate);
      return candidate;
    }
  }
  if (fileData->IsJ()) {
    con::out << u"ファイルが見つかりませんでした。" << con::endl;
  } else {
    con::out << "The file is not found there. *";
  }
  return std::string();
}

std::string GetFilenameStrA_TPO() {
  con::Rewind();
  std::string s = NormFilenameStr(con::ReadLine(989, true));
  if (s.empty()) {
    con::out << "No Input Error!" << con::endl;
    return std::string();
  }
  return TrimFilenameStr(s);
}
