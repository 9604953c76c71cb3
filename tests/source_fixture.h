// Shared set-up of the source, scanner and structure tests: fresh
// singletons, captured console output, lines filled from text, and a
// scratch folder for files built byte by byte.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/records.h"
#include "records/singletons.h"
#include "records/stages.h"

namespace srctest {

class Fixture : public ::testing::Test {
 protected:
  std::string out;
  std::filesystem::path dir;

  void SetUp() override {
    ResetBasicData();
    ResetCorrectScode();
    ResetFileData();
    b->ZeroCounters();
    cs->ZeroCounters();
    fileData->ZeroCounters();
    msgLog->ClearMsgLog();
    SetLang(1);
    b->SimpleTitleIndex = 0;
    *moziCode = TMoziCode{};
    fileData->LastSrcFile = "t.txt";
    char tmpl[] = "/tmp/srctestXXXXXX";
    const char* d = mkdtemp(tmpl);
    dir = d ? d : "/tmp";
    con::SetCapture(&out);
  }
  void TearDown() override {
    con::SetCapture(nullptr);
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
    SetLang(1);
    ResetBasicData();
  }

  std::string Write(const std::string& name, const std::string& bytes) {
    std::string p = (dir / name).string();
    std::ofstream f(p, std::ios::binary);
    f << bytes;
    return p;
  }

  // Lines as read, one record each.
  static void Lines(const std::vector<std::u16string>& lines) {
    b->vecSrcW.clear();
    for (const auto& l : lines) {
      b->vecSrcW.emplace_back();
      b->vecSrcW.back().rawStr = l;
    }
  }

  static std::vector<std::u16string> Raw() {
    std::vector<std::u16string> r;
    for (const auto& s : b->vecSrcW) r.push_back(s.rawStr);
    return r;
  }

  static std::vector<std::string> Codes() {
    std::vector<std::string> r;
    for (const auto& m : msgLog->WideLog) r.push_back(m.code);
    return r;
  }

  static int Errors() { return b->ErrorKazu + cs->ErrorKazu + fileData->ErrorKazu; }
  static int Warnings() { return b->WarningKazu + cs->WarningKazu + fileData->WarningKazu; }

  // The stages up to the comment removal, gated as the pipeline gates them.
  // Returns the number of the stage that stopped (0: all ran).
  static int Pair() {
    if (editNWB() < 0 || Errors() > 0) return 1;
    if (StartEnd10W() < 0 || Errors() > 0) return 2;
    if (StartEnd20NW() < 0 || Errors() > 0) return 3;
    for (int i = 0; i < b->GetPrgKazuInFile(); ++i) {
      StartEndNW(i);
      CutCommentNW(i);
    }
    if (Errors() != 0) return 4;
    return 0;
  }

  size_t Count(const std::string& needle) const {
    size_t n = 0;
    for (size_t p = out.find(needle); p != std::string::npos; p = out.find(needle, p + needle.size())) ++n;
    return n;
  }
};

}  // namespace srctest
