// The label field, the opcode field and the label tables, run through the
// real line editor and the first steps of Fight12NW.
#include "analysis_fixture.h"

namespace {

using atest::Analysis;
class AnalysisFields : public Analysis {};
using atest::Prog;

// ---- label field ------------------------------------------------------------

TEST_F(AnalysisFields, LabelLengthLimitIsEightAndTheMessageCountsTheLength) {
  EXPECT_EQ(Fight(Prog({"ABCDEFGH\tNOP", "ABCDEFGHI\tNOP"})), 1);
  EXPECT_EQ(out,
            "Error : line 3:  \"ABCDEFGHI\"   A label must be 1 to 8 characters in length. It includes 9 characters "
            "in it. \n");
  EXPECT_EQ(Codes(), std::vector<std::string>{"1155036E"});
  // The English sentence says 8 whatever the limit is; the Japanese one
  // tells the limit.
  Reset(1);
  cs->tMaxLabelLen = 4;
  EXPECT_EQ(Fight(Prog({"ABCDE\tNOP"})), 1);
  EXPECT_TRUE(Has("A label must be 1 to 8 characters in length. It includes 5 characters"));
  Reset(0);
  cs->tMaxLabelLen = 4;
  EXPECT_EQ(Fight(Prog({"ABCDE\tNOP"})), 1);
  EXPECT_EQ(out, "エラー： 2 行目：  \"ABCDE\"  ラベルの長さは 4 文字までに制限されている。 5 文字ある。\n");
}

TEST_F(AnalysisFields, ResetSetsTheLabelLimitBackToEight) {
  cs->tMaxLabelLen = 3;
  ResetCorrectScode();
  EXPECT_EQ(cs->tMaxLabelLen, 8);
}

TEST_F(AnalysisFields, FirstCharacterAndCharacterSetFollowTheirOwnPasses) {
  // 1ABC and abc fail the first character only; Abc fails the character
  // set, and Xyz behind it is not reported any more.
  EXPECT_EQ(Fight(Prog({"1ABC\tNOP", "abc\tNOP", "Abc\tNOP", "Xyz\tNOP"})), 3);
  EXPECT_EQ(out,
            "Error : line 2:  \"1ABC\" : \n"
            "Error : line 3:  \"abc\" : \n"
            "Error : line 4: There is an unsuitable character in the label of 'Abc'. \n");
  EXPECT_EQ(Codes(), (std::vector<std::string>{"1133036E", "1133036E", "1133036E"}));
}

TEST_F(AnalysisFields, MessagesComeInTheOrderOfTheRulesNotOfTheLines) {
  EXPECT_EQ(Fight(Prog({"LONGLABEL1\tNOP", "GR0\tNOP", "9X\tNOP"})), 3);
  size_t first = out.find("\"9X\"");
  size_t tooLong = out.find("LONGLABEL1");
  size_t reserved = out.find("GR0 is one of the reserved words");
  ASSERT_NE(first, std::string::npos);
  ASSERT_NE(reserved, std::string::npos);
  EXPECT_LT(first, tooLong);
  EXPECT_LT(tooLong, reserved);
}

TEST_F(AnalysisFields, ReservedWordsAreGR0ToGR7AndGR8IsALabel) {
  EXPECT_EQ(Fight(Prog({"GR0\tNOP", "GR8\tNOP"})), 1);
  EXPECT_EQ(out,
            "Error : line 2: GR0 is one of the reserved words(GR0-GR7). Reserved words, GR0 through GR7, are not "
            "available for labels. Spec. of CASL2   2.1 (Note) \n");
  Reset(0);
  EXPECT_EQ(Fight(Prog({"GR7\tNOP"})), 1);
  EXPECT_EQ(out, "エラー： 2 行目： ラベルに予約語(GR0 - GR7) は使えない。CASL2の仕様　2.1（注）\n");
}

TEST_F(AnalysisFields, LabelWithoutInstruction) {
  EXPECT_EQ(Fight(Prog({"LABEL"})), 1);
  EXPECT_EQ(out, "Error : line 2:  \"LABEL\" : \n");
  EXPECT_EQ(Codes(), std::vector<std::string>{"1122036E"});
  Reset(0);
  EXPECT_EQ(Fight(Prog({"LABEL"})), 1);
  EXPECT_EQ(out, "エラー： 2 行目：  \"LABEL\" : ラベルはあるが、命令語の記述がない。\n");
  // A comment behind the label leaves the blank, so the label stands alone
  // on its line without complaint.
  Reset(1);
  EXPECT_EQ(Fight(Prog({"LABEL ;comment", "\tRET"})), 0);
}

TEST_F(AnalysisFields, TwoByteSpaceInALabelIsExplainedAsWell) {
  EXPECT_EQ(Fight(Prog({"A\u3000B\tNOP"})), 2);
  EXPECT_TRUE(Has("There is an unsuitable character in the label of 'A\u3000B'. "));
  EXPECT_TRUE(Has("There is a 2-byte space in the word. "));
  // At the start of the line it is the first character of the label.
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\u3000AB\tNOP"})), 1);
  EXPECT_EQ(Codes(), std::vector<std::string>{"1133036E"});
}

// ---- label tables -------------------------------------------------------------

TEST_F(AnalysisFields, DuplicateLabelsGiveOneFindingForTheFirstPair) {
  // Pairs are searched i first: A on lines 2 and 5 is found before B.
  EXPECT_EQ(Fight(Prog({"A\tNOP", "B\tNOP", "B\tNOP", "A\tNOP", "A\tNOP"})), 1);
  EXPECT_EQ(out,
            "Error : The label A is already defined. \n"
            "Duplication of the same label of A. \n"
            "line=2 and line=5 \n"
            "All of the labels must be unique in a program. \n");
  Reset(0);
  EXPECT_EQ(Fight(Prog({"X\tNOP", "A\tNOP", "A\tNOP", "A\tNOP"})), 1);
  EXPECT_EQ(out, "エラー： 3 行目 と 4 行目： 同じラベル A が二つある。\n");
}

TEST_F(AnalysisFields, DuplicateSearchAgreesWithThePairwiseSearch) {
  // A pseudo-random set of labels over a small alphabet.
  unsigned seed = 12345;
  for (int round = 0; round < 40; ++round) {
    Reset(1);
    std::vector<std::string> body;
    std::vector<std::string> labels;
    for (int k = 0; k < 12; ++k) {
      seed = seed * 1103515245u + 12345u;
      int v = static_cast<int>((seed >> 16) % 14);
      std::string lab = v < 10 ? std::string(1, static_cast<char>('A' + v)) : "";
      labels.push_back(lab);
      body.push_back(lab + "\tNOP");
    }
    Load(Prog(body));
    Prepare();
    Label30GNW(0, static_cast<int>(body.size()));
    int wi = -1, wj = -1;
    for (int i = 0; i < 12 && wi < 0; ++i)
      for (int j = i + 1; j < 12; ++j)
        if (!labels[i].empty() && labels[i] == labels[j]) {
          wi = i + 2;
          wj = j + 2;
          break;
        }
    if (wi < 0) {
      EXPECT_EQ(Errors(), 0) << round;
    } else {
      EXPECT_EQ(Errors(), 1) << round;
      EXPECT_TRUE(Has("line=" + std::to_string(wi) + " and line=" + std::to_string(wj) + " ")) << round << out;
    }
  }
}

TEST_F(AnalysisFields, SameLabelInTwoProgramsIsNoDuplicate) {
  std::vector<std::string> src = Prog({"A\tNOP", "\tRET"}, "P1");
  std::vector<std::string> two = Prog({"A\tNOP", "\tRET"}, "P2");
  src.insert(src.end(), two.begin(), two.end());
  EXPECT_EQ(Fight(src), 0);
}

TEST_F(AnalysisFields, UnusedLabelsDrawANoteAndTheStartLabelDoesNot) {
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,A", "B\tNOP", "\tRET", "A\tDC\t1"})), 0);
  out.clear();
  CkLabelInUseNW();
  EXPECT_EQ(out, "Note : line 3:  \"B\"  Unreferenced label  \n");
  EXPECT_EQ(Notes(), 1);
  EXPECT_EQ(Errors(), 0);
  EXPECT_EQ(Warnings(), 0);
  Reset(0);
  EXPECT_EQ(Fight(Prog({"B\tNOP", "\tRET"})), 0);
  out.clear();
  CkLabelInUseNW();
  EXPECT_EQ(out, "注意： 2 行目： ラベル  \"B\"  は一度も参照されない。 \n");
  EXPECT_EQ(Codes().back(), "B2DBA819");
}

// ---- opcode field ---------------------------------------------------------------

TEST_F(AnalysisFields, UnknownOpcodeEnglishHeadHasNoColon) {
  EXPECT_EQ(Fight(Prog({"\tlad\tGR1,A", "\tXYZ"})), 1);
  EXPECT_EQ(out,
            "Error : line 2 \"lad\"  is not either assembler instruction, machine instruction, or macro "
            "instruction.  \n");
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tlad\tGR1,A"})), 1);
  EXPECT_EQ(out,
            "エラー： 2 行目：  \"lad\"  は アセンブラ命令 でも 機械語命令 でも マクロ命令 でもない。  正しい 命令語 "
            "の記述が必要です。 \n");
}

TEST_F(AnalysisFields, SmallLetterAfterTheFirstPosition) {
  EXPECT_EQ(Fight(Prog({"\tLad\tGR1,A"})), 2);
  EXPECT_TRUE(Has("Error : line 2: : There is a small letter in Lad. \n"));
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tLad\tGR1,A"})), 2);
  EXPECT_TRUE(Has("エラー： 2 行目： : 演算子 Lad の中に小文字がある。\n"));
}

TEST_F(AnalysisFields, CommaBehindTheOpcodeIsCountedButNotLogged) {
  EXPECT_EQ(Fight(Prog({"\tLD,\tGR1,A"})), 2);
  EXPECT_TRUE(Has("Error : line 2: A space is expected at the right side of the opcode. A comma is of no use. \n"));
  EXPECT_EQ(Codes(), std::vector<std::string>{"5CF454F8"});
}

TEST_F(AnalysisFields, TwoByteSpaceInTheOpcode) {
  EXPECT_EQ(Fight(Prog({"\tL\u3000D\tGR1,A"})), 3);
  EXPECT_TRUE(Has("There is a 2-byte space in the word. "));
  EXPECT_TRUE(Has("\nError: 2-Byte Space\n"));
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tL\u3000D\tGR1,A"})), 3);
  EXPECT_TRUE(Has("\nError: 全角の空白文字がある。\n"));
}

TEST_F(AnalysisFields, SemicolonGluedToEndCountsThreeErrors) {
  EXPECT_EQ(Fight({"PRG\tSTART", "\tRET", "\tEND;COMMENT"}), 3);
  EXPECT_TRUE(Has("Error :  \" END;\" : \n"
                  "NOP, RPUSH, RPOP, RET, and END do not take any operand, but a space at the right side. \n"
                  "One space or more are expected between the opcode and a comment mark(;).\n"
                  "Example 1: RPUSH ;Comments (Good)\n"
                  "Example 2: RPUSH;Comments  (Error)\n"
                  "Spec. 2. 1, Table (4) Row 3.\n"));
  EXPECT_EQ(Codes(), (std::vector<std::string>{"5CF454F8", "8888EBA8"}));
  Reset(0);
  EXPECT_EQ(Fight({"PRG\tSTART", "\tRET", "\tEND;COMMENT"}), 3);
  EXPECT_TRUE(Has("エラー：  \" END;\" \n"
                  "オペランドをとらない命令（NOP, RPUSH, RPOP, RET, END）の右に記述する\n"));
  EXPECT_TRUE(Has("仕様２．１（４）表の３行目\n"));
}

TEST_F(AnalysisFields, CommentGluedToRetInsideTheProgramIsClean) {
  EXPECT_EQ(Fight(Prog({"\tRET;comment"})), 0);
}

TEST_F(AnalysisFields, OnlyTheFirstUnknownOpcodeOfAProgramIsReported) {
  EXPECT_EQ(Fight(Prog({"\tFOO", "\tBAR"})), 1);
  EXPECT_TRUE(Has("\"FOO\""));
  EXPECT_FALSE(Has("\"BAR\""));
  // EXIT is known to the dispatch only; the opcode check stops it.
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tEXIT"})), 1);
  EXPECT_TRUE(Has("\"EXIT\""));
}

TEST_F(AnalysisFields, OpcodeTableHasTheThirtySixNames) {
  for (const char16_t* op : {u"START", u"END", u"DC", u"DS", u"LD", u"LAD", u"ST", u"ADDA", u"SUBA", u"ADDL", u"SUBL",
                             u"AND", u"OR", u"XOR", u"CPA", u"CPL", u"SRA", u"SRL", u"SLA", u"SLL", u"JPL", u"JMI",
                             u"JZE", u"JNZ", u"JOV", u"JUMP", u"CALL", u"RET", u"PUSH", u"POP", u"NOP", u"SVC", u"IN",
                             u"OUT", u"RPUSH", u"RPOP"})
    EXPECT_TRUE(IsOpcodeOfCasl2(op)) << U16ToUtf8(op);
  for (const char16_t* op : {u"EXIT", u"ld", u"", u"LDX", u"HALT"}) EXPECT_FALSE(IsOpcodeOfCasl2(op));
}

TEST_F(AnalysisFields, PlacementRuleOfDcAndDsNeverFires) {
  EXPECT_EQ(Fight(Prog({"A\tDC\t1", "\tLD\tGR1,A", "\tRET"})), 0);
  ASSERT_EQ(cs->firstDefLine.size(), 1u);
  EXPECT_EQ(cs->firstDefLine[0], 2147483647);
}

}  // namespace
