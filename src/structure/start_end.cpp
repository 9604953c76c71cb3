// START/END pairing: the rough and the exact search for the two words, the
// program records, the per-program pairing check and the text between
// programs.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "records/console.h"
#include "records/diag.h"
#include "records/mode.h"
#include "records/singletons.h"
#include "structure/structure.h"

namespace {

constexpr char16_t kZenSpace = u'\u3000';

bool Holds(wview s, wview form) { return s.find(form) != wview::npos; }

// The six forms of a word: " W", " W ", " W<tab>", "<tab>W", "<tab>W ",
// "<tab>W<tab>". The last two of each three hold the first, so the test is
// whether a blank or a tab stands right in front of the word somewhere.
bool HoldsWordForm(wview s, wview word) {
  if (s.size() <= word.size()) return false;
  for (size_t p = s.find(word, 1); p != wview::npos; p = s.find(word, p + 1)) {
    if (IsBlankW(s[p - 1])) return true;
  }
  return false;
}

const std::string& FileNameOfPass() { return fileData->LastSrcFile.empty() ? b->FileName : fileData->LastSrcFile; }

// Prints the lines, the first with the prefix of a line when asked, and
// counts 1 error on b; the log does not repeat it.
void PrintCounted(int line, const std::vector<wstr>& lines, bool withPrefix, const char* code) {
  Tell(*b, kError, line, lines, code, withPrefix ? Head::Line : Head::None);
}

void ReportNoRet(int prg) {
  if (b->IsJ()) {
    Say(*b, kWarning, prg,
        {wstr(u"1") + u" 番目のプログラム： ", u"RET 命令が一つもない。 暴走の可能性が大きい。 ",
         u"あるいは、無限ループに入り、実行が終了しない。", u"意図的でなければ修正が必要です。 ",
         u"NOTE: RET の 右 又は 左 に空白が必要です。 "},
        "F76DCB31");
  } else {
    Say(*b, kWarning, prg,
        {wstr(u"The ") + u"1st" + u" " + u"program: ", u"There is not any RET opcode at all there. ",
         u"It may run out of control. ", u"It may go into an infinite loop. ", u"Is this your intention? ",
         u"If not, you should add the code. ", u"Note: A space is expected at the both sides of RET. "},
        "F76DCB31");
  }
}

void ReportCounts(bool startMore, int nStart, int nEnd) {
  wstr f = Utf8ToU16(FileNameOfPass());
  if (b->IsJ()) {
    std::vector<wstr> l;
    if (startMore) {
      l = {u"(START > END): プログラムが正しく閉じていない。", u"START アセンブラ命令の個数と END アセンブラ命令の",
           u"個数が異なる。 同数のはずです。 ",
           u"START アセンブラ命令 が ファイル(" + f + u" ) の中に" + u"全部で " + WNum(nStart) + u" 個ある。 ",
           u"END アセンブラ命令 が ファイル(" + f + u" ) の中に全部で " + WNum(nEnd) + u" 個ある。 "};
      Say(*b, kError, 0, l, "DC4C4237", {}, Head::ClassOnly);
    } else {
      l = {u"(START < END): プログラムが正しく閉じていない。 ",
           u"START アセンブラ命令の個数と END アセンブラ命令の個数が異なる。 ", u"同数のはずです。",
           u"START アセンブラ命令 が ファイル( " + f + u" ) の中に全部で " + WNum(nStart) + u" 個ある。 ",
           u"END アセンブラ命令 が ファイル( " + f + u" ) の中に全部で " + WNum(nEnd) + u" 個ある。 "};
      Say(*b, kError, 0, l, "BBBC4237", {}, Head::ClassOnly);
    }
  } else {
    std::vector<wstr> l;
    if (startMore) {
      l = {u"(START > END): The program is not correctly closed. ", u"The number of START assembler instructions is ",
           u"different from that of END's. ", u"They should be the same. "};
    } else {
      l = {u"(START < END): The program is not correctly closed.", u"There is a differece ",
           u"between START and END in number.", u"They should be the same in a program. "};
    }
    l.push_back(u"There are " + WNum(nStart) + u" START assembler instructions " + u"in " + f + u". ");
    l.push_back(u"There are " + WNum(nEnd) + u" END assembler instructions " + u"in " + f + u". ");
    Say(*b, kError, 0, l, startMore ? "DC4C4237" : "BBBC4237", {}, Head::ClassOnly);
  }
}

// More START or END lines than the mode's tables hold.
void ReportTooManyPrograms(wview word, int maxPrograms, const char* code) {
  const wstr w(word);
  if (b->IsJ()) {
    Say(*b, kError, 0,
        {w + u" アセンブラ命令の数を減らす必要がある。 ",
         u"このアセンブラでは、一つのファイルの中のプログラムの数は " + WNum(maxPrograms) + u" 個に制限されています。"},
        code, {}, Head::ClassOnly);
  } else {
    Say(*b, kError, 0,
        {u"The number of " + w + u" assembler instructions should be ", u"reduced. ",
         u"The number of the programs in a src file", u"is limited to " + WNum(maxPrograms)},
        code, {}, Head::ClassOnly);
  }
}

void ReportOutOfOrder(int line, bool step11) {
  const char* code = step11 ? "EA1C875B" : "2036036E";
  if (b->IsJ()) {
    Say(*b, kError, line, {u"START と END アセンブラ命令 が逆順です。 "}, code);
  } else {
    Say(*b, kError, line,
        {u"START and END are out of order. ",
         step11 ? u"START should be followed by END." : u"START should be followed by END. "},
        code);
  }
}

}  // namespace

