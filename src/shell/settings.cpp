// The settings file drillasm.ini: three sections, Mode, Src and Editor.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <boost/optional.hpp>
#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/singletons.h"
#include "reports/TimeVcl/time_vcl.h"
#include "shell/shell.h"
#include "source/filename.h"

namespace pt = boost::property_tree;

namespace {

// Writes `text` to a temporary file beside `path` and renames it over the
// target, so that an interrupted write never leaves half a file.
bool WriteFileAtomic(const std::string& path, const std::string& text) {
  std::string tmpl = path + ".tmpXXXXXX";
  int fd = ::mkstemp(tmpl.data());
  if (fd < 0) return false;
  size_t done = 0;
  while (done < text.size()) {
    ssize_t w = ::write(fd, text.data() + done, text.size() - done);
    if (w < 0) {
      if (errno == EINTR) continue;
      ::close(fd);
      ::unlink(tmpl.c_str());
      return false;
    }
    done += static_cast<size_t>(w);
  }
  mode_t mask = ::umask(0);
  ::umask(mask);
  ::fchmod(fd, 0666 & ~mask);
  if (::close(fd) != 0 || std::rename(tmpl.c_str(), path.c_str()) != 0) {
    ::unlink(tmpl.c_str());
    return false;
  }
  return true;
}

void WriteTree(const std::string& path, const pt::ptree& tree) {
  std::ostringstream os;
  pt::write_ini(os, tree);
  if (!WriteFileAtomic(path, os.str())) {
    con::out << "The settings file " << path << " cannot be written." << con::endl;
  }
}

}  // namespace

void WriteDefaultSettings(const std::string& path) {
  pt::ptree t;
  t.put("Mode.LangStr", "ENU");
  t.put("Mode.LangInt", 1);
  t.put("Mode.FightFunc", "WP");
  t.put("Mode.TimeFuncStr", "QPC");
  t.put("Mode.TimeFuncInt", 0);
  t.put("Mode.SimpleTitleIndex", 0);
  t.put("Mode.BusyModeIndex", 1);
  t.put("Mode.SilentModeIndex", 0);
  t.put("Src.LastSrcFile", "src\\pn1000.txt");
  t.put("Editor.TextEditorIndex", 0);
  t.put("Editor.TextEditorPath1", "");
  t.put("Editor.TextEditorPath2", "");
  WriteTree(path, t);
}

