// What each instruction does to the registers, the flags, PR, SP and memory.
#include <vector>

#include "comet2_fixture.h"

namespace comet2_test {
namespace {

class Comet2Instr : public Comet2Test {};

struct Flags {
  int ovf, sign, zero;
};

void ExpectFlags(Flags f) {
  EXPECT_EQ(m->Fovf, f.ovf);
  EXPECT_EQ(m->Fsign, f.sign);
  EXPECT_EQ(m->Fzero, f.zero);
}

// LD GR1,A ; <op> GR1,B ; RET with A at 10 and B at 11.
struct BinCase {
  const char* what;
  int code;
  int32_t a, b;
  int32_t gr1;  // the whole cell after the run
  Flags flags;
};

TEST_F(Comet2Instr, ArithmeticLogicAndComparisonResultsAndFlags) {
  const std::vector<BinCase> cases = {
      {"ADDA 32767+1", 0x20, 32767, 1, -32768, {1, 1, 0}},
      {"SUBA -32768-1", 0x21, -32768, 1, 32767, {1, 0, 0}},
      {"ADDA -1+1", 0x20, 0xFFFF, 1, 0, {0, 0, 1}},
      {"ADDL #FFFF+1", 0x22, 0xFFFF, 1, 0, {1, 0, 1}},
      {"ADDL #7FFF+1 gives the sign", 0x22, 0x7FFF, 1, 0x8000, {0, 1, 0}},
      {"SUBL 0-1", 0x23, 0, 1, 0xFFFF, {1, 1, 0}},
      {"SUBL 5-5", 0x23, 5, 5, 0, {0, 0, 1}},
      {"AND on the full cells", 0x30, 0xFFFF, 0x0F0F, 0x0F0F, {0, 0, 0}},
      {"OR on the full cells", 0x31, 0x00F0, 0x8000, 0x80F0, {0, 1, 0}},
      {"XOR to zero", 0x32, 0x1234, 0x1234, 0, {0, 0, 1}},
      {"CPA #FFFF with 1: less", 0x40, 0xFFFF, 1, -1, {0, 1, 0}},
      {"CPL #FFFF with 1: greater", 0x41, 0xFFFF, 1, -1, {0, 0, 0}},
      {"CPA equal", 0x40, 7, 7, 7, {0, 0, 1}},
      {"CPL less", 0x41, 1, 0x8000, 1, {0, 1, 0}},
  };
  for (const BinCase& c : cases) {
    SCOPED_TRACE(c.what);
    SetUp();
    m->Fovf = 1;  // LD and every case clear or set it again
    Load({0, Op(0x10, 1), 10, Op(c.code, 1), 11, Op(0x81)});
    Load({c.a, c.b}, 10);
    RunProgram();
    EXPECT_EQ(m->GR[1], c.gr1);
    ExpectFlags(c.flags);
    EXPECT_EQ(m->PR, 5);
  }
}

TEST_F(Comet2Instr, RegisterFormsTakeTheSecondRegister) {
  m->GR[2] = 0x7FFF;
  m->GR[3] = 1;
  // LD GR1,GR2 ; ADDA GR1,GR3 ; CPA GR3,GR2 ; RET
  Load({0, Op(0x14, 1, 2), Op(0x24, 1, 3), Op(0x44, 3, 2), Op(0x81)});
  RunProgram();
  EXPECT_EQ(m->GR[1], -32768);
  EXPECT_EQ(m->cmpResult, 2);  // 1 less than #7FFF
  ExpectFlags({0, 1, 0});
  EXPECT_EQ(m->PR, 4);
}

struct ShiftCase {
  const char* what;
  int code;
  int32_t value, n;
  int32_t gr1;
  Flags flags;
};

TEST_F(Comet2Instr, ShiftsTheirCountsAndTheLastBitOut) {
  const std::vector<ShiftCase> cases = {
      {"SLL #0001 by 16", 0x52, 1, 16, 0, {1, 0, 1}},
      {"SLL #0001 by 17", 0x52, 1, 17, 0, {0, 0, 1}},
      {"SLL #4001 by 1", 0x52, 0x4001, 1, 0x8002, {0, 1, 0}},
      {"SRA #8000 by 20", 0x51, 0x8000, 20, -1, {1, 1, 0}},
      {"SRA #0001 by 1", 0x51, 1, 1, 0, {1, 0, 1}},
      {"SRA #8000 by 0", 0x51, 0x8000, 0, -32768, {0, 1, 0}},
      {"SRL #8000 by 0", 0x53, 0x8000, 0, -32768, {0, 1, 0}},
      {"SRL #8000 by 15", 0x53, 0x8000, 15, 1, {0, 0, 0}},
      {"SRL #8000 by 16", 0x53, 0x8000, 16, 0, {1, 0, 1}},
      {"SRL #FFFF by 17", 0x53, 0xFFFF, 17, 0, {0, 0, 1}},
      {"SLA #C000 by 1", 0x50, 0xC000, 1, -32768, {1, 1, 0}},
      {"SLA #4000 by 1: zero flag from the raw value", 0x50, 0x4000, 1, 0, {1, 0, 0}},
      {"SLA #8001 by 20 keeps the sign", 0x50, 0x8001, 20, -32768, {0, 1, 0}},
      {"SLA #7FFF by 16", 0x50, 0x7FFF, 16, 0, {0, 0, 1}},
      {"SLA #0003 by 2", 0x50, 3, 2, 12, {0, 0, 0}},
  };
  for (const ShiftCase& c : cases) {
    SCOPED_TRACE(c.what);
    SetUp();
    Load({0, Op(0x10, 1), 10, Op(c.code, 1), c.n, Op(0x81)});
    Load({c.value}, 10);
    RunProgram();
    EXPECT_EQ(m->GR[1], c.gr1);
    ExpectFlags(c.flags);
  }
}

TEST_F(Comet2Instr, ShiftCountComesFromTheIndexedAddress) {
  m->GR[2] = 3;
  Load({0, Op(0x12, 1), 1, Op(0x52, 1, 2), 1, Op(0x81)});  // LAD GR1,1 ; SLL GR1,1,GR2
  RunProgram();
  EXPECT_EQ(m->GR[1], 16);
}

TEST_F(Comet2Instr, LdClearsOverflowAndLadLeavesEveryFlag) {
  // ADDA GR1,MAX (overflow) ; LAD GR2,#FFFF ; RET
  m->GR[1] = 1;
  Load({0, Op(0x20, 1), 10, Op(0x12, 2), 0xFFFF, Op(0x81)});
  Load({0x7FFF}, 10);
  RunProgram();
  ExpectFlags({1, 1, 0});
  EXPECT_EQ(m->GR[2], 65535);  // zero upper half

  SetUp();
  m->GR[1] = 1;
  Load({0, Op(0x20, 1), 10, Op(0x10, 3), 10, Op(0x81)});
  Load({0x7FFF}, 10);
  RunProgram();
  ExpectFlags({0, 0, 0});
}

TEST_F(Comet2Instr, UpperHalvesFollowTheirWriters) {
  // LD GR1,NEG ; LAD GR2,#FFFF ; ST GR1,20 ; RET
  Load({0, Op(0x10, 1), 10, Op(0x12, 2), 0xFFFF, Op(0x11, 1), 20, Op(0x81)});
  Load({0xFFFF}, 10);
  b->MaxMemory = 30;
  RunProgram();
  EXPECT_EQ(m->GR[1], -1);
  EXPECT_EQ(m->GR[2], 65535);
  EXPECT_EQ(m->Memory[20], -1);  // the whole GR cell
}

TEST_F(Comet2Instr, EffectiveAddressAddsTheIndexWithTheCarryDropped) {
  m->GR[2] = 2;
  m->GR[0] = 5;  // never an index
  // LAD GR1,#FFFF,GR2 ; LD GR3,10,GR0 ; LD GR4,10,GR2 ; RET
  Load({0, Op(0x12, 1, 2), 0xFFFF, Op(0x10, 3, 0), 10, Op(0x10, 4, 2), 10, Op(0x81)});
  Load({111, 0, 333}, 10);
  RunProgram();
  EXPECT_EQ(m->GR[1], 1);
  EXPECT_EQ(m->GR[3], 111);
  EXPECT_EQ(m->GR[4], 333);
  EXPECT_EQ(m->effAdr, 12);
}

TEST_F(Comet2Instr, JumpsTakenAndNotTaken) {
  // LD GR1,ZERO ; JNZ 20 (not taken) ; JZE 12 (taken) ; 12: JPL 20 (not
  // taken) ; JMI 20 (not) ; JUMP 18 ; 18: RET
  Load({0, Op(0x10, 1), 30, Op(0x62), 20, Op(0x63), 12});
  Load({Op(0x65), 20, Op(0x61), 20, Op(0x64), 18, Op(0x81)}, 12);
  Load({Op(0x81)}, 20);  // a RET that must not be reached
  Load({0}, 30);
  RunProgram();
  EXPECT_EQ(m->PR, 18);
  EXPECT_EQ(m->execCount[20], 0);
  EXPECT_EQ(m->execCount[18], 1);
}

TEST_F(Comet2Instr, JovLeavesTheOverflowFlag) {
  m->GR[1] = 0x7FFF;
  // ADDA GR1,ONE ; JOV 10 ; RET ; 10: RET
  Load({0, Op(0x20, 1), 20, Op(0x66), 10, Op(0x81)});
  Load({Op(0x81)}, 10);
  Load({1}, 20);
  RunProgram();
  EXPECT_EQ(m->PR, 10);
  EXPECT_EQ(m->Fovf, 1);
}

TEST_F(Comet2Instr, JmiJzeAndJplUseTheWideSumOthersWrap) {
  struct JumpCase {
    const char* what;
    int code;
    int32_t pr;
  };
  // GR7 = #FFFF, target 16: the wide sum is 65551, the wrapped one 15.
  const std::vector<JumpCase> cases = {
      {"JMI", 0x61, 65551}, {"JZE", 0x63, 65551}, {"JPL", 0x65, 65551},
      {"JNZ", 0x62, 15},    {"JUMP", 0x64, 15},   {"JOV", 0x66, 15},
  };
  for (const JumpCase& c : cases) {
    SCOPED_TRACE(c.what);
    SetUp();
    m->GR[7] = 0xFFFF;
    // Flags that make each jump taken.
    if (c.code == 0x61) m->Fsign = 1;
    if (c.code == 0x63) m->Fzero = 1;
    if (c.code == 0x66) m->Fovf = 1;
    Load({0, Op(c.code, 0, 7), 16, Op(0x81)});
    Load({Op(0x81)}, 15);
    const std::string out = RunProgram();
    EXPECT_EQ(m->PR, c.pr);
    EXPECT_FALSE(Has(out, "Runtime Error"));
    EXPECT_TRUE(Has(out, kEndE));
  }
}

TEST_F(Comet2Instr, CallAndRetRestoreDepthAndSp) {
  // CALL 10 ; RET ; 10: PUSH 5,GR1 ; POP GR2 ; RET
  m->GR[1] = 3;
  Load({0, Op(0x80), 10, Op(0x81)});
  Load({Op(0x70, 0, 1), 5, Op(0x71, 2), Op(0x81)}, 10);
  RunProgram();
  EXPECT_EQ(m->GR[2], 8);
  EXPECT_EQ(m->callDepth, 0);
  EXPECT_EQ(m->SP, 0xFFFF);
  EXPECT_EQ(m->PR, 3);
  EXPECT_EQ(m->stackArea[1], 3);  // the return address was the first cell
}

TEST_F(Comet2Instr, PopOnAnEmptyStackThenTopLevelRet) {
  m->GR[1] = 99;
  Load({0, Op(0x71, 1), Op(0x81)});
  const std::string out = RunProgram();
  EXPECT_EQ(m->GR[1], 0);
  EXPECT_EQ(m->SP, 0x10000);
  EXPECT_EQ(m->PR, 2);
  EXPECT_TRUE(Has(out, kEndE));
}

TEST_F(Comet2Instr, StWithoutIndexUsesTheWholeCellWithoutGuard) {
  m->GR[1] = 42;
  b->MaxMemory = 10;
  Load({0, Op(0x11, 1), 0xFFFF, Op(0x81)});
  const std::string out = RunProgram();
  EXPECT_EQ(m->Memory[0xFFFF], 42);
  EXPECT_FALSE(Has(out, "Warning"));
  EXPECT_EQ(m->effAdr, 0);
}

TEST_F(Comet2Instr, StWithoutIndexBeyondTheStorageStopsTheRun) {
  for (int32_t adr : {70000, -1}) {
    SetUp();
    Load({0, Op(0x11, 1), adr, Op(0x81)});
    std::string out = RunProgram();
    EXPECT_TRUE(Has(out, "lies outside the memory of the comet2."));
    EXPECT_TRUE(Has(out, kEndE));
    EXPECT_EQ(m->PR, 2);
  }
  m->dispLang = 0;
  EXPECT_TRUE(Has(RunProgram(), "COMET2 のメモリーの外側なので"));
}

TEST_F(Comet2Instr, ExitWordEndsTheRunAtIt) {
  Load({0, Op(0x88), Op(0x81)});
  const std::string out = RunProgram();
  EXPECT_EQ(m->PR, 1);
  EXPECT_TRUE(Has(out, kEndE));
}

}  // namespace
}  // namespace comet2_test
