// Program names: the label of START, checked and stored; names used twice;
// programs that nothing calls; and the operand of START, the execution
// start address.
#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include "lines/mozi.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "structure/structure.h"

namespace {

// The head of the messages that show the quoted name between the class
// word and the line number.
wstr NameHead(TDiagBase& w, const wstr& quoted, int line) {
  wstr s = w.Prefix(kError) + quoted;
  if (w.IsJ()) {
    s += WNum(line + 1) + w.LineJW;
  } else {
    s += w.LineEW + WNum(line + 1) + u": ";
  }
  return s;
}

bool IsCapital(char16_t c) { return c >= u'A' && c <= u'Z'; }

// Goes up each time CkPrgNameNW stores a name, so that an index of the
// names built before is known to be stale.
unsigned g_prgNameGeneration = 0;

// The program names of the file, indexed once: the first program of each
// name, as the linear search from the front finds it. It is rebuilt when the
// program records are another set than those it was built from, or a name
// was stored since: the records of the next pass reuse the same storage.
struct PrgNameIndex {
  const PrgDataW* data = nullptr;
  size_t size = 0;
  int lastPrg = -1;
  unsigned generation = 0;
  std::unordered_map<wstr, int> first;

  int Find(int prg, const wstr& name) {
    const std::vector<PrgDataW>& v = b->vecPrgW;
    if (data != v.data() || size != v.size() || prg <= lastPrg || generation != g_prgNameGeneration) {
      data = v.data();
      size = v.size();
      generation = g_prgNameGeneration;
      first.clear();
      for (size_t k = 0; k < v.size(); ++k) first.emplace(v[k].PrgName, static_cast<int>(k));
    }
    lastPrg = prg;
    auto it = first.find(name);
    if (it == first.end()) return -1;
    // Names are fixed before the analysis; a stale entry is searched again.
    if (v[it->second].PrgName != name) {
      lastPrg = -1;
      data = nullptr;
      return Find(prg, name);
    }
    return it->second;
  }
};

PrgNameIndex g_prgNames;

void SetStartWords(SrcLineW& s, int adr) {
  s.first_word = 0x6400;
  s.second_word = adr;
  s.word_kazu = 2;
  s.vecWord.clear();
  WordRecT<wstr> w1;
  w1.wordCode = 0x6400;
  w1.wordNote = u"START";
  WordRecT<wstr> w2;
  w2.wordCode = adr;
  w2.wordNote = u"An operand of START";
  s.vecWord.push_back(w1);
  s.vecWord.push_back(w2);
}

}  // namespace

