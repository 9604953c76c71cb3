// The analysis state of the assembler. Most checks of a line are written
// against this object and count their messages on it.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "records/records.h"

class TCorrectScode : public TDiagBase {
 public:
  TCorrectScode();

  // The label table of the fixed-table mode.
  std::array<wstr, MaxLine> labelTable;
  int LabelKazuInFile = 0;

  // DC, DS and literal sizes.
  std::vector<int> vecsizeLiteConst;
  int max_rl_memory_d = 0;
  int max_rl_memory_l = 0;

  // Register names "GR0" to "GR7" with an empty terminator entry.
  std::array<std::string, 9> GRNameA;
  std::array<wstr, 9> GRNameW;
  std::array<wstr, 8> GRStr;
  int GRKazu = 8;

  // The shorter narrow prefixes of some operand checks.
  std::string ErrorJS, WarningJS, LineJS, ErrorES, WarningES, LineES;
  int shortPrefixFlag = 1;

  // 1 when the address operand ended with a comma, 0 when not.
  uint8_t ChFlag = 0;

  // Restores the register tables and the prefix strings.
  void Reset();

  // ---- analysis state of the line passes (added by their subsystems) ----

  // ---- label and opcode fields, line-analysis driver ----
  // Longest label, in 16-bit characters; 8 after every reset.
  int tMaxLabelLen = 8;
  // Per program: the first DC or DS line that the placement rule found;
  // 2147483647 means none (the rule never fires in this mode).
  std::vector<int> firstDefLine;
};

extern TCorrectScode* cs;

// The analysis state back to its start.
void ResetCorrectScode();
