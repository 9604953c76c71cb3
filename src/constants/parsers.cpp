// The parsers of decimal, hexadecimal and string constants. Each checks its
// text, reports in the words of the standard's section on constants, and
// gives a 16-bit value: a number outside the range is not refused but cut to
// its low 16 bits, with a warning.
#include <climits>
#include <cstdint>
#include <vector>

#include "constants/constants.h"
#include "constants/opd_text.h"
#include "records/console.h"
#include "records/diag.h"

using namespace opd;

namespace {

Head HeadOf(int constNr) { return constNr > 0 ? Head::ConstNr : Head::Line; }

}  // namespace

int CkDecConstG(TDiagBase& w, int line, int constNr, wview text, const char* code) {
  if (text.empty() || !(text[0] == u'+' || text[0] == u'-' || IsDigit(text[0]))) {
    con::out << u"Prg. Error: 先頭文字が(+, -, 数字)でこの関数に引き渡されることになっている。" << con::endl;
    return -1;
  }
  for (size_t k = 1; k < text.size(); ++k) {
    if (!IsDigit(text[k])) {
      wstr q = QuoteW(text);
      if (w.IsJ()) {
        Say(w, kError, line, {q + u"10進定数の中に数字以外の文字がある。"}, code, q, HeadOf(constNr), constNr);
      } else {
        Say(w, kError, line, {u"There is non-numerical letter in the decimal constant. "}, code, q, HeadOf(constNr),
            constNr);
      }
      return -1;
    }
  }
  return 0;
}

int32_t DecStrToIntG(TDiagBase& w, int line, int constNr, wview text) {
  long long v = DecValue(text);
  if (v >= -32768 && v <= 32767) return static_cast<int32_t>(v);
  wstr q = QuoteW(text);
  if (w.IsJ()) {
    Say(w, kWarning, line,
        {q + u" が -32768 から 32767 までの範囲にないので、その下位１６ビットが格納される。（仕様2・3（４））  "},
        "F93C6677", q, HeadOf(constNr), constNr);
  } else {
    Say(w, kWarning, line,
        {u"The decimal number constant is out of range. ", u"It should be between -32768 and 32767. ",
         u"So its lower 16-bits are saved in a memory. ", u"(Spec. 2.3 (4)) "},
        "F93C6677", q, HeadOf(constNr), constNr);
  }
  return static_cast<int32_t>(static_cast<uint64_t>(v) & 0xFFFFu);
}

int CkHexConstG(TDiagBase& w, int line, int constNr, wview text) {
  if (text.empty() || text[0] != u'#') {
    con::out << u"Prg. Error: 先頭文字が('#')でこの関数に引き渡されることになっている。" << con::endl;
    return -1;
  }
  wview digits = text.substr(1);
  wstr q = QuoteW(text);
  Head h = HeadOf(constNr);
  for (char16_t ch : digits) {
    if (!IsHexDigit(ch)) {
      if (w.IsJ()) {
        Say(w, kError, line,
            {u" 16進数は 0-9 の数字と A-F の英大文字で記述する。"
             u"16進数の中に 0-9 の数字と A-F の英大文字以外の文字がある。"},
            "D077D2D8", q, h, constNr);
      } else {
        Say(w, kError, line,
            {u"A hexadecimal number is written in 0-9 and A-F. "
             u"A hexadecimal number is written in capital letter. "
             u"There is an unsuitable charcter in the hexadecimal number."},
            "D077D2D8", q, h, constNr);
      }
      return -1;
    }
  }
  size_t n = digits.size();
  if (n == 0) {
    if (w.IsJ()) {
      Say(w, kError, line, {u"# の右に記述がない。"}, "1B1B33FA", q, h, constNr);
    } else {
      Say(w, kError, line, {u"There is no description at the right side of #. "}, "1B1B33FA", q, h, constNr);
    }
    return -1;
  }
  if (n > 4) {
    if (w.IsJ()) {
      Say(w, kError, line, {u" 16進数は4文字で記述する。" + WNum(n) + u" 文字ある。"}, "4D0842B5", q, h, constNr);
    } else {
      Say(w, kError, line,
          {u"A hexadecimal number should be written in four letters. There are " + WNum(n) + u" letters in it. "},
          "4D0842B5", q, h, constNr);
    }
    return -1;
  }
  if (n < 4) {
    if (w.IsJ()) {
      Say(w, kError, line, {u" : 16進数は4文字で記述する。" + WNum(n) + u" 文字しかない。"}, "D077D2D8", q, h, constNr);
    } else {
      wstr second = n == 1 ? wstr(u"There is only one letter in it. ")
                           : u"There are only " + WNum(n) + u" letters in it. ";
      Say(w, kError, line, {u"A hexadecimal number is written in four letters. ", second}, "D077D2D8", q, h,
          constNr);
    }
    return -1;
  }
  return 0;
}

