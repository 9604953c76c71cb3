// Source input and program structure end to end: a file chosen with menu item
// 1 in each encoding, the gates between the stages with the error summary,
// the settings that detection keeps from the last file, and bad input.
#include "harness.h"
#include "source_fixture.h"

namespace {

// Menu item 1 with each file name in turn, then the end of input.
e2e::RunResult Assemble(std::map<std::string, std::string> files, std::vector<std::string> names = {"p.txt"},
                        int lang = 1, const std::string& more = "", int title = 0) {
  e2e::RunSpec spec;
  spec.ini = e2e::Ini("NWW", lang);
  spec.ini.replace(spec.ini.find("SimpleTitleIndex=0"), 18, "SimpleTitleIndex=" + std::to_string(title));
  for (const auto& n : names) spec.input += "\n1\n" + n + "\n" + more;
  spec.files = std::move(files);
  e2e::RunResult r = e2e::run(spec);
  EXPECT_TRUE(r.status == 0 && !r.timed_out && !r.signaled) << r.out;
  return r;
}

bool Has(const e2e::RunResult& r, const std::string& s) { return r.out.find(s) != std::string::npos; }

TEST(SourceE2e, TheSameProgramInEveryEncodingAssembles) {
  const std::u16string text = u"PRG\tSTART\r\n\tLD\tGR1,A\r\n\tRET\r\nA\tDC\t5\r\n\tEND";
  const std::string ascii = U16ToUtf8(text);
  const std::pair<std::string, std::string> cases[] = {
      {ascii, "sjis"}, {ascii + "\r\n; \xE3\x82\xA2\r\n", "utf-8"}, {"\xEF\xBB\xBF" + ascii, "utf-8 with bom(EF BB BF)"},
      {srctest::Utf16(text), "utf-16 le(FF FE)"}, {srctest::Utf16(text, true), "utf-16 be(FE FF)"}};
  for (const auto& [bytes, name] : cases) {
    e2e::RunResult r = Assemble({{"p.txt", bytes}});
    EXPECT_TRUE(Has(r, "* Reading p.txt   " + name + "\n\nThere is one program found in it.\n")) << r.out;
    EXPECT_TRUE(Has(r, "Successfully Assembled! ") && !Has(r, "Error") && r.files.count("aaAssembledRegMry.txt")) << r.out;
  }
}

TEST(SourceE2e, AnErrorOfOneStageHidesTheNextStagesButWarningsPass) {
  // No END: the bad name and the bad register are never looked at.
  e2e::RunResult r = Assemble({{"p.txt", "abc START\n LD GR9,A\n RET\n"}});
  EXPECT_TRUE(Has(r, "Error : END description is not found anywhere. \nEND assembler instruction is expected. \n"));
  EXPECT_TRUE(Has(r, "There is 1 error to be corrected. \n\nCorrect the codes and assemble them again.\n")) << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, "Error : "), 1u) << r.out;
  EXPECT_EQ(r.files.count("aaAssembledRegMry.txt"), 0u);
  // Names stop before the line analysis.
  r = Assemble({{"p.txt", "Abc START\n LD GR9,A\n RET\n END\n"}});
  EXPECT_TRUE(Has(r, "There is one program found in it.\nError :  \"Abc\" line 1: There is non-alpha-numeral")) << r.out;
  EXPECT_TRUE(Has(r, "There are 2 errors to be corrected. ") && !Has(r, "GR9")) << r.out;
  // In Japanese, with the count of the summary.
  r = Assemble({{"p.txt", "A START\n RET\nB START\n RET\n END;\n"}}, {"p.txt"}, 0);
  EXPECT_TRUE(Has(r, "\n'p.txt'    sjis") && Has(r, "エラー： (START > END): プログラムが正しく閉じていない。\n")) << r.out;
  EXPECT_TRUE(Has(r, "エラー： 5 行目： END の文字はある。けれども、  END の右に１個以上の空白が必要です。 \n")) << r.out;
  EXPECT_TRUE(Has(r, " 2 個の エラー があるので修正が必要です。 \n")) << r.out;
  // No RET, and a second program that nothing calls; 2 in the warnings menu
  // goes back without a run.
  r = Assemble({{"p.txt", "P START\n NOP\n END\nQ START\n RET\n END\n"}}, {"p.txt"}, 1, "\n2\n");
  EXPECT_TRUE(Has(r, "Warning : line 1: The 1st program: \nThere is not any RET opcode at all there. \n")) << r.out;
  EXPECT_TRUE(Has(r, "Warning : line 4: A program of the \"Q\" is never executed, becasue it is not called by any "
                     "other program. \n")) << r.out;
  EXPECT_TRUE(Has(r, "2 warnings: \n") && Has(r, "Successfully Assembled! ")) << r.out;
}

TEST(SourceE2e, TheShortTitleKeepsTheCodePageOfTheLastFile) {
  // The short title skips the census: the code page of the last file holds,
  // and a file of one byte goes through the UTF-16 reader with no source.
  e2e::RunResult r = Assemble({{"le.txt", srctest::Utf16(u"P START\r\n RET\r\n END")}, {"bin.txt", "A"}}, {"le.txt", "bin.txt"}, 0, "",
               1);
  EXPECT_FALSE(Has(r, "MoziKazu")) << r.out;
  EXPECT_TRUE(Has(r, "'le.txt'     を読み込みます。 \n") && Has(r, "'bin.txt'     を読み込みます。 \n")) << r.out;
  EXPECT_TRUE(Has(r, "エラー：　アセンブラは準備完了、 ソースコードの記述がない。 \n")) << r.out;
}

TEST(SourceE2e, BadInputNeitherCrashesNorHangs) {
  std::string bin;
  for (int k = 0; k < 5000; ++k) bin += static_cast<char>((k * 7919) & 0xFF);
  e2e::RunResult r = Assemble({{"src/x.txt", "P START\n RET\n END\n"}, {"bin.dat", bin}}, {"src", "nosuch.txt", "bin.dat"});
  EXPECT_EQ(e2e::count_occurrences(r.out, "The file is not found there. *"), 2u) << r.out;  // a folder, a missing file
  EXPECT_FALSE(Has(r, "program found")) << r.out;
  EXPECT_TRUE(Has(r, "MoziKazu(ascii, sjis, non)=(")) << r.out;
  // A line of 1 MB: the length warning, then the operand's own finding.
  r = Assemble({{"p.txt", "P START\n LD GR1," + std::string(1 << 20, 'A') + "\n RET\n END\n"}});
  EXPECT_TRUE(Has(r, "Warning: line 2: There are 1048580 characters in the line. ")) << r.out.substr(0, 3000);
  EXPECT_TRUE(Has(r, "error to be corrected")) << r.out.substr(0, 3000);
}

}  // namespace
