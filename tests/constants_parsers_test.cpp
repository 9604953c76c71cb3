// The parsers of decimal, hexadecimal and string constants: their checks,
// values at the range limits, and their messages.
#include "operand_data_fixture.h"

namespace {

using opdtest::Captured;
using opdtest::OpdTest;

using ConstantsParserTest = OpdTest;

TEST_F(ConstantsParserTest, DecimalTextCheckAndItsTwoCodes) {
  Captured c;
  EXPECT_EQ(CkDecConstG(*cs, 2, 0, u"-32768"), 0);
  EXPECT_EQ(CkDecConstG(*cs, 2, 0, u"+7"), 0);
  EXPECT_EQ(CkDecConstG(*cs, 2, 3, u"12A"), -1);
  EXPECT_EQ(CkDecConstG(*cs, 2, 0, u"1-2", "ABCB1678"), -1);
  EXPECT_EQ(c.out,
            "Error : line 3:  Constant Nr=3: There is non-numerical letter in the decimal constant. \n"
            "Error : line 3: There is non-numerical letter in the decimal constant. \n");
  EXPECT_EQ(cs->ErrorKazu, 2);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"0A4D7788", "ABCB1678"}));
  SetLang(0);
  CkDecConstG(*cs, 0, 1, u"9x");
  EXPECT_NE(c.out.find("エラー： 1 行目： 1 番目の定数：  \"9x\" 10進定数の中に数字以外の文字がある。\n"), std::string::npos);
}

TEST_F(ConstantsParserTest, DecimalCheckRefusesAWrongFirstCharacterAsAProgramFault) {
  Captured c;
  EXPECT_EQ(CkDecConstG(*cs, 0, 0, u"A1"), -1);
  EXPECT_EQ(CkDecConstG(*cs, 0, 0, u""), -1);
  EXPECT_EQ(cs->ErrorKazu, 0);
  EXPECT_NE(c.out.find("Prg. Error: "), std::string::npos);
}

TEST_F(ConstantsParserTest, DecimalValuesAtTheLimitsKeepTheirLow16Bits) {
  Captured c;
  EXPECT_EQ(DecStrToIntG(*cs, 0, 0, u"32767"), 32767);
  EXPECT_EQ(DecStrToIntG(*cs, 0, 0, u"-32768"), -32768);
  EXPECT_EQ(cs->WarningKazu, 0);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(DecStrToIntG(*cs, 0, 0, u"32768"), 0x8000);
  EXPECT_EQ(DecStrToIntG(*cs, 0, 0, u"-32769"), 0x7FFF);
  EXPECT_EQ(DecStrToIntG(*cs, 0, 0, u"65535"), 0xFFFF);
  EXPECT_EQ(DecStrToIntG(*cs, 0, 0, u"65536"), 0);
  EXPECT_EQ(cs->WarningKazu, 4);
  EXPECT_EQ(Msg(0).code, "F93C6677");
  EXPECT_EQ(Msg(0).kind, kWarning);
  // A number far beyond any cell still gives a value and a warning.
  EXPECT_EQ(DecStrToIntG(*cs, 0, 0, u"123456789012345678901234567890"), 0xFFFF);
  EXPECT_EQ(cs->WarningKazu, 5);
  EXPECT_NE(c.out.find("Warning : line 1: The decimal number constant is out of range. \n"
                       "It should be between -32768 and 32767. \n"
                       "So its lower 16-bits are saved in a memory. \n"
                       "(Spec. 2.3 (4)) \n"),
            std::string::npos);
  SetLang(0);
  DecStrToIntG(*cs, 1, 2, u"70000");
  EXPECT_NE(c.out.find("警告： 2 行目： 2 番目の定数：  \"70000\"  が -32768 から 32767 までの範囲にないので"),
            std::string::npos);
}

