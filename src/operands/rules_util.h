// Small helpers shared by the line passes and the instruction rules.
#pragma once

#include <string>
#include <vector>

#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/records.h"
#include "records/singletons.h"
#include "records/text.h"

namespace rules {

inline SrcLineW& L(int line) { return b->vecSrcW[static_cast<size_t>(line)]; }

// The lines of program `prg` from its first line up to (not including) its
// END line, clipped to the lines of the file; false for an index without a
// program.
inline bool PrgLines(int prg, int& first, int& end) {
  if (prg < 0 || prg >= static_cast<int>(b->vecPrgW.size())) return false;
  const PrgDataW& p = b->vecPrgW[static_cast<size_t>(prg)];
  first = p.prgFirstLine < 0 ? 0 : p.prgFirstLine;
  end = p.prgEndLine;
  if (end > static_cast<int>(b->vecSrcW.size())) end = static_cast<int>(b->vecSrcW.size());
  return true;
}

inline bool IsDigitW(char16_t ch) { return ch >= u'0' && ch <= u'9'; }
inline bool IsUpperW(char16_t ch) { return ch >= u'A' && ch <= u'Z'; }
inline bool IsLowerW(char16_t ch) { return ch >= u'a' && ch <= u'z'; }
// The character at k, or 0 behind the end (the zero that ends a slot).
inline char16_t At(wview s, size_t k) { return k < s.size() ? s[k] : u'\0'; }

// "GRn" with n from lo to hi at the start of s.
inline bool StartsGR(wview s, char16_t lo, char16_t hi) {
  return s.size() >= 3 && s[0] == u'G' && s[1] == u'R' && s[2] >= lo && s[2] <= hi;
}

// Cut of one trailing comma.
inline wstr CutComma(wview s) {
  if (!s.empty() && s.back() == u',') s.remove_suffix(1);
  return wstr(s);
}

// Blanks, tabs and U+3000 off both ends.
inline wstr TrimBlankZenW(wview s) {
  auto isb = [](char16_t ch) { return ch == u' ' || ch == u'\t' || ch == u'\u3000'; };
  size_t a = 0, e = s.size();
  while (a < e && isb(s[a])) ++a;
  while (e > a && isb(s[e - 1])) --e;
  return wstr(s.substr(a, e - a));
}

// Errors on all three owners of the counters.
inline int AllErrors() { return fileData->ErrorKazu + b->ErrorKazu + cs->ErrorKazu; }

// One message in c's language: the Japanese or the English lines.
inline void SayJE(TCorrectScode& c, int kind, int line, std::vector<wstr> j, std::vector<wstr> e,
                  const char* code, wview src = {}, Head head = Head::Line) {
  Say(c, kind, line, c.IsJ() ? j : e, code, src, head);
}

}  // namespace rules
