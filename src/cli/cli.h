// drillasm-cli: the second front end of the library, for teachers, scripts
// and editors. Its commands check, run, trace and debug files with exactly
// the diagnostics, machine and reports that the menu program gives them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "comet2/comet2.h"
#include "comet2/control.h"
#include "records/mode.h"
#include "shell/session.h"

namespace cli {

inline constexpr const char* kVersion = "4.4.5";

struct Options {
  std::string command;  // "check", "run", "trace", "debug"
  std::vector<std::string> files;
  int lang = 1;                 // 0 Japanese, 1 English
  std::string mode = "NWW";
  bool json = false;
  bool werror = false;
  std::string input;            // --input: "" none, "-" standard input
  bool inputGiven = false;
  uint64_t maxSteps = 0;        // 0: no limit
  std::string reports;          // --reports DIR, "" none
  bool color = false;
};

// The exit statuses, in the order in which several files decide the status.
enum Status : int { kOk = 0, kErrors = 1, kUsage = 2, kMachineStop = 3, kStepLimit = 4 };

// The status of several files: the first of 2, 1, 3, 4 that any earned, else 0.
int Combine(int a, int b);

// The kind word of a diagnostic, coloured when asked.
std::string KindWord(int kind, bool color);

// One file's lines in text form: its diagnostics and its counts.
std::string FileText(const std::string& file, const session::Assembled& a, bool color);
// One file's object in the JSON document (without "run").
nlohmann::ordered_json FileJson(const std::string& file, const session::Assembled& a);
// The whole document around the files.
std::string Document(const Options& o, const nlohmann::ordered_json& files);

// The status a checked file earns.
int CheckStatus(const session::Assembled& a, bool werror);

// The run of an assembled file (the machine holds its image), shared by run,
// trace and debug.
using LineReader = std::function<std::optional<std::string>()>;
struct RunOutcome {
  RunEnd end = RunEnd::Running;
  uint64_t steps = 0;
  std::string message;  // the machine's own sentences of its stop
  std::string output;   // what OUT wrote (kept for JSON only)
};
// Runs from the start to its end or --max-steps, IN reading the lines that
// `input()` gives from the first; `before` sees each instruction. Writes the
// reports of --reports.
RunOutcome RunAssembled(const Options& o, const std::string& file, const std::function<LineReader()>& input,
                        const std::function<bool(const Tcomet2&)>& before);
// DIR/<stem>.<which>.txt
std::string ReportPath(const std::string& dir, const std::string& file, const char* which);
// The summary block of a run in text, and its JSON object.
std::string SummaryText(const std::string& file, const RunOutcome& r);
nlohmann::ordered_json RunJson(const RunOutcome& r);

int Check(const Options& o);
int Run(const Options& o);
int Trace(const Options& o);
int Debug(const Options& o);

}  // namespace cli
