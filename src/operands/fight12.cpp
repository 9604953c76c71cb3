// The per-line analysis of all programs: a fixed chain of passes over the
// lines of one program, with a gate on the summed error counters behind the
// passes, so that no pass ever sees a program that an earlier one found
// wrong.
#include <array>

#include "codegen/codegen.h"
#include "codegen/instr_table.h"
#include "constants/constants.h"
#include "lines/fields.h"
#include "lines/opcodes.h"
#include "lines/scanner.h"
#include "operands/adr_const.h"
#include "operands/operands.h"
#include "operands/rules_util.h"
#include "records/console.h"
#include "records/mode.h"

using rules::L;

namespace {

// The text of an operand-less line (or of what stands behind the operand of
// POP and DS) into commentStr, trimmed of blanks, tabs and U+3000.
void TextToComment(SrcLineW& s, wview text) {
  wstr t = rules::TrimBlankZenW(text);
  if (s.commentStr.empty() && !t.empty()) s.commentStr = t;
}

// The text behind the first operand of oprndComChH.
wview BehindFirstOperand(const wstr& t) {
  size_t p = 0;
  while (p < t.size() && !IsBlankW(t[p])) ++p;
  return wview(t).substr(p);
}

// The gate: sum the counters into game; true when an error stands.
bool Gate(TDiagBase& game) {
  Sum(game);
  return game.ErrorKazu > 0;
}

}  // namespace

int ExtractAllOprndsNWCS(int prg) {
  int first = 0, end = 0;
  if (!rules::PrgLines(prg, first, end)) return 0;
  for (int i = first; i < end; ++i) {
    SrcLineW& s = L(i);
    const wstr& op = s.opStr;
    if (op.empty()) continue;
    const Op o = OpOf(op);
    if (IsRegisterFamily(o) || IsAddressOnlyFamily(o) || o == Op::DC || o == Op::IN || o == Op::OUT) continue;
    if (IsJumpFamily(o)) {
      s.word_kazu = 2;
      continue;
    }
    if (o == Op::POP || o == Op::DS) {
      s.oprndCount = 1;
      s.word_kazu = 1;
      s.second_word = 0;
      TextToComment(s, BehindFirstOperand(s.oprndComChH));
      continue;
    }
    if (o == Op::RPUSH || o == Op::RPOP || o == Op::RET || o == Op::NOP || o == Op::END ||
        (o == Op::EXIT && CurrentMode().acceptsExit)) {
      s.oprndCount = 0;
      s.word_kazu = 1;
      TextToComment(s, s.oprndComChH);
      continue;
    }
    if (o == Op::START) {
      s.oprndCount = 0;
      s.word_kazu = 1;
      s.first_word = 0;
      s.second_word = 0;
      continue;
    }
    con::out << "Prg Error: " << "line=" << (i + 1) << ": " << QuoteW(op);
    if (cs->IsJ()) {
      con::out << u"該当する OP code が存在しない。";
    } else {
      con::out << "There does not exist an op code " << "of " << op << " in casl2.";
    }
    con::out << con::endl;
    ++cs->ErrorKazu;
    return -1;
  }
  return 0;
}

