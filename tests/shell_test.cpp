// The program shell in-process, from a scripted console: the main menu, the
// mode selector, the Fight loop, the settings file, the file names typed at
// the console and the time texts of each clock from fixed tick counts.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <tuple>

#include "harness.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "reports/TimeVcl/time_vcl.h"
#include "shell/shell.h"
#include "source/filename.h"

namespace fs = std::filesystem;

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

class Shell : public ::testing::Test {
 protected:
  std::string dir, ini, out, fileName;
  void SetUp() override {
    std::string t = (fs::temp_directory_path() / "drillasm-shell-XXXXXX").string();
    dir = mkdtemp(t.data());
    ini = dir + "/drillasm.ini";
    con::SetCapture(&out);
    Reset();
  }
  void TearDown() override {
    con::SetCapture(nullptr);
    fs::remove_all(dir);
    Reset();
  }
  static void Reset() {
    SetLang(1);
    fileData->ModeName = "NWW";
    modeState->SimpleTitleIndex = modeState->BusyModeIndex = modeState->SilentModeIndex = 0;
    b->SetTextEdIndex(fileData->TextEditorIndex = 0);
    fileData->TextEditorPath = {};
    timeVcl->SetTimeFuncByInt(0);
    msgLog->ClearMsgLog();
    ResetBannerCount();
  }
  // Runs the menu (or `run`) on `input` to the end of input; returns what followed the pause.
  std::string RunToEnd(const std::string& input, std::function<void()> run = {}) {
    out.clear();
    con::SetInputForTest(input);
    EXPECT_THROW(run ? run() : (void)MainMenu(*fileData, fileName), con::InputEnded);
    size_t j = out.find(kPauseJ), e = out.find("go next. ");
    return j != std::string::npos ? out.substr(j + std::strlen(kPauseJ))
                                  : e != std::string::npos ? out.substr(e + 9) : out;
  }
};

int64_t g_now = 0, g_freq = 1000000000;
int64_t FakeNow64() { return g_now; }
int32_t FakeNow32() { return static_cast<int32_t>(g_now); }
int64_t FakeFreq() { return g_freq; }

class ShellTimeVcl : public Shell {
 protected:
  TimeVcl t;
  void SetUp() override {
    Shell::SetUp();
    g_now = 0, g_freq = 1000000000;
    t.ticks = {FakeNow64, FakeFreq, FakeNow64, FakeNow32};
  }
  // The assembly phase of `ticks` length on the clock in use.
  std::string Assemble(int64_t ticks) {
    g_now = 5000, t.stampAssembleStart(), g_now = 5000 + ticks, t.stampAssembleEnd();
    return t.DetTimeDiff_GeneralA("AssembleTime");
  }
};

// The settings tests start from a known state that the fallbacks can be told from.
class ShellSettings : public Shell {
 protected:
  void SetUp() override {
    Shell::SetUp();
    SetLang(0);
    fileData->ModeName = fileData->LastSrcFile = "before";
    fileData->TextEditorPath = {"p0", "p1", "p2", "", ""};
    fileData->SilentFlag = b->SimpleTitleIndex = b->BusyModeIndex = 0;
    b->SetTextEdIndex(fileData->TextEditorIndex = 1);
    modeState->SimpleTitleIndex = modeState->BusyModeIndex = modeState->SilentModeIndex = 7;
    timeVcl->SetTimeFuncByInt(1);
  }
  static std::tuple<int, int, int> ModeIndices() {
    return {modeState->SimpleTitleIndex, modeState->BusyModeIndex, modeState->SilentModeIndex};
  }
  void Read(const std::string& text) {
    std::ofstream(ini, std::ios::binary) << text;
    ReadSettings(ini);
  }
};

TEST_F(Shell, PauseThenTheMenuOfLanguageAndTitle) {
  // language, SimpleTitleIndex, SilentModeIndex -> menu
  struct Row { int lang, simple, silent; const char* menu; } rows[] = {
      {1, 0, 0, kLongE}, {0, 0, 0, kLongJ}, {1, 1, 0, kShortE}, {0, 0, 2, kShortJ}};
  for (const Row& r : rows) {
    SetLang(r.lang);
    modeState->SimpleTitleIndex = r.simple, modeState->SilentModeIndex = r.silent;
    EXPECT_EQ(RunToEnd("\n"), r.menu) << r.lang << r.simple << r.silent;
    EXPECT_EQ(out.rfind(r.lang ? "\nPress " : kPauseJ, 0), 0u) << out;
  }
}

