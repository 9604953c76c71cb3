// The register and memory report. One writer serves the report after the
// link and the one after the run; the file is built piece by piece into a
// temporary file in the same folder, which is renamed over the target.
#include "reports/report.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
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

void PadLeft(std::string& out, std::string_view s, size_t width, size_t len) {
  if (len < width) out.append(width - len, ' ');
  out += s;
}

void PadLeft(std::string& out, std::string_view s, size_t width) { PadLeft(out, s, width, s.size()); }

void PadRight(std::string& out, std::string_view s, size_t width, size_t len) {
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

// The texts of the numbers 0 to 99 in two digits, and of the bytes in two
// hex digits.
struct DigitPairs {
  char dec[100][2];
  char hex[256][2];
  constexpr DigitPairs() : dec{}, hex{} {
    for (int n = 0; n < 100; ++n) dec[n][0] = static_cast<char>('0' + n / 10), dec[n][1] = static_cast<char>('0' + n % 10);
    const char* digits = "0123456789ABCDEF";
    for (int n = 0; n < 256; ++n) hex[n][0] = digits[n >> 4], hex[n][1] = digits[n & 0xF];
  }
};
constexpr DigitPairs kPairs;

// The decimal text of v, written backwards from `end`; returns its start.
char* DecimalBefore(char* end, uint32_t v) {
  while (v >= 100) {
    end -= 2;
    std::memcpy(end, kPairs.dec[v % 100], 2);
    v /= 100;
  }
  if (v >= 10) {
    end -= 2;
    std::memcpy(end, kPairs.dec[v], 2);
  } else {
    *--end = static_cast<char>('0' + v);
  }
  return end;
}

// The decimal text of n, right-aligned in `width` columns (wider text is
// written as it is), at p; returns the end.
char* PutDecimal(char* p, long long n, size_t width) {
  char buf[24];
  char* end = buf + sizeof buf;
  unsigned long long u = n < 0 ? 0ULL - static_cast<unsigned long long>(n) : static_cast<unsigned long long>(n);
  char* d = end;
  do {
    *--d = static_cast<char>('0' + u % 10);
    u /= 10;
  } while (u != 0);
  if (n < 0) *--d = '-';
  const size_t len = static_cast<size_t>(end - d);
  if (len < width) {
    std::memset(p, ' ', width - len);
    p += width - len;
  }
  std::memcpy(p, d, len);
  return p + len;
}

// "#" and four upper-case hex digits of the low 16 bits.
void PutHex4(char* p, uint32_t v) {
  p[0] = '#';
  std::memcpy(p + 1, kPairs.hex[(v >> 8) & 0xFF], 2);
  std::memcpy(p + 3, kPairs.hex[v & 0xFF], 2);
}

// The head of a memory row, 11 characters at p: the address in hex and,
// five wide, in decimal.
char* PutAddress(char* p, int a) {
  PutHex4(p, static_cast<uint32_t>(a));
  p[5] = ':';
  std::memset(p + 6, ' ', 5);
  DecimalBefore(p + 11, static_cast<uint32_t>(a));
  return p + 11;
}

// The head of the next row, `head` being that of this one: one more, in
// both columns.
void NextAddress(char (&head)[11]) {
  int i = 4;
  for (; i >= 1 && head[i] == 'F'; --i) head[i] = '0';
  if (i >= 1) head[i] = head[i] == '9' ? 'A' : static_cast<char>(head[i] + 1);
  i = 10;
  for (; i >= 6 && head[i] == '9'; --i) head[i] = '0';
  if (i >= 6) head[i] = head[i] == ' ' ? '1' : static_cast<char>(head[i] + 1);
}

// `s` at p; returns the end.
char* Put(char* p, std::string_view s) {
  std::memcpy(p, s.data(), s.size());
  return p + s.size();
}

char* Blanks(char* p, size_t n) {
  std::memset(p, ' ', n);
  return p + n;
}

// The labels standing at the addresses of the table, each converted once:
// the text that labelsAtAdr gives, for every address below `size` that has
// one, in the order of the addresses.
struct LabelTable {
  struct Entry {
    int adr;
    uint32_t from, bytes;  // the text in `pool`
    uint32_t width;        // its length in 16-bit characters
  };
  std::string pool;
  std::vector<Entry> entries;

  void Build(int size) {
    // A line is reached by the scan for its address only if no labelled line
    // before it stands at a higher address: the addresses taken never go
    // down, so the labels of one address come one after the other.
    long long highest = -1;
    for (const SrcLineW& L : b->vecSrcW) {
      if (L.labelStr.empty()) continue;
      int a = L.abAdr;
      if (highest <= a && a >= 0 && a < size) {
        if (entries.empty() || entries.back().adr != a) {
          entries.push_back(Entry{a, static_cast<uint32_t>(pool.size()), 0, 0});
        } else {
          pool += ' ';
          entries.back().width += 1;
        }
        AppendUtf8(pool, L.labelStr);
        Entry& e = entries.back();
        e.bytes = static_cast<uint32_t>(pool.size()) - e.from;
        e.width += static_cast<uint32_t>(L.labelStr.size());
      }
      if (a > highest) highest = a;
    }
  }
};

// The four binary digits of every nibble, each behind a blank.
struct NibbleTexts {
  char text[16][5];
  constexpr NibbleTexts() : text{} {
    for (int n = 0; n < 16; ++n) {
      text[n][0] = ' ';
      for (int bit = 0; bit < 4; ++bit) text[n][1 + bit] = ((n >> (3 - bit)) & 1) ? '1' : '0';
    }
  }
};
constexpr NibbleTexts kNibbles;

// The low 16 bits of a cell as a row of char, hex, unsigned, signed, binary:
// " 'c':#XXXX:uuuuu:ssssss: bbbb bbbb bbbb bbbb:", kNumericRow characters at
// buf; returns the end.
constexpr size_t kNumericRow = 45;
char* NumericRow(char* buf, int32_t v) {
  uint16_t u = static_cast<uint16_t>(v & 0xFFFF);
  int16_t s = static_cast<int16_t>(u);
  buf[0] = ' ';
  if (u >= 0x20 && u <= 0x7E) {
    buf[1] = '\'';
    buf[2] = static_cast<char>(u);
    buf[3] = '\'';
  } else {
    buf[1] = buf[2] = buf[3] = ' ';
  }
  buf[4] = ':';
  PutHex4(buf + 5, u);
  buf[10] = ':';
  std::memset(buf + 11, ' ', 5);
  DecimalBefore(buf + 16, u);
  buf[16] = ':';
  std::memset(buf + 17, ' ', 6);
  char* p = DecimalBefore(buf + 23, static_cast<uint32_t>(s < 0 ? -s : s));
  p[-1] = s < 0 ? '-' : '+';
  buf[23] = ':';
  for (int n = 0; n < 4; ++n) std::memcpy(buf + 24 + 5 * n, kNibbles.text[(u >> (12 - 4 * n)) & 0xF], 5);
  buf[44] = ':';
  return buf + kNumericRow;
}

void NumericRow(std::string& out, int32_t v) {
  char buf[kNumericRow];
  out.append(buf, static_cast<size_t>(NumericRow(buf, v) - buf));
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

// A file written through a temporary file in the same folder, which is
// renamed over the target once everything is in it. The temporary file is
// made at the first write; after a failure nothing is left of it, and `err`
// tells why.
class AtomicFile {
 public:
  explicit AtomicFile(const std::string& path) : path_(path) {}
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;
  ~AtomicFile() {
    if (fd_ >= 0) {
      ::close(fd_);
      ::unlink(name_.data());
    }
  }

  bool Write(std::string_view data) {
    if (fd_ < 0 && !Open()) return false;
    size_t done = 0;
    while (done < data.size()) {
      ssize_t n = ::write(fd_, data.data() + done, data.size() - done);
      if (n < 0) {
        if (errno == EINTR) continue;
        return Fail();
      }
      done += static_cast<size_t>(n);
    }
    return true;
  }

  bool Commit() {
    if (fd_ < 0 && !Open()) return false;
    int fd = fd_;
    fd_ = -1;
    if (::close(fd) != 0) {
      err = errno;
      ::unlink(name_.data());
      return false;
    }
    if (std::rename(name_.data(), path_.c_str()) != 0) {
      err = errno;
      ::unlink(name_.data());
      return false;
    }
    return true;
  }

  int err = 0;

 private:
  bool Open() {
    std::string dir = ".";
    std::string base = path_;
    size_t slash = path_.find_last_of('/');
    if (slash != std::string::npos) {
      dir = path_.substr(0, slash);
      base = path_.substr(slash + 1);
      if (dir.empty()) dir = "/";
    }
    std::string tmpl = dir + "/." + base + ".XXXXXX";
    name_.assign(tmpl.begin(), tmpl.end());
    name_.push_back('\0');
    fd_ = mkstemp(name_.data());
    if (fd_ < 0) {
      err = errno;
      return false;
    }
    fchmod(fd_, 0644);
    return true;
  }

  bool Fail() {
    err = errno;
    ::close(fd_);
    ::unlink(name_.data());
    fd_ = -1;
    return false;
  }

  const std::string& path_;
  std::vector<char> name_;
  int fd_ = -1;
};

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

// The text of a line in the table, each part converted once: opcode and
// operand, and the label.
struct LineText {
  int line = -1;
  std::string text;   // opcode, a blank, the operand
  std::string label;  // the label
  size_t labelWidth = 0;
};

// The report is built in pieces of about this size, each written out before
// the next is built.
constexpr size_t kChunk = 1 << 16;

// Writes the report that names itself `reportName` into the file `path`.
int WriteRegMry(Tcomet2& mc, const std::string& path, const std::string& reportName, bool countColumn) {
  const int maxMemory = b->MaxMemory < 0 ? 0 : b->MaxMemory;
  const int rows = maxMemory + 10 > kMemoryCells ? kMemoryCells : maxMemory + 10;

  LabelTable labels;
  labels.Build(rows);
  size_t W = 5;
  for (const LabelTable::Entry& e : labels.entries) {
    if (e.adr < maxMemory && e.width > W) W = e.width;
  }

  AtomicFile file(path);
  std::string out;
  out.reserve(kChunk + 4096);
  // Writes the text built so far once it has grown to a piece.
  auto written = [&](bool always) {
    if (!always && out.size() < kChunk) return true;
    bool ok = file.Write(out);
    out.clear();
    return ok;
  };
  auto failed = [&]() {
    con::out << Utf8ToU16(path) << u" does not open." << con::endl;
    con::out << "Msg:" << std::strerror(file.err) << con::endl;
    return -1;
  };

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
    out += static_cast<char>('0' + n);
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
  size_t nextLabel = 0;
  LineText lt;
  char head[11];
  PutAddress(head, 0);
  for (int a = 0; a < rows; ++a, NextAddress(head)) {
    while (nextLabel < labels.entries.size() && labels.entries[nextLabel].adr < a) ++nextLabel;
    const LabelTable::Entry* lab = nullptr;
    if (nextLabel < labels.entries.size() && labels.entries[nextLabel].adr == a) lab = &labels.entries[nextLabel];
    int L = a < kNoLineFrom ? mc.lineOfAdr[a] : -1;
    const bool text = L >= 0 && L < nLines && L != lastShown && !b->vecSrcW[L].opStr.empty();
    if (text && lt.line != L) {
      // The operand as written, without its comment.
      const SrcLineW& S = b->vecSrcW[L];
      lt.line = L;
      lt.text.clear();
      AppendUtf8(lt.text, S.opStr);
      lt.text += ' ';
      AppendUtf8(lt.text, S.oprndComStr);
      lt.label.clear();
      AppendUtf8(lt.label, S.labelStr);
      lt.labelWidth = S.labelStr.size();
    }
    // The most the row can take.
    const size_t room = 11 + 1 + W + 1 + (lab ? lab->bytes : 0) + 1 + kNumericRow + countWidth + 24 +
                        (text ? lt.text.size() + lt.label.size() + 16 : 0) + 1 + kShortRule.size() + 1;
    const size_t at = out.size();
    out.resize(at + room);
    char* const start = &out[at];
    char* p = Put(start, std::string_view(head, sizeof head));
    *p++ = ':';
    if (lab) {
      if (lab->width < W + 1) p = Blanks(p, W + 1 - lab->width);
      p = Put(p, std::string_view(labels.pool).substr(lab->from, lab->bytes));
    } else {
      p = Blanks(p, W + 1);
    }
    *p++ = ':';
    p = NumericRow(p, mc.Memory[a]);
    if (countColumn) {
      p = PutDecimal(p, mc.execCount[a], countWidth);
      *p++ = ':';
    }
    if (text) {
      const SrcLineW& S = b->vecSrcW[L];
      if (S.vecLiteConst.empty() || a <= S.abAdr) {
        p = Put(p, lt.label);
        if (lt.labelWidth < 2) p = Blanks(p, 2 - lt.labelWidth);
        *p++ = ' ';
        p = Put(p, lt.text);
      } else {
        p = Put(p, "Literal:(");
        if (!S.labelStr.empty()) {
          p = Put(p, lt.label);
          *p++ = ' ';
        }
        p = Put(p, lt.text);
        *p++ = ')';
      }
      lastShown = L;
    }
    *p++ = '\n';
    if (a == maxMemory - 1 && a == lastPrgLastAdr) {
      p = Put(p, kShortRule);
      *p++ = '\n';
    }
    out.resize(at + static_cast<size_t>(p - start));
    if (!written(false)) return failed();
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
    char head[11];
    PutAddress(head, adr);
    out.append(head, sizeof head);
    out += ':';
    out.append(W + 1, ' ');
    out += ':';
    NumericRow(out, mc.stackArea[65535 - adr]);
    out += '\n';
  }
  out += kShortRule;
  out += '\n';

  if (!written(true) || !file.Commit()) return failed();
  return 0;
}

}  // namespace

int DspRegMry70NW(Tcomet2& mc, const std::string& reportName) {
  return WriteRegMry(mc, reportName, reportName, true);
}

int DspRegMry68NA(Tcomet2& mc, const std::string& reportName) {
  return WriteRegMry(mc, reportName, reportName, false);
}

int WriteRegMryFile(Tcomet2& mc, const std::string& path, const std::string& reportName, bool countColumn) {
  return WriteRegMry(mc, path, reportName, countColumn);
}
