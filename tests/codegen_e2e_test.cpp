// Assembling, linking and reporting through the built program: the image of
// three programs that call each other, the budget stop and the console
// notes of the reports.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "harness.h"

namespace {

std::string Ini(const std::string& lang, int langInt) {
  return "[Mode]\nLangStr=" + lang + "\nLangInt=" + std::to_string(langInt) +
         "\nFightFunc=NWW\nTimeFuncStr=QPC\nTimeFuncInt=0\nSimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=0\n"
         "[Src]\nLastSrcFile=src\\pn1000.txt\n[Editor]\nTextEditorIndex=0\nTextEditorPath1=\nTextEditorPath2=\n";
}

e2e::RunResult Drill(const std::string& ini, const std::string& input, const std::string& source) {
  e2e::RunSpec spec;
  spec.ini = ini;
  spec.input = input;
  spec.files["src/t.cas"] = source;
  spec.env.push_back({"TZ", "UTC"});
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out) << r.out;
  EXPECT_FALSE(r.signaled) << r.out;
  EXPECT_EQ(r.status, 0) << r.out;
  return r;
}

// The hexadecimal column of every memory row of a report, up to `n` rows.
std::vector<std::string> HexColumn(const std::string& report, size_t n) {
  std::vector<std::string> out;
  std::istringstream in(report);
  std::string line;
  while (std::getline(in, line) && out.size() < n) {
    if (line.rfind("It is called Reserved Area", 0) == 0) break;  // the stack table follows
    if (line.size() < 6 || line[0] != '#' || line[5] != ':') continue;
    size_t at = line.find(":#", 12);
    if (at == std::string::npos) continue;
    out.push_back(line.substr(at + 1, 5));
  }
  return out;
}

const char* const kThreePrograms =
    "MAIN\tSTART\tBEGIN\n"
    "LEN\tDC\t5\n"
    "BEGIN\tLAD\tGR1,=3\t; a literal\n"
    "\tOUT\tMSG,LEN\n"
    "\tCALL\tSUB1\n"
    "\tRET\n"
    "MSG\tDC\t'HELLO'\n"
    "\tEND\n"
    "SUB1\tSTART\n"
    "\tRPUSH\n"
    "\tLD\tGR2,='AB'\n"
    "\tCALL\tSUB2\n"
    "\tRPOP\n"
    "\tRET\n"
    "\tEND\n"
    "SUB2\tSTART\n"
    "\tLD\tGR3,=#00FF\n"
    "\tJUMP\tBACK\n"
    "BACK\tRET\n"
    "\tEND\n";

TEST(CodegenE2e, ThreeProgramsCallingEachOtherWordForWord) {
  e2e::RunResult r = Drill(Ini("ENU", 1), "\n1\nsrc/t.cas\n\n123\n", kThreePrograms);
  ASSERT_TRUE(r.files.count("aaAssembledRegMry.txt")) << r.out;
  EXPECT_NE(r.out.find("Successfully Assembled! ---> aaAssembledRegMry.txt \n"), std::string::npos) << r.out;
  const std::vector<std::string> expected = {
      // MAIN: 0..25, its literal at 25
      "#6400", "#0003", "#0005", "#1210", "#0019", "#7001", "#0000", "#7002", "#0000", "#1210", "#0014", "#1220",
      "#0002", "#F000", "#0002", "#7120", "#7110", "#8000", "#001A", "#8100", "#0048", "#0045", "#004C", "#004C",
      "#004F", "#0003",
      // SUB1: 26..54, its literal 'AB' at 53 and 54
      "#0000", "#7001", "#0000", "#7002", "#0000", "#7003", "#0000", "#7004", "#0000", "#7005", "#0000", "#7006",
      "#0000", "#7007", "#0000", "#1020", "#0035", "#8000", "#0037", "#7170", "#7160", "#7150", "#7140", "#7130",
      "#7120", "#7110", "#8100", "#0041", "#0042",
      // SUB2: 55..61, its literal at 61
      "#0000", "#1030", "#003D", "#6400", "#003C", "#8100", "#00FF",
      // ten rows behind the image
      "#0000", "#0000", "#0000", "#0000", "#0000", "#0000", "#0000", "#0000", "#0000", "#0000"};
  const std::string& report = r.files.at("aaAssembledRegMry.txt");
  EXPECT_EQ(HexColumn(report, 1000), expected) << report;
  EXPECT_EQ(e2e::count_occurrences(report, "\n//" + std::string(72, '-') + "\n#003E:"), 1u);
  EXPECT_NE(report.find("Src. File: src/t.cas    Thu Jan  1 12:00:00 1970\n\nVM COMET2: aaAssembledRegMry.txt\n"),
            std::string::npos);
  EXPECT_NE(report.find(":Literal:(LD GR2,='AB')\n"), std::string::npos) << report;
  // The run printed HELLO and wrote the second report.
  EXPECT_NE(r.out.find("HELLO"), std::string::npos);
  EXPECT_TRUE(r.files.count("aaResultantRegMry.txt"));
}

TEST(CodegenE2e, BudgetStopsTheLinkInEnglishAlsoInJapanese) {
  const std::string src =
      "P\tSTART\n\tCALL\tQ\n\tRET\nAREA\tDS\t40000\n\tEND\n"
      "Q\tSTART\n\tRET\nMORE\tDS\t25030\n\tEND\n";  // 40004 + 25032 = 65036
  for (auto [lang, n] : {std::pair<std::string, int>{"ENU", 1}, {"JPN", 0}}) {
    e2e::RunResult r = Drill(Ini(lang, n), "\n1\nsrc/t.cas\n\n123\n", src);
    EXPECT_NE(r.out.find("Error : : Your program needs 65036 words in memory. \n"
                         "The comet2 is a 16-bit machine. So it has 65536 words in all. \n"
                         "65035 words cannot be reserved, because 500 words has been prereserved for Stack Area in "
                         "comet2. \n"),
              std::string::npos)
        << r.out;
    EXPECT_FALSE(r.files.count("aaAssembledRegMry.txt")) << lang;
  }
}

TEST(CodegenE2e, JapaneseReportNotesHintOnlyTheFirstTime) {
  const std::string src = "P\tSTART\n\tLAD\tGR1,1\n\tRET\n\tEND\n";
  e2e::RunResult r = Drill(Ini("JPN", 0), "\n1\nsrc/t.cas\n\n11\n\n123\n", src);
  EXPECT_EQ(e2e::count_occurrences(r.out, "---> aaAssembledRegMry.txt "), 2u) << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, "---> aaAssembledRegMry.txt \nアセンブルされたメモリの全容が保存してあります。"), 1u)
      << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, "\n実行後のメモリの全容が保存してあります。"), 1u) << r.out;
  ASSERT_TRUE(r.files.count("aaResultantRegMry.txt"));
  EXPECT_NE(r.files.at("aaResultantRegMry.txt").find("作成日時：1970年1月1日 12時0分0秒\nVM COMET2: "), std::string::npos);
}

}  // namespace
