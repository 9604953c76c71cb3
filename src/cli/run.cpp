// run, trace and debug: the machine's part of the front end.
#include "cli/cli.h"
#include "records/console.h"

namespace cli {

int Run(const Options&) {
  con::PrintErr("drillasm-cli: run is not built yet\n");
  return kUsage;
}

int Trace(const Options&) {
  con::PrintErr("drillasm-cli: trace is not built yet\n");
  return kUsage;
}

int Debug(const Options&) {
  con::PrintErr("drillasm-cli: debug is not built yet\n");
  return kUsage;
}

}  // namespace cli
