// The main menu and the mode selector, driven from a scripted console.
#include <gtest/gtest.h>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "shell/shell.h"

namespace {

const char* const kLongE =
    "Menu:\n"
    " 1.  Input a filename to assemble.   e.g. src/pn100.txt\n"
    "11.  assembles the previously assembled or opened file once again. \n"
    " 2.  shows an assembled result of aaAssembledRegMry.txt\n"
    " 3.  shows an execution result of aaResultantRegMry.txt\n"
    " 4.  shows a list of files in a specified folder.   e.g.  src\n"
    " 5.  displays a specified text file.   e.g.  src/list792j.txt\n"
    "55.  displays the previously opened or assembled text file. \n"
    "123. Exit \n"
    "Input a menu number.\n";

const char* const kLongJ =
    "メニュー：\n"
    " 1.  ファイル名（プログラム名）を指定する。例 : src/pn100.txt\n"
    "11.  前回アセンブルまたは開いたファイルを再アセンブルする。\n"
    " 2.  アセンブル結果 を表示する。aaAssembledRegMry.txt\n"
    " 3.  実行結果       を表示する。aaResultantRegMry.txt\n"
    " 4.  指定フォルダの中のファイルリストを表示する。 \n"
    " 5.  指定のテキストファイルを表示する。\n"
    "55.  前回開いたまたはアセンブルしたファイルを再度開く。 \n"
    "123 プログラムを終了する。\n"
    "メニュー番号を入力してください。\n";

const char* const kShortE =
    "Menu:\n"
    " 1.  Input a filename to assemble.\n"
    "11.  assembles the previous file once again. \n"
    " 2.  aaAssembledRegMry.txt\n"
    " 3.  aaResultantRegMry.txt\n"
    " 4.  shows a list of files in a specified folder.\n"
    " 5.  displays a specified text file.\n"
    "55.  displays the previous file. \n"
    "123. Exit\n"
    "Input a menu number.\n";

const char* const kShortJ =
    "メニュー：\n"
    " 1.  ファイル名（プログラム名）を指定する。\n"
    "11.  前回のファイルを再アセンブルする。\n"
    " 2.  aaAssembledRegMry.txt\n"
    " 3.  aaResultantRegMry.txt\n"
    " 4.  指定フォルダの中のファイルリストを表示 \n"
    " 5.  指定のファイルを表示する。\n"
    "55.  前回のファイルを再度開く。 \n"
    "123 プログラムを終了する。\n"
    "メニュー番号を入力してください。\n";

const char* const kSelector =
    "Mode Selector: Input a menu number.\n"
    "1. NWW (Recommended at present)\n"
    "2. WP\n"
    "3. AP\n"
    "4. NA\n"
    "5. NaW\n"
    "6. NH\n"
    "9. NwW by default\n"
    "33. Cancel\n";

class ShellMenu : public ::testing::Test {
 protected:
  std::string out;
  std::string fileName;
  void SetUp() override {
    con::SetCapture(&out);
    SetLang(1);
    modeState->SimpleTitleIndex = 0;
    modeState->SilentModeIndex = 0;
    fileData->ModeName = "NWW";
    fileData->TextEditorIndex = 0;
  }
  void TearDown() override {
    con::SetCapture(nullptr);
    SetLang(1);
    modeState->SimpleTitleIndex = 0;
    modeState->SilentModeIndex = 0;
    fileData->ModeName = "WP";
  }
  // Runs the menu on `input`; the script ends in the end of input.
  void RunToEnd(const std::string& input) {
    con::SetInputForTest(input);
    EXPECT_THROW(MainMenu(*fileData, fileName), con::InputEnded);
  }
  // What followed the pause.
  std::string AfterPause() const {
    size_t p = out.find("go next. ");
    return p == std::string::npos ? out : out.substr(p + 9);
  }
};

TEST_F(ShellMenu, PauseThenLongMenuInEnglish) {
  RunToEnd("\n");
  EXPECT_EQ(out.rfind("\nPress ", 0), 0u) << out;
  EXPECT_EQ(AfterPause(), kLongE);
}

TEST_F(ShellMenu, PauseAndLongMenuInJapanese) {
  SetLang(0);
  RunToEnd("\n");
  EXPECT_EQ(out, std::string("\n入力（Enter）キィを押すと次へ進む。") + kLongJ);
}

TEST_F(ShellMenu, ShortMenuForSimpleTitleOrSilentMode) {
  modeState->SimpleTitleIndex = 1;
  RunToEnd("\n");
  EXPECT_EQ(AfterPause(), kShortE);
  out.clear();
  modeState->SimpleTitleIndex = 0;
  modeState->SilentModeIndex = 2;
  SetLang(0);
  RunToEnd("\n");
  EXPECT_EQ(out, std::string("\n入力（Enter）キィを押すと次へ進む。") + kShortJ);
}

TEST_F(ShellMenu, BadNumbersInBothLanguages) {
  const std::string good = "You are expected to input a good menu number.\n";
  const std::string again = "Try it again!\n";
  RunToEnd("\n0\n12a\n\n  \nabc\n6\n12\n124\n-1\n");
  EXPECT_EQ(AfterPause(), std::string(kLongE) + good + kLongE + good + kLongE + good + kLongE + good + kLongE +
                              good + kLongE + again + kLongE + again + kLongE + again + kLongE + again + kLongE);

  out.clear();
  SetLang(0);
  RunToEnd("\n1x\n6\n");
  EXPECT_EQ(out, std::string("\n入力（Enter）キィを押すと次へ進む。") + kLongJ +
                     "メニュー番号以外の入力がありましたのでもう一度！\n" + kLongJ + "もう一度\n" + kLongJ);
}

TEST_F(ShellMenu, NumbersAroundTheItemsAreTrimmed) {
  msgLog->WideLog.push_back(TMsgRec{});
  fileData->LastSrcFile = "src\\pn1000.txt";
  con::SetInputForTest("\n \t11 \n");
  EXPECT_EQ(MainMenu(*fileData, fileName), 0);
  EXPECT_EQ(fileName, "src/pn1000.txt");
  EXPECT_EQ(b->FileName, "src/pn1000.txt");
  EXPECT_TRUE(msgLog->WideLog.empty());
}

TEST_F(ShellMenu, ItemNineFlipsTheLanguageWithoutAPause) {
  RunToEnd("\n9\n9\n");
  EXPECT_EQ(AfterPause(), std::string(kLongE) + kLongJ + kLongE);
  EXPECT_EQ(fileData->Lang, 1);
  out.clear();
  RunToEnd("\n9\n");
  EXPECT_EQ(fileData->Lang, 0);
  EXPECT_EQ(fileData->LangCopy, 0);
  EXPECT_EQ(b->Lang, 0);
  EXPECT_EQ(cs->LangCopy, 0);
  EXPECT_EQ(modeState->Lang, 0);
  // Any value other than 0 becomes 0.
  SetLang(3);
  RunToEnd("\n9\n");
  EXPECT_EQ(fileData->Lang, 0);
}

TEST_F(ShellMenu, ModeSelectorCancelAndSameNameGoBackToTheMenu) {
  RunToEnd("\n7\n33\n7\n9\n7\n1\n");
  EXPECT_EQ(AfterPause(), std::string(kLongE) + kSelector + kLongE + kSelector + kLongE + kSelector + kLongE);
  EXPECT_EQ(fileData->ModeName, "NWW");
}

TEST_F(ShellMenu, ModeSelectorChangesTheMode) {
  struct Case {
    const char* in;
    const char* mode;
  } cases[] = {{"2", "WP"}, {"3", "AP"}, {"4", "NA"}, {"5", "NaW"}, {"6", "NH"}, {"9", "NWW"}, {"8", "NWW"}, {"40", "NWW"}};
  for (const Case& c : cases) {
    fileData->ModeName = "NwW";
    con::SetInputForTest(std::string("\n7\n") + c.in + "\n");
    EXPECT_EQ(MainMenu(*fileData, fileName), 8888) << c.in;
    EXPECT_EQ(fileData->ModeName, c.mode) << c.in;
  }
}

TEST_F(ShellMenu, ModeSelectorAsksAgainForAHappyNumber) {
  fileData->ModeName = "WP";
  con::SetInputForTest("x\n\n0\n3\n");
  EXPECT_EQ(ModeSelector(*fileData), 8888);
  const std::string happy = "You are expected to input a happy menu number.\n";
  EXPECT_EQ(out, std::string(kSelector) + happy + kSelector + happy + kSelector + happy + kSelector);
  out.clear();
  SetLang(0);
  con::SetInputForTest("q\n3\n");
  EXPECT_EQ(ModeSelector(*fileData), -1);  // AP again: no change
  EXPECT_EQ(out, std::string(kSelector) + "メニュー番号以外の入力がありましたのでもう一度！\n" + kSelector);
}

TEST_F(ShellMenu, EndOfInputAtEachPrompt) {
  for (const char* in : {"", "\n", "\n7\n", "\n1\n", "\n4\n", "\n5\n"}) {
    out.clear();
    RunToEnd(in);
  }
}

TEST_F(ShellMenu, LongLinesAreReadInPieces) {
  // The menu reads 40 bytes; the rest of the line is the next answer.
  RunToEnd("\n" + std::string(40, ' ') + "9\n");
  EXPECT_EQ(AfterPause(), std::string(kLongE) + "You are expected to input a good menu number.\n" + kLongE + kLongJ);
}

TEST_F(ShellMenu, PromptsOfTheNameItemsInBothLanguages) {
  struct Case {
    const char* item;
    const char* english;
    const char* japanese;
  } cases[] = {
      {"1", "\nInput a filename (with no extension). \n", "\nファイル名(拡張子省略可) を入力してください。 \n"},
      {"4", "Input a folder name.  eg1:  src     eg2:  src/example\n",
       "フォルダ名を入力してください。　例１： src  例２：　src/example\n"},
      {"5", "Input a text filename to edit. \n",
       "テキスト名を入力してください。　例１： src\\pn3035  　例２: src/list792j\n"},
  };
  for (const Case& c : cases) {
    for (int lang : {1, 0}) {
      SetLang(lang);
      out.clear();
      RunToEnd(std::string("\n") + c.item + "\n");
      const std::string menu = lang == 1 ? kLongE : kLongJ;
      EXPECT_TRUE(out.ends_with(menu + (lang == 1 ? c.english : c.japanese))) << c.item << " " << lang << out;
    }
  }
}

}  // namespace
