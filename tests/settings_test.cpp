// The settings file: defaults, fallbacks, the language keys, the clock keys
// that don't meet, the rejected file and the written file.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <tuple>

#include "harness.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/singletons.h"
#include "reports/TimeVcl/time_vcl.h"
#include "shell/shell.h"

namespace fs = std::filesystem;

namespace {

class ShellSettings : public ::testing::Test {
 protected:
  std::string dir, ini, out;
  void SetUp() override {
    std::string t = (fs::temp_directory_path() / "drillasm-ini-XXXXXX").string();
    dir = mkdtemp(t.data());
    ini = dir + "/drillasm.ini";
    con::SetCapture(&out);
    // A known state that the fallbacks can be told from.
    SetLang(0);
    fileData->ModeName = fileData->LastSrcFile = "before";
    fileData->TextEditorIndex = 1;
    fileData->TextEditorPath = {"p0", "p1", "p2", "", ""};
    fileData->SilentFlag = b->SimpleTitleIndex = b->BusyModeIndex = 0;
    b->SetTextEdIndex(1);
    modeState->SimpleTitleIndex = modeState->BusyModeIndex = modeState->SilentModeIndex = 7;
    timeVcl->SetTimeFuncByInt(1);
  }
  void TearDown() override {
    con::SetCapture(nullptr);
    fs::remove_all(dir);
    SetLang(1);
    modeState->SimpleTitleIndex = modeState->BusyModeIndex = modeState->SilentModeIndex = 0;
    b->SetTextEdIndex(fileData->TextEditorIndex = 0);
    fileData->TextEditorPath = {};
    fileData->ModeName = "WP";
    timeVcl->SetTimeFuncByInt(0);
  }
  static std::tuple<int, int, int> ModeIndices() {
    return {modeState->SimpleTitleIndex, modeState->BusyModeIndex, modeState->SilentModeIndex};
  }
  void Read(const std::string& text) {
    std::ofstream(ini, std::ios::binary) << text;
    ReadSettings(ini);
  }
};

TEST_F(ShellSettings, EmptyFileTakesTheFallbacksAndStaysAsItIs) {
  Read("");
  EXPECT_EQ(e2e::read_file(ini), "");
  EXPECT_EQ(fileData->Lang, 1);
  EXPECT_EQ(fileData->ModeName, "WP");
  EXPECT_EQ(timeVcl->TimeFuncStr, "QPC");
  EXPECT_EQ(timeVcl->TimeFuncInt, 0);
  for (const std::string& last : {fileData->LastSrcFile, b->FileName, dirHolder->LastSrcFile})
    EXPECT_EQ(last, "src\\pn1000");
  EXPECT_EQ(b->TextEditorIndex + fileData->TextEditorIndex, 0);
  // Keys whose fallback is "left as it was".
  EXPECT_EQ(fileData->TextEditorPath[1] + fileData->TextEditorPath[2], "p1p2");
  EXPECT_EQ(ModeIndices(), std::tuple(7, 7, 7));
}

TEST_F(ShellSettings, LangStrDecidesOverLangIntAndTheClockNumberComesFromEditor) {
  for (auto [text, lang] : {std::pair{"[Mode]\nLangStr=JPN\nLangInt=1\n", 0}, {"[Mode]\nLangStr=ENU\nLangInt=0\n", 1},
                            {"[Mode]\nLangInt=0\n", 1},  // a missing LangStr means English
                            {"[Mode]\nLangStr=JPN\n", 0}, {"[Mode]\nLangStr=jpn\nLangInt=0\n", 1},  // exact text
                            {"[Mode]\nLangInt=2\n", 1}, {"[Mode]\nLangStr=JPN\nLangInt=x\n", 0}}) {
    SetLang(5);
    Read(text);
    EXPECT_EQ(fileData->Lang, lang) << text;
    EXPECT_EQ(fileData->LangCopy + cs->LangCopy + modeState->Lang, 3 * lang) << text;
  }
  // Mode.TimeFuncInt is not read; Editor.TimeFuncInt chooses the clock.
  for (auto [text, name] : {std::pair{"[Mode]\nTimeFuncStr=std::clock()\nTimeFuncInt=2\n", "QPC"},
                            {"[Mode]\nTimeFuncStr=QPC\n[Editor]\nTimeFuncInt=2\n", "std::clock()"},
                            {"[Editor]\nTimeFuncInt=1\n", "std::chrono"}, {"[Editor]\nTimeFuncInt=7\n", "std::chrono"},
                            {"[Editor]\nTimeFuncInt=seven\n", "QPC"}}) {
    Read(text);
    EXPECT_EQ(timeVcl->TimeFuncStr, name) << text;
  }
}

TEST_F(ShellSettings, IndicesAreGuardedWhereTheyGo) {
  Read("[Mode]\nSimpleTitleIndex=2\nBusyModeIndex=3\nSilentModeIndex=1\n[Editor]\nTextEditorIndex=5\n"
       "TextEditorPath1=ed1\nTextEditorPath2=ed2\n");
  EXPECT_EQ(std::tuple(b->SimpleTitleIndex, b->BusyModeIndex, b->TextEditorIndex, dirHolder->TextEditorIndex),
            std::tuple(0, 0, 0, 0));
  EXPECT_EQ(ModeIndices(), std::tuple(2, 3, 1));
  EXPECT_EQ(fileData->SilentFlag, 1);
  EXPECT_EQ(fileData->TextEditorIndex, 5);
  EXPECT_EQ(fileData->TextEditorPath[1] + fileData->TextEditorPath[2], "ed1ed2");
  EXPECT_EQ(out,
            "PrgError: index < 0 || 2 < index\nThe index was corrected to be zero.\nTBasicData::SetTextEdIndex(int)\n");
  out.clear();
  // "false", as the writer puts the silent flag, is no integer: left as it was.
  Read("[Mode]\nSimpleTitleIndex=1\nBusyModeIndex=0\nSilentModeIndex=false\n[Editor]\nTextEditorIndex=2\n");
  EXPECT_EQ(std::tuple(b->SimpleTitleIndex, b->BusyModeIndex, b->TextEditorIndex, dirHolder->TextEditorIndex),
            std::tuple(1, 0, 2, 2));
  EXPECT_EQ(std::tuple(modeState->SilentModeIndex, +fileData->SilentFlag), std::tuple(1, 1));
  EXPECT_EQ(out, "");
}

TEST_F(ShellSettings, RejectedFileByteOrderMarkAndCrLf) {
  // A repeated key: the file is named with the line, left as it is, and nothing of it counts.
  Read("[Mode]\nLangStr=JPN\nFightFunc=NH\nLangStr=JPN\n");
  EXPECT_EQ(out.rfind("Settings file " + ini + ", line 4: ", 0), 0u) << out;
  EXPECT_EQ(fileData->Lang, 1);
  EXPECT_EQ(fileData->ModeName, "WP");
  EXPECT_EQ(e2e::read_file(ini), "[Mode]\nLangStr=JPN\nFightFunc=NH\nLangStr=JPN\n");
  out.clear();
  Read("\xEF\xBB\xBF[Mode]\r\nLangStr=JPN\r\nFightFunc=NH\r\n[Src]\r\nLastSrcFile=src\\a.txt\r\n");
  EXPECT_EQ(out, "");
  EXPECT_EQ(fileData->Lang, 0);
  EXPECT_EQ(fileData->ModeName, "NH");
  EXPECT_EQ(fileData->LastSrcFile, "src\\a.txt");
}

TEST_F(ShellSettings, WrittenFileHoldsEveryKeyInOrder) {
  fileData->ModeName = "NaW";
  timeVcl->SetTimeFuncByInt(2);
  fileData->LastSrcFile = "src/prog.txt";
  b->SimpleTitleIndex = 5;
  b->BusyModeIndex = fileData->SilentFlag = 1;
  fileData->TextEditorIndex = 2;
  WriteSettings(ini);
  EXPECT_EQ(e2e::read_file(ini),
            "[Mode]\nLangStr=JPN\nLangInt=0\nFightFunc=NaW\nTimeFuncStr=std::clock()\nTimeFuncInt=2\n"
            "SimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=true\n[Src]\nLastSrcFile=src/prog.txt\n"
            "[Editor]\nTextEditorIndex=2\nTextEditorPath1=p1\nTextEditorPath2=p2\n");
  EXPECT_EQ(b->SimpleTitleIndex, 0);
  // English and an empty last file, written over the old file.
  SetLang(1);
  fileData->LastSrcFile.clear();
  WriteSettings(ini);
  EXPECT_NE(e2e::read_file(ini).find("LangStr=ENU\nLangInt=1\n"), std::string::npos);
  EXPECT_NE(e2e::read_file(ini).find("LastSrcFile=src\\list792j.txt\n"), std::string::npos);
  EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);  // no temporary left
}

}  // namespace
