// Operand splitting: the comment cut by opcode class, the trim, and the cut
// of oprndComChH into four slots. A slot keeps the comma that ended its
// operand, so the rules can tell which comma is wrong.
#include <array>

#include "lines/opcodes.h"
#include "operands/operands.h"
#include "operands/rules_util.h"

using rules::At;
using rules::L;

namespace {

enum class CutClass { None, A, DC, B };

CutClass ClassOf(wview op) {
  const Op o = OpOf(op);
  switch (o) {
    case Op::RPUSH:
    case Op::RPOP:
    case Op::RET:
    case Op::NOP:
    case Op::END:
    case Op::START:
    case Op::POP:
    case Op::DS:
    case Op::IN:
    case Op::OUT:
      return CutClass::A;
    case Op::DC:
      return CutClass::DC;
    default:
      return IsRegisterFamily(o) || IsAddressOnlyFamily(o) || IsJumpFamily(o) ? CutClass::B : CutClass::None;
  }
}

// One apostrophe-aware cut at `mark`: at the first mark if it stands left of
// the first apostrophe (or there is none); then, as long as the last mark
// stands right of the last apostrophe, at that mark.
void CutAtMark(wstr& t, wview mark) {
  size_t q1 = t.find(u'\'');
  size_t p = t.find(mark);
  if (p != wstr::npos && (q1 == wstr::npos || p < q1)) t.resize(p);
  for (;;) {
    size_t r = t.rfind(mark);
    size_t ql = t.rfind(u'\'');
    if (r == wstr::npos || ql == wstr::npos || r < ql) break;
    t.resize(r);
  }
}

// The cuts at ";", at a tab and at two blanks, one after the other. In a
// text without apostrophes each is a cut at the first mark, and together
// they are the cut at the first of the three.
void ThreeCuts(wstr& t) {
  if (t.find(u'\'') == wstr::npos) {
    for (size_t k = 0; k < t.size(); ++k) {
      const char16_t c = t[k];
      if (c == u';' || c == u'\t' || (c == u' ' && k + 1 < t.size() && t[k + 1] == u' ')) {
        t.resize(k);
        break;
      }
    }
    return;
  }
  CutAtMark(t, u";");
  CutAtMark(t, u"\t");
  CutAtMark(t, u"  ");
}

// " ," and ", " outside strings become ",".
wstr DropBlanksAtCommas(wview t) {
  wstr out;
  bool inStr = false;
  for (size_t k = 0; k < t.size(); ++k) {
    char16_t ch = t[k];
    if (ch == u'\'') inStr = !inStr;
    if (!inStr && ch == u' ') {
      size_t n = k;
      while (n < t.size() && t[n] == u' ') ++n;
      bool beforeComma = n < t.size() && t[n] == u',';
      bool afterComma = !out.empty() && out.back() == u',';
      if (beforeComma || afterComma) continue;
    }
    out += ch;
  }
  return out;
}

void ClassA(wstr& t) {
  size_t p = t.find(u';');
  if (p != wstr::npos) t.resize(p);
  for (char16_t& ch : t)
    if (ch == u'\t') ch = u' ';
  for (size_t p2 = t.find(u"  "); p2 != wstr::npos; p2 = t.find(u"  ")) t.erase(p2, 1);
  TrimWInPlace(t);
}

void LiteralError(int line, wview text, bool closedBadly) {
  wstr q = QuoteW(text);
  if (closedBadly) {
    rules::SayJE(*cs, kError, line, {q + u": リテラル文字定数が正しく閉じていない。 "},
                 {q + u": A literal charcter constant is not correctly closed. "}, "F044036E", q);
  } else {
    rules::SayJE(*cs, kError, line, {q + u": リテラル文字定数が正しく閉じていない。"},
                 {q + u": The literal string constant is not correctly closed. "}, "DEF0036E", q);
  }
}

}  // namespace

int CutOprndCommentNW(int prg) {
  int first = 0, end = 0;
  if (!rules::PrgLines(prg, first, end)) return 0;
  for (int i = first; i < end; ++i) {
    SrcLineW& s = L(i);
    if (s.opStr.empty() || s.oprndComStr.empty()) continue;
    wstr& t = s.oprndComStr;
    switch (ClassOf(s.opStr)) {
      case CutClass::A:
        ClassA(t);
        break;
      case CutClass::DC:
        ThreeCuts(t);
        // Without a blank there is nothing to drop.
        if (t.find(u' ') != wstr::npos) t = DropBlanksAtCommas(t);
        TrimWInPlace(t);
        break;
      case CutClass::B:
        ThreeCuts(t);
        TrimWInPlace(t);
        break;
      case CutClass::None:
        break;
    }
  }
  return 0;
}

