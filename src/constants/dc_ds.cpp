// DC and DS lines: the operand text of a DC line is walked and split by its
// own rules (strings may hold commas and blanks), each operand gets its kind,
// and the line its word count; a DS line gets its count of reserved words.
#include <cstdint>
#include <vector>

#include "constants/constants.h"
#include "constants/opd_line.h"
#include "constants/opd_text.h"
#include "records/console.h"
#include "records/diag.h"
#include "records/mode.h"
#include "records/singletons.h"

using namespace opd;

namespace {

// The index behind the string constant that opens at `k` (an apostrophe),
// doubled apostrophes inside; `closed` tells whether its end was found.
size_t SkipString(wview s, size_t k, bool& closed, size_t& chars) {
  closed = false;
  chars = 0;
  for (size_t i = k + 1; i < s.size(); ++i) {
    if (s[i] == u'\'') {
      if (i + 1 < s.size() && s[i + 1] == u'\'') {
        ++chars;
        ++i;
        continue;
      }
      closed = true;
      return i + 1;
    }
    ++chars;
  }
  return s.size();
}

}  // namespace

// ---------------------------------------------------------------------------
int OprndAtDCtoChH_NWCS(TCorrectScode& c, int line, int doCheck) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  const wstr& s = ln.oprndComChH;
  size_t k = 0;
  size_t cut = s.size();
  while (k < s.size()) {
    char16_t ch = s[k];
    if (ch == u'\'') {
      bool closed = false;
      size_t chars = 0;
      size_t e = SkipString(s, k, closed, chars);
      if (!closed) {
        if (doCheck) {
          if (c.IsJ()) {
            Say(c, kError, line,
                {u"文字定数が正しく閉じていない。アポストロフィに着目。 アポストロフィ(')は２個続けて('')書く。 "},
                "DC10036E", QuoteW(s));
          } else {
            Say(c, kError, line,
                {u"The character constant is not correctly closed. "
                 u"Note! Apostrophe.  If you want an apostrophe to appear "
                 u"within a character constant, you must type two apostrophes "
                 u"such as ('') in a row. (Spec. 2.3 (4) Character Constant) "},
                "DC10036E", QuoteW(s));
          }
          return -1;
        }
        break;
      }
      if (chars == 0 && doCheck) {
        if (c.IsJ()) {
          Say(c, kError, line, {u"文字定数の文字数は１個以上必要。０個は不可。 "}, "DC11036E", QuoteW(s));
        } else {
          Say(c, kError, line,
              {u"The length of a literal character constant must be more than zero. "
               u"It is not allowed to be zero. (Spec. of CASL2 2.3 (4) Character Constant) "},
              "DC11036E", QuoteW(s));
        }
        return -1;
      }
      k = e;
      continue;
    }
    if (ch == u';') {  // the first comment
      cut = k;
      break;
    }
    ++k;
  }
  if (cut < s.size()) {
    wstr rest = s.substr(cut);
    if (ln.commentStr.empty()) ln.commentStr = rest;
  }
  // Blanks outside a string that lead to the end are dropped.
  size_t e = cut;
  while (e > 0 && IsBlank(s[e - 1])) --e;
  ln.oprndComChH.resize(e);
  return 0;
}

// ---------------------------------------------------------------------------
int OprndAtDC_NWCS(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  if (ln.opStr != u"DC") {
    con::out << "Prg. Error: A line at DC should have been called. " << con::endl;
    return -1;
  }
  if (TrimW(ln.oprndComChH).empty()) {
    if (c.IsJ()) {
      Say(c, kError, line, {u"DC 命令 の 右に オペランド(定数) の記述がない。"}, "DC20036E");
    } else {
      Say(c, kError, line,
          {u"An constant operand is empty. An constant operand is expected at the right side of DC instruction. "},
          "DC20036E");
    }
    return -1;
  }
  return dc45NWCS(c, line);
}

