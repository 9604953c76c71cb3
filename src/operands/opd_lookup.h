// The name lookups of the address pass: program names of the file and labels
// of one program, through indexes built at the head of the pass of each
// program.
// They give the answers of a linear search in line order: the first match,
// by exact comparison.
#pragma once

#include "records/text.h"

// The index of the first program named `name`, or -1.
int FindPrgNameNW(wview name);
// The index of the first line of program `prg` whose label is `name`, or -1.
int FindLabelNW(int prg, wview name);
// The program whose line range holds `line`, or -1.
int PrgOfLineNW(int line);
// Makes `prg` the program of the lookups and builds its label map and the
// map of program names.
void PrepareLookupNW(int prg);
