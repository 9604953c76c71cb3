// What trace and debug show of the machine: registers, the source line of an
// address, and the changes an instruction made.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "comet2/comet2.h"

namespace cli {

// "PR=#0003(3) GR0=#0000(0) ... SP=#FFFF(-1) OF=0 SF=0 ZF=1": hexadecimal and
// signed decimal.
std::string RegistersText(const Tcomet2& mc);

// The line index of an address, or -1.
int LineOfAdr(int32_t adr);
// The source text of a line: label, opcode and operands ("" for none).
std::string SourceText(int line);
std::string LabelOf(int line);

// The registers, flags and the memory words an instruction may write.
struct Snapshot {
  int32_t pr = 0, sp = 0;
  int32_t gr[8] = {};
  int32_t of = 0, sf = 0, zf = 0;
  std::vector<std::pair<int32_t, int32_t>> words;  // address, value

  // Before the instruction at mc.PR: the words it may write with their values.
  static Snapshot Before(const Tcomet2& mc);
  // The changes from this to mc, as "GR1=#0001  [#0036]=#000F  ZF=1 SF=0 OF=0"
  // (all three flags when one changed) and as JSON.
  std::string ChangesText(const Tcomet2& mc) const;
  nlohmann::ordered_json ChangesJson(const Tcomet2& mc) const;
};

// The lines of trace: each instruction, printed when the next one begins
// (with what it changed), and the last one at the end.
class Tracer {
 public:
  explicit Tracer(bool json) : json_(json) {}
  bool Before(const Tcomet2& mc);
  void Finish(const Tcomet2& mc);
  // The line of one instruction: step, address, line, source, changes.
  static std::string Line(uint64_t step, int32_t adr, const std::string& changes);

 private:
  void Flush(const Tcomet2& mc);
  bool json_;
  bool pending_ = false;
  uint64_t step_ = 0;
  int32_t adr_ = 0;
  Snapshot snap_;
};

}  // namespace cli
