// Source input and program structure end to end: a file chosen with menu
// item 1 in each encoding, the findings of the structure stages with their
// error summary, the gates between the stages, and bad input.
#include <gtest/gtest.h>

#include <string>

#include "harness.h"

namespace {

std::string Ini(int lang) {
  return std::string("[Mode]\nLangStr=") + (lang == 1 ? "ENU" : "JPN") + "\nLangInt=" + std::to_string(lang) +
         "\nFightFunc=NWW\nTimeFuncStr=QPC\nTimeFuncInt=0\nSimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=0\n"
         "[Src]\nLastSrcFile=p.txt\n[Editor]\nTextEditorIndex=0\nTextEditorPath1=\nTextEditorPath2=\n";
}

// Menu item 1 with a file name, then the end of input.
e2e::RunResult Assemble(const std::string& name, std::map<std::string, std::string> files, int lang = 1,
                        const std::string& more = "") {
  e2e::RunSpec spec;
  spec.ini = Ini(lang);
  spec.input = "\n1\n" + name + "\n" + more;
  spec.files = std::move(files);
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out) << r.out;
  EXPECT_FALSE(r.signaled) << r.out;
  EXPECT_EQ(r.status, 0) << r.out;
  return r;
}

bool Has(const e2e::RunResult& r, const std::string& s) { return r.out.find(s) != std::string::npos; }

const std::string kProgram = "PRG\tSTART\r\n\tLD\tGR1,A\r\n\tRET\r\nA\tDC\t5\r\n\tEND";

std::string Le(const std::string& ascii) {
  std::string r = "\xFF\xFE";
  for (char c : ascii) {
    r += c;
    r += '\0';
  }
  return r;
}

std::string Be(const std::string& ascii) {
  std::string r = "\xFE\xFF";
  for (char c : ascii) {
    r += '\0';
    r += c;
  }
  return r;
}

TEST(SourceE2e, TheSameProgramInEveryEncodingAssembles) {
  struct Case {
    std::string bytes, name;
  } cases[] = {{kProgram, "sjis"},
               {kProgram + "\r\n; \xE3\x82\xA2\r\n", "utf-8"},
               {"\xEF\xBB\xBF" + kProgram, "utf-8 with bom(EF BB BF)"},
               {Le(kProgram), "utf-16 le(FF FE)"},
               {Be(kProgram), "utf-16 be(FE FF)"}};
  for (const Case& c : cases) {
    e2e::RunResult r = Assemble("p.txt", {{"p.txt", c.bytes}});
    EXPECT_TRUE(Has(r, "* Reading p.txt   " + c.name + "\n\n")) << c.name << r.out;
    EXPECT_TRUE(Has(r, "There is one program found in it.\n")) << c.name << r.out;
    EXPECT_TRUE(Has(r, "Successfully Assembled! ")) << c.name << r.out;
    EXPECT_FALSE(Has(r, "Error")) << c.name << r.out;
    EXPECT_EQ(r.files.count("aaAssembledRegMry.txt"), 1u) << c.name;
  }
}

TEST(SourceE2e, AnErrorOfAnEarlyStageHidesTheLaterStages) {
  // No END at all: the bad program name and the bad register are never looked at.
  e2e::RunResult r = Assemble("p.txt", {{"p.txt", "abc START\n LD GR9,A\n RET\n"}});
  EXPECT_TRUE(Has(r, "Error : END description is not found anywhere. \nEND assembler instruction is expected. \n"))
      << r.out;
  EXPECT_TRUE(Has(r, "There is 1 error to be corrected. \n\nCorrect the codes and assemble them again.\n")) << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, "Error : "), 1u) << r.out;
  EXPECT_FALSE(Has(r, "program found"));
  EXPECT_EQ(r.files.count("aaAssembledRegMry.txt"), 0u);
}