// The message of a word that was looked for and is there in a wrong form:
// `word` is START or END; `semicolon` picks the wording of "<word>;", else
// that of a 2-byte space. Japanese carries the line prefix, English not.
static void LrMessage(int line, wview word, bool semicolon) {
  wstr w(word);
  std::vector<wstr> l;
  if (b->IsJ()) {
    wstr lead = w + u" の文字はある。けれども、 ";
    if (semicolon) {
      l = {lead + u" " + w + u" の右に１個以上の空白が必要です。 ",
           u"' " + w + u";'はエラー、' " + w + u"' または '" + w + u" 'と記述する。 ",
           u" （２．１　言語の仕様（４）　オペランドのない命令の場合） "};
    } else {
      l = {lead + u" " + w + u"の右に全角の空白がある。 全角の空白文字は使えない。　"};
    }
    PrintCounted(line, l, true, semicolon ? "6A5BB572" : "6A5BB573");
  } else {
    if (semicolon) {
      l = {u" A space is expected at the right side of " + w + u" instruction. ",
           u"(Spce. 2.1 (4) in a case of Without operand. "};
    } else {
      l = {u" There is a 2-byte space at the right side of " + w + u" instruction. ",
           u"The 2-byte space is not allowed for use in CASL2. ", u"It should be replaced with a 1-byte space, or deleted. "};
    }
    PrintCounted(line, l, false, semicolon ? "6A5BB572" : "6A5BB573");
  }
}

int CkEnd_LR_W() {
  const wstr semi = u" END;";
  const wstr zen = wstr(1, kZenSpace) + u"END";
  for (size_t i = 0; i < b->vecSrcW.size(); ++i) {
    const wstr& e = b->vecSrcW[i].editStr;
    if (Holds(e, semi)) {
      LrMessage(static_cast<int>(i), u"END", true);
      return 1;
    }
    // The test of the right side and that of the left side look for the
    // same form: a 2-byte space in front of END draws the right-side words.
    if (Holds(e, zen)) {
      LrMessage(static_cast<int>(i), u"END", false);
      return 1;
    }
  }
  return 0;
}

int CkSTART_LR_W() {
  const wstr semi = u" START;";
  const wstr zen = u"START" + wstr(1, kZenSpace);
  for (size_t i = 0; i < b->vecSrcW.size(); ++i) {
    const wstr& e = b->vecSrcW[i].editStr;
    if (Holds(e, semi)) {
      LrMessage(static_cast<int>(i), u"START", true);
      return 1;
    }
    if (Holds(e, zen)) {
      LrMessage(static_cast<int>(i), u"START", false);
      return 1;
    }
  }
  return 0;
}

