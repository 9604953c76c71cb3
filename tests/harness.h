// End-to-end harness: runs the drillasm binary in a fresh scratch directory
// with scripted standard input and collects what it printed and left behind.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace e2e {

struct RunResult {
    std::string out;      // stdout and stderr, merged in the order written
    int status = -1;      // exit status; -1 when the process died by a signal
    bool signaled = false;
    bool timed_out = false;  // killed by the harness after timeout_seconds
    std::map<std::string, std::string> files;  // every regular file left, relative path -> bytes
    std::string dir;      // the scratch directory (removed unless E2E_KEEP is set)
};

struct RunSpec {
    std::string ini;      // content of drillasm.ini; if `no_ini` true, no file is written
    bool no_ini = false;
    std::string input;    // bytes fed to standard input, then end of file
    std::map<std::string, std::string> files;  // extra files (relative path -> bytes), subfolders created
    std::vector<std::string> executables = {};  // of `files`, those made executable (mode 0755)
    // Extra environment. Defaults: EDITOR=cat, SOURCE_DATE_EPOCH=0, LANG=C.UTF-8;
    // VISUAL, LC_ALL, DISPLAY and WAYLAND_DISPLAY unset. Entries here override them.
    std::vector<std::pair<std::string, std::string>> env;
    double timeout_seconds = 20;
    // Program and arguments to run; empty means the drillasm binary alone.
    std::vector<std::string> argv;
};

RunResult run(const RunSpec& spec);

// Whole file as bytes; throws std::runtime_error when it cannot be read.
std::string read_file(const std::string& path);

// Non-overlapping occurrences of `needle`; 0 for an empty needle.
std::size_t count_occurrences(const std::string& haystack, const std::string& needle);

// A drillasm.ini laid out as the default file: FightFunc=`mode`; lang 1 English
// (LangStr=ENU, LangInt=1), 0 Japanese (JPN, 0); `extra` ("Key=value\n" lines)
// goes at the end of [Mode].
std::string Ini(std::string mode = "NWW", int lang = 1, std::string extra = "");

// Absolute path of a file in the source tree (e.g. "examples/src/pn1000.txt").
std::string source_path(const std::string& relative);

}  // namespace e2e
