// Settings-file bytes through the reader and the writer of drillasm.ini.
//
// The bytes are read and written back three times over, each round as a fresh
// program would: a file this program wrote must read without a complaint of
// the parser and be valid UTF-8, and from the second round on the file must
// no longer change. (The first round may change it: a value the reader does
// not take is written back in its own form, and the silent flag is written as
// a truth value that the next reading leaves as it was.) An empty input is a
// missing file, for which the reader writes the defaults.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>

#include "fuzz_support.h"
#include "records/console.h"
#include "shell/shell.h"

namespace {

const std::string kFile = "drillasm.ini";

std::string Slurp() {
  std::ifstream in(kFile, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

// Reads and writes the file as a fresh program; returns the new bytes and the
// console text of the reading.
std::string Round(std::string& said) {
  fuzz::Fresh(fuzz::ModeOf(0), 1);
  said.clear();
  con::SetCapture(&said);
  ReadSettings(kFile);
  WriteSettings(kFile);
  con::SetDiscard();
  return Slurp();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  fuzz::Initialize(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::EnterScratch();
  if (size == 0) {
    ::unlink(kFile.c_str());
  } else {
    fuzz::WriteFile(kFile, data, size);
  }
  std::string said;
  const std::string first = Round(said);
  const std::string second = Round(said);
  if (said.find("Settings file " + kFile + ", line") != std::string::npos)
    fuzz::Fail("the parser refused a file that this program wrote:\n" + said);
  const std::string third = Round(said);
  if (!fuzz::IsValidUtf8(first) || !fuzz::IsValidUtf8(second)) fuzz::Fail("a written settings file is not UTF-8");
  if (third != second) fuzz::Fail("the settings file still changes in its third round");
  fuzz::CheckConsole();
  return 0;
}
