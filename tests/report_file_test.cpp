// The register and memory report: whole files for a few programs, the
// numeric columns, the labels of an address, the time stamp and the console
// note.
#include "codegen_fixture.h"

using namespace cgtest;

namespace {

const std::string kShort = "//" + std::string(72, '-') + "\n";
const std::string kZero = NumericRowText(0);

// The rows of addresses `from` to `to` with no label and the value 0 (label
// column `w` wide), each followed by `tail`.
std::string ZeroRows(int from, int to, int w, const std::string& tail) {
  std::string s;
  char head[40];
  for (int a = from; a <= to; ++a) {
    std::snprintf(head, sizeof head, "#%04X:%5d:%*s:", a, a, w + 1, "");
    s += head + kZero + tail + "\n";
  }
  return s;
}

// The head of a report down to the long rule: the stamp line, the report's
// name, then PR, GR0 to GR7 and SP from `v`, with the flags before SP.
std::string Head(const std::string& stampLine, const std::string& name, std::vector<int32_t> v,
                 const std::string& flags) {
  std::string s = "Please open this file with a monospaced font such as MS Gothic,\n"
                  "it will be easy to read the results because it is displayed in a tabular format.\n"
                  "A font size 10 is recommended for printing these on A4 paper.\n" +
                  kShort + stampLine + "VM COMET2: " + name + "\n//-------------------------------------------------\n" +
                  "      Char  Hex    UD     SD       Binary Code\n";
  for (int i = 0; i < 10; ++i)
    s += (i == 0 ? "   PR" : i == 9 ? flags + "\n   SP" : "  GR" + std::to_string(i - 1)) + ":" + NumericRowText(v[i]) + "\n";
  return s + "\n//" + std::string(84, '-') + "\n";
}

// Between the memory table and the stack table.
std::string Middle(const char* sp) {
  return "It is called Reserved Area that a program has reserved in Main Memory.\n"
         "The dashed line shows a boundary between \"Reserved Area\" and Non-Reserved one.\n\n"
         "           Stack Area in Main Memory\nThe Stack Pointer(SP) has pointed at " +
         std::string(sp) + " at present. \n";
}

class ReportFile : public Fixture {};

TEST_F(ReportFile, OneProgramWithALabelOfEightCharacters) {
  ASSERT_EQ(Assemble("PRG\tSTART\n\tLD\tGR1,LONGLAB8\n\tRET\nLONGLAB8\tDC\t65\n\tEND\n", game), 0) << c.out;
  m->srcFileName = "src/prg.cas";
  const std::string expected =
      Head("Src. File: src/prg.cas    Thu Jan  1 12:00:00 1970\n\n", "aaAssembledRegMry.txt",
           {0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFFFF}, "Flags:    Fovf=0, Fsign=0(plus), Fzero=0(non zero).") +
      "  Address      Label Char  Hex    UD     SD       Binary Code\n"
      "#0000:    0:      PRG:    :#0000:    0:    +0: 0000 0000 0000 0000: 0:PRG START \n"
      "#0001:    1:         :    :#1010: 4112: +4112: 0001 0000 0001 0000: 0:   LD GR1,LONGLAB8\n"
      "#0002:    2:         :    :#0004:    4:    +4: 0000 0000 0000 0100: 0:\n"
      "#0003:    3:         :    :#8100:33024:-32512: 1000 0001 0000 0000: 0:   RET \n"
      "#0004:    4: LONGLAB8: 'A':#0041:   65:   +65: 0000 0000 0100 0001: 0:LONGLAB8 DC 65\n" +
      kShort + ZeroRows(5, 14, 8, " 0:") + Middle("#FFFF") +
      ZeroRows(65531, 65535, 8, "") + kShort;
  // Written twice: over the old one, and no temporary file is left beside it.
  std::vector<std::string> left;
  EXPECT_EQ(Report("aaAssembledRegMry.txt", 2, &left), expected);
  EXPECT_EQ(left, std::vector<std::string>{"aaAssembledRegMry.txt"});
}

TEST_F(ReportFile, TwoProgramsTwoLabelsAtOneAddressAndAMachineThatRan) {
  ASSERT_EQ(Assemble("MAIN\tSTART\n\tLAD\tGR1,=3\n\tCALL\tSUB\n\tRET\nZZZZZZ\tDS\t0\nWWWWW\tDC\t'A'\n\tEND\n"
                     "SUB\tSTART\n\tRET\n\tEND\n",
                     game),
            0)
      << c.out;
  m->srcFileName = "two.cas";
  m->dispLang = 0;
  m->PR = 0x27;
  m->GR[1] = -1;     // a sign-extended cell
  m->GR[2] = 65535;  // a zero-extended one: the same row
  m->Fovf = m->Fsign = 1;
  m->Fzero = 2;
  m->SP = 0xFFFE;
  m->stackArea[1] = 0x1234;
  m->execCount[1] = m->maxExecCount = 123;
  m->execCount[3] = 1;
  const std::string expected =
      Head("Src. File: two.cas    作成日時：1970年1月1日 12時0分0秒\n", "aaResultantRegMry.txt",
           {0x27, 0, -1, 65535, 0, 0, 0, 0, 0, 0xFFFE},
           "Flags:    Fovf=1, Fsign=1(minus), Fzero=2(Error of else: at Fzero ! in comet2.).") +
      "  Address        Label   Char  Hex    UD     SD       Binary Code\n"
      "#0000:    0:         MAIN:    :#0000:    0:    +0: 0000 0000 0000 0000:   0:MAIN START \n"
      "#0001:    1:             :    :#1210: 4624: +4624: 0001 0010 0001 0000: 123:   LAD GR1,=3\n"
      "#0002:    2:             :    :#0007:    7:    +7: 0000 0000 0000 0111:   0:\n"
      "#0003:    3:             :    :#8000:32768:-32768: 1000 0000 0000 0000:   1:   CALL SUB\n"
      "#0004:    4:             :    :#0008:    8:    +8: 0000 0000 0000 1000:   0:\n"
      "#0005:    5:             :    :#8100:33024:-32512: 1000 0001 0000 0000:   0:   RET \n"
      "#0006:    6: ZZZZZZ WWWWW: 'A':#0041:   65:   +65: 0000 0000 0100 0001:   0:WWWWW DC 'A'\n"
      "#0007:    7:             :    :#0003:    3:    +3: 0000 0000 0000 0011:   0:Literal:(LAD GR1,=3)\n"
      "#0008:    8:          SUB:    :#0000:    0:    +0: 0000 0000 0000 0000:   0:SUB START \n"
      "#0009:    9:             :    :#8100:33024:-32512: 1000 0001 0000 0000:   0:   RET \n" +
      kShort + ZeroRows(10, 19, 12, "   0:") + Middle("#FFFE") +
      ZeroRows(65529, 65533, 12, "") + "#FFFE:65534:             :    :#1234: 4660: +4660: 0001 0010 0011 0100:\n" +
      ZeroRows(65535, 65535, 12, "") + kShort;
  EXPECT_EQ(Report("aaResultantRegMry.txt"), expected);
}

// A report of several pieces: the table is written out while it is built,
// and the file holds the whole text.
TEST_F(ReportFile, ALargeTableWrittenInPieces) {
  ASSERT_EQ(Assemble("BIG\tSTART\nAREA\tDS\t2000\n\tLAD\tGR1,='AB'\n\tRET\n\tEND\n", game), 0) << c.out;
  m->srcFileName = "big.cas";
  std::vector<std::string> left;
  const std::string text = Report("aaAssembledRegMry.txt", 1, &left);
  EXPECT_EQ(left, std::vector<std::string>{"aaAssembledRegMry.txt"});
  const std::string table =
      "  Address     Label Char  Hex    UD     SD       Binary Code\n"
      "#0000:    0:   BIG:    :#0000:    0:    +0: 0000 0000 0000 0000: 0:BIG START \n"
      "#0001:    1:  AREA:    :#0000:    0:    +0: 0000 0000 0000 0000: 0:AREA DS 2000\n" +
      ZeroRows(2, 2000, 5, " 0:") +
      "#07D1: 2001:      :    :#1210: 4624: +4624: 0001 0010 0001 0000: 0:   LAD GR1,='AB'\n"
      "#07D2: 2002:      :    :#07D4: 2004: +2004: 0000 0111 1101 0100: 0:\n"
      "#07D3: 2003:      :    :#8100:33024:-32512: 1000 0001 0000 0000: 0:   RET \n"
      "#07D4: 2004:      : 'A':#0041:   65:   +65: 0000 0000 0100 0001: 0:Literal:(LAD GR1,='AB')\n"
      "#07D5: 2005:      : 'B':#0042:   66:   +66: 0000 0000 0100 0010: 0:\n" +
      kShort + ZeroRows(2006, 2015, 5, " 0:") + Middle("#FFFF") + ZeroRows(65531, 65535, 5, "") + kShort;
  ASSERT_GT(text.size(), size_t{1} << 17);
  EXPECT_EQ(text.substr(text.find("  Address")), table);
}

// The addresses of the rows count on in both columns, the hexadecimal one
// in its low 16 bits beyond #FFFF.
TEST_F(ReportFile, AddressesCountOnPastTheLastCell) {
  b->MaxMemory = 65530;
  const std::string text = Report("r.txt");
  for (const char* row : {"\n#0000:    0:", "\n#0009:    9:", "\n#000A:   10:", "\n#00FF:  255:", "\n#0100:  256:",
                          "\n#270F: 9999:", "\n#2710:10000:", "\n#FFFF:65535:", "\n#0000:65536:",
                          "\n#0003:65539:      :    :#0000:"})
    EXPECT_NE(text.find(row), std::string::npos) << row;
  EXPECT_EQ(text.find("\n#0004:65540:"), std::string::npos);
}

TEST(ReportPieces, NumericColumns) {
  const std::pair<int32_t, const char*> rows[] = {
      {65, " 'A':#0041:   65:   +65: 0000 0000 0100 0001:"},       {0, "    :#0000:    0:    +0: 0000 0000 0000 0000:"},
      {-1, "    :#FFFF:65535:    -1: 1111 1111 1111 1111:"},       {0x1FFFF, "    :#FFFF:65535:    -1: 1111 1111 1111 1111:"},
      {0x27, " ''':#0027:   39:   +39: 0000 0000 0010 0111:"},     {0x20, " ' ':#0020:   32:   +32: 0000 0000 0010 0000:"},
      {0x7F, "    :#007F:  127:  +127: 0000 0000 0111 1111:"},     {0x3042, "    :#3042:12354:+12354: 0011 0000 0100 0010:"},
      {0x8000, "    :#8000:32768:-32768: 1000 0000 0000 0000:"}};
  for (const auto& [v, text] : rows) EXPECT_EQ(NumericRowText(v), text) << v;
}

TEST(ReportPieces, TimeStampShowsTwelveForMidnight) {
  UtcClock clock;
  EXPECT_EQ(ReportNow(), 0);
  EXPECT_EQ(ReportTimeStamp(1, 0), "Thu Jan  1 12:00:00 1970\n");
  EXPECT_EQ(ReportTimeStamp(0, 0), "作成日時：1970年1月1日 12時0分0秒");
  EXPECT_EQ(ReportTimeStamp(1, 13 * 3600 + 61), "Thu Jan  1 13:01:01 1970\n");
  EXPECT_EQ(ReportTimeStamp(0, 1700000000), "作成日時：2023年11月14日 22時13分20秒");
  EXPECT_EQ(ReportTimeStamp(1, 1700000000 + 2 * 3600), "Wed Nov 15 12:13:20 2023\n");
  setenv("SOURCE_DATE_EPOCH", "junk", 1);
  EXPECT_NE(ReportNow(), 0);
}

TEST(ReportPieces, ConsoleNoteHintsOnceInJapanese) {
  ResetReportHintCounts();
  Captured c;
  for (auto [lang, kind] : std::vector<std::pair<int, ReportKind>>{
           {0, ReportKind::Assembled}, {0, ReportKind::Assembled}, {0, ReportKind::Resultant},
           {1, ReportKind::Resultant}, {0, ReportKind::Resultant}})
    DspReportHintNW(lang, kind, kind == ReportKind::Assembled ? "aaAssembledRegMry.txt" : "aaResultantRegMry.txt");
  EXPECT_EQ(c.out,
            "---> aaAssembledRegMry.txt \nアセンブルされたメモリの全容が保存してあります。---> aaAssembledRegMry.txt "
            "---> aaResultantRegMry.txt \n実行後のメモリの全容が保存してあります。---> aaResultantRegMry.txt \n"
            "---> aaResultantRegMry.txt ");
}

// The scan stops at the first labelled line above the address (E is never
// reached); the report's table built once gives the same texts.
TEST_F(ReportFile, LabelsOfAnAddressStopAtAHigherOne) {
  for (const auto& [label, adr] : std::vector<std::pair<wstr, int>>{
           {u"A", 0}, {u"", 1}, {u"B", 1}, {u"C", 1}, {u"D", 3}, {u"E", 2}, {u"F", 3}}) {
    b->vecSrcW.emplace_back();
    b->vecSrcW.back().labelStr = label;
    b->vecSrcW.back().opStr = u"DC";
    b->vecSrcW.back().abAdr = adr;
  }
  EXPECT_EQ((std::vector<std::string>{labelsAtAdr(0), labelsAtAdr(1), labelsAtAdr(2), labelsAtAdr(3), labelsAtAdr(4)}),
            (std::vector<std::string>{"A", "B C", "", "D F", ""}));
  b->MaxMemory = 4;
  b->vecPrgW.resize(1);
  b->vecPrgW[0].prgLastAdr = 3;
  const std::string text = Report("r.txt");
  for (const char* row : {"\n#0001:    1:   B C:", "\n#0002:    2:      :", "\n#0003:    3:   D F:"})
    EXPECT_NE(text.find(row), std::string::npos) << row;
}

TEST_F(ReportFile, AFileThatCannotBeWrittenIsReported) {
  EXPECT_EQ(DspRegMry70NW(*m, "/nonexistent-dir-for-drillasm/aaAssembledRegMry.txt"), -1);
  EXPECT_EQ(c.out.rfind("/nonexistent-dir-for-drillasm/aaAssembledRegMry.txt does not open.\nMsg:", 0), 0u);
}

}  // namespace
