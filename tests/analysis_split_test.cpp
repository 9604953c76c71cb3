// Operand splitting and the driver's own passes: the slots with their
// commas, the comment cut by opcode class, the word-count preset, the gates
// of Fight12NW, and odd text of every kind.
#include "analysis_fixture.h"

namespace {

using atest::Prog;

class AnalysisSplit : public atest::Analysis {
 protected:
  // Line 1 with opcode `op` and operand text `text`; a slot and the count
  // hold old values that the split must replace or keep.
  SrcLineW& Text(const std::u16string& op, const std::u16string& text) {
    SrcLineW& s = Make(U16ToUtf8(op) + "|old");
    s.oprndComStr = s.oprndComChH = text;
    s.oprndCount = 7;
    return s;
  }
};

TEST_F(AnalysisSplit, SlotsKeepTheCommaThatEndedThem) {
  const std::vector<std::array<std::u16string, 6>> cases{
      // opcode, text, the four slots
      {u"LD", u"GR1,GR2", u"GR1,", u"GR2", u"", u""},
      {u"LD", u"GR1 , GR2", u"GR1,", u"GR2", u"", u""},
      {u"LD", u"GR1 GR2", u"GR1", u"GR2", u"", u""},  // a blank in place of a comma
      {u"LD", u"GR1,,GR2", u"GR1,", u",", u"GR2", u""},
      {u"LD", u"A,B,C,D,E", u"A,", u"B,", u"C,", u"D,E"},
      {u"LD", u"GR1,='AB''C',GR2", u"GR1,", u"='AB''C',", u"GR2", u""},
      {u"LD", u"GR1,=' , '", u"GR1,", u"=' , '", u"", u""},
      {u"RET", u"", u"", u"", u"", u""},     // no text: the count stays
      {u"DC", u"1,2", u"old", u"", u"", u""},  // DC is not split here
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(U16ToUtf8(c[0] + u" " + c[1]));
    SrcLineW& s = Text(c[0], c[1]);
    EXPECT_EQ(SplitOprndsNW(0), 0);
    EXPECT_EQ((std::array<std::u16string, 4>{s.oprnd1ChH, s.oprnd2ChH, s.oprnd3ChH, s.oprnd4ChH}),
              (std::array<std::u16string, 4>{c[2], c[3], c[4], c[5]}));
    const int count = c[1].empty() || c[0] == u"DC" ? 7 : c[4].empty() ? 2 : 3;
    EXPECT_EQ(s.oprndCount, count);
  }
  EXPECT_EQ(Errors(), 0);
}

TEST_F(AnalysisSplit, CommentCutByOpcodeClass) {
  const std::vector<std::array<std::u16string, 3>> cases{
      {u"LD", u"GR1,='A;B' ;c", u"GR1,='A;B'"},              // B: a ";" in a string stays
      {u"POP", u"='A;B'", u"='A"},                           // A: the first ";" cuts
      {u"IN", u"BUF,\t  LEN ", u"BUF, LEN"},                 // A: blanks tidied
      {u"DC", u"1 , 'a , b' ,2  comment", u"1,'a , b',2"},  // DC: blanks next to commas go
      {u"ST", u"GR1 , A\tcomment", u"GR1 , A"},              // B: blanks stay, a tab cuts
      // Without apostrophes: the first of ";", a tab and two blanks cuts.
      {u"LD", u"GR1, A  x;y\tz", u"GR1, A"},
      {u"LD", u"GR1, A ;x  y", u"GR1, A"},
      {u"JUMP", u"A\t;x", u"A"},
      {u"JUMP", u" A ", u"A"},
      {u"DC", u"1, 2 ;x", u"1,2"},
      {u"DC", u"3\t;x", u"3"},
      {u"DC", u"'A'' B'  ;x", u"'A'' B'"},  // apostrophes: each cut on its own
      {u"EXIT", u"A ;x", u"A ;x"},          // no class: left as it is
  };
  for (const auto& [op, text, want] : cases) {
    SrcLineW& s = Text(op, text);
    CutOprndCommentNW(0);
    EXPECT_EQ(s.oprndComStr, want) << U16ToUtf8(text);
  }
}

TEST_F(AnalysisSplit, WordCountPresetByOpcode) {
  Load(Prog({"\tRET\tcomment", "\tJUMP\tA", "\tPOP\tGR1 rest", "\tLD\tGR1,A"}));
  const char16_t* ops[] = {u"START", u"RET", u"JUMP", u"POP", u"LD"};
  for (int i = 0; i < 5; ++i) Line(i).opStr = ops[i];
  Line(0).first_word = 5;
  Line(1).oprndComChH = u"comment";
  Line(3).oprndComChH = u"GR1 \u3000rest ";
  Line(4).word_kazu = 9;
  EXPECT_EQ(ExtractAllOprndsNWCS(0), 0);
  EXPECT_EQ(Line(0).first_word, 0);
  EXPECT_EQ(Line(1).commentStr + u"|" + Line(3).commentStr, u"comment|rest");
  // START, RET, JUMP, POP and LD (untouched).
  for (int i = 0; i < 5; ++i) EXPECT_EQ(Line(i).word_kazu, (std::array<int, 5>{1, 1, 2, 1, 9})[i]) << i;
  EXPECT_EQ(Line(3).oprndCount, 1);
}

// ---- the gates of Fight12NW ---------------------------------------------------

TEST_F(AnalysisSplit, EveryStageHidesTheLaterOnes) {
  const std::string kSt = "Error : line 2: ST cannot be written in a format of ST r1, r2. \n"
                          "The 2nd operand of ST must be an address constant(or a label). (Spec.of COMET2 1.2 (1))\n";
  for (const atest::Row& r : std::vector<atest::Row>{
           // The first program with errors hides the second.
           {1, {"P1\tSTART", "\tST\tGR1,GR2", "\tRET", "\tEND", "P2\tSTART", "\tSLA\tGR1,GR2", "1X\tNOP", "\tEND"},
            {1, 0, 0, 0}, kSt},
           // A literal error hides the form error, a label error all else.
           {1, {"\tLD\tGR1,=#12", "\tST\tGR1,GR2", "\tRET"}, {1, 0, 0, 0},
            "Error : line 2: A hexadecimal number should be written in four letters. \n"},
           {1, {"abc\tNOP", "\tST\tGR1,GR2", "\tFOO", "\tRET"}, {1, 0, 0, 0}, "Error : line 2:  \"abc\" : \n"},
       })
    Check(r);
  // Errors counted before the driver stop it at once.
  Reset(1);
  Load(Prog({"\tST\tGR1,GR2"}));
  Prepare();
  b->ErrorKazu = 1;
  Fight12NW(game);
  EXPECT_TRUE(Line(1).opStr.empty());
  EXPECT_EQ(out, "");
}

TEST_F(AnalysisSplit, WarningsPassEveryGateAndTheAddressesAreGiven) {
  EXPECT_EQ(Fight(Prog({"\tSVC\t2", "\tJUMP\tB", "A\tDC\t3", "B\tLD\tGR1,A", "\tRET"})), 0);
  EXPECT_EQ(Warnings(), 1);
  EXPECT_EQ(Line(2).abAdr, 3);
  EXPECT_EQ(Line(4).abAdr, 6);
  ASSERT_EQ(Line(4).vecWord.size(), 2u);
  EXPECT_EQ(Line(4).vecWord[0].wordCode, 0x1010);
  EXPECT_EQ(Line(4).vecWord[1].wordCode, 5);
}

// ---- no crash on any input ----------------------------------------------------

TEST_F(AnalysisSplit, RandomLinesNeverBreakTheChain) {
  auto words = [](std::string s) {
    std::vector<std::string> v{""};
    for (char ch : s) ch == '|' ? v.push_back("") : v.back().push_back(ch);
    return v;
  };
  const auto labels = words("|A|GR8|abc|LONGLABEL9|1X|A\u3000");
  const auto ops = words("LD|ST|LAD|ADDA|SLA|SRA|JPL|CALL|PUSH|POP|SVC|RET|NOP|DC|DS|IN|RPUSH|EXIT|ld|LD,|RET;x|NOP;");
  const auto pieces = words("GR1|GR8|,| |A|='A|''|'|#12|=5|=|;c|\t|gr2|-1|GR0|\u3000|99999|GR7X");
  const auto good = words("LD\tGR1,A|LD\tGR2,GR3|ADDA\tGR1,=5|JUMP\tA,GR1|PUSH\t0,GR1|POP\tGR1|IN\tA,A|OUT\tA,A|"
                          "RPUSH|RPOP|DS\t3|DC\t'AB',#0001|LAD\tGR1,='X'|SLL\tGR1,2|CALL\tPRG");
  unsigned seed = 2024;
  auto next = [&seed](size_t n) { return static_cast<size_t>(((seed = seed * 1664525u + 1013904223u) >> 8) % n); };
  int clean = 0;
  for (int round = 0; round < 200; ++round) {
    std::vector<std::string> src;
    for (size_t k = 1 + next(6); k > 0; --k) {
      if (next(3) != 0) {
        src.push_back("\t" + good[next(good.size())]);
        continue;
      }
      src.push_back(labels[next(labels.size())] + "\t" + ops[next(ops.size())] + "\t");
      for (size_t j = next(5); j > 0; --j) src.back() += pieces[next(pieces.size())];
    }
    src.insert(src.end(), {"\tRET", "A\tDC\t1"});
    Reset(round % 3 == 0 ? 0 : 1);
    Fight(Prog(src));
    CkLabelInUseNW();
    clean += Errors() == 0;
    for (int i = 1; Errors() == 0 && i <= static_cast<int>(src.size()); ++i)  // a clean line has its words
      EXPECT_TRUE(Line(i).opStr.empty() || Line(i).opStr == u"DS" ||
                  static_cast<int>(Line(i).vecWord.size()) == Line(i).word_kazu) << round << " " << i << "\n" << out;
  }
  EXPECT_GT(clean, 20);
}

TEST_F(AnalysisSplit, EmptyAndDegenerateProgramRecords) {
  Load(Prog({}));
  Prepare();
  EXPECT_EQ(Fight12NW(game), 0);
  PrgDataW p;  // a program record that points outside the lines is harmless
  p.prgFirstLine = 5;
  p.prgEndLine = 99;
  b->vecPrgW.push_back(p);
  Label30GNW(5, 98);
  EXPECT_EQ(CkOpStrNW(1) + SplitOprndsNW(1) + jnz2NWCS(1) + CkLabelInUseNW() + CkOpStrNW(7), 0);
}

}  // namespace