int DetSTARTatZenKakuSpaceW() {
  const wstr zen = wstr(1, kZenSpace) + u"START";
  for (size_t i = 0; i < b->vecSrcW.size(); ++i) {
    if (Holds(b->vecSrcW[i].editStr, zen)) {
      LrMessage(static_cast<int>(i), u"START", false);
      return 1;
    }
  }
  return 0;
}

// Walks the line table of the fixed-table mode (empty in the wide modes) for
// a 2-byte space (bytes E3 80 80 here) in front of END.
int DetENDatZenKakuSpaceW() {
  for (size_t i = 0; i < fileData->srcLineTable.size(); ++i) {
    const auto& row = fileData->srcLineTable[i];
    std::string s(row.data(), strnlen(row.data(), row.size()));
    if (s.find("\xE3\x80\x80" "END") != std::string::npos) {
      LrMessage(fileData->lineNrTable[i], u"END", false);
      return 1;
    }
  }
  return 0;
}

int StartEnd10W() {
  fileData->startLine = 0;
  fileData->endLine = 330;
  const std::vector<SrcLineW>& v = b->vecSrcW;
  int nStart = 0;
  for (size_t i = 0; i < v.size(); ++i) {
    if (v[i].editStr.size() > 4 && Holds(v[i].editStr, u"START")) {
      ++nStart;
      fileData->startLine = static_cast<int>(i);
    }
  }
  if (nStart == 0) {
    if (b->IsJ()) {
      Say(*b, kError, 0, {u"START アセンブラ命令 が どこにもない。"}, "736BEBA8", {}, Head::ClassOnly);
    } else {
      Say(*b, kError, 0, {u"START description is not found anywhere. ", u"START assembler instruction is expected. "},
          "736BEBA8", {}, Head::ClassOnly);
    }
    DetSTARTatZenKakuSpaceW();
    CkSTART_LR_W();
    return 0;
  }
  int nEnd = 0;
  for (size_t i = 0; i < v.size(); ++i) {
    if (v[i].editStr.size() > 2 && Holds(v[i].editStr, u"END")) {
      ++nEnd;
      fileData->endLine = static_cast<int>(i);
    }
  }
  if (nEnd == 0) {
    if (b->IsJ()) {
      Say(*b, kError, 0, {u"END アセンブラ命令 が どこにもない。"}, "6A5BB571", {}, Head::ClassOnly);
    } else {
      Say(*b, kError, 0, {u"END description is not found anywhere. ", u"END assembler instruction is expected. "},
          "6A5BB571", {}, Head::ClassOnly);
    }
    DetENDatZenKakuSpaceW();
    CkEnd_LR_W();
    return 0;
  }
  if (fileData->endLine < fileData->startLine) {
    if (b->IsJ()) {
      Say(*b, kError, fileData->startLine, {u"START アセンブラ命令 の後の行に END アセンブラ命令が必要。"}, "64DEC562");
    } else {
      Say(*b, kError, fileData->startLine, {u"END is expected to be followed after START. "}, "64DEC562");
    }
  }
  return 0;
}

