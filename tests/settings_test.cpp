// The settings file: defaults, fallbacks, the language keys, the clock keys
// that don't meet, the rejected file and the written file.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/singletons.h"
#include "reports/TimeVcl/time_vcl.h"
#include "shell/shell.h"

namespace fs = std::filesystem;

namespace {

const char* const kDefaults =
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

std::string Slurp(const std::string& p) {
  std::ifstream f(p, std::ios::binary);
  std::stringstream ss;
  ss << f.rdbuf();
  return ss.str();
}

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
    fileData->ModeName = "before";
    fileData->LastSrcFile = "before";
    fileData->TextEditorIndex = 1;
    fileData->TextEditorPath = {"p0", "p1", "p2", "", ""};
    fileData->SilentFlag = 0;
    b->SetTextEdIndex(1);
    b->SimpleTitleIndex = 0;
    b->BusyModeIndex = 0;
    modeState->SimpleTitleIndex = 7;
    modeState->BusyModeIndex = 7;
    modeState->SilentModeIndex = 7;
    timeVcl->SetTimeFuncByInt(1);
  }
  void TearDown() override {
    con::SetCapture(nullptr);
    std::error_code ec;
    fs::remove_all(dir, ec);
    SetLang(1);
    modeState->SimpleTitleIndex = modeState->BusyModeIndex = modeState->SilentModeIndex = 0;
    b->SetTextEdIndex(0);
    fileData->TextEditorIndex = 0;
    fileData->TextEditorPath = {};
    fileData->ModeName = "WP";
    timeVcl->SetTimeFuncByInt(0);
  }
  void Read(const std::string& text) {
    std::ofstream(ini, std::ios::binary) << text;
    ReadSettings(ini);
  }
  size_t FilesInDir() const {
    size_t n = 0;
    for (auto& e : fs::directory_iterator(dir)) n += e.is_regular_file() ? 1 : 0;
    return n;
  }
};

TEST_F(ShellSettings, MissingFileGetsTheDefaultsAndIsReadBack) {
  ReadSettings(ini);
  EXPECT_EQ(Slurp(ini), kDefaults);
  EXPECT_EQ(FilesInDir(), 1u);  // no temporary left behind
  EXPECT_EQ(fileData->Lang, 1);
  EXPECT_EQ(b->LangCopy, 1);
  EXPECT_EQ(cs->Lang, 1);
  EXPECT_EQ(modeState->Lang, 1);
  EXPECT_EQ(fileData->ModeName, "WP");
  EXPECT_EQ(timeVcl->TimeFuncStr, "QPC");
  EXPECT_EQ(fileData->LastSrcFile, "src\\pn1000.txt");
  EXPECT_EQ(b->FileName, "src\\pn1000.txt");
  EXPECT_EQ(dirHolder->LastSrcFile, "src\\pn1000.txt");
  EXPECT_EQ(modeState->BusyModeIndex, 1);
  EXPECT_EQ(b->BusyModeIndex, 1);
  EXPECT_EQ(out, "");
}

TEST_F(ShellSettings, EmptyFileTakesTheFallbacksAndStaysAsItIs) {
  Read("");
  EXPECT_EQ(Slurp(ini), "");
  EXPECT_EQ(fileData->Lang, 1);
  EXPECT_EQ(fileData->ModeName, "WP");
  EXPECT_EQ(timeVcl->TimeFuncStr, "QPC");
  EXPECT_EQ(timeVcl->TimeFuncInt, 0);
  EXPECT_EQ(fileData->LastSrcFile, "src\\pn1000");
  EXPECT_EQ(b->TextEditorIndex, 0);
  EXPECT_EQ(fileData->TextEditorIndex, 0);
  // Keys whose fallback is "left as it was".
  EXPECT_EQ(fileData->TextEditorPath[1], "p1");
  EXPECT_EQ(fileData->TextEditorPath[2], "p2");
  EXPECT_EQ(modeState->SimpleTitleIndex, 7);
  EXPECT_EQ(modeState->BusyModeIndex, 7);
  EXPECT_EQ(modeState->SilentModeIndex, 7);
}

