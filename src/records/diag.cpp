#include "records/diag.h"

#include <cstdlib>

#include "records/console.h"

TMsgLog::TMsgLog() {
  ClassWord = {u"エラー： ", u"警告： ", u"仕様 ", u"注意： ", u"メモ； ", u"_DEBUG: ", u"",
               u"Error: ", u"Warning: ", u"Spec. ", u"Note: ", u"Memo: ", u"_DEBUG: ", u""};
}

const wstr& TMsgLog::ClassWordOf(int kind, int lang) const {
  int k = 6;
  switch (kind) {
    case kError: k = 0; break;
    case kWarning: k = 1; break;
    case kNote: k = 3; break;
    case kMemo: k = 4; break;
    default: break;
  }
  return ClassWord[(lang == 0 ? 0 : 7) + k];
}

void TMsgLog::DspMsgLog() const {
  for (const TMsgRec& r : WideLog) {
    for (const wstr& l : r.msgLines) {
      if (l.empty()) break;
      con::out << l << con::endl;
    }
    if (!r.tag.empty()) {
      con::out << r.tag << con::endl;
    } else {
      con::out << r.tagW << con::endl;
    }
  }
}

std::string QuoteA(std::string_view text) {
  std::string s = " \"";
  s.append(text);
  s.append("\" ");
  return s;
}

wstr QuoteW(wview text) {
  wstr s = u" \"";
  s.append(text);
  s.append(u"\" ");
  return s;
}

wstr WordNr(long long n) { return WNum(n); }

std::string PrgLocation(const std::string& file, int lineNr, std::string_view extra) {
  // The stem: the name without its folders and its extension.
  size_t slash = file.find_last_of("/\\");
  std::string stem = slash == std::string::npos ? file : file.substr(slash + 1);
  size_t dot = stem.find_last_of('.');
  if (dot != std::string::npos && dot > 0) stem.resize(dot);
  std::string s = stem;
  s += " line=";
  s += std::to_string(lineNr);
  s += ' ';
  s.append(extra);
  return s;
}

wstr MsgHead(const TDiagBase& w, int kind, int line, Head head, int constNr) {
  if (head == Head::None) return wstr();
  wstr s = w.Prefix(kind);
  if (head == Head::ClassOnly) return s;
  if (w.IsJ()) {
    s += WNum(line + 1);
    s += w.LineJW;
    if (head == Head::ConstNr) {
      s += WNum(constNr);
      s += w.ConstNrJW;
    }
  } else {
    s += w.LineEW;
    s += WNum(line + 1);
    s += u": ";
    if (head == Head::ConstNr) {
      s += w.ConstNrEW;
      s += WNum(constNr);
      s += u": ";
    }
  }
  return s;
}

namespace {

// Prints a message and fills its record, apart from the log it goes to.
TMsgRec PrintMsg(TDiagBase& w, int kind, int line, const std::vector<wstr>& lines, const char* code, Head head,
                 int constNr) {
  TMsgRec rec;
  rec.line = line;
  rec.kind = kind;
  rec.classWord = msgLog->ClassWordOf(kind, w.IsJ() ? 0 : 1);
  wstr first = MsgHead(w, kind, line, head, constNr);
  rec.headSize = first.size();
  if (!lines.empty()) first += lines[0];
  con::out << first << con::endl;
  rec.msgLines[0] = first;
  for (size_t k = 1; k < lines.size(); ++k) {
    con::out << lines[k] << con::endl;
    if (k < rec.msgLines.size()) rec.msgLines[k] = lines[k];
  }
  rec.code = code ? code : "";
  return rec;
}

}  // namespace

void Say(TDiagBase& w, int kind, int line, const std::vector<wstr>& lines, const char* code,
         wview srcText, Head head, int constNr) {
  TMsgRec rec = PrintMsg(w, kind, line, lines, code, head, constNr);
  ++w.Counter(kind);
  rec.srcText = wstr(srcText);
  msgLog->AddMsgW(rec);
}

void Tell(TDiagBase& w, int kind, int line, const std::vector<wstr>& lines, const char* code, Head head, bool count) {
  TMsgRec rec = PrintMsg(w, kind, line, lines, code, head, 0);
  if (count) ++w.Counter(kind);
  rec.before = msgLog->WideLog.size();
  msgLog->QuietLog.push_back(std::move(rec));
}

void DspWarningKazuJ(TDiagBase& game, wview lead) {
  con::out << lead << game.WarningKazu << u" 個の 警告 がある。" << con::endl;
  if (game.NoteKazu > 0) con::out << con::endl;
  if (game.MemoKazu > 0) con::out << con::endl;
}

// The error summary of a failed pass, in the game's language.
static void ErrorSummary(TDiagBase& game, wview lead) {
  if (game.IsJ()) {
    con::out << "\n\n" << lead << u" " << game.ErrorKazu << u" 個の エラー があるので修正が必要です。 " << con::endl;
  } else {
    con::out << "\n\n" << lead;
    if (game.ErrorKazu == 1) {
      con::out << "There is 1 error to be corrected. ";
    } else {
      con::out << "There are " << game.ErrorKazu << " errors to be corrected. ";
    }
    con::out << con::endl << "\nCorrect the codes and assemble them again.\n";
  }
}

int DspWarningKazuE(TDiagBase& game, wview lead, char how) {
  if (how == 'h') {
    if (game.ErrorKazu > 0) ErrorSummary(game, lead);
    return game.ErrorKazu;
  }
  con::out << lead << game.WarningKazu << (game.WarningKazu == 1 ? " warning: " : " warnings: ") << con::endl;
  return game.WarningKazu;
}

std::string ReadMenuWord(size_t size) { return con::ReadWord(size); }

bool DspWarningsMenu(TDiagBase& game) {
  con::out << con::endl << con::endl << con::endl;
  if (game.IsJ()) {
    con::out << u"メニュー:" << con::endl
             << u"１ このまま実行する。" << con::endl
             << u"２ メイン メニューにもどる。" << con::endl
             << u"メニュウ番号を入力してください。 " << con::endl;
  } else {
    con::out << "Menu:" << con::endl
             << "1.  Go on this execution. " << con::endl
             << "2.  Go back to Main Menu. " << con::endl
             << "Input a menu number. " << con::endl;
  }
  // Text or a bare line end converts to 0 and leaves without a run.
  std::string word = ReadMenuWord(40);
  return std::strtol(word.c_str(), nullptr, 10) == 1;
}

void DspSyntaxErrorMsgWP(TDiagBase& w, int line, wview op) {
  wstr o(op);
  if (w.IsJ()) {
    Say(w, kError, line,
        {o + u" 命令は " + o + u" r1, r2 形式をとらない。",
         o + u" r1,adr または " + o + u" r1, adr, r2(COMET2の仕様 1.2命令(1)）"},
        "DSEMWP01");
  } else {
    Say(w, kError, line,
        {o + u" cannot be written in a format of " + o + u" r1, r2. ",
         u"The 2nd operand of " + o + u" must be an address constant(or a label). (Spec.of COMET2 1.2 (1))"},
        "DSEMWP01");
  }
}
