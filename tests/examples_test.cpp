// The learner's sample workspace, examples/. Every program of examples/src
// assembles and runs cleanly in each mode its header names, prints the lines
// and leaves the registers that the header lists; every file of
// examples/errors draws the messages its header names, in English and in
// Japanese. The files are found by listing the two folders, so a new file is
// tested as soon as it is there, and a file without a header fails.
//
// The header is the first block of comment lines of a file:
//
//   ; NAME -- what the program does            (NAME: the file name without .txt;
//                                              it may go on as "shows" does)
//   ; shows:  what it teaches                  (samples; a line of ";" and two or
//   ;         more blanks continues it)
//   ; prints: one line that OUT prints         (one field for each line, in order)
//   ; regs:   GR1=#0000 GR2=#000A              (after the run; also SP= and PR=)
//   ; input:  one line typed at IN             (one field for each line; in errors
//                                              also the answer to the warnings menu)
//   ; mistake: the learner's mistake           (errors)
//   ; sees:   what the learner sees            (errors, when more than messages)
//   ; expect: an English message text          (errors, one or more)
//   ; expect-ja: a Japanese message text       (errors, one or more)
//   ; modes:  NWW WP AP NA NaW NH
//
// The header ends at the first line that is neither a field nor the
// continuation of one; free comments may follow.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "harness.h"
#include "records/text.h"
#include "source/source.h"

namespace fs = std::filesystem;

