// Address operands: the shape check of the instruction rules, the value of
// an address constant (program names before labels, numbers, literals), and
// the address pass over whole programs with both passes.
#include "operand_data_fixture.h"

namespace {

using opdtest::Captured;
using opdtest::OpdTest;

using OperandDataAdrOperandTest = OpdTest;

TEST_F(OperandDataAdrOperandTest, MissingOperandsAndLoneCommas) {
  Captured c;
  int a = Line(u"", u"LD", {u"GR1,", u""});
  int j = Line(u"", u"JUMP", {u""});
  int k = Line(u"", u"LD", {u"GR1,", u","});
  int m = Line(u"", u"LD", {u"GR1,", u" ,"});
  EXPECT_EQ(CkAdrOperandNWCS(*cs, a, 2), -1);
  EXPECT_EQ(CkAdrOperandNWCS(*cs, j, 1), -1);
  EXPECT_EQ(CkAdrOperandNWCS(*cs, k, 2), -1);
  EXPECT_EQ(CkAdrOperandNWCS(*cs, m, 2), -1);
  EXPECT_EQ(CkAdrOperandNWCS(*cs, a, 3), -1);
  EXPECT_EQ(cs->ErrorKazu, 5);
  EXPECT_EQ(c.out,
            "Error : line 1: The 2nd operand is expected. \n"
            "Error : line 2: The 1st operand is expected. \n"
            "Error : line 3: Dupulication of comma. Or an operand is expected at the left side of the comma. \n"
            "Error : line 4: Dupulication of comma. Or an operand is expected at the left side of the comma. \n"
            "Error : line 1: Another operand is expected. \n");
  c.out.clear();
  SetLang(0);
  CkAdrOperandNWCS(*cs, a, 2);
  CkAdrOperandNWCS(*cs, k, 2);
  EXPECT_EQ(c.out,
            "エラー： 1 行目： 2 つ目のオペランドが必要。\n"
            "エラー： 3 行目： コンマの重複あるいはコンマの前にオペランドの記述がない。  \n");
}

TEST_F(OperandDataAdrOperandTest, CommasAroundTheIndexRegister) {
  Captured c;
  int plain = Line(u"", u"LD", {u"GR1,", u"A"}, 0, 0x1010);
  int idx = Line(u"", u"LD", {u"GR1,", u"A,", u"GR2"});
  int noComma = Line(u"", u"LD", {u"GR1,", u"A", u"GR2"});
  int useless = Line(u"", u"JUMP", {u"A,"});
  EXPECT_EQ(CkAdrOperandNWCS(*cs, plain, 2), 0);
  EXPECT_EQ(cs->ChFlag, 0);
  EXPECT_EQ(L(plain).oprndCount, 2);
  EXPECT_EQ(L(plain).word_kazu, 2);
  EXPECT_EQ(CkAdrOperandNWCS(*cs, idx, 2), 0);
  EXPECT_EQ(cs->ChFlag, 1);
  EXPECT_EQ(L(idx).oprndCount, 3);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(CkAdrOperandNWCS(*cs, noComma, 2), -1);
  EXPECT_EQ(CkAdrOperandNWCS(*cs, useless, 1), 0);
  EXPECT_EQ(cs->ChFlag, 1);
  EXPECT_EQ(L(useless).oprndCount, 2);
  EXPECT_EQ(L(useless).word_kazu, 2);
  EXPECT_EQ(cs->ErrorKazu, 1);
  EXPECT_EQ(cs->WarningKazu, 1);
  EXPECT_EQ(c.out,
            "Error : line 3: A comma is expected between the 2nd operand and the 3rd one. 2nd operand=A   3rd "
            "operand=GR2  \n"
            "Warning : line 4: There is a comma at the right side of the operand. This comma is of no use. Or an index "
            "register is expected at the left side of the comma. \n");
  c.out.clear();
  SetLang(0);
  CkAdrOperandNWCS(*cs, noComma, 2);
  CkAdrOperandNWCS(*cs, useless, 1);
  EXPECT_EQ(c.out,
            "エラー： 3 行目：  二つ目のオペランド  \"A\"  の右にコンマが無いのに三つ目のオペランド（指標レジスタ） \"GR2\"  "
            "の記述がある。 \n"
            "警告： 4 行目： 指標レジスターの記述がないのだから 1 "
            "つ目のオペランドの右のコンマは不要です。あるいは、このコンマに続く指標レジスターの記述が必要です。\n");
}

class OperandDataAdrConstTest : public OpdTest {
 protected:
  // One program with a line "LD GR1,<text>" at index 1 and a label X at 3.
  int Setup(const std::u16string& text, const std::u16string& op = u"LD") {
    int s = Line(u"PRG", u"START", {}, 1);
    int i = op == u"LD" || op == u"LAD" ? Line(u"", op, {u"GR1,", text}, 2) : Line(u"", op, {text}, 2);
    Line(u"", u"RET", {}, 1);
    int x = Line(u"X", u"DC", {}, 1);
    L(x).abAdr = 77;
    Program(u"PRG", s);
    return i;
  }
  int Resolve(int i) {
    int slot = L(i).opStr == u"LD" || L(i).opStr == u"LAD" ? 2 : 1;
    return CkAdrConst20NWCS(*cs, i, slot);
  }
};

TEST_F(OperandDataAdrConstTest, DecimalOperandsAtTheLimits) {
  Captured c;
  const std::pair<std::u16string, int> silent[] = {{u"65535", 0xFFFF}, {u"-32768", 0x8000}, {u"0", 0}, {u"+12", 12}, {u"-1", 0xFFFF}};
  for (auto& [text, v] : silent) {
    int i = Setup(text);
    EXPECT_EQ(Resolve(i), 0);
    EXPECT_EQ(L(i).second_word, v);
  }
  EXPECT_EQ(c.out, "");
  int i = Setup(u"65536");
  EXPECT_EQ(Resolve(i), 0);
  EXPECT_EQ(L(i).second_word, 0);
  int j = Setup(u"-32769");
  EXPECT_EQ(Resolve(j), 0);
  EXPECT_EQ(L(j).second_word, 0x7FFF);
  EXPECT_EQ(cs->NoteKazu, 2);
  EXPECT_EQ(cs->ErrorKazu, 0);
  const std::string note =
      "The decimal number is out of range. \nThe range of a decimal number is from zerp to 65535.\n"
      "When a decimal number exceeds the range, its lower 16-bits is\nsaved in a memory. (Spec. of CASL2 2.3 (4)) \n"
      "When a decimal number is between -32768 and 32767 \nit is saved in a memory as a binary data in 16 digits. \n"
      "The 15th bit is a sign bit. (Spec. of Drill Asm) \n";
  EXPECT_EQ(c.out, "Note : line " + std::to_string(i + 1) + ": " + note + "Note : line " + std::to_string(j + 1) + ": " + note);
  c.out.clear();
  SetLang(0);
  int k = Setup(u"70000");
  Resolve(k);
  EXPECT_EQ(c.out, "注意： " + std::to_string(k + 1) +
                       " 行目： 10 進数の記述が 0 から 65535 までの範囲外にある。\n"
                       "その下位 16 ビットが格納される。(仕様 １・２、 注の２)  \n"
                       "10 進数の記述が -32768 から 32767 のとき、16ビットの2進数データ（最上位ビットを符号ビットとする "
                       "）として格納される。 \n"
                       "その範囲外にあるとき、その下位 16 ビットが格納される。（独自仕様）  \n");
  int bad = Setup(u"12X");
  EXPECT_EQ(Resolve(bad), -1);
  EXPECT_EQ(L(bad).second_word, 0);
}

TEST_F(OperandDataAdrConstTest, HexadecimalOperands) {
  Captured c;
  int ok = Setup(u"#FFFF");
  EXPECT_EQ(Resolve(ok), 0);
  EXPECT_EQ(L(ok).second_word, 0xFFFF);
  EXPECT_EQ(c.out, "");
  int texts[5];
  const std::u16string bad[] = {u"#FFF", u"#F", u"#10000", u"#12G4", u"#"};
  for (int k = 0; k < 5; ++k) {
    texts[k] = Setup(bad[k]);
    EXPECT_EQ(Resolve(texts[k]), -1);
  }
  EXPECT_EQ(cs->ErrorKazu, 5);
  auto n = [&](int k) { return "Error : line " + std::to_string(texts[k] + 1) + ": "; };
  EXPECT_EQ(c.out, n(0) + "A hexadecimal number should be written in four digits. (Spec. 2.3 (4)) It is only 3 digits. \n" +
                       n(1) + "A hexadecimal number should be written in four digits. (Spec. 2.3 (4)) It is only 1 digit. \n" +
                       n(2) + "A hexadecimal nmuber should be written in four digits. (Spec. 2.3 (4)) It is only 5 digits. \n" +
                       n(3) + "A hexadecimal number is written in 0-9 and A-F. \n" + n(4) +
                       "There is no description at the right side of #. \n");
  c.out.clear();
  SetLang(0);
  int j = Setup(u"#12");
  Resolve(j);
  int h = Setup(u"#12345");
  Resolve(h);
  EXPECT_EQ(c.out, "エラー： " + std::to_string(j + 1) + " 行目：  １６ 進数は ４ 桁で記述する。(仕様2･3 (4)) \n2 桁しかない。\n" +
                       "エラー： " + std::to_string(h + 1) + " 行目：  １６ 進数は ４ 桁で記述する。(仕様2･3 (4)) 5 桁ある。\n");
}

TEST_F(OperandDataAdrConstTest, LabelTextsAndUndefinedNames) {
  Captured c;
  int nine = Setup(u"ABCDEFGHI");  // an error of length, defined or not
  int small = Setup(u"Abc");
  int sym = Setup(u"A-B");
  int lower = Setup(u"abc");
  int undef = Setup(u"NOWHERE,");
  for (int i : {nine, small, sym, lower, undef}) EXPECT_EQ(Resolve(i), -1);
  EXPECT_EQ(cs->ErrorKazu, 5);
  auto n = [&](int i) { return "Error : line " + std::to_string(i + 1) + ": "; };
  EXPECT_EQ(c.out,
            n(nine) + "An address constant must be 1 to 8 characters in length. There are 9 characters in it. \n" +
                n(small) + "There is a small letter in the address constant. \nA small letter is not allowed in casl2. \n" +
                n(sym) +
                "An address constant should be written in capital alphanumeric letters. There is a non-alphanumeric "
                "character in the constant. \n" +
                n(lower) + "There is a small letter in the address constant. \nA small letter is not allowed in casl2. \n" +
                n(undef) +
                "Undefined address constant.  Neither label nor program name it is. None of them is identical with  "
                "\"NOWHERE\" . \n");
  c.out.clear();
  SetLang(0);
  int u2 = Setup(u"NOWHERE");
  Resolve(u2);
  int n2 = Setup(u"ABCDEFGHIJ");
  Resolve(n2);
  EXPECT_EQ(c.out, "エラー： " + std::to_string(u2 + 1) +
                       " 行目： アドレス定数  \"NOWHERE\"  と一致するラベル又はプログラム名（START アセンブラ命令の左にあるラベル）が存在しない。\n"
                       "エラー： " + std::to_string(n2 + 1) + " 行目： アドレス定数は８文字以内の制限がある。 10 文字ある。 \n");
}

TEST_F(OperandDataAdrConstTest, ProgramNamesComeBeforeLabelsAndWarnOutsideCallAndLad) {
  Captured c;
  // Program 0 has a label SUB of its own; program 1 is named SUB.
  int s0 = Line(u"MAIN", u"START", {}, 1);
  int ld = Line(u"", u"LD", {u"GR1,", u"SUB"}, 2);
  int lad = Line(u"", u"LAD", {u"GR1,", u"SUB"}, 2);
  int call = Line(u"", u"CALL", {u"SUB"}, 2);
  int own = Line(u"SUB", u"DC", {}, 1);
  L(own).abAdr = 5;
  Program(u"MAIN", s0);
  int s1 = Line(u"SUB", u"START", {}, 1);
  Line(u"", u"RET", {}, 1);
  Program(u"SUB", s1);
  b->vecPrgW[1].AbAdrAtStart = 40;
  EXPECT_EQ(CkAdrConst20NWCS(*cs, lad, 2), 0);
  EXPECT_EQ(CkAdrConst20NWCS(*cs, call, 1), 0);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(CkAdrConst20NWCS(*cs, ld, 2), 0);
  for (int i : {ld, lad, call}) EXPECT_EQ(L(i).second_word, 40);
  EXPECT_EQ(b->vecPrgW[1].prgUsed, 1);
  EXPECT_EQ(L(own).labelUsed, 0);
  EXPECT_EQ(cs->WarningKazu, 1);
  EXPECT_EQ(c.out,
            "Warning : line 2: The address constant is a name of the outside program. The comet2 might be out of "
            "control. Is this your intention? \n");
  c.out.clear();
  SetLang(0);
  CkAdrConst20NWCS(*cs, ld, 2);
  EXPECT_EQ(c.out, "警告： 2 行目： アドレス定数として外部のプログラム名を用いている。　暴走の可能性がある。 これはあなたの意図ですか？\n");
}

TEST_F(OperandDataAdrConstTest, TheFirstOfTwoEqualLabelsAnswers) {
  Captured c;
  int s = Line(u"P", u"START", {}, 1);
  int ld = Line(u"", u"LD", {u"GR1,", u"A"}, 2);
  int a1 = Line(u"A", u"DC", {}, 1);
  int a2 = Line(u"A", u"DC", {}, 1);
  L(a1).abAdr = 3;
  L(a2).abAdr = 4;
  Program(u"P", s);
  EXPECT_EQ(CkAdrConst20NWCS(*cs, ld, 2), 0);
  EXPECT_EQ(L(ld).second_word, 3);
  EXPECT_EQ(L(a1).labelUsed, 1);
  EXPECT_EQ(L(a2).labelUsed, 0);
}

class OperandDataAdrPassTest : public OpdTest {};

// Two programs as the instruction rules leave them, taken through the first
// pass (per program) and the second pass (all programs again).
TEST_F(OperandDataAdrPassTest, TwoProgramsWithLiteralsMacrosForwardReferencesAndCalls) {
  Captured c;
  int s0 = Line(u"MAIN", u"START", {}, 1);
  int ld = Line(u"", u"LD", {u"GR1,", u"DATA"}, 2, 0x1010);
  int ldr = Line(u"", u"LD", {u"GR1,", u"GR2"}, 1, 0x1412);
  int call = Line(u"", u"CALL", {u"SUB"}, 2, 0x8000);
  int lit1 = Line(u"", u"LAD", {u"GR2,", u"=10"}, 2, 0x1220);
  int lit2 = Line(u"", u"LAD", {u"GR3,", u"=10"}, 2, 0x1230);
  int lit3 = Line(u"", u"LD", {u"GR4,", u"='A''B'"}, 2, 0x1040);
  int lit4 = Line(u"", u"LD", {u"GR5,", u"=#00FF"}, 2, 0x1050);
  int ret = Line(u"", u"RET", {}, 1);
  int data = Line(u"DATA", u"DC", {}, 1);
  L(data).vecWord.push_back(WordRecT<wstr>{5, 0, 0, data, u"AdrConst of Dec"});
  int ds0 = Line(u"BUF", u"DS", {u"0"}, 0);
  int ds2 = Line(u"NEXT", u"DS", {u"2"}, 2);
  int p0 = Program(u"MAIN", s0);
  int s1 = Line(u"SUB", u"START", {}, 1);
  int out = Line(u"", u"OUT", {u"BUF2,", u"LEN"}, 12);
  int rpush = Line(u"", u"RPUSH", {}, 14);
  int rpop = Line(u"", u"RPOP", {}, 7);
  int nop = Line(u"", u"NOP", {}, 1);
  int ret2 = Line(u"", u"RET", {}, 1, 0x8100);
  int buf2 = Line(u"BUF2", u"DS", {u"3"}, 3);
  int len = Line(u"LEN", u"DC", {}, 1);
  L(len).vecWord.push_back(WordRecT<wstr>{3, 0, 0, len, u""});
  int p1 = Program(u"SUB", s1);

  // First pass, per program.
  EXPECT_EQ(AdrCk53NWCS(p0), 0);
  EXPECT_EQ(L(ld).second_word, 0);  // DATA lies ahead
  EXPECT_EQ(L(call).second_word, 0);  // SUB has no address yet
  EXPECT_EQ(AdrCk53NWCS(p1), 0);
  // Second pass, as the link runs it.
  EXPECT_EQ(AdrCk53NWCS(p0), 0);
  EXPECT_EQ(AdrCk53NWCS(p1), 0);
  EXPECT_EQ(c.out, "");
  EXPECT_EQ(cs->ErrorKazu + cs->WarningKazu + cs->NoteKazu, 0);

  // Program 0: START 0, LD 1-2, LD r 3, CALL 4-5, LAD 6-7, LAD 8-9, LD 10-11,
  // LD 12-13, RET 14, DC 15, DS 0 at 16 with no word, DS 2 16-17; literals
  // from 18: =10, =10, 'A''B' (three words), =#00FF.
  const std::pair<int, int> adr[] = {{s0, 0},    {ld, 1},    {ldr, 3},   {call, 4}, {lit1, 6}, {lit2, 8},
                                     {lit3, 10}, {lit4, 12}, {ret, 14}, {data, 15}, {ds0, 16}, {ds2, 16}};
  for (auto [i, a] : adr) {
    EXPECT_EQ(L(i).abAdr, a) << "line " << i;
    EXPECT_EQ(L(i).rlAdr, a) << "line " << i;
  }
  EXPECT_EQ(L(ld).second_word, 15);
  EXPECT_EQ(L(ld).vecWord.at(1).wordCode, 15);
  EXPECT_EQ(L(data).labelUsed, 1);
  EXPECT_EQ(L(call).second_word, 24);
  EXPECT_EQ(b->vecPrgW[1].prgUsed, 1);
  EXPECT_TRUE(L(ds0).vecWord.empty());
  // Literals, unshared, behind the program.
  EXPECT_EQ(b->vecPrgW[0].prgLiteStart, 18);
  EXPECT_EQ(L(lit1).second_word, 18);
  EXPECT_EQ(L(lit2).second_word, 19);
  EXPECT_EQ(L(lit3).second_word, 20);
  EXPECT_EQ(L(lit4).second_word, 23);
  EXPECT_EQ(L(lit1).vecWord.at(1).wordCode, 18);
  ASSERT_EQ(L(lit1).vecLiteConst.size(), 1u);
  EXPECT_EQ(L(lit1).vecLiteConst[0].liteValue, 10);
  EXPECT_EQ(L(lit1).vecLiteConst[0].liteKind, "LiteDecConst");
  EXPECT_EQ(L(lit1).vecLiteConst[0].liteText, u"=10");
  EXPECT_EQ(L(lit1).hasLiteral, 1);
  EXPECT_EQ(L(lit4).vecLiteConst[0].liteValue, 0xFF);
  EXPECT_EQ(L(lit4).vecLiteConst[0].liteKind, "LiteHexConst");
  const auto& chars = L(lit3).vecLiteConst.at(0).liteChars;
  ASSERT_EQ(chars.size(), 3u);
  EXPECT_EQ(chars[1].charValue, 0x27);
  EXPECT_EQ(chars[2].charAbAdr, 22);
  EXPECT_EQ(L(lit3).vecLiteConst[0].liteAbAdr, 20);
  EXPECT_EQ(b->vecPrgW[0].prgWordSize, 24);
  EXPECT_EQ(b->vecPrgW[0].prgLastAdr, 23);
  EXPECT_EQ(b->vecPrgW[1].AbAdrAtStart, 24);

  // Program 1 from 24: START 24, OUT 25-36, RPUSH 37-50, RPOP 51-57, NOP 58,
  // RET 59, DS 3 60-62, DC 63.
  EXPECT_EQ(L(s1).abAdr, 24);
  EXPECT_EQ(L(s1).rlAdr, 0);
  EXPECT_EQ(L(out).abAdr, 25);
  EXPECT_EQ(L(rpush).abAdr, 37);
  EXPECT_EQ(L(rpop).abAdr, 51);
  EXPECT_EQ(L(nop).abAdr, 58);
  EXPECT_EQ(L(ret2).abAdr, 59);
  EXPECT_EQ(L(buf2).abAdr, 60);
  EXPECT_EQ(L(len).abAdr, 63);
  EXPECT_EQ(L(len).vecWord.at(0).abAdr, 63);
  EXPECT_EQ(L(len).vecWord.at(0).rlAdr, 39);
  EXPECT_EQ(b->vecPrgW[1].prgWordSize, 40);
  EXPECT_EQ(b->vecPrgW[1].prgLastAdr, 63);
  EXPECT_EQ(b->MaxMemory, 64);

  std::vector<int32_t> outWords;
  for (auto& w : L(out).vecWord) outWords.push_back(w.wordCode);
  EXPECT_EQ(outWords, (std::vector<int32_t>{0x7001, 0, 0x7002, 0, 0x1210, 60, 0x1220, 63, 0xF000, 2, 0x7120, 0x7110}));
  EXPECT_EQ(L(out).vecWord[0].wordNote, u"MacroINorOUT");
  EXPECT_EQ(L(out).vecWord[11].abAdr, 36);
  EXPECT_EQ(L(out).vecWord[11].rlAdr, 12);
  ASSERT_EQ(L(rpush).vecWord.size(), 14u);
  EXPECT_EQ(L(rpush).vecWord[0].wordCode, 0x7001);
  EXPECT_EQ(L(rpush).vecWord[12].wordCode, 0x7007);
  EXPECT_EQ(L(rpush).vecWord[13].wordCode, 0);
  EXPECT_EQ(L(rpush).vecWord[0].wordNote, u"A part of RPOP");
  EXPECT_EQ(L(rpush).vecWord[1].wordNote, u"An adr part of RPOP");
  EXPECT_EQ(L(rpush).vecWord[13].abAdr, 50);
  std::vector<int32_t> popWords;
  for (auto& w : L(rpop).vecWord) popWords.push_back(w.wordCode);
  EXPECT_EQ(popWords, (std::vector<int32_t>{0x7170, 0x7160, 0x7150, 0x7140, 0x7130, 0x7120, 0x7110}));
  EXPECT_EQ(L(rpop).vecWord[6].wordNote, u"A part of of RPOP");
  EXPECT_EQ(L(ret2).vecWord.at(0).wordCode, 0x8100);
  EXPECT_EQ(L(ret2).vecWord.at(0).wordNote, u"RET");
  EXPECT_EQ(L(nop).vecWord.at(0).wordNote, u"NOP");
  EXPECT_EQ(L(s1).vecWord.at(0).wordNote, u"START");
  // DS notes: the text with its first n characters dropped.
  ASSERT_EQ(L(buf2).vecWord.size(), 3u);
  EXPECT_EQ(L(buf2).vecWord[0].wordNote, u"An operand of DS: Nr.");
  EXPECT_EQ(L(buf2).vecWord[2].wordNote, u" operand of DS: Nr.");
  EXPECT_EQ(L(buf2).vecWord[2].abAdr, 62);
}

TEST_F(OperandDataAdrPassTest, ALongDsUsesUpItsNoteText) {
  Captured c;
  int s = Line(u"P", u"START", {}, 1);
  int ds = Line(u"", u"DS", {u"25"}, 25);
  Program(u"P", s);
  AdrCk53NWCS(0);
  ASSERT_EQ(L(ds).vecWord.size(), 25u);
  EXPECT_EQ(L(ds).vecWord[20].wordNote, u".");
  EXPECT_EQ(L(ds).vecWord[21].wordNote, u"");
  EXPECT_EQ(L(ds).vecWord[24].abAdr, 25);
  EXPECT_EQ(b->MaxMemory, 26);
}

TEST_F(OperandDataAdrPassTest, AnErrorLeavesTheLineWithoutAddressAndALineOfNoBranchEndsThePass) {
  Captured c;
  int s = Line(u"P", u"START", {}, 1);
  int bad = Line(u"", u"JUMP", {u"NOWHERE"}, 2, 0x6400);
  int ret = Line(u"", u"RET", {}, 1);
  int odd = Line(u"", u"XYZ", {}, 1);
  int after = Line(u"", u"NOP", {}, 1);
  Program(u"P", s);
  L(after).abAdr = -5;
  EXPECT_EQ(AdrCk53NWCS(0), -1);
  EXPECT_EQ(L(ret).abAdr, 1);  // the bad jump took no address
  EXPECT_EQ(L(after).abAdr, -5);
  EXPECT_EQ(cs->ErrorKazu, 2);
  EXPECT_NE(c.out.find("Error : line " + std::to_string(odd + 1) + ":  \"XYZ\"  is not an op code defined in casl2. \n"),
            std::string::npos);
  (void)bad;
  c.out.clear();
  SetLang(0);
  AdrCk53NWCS(0);
  EXPECT_NE(c.out.find("エラー： 4 行目：  \"XYZ\"  に該当する命令がない。word_kazu[3]=1\n"), std::string::npos);
  EXPECT_EQ(AdrCk53NWCS(7), -1);  // no such program: reported, no crash
}


TEST_F(OperandDataAdrPassTest, LiteralsOfEachKindOnTwoLinesTakeTwoPlaces) {
  Captured c;
  int s = Line(u"P", u"START", {}, 1);
  std::vector<int> lines;
  for (const char16_t* t : {u"=-1", u"=-1", u"=#8000", u"=#8000", u"='XY'", u"='XY'", u"=+70000"})
    lines.push_back(Line(u"", u"LD", {u"GR1,", t}, 2, 0x1010));
  Program(u"P", s);
  EXPECT_EQ(AdrCk53NWCS(0), 0);
  // Lines 1-14, literals from 15: two numbers, two numbers, two strings of
  // two words, and the cut decimal.
  const int expect[] = {15, 16, 17, 18, 19, 21, 23};
  for (size_t k = 0; k < lines.size(); ++k) {
    EXPECT_EQ(L(lines[k]).second_word, expect[k]) << k;
    ASSERT_EQ(L(lines[k]).vecLiteConst.size(), 1u);
    EXPECT_EQ(L(lines[k]).vecLiteConst[0].liteAbAdr, expect[k]);
    EXPECT_EQ(L(lines[k]).vecLiteConst[0].liteRlAdr, expect[k]);
  }
  EXPECT_EQ(L(lines[0]).vecLiteConst[0].liteValue, 0xFFFF);
  EXPECT_EQ(L(lines[2]).vecLiteConst[0].liteValue, 0x8000);
  EXPECT_EQ(L(lines[2]).vecLiteConst[0].liteKind, "LiteHexConst");
  EXPECT_EQ(L(lines[4]).vecLiteConst[0].liteKind, "LiteCharConst");
  EXPECT_EQ(L(lines[4]).vecLiteConst[0].liteWordKazu, 2);
  EXPECT_EQ(L(lines[5]).vecLiteConst[0].liteChars.at(1).charAbAdr, 22);
  EXPECT_EQ(L(lines[6]).vecLiteConst[0].liteValue, 70000 & 0xFFFF);
  EXPECT_EQ(b->vecPrgW[0].prgLiteStart, 15);
  EXPECT_EQ(b->MaxMemory, 24);
  // A literal decimal outside -32768..32767 warns as a constant does.
  EXPECT_EQ(cs->WarningKazu, 1);
  EXPECT_EQ(Msg(0).code, "F93C6677");
  // The second pass replaces the records and gives the same places.
  EXPECT_EQ(AdrCk53NWCS(0), 0);
  EXPECT_EQ(L(lines[5]).vecLiteConst.size(), 1u);
  EXPECT_EQ(L(lines[5]).second_word, 21);
  EXPECT_EQ(b->MaxMemory, 24);
}

TEST_F(OperandDataAdrPassTest, StartWithAnEntryLabel) {
  Captured c;
  int s = Line(u"P", u"START", {u"GO"}, 2);
  int d = Line(u"", u"DS", {u"0"}, 0);
  int go = Line(u"GO", u"RET", {}, 1, 0x8100);
  Program(u"P", s);
  EXPECT_EQ(AdrCk53NWCS(0), 0);
  EXPECT_EQ(AdrCk53NWCS(0), 0);  // the entry lies ahead: the second pass settles it
  EXPECT_EQ(L(s).first_word, 0x6400);
  EXPECT_EQ(L(s).second_word, 2);
  ASSERT_EQ(L(s).vecWord.size(), 2u);
  EXPECT_EQ(L(s).vecWord[1].abAdr, 1);
  EXPECT_EQ(L(d).abAdr, 2);  // DS 0 shares the address of the next line
  EXPECT_EQ(L(go).abAdr, 2);
  EXPECT_EQ(b->MaxMemory, 3);
}

}  // namespace
