// Operand splitting and the driver's own passes: the slots with their
// commas, the literal-string scan, the comment cut by opcode class, the
// word-count preset, and the gates of Fight12NW.
#include "analysis_fixture.h"

namespace {

using atest::Analysis;
using atest::Prog;

class AnalysisSplit : public Analysis {
 protected:
  // One program whose line 1 has opcode `op` and operand text `text`.
  SrcLineW& Make(const std::u16string& op, const std::u16string& text) {
    Load(Prog({"\tNOP"}));
    SrcLineW& s = Line(1);
    s.opStr = op;
    s.oprndComStr = text;
    s.oprndComChH = text;
    return s;
  }
};

TEST_F(AnalysisSplit, SlotsKeepTheCommaThatEndedThem) {
  SrcLineW& s = Make(u"LD", u"GR1,GR2");
  SplitOprndsNW(0);
  EXPECT_EQ(s.oprnd1ChH, u"GR1,");
  EXPECT_EQ(s.oprnd2ChH, u"GR2");
  EXPECT_EQ(s.oprndCount, 2);
  EXPECT_EQ(s.oprnd1Str, u"GR1,");
  EXPECT_EQ(s.oprnd2Str, u"GR2");

  SrcLineW& t = Make(u"LD", u"GR1 , GR2");
  SplitOprndsNW(0);
  EXPECT_EQ(t.oprnd1ChH, u"GR1,");
  EXPECT_EQ(t.oprnd2ChH, u"GR2");
}

TEST_F(AnalysisSplit, BlankInPlaceOfACommaStartsTheNextOperand) {
  SrcLineW& s = Make(u"LD", u"GR1 GR2");
  SplitOprndsNW(0);
  EXPECT_EQ(s.oprnd1ChH, u"GR1");
  EXPECT_EQ(s.oprnd2ChH, u"GR2");
  EXPECT_EQ(s.oprndCount, 2);
}

TEST_F(AnalysisSplit, DoubledCommaAndTheFourthSlot) {
  SrcLineW& s = Make(u"LD", u"GR1,,GR2");
  SplitOprndsNW(0);
  EXPECT_EQ(s.oprnd1ChH, u"GR1,");
  EXPECT_EQ(s.oprnd2ChH, u",");
  EXPECT_EQ(s.oprnd3ChH, u"GR2");
  EXPECT_EQ(s.oprndCount, 3);

  SrcLineW& t = Make(u"LD", u"A,B,C,D,E");
  t.oprnd1Str = u"old";
  SplitOprndsNW(0);
  EXPECT_EQ(t.oprnd1ChH, u"A,");
  EXPECT_EQ(t.oprnd3ChH, u"C,");
  EXPECT_EQ(t.oprnd4ChH, u"D,E");
  EXPECT_EQ(t.oprndCount, 3);
  EXPECT_EQ(t.oprnd1Str, u"old");  // four slots: the strings are not written
}

TEST_F(AnalysisSplit, EmptyTextEmptiesTheSlotsAndKeepsTheCount) {
  SrcLineW& s = Make(u"RET", u"");
  s.oprnd1ChH = u"X";
  s.oprndCount = 7;
  SplitOprndsNW(0);
  EXPECT_TRUE(s.oprnd1ChH.empty());
  EXPECT_EQ(s.oprndCount, 7);
  // A DC line is not split here.
  SrcLineW& d = Make(u"DC", u"1,2");
  SplitOprndsNW(0);
  EXPECT_TRUE(d.oprnd1ChH.empty());
}

TEST_F(AnalysisSplit, StringLiteralIsCopiedWhole) {
  SrcLineW& s = Make(u"LD", u"GR1,='AB''C',GR2");
  SplitOprndsNW(0);
  EXPECT_EQ(s.oprnd2ChH, u"='AB''C',");
  EXPECT_EQ(s.oprnd3ChH, u"GR2");
  SrcLineW& t = Make(u"LD", u"GR1,=' , '");
  SplitOprndsNW(0);
  EXPECT_EQ(t.oprnd2ChH, u"=' , '");
  EXPECT_EQ(Errors(), 0);
}

TEST_F(AnalysisSplit, LiteralStringErrors) {
  Make(u"LD", u"GR1,='AB");
  SplitOprndsNW(0);
  EXPECT_EQ(out, "Error : line 2:  \"GR1,='AB\" : The literal string constant is not correctly closed. \n");
  Make(u"LD", u"GR1,='AB'X");
  SplitOprndsNW(0);
  EXPECT_TRUE(Has("Error : line 2:  \"GR1,='AB'X\" : A literal charcter constant is not correctly closed. \n"));
  EXPECT_EQ(Errors(), 2);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"DEF0036E", "F044036E"}));
  EXPECT_EQ(Line(1).oprndCount, 1);
  Reset(0);
  Make(u"LD", u"GR1,='AB");
  SplitOprndsNW(0);
  EXPECT_EQ(out, "エラー： 2 行目：  \"GR1,='AB\" : リテラル文字定数が正しく閉じていない。\n");
}

