// The opcodes of the language as one small number each, so that a pass can
// tell what a line is by one switch instead of comparing its opcode text
// with a list of names.
#pragma once

#include <cstdint>
#include <string_view>

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

// A name of at most five capital letters packed into one number: its
// length above its letters, eight bits each.
template <class C>
constexpr uint64_t Key(std::basic_string_view<C> s) {
  uint64_t k = s.size();
  for (C c : s) k = k << 8 | static_cast<uint8_t>(c);
  return k;
}
constexpr uint64_t Key(const char16_t* s) { return Key(wview(s)); }

template <class C>
constexpr bool IsName(std::basic_string_view<C> s) {
  if (s.empty() || s.size() > 5) return false;
  for (C c : s)
    if (c < C('A') || c > C('Z')) return false;
  return true;
}

}  // namespace opcodes

// The opcode that `op` names exactly, Op::None for an empty text and
// Op::Other for any other text (small letters included). The narrow form
// reads the names of the instruction table.
template <class C>
constexpr Op OpOf(std::basic_string_view<C> op) {
  using opcodes::Key;
  if (op.empty()) return Op::None;
  if (!opcodes::IsName(op)) return Op::Other;
  switch (Key(op)) {
    case Key(u"START"): return Op::START;
    case Key(u"END"): return Op::END;
    case Key(u"DC"): return Op::DC;
    case Key(u"DS"): return Op::DS;
    case Key(u"LD"): return Op::LD;
    case Key(u"ST"): return Op::ST;
    case Key(u"LAD"): return Op::LAD;
    case Key(u"ADDA"): return Op::ADDA;
    case Key(u"SUBA"): return Op::SUBA;
    case Key(u"ADDL"): return Op::ADDL;
    case Key(u"SUBL"): return Op::SUBL;
    case Key(u"AND"): return Op::AND;
    case Key(u"OR"): return Op::OR;
    case Key(u"XOR"): return Op::XOR;
    case Key(u"CPA"): return Op::CPA;
    case Key(u"CPL"): return Op::CPL;
    case Key(u"SLA"): return Op::SLA;
    case Key(u"SRA"): return Op::SRA;
    case Key(u"SLL"): return Op::SLL;
    case Key(u"SRL"): return Op::SRL;
    case Key(u"JMI"): return Op::JMI;
    case Key(u"JNZ"): return Op::JNZ;
    case Key(u"JZE"): return Op::JZE;
    case Key(u"JUMP"): return Op::JUMP;
    case Key(u"JPL"): return Op::JPL;
    case Key(u"JOV"): return Op::JOV;
    case Key(u"PUSH"): return Op::PUSH;
    case Key(u"POP"): return Op::POP;
    case Key(u"CALL"): return Op::CALL;
    case Key(u"RET"): return Op::RET;
    case Key(u"SVC"): return Op::SVC;
    case Key(u"NOP"): return Op::NOP;
    case Key(u"IN"): return Op::IN;
    case Key(u"OUT"): return Op::OUT;
    case Key(u"RPUSH"): return Op::RPUSH;
    case Key(u"RPOP"): return Op::RPOP;
    case Key(u"EXIT"): return Op::EXIT;
    default: return Op::Other;
  }
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
