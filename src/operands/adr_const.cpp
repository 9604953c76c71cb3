// Address operands and the address pass: the shape of an address operand
// during the instruction rules, its value (program name, label, number or
// literal), and the pass that gives every line of a program its addresses
// and words and puts the literals behind the program.
#include "operands/adr_const.h"

#include <cstdint>
#include <initializer_list>
#include <unordered_map>
#include <vector>

#include "codegen/codegen.h"
#include "constants/constants.h"
#include "constants/opd_line.h"
#include "constants/opd_text.h"
#include "codegen/instr_table.h"
#include "lines/opcodes.h"
#include "operands/opd_lookup.h"
#include "records/console.h"
#include "records/mode.h"
#include "records/diag.h"
#include "records/name_index.h"
#include "records/singletons.h"
#include "structure/structure.h"

using namespace opd;

namespace {

wstr& Slot(SrcLineW& ln, int nr) {
  switch (nr) {
    case 1: return ln.oprnd1ChH;
    case 2: return ln.oprnd2ChH;
    case 3: return ln.oprnd3ChH;
    default: return ln.oprnd4ChH;
  }
}

// ---- lookups ----------------------------------------------------------------
// Both maps hold views of the names in the records: they are built again
// at the head of every address pass, and whenever the records moved.
struct PrgNameMap {
  NameIndex map;
  const void* data = nullptr;
  size_t count = 0;
  bool valid = false;
};
struct LabelMap {
  NameIndex map;
  int prg = -1;
  const void* data = nullptr;
  size_t lines = 0;
  bool valid = false;
};
PrgNameMap gPrg;
LabelMap gLab;
int gCurPrg = -1;

bool PrgMapFresh() {
  return gPrg.valid && gPrg.data == static_cast<const void*>(b->vecPrgW.data()) && gPrg.count == b->vecPrgW.size();
}

void BuildPrgMap() {
  gPrg.map.Reset(b->vecPrgW.size());
  for (size_t p = 0; p < b->vecPrgW.size(); ++p) {
    gPrg.map.Insert(b->vecPrgW[p].PrgName, static_cast<int>(p));  // the first program of a name stays
  }
  gPrg.data = b->vecPrgW.data();
  gPrg.count = b->vecPrgW.size();
  gPrg.valid = true;
}

bool PrgOk(int prg) { return prg >= 0 && static_cast<size_t>(prg) < b->vecPrgW.size(); }

void BuildLabelMap(int prg) {
  gLab.map.Reset(0);
  gLab.prg = prg;
  gLab.data = b->vecSrcW.data();
  gLab.lines = b->vecSrcW.size();
  gLab.valid = true;
  if (!PrgOk(prg)) return;
  const PrgDataW& p = b->vecPrgW[static_cast<size_t>(prg)];
  int first = p.prgFirstLine < 0 ? 0 : p.prgFirstLine;
  int end = p.prgEndLine;
  if (end > static_cast<int>(b->vecSrcW.size())) end = static_cast<int>(b->vecSrcW.size());
  gLab.map.Reset(end > first ? static_cast<size_t>(end - first) / 2 : 0);
  for (int i = first; i < end; ++i) gLab.map.Insert(L(i).labelStr, i);  // the first line of a label stays
}

bool LabelMapFresh(int prg) {
  return gLab.valid && gLab.prg == prg && gLab.data == static_cast<const void*>(b->vecSrcW.data()) &&
         gLab.lines == b->vecSrcW.size();
}

}  // namespace

int FindPrgNameNW(wview name) {
  if (!PrgMapFresh()) BuildPrgMap();
  return gPrg.map.Find(name);
}

int FindLabelNW(int prg, wview name) {
  if (!LabelMapFresh(prg)) BuildLabelMap(prg);
  return gLab.map.Find(name);
}

int PrgOfLineNW(int line) {
  auto holds = [line](int p) {
    if (!PrgOk(p)) return false;
    const PrgDataW& d = b->vecPrgW[static_cast<size_t>(p)];
    return d.prgFirstLine <= line && line < d.prgEndLine;
  };
  if (holds(gCurPrg)) return gCurPrg;
  if (LineOk(line) && holds(L(line).prgNr)) return L(line).prgNr;
  for (size_t p = 0; p < b->vecPrgW.size(); ++p)
    if (holds(static_cast<int>(p))) return static_cast<int>(p);
  return -1;
}

