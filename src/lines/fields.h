// The label field and the opcode field: the checks that run first on every
// line of a program, before any operand is looked at. Messages are counted
// on cs and written in cs's language.
#pragma once

#include "records/text.h"

// The label of every line from `first` to `last` (both included) into
// labelStr, then the five rules of labels, one pass each: a label without
// instruction, the first character, the character set (first finding only),
// the length (cs->tMaxLabelLen) and the reserved words GR0-GR7; at the end
// CkLabelDoubleNW on the same range.
void Label30GNW(int first, int last);

// Whether every opcode of program `prg` (START to END, both included) is a
// name of the language. Only the first unknown opcode is examined, and
// explained at length. Returns 0 (the gate behind it decides).
int CkOpStrNW(int prg);

// An instruction without operand with a semicolon glued to it (" NOP;",
// " RET;", ...), looked for in rawStr of `line`. Returns -1 when it reported
// the Error, else 0.
int RemoveNoOprndOpSemiColnNW(int line);

// A comma at the end of the opcode of `line`: an Error that is printed and
// counted but not logged.
void AnalystOPNW(int line);

// The placement rule of DC and DS. In this mode it never fires: the
// program's firstDefLine is 2147483647. Returns 0.
int DetDefLineNW(int prg);

// The opcode table of CkOpStrNW: the 36 names of the language.
bool IsOpcodeOfCasl2(wview op);
