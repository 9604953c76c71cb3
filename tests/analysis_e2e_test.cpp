// The line analysis through the built program: messages, the counts of the
// summary and the gates, as the learner sees them.
#include <gtest/gtest.h>

#include <string>

#include "harness.h"

namespace {

std::string Ini(const std::string& lang) {
  return "[Mode]\nLangStr=" + lang + "\nLangInt=" + (lang == "JPN" ? "0" : "1") +
         "\nFightFunc=NWW\nTimeFuncStr=QPC\nTimeFuncInt=0\nSimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=0\n"
         "[Src]\nLastSrcFile=src\\pn1000.txt\n[Editor]\nTextEditorIndex=0\nTextEditorPath1=\nTextEditorPath2=\n";
}

// Assembles `source` once (menu item 1) and lets the input end.
e2e::RunResult Assemble(const std::string& source, const std::string& lang = "ENU", const std::string& more = "") {
  e2e::RunSpec rs;
  rs.ini = Ini(lang);
  rs.input = "\n1\nt.txt\n" + more;
  rs.files = {{"t.txt", source}};
  e2e::RunResult r = e2e::run(rs);
  EXPECT_FALSE(r.timed_out) << r.out;
  EXPECT_FALSE(r.signaled) << r.out;
  EXPECT_EQ(r.status, 0) << r.out;
  return r;
}

bool Has(const e2e::RunResult& r, const std::string& s) { return r.out.find(s) != std::string::npos; }

TEST(AnalysisE2e, SemicolonBehindEndCountsThreeErrorsInTheSummary) {
  e2e::RunResult r = Assemble("PRG\tSTART\n\tRET\n\tEND;COMMENT\n");
  EXPECT_TRUE(Has(r, "Error : line 3 \"END;COMMENT\"  is not either assembler instruction")) << r.out;
  EXPECT_TRUE(Has(r, "Error :  \" END;\" : \n")) << r.out;
  EXPECT_TRUE(Has(r, "There are 3 errors to be corrected. ")) << r.out;
  EXPECT_FALSE(Has(r, "Successfully Assembled!"));
}

TEST(AnalysisE2e, FirstProgramWithErrorsHidesTheSecondProgram) {
  e2e::RunResult r = Assemble(
      "P1\tSTART\n\tLD\tGR1\n\tRET\n\tEND\n"
      "P2\tSTART\n\tST\tGR1,GR2\n\tRET\n\tEND\n");
  EXPECT_TRUE(Has(r, "Error : line 2: A comma is expected at the right side of GR1. \n")) << r.out;
  EXPECT_TRUE(Has(r, "Error : line 2: An operand is expected at the right side of LD. \n")) << r.out;
  EXPECT_FALSE(Has(r, "ST cannot be written")) << r.out;
  EXPECT_TRUE(Has(r, "There are 2 errors to be corrected. ")) << r.out;
}

TEST(AnalysisE2e, JapaneseLabelMessagesAndTheSingularSummary) {
  e2e::RunResult r = Assemble("PRG\tSTART\nABCDEFGHI\tNOP\n\tRET\n\tEND\n", "JPN");
  EXPECT_TRUE(Has(r, "エラー： 2 行目：  \"ABCDEFGHI\"  ラベルの長さは 8 文字までに制限されている。 9 文字ある。\n"))
      << r.out;
  EXPECT_TRUE(Has(r, " 1 個の エラー があるので修正が必要です。 ")) << r.out;
}

TEST(AnalysisE2e, UnusedLabelNoteDoesNotStopTheAssembly) {
  e2e::RunResult r = Assemble("PRG\tSTART\n\tLD\tGR1,A\nB\tNOP\n\tRET\nA\tDC\t1\n\tEND\n");
  EXPECT_TRUE(Has(r, "Note : line 3:  \"B\"  Unreferenced label  \n")) << r.out;
  EXPECT_TRUE(Has(r, "Successfully Assembled!")) << r.out;
  ASSERT_TRUE(r.files.count("aaAssembledRegMry.txt"));
}

TEST(AnalysisE2e, AWarningAloneRunsThroughAllStagesToTheWarningsMenu) {
  e2e::RunResult r = Assemble("PRG\tSTART\n\tLD\tGR1,GR2,\n\tRET\n\tEND\n", "ENU", "2\n");
  EXPECT_TRUE(Has(r, "Warning : line 2: A comma is of no use at the right side of the 2nd operand register. ")) << r.out;
  EXPECT_TRUE(Has(r, "Successfully Assembled!")) << r.out;
  EXPECT_TRUE(Has(r, "1.  Go on this execution. ")) << r.out;
  EXPECT_NE(r.files.at("aaAssembledRegMry.txt").find("#1412"), std::string::npos);
}

TEST(AnalysisE2e, LiteralErrorHidesTheFormError) {
  e2e::RunResult r = Assemble("PRG\tSTART\n\tLD\tGR1,=#12\n\tSRA\tGR1,GR2\n\tRET\n\tEND\n");
  EXPECT_FALSE(Has(r, "SRA does not take a format")) << r.out;
  EXPECT_TRUE(Has(r, "error")) << r.out;
}

}  // namespace
