// DC and DS analysis, and the parsers of decimal, hexadecimal and string
// constants used by DC, address operands and literals.
#pragma once

#include <cstdint>

#include "records/correct_scode.h"
#include "records/records.h"
#include "records/text.h"

// ---- DC ------------------------------------------------------------------
// Walks oprndComChH of a DC or DS line, cuts it at its first comment and
// checks that every string constant is closed and not empty (when doCheck is
// not 0). Returns 0, or -1 after an error.
int OprndAtDCtoChH_NWCS(TCorrectScode& c, int line, int doCheck = 1);

// DC: empty operand text is an error, else dc45NWCS. Returns 0 or -1.
int OprndAtDC_NWCS(TCorrectScode& c, int line);

// DC: commas and blanks between constants; then TakeOutOprndsAtDC. Returns 0
// or -1.
int dc45NWCS(TCorrectScode& c, int line);

// DC: splits the operand text at commas outside strings into vecOprndAtDC
// ("CharConst" / "Const"), then CkDC33NW. Returns 0 or -1.
int TakeOutOprndsAtDC(TCorrectScode& c, int line);

// DC: the kind of each operand ("Hex", "Dec", "AdrConst", "CharConst") and
// the checks of the constant parsers. Returns 0 or -1.
int CkDC33NW(TCorrectScode& c, int line);

// DC: word_kazu as the sum of the words of the operands. Returns 0 or -1.
int SetWordKazuAtDC_NWCS(TCorrectScode& c, int line);

// ---- DS ------------------------------------------------------------------
// DS: the operand must be a decimal number of zero or more. Returns 0 or -1.
int OprndAtDS_NWCS(TCorrectScode& c, int line);

// DS: word_kazu, oprndCount 1, first_word 0, vecWord of n zero words "DS",
// and the limits 65035 and 65535. Returns 0 or -1.
int SetWordKazuAtDS_NWCS(TCorrectScode& c, int line);

// The number of DC and DS lines of the programs up to `prg`, against the
// running mode's limit (none in most modes): over it, one Error at the first
// line beyond the limit. Returns -1 when it reported.
int CkDcDsLineKazu(TCorrectScode& c, int prg);

// ---- parsers ----------------------------------------------------------------
// Every parser reports on `w` with the line (index from 0) and, when constNr
// is above 0, the place of the constant on a DC line (from 1).

// Text check of a decimal constant starting with "+", "-" or a digit.
// `code` tells the place of the call: "0A4D7788" (DC) or "ABCB1678"
// (literals). Returns 0, or -1 after an error.
int CkDecConstG(TDiagBase& w, int line, int constNr, wview text, const char* code = "0A4D7788");

// The value of a checked decimal text: from -32768 to 32767 it is returned as
// it is; else a warning is given and the low 16 bits are returned (0..65535).
int32_t DecStrToIntG(TDiagBase& w, int line, int constNr, wview text);

// Text check of a hexadecimal constant starting with "#": capitals and
// digits, exactly four digits. Returns 0, or -1 after an error.
int CkHexConstG(TDiagBase& w, int line, int constNr, wview text);

// Text check of an address constant that names a label: capitals and digits,
// eight characters at most. `codes` are the codes of its three errors: a
// character other than a capital or digit, a small letter, and the length.
// Returns 0, or -1 after an error.
int CkAdrConstNameG(TDiagBase& w, int line, int constNr, wview text, const char* const (&codes)[3]);

// The error of a small letter (`lower`) or of another character that is not
// a capital or digit in an address constant, under `code`.
void SayAdrConstCharG(TDiagBase& w, int line, int constNr, wview text, bool lower, const char* code);

// The value of a checked hexadecimal text ("#" and up to four digits), from
// 0 to 65535; -1 after a program fault.
int32_t HexStrToIntG(wview text);

// `pos` is the index of the closing apostrophe of a string constant in
// `text`; what follows must be the end, ",", ";", or blanks leading to one of
// them. Returns 0, or -1 after an error.
int IsStrConstClosedGL10CS(TDiagBase& w, int line, wview text, int pos, int constNr = 0);

// The words of a string constant (the text from its opening apostrophe): its
// characters between the apostrophes, a doubled apostrophe counting one.
// Returns -1 (a program fault) when the text does not start with "'".
int CountWordKazuAtCharConst_NAWCS(wview text);

// "1st", "2nd", "3rd", then the number and "th".
wstr OrdinalW(int n);