namespace {

const std::vector<std::string> kModes = {"NWW", "WP", "AP", "NA", "NaW", "NH"};
const auto npos = std::string::npos;

bool Has(const std::string& s, const std::string& t) { return s.find(t) != npos; }

// ---------------------------------------------------------------------------
// Reading a file as text, in the encoding it is written in.

struct Text {
  std::vector<std::string> lines;  // UTF-8, without line ends
  std::string codeName;            // the name the detecting modes give the encoding
};

bool IsUtf8(const std::string& s) {
  for (size_t k = 0; k < s.size();) {
    const unsigned char c = static_cast<unsigned char>(s[k]);
    size_t n = c < 0x80 ? 1 : (c & 0xE0) == 0xC0 ? 2 : (c & 0xF0) == 0xE0 ? 3 : (c & 0xF8) == 0xF0 ? 4 : 0;
    if (n == 0 || k + n > s.size()) return false;
    for (size_t j = 1; j < n; ++j)
      if ((static_cast<unsigned char>(s[k + j]) & 0xC0) != 0x80) return false;
    k += n;
  }
  return true;
}

std::vector<std::string> SplitLines(const std::string& s) {
  std::vector<std::string> lines;
  size_t at = 0;
  while (at < s.size()) {
    size_t end = s.find('\n', at);
    std::string line = s.substr(at, end == npos ? npos : end - at);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
    if (end == npos) break;
    at = end + 1;
  }
  return lines;
}

// A mark tells UTF-8 and UTF-16; without one, text that is valid UTF-8 with
// bytes above ASCII is UTF-8, anything else Shift-JIS (pure ASCII is called
// "sjis" by the byte census too). The decoders are the library's own.
Text Decode(const std::string& bytes) {
  Text t;
  auto utf16 = [&](bool little) {
    wstr w;
    for (size_t k = 2; k + 1 < bytes.size(); k += 2) {
      unsigned char a = static_cast<unsigned char>(bytes[k]), b = static_cast<unsigned char>(bytes[k + 1]);
      w.push_back(static_cast<char16_t>(little ? a | b << 8 : b | a << 8));
    }
    return U16ToUtf8(w);
  };
  std::string text;
  if (bytes.rfind("\xEF\xBB\xBF", 0) == 0) {
    t.codeName = "utf-8 with bom(EF BB BF)";
    text = U16ToUtf8(Utf8ToWStr(bytes.substr(3)));
  } else if (bytes.rfind("\xFF\xFE", 0) == 0) {
    t.codeName = "utf-16 le(FF FE)";
    text = utf16(true);
  } else if (bytes.rfind("\xFE\xFF", 0) == 0) {
    t.codeName = "utf-16 be(FE FF)";
    text = utf16(false);
  } else if (IsUtf8(bytes) && std::any_of(bytes.begin(), bytes.end(), [](char c) { return c & 0x80; })) {
    t.codeName = "utf-8";
    text = bytes;
  } else {
    t.codeName = "sjis";
    for (const std::string& line : SplitLines(bytes)) text += U16ToUtf8(AnsiToWStr(line)) + "\n";
  }
  t.lines = SplitLines(text);
  return t;
}

// ---------------------------------------------------------------------------
// The header.

struct Header {
  std::vector<std::string> prints, input, expect, expectJa, modes;
  std::vector<std::pair<std::string, std::string>> regs;  // "GR1", "#0000"
  std::vector<std::string> problems;                      // what is wrong with the header
};

std::string RTrim(std::string s) {
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.pop_back();
  return s;
}

Header ReadHeader(const std::vector<std::string>& lines, const std::string& stem, bool sample) {
  Header h;
  auto problem = [&h](const std::string& p) { h.problems.push_back(p); };
  if (lines.empty() || lines[0].rfind("; " + stem + " -- ", 0) != 0) {
    problem("the first line is not \"; " + stem + " -- what it does\"");
    return h;
  }
  const std::vector<std::string> keys = sample ? std::vector<std::string>{"shows", "prints", "regs", "input", "modes"}
                                               : std::vector<std::string>{"mistake", "sees", "expect", "expect-ja",
                                                                          "input", "modes"};
  std::map<std::string, int> seen;
  static const std::regex field(R"(; ([a-z-]+):(?: +(.*))?)");
  std::string last = "title";  // what a continuation line belongs to
  for (size_t k = 1; k < lines.size(); ++k) {
    const std::string line = RTrim(lines[k]);
    std::smatch m;
    if (line.rfind(";  ", 0) == 0 && line.find_first_not_of("; ") != npos) {
      if (last != "title" && last != "shows" && last != "mistake" && last != "sees")
        problem("line " + std::to_string(k + 1) + " continues no field that may go on");
      continue;
    }
    if (!std::regex_match(line, m, field)) break;
    const std::string key = m[1], value = m[2];
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
      problem("unknown field \"" + key + "\" in line " + std::to_string(k + 1));
      continue;
    }
    ++seen[key];
    last = key;
    if (key == "prints") h.prints.push_back(value);
    if (key == "input") h.input.push_back(value);
    if (key == "expect") h.expect.push_back(value);
    if (key == "expect-ja") h.expectJa.push_back(value);
    if ((key == "expect" || key == "expect-ja") && value.empty()) problem("an empty " + key);
    if (key == "modes") {
      std::istringstream words(value);
      for (std::string w; words >> w;) {
        if (std::find(kModes.begin(), kModes.end(), w) == kModes.end() ||
            std::find(h.modes.begin(), h.modes.end(), w) != h.modes.end())
          problem("mode \"" + w + "\" unknown or named twice");
        else
          h.modes.push_back(w);
      }
    }
    if (key == "regs") {
      static const std::regex reg(R"((GR[0-7]|SP|PR)=(#[0-9A-F]{4}))");
      std::istringstream words(value);
      for (std::string w; words >> w;) {
        std::smatch r;
        if (std::regex_match(w, r, reg))
          h.regs.emplace_back(r[1], r[2]);
        else
          problem("register value \"" + w + "\" is not like GR1=#00FF");
      }
    }
  }
  if (seen["modes"] != 1 || h.modes.empty()) problem("one \"modes\" field with at least one mode is needed");
  if (sample) {
    if (!seen["shows"]) problem("a \"shows\" field is needed");
    if (h.prints.empty() && h.regs.empty()) problem("nothing to check: no \"prints\" and no \"regs\"");
  } else {
    if (!seen["mistake"]) problem("a \"mistake\" field is needed");
    if (h.expect.empty() || h.expectJa.empty()) problem("\"expect\" and \"expect-ja\" are needed");
  }
  return h;
}

