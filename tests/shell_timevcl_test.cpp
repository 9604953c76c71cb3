// The phase texts of the timing object, from fixed tick counts.
#include <gtest/gtest.h>

#include "records/console.h"
#include "reports/TimeVcl/time_vcl.h"

namespace {

int64_t g_now = 0, g_freq = 1000000000;
int64_t FakeNow64() { return g_now; }
int32_t FakeNow32() { return static_cast<int32_t>(g_now); }
int64_t FakeFreq() { return g_freq; }

class ShellTimeVcl : public ::testing::Test {
 protected:
  TimeVcl t;
  std::string out;
  void SetUp() override {
    g_now = 0, g_freq = 1000000000;
    t.ticks = {FakeNow64, FakeFreq, FakeNow64, FakeNow32};
    con::SetCapture(&out);
  }
  void TearDown() override { con::SetCapture(nullptr); }
  // The assembly phase of `ticks` length on the clock in use.
  std::string Assemble(int64_t ticks) {
    g_now = 5000;
    t.stampAssembleStart();
    g_now = 5000 + ticks;
    t.stampAssembleEnd();
    return t.DetTimeDiff_GeneralA("AssembleTime");
  }
};

TEST_F(ShellTimeVcl, ClockByNameAndByNumber) {
  for (auto [name, num] : {std::pair{"QPC", 0}, {"std::clock()", 2}, {"std::chrono", 1}, {"sundial", 1}}) {
    t.SetTimeFuncByName(name);
    EXPECT_EQ(t.TimeFuncInt, num) << name;
    EXPECT_EQ(t.TimeFuncStrW, Utf8ToU16(name));  // an unknown name is kept as it is
  }
  for (auto [n, name, num] : {std::tuple{0, "QPC", 0}, {1, "std::chrono", 1}, {2, "std::clock()", 2},
                              {3, "std::chrono", 1}, {7, "std::chrono", 1}, {-1, "std::chrono", 1}}) {
    t.SetTimeFuncByInt(n);
    EXPECT_EQ(t.TimeFuncStr, name) << n;
    EXPECT_EQ(t.TimeFuncInt, num) << n;
  }
}

TEST_F(ShellTimeVcl, PhaseTextsOfEachClock) {
  // clock, frequency (0: 1 GHz), ticks, text, milliseconds text ("": not checked)
  struct Row { int clock; int64_t freq, ticks; const char *text, *msec; } rows[] = {
      {0, 0, 0, "1 micro second or less", ""}, {0, 0, 999999, "1 micro second or less", ""},
      {0, 0, 1000000, "1.0 msec", ""}, {0, 0, 12340000, "12.3 msec", "12.3"}, {0, 0, 999990000, "999.9 msec", ""},
      {0, 0, 1000000000, "1.0 sec", ""}, {0, 0, 2050000000, "2.50 sec", ""},  // no zero fill of the msec
      {0, 0, 3005000000, "3.5 sec", "3005.0"}, {0, 10000000, 123400, "12.3 msec", ""},
      {0, 10000000, int64_t{31536000} * 10000000, "31536000.0 sec", ""},  // a year apart: no overflow
      {1, 0, 0, "0 msec ", ""}, {1, 0, 9999, "0 msec ", ""}, {1, 0, 10000, "1 msec", ""},
      {1, 0, 9990000, "999 msec", ""}, {1, 0, 10000000, "1.0 sec", ""}, {1, 0, 12990000, "1.2 sec", "1299"},
      {2, 0, 0, "0 msec", ""}, {2, 0, 999, "999 msec", ""}, {2, 0, 1000, "1.0 sec", ""}, {2, 0, 1005, "1.5 sec", ""},
      {2, 0, 1500, "1.500 sec", ""}, {2, 0, 2050, "2.50 sec", "2050"}};
  for (const Row& r : rows) {
    SCOPED_TRACE(std::to_string(r.clock) + " " + std::to_string(r.ticks));
    t.SetTimeFuncByInt(r.clock);
    g_freq = r.freq ? r.freq : 1000000000;
    EXPECT_EQ(Assemble(r.ticks), r.text);
    if (*r.msec) {
      EXPECT_EQ(t.DetTimeDiff_MilliSecStrA_General("AssembleTime"), r.msec);
    }
  }
  EXPECT_EQ(out, "");
}

TEST_F(ShellTimeVcl, PhasesUseTheirOwnStampsAndTheTimeLines) {
  t.SetTimeFuncByInt(2);
  void (TimeVcl::*stamps[])() = {&TimeVcl::stampReadFileStart, &TimeVcl::stampAssembleStart,
                                 &TimeVcl::stampAssembleEnd,   &TimeVcl::stampLinkEnd,
                                 &TimeVcl::stampRunStart,      &TimeVcl::stampRunEnd};
  int64_t at[] = {100, 107, 130, 1130, 2000, 2042};
  for (int k = 0; k < 6; ++k) g_now = at[k], (t.*stamps[k])();
  EXPECT_EQ(t.DetTimeDiff_GeneralW("ReadFileTime"), u"7 msec");
  EXPECT_EQ(t.DetTimeDiff_GeneralW("AssembleTime"), u"23 msec");
  EXPECT_EQ(t.DetTimeDiff_GeneralW("LinkTime"), u"1.0 sec");
  EXPECT_EQ(t.DetTimeDiff_GeneralW("RunTime"), u"42 msec");
  EXPECT_EQ(t.qpcStamps[TimeVcl::RunEnd], 0);  // only the chosen clock's set is written
  EXPECT_EQ(t.chronoStamps[TimeVcl::RunEnd], 0);
  t.DspReadAssembleTime("FightNWW");
  t.DspReadAssembleLinkTime("FightNWW");
  EXPECT_EQ(out,
            "(7 msec, 23 msec) msec =(ReadFile, Assemble)Time std::clock()  \n"
            "(7 msec, 23 msec, 1.0 sec) msec =(ReadFile, Assemble, Link)Time  std::clock() \n");
}

TEST_F(ShellTimeVcl, UnknownPhaseBadClockAndFailedFrequency) {
  for (auto [clock, text] : {std::pair{1, "Prg Error of else: std::chrono D164F0B4"},
                             {0, "Prg Error else: QP 961FCA19"}, {2, "Prg Error of else: std::clock A59FB6AA"}}) {
    t.SetTimeFuncByInt(clock);
    EXPECT_EQ(t.DetTimeDiff_GeneralA("LunchTime"), text);
  }
  t.TimeFuncInt = 5;
  g_now = 77;
  t.stampAssembleStart();
  EXPECT_EQ(t.clockStamps[TimeVcl::AssembleStart], 77);
  EXPECT_NE(out.find("Prg else Error: "), std::string::npos);
  EXPECT_NE(out.find(" AssembleStart 265D"), std::string::npos);
  t.stampLinkEnd();
  EXPECT_NE(out.find(" LinkEnd E6B0965D"), std::string::npos);
  out.clear();
  EXPECT_EQ(t.DetTimeDiff_MilliSecStrA_General("AssembleTime"), "");
  EXPECT_NE(out.find(" E6B0965D"), std::string::npos);

  out.clear();
  t.SetTimeFuncByInt(0);
  g_freq = 0;
  Assemble(2000000);
  EXPECT_NE(out.find("Fail to get FreqQP. "), std::string::npos);
  EXPECT_NE(out.find("  1ABC2FFF"), std::string::npos);
  t.DetTimeDiff_MilliSecStrA_General("AssembleTime");
  EXPECT_NE(out.find("  1AAAA2FFF"), std::string::npos);
}

}  // namespace
