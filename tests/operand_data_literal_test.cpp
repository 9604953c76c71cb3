// Literal checks before the split: decimal, hexadecimal and string literals,
// the closing check of string literals, and the search for the close.
#include "operand_data_fixture.h"

namespace opdtest {

using OperandDataLiteralTest = OpdTest;

// "<operand text>" of an LD line, or "op|<operand text>"; both checks run.
TEST_F(OperandDataLiteralTest, Literals) {
  const std::string rest =
      "A literal can be described by attaching the equal sign (=)\n"
      "before a decimal constant, a hexadecimal constant or a character constant.\n"
      "(Spec.of CASL2 　2.5 Machine Language Instructions)So a label is excluded from a literal.\n";
  const std::string four = E + "A hexadecimal number should be written in four letters. \n";
  Rows({{u"GR1,=10", ""}, {u"GR1,=-32768", ""}, {u"GR1,=+5,GR2", ""}, {u"GR1,=#00FF", ""}, {u"GR1,='A''B'", ""},
        {u"GR1,=' ; ',GR3", ""}, {u"GR1,='日本'", ""}, {u"GR1,A", ""}, {u"GR1,GR2", ""},
        {u"DC|=5", ""}, {u"DS|=X", ""}, {u"RET|=Y", ""},  // lines that take no literal are not looked at
        {u"GR1,=1A", E + "There is non-numeral letter in the literal decimal constant. \n",
         J + "リテラル10進定数に 数字以外の文字がある。\n", "LT10036E"},
        {u"GR1,=#12", four, J + "リテラル16進定数は 4 桁で記述。\n", "LT12036E"},
        {u"GR1,=#12345", four},
        {u"GR1,=#12G", E + "A hexadecimal number is written in 0-9 and A-F. \n" + four,
         J + "リテラル16進定数は 0 - 9 の数字 と  A - F の英大文字を使う。\n" + J + "リテラル16進定数は 4 桁で記述。\n",
         "LT11036E LT12036E"},
        {u"GR1,=''", E + "The length must be more than zero in a literal character constant. It is not allowed to be zero. \n",
         J + "リテラルの文字数は１個以上必要。０個は不可。\n", "LT14036E"},
        {u"GR1,='AB'C",
         E + " \"GR1,='AB'C\"   The literal string constant is not correctly closed. A string constant starts with an "
             "apostrophe and end with another apostrophe. Two consecutive apostrophes('') is used as one "
             "apostrophe(') in a string constant.\n",
         J + " \"GR1,='AB'C\"   リテラル文字定数が正しく閉じていない。文字定数の中でアポストロフィは2個続けて書く。\n",
         "LT13036E"},
        {u"GR1,='AB",
         E + " \"GR1,='AB\" : A literal charcter constant is not correctly closed.\nGood Example 1.:  ='Ruby' \n"
             "Good Example 2.:  ='Ruby '' 123'\n",
         J + " \"GR1,='AB\" : 正例１．：　='Ruby' \n正例２．：  ='Ruby '' 123'\n", "CECE1234"},
        {u"GR1,=ABC", E + " \"GR1,=ABC\"  cannot be regaraded as a label or an address constant. " + rest,
         J + "= と その直後の文字  \"=A\"  の組み合わせは、リテラルにもラベルにも読み取れない。リテラルは、一つの１０進定数、"
             "１６進定数　又は　\n文字定数の前に等号（＝）を付けて記述する。\n"
             "（CASL2言語の仕様   2.5 機械語命令）したがって、ラベルはリテラル定数としては使えない。\n",
         "LT16036E"},
        {u"GR1,=+A", E + " \"GR1,=+A\"  cannot be regaraded as a label or an address constant. " + rest},
        {u"GR1,=", E + " \"GR1,=\"  cannot be read as a literal. \n", "", "LT15036E"}},
       [&](const Case& r) {
         auto f = Fields(r.in);
         int s = Line(u"P", u"START");
         f.size() > 1 ? TextLine(f[0], f[1]) : TextLine(u"LD", f[0]);
         Program(u"P", s);
         CkLiteral15NW(0);
         CkStrConstLiteralNW10CS(0);
       });
  EXPECT_EQ(CkLiteral15NW(3), -1);  // no such program
}

TEST_F(OperandDataLiteralTest, BlanksNextToCommasGoInFrontOfTheLiteral) {
  Captured c;
  int s = Line(u"P", u"START");
  int i = TextLine(u"LD", u"GR1 , ='A , B'"), j = TextLine(u"LD", u"GR1 , GR2");
  Program(u"P", s);
  CkStrConstLiteralNW10CS(0);
  EXPECT_EQ(L(i).editStr, u"GR1,='A , B'");
  EXPECT_EQ(L(j).editStr, u"GR1 , GR2");
  EXPECT_EQ(c.out, "");
}

TEST_F(OperandDataLiteralTest, TheCloseOfAStringConstant) {
  Captured c;
  int pos = 1;
  EXPECT_EQ(DetStrConstGL10CS(pos, u"='A''B',X"), 0);
  EXPECT_EQ(pos, 6);
  pos = 0;
  EXPECT_EQ(DetStrConstGL10CS(pos, u"'''"), -1);
  EXPECT_EQ(pos, 3);
  EXPECT_EQ(c.out, "");
  pos = 0;
  EXPECT_EQ(DetStrConstGL10CS(pos, u"=A"), -2);
  EXPECT_EQ(c.out, "Prg Error: 文字列定数開始位置0x27の引き渡しではない。\n");
}

}  // namespace opdtest
