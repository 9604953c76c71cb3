// The message helper, the log, the quoting helpers and the console reader.
#include <gtest/gtest.h>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"

namespace {

struct Captured {
  std::string out;
  Captured() { con::SetCapture(&out); }
  ~Captured() { con::SetCapture(nullptr); }
};

class DiagTest : public ::testing::Test {
 protected:
  void SetUp() override {
    cs->ZeroCounters();
    msgLog->ClearMsgLog();
  }
  void TearDown() override { SetLang(1); }
};

TEST_F(DiagTest, EnglishAndJapaneseHeadsWithLineNumbersFromOne) {
  Captured c;
  SetLang(1);
  Say(*cs, kError, 4, {QuoteW(u"ABC") + u" is wrong. ", u"Second line."}, "TEST0001");
  SetLang(0);
  Say(*cs, kError, 4, {QuoteW(u"ABC") + u"は違う。"}, "TEST0002");
  EXPECT_EQ(c.out,
            "Error : line 5:  \"ABC\"  is wrong. \nSecond line.\n"
            "エラー： 5 行目：  \"ABC\" は違う。\n");
  EXPECT_EQ(cs->ErrorKazu, 2);
  ASSERT_EQ(msgLog->WideLog.size(), 2u);
  EXPECT_EQ(msgLog->WideLog[0].code, "TEST0001");
  EXPECT_EQ(msgLog->WideLog[0].classWord, u"Error: ");
  EXPECT_EQ(msgLog->WideLog[1].classWord, u"エラー： ");
  EXPECT_EQ(msgLog->WideLog[0].msgLines[1], u"Second line.");
}

TEST_F(DiagTest, MemoLooksLikeANoteInEnglishButCountsAsMemo) {
  Captured c;
  SetLang(1);
  Say(*cs, kMemo, 0, {u"x"}, "TEST0003");
  EXPECT_EQ(c.out, "Note : line 1: x\n");
  EXPECT_EQ(cs->MemoKazu, 1);
  EXPECT_EQ(cs->NoteKazu, 0);
  EXPECT_EQ(msgLog->WideLog[0].classWord, u"Memo: ");
  SetLang(0);
  Say(*cs, kMemo, 0, {u"x"}, "TEST0003");
  EXPECT_EQ(msgLog->WideLog[1].classWord, u"メモ； ");
}

TEST_F(DiagTest, OtherHeadsAndConstantPlaces) {
  SetLang(1);
  EXPECT_EQ(MsgHead(*cs, kWarning, 2, Head::ClassOnly), u"Warning : ");
  EXPECT_EQ(MsgHead(*cs, kNote, 2, Head::ConstNr, 4), u"Note : line 3:  Constant Nr=4: ");
  EXPECT_EQ(MsgHead(*cs, kNote, 2, Head::None), u"");
  SetLang(0);
  EXPECT_EQ(MsgHead(*cs, kError, 9, Head::ConstNr, 2), u"エラー： 10 行目： 2 番目の定数： ");
}

TEST_F(DiagTest, LogIsRepeatedLineByLine) {
  SetLang(1);
  {
    Captured c;
    Say(*cs, kWarning, 1, {u"one", u"two"}, "TEST0004");
  }
  Captured c;
  msgLog->DspMsgLog();
  EXPECT_EQ(c.out, "Warning : line 2: one\ntwo\n\n");
}

TEST_F(DiagTest, SmallHelpers) {
  EXPECT_EQ(QuoteA("x y"), " \"x y\" ");
  EXPECT_EQ(WordNr(-12), u"-12");
  EXPECT_EQ(PrgLocation("src/pn100.txt", 7, "ABC"), "pn100 line=7 ABC");
  EXPECT_EQ(Hex4W(0xFFFFFFFF), u"#FFFF");
  EXPECT_EQ(Hex4(0x1A), "#001A");
}

TEST_F(DiagTest, ErrorSummaryAndWarningCount) {
  Captured c;
  SetLang(1);
  TDiagBase game;
  game.SetLangBoth(1);
  game.ErrorKazu = 1;
  EXPECT_EQ(DspWarningKazuE(game, u"", 'h'), 1);
  game.ErrorKazu = 2;
  DspWarningKazuE(game, u"", 'h');
  game.WarningKazu = 1;
  DspWarningKazuE(game, u"", 'f');
  EXPECT_EQ(c.out,
            "\n\nThere is 1 error to be corrected. \n\nCorrect the codes and assemble them again.\n"
            "\n\nThere are 2 errors to be corrected. \n\nCorrect the codes and assemble them again.\n"
            "1 warning: \n");
}

TEST(TextTest, Utf8RoundTripAndBadSequences) {
  std::string s = "A\xE3\x81\x82\xF0\x9F\x98\x80";  // A, あ, an emoji
  wstr w = Utf8ToU16(s);
  ASSERT_EQ(w.size(), 4u);
  EXPECT_EQ(w[1], u'あ');
  EXPECT_EQ(w[2], 0xD83D);
  EXPECT_EQ(U16ToUtf8(w), s);
  EXPECT_EQ(Utf8ToU16("\xFF" "a\xE3\x81"), wstr(u"\uFFFDa\uFFFD"));
  EXPECT_EQ(Utf8ToU16("\xC0\x80"), wstr(u"\uFFFD"));  // overlong
  EXPECT_EQ(U16ToUtf8(wstr(1, char16_t(0xD800))), "\xEF\xBF\xBD");
  // Appending: ASCII alone, ASCII up to 0x7F, then text of every width.
  std::string out = "x";
  for (const wstr& t : {wstr(u"AB ~\x7F"), wstr(u""), wstr(u"\x80\u3042"), w, wstr(1, char16_t(0xDC00))}) AppendUtf8(out, t);
  EXPECT_EQ(out, "xAB ~\x7F\xC2\x80\xE3\x81\x82" + s + "\xEF\xBF\xBD");
}

TEST(ConsoleTest, LongLinesLeaveTheirRestAndPipesEndTheProgram) {
  con::SetInputForTest("abcdef\r\nxy\n");
  EXPECT_EQ(con::ReadLine(4), "abcd");
  EXPECT_EQ(con::ReadLine(40), "ef");
  EXPECT_EQ(con::ReadLine(40), "xy");
  EXPECT_THROW(con::ReadLine(40), con::InputEnded);
}

TEST(ConsoleTest, WordsStopAtABareLineEndAndLeaveTheLineEnd) {
  con::SetInputForTest(" \t\r\n  12 \n\nnext\n");
  EXPECT_EQ(con::ReadWord(40), "");
  EXPECT_EQ(con::ReadLine(40), "");
  EXPECT_EQ(con::ReadWord(40), "12");
  EXPECT_EQ(con::ReadLine(40), " ");
  EXPECT_EQ(con::ReadLineSkipWs(40), "next");
}

TEST(ConsoleTest, TerminalEndOfInputIsAnEmptyLineAndInEndsWithoutThrowing) {
  con::SetInputForTest("", true);
  EXPECT_EQ(con::ReadLine(40), "");
  con::SetInputForTest("last");
  bool cut = false;
  auto l = con::ReadLineForIn(256, cut);
  ASSERT_TRUE(l.has_value());
  EXPECT_EQ(*l, "last");
  EXPECT_FALSE(con::ReadLineForIn(256, cut).has_value());
}

TEST(ConsoleTest, RewindDropsTheRestOfACutLine) {
  con::SetInputForTest("abcdefgh\nnext\n");
  bool cut = false;
  EXPECT_EQ(*con::ReadLineForIn(3, cut), "abc");
  EXPECT_TRUE(cut);
  con::Rewind();
  EXPECT_EQ(con::ReadLine(40), "next");
}

}  // namespace
