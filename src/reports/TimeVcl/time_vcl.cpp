#include "reports/TimeVcl/time_vcl.h"

#include <chrono>

#include "records/console.h"

namespace {

constexpr const char* kStem = "time_vcl";

int64_t SteadyNs() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}
int64_t SteadyFreq() { return 1000000000; }
int64_t System100ns() {
  using hundred_ns = std::chrono::duration<int64_t, std::ratio<1, 10000000>>;
  return std::chrono::duration_cast<hundred_ns>(std::chrono::system_clock::now().time_since_epoch()).count();
}
int32_t SteadyMs() {
  return static_cast<int32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
          .count());
}

std::string Num(long long n) { return std::to_string(n); }

}  // namespace

TickSource DefaultTickSource() {
  TickSource t;
  t.qpcNow = SteadyNs;
  t.qpcFreq = SteadyFreq;
  t.chronoNow = System100ns;
  t.clockNow = SteadyMs;
  return t;
}

void TimeVcl::SetTimeFuncByName(const std::string& name) {
  TimeFuncStr = name;
  TimeFuncStrW = Utf8ToU16(name);
  if (name == "QPC") {
    TimeFuncInt = 0;
  } else if (name == "std::clock()") {
    TimeFuncInt = 2;
  } else {
    TimeFuncInt = 1;
  }
}

void TimeVcl::SetTimeFuncByInt(int n) {
  if (n == 0) {
    SetTimeFuncByName("QPC");
  } else if (n == 2) {
    SetTimeFuncByName("std::clock()");
  } else {
    SetTimeFuncByName("std::chrono");
  }
}

void TimeVcl::Take(Stamp s, const char* failTag) {
  switch (TimeFuncInt) {
    case 0: qpcStamps[s] = ticks.qpcNow(); return;
    case 1: chronoStamps[s] = ticks.chronoNow(); return;
    case 2: clockStamps[s] = ticks.clockNow(); return;
    default:
      con::out << "Prg else Error: " << kStem << failTag << con::endl;
      clockStamps[s] = ticks.clockNow();
      return;
  }
}

void TimeVcl::stampReadFileStart() { Take(ReadFileStart, " ReadFileStart 165D"); }
void TimeVcl::stampAssembleStart() { Take(AssembleStart, " AssembleStart 265D"); }
void TimeVcl::stampAssembleEnd() { Take(AssembleEnd, " AssembleEndTime 30965D"); }
void TimeVcl::stampLinkEnd() { Take(LinkEnd, " LinkEnd E6B0965D"); }
void TimeVcl::stampRunStart() { Take(RunStart, " RunStart 365D"); }
void TimeVcl::stampRunEnd() { Take(RunEnd, " RunEnd 465D"); }

int64_t TimeVcl::Diff(const std::string& phase, bool& known) const {
  Stamp from, to;
  known = true;
  if (phase == "ReadFileTime") {
    from = ReadFileStart, to = AssembleStart;
  } else if (phase == "AssembleTime") {
    from = AssembleStart, to = AssembleEnd;
  } else if (phase == "LinkTime") {
    from = AssembleEnd, to = LinkEnd;
  } else if (phase == "RunTime") {
    from = RunStart, to = RunEnd;
  } else {
    known = false;
    return 0;
  }
  switch (TimeFuncInt) {
    case 0: return qpcStamps[to] - qpcStamps[from];
    case 1: return chronoStamps[to] - chronoStamps[from];
    default: return static_cast<int64_t>(clockStamps[to]) - clockStamps[from];
  }
}

std::string TimeVcl::DetTimeDiff_GeneralA(const std::string& phase) const {
  bool known = false;
  int64_t d = Diff(phase, known);
  switch (TimeFuncInt) {
    case 1: {
      if (!known) return "Prg Error of else: std::chrono D164F0B4";
      int64_t ms = d / 10000;
      if (ms == 0) return "0 msec ";
      if (ms < 1000) return Num(ms) + " msec";
      return Num(ms / 1000) + "." + Num((ms % 1000) / 100) + " sec";
    }
    case 2: {
      if (!known) return "Prg Error of else: std::clock A59FB6AA";
      int64_t ms = d;
      if (ms == 0) return "0 msec";
      if (ms < 1000) return Num(ms) + " msec";
      // The remainder is not filled out to three digits.
      return Num(ms / 1000) + "." + Num(ms % 1000) + " sec";
    }
    case 0: {
      if (!known) return "Prg Error else: QP 961FCA19";
      int64_t f = ticks.qpcFreq();
      if (f <= 0) {
        con::out << "Fail to get FreqQP. " << kStem << "  1ABC2FFF" << con::endl;
        f = 1000000000;
      }
      // Wide enough that stamps far apart never overflow.
      __int128 x = static_cast<__int128>(d) * 1000;
      int64_t ms = static_cast<int64_t>(x / f);
      int64_t s = ms / 1000;
      if (ms < 1) return "1 micro second or less";
      if (s < 1) return Num(ms) + "." + Num(static_cast<long long>((x % f) * 10 / f)) + " msec";
      return Num(s) + "." + Num(ms % 1000) + " sec";
    }
    default:
      con::out << "Prg else Error: " << kStem << " E6B0965D" << con::endl;
      return std::string();
  }
}

wstr TimeVcl::DetTimeDiff_GeneralW(const std::string& phase) const { return Utf8ToU16(DetTimeDiff_GeneralA(phase)); }

std::string TimeVcl::DetTimeDiff_MilliSecStrA_General(const std::string& phase) const {
  bool known = false;
  int64_t d = Diff(phase, known);
  switch (TimeFuncInt) {
    case 1: return Num(d / 10000);
    case 2: return Num(d);
    case 0: {
      int64_t f = ticks.qpcFreq();
      if (f <= 0) {
        con::out << "Fail to get FreqQP. " << kStem << "  1AAAA2FFF" << con::endl;
        f = 1000000000;
      }
      __int128 x = static_cast<__int128>(d) * 1000;
      return Num(static_cast<long long>(x / f)) + "." + Num(static_cast<long long>((x % f) * 10 / f));
    }
    default:
      con::out << "Prg else Error: " << kStem << " E6B0965D" << con::endl;
      return std::string();
  }
}

void TimeVcl::DspReadAssembleTime(const char*, bool clockName) const {
  con::out << u"(" << DetTimeDiff_GeneralW("ReadFileTime") << u", " << DetTimeDiff_GeneralW("AssembleTime")
           << u") msec =(ReadFile, Assemble)Time " << (clockName ? wview(TimeFuncStrW) : wview()) << u"  " << con::endl;
}

void TimeVcl::DspReadAssembleLinkTime(const char*) const {
  con::out << u"(" << DetTimeDiff_GeneralW("ReadFileTime") << u", " << DetTimeDiff_GeneralW("AssembleTime") << u", "
           << DetTimeDiff_GeneralW("LinkTime") << u") msec =(ReadFile, Assemble, Link)Time  " << TimeFuncStrW
           << u" " << con::endl;
}
