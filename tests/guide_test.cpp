// The learner's guides, docs/help.md and docs/help.ja.md, held against the
// program: every menu item that the menu shows or accepts, every key of the
// settings file with its default, every column and part of the two reports
// (taken from reports that the program writes for the guide's own example),
// every form of the instruction table, the links between files, and the
// language of each guide. The manual page is held against the same menu and
// keys.
#include <gtest/gtest.h>

#include <algorithm>
#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <cstdio>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "codegen/instr_table.h"
#include "harness.h"
#include "shell/shell.h"

namespace fs = std::filesystem;

namespace {

// ---- reading a guide --------------------------------------------------------

std::string RTrim(std::string s) {
  while (!s.empty() && (s.back() == ' ' || s.back() == '\r' || s.back() == '\t')) s.pop_back();
  return s;
}

std::string Trim(const std::string& s) {
  size_t a = s.find_first_not_of(" \t");
  if (a == std::string::npos) return std::string();
  return RTrim(s.substr(a));
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> out;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) out.push_back(line);
  return out;
}

struct CodeBlock {
  std::string info;  // the word behind the opening fence
  std::vector<std::string> lines;
};

// A guide cut into its fenced code blocks, its table rows and its prose (the
// text outside the fences).
struct Guide {
  std::string path;
  std::string text;
  std::vector<CodeBlock> blocks;
  std::vector<std::vector<std::string>> rows;  // cells of every table row, trimmed
  std::string prose;
  std::vector<std::string> headings;  // the "## " headings
};

// The cells of a table row; a '|' inside a code span belongs to the cell.
std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::string cell;
  bool code = false;
  for (size_t i = 1; i < line.size(); ++i) {
    char c = line[i];
    if (c == '`') code = !code;
    if (c == '|' && !code) {
      cells.push_back(Trim(cell));
      cell.clear();
    } else {
      cell += c;
    }
  }
  return cells;
}

Guide ReadGuide(const std::string& relative) {
  Guide g;
  g.path = e2e::source_path(relative);
  g.text = e2e::read_file(g.path);
  bool inBlock = false;
  for (const std::string& line : Lines(g.text)) {
    if (line.rfind("```", 0) == 0) {
      if (inBlock) {
        inBlock = false;
      } else {
        inBlock = true;
        g.blocks.push_back(CodeBlock{Trim(line.substr(3)), {}});
      }
      continue;
    }
    if (inBlock) {
      g.blocks.back().lines.push_back(line);
      continue;
    }
    g.prose += line;
    g.prose += '\n';
    if (line.rfind("## ", 0) == 0) g.headings.push_back(line);
    if (line.rfind("|", 0) == 0 && line.find("|---") == std::string::npos) g.rows.push_back(Cells(line));
  }
  return g;
}

// The first table row whose first cell names `item` among its comma-separated
// numbers, and whose text holds `word`.
bool HasItemRow(const Guide& g, int item, const std::string& word) {
  for (const auto& row : g.rows) {
    if (row.size() < 2) continue;
    std::stringstream first(row[0]);
    bool names = false;
    for (std::string n; std::getline(first, n, ',');) {
      n = Trim(n);
      if (!n.empty() && n.find_first_not_of("0123456789") == std::string::npos && std::stoi(n) == item) names = true;
    }
    if (!names) continue;
    for (size_t i = 1; i < row.size(); ++i) {
      if (row[i].find(word) != std::string::npos) return true;
    }
  }
  return false;
}

const std::vector<std::string>* RowStartingWith(const Guide& g, const std::string& first) {
  for (const auto& row : g.rows) {
    if (!row.empty() && row[0] == first) return &row;
  }
  return nullptr;
}

// The code points of UTF-8 text (invalid bytes are skipped).
std::vector<char32_t> CodePoints(const std::string& s) {
  std::vector<char32_t> out;
  for (size_t i = 0; i < s.size();) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    int len = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 0;
    if (len == 0 || i + len > s.size()) {
      ++i;
      continue;
    }
    char32_t cp = len == 1 ? c : c & (0xFF >> (len + 1));
    for (int k = 1; k < len; ++k) cp = (cp << 6) | (static_cast<unsigned char>(s[i + k]) & 0x3F);
    out.push_back(cp);
    i += len;
  }
  return out;
}

bool IsJapanese(char32_t c) {
  return (c >= 0x3000 && c <= 0x30FF) || (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0xFF00 && c <= 0xFFEF);
}

