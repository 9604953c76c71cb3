// The label field, the opcode field and the label tables, run through the
// real line editor and the first steps of Fight12NW.
#include "analysis_fixture.h"

namespace {

using atest::Row;
class AnalysisFields : public atest::Analysis {};

const std::string kNotInstr = " is not either assembler instruction, machine instruction, or macro instruction.  \n";
const std::string kTooLong = "   A label must be 1 to 8 characters in length. It includes ";
const std::string kZen = " : There is a 2-byte space in the word. A 2-byte space is not allowed to be used in casl2. "
                         "A 2-byte space should be replaced with 1-byte space.  Remove off the 2-byte space in the word. \n";

const std::vector<Row> kRows{
    // Label field. The messages come in the order of the rules: no
    // instruction, first character, character set (first line only),
    // length, reserved words.
    {1, {"ABCDEFGHI\tNOP", "ABCDEFGH\tNOP", "GR0\tNOP", "1ABC\tNOP", "abc\tNOP", "Abc\tNOP", "Xyz\tNOP",
         "\u3000AB\tNOP", "GR8\tNOP", "LABEL"}, {7, 0, 0, 0},
     "Error : line 11:  \"LABEL\" : \nError : line 5:  \"1ABC\" : \nError : line 6:  \"abc\" : \n"
     "Error : line 9:  \"\u3000AB\" : \nError : line 7: There is an unsuitable character in the label of 'Abc'. \n"
     "Error : line 2:  \"ABCDEFGHI\"" + kTooLong + "9 characters in it. \nError : line 4: GR0 is one of the reserved "
     "words(GR0-GR7). Reserved words, GR0 through GR7, are not available for labels. Spec. of CASL2   2.1 (Note) \n",
     "1122036E 1133036E 1133036E 1133036E 1133036E 1155036E 1144036E"},
    {1, {"LABEL ;comment", "\tRET"}, {0, 0, 1, 0}, "Note : line 2:  \"LABEL\"  Unreferenced label  \n"},
    {1, {"A\u3000B\tNOP"}, {2, 0, 0, 0},
     "Error : line 2: There is an unsuitable character in the label of 'A\u3000B'. \nError : line 2:  \"A\u3000B\"" + kZen},
    {0, {"ABCDEFGHI\tNOP"}, {1, 0, 0, 0}, "エラー： 2 行目：  \"ABCDEFGHI\"  ラベルの長さは 8 文字までに制限されている。 9 文字ある。\n"},
    {0, {"GR7\tNOP"}, {1, 0, 0, 0}, "エラー： 2 行目： ラベルに予約語(GR0 - GR7) は使えない。CASL2の仕様　2.1（注）\n"},
    {0, {"LABEL"}, {1, 0, 0, 0}, "エラー： 2 行目：  \"LABEL\" : ラベルはあるが、命令語の記述がない。\n"},
    // Label tables: one finding for the first pair (i first), none across
    // programs; a note for every unused label but the one on START.
    {1, {"A\tNOP", "B\tNOP", "B\tNOP", "A\tNOP", "A\tNOP"}, {1, 0, 0, 0},
     "Error : The label A is already defined. \nDuplication of the same label of A. \nline=2 and line=5 \n"
     "All of the labels must be unique in a program. \n", "1144036E"},
    {0, {"X\tNOP", "A\tNOP", "A\tNOP", "A\tNOP"}, {1, 0, 0, 0}, "エラー： 3 行目 と 4 行目： 同じラベル A が二つある。\n"},
    {1, {"P1\tSTART", "A\tNOP", "\tRET", "\tEND", "P2\tSTART", "A\tNOP", "\tRET", "\tEND"}, {0, 0, 2, 0},
     "Note : line 2:  \"A\"  Unreferenced label  \nNote : line 6:  \"A\"  Unreferenced label  \n", "B2DBA819 B2DBA819"},
    {0, {"B\tNOP", "\tRET"}, {0, 0, 1, 0}, "注意： 2 行目： ラベル  \"B\"  は一度も参照されない。 \n"},
    // Opcode field: only the first unknown opcode of a program is looked at.
    {1, {"\tlad\tGR1,A", "\tXYZ"}, {1, 0, 0, 0}, "Error : line 2 \"lad\" " + kNotInstr, "5CF454F8"},
    {1, {"\tEXIT"}, {1, 0, 0, 0}, "Error : line 2 \"EXIT\" " + kNotInstr},
    {1, {"\tLad\tGR1,A"}, {2, 0, 0, 0},
     "Error : line 2 \"Lad\" " + kNotInstr + "Error : line 2: : There is a small letter in Lad. \n", "5CF454F8 9FECCDEF"},
    {1, {"\tLD,\tGR1,A"}, {2, 0, 0, 0}, "Error : line 2 \"LD,\" " + kNotInstr +
     "Error : line 2: A space is expected at the right side of the opcode. A comma is of no use. \n", "5CF454F8"},
    {1, {"\tL\u3000D\tGR1,A"}, {3, 0, 0, 0},
     "Error : line 2 \"L\u3000D\" " + kNotInstr + "Error : line 2:  \"L\u3000D\"" + kZen + "Error: 2-Byte Space\n"},
    {1, {"\tRET;comment"}, {0, 0, 0, 0}, ""},
    {1, {"PRG\tSTART", "\tRET", "\tEND;COMMENT"}, {3, 0, 0, 0}, "Error : line 3 \"END;COMMENT\" " + kNotInstr +
     "Error :  \" END;\" : \nNOP, RPUSH, RPOP, RET, and END do not take any operand, but a space at the right side. \n"
     "One space or more are expected between the opcode and a comment mark(;).\nExample 1: RPUSH ;Comments (Good)\n"
     "Example 2: RPUSH;Comments  (Error)\nSpec. 2. 1, Table (4) Row 3.\n", "5CF454F8 8888EBA8"},
    {0, {"PRG\tSTART", "\tRET", "\tEND;COMMENT"}, {3, 0, 0, 0},
     "~エラー：  \" END;\" \nオペランドをとらない命令（NOP, RPUSH, RPOP, RET, END）の右に記述する\n"},
    {0, {"\tlad\tGR1,A"}, {1, 0, 0, 0},
     "エラー： 2 行目：  \"lad\"  は アセンブラ命令 でも 機械語命令 でも マクロ命令 でもない。  正しい 命令語 の記述が必要です。 \n"},
    {0, {"\tLad\tGR1,A"}, {2, 0, 0, 0}, "~エラー： 2 行目： : 演算子 Lad の中に小文字がある。\n"},
    {0, {"\tL\u3000D\tGR1,A"}, {3, 0, 0, 0}, "~\nError: 全角の空白文字がある。\n"},
    // DC before the instructions: the placement rule never fires.
    {1, {"A\tDC\t1", "\tLD\tGR1,A", "\tRET"}, {0, 0, 0, 0}, ""},
};

TEST_F(AnalysisFields, MessagesCountersAndCodes) {
  for (const Row& r : kRows) Check(r);
  EXPECT_EQ(cs->firstDefLine, std::vector<int>{2147483647});
}

// The English sentence says 8 whatever the limit is; the Japanese one tells
// the limit. A reset sets the limit back to 8.
TEST_F(AnalysisFields, LabelLimitOtherThanEight) {
  for (int lang : {1, 0}) {
    Reset(lang);
    cs->tMaxLabelLen = 4;
    EXPECT_EQ(Fight(atest::Prog({"ABCD\tNOP", "ABCDE\tNOP"})), 1);
    EXPECT_EQ(out, lang ? "Error : line 3:  \"ABCDE\"" + kTooLong + "5 characters in it. \n"
                        : "エラー： 3 行目：  \"ABCDE\"  ラベルの長さは 4 文字までに制限されている。 5 文字ある。\n");
  }
  ResetCorrectScode();
  EXPECT_EQ(cs->tMaxLabelLen, 8);
}

// The duplicate search gives the pair that the search of all pairs, i
// first, would give.
TEST_F(AnalysisFields, DuplicateSearchAgreesWithThePairwiseSearch) {
  unsigned seed = 12345;
  for (int round = 0; round < 40; ++round) {
    Reset(1);
    std::vector<std::string> body;
    for (int k = 0; k < 12; ++k) {
      seed = seed * 1103515245u + 12345u;
      body.push_back((seed >> 16) % 14 < 10 ? std::string(1, static_cast<char>('A' + (seed >> 16) % 14)) : "");
    }
    std::string want;
    for (size_t i = 0; i < 12 && want.empty(); ++i)
      for (size_t j = i + 1; j < 12 && want.empty(); ++j)
        if (!body[i].empty() && body[i] == body[j])
          want = "line=" + std::to_string(i + 2) + " and line=" + std::to_string(j + 2);
    for (std::string& l : body) l += "\tNOP";
    EXPECT_EQ(Fight(atest::Prog(body)), want.empty() ? 0 : 1) << round;
    EXPECT_TRUE(Has(want)) << round << out;
  }
}

}  // namespace
