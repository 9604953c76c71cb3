#include "records/console.h"

#include <editline/readline.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace con {

Stream out;

namespace {

std::string g_outBuf;
std::string* g_capture = nullptr;
bool g_discard = false;
volatile std::sig_atomic_t g_stopWaiting = 0;
std::string* g_frontCapture = nullptr;

void WriteAll(int fd, const char* p, size_t n) {
  while (n > 0) {
    ssize_t w = ::write(fd, p, n);
    if (w < 0) {
      if (errno == EINTR) continue;
      return;  // nowhere to report a broken console
    }
    p += w;
    n -= static_cast<size_t>(w);
  }
}

struct Reader {
  std::string buf;
  size_t pos = 0;
  bool fromString = false;
  bool fakeTerminal = false;
  // The reader stands inside a line whose rest waits for Rewind: a line that
  // IN cut, or one whose first word a read took.
  bool cutPending = false;

  // On a real terminal the menu's reads are edited lines (libedit): the
  // line, its line end appended, fills the buffer as a read would.
  bool editing = true;   // false while IN waits: IN reads the terminal as it is
  bool names = false;    // Tab completes file and folder names
  bool ctrlDEnds = false;  // IN on a terminal: a Ctrl+D that ended the read is the end of input
  std::string prompt;    // the unended text in front of the read

  bool Terminal() const { return fromString ? fakeTerminal : ::isatty(0) == 1; }

  // Makes at least one unread byte available; false at the end of input.
  bool Fill() {
    if (pos < buf.size()) return true;
    if (fromString) return false;
    buf.clear();
    pos = 0;
    if (editing && ::isatty(0) == 1) return FillEdited();
    char tmp[4096];
    for (;;) {
      ssize_t r = ::read(0, tmp, sizeof tmp);
      if (r < 0 && errno == EINTR) {
        if (g_stopWaiting != 0) return false;
        continue;
      }
      if (r <= 0) return false;
      if (ctrlDEnds && tmp[r - 1] == 0x04) {
        // Ctrl+D ends IN's read as the terminal's own end of input would:
        // alone it is the end, behind text it hands over the text.
        if (r == 1) return false;
        --r;
      }
      buf.assign(tmp, static_cast<size_t>(r));
      return true;
    }
  }

  bool FillEdited() {
    static bool ready = false;
    if (!ready) {
      ::using_history();
      ready = true;
    }
    // Tab completes names where a name is asked, and nothing elsewhere.
    ::rl_inhibit_completion = names ? 0 : 1;
    char* line = ::readline(prompt.c_str());
    prompt.clear();
    if (line == nullptr) return false;  // Ctrl+D: the end of input, cleared by the next read
    std::string s(line);
    std::free(line);
    if (!s.empty()) ::add_history(s.c_str());
    buf = s + "\n";
    return true;
  }

  // Reads up to the line end or maxBytes. `got` tells whether anything at all
  // (a byte or a line end) was read.
  std::string Line(size_t maxBytes, bool& got, bool& cut) {
    std::string s;
    got = false;
    cut = false;
    for (;;) {
      if (!Fill()) break;
      char c = buf[pos];
      if (c == '\n') {
        ++pos;
        got = true;
        break;
      }
      if (s.size() >= maxBytes) {
        cut = true;
        break;
      }
      s.push_back(c);
      ++pos;
      got = true;
    }
    if (!s.empty() && s.back() == '\r') s.pop_back();
    return s;
  }

  // Skips white space, line ends too unless `stopAtLineEnd`; false at the
  // end of input.
  bool SkipWs(bool stopAtLineEnd = false) {
    for (;;) {
      if (!Fill()) return false;
      char c = buf[pos];
      if (c == '\n' && stopAtLineEnd) return true;
      if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f') {
        ++pos;
        continue;
      }
      return true;
    }
  }
};

Reader g_in;

std::string AtEnd() {
  if (!g_in.Terminal()) EndProgram();
  return std::string();
}

}  // namespace

void Flush() {
  if (g_outBuf.empty()) return;
  if (g_discard) {
    // Nobody reads it.
  } else if (g_capture) {
    g_capture->append(g_outBuf);
  } else {
    WriteAll(1, g_outBuf.data(), g_outBuf.size());
  }
  g_outBuf.clear();
}

void SetCapture(std::string* sink) {
  Flush();
  g_capture = sink;
  g_discard = false;
}

void SetDiscard() {
  Flush();
  g_capture = nullptr;
  g_discard = true;
}

Target CurrentTarget() { return Target{g_capture, g_discard}; }

void SetTarget(const Target& t) {
  Flush();
  g_capture = t.capture;
  g_discard = t.discard;
}

void Print(std::string_view utf8) {
  if (g_frontCapture) {
    g_frontCapture->append(utf8);
  } else {
    WriteAll(1, utf8.data(), utf8.size());
  }
}

void PrintErr(std::string_view utf8) {
  if (g_frontCapture) {
    g_frontCapture->append(utf8);
  } else {
    WriteAll(2, utf8.data(), utf8.size());
  }
}

void SetFrontCapture(std::string* sink) { g_frontCapture = sink; }

