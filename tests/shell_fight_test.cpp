// The Fight loop and the dispatch, driven in-process from a scripted console.
#include <gtest/gtest.h>

#include <filesystem>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "shell/shell.h"

namespace fs = std::filesystem;

namespace {

class ShellFight : public ::testing::Test {
 protected:
  std::string out, dir, savedPath;
  void SetUp() override {
    std::string t = (fs::temp_directory_path() / "drillasm-fight-XXXXXX").string();
    dir = mkdtemp(t.data());
    savedPath = b->SettingsPath;
    b->SettingsPath = dir + "/drillasm.ini";
    con::SetCapture(&out);
    SetLang(1);
    fileData->ModeName = "NWW";
    fileData->TextEditorIndex = 0;
    ResetBannerCount();
    msgLog->ClearMsgLog();
  }
  void TearDown() override {
    con::SetCapture(nullptr);
    b->SettingsPath = savedPath;
    std::error_code ec;
    fs::remove_all(dir, ec);
    fileData->ModeName = "WP";
    fileData->TextEditorIndex = 0;
    msgLog->ClearMsgLog();
    SetLang(1);
  }
};

TEST_F(ShellFight, ModeTableRows) {
  const FightMode& wp = FightModeOf("WP");
  EXPECT_STREQ(wp.tag, "FightWP");
  EXPECT_STREQ(wp.CarrierName, "std::wstring<--UTF16");
  EXPECT_TRUE(wp.clearLogAtEntry && wp.repeatLog && wp.reportEditorIndex && wp.warningsMenuFunc && wp.compare8888);
  EXPECT_FALSE(wp.clearLogAtHead);
  const FightMode& nww = FightModeOf("NWW");
  EXPECT_STREQ(nww.tag, "FightNWW");
  EXPECT_EQ(nww.CarrierName, nullptr);
  EXPECT_FALSE(nww.clearLogAtEntry || nww.clearLogAtHead || nww.repeatLog || nww.reportEditorIndex ||
               nww.warningsMenuFunc || nww.compare8888);
  for (const char* name : {"AP", "NA", "NaW", "NH"}) {
    EXPECT_STREQ(FightModeOf(name).name, name);
    EXPECT_EQ(FightModeOf(name).ModeLetter, 'W');
  }
  EXPECT_STREQ(FightModeOf("nonsense").name, "NWW");
}

TEST_F(ShellFight, ExitAndModeChangeReturnsAndTheLogAtEntry) {
  TGame game;
  msgLog->WideLog.push_back(TMsgRec{});
  con::SetInputForTest("\n123\n");
  EXPECT_EQ(FightNwW(game), 0);
  EXPECT_EQ(msgLog->WideLog.size(), 1u);  // NWW leaves the log alone
  EXPECT_TRUE(fs::exists(b->SettingsPath));
  EXPECT_EQ(fileData->ModeLetter, 'W');

  con::SetInputForTest("\n7\n6\n");
  EXPECT_EQ(FightWP(game), 8888);
  EXPECT_TRUE(msgLog->WideLog.empty());  // WP clears it at entry
  EXPECT_EQ(game.ModeTag, "NH");
  EXPECT_EQ(fileData->CarrierName, "std::wstring<--UTF16");
}

TEST_F(ShellFight, LanguageAboveOneIsJapaneseInTheFight) {
  TGame game;
  SetLang(4);
  con::SetInputForTest("\n");
  EXPECT_THROW(FightNwW(game), con::InputEnded);
  EXPECT_EQ(game.Lang, 0);
  EXPECT_EQ(b->LangCopy, 0);
  EXPECT_NE(out.find("メニュー：\n"), std::string::npos) << out;
}

TEST_F(ShellFight, DispatchFollowsModeChangesAndEndsOnExit) {
  TGame game;
  // NWW -> NA -> same name (no change) -> NH, then exit.
  con::SetInputForTest("\n7\n4\n\n7\n4\n7\n6\n\n123\n");
  EXPECT_EQ(DispatchFight(game, "NwW"), 0);
  EXPECT_EQ(fileData->ModeName, "NH");
  EXPECT_EQ(game.ModeTag, "NH");
  size_t nww = out.find("R_NWW\n"), na = out.find("R_NA\n"), nh = out.find("R_NH\n");
  ASSERT_NE(nww, std::string::npos) << out;
  ASSERT_NE(na, std::string::npos) << out;
  ASSERT_NE(nh, std::string::npos) << out;
  EXPECT_LT(nww, na);
  EXPECT_LT(na, nh);

  out.clear();
  EXPECT_EQ(DispatchFight(game, "NewChWH"), 0);
  EXPECT_EQ(out, "");
}

TEST_F(ShellFight, BannerShowsThreeTimesThenAnEmptyLine) {
  for (int k = 0; k < 5; ++k) DspBanner("NWW");
  size_t banners = 0;
  for (size_t p = out.find("R_NWW"); p != std::string::npos; p = out.find("R_NWW", p + 1)) ++banners;
  EXPECT_EQ(banners, 3u);
  EXPECT_TRUE(out.ends_with("\n\n\n")) << out;
}

}  // namespace