void PrepareLookupNW(int prg) {
  gCurPrg = prg;
  // Both are built afresh: their views must be of the texts that stand now.
  BuildPrgMap();
  BuildLabelMap(prg);
}

void ResetAdrLookupNW() {
  gPrg.map.Reset(0);
  gPrg.valid = false;
  gLab.map.Reset(0);
  gLab.valid = false;
  gLab.prg = -1;
  gCurPrg = -1;
}

// ---------------------------------------------------------------------------
int CkAdrOperandNWCS(TCorrectScode& c, int line, int slotNr) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  const int n = slotNr;
  static const wstr kNone;
  const wstr& s = Slot(ln, n);
  const wstr& next = n < 4 ? Slot(ln, n + 1) : kNone;
  if (s.empty()) {
    if (c.IsJ()) {
      Say(c, kError, line, {WNum(n) + u" つ目のオペランドが必要。"}, "AC10036E");
    } else {
      const char16_t* t = n == 1   ? u"The 1st operand is expected. "
                          : n == 2 ? u"The 2nd operand is expected. "
                                   : u"Another operand is expected. ";
      Say(c, kError, line, {t}, "AC10036E");
    }
    return -1;
  }
  if (s == u"," || (s.size() == 2 && IsBlank(s[0]) && s[1] == u',')) {
    if (c.IsJ()) {
      Say(c, kError, line, {u"コンマの重複あるいはコンマの前にオペランドの記述がない。  "}, "AC11036E", QuoteW(s));
    } else {
      Say(c, kError, line, {u"Dupulication of comma. Or an operand is expected at the left side of the comma. "},
          "AC11036E", QuoteW(s));
    }
    return -1;
  }
  const bool comma = s.back() == u',';
  c.ChFlag = comma ? 1 : 0;
  if (!comma && !next.empty()) {
    if (c.IsJ()) {
      Say(c, kError, line,
          {u" 二つ目のオペランド " + QuoteW(s) + u" の右にコンマが無いのに三つ目のオペランド（指標レジスタ）" +
           QuoteW(next) + u" の記述がある。 "},
          "AC12036E", QuoteW(s));
    } else {
      Say(c, kError, line,
          {u"A comma is expected between the 2nd operand and the 3rd one. 2nd operand=" + s + u"   3rd operand=" +
           next + u"  "},
          "AC12036E", QuoteW(s));
    }
    return -1;
  }
  if (comma && next.empty()) {
    if (c.IsJ()) {
      Say(c, kWarning, line,
          {u"指標レジスターの記述がないのだから " + WNum(n) +
           u" つ目のオペランドの右のコンマは不要です。あるいは、このコンマに続く指標レジスターの記述が必要です。"},
          "AC13036W", QuoteW(s));
    } else {
      Say(c, kWarning, line,
          {u"There is a comma at the right side of the operand. This comma is of no use. "
           u"Or an index register is expected at the left side of the comma. "},
          "AC13036W", QuoteW(s));
    }
    ln.oprndCount = 2;
  } else {
    ln.oprndCount = next.empty() ? 2 : 3;
  }
  ln.word_kazu = 2;
  ln.second_word = 0;
  return 0;
}