std::optional<std::string> ReadCommand(const char* prompt) {
  Flush();
  if (g_in.Terminal() && !g_in.fromString) {
    char* line = ::readline(prompt);
    if (line == nullptr) return std::nullopt;
    std::string s(line);
    std::free(line);
    if (!s.empty()) ::add_history(s.c_str());
    return s;
  }
  bool got = false, cut = false;
  std::string s = g_in.Line(1u << 16, got, cut);
  if (!got) return std::nullopt;
  // The rest of an over-long command is dropped.
  while (cut) g_in.Line(1u << 16, got, cut);
  return s;
}

Stream& Stream::operator<<(std::string_view s) {
  g_outBuf.append(s);
  if (s.find('\n') != std::string_view::npos || g_outBuf.size() > 65536) Flush();
  return *this;
}

Stream& Stream::operator<<(wview s) { return *this << std::string_view(U16ToUtf8(s)); }

Stream& Stream::operator<<(long long n) { return *this << std::string_view(std::to_string(n)); }

Stream& Stream::operator<<(double d) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%g", d);
  return *this << std::string_view(buf);
}

Stream& Stream::operator<<(EndlT) { return *this << std::string_view("\n"); }

namespace {

// Before a read: the console's text goes out. When the read will be an
// edited line on a terminal, the text behind the last line end is its prompt
// instead, so that the editor draws it and keeps it while the line changes.
void FlushBeforeRead() {
  if (g_in.editing && !g_in.fromString && g_in.pos >= g_in.buf.size() && g_capture == nullptr && !g_discard &&
      ::isatty(0) == 1 && ::isatty(1) == 1) {
    const size_t nl = g_outBuf.rfind('\n');
    const size_t keep = nl == std::string::npos ? 0 : nl + 1;
    g_in.prompt.append(g_outBuf, keep, std::string::npos);
    g_outBuf.resize(keep);
  }
  Flush();
}

// The terminal as IN wants it: Ctrl+Z is the end of input, not a suspend.
struct termios g_savedTerm {};
volatile std::sig_atomic_t g_termSaved = 0;

}  // namespace

void RestoreTerminal() {
  if (g_termSaved != 0) {
    ::tcsetattr(0, TCSANOW, &g_savedTerm);
    g_termSaved = 0;
  }
}

std::string ReadLine(size_t maxBytes, bool name) {
  FlushBeforeRead();
  g_in.names = name;
  bool got = false, cut = false;
  std::string s = g_in.Line(maxBytes, got, cut);
  if (!got) return AtEnd();
  if (!cut) g_in.cutPending = false;  // the line end is taken
  return s;
}

std::string ReadLineSkipWs(size_t maxBytes, bool name) {
  FlushBeforeRead();
  g_in.names = name;
  if (!g_in.SkipWs()) return AtEnd();
  return ReadLine(maxBytes, name);
}

std::string ReadWord(size_t maxBytes) {
  FlushBeforeRead();
  g_in.names = false;
  if (!g_in.SkipWs(true)) return AtEnd();
  std::string s;
  while (s.size() < maxBytes && g_in.Fill()) {
    char c = g_in.buf[g_in.pos];
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f') break;
    s.push_back(c);
    ++g_in.pos;
  }
  g_in.cutPending = true;  // the rest of the line, its line end at least
  return s;
}

std::optional<std::string> ReadLineForIn(size_t maxBytes, bool& cut) {
  Flush();
  // IN reads the terminal as it is, with Ctrl+Z as its end of input, and the
  // terminal is put back as it was whatever ends the read.
  struct termios t {};
  if (!g_in.fromString && ::isatty(0) == 1 && ::tcgetattr(0, &t) == 0) {
    g_savedTerm = t;
    g_termSaved = 1;
    t.c_cc[VEOF] = 0x1A;
    // Ctrl+D stays an end of input: it ends the read as a line end does, and
    // the reader takes it for the end.
    t.c_cc[VEOL] = 0x04;
    t.c_cc[VSUSP] = _POSIX_VDISABLE;
    ::tcsetattr(0, TCSANOW, &t);
    g_in.ctrlDEnds = true;
  }
  g_in.editing = false;
  bool got = false;
  std::string s = g_in.Line(maxBytes, got, cut);
  g_in.editing = true;
  g_in.ctrlDEnds = false;
  RestoreTerminal();
  g_in.cutPending = cut;
  if (!got) return std::nullopt;
  return s;
}

void Rewind() {
  if (g_in.Terminal()) {
    if (!g_in.fromString) ::tcflush(0, TCIFLUSH);
    g_in.buf.clear();
    g_in.pos = 0;
  } else if (g_in.cutPending) {
    bool got = false, cut = true;
    while (cut) g_in.Line(4096, got, cut);
  }
  g_in.cutPending = false;
}

bool IsTerminal() { return g_in.Terminal(); }

void StopWaitingReads(bool stop) { g_stopWaiting = stop ? 1 : 0; }

void EndProgram() {
  Flush();
  throw InputEnded{};
}

void SetInputForTest(std::string_view data, bool terminal) {
  g_in.buf.assign(data);
  g_in.pos = 0;
  g_in.fromString = true;
  g_in.fakeTerminal = terminal;
  g_in.cutPending = false;
}

}  // namespace con
