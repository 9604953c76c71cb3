// The small operating system: IN and OUT, the other SVC numbers, the guard
// of PUSH, the guard of an indexed ST, and the stops of the simulator's own
// at the end of the stack's storage.
#include <string>
#include <vector>

#include "comet2_fixture.h"

namespace comet2_test {
namespace {

constexpr int32_t kBuf = 100;
constexpr int32_t kLen = 99;

class Comet2Os : public Comet2Test {
 protected:
  // `n` INs (svc 1) or OUTs (svc 2) one after the other, then RET.
  void LoadServices(int svc, int n) {
    std::vector<int32_t> words = {0};
    for (int i = 0; i < n; ++i) {
      const std::vector<int32_t> mac = Macro(svc, kBuf, kLen);
      words.insert(words.end(), mac.begin(), mac.end());
    }
    words.push_back(Op(0x81));
    Load(words);
    b->MaxMemory = 400;
  }
  static wstr Cells(int32_t from, int n) {
    wstr s;
    for (int i = 0; i < n; ++i) s.push_back(static_cast<char16_t>(m->Memory[from + i]));
    return s;
  }
};

// ---- IN -------------------------------------------------------------------

TEST_F(Comet2Os, InStoresATypedLineAndItsLength) {
  LoadServices(1, 1);
  m->Memory[kBuf + 3] = 77;
  m->GR[1] = 11;
  m->GR[2] = 22;
  const std::string out = RunProgram("ABC\n");
  EXPECT_EQ(m->Memory[kLen], 3);
  EXPECT_EQ(Cells(kBuf, 3), u"ABC");
  EXPECT_EQ(m->Memory[kBuf + 3], 77);  // no terminator
  EXPECT_EQ(m->GR[1], 11);             // the macro keeps the registers
  EXPECT_EQ(m->GR[2], 22);
  EXPECT_EQ(m->SP, 0xFFFF);
  EXPECT_TRUE(Has(out,
                  "The comet2 starts running, please wait for a moment ...,\n\n"
                  "OS: Input some letters from your keyboard. \n"
                  "(Input Requirement by a Macro Instruction of IN) \n"
                  "Press Enter key or Ctrl + Z Keys at the end of your input. \n"
                  "and it has come to an end of the program\nin "))
      << out;
}

TEST_F(Comet2Os, InPromptInJapanese) {
  m->dispLang = 0;
  LoadServices(1, 1);
  const std::string out = RunProgram("x\n");
  EXPECT_TRUE(Has(out,
                  "COMET2 実行中 \nOS: 文字を入力してください。 \n"
                  "マクロ命令( IN )による入力要求。\n"
                  "Enter キイ を押す 又は CTRL + Z を押す と 入力終了。 \n--> 終了\n"))
      << out;
}

TEST_F(Comet2Os, InOfAnEmptyLineOrAtTheEndOfInputStoresZero) {
  LoadServices(1, 2);
  m->Memory[kLen] = 9;
  m->Memory[kBuf] = 'Q';
  RunProgram("\n");  // an empty line, then the end of the input
  EXPECT_EQ(m->Memory[kLen], 0);
  EXPECT_EQ(m->Memory[kBuf], 'Q');
  EXPECT_EQ(m->PR, 25);  // both INs done, the RET reached

  m->Memory[kLen] = 9;
  const std::string out = RunProgram("");
  EXPECT_EQ(m->Memory[kLen], 0);
  EXPECT_TRUE(Has(out, kEndE));
}

TEST_F(Comet2Os, InCutsALongLineAt256AndDropsTheRest) {
  LoadServices(1, 2);
  std::string input(300, 'A');
  input[255] = 'B';
  input[256] = 'C';
  input += "\nXYZ\n";
  RunProgram(input);
  // The second IN overwrote the first three cells and the length.
  EXPECT_EQ(m->Memory[kLen], 3);
  EXPECT_EQ(Cells(kBuf, 3), u"XYZ");
  EXPECT_EQ(m->Memory[kBuf + 255], 'B');
  EXPECT_EQ(m->Memory[kBuf + 256], 0);

  SetUp();
  LoadServices(1, 1);
  RunProgram(std::string(300, 'A') + "\n");
  EXPECT_EQ(m->Memory[kLen], 256);
}

TEST_F(Comet2Os, InDecodesUtf8AndCountsSixteenBitUnits) {
  LoadServices(1, 1);
  RunProgram("日本語\r\n");
  EXPECT_EQ(m->Memory[kLen], 3);
  EXPECT_EQ(Cells(kBuf, 3), u"日本語");

  SetUp();
  LoadServices(1, 1);
  RunProgram("a\U0001F600\n");  // outside the BMP: a surrogate pair
  EXPECT_EQ(m->Memory[kLen], 3);
  EXPECT_EQ(m->Memory[kBuf + 1], 0xD83D);
  EXPECT_EQ(m->Memory[kBuf + 2], 0xDE00);

  // 100 characters of three bytes: the cut at 256 bytes keeps 85 whole ones
  // and a broken last one.
  SetUp();
  LoadServices(1, 1);
  std::string input;
  for (int i = 0; i < 100; ++i) input += "あ";
  RunProgram(input + "\n");
  EXPECT_EQ(m->Memory[kLen], 86);
  EXPECT_EQ(m->Memory[kBuf + 84], u'あ');
  EXPECT_EQ(m->Memory[kBuf + 85], 0xFFFD);
}

TEST_F(Comet2Os, InNearTheTopOfMemoryStopsAtTheStorage) {
  // SVC 1 by hand with GR1 = #FFF0: the cells above the storage are left out.
  m->GR[1] = 0xFFF0;
  m->GR[2] = 50;
  Load({0, Op(0xF0), 1, Op(0x81)});
  RunProgram(std::string(200, 'z') + "\n");
  EXPECT_EQ(m->Memory[50], 200);
  EXPECT_EQ(m->Memory[0xFFF0], 'z');
  EXPECT_EQ(m->Memory[kMemoryCells - 1], 'z');
}

// ---- OUT ------------------------------------------------------------------

TEST_F(Comet2Os, OutWritesTheCellsAsCharacters) {
  LoadServices(2, 1);
  const std::u16string text = u"Hi 日本";
  m->Memory[kLen] = static_cast<int32_t>(text.size());
  for (size_t i = 0; i < text.size(); ++i) m->Memory[kBuf + i] = text[i];
  m->Memory[kBuf + 1] |= 0x10000;  // only the low 16 bits count
  std::string out = RunProgram();
  EXPECT_TRUE(Has(out, "...,\n\nOS: Output by a Macro Instruction of OUT. \nHi 日本\nand it has come")) << out;

  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out, "COMET2 実行中 \nOS: マクロ命令( OUT )による出力 \nHi 日本\n--> 終了\n")) << out;
}

