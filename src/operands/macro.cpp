// The macro instructions IN, OUT, RPUSH and RPOP: their operand checks in
// the dispatch, and their expansion into a fixed list of machine words in the
// address pass (no source line is generated).
#include <vector>

#include "codegen/instr_table.h"
#include "constants/opd_line.h"
#include "constants/opd_text.h"
#include "operands/adr_const.h"
#include "operands/opd_lookup.h"
#include "operands/operands.h"
#include "records/console.h"
#include "records/diag.h"
#include "records/singletons.h"

using namespace opd;

namespace {

bool EndsWith(const wstr& s, wview tail) { return s.size() >= tail.size() && wview(s).substr(s.size() - tail.size()) == tail; }

// The words of the expansions, from the instruction table.
int32_t PushWord(int x) { return InstrCode("PUSH", OpForm::AdrX) << 8 | x; }
int32_t PopWord(int r) { return InstrCode("POP", OpForm::R) << 8 | r << 4; }
int32_t LadWord(int r) { return InstrCode("LAD", OpForm::RAdrX) << 8 | r << 4; }
int32_t SvcWord() { return InstrCode("SVC", OpForm::AdrX) << 8; }

void NoMacro(TCorrectScode& c, int line, const wstr& op, wview english) {
  if (c.IsJ()) {
    Say(c, kError, line, {u"該当するマクロ命令がない。"}, "MC19036E", QuoteW(op));
  } else {
    Say(c, kError, line, {op + wstr(english)}, "MC19036E", QuoteW(op));
  }
}

}  // namespace

// ---------------------------------------------------------------------------
int macro2NWCS(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  ln.word_kazu = 12;
  wstr& s1 = ln.oprnd1ChH;
  wstr& s2 = ln.oprnd2ChH;
  bool skipOne = false;
  if (s1.size() >= 2 && s1.back() == u',' && IsBlank(s1[s1.size() - 2])) {
    s1.erase(s1.size() - 2, 1);
  } else if (!s1.empty() && s1.back() == u',' && s2.empty()) {
    s1.pop_back();
    skipOne = true;
  }
  if (!skipOne && s2.empty() && (s1.empty() || s1.back() != u',')) {
    if (!s1.empty() && IsBlank(s1.back())) {
      if (c.IsJ()) {
        Say(c, kError, line, {u"オペランドが一つしかない。IN と OUT 命令はオペランドを2つとる。"}, "MC11036E", QuoteW(s1));
        Say(c, kMemo, line, {u"オペランドの右に空白があると以降はコメントとみなされる。"}, "MC12036M", QuoteW(s1));
      } else {
        Say(c, kError, line, {u"There is only one operand. Both IN and OUT instruction take two operands. "},
            "MC11036E", QuoteW(s1));
        // The English memo carries the Japanese line word.
        Say(c, kMemo, line,
            {c.MemoEW + c.LineJW + WNum(line + 1) +
             u": When there is a space at the right side of the operand, "
             u"the followings in the line are regarded as a comment. "},
            "MC12036M", QuoteW(s1), Head::None);
      }
    } else {
      if (c.IsJ()) {
        Say(c, kError, line,
            {u"マクロ命令の１番目のオペランドの右にコンマが必要です。IN と OUT のマクロ命令はオペランドを2つとる。"},
            "MC10036E", QuoteW(s1));
      } else {
        Say(c, kError, line,
            {u"A comma is expected at the right side of the first operand. "
             u"Each of the IN and OUT macro instructions takes two operands. "},
            "MC10036E", QuoteW(s1));
      }
    }
    return -1;
  }
  if (EndsWith(s2, u" ,") || EndsWith(s2, u"\t,")) {
    s2.erase(s2.size() - 2);
  } else if (!s2.empty() && s2.back() == u',') {
    s2.pop_back();
    if (c.IsJ()) {
      Say(c, kWarning, line, {u"二つ目のオペランドの右のコンマは不要です。空白が適切です。 "}, "MC13036W", QuoteW(s2));
    } else {
      Say(c, kWarning, line, {u"A comma at the right side of the second operand is of no use.  It should be deleted. "},
          "MC13036W", QuoteW(s2));
    }
  } else if (!s2.empty() && IsBlank(s2.back())) {
    while (!s2.empty() && IsBlank(s2.back())) s2.pop_back();
    ln.oprnd3ChH.clear();
  }
  if (ln.opStr != u"OUT" && ln.opStr != u"IN") {
    NoMacro(c, line, ln.opStr, u" is not a macro instruction in casl2. ");
    return -1;
  }
  ln.word_kazu = 12;
  // An error in the first operand ends the check of the line.
  if (InOut1NWCS(c, line, 1) != 0) return -1;
  return InOut1NWCS(c, line, 2);
}

// ---------------------------------------------------------------------------
int macroR2NWCS(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  int wk = 0;
  if (ln.opStr == u"RPUSH") {
    wk = 14;
  } else if (ln.opStr == u"RPOP") {
    wk = 7;
  } else {
    NoMacro(c, line, ln.opStr, u" is not a macro instruction. ");
    return -1;
  }
  ln.word_kazu = wk;
  if (OpNoOperandNW(c, line, ln.oprnd1ChH) != 0) return -1;
  ln.oprnd1ChH.clear();
  ln.oprnd2ChH.clear();
  ln.oprnd3ChH.clear();
  ln.oprndCount = 0;
  ln.word_kazu = wk;
  return 0;
}

