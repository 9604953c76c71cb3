// Runs through the built program: small CASL II programs are assembled and
// run, and the final machine is read back from aaResultantRegMry.txt; IN and
// OUT are driven through standard input.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "harness.h"

namespace {

std::string Ini(const std::string& lang) {
  return "[Mode]\nLangStr=" + lang + "\nLangInt=" + (lang == "JPN" ? "0" : "1") +
         "\nFightFunc=NWW\nTimeFuncStr=QPC\nTimeFuncInt=0\nSimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=0\n"
         "[Src]\nLastSrcFile=t.txt\n[Editor]\nTextEditorIndex=0\nTextEditorPath1=\nTextEditorPath2=\n";
}

struct Drilled {
  e2e::RunResult r;
  std::string report;  // aaResultantRegMry.txt, empty when none was written
};

// Assembles and runs `source` (menu item 1); `typed` follows the file name.
Drilled Drill(const std::string& source, const std::string& typed, const std::string& lang = "ENU") {
  e2e::RunSpec rs;
  rs.ini = Ini(lang);
  rs.input = "\n1\nt.txt\n" + typed;
  rs.files = {{"t.txt", source}};
  Drilled d{e2e::run(rs), ""};
  EXPECT_FALSE(d.r.timed_out) << d.r.out;
  EXPECT_FALSE(d.r.signaled) << d.r.out;
  EXPECT_EQ(d.r.status, 0) << d.r.out;
  auto it = d.r.files.find("aaResultantRegMry.txt");
  if (it != d.r.files.end()) d.report = it->second;
  return d;
}

bool Has(const std::string& s, const std::string& part) { return s.find(part) != std::string::npos; }

// The report's row head of a register and its hex column.
std::string RegRow(const std::string& name, const std::string& hex) { return name + ":" + "    :#" + hex + ":"; }

struct EdgeCase {
  const char* what;
  std::string op;     // the instruction on GR1 after LD GR1,A
  std::string a;      // the DC of A
  std::string extra;  // further DC lines
  std::string gr1;    // hex of GR1 in the report
  std::string flags;  // the flags line
};

std::string FlagsLine(int ovf, int sign, int zero) {
  return "Flags:    Fovf=" + std::to_string(ovf) + ", Fsign=" + std::to_string(sign) + (sign ? "(minus), " : "(plus), ") +
         "Fzero=" + std::to_string(zero) + (zero ? "(zero)." : "(non zero).");
}

TEST(Comet2E2e, InstructionEdgeCasesInTheResultantReport) {
  const std::vector<EdgeCase> cases = {
      {"ADDA 32767+1", "ADDA\tGR1,B", "32767", "B\tDC\t1\n", "8000", FlagsLine(1, 1, 0)},
      {"SUBA -32768-1", "SUBA\tGR1,B", "-32768", "B\tDC\t1\n", "7FFF", FlagsLine(1, 0, 0)},
      {"ADDL #FFFF+1", "ADDL\tGR1,B", "#FFFF", "B\tDC\t1\n", "0000", FlagsLine(1, 0, 1)},
      {"SUBL 0-1", "SUBL\tGR1,B", "0", "B\tDC\t1\n", "FFFF", FlagsLine(1, 1, 0)},
      {"CPL #FFFF,1", "CPL\tGR1,B", "#FFFF", "B\tDC\t1\n", "FFFF", FlagsLine(0, 0, 0)},
      {"CPA #FFFF,1", "CPA\tGR1,B", "#FFFF", "B\tDC\t1\n", "FFFF", FlagsLine(0, 1, 0)},
      {"SLL #0001 by 16", "SLL\tGR1,16", "1", "", "0000", FlagsLine(1, 0, 1)},
      {"SLL #0001 by 17", "SLL\tGR1,17", "1", "", "0000", FlagsLine(0, 0, 1)},
      {"SRA #8000 by 20", "SRA\tGR1,20", "#8000", "", "FFFF", FlagsLine(1, 1, 0)},
      {"SRL #8000 by 0", "SRL\tGR1,0", "#8000", "", "8000", FlagsLine(0, 1, 0)},
      {"SLA #C000 by 1", "SLA\tGR1,1", "#C000", "", "8000", FlagsLine(1, 1, 0)},
      {"SLA #4000 by 1", "SLA\tGR1,1", "#4000", "", "0000", FlagsLine(1, 0, 0)},
  };
  for (const EdgeCase& c : cases) {
    SCOPED_TRACE(c.what);
    const std::string src = "PRG\tSTART\n\tLD\tGR1,A\n\t" + c.op + "\n\tRET\nA\tDC\t" + c.a + "\n" + c.extra + "\tEND\n";
    const Drilled d = Drill(src, "1\n");
    ASSERT_FALSE(d.report.empty()) << d.r.out;
    EXPECT_TRUE(Has(d.report, RegRow("  GR1", c.gr1))) << d.report;
    EXPECT_TRUE(Has(d.report, c.flags + "\n")) << d.report;
    EXPECT_TRUE(Has(d.r.out, "and it has come to an end of the program\nin ")) << d.r.out;
  }
}

TEST(Comet2E2e, LdAndLadBothShowFFFFAndLadLeavesTheFlags) {
  const Drilled d = Drill(
      "PRG\tSTART\n\tLD\tGR1,A\n\tADDA\tGR1,B\n\tLD\tGR2,C\n\tLAD\tGR3,#FFFF\n\tRET\n"
      "A\tDC\t32767\nB\tDC\t1\nC\tDC\t-1\n\tEND\n",
      "1\n");
  EXPECT_TRUE(Has(d.report, RegRow("  GR2", "FFFF") + "65535:    -1:")) << d.report;
  EXPECT_TRUE(Has(d.report, RegRow("  GR3", "FFFF") + "65535:    -1:")) << d.report;
  EXPECT_TRUE(Has(d.report, FlagsLine(0, 1, 0))) << d.report;
  EXPECT_TRUE(Has(d.report, RegRow("   PR", "0009"))) << d.report;  // at the RET
  EXPECT_TRUE(Has(d.report, RegRow("   SP", "FFFF"))) << d.report;
}

// IN then OUT of the same buffer.
const std::string kEcho =
    "PRG\tSTART\n\tIN\tBUF,LEN\n\tOUT\tBUF,LEN\n\tRET\nBUF\tDS\t300\nLEN\tDS\t1\n\tEND\n";

TEST(Comet2E2e, InAndOutOfATypedLine) {
  const Drilled d = Drill(kEcho, "Hello, world\n");
  EXPECT_TRUE(Has(d.r.out,
                  "OS: Input some letters from your keyboard. \n"
                  "(Input Requirement by a Macro Instruction of IN) \n"
                  "Press Enter key or Ctrl + Z Keys at the end of your input. \n\n"
                  "OS: Output by a Macro Instruction of OUT. \nHello, world\n"
                  "and it has come to an end of the program\nin "))
      << d.r.out;
  EXPECT_TRUE(Has(d.report, "   LEN:    :#000C:   12:")) << d.report;
}

TEST(Comet2E2e, InOfAnEmptyLineAndAtTheEndOfInput) {
  for (const std::string typed : {"\n", ""}) {
    const Drilled d = Drill(kEcho, typed);
    EXPECT_TRUE(Has(d.r.out, "OS: Output by a Macro Instruction of OUT. \n\nand it has come")) << d.r.out;
    EXPECT_TRUE(Has(d.report, "   LEN:    :#0000:    0:")) << d.report;
  }
}

TEST(Comet2E2e, InOf300CharactersKeeps256) {
  std::string line;
  for (int i = 0; i < 300; ++i) line += static_cast<char>('A' + i % 26);
  const Drilled d = Drill(kEcho, line + "\n");
  EXPECT_TRUE(Has(d.r.out, "OUT. \n" + line.substr(0, 256) + "\n")) << d.r.out;
  EXPECT_FALSE(Has(d.r.out, line.substr(0, 257)));
  EXPECT_TRUE(Has(d.report, "   LEN:    :#0100:  256:")) << d.report;
}

TEST(Comet2E2e, InAndOutOfJapaneseCharacters) {
  const Drilled d = Drill(kEcho, "日本語のテスト\n", "JPN");
  EXPECT_TRUE(Has(d.r.out,
                  "OS: 文字を入力してください。 \n"
                  "マクロ命令( IN )による入力要求。\n"
                  "Enter キイ を押す 又は CTRL + Z を押す と 入力終了。 \n\n"
                  "OS: マクロ命令( OUT )による出力 \n日本語のテスト\n--> 終了\n"))
      << d.r.out;
  EXPECT_TRUE(Has(d.report, "   LEN:    :#0007:    7:")) << d.report;
  EXPECT_TRUE(Has(d.report, "   BUF:    :#65E5:26085:")) << d.report;  // 日, no Char column
}

TEST(Comet2E2e, TheExecutionCountColumn) {
  const Drilled d = Drill(
      "PRG\tSTART\n\tLAD\tGR1,12\nLOOP\tSUBA\tGR1,ONE\n\tJNZ\tLOOP\n\tRET\nONE\tDC\t1\n\tEND\n", "");
  // maxExecCount 12 has two digits: the column is three wide.
  EXPECT_TRUE(Has(d.report, "#0000:    0:   PRG:    :#0000:    0:    +0: 0000 0000 0000 0000:  1:")) << d.report;
  EXPECT_TRUE(Has(d.report, "#0003:    3:  LOOP:    :#2110: 8464: +8464: 0010 0001 0001 0000: 12:")) << d.report;
  EXPECT_TRUE(Has(d.report, "#0004:    4:      :    :#0008:    8:    +8: 0000 0000 0000 1000:  0:")) << d.report;
  EXPECT_TRUE(Has(d.report, "#0005:    5:      :    :#6200:25088:+25088: 0110 0010 0000 0000: 12:")) << d.report;
  EXPECT_TRUE(Has(d.report, "#0007:    7:      :    :#8100:33024:-32512: 1000 0001 0000 0000:  1:")) << d.report;
}

TEST(Comet2E2e, RunningOffTheEndGivesThePrStopInJapanese) {
  const Drilled d = Drill("PRG\tSTART\n\tLAD\tGR1,1\n\tEND\n", "1\n", "JPN");
  EXPECT_TRUE(Has(d.r.out, "PR = #FDE9 = 65001（十進数）番地 Run. ")) << d.r.out;
  EXPECT_TRUE(Has(d.r.out, "NOP=#0000 の連続部分が実行されたものと考えられます。--> 終了\n")) << d.r.out;
  EXPECT_TRUE(Has(d.report, RegRow("   PR", "FDE9"))) << d.report;
}

TEST(Comet2E2e, LoadStopAndUnknownCodeStillWriteTheReport) {
  Drilled d = Drill("PRG\tSTART\n\tLD\tGR1,#FDE9\n\tRET\n\tEND\n", "1\n");
  EXPECT_TRUE(Has(d.r.out, "is going to access a memory beyond tMaxMemory. \n")) << d.r.out;
  EXPECT_FALSE(Has(d.r.out, "and it has come to an end of the program"));
  EXPECT_TRUE(Has(d.report, RegRow("   PR", "0002"))) << d.report;

  d = Drill("PRG\tSTART\n\tJUMP\tD\n\tRET\nD\tDC\t#1300\n\tEND\n", "1\n");
  EXPECT_TRUE(Has(d.r.out, "Because a non-registered machine code of #1300 is going to be executed.  ")) << d.r.out;
  EXPECT_FALSE(Has(d.r.out, "and it has come to an end of the program"));
  EXPECT_TRUE(Has(d.report, RegRow("   PR", "0004"))) << d.report;
}

TEST(Comet2E2e, PushesBeyondTheStackAreaAreToldAndTheRunGoesOn) {
  const Drilled d = Drill(
      "PRG\tSTART\n\tLAD\tGR1,501\nLOOP\tPUSH\t7\n\tSUBA\tGR1,ONE\n\tJNZ\tLOOP\n\tPOP\tGR2\n\tRET\nONE\tDC\t1\n\tEND\n",
      "1\n");
  EXPECT_TRUE(Has(d.r.out, "It has happened when an opcode at address of #0003 is executed. ")) << d.r.out;
  EXPECT_TRUE(Has(d.r.out, "and it has come to an end of the program")) << d.r.out;
  EXPECT_TRUE(Has(d.report, RegRow("   SP", "FE0B"))) << d.report;  // 65035
}

TEST(Comet2E2e, AnEndlessCallChainEndsWithoutACrash) {
  const Drilled d = Drill("PRG\tSTART\nSELF\tCALL\tSELF\n\tRET\n\tEND\n", "1\n");
  EXPECT_TRUE(Has(d.r.out, "has left the stack area of this simulator")) << d.r.out;
  EXPECT_FALSE(d.report.empty());
}

}  // namespace
