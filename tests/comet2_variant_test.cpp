// The three variants of the run: the ceiling of PR and of the addresses read,
// the PR stop's opening and numbers, the guard of an indexed ST and the
// reserved size it warns at, the counts left from before a run, and the boot
// lines once per variant.
#include "comet2_fixture.h"

namespace comet2_test {
namespace {

class Comet2Variant : public Comet2Test {};

constexpr RunVariant kW = RunVariant::Wide;
constexpr RunVariant kN = RunVariant::Narrow;
constexpr RunVariant kF = RunVariant::Fixed;

const std::string kStartE = "The comet2 starts running, please wait for a moment ...,\n";
const std::string kStartJ = "COMET2 実行中 ";
const std::string kExceeded = "has exceeded the maximum memory address";
const std::string kLoadStop = "is going to access a memory beyond tMaxMemory";
const std::string kWarningE = "Warning: Out of Range";
const std::string kBoot = "\nA small OS has been implemented in drillasm. \nThe OS starts booting comet2.\n";

// The PR stop after its opening: the numbers it names and PR in hex and decimal.
std::string PrStopE(const std::string& opening, int limit, int memories, const std::string& pr) {
  return kStartE + opening + "Because the Program Register(PR) has exceeded the maximum memory address of " +
         std::to_string(limit) + ". Your program cannnot access any address over there. It might haved executed "
         "a lot of opcodes in vain in the higher address area. The comet2 has 65536 words in memory in truth. But "
         "this simulator has only " + std::to_string(memories) + " memories for the sake of simplicity. PR = " + pr +
         "(dec) \n" + kEndE;
}
std::string PrStopJ(const std::string& opening, int limit, const std::string& pr) {
  return kStartJ + opening + "プログラムレジスター(PR)が この COMET2 シミレーター の 最大メモリー " +
         std::to_string(limit) + " 番地を超えました。 さらに、最大アドレスを超えてメモリにアクセスしようとしたので"
         "実行を中止しました。  本来の COMET2 では もちろん PR = 65535 までアクセス可能ですが、Drill Asm では"
         "制限を設けています。プログラムを工夫修正してご利用ください。 PR = " + pr + "（十進数）番地 Run. "
         "おそらく、プログラムの定義域を飛び出して、メモリ後半にある NOP=#0000 の連続部分が実行されたものと"
         "考えられます。" + kEndJ;
}

TEST_F(Comet2Variant, ThePrStopHasTheOpeningAndTheNumbersOfTheVariant) {
  const std::vector<int32_t> offTheEnd = {0, Op(0x12, 1), 5};  // LAD GR1,5 and then only zero words
  const std::string wideE = "Runtime Error: The comet2 is terminated！\n";
  const std::string shortJ = "--> 中止！\n";
  RunTable({
      {"Wide", offTheEnd, {}, {{"PR", 65001}}, {PrStopE(wideE, 64500, 64000, "#FDE9 = 65001")}},
      {"Wide, Japanese", offTheEnd, {{"LANG", 0}}, {},
       {PrStopJ("実行時エラー：実行途中停止！\n", 64700, "#FDE9 = 65001")}},
      {"Narrow", offTheEnd, {}, {{"PR", 65001}}, {PrStopE(wideE, 64500, 64000, "#FDE9 = 65001")}, {}, "", "", kN},
      {"Narrow, Japanese", offTheEnd, {{"LANG", 0}}, {}, {PrStopJ(shortJ, 64700, "#FDE9 = 65001")}, {}, "", "", kN},
      {"Fixed", offTheEnd, {}, {{"PR", 3501}, {"X3500", 1}, {"X3501", 0}},
       {PrStopE("--> The comet2 is terminated！\n", 3200, 3200, "#0DAD = 3501")}, {}, "", "", kF},
      {"Fixed, Japanese", offTheEnd, {{"LANG", 0}}, {}, {PrStopJ(shortJ, 3200, "#0DAD = 3501")}, {}, "", "", kF},
  });
}

TEST_F(Comet2Variant, TheCeilingOfPrAndOfTheAddressesRead) {
  // JUMP a, with RET at a.
  const auto jump = [](int32_t a) { return std::vector<int32_t>{0, Op(0x64), a}; };
  const auto ret = [](int32_t a) { return Parts{{"M" + std::to_string(a), kRet}}; };
  // LD GR0,a,GR1 ; RET
  const auto ld = [](int32_t a) { return std::vector<int32_t>{0, Op(0x10, 0, 1), a, kRet}; };
  std::vector<Prog> table = {
      {"Fixed runs at 3500", jump(3500), ret(3500), {{"PR", 3500}, {"X3500", 1}}, {kEndE}, {kExceeded}, "", "", kF},
      {"Fixed stops at 3501", jump(3501), ret(3501), {{"PR", 3501}, {"X3501", 0}}, {kExceeded}, {}, "", "", kF},
      {"Wide runs at 3501", jump(3501), ret(3501), {{"PR", 3501}}, {kEndE}, {kExceeded}},
      {"Narrow runs at 65000", jump(65000), ret(65000), {{"PR", 65000}}, {kEndE}, {kExceeded}, "", "", kN},
      {"Narrow stops at 65001", jump(65001), ret(65001), {{"PR", 65001}}, {kExceeded}, {}, "", "", kN},
      // LAD GR1,1 ; JZE 65535,GR1 with Fzero: PR 65536 ends quietly before the ceiling is looked at.
      {"Fixed, PR above 65535", {0, Op(0x12, 1), 1, Op(0x63, 0, 1), 65535}, {{"F", 1}}, {{"PR", 65536}}, {kEndE},
       {kExceeded}, "", "", kF},
      {"Fixed reads 3500", ld(3500), {{"M3500", 0x1234}}, {{"GR0", 0x1234}}, {kEndE}, {kLoadStop}, "", "", kF},
      {"Fixed stops at reading 3501", ld(3501), {{"M3501", 7}}, {{"PR", 2}, {"GR0", 0}, {"EA", 3501}},
       {kLoadStop + ". \nPR=1 (address), Memory[1]=#1001=4097(dec) and \nPR=2 (address), "
        "Memory[2]=#0DAD=3501(dec) \nMemory[3501]=#0007=7(dec). \n"},
       {kEndE}, "", ". ", kF},
      {"Fixed, 3501 with an index", ld(3000), {{"GR1", 501}}, {{"EA", 3501}}, {kLoadStop}, {kEndE}, "", "", kF},
      {"Wide reads 3501", ld(3501), {{"M3501", 5}}, {{"GR0", 5}}, {kEndE}, {kLoadStop}},
      {"Narrow reads 65000", ld(65000), {{"M65000", 5}}, {{"GR0", 5}}, {kEndE}, {kLoadStop}, "", "", kN},
      {"Narrow stops at reading 65001", ld(65001), {}, {}, {kLoadStop}, {kEndE}, "", "", kN},
  };
  for (int code : {0x10, 0x20, 0x21, 0x22, 0x23, 0x30, 0x31, 0x32, 0x40, 0x41})
    table.push_back({"Fixed bounds reads: " + Hex4(code), {0, Op(code, 1), 3501, kRet}, {}, {}, {kLoadStop}, {kEndE},
                     "", "", kF});
  for (int code : {0x12, 0x50, 0x52})  // LAD and shifts read no memory
    table.push_back({"Fixed, no bound: " + Hex4(code), {0, Op(code, 1), 3501, kRet}, {}, {}, {kEndE}, {kLoadStop},
                     "", "", kF});
  RunTable(table);
}

TEST_F(Comet2Variant, TheStoreGuardAndTheReservedSizeOfTheVariant) {
  // ST GR1,0,GR2 ; RET, storing at `a`, with the reserved sizes of b and of the machine.
  const std::vector<int32_t> st = {0, Op(0x11, 1, 2), 0, kRet};
  const auto at = [](int32_t a, int32_t bMax, int32_t tMax, int lang = 1) {
    return Parts{{"GR1", 77}, {"GR2", a}, {"MAX", bMax}, {"TMAX", tMax}, {"LANG", lang}};
  };
  const std::string stopE =
      "Terminated!\nThe COMET2 has 65536 words in memory. \nWhen an opcode at #0001 was executed, a virtual OS in "
      "drillasm has detected the comet2 was going to store a data beyond the maximam address of ";
  const std::string stopJ = "実行時エラー：　中止\n#0001 = 1 （10進数）番地の命令の実行時 ";
  RunTable({
      // 3500 words reserved in the machine: below them nothing is told, whatever b reserves.
      {"Fixed stores at 3498", st, at(3498, 20, 3500), {{"M3498", 77}}, {kEndE}, {"Terminated!", kWarningE}, "", "",
       kF},
      {"Fixed stops at 3499", st, at(3499, 20, 3500), {{"M3499", 0}, {"PR", 2}, {"EA", 3499}},
       {stopE + "3465. So the OS has terminated the comet2;  otherwise the comet2 would get out of control. \n" +
        kEndE},
       {kWarningE}, "", "", kF},
      {"Fixed stops at 3499, Japanese", st, at(3499, 20, 3500, 0), {},
       {stopJ + "3465 番地を超えてデータをストア（ＳＴ）しようとしました。"}, {}, "", "", kF},
      {"Narrow stores at 3499", st, at(3499, 4000, 3500), {{"M3499", 77}}, {kEndE}, {"Terminated!"}, "", "", kN},
      {"Narrow stops at 65000", st, at(65000, 20, 30), {{"M65000", 0}}, {stopE + "65000. "}, {}, "", "", kN},
      {"Fixed warns at tMaxMemory", st, at(35, 40, 30), {{"M35", 77}},
       {"\nWarning: Out of Range\nYour reserved memory is 30 words in size. \n"
        "A data has stored in an address of 35(Dec).\n", kEndE}, {}, "", "", kF},
      {"Fixed warns at tMaxMemory, Japanese", st, at(35, 40, 30, 0), {},
       {"あなたのプログラムが確保したメモリ領域は 29 （10進数）番地までです。\nこれを超えて 35 （10進数）番地に"}, {}, "",
       "", kF},
      {"Fixed, below tMaxMemory", st, at(25, 20, 30), {{"M25", 77}}, {kEndE}, {kWarningE}, "", "", kF},
      {"Wide warns at b->MaxMemory", st, at(25, 20, 30), {}, {"Your reserved memory is 20 words in size. "}},
      {"Wide, below b->MaxMemory", st, at(35, 40, 30), {}, {kEndE}, {kWarningE}},
      {"Narrow warns at b->MaxMemory", st, at(25, 20, 30), {}, {"Your reserved memory is 20 words in size. "}, {}, "",
       "", kN},
  });
}

TEST_F(Comet2Variant, OnlyTheWideRunClearsTheCountsLeftFromBefore) {
  // LAD GR1,3 ; 3: SUBA GR1,ONE ; JNZ 3 ; RET ; ONE at 10.
  const std::vector<int32_t> counts = {0, Op(0x12, 1), 3, Op(0x21, 1), 10, Op(0x62), 3, kRet};
  const Parts left = {{"M10", 1}, {"X3", 4}, {"X8", 2}, {"X64999", 5}};
  const Parts kept = {{"X1", 1}, {"X3", 7}, {"X5", 3}, {"X7", 1}, {"X8", 2}, {"X64999", 5}};
  RunTable({
      {"Wide", counts, left, {{"X1", 1}, {"X3", 3}, {"X5", 3}, {"X7", 1}, {"X8", 0}, {"X64999", 0}}},
      {"Narrow", counts, left, kept, {}, {}, "", "", kN},
      {"Fixed", counts, left, kept, {}, {}, "", "", kF},
  });
}

TEST_F(Comet2Variant, TheBootLinesOncePerVariant) {
  m->Memory[1] = kRet;
  for (int& shown : bootShown) shown = -99;
  // A Japanese run shows no boot lines and leaves the flag for the next English run of its variant.
  const struct {
    RunVariant variant;
    int lang;
    size_t boots;
  } runs[] = {{kW, 1, 1}, {kW, 1, 0}, {kN, 0, 0}, {kN, 1, 1}, {kN, 1, 0}, {kF, 1, 1}, {kF, 1, 0}, {kW, 1, 0}};
  int i = 0;
  for (const auto& r : runs) {
    SCOPED_TRACE(i++);
    m->dispLang = r.lang;
    EXPECT_EQ(e2e::count_occurrences(Captured(r.variant), kBoot), r.boots);
  }
  for (int v = 0; v < kRunVariants; ++v) EXPECT_EQ(bootShown[v], -98) << v;
}

}  // namespace
}  // namespace comet2_test
