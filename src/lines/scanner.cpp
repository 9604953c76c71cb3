// The line scanner: editNWB over the whole file, comment removal per
// program, and the passes of the line analysis that cut each line into its
// label, opcode, operand and comment fields.
#include "lines/scanner.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "lines/opcodes.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"

namespace {

constexpr size_t kNone = wstr::npos;

size_t FirstNonBlank(wview s, size_t from = 0) {
  for (size_t k = from; k < s.size(); ++k) {
    if (!IsBlankW(s[k])) return k;
  }
  return kNone;
}

size_t FirstBlank(wview s) {
  for (size_t k = 0; k < s.size(); ++k) {
    if (IsBlankW(s[k])) return k;
  }
  return kNone;
}

// The line range of program `prg`: [first, end], end being its END line.
// False (with nothing to do) for an index without a record.
bool PrgRange(int prg, int& first, int& end) {
  if (prg < 0 || static_cast<size_t>(prg) >= b->vecPrgW.size()) return false;
  const PrgDataW& p = b->vecPrgW[prg];
  int n = static_cast<int>(b->vecSrcW.size());
  first = std::max(0, p.prgFirstLine);
  end = std::min(p.prgEndLine, n - 1);
  return true;
}

bool HoldsAny(wview s, std::span<const char16_t* const> forms) {
  for (const char16_t* f : forms) {
    if (s.find(f) != wview::npos) return true;
  }
  return false;
}

// The length warning for operand text over 225 characters. `second` picks
// the wording of the later check.
void LengthWarning(int line, size_t len, bool second) {
  if (second) {
    con::out << u"（規定の文字の長さ、文字数）＝（" << u"225" << u", " << static_cast<long long>(len) << u"）"
             << con::endl;
  }
  if (cs->IsJ()) {
    con::out << u"警告: " << (line + 1) << u"行目："
             << (second ? u"DrillAsmの仕様の規定よりも長い行がある。 " : u"DrillAsmの仕様よりも長い行がある。 ")
             << static_cast<long long>(len) << u" 文字ある。" << u"225" << u" 文字まで読取り、"
             << u"それ以降の文字は読み捨てる。" << con::endl;
  } else {
    con::out << u"Warning: " << u"line " << (line + 1) << u": There are " << static_cast<long long>(len)
             << u" characters in the line. "
             << (second ? u"The Spec. of DrillAsm has a length limit in every line. "
                        : u"The Spec. of DrillAsm has a length limit for every line. ")
             << u"The assembler reads " << u"225" << u" characters or less a line. " << con::endl
             << u"This might have caused an error " << u"for all your intention. " << con::endl;
  }
}

void CopyToChH(SrcLineW& s) {
  s.oprndComChH.assign(s.oprndComStr, 0, std::min<size_t>(s.oprndComStr.size(), OprndChHUsed));
}

// The end of `s` without its trailing blanks.
size_t EndWithoutBlanks(wview s) {
  size_t e = s.size();
  while (e > 0 && IsBlankW(s[e - 1])) --e;
  return e;
}

// The texts of a "blank just after a sign" error.
struct SignBlankText {
  const char16_t* forms[6];  // a sign followed by a space or a tab
  const char16_t* j;         // Japanese first line (the second is shared)
  const char16_t* e1;        // English lines
  const char16_t* e2;
  const char* code;
};

// The check behind edit30cNW and edit50NW. On each line of `prg`, `sign`
// finds the sign before any string; `closeUp` may tidy the line behind it.
// A sign followed by a blank is then an error (-1).
template <class Find, class CloseUp>
int BlankAfterSign(int prg, Find sign, CloseUp closeUp, const SignBlankText& t) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end)) return 0;
  for (int i = first; i < end; ++i) {
    wstr& w = b->vecSrcW[i].editStr;
    if (w.empty()) continue;
    size_t q = w.find(u'\'');
    size_t p = sign(w);
    if (p == kNone || (q != kNone && p > q)) continue;
    closeUp(w, p);
    if (HoldsAny(w, t.forms)) {
      wstr qt = QuoteW(w);
      if (cs->IsJ()) {
        Say(*cs, kError, i, {qt + u": " + t.j, u"記号の直後、数字の直前にある空白を取り除くこと。"}, t.code, qt);
      } else {
        Say(*cs, kError, i, {qt + u": " + t.e1, t.e2}, t.code, qt);
      }
      return -1;
    }
  }
  return 0;
}

}  // namespace

