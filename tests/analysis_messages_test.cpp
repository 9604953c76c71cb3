// Messages of the register, split and opcode checks that the chain itself
// cannot reach, or reaches only with a state made by hand: called directly on
// prepared line records.
#include "analysis_fixture.h"

namespace {

class AnalysisMessages : public atest::Analysis {};

// A check called on line 1 (opcode and slots "op|o1|o2|o3"): its result, the
// counters {errors, warnings, notes, memos}, the output, the codes logged
// when not empty, and first word and word count of the line when not -1.
struct Direct {
  int lang;
  std::string line;
  int (*call)();
  int ret;
  std::array<int, 4> kazu;
  std::string text, codes = "";
  int fw = -1, wk = -1;
};

int RegX0() { return cs->ChFlag = 0, RegXNWCS(*cs, 1, 3); }
int RegX7() { return cs->ChFlag = 7, RegXNWCS(*cs, 1, 3); }
int Index3() { return AnalystIndexRegNWCS(*cs, 1, 3); }
int Index2() { return AnalystIndexRegNWCS(*cs, 1, 2); }
int Gr89() { return AnalystGR89NWCS(*cs, 1, u"LAD", u"Error"); }
int AdrOp() { return CkOpAdrOprndNW(*cs, 1, b->vecSrcW[1].opStr, u"", u""); }
int R2() { return r2NWCS(*cs, 1); }
int Dispatch() { return jnz2NWCS(0); }
int Preset() { return ExtractAllOprndsNWCS(0); }
int Split() { return b->vecSrcW[1].oprndComChH = b->vecSrcW[1].oprnd1ChH, SplitOprndsNW(0); }

const std::vector<Direct> kDirect{
    // The index operand without a comma before it, and a comma flag that
    // cannot occur.
    {1, "LD||A|GR2", RegX0, 1, {1, 0, 0, 0}, "Error : line 2:  \"GR2\" : Either a comma or a comment mark(;)is "
     "expected at the right side of the 2nd operand. \n"},
    {0, "LD||A|GR2", RegX0, 1, {1, 0, 0, 0},
     "エラー： 2 行目：  \"GR2\" : 第２オペランドの右にコンマあるいはコメント記号（；）を明示すること。 \n"},
    {1, "LD||A", RegX7, 0, {0, 0, 0, 0},
     "Error of else! A  -1==ChFlag  GetCommaAriFlagForNextOprnd(...); CommaNextOperand\nError of else! RegX(), RegX\n"},
    // Advice on the index register: GR0, GR8 and GR9 in words only, a digit
    // first and a small letter counted; slot 2 draws no advice.
    {1, "LD|||GR8", Index3, 1, {0, 0, 0, 0}, "Error : line 2: Neither GR8 nor GR9 is a general register of comet2. "
     "Each of the GR1-GR7 can be used as an index register. GR0 is not allowed to be an index register. \n"},
    {0, "LD|||GR9", Index3, 1, {0, 0, 0, 0}, "エラー： 2 行目：  指標レジスタに使えるのは GR1-GR7 の7個だけです。 GR8-GR9 は"
     "CASL2のレジスタとして存在しないので使えない。 \n"},
    {1, "LD|||GR0X", Index3, 1, {0, 0, 0, 0}, "Error : line 2: GR0 is not allowed to be an index register. \n"},
    {1, "LD|||9ab", Index3, 2, {2, 0, 0, 0}, "Error : line 2: 9ab: The 1st character of a label must be a capital "
     "alphabetical letter. A numeral cannot be used as the 1st letter of a label. \nError : line 2: 9ab: There is a "
     "small letter in it. A small letter is not allowed to be used in casl2. \n"},
    {1, "LD||GR8", Index2, 0, {0, 0, 0, 0}, ""},
    // GR8 and GR9 as an error: three characters only.
    {1, "LAD||GR89", Gr89, 0, {0, 0, 0, 0}, ""},
    {0, "LAD||GR8", Gr89, 1, {1, 0, 0, 0}, "エラー： 2 行目： GR8レジスタは GR0-GR7 の８個である。 CASL2 には GR8-GR9 の"
     "レジスタは無い。 GR0-GR7 は予約語だが、GR8-GR9 は予約語ではない。 GR8-GR9 の記述はラベルとみなされるのでエラーとなる。"
     "  混乱をさけるため GR8-GR9 をラベルとして使わないほうがよい。（推奨） \n"},
    // An empty first operand of the address rules.
    {1, "LD", AdrOp, 1, {1, 0, 0, 0}, "Error of else: LD\n"},
    {0, "CALL", AdrOp, 1, {1, 0, 0, 0}, "エラー： 2 行目： CALL 命令は呼び出し先を示すアドレス（ラベル）が必要。 ただし、"
     "他のプログラム名は指定できるが、他のプログラム内のラベルは指定できない。 \n"},
    {0, "JUMP|GR3,", AdrOp, 1, {1, 1, 0, 0}, "警告： 2 行目： GR3 の右にコンマは不要です。\n"
     "エラー： 2 行目： JUMP は、一つ目のオペランドとしてレジスター GR0-GR7 をとらない。\n"},
    // The second register on its own.
    {1, "LD||GR8", R2, 1, {1, 0, 0, 0}, "Error : line 2:  \"GR8\" The comet2 has eight general registers of GR0-GR7. "
     "Neither GR8 nor GR9 is a general resister of comet2. \n", "8602C786"},
    {1, "LD||X", R2, 1, {1, 0, 0, 0}, "Error : line 2:  \"X\" An exact general register name is expected. \n",
     "81296434"},
    {0, "ADDA||GR2 ,|X", R2, 0, {0, 0, 0, 1},
     "メモ： 2 行目： ２つ目のレジスターの右に空白があれば以降はコメントとみなされる。\n", "B1EA420D"},
    // A literal string that is not closed: the split of the line ends.
    {1, "LD|GR1,='AB", Split, 0, {1, 0, 0, 0},
     "Error : line 2:  \"GR1,='AB\" : The literal string constant is not correctly closed. \n", "DEF0036E"},
    {1, "LD|GR1,='AB'X", Split, 0, {1, 0, 0, 0},
     "Error : line 2:  \"GR1,='AB'X\" : A literal charcter constant is not correctly closed. \n", "F044036E"},
    {0, "LD|GR1,='AB", Split, 0, {1, 0, 0, 0}, "エラー： 2 行目：  \"GR1,='AB\" : リテラル文字定数が正しく閉じていない。\n"},
    // Faults of the program: an opcode no rule knows; EXIT gets the stop word.
    {1, "XYZ", Dispatch, 0, {1, 0, 0, 0}, "Prg. Error: 2: XYZ is not an instruction of casl2. \n"},
    {0, "XYZ", Dispatch, 0, {1, 0, 0, 0}, "Prg. Error: 2: XYZ に該当する命令がない。\n"},
    {1, "EXIT", Dispatch, 0, {0, 0, 0, 0}, "", "", 0x8800, 1},
    {1, "XYZ", Preset, -1, {1, 0, 0, 0}, "Prg Error: line=2:  \"XYZ\" There does not exist an op code of XYZ in casl2.\n"},
    {0, "XYZ", Preset, -1, {1, 0, 0, 0}, "Prg Error: line=2:  \"XYZ\" 該当する OP code が存在しない。\n"},
};

TEST_F(AnalysisMessages, ChecksCalledDirectly) {
  for (const Direct& d : kDirect) {
    SCOPED_TRACE(d.line + " lang " + std::to_string(d.lang));
    Reset(d.lang);
    Make(d.line);
    EXPECT_EQ(d.call(), d.ret);
    EXPECT_EQ(Kazu(), d.kazu);
    EXPECT_EQ(out, d.text);
    EXPECT_EQ(d.codes.empty() ? "" : Codes(), d.codes);
    EXPECT_EQ(d.fw < 0 ? -1 : Line(1).first_word, d.fw);
    EXPECT_EQ(d.wk < 0 ? -1 : Line(1).word_kazu, d.wk);
  }
}

// The English memo carries the Japanese line word behind its prefix; the
// slot is cut at the blank and the slots behind it are emptied.
TEST_F(AnalysisMessages, SecondRegisterFollowedByABlankAndAComma) {
  SrcLineW& s = Make("ADDA|GR1,|GR2 ,|X");
  EXPECT_EQ(r2NWCS(*cs, 1), 0);
  EXPECT_EQ(out, "Note :  行目： 2: When there is a space at the right side of the 2nd operand register, the following in "
                 "the line is regarded as a comment. \n");
  EXPECT_EQ(Kazu()[3], 1);
  EXPECT_EQ(s.oprnd2ChH, u"GR2");
  EXPECT_TRUE(s.oprnd3ChH.empty());
}

TEST_F(AnalysisMessages, SemicolonFormsWithTabAndOpcodeCut) {
  SrcLineW& s = Make("RPOP;x");
  s.rawStr = u"\tRPOP;x";
  EXPECT_EQ(RemoveNoOprndOpSemiColnNW(1), -1);
  EXPECT_TRUE(Has("Error :  \" RPOP;\" : \n")) << out;
  EXPECT_EQ(Codes(), "8888EBA8");
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
