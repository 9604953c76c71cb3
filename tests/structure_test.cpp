// START/END pairing and program names: every finding with its words, its
// prefix and line, and its counter; the gates between the stages.
#include <random>
#include <unordered_map>

#include "lines/scanner.h"
#include "source_fixture.h"
#include "structure/structure.h"

namespace {

using srctest::Fixture;

class Structure : public Fixture {
 protected:
  void Run(const std::vector<std::u16string>& lines) {
    Lines(lines);
    stopped = Pair();
  }
  int stopped = 0;
};

// ---------------------------------------------------------------------------
// StartEnd10W

TEST_F(Structure, NoStartAtAll) {
  Run({u" LD GR1,A", u" END"});
  EXPECT_EQ(stopped, 2);
  EXPECT_EQ(out, "Error : START description is not found anywhere. \nSTART assembler instruction is expected. \n");
  EXPECT_EQ(b->ErrorKazu, 1);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"736BEBA8"}));
  SetLang(0);
  out.clear();
  ResetBasicData();
  b->ZeroCounters();
  Run({u" RET"});
  EXPECT_EQ(out, "エラー： START アセンブラ命令 が どこにもない。\n");
}

TEST_F(Structure, NoEndAtAllAndEndBeforeStart) {
  Run({u"P START", u" RET"});
  EXPECT_EQ(stopped, 2);
  EXPECT_EQ(out, "Error : END description is not found anywhere. \nEND assembler instruction is expected. \n");
  EXPECT_EQ(b->ErrorKazu, 1);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"6A5BB571"}));
  out.clear();
  b->ErrorKazu = 0;
  msgLog->ClearMsgLog();
  Run({u" NOP", u" END", u"P START", u" RET"});
  EXPECT_EQ(stopped, 2);
  EXPECT_EQ(out, "Error : line 3: END is expected to be followed after START. \n");
  EXPECT_EQ(Codes(), (std::vector<std::string>{"64DEC562"}));
  SetLang(0);
  out.clear();
  StartEnd10W();
  EXPECT_EQ(out, "エラー： 3 行目： START アセンブラ命令 の後の行に END アセンブラ命令が必要。\n");
}

TEST_F(Structure, RoughSearchIsAPlainSubstringSearch) {
  // RESTART and SEND pass the rough test; the exact test then finds no START.
  Run({u"X RESTART", u" SEND"});
  EXPECT_EQ(stopped, 3);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"86F18976"}));
}

// ---------------------------------------------------------------------------
// StartEnd20NW

TEST_F(Structure, StartMissingWhenATwoByteSpaceStandsBeforeIt) {
  Run({u"MAIN\u3000START", u" RET", u" END"});
  EXPECT_EQ(stopped, 3);
  EXPECT_EQ(out, "Error : START is not found anywhere.\nA space is expected at the left side of the START. \n");
  EXPECT_EQ(StartEnd20NW(), -1);
  SetLang(0);
  out.clear();
  StartEnd20NW();
  EXPECT_EQ(out, "エラー： START アセンブラ命令 が どこにもない。 \nSTART の左に空白が必要です\n");
}

TEST_F(Structure, StartWithoutLabelGoesOnToTheCountLine) {
  Run({u" START", u" RET", u" END"});
  EXPECT_EQ(stopped, 3);
  EXPECT_EQ(out,
            "Error : line 1: A label name is expected at the left side \nof START assembler instruction. \n"
            "There is one program found in it.\n");
  EXPECT_EQ(b->ErrorKazu, 1);
  EXPECT_EQ(b->GetPrgKazuInFile(), 1);
}

