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
  // Detection, then the loader that ReadSourceW picks.
  int Load(const std::string& path) {
    DetTextCodeW(*fileData, path);
    if (moziCode->codePage == 1200 || moziCode->codePage == 1201) return OpenFileUTF16toVecW(path);
    return OpenFileUTF8toVecW(path);
  }
};

// Each row: the bytes of a file, the records read, the whole output ("@" is
// the file name; none: not looked at), "codePage bomKind bomTag|codeName"
// (none: not looked at), the language, the title setting, the code page
// kept from the last file, and whether a file with a UTF-8 mark came before.
TEST_F(SourceLoad, DetectionBannerAndLineRules) {
  const std::string le = "\n* Reading @   ", census = "\nMoziKazu(ascii, sjis, non)=";
  struct { std::string bytes; Texts raw; std::string out = "", code = "";
           int lang = 1, title = 0, page = 0; bool marked = false; } rows[] = {
      {"AB C\nD\n", {u"AB C", u"D"}, census + "(7, 0, 0)\n" + le + "sjis\n\n", "932 0 |sjis"},
      {"\x82\xA0\\~\n\x83\x41\n", {u"あ\\~", u"ア"}, census + "(4, 2, 0)\n" + le + "sjis\n\n", "932 0 |sjis"},
      {"\xE3\x82\xA2X\n", {u"アX"}, census + "(2, 1, 1)\n" + le + "utf-8\n\n", "65001 0 |utf-8"},  // A2 is "non"
      {"\xEF\xBB\xBFX", {u"X"}, "\n" + le + "utf-8 with bom(EF BB BF)\n\n", "65001 3 EFBBBF|utf-8 with bom(EF BB BF)"},
      {std::string("\xFF\xFEX\0", 4), {u"X"}, "\n" + le + "utf-16 le(FF FE)\n\n", "1200 2 FFFE|utf-16 le(FF FE)"},
      {std::string("\xFE\xFF\0X", 4), {u"X"}, "\n" + le + "utf-16 be(FE FF)\n\n", "1201 2 FEFF|utf-16 be(FE FF)"},
      {"\xEF\xBB" "A", {u"\uFFFD\uFF7BA"}, census + "(1, 1, 0)\n" + le + "sjis\n\n", "932 0 |sjis"},  // EF BB A is no mark
      // The census: 0x80-0x97 and 0xE0-0xFC swallow the next byte; 0x7F,
      // 0x98-0xDF and 0xFD-0xFF are "non"; a missing second byte goes unnoticed.
      {std::string("\x00\x0A\x7E\x80\x41\x97\xFF\xE0\x0A\xFC\x98\x7F\x98\xDF\xFD\xFF", 16), {u"*"},
       census + "(3, 4, 5)\n" + le + "utf-8\n\n", "65001 0 |utf-8"},
      {"\x98\x9F", {u"\uFFFD\uFFFD"}, census + "(0, 0, 2)\n" + le + "utf-8\n\n", "65001 0 |utf-8"},  // real Shift-JIS
      {"\xE0", {u"\uFFFD"}, census + "(0, 1, 0)\n" + le + "sjis\n\n", "932 0 |sjis"},
      {"", {}, census + "(0, 0, 0)\n" + le + "sjis\n\n", "932 0 |sjis"},
      // The banners; the short title skips the census and keeps the code page.
      {"A\n", {u"A"}, census + "(2, 0, 0)\n\n'@'    sjis", "932 0 |sjis", 0},
      {"A\n", {u"A"}, "\n\n'@'     を読み込みます。 \n", "65001 0 |utf-8 or sjis", 0, 1, 65001},
      {"A\n", {u"A"}, "\n\n* Reading @\n\n", "65001 0 |utf-8 or sjis", 1, 1, 65001},
      {"A\n", {u"A"}, census + "(2, 0, 0)\n" + le + "sjis\n\n", "932 0 |sjis", 1, 7},  // set back to 0
      {"\x82\xA0\n", {u"あ"}, "", "0 0 |utf-8 or sjis", 1, 1, 0},  // the first file: code page 0 is Shift-JIS
      // The UTF-8 and Shift-JIS loader: CR LF folds, a lone CR stays, an
      // empty line is a record, a final line end makes none.
      {"A\r\n\r\nB\rC\nD", {u"A", u"", u"B\rC", u"D"}}, {"A\nB\n", {u"A", u"B"}},
      // A mark met earlier: the first line is UTF-8, and loses 3 bytes if the file is.
      {"ABCDEF\n\xE3\x82\xA2\n", {u"DEF", u"ア"}, "", "65001 0 EFBBBF|utf-8", 1, 0, 0, true},
      {"A\n\xE3\x82\xA2\n", {u"", u"ア"}, "", "", 1, 0, 0, true},
      {"\xE3\x81\x82\n\x82\xA0\n", {u"あ", u"あ"}, "", "932 0 EFBBBF|sjis", 1, 0, 0, true},
      // UTF-16: only CR LF ends a line, and one more record follows the last.
      {Utf16(u"A\nB\rC"), {u"A\nB\rC"}}, {Utf16(u"A\r\nB\r\n"), {u"A", u"B", u""}}, {"\xFF\xFE", {u""}},
      {Utf16(u"AB\uFFFFCD"), {u"AB"}},                // 0xFFFF ends the file there
      {Utf16(u"AB") + "C", {u"AB\xFF43"}},            // odd count: the high half from the end-of-file value
      {Utf16(u"\u3042X\r\nY", true), {u"BX", u"Y"}},  // big-endian keeps the low byte only
      {Utf16(u"AB", true) + std::string(1, '\0'), {u"AB"}},
      {"A", {u""}, "", "", 1, 1, 1200}, {"", {u""}, "", "", 1, 1, 1200}, {"A", {u""}, "", "", 1, 1, 1201},  // one byte
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.bytes);
    Fresh(r.lang);
    *moziCode = TMoziCode{};
    if (r.marked) Load(Write("bom.txt", "\xEF\xBB\xBFX\n"));
    b->SimpleTitleIndex = r.title;
    if (r.title == 1) moziCode->codePage = r.page;
    std::string p = Write("r.txt", r.bytes), want = r.out;
    for (size_t k; (k = want.find('@')) != std::string::npos;) want.replace(k, 1, p);
    out.clear();
    ASSERT_EQ(Load(p), 0);
    EXPECT_EQ(r.out.empty() ? "" : out, want);
    EXPECT_EQ(r.code.empty() ? "" : std::to_string(moziCode->codePage) + " " + std::to_string(moziCode->bomKind) + " " +
                                        moziCode->bomTag + "|" + moziCode->codeName, r.code);
    EXPECT_EQ(moziCode->codeNameW, Utf8ToU16(moziCode->codeName));
    EXPECT_EQ(r.raw == Texts{u"*"} ? r.raw : Raw(), r.raw);
    EXPECT_EQ(b->SimpleTitleIndex, r.title == 1);
  }
}