TEST(SourceE2e, NameErrorsStopBeforeTheLineAnalysis) {
  e2e::RunResult r = Assemble("p.txt", {{"p.txt", "Abc START\n LD GR9,A\n RET\n END\n"}});
  EXPECT_TRUE(Has(r, "Error :  \"Abc\" line 1: There is non-alpha-numeral character in the label of  \"Abc\" . \n"))
      << r.out;
  EXPECT_TRUE(Has(r, "Error : line 1: There is a small letter in the label. \n")) << r.out;
  EXPECT_TRUE(Has(r, "There are 2 errors to be corrected. ")) << r.out;
  EXPECT_EQ(e2e::count_occurrences(r.out, "Error : "), 2u) << r.out;
}

TEST(SourceE2e, JapaneseStartEndFindingsWithTheirCount) {
  e2e::RunResult r = Assemble("p.txt", {{"p.txt", "A START\n RET\nB START\n RET\n END;\n"}}, 0);
  EXPECT_TRUE(Has(r, "エラー： (START > END): プログラムが正しく閉じていない。\n")) << r.out;
  EXPECT_TRUE(Has(r, "エラー： 5 行目： END の文字はある。けれども、  END の右に１個以上の空白が必要です。 \n")) << r.out;
  EXPECT_TRUE(Has(r, " 2 個の エラー があるので修正が必要です。 \n")) << r.out;
  EXPECT_TRUE(Has(r, "'p.txt'    sjis")) << r.out;
}

TEST(SourceE2e, EmptySourceAndPairingErrors) {
  e2e::RunResult r = Assemble("p.txt", {{"p.txt", "; nothing here\n\n   \n"}});
  EXPECT_TRUE(Has(r, "Error: The source code is empty.  The assembler is ready to go!\n")) << r.out;
  EXPECT_TRUE(Has(r, "There is 1 error to be corrected. ")) << r.out;
  EXPECT_FALSE(Has(r, "START description"));

  r = Assemble("p.txt", {{"p.txt", "P START\n RET\n END\n  JUNK\nQ START\n RET\n END\n"}});
  EXPECT_TRUE(Has(r, "There are 2 programs found in it.\n")) << r.out;
  EXPECT_TRUE(Has(r, "Error : line 4:  \"JUNK\" : There are some unknown string between two programs. \n")) << r.out;
  EXPECT_TRUE(Has(r, "There is 1 error to be corrected. ")) << r.out;

  r = Assemble("p.txt", {{"p.txt", "P START\n RET\n END\nP START\n RET\n END\n"}});
  EXPECT_TRUE(Has(r, "Error :  \"P\"  is already defined. Duplication of the program name. \n"
                     "Program 1, line 1 and Program 2, line 4.\n")) << r.out;
  EXPECT_TRUE(Has(r, "There is 1 error to be corrected. ")) << r.out;
}

TEST(SourceE2e, WarningsPassTheGates) {
  // No RET, and a second program that nothing calls: two warnings, and the
  // warnings menu; 2 goes back without a run.
  e2e::RunResult r = Assemble("p.txt", {{"p.txt", "P START\n NOP\n END\nQ START\n RET\n END\n"}}, 1, "\n2\n");
  EXPECT_TRUE(Has(r, "Warning : line 1: The 1st program: \nThere is not any RET opcode at all there. \n")) << r.out;
  EXPECT_TRUE(Has(r, "Warning : line 4: A program of the \"Q\" is never executed, becasue it is not called by any "
                     "other program. \n"))
      << r.out;
  EXPECT_TRUE(Has(r, "2 warnings: \n")) << r.out;
  EXPECT_TRUE(Has(r, "Successfully Assembled! ")) << r.out;
  EXPECT_EQ(r.files.count("aaAssembledRegMry.txt"), 1u);
}

