// Odd source text of every kind goes through the whole chain without a
// crash, and a program that passes every gate has its words in place.
#include "analysis_fixture.h"

namespace {

using atest::Analysis;
class AnalysisRobust : public Analysis {};

TEST_F(AnalysisRobust, RandomLinesNeverBreakTheChain) {
  const std::vector<std::string> labels{"", "", "A", "B1", "GR8", "abc", "LONGLABEL9", "1X", "A\u3000"};
  const std::vector<std::string> ops{"LD",  "ST",  "LAD", "ADDA", "SUBL", "AND", "SLA", "SRA", "JPL", "JUMP",
                                     "CALL", "PUSH", "POP", "SVC", "RET", "NOP", "DC",  "DS",  "IN",  "OUT",
                                     "RPUSH", "RPOP", "EXIT", "ld", "LD,", "RET;x", "NOP;"};
  const std::vector<std::string> pieces{"GR1", "GR8", ",",  " ",  "A",   "B1",  "='A", "''", "'", "#12",
                                        "#FFFF", "=5", "=", ";c", "\t", "gr2", "-1", "+", "GR0", "\u3000",
                                        "99999", "GR7X", "  "};
  const std::vector<std::string> good{"\tLD\tGR1,A",    "\tLD\tGR2,GR3",   "\tADDA\tGR1,=5",  "\tJUMP\tA,GR1",
                                      "\tPUSH\t0,GR1",  "\tPOP\tGR1",      "\tIN\tA,A",       "\tOUT\tA,A",
                                      "\tRPUSH",        "\tRPOP",          "\tDS\t3",         "\tDC\t'AB',#0001",
                                      "\tLAD\tGR1,='X'", "\tSLL\tGR1,2",    "\tCPL\tGR1,#FFFF", "\tCALL\tPRG"};
  unsigned seed = 2024;
  auto next = [&seed](size_t n) {
    seed = seed * 1664525u + 1013904223u;
    return static_cast<size_t>((seed >> 8) % n);
  };
  int clean = 0;
  for (int round = 0; round < 300; ++round) {
    Reset(round % 3 == 0 ? 0 : 1);
    std::vector<std::string> src{"PRG\tSTART"};
    int n = 1 + static_cast<int>(next(6));
    for (int k = 0; k < n; ++k) {
      if (next(3) != 0) {
        src.push_back(good[next(good.size())]);
        continue;
      }
      std::string line = labels[next(labels.size())] + "\t" + ops[next(ops.size())] + "\t";
      int m = static_cast<int>(next(5));
      for (int j = 0; j < m; ++j) line += pieces[next(pieces.size())];
      src.push_back(line);
    }
    src.push_back("\tRET");
    src.push_back("A\tDC\t1");
    src.push_back("\tEND");
    Fight(src);
    CkLabelInUseNW();
    EXPECT_GE(Errors(), 0);
    if (Errors() == 0) {
      ++clean;
      // Every instruction line of a clean program has its words.
      for (int i = 1; i < static_cast<int>(src.size()) - 1; ++i) {
        const SrcLineW& s = Line(i);
        if (s.opStr.empty() || s.opStr == u"DS") continue;
        EXPECT_EQ(static_cast<int>(s.vecWord.size()), s.word_kazu) << round << " " << i << "\n" << out;
      }
    }
  }
  EXPECT_GT(clean, 30);
}

TEST_F(AnalysisRobust, EmptyAndDegenerateProgramRecords) {
  Load({"PRG\tSTART", "\tEND"});
  Prepare();
  EXPECT_EQ(Fight12NW(game), 0);
  // A program record that points outside the lines is harmless.
  PrgDataW p;
  p.prgFirstLine = 5;
  p.prgEndLine = 99;
  b->vecPrgW.push_back(p);
  Label30GNW(5, 98);
  EXPECT_EQ(CkOpStrNW(1), 0);
  EXPECT_EQ(SplitOprndsNW(1), 0);
  EXPECT_EQ(jnz2NWCS(1), 0);
  EXPECT_EQ(CkLabelInUseNW(), 0);
  EXPECT_EQ(CkOpStrNW(7), 0);
}

}  // namespace
