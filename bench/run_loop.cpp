// The speed of the run loop: a hand-made memory image of two nested loops,
// run by Run3NW, reported as emulated instructions per second.
//
//   BM_RunLoop/1000   about 100 million instructions (the figure to quote)
//   BM_RunLoop/20     about 2 million, for a count under callgrind:
//     valgrind --tool=callgrind bench_run_loop --benchmark_filter='BM_RunLoop/20/'
//   BM_RunLoopFixed/1000  the same image in the Fixed run, whose loop is the
//     other instantiation of the same template
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "comet2/comet2.h"
#include "comet2/run.h"
#include "records/console.h"
#include "records/records.h"
#include "records/singletons.h"

namespace {

constexpr int32_t kInner = 15000;  // passes of the inner loop per outer pass

// The image, in words:
//   0  START            #0000
//   1  LAD  GR3,OUTER   #1230 OUTER
//   3  LOOP1 LAD GR1,INNER   #1210 INNER
//   5  LOOP2 LD   GR4,DATA,GR6 #1046 DATA
//   7        ADDA GR5,GR4    #2454
//   8        LAD  GR6,0,GR7  #1267 0      (GR7 is 0: GR6 stays 0)
//  10        AND  GR4,MASK   #3040 MASK
//  12        CPA  GR4,GR0    #4440
//  13        SUBA GR1,ONE    #2110 ONE
//  15        JNZ  LOOP2      #6200 5
//  17        SUBA GR3,ONE    #2130 ONE
//  19        JNZ  LOOP1      #6200 3
//  21        RET             #8100
//  22  ONE  DC 1
//  23  DATA DC 3
//  24  MASK DC #00FF
// The inner loop has 7 instructions: 105 million for 1000 outer passes.
void BuildImage(int32_t outer) {
  ResetComet2(*m);
  const int32_t words[] = {0x0000, 0x1230, outer, 0x1210, kInner, 0x1046, 23, 0x2454, 0x1267, 0,
                           0x3040, 24,     0x4440, 0x2110, 22,     0x6200, 5,  0x2130, 22,     0x6200,
                           3,      0x8100, 1,      3,      0x00FF};
  int32_t a = 0;
  for (int32_t w : words) m->Memory[a++] = w;
  b->MaxMemory = a;
  m->tMaxMemory = a;
  m->dispLang = 1;
}

void RunBench(benchmark::State& state, RunVariant variant) {
  const int32_t outer = static_cast<int32_t>(state.range(0));
  std::string sink;
  int64_t executed = 0;
  for (auto _ : state) {
    state.PauseTiming();
    BuildImage(outer);
    sink.clear();
    con::SetCapture(&sink);
    state.ResumeTiming();
    if (variant == RunVariant::Wide) {
      Run3NW(*m);
    } else {
      RunComet2(*m, variant);
    }
    state.PauseTiming();
    con::SetCapture(nullptr);
    for (int32_t c : m->execCount) executed += c;
    state.ResumeTiming();
  }
  state.SetItemsProcessed(executed);
  state.counters["emulated_instr_per_sec"] =
      benchmark::Counter(static_cast<double>(executed), benchmark::Counter::kIsRate);
  state.counters["emulated_instr_per_run"] =
      static_cast<double>(executed) / static_cast<double>(state.iterations());
}

void BM_RunLoop(benchmark::State& state) { RunBench(state, RunVariant::Wide); }
void BM_RunLoopFixed(benchmark::State& state) { RunBench(state, RunVariant::Fixed); }

BENCHMARK(BM_RunLoop)->Arg(1000)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RunLoop)->Arg(20)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RunLoopFixed)->Arg(1000)->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
