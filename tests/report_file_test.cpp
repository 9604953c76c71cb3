// The register and memory report: whole files for a few programs, the
// numeric columns, the labels of an address, the time stamp and the console
// note.
#include <gtest/gtest.h>
#include <dirent.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>

#include "codegen_fixture.h"
#include "operands/adr_const.h"
#include "reports/report.h"

using namespace cgtest;

namespace {

std::string ReadAll(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  std::stringstream ss;
  ss << f.rdbuf();
  return ss.str();
}

const std::string kShort = "//" + std::string(72, '-');
const std::string kHeadRows =
    "Please open this file with a monospaced font such as MS Gothic,\n"
    "it will be easy to read the results because it is displayed in a tabular format.\n"
    "A font size 10 is recommended for printing these on A4 paper.\n" +
    kShort + "\n";
const std::string kLong = "//" + std::string(84, '-');
const std::string kZero = "    :#0000:    0:    +0: 0000 0000 0000 0000:";
const std::string kTail =
    "It is called Reserved Area that a program has reserved in Main Memory.\n"
    "The dashed line shows a boundary between \"Reserved Area\" and Non-Reserved one.\n"
    "\n"
    "           Stack Area in Main Memory\n";

class ReportFile : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetAll(1);
    ResetReportHintCounts();
    char tmpl[] = "/tmp/drillasm_report_XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    dir_ = tmpl;
    ASSERT_NE(getcwd(oldCwd_, sizeof oldCwd_), nullptr);
    ASSERT_EQ(chdir(dir_.c_str()), 0);
    const char* tz = std::getenv("TZ");
    hadTz_ = tz != nullptr;
    if (hadTz_) oldTz_ = tz;
    setenv("TZ", "UTC", 1);
    tzset();
    setenv("SOURCE_DATE_EPOCH", "0", 1);
  }
  void TearDown() override {
    EXPECT_EQ(chdir(oldCwd_), 0);
    std::string cmd = dir_;
    for (const char* f : {"/aaAssembledRegMry.txt", "/aaResultantRegMry.txt"}) unlink((dir_ + f).c_str());
    rmdir(dir_.c_str());
    unsetenv("SOURCE_DATE_EPOCH");
    if (hadTz_) {
      setenv("TZ", oldTz_.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
    ResetAll(1);
  }

  // The analysis' end and the link, as the Fight runs them.
  void Assemble() {
    Captured c;
    for (int p = 0; p < static_cast<int>(b->vecPrgW.size()); ++p) {
      SetMryInAtDS_NWCS(p);
      SetMryInAtDC_NWCS(p);
      AdrCk53NWCS(p);
    }
    PrepareMachineForLink();
    TDiagBase game;
    ASSERT_EQ(Link31NWGM(game), 0) << c.out;
  }

  FileBuilder fb;
  std::string dir_;
  char oldCwd_[4096] = {};
  bool hadTz_ = false;
  std::string oldTz_;
};

TEST_F(ReportFile, OneProgramWithALabelOfEightCharacters) {
  fb.Start(u"PRG");
  fb.Op(u"", u"LD", u"GR1,LONGLAB8");
  fb.Op(u"", u"RET");
  fb.Op(u"LONGLAB8", u"DC", u"65");
  fb.End();
  Assemble();
  m->srcFileName = "src/prg.cas";
  ASSERT_EQ(DspRegMry70NW(*m, "aaAssembledRegMry.txt"), 0);

  std::string expected = kHeadRows +
                         "Src. File: src/prg.cas    Thu Jan  1 12:00:00 1970\n"
                         "\n"
                         "VM COMET2: aaAssembledRegMry.txt\n"
                         "//-------------------------------------------------\n"
                         "      Char  Hex    UD     SD       Binary Code\n"
                         "   PR:" + kZero + "\n";
  for (int n = 0; n < 8; ++n) expected += "  GR" + std::to_string(n) + ":" + kZero + "\n";
  expected +=
      "Flags:    Fovf=0, Fsign=0(plus), Fzero=0(non zero).\n"
      "   SP:    :#FFFF:65535:    -1: 1111 1111 1111 1111:\n"
      "\n" +
      kLong + "\n"
      "  Address      Label Char  Hex    UD     SD       Binary Code\n"
      "#0000:    0:      PRG:    :#0000:    0:    +0: 0000 0000 0000 0000: 0:PRG START \n"
      "#0001:    1:         :    :#1010: 4112: +4112: 0001 0000 0001 0000: 0:   LD GR1,LONGLAB8\n"
      "#0002:    2:         :    :#0004:    4:    +4: 0000 0000 0000 0100: 0:\n"
      "#0003:    3:         :    :#8100:33024:-32512: 1000 0001 0000 0000: 0:   RET \n"
      "#0004:    4: LONGLAB8: 'A':#0041:   65:   +65: 0000 0000 0100 0001: 0:LONGLAB8 DC 65\n" +
      kShort + "\n";
  for (int a = 5; a < 15; ++a) {
    char head[32];
    std::snprintf(head, sizeof head, "#%04X:%5d:         :", a, a);
    expected += head + kZero + " 0:\n";
  }
  expected += kTail + "The Stack Pointer(SP) has pointed at #FFFF at present. \n";
  for (int a = 65531; a <= 65535; ++a) {
    char head[32];
    std::snprintf(head, sizeof head, "#%04X:%5d:         :", a, a);
    expected += head + kZero + "\n";
  }
  expected += kShort + "\n";
  EXPECT_EQ(ReadAll("aaAssembledRegMry.txt"), expected);
  // Written again over the old one, and no temporary file is left beside it.
  ASSERT_EQ(DspRegMry70NW(*m, "aaAssembledRegMry.txt"), 0);
  EXPECT_EQ(ReadAll("aaAssembledRegMry.txt"), expected);
  std::vector<std::string> names;
  if (DIR* d = opendir(dir_.c_str())) {
    while (dirent* e = readdir(d)) {
      std::string n = e->d_name;
      if (n != "." && n != "..") names.push_back(n);
    }
    closedir(d);
  }
  EXPECT_EQ(names, std::vector<std::string>{"aaAssembledRegMry.txt"});
}

TEST_F(ReportFile, TwoProgramsTwoLabelsAtOneAddressAndAMachineThatRan) {
  fb.Start(u"MAIN");
  fb.Op(u"", u"LAD", u"GR1,=3");
  fb.Op(u"", u"CALL", u"SUB");
  fb.Op(u"", u"RET");
  fb.Op(u"ZZZZZZ", u"DS", u"0");
  fb.Op(u"WWWWW", u"DC", u"'A'");
  fb.End();
  fb.Start(u"SUB");
  fb.Op(u"", u"RET");
  fb.End();
  Assemble();
  m->srcFileName = "two.cas";
  m->dispLang = 0;
  m->PR = 0x27;
  m->GR[1] = -1;     // a sign-extended cell
  m->GR[2] = 65535;  // a zero-extended one: the same row
  m->Fovf = 1;
  m->Fsign = 1;
  m->Fzero = 2;
  m->SP = 0xFFFE;
  m->stackArea[1] = 0x1234;
  m->execCount[1] = 123;
  m->execCount[3] = 1;
  m->maxExecCount = 123;
  ASSERT_EQ(DspRegMry70NW(*m, "aaResultantRegMry.txt"), 0);

  const std::string ffff = "    :#FFFF:65535:    -1: 1111 1111 1111 1111:";
  std::string expected = kHeadRows +
                         "Src. File: two.cas    作成日時：1970年1月1日 12時0分0秒\n"
                         "VM COMET2: aaResultantRegMry.txt\n"
                         "//-------------------------------------------------\n"
                         "      Char  Hex    UD     SD       Binary Code\n"
                         "   PR: ''':#0027:   39:   +39: 0000 0000 0010 0111:\n"
                         "  GR0:" + kZero + "\n"
                         "  GR1:" + ffff + "\n"
                         "  GR2:" + ffff + "\n";
  for (int n = 3; n < 8; ++n) expected += "  GR" + std::to_string(n) + ":" + kZero + "\n";
  expected +=
      "Flags:    Fovf=1, Fsign=1(minus), Fzero=2(Error of else: at Fzero ! in comet2.).\n"
      "   SP:    :#FFFE:65534:    -2: 1111 1111 1111 1110:\n"
      "\n" +
      kLong + "\n"
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
      kShort + "\n";
  for (int a = 10; a < 20; ++a) {
    char head[40];
    std::snprintf(head, sizeof head, "#%04X:%5d:             :", a, a);
    expected += head + kZero + "   0:\n";
  }
  expected += kTail + "The Stack Pointer(SP) has pointed at #FFFE at present. \n";
  for (int a = 65529; a <= 65535; ++a) {
    char head[40];
    std::snprintf(head, sizeof head, "#%04X:%5d:             :", a, a);
    expected += head + (a == 65534 ? std::string("    :#1234: 4660: +4660: 0001 0010 0011 0100:") : kZero) + "\n";
  }
  expected += kShort + "\n";
  EXPECT_EQ(ReadAll("aaResultantRegMry.txt"), expected);
}

TEST_F(ReportFile, EveryInstructionFormIsShownWithItsSource) {
  struct Form {
    const char16_t* op;
    const char16_t* oprnd;
    const char* row;  // hex of the first word
  };
  const Form forms[] = {
      {u"LD", u"GR1,GR2", "#1412"},  {u"ADDA", u"GR1,GR2", "#2412"}, {u"SUBA", u"GR1,GR2", "#2512"},
      {u"ADDL", u"GR1,GR2", "#2612"}, {u"SUBL", u"GR1,GR2", "#2712"}, {u"AND", u"GR1,GR2", "#3412"},
      {u"OR", u"GR1,GR2", "#3512"},  {u"XOR", u"GR1,GR2", "#3612"},  {u"CPA", u"GR1,GR2", "#4412"},
      {u"CPL", u"GR1,GR2", "#4512"}, {u"POP", u"GR3", "#7130"},      {u"NOP", u"", "#0000"},
      {u"LD", u"GR1,X,GR2", "#1012"}, {u"ST", u"GR1,X", "#1110"},    {u"LAD", u"GR1,X", "#1210"},
      {u"ADDA", u"GR1,X", "#2010"},  {u"SUBA", u"GR1,X", "#2110"},   {u"ADDL", u"GR1,X", "#2210"},
      {u"SUBL", u"GR1,X", "#2310"},  {u"AND", u"GR1,X", "#3010"},    {u"OR", u"GR1,X", "#3110"},
      {u"XOR", u"GR1,X", "#3210"},   {u"CPA", u"GR1,X", "#4010"},    {u"CPL", u"GR1,X", "#4110"},
      {u"SLA", u"GR1,1", "#5010"},   {u"SRA", u"GR1,1", "#5110"},    {u"SLL", u"GR1,1", "#5210"},
      {u"SRL", u"GR1,1", "#5310"},   {u"JMI", u"X", "#6100"},        {u"JNZ", u"X", "#6200"},
      {u"JZE", u"X", "#6300"},       {u"JUMP", u"X", "#6400"},       {u"JPL", u"X", "#6500"},
      {u"JOV", u"X", "#6600"},       {u"PUSH", u"0,GR1", "#7001"},   {u"CALL", u"X", "#8000"},
      {u"SVC", u"2", "#F000"},       {u"RET", u"", "#8100"},
  };
  fb.Start(u"F");
  for (const Form& f : forms) fb.Op(u"", f.op, f.oprnd);
  fb.Op(u"X", u"DC", u"0");
  fb.End();
  Assemble();
  ASSERT_EQ(DspRegMry70NW(*m, "aaAssembledRegMry.txt"), 0);
  std::string text = ReadAll("aaAssembledRegMry.txt");
  int line = 1;
  for (const Form& f : forms) {
    const SrcLineW& L = b->vecSrcW[line];
    char head[16];
    std::snprintf(head, sizeof head, "#%04X:", L.abAdr);
    size_t at = text.find("\n" + std::string(head));
    ASSERT_NE(at, std::string::npos) << head;
    std::string row = text.substr(at + 1, text.find('\n', at + 1) - at - 1);
    EXPECT_NE(row.find(std::string(":") + f.row + ":"), std::string::npos) << row;
    EXPECT_NE(row.find("   " + U16ToUtf8(f.op) + " " + U16ToUtf8(f.oprnd)), std::string::npos) << row;
    if (L.word_kazu == 2) {
      std::snprintf(head, sizeof head, "#%04X:", L.abAdr + 1);
      at = text.find("\n" + std::string(head));
      row = text.substr(at + 1, text.find('\n', at + 1) - at - 1);
      EXPECT_NE(row.find(Hex4(static_cast<uint32_t>(L.second_word))), std::string::npos) << row;
      EXPECT_EQ(row.back(), ':') << "the second word shows no source: " << row;
    }
    ++line;
  }
}

TEST(ReportPieces, NumericColumns) {
  EXPECT_EQ(NumericRowText(65), " 'A':#0041:   65:   +65: 0000 0000 0100 0001:");
  EXPECT_EQ(NumericRowText(0), "    :#0000:    0:    +0: 0000 0000 0000 0000:");
  EXPECT_EQ(NumericRowText(-1), "    :#FFFF:65535:    -1: 1111 1111 1111 1111:");
  EXPECT_EQ(NumericRowText(0x1FFFF), NumericRowText(-1));  // only the low 16 bits
  EXPECT_EQ(NumericRowText(0x27), " ''':#0027:   39:   +39: 0000 0000 0010 0111:");
  EXPECT_EQ(NumericRowText(0x20), " ' ':#0020:   32:   +32: 0000 0000 0010 0000:");
  EXPECT_EQ(NumericRowText(0x7F), "    :#007F:  127:  +127: 0000 0000 0111 1111:");
  EXPECT_EQ(NumericRowText(0x3042), "    :#3042:12354:+12354: 0011 0000 0100 0010:");
  EXPECT_EQ(NumericRowText(0x8000), "    :#8000:32768:-32768: 1000 0000 0000 0000:");
}

TEST(ReportPieces, TimeStampShowsTwelveForMidnight) {
  const char* tz = std::getenv("TZ");
  std::string old = tz ? tz : "";
  setenv("TZ", "UTC", 1);
  tzset();
  EXPECT_EQ(ReportTimeStamp(1, 0), "Thu Jan  1 12:00:00 1970\n");
  EXPECT_EQ(ReportTimeStamp(0, 0), "作成日時：1970年1月1日 12時0分0秒");
  EXPECT_EQ(ReportTimeStamp(1, 13 * 3600 + 61), "Thu Jan  1 13:01:01 1970\n");
  EXPECT_EQ(ReportTimeStamp(0, 1700000000), "作成日時：2023年11月14日 22時13分20秒");
  EXPECT_EQ(ReportTimeStamp(1, 1700000000), "Tue Nov 14 22:13:20 2023\n");
  EXPECT_EQ(ReportTimeStamp(1, 1700000000 + 2 * 3600), "Wed Nov 15 12:13:20 2023\n");
  setenv("SOURCE_DATE_EPOCH", "1700000000", 1);
  EXPECT_EQ(ReportNow(), 1700000000);
  setenv("SOURCE_DATE_EPOCH", "junk", 1);
  EXPECT_NE(ReportNow(), 0);
  unsetenv("SOURCE_DATE_EPOCH");
  if (tz) {
    setenv("TZ", old.c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  tzset();
}

TEST(ReportPieces, ConsoleNoteHintsOnceInJapanese) {
  ResetReportHintCounts();
  Captured c;
  DspReportHintNW(0, ReportKind::Assembled, "aaAssembledRegMry.txt");
  DspReportHintNW(0, ReportKind::Assembled, "aaAssembledRegMry.txt");
  DspReportHintNW(0, ReportKind::Resultant, "aaResultantRegMry.txt");
  DspReportHintNW(1, ReportKind::Resultant, "aaResultantRegMry.txt");
  DspReportHintNW(0, ReportKind::Resultant, "aaResultantRegMry.txt");
  EXPECT_EQ(c.out,
            "---> aaAssembledRegMry.txt \nアセンブルされたメモリの全容が保存してあります。"
            "---> aaAssembledRegMry.txt "
            "---> aaResultantRegMry.txt \n実行後のメモリの全容が保存してあります。"
            "---> aaResultantRegMry.txt \n"
            "---> aaResultantRegMry.txt ");
}

TEST(ReportPieces, LabelsOfAnAddressStopAtAHigherOne) {
  ResetAll(1);
  auto add = [](const char16_t* label, int adr) {
    SrcLineW L;
    L.labelStr = label;
    L.opStr = u"DC";
    L.abAdr = adr;
    b->vecSrcW.push_back(L);
  };
  add(u"A", 0);
  add(u"", 1);
  add(u"B", 1);
  add(u"C", 1);
  add(u"D", 3);
  add(u"E", 2);  // behind a higher address: never reached
  add(u"F", 3);
  EXPECT_EQ(labelsAtAdr(0), "A");
  EXPECT_EQ(labelsAtAdr(1), "B C");
  EXPECT_EQ(labelsAtAdr(2), "");
  EXPECT_EQ(labelsAtAdr(3), "D F");
  EXPECT_EQ(labelsAtAdr(4), "");
  // The report's table built once gives the same texts.
  b->MaxMemory = 4;
  b->vecPrgW.resize(1);
  b->vecPrgW[0].prgLastAdr = 3;
  m->srcFileName = "x";
  char tmpl[] = "/tmp/drillasm_labels_XXXXXX";
  ASSERT_NE(mkdtemp(tmpl), nullptr);
  std::string path = std::string(tmpl) + "/r.txt";
  ASSERT_EQ(DspRegMry70NW(*m, path), 0);
  std::string text = ReadAll(path);
  EXPECT_NE(text.find("#0001:    1:   B C:"), std::string::npos);
  EXPECT_NE(text.find("#0002:    2:      :"), std::string::npos);
  EXPECT_NE(text.find("#0003:    3:   D F:"), std::string::npos);
  unlink(path.c_str());
  rmdir(tmpl);
  ResetAll(1);
}

TEST(ReportPieces, AFileThatCannotBeWrittenIsReported) {
  ResetAll(1);
  Captured c;
  EXPECT_EQ(DspRegMry70NW(*m, "/nonexistent-dir-for-drillasm/aaAssembledRegMry.txt"), -1);
  EXPECT_EQ(c.out.rfind("/nonexistent-dir-for-drillasm/aaAssembledRegMry.txt does not open.\nMsg:", 0), 0u);
}

}  // namespace
