// The six modes end to end: what each row of the table of modes changes, as
// the learner sees it, and that a correct file gives the same machine in
// every mode that can hold it.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <string>
#include <vector>

#include "harness.h"

namespace {

using e2e::count_occurrences;
using e2e::Ini;
const auto npos = std::string::npos;
const std::vector<std::string> kAll = {"NWW", "WP", "AP", "NA", "NaW", "NH"};

e2e::RunResult Drill(const std::string& mode, int lang, const std::string& input,
                     std::map<std::string, std::string> files = {}, const std::string& ini = "") {
  e2e::RunSpec spec;
  spec.ini = ini.empty() ? Ini(mode, lang) : ini;
  spec.input = input;
  spec.files = std::move(files);
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out || r.signaled) << r.out;
  EXPECT_EQ(r.status, 0) << r.out;
  return r;
}

// Assembles (and runs) src/p.txt once, then leaves by item 123. `answers`
// goes between the file name and the last pause (warnings menu, IN).
e2e::RunResult Assemble(const std::string& mode, int lang, const std::string& program,
                        const std::string& answers = "") {
  return Drill(mode, lang, "\n1\nsrc/p\n" + answers + "\n123\n", {{"src/p.txt", program}});
}

bool Has(const std::string& out, const std::string& text) { return out.find(text) != npos; }

std::string Repeat(const std::string& s, int n) {
  std::string r;
  for (int k = 0; k < n; ++k) r += s;
  return r;
}

// The report of a mode with the execution counts, without them.
std::string WithoutCounts(const std::string& report) {
  static const std::regex count(R"(( [01]{4}:) +[0-9]+:)");
  return std::regex_replace(report, count, "$1");
}

bool Clean(const e2e::RunResult& r) { return Has(r.out, "Successfully Assembled!") || Has(r.out, "アセンブル成功"); }

// ---------------------------------------------------------------------------
TEST(E2eModes, ACorrectFileGivesTheSameMachineInEveryMode) {
  const std::string sample = e2e::read_file(e2e::source_path("examples/src/pn1000.txt"));
  std::map<std::string, e2e::RunResult> runs;
  for (const std::string& mode : kAll) {
    e2e::RunResult r = Assemble(mode, 1, sample);
    SCOPED_TRACE(mode);
    EXPECT_TRUE(Has(r.out, "R_" + mode + "\n")) << r.out;
    EXPECT_TRUE(Has(r.out, "SUM(1..5) = 15")) << r.out;
    ASSERT_TRUE(r.files.count("aaAssembledRegMry.txt") && r.files.count("aaResultantRegMry.txt")) << r.out;
    runs[mode] = r;
  }
  // The modes of the wide run show the count of every word; the others have
  // no such column and the same report otherwise. (The list of edge cases of
  // the modes says "the same two report files in all six modes"; the report
  // writers of the narrow and fixed-table modes have no count column, and
  // that rule of the report is what is followed here.)
  for (const char* report : {"aaAssembledRegMry.txt", "aaResultantRegMry.txt"}) {
    const std::string full = runs["NWW"].files[report];
    EXPECT_NE(WithoutCounts(full), full);
    for (const std::string& mode : kAll) {
      bool counted = mode == "NWW" || mode == "WP" || mode == "NaW";
      EXPECT_EQ(runs[mode].files[report], counted ? full : WithoutCounts(full)) << mode << " " << report;
    }
  }
}

TEST(E2eModes, OnlyTheDetectingModesReadUtf8AndUtf16) {
  const std::string text = "MAIN    START\n        LAD     GR1,MSG\n        RET\nMSG     DC      'ア'\n        END\n";
  const std::string sjis = "MAIN    START\n        LAD     GR1,MSG\n        RET\nMSG     DC      '\x83\x41'\n        END\n";
  std::string utf16le = "\xFF\xFE";
  for (char c : std::string("MAIN\tSTART\r\n\tRET\r\n\tEND\r\n")) utf16le += std::string{c, '\0'};
  for (const std::string& mode : kAll) {
    SCOPED_TRACE(mode);
    const bool detects = mode == "NWW" || mode == "WP";
    // A mark of UTF-8 or UTF-16 is text of the system code page to the narrow reader.
    e2e::RunResult bom = Assemble(mode, 1, "\xEF\xBB\xBF" + text);
    EXPECT_EQ(Clean(bom), detects) << bom.out;
    EXPECT_EQ(Has(bom.out, "* Reading src/p.txt   utf-8 with bom(EF BB BF)"), detects) << bom.out;
    e2e::RunResult wide = Assemble(mode, 1, utf16le);
    EXPECT_EQ(Clean(wide), detects) << wide.out;
    // Without a mark, the census tells UTF-8 from Shift-JIS only where the
    // encoding is detected; the narrow reader takes Shift-JIS as it stands.
    e2e::RunResult u8 = Assemble(mode, 1, text);
    EXPECT_EQ(Has(u8.files["aaAssembledRegMry.txt"], "#30A2"), detects) << u8.out;
    EXPECT_EQ(Has(u8.out, "MoziKazu("), detects) << u8.out;
    e2e::RunResult sj = Assemble(mode, 1, sjis);
    EXPECT_TRUE(Has(sj.files["aaAssembledRegMry.txt"], "#30A2")) << sj.out;
  }
}