// ---------------------------------------------------------------------------
namespace {

void SetSecondWord(SrcLineW& ln, int32_t v) {
  ln.second_word = v;
  if (ln.vecWord.size() == 2) ln.vecWord[1].wordCode = v;
}

// A label or a program name.
int AdrConstName(TCorrectScode& c, int line, const wstr& t) {
  SrcLineW& ln = L(line);
  static const char* const kCodes[3] = {"AC20036E", "AC21036E", "AC22036E"};
  if (CkAdrConstNameG(c, line, 0, t, kCodes) < 0) return -1;
  // The quoted operand, made only for a message.
  auto q = [&t] { return QuoteW(t); };
  int p = FindPrgNameNW(t);
  if (p >= 0) {
    PrgDataW& pd = b->vecPrgW[static_cast<size_t>(p)];
    SetSecondWord(ln, pd.AbAdrAtStart);
    pd.prgUsed = 1;
    if (LineOk(pd.prgFirstLine)) L(pd.prgFirstLine).labelUsed = 1;
    if (ln.opStr != u"CALL" && ln.opStr != u"LAD") {
      if (c.IsJ()) {
        Say(c, kWarning, line,
            {u"アドレス定数として外部のプログラム名を用いている。　暴走の可能性がある。 これはあなたの意図ですか？"},
            "AC23036W", q());
      } else {
        Say(c, kWarning, line,
            {u"The address constant is a name of the outside program. The comet2 might be out of control. "
             u"Is this your intention? "},
            "AC23036W", q());
      }
    }
    return 0;
  }
  int prg = PrgOfLineNW(line);
  int lab = prg >= 0 ? FindLabelNW(prg, t) : -1;
  if (lab >= 0) {
    SetSecondWord(ln, L(lab).abAdr);
    L(lab).labelUsed = 1;
    return 0;
  }
  if (c.IsJ()) {
    Say(c, kError, line,
        {u"アドレス定数 " + q() + u" と一致するラベル又はプログラム名（START アセンブラ命令の左にあるラベル）が存在しない。"},
        "AC24036E", q());
  } else {
    Say(c, kError, line,
        {u"Undefined address constant.  Neither label nor program name it is. None of them is identical with " + q() +
         u". "},
        "AC24036E", q());
  }
  return -1;
}

// "#" and four hexadecimal digits.
int AdrConstHex(TCorrectScode& c, int line, const wstr& t) {
  // The quoted operand, made only for a message.
  auto q = [&t] { return QuoteW(t); };
  wview d = wview(t).substr(1);
  for (char16_t ch : d) {
    if (!IsHexDigit(ch)) {
      if (c.IsJ()) {
        Say(c, kError, line, {u" 16進数字に0-9又はA-F以外の文字がある。 "}, "AC30036E", q());
      } else {
        Say(c, kError, line, {u"A hexadecimal number is written in 0-9 and A-F. "}, "AC30036E", q());
      }
      return -1;
    }
  }
  size_t n = d.size();
  if (n == 0) {
    if (c.IsJ()) {
      Say(c, kError, line, {u"# の右に記述がない。"}, "AC31036E", q());
    } else {
      Say(c, kError, line, {u"There is no description at the right side of #. "}, "AC31036E", q());
    }
    return -1;
  }
  if (n < 4) {
    if (c.IsJ()) {
      Say(c, kError, line, {u" １６ 進数は ４ 桁で記述する。(仕様2･3 (4)) ", WNum(n) + u" 桁しかない。"}, "AC32036E", q());
    } else {
      Say(c, kError, line,
          {u"A hexadecimal number should be written in four digits. (Spec. 2.3 (4)) It is only " + WNum(n) +
           (n == 1 ? u" digit. " : u" digits. ")},
          "AC32036E", q());
    }
    return -1;
  }
  if (n > 4) {
    if (c.IsJ()) {
      Say(c, kError, line, {u" １６ 進数は ４ 桁で記述する。(仕様2･3 (4)) " + WNum(n) + u" 桁ある。"}, "AC33036E", q());
    } else {
      Say(c, kError, line,
          {u"A hexadecimal nmuber should be written in four digits. (Spec. 2.3 (4)) It is only " + WNum(n) +
           u" digits. "},
          "AC33036E", q());
    }
    return -1;
  }
  int32_t v = 0;
  for (char16_t ch : d) v = v << 4 | HexDigitValue(ch);
  SetSecondWord(L(line), v);
  return 0;
}

// A decimal number, with or without its sign.
int AdrConstDec(TCorrectScode& c, int line, const wstr& t) {
  // The quoted operand, made only for a message.
  auto q = [&t] { return QuoteW(t); };
  size_t k = (t[0] == u'+' || t[0] == u'-') ? 1 : 0;
  for (; k < t.size(); ++k) {
    if (!IsDigit(t[k])) {
      if (c.IsJ()) {
        Say(c, kError, line, {u"１０進数の中に数字以外の文字がある。"}, "AC40036E", q());
      } else {
        Say(c, kError, line, {u"There is a non-numerical character in the decimal number. "}, "AC40036E", q());
      }
      return -1;
    }
  }
  long long v = DecValue(t);
  if (v < -32768 || v > 65535) {
    if (c.IsJ()) {
      Say(c, kNote, line,
          Lines(u"10 進数の記述が 0 から 65535 までの範囲外にある。\n"
                u"その下位 16 ビットが格納される。(仕様 １・２、 注の２)  \n"
                u"10 進数の記述が -32768 から 32767 のとき、"
                u"16ビットの2進数データ（最上位ビットを符号ビットとする ）として格納される。 \n"
                u"その範囲外にあるとき、その下位 16 ビットが格納される。（独自仕様）  "),
          "AC41036N", q());
    } else {
      Say(c, kNote, line,
          Lines(u"The decimal number is out of range. \n"
                u"The range of a decimal number is from zerp to 65535.\n"
                u"When a decimal number exceeds the range, its lower 16-bits is\n"
                u"saved in a memory. (Spec. of CASL2 2.3 (4)) \n"
                u"When a decimal number is between -32768 and 32767 \n"
                u"it is saved in a memory as a binary data in 16 digits. \n"
                u"The 15th bit is a sign bit. (Spec. of Drill Asm) "),
          "AC41036N", q());
    }
  }
  SetSecondWord(L(line), static_cast<int32_t>(static_cast<uint64_t>(v) & 0xFFFFu));
  return 0;
}

// A literal: its record on the line; its address comes at the end of the
// address pass.
int AdrConstLiteral(TCorrectScode& c, int line, const wstr& t) {
  SrcLineW& ln = L(line);
  char16_t f = At(t, 1);
  LiteConstT<wstr> rec;
  rec.liteText = t;
  if (f == u'#') {
    wstr body = t.substr(1);
    if (CkHexConstG(c, line, 0, body) < 0) return -1;
    int32_t v = HexStrToIntG(body);
    if (v < 0) {
      ++c.ErrorKazu;
      return -1;
    }
    rec.liteValue = v;
    rec.liteWordKazu = 1;
    rec.liteKind = "LiteHexConst";
  } else if (IsDigit(f) || f == u'+' || f == u'-') {
    wstr body = t.substr(1);
    if (CkDecConstG(c, line, 0, body, "ABCB1678") < 0) return -1;
    rec.liteValue = static_cast<int32_t>(static_cast<uint32_t>(DecStrToIntG(c, line, 0, body)) & 0xFFFFu);
    rec.liteWordKazu = 1;
    rec.liteKind = "LiteDecConst";
  } else if (f == u'\'') {
    SetLiteCharConstMryInNWBD(line, t);
    if (ln.vecLiteConst.empty()) {
      con::out << "Prg. Error: no record of the character literal " << t << con::endl;
      ++c.ErrorKazu;
      return -1;
    }
    LiteConstT<wstr>& r = ln.vecLiteConst.back();
    r.liteText = t;
    r.liteKind = "LiteCharConst";
    r.liteWordKazu = static_cast<int32_t>(r.liteChars.size());
    ln.hasLiteral = 1;
    SetSecondWord(ln, r.liteAbAdr);
    return 0;
  } else {
    // A bare "=" is cut from the edited text before the literal check sees
    // it; the learner gets that check's sentence for it here.
    const wstr q = QuoteW(t);
    Say(c, kError, line, {q + u" cannot be read as a literal. "}, "LT15036E", q);
    return -1;
  }
  ln.vecLiteConst.clear();
  ln.vecLiteConst.push_back(std::move(rec));
  ln.hasLiteral = 1;
  SetSecondWord(ln, ln.vecLiteConst.back().liteAbAdr);
  return 0;
}

}  // namespace

