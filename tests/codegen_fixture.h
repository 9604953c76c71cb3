// Test helper of the code generation and report tests: runs the stages of a
// pass on source text in this process, as the Fight does, up to the link,
// with the console captured.
#pragma once

#include <gtest/gtest.h>

#include <dirent.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "codegen/codegen.h"
#include "comet2/comet2.h"
#include "operands/adr_const.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "records/stages.h"
#include "reports/report.h"
#include "structure/structure.h"

#include "fresh_records.h"

namespace cgtest {

struct Captured {
  std::string out;
  Captured() { con::SetCapture(&out); }
  ~Captured() { con::SetCapture(nullptr); }
};

inline void ResetAll(int lang = 1) {
  FreshRecords();
  ResetAdrLookupNW();
  ResetReportHintCounts();
  SetLang(lang);
  ResetComet2(*m);
  m->dispLang = lang;
}

// The stages of a pass from the line editor to the unused-name notes, on
// source text ("\n" between lines); returns the errors summed on `game`.
inline int Analyse(const std::string& src, TDiagBase& game) {
  std::istringstream in(src);
  for (std::string line; std::getline(in, line);) {
    b->vecSrcW.emplace_back();
    b->vecSrcW.back().rawStr = Utf8ToU16(line);
  }
  CopyRawLinesNW();
  editNWB();
  StartEnd10W();
  StartEnd20NW();
  for (int i = 0; i < b->GetPrgKazuInFile(); ++i) StartEndNW(i), CutCommentNW(i);
  IsAnySrcOutsideStartEndNW();
  for (int i = 0; i < b->GetPrgKazuInFile(); ++i) CkPrgNameNW(i);
  CkPrgNameDoubleNW();
  Fight12NW(game);
  CkLabelInUseNW();
  CkPrgNameInUseNW();
  Sum(game);
  return game.ErrorKazu;
}

// Analyse and, on no errors, the link on a machine made ready for it;
// returns the link's result (99 when the analysis found errors).
inline int Assemble(const std::string& src, TDiagBase& game) {
  if (Analyse(src, game) != 0) return 99;
  PrepareMachineForLink();
  return Link31NWGM(game);
}

// The cells [from, from + n) of Memory (low 16 bits) or of lineOfAdr.
inline std::vector<int> Words(int from, int n, bool lines = false) {
  std::vector<int> v;
  for (int a = from; a < from + n; ++a) v.push_back(lines ? m->lineOfAdr[a] : m->Memory[a] & 0xFFFF);
  return v;
}
inline std::vector<int> Lines(int from, int n) { return Words(from, n, true); }

// A test with fresh records, English, and the console captured in `c.out`.
class Fixture : public ::testing::Test {
 protected:
  void SetUp() override { ResetAll(1); }
  void TearDown() override { ResetAll(1); }
  TDiagBase game;
  Captured c;
};

// TZ is UTC and the report's clock at 0 while it lives.
struct UtcClock {
  std::string old = std::getenv("TZ") ? std::getenv("TZ") : "";
  bool had = std::getenv("TZ") != nullptr;
  UtcClock() { setenv("TZ", "UTC", 1), setenv("SOURCE_DATE_EPOCH", "0", 1), tzset(); }
  ~UtcClock() { had ? setenv("TZ", old.c_str(), 1) : unsetenv("TZ"), unsetenv("SOURCE_DATE_EPOCH"), tzset(); }
};

// Writes the report `name` `times` times in a fresh folder and gives its
// text; `left` receives the names of the files left in the folder.
inline std::string Report(const std::string& name, int times = 1, std::vector<std::string>* left = nullptr) {
  char dir[] = "/tmp/drillasm_cg_XXXXXX", cwd[4096] = {};
  if (!mkdtemp(dir) || !getcwd(cwd, sizeof cwd) || chdir(dir) != 0) return "no folder";
  UtcClock clock;
  for (int i = 0; i < times; ++i) EXPECT_EQ(DspRegMry70NW(*m, name), 0);
  std::ifstream f(name, std::ios::binary);
  std::stringstream text;
  text << f.rdbuf();
  DIR* d = opendir(".");
  while (dirent* e = d ? readdir(d) : nullptr) {
    std::string n = e->d_name;
    if (n != "." && n != ".." && left) left->push_back(n);
    unlink(n.c_str());
  }
  if (d) closedir(d);
  EXPECT_EQ(chdir(cwd), 0);
  rmdir(dir);
  return text.str();
}

}  // namespace cgtest