int CkPrgNameNW(int prg) {
  if (prg < 0 || static_cast<size_t>(prg) >= b->vecPrgW.size()) return 0;
  PrgDataW& p = b->vecPrgW[prg];
  if (p.prgFirstLine < 0 || static_cast<size_t>(p.prgFirstLine) >= b->vecSrcW.size()) return 0;
  int line = p.prgFirstLine;
  SrcLineW& s = b->vecSrcW[line];
  const wstr& e = s.editStr;
  if (e.empty()) return 0;
  bool j = b->IsJ();
  if (IsBlankW(e[0])) {
    if (j) {
      Say(*b, kError, line, {wstr(u"START アセンブラ命令の左に") + u"ラベルが必要です。"}, "EEEE036E");
    } else {
      Say(*b, kError, line, {u"A label is expected at the left side of the START assembler instruction. "}, "EEEE036E");
    }
    return -1;
  }
  size_t blank = 0;
  while (blank < e.size() && !IsBlankW(e[blank])) ++blank;
  wstr name = e.substr(0, blank);
  AnalystZenKSpace20NW(name, line);
  if (name.empty()) return 0;
  wstr q = QuoteW(name);
  if (!IsCapital(name[0])) {
    if (j) {
      Say(*b, kError, line, {u"ラベルの先頭文字は英大文字であること。 先頭文字に数字は使えない。"}, "CCAB036E", q);
    } else {
      Say(*b, kError, line,
          {u"The first letter of a label must be a capital alphabetical letter. ",
           u"A numeral is not allowed to be used as the first letter of a label. "},
          "CCAB036E", q);
    }
    return -1;
  }
  int pos = CkMozi10NW(name);
  if (pos != 0) {
    if (j) {
      Say(*b, kError, line,
          {NameHead(*b, q, line) + u"ラベル " + q + u" の第 " + WNum(pos + 1) +
           u" 文字目に英大文字、 数字 以外の文字が使われている。 "},
          "FFAB036E", q, Head::None);
    } else {
      Say(*b, kError, line,
          {NameHead(*b, q, line) + u"There is non-alpha-numeral character " + u"in the label of " + q + u". "},
          "FFAB036E", q, Head::None);
    }
    int small = CkSmallLetterNW(name);
    if (small != 0) {
      if (j) {
        Say(*b, kError, line,
            {u"ラベル " + q + u" の第 " + WNum(small) + u" 文字目に英小文字が使われている。 英小文字は使えない。 "},
            "EEAB036E", q);
      } else {
        Say(*b, kError, line,
            {u"There is a small letter in the label. ", u"A small letter is not allowed in a lebel of casl2. "},
            "EEAB036E", q);
      }
    }
    return -1;
  }
  if (name.size() > 8) {
    wstr len = WNum(static_cast<long long>(name.size()));
    if (j) {
      Say(*b, kError, line,
          {NameHead(*b, q, line) + u"ラベル の長さは８文字までの制限（仕様）がある。。 ", q + u": " + len + u" 文字ある。"},
          "DDAB036E", q, Head::None);
    } else {
      Say(*b, kError, line,
          {NameHead(*b, q, line) + u"A label must be 1 to 8 characters in length. ",
           u"Label: " + q + u": There are " + len + u" letters in it. "},
          "DDAB036E", q, Head::None);
    }
    return -1;
  }
  for (int k = 0; k < 8; ++k) {
    if (name == u"GR" + WNum(k)) {
      if (j) {
        Say(*b, kError, line, {u"ラベルに予約語(GR0 - GR7) は使えない。"}, "77AB036E", q);
      } else {
        Say(*b, kError, line, {u"The reserved words(GR0-GR7) are not allowed in a label. "}, "77AB036E", q);
      }
      return -1;
    }
  }
  p.PrgName = TrimW(name);
  s.labelStr = p.PrgName;
  ++g_prgNameGeneration;
  return 0;
}

int CkPrgNameDoubleNW() {
  const std::vector<PrgDataW>& v = b->vecPrgW;
  // Programs of each name, in file order: every pair i < j of one name is
  // reported, i first, as a search over all pairs would.
  std::unordered_map<wstr, std::vector<int>> byName;
  for (size_t k = 0; k < v.size(); ++k) byName[v[k].PrgName].push_back(static_cast<int>(k));
  int found = 0;
  for (size_t i = 0; i < v.size(); ++i) {
    const std::vector<int>& same = byName[v[i].PrgName];
    if (same.size() < 2) continue;
    for (int jj : same) {
      if (jj <= static_cast<int>(i)) continue;
      ++found;
      wstr q = QuoteW(v[i].PrgName);
      wstr li = WNum(v[i].prgFirstLine + 1);
      wstr lj = WNum(v[jj].prgFirstLine + 1);
      wstr pi = WNum(static_cast<long long>(i) + 1);
      wstr pj = WNum(jj + 1);
      if (b->IsJ()) {
        Say(*b, kError, v[i].prgFirstLine,
            {u"プログラム名の重複： " + q + u" が二つある。 ", u"プログラム" + pi + u" と プログラム" + pj + u" の名前 ",
             li + u" 行目 と " + lj + u" 行目にある。"},
            "DBDB036E", q, Head::ClassOnly);
      } else {
        Say(*b, kError, v[i].prgFirstLine,
            {q + u" is already defined. " + u"Duplication of the program name. ",
             u"Program " + pi + u", line " + li + u" and Program " + pj + u", line " + lj + u".",
             u"Their names must be unique each other. "},
            "DBDB036E", q, Head::ClassOnly);
      }
    }
  }
  return found > 0 ? -1 : 0;
}

