// File names typed at the console: trimming, normalising, the existence test
// and the readers that try the extensions.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "records/console.h"
#include "records/singletons.h"
#include "source/filename.h"

namespace fs = std::filesystem;

namespace {

TEST(ShellFilename, TrimAndNorm) {
  struct Row { std::string (*fn)(std::string_view); const char *in, *out; } rows[] = {
      {TrimFilenameStr, "  src/a.txt\t ", "src/a.txt"}, {TrimFilenameStr, "@src/a@", "src/a"},
      {TrimFilenameStr, "\xE3\x80\x80 src/a \xE3\x80\x80", "src/a"}, {TrimFilenameStr, "my file", "my file"},
      {TrimFilenameStr, " \t@\xE3\x80\x80", ""}, {TrimFilenameStr, "", ""},
      {TrimFilenameStr, "\xE3\x81\x82.txt", "\xE3\x81\x82.txt"},  // same lead byte, no wide space
      {TrimFilenameStr, "a\xE3\x80", "a\xE3\x80"},                // half a wide space
      {NormFilenameStr, "", ""}, {NormFilenameStr, " src\\pn1000.txt ", "src/pn1000.txt"},
      {NormFilenameStr, "a\\\\b\\c", "a//b/c"}, {NormFilenameStr, "my file.txt", "\"my file.txt\""},
      {NormFilenameStr, "mail@home", "\"mail@home\""},
      {NormFilenameStr, "a\xE3\x80\x80" "b", "\"a\xE3\x80\x80" "b\""}, {SlashFilenameStr, "src\\pn1000", "src/pn1000"},
  };
  for (const Row& r : rows) EXPECT_EQ(r.fn(r.in), r.out) << r.in;
}

TEST(ShellFilename, ExistenceAndTheReaders) {
  std::string t = (fs::temp_directory_path() / "drillasm-fn-XXXXXX").string();
  const std::string d = std::string(mkdtemp(t.data())) + "/";
  for (const char* f : {"src/prog.txt", "src/bare", "src/only.asl", "src/pile.txt.asl", "my prog.txt"}) {
    fs::create_directories(fs::path(d + f).parent_path());
    std::ofstream(d + f) << "x\n";
  }
  EXPECT_TRUE(FileExistsStr("  " + d + "src/prog.txt "));
  for (const std::string& no : {d + "src", d + "src/none.txt", std::string(), d + "my prog.txt"})
    EXPECT_FALSE(FileExistsStr(no)) << no;  // a folder, none, empty, quoted for the blank

  std::string out;
  con::SetCapture(&out);
  fileData->SetLangBoth(1);
  // name typed -> file found ("" when none); the extensions pile up
  for (auto [in, found] : {std::pair{"\n  " + d + "src/prog  \n", d + "src/prog.txt"},
                           {d + "src/bare\n", d + "src/bare"}, {d + "src/only\n", std::string()},
                           {d + "src/pile\n", d + "src/pile.txt.asl"}}) {
    con::SetInputForTest(in);
    EXPECT_EQ(GetFilenameWithExtStr(), found) << in;
    con::Flush();
  }
  EXPECT_EQ(out, "The file is not found there. *");
  EXPECT_EQ(fileData->LastSrcFile, d + "src/pile.txt.asl");
  EXPECT_EQ(fileData->LastSrcFileW, Utf8ToU16(d + "src/pile.txt.asl"));
  out.clear();
  fileData->SetLangBoth(0);
  con::SetInputForTest(d + "nothing\n");
  EXPECT_EQ(GetFilenameWithExtStr(), "");
  EXPECT_EQ(out, "ファイルが見つかりませんでした。\n");
  EXPECT_EQ(fileData->LastSrcFile, d + "src/pile.txt.asl");  // the last good one stays
  fileData->SetLangBoth(1);

  out.clear();
  con::SetInputForTest("  src\\example  \n\n");
  EXPECT_EQ(GetFilenameStrA_TPO(), "src/example");
  EXPECT_EQ(GetFilenameStrA_TPO(), "");
  EXPECT_EQ(out, "No Input Error!\n");
  EXPECT_THROW(GetFilenameStrA_TPO(), con::InputEnded);  // the end of a piped input
  con::SetInputForTest("   \n\n");
  EXPECT_THROW(GetFilenameWithExtStr(), con::InputEnded);
  con::SetCapture(nullptr);
  fs::remove_all(d);
}

}  // namespace
