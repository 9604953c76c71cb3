// The register and memory report. One writer serves the report after the
// link and the one after the run; the file is built in memory, written to a
// temporary file in the same folder and renamed over the target.
#include "reports/report.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "records/console.h"
#include "records/singletons.h"

namespace {

constexpr int kNoLineFrom = 65036;

int assembledHintCount = 0;
int resultantHintCount = 0;

// "//--" and 35 times "--".
const std::string kShortRule = "//--" + std::string(70, '-');
const char* const kMidRule = "//-------------------------------------------------";
const char* const kLongRule =
    "//----------------------------------------"
    "--------------------------------------------";

void PadLeft(std::string& out, const std::string& s, size_t width, size_t len) {
  if (len < width) out.append(width - len, ' ');
  out += s;
}

void PadLeft(std::string& out, const std::string& s, size_t width) { PadLeft(out, s, width, s.size()); }

void PadRight(std::string& out, const std::string& s, size_t width, size_t len) {
  out += s;
  if (len < width) out.append(width - len, ' ');
}

int Digits(long long v) {
  if (v < 0) v = -v;
  int d = 1;
  while (v >= 10) {
    v /= 10;
    ++d;
  }
  return d;
}

// The labels standing at each address, built once from the lines: the text
// that labelsAtAdr gives, for every address that has one.
struct LabelTable {
  std::vector<wstr> text;  // by address; empty for none

