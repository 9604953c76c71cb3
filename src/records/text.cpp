#include "records/text.h"


wstr Utf8ToU16(std::string_view s) {
  wstr out;
  out.reserve(s.size());
  const auto* p = reinterpret_cast<const unsigned char*>(s.data());
  const size_t n = s.size();
  size_t i = 0;
  while (i < n) {
    unsigned char c = p[i];
    if (c < 0x80) {
      out.push_back(c);
      ++i;
      continue;
    }
    int len = 0;
    uint32_t cp = 0;
    uint32_t minCp = 0;
    if ((c & 0xE0) == 0xC0) {
      len = 2;
      cp = c & 0x1F;
      minCp = 0x80;
    } else if ((c & 0xF0) == 0xE0) {
      len = 3;
      cp = c & 0x0F;
      minCp = 0x800;
    } else if ((c & 0xF8) == 0xF0) {
      len = 4;
      cp = c & 0x07;
      minCp = 0x10000;
    } else {
      out.push_back(0xFFFD);
      ++i;
      continue;
    }
    int k = 1;
    for (; k < len && i + k < n; ++k) {
      unsigned char cc = p[i + k];
      if ((cc & 0xC0) != 0x80) break;
      cp = (cp << 6) | (cc & 0x3F);
    }
    if (k < len) {  // truncated or interrupted sequence
      out.push_back(0xFFFD);
      i += k;
      continue;
    }
    i += len;
    if (cp < minCp || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
      out.push_back(0xFFFD);
    } else if (cp >= 0x10000) {
      cp -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(cp));
    }
  }
  return out;
}

static void PutUtf8(std::string& out, uint32_t cp) {
  if (cp < 0x80) {
    out.push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

std::string U16ToUtf8(wview s) {
  std::string out;
  AppendUtf8(out, s);
  return out;
}

void AppendUtf8(std::string& out, wview s) {
  const size_t n = s.size();
  char16_t any = 0;
  for (char16_t c : s) any |= c;
  if (any < 0x80) {  // ASCII: one byte each
    const size_t at = out.size();
    out.resize(at + n);
    for (size_t i = 0; i < n; ++i) out[at + i] = static_cast<char>(s[i]);
    return;
  }
  out.reserve(out.size() + n);
  for (size_t i = 0; i < n; ++i) {
    uint32_t c = s[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < n && s[i + 1] >= 0xDC00 && s[i + 1] <= 0xDFFF) {
      uint32_t cp = 0x10000 + ((c - 0xD800) << 10) + (s[i + 1] - 0xDC00);
      PutUtf8(out, cp);
      ++i;
    } else if (c >= 0xD800 && c <= 0xDFFF) {
      PutUtf8(out, 0xFFFD);
    } else {
      PutUtf8(out, c);
    }
  }
}

wstr WNum(long long n) {
  std::string s = std::to_string(n);
  return wstr(s.begin(), s.end());
}

wstr LTrimW(wview s) {
  size_t i = 0;
  while (i < s.size() && IsBlankW(s[i])) ++i;
  return wstr(s.substr(i));
}

wstr RTrimW(wview s) {
  size_t e = s.size();
  while (e > 0 && IsBlankW(s[e - 1])) --e;
  return wstr(s.substr(0, e));
}

wstr TrimW(wview s) { return wstr(TrimView(s)); }

wview TrimView(wview s) {
  size_t i = 0, e = s.size();
  while (i < e && IsBlankW(s[i])) ++i;
  while (e > i && IsBlankW(s[e - 1])) --e;
  return s.substr(i, e - i);
}

void TrimWInPlace(wstr& s) {
  size_t e = s.size();
  while (e > 0 && IsBlankW(s[e - 1])) --e;
  s.resize(e);
  size_t i = 0;
  while (i < e && IsBlankW(s[i])) ++i;
  if (i > 0) s.erase(0, i);
}

std::string TrimA(std::string_view s) {
  size_t i = 0, e = s.size();
  while (i < e && (s[i] == ' ' || s[i] == '\t')) ++i;
  while (e > i && (s[e - 1] == ' ' || s[e - 1] == '\t')) --e;
  return std::string(s.substr(i, e - i));
}

std::string Hex4(uint32_t v) {
  static const char kDigits[] = "0123456789ABCDEF";
  std::string s = "#0000";
  for (int k = 0; k < 4; ++k) s[4 - k] = kDigits[(v >> (4 * k)) & 0xF];
  return s;
}

wstr Hex4W(uint32_t v) {
  std::string s = Hex4(v);
  return wstr(s.begin(), s.end());
}
