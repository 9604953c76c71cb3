// Assembling, linking and reporting through the built program: the image of
// three programs that call each other, the budget stop and the console
// notes of the reports.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "harness.h"

namespace {

e2e::RunResult Drill(int lang, const std::string& input, const std::string& source) {
  e2e::RunResult r = e2e::run({.ini = e2e::Ini("NWW", lang), .input = input, .files = {{"src/t.cas", source}},
                               .env = {{"TZ", "UTC"}}, .argv = {}});
  EXPECT_FALSE(r.timed_out || r.signaled) << r.out;
  EXPECT_EQ(r.status, 0) << r.out;
  return r;
}

// The hexadecimal column of every memory row of a report, a blank behind each.
std::string HexColumn(const std::string& report) {
  std::string out, line;
  std::istringstream in(report);
  while (std::getline(in, line) && line.rfind("It is called Reserved Area", 0) != 0) {
    if (line.size() > 30 && line[0] == '#' && line[5] == ':') out += line.substr(line.find(":#", 12) + 1, 5) + " ";
  }
  return out;
}

TEST(CodegenE2e, ThreeProgramsCallingEachOtherWordForWord) {
  e2e::RunResult r = Drill(1, "\n1\nsrc/t.cas\n\n123\n",
                           "MAIN\tSTART\tBEGIN\nLEN\tDC\t5\nBEGIN\tLAD\tGR1,=3\t; a literal\n\tOUT\tMSG,LEN\n"
                           "\tCALL\tSUB1\n\tRET\nMSG\tDC\t'HELLO'\n\tEND\n"
                           "SUB1\tSTART\n\tRPUSH\n\tLD\tGR2,='AB'\n\tCALL\tSUB2\n\tRPOP\n\tRET\n\tEND\n"
                           "SUB2\tSTART\tGO\nK\tDC\t7\nGO\tLD\tGR3,=#00FF\n\tJUMP\tBACK\nBACK\tRET\n\tEND\n");
  ASSERT_TRUE(r.files.count("aaAssembledRegMry.txt")) << r.out;
  EXPECT_NE(r.out.find("Successfully Assembled! ---> aaAssembledRegMry.txt \n"), std::string::npos) << r.out;
  const std::string expected =
      // MAIN: 0..25, its literal at 25
      "#6400 #0003 #0005 #1210 #0019 #7001 #0000 #7002 #0000 #1210 #0014 #1220 #0002 #F000 #0002 #7120 #7110 #8000 "
      "#001A #8100 #0048 #0045 #004C #004C #004F #0003 "
      // SUB1: 26..54, its literal 'AB' at 53 and 54
      "#0000 #7001 #0000 #7002 #0000 #7003 #0000 #7004 #0000 #7005 #0000 #7006 #0000 #7007 #0000 #1020 #0035 #8000 "
      "#0037 #7170 #7160 #7150 #7140 #7130 #7120 #7110 #8100 #0041 #0042 "
      // SUB2: 55..63, entered at GO (58), its literal at 63; ten rows behind
      "#6400 #003A #0007 #1030 #003F #6400 #003E #8100 #00FF "
      "#0000 #0000 #0000 #0000 #0000 #0000 #0000 #0000 #0000 #0000 ";
  const std::string& report = r.files.at("aaAssembledRegMry.txt");
  EXPECT_EQ(HexColumn(report), expected) << report;
  EXPECT_EQ(e2e::count_occurrences(report, "\n//" + std::string(72, '-') + "\n#0040:"), 1u);
  EXPECT_NE(report.find("Src. File: src/t.cas    Thu Jan  1 12:00:00 1970\n\nVM COMET2: aaAssembledRegMry.txt\n"),
            std::string::npos);
  EXPECT_NE(report.find(":Literal:(LD GR2,='AB')\n"), std::string::npos) << report;
  // The run printed HELLO and wrote the second report.
  EXPECT_NE(r.out.find("HELLO"), std::string::npos);
  EXPECT_TRUE(r.files.count("aaResultantRegMry.txt"));
}

// 40004 + 25032 = 65036 words: the English set also in Japanese, and no report.
TEST(CodegenE2e, BudgetStopsTheLinkInEnglishAlsoInJapanese) {
  e2e::RunResult r = Drill(0, "\n1\nsrc/t.cas\n\n123\n",
                           "P\tSTART\n\tCALL\tQ\n\tRET\nAREA\tDS\t40000\n\tEND\nQ\tSTART\n\tRET\nMORE\tDS\t25030\n\tEND\n");
  EXPECT_NE(r.out.find("Error : : Your program needs 65036 words in memory. \nThe comet2 is a 16-bit"), std::string::npos)
      << r.out;
  EXPECT_FALSE(r.files.count("aaAssembledRegMry.txt"));
}

TEST(CodegenE2e, JapaneseReportNotesHintOnlyTheFirstTime) {
  e2e::RunResult r = Drill(0, "\n1\nsrc/t.cas\n\n11\n\n123\n", "P\tSTART\n\tLAD\tGR1,1\n\tRET\n\tEND\n");
  EXPECT_EQ(e2e::count_occurrences(r.out, "---> aaAssembledRegMry.txt "), 2u) << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, "---> aaAssembledRegMry.txt \nアセンブルされたメモリの全容が保存してあります。"), 1u);
  EXPECT_EQ(e2e::count_occurrences(r.out, "\n実行後のメモリの全容が保存してあります。"), 1u) << r.out;
  ASSERT_TRUE(r.files.count("aaResultantRegMry.txt"));
  EXPECT_NE(r.files.at("aaResultantRegMry.txt").find("作成日時：1970年1月1日 12時0分0秒\nVM COMET2: "), std::string::npos);
}

}  // namespace
