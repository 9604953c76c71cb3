// The instruction table of COMET II, written down once. The assembler reads
// it to compose first words; the simulator reads it to decode them.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// Operand forms of a machine instruction.
enum class OpForm : uint8_t {
  None,     // NOP, RET: one word
  RAdrX,    // r,adr[,x]: two words
  R1R2,     // r1,r2: one word
  AdrX,     // adr[,x]: two words, r nibble 0
  R,        // POP r: one word, x nibble 0
  Invalid,  // no instruction has this code
};

// What the simulator does with a code.
enum class OpExec : uint8_t {
  Invalid, Nop, Ld, St, Lad, Adda, Suba, Addl, Subl, And, Or, Xor, Cpa, Cpl,
  Sla, Sra, Sll, Srl, Jmi, Jnz, Jze, Jump, Jpl, Jov, Push, Pop, Call, Ret, Svc,
  Exit,  // #88: the stop word outside the published table
};

struct InstrForm {
  std::string_view mnemonic;
  OpForm form;
  uint8_t code;  // the high byte of the first word
  OpExec exec;
};

// Every form of every machine instruction, in the order of the table of the
// language standard.
inline constexpr std::array<InstrForm, 38> kInstrTable{{
    {"NOP", OpForm::None, 0x00, OpExec::Nop},
    {"LD", OpForm::RAdrX, 0x10, OpExec::Ld},
    {"LD", OpForm::R1R2, 0x14, OpExec::Ld},
    {"ST", OpForm::RAdrX, 0x11, OpExec::St},
    {"LAD", OpForm::RAdrX, 0x12, OpExec::Lad},
    {"ADDA", OpForm::RAdrX, 0x20, OpExec::Adda},
    {"ADDA", OpForm::R1R2, 0x24, OpExec::Adda},
    {"SUBA", OpForm::RAdrX, 0x21, OpExec::Suba},
    {"SUBA", OpForm::R1R2, 0x25, OpExec::Suba},
    {"ADDL", OpForm::RAdrX, 0x22, OpExec::Addl},
    {"ADDL", OpForm::R1R2, 0x26, OpExec::Addl},
    {"SUBL", OpForm::RAdrX, 0x23, OpExec::Subl},
    {"SUBL", OpForm::R1R2, 0x27, OpExec::Subl},
    {"AND", OpForm::RAdrX, 0x30, OpExec::And},
    {"AND", OpForm::R1R2, 0x34, OpExec::And},
    {"OR", OpForm::RAdrX, 0x31, OpExec::Or},
    {"OR", OpForm::R1R2, 0x35, OpExec::Or},
    {"XOR", OpForm::RAdrX, 0x32, OpExec::Xor},
    {"XOR", OpForm::R1R2, 0x36, OpExec::Xor},
    {"CPA", OpForm::RAdrX, 0x40, OpExec::Cpa},
    {"CPA", OpForm::R1R2, 0x44, OpExec::Cpa},
    {"CPL", OpForm::RAdrX, 0x41, OpExec::Cpl},
    {"CPL", OpForm::R1R2, 0x45, OpExec::Cpl},
    {"SLA", OpForm::RAdrX, 0x50, OpExec::Sla},
    {"SRA", OpForm::RAdrX, 0x51, OpExec::Sra},
    {"SLL", OpForm::RAdrX, 0x52, OpExec::Sll},
    {"SRL", OpForm::RAdrX, 0x53, OpExec::Srl},
    {"JMI", OpForm::AdrX, 0x61, OpExec::Jmi},
    {"JNZ", OpForm::AdrX, 0x62, OpExec::Jnz},
    {"JZE", OpForm::AdrX, 0x63, OpExec::Jze},
    {"JUMP", OpForm::AdrX, 0x64, OpExec::Jump},
    {"JPL", OpForm::AdrX, 0x65, OpExec::Jpl},
    {"JOV", OpForm::AdrX, 0x66, OpExec::Jov},
    {"PUSH", OpForm::AdrX, 0x70, OpExec::Push},
    {"POP", OpForm::R, 0x71, OpExec::Pop},
    {"CALL", OpForm::AdrX, 0x80, OpExec::Call},
    {"RET", OpForm::None, 0x81, OpExec::Ret},
    {"SVC", OpForm::AdrX, 0xF0, OpExec::Svc},
}};

// The stop word of the no-operand EXIT, outside the published table.
inline constexpr uint8_t kExitCode = 0x88;

// Decode table by the high byte of a first word, built from kInstrTable at
// compile time.
struct DecodeEntry {
  OpExec exec = OpExec::Invalid;
  OpForm form = OpForm::Invalid;
  uint8_t words = 0;  // 1 or 2; 0 for an invalid code
};

constexpr std::array<DecodeEntry, 256> MakeDecodeTable() {
  std::array<DecodeEntry, 256> t{};
  for (const InstrForm& f : kInstrTable) {
    uint8_t words = (f.form == OpForm::RAdrX || f.form == OpForm::AdrX) ? 2 : 1;
    t[f.code] = DecodeEntry{f.exec, f.form, words};
  }
  t[kExitCode] = DecodeEntry{OpExec::Exit, OpForm::None, 1};
  return t;
}

inline constexpr std::array<DecodeEntry, 256> kDecode = MakeDecodeTable();

// The code of a mnemonic in a form, or -1 when the instruction has no such
// form.
constexpr int InstrCode(std::string_view mnemonic, OpForm form) {
  for (const InstrForm& f : kInstrTable)
    if (f.mnemonic == mnemonic && f.form == form) return f.code;
  return -1;
}