TEST_F(Comet2Os, OutOfLengthZeroOrBelowWritesTheHeadingAndABlankLine) {
  for (int32_t n : {0, -1}) {
    SetUp();
    LoadServices(2, 1);
    m->Memory[kLen] = n;
    m->Memory[kBuf] = 'X';
    const std::string out = RunProgram();
    EXPECT_TRUE(Has(out, "OS: Output by a Macro Instruction of OUT. \n\nand it has come")) << out;
  }
}

TEST_F(Comet2Os, OutHasNoLimitOf256) {
  LoadServices(2, 1);
  m->Memory[kLen] = 300;
  for (int i = 0; i < 300; ++i) m->Memory[kBuf + i] = 'a' + i % 26;
  const std::string out = RunProgram();
  std::string expected;
  for (int i = 0; i < 300; ++i) expected += static_cast<char>('a' + i % 26);
  EXPECT_TRUE(Has(out, "OUT. \n" + expected + "\n"));
}

TEST_F(Comet2Os, OutJoinsSurrogatePairsAndReplacesALoneOne) {
  LoadServices(2, 1);
  const std::vector<int32_t> cells = {0xD83D, 0xDE00, 'x', 0xD800, 'y', 0xDC00};
  m->Memory[kLen] = static_cast<int32_t>(cells.size());
  for (size_t i = 0; i < cells.size(); ++i) m->Memory[kBuf + i] = cells[i];
  const std::string out = RunProgram();
  EXPECT_TRUE(Has(out, "OUT. \n\xF0\x9F\x98\x80x\xEF\xBF\xBDy\xEF\xBF\xBD\n")) << out;
}