int StartEnd20NW() {
  fileData->startLine = 0;
  fileData->endLine = 0;
  std::vector<SrcLineW>& v = b->vecSrcW;
  std::vector<int> starts, ends;
  for (size_t i = 0; i < v.size(); ++i) {
    if (HoldsWordForm(v[i].editStr, u"START")) {
      fileData->startLine = static_cast<int>(i);
      starts.push_back(static_cast<int>(i));
    }
  }
  if (starts.empty()) {
    if (b->IsJ()) {
      Say(*b, kError, 0, {u"START アセンブラ命令 が どこにもない。 ", u"START の左に空白が必要です"}, "86F18976", {},
          Head::ClassOnly);
    } else {
      Say(*b, kError, 0, {u"START is not found anywhere.", u"A space is expected at the left side of the START. "},
          "86F18976", {}, Head::ClassOnly);
    }
    return -1;
  }
  {
    const wstr& e = v[fileData->startLine].editStr;
    if (!e.empty() && IsBlankW(e[0])) {
      if (b->IsJ()) {
        Say(*b, kError, fileData->startLine, {u"START アセンブラ命令の左にラベルが必要です。 "}, "86F18976");
      } else {
        Say(*b, kError, fileData->startLine,
            {u"A label name is expected at the left side ", u"of START assembler instruction. "}, "86F18976");
      }
    }
  }
  for (size_t i = 0; i < v.size(); ++i) {
    if (HoldsWordForm(v[i].editStr, u"END")) {
      fileData->endLine = static_cast<int>(i);
      ends.push_back(static_cast<int>(i));
    }
  }
  if (ends.empty()) {
    if (b->IsJ()) {
      Say(*b, kError, 0,
          {u"END アセンブラ命令 が どこにもない。", u"END 命令は、プログラムの終わりを定義する。",
           u"END の左には、空白が必要です。"},
          "BD76EE3C", {}, Head::ClassOnly);
    } else {
      Say(*b, kError, 0,
          {u"END is not found anywhere. ", u"The END instruction defines the end of a program.",
           u"A space is expected at the left side of the END. "},
          "BD76EE3C", {}, Head::ClassOnly);
    }
    CkEnd_LR_W();
    return -3;
  }
  {
    const wstr& e = v[fileData->endLine].editStr;
    if (e.empty() || !IsBlankW(e[0])) {
      if (b->IsJ()) {
        Say(*b, kError, fileData->endLine,
            {u"END アセンブラ命令の左にラベルがある。 ", u"END アセンブラ命令の左のラベルには、",
             u"CASL2 仕様上の役目はないので不要である。"},
            "DC4C4237");
      } else {
        Say(*b, kError, fileData->endLine,
            {u"There is a label at the left side of the END ", u"assembler instruction. ", u"It is of no use. "},
            "DC4C4237");
      }
    }
  }
  int nStart = static_cast<int>(starts.size());
  int nEnd = static_cast<int>(ends.size());
  // The fixed tables of some modes hold a few programs only.
  const int maxPrograms = CurrentMode().maxPrograms;
  if (maxPrograms > 0 && (nStart > maxPrograms || nEnd > maxPrograms)) {
    if (nStart > maxPrograms) ReportTooManyPrograms(u"START", maxPrograms, "6A0B5E01");
    if (nEnd > maxPrograms) ReportTooManyPrograms(u"END", maxPrograms, "6A0B5E02");
    return -8;
  }
  if (nStart > nEnd) {
    ReportCounts(true, nStart, nEnd);
    CkEnd_LR_W();
    return -4;
  }
  if (nStart < nEnd) {
    ReportCounts(false, nStart, nEnd);
    return -5;
  }
  for (int i = 0; i < nStart; ++i) {
    if (starts[i] >= ends[i]) {
      ReportOutOfOrder(ends[i], false);
      return -6;
    }
  }
  for (int i = 0; i + 1 < nStart; ++i) {
    if (starts[i + 1] < ends[i]) {
      ReportOutOfOrder(ends[i], true);
      return -7;
    }
  }
  b->SetPrgKazuInFile(nStart);
  // The count line is printed and logged, and counted nowhere.
  if (b->IsJ()) {
    Say(*b, 0, 0, {u"  " + WNum(nStart) + u" 個のプログラムがある。 "}, "1A02E43A", {}, Head::None);
  } else {
    Say(*b, 0, 0,
        {nStart == 1 ? wstr(u"There is one program found in it.")
                     : u"There are " + WNum(nStart) + u" programs found in it."},
        "1A02E43A", {}, Head::None);
  }
  --b->Counter(0);  // Say counted it on the spare counter; give that back
  // Only the first program without RET is reported. The warning's line
  // number is the program index plus 1, and its program number is read from
  // the line of that index, which is still 0 here: it always says program 1.
  for (int i = 0; i < nStart; ++i) {
    bool hasRet = false;
    for (int k = starts[i]; k <= ends[i] && !hasRet; ++k) hasRet = HoldsWordForm(v[k].editStr, u"RET");
    if (!hasRet) {
      ReportNoRet(i);
      break;
    }
  }
  b->vecPrgW.reserve(b->vecPrgW.size() + nStart);
  for (int i = 0; i < nStart; ++i) {
    PrgDataW p;
    p.prgFirstLine = starts[i];
    p.prgEndLine = ends[i];
    p.startLine = starts[i];
    p.endLine = ends[i];
    b->vecPrgW.push_back(std::move(p));
  }
  return 0;
}

