// drillasm-cli end to end, through the built executable: the commands, their
// output forms and exit statuses, and that a file gets the same sentences
// and reports as in the menu program.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "harness.h"

namespace {

using e2e::count_occurrences;
const auto npos = std::string::npos;
using Files = std::map<std::string, std::string>;

e2e::RunResult Cli(std::vector<std::string> args, Files files = {}, const std::string& input = "",
                   std::vector<std::pair<std::string, std::string>> env = {}) {
  e2e::RunSpec spec;
  spec.no_ini = true;
  spec.argv = {DRILLASM_CLI_EXE};
  spec.argv.insert(spec.argv.end(), args.begin(), args.end());
  spec.files = std::move(files);
  spec.input = input;
  spec.env = std::move(env);
  spec.timeout_seconds = 60;
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out || r.signaled) << r.out;
  return r;
}

bool Has(const std::string& s, const std::string& t) { return s.find(t) != npos; }

const std::string kBad = "MAIN    START\n        lad     GR1,MSG\n        RET\nMSG     DC      1\n        END\n";
const std::string kGood = "MAIN    START\n        LAD     GR1,3\n        RET\n        END\n";
const std::string kWarned = "MAIN    START\n        LAD     GR1,BUF\n        RET\nBUF     DS      2,\n        END\n";
const std::string kNoEnd = "MAIN    START\n        RET\n";

TEST(CliCheck, LinesCountsAndStatuses) {
  Files files = {{"bad.cas", kBad}, {"good.cas", kGood}, {"warned.cas", kWarned}, {"noend.cas", kNoEnd},
                 {"empty.cas", ""},  {"dir/x.cas", kGood}};
  e2e::RunResult r = Cli({"check", "--lang", "en", "good.cas", "bad.cas", "noend.cas"}, files);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out,
            "good.cas: 0 errors, 0 warnings\n"
            "bad.cas:2: error: \"lad\"  is not either assembler instruction, machine instruction, or macro "
            "instruction.  \n"
            "bad.cas: 1 error, 0 warnings\n"
            "noend.cas: error: END description is not found anywhere.  END assembler instruction is expected. \n"
            "noend.cas: 1 error, 0 warnings\n");
  // Warnings pass unless they count as errors.
  EXPECT_EQ(Cli({"check", "--lang", "en", "warned.cas"}, files).status, 0);
  e2e::RunResult w = Cli({"check", "--lang", "en", "--werror", "warned.cas", "good.cas"}, files);
  EXPECT_EQ(w.status, 1);
  EXPECT_TRUE(Has(w.out, "warned.cas:4: warning: ") && Has(w.out, "warned.cas: 0 errors, 1 warning\n")) << w.out;
  // Unreadable files are told and the others go on; 2 comes before 1.
  e2e::RunResult u = Cli({"check", "--lang", "en", "nosuch.cas", "dir", "bad.cas", "empty.cas"}, files);
  EXPECT_EQ(u.status, 2);
  EXPECT_TRUE(Has(u.out, "nosuch.cas: error: No such file or directory\n") &&
              Has(u.out, "dir: error: Is a directory\n") && Has(u.out, "bad.cas: 1 error, 0 warnings\n") &&
              Has(u.out, "empty.cas: error: Error: The source code is empty."))
      << u.out;
  // Japanese, by option and by the environment.
  for (auto [args, env] : {std::pair<std::vector<std::string>, std::string>{{"check", "--lang", "ja", "bad.cas"}, "C"},
                           {{"check", "bad.cas"}, "ja_JP.UTF-8"}}) {
    e2e::RunResult j = Cli(args, files, "", {{"LANG", env}, {"LC_MESSAGES", ""}});
    EXPECT_TRUE(Has(j.out, "bad.cas:2: error: \"lad\"  は アセンブラ命令 でも ")) << j.out;
  }
  // The fixed-table mode's limits reach the check too.
  std::string many = kGood;
  for (int k = 0; k < 320; ++k) many += "; c\n";
  e2e::RunResult nh = Cli({"check", "--lang", "en", "--mode", "NH", "many.cas"}, {{"many.cas", many}});
  EXPECT_EQ(nh.status, 1);
  EXPECT_TRUE(Has(nh.out, "many.cas: error: There is a limitation to the number of the lines")) << nh.out;
  EXPECT_EQ(Cli({"check", "--mode", "NWW", "many.cas"}, {{"many.cas", many}}).status, 0);
}

TEST(CliCheck, TheSameSentencesAsTheMenuProgram) {
  // Files with errors of several stages, in both languages.
  const std::vector<std::string> sources = {
      kBad, kNoEnd, "MAIN    START\n        LD      GR9,A\n        LD,     GR1,A\n        RET\nA       DC      'x\n        END\n",
      "MAIN    START\n        RET\n        END\nSUB     START\n        RET\n        END\n",
      "MAIN\xE3\x80\x80START\n        RET\n        END\n", "MAIN    START\n        LAD     GR1,=\n        RET\n END;x\n"};
  for (int lang : {1, 0}) {
    for (const std::string& src : sources) {
      SCOPED_TRACE(src);
      e2e::RunSpec spec;
      spec.ini = e2e::Ini("NWW", lang);
      spec.input = "\n1\np.cas\n2\n\n123\n";
      spec.files = {{"p.cas", src}};
      std::string menu = e2e::run(spec).out;
      for (char& c : menu) c = c == '\n' ? ' ' : c;
      e2e::RunResult r = Cli({"check", "--format", "json", "--lang", lang ? "en" : "ja", "p.cas"}, {{"p.cas", src}});
      nlohmann::json doc = nlohmann::json::parse(r.out);
      ASSERT_FALSE(doc["files"][0]["diagnostics"].empty()) << r.out;
      for (const auto& d : doc["files"][0]["diagnostics"]) {
        EXPECT_TRUE(Has(menu, d["text"].get<std::string>())) << d.dump() << "\n" << menu;
      }
    }
  }
}

