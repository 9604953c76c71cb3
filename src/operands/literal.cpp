// Literals: a decimal, hexadecimal or string constant written with a
// leading "=" as an address operand. Their syntax is checked before the
// operands are split, on the working copy editStr (operand text with its
// comment cut off), so that an error in one is told in its own words; the
// record and the address come in the address pass.
#include <vector>

#include "constants/opd_text.h"
#include "lines/opcodes.h"
#include "operands/adr_const.h"
#include "records/console.h"
#include "records/diag.h"
#include "records/singletons.h"

using namespace opd;

namespace {

SrcLineW& L(int line) { return b->vecSrcW[static_cast<size_t>(line)]; }

// The line range of a program, clipped to the lines of the file; false for
// an impossible program index.
bool Range(int prg, int& first, int& end) {
  if (prg < 0 || static_cast<size_t>(prg) >= b->vecPrgW.size()) {
    con::out << "Prg. Error: (b->GetPrgKazuInFile() <= prg), prg=" << prg << con::endl;
    return false;
  }
  const PrgDataW& p = b->vecPrgW[static_cast<size_t>(prg)];
  first = p.prgFirstLine < 0 ? 0 : p.prgFirstLine;
  end = p.prgEndLine;
  if (end > static_cast<int>(b->vecSrcW.size())) end = static_cast<int>(b->vecSrcW.size());
  return true;
}

bool EndsLiteral(char16_t c) { return c == 0 || c == u'\t' || c == u' ' || c == u','; }

// The string literal whose "=" stands at k (the apostrophe at k + 1).
void CkLiteralString(TCorrectScode& c, int line, const wstr& s, size_t k) {
  int pos = static_cast<int>(k) + 1;
  if (DetStrConstGL10CS(pos, s) != 0) return;  // not closed: the next pass tells it
  wstr q = QuoteW(s);
  char16_t after = At(s, static_cast<size_t>(pos) + 1);
  if (!(after == 0 || after == u',' || IsBlank(after) || after == u';')) {
    if (c.IsJ()) {
      Say(c, kError, line,
          {q + u"  リテラル文字定数が正しく閉じていない。文字定数の中でアポストロフィは2個続けて書く。"}, "LT13036E", q);
    } else {
      Say(c, kError, line,
          {q + u"  The literal string constant is not correctly closed. "
               u"A string constant starts with an apostrophe and end with another apostrophe. "
               u"Two consecutive apostrophes('') is used as one apostrophe(') in a string constant."},
          "LT13036E", q);
    }
  }
  if (static_cast<size_t>(pos) == k + 2) {
    if (c.IsJ()) {
      Say(c, kError, line, {u"リテラルの文字数は１個以上必要。０個は不可。"}, "LT14036E", q);
    } else {
      Say(c, kError, line,
          {u"The length must be more than zero in a literal character constant. It is not allowed to be zero. "},
          "LT14036E", q);
    }
  }
}

void CkLiteralLine(TCorrectScode& c, int line) {
  const wstr& s = L(line).editStr;
  // The first "=" outside apostrophes.
  bool inStr = false;
  size_t k = 0;
  for (; k < s.size(); ++k) {
    if (s[k] == u'\'') inStr = !inStr;
    else if (s[k] == u'=' && !inStr) break;
  }
  if (k >= s.size()) return;
  // The quoted text, made only for a message.
  auto q = [&s] { return QuoteW(s); };
  char16_t c1 = At(s, k + 1), c2 = At(s, k + 2);
  if (IsDigit(c1) || ((c1 == u'+' || c1 == u'-') && IsDigit(c2))) {
    for (size_t j = IsDigit(c1) ? k + 1 : k + 2; !EndsLiteral(At(s, j)); ++j) {
      if (!IsDigit(s[j])) {
        if (c.IsJ()) {
          Say(c, kError, line, {u"リテラル10進定数に 数字以外の文字がある。"}, "LT10036E", q());
        } else {
          Say(c, kError, line, {u"There is non-numeral letter in the literal decimal constant. "}, "LT10036E", q());
        }
        return;
      }
    }
    return;
  }
  if (c1 == u'#' && IsHexDigit(c2)) {
    size_t n = 0;
    bool bad = false;
    for (size_t j = k + 2; !EndsLiteral(At(s, j)); ++j, ++n) bad = bad || !IsHexDigit(s[j]);
    if (bad) {
      if (c.IsJ()) {
        Say(c, kError, line, {u"リテラル16進定数は 0 - 9 の数字 と  A - F の英大文字を使う。"}, "LT11036E", q());
      } else {
        Say(c, kError, line, {u"A hexadecimal number is written in 0-9 and A-F. "}, "LT11036E", q());
      }
    }
    if (n != 4) {
      if (c.IsJ()) {
        Say(c, kError, line, {u"リテラル16進定数は 4 桁で記述。"}, "LT12036E", q());
      } else {
        Say(c, kError, line, {u"A hexadecimal number should be written in four letters. "}, "LT12036E", q());
      }
    }
    return;
  }
  if (c1 == u'\'') {
    CkLiteralString(c, line, s, k);
    return;
  }
  if (k + 1 >= s.size()) {
    Say(c, kError, line, {q() + u" cannot be read as a literal. "}, "LT15036E", q());
    return;
  }
  if (c.IsJ()) {
    wstr pair = QuoteW(wview(s).substr(k, 2));
    std::vector<wstr> lines =
        Lines(u"= と その直後の文字 " + pair +
              u" の組み合わせは、リテラルにもラベルにも読み取れない。"
              u"リテラルは、一つの１０進定数、１６進定数　又は　\n"
              u"文字定数の前に等号（＝）を付けて記述する。\n"
              u"（CASL2言語の仕様   2.5 機械語命令）したがって、ラベルはリテラル定数としては使えない。");
    Say(c, kError, line, lines, "LT16036E", q());
  } else {
    std::vector<wstr> lines =
        Lines(q() + u" cannot be regaraded as a label or an address constant. "
                  u"A literal can be described by attaching the equal sign (=)\n"
                  u"before a decimal constant, a hexadecimal constant or a character constant.\n"
                  u"(Spec.of CASL2 　2.5 Machine Language Instructions)So a label is excluded from a literal.");
    Say(c, kError, line, lines, "LT16036E", q());
  }
}

bool NoLiteralOp(const wstr& text) {
  switch (OpOf(text)) {
    case Op::DC:
    case Op::DS:
    case Op::NOP:
    case Op::RPUSH:
    case Op::RPOP:
    case Op::RET:
    case Op::START:
    case Op::END:
      return true;
    default:
      return false;
  }
}

// Blanks next to commas are dropped in front of the first "=".
void DropBlanksAtCommas(wstr& s) {
  size_t eq = s.find(u'=');
  if (eq == wstr::npos) return;
  // Without a blank in front of the "=" nothing is dropped.
  if (wview(s).substr(0, eq).find(u' ') == wview::npos) return;
  wstr head = s.substr(0, eq);
  wstr out;
  out.reserve(head.size());
  for (size_t k = 0; k < head.size(); ++k) {
    char16_t ch = head[k];
    if (ch == u' ') {
      size_t j = k;
      while (j < head.size() && head[j] == u' ') ++j;
      bool commaAfter = j < head.size() && head[j] == u',';
      bool commaBefore = !out.empty() && out.back() == u',';
      if (commaAfter || commaBefore) {
        k = j - 1;
        continue;
      }
    }
    out.push_back(ch);
  }
  s = out + s.substr(eq);
}

}  // namespace