TEST_F(SourceLoad, DecodersNeverStopOnBadBytes) {
  // Zero-ended; a bad sequence, a bad second byte, a lead byte at the end
  // give U+FFFD; a character outside the BMP, a 1-byte katakana.
  std::string all;
  for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
  EXPECT_EQ(Utf8ToWStr("\xC3\x28" "A") + Utf8ToWStr(std::string("AB\0CD", 5)) + Utf8ToWStr("\xF0\x9F\x98\x80"),
            u"\uFFFD(AAB\U0001F600");
  EXPECT_EQ(AnsiToWStr("\x81\x20" "A") + AnsiToWStr("A\x82") + AnsiToWStr("\xB1") + AnsiToWStr(std::string("X\0Y", 3)),
            u"\uFFFD AA\uFFFD\uFF71X");
  EXPECT_FALSE(AnsiToWStr(all).empty() || Utf8ToWStr(all).empty());
}

// A line of bytes below 0x80 alone does not go through the converter: each
// of its bytes must come out as the converter gives it inside a line that
// needs the converter, and a zero byte still ends the line.
TEST_F(SourceLoad, AsciiLinesDecodeAsTheConverterDoes) {
  std::string ascii;
  std::u16string viaConverter;
  for (int c = 1; c < 0x80; ++c) {
    const std::string ch(1, static_cast<char>(c));
    const std::u16string w = AnsiToWStr(ch + "\x82\xA0");
    ASSERT_EQ(w.size(), 2u) << c;
    ascii += ch;
    viaConverter += w[0];
  }
  EXPECT_EQ(AnsiToWStr(ascii), viaConverter);
  EXPECT_EQ(AnsiToWStr(std::string("AB\0\x82\xA0", 5)) + AnsiToWStr(std::string("\0A", 2)), u"AB");
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
  EXPECT_EQ(out + std::to_string(moziCode->codePage),
            "Error: Fail to open " + p + ".\nFail to open " + p + ".\n\n* Reading " + p + "   \n\n932");
  out.clear();
  EXPECT_EQ(OpenFileUTF8toVecW(p), -3);
  EXPECT_EQ(out, "\nThe file  \"" + p + "\"  does not open on binary mode. \nMisspellings?  \nOr the file does not exist there. *\n");
  EXPECT_EQ(OpenFileUTF16toVecW(p), -4);
  EXPECT_EQ(LogCodes(), (Codes{"88886875", "7CA76875"}));
  EXPECT_EQ(msgLog->WideLog[0].kind, 100);
  SetLang(0);
  out.clear();
  EXPECT_EQ(OpenFileUTF8toVecW(p), -3);
  EXPECT_EQ(out, "\n \"" + p + "\"  (binary mode)を開くことができません。 ミススペル あるいは ファイルが存在しない。 *\n");
  EXPECT_EQ(Errors(), 0);  // reported, not counted
  EXPECT_EQ(Raw(), Texts{u"OLD"});  // the old records stay
  out.clear();
  EXPECT_EQ(DetBOM_MzC(""), "");
  EXPECT_EQ(out, "fname is empty.\n");
}

