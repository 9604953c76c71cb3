// drillasm-cli end to end, through the built executable: the commands, their
// output forms and exit statuses, and that a file gets the same sentences
// and reports as in the menu program.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "harness.h"

namespace {

using e2e::count_occurrences;
const auto npos = std::string::npos;
using Files = std::map<std::string, std::string>;

e2e::RunResult Cli(std::vector<std::string> args, Files files = {}, const std::string& input = "",
                   std::vector<std::pair<std::string, std::string>> env = {}) {
  e2e::RunSpec spec;
  spec.no_ini = true;
  spec.argv = {DRILLASM_CLI_EXE};
  spec.argv.insert(spec.argv.end(), args.begin(), args.end());
  spec.files = std::move(files);
  spec.input = input;
  spec.env = std::move(env);
  spec.timeout_seconds = 60;
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out || r.signaled) << r.out;
  return r;
}

bool Has(const std::string& s, const std::string& t) { return s.find(t) != npos; }

const std::string kBad = "MAIN    START\n        lad     GR1,MSG\n        RET\nMSG     DC      1\n        END\n";
const std::string kGood = "MAIN    START\n        LAD     GR1,3\n        RET\n        END\n";
const std::string kWarned = "MAIN    START\n        LAD     GR1,BUF\n        RET\nBUF     DS      2,\n        END\n";
const std::string kNoEnd = "MAIN    START\n        RET\n";

TEST(CliCheck, LinesCountsAndStatuses) {
  Files files = {{"bad.cas", kBad}, {"good.cas", kGood}, {"warned.cas", kWarned}, {"noend.cas", kNoEnd},
                 {"empty.cas", ""},  {"dir/x.cas", kGood}};
  e2e::RunResult r = Cli({"check", "--lang", "en", "good.cas", "bad.cas", "noend.cas"}, files);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.out,
            "good.cas: 0 errors, 0 warnings\n"
            "bad.cas:2: error: \"lad\"  is not either assembler instruction, machine instruction, or macro "
            "instruction.  \n"
            "bad.cas: 1 error, 0 warnings\n"
            "noend.cas: error: END description is not found anywhere.  END assembler instruction is expected. \n"
            "noend.cas: 1 error, 0 warnings\n");
  // Warnings pass unless they count as errors.
  EXPECT_EQ(Cli({"check", "--lang", "en", "warned.cas"}, files).status, 0);
  e2e::RunResult w = Cli({"check", "--lang", "en", "--werror", "warned.cas", "good.cas"}, files);
  EXPECT_EQ(w.status, 1);
  EXPECT_TRUE(Has(w.out, "warned.cas:4: warning: ") && Has(w.out, "warned.cas: 0 errors, 1 warning\n")) << w.out;
  // Unreadable files are told and the others go on; 2 comes before 1.
  e2e::RunResult u = Cli({"check", "--lang", "en", "nosuch.cas", "dir", "bad.cas", "empty.cas"}, files);
  EXPECT_EQ(u.status, 2);
  EXPECT_TRUE(Has(u.out, "nosuch.cas: error: No such file or directory\n") &&
              Has(u.out, "dir: error: Is a directory\n") && Has(u.out, "bad.cas: 1 error, 0 warnings\n") &&
              Has(u.out, "empty.cas: error: Error: The source code is empty."))
      << u.out;
  // Japanese, by option and by the environment.
  for (auto [args, env] : {std::pair<std::vector<std::string>, std::string>{{"check", "--lang", "ja", "bad.cas"}, "C"},
                           {{"check", "bad.cas"}, "ja_JP.UTF-8"}}) {
    e2e::RunResult j = Cli(args, files, "", {{"LANG", env}, {"LC_MESSAGES", ""}});
    EXPECT_TRUE(Has(j.out, "bad.cas:2: error: \"lad\"  は アセンブラ命令 でも ")) << j.out;
  }
  // The fixed-table mode's limits reach the check too.
  std::string many = kGood;
  for (int k = 0; k < 320; ++k) many += "; c\n";
  e2e::RunResult nh = Cli({"check", "--lang", "en", "--mode", "NH", "many.cas"}, {{"many.cas", many}});
  EXPECT_EQ(nh.status, 1);
  EXPECT_TRUE(Has(nh.out, "many.cas: error: There is a limitation to the number of the lines")) << nh.out;
  EXPECT_EQ(Cli({"check", "--mode", "NWW", "many.cas"}, {{"many.cas", many}}).status, 0);
}