// The share of Japanese characters among the letters of the prose, code spans
// left out.
double JapaneseShare(const Guide& g) {
  std::string text = std::regex_replace(g.prose, std::regex("`[^`]*`"), "");
  size_t ja = 0, latin = 0;
  for (char32_t c : CodePoints(text)) {
    if (IsJapanese(c)) ++ja;
    if (c < 0x80 && ((c | 0x20) >= 'a' && (c | 0x20) <= 'z')) ++latin;
  }
  return ja + latin == 0 ? 0.0 : static_cast<double>(ja) / static_cast<double>(ja + latin);
}

// ---- what the program says --------------------------------------------------

// The item numbers of the main menu as the program prints it.
std::set<int> MenuItemsShown(int lang) {
  e2e::RunSpec spec;
  spec.ini = e2e::Ini("NWW", lang);
  spec.input = "\n123\n";
  e2e::RunResult r = e2e::run(spec);
  std::set<int> items;
  const std::regex item(R"(^\s*(\d+)[. ])");
  bool inMenu = false;
  for (const std::string& line : Lines(r.out)) {
    if (line.find("Menu:") != std::string::npos || line.find("メニュー：") != std::string::npos) inMenu = true;
    std::smatch m;
    if (inMenu && std::regex_search(line, m, item)) items.insert(std::stoi(m[1]));
    if (line.find("Input a menu number.") != std::string::npos || line.find("メニュー番号を入力") != std::string::npos) {
      if (inMenu) break;
    }
  }
  return items;
}

// The settings file as the program writes it on a first start: section, key
// and value of every line.
struct IniKey {
  std::string section, key, value;
};

