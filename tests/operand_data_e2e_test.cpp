// Address constants, literals, macros and constants through the built
// program: what the learner sees for whole files.
#include <gtest/gtest.h>

#include <string>

#include "harness.h"

namespace {

// Assembles src/t.cas from the menu and returns what was printed and left.
e2e::RunResult Assemble(const std::string& source, bool japanese = false) {
  e2e::RunSpec spec;
  spec.ini = e2e::Ini("NWW", japanese ? 0 : 1);
  spec.input = "\n1\nsrc/t.cas\n2\n\n123\n";
  spec.files["src/t.cas"] = source;
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out || r.signaled) << r.out;
  return r;
}

bool Has(const std::string& out, const std::string& s) { return out.find(s) != std::string::npos; }

TEST(OperandDataE2e, ForwardReferencesProgramNamesAndMacrosAssemble) {
  e2e::RunResult r = Assemble(
      "MAIN\tSTART\n\tLD\tGR1,DATA\n\tLAD\tGR2,=10\n\tLAD\tGR3,=10\n\tIN\tBUF,LEN\n\tCALL\tSUB\n\tRET\n"
      "DATA\tDC\t22, 55, 'abc', #00FF\nBUF\tDS\t0\nLEN\tDS\t1\n\tEND\n"
      "SUB\tSTART\n\tRPUSH\n\tRPOP\n\tRET\n\tEND\n");
  EXPECT_TRUE(Has(r.out, "Successfully Assembled! ")) << r.out;
  EXPECT_FALSE(Has(r.out, "Error : ")) << r.out;
  const std::string& rep = r.files["aaAssembledRegMry.txt"];
  // DATA lies behind START (1), LD (2), LAD (2), LAD (2), IN (12), CALL (2), RET (1) at 22;
  // the two =10 take two places behind DATA (6 words), DS 0 and DS 1: 29 and 30.
  for (const char* s : {"#0001:    1:        :    :#1010:", "#0002:    2:        :    :#0016:   22:",
                        "#0004:    4:        :    :#001D:   29:", "#0006:    6:        :    :#001E:   30:"})
    EXPECT_TRUE(Has(rep, s)) << s << "\n" << rep;
}

TEST(OperandDataE2e, ALiteralErrorHidesTheInstructionErrorsOfItsProgram) {
  e2e::RunResult r = Assemble("MAIN\tSTART\n\tLD\tGR1,=#12\n\tLD\tGR1,NOWHERE\n\tRET\n\tEND\n");
  EXPECT_TRUE(Has(r.out, "Error : line 2: A hexadecimal number should be written in four letters. \n")) << r.out;
  EXPECT_FALSE(Has(r.out, "NOWHERE")) << r.out;
  EXPECT_FALSE(Has(r.out, "Successfully Assembled!")) << r.out;
  // A bare "=" leaves the edited text before the literal check: the address
  // pass tells the learner, with no internal error.
  r = Assemble("MAIN\tSTART\n\tLD\tGR1,=\n\tRET\n\tEND\n");
  EXPECT_TRUE(Has(r.out, "Error : line 2:  \"=\"  cannot be read as a literal. \n")) << r.out;
  EXPECT_TRUE(Has(r.out, "There is 1 error to be corrected. ")) << r.out;
  EXPECT_FALSE(Has(r.out, "Prg")) << r.out;
}

TEST(OperandDataE2e, UndefinedLabelsAndDcAndDsErrorsInJapanese) {
  e2e::RunResult r = Assemble("MAIN\tSTART\n\tLD\tGR1,NOWHERE\n\tRET\nA\tDC\t22 55\nB\tDS\t-1\n\tEND\n", true);
  EXPECT_TRUE(Has(r.out, "エラー： 4 行目： \"55\" が定数ならば、")) << r.out;
  EXPECT_TRUE(Has(r.out, "エラー： 5 行目： -:  \"-1\" : DS 命令のオペランドに")) << r.out;
  EXPECT_FALSE(Has(r.out, "NOWHERE")) << r.out;  // the DC and DS errors stop before the address pass
  r = Assemble("MAIN\tSTART\n\tLD\tGR1,NOWHERE\n\tRET\n\tEND\n", true);
  EXPECT_TRUE(Has(r.out, "エラー： 2 行目： アドレス定数  \"NOWHERE\"  と一致するラベル又はプログラム名")) << r.out;
}

TEST(OperandDataE2e, AnOutsideProgramNameWarnsExceptForCallAndLad) {
  e2e::RunResult r =
      Assemble("MAIN\tSTART\n\tLAD\tGR1,SUB\n\tCALL\tSUB\n\tJUMP\tSUB\n\tRET\n\tEND\nSUB\tSTART\n\tRET\n\tEND\n");
  EXPECT_TRUE(Has(r.out, "Warning : line 4: The address constant is a name of the outside program.")) << r.out;
  EXPECT_FALSE(Has(r.out, "Warning : line 2:") || Has(r.out, "Warning : line 3:")) << r.out;
  EXPECT_TRUE(Has(r.out, "Successfully Assembled! ")) << r.out;
}

}  // namespace