TEST_F(Structure, EndMissingAndTheTwoByteSpaceInFrontOfEnd) {
  Run({u"P START", u" RET", u"\u3000END"});
  EXPECT_EQ(stopped, 3);
  EXPECT_EQ(out,
            "Error : END is not found anywhere. \nThe END instruction defines the end of a program.\n"
            "A space is expected at the left side of the END. \n"
            " There is a 2-byte space at the right side of END instruction. \n"
            "The 2-byte space is not allowed for use in CASL2. \n"
            "It should be replaced with a 1-byte space, or deleted. \n");
  EXPECT_EQ(b->ErrorKazu, 2);  // CkEnd_LR_W counts and makes no record
  EXPECT_EQ(Codes(), (std::vector<std::string>{"BD76EE3C"}));
  SetLang(0);
  out.clear();
  EXPECT_EQ(StartEnd20NW(), -3);
  EXPECT_NE(out.find("エラー： 3 行目： END の文字はある。けれども、  ENDの右に全角の空白がある。 全角の空白文字は使えない。　\n"),
            std::string::npos)
      << out;
}

TEST_F(Structure, EndWithLabel) {
  Run({u"P START", u" RET", u"E END"});
  EXPECT_EQ(stopped, 3);
  EXPECT_EQ(out,
            "Error : line 3: There is a label at the left side of the END \nassembler instruction. \nIt is of no "
            "use. \nThere is one program found in it.\n");
  EXPECT_EQ(Codes(), (std::vector<std::string>{"DC4C4237", "1A02E43A"}));
}

TEST_F(Structure, MoreStartsThanEndsWithTheSemicolonForm) {
  fileData->LastSrcFile = "two.txt";
  Run({u"A START", u" RET", u"B START", u" RET", u" END;"});
  EXPECT_EQ(stopped, 3);
  EXPECT_EQ(out,
            "Error : (START > END): The program is not correctly closed. \n"
            "The number of START assembler instructions is \ndifferent from that of END's. \nThey should be the same. \n"
            "There are 2 START assembler instructions in two.txt. \n"
            "There are 1 END assembler instructions in two.txt. \n"
            " A space is expected at the right side of END instruction. \n"
            "(Spce. 2.1 (4) in a case of Without operand. \n");
  EXPECT_EQ(b->ErrorKazu, 2);
  EXPECT_EQ(StartEnd20NW(), -4);
  SetLang(0);
  out.clear();
  StartEnd20NW();
  EXPECT_NE(out.find("エラー： (START > END): プログラムが正しく閉じていない。\n"), std::string::npos) << out;
  EXPECT_NE(out.find("START アセンブラ命令 が ファイル(two.txt ) の中に全部で 2 個ある。 \n"), std::string::npos);
  EXPECT_NE(out.find("エラー： 5 行目： END の文字はある。けれども、  END の右に１個以上の空白が必要です。 \n"
                     "' END;'はエラー、' END' または 'END 'と記述する。 \n"),
            std::string::npos)
      << out;
}

TEST_F(Structure, FewerStartsThanEndsFromAnEndInAComment) {
  Run({u"P START", u" RET", u" END", u" NOP ; END"});
  EXPECT_EQ(stopped, 3);
  EXPECT_EQ(out,
            "Error : (START < END): The program is not correctly closed.\nThere is a differece \n"
            "between START and END in number.\nThey should be the same in a program. \n"
            "There are 1 START assembler instructions in t.txt. \nThere are 2 END assembler instructions in t.txt. \n");
  EXPECT_EQ(StartEnd20NW(), -5);
  EXPECT_EQ(Codes()[0], "BBBC4237");
}

TEST_F(Structure, OutOfOrderBothSteps) {
  Run({u" END", u"P START", u" RET", u"Q START", u" RET", u" END"});
  EXPECT_EQ(stopped, 3);
  EXPECT_EQ(out, "Error : line 1: START and END are out of order. \nSTART should be followed by END. \n");
  EXPECT_EQ(StartEnd20NW(), -6);
  out.clear();
  msgLog->ClearMsgLog();
  Lines({u"P START", u"Q START", u" RET", u" END", u" END"});
  editNWB();
  EXPECT_EQ(StartEnd20NW(), -7);
  EXPECT_EQ(out, "Error : line 4: START and END are out of order. \nSTART should be followed by END.\n");
  EXPECT_EQ(Codes(), (std::vector<std::string>{"EA1C875B"}));
  SetLang(0);
  out.clear();
  StartEnd20NW();
  EXPECT_EQ(out, "エラー： 4 行目： START と END アセンブラ命令 が逆順です。 \n");
}

