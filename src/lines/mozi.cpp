// Character checks: the Analyst family (explains a faulty word at length)
// and the CkMozi family (silent answers about a word).
#include "lines/mozi.h"

#include <string>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"

namespace {

constexpr char16_t kZenSpace = u'\u3000';

// The word up to its first zero unit (words may come from fixed arrays).
wview ZeroEnded(wview w) {
  size_t z = w.find(u'\0');
  return z == wview::npos ? w : w.substr(0, z);
}

// A character that the system code page writes in two bytes: everything
// outside ASCII except the 1-byte katakana.
bool IsTwoByte(char16_t c) { return c >= 0x80 && !(c >= 0xFF61 && c <= 0xFF9F); }

// Prints one line with the line prefix; `count` adds one error on cs. The
// log does not repeat it.
void PrintLine(int line, const wstr& text, bool count, const char* code) {
  Tell(*cs, kError, line, {text}, code, Head::Line, count);
}

}  // namespace

int AnalystZenKSpace20NW(wview word, int line) {
  if (word.find(kZenSpace) == wview::npos) return 0;
  wstr q = QuoteW(word);
  wstr text = q;
  if (cs->IsJ()) {
    text += u" の中に全角の空白がある。";
    text += u" CASL2には全角の空白は使えない。　";
    text += u" CASL2では半角の空白を使う。";
  } else {
    text += u": ";
    text += u"There is a 2-byte space in the word. ";
    text += u"A 2-byte space is not allowed to be used in casl2. ";
    text += u"A 2-byte space should be replaced with 1-byte space.  ";
    text += u"Remove off the 2-byte space in the word. ";
  }
  Say(*cs, kError, line, {text}, "0801EEC3", q);
  return 0;
}

void AnalystZenKMoziW(wview word, int line, wview atStr) {
  bool found = false;
  for (char16_t c : word) {
    if (IsTwoByte(c)) {
      found = true;
      break;
    }
  }
  if (!found) return;
  wstr q = QuoteW(word);
  wstr text = q + u": ";
  if (cs->IsJ()) {
    text += u" の中に全角の文字がある。";
    text += u" CASL2では全角の文字は使えない。";
    text += u" CASL2では半角の空白を使う。";
  } else {
    text += u"There is a 2-byte character in the word. ";
    text += u"This character is not allowed in CASL2. ";
    text += u"Remove off the 2-byte character. ";
    text += u"A 1-byte space is allowed in CASL2.  ";
  }
  std::string code = "F93C6677 atStr=" + U16ToUtf8(atStr);
  Say(*cs, kError, line, {text}, code.c_str(), q);
}

int AnalystNW(wview word0, int line) {
  wview word = ZeroEnded(word0);
  int hits = 0;
  bool j = cs->IsJ();
  // GR8 or GR9: words only; the caller decides whether it counts.
  if (word.size() >= 3 && word[0] == u'G' && word[1] == u'R' && (word[2] == u'8' || word[2] == u'9')) {
    PrintLine(line,
              j ? wstr(u" レジスタは GR0-GR7 の8個だけです。") + u" GR8-GR9 は無いので使えない。 "
                : wstr(u"The comet2 has eight general registers of GR0-GR7. ") +
                      u"Neither GR8 nor GR9 is a general register of comet2. ",
              false, "4A2E0801");
    ++hits;
  }
  if (!word.empty() && word[0] >= u'0' && word[0] <= u'9') {
    wstr w(word);
    PrintLine(line,
              j ? w + u" レジスタ名（やラベル）の先頭文字に数字は使えない。"
                : wstr(u"The first character must be a letter. ") + u"A numerical is not allowed to be used " +
                      u"as the 1st letter of a label of " + w + u". ",
              true, "4A2E0802");
    ++hits;
  }
  for (char16_t c : word) {
    if (c >= u'a' && c <= u'z') {
      wstr w(word);
      PrintLine(line,
                j ? w + u" 小文字がある。 小文字は CASL2 では使えない。"
                  : w + u": " + u"There is a small letter in it. " + u"It cannot be used in casl2.",
                true, "4A2E0803");
      ++hits;
      break;
    }
  }
  return hits;
}

int CkMozi10NW(wview word0) {
  wview word = ZeroEnded(word0);
  for (size_t k = 0; k < word.size(); ++k) {
    char16_t c = word[k];
    bool ok = (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
    if (!ok) return static_cast<int>(k);
  }
  return 0;
}

int CkSmallLetterNW(wview word0) {
  wview word = ZeroEnded(word0);
  for (size_t k = 0; k < word.size(); ++k) {
    if (word[k] >= u'a' && word[k] <= u'z') return static_cast<int>(k);
  }
  return 0;
}

int CkMozi20W(wview hex0) {
  wview hex = ZeroEnded(hex0);
  size_t k = (!hex.empty() && hex[0] == u'#') ? 1 : 0;
  for (; k < hex.size(); ++k) {
    char16_t c = hex[k];
    bool ok = (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F');
    if (!ok) return 1;
  }
  return 0;
}
