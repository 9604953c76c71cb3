// Odd operand texts of every shape through the operand-data checks: nothing
// may crash, hang or leave a line without a sane word count.
#include <random>

#include "operand_data_fixture.h"

namespace opdtest {

using OperandDataRobustTest = OpdTest;

TEST_F(OperandDataRobustTest, RandomOperandTextsThroughEveryCheck) {
  Captured c;
  std::mt19937 rng(20261123);
  const std::u16string alphabet = u",,''  \t#+-=;AaZ09F\"GR17X\u3000\uFFFF";
  auto text = [&](size_t maxLen) {
    std::u16string s;
    for (size_t n = rng() % (maxLen + 1); n > 0; --n) s.push_back(alphabet[rng() % alphabet.size()]);
    return s;
  };
  const char16_t* ops[] = {u"LD", u"JUMP", u"IN", u"OUT", u"DC", u"DS", u"RPUSH", u"LAD"};
  for (int round = 0; round < 200; ++round) {
    Reset(round % 2);
    c.out.clear();
    int s = Line(u"P", u"START", {}, 1);
    for (const char16_t* op : ops) {
      int i = TextLine(op, text(12));
      L(i).labelStr = i % 3 == 1 ? text(3) : u"";
      L(i).oprnd1ChH = text(6), L(i).oprnd2ChH = text(6), L(i).oprnd3ChH = i % 2 ? text(4) : u"";
    }
    Program(u"P", s);
    CkLiteral15NW(0);
    CkStrConstLiteralNW10CS(0);
    for (int i = 1; i <= 8; ++i) {
      const std::u16string op = L(i).opStr;
      if (op == u"DC" || op == u"DS") {
        if (OprndAtDCtoChH_NWCS(*cs, i) == 0 && (op == u"DC" ? OprndAtDC_NWCS(*cs, i) : OprndAtDS_NWCS(*cs, i)) == 0)
          op == u"DC" ? SetWordKazuAtDC_NWCS(*cs, i) : SetWordKazuAtDS_NWCS(*cs, i);
      } else if (op == u"IN" || op == u"OUT") {
        macro2NWCS(*cs, i);
      } else if (op == u"RPUSH") {
        L(i).word_kazu = 14;
      } else if (CkAdrOperandNWCS(*cs, i, op == u"JUMP" ? 1 : 2) == 0) {
        CkAdrConst20NWCS(*cs, i, op == u"JUMP" ? 1 : 2);
      }
    }
    AdrCk53NWCS(0);
    AdrCk53NWCS(0);
    for (int i = 1; i <= 8; ++i) {
      EXPECT_GE(L(i).word_kazu, 0);
      EXPECT_LE(L(i).vecWord.size(), 65536u);
    }
    EXPECT_GE(b->MaxMemory, 0);
  }
}

}  // namespace opdtest
