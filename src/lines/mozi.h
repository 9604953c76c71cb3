// Character checks. The Analyst family explains what is wrong with a word
// that has already failed a check, at length, counting its findings on cs.
// The CkMozi family answers plain questions about a word and prints nothing.
#pragma once

#include "records/text.h"

// A 2-byte space (U+3000) in the word: one Error, whatever their number.
// Returns 0.
int AnalystZenKSpace20NW(wview word, int line);

// Any character outside the 1-byte range in the word: one Error. `atStr`
// names the place for the log.
void AnalystZenKMoziW(wview word, int line, wview atStr);

// Three tests on the word (up to its first zero unit): GR8/GR9 at the start
// (words only, no count), a digit first, a small letter anywhere. Returns
// how many of them hit.
int AnalystNW(wview word, int line);

// Position of the first character outside A-Z and 0-9, or 0 if none.
// A hit on the first character is position 0, the same as none.
int CkMozi10NW(wview word);
// Position of the first character a-z, or 0 if none (same rule).
int CkSmallLetterNW(wview word);
// 1 when a hexadecimal text (a leading "#" skipped) holds anything other
// than 0-9 and A-F, else 0.
int CkMozi20W(wview hex);
