// Program structure: START/END pairing and program names. The stages the
// pipeline calls are declared in records/stages.h (StartEnd10W,
// StartEnd20NW, StartEndNW, IsAnySrcOutsideStartEndNW, CkPrgNameNW,
// CkPrgNameDoubleNW, CkPrgNameInUseNW); the helpers and the START operand
// check are declared here.
#pragma once

#include "records/stages.h"
#include "records/text.h"

// Why no END (or START) was found: " END;" or a 2-byte space next to the
// word. Report the first such line, count 1 error on b; return 1 when found.
int CkEnd_LR_W();
int CkSTART_LR_W();
int DetSTARTatZenKakuSpaceW();
int DetENDatZenKakuSpaceW();

// The START line's machine words from its operand (the execution start
// address), with its checks. `prg` is the program index, `oprnd` the operand
// text, `line` the START line index. Counts on cs. Sets labelUsed of the
// line whose label is named and prgUsed of the program named. Returns 0, or
// -1 after an Error.
int CkStartAdrOperandNW(int prg, wview oprnd, int line);
