// The learner at a terminal: line editing with a history and Tab completion
// of names, Ctrl+Z as the end of IN's input with the terminal put back, and
// Ctrl+C stopping a run.
#include <gtest/gtest.h>

#include "harness.h"
#include "pty_harness.h"

namespace {

using pty_test::Pty;

const std::string kClean = "MAIN    START\n        LAD     GR1,1\n        RET\n        END\n";
const std::string kEcho = "MAIN    START\n        IN      BUF,LEN\n        OUT     BUF,LEN\n        RET\n"
                          "BUF     DS      256\nLEN     DS      1\n        END\n";
const std::string kLoop = "MAIN    START\nLOOP    JUMP    LOOP\n        RET\n        END\n";

// From the pause to the prompt of item 1's file name.
bool ToFilePrompt(Pty& t, const std::string& pause) {
  if (!t.WaitFor(pause)) return false;
  t.Send("\r");
  if (!t.WaitFor("Input a menu number.")) return false;
  t.Send("1\r");
  return t.WaitFor("Input a filename (with no extension).");
}

TEST(E2eTerminal, HistoryAndTabCompletionAtTheFilePrompt) {
  Pty t(DRILLASM_EXE, {{"drillasm.ini", e2e::Ini("NWW")}, {"src/abcdef.txt", kClean}});
  ASSERT_TRUE(ToFilePrompt(t, "Press your Enter key to go next. ")) << t.Out();
  t.Send("src/abc\t");  // completes to src/abcdef.txt
  t.Send("\r");
  ASSERT_TRUE(t.WaitFor("Successfully Assembled!")) << t.Out();
  ASSERT_TRUE(ToFilePrompt(t, "Press the Enter key to go next. ")) << t.Out();
  t.Send("\x1b[A\x1b[A\r");  // two lines back: the completed name
  ASSERT_TRUE(t.WaitFor("Successfully Assembled!")) << t.Out();
  ASSERT_TRUE(t.WaitFor("Press the Enter key to go next. ")) << t.Out();
  t.Send("\r");
  ASSERT_TRUE(t.WaitFor("Input a menu number.")) << t.Out();
  t.Send("123\r");
  EXPECT_EQ(t.Wait(), 0) << t.Out();
  EXPECT_NE(t.File("drillasm.ini").find("LastSrcFile=src/abcdef.txt"), std::string::npos);
}

TEST(E2eTerminal, CtrlZEndsInAndTheTerminalIsPutBack) {
  Pty t(DRILLASM_EXE, {{"drillasm.ini", e2e::Ini("NWW")}, {"src/echo.txt", kEcho}});
  ASSERT_TRUE(ToFilePrompt(t, "Press your Enter key to go next. ")) << t.Out();
  t.Send("src/echo\r");
  ASSERT_TRUE(t.WaitFor("at the end of your input. ")) << t.Out();
  usleep(300000);  // IN sets the terminal once its prompt is out
  struct termios during {};
  ASSERT_TRUE(t.Modes(during));
  EXPECT_EQ(during.c_cc[VEOF], 0x1A);
  EXPECT_EQ(during.c_cc[VSUSP], _POSIX_VDISABLE);
  t.Send("\x1a");  // Ctrl+Z at once: the end of input, count 0
  ASSERT_TRUE(t.WaitFor("OS: Output by a Macro Instruction of OUT. \r\n\r\n")) << t.Out();
  ASSERT_TRUE(t.WaitFor("Press the Enter key to go next. ")) << t.Out();
  t.Send("\r");
  ASSERT_TRUE(t.WaitFor("Input a menu number.")) << t.Out();
  t.Send("123\r");
  EXPECT_EQ(t.Wait(), 0) << t.Out();
  // The program has left the terminal as it found it: Ctrl+D ends input,
  // Ctrl+Z suspends.
  struct termios after {};
  ASSERT_TRUE(t.Modes(after));
  EXPECT_EQ(after.c_cc[VEOF], 4);
  EXPECT_EQ(after.c_cc[VSUSP], 0x1A);
}

// While IN waits, Ctrl+D is an end of input as well: behind text it hands the
// text over without a line end, alone it ends the input.
TEST(E2eTerminal, CtrlDEndsInToo) {
  Pty t(DRILLASM_EXE, {{"drillasm.ini", e2e::Ini("NWW")}, {"src/echo.txt", kEcho}});
  ASSERT_TRUE(ToFilePrompt(t, "Press your Enter key to go next. ")) << t.Out();
  t.Send("src/echo\r");
  ASSERT_TRUE(t.WaitFor("at the end of your input. ")) << t.Out();
  usleep(300000);
  t.Send("xy\x04");
  usleep(200000);
  t.Send("\x04");
  ASSERT_TRUE(t.WaitFor("OS: Output by a Macro Instruction of OUT. \r\nxy\r\n")) << t.Out();
  ASSERT_TRUE(t.WaitFor("Press the Enter key to go next. ")) << t.Out();
  t.Send("\r");
  ASSERT_TRUE(t.WaitFor("Input a menu number.")) << t.Out();
  t.Send("123\r");
  EXPECT_EQ(t.Wait(), 0) << t.Out();
  EXPECT_EQ(t.Out().find("\x04"), std::string::npos) << t.Out();
}

TEST(E2eTerminal, TheJapaneseOpeningIsSeenWhileTheMachineRuns) {
  // "COMET2 実行中 " has no line end: it must reach the terminal before the
  // machine starts, or the learner sees nothing of an endless run.
  Pty t(DRILLASM_EXE, {{"drillasm.ini", e2e::Ini("NWW", 0)}, {"src/loop.txt", kLoop}});
  ASSERT_TRUE(t.WaitFor("キィを押すと次へ進む。")) << t.Out();
  t.Send("\r");
  ASSERT_TRUE(t.WaitFor("メニュー番号を入力してください。")) << t.Out();
  t.Send("1\r");
  ASSERT_TRUE(t.WaitFor("を入力してください。")) << t.Out();
  t.Send("src/loop\r");
  ASSERT_TRUE(t.WaitFor("COMET2 実行中 ", 5)) << t.Out();
  t.Send("\x03");
  ASSERT_TRUE(t.WaitFor("実行を中断しました（Ctrl+C）。")) << t.Out();
}

TEST(E2eTerminal, CtrlCStopsTheRunAndThenTheProgram) {
  Pty t(DRILLASM_EXE, {{"drillasm.ini", e2e::Ini("NWW")}, {"src/loop.txt", kLoop}});
  ASSERT_TRUE(ToFilePrompt(t, "Press your Enter key to go next. ")) << t.Out();
  t.Send("src/loop\r");
  ASSERT_TRUE(t.WaitFor("The comet2 starts running")) << t.Out();
  usleep(200000);
  t.Send("\x03");
  ASSERT_TRUE(t.WaitFor("Runtime stop: interrupted by Ctrl+C at PR = #000")) << t.Out();
  ASSERT_TRUE(t.WaitFor("Press the Enter key to go next. ")) << t.Out();
  EXPECT_NE(t.File("aaResultantRegMry.txt").find("   PR:"), std::string::npos);
  // Outside a run, Ctrl+C ends the program.
  t.Send("\x03");
  EXPECT_EQ(t.Wait(), -1) << t.Out();
  EXPECT_EQ(t.Signal(), SIGINT);
}

}  // namespace
