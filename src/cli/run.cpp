// run and trace: assemble, then run each clean file with IN on the lines of
// --input and OUT on standard output; trace prints every instruction.
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "cli/cli.h"
#include "cli/input_lines.h"
#include "cli/machine_view.h"
#include "comet2/comet2.h"
#include "comet2/control.h"
#include "comet2/run.h"
#include "records/console.h"
#include "records/singletons.h"
#include "records/text.h"
#include "shell/session.h"

namespace cli {

namespace {

void OnInterrupt(int) { ControlledRun::RequestInterrupt(); }

int StatusOfEnd(RunEnd e) {
  if (e == RunEnd::End) return kOk;
  if (e == RunEnd::StepLimit) return kStepLimit;
  return kMachineStop;
}

}  // namespace

// The one run of an assembled file, shared by run and trace. `before`, when
// set, sees each instruction.
RunOutcome RunAssembled(const Options& o, const std::string& file, const std::function<LineReader()>& input,
                        const std::function<bool(const Tcomet2&)>& before) {
  RunOutcome out;
  const FightMode& mode = FightModeOf(o.mode);
  if (!o.reports.empty()) session::WriteReport(mode, ReportPath(o.reports, file, "assembled"), false);
  MachineIO io;
  io.readLine = input();
  io.writeOut = [&](const std::u16string& text) {
    std::string utf8 = U16ToUtf8(text);
    utf8 += '\n';
    // Only the JSON document shows the text again: a text run keeps none of
    // it, so that a long run of OUT does not pile it up in memory.
    if (o.json) out.output += utf8;
    if (!o.json && o.command == "run") con::Print(utf8);
  };
  SetMachineIO(&io);
  // The machine's own notes while it runs are the menu program's console text.
  con::SetDiscard();
  auto previous = std::signal(SIGINT, OnInterrupt);
  {
    ControlledRun run(*m, mode.run);
    run.Go(o.maxSteps, before);
    out.end = run.End();
    out.steps = run.Steps();
    out.message = run.Message();
  }
  std::signal(SIGINT, previous);
  SetMachineIO(nullptr);
  if (out.end == RunEnd::Running) out.end = RunEnd::StepLimit;
  RunStatistics(*m);
  if (!o.reports.empty()) session::WriteReport(mode, ReportPath(o.reports, file, "resultant"), true);
  return out;
}

std::string ReportPath(const std::string& dir, const std::string& file, const char* which) {
  std::string stem = file;
  size_t slash = stem.find_last_of('/');
  if (slash != std::string::npos) stem = stem.substr(slash + 1);
  size_t dot = stem.find_last_of('.');
  if (dot != std::string::npos && dot > 0) stem = stem.substr(0, dot);
  return dir + "/" + stem + "." + which + ".txt";
}

std::string SummaryText(const std::string& file, const RunOutcome& r) {
  std::string s = file + ": run: " + RunEndName(r.end) + ", " + std::to_string(r.steps) +
                  (r.steps == 1 ? " step\n" : " steps\n");
  if (!r.message.empty()) {
    std::string msg = r.message;
    while (!msg.empty() && (msg.back() == '\n' || msg.back() == ' ')) msg.pop_back();
    for (char& c : msg) c = c == '\n' ? ' ' : c;
    s += "  " + msg + "\n";
  }
  s += "  " + RegistersText(*m) + "\n";
  return s;
}

nlohmann::ordered_json RunJson(const RunOutcome& r) {
  nlohmann::ordered_json j;
  j["end"] = RunEndName(r.end);
  j["message"] = r.message;
  j["steps"] = r.steps;
  j["output"] = r.output;
  nlohmann::ordered_json regs;
  regs["PR"] = m->PR & 0xFFFF;
  for (int k = 0; k < 8; ++k) regs["GR" + std::to_string(k)] = m->GR[k] & 0xFFFF;
  regs["SP"] = m->SP & 0xFFFF;
  j["registers"] = regs;
  j["flags"] = {{"OF", m->Fovf}, {"SF", m->Fsign}, {"ZF", m->Fzero}};
  return j;
}

int Run(const Options& o) {
  const FightMode& mode = FightModeOf(o.mode);
  InputLines input(o, false);
  if (!input.Error().empty()) {
    con::PrintErr(input.Error());
    return kUsage;
  }
  int status = kOk;
  nlohmann::ordered_json files = nlohmann::ordered_json::array();
  for (const std::string& file : o.files) {
    session::Assembled a = session::AssembleFile(file, mode, o.lang);
    int st = CheckStatus(a, o.werror);
    nlohmann::ordered_json f = FileJson(file, a);
    if (!o.json) con::Print(FileText(file, a, o.color));
    if (a.assembled) {
      RunOutcome r = RunAssembled(o, file, [&] { return input.Reader(); }, nullptr);
      st = Combine(st, StatusOfEnd(r.end));
      if (o.json) {
        f["run"] = RunJson(r);
      } else {
        con::Print(SummaryText(file, r));
      }
    }
    status = Combine(status, st);
    if (o.json) files.push_back(f);
  }
  if (o.json) con::Print(Document(o, files));
  return status;
}

int Trace(const Options& o) {
  const FightMode& mode = FightModeOf(o.mode);
  InputLines input(o, false);
  if (!input.Error().empty()) {
    con::PrintErr(input.Error());
    return kUsage;
  }
  const std::string& file = o.files.front();
  session::Assembled a = session::AssembleFile(file, mode, o.lang);
  if (!a.assembled) {
    if (o.json) {
      con::Print(Document(o, nlohmann::ordered_json::array({FileJson(file, a)})));
    } else {
      con::Print(FileText(file, a, o.color));
    }
    return CheckStatus(a, o.werror) == kOk ? kErrors : CheckStatus(a, o.werror);
  }
  Tracer tracer(o.json);
  RunOutcome r = RunAssembled(o, file, [&] { return input.Reader(); },
                              [&](const Tcomet2& mc) { return tracer.Before(mc); });
  tracer.Finish(*m);
  if (o.json) {
    nlohmann::ordered_json end = RunJson(r);
    end["file"] = file;
    con::Print(end.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
  } else {
    con::Print(SummaryText(file, r));
  }
  return StatusOfEnd(r.end);
}

}  // namespace cli
