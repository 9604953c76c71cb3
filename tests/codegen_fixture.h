// Test helper of the code generation and report tests: builds source line
// and program records the way the line analysis leaves them (label, opcode,
// operand slots, word_kazu, first_word, DC operands, DS counts), and gives
// them their addresses the way the first address pass does, so that the
// loader, the link and the report can be run on them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "codegen/codegen.h"
#include "codegen/instr_table.h"
#include "comet2/comet2.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"

namespace cgtest {

struct Captured {
  std::string out;
  Captured() { con::SetCapture(&out); }
  ~Captured() { con::SetCapture(nullptr); }
};

inline void ResetAll(int lang = 1) {
  ResetBasicData();
  ResetCorrectScode();
  ResetFileData();
  fileData->ZeroCounters();
  b->ZeroCounters();
  cs->ZeroCounters();
  msgLog->ClearMsgLog();
  SetLang(lang);
  ResetComet2(*m);
  m->dispLang = lang;
}

inline bool IsReg(const wstr& s) { return s.size() == 3 && s[0] == u'G' && s[1] == u'R' && s[2] >= u'0' && s[2] <= u'7'; }
inline int RegNr(const wstr& s) { return s[2] - u'0'; }

// Splits an operand text at commas outside apostrophes.
inline std::vector<wstr> SplitOps(const wstr& t) {
  std::vector<wstr> out;
  wstr cur;
  bool inq = false;
  for (size_t i = 0; i < t.size(); ++i) {
    char16_t c = t[i];
    if (c == u'\'') inq = !inq;
    if (c == u',' && !inq) {
      out.push_back(TrimW(cur));
      cur.clear();
    } else {
      cur += c;
    }
  }
  if (!t.empty()) out.push_back(TrimW(cur));
  return out;
}

// The builder of one source file.
class FileBuilder {
 public:
  // A line outside any program or a comment line.
  void Comment(const wstr& text) {
    SrcLineW L;
    L.rawStr = L.editStr = text;
    L.commentStr = text;
    b->vecSrcW.push_back(L);
  }

  void Start(const wstr& name, const wstr& entry = u"") {
    PrgDataW p;
    p.PrgName = name;
    p.prgFirstLine = static_cast<int>(b->vecSrcW.size());
    b->vecPrgW.push_back(p);
    SrcLineW L;
    L.labelStr = name;
    L.opStr = u"START";
    L.oprndStr = entry;
    L.oprnd1ChH = L.oprnd1Str = entry;
    L.word_kazu = entry.empty() ? 1 : 2;
    L.first_word = entry.empty() ? 0 : 0x6400;
    L.rawStr = name + u"\tSTART\t" + entry;
    Push(L);
  }

  void End() {
    SrcLineW L;
    L.opStr = u"END";
    L.rawStr = u"\tEND";
    b->vecPrgW.back().prgEndLine = static_cast<int>(b->vecSrcW.size());
    b->vecSrcW.push_back(L);
    b->SetPrgKazuInFile(static_cast<int>(b->vecPrgW.size()));
    b->lineKazu = static_cast<int>(b->vecSrcW.size());
  }

