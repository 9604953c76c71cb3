// A memory image and registers (machine_input.h) through the machine's loop,
// run twice from the same start: once in one piece, once in pieces of a few
// instructions and then of more, with a look before each instruction. Both
// stop after the same budget of steps and must leave the same machine, the
// same end and the same output. IN reads the lines of the input, OUT writes
// into a string.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "comet2/comet2.h"
#include "comet2/control.h"
#include "comet2/run.h"
#include "fuzz_support.h"
#include "machine_input.h"
#include "records/singletons.h"

namespace {

constexpr uint64_t kStepBudget = 30000;
// OUT may write up to 65535 characters an instruction: the run is stopped
// once this many have been written.
constexpr size_t kOutBudget = 1 << 20;

int32_t Cell(uint16_t v, bool signExtend) {
  return signExtend ? static_cast<int32_t>(static_cast<int16_t>(v)) : static_cast<int32_t>(v);
}

void Load(const fuzz::MachineInput& in) {
  const bool sx = (in.control / 6) % 2 == 1;
  for (int k = 0; k < 8; ++k) m->GR[k] = Cell(in.gr[k], sx);
  m->Fovf = in.flags & 1;
  m->Fsign = (in.flags >> 1) & 1;
  m->Fzero = (in.flags >> 2) & 1;
  m->SP = 0xFFFF - (in.stackDepth % 512);
  m->dispLang = (in.control / 3) % 2;
  b->MaxMemory = m->tMaxMemory = in.size;
  for (const fuzz::MachinePiece& p : in.pieces) {
    for (size_t k = 0; k < p.words.size() && p.adr + k < kMemoryCells; ++k) m->Memory[p.adr + k] = Cell(p.words[k], sx);
  }
}

struct Outcome {
  RunEnd end = RunEnd::Running;
  uint64_t steps = 0;
  std::string message;
  std::u16string output;
};

Outcome Run(const fuzz::MachineInput& in, RunVariant variant, bool pieces) {
  Outcome o;
  size_t nextLine = 0;
  MachineIO io;
  io.readLine = [&]() -> std::optional<std::string> {
    if (nextLine >= in.lines.size()) return std::nullopt;
    return in.lines[nextLine++];
  };
  io.writeOut = [&](const std::u16string& text) {
    o.output += text;
    if (o.output.size() > kOutBudget) ControlledRun::RequestInterrupt();
  };
  SetMachineIO(&io);
  ControlledRun run(*m, variant);
  if (pieces) {
    // Pieces of 1, 1, 2, 3, 4, 6, ... steps: each piece clears the loop's
    // table of decoded words, so pieces of a fixed small size would spend
    // the budget of time on that.
    while (run.Steps() < kStepBudget &&
           run.Go(std::min<uint64_t>(run.Steps() / 2 + 1, kStepBudget - run.Steps()),
                  [](const Tcomet2&) { return true; }) == RunEnd::Running) {
    }
  } else {
    run.Go(kStepBudget);
  }
  SetMachineIO(nullptr);
  o.end = run.End();
  o.steps = run.Steps();
  o.message = run.Message();
  return o;
}

bool SameMachine(const Tcomet2& x, const Tcomet2& y) {
  return x.GR == y.GR && x.PR == y.PR && x.SP == y.SP && x.Fovf == y.Fovf && x.Fsign == y.Fsign &&
         x.Fzero == y.Fzero && x.callDepth == y.callDepth && x.Memory == y.Memory && x.execCount == y.execCount &&
         x.stackArea == y.stackArea;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  fuzz::Initialize(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::EnterScratch();
  static std::unique_ptr<Tcomet2> start = std::make_unique<Tcomet2>();
  static std::unique_ptr<Tcomet2> first = std::make_unique<Tcomet2>();
  const fuzz::MachineInput in = fuzz::ParseMachineInput(data, size);
  const RunVariant variant = static_cast<RunVariant>(in.control % 3);
  fuzz::Fresh(fuzz::ModeOf(0), 1);
  Load(in);
  *start = *m;

  const Outcome one = Run(in, variant, false);
  RunStatistics(*m);
  *first = *m;

  *m = *start;
  const Outcome many = Run(in, variant, true);
  RunStatistics(*m);

  if (one.end != many.end || one.steps != many.steps) fuzz::Fail("a run in pieces ended elsewhere");
  if (one.message != many.message) fuzz::Fail("a run in pieces says another stop");
  if (one.output != many.output) fuzz::Fail("a run in pieces wrote another output");
  if (!SameMachine(*first, *m)) fuzz::Fail("a run in pieces left another machine");
  if (one.end == RunEnd::Running && one.steps != kStepBudget) fuzz::Fail("a paused run did not use its budget");
  if (!fuzz::IsValidUtf8(one.message)) fuzz::Fail("a stop message is not UTF-8");
  fuzz::CheckConsole();
  return 0;
}