TEST_F(AnalysisSplit, ExtractOneOperandMovesThePositions) {
  wstr src = u"A , B";
  wstr s1, s2, s3, s4;
  std::array<wstr*, 5> slots{&src, &s1, &s2, &s3, &s4};
  Load(Prog({"\tNOP"}));
  int slotNr = 1, destPos = 0, srcPos = 0;
  EXPECT_EQ(ExtractOprnd5NW(1, slots, slotNr, destPos, srcPos), 0);
  EXPECT_EQ(s1, u"A,");
  EXPECT_EQ(slotNr, 2);
  EXPECT_EQ(srcPos, 4);
  destPos = 0;
  EXPECT_EQ(ExtractOprnd5NW(1, slots, slotNr, destPos, srcPos), 0);
  EXPECT_EQ(s2, u"B");
  EXPECT_EQ(slotNr, 3);
}

TEST_F(AnalysisSplit, CommentCutByOpcodeClass) {
  // Class B keeps a semicolon inside a string and cuts the rest.
  SrcLineW& b1 = Make(u"LD", u"GR1,='A;B' ;c");
  CutOprndCommentNW(0);
  EXPECT_EQ(b1.oprndComStr, u"GR1,='A;B'");
  // Class A cuts at the first semicolon and tidies the blanks.
  SrcLineW& a = Make(u"POP", u"='A;B'");
  CutOprndCommentNW(0);
  EXPECT_EQ(a.oprndComStr, u"='A");
  SrcLineW& a2 = Make(u"IN", u"BUF,\t  LEN ");
  CutOprndCommentNW(0);
  EXPECT_EQ(a2.oprndComStr, u"BUF, LEN");
  // DC: blanks next to commas outside strings go; a tab or two blanks
  // behind the last string start the comment.
  SrcLineW& d = Make(u"DC", u"1 , 'a , b' ,2  comment");
  CutOprndCommentNW(0);
  EXPECT_EQ(d.oprndComStr, u"1,'a , b',2");
  // Class B keeps its blanks next to commas, but a tab ends the text.
  SrcLineW& b2 = Make(u"ST", u"GR1 , A\tcomment");
  CutOprndCommentNW(0);
  EXPECT_EQ(b2.oprndComStr, u"GR1 , A");
}

TEST_F(AnalysisSplit, WordCountPresetByOpcode) {
  Load(Prog({"\tRET\tcomment", "\tJUMP\tA", "\tPOP\tGR1 rest", "\tLD\tGR1,A"}));
  Line(0).opStr = u"START";
  Line(0).first_word = 5;
  Line(1).opStr = u"RET";
  Line(1).oprndComChH = u"comment";
  Line(2).opStr = u"JUMP";
  Line(3).opStr = u"POP";
  Line(3).oprndComChH = u"GR1 \u3000rest ";
  Line(4).opStr = u"LD";
  Line(4).word_kazu = 9;
  EXPECT_EQ(ExtractAllOprndsNWCS(0), 0);
  EXPECT_EQ(Line(0).first_word, 0);
  EXPECT_EQ(Line(0).word_kazu, 1);
  EXPECT_EQ(Line(1).commentStr, u"comment");
  EXPECT_EQ(Line(1).word_kazu, 1);
  EXPECT_EQ(Line(2).word_kazu, 2);
  EXPECT_EQ(Line(3).commentStr, u"rest");
  EXPECT_EQ(Line(3).oprndCount, 1);
  EXPECT_EQ(Line(4).word_kazu, 9);
  // An opcode no rule knows is a fault of the program.
  Line(4).opStr = u"XYZ";
  EXPECT_EQ(ExtractAllOprndsNWCS(0), -1);
  EXPECT_EQ(out, "Prg Error: line=5:  \"XYZ\" There does not exist an op code of XYZ in casl2.\n");
  EXPECT_EQ(Errors(), 1);
}

