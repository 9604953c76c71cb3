// The label field: extraction into labelStr and the five rules of labels,
// one pass over the lines for each rule, so that the messages come in the
// order of the rules.
#include <array>

#include "lines/fields.h"
#include "lines/mozi.h"
#include "operands/rules_util.h"
#include "structure/labels.h"

using rules::L;

namespace {

// The reserved words, closed by an empty entry (room for 15).
const std::array<wstr, 15> kReservedWords{u"GR0", u"GR1", u"GR2", u"GR3", u"GR4", u"GR5", u"GR6", u"GR7", u""};

// Pass 1: the label of every line; a label alone on its line is an Error.
void ExtractLabels(int first, int last) {
  for (int i = first; i <= last; ++i) {
    SrcLineW& s = L(i);
    const wstr& w = s.editStr;
    if (w.empty() || IsBlankW(w[0])) {
      s.labelStr.clear();
      continue;
    }
    size_t p = 0;
    while (p < w.size() && !IsBlankW(w[p])) ++p;
    if (p < w.size()) {
      s.labelStr.assign(w, 0, p);
      continue;
    }
    s.labelStr = TrimW(w);
    wstr q = QuoteW(s.labelStr);
    rules::SayJE(*cs, kError, i, {q + u": ラベルはあるが、命令語の記述がない。"}, {q + u": "}, "1122036E", q);
  }
}

// Pass 2: the first character must be a capital letter.
void CkFirstChar(int first, int last) {
  for (int i = first; i <= last; ++i) {
    const wstr& lab = L(i).labelStr;
    if (lab.empty() || rules::IsUpperW(lab[0])) continue;
    wstr q = QuoteW(lab);
    Say(*cs, kError, i, {q + u": "}, "1133036E", q);
  }
}

// Pass 3: capitals and digits only; the first finding ends the pass.
void CkCharSet(int first, int last) {
  for (int i = first; i <= last; ++i) {
    const wstr& lab = L(i).labelStr;
    if (lab.empty()) continue;
    if (CkMozi10NW(lab) < 1) continue;
    rules::SayJE(*cs, kError, i, {u"ラベル " + lab + u" に英大文字、 数字 以外の文字が使われている。 "},
                 {u"There is an unsuitable character in the label " + (u"of '" + lab + u"'. ")}, "1133036E",
                 QuoteW(lab));
    AnalystZenKSpace20NW(lab, i);
    return;
  }
}

// Pass 4: the length.
void CkLength(int first, int last) {
  for (int i = first; i <= last; ++i) {
    const wstr& lab = L(i).labelStr;
    if (static_cast<long long>(lab.size()) <= cs->tMaxLabelLen) continue;
    wstr q = QuoteW(lab);
    wstr n = WNum(static_cast<long long>(lab.size()));
    rules::SayJE(*cs, kError, i,
                 {q + u" ラベルの長さは " + WNum(cs->tMaxLabelLen) + u" 文字までに制限されている。 " + n + u" 文字ある。"},
                 {q + u"  A label must be 1 to 8 characters in length. It includes " + n + u" characters in it. "},
                 "1155036E", q);
  }
}

// Pass 5: the reserved words GR0-GR7.
void CkReserved(int first, int last) {
  for (int i = first; i <= last; ++i) {
    const wstr& lab = L(i).labelStr;
    // Only a name of three characters from "GR" on can be one of them.
    if (lab.size() != 3 || lab[0] != u'G' || lab[1] != u'R') continue;
    for (const wstr& r : kReservedWords) {
      if (r.empty()) break;
      if (lab != r) continue;
      rules::SayJE(*cs, kError, i, {u"ラベルに予約語(GR0 - GR7) は使えない。CASL2の仕様　2.1（注）"},
                   {lab + u" is one of the reserved words(GR0-GR7). " + u"Reserved words, GR0 through GR7, " +
                    u"are not available for labels. Spec. of CASL2   2.1 (Note) "},
                   "1144036E", QuoteW(lab));
      break;
    }
  }
}

}  // namespace

void Label30GNW(int first, int last) {
  if (first < 0) first = 0;
  if (last >= static_cast<int>(b->vecSrcW.size())) last = static_cast<int>(b->vecSrcW.size()) - 1;
  if (first > last) return;
  ExtractLabels(first, last);
  CkFirstChar(first, last);
  CkCharSet(first, last);
  CkLength(first, last);
  CkReserved(first, last);
  CkLabelDoubleNW(first, last);
}
