// The high byte of the first word of an instruction form, looked up by the
// opcode's number: the instruction table arranged once, at compile time.
#pragma once

#include <array>
#include <cstdint>

#include "codegen/instr_table.h"
#include "lines/opcodes.h"

namespace instr_codes {

constexpr int kOps = static_cast<int>(Op::EXIT) + 1;
constexpr int kForms = static_cast<int>(OpForm::Invalid) + 1;

constexpr std::array<std::array<int16_t, kForms>, kOps> MakeTable() {
  std::array<std::array<int16_t, kForms>, kOps> t{};
  for (auto& row : t) row.fill(-1);
  // The first form of a name in the table wins, as in InstrCode.
  for (const InstrForm& f : kInstrTable) {
    int16_t& cell = t[static_cast<int>(OpOf(f.mnemonic))][static_cast<int>(f.form)];
    if (cell < 0) cell = f.code;
  }
  return t;
}

inline constexpr auto kTable = MakeTable();

}  // namespace instr_codes

// InstrCode for the opcode `op`: the code of its form, or -1.
constexpr int InstrCodeOf(Op op, OpForm form) {
  return instr_codes::kTable[static_cast<int>(op)][static_cast<int>(form)];
}

// Every name of the table has the code that InstrCode gives it.
static_assert([] {
  for (const InstrForm& f : kInstrTable)
    for (int form = 0; form < instr_codes::kForms; ++form)
      if (InstrCodeOf(OpOf(f.mnemonic), static_cast<OpForm>(form)) != InstrCode(f.mnemonic, static_cast<OpForm>(form)))
        return false;
  return true;
}());
