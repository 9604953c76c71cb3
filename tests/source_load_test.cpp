// Encoding detection and source loading: the census and banner of each
// encoding, the rules of both loaders, the decoders, the failure messages,
// and bad input that must neither crash nor hang.
#include <sys/stat.h>

#include "source/source.h"
#include "source_fixture.h"

namespace {

using namespace srctest;

class SourceLoad : public Fixture {
 protected:
  // Detection, then the loader that LoadSourceW picks.
  int Load(const std::string& path) {
    DetTextCodeW(*fileData, path);
    if (moziCode->codePage == 1200 || moziCode->codePage == 1201) return OpenFileUTF16toVecW(path);
    return OpenFileUTF8toVecW(path);
  }
};

TEST_F(SourceLoad, CensusBannerAndCodeOfEachEncoding) {
  struct { std::string bytes, census, name; int page, kind; std::string tag; Texts raw; } rows[] = {
      {"AB C\nD\n", "(7, 0, 0)", "sjis", 932, 0, "", {u"AB C", u"D"}},
      {"\x82\xA0\\~\n\x83\x41\n", "(4, 2, 0)", "sjis", 932, 0, "", {u"あ\\~", u"ア"}},
      {"\xE3\x82\xA2X\n", "(2, 1, 1)", "utf-8", 65001, 0, "", {u"アX"}},  // A2 is "non"
      {"\xEF\xBB\xBFX", "", "utf-8 with bom(EF BB BF)", 65001, 3, "EFBBBF", {u"X"}},
      {std::string("\xFF\xFEX\0", 4), "", "utf-16 le(FF FE)", 1200, 2, "FFFE", {u"X"}},
      {std::string("\xFE\xFF\0X", 4), "", "utf-16 be(FE FF)", 1201, 2, "FEFF", {u"X"}},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.name);
    Fresh();
    *moziCode = TMoziCode{};
    std::string p = Write("m.txt", r.bytes), census = "MoziKazu(ascii, sjis, non)=" + r.census + "\n";
    ASSERT_EQ(Load(p), 0);
    EXPECT_EQ(out, "\n" + (r.census.empty() ? "" : census) + "\n* Reading " + p + "   " + r.name + "\n\n");
    EXPECT_EQ(std::to_string(moziCode->codePage) + " " + std::to_string(moziCode->bomKind) + moziCode->bomTag,
              std::to_string(r.page) + " " + std::to_string(r.kind) + r.tag);
    EXPECT_EQ(moziCode->codeNameW, Utf8ToU16(r.name));
    EXPECT_EQ(Raw(), r.raw);
  }
  // EF followed by anything but BB BF is no mark; the last tag met stays.
  EXPECT_EQ(DetBOM_MzC(Write("n.txt", "\xEF\xBB" "A")), "");
  EXPECT_EQ(moziCode->codeName + moziCode->bomTag, "utf-8 or sjisFEFF");
  EXPECT_EQ(moziCode->bomKind, 0);
}

TEST_F(SourceLoad, CensusWithItsDeliberateLeadByteRanges) {
  // 0x80-0x97 and 0xE0-0xFC swallow the next byte; 0x7F, 0x98-0xDF and
  // 0xFD-0xFF are "non"; a missing second byte goes unnoticed.
  struct { std::string bytes, census, name; } rows[] = {
      {std::string("\x00\x0A\x7E\x80\x41\x97\xFF\xE0\x0A\xFC\x98\x7F\x98\xDF\xFD\xFF", 16), "(3, 4, 5)", "utf-8"},
      {"\x98\x9F", "(0, 0, 2)", "utf-8"},  // genuine Shift-JIS taken for UTF-8
      {"", "(0, 0, 0)", "sjis"}, {"\xE0", "(0, 1, 0)", "sjis"}};
  for (const auto& r : rows) {
    out.clear();
    Det_sjisMzC(Write("c.txt", r.bytes));
    EXPECT_EQ(out, "MoziKazu(ascii, sjis, non)=" + r.census + "\n");
    EXPECT_EQ(moziCode->codeName, r.name);
  }
}

TEST_F(SourceLoad, BannersByLanguageAndTitle) {
  std::string p = Write("j.txt", "A\n");
  struct { int lang, title; std::string banner; bool census; } rows[] = {
      {0, 0, "\n'" + p + "'    sjis", true},  // no line end
      {0, 1, "\n'" + p + "'     を読み込みます。 \n", false},
      {1, 1, "\n* Reading " + p + "\n\n", false},
      {1, 7, "\n* Reading " + p + "   sjis\n\n", true}};  // set back to 0
  for (const auto& r : rows) {
    Fresh(r.lang);
    b->SimpleTitleIndex = r.title;
    moziCode->codePage = 65001;  // kept from an earlier file when the census does not run
    ASSERT_EQ(Load(p), 0);
    EXPECT_EQ(out.substr(out.size() - r.banner.size()), r.banner);
    EXPECT_EQ(out.find("MoziKazu") != std::string::npos, r.census);
    EXPECT_EQ(moziCode->codePage, r.census ? 932 : 65001);
    EXPECT_EQ(b->SimpleTitleIndex, r.title == 7 ? 0 : r.title);
  }
}

