// The line scanner passes and the character checks.
#include "lines/mozi.h"
#include "lines/scanner.h"
#include "source_fixture.h"

namespace {

using srctest::Fixture;

class Scanner : public Fixture {
 protected:
  // Lines of one program, paired and stripped of comments, then the field
  // passes of the line analysis up to the split of the operand text.
  void Program(const std::vector<std::u16string>& lines) {
    Lines(lines);
    ASSERT_EQ(Pair(), 0) << out;
    out.clear();
    msgLog->ClearMsgLog();
  }
  static SrcLineW& L(int i) { return b->vecSrcW[i]; }
};

// ---------------------------------------------------------------------------
// editNWB

TEST_F(Scanner, EditNWBTidiesEveryLine) {
  Lines({u"   \t ", u"  ; a comment  ", u"LBL  LD GR1,A  ", u"\tRET", u"    NOP", u"X\u3000\u3000", u"\u3000", u""});
  ASSERT_EQ(editNWB(), 0);
  EXPECT_EQ(L(0).rawStr, u"");  // only blanks: emptied as read, too
  EXPECT_EQ(L(0).editStr, u"");
  EXPECT_EQ(L(1).editStr, u"");  // a comment line keeps its comment only
  EXPECT_EQ(L(1).commentStr, u"; a comment");
  EXPECT_EQ(L(1).rawStr, u"  ; a comment  ");
  EXPECT_EQ(L(2).editStr, u"LBL  LD GR1,A");
  EXPECT_EQ(L(3).editStr, u"\tRET");  // one leading tab stays a tab
  EXPECT_EQ(L(4).editStr, u" NOP");   // two or more blanks become one space
  EXPECT_EQ(L(5).editStr, u"X\u3000\u3000");  // U+3000 is not trimmed
  EXPECT_EQ(L(6).editStr, u"\u3000");         // and a line of it is not blank
  EXPECT_EQ(Errors(), 0);
  EXPECT_EQ(out, "");
}

TEST_F(Scanner, EmptySourceIsOneErrorWithoutPrefix) {
  Lines({u"; only", u"  ", u"\t; comment"});
  EXPECT_LT(editNWB(), 0);
  EXPECT_EQ(out, "Error: The source code is empty.  The assembler is ready to go!\n");
  EXPECT_EQ(b->ErrorKazu, 1);
  ASSERT_EQ(msgLog->WideLog.size(), 1u);
  EXPECT_EQ(msgLog->WideLog[0].kind, 100);
  SetLang(0);
  out.clear();
  Lines({});
  EXPECT_LT(editNWB(), 0);
  EXPECT_EQ(out, "エラー：　アセンブラは準備完了、 ソースコードの記述がない。 \n");
  EXPECT_EQ(b->ErrorKazu, 2);
}

// ---------------------------------------------------------------------------
// Comments and fields

TEST_F(Scanner, CutCommentKnowsQuotes) {
  Program({u"PRG START", u" DC 'A;B' ;C", u" DC 'it''s;' ;x", u" LD GR1,A;c", u" RET", u"A DC ''';'", u" END ;e"});
  EXPECT_EQ(L(1).editStr, u" DC 'A;B' ");  // no right-trim
  EXPECT_EQ(L(2).editStr, u" DC 'it''s;' ");
  EXPECT_EQ(L(3).editStr, u" LD GR1,A");
  EXPECT_EQ(L(5).editStr, u"A DC ''';'");
  EXPECT_EQ(L(6).editStr, u" END ;e");  // the END line is not walked
  EXPECT_EQ(L(1).commentStr, u"");       // the comment is dropped, not stored
}

TEST_F(Scanner, LabelOpcodeAndOperandFields) {
  Program({u"PRG\tSTART", u" LD\tGR1, A", u"LBL NOP", u"\tRET", u" END"});
  TakeOutLabelStrNW(0);
  EXPECT_EQ(L(0).labelStr, u"PRG");
  EXPECT_EQ(L(0).afterLabelStr, u"START");
  EXPECT_EQ(L(0).opStr, u"START");
  EXPECT_EQ(L(0).oprndComStr, u"");
  EXPECT_EQ(L(1).labelStr, u"");
  EXPECT_EQ(L(1).afterLabelStr, u"LD\tGR1, A");
  EXPECT_EQ(L(1).opStr, u"LD");
  EXPECT_EQ(L(1).oprndComStr, u"GR1, A");
  EXPECT_EQ(L(1).oprndComChH, u"GR1, A");
  EXPECT_EQ(L(2).labelStr, u"LBL");
  EXPECT_EQ(L(2).opStr, u"NOP");
  EXPECT_EQ(L(3).opStr, u"RET");
  EXPECT_EQ(L(4).opStr, u"END");  // the END line is included here
}

TEST_F(Scanner, OperandTextFindsTheFirstCharacterOfTheKey) {
  // The key is the opcode and a blank; its first character found anywhere
  // in the text decides where the operand text begins.
  Program({u"PRG START", u" LD  GR1,A", u" RET", u" END"});
  TakeOutLabelStrNW(0);
  EXPECT_EQ(L(1).oprndComStr, u"GR1,A");
}

TEST_F(Scanner, LengthWarningOncePerProgramNotCounted) {
  std::u16string op226(226, u'A');
  Program({u"PRG START", u" DC " + op226, u" DC " + op226, u" RET", u" END"});
  TakeOutLabelStrNW(0);
  const std::string head = "Warning: line 2: There are 226 characters in the line. ";
  EXPECT_EQ(out, head +
                     "The Spec. of DrillAsm has a length limit for every line. The assembler reads 225 characters or "
                     "less a line. \nThis might have caused an error for all your intention. \n");
  EXPECT_EQ(L(1).oprndComStr.size(), 226u);
  EXPECT_EQ(L(1).oprndComChH.size(), 225u);
  EXPECT_EQ(Warnings() + Errors(), 0);
  EXPECT_TRUE(msgLog->WideLog.empty());
  // The later check, after the literal passes: its own wording, once.
  out.clear();
  CopyOprndComStrToChH2BD(0);
  EXPECT_EQ(out, "（規定の文字の長さ、文字数）＝（225, 226）\n" + head +
                     "The Spec. of DrillAsm has a length limit in every line. The assembler reads 225 characters or "
                     "less a line. \nThis might have caused an error for all your intention. \n");
  SetLang(0);
  out.clear();
  TakeOutLabelStrNW(0);
  EXPECT_EQ(out, "警告: 2行目：DrillAsmの仕様よりも長い行がある。 226 文字ある。225 文字まで読取り、それ以降の文字は読み捨てる。\n");
  EXPECT_EQ(Warnings() + Errors(), 0);
}

TEST_F(Scanner, CutOprndComMovesTheCommentOfKnownOpcodesButNotOfDC) {
  Program({u"PRG START", u" LD GR1,A", u" DC 'A'", u" RET", u" END"});
  // Comments that CutCommentNW left: put them back into the operand text.
  TakeOutLabelStrNW(0);
  L(1).oprndComStr = u"GR1,A ;c1";
  L(2).oprndComStr = u"'A;B' ;c2";
  L(3).oprndComStr = u";c3";
  CutOprndComNW(0);
  EXPECT_EQ(L(1).oprndComStr, u"GR1,A ");
  EXPECT_EQ(L(1).commentStr, u";c1");
  EXPECT_EQ(L(2).oprndComStr, u"'A;B' ;c2");
  EXPECT_EQ(L(3).oprndComStr, u"");
  EXPECT_EQ(L(3).commentStr, u";c3");
  EXPECT_TRUE(IsCutOprndComOp(u"START"));
  EXPECT_FALSE(IsCutOprndComOp(u"DC"));
  EXPECT_FALSE(IsCutOprndComOp(u"ld"));
  CopyOprndComToEditNW(0);
  EXPECT_EQ(L(1).editStr, u"GR1,A ");
}

// ---------------------------------------------------------------------------
// Signs

TEST_F(Scanner, Edit30cClosesTheBlankBehindTheLiteralSign) {
  Program({u"PRG START", u" LD GR1,= 5", u" LD GR1,=", u" DC 'x= 1'", u" RET", u" END"});
  L(1).editStr = u"GR1,= 5";
  L(2).editStr = u"GR1,=  ";
  L(3).editStr = u"'x= 1'";
  EXPECT_EQ(edit30cNW(0), 0);
  EXPECT_EQ(L(1).editStr, u"GR1,=5");
  EXPECT_EQ(L(2).editStr, u"GR1,");  // nothing behind: the sign goes too
  EXPECT_EQ(L(3).editStr, u"'x= 1'");
  EXPECT_EQ(Errors(), 0);
}

TEST_F(Scanner, Edit30cBlankBehindASignedLiteral) {
  Program({u"PRG START", u" LD GR1,=- 5", u" LD GR2,=+\t5", u" RET", u" END"});
  L(1).editStr = u"GR1,=- 5";
  L(2).editStr = u"GR2,=+\t5";
  EXPECT_LT(edit30cNW(0), 0);
  EXPECT_EQ(out,
            "Error : line 2:  \"GR1,=- 5\" : There is a space just after =+, =-, or =#. \n"
            "Remove off the space at the right side of the literal figure. \n");
  EXPECT_EQ(cs->ErrorKazu, 1);  // the pass ends at the first
  SetLang(0);
  out.clear();
  EXPECT_LT(edit30cNW(0), 0);
  EXPECT_EQ(out,
            "エラー： 2 行目：  \"GR1,=- 5\" : =+, =-, =# 記号の直後に空白がある。\n"
            "記号の直後、数字の直前にある空白を取り除くこと。\n");
}

TEST_F(Scanner, Edit50BlankBehindASign) {
  Program({u"PRG START", u" LAD GR1,5", u" DC '+ '", u" LAD GR1,+ 5", u" RET", u" END"});
  L(1).editStr = u"GR1,5";
  L(2).editStr = u"'+ '";
  L(3).editStr = u"GR1,+ 5";
  EXPECT_LT(edit50NW(0), 0);
  EXPECT_EQ(out,
            "Error : line 4:  \"GR1,+ 5\" : There is a space just after +, -, or #. \n"
            "Remove off the space at the left side of the figure.\n");
  EXPECT_EQ(cs->ErrorKazu, 1);
  SetLang(0);
  out.clear();
  EXPECT_LT(edit50NW(0), 0);
  EXPECT_EQ(out, "エラー： 4 行目：  \"GR1,+ 5\" : +, -, # 記号の直後に空白がある。\n記号の直後、数字の直前にある空白を取り除くこと。\n");
}

TEST_F(Scanner, DivideCommentAwareOfApostrophes) {
  Program({u"PRG START", u" DC 5", u" DC 5", u" DC 5", u" DC 5", u" RET", u" END"});
  L(1).editStr = u"'A;B' ;C";  // two semicolons differ: kept
  L(2).editStr = u"'AB' ;C";   // a comment behind a closed string
  L(3).editStr = u"5 ;C";
  L(4).editStr = u"'A' ;C;D";  // two semicolons behind the last apostrophe
  DivideCommentNW(0);
  EXPECT_EQ(L(1).editStr, u"'A;B' ;C");
  EXPECT_EQ(L(2).editStr, u"'AB' ");
  EXPECT_EQ(L(2).commentStr, u";C");
  EXPECT_EQ(L(3).editStr, u"5 ");
  EXPECT_EQ(L(3).commentStr, u";C");
  EXPECT_EQ(L(4).editStr, u"'A' ;C;D");  // the last ";" is not the first: no cut
}

// ---------------------------------------------------------------------------
// Character checks

TEST_F(Scanner, CkMoziPositionZeroMeansNone) {
  EXPECT_EQ(CkSmallLetterNW(u"Ab"), 1);
  EXPECT_EQ(CkMozi10NW(u"Ab"), 1);
  EXPECT_EQ(CkSmallLetterNW(u"ab"), 0);
  EXPECT_EQ(CkMozi10NW(u"ab"), 0);
  EXPECT_EQ(CkMozi10NW(u"AB12"), 0);
  EXPECT_EQ(CkMozi10NW(u"AB-2"), 2);
  EXPECT_EQ(CkMozi20W(u"#00FF"), 0);
  EXPECT_EQ(CkMozi20W(u"#00fF"), 1);
  EXPECT_EQ(CkMozi20W(u"12G"), 1);
}

TEST_F(Scanner, ZenKakuSpaceAnalystOneMessagePerWord) {
  EXPECT_EQ(AnalystZenKSpace20NW(u"AB", 0), 0);
  EXPECT_EQ(out, "");
  EXPECT_EQ(AnalystZenKSpace20NW(u"A\u3000B\u3000", 2), 0);
  EXPECT_EQ(out,
            "Error : line 3:  \"A\u3000B\u3000\" : There is a 2-byte space in the word. A 2-byte space is not "
            "allowed to be used in casl2. A 2-byte space should be replaced with 1-byte space.  Remove off the "
            "2-byte space in the word. \n");
  EXPECT_EQ(cs->ErrorKazu, 1);
  ASSERT_EQ(Codes(), (std::vector<std::string>{"0801EEC3"}));
  SetLang(0);
  out.clear();
  AnalystZenKSpace20NW(u"\u3000", 0);
  EXPECT_EQ(out, "エラー： 1 行目：  \"\u3000\"  の中に全角の空白がある。 CASL2には全角の空白は使えない。　 CASL2では半角の空白を使う。\n");
  EXPECT_EQ(cs->ErrorKazu, 2);
}

TEST_F(Scanner, ZenKakuMoziAnalyst) {
  AnalystZenKMoziW(u"ABC\uFF71", 0, u"label");  // 1-byte katakana is no 2-byte character
  EXPECT_EQ(out, "");
  AnalystZenKMoziW(u"Aあ", 1, u"label");
  EXPECT_EQ(out,
            "Error : line 2:  \"Aあ\" : There is a 2-byte character in the word. This character is not allowed in "
            "CASL2. Remove off the 2-byte character. A 1-byte space is allowed in CASL2.  \n");
  EXPECT_EQ(cs->ErrorKazu, 1);
  EXPECT_EQ(Codes(), (std::vector<std::string>{"F93C6677 atStr=label"}));
}

TEST_F(Scanner, AnalystThreeTests) {
  EXPECT_EQ(AnalystNW(u"GR8", 0), 1);  // words only, no count
  EXPECT_EQ(out,
            "Error : line 1: The comet2 has eight general registers of GR0-GR7. Neither GR8 nor GR9 is a general "
            "register of comet2. \n");
  EXPECT_EQ(cs->ErrorKazu, 0);
  out.clear();
  EXPECT_EQ(AnalystNW(u"GR10", 0), 0);
  EXPECT_EQ(out, "");
  EXPECT_EQ(AnalystNW(u"9a", 4), 2);
  EXPECT_EQ(out,
            "Error : line 5: The first character must be a letter. A numerical is not allowed to be used as the 1st "
            "letter of a label of 9a. \n"
            "Error : line 5: 9a: There is a small letter in it. It cannot be used in casl2.\n");
  EXPECT_EQ(cs->ErrorKazu, 2);
  EXPECT_TRUE(msgLog->WideLog.empty());  // no records
  SetLang(0);
  out.clear();
  EXPECT_EQ(AnalystNW(std::u16string(u"ab\0X", 4), 0), 1);  // zero-ended
  EXPECT_EQ(out, "エラー： 1 行目： ab 小文字がある。 小文字は CASL2 では使えない。\n");
}

}  // namespace