int CkAdrConst20NWCS(TCorrectScode& c, int line, int slotNr) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  ln.second_word = 0;
  wstr t = CutComma(Slot(ln, slotNr));
  char16_t f = At(t, 0);
  if (IsUpper(f)) return AdrConstName(c, line, t);
  if (f == u'#') return AdrConstHex(c, line, t);
  if (IsDigit(f) || f == u'+' || f == u'-') return AdrConstDec(c, line, t);
  if (f == u'=') return AdrConstLiteral(c, line, t);
  // Anything else cannot name a label: small letters first, then the rest.
  bool lower = false;
  for (char16_t ch : t) lower = lower || IsLower(ch);
  SayAdrConstCharG(c, line, 0, t, lower, lower ? "AC21036E" : "AC20036E");
  return -1;
}

// ---------------------------------------------------------------------------
namespace {

enum class Branch { TwoWordSlot2, TwoWordSlot1, OneWord, Dc, Ds, InOut, RPush, RPop, Nop, Ret, Exit, Start1, Start2, None };

Branch BranchOf(const wstr& text, int wk) {
  const Op op = OpOf(text);
  // Both forms; the address form only (slot 2); the jumps (slot 1).
  if (IsRegisterFamily(op)) return wk == 2 ? Branch::TwoWordSlot2 : wk == 1 ? Branch::OneWord : Branch::None;
  if (IsAddressOnlyFamily(op)) return wk == 2 ? Branch::TwoWordSlot2 : Branch::None;
  if (IsJumpFamily(op)) return wk == 2 ? Branch::TwoWordSlot1 : Branch::None;
  switch (op) {
    case Op::POP: return wk == 1 ? Branch::OneWord : Branch::None;
    case Op::DC: return Branch::Dc;
    case Op::DS: return Branch::Ds;
    case Op::IN:
    case Op::OUT: return wk == 12 ? Branch::InOut : Branch::None;
    case Op::RPUSH: return wk == 14 ? Branch::RPush : Branch::None;
    case Op::RPOP: return wk == 7 ? Branch::RPop : Branch::None;
    case Op::NOP: return wk == 1 ? Branch::Nop : Branch::None;
    case Op::RET: return wk == 1 ? Branch::Ret : Branch::None;
    case Op::EXIT:
      if (CurrentMode().acceptsExit) return wk == 1 ? Branch::Exit : Branch::None;
      return Branch::None;
    case Op::START: return wk == 1 ? Branch::Start1 : wk == 2 ? Branch::Start2 : Branch::None;
    default: return Branch::None;
  }
}

// A line whose words are made before the pass (DC, START with an operand):
// it and its words get their addresses from rl and ab, which then move on
// by its word count.
void PlaceMadeWords(SrcLineW& ln, int line, int& rl, int& ab) {
  ln.rlAdr = rl;
  ln.abAdr = ab;
  for (size_t k = 0; k < ln.vecWord.size(); ++k) {
    ln.vecWord[k].rlAdr = rl + static_cast<int>(k);
    ln.vecWord[k].abAdr = ab + static_cast<int>(k);
    ln.vecWord[k].line = line;
  }
  rl += ln.word_kazu;
  ab += ln.word_kazu;
}

// An instruction's words, one after the other from the running addresses.
void PlaceCodes(SrcLineW& ln, int line, int& rl, int& ab, std::initializer_list<int32_t> codes) {
  ln.rlAdr = rl;
  ln.abAdr = ab;
  ln.vecWord.clear();
  ln.vecWord.resize(codes.size());
  WordRecT<wstr>* w = ln.vecWord.data();
  for (int32_t code : codes) {
    w->wordCode = code;
    w->rlAdr = rl++;
    w->abAdr = ab++;
    w->line = line;
    ++w;
  }
}

}  // namespace