TEST_F(SourceLoad, LineRulesOfBothLoaders) {
  // page -1: detected; else the code page kept from the last file under the short title.
  struct { std::string bytes; int page; Texts raw; } rows[] = {
      {"", -1, {}},
      // CR LF folds; a lone CR stays; an empty middle line is a record; no
      // record behind a final line end; an unterminated last line counts.
      {"A\r\n\r\nB\rC\nD", -1, {u"A", u"", u"B\rC", u"D"}},
      {"A\nB\n", -1, {u"A", u"B"}},
      {"\x82\xA0\n", 0, {u"あ"}},  // the first file under the short title: code page 0 decodes as Shift-JIS
      // UTF-16: only CR LF ends a line, and behind the last one comes one more record.
      {Utf16(u"A\nB\rC"), -1, {u"A\nB\rC"}},
      {Utf16(u"A\r\nB\r\n"), -1, {u"A", u"B", u""}},
      {"\xFF\xFE", -1, {u""}},
      {Utf16(u"AB\uFFFFCD"), -1, {u"AB"}},         // 0xFFFF ends the file there
      {Utf16(u"AB") + "C", -1, {u"AB\xFF43"}},     // odd count: the high half from the end-of-file value
      {Utf16(u"\u3042X\r\nY", true), -1, {u"BX", u"Y"}},  // big-endian keeps the low byte only
      {Utf16(u"AB", true) + std::string(1, '\0'), -1, {u"AB"}},
      {"A", 1200, {u""}}, {"", 1200, {u""}}, {"A", 1201, {u""}},  // one byte: only under the short title
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.bytes);
    Fresh();
    *moziCode = TMoziCode{};
    b->SimpleTitleIndex = r.page >= 0;
    moziCode->codePage = std::max(r.page, 0);
    ASSERT_EQ(Load(Write("r.txt", r.bytes)), 0);
    EXPECT_EQ(Raw(), r.raw);
  }
}

TEST_F(SourceLoad, AMarkMetEarlierStillTakesTheFirstLineStep) {
  ASSERT_EQ(Load(Write("bom.txt", "\xEF\xBB\xBF" "AB\nCD\n")), 0);
  EXPECT_EQ(Raw(), (Texts{u"AB", u"CD"}));
  // A later unmarked file detected as UTF-8 loses its first 3 bytes; a
  // shorter first line loses what it has.
  ASSERT_EQ(Load(Write("later.txt", "ABCDEF\n\xE3\x82\xA2\n")), 0);
  EXPECT_EQ(moziCode->bomTag + std::to_string(moziCode->codePage), "EFBBBF65001");
  EXPECT_EQ(Raw(), (Texts{u"DEF", u"ア"}));
  ASSERT_EQ(Load(Write("short.txt", "A\n\xE3\x82\xA2\n")), 0);
  EXPECT_EQ(Raw(), (Texts{u"", u"ア"}));
  // Detected as Shift-JIS: the first line is still decoded as UTF-8.
  ASSERT_EQ(Load(Write("mixed.txt", "\xE3\x81\x82\n\x82\xA0\n")), 0);
  EXPECT_EQ(moziCode->codePage, 932);
  EXPECT_EQ(Raw(), (Texts{u"あ", u"あ"}));
}

TEST_F(SourceLoad, DecodersNeverStopOnBadBytes) {
  EXPECT_EQ(Utf8ToWStr("\xC3\x28" "A"), u"\uFFFD(A");
  EXPECT_EQ(Utf8ToWStr("\xF0\x9F\x98\x80"), u"\U0001F600");
  EXPECT_EQ(Utf8ToWStr(std::string("AB\0CD", 5)), u"AB");  // zero-ended
  EXPECT_EQ(AnsiToWStr("\x81\x20" "A"), u"\uFFFD A");       // a bad second byte
  EXPECT_EQ(AnsiToWStr("A\x82"), u"A\uFFFD");               // a lead byte at the end
  EXPECT_EQ(AnsiToWStr("\xB1"), u"\uFF71");                 // 1-byte katakana
  EXPECT_EQ(AnsiToWStr(std::string("X\0Y", 3)), u"X");
  std::string all;
  for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
  EXPECT_FALSE(AnsiToWStr(all).empty() || Utf8ToWStr(all).empty());
}