  void Build(int size) {
    text.assign(size > 0 ? size : 0, wstr());
    // A line is reached by the scan for its address only if no labelled line
    // before it stands at a higher address.
    long long highest = -1;
    for (const SrcLineW& L : b->vecSrcW) {
      if (L.labelStr.empty()) continue;
      int a = L.abAdr;
      if (highest <= a && a >= 0 && a < size) {
        wstr& t = text[a];
        if (!t.empty()) t += u' ';
        t += L.labelStr;
      }
      if (a > highest) highest = a;
    }
  }
  const wstr& At(int a) const {
    static const wstr none;
    return (a >= 0 && a < static_cast<int>(text.size())) ? text[a] : none;
  }
};

// The low 16 bits of a cell as a row of char, hex, unsigned, signed, binary.
void NumericRow(std::string& out, int32_t v) {
  uint16_t u = static_cast<uint16_t>(v & 0xFFFF);
  int16_t s = static_cast<int16_t>(u);
  out += ' ';
  if (u >= 0x20 && u <= 0x7E) {
    out += '\'';
    out += static_cast<char>(u);
    out += '\'';
  } else {
    out += "   ";
  }
  out += ':';
  out += Hex4(u);
  out += ':';
  PadLeft(out, std::to_string(u), 5);
  out += ':';
  PadLeft(out, (s >= 0 ? "+" : "") + std::to_string(s), 6);
  out += ':';
  for (int bit = 15; bit >= 0; --bit) {
    if (bit % 4 == 3) out += ' ';
    out += ((u >> bit) & 1) ? '1' : '0';
  }
  out += ':';
}

std::string FormatStamp(int lang, std::time_t t) {
  struct tm tm {};
  if (localtime_r(&t, &tm) == nullptr) {
    con::out << "Invalid argument to _localtime64_s." << con::endl;
    return std::string();
  }
  if (tm.tm_hour == 0) tm.tm_hour = 12;
  char buf[128];
  if (lang == 0) {
    std::string s = "作成日時：";
    std::snprintf(buf, sizeof buf, "%d年%d月%d日 %d時%d分%d秒", tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday,
                  tm.tm_hour, tm.tm_min, tm.tm_sec);
    return s + buf;
  }
  static const char* const kDay[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  static const char* const kMon[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  if (tm.tm_wday < 0 || tm.tm_wday > 6 || tm.tm_mon < 0 || tm.tm_mon > 11) {
    con::out << "Invalid argument to asctime_s." << con::endl;
    return std::string();
  }
  std::snprintf(buf, sizeof buf, "%.3s %.3s%3d %.2d:%.2d:%.2d %d\n", kDay[tm.tm_wday], kMon[tm.tm_mon], tm.tm_mday,
                tm.tm_hour, tm.tm_min, tm.tm_sec, tm.tm_year + 1900);
  return buf;
}

// Writes `data` to `path` through a temporary file in the same folder.
bool WriteAtomically(const std::string& path, const std::string& data, int& err) {
  std::string dir = ".";
  std::string base = path;
  size_t slash = path.find_last_of('/');
  if (slash != std::string::npos) {
    dir = path.substr(0, slash);
    base = path.substr(slash + 1);
    if (dir.empty()) dir = "/";
  }
  std::string tmpl = dir + "/." + base + ".XXXXXX";
  std::vector<char> name(tmpl.begin(), tmpl.end());
  name.push_back('\0');
  int fd = mkstemp(name.data());
  if (fd < 0) {
    err = errno;
    return false;
  }
  fchmod(fd, 0644);
  size_t done = 0;
  while (done < data.size()) {
    ssize_t n = ::write(fd, data.data() + done, data.size() - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      err = errno;
      ::close(fd);
      ::unlink(name.data());
      return false;
    }
    done += static_cast<size_t>(n);
  }
  if (::close(fd) != 0) {
    err = errno;
    ::unlink(name.data());
    return false;
  }
  if (std::rename(name.data(), path.c_str()) != 0) {
    err = errno;
    ::unlink(name.data());
    return false;
  }
  return true;
}

}  // namespace

// ---------------------------------------------------------------------------
void ResetReportHintCounts() {
  assembledHintCount = 0;
  resultantHintCount = 0;
}

void DspReportHintNW(int lang, ReportKind kind, const std::string& reportName) {
  con::out << "---> " << reportName << " ";
  if (lang != 0) {
    con::out << con::endl;
    return;
  }
  int& count = kind == ReportKind::Assembled ? assembledHintCount : resultantHintCount;
  if (count == 0) {
    con::out << (kind == ReportKind::Assembled ? u"\nアセンブルされた" : u"\n実行後の")
             << u"メモリの全容が保存してあります。";
  }
  ++count;
  con::Flush();
}

std::string labelsAtAdr(int adr) {
  wstr t;
  for (const SrcLineW& L : b->vecSrcW) {
    if (L.labelStr.empty()) continue;
    if (L.abAdr > adr) break;
    if (L.abAdr == adr) {
      if (!t.empty()) t += u' ';
      t += L.labelStr;
    }
  }
  return U16ToUtf8(t);
}

std::string NumericRowText(int32_t v) {
  std::string s;
  NumericRow(s, v);
  return s;
}

std::string ReportTimeStamp(int lang, std::time_t t) { return FormatStamp(lang, t); }

std::time_t ReportNow() {
  if (const char* e = std::getenv("SOURCE_DATE_EPOCH"); e != nullptr && *e != '\0') {
    char* endp = nullptr;
    errno = 0;
    long long v = std::strtoll(e, &endp, 10);
    if (errno == 0 && endp != e && *endp == '\0') return static_cast<std::time_t>(v);
  }
  return std::time(nullptr);
}

// ---------------------------------------------------------------------------
namespace {

int WriteRegMry(Tcomet2& mc, const std::string& reportName, bool countColumn) {
  const int maxMemory = b->MaxMemory < 0 ? 0 : b->MaxMemory;
  const int rows = maxMemory + 10 > kMemoryCells ? kMemoryCells : maxMemory + 10;

  LabelTable labels;
  labels.Build(rows);
  size_t W = 5;
  for (int a = 0; a < maxMemory && a < rows; ++a) {
    const wstr& t = labels.At(a);
    if (t.size() > W) W = t.size();
  }

  std::string out;
  out.reserve(static_cast<size_t>(rows) * 120 + 4096);
  out += "Please open this file with a monospaced font such as MS Gothic,\n";
  out += "it will be easy to read the results because it is displayed in a tabular format.\n";
  out += "A font size 10 is recommended for printing these on A4 paper.\n";
  out += kShortRule;
  out += '\n';
  out += "Src. File: ";
  out += mc.srcFileName;
  out += "    ";
  out += FormatStamp(mc.dispLang == 0 ? 0 : 1, ReportNow());
  out += '\n';
  out += "VM COMET2: ";
  out += reportName;
  out += '\n';
  out += kMidRule;
  out += '\n';
  out += "      Char  Hex    UD     SD       Binary Code\n";
  out += "   PR:";
  NumericRow(out, mc.PR);
  out += '\n';
  for (int n = 0; n < 8; ++n) {
    out += "  GR";
    out += std::to_string(n);
    out += ':';
    NumericRow(out, mc.GR[n]);
    out += '\n';
  }
  out += "Flags:    Fovf=" + std::to_string(mc.Fovf) + ", Fsign=" + std::to_string(mc.Fsign) + "(";
  out += mc.Fsign == 0 ? "plus), " : mc.Fsign == 1 ? "minus), " : "Error of else: at Fsign ! in comet2.),";
  out += "Fzero=" + std::to_string(mc.Fzero) + "(";
  out += mc.Fzero == 0 ? "non zero)." : mc.Fzero == 1 ? "zero)." : "Error of else: at Fzero ! in comet2.).";
  out += '\n';
  out += "   SP:";
  NumericRow(out, mc.SP);
  out += '\n';
  out += '\n';
  out += kLongRule;
  out += '\n';

  // The table head.
  int half = static_cast<int>((W + 1) / 2);
  out += "  Address   ";
  PadLeft(out, "Lab", half + 2 > 0 ? half + 2 : 0);
  PadRight(out, "el", half - 2 > 0 ? half - 2 : 0, 2);
  out += " Char  Hex    UD     SD       Binary Code\n";

  // The memory table, ten rows beyond the reserved area.
  const size_t countWidth = static_cast<size_t>(Digits(mc.maxExecCount)) + 1;
  const int nLines = static_cast<int>(b->vecSrcW.size());
  int lastPrgLastAdr = b->vecPrgW.empty() ? -1 : b->vecPrgW.back().prgLastAdr;
  int lastShown = -1;
  for (int a = 0; a < rows; ++a) {
    out += Hex4(static_cast<uint32_t>(a));
    out += ':';
    PadLeft(out, std::to_string(a), 5);
    out += ':';
    const wstr& lab = labels.At(a);
    PadLeft(out, U16ToUtf8(lab), W + 1, lab.size());
    out += ':';
    NumericRow(out, mc.Memory[a]);
    if (countColumn) {
      PadLeft(out, std::to_string(mc.execCount[a]), countWidth);
      out += ':';
    }
    int L = a < kNoLineFrom ? mc.lineOfAdr[a] : -1;
    if (L >= 0 && L < nLines && L != lastShown && !b->vecSrcW[L].opStr.empty()) {
      const SrcLineW& S = b->vecSrcW[L];
      // The operand as written, without its comment.
      const wstr& oprnd = S.oprndComStr;
      std::string T = U16ToUtf8(S.opStr) + " " + U16ToUtf8(oprnd);
      if (S.vecLiteConst.empty() || a <= S.abAdr) {
        PadRight(out, U16ToUtf8(S.labelStr), 2, S.labelStr.size());
        out += ' ';
        out += T;
      } else {
        out += "Literal:(";
        if (!S.labelStr.empty()) {
          out += U16ToUtf8(S.labelStr);
          out += ' ';
        }
        out += T;
        out += ')';
      }
      lastShown = L;
    }
    out += '\n';
    if (a == maxMemory - 1 && a == lastPrgLastAdr) {
      out += kShortRule;
      out += '\n';
    }
  }

  out += "It is called Reserved Area that a program has reserved in Main Memory.\n";
  out += "The dashed line shows a boundary between \"Reserved Area\" and Non-Reserved one.\n";
  out += '\n';
  out += "           Stack Area in Main Memory\n";
  out += "The Stack Pointer(SP) has pointed at " + Hex4(static_cast<uint32_t>(mc.SP)) + " at present. \n";

  // The stack table: up to four zeros in a row, or 500 cells.
  int scanned = 0, zeros = 0;
  while (scanned < 500 && zeros < 4) {
    zeros = mc.stackArea[scanned] == 0 ? zeros + 1 : 0;
    ++scanned;
  }
  for (int adr = 65535 - scanned; adr <= 65535; ++adr) {
    out += Hex4(static_cast<uint32_t>(adr));
    out += ':';
    PadLeft(out, std::to_string(adr), 5);
    out += ':';
    out.append(W + 1, ' ');
    out += ':';
    NumericRow(out, mc.stackArea[65535 - adr]);
    out += '\n';
  }
  out += kShortRule;
  out += '\n';

  int err = 0;
  if (!WriteAtomically(reportName, out, err)) {
    con::out << Utf8ToU16(reportName) << u" does not open." << con::endl;
    con::out << "Msg:" << std::strerror(err) << con::endl;
    return -1;
  }
  return 0;
}

}  // namespace

int DspRegMry70NW(Tcomet2& mc, const std::string& reportName) { return WriteRegMry(mc, reportName, true); }

int DspRegMry68NA(Tcomet2& mc, const std::string& reportName) { return WriteRegMry(mc, reportName, false); }
