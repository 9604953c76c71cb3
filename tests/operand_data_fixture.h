// Test helper of the operand-data tests: line and program records filled the
// way the earlier passes leave them, the output captured, the counters and
// the message log reset.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "constants/constants.h"
#include "operands/adr_const.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"

namespace opdtest {

struct Captured {
  std::string out;
  Captured() { con::SetCapture(&out); }
  ~Captured() { con::SetCapture(nullptr); }
};

class OpdTest : public ::testing::Test {
 protected:
  void SetUp() override { Reset(1); }
  void TearDown() override {
    con::SetCapture(nullptr);
    SetLang(1);
  }
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

  // A line as the splitter leaves it: label, opcode, slots (with their
  // commas), word count and first word.
  int Line(const std::u16string& label, const std::u16string& op, std::vector<std::u16string> slots = {},
           int wk = 0, int fw = 0) {
    SrcLineW ln;
    ln.labelStr = label;
    ln.opStr = op;
    if (slots.size() > 0) ln.oprnd1ChH = slots[0];
    if (slots.size() > 1) ln.oprnd2ChH = slots[1];
    if (slots.size() > 2) ln.oprnd3ChH = slots[2];
    ln.word_kazu = wk;
    ln.first_word = fw;
    ln.prgNr = static_cast<int>(b->vecPrgW.size());
    b->vecSrcW.push_back(ln);
    return static_cast<int>(b->vecSrcW.size()) - 1;
  }
  // A line that only carries its operand text (DC, DS, literal checks).
  int TextLine(const std::u16string& op, const std::u16string& text) {
    int i = Line(u"", op);
    b->vecSrcW[i].oprndComChH = text;
    b->vecSrcW[i].oprndComStr = text;
    b->vecSrcW[i].editStr = text;
    return i;
  }
  // Closes the lines from `first` on as a program; the END line is added.
  int Program(const std::u16string& name, int first) {
    int end = Line(u"", u"END");
    PrgDataW p;
    p.PrgName = name;
    p.prgFirstLine = first;
    p.prgEndLine = end;
    b->vecPrgW.push_back(p);
    b->PrgKazuInFile = static_cast<int>(b->vecPrgW.size());
    return static_cast<int>(b->vecPrgW.size()) - 1;
  }
  SrcLineW& L(int i) { return b->vecSrcW[static_cast<size_t>(i)]; }
  const TMsgRec& Msg(size_t k) { return msgLog->WideLog.at(k); }
  std::vector<std::string> Codes() {
    std::vector<std::string> v;
    for (const TMsgRec& r : msgLog->WideLog) v.push_back(r.code);
    return v;
  }
};

}  // namespace opdtest
