// drillasm-cli's check, run and trace for arbitrary source bytes, in text and
// in JSON.
//
// Input: byte 0 chooses the mode (byte % 6) and, from c = byte / 6, the
// language (c % 2: 0 Japanese, 1 English), the command ((c / 2) % 3: check,
// run, trace), colour ((c / 6) % 2) and --werror ((c / 12) % 2). The rest is
// up to three parts divided by kSeparator: file A, file B and the lines of
// --input (without a third part there is no --input: IN meets the end of
// input).
//
// check and run are given the files A, B, A. Every file starts from the state
// of a fresh program, so A's part of the output must be the same both times:
// the JSON document (which must parse) holds two equal objects for A, and the
// text begins and ends with what the command prints for A alone. A line of
// check's text begins with the file's name. trace in JSON is one object a
// line.
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "cli/cli.h"
#include "comet2/control.h"
#include "fuzz_support.h"
#include "records/console.h"
#include "records/singletons.h"

namespace {

constexpr std::string_view kSeparator = "\n====\n";

// Instructions a run may execute, and characters OUT may write in a run: an
// OUT writes up to 65535 characters, and the text and the JSON document hold
// all of them, several times over for the checks of an input.
constexpr uint64_t kMaxSteps = 200;
constexpr size_t kOutBudget = 16384;

enum Command { kCheck, kRun, kTrace };

struct Result {
  int status = 0;
  std::string out;
};

Result Do(cli::Options o, Command c, const FightMode& mode, const std::vector<std::string>& files, bool json) {
  o.files = files;
  o.json = json;
  if (json) o.color = false;
  fuzz::Fresh(mode, o.lang, false);
  Result r;
  con::SetFrontCapture(&r.out);
  switch (c) {
    case kCheck: r.status = cli::Check(o); break;
    case kRun: r.status = cli::Run(o); break;
    case kTrace: r.status = cli::Trace(o); break;
  }
  con::SetFrontCapture(nullptr);
  con::SetDiscard();
  return r;
}

// The lines of --input, as drillasm-cli reads them.
std::vector<std::string> InputLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const size_t nl = text.find('\n');
    std::string line(text.substr(0, nl));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
    text.remove_prefix(nl == std::string_view::npos ? text.size() : nl + 1);
  }
  return lines;
}

// The steps a run of `file` may take (at most kMaxSteps) so that OUT writes no
// more than kOutBudget characters: the file is assembled and run once on its
// own with OUT counting.
uint64_t StepsWithin(const std::string& file, const FightMode& mode, int lang, const std::vector<std::string>& in) {
  fuzz::Fresh(mode, lang, false);
  const session::Assembled a = session::AssembleFile(file, mode, lang);
  con::SetDiscard();
  if (!a.assembled) return kMaxSteps;
  size_t next = 0, written = 0;
  MachineIO io;
  io.readLine = [&]() -> std::optional<std::string> {
    if (next >= in.size()) return std::nullopt;
    return in[next++];
  };
  io.writeOut = [&](const std::u16string& text) { written += text.size() + 1; };
  SetMachineIO(&io);
  ControlledRun run(*m, mode.run);
  run.Go(kMaxSteps, [&](const Tcomet2&) { return written <= kOutBudget; });
  SetMachineIO(nullptr);
  // Paused behind the instruction that went beyond: the steps before it (at
  // least one, as 0 would be no limit).
  if (written > kOutBudget) return std::max<uint64_t>(run.Steps(), 2) - 1;
  return kMaxSteps;
}

nlohmann::json Parse(const std::string& text, const char* what) {
  try {
    return nlohmann::json::parse(text);
  } catch (const nlohmann::json::exception& e) {
    fuzz::Fail(std::string(what) + " is not JSON: " + e.what());
  }
}

bool StartsWith(std::string_view s, std::string_view head) { return s.substr(0, head.size()) == head; }
bool EndsWith(std::string_view s, std::string_view tail) {
  return s.size() >= tail.size() && s.substr(s.size() - tail.size()) == tail;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  fuzz::Initialize(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::EnterScratch();
  ::mkdir("reports", 0700);  // where run writes the reports (it exists after the first input)
  if (size == 0) return 0;
  const FightMode& mode = fuzz::ModeOf(data[0]);
  const int c = data[0] / fuzz::kModes;
  const Command command = static_cast<Command>((c / 2) % 3);

  const std::string_view all(reinterpret_cast<const char*>(data + 1), size - 1);
  const fuzz::Split first = fuzz::SplitAt(all, kSeparator);
  const fuzz::Split second = fuzz::SplitAt(first.rest, kSeparator);
  const bool hasInput = first.rest.find(kSeparator) != std::string_view::npos;
  fuzz::WriteFile("a.cas", first.head);
  fuzz::WriteFile("b.cas", second.head);
  if (hasInput) fuzz::WriteFile("in.txt", second.rest);

  cli::Options o;
  o.command = command == kCheck ? "check" : command == kRun ? "run" : "trace";
  o.lang = c % 2;
  o.mode = mode.name;
  o.color = (c / 6) % 2 == 1;
  o.werror = (c / 12) % 2 == 1;
  o.inputGiven = hasInput;
  o.input = hasInput ? "in.txt" : "";
  o.reports = command == kRun ? "reports" : "";
  const std::vector<std::string> lines = InputLines(hasInput ? second.rest : std::string_view());
  o.maxSteps = StepsWithin("a.cas", mode, o.lang, lines);
  if (command == kRun) o.maxSteps = std::min(o.maxSteps, StepsWithin("b.cas", mode, o.lang, lines));

  if (command == kTrace) {
    const Result j = Do(o, command, mode, {"a.cas"}, true);
    std::string_view rest = j.out;
    while (!rest.empty()) {
      const size_t nl = rest.find('\n');
      if (nl == std::string_view::npos) fuzz::Fail("trace's JSON does not end with a line end");
      if (!Parse(std::string(rest.substr(0, nl)), "a line of trace").is_object()) fuzz::Fail("a trace line is no object");
      rest.remove_prefix(nl + 1);
    }
    const Result t = Do(o, command, mode, {"a.cas"}, false);
    if (t.status != j.status) fuzz::Fail("trace's status depends on the format");
  } else {
    const std::vector<std::string> aba = {"a.cas", "b.cas", "a.cas"};
    const Result j = Do(o, command, mode, aba, true);
    const nlohmann::json doc = Parse(j.out, "the document");
    const nlohmann::json& files = doc.at("files");
    if (files.size() != 3) fuzz::Fail("the document does not hold three files");
    if (files[0] != files[2]) fuzz::Fail("the same file gave another object the second time");
    if (doc.at("mode") != mode.name) fuzz::Fail("the document names another mode");

    const Result alone = Do(o, command, mode, {"a.cas"}, false);
    const Result t = Do(o, command, mode, aba, false);
    if (!StartsWith(t.out, alone.out) || !EndsWith(t.out, alone.out))
      fuzz::Fail("the same file gave another text the second time");
    if (t.status != j.status) fuzz::Fail("the status depends on the format");
    if (command == kCheck) {
      std::string_view rest = t.out;
      while (!rest.empty()) {
        if (!StartsWith(rest, "a.cas:") && !StartsWith(rest, "b.cas:"))
          fuzz::Fail("a line of check does not begin with the file's name");
        const size_t nl = rest.find('\n');
        if (nl == std::string_view::npos) fuzz::Fail("check's text does not end with a line end");
        rest.remove_prefix(nl + 1);
      }
    }
  }
  fuzz::CheckConsole();
  return 0;
}
