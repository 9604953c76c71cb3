// The program shell end to end: start-up, banner, dispatch, main menu,
// settings file and the end of standard input, through the built program.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "harness.h"

namespace {

using e2e::count_occurrences;
using e2e::Ini;
const auto npos = std::string::npos;

const std::string kBanner = "CASL2/COMET2 Drill  Ver. 4.4.5  x64  R_";
const std::string kFirstPause = "\nPress your Enter key to go next. ";
const std::string kLaterPause = "\nPress the Enter key to go next. ";
const std::string kPauseJ = "\n入力（Enter）キィを押すと次へ進む。";
const std::string kMenuE = "Menu:\n 1.  Input a filename to assemble.   e.g. src/pn100.txt\n";
const std::string kMenuJ = "メニュー：\n 1.  ファイル名（プログラム名）を指定する。例 : src/pn100.txt\n";
const std::string kNoIni = "(no settings file)";

e2e::RunResult Drill(const std::string& ini, const std::string& input, std::map<std::string, std::string> files = {},
                     std::vector<std::pair<std::string, std::string>> env = {}) {
  e2e::RunSpec spec;
  spec.ini = ini, spec.no_ini = ini == kNoIni, spec.input = input, spec.files = std::move(files), spec.env = std::move(env);
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out || r.signaled) << r.out;
  EXPECT_EQ(r.status, 0) << r.out;
  return r;
}

// `text` with the first `from` replaced by `to`.
std::string Sub(std::string text, const std::string& from, const std::string& to) {
  size_t at = text.find(from);
  return at == npos ? text + "<" + from + " missing>" : text.replace(at, from.size(), to);
}

// `ini` as item 123 writes it back: the silent flag as a truth value.
std::string Written(const std::string& ini) { return Sub(ini, "SilentModeIndex=0", "SilentModeIndex=false"); }

// Every one of `texts` stands in `out`.
void ExpectIn(const std::string& out, std::initializer_list<std::string> texts) {
  for (const std::string& t : texts) EXPECT_NE(out.find(t), npos) << t << "\n--- in ---\n" << out;
}

std::string Sample() { return e2e::read_file(e2e::source_path("examples/src/pn1000.txt")); }
// The sample with one warning: a comma behind the operand of DS.
std::string Warned() { return Sub(Sample(), "SUM     DS      1\n", "SUM     DS      1,\n"); }

TEST(E2eShell, StartWithoutSettingsAndByModeName) {
  const std::string simple = Sub(Ini(), "SimpleTitleIndex=0", "SimpleTitleIndex=1");
  const std::string byDefault = "FightNwW(); by default.\n\n" + kBanner + "NWW\n";
  // settings, how the output begins ("": no output at all), the file after item 123
  for (auto [ini, head, file] : std::vector<std::array<std::string, 3>>{
           {kNoIni, "\n" + kBanner + "WP\n\nAssembler, Linker, and Simulator\n", Written(Ini("WP"))},  // defaults
           {Ini("NewChH"), "", Ini("NewChH")}, {Ini("NewChWH"), "", Ini("NewChWH")},
           {Ini("nww"), byDefault, Written(Ini("nww"))}, {Ini("wp"), byDefault, Written(Ini("wp"))},
           {Ini("Fight"), byDefault, Written(Ini("Fight"))}, {Ini(""), byDefault, Written(Ini(""))},
           {Ini("NwW"), "\n" + kBanner + "NWW\n", Written(Ini("NwW"))},
           {simple, "Drill Asm  Ver. 4.4.5  x64  R_NWW\n\nAssembler & Simulator\n", Written(simple)}}) {
    e2e::RunResult r = Drill(ini, "\n123\n");
    SCOPED_TRACE(ini);
    EXPECT_TRUE(head.empty() ? r.out.empty() : r.out.starts_with(head)) << r.out;
    EXPECT_EQ(r.files, (std::map<std::string, std::string>{{"drillasm.ini", file}}));  // no temporary left
  }
  EXPECT_NE(Drill(simple, "\n").out.find("Menu:\n 1.  Input a filename to assemble.\n"), npos);
}

