// What the run works out once per address and must work out again: code
// rewritten by ST or IN while it runs, the counts of every address after every
// kind of stop, the overflow flag read by JOV after each kind of instruction
// that sets it, and the ceiling of each variant for an address decoded before.
#include "comet2_fixture.h"

namespace comet2_test {
namespace {

class Comet2Decode : public Comet2Test {};

constexpr RunVariant kN = RunVariant::Narrow;
constexpr RunVariant kF = RunVariant::Fixed;
const std::string kRegStop = "There is a machine code to specify";
const std::string kNopStop = "Because NOP machine code is not";
const std::string kExceeded = "has exceeded the maximum memory address";

// Two passes of a loop that rewrites a word of its own code with GR4 and then
// changes GR4 with `step`:
//   1: LAD GR3,2 ; 3: <st> ; 5: <w5> <w6> ; 7: <step> ; SUBA GR3,ONE ; JNZ 3 ; RET ; ONE at 14
// The words at 5 and 6 have run once when the second pass writes them again.
std::vector<int32_t> Rewrite(std::vector<int32_t> st, int32_t w5, int32_t w6, std::vector<int32_t> step) {
  return {0, Op(0x12, 3), 2, st[0], st[1], w5, w6, step[0], step[1], Op(0x21, 3), 14, Op(0x62), 3, kRet, 1};
}
const std::vector<int32_t> kSt5 = {Op(0x11, 4), 5}, kSt6 = {Op(0x11, 4), 6};
const std::vector<int32_t> kStIndexed = {Op(0x11, 4, 5), 0};  // ST GR4,0,GR5
std::vector<int32_t> AddToGr4(int32_t n) { return {Op(0x12, 4, 4), n}; }  // LAD GR4,n,GR4

TEST_F(Comet2Decode, CodeRewrittenByStRunsAsItNowStands) {
  RunTable({
      // LAD GR1,1 becomes LAD GR2,1.
      {"ST over the first word of the next instruction", Rewrite(kSt5, 0, 1, AddToGr4(0x10)), {{"GR4", 0x1210}},
       {{"GR1", 1}, {"GR2", 1}, {"M5", 0x1220}, {"X5", 2}, {"X3", 2}, {"PR", 13}}},
      {"the same with an indexed ST", Rewrite(kStIndexed, 0, 1, AddToGr4(0x10)), {{"GR4", 0x1210}, {"GR5", 5}},
       {{"GR1", 1}, {"GR2", 1}, {"X5", 2}}},
      // LAD GR1,1 becomes LAD GR1,2.
      {"ST over a second word", Rewrite(kSt6, Op(0x12, 1), 0, AddToGr4(1)), {{"GR4", 1}}, {{"GR1", 2}, {"X5", 2}}},
      {"the same with an indexed ST", Rewrite(kStIndexed, Op(0x12, 1), 0, AddToGr4(1)), {{"GR4", 1}, {"GR5", 6}},
       {{"GR1", 2}, {"X5", 2}}},
      // LAD GR7,1 becomes a word with r 8: stopped before the count.
      {"the register pre-check sees the new word", Rewrite(kSt5, 0, 1, AddToGr4(0x10)), {{"GR4", 0x1270}},
       {{"GR7", 1}, {"PR", 5}, {"X5", 1}, {"M5", 0x1280}}, {kRegStop}},
      // Two NOPs; the first becomes #0010, or a cell with its upper half set by OR GR4,CELL.
      {"the NOP test sees the new word", Rewrite(kSt5, 0, 0, AddToGr4(0x10)), {{"GR4", 0}},
       {{"PR", 5}, {"X5", 2}, {"X6", 1}}, {kNopStop + " #0010"}},
      {"the NOP test sees the whole new cell", Rewrite(kSt5, 0, 0, {Op(0x31, 4), 20}), {{"GR4", 0}, {"M20", 0x10000}},
       {{"PR", 5}, {"X5", 2}, {"M5", 0x10000}}, {kNopStop + " #0000"}},
      // ST GR1,65000 turns the RET that CALL 65000 ran into an unknown code;
      // ST GR1,65634 writes the last cell of the storage and the run goes on.
      {"ST at the ceiling and at the end of the storage",
       {0, Op(0x11, 1), 65634, Op(0x80), 65000, Op(0x11, 1), 65000, Op(0x80), 65000, kRet},
       {{"M65000", kRet}, {"GR1", 0x1300}},
       {{"PR", 65000}, {"X65000", 2}, {"M65634", 0x1300}, {"SP", 0xFFFE}},
       {"non-registered machine code of #1300"}, {kEndE}},
  });
}

// IN runs twice with its buffer over the code that ran before it:
//   1: LAD GR3,2 ; 3: LAD GR5,1 ; 5: LAD GR1,<buf> ; LAD GR2,20 ; SVC 1 ; SUBA GR3,ONE ; JNZ 3 ; RET ; ONE at 17
std::vector<int32_t> InOverCode(int32_t buf) {
  return {0, Op(0x12, 3), 2, Op(0x12, 5), 1, Op(0x12, 1), buf, Op(0x12, 2), 20, Op(0xF0), 1, Op(0x21, 3), 17,
          Op(0x62), 3, kRet, 0, 1};
}

TEST_F(Comet2Decode, CodeRewrittenByInRunsAsItNowStands) {
  RunTable({
      // "A" is 65: LAD GR5,1 becomes LAD GR5,65.
      {"IN over a second word", InOverCode(4), {}, {{"GR5", 65}, {"M4", 65}, {"M20", 1}, {"X3", 2}}, {}, {},
       "A\nA\n"},
      // U+1260 is #1260: LAD GR5,1 becomes LAD GR6,1.
      {"IN over a first word", InOverCode(3), {}, {{"GR5", 1}, {"GR6", 1}, {"M3", 0x1260}, {"X3", 2}}, {}, {},
       "\u1260\n\u1260\n"},
  });
}

// The counts of a Narrow run, which keeps the counts it finds, at an address
// where 5 were found: one more when the word there ran, none when the run
// stopped before it.
TEST_F(Comet2Decode, TheCountsAfterEveryKindOfStop) {
  const auto at = [](int32_t a, int32_t n, Parts more = {}) {
    more.push_back({"X" + std::to_string(a), n});
    return more;
  };
  const Parts five1 = at(1, 5);
  RunTable({
      {"the register stop", {0, 0xFFFF}, five1, at(1, 5), {kRegStop}, {}, "", "", kN},
      {"the NOP stop", {0, 0x0010}, five1, at(1, 6), {kNopStop}, {}, "", "", kN},
      {"an unknown code", {0, Op(0x13)}, five1, at(1, 6), {"non-registered"}, {}, "", "", kN},
      {"the PR stop", {0, Op(0x64), 65001}, at(65001, 5), at(65001, 5, {{"X1", 1}}), {kExceeded}, {}, "", "", kN},
      {"the Fixed PR stop", {0, Op(0x64), 3501}, at(3501, 5), at(3501, 5), {kExceeded}, {}, "", "", kF},
      // LAD GR1,1 ; JZE 65535,GR1 with Fzero
      {"the quiet end above 65535", {0, Op(0x12, 1), 1, Op(0x63, 0, 1), 65535}, at(65536, 5, {{"F", 1}}),
       at(65536, 5, {{"PR", 65536}, {"X3", 1}}), {}, {kExceeded}, "", "", kN},
      {"the load stop", {0, Op(0x10), 65001, kRet}, five1, at(1, 6), {"beyond tMaxMemory"}, {}, "", "", kN},
      {"the store guard", {0, Op(0x11, 1, 2), 0, kRet}, at(1, 5, {{"GR2", 65000}}), at(1, 6), {"Terminated!"}, {},
       "", "", kN},
      {"ST beyond the storage", {0, Op(0x11, 1), 70000, kRet}, five1, at(1, 6), {"lies outside the memory"}, {}, "",
       "", kN},
      {"POP beyond the storage", {0, Op(0x71, 1), Op(0x64), 1}, five1, at(1, 7), {"has left the stack area"}, {}, "",
       "", kN},
      {"RET at the top level", {0, kRet}, five1, at(1, 6), {}, {}, "", "", kN},
      {"EXIT", {0, Op(0x88)}, five1, at(1, 6), {}, {}, "", "", kN},
      // CALL 10 ; RET ; 10: POP GR1 ; POP GR1 ; RET
      {"RET with SP past the top", {0, Op(0x80), 10, kRet},
       at(12, 5, {{"M10", Op(0x71, 1)}, {"M11", Op(0x71, 1)}, {"M12", kRet}}), at(12, 6, {{"X1", 1}, {"X3", 0}}),
       {"ret581"}, {}, "", "", kN},
      // The first word already stops the run.
      {"a register stop at once", {0xFFFF}, at(0, 5), at(0, 5, {{"PR", 0}}), {kRegStop}, {}, "", "", kN},
      {"an unknown code at once", {Op(0x13)}, at(0, 5), at(0, 6, {{"PR", 0}}), {"non-registered"}, {}, "", "", kN},
      {"RET at once", {kRet}, at(0, 5), at(0, 6, {{"PR", 0}}), {}, {}, "", "", kN},
  });
}

// LAD GR1,a ; <op> GR1,<b> ; JOV 20 ; RET, with Fovf set before the run, RET
// at 20 and the value b at 30. JOV jumps to 20 when the instruction left Fovf.
Prog Jov(const char* what, std::vector<int32_t> op, int32_t a, int32_t bv, int32_t flags) {
  std::vector<int32_t> w = {0, Op(0x12, 1), a};
  w.insert(w.end(), op.begin(), op.end());
  const int32_t after = static_cast<int32_t>(w.size()) + 2;  // the RET after JOV
  w.insert(w.end(), {Op(0x66), 20, kRet});
  return {what, w, {{"F", 100}, {"M20", kRet}, {"M30", bv}, {"GR2", bv}}, {{"PR", flags >= 100 ? 20 : after},
          {"F", flags}}};
}
std::vector<int32_t> Mem(int code) { return {Op(code, 1), 30}; }
std::vector<int32_t> Shift(int code, int32_t n) { return {Op(code, 1), n}; }

TEST_F(Comet2Decode, JovReadsTheOverflowThatTheLastInstructionLeft) {
  RunTable({
      Jov("ADDA with overflow", Mem(0x20), 32767, 1, 110),
      Jov("ADDA without", Mem(0x20), 1, 1, 0),
      Jov("ADDA GR1,GR2 with overflow", {Op(0x24, 1, 2)}, 32767, 1, 110),
      Jov("SUBA with overflow", Mem(0x21), 0x8000, 1, 100),
      Jov("ADDL with a carry", Mem(0x22), 0xFFFF, 1, 101),
      Jov("ADDL to #8000, no carry", Mem(0x22), 0x7FFF, 1, 10),
      Jov("SUBL below 0", Mem(0x23), 0, 1, 110),
      Jov("SUBL to 0", Mem(0x23), 1, 1, 1),
      Jov("SUBL GR1,GR2 below 0", {Op(0x27, 1, 2)}, 0, 1, 110),
      Jov("LD clears it", Mem(0x10), 7, 0, 1),
      Jov("AND clears it", Mem(0x30), 0xFFFF, 0xFF, 0),
      Jov("OR clears it", Mem(0x31), 0x8000, 0, 10),
      Jov("XOR clears it", Mem(0x32), 5, 5, 1),
      Jov("CPA clears it", Mem(0x40), 1, 2, 10),
      Jov("CPL clears it", Mem(0x41), 2, 1, 0),
      Jov("LAD leaves it", {Op(0x12, 2), 0}, 1, 0, 100),
      Jov("ST leaves it", {Op(0x11, 1), 25}, 1, 0, 100),
      Jov("SLA shifts a 1 out", Shift(0x50, 1), 0x4000, 0, 100),
      Jov("SLA shifts a 0 out", Shift(0x50, 1), 1, 0, 0),
      Jov("SRA shifts a 1 out", Shift(0x51, 1), 1, 0, 101),
      Jov("SRA shifts a 0 out", Shift(0x51, 1), 2, 0, 0),
      Jov("SLL shifts a 1 out", Shift(0x52, 1), 0x8000, 0, 101),
      Jov("SLL by 17", Shift(0x52, 17), 1, 0, 1),
      Jov("SRL shifts a 1 out", Shift(0x53, 1), 1, 0, 101),
      Jov("SRL by 0", Shift(0x53, 0), 0x8000, 0, 10),
      // The service sees the machine as it stands and JOV after it the same flag.
      Jov("ADDA with overflow, then a service", {Op(0x20, 1), 30, Op(0xF0), 3}, 32767, 1, 110),
      Jov("LD, then a service", {Op(0x10, 1), 30, Op(0xF0), 3}, 32767, 1, 0),
      Jov("SUBL below 0, then PUSH and POP", {Op(0x23, 1), 30, Op(0x70), 9, Op(0x71, 4)}, 0, 1, 110),
      // JOV 10,GR6 reaches 20 too.
      {"JOV with an index", {0, Op(0x20, 1), 30, Op(0x66, 0, 6), 10, kRet},
       {{"GR1", 32767}, {"M30", 1}, {"GR6", 10}, {"M20", kRet}}, {{"PR", 20}, {"EA", 20}, {"F", 110}}},
      // Fovf as found is neither 0 nor 1: JOV does not jump and it stays.
      {"Fovf as found", {0, Op(0x66), 20, kRet}, {{"F", 500}, {"M20", kRet}}, {{"PR", 3}, {"F", 500}}},
      {"Fovf as found, then ADDA", {0, Op(0x20, 1), 30, Op(0x66), 20, kRet}, {{"F", 500}, {"M20", kRet}},
       {{"PR", 5}, {"F", 1}}},
  });
}

TEST_F(Comet2Decode, TheCeilingOfEachVariantForAnEntryDecodedBefore) {
  // 1: LAD GR1,3 ; JUMP c-2 ; c-2: SUBA GR1,ONE ; c: JNZ c-2 ; ONE at 20. The
  // JNZ at the ceiling runs three times from its entry; PR then moves on to
  // c+2 and stops.
  const auto loop = [](int32_t c) {
    return Parts{{"M" + std::to_string(c - 2), Op(0x21, 1)}, {"M" + std::to_string(c - 1), 20},
                 {"M" + std::to_string(c), Op(0x62)}, {"M" + std::to_string(c + 1), c - 2}, {"M20", 1}};
  };
  const auto counted = [](int32_t c) {
    return Parts{{"X" + std::to_string(c - 2), 3}, {"X" + std::to_string(c), 3}, {"PR", c + 2}, {"GR1", 0}};
  };
  RunTable({
      {"Fixed", {0, Op(0x12, 1), 3, Op(0x64), 3498}, loop(3500), counted(3500), {"PR = #0DAE = 3502(dec)"}, {}, "",
       "", kF},
      {"Narrow", {0, Op(0x12, 1), 3, Op(0x64), 64998}, loop(65000), counted(65000), {"PR = #FDEA = 65002(dec)"}, {},
       "", "", kN},
      // The upper half of a second word is no part of the address.
      {"Fixed reads u16 of a second word", {0, Op(0x10, 1), 0x10000 + 100, kRet}, {{"M100", 9}}, {{"GR1", 9}}, {},
       {"beyond tMaxMemory"}, "", "", kF},
  });
}

TEST_F(Comet2Decode, EachRunDecodesTheMemoryAsItFindsIt) {
  // JUMP 3501 with LAD GR1,1 and RET there: Wide runs it, Fixed stops at it,
  // and the next Wide run decodes it again; the last run finds LAD GR2,1 there.
  m->Memory[1] = Op(0x64);
  m->Memory[2] = 3501;
  m->Memory[3501] = Op(0x12, 1);
  m->Memory[3502] = 1;
  m->Memory[3503] = kRet;
  const struct {
    RunVariant variant;
    int32_t word, gr1, gr2, pr;
    bool exceeded;
  } runs[] = {{RunVariant::Wide, Op(0x12, 1), 1, 0, 3503, false}, {kF, Op(0x12, 1), 0, 0, 3501, true},
              {RunVariant::Wide, Op(0x12, 1), 1, 0, 3503, false}, {kN, Op(0x12, 2), 0, 1, 3503, false},
              {RunVariant::Wide, 0xFFFF, 0, 0, 3501, false}};
  int i = 0;
  for (const auto& r : runs) {
    SCOPED_TRACE(i++);
    m->Memory[3501] = r.word;
    m->GR.fill(0);
    const std::string out = Captured(r.variant);
    EXPECT_EQ(m->GR[1], r.gr1);
    EXPECT_EQ(m->GR[2], r.gr2);
    EXPECT_EQ(m->PR, r.pr);
    EXPECT_EQ(out.find(kExceeded) != std::string::npos, r.exceeded) << out;
  }
}

}  // namespace
}  // namespace comet2_test
