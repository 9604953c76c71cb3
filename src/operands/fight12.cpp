// The per-line analysis of all programs: a fixed chain of passes over the
// lines of one program, with a gate on the summed error counters behind the
// passes, so that no pass ever sees a program that an earlier one found
// wrong.
#include <array>

#include "codegen/codegen.h"
#include "codegen/instr_table.h"
#include "constants/constants.h"
#include "lines/fields.h"
#include "lines/scanner.h"
#include "operands/adr_const.h"
#include "operands/operands.h"
#include "operands/rules_util.h"
#include "records/console.h"
#include "records/mode.h"

using rules::L;

namespace {

bool In(wview op, std::initializer_list<wview> list) {
  for (wview x : list)
    if (x == op) return true;
  return false;
}

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
    if (In(op, {u"LD", u"ST", u"LAD", u"ADDA", u"ADDL", u"SUBA", u"SUBL", u"AND", u"OR", u"XOR", u"SLA", u"SRA",
                u"SLL", u"SRL", u"CPA", u"CPL", u"DC", u"IN", u"OUT"})) {
      continue;
    }
    if (In(op, {u"JPL", u"JMI", u"JNZ", u"JZE", u"JOV", u"JUMP", u"CALL", u"PUSH", u"SVC"})) {
      s.word_kazu = 2;
      continue;
    }
    if (op == u"POP" || op == u"DS") {
      s.oprndCount = 1;
      s.word_kazu = 1;
      s.second_word = 0;
      TextToComment(s, BehindFirstOperand(s.oprndComChH));
      continue;
    }
    if (In(op, {u"RPUSH", u"RPOP", u"RET", u"NOP", u"END"}) || (op == u"EXIT" && CurrentMode().acceptsExit)) {
      s.oprndCount = 0;
      s.word_kazu = 1;
      TextToComment(s, s.oprndComChH);
      continue;
    }
    if (op == u"START") {
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
    const wstr op = s.opStr;
    if (op.empty()) continue;
    if (op == u"LD") ld2NWCS(c, i);
    else if (op == u"ST") st2NWCS(c, i);
    else if (op == u"LAD") lad2NWCS(c, i);
    else if (op == u"ADDA") adda2NWCS(c, i);
    else if (op == u"SUBA") suba2NWCS(c, i);
    else if (op == u"ADDL") addl2NWCS(c, i);
    else if (op == u"SUBL") subl2NWCS(c, i);
    else if (op == u"AND") and2NWCS(c, i);
    else if (op == u"OR") or2NWCS(c, i);
    else if (op == u"XOR") xor2NWCS(c, i);
    else if (op == u"CPA") cpa2NWCS(c, i);
    else if (op == u"CPL") cpl2NWCS(c, i);
    else if (op == u"SLA") sla2NWCS(c, i);
    else if (op == u"SRA") sra2NWCS(c, i);
    else if (op == u"SLL") sll2NWCS(c, i);
    else if (op == u"SRL") srl2NWCS(c, i);
    else if (op == u"POP") pop2NWCS(c, i);
    else if (op == u"JMI") jmi2NWCS(c, i);
    else if (op == u"JNZ") jnzRuleNWCS(c, i);
    else if (op == u"JZE") jzeRuleNWCS(c, i);
    else if (op == u"JUMP") jumpRuleNWCS(c, i);
    else if (op == u"JPL") jpl2NWCS(c, i);
    else if (op == u"JOV") jovRuleNWCS(c, i);
    else if (op == u"PUSH") push2NWCS(c, i);
    else if (op == u"CALL") callRuleNWCS(c, i);
    else if (op == u"SVC") svc2NWCS(c, i);
    else if (op == u"DC") {
      if (OprndAtDCtoChH_NWCS(c, i) >= 0 && OprndAtDC_NWCS(c, i) >= 0) SetWordKazuAtDC_NWCS(c, i);
    } else if (op == u"DS") {
      if (OprndAtDCtoChH_NWCS(c, i) >= 0 && OprndAtDS_NWCS(c, i) >= 0) SetWordKazuAtDS_NWCS(c, i);
    } else if (op == u"IN" || op == u"OUT") {
      macro2NWCS(c, i);
    } else if (op == u"RPUSH" || op == u"RPOP") {
      macroR2NWCS(c, i);
    } else if (op == u"NOP" || op == u"RET") {
      OpNoOperandNW(c, i, s.oprnd1ChH);
    } else if (op == u"EXIT") {
      // The stop word outside the published table.
      if (OpNoOperandNW(c, i, s.oprnd1ChH) == 0) {
        s.word_kazu = 1;
        s.first_word = kExitCode << 8;
      }
    } else if (op == u"START") {
      s.word_kazu = s.oprnd1ChH.empty() ? 1 : 2;
    } else if (op == u"END") {
      // nothing
    } else {
      if (c.IsJ()) {
        con::out << "Prg. Error: " << (i + 1) << ": " << op << u" に該当する命令がない。" << con::endl;
      } else {
        con::out << "Prg. Error: " << (i + 1) << ": " << op << " is not an instruction of casl2. " << con::endl;
      }
      ++c.ErrorKazu;
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
