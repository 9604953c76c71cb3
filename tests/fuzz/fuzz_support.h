// What every fuzz target shares: a scratch folder to work in, every object of
// the library back to a fresh start before each input, a console that neither
// writes to standard output nor reads standard input (and a check that it
// did not), the choice of a mode by a byte, and the checks of well-formed
// text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "records/mode.h"
#include "records/text.h"

namespace fuzz {

// Called from LLVMFuzzerInitialize. Makes every path argument absolute (the
// corpus folders, -dict=, -artifact_prefix= and the like) and, without an
// -artifact_prefix, sends findings to the folder the program was started in;
// makes a fresh scratch folder (in TMPDIR, else /dev/shm, else /tmp), removed
// at exit. Standard output becomes a file of the scratch folder and standard
// input a pipe holding one byte, so that CheckConsole can tell whether the
// library touched either.
void Initialize(int* argc, char*** argv);

// Called first for every input: moves into the scratch folder (once), so that
// the files the library writes (reports, the settings file) never land beside
// the sources. It is not done in Initialize, because libFuzzer starts the
// program again by the name it was started with (-fork, -jobs, -merge,
// -minimize_crash), which may be relative to the first folder.
void EnterScratch();

// Before each input: every object of the library as a fresh program has it,
// in `mode` and language `lang` (0 Japanese, 1 English); the console's text
// goes nowhere, a read of the console meets an ended input (a menu read ends
// with con::InputEnded, IN stores the count 0), and the machine's IN and OUT
// go to the console until a target gives them a MachineIO. `start` false
// leaves out session::FreshStart, for a target whose next call begins with it
// (session::AssembleFile and the commands of drillasm-cli do).
void Fresh(const FightMode& mode, int lang, bool start = true);

// After each input: traps when anything reached standard output or standard
// input was read.
void CheckConsole();

// Stops the process with a message: the fuzzer records the input.
[[noreturn]] void Fail(const std::string& what);

// The six modes, a byte choosing one (byte % 6).
constexpr int kModes = 6;
const FightMode& ModeOf(uint8_t byte);

// Writes the bytes into the file `name` of the scratch folder.
void WriteFile(const std::string& name, const uint8_t* data, size_t size);
void WriteFile(const std::string& name, std::string_view text);

// The text of `data` after the first occurrence of `sep`, and before it.
// Without `sep`, all of data is the head and the rest is empty.
struct Split {
  std::string_view head, rest;
};
Split SplitAt(std::string_view data, std::string_view sep);

bool IsValidUtf8(std::string_view s);
// No lone surrogate.
bool IsWellFormedUtf16(wview s);

}  // namespace fuzz