TEST_F(SourceLoad, NarrowReaderTakesBytesAsTheyStand) {
  // Each row: the bytes, the limits of the mode, the wide records, the narrow
  // ones (none: the same bytes as the wide ones in ASCII), and the output.
  struct { std::string bytes; int chars, lines; Texts raw; std::vector<std::string> narrow = {}; std::string out = ""; } rows[] = {
      // No mark, no census: Shift-JIS, and UTF-8 and UTF-16 marks are bytes like any other.
      {"\x82\xA0\r\n\xE3\x82\xA2\n", 0, 0, {u"あ", u"\u7E67\uFF62"}, {"\x82\xA0", "\xE3\x82\xA2"}},
      {"\xEF\xBB\xBFX\n", 0, 0, {u"\uFFFD\uFF7B\uFF7FX"}, {"\xEF\xBB\xBFX"}},
      {std::string("\xFF\xFEX\0\n\0", 6), 0, 0, {u"\uFFFD\uFFFDX", u""}},
      // CR LF folds, a lone CR stays, a final line end makes no record.
      {"A\r\n\r\nB\rC\nD", 0, 0, {u"A", u"", u"B\rC", u"D"}}, {"", 0, 0, {}}, {"A\n", 0, 0, {u"A"}},
      // The fixed tables: lines cut at 80 bytes, the first long one told.
      {std::string(80, 'a') + "\n", 80, 310, {std::u16string(80, u'a')}},
      {"x\n" + std::string(81, 'a') + "\r\n" + std::string(90, 'b'), 80, 310,
       {u"x", std::u16string(80, u'a'), std::u16string(80, u'b')}, {},
       "There are 81 characters in the line. The assembler does not read more than 80 characters in a line. "
       "(Spec. of drill asm): This could cause an error to assemble the line. \n"},
      {std::string(79, 'a') + "\x82\xA0\n", 80, 310, {std::u16string(79, u'a') + u"\uFFFD"}, {std::string(79, 'a') + "\x82"},
       "There are 81 characters in the line. The assembler does not read more than 80 characters in a line. "
       "(Spec. of drill asm): This could cause an error to assemble the line. \n"},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.bytes);
    Fresh();
    out.clear();
    ASSERT_EQ(OpenFileNarrowToVec(Write("n.txt", r.bytes), r.chars, r.lines), 0);
    EXPECT_EQ(Raw(), r.raw);
    std::vector<std::string> narrow;
    for (const SrcLineA& a : b->vecSrcA) narrow.push_back(a.rawStr);
    if (!r.narrow.empty()) {
      EXPECT_EQ(narrow, r.narrow);
    }
    EXPECT_EQ(narrow.size(), r.raw.size());
    EXPECT_EQ(out, r.out);
    EXPECT_EQ(moziCode->codePage, 0);  // nothing detected
  }
  // 310 lines are read, 311 are not, and the old records stay.
  Fresh();
  std::string lines;
  for (int k = 0; k < 310; ++k) lines += "; c\n";
  EXPECT_EQ(OpenFileNarrowToVec(Write("310.txt", lines), 80, 310), 0);
  EXPECT_EQ(b->vecSrcW.size(), 310u);
  out.clear();
  EXPECT_EQ(OpenFileNarrowToVec(Write("311.txt", lines + "X"), 80, 310), -3);
  EXPECT_EQ(b->vecSrcW.size(), 310u);
  EXPECT_EQ(out, "There is a limitation to the number of the lines in a source code file. The maximum is 310 lines in a "
                 "file. There are 311 lines in your source code. You are expected to decrease the lines in your file. \n");
  SetLang(0);
  out.clear();
  EXPECT_EQ(OpenFileNarrowToVec(Write("311.txt", lines + "X\n"), 80, 310), -3);
  EXPECT_EQ(out, "ソースコードのおおよその制限（一つのファイルにつき） 310行 を超えています。行数を減らす工夫をしてご利用ください。 \n");
  out.clear();
  EXPECT_EQ(OpenFileNarrowToVec((dir / "nosuch.txt").string(), 0, 0), -3);
  EXPECT_EQ(LogCodes().back(), "88886875");
  EXPECT_EQ(OpenFileNarrowToVec(dir.string(), 0, 0), -3);  // a folder
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
