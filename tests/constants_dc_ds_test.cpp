// DC and DS lines: the walk of the operand text, the split, the kinds and
// word counts, the reserved words of DS and every message.
#include "operand_data_fixture.h"

namespace {

using opdtest::Captured;
using opdtest::OpdTest;

class ConstantsDcTest : public OpdTest {
 protected:
  // The DC path of the dispatch.
  int Dc(const std::u16string& text) {
    int i = TextLine(u"DC", text);
    if (OprndAtDCtoChH_NWCS(*cs, i, 1) == 0 && OprndAtDC_NWCS(*cs, i) == 0) SetWordKazuAtDC_NWCS(*cs, i);
    return i;
  }
  // The DS path of the dispatch.
  int Ds(const std::u16string& text) {
    int i = TextLine(u"DS", text);
    if (OprndAtDCtoChH_NWCS(*cs, i, 1) == 0 && OprndAtDS_NWCS(*cs, i) == 0) SetWordKazuAtDS_NWCS(*cs, i);
    return i;
  }
  std::vector<std::string> Flags(int i) {
    std::vector<std::string> v;
    for (auto& o : L(i).vecOprndAtDC) v.push_back(o.DataTypeStrFlag);
    return v;
  }
};

TEST_F(ConstantsDcTest, ConstantsOfEveryKindAndTheirWords) {
  Captured c;
  int i = Dc(u"22,55,'abc',88");
  EXPECT_EQ(L(i).vecOprndAtDC.size(), 4u);
  EXPECT_EQ(L(i).word_kazu, 6);
  EXPECT_EQ(Flags(i), (std::vector<std::string>{"Dec", "Dec", "CharConst", "Dec"}));
  int j = Dc(u"#FFFF,-1,+5,LABEL1,'A''B',''''");
  EXPECT_EQ(Flags(j), (std::vector<std::string>{"Hex", "Dec", "Dec", "AdrConst", "CharConst", "CharConst"}));
  EXPECT_EQ(L(j).word_kazu, 4 + 3 + 1);
  EXPECT_EQ(L(j).vecOprndAtDC[4].oprndText, u"'A''B'");
  int k = Dc(u"'a,b',1");  // the comma in the string does not split
  EXPECT_EQ(L(k).vecOprndAtDC.size(), 2u);
  EXPECT_EQ(L(k).word_kazu, 4);
  int s = Dc(u"'日本 語'");
  EXPECT_EQ(L(s).word_kazu, 4);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(cs->ErrorKazu + cs->WarningKazu + cs->NoteKazu, 0);
}

TEST_F(ConstantsDcTest, ACommentAndTrailingBlanksAreCutOff) {
  Captured c;
  int i = Dc(u"'A;B', 3 ;note  ");
  EXPECT_EQ(L(i).oprndComChH, u"'A;B', 3");
  EXPECT_EQ(L(i).commentStr, u";note  ");
  EXPECT_EQ(L(i).word_kazu, 4);
  EXPECT_EQ(cs->ErrorKazu, 0);
}

TEST_F(ConstantsDcTest, ATrailingCommaIsANoteAndTakesNoWord) {
  Captured c;
  int i = Dc(u"1,");
  EXPECT_EQ(L(i).word_kazu, 1);
  EXPECT_EQ(L(i).vecOprndAtDC.size(), 1u);
  EXPECT_EQ(cs->NoteKazu, 1);
  EXPECT_EQ(cs->ErrorKazu, 0);
  EXPECT_EQ(c.out,
            "Note : line 1:  \"1,\"  The comma is of no use at the end of the constant. Because there is not any more "
            "constant description at the right side of the comma. \n");
}

TEST_F(ConstantsDcTest, BlanksBetweenConstantsAndAfterSigns) {
  Captured c;
  Dc(u"22 55");
  Dc(u"# 12");
  Dc(u"- 5");
  Dc(u"1, ,2");
  EXPECT_EQ(cs->ErrorKazu, 4);
  EXPECT_EQ(c.out,
            "Error : line 1: \"55\" : Is this a constant or a comment?  You should clarify your intention. \n"
            "If \"55\" is a constant, a comma is needed at the left side of the constant.  If this is a comment, a "
            "semicolon is needed there. Multiple operands of DC insturction are separated by a comma.  Example:  "
            "LABEL DC 22, 55, 'abc', 88 ; Comments \n"
            "Error : line 2: Hex constants must have at least one hex digit. There is a space just after #. The # is a "
            "prefix of hexadecimal number. Remove off the space at the right side of the #. \n"
            "Error : line 3: There is a space after a sign mark(+, -). Remove off the space123. \n"
            "Error : line 4: Duplication of comma. \n");
  c.out.clear();
  SetLang(0);
  Dc(u"1 'ab'");
  EXPECT_EQ(c.out,
            "エラー： 5 行目： \"'ab'\" が定数ならば、定数の前にコンマが必要です。 定数でないならばセミコロン；を記述して"
            "明示的に注釈にすること。（推奨） 定数 DC 命令の複数のオペランドはコンマで区切る。"
            "　例： LABEL DC 22, 55, 'abc', 88 ; コメント\n");
}

TEST_F(ConstantsDcTest, StringConstantsMustBeClosedAndNotEmpty) {
  Captured c;
  Dc(u"'abc");
  Dc(u"1,''");
  Dc(u"'ab'x");
  EXPECT_EQ(cs->ErrorKazu, 3);
  EXPECT_EQ(c.out,
            "Error : line 1: The character constant is not correctly closed. Note! Apostrophe.  If you want an "
            "apostrophe to appear within a character constant, you must type two apostrophes such as ('') in a row. "
            "(Spec. 2.3 (4) Character Constant) \n"
            "Error : line 2: The length of a literal character constant must be more than zero. It is not allowed to "
            "be zero. (Spec. of CASL2 2.3 (4) Character Constant) \n"
            "Error : line 3: A character constant is not correctly closed. \n"
            "The both ends of the constant must be enclosed by a pair of apostrophes. \n"
            "Good Example 1.:  'ABC' \nGood Example 2.:  'ABC '' 123'\n"
            "Note: An apostrophye (') must be written twice consecutively in a character constant. \n"
            "Spec. of CASL2: 2.3 (4)\n");
  c.out.clear();
  SetLang(0);
  Dc(u"'abc");
  EXPECT_EQ(c.out, "エラー： 4 行目： 文字定数が正しく閉じていない。アポストロフィに着目。 アポストロフィ(')は２個続けて('')書く。 \n");
}

TEST_F(ConstantsDcTest, ConstantChecksNameThePlaceOfTheConstant) {
  Captured c;
  int i = Dc(u"#FFFF,#ff,12A");
  EXPECT_EQ(cs->ErrorKazu, 2);  // a number's error does not end the walk
  EXPECT_EQ(Flags(i), (std::vector<std::string>{"Hex", "Hex", "Dec"}));
  EXPECT_EQ(Codes(), (std::vector<std::string>{"D077D2D8", "0A4D7788"}));
  EXPECT_EQ(c.out.substr(0, 32), "Error : line 1:  Constant Nr=2: ");
  EXPECT_NE(c.out.find("Error : line 1:  Constant Nr=3: There is non-numerical letter"), std::string::npos);
}

TEST_F(ConstantsDcTest, AddressConstantsAndStrangeCharacters) {
  Captured c;
  Dc(u"ABCDEFGHI,\"AB\"");  // the error of the address constant ends the walk
  Dc(u"\"AB\"");
  Dc(u"Ab1");
  EXPECT_EQ(cs->ErrorKazu, 3);
  EXPECT_EQ(c.out,
            "Error : line 1:  Constant Nr=1: An address constant must be 1 to 8 characters in length. There are 9 "
            "characters in it. \n"
            "Error : line 2:  Constant Nr=1: There is a non-alphanumeric character  in  \"\"AB\"\" . It is not allowed in "
            "CASL2.  \n"
            "A string constant, also called a literal string constant, is a sequence of characters surrounded by single "
            "quotes, as in 'ABC'. The literal string constant is not correctly closed. \n"
            "Error : line 3:  Constant Nr=1: There is a small letter in the address constant. \n"
            "A small letter is not allowed in casl2. \n");
  c.out.clear();
  SetLang(0);
  Dc(u"?1");
  EXPECT_EQ(c.out, "エラー： 4 行目： 1 番目の定数： CASL2 で使用できない文字が  \"?1\"  の中にある。 \n");
}

TEST_F(ConstantsDcTest, EmptyOperandsAndAnEmptyLine) {
  Captured c;
  int i = Dc(u",5");
  EXPECT_EQ(cs->ErrorKazu, 1);
  Dc(u"");
  EXPECT_EQ(cs->ErrorKazu, 2);
  EXPECT_EQ(c.out,
            "Error : line 1:  \",5\" : The 1st operand at DC is empty in description.\n"
            "Error : line 2: An constant operand is empty. An constant operand is expected at the right side of DC "
            "instruction. \n");
  EXPECT_EQ(L(i).word_kazu, 0);
  c.out.clear();
  SetLang(0);
  Dc(u"  ");
  EXPECT_EQ(c.out, "エラー： 3 行目： DC 命令 の 右に オペランド(定数) の記述がない。\n");
}

TEST_F(ConstantsDcTest, DcAnalysisOfALineThatIsNotDcIsAFault) {
  Captured c;
  int i = TextLine(u"DS", u"1");
  EXPECT_EQ(OprndAtDC_NWCS(*cs, i), -1);
  EXPECT_EQ(c.out, "Prg. Error: A line at DC should have been called. \n");
  EXPECT_EQ(OprndAtDC_NWCS(*cs, 99), -1);  // no such line: reported, no crash
}

using ConstantsDsTest = ConstantsDcTest;

TEST_F(ConstantsDsTest, ReservedWordsAndTheirCount) {
  Captured c;
  int z = Ds(u"0");
  EXPECT_EQ(L(z).word_kazu, 0);
  EXPECT_TRUE(L(z).vecWord.empty());
  int five = Ds(u"+5");
  EXPECT_EQ(L(five).word_kazu, 5);
  EXPECT_EQ(L(five).oprndCount, 1);
  ASSERT_EQ(L(five).vecWord.size(), 5u);
  EXPECT_EQ(L(five).vecWord[4].wordNote, u"DS");
  EXPECT_EQ(L(five).vecWord[4].wordCode, 0);
  EXPECT_EQ(L(five).oprnd1Str, u"+5");
  int big = Ds(u"65035");
  EXPECT_EQ(L(big).word_kazu, 65035);
  EXPECT_EQ(L(big).vecWord.size(), 65035u);
  int cm = Ds(u"7 words for the table");
  EXPECT_EQ(L(cm).word_kazu, 7);
  EXPECT_EQ(L(cm).commentStr, u"words for the table");
  EXPECT_EQ(L(cm).oprnd2ChH, u"words for the table");
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(cs->ErrorKazu + cs->WarningKazu, 0);
}

TEST_F(ConstantsDsTest, TheLimitsOfTheStackAndOfTheMachine) {
  Captured c;
  Ds(u"65036");
  Ds(u"65535");
  int huge = Ds(u"65536");
  int huger = Ds(u"99999999999999999999999");
  EXPECT_EQ(cs->ErrorKazu, 4);
  EXPECT_TRUE(L(huge).vecWord.empty());
  EXPECT_TRUE(L(huger).vecWord.empty());
  const std::string stack =
      "More than 65035 words cannot be reserved, because 500 words has been prereserved for Stack Area in comet2. \n";
  const std::string bits = "More than 65535 words cannot be reserved, because the come2 is a 16-bit machine. \n";
  EXPECT_EQ(c.out, "Error : line 1: " + stack + "Error : line 2: " + stack + "Error : line 3: " + bits +
                       "Error : line 4: " + bits);
  c.out.clear();
  SetLang(0);  // English in either language
  Ds(u"65536");
  EXPECT_EQ(c.out, std::string("エラー： 5 行目： ") + bits);
}

TEST_F(ConstantsDsTest, OnlyAPositiveDecimalNumber) {
  Captured c;
  Ds(u"-1");
  Ds(u"#10");
  Ds(u"");
  EXPECT_EQ(cs->ErrorKazu, 3);
  EXPECT_EQ(c.out,
            "Error : line 1: -:  \"-1\" : Non numerical character is detected. An operand of DS must be specified in "
            "decimal number. And it must be positive or zero. It cannot be specified in hexadecimal. Spec. of casl2  "
            "2.3 (3) \n"
            "Error : line 2: #:  \"#10\" : Non numerical character is detected. An operand of DS must be specified in "
            "decimal number. And it must be positive or zero. It cannot be specified in hexadecimal. Spec. of casl2  "
            "2.3 (3) \n"
            "Error : line 3: The operand is empty. A constant in decimal number is expected at the right side of DS "
            "assembler instruction. \n");
  c.out.clear();
  SetLang(0);
  Ds(u"1A");
  Ds(u"");
  EXPECT_EQ(c.out,
            "エラー： 4 行目： A:  \"1A\" : DS 命令のオペランドに正の十進数以外の文字がある。 DS アセンブラ命令のオペランドは、"
            "ゼロまたはゼロ以上の正の十進数で指定する。 CASL2の仕様：２．３　アセンブラ命令（３）\n"
            "エラー： 5 行目： DS 命令 の 右に オペランド（10 進定数）の記述がない。 \n");
}

TEST_F(ConstantsDsTest, ATrailingCommaIsDroppedWithAWarning) {
  Captured c;
  int i = Ds(u"5,");
  EXPECT_EQ(L(i).word_kazu, 5);
  EXPECT_EQ(cs->WarningKazu, 1);
  EXPECT_EQ(c.out,
            "Warning : line 1: A comma is of no use at the end of the operand of DS assembler instruction. It could be "
            "deleted. \n");
  c.out.clear();
  SetLang(0);
  Ds(u"3,");
  EXPECT_EQ(c.out, "警告： 2 行目： DS 命令のオペランドの場合、数字の右に( ,) は不要。 空白でよい。\n");
}

TEST_F(ConstantsDsTest, AConversionThatStopsEarlyIsAFaultThatStopsThePass) {
  Captured c;
  int i = Ds(u"5+3");
  EXPECT_EQ(cs->ErrorKazu, 1);
  EXPECT_EQ(c.out, "Prg. Error: Fail to wcstol(); buf=5+3\n");
  EXPECT_EQ(L(i).word_kazu, 0);
}

}  // namespace