int jnz2NWCS(int prg) {
  if (prg < 0 || prg >= static_cast<int>(b->vecPrgW.size())) return 0;
  const PrgDataW& p = b->vecPrgW[static_cast<size_t>(prg)];
  int first = p.prgFirstLine < 0 ? 0 : p.prgFirstLine;
  int last = p.prgEndLine;
  if (last >= static_cast<int>(b->vecSrcW.size())) last = static_cast<int>(b->vecSrcW.size()) - 1;
  TCorrectScode& c = *cs;
  for (int i = first; i <= last; ++i) {
    SrcLineW& s = L(i);
    switch (OpOf(s.opStr)) {
      case Op::None: break;
      case Op::LD: ld2NWCS(c, i); break;
      case Op::ST: st2NWCS(c, i); break;
      case Op::LAD: lad2NWCS(c, i); break;
      case Op::ADDA: adda2NWCS(c, i); break;
      case Op::SUBA: suba2NWCS(c, i); break;
      case Op::ADDL: addl2NWCS(c, i); break;
      case Op::SUBL: subl2NWCS(c, i); break;
      case Op::AND: and2NWCS(c, i); break;
      case Op::OR: or2NWCS(c, i); break;
      case Op::XOR: xor2NWCS(c, i); break;
      case Op::CPA: cpa2NWCS(c, i); break;
      case Op::CPL: cpl2NWCS(c, i); break;
      case Op::SLA: sla2NWCS(c, i); break;
      case Op::SRA: sra2NWCS(c, i); break;
      case Op::SLL: sll2NWCS(c, i); break;
      case Op::SRL: srl2NWCS(c, i); break;
      case Op::POP: pop2NWCS(c, i); break;
      case Op::JMI: jmi2NWCS(c, i); break;
      case Op::JNZ: jnzRuleNWCS(c, i); break;
      case Op::JZE: jzeRuleNWCS(c, i); break;
      case Op::JUMP: jumpRuleNWCS(c, i); break;
      case Op::JPL: jpl2NWCS(c, i); break;
      case Op::JOV: jovRuleNWCS(c, i); break;
      case Op::PUSH: push2NWCS(c, i); break;
      case Op::CALL: callRuleNWCS(c, i); break;
      case Op::SVC: svc2NWCS(c, i); break;
      case Op::DC:
        if (OprndAtDCtoChH_NWCS(c, i) >= 0 && OprndAtDC_NWCS(c, i) >= 0) SetWordKazuAtDC_NWCS(c, i);
        break;
      case Op::DS:
        if (OprndAtDCtoChH_NWCS(c, i) >= 0 && OprndAtDS_NWCS(c, i) >= 0) SetWordKazuAtDS_NWCS(c, i);
        break;
      case Op::IN:
      case Op::OUT:
        macro2NWCS(c, i);
        break;
      case Op::RPUSH:
      case Op::RPOP:
        macroR2NWCS(c, i);
        break;
      case Op::NOP:
      case Op::RET:
        OpNoOperandNW(c, i, s.oprnd1ChH);
        break;
      case Op::EXIT:
        // The stop word outside the published table.
        if (OpNoOperandNW(c, i, s.oprnd1ChH) == 0) {
          s.word_kazu = 1;
          s.first_word = kExitCode << 8;
        }
        break;
      case Op::START:
        s.word_kazu = s.oprnd1ChH.empty() ? 1 : 2;
        break;
      case Op::END:
        break;
      case Op::Other:
        if (c.IsJ()) {
          con::out << "Prg. Error: " << (i + 1) << ": " << s.opStr << u" に該当する命令がない。" << con::endl;
        } else {
          con::out << "Prg. Error: " << (i + 1) << ": " << s.opStr << " is not an instruction of casl2. " << con::endl;
        }
        ++c.ErrorKazu;
        break;
    }
  }
  return 0;
}

int Fight12NW(TDiagBase& game) {
  // The two per-program counters that the link fills.
  for (PrgDataW& p : b->vecPrgW) {
    p.prgWordSize = 0;
    p.prgRlAtStart = 0;
  }
  if (Gate(game)) return 0;
  const int n = static_cast<int>(b->vecPrgW.size());
  for (int prg = 0; prg < n; ++prg) {
    const PrgDataW& p = b->vecPrgW[static_cast<size_t>(prg)];
    int r = 0;
    // 1. The label field.
    Label30GNW(p.prgFirstLine, p.prgEndLine - 1);
    if (Gate(game)) return 0;
    // 2. Label, opcode and operand text of every line.
    TakeOutLabelStrNW(prg);
    // 3, 4. The opcode field and the placement of DC and DS.
    if ((r = CkOpStrNW(prg)) < 0) return r;
    if ((r = DetDefLineNW(prg)) < 0) return r;
    CkDcDsLineKazu(*cs, prg);
    if (Gate(game)) return 0;
    // 5. The comment behind the operands of known opcodes.
    CutOprndComNW(prg);
    if (Gate(game)) return 0;
    // 6, 7. Operand text into editStr; blanks behind the signs of literals.
    CopyOprndComToEditNW(prg);
    if ((r = edit30cNW(prg)) < 0) return r;
    if (Gate(game)) return 0;
    edit50NW(prg);
    if (Gate(game)) return 0;
    // 8, 9. Comments aware of apostrophes; the literals.
    DivideCommentNW(prg);
    if ((r = CkLiteral15NW(prg)) < 0) return r;
    if (Gate(game)) return 0;
    if ((r = CkStrConstLiteralNW10CS(prg)) < 0) return r;
    if (Gate(game)) return 0;
    // 10. Operand splitting.
    CutOprndCommentNW(prg);
    TrimOprndComStrNW(prg);
    CopyOprndComStrToChH2BD(prg);
    SplitOprndsNW(prg);
    if (Gate(game)) return 0;
    // 11, 12. Word-count preset and the rules of every instruction.
    ExtractAllOprndsNWCS(prg);
    if (Gate(game)) return 0;
    jnz2NWCS(prg);
    if (Gate(game)) return 0;
    // 13. The words of DS and DC lines.
    SetMryInAtDS_NWCS(prg);
    SetMryInAtDC_NWCS(prg);
    if (Gate(game)) return 0;
    // 14. Addresses and address constants.
    AdrCk53NWCS(prg);
    if (Gate(game)) return 0;
  }
  return 0;
}