int32_t HexStrToIntG(wview text) {
  wview digits = text.empty() ? text : text.substr(1);
  // The conversion reads "0x" and the digits; it must use them all.
  bool bad = digits.empty();
  uint32_t v = 0;
  for (char16_t ch : digits) {
    int d = HexDigitValue(ch);
    if (d < 0) {
      bad = true;
      break;
    }
    v = (v << 4 | static_cast<uint32_t>(d)) & 0xFFFFFu;
  }
  if (bad) {
    con::out << "* Prg. Error: Fail to wcstol(); *endptr is non LY0." << con::endl;
    con::out << "There is an unsuitable character to convert into a numerical value in it." << con::endl;
    return -1;
  }
  return static_cast<int32_t>(v & 0xFFFFu);
}

int IsStrConstClosedGL10CS(TDiagBase& w, int line, wview text, int pos, int constNr) {
  if (pos < 0 || static_cast<size_t>(pos) >= text.size()) {
    con::out << "Prg. Error: NULL==wchH, []" << con::endl;
    return -1;
  }
  size_t k = static_cast<size_t>(pos) + 1;
  while (k < text.size() && IsBlank(text[k])) ++k;
  if (k >= text.size() || text[k] == u',' || text[k] == u';') return 0;
  wstr q = QuoteW(text);
  if (w.IsJ()) {
    Say(w, kError, line,
        {q + u": 文字定数が正しく閉じていない。 ", u"文字定数は文字列の両側をアポストロフィで囲む。",
         u"例１． :　'ABC'  （正）", u"例２． :  'ABC '' 123'  （正）",
         u"文字定数の中のアポストロフィ（'）は、二個続けて書く。", u"CASL2の仕様：２．３　（４）"},
        "889ADA7E", q, HeadOf(constNr), constNr);
  } else {
    Say(w, kError, line,
        {u"A character constant is not correctly closed. ",
         u"The both ends of the constant must be enclosed by a pair of apostrophes. ", u"Good Example 1.:  'ABC' ",
         u"Good Example 2.:  'ABC '' 123'",
         u"Note: An apostrophye (') must be written twice consecutively in a character constant. ",
         u"Spec. of CASL2: 2.3 (4)"},
        "889ADA7E", q, HeadOf(constNr), constNr);
  }
  return -1;
}

void SayAdrConstCharG(TDiagBase& w, int line, int constNr, wview text, bool lower, const char* code) {
  wstr q = QuoteW(text);
  Head h = HeadOf(constNr);
  if (lower) {
    if (w.IsJ()) {
      Say(w, kError, line, {u"アドレス定数の中に小文字がある。 ", u"CASL2 では小文字は使えない。"}, code, q, h, constNr);
    } else {
      Say(w, kError, line, {u"There is a small letter in the address constant. ", u"A small letter is not allowed in casl2. "},
          code, q, h, constNr);
    }
  } else if (w.IsJ()) {
    Say(w, kError, line, {u"アドレス定数の中に英大文字と数字以外の文字がある。"}, code, q, h, constNr);
  } else {
    Say(w, kError, line,
        {u"An address constant should be written in capital alphanumeric letters. "
         u"There is a non-alphanumeric character in the constant. "},
        code, q, h, constNr);
  }
}

int CkAdrConstNameG(TDiagBase& w, int line, int constNr, wview text, const char* const (&codes)[3]) {
  bool lower = false, other = false;
  for (char16_t ch : text) {
    if (IsLower(ch)) lower = true;
    else if (!IsUpper(ch) && !IsDigit(ch)) other = true;
  }
  if (other || lower) {
    SayAdrConstCharG(w, line, constNr, text, !other, other ? codes[0] : codes[1]);
    return -1;
  }
  if (text.size() > 8) {
    wstr q = QuoteW(text);
    Head h = HeadOf(constNr);
    if (w.IsJ()) {
      Say(w, kError, line, {u"アドレス定数は８文字以内の制限がある。 " + WNum(text.size()) + u" 文字ある。 "}, codes[2], q,
          h, constNr);
    } else {
      Say(w, kError, line,
          {u"An address constant must be 1 to 8 characters in length. There are " + WNum(text.size()) +
           u" characters in it. "},
          codes[2], q, h, constNr);
    }
    return -1;
  }
  return 0;
}

int CountWordKazuAtCharConst_NAWCS(wview text) {
  if (text.empty() || text[0] != u'\'') {
    con::out << u"Prg. Error: 文字列定数の先頭文字がアポストロフィ（’）で受け取ることになっている。　"
                u"別文字で受け渡されている。　その文字は（"
             << (text.empty() ? wstr() : wstr(1, text[0])) << u"）であった。" << con::endl;
    return -1;
  }
  int count = 0;
  for (size_t k = 1; k < text.size(); ++k) {
    if (text[k] == u'\'') {
      if (k + 1 < text.size() && text[k + 1] == u'\'') {
        ++count;
        ++k;
        continue;
      }
      break;
    }
    ++count;
  }
  return count;
}

wstr OrdinalW(int n) {
  if (n == 1) return u"1st";
  if (n == 2) return u"2nd";
  if (n == 3) return u"3rd";
  return WNum(n) + u"th";
}
