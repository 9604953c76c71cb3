// Code generation and link: the word lists of DC and DS lines, character
// literals, the loader, the map from addresses to lines, the memory budget
// and the link of all programs of a file into one image.
#pragma once

#include "records/records.h"
#include "records/stages.h"  // Link31NWGM(TDiagBase&)
#include "records/text.h"

// Gives each DS line of program `prg` its word list: word_kazu words of 0,
// note "DS". Called once per program in the analysis, before the address
// pass. Returns 0 (negative only for an impossible program index).
int SetMryInAtDS_NWCS(int prg);

// Gives each DC line of program `prg` its operands and word list, starting
// each line afresh (word_kazu 0, vecWord emptied). Called in the analysis and
// again at the start of the link, when every line has its address. Reports
// empty constants, out-of-range decimals and unknown labels on cs. Returns 0
// (negative only for an impossible program index).
int SetMryInAtDC_NWCS(int prg);

// Makes the record of the character literal `liteText` (with its "=", e.g.
// "='A''B'") on line `line`: vecLiteConst is emptied and one record made,
// one liteChars entry per character. A text shorter than 3 characters leaves
// the line as it is. Returns the number of characters (words), or 0.
int SetLiteCharConstMryInNWBD(int line, wview liteText);

// Writes program `prg` into m->Memory (literals behind its lines) and sets
// the AbAdrAtStart of the next program. Errors met here (an empty character
// constant) count on cs and end the call with -1.
int SetMemoryNW10GM(TDiagBase& game, int prg);

// Fills m->lineOfAdr: for every address of the image, the index of the line
// that owns its word (literal words point at the line that uses them).
void addressToLineMap();

// The memory budget: 0 when the programs of the file fit in 65035 words,
// -1 above 65535 words, -2 from 65036 to 65535. English messages only.
int CkMaxMrySizeNW();
// The budget of the fixed-table mode: 3500 words of DC and DS, 300 literal
// words and 3500 words in all. 0 when the file fits, else the messages are
// out and the result is not 0.
int CkMaxMemory();

// What the Fight does to the machine after a clean analysis and before
// Link31NWGM: reset m, give it the language of b, and clear the registers,
// SP, flags, PR, the first 1000 words of Memory and the 500 words from 65035.
void PrepareMachineForLink();

// int Link31NWGM(TDiagBase& game);  -- declared in records/stages.h:
//   0 image loaded; ~p (= -(p+1)) errors in the second address pass of
//   program p; -2 the memory budget failed.
