// The learner's console off a terminal: answers piped into the program reach
// the read they are meant for, the settings file is written back as UTF-8,
// and an editor is found when none is set.
#include <gtest/gtest.h>

#include <string>

#include "harness.h"

namespace {

bool Has(const std::string& s, const std::string& t) { return s.find(t) != std::string::npos; }

e2e::RunResult Drill(const std::string& ini, const std::string& input, std::map<std::string, std::string> files = {},
                     std::vector<std::pair<std::string, std::string>> env = {},
                     std::vector<std::string> executables = {}) {
  e2e::RunSpec spec;
  spec.ini = ini;
  spec.input = input;
  spec.files = std::move(files);
  spec.env = std::move(env);
  spec.executables = std::move(executables);
  e2e::RunResult r = e2e::run(spec);
  EXPECT_FALSE(r.timed_out || r.signaled) << r.out;
  EXPECT_EQ(r.status, 0) << r.out;
  return r;
}

TEST(E2eConsole, AScriptAnswersTheWarningsMenuAndThenIn) {
  // One warning (a comma behind DS's operand), then IN and OUT of one line.
  const std::string echo = "MAIN    START\n        IN      BUF,LEN\n        OUT     BUF,LEN\n        RET\n"
                           "BUF     DS      256,\nLEN     DS      1\n        END\n";
  e2e::RunResult r = Drill(e2e::Ini("NWW"), "\n1\nsrc/w\n1\nhello there\n\n123\n", {{"src/w.txt", echo}});
  EXPECT_TRUE(Has(r.out, "OS: Output by a Macro Instruction of OUT. \nhello there\n")) << r.out;
  // The answer and IN's line on one line: the rest of the answer's line is dropped.
  e2e::RunResult same = Drill(e2e::Ini("NWW"), "\n1\nsrc/w\n1 ignored\nnext line\n\n123\n", {{"src/w.txt", echo}});
  EXPECT_TRUE(Has(same.out, "OS: Output by a Macro Instruction of OUT. \nnext line\n")) << same.out;
}

TEST(E2eConsole, SettingsAreWrittenBackAsUtf8) {
  std::string ini = e2e::Ini("NWW");
  ini.replace(ini.find("LastSrcFile=src\\pn1000.txt"), 26, "LastSrcFile=src\\b\xFF" "d.txt");
  ini.replace(ini.find("TextEditorPath1="), 16, "TextEditorPath1=ed\xC3\x28it");
  e2e::RunResult r = Drill(ini, "\n123\n");
  const std::string written = r.files.at("drillasm.ini");
  EXPECT_TRUE(Has(written, "LastSrcFile=src\\b\xEF\xBF\xBD" "d.txt\n")) << written;
  EXPECT_FALSE(Has(written, "\xFF") || Has(written, "\xC3\x28")) << written;
}

TEST(E2eConsole, AnEditorIsFoundWhenNoneIsSet) {
  // PATH holds only the scratch folder's bin: the first of sensible-editor,
  // editor, nano and vi found there opens the file.
  auto fake = [](const std::string& name) { return "#!/bin/sh\necho " + name + "-OPENED \"$1\"\n"; };
  const std::vector<std::pair<std::string, std::string>> env = {{"EDITOR", ""}, {"VISUAL", ""}, {"PATH", "bin"}};
  e2e::RunResult nano =
      Drill(e2e::Ini("NWW"), "\n55\n\n123\n", {{"bin/nano", fake("nano")}, {"bin/vi", fake("vi")}}, env,
            {"bin/nano", "bin/vi"});
  EXPECT_TRUE(Has(nano.out, "nano-OPENED src/pn1000.txt\n")) << nano.out;
  e2e::RunResult editor = Drill(e2e::Ini("NWW"), "\n55\n\n123\n",
                                {{"bin/editor", fake("editor")}, {"bin/nano", fake("nano")}}, env,
                                {"bin/editor", "bin/nano"});
  EXPECT_TRUE(Has(editor.out, "editor-OPENED src/pn1000.txt\n")) << editor.out;
  // $EDITOR, when set, comes first.
  e2e::RunResult set = Drill(e2e::Ini("NWW"), "\n55\n\n123\n", {{"bin/nano", fake("nano")}},
                             {{"EDITOR", "echo MINE"}, {"PATH", "bin"}}, {"bin/nano"});
  EXPECT_TRUE(Has(set.out, "MINE src/pn1000.txt\n")) << set.out;
}

}  // namespace

namespace {

TEST(E2eConsole, CtrlCStopsTheRunNotTheProgram) {
  const std::string loop =
      "MAIN    START\nLOOP    ADDA    GR1,ONE\n        JUMP    LOOP\n        RET\nONE     DC      1\n        END\n";
  for (int lang : {1, 0}) {
    e2e::RunSpec spec;
    spec.ini = e2e::Ini("NWW", lang);
    // Item 9 first: the language chosen before the run is kept at the exit.
    spec.files = {{"src/loop.txt", loop}, {"in.txt", "\n9\n1\nsrc/loop\n\n123\n"}};
    // Ctrl+C once the run has begun (its opening is out, in either language).
    spec.argv = {"/bin/sh", "-c",
                 "\"$0\" < in.txt > out.txt 2>&1 & p=$!; n=0; "
                 "until grep -q -e 'starts running' -e 'COMET2 実行中' out.txt || [ $n -gt 200 ]; do sleep 0.05; n=$((n+1)); done; "
                 "sleep 0.2; kill -INT $p; wait $p; echo \"status=$?\"; cat out.txt",
                 DRILLASM_EXE};
    e2e::RunResult r = e2e::run(spec);
    EXPECT_TRUE(Has(r.out, "status=0\n")) << r.out;
    // The loop is stopped at LOOP (#0001) or at the JUMP (#0002).
    EXPECT_TRUE(Has(r.out, lang ? "実行を中断しました（Ctrl+C）。 PR = #000" : "Runtime stop: interrupted by Ctrl+C at PR = #000"))
        << r.out;
    EXPECT_TRUE(Has(r.out, lang ? "--> 終了\n" : "and it has come to an end of the program\n")) << r.out;
    EXPECT_TRUE(Has(r.files["aaResultantRegMry.txt"], "   PR:    :#000")) << r.out;
    EXPECT_TRUE(Has(r.files["drillasm.ini"], lang ? "LangStr=JPN\n" : "LangStr=ENU\n"));
  }
  // Outside a run, Ctrl+C ends the program as it always did.
  e2e::RunSpec idle;
  idle.ini = e2e::Ini("NWW");
  idle.argv = {"/bin/sh", "-c",
               "sleep 3 | /usr/bin/timeout --preserve-status -s INT 1 \"$0\" > /dev/null; echo \"status=$?\"",
               DRILLASM_EXE};
  e2e::RunResult r = e2e::run(idle);
  EXPECT_TRUE(Has(r.out, "status=130")) << r.out;
  EXPECT_EQ(r.files.at("drillasm.ini"), e2e::Ini("NWW"));  // nothing written
}

}  // namespace
