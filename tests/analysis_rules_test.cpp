// The instruction rules and the register operands: the first word and the
// word count of every instruction form against the instruction table, and
// the messages of the rules, through the whole chain of Fight12NW.
#include "analysis_fixture.h"
#include "codegen/instr_table.h"

namespace {

using atest::Analysis;
class AnalysisRules : public Analysis {};
using atest::Prog;

// A source line for one form of the table, with r = 3 and x = 5.
std::string LineOf(const InstrForm& f) {
  std::string m(f.mnemonic);
  switch (f.form) {
    case OpForm::None: return "\t" + m;
    case OpForm::RAdrX: return "\t" + m + "\tGR3,A,GR5";
    case OpForm::R1R2: return "\t" + m + "\tGR3,GR5";
    case OpForm::AdrX: return "\t" + m + "\tA,GR5";
    case OpForm::R: return "\t" + m + "\tGR3";
    default: return "";
  }
}

TEST_F(AnalysisRules, EveryFormOfTheInstructionTableLeavesItsFirstWordAndWordCount) {
  for (const InstrForm& f : kInstrTable) {
    Reset(1);
    const std::string line = LineOf(f);
    EXPECT_EQ(Fight(Prog({line, "\tRET", "A\tDC\t7"})), 0) << line << "\n" << out;
    const SrcLineW& s = Line(1);
    int r = 0, x = 0, words = 1;
    switch (f.form) {
      case OpForm::RAdrX: r = 3; x = 5; words = 2; break;
      case OpForm::R1R2: r = 3; x = 5; break;
      case OpForm::AdrX: x = 5; words = 2; break;
      case OpForm::R: r = 3; break;
      default: break;
    }
    EXPECT_EQ(s.first_word, (f.code << 8) | (r << 4) | x) << line;
    EXPECT_EQ(s.word_kazu, words) << line;
    // The warning of SVC is the only message.
    EXPECT_EQ(Warnings(), f.mnemonic == "SVC" ? 1 : 0) << line;
  }
}

TEST_F(AnalysisRules, AddressFormsWithoutIndexAndTheOperandCount) {
  for (const InstrForm& f : kInstrTable) {
    if (f.form != OpForm::RAdrX && f.form != OpForm::AdrX) continue;
    Reset(1);
    std::string m(f.mnemonic);
    std::string line = "\t" + m + (f.form == OpForm::RAdrX ? "\tGR7,A" : "\tA");
    EXPECT_EQ(Fight(Prog({line, "\tRET", "A\tDC\t7"})), 0) << line;
    const SrcLineW& s = Line(1);
    EXPECT_EQ(s.first_word, (f.code << 8) | (f.form == OpForm::RAdrX ? 0x70 : 0)) << line;
    EXPECT_EQ(s.word_kazu, 2) << line;
    EXPECT_EQ(s.oprndCount, 2) << line;
  }
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,A,GR2", "\tRET", "A\tDC\t7"})), 0);
  EXPECT_EQ(Line(1).oprndCount, 3);
  EXPECT_EQ(Line(1).first_word, 0x1012);
}

TEST_F(AnalysisRules, OneWordLinesAndTheirCounts) {
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,GR2", "\tPOP\tGR3", "\tNOP", "\tRET", "\tPUSH\t0,GR1"})), 0);
  EXPECT_EQ(Line(1).first_word, 0x1412);
  EXPECT_EQ(Line(1).word_kazu, 1);
  EXPECT_EQ(Line(1).oprndCount, 2);
  EXPECT_EQ(Line(2).first_word, 0x7130);
  EXPECT_EQ(Line(2).oprndCount, 1);
  EXPECT_EQ(Line(3).first_word, 0);
  EXPECT_EQ(Line(3).oprndCount, 0);
  EXPECT_EQ(Line(4).first_word, 0x8100);
  EXPECT_EQ(Line(4).word_kazu, 1);
  EXPECT_EQ(Line(5).first_word, 0x7001);
  EXPECT_EQ(Line(0).word_kazu, 1);  // START without operand
}

TEST_F(AnalysisRules, LdTakesGRWithMoreCharactersAsALabel) {
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,GR2X", "\tRET", "GR2X\tDC\t1"})), 0);
  EXPECT_EQ(Line(1).word_kazu, 2);
  EXPECT_EQ(Line(1).first_word, 0x1010);
  // The others of the family go to the second-register check and fail.
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tADDA\tGR1,GR1X", "\tRET", "GR1X\tDC\t1"})), 1);
  EXPECT_EQ(out, "Error : line 2:  \"GR1X\" An exact general register name is expected. \n");
  EXPECT_EQ(Codes(), std::vector<std::string>{"58BD44FA"});
}

TEST_F(AnalysisRules, TrailingCommaBehindTheSecondRegisterIsAWarning) {
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,GR2,", "\tRET"})), 0);
  EXPECT_EQ(Warnings(), 1);
  EXPECT_EQ(Codes(), std::vector<std::string>{"4F3F5969"});
  EXPECT_EQ(Line(1).word_kazu, 1);
  EXPECT_EQ(Line(1).first_word, 0x1412);
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tSUBL\tGR1,GR2,", "\tRET"})), 0);
  EXPECT_EQ(out,
            "警告： 2 行目： ２つ目のレジスターの右にコンマは不要です。２つ目のレジスターの右には空白又はセミコロンの記述が適正"
            "です。空白以降はコメントとなる。 \n");
}

TEST_F(AnalysisRules, CommaBetweenTwoRegistersAndAThirdOperand) {
  EXPECT_EQ(Fight(Prog({"\tADDL\tGR1,GR2,GR3", "\tRET"})), 0);
  EXPECT_EQ(Codes(), std::vector<std::string>{"9FCBFA30"});
  EXPECT_EQ(Line(1).first_word, 0x2612);
  EXPECT_TRUE(Line(1).oprnd3ChH.empty());
}

TEST_F(AnalysisRules, SecondRegisterMemoCarriesTheJapaneseLineWordInEnglish) {
  Load(Prog({"\tADDA\tGR1,GR2", "\tRET"}));
  SrcLineW& s = Line(1);
  s.oprnd2ChH = u"GR2 ,";
  s.oprnd3ChH = u"X";
  EXPECT_EQ(r2NWCS(*cs, 1), 0);
  EXPECT_EQ(out,
            "Note :  行目： 2: When there is a space at the right side of the 2nd operand register, the following in "
            "the line is regarded as a comment. \n");
  EXPECT_EQ(Memos(), 1);
  EXPECT_EQ(Notes(), 0);
  EXPECT_EQ(s.oprnd2ChH, u"GR2");
  EXPECT_TRUE(s.oprnd3ChH.empty());
  Reset(0);
  Load(Prog({"\tADDA\tGR1,GR2", "\tRET"}));
  Line(1).oprnd2ChH = u"GR2 ,";
  r2NWCS(*cs, 1);
  EXPECT_EQ(out, "メモ： 2 行目： ２つ目のレジスターの右に空白があれば以降はコメントとみなされる。\n");
}

TEST_F(AnalysisRules, FormErrorOfInstructionsWithoutTwoRegisters) {
  // ST, the shifts and LAD: one error each, from the shared message.
  EXPECT_EQ(Fight(Prog({"\tST\tGR1,GR2", "\tSLL\tGR1,GR9", "\tLAD\tGR1,GR7", "\tRET"})), 3);
  EXPECT_EQ(Count("cannot be written in a format of"), 3u);
  EXPECT_TRUE(Has("Error : line 2: ST cannot be written in a format of ST r1, r2. \n"
                  "The 2nd operand of ST must be an address constant(or a label). (Spec.of COMET2 1.2 (1))\n"));
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tST\tGR1,GR8", "\tRET"})), 1);
  EXPECT_EQ(out,
            "エラー： 2 行目： ST 命令は ST r1, r2 形式をとらない。\n"
            "ST r1,adr または ST r1, adr, r2(COMET2の仕様 1.2命令(1)）\n");
}

TEST_F(AnalysisRules, SraHasItsOwnFormError) {
  EXPECT_EQ(Fight(Prog({"\tSRA\tGR1,GR2", "\tRET"})), 1);
  EXPECT_EQ(out,
            "Error : line 2: SRA does not take a format of SRA r1, r2. \n"
            "Format1: SRA r1,adr\n"
            "Format2: SRA r1,adr,r2\n");
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tSRA\tGR1,GR2", "\tRET"})), 1);
  EXPECT_TRUE(Has("エラー： 2 行目： : SRA 命令は SRA r1,r2 形式をとらない。\n"));
}

TEST_F(AnalysisRules, LadWithGR8IsALabelWithAWarning) {
  EXPECT_EQ(Fight(Prog({"\tLAD\tGR1,GR8", "\tRET", "GR8\tDS\t1"})), 0);
  EXPECT_EQ(Warnings(), 1);
  EXPECT_TRUE(Has("Warning : line 2: GR8The comet2 has eight general registers of GR0-GR7. "));
  EXPECT_TRUE(Has("not to use GR8 or GR9 as a label. (Recommended) \n"));
  EXPECT_EQ(Line(1).first_word, 0x1210);
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tLAD\tGR1,GR9", "\tRET", "GR9\tDS\t1"})), 0);
  EXPECT_TRUE(Has("GR8-GR9 の記述はラベルとみなされる。  "));
  // The register forms take a second register only for the digits 0 to 7,
  // so LD reads GR8 as a label too, without the advice.
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,GR8", "\tRET", "GR8\tDS\t1"})), 0);
  EXPECT_EQ(Line(1).word_kazu, 2);
  EXPECT_EQ(Warnings(), 0);
}

TEST_F(AnalysisRules, EmptySecondOperandMessages) {
  EXPECT_EQ(Fight(Prog({"\tADDA\tGR1,", "\tRET"})), 2);
  EXPECT_TRUE(Has("Error : line 2: ADDA Add Arithmetic: Either a general register or a label is expected as the 2nd "
                  "operand. \n"));
  EXPECT_TRUE(Has("The 2nd operand is expected."));
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,", "\tRET"})), 2);
  EXPECT_TRUE(Has("エラー： 2 行目： ロード LD 元を示すレジスター名又はアドレス定数（ラベル）が必要。\n"));
}

TEST_F(AnalysisRules, FirstRegisterOperandErrors) {
  // A lone register gets two errors.
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1", "\tRET"})), 2);
  EXPECT_EQ(out,
            "Error : line 2: A comma is expected at the right side of GR1. \n"
            "Error : line 2: An operand is expected at the right side of LD. \n");
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tCPA", "\tXOR\tA,GR1", "\tRET", "A\tDC\t1"})), 2);
  EXPECT_TRUE(Has("Error : line 2: A general register(GR0-GR7) is expected at the right side of CPA. \n"));
  EXPECT_TRUE(Has("Error : line 3:  \"A,\" An exact general register name is expected at the right side of XOR. \n"));
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tAND\tGR1", "\tRET"})), 2);
  EXPECT_EQ(out,
            "エラー： 2 行目： GR1 の右にコンマが必要！\n"
            "エラー： 2 行目： AND 元を示すレジスター名又はアドレス名（ラベル）が必要。\n");
}

TEST_F(AnalysisRules, JumpWithARegister) {
  EXPECT_EQ(Fight(Prog({"\tJUMP\tGR1", "\tRET"})), 1);
  EXPECT_EQ(out, "Error : line 2: The opcode JUMP does not take a general register \n");
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tJUMP\tGR1,", "\tRET"})), 1);
  EXPECT_EQ(Warnings(), 1);
  EXPECT_EQ(out,
            "Warning : line 2: A comma at the right side of GR1 is of no use. \n"
            "Error : line 2: JUMP does not take one of the general registers GR0-GR7 as the 1st operand. \n");
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tCALL\tGR2", "\tRET"})), 1);
  EXPECT_EQ(out, "エラー： 2 行目： CALL は一つめオペランドとしてレジスタ名をとらない。アドレス定数をオペランドとする。\n");
}

TEST_F(AnalysisRules, JumpFamilyWithoutOperand) {
  EXPECT_EQ(Fight(Prog({"\tJZE", "\tCALL", "\tPUSH", "\tSVC", "\tRET"})), 4);
  EXPECT_TRUE(Has("Error : line 2: An operand is expected at the right side of the JZE. The operand specifies a "
                  "branching address. \n"));
  EXPECT_TRUE(Has("Error : line 3: An operand is expected at the right side of the CALL. \n"));
  EXPECT_TRUE(Has("Error : line 4: PUSH takes an address constant ( or a label) as an operand. The stacked contents "
                  "are stored at the address. \n"));
  EXPECT_TRUE(Has("Error : line 5: SVC takes an address constant(or a label) as an operand. \n"));
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tJMI", "\tRET"})), 1);
  EXPECT_EQ(out, "エラー： 2 行目： JMI は分岐先を示すアドレス名（ラベル）が必要。\n");
}

TEST_F(AnalysisRules, PopOperand) {
  EXPECT_EQ(Fight(Prog({"\tPOP", "\tPOP\tA", "\tPOP\tGR2,", "\tRET"})), 2);
  EXPECT_TRUE(Has("Error : line 2: There is not any GRn at the right side of POP. \n"));
  EXPECT_TRUE(Has("Error : line 3: A: An exact register name is expected at the right side of POP. \n"));
  EXPECT_EQ(Line(3).first_word, 0x7120);
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tPOP", "\tRET"})), 1);
  EXPECT_EQ(out, "エラー： 2 行目： POP の右にレジスター名がない。\n");
}

TEST_F(AnalysisRules, IndexRegisterChecks) {
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,A,GR0", "\tRET", "A\tDC\t1"})), 1);
  EXPECT_EQ(out, "Error : line 2: GR0 cannnot be used as an index register. \n");
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,A,GR3,", "\tRET", "A\tDC\t1"})), 0);
  EXPECT_EQ(out, "Warning : line 2: A comma is of no use at the right side of the the index register. \n");
  EXPECT_EQ(Line(1).first_word, 0x1013);
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,A,X", "\tRET", "A\tDC\t1"})), 1);
  EXPECT_EQ(out, "Error : line 2:  \"X\"   An exact description of Index Register(GR1-GR7) is expected. \n");
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tJUMP\tA,gr1", "\tRET", "A\tDC\t1"})), 2);
  EXPECT_TRUE(Has("Error : line 2: gr1: There is a small letter in it. A small letter is not allowed to be used in "
                  "casl2. \n"));
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,A,GR0", "\tRET", "A\tDC\t1"})), 1);
  EXPECT_EQ(out, "エラー： 2 行目： 指標レジスターに GR0 は使えない。 \n");
}

TEST_F(AnalysisRules, CommaBehindTheAddressWithNothingBehindIt) {
  // The address check warns of the comma, and the index check then finds
  // no index register behind it.
  EXPECT_EQ(Fight(Prog({"\tLD\tGR1,A,", "\tRET", "A\tDC\t1"})), 1);
  EXPECT_EQ(Warnings(), 1);
  EXPECT_TRUE(Has("Error : line 2:  \"A,\" :   Although there is a comma at the right side of the 2nd operand, there is "
                  "no description of an index register follwing the comma. \n"));
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tJUMP\tA,", "\tRET", "A\tDC\t1"})), 1);
  EXPECT_TRUE(Has("エラー： 2 行目：  \"A,\" :   二つめのオペランドの右にコンマがあるのにコンマの右に指標レジスタの記述がない。 \n"));
}

TEST_F(AnalysisRules, SvcWarnsOnEveryLine) {
  EXPECT_EQ(Fight(Prog({"\tSVC\t2", "\tSVC\t1", "\tRET"})), 0);
  EXPECT_EQ(Warnings(), 2);
  EXPECT_EQ(Line(1).first_word, 0xF000);
  EXPECT_TRUE(Has("Warning : line 2: Do not write SVC 1 in the source code, or the comet2 will run out of control. "
                  "SVC 1 expanded in Macro IN and OUT instructions does not cause this problem. There is not any exact "
                  "definition about SVC in the casl2 specification at present. \n"));
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tSVC\t2", "\tRET"})), 0);
  EXPECT_TRUE(Has("警告： 2 行目：  ソースコードに直接 SVC 命令を記述しないでください。"));
}

TEST_F(AnalysisRules, NoOperandInstructionsAndTheirComments) {
  EXPECT_EQ(Fight(Prog({"\tRET ;comment", "\tNOP\t;x"})), 0);
  Reset(1);
  EXPECT_EQ(Fight(Prog({"\tRET comment"})), 1);
  EXPECT_EQ(out,
            "Error : line 2:  \"RET\" NOP, RET, and END do not take any operand. One space and a comment mark(;) are "
            "expected between the instruction code and a comment description. Good Example: RET ;Comment (Spec. of "
            "CASL2 2.1 (4)) \n");
  // The text went to the comment as well.
  EXPECT_EQ(Line(1).commentStr, u"comment");
  Reset(0);
  EXPECT_EQ(Fight(Prog({"\tNOP X"})), 1);
  EXPECT_TRUE(Has("例： RET ;コメント (仕様２．１の（４）)   \n"));
}

TEST_F(AnalysisRules, RulesOfOneStageReportEveryLine) {
  // Two errors of the rules in different lines are both reported.
  EXPECT_EQ(Fight(Prog({"\tST\tGR1,GR2", "\tSLA\tGR1,GR3", "\tRET"})), 2);
}

}  // namespace
