// The memory image: the word lists of DS and DC lines, the records of
// character literals, the loader that writes a program into Memory, and the
// table from addresses to source lines.
#include <cstdint>
#include <string>
#include <vector>

#include "codegen/codegen.h"
#include "comet2/comet2.h"
#include "constants/constants.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/name_index.h"
#include "records/singletons.h"

namespace {

// Lowest address that has no lineOfAdr entry.
constexpr int kNoLineFrom = 65036;

// The line range [first, end) of program `prg`, clamped to the lines that
// exist. False for an index that names no program.
bool PrgRange(int prg, int& first, int& end, const char* who) {
  if (prg < 0 || prg >= static_cast<int>(b->vecPrgW.size())) {
    con::out << "Prg Error: (b->vecPrgW.size() <= prg) " << who << " prg=" << prg << con::endl;
    return false;
  }
  const PrgDataW& p = b->vecPrgW[prg];
  int n = static_cast<int>(b->vecSrcW.size());
  first = p.prgFirstLine < 0 ? 0 : p.prgFirstLine;
  end = p.prgEndLine > n ? n : p.prgEndLine;
  return true;
}

// Base-10 reading in the manner of a 32-bit wcstol: leading blanks, a sign,
// the digits up to the first other character; an overflow stays at the end
// of the range.
int32_t ReadDec32(wview s) {
  size_t i = 0;
  while (i < s.size() && IsBlankW(s[i])) ++i;
  bool neg = false;
  if (i < s.size() && (s[i] == u'+' || s[i] == u'-')) {
    neg = s[i] == u'-';
    ++i;
  }
  int64_t v = 0;
  for (; i < s.size() && s[i] >= u'0' && s[i] <= u'9'; ++i) {
    v = v * 10 + (s[i] - u'0');
    if (v > 0x80000000LL) v = 0x80000000LL;
  }
  if (neg) v = -v;
  if (v > INT32_MAX) v = INT32_MAX;
  if (v < INT32_MIN) v = INT32_MIN;
  return static_cast<int32_t>(v);
}

// Base-16 reading of the digits behind "#".
int32_t ReadHex32(wview s) {
  int64_t v = 0;
  for (char16_t c : s) {
    int d;
    if (c >= u'0' && c <= u'9') d = c - u'0';
    else if (c >= u'A' && c <= u'F') d = c - u'A' + 10;
    else if (c >= u'a' && c <= u'f') d = c - u'a' + 10;
    else break;
    v = v * 16 + d;
    if (v > INT32_MAX) v = INT32_MAX;
  }
  return static_cast<int32_t>(v);
}

// The characters of a string constant that starts with an apostrophe: a
// doubled apostrophe gives one #27, a lone apostrophe ends the text.
std::vector<int32_t> CharsOfStrConst(wview s) {
  std::vector<int32_t> out;
  for (size_t i = 1; i < s.size(); ++i) {
    if (s[i] == u'\'') {
      if (i + 1 < s.size() && s[i + 1] == u'\'') {
        out.push_back(0x27);
        ++i;
        continue;
      }
      break;
    }
    out.push_back(static_cast<int32_t>(s[i]));
  }
  return out;
}

bool IsUpperW(char16_t c) { return c >= u'A' && c <= u'Z'; }
bool IsDigitW(char16_t c) { return c >= u'0' && c <= u'9'; }

// The empty string constant, at DC and at loading.
void SayEmptyCharConst(int line, int constNr, wview text, const char* code) {
  if (cs->IsJ()) {
    Say(*cs, kError, line,
        {QuoteW(text) + u"の文字列定数: サイズがゼロである。" u"文字列定数は文字数は1以上でなければならない。"
                        u"文字列の文字数（＞０）分の連続した領域を確保する。（CASL2の仕様２．３（４）文字定数） "},
        code, QuoteW(text), Head::ConstNr, constNr);
  } else {
    Say(*cs, kError, line,
        {QuoteW(text) + u": The size of the constant is zero, that is, the character constant is empty. "
                        u"One or more characters must be contained in a character constant. "
                        u"This instruction allocates a continuous area for the number of characters(> 0) "
                        u"in the character string.(Spec. of CASL2  2.3 (4) Character Constant）"},
        code, QuoteW(text), Head::ConstNr, constNr);
  }
}

void AddWord(SrcLineW& L, int line, int32_t code, const char16_t* note) {
  WordRecT<wstr> w;
  w.wordCode = code;
  w.rlAdr = L.rlAdr + L.word_kazu;
  w.abAdr = L.abAdr + L.word_kazu;
  w.line = line;
  w.wordNote = note;
  L.vecWord.push_back(std::move(w));
  ++L.word_kazu;
}

}  // namespace

