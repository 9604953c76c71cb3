// Operand analysis: the driver Fight12NW (declared in records/stages.h) and
// its two own passes, the splitting of operand text into slots, the register
// operands and the rules of every machine instruction.
//
// Per-line functions take the analysis state `c` (normally *cs), on which
// they count their messages, and the line index. Slots are oprnd1ChH to
// oprnd4ChH of the line; a slot keeps the comma that ended its operand.
#pragma once

#include <array>

#include "records/correct_scode.h"
#include "records/records.h"
#include "records/stages.h"
#include "records/text.h"

// ---- driver passes (program index) ----------------------------------------
// Presets oprndCount and word_kazu (and the words of START) by opcode, and
// moves the text of operand-less lines into commentStr. Returns 0, or -1 on
// an opcode that no rule knows (a program fault, counted as an error).
int ExtractAllOprndsNWCS(int prg);
// The opcode dispatch: every line from START to END (both included) goes to
// the rule of its opcode. Returns 0.
int jnz2NWCS(int prg);

// ---- operand splitting (program index) ------------------------------------
// The comment cut by opcode class (class A, DC, class B).
int CutOprndCommentNW(int prg);
// oprndComStr trimmed of blanks at both ends.
int TrimOprndComStrNW(int prg);
// oprndComChH of every line but DC cut into the four slots; oprndCount.
int SplitOprndsNW(int prg);
// One operand from *slots[0] at srcPos into *slots[slotNr]. Returns 0 when
// the split may go on, 1 after an error of a literal string.
int ExtractOprnd5NW(int line, const std::array<wstr*, 5>& slots, int& slotNr, int& destPos, int& srcPos);

// ---- register operands -------------------------------------------------------
// The first operand of a register instruction. Returns the errors raised.
int CkOpRegOprndNW(TCorrectScode& c, int line, wview mnemonic, wview nameJ, wview nameE);
// The first operand of the jump family, PUSH, CALL, SVC. Returns the errors
// raised.
int CkOpAdrOprndNW(TCorrectScode& c, int line, wview mnemonic, wview nameJ, wview nameE);
// The operand of POP. Returns the errors raised.
int CkOpPopOprndNW(TCorrectScode& c, int line, wview mnemonic);
// True when oprnd1ChH, cut of a trailing comma, is GR0-GR7. With
// `needComma` a register without comma is an error (register instructions).
bool GRxLabelAll10NWCS(TCorrectScode& c, int line, bool needComma = true);
// The second register of a two-register form (oprnd2ChH). 0 when good.
int r2NWCS(TCorrectScode& c, int line);
// The index register in slot `slotNr` (3 for register instructions, 2 for
// the jump family), after CkAdrOperandNWCS has set c.ChFlag. Non-zero on
// error; on success sets oprndCount, word_kazu 2 and bits 3-0 of first_word.
int RegXNWCS(TCorrectScode& c, int line, int slotNr);
// Character checks of a wrong index operand in slot `slotNr`.
int AnalystIndexRegNWCS(TCorrectScode& c, int line, int slotNr);
// GR8 or GR9 as oprnd2ChH: `kind` is u"Warning" or u"Error". Returns 1 when
// it reported, else 0.
int AnalystGR89NWCS(TCorrectScode& c, int line, wview mnemonic, wview kind);

// ---- instruction rules (each: state and line index; 0 good, 1 error) ------
int ld2NWCS(TCorrectScode& c, int line);
int st2NWCS(TCorrectScode& c, int line);
int lad2NWCS(TCorrectScode& c, int line);
int adda2NWCS(TCorrectScode& c, int line);
int addl2NWCS(TCorrectScode& c, int line);
int suba2NWCS(TCorrectScode& c, int line);
int subl2NWCS(TCorrectScode& c, int line);
int and2NWCS(TCorrectScode& c, int line);
int or2NWCS(TCorrectScode& c, int line);
int xor2NWCS(TCorrectScode& c, int line);
int cpa2NWCS(TCorrectScode& c, int line);
int cpl2NWCS(TCorrectScode& c, int line);
int sla2NWCS(TCorrectScode& c, int line);
int sra2NWCS(TCorrectScode& c, int line);
int sll2NWCS(TCorrectScode& c, int line);
int srl2NWCS(TCorrectScode& c, int line);
int jmi2NWCS(TCorrectScode& c, int line);
int jpl2NWCS(TCorrectScode& c, int line);
int jnzRuleNWCS(TCorrectScode& c, int line);   // JNZ
int jzeRuleNWCS(TCorrectScode& c, int line);   // JZE
int jumpRuleNWCS(TCorrectScode& c, int line);  // JUMP
int jovRuleNWCS(TCorrectScode& c, int line);   // JOV
int callRuleNWCS(TCorrectScode& c, int line);  // CALL
int push2NWCS(TCorrectScode& c, int line);
int svc2NWCS(TCorrectScode& c, int line);
int pop2NWCS(TCorrectScode& c, int line);
// NOP, RET, EXIT (and the macros RPUSH, RPOP): an operand is an error.
// Without error the slots are emptied, oprndCount 0, word_kazu 1, and the
// words 0 (RET: first_word #8100). Returns 0, or 1 after the error.
int OpNoOperandNW(TCorrectScode& c, int line, wview oprnd1);
