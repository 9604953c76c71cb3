// Assembling a large file: a generated source of 30,000 lines in 30
// programs that call each other, with forward references and literals, is
// read, analysed, linked and written out as the assembled report. The whole
// of it should stay well under a second.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "../tests/fresh_records.h"
#include "tools/source_text.h"

#include "codegen/codegen.h"
#include "comet2/comet2.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "records/stages.h"
#include "reports/report.h"
#include "source/source.h"

namespace {

constexpr int kPrograms = 30;

std::string GenerateSource() { return GeneratedSource(kPrograms, false); }

std::string g_dir;
std::string g_srcPath;

void PrepareFiles() {
  if (!g_dir.empty()) return;
  char tmpl[] = "/tmp/drillasm_bench_XXXXXX";
  if (mkdtemp(tmpl) == nullptr) std::abort();
  g_dir = tmpl;
  g_srcPath = g_dir + "/big.cas";
  std::string src = GenerateSource();
  FILE* f = std::fopen(g_srcPath.c_str(), "wb");
  if (f == nullptr) std::abort();
  std::fwrite(src.data(), 1, src.size(), f);
  std::fclose(f);
  if (chdir(g_dir.c_str()) != 0) std::abort();
}

// One pass of the pipeline from the loaded lines to the assembled report.
// Returns an empty text on success, else what went wrong.
std::string AssembleOnce(TDiagBase& game) {
  FreshRecords();
  SetLang(1);
  b->SrcFileName = g_srcPath;
  if (OpenFileUTF8toVecW(g_srcPath) != 0) return "read";
  CopyRawLinesNW();
  if (editNWB() < 0) return "editNWB";
  if (StartEnd10W() < 0 || StartEnd20NW() < 0) return "StartEnd";
  for (int i = 0; i < b->GetPrgKazuInFile(); ++i) {
    StartEndNW(i);
    CutCommentNW(i);
  }
  IsAnySrcOutsideStartEndNW();
  for (int i = 0; i < b->GetPrgKazuInFile(); ++i) CkPrgNameNW(i);
  CkPrgNameDoubleNW();
  Sum(game);
  if (game.ErrorKazu > 0) return "structure";
  if (Fight12NW(game) < 0) return "Fight12NW";
  CkLabelInUseNW();
  CkPrgNameInUseNW();
  Sum(game);
  if (game.ErrorKazu > 0) return "analysis";
  PrepareMachineForLink();
  if (Link31NWGM(game) != 0) return "link";
  m->srcFileName = g_srcPath;
  if (DspRegMry70NW(*m, "aaAssembledRegMry.txt") != 0) return "report";
  return std::string();
}

void BM_AssembleLinkReport30000Lines(benchmark::State& state) {
  PrepareFiles();
  std::string sink;
  con::SetCapture(&sink);
  TDiagBase game;
  for (auto _ : state) {
    sink.clear();
    std::string err = AssembleOnce(game);
    if (!err.empty()) {
      con::SetCapture(nullptr);
      state.SkipWithError(("stage failed: " + err + "\n" + sink.substr(0, 2000)).c_str());
      return;
    }
  }
  con::SetCapture(nullptr);
  state.counters["lines"] = static_cast<double>(b->vecSrcW.size());
  state.counters["words"] = static_cast<double>(b->MaxMemory);
}
BENCHMARK(BM_AssembleLinkReport30000Lines)->Unit(benchmark::kMillisecond);

// The link and the report alone, on the records the analysis left.
void BM_LinkAndReport30000Lines(benchmark::State& state) {
  PrepareFiles();
  std::string sink;
  con::SetCapture(&sink);
  TDiagBase game;
  std::string err = AssembleOnce(game);
  if (!err.empty()) {
    con::SetCapture(nullptr);
    state.SkipWithError(("stage failed: " + err + "\n" + sink.substr(0, 2000)).c_str());
    return;
  }
  for (auto _ : state) {
    sink.clear();
    PrepareMachineForLink();
    m->srcFileName = g_srcPath;
    if (Link31NWGM(game) != 0 || DspRegMry70NW(*m, "aaAssembledRegMry.txt") != 0) {
      con::SetCapture(nullptr);
      state.SkipWithError("link or report failed");
      return;
    }
  }
  con::SetCapture(nullptr);
}
BENCHMARK(BM_LinkAndReport30000Lines)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
