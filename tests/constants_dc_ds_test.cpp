// DC and DS lines: the walk of the operand text, the split, the kinds and
// word counts, the reserved words of DS and every message.
#include "operand_data_fixture.h"

namespace opdtest {

class ConstantsDcDsTest : public OpdTest {
 protected:
  // The DC or DS path of the dispatch, on line 2.
  int Run(const std::u16string& op, const std::u16string& text) {
    Line(u"P", u"START");
    int i = TextLine(op, text);
    if (OprndAtDCtoChH_NWCS(*cs, i, 1) != 0) return i;
    if (op == u"DC" && OprndAtDC_NWCS(*cs, i) == 0) SetWordKazuAtDC_NWCS(*cs, i);
    if (op == u"DS" && OprndAtDS_NWCS(*cs, i) == 0) SetWordKazuAtDS_NWCS(*cs, i);
    return i;
  }
  std::string Flags(int i) {
    std::string s;
    for (auto& o : L(i).vecOprndAtDC) s += o.DataTypeStrFlag + " ";
    return s;
  }
};

const std::string N = " Constant Nr=";

// DC operand texts; v = the word count.
TEST_F(ConstantsDcDsTest, DcMessages) {
  const std::string small = "There is a small letter in the address constant. \nA small letter is not allowed in casl2. \n";
  Rows({{u"22,55,'abc',88", "", "", "", 6}, {u"'a,b',1", "", "", "", 4}, {u"'日本 語'", "", "", "", 4},
        {u"'A;B', 3 ;note  ", "", "", "", 4}, {u"#FFFF,-1,+5,LABEL1,'A''B',''''", "", "", "", 8},
        {u"1,", "Note : line 2:  \"1,\"  The comma is of no use at the end of the constant. Because there is not any "
                "more constant description at the right side of the comma. \n",
         "注意： 2 行目：  \"1,\"  コンマの右に 定数 がないのだからコンマは不要です。 \n", "DC31036N", 1},
        {u"22 55", E + "\"55\" : Is this a constant or a comment?  You should clarify your intention. \nIf \"55\" is a "
                       "constant, a comma is needed at the left side of the constant.  If this is a comment, a semicolon "
                       "is needed there. Multiple operands of DC insturction are separated by a comma.  Example:  LABEL "
                       "DC 22, 55, 'abc', 88 ; Comments \n",
         J + "\"55\" が定数ならば、定数の前にコンマが必要です。 定数でないならばセミコロン；を記述して明示的に注釈にすること。"
             "（推奨） 定数 DC 命令の複数のオペランドはコンマで区切る。　例： LABEL DC 22, 55, 'abc', 88 ; コメント\n",
         "DC34036E", 0},
        {u"# 12", E + "Hex constants must have at least one hex digit. There is a space just after #. The # is a prefix "
                      "of hexadecimal number. Remove off the space at the right side of the #. \n",
         J + "１６進数を表す記号 # の直後に空白がある。# と１６進数数字の間にある空白を取り除くこと。\n", "DC32036E"},
        {u"- 5", E + "There is a space after a sign mark(+, -). Remove off the space123. \n",
         J + "正負符号の直後に空白がある。空白を取り除くこと。\n", "DC33036E"},
        {u"1, ,2", E + "Duplication of comma. \n", J + "コンマの連続 \n", "DC30036E"},
        {u"'abc", E + "The character constant is not correctly closed. Note! Apostrophe.  If you want an apostrophe to "
                      "appear within a character constant, you must type two apostrophes such as ('') in a row. (Spec. "
                      "2.3 (4) Character Constant) \n",
         J + "文字定数が正しく閉じていない。アポストロフィに着目。 アポストロフィ(')は２個続けて('')書く。 \n", "DC10036E"},
        {u"1,''", E + "The length of a literal character constant must be more than zero. It is not allowed to be zero. "
                      "(Spec. of CASL2 2.3 (4) Character Constant) \n",
         J + "文字定数の文字数は１個以上必要。０個は不可。 \n", "DC11036E"},
        {u"1,'ab'x", E + N + "2: A character constant is not correctly closed. \nThe both ends of the constant must be "
                       "enclosed by a pair of apostrophes. \nGood Example 1.:  'ABC' \nGood Example 2.:  'ABC '' 123'\nNote: An "
                       "apostrophye (') must be written twice consecutively in a character constant. \nSpec. of CASL2: "
                       "2.3 (4)\n", "", "889ADA7E"},
        {u"#FFFF,#ff,12A", E + N + "2: A hexadecimal number is written in 0-9 and A-F. A hexadecimal number is written "
                               "in capital letter. There is an unsuitable charcter in the hexadecimal number.\n" + E + N +
                               "3: There is non-numerical letter in the decimal constant. \n", "", "D077D2D8 0A4D7788"},  // a number's error does not end the walk
        {u"ABCDEFGHI,\"AB\"", E + N + "1: An address constant must be 1 to 8 characters in length. There are 9 "
                                      "characters in it. \n",  // the error of an address constant ends the walk
         J + "1 番目の定数： アドレス定数は８文字以内の制限がある。 9 文字ある。 \n", "DC42036E"},
        {u"\"AB\"", E + N + "1: There is a non-alphanumeric character  in  \"\"AB\"\" . It is not allowed in CASL2.  \nA "
                            "string constant, also called a literal string constant, is a sequence of characters "
                            "surrounded by single quotes, as in 'ABC'. The literal string constant is not correctly "
                            "closed. \n", "", "DC43036E"},
        {u"?1", E + N + "1: There is a non-alphanumeric character  in  \"?1\" . It is not allowed in CASL2.  \n", J + "1 番目の定数： CASL2 で使用できない文字が  \"?1\"  の中にある。 \n"},
        {u"Ab1", E + N + "1: " + small, J + "1 番目の定数： アドレス定数の中に小文字がある。 \nCASL2 では小文字は使えない。\n",
         "DC41036E"},
        {u"A-1", E + N + "1: An address constant should be written in capital alphanumeric letters. There is a "
                    "non-alphanumeric character in the constant. \n", J + "1 番目の定数： アドレス定数の中に英大文字と数字以外の文字がある。\n", "DC40036E"},
        {u",5", E + " \",5\" : The 1st operand at DC is empty in description.\n", "", "DC50036E", 0},
        {u"", E + "An constant operand is empty. An constant operand is expected at the right side of DC instruction. \n",
         J + "DC 命令 の 右に オペランド(定数) の記述がない。\n", "DC20036E"},
        {u"  ", E + "An constant operand is empty. An constant operand is expected at the right side of DC instruction. \n"}},
       [&](const Case& r) {
         int i = Run(u"DC", r.in);
         if (r.v != kAny) { EXPECT_EQ(L(i).word_kazu, r.v); }
       });
}

TEST_F(ConstantsDcDsTest, DcKindsAndTheCutComment) {
  Captured c;
  int j = Run(u"DC", u"#FFFF,-1,+5,LABEL1,'A''B','''' ;c");
  EXPECT_EQ(Flags(j), "Hex Dec Dec AdrConst CharConst CharConst ");
  EXPECT_EQ(L(j).vecOprndAtDC[4].oprndText, u"'A''B'");
  EXPECT_EQ(L(j).oprndComChH, u"#FFFF,-1,+5,LABEL1,'A''B',''''");
  EXPECT_EQ(L(j).commentStr, u";c");
  EXPECT_EQ(Flags(Run(u"DC", u"22,'a,b'")), "Dec CharConst ");  // the comma in the string does not split
  EXPECT_EQ(Flags(Run(u"DC", u"#FFFF,#ff,12A")), "Hex Hex Dec ");
  EXPECT_EQ(OprndAtDC_NWCS(*cs, Run(u"DS", u"1")), -1);
  EXPECT_NE(c.out.find("Prg. Error: A line at DC should have been called. \n"), std::string::npos);
  EXPECT_EQ(OprndAtDC_NWCS(*cs, 99), -1);  // no such line: reported, no crash
}

// DS operand texts; v = the word count and the words reserved.
TEST_F(ConstantsDcDsTest, DsMessages) {
  const std::string stack =
      "More than 65035 words cannot be reserved, because 500 words has been prereserved for Stack Area in comet2. \n";
  const std::string bits = "More than 65535 words cannot be reserved, because the come2 is a 16-bit machine. \n";
  const std::string nonNum = ": Non numerical character is detected. An operand of DS must be specified in decimal number. "
                             "And it must be positive or zero. It cannot be specified in hexadecimal. Spec. of casl2  2.3 (3) \n";
  Rows({{u"0", "", "", "", 0}, {u"+5", "", "", "", 5}, {u"65035", "", "", "", 65035},
        {u"7 words for the table", "", "", "", 7},
        {u"5,", "Warning : line 2: A comma is of no use at the end of the operand of DS assembler instruction. It could "
                "be deleted. \n",
         "警告： 2 行目： DS 命令のオペランドの場合、数字の右に( ,) は不要。 空白でよい。\n", "DS12036W", 5},
        {u"65036", E + stack, J + stack, "DS21036E"},  // English in either language
        {u"65535", E + stack},
        {u"65536", E + bits, J + bits, "DS20036E"},
        {u"99999999999999999999999", E + bits},
        {u"-1", E + "-:  \"-1\" " + nonNum, J + "-:  \"-1\" : DS 命令のオペランドに正の十進数以外の文字がある。 DS アセンブラ"
                                              "命令のオペランドは、ゼロまたはゼロ以上の正の十進数で指定する。 CASL2の仕様：２．３　アセンブラ命令（３）\n",
         "DS11036E"},
        {u"#10", E + "#:  \"#10\" " + nonNum},
        {u"", E + "The operand is empty. A constant in decimal number is expected at the right side of DS assembler "
                  "instruction. \n",
         J + "DS 命令 の 右に オペランド（10 進定数）の記述がない。 \n", "DS10036E"}},
       [&](const Case& r) {
         int i = Run(u"DS", r.in);
         if (r.v != kAny) { EXPECT_EQ(std::tuple(L(i).word_kazu, L(i).vecWord.size()), std::tuple(r.v, size_t(r.v))); }
       });
}

TEST_F(ConstantsDcDsTest, DsWordsAndAConversionThatStopsEarly) {
  Captured c;
  int five = Run(u"DS", u"+5"), cm = Run(u"DS", u"7 words for the table");
  EXPECT_EQ(std::tuple(L(five).oprndCount, L(five).oprnd1ChH, L(five).vecWord.at(4).wordNote, L(five).vecWord[4].wordCode),
            std::tuple(1, u"+5", u"DS", 0));
  EXPECT_EQ(L(cm).commentStr + u"|" + L(cm).oprnd2ChH, u"words for the table|words for the table");
  int bad = Run(u"DS", u"5+3");  // a fault that stops the pass
  EXPECT_EQ(std::tuple(c.out, cs->ErrorKazu, L(bad).word_kazu), std::tuple("Prg. Error: Fail to wcstol(); buf=5+3\n", 1, 0));
}

}  // namespace opdtest
