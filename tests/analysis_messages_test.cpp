// Messages of the register and opcode checks that the chain itself cannot
// reach, or reaches only with a state made by hand: called directly on
// prepared line records.
#include "analysis_fixture.h"

namespace {

using atest::Analysis;
using atest::Prog;

class AnalysisMessages : public Analysis {
 protected:
  SrcLineW& Make(std::u16string op) {
    Load(Prog({"\tNOP"}));
    SrcLineW& s = Line(1);
    s.opStr = std::move(op);
    return s;
  }
};

TEST_F(AnalysisMessages, IndexTextWithoutACommaBeforeIt) {
  SrcLineW& s = Make(u"LD");
  s.oprnd2ChH = u"A";
  s.oprnd3ChH = u"GR2";
  cs->ChFlag = 0;
  EXPECT_NE(RegXNWCS(*cs, 1, 3), 0);
  EXPECT_EQ(out,
            "Error : line 2:  \"GR2\" : Either a comma or a comment mark(;)is expected at the right side of the 2nd "
            "operand. \n");
  Reset(0);
  SrcLineW& t = Make(u"LD");
  t.oprnd2ChH = u"A";
  t.oprnd3ChH = u"GR2";
  cs->ChFlag = 0;
  RegXNWCS(*cs, 1, 3);
  EXPECT_EQ(out, "エラー： 2 行目：  \"GR2\" : 第２オペランドの右にコンマあるいはコメント記号（；）を明示すること。 \n");
}

TEST_F(AnalysisMessages, ImpossibleCommaFlagIsReportedAsAFault) {
  SrcLineW& s = Make(u"LD");
  s.oprnd2ChH = u"A";
  cs->ChFlag = 7;
  EXPECT_EQ(RegXNWCS(*cs, 1, 3), 0);
  EXPECT_TRUE(Has("Error of else! A  -1==ChFlag  GetCommaAriFlagForNextOprnd(...); CommaNextOperand\n"));
  EXPECT_TRUE(Has("Error of else! RegX(), RegX\n"));
  EXPECT_EQ(s.word_kazu, 2);
  EXPECT_EQ(s.oprndCount, 2);
  EXPECT_EQ(Errors(), 0);
}

TEST_F(AnalysisMessages, IndexRegisterAdviceInWordsAndCountedFindings) {
  SrcLineW& s = Make(u"LD");
  s.oprnd3ChH = u"GR8";
  EXPECT_EQ(AnalystIndexRegNWCS(*cs, 1, 3), 1);
  EXPECT_EQ(out,
            "Error : line 2: Neither GR8 nor GR9 is a general register of comet2. Each of the GR1-GR7 can be used as an "
            "index register. GR0 is not allowed to be an index register. \n");
  EXPECT_EQ(Errors(), 0);
  out.clear();
  s.oprnd3ChH = u"GR0X";
  AnalystIndexRegNWCS(*cs, 1, 3);
  EXPECT_EQ(out, "Error : line 2: GR0 is not allowed to be an index register. \n");
  out.clear();
  s.oprnd3ChH = u"9ab";
  EXPECT_EQ(AnalystIndexRegNWCS(*cs, 1, 3), 2);
  EXPECT_EQ(Errors(), 2);
  EXPECT_TRUE(Has("Error : line 2: 9ab: The 1st character of a label must be a capital alphabetical letter. A numeral "
                  "cannot be used as the 1st letter of a label. \n"));
  // In the jump family the index stands in slot 2 and GR8 draws no advice.
  out.clear();
  s.oprnd2ChH = u"GR8";
  EXPECT_EQ(AnalystIndexRegNWCS(*cs, 1, 2), 0);
  EXPECT_EQ(out, "");
  Reset(0);
  SrcLineW& t = Make(u"LD");
  t.oprnd3ChH = u"GR9";
  AnalystIndexRegNWCS(*cs, 1, 3);
  EXPECT_EQ(out,
            "エラー： 2 行目：  指標レジスタに使えるのは GR1-GR7 の7個だけです。 GR8-GR9 はCASL2のレジスタとして存在しないので使"
            "えない。 \n");
}

TEST_F(AnalysisMessages, Gr89AsAnErrorAndOnlyForThreeCharacters) {
  SrcLineW& s = Make(u"LAD");
  s.oprnd2ChH = u"GR89";
  EXPECT_EQ(AnalystGR89NWCS(*cs, 1, u"LAD", u"Error"), 0);
  s.oprnd2ChH = u"GR9";
  EXPECT_EQ(AnalystGR89NWCS(*cs, 1, u"LAD", u"Error"), 1);
  EXPECT_EQ(Errors(), 1);
  EXPECT_EQ(Warnings(), 0);
  Reset(0);
  SrcLineW& t = Make(u"LAD");
  t.oprnd2ChH = u"GR8";
  AnalystGR89NWCS(*cs, 1, u"LAD", u"Error");
  EXPECT_EQ(out,
            "エラー： 2 行目： GR8レジスタは GR0-GR7 の８個である。 CASL2 には GR8-GR9 のレジスタは無い。 GR0-GR7 は予約語だが、"
            "GR8-GR9 は予約語ではない。 GR8-GR9 の記述はラベルとみなされるのでエラーとなる。  混乱をさけるため GR8-GR9 "
            "をラベルとして使わないほうがよい。（推奨） \n");
}

TEST_F(AnalysisMessages, EmptyFirstOperandOfAnotherOpcode) {
  Make(u"LD");
  EXPECT_EQ(CkOpAdrOprndNW(*cs, 1, u"LD", u"", u""), 1);
  EXPECT_EQ(out, "Error of else: LD\n");
  EXPECT_EQ(Errors(), 1);
}

TEST_F(AnalysisMessages, JapaneseTextsOfAMissingJumpTarget) {
  Reset(0);
  Make(u"CALL");
  CkOpAdrOprndNW(*cs, 1, u"CALL", u"コール", u"CALL subroutine");
  EXPECT_EQ(out,
            "エラー： 2 行目： CALL 命令は呼び出し先を示すアドレス（ラベル）が必要。 ただし、他のプログラム名は指定できるが、"
            "他のプログラム内のラベルは指定できない。 \n");
  out.clear();
  Line(1).opStr = u"PUSH";
  CkOpAdrOprndNW(*cs, 1, u"PUSH", u"プッシュ", u"PUSH");
  EXPECT_EQ(out, "エラー： 2 行目： PUSH命令はオペランドとして（スタック内容が格納してある）アドレス名（ラベル）が必要。\n");
  out.clear();
  Line(1).opStr = u"SVC";
  CkOpAdrOprndNW(*cs, 1, u"SVC", u"", u"");
  EXPECT_EQ(out, "エラー： 2 行目： SVC はオペランドとしてアドレス名（ラベル）が必要。\n");
  out.clear();
  Line(1).opStr = u"JUMP";
  Line(1).oprnd1ChH = u"GR3,";
  CkOpAdrOprndNW(*cs, 1, u"JUMP", u"", u"");
  EXPECT_EQ(out,
            "警告： 2 行目： GR3 の右にコンマは不要です。\n"
            "エラー： 2 行目： JUMP は、一つ目のオペランドとしてレジスター GR0-GR7 をとらない。\n");
}

TEST_F(AnalysisMessages, DispatchFaultOfAnUnknownOpcode) {
  Load(Prog({"\tXYZ"}));
  Line(1).opStr = u"XYZ";
  Line(0).opStr = u"START";
  jnz2NWCS(0);
  EXPECT_EQ(out, "Prg. Error: 2: XYZ is not an instruction of casl2. \n");
  EXPECT_EQ(Errors(), 1);
  Reset(0);
  Load(Prog({"\tXYZ"}));
  Line(1).opStr = u"XYZ";
  ExtractAllOprndsNWCS(0);
  jnz2NWCS(0);
  EXPECT_EQ(out,
            "Prg Error: line=2:  \"XYZ\" 該当する OP code が存在しない。\n"
            "Prg. Error: 2: XYZ に該当する命令がない。\n");
  EXPECT_EQ(Errors(), 2);
}

TEST_F(AnalysisMessages, ExitGetsTheStopWordInTheDispatch) {
  Load(Prog({"\tEXIT"}));
  Line(1).opStr = u"EXIT";
  jnz2NWCS(0);
  EXPECT_EQ(Line(1).first_word, 0x8800);
  EXPECT_EQ(Line(1).word_kazu, 1);
  EXPECT_EQ(Errors(), 0);
}

TEST_F(AnalysisMessages, SemicolonFormsWithTabAndOpcodeCut) {
  SrcLineW& s = Make(u"RPOP;x");
  s.rawStr = u"\tRPOP;x";
  EXPECT_EQ(RemoveNoOprndOpSemiColnNW(1), -1);
  EXPECT_EQ(Errors(), 1);
  EXPECT_EQ(Codes(), std::vector<std::string>{"8888EBA8"});
  // The opcode names NOP but the raw line has no glued form.
  s.opStr = u"NOPX";
  s.rawStr = u"\tNOPX";
  EXPECT_EQ(RemoveNoOprndOpSemiColnNW(1), 0);
  // Only 95 characters of the opcode are looked at for the comma.
  s.opStr = std::u16string(99, u'A') + u",";
  AnalystOPNW(1);
  EXPECT_EQ(Errors(), 1);
  s.opStr = std::u16string(94, u'A') + u",";
  AnalystOPNW(1);
  EXPECT_EQ(Errors(), 2);
}

}  // namespace