TEST(CliCheck, EveryFileStartsFromAFreshProgram) {
  // A file with a UTF-8 mark first: the menu program would remember the mark
  // and read the next file's first line as UTF-8 without its first 3 bytes.
  Files files = {{"bom.cas", "\xEF\xBB\xBF" + kGood}, {"x.cas", kBad}};
  std::vector<std::string> args = {"check", "--lang", "en", "x.cas", "bom.cas"};
  for (int k = 0; k < 9; ++k) args.push_back("x.cas");
  e2e::RunResult r = Cli(args, files);
  const std::string block = Cli({"check", "--lang", "en", "x.cas"}, files).out;
  EXPECT_EQ(count_occurrences(r.out, block), 10u) << r.out;
}

TEST(CliCheck, JsonDocument) {
  // Quotes, a tab and bytes that are no UTF-8 in the texts of the messages.
  const std::string odd = "MAIN    START\n        LD      GR1,\"a\tb\xFF\xFE\"\n        RET\n        END\n";
  e2e::RunResult r = Cli({"check", "--format", "json", "--lang", "en", "--mode", "WP", "odd.cas", "good.cas",
                          "nosuch.cas", "bad\xFF.cas"},
                         {{"odd.cas", odd}, {"good.cas", kGood}});
  EXPECT_EQ(r.status, 2);
  nlohmann::json doc = nlohmann::json::parse(r.out);  // throws on invalid JSON
  EXPECT_EQ(doc["tool"], "drillasm-cli");
  EXPECT_EQ(doc["mode"], "WP");
  EXPECT_EQ(doc["lang"], "en");
  ASSERT_EQ(doc["files"].size(), 4u);
  const auto& odd0 = doc["files"][0];
  EXPECT_EQ(odd0["file"], "odd.cas");
  EXPECT_EQ(odd0["assembled"], false);
  EXPECT_TRUE(odd0["words"].is_null() && odd0["run"].is_null());
  EXPECT_GE(odd0["errors"].get<int>(), 1);
  EXPECT_EQ(odd0["diagnostics"][0]["line"], 2);
  EXPECT_EQ(odd0["diagnostics"][0]["kind"], "error");
  EXPECT_FALSE(odd0["diagnostics"][0]["code"].get<std::string>().empty());
  const auto& good = doc["files"][1];
  EXPECT_EQ(good["assembled"], true);
  EXPECT_EQ(good["words"], 4);  // START, LAD (2), RET
  EXPECT_EQ(good["encoding"], "sjis");
  EXPECT_EQ(good["errors"], 0);
  EXPECT_TRUE(good["diagnostics"].empty());
  EXPECT_EQ(doc["files"][2]["error"], "No such file or directory");
  EXPECT_EQ(doc["files"][3]["file"], "bad\xEF\xBF\xBD.cas");
  // A message of no line has none.
  nlohmann::json none = nlohmann::json::parse(Cli({"check", "--format", "json", "n.cas"}, {{"n.cas", kNoEnd}}).out);
  EXPECT_TRUE(none["files"][0]["diagnostics"][0]["line"].is_null());
}

TEST(CliCheck, UsageErrors) {
  for (const std::vector<std::string>& args :
       std::vector<std::vector<std::string>>{{},
                                             {"check"},
                                             {"check", "--bogus", "a.cas"},
                                             {"check", "--lang", "fr", "a.cas"},
                                             {"check", "--lang", "en", "--lang", "ja", "a.cas"},
                                             {"check", "--format", "xml", "a.cas"},
                                             {"run", "--max-steps", "-5", "a.cas"},
                                             {"trace", "a.cas", "b.cas"},
                                             {"frobnicate"}}) {
    e2e::RunResult r = Cli(args);
    EXPECT_EQ(r.status, 2) << r.out;
    EXPECT_EQ(r.out.rfind("drillasm-cli: ", 0), 0u) << r.out;
    EXPECT_TRUE(Has(r.out, "Usage: drillasm-cli")) << r.out;
  }
  e2e::RunResult help = Cli({"check", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_TRUE(Has(help.out, "Usage: drillasm-cli check [OPTIONS] files...")) << help.out;
  EXPECT_EQ(Cli({"--version"}).out, "drillasm-cli 4.4.5\n");
}

TEST(CliCheck, AThousandFilesInOneCommand) {
  Files files;
  std::vector<std::string> args = {"check", "--lang", "en"};
  for (int k = 0; k < 1000; ++k) {
    std::string name = "f" + std::to_string(k) + ".cas";
    files[name] = k % 10 == 0 ? kBad : kGood;
    args.push_back(name);
  }
  e2e::RunResult r = Cli(args, files);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(count_occurrences(r.out, ": 0 errors, 0 warnings\n"), 900u);
  EXPECT_EQ(count_occurrences(r.out, ": 1 error, 0 warnings\n"), 100u);
}

}  // namespace