TEST(E2eModes, MessagesPrintedAgainBeforeTheTimeLine) {
  // An unknown opcode: the message, and again in one block in four modes.
  const std::string bad = "MAIN    START\n        LDX     GR1,0\n        RET\n        END\n";
  for (int lang : {1, 0}) {
    for (const std::string& mode : kAll) {
      SCOPED_TRACE(mode + std::to_string(lang));
      e2e::RunResult r = Assemble(mode, lang, bad);
      const std::string first = lang ? "Error : line 2 \"LDX\"  is not either" : "エラー： 2 行目：  \"LDX\"  は ";
      bool twice = mode == "WP" || mode == "NaW" || mode == "NA" || mode == "AP";
      EXPECT_EQ(count_occurrences(r.out, first), twice ? 2u : 1u) << r.out;
      // The summary has the same words in every mode.
      EXPECT_EQ(count_occurrences(r.out, lang ? "\n\nThere is 1 error to be corrected. \n\nCorrect the codes"
                                              : "\n\n 1 個の エラー があるので修正が必要です。 \n"),
                1u)
          << r.out;
      // The fixed-table mode's time line does not name the clock.
      EXPECT_TRUE(Has(r.out, mode == "NH" ? ") msec =(ReadFile, Assemble)Time   \n"
                                         : ") msec =(ReadFile, Assemble)Time QPC  \n"))
          << r.out;
    }
  }
}

TEST(E2eModes, EditorIndexOutOfRangeIsReportedInEveryModeButNww) {
  for (const std::string& mode : kAll) {
    std::string ini = Ini(mode);
    ini.replace(ini.find("TextEditorIndex=0"), 17, "TextEditorIndex=3");
    e2e::RunResult r = Drill(mode, 1, "\n", {}, ini);
    EXPECT_EQ(Has(r.out, "Error: TextEditorFlag is out of range. \nTextEditorIndex=3\n"
                         "TextEditorIndex is corrected to be 0. \n"),
              mode != "NWW")
        << mode << r.out;
  }
}

TEST(E2eModes, WarningsMenuAndMainMenuTwin) {
  // A DS with a comma behind its operand draws one warning in every mode.
  const std::string warned = "MAIN    START\n        LAD     GR1,BUF\n        RET\nBUF     DS      2,\n        END\n";
  for (const std::string& mode : kAll) {
    SCOPED_TRACE(mode);
    e2e::RunResult no = Assemble(mode, 1, warned, "2\n");
    EXPECT_TRUE(Has(no.out, "1 warning: \n") && Has(no.out, "\n\n\nMenu:\n1.  Go on this execution. \n")) << no.out;
    EXPECT_FALSE(no.files.count("aaResultantRegMry.txt"));
    e2e::RunResult yes = Assemble(mode, 0, warned, "1\n");
    EXPECT_TRUE(Has(yes.out, "1 個の 警告 がある。\n") && Has(yes.out, "\n\n\nメニュー:\n")) << yes.out;
    EXPECT_TRUE(yes.files.count("aaResultantRegMry.txt"));
    // The fixed-table mode's menu never greets with "your".
    EXPECT_EQ(no.out.find("\nPress your Enter key to go next. ") != npos, mode != "NH") << no.out;
    EXPECT_EQ(count_occurrences(no.out, "\nPress the Enter key to go next. "), mode == "NH" ? 2u : 1u);
  }
}

// ---------------------------------------------------------------------------
// The limits of the fixed-table mode, each at its bound and one beyond; the
// other modes have none of them.

