// The parsers of decimal, hexadecimal and string constants: their checks,
// values at the range limits, and their messages.
#include "operand_data_fixture.h"

namespace opdtest {

using ConstantsParserTest = OpdTest;

// "check|n|text" on line 2: D decimal check (A with the literal's code),
// V decimal value (v), H hexadecimal check (v = its value) with constant
// number n; S the close of a string constant whose end is at n.
TEST_F(ConstantsParserTest, Checks) {
  const std::string dec = "There is non-numerical letter in the decimal constant. \n";
  const std::string W = "Warning : line 2: ", range = "The decimal number constant is out of range. \nIt should be between -32768 "
                            "and 32767. \nSo its lower 16-bits are saved in a memory. \n(Spec. 2.3 (4)) \n";
  const std::string hexChar = E + "A hexadecimal number is written in 0-9 and A-F. A hexadecimal number is written in "
                                  "capital letter. There is an unsuitable charcter in the hexadecimal number.\n";
  const std::string first = "Prg. Error: 先頭文字が(+, -, 数字)でこの関数に引き渡されることになっている。\n";
  Rows({{u"D|0|-32768", ""}, {u"D|0|+7", ""}, {u"D|0|65535", ""},
        {u"D|3|12A", E + " Constant Nr=3: " + dec, "", "0A4D7788"},
        {u"A|0|1-2", E + dec, "", "ABCB1678"},
        {u"D|1|9x", E + " Constant Nr=1: " + dec, J + "1 番目の定数：  \"9x\" 10進定数の中に数字以外の文字がある。\n"},
        {u"D|0|A1", first}, {u"D|0|", first},  // a wrong first character is a fault of the caller
        {u"V|0|32767", "", "", "", 32767}, {u"V|0|-32768", "", "", "", -32768},
        {u"V|0|32768", W + range, "", "F93C6677", 0x8000}, {u"V|0|-32769", W + range, "", "", 0x7FFF},
        {u"V|0|65535", W + range, "", "", 0xFFFF}, {u"V|0|65536", W + range, "", "", 0},
        {u"V|0|123456789012345678901234567890", W + range, "", "", 0xFFFF},
        {u"V|2|70000", W + " Constant Nr=2: " + range,
         "警告： 2 行目： 2 番目の定数：  \"70000\"  が -32768 から 32767 までの範囲にないので、その下位１６ビットが格納される。"
         "（仕様2・3（４））  \n", "", 70000 & 0xFFFF},
        {u"H|0|#FFFF", "", "", "", 0xFFFF}, {u"H|0|#00FF", "", "", "", 0xFF}, {u"H|0|#8000", "", "", "", 0x8000},
        {u"H|0|#ff", hexChar, J + " 16進数は 0-9 の数字と A-F の英大文字で記述する。16進数の中に 0-9 の数字と A-F の英大文字以外の文字がある。\n",
         "D077D2D8"},  // small letters are unsuitable
        {u"H|0|#1G000", hexChar},  // a bad character is told before the length
        {u"H|0|#", E + "There is no description at the right side of #. \n", J + "# の右に記述がない。\n", "1B1B33FA"},
        {u"H|0|#10000", E + "A hexadecimal number should be written in four letters. There are 5 letters in it. \n",
         J + " 16進数は4文字で記述する。5 文字ある。\n", "4D0842B5"},
        {u"H|0|#FFF", E + "A hexadecimal number is written in four letters. \nThere are only 3 letters in it. \n", "",
         "D077D2D8"},
        {u"H|0|#F", E + "A hexadecimal number is written in four letters. \nThere is only one letter in it. \n"},
        {u"H|2|#12", E + " Constant Nr=2: A hexadecimal number is written in four letters. \nThere are only 2 letters in it. \n", J + "2 番目の定数：  : 16進数は4文字で記述する。2 文字しかない。\n"},
        {u"S|3|'AB'", ""}, {u"S|3|'AB'  ,3", ""}, {u"S|3|'AB'\t;x", ""},
        {u"S|3|'AB' C", E + "A character constant is not correctly closed. \n"
                            "The both ends of the constant must be enclosed by a pair of apostrophes. \n"
                            "Good Example 1.:  'ABC' \nGood Example 2.:  'ABC '' 123'\n"
                            "Note: An apostrophye (') must be written twice consecutively in a character constant. \n"
                            "Spec. of CASL2: 2.3 (4)\n",
         J + " \"'AB' C\" : 文字定数が正しく閉じていない。 \n文字定数は文字列の両側をアポストロフィで囲む。\n例１． :　'ABC'  （正）\n"
             "例２． :  'ABC '' 123'  （正）\n文字定数の中のアポストロフィ（'）は、二個続けて書く。\nCASL2の仕様：２．３　（４）\n",
         "889ADA7E"},
        {u"S|9|'AB'", "Prg. Error: NULL==wchH, []\n"}},  // a position off the text is a fault
       [&](const Case& r) {
         auto f = Fields(r.in);
         int n = f[1][0] - u'0';
         int rc = 0;
         if (f[0] == u"D") rc = CkDecConstG(*cs, 1, n, f[2]);
         if (f[0] == u"A") rc = CkDecConstG(*cs, 1, n, f[2], "ABCB1678");
         if (f[0] == u"H") rc = CkHexConstG(*cs, 1, n, f[2]);
         if (f[0] == u"S") rc = IsStrConstClosedGL10CS(*cs, 1, f[2], n);
         if (f[0] == u"V") { EXPECT_EQ(DecStrToIntG(*cs, 1, n, f[2]), r.v); }
         if (f[0] == u"H" && r.v != kAny) { EXPECT_EQ(HexStrToIntG(f[2]), r.v); }
         EXPECT_EQ(rc, r.en.empty() || f[0] == u"V" ? 0 : -1);
       });
}

TEST_F(ConstantsParserTest, HexadecimalValueOfABadText) {
  Captured c;
  EXPECT_EQ(HexStrToIntG(u"#"), -1);
  EXPECT_EQ(HexStrToIntG(u"#1Z"), -1);
  EXPECT_NE(c.out.find("* Prg. Error: Fail to wcstol(); *endptr is non LY0.\n"), std::string::npos);
}

TEST_F(ConstantsParserTest, WordsOfAStringConstantAndOrdinals) {
  Captured c;
  const std::pair<std::u16string, int> words[] = {{u"'ABC'", 3}, {u"'A''B'", 3}, {u"''''", 1},
                                                  {u"''", 0},    {u"'日本'", 2}, {u"'A B' ,1", 3}};
  for (auto& [text, n] : words) EXPECT_EQ(CountWordKazuAtCharConst_NAWCS(text), n) << U16ToUtf8(text);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(CountWordKazuAtCharConst_NAWCS(u"ABC"), -1);
  EXPECT_NE(c.out.find("その文字は（A）であった。"), std::string::npos);
  EXPECT_EQ(OrdinalW(1) + OrdinalW(2) + OrdinalW(3) + OrdinalW(4) + OrdinalW(12), u"1st2nd3rd4th12th");
}

}  // namespace opdtest
