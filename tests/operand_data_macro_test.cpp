// The macro instructions: the operand checks of IN and OUT, RPUSH and RPOP in
// the dispatch, and the expansion of IN and OUT into their twelve words.
#include "operand_data_fixture.h"

namespace opdtest {

using OperandDataMacroTest = OpdTest;

// "check|op|operands...": check 2 is macro2NWCS, R macroR2NWCS, X the
// expansion, in a program with labels BUF and LEN; v = the word count.
TEST_F(OperandDataMacroTest, Messages) {
  Rows({{u"2|IN|BUF,|LEN", "", "", "", 12}, {u"2|IN|BUF,", "", "", "", 12},  // the comma is dropped
        {u"R|RPUSH", "", "", "", 14}, {u"R|RPOP", "", "", "", 7}, {u"X|IN|BUF,|LEN", ""},
        {u"2|OUT|BUF", E + "A comma is expected at the right side of the first operand. Each of the IN and OUT macro "
                           "instructions takes two operands. \n",
         J + "マクロ命令の１番目のオペランドの右にコンマが必要です。IN と OUT のマクロ命令はオペランドを2つとる。\n",
         "MC10036E"},
        {u"2|IN|BUF ", E + "There is only one operand. Both IN and OUT instruction take two operands. \n"
                           "Note :  行目： 2: When there is a space at the right side of the operand, the followings in "
                           "the line are regarded as a comment. \n",
         J + "オペランドが一つしかない。IN と OUT 命令はオペランドを2つとる。\n"
             "メモ： 2 行目： オペランドの右に空白があると以降はコメントとみなされる。\n",
         "MC11036E MC12036M"},
        {u"2|IN|BUF,|LEN,", "Warning : line 2: A comma at the right side of the second operand is of no use.  It should "
                            "be deleted. \n",
         "警告： 2 行目： 二つ目のオペランドの右のコンマは不要です。空白が適切です。 \n", "MC13036W"},
        {u"2|IN|GR1,|LEN", E + " ; Every reserved words (GR0-GR7) cannot be used as an operand of the macro "
                               "instruction. An operand of a macro must be a label in the program. (Spec. 2-4) \n",
         J + " マクロ命令のオペランドに予約語( GR0 - GR7 )は使えない。ラベル で指定する。（仕様2-4）\n", "MC21036E"},
        // An error in the first operand ends the check: #12 is not looked at.
        {u"2|OUT|GR7,|#12", E + " ; Every reserved words (GR0-GR7) cannot be used as an operand of the macro "
                                "instruction. An operand of a macro must be a label in the program. (Spec. 2-4) \n"},
        {u"2|IN|#1000,|LEN", E + "An operand of IN must be a label in the program. (Spec. 2-4) \n",
         J + "IN と OUT のオペランドはラベルで指定する。（仕様２・４）\n", "MC23036E"},
        {u"2|OUT|BUF,|=5", E + "An operand of OUT must be a label in the program. (Spec. 2-4) \n"},
        {u"2|OUT|ABCDEFGHI,|LEN", E + "An address constant(or a label) must be written in eight letters or less. There "
                                      "are 9 characters in  \"ABCDEFGHI\" . \n",
         J + "アドレス定数は８文字以内。9 文字ある。\n", "MC22036E"},
        {u"2|OUT|B-F,|LEN", E + "There is non-capital and non-alphanumeric character in the address constant. \n",
         J + "B-F: アドレス定数に英大文字と数字以外の文字がある。\n", "MC20036E"},
        {u"2|LD|BUF,|LEN", E + "LD is not a macro instruction in casl2. \n", J + "該当するマクロ命令がない。\n", "MC19036E"},
        {u"R|LD", E + "LD is not a macro instruction. \n", J + "該当するマクロ命令がない。\n"},
        {u"X|IN|BUF|", E + "IN takes two operands. \n", J + "IN はオペランドを二つ必要とする。 \n", "MC30036E"},
        {u"X|OUT|buf,|LEN", E + " \"buf\"  is not an address constant. \n", J + " \"buf\"  はアドレス定数ではない。\n",
         "MC31036E"},
        {u"X|OUT|NOBUF,|LEN", E + " \"NOBUF\"  is an undefined address constant. Neither label nor program name is "
                                  "identical with the address constant. Make sure of your spelling of  \"NOBUF\" . \n",
         J + "アドレス定数  \"NOBUF\"  と一致するラベルが存在しない。ラベルのミススペリングではありませんか？ \n",
         "MC32036E"}},
       [&](const Case& r) {
         auto f = Fields(r.in);
         int s = Line(u"P", u"START", {}, 1);
         int i = Line(u"", f[1], std::vector<std::u16string>(f.begin() + 2, f.end()),
                      f[0] == u"X" ? 12 : 0);
         Line(u"BUF", u"DS", {u"1"}, 1);
         Line(u"LEN", u"DS", {u"1"}, 1);
         Program(u"P", s);
         int rc = f[0] == u"2" ? macro2NWCS(*cs, i) : f[0] == u"R" ? macroR2NWCS(*cs, i) : InOut1NWCS(*cs, i);
         EXPECT_EQ(rc, cs->ErrorKazu ? -1 : 0);
         if (r.v != kAny) { EXPECT_EQ(L(i).word_kazu, r.v); }
         if (f[0] == u"X") { EXPECT_EQ(L(i).vecWord.size(), 12u); }
       });
}

TEST_F(OperandDataMacroTest, OperandsAreTrimmedAndRpushTakesNoOperand) {
  Captured c;
  int o = Line(u"", u"OUT", {u"BUF ,", u"LEN ", u"rest"});
  EXPECT_EQ(macro2NWCS(*cs, o), 0);
  EXPECT_EQ(L(o).oprnd1ChH + u"|" + L(o).oprnd2ChH + u"|" + L(o).oprnd3ChH, u"BUF,|LEN|");
  int push = Line(u"", u"RPUSH", {});
  EXPECT_EQ(macroR2NWCS(*cs, push), 0);
  EXPECT_EQ(L(push).oprndCount, 0);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(macroR2NWCS(*cs, Line(u"", u"RPUSH", {u"Comment"})), -1);
  EXPECT_EQ(cs->ErrorKazu, 1);
}

TEST_F(OperandDataMacroTest, TheExpansionOfIn) {
  Captured c;
  int s = Line(u"P", u"START", {}, 1);
  int in = Line(u"", u"IN", {u"BUF,", u"LEN"}, 12);
  int buf = Line(u"BUF", u"DS", {u"256"}, 256), len = Line(u"LEN", u"DS", {u"1"}, 1);
  Program(u"P", s);
  L(buf).abAdr = 13;
  L(len).abAdr = 269;
  L(in).rlAdr = L(in).abAdr = 1;
  EXPECT_EQ(InOut1NWCS(*cs, in), 0);
  EXPECT_EQ(Words(in), (std::vector<int32_t>{0x7001, 0, 0x7002, 0, 0x1210, 13, 0x1220, 269, 0xF000, 1, 0x7120, 0x7110}));
  EXPECT_EQ(L(in).vecWord[11].abAdr, 12);
  EXPECT_EQ(L(buf).labelUsed + L(len).labelUsed, 2);
  EXPECT_EQ(c.out, "");
}

}  // namespace opdtest