WordRecT<wstr> MakeWord(int32_t code, int rl, int ab, int line, wview note) {
  WordRecT<wstr> w;
  w.wordCode = code;
  w.rlAdr = rl;
  w.abAdr = ab;
  w.line = line;
  w.wordNote = note;
  return w;
}

int AdrCk53NWCS(int prg) {
  TCorrectScode& c = *cs;
  if (!PrgOk(prg)) {
    con::out << "Prg. Error: (b->GetPrgKazuInFile() <= prg) AdrCk53NWCS(), prg=" << prg << con::endl;
    return -1;
  }
  PrepareLookupNW(prg);
  PrgDataW& pd = b->vecPrgW[static_cast<size_t>(prg)];
  int ab = pd.AbAdrAtStart;
  if (ab < 0) {
    con::out << "Prg. Error: " << ab << "=AbAdrAtStart < 0" << con::endl;
    ab = 0;
  }
  int rl = 0;
  int first = pd.prgFirstLine < 0 ? 0 : pd.prgFirstLine;
  int end = pd.prgEndLine;
  if (end > static_cast<int>(b->vecSrcW.size())) end = static_cast<int>(b->vecSrcW.size());

  for (int i = first; i < end; ++i) {
    SrcLineW& ln = L(i);
    if (ln.opStr.empty()) continue;
    const Branch branch = BranchOf(ln.opStr, ln.word_kazu);
    switch (branch) {
      case Branch::TwoWordSlot2:
      case Branch::TwoWordSlot1: {
        int slot = branch == Branch::TwoWordSlot1 ? 1 : 2;
        if (CkAdrConst20NWCS(c, i, slot) == 0) PlaceCodes(ln, i, rl, ab, {ln.first_word, ln.second_word});
        break;
      }
      case Branch::OneWord:
        PlaceCodes(ln, i, rl, ab, {ln.first_word});
        break;
      case Branch::Dc:
        PlaceMadeWords(ln, i, rl, ab);
        break;
      case Branch::Ds: {
        ln.rlAdr = rl;
        ln.abAdr = ab;
        int n = ln.word_kazu < 0 ? 0 : ln.word_kazu > 65536 ? 65536 : ln.word_kazu;
        static constexpr wview kNote = u"An operand of DS: Nr.";
        ln.vecWord.clear();
        ln.vecWord.reserve(static_cast<size_t>(n));
        for (int k = 0; k < n; ++k) {
          wview note = static_cast<size_t>(k) < kNote.size() ? kNote.substr(static_cast<size_t>(k)) : wview();
          ln.vecWord.push_back(MakeWord(0, rl + k, ab + k, i, note));
        }
        rl += n;
        ab += n;
        break;
      }
      case Branch::InOut:
        ln.rlAdr = rl;
        ln.abAdr = ab;
        InOut1NWCS(c, i);
        for (size_t k = 0; k < ln.vecWord.size(); ++k) {
          ln.vecWord[k].rlAdr = rl + static_cast<int>(k);
          ln.vecWord[k].abAdr = ab + static_cast<int>(k);
        }
        rl += 12;
        ab += 12;
        break;
      case Branch::RPush:
        ExpandRPushNW(i, rl, ab);
        break;
      case Branch::RPop:
        ExpandRPopNW(i, rl, ab);
        break;
      case Branch::Nop:
      case Branch::Ret:
      case Branch::Exit:
      case Branch::Start1: {
        const Branch br = branch;
        ln.first_word = br == Branch::Ret    ? (InstrCode("RET", OpForm::None) << 8)
                        : br == Branch::Exit ? (kExitCode << 8)
                                             : 0;
        const char16_t* note = br == Branch::Nop    ? u"NOP"
                               : br == Branch::Ret  ? u"RET"
                               : br == Branch::Exit ? u"EXIT"
                                                    : u"START";
        ln.vecWord.clear();
        ln.vecWord.push_back(MakeWord(ln.first_word, rl, ab, i, note));
        ln.rlAdr = rl;
        ln.abAdr = ab;
        rl += 1;
        ab += 1;
        break;
      }
      case Branch::Start2:
        if (CkStartAdrOperandNW(prg, TrimW(ln.oprnd1ChH), i) == 0) PlaceMadeWords(ln, i, rl, ab);
        break;
      case Branch::None: {
        wstr q = QuoteW(ln.opStr);
        if (c.IsJ()) {
          Say(c, kError, i,
              {q + u" に該当する命令がない。word_kazu[" + WNum(i) + u"]=" + WNum(ln.word_kazu)}, "AC50036E", q);
        } else {
          Say(c, kError, i, {q + u" is not an op code defined in casl2. "}, "AC50036E", q);
        }
        return -1;
      }
    }
  }

  // The literal area behind the program: in line order, one place each.
  pd.prgLiteStart = ab;
  for (int i = first; i < end; ++i) {
    SrcLineW& ln = L(i);
    if (ln.opStr.empty() || ln.word_kazu == 0 || ln.vecLiteConst.empty()) continue;
    if (ln.vecLiteConst.size() != 1) {
      con::out << "Prg. Error: vecsizeLiteConst=" << static_cast<long long>(ln.vecLiteConst.size()) << con::endl;
      con::out << "It is expected to be 1." << con::endl;
      con::out << "(PrgNr+1, line+1)=(" << prg + 1 << ", " << i + 1 << ")" << con::endl;
      continue;
    }
    LiteConstT<wstr>& lit = ln.vecLiteConst[0];
    lit.liteAbAdr = ab;
    lit.liteRlAdr = rl;
    SetSecondWord(ln, ab);
    if (lit.liteKind != "LiteCharConst") {
      rl += 1;
      ab += 1;
    } else {
      for (LiteCharT<wstr>& ch : lit.liteChars) {
        ch.charAbAdr = ab;
        rl += 1;
        ab += 1;
      }
    }
  }
  pd.prgWordSize = rl;
  pd.prgLastAdr = ab - 1;
  if (static_cast<size_t>(prg) + 1 < b->vecPrgW.size()) {
    b->vecPrgW[static_cast<size_t>(prg) + 1].AbAdrAtStart = ab;
  } else {
    b->MaxMemory = ab;
  }
  return 0;
}