// ---------------------------------------------------------------------------
int dc45NWCS(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  const wstr& s = ln.oprndComChH;
  // The quoted text, made only for a message.
  auto q = [&s] { return QuoteW(s); };
  // The last character that is not a blank, to tell a comma at the very end.
  size_t last = s.size();
  while (last > 0 && IsBlank(s[last - 1])) --last;
  char16_t prevNonBlank = 0;  // the last character before k outside blanks
  size_t k = 0;
  while (k < s.size()) {
    char16_t ch = s[k];
    if (ch == u'\'') {
      bool closed = false;
      size_t chars = 0;
      k = SkipString(s, k, closed, chars);
      prevNonBlank = u'\'';
      continue;
    }
    if (ch == u',') {
      size_t j = k + 1;
      while (j < s.size() && IsBlank(s[j])) ++j;
      if (j < s.size() && s[j] == u',') {
        if (c.IsJ()) {
          Say(c, kError, line, {u"コンマの連続 "}, "DC30036E", q());
        } else {
          Say(c, kError, line, {u"Duplication of comma. "}, "DC30036E", q());
        }
        return -1;
      }
      if (k + 1 == last) {
        if (c.IsJ()) {
          Say(c, kNote, line, {q() + u" コンマの右に 定数 がないのだからコンマは不要です。 "}, "DC31036N", q());
        } else {
          Say(c, kNote, line,
              {q() + u" The comma is of no use at the end of the constant. "
                   u"Because there is not any more constant description at the right side of the comma. "},
              "DC31036N", q());
        }
      }
      prevNonBlank = u',';
      ++k;
      continue;
    }
    if (ch == u'#' && IsBlank(At(s, k + 1))) {
      if (c.IsJ()) {
        Say(c, kError, line,
            {u"１６進数を表す記号 # の直後に空白がある。# と１６進数数字の間にある空白を取り除くこと。"}, "DC32036E", q());
      } else {
        Say(c, kError, line,
            {u"Hex constants must have at least one hex digit. "
             u"There is a space just after #. The # is a prefix of hexadecimal number. "
             u"Remove off the space at the right side of the #. "},
            "DC32036E", q());
      }
      return -1;
    }
    if ((ch == u'+' || ch == u'-') && IsBlank(At(s, k + 1))) {
      if (c.IsJ()) {
        Say(c, kError, line, {u"正負符号の直後に空白がある。空白を取り除くこと。"}, "DC33036E", q());
      } else {
        Say(c, kError, line, {u"There is a space after a sign mark(+, -). Remove off the space123. "}, "DC33036E",
            q());
      }
      return -1;
    }
    if (IsBlank(ch)) {
      size_t j = k;
      while (j < s.size() && IsBlank(s[j])) ++j;
      if (j < s.size() && s[j] != u',' && prevNonBlank != 0 && prevNonBlank != u',') {
        // A word behind a blank, with no comma in front of it.
        size_t e = j;
        if (s[j] == u'\'') {
          bool closed = false;
          size_t chars = 0;
          e = SkipString(s, j, closed, chars);
        } else {
          while (e < s.size() && !IsBlank(s[e]) && s[e] != u',') ++e;
        }
        wstr word = u"\"" + s.substr(j, e - j) + u"\"";
        if (c.IsJ()) {
          Say(c, kError, line,
              {word + u" が定数ならば、定数の前にコンマが必要です。 定数でないならばセミコロン；を記述して"
                      u"明示的に注釈にすること。（推奨） 定数 DC 命令の複数のオペランドはコンマで区切る。"
                      u"　例： LABEL DC 22, 55, 'abc', 88 ; コメント"},
              "DC34036E", q());
        } else {
          Say(c, kError, line,
              {word + u" : Is this a constant or a comment?  You should clarify your intention. ",
               u"If " + word +
                   u" is a constant, a comma is needed at the left side of the constant.  "
                   u"If this is a comment, a semicolon is needed there. "
                   u"Multiple operands of DC insturction are separated by a comma.  "
                   u"Example:  LABEL DC 22, 55, 'abc', 88 ; Comments "},
              "DC34036E", q());
        }
        return -1;
      }
      k = j;
      continue;
    }
    prevNonBlank = ch;
    ++k;
  }
  return TakeOutOprndsAtDC(c, line);
}

// ---------------------------------------------------------------------------
int TakeOutOprndsAtDC(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  ln.vecOprndAtDC.clear();
  const wstr& s = ln.oprndComChH;
  size_t a = 0;
  size_t k = 0;
  auto push = [&](size_t e) {
    OprndAtDCT<wstr> op;
    op.oprndText = TrimW(wview(s).substr(a, e - a));
    op.DataTypeStrFlag = !op.oprndText.empty() && op.oprndText[0] == u'\'' ? "CharConst" : "Const";
    ln.vecOprndAtDC.push_back(std::move(op));
  };
  while (k < s.size()) {
    if (s[k] == u'\'') {
      bool closed = false;
      size_t chars = 0;
      k = SkipString(s, k, closed, chars);
      continue;
    }
    if (s[k] == u',') {
      push(k);
      a = k + 1;
    }
    ++k;
  }
  // A comma at the very end leaves no operand behind it.
  if (a < s.size() && !TrimW(wview(s).substr(a)).empty()) {
    push(s.size());
  } else if (ln.vecOprndAtDC.empty()) {
    push(s.size());
  }
  return CkDC33NW(c, line);
}

