// One source file through the pipeline for a front end that is not the menu
// program: each file from the state that a fresh menu program has, in a mode
// and a language, with the console text of the stages sent nowhere and the
// diagnostics handed over as records.
#pragma once

#include <string>
#include <vector>

#include "records/mode.h"

namespace session {

// One diagnostic as a front end shows it.
struct Diagnostic {
  int line = 0;      // counted from 1; 0 for a message of no line
  int kind = 0;      // 100 error, 200 warning, 400 note, 500 memo
  std::string code;  // the identity of the check
  std::string text;  // UTF-8: the sentences on one line, without the prefix and the line number
};

// What a file came to.
struct Assembled {
  bool readable = false;  // false: readError says why the file was not read
  std::string readError;
  std::string encoding;  // the detected encoding, or the system code page of the narrow reader
  std::vector<Diagnostic> diagnostics;
  int errors = 0, warnings = 0, notes = 0, memos = 0;
  bool assembled = false;  // linked into a loaded image (the machine m holds it)
  int words = 0;           // the size of the image
};

// Every object of the program back to the state of a fresh start, in `mode`
// and language `lang` (0 Japanese, 1 English).
void FreshStart(const FightMode& mode, int lang);

// Reads, analyses and links one file after FreshStart. The console text of
// the stages goes nowhere. A clean file leaves its image in the machine,
// ready for a run.
Assembled AssembleFile(const std::string& path, const FightMode& mode, int lang);

// Writes the report of the machine m into `path`, byte for byte what the
// menu program writes into its assembled (or resultant) report in `mode`.
// False when the file could not be written.
bool WriteReport(const FightMode& mode, const std::string& path, bool resultant);

// The name of a kind: "error", "warning", "note", "memo".
const char* KindName(int kind);

}  // namespace session
