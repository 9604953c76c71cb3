// The memory image: the words of every instruction form in memory and in the
// report, START, DC, DS, literals, the loader and the address-to-line table.
#include "codegen_fixture.h"

using namespace cgtest;

namespace {

class CodegenImage : public Fixture {};

// The report row of an address, without its line feed.
std::string RowOf(const std::string& text, int adr) {
  size_t at = text.find("\n" + Hex4(static_cast<uint32_t>(adr)) + ":");
  return at == std::string::npos ? "" : text.substr(at + 1, text.find('\n', at + 1) - at - 1);
}

TEST_F(CodegenImage, EveryInstructionFormInMemoryAndInTheReport) {
  const int A = -1;  // the address of the DC line A
  const struct {
    const char* line;  // opcode, a blank, operands: the source and its report text
    std::vector<int> words;
  } rows[] = {
      {"LD GR1,A,GR2", {0x1012, A}}, {"LD GR1,GR2", {0x1412}}, {"ST GR3,A", {0x1130, A}}, {"ST GR3,A,GR1", {0x1131, A}},
      {"LAD GR4,5", {0x1240, 5}}, {"LAD GR0,65535", {0x1200, 0xFFFF}}, {"ADDA GR1,A", {0x2010, A}},
      {"ADDA GR1,GR2", {0x2412}}, {"SUBA GR1,A", {0x2110, A}}, {"SUBA GR1,GR2", {0x2512}}, {"ADDL GR1,A", {0x2210, A}},
      {"ADDL GR1,GR2", {0x2612}}, {"SUBL GR1,A", {0x2310, A}}, {"SUBL GR1,GR2", {0x2712}}, {"AND GR1,A", {0x3010, A}},
      {"AND GR1,GR2", {0x3412}}, {"OR GR1,A", {0x3110, A}}, {"OR GR1,GR2", {0x3512}}, {"XOR GR1,A", {0x3210, A}},
      {"XOR GR1,GR2", {0x3612}}, {"CPA GR1,A", {0x4010, A}}, {"CPA GR1,GR2", {0x4412}}, {"CPL GR1,A", {0x4110, A}},
      {"CPL GR7,GR6", {0x4576}}, {"SLA GR1,1", {0x5010, 1}}, {"SRA GR2,2,GR3", {0x5123, 2}}, {"SLL GR1,#000F", {0x5210, 15}},
      {"SRL GR1,A", {0x5310, A}}, {"JMI A", {0x6100, A}}, {"JNZ A,GR1", {0x6201, A}}, {"JZE A", {0x6300, A}},
      {"JUMP A", {0x6400, A}}, {"JPL A", {0x6500, A}}, {"JOV A", {0x6600, A}}, {"PUSH 0,GR1", {0x7001, 0}},
      {"POP GR3", {0x7130}}, {"CALL A,GR7", {0x8007, A}}, {"RET ", {0x8100}}, {"SVC 1", {0xF000, 1}}, {"NOP ", {0x0000}},
      {"IN A,A", {0x7001, 0, 0x7002, 0, 0x1210, A, 0x1220, A, 0xF000, 1, 0x7120, 0x7110}},
      {"OUT A,A", {0x7001, 0, 0x7002, 0, 0x1210, A, 0x1220, A, 0xF000, 2, 0x7120, 0x7110}},
      {"RPUSH ", {0x7001, 0, 0x7002, 0, 0x7003, 0, 0x7004, 0, 0x7005, 0, 0x7006, 0, 0x7007, 0}},
      {"RPOP ", {0x7170, 0x7160, 0x7150, 0x7140, 0x7130, 0x7120, 0x7110}},
  };
  std::string src = "FORMS\tSTART\n";
  int adrA = 1;
  for (const auto& r : rows) src += "\t" + std::string(r.line) + "\n", adrA += static_cast<int>(r.words.size());
  ASSERT_EQ(Assemble(src + "A\tDC\t7\n\tEND\n", game), 0) << c.out;
  EXPECT_EQ(b->MaxMemory, adrA + 1);
  EXPECT_EQ(m->Memory[adrA], 7);
  const std::string report = Report("aaAssembledRegMry.txt");
  EXPECT_EQ(RowOf(report, 0), "#0000:    0: FORMS:    :#0000:    0:    +0: 0000 0000 0000 0000: 0:FORMS START ");
  int a = 1;
  for (const auto& r : rows) {
    SCOPED_TRACE(r.line);
    for (size_t k = 0; k < r.words.size(); ++k, ++a) {
      int w = r.words[k] == A ? adrA : r.words[k];
      EXPECT_EQ(m->Memory[a] & 0xFFFF, w) << a;
      // The source stands beside the first word only.
      std::string row = RowOf(report, a);
      ASSERT_GT(row.size(), 29u) << a;
      EXPECT_EQ(row.substr(0, 5) + row.substr(24, 5), Hex4(static_cast<uint32_t>(a)) + Hex4(static_cast<uint32_t>(w)));
      EXPECT_EQ(row.substr(row.rfind(':')), k == 0 ? ":   " + std::string(r.line) : ":");
    }
  }
}

// Two programs, the first entered at a label, a DS 0 and a DS of 2.
TEST_F(CodegenImage, StartWithAndWithoutEntryLabelAndDsZero) {
  ASSERT_EQ(Assemble("P\tSTART\tBEGIN\nX\tDC\t5\nZ\tDS\t0\nBEGIN\tLD\tGR0,X\n\tCALL\tQ\n\tRET\nBUF\tDS\t2\n\tEND\n"
                     "Q\tSTART\n\tRET\n\tEND\n",
                     game),
            0)
      << c.out;
  EXPECT_EQ(Words(0, 13), (std::vector<int>{0x6400, 3, 5, 0x1000, 2, 0x8000, 10, 0x8100, 0, 0, 0, 0x8100, 0}));
  const PrgDataW &P = b->vecPrgW[0], &Q = b->vecPrgW[1];
  const SrcLineW& Z = b->vecSrcW[2];  // at 3 with BEGIN, no words of its own
  EXPECT_EQ((std::vector<int>{P.prgWordSize, Q.AbAdrAtStart, Q.prgLastAdr, b->MaxMemory, Z.abAdr, int(Z.vecWord.size())}),
            (std::vector<int>{10, 10, 11, 12, 3, 0}));
  // Every word points back at its line; END and lines outside have none.
  EXPECT_EQ(Lines(0, 13), (std::vector<int>{0, 0, 1, 3, 3, 4, 4, 5, 6, 6, 8, 9, -1}));
}

TEST_F(CodegenImage, DcOfEveryKindWithForwardLabel) {
  ASSERT_EQ(Assemble("P\tSTART\n\tLD\tGR1,D\n\tRET\nD\tDC\t-1,#FFFF,70000,'A''B',E,+3\nE\tDC\t'あ'\n\tEND\n", game), 0)
      << c.out;
  const int d = 4;
  EXPECT_EQ((std::vector<int>{m->Memory[d], m->Memory[d + 1], m->Memory[d + 2]}), (std::vector<int>{-1, 0xFFFF, 70000}));
  EXPECT_EQ(Words(d + 3, 6), (std::vector<int>{0x41, 0x27, 0x42, d + 8, 3, 0x3042}));  // E lies further down
  const SrcLineW& D = b->vecSrcW[3];
  EXPECT_EQ(D.word_kazu, 8);
  ASSERT_EQ(D.vecOprndAtDC.size(), 6u);
  std::vector<std::string> flags;
  for (const auto& o : D.vecOprndAtDC) flags.push_back(o.DataTypeStrFlag);
  EXPECT_EQ(flags, (std::vector<std::string>{"Dec", "Hex", "Dec", "MoziRetuConst", "Label", "Dec"}));
  EXPECT_EQ(D.vecOprndAtDC[3].oprndChars[2].charAbAdr, d + 5);
  EXPECT_EQ(b->vecSrcW[4].labelUsed, 1);
  EXPECT_GE(game.WarningKazu, 1);  // 70000 is out of range
}

TEST_F(CodegenImage, DcMessagesInBothLanguages) {
  const std::string rows[] = {
      "Error : line 3:  Constant Nr=1: There does not exist any label which is identical with NOWHERE. \n"
      "Error : line 4: The 2nd operand at DC is empty in description.\n"
      "Warning : line 5:  Constant Nr=1: The decimal number constant is out of range. It should be between "
      "-32768 and 32767. So its lower 16-bits are saved in a memory. (Spec. 2.3 (4)) \n"
      "Error : line 6:  Constant Nr=1:  \"''\" : The size of the constant is zero, that is, the character "
      "constant is empty. One or more characters must be contained in a character constant. This instruction "
      "allocates a continuous area for the number of characters(> 0) in the character string.(Spec. of CASL2  "
      "2.3 (4) Character Constant）\n",
      "エラー： 3 行目： 1 番目の定数： アドレス定数 NOWHERE と一致する ラベル が存在しない。\n"
      "エラー： 4 行目： The 2nd operand at DC is empty in description.\n"
      "警告： 5 行目： 1 番目の定数：  \"32768\"  が -32768 から 32767 までの範囲にないので、その下位１６ビットが"
      "格納される。（仕様2・3（４））  \n"
      "エラー： 6 行目： 1 番目の定数：  \"''\" の文字列定数: サイズがゼロである。文字列定数は文字数は1以上でなけ"
      "ればならない。文字列の文字数（＞０）分の連続した領域を確保する。（CASL2の仕様２．３（４）文字定数） \n"};
  for (int lang : {1, 0}) {
    ResetAll(lang);
    ASSERT_EQ(Analyse("P\tSTART\n\tRET\nX\tDC\t1\nY\tDC\t1,2\nZ\tDC\t32768\nV\tDC\t'A'\n\tEND\n", game), 0) << c.out;
    // Texts that the analysis would not let through reach the DC words.
    b->vecSrcW[2].vecOprndAtDC[0].oprndText = u"NOWHERE";
    b->vecSrcW[3].vecOprndAtDC[1].oprndText = u"#";
    b->vecSrcW[5].vecOprndAtDC[0].oprndText = u"''";
    cs->ZeroCounters();
    msgLog->ClearMsgLog();
    c.out.clear();
    SetMryInAtDC_NWCS(0);
    EXPECT_EQ(c.out, rows[1 - lang]);
    EXPECT_EQ((std::vector<int>{cs->ErrorKazu, cs->WarningKazu, static_cast<int>(msgLog->WideLog.size())}),
              (std::vector<int>{3, 1, 4}));
    // What stands is still kept: the 1 of Y and the value of Z.
    EXPECT_EQ(b->vecSrcW[3].word_kazu, 1);
    EXPECT_EQ(b->vecSrcW[4].vecWord.at(0).wordCode, 32768);
  }
}

TEST_F(CodegenImage, LiteralsAreNotSharedAndStandBehindTheProgram) {
  ASSERT_EQ(Assemble("P\tSTART\n\tLAD\tGR1,=5\n\tLAD\tGR2,=5\n\tLD\tGR3,='A''B'\n\tLD\tGR4,=#00FF\n\tRET\n\tEND\n", game), 0)
      << c.out;
  EXPECT_EQ(Words(0, 17), (std::vector<int>{0, 0x1210, 10, 0x1220, 11, 0x1030, 12, 0x1040, 15, 0x8100, 5, 5, 0x41,
                                            0x27, 0x42, 0xFF, 0}));
  EXPECT_EQ(b->vecPrgW[0].prgWordSize, 16);
  EXPECT_EQ(b->vecPrgW[0].prgLiteStart, 10);
  EXPECT_EQ(Lines(10, 7), (std::vector<int>{1, 2, 3, 3, 3, 4, -1}));
  const SrcLineW& L = b->vecSrcW[3];
  EXPECT_EQ(L.second_word, 12);  // the address of the first character
  EXPECT_EQ(L.vecLiteConst[0].liteChars[1].charAbAdr, 13);
  // The record of a character literal is made anew each time; a text too
  // short for one leaves the line as it is.
  EXPECT_EQ(SetLiteCharConstMryInNWBD(3, u"='漢字'"), 2);
  EXPECT_EQ(SetLiteCharConstMryInNWBD(3, u"='"), 0);
  ASSERT_EQ(L.vecLiteConst.size(), 1u);
  EXPECT_EQ(L.vecLiteConst[0].liteText, u"='漢字'");
  ASSERT_EQ(L.vecLiteConst[0].liteChars.size(), 2u);
  EXPECT_EQ(L.vecLiteConst[0].liteChars[1].charValue, 0x5B57);
}

TEST_F(CodegenImage, LoaderFaults) {
  ASSERT_EQ(Assemble("P\tSTART\n\tLAD\tGR1,=7\nX\tDC\t1,2\nY\tDC\t'AB'\n\tEND\n", game), 0) << c.out;
  b->vecSrcW[2].vecOprndAtDC[1].DataTypeStrFlag = "Oct";
  ResetComet2(*m);
  c.out.clear();
  EXPECT_EQ(SetMemoryNW10GM(*fileData, 0), 0);
  EXPECT_EQ(c.out, "Prg. Error of else: a strange DataTypeStrFlag of vecOprndAtDC[1] = Oct\n");
  EXPECT_EQ((std::vector<int>{cs->ErrorKazu, m->Memory[6]}), (std::vector<int>{1, 7}));  // the literal behind Y
  // A character constant without characters ends the loading at once,
  // before the literal.
  ResetComet2(*m);
  b->vecSrcW[3].vecOprndAtDC[0].oprndChars.clear();
  EXPECT_EQ(SetMemoryNW10GM(*fileData, 0), -1);
  EXPECT_NE(c.out.find("The size of the constant is zero"), std::string::npos);
  EXPECT_EQ((std::vector<int>{cs->ErrorKazu, m->Memory[7]}), (std::vector<int>{3, 0}));
}

TEST_F(CodegenImage, DsCountThatCannotBeMetAndLineTableEnd) {
  ASSERT_EQ(Analyse("BIG\tSTART\nAREA\tDS\t65000\nMORE\tDS\t40\n\tRET\n\tEND\n", game), 0) << c.out;
  addressToLineMap();
  EXPECT_EQ((std::vector<int>{m->lineOfAdr[1], m->lineOfAdr[65035], m->lineOfAdr[65036], m->lineOfAdr[65041]}),
            (std::vector<int>{1, 2, -1, -1}));
  b->vecSrcW[1].oprnd1ChH = u"x";  // a count that was never read
  b->vecSrcW[1].word_kazu = -1;
  c.out.clear();
  SetMryInAtDS_NWCS(0);
  EXPECT_EQ(c.out, "Prg Error: b->vecSrcW[line].word_kazu\n != b->vecSrcW[line].vecWord.size()\n");
  EXPECT_EQ(SetMryInAtDS_NWCS(5), -1);
}

}  // namespace
