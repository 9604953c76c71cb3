// Literal checks before the split: decimal, hexadecimal and string literals,
// the closing check of string literals, and the search for the close.
#include "operand_data_fixture.h"

namespace {

using opdtest::Captured;
using opdtest::OpdTest;

class OperandDataLiteralTest : public OpdTest {
 protected:
  // One program with the given operand texts on LD lines; runs both checks.
  void Check(std::vector<std::u16string> texts, const std::u16string& op = u"LD") {
    int s = Line(u"P", u"START");
    for (auto& t : texts) TextLine(op, t);
    Program(u"P", s);
    CkLiteral15NW(0);
    CkStrConstLiteralNW10CS(0);
  }
  std::string Head(int lineNr) { return "Error : line " + std::to_string(lineNr) + ": "; }
};

TEST_F(OperandDataLiteralTest, GoodLiteralsOfEachKindAreSilent) {
  Captured c;
  Check({u"GR1,=10", u"GR1,=-32768", u"GR1,=+5,GR2", u"GR1,=#00FF", u"GR1,='A''B'", u"GR1,=' ; ',GR3",
         u"GR1,='日本'", u"GR1,A", u"GR1,GR2"});
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(cs->ErrorKazu, 0);
}

TEST_F(OperandDataLiteralTest, DecimalAndHexadecimalLiterals) {
  Captured c;
  Check({u"GR1,=1A", u"GR1,=#12", u"GR1,=#12G", u"GR1,=#12345"});
  EXPECT_EQ(cs->ErrorKazu, 5);  // =#12G is wrong twice
  EXPECT_EQ(c.out, Head(2) + "There is non-numeral letter in the literal decimal constant. \n" + Head(3) +
                       "A hexadecimal number should be written in four letters. \n" + Head(4) +
                       "A hexadecimal number is written in 0-9 and A-F. \n" + Head(4) +
                       "A hexadecimal number should be written in four letters. \n" + Head(5) +
                       "A hexadecimal number should be written in four letters. \n");
  c.out.clear();
  Reset(0);
  Check({u"GR1,=1A", u"GR1,=#1G"});
  EXPECT_EQ(c.out,
            "エラー： 2 行目： リテラル10進定数に 数字以外の文字がある。\n"
            "エラー： 3 行目： リテラル16進定数は 0 - 9 の数字 と  A - F の英大文字を使う。\n"
            "エラー： 3 行目： リテラル16進定数は 4 桁で記述。\n");
}

TEST_F(OperandDataLiteralTest, StringLiterals) {
  Captured c;
  Check({u"GR1,=''", u"GR1,='AB'C", u"GR1,='AB"});
  EXPECT_EQ(cs->ErrorKazu, 3);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"LT14036E", "LT13036E", "CECE1234"}));
  EXPECT_EQ(c.out,
            Head(2) + "The length must be more than zero in a literal character constant. It is not allowed to be zero. \n" +
                Head(3) +
                " \"GR1,='AB'C\"   The literal string constant is not correctly closed. A string constant starts with an "
                "apostrophe and end with another apostrophe. Two consecutive apostrophes('') is used as one "
                "apostrophe(') in a string constant.\n" +
                Head(4) +
                " \"GR1,='AB\" : A literal charcter constant is not correctly closed.\nGood Example 1.:  ='Ruby' \n"
                "Good Example 2.:  ='Ruby '' 123'\n");
  c.out.clear();
  Reset(0);
  Check({u"GR1,=''", u"GR1,='AB'C", u"GR1,='AB"});
  EXPECT_EQ(c.out,
            "エラー： 2 行目： リテラルの文字数は１個以上必要。０個は不可。\n"
            "エラー： 3 行目：  \"GR1,='AB'C\"   リテラル文字定数が正しく閉じていない。文字定数の中でアポストロフィは2個続けて書く。\n"
            "エラー： 4 行目：  \"GR1,='AB\" : 正例１．：　='Ruby' \n正例２．：  ='Ruby '' 123'\n");
}

TEST_F(OperandDataLiteralTest, ALabelCannotBeALiteral) {
  Captured c;
  Check({u"GR1,=ABC", u"GR1,=", u"GR1,=+A"});
  EXPECT_EQ(cs->ErrorKazu, 3);
  const std::string rest =
      "A literal can be described by attaching the equal sign (=)\n"
      "before a decimal constant, a hexadecimal constant or a character constant.\n"
      "(Spec.of CASL2 　2.5 Machine Language Instructions)So a label is excluded from a literal.\n";
  EXPECT_EQ(c.out, Head(2) + " \"GR1,=ABC\"  cannot be regaraded as a label or an address constant. " + rest + Head(3) +
                       " \"GR1,=\"  cannot be read as a literal. \n" + Head(4) +
                       " \"GR1,=+A\"  cannot be regaraded as a label or an address constant. " + rest);
  c.out.clear();
  Reset(0);
  Check({u"GR1,=ABC"});
  EXPECT_EQ(c.out,
            "エラー： 2 行目： = と その直後の文字  \"=A\"  の組み合わせは、リテラルにもラベルにも読み取れない。"
            "リテラルは、一つの１０進定数、１６進定数　又は　\n"
            "文字定数の前に等号（＝）を付けて記述する。\n"
            "（CASL2言語の仕様   2.5 機械語命令）したがって、ラベルはリテラル定数としては使えない。\n");
}

TEST_F(OperandDataLiteralTest, LinesThatTakeNoLiteralAreNotLookedAt) {
  Captured c;
  int s = Line(u"P", u"START");
  TextLine(u"DC", u"=5");
  TextLine(u"DS", u"=X");
  TextLine(u"RET", u"=Y");
  Program(u"P", s);
  CkLiteral15NW(0);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(CkLiteral15NW(3), -1);  // no such program
}

TEST_F(OperandDataLiteralTest, BlanksNextToCommasGoInFrontOfTheLiteral) {
  Captured c;
  int s = Line(u"P", u"START");
  int i = TextLine(u"LD", u"GR1 , ='A , B'");
  int j = TextLine(u"LD", u"GR1 , GR2");
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

}  // namespace
