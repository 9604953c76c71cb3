// The stages of one pass, in the order in which the pipeline calls them.
// Each returns an integer; a negative value stops the pass at once. `game`
// is the main object, whose counters the gates read after Sum.
#pragma once

#include <string>

#include "records/records.h"

class Tcomet2;

// Loading. LoadSource shows the main menu and, if it chose a file, reads it
// with ReadSource. It returns the menu's value when not 0; else 0 when the
// file was read and 1 when it was not.
int LoadSource(std::string& fileName);
// Reads a file into vecSrcW with the reader of the running mode, 0 when read
// and 1 when not: ReadSourceW detects the encoding (mark and census) and reads
// Shift-JIS, UTF-8 or UTF-16; ReadSourceA takes the bytes of each line as they
// stand in the system code page, with the mode's limits on the characters of
// a line and the lines of a file.
int ReadSource(const std::string& fileName);
int ReadSourceW(const std::string& fileName);
int ReadSourceA(const std::string& fileName);

// Line scanner.
void CopyRawLinesNW();
int editNWB();

// START and END pairing.
int StartEnd10W();
int StartEnd20NW();
int StartEndNW(int prg);
int CutCommentNW(int prg);
int IsAnySrcOutsideStartEndNW();

// Program names.
int CkPrgNameNW(int prg);
int CkPrgNameDoubleNW();
int CkPrgNameInUseNW();

// The per-line analysis of all programs.
int Fight12NW(TDiagBase& game);
int CkLabelInUseNW();

// Link and memory image.
int Link31NWGM(TDiagBase& game);

// The run.
int Run3NW(Tcomet2& mc);

// Writes a report file and shows its hint.
int DspRegMry70NW(Tcomet2& mc, const std::string& reportName);
// The same report without the column of execution counts.
int DspRegMry68NA(Tcomet2& mc, const std::string& reportName);

// The gate's sum: for each of the four counters, game's counter := the same
// counter of TFileData + b + cs.
void Sum(TDiagBase& game);
