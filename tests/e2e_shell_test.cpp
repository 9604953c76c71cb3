// The program shell end to end: start-up, banner, dispatch, main menu,
// settings file and the end of standard input, through the built program.
#include <gtest/gtest.h>

#include <string>

#include "harness.h"

namespace {

const std::string kDefaults =
    "[Mode]\n"
    "LangStr=ENU\n"
    "LangInt=1\n"
    "FightFunc=WP\n"
    "TimeFuncStr=QPC\n"
    "TimeFuncInt=0\n"
    "SimpleTitleIndex=0\n"
    "BusyModeIndex=1\n"
    "SilentModeIndex=0\n"
    "[Src]\n"
    "LastSrcFile=src\\pn1000.txt\n"
    "[Editor]\n"
    "TextEditorIndex=0\n"
    "TextEditorPath1=\n"
    "TextEditorPath2=\n";

const std::string kBannerHead = "CASL2/COMET2 Drill  Ver. 4.4.5  x64  R_";
const std::string kFirstPause = "\nPress your Enter key to go next. ";
const std::string kLaterPause = "\nPress the Enter key to go next. ";
const std::string kPauseJ = "\n入力（Enter）キィを押すと次へ進む。";
const std::string kMenuE = "Menu:\n 1.  Input a filename to assemble.   e.g. src/pn100.txt\n";
const std::string kMenuJ = "メニュー：\n 1.  ファイル名（プログラム名）を指定する。例 : src/pn100.txt\n";

// A settings file as the program writes it, with some keys replaced.
std::string Ini(const std::string& mode, const std::string& lang = "ENU", int langInt = 1,
                const std::string& extra = "") {
  return "[Mode]\nLangStr=" + lang + "\nLangInt=" + std::to_string(langInt) + "\nFightFunc=" + mode +
         "\nTimeFuncStr=QPC\nTimeFuncInt=0\nSimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=0\n" + extra +
         "[Src]\nLastSrcFile=src\\pn1000.txt\n[Editor]\nTextEditorIndex=0\nTextEditorPath1=\nTextEditorPath2=\n";
}

e2e::RunResult Drill(const std::string& ini, const std::string& input,
                   std::map<std::string, std::string> files = {},
                   std::vector<std::pair<std::string, std::string>> env = {}) {
  e2e::RunSpec spec;
  spec.ini = ini;
  spec.input = input;
  spec.files = std::move(files);
  spec.env = std::move(env);
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out) << r.out;
  EXPECT_FALSE(r.signaled) << r.out;
  EXPECT_EQ(r.status, 0) << r.out;
  return r;
}

std::string Sample() { return e2e::read_file(e2e::source_path("examples/src/pn1000.txt")); }

TEST(E2eShell, FirstStartWritesTheDefaultsAndShowsTheWpBanner) {
  e2e::RunSpec spec;
  spec.no_ini = true;
  spec.input = "\n123\n";
  e2e::RunResult r = e2e::run(spec);
  ASSERT_FALSE(r.timed_out) << r.out;
  EXPECT_EQ(r.status, 0) << r.out;
  ASSERT_TRUE(r.files.count("drillasm.ini"));
  EXPECT_EQ(r.files.at("drillasm.ini"), kDefaults);
  EXPECT_EQ(r.files.size(), 1u);  // no temporary file left behind
  EXPECT_EQ(r.out.rfind("\n" + kBannerHead + "WP\n\nAssembler, Linker, and Simulator\n", 0), 0u) << r.out;
  EXPECT_NE(r.out.find(kFirstPause + kMenuE), std::string::npos) << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, kBannerHead), 1u);
}

TEST(E2eShell, ShortBannerAndShortMenuWithSimpleTitle) {
  std::string ini = Ini("NWW");
  ini.replace(ini.find("SimpleTitleIndex=0"), 18, "SimpleTitleIndex=1");
  e2e::RunResult r = Drill(ini, "\n");
  EXPECT_EQ(r.out.rfind("Drill Asm  Ver. 4.4.5  x64  R_NWW\n\nAssembler & Simulator\n", 0), 0u) << r.out;
  EXPECT_NE(r.out.find("Menu:\n 1.  Input a filename to assemble.\n"), std::string::npos) << r.out;
  EXPECT_EQ(r.files.at("drillasm.ini"), ini);
}