// ---------------------------------------------------------------------------
// The workspace and the runs.

fs::path Workspace() { return e2e::source_path("examples"); }

std::vector<std::string> FilesOf(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& e : fs::directory_iterator(Workspace() / folder))
    if (e.is_regular_file()) names.push_back(folder + "/" + e.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

// Every file of the workspace, as the learner has it in examples/.
const std::map<std::string, std::string>& WorkspaceFiles() {
  static const std::map<std::string, std::string> files = [] {
    std::map<std::string, std::string> f;
    for (const char* folder : {"src", "errors"})
      for (const std::string& name : FilesOf(folder)) f[name] = e2e::read_file((Workspace() / name).string());
    return f;
  }();
  return files;
}

struct ModeRun {
  std::string mode;
  int lang;
  e2e::RunResult r;
};

// One run for each mode and language, a few at a time: starts the program in
// the workspace, item 1 with `name`, the input lines, then 123.
std::vector<ModeRun> RunAll(const std::vector<std::string>& modes, const std::string& name,
                        const std::vector<std::string>& input) {
  std::vector<ModeRun> runs;
  for (const std::string& mode : modes)
    for (int lang : {1, 0}) runs.push_back({mode, lang, {}});
  std::string script = "\n1\n" + name + "\n";
  for (const std::string& line : input) script += line + "\n";
  script += "\n123\n";
  const std::map<std::string, std::string>& files = WorkspaceFiles();
  const size_t kThreads = 3;
  std::vector<std::thread> pool;
  for (size_t t = 0; t < kThreads; ++t) {
    pool.emplace_back([&, t] {
      for (size_t k = t; k < runs.size(); k += kThreads) {
        e2e::RunSpec spec;
        spec.ini = e2e::Ini(runs[k].mode, runs[k].lang);
        spec.input = script;
        spec.files = files;
        runs[k].r = e2e::run(spec);
      }
    });
  }
  for (std::thread& t : pool) t.join();
  return runs;
}

// What OUT printed, line by line.
std::vector<std::string> Printed(const std::string& out, int lang) {
  const std::string head = lang ? "OS: Output by a Macro Instruction of OUT. \n" : "OS: マクロ命令( OUT )による出力 \n";
  std::vector<std::string> lines;
  for (size_t at = out.find(head); at != npos; at = out.find(head, at)) {
    at += head.size();
    size_t end = out.find('\n', at);
    lines.push_back(out.substr(at, end == npos ? npos : end - at));
  }
  return lines;
}

// The value of a register in a report: "  GR1: '5':#0035: ..." gives "#0035".
std::string RegisterIn(const std::string& report, const std::string& reg) {
  std::smatch m;
  std::regex row("\n *" + reg + ":[^\n]*?:(#[0-9A-F]{4}):");
  return std::regex_search(report, m, row) ? m[1].str() : "(none)";
}

std::string Joined(const std::vector<std::string>& v) {
  std::string s;
  for (const std::string& x : v) s += "[" + x + "]";
  return s;
}

// A clean run of a sample: assembled without a word of complaint, run to its
// end, the lines printed and the registers left as the header says.
void ExpectClean(const ModeRun& run, const std::string& name, const Header& h, const std::string& codeName) {
  SCOPED_TRACE(name + " in mode " + run.mode + (run.lang ? ", English" : ", Japanese"));
  const e2e::RunResult& r = run.r;
  const std::string& out = r.out;
  ASSERT_FALSE(r.timed_out || r.signaled) << out;
  EXPECT_EQ(r.status, 0) << out;
  EXPECT_TRUE(Has(out, run.lang ? "Successfully Assembled! " : "アセンブル成功 ")) << out;
  EXPECT_TRUE(Has(out, run.lang ? "and it has come to an end of the program\n" : "--> 終了\n")) << out;
  // The words of every diagnostic, of a stop of the machine and of a line cut in NH.
  const std::vector<std::string> never =
      run.lang ? std::vector<std::string>{"Error", "Warning", "Note : ", "Terminat", "characters in the line"}
               : std::vector<std::string>{"エラー", "警告", "注意： ", "メモ： ", "Error", "Warning", "一行の中に"};
  for (const std::string& word : never) EXPECT_FALSE(Has(out, word)) << "\"" << word << "\" in\n" << out;
  EXPECT_EQ(Joined(Printed(out, run.lang)), Joined(h.prints)) << out;
  auto report = r.files.find("aaResultantRegMry.txt");
  ASSERT_NE(report, r.files.end()) << out;
  for (const auto& [reg, value] : h.regs) EXPECT_EQ(RegisterIn(report->second, reg), value) << reg;
  // The modes that tell the encoding read the file in the one it is written in.
  if (run.mode == "NWW" || run.mode == "WP") {
    const std::string banner =
        run.lang ? "* Reading " + name + "   " + codeName + "\n" : "'" + name + "'    " + codeName;
    EXPECT_TRUE(Has(out, banner)) << banner << "\n" << out;
  }
}

std::string ParamName(const testing::TestParamInfo<std::string>& info) {
  std::string s = info.param;
  for (char& c : s)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return s;
}

struct Loaded {
  Text text;
  Header header;
};

Loaded Load(const std::string& name, bool sample) {
  Loaded l;
  l.text = Decode(WorkspaceFiles().at(name));
  l.header = ReadHeader(l.text.lines, fs::path(name).stem().string(), sample);
  return l;
}

// ---------------------------------------------------------------------------
class Sample : public testing::TestWithParam<std::string> {};

TEST_P(Sample, AssemblesAndRunsCleanlyInEveryModeItNames) {
  const std::string name = GetParam();
  Loaded l = Load(name, true);
  ASSERT_TRUE(l.header.problems.empty()) << name << ": " << Joined(l.header.problems);
  for (const ModeRun& run : RunAll(l.header.modes, name, l.header.input)) ExpectClean(run, name, l.header, l.text.codeName);
}

INSTANTIATE_TEST_SUITE_P(Examples, Sample, testing::ValuesIn(FilesOf("src")), ParamName);

class Mistake : public testing::TestWithParam<std::string> {};

TEST_P(Mistake, DrawsTheMessagesItIsMeantToShow) {
  const std::string name = GetParam();
  Loaded l = Load(name, false);
  ASSERT_TRUE(l.header.problems.empty()) << name << ": " << Joined(l.header.problems);
  for (const ModeRun& run : RunAll(l.header.modes, name, l.header.input)) {
    SCOPED_TRACE(name + " in mode " + run.mode + (run.lang ? ", English" : ", Japanese"));
    ASSERT_FALSE(run.r.timed_out || run.r.signaled) << run.r.out;
    EXPECT_EQ(run.r.status, 0) << run.r.out;
    for (const std::string& text : run.lang ? l.header.expect : l.header.expectJa)
      EXPECT_TRUE(Has(run.r.out, text)) << "\"" << text << "\" not in\n" << run.r.out;
  }
}

INSTANTIATE_TEST_SUITE_P(Examples, Mistake, testing::ValuesIn(FilesOf("errors")), ParamName);

// ---------------------------------------------------------------------------
// The names that the menus give as examples are there for a learner who has
// just started the program in examples/: typed as shown (backslashes and all,
// with or without .txt) they name a sample that runs.
TEST(ExamplesMenu, TheNamesTheMenusGiveAssembleAndRun) {
  struct Case {
    std::string typed;   // the name as a learner types it
    std::string sample;  // the file it names
    int lang;            // the language whose menu or prompt shows it
    std::string shown;   // where it is shown
  };
  const std::vector<Case> cases = {
      {"src/pn100.txt", "src/pn100.txt", 1, " 1.  Input a filename to assemble.   e.g. src/pn100.txt\n"},
      {"src/pn100.txt", "src/pn100.txt", 0, " 1.  ファイル名（プログラム名）を指定する。例 : src/pn100.txt\n"},
      {"src/list792j.txt", "src/list792j.txt", 1, " 5.  displays a specified text file.   e.g.  src/list792j.txt\n"},
      {"src/list792j", "src/list792j.txt", 0, "例２: src/list792j"},
      {"src\\pn3035", "src/pn3035.txt", 0, "例１： src\\pn3035"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.typed);
    Loaded l = Load(c.sample, true);
    ASSERT_TRUE(l.header.problems.empty()) << Joined(l.header.problems);
    // Item 5 shows the file (the editor is cat), item 1 assembles and runs it.
    e2e::RunSpec spec;
    spec.ini = e2e::Ini("NWW", c.lang);
    spec.files = WorkspaceFiles();
    spec.input = "\n5\n" + c.typed + "\n\n1\n" + c.typed + "\n";
    for (const std::string& line : l.header.input) spec.input += line + "\n";
    spec.input += "\n123\n";
    ModeRun run{"NWW", c.lang, e2e::run(spec)};
    EXPECT_TRUE(Has(run.r.out, c.shown)) << run.r.out;
    EXPECT_TRUE(Has(run.r.out, l.text.lines[0] + "\n")) << "item 5 does not show the file\n" << run.r.out;
    ExpectClean(run, c.sample, l.header, l.text.codeName);
  }
}

TEST(ExamplesMenu, AFirstStartAssemblesTheDefaultLastFileAtItem11) {
  // No settings file: the defaults name src\pn1000.txt as the last file.
  Loaded l = Load("src/pn1000.txt", true);
  ASSERT_TRUE(l.header.problems.empty()) << Joined(l.header.problems);
  e2e::RunSpec spec;
  spec.no_ini = true;
  spec.files = WorkspaceFiles();
  spec.input = "\n11\n\n123\n";
  ModeRun run{"WP", 1, e2e::run(spec)};
  EXPECT_TRUE(Has(run.r.files["drillasm.ini"], "LastSrcFile=src\\pn1000.txt\n")) << run.r.files["drillasm.ini"];
  ExpectClean(run, "src/pn1000.txt", l.header, l.text.codeName);
}

// The header reader itself: what makes a header unfit is told, not skipped.
TEST(ExamplesHeader, AFileWithoutAProperHeaderIsRefused) {
  struct Case {
    std::vector<std::string> lines;
    bool sample;
    size_t problems;
  };
  const std::vector<Case> cases = {
      {{"MAIN    START", "        RET", "        END"}, true, 1},                      // no header at all
      {{"; other -- a title of another file", "; modes: NWW"}, true, 1},               // the wrong name
      {{"; p -- fine", "; shows: x", "; prints: A", "; modes:  NWW NH"}, true, 0},     // a good one
      {{"; p -- fine", "; shows: x", "; print: A", "; modes: NWW"}, true, 2},          // a misspelt key
      {{"; p -- fine", "; shows: x", "; regs: GR8=#0000 GR1=1", "; modes: NWW"}, true, 3},
      {{"; p -- fine", "; shows: x", "; prints: A", "; modes: NWW nww"}, true, 1},     // a mode unknown
      {{"; p -- fine", "; shows: x", ";        more", "; prints: A", "; modes: NA"}, true, 0},
      {{"; p -- fine", "; prints: A", ";        more", "; shows: x", "; modes: NA"}, true, 1},
      {{"; p -- fine", "; mistake: x", "; expect: Error", "; modes: NWW"}, false, 1},  // no expect-ja
      {{"; p -- fine", "; mistake: x", "; expect: E", "; expect-ja: J", "; modes: AP"}, false, 0},
  };
  for (const Case& c : cases) {
    Header h = ReadHeader(c.lines, "p", c.sample);
    EXPECT_EQ(h.problems.size(), c.problems) << Joined(c.lines) << " -> " << Joined(h.problems);
  }
}

}  // namespace
