// Encoding detection and source loading: the byte census and the banner of
// each encoding, the rules of both loaders, the decoders, the failure
// messages, and bad input that must neither crash nor hang.
#include <sys/stat.h>
#include <unistd.h>

#include "source/source.h"
#include "source_fixture.h"

namespace {

using srctest::Fixture;

class SourceLoad : public Fixture {
 protected:
  // Detection, then the loader that LoadSourceW picks.
  int Load(const std::string& path) {
    DetTextCodeW(*fileData, path);
    if (moziCode->codePage == 1200 || moziCode->codePage == 1201) return OpenFileUTF16toVecW(path);
    return OpenFileUTF8toVecW(path);
  }
};

std::string Utf16Le(const std::u16string& s, bool bom = true) {
  std::string r = bom ? std::string("\xFF\xFE") : std::string();
  for (char16_t c : s) {
    r += static_cast<char>(c & 0xFF);
    r += static_cast<char>(c >> 8);
  }
  return r;
}

std::string Utf16Be(const std::u16string& s) {
  std::string r = "\xFE\xFF";
  for (char16_t c : s) {
    r += static_cast<char>(c >> 8);
    r += static_cast<char>(c & 0xFF);
  }
  return r;
}

// ---------------------------------------------------------------------------
// Census and banner

TEST_F(SourceLoad, AsciiFileIsCountedAsSjisWithTheEnglishBanner) {
  std::string p = Write("a.txt", "AB C\nD\n");
  ASSERT_EQ(Load(p), 0);
  EXPECT_NE(out.find("MoziKazu(ascii, sjis, non)=(7, 0, 0)\n"), std::string::npos) << out;
  EXPECT_NE(out.find("\n* Reading " + p + "   sjis\n\n"), std::string::npos) << out;
  EXPECT_EQ(moziCode->codePage, 932);
  EXPECT_EQ(moziCode->codeName, "sjis");
  EXPECT_EQ(moziCode->bomKind, 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"AB C", u"D"}));
}

TEST_F(SourceLoad, CensusTableWithItsDeliberateLeadByteRanges) {
  // 0x80-0x97 and 0xE0-0xFC open a pair and swallow the next byte; 0x7F,
  // 0x98-0xDF and 0xFD-0xFF are "non".
  std::string p = Write("c.txt", std::string("\x00\x0A\x7E\x80\x41\x97\xFF\xE0\x0A\xFC\x98\x7F\x98\xDF\xFD\xFF", 16));
  Det_sjisMzC(p);
  EXPECT_NE(out.find("MoziKazu(ascii, sjis, non)=(3, 4, 5)"), std::string::npos) << out;
  EXPECT_EQ(moziCode->codePage, 65001);
  EXPECT_EQ(moziCode->codeName, "utf-8");
  out.clear();
  // Genuine Shift-JIS with a lead byte above 0x97 (0x98 0x9F) is taken for UTF-8.
  Det_sjisMzC(Write("d.txt", "\x98\x9F"));
  EXPECT_NE(out.find("=(0, 0, 2)"), std::string::npos) << out;
  out.clear();
  Det_sjisMzC(Write("e.txt", ""));  // an empty file: (0, 0, 0) and "sjis"
  EXPECT_NE(out.find("=(0, 0, 0)"), std::string::npos);
  EXPECT_EQ(moziCode->codePage, 932);
  out.clear();
  Det_sjisMzC(Write("f.txt", "\xE0"));  // the missing second byte goes unnoticed
  EXPECT_NE(out.find("=(0, 1, 0)"), std::string::npos);
}

TEST_F(SourceLoad, UnmarkedUtf8WithJapaneseIsUtf8AndDecodes) {
  // "ア" is E3 82 A2: E3 swallows 82, A2 is "non".
  std::string p = Write("u.txt", "\xE3\x82\xA2X\n");
  ASSERT_EQ(Load(p), 0);
  EXPECT_NE(out.find("=(2, 1, 1)"), std::string::npos) << out;
  EXPECT_NE(out.find("   utf-8\n\n"), std::string::npos) << out;
  EXPECT_EQ(moziCode->codePage, 65001);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"アX"}));
}