TEST(E2eShell, ReservedModeNamesEndAtOnce) {
  for (const char* mode : {"NewChH", "NewChWH"}) {
    std::string ini = Ini(mode);
    e2e::RunResult r = Drill(ini, "\n123\n");
    EXPECT_EQ(r.out, "") << mode;
    EXPECT_EQ(r.files.at("drillasm.ini"), ini) << mode;
  }
}

TEST(E2eShell, UnknownModeNameRunsNwwWithASentence) {
  for (const char* mode : {"nww", "wp", "Fight", ""}) {
    e2e::RunResult r = Drill(Ini(mode), "\n");
    EXPECT_EQ(r.out.rfind("FightNwW(); by default.\n\n" + kBannerHead + "NWW\n", 0), 0u) << mode << r.out;
  }
  for (const char* mode : {"NWW", "NwW"}) {
    e2e::RunResult r = Drill(Ini(mode), "\n");
    EXPECT_EQ(r.out.rfind("\n" + kBannerHead + "NWW\n", 0), 0u) << mode << r.out;
  }
  // The name in the file survives the run until item 123 writes it.
  e2e::RunResult r = Drill(Ini("nww"), "\n123\n");
  EXPECT_NE(r.files.at("drillasm.ini").find("FightFunc=nww\n"), std::string::npos);
}

TEST(E2eShell, LangStrDecidesOverLangInt) {
  e2e::RunResult j = Drill(Ini("WP", "JPN", 1), "\n");
  EXPECT_NE(j.out.find(kPauseJ + kMenuJ), std::string::npos) << j.out;
  e2e::RunResult e = Drill(Ini("WP", "ENU", 0), "\n");
  EXPECT_NE(e.out.find(kFirstPause + kMenuE), std::string::npos) << e.out;
  // Without LangStr the language is English, whatever LangInt says.
  e2e::RunResult n = Drill("[Mode]\nLangInt=0\nFightFunc=NWW\n", "\n");
  EXPECT_NE(n.out.find(kFirstPause + kMenuE), std::string::npos) << n.out;
}

TEST(E2eShell, BadMenuNumbersInBothLanguages) {
  e2e::RunResult e = Drill(Ini("NWW"), "\n0\n12a\n\n6\n12\n");
  const std::string good = "You are expected to input a good menu number.\n";
  EXPECT_EQ(e2e::count_occurrences(e.out, good), 3u) << e.out;
  EXPECT_EQ(e2e::count_occurrences(e.out, "Try it again!\n"), 2u) << e.out;
  EXPECT_NE(e.out.find("Input a menu number.\n" + good + kMenuE), std::string::npos) << e.out;
  EXPECT_EQ(e2e::count_occurrences(e.out, "Enter key"), 1u);  // the pause comes once per pass

  e2e::RunResult j = Drill(Ini("NWW", "JPN", 0), "\n0\n12a\n\n6\n12\n");
  EXPECT_EQ(e2e::count_occurrences(j.out, "メニュー番号以外の入力がありましたのでもう一度！\n"), 3u) << j.out;
  EXPECT_EQ(e2e::count_occurrences(j.out, "もう一度\n"), 2u) << j.out;
}

TEST(E2eShell, ItemNineSwitchesTheLanguageAndItem123KeepsIt) {
  e2e::RunResult r = Drill(Ini("WP"), "\n9\n123\n");
  EXPECT_NE(r.out.find("Input a menu number.\n" + kMenuJ), std::string::npos) << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, "Enter"), 1u) << r.out;
  EXPECT_EQ(r.files.at("drillasm.ini"), Ini("WP", "JPN", 0));

  e2e::RunResult back = Drill(Ini("WP", "JPN", 0), "\n9\n123\n");
  EXPECT_NE(back.out.find("メニュー番号を入力してください。\n" + kMenuE), std::string::npos) << back.out;
  EXPECT_EQ(back.files.at("drillasm.ini"), Ini("WP"));
}

