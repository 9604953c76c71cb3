// The link: the second address pass over programs that call each other, the
// memory budget, the loader, and the machine made ready before it.
#include "codegen_fixture.h"

using namespace cgtest;

namespace {

class CodegenLink : public Fixture {};

// Three programs: calls forward and back, a label further down, a DC of
// one, literals, and a later program entered at its label.
TEST_F(CodegenLink, ThreeProgramsWithForwardReferences) {
  ASSERT_EQ(Analyse("MAIN\tSTART\n\tCALL\tSUB1\n\tLD\tGR1,LAST\n\tCALL\tSUB2\n\tRET\nPTR\tDC\tLAST\n"
                    "LAST\tDC\t#0010\n\tEND\nSUB1\tSTART\n\tLAD\tGR1,=1\n\tRET\n\tEND\n"
                    "SUB2\tSTART\tENT\nV\tDC\t9\nENT\tLD\tGR2,='Z'\n\tCALL\tMAIN\n\tRET\n\tEND\n",
                    game),
            0)
      << c.out;
  EXPECT_EQ(b->vecSrcW[2].second_word, 0);  // LAST is not known in the first pass
  ASSERT_EQ(Link31NWGM(game), 0) << c.out;
  EXPECT_EQ(game.ErrorKazu, 0);
  // MAIN 0..9; SUB1 10..14 with its literal at 14; SUB2 15..23, whose START
  // jumps to ENT, the absolute address 18.
  EXPECT_EQ(Words(0, 25), (std::vector<int>{0, 0x8000, 10, 0x1010, 9, 0x8000, 15, 0x8100, 9, 0x10, 0, 0x1210, 14,
                                            0x8100, 1, 0x6400, 18, 9, 0x1020, 23, 0x8000, 0, 0x8100, 'Z', 0}));
  EXPECT_EQ(b->MaxMemory, 24);
  EXPECT_EQ(b->vecPrgW[2].AbAdrAtStart, 15);
  EXPECT_EQ(b->vecPrgW[0].prgRlAtStart, 0);
  // The literals belong to the lines that use them.
  EXPECT_EQ(Lines(0, 25), (std::vector<int>{0, 1, 1, 2, 2, 3, 3, 4, 5, 6, 8, 9, 9, 10, 9, 12, 12, 13, 14, 14, 15, 15,
                                            16, 14, -1}));
}

// An error found only by the second pass of the second program: the first
// program's second pass ran, the third is not looked at, nothing is loaded.
TEST_F(CodegenLink, ErrorInTheSecondProgramEndsTheLinkWithItsComplement) {
  ASSERT_EQ(Analyse("A\tSTART\n\tJUMP\tFWD\nFWD\tRET\n\tEND\nB\tSTART\n\tLD\tGR1,X\nX\tDC\t1\n\tEND\n"
                    "C\tSTART\n\tRET\n\tEND\n",
                    game),
            0)
      << c.out;
  b->vecSrcW[6].labelStr.assign(1, u'Y');  // X disappears between the passes
  b->vecPrgW[2].prgWordSize = 777;
  PrepareMachineForLink();
  EXPECT_EQ(Link31NWGM(game), -2);
  EXPECT_EQ(game.ErrorKazu, 1);
  EXPECT_EQ(b->vecSrcW[1].second_word, 3);    // A was settled
  EXPECT_EQ(b->vecPrgW[2].prgWordSize, 777);  // C was not looked at
  EXPECT_EQ(m->Memory[1], 0);
  EXPECT_EQ(m->lineOfAdr[0], -1);
}

TEST_F(CodegenLink, BudgetThroughTheLink) {
  // 65035 words, its literal the last of them: loaded, nothing said.
  ASSERT_EQ(Analyse("P\tSTART\n\tRET\nAREA\tDS\t65030\n\tLAD\tGR1,=1\n\tEND\n", game), 0) << c.out;
  c.out.clear();
  PrepareMachineForLink();
  ASSERT_EQ(Link31NWGM(game), 0) << c.out;
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(b->MaxMemory, 65035);
  EXPECT_EQ(Words(65033, 2), (std::vector<int>{65034, 1}));
  EXPECT_EQ(m->lineOfAdr[65034], 3);
  // 40004 + 25032 = 65036 words: counted on b and once more by the link;
  // nothing is loaded.
  ResetAll(1);
  game.ZeroCounters();
  EXPECT_EQ(Assemble("P\tSTART\n\tCALL\tQ\n\tRET\nAREA\tDS\t40000\n\tEND\nQ\tSTART\n\tRET\nMORE\tDS\t25030\n\tEND\n", game),
            -2);
  EXPECT_EQ(b->ErrorKazu, 1);
  EXPECT_EQ(game.ErrorKazu, 2);
  EXPECT_EQ(m->Memory[1], 0);
  EXPECT_EQ(m->lineOfAdr[0], -1);
}

// Both sets are English in either language.
TEST_F(CodegenLink, BudgetLimitsAndMessages) {
  const std::string set1 = "65535 words cannot be reserved, because the come2 is a 16-bit machine. \n";
  const std::string set2 =
      "The comet2 is a 16-bit machine. So it has 65536 words in all. \n"
      "65035 words cannot be reserved, because 500 words has been prereserved for Stack Area in comet2. \n";
  const struct {
    int total, result;
    std::string tail;
  } rows[] = {{65035, 0, ""}, {65036, -2, set2}, {65535, -2, set2}, {65536, -1, set1}, {70000, -1, set1}};
  for (int lang : {1, 0}) {
    for (const auto& r : rows) {
      SCOPED_TRACE(std::to_string(r.total) + " lang " + std::to_string(lang));
      ResetAll(lang);
      b->vecPrgW.resize(2);
      b->vecPrgW[0].prgWordSize = 30000;  // the sum over all programs counts
      b->vecPrgW[1].prgWordSize = r.total - 30000;
      c.out.clear();
      EXPECT_EQ(CkMaxMrySizeNW(), r.result);
      EXPECT_EQ(c.out, r.result == 0 ? ""
                                      : "Error : : Your program needs " + std::to_string(r.total) +
                                            " words in memory. \n" + r.tail);
      EXPECT_EQ(b->ErrorKazu, r.result == 0 ? 0 : 1);
      EXPECT_EQ(msgLog->WideLog.size(), r.result == 0 ? 0u : 1u);
    }
  }
}

TEST_F(CodegenLink, MachineBeforeTheLink) {
  m->PR = m->SP = m->GR[3] = m->Fovf = m->Fsign = m->Fzero = 5;
  m->Memory[10] = m->Memory[65100] = m->lineOfAdr[7] = m->execCount[3] = m->stackArea[1] = 4;
  m->srcFileName = "old.cas";
  b->SetLangBoth(0);
  PrepareMachineForLink();
  EXPECT_EQ((std::vector<int>{m->PR, m->SP, m->GR[3], m->Fovf + m->Fsign + m->Fzero, m->Memory[10], m->Memory[65100],
                              m->lineOfAdr[7], m->execCount[3], m->stackArea[1], m->dispLang}),
            (std::vector<int>{0, 0xFFFF, 0, 0, 0, 0, -1, 0, 0, 0}));
  EXPECT_EQ(m->srcFileName, "");
}

}  // namespace