TEST_F(Structure, CountLineAndRecords) {
  Run({u"; head", u"P START", u" RET", u" END", u"", u"Q START", u" RET ; back", u" END", u"tail text"});
  EXPECT_EQ(stopped, 0);
  EXPECT_EQ(out, "There are 2 programs found in it.\n");
  EXPECT_EQ(Errors() + Warnings(), 0);
  EXPECT_EQ(b->NoteKazu + b->MemoKazu + b->spareKazu1, 0);
  ASSERT_EQ(b->vecPrgW.size(), 2u);
  EXPECT_EQ(b->vecPrgW[1].prgFirstLine, 5);
  EXPECT_EQ(b->vecPrgW[1].prgEndLine, 7);
  EXPECT_EQ(b->vecSrcW[6].prgNr, 1);
  EXPECT_EQ(b->vecSrcW[3].prgNr, 0);
  EXPECT_EQ(b->vecSrcW[6].editSaveStr, u" RET ; back");  // saved before the comments went
  EXPECT_EQ(b->vecSrcW[6].editStr, u" RET ");
  EXPECT_EQ(IsAnySrcOutsideStartEndNW(), 0);  // text behind the last END is not looked at
  SetLang(0);
  out.clear();
  StartEnd20NW();
  EXPECT_EQ(out, "  2 個のプログラムがある。 \n");
}

TEST_F(Structure, NoRetWarningWithItsOddities) {
  // Only the first program without RET is reported; the line number is the
  // program index plus 1 and the program is always the "1st".
  Run({u"P START", u" RET", u" END", u"Q START", u" NOP", u" END", u"R START", u" NOP", u" END"});
  EXPECT_EQ(stopped, 0);
  EXPECT_EQ(out,
            "There are 3 programs found in it.\n"
            "Warning : line 2: The 1st program: \nThere is not any RET opcode at all there. \n"
            "It may run out of control. \nIt may go into an infinite loop. \nIs this your intention? \n"
            "If not, you should add the code. \nNote: A space is expected at the both sides of RET. \n");
  EXPECT_EQ(b->WarningKazu, 1);
  EXPECT_EQ(Errors(), 0);
  EXPECT_EQ(msgLog->WideLog.back().code, "F76DCB31");
  EXPECT_EQ(msgLog->WideLog.back().kind, 200);
  SetLang(0);
  ResetBasicData();
  out.clear();
  Run({u"P START", u" NOP", u" END"});
  EXPECT_NE(out.find("警告： 1 行目： 1 番目のプログラム： \nRET 命令が一つもない。 暴走の可能性が大きい。 \n"), std::string::npos)
      << out;
}

TEST_F(Structure, RetFormsAnywhereOnTheLine) {
  Run({u"P START", u" NOP ; RET", u" END", u"Q START", u" RET;", u" END"});
  EXPECT_EQ(stopped, 0);
  EXPECT_EQ(Warnings(), 0);
  ResetBasicData();
  Run({u"P START", u" NOP ;RET", u" END"});  // no blank or tab in front: no RET
  EXPECT_EQ(Warnings(), 1);
}

TEST_F(Structure, ReasonsForAMissingWordLookAtTheFirstLineWithAForm) {
  Lines({u" NOP", u"X START;", u"Y START\u3000", u"\u3000START"});
  editNWB();
  EXPECT_EQ(CkSTART_LR_W(), 1);
  EXPECT_EQ(out, " A space is expected at the right side of START instruction. \n(Spce. 2.1 (4) in a case of Without operand. \n");
  EXPECT_EQ(DetSTARTatZenKakuSpaceW(), 1);
  EXPECT_EQ(b->ErrorKazu, 2);
  EXPECT_TRUE(msgLog->WideLog.empty());  // counted, not recorded
  out.clear();
  Lines({u" NOP"});
  editNWB();
  EXPECT_EQ(CkSTART_LR_W() + DetSTARTatZenKakuSpaceW() + CkEnd_LR_W(), 0);
  EXPECT_EQ(DetENDatZenKakuSpaceW(), 0);  // the fixed line table is empty in this mode
  EXPECT_EQ(out, "");
}