  // An instruction, a macro, DC or DS line, as the analysis leaves it.
  void Op(const wstr& label, const wstr& op, const wstr& oprnd = u"") {
    SrcLineW L;
    L.labelStr = label;
    L.opStr = op;
    L.oprndStr = oprnd;
    L.rawStr = label + u"\t" + op + u"\t" + oprnd;
    std::vector<wstr> ops = SplitOps(oprnd);
    wstr* slots[4] = {&L.oprnd1ChH, &L.oprnd2ChH, &L.oprnd3ChH, &L.oprnd4ChH};
    for (size_t k = 0; k < ops.size() && k < 4; ++k) *slots[k] = ops[k];
    L.oprnd1Str = L.oprnd1ChH;
    L.oprnd2Str = L.oprnd2ChH;
    L.oprnd3Str = L.oprnd3ChH;
    L.oprndCount = static_cast<int>(ops.size());
    std::string a = U16ToUtf8(op);
    if (op == u"DC") {
      for (const wstr& o : ops) {
        OprndAtDCT<wstr> d;
        d.oprndText = o;
        d.DataTypeStrFlag = (!o.empty() && o[0] == u'\'') ? "CharConst" : "Const";
        L.vecOprndAtDC.push_back(d);
      }
    } else if (op == u"DS") {
      L.word_kazu = std::stoi(U16ToUtf8(ops.at(0)));
      L.oprndCount = 1;
    } else if (op == u"IN" || op == u"OUT") {
      L.word_kazu = 12;
    } else if (op == u"RPUSH") {
      L.word_kazu = 14;
      L.oprndCount = 0;
    } else if (op == u"RPOP") {
      L.word_kazu = 7;
      L.oprndCount = 0;
    } else if (op == u"NOP" || op == u"RET") {
      L.word_kazu = 1;
      L.first_word = InstrCode(a, OpForm::None) << 8;
    } else if (op == u"POP") {
      L.word_kazu = 1;
      L.first_word = (InstrCode(a, OpForm::R) << 8) | (RegNr(ops.at(0)) << 4);
    } else if (InstrCode(a, OpForm::AdrX) >= 0) {
      L.word_kazu = 2;
      L.first_word = InstrCode(a, OpForm::AdrX) << 8;
      if (ops.size() > 1 && IsReg(ops[1])) L.first_word |= RegNr(ops[1]);
      adrText_[b->vecSrcW.size()] = ops.at(0);
    } else if (InstrCode(a, OpForm::RAdrX) >= 0) {
      int r = RegNr(ops.at(0));
      if (ops.size() == 2 && IsReg(ops[1]) && InstrCode(a, OpForm::R1R2) >= 0) {
        L.word_kazu = 1;
        L.first_word = (InstrCode(a, OpForm::R1R2) << 8) | (r << 4) | RegNr(ops[1]);
      } else {
        L.word_kazu = 2;
        L.first_word = (InstrCode(a, OpForm::RAdrX) << 8) | (r << 4);
        if (ops.size() > 2 && IsReg(ops[2])) L.first_word |= RegNr(ops[2]);
        adrText_[b->vecSrcW.size()] = ops.at(1);
      }
    } else {
      ADD_FAILURE() << "test builder does not know " << a;
    }
    Push(L);
  }

  // Gives every line its words and addresses, as the first address pass
  // does (run twice, forward references are settled as by the link).
  void Place() {
    for (int p = 0; p < static_cast<int>(b->vecPrgW.size()); ++p) {
      SetMryInAtDS_NWCS(p);
      SetMryInAtDC_NWCS(p);
    }
    for (int round = 0; round < 2; ++round) {
      for (int p = 0; p < static_cast<int>(b->vecPrgW.size()); ++p) {
        if (round == 1) SetMryInAtDC_NWCS(p);
        PlacePrg(p);
      }
    }
  }

 private:
  void Push(SrcLineW& L) {
    L.editStr = L.rawStr;
    b->vecSrcW.push_back(L);
  }

  int32_t Resolve(int p, int line, const wstr& t) {
    const PrgDataW& P = b->vecPrgW[p];
    if (t.empty()) return 0;
    if (t[0] == u'=') {
      SrcLineW& L = b->vecSrcW[line];
      if (t.size() > 1 && t[1] == u'\'') {
        SetLiteCharConstMryInNWBD(line, t);
      } else {
        LiteConstT<wstr> lit;
        lit.liteText = t;
        lit.liteWordKazu = 1;
        if (t[1] == u'#') {
          lit.liteKind = "LiteHexConst";
          lit.liteValue = std::stoi(U16ToUtf8(t.substr(2)), nullptr, 16);
        } else {
          lit.liteKind = "LiteDecConst";
          lit.liteValue = std::stoi(U16ToUtf8(t.substr(1))) & 0xFFFF;
        }
        L.vecLiteConst.assign(1, lit);
        L.hasLiteral = 1;
      }
      return L.vecLiteConst[0].liteAbAdr;
    }
    if (t[0] == u'#') return std::stoi(U16ToUtf8(t.substr(1)), nullptr, 16);
    if (t[0] == u'-' || t[0] == u'+' || (t[0] >= u'0' && t[0] <= u'9')) return std::stoi(U16ToUtf8(t)) & 0xFFFF;
    for (const PrgDataW& Q : b->vecPrgW)
      if (Q.PrgName == t) return Q.AbAdrAtStart;
    for (int i = P.prgFirstLine; i < P.prgEndLine; ++i)
      if (b->vecSrcW[i].labelStr == t) return b->vecSrcW[i].abAdr;
    ADD_FAILURE() << "unknown name " << U16ToUtf8(t);
    return 0;
  }