TEST_F(SourceLoad, FiveEncodingsOfOneProgramLoadIntoIdenticalRecords) {
  const std::u16string text = u"PRG\tSTART\r\n  LD GR1,A ; x\r\n\tRET\r\nA DC 5\r\n END";
  const std::string ascii = U16ToUtf8(text);
  const std::string files[] = {ascii, ascii + "\r\n;\xE3\x82\xA2", "\xEF\xBB\xBF" + ascii, Utf16(text), Utf16(text, true)};
  std::vector<Texts> raws, edits;
  std::vector<std::string> names;
  for (const std::string& f : files) {
    *moziCode = TMoziCode{};
    ASSERT_EQ(Load(Write("p.txt", f)), 0);
    names.push_back(moziCode->codeName);
    b->vecSrcW.resize(5);  // the UTF-8 file's comment line goes
    ASSERT_EQ(editNWB(), 0);
    raws.push_back(Raw());
    edits.push_back(F(&SrcLineW::editStr));
  }
  EXPECT_EQ(names, (std::vector<std::string>{"sjis", "utf-8", "utf-8 with bom(EF BB BF)", "utf-16 le(FF FE)",
                                               "utf-16 be(FE FF)"}));
  EXPECT_EQ(raws[0][1], u"  LD GR1,A ; x");
  EXPECT_EQ(raws, std::vector<Texts>(5, raws[0]));
  EXPECT_EQ(edits, std::vector<Texts>(5, edits[0]));
}

TEST_F(SourceLoad, AFileThatDoesNotOpen) {
  Lines({u"OLD"});
  std::string p = (dir / "nosuch.txt").string();
  moziCode->codePage = 932;
  DetTextCodeW(*fileData, p);  // each detector says its line; nothing changes
  EXPECT_EQ(out, "Error: Fail to open " + p + ".\nFail to open " + p + ".\n\n* Reading " + p + "   \n\n");
  EXPECT_EQ(moziCode->codePage, 932);
  out.clear();
  EXPECT_EQ(OpenFileUTF8toVecW(p), -3);
  EXPECT_EQ(out, "\nThe file  \"" + p + "\"  does not open on binary mode. \nMisspellings?  \nOr the file does not exist there. *\n");
  EXPECT_EQ(OpenFileUTF16toVecW(p), -4);
  EXPECT_EQ(LogCodes(), (Codes{"88886875", "7CA76875"}));
  EXPECT_EQ(msgLog->WideLog[0].kind, 100);
  EXPECT_EQ(Errors(), 0);  // reported, not counted
  EXPECT_EQ(Raw(), Texts{u"OLD"});  // the old records stay
  SetLang(0);
  out.clear();
  EXPECT_EQ(OpenFileUTF8toVecW(p), -3);
  EXPECT_EQ(out, "\n \"" + p + "\"  (binary mode)を開くことができません。 ミススペル あるいは ファイルが存在しない。 *\n");
  EXPECT_EQ(Errors(), 0);
  out.clear();
  EXPECT_EQ(DetBOM_MzC(""), "");
  EXPECT_EQ(out, "fname is empty.\n");
}

TEST_F(SourceLoad, BadInputNeitherCrashesNorHangs) {
  // A folder given as the file name.
  EXPECT_EQ(Load(dir.string()), -3);
  EXPECT_EQ(OpenFileUTF16toVecW(dir.string()), -4);
  // A file without read permission (root reads every file).
  std::string locked = Write("locked.txt", "A START\n");
  ASSERT_EQ(chmod(locked.c_str(), 0), 0);
  EXPECT_EQ(Load(locked), geteuid() == 0 ? 0 : -3);
  // A binary file with NUL bytes, through the front stages.
  std::string bin;
  for (unsigned k = 0, x = 12345; k < 100000; ++k) bin += static_cast<char>((x = x * 1103515245u + 12345u) >> 16);
  EXPECT_EQ(Load(Write("bin.dat", bin)), 0);
  EXPECT_FALSE(b->vecSrcW.empty());
  Front(Raw());
  // Invalid UTF-8, and bytes in the Shift-JIS pair ranges that are no character.
  ASSERT_EQ(Load(Write("bad8.txt", "A\xC3\x28\xFE\n")), 0);
  EXPECT_EQ(moziCode->codePage, 65001);
  EXPECT_EQ(Raw(), Texts{u"A\uFFFD(\uFFFD"});
  ASSERT_EQ(Load(Write("badsjis.txt", "\x85\x40Z\n\xFC\xFC\n")), 0);
  EXPECT_EQ(moziCode->codePage, 932);
  ASSERT_EQ(b->vecSrcW.size(), 2u);
  EXPECT_TRUE(Raw()[0].find(u'\uFFFD') < Raw()[0].size() && Raw()[0].back() == u'Z' && Raw()[1].find(u'\uFFFD') < 2);
  // A 20 MB file, and a line of 1 MB.
  Fresh();
  std::string big = "PRG START\n";
  while (big.size() < 20u << 20) big += " NOP ;" + std::string(194, 'x') + "\n";
  ASSERT_EQ(Load(Write("big.txt", big + " RET\n END\n")), 0);
  EXPECT_GT(b->vecSrcW.size(), 100000u);
  EXPECT_EQ(Front(Raw()), 0);
  EXPECT_EQ(b->GetPrgKazuInFile(), 1);
  Fresh();
  ASSERT_EQ(Load(Write("long.txt", "PRG START\n LD GR1," + std::string(1 << 20, 'A') + "\n RET\n END\n")), 0);
  ASSERT_EQ(b->vecSrcW.size(), 4u);
  EXPECT_EQ(b->vecSrcW[1].rawStr.size(), (1u << 20) + 8);
  EXPECT_EQ(Front(Raw()), 0);
}

}  // namespace
