// The memory image: the words of every instruction form, START, DC, DS,
// literals, several programs, the loader and the address-to-line table.
#include <gtest/gtest.h>

#include "codegen_fixture.h"

using namespace cgtest;

namespace {

class CodegenImage : public ::testing::Test {
 protected:
  void SetUp() override { ResetAll(1); }
  void TearDown() override { ResetAll(1); }

  // Places the file and loads every program.
  void Load() {
    fb.Place();
    for (int p = 0; p < static_cast<int>(b->vecPrgW.size()); ++p) SetMemoryNW10GM(*fileData, p);
    addressToLineMap();
  }
  FileBuilder fb;
};

// The instruction table holds the codes of the language standard.
TEST(CodegenInstrTable, CodesOfEveryForm) {
  EXPECT_EQ(InstrCode("NOP", OpForm::None), 0x00);
  EXPECT_EQ(InstrCode("LD", OpForm::RAdrX), 0x10);
  EXPECT_EQ(InstrCode("LD", OpForm::R1R2), 0x14);
  EXPECT_EQ(InstrCode("ST", OpForm::R1R2), -1);
  EXPECT_EQ(InstrCode("SLA", OpForm::R1R2), -1);
  EXPECT_EQ(InstrCode("POP", OpForm::R), 0x71);
  EXPECT_EQ(InstrCode("RET", OpForm::None), 0x81);
  EXPECT_EQ(InstrCode("SVC", OpForm::AdrX), 0xF0);
  EXPECT_EQ(kDecode[0x88].exec, OpExec::Exit);
  EXPECT_EQ(kDecode[0x14].words, 1);
  EXPECT_EQ(kDecode[0x10].words, 2);
  EXPECT_EQ(kDecode[0x15].exec, OpExec::Invalid);
}

struct FormCase {
  const char16_t* op;
  const char16_t* oprnd;
  std::vector<int> words;  // -1 stands for the address of A
};

TEST_F(CodegenImage, EveryInstructionFormInMemory) {
  const std::vector<FormCase> cases = {
      {u"LD", u"GR1,A,GR2", {0x1012, -1}}, {u"LD", u"GR1,GR2", {0x1412}},
      {u"ST", u"GR3,A", {0x1130, -1}},     {u"ST", u"GR3,A,GR1", {0x1131, -1}},
      {u"LAD", u"GR4,5", {0x1240, 5}},     {u"LAD", u"GR0,65535", {0x1200, 0xFFFF}},
      {u"ADDA", u"GR1,A", {0x2010, -1}},   {u"ADDA", u"GR1,GR2", {0x2412}},
      {u"SUBA", u"GR1,A", {0x2110, -1}},   {u"SUBA", u"GR1,GR2", {0x2512}},
      {u"ADDL", u"GR1,A", {0x2210, -1}},   {u"ADDL", u"GR1,GR2", {0x2612}},
      {u"SUBL", u"GR1,A", {0x2310, -1}},   {u"SUBL", u"GR1,GR2", {0x2712}},
      {u"AND", u"GR1,A", {0x3010, -1}},    {u"AND", u"GR1,GR2", {0x3412}},
      {u"OR", u"GR1,A", {0x3110, -1}},     {u"OR", u"GR1,GR2", {0x3512}},
      {u"XOR", u"GR1,A", {0x3210, -1}},    {u"XOR", u"GR1,GR2", {0x3612}},
      {u"CPA", u"GR1,A", {0x4010, -1}},    {u"CPA", u"GR1,GR2", {0x4412}},
      {u"CPL", u"GR1,A", {0x4110, -1}},    {u"CPL", u"GR7,GR6", {0x4576}},
      {u"SLA", u"GR1,1", {0x5010, 1}},     {u"SRA", u"GR2,2,GR3", {0x5123, 2}},
      {u"SLL", u"GR1,#000F", {0x5210, 15}}, {u"SRL", u"GR1,A", {0x5310, -1}},
      {u"JMI", u"A", {0x6100, -1}},        {u"JNZ", u"A,GR1", {0x6201, -1}},
      {u"JZE", u"A", {0x6300, -1}},        {u"JUMP", u"A", {0x6400, -1}},
      {u"JPL", u"A", {0x6500, -1}},        {u"JOV", u"A", {0x6600, -1}},
      {u"PUSH", u"0,GR1", {0x7001, 0}},    {u"POP", u"GR3", {0x7130}},
      {u"CALL", u"A,GR7", {0x8007, -1}},   {u"RET", u"", {0x8100}},
      {u"SVC", u"1", {0xF000, 1}},         {u"NOP", u"", {0x0000}},
  };
  fb.Start(u"FORMS");
  for (const FormCase& c : cases) fb.Op(u"", c.op, c.oprnd);
  fb.Op(u"A", u"DC", u"7");
  fb.End();
  Load();

  int adrA = 1;
  for (const FormCase& c : cases) adrA += static_cast<int>(c.words.size());
  EXPECT_EQ(b->MaxMemory, adrA + 1);
  EXPECT_EQ(m->Memory[0], 0);  // the word of START
  int a = 1;
  for (const FormCase& c : cases) {
    for (int w : c.words) {
      EXPECT_EQ(m->Memory[a] & 0xFFFF, w < 0 ? adrA : w) << U16ToUtf8(c.op) << " " << U16ToUtf8(c.oprnd) << " at " << a;
      ++a;
    }
  }
  EXPECT_EQ(m->Memory[adrA], 7);
}

TEST_F(CodegenImage, StartWithAndWithoutEntryLabel) {
  fb.Start(u"P", u"BEGIN");
  fb.Op(u"X", u"DC", u"5");
  fb.Op(u"BEGIN", u"LD", u"GR0,X");
  fb.Op(u"", u"RET");
  fb.End();
  fb.Start(u"Q");
  fb.Op(u"", u"RET");
  fb.End();
  Load();
  EXPECT_EQ(Words(0, 9), (std::vector<int>{0x6400, 3, 5, 0x1000, 2, 0x8100, 0x0000, 0x8100, 0}));
  EXPECT_EQ(b->vecPrgW[0].prgWordSize, 6);
  EXPECT_EQ(b->vecPrgW[1].AbAdrAtStart, 6);
  EXPECT_EQ(b->vecPrgW[1].prgWordSize, 2);
  EXPECT_EQ(b->vecPrgW[1].prgLastAdr, 7);
  EXPECT_EQ(b->MaxMemory, 8);
  // Every word points back at its line; END and lines outside have none.
  EXPECT_EQ(m->lineOfAdr[0], 0);
  EXPECT_EQ(m->lineOfAdr[1], 0);
  EXPECT_EQ(m->lineOfAdr[2], 1);
  EXPECT_EQ(m->lineOfAdr[3], 2);
  EXPECT_EQ(m->lineOfAdr[4], 2);
  EXPECT_EQ(m->lineOfAdr[6], 5);
  EXPECT_EQ(m->lineOfAdr[7], 6);
  EXPECT_EQ(m->lineOfAdr[8], -1);
}

TEST_F(CodegenImage, DsZeroSharesItsAddressAndDsWordsAreZero) {
  fb.Start(u"P");
  fb.Op(u"Z", u"DS", u"0");
  fb.Op(u"W", u"DC", u"3");
  fb.Op(u"BUF", u"DS", u"3");
  fb.Op(u"", u"RET");
  fb.End();
  Load();
  const auto& L = b->vecSrcW;
  EXPECT_EQ(L[1].abAdr, 1);
  EXPECT_EQ(L[2].abAdr, 1);
  EXPECT_TRUE(L[1].vecWord.empty());
  ASSERT_EQ(L[3].vecWord.size(), 3u);
  EXPECT_EQ(L[3].vecWord[0].wordNote, u"DS");
  EXPECT_EQ(L[3].vecWord[2].abAdr, 4);
  EXPECT_EQ(Words(0, 6), (std::vector<int>{0, 3, 0, 0, 0, 0x8100}));
  EXPECT_EQ(m->lineOfAdr[1], 2);
  EXPECT_EQ(m->lineOfAdr[2], 3);
  EXPECT_EQ(m->lineOfAdr[4], 3);
  EXPECT_EQ(m->lineOfAdr[5], 4);
}

TEST_F(CodegenImage, DcOfEveryKindWithForwardLabel) {
  fb.Start(u"P");
  fb.Op(u"", u"LD", u"GR1,D");
  fb.Op(u"", u"RET");
  fb.Op(u"D", u"DC", u"-1,#FFFF,70000,'A''B',E,+3");
  fb.Op(u"E", u"DC", u"'あ'");
  fb.End();
  Captured c;
  Load();
  const int d = 4;
  EXPECT_EQ(m->Memory[d], -1);  // the whole 32-bit value
  EXPECT_EQ(m->Memory[d + 1], 0xFFFF);
  EXPECT_EQ(m->Memory[d + 2], 70000);
  EXPECT_EQ(Words(d + 3, 3), (std::vector<int>{0x41, 0x27, 0x42}));
  EXPECT_EQ(m->Memory[d + 6], d + 8);  // E, a label further down
  EXPECT_EQ(m->Memory[d + 7], 3);
  EXPECT_EQ(m->Memory[d + 8], 0x3042);
  const SrcLineW& D = b->vecSrcW[3];
  EXPECT_EQ(D.word_kazu, 8);
  ASSERT_EQ(D.vecOprndAtDC.size(), 6u);
  EXPECT_EQ(D.vecOprndAtDC[0].DataTypeStrFlag, "Dec");
  EXPECT_EQ(D.vecOprndAtDC[1].DataTypeStrFlag, "Hex");
  EXPECT_EQ(D.vecOprndAtDC[3].DataTypeStrFlag, "MoziRetuConst");
  EXPECT_EQ(D.vecOprndAtDC[4].DataTypeStrFlag, "Label");
  EXPECT_EQ(D.vecOprndAtDC[3].oprndAbAdr, d + 3);
  EXPECT_EQ(D.vecOprndAtDC[3].oprndChars[2].charAbAdr, d + 5);
  EXPECT_EQ(D.vecWord[4].wordNote, u"AdrConst of MoziRetu ");
  EXPECT_EQ(D.vecWord[6].wordNote, u"AdrConst of Label");
  EXPECT_EQ(D.vecWord[6].abAdr, d + 6);
  EXPECT_EQ(b->vecSrcW[4].labelUsed, 1);
  EXPECT_EQ(b->MaxMemory, d + 9);
  // 70000 is out of range each time the DC line is rebuilt: a warning.
  EXPECT_EQ(cs->ErrorKazu, 0);
  EXPECT_GE(cs->WarningKazu, 1);
}

TEST_F(CodegenImage, DcMessagesInBothLanguages) {
  fb.Start(u"P");
  fb.Op(u"", u"RET");
  fb.Op(u"X", u"DC", u"NOWHERE");
  fb.Op(u"Y", u"DC", u"1,#");
  fb.Op(u"Z", u"DC", u"32768");
  fb.Op(u"V", u"DC", u"''");
  fb.End();
  {
    Captured c;
    SetMryInAtDC_NWCS(0);
    EXPECT_EQ(c.out,
              "Error : line 3:  Constant Nr=1: There does not exist any label which is identical with NOWHERE. \n"
              "Error : line 4: The 2nd operand at DC is empty in description.\n"
              "Warning : line 5:  Constant Nr=1: The decimal number constant is out of range. It should be between "
              "-32768 and 32767. So its lower 16-bits are saved in a memory. (Spec. 2.3 (4)) \n"
              "Error : line 6:  Constant Nr=1:  \"''\" : The size of the constant is zero, that is, the character "
              "constant is empty. One or more characters must be contained in a character constant. This instruction "
              "allocates a continuous area for the number of characters(> 0) in the character string.(Spec. of CASL2  "
              "2.3 (4) Character Constant）\n");
    EXPECT_EQ(cs->ErrorKazu, 3);
    EXPECT_EQ(cs->WarningKazu, 1);
    ASSERT_EQ(msgLog->WideLog.size(), 4u);
    EXPECT_EQ(msgLog->WideLog[0].kind, kError);
    EXPECT_EQ(msgLog->WideLog[2].kind, kWarning);
    // What stands is still loaded: the 1 of Y and the value of Z.
    EXPECT_EQ(b->vecSrcW[3].word_kazu, 1);
    EXPECT_EQ(b->vecSrcW[4].vecWord.at(0).wordCode, 32768);
  }
  {
    Captured c;
    SetLang(0);
    SetMryInAtDC_NWCS(0);
    EXPECT_EQ(c.out,
              "エラー： 3 行目： 1 番目の定数： アドレス定数 NOWHERE と一致する ラベル が存在しない。\n"
              "エラー： 4 行目： The 2nd operand at DC is empty in description.\n"
              "警告： 5 行目： 1 番目の定数：  \"32768\"  が -32768 から 32767 までの範囲にないので、その下位１６ビットが"
              "格納される。（仕様2・3（４））  \n"
              "エラー： 6 行目： 1 番目の定数：  \"''\" の文字列定数: サイズがゼロである。文字列定数は文字数は1以上でなけ"
              "ればならない。文字列の文字数（＞０）分の連続した領域を確保する。（CASL2の仕様２．３（４）文字定数） \n");
  }
}

TEST_F(CodegenImage, LiteralsAreNotSharedAndStandBehindTheProgram) {
  fb.Start(u"P");
  fb.Op(u"", u"LAD", u"GR1,=5");
  fb.Op(u"", u"LAD", u"GR2,=5");
  fb.Op(u"", u"LD", u"GR3,='A''B'");
  fb.Op(u"", u"LD", u"GR4,=#00FF");
  fb.Op(u"", u"RET");
  fb.End();
  Load();
  EXPECT_EQ(Words(0, 15), (std::vector<int>{0, 0x1210, 10, 0x1220, 11, 0x1030, 12, 0x1040, 15, 0x8100, 5, 5, 0x41,
                                            0x27, 0x42}));
  EXPECT_EQ(Words(15, 1), (std::vector<int>{0xFF}));
  EXPECT_EQ(b->MaxMemory, 16);
  EXPECT_EQ(b->vecPrgW[0].prgWordSize, 16);
  EXPECT_EQ(b->vecPrgW[0].prgLiteStart, 10);
  const SrcLineW& L = b->vecSrcW[3];
  EXPECT_EQ(L.second_word, 12);  // the address of the first character
  EXPECT_EQ(L.vecLiteConst[0].liteAbAdr, 12);
  EXPECT_EQ(L.vecLiteConst[0].liteChars[1].charAbAdr, 13);
  EXPECT_EQ(b->vecSrcW[1].vecWord[1].wordCode, 10);
  EXPECT_EQ(m->lineOfAdr[10], 1);
  EXPECT_EQ(m->lineOfAdr[11], 2);
  EXPECT_EQ(m->lineOfAdr[12], 3);
  EXPECT_EQ(m->lineOfAdr[14], 3);
  EXPECT_EQ(m->lineOfAdr[15], 4);
}

TEST_F(CodegenImage, CharacterLiteralRecord) {
  fb.Start(u"P");
  fb.Op(u"", u"RET");
  fb.End();
  EXPECT_EQ(SetLiteCharConstMryInNWBD(1, u"='A''B'"), 3);
  const SrcLineW& L = b->vecSrcW[1];
  ASSERT_EQ(L.vecLiteConst.size(), 1u);
  const auto& lit = L.vecLiteConst[0];
  EXPECT_EQ(lit.liteText, u"='A''B'");
  EXPECT_EQ(lit.liteWordKazu, 3);
  ASSERT_EQ(lit.liteChars.size(), 3u);
  EXPECT_EQ(lit.liteChars[0].charValue, 0x41);
  EXPECT_EQ(lit.liteChars[1].charValue, 0x27);
  EXPECT_EQ(lit.liteChars[2].charValue, 0x42);
  // Again: the record is replaced, not added.
  EXPECT_EQ(SetLiteCharConstMryInNWBD(1, u"='漢字'"), 2);
  ASSERT_EQ(L.vecLiteConst.size(), 1u);
  EXPECT_EQ(L.vecLiteConst[0].liteChars[1].charValue, 0x5B57);
  // Shorter than three characters: the line stays as it is.
  EXPECT_EQ(SetLiteCharConstMryInNWBD(1, u"='"), 0);
  EXPECT_EQ(L.vecLiteConst.size(), 1u);
  EXPECT_EQ(L.vecLiteConst[0].liteText, u"='漢字'");
}

TEST_F(CodegenImage, ThreeProgramsCallingEachOther) {
  fb.Start(u"MAIN");
  fb.Op(u"", u"CALL", u"SUB1");
  fb.Op(u"", u"CALL", u"SUB2");
  fb.Op(u"", u"RET");
  fb.End();
  fb.Start(u"SUB1");
  fb.Op(u"", u"LAD", u"GR1,=1");
  fb.Op(u"", u"CALL", u"SUB2");
  fb.Op(u"", u"RET");
  fb.End();
  fb.Start(u"SUB2", u"ENT");
  fb.Op(u"V", u"DC", u"9");
  fb.Op(u"ENT", u"LD", u"GR2,V");
  fb.Op(u"", u"RET");
  fb.End();
  Load();
  EXPECT_EQ(Words(0, 6), (std::vector<int>{0, 0x8000, 6, 0x8000, 13, 0x8100}));
  EXPECT_EQ(Words(6, 7), (std::vector<int>{0, 0x1210, 12, 0x8000, 13, 0x8100, 1}));
  EXPECT_EQ(Words(13, 6), (std::vector<int>{0x6400, 16, 9, 0x1020, 15, 0x8100}));
  EXPECT_EQ(b->MaxMemory, 19);
  EXPECT_EQ(b->vecPrgW[1].AbAdrAtStart, 6);
  EXPECT_EQ(b->vecPrgW[2].AbAdrAtStart, 13);
  EXPECT_EQ(b->vecPrgW[1].prgLastAdr, 12);
  EXPECT_EQ(m->lineOfAdr[12], 6);  // SUB1's literal belongs to its LAD line
  EXPECT_EQ(m->lineOfAdr[13], 10);
  EXPECT_EQ(m->lineOfAdr[19], -1);
}

TEST_F(CodegenImage, MacroWordsAreLoadedFromTheirLists) {
  fb.Start(u"IO");
  fb.Op(u"", u"IN", u"BUF,LEN");
  fb.Op(u"", u"OUT", u"BUF,LEN");
  fb.Op(u"", u"RPUSH");
  fb.Op(u"", u"RPOP");
  fb.Op(u"", u"RET");
  fb.Op(u"BUF", u"DS", u"2");
  fb.Op(u"LEN", u"DC", u"2");
  fb.End();
  Load();
  const int buf = 1 + 12 + 12 + 14 + 7 + 1, len = buf + 2;
  EXPECT_EQ(Words(1, 12), (std::vector<int>{0x7001, 0, 0x7002, 0, 0x1210, buf, 0x1220, len, 0xF000, 1, 0x7120, 0x7110}));
  EXPECT_EQ(Words(13, 12), (std::vector<int>{0x7001, 0, 0x7002, 0, 0x1210, buf, 0x1220, len, 0xF000, 2, 0x7120, 0x7110}));
  EXPECT_EQ(Words(25, 14), (std::vector<int>{0x7001, 0, 0x7002, 0, 0x7003, 0, 0x7004, 0, 0x7005, 0, 0x7006, 0, 0x7007, 0}));
  EXPECT_EQ(Words(39, 7), (std::vector<int>{0x7170, 0x7160, 0x7150, 0x7140, 0x7130, 0x7120, 0x7110}));
  EXPECT_EQ(m->Memory[len], 2);
  EXPECT_EQ(m->lineOfAdr[24], 2);
  EXPECT_EQ(m->lineOfAdr[38], 3);
  EXPECT_EQ(m->lineOfAdr[45], 4);
}

TEST_F(CodegenImage, LoaderFaults) {
  fb.Start(u"P");
  fb.Op(u"", u"LAD", u"GR1,=7");
  fb.Op(u"X", u"DC", u"1,2");
  fb.Op(u"Y", u"DC", u"'AB'");
  fb.End();
  fb.Place();
  b->vecSrcW[2].vecOprndAtDC[1].DataTypeStrFlag = "Oct";
  {
    Captured c;
    EXPECT_EQ(SetMemoryNW10GM(*fileData, 0), 0);
    EXPECT_EQ(c.out, "Prg. Error of else: a strange DataTypeStrFlag of vecOprndAtDC[1] = Oct\n");
    EXPECT_EQ(cs->ErrorKazu, 1);
    EXPECT_EQ(m->Memory[6], 7);  // the literal behind the two words of Y
  }
  // A character constant without characters ends the loading at once: the
  // literal is not written.
  ResetComet2(*m);
  b->vecSrcW[2].vecOprndAtDC[1].DataTypeStrFlag = "Dec";
  b->vecSrcW[3].vecOprndAtDC[0].oprndChars.clear();
  {
    Captured c;
    EXPECT_EQ(SetMemoryNW10GM(*fileData, 0), -1);
    EXPECT_NE(c.out.find("The size of the constant is zero"), std::string::npos);
    EXPECT_EQ(m->Memory[7], 0);
    EXPECT_EQ(cs->ErrorKazu, 2);
  }
}

TEST_F(CodegenImage, DsCountThatCannotBeMet) {
  fb.Start(u"P");
  fb.Op(u"B", u"DS", u"1");
  fb.End();
  b->vecSrcW[1].oprnd1Str = u"x";
  b->vecSrcW[1].word_kazu = -1;
  Captured c;
  SetMryInAtDS_NWCS(0);
  EXPECT_EQ(c.out, "Prg Error: b->vecSrcW[line].word_kazu\n != b->vecSrcW[line].vecWord.size()\n");
  EXPECT_EQ(SetMryInAtDS_NWCS(5), -1);
}

TEST_F(CodegenImage, LineTableStopsAt65036) {
  fb.Start(u"BIG");
  fb.Op(u"AREA", u"DS", u"65040");
  fb.Op(u"", u"RET");
  fb.End();
  fb.Place();
  addressToLineMap();
  EXPECT_EQ(m->lineOfAdr[1], 1);
  EXPECT_EQ(m->lineOfAdr[65035], 1);
  EXPECT_EQ(m->lineOfAdr[65036], -1);
  EXPECT_EQ(m->lineOfAdr[65041], -1);
}

}  // namespace
