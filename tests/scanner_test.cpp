// The line scanner passes, the opcode numbers and the character checks.
#include <set>

#include "lines/mozi.h"
#include "lines/opcodes.h"
#include "lines/scanner.h"
#include "source_fixture.h"

namespace {

using namespace srctest;

class Scanner : public Fixture {
 protected:
  // A program of DC lines whose operand text is already the given text.
  void Ops(const Texts& ops) {
    Texts l(ops.size() + 3, u" DC 5");
    l.front() = u"PRG START", l[ops.size() + 1] = u" RET", l.back() = u" END";
    Prog(l);
    for (size_t i = 0; i < ops.size(); ++i) L(i + 1).editStr = ops[i];
  }
  static SrcLineW& L(int i) { return b->vecSrcW[i]; }
};

TEST_F(Scanner, EditNWBTidiesEveryLine) {
  Lines({u"   \t ", u"  ; a comment  ", u"LBL  LD GR1,A  ", u"\tRET", u"    NOP", u"X\u3000\u3000", u"\u3000", u""});
  ASSERT_EQ(editNWB(), 0);
  // Blanks only: emptied as read too; a comment line keeps its comment only;
  // one leading tab stays, two blanks become one; U+3000 is no blank.
  EXPECT_EQ(F(&SrcLineW::editStr), (Texts{u"", u"", u"LBL  LD GR1,A", u"\tRET", u" NOP", u"X\u3000\u3000", u"\u3000", u""}));
  EXPECT_EQ(L(0).rawStr + u"|" + L(1).rawStr + u"|" + L(1).commentStr, u"|  ; a comment  |; a comment");
  EXPECT_EQ(Errors() + out.size(), 0u);
}

TEST_F(Scanner, CommentsAndFields) {
  Prog({u"PRG\tSTART", u" DC 'A;B' ;C", u" DC 'it''s;' ;x", u" LD\tGR1, A;c", u"LBL NOP", u" DC ''';'", u"\tRET",
        u" END ;e"});
  // CutCommentNW knows quotes, drops the comment, does not right-trim, and
  // leaves the END line alone.
  EXPECT_EQ(F(&SrcLineW::editStr), (Texts{u"PRG\tSTART", u" DC 'A;B' ", u" DC 'it''s;' ", u" LD\tGR1, A", u"LBL NOP",
                                          u" DC ''';'", u"\tRET", u" END ;e"}));
  EXPECT_EQ(L(1).commentStr, u"");
  TakeOutLabelStrNW(0);
  EXPECT_EQ(F(&SrcLineW::labelStr), (Texts{u"PRG", u"", u"", u"", u"LBL", u"", u"", u""}));
  EXPECT_EQ(F(&SrcLineW::opStr), (Texts{u"START", u"DC", u"DC", u"LD", u"NOP", u"DC", u"RET", u"END"}));
  EXPECT_EQ(F(&SrcLineW::oprndComStr),
            (Texts{u"", u"'A;B' ", u"'it''s;' ", u"GR1, A", u"", u"''';'", u"", u";e"}));
  EXPECT_EQ(L(3).oprndComChH, u"GR1, A");
  // CutOprndComNW moves a comment to its field, but not on a DC line.
  L(1).oprndComStr = u"'A;B' ;c2", L(3).oprndComStr = u"GR1,A ;c1", L(6).oprndComStr = u";c3";
  CutOprndComNW(0);
  EXPECT_EQ(F(&SrcLineW::oprndComStr), (Texts{u"", u"'A;B' ;c2", u"'it''s;' ", u"GR1,A ", u"", u"''';'", u"", u";e"}));
  EXPECT_EQ(F(&SrcLineW::commentStr), (Texts{u"", u"", u"", u";c1", u"", u"", u";c3", u""}));
  EXPECT_TRUE(IsCutOprndComOp(u"START") && !IsCutOprndComOp(u"DC") && !IsCutOprndComOp(u"ld"));
  CopyOprndComToEditNW(0);
  EXPECT_EQ(L(3).editStr, u"GR1,A ");
}

// The fields of a line from its working text: the label up to the first
// blank; the opcode behind the blanks after it; the operand text behind the
// blank that ends the opcode, left-trimmed. An empty text keeps its label.
TEST_F(Scanner, FieldsOfOddLines) {
  const std::vector<std::array<std::u16string, 4>> rows{
      // text, label, opcode, operand text
      {u"LBL", u"LBL", u"", u""},
      {u"LBL \t ", u"LBL", u"", u""},
      {u" LD", u"", u"LD", u""},
      {u" LD ", u"", u"LD", u""},
      {u" LD  GR1", u"", u"LD", u"GR1"},
      {u"\tLD\tGR1 ;x", u"", u"LD", u"GR1 ;x"},
      {u"L\t\tLD\t\t GR1, A ", u"L", u"LD", u"GR1, A "},
      {u"L\u3000LD GR1", u"L\u3000LD", u"GR1", u""},
      {u"", u"OLD", u"", u""},
  };
  Texts ops;
  for (const auto& r : rows) ops.push_back(r[0]);
  Ops(ops);
  for (size_t i = 0; i < rows.size(); ++i) L(i + 1).labelStr = u"OLD", L(i + 1).opStr = u"OLD";
  TakeOutLabelStrNW(0);
  for (size_t i = 0; i < rows.size(); ++i) {
    SCOPED_TRACE(U16ToUtf8(rows[i][0]));
    const SrcLineW& s = L(i + 1);
    EXPECT_EQ((std::array<std::u16string, 3>{s.labelStr, s.opStr, s.oprndComStr}),
              (std::array<std::u16string, 3>{rows[i][1], rows[i][2], rows[i][3]}));
    EXPECT_EQ(s.oprndComChH, s.oprndComStr);
  }
}

// Every name of the language has a number of its own; anything else, small
// letters and wide letters included, is no opcode; the classes of the
// instruction rules hold the names of their tables.
TEST(Opcodes, NumbersOfTheNames) {
  const std::vector<std::u16string> names{u"START", u"END", u"DC", u"DS", u"LD", u"ST", u"LAD", u"ADDA", u"SUBA",
                                          u"ADDL", u"SUBL", u"AND", u"OR", u"XOR", u"CPA", u"CPL", u"SLA", u"SRA",
                                          u"SLL", u"SRL", u"JMI", u"JNZ", u"JZE", u"JUMP", u"JPL", u"JOV", u"PUSH",
                                          u"POP", u"CALL", u"RET", u"SVC", u"NOP", u"IN", u"OUT", u"RPUSH", u"RPOP",
                                          u"EXIT"};
  std::set<Op> seen;
  for (const auto& n : names) {
    const Op op = OpOf(n);
    EXPECT_TRUE(op != Op::Other && op != Op::None && seen.insert(op).second) << U16ToUtf8(n);
    EXPECT_EQ(OpOf(U16ToUtf8(n)), op);
    // The comment cut knows all but DC and EXIT.
    EXPECT_EQ(IsCutOprndComOp(n), n != u"DC" && n != u"EXIT") << U16ToUtf8(n);
  }
  for (const std::u16string& n : std::vector<std::u16string>{u"ld", u"Ld", u"LDX", u"L", u"STARTS", u"ST ", u" ST", u"\uFF2C\uFF24", u"A",
                                 u"RPUSHX", u"GR1", std::u16string(u"LD\0", 3)})
    EXPECT_EQ(OpOf(n), Op::Other) << U16ToUtf8(n);
  EXPECT_EQ(OpOf(u""), Op::None);
  std::u16string reg, adr, jump;
  for (const auto& n : names) {
    const Op op = OpOf(n);
    if (IsRegisterFamily(op)) reg += n + u" ";
    if (IsAddressOnlyFamily(op)) adr += n + u" ";
    if (IsJumpFamily(op)) jump += n + u" ";
  }
  EXPECT_EQ(reg, u"LD ADDA SUBA ADDL SUBL AND OR XOR CPA CPL ");
  EXPECT_EQ(adr, u"ST LAD SLA SRA SLL SRL ");
  EXPECT_EQ(jump, u"JMI JNZ JZE JUMP JPL JOV PUSH CALL SVC ");
}

TEST_F(Scanner, SignsAndTheLastCommentCut) {
  Ops({u"GR1,= 5", u"GR1,=  ", u"'x= 1'", u"'+ ' #1"});
  EXPECT_EQ(edit30cNW(0), 0);
  EXPECT_EQ(edit50NW(0), 0);  // a sign behind the first apostrophe is not looked at
  EXPECT_EQ(F(&SrcLineW::editStr), (Texts{u"PRG START", u"GR1,=5", u"GR1,", u"'x= 1'", u"'+ ' #1", u" RET", u" END"}));
  // DivideCommentNW: before any apostrophe; behind a closed string; not with
  // two semicolons behind the last apostrophe, nor with a ";" inside.
  Ops({u"5 ;C", u"'AB' ;C", u"'A' ;C;D", u"'A;B' ;C"});
  DivideCommentNW(0);
  EXPECT_EQ(F(&SrcLineW::editStr), (Texts{u"PRG START", u"5 ", u"'AB' ", u"'A' ;C;D", u"'A;B' ;C", u" RET", u" END"}));
  EXPECT_EQ(F(&SrcLineW::commentStr), (Texts{u"", u";C", u";C", u"", u"", u"", u""}));
  EXPECT_EQ(Errors(), 0);
}

TEST_F(Scanner, CkMoziPositionZeroMeansNone) {
  EXPECT_EQ(CkSmallLetterNW(u"Ab") * 10 + CkMozi10NW(u"Ab"), 11);
  EXPECT_EQ(CkSmallLetterNW(u"ab") + CkMozi10NW(u"ab") + CkMozi10NW(u"AB12"), 0);
  EXPECT_EQ(CkMozi10NW(u"AB-2"), 2);
  EXPECT_EQ(CkMozi20W(u"#00FF") * 100 + CkMozi20W(u"#00fF") * 10 + CkMozi20W(u"12G"), 11);
}

// Every message of the scanner and the character checks, with its counter
// and its record.
TEST_F(Scanner, EveryMessage) {
  const std::u16string op226(226, u'A');
  const std::string len = "Warning: line 2: There are 226 characters in the line. The Spec. of DrillAsm has a length "
                          "limit for every line. The assembler reads 225 characters or less a line. \n"
                          "This might have caused an error for all your intention. \n";
  auto longLines = [=, this] { Prog({u"PRG START", u" DC " + op226, u" DC " + op226, u" RET", u" END"}); };
  Check({
      {[this] { Ops({u"GR1,=- 5", u"GR2,=+\t5"}); return edit30cNW(0); }, -1, 1, 0,  // the pass ends at the first
       "Error : line 2:  \"GR1,=- 5\" : There is a space just after =+, =-, or =#. \n"
       "Remove off the space at the right side of the literal figure. \n", {"3C30E0D1"},
       "エラー： 2 行目：  \"GR1,=- 5\" : =+, =-, =# 記号の直後に空白がある。\n記号の直後、数字の直前にある空白を取り除くこと。\n"},
      {[this] { Ops({u"GR1,5", u"'+ '", u"GR1,+\t5"}); return edit50NW(0); }, -1, 1, 0,
       "Error : line 4:  \"GR1,+\t5\" : There is a space just after +, -, or #. \nRemove off the space at the left side of the figure.\n",
       {"3C50E0D1"},
       "エラー： 4 行目：  \"GR1,+\t5\" : +, -, # 記号の直後に空白がある。\n記号の直後、数字の直前にある空白を取り除くこと。\n"},
      // The length warning, once a program, neither counted nor recorded.
      {[=] { longLines(); return TakeOutLabelStrNW(0); }, 0, 0, 0, len, {},
       "警告: 2行目：DrillAsmの仕様よりも長い行がある。 226 文字ある。225 文字まで読取り、それ以降の文字は読み捨てる。\n"},
      {[=, this] { longLines(); TakeOutLabelStrNW(0); out.clear(); return CopyOprndComStrToChH2BD(0); }, 0, 0, 0,
       "（規定の文字の長さ、文字数）＝（225, 226）\n" + std::string(len).replace(len.find("for every"), 9, "in every"), {},
       "（規定の文字の長さ、文字数）＝（225, 226）\n警告: 2行目：DrillAsmの仕様の規定よりも長い行がある。 226 文字ある。225 "
       "文字まで読取り、それ以降の文字は読み捨てる。\n"},
      // One message for a word, however many U+3000 it holds.
      {[] { return AnalystZenKSpace20NW(u"A\u3000B\u3000", 2); }, 0, 1, 0,
       "Error : line 3:  \"A\u3000B\u3000\" : There is a 2-byte space in the word. A 2-byte space is not allowed to be used "
       "in casl2. A 2-byte space should be replaced with 1-byte space.  Remove off the 2-byte space in the word. \n",
       {"0801EEC3"},
       "エラー： 3 行目：  \"A\u3000B\u3000\"  の中に全角の空白がある。 CASL2には全角の空白は使えない。　 CASL2では半角の空白を使う。\n"},
      {[] { return AnalystZenKSpace20NW(u"AB", 0); }, 0, 0, 0, "", {}},
      {[] { AnalystZenKMoziW(u"Aあ", 1, u"label"); return 0; }, 0, 1, 0,
       "Error : line 2:  \"Aあ\" : There is a 2-byte character in the word. This character is not allowed in CASL2. "
       "Remove off the 2-byte character. A 1-byte space is allowed in CASL2.  \n",
       {"F93C6677 atStr=label"},
       "エラー： 2 行目：  \"Aあ\" :  の中に全角の文字がある。 CASL2では全角の文字は使えない。 CASL2では半角の空白を使う。\n"},
      {[] { AnalystZenKMoziW(u"ABC\uFF71", 0, u"label"); return 0; }, 0, 0, 0, "", {}},  // 1-byte katakana
      // AnalystNW: GR8 in words only; GR10 passes; 9a hits twice; zero-ended.
      {[] { return AnalystNW(u"GR8", 0); }, 1, 0, 0,
       "Error : line 1: The comet2 has eight general registers of GR0-GR7. Neither GR8 nor GR9 is a general register of "
       "comet2. \n", {},
       "エラー： 1 行目：  レジスタは GR0-GR7 の8個だけです。 GR8-GR9 は無いので使えない。 \n"},
      {[] { return AnalystNW(u"GR10", 0); }, 0, 0, 0, "", {}},
      {[] { return AnalystNW(u"9a", 4); }, 2, 2, 0,
       "Error : line 5: The first character must be a letter. A numerical is not allowed to be used as the 1st letter of "
       "a label of 9a. \nError : line 5: 9a: There is a small letter in it. It cannot be used in casl2.\n", {},
       "エラー： 5 行目： 9a レジスタ名（やラベル）の先頭文字に数字は使えない。\nエラー： 5 行目： 9a 小文字がある。 小文字は "
       "CASL2 では使えない。\n"},
      {[] { return AnalystNW(std::u16string(u"ab\0X", 4), 0); }, 1, 1, 0,
       "Error : line 1: ab: There is a small letter in it. It cannot be used in casl2.\n", {},
       "エラー： 1 行目： ab 小文字がある。 小文字は CASL2 では使えない。\n"},
  });
  Fresh();
  longLines();
  TakeOutLabelStrNW(0);
  EXPECT_EQ(L(1).oprndComStr.size(), 226u);
  EXPECT_EQ(L(1).oprndComChH.size(), 225u);
}

}  // namespace