// ---------------------------------------------------------------------------
// StartEndNW and the text between programs

TEST_F(Structure, StartEndNWOnEachProgram) {
  Run({u" START", u" RET", u" END", u"Q START", u" RET", u"E END", u"R START", u" RET", u" END"});
  EXPECT_EQ(stopped, 4);
  EXPECT_EQ(out,
            "There are 3 programs found in it.\n"
            "Error : line 1: A label is expected at the left side \nof the START assembler instruction. \n"
            "Error : line 6:  \"E END\" There is a label at the left side \nof the END assembler instruction. \n"
            "It is of no use. \n");
  EXPECT_EQ(b->ErrorKazu, 2);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"1A02E43A", "86F18976", "99CC18976"}));
  EXPECT_EQ(b->vecSrcW[7].prgNr, 2);
  SetLang(0);
  out.clear();
  StartEndNW(1);
  EXPECT_EQ(out,
            "エラー： 6 行目：  \"E END\" END アセンブラ命令の左にラベルがある。 \nEND アセンブラ命令の左のラベルは\n"
            "不要です。（CASL2 の仕様） \n");
}

TEST_F(Structure, TextBetweenPrograms) {
  Run({u"P START", u" RET", u" END", u"", u"; fine", u"  JUNK  ", u"MORE", u"Q START", u" RET", u" END"});
  ASSERT_EQ(stopped, 0);
  out.clear();
  EXPECT_LT(IsAnySrcOutsideStartEndNW(), 0);
  EXPECT_EQ(out,
            "Error : line 6:  \"JUNK\" : There are some unknown string between two programs. \n"
            "There are some unknown string between END and START. \nIt should be deleted. Or a comment mark(;) \n"
            "is expected at the left side of the description.\n");
  EXPECT_EQ(b->ErrorKazu, 1);  // the first such line only
  EXPECT_EQ(Codes().back(), "DDDD036E");
}

TEST_F(Structure, TwoByteSpaceBetweenProgramsGivesTheLongForm) {
  Run({u"P START", u" RET", u" END", u"\u3000", u"Q START", u" RET", u" END"});
  ASSERT_EQ(stopped, 0);
  out.clear();
  IsAnySrcOutsideStartEndNW();
  EXPECT_EQ(out,
            "Error : line 4:  \"\u3000\" : There are some unknown string between two programs. \n"
            "There are some unknown string between END and START. \nIt should be deleted. Or a comment mark(;) \n"
            "is expected at the left side of the description.\nIt is not a 1-byte space, but a 2-byte one.  \n"
            "A 2-byte space is not allowed for use in CASL2. \n");
  SetLang(0);
  out.clear();
  IsAnySrcOutsideStartEndNW();
  EXPECT_NE(out.find("エラー： 4 行目：  \"\u3000\" プログラムとプログラムの間にソースコードがある。\n"), std::string::npos);
  EXPECT_NE(out.find("それは「全角の空白」文字である。\n「全角の空白」文字は、コメントの中を除き、\nCASL2では使うことができない。 \n"),
            std::string::npos);
}

// ---------------------------------------------------------------------------
// Program names

class StructurePrgName : public Structure {
 protected:
  void Names(const std::vector<std::u16string>& starts) {
    std::vector<std::u16string> l;
    for (const auto& s : starts) {
      l.push_back(s);
      l.push_back(u" RET");
      l.push_back(u" END");
    }
    Run(l);
    ASSERT_EQ(stopped, 0) << out;
    out.clear();
    msgLog->ClearMsgLog();
  }
};