int StartEndNW(int prg) {
  if (prg < 0 || static_cast<size_t>(prg) >= b->vecPrgW.size()) return 0;
  const PrgDataW& p = b->vecPrgW[prg];
  std::vector<SrcLineW>& v = b->vecSrcW;
  if (p.prgFirstLine < 0 || p.prgEndLine >= static_cast<int>(v.size())) return 0;
  const wstr& rs = v[p.prgFirstLine].rawStr;
  if (rs.empty()) return 0;
  if (IsBlankW(rs[0])) {
    if (b->IsJ()) {
      Say(*b, kError, p.prgFirstLine, {u"START アセンブラ命令の左にラベルが必要"}, "86F18976");
    } else {
      Say(*b, kError, p.prgFirstLine,
          {u"A label is expected at the left side ", u"of the START assembler instruction. "}, "86F18976");
    }
    return 0;
  }
  const wstr& re = v[p.prgEndLine].rawStr;
  if (re.empty()) return 0;
  if (!IsBlankW(re[0])) {
    wstr q = QuoteW(re);
    if (b->IsJ()) {
      Say(*b, kError, p.prgEndLine,
          {q + u"END アセンブラ命令の左にラベルがある。 ", u"END アセンブラ命令の左のラベルは",
           u"不要です。（CASL2 の仕様） "},
          "99CC18976", q);
    } else {
      Say(*b, kError, p.prgEndLine,
          {q + u"There is a label at the left side ", u"of the END assembler instruction. ", u"It is of no use. "},
          "99CC18976", q);
    }
    return 0;
  }
  for (int i = p.prgFirstLine; i < p.prgEndLine; ++i) v[i].prgNr = prg;
  return 0;
}

int IsAnySrcOutsideStartEndNW() {
  const std::vector<PrgDataW>& prgs = b->vecPrgW;
  const std::vector<SrcLineW>& v = b->vecSrcW;
  if (b->GetPrgKazuInFile() < 2 || prgs.size() < 2) return 0;
  for (size_t i = 0; i + 1 < prgs.size(); ++i) {
    int from = prgs[i].prgEndLine + 1;
    int to = std::min(prgs[i + 1].prgFirstLine, static_cast<int>(v.size()));
    for (int k = std::max(from, 0); k < to; ++k) {
      const wstr& e = v[k].editStr;
      bool text = false;
      for (char16_t c : e) {
        if (!IsBlankW(c)) {
          text = true;
          break;
        }
      }
      if (!text) continue;
      wstr t = TrimW(e);
      wstr q = QuoteW(t);
      bool zen = t == wstr(1, kZenSpace);
      std::vector<wstr> l;
      if (b->IsJ()) {
        l = {q + u"プログラムとプログラムの間にソースコードがある。",
             u"END 命令と次のプログラムの STRAT 命令の間に不明の文字がある。",
             u"コメント記号(;)を前置する、あるいは、削除する。"};
        if (zen) {
          l.push_back(u"それは「全角の空白」文字である。");
          l.push_back(u"「全角の空白」文字は、コメントの中を除き、");
          l.push_back(u"CASL2では使うことができない。 ");
        }
      } else {
        l = {q + u": There are some unknown string between two programs. ",
             u"There are some unknown string between END and START. ", u"It should be deleted. Or a comment mark(;) ",
             u"is expected at the left side of the description."};
        if (zen) {
          l.push_back(u"It is not a 1-byte space, but a 2-byte one.  ");
          l.push_back(u"A 2-byte space is not allowed for use in CASL2. ");
        }
      }
      Say(*b, kError, k, l, "DDDD036E", q);
      return -1;
    }
  }
  return 0;
}