TEST_F(ConstantsParserTest, HexadecimalChecksInTheirOrder) {
  Captured c;
  EXPECT_EQ(CkHexConstG(*cs, 0, 0, u"#FFFF"), 0);
  EXPECT_EQ(CkHexConstG(*cs, 0, 0, u"#00FF"), 0);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(CkHexConstG(*cs, 0, 0, u"#ff"), -1);     // small letters are unsuitable
  EXPECT_EQ(CkHexConstG(*cs, 0, 0, u"#"), -1);       // nothing behind #
  EXPECT_EQ(CkHexConstG(*cs, 0, 0, u"#10000"), -1);  // five digits
  EXPECT_EQ(CkHexConstG(*cs, 0, 0, u"#FFF"), -1);    // three digits
  EXPECT_EQ(CkHexConstG(*cs, 0, 0, u"#F"), -1);      // one digit
  EXPECT_EQ(CkHexConstG(*cs, 0, 0, u"#1G000"), -1);  // bad character before the length
  EXPECT_EQ(Codes(), (std::vector<std::string>{"D077D2D8", "1B1B33FA", "4D0842B5", "D077D2D8", "D077D2D8", "D077D2D8"}));
  EXPECT_EQ(cs->ErrorKazu, 6);
  EXPECT_EQ(c.out,
            "Error : line 1: A hexadecimal number is written in 0-9 and A-F. A hexadecimal number is written in capital "
            "letter. There is an unsuitable charcter in the hexadecimal number.\n"
            "Error : line 1: There is no description at the right side of #. \n"
            "Error : line 1: A hexadecimal number should be written in four letters. There are 5 letters in it. \n"
            "Error : line 1: A hexadecimal number is written in four letters. \nThere are only 3 letters in it. \n"
            "Error : line 1: A hexadecimal number is written in four letters. \nThere is only one letter in it. \n"
            "Error : line 1: A hexadecimal number is written in 0-9 and A-F. A hexadecimal number is written in capital "
            "letter. There is an unsuitable charcter in the hexadecimal number.\n");
  c.out.clear();
  SetLang(0);
  CkHexConstG(*cs, 4, 2, u"#12");
  CkHexConstG(*cs, 4, 0, u"#12345");
  EXPECT_EQ(c.out,
            "エラー： 5 行目： 2 番目の定数：  : 16進数は4文字で記述する。2 文字しかない。\n"
            "エラー： 5 行目：  16進数は4文字で記述する。5 文字ある。\n");
}

TEST_F(ConstantsParserTest, HexadecimalValues) {
  Captured c;
  EXPECT_EQ(HexStrToIntG(u"#FFFF"), 65535);
  EXPECT_EQ(HexStrToIntG(u"#00FF"), 255);
  EXPECT_EQ(HexStrToIntG(u"#8000"), 0x8000);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(HexStrToIntG(u"#"), -1);
  EXPECT_EQ(HexStrToIntG(u"#1Z"), -1);
  EXPECT_NE(c.out.find("* Prg. Error: Fail to wcstol(); *endptr is non LY0.\n"), std::string::npos);
}

TEST_F(ConstantsParserTest, WhatMayFollowAStringConstant) {
  Captured c;
  EXPECT_EQ(IsStrConstClosedGL10CS(*cs, 0, u"'AB'", 3), 0);
  EXPECT_EQ(IsStrConstClosedGL10CS(*cs, 0, u"'AB'  ,3", 3), 0);
  EXPECT_EQ(IsStrConstClosedGL10CS(*cs, 0, u"'AB'\t;x", 3), 0);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(IsStrConstClosedGL10CS(*cs, 0, u"'AB' C", 3), -1);
  EXPECT_EQ(cs->ErrorKazu, 1);
  EXPECT_EQ(Msg(0).code, "889ADA7E");
  EXPECT_EQ(c.out,
            "Error : line 1: A character constant is not correctly closed. \n"
            "The both ends of the constant must be enclosed by a pair of apostrophes. \n"
            "Good Example 1.:  'ABC' \nGood Example 2.:  'ABC '' 123'\n"
            "Note: An apostrophye (') must be written twice consecutively in a character constant. \n"
            "Spec. of CASL2: 2.3 (4)\n");
  c.out.clear();
  SetLang(0);
  EXPECT_EQ(IsStrConstClosedGL10CS(*cs, 0, u"'AB'C", 3), -1);
  EXPECT_EQ(c.out.substr(0, c.out.find('\n')), "エラー： 1 行目：  \"'AB'C\" : 文字定数が正しく閉じていない。 ");
  EXPECT_EQ(IsStrConstClosedGL10CS(*cs, 0, u"'AB'", 9), -1);  // a position off the text is a fault
  EXPECT_EQ(cs->ErrorKazu, 2);
}

TEST_F(ConstantsParserTest, WordsOfAStringConstant) {
  Captured c;
  EXPECT_EQ(CountWordKazuAtCharConst_NAWCS(u"'ABC'"), 3);
  EXPECT_EQ(CountWordKazuAtCharConst_NAWCS(u"'A''B'"), 3);
  EXPECT_EQ(CountWordKazuAtCharConst_NAWCS(u"''''"), 1);
  EXPECT_EQ(CountWordKazuAtCharConst_NAWCS(u"''"), 0);
  EXPECT_EQ(CountWordKazuAtCharConst_NAWCS(u"'日本'"), 2);
  EXPECT_EQ(CountWordKazuAtCharConst_NAWCS(u"'A B' ,1"), 3);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(CountWordKazuAtCharConst_NAWCS(u"ABC"), -1);
  EXPECT_NE(c.out.find("その文字は（A）であった。"), std::string::npos);
}

TEST_F(ConstantsParserTest, Ordinals) {
  EXPECT_EQ(OrdinalW(1), u"1st");
  EXPECT_EQ(OrdinalW(2), u"2nd");
  EXPECT_EQ(OrdinalW(3), u"3rd");
  EXPECT_EQ(OrdinalW(4), u"4th");
  EXPECT_EQ(OrdinalW(12), u"12th");
}

}  // namespace