TEST_F(StructurePrgName, GoodNameIsStored) {
  Names({u"MAIN1 START", u"SUB\tSTART"});
  EXPECT_EQ(CkPrgNameNW(0), 0);
  EXPECT_EQ(CkPrgNameNW(1), 0);
  EXPECT_EQ(b->vecPrgW[0].PrgName, u"MAIN1");
  EXPECT_EQ(b->vecSrcW[0].labelStr, u"MAIN1");
  EXPECT_EQ(b->vecPrgW[1].PrgName, u"SUB");
  EXPECT_EQ(out, "");
  EXPECT_EQ(CkPrgNameDoubleNW(), 0);
}

TEST_F(StructurePrgName, BadCharacterThenSmallLetter) {
  Names({u"Abc START"});
  EXPECT_LT(CkPrgNameNW(0), 0);
  EXPECT_EQ(out,
            "Error :  \"Abc\" line 1: There is non-alpha-numeral character in the label of  \"Abc\" . \n"
            "Error : line 1: There is a small letter in the label. \nA small letter is not allowed in a lebel of casl2. \n");
  EXPECT_EQ(b->ErrorKazu, 2);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"FFAB036E", "EEAB036E"}));
  EXPECT_EQ(b->vecPrgW[0].PrgName, u"");  // not stored
  SetLang(0);
  out.clear();
  CkPrgNameNW(0);
  EXPECT_EQ(out,
            "エラー：  \"Abc\" 1 行目： ラベル  \"Abc\"  の第 2 文字目に英大文字、 数字 以外の文字が使われている。 \n"
            "エラー： 1 行目： ラベル  \"Abc\"  の第 1 文字目に英小文字が使われている。 英小文字は使えない。 \n");
}

TEST_F(StructurePrgName, FirstLetterOnly) {
  Names({u"abc START"});
  CkPrgNameNW(0);
  EXPECT_EQ(out,
            "Error : line 1: The first letter of a label must be a capital alphabetical letter. \n"
            "A numeral is not allowed to be used as the first letter of a label. \n");
  EXPECT_EQ(b->ErrorKazu, 1);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"CCAB036E"}));
  SetLang(0);
  out.clear();
  CkPrgNameNW(0);
  EXPECT_EQ(out, "エラー： 1 行目： ラベルの先頭文字は英大文字であること。 先頭文字に数字は使えない。\n");
}

TEST_F(StructurePrgName, TooLongAndReserved) {
  Names({u"ABCDEFGHI START", u"GR0 START", u"ABCDEFGH START"});
  CkPrgNameNW(0);
  EXPECT_EQ(out,
            "Error :  \"ABCDEFGHI\" line 1: A label must be 1 to 8 characters in length. \n"
            "Label:  \"ABCDEFGHI\" : There are 9 letters in it. \n");
  out.clear();
  CkPrgNameNW(1);
  EXPECT_EQ(out, "Error : line 4: The reserved words(GR0-GR7) are not allowed in a label. \n");
  out.clear();
  EXPECT_EQ(CkPrgNameNW(2), 0);  // 8 characters pass
  EXPECT_EQ(b->ErrorKazu, 2);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"DDAB036E", "77AB036E"}));
  SetLang(0);
  out.clear();
  CkPrgNameNW(0);
  CkPrgNameNW(1);
  EXPECT_EQ(out,
            "エラー：  \"ABCDEFGHI\" 1 行目： ラベル の長さは８文字までの制限（仕様）がある。。 \n"
            " \"ABCDEFGHI\" : 9 文字ある。\n"
            "エラー： 4 行目： ラベルに予約語(GR0 - GR7) は使えない。\n");
}

TEST_F(StructurePrgName, TwoByteSpaceInTheName) {
  Names({u"A\u3000B START"});
  CkPrgNameNW(0);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"0801EEC3", "FFAB036E"}));
  EXPECT_EQ(Errors(), 2);
}

TEST_F(StructurePrgName, NoName) {
  Names({u"P START"});
  b->vecSrcW[0].editStr = u" START";
  CkPrgNameNW(0);
  EXPECT_EQ(out, "Error : line 1: A label is expected at the left side of the START assembler instruction. \n");
  EXPECT_EQ(Codes(), (std::vector<std::string>{"EEEE036E"}));
  SetLang(0);
  out.clear();
  CkPrgNameNW(0);
  EXPECT_EQ(out, "エラー： 1 行目： START アセンブラ命令の左にラベルが必要です。\n");
}