TEST(E2eModes, FixedTableLineLimits) {
  // A string whose closing apostrophe stands at column `len`.
  auto program = [](int len) {
    return "MAIN    START\n        LAD     GR1,MSG\n        RET\nMSG     DC      '" + std::string(len - 18, 'A') +
           "'\n        END\n";
  };
  for (int lang : {1, 0}) {
    e2e::RunResult at = Assemble("NH", lang, program(80));
    EXPECT_TRUE(Clean(at)) << at.out;
    EXPECT_FALSE(Has(at.out, "characters in the line") || Has(at.out, "一行の中に")) << at.out;
    // Beyond: told once (for the first long line), cut, and the string no longer closes.
    e2e::RunResult over = Assemble("NH", lang, "; " + std::string(98, 'c') + "\n" + program(81));
    EXPECT_FALSE(Clean(over)) << over.out;
    EXPECT_EQ(count_occurrences(over.out, lang ? "There are 100 characters in the line. The assembler does not read "
                                                 "more than 80 characters in a line. (Spec. of drill asm): This "
                                                 "could cause an error to assemble the line. \n"
                                               : "一行の中に 100 文字ある。 ソースコード一行の制限文字数 80 文字（独自仕様）を超えている。 "
                                                 "エラーにはなりませんが、制限文字数以上は読み込みません。 \n"),
              1u)
        << over.out;
  }
  EXPECT_TRUE(Clean(Assemble("NWW", 1, program(200))));
  // 310 lines are read; 311 are not, and nothing is assembled.
  auto lines = [](int n) { return "MAIN    START\n        RET\n        END\n" + Repeat("; c\n", n - 3); };
  EXPECT_TRUE(Clean(Assemble("NH", 1, lines(310))));
  for (int lang : {1, 0}) {
    e2e::RunResult over = Assemble("NH", lang, lines(311));
    EXPECT_FALSE(Clean(over) || Has(over.out, "rror")) << over.out;
    EXPECT_TRUE(Has(over.out, lang ? "There is a limitation to the number of the lines in a source code file. The "
                                     "maximum is 310 lines in a file. There are 311 lines in your source code. You "
                                     "are expected to decrease the lines in your file. \n"
                                   : "ソースコードのおおよその制限（一つのファイルにつき） 310行 "
                                     "を超えています。行数を減らす工夫をしてご利用ください。 \n"))
        << over.out;
  }
  EXPECT_TRUE(Clean(Assemble("NA", 1, lines(2000))));
}

TEST(E2eModes, FixedTableProgramsAndConstantLines) {
  // The first program calls all others: no warning of a program never called.
  auto programs = [](int n) {
    std::string s = "P1      START\n";
    for (int k = 2; k <= n; ++k) s += "        CALL    P" + std::to_string(k) + "\n";
    s += "        RET\n        END\n";
    for (int k = 2; k <= n; ++k) s += "P" + std::to_string(k) + "      START\n        RET\n        END\n";
    return s;
  };
  EXPECT_TRUE(Clean(Assemble("NH", 1, programs(6))));
  EXPECT_TRUE(Clean(Assemble("NWW", 1, programs(7))));
  e2e::RunResult en = Assemble("NH", 1, programs(7));
  EXPECT_TRUE(Has(en.out, "Error : The number of START assembler instructions should be \nreduced. \n"
                          "The number of the programs in a src file\nis limited to 6\n"))
      << en.out;
  EXPECT_TRUE(Has(en.out, "Error : The number of END assembler instructions should be \n")) << en.out;
  e2e::RunResult ja = Assemble("NH", 0, programs(7));
  EXPECT_TRUE(Has(ja.out, "エラー： START アセンブラ命令の数を減らす必要がある。 \n"
                          "このアセンブラでは、一つのファイルの中のプログラムの数は 6 個に制限されています。\n"))
      << ja.out;

  // 55 DC and DS lines in all; one more is an error. Its words exist in
  // Japanese only, and are printed as they are in both languages.
  auto constants = [](int n) {
    return "MAIN    START\n        LAD     GR1,D\n        RET\nD       DS      1\n" + Repeat("        DC      0\n", n - 1) +
           "        END\n";
  };
  EXPECT_TRUE(Clean(Assemble("NH", 1, constants(55))));
  EXPECT_TRUE(Clean(Assemble("NA", 1, constants(56))));
  e2e::RunResult over = Assemble("NH", 1, constants(56));
  EXPECT_TRUE(Has(over.out, "Error : line 59: 仕様：DCとDSの行の数の合計は「最大行数の６分の１」=55 行に制限されています。\n"
                            "DC行が 55 行あります。\nDS行が 1 行あります。\nDCとDSの行の数の合計が 56 行あります。\n"))
      << over.out;

  // A program that nothing calls is not warned of.
  const std::string uncalled = "MAIN    START\n        RET\n        END\nSUB     START\n        RET\n        END\n";
  for (const std::string& mode : kAll) {
    e2e::RunResult r = Assemble(mode, 1, uncalled, mode == "NH" ? "" : "1\n");
    EXPECT_EQ(Has(r.out, "Warning : line 4: A program of the \"SUB\" is never executed"), mode != "NH") << r.out;
    EXPECT_TRUE(r.files.count("aaResultantRegMry.txt")) << mode << r.out;
  }
}

