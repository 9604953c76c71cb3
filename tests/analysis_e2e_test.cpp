// The line analysis through the built program: messages, the counts of the
// summary and the gates, as the learner sees them.
#include <gtest/gtest.h>

#include "harness.h"

namespace {

// Language, source, input behind the first assembly, texts that must show
// ("!": must not), and a word of the register and memory file ("": no file).
struct Case {
  int lang;
  std::string source, more;
  std::vector<std::string> texts;
  std::string word;
};

TEST(AnalysisE2e, MessagesSummaryAndGates) {
  for (const Case& c : std::vector<Case>{
           // END with a semicolon glued to it counts three errors.
           {1, "PRG\tSTART\n\tRET\n\tEND;COMMENT\n", "",
            {"Error :  \" END;\" : \n", "There are 3 errors to be corrected. ", "!Successfully Assembled!"}, ""},
           {0, "PRG\tSTART\nABCDEFGHI\tNOP\n\tRET\n\tEND\n", "",
            {"エラー： 2 行目：  \"ABCDEFGHI\"  ラベルの長さは", " 1 個の エラー があるので修正が必要です。 "}, ""},
           // A note does not stop the assembly; a warning runs through all
           // stages to the warnings menu.
           {1, "PRG\tSTART\n\tLD\tGR1,A\nB\tNOP\n\tRET\nA\tDC\t1\n\tEND\n", "",
            {"Note : line 3:  \"B\"  Unreferenced label  \n", "Successfully Assembled!"}, "#1010"},
           {1, "PRG\tSTART\n\tADDA\tGR1,GR2,\n\tRET\n\tEND\n", "2\n",
            {"Warning : line 2: A comma is of no use", "Successfully Assembled!", "1.  Go on this execution. "}, "#2412"},
       }) {
    SCOPED_TRACE(c.source);
    e2e::RunSpec rs;
    rs.ini = e2e::Ini("NWW", c.lang);
    rs.input = "\n1\nt.txt\n" + c.more;
    rs.files = {{"t.txt", c.source}};
    e2e::RunResult r = e2e::run(rs);
    EXPECT_TRUE(!r.timed_out && !r.signaled && r.status == 0) << r.out;
    for (const std::string& s : c.texts)
      EXPECT_EQ(r.out.find(s.substr(s[0] == '!')) == std::string::npos, s[0] == '!') << s << "\n" << r.out;
    auto image = r.files.find("aaAssembledRegMry.txt");
    EXPECT_EQ(image != r.files.end(), !c.word.empty());
    EXPECT_NE((image == r.files.end() ? c.word : image->second).find(c.word), std::string::npos);
  }
}

}  // namespace
