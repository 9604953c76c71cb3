// File names typed at the console: trimming, normalising, the existence test
// and the reader that tries the extensions.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "records/console.h"
#include "records/singletons.h"
#include "source/filename.h"

namespace fs = std::filesystem;

namespace {

struct Captured {
  std::string out;
  Captured() { con::SetCapture(&out); }
  ~Captured() { con::SetCapture(nullptr); }
};

class ScratchDir {
 public:
  ScratchDir() {
    std::string t = (fs::temp_directory_path() / "drillasm-fn-XXXXXX").string();
    dir_ = mkdtemp(t.data());
  }
  ~ScratchDir() {
    std::error_code ec;
    fs::remove_all(dir_, ec);
  }
  std::string Put(const std::string& rel, const std::string& text = "x\n") {
    fs::path p = fs::path(dir_) / rel;
    fs::create_directories(p.parent_path());
    std::ofstream(p) << text;
    return p.string();
  }
  std::string Path(const std::string& rel) const { return (fs::path(dir_) / rel).string(); }

 private:
  std::string dir_;
};

TEST(ShellFilename, TrimRemovesBlanksTabsAtSignsAndWideSpaceAtBothEnds) {
  EXPECT_EQ(TrimFilenameStr("  src/a.txt\t "), "src/a.txt");
  EXPECT_EQ(TrimFilenameStr("@src/a@"), "src/a");
  EXPECT_EQ(TrimFilenameStr("\xE3\x80\x80 src/a \xE3\x80\x80"), "src/a");
  EXPECT_EQ(TrimFilenameStr("my file"), "my file");
  EXPECT_EQ(TrimFilenameStr(" \t@\xE3\x80\x80"), "");
  EXPECT_EQ(TrimFilenameStr(""), "");
  // Other characters of the same lead byte stay.
  EXPECT_EQ(TrimFilenameStr("\xE3\x81\x82.txt"), "\xE3\x81\x82.txt");
  // Half a wide space is no wide space.
  EXPECT_EQ(TrimFilenameStr("a\xE3\x80"), "a\xE3\x80");
}

TEST(ShellFilename, NormTurnsBackslashesAndQuotesNamesWithBlanks) {
  EXPECT_EQ(NormFilenameStr(""), "");
  EXPECT_EQ(NormFilenameStr(" src\\pn1000.txt "), "src/pn1000.txt");
  EXPECT_EQ(NormFilenameStr("a\\\\b\\c"), "a//b/c");
  EXPECT_EQ(NormFilenameStr("my file.txt"), "\"my file.txt\"");
  EXPECT_EQ(NormFilenameStr("mail@home"), "\"mail@home\"");
  EXPECT_EQ(NormFilenameStr("a\xE3\x80\x80" "b"), "\"a\xE3\x80\x80" "b\"");
  EXPECT_EQ(SlashFilenameStr("src\\pn1000"), "src/pn1000");
}

TEST(ShellFilename, FileExistsOnlyForFilesThatOpen) {
  ScratchDir d;
  std::string f = d.Put("src/prog.txt");
  EXPECT_TRUE(FileExistsStr(f));
  EXPECT_TRUE(FileExistsStr("  " + f + " "));
  EXPECT_FALSE(FileExistsStr(d.Path("src")));  // a folder
  EXPECT_FALSE(FileExistsStr(d.Path("src/none.txt")));
  EXPECT_FALSE(FileExistsStr(""));
  // A name with a blank is quoted before the test, so it does not open.
  std::string spaced = d.Put("my prog.txt");
  EXPECT_FALSE(FileExistsStr(spaced));
}

TEST(ShellFilename, ReaderTriesTheExtensionsAndRecordsTheFile) {
  ScratchDir d;
  d.Put("src/prog.txt");
  d.Put("src/bare");
  Captured c;
  fileData->SetLangBoth(1);

  con::SetInputForTest("\n  " + d.Path("src/prog") + "  \n");
  std::string got = GetFilenameWithExtStr();
  EXPECT_EQ(got, d.Path("src/prog.txt"));
  EXPECT_EQ(fileData->LastSrcFile, got);
  EXPECT_EQ(fileData->LastSrcFileW, Utf8ToU16(got));
  EXPECT_EQ(c.out, "");

  con::SetInputForTest(d.Path("src/bare") + "\n");
  EXPECT_EQ(GetFilenameWithExtStr(), d.Path("src/bare"));

  // The extensions pile up: "x.asl" alone is never tried.
  d.Put("src/only.asl");
  con::SetInputForTest(d.Path("src/only") + "\n");
  EXPECT_EQ(GetFilenameWithExtStr(), "");
  con::Flush();
  EXPECT_EQ(c.out, "The file is not found there. *");
  EXPECT_EQ(fileData->LastSrcFile, d.Path("src/bare"));  // the last good one stays
  d.Put("src/pile.txt.asl");
  con::SetInputForTest(d.Path("src/pile") + "\n");
  EXPECT_EQ(GetFilenameWithExtStr(), d.Path("src/pile.txt.asl"));

  c.out.clear();
  fileData->SetLangBoth(0);
  con::SetInputForTest(d.Path("nothing") + "\n");
  EXPECT_EQ(GetFilenameWithExtStr(), "");
  EXPECT_EQ(c.out, "ファイルが見つかりませんでした。\n");
  fileData->SetLangBoth(1);
}

TEST(ShellFilename, FolderReaderAndEndOfInput) {
  Captured c;
  con::SetInputForTest("  src\\example  \n\n");
  EXPECT_EQ(GetFilenameStrA_TPO(), "src/example");
  EXPECT_EQ(GetFilenameStrA_TPO(), "");
  EXPECT_EQ(c.out, "No Input Error!\n");
  // The end of a piped input ends the program at a prompt.
  EXPECT_THROW(GetFilenameStrA_TPO(), con::InputEnded);
  con::SetInputForTest("   \n\n");
  EXPECT_THROW(GetFilenameWithExtStr(), con::InputEnded);
}

}  // namespace
