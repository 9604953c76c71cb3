// Runs through the built program: small CASL II programs are assembled and
// run, and the final machine is read back from aaResultantRegMry.txt; IN and
// OUT are driven through standard input.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "harness.h"

namespace {

// The report's row head of a register and its hex column.
std::string Reg(const std::string& name, const std::string& hex) { return name + ":    :#" + hex + ":"; }

// A source run with menu item 1; `typed` follows the file name. The output
// holds every `out` text and no `outNot` one, the report every `report` text.
struct Drill {
  std::string what, src, typed;
  int lang;  // 1 English, 0 Japanese
  std::vector<std::string> out, report, outNot = {};
};

const std::string kEndE = "and it has come to an end of the program\nin ";
// LD GR1,A ; <op> GR1,... ; RET with A and B.
Drill Edge(const std::string& op, const std::string& a, const std::string& gr1, const std::string& flags) {
  return {op + " of " + a, "PRG\tSTART\n\tLD\tGR1,A\n\t" + op + "\n\tRET\nA\tDC\t" + a + "\nB\tDC\t1\n\tEND\n", "1\n",
          1, {kEndE}, {Reg("  GR1", gr1), flags}};
}
const std::string kEcho = "PRG\tSTART\n\tIN\tBUF,LEN\n\tOUT\tBUF,LEN\n\tRET\nBUF\tDS\t300\nLEN\tDS\t1\n\tEND\n";
const std::string kOutE = "OS: Output by a Macro Instruction of OUT. \n";

TEST(Comet2E2e, RunsAndTheirResultantReports) {
  std::string line;
  for (int i = 0; i < 300; ++i) line += static_cast<char>('A' + i % 26);
  const std::vector<Drill> table = {
      Edge("ADDA\tGR1,B", "32767", "8000", "Flags:    Fovf=1, Fsign=1(minus), Fzero=0(non zero).\n"),
      Edge("SLA\tGR1,1", "#4000", "0000", "Flags:    Fovf=1, Fsign=0(plus), Fzero=0(non zero).\n"),
      {"LD and LAD of #FFFF, LAD keeps the flags",
       "PRG\tSTART\n\tLD\tGR1,A\n\tADDA\tGR1,B\n\tLD\tGR2,C\n\tLAD\tGR3,#FFFF\n\tRET\n"
       "A\tDC\t32767\nB\tDC\t1\nC\tDC\t-1\n\tEND\n", "1\n", 1, {kEndE},
       {Reg("  GR2", "FFFF") + "65535:    -1:", Reg("  GR3", "FFFF") + "65535:    -1:",
        "Flags:    Fovf=0, Fsign=1(minus), Fzero=0(non zero).\n", Reg("   PR", "0009"), Reg("   SP", "FFFF")}},
      {"IN and OUT of a typed line", kEcho, "Hello, world\n", 1,
       {"OS: Input some letters from your keyboard. \n(Input Requirement by a Macro Instruction of IN) \n"
        "Press Enter key or Ctrl + Z Keys at the end of your input. \n\n" + kOutE + "Hello, world\n" + kEndE},
       {"   LEN:    :#000C:   12:"}},
      {"IN of an empty line", kEcho, "\n", 1, {kOutE + "\n" + kEndE}, {"   LEN:    :#0000:    0:"}},
      {"IN at the end of input", kEcho, "", 1, {kOutE + "\n" + kEndE}, {"   LEN:    :#0000:    0:"}},
      {"IN of 300 characters keeps 256", kEcho, line + "\n", 1, {kOutE + line.substr(0, 256) + "\n" + kEndE},
       {"   LEN:    :#0100:  256:"}},
      {"IN and OUT of Japanese characters", kEcho, "日本語のテスト\n", 0,
       {"OS: 文字を入力してください。 \nマクロ命令( IN )による入力要求。\n"
        "Enter キイ を押す 又は CTRL + Z を押す と 入力終了。 \n\n"
        "OS: マクロ命令( OUT )による出力 \n日本語のテスト\n--> 終了\n"},
       {"   LEN:    :#0007:    7:", "   BUF:    :#65E5:26085:"}},  // 日, no Char column
      // maxExecCount 12 has two digits: the count column is three wide.
      {"the execution-count column",
       "PRG\tSTART\n\tLAD\tGR1,12\nLOOP\tSUBA\tGR1,ONE\n\tJNZ\tLOOP\n\tRET\nONE\tDC\t1\n\tEND\n", "", 1, {kEndE},
       {"#0000:    0:   PRG:    :#0000:    0:    +0: 0000 0000 0000 0000:  1:",
        "#0003:    3:  LOOP:    :#2110: 8464: +8464: 0010 0001 0001 0000: 12:",
        "#0004:    4:      :    :#0008:    8:    +8: 0000 0000 0000 1000:  0:",
        "#0005:    5:      :    :#6200:25088:+25088: 0110 0010 0000 0000: 12:",
        "#0007:    7:      :    :#8100:33024:-32512: 1000 0001 0000 0000:  1:"}},
      {"running off the end, Japanese", "PRG\tSTART\n\tLAD\tGR1,1\n\tEND\n", "1\n", 0,
       {"PR = #FDE9 = 65001（十進数）番地 Run. ", "NOP=#0000 の連続部分が実行されたものと考えられます。--> 終了\n"},
       {Reg("   PR", "FDE9")}},
      {"load stop", "PRG\tSTART\n\tLD\tGR1,#FDE9\n\tRET\n\tEND\n", "1\n", 1,
       {"is going to access a memory beyond tMaxMemory. \n"}, {Reg("   PR", "0002")}, {kEndE}},
      {"unknown code", "PRG\tSTART\n\tJUMP\tD\n\tRET\nD\tDC\t#1300\n\tEND\n", "1\n", 1,
       {"Because a non-registered machine code of #1300 is going to be executed.  "}, {Reg("   PR", "0004")}, {kEndE}},
      {"an endless CALL chain", "PRG\tSTART\nSELF\tCALL\tSELF\n\tRET\n\tEND\n", "1\n", 1,
       {"has left the stack area of this simulator"}, {"   PR:"}},
  };
  for (const Drill& c : table) {
    SCOPED_TRACE(c.what);
    e2e::RunSpec rs;
    rs.ini = e2e::Ini("NWW", c.lang);
    rs.input = "\n1\nt.txt\n" + c.typed;
    rs.files = {{"t.txt", c.src}};
    const e2e::RunResult r = e2e::run(rs);
    EXPECT_FALSE(r.timed_out || r.signaled) << r.out;
    EXPECT_EQ(r.status, 0) << r.out;
    const auto it = r.files.find("aaResultantRegMry.txt");
    const std::string report = it == r.files.end() ? "" : it->second;
    for (const std::string& s : c.out) EXPECT_NE(r.out.find(s), std::string::npos) << s << "\nin: " << r.out;
    for (const std::string& s : c.outNot) EXPECT_EQ(r.out.find(s), std::string::npos) << s << "\nin: " << r.out;
    for (const std::string& s : c.report) EXPECT_NE(report.find(s), std::string::npos) << s << "\nin: " << report;
  }
}

}  // namespace
