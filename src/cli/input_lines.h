// The lines that IN reads in a front end's run: those of --input (a file, or
// standard input read to its end), read once, each run reading them from the
// first; or, when `live`, the next line of standard input each time.
#pragma once

#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "cli/cli.h"
#include "records/console.h"

namespace cli {

class InputLines {
 public:
  // `live`: without a file, IN reads standard input as it comes (debug).
  InputLines(const Options& o, bool live) : live_(live && (!o.inputGiven || o.input == "-")) {
    if (!o.inputGiven || live_) return;
    if (o.input == "-") {
      std::optional<std::string> line;
      bool cut = false;
      while ((line = con::ReadLineForIn(1u << 20, cut))) lines_.push_back(*line);
      return;
    }
    struct stat st {};
    std::ifstream f(o.input, std::ios::binary);
    if (!f || ::stat(o.input.c_str(), &st) != 0 || S_ISDIR(st.st_mode)) {
      error_ = o.input + ": error: cannot read the input file\n";
      return;
    }
    for (std::string line; std::getline(f, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      lines_.push_back(line);
    }
  }
  const std::string& Error() const { return error_; }
  // A reader from the first line on.
  LineReader Reader() {
    next_ = 0;
    if (live_) {
      return []() -> std::optional<std::string> {
        bool cut = false;
        return con::ReadLineForIn(256, cut);
      };
    }
    return [this]() -> std::optional<std::string> {
      if (next_ >= lines_.size()) return std::nullopt;
      return lines_[next_++];
    };
  }

 private:
  bool live_;
  std::vector<std::string> lines_;
  size_t next_ = 0;
  std::string error_;
};

}  // namespace cli