TEST(E2eShell, ModeChangesAndTheThreeBannerLimit) {
  // WP -> cancel -> same name -> NWW -> AP -> WP, then exit.
  e2e::RunResult r = Drill(Ini("WP"), "\n7\n33\n7\n2\n7\n1\n\n7\n3\n\n7\n2\n\n123\n");
  EXPECT_EQ(e2e::count_occurrences(r.out, kBannerHead), 3u) << r.out;
  size_t wp = r.out.find(kBannerHead + "WP\n");
  size_t nww = r.out.find(kBannerHead + "NWW\n");
  size_t ap = r.out.find(kBannerHead + "AP\n");
  ASSERT_NE(nww, std::string::npos) << r.out;
  ASSERT_NE(ap, std::string::npos) << r.out;
  EXPECT_LT(wp, nww);
  EXPECT_LT(nww, ap);
  // Cancel and the same name show the menu again without a pause; every new
  // Fight pauses before its menu.
  EXPECT_EQ(e2e::count_occurrences(r.out, "Enter key to go next. "), 4u) << r.out;
  // The fourth Fight shows one empty line in place of the banner.
  EXPECT_NE(r.out.find("33. Cancel\n\n" + kLaterPause), std::string::npos) << r.out;
  EXPECT_NE(r.files.at("drillasm.ini").find("FightFunc=WP\n"), std::string::npos);

  e2e::RunResult ap2 = Drill(Ini("NWW"), "\n7\n3\n\n123\n");
  EXPECT_NE(ap2.files.at("drillasm.ini").find("FightFunc=AP\n"), std::string::npos);
}

TEST(E2eShell, Item123WritesEverySettingBack) {
  std::string ini =
      "[Mode]\nLangStr=JPN\nLangInt=1\nFightFunc=NH\nTimeFuncStr=std::chrono\nTimeFuncInt=1\n"
      "SimpleTitleIndex=1\nBusyModeIndex=0\nSilentModeIndex=1\n"
      "[Src]\nLastSrcFile=src/other.txt\n"
      "[Editor]\nTextEditorIndex=0\nTextEditorPath1=/usr/bin/ed1\nTextEditorPath2=ed2\n";
  e2e::RunResult r = Drill(ini, "\n123\n");
  // The clock number comes from Editor.TimeFuncInt (missing: 0), and the
  // silent flag of the file is dropped at start.
  EXPECT_EQ(r.files.at("drillasm.ini"),
            "[Mode]\nLangStr=JPN\nLangInt=0\nFightFunc=NH\nTimeFuncStr=QPC\nTimeFuncInt=0\n"
            "SimpleTitleIndex=1\nBusyModeIndex=0\nSilentModeIndex=0\n"
            "[Src]\nLastSrcFile=src/other.txt\n"
            "[Editor]\nTextEditorIndex=0\nTextEditorPath1=/usr/bin/ed1\nTextEditorPath2=ed2\n");
}

TEST(E2eShell, EditorTimeFuncIntAddedByHand) {
  std::string ini = Ini("NWW", "ENU", 1, "") + "TimeFuncInt=2\n";  // lands in [Editor]
  e2e::RunResult r = Drill(ini, "\n11\n\n123\n", {{"src/pn1000.txt", Sample()}});
  EXPECT_NE(r.out.find("msec =(ReadFile, Assemble, Link)Time  std::clock() \n"), std::string::npos) << r.out;
  std::string written = r.files.at("drillasm.ini");
  EXPECT_NE(written.find("TimeFuncStr=std::clock()\nTimeFuncInt=2\n"), std::string::npos) << written;
  const std::string editor = "[Editor]\nTextEditorIndex=0\nTextEditorPath1=\nTextEditorPath2=\n";
  EXPECT_TRUE(written.ends_with(editor)) << written;
  EXPECT_EQ(e2e::count_occurrences(written, "TimeFuncInt"), 1u) << written;
}