int CkLiteral15NW(int prg) {
  int first = 0, end = 0;
  if (!Range(prg, first, end)) return -1;
  for (int i = first; i < end; ++i) {
    const SrcLineW& ln = L(i);
    if (ln.opStr.empty() || ln.editStr.empty() || NoLiteralOp(ln.opStr)) continue;
    CkLiteralLine(*cs, i);
  }
  return 0;
}

int DetStrConstGL10CS(int& pos, wview text) {
  if (pos < 0 || static_cast<size_t>(pos) >= text.size() || text[static_cast<size_t>(pos)] != u'\'') {
    con::out << u"Prg Error: 文字列定数開始位置0x27の引き渡しではない。" << con::endl;
    return -2;
  }
  for (size_t k = static_cast<size_t>(pos) + 1; k < text.size(); ++k) {
    if (text[k] != u'\'') continue;
    if (k + 1 < text.size() && text[k + 1] == u'\'') {
      ++k;
      continue;
    }
    pos = static_cast<int>(k);
    return 0;
  }
  pos = static_cast<int>(text.size());
  return -1;
}

int CkStrConstLiteralNW10CS(int prg) {
  int first = 0, end = 0;
  if (!Range(prg, first, end)) return -1;
  TCorrectScode& c = *cs;
  for (int i = first; i < end; ++i) {
    SrcLineW& ln = L(i);
    if (ln.opStr.empty() || ln.opStr == u"DC" || ln.editStr.empty()) continue;
    const wstr& s = ln.editStr;
    size_t from = 0;
    bool bad = false;
    for (;;) {
      size_t at = s.find(u"='", from);
      if (at == wstr::npos) break;
      int pos = static_cast<int>(at) + 1;
      if (DetStrConstGL10CS(pos, s) != 0) {
        wstr q = QuoteW(s);
        if (c.IsJ()) {
          Say(c, kError, i, {q + u": 正例１．：　='Ruby' ", u"正例２．：  ='Ruby '' 123'"}, "CECE1234", q);
        } else {
          Say(c, kError, i,
              {q + u": A literal charcter constant is not correctly closed.", u"Good Example 1.:  ='Ruby' ",
               u"Good Example 2.:  ='Ruby '' 123'"},
              "CECE1234", q);
        }
        bad = true;
        break;
      }
      from = static_cast<size_t>(pos) + 1;
    }
    if (!bad) DropBlanksAtCommas(ln.editStr);
  }
  return 0;
}