// ---------------------------------------------------------------------------
int SetMryInAtDS_NWCS(int prg) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end, "SetMryInAtDS_NWCS()")) return -1;
  for (int i = first; i < end; ++i) {
    SrcLineW& L = b->vecSrcW[i];
    if (L.opStr != u"DS") continue;
    // The count is the decimal operand as the DS analysis left it.
    wstr t = TrimW(L.oprnd1ChH);
    bool digits = !t.empty();
    for (size_t k = 0; k < t.size(); ++k)
      if (!(IsDigitW(t[k]) || (k == 0 && t[k] == u'+'))) digits = false;
    if (digits && t != u"+") L.word_kazu = ReadDec32(t);
    L.vecWord.clear();
    // The budget refuses anything above 65535 words long before this.
    int n = L.word_kazu < 0 ? 0 : (L.word_kazu > 65536 ? 65536 : L.word_kazu);
    L.vecWord.reserve(n);
    for (int k = 0; k < n; ++k) {
      WordRecT<wstr> w;
      w.wordCode = 0;
      w.rlAdr = L.rlAdr + k;
      w.abAdr = L.abAdr + k;
      w.line = i;
      w.wordNote = u"DS";
      L.vecWord.push_back(std::move(w));
    }
    if (static_cast<int>(L.vecWord.size()) != L.word_kazu) {
      con::out << "Prg Error: b->vecSrcW[line].word_kazu\n"
               << " != b->vecSrcW[line].vecWord.size()" << con::endl;
    }
  }
  return 0;
}