// The budget of the fixed-table mode is told both as called "by the analysis"
// and as the link's check in place of the 65035-word budget, with the prefix
// "Linker Error: ". It runs in the link, where the 65035-word budget stands;
// the per-line guard "Prg Error: (MaxMemoryDCDS < max_rl_memory_d)" of the
// analysis, which would stop the pass on the same condition before the link
// and hide these messages, is not built.
TEST(E2eModes, FixedTableMemoryBudget) {
  // START 1, LAD 2, RET 1 and the DS: 3500 words in all fit.
  auto reserved = [](int n) {
    return "MAIN    START\n        LAD     GR1,BUF\n        RET\nBUF     DS      " + std::to_string(n) +
           "\n        END\n";
  };
  EXPECT_TRUE(Clean(Assemble("NH", 1, reserved(3496))));
  e2e::RunResult total = Assemble("NH", 1, reserved(3497));
  EXPECT_FALSE(Clean(total));
  EXPECT_TRUE(Has(total.out, "Error : Your program needs 3501 words in memory. \nThis simulator has only 3500 words "
                             "for the sake of simplicity. \nSo more than 3500 words cannot be assiged to your "
                             "program. \nReduce the memory size reserved on your source code. \n"))
      << total.out;
  EXPECT_FALSE(Has(total.out, "MaxMemoryDCDS")) << total.out;
  e2e::RunResult ja = Assemble("NH", 0, reserved(3497));
  EXPECT_TRUE(Has(ja.out, "エラー： 必要なメモリ数は、少なくても 3501 個です。 \n")) << ja.out;
  EXPECT_TRUE(Clean(Assemble("NWW", 1, reserved(3497))));
  // The DC and DS area: 3500 words; one more is told with the excess.
  EXPECT_FALSE(Has(Assemble("NH", 1, reserved(3500)).out, "MaxMemoryDCDS"));
  e2e::RunResult dcds = Assemble("NH", 1, reserved(3501));
  EXPECT_TRUE(Has(dcds.out, "Linker Error: Prg Error: MaxMemoryDCDS < max_rl_memory_d\n"
                            "Reduce your reserved DC and DS memory size\u3000by 1. \n"))
      << dcds.out;
  // Beyond the 16-bit machine.
  std::string huge = reserved(65035);
  huge.insert(huge.rfind("        END"), "        DS      600\n");
  e2e::RunResult beyond = Assemble("NH", 1, huge);
  EXPECT_TRUE(Has(beyond.out, "Error : Your program needs 65639 words in memory. \nThe comet2 is a 16-bit machine. \n"
                              "So it has 65536 words in all. \nMore than 65537 words cannot be reserved. \n"))
      << beyond.out;
  // The literal area: 300 words.
  auto literals = [](int last) {
    return "MAIN    START\n" + Repeat("\tLAD\tGR1,='" + std::string(60, 'L') + "'\n", 4) + "\tLAD\tGR1,='" +
           std::string(last, 'L') + "'\n        RET\n        END\n";
  };
  EXPECT_TRUE(Clean(Assemble("NH", 1, literals(60))));
  e2e::RunResult lit = Assemble("NH", 1, literals(61));
  EXPECT_TRUE(Has(lit.out, "Linker Error: Prg Error: MaxMemoryLiteral < max_rl_memory_l\n"
                           "Reduce Your litereal word size by 1. \n"))
      << lit.out;
  EXPECT_TRUE(Clean(Assemble("AP", 1, literals(61))));
}

