// The line scanner: the small passes that tidy each line's working text and
// cut it into label, opcode, operand and comment fields.
//
// Per-program passes take the program index `prg` and work on the lines of
// b->vecPrgW[prg], from its START line (prgFirstLine) to its END line
// (prgEndLine); TakeOutLabelStrNW includes the END line, the others stop
// before it. Errors are counted on cs.
// Each returns 0, or a negative value when it reported an Error that ends
// the pass (edit30cNW, edit50NW).
#pragma once

#include "records/stages.h"  // editNWB(), CutCommentNW(int prg)
#include "records/text.h"

// The label, the opcode and the operand text (with its copy cut to 225
// characters) of every line, and the length warning of the first line whose
// operand text is longer.
int TakeOutLabelStrNW(int prg);
int CutOprndComNW(int prg);
int CopyOprndComToEditNW(int prg);
int edit30cNW(int prg);
int edit50NW(int prg);
int DivideCommentNW(int prg);
int CopyOprndComStrToChH2BD(int prg);

// The 35 opcodes whose operand text CutOprndComNW cuts at the first ";"
// (DC is left out: a string constant may hold a semicolon).
bool IsCutOprndComOp(wview op);
