// Test helper of the operand-data tests: records filled the way the earlier
// passes leave them, the output captured, and one runner for message tables.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "constants/constants.h"
#include "operands/adr_const.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "records/text.h"

namespace opdtest {

struct Captured {
  std::string out;
  Captured() { con::SetCapture(&out); }
  ~Captured() { con::SetCapture(nullptr); }
};

// The heads of a message on line 2, where the table runners put their line.
inline const std::string E = "Error : line 2: ", J = "エラー： 2 行目： ";
constexpr int kAny = -99999;

// One row of a message table: the input, the whole English output, the whole
// Japanese output (not run when empty), the message codes in order (not
// checked when empty) and a value the runner checks (not when kAny).
struct Case {
  std::u16string in;
  std::string en, ja = {}, codes = {};
  int v = kAny;
};

// "A|B|C" -> {"A", "B", "C"}.
inline std::vector<std::u16string> Fields(std::u16string s) {
  std::vector<std::u16string> v;
  for (size_t k; (k = s.find(u'|')) != s.npos; s.erase(0, k + 1)) v.push_back(s.substr(0, k));
  v.push_back(s);
  return v;
}

// Lines of `out` that start with one of the two heads.
inline int Heads(const std::string& out, const std::string& en, const std::string& ja) {
  int n = 0;
  for (size_t k = 0; k < out.size(); k = std::min(out.find('\n', k), out.size()) + 1)
    n += !out.compare(k, en.size(), en) || !out.compare(k, ja.size(), ja);
  return n;
}

class OpdTest : public ::testing::Test {
 protected:
  void SetUp() override { Reset(1); }
  void TearDown() override { SetLang(1); }
  void Reset(int lang) {
    ResetBasicData();
    ResetCorrectScode();
    fileData->ZeroCounters();
    b->ZeroCounters();
    cs->ZeroCounters();
    msgLog->ClearMsgLog();
    SetLang(lang);
    ResetAdrLookupNW();
  }
  // Runs each row in English and, when it has a Japanese text, in Japanese:
  // the output must match whole, and every counter must equal the heads of
  // its kind that were printed.
  template <class F>
  void Rows(const std::vector<Case>& rows, F run) {
    for (const Case& r : rows) {
      for (int lang : {1, 0}) {
        const std::string& want = lang ? r.en : r.ja;
        if (lang == 0 && want.empty()) continue;
        SCOPED_TRACE(U16ToUtf8(r.in) + (lang ? " (en)" : " (ja)"));
        Reset(lang);
        Captured c;
        run(r);
        EXPECT_EQ(c.out, want);
        EXPECT_EQ(cs->ErrorKazu, Heads(want, "Error : ", "エラー： "));
        EXPECT_EQ(cs->WarningKazu, Heads(want, "Warning : ", "警告： "));
        EXPECT_EQ(cs->NoteKazu, Heads(want, "Note : line", "注意： "));
        EXPECT_EQ(cs->MemoKazu, Heads(want, "Note :  行目", "メモ"));
        if (lang && !r.codes.empty()) { EXPECT_EQ(Codes(), r.codes); }
      }
    }
  }
  // A line as the splitter leaves it: slots with their commas, word count, first word.
  int Line(const std::u16string& label, const std::u16string& op, std::vector<std::u16string> slots = {},
           int wk = 0, int fw = 0) {
    SrcLineW ln;
    ln.labelStr = label;
    ln.opStr = op;
    slots.resize(3);
    ln.oprnd1ChH = slots[0], ln.oprnd2ChH = slots[1], ln.oprnd3ChH = slots[2];
    ln.word_kazu = wk;
    ln.first_word = fw;
    ln.prgNr = static_cast<int>(b->vecPrgW.size());
    b->vecSrcW.push_back(ln);
    return static_cast<int>(b->vecSrcW.size()) - 1;
  }
  // A line that only carries its operand text (DC, DS, literal checks).
  int TextLine(const std::u16string& op, const std::u16string& text) {
    int i = Line(u"", op);
    L(i).oprndComChH = L(i).oprndComStr = L(i).editStr = text;
    return i;
  }
  // Closes the lines from `first` on as a program; the END line is added.
  int Program(const std::u16string& name, int first) {
    PrgDataW p;
    p.PrgName = name;
    p.prgFirstLine = first;
    p.prgEndLine = Line(u"", u"END");
    b->vecPrgW.push_back(p);
    b->PrgKazuInFile = static_cast<int>(b->vecPrgW.size());
    return b->PrgKazuInFile - 1;
  }
  SrcLineW& L(int i) { return b->vecSrcW[static_cast<size_t>(i)]; }
  std::vector<int32_t> Words(int i) {
    std::vector<int32_t> v;
    for (auto& w : L(i).vecWord) v.push_back(w.wordCode);
    return v;
  }
  // The codes of the logged messages, joined by blanks.
  std::string Codes() {
    std::string s;
    for (const TMsgRec& r : msgLog->WideLog) s += (s.empty() ? "" : " ") + r.code;
    return s;
  }
};

}  // namespace opdtest
