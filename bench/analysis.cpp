// The line analysis of one large program: 30,000 lines, every line but
// START and END with a label of its own, through the label and opcode
// fields, the duplicate search, the splitting, the rules, the address pass
// and the note on unused labels. It should take well under a second.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "../tests/fresh_records.h"

#include "lines/scanner.h"
#include "operands/adr_const.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "records/stages.h"

namespace {

constexpr int kLines = 30000;

std::vector<wstr> Generate() {
  std::vector<wstr> v;
  v.reserve(kLines);
  v.push_back(u"PRG\tSTART");
  char buf[96];
  const char* const forms[] = {
      "L%05d\tLD\tGR1,L%05d,GR2", "L%05d\tADDA\tGR1,GR3", "L%05d\tST\tGR1,L%05d", "L%05d\tJZE\tL%05d",
      "L%05d\tLAD\tGR2,1,GR2",     "L%05d\tCPA\tGR1,L%05d", "L%05d\tPOP\tGR4",     "L%05d\tDC\t5,'AB'",
  };
  for (int i = 1; i < kLines - 1; ++i) {
    int target = (i * 7919) % (kLines - 2) + 1;  // forward and backward references
    std::snprintf(buf, sizeof buf, forms[i % 8], i, target);
    v.push_back(Utf8ToU16(buf));
  }
  v.push_back(u"\tEND");
  return v;
}

void Load(const std::vector<wstr>& lines) {
  FreshRecords();
  ResetAdrLookupNW();
  for (const wstr& l : lines) {
    SrcLineW s;
    s.rawStr = l;
    b->vecSrcW.push_back(std::move(s));
  }
  b->lineKazu = static_cast<int>(lines.size());
  PrgDataW p;
  p.prgFirstLine = 0;
  p.prgEndLine = static_cast<int>(lines.size()) - 1;
  p.PrgName = u"PRG";
  b->vecPrgW.push_back(p);
  b->SetPrgKazuInFile(1);
}

void BM_AnalyseLargeProgram(benchmark::State& state) {
  const std::vector<wstr> lines = Generate();
  std::string sink;
  con::SetCapture(&sink);
  SetLang(1);
  TDiagBase game;
  for (auto _ : state) {
    state.PauseTiming();
    Load(lines);
    sink.clear();
    state.ResumeTiming();
    CopyRawLinesNW();
    editNWB();
    CutCommentNW(0);
    Fight12NW(game);
    CkLabelInUseNW();
    Sum(game);
    if (game.ErrorKazu != 0) {
      con::SetCapture(nullptr);
      state.SkipWithError("the generated program has errors");
      std::fputs(sink.substr(0, 2000).c_str(), stderr);
      return;
    }
  }
  con::SetCapture(nullptr);
  state.SetItemsProcessed(state.iterations() * kLines);
}

BENCHMARK(BM_AnalyseLargeProgram)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
