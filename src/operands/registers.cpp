// Register operands: the first operand of register and jump instructions,
// the second register of a two-register form, the index register, and the
// advice about GR8 and GR9, which are labels and not registers.
#include "operands/operands.h"
#include "operands/rules_util.h"
#include "records/console.h"

using rules::At;
using rules::CutComma;
using rules::L;
using rules::SayJE;
using rules::StartsGR;

namespace {

bool IsRegName(wview s) { return s.size() == 3 && StartsGR(s, u'0', u'7'); }

bool OneOf(wview op, std::initializer_list<wview> list) {
  for (wview x : list)
    if (x == op) return true;
  return false;
}

}  // namespace

bool GRxLabelAll10NWCS(TCorrectScode& c, int line, bool needComma) {
  const wstr& slot = L(line).oprnd1ChH;
  bool comma = !slot.empty() && slot.back() == u',';
  wview reg = slot;
  if (comma) reg.remove_suffix(1);
  if (!IsRegName(reg)) return false;
  if (needComma && !comma) {
    const wstr r(reg);
    SayJE(c, kError, line, {r + u" の右にコンマが必要！"},
          {u"A comma is expected at the right side " + (u"of " + r + u". ")}, "6A1C0E01", QuoteW(slot));
  }
  return true;
}

int CkOpRegOprndNW(TCorrectScode& c, int line, wview mnemonic, wview nameJ, wview nameE) {
  (void)nameJ;
  (void)nameE;
  const wstr m(mnemonic);
  const wstr& slot = L(line).oprnd1ChH;
  if (slot.empty()) {
    SayJE(c, kError, line, {m + u" の右にレジスター名がない。"},
          {u"A general register(GR0-GR7) is expected " + (u"at the right side of " + m + u". ")}, "6A1C0E02");
    return 1;
  }
  if (StartsGR(slot, u'0', u'7')) {
    int before = c.ErrorKazu;
    if (GRxLabelAll10NWCS(c, line, true)) {
      if (At(slot, 3) == u'\0') {
        SayJE(c, kError, line, {m + u" 元を示すレジスター名又はアドレス名（ラベル）が必要。"},
              {u"An operand is expected " + (u"at the right side of " + m + u". ")}, "6A1C0E03");
      }
      return c.ErrorKazu - before;
    }
  }
  wstr q = QuoteW(slot);
  SayJE(c, kError, line, {q + m + u" の右に正しいレジスター名が必要。"},
        {q + u"An exact general register name is expected " + (u"at the right side of " + m + u". ")}, "6A1C0E04", q);
  return 1;
}

int CkOpAdrOprndNW(TCorrectScode& c, int line, wview mnemonic, wview nameJ, wview nameE) {
  (void)nameJ;
  (void)nameE;
  const SrcLineW& s = L(line);
  const wstr& slot = s.oprnd1ChH;
  int errors = 0;
  // The usual case: an operand that is no register.
  if (!slot.empty() && !StartsGR(slot, u'0', u'7')) return errors;
  const wstr m(mnemonic);
  const wstr& op = s.opStr;
  if (GRxLabelAll10NWCS(c, line, false)) {
    wstr reg = CutComma(slot);
    bool comma = !slot.empty() && slot.back() == u',';
    if (OneOf(op, {u"POP", u"JZE", u"JPL", u"JNZ", u"JMI", u"JOV", u"JUMP", u"CALL", u"SVC", u"PUSH", u"IN", u"OUT"})) {
      if (comma) {
        SayJE(c, kWarning, line, {reg + u" の右にコンマは不要です。"},
              {u"A comma at the right side " + (u"of " + reg + u" is of no use. ")}, "7B2D1F01", QuoteW(slot));
      } else {
        SayJE(c, kError, line,
              {op + u" は一つめオペランドとして" + u"レジスタ名をとらない。" + u"アドレス定数をオペランドとする。"},
              {u"The opcode " + op + u" does not take a general register "}, "7B2D1F02", QuoteW(slot));
        return 1;
      }
    }
    SayJE(c, kError, line, {m + u" は、一つ目のオペランドとして" + u"レジスター GR0-GR7 をとらない。"},
          {m + u" does not take one of the general registers " + u"GR0-GR7 as the 1st operand. "}, "7B2D1F03",
          QuoteW(slot));
    return 1;
  }
  if (!slot.empty()) return errors;
  if (OneOf(op, {u"JUMP", u"JZE", u"JNZ", u"JOV", u"JPL", u"JMI"})) {
    SayJE(c, kError, line, {m + u" は分岐先を示すアドレス名（ラベル）が必要。"},
          {u"An operand is expected " + (u"at the right side of the " + m + u". ") +
           u"The operand specifies a branching address. "},
          "7B2D1F04");
  } else if (op == u"CALL") {
    SayJE(c, kError, line,
          {m + u" 命令は呼び出し先を示すアドレス（ラベル）が必要。 " + u"ただし、他のプログラム名は指定できるが、" +
           u"他のプログラム内のラベルは指定できない。 "},
          {u"An operand is expected at the right side of the CALL. "}, "7B2D1F05");
  } else if (op == u"PUSH") {
    SayJE(c, kError, line,
          {m + u"命令はオペランドとして" + u"（スタック内容が格納してある）アドレス名（ラベル）が必要。"},
          {u"PUSH takes an address constant ( or a label) as an operand. " +
           wstr(u"The stacked contents are stored at the address. ")},
          "7B2D1F06");
  } else if (op == u"SVC") {
    SayJE(c, kError, line, {m + u" は" + u"オペランドとしてアドレス名（ラベル）が必要。"},
          {u"SVC takes an address constant(or a label) as an operand. "}, "7B2D1F07");
  } else {
    con::out << u"Error of else: " << op << con::endl;
    ++c.ErrorKazu;
  }
  return 1;
}