// ---------------------------------------------------------------------------
int CkDC33NW(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  int rc = 0;
  for (size_t i = 0; i < ln.vecOprndAtDC.size(); ++i) {
    OprndAtDCT<wstr>& op = ln.vecOprndAtDC[i];
    wstr t = TrimW(op.oprndText);
    int nr = static_cast<int>(i) + 1;
    if (t.empty()) continue;  // reported with the word count
    char16_t f = t[0];
    if (f == u'#') {
      op.DataTypeStrFlag = "Hex";
      if (CkHexConstG(c, line, nr, t) < 0) rc = -1;
    } else if (IsDigit(f) || f == u'+' || f == u'-') {
      op.DataTypeStrFlag = "Dec";
      if (CkDecConstG(c, line, nr, t, "0A4D7788") < 0) rc = -1;
    } else if (IsUpper(f)) {
      op.DataTypeStrFlag = "AdrConst";
      static const char* const kCodes[3] = {"DC40036E", "DC41036E", "DC42036E"};
      if (CkAdrConstNameG(c, line, nr, t, kCodes) < 0) return -1;
    } else if (f == u'\'') {
      op.DataTypeStrFlag = "CharConst";
      bool closed = false;
      size_t chars = 0;
      size_t e = SkipString(t, 0, closed, chars);
      if (!closed || IsStrConstClosedGL10CS(c, line, t, static_cast<int>(e) - 1, nr) < 0) return -1;
    } else {
      wstr q = QuoteW(t);
      std::vector<wstr> lines;
      if (c.IsJ()) {
        lines.push_back(u"CASL2 で使用できない文字が " + q + u" の中にある。 ");
        if (f == u'"') {
          auto more = Lines(u"文字列定数（またはリテラル）は ' で始まりで ' で閉じる。\n");
          lines.insert(lines.end(), more.begin(), more.end());
        }
      } else {
        lines.push_back(u"There is a non-alphanumeric character  in " + q + u". It is not allowed in CASL2.  ");
        if (f == u'"')
          lines.push_back(
              u"A string constant, also called a literal string constant, is a sequence of characters surrounded by "
              u"single quotes, as in 'ABC'. The literal string constant is not correctly closed. ");
      }
      Say(c, kError, line, lines, "DC43036E", q, Head::ConstNr, nr);
      rc = -1;
    }
  }
  return rc;
}

// ---------------------------------------------------------------------------
int SetWordKazuAtDC_NWCS(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  int sum = 0;
  for (size_t i = 0; i < ln.vecOprndAtDC.size(); ++i) {
    const OprndAtDCT<wstr>& op = ln.vecOprndAtDC[i];
    wstr t = TrimW(op.oprndText);
    if (t.empty()) {
      wstr q = QuoteW(ln.oprndComChH);
      Say(c, kError, line,
          {q + u": The " + OrdinalW(static_cast<int>(i) + 1) + u" operand at DC is empty in description."},
          "DC50036E", q);
      ln.word_kazu = sum;
      return -1;
    }
    char16_t f = t[0];
    if (f == u'#' || IsDigit(f) || f == u'+' || f == u'-' || IsUpper(f)) {
      sum += 1;
    } else if (f == u'\'') {
      int n = CountWordKazuAtCharConst_NAWCS(t);
      if (n > 0) sum += n;
    } else {
      con::out << "Unknown error of else. " << con::endl;
    }
  }
  ln.word_kazu = sum;
  return 0;
}