TEST_F(Shell, BadNumbersInBothLanguages) {
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

TEST_F(Shell, NumbersAroundTheItemsAreTrimmed) {
  msgLog->WideLog.push_back(TMsgRec{});
  fileData->LastSrcFile = "src\\pn1000.txt";
  con::SetInputForTest("\n \t11 \n");
  EXPECT_EQ(MainMenu(*fileData, fileName), 0);
  EXPECT_EQ(std::pair(fileName, b->FileName), std::pair(std::string("src/pn1000.txt"), std::string("src/pn1000.txt")));
  EXPECT_TRUE(msgLog->WideLog.empty());
}

TEST_F(Shell, ItemNineFlipsTheLanguageWithoutAPause) {
  EXPECT_EQ(RunToEnd("\n9\n9\n"), std::string(kLongE) + kLongJ + kLongE);
  SetLang(3);  // any value other than 0 becomes 0, on every language field
  RunToEnd("\n9\n");
  EXPECT_EQ(std::tuple(fileData->Lang, fileData->LangCopy, b->Lang, cs->LangCopy, modeState->Lang),
            std::tuple(0, 0, 0, 0, 0));
}

TEST_F(Shell, EachFightRunsAsItsRowSays) {
  // name, letter, carrier ("" where the Fight leaves it), row of the running Fight.
  for (auto [name, letter, carrier] : {std::tuple{"NWW", 'W', ""}, {"WP", 'W', "std::wstring<--UTF16"},
                                       {"AP", 'A', "std::string"}, {"NA", 'A', "std::string"},
                                       {"NaW", 'w', "std::wstring"}, {"NH", 'H', "char chH[]"}}) {
    TGame game;
    fileData->CarrierName = "kept";
    fileData->ModeName = name;
    msgLog->ClearMsgLog();
    // A file with an error, then a change to WP (or to NWW from WP). The
    // modes that clear the log at the head of a pass leave it empty.
    const std::string bad = dir + "/bad.txt";
    std::ofstream(bad) << "MAIN START\n LDX GR1,0\n RET\n END\n";
    con::SetInputForTest("\n1\n" + bad + "\n\n7\n" + (std::string(name) == "WP" ? "1" : "2") + "\n");
    EXPECT_EQ(Fight(game, FightModeOf(name)), ModeChangeCode) << name;
    EXPECT_EQ(msgLog->WideLog.empty(), std::string("AP NA NaW").find(name) != std::string::npos) << name;
    EXPECT_EQ(fileData->ModeLetter, letter) << name;
    EXPECT_EQ(fileData->CarrierName, *carrier ? carrier : "kept") << name;
    EXPECT_EQ(&CurrentMode(), &FightModeOf(name)) << name;
    EXPECT_STREQ(CurrentMode().name, name);
  }
  EXPECT_EQ(&FightModeOf("NwW"), &FightModeOf("NWW"));
  EXPECT_EQ(&FightModeOf("nh"), &FightModeOf("NWW"));
  SetCurrentMode(FightModeOf("NWW"));
}

TEST_F(Shell, ModeSelector) {
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
  const std::string happy = std::string("You are expected to input a happy menu number.\n") + kSelector;
  fileData->ModeName = "WP";
  for (auto [lang, in, to, text] : {std::tuple{1, "x\n\n0\n3\n", 8888, kSelector + happy + happy + happy},
                                    {0, "q\n3\n", -1,  // AP again: no change
                                     kSelector + ("メニュー番号以外の入力がありましたのでもう一度！\n" + std::string(kSelector))}}) {
    SetLang(lang), out.clear();
    con::SetInputForTest(in);
    EXPECT_EQ(ModeSelector(*fileData), to);
    EXPECT_EQ(out, text);
  }
}

TEST_F(Shell, PromptsOfTheNameItemsInBothLanguages) {
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

TEST_F(Shell, FightExitModeChangeTheLogAtEntryAndTheLanguage) {
  const std::string savedPath = b->SettingsPath;
  b->SettingsPath = ini;
  TGame game;
  msgLog->WideLog.push_back(TMsgRec{});
  con::SetInputForTest("\n123\n");
  EXPECT_EQ(FightNwW(game), 0);
  EXPECT_EQ(msgLog->WideLog.size(), 1u);  // NWW leaves the log alone
  EXPECT_TRUE(fs::exists(ini));
  con::SetInputForTest("\n7\n6\n");
  EXPECT_EQ(FightWP(game), 8888);
  EXPECT_TRUE(msgLog->WideLog.empty());  // WP clears it at entry
  EXPECT_EQ(game.ModeTag, "NH");
  SetLang(4);  // a language above one is Japanese in the Fight
  EXPECT_EQ(RunToEnd("\n", [&] { FightNwW(game); }), kLongJ);
  EXPECT_EQ(game.Lang + b->LangCopy, 0);
  b->SettingsPath = savedPath;
}

TEST_F(ShellSettings, EmptyFileTakesTheFallbacksAndStaysAsItIs) {
  Read("");
  EXPECT_EQ(e2e::read_file(ini), "");
  EXPECT_EQ(std::tuple(fileData->Lang, fileData->ModeName, timeVcl->TimeFuncStr, timeVcl->TimeFuncInt),
            std::tuple(1, "WP", "QPC", 0));
  for (const std::string& last : {fileData->LastSrcFile, b->FileName, dirHolder->LastSrcFile})
    EXPECT_EQ(last, "src\\pn1000");
  EXPECT_EQ(std::pair(b->TextEditorIndex, fileData->TextEditorIndex), std::pair(0, 0));
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
  EXPECT_EQ(std::pair(+fileData->SilentFlag, fileData->TextEditorIndex), std::pair(1, 5));
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
  EXPECT_EQ(std::pair(fileData->Lang, fileData->ModeName), std::pair(1, std::string("WP")));
  EXPECT_EQ(e2e::read_file(ini), "[Mode]\nLangStr=JPN\nFightFunc=NH\nLangStr=JPN\n");
  out.clear();
  Read("\xEF\xBB\xBF[Mode]\r\nLangStr=JPN\r\nFightFunc=NH\r\n[Src]\r\nLastSrcFile=src\\a.txt\r\n");
  EXPECT_EQ(std::tuple(out, fileData->Lang, fileData->ModeName, fileData->LastSrcFile), std::tuple("", 0, "NH", "src\\a.txt"));
}

TEST_F(ShellSettings, WrittenFileHoldsEveryKeyInOrder) {
  timeVcl->SetTimeFuncByInt(2);
  fileData->ModeName = "NaW", fileData->LastSrcFile = "src/prog.txt";
  b->SimpleTitleIndex = 5, b->BusyModeIndex = fileData->SilentFlag = 1, fileData->TextEditorIndex = 2;
  WriteSettings(ini);
  EXPECT_EQ(e2e::read_file(ini),
            "[Mode]\nLangStr=JPN\nLangInt=0\nFightFunc=NaW\nTimeFuncStr=std::clock()\nTimeFuncInt=2\n"
            "SimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=true\n[Src]\nLastSrcFile=src/prog.txt\n"
            "[Editor]\nTextEditorIndex=2\nTextEditorPath1=p1\nTextEditorPath2=p2\n");
  EXPECT_EQ(b->SimpleTitleIndex, 0);
  fileData->LastSrcFile.clear();  // an empty last file, written over the old file
  WriteSettings(ini);
  EXPECT_NE(e2e::read_file(ini).find("LastSrcFile=src\\list792j.txt\n"), std::string::npos);
  EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);  // no temporary left
}


TEST(ShellFilename, TrimAndNorm) {
  struct Row { std::string (*fn)(std::string_view); const char *in, *out; } rows[] = {
      {TrimFilenameStr, "  src/a.txt\t ", "src/a.txt"}, {TrimFilenameStr, "@src/a@", "src/a"},
      {TrimFilenameStr, "\xE3\x80\x80 src/a \xE3\x80\x80", "src/a"}, {TrimFilenameStr, "my file", "my file"},
      {TrimFilenameStr, " \t@\xE3\x80\x80", ""}, {TrimFilenameStr, "", ""},
      {TrimFilenameStr, "\xE3\x81\x82.txt", "\xE3\x81\x82.txt"},  // same lead byte, no wide space
      {TrimFilenameStr, "a\xE3\x80", "a\xE3\x80"},                // half a wide space
      {NormFilenameStr, "", ""}, {NormFilenameStr, " src\\pn1000.txt ", "src/pn1000.txt"},
      {NormFilenameStr, "a\\\\b\\c", "a//b/c"}, {NormFilenameStr, "my file.txt", "\"my file.txt\""},
      {NormFilenameStr, "mail@home", "\"mail@home\""},
      {NormFilenameStr, "a\xE3\x80\x80" "b", "\"a\xE3\x80\x80" "b\""}, {SlashFilenameStr, "src\\pn1000", "src/pn1000"},
  };
  for (const Row& r : rows) EXPECT_EQ(r.fn(r.in), r.out) << r.in;
}

TEST_F(Shell, FileExistenceAndTheNameReaders) {
  const std::string d = dir + "/";
  for (const char* f : {"src/prog.txt", "src/bare", "src/only.asl", "src/pile.txt.asl", "my prog.txt"}) {
    fs::create_directories(fs::path(d + f).parent_path());
    std::ofstream(d + f) << "x\n";
  }
  EXPECT_TRUE(FileExistsStr("  " + d + "src/prog.txt "));
  for (const std::string& no : {d + "src", d + "src/none.txt", std::string(), d + "my prog.txt"})
    EXPECT_FALSE(FileExistsStr(no)) << no;  // a folder, none, empty, quoted for the blank

  // name typed -> file found ("" when none); the extensions pile up
  for (auto [in, found] : {std::pair{"\n  " + d + "src/prog  \n", d + "src/prog.txt"},
                           {d + "src/bare\n", d + "src/bare"}, {d + "src/only\n", std::string()},
                           {d + "src/pile\n", d + "src/pile.txt.asl"}}) {
    con::SetInputForTest(in);
    EXPECT_EQ(GetFilenameWithExtStr(), found) << in;
    con::Flush();
  }
  EXPECT_EQ(out, "The file is not found there. *");
  EXPECT_EQ(fileData->LastSrcFile, d + "src/pile.txt.asl");
  EXPECT_EQ(fileData->LastSrcFileW, Utf8ToU16(d + "src/pile.txt.asl"));
  out.clear();
  SetLang(0);
  con::SetInputForTest(d + "nothing\n");
  EXPECT_EQ(GetFilenameWithExtStr(), "");
  EXPECT_EQ(out, "ファイルが見つかりませんでした。\n");
  EXPECT_EQ(fileData->LastSrcFile, d + "src/pile.txt.asl");  // the last good one stays
  out.clear();
  con::SetInputForTest("  src\\example  \n\n");
  EXPECT_EQ(GetFilenameStrA_TPO(), "src/example");
  EXPECT_EQ(GetFilenameStrA_TPO(), "");
  EXPECT_EQ(out, "No Input Error!\n");
  EXPECT_THROW(GetFilenameStrA_TPO(), con::InputEnded);  // the end of a piped input
  con::SetInputForTest("   \n\n");
  EXPECT_THROW(GetFilenameWithExtStr(), con::InputEnded);
}

TEST_F(ShellTimeVcl, ClockByNameAndByNumber) {
  for (auto [name, num] : {std::pair{"QPC", 0}, {"std::clock()", 2}, {"std::chrono", 1}, {"sundial", 1}}) {
    t.SetTimeFuncByName(name);
    EXPECT_EQ(std::pair(t.TimeFuncInt, t.TimeFuncStrW), std::pair(num, Utf8ToU16(name)));  // the name is kept
  }
  for (auto [n, name] : {std::pair{0, "QPC"}, {1, "std::chrono"}, {2, "std::clock()"}, {3, "std::chrono"},
                         {7, "std::chrono"}, {-1, "std::chrono"}}) {
    t.SetTimeFuncByInt(n);
    EXPECT_EQ(std::pair(t.TimeFuncStr, t.TimeFuncInt), std::pair(std::string(name), n == 0 || n == 2 ? n : 1));
  }
}

TEST_F(ShellTimeVcl, PhaseTextsOfEachClock) {
  // clock, frequency (0: 1 GHz), ticks, text, milliseconds text ("": not checked)
  struct Row { int clock; int64_t freq, ticks; const char *text, *msec; } rows[] = {
      {0, 0, 999999, "1 micro second or less", ""}, {0, 0, 1000000, "1.0 msec", ""},
      {0, 0, 12340000, "12.3 msec", "12.3"}, {0, 0, 999990000, "999.9 msec", ""}, {0, 0, 1000000000, "1.0 sec", ""},
      {0, 0, 2050000000, "2.50 sec", ""}, {0, 0, 3005000000, "3.5 sec", "3005.0"},  // no zero fill of the msec
      {0, 10000000, 123400, "12.3 msec", ""}, {0, 10000000, int64_t{31536000} * 10000000, "31536000.0 sec", ""},
      {1, 0, 9999, "0 msec ", ""}, {1, 0, 10000, "1 msec", ""}, {1, 0, 9990000, "999 msec", ""},
      {1, 0, 10000000, "1.0 sec", ""}, {1, 0, 12990000, "1.2 sec", "1299"}, {2, 0, 0, "0 msec", ""},
      {2, 0, 999, "999 msec", ""}, {2, 0, 1000, "1.0 sec", ""}, {2, 0, 1005, "1.5 sec", ""},
      {2, 0, 1500, "1.500 sec", ""}, {2, 0, 2050, "2.50 sec", "2050"}};
  for (const Row& r : rows) {
    SCOPED_TRACE(std::to_string(r.clock) + " " + std::to_string(r.ticks));
    t.SetTimeFuncByInt(r.clock);
    g_freq = r.freq ? r.freq : 1000000000;
    EXPECT_EQ(Assemble(r.ticks), r.text);
    if (*r.msec) {
      EXPECT_EQ(t.DetTimeDiff_MilliSecStrA_General("AssembleTime"), r.msec);
    }
  }
  EXPECT_EQ(out, "");
}

TEST_F(ShellTimeVcl, PhasesUseTheirOwnStampsAndTheTimeLines) {
  t.SetTimeFuncByInt(2);
  g_now = 100, t.stampReadFileStart(), g_now = 107, t.stampAssembleStart(), g_now = 130, t.stampAssembleEnd();
  g_now = 1130, t.stampLinkEnd(), g_now = 2000, t.stampRunStart(), g_now = 2042, t.stampRunEnd();
  for (auto [phase, text] : {std::pair{"ReadFileTime", u"7 msec"}, {"AssembleTime", u"23 msec"},
                             {"LinkTime", u"1.0 sec"}, {"RunTime", u"42 msec"}})
    EXPECT_EQ(t.DetTimeDiff_GeneralW(phase), text) << phase;
  t.DspReadAssembleTime("FightNWW");
  t.DspReadAssembleLinkTime("FightNWW");
  EXPECT_EQ(out,
            "(7 msec, 23 msec) msec =(ReadFile, Assemble)Time std::clock()  \n"
            "(7 msec, 23 msec, 1.0 sec) msec =(ReadFile, Assemble, Link)Time  std::clock() \n");
}

TEST_F(ShellTimeVcl, UnknownPhaseBadClockAndFailedFrequency) {
  for (auto [clock, text] : {std::pair{1, "Prg Error of else: std::chrono D164F0B4"},
                             {0, "Prg Error else: QP 961FCA19"}, {2, "Prg Error of else: std::clock A59FB6AA"}}) {
    t.SetTimeFuncByInt(clock);
    EXPECT_EQ(t.DetTimeDiff_GeneralA("LunchTime"), text);
  }
  t.TimeFuncInt = 5;  // a clock number no setter gives: reported, and the clock() set is used
  g_now = 77;
  t.stampAssembleStart();
  t.stampLinkEnd();
  EXPECT_EQ(t.clockStamps[TimeVcl::AssembleStart], 77);
  EXPECT_EQ(t.DetTimeDiff_MilliSecStrA_General("AssembleTime"), "");
  t.SetTimeFuncByInt(0);
  g_freq = 0;
  Assemble(2000000);
  t.DetTimeDiff_MilliSecStrA_General("AssembleTime");
  for (const char* text : {"Prg else Error: time_vcl AssembleStart 265D\n", "Prg else Error: time_vcl LinkEnd E6B0965D\n",
                           "Prg else Error: time_vcl E6B0965D\n", "Fail to get FreqQP. time_vcl  1ABC2FFF\n",
                           "Fail to get FreqQP. time_vcl  1AAAA2FFF\n"})
    EXPECT_NE(out.find(text), std::string::npos) << text << "\n" << out;
}

}  // namespace