int TrimOprndComStrNW(int prg) {
  int first = 0, end = 0;
  if (!rules::PrgLines(prg, first, end)) return 0;
  for (int i = first; i < end; ++i) TrimWInPlace(L(i).oprndComStr);
  return 0;
}

int ExtractOprnd5NW(int line, const std::array<wstr*, 5>& slots, int& slotNr, int& destPos, int& srcPos) {
  const wstr& src = *slots[0];
  if (slotNr < 1 || slotNr > 4) return 1;
  wstr& dst = *slots[static_cast<size_t>(slotNr)];
  auto put = [&](char16_t ch) {
    if (dst.size() != static_cast<size_t>(destPos)) dst.resize(static_cast<size_t>(destPos));
    dst += ch;
    ++destPos;
  };
  auto terminate = [&]() { dst.resize(static_cast<size_t>(destPos)); };
  auto cur = [&](int k) { return At(src, static_cast<size_t>(k)); };
  for (;;) {
    char16_t c = cur(srcPos);
    if ((IsBlankW(c) && cur(srcPos + 1) == u',') || c == u',' || c == u'\0') break;
    if (c == u'=' && cur(srcPos + 1) == u'\'') {
      put(u'=');
      put(u'\'');
      srcPos += 2;
      for (;;) {
        char16_t ch = cur(srcPos);
        if (ch == u'\0') {
          terminate();
          LiteralError(line, src, false);
          return 1;
        }
        if (ch == u'\'') {
          if (cur(srcPos + 1) == u'\'') {
            put(u'\'');
            put(u'\'');
            srcPos += 2;
            continue;
          }
          char16_t after = cur(srcPos + 1);
          if (after != u',' && !IsBlankW(after) && after != u'\0') {
            terminate();
            LiteralError(line, src, true);
            return 1;
          }
          put(u'\'');
          ++srcPos;
          break;
        }
        put(ch);
        ++srcPos;
      }
      continue;
    }
    if (IsBlankW(c)) {
      ++srcPos;
      terminate();
      ++slotNr;
      ++destPos;
      return 0;
    }
    put(c);
    ++srcPos;
  }
  // The end of one operand.
  while (IsBlankW(cur(srcPos))) ++srcPos;
  char16_t c = cur(srcPos);
  if (c == u',' && IsBlankW(cur(srcPos + 1))) {
    put(u',');
    terminate();
    ++srcPos;
    while (IsBlankW(cur(srcPos))) ++srcPos;
    ++slotNr;
  } else if (c == u',') {
    put(u',');
    terminate();
    ++slotNr;
    ++srcPos;
  } else {
    terminate();
    ++slotNr;
  }
  return 0;
}

int SplitOprndsNW(int prg) {
  int first = 0, end = 0;
  if (!rules::PrgLines(prg, first, end)) return 0;
  for (int i = first; i < end; ++i) {
    SrcLineW& s = L(i);
    if (s.opStr == u"DC") continue;
    std::array<wstr*, 5> slots{&s.oprndComChH, &s.oprnd1ChH, &s.oprnd2ChH, &s.oprnd3ChH, &s.oprnd4ChH};
    for (int k = 1; k <= 4; ++k) slots[static_cast<size_t>(k)]->clear();
    // The text as the fixed array holds it: up to its first zero.
    size_t z = s.oprndComChH.find(u'\0');
    if (z != wstr::npos) s.oprndComChH.resize(z);
    if (s.oprndComChH.empty()) continue;
    int srcPos = 0, slotNr = 1, destPos = 0;
    const int len = static_cast<int>(s.oprndComChH.size());
    while (slotNr < 4) {
      destPos = 0;
      if (ExtractOprnd5NW(i, slots, slotNr, destPos, srcPos) == 1) break;
      if (srcPos >= len) break;
    }
    if (slotNr == 4 && srcPos < len) s.oprnd4ChH = s.oprndComChH.substr(static_cast<size_t>(srcPos));
    s.oprndCount = slotNr - 1;
    if (slotNr >= 1 && slotNr <= 3) {
      for (int k = slotNr + 1; k <= 4; ++k) slots[static_cast<size_t>(k)]->clear();
    }
  }
  return 0;
}