TEST(E2eShell, EndOfInputAtEveryPromptLeavesTheSettingsAlone) {
  const std::string ini = Ini("NWW", "ENU", 1);
  for (const char* input : {"", "\n", "\n7\n", "\n1\n", "\n4\n", "\n5\n", "\n9\n", "\n7\n33\n", "\n2\n",
                            "\n1\nsrc/pn1000\n", "\n11\n"}) {
    e2e::RunResult r = Drill(ini, input, {{"src/pn1000.txt", Sample()}});
    EXPECT_EQ(r.files.at("drillasm.ini"), ini) << "input: " << input;
  }
  // The same in Japanese, and without a final line end.
  const std::string iniJ = Ini("WP", "JPN", 0);
  for (const char* input : {"\n12", "\n7\n3", "\n1\nnothing"}) {
    e2e::RunResult r = Drill(iniJ, input);
    EXPECT_EQ(r.files.at("drillasm.ini"), iniJ) << "input: " << input;
  }
}

TEST(E2eShell, RejectedSettingsFileIsNamedAndKeptUntilItem123) {
  const std::string bad = "[Mode]\nLangStr=JPN\nFightFunc=NWW\nthis is no setting\n";
  e2e::RunResult r = Drill(bad, "\n");
  EXPECT_EQ(r.out.rfind("Settings file drillasm.ini, line 4: ", 0), 0u) << r.out;
  EXPECT_EQ(r.out.find('\n'), r.out.find("\n\n" + kBannerHead + "WP\n")) << r.out;  // one line, then WP
  EXPECT_NE(r.out.find(kFirstPause + kMenuE), std::string::npos) << r.out;  // English: the fallback
  EXPECT_EQ(r.files.at("drillasm.ini"), bad);

  // Item 123 writes the fallbacks; the keys that are "left as they were"
  // keep the start values (BusyModeIndex 0).
  e2e::RunResult w = Drill(bad, "\n123\n");
  EXPECT_EQ(w.files.at("drillasm.ini"),
            "[Mode]\nLangStr=ENU\nLangInt=1\nFightFunc=WP\nTimeFuncStr=QPC\nTimeFuncInt=0\nSimpleTitleIndex=0\n"
            "BusyModeIndex=0\nSilentModeIndex=0\n[Src]\nLastSrcFile=src\\pn1000\n[Editor]\nTextEditorIndex=0\n"
            "TextEditorPath1=\nTextEditorPath2=\n");
}

TEST(E2eShell, EditorIndexOutOfRangeIsReportedByWpOnly) {
  std::string wpIni = Ini("WP");
  wpIni.replace(wpIni.find("TextEditorIndex=0"), 17, "TextEditorIndex=5");
  const std::string setter = "PrgError: index < 0 || 2 < index\nThe index was corrected to be zero.\n"
                             "TBasicData::SetTextEdIndex(int)\n";
  const std::string fight = "Error: TextEditorFlag is out of range. \nTextEditorIndex=5\n"
                            "TextEditorIndex is corrected to be 0. \n";
  e2e::RunResult wp = Drill(wpIni, "\n");
  EXPECT_EQ(wp.out.rfind(setter, 0), 0u) << wp.out;
  EXPECT_NE(wp.out.find(fight), std::string::npos) << wp.out;

  std::string nwwIni = wpIni;
  nwwIni.replace(nwwIni.find("FightFunc=WP"), 12, "FightFunc=NWW");
  e2e::RunResult nww = Drill(nwwIni, "\n");
  EXPECT_EQ(nww.out.rfind(setter, 0), 0u) << nww.out;
  EXPECT_EQ(nww.out.find("TextEditorFlag"), std::string::npos) << nww.out;
}