TEST(CliCheck, TheSameSentencesAsTheMenuProgram) {
  // Files with errors of several stages, in both languages.
  const std::vector<std::string> sources = {
      kBad, kNoEnd, "MAIN    START\n        LD      GR9,A\n        LD,     GR1,A\n        RET\nA       DC      'x\n        END\n",
      "MAIN    START\n        RET\n        END\nSUB     START\n        RET\n        END\n",
      "MAIN\xE3\x80\x80START\n        RET\n        END\n", "MAIN    START\n        LAD     GR1,=\n        RET\n END;x\n"};
  for (int lang : {1, 0}) {
    for (const std::string& src : sources) {
      SCOPED_TRACE(src);
      e2e::RunSpec spec;
      spec.ini = e2e::Ini("NWW", lang);
      spec.input = "\n1\np.cas\n2\n\n123\n";
      spec.files = {{"p.cas", src}};
      std::string menu = e2e::run(spec).out;
      for (char& c : menu) c = c == '\n' ? ' ' : c;
      e2e::RunResult r = Cli({"check", "--format", "json", "--lang", lang ? "en" : "ja", "p.cas"}, {{"p.cas", src}});
      nlohmann::json doc = nlohmann::json::parse(r.out);
      ASSERT_FALSE(doc["files"][0]["diagnostics"].empty()) << r.out;
      for (const auto& d : doc["files"][0]["diagnostics"]) {
        EXPECT_TRUE(Has(menu, d["text"].get<std::string>())) << d.dump() << "\n" << menu;
      }
    }
  }
}

TEST(CliCheck, EveryFileStartsFromAFreshProgram) {
  // A file with a UTF-8 mark first: the menu program would remember the mark
  // and read the next file's first line as UTF-8 without its first 3 bytes.
  Files files = {{"bom.cas", "\xEF\xBB\xBF" + kGood}, {"x.cas", kBad}};
  std::vector<std::string> args = {"check", "--lang", "en", "x.cas", "bom.cas"};
  for (int k = 0; k < 9; ++k) args.push_back("x.cas");
  e2e::RunResult r = Cli(args, files);
  const std::string block = Cli({"check", "--lang", "en", "x.cas"}, files).out;
  EXPECT_EQ(count_occurrences(r.out, block), 10u) << r.out;
}

TEST(CliCheck, JsonDocument) {
  // Quotes, a tab and bytes that are no UTF-8 in the texts of the messages.
  const std::string odd = "MAIN    START\n        LD      GR1,\"a\tb\xFF\xFE\"\n        RET\n        END\n";
  e2e::RunResult r = Cli({"check", "--format", "json", "--lang", "en", "--mode", "WP", "odd.cas", "good.cas",
                          "nosuch.cas", "bad\xFF.cas"},
                         {{"odd.cas", odd}, {"good.cas", kGood}});
  EXPECT_EQ(r.status, 2);
  nlohmann::json doc = nlohmann::json::parse(r.out);  // throws on invalid JSON
  EXPECT_EQ(doc["tool"], "drillasm-cli");
  EXPECT_EQ(doc["mode"], "WP");
  EXPECT_EQ(doc["lang"], "en");
  ASSERT_EQ(doc["files"].size(), 4u);
  const auto& odd0 = doc["files"][0];
  EXPECT_EQ(odd0["file"], "odd.cas");
  EXPECT_EQ(odd0["assembled"], false);
  EXPECT_TRUE(odd0["words"].is_null() && odd0["run"].is_null());
  EXPECT_GE(odd0["errors"].get<int>(), 1);
  EXPECT_EQ(odd0["diagnostics"][0]["line"], 2);
  EXPECT_EQ(odd0["diagnostics"][0]["kind"], "error");
  EXPECT_FALSE(odd0["diagnostics"][0]["code"].get<std::string>().empty());
  const auto& good = doc["files"][1];
  EXPECT_EQ(good["assembled"], true);
  EXPECT_EQ(good["words"], 4);  // START, LAD (2), RET
  EXPECT_EQ(good["encoding"], "sjis");
  EXPECT_EQ(good["errors"], 0);
  EXPECT_TRUE(good["diagnostics"].empty());
  EXPECT_EQ(doc["files"][2]["error"], "No such file or directory");
  EXPECT_EQ(doc["files"][3]["file"], "bad\xEF\xBF\xBD.cas");
  // A message of no line has none.
  nlohmann::json none = nlohmann::json::parse(Cli({"check", "--format", "json", "n.cas"}, {{"n.cas", kNoEnd}}).out);
  EXPECT_TRUE(none["files"][0]["diagnostics"][0]["line"].is_null());
}