// ---------------------------------------------------------------------------
int InOut1NWCS(TCorrectScode& c, int line, int nr) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  wstr t = CutComma(nr == 1 ? ln.oprnd1ChH : ln.oprnd2ChH);
  wstr q = QuoteW(t);
  char16_t f = At(t, 0);
  if (IsUpper(f)) {
    for (char16_t ch : t) {
      if (!IsUpper(ch) && !IsDigit(ch)) {
        if (c.IsJ()) {
          Say(c, kError, line, {t + u": アドレス定数に英大文字と数字以外の文字がある。"}, "MC20036E", q);
        } else {
          Say(c, kError, line,
              {u"There is non-capital and non-alphanumeric character in the address constant. "}, "MC20036E", q);
        }
        return -1;
      }
    }
    if (t.size() <= 8 && t.size() == 3 && t[0] == u'G' && t[1] == u'R' && t[2] >= u'0' && t[2] <= u'7') {
      if (c.IsJ()) {
        Say(c, kError, line,
            {u" マクロ命令のオペランドに予約語( GR0 - GR7 )は使えない。ラベル で指定する。（仕様2-4）"}, "MC21036E", q);
      } else {
        Say(c, kError, line,
            {u" ; Every reserved words (GR0-GR7) cannot be used as an operand of the macro instruction. "
             u"An operand of a macro must be a label in the program. (Spec. 2-4) "},
            "MC21036E", q);
      }
      return -1;
    }
    if (t.size() > 8) {
      if (c.IsJ()) {
        Say(c, kError, line, {u"アドレス定数は８文字以内。" + WNum(t.size()) + u" 文字ある。"}, "MC22036E", q);
      } else {
        Say(c, kError, line,
            {u"An address constant(or a label) must be written in eight letters or less. There are " +
             WNum(t.size()) + u" characters in " + q + u". "},
            "MC22036E", q);
      }
      return -1;
    }
    return 0;
  }
  if (f == u'#' || IsDigit(f) || f == u'=') {
    if (c.IsJ()) {
      Say(c, kError, line, {u"IN と OUT のオペランドはラベルで指定する。（仕様２・４）"}, "MC23036E", q);
    } else if (ln.opStr == u"IN") {
      Say(c, kError, line, {u"An operand of IN must be a label in the program. (Spec. 2-4) "}, "MC23036E", q);
    } else {
      Say(c, kError, line, {u"An operand of OUT must be a label in the program. (Spec. 2-4) "}, "MC23036E", q);
    }
    return -1;
  }
  return 0;
}

// ---------------------------------------------------------------------------
int InOut1NWCS(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  int prg = PrgOfLineNW(line);
  int32_t adr[2] = {0, 0};
  int rc = 0;
  for (int k = 0; k < 2 && rc == 0; ++k) {
    wstr t = CutComma(k == 0 ? ln.oprnd1ChH : ln.oprnd2ChH);
    wstr q = QuoteW(t);
    if (t.empty()) {
      if (c.IsJ()) {
        Say(c, kError, line, {ln.opStr + u" はオペランドを二つ必要とする。 "}, "MC30036E", q);
      } else {
        Say(c, kError, line, {ln.opStr + u" takes two operands. "}, "MC30036E", q);
      }
      rc = -1;
    } else if (!IsUpper(t[0])) {
      if (c.IsJ()) {
        Say(c, kError, line, {q + u" はアドレス定数ではない。"}, "MC31036E", q);
      } else {
        Say(c, kError, line, {q + u" is not an address constant. "}, "MC31036E", q);
      }
      rc = -1;
    } else {
      int lab = prg >= 0 ? FindLabelNW(prg, t) : -1;
      if (lab < 0) {
        if (c.IsJ()) {
          Say(c, kError, line,
              {u"アドレス定数 " + q + u" と一致するラベルが存在しない。ラベルのミススペリングではありませんか？ "},
              "MC32036E", q);
        } else {
          Say(c, kError, line,
              {q + u" is an undefined address constant. "
                   u"Neither label nor program name is identical with the address constant. "
                   u"Make sure of your spelling of " +
               q + u". "},
              "MC32036E", q);
        }
        rc = -1;
      } else {
        adr[k] = L(lab).abAdr;
        L(lab).labelUsed = 1;
      }
    }
  }
  const int rl = ln.rlAdr, ab = ln.abAdr;
  const int32_t svcNr = ln.opStr == u"IN" ? 1 : 2;
  const int32_t words[12] = {PushWord(1), 0, PushWord(2), 0, LadWord(1), adr[0], LadWord(2), adr[1],
                             SvcWord(),   svcNr, PopWord(2), PopWord(1)};
  ln.vecWord.clear();
  for (int k = 0; k < 12; ++k) ln.vecWord.push_back(MakeWord(words[k], rl + k, ab + k, line, k == 0 ? u"MacroINorOUT" : u""));
  return rc;
}

// ---------------------------------------------------------------------------
int ExpandRPushNW(int line, int& rlAdr, int& abAdr) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  ln.word_kazu = 14;
  ln.oprndCount = 0;
  ln.rlAdr = rlAdr;
  ln.abAdr = abAdr;
  ln.vecWord.clear();
  for (int n = 1; n <= 7; ++n) {
    ln.vecWord.push_back(MakeWord(PushWord(n), rlAdr++, abAdr++, line, u"A part of RPOP"));
    ln.vecWord.push_back(MakeWord(0, rlAdr++, abAdr++, line, u"An adr part of RPOP"));
  }
  return 0;
}

int ExpandRPopNW(int line, int& rlAdr, int& abAdr) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  ln.word_kazu = 7;
  ln.oprndCount = 0;
  ln.rlAdr = rlAdr;
  ln.abAdr = abAdr;
  ln.vecWord.clear();
  for (int n = 7; n >= 1; --n) ln.vecWord.push_back(MakeWord(PopWord(n), rlAdr++, abAdr++, line, u"A part of of RPOP"));
  return 0;
}