std::vector<IniKey> DefaultSettings() {
  fs::path dir = fs::temp_directory_path() / ("drillasm-guide-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  const std::string path = (dir / "drillasm.ini").string();
  WriteDefaultSettings(path);
  boost::property_tree::ptree t;
  boost::property_tree::read_ini(path, t);
  fs::remove_all(dir);
  std::vector<IniKey> keys;
  for (const auto& [section, entries] : t) {
    for (const auto& [key, value] : entries) keys.push_back({section, key, value.data()});
  }
  return keys;
}

// The two reports of the guide's example program, `src/first.txt`, whose
// source is the guide's first CASL II block.
struct Reports {
  std::string assembled, resultant, console;
};

Reports ReportsOf(const std::vector<std::string>& source) {
  std::string text;
  for (const std::string& line : source) text += line + "\n";
  e2e::RunSpec spec;
  spec.ini = e2e::Ini("NWW", 1);
  spec.files["src/first.txt"] = text;
  spec.input = "\n1\nsrc/first\n\n123\n";
  e2e::RunResult r = e2e::run(spec);
  return {r.files["aaAssembledRegMry.txt"], r.files["aaResultantRegMry.txt"], r.out};
}

const CodeBlock* FirstBlock(const Guide& g, const std::string& info, const std::string& holding) {
  for (const CodeBlock& b : g.blocks) {
    if (b.info != info) continue;
    for (const std::string& line : b.lines) {
      if (line.find(holding) != std::string::npos) return &b;
    }
  }
  return nullptr;
}

std::string OperandForm(OpForm f) {
  switch (f) {
    case OpForm::RAdrX: return " r,adr[,x]";
    case OpForm::R1R2: return " r1,r2";
    case OpForm::AdrX: return " adr[,x]";
    case OpForm::R: return " r";
    default: return "";
  }
}

// ---- the two guides, each with the words of its language --------------------

struct Language {
  const char* file;
  const char* other;  // the guide in the other language
  // The meaning of each menu item: a word that its row must hold.
  std::map<int, std::string> itemWords;
  const char* emptyDefault;                // the default cell of an empty value
  std::vector<std::string> reportWords;    // parts of the report told in words
  bool japanese;
};

const Language kEnglish{
    "docs/help.md",
    "help.ja.md",
    {{1, "assembles"},
     {11, "again"},
     {2, "aaAssembledRegMry.txt"},
     {3, "aaResultantRegMry.txt"},
     {4, "ls -l"},
     {5, "editor"},
     {55, "editor"},
     {123, "drillasm.ini"},
     {7, "mode selector"},
     {8, "drillasm.ini"},
     {9, "Japanese"},
     {10, "help.ja.md"},
     {85, "rm -i"},
     {88, "rm -i"}},
    "empty",
    {"count", "source", "The stack table", "dashed line", "reserved area", "Literal:("},
    false,
};

const Language kJapanese{
    "docs/help.ja.md",
    "help.md",
    {{1, "アセンブル"},
     {11, "もう一度"},
     {2, "aaAssembledRegMry.txt"},
     {3, "aaResultantRegMry.txt"},
     {4, "ls -l"},
     {5, "エディタ"},
     {55, "エディタ"},
     {123, "drillasm.ini"},
     {7, "モードセレクタ"},
     {8, "drillasm.ini"},
     {9, "日本語"},
     {10, "help.ja.md"},
     {85, "rm -i"},
     {88, "rm -i"}},
    "空",
    {"実行回数", "ソース", "スタック表", "破線", "予約領域", "Literal:("},
    true,
};

// The items that the menu accepts without listing them.
const std::set<int> kUnlistedItems{7, 8, 9, 10, 85, 88};

// A key that the program reads but never writes.
const IniKey kReadOnlyKey{"Editor", "TimeFuncInt", ""};

// The macro and assembler instructions, as the first cell of their rows.
const char* const kOtherInstructions[] = {
    "`IN buf,len`", "`OUT buf,len`", "`RPUSH`", "`RPOP`", "`NAME START`", "`NAME START ENTRY`",
    "`END`", "`LABEL DC c,c,...`", "`LABEL DS n`",
};

// The name of a guide in the listing of the tests.
void PrintTo(const Language& l, std::ostream* os) { *os << l.file; }

class GuideTest : public ::testing::TestWithParam<Language> {
 protected:
  static void SetUpTestSuite() {
    english_ = new Guide(ReadGuide(kEnglish.file));
    japanese_ = new Guide(ReadGuide(kJapanese.file));
  }
  static void TearDownTestSuite() {
    delete english_;
    delete japanese_;
  }
  const Guide& guide() const { return GetParam().japanese ? *japanese_ : *english_; }
  const Language& lang() const { return GetParam(); }

  static Guide* english_;
  static Guide* japanese_;
};

Guide* GuideTest::english_ = nullptr;
Guide* GuideTest::japanese_ = nullptr;

TEST_P(GuideTest, EveryMenuItemHasARowThatSaysWhatItDoes) {
  std::set<int> items = MenuItemsShown(lang().japanese ? 0 : 1);
  ASSERT_EQ(items, (std::set<int>{1, 11, 2, 3, 4, 5, 55, 123})) << "the menu the program prints";
  items.insert(kUnlistedItems.begin(), kUnlistedItems.end());
  for (int item : items) {
    auto word = lang().itemWords.find(item);
    ASSERT_NE(word, lang().itemWords.end()) << "no meaning known for item " << item;
    EXPECT_TRUE(HasItemRow(guide(), item, word->second))
        << guide().path << ": no table row for item " << item << " that says \"" << word->second << "\"";
  }
}

TEST_P(GuideTest, EverySettingsKeyHasARowWithItsDefault) {
  std::vector<IniKey> keys = DefaultSettings();
  ASSERT_GE(keys.size(), 12u) << "the settings file the program writes";
  auto rowOf = [&](const IniKey& k) -> const std::vector<std::string>* {
    for (const auto& row : guide().rows) {
      if (row.size() >= 4 && row[0] == "`[" + k.section + "]`" && row[1] == "`" + k.key + "`") return &row;
    }
    return nullptr;
  };
  for (const IniKey& k : keys) {
    const std::vector<std::string>* row = rowOf(k);
    ASSERT_NE(row, nullptr) << guide().path << ": no row for [" << k.section << "] " << k.key;
    const std::string want = k.value.empty() ? std::string(lang().emptyDefault) : "`" + k.value + "`";
    EXPECT_EQ((*row)[2], want) << guide().path << ": default of [" << k.section << "] " << k.key;
  }
  // The key that the program reads and never writes has no default.
  EXPECT_NE(rowOf(kReadOnlyKey), nullptr) << guide().path << ": no row for [Editor] TimeFuncInt";
}

TEST_P(GuideTest, TheFreshSettingsFileIsShownAsTheProgramWritesIt) {
  const CodeBlock* ini = FirstBlock(guide(), "ini", "[Mode]");
  ASSERT_NE(ini, nullptr) << guide().path << ": no ini block";
  std::vector<std::string> shown;
  for (const std::string& line : ini->lines) shown.push_back(RTrim(line));
  std::vector<std::string> written;
  std::string section;
  for (const IniKey& k : DefaultSettings()) {
    if (k.section != section) written.push_back("[" + (section = k.section) + "]");
    written.push_back(k.key + "=" + k.value);
  }
  EXPECT_EQ(shown, written);
}

TEST_P(GuideTest, TheReportExcerptIsWhatTheProgramWritesForTheGuidesExample) {
  const CodeBlock* source = FirstBlock(guide(), "casl", " START");
  ASSERT_NE(source, nullptr) << guide().path << ": no example program";
  const CodeBlock* excerpt = FirstBlock(guide(), "text", "VM COMET2: aaResultantRegMry.txt");
  ASSERT_NE(excerpt, nullptr) << guide().path << ": no report excerpt";

  const Reports reports = ReportsOf(source->lines);
  ASSERT_FALSE(reports.resultant.empty()) << reports.console;

  // Every line of the excerpt stands in the report, in the same order; "..."
  // stands for rows left out, and the date depends on the clock.
  std::vector<std::string> real = Lines(reports.resultant);
  size_t at = 0;
  for (const std::string& line : excerpt->lines) {
    if (line == "..." || line.rfind("Src. File:", 0) == 0) continue;
    while (at < real.size() && RTrim(real[at]) != RTrim(line)) ++at;
    ASSERT_LT(at, real.size()) << guide().path << ": not in the report, or out of order: \"" << line << "\"";
    ++at;
  }
}

TEST_P(GuideTest, EveryColumnAndPartOfBothReportsIsExplained) {
  const CodeBlock* source = FirstBlock(guide(), "casl", " START");
  ASSERT_NE(source, nullptr);
  const Reports reports = ReportsOf(source->lines);
  ASSERT_FALSE(reports.assembled.empty()) << reports.console;

  std::set<std::string> parts;
  const std::regex label(R"(^\s*([A-Z][A-Za-z0-9. ]*):)");
  const std::regex flag(R"(([A-Za-z]+)=)");
  for (const std::string* report : {&reports.assembled, &reports.resultant}) {
    for (const std::string& line : Lines(*report)) {
      std::smatch m;
      // The heads of the columns, cut at runs of blanks.
      if (line.find("Char  Hex") != std::string::npos) {
        std::string head = std::regex_replace(Trim(line), std::regex(" {2,}"), "|");
        std::stringstream cols(head);
        for (std::string col; std::getline(cols, col, '|');) {
          // "Address     Label Char" holds three heads parted by single blanks.
          if (col.rfind("Label ", 0) == 0) {
            parts.insert("Label");
            col = col.substr(6);
          }
          parts.insert(col);
        }
      } else if (line.rfind("Flags:", 0) == 0) {
        parts.insert("Flags:");
        for (auto it = std::sregex_iterator(line.begin(), line.end(), flag); it != std::sregex_iterator(); ++it)
          parts.insert((*it)[1]);
      } else if (line.rfind("The Stack Pointer(SP) has pointed at", 0) == 0) {
        parts.insert("The Stack Pointer(SP) has pointed at");
      } else if (line[0] != '#' && std::regex_search(line, m, label)) {
        parts.insert(std::string(m[1]) + ":");  // "   PR:", "  GR0:", "Src. File:", "VM COMET2:"
      }
    }
  }
  for (const char* must : {"Char", "Hex", "UD", "SD", "Binary Code", "Address", "Label", "PR:", "GR7:", "SP:",
                           "Fovf", "Fsign", "Fzero", "Src. File:", "VM COMET2:"}) {
    EXPECT_TRUE(parts.count(must)) << "the report has no part \"" << must << "\": the test reads it wrongly";
  }
  for (const std::string& part : parts) {
    // The general registers are told as one range, `GR0:` to `GR7:`.
    if (std::regex_match(part, std::regex("GR[1-6]:"))) continue;
    EXPECT_NE(guide().prose.find("`" + part + "`"), std::string::npos)
        << guide().path << ": the report's part `" << part << "` is not explained";
  }
  for (const std::string& word : lang().reportWords) {
    EXPECT_NE(guide().prose.find(word), std::string::npos) << guide().path << ": nothing on \"" << word << "\"";
  }
}

TEST_P(GuideTest, EveryFormOfTheInstructionTableHasARowWithItsCode) {
  for (const InstrForm& f : kInstrTable) {
    const std::string first = "`" + std::string(f.mnemonic) + OperandForm(f.form) + "`";
    const std::vector<std::string>* row = RowStartingWith(guide(), first);
    ASSERT_NE(row, nullptr) << guide().path << ": no row for " << first;
    char code[8];
    std::snprintf(code, sizeof code, "#%02X", f.code);
    EXPECT_EQ((*row)[1], code) << guide().path << ": code of " << first;
  }
  for (const char* first : kOtherInstructions) {
    EXPECT_NE(RowStartingWith(guide(), first), nullptr) << guide().path << ": no row for " << first;
  }
}

TEST_P(GuideTest, RelativeLinksNameFilesThatExist) {
  const std::regex link(R"(\[[^\]]*\]\(([^)\s]+)\))");
  const fs::path base = fs::path(guide().path).parent_path();
  int relative = 0;
  for (auto it = std::sregex_iterator(guide().prose.begin(), guide().prose.end(), link);
       it != std::sregex_iterator(); ++it) {
    std::string target = (*it)[1];
    if (target.find("://") != std::string::npos || target.rfind("mailto:", 0) == 0 || target[0] == '#') continue;
    target = target.substr(0, target.find('#'));
    ++relative;
    EXPECT_TRUE(fs::exists(base / target)) << guide().path << ": the link " << target << " leads nowhere";
  }
  EXPECT_GE(relative, 1) << guide().path << ": no link to the guide in the other language";
  EXPECT_NE(guide().prose.find(std::string("](") + lang().other + ")"), std::string::npos);
}

TEST_P(GuideTest, IsWrittenInItsLanguage) {
  const double share = JapaneseShare(guide());
  if (lang().japanese) {
    EXPECT_GT(share, 0.75) << guide().path << " is not mostly Japanese";
  } else {
    EXPECT_LT(share, 0.02) << guide().path << " is not English";
  }
}

INSTANTIATE_TEST_SUITE_P(Guides, GuideTest, ::testing::Values(kEnglish, kJapanese),
                         [](const ::testing::TestParamInfo<Language>& info) {
                           return info.param.japanese ? std::string("Japanese") : std::string("English");
                         });

// ---- the two guides together, and the manual page ---------------------------

TEST(Guides, HaveTheSamePartsAndTheSameExamples) {
  const Guide en = ReadGuide(kEnglish.file);
  const Guide ja = ReadGuide(kJapanese.file);
  ASSERT_EQ(en.headings.size(), ja.headings.size()) << "the guides have different parts";
  for (size_t i = 0; i < en.headings.size(); ++i) {
    // The parts are numbered alike: "## 7. Reading the reports", "## 7. レポートの読み方".
    EXPECT_EQ(en.headings[i].substr(0, en.headings[i].find('.')), ja.headings[i].substr(0, ja.headings[i].find('.')));
  }
  std::vector<std::vector<std::string>> enCasl, jaCasl;
  for (const CodeBlock& b : en.blocks)
    if (b.info == "casl") enCasl.push_back(b.lines);
  for (const CodeBlock& b : ja.blocks)
    if (b.info == "casl") jaCasl.push_back(b.lines);
  EXPECT_FALSE(enCasl.empty());
  EXPECT_EQ(enCasl, jaCasl) << "the CASL II examples differ between the guides";
}

TEST(ManualPage, NamesEveryMenuItemAndEverySettingsKey) {
  const std::string page = e2e::read_file(e2e::source_path("docs/drillasm.1.scd"));
  std::set<int> items = MenuItemsShown(1);
  items.insert(kUnlistedItems.begin(), kUnlistedItems.end());
  for (int item : items) {
    EXPECT_NE(page.find("*" + std::to_string(item) + "*"), std::string::npos) << "menu item " << item;
  }
  for (const IniKey& k : DefaultSettings()) {
    EXPECT_NE(page.find(k.key), std::string::npos) << "settings key " << k.key;
    EXPECT_NE(page.find("*[" + k.section + "]*"), std::string::npos) << "section " << k.section;
  }
  for (const char* file : {"aaAssembledRegMry.txt", "aaResultantRegMry.txt", "share/doc/drillasm/help.md",
                           "share/doc/drillasm/help.ja.md", "share/drillasm/examples/"}) {
    EXPECT_NE(page.find(file), std::string::npos) << file;
  }
  for (const char* var : {"VISUAL", "EDITOR", "SOURCE_DATE_EPOCH", "DISPLAY", "WAYLAND_DISPLAY"}) {
    EXPECT_NE(page.find(std::string("*") + var + "*"), std::string::npos) << var;
  }
  EXPECT_NE(page.find("*drillasm-cli*(1)"), std::string::npos);
}

}  // namespace