TEST(E2eShell, ModeChangesTheThreeBannerLimitAndItemNine) {
  // WP -> cancel -> same name -> NWW -> AP -> WP, bad numbers, 9 (Japanese), then exit.
  e2e::RunResult r = Drill(Ini("WP"), "\n7\n33\n7\n2\n7\n1\n\n7\n3\n\n7\n2\n\n0\n12a\n\n6\n12\n9\n123\n");
  EXPECT_EQ(count_occurrences(r.out, kBanner), 3u) << r.out;
  size_t wp = r.out.find(kBanner + "WP\n"), nww = r.out.find(kBanner + "NWW\n"), ap = r.out.find(kBanner + "AP\n");
  EXPECT_TRUE(wp < nww && nww < ap && ap != npos) << r.out;
  // Cancel, the same name, bad numbers and 9 show the menu again without a
  // pause; every new Fight pauses, and the fourth shows an empty line for the banner.
  EXPECT_EQ(count_occurrences(r.out, "Enter key to go next. "), 4u) << r.out;
  EXPECT_EQ(count_occurrences(r.out, "You are expected to input a good menu number.\n"), 3u) << r.out;
  EXPECT_EQ(count_occurrences(r.out, "Try it again!\n"), 2u) << r.out;
  ExpectIn(r.out, {"33. Cancel\n\n" + kLaterPause, "Input a menu number.\n" + kMenuJ});
  EXPECT_EQ(r.files.at("drillasm.ini"), Written(Ini("WP", 0)));
  EXPECT_EQ(Drill(Ini("NWW", 0), "\n7\n3\n\n9\n123\n").files.at("drillasm.ini"), Written(Ini("AP")));
}

TEST(E2eShell, Item123WritesEverySettingBack) {
  std::string ini =
      "[Mode]\nLangStr=JPN\nLangInt=1\nFightFunc=NH\nTimeFuncStr=std::chrono\nTimeFuncInt=1\nSimpleTitleIndex=1\n"
      "BusyModeIndex=0\nSilentModeIndex=1\n[Src]\nLastSrcFile=src/other.txt\n"
      "[Editor]\nTextEditorIndex=0\nTextEditorPath1=/usr/bin/ed1\nTextEditorPath2=ed2\n";
  // The clock number comes from Editor.TimeFuncInt (missing: 0), and the
  // silent flag of the file is dropped at start.
  EXPECT_EQ(Drill(ini, "\n123\n").files.at("drillasm.ini"),
            "[Mode]\nLangStr=JPN\nLangInt=0\nFightFunc=NH\nTimeFuncStr=QPC\nTimeFuncInt=0\nSimpleTitleIndex=1\n"
            "BusyModeIndex=0\nSilentModeIndex=false\n[Src]\nLastSrcFile=src/other.txt\n"
            "[Editor]\nTextEditorIndex=0\nTextEditorPath1=/usr/bin/ed1\nTextEditorPath2=ed2\n");
  // Editor.TimeFuncInt added by hand chooses the clock, and is written under Mode.
  e2e::RunResult r = Drill(Ini() + "TimeFuncInt=2\n", "\n11\n\n123\n", {{"src/pn1000.txt", Sample()}});
  ExpectIn(r.out, {"msec =(ReadFile, Assemble, Link)Time  std::clock() \n"});
  EXPECT_EQ(r.files.at("drillasm.ini"), Sub(Written(Ini()), "QPC\nTimeFuncInt=0", "std::clock()\nTimeFuncInt=2"));
}

TEST(E2eShell, EndOfInputAtEveryPromptLeavesTheSettingsAlone) {
  // settings, input that ends at a prompt (the Japanese ones without a final line end); 11 and 1 end at the
  // warnings menu
  for (auto [ini, input] : {std::pair{Ini(), ""}, {Ini(), "\n"}, {Ini(), "\n7\n"}, {Ini(), "\n1\n"}, {Ini(), "\n4\n"},
                            {Ini(), "\n5\n"}, {Ini(), "\n9\n"}, {Ini(), "\n7\n33\n"}, {Ini(), "\n2\n"},
                            {Ini(), "\n1\nsrc/pn1000\n"}, {Ini(), "\n11\n"}, {Ini("WP", 0), "\n12"},
                            {Ini("WP", 0), "\n7\n3"}, {Ini("WP", 0), "\n1\nnothing"}}) {
    EXPECT_EQ(Drill(ini, input, {{"src/pn1000.txt", Warned()}}).files.at("drillasm.ini"), ini) << input;
  }
}

