// The cycle of the run: the opening texts, the counts, and every stop with
// its sentences and what follows it.
#include <string>
#include <vector>

#include "comet2_fixture.h"
#include "reports/TimeVcl/time_vcl.h"

namespace comet2_test {
namespace {

class Comet2Run : public Comet2Test {};

TEST_F(Comet2Run, OpeningAndEndingInEnglishWithTheBootLinesOnce) {
  bootShown = -99;
  Load({0, Op(0x81)});
  const std::string first = RunProgram();
  EXPECT_EQ(first.rfind(
                "\nA small OS has been implemented in drillasm. \n"
                "The OS starts booting comet2.\n"
                "The comet2 starts running, please wait for a moment ...,\n"
                "and it has come to an end of the program\nin ",
                0),
            0u)
      << first;
  EXPECT_EQ(first.substr(first.size() - 2), ". ");
  const std::string second = RunProgram();
  EXPECT_FALSE(Has(second, "booting"));
  EXPECT_TRUE(Has(second, "The comet2 starts running, please wait for a moment ...,\n"));
  EXPECT_EQ(m->PR, 1);  // a top-level RET leaves PR at itself
}

TEST_F(Comet2Run, OpeningAndEndingInJapanese) {
  m->dispLang = 0;
  bootShown = -99;
  Load({0, Op(0x81)});
  const std::string out = RunProgram();
  EXPECT_EQ(out.rfind("\n演算実行 開始、しばらくお待ちください。\nCOMET2 実行中 --> 終了\n", 0), 0u) << out;
  EXPECT_EQ(out.substr(out.size() - 14), " 実行時間 ");
  EXPECT_EQ(bootShown, -99);  // the Japanese opening has no boot lines
}

int g_qpcCalls = 0;
int64_t FakeQpc() { return g_qpcCalls++ == 0 ? 1000 : 1000 + 12340000; }  // 12.34 ms apart

TEST_F(Comet2Run, RunTimeComesFromTheStampsAroundTheRun) {
  const TickSource saved = timeVcl->ticks;
  const int savedClock = timeVcl->TimeFuncInt;
  timeVcl->SetTimeFuncByInt(0);
  timeVcl->ticks.qpcNow = FakeQpc;
  g_qpcCalls = 0;
  Load({0, Op(0x81)});
  std::string out = RunProgram();
  EXPECT_EQ(out.substr(out.size() - 14), "in 12.3 msec. ") << out;

  // An unknown code takes no end stamp: the former one stands.
  timeVcl->qpcStamps[TimeVcl::RunEnd] = -5;
  Load({0, Op(0x13)});
  RunProgram();
  EXPECT_EQ(timeVcl->qpcStamps[TimeVcl::RunEnd], -5);

  timeVcl->ticks = saved;
  timeVcl->SetTimeFuncByInt(savedClock);
}

TEST_F(Comet2Run, CountsFirstWordsOnlyAndClearsThemAtTheStart) {
  m->execCount[30] = 5;  // from an earlier run
  // LAD GR1,3 ; 3: SUBA GR1,ONE ; JNZ 3 ; RET ; ONE at 10
  Load({0, Op(0x12, 1), 3, Op(0x21, 1), 10, Op(0x62), 3, Op(0x81)});
  Load({1}, 10);
  RunProgram();
  const std::vector<int32_t> expected = {1, 1, 0, 3, 0, 3, 0, 1, 0, 0, 0};
  for (size_t a = 0; a < expected.size(); ++a) EXPECT_EQ(m->execCount[a], expected[a]) << "address " << a;
  EXPECT_EQ(m->execCount[30], 0);
  EXPECT_EQ(m->maxExecCount, 0);  // the statistics come later

  RunStatistics(*m);
  EXPECT_EQ(m->maxExecCount, 3);
  EXPECT_EQ(m->execCountLog, 0);
}

TEST_F(Comet2Run, StatisticsScanTheFirst65035CountsAndRoundTheLogarithm) {
  m->execCount[65034] = 40;
  m->execCount[65035] = 1000;  // beyond the scan
  RunStatistics(*m);
  EXPECT_EQ(m->maxExecCount, 40);
  EXPECT_EQ(m->execCountLog, 2);  // log10(40) = 1.6
  m->execCount[65034] = 31;
  RunStatistics(*m);
  EXPECT_EQ(m->execCountLog, 1);  // 1.49
  m->execCount[65034] = 0;
  RunStatistics(*m);
  EXPECT_EQ(m->maxExecCount, 0);
  EXPECT_EQ(m->execCountLog, 0);
}

TEST_F(Comet2Run, RunningOffTheEndOverZeroWordsGivesThePrStop) {
  Load({0, Op(0x12, 1), 5});  // LAD GR1,5 and then only zero words
  std::string out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "Runtime Error: The comet2 is terminated！\n"
                  "Because the Program Register(PR) has exceeded the maximum memory address of 64500. "
                  "Your program cannnot access any address over there. "
                  "It might haved executed a lot of opcodes in vain in the higher address area. "
                  "The comet2 has 65536 words in memory in truth. "
                  "But this simulator has only 64000 memories for the sake of simplicity. "
                  "PR = #FDE9 = 65001(dec) \n"
                  "and it has come to an end of the program\nin "))
      << out;
  EXPECT_FALSE(Has(out, "RET"));
  EXPECT_EQ(m->PR, 65001);
  EXPECT_EQ(m->execCount[65000], 1);
  EXPECT_EQ(m->execCount[3], 1);

  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "実行時エラー：実行途中停止！\n"
                  "プログラムレジスター(PR)が この COMET2 シミレーター の 最大メモリー 64700 番地を超えました。 "
                  "さらに、最大アドレスを超えてメモリにアクセスしようとしたので実行を中止しました。  "
                  "本来の COMET2 では もちろん PR = 65535 までアクセス可能ですが、Drill Asm では制限を設けています。"
                  "プログラムを工夫修正してご利用ください。 "
                  "PR = #FDE9 = 65001（十進数）番地 Run. "
                  "おそらく、プログラムの定義域を飛び出して、メモリ後半にある "
                  "NOP=#0000 の連続部分が実行されたものと考えられます。--> 終了\n"))
      << out;
}

