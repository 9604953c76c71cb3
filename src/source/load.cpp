// Source loading: the main menu yields a file name, the encoding is
// detected, and one of two loaders reads the whole file into b->vecSrcW,
// one record per line, filling rawStr only.
#include <algorithm>
#include <string>
#include <vector>

#include "records/console.h"
#include "records/diag.h"
#include "records/mode.h"
#include "records/singletons.h"
#include "records/stages.h"
#include "reports/TimeVcl/time_vcl.h"
#include "shell/shell.h"
#include "source/file_bytes.h"
#include "source/source.h"

namespace {

// The file did not open: said in the language of the pass, logged as an
// Error record, counted nowhere.
void ReportOpenFailure(const std::string& fileName, const char* code) {
  TFileData& w = *fileData;
  wstr q = QuoteW(Utf8ToU16(fileName));
  con::out << con::endl;
  if (w.Lang != 1) {
    Say(w, kError, 0, {q + u" (binary mode)を開くことができません。 " + u"ミススペル あるいは ファイルが存在しない。 *"},
        code, q, Head::None);
  } else {
    Say(w, kError, 0,
        {u"The file " + q + u" does not open on binary mode. \n" + u"Misspellings?  \nOr the file does not exist there. *"},
        code, q, Head::None);
  }
  --w.ErrorKazu;
}

// A file of more lines than this is refused: each line record takes several
// hundred bytes, and a file of millions of empty lines would otherwise eat
// the memory of the machine.
constexpr size_t kMaxSourceLines = 4000000;

void Append(std::vector<SrcLineW>& v, wstr text) {
  v.emplace_back();
  v.back().rawStr = std::move(text);
}

// Too many lines: the load fails before any record is made, so the lines of
// the previous file stay as they were.
void ReportTooManyLines(const std::string& fileName) {
  wstr q = QuoteW(Utf8ToU16(fileName));
  con::out << con::endl;
  if (fileData->Lang != 1) {
    con::out << q << u"の行数が " << static_cast<long long>(kMaxSourceLines)
             << u" 行を超えています。このように大きいファイルは読み込みません。 *" << con::endl;
  } else {
    con::out << u"The file" << q << u"has more than " << static_cast<long long>(kMaxSourceLines)
             << u" lines. A file of so many lines is not read. *" << con::endl;
  }
}

wstr DecodeByCodePage(std::string_view line) {
  switch (moziCode->codePage) {
    case 65001:
    case 65005:
      return Utf8ToWStr(line);
    default:  // 932, and every other value, 0 included
      return AnsiToWStr(line);
  }
}

// The next line of `bytes` from `pos`, without its LF and without a CR
// directly before that LF. Moves `pos` behind the line end.
std::string_view NextLine(const std::string& bytes, size_t& pos) {
  size_t lf = bytes.find('\n', pos);
  std::string_view line;
  if (lf == std::string::npos) {
    line = std::string_view(bytes).substr(pos);
    pos = bytes.size();
  } else {
    line = std::string_view(bytes).substr(pos, lf - pos);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    pos = lf + 1;
  }
  return line;
}

}  // namespace

int OpenFileUTF8toVecW(const std::string& fileName) {
  std::string bytes;
  if (!ReadFileBytes(fileName, bytes)) {
    ReportOpenFailure(fileName, "88886875");
    return -3;
  }
  size_t lineKazu = static_cast<size_t>(std::count(bytes.begin(), bytes.end(), '\n')) + 1;
  if (lineKazu > kMaxSourceLines) {
    ReportTooManyLines(fileName);
    return -3;
  }
  std::vector<SrcLineW>& v = b->vecSrcW;
  v.clear();
  v.reserve(lineKazu);
  size_t pos = 0;
  // A byte order mark was met in this or an earlier file: the first line is
  // read alone and decoded as UTF-8; with code page 65001 its first 3 bytes
  // (the mark) are dropped.
  if (!moziCode->bomTag.empty() && !bytes.empty()) {
    std::string_view first = NextLine(bytes, pos);
    if (moziCode->codePage == 65001) first.remove_prefix(first.size() < 3 ? first.size() : 3);
    Append(v, Utf8ToWStr(first));
  }
  while (pos < bytes.size()) Append(v, DecodeByCodePage(NextLine(bytes, pos)));
  return 0;
}