TEST(E2eShell, RejectedSettingsFileIsNamedAndKeptUntilItem123) {
  const std::string bad = "[Mode]\nLangStr=JPN\nFightFunc=NWW\nthis is no setting\n";
  e2e::RunResult r = Drill(bad, "\n");
  EXPECT_EQ(r.out.rfind("Settings file drillasm.ini, line 4: ", 0), 0u) << r.out;
  EXPECT_EQ(r.out.find('\n'), r.out.find("\n\n" + kBanner + "WP\n")) << r.out;  // one line, then WP
  ExpectIn(r.out, {kFirstPause + kMenuE});  // English: the fallback
  EXPECT_EQ(r.files.at("drillasm.ini"), bad);
  // Item 123 writes the fallbacks; the keys "left as they were" keep the start values.
  EXPECT_EQ(Drill(bad, "\n123\n").files.at("drillasm.ini"),
            Sub(Sub(Written(Ini("WP")), "BusyModeIndex=1", "BusyModeIndex=0"), "pn1000.txt", "pn1000"));
}

TEST(E2eShell, SampleRunAndTheServiceItems) {
  std::map<std::string, std::string> files = {{"src/pn1000.txt", Sample()},
                                              {"src/x$(touch${IFS}PWNED);.txt", "odd name\n"}};
  // 11 runs the last file, 2 and 3 show the reports, 55 the last file, 5 a
  // named one (never as shell text), 4 lists a folder, 10 the guide.
  e2e::RunResult r = Drill(Ini(), "\n11\n\n2\n\n3\n\n55\n\n5\nsrc/x$(touch${IFS}PWNED);\n\n4\nsrc\n\n10\n\n", files,
                           {{"EDITOR", "cat -n"}});
  ExpectIn(r.out, {"Successfully Assembled! ---> aaAssembledRegMry.txt", "SUM(1..5) = 15", kLaterPause + kMenuE,
                   "VM COMET2: aaAssembledRegMry.txt", "VM COMET2: aaResultantRegMry.txt", "     1\t; pn1000 -- adds",
                   "     1\todd name", "pn1000.txt\n", "drillasm: a learner's guide"});
  EXPECT_EQ(count_occurrences(r.out, "Enter key to go next. "), 8u) << r.out;
  EXPECT_EQ(r.out.substr(0, r.out.find("drillasm: a learner's guide")).find("Error"), npos) << r.out;
  EXPECT_TRUE(r.files.count("aaResultantRegMry.txt") && !r.files.count("PWNED"));
  // 8 shows the settings, and reads them again after the "editor" changed them.
  ExpectIn(Drill(Ini(), "\n8\n\n", {}, {{"EDITOR", "sed -i -e s/LangStr=ENU/LangStr=JPN/"}}).out, {kPauseJ + kMenuJ});
  // 85 and 88 ask through rm; its answer is the end of input: no.
  e2e::RunResult rm = Drill(Ini(), "\n85\n88\n");
  EXPECT_EQ(count_occurrences(rm.out, "rm: remove regular file 'drillasm.ini'?"), 2u) << rm.out;
  EXPECT_EQ(count_occurrences(rm.out, kMenuE), 3u) << rm.out;
  EXPECT_EQ(rm.files.at("drillasm.ini"), Ini());
}

