// Text helpers shared by every subsystem.
//
// Wide text is UTF-16 in std::u16string; narrow text in this program is UTF-8
// (file names, the settings file, the report files, the console).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

using wstr = std::u16string;
using wview = std::u16string_view;

// UTF-8 -> UTF-16. Bad sequences become U+FFFD; characters outside the BMP
// become surrogate pairs.
wstr Utf8ToU16(std::string_view s);

// UTF-16 -> UTF-8. A lone surrogate becomes U+FFFD.
std::string U16ToUtf8(wview s);
// The same, appended to `out`.
void AppendUtf8(std::string& out, wview s);

// Decimal text of n, no padding.
wstr WNum(long long n);

// Blanks of the assembler's front: 0x20 and the tab, nothing else.
inline bool IsBlankW(char16_t c) { return c == u' ' || c == u'\t'; }

wstr LTrimW(wview s);
wstr RTrimW(wview s);
wstr TrimW(wview s);
// TrimW of s, in its own storage.
void TrimWInPlace(wstr& s);
// The text of s without the blanks at both ends, as a view into s.
wview TrimView(wview s);

// Trims 0x20 and 0x09 at both ends of narrow text.
std::string TrimA(std::string_view s);

// "#" and four upper-case hex digits of the low 16 bits.
std::string Hex4(uint32_t v);
wstr Hex4W(uint32_t v);