TEST(E2eShell, SampleProgramAssemblesAndRunsThroughItem11) {
  e2e::RunResult r = Drill(kDefaults, "\n11\n\n123\n", {{"src/pn1000.txt", Sample()}});
  EXPECT_NE(r.out.find("Successfully Assembled! ---> aaAssembledRegMry.txt"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("SUM(1..5) = 15"), std::string::npos) << r.out;
  EXPECT_TRUE(r.files.count("aaAssembledRegMry.txt"));
  EXPECT_TRUE(r.files.count("aaResultantRegMry.txt"));
  EXPECT_EQ(r.out.find("Error"), std::string::npos) << r.out;
  // After a clean run the menu comes back with the later pause.
  EXPECT_NE(r.out.find(kLaterPause + kMenuE), std::string::npos) << r.out;
}

TEST(E2eShell, ErrorSummaryAndTheRepeatedLogOfWp) {
  const std::string bad = "\tLD\tGR1,A\nA\tDC\t1\n";  // no START, no END
  for (const char* mode : {"NWW", "WP"}) {
    e2e::RunResult r = Drill(Ini(mode), "\n1\nsrc/bad\n\n", {{"src/bad.txt", bad}});
    size_t at = r.out.find("Error : ");
    ASSERT_NE(at, std::string::npos) << r.out;
    std::string first = r.out.substr(at, r.out.find('\n', at) - at);
    size_t times = std::string(mode) == "WP" ? 2u : 1u;
    EXPECT_EQ(e2e::count_occurrences(r.out, first), times) << mode << r.out;
    EXPECT_NE(r.out.find(") msec =(ReadFile, Assemble)Time QPC  \n"), std::string::npos) << r.out;
    bool one = r.out.find("\n\nThere is 1 error to be corrected. \n\nCorrect the codes and assemble them again.\n") !=
               std::string::npos;
    bool more = r.out.find(" errors to be corrected. \n\nCorrect the codes and assemble them again.\n") !=
                std::string::npos;
    EXPECT_TRUE(one || more) << r.out;
    EXPECT_FALSE(r.files.count("aaAssembledRegMry.txt"));
  }
  e2e::RunResult j = Drill(Ini("NWW", "JPN", 0), "\n1\nsrc/bad\n\n", {{"src/bad.txt", bad}});
  EXPECT_NE(j.out.find(" 個の エラー があるので修正が必要です。 \n"), std::string::npos) << j.out;
}

TEST(E2eShell, MissingFileGoesBackToTheMenuWithoutSummary) {
  e2e::RunResult r = Drill(Ini("NWW"), "\n1\nnothing\n\n");
  EXPECT_NE(r.out.find("The file is not found there. *"), std::string::npos) << r.out;
  EXPECT_EQ(r.out.find("to be corrected"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find(kLaterPause + kMenuE), std::string::npos) << r.out;
}

TEST(E2eShell, ServiceItemsRunTheirCommandsWithArgumentVectors) {
  std::map<std::string, std::string> files = {{"src/pn1000.txt", Sample()},
                                              {"src/x$(touch${IFS}PWNED);.txt", "odd name\n"}};
  // 55 shows the last file, 5 a named one (never as shell text), 4 lists a
  // folder, 8 shows the settings and reads them again, 10 the guide.
  e2e::RunResult r = Drill(Ini("NWW"), "\n55\n\n5\nsrc/x$(touch${IFS}PWNED);\n\n4\nsrc\n\n8\n\n10\n\n", files,
                         {{"EDITOR", "cat -n"}});
  EXPECT_NE(r.out.find("     2\tPN1000  START"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("     1\todd name"), std::string::npos) << r.out;
  EXPECT_FALSE(r.files.count("PWNED"));
  EXPECT_NE(r.out.find("pn1000.txt\n"), std::string::npos) << r.out;  // ls -l src
  EXPECT_NE(r.out.find("\tFightFunc=NWW"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("drillasm: a learner's guide"), std::string::npos) << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, "Enter key to go next. "), 6u) << r.out;

  // 2 and 3 show the reports of the last run.
  e2e::RunResult rep = Drill(Ini("NWW"), "\n11\n\n2\n\n3\n\n", files);
  EXPECT_NE(rep.out.find("VM COMET2: aaAssembledRegMry.txt"), std::string::npos) << rep.out;
  EXPECT_NE(rep.out.find("VM COMET2: aaResultantRegMry.txt"), std::string::npos) << rep.out;
}

TEST(E2eShell, Item8ReadsTheSettingsAgain) {
  // The "editor" rewrites the file: the language changes for the next pass.
  e2e::RunResult r = Drill(Ini("NWW"), "\n8\n\n", {},
                         {{"EDITOR", "sed -i -e s/LangStr=ENU/LangStr=JPN/"}});
  EXPECT_NE(r.out.find(kPauseJ + kMenuJ), std::string::npos) << r.out;
  EXPECT_NE(r.files.at("drillasm.ini").find("LangStr=JPN"), std::string::npos);
}

TEST(E2eShell, DeleteItemsAskThroughRmAndReturnToTheMenu) {
  const std::string ini = Ini("NWW");
  e2e::RunResult r = Drill(ini, "\n85\n88\n");
  EXPECT_EQ(e2e::count_occurrences(r.out, "rm: remove regular file 'drillasm.ini'?"), 2u) << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, kMenuE), 3u) << r.out;
  EXPECT_EQ(r.files.at("drillasm.ini"), ini);  // rm met the end of input: no
}

