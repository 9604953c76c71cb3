// The timing object: six stamps taken on one of three clocks, and the texts
// of the phases between them.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "records/text.h"

class TimeVcl {
 public:
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
  void DspReadAssembleTime() const;
  void DspReadAssembleLinkTime() const;
};

extern TimeVcl* timeVcl;
