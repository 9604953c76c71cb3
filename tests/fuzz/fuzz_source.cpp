// Source bytes through the whole pass of the menu program in one of the six
// modes: encoding detection, loading, every analysis stage behind its gate,
// the link, the assembled report, a run of the image with a budget, and the
// resultant report. When that run ended within its budget (or the file did
// not link), the menu program itself then takes the file through its main
// menu and its own pass: the closing remarks, the warnings menu, its run.
//
// Input: byte 0 chooses the mode (byte % 6), the language ((byte / 6) % 2:
// 0 Japanese, 1 English) and whether the run is watched before each
// instruction and goes in pieces ((byte / 12) % 2); the rest is the source
// file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "comet2/control.h"
#include "comet2/run.h"
#include "fuzz_support.h"
#include "records/console.h"
#include "records/singletons.h"
#include "records/stages.h"
#include "reports/report.h"
#include "shell/session.h"
#include "shell/shell.h"

namespace {

// The run stops after this many instructions, or once OUT has written this
// many characters (an OUT of a long text in a loop would otherwise take
// seconds within the budget of steps).
constexpr uint64_t kStepBudget = 100000;
constexpr size_t kOutBudget = 1 << 18;

const char* const kFile = "src.cas";

void Report(const FightMode& mode, const std::string& name) {
  if (mode.countColumn) {
    DspRegMry70NW(*m, name);
  } else {
    DspRegMry68NA(*m, name);
  }
}

// The menu program's own pass over the file: the main menu chooses it, the
// pass analyses, links, writes the reports and runs it (the warnings menu,
// when there are warnings, is told to run), and the next read of the main
// menu meets the end of the input, which ends the program.
void MenuPass(const FightMode& mode, int lang, bool warned) {
  fuzz::Fresh(mode, lang);
  con::SetInputForTest(std::string("\n1\n") + kFile + "\n" + (warned ? "1\n" : ""), false);
  TGame game;
  try {
    Fight(game, mode);
  } catch (const con::InputEnded&) {
    con::SetDiscard();
    return;
  }
  fuzz::Fail("the menu program's pass did not end at the end of its input");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  fuzz::Initialize(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::EnterScratch();
  if (size == 0) return 0;
  const FightMode& mode = fuzz::ModeOf(data[0]);
  const int lang = (data[0] / fuzz::kModes) % 2;
  const bool watched = (data[0] / (2 * fuzz::kModes)) % 2 == 1;
  const std::string file = kFile;
  fuzz::WriteFile(file, data + 1, size - 1);

  fuzz::Fresh(mode, lang, false);
  const session::Assembled a = session::AssembleFile(file, mode, lang);
  con::SetDiscard();
  if (!a.readable) fuzz::Fail("a written file is not readable: " + a.readError);
  if (a.assembled && a.errors != 0) fuzz::Fail("a file with errors was linked");
  for (const session::Diagnostic& d : a.diagnostics) {
    if (!fuzz::IsValidUtf8(d.text)) fuzz::Fail("a diagnostic is not UTF-8");
  }

  bool ended = false;
  if (a.assembled) {
    TDiagBase names;
    DspReportHintNW(lang, ReportKind::Assembled, names.AssembledFileName);
    Report(mode, names.AssembledFileName);

    size_t written = 0;
    MachineIO io;
    io.readLine = [] { return std::optional<std::string>(); };
    io.writeOut = [&](const std::u16string& text) {
      written += text.size();
      if (written > kOutBudget) ControlledRun::RequestInterrupt();
    };
    SetMachineIO(&io);
    {
      ControlledRun run(*m, mode.run);
      if (watched) {
        // Pieces of 1, 1, 2, 3, 4, 6, ... steps (each piece clears the
        // loop's table of decoded words, which small pieces would repeat
        // beyond the budget of time).
        while (run.Steps() < kStepBudget &&
               run.Go(std::min<uint64_t>(run.Steps() / 2 + 1, kStepBudget - run.Steps()),
                      [](const Tcomet2&) { return true; }) == RunEnd::Running) {
        }
      } else {
        run.Go(kStepBudget);
      }
      // The run ended on its own (RET, a stop of the machine) within the
      // budgets, and so the menu program's run of the file ends too.
      ended = run.End() != RunEnd::Running && run.End() != RunEnd::Interrupted;
    }
    SetMachineIO(nullptr);
    RunStatistics(*m);
    DspReportHintNW(lang, ReportKind::Resultant, names.ResultantFileName);
    Report(mode, names.ResultantFileName);
  }
  if (!a.assembled || ended) MenuPass(mode, lang, a.warnings > 0);
  fuzz::CheckConsole();
  return 0;
}