TEST(CliCheck, UsageErrors) {
  for (const std::vector<std::string>& args :
       std::vector<std::vector<std::string>>{{},
                                             {"check"},
                                             {"check", "--bogus", "a.cas"},
                                             {"check", "--lang", "fr", "a.cas"},
                                             {"check", "--lang", "en", "--lang", "ja", "a.cas"},
                                             {"check", "--format", "xml", "a.cas"},
                                             {"run", "--max-steps", "-5", "a.cas"},
                                             {"trace", "a.cas", "b.cas"},
                                             {"run", "--reports", "no-such-folder", "a.cas"},
                                             {"frobnicate"}}) {
    e2e::RunResult r = Cli(args);
    EXPECT_EQ(r.status, 2) << r.out;
    EXPECT_EQ(r.out.rfind("drillasm-cli: ", 0), 0u) << r.out;
    EXPECT_TRUE(Has(r.out, "Usage: drillasm-cli")) << r.out;
  }
  e2e::RunResult help = Cli({"check", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_TRUE(Has(help.out, "Usage: drillasm-cli check [OPTIONS] files...")) << help.out;
  EXPECT_EQ(Cli({"--version"}).out, "drillasm-cli 4.4.5\n");
}

TEST(CliCheck, AThousandFilesInOneCommand) {
  Files files;
  std::vector<std::string> args = {"check", "--lang", "en"};
  for (int k = 0; k < 1000; ++k) {
    std::string name = "f" + std::to_string(k) + ".cas";
    files[name] = k % 10 == 0 ? kBad : kGood;
    args.push_back(name);
  }
  e2e::RunResult r = Cli(args, files);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(count_occurrences(r.out, ": 0 errors, 0 warnings\n"), 900u);
  EXPECT_EQ(count_occurrences(r.out, ": 1 error, 0 warnings\n"), 100u);
}

}  // namespace

namespace {

const std::string kEcho =
    "ECHO    START\n        IN      BUF,LEN\n        OUT     BUF,LEN\n        IN      BUF,LEN\n        OUT     BUF,LEN\n"
    "        RET\nBUF     DS      256\nLEN     DS      1\n        END\n";
const std::string kLoop = "MAIN    START\nLOOP    JUMP    LOOP\n        RET\n        END\n";
const std::string kWild = "MAIN    START\n        JUMP    D\n        RET\nD       DC      #FFFF\n        END\n";

TEST(CliRun, OutputInputStepsAndStatuses) {
  Files files = {{"echo.cas", kEcho}, {"loop.cas", kLoop}, {"wild.cas", kWild}, {"bad.cas", kBad},
                 {"in.txt", "first line\nzweite Zeile ü\n"}, {"good.cas", kGood}};
  // IN reads --input from its start in every run; OUT goes to standard output.
  e2e::RunResult r = Cli({"run", "--lang", "en", "--input", "in.txt", "echo.cas", "echo.cas"}, files);
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_EQ(count_occurrences(r.out, "first line\nzweite Zeile ü\necho.cas: run: end, "), 2u) << r.out;
  EXPECT_TRUE(Has(r.out, "echo.cas: run: end, 30 steps\n  PR=#0031(49) GR0=#0000(0)")) << r.out;
  // Standard input as --input; without --input, IN meets the end of input.
  EXPECT_TRUE(Has(Cli({"run", "--input", "-", "echo.cas"}, files, "from stdin\n").out, "from stdin\n\necho.cas: run: end"));
  EXPECT_TRUE(Has(Cli({"run", "echo.cas"}, files).out, "echo.cas: 0 errors, 0 warnings\n\n\necho.cas: run: end"));
  // The budget, a machine stop with the machine's own sentence, and the order of the statuses.
  e2e::RunResult loop = Cli({"run", "--lang", "en", "--max-steps", "500", "loop.cas"}, files);
  EXPECT_EQ(loop.status, 4);
  EXPECT_TRUE(Has(loop.out, "loop.cas: run: step-limit, 500 steps\n")) << loop.out;
  e2e::RunResult wild = Cli({"run", "--lang", "en", "wild.cas"}, files);
  EXPECT_EQ(wild.status, 3);
  EXPECT_TRUE(Has(wild.out, "wild.cas: run: register, 2 steps\n  Runtime Error: The comet2 is terminated! There is a "
                            "machine code to specify a non-general register"))
      << wild.out;
  EXPECT_EQ(Cli({"run", "--max-steps", "50", "loop.cas", "wild.cas"}, files).status, 3);
  EXPECT_EQ(Cli({"run", "--max-steps", "50", "loop.cas", "bad.cas", "wild.cas"}, files).status, 1);
  EXPECT_EQ(Cli({"run", "--input", "nosuch.txt", "good.cas"}, files).status, 2);
  // JSON: the run object.
  e2e::RunResult j = Cli({"run", "--format", "json", "--input", "in.txt", "echo.cas", "wild.cas"}, files);
  nlohmann::json doc = nlohmann::json::parse(j.out);
  const auto& run = doc["files"][0]["run"];
  EXPECT_EQ(run["end"], "end");
  EXPECT_EQ(run["output"], "first line\nzweite Zeile ü\n");
  EXPECT_EQ(run["steps"], 30);
  EXPECT_EQ(run["registers"]["PR"], 49);
  EXPECT_EQ(run["registers"]["SP"], 65535);
  EXPECT_EQ(run["flags"]["ZF"], 0);
  EXPECT_EQ(doc["files"][0]["words"], 307);
  EXPECT_EQ(doc["files"][1]["run"]["end"], "register");
  EXPECT_FALSE(doc["files"][1]["run"]["message"].get<std::string>().empty());
}

TEST(CliRun, CtrlCEndsARunWithoutABudget) {
  e2e::RunSpec spec;
  spec.no_ini = true;
  spec.argv = {"/usr/bin/timeout", "--preserve-status", "-s", "INT", "1", DRILLASM_CLI_EXE, "run", "--max-steps", "0",
               "--format", "json", "loop.cas"};
  spec.files = {{"loop.cas", kLoop}};
  e2e::RunResult r = e2e::run(spec);
  EXPECT_EQ(r.status, 3) << r.out;
  nlohmann::json doc = nlohmann::json::parse(r.out);
  EXPECT_EQ(doc["files"][0]["run"]["end"], "interrupted");
  EXPECT_GT(doc["files"][0]["run"]["steps"].get<uint64_t>(), 1000u);
}

TEST(CliRun, ReportsAreTheMenuProgramsBytes) {
  const std::string sample = e2e::read_file(e2e::source_path("examples/src/pn1000.txt"));
  for (const char* mode : {"NWW", "NA"}) {
    for (int lang : {1, 0}) {
      SCOPED_TRACE(std::string(mode) + std::to_string(lang));
      e2e::RunSpec spec;
      spec.ini = e2e::Ini(mode, lang);
      spec.input = "\n1\np.cas\n\n123\n";
      spec.files = {{"p.cas", sample}};
      e2e::RunResult menu = e2e::run(spec);
      e2e::RunResult r = Cli({"run", "--mode", mode, "--lang", lang ? "en" : "ja", "--reports", "out", "p.cas"},
                             {{"p.cas", sample}, {"out/.keep", ""}});
      EXPECT_EQ(r.status, 0) << r.out;
      EXPECT_EQ(r.files["out/p.assembled.txt"], menu.files["aaAssembledRegMry.txt"]);
      EXPECT_EQ(r.files["out/p.resultant.txt"], menu.files["aaResultantRegMry.txt"]);
      EXPECT_FALSE(r.files["out/p.resultant.txt"].empty());
    }
  }
}

TEST(CliTrace, EveryInstructionAndWhatItChanged) {
  const std::string prog =
      "MAIN    START\n        LD      GR1,ZERO\n        LAD     GR2,2\nLOOP    ADDA    GR1,GR2\n"
      "        ST      GR1,SUM\n        SUBA    GR2,ONE\n        JNZ     LOOP\n        RET\nZERO    DC      0\n"
      "ONE     DC      1\nSUM     DS      1\n        END\n";
  e2e::RunResult r = Cli({"trace", "--lang", "en", "t.cas"}, {{"t.cas", prog}});
  EXPECT_EQ(r.status, 0) << r.out;
  EXPECT_EQ(r.out,
            "     1  #0000  L1    MAIN     START\n"
            "     2  #0001  L2             LD GR1,ZERO             ZF=1 SF=0 OF=0\n"
            "     3  #0003  L3             LAD GR2,2               GR2=#0002\n"
            "     4  #0005  L4    LOOP     ADDA GR1,GR2            GR1=#0002  ZF=0 SF=0 OF=0\n"
            "     5  #0006  L5             ST GR1,SUM              [#000F]=#0002\n"
            "     6  #0008  L6             SUBA GR2,ONE            GR2=#0001\n"
            "     7  #000A  L7             JNZ LOOP\n"
            "     8  #0005  L4    LOOP     ADDA GR1,GR2            GR1=#0003\n"
            "     9  #0006  L5             ST GR1,SUM              [#000F]=#0003\n"
            "    10  #0008  L6             SUBA GR2,ONE            GR2=#0000  ZF=1 SF=0 OF=0\n"
            "    11  #000A  L7             JNZ LOOP\n"
            "    12  #000C  L8             RET\n"
            "t.cas: run: end, 12 steps\n"
            "  PR=#000C(12) GR0=#0000(0) GR1=#0003(3) GR2=#0000(0) GR3=#0000(0) GR4=#0000(0) GR5=#0000(0) "
            "GR6=#0000(0) GR7=#0000(0) SP=#FFFF(-1) OF=0 SF=0 ZF=1\n");
  // JSON: one object per line; the default budget of trace is 10,000 steps.
  e2e::RunResult j = Cli({"trace", "--format", "json", "t.cas"}, {{"t.cas", prog}});
  std::vector<nlohmann::json> lines;
  for (size_t at = 0, nl; (nl = j.out.find('\n', at)) != npos; at = nl + 1) lines.push_back(nlohmann::json::parse(j.out.substr(at, nl - at)));
  ASSERT_EQ(lines.size(), 13u);
  EXPECT_EQ(lines[4]["address"], 6);
  EXPECT_EQ(lines[4]["line"], 5);
  EXPECT_EQ(lines[4]["changes"]["memory"]["15"], 2);
  EXPECT_EQ(lines[12]["end"], "end");
  e2e::RunResult loop = Cli({"trace", "l.cas"}, {{"l.cas", kLoop}});
  EXPECT_EQ(loop.status, 4);
  EXPECT_EQ(count_occurrences(loop.out, "JUMP LOOP"), 9999u);  // and START
  EXPECT_EQ(Cli({"trace", "bad.cas"}, {{"bad.cas", kBad}}).status, 1);
}

TEST(CliDebug, AScriptedSession) {
  const std::string prog =
      "MAIN    START\n        LAD     GR1,3\n        CALL    SUB\n        ST      GR1,RES\n        RET\n"
      "SUB     ADDA    GR1,GR1\n        RET\nRES     DS      1\n        END\n";
  const std::string script =
      "help\nbreak SUB\nbreak 4\nbreak NOPE\nbreak #12345\nwatch RES\ninfo breakpoints\nrun\nregs\nstack\ndelete 2\n"
      "finish\ndelete 9\nc\nc\nx RES 2\nx #FFFF 4\nlist\nstep\nstep abc\ndelete\nbreak 3\nrun\nnext\nnext\nbogus\nquit\n";
  e2e::RunResult r = Cli({"debug", "--lang", "en", "d.cas"}, {{"d.cas", prog}}, script);
  EXPECT_EQ(r.status, 0) << r.out;
  for (std::string t :
       {"Breakpoint 1 at #0008 (line 6)\n", "Breakpoint 2 at #0005 (line 4)\n", "No label NOPE.\n",
        "Not an address: #12345 (#0000 to #FFFF)\n", "Watchpoint 3 at #000A (line 8): [#000A] = #0000\n",
        "1  break  #0008 (line 6)  SUB\n", "Breakpoint 1 at #0008 (line 6)\n     3  #0008  L6    SUB      ADDA GR1,GR1",
        "#FFFE: #0005  return to #0005 (line 4)\n", "Deleted 2.\nReturned.\n     5  #0005  L4             ST GR1,RES\n", "All breakpoints and watchpoints are deleted.\n", "No breakpoint number 9.\n",
        "Watchpoint 3: [#000A] #0000 -> #0006\n", "The program stopped: end after 7 steps.\n",
        "#000A: #0006  6  6\n", "#FFFF: #0000  0  0\n(the memory ends at #FFFF)\n", "=> 5\t        RET\n",
        "The program is not running; use run to start it again.\n", "step: not a count: abc\n",
        "Breakpoint 4 at #0003 (line 3)\n", "Stepped over the call.\n     5  #0005  L4             ST GR1,RES\n", "Unknown command: bogus. Type help for the commands.\n"}) {
    EXPECT_TRUE(Has(r.out, t)) << t << "\n---\n" << r.out;
  }
  // The end of the commands ends the session; a file with errors ends it at once.
  EXPECT_EQ(Cli({"debug", "d.cas"}, {{"d.cas", prog}}, "run\n").status, 0);
  EXPECT_EQ(Cli({"debug", "bad.cas"}, {{"bad.cas", kBad}}, "run\n").status, 1);
  // IN inside a session reads --input, else the command stream.
  e2e::RunResult in = Cli({"debug", "e.cas"}, {{"e.cas", kEcho}}, "run\nhello\nthere\nquit\n");
  EXPECT_TRUE(Has(in.out, "hello\nthere\n")) << in.out;
}

}  // namespace