// The sample with one warning: a comma behind the operand of DS.
std::string WarnedSample() {
  std::string s = Sample();
  size_t at = s.find("SUM     DS      1\n");
  EXPECT_NE(at, std::string::npos);
  if (at != std::string::npos) s.replace(at, 18, "SUM     DS      1,\n");
  return s;
}

TEST(E2eShell, WarningsMenuDecidesTheRun) {
  const std::string menuE = "\n\n\nMenu:\n1.  Go on this execution. \n2.  Go back to Main Menu. \nInput a menu number. \n";
  const std::string menuJ = "\n\n\nメニュー:\n１ このまま実行する。\n２ メイン メニューにもどる。\n"
                            "メニュウ番号を入力してください。 \n";
  for (const char* mode : {"NWW", "WP"}) {
    // 2 and "x" go back without a run; 1 runs.
    e2e::RunResult r = Drill(Ini(mode), "\n1\nsrc/w\n2\n1\nsrc/w\nx\n11\n1\n\n", {{"src/w.txt", WarnedSample()}});
    EXPECT_EQ(e2e::count_occurrences(r.out, "1 warning: \n"), 3u) << mode << r.out;
    EXPECT_EQ(e2e::count_occurrences(r.out, menuE), 3u) << mode << r.out;
    EXPECT_EQ(e2e::count_occurrences(r.out, "SUM(1..5) = 15"), 1u) << mode << r.out;
    EXPECT_EQ(e2e::count_occurrences(r.out, "---> aaResultantRegMry.txt"), 1u) << mode << r.out;
    EXPECT_TRUE(r.files.count("aaAssembledRegMry.txt"));

    e2e::RunResult j = Drill(Ini(mode, "JPN", 0), "\n11\n2\n", {{"src/pn1000.txt", WarnedSample()}});
    EXPECT_NE(j.out.find("1 個の 警告 がある。\n"), std::string::npos) << mode << j.out;
    EXPECT_NE(j.out.find(menuJ), std::string::npos) << mode << j.out;
    EXPECT_FALSE(j.files.count("aaResultantRegMry.txt"));
    EXPECT_TRUE(j.files.count("aaAssembledRegMry.txt"));
  }
  // The end of input at the warnings menu ends the program.
  const std::string ini = Ini("WP");
  e2e::RunResult end = Drill(ini, "\n11\n", {{"src/pn1000.txt", WarnedSample()}});
  EXPECT_TRUE(end.out.ends_with(menuE)) << end.out;
  EXPECT_EQ(end.files.at("drillasm.ini"), ini);
}

}  // namespace