TEST(SourceE2e, StartOperandNamesAnotherProgram) {
  e2e::RunResult r =
      Assemble("p.txt", {{"p.txt", "P START Q\n RET\n END\nQ START\n RET\n END\n"}});
  EXPECT_FALSE(Has(r, "is never executed")) << r.out;
  EXPECT_TRUE(Has(r, "Successfully Assembled! ")) << r.out;
  r = Assemble("p.txt", {{"p.txt", "P START NOWHERE\n RET\n END\n"}});
  EXPECT_TRUE(Has(r, "There does not exist any label which is identical with an address constant of the  "
                     "\"NOWHERE\" . \n")) << r.out;
}

TEST(SourceE2e, MarkAndCodePageStayFromTheLastFile) {
  // After a file with a UTF-8 mark, an unmarked UTF-8 file loses the first
  // 3 bytes of its first line.
  e2e::RunResult r = Assemble("bom.txt",
                              {{"bom.txt", "\xEF\xBB\xBFP START\n RET\n END\n"},
                               {"u.txt", "XYZQ START\n RET\n END\n; \xE3\x82\xA2\n"}},
                              1, "\n1\nu.txt\n");
  EXPECT_EQ(e2e::count_occurrences(r.out, "Successfully Assembled! "), 2u) << r.out;
  EXPECT_TRUE(Has(r, "* Reading u.txt   utf-8\n")) << r.out;
  // The short title skips the census: the code page of the last file holds.
  e2e::RunSpec spec;
  spec.ini = Ini(0);
  spec.ini.replace(spec.ini.find("SimpleTitleIndex=0"), 18, "SimpleTitleIndex=1");
  spec.input = "\n1\nle.txt\n\n1\nbin.txt\n";
  spec.files = {{"le.txt", Le(kProgram)}, {"bin.txt", "A"}};
  r = e2e::run(spec);
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_FALSE(Has(r, "MoziKazu")) << r.out;
  EXPECT_TRUE(Has(r, "'le.txt'     を読み込みます。 \n")) << r.out;
  // The one-byte file goes through the UTF-16 reader and holds no source.
  EXPECT_TRUE(Has(r, "'bin.txt'     を読み込みます。 \n")) << r.out;
  EXPECT_TRUE(Has(r, "エラー：　アセンブラは準備完了、 ソースコードの記述がない。 \n")) << r.out;
}

TEST(SourceE2e, BadInputNeitherCrashesNorHangs) {
  // A folder given as the file name.
  e2e::RunResult r = Assemble("src", {{"src/x.txt", "P START\n RET\n END\n"}});
  EXPECT_FALSE(Has(r, "program found")) << r.out;
  // A file that is not there.
  r = Assemble("nosuch.txt", {});
  EXPECT_FALSE(Has(r, "error to be corrected")) << r.out;
  // A binary file with NUL bytes and bytes that decode as nothing.
  std::string bin;
  for (int k = 0; k < 5000; ++k) bin += static_cast<char>((k * 7919) & 0xFF);
  r = Assemble("bin.dat", {{"bin.dat", bin}});
  EXPECT_TRUE(Has(r, "MoziKazu(ascii, sjis, non)=(")) << r.out;
  // Invalid UTF-8 and invalid Shift-JIS inside a program.
  r = Assemble("u.txt", {{"u.txt", "P START\n RET\n; \xC3\x28\xFE\xFF\n END\n"}});
  EXPECT_TRUE(Has(r, "Successfully Assembled! ")) << r.out;
  r = Assemble("s.txt", {{"s.txt", "P START\n RET\n; \x81\x20\x85\x40\n END\n"}});
  EXPECT_TRUE(Has(r, "Successfully Assembled! ")) << r.out;
  // A line of 1 MB: the length warning, then the operand's own finding.
  r = Assemble("l.txt", {{"l.txt", "P START\n LD GR1," + std::string(1 << 20, 'A') + "\n RET\n END\n"}});
  EXPECT_TRUE(Has(r, "Warning: line 2: There are 1048580 characters in the line. ")) << r.out.substr(0, 3000);
  EXPECT_TRUE(Has(r, "error to be corrected")) << r.out.substr(0, 3000);
}

}  // namespace
