// The timing object: six stamps taken on one of three clocks, and the texts
// of the phases between them.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "records/text.h"

// Where the three clocks take their ticks. Tests put fixed counts here.
struct TickSource {
  int64_t (*qpcNow)() = nullptr;     // counter ticks (steady clock, ns)
  int64_t (*qpcFreq)() = nullptr;    // ticks per second; 0 or less: failure
  int64_t (*chronoNow)() = nullptr;  // system clock, 100 ns units
  int32_t (*clockNow)() = nullptr;   // monotonic milliseconds
};

// The platform's clocks.
TickSource DefaultTickSource();

class TimeVcl {
 public:
  TickSource ticks = DefaultTickSource();

  std::string TimeFuncStr = "QPC";
  wstr TimeFuncStrW = u"QPC";
  int TimeFuncInt = 0;

  enum Stamp { ReadFileStart, AssembleStart, AssembleEnd, LinkEnd, RunStart, RunEnd, kStamps };
  std::array<int32_t, kStamps> clockStamps{};   // milliseconds
  std::array<int64_t, kStamps> chronoStamps{};  // 100 ns units
  std::array<int64_t, kStamps> qpcStamps{};     // counter ticks

  void SetTimeFuncByName(const std::string& name);
  void SetTimeFuncByInt(int n);

  void stampReadFileStart();
  void stampAssembleStart();
  void stampAssembleEnd();
  void stampLinkEnd();
  void stampRunStart();
  void stampRunEnd();

  // The text of a phase ("ReadFileTime", "AssembleTime", "LinkTime", "RunTime").
  wstr DetTimeDiff_GeneralW(const std::string& phase) const;
  std::string DetTimeDiff_GeneralA(const std::string& phase) const;
  std::string DetTimeDiff_MilliSecStrA_General(const std::string& phase) const;

  // The time line after errors in the analysis, and the one after the link.
  // `tag` names the Fight that writes it (kept for internal error lines);
  // the first names the clock unless `clockName` is false.
  void DspReadAssembleTime(const char* tag = "", bool clockName = true) const;
  void DspReadAssembleLinkTime(const char* tag = "") const;

 private:
  void Take(Stamp s, const char* failTag);
  int64_t Diff(const std::string& phase, bool& known) const;
};

extern TimeVcl* timeVcl;
