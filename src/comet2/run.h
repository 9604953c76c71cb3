// The run of the COMET II machine and its small operating system.
//
// RunComet2 runs the loaded image from address 0 until the program ends or
// the simulator stops it, in the variant of the running mode; Run3NW
// (declared with the other stages in records/stages.h) is the Wide run. The
// services below are called from its instruction handlers; they are public so
// that the tests can reach them one by one.
#pragma once

#include <cstdint>
#include <string>

#include "comet2/comet2.h"
#include "records/mode.h"
#include "records/stages.h"

// The number of run variants; a RunVariant converted to int indexes arrays of
// this size.
constexpr int kRunVariants = 3;

// One flag per variant, indexed by the RunVariant: -99 until the English boot
// lines have been shown once in this process by a run of that variant.
extern int bootShown[kRunVariants];

// The run in a variant. The variants differ in the ceiling of PR and of the
// addresses read (65000, or 3500 in Fixed), the numbers and openings of the
// PR stop, the guard of an indexed ST (st511NW, or st511 in Fixed), the
// reserved size the warning of ST compares with (b->MaxMemory, or
// mc.tMaxMemory in Fixed), whether the counts are cleared at the start
// (Wide alone) and their boot flag. Returns 0.
int RunComet2(Tcomet2& mc, RunVariant variant);

// The SVC dispatch on the 16-bit effective address: 1 is IN, 2 is OUT, any
// other value writes a note and acts as NOP. Reads GR1 and GR2 of mc.
// Returns true when it has written into Memory (IN), which the run must know
// to decode its code again.
bool svcService(Tcomet2& mc, int32_t effAdr);

// The guard of PUSH: SP goes down by one, and u16(effAdr) is written to the
// stack cell when its index is below 501. Otherwise writes the stack message
// (with mc.PR at the PUSH's second word) and returns 9999; the run goes on.
int stackPush(Tcomet2& mc, int32_t effAdr);

// The guard of ST with an index, for the effective address `adr` (mc.PR at
// the ST's second word). Returns 999 after the stop message when adr is at or
// above 65000; writes the out-of-range warning when adr is at or above
// b->MaxMemory; otherwise says nothing. Returns 0 unless it stops the run.
int st511NW(Tcomet2& mc, int32_t adr);

// The guard of ST with an index in the Fixed run: as st511NW, but it stops at
// or above 3499, its stop message names 3465, and the warning compares with
// and names mc.tMaxMemory.
int st511(Tcomet2& mc, int32_t adr);

// The statistics after a run: maxExecCount over the first 65035 counts and
// execCountLog, its decimal logarithm rounded (0 when maxExecCount is 0).
void RunStatistics(Tcomet2& mc);

// "1st", "2nd", "3rd", otherwise the number and "th" (11th, 21th).
std::string OrdinalA(int n);