TEST_F(StructurePrgName, SameNameEveryPair) {
  Names({u"A START", u"B START", u"A START", u"A START"});
  for (int i = 0; i < 4; ++i) CkPrgNameNW(i);
  EXPECT_LT(CkPrgNameDoubleNW(), 0);
  EXPECT_EQ(b->ErrorKazu, 3);
  EXPECT_EQ(out.substr(0, out.find("Error", 5)),
            "Error :  \"A\"  is already defined. Duplication of the program name. \n"
            "Program 1, line 1 and Program 3, line 7.\nTheir names must be unique each other. \n");
  EXPECT_NE(out.find("Program 1, line 1 and Program 4, line 10."), std::string::npos);
  EXPECT_NE(out.find("Program 3, line 7 and Program 4, line 10."), std::string::npos);
  EXPECT_LT(out.find("Program 1, line 1 and Program 4"), out.find("Program 3, line 7 and"));
  EXPECT_EQ(msgLog->WideLog[0].line, 0);
  EXPECT_EQ(msgLog->WideLog[0].code, "DBDB036E");
  SetLang(0);
  out.clear();
  msgLog->ClearMsgLog();
  CkPrgNameDoubleNW();
  EXPECT_EQ(out.substr(0, out.find("エラー", 5)),
            "エラー： プログラム名の重複：  \"A\"  が二つある。 \nプログラム1 と プログラム3 の名前 \n1 行目 と 7 行目にある。\n");
}

TEST_F(StructurePrgName, SameNameAnswersAsTheSearchOverAllPairs) {
  std::mt19937 rng(7);
  for (int round = 0; round < 20; ++round) {
    ResetBasicData();
    msgLog->ClearMsgLog();
    int n = 2 + static_cast<int>(rng() % 30);
    for (int k = 0; k < n; ++k) {
      b->vecPrgW.emplace_back();
      b->vecPrgW.back().PrgName = std::u16string(1, static_cast<char16_t>(u'A' + rng() % 5));
      b->vecPrgW.back().prgFirstLine = k * 3;
    }
    std::vector<std::pair<int, int>> expected;
    for (int i = 0; i < n; ++i)
      for (int j = i + 1; j < n; ++j)
        if (b->vecPrgW[i].PrgName == b->vecPrgW[j].PrgName) expected.emplace_back(i, j);
    out.clear();
    CkPrgNameDoubleNW();
    std::string want;
    for (auto [i, j] : expected)
      want += "Program " + std::to_string(i + 1) + ", line " + std::to_string(i * 3 + 1) + " and Program " +
              std::to_string(j + 1) + ", line " + std::to_string(j * 3 + 1) + ".\n";
    std::string got;
    for (size_t p = out.find("Program "); p != std::string::npos; p = out.find("Program ", out.find('\n', p))) {
      got += out.substr(p, out.find('\n', p) - p + 1);
    }
    EXPECT_EQ(got, want);
  }
}

TEST_F(StructurePrgName, ProgramNeverCalled) {
  Names({u"P START", u"Q START", u"R START"});
  for (int i = 0; i < 3; ++i) CkPrgNameNW(i);
  b->vecPrgW[2].prgUsed = 1;
  out.clear();
  CkPrgNameInUseNW();
  EXPECT_EQ(out,
            "Warning : line 4: A program of the \"Q\" is never executed, becasue it is not called by any other "
            "program. \n");
  EXPECT_EQ(b->WarningKazu, 1);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"1A76F6FF"}));
  SetLang(0);
  out.clear();
  CkPrgNameInUseNW();
  EXPECT_EQ(out, "警告： 4 行目： プログラム Q は他のプログラムから呼び出しがなく一度も実行されない。 \n");
}

// ---------------------------------------------------------------------------
// The operand of START