  void Word(SrcLineW& L, int line, int32_t code, int rl, int ab, const wstr& note = u"") {
    WordRecT<wstr> w;
    w.wordCode = code;
    w.rlAdr = rl;
    w.abAdr = ab;
    w.line = line;
    w.wordNote = note;
    L.vecWord.push_back(w);
  }

  void PlacePrg(int p) {
    PrgDataW& P = b->vecPrgW[p];
    int ab = P.AbAdrAtStart, rl = 0;
    for (int i = P.prgFirstLine; i < P.prgEndLine; ++i) {
      SrcLineW& L = b->vecSrcW[i];
      if (L.opStr.empty()) continue;
      L.rlAdr = rl;
      L.abAdr = ab;
      const wstr& op = L.opStr;
      if (op == u"DC") {
        // words as SetMryInAtDC_NWCS left them
      } else if (op == u"DS") {
        for (int k = 0; k < static_cast<int>(L.vecWord.size()); ++k) {
          L.vecWord[k].rlAdr = rl + k;
          L.vecWord[k].abAdr = ab + k;
        }
      } else if (op == u"IN" || op == u"OUT") {
        int32_t w[12] = {0x7001, 0, 0x7002, 0, 0x1210, Resolve(p, i, L.oprnd1ChH), 0x1220,
                         Resolve(p, i, L.oprnd2ChH), 0xF000, op == u"IN" ? 1 : 2, 0x7120, 0x7110};
        L.vecWord.clear();
        for (int k = 0; k < 12; ++k) Word(L, i, w[k], rl + k, ab + k, k == 0 ? u"MacroINorOUT" : u"");
      } else if (op == u"RPUSH") {
        L.vecWord.clear();
        for (int n = 1; n <= 7; ++n) {
          Word(L, i, 0x7000 + n, rl + 2 * n - 2, ab + 2 * n - 2, u"A part of RPOP");
          Word(L, i, 0, rl + 2 * n - 1, ab + 2 * n - 1, u"An adr part of RPOP");
        }
      } else if (op == u"RPOP") {
        L.vecWord.clear();
        for (int n = 0; n < 7; ++n) Word(L, i, 0x7170 - 0x10 * n, rl + n, ab + n, u"A part of of RPOP");
      } else if (L.word_kazu == 2) {
        wstr t = op == u"START" ? L.oprnd1ChH : adrText_[i];
        L.second_word = Resolve(p, i, t);
        L.vecWord.clear();
        Word(L, i, L.first_word, rl, ab);
        Word(L, i, L.second_word, rl + 1, ab + 1);
      } else {
        L.vecWord.clear();
        Word(L, i, L.first_word, rl, ab, op == u"START" ? u"START" : op);
      }
      rl += L.word_kazu;
      ab += L.word_kazu;
    }
    P.prgLiteStart = ab;
    for (int i = P.prgFirstLine; i < P.prgEndLine; ++i) {
      SrcLineW& L = b->vecSrcW[i];
      if (L.opStr.empty() || L.word_kazu == 0 || L.vecLiteConst.empty()) continue;
      LiteConstT<wstr>& lit = L.vecLiteConst[0];
      lit.liteAbAdr = ab;
      lit.liteRlAdr = rl;
      L.second_word = ab;
      if (L.vecWord.size() >= 2) L.vecWord[1].wordCode = ab;
      int n = lit.liteChars.empty() ? 1 : static_cast<int>(lit.liteChars.size());
      for (int k = 0; k < static_cast<int>(lit.liteChars.size()); ++k) lit.liteChars[k].charAbAdr = ab + k;
      ab += n;
      rl += n;
    }
    P.prgWordSize = rl;
    P.prgLastAdr = ab - 1;
    if (p + 1 < static_cast<int>(b->vecPrgW.size()))
      b->vecPrgW[p + 1].AbAdrAtStart = ab;
    else
      b->MaxMemory = ab;
  }

  std::unordered_map<size_t, wstr> adrText_;
};

// The cells [from, from + n) of Memory, low 16 bits.
inline std::vector<int> Words(int from, int n) {
  std::vector<int> v;
  for (int a = from; a < from + n; ++a) v.push_back(m->Memory[a] & 0xFFFF);
  return v;
}

}  // namespace cgtest
