// The cycle of the run: the opening texts, the counts, and every stop with
// its sentences and what follows it.
#include "comet2_fixture.h"
#include "reports/TimeVcl/time_vcl.h"

namespace comet2_test {
namespace {

class Comet2Run : public Comet2Test {};

TEST_F(Comet2Run, OpeningsEndingsAndCounts) {
  const std::string running = "The comet2 starts running, please wait for a moment ...,\n";
  RunTable({
      // The boot lines once in the process: the run moves bootShown on from -99.
      {"opening with the boot lines", {0, kRet}, {{"BOOT", -99}}, {{"PR", 1}, {"BOOT", -98}},
       {"\nA small OS has been implemented in drillasm. \nThe OS starts booting comet2.\n" + running + kEndE}, {},
       "", ". "},
      {"opening without them", {0, kRet}, {}, {}, {running + kEndE}, {"booting"}},
      {"opening, Japanese", {0, kRet}, {{"BOOT", -99}, {"LANG", 0}}, {{"BOOT", -99}},
       {"\n演算実行 開始、しばらくお待ちください。\nCOMET2 実行中 --> 終了\n"}, {}, "", " 実行時間 "},
      // LAD GR1,3 ; 3: SUBA GR1,ONE ; JNZ 3 ; RET ; ONE at 10. First words alone count; old counts go.
      {"counts", {0, Op(0x12, 1), 3, Op(0x21, 1), 10, Op(0x62), 3, kRet}, {{"M10", 1}, {"X64999", 5}},
       {{"X0", 1}, {"X1", 1}, {"X2", 0}, {"X3", 3}, {"X4", 0}, {"X5", 3}, {"X6", 0}, {"X7", 1}, {"X8", 0}, {"X64999", 0}}},
  });
}

TEST_F(Comet2Run, StatisticsScanTheFirst65035CountsAndRoundTheLogarithm) {
  for (auto [top, log] : {std::pair{40, 2}, {31, 1}, {0, 0}}) {
    m->execCount.fill(0);
    m->execCount[65034] = top;
    m->execCount[65035] = 1000;
    RunStatistics(*m);
    EXPECT_EQ(m->maxExecCount, top);
    EXPECT_EQ(m->execCountLog, log);
  }
}

int g_qpcCalls = 0;
int64_t FakeQpc() { return g_qpcCalls++ == 0 ? 1000 : 1000 + 12340000; }  // 12.34 ms apart

TEST_F(Comet2Run, RunTimeComesFromTheStampsAroundTheRunAndAnUnknownCodeTakesNone) {
  const TickSource saved = timeVcl->ticks;
  const int savedClock = timeVcl->TimeFuncInt;
  timeVcl->SetTimeFuncByInt(0);
  timeVcl->ticks.qpcNow = FakeQpc;
  g_qpcCalls = 0;
  RunTable({{"the time", {0, kRet}, {}, {}, {}, {}, "", "in 12.3 msec. "}});
  timeVcl->qpcStamps[TimeVcl::RunEnd] = -5;
  RunTable({{"an unknown code", {0, Op(0x13)}, {}, {}, {"Tcomet2::Run(). "}}});
  EXPECT_EQ(timeVcl->qpcStamps[TimeVcl::RunEnd], -5);
  timeVcl->ticks = saved;
  timeVcl->SetTimeFuncByInt(savedClock);
}

const std::string kPrStopE =
    "Runtime Error: The comet2 is terminated！\nBecause the Program Register(PR) has exceeded the maximum memory "
    "address of 64500. Your program cannnot access any address over there. It might haved executed a lot of opcodes "
    "in vain in the higher address area. The comet2 has 65536 words in memory in truth. But this simulator has only "
    "64000 memories for the sake of simplicity. PR = #FDE9 = 65001(dec) \n" + kEndE;
const std::string kRegStop = "There is a machine code to specify";
const std::string kNopStopTail =
    "An unknown error has happened while comet2 is running. The comet2 is going to execute #0010 at an address "
    "of 1 (Dec). It is strange. Because NOP machine code is not #0010 but #0000. "
    "Please check your source code carefully, you will find out this main cause in it.\n\n";
const std::string kUnknownTail = "An unknown error has happened in Tcomet2::Run(). ";
const std::string kLoadStop = "is going to access a memory beyond tMaxMemory";

TEST_F(Comet2Run, TheStopsWithTheirTextsInBothLanguages) {
  const std::vector<int32_t> offTheEnd = {0, Op(0x12, 1), 5};  // LAD GR1,5 and then only zero words
  const std::vector<int32_t> ld65001 = {0, Op(0x10, 0), 0xFDE9, kRet};
  std::vector<Prog> table = {
      {"running off the end", offTheEnd, {}, {{"PR", 65001}, {"X65000", 1}, {"X3", 1}}, {kPrStopE}, {"RET"}},
      {"running off the end, Japanese", offTheEnd, {{"LANG", 0}}, {},
       {"実行時エラー：実行途中停止！\nプログラムレジスター(PR)が この COMET2 シミレーター の 最大メモリー 64700 "
        "番地を超えました。 さらに、最大アドレスを超えてメモリにアクセスしようとしたので実行を中止しました。  "
        "本来の COMET2 では もちろん PR = 65535 までアクセス可能ですが、Drill Asm では制限を設けています。"
        "プログラムを工夫修正してご利用ください。 PR = #FDE9 = 65001（十進数）番地 Run. "
        "おそらく、プログラムの定義域を飛び出して、メモリ後半にある NOP=#0000 の連続部分が実行されたものと"
        "考えられます。--> 終了\n"}},
      {"JUMP 65001", {0, Op(0x64), 65001}, {}, {{"PR", 65001}}, {"PR = #FDE9 = 65001(dec) \n" + kEndE}},
      {"JUMP 65535", {0, Op(0x64), 65535}, {}, {{"PR", 65535}}, {"has exceeded the maximum memory address"}},
      {"JUMP 65000 runs the NOP there", {0, Op(0x64), 65000}, {}, {{"PR", 65001}, {"X65000", 1}}},
      {"register stop", {0, 0xFFFF}, {}, {{"PR", 1}, {"X1", 0}},
       {"Runtime Error: The comet2 is terminated! There is a machine code to specify a non-general register "
        "excluding GR0-GR7.  Or the instruction code has been rewriten during the execution of the comet2. "
        "The comet2 has been terminated because an opcode of #FFFF is going to be executed. "
        "Program Register(PR)=#0001= 1(Address in Decimal Number).  " + kEndE}},
      {"register stop, Japanese", {0, 0xFFFF}, {{"LANG", 0}}, {},
       {"実行時エラー：実行途中停止\n機械語命令が GR0-GR7 以外のレジスターを指定している。 "
        "あるいは、機械語命令が実行中に変更された。 命令コード #FFFF を実行しようとしたのでCOMET2を停止させました。 "
        "Program Register(PR)=#0001= 1 （十進数）番地  --> 終了\n"}},
      {"NOP stop", {0, 0x0010}, {}, {{"X1", 1}},
       {"\nRuntime Error: Forced Termination of comet2 by OS:\n" + kNopStopTail + kEndE}},
      {"NOP stop, Japanese", {0, 0x0010}, {{"LANG", 0}}, {},
       {"\n実行時エラー：COMET2 を強制終了させました。\nソースコードを見直してください。\n" + kNopStopTail + kEndJ}},
      {"NOP stop, no register stop", {0, 0x0088}, {}, {}, {"Because NOP machine code is not #0088"}, {kRegStop}},
      {"NOP stop on an upper half", {0, 0x10000}, {}, {}, {"Because NOP machine code is not"}, {kRegStop}},
      {"unknown code", {0, Op(0x13)}, {}, {{"PR", 1}, {"X1", 1}},
       {"\nRuntime Error: The comet2 has been terminated by OS.  Because a non-registered machine code of #1300 is "
        "going to be executed.  Program Register(pr)=#0001=dec1 \n" + kUnknownTail},
       {kEndE}, "", kUnknownTail},
      {"unknown code, Japanese", {0, Op(0x13)}, {{"LANG", 0}}, {},
       {"\n実行時エラー： comet2 を強制終了させました。\n登録されていない命令コード #1300 を実行しようとしたので"
        "実行を中止しました。\nProgram Register(pr)=#0001=dec1\n " + kUnknownTail},
       {kEndJ}, "", kUnknownTail},
      {"LD GR0,#FDE8 reads 65000", {0, Op(0x10, 0), 0xFDE8, kRet}, {{"M65000", 0x1234}}, {{"GR0", 0x1234}}},
      {"load stop", ld65001, {{"M65001", 7}}, {{"PR", 2}, {"GR0", 0}},
       {"\nRuntime Error: --> OS: Forced Termination of the comet2.  The virtual OS has detected that the comet2 "
        "is going to access a memory beyond tMaxMemory. \nPR=1 (address), Memory[1]=#1000=4096(dec) and \n"
        "PR=2 (address), Memory[2]=#FDE9=65001(dec) \nMemory[65001]=#0007=7(dec). \n"},
       {"and it has come to an end"}, "", ". "},
      {"load stop, Japanese", ld65001, {{"M65001", 7}, {"LANG", 0}}, {},
       {"\n実行時エラー：途中中止：  tMaxMemory を超えてロードしようとしたので実行を中止しました。 \n"
        "PR=1 番地の Memory[1]=#1000=4096(dec) と \nPR=2 番地の Memory[2]=#FDE9=65001(dec)\n を実行により発生。 \n"
        "Memory[65001]=#0007=7(dec). \n"},
       {kEndJ}, "", " 実行時間 "},
      {"load stop with an index names the second word alone", {0, Op(0x20, 2, 1), 64999, kRet},
       {{"GR1", 2}, {"M64999", 5}}, {{"EA", 65001}}, {"Memory[64999]=#0005=5(dec). \n"}},
  };
  for (int32_t w : {Op(0x28, 7, 7), Op(0x37), Op(0xFF), Op(0x15, 1, 2)})
    table.push_back({"unknown " + Hex4(w), {0, w}, {}, {{"PR", 1}, {"X1", 1}},
                     {"Because a non-registered machine code of " + Hex4(w)}, {kEndE}, "", kUnknownTail});
  for (int code : {0x10, 0x20, 0x21, 0x22, 0x23, 0x30, 0x31, 0x32, 0x40, 0x41})
    table.push_back({"reads are bounded: " + Hex4(code), {0, Op(code, 1), 65001, kRet}, {}, {}, {kLoadStop}});
  for (int code : {0x12, 0x50, 0x52})  // LAD and shifts are not
    table.push_back({"no bound: " + Hex4(code), {0, Op(code, 1), 65001, kRet}, {}, {}, {kEndE}, {kLoadStop}});
  // The register pre-check by code; the word at 1, an address of 10 for the two-word forms, RET at 10.
  for (auto [w, stops] : std::vector<std::pair<int32_t, bool>>{
           {Op(0x10, 8, 0), true}, {Op(0x12, 0, 9), true},    // LD with r 8, LAD with x 9
           {Op(0x13, 0, 8), true},                            // an unknown code with a high nibble
           {Op(0x70, 8, 0), false}, {Op(0x70, 0, 8), true},   // PUSH: x alone is looked at,
           {Op(0x64, 15, 0), false}, {Op(0x66, 0, 12), true}, // and so for the jumps,
           {Op(0x80, 8, 0), false}, {Op(0xF0, 0, 8), true},   // CALL and SVC
           {Op(0x71, 0, 8), false}, {Op(0x71, 8, 0), true},   // POP: r alone
           {Op(0x81, 8, 8), false}}) {                        // RET: neither
    Prog p{"pre-check " + Hex4(w), {0, w, 10, kRet}, {{"M10", kRet}}, {}, {kEndE}};
    (stops ? p.has : p.hasNot).push_back(kRegStop);
    if (stops) p.after.push_back({"X1", 0});  // stopped before the count
    table.push_back(p);
  }
  RunTable(table);
}

}  // namespace
}  // namespace comet2_test
