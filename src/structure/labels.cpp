// The labels of a program: the duplicate check and the note on labels that
// no operand names.
#include "structure/labels.h"

#include <vector>

#include "operands/rules_util.h"
#include "records/name_index.h"

using rules::L;

int CkLabelDoubleNW(int first, int last) {
  if (first < 0) first = 0;
  if (last >= static_cast<int>(b->vecSrcW.size())) last = static_cast<int>(b->vecSrcW.size()) - 1;
  if (first > last) return 0;
  // For each label its first line and the first line behind it that repeats
  // it: the pair the search over i, then j, would meet first is the one with
  // the smallest first line.
  static NameIndex seen;
  static std::vector<int> repeatOf;  // by first line: the first repeat, or -1
  seen.Reset(static_cast<size_t>(last - first + 1) / 2);
  repeatOf.assign(static_cast<size_t>(last - first + 1), -1);
  for (int i = first; i <= last; ++i) {
    const wstr& lab = L(i).labelStr;
    if (lab.empty()) continue;
    int f = seen.Insert(lab, i);
    if (f != i && repeatOf[static_cast<size_t>(f - first)] < 0) repeatOf[static_cast<size_t>(f - first)] = i;
  }
  for (int i = first; i <= last; ++i) {
    const int j = repeatOf[static_cast<size_t>(i - first)];
    if (j < 0) continue;
    const wstr& lab = L(i).labelStr;
    if (cs->IsJ()) {
      Say(*cs, kError, i,
          {WNum(i + 1) + u" 行目 と " + WNum(j + 1) + u" 行目： " + u"同じラベル " + lab + u" が二つある。"},
          "1144036E", QuoteW(lab), Head::ClassOnly);
    } else {
      Say(*cs, kError, i,
          {u"The label " + lab + u" is already defined. ", u"Duplication of the same label of " + lab + u". ",
           u"line=" + WNum(i + 1) + u" and line=" + WNum(j + 1) + u" ",
           u"All of the labels must be unique in a program. "},
          "1144036E", QuoteW(lab), Head::ClassOnly);
    }
    return 1;
  }
  return 0;
}

int CkLabelInUseNW() {
  for (const PrgDataW& p : b->vecPrgW) {
    for (int i = p.prgFirstLine < 0 ? 0 : p.prgFirstLine + 1; i < p.prgEndLine && i < static_cast<int>(b->vecSrcW.size()); ++i) {
      const SrcLineW& s = L(i);
      if (s.labelStr.empty() || s.labelUsed) continue;
      wstr q = QuoteW(s.labelStr);
      rules::SayJE(*cs, kNote, i, {u"ラベル " + q + u" は一度も参照されない。 "}, {q + u" Unreferenced label  "},
                   "B2DBA819", q);
    }
  }
  return 0;
}