int editNWB() {
  std::vector<SrcLineW>& v = b->vecSrcW;
  for (SrcLineW& s : v) s.editStr = s.rawStr;
  for (SrcLineW& s : v) {
    if (s.editStr.empty()) continue;
    size_t p = FirstNonBlank(s.editStr);
    if (p == kNone) {
      s.rawStr.clear();
      s.editStr.clear();
      s.commentStr.clear();
    } else if (s.editStr[p] != u';') {
      s.editStr.resize(EndWithoutBlanks(s.editStr));
    } else {
      s.commentStr.assign(s.editStr, p, EndWithoutBlanks(s.editStr) - p);
      s.editStr.clear();
    }
  }
  bool any = false;
  for (SrcLineW& s : v) {
    if (s.editStr.empty()) continue;
    any = true;
    // Two or more blanks in front become one blank.
    size_t p = FirstNonBlank(s.editStr);
    if (p != kNone && p >= 2) {
      s.editStr.erase(0, p - 1);
      s.editStr[0] = u' ';
    }
  }
  if (!any) {
    if (b->IsJ()) {
      Say(*b, kError, 0, {u"エラー：　アセンブラは準備完了、 ソースコードの記述がない。 "}, "E4E4B0A1", {}, Head::None);
    } else {
      Say(*b, kError, 0, {u"Error: The source code is empty.  The assembler is ready to go!"}, "E4E4B0A1", {},
          Head::None);
    }
    return -1;
  }
  return 0;
}

int CutCommentNW(int prg) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end)) return 0;
  for (int i = first; i < end; ++i) {
    wstr& w = b->vecSrcW[i].editStr;
    bool inQuote = false;
    size_t cut = kNone;
    for (size_t k = 0; k < w.size(); ++k) {
      if (w[k] == u'\'') {
        if (k + 1 < w.size() && w[k + 1] == u'\'') {
          ++k;  // a doubled apostrophe leaves the flag alone
        } else {
          inQuote = !inQuote;
        }
      } else if (w[k] == u';' && !inQuote) {
        cut = k;
        break;
      }
    }
    if (cut != kNone) w.resize(cut);
  }
  return 0;
}

int TakeOutLabelStrNW(int prg) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end)) return 0;
  bool warned = false;
  for (int i = first; i <= end; ++i) {
    SrcLineW& s = b->vecSrcW[i];
    const wview w = s.editStr;
    // The label: the text up to the first blank. Behind it, left-trimmed,
    // the opcode up to its first blank, and behind that one blank the
    // operand text, left-trimmed.
    wview after;
    if (!w.empty()) {
      size_t p = FirstBlank(w);
      if (p == kNone) {
        s.labelStr.assign(w);
      } else {
        s.labelStr.assign(w.substr(0, p));
        size_t q = FirstNonBlank(w, p);
        if (q != kNone) after = w.substr(q);
      }
    }
    if (after.empty()) {
      s.opStr.clear();
      continue;
    }
    const size_t opLen = std::min(FirstBlank(after), after.size());
    s.opStr.assign(after.substr(0, opLen));
    if (opLen + 1 < after.size()) {
      wview rest = after.substr(opLen + 1);
      size_t r = FirstNonBlank(rest);
      s.oprndComStr.assign(r == kNone ? wview() : rest.substr(r));
    } else {
      s.oprndComStr.clear();
    }
    if (s.oprndComStr.size() > static_cast<size_t>(OprndChHUsed) && !warned) {
      LengthWarning(i, s.oprndComStr.size(), false);
      warned = true;
    }
    CopyToChH(s);
  }
  return 0;
}

