// The opcodes of the language as one small number each, so that a pass can
// tell what a line is by one switch instead of comparing its opcode text
// with a list of names.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "records/text.h"

enum class Op : uint8_t {
  None,  // no opcode (an empty field)
  Other,  // a text that names no instruction
  START, END, DC, DS,
  LD, ST, LAD, ADDA, SUBA, ADDL, SUBL, AND, OR, XOR, CPA, CPL, SLA, SRA, SLL, SRL,
  JMI, JNZ, JZE, JUMP, JPL, JOV, PUSH, POP, CALL, RET, SVC, NOP,
  IN, OUT, RPUSH, RPOP,
  EXIT,  // the no-operand stop that some modes know
};

namespace opcodes {

struct Name {
  const char* text;
  Op op;
};
inline constexpr Name kNames[] = {
    {"START", Op::START}, {"END", Op::END},   {"DC", Op::DC},     {"DS", Op::DS},       {"LD", Op::LD},
    {"ST", Op::ST},       {"LAD", Op::LAD},   {"ADDA", Op::ADDA}, {"SUBA", Op::SUBA},   {"ADDL", Op::ADDL},
    {"SUBL", Op::SUBL},   {"AND", Op::AND},   {"OR", Op::OR},     {"XOR", Op::XOR},     {"CPA", Op::CPA},
    {"CPL", Op::CPL},     {"SLA", Op::SLA},   {"SRA", Op::SRA},   {"SLL", Op::SLL},     {"SRL", Op::SRL},
    {"JMI", Op::JMI},     {"JNZ", Op::JNZ},   {"JZE", Op::JZE},   {"JUMP", Op::JUMP},   {"JPL", Op::JPL},
    {"JOV", Op::JOV},     {"PUSH", Op::PUSH}, {"POP", Op::POP},   {"CALL", Op::CALL},   {"RET", Op::RET},
    {"SVC", Op::SVC},     {"NOP", Op::NOP},   {"IN", Op::IN},     {"OUT", Op::OUT},     {"RPUSH", Op::RPUSH},
    {"RPOP", Op::RPOP},   {"EXIT", Op::EXIT},
};

// The place of a text of two to five characters in the table below: the
// numbers are chosen so that no two names share a place.
constexpr size_t Place(uint32_t first, uint32_t second, uint32_t last, size_t len) {
  return (first + second * 114 + last * 5 + len) & 127;
}

struct Entry {
  Op op = Op::Other;
  uint8_t len = 0;
  char text[5] = {};
};

constexpr std::array<Entry, 128> MakeTable() {
  std::array<Entry, 128> t{};
  for (const Name& n : kNames) {
    size_t len = 0;
    while (n.text[len] != 0) ++len;
    Entry& e = t[Place(static_cast<uint8_t>(n.text[0]), static_cast<uint8_t>(n.text[1]),
                       static_cast<uint8_t>(n.text[len - 1]), len)];
    if (e.len != 0) throw "two names share a place";
    e.op = n.op;
    e.len = static_cast<uint8_t>(len);
    for (size_t k = 0; k < len; ++k) e.text[k] = n.text[k];
  }
  return t;
}
inline constexpr std::array<Entry, 128> kTable = MakeTable();

}  // namespace opcodes

// The opcode that `op` names exactly, Op::None for an empty text and
// Op::Other for any other text (small letters included). The narrow form
// reads the names of the instruction table.
template <class C>
constexpr Op OpOf(std::basic_string_view<C> op) {
  using U = std::make_unsigned_t<C>;
  const size_t n = op.size();
  if (n == 0) return Op::None;
  if (n < 2 || n > 5) return Op::Other;
  const opcodes::Entry& e =
      opcodes::kTable[opcodes::Place(static_cast<U>(op[0]), static_cast<U>(op[1]), static_cast<U>(op[n - 1]), n)];
  if (e.len != n) return Op::Other;
  for (size_t k = 0; k < n; ++k)
    if (static_cast<U>(op[k]) != static_cast<uint8_t>(e.text[k])) return Op::Other;
  return e.op;
}
constexpr Op OpOf(wview op) { return OpOf<char16_t>(op); }
constexpr Op OpOf(const wstr& op) { return OpOf<char16_t>(wview(op)); }
constexpr Op OpOf(const char16_t* op) { return OpOf<char16_t>(wview(op)); }
constexpr Op OpOf(std::string_view op) { return OpOf<char>(op); }

// The instructions whose first word is composed from the instruction table,
// by their class: a register and an address or a second register (both
// forms), a register and an address only, an address only.
constexpr bool IsRegisterFamily(Op op) {
  return op == Op::LD || op == Op::ADDA || op == Op::SUBA || op == Op::ADDL || op == Op::SUBL || op == Op::AND ||
         op == Op::OR || op == Op::XOR || op == Op::CPA || op == Op::CPL;
}
constexpr bool IsAddressOnlyFamily(Op op) {
  return op == Op::ST || op == Op::LAD || op == Op::SLA || op == Op::SRA || op == Op::SLL || op == Op::SRL;
}
constexpr bool IsJumpFamily(Op op) {
  return op == Op::JMI || op == Op::JNZ || op == Op::JZE || op == Op::JUMP || op == Op::JPL || op == Op::JOV ||
         op == Op::PUSH || op == Op::CALL || op == Op::SVC;
}