TEST_F(SourceLoad, ShiftJisDecodesThroughCodePage932) {
  std::string p = Write("s.txt", "\x82\xA0\\~\n\x83\x41\n");  // あ, backslash, tilde; ア
  ASSERT_EQ(Load(p), 0);
  EXPECT_EQ(moziCode->codePage, 932);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"あ\\~", u"ア"}));
}

TEST_F(SourceLoad, MarksAndTheirNamesWithoutACensus) {
  struct Case {
    std::string bytes;
    int kind, page;
    const char* tag;
    const char* name;
  } cases[] = {
      {"\xEF\xBB\xBFX", 3, 65001, "EFBBBF", "utf-8 with bom(EF BB BF)"},
      {std::string("\xFF\xFEX\0", 4), 2, 1200, "FFFE", "utf-16 le(FF FE)"},
      {std::string("\xFE\xFF\0X", 4), 2, 1201, "FEFF", "utf-16 be(FE FF)"},
  };
  for (const Case& c : cases) {
    out.clear();
    std::string p = Write("m.txt", c.bytes);
    ASSERT_EQ(Load(p), 0);
    EXPECT_EQ(out.find("MoziKazu"), std::string::npos) << c.name;
    EXPECT_NE(out.find(std::string("* Reading ") + p + "   " + c.name + "\n\n"), std::string::npos) << out;
    EXPECT_EQ(moziCode->bomKind, c.kind);
    EXPECT_EQ(moziCode->codePage, c.page);
    EXPECT_EQ(moziCode->bomTag, c.tag);
    EXPECT_EQ(moziCode->codeName, c.name);
    EXPECT_EQ(moziCode->codeNameW, Utf8ToU16(c.name));
    EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"X"})) << c.name;
  }
  // EF followed by anything but BB BF is no mark.
  out.clear();
  EXPECT_EQ(DetBOM_MzC(Write("n.txt", "\xEF\xBB" "A")), "");
  EXPECT_EQ(moziCode->codeName, "utf-8 or sjis");
  EXPECT_EQ(moziCode->bomKind, 0);
  EXPECT_EQ(moziCode->bomTag, "FEFF");  // the last mark met stays
}

TEST_F(SourceLoad, JapaneseBannersAndTheShortTitle) {
  SetLang(0);
  std::string p = Write("j.txt", "A\n");
  ASSERT_EQ(Load(p), 0);
  // One empty line, the name in apostrophes, four blanks, the name of the
  // encoding and no line end.
  EXPECT_EQ(out.substr(out.size() - (p.size() + 11)), "\n'" + p + "'    sjis");
  out.clear();
  b->SimpleTitleIndex = 1;
  moziCode->codePage = 65001;  // kept from an earlier file: no census with the short title
  ASSERT_EQ(Load(p), 0);
  EXPECT_EQ(out.find("MoziKazu"), std::string::npos);
  EXPECT_NE(out.find("\n'" + p + "'     を読み込みます。 \n"), std::string::npos) << out;
  EXPECT_EQ(moziCode->codePage, 65001);
  SetLang(1);
  out.clear();
  ASSERT_EQ(Load(p), 0);
  EXPECT_NE(out.find("\n* Reading " + p + "\n\n"), std::string::npos) << out;
  // A value outside 0 and 1 is set back to 0, and the census runs again.
  b->SimpleTitleIndex = 7;
  out.clear();
  ASSERT_EQ(Load(p), 0);
  EXPECT_EQ(b->SimpleTitleIndex, 0);
  EXPECT_NE(out.find("MoziKazu"), std::string::npos);
}

TEST_F(SourceLoad, ShortTitleOnFirstFileLeavesCodePageZeroAndDecodesAsSjis) {
  b->SimpleTitleIndex = 1;
  ASSERT_EQ(Load(Write("z.txt", "\x82\xA0\n")), 0);
  EXPECT_EQ(moziCode->codePage, 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"あ"}));
}

