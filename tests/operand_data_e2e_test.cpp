// Address constants, literals, macros and constants through the built
// program: what the learner sees for whole files.
#include <gtest/gtest.h>

#include <string>

#include "harness.h"

namespace {

std::string Ini(const std::string& lang, int langInt) {
  return "[Mode]\nLangStr=" + lang + "\nLangInt=" + std::to_string(langInt) +
         "\nFightFunc=NWW\nTimeFuncStr=QPC\nTimeFuncInt=0\nSimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=0\n"
         "[Src]\nLastSrcFile=src\\pn1000.txt\n[Editor]\nTextEditorIndex=0\nTextEditorPath1=\nTextEditorPath2=\n";
}

e2e::RunResult Assemble(const std::string& source, const std::string& lang = "ENU", int langInt = 1) {
  e2e::RunSpec spec;
  spec.ini = Ini(lang, langInt);
  spec.input = "\n1\nsrc/t.cas\n2\n\n123\n";
  spec.files["src/t.cas"] = source;
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out) << r.out;
  EXPECT_FALSE(r.signaled) << r.out;
  return r;
}

bool Has(const e2e::RunResult& r, const std::string& s) { return r.out.find(s) != std::string::npos; }

TEST(OperandDataE2e, ForwardReferencesProgramNamesAndMacrosAssemble) {
  e2e::RunResult r = Assemble(
      "MAIN\tSTART\n"
      "\tLD\tGR1,DATA\n"
      "\tLAD\tGR2,=10\n"
      "\tLAD\tGR3,=10\n"
      "\tIN\tBUF,LEN\n"
      "\tCALL\tSUB\n"
      "\tRET\n"
      "DATA\tDC\t22, 55, 'abc', #00FF\n"
      "BUF\tDS\t0\n"
      "LEN\tDS\t1\n"
      "\tEND\n"
      "SUB\tSTART\n"
      "\tRPUSH\n"
      "\tRPOP\n"
      "\tRET\n"
      "\tEND\n");
  EXPECT_TRUE(Has(r, "Successfully Assembled! ")) << r.out;
  EXPECT_FALSE(Has(r, "Error : ")) << r.out;
  const std::string& rep = r.files["aaAssembledRegMry.txt"];
  // LD GR1,DATA: DATA lies behind START (1), LD (2), LAD (2), LAD (2), IN (12),
  // CALL (2), RET (1) at 22.
  EXPECT_NE(rep.find("#0001:    1:        :    :#1010:"), std::string::npos) << rep;
  EXPECT_NE(rep.find("#0002:    2:        :    :#0016:   22:"), std::string::npos) << rep;
  // The two =10 take two places behind DATA (6 words), DS 0 and DS 1: 29 and 30.
  EXPECT_NE(rep.find("#0004:    4:        :    :#001D:   29:"), std::string::npos) << rep;
  EXPECT_NE(rep.find("#0006:    6:        :    :#001E:   30:"), std::string::npos) << rep;
}

TEST(OperandDataE2e, ALiteralErrorHidesTheInstructionErrorsOfItsProgram) {
  e2e::RunResult r = Assemble(
      "MAIN\tSTART\n"
      "\tLD\tGR1,=#12\n"
      "\tLD\tGR1,NOWHERE\n"
      "\tRET\n"
      "\tEND\n");
  EXPECT_TRUE(Has(r, "Error : line 2: A hexadecimal number should be written in four letters. \n")) << r.out;
  EXPECT_FALSE(Has(r, "NOWHERE")) << r.out;
  EXPECT_FALSE(Has(r, "Successfully Assembled!")) << r.out;
}

TEST(OperandDataE2e, UndefinedLabelsAndDcAndDsErrorsInJapanese) {
  e2e::RunResult r = Assemble(
      "MAIN\tSTART\n"
      "\tLD\tGR1,NOWHERE\n"
      "\tRET\n"
      "A\tDC\t22 55\n"
      "B\tDS\t-1\n"
      "\tEND\n",
      "JPN", 0);
  EXPECT_TRUE(Has(r, "エラー： 4 行目： \"55\" が定数ならば、")) << r.out;
  EXPECT_TRUE(Has(r, "エラー： 5 行目： -:  \"-1\" : DS 命令のオペランドに")) << r.out;
  // The DC and DS errors stop the analysis before the address pass.
  EXPECT_FALSE(Has(r, "NOWHERE")) << r.out;
  e2e::RunResult u = Assemble(
      "MAIN\tSTART\n"
      "\tLD\tGR1,NOWHERE\n"
      "\tRET\n"
      "\tEND\n",
      "JPN", 0);
  EXPECT_TRUE(Has(u, "エラー： 2 行目： アドレス定数  \"NOWHERE\"  と一致するラベル又はプログラム名")) << u.out;
}

TEST(OperandDataE2e, AnOutsideProgramNameWarnsExceptForCallAndLad) {
  e2e::RunResult r = Assemble(
      "MAIN\tSTART\n"
      "\tLAD\tGR1,SUB\n"
      "\tCALL\tSUB\n"
      "\tJUMP\tSUB\n"
      "\tRET\n"
      "\tEND\n"
      "SUB\tSTART\n"
      "\tRET\n"
      "\tEND\n");
  EXPECT_TRUE(Has(r, "Warning : line 4: The address constant is a name of the outside program.")) << r.out;
  EXPECT_FALSE(Has(r, "Warning : line 2:")) << r.out;
  EXPECT_FALSE(Has(r, "Warning : line 3:")) << r.out;
  EXPECT_TRUE(Has(r, "Successfully Assembled! ")) << r.out;
}

}  // namespace