// ---------------------------------------------------------------------------
int OprndAtDS_NWCS(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  if (ln.opStr != u"DS") {
    con::out << u"Prg. Error: " << ln.opStr << u" should have been DS." << con::endl;
    return -1;
  }
  wstr t = TrimW(ln.oprndComChH);
  if (t.empty()) {
    if (c.IsJ()) {
      Say(c, kError, line, {u"DS 命令 の 右に オペランド（10 進定数）の記述がない。 "}, "DS10036E");
    } else {
      Say(c, kError, line,
          {u"The operand is empty. A constant in decimal number is expected at the right side of DS assembler "
           u"instruction. "},
          "DS10036E");
    }
    return -1;
  }
  wstr rest;
  size_t blank = 0;
  while (blank < t.size() && !IsBlank(t[blank])) ++blank;
  if (blank < t.size()) {
    rest = TrimW(wview(t).substr(blank));
    t.resize(blank);
  }
  static const wview kOk = u"+0123456789";
  for (size_t k = 0; k < t.size(); ++k) {
    char16_t ch = t[k];
    if (kOk.find(ch) != wview::npos) continue;
    if (ch == u',' && k + 1 == t.size()) continue;
    wstr q = QuoteW(t);
    wstr head = wstr(1, ch) + u": " + q + u": ";
    if (c.IsJ()) {
      Say(c, kError, line,
          {head + u"DS 命令のオペランドに正の十進数以外の文字がある。 DS アセンブラ命令のオペランドは、ゼロまたは"
                  u"ゼロ以上の正の十進数で指定する。 CASL2の仕様：２．３　アセンブラ命令（３）"},
          "DS11036E", q);
    } else {
      Say(c, kError, line,
          {head + u"Non numerical character is detected. An operand of DS must be specified in decimal number. "
                  u"And it must be positive or zero. It cannot be specified in hexadecimal. Spec. of casl2  2.3 (3) "},
          "DS11036E", q);
    }
    return -1;
  }
  if (!t.empty() && t.back() == u',') {
    t.pop_back();
    if (c.IsJ()) {
      Say(c, kWarning, line, {u"DS 命令のオペランドの場合、数字の右に( ,) は不要。 空白でよい。"}, "DS12036W");
    } else {
      Say(c, kWarning, line,
          {u"A comma is of no use at the end of the operand of DS assembler instruction. It could be deleted. "},
          "DS12036W");
    }
  }
  ln.oprnd1ChH = t;
  ln.oprnd2ChH = rest;
  if (!rest.empty()) ln.commentStr = rest;
  return 0;
}

// ---------------------------------------------------------------------------
int SetWordKazuAtDS_NWCS(TCorrectScode& c, int line) {
  SrcLineW* lp = CheckedLine(line);
  if (!lp) return -1;
  SrcLineW& ln = *lp;
  const wstr& t = ln.oprnd1ChH;
  size_t used = 0;
  long long n = DecValue(t, &used);
  if (used != t.size()) {
    con::out << u"Prg. Error: Fail to wcstol(); buf=" << t << con::endl;
    ++c.ErrorKazu;
    return -1;
  }
  if (n < 0) n = 0;  // the character check lets no "-" through
  ln.word_kazu = n > INT32_MAX ? INT32_MAX : static_cast<int32_t>(n);
  ln.oprndCount = 1;
  ln.first_word = 0;
  ln.vecWord.clear();
  if (n >= 65536) {
    Say(c, kError, line,
        {u"More than " + WNum(65535) + u" words cannot be reserved, because the come2 is a 16-bit machine. "},
        "DS20036E");
    return -1;
  }
  WordRecT<wstr> w;
  w.line = line;
  w.wordNote = u"DS";
  ln.vecWord.assign(static_cast<size_t>(n), w);
  if (n >= 65036) {
    Say(c, kError, line,
        {u"More than " + WNum(65035) +
         u" words cannot be reserved, because 500 words has been prereserved for Stack Area in comet2. "},
        "DS21036E");
    return -1;
  }
  return 0;
}

int CkDcDsLineKazu(TCorrectScode& c, int prg) {
  const int limit = CurrentMode().maxDcDsLines;
  if (limit <= 0 || prg < 0 || prg >= static_cast<int>(b->vecPrgW.size())) return 0;
  int dc = 0, ds = 0, beyond = -1;
  for (int p = 0; p <= prg; ++p) {
    const PrgDataW& P = b->vecPrgW[static_cast<size_t>(p)];
    for (int i = P.prgFirstLine; i < P.prgEndLine && i < static_cast<int>(b->vecSrcW.size()); ++i) {
      if (i < 0) continue;
      const wstr& op = b->vecSrcW[static_cast<size_t>(i)].opStr;
      if (op == u"DC") ++dc;
      else if (op == u"DS") ++ds;
      else continue;
      if (beyond < 0 && dc + ds > limit) beyond = i;
    }
  }
  // Told once: the programs before this one were within the limit.
  if (beyond < 0 || b->vecPrgW[static_cast<size_t>(prg)].prgFirstLine > beyond) return 0;
  // The table's own words, in every language.
  Say(c, kError, beyond,
      {u"仕様：DCとDSの行の数の合計は「最大行数の６分の１」=" + WNum(limit) + u" 行に制限されています。",
       u"DC行が " + WNum(dc) + u" 行あります。", u"DS行が " + WNum(ds) + u" 行あります。",
       u"DCとDSの行の数の合計が " + WNum(dc + ds) + u" 行あります。"},
      "7D3C5501");
  return -1;
}