TEST_F(Comet2Run, JumpsAboveTheCeiling) {
  // JUMP 65001: the PR stop; JUMP 65535: the same; JUMP 65000 runs a NOP there first.
  for (int32_t target : {65001, 65535}) {
    SetUp();
    Load({0, Op(0x64), target});
    const std::string out = RunProgram();
    EXPECT_TRUE(Has(out, "has exceeded the maximum memory address")) << target;
    EXPECT_EQ(m->PR, target);
  }
  SetUp();
  Load({0, Op(0x64), 65000});
  RunProgram();
  EXPECT_EQ(m->execCount[65000], 1);
  EXPECT_EQ(m->PR, 65001);
}

TEST_F(Comet2Run, RegisterPreCheckByCode) {
  struct Case {
    int32_t word;
    bool stops;
  };
  const std::vector<Case> cases = {
      {0xFFFF, true},             // data reached by accident
      {Op(0x10, 8, 0), true},     // LD with r 8
      {Op(0x12, 0, 9), true},     // LAD with x 9
      {Op(0x13, 0, 8), true},     // an unknown code with a high nibble: the register stop first
      {Op(0x70, 8, 0), false},    // PUSH: r is not looked at
      {Op(0x70, 0, 8), true},     // PUSH: x is
      {Op(0x64, 15, 0), false},   // JUMP: r is not looked at
      {Op(0x66, 0, 12), true},    // JOV: x is
      {Op(0x80, 8, 0), false},    // CALL: r is not looked at
      {Op(0xF0, 0, 8), true},     // SVC: x is
      {Op(0x71, 0, 8), false},    // POP: x is not looked at
      {Op(0x71, 8, 0), true},     // POP: r is
      {Op(0x81, 8, 8), false},    // RET: neither
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << c.word);
    SetUp();
    // The word at 1; at 2 an address of 10 for the two-word forms; RET at 10.
    Load({0, c.word, 10, Op(0x81)});
    Load({Op(0x81)}, 10);
    const std::string out = RunProgram();
    EXPECT_EQ(Has(out, "There is a machine code to specify"), c.stops) << out;
    if (c.stops) {
      EXPECT_EQ(m->execCount[1], 0);  // stopped before the count
    }
    EXPECT_TRUE(Has(out, kEndE));
  }
}