int CkOpPopOprndNW(TCorrectScode& c, int line, wview mnemonic) {
  wstr m(mnemonic);
  const wstr slot = L(line).oprnd1ChH;
  if (slot.empty()) {
    SayJE(c, kError, line, {m + u" の右にレジスター名がない。"},
          {u"There is not any GRn at the right side of " + m + u". "}, "8C3E2001");
    return 1;
  }
  if (GRxLabelAll10NWCS(c, line, false)) return 0;
  SayJE(c, kError, line, {slot + u": " + m + u" の右に正しいレジスター名が必要。"},
        {u"An exact register name is expected " + (u"at the right side of " + m + u". ")}, "8C3E2002",
        QuoteW(slot));
  return 1;
}

int r2NWCS(TCorrectScode& c, int line) {
  SrcLineW& s = L(line);
  wstr& r = s.oprnd2ChH;
  const char16_t c4 = At(r, 3), c5 = At(r, 4);
  if (c4 == u',' && c5 == u'\0' && s.oprnd3ChH.empty()) {
    SayJE(c, kWarning, line,
          {u"２つ目のレジスターの右にコンマは不要です。" + wstr(u"２つ目のレジスターの右には空白又はセミコロンの記述が適正です。") +
           u"空白以降はコメントとなる。 "},
          {u"A comma is of no use at the right side of the 2nd operand register. " +
           wstr(u"Either a space or a semicolon is suitable at the right side of the 2nd operand register. ") +
           u"The following description is regarded as a comment in the line. "},
          "4F3F5969", QuoteW(r));
    return 0;
  }
  if (IsBlankW(c4) && c5 == u',') {
    r.resize(3);
    // The English memo carries the Japanese line word behind its prefix.
    if (c.IsJ()) {
      Say(c, kMemo, line, {u"２つ目のレジスターの右に空白があれば" + wstr(u"以降はコメントとみなされる。")}, "B1EA420D",
          QuoteW(r));
    } else {
      Say(c, kMemo, line,
          {c.MemoEW + c.LineJW + WNum(line + 1) + u": " + u"When there is a space at the right side " +
           u"of the 2nd operand register, " + u"the following in the line is regarded as a comment. "},
          "B1EA420D", QuoteW(r), Head::None);
    }
    s.oprnd3ChH.clear();
    s.oprnd4ChH.clear();
    return 0;
  }
  if (c4 == u',' && c5 == u'\0' && !s.oprnd3ChH.empty()) {
    r.resize(3);
    s.oprnd3ChH.clear();
    SayJE(c, kWarning, line,
          {u"２つ目のレジスターの右にコンマは不要です。" + wstr(u"コンマがあるとオペランドがさらに続くと読める。") +
           u"２つ目のレジスターの右には空白又はセミコロンの記述が適正です。" + u"空白以降はコメントとなる。 "},
          {u"The comma is of no use " + wstr(u"at the right side of the 2nd operand register. ") +
           u"Either a space or a semicolon is suitable " + u"at the right side of the 2nd operand register. " +
           u"The following in the line is regarded as a comment. "},
          "9FCBFA30", QuoteW(r));
    return 0;
  }
  bool gr = r.size() >= 2 && r[0] == u'G' && r[1] == u'R';
  if (gr && r.size() <= 3 && !StartsGR(r, u'8', u'9')) return 0;
  wstr q = QuoteW(r);
  if (r.size() == 3 && StartsGR(r, u'8', u'9')) {
    SayJE(c, kError, line, {q + u"レジスタは GR0 - GR7 だけです。 "},
          {q + u"The comet2 has eight general registers of GR0-GR7. " +
           u"Neither GR8 nor GR9 is a general resister of comet2. "},
          "8602C786", q);
    return 1;
  }
  if (gr && r.size() > 3) {
    SayJE(c, kError, line, {q + u"レジスタ名 (GR0 - GR7) が正しくない。"},
          {q + u"An exact general register name is expected. "}, "58BD44FA", q);
    return 1;
  }
  if (gr) return 0;
  SayJE(c, kError, line, {q + u"レジスタ名 (GR0 - GR7) が正しくない。"},
        {q + u"An exact general register name is expected. "}, "81296434", q);
  return 1;
}

