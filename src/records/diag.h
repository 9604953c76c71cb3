// Diagnostics: the message record, the log of messages, the quoting helpers
// and the one helper through which every check prints, counts and logs what
// it found.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "records/records.h"
#include "records/text.h"

struct TMsgRec {
  int kind = 0;  // 100 Error, 200 Warning, 400 Note, 500 Memo
  int line = 0;  // index of the source line, from 0
  std::array<int, 9> spare{};
  wstr classWord;
  wstr srcText;  // the source text the message is about, quoted
  std::array<wstr, 9> msgLines;  // the printed lines; the first empty one ends them
  std::string tag;
  wstr tagW;
  std::string code;  // the identity of the check, never shown
  size_t headSize = 0;  // units of msgLines[0] that are the head (prefix, line number)
  size_t before = 0;    // of a quiet record: the number of WideLog records printed before it
};

class TMsgLog : public TDiagBase {
 public:
  TMsgLog();

  std::vector<std::string> NarrowLog;
  std::vector<TMsgRec> WideLog;
  // Messages that are printed and (mostly) counted but are not repeated by
  // DspMsgLog: kept for front ends, which read every diagnostic from the log.
  std::vector<TMsgRec> QuietLog;
  std::array<wstr, 14> ClassWord;

  void AddMsgW(const TMsgRec& rec) { WideLog.push_back(rec); }
  void ClearMsgLog() {
    NarrowLog.clear();
    WideLog.clear();
    QuietLog.clear();
  }
  // Writes every logged message again, line by line.
  void DspMsgLog() const;
  // The log's class word of a kind in a language.
  const wstr& ClassWordOf(int kind, int lang) const;
};

// " \"text\" "
std::string QuoteA(std::string_view text);
wstr QuoteW(wview text);
// The decimal text of n.
wstr WordNr(long long n);
// The file stem, " line=", the number, a blank and `extra`.
std::string PrgLocation(const std::string& file, int lineNr, std::string_view extra);

// How the head of a message is built.
enum class Head {
  Line,       // prefix and line number: "Error : line 5: " / "エラー： 5 行目： "
  ClassOnly,  // the prefix alone: "Error : " / "エラー： "
  ConstNr,    // prefix, line number and place of a DC constant
  None,       // nothing in front of the first line
};

// Prints one diagnostic written by `w`, in w's language, and counts and logs
// it. The caller composes the sentences in that language: lines[0] follows
// the head on the first printed line, every further entry is a printed line
// of its own. `srcText` is the quoted source text the message is about (for
// the log), `code` the identity of the check.
void Say(TDiagBase& w, int kind, int line, const std::vector<wstr>& lines, const char* code,
         wview srcText = {}, Head head = Head::Line, int constNr = 0);

// As Say, for a message that the log does not repeat: printed, counted
// unless `count` is false, and kept in QuietLog for front ends.
void Tell(TDiagBase& w, int kind, int line, const std::vector<wstr>& lines, const char* code, Head head = Head::Line,
          bool count = true);

// The head alone, as Say builds it (for composing in tests and special
// checks).
wstr MsgHead(const TDiagBase& w, int kind, int line, Head head, int constNr = 0);

// The closing remarks of a pass.
void DspWarningKazuJ(TDiagBase& game, wview lead);
int DspWarningKazuE(TDiagBase& game, wview lead, char how);

// The warnings menu: true when the learner chose to run.
bool DspWarningsMenu(TDiagBase& game);

// One blank-delimited word from the console, at most `size` bytes.
std::string ReadMenuWord(size_t size);

// The message for an instruction written in the two-register form that does
// not take it.
void DspSyntaxErrorMsgWP(TDiagBase& w, int line, wview op);

extern TMsgLog* msgLog;
