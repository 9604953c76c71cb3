// Test helper of the line-analysis tests: loads source text into vecSrcW,
// makes one program record for each START and END pair, and runs the real
// line editor and the chain of Fight12NW on it, with the console captured.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>
#include <vector>

#include "lines/fields.h"
#include "operands/adr_const.h"
#include "operands/operands.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "records/stages.h"

namespace atest {

// One case of a table: the source (body lines of a program, or a whole file
// when it starts with START), the counters {errors, warnings, notes, memos}
// after the chain and the unused-label note, the output ("~text": a part of
// it), the codes logged (blank-separated; unchecked when empty), and first
// word and word count of the line behind START when not -1.
struct Row {
  int lang;
  std::vector<std::string> src;
  std::array<int, 4> kazu;
  std::string text, codes = "";
  int fw = -1, wk = -1;
};

// The opcode of a raw line: the word behind the label field.
inline std::string OpOf(const std::string& raw) {
  size_t p = raw.find_first_of(" \t");
  p = p == std::string::npos ? raw.size() : raw.find_first_not_of(" \t", p);
  if (p == std::string::npos) return "";
  return raw.substr(p, raw.find_first_of(" \t", p) - p);
}

// A program around some body lines.
inline std::vector<std::string> Prog(const std::vector<std::string>& body, const std::string& name = "PRG") {
  std::vector<std::string> v{name + "\tSTART"};
  v.insert(v.end(), body.begin(), body.end());
  v.push_back("\tEND");
  return v;
}

class Analysis : public ::testing::Test {
 protected:
  std::string out;
  TDiagBase game;

  void SetUp() override { Reset(1); }
  void TearDown() override { con::SetCapture(nullptr), SetLang(1); }

  void Reset(int lang) {
    con::SetCapture(nullptr);
    ResetBasicData();
    ResetCorrectScode();
    ResetFileData();
    for (TDiagBase* d : std::initializer_list<TDiagBase*>{fileData, b, cs, &game}) d->ZeroCounters();
    msgLog->ClearMsgLog();
    ResetAdrLookupNW();
    SetLang(lang);
    game.SetLangBoth(lang);
    out.clear();
    con::SetCapture(&out);
  }

  // Lines as read; a program for each START and the END behind it.
  void Load(const std::vector<std::string>& lines) {
    int start = -1, n = static_cast<int>(lines.size());
    for (int i = 0; i < n; ++i) {
      SrcLineW s;
      s.rawStr = Utf8ToU16(lines[static_cast<size_t>(i)]);
      b->vecSrcW.push_back(s);
      std::string op = OpOf(lines[static_cast<size_t>(i)]);
      if (op == "START") start = i;
      if (op.rfind("END", 0) == 0 && (op.size() == 3 || op[3] == ';') && start >= 0) {
        PrgDataW p;
        p.prgFirstLine = p.startLine = start;
        p.prgEndLine = p.endLine = i;
        const std::string& sl = lines[static_cast<size_t>(start)];
        p.PrgName = Utf8ToU16(sl.substr(0, sl.find_first_of(" \t")));
        for (int k = start; k <= i; ++k) b->vecSrcW[static_cast<size_t>(k)].prgNr = static_cast<int>(b->vecPrgW.size());
        b->vecPrgW.push_back(p);
        start = -1;
      }
    }
    b->lineKazu = n;
    b->SetPrgKazuInFile(static_cast<int>(b->vecPrgW.size()));
  }

  // The line editor and the comment cut, as the pipeline runs them before
  // the analysis.
  void Prepare() {
    CopyRawLinesNW();
    editNWB();
    for (int p = 0; p < static_cast<int>(b->vecPrgW.size()); ++p) CutCommentNW(p);
  }

  // Loads, prepares and runs Fight12NW; returns the summed error count.
  int Fight(const std::vector<std::string>& lines) {
    Load(lines);
    Prepare();
    Fight12NW(game);
    Sum(game);
    return game.ErrorKazu;
  }

  // Runs one row of a table through the chain and checks all it names.
  void Check(const Row& r) {
    Reset(r.lang);
    SCOPED_TRACE(::testing::PrintToString(r.src));
    Fight(OpOf(r.src.front()) == "START" ? r.src : Prog(r.src));
    if (Errors() == 0) CkLabelInUseNW();
    EXPECT_EQ(Kazu(), r.kazu) << out;
    EXPECT_EQ(r.text[0] == '~' && Has(r.text.substr(1)) ? r.text : out, r.text);
    EXPECT_EQ(r.codes.empty() ? "" : Codes(), r.codes);
    EXPECT_EQ(r.fw < 0 ? -1 : Line(1).first_word, r.fw);
    EXPECT_EQ(r.wk < 0 ? -1 : Line(1).word_kazu, r.wk);
  }

  // Line 1 with opcode and slots "op|o1|o2|o3", for checks called directly.
  SrcLineW& Make(const std::string& fields) {
    Load(Prog({"\tNOP"}));
    std::vector<std::u16string> f{u""};
    for (char16_t ch : Utf8ToU16(fields + "|||")) ch == u'|' ? f.push_back(u"") : f.back().push_back(ch);
    SrcLineW& s = Line(1);
    std::tie(s.opStr, s.oprnd1ChH, s.oprnd2ChH, s.oprnd3ChH) = std::tie(f[0], f[1], f[2], f[3]);
    return s;
  }

  SrcLineW& Line(int i) { return b->vecSrcW[static_cast<size_t>(i)]; }

  int Errors() const { return fileData->ErrorKazu + b->ErrorKazu + cs->ErrorKazu; }
  int Warnings() const { return fileData->WarningKazu + b->WarningKazu + cs->WarningKazu; }
  // {errors, warnings, notes, memos} of all three owners.
  std::array<int, 4> Kazu() const {
    return {Errors(), Warnings(), fileData->NoteKazu + b->NoteKazu + cs->NoteKazu,
            fileData->MemoKazu + b->MemoKazu + cs->MemoKazu};
  }

  // The codes of the logged messages, in order, blank-separated.
  std::string Codes() const {
    std::string v;
    for (const TMsgRec& r : msgLog->WideLog) v += (v.empty() ? "" : " ") + r.code;
    return v;
  }

  bool Has(const std::string& text) const { return out.find(text) != std::string::npos; }
};

}  // namespace atest