TEST_F(Comet2Run, RegisterStopTextsInBothLanguages) {
  Load({0, 0xFFFF});
  std::string out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "Runtime Error: The comet2 is terminated! There is a machine code to specify "
                  "a non-general register excluding GR0-GR7.  Or the instruction code has been rewriten "
                  "during the execution of the comet2. The comet2 has been terminated "
                  "because an opcode of #FFFF is going to be executed. "
                  "Program Register(PR)=#0001= 1(Address in Decimal Number).  "
                  "and it has come to an end of the program\nin "))
      << out;
  EXPECT_EQ(m->PR, 1);
  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "実行時エラー：実行途中停止\n"
                  "機械語命令が GR0-GR7 以外のレジスターを指定している。 "
                  "あるいは、機械語命令が実行中に変更された。 "
                  "命令コード #FFFF を実行しようとしたのでCOMET2を停止させました。 "
                  "Program Register(PR)=#0001= 1 （十進数）番地  --> 終了\n"))
      << out;
}

TEST_F(Comet2Run, NopStopForANonZeroCellWithCodeZero) {
  Load({0, 0x0010});
  std::string out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "\nRuntime Error: Forced Termination of comet2 by OS:\n"
                  "An unknown error has happened while comet2 is running. The comet2 is going to "
                  "execute #0010 at an address of 1 (Dec). "
                  "It is strange. Because NOP machine code is not #0010 but #0000. "
                  "Please check your source code carefully, you will find out this main cause in it.\n\n"
                  "and it has come to an end of the program\nin "))
      << out;
  EXPECT_EQ(m->execCount[1], 1);
  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "\n実行時エラー：COMET2 を強制終了させました。\nソースコードを見直してください。\n"
                  "An unknown error has happened while comet2 is running."))
      << out;
  EXPECT_TRUE(Has(out, "you will find out this main cause in it.\n\n--> 終了\n"));

  // A nibble above 7 in a NOP is no register stop, and an upper half counts.
  for (int32_t w : {0x0088, 0x10000}) {
    SetUp();
    Load({0, w});
    out = RunProgram();
    EXPECT_TRUE(Has(out, "Because NOP machine code is not")) << w;
    EXPECT_FALSE(Has(out, "There is a machine code to specify"));
  }
}

TEST_F(Comet2Run, UnknownCodeReturnsAtOnce) {
  for (int32_t w : {Op(0x13), Op(0x28, 7, 7), Op(0x37), Op(0xFF), Op(0x15, 1, 2)}) {
    SetUp();
    Load({0, w});
    const std::string out = RunProgram();
    EXPECT_TRUE(Has(out, "Because a non-registered machine code of #" + Hex4(w).substr(1))) << out;
    EXPECT_FALSE(Has(out, kEndE));
    EXPECT_EQ(out.substr(out.size() - 49), "An unknown error has happened in Tcomet2::Run(). ");
    EXPECT_EQ(m->execCount[1], 1);
    EXPECT_EQ(m->PR, 1);
  }
  SetUp();
  Load({0, Op(0x13)});
  std::string out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "\nRuntime Error: The comet2 has been terminated by OS.  "
                  "Because a non-registered machine code of #1300 is going to be executed.  "
                  "Program Register(pr)=#0001=dec1 \n"
                  "An unknown error has happened in Tcomet2::Run(). "))
      << out;
  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "\n実行時エラー： comet2 を強制終了させました。\n"
                  "登録されていない命令コード #1300 を実行しようとしたので実行を中止しました。\n"
                  "Program Register(pr)=#0001=dec1\n"
                  " An unknown error has happened in Tcomet2::Run(). "))
      << out;
  EXPECT_FALSE(Has(out, "--> 終了"));
}

