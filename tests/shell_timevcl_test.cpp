// The phase texts of the timing object, from fixed tick counts.
#include <gtest/gtest.h>

#include "records/console.h"
#include "reports/TimeVcl/time_vcl.h"

namespace {

int64_t g_now = 0;
int64_t g_freq = 1000000000;
int64_t FakeNow64() { return g_now; }
int32_t FakeNow32() { return static_cast<int32_t>(g_now); }
int64_t FakeFreq() { return g_freq; }

struct Captured {
  std::string out;
  Captured() { con::SetCapture(&out); }
  ~Captured() { con::SetCapture(nullptr); }
};

class ShellTimeVcl : public ::testing::Test {
 protected:
  TimeVcl t;
  void SetUp() override {
    g_now = 0;
    g_freq = 1000000000;
    t.ticks.qpcNow = FakeNow64;
    t.ticks.qpcFreq = FakeFreq;
    t.ticks.chronoNow = FakeNow64;
    t.ticks.clockNow = FakeNow32;
  }
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
  t.SetTimeFuncByName("QPC");
  EXPECT_EQ(t.TimeFuncInt, 0);
  t.SetTimeFuncByName("std::clock()");
  EXPECT_EQ(t.TimeFuncInt, 2);
  t.SetTimeFuncByName("std::chrono");
  EXPECT_EQ(t.TimeFuncInt, 1);
  t.SetTimeFuncByName("sundial");
  EXPECT_EQ(t.TimeFuncInt, 1);
  EXPECT_EQ(t.TimeFuncStr, "sundial");
  EXPECT_EQ(t.TimeFuncStrW, u"sundial");
  for (auto [n, name, num] : {std::tuple{0, "QPC", 0}, {1, "std::chrono", 1}, {2, "std::clock()", 2},
                              {3, "std::chrono", 1}, {7, "std::chrono", 1}, {-1, "std::chrono", 1}}) {
    t.SetTimeFuncByInt(n);
    EXPECT_EQ(t.TimeFuncStr, name) << n;
    EXPECT_EQ(t.TimeFuncInt, num) << n;
  }
}

TEST_F(ShellTimeVcl, QpcTexts) {
  t.SetTimeFuncByInt(0);
  EXPECT_EQ(Assemble(0), "1 micro second or less");
  EXPECT_EQ(Assemble(999999), "1 micro second or less");
  EXPECT_EQ(Assemble(1000000), "1.0 msec");
  EXPECT_EQ(Assemble(12340000), "12.3 msec");
  EXPECT_EQ(Assemble(999990000), "999.9 msec");
  EXPECT_EQ(Assemble(1000000000), "1.0 sec");
  // No zero fill of the milliseconds.
  EXPECT_EQ(Assemble(2050000000), "2.50 sec");
  EXPECT_EQ(Assemble(3005000000), "3.5 sec");
  EXPECT_EQ(t.DetTimeDiff_MilliSecStrA_General("AssembleTime"), "3005.0");
  EXPECT_EQ(Assemble(12340000), "12.3 msec");
  EXPECT_EQ(t.DetTimeDiff_MilliSecStrA_General("AssembleTime"), "12.3");
  // Another frequency: 10 MHz ticks.
  g_freq = 10000000;
  EXPECT_EQ(Assemble(123400), "12.3 msec");
  // Stamps a year apart do not overflow.
  EXPECT_EQ(Assemble(int64_t{31536000} * 10000000), "31536000.0 sec");
}

TEST_F(ShellTimeVcl, ChronoTexts) {
  t.SetTimeFuncByInt(1);
  EXPECT_EQ(Assemble(0), "0 msec ");
  EXPECT_EQ(Assemble(9999), "0 msec ");
  EXPECT_EQ(Assemble(10000), "1 msec");
  EXPECT_EQ(Assemble(9990000), "999 msec");
  EXPECT_EQ(Assemble(10000000), "1.0 sec");
  EXPECT_EQ(Assemble(12990000), "1.2 sec");
  EXPECT_EQ(t.DetTimeDiff_MilliSecStrA_General("AssembleTime"), "1299");
}

TEST_F(ShellTimeVcl, ClockTexts) {
  t.SetTimeFuncByInt(2);
  EXPECT_EQ(Assemble(0), "0 msec");
  EXPECT_EQ(Assemble(999), "999 msec");
  EXPECT_EQ(Assemble(1000), "1.0 sec");
  EXPECT_EQ(Assemble(1005), "1.5 sec");
  EXPECT_EQ(Assemble(1500), "1.500 sec");
  EXPECT_EQ(Assemble(2050), "2.50 sec");
  EXPECT_EQ(t.DetTimeDiff_MilliSecStrA_General("AssembleTime"), "2050");
}

TEST_F(ShellTimeVcl, PhasesUseTheirOwnStamps) {
  t.SetTimeFuncByInt(2);
  g_now = 100;
  t.stampReadFileStart();
  g_now = 107;
  t.stampAssembleStart();
  g_now = 130;
  t.stampAssembleEnd();
  g_now = 1130;
  t.stampLinkEnd();
  g_now = 2000;
  t.stampRunStart();
  g_now = 2042;
  t.stampRunEnd();
  EXPECT_EQ(t.DetTimeDiff_GeneralW("ReadFileTime"), u"7 msec");
  EXPECT_EQ(t.DetTimeDiff_GeneralW("AssembleTime"), u"23 msec");
  EXPECT_EQ(t.DetTimeDiff_GeneralW("LinkTime"), u"1.0 sec");
  EXPECT_EQ(t.DetTimeDiff_GeneralW("RunTime"), u"42 msec");
  // Only the chosen clock's set is written.
  EXPECT_EQ(t.qpcStamps[TimeVcl::RunEnd], 0);
  EXPECT_EQ(t.chronoStamps[TimeVcl::RunEnd], 0);
}

TEST_F(ShellTimeVcl, UnknownPhaseNamesByClock) {
  t.SetTimeFuncByInt(1);
  EXPECT_EQ(t.DetTimeDiff_GeneralA("LunchTime"), "Prg Error of else: std::chrono D164F0B4");
  t.SetTimeFuncByInt(0);
  EXPECT_EQ(t.DetTimeDiff_GeneralA("LunchTime"), "Prg Error else: QP 961FCA19");
  t.SetTimeFuncByInt(2);
  EXPECT_EQ(t.DetTimeDiff_GeneralA("LunchTime"), "Prg Error of else: std::clock A59FB6AA");
}

TEST_F(ShellTimeVcl, BadClockNumberAndFailedFrequencyAreReported) {
  Captured c;
  t.TimeFuncInt = 5;
  g_now = 77;
  t.stampAssembleStart();
  EXPECT_EQ(t.clockStamps[TimeVcl::AssembleStart], 77);
  EXPECT_NE(c.out.find("Prg else Error: "), std::string::npos);
  EXPECT_NE(c.out.find(" AssembleStart 265D"), std::string::npos);
  t.stampLinkEnd();
  EXPECT_NE(c.out.find(" LinkEnd E6B0965D"), std::string::npos);
  c.out.clear();
  EXPECT_EQ(t.DetTimeDiff_MilliSecStrA_General("AssembleTime"), "");
  EXPECT_NE(c.out.find(" E6B0965D"), std::string::npos);

  c.out.clear();
  t.SetTimeFuncByInt(0);
  g_freq = 0;
  Assemble(2000000);
  EXPECT_NE(c.out.find("Fail to get FreqQP. "), std::string::npos);
  EXPECT_NE(c.out.find("  1ABC2FFF"), std::string::npos);
  t.DetTimeDiff_MilliSecStrA_General("AssembleTime");
  EXPECT_NE(c.out.find("  1AAAA2FFF"), std::string::npos);
}

TEST_F(ShellTimeVcl, TimeLines) {
  Captured c;
  t.SetTimeFuncByInt(2);
  g_now = 0;
  t.stampReadFileStart();
  g_now = 3;
  t.stampAssembleStart();
  g_now = 13;
  t.stampAssembleEnd();
  g_now = 1513;
  t.stampLinkEnd();
  t.DspReadAssembleTime("FightNWW");
  t.DspReadAssembleLinkTime("FightNWW");
  EXPECT_EQ(c.out,
            "(3 msec, 10 msec) msec =(ReadFile, Assemble)Time std::clock()  \n"
            "(3 msec, 10 msec, 1.500 sec) msec =(ReadFile, Assemble, Link)Time  std::clock() \n");
}

}  // namespace
