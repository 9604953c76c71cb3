// The machine driven by a front end other than the menu program: IN and OUT
// on given lines and a given sink, a budget of steps, and a look before
// every instruction (for tracing and debugging). The menu program's run does
// not pass through any of this: a controlled run is a loop of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "comet2/comet2.h"
#include "records/mode.h"

// Where IN and OUT go. Without one (nullptr), the console, as in the menu
// program. With one, IN prints no prompt and takes the next line from
// readLine (nullopt: the end of input), and OUT hands its characters to
// writeOut instead of printing its heading and text.
struct MachineIO {
  std::function<std::optional<std::string>()> readLine;
  std::function<void(const std::u16string&)> writeOut;
};
void SetMachineIO(MachineIO* io);
MachineIO* CurrentMachineIO();

// How a run ended, or that it can go on.
enum class RunEnd : uint8_t {
  Running,       // paused between two instructions
  End,           // RET at the top level, or PR past 65535 after a wide jump
  PrLimit,       // PR above the ceiling
  Register,      // a register nibble above 7
  Nop,           // code #00 in a cell that is not 0
  UnknownCode,   // a code outside the instruction table
  LoadLimit,     // an operand address above the ceiling
  StoreGuard,    // the guard refused an indexed ST
  Exit,          // the stop word #8800
  RetError,      // RET with SP at #10000 or above
  Stack,         // POP, CALL or RET beyond the stack's storage
  StoreStorage,  // ST without an index beyond the memory's storage
  StepLimit,     // the budget of steps ran out
  Interrupted,   // RequestInterrupt was called
};

// The short name of an end: "end", "pr-limit", "register", "nop",
// "unknown-code", "load-limit", "store-guard", "exit", "ret-error", "stack",
// "store-storage", "step-limit", "interrupted" ("running" for Running).
const char* RunEndName(RunEnd e);

// A run of the loaded image from address 0, in the variant of a mode, that
// goes on in pieces. The start is that of the menu program's run (PR 0, the
// counts as the variant clears them) without its opening text; every stop
// writes the machine's own sentences, which Message() returns.
class ControlledRun {
 public:
  ControlledRun(Tcomet2& mc, RunVariant variant);
  ~ControlledRun();
  ControlledRun(const ControlledRun&) = delete;
  ControlledRun& operator=(const ControlledRun&) = delete;

  // Runs until the machine stops, `steps` more instructions have run (0: no
  // limit), RequestInterrupt, or `before` returns false; `before` sees the
  // machine before each instruction (its PR at that instruction). Returns
  // End() afterwards: Running when paused by the steps or by `before`.
  RunEnd Go(uint64_t steps, const std::function<bool(const Tcomet2&)>& before = nullptr);

  RunEnd End() const { return end_; }
  uint64_t Steps() const { return steps_; }
  // The machine's sentences of its stop (UTF-8), "" while running or at End.
  const std::string& Message() const { return message_; }

  // Asks a run in Go to stop before its next instruction; safe in a signal
  // handler.
  static void RequestInterrupt();

 private:
  Tcomet2& mc_;
  RunVariant variant_;
  RunEnd end_ = RunEnd::Running;
  uint64_t steps_ = 0;
  std::string message_;
  struct State;
  State* state_;
};