int AnalystIndexRegNWCS(TCorrectScode& c, int line, int slotNr) {
  const SrcLineW& s = L(line);
  const wstr& x = slotNr == 2 ? s.oprnd2ChH : slotNr == 3 ? s.oprnd3ChH : s.oprnd4ChH;
  if (x.empty()) return 0;
  int hits = 0;
  // Advice about GR0 and GR8/GR9 is given in words only, like the other
  // register advice; a digit first and a small letter count as errors.
  if (slotNr == 3 && StartsGR(x, u'0', u'0')) {
    con::out << MsgHead(c, kError, line, Head::Line)
             << (c.IsJ() ? u" GR0 は指標レジスタとしては使えない。" : u"GR0 is not allowed to be an index register. ")
             << con::endl;
    ++hits;
  }
  if (slotNr == 3 && StartsGR(x, u'8', u'9')) {
    con::out << MsgHead(c, kError, line, Head::Line);
    if (c.IsJ()) {
      con::out << u" 指標レジスタに使えるのは GR1-GR7 の7個だけです。"
               << u" GR8-GR9 はCASL2のレジスタとして存在しないので使えない。 ";
    } else {
      con::out << u"Neither GR8 nor GR9 is a general register of comet2. "
               << u"Each of the GR1-GR7 can be used as an index register. "
               << u"GR0 is not allowed to be an index register. ";
    }
    con::out << con::endl;
    ++hits;
  }
  if (rules::IsDigitW(x[0])) {
    SayJE(c, kError, line, {x + u": " + u"レジスタ名（やラベル）の先頭文字に数字は使えない。"},
          {x + u": " + u"The 1st character of a label must be a capital " + u"alphabetical letter. " +
           u"A numeral cannot be used as the 1st letter of a label. "},
          "9D4E3001", QuoteW(x));
    ++hits;
  }
  bool small = false;
  for (char16_t ch : x) small = small || rules::IsLowerW(ch);
  if (small) {
    SayJE(c, kError, line, {x + u": " + u"小文字がある。 小文字は CASL2 では使えない。"},
          {x + u": " + u"There is a small letter in it. " + u"A small letter is not allowed to be used in casl2. "},
          "9D4E3002", QuoteW(x));
    ++hits;
  }
  return hits;
}

