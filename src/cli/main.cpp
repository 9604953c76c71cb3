// drillasm-cli: arguments, the choice of command, the exit status.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <string>

#include "cli/cli.h"
#include "records/console.h"

namespace {

// Japanese when the first of LC_ALL, LC_MESSAGES and LANG that is set begins
// with "ja".
int DefaultLang() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* v = std::getenv(name);
    if (v != nullptr && *v != '\0') return std::string(v).rfind("ja", 0) == 0 ? 0 : 1;
  }
  return 1;
}

bool ColorOf(const std::string& when) {
  if (when == "always") return true;
  if (when == "never") return false;
  const char* noColor = std::getenv("NO_COLOR");
  return ::isatty(1) == 1 && (noColor == nullptr || *noColor == '\0');
}

// The help of a command, its usage line naming the program.
std::string HelpOf(CLI::App* app, CLI::App* sub) {
  std::string h = sub == app ? app->help() : sub->help();
  const std::string usage = "Usage: ";
  size_t at = h.find(usage);
  if (sub != app && at != std::string::npos) h.insert(at + usage.size(), "drillasm-cli ");
  return h;
}

bool Given(CLI::App* c, const std::string& name) {
  const CLI::Option* opt = c->get_option_no_throw(name);
  return opt != nullptr && opt->count() > 0;
}

}  // namespace

int main(int argc, char** argv) {
  cli::Options o;
  CLI::App app{"drillasm-cli: check and run CASL II files, trace and debug a run on the simulated COMET II",
               "drillasm-cli"};
  app.set_version_flag("--version", std::string("drillasm-cli ") + cli::kVersion);
  app.require_subcommand(1, 1);
  app.footer("Exit status: 0 all assembled (and ended), 1 errors, 2 usage or unreadable file, "
             "3 machine stop, 4 step limit.");

  std::string lang = DefaultLang() == 0 ? "ja" : "en";
  std::string format = "text";
  std::string color = "auto";
  uint64_t maxSteps = 100000000;
  bool maxStepsGiven = false;

  auto common = [&](CLI::App* c, bool many) {
    c->add_option("--lang", lang, "language of the diagnostics and the machine's messages")
        ->check(CLI::IsMember({"en", "ja"}));
    c->add_option("--mode", o.mode, "the mode, with its own limits and texts")
        ->check(CLI::IsMember({"NWW", "WP", "AP", "NA", "NaW", "NH"}));
    c->add_option("--format", format, "text for people, json for programs")->check(CLI::IsMember({"text", "json"}));
    c->add_option("--color", color, "colour the kind of a diagnostic")
        ->check(CLI::IsMember({"auto", "always", "never"}));
    c->add_flag("--werror", o.werror, "warnings count as errors for the exit status");
    if (many) {
      c->add_option("files", o.files, "source files")->required();
    } else {
      c->add_option("file", o.files, "source file")->required()->expected(1);
    }
  };
  auto running = [&](CLI::App* c) {
    c->add_option("--input", o.input, "lines that IN reads, one per IN; - is standard input");
    c->add_option("--max-steps", maxSteps, "stop a run after N instructions; 0 is no limit")
        ->check(CLI::NonNegativeNumber);
    c->add_option("--reports", o.reports, "write the two reports of each run into this folder (it must exist)")
        ->check(CLI::ExistingDirectory);
  };
  CLI::App* check = app.add_subcommand("check", "assemble only, print the diagnostics");
  common(check, true);
  CLI::App* run = app.add_subcommand("run", "assemble, then run each clean file");
  common(run, true);
  running(run);
  CLI::App* trace = app.add_subcommand("trace", "run one file, printing every executed instruction");
  common(trace, false);
  running(trace);
  CLI::App* debug = app.add_subcommand("debug", "run one file under an interactive debugger");
  common(debug, false);
  running(debug);

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    CLI::App* sub = app.get_subcommands().empty() ? &app : app.get_subcommands().front();
    con::Print(HelpOf(&app, sub));
    return cli::kOk;
  } catch (const CLI::CallForAllHelp&) {
    con::Print(app.help("", CLI::AppFormatMode::All));
    return cli::kOk;
  } catch (const CLI::CallForVersion&) {
    con::Print(std::string("drillasm-cli ") + cli::kVersion + "\n");
    return cli::kOk;
  } catch (const CLI::ParseError& e) {
    CLI::App* sub = app.get_subcommands().empty() ? &app : app.get_subcommands().front();
    con::PrintErr(std::string("drillasm-cli: ") + e.what() + "\n" + HelpOf(&app, sub));
    return cli::kUsage;
  }

  CLI::App* chosen = app.get_subcommands().front();
  o.command = chosen->get_name();
  o.lang = lang == "ja" ? 0 : 1;
  o.json = format == "json";
  o.color = !o.json && ColorOf(color);
  o.inputGiven = Given(chosen, "--input");
  maxStepsGiven = Given(chosen, "--max-steps");
  o.maxSteps = maxStepsGiven ? maxSteps : (o.command == "trace" ? 10000 : 100000000);

  try {
    if (o.command == "check") return cli::Check(o);
    if (o.command == "run") return cli::Run(o);
    if (o.command == "trace") return cli::Trace(o);
    return cli::Debug(o);
  } catch (const con::InputEnded&) {
    return cli::kOk;
  }
}
