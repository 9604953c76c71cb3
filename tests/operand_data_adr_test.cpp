// Address operands: the shape check of the instruction rules, the value of
// an address constant (program names before labels, numbers, literals), and
// the address pass over whole programs with both passes.
#include "operand_data_fixture.h"

namespace opdtest {

using OperandDataAdrTest = OpdTest;

// "slot|op|operands...": v = oprndCount, word_kazu and ChFlag as three digits.
TEST_F(OperandDataAdrTest, OperandShapes) {
  const std::string dup = E + "Dupulication of comma. Or an operand is expected at the left side of the comma. \n";
  Rows({{u"2|LD|GR1,|A", "", "", "", 220},
        {u"2|LD|GR1,|A,|GR2", "", "", "", 321},
        {u"2|LD|GR1,|", E + "The 2nd operand is expected. \n", J + "2 つ目のオペランドが必要。\n", "AC10036E"},
        {u"1|JUMP|", E + "The 1st operand is expected. \n"},
        {u"3|LD|GR1,|A,", E + "Another operand is expected. \n"},
        {u"2|LD|GR1,|,", dup, J + "コンマの重複あるいはコンマの前にオペランドの記述がない。  \n", "AC11036E"},
        {u"2|LD|GR1,| ,", dup},
        {u"2|LD|GR1,|A|GR2",
         E + "A comma is expected between the 2nd operand and the 3rd one. 2nd operand=A   3rd operand=GR2  \n",
         J + " 二つ目のオペランド  \"A\"  の右にコンマが無いのに三つ目のオペランド（指標レジスタ） \"GR2\"  の記述がある。 \n"},
        {u"1|JUMP|A,",
         "Warning : line 2: There is a comma at the right side of the operand. This comma is of no use. Or an index "
         "register is expected at the left side of the comma. \n",
         "警告： 2 行目： 指標レジスターの記述がないのだから 1 つ目のオペランドの右のコンマは不要です。あるいは、"
         "このコンマに続く指標レジスターの記述が必要です。\n",
         "AC13036W", 221}},
       [&](const Case& r) {
         auto f = Fields(r.in);
         Line(u"P", u"START");
         int i = Line(u"", f[1], std::vector<std::u16string>(f.begin() + 2, f.end()), 0, 0x1010);
         int rc = CkAdrOperandNWCS(*cs, i, f[0][0] - u'0');
         EXPECT_EQ(rc, cs->ErrorKazu ? -1 : 0);
         if (r.v != kAny) { EXPECT_EQ(L(i).oprndCount * 100 + L(i).word_kazu * 10 + cs->ChFlag, r.v); }
       });
}

// "LD GR1,<text>" in a program with a label X at 77; v = the second word.
TEST_F(OperandDataAdrTest, AddressConstants) {
  const std::string note = "Note : line 2: The decimal number is out of range. \n"
      "The range of a decimal number is from zerp to 65535.\n"
      "When a decimal number exceeds the range, its lower 16-bits is\nsaved in a memory. (Spec. of CASL2 2.3 (4)) \n"
      "When a decimal number is between -32768 and 32767 \nit is saved in a memory as a binary data in 16 digits. \n"
      "The 15th bit is a sign bit. (Spec. of Drill Asm) \n";
  const std::string four = E + "A hexadecimal number should be written in four digits. (Spec. 2.3 (4)) It is only ";
  const std::string small = E + "There is a small letter in the address constant. \nA small letter is not allowed in casl2. \n";
  Rows({{u"65535", "", "", "", 0xFFFF}, {u"-32768", "", "", "", 0x8000}, {u"0", "", "", "", 0},
        {u"+12", "", "", "", 12}, {u"-1", "", "", "", 0xFFFF}, {u"#FFFF", "", "", "", 0xFFFF}, {u"X", "", "", "", 77},
        {u"65536", note, "", "AC41036N", 0},
        {u"-32769", note, "", "", 0x7FFF},
        {u"70000", note,
         "注意： 2 行目： 10 進数の記述が 0 から 65535 までの範囲外にある。\nその下位 16 ビットが格納される。(仕様 １・２、 注の２)  \n"
         "10 進数の記述が -32768 から 32767 のとき、16ビットの2進数データ（最上位ビットを符号ビットとする ）として格納される。 \n"
         "その範囲外にあるとき、その下位 16 ビットが格納される。（独自仕様）  \n", "", 70000 & 0xFFFF},
        {u"12X", E + "There is a non-numerical character in the decimal number. \n", J + "１０進数の中に数字以外の文字がある。\n",
         "AC40036E", 0},
        {u"#FFF", four + "3 digits. \n", "", "AC32036E"},
        {u"#F", four + "1 digit. \n"},
        {u"#12", four + "2 digits. \n", J + " １６ 進数は ４ 桁で記述する。(仕様2･3 (4)) \n2 桁しかない。\n"},
        {u"#10000", E + "A hexadecimal nmuber should be written in four digits. (Spec. 2.3 (4)) It is only 5 digits. \n",
         J + " １６ 進数は ４ 桁で記述する。(仕様2･3 (4)) 5 桁ある。\n", "AC33036E"},
        {u"#12G4", E + "A hexadecimal number is written in 0-9 and A-F. \n", J + " 16進数字に0-9又はA-F以外の文字がある。 \n",
         "AC30036E"},
        {u"#", E + "There is no description at the right side of #. \n", J + "# の右に記述がない。\n", "AC31036E"},
        {u"ABCDEFGHI", E + "An address constant must be 1 to 8 characters in length. There are 9 characters in it. \n",
         J + "アドレス定数は８文字以内の制限がある。 9 文字ある。 \n", "AC22036E"},
        {u"Abc", small, J + "アドレス定数の中に小文字がある。 \nCASL2 では小文字は使えない。\n", "AC21036E"},
        {u"abc", small},
        {u"A-B", E + "An address constant should be written in capital alphanumeric letters. There is a "
                     "non-alphanumeric character in the constant. \n",
         J + "アドレス定数の中に英大文字と数字以外の文字がある。\n", "AC20036E"},
        {u"NOWHERE,", E + "Undefined address constant.  Neither label nor program name it is. None of them is "
                          "identical with  \"NOWHERE\" . \n",
         J + "アドレス定数  \"NOWHERE\"  と一致するラベル又はプログラム名（START アセンブラ命令の左にあるラベル）が存在しない。\n",
         "AC24036E"}},
       [&](const Case& r) {
         int s = Line(u"PRG", u"START", {}, 1);
         int i = Line(u"", u"LD", {u"GR1,", r.in}, 2);
         Line(u"", u"RET", {}, 1);
         L(Line(u"X", u"DC", {}, 1)).abAdr = 77;
         Program(u"PRG", s);
         int rc = CkAdrConst20NWCS(*cs, i, 2);
         EXPECT_EQ(rc, cs->ErrorKazu ? -1 : 0);
         if (r.v != kAny) { EXPECT_EQ(L(i).second_word, r.v); }
       });
}

TEST_F(OperandDataAdrTest, ProgramNamesComeBeforeLabelsAndTheFirstOfTwoLabelsAnswers) {
  // Program 0 has a label SUB of its own and two labels A; program 1 is SUB.
  int s0 = Line(u"MAIN", u"START", {}, 1);
  int ld = Line(u"", u"LD", {u"GR1,", u"SUB"}, 2), lad = Line(u"", u"LAD", {u"GR1,", u"SUB"}, 2);
  int call = Line(u"", u"CALL", {u"SUB"}, 2), lda = Line(u"", u"LD", {u"GR1,", u"A"}, 2);
  int own = Line(u"SUB", u"DC", {}, 1), a1 = Line(u"A", u"DC", {}, 1), a2 = Line(u"A", u"DC", {}, 1);
  L(own).abAdr = 5, L(a1).abAdr = 3, L(a2).abAdr = 4;
  Program(u"MAIN", s0);
  Program(u"SUB", Line(u"SUB", u"START", {}, 1));
  b->vecPrgW[1].AbAdrAtStart = 40;
  Captured c;
  EXPECT_EQ(CkAdrConst20NWCS(*cs, lad, 2) + CkAdrConst20NWCS(*cs, call, 1) + CkAdrConst20NWCS(*cs, lda, 2), 0);
  EXPECT_EQ(c.out, "");  // CALL and LAD may name another program
  EXPECT_EQ(CkAdrConst20NWCS(*cs, ld, 2), 0);
  for (int i : {ld, lad, call}) EXPECT_EQ(L(i).second_word, 40);
  EXPECT_EQ(std::tuple(b->vecPrgW[1].prgUsed, L(own).labelUsed, L(lda).second_word, L(a1).labelUsed, L(a2).labelUsed),
            std::tuple(1, 0, 3, 1, 0));
  EXPECT_EQ(c.out, "Warning : line 2: The address constant is a name of the outside program. The comet2 might be out of "
                   "control. Is this your intention? \n");
  SetLang(0);
  CkAdrConst20NWCS(*cs, ld, 2);
  EXPECT_EQ(c.out.substr(c.out.find("警告")),
            "警告： 2 行目： アドレス定数として外部のプログラム名を用いている。　暴走の可能性がある。 これはあなたの意図ですか？\n");
  EXPECT_EQ(cs->WarningKazu, 2);
  EXPECT_EQ(Codes(), "AC23036W AC23036W");
}

// Two programs as the instruction rules leave them, through the first pass
// (per program) and the second (all programs again).
TEST_F(OperandDataAdrTest, TwoProgramsWithLiteralsMacrosForwardReferencesAndCalls) {
  Captured c;
  int s0 = Line(u"MAIN", u"START", {}, 1);
  int ld = Line(u"", u"LD", {u"GR1,", u"DATA"}, 2, 0x1010), ldr = Line(u"", u"LD", {u"GR1,", u"GR2"}, 1, 0x1412);
  int call = Line(u"", u"CALL", {u"SUB"}, 2, 0x8000);
  std::vector<int> lit;  // literals of each kind on two lines each
  for (const char16_t* t : {u"=-1", u"=-1", u"='A''B'", u"='A''B'", u"=#00FF", u"=#00FF", u"=+70000"})
    lit.push_back(Line(u"", u"LD", {u"GR1,", t}, 2, 0x1010));
  int ret = Line(u"", u"RET", {}, 1), data = Line(u"DATA", u"DC", {}, 1);
  L(data).vecWord.push_back(WordRecT<wstr>{5, 0, 0, data, u"AdrConst of Dec"});
  int ds0 = Line(u"BUF", u"DS", {u"0"}, 0), ds2 = Line(u"NEXT", u"DS", {u"2"}, 2);
  int p0 = Program(u"MAIN", s0);
  int s1 = Line(u"SUB", u"START", {}, 1), out = Line(u"", u"OUT", {u"BUF2,", u"LEN"}, 12);
  int rpush = Line(u"", u"RPUSH", {}, 14), rpop = Line(u"", u"RPOP", {}, 7);
  int nop = Line(u"", u"NOP", {}, 1), ret2 = Line(u"", u"RET", {}, 1, 0x8100);
  int buf2 = Line(u"BUF2", u"DS", {u"3"}, 3), len = Line(u"LEN", u"DC", {}, 1);
  L(len).vecWord.push_back(WordRecT<wstr>{3, 0, 0, len, u""});
  int p1 = Program(u"SUB", s1);

  EXPECT_EQ(AdrCk53NWCS(p0), 0);
  EXPECT_EQ(L(ld).second_word + L(call).second_word, 0);  // DATA lies ahead; SUB has no address yet
  EXPECT_EQ(AdrCk53NWCS(p1) + AdrCk53NWCS(p0) + AdrCk53NWCS(p1), 0);
  // A literal decimal outside -32768..32767 warns as a constant does, in each pass.
  EXPECT_EQ(std::tuple(cs->ErrorKazu, cs->WarningKazu, Codes()), std::tuple(0, 2, "F93C6677 F93C6677"));
  // Program 0: DS 0 takes no word; 11 literal words from 24. Program 1 from 35.
  const std::pair<int, int> adr[] = {{s0, 0},   {ld, 1},    {ldr, 3},   {call, 4},  {lit[0], 6}, {lit[6], 18},
                                     {ret, 20}, {data, 21}, {ds0, 22},  {ds2, 22},  {s1, 35},    {out, 36},
                                     {rpush, 48}, {rpop, 62}, {nop, 69}, {ret2, 70}, {buf2, 71}, {len, 74}};
  for (auto [i, a] : adr) EXPECT_EQ(L(i).abAdr, a) << "line " << i;
  EXPECT_EQ(std::tuple(L(ld).rlAdr, L(s1).rlAdr, L(len).vecWord.at(0).rlAdr), std::tuple(1, 0, 39));
  EXPECT_EQ(std::tuple(L(ld).second_word, L(ld).vecWord.at(1).wordCode, L(data).labelUsed), std::tuple(21, 21, 1));
  EXPECT_EQ(std::tuple(L(call).second_word, b->vecPrgW[1].prgUsed, L(ds0).vecWord.size()), std::tuple(35, 1, 0u));
  EXPECT_EQ(std::tuple(b->vecPrgW[0].prgLiteStart, b->vecPrgW[0].prgWordSize, b->vecPrgW[0].prgLastAdr), std::tuple(24, 35, 34));
  EXPECT_EQ(std::tuple(b->vecPrgW[1].AbAdrAtStart, b->vecPrgW[1].prgWordSize, b->vecPrgW[1].prgLastAdr, b->MaxMemory),
            std::tuple(35, 40, 74, 75));
  const int places[] = {24, 25, 26, 29, 32, 33, 34};
  for (size_t k = 0; k < lit.size(); ++k) {
    EXPECT_EQ(L(lit[k]).second_word, places[k]) << k;
    ASSERT_EQ(L(lit[k]).vecLiteConst.size(), 1u);
    EXPECT_EQ(L(lit[k]).vecLiteConst[0].liteAbAdr, places[k]);
    EXPECT_EQ(L(lit[k]).vecLiteConst[0].liteRlAdr, places[k]);
  }
  auto lite = [&](int k) { return L(lit[k]).vecLiteConst[0]; };
  EXPECT_EQ(std::tuple(lite(0).liteValue, lite(0).liteKind, lite(0).liteText, L(lit[0]).hasLiteral),
            std::tuple(0xFFFF, "LiteDecConst", u"=-1", 1));
  EXPECT_EQ(std::tuple(lite(4).liteValue, lite(4).liteKind, lite(6).liteValue), std::tuple(0xFF, "LiteHexConst", 70000 & 0xFFFF));
  EXPECT_EQ(std::tuple(lite(2).liteKind, lite(2).liteWordKazu, lite(2).liteChars.size()), std::tuple("LiteCharConst", 3, 3u));
  EXPECT_EQ(std::tuple(lite(2).liteChars[1].charValue, lite(2).liteChars[2].charAbAdr, lite(3).liteChars[1].charAbAdr),
            std::tuple(0x27, 28, 30));
  // OUT of BUF2 (71) and LEN (74); RPUSH and RPOP of GR1-GR7.
  EXPECT_EQ(Words(out), (std::vector<int32_t>{0x7001, 0, 0x7002, 0, 0x1210, 71, 0x1220, 74, 0xF000, 2, 0x7120, 0x7110}));
  EXPECT_EQ(std::tuple(L(out).vecWord[0].wordNote, L(out).vecWord[11].abAdr, L(out).vecWord[11].rlAdr),
            std::tuple(u"MacroINorOUT", 47, 12));
  ASSERT_EQ(L(rpush).vecWord.size(), 14u);
  EXPECT_EQ(std::tuple(L(rpush).vecWord[0].wordCode, L(rpush).vecWord[12].wordCode, L(rpush).vecWord[13].wordCode),
            std::tuple(0x7001, 0x7007, 0));
  EXPECT_EQ(std::u16string(L(rpush).vecWord[0].wordNote) + u"|" + std::u16string(L(rpush).vecWord[1].wordNote), u"A part of RPOP|An adr part of RPOP");
  EXPECT_EQ(Words(rpop), (std::vector<int32_t>{0x7170, 0x7160, 0x7150, 0x7140, 0x7130, 0x7120, 0x7110}));
  EXPECT_EQ(L(rpop).vecWord[6].wordNote, u"A part of of RPOP");
  EXPECT_EQ(L(ret2).vecWord.at(0).wordCode, 0x8100);
  EXPECT_EQ(std::u16string(L(ret2).vecWord[0].wordNote) + std::u16string(L(nop).vecWord.at(0).wordNote) + std::u16string(L(s1).vecWord.at(0).wordNote), u"RETNOPSTART");
  // DS notes: the text with its first n characters dropped.
  ASSERT_EQ(L(buf2).vecWord.size(), 3u);
  EXPECT_EQ(std::u16string(L(buf2).vecWord[0].wordNote) + u"|" + std::u16string(L(buf2).vecWord[2].wordNote), u"An operand of DS: Nr.| operand of DS: Nr.");
  EXPECT_EQ(L(buf2).vecWord[2].abAdr, 73);
}

TEST_F(OperandDataAdrTest, StartWithAnEntryLabelAndALongDs) {
  Captured c;
  int s = Line(u"P", u"START", {u"GO"}, 2);
  int d = Line(u"", u"DS", {u"0"}, 0), ds = Line(u"", u"DS", {u"25"}, 25), go = Line(u"GO", u"RET", {}, 1, 0x8100);
  Program(u"P", s);
  EXPECT_EQ(AdrCk53NWCS(0) + AdrCk53NWCS(0), 0);  // the entry lies ahead: the second pass settles it
  EXPECT_EQ(std::tuple(L(s).first_word, L(s).second_word, L(s).vecWord.size()), std::tuple(0x6400, 27, 2u));
  EXPECT_EQ(std::tuple(L(s).vecWord.at(1).abAdr, L(d).abAdr, L(ds).abAdr, L(go).abAdr, b->MaxMemory),
            std::tuple(1, 2, 2, 27, 28));
  ASSERT_EQ(L(ds).vecWord.size(), 25u);  // the note text runs out
  EXPECT_EQ(std::u16string(L(ds).vecWord[20].wordNote) + u"|" + std::u16string(L(ds).vecWord[21].wordNote), u".|");
  EXPECT_EQ(L(ds).vecWord[24].abAdr, 26);
}

TEST_F(OperandDataAdrTest, AnErrorLeavesTheLineWithoutAddressAndALineOfNoBranchEndsThePass) {
  Captured c;
  int s = Line(u"P", u"START", {}, 1);
  Line(u"", u"JUMP", {u"NOWHERE"}, 2, 0x6400);
  int ret = Line(u"", u"RET", {}, 1);
  Line(u"", u"XYZ", {}, 1);
  int after = Line(u"", u"NOP", {}, 1);
  Program(u"P", s);
  L(after).abAdr = -5;
  EXPECT_EQ(AdrCk53NWCS(0), -1);
  EXPECT_EQ(std::tuple(L(ret).abAdr, L(after).abAdr, cs->ErrorKazu), std::tuple(1, -5, 2));  // the bad jump took no address
  EXPECT_NE(c.out.find("Error : line 4:  \"XYZ\"  is not an op code defined in casl2. \n"), std::string::npos);
  SetLang(0);
  AdrCk53NWCS(0);
  EXPECT_NE(c.out.find("エラー： 4 行目：  \"XYZ\"  に該当する命令がない。word_kazu[3]=1\n"), std::string::npos);
  EXPECT_EQ(AdrCk53NWCS(7), -1);  // no such program: reported, no crash
}

}  // namespace opdtest