// ---------------------------------------------------------------------------
int SetMryInAtDC_NWCS(int prg) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end, "SetMryInAtDC_NWCS()")) return -1;

  // The labels of this program: the first line of each name.
  static NameIndex labelLine;
  labelLine.Reset(static_cast<size_t>(end > first ? end - first : 0) / 2);
  for (int i = first; i < end; ++i) labelLine.Insert(b->vecSrcW[i].labelStr, i);

  for (int i = first; i < end; ++i) {
    SrcLineW& L = b->vecSrcW[i];
    if (L.opStr != u"DC") continue;
    L.word_kazu = 0;
    L.vecWord.clear();
    int k = 0;
    for (OprndAtDCT<wstr>& op : L.vecOprndAtDC) {
      ++k;
      wstr text = TrimW(op.oprndText);
      op.oprndChars.clear();
      op.oprndAbAdr = L.abAdr + L.word_kazu;
      char16_t c = text.empty() ? u'\0' : text[0];

      if (text.empty() || (text.size() == 1 && (c == u'#' || c == u'+' || c == u'-'))) {
        Say(*cs, kError, i, {u"The " + OrdinalW(k) + u" operand at DC is empty in description."}, "8201DC01E",
            QuoteW(text));
        continue;
      }
      if (c == u'#') {
        op.oprndValue = ReadHex32(wview(text).substr(1));
        op.DataTypeStrFlag = "Hex";
        AddWord(L, i, op.oprndValue, u"AdrConst of Hex");
      } else if (c == u'\'') {
        std::vector<int32_t> chars = CharsOfStrConst(text);
        op.DataTypeStrFlag = "MoziRetuConst";
        if (chars.empty()) {
          SayEmptyCharConst(i, k, text, "8202DC02E");
          continue;
        }
        op.oprndValue = chars[0];
        for (int32_t ch : chars) {
          LiteCharT<wstr> lc;
          lc.charValue = ch;
          lc.charAbAdr = L.abAdr + L.word_kazu;
          op.oprndChars.push_back(lc);
          AddWord(L, i, ch, u"AdrConst of MoziRetu ");
        }
      } else if (IsDigitW(c) || c == u'+' || c == u'-') {
        int32_t v = ReadDec32(text);
        op.oprndValue = v;
        op.DataTypeStrFlag = "Dec";
        if (v < -32768 || v > 32767) {
          if (cs->IsJ()) {
            Say(*cs, kWarning, i,
                {QuoteW(text) + u" が -32768 から 32767 までの範囲にないので、その下位１６ビットが格納される。"
                                u"（仕様2・3（４））  "},
                "8203DC03W", QuoteW(text), Head::ConstNr, k);
          } else {
            Say(*cs, kWarning, i,
                {u"The decimal number constant is out of range. It should be between -32768 and 32767. "
                 u"So its lower 16-bits are saved in a memory. (Spec. 2.3 (4)) "},
                "8203DC03W", QuoteW(text), Head::ConstNr, k);
          }
        }
        // The whole 32-bit value goes into the cell.
        AddWord(L, i, v, u"AdrConst of Dec");
      } else if (IsUpperW(c)) {
        op.DataTypeStrFlag = "Label";
        const int at = labelLine.Find(text);
        if (at < 0) {
          if (cs->IsJ()) {
            Say(*cs, kError, i, {u"アドレス定数 " + text + u" と一致する ラベル が存在しない。"}, "8204DC04E",
                QuoteW(text), Head::ConstNr, k);
          } else {
            Say(*cs, kError, i,
                {u"There does not exist any label which is identical with " + text + u". "}, "8204DC04E",
                QuoteW(text), Head::ConstNr, k);
          }
          continue;
        }
        SrcLineW& target = b->vecSrcW[at];
        target.labelUsed = 1;
        op.oprndValue = target.abAdr;
        AddWord(L, i, op.oprndValue, u"AdrConst of Label");
      } else {
        con::out << "Prg. Error: " << "Unknown else error at DC: " << text << con::endl;
        con::out << PrgLocation(b->FileName, i + 1, "SetMryInAtDC_NWCS()") << con::endl;
      }
    }
  }
  return 0;
}

// ---------------------------------------------------------------------------
int SetLiteCharConstMryInNWBD(int line, wview liteText) {
  if (line < 0 || line >= static_cast<int>(b->vecSrcW.size())) {
    con::out << "Prg. Error: (vecSrcW.size() < line) SetLiteCharConstMryInNWBD()" << con::endl;
    return 0;
  }
  if (liteText.size() < 3) return 0;
  SrcLineW& L = b->vecSrcW[line];
  // The text from its opening apostrophe on.
  wview str = liteText;
  if (!str.empty() && str[0] == u'=') str.remove_prefix(1);
  L.vecLiteConst.clear();
  LiteConstT<wstr> rec;
  rec.liteText = wstr(liteText);
  rec.liteKind = "LiteCharConst";
  int count = (!str.empty() && str[0] == u'\'') ? CountWordKazuAtCharConst_NAWCS(str) : 0;
  for (int32_t ch : CharsOfStrConst(str)) {
    LiteCharT<wstr> lc;
    lc.charValue = ch;
    rec.liteChars.push_back(lc);
  }
  rec.liteWordKazu = count > 0 ? count : static_cast<int32_t>(rec.liteChars.size());
  rec.liteValue = rec.liteChars.empty() ? 0 : rec.liteChars[0].charValue;
  int n = static_cast<int>(rec.liteChars.size());
  L.vecLiteConst.push_back(std::move(rec));
  L.hasLiteral = 1;
  return n;
}