// ---------------------------------------------------------------------------
// The UTF-8 / Shift-JIS loader

TEST_F(SourceLoad, Utf8LoaderLineRules) {
  EXPECT_EQ(Load(Write("e.txt", "")), 0);
  EXPECT_TRUE(b->vecSrcW.empty());
  // CR LF folds to a line end; a lone CR stays; an empty middle line is a
  // record; a final line end makes no extra record; an unterminated last
  // line counts.
  ASSERT_EQ(Load(Write("r.txt", "A\r\n\r\nB\rC\nD")), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"A", u"", u"B\rC", u"D"}));
  ASSERT_EQ(Load(Write("r2.txt", "A\nB\n")), 0);
  EXPECT_EQ(Raw().size(), 2u);
}

TEST_F(SourceLoad, AMarkMetEarlierStillTakesTheFirstLineStep) {
  ASSERT_EQ(Load(Write("bom.txt", "\xEF\xBB\xBF" "AB\nCD\n")), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"AB", u"CD"}));
  // A later file without a mark, detected as UTF-8: its first 3 bytes go.
  ASSERT_EQ(Load(Write("later.txt", "ABCDEF\n\xE3\x82\xA2\n")), 0);
  EXPECT_EQ(moziCode->bomTag, "EFBBBF");
  EXPECT_EQ(moziCode->codePage, 65001);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"DEF", u"ア"}));
  // A first line shorter than 3 bytes loses what it has; nothing stops.
  ASSERT_EQ(Load(Write("short.txt", "A\n\xE3\x82\xA2\n")), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"", u"ア"}));
  // Detected as Shift-JIS: the first line is still decoded as UTF-8, the
  // others as Shift-JIS.
  ASSERT_EQ(Load(Write("mixed.txt", "\xE3\x81\x82\n\x82\xA0\n")), 0);
  EXPECT_EQ(moziCode->codePage, 932);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"あ", u"あ"}));
}

TEST_F(SourceLoad, DecodersNeverStopOnBadBytes) {
  EXPECT_EQ(Utf8ToWStr("\xC3\x28" "A"), u"\uFFFD(A");
  EXPECT_EQ(Utf8ToWStr("\xF0\x9F\x98\x80"), u"\U0001F600");
  EXPECT_EQ(Utf8ToWStr(std::string("AB\0CD", 5)), u"AB");  // zero-ended
  EXPECT_EQ(AnsiToWStr("\x81\x20" "A"), u"\uFFFD A");       // lead byte with a bad second byte
  EXPECT_EQ(AnsiToWStr("A\x82"), u"A\uFFFD");               // lead byte at the end
  EXPECT_EQ(AnsiToWStr("\xB1"), u"\uFF71");                 // 1-byte katakana
  EXPECT_EQ(AnsiToWStr(std::string("X\0Y", 3)), u"X");
  std::string allBytes;
  for (int c = 1; c < 256; ++c) allBytes += static_cast<char>(c);
  EXPECT_FALSE(AnsiToWStr(allBytes).empty());
  EXPECT_FALSE(Utf8ToWStr(allBytes).empty());
}

// ---------------------------------------------------------------------------
// The UTF-16 loader

TEST_F(SourceLoad, Utf16LineEndsAreCrLfOnly) {
  // Only LF: one record with the whole text; a lone CR stays too.
  ASSERT_EQ(Load(Write("lf.txt", Utf16Le(u"A\nB\rC"))), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"A\nB\rC"}));
  // CR LF at the end gives one more, empty, record.
  ASSERT_EQ(Load(Write("crlf.txt", Utf16Le(u"A\r\nB\r\n"))), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"A", u"B", u""}));
  // Only the mark: one empty record.
  ASSERT_EQ(Load(Write("mark.txt", "\xFF\xFE")), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u""}));
}

