// drillasm-cli's run inside the process: what a run prints and keeps of the
// text that OUT writes, in text and in JSON.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "cli/cli.h"
#include "records/console.h"

namespace {

// OUT in a loop that only the budget of steps ends.
const char* const kOutLoop =
    "LOOP    START\n"
    "AGAIN   OUT     MSG,LEN\n"
    "        JUMP    AGAIN\n"
    "MSG     DC      'AB'\n"
    "LEN     DC      2\n"
    "        END\n";

// A text run prints OUT's lines as they come and keeps none of them (a long
// run would otherwise hold all it ever printed); a JSON run prints nothing
// and keeps them for its document.
TEST(CliRunAssembled, OnlyJsonKeepsWhatOutWrote) {
  char tmpl[] = "/tmp/clirunXXXXXX";
  ASSERT_NE(::mkdtemp(tmpl), nullptr);
  const std::filesystem::path dir = tmpl;
  const std::string file = (dir / "loop.cas").string();
  std::ofstream(file) << kOutLoop;

  for (bool json : {false, true}) {
    SCOPED_TRACE(json ? "json" : "text");
    ASSERT_TRUE(session::AssembleFile(file, FightModeOf("NWW"), 1).assembled);
    cli::Options o;
    o.command = "run";
    o.json = json;
    o.maxSteps = 2000;
    std::string printed;
    con::SetFrontCapture(&printed);
    const cli::RunOutcome r = cli::RunAssembled(
        o, file, [] { return cli::LineReader([] { return std::optional<std::string>(); }); }, nullptr);
    con::SetFrontCapture(nullptr);
    con::SetCapture(nullptr);
    EXPECT_EQ(r.end, RunEnd::StepLimit);
    EXPECT_EQ(r.steps, 2000u);
    const std::string& lines = json ? r.output : printed;
    EXPECT_EQ(json ? printed : r.output, "");
    const size_t n = static_cast<size_t>(std::count(lines.begin(), lines.end(), '\n'));
    EXPECT_GT(n, 100u);
    std::string expected;
    for (size_t k = 0; k < n; ++k) expected += "AB\n";
    EXPECT_EQ(lines, expected);
  }
  std::filesystem::remove_all(dir);
}

}  // namespace
