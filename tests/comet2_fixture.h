// A machine loaded by hand for the tests of the run: tables of small programs,
// put into Memory from address 0, with the parts of the machine to set before
// the run and to check after it; the run (Wide unless the program names its
// variant) runs with the console captured and the input fed from a string.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "harness.h"
#include "comet2/comet2.h"
#include "comet2/run.h"
#include "records/console.h"
#include "records/records.h"
#include "records/singletons.h"

namespace comet2_test {

// A first word: code, r nibble, x nibble.
constexpr int32_t Op(int code, int r = 0, int x = 0) { return (code << 8) | (r << 4) | x; }
constexpr int32_t kRet = 0x8100;

inline const std::string kEndE = "and it has come to an end of the program\nin ";
inline const std::string kEndJ = "--> 終了\n";

// A part of the machine by name: GR0-GR7, PR, SP, EA (effAdr), CD (callDepth),
// CMP (cmpResult), LANG (dispLang), MAX (b->MaxMemory), TMAX (tMaxMemory), BOOT<v> (the boot flag
// of variant v; BOOT alone is Wide's), M<a> (Memory), X<a> (execCount), S<i> (stackArea). F is the
// three flags as one number: Fovf * 100 + Fsign * 10 + Fzero.
inline int32_t& Part(const std::string& k) {
  size_t d = 0;
  while (d < k.size() && !std::isdigit(static_cast<unsigned char>(k[d]))) ++d;
  const std::string head = k.substr(0, d);
  const int n = d < k.size() ? std::stoi(k.substr(d)) : 0;
  if (head == "GR") return m->GR.at(n);
  if (head == "M") return m->Memory.at(n);
  if (head == "X") return m->execCount.at(n);
  if (head == "S") return m->stackArea.at(n);
  if (head == "BOOT" && n < kRunVariants) return bootShown[n];
  const std::map<std::string, int32_t*> scalars = {
      {"PR", &m->PR},          {"SP", &m->SP},           {"EA", &m->effAdr},     {"CD", &m->callDepth},
      {"CMP", &m->cmpResult},  {"LANG", &m->dispLang},   {"MAX", &b->MaxMemory}, {"TMAX", &m->tMaxMemory}};
  if (const auto it = scalars.find(head); it != scalars.end()) return *it->second;
  throw std::invalid_argument("no part " + k);
}
inline int32_t Get(const std::string& k) { return k == "F" ? m->Fovf * 100 + m->Fsign * 10 + m->Fzero : Part(k); }
inline void Set(const std::string& k, int32_t v) {
  if (k != "F") Part(k) = v;
  else m->Fovf = v / 100, m->Fsign = v / 10 % 10, m->Fzero = v % 10;
}

using Parts = std::vector<std::pair<std::string, int32_t>>;

// A program from address 0, the parts set before the run and checked after it,
// texts the output holds (the English ending when none is named) and must not
// hold, the typed input, the text the output ends with, and the variant of the
// run.
struct Prog {
  std::string what;
  std::vector<int32_t> words;
  Parts before, after;
  std::vector<std::string> has = {}, hasNot = {};
  std::string input = "", tail = "";
  RunVariant variant = RunVariant::Wide;
};

class Comet2Test : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetComet2(*m);
    m->dispLang = 1;
    for (int& shown : bootShown) shown = 0;  // boot lines only where a test asks for them
  }
  void TearDown() override { con::SetCapture(nullptr); }

  // Runs the machine as it stands in `variant`; returns what the run printed.
  static std::string Captured(RunVariant variant) {
    std::string out;
    con::SetCapture(&out);
    RunComet2(*m, variant);
    con::SetCapture(nullptr);
    return out;
  }

  // Runs every program on a fresh machine; returns what each printed.
  std::vector<std::string> RunTable(const std::vector<Prog>& table) {
    std::vector<std::string> outs;
    for (const Prog& p : table) {
      SCOPED_TRACE(p.what);
      SetUp();
      for (size_t a = 0; a < p.words.size(); ++a) m->Memory[a] = p.words[a];
      b->MaxMemory = static_cast<int32_t>(p.words.size());  // the reserved size covers the words
      m->tMaxMemory = b->MaxMemory;                          // as the link sets it
      for (const auto& [k, v] : p.before) Set(k, v);
      con::SetInputForTest(p.input);
      const std::string out = Captured(p.variant);
      for (const auto& [k, v] : p.after) EXPECT_EQ(Get(k), v) << k;
      for (const std::string& h : p.has.empty() ? std::vector<std::string>{kEndE} : p.has)
        EXPECT_NE(out.find(h), std::string::npos) << "missing: " << h << "\nin: " << out;
      for (const std::string& h : p.hasNot) EXPECT_EQ(out.find(h), std::string::npos) << h << "\nin: " << out;
      EXPECT_TRUE(out.ends_with(p.tail)) << out;  // "" ends every text
      outs.push_back(out);
    }
    return outs;
  }
};

}  // namespace comet2_test