// ---------------------------------------------------------------------------
int SetMemoryNW10GM(TDiagBase& /*game*/, int prg) {
  int first = 0, end = 0;
  if (!PrgRange(prg, first, end, "SetMemoryNW10GM()")) return -1;
  PrgDataW& P = b->vecPrgW[prg];
  int adr = P.AbAdrAtStart;
  auto put = [&](int32_t v) {
    if (adr >= 0 && adr < kMemoryCells) m->Memory[adr] = v;
    ++adr;
  };

  for (int i = first; i < end; ++i) {
    SrcLineW& L = b->vecSrcW[i];
    if (L.opStr.empty()) continue;
    const wstr& op = L.opStr;
    if (op == u"DC") {
      int k = 0;
      for (OprndAtDCT<wstr>& o : L.vecOprndAtDC) {
        const std::string& f = o.DataTypeStrFlag;
        if (f == "Dec" || f == "Hex" || f == "Label" || f == "AdrConst") {
          o.oprndAbAdr = adr;
          put(o.oprndValue);
        } else if (f == "MoziRetuConst" || f == "CharConst") {
          if (o.oprndChars.empty()) {
            SayEmptyCharConst(i, k + 1, TrimW(o.oprndText), "8207ME07E");
            return -1;
          }
          o.oprndAbAdr = adr;
          for (LiteCharT<wstr>& ch : o.oprndChars) {
            ch.charAbAdr = adr;
            put(ch.charValue);
          }
        } else {
          wstr text = u"Prg. Error of else: a strange DataTypeStrFlag of vecOprndAtDC[" + WNum(k) +
                      u"] = " + Utf8ToU16(f);
          Say(*cs, kError, i, {text}, "8206ME06E", {}, Head::None);
        }
        ++k;
      }
    } else if (op == u"DS") {
      if (L.vecWord.empty()) {
        L.abAdr = adr;
      } else {
        for (WordRecT<wstr>& w : L.vecWord) {
          w.abAdr = adr;
          put(w.wordCode);
        }
      }
    } else if ((L.word_kazu == 14 && op == u"RPUSH") || (L.word_kazu == 7 && op == u"RPOP") ||
               (L.word_kazu == 12 && (op == u"IN" || op == u"OUT"))) {
      for (const WordRecT<wstr>& w : L.vecWord) put(w.wordCode);
    } else if (L.word_kazu == 1) {
      put(L.first_word);
    } else if (L.word_kazu == 2) {
      put(L.first_word);
      put(L.second_word);
    }
  }

  // The literals, in the order the address pass gave them.
  for (int i = first; i < end; ++i) {
    SrcLineW& L = b->vecSrcW[i];
    if (L.opStr.empty() || L.word_kazu == 0 || L.vecLiteConst.empty()) continue;
    LiteConstT<wstr>& lit = L.vecLiteConst[0];
    if (lit.liteChars.empty()) {
      lit.liteAbAdr = adr;
      L.second_word = adr;
      if (L.vecWord.size() >= 2) L.vecWord[1].wordCode = adr;
      put(lit.liteValue);
    } else {
      lit.liteAbAdr = adr;
      for (LiteCharT<wstr>& ch : lit.liteChars) {
        ch.charAbAdr = adr;
        put(ch.charValue);
      }
    }
  }

  if (prg + 1 < static_cast<int>(b->vecPrgW.size())) b->vecPrgW[prg + 1].AbAdrAtStart = adr;
  return 0;
}

// ---------------------------------------------------------------------------
void addressToLineMap() {
  int idx = 0;
  auto stamp = [&](int line) {
    if (idx >= 0 && idx < kNoLineFrom) m->lineOfAdr[idx] = line;
    ++idx;
  };
  int nLines = static_cast<int>(b->vecSrcW.size());
  for (const PrgDataW& P : b->vecPrgW) {
    int first = P.prgFirstLine < 0 ? 0 : P.prgFirstLine;
    int end = P.prgEndLine > nLines ? nLines : P.prgEndLine;
    for (int i = first; i < end; ++i) {
      const SrcLineW& L = b->vecSrcW[i];
      if (L.opStr.empty() || L.abAdr != idx) continue;
      for (int k = 0; k < L.word_kazu; ++k) stamp(i);
    }
    for (int i = first; i < end; ++i) {
      const SrcLineW& L = b->vecSrcW[i];
      if (L.opStr.empty() || L.word_kazu == 0 || L.vecLiteConst.empty()) continue;
      const LiteConstT<wstr>& lit = L.vecLiteConst[0];
      size_t words = lit.liteChars.empty() ? 1 : lit.liteChars.size();
      for (size_t k = 0; k < words; ++k) stamp(i);
    }
  }
}
