// drillasm-cli: the second front end of the library, for teachers, scripts
// and editors. Its commands check, run, trace and debug files with exactly
// the diagnostics, machine and reports that the menu program gives them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

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

int Check(const Options& o);
int Run(const Options& o);
int Trace(const Options& o);
int Debug(const Options& o);

}  // namespace cli