int RegXNWCS(TCorrectScode& c, int line, int slotNr) {
  SrcLineW& s = L(line);
  if (slotNr < 2 || slotNr > 4) return 1;
  const wstr& adr = slotNr == 2 ? s.oprnd1ChH : slotNr == 3 ? s.oprnd2ChH : s.oprnd3ChH;
  wstr& x = slotNr == 2 ? s.oprnd2ChH : slotNr == 3 ? s.oprnd3ChH : s.oprnd4ChH;
  // What CkAdrOperandNWCS left: a comma behind the address operand or not.
  const int flag = c.ChFlag;
  if (flag != 0 && flag != 1) {
    con::out << "Error of else! " << adr << "  -1==ChFlag  GetCommaAriFlagForNextOprnd(...); CommaNextOperand"
             << con::endl;
  }
  if (flag == 1 && x.empty()) {
    wstr q = QuoteW(adr);
    SayJE(c, kError, line,
          {q + u": " + u"  二つめのオペランドの右にコンマがあるのに" + u"コンマの右に指標レジスタの記述がない。 "},
          {q + u": " + u"  Although there is a comma at the right side " + u"of the 2nd operand, there is no description " +
           u"of an index register follwing the comma. "},
          "A3C5E001", q);
    return 1;
  }
  if (flag != 1) {
    if (flag != 0) con::out << "Error of else! " << "RegX(), RegX" << con::endl;
    if (!x.empty()) {
      wstr q = QuoteW(x);
      SayJE(c, kError, line, {q + u": " + u"第２オペランドの右にコンマ" + u"あるいはコメント記号（；）を" + u"明示すること。 "},
            {q + u": " + u"Either a comma or a comment mark(;)is " + u"expected at the right side " + u"of the 2nd operand. "},
            "A3C5E002", q);
      return 1;
    }
  }
  if (x.empty()) {
    s.oprndCount = 2;
    s.word_kazu = 2;
    return 0;
  }
  const char16_t d = At(x, 3);
  bool regForm = StartsGR(x, u'0', u'7') && (d == u'\0' || d == u',' || IsBlankW(d));
  if (!regForm) {
    AnalystIndexRegNWCS(c, line, slotNr);
    wstr q = QuoteW(x);
    SayJE(c, kError, line, {q + u" 指標レジスター GR1-GR7 が正しく記述されていない。"},
          {q + u"  An exact description of Index Register(GR1-GR7) is " + u"expected. "}, "A3C5E003", q);
    return 1;
  }
  if (x[2] == u'0') {
    SayJE(c, kError, line, {u"指標レジスターに GR0 は使えない。 "}, {u"GR0 cannnot be used as an index register. "},
          "A3C5E004", QuoteW(x));
    return 1;
  }
  if (d == u',') {
    SayJE(c, kWarning, line, {u"指標レジスターの右のコンマは不要です。"},
          {u"A comma is of no use at the right side " + wstr(u"of the the index register. ")}, "A3C5E005", QuoteW(x));
  }
  s.oprndCount = slotNr;
  s.first_word = (s.first_word & ~0xF) | (x[2] - u'0');
  s.word_kazu = 2;
  return 0;
}

int AnalystGR89NWCS(TCorrectScode& c, int line, wview mnemonic, wview kind) {
  (void)mnemonic;
  const wstr& r = L(line).oprnd2ChH;
  if (!(r.size() == 3 && StartsGR(r, u'8', u'9'))) return 0;
  bool warn = kind == u"Warning";
  wstr j = r + u"レジスタは GR0-GR7 の８個である。 " + u"CASL2 には GR8-GR9 のレジスタは無い。 " +
           u"GR0-GR7 は予約語だが、GR8-GR9 は予約語ではない。 " +
           (warn ? u"GR8-GR9 の記述はラベルとみなされる。  " : u"GR8-GR9 の記述はラベルとみなされるのでエラーとなる。  ") +
           u"混乱をさけるため GR8-GR9 をラベルとして使わないほうがよい。（推奨） ";
  wstr e = r + u"The comet2 has eight general registers of GR0-GR7. " +
           u"Neither GR8 nor GR9 is a general register of comet2. " +
           u"GR0-GR7 are reserved words, but GR8-GR9 are not reserved ones. " +
           u"A description of GR8 or GR9 is regarded as a label. " + u"Using GR8-GR9 as a label would decrease readability " +
           u"of the source codes.  It would be better for you " + u"not to use GR8 or GR9 as a label. (Recommended) ";
  SayJE(c, warn ? kWarning : kError, line, {j}, {e}, warn ? "6E8F9001" : "6E8F9002", QuoteW(r));
  return 1;
}
