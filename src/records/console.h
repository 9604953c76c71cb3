// The console: the one writer of everything the learner sees and the one
// reader of standard input.
//
// Output is UTF-8 from narrow (UTF-8) or 16-bit text. It is flushed at every
// line end and before every read, so messages and typed input stay in order.
// Tests can capture it into a string.
//
// Input goes through one buffered reader, so that nothing typed ahead is lost
// between the menus, the prompts and IN. When standard input is not a terminal
// and has ended, a read for a menu, a prompt or a file name ends the program
// at once with status 0 (as closing the console window did). On a terminal,
// Ctrl+D is an end of file that the next read clears.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "records/text.h"

namespace con {

struct EndlT {};
inline constexpr EndlT endl{};

class Stream {
 public:
  Stream& operator<<(std::string_view s);
  Stream& operator<<(const std::string& s) { return *this << std::string_view(s); }
  Stream& operator<<(const char* s) { return *this << std::string_view(s); }
  Stream& operator<<(wview s);
  Stream& operator<<(const wstr& s) { return *this << wview(s); }
  Stream& operator<<(const char16_t* s) { return *this << wview(s); }
  Stream& operator<<(char c) { return *this << std::string_view(&c, 1); }
  Stream& operator<<(char16_t c) { return *this << wview(&c, 1); }
  Stream& operator<<(int n) { return *this << static_cast<long long>(n); }
  Stream& operator<<(long n) { return *this << static_cast<long long>(n); }
  Stream& operator<<(long long n);
  Stream& operator<<(unsigned n) { return *this << static_cast<long long>(n); }
  Stream& operator<<(unsigned long n) { return *this << static_cast<long long>(n); }
  Stream& operator<<(double d);
  Stream& operator<<(EndlT);
};

// The one output stream: con::out << u"..." << 5 << con::endl;
extern Stream out;

void Flush();

// Redirects all output into *sink (nullptr: back to standard output).
void SetCapture(std::string* sink);
// Sends all output nowhere, until the next SetCapture.
void SetDiscard();
// Where the output goes, to be put back after a redirection.
struct Target {
  std::string* capture = nullptr;
  bool discard = false;
};
Target CurrentTarget();
void SetTarget(const Target& t);

// The own lines of a front end other than the menu program (UTF-8), written
// at once to standard output or standard error, whatever happens to the
// console text above. Tests collect both into one string.
void Print(std::string_view utf8);
void PrintErr(std::string_view utf8);
void SetFrontCapture(std::string* sink);

// Reads the rest of the current input line, at most maxBytes bytes; the rest
// of a longer line stays for the next read. A CR before the line end is
// dropped. At the end of input: ends the program on a pipe, returns "" on a
// terminal.
// On a terminal the line is edited (cursor keys, history of the session, and,
// when `name` says a file or folder name is asked, Tab completion of names);
// what the program receives is the same.
std::string ReadLine(size_t maxBytes, bool name = false);

// Skips white space (line ends included), then reads as ReadLine.
std::string ReadLineSkipWs(size_t maxBytes, bool name = false);

// Skips blanks, then reads one blank-delimited word of at most maxBytes
// bytes. A bare line end gives "". The line end behind the word stays unread.
std::string ReadWord(size_t maxBytes);

// The reader of IN: one line of at most maxBytes bytes, without ending the
// program at the end of input (nullopt there). `cut` tells whether the line
// was longer than maxBytes; its rest stays until Rewind.
std::optional<std::string> ReadLineForIn(size_t maxBytes, bool& cut);

// A command line of an interactive front end: on a terminal read with line
// editing and a history (the prompt shown), otherwise the next line of the
// buffered reader. nullopt at the end of input, on a pipe as on a terminal.
std::optional<std::string> ReadCommand(const char* prompt);

// "Rewind of standard input": on a terminal, discards typed-ahead input; on a
// pipe, discards the rest of a line that IN cut. Clears the end of file.
void Rewind();

bool IsTerminal();

// Puts the terminal back as it was before IN changed it (safe in a signal
// handler); nothing when IN changed nothing.
void RestoreTerminal();

// From a signal handler: a read that waits for input gives up, as at the end
// of input (IN stores the count 0). StopWaitingReads(false) ends that again.
void StopWaitingReads(bool stop = true);

// Thrown when a read for a menu, a prompt or a file name meets the end of a
// standard input that is not a terminal. `main` catches it and ends the
// program with status 0, so nothing further is written.
struct InputEnded {};

// Flushes the output and throws InputEnded.
[[noreturn]] void EndProgram();

// For tests: feeds the reader from a string instead of standard input.
// `terminal` makes the reader behave as on a terminal.
void SetInputForTest(std::string_view data, bool terminal = false);

}  // namespace con
