// The Fight loop, driven in-process from a scripted console.
#include <gtest/gtest.h>

#include <filesystem>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "shell/shell.h"

namespace fs = std::filesystem;

TEST(ShellFight, ExitModeChangeTheLogAtEntryAndTheLanguage) {
  std::string out, t = (fs::temp_directory_path() / "drillasm-fight-XXXXXX").string();
  const std::string dir = mkdtemp(t.data()), savedPath = b->SettingsPath;
  b->SettingsPath = dir + "/drillasm.ini";
  con::SetCapture(&out);
  SetLang(1);
  fileData->ModeName = "NWW";
  fileData->TextEditorIndex = 0;
  msgLog->ClearMsgLog();
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
  // A language above one is Japanese in the Fight.
  SetLang(4);
  out.clear();
  con::SetInputForTest("\n");
  EXPECT_THROW(FightNwW(game), con::InputEnded);
  EXPECT_EQ(game.Lang + b->LangCopy, 0);
  EXPECT_NE(out.find("メニュー：\n"), std::string::npos) << out;

  con::SetCapture(nullptr);
  b->SettingsPath = savedPath;
  fs::remove_all(dir);
  fileData->ModeName = "WP";
  msgLog->ClearMsgLog();
  SetLang(1);
  ResetBannerCount();
}