TEST_F(ShellSettings, LangStrDecidesOverLangInt) {
  struct Case {
    const char* text;
    int lang;
  } cases[] = {
      {"[Mode]\nLangStr=JPN\nLangInt=1\n", 0},
      {"[Mode]\nLangStr=ENU\nLangInt=0\n", 1},
      {"[Mode]\nLangInt=0\n", 1},  // a missing LangStr means English
      {"[Mode]\nLangStr=JPN\n", 0},
      {"[Mode]\nLangStr=jpn\nLangInt=0\n", 1},  // exact text only
      {"[Mode]\nLangInt=2\n", 1},
      {"[Mode]\nLangStr=JPN\nLangInt=x\n", 0},
  };
  for (const Case& c : cases) {
    SetLang(5);
    Read(c.text);
    EXPECT_EQ(fileData->Lang, c.lang) << c.text;
    EXPECT_EQ(fileData->LangCopy, c.lang) << c.text;
    EXPECT_EQ(cs->LangCopy, c.lang) << c.text;
    EXPECT_EQ(modeState->Lang, c.lang) << c.text;
  }
}

TEST_F(ShellSettings, ClockNumberIsReadFromEditorOnly) {
  Read("[Mode]\nTimeFuncStr=std::clock()\nTimeFuncInt=2\n");
  EXPECT_EQ(timeVcl->TimeFuncStr, "QPC");  // Mode.TimeFuncInt is not read
  EXPECT_EQ(timeVcl->TimeFuncInt, 0);
  Read("[Mode]\nTimeFuncStr=QPC\n[Editor]\nTimeFuncInt=2\n");
  EXPECT_EQ(timeVcl->TimeFuncStr, "std::clock()");
  EXPECT_EQ(timeVcl->TimeFuncInt, 2);
  Read("[Editor]\nTimeFuncInt=1\n");
  EXPECT_EQ(timeVcl->TimeFuncStr, "std::chrono");
  Read("[Editor]\nTimeFuncInt=7\n");
  EXPECT_EQ(timeVcl->TimeFuncStr, "std::chrono");
  EXPECT_EQ(timeVcl->TimeFuncInt, 1);
  Read("[Editor]\nTimeFuncInt=seven\n");
  EXPECT_EQ(timeVcl->TimeFuncStr, "QPC");
}

TEST_F(ShellSettings, IndicesAreGuardedWhereTheyGo) {
  Read("[Mode]\nSimpleTitleIndex=2\nBusyModeIndex=3\nSilentModeIndex=1\n[Editor]\nTextEditorIndex=5\n"
       "TextEditorPath1=ed1\nTextEditorPath2=ed2\n");
  EXPECT_EQ(b->SimpleTitleIndex, 0);
  EXPECT_EQ(modeState->SimpleTitleIndex, 2);
  EXPECT_EQ(b->BusyModeIndex, 0);
  EXPECT_EQ(modeState->BusyModeIndex, 3);
  EXPECT_EQ(modeState->SilentModeIndex, 1);
  EXPECT_EQ(fileData->SilentFlag, 1);
  EXPECT_EQ(b->TextEditorIndex, 0);
  EXPECT_EQ(fileData->TextEditorIndex, 5);
  EXPECT_EQ(dirHolder->TextEditorIndex, 0);
  EXPECT_EQ(fileData->TextEditorPath[1], "ed1");
  EXPECT_EQ(fileData->TextEditorPath[2], "ed2");
  EXPECT_EQ(out,
            "PrgError: index < 0 || 2 < index\nThe index was corrected to be zero.\n"
            "TBasicData::SetTextEdIndex(int)\n");
  out.clear();
  Read("[Mode]\nSimpleTitleIndex=1\nBusyModeIndex=0\nSilentModeIndex=no\n[Editor]\nTextEditorIndex=2\n");
  EXPECT_EQ(b->SimpleTitleIndex, 1);
  EXPECT_EQ(b->BusyModeIndex, 0);
  EXPECT_EQ(modeState->SilentModeIndex, 1);  // not a number: left as it was
  EXPECT_EQ(b->TextEditorIndex, 2);
  EXPECT_EQ(dirHolder->TextEditorIndex, 2);
  EXPECT_EQ(out, "");
}

