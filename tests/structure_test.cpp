// The front stages (empty source, START/END pairing, program names): every
// finding with its words, prefix, line and counter, and the gate it stops
// at; then the checks that run later in the pass.
#include "source_fixture.h"
#include "structure/structure.h"

namespace {

using namespace srctest;

class Structure : public Fixture {};

// Programs of the given START lines, each with RET and END.
Texts Progs(std::initializer_list<std::u16string> starts) {
  Texts l;
  for (const auto& s : starts) l.insert(l.end(), {s, u" RET", u" END"});
  return l;
}

const std::string kOne = "There is one program found in it.\n", kTwo = "There are 2 programs found in it.\n";
const std::string kNoRet =
    "The 1st program: \nThere is not any RET opcode at all there. \nIt may run out of control. \n"
    "It may go into an infinite loop. \nIs this your intention? \nIf not, you should add the code. \n"
    "Note: A space is expected at the both sides of RET. \n";
const std::string kStartMissing = "Error : START is not found anywhere.\nA space is expected at the left side of the START. \n";
const std::string kBetween =
    "There are some unknown string between two programs. \nThere are some unknown string between END and START. \n"
    "It should be deleted. Or a comment mark(;) \nis expected at the left side of the description.\n";
std::string Dup(const std::string& p, const std::string& q) {
  return "Error :  \"A\"  is already defined. Duplication of the program name. \nProgram " + p + " and Program " + q +
         ".\nTheir names must be unique each other. \n";
}
const std::string kNoLabel = "Error : line 1: There does not exist any label which is identical with an address constant of the ";

TEST_F(Structure, EveryFinding) {
  auto Fr = [](Texts t) { return [t] { return Front(t); }; };
  const Texts two = Progs({u"P START", u"Q START"});
  Check({
    {Fr({u"; only", u"  ", u"\t; comment"}), 1, 1, 0, "Error: The source code is empty.  The assembler is ready to go!\n",
     {"E4E4B0A1"}, "エラー：　アセンブラは準備完了、 ソースコードの記述がない。 \n"},
    {Fr({u" LD GR1,A", u" END"}), 2, 1, 0,
     "Error : START description is not found anywhere. \nSTART assembler instruction is expected. \n", {"736BEBA8"},
     "エラー： START アセンブラ命令 が どこにもない。\n"},
    {Fr({u"P START", u" RET"}), 2, 1, 0, "Error : END description is not found anywhere. \nEND assembler instruction is expected. \n",
     {"6A5BB571"}},
    {Fr({u" NOP", u" END", u"P START", u" RET"}), 2, 1, 0, "Error : line 3: END is expected to be followed after START. \n",
     {"64DEC562"}, "エラー： 3 行目： START アセンブラ命令 の後の行に END アセンブラ命令が必要。\n"},
    // The rough search finds RESTART and SEND; the exact one does not.
    {Fr({u"X RESTART", u" SEND"}), 3, 1, 0, kStartMissing, {"86F18976"}},
    {Fr({u"MAIN\u3000START", u" RET", u" END"}), 3, 1, 0, kStartMissing, {"86F18976"}},
    {Fr({u" START", u" RET", u" END"}), 3, 1, 0,
     "Error : line 1: A label name is expected at the left side \nof START assembler instruction. \n" + kOne,
     {"86F18976", "1A02E43A"}},
    // END missing; CkEnd_LR_W counts its reason and records nothing.
    {Fr({u"P START", u" RET", u"\u3000END"}), 3, 2, 0,
     "Error : END is not found anywhere. \nThe END instruction defines the end of a program.\n"
     "A space is expected at the left side of the END. \n There is a 2-byte space at the right side of END instruction. \n"
     "The 2-byte space is not allowed for use in CASL2. \nIt should be replaced with a 1-byte space, or deleted. \n",
     {"BD76EE3C"}, "エラー： 3 行目： END の文字はある。けれども、  ENDの右に全角の空白がある。 全角の空白文字は使えない。　\n"},
    {Fr({u"P START", u" RET", u"E END"}), 3, 1, 0,
     "Error : line 3: There is a label at the left side of the END \nassembler instruction. \nIt is of no use. \n" + kOne,
     {"DC4C4237", "1A02E43A"}},
    {Fr({u"A START", u" RET", u"B START", u" RET", u" END;"}), 3, 2, 0,
     "Error : (START > END): The program is not correctly closed. \nThe number of START assembler instructions is \n"
     "different from that of END's. \nThey should be the same. \nThere are 2 START assembler instructions in t.txt. \n"
     "There are 1 END assembler instructions in t.txt. \n A space is expected at the right side of END instruction. \n"
     "(Spce. 2.1 (4) in a case of Without operand. \n",
     {"DC4C4237"},
     "エラー： 5 行目： END の文字はある。けれども、  END の右に１個以上の空白が必要です。 \n"
     "' END;'はエラー、' END' または 'END 'と記述する。 \n"},
    // An END in a comment counts.
    {Fr({u"P START", u" RET", u" END", u" NOP ; END"}), 3, 1, 0,
     "Error : (START < END): The program is not correctly closed.\nThere is a differece \nbetween START and END in number.\n"
     "They should be the same in a program. \nThere are 1 START assembler instructions in t.txt. \n"
     "There are 2 END assembler instructions in t.txt. \n",
     {"BBBC4237"}},
    {Fr({u" END", u"P START", u" RET", u"Q START", u" RET", u" END"}), 3, 1, 0,
     "Error : line 1: START and END are out of order. \nSTART should be followed by END. \n", {"2036036E"},
     "エラー： 1 行目： START と END アセンブラ命令 が逆順です。 \n"},
    {Fr({u"P START", u"Q START", u" RET", u" END", u" END"}), 3, 1, 0,
     "Error : line 4: START and END are out of order. \nSTART should be followed by END.\n", {"EA1C875B"}, ""},
    // Clean: comments, blank lines, RET in a comment, " RET;", text behind the last END.
    {Fr({u"; head", u"P START", u" NOP ; RET", u" END", u"", u"Q START", u" RET;", u" END", u"tail text"}), 0, 0, 0, kTwo,
     {"1A02E43A"}, "  2 個のプログラムがある。 \n"},
    // Only the first program without RET, as line "index + 1" and always the "1st".
    {Fr({u"P START", u" RET", u" END", u"Q START", u" NOP", u" END", u"R START", u" NOP ;RET", u" END"}), 0, 0, 1,
     "There are 3 programs found in it.\nWarning : line 2: " + kNoRet, {"1A02E43A", "F76DCB31"},
     "警告： 2 行目： 1 番目のプログラム： \nRET 命令が一つもない。 暴走の可能性が大きい。 \n"},
    {Fr({u" START", u" RET", u" END", u"Q START", u" RET", u"E END", u"R START", u" RET", u" END"}), 4, 2, 0,
     "There are 3 programs found in it.\nError : line 1: A label is expected at the left side \n"
     "of the START assembler instruction. \nError : line 6:  \"E END\" There is a label at the left side \n"
     "of the END assembler instruction. \nIt is of no use. \n",
     {"1A02E43A", "86F18976", "99CC18976"},
     "エラー： 6 行目：  \"E END\" END アセンブラ命令の左にラベルがある。 \nEND アセンブラ命令の左のラベルは\n"
     "不要です。（CASL2 の仕様） \n"},
    // The first line with text between two programs only.
    {Fr({u"P START", u" RET", u" END", u"", u"; fine", u"  JUNK  ", u"MORE", u"Q START", u" RET", u" END"}), 5, 1, 0,
     kTwo + "Error : line 6:  \"JUNK\" : " + kBetween, {"1A02E43A", "DDDD036E"}},
    {Fr({u"P START", u" RET", u" END", u"\u3000", u"Q START", u" RET", u" END"}), 5, 1, 0,
     kTwo + "Error : line 4:  \"\u3000\" : " + kBetween +
         "It is not a 1-byte space, but a 2-byte one.  \nA 2-byte space is not allowed for use in CASL2. \n",
     {"1A02E43A", "DDDD036E"},
     "それは「全角の空白」文字である。\n「全角の空白」文字は、コメントの中を除き、\nCASL2では使うことができない。 \n"},
    // Program names: a bad character at position 2, then the small letter.
    {Fr(Progs({u"Abc START"})), 6, 2, 0,
     kOne + "Error :  \"Abc\" line 1: There is non-alpha-numeral character in the label of  \"Abc\" . \n"
            "Error : line 1: There is a small letter in the label. \nA small letter is not allowed in a lebel of casl2. \n",
     {"1A02E43A", "FFAB036E", "EEAB036E"},
     "エラー：  \"Abc\" 1 行目： ラベル  \"Abc\"  の第 2 文字目に英大文字、 数字 以外の文字が使われている。 \n"
     "エラー： 1 行目： ラベル  \"Abc\"  の第 1 文字目に英小文字が使われている。 英小文字は使えない。 \n"},
    {Fr(Progs({u"abc START"})), 6, 1, 0,
     kOne + "Error : line 1: The first letter of a label must be a capital alphabetical letter. \n"
            "A numeral is not allowed to be used as the first letter of a label. \n",
     {"1A02E43A", "CCAB036E"}},
    {Fr(Progs({u"ABCDEFGHI START"})), 6, 1, 0,
     kOne + "Error :  \"ABCDEFGHI\" line 1: A label must be 1 to 8 characters in length. \n"
            "Label:  \"ABCDEFGHI\" : There are 9 letters in it. \n",
     {"1A02E43A", "DDAB036E"},
     "エラー：  \"ABCDEFGHI\" 1 行目： ラベル の長さは８文字までの制限（仕様）がある。。 \n \"ABCDEFGHI\" : 9 文字ある。\n"},
    {Fr(Progs({u"ABCDEFGH START", u"GR0 START"})), 6, 1, 0,
     kTwo + "Error : line 4: The reserved words(GR0-GR7) are not allowed in a label. \n", {"1A02E43A", "77AB036E"}},
    {Fr(Progs({u"A\u3000B START"})), 6, 2, 0,
     kOne + "Error : line 1:  \"A\u3000B\" : There is a 2-byte space in the word. A 2-byte space is not allowed to be "
            "used in casl2. A 2-byte space should be replaced with 1-byte space.  Remove off the 2-byte space in the word. \n"
            "Error :  \"A\u3000B\" line 1: There is non-alpha-numeral character in the label of  \"A\u3000B\" . \n",
     {"1A02E43A", "0801EEC3", "FFAB036E"}, ""},
    // Every equal pair, in the order of the pairs.
    {Fr(Progs({u"A START", u"B START", u"A START", u"A START"})), 7, 3, 0,
     "There are 4 programs found in it.\n" + Dup("1, line 1", "3, line 7") + Dup("1, line 1", "4, line 10") + Dup("3, line 7", "4, line 10"),
     {"1A02E43A", "DBDB036E", "DBDB036E", "DBDB036E"},
     "エラー： プログラム名の重複：  \"A\"  が二つある。 \nプログラム1 と プログラム3 の名前 \n1 行目 と 7 行目にある。\n"},
      // The checks that run later in the pass. A START line without a name,
      // which the pairing stages already refuse.
      {On(Progs({u"P START"}), [] { b->vecSrcW[0].editStr = u" START"; return CkPrgNameNW(0); }), -1, 1, 0,
       "Error : line 1: A label is expected at the left side of the START assembler instruction. \n", {"EEEE036E"}},
      // A reason for a missing START: counted, printed, not recorded.
      {[] { Lines({u" NOP", u"X START;"}), editNWB(); return CkSTART_LR_W(); }, 1, 1, 0,
       " A space is expected at the right side of START instruction. \n(Spce. 2.1 (4) in a case of Without operand. \n", {}},
      // The first program is never warned of.
      {On(Progs({u"P START", u"Q START", u"R START"}), [] { b->vecPrgW[2].prgUsed = 1; return CkPrgNameInUseNW(); }), 0, 0, 1,
       "Warning : line 4: A program of the \"Q\" is never executed, becasue it is not called by any other program. \n",
       {"1A76F6FF"}, "警告： 4 行目： プログラム Q は他のプログラムから呼び出しがなく一度も実行されない。 \n"},
      {On(two, [] { return CkStartAdrOperandNW(0, u"NOWHERE", 0); }), -1, 1, 0, kNoLabel + " \"NOWHERE\" . \n", {"5A7D036E"},
       "エラー： 1 行目： アドレス定数  \"NOWHERE\"  と一致するラベルが存在しない。\n"},
      {On(two, [] { return CkStartAdrOperandNW(0, u"A-B", 0); }), -1, 2, 0,
       "Error : line 1: There is a non-alphanumeric letter in the address constant of  \"A-B\" . \n"
       "The address constant should be written in capital alphanumeric letters. \n" + kNoLabel + " \"A-B\" . \n", {"5A7B036E", "5A7D036E"}},
      {On(two, [] { return CkStartAdrOperandNW(0, u"ABCDEFGHI", 0); }), -1, 1, 0,
       "Error : line 1: An address constant must be 1 to 8 characters in length. \n", {"5A7C036E"},
       "エラー： 1 行目：  \"ABCDEFGHI\"  アドレス定数は８文字以内。9 文字ある。\n"},
  });
}

// The exact search takes a word with a blank or a tab right in front of it,
// whatever follows, anywhere in the line; RET is looked for the same way for
// the warning of a program without one.
TEST_F(Structure, WordFormsOfTheExactSearch) {
  struct {
    Texts src;
    int programs;
    bool ret;
  } rows[] = {
      {{u"P\tSTART", u"\tRET", u"\tEND"}, 1, true},
      {{u"P START\t", u" RET\t", u" END\t"}, 1, true},
      {{u"P START X", u"L RET ", u" END"}, 1, true},
      {{u"P START", u" NOP ;RET", u" RETURN", u" END"}, 1, true},  // a form inside a longer word
      {{u"P START", u" NOP ;RET\tRET", u" END"}, 1, true},  // not the first place of the word
      {{u"P START", u" NOP ;XRET", u" NOP ;RET", u" END"}, 1, false},
      {{u"P START", u"RET", u" END"}, 1, false},  // nothing in front of it
      {{u"P START", u" NOP", u" END", u"Q START", u" RET", u"\tEND"}, 2, false},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(U16ToUtf8(r.src[1]));
    Fresh();
    Lines(r.src);
    ASSERT_EQ(editNWB() + StartEnd10W() + StartEnd20NW(), 0) << out;
    EXPECT_EQ(b->GetPrgKazuInFile(), r.programs);
    EXPECT_EQ(out.find("There is not any RET") == std::string::npos, r.ret) << out;
  }
  // Neither START nor END behind a blank: the first is what is told.
  Fresh();
  Lines({u"P\u3000START", u"START", u" RET", u"\u3000END"});
  editNWB();
  StartEnd10W();
  EXPECT_EQ(StartEnd20NW(), -1);
  EXPECT_EQ(LogCodes(), Codes{"86F18976"});
}

TEST_F(Structure, RecordsOfACleanFile) {
  EXPECT_EQ(Front({u"; head", u"MAIN1 START", u" RET ; back", u" END", u"", u"SUB\tSTART", u" RET", u" END"}), 0);
  ASSERT_EQ(b->vecPrgW.size(), 2u);
  EXPECT_EQ(b->vecPrgW[1].prgFirstLine * 10 + b->vecPrgW[1].prgEndLine, 57);
  EXPECT_EQ(Map(b->vecSrcW, &SrcLineW::prgNr), (std::vector<int>{0, 0, 0, 0, 0, 1, 1, 0}));
  // The comments are gone from the working text; the names are stored.
  EXPECT_EQ(b->vecSrcW[2].editStr, u" RET ");
  EXPECT_EQ(b->vecPrgW[0].PrgName + b->vecPrgW[1].PrgName + b->vecSrcW[5].labelStr, u"MAIN1SUBSUB");
  EXPECT_EQ(Map(msgLog->WideLog, &TMsgRec::kind), std::vector<int>{0});  // the count line is counted nowhere
  Fresh();
  Front(Progs({u"Abc START"}));  // a name that fails is not stored
  EXPECT_EQ(b->vecPrgW[0].PrgName, u"");
  EXPECT_EQ(Map(msgLog->WideLog, &TMsgRec::kind), (std::vector<int>{0, 100, 100}));
}

TEST_F(Structure, StartOperandWords) {
  Prog(Progs({u"P START LOOP", u"Q START"}));
  b->vecSrcW[1].labelStr = u"LOOP";
  b->vecSrcW[1].rlAdr = b->vecSrcW[1].abAdr = 3;
  SrcLineW& s = b->vecSrcW[0];
  auto Words = [](const SrcLineW& l) {
    std::u16string r = WNum(l.word_kazu) + u" " + Hex4W(l.first_word) + u" " + Hex4W(l.second_word);
    for (const auto& w : l.vecWord) r += u" | " + Hex4W(w.wordCode) + u" " + std::u16string(w.wordNote);
    return r;
  };
  EXPECT_EQ(CkStartAdrOperandNW(0, u"LOOP", 0), 0);
  EXPECT_EQ(Words(s), u"2 #6400 #0003 | #6400 START | #0003 An operand of START");
  EXPECT_EQ(b->vecSrcW[1].labelUsed, 1);
  // Another program's name, placed by the link; no operand.
  EXPECT_EQ(CkStartAdrOperandNW(0, u"Q", 0), 0);
  EXPECT_EQ(b->vecPrgW[1].prgUsed + b->vecSrcW[3].labelUsed, 2);
  b->vecSrcW[3].abAdr = 9;
  CkStartAdrOperandNW(0, u"Q", 0);
  EXPECT_EQ(Words(s), u"2 #6400 #0009 | #6400 START | #0009 An operand of START");
  EXPECT_EQ(CkStartAdrOperandNW(1, u"", 3), 0);
  EXPECT_EQ(Words(b->vecSrcW[3]), u"1 #0000 #0000 | #0000 An Operand of START");
  EXPECT_EQ(Errors(), 0);
  // A new set of programs of the same count: the names are found afresh.
  Fresh();
  Prog(Progs({u"R START", u"S START"}));
  EXPECT_EQ(CkStartAdrOperandNW(0, u"S", 0), 0);
  EXPECT_EQ(b->vecPrgW[1].prgUsed, 1);
  // The next file in the same records: a later program names the first.
  Fresh();
  Prog(Progs({u"T START", u"U START"}));
  EXPECT_EQ(CkStartAdrOperandNW(1, u"T", 3), 0);
  EXPECT_EQ(b->vecPrgW[0].prgUsed + Errors(), 1);
}

}  // namespace
