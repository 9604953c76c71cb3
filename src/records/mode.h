// The family of modes. The same assembler exists in six modes, which the
// learner switches between with the mode selector; they share every stage
// and differ only in what one row of the table of modes lists. A stage that
// behaves differently in some mode asks the row of the running mode, never
// its name.
#pragma once

#include <cstdint>
#include <string>

// How a mode reads a source file.
enum class SourceReader : uint8_t {
  Detected,  // the encoding is told (mark, census): Shift-JIS, UTF-8, UTF-16
  Narrow,    // the bytes as they stand in the system code page, no detection;
             // each line is widened into the wide records
};

// The variant of the machine's run: its ceiling, the numbers and openings of
// its stop texts and its own boot flag. The variants' figures stand beside
// the run loop.
enum class RunVariant : uint8_t {
  Wide,    // the canonical run: ceiling 65000
  Narrow,  // its own opening of the Japanese PR stop, counts not cleared
  Fixed,   // the fixed-table run: ceiling 3500
};

// One mode. The fields after the names are grouped by the stage that asks.
struct FightMode {
  const char* name;         // "NWW", "WP", ...; the banner shows it
  const char* tag;          // tag of the time line, "FightNWW"
  char ModeLetter;          // 'W', 'w', 'A', 'H'
  const char* CarrierName;  // nullptr: not set

  // Loading.
  SourceReader reader;
  int maxLineChars;      // bytes kept of a line, 0: no limit (a longer one is told once)
  int maxLines;          // lines a file may have, 0: no limit

  // Analysis.
  int maxPrograms;          // START/END pairs a file may hold, 0: no limit
  int maxDcDsLines;         // DC and DS lines a file may hold, 0: no limit
  bool acceptsExit;         // EXIT is an opcode, with the stop word #8800
  bool warnsUncalledPrg;    // programs that nothing calls draw a warning

  // Link, report and run.
  bool fixedBudget;  // 3500 words of DC/DS, 300 of literals, 3500 in all, instead of 65035
  bool countColumn;  // the report shows the execution count of each word
  RunVariant run;

  // Messages, menus, the loop.
  bool clearLogAtEntry;      // msgLog cleared at the Fight's entry
  bool clearLogAtHead;       // ... and at the head of every pass
  bool repeatLog;            // the messages printed again before the time line
  bool reportEditorIndex;    // TextEditorIndex out of range reported at entry
  bool compare8888;          // loadResult compared with 8888, not with 9000 and 7000
  bool enterHintAlwaysThe;   // the main menu's twin: the English pause never says "your"
  bool clockNameAfterErrors; // the time line after errors names the clock
};

// The row of a mode name ("NWW", "NwW", "WP", "AP", "NA", "NaW", "NH"); an
// unknown name gives the row of NWW.
const FightMode& FightModeOf(const std::string& name);

// The row of the running Fight. Until a Fight has started (and in tests that
// drive the stages alone) it is the row of NWW.
const FightMode& CurrentMode();
void SetCurrentMode(const FightMode& mode);
