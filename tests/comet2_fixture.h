// A machine loaded by hand for the tests of the run: words are put into
// Memory from address 0, the reserved size is set, and Run3NW runs with the
// console captured and the input fed from a string.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "comet2/comet2.h"
#include "comet2/run.h"
#include "records/console.h"
#include "records/records.h"
#include "records/singletons.h"

namespace comet2_test {

// A first word: code, r nibble, x nibble.
constexpr int32_t Op(int code, int r = 0, int x = 0) { return (code << 8) | (r << 4) | x; }

// The twelve words of the macro IN (svc 1) or OUT (svc 2) for a buffer and
// a length word.
inline std::vector<int32_t> Macro(int svc, int32_t buf, int32_t len) {
  return {0x7001, 0, 0x7002, 0, 0x1210, buf, 0x1220, len, 0xF000, svc, 0x7120, 0x7110};
}

class Comet2Test : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetComet2(*m);
    b->MaxMemory = 0;
    m->dispLang = 1;
    bootShown = 0;  // boot lines only where a test asks for them
  }
  void TearDown() override { con::SetCapture(nullptr); }

  // Puts words into Memory from `at`; the reserved size grows to cover them.
  void Load(const std::vector<int32_t>& words, int at = 0) {
    int a = at;
    for (int32_t w : words) m->Memory[a++] = w;
    if (b->MaxMemory < a) b->MaxMemory = a;
  }

  // Runs and returns what the run printed.
  std::string RunProgram(std::string_view input = "") {
    con::SetInputForTest(input);
    std::string out;
    con::SetCapture(&out);
    Run3NW(*m);
    con::SetCapture(nullptr);
    return out;
  }

  static bool Has(const std::string& out, std::string_view text) { return out.find(text) != std::string::npos; }
  static size_t Count(const std::string& out, std::string_view text) {
    size_t n = 0;
    for (size_t p = out.find(text); p != std::string::npos; p = out.find(text, p + text.size())) ++n;
    return n;
  }

  static constexpr std::string_view kEndE = "and it has come to an end of the program\nin ";
  static constexpr std::string_view kEndJ = "--> 終了\n";
};

}  // namespace comet2_test
