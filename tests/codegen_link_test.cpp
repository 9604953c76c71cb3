// The link: the second address pass, the memory budget and the loader, and
// what the Fight does to the machine before it.
#include <gtest/gtest.h>

#include "codegen_fixture.h"
#include "operands/adr_const.h"

using namespace cgtest;

namespace {

class CodegenLink : public ::testing::Test {
 protected:
  void SetUp() override { ResetAll(1); }
  void TearDown() override { ResetAll(1); }

  // The end of the line analysis: per program the DS and DC words and the
  // first address pass.
  void FirstPass() {
    for (int p = 0; p < static_cast<int>(b->vecPrgW.size()); ++p) {
      SetMryInAtDS_NWCS(p);
      SetMryInAtDC_NWCS(p);
      AdrCk53NWCS(p);
    }
  }
  FileBuilder fb;
  TDiagBase game;
};

// Three programs calling each other, with a forward label, literals, a DC
// label further down and the macros.
TEST_F(CodegenLink, ThreeProgramsWithForwardReferences) {
  fb.Start(u"MAIN");
  fb.Op(u"", u"CALL", u"SUB1");
  fb.Op(u"", u"LD", u"GR1,LAST");
  fb.Op(u"", u"CALL", u"SUB2");
  fb.Op(u"", u"RET");
  fb.Op(u"PTR", u"DC", u"LAST");
  fb.Op(u"LAST", u"DC", u"#0010");
  fb.End();
  fb.Start(u"SUB1");
  fb.Op(u"", u"RPUSH");
  fb.Op(u"", u"LAD", u"GR1,=1");
  fb.Op(u"", u"OUT", u"MSG,LEN");
  fb.Op(u"", u"RPOP");
  fb.Op(u"", u"RET");
  fb.Op(u"MSG", u"DC", u"'HI'");
  fb.Op(u"LEN", u"DC", u"2");
  fb.End();
  fb.Start(u"SUB2", u"ENT");
  fb.Op(u"V", u"DC", u"9");
  fb.Op(u"ENT", u"LD", u"GR2,='Z'");
  fb.Op(u"", u"CALL", u"MAIN");
  fb.Op(u"", u"RET");
  fb.End();
  {
    Captured c;
    FirstPass();
    // Forward references are not known yet.
    EXPECT_EQ(b->vecSrcW[2].second_word, 0);
  }
  Captured c;
  ASSERT_EQ(Link31NWGM(game), 0) << c.out;
  EXPECT_EQ(game.ErrorKazu, 0);

  // MAIN: 0..9; SUB1: 10..50 with its literal at 50; SUB2: 51..59.
  EXPECT_EQ(Words(0, 10), (std::vector<int>{0, 0x8000, 10, 0x1010, 9, 0x8000, 51, 0x8100, 9, 0x10}));
  EXPECT_EQ(Words(10, 1), (std::vector<int>{0}));
  EXPECT_EQ(Words(11, 14), (std::vector<int>{0x7001, 0, 0x7002, 0, 0x7003, 0, 0x7004, 0, 0x7005, 0, 0x7006, 0, 0x7007, 0}));
  EXPECT_EQ(Words(25, 2), (std::vector<int>{0x1210, 50}));
  EXPECT_EQ(Words(27, 12), (std::vector<int>{0x7001, 0, 0x7002, 0, 0x1210, 47, 0x1220, 49, 0xF000, 2, 0x7120, 0x7110}));
  EXPECT_EQ(Words(39, 7), (std::vector<int>{0x7170, 0x7160, 0x7150, 0x7140, 0x7130, 0x7120, 0x7110}));
  EXPECT_EQ(Words(46, 5), (std::vector<int>{0x8100, 'H', 'I', 2, 1}));
  // The entry word of SUB2's START (at 52) is settled by the START operand
  // check, not here.
  EXPECT_EQ(Words(51, 1), (std::vector<int>{0x6400}));
  EXPECT_EQ(Words(53, 7), (std::vector<int>{9, 0x1020, 59, 0x8000, 0, 0x8100, 'Z'}));
  EXPECT_EQ(b->MaxMemory, 60);
  EXPECT_EQ(b->vecPrgW[1].AbAdrAtStart, 10);
  EXPECT_EQ(b->vecPrgW[2].AbAdrAtStart, 51);
  EXPECT_EQ(b->vecPrgW[0].prgRlAtStart, 0);
  EXPECT_EQ(m->lineOfAdr[50], 10);  // SUB1's literal, owned by its LAD line
  EXPECT_EQ(m->lineOfAdr[59], 19);
  EXPECT_EQ(m->lineOfAdr[60], -1);
}

// An error found only by the second pass of the second program: the first
// program's second pass ran, the third is not looked at, nothing is loaded.
TEST_F(CodegenLink, ErrorInTheSecondProgramEndsTheLinkWithItsComplement) {
  fb.Start(u"A");
  fb.Op(u"", u"JUMP", u"FWD");
  fb.Op(u"FWD", u"RET");
  fb.End();
  fb.Start(u"B");
  fb.Op(u"", u"LD", u"GR1,X");
  fb.Op(u"X", u"DC", u"1");
  fb.End();
  fb.Start(u"C");
  fb.Op(u"", u"RET");
  fb.End();
  Captured c;
  FirstPass();
  b->vecSrcW[6].labelStr = u"Y";  // X disappears between the passes
  b->vecPrgW[2].prgWordSize = 777;
  EXPECT_EQ(Link31NWGM(game), -2);
  EXPECT_EQ(game.ErrorKazu, 1);
  EXPECT_EQ(b->vecSrcW[1].second_word, 3);  // A was settled
  EXPECT_EQ(b->vecPrgW[2].prgWordSize, 777);  // C was not looked at
  EXPECT_EQ(m->Memory[1], 0);
  EXPECT_EQ(m->lineOfAdr[0], -1);
}

TEST_F(CodegenLink, BudgetFailureIsCountedTwiceAndLoadsNothing) {
  fb.Start(u"P");
  fb.Op(u"", u"RET");
  fb.Op(u"AREA", u"DS", u"40000");
  fb.End();
  fb.Start(u"Q");
  fb.Op(u"", u"RET");
  fb.Op(u"MORE", u"DS", u"25032");  // 40002 + 25034 = 65036
  fb.End();
  Captured c;
  FirstPass();
  EXPECT_EQ(Link31NWGM(game), -2);
  EXPECT_EQ(b->ErrorKazu, 1);
  EXPECT_EQ(game.ErrorKazu, 2);
  EXPECT_EQ(m->Memory[1], 0);
  EXPECT_EQ(m->lineOfAdr[0], -1);
  EXPECT_NE(c.out.find("Error : : Your program needs 65036 words in memory. "), std::string::npos);
}

TEST_F(CodegenLink, LargestImageThatFits) {
  fb.Start(u"P");
  fb.Op(u"", u"RET");
  fb.Op(u"AREA", u"DS", u"65030");
  fb.Op(u"", u"LAD", u"GR1,=1");  // its literal is the 65035th word
  fb.End();
  Captured c;
  FirstPass();
  ASSERT_EQ(Link31NWGM(game), 0) << c.out;
  EXPECT_EQ(b->MaxMemory, 65035);
  EXPECT_EQ(m->Memory[65034], 1);
  EXPECT_EQ(m->Memory[65033], 65034);
  EXPECT_EQ(m->lineOfAdr[65034], 3);
  EXPECT_EQ(c.out, "");
}

struct BudgetCase {
  int total;
  int result;
};

TEST_F(CodegenLink, BudgetLimitsAndMessagesInEitherLanguage) {
  const std::string set2 =
      "Error : : Your program needs 65036 words in memory. \n"
      "The comet2 is a 16-bit machine. So it has 65536 words in all. \n"
      "65035 words cannot be reserved, because 500 words has been prereserved for Stack Area in comet2. \n";
  const std::string set1 =
      "Error : : Your program needs 65536 words in memory. \n"
      "65535 words cannot be reserved, because the come2 is a 16-bit machine. \n";
  for (int lang : {1, 0}) {
    for (BudgetCase bc : std::vector<BudgetCase>{{65035, 0}, {65036, -2}, {65535, -2}, {65536, -1}, {70000, -1}}) {
      ResetAll(lang);
      b->vecPrgW.resize(2);
      b->vecPrgW[0].prgWordSize = 30000;  // the sum over all programs counts
      b->vecPrgW[1].prgWordSize = bc.total - 30000;
      Captured c;
      EXPECT_EQ(CkMaxMrySizeNW(), bc.result) << bc.total;
      EXPECT_EQ(b->ErrorKazu, bc.result == 0 ? 0 : 1);
      if (bc.total == 65036) {
        EXPECT_EQ(c.out, set2);
      }
      if (bc.total == 65536) {
        EXPECT_EQ(c.out, set1);
      }
      if (bc.total == 70000) {
        EXPECT_NE(c.out.find("needs 70000 words"), std::string::npos);
      }
      if (bc.result == 0) {
        EXPECT_EQ(c.out, "");
      }
      if (bc.result != 0) {
        ASSERT_EQ(msgLog->WideLog.size(), 1u);
        EXPECT_EQ(msgLog->WideLog[0].kind, kError);
      }
    }
  }
}

TEST_F(CodegenLink, MachineBeforeTheLink) {
  m->PR = 5;
  m->SP = 3;
  m->GR[3] = 9;
  m->Fovf = m->Fsign = m->Fzero = 1;
  m->Memory[10] = 4;
  m->Memory[65100] = 4;
  m->lineOfAdr[7] = 2;
  m->execCount[3] = 8;
  m->stackArea[1] = 6;
  m->srcFileName = "old.cas";
  b->SetLangBoth(0);
  m->dispLang = 1;
  PrepareMachineForLink();
  EXPECT_EQ(m->PR, 0);
  EXPECT_EQ(m->SP, 0xFFFF);
  EXPECT_EQ(m->GR[3], 0);
  EXPECT_EQ(m->Fovf + m->Fsign + m->Fzero, 0);
  EXPECT_EQ(m->Memory[10], 0);
  EXPECT_EQ(m->Memory[65100], 0);
  EXPECT_EQ(m->lineOfAdr[7], -1);
  EXPECT_EQ(m->execCount[3], 0);
  EXPECT_EQ(m->stackArea[1], 0);
  EXPECT_EQ(m->srcFileName, "");
  EXPECT_EQ(m->dispLang, 0);
}

}  // namespace