TEST_F(Comet2Os, OutWithALengthBeyondTheMemoryDoesNotCrash) {
  m->GR[1] = 0xFFFF;
  m->GR[2] = 50;
  m->Memory[50] = 0x7FFFFFFF;
  m->Memory[0xFFFF] = 'E';
  Load({0, Op(0xF0), 2, Op(0x81)});
  const std::string out = RunProgram();
  EXPECT_TRUE(Has(out, "OUT. \nE")) << out;
  EXPECT_TRUE(Has(out, kEndE));
}

// ---- other SVC numbers ----------------------------------------------------

TEST_F(Comet2Os, AnotherSvcNumberWritesANoteAndActsAsNop) {
  for (int i = 0; i < 8; ++i) m->GR[i] = 10 + i;
  m->Fsign = 1;
  Load({0, Op(0xF0), 3, Op(0x81)});
  std::string out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "...,\n3 works as NOP does. Because there is no description about 3 in Spec.of CASL2. "
                  "and it has come"))
      << out;
  for (int i = 0; i < 8; ++i) EXPECT_EQ(m->GR[i], 10 + i);
  EXPECT_EQ(m->Fsign, 1);
  EXPECT_EQ(m->PR, 3);

  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out, "svc 3 は仕様に記述がないので、NOP と同じ動作をするものとした。 --> 終了\n")) << out;
}

// ---- the guard of PUSH ----------------------------------------------------

// LAD GR1,n ; 3: PUSH 7 ; SUBA GR1,ONE ; JNZ 3 ; POP GR2 ; RET ; ONE at 20.
void LoadPushes(int n) {
  const std::vector<int32_t> words = {0, Op(0x12, 1), n, Op(0x70), 7, Op(0x21, 1), 20, Op(0x62), 3, Op(0x71, 2), Op(0x81)};
  int a = 0;
  for (int32_t w : words) m->Memory[a++] = w;
  m->Memory[20] = 1;
  b->MaxMemory = 21;
}

TEST_F(Comet2Os, The501stPushIsRefusedAndTheRunGoesOn) {
  m->GR[2] = 99;
  LoadPushes(500);
  std::string out = RunProgram();
  EXPECT_FALSE(Has(out, "stack area"));
  EXPECT_EQ(m->stackArea[500], 7);
  EXPECT_EQ(m->GR[2], 7);

  SetUp();
  m->GR[2] = 99;
  LoadPushes(501);
  out = RunProgram();
  const std::string message =
      "The virtual OS has terminated the comet2. Because the comet2 was going to save a data "
      "into an inappropriate memory area beyond the so-called stack area. "
      "It has happened when an opcode at address of #0003 is executed. "
      "The stack area is allocated between #FFFF and (#FFFF(hex)-500(dec)) in memory. ";
  EXPECT_EQ(Count(out, message), 1u) << out;
  EXPECT_TRUE(Has(out, kEndE));
  EXPECT_EQ(m->GR[2], 0);  // the cell past the last one written
  EXPECT_EQ(m->SP, 65535 - 501 + 1);
  EXPECT_EQ(m->PR, 10);

  SetUp();
  m->dispLang = 0;
  LoadPushes(502);
  out = RunProgram();
  EXPECT_EQ(Count(out,
                  "スタックエリア（このシミレイターでは 500 個）をこえて"
                  "スタックしようとしたので実行を中止しました。#0003=Dec3番地の実行で発生。"),
            2u)
      << out;
}

