// Address operands, literals and the macro instructions IN, OUT, RPUSH and
// RPOP: the checks made while the instruction rules run, and the address
// pass that gives every line of a program its address and its words.
#pragma once

#include "records/correct_scode.h"
#include "records/records.h"
#include "records/text.h"

// ---- address operands --------------------------------------------------
// Shapes the address operand in slot `slotNr` (1 or 2) of an instruction
// line: missing operand, lone comma, missing comma before an index register,
// a useless trailing comma. Sets c.ChFlag, oprndCount, word_kazu 2 and
// second_word 0. Returns 0 when the operand may be resolved later, -1 after
// an error.
int CkAdrOperandNWCS(TCorrectScode& c, int line, int slotNr);

// The address pass of program `prg`: every line with an opcode gets rlAdr and
// abAdr and its vecWord; every address operand is resolved; the literals are
// placed behind the program; prgWordSize, prgLiteStart, prgLastAdr are set and
// the next program's AbAdrAtStart (or b->MaxMemory after the last one).
// Called at the end of Fight12NW (first pass) and by the link (second pass).
// Counts on `cs`. Returns 0, or -1 when a line had no branch.
int AdrCk53NWCS(int prg);

// One entry of a line's vecWord: the word, its two addresses, the line and
// a note for the report (a text that lives as long as the program).
WordRecT<wstr> MakeWord(int32_t code, int rl, int ab, int line, wview note = wview());

// Resolves the address operand of slot `slotNr` (1 or 2, cut of its comma)
// of `line`: program names of the file first, then the labels of the line's
// program, hexadecimal and decimal constants, literals. Sets second_word (and
// the second vecWord entry if there is one). Returns 0 when second_word is
// set, -1 after an error (counted on c).
int CkAdrConst20NWCS(TCorrectScode& c, int line, int slotNr);

// Drops the hash maps of program names and labels, so that the next lookup
// builds them again from b. AdrCk53NWCS rebuilds them itself; call this when
// the records were changed outside the pass (tests).
void ResetAdrLookupNW();

// ---- literals ------------------------------------------------------------
// Syntax check of the literals of program `prg` (decimal, hexadecimal,
// string). Counts on cs. Returns 0.
int CkLiteral15NW(int prg);

// Closing check of the string literals of program `prg`, and removal of the
// blanks next to commas in front of the first "=". Counts on cs. Returns 0.
int CkStrConstLiteralNW10CS(int prg);

// `pos` is the index of an opening apostrophe in `text`; moves `pos` to the
// matching closing apostrophe (a doubled apostrophe is one character).
// Returns 0 when found, -1 when the text ends first (pos then at the end),
// -2 when pos was not at an apostrophe (reported as a program fault).
int DetStrConstGL10CS(int& pos, wview text);

// ---- macro instructions ----------------------------------------------------
// IN and OUT during the dispatch: word_kazu 12, the comma checks, then both
// operands through InOut1NWCS(c, line, nr). Returns 0, or -1 after an error.
int macro2NWCS(TCorrectScode& c, int line);

// RPUSH (word_kazu 14) and RPOP (7) during the dispatch. Returns 0 or -1.
int macroR2NWCS(TCorrectScode& c, int line);

// The check of operand `nr` (1 or 2) of IN or OUT. Returns 0 or -1.
int InOut1NWCS(TCorrectScode& c, int line, int nr);

// The expansion of IN or OUT into its twelve words in vecWord (addresses are
// written by the caller). Returns 0, or -1 after an error.
int InOut1NWCS(TCorrectScode& c, int line);

// The expansions of RPUSH (14 words) and RPOP (7 words): the line takes the
// addresses of the counters, each word the next address; both counters go up.
int ExpandRPushNW(int line, int& rlAdr, int& abAdr);
int ExpandRPopNW(int line, int& rlAdr, int& abAdr);