TEST_F(AnalysisSplit, SecondRegisterChecksOnTheirOwn) {
  Load(Prog({"\tLD\tGR1,GR8"}));
  Line(1).oprnd2ChH = u"GR8";
  EXPECT_EQ(r2NWCS(*cs, 1), 1);
  EXPECT_EQ(out,
            "Error : line 2:  \"GR8\" The comet2 has eight general registers of GR0-GR7. Neither GR8 nor GR9 is a "
            "general resister of comet2. \n");
  Line(1).oprnd2ChH = u"GR3";
  EXPECT_EQ(r2NWCS(*cs, 1), 0);
  Line(1).oprnd2ChH = u"X";
  EXPECT_EQ(r2NWCS(*cs, 1), 1);
  EXPECT_EQ(Codes().back(), "81296434");
}

// ---- the gates of Fight12NW ---------------------------------------------------

TEST_F(AnalysisSplit, FirstProgramWithErrorsHidesTheSecond) {
  std::vector<std::string> src = Prog({"\tST\tGR1,GR2", "\tRET"}, "P1");
  std::vector<std::string> two = Prog({"\tSLA\tGR1,GR2", "1X\tNOP", "\tRET"}, "P2");
  src.insert(src.end(), two.begin(), two.end());
  EXPECT_EQ(Fight(src), 1);
  EXPECT_TRUE(Has("line 2: ST cannot"));
  EXPECT_FALSE(Has("SLA"));
  EXPECT_FALSE(Has("1X"));
  // The second program was not even split.
  EXPECT_TRUE(Line(5).labelStr.empty());
}

TEST_F(AnalysisSplit, LiteralErrorHidesTheInstructionError) {
  EXPECT_GE(Fight(Prog({"\tLD\tGR1,=#12", "\tST\tGR1,GR2", "\tRET"})), 1);
  EXPECT_FALSE(Has("cannot be written in a format of"));
  EXPECT_EQ(Line(2).first_word, 0);
}

TEST_F(AnalysisSplit, LabelErrorHidesEveryLaterStage) {
  EXPECT_EQ(Fight(Prog({"abc\tNOP", "\tST\tGR1,GR2", "\tFOO", "\tRET"})), 1);
  EXPECT_FALSE(Has("FOO"));
  EXPECT_FALSE(Has("ST cannot"));
}

TEST_F(AnalysisSplit, WarningsPassEveryGateAndTheAddressesAreGiven) {
  EXPECT_EQ(Fight(Prog({"\tSVC\t2", "\tJUMP\tB", "A\tDC\t3", "B\tLD\tGR1,A", "\tRET"})), 0);
  EXPECT_EQ(Warnings(), 1);
  // The address pass has run: every line has its address and its words.
  EXPECT_EQ(Line(2).abAdr, 3);
  EXPECT_EQ(Line(4).abAdr, 6);
  ASSERT_EQ(Line(4).vecWord.size(), 2u);
  EXPECT_EQ(Line(4).vecWord[0].wordCode, 0x1010);
  EXPECT_EQ(Line(4).vecWord[1].wordCode, 5);
}

TEST_F(AnalysisSplit, ErrorsBeforeTheDriverStopItAtOnce) {
  Load(Prog({"\tST\tGR1,GR2"}));
  Prepare();
  b->ErrorKazu = 1;
  Fight12NW(game);
  EXPECT_TRUE(Line(1).opStr.empty());
  EXPECT_EQ(out, "");
}

}  // namespace