TEST_F(SourceLoad, Utf16EndMarkOddCountAndBigEndianHighByte) {
  // A 0xFFFF unit ends the file there.
  ASSERT_EQ(Load(Write("ff.txt", Utf16Le(u"AB\uFFFFCD"))), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"AB"}));
  // An odd count: the last unit's high half comes from the end-of-file value.
  ASSERT_EQ(Load(Write("odd.txt", Utf16Le(u"AB") + "C")), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"AB\xFF43"}));
  // Big-endian keeps only the low byte: U+3042 reads as U+0042.
  ASSERT_EQ(Load(Write("be.txt", Utf16Be(u"\u3042X\r\nY"))), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"BX", u"Y"}));
  // Big-endian with an odd count: the missing low byte makes the end mark.
  ASSERT_EQ(Load(Write("beodd.txt", Utf16Be(u"AB") + "\x00")), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"AB"}));
}

TEST_F(SourceLoad, Utf16FileOfOneByteAndOfNoByte) {
  // Reached only with the short title, which keeps the code page of the
  // last file.
  b->SimpleTitleIndex = 1;
  moziCode->codePage = 1200;
  ASSERT_EQ(Load(Write("one.txt", "A")), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u""}));
  ASSERT_EQ(Load(Write("none.txt", "")), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u""}));
  moziCode->codePage = 1201;
  ASSERT_EQ(Load(Write("one2.txt", "A")), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u""}));
}

// ---------------------------------------------------------------------------
// The same program in five encodings

TEST_F(SourceLoad, FiveEncodingsOfOneProgramLoadIntoIdenticalRecords) {
  const std::u16string text = u"PRG\tSTART\r\n  LD GR1,A ; x\r\n\tRET\r\nA DC 5\r\n END";
  const std::string ascii = U16ToUtf8(text);
  const std::vector<std::string> files = {ascii, ascii, "\xEF\xBB\xBF" + ascii, Utf16Le(text), Utf16Be(text)};
  std::vector<std::vector<std::u16string>> raws, edits;
  for (size_t k = 0; k < files.size(); ++k) {
    std::string p = Write("p" + std::to_string(k) + ".txt", files[k]);
    ASSERT_EQ(Load(p), 0) << k;
    raws.push_back(Raw());
    ASSERT_EQ(editNWB(), 0);
    std::vector<std::u16string> e;
    for (const auto& s : b->vecSrcW) e.push_back(s.editStr);
    edits.push_back(e);
  }
  ASSERT_EQ(raws[0].size(), 5u);
  EXPECT_EQ(raws[0][1], u"  LD GR1,A ; x");
  for (size_t k = 1; k < files.size(); ++k) {
    EXPECT_EQ(raws[k], raws[0]) << "encoding " << k;
    EXPECT_EQ(edits[k], edits[0]) << "encoding " << k;
  }
}

// ---------------------------------------------------------------------------
// Files that do not open, and bad input

TEST_F(SourceLoad, MissingFileIsReportedByBothLoadersWithoutACount) {
  Lines({u"OLD"});
  std::string p = (dir / "nosuch.txt").string();
  EXPECT_EQ(OpenFileUTF8toVecW(p), -3);
  EXPECT_EQ(out, "\nThe file  \"" + p + "\"  does not open on binary mode. \nMisspellings?  \nOr the file does not exist there. *\n");
  EXPECT_EQ(OpenFileUTF16toVecW(p), -4);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"88886875", "7CA76875"}));
  EXPECT_EQ(msgLog->WideLog[0].kind, 100);
  EXPECT_EQ(Errors(), 0);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"OLD"}));  // the old records stay
  SetLang(0);
  out.clear();
  EXPECT_EQ(OpenFileUTF8toVecW(p), -3);
  EXPECT_EQ(out, "\n \"" + p + "\"  (binary mode)を開くことができません。 ミススペル あるいは ファイルが存在しない。 *\n");
  EXPECT_EQ(Errors(), 0);
}

TEST_F(SourceLoad, DetectorsSayTheirLineForAMissingFile) {
  std::string p = (dir / "nosuch.txt").string();
  moziCode->codePage = 932;
  DetTextCodeW(*fileData, p);
  EXPECT_NE(out.find("Error: Fail to open " + p + "."), std::string::npos) << out;
  EXPECT_NE(out.find("\nFail to open " + p + "."), std::string::npos) << out;
  EXPECT_EQ(moziCode->codePage, 932);  // unchanged
  out.clear();
  EXPECT_EQ(DetBOM_MzC(""), "");
  EXPECT_EQ(out, "fname is empty.\n");
}