TEST_F(StructurePrgName, StartOperandWords) {
  Names({u"P START LOOP", u"Q START"});
  CkPrgNameNW(0);
  CkPrgNameNW(1);
  b->vecSrcW[1].labelStr = u"LOOP";
  b->vecSrcW[1].rlAdr = 3;
  b->vecSrcW[1].abAdr = 3;
  SrcLineW& s = b->vecSrcW[0];
  EXPECT_EQ(CkStartAdrOperandNW(0, u"LOOP", 0), 0);
  EXPECT_EQ(s.word_kazu, 2);
  EXPECT_EQ(s.first_word, 0x6400);
  EXPECT_EQ(s.second_word, 3);
  ASSERT_EQ(s.vecWord.size(), 2u);
  EXPECT_EQ(s.vecWord[0].wordNote, u"START");
  EXPECT_EQ(s.vecWord[1].wordNote, u"An operand of START");
  EXPECT_EQ(b->vecSrcW[1].labelUsed, 1);
  // Another program's name.
  EXPECT_EQ(CkStartAdrOperandNW(0, u"Q", 0), 0);
  EXPECT_EQ(b->vecPrgW[1].prgUsed, 1);
  EXPECT_EQ(b->vecSrcW[3].labelUsed, 1);
  EXPECT_EQ(s.word_kazu, 2);
  b->vecSrcW[3].abAdr = 9;  // once the link has given Q its place
  CkStartAdrOperandNW(0, u"Q", 0);
  EXPECT_EQ(s.second_word, 9);
  EXPECT_EQ(s.vecWord[1].wordCode, 9);
  // No operand.
  EXPECT_EQ(CkStartAdrOperandNW(1, u"", 3), 0);
  EXPECT_EQ(b->vecSrcW[3].word_kazu, 1);
  ASSERT_EQ(b->vecSrcW[3].vecWord.size(), 1u);
  EXPECT_EQ(b->vecSrcW[3].vecWord[0].wordNote, u"An Operand of START");
  EXPECT_EQ(out, "");
}

TEST_F(StructurePrgName, StartOperandFindings) {
  Names({u"P START", u"Q START"});
  CkPrgNameNW(0);
  CkPrgNameNW(1);
  EXPECT_LT(CkStartAdrOperandNW(0, u"NOWHERE", 0), 0);
  EXPECT_EQ(out,
            "Error : line 1: There does not exist any label which is identical with an address constant of the  "
            "\"NOWHERE\" . \n");
  EXPECT_EQ(cs->ErrorKazu, 1);
  out.clear();
  EXPECT_LT(CkStartAdrOperandNW(0, u"A-B", 0), 0);  // bad character, then no such label
  EXPECT_EQ(out,
            "Error : line 1: There is a non-alphanumeric letter in the address constant of  \"A-B\" . \n"
            "The address constant should be written in capital alphanumeric letters. \n"
            "Error : line 1: There does not exist any label which is identical with an address constant of the  "
            "\"A-B\" . \n");
  out.clear();
  EXPECT_LT(CkStartAdrOperandNW(0, u"ABCDEFGHI", 0), 0);
  EXPECT_EQ(out, "Error : line 1: An address constant must be 1 to 8 characters in length. \n");
  EXPECT_EQ(cs->ErrorKazu, 4);
  SetLang(0);
  out.clear();
  CkStartAdrOperandNW(0, u"ABCDEFGHI", 0);
  CkStartAdrOperandNW(0, u"X", 0);
  EXPECT_EQ(out,
            "エラー： 1 行目：  \"ABCDEFGHI\"  アドレス定数は８文字以内。9 文字ある。\n"
            "エラー： 1 行目： アドレス定数  \"X\"  と一致するラベルが存在しない。\n");
  // A new set of programs with the same count: the names are found afresh.
  ResetBasicData();
  cs->ZeroCounters();
  Names({u"R START", u"S START"});
  CkPrgNameNW(0);
  CkPrgNameNW(1);
  EXPECT_EQ(CkStartAdrOperandNW(0, u"S", 0), 0);
  EXPECT_EQ(b->vecPrgW[1].prgUsed, 1);
}

}  // namespace
