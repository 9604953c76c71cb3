// The instruction rules and the register operands through the whole chain of
// Fight12NW: the first word and the word count of every instruction form
// against the instruction table, and the messages of the rules.
#include "analysis_fixture.h"
#include "codegen/instr_table.h"

namespace {

using atest::Row;
class AnalysisRules : public atest::Analysis {};

// Every form: r = 3 (7 when an address form has no index), x = 5, with the
// first word, word count and operand count; nothing is said but SVC's warning.
TEST_F(AnalysisRules, EveryFormOfTheInstructionTable) {
  for (const InstrForm& f : kInstrTable) {
    const bool adr = f.form == OpForm::RAdrX || f.form == OpForm::AdrX, r1r2 = f.form == OpForm::R1R2;
    for (int x : {0, 5}) {
      if ((x == 5 && !adr && !r1r2) || (x == 0 && r1r2)) continue;
      const int r = f.form == OpForm::RAdrX ? (x ? 3 : 7) : r1r2 || f.form == OpForm::R ? 3 : 0;
      const std::string ops = (r ? "GR" + std::to_string(r) : "") + (adr ? (r ? ",A" : "A") : "") + (x ? ",GR5" : "");
      const bool svc = f.mnemonic == "SVC";
      Check({1, {"\t" + std::string(f.mnemonic) + (ops.empty() ? "" : "\t" + ops), "\tRET", adr ? "A\tDC\t7" : ""},
             {0, svc, 0, 0}, svc ? "~" : "", "", (f.code << 8) | (r << 4) | x, adr ? 2 : 1});
      EXPECT_EQ(Line(1).oprndCount, adr ? (x && r ? 3 : 2) : (r ? 1 : 0) + (x ? 1 : 0)) << f.mnemonic << " " << ops;
    }
  }
}

// The message of each register rule at an empty second operand, followed by
// that of the address check.
TEST_F(AnalysisRules, EmptySecondOperandOfEachRule) {
  const std::vector<std::pair<std::string, std::string>> msgs{
      {"LD", "The 2nd operand of LD should be either an address constant(label) or GR0-GR7. "},
      {"ST", "The 2nd operand is expected for the ST instruction. "},
      {"LAD", "The 2nd operand of LAD is expected. "},
      {"ADDA", "ADDA Add Arithmetic: Either a general register or a label is expected as the 2nd operand. "},
      {"ADDL", ": ADDL Add Logical: Either a general register or a label (an address constant) is expected as the "
               "2nd operand. "},
      {"SUBA", "SUBA: Either a general register or an address constant is expected as the 2nd operand of the SUBA. "},
      {"SUBL", "Either a general register or an address constant is expected as the 2nd operand of the SUBL. "},
      {"AND", "Either GRn or an address constant (or a label) is expected as the 2nd operand of AND. "},
      {"OR", "Either a general register or an address constan is expected as the 2nd operand of OR. "},
      {"XOR", "Either a general register or a label is expected as the 2nd operand. "},
      {"CPA", "Compare Arithmetic CPA needs the 2nd operand. It is either a general register or an address "
              "constant(or a label) . "},
      {"CPL", "An operand is expected at the right side of the CPL.The operand is either a GRn or an address constant "
              "or a label. "},
      {"SLA", "SLA : An address constant is expected as the 2nd operand. It specifies the number of shift-left "
              "arithmetic conversion. "},
      {"SRA", "SRA: An address constant is expected as the 2nd operand of the SRA.  It specifies the number of "
              "shift-right arithmetic conversion. "},
      {"SLL", "An address constant is expected as the 2nd operand of the SLL, which specifies the number of "
              "shift-left logical conversion. "},
      {"SRL", "SRL : An address constant is expected as the 2nd operand of the SRL, which specifies the number of "
              "shift-right logical conversion. "},
  };
  for (const auto& [m, msg] : msgs)
    Check({1, {"\t" + m + "\tGR1,", "\tRET"}, {2, 0, 0, 0},
           "Error : line 2: " + msg + "\nError : line 2: The 2nd operand is expected. \n"});
  Check({0, {"\tLD\tGR1,", "\tRET"}, {2, 0, 0, 0}, "~エラー： 2 行目： ロード LD 元を示すレジスター名又はアドレス定数（ラベル）が必要。\n"});
}

const std::string kSt = "Error : line 2: ST cannot be written in a format of ST r1, r2. \n"
                        "The 2nd operand of ST must be an address constant(or a label). (Spec.of COMET2 1.2 (1))\n";
const std::string kSvc = ": Do not write SVC 1 in the source code, or the comet2 will run out of control. SVC 1 "
                         "expanded in Macro IN and OUT instructions does not cause this problem. There is not any "
                         "exact definition about SVC in the casl2 specification at present. \n";
const std::string kIndex = "   An exact description of Index Register(GR1-GR7) is expected. \n";

const std::vector<Row> kRows{
    // The second operand: LD takes GR2X and GR8 as labels, the others fail
    // on GR1X; a comma behind the second register is a warning.
    {1, {"\tLD\tGR1,GR2X", "\tRET", "GR2X\tDC\t1"}, {0, 0, 0, 0}, "", "", 0x1010, 2},
    {1, {"\tLD\tGR1,GR8", "\tRET", "GR8\tDS\t1"}, {0, 0, 0, 0}, "", "", 0x1010, 2},
    {1, {"\tADDA\tGR1,GR1X", "\tRET", "GR1X\tDC\t1"}, {1, 0, 0, 0},
     "Error : line 2:  \"GR1X\" An exact general register name is expected. \n", "58BD44FA"},
    {1, {"\tADDA\tGR1,GR2,", "\tRET"}, {0, 1, 0, 0}, "Warning : line 2: A comma is of no use at the right side of "
     "the 2nd operand register. Either a space or a semicolon is suitable at the right side of the 2nd operand "
     "register. The following description is regarded as a comment in the line. \n", "4F3F5969", 0x2412, 1},
    // LD reads GR2 with a comma as an address operand that waits for an index.
    {1, {"\tLD\tGR1,GR2,", "\tRET"}, {1, 1, 0, 0}, "~Error : line 2:  \"GR2,\" :   Although", "AC13036W A3C5E001",
     0x1010, 2},
    {0, {"\tSUBL\tGR1,GR2,", "\tRET"}, {0, 1, 0, 0}, "警告： 2 行目： ２つ目のレジスターの右にコンマは不要です。"
     "２つ目のレジスターの右には空白又はセミコロンの記述が適正です。空白以降はコメントとなる。 \n"},
    {1, {"\tADDL\tGR1,GR2,GR3", "\tRET"}, {0, 1, 0, 0}, "Warning : line 2: The comma is of no use at the right side "
     "of the 2nd operand register. Either a space or a semicolon is suitable at the right side of the 2nd operand "
     "register. The following in the line is regarded as a comment. \n", "9FCBFA30", 0x2612, 1},
    // Form errors: every line of the stage is reported; ST takes GR8 too,
    // LAD reads GR8 as a label with a warning.
    {1, {"\tST\tGR1,GR2", "\tSLL\tGR1,GR9", "\tLAD\tGR1,GR7", "\tRET"}, {3, 0, 0, 0},
     kSt + "Error : line 3: SLL cannot be written in a format of SLL r1, r2. \nThe 2nd operand of SLL must be an "
     "address constant(or a label). (Spec.of COMET2 1.2 (1))\nError : line 4: LAD cannot be written in a format of "
     "LAD r1, r2. \nThe 2nd operand of LAD must be an address constant(or a label). (Spec.of COMET2 1.2 (1))\n"},
    {0, {"\tST\tGR1,GR8", "\tRET"}, {1, 0, 0, 0},
     "エラー： 2 行目： ST 命令は ST r1, r2 形式をとらない。\nST r1,adr または ST r1, adr, r2(COMET2の仕様 1.2命令(1)）\n"},
    {1, {"\tSRA\tGR1,GR2", "\tRET"}, {1, 0, 0, 0},
     "Error : line 2: SRA does not take a format of SRA r1, r2. \nFormat1: SRA r1,adr\nFormat2: SRA r1,adr,r2\n"},
    {1, {"\tLAD\tGR1,GR8", "\tRET", "GR8\tDS\t1"}, {0, 1, 0, 0}, "Warning : line 2: GR8The comet2 has eight general "
     "registers of GR0-GR7. Neither GR8 nor GR9 is a general register of comet2. GR0-GR7 are reserved words, but "
     "GR8-GR9 are not reserved ones. A description of GR8 or GR9 is regarded as a label. Using GR8-GR9 as a label "
     "would decrease readability of the source codes.  It would be better for you not to use GR8 or GR9 as a label. "
     "(Recommended) \n", "", 0x1210},
    {0, {"\tLAD\tGR1,GR9", "\tRET", "GR9\tDS\t1"}, {0, 1, 0, 0}, "~GR8-GR9 の記述はラベルとみなされる。  混乱を"},
    // The first operand of the register rules.
    {1, {"\tLD\tGR1", "\tCPA", "\tXOR\tA,GR1", "\tRET", "A\tDC\t1"}, {4, 0, 0, 0},
     "Error : line 2: A comma is expected at the right side of GR1. \nError : line 2: An operand is expected at the "
     "right side of LD. \nError : line 3: A general register(GR0-GR7) is expected at the right side of CPA. \n"
     "Error : line 4:  \"A,\" An exact general register name is expected at the right side of XOR. \n"},
    {0, {"\tAND\tGR1", "\tRET"}, {2, 0, 0, 0},
     "エラー： 2 行目： GR1 の右にコンマが必要！\nエラー： 2 行目： AND 元を示すレジスター名又はアドレス名（ラベル）が必要。\n"},
    // The jump family, PUSH, CALL and SVC.
    {1, {"\tJUMP\tGR1", "\tJUMP\tGR1,", "\tRET"}, {2, 1, 0, 0},
     "Error : line 2: The opcode JUMP does not take a general register \nWarning : line 3: A comma at the right side "
     "of GR1 is of no use. \nError : line 3: JUMP does not take one of the general registers GR0-GR7 as the 1st "
     "operand. \n"},
    {0, {"\tCALL\tGR2", "\tRET"}, {1, 0, 0, 0},
     "エラー： 2 行目： CALL は一つめオペランドとしてレジスタ名をとらない。アドレス定数をオペランドとする。\n"},
    {1, {"\tJZE", "\tCALL", "\tPUSH", "\tSVC", "\tRET"}, {4, 0, 0, 0}, "Error : line 2: An operand is expected at the "
     "right side of the JZE. The operand specifies a branching address. \nError : line 3: An operand is expected at "
     "the right side of the CALL. \nError : line 4: PUSH takes an address constant ( or a label) as an operand. The "
     "stacked contents are stored at the address. \nError : line 5: SVC takes an address constant(or a label) as an "
     "operand. \n"},
    {0, {"\tJMI", "\tRET"}, {1, 0, 0, 0}, "エラー： 2 行目： JMI は分岐先を示すアドレス名（ラベル）が必要。\n"},
    {1, {"\tSVC\t2", "\tSVC\t1", "\tRET"}, {0, 2, 0, 0}, "Warning : line 2" + kSvc + "Warning : line 3" + kSvc, "",
     0xF000, 2},
    {0, {"\tSVC\t2", "\tRET"}, {0, 1, 0, 0}, "~警告： 2 行目：  ソースコードに直接 SVC 命令を記述しないでください。"},
    // POP.
    {1, {"\tPOP\tGR2,", "\tPOP", "\tPOP\tA", "\tRET"}, {2, 0, 0, 0}, "Error : line 3: There is not any GRn at the "
     "right side of POP. \nError : line 4: An exact register name is expected at the right side of POP. \n", "",
     0x7120, 1},
    {0, {"\tPOP", "\tPOP\tA", "\tRET"}, {2, 0, 0, 0},
     "エラー： 2 行目： POP の右にレジスター名がない。\nエラー： 3 行目： A: POP の右に正しいレジスター名が必要。\n"},
    // The index register.
    {1, {"\tLD\tGR1,A,GR3,", "\tLD\tGR1,A,GR0", "\tLD\tGR1,A,X", "\tJUMP\tA,gr1", "\tRET", "A\tDC\t1"}, {4, 1, 0, 0},
     "Warning : line 2: A comma is of no use at the right side of the the index register. \nError : line 3: GR0 "
     "cannnot be used as an index register. \nError : line 4:  \"X\"" + kIndex + "Error : line 5: gr1: There is a "
     "small letter in it. A small letter is not allowed to be used in casl2. \nError : line 5:  \"gr1\"" + kIndex,
     "", 0x1013, 2},
    {0, {"\tLD\tGR1,A,GR0", "\tRET", "A\tDC\t1"}, {1, 0, 0, 0}, "エラー： 2 行目： 指標レジスターに GR0 は使えない。 \n"},
    {1, {"\tLD\tGR1,A,", "\tRET", "A\tDC\t1"}, {1, 1, 0, 0}, "~Error : line 2:  \"A,\" :   Although there is a comma "
     "at the right side of the 2nd operand, there is no description of an index register follwing the comma. \n"},
    {0, {"\tJUMP\tA,", "\tRET", "A\tDC\t1"}, {1, 1, 0, 0},
     "~エラー： 2 行目：  \"A,\" :   二つめのオペランドの右にコンマがあるのにコンマの右に指標レジスタの記述がない。 \n"},
    // Instructions without operand.
    {1, {"\tRET ;comment", "\tNOP\t;x"}, {0, 0, 0, 0}, ""},
    {1, {"\tRET comment"}, {1, 0, 0, 0}, "Error : line 2:  \"RET\" NOP, RET, and END do not take any operand. One "
     "space and a comment mark(;) are expected between the instruction code and a comment description. Good Example: "
     "RET ;Comment (Spec. of CASL2 2.1 (4)) \n"},
    {0, {"\tNOP X"}, {1, 0, 0, 0}, "エラー： 2 行目：  \"NOP\" オペランドをとらない命令（NOP, RET, END）の右のコメントには必ず一"
     "個の空白とセミコロン（；）が必要。 例： RET ;コメント (仕様２．１の（４）)   \n"},
};

TEST_F(AnalysisRules, MessagesCountersAndWords) {
  for (const Row& r : kRows) Check(r);
}

}  // namespace