void ReadSettings(const std::string& path) {
  std::string name = NormFilenameStr(TrimFilenameStr(path));
  int fd = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) {
    WriteDefaultSettings(path);
  } else {
    ::close(fd);
  }

  pt::ptree t;
  try {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw pt::ini_parser_error("cannot open file", path, 0);
    std::stringstream text;
    text << in.rdbuf();
    // A byte order mark that some editors put in front is no part of the
    // first line.
    std::string bytes = text.str();
    if (bytes.rfind("\xEF\xBB\xBF", 0) == 0) bytes.erase(0, 3);
    std::istringstream clean(bytes);
    pt::read_ini(clean, t);
  } catch (const pt::ini_parser_error& e) {
    // The file stays as it is; every key takes its fallback for this run.
    con::out << "Settings file " << path << ", line " << static_cast<long>(e.line()) << ": " << e.message()
             << " -- the settings of this run are the fallbacks." << con::endl;
    t.clear();
  }

  // The language: LangInt first, then LangStr, which decides whenever both
  // stand in the file.
  boost::optional<int> langInt = t.get_optional<int>("Mode.LangInt");
  SetLang(langInt && *langInt == 0 ? 0 : 1);
  boost::optional<std::string> langStr = t.get_optional<std::string>("Mode.LangStr");
  SetLang(langStr && *langStr == "JPN" ? 0 : 1);

  fileData->ModeName = t.get<std::string>("Mode.FightFunc", "WP");

  if (boost::optional<std::string> tf = t.get_optional<std::string>("Mode.TimeFuncStr")) {
    timeVcl->SetTimeFuncByName(*tf);
  } else {
    timeVcl->SetTimeFuncByName("QPC");
    timeVcl->SetTimeFuncByInt(0);
  }
  // The number comes from the section Editor, where the writer never puts
  // it: a file as this program writes it always gives number 0 here.
  timeVcl->SetTimeFuncByInt(t.get_optional<int>("Editor.TimeFuncInt").value_or(0));

  int editorIndex = t.get_optional<int>("Editor.TextEditorIndex").value_or(0);
  b->SetTextEdIndex(editorIndex);
  fileData->TextEditorIndex = editorIndex;
  dirHolder->TextEditorIndex = editorIndex > 2 ? 0 : editorIndex;

  if (auto p1 = t.get_optional<std::string>("Editor.TextEditorPath1")) fileData->TextEditorPath[1] = *p1;
  if (auto p2 = t.get_optional<std::string>("Editor.TextEditorPath2")) fileData->TextEditorPath[2] = *p2;

  if (auto silent = t.get_optional<int>("Mode.SilentModeIndex")) {
    modeState->SilentModeIndex = *silent;
    fileData->SilentFlag = *silent != 0 ? 1 : 0;
  }
  if (auto busy = t.get_optional<int>("Mode.BusyModeIndex")) {
    b->BusyModeIndex = *busy > 1 ? 0 : *busy;
    modeState->BusyModeIndex = *busy;
  }
  if (auto simple = t.get_optional<int>("Mode.SimpleTitleIndex")) {
    b->SimpleTitleIndex = *simple > 1 ? 0 : *simple;
    modeState->SimpleTitleIndex = *simple;
  }

  std::string last = t.get<std::string>("Src.LastSrcFile", "src\\pn1000");
  fileData->LastSrcFile = last;
  fileData->LastSrcFileW = Utf8ToU16(last);
  if (!last.empty()) fileData->LastSrcFileCh = last;
  b->SetFileName(last);
  dirHolder->LastSrcFile = last;
}

// Text for the file: bytes that are no UTF-8 become U+FFFD.
std::string ValidUtf8(const std::string& s) { return U16ToUtf8(Utf8ToU16(s)); }

void WriteSettings(const std::string& path) {
  pt::ptree t;
  int lang = fileData->Lang;
  t.put("Mode.LangStr", lang == 0 ? "JPN" : "ENU");
  t.put("Mode.LangInt", lang);
  t.put("Mode.FightFunc", ValidUtf8(fileData->ModeName));
  t.put("Mode.TimeFuncStr", ValidUtf8(timeVcl->TimeFuncStr));
  t.put("Mode.TimeFuncInt", timeVcl->TimeFuncInt);
  t.put("Src.LastSrcFile", fileData->LastSrcFile.empty() ? std::string("src\\list792j.txt") : ValidUtf8(fileData->LastSrcFile));
  if (b->SimpleTitleIndex < 0 || b->SimpleTitleIndex > 1) b->SimpleTitleIndex = 0;
  if (b->BusyModeIndex < 0 || b->BusyModeIndex > 1) b->BusyModeIndex = 0;
  t.put("Mode.SimpleTitleIndex", b->SimpleTitleIndex);
  t.put("Mode.BusyModeIndex", b->BusyModeIndex);
  // The silent flag is written as a truth value ("false"/"true"); the reader
  // takes integers only, so the value read back is left as it was.
  t.put("Mode.SilentModeIndex", fileData->SilentFlag != 0);
  t.put("Editor.TextEditorIndex", fileData->TextEditorIndex);
  t.put("Editor.TextEditorPath1", ValidUtf8(fileData->TextEditorPath[1]));
  t.put("Editor.TextEditorPath2", ValidUtf8(fileData->TextEditorPath[2]));
  WriteTree(path, t);
}