int CkPrgNameInUseNW() {
  const std::vector<PrgDataW>& v = b->vecPrgW;
  for (size_t i = 1; i < v.size(); ++i) {
    if (v[i].prgUsed) continue;
    const wstr& n = v[i].PrgName;
    if (b->IsJ()) {
      Say(*b, kWarning, v[i].prgFirstLine,
          {u"プログラム " + n + u" は他のプログラムから呼び出しがなく一度も実行されない。 "}, "1A76F6FF");
    } else {
      Say(*b, kWarning, v[i].prgFirstLine,
          {u"A program of the \"" + n + u"\" " + u"is never executed, becasue it is not called " +
           u"by any other program. "},
          "1A76F6FF");
    }
  }
  return 0;
}

int CkStartAdrOperandNW(int prg, wview oprnd, int line) {
  std::vector<SrcLineW>& v = b->vecSrcW;
  if (line < 0 || static_cast<size_t>(line) >= v.size()) return 0;
  SrcLineW& s = v[line];
  if (oprnd.empty()) {
    s.word_kazu = 1;
    s.first_word = 0;
    s.second_word = 0;
    s.vecWord.clear();
    WordRecT<wstr> w;
    w.wordCode = 0;
    w.wordNote = u"An Operand of START";
    s.vecWord.push_back(w);
    return 0;
  }
  wstr op(oprnd);
  wstr q = QuoteW(op);
  bool j = cs->IsJ();
  int result = 0;
  if (CkMozi10NW(op) > 0) {
    if (j) {
      Say(*cs, kError, line, {q + u" アドレス定数に英大文字と数字以外の文字がある。"}, "5A7B036E", q);
    } else {
      Say(*cs, kError, line,
          {u"There is a non-alphanumeric letter in the address constant " + (u"of " + q + u". "),
           u"The address constant should be written in capital alphanumeric letters. "},
          "5A7B036E", q);
    }
    result = -1;
  }
  if (op.size() >= 9) {
    AnalystZenKSpace20NW(op, line);
    if (j) {
      Say(*cs, kError, line, {q + u" アドレス定数は８文字以内。" + WNum(static_cast<long long>(op.size())) + u" 文字ある。"},
          "5A7C036E", q);
    } else {
      Say(*cs, kError, line, {u"An address constant must be 1 to 8 characters in length. "}, "5A7C036E", q);
    }
    return -1;
  }
  // The jump takes the absolute address of the line named (the machine
  // knows no other): for a later program's name or a label further down it
  // is 0 in the first address pass and settled in the second, in the link.
  // The labels of this program from its START line on: the first line of
  // each label, as the search from the front finds it.
  if (prg >= 0 && static_cast<size_t>(prg) < b->vecPrgW.size()) {
    const PrgDataW& p = b->vecPrgW[prg];
    int from = std::max(p.prgFirstLine, 0);
    int to = std::min(p.prgEndLine, static_cast<int>(v.size()) - 1);
    std::unordered_map<wstr, int> labels;
    labels.reserve(static_cast<size_t>(std::max(0, to - from + 1)));
    for (int k = from; k <= to; ++k) {
      if (!v[k].labelStr.empty()) labels.emplace(v[k].labelStr, k);
    }
    auto it = labels.find(op);
    if (it != labels.end()) {
      SrcLineW& target = v[it->second];
      target.labelUsed = 1;
      SetStartWords(s, target.abAdr);
      return result;
    }
  }
  int k = g_prgNames.Find(prg, op);
  if (k >= 0) {
    PrgDataW& other = b->vecPrgW[k];
    int adr = 0;
    if (other.prgFirstLine >= 0 && static_cast<size_t>(other.prgFirstLine) < v.size()) {
      SrcLineW& target = v[other.prgFirstLine];
      target.labelUsed = 1;
      adr = target.abAdr;
    }
    other.prgUsed = 1;
    SetStartWords(s, adr);
    return result;
  }
  if (j) {
    Say(*cs, kError, line, {u"アドレス定数 " + q + u" と一致するラベルが存在しない。"}, "5A7D036E", q);
  } else {
    Say(*cs, kError, line,
        {u"There does not exist any label " + wstr(u"which is identical with an address constant ") + u"of the " + q +
         u". "},
        "5A7D036E", q);
  }
  return -1;
}
