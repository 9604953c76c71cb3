// Small text helpers of the operand-data checks (address constants,
// literals, macros, DC, DS and the constant parsers).
#pragma once

#include <climits>
#include <cstdint>
#include <vector>

#include "records/diag.h"
#include "records/text.h"

namespace opd {

inline bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
inline bool IsUpper(char16_t c) { return c >= u'A' && c <= u'Z'; }
inline bool IsLower(char16_t c) { return c >= u'a' && c <= u'z'; }
inline bool IsBlank(char16_t c) { return c == u' ' || c == u'\t'; }
inline bool IsHexDigit(char16_t c) { return IsDigit(c) || (c >= u'A' && c <= u'F'); }
inline int HexDigitValue(char16_t c) {
  if (IsDigit(c)) return c - u'0';
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}
// The character at k, or 0 behind the end.
inline char16_t At(wview s, size_t k) { return k < s.size() ? s[k] : u'\0'; }

// Base-10 conversion in the manner of wcstol: optional sign, then digits up
// to the first other character; the value saturates at the limits of a
// 64-bit long.
inline long long DecValue(wview s, size_t* used = nullptr) {
  size_t k = 0;
  bool neg = false;
  if (k < s.size() && (s[k] == u'+' || s[k] == u'-')) neg = s[k++] == u'-';
  size_t firstDigit = k;
  unsigned long long v = 0;
  bool over = false;
  for (; k < s.size() && IsDigit(s[k]); ++k) {
    if (v > (static_cast<unsigned long long>(LLONG_MAX) + 1ULL) / 10ULL) over = true;
    if (!over) v = v * 10 + static_cast<unsigned long long>(s[k] - u'0');
  }
  if (used) *used = k == firstDigit ? 0 : k;  // nothing converted: the end pointer stays at the start
  const unsigned long long posMax = static_cast<unsigned long long>(LLONG_MAX);
  if (neg) {
    if (over || v > posMax + 1ULL) return LLONG_MIN;
    if (v == posMax + 1ULL) return LLONG_MIN;
    return -static_cast<long long>(v);
  }
  if (over || v > posMax) return LLONG_MAX;
  return static_cast<long long>(v);
}

// Cuts one trailing comma and the blanks in front of it.
inline wstr CutComma(wview s) {
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  if (!s.empty() && s.back() == u',') s.remove_suffix(1);
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  return wstr(s);
}

// Splits a text at its line ends into the printed lines of a message.
inline std::vector<wstr> Lines(wview text) {
  std::vector<wstr> out;
  size_t a = 0;
  for (;;) {
    size_t e = text.find(u'\n', a);
    if (e == wview::npos) {
      out.emplace_back(text.substr(a));
      break;
    }
    out.emplace_back(text.substr(a, e - a));
    a = e + 1;
  }
  if (out.size() > 1 && out.back().empty()) out.pop_back();
  return out;
}

}  // namespace opd
