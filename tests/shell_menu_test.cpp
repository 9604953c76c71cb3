// The main menu and the mode selector, driven from a scripted console.
#include <gtest/gtest.h>

#include <cstring>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "shell/shell.h"

namespace {

const char* const kLongE =
    "Menu:\n 1.  Input a filename to assemble.   e.g. src/pn100.txt\n"
    "11.  assembles the previously assembled or opened file once again. \n"
    " 2.  shows an assembled result of aaAssembledRegMry.txt\n"
    " 3.  shows an execution result of aaResultantRegMry.txt\n"
    " 4.  shows a list of files in a specified folder.   e.g.  src\n"
    " 5.  displays a specified text file.   e.g.  src/list792j.txt\n"
    "55.  displays the previously opened or assembled text file. \n123. Exit \nInput a menu number.\n";

const char* const kLongJ =
    "メニュー：\n 1.  ファイル名（プログラム名）を指定する。例 : src/pn100.txt\n"
    "11.  前回アセンブルまたは開いたファイルを再アセンブルする。\n"
    " 2.  アセンブル結果 を表示する。aaAssembledRegMry.txt\n"
    " 3.  実行結果       を表示する。aaResultantRegMry.txt\n 4.  指定フォルダの中のファイルリストを表示する。 \n"
    " 5.  指定のテキストファイルを表示する。\n55.  前回開いたまたはアセンブルしたファイルを再度開く。 \n"
    "123 プログラムを終了する。\nメニュー番号を入力してください。\n";

const char* const kShortE =
    "Menu:\n 1.  Input a filename to assemble.\n11.  assembles the previous file once again. \n"
    " 2.  aaAssembledRegMry.txt\n 3.  aaResultantRegMry.txt\n 4.  shows a list of files in a specified folder.\n"
    " 5.  displays a specified text file.\n55.  displays the previous file. \n123. Exit\nInput a menu number.\n";

const char* const kShortJ =
    "メニュー：\n 1.  ファイル名（プログラム名）を指定する。\n11.  前回のファイルを再アセンブルする。\n"
    " 2.  aaAssembledRegMry.txt\n 3.  aaResultantRegMry.txt\n 4.  指定フォルダの中のファイルリストを表示 \n"
    " 5.  指定のファイルを表示する。\n55.  前回のファイルを再度開く。 \n123 プログラムを終了する。\n"
    "メニュー番号を入力してください。\n";

const char* const kPauseJ = "\n入力（Enter）キィを押すと次へ進む。";

const char* const kSelector =
    "Mode Selector: Input a menu number.\n1. NWW (Recommended at present)\n2. WP\n3. AP\n4. NA\n5. NaW\n"
    "6. NH\n9. NwW by default\n33. Cancel\n";

class ShellMenu : public ::testing::Test {
 protected:
  std::string out, fileName;
  void SetUp() override {
    con::SetCapture(&out);
    SetLang(1);
    modeState->SimpleTitleIndex = modeState->SilentModeIndex = 0;
    fileData->ModeName = "NWW";
    fileData->TextEditorIndex = 0;
  }
  void TearDown() override {
    con::SetCapture(nullptr);
    SetLang(1);
    modeState->SimpleTitleIndex = modeState->SilentModeIndex = 0;
    fileData->ModeName = "WP";
  }
  // Runs the menu on `input` to the end of input; returns what followed the pause.
  std::string RunToEnd(const std::string& input) {
    out.clear();
    con::SetInputForTest(input);
    EXPECT_THROW(MainMenu(*fileData, fileName), con::InputEnded);
    size_t j = out.find(kPauseJ), e = out.find("go next. ");
    return j != std::string::npos ? out.substr(j + std::strlen(kPauseJ))
                                  : e != std::string::npos ? out.substr(e + 9) : out;
  }
};

TEST_F(ShellMenu, PauseThenTheMenuOfLanguageAndTitle) {
  // language, SimpleTitleIndex, SilentModeIndex -> menu
  struct Row { int lang, simple, silent; const char* menu; } rows[] = {
      {1, 0, 0, kLongE}, {0, 0, 0, kLongJ}, {1, 1, 0, kShortE}, {0, 0, 2, kShortJ}};
  for (const Row& r : rows) {
    SetLang(r.lang);
    modeState->SimpleTitleIndex = r.simple;
    modeState->SilentModeIndex = r.silent;
    EXPECT_EQ(RunToEnd("\n"), r.menu) << r.lang << r.simple << r.silent;
    EXPECT_EQ(out.rfind(r.lang ? "\nPress " : kPauseJ, 0), 0u) << out;
  }
}

TEST_F(ShellMenu, BadNumbersInBothLanguages) {
  const std::string good = "You are expected to input a good menu number.\n", again = "Try it again!\n";
  std::string in = "\n", want = kLongE;
  for (auto [typed, reply] : {std::pair{"0", good}, {"12a", good}, {"", good}, {"  ", good}, {"abc", good},
                              {"6", again}, {"12", again}, {"124", again}, {"-1", again}})
    in += typed + std::string("\n"), want += reply + kLongE;
  EXPECT_EQ(RunToEnd(in), want);
  SetLang(0);
  EXPECT_EQ(RunToEnd("\n1x\n6\n"), std::string(kLongJ) + "メニュー番号以外の入力がありましたのでもう一度！\n" +
                                       kLongJ + "もう一度\n" + kLongJ);
  // The menu reads 40 bytes; the rest of the line is the next answer.
  SetLang(1);
  EXPECT_EQ(RunToEnd("\n" + std::string(40, ' ') + "9\n"), std::string(kLongE) + good + kLongE + kLongJ);
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
  EXPECT_EQ(RunToEnd("\n9\n9\n"), std::string(kLongE) + kLongJ + kLongE);
  EXPECT_EQ(fileData->Lang, 1);
  for (int from : {1, 3}) {  // any value other than 0 becomes 0
    SetLang(from);
    RunToEnd("\n9\n");
    EXPECT_EQ(fileData->Lang + fileData->LangCopy + b->Lang + cs->LangCopy + modeState->Lang, 0) << from;
  }
}

TEST_F(ShellMenu, ModeSelector) {
  EXPECT_EQ(RunToEnd("\n7\n33\n7\n9\n7\n1\n"),  // cancel and the same name go back to the menu
            std::string(kLongE) + kSelector + kLongE + kSelector + kLongE + kSelector + kLongE);
  EXPECT_EQ(fileData->ModeName, "NWW");
  for (auto [in, mode] : {std::pair{"2", "WP"}, {"3", "AP"}, {"4", "NA"}, {"5", "NaW"}, {"6", "NH"}, {"9", "NWW"},
                          {"8", "NWW"}, {"40", "NWW"}}) {
    fileData->ModeName = "NwW";
    con::SetInputForTest(std::string("\n7\n") + in + "\n");
    EXPECT_EQ(MainMenu(*fileData, fileName), 8888) << in;
    EXPECT_EQ(fileData->ModeName, mode) << in;
  }
  fileData->ModeName = "WP";
  out.clear();
  con::SetInputForTest("x\n\n0\n3\n");
  EXPECT_EQ(ModeSelector(*fileData), 8888);
  const std::string happy = std::string("You are expected to input a happy menu number.\n") + kSelector;
  EXPECT_EQ(out, kSelector + happy + happy + happy);
  out.clear();
  SetLang(0);
  con::SetInputForTest("q\n3\n");
  EXPECT_EQ(ModeSelector(*fileData), -1);  // AP again: no change
  EXPECT_EQ(out, std::string(kSelector) + "メニュー番号以外の入力がありましたのでもう一度！\n" + kSelector);
}

TEST_F(ShellMenu, PromptsOfTheNameItemsInBothLanguages) {
  struct Row { const char *item, *english, *japanese; } rows[] = {
      {"1", "\nInput a filename (with no extension). \n", "\nファイル名(拡張子省略可) を入力してください。 \n"},
      {"4", "Input a folder name.  eg1:  src     eg2:  src/example\n",
       "フォルダ名を入力してください。　例１： src  例２：　src/example\n"},
      {"5", "Input a text filename to edit. \n",
       "テキスト名を入力してください。　例１： src\\pn3035  　例２: src/list792j\n"}};
  for (int lang : {1, 0}) {
    SetLang(lang);
    for (const Row& r : rows)
      EXPECT_EQ(RunToEnd(std::string("\n") + r.item + "\n"),
                (lang ? kLongE : kLongJ) + std::string(lang ? r.english : r.japanese)) << r.item << lang;
  }
}

}  // namespace