int OpenFileUTF16toVecW(const std::string& fileName) {
  std::string bytes;
  if (!ReadFileBytes(fileName, bytes)) {
    ReportOpenFailure(fileName, "7CA76875");
    return -4;
  }
  const size_t n = bytes.size();
  const size_t units = (n + 1) / 2;
  std::vector<char16_t> buf(units + 9, 0);
  auto byteAt = [&](size_t k) -> int { return k < n ? static_cast<unsigned char>(bytes[k]) : -1; };
  // A missing second byte of an odd count is the end-of-file value -1.
  if (moziCode->codePage == 1200) {
    for (size_t k = 0; k < units; ++k) {
      int lo = byteAt(2 * k), hi = byteAt(2 * k + 1);
      buf[k] = static_cast<char16_t>((lo & 0xFF) | ((hi & 0xFF) << 8));
    }
  } else if (moziCode->codePage == 1201) {
    // The high byte is written first and the low byte then overwrites the
    // whole unit: text above 0xFF loses its high byte.
    for (size_t k = 0; k < units; ++k) {
      buf[k] = static_cast<char16_t>(byteAt(2 * k));
      buf[k] = static_cast<char16_t>(byteAt(2 * k + 1));
    }
  } else {
    con::out << "Prg. Else Error: " << con::endl;
  }
  buf[units] = 0xFFFF;  // the end mark
  // Unit 0, the byte order mark, is skipped unread.
  size_t i = units >= 1 ? 1 : 0;
  size_t lineKazu = 1;
  for (size_t k = i; buf[k] != 0xFFFF; ++k)
    if (buf[k] == u'\r' && buf[k + 1] == u'\n') ++lineKazu;
  if (lineKazu > kMaxSourceLines) {
    ReportTooManyLines(fileName);
    return -4;
  }
  std::vector<SrcLineW>& v = b->vecSrcW;
  v.clear();
  v.reserve(lineKazu);
  size_t lineStart = i;
  while (buf[i] != 0xFFFF) {
    if (buf[i] == u'\r' && buf[i + 1] == u'\n') {
      Append(v, wstr(buf.data() + lineStart, i - lineStart));
      i += 2;
      lineStart = i;
    } else {
      ++i;
    }
  }
  Append(v, wstr(buf.data() + lineStart, i - lineStart));
  return 0;
}

int ReadSourceW(const std::string& fileName) {
  DetTextCodeW(*fileData, fileName);
  int r;
  if (moziCode->codePage == 1200 || moziCode->codePage == 1201) {
    r = OpenFileUTF16toVecW(fileName);
  } else {
    r = OpenFileUTF8toVecW(fileName);
  }
  return r == 0 ? 0 : 1;
}

int OpenFileNarrowToVec(const std::string& fileName, int maxLineChars, int maxLines) {
  std::string bytes;
  if (!ReadFileBytes(fileName, bytes)) {
    ReportOpenFailure(fileName, "88886875");
    return -3;
  }
  // The first pass counts the lines and tells of the first line that is too
  // long; it is cut, and the load goes on.
  size_t lineKazu = 0;
  bool toldLong = false;
  for (size_t pos = 0; pos < bytes.size(); ++lineKazu) {
    std::string_view line = NextLine(bytes, pos);
    if (maxLineChars > 0 && !toldLong && line.size() > static_cast<size_t>(maxLineChars)) {
      toldLong = true;
      // No error: the line is cut, and the load goes on.
      const wstr n = WNum(static_cast<long long>(line.size())), limit = WNum(maxLineChars);
      Tell(*fileData, kNote, static_cast<int>(lineKazu),
           {fileData->Lang != 1
                ? u"一行の中に " + n + u" 文字ある。 ソースコード一行の制限文字数 " + limit +
                      u" 文字（独自仕様）を超えている。 エラーにはなりませんが、制限文字数以上は読み込みません。 "
                : u"There are " + n + u" characters in the line. The assembler does not read more than " + limit +
                      u" characters in a line. (Spec. of drill asm): This could cause an error to assemble the line. "},
           "0C5B8001", Head::None, false);
    }
  }
  if (maxLines > 0 && lineKazu > static_cast<size_t>(maxLines)) {
    // The file is not read; the pass goes back to the menu without a count.
    const wstr limit = WNum(maxLines);
    Tell(*fileData, kError, 0,
         {fileData->Lang != 1
              ? u"ソースコードのおおよその制限（一つのファイルにつき） " + limit +
                    u"行 を超えています。行数を減らす工夫をしてご利用ください。 "
              : u"There is a limitation to the number of the lines in a source code file. The maximum is " + limit +
                    u" lines in a file. There are " + WNum(static_cast<long long>(lineKazu)) +
                    u" lines in your source code. You are expected to decrease the lines in your file. "},
         "0C5B8002", Head::None, false);
    return -3;
  }
  if (lineKazu > kMaxSourceLines) {
    ReportTooManyLines(fileName);
    return -3;
  }
  std::vector<SrcLineA>& a = b->vecSrcA;
  std::vector<SrcLineW>& w = b->vecSrcW;
  a.clear();
  w.clear();
  a.reserve(lineKazu);
  w.reserve(lineKazu);
  for (size_t pos = 0; pos < bytes.size();) {
    std::string_view line = NextLine(bytes, pos);
    if (maxLineChars > 0 && line.size() > static_cast<size_t>(maxLineChars)) line = line.substr(0, maxLineChars);
    a.emplace_back();
    a.back().rawStr.assign(line);
    Append(w, AnsiToWStr(line));
  }
  return 0;
}

int ReadSourceA(const std::string& fileName) {
  const FightMode& mode = CurrentMode();
  return OpenFileNarrowToVec(fileName, mode.maxLineChars, mode.maxLines) == 0 ? 0 : 1;
}

int ReadSource(const std::string& fileName) {
  timeVcl->stampReadFileStart();
  return CurrentMode().reader == SourceReader::Narrow ? ReadSourceA(fileName) : ReadSourceW(fileName);
}

int LoadSource(std::string& fileName) {
  int menu = MainMenu(*fileData, fileName);
  if (menu != 0) return menu;
  return ReadSource(fileName);
}