TEST(E2eShell, ErrorSummaryMissingFileAndWarningsMenu) {
  const std::string menuE =
      "\n\n\nMenu:\n1.  Go on this execution. \n2.  Go back to Main Menu. \nInput a menu number. \n";
  const std::string menuJ = "\n\n\nメニュー:\n１ このまま実行する。\n２ メイン メニューにもどる。\n"
                            "メニュウ番号を入力してください。 \n";
  for (auto [mode, lang] : {std::pair{"NWW", 1}, {"WP", 1}, {"NWW", 0}, {"WP", 0}}) {
    SCOPED_TRACE(mode + std::to_string(lang));
    // A missing file; the warned one: 2, "x" and a bare line end go back, 1 runs; a file with errors (no START,
    // no END).
    e2e::RunResult r = Drill(Ini(mode, lang), "\n1\nnothing\n\n1\nsrc/w\n2\n1\nsrc/w\nx\n11\n\n11\n1\n\n1\nsrc/bad\n\n",
                             {{"src/bad.txt", "\tLD\tGR1,A\nA\tDC\t1\n"}, {"src/w.txt", Warned()}});
    EXPECT_EQ(count_occurrences(r.out, lang ? "The file is not found there. *" : "ファイルが見つかりませんでした。"), 1u);
    EXPECT_EQ(count_occurrences(r.out, lang ? "1 warning: \n" : "1 個の 警告 がある。\n"), 4u) << r.out;
    EXPECT_EQ(count_occurrences(r.out, lang ? menuE : menuJ), 4u) << r.out;
    EXPECT_EQ(count_occurrences(r.out, "SUM(1..5) = 15"), 1u) << r.out;
    EXPECT_EQ(count_occurrences(r.out, lang ? "There is 1 error to be corrected. \n\nCorrect the codes and assemble"
                                              " them again.\n" : " 個の エラー があるので修正が必要です。 \n"), 1u);
    size_t at = r.out.find(lang ? "Error : " : "エラー： ");
    ASSERT_NE(at, npos) << r.out;  // WP prints the messages again before the time line
    EXPECT_EQ(count_occurrences(r.out, r.out.substr(at, r.out.find('\n', at) - at)), mode[0] == 'W' ? 2u : 1u);
    ExpectIn(r.out, {") msec =(ReadFile, Assemble)Time QPC  \n", lang ? kLaterPause + kMenuE : kPauseJ + kMenuJ});
  }
}

}  // namespace

// Item 10 opens the guide of the learner's language, looked for beside the
// program first (installed layout, then the source tree of a build), and
// names the folders it searched when there is none.
TEST(E2eShell, Item10OpensTheGuideOfTheLanguage) {
  const std::string exe = e2e::read_file(DRILLASM_EXE);
  const std::vector<std::pair<std::string, std::string>> shows = {{"EDITOR", "printf 'GUIDE[%s]\\n'"}};
  struct Case {
    std::map<std::string, std::string> files;
    int lang;
    std::string expected;
  };
  const std::string inst = "share/doc/drillasm/";
  for (const Case& c : std::vector<Case>{
           {{{inst + "help.md", "en"}, {inst + "help.ja.md", "ja"}}, 1, "GUIDE[bin/../" + inst + "help.md]"},
           {{{inst + "help.md", "en"}, {inst + "help.ja.md", "ja"}}, 0, "GUIDE[bin/../" + inst + "help.ja.md]"},
           // the language's own guide from a later folder before the other language's
           {{{inst + "help.md", "en"}, {"docs/help.ja.md", "ja"}}, 0, "GUIDE[bin/../docs/help.ja.md]"},
           // only the other language's guide: better than none
           {{{"docs/help.md", "en"}}, 0, "GUIDE[bin/../docs/help.md]"},
           {{}, 1, "The guide help.md is not found. Folders searched: "},
           {{}, 0, "ガイド help.ja.md が見つかりません。探したフォルダ: "},
       }) {
    e2e::RunSpec spec;
    spec.ini = Ini("NWW", c.lang);
    spec.input = "\n10\n\n";
    spec.files = c.files;
    spec.files["bin/drillasm"] = exe;
    spec.executables = {"bin/drillasm"};
    spec.argv = {"bin/drillasm"};
    spec.env = shows;
    e2e::RunResult r = e2e::run(spec);
    EXPECT_EQ(r.status, 0) << r.out;
    // The program's own folder is a real path; compare from "bin/" on.
    std::string out = r.out;
    for (size_t at; (at = out.find(r.dir + "/")) != npos;) out.erase(at, r.dir.size() + 1);
    EXPECT_NE(out.find(c.expected), npos) << c.expected << "\n--- in ---\n" << out;
  }
}
