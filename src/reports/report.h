// The register and memory report: one writer for both report files, the
// label text of an address, the numeric columns and the time stamp.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "comet2/comet2.h"
#include "records/stages.h"  // DspRegMry70NW(Tcomet2&, const std::string&)
#include "records/text.h"

// int DspRegMry70NW(Tcomet2& mc, const std::string& reportName);
//   -- declared in records/stages.h. Writes the report file `reportName`
//   (temporary file + rename) from mc, b's lines and programs. Returns 0, or
//   -1 when the file could not be written (the pipeline goes on).

// The same report written into the file `path`, naming itself `reportName`
// (as the menu program's file of that name would), with or without the count
// column. 0, or -1 when the file could not be written.
int WriteRegMryFile(Tcomet2& mc, const std::string& path, const std::string& reportName, bool countColumn);

// The two report files, for the console note.
enum class ReportKind { Assembled, Resultant };

// The console note before a report: "---> " name " " and, in Japanese, on
// the first note of each kind since the start of the program, the hint that
// the whole memory has been saved. `lang` 0 Japanese, else English.
void DspReportHintNW(int lang, ReportKind kind, const std::string& reportName);

// All labels standing at absolute address `adr`, blank-separated, in line
// order (UTF-8).
std::string labelsAtAdr(int adr);

// The numeric columns of a value: char, hex, unsigned, signed, binary.
// 65 gives " 'A':#0041:   65:   +65: 0000 0000 0100 0001:".
std::string NumericRowText(int32_t v);

// The report's time stamp in language `lang` for time `t` (local time). In
// English it ends with a line feed (asctime form). Hour 0 is shown as 12.
std::string ReportTimeStamp(int lang, std::time_t t);

// The time the report shows: SOURCE_DATE_EPOCH when set, else now.
std::time_t ReportNow();

// Resets the first-time hint counters (for tests).
void ResetReportHintCounts();
