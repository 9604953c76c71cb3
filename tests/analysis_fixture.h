// Test helper of the line-analysis tests: loads source text into vecSrcW,
// makes one program record for each START and END pair, and runs the real
// line editor and the chain of Fight12NW on it, with the console captured.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lines/fields.h"
#include "lines/scanner.h"
#include "operands/adr_const.h"
#include "operands/operands.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "records/stages.h"
#include "structure/labels.h"

namespace atest {

class Analysis : public ::testing::Test {
 protected:
  std::string out;
  TDiagBase game;

  void SetUp() override { Reset(1); }
  void TearDown() override {
    con::SetCapture(nullptr);
    SetLang(1);
  }

  void Reset(int lang) {
    con::SetCapture(nullptr);
    ResetBasicData();
    ResetCorrectScode();
    ResetFileData();
    fileData->ZeroCounters();
    b->ZeroCounters();
    cs->ZeroCounters();
    game.ZeroCounters();
    msgLog->ClearMsgLog();
    ResetAdrLookupNW();
    SetLang(lang);
    game.SetLangBoth(lang);
    out.clear();
    con::SetCapture(&out);
  }

  // The opcode of a raw line: the word behind the label field.
  static std::string OpOf(const std::string& raw) {
    size_t p = 0;
    while (p < raw.size() && raw[p] != ' ' && raw[p] != '\t') ++p;
    while (p < raw.size() && (raw[p] == ' ' || raw[p] == '\t')) ++p;
    size_t e = p;
    while (e < raw.size() && raw[e] != ' ' && raw[e] != '\t') ++e;
    return raw.substr(p, e - p);
  }

  // Lines as read; a program for each START and the END behind it.
  void Load(const std::vector<std::string>& lines) {
    for (const std::string& l : lines) {
      SrcLineW s;
      s.rawStr = Utf8ToU16(l);
      b->vecSrcW.push_back(s);
    }
    b->lineKazu = static_cast<int>(lines.size());
    int start = -1;
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
      std::string op = OpOf(lines[static_cast<size_t>(i)]);
      if (op == "START") start = i;
      if ((op == "END" || op.rfind("END;", 0) == 0) && start >= 0) {
        PrgDataW p;
        p.prgFirstLine = start;
        p.prgEndLine = i;
        p.startLine = start;
        p.endLine = i;
        const std::string& sl = lines[static_cast<size_t>(start)];
        p.PrgName = Utf8ToU16(sl.substr(0, sl.find_first_of(" \t")));
        for (int k = start; k <= i; ++k) b->vecSrcW[static_cast<size_t>(k)].prgNr = static_cast<int>(b->vecPrgW.size());
        b->vecPrgW.push_back(p);
        start = -1;
      }
    }
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

  SrcLineW& Line(int i) { return b->vecSrcW[static_cast<size_t>(i)]; }

  int Errors() const { return fileData->ErrorKazu + b->ErrorKazu + cs->ErrorKazu; }
  int Warnings() const { return fileData->WarningKazu + b->WarningKazu + cs->WarningKazu; }
  int Notes() const { return fileData->NoteKazu + b->NoteKazu + cs->NoteKazu; }
  int Memos() const { return fileData->MemoKazu + b->MemoKazu + cs->MemoKazu; }

  // The codes of the logged messages, in order.
  std::vector<std::string> Codes() const {
    std::vector<std::string> v;
    for (const TMsgRec& r : msgLog->WideLog) v.push_back(r.code);
    return v;
  }

  bool Has(const std::string& text) const { return out.find(text) != std::string::npos; }
  size_t Count(const std::string& text) const {
    size_t n = 0;
    for (size_t p = out.find(text); p != std::string::npos; p = out.find(text, p + text.size())) ++n;
    return n;
  }
};

// A program around some body lines.
inline std::vector<std::string> Prog(const std::vector<std::string>& body, const std::string& name = "PRG") {
  std::vector<std::string> v{name + "\tSTART"};
  v.insert(v.end(), body.begin(), body.end());
  v.push_back("\tEND");
  return v;
}

}  // namespace atest