// EXIT: the no-operand rule leaves the words of NOP and EXIT at 0, while the
// opcode dispatch gives EXIT the stop word #8800, on which the machine stops;
// the dispatch is followed. The fixed-table run names 3200 in place of each
// of the three limits (64700, 64500, 64000) of its PR stop.
TEST(E2eModes, ExitAndTheRunOfEachMode) {
  const std::string exits = "MAIN    START\n        LD      GR1,ONE\n        EXIT\n        RET\nONE     DC      1\n"
                            "        END\n";
  e2e::RunResult nh = Assemble("NH", 1, exits);
  EXPECT_TRUE(Has(nh.out, "and it has come to an end of the program\n")) << nh.out;
  EXPECT_TRUE(Has(nh.files["aaResultantRegMry.txt"], "   PR:    :#0003:")) << nh.out;
  EXPECT_TRUE(Has(nh.files["aaAssembledRegMry.txt"], ":#8800:")) << nh.out;
  for (std::string mode : {"NWW", "NA", "NaW"}) {
    e2e::RunResult r = Assemble(mode, 1, exits);
    EXPECT_TRUE(Has(r.out, "Error : line 3 \"EXIT\"  is not either assembler instruction")) << r.out;
  }

  // A jump beyond the fixed-table machine's memory, far below the others' ceiling.
  const std::string away = "MAIN    START\n        JUMP    3600\n        RET\n        END\n";
  for (int lang : {1, 0}) {
    for (const std::string& mode : kAll) {
      SCOPED_TRACE(mode + std::to_string(lang));
      e2e::RunResult r = Assemble(mode, lang, away);
      const bool fixed = mode == "NH", narrow = mode == "NA" || mode == "AP";
      if (lang) {
        EXPECT_TRUE(Has(r.out, fixed ? "--> The comet2 is terminated！\nBecause the Program Register(PR) has exceeded "
                                       "the maximum memory address of 3200. "
                                     : "Runtime Error: The comet2 is terminated！\nBecause the Program Register(PR) "
                                       "has exceeded the maximum memory address of 64500. "))
            << r.out;
        EXPECT_TRUE(Has(r.out, fixed ? "PR = #0E10 = 3600(dec) \n" : "PR = #FDE9 = 65001(dec) \n")) << r.out;
      } else {
        EXPECT_TRUE(Has(r.out, std::string(fixed || narrow ? "--> 中止！\n" : "実行時エラー：実行途中停止！\n") +
                                   "プログラムレジスター(PR)が この COMET2 シミレーター の 最大メモリー " +
                                   (fixed ? "3200" : "64700")))
            << r.out;
      }
    }
  }
}

TEST(E2eModes, SwitchingThroughAllSixModes) {
  // Each mode in turn by item 7, a run of the last file in each (the English
  // boot lines once for each run variant), and the mode kept at exit.
  std::map<std::string, std::string> files = {
      {"src/pn1000.txt", e2e::read_file(e2e::source_path("examples/src/pn1000.txt"))}};
  std::string input = "\n11\n";
  for (const char* pick : {"2", "3", "4", "5", "6", "9"}) input += "\n7\n" + std::string(pick) + "\n\n11\n";
  input += "\n123\n";
  e2e::RunResult r = Drill("NWW", 1, input, files);
  // Three banners, then an empty line for each further Fight.
  size_t nww = r.out.find("x64  R_NWW\n"), wp = r.out.find("x64  R_WP\n"), ap = r.out.find("x64  R_AP\n");
  EXPECT_TRUE(nww < wp && wp < ap && ap != npos) << r.out;
  EXPECT_EQ(count_occurrences(r.out, "CASL2/COMET2 Drill  Ver. 4.4.5"), 3u) << r.out;
  EXPECT_EQ(count_occurrences(r.out, "SUM(1..5) = 15"), 7u) << r.out;
  EXPECT_EQ(count_occurrences(r.out, "The OS starts booting comet2.\n"), 3u) << r.out;
  EXPECT_TRUE(Has(r.files["drillasm.ini"], "FightFunc=NWW\n"));
  e2e::RunResult nh = Drill("NWW", 1, "\n7\n6\n\n123\n");
  EXPECT_TRUE(Has(nh.files["drillasm.ini"], "FightFunc=NH\n"));
}

}  // namespace
