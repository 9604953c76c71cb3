// The controlled run of the front ends against the menu program's run: in one
// piece or in many, with or without a look at every instruction, it leaves the
// same machine; its budget, its look and its interrupt pause or end it where
// they should; IN and OUT go to the given lines and sink.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "comet2/control.h"
#include "comet2_fixture.h"

namespace {

using namespace comet2_test;

// A sum loop with a CALL, a store, IN and OUT:
//   0 LAD GR1,#0030; 2 LAD GR2,#0040; 4 SVC 1 (IN); 6 LAD GR3,5; 8 CALL 20
//   10 SUBA GR3,ONE; 12 JNZ 8; 14 SVC 2 (OUT); 16 ST GR4,#0050; 18 RET
//   20 ADDA GR4,GR3; 21 RET; 22 ONE DC 1
const std::vector<int32_t> kProgram = {0x1210, 0x0030, 0x1220, 0x0040, 0xF000, 1, 0x1230, 5, 0x8000, 20,
                                       0x2130, 22,     0x6200, 8,      0xF000, 2, 0x1140, 0x50, 0x8100, 0,
                                       0x2443, 0x8100, 1};

class ControlledRunTest : public Comet2Test {
 protected:
  void Load() {
    SetUp();
    for (size_t a = 0; a < kProgram.size(); ++a) m->Memory[a] = kProgram[a];
    b->MaxMemory = m->tMaxMemory = static_cast<int32_t>(kProgram.size());
  }
  // The whole machine, for comparing two runs.
  static std::vector<int32_t> Machine() {
    std::vector<int32_t> v(m->Memory.begin(), m->Memory.begin() + 0x60);
    v.insert(v.end(), m->execCount.begin(), m->execCount.begin() + 0x60);
    v.insert(v.end(), m->GR.begin(), m->GR.end());
    for (int32_t x : {m->PR, m->SP, m->Fovf, m->Fsign, m->Fzero, m->callDepth}) v.push_back(x);
    return v;
  }
};

TEST_F(ControlledRunTest, PiecesAndLooksLeaveTheSameMachineAsTheMenuRun) {
  for (RunVariant variant : {RunVariant::Wide, RunVariant::Narrow, RunVariant::Fixed}) {
    Load();
    con::SetInputForTest("AB\n");
    Captured(variant);
    const std::vector<int32_t> menu = Machine();
    EXPECT_EQ(m->Memory[0x40], 2);  // IN read "AB"

    std::vector<std::string> in = {"AB"};
    std::u16string out;
    MachineIO io{[&]() -> std::optional<std::string> { return in.empty() ? std::nullopt : std::optional(in[0]); },
                 [&](const std::u16string& t) { out += t; }};
    for (uint64_t piece : {0, 1, 3, 7}) {
      SCOPED_TRACE(piece);
      Load();
      SetMachineIO(&io);
      out.clear();
      ControlledRun run(*m, variant);
      std::vector<int32_t> seen;
      while (run.Go(piece, [&](const Tcomet2& mc) {
        seen.push_back(mc.PR);
        return true;
      }) == RunEnd::Running) {
      }
      SetMachineIO(nullptr);
      EXPECT_EQ(run.End(), RunEnd::End);
      EXPECT_EQ(Machine(), menu);
      EXPECT_EQ(out, u"AB");
      EXPECT_EQ(run.Steps(), seen.size());
      uint64_t counted = 0;
      for (int a = 0; a < 0x60; ++a) counted += static_cast<uint64_t>(m->execCount[a]);
      EXPECT_EQ(run.Steps(), counted);
      EXPECT_EQ(seen.front(), 0);
      EXPECT_EQ(seen.back(), 18);  // the top-level RET
    }
  }
}

TEST_F(ControlledRunTest, BudgetLookAndInterruptPauseOrEnd) {
  MachineIO io{[]() -> std::optional<std::string> { return std::nullopt; }, [](const std::u16string&) {}};
  SetMachineIO(&io);
  Load();
  ControlledRun run(*m, RunVariant::Wide);
  EXPECT_EQ(run.Go(4), RunEnd::Running);
  EXPECT_EQ(run.Steps(), 4u);
  EXPECT_EQ(m->PR, 8);  // before the CALL
  // A look that says no pauses before the instruction, which then runs when
  // the run goes on.
  int looks = 0;
  EXPECT_EQ(run.Go(0, [&](const Tcomet2& mc) { return ++looks == 1 || mc.PR != 20; }), RunEnd::Running);
  EXPECT_EQ(m->PR, 20);
  EXPECT_EQ(m->callDepth, 1);
  EXPECT_EQ(run.Steps(), 5u);
  // An interrupt ends the run before the next instruction.
  EXPECT_EQ(run.Go(0, [](const Tcomet2&) {
    ControlledRun::RequestInterrupt();
    return true;
  }), RunEnd::Interrupted);
  EXPECT_EQ(run.Steps(), 6u);
  EXPECT_TRUE(run.Message().empty());
  EXPECT_EQ(run.Go(5), RunEnd::Interrupted);  // an ended run stays ended
  SetMachineIO(nullptr);

  // A stop of the machine keeps its sentences, without the ending and the
  // time line; the console is left as it was.
  SetUp();
  m->Memory[0] = 0x6400;  // JUMP 3600
  m->Memory[1] = 3600;
  b->MaxMemory = m->tMaxMemory = 2;
  std::string console;
  con::SetCapture(&console);
  ControlledRun fixed(*m, RunVariant::Fixed);
  EXPECT_EQ(fixed.Go(0), RunEnd::PrLimit);
  con::SetCapture(nullptr);
  EXPECT_EQ(fixed.Message().rfind("--> The comet2 is terminated！\n", 0), 0u) << fixed.Message();
  EXPECT_EQ(fixed.Message().find("and it has come to an end"), std::string::npos);
  EXPECT_TRUE(console.empty()) << console;
  EXPECT_STREQ(RunEndName(fixed.End()), "pr-limit");
}

}  // namespace