TEST_F(SourceLoad, AFolderGivenAsTheFileNameDoesNotOpen) {
  std::string p = dir.string();
  EXPECT_EQ(Load(p), -3);
  EXPECT_NE(out.find("does not open on binary mode"), std::string::npos);
  EXPECT_EQ(OpenFileUTF16toVecW(p), -4);
}

TEST_F(SourceLoad, AFileWithoutReadPermission) {
  // chmod 000 does not stop root, who reads every file: the case can only
  // be shown for an ordinary user.
  if (geteuid() == 0) GTEST_SKIP() << "running as root: permissions do not stop reading";
  std::string p = Write("locked.txt", "A START\n");
  ASSERT_EQ(chmod(p.c_str(), 0), 0);
  EXPECT_EQ(Load(p), -3);
  EXPECT_NE(out.find("does not open on binary mode"), std::string::npos);
}

TEST_F(SourceLoad, BinaryFileWithNulBytesLoads) {
  std::string bytes;
  unsigned x = 12345;
  for (int k = 0; k < 100000; ++k) {
    x = x * 1103515245u + 12345u;
    bytes += static_cast<char>(x >> 16);
  }
  std::string p = Write("bin.dat", bytes);
  EXPECT_EQ(Load(p), 0);
  EXPECT_FALSE(b->vecSrcW.empty());
  editNWB();
  StartEnd10W();  // whatever it finds, it reports and returns
}

TEST_F(SourceLoad, InvalidUtf8AndInvalidShiftJisFilesLoadWithReplacementCharacters) {
  ASSERT_EQ(Load(Write("bad8.txt", "A\xC3\x28\xFE\n")), 0);
  EXPECT_EQ(moziCode->codePage, 65001);
  EXPECT_EQ(Raw(), (std::vector<std::u16string>{u"A\uFFFD(\uFFFD"}));
  // Counted as Shift-JIS (every byte in the pair ranges), but 0x81 0x0A... is
  // no character: U+FFFD, and the line ends where the LF stands.
  ASSERT_EQ(Load(Write("badsjis.txt", "\x85\x40Z\n\xFC\xFC\n")), 0);
  EXPECT_EQ(moziCode->codePage, 932);
  ASSERT_EQ(b->vecSrcW.size(), 2u);
  EXPECT_NE(b->vecSrcW[0].rawStr.find(u'\uFFFD'), std::u16string::npos);
  EXPECT_EQ(b->vecSrcW[0].rawStr.back(), u'Z');
  EXPECT_NE(b->vecSrcW[1].rawStr.find(u'\uFFFD'), std::u16string::npos);
}

TEST_F(SourceLoad, TwentyMegabyteFileAndAOneMegabyteLine) {
  std::string big = "PRG START\n";
  const std::string filler = " NOP ;" + std::string(194, 'x') + "\n";
  while (big.size() < 20u * 1024 * 1024) big += filler;
  big += " RET\n END\n";
  std::string p = Write("big.txt", big);
  ASSERT_EQ(Load(p), 0);
  EXPECT_GT(b->vecSrcW.size(), 100000u);
  EXPECT_EQ(Pair(), 0);
  EXPECT_EQ(b->GetPrgKazuInFile(), 1);
  EXPECT_EQ(Errors(), 0);
  ResetBasicData();

  std::string line = "PRG START\n LD GR1," + std::string(1024 * 1024, 'A') + "\n RET\n END\n";
  ASSERT_EQ(Load(Write("long.txt", line)), 0);
  ASSERT_EQ(b->vecSrcW.size(), 4u);
  EXPECT_EQ(b->vecSrcW[1].rawStr.size(), 1024u * 1024 + 8);
  EXPECT_EQ(Pair(), 0);
}

}  // namespace
