// The macro instructions: the operand checks of IN and OUT, RPUSH and RPOP in
// the dispatch, and the expansion of IN into its twelve words.
#include "operand_data_fixture.h"

namespace {

using opdtest::Captured;
using opdtest::OpdTest;

class OperandDataMacroTest : public OpdTest {
 protected:
  std::string Head(const char* kind, int lineNr) { return std::string(kind) + " : line " + std::to_string(lineNr) + ": "; }
};

TEST_F(OperandDataMacroTest, TwoLabelsAreClean) {
  Captured c;
  int i = Line(u"", u"IN", {u"BUF,", u"LEN"});
  int o = Line(u"", u"OUT", {u"BUF ,", u"LEN "});
  L(o).oprnd3ChH = u"rest";
  EXPECT_EQ(macro2NWCS(*cs, i), 0);
  EXPECT_EQ(macro2NWCS(*cs, o), 0);
  EXPECT_EQ(L(i).word_kazu, 12);
  EXPECT_EQ(L(o).oprnd1ChH, u"BUF,");
  EXPECT_EQ(L(o).oprnd2ChH, u"LEN");
  EXPECT_EQ(L(o).oprnd3ChH, u"");
  EXPECT_EQ(c.out, "");
}

TEST_F(OperandDataMacroTest, OneOperandOnly) {
  Captured c;
  int a = Line(u"", u"OUT", {u"BUF"});
  int b2 = Line(u"", u"IN", {u"BUF "});
  int c2 = Line(u"", u"IN", {u"BUF,"});  // the comma is dropped; the expansion tells the rest
  EXPECT_EQ(macro2NWCS(*cs, a), -1);
  EXPECT_EQ(macro2NWCS(*cs, b2), -1);
  EXPECT_EQ(macro2NWCS(*cs, c2), 0);
  EXPECT_EQ(L(c2).oprnd1ChH, u"BUF");
  EXPECT_EQ(cs->ErrorKazu, 2);
  EXPECT_EQ(cs->MemoKazu, 1);
  EXPECT_EQ(c.out, Head("Error", 1) +
                       "A comma is expected at the right side of the first operand. Each of the IN and OUT macro "
                       "instructions takes two operands. \n" +
                       Head("Error", 2) + "There is only one operand. Both IN and OUT instruction take two operands. \n" +
                       "Note :  行目： 2: When there is a space at the right side of the operand, the followings in the "
                       "line are regarded as a comment. \n");
  c.out.clear();
  SetLang(0);
  macro2NWCS(*cs, a);
  macro2NWCS(*cs, b2);
  EXPECT_EQ(c.out,
            "エラー： 1 行目： マクロ命令の１番目のオペランドの右にコンマが必要です。IN と OUT のマクロ命令はオペランドを2つとる。\n"
            "エラー： 2 行目： オペランドが一つしかない。IN と OUT 命令はオペランドを2つとる。\n"
            "メモ： 2 行目： オペランドの右に空白があると以降はコメントとみなされる。\n");
}

TEST_F(OperandDataMacroTest, ACommaBehindTheSecondOperand) {
  Captured c;
  int i = Line(u"", u"IN", {u"BUF,", u"LEN,"});
  EXPECT_EQ(macro2NWCS(*cs, i), 0);
  EXPECT_EQ(L(i).oprnd2ChH, u"LEN");
  EXPECT_EQ(cs->WarningKazu, 1);
  EXPECT_EQ(c.out, Head("Warning", 1) + "A comma at the right side of the second operand is of no use.  It should be deleted. \n");
}

TEST_F(OperandDataMacroTest, OperandsMustBeLabels) {
  Captured c;
  int r = Line(u"", u"IN", {u"GR1,", u"LEN"});
  int h = Line(u"", u"IN", {u"#1000,", u"LEN"});
  int o = Line(u"", u"OUT", {u"BUF,", u"=5"});
  int l = Line(u"", u"OUT", {u"ABCDEFGHI,", u"LEN"});
  int x = Line(u"", u"OUT", {u"B-F,", u"LEN"});
  for (int i : {r, h, o, l, x}) EXPECT_EQ(macro2NWCS(*cs, i), -1);
  EXPECT_EQ(cs->ErrorKazu, 5);
  EXPECT_EQ(c.out, Head("Error", 1) +
                       "GR1 ; Every reserved words (GR0-GR7) cannot be used as an operand of the macro instruction. An "
                       "operand of a macro must be a label in the program. (Spec. 2-4) \n" +
                       Head("Error", 2) + "An operand of IN must be a label in the program. (Spec. 2-4) \n" +
                       Head("Error", 3) + "An operand of OUT must be a label in the program. (Spec. 2-4) \n" +
                       Head("Error", 4) +
                       "An address constant(or a label) must be written in eight letters or less. There are 9 "
                       "characters in  \"ABCDEFGHI\" . \n" +
                       Head("Error", 5) + "There is non-capital and non-alphanumeric character in the address constant. \n");
  c.out.clear();
  SetLang(0);
  for (int i : {r, h, l, x}) macro2NWCS(*cs, i);
  EXPECT_EQ(c.out,
            "エラー： 1 行目： GR1 マクロ命令のオペランドに予約語( GR0 - GR7 )は使えない。ラベル で指定する。（仕様2-4）\n"
            "エラー： 2 行目： IN と OUT のオペランドはラベルで指定する。（仕様２・４）\n"
            "エラー： 4 行目： アドレス定数は８文字以内。9 文字ある。\n"
            "エラー： 5 行目： B-F: アドレス定数に英大文字と数字以外の文字がある。\n");
}

TEST_F(OperandDataMacroTest, OnlyInAndOutAreMacrosOfTwoOperands) {
  Captured c;
  int i = Line(u"", u"LD", {u"BUF,", u"LEN"});
  EXPECT_EQ(macro2NWCS(*cs, i), -1);
  int r = Line(u"", u"LD", {});
  EXPECT_EQ(macroR2NWCS(*cs, r), -1);
  EXPECT_EQ(c.out, Head("Error", 1) + "LD is not a macro instruction in casl2. \n" + Head("Error", 2) +
                       "LD is not a macro instruction. \n");
  c.out.clear();
  SetLang(0);
  macroR2NWCS(*cs, r);
  EXPECT_EQ(c.out, "エラー： 2 行目： 該当するマクロ命令がない。\n");
}

TEST_F(OperandDataMacroTest, RpushAndRpopTakeNoOperand) {
  Captured c;
  int push = Line(u"", u"RPUSH", {});
  int pop = Line(u"", u"RPOP", {});
  int bad = Line(u"", u"RPUSH", {u"Comment"});
  EXPECT_EQ(macroR2NWCS(*cs, push), 0);
  EXPECT_EQ(macroR2NWCS(*cs, pop), 0);
  EXPECT_EQ(L(push).word_kazu, 14);
  EXPECT_EQ(L(pop).word_kazu, 7);
  EXPECT_EQ(L(push).oprndCount, 0);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(macroR2NWCS(*cs, bad), -1);
  EXPECT_EQ(cs->ErrorKazu, 1);
}

TEST_F(OperandDataMacroTest, TheExpansionOfIn) {
  Captured c;
  int s = Line(u"P", u"START", {}, 1);
  int in = Line(u"", u"IN", {u"BUF,", u"LEN"}, 12);
  int buf = Line(u"BUF", u"DS", {u"256"}, 256);
  int len = Line(u"LEN", u"DS", {u"1"}, 1);
  Program(u"P", s);
  L(buf).abAdr = 13;
  L(len).abAdr = 269;
  L(in).rlAdr = L(in).abAdr = 1;
  EXPECT_EQ(InOut1NWCS(*cs, in), 0);
  std::vector<int32_t> words;
  for (auto& w : L(in).vecWord) words.push_back(w.wordCode);
  EXPECT_EQ(words, (std::vector<int32_t>{0x7001, 0, 0x7002, 0, 0x1210, 13, 0x1220, 269, 0xF000, 1, 0x7120, 0x7110}));
  EXPECT_EQ(L(in).vecWord[11].abAdr, 12);
  EXPECT_EQ(L(buf).labelUsed, 1);
  EXPECT_EQ(L(len).labelUsed, 1);
  EXPECT_EQ(c.out, "");
}

TEST_F(OperandDataMacroTest, TheExpansionTellsMissingAndUnknownLabels) {
  Captured c;
  int s = Line(u"P", u"START", {}, 1);
  int e = Line(u"", u"IN", {u"BUF", u""}, 12);
  int n = Line(u"", u"OUT", {u"buf,", u"LEN"}, 12);
  int u = Line(u"", u"OUT", {u"NOBUF,", u"LEN"}, 12);
  Line(u"BUF", u"DS", {u"1"}, 1);
  Line(u"LEN", u"DS", {u"1"}, 1);
  Program(u"P", s);
  EXPECT_EQ(InOut1NWCS(*cs, e), -1);
  EXPECT_EQ(InOut1NWCS(*cs, n), -1);
  EXPECT_EQ(InOut1NWCS(*cs, u), -1);
  EXPECT_EQ(L(u).vecWord.size(), 12u);
  EXPECT_EQ(cs->ErrorKazu, 3);
  EXPECT_EQ(c.out, Head("Error", 2) + "IN takes two operands. \n" + Head("Error", 3) +
                       " \"buf\"  is not an address constant. \n" + Head("Error", 4) +
                       " \"NOBUF\"  is an undefined address constant. Neither label nor program name is identical with "
                       "the address constant. Make sure of your spelling of  \"NOBUF\" . \n");
  c.out.clear();
  SetLang(0);
  InOut1NWCS(*cs, e);
  InOut1NWCS(*cs, n);
  InOut1NWCS(*cs, u);
  EXPECT_EQ(c.out,
            "エラー： 2 行目： IN はオペランドを二つ必要とする。 \n"
            "エラー： 3 行目：  \"buf\"  はアドレス定数ではない。\n"
            "エラー： 4 行目： アドレス定数  \"NOBUF\"  と一致するラベルが存在しない。ラベルのミススペリングではありませんか？ \n");
}

}  // namespace
