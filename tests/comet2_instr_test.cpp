// What each instruction does to the registers, the flags, PR, SP and memory.
#include "comet2_fixture.h"

namespace comet2_test {
namespace {

class Comet2Instr : public Comet2Test {};

// LD GR1,A ; <op> GR1,B ; RET with A at 10 and B at 11, Fovf set before.
Prog Bin(const char* what, int code, int32_t a, int32_t bv, int32_t gr1, int32_t flags) {
  return {what, {0, Op(0x10, 1), 10, Op(code, 1), 11, kRet}, {{"M10", a}, {"M11", bv}, {"F", 100}},
          {{"GR1", gr1}, {"F", flags}, {"PR", 5}}};
}
// LD GR1,A ; <shift> GR1,n ; RET with A at 10.
Prog Shift(const char* what, int code, int32_t a, int32_t n, int32_t gr1, int32_t flags) {
  return {what, {0, Op(0x10, 1), 10, Op(code, 1), n, kRet}, {{"M10", a}}, {{"GR1", gr1}, {"F", flags}}};
}

TEST_F(Comet2Instr, ResultsAndFlagsOfArithmeticLogicComparisonAndShifts) {
  RunTable({
      Bin("ADDA 32767+1", 0x20, 32767, 1, -32768, 110),
      Bin("SUBA -32768-1", 0x21, -32768, 1, 32767, 100),
      Bin("ADDA -1+1", 0x20, 0xFFFF, 1, 0, 1),
      Bin("ADDL #FFFF+1", 0x22, 0xFFFF, 1, 0, 101),
      Bin("ADDL #FFFE+1: the sign, no overflow", 0x22, 0xFFFE, 1, 0xFFFF, 10),
      Bin("SUBL 0-1", 0x23, 0, 1, 0xFFFF, 110),
      Bin("SUBL 5-5", 0x23, 5, 5, 0, 1),
      Bin("AND on the full cells", 0x30, 0xFFFF, 0x0F0F, 0x0F0F, 0),
      Bin("OR on the full cells", 0x31, 0x00F0, 0x8000, 0x80F0, 10),
      Bin("XOR to zero", 0x32, 0x1234, 0x1234, 0, 1),
      Bin("CPA #FFFF with 1: less", 0x40, 0xFFFF, 1, -1, 10),
      Bin("CPL #FFFF with 1: greater", 0x41, 0xFFFF, 1, -1, 0),
      Bin("CPA equal", 0x40, 7, 7, 7, 1),
      Bin("CPL less", 0x41, 1, 0x8000, 1, 10),
      Shift("SLL #0001 by 16", 0x52, 1, 16, 0, 101),
      Shift("SLL #0001 by 17", 0x52, 1, 17, 0, 1),
      Shift("SLL #4001 by 1", 0x52, 0x4001, 1, 0x8002, 10),
      Shift("SRA #8000 by 20", 0x51, 0x8000, 20, -1, 110),
      Shift("SRA #0001 by 1", 0x51, 1, 1, 0, 101),
      Shift("SRA #8000 by 0", 0x51, 0x8000, 0, -32768, 10),
      Shift("SRL #8000 by 0", 0x53, 0x8000, 0, -32768, 10),
      Shift("SRL #8000 by 15", 0x53, 0x8000, 15, 1, 0),
      Shift("SRL #8000 by 16", 0x53, 0x8000, 16, 0, 101),
      Shift("SRL #FFFF by 17", 0x53, 0xFFFF, 17, 0, 1),
      Shift("SLA #C000 by 1", 0x50, 0xC000, 1, -32768, 110),
      Shift("SLA #4000 by 1: zero flag from the raw value", 0x50, 0x4000, 1, 0, 100),
      Shift("SLA #8001 by 20 keeps the sign", 0x50, 0x8001, 20, -32768, 10),
      Shift("SLA #7FFF by 16", 0x50, 0x7FFF, 16, 0, 1),
      Shift("SLA #0003 by 2", 0x50, 3, 2, 12, 0),
  });
}

// JMI, JZE and JPL jump to the wide sum of #FFFF and 16, the others to the wrapped 15.
Prog Wide(const char* what, int code, int32_t flags, int32_t pr) {
  return {what, {0, Op(code, 0, 7), 16, kRet}, {{"GR7", 0xFFFF}, {"F", flags}, {"M15", kRet}}, {{"PR", pr}},
          {kEndE}, {"Runtime Error"}};
}

TEST_F(Comet2Instr, AddressesRegisterFormsJumpsStackAndStores) {
  RunTable({
      {"LD, ADDA and CPA GR,GR", {0, Op(0x14, 1, 2), Op(0x24, 1, 3), Op(0x44, 3, 2), kRet},
       {{"GR2", 0x7FFF}, {"GR3", 1}}, {{"GR1", -32768}, {"CMP", 2}, {"F", 10}, {"PR", 4}}},
      {"shift count from the indexed address", {0, Op(0x12, 1), 1, Op(0x52, 1, 2), 1, kRet}, {{"GR2", 3}},
       {{"GR1", 16}}},
      {"LAD leaves every flag", {0, Op(0x20, 1), 10, Op(0x12, 2), 0xFFFF, kRet}, {{"GR1", 1}, {"M10", 0x7FFF}},
       {{"F", 110}, {"GR2", 65535}}},
      {"LD clears Fovf", {0, Op(0x20, 1), 10, Op(0x10, 3), 10, kRet}, {{"GR1", 1}, {"M10", 0x7FFF}}, {{"F", 0}}},
      {"upper halves follow their writers", {0, Op(0x10, 1), 10, Op(0x12, 2), 0xFFFF, Op(0x11, 1), 20, kRet},
       {{"M10", 0xFFFF}, {"MAX", 30}}, {{"GR1", -1}, {"GR2", 65535}, {"M20", -1}}},
      {"EA drops the carry, GR0 is no index",
       {0, Op(0x12, 1, 2), 0xFFFF, Op(0x10, 3, 0), 10, Op(0x10, 4, 2), 10, kRet},
       {{"GR2", 2}, {"GR0", 5}, {"M10", 111}, {"M12", 333}}, {{"GR1", 1}, {"GR3", 111}, {"GR4", 333}, {"EA", 12}}},
      // LD GR1,ZERO ; JNZ 20 ; JZE 12 ; 12: JPL 20 ; JMI 20 ; JUMP 18 ; 18: RET ; 20: RET (never reached)
      {"jumps taken and not taken",
       {0, Op(0x10, 1), 30, Op(0x62), 20, Op(0x63), 12, 0, 0, 0, 0, 0, Op(0x65), 20, Op(0x61), 20, Op(0x64), 18,
        kRet, 0, kRet},
       {}, {{"PR", 18}, {"X20", 0}, {"X18", 1}, {"X12", 1}, {"X13", 0}}},
      {"JOV leaves Fovf", {0, Op(0x20, 1), 20, Op(0x66), 10, kRet}, {{"GR1", 0x7FFF}, {"M20", 1}, {"M10", kRet}},
       {{"PR", 10}, {"F", 110}}},
      Wide("JMI", 0x61, 10, 65551), Wide("JZE", 0x63, 1, 65551), Wide("JPL", 0x65, 0, 65551),
      Wide("JNZ", 0x62, 0, 15),     Wide("JUMP", 0x64, 0, 15),   Wide("JOV", 0x66, 100, 15),
      // CALL 10 ; RET ; 10: PUSH 5,GR1 ; POP GR2 ; RET
      {"CALL and RET restore depth and SP", {0, Op(0x80), 10, kRet},
       {{"GR1", 3}, {"M10", Op(0x70, 0, 1)}, {"M11", 5}, {"M12", Op(0x71, 2)}, {"M13", kRet}},
       {{"GR2", 8}, {"CD", 0}, {"SP", 0xFFFF}, {"PR", 3}, {"S1", 3}}},
      {"POP on an empty stack, then a top-level RET", {0, Op(0x71, 1), kRet}, {{"GR1", 99}},
       {{"GR1", 0}, {"SP", 0x10000}, {"PR", 2}}},
      {"ST without index: the whole cell, no guard", {0, Op(0x11, 1), 0xFFFF, kRet}, {{"GR1", 42}, {"MAX", 10}},
       {{"M65535", 42}, {"EA", 0}}, {kEndE}, {"Warning", "Terminated!"}},
      {"ST without index beyond the storage", {0, Op(0x11, 1), 70000, kRet}, {}, {{"PR", 2}},
       {"at 70000(dec), which lies outside the memory of the comet2.", kEndE}},
      {"ST without index below 0", {0, Op(0x11, 1), -1, kRet}, {}, {{"PR", 2}},
       {"lies outside the memory of the comet2.", kEndE}},
      {"ST without index beyond the storage, Japanese", {0, Op(0x11, 1), 70000, kRet}, {{"LANG", 0}}, {},
       {"#0001 = 1 （10進数）番地の ST 命令のアドレス 70000 （10進数）は COMET2 のメモリーの外側なので", kEndJ}},
      {"the word of EXIT", {0, Op(0x88), kRet}, {}, {{"PR", 1}}},
  });
}

}  // namespace
}  // namespace comet2_test