TEST_F(Comet2Os, StackPushAlone) {
  m->SP = 0xFFFF;
  EXPECT_EQ(stackPush(*m, 0x12345), 0);
  EXPECT_EQ(m->SP, 0xFFFE);
  EXPECT_EQ(m->stackArea[1], 0x2345);
  m->SP = 65535 - 500;
  m->PR = 41;
  std::string out;
  con::SetCapture(&out);
  EXPECT_EQ(stackPush(*m, 1), 9999);
  con::SetCapture(nullptr);
  EXPECT_EQ(m->SP, 65535 - 501);
  EXPECT_TRUE(Has(out, "of #0028 is executed."));
}

// ---- the stops at the end of the stack's storage --------------------------

TEST_F(Comet2Os, ADeepCallChainStopsAtTheEndOfTheStorage) {
  Load({0, Op(0x80), 1});  // 1: CALL 1, for ever
  std::string out = RunProgram();
  EXPECT_TRUE(Has(out, "The Stack Pointer(SP) has left the stack area of this simulator (510 words). ")) << out;
  EXPECT_TRUE(Has(out, "It has happened when an opcode at address of #0001 (1(dec)) is executed. "));
  EXPECT_TRUE(Has(out, kEndE));
  EXPECT_EQ(m->callDepth, 509);
  EXPECT_EQ(m->SP, 65535 - 509);
  EXPECT_EQ(m->PR, 1);

  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out, "スタックポインター(SP)がこのシミレーターのスタック領域（510 語）の外側を指した")) << out;
}

TEST_F(Comet2Os, PopsAndCallsBeyondTheStorageStopTheRun) {
  Load({0, Op(0x71, 1), Op(0x64), 1});  // 1: POP GR1 ; JUMP 1
  std::string out = RunProgram();
  EXPECT_TRUE(Has(out, "has left the stack area of this simulator")) << out;
  EXPECT_EQ(m->SP, 0x10000);
  EXPECT_EQ(m->execCount[1], 2);

  // Refused pushes move SP on below the storage; a POP there stops.
  SetUp();
  LoadPushes(600);
  out = RunProgram();
  EXPECT_EQ(Count(out, "beyond the so-called stack area."), 100u);
  EXPECT_TRUE(Has(out, "has left the stack area of this simulator"));
  EXPECT_EQ(m->PR, 9);
}

TEST_F(Comet2Os, RetWithSpPastTheTopEndsTheRun) {
  // CALL 10 ; RET ; 10: POP GR1 ; POP GR1 ; RET
  Load({0, Op(0x80), 10, Op(0x81)});
  Load({Op(0x71, 1), Op(0x71, 1), Op(0x81)}, 10);
  const std::string out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "SP=#10000 An unknown error has happened in Tcomet2::ret581(), ret681. "
                  "and it has come to an end of the program\nin "))
      << out;
  EXPECT_EQ(m->PR, 12);
  EXPECT_EQ(m->callDepth, 0);
}

// ---- the guard of an indexed ST -------------------------------------------

// LAD GR3,3 ; LAD GR2,0 ; 5: ST GR1,15,GR2 ; LAD GR2,10,GR2 ; SUBA GR3,ONE ;
// JNZ 5 ; RET ; ONE at 19. The stores go to 15, 25 and 35; 20 words are
// reserved.
void LoadStores() {
  const std::vector<int32_t> words = {0,  Op(0x12, 3), 3, Op(0x12, 2), 0, Op(0x11, 1, 2), 15, Op(0x12, 2, 2), 10,
                                      Op(0x21, 3), 19, Op(0x62), 5, Op(0x81)};
  int a = 0;
  for (int32_t w : words) m->Memory[a++] = w;
  m->Memory[19] = 1;
  b->MaxMemory = 20;
}