bool IsCutOprndComOp(wview op) {
  switch (OpOf(op)) {
    case Op::None:
    case Op::Other:
    case Op::DC:
    case Op::EXIT:
      return false;
    default:
      return true;
  }
}

int CutOprndComNW(int prg) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end)) return 0;
  for (int i = first; i < end; ++i) {
    SrcLineW& s = b->vecSrcW[i];
    if (s.opStr.empty() || !IsCutOprndComOp(s.opStr)) continue;
    size_t p = s.oprndComStr.find(u';');
    if (p == kNone) continue;
    s.commentStr = s.oprndComStr.substr(p);
    s.oprndComStr.resize(p);
  }
  return 0;
}

int CopyOprndComToEditNW(int prg) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end)) return 0;
  for (int i = first; i < end; ++i) b->vecSrcW[i].editStr = b->vecSrcW[i].oprndComStr;
  return 0;
}

int edit30cNW(int prg) {
  static const SignBlankText kText = {
      {u"=+ ", u"=- ", u"=# ", u"=+\t", u"=-\t", u"=#\t"},
      u"=+, =-, =# 記号の直後に空白がある。",
      u"There is a space just after =+, =-, or =#. ",
      u"Remove off the space at the right side of the literal figure. ",
      "3C30E0D1"};
  // Blanks between "=" and the sign or figure behind it are dropped first.
  return BlankAfterSign(
      prg, [](const wstr& w) { return w.find(u'='); },
      [](wstr& w, size_t p) {
        size_t n = FirstNonBlank(w, p + 1);
        if (n != kNone) {
          w.erase(p + 1, n - (p + 1));
        } else {
          w.resize(p);
        }
      },
      kText);
}

int edit50NW(int prg) {
  static const SignBlankText kText = {
      {u"+ ", u"- ", u"# ", u"+\t", u"-\t", u"#\t"},
      u"+, -, # 記号の直後に空白がある。",
      u"There is a space just after +, -, or #. ",
      u"Remove off the space at the left side of the figure.",
      "3C50E0D1"};
  return BlankAfterSign(
      prg,
      [](const wstr& w) {
        for (size_t k = 0; k < w.size(); ++k) {
          if (w[k] == u'+' || w[k] == u'-' || w[k] == u'#') return k;
        }
        return kNone;
      },
      [](wstr&, size_t) {}, kText);
}

int DivideCommentNW(int prg) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end)) return 0;
  for (int i = first; i < end; ++i) {
    SrcLineW& s = b->vecSrcW[i];
    wstr& w = s.editStr;
    if (w.empty()) continue;
    size_t p = w.find(u';');
    if (p == kNone) continue;
    size_t a = w.find(u'\'');
    if (a == kNone || p < a) {
      s.commentStr = w.substr(p);
      w.resize(p);
      continue;
    }
    // A comment behind a closed string: the last ";" is the first one
    // behind the last apostrophe only when there is one ";" in all.
    size_t r = w.rfind(u';');
    size_t sq = w.rfind(u'\'');
    if (sq < r && r == p) {
      s.commentStr = w.substr(r);
      w.resize(r);
    }
  }
  return 0;
}

int CopyOprndComStrToChH2BD(int prg) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end)) return 0;
  int longLines = 0;
  for (int i = first; i < end; ++i) {
    SrcLineW& s = b->vecSrcW[i];
    if (longLines < 2 && s.oprndComStr.size() > static_cast<size_t>(OprndChHUsed)) {
      ++longLines;
      if (longLines == 1) LengthWarning(i, s.oprndComStr.size(), true);
    }
    CopyToChH(s);
  }
  return 0;
}