TEST_F(Comet2Run, LoadBoundAt65000) {
  m->Memory[65000] = 0x1234;
  Load({0, Op(0x10, 0), 0xFDE8, Op(0x81)});  // LD GR0,#FDE8 reads address 65000
  std::string out = RunProgram();
  EXPECT_EQ(m->GR[0], 0x1234);
  EXPECT_TRUE(Has(out, kEndE));

  SetUp();
  m->Memory[65001] = 7;
  Load({0, Op(0x10, 0), 0xFDE9, Op(0x81)});  // LD GR0,#FDE9: the load stop
  out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "\nRuntime Error: --> OS: Forced Termination of the comet2.  "
                  "The virtual OS has detected that the comet2 is going to access a memory beyond tMaxMemory. \n"
                  "PR=1 (address), Memory[1]=#1000=4096(dec) and \n"
                  "PR=2 (address), Memory[2]=#FDE9=65001(dec) \n"
                  "Memory[65001]=#0007=7(dec). \n"))
      << out;
  EXPECT_FALSE(Has(out, "and it has come to an end"));
  EXPECT_EQ(out.substr(out.size() - 2), ". ");  // the time line follows
  EXPECT_EQ(m->PR, 2);                          // at the second word
  EXPECT_EQ(m->GR[0], 0);

  m->dispLang = 0;
  out = RunProgram();
  EXPECT_TRUE(Has(out,
                  "\n実行時エラー：途中中止：  tMaxMemory を超えてロードしようとしたので実行を中止しました。 \n"
                  "PR=1 番地の Memory[1]=#1000=4096(dec) と \n"
                  "PR=2 番地の Memory[2]=#FDE9=65001(dec)\n を実行により発生。 \n"
                  "Memory[65001]=#0007=7(dec). \n"))
      << out;
  EXPECT_FALSE(Has(out, "--> 終了"));
  EXPECT_EQ(out.substr(out.size() - 14), " 実行時間 ");
}

TEST_F(Comet2Run, LoadBoundWithIndexNamesTheSecondWordAlone) {
  m->GR[1] = 2;
  m->Memory[64999] = 5;
  // ADDA GR2,64999,GR1: EA 65001
  Load({0, Op(0x20, 2, 1), 64999, Op(0x81)});
  const std::string out = RunProgram();
  EXPECT_TRUE(Has(out, "Memory[64999]=#0005=5(dec). \n")) << out;
  EXPECT_EQ(m->effAdr, 65001);
}

TEST_F(Comet2Run, EveryReadingInstructionIsBounded) {
  for (int code : {0x10, 0x20, 0x21, 0x22, 0x23, 0x30, 0x31, 0x32, 0x40, 0x41}) {
    SetUp();
    Load({0, Op(code, 1), 65001, Op(0x81)});
    EXPECT_TRUE(Has(RunProgram(), "is going to access a memory beyond tMaxMemory")) << code;
  }
  // Shifts, LAD and jumps are not.
  for (int code : {0x12, 0x50, 0x52}) {
    SetUp();
    Load({0, Op(code, 1), 65001, Op(0x81)});
    EXPECT_FALSE(Has(RunProgram(), "beyond tMaxMemory")) << code;
  }
}

}  // namespace
}  // namespace comet2_test