TEST_F(Comet2Os, AnIndexedStoreBeyondTheReservedAreaWarnsOncePerRun) {
  m->GR[1] = 77;
  LoadStores();
  std::string out = RunProgram();
  EXPECT_EQ(Count(out, "Warning: Out of Range"), 1u);
  EXPECT_TRUE(Has(out,
                  "\nWarning: Out of Range\n"
                  "Your reserved memory is 20 words in size. \n"
                  "A data has stored in an address of 25(Dec).\n"
                  "The address is out of the reserved area.\n"
                  "Is this your intention?  It has occured when a machine code of \n"
                  "(Address, Machine Code)=(#0005, #1112)\n"
                  "is done at the 2nd execution. \n"))
      << out;
  EXPECT_EQ(m->Memory[15], 77);
  EXPECT_EQ(m->Memory[25], 77);
  EXPECT_EQ(m->Memory[35], 77);
  EXPECT_TRUE(Has(out, kEndE));

  // The marker lives for one run.
  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "\n\n 警告： 確保した（comet2の）メモリ領域以外への書き込み！\n"
                  "あなたのプログラムが確保したメモリ領域は 19 （10進数）番地までです。\n"
                  "これを超えて 25 （10進数）番地にデータがストア（ST）されました。\n"
                  "これはあなたが意図したものですか。\n"
                  "(Address, Machine Code）=（#0005, #1112）を\n"
                  "2回目に実行した時に発生しました。 \n"))
      << out;
}

TEST_F(Comet2Os, AnIndexedStoreAt65000StopsEvenAfterTheWarning) {
  m->GR[1] = 77;
  m->GR[2] = 10;
  m->GR[4] = 65000;
  // ST GR1,20,GR2 (warns) ; ST GR1,0,GR4 (stops) ; RET
  Load({0, Op(0x11, 1, 2), 20, Op(0x11, 1, 4), 0, Op(0x81)});
  std::string out = RunProgram();
  EXPECT_TRUE(Has(out, "Warning: Out of Range"));
  EXPECT_TRUE(Has(out,
                  "Terminated!\nThe COMET2 has 65536 words in memory. \n"
                  "When an opcode at #0003 was executed, "
                  "a virtual OS in drillasm has detected the comet2 was "
                  "going to store a data beyond the maximam address of 65000. "
                  "So the OS has terminated the comet2;  otherwise the comet2 would get out of control. \n"
                  "and it has come to an end of the program\nin "))
      << out;
  EXPECT_EQ(m->Memory[65000], 0);
  EXPECT_EQ(m->PR, 4);
  EXPECT_EQ(m->effAdr, 65000);

  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "実行時エラー：　中止\n"
                  "#0003 = 3 （10進数）番地の命令の実行時 65000 番地を超えてデータを"
                  "ストア（ＳＴ）しようとしました。"
                  "これは危険なので暴走をしないように実行を停止させました。\n--> 終了\n"))
      << out;
}

TEST_F(Comet2Os, AStoreWithoutIndexNeverReachesTheGuard) {
  m->GR[1] = 5;
  Load({0, Op(0x11, 1), 65500, Op(0x81)});
  const std::string out = RunProgram();
  EXPECT_FALSE(Has(out, "Terminated!"));
  EXPECT_FALSE(Has(out, "Warning"));
  EXPECT_EQ(m->Memory[65500], 5);
}

TEST_F(Comet2Os, Ordinals) {
  EXPECT_EQ(OrdinalA(1), "1st");
  EXPECT_EQ(OrdinalA(2), "2nd");
  EXPECT_EQ(OrdinalA(3), "3rd");
  EXPECT_EQ(OrdinalA(4), "4th");
  EXPECT_EQ(OrdinalA(11), "11th");
  EXPECT_EQ(OrdinalA(21), "21th");
  EXPECT_EQ(OrdinalA(0), "0th");
}

}  // namespace
}  // namespace comet2_test