TEST_F(ShellSettings, RejectedFileIsNamedWithItsLineAndLeftAsItIs) {
  const std::string bad = "[Mode]\nLangStr=JPN\nFightFunc=NH\nthis line has no equals sign\n";
  Read(bad);
  EXPECT_EQ(Slurp(ini), bad);
  EXPECT_NE(out.find(ini), std::string::npos) << out;
  EXPECT_NE(out.find("line 4"), std::string::npos) << out;
  EXPECT_NE(out.find("'=' character not found"), std::string::npos) << out;
  EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 1) << out;
  // Nothing of the rejected file counts: the fallbacks stand.
  EXPECT_EQ(fileData->Lang, 1);
  EXPECT_EQ(fileData->ModeName, "WP");
  EXPECT_EQ(fileData->LastSrcFile, "src\\pn1000");

  out.clear();
  Read("[Mode]\nLangInt=1\nLangInt=0\n");
  EXPECT_NE(out.find("line 3"), std::string::npos) << out;
}

TEST_F(ShellSettings, WrittenFileHoldsEveryKeyInOrder) {
  SetLang(0);
  fileData->ModeName = "NaW";
  timeVcl->SetTimeFuncByInt(2);
  fileData->LastSrcFile = "src/prog.txt";
  b->SimpleTitleIndex = 5;
  b->BusyModeIndex = 1;
  fileData->SilentFlag = 1;
  fileData->TextEditorIndex = 2;
  WriteSettings(ini);
  EXPECT_EQ(Slurp(ini),
            "[Mode]\nLangStr=JPN\nLangInt=0\nFightFunc=NaW\nTimeFuncStr=std::clock()\nTimeFuncInt=2\n"
            "SimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=1\n"
            "[Src]\nLastSrcFile=src/prog.txt\n"
            "[Editor]\nTextEditorIndex=2\nTextEditorPath1=p1\nTextEditorPath2=p2\n");
  EXPECT_EQ(b->SimpleTitleIndex, 0);
  EXPECT_EQ(FilesInDir(), 1u);

  // English, an empty last file, and a file written over an old one.
  SetLang(1);
  fileData->LastSrcFile.clear();
  fileData->SilentFlag = 0;
  WriteSettings(ini);
  std::string text = Slurp(ini);
  EXPECT_NE(text.find("LangStr=ENU\nLangInt=1\n"), std::string::npos) << text;
  EXPECT_NE(text.find("LastSrcFile=src\\list792j.txt\n"), std::string::npos) << text;
  EXPECT_NE(text.find("SilentModeIndex=0\n"), std::string::npos) << text;
  EXPECT_EQ(FilesInDir(), 1u);

  // What is written reads back the same.
  ReadSettings(ini);
  EXPECT_EQ(fileData->Lang, 1);
  EXPECT_EQ(fileData->ModeName, "NaW");
  EXPECT_EQ(fileData->LastSrcFile, "src\\list792j.txt");
}

TEST_F(ShellSettings, ByteOrderMarkAndCrLfLinesAreRead) {
  Read("\xEF\xBB\xBF[Mode]\r\nLangStr=JPN\r\nFightFunc=NH\r\n[Src]\r\nLastSrcFile=src\\a.txt\r\n");
  EXPECT_EQ(out, "");
  EXPECT_EQ(fileData->Lang, 0);
  EXPECT_EQ(fileData->ModeName, "NH");
  EXPECT_EQ(fileData->LastSrcFile, "src\\a.txt");
}

}  // namespace
