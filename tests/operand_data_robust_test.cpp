// Odd operand texts of every shape through the operand-data checks: nothing
// may crash, hang or leave a line without a sane word count.
#include <random>

#include "operand_data_fixture.h"

namespace {

using opdtest::Captured;
using opdtest::OpdTest;

using OperandDataRobustTest = OpdTest;

std::u16string RandomText(std::mt19937& rng, size_t maxLen) {
  static const char16_t kAlphabet[] = u",,''  \t#+-=;AaZ09F\"GR17X\u3000\uFFFF";
  std::uniform_int_distribution<size_t> len(0, maxLen);
  std::uniform_int_distribution<size_t> pick(0, sizeof(kAlphabet) / sizeof(kAlphabet[0]) - 2);
  std::u16string s;
  for (size_t n = len(rng); n > 0; --n) s.push_back(kAlphabet[pick(rng)]);
  return s;
}

TEST_F(OperandDataRobustTest, RandomOperandTextsThroughEveryCheck) {
  Captured c;
  std::mt19937 rng(20261123);
  const char16_t* ops[] = {u"LD", u"JUMP", u"IN", u"OUT", u"DC", u"DS", u"RPUSH", u"LAD"};
  for (int round = 0; round < 300; ++round) {
    Reset(round % 2);
    c.out.clear();
    int s = Line(u"P", u"START", {}, 1);
    std::vector<int> lines;
    for (int k = 0; k < 8; ++k) {
      std::u16string t = RandomText(rng, 12);
      int i = TextLine(ops[k], t);
      L(i).labelStr = k % 3 == 0 ? RandomText(rng, 3) : u"";
      L(i).oprnd1ChH = RandomText(rng, 6);
      L(i).oprnd2ChH = RandomText(rng, 6);
      L(i).oprnd3ChH = k % 2 ? RandomText(rng, 4) : u"";
      lines.push_back(i);
    }
    Program(u"P", s);
    CkLiteral15NW(0);
    CkStrConstLiteralNW10CS(0);
    for (int i : lines) {
      const std::u16string op = L(i).opStr;
      if (op == u"DC") {
        if (OprndAtDCtoChH_NWCS(*cs, i) == 0 && OprndAtDC_NWCS(*cs, i) == 0) SetWordKazuAtDC_NWCS(*cs, i);
      } else if (op == u"DS") {
        if (OprndAtDCtoChH_NWCS(*cs, i) == 0 && OprndAtDS_NWCS(*cs, i) == 0) SetWordKazuAtDS_NWCS(*cs, i);
      } else if (op == u"IN" || op == u"OUT") {
        macro2NWCS(*cs, i);
      } else if (op == u"RPUSH") {
        L(i).word_kazu = 14;
      } else {
        int slot = op == u"JUMP" ? 1 : 2;
        if (CkAdrOperandNWCS(*cs, i, slot) == 0) CkAdrConst20NWCS(*cs, i, slot);
      }
    }
    AdrCk53NWCS(0);
    AdrCk53NWCS(0);
    for (int i : lines) {
      EXPECT_GE(L(i).word_kazu, 0);
      EXPECT_LE(L(i).vecWord.size(), 65536u);
    }
    EXPECT_GE(b->MaxMemory, 0);
  }
}

}  // namespace
