// The rules of the machine instructions: each checks the operand forms of
// its line, composes first_word from the instruction table and sets
// word_kazu and oprndCount. Address operands are only shaped here; they are
// resolved in the address pass.
#include <array>

#include "codegen/instr_table.h"
#include "operands/adr_const.h"
#include "operands/instr_codes.h"
#include "operands/operands.h"
#include "operands/rules_util.h"
#include "records/console.h"

using rules::At;
using rules::L;
using rules::SayJE;
using rules::StartsGR;

namespace {

struct FamilyRow {
  wview m, nameJ, nameE, msgJ, msgE;
};

// The register instructions with their names and the message for a missing
// second operand.
const std::array<FamilyRow, 16> kFamily{{
    {u"LD", u"", u"LoaD", u"ロード LD 元を示すレジスター名又はアドレス定数（ラベル）が必要。",
     u"The 2nd operand of LD should be either an address constant(label) or GR0-GR7. "},
    {u"ST", u"ストア格納命令", u"STore", u"ストア ST 先を示す記述が必要。",
     u"The 2nd operand is expected for the ST instruction. "},
    {u"LAD", u"ロードアドレス命令", u"Load ADdress", u"LAD するアドレスを示す記述が必要。",
     u"The 2nd operand of LAD is expected. "},
    {u"ADDA", u"算術加算", u"ADD Arithmetic", u"算術加算 ADDA 元を示すレジスター名又はアドレス名（ラベル）が必要。",
     u"ADDA Add Arithmetic: Either a general register or a label is expected as the 2nd operand. "},
    {u"ADDL", u"論理加算命令", u"ADD Logical", u"論理加算 ADDL 元を示すレジスター名又はアドレス名（ラベル）が必要。",
     u": ADDL Add Logical: Either a general register or a label (an address constant) is expected as the 2nd "
     u"operand. "},
    {u"SUBA", u"算術減算命令語", u"SUBtract Arithmetic",
     u"算術減算命令  SUBA の２番目のオペランドを示すレジスター名又はアドレス名（ラベル）が必要。",
     u"SUBA: Either a general register or an address constant is expected as the 2nd operand of the SUBA. "},
    {u"SUBL", u"論理減算命令", u"SUBtract Logical", u"論理減算 SUBL の２番目のレジスター名又はアドレス名（ラベル）が必要。",
     u"Either a general register or an address constant is expected as the 2nd operand of the SUBL. "},
    {u"AND", u"論理積命令", u"", u"論理積 AND の第２オペランドを示すレジスター名又はアドレス名（ラベル）が必要。",
     u"Either GRn or an address constant (or a label) is expected as the 2nd operand of AND. "},
    {u"OR", u"論理和命令", u"", u"論理和命令  OR の右にレジスター名又はアドレス名（ラベル）が必要。",
     u"Either a general register or an address constan is expected as the 2nd operand of OR. "},
    {u"XOR", u"排他的論理和命令", u"eXclusive OR", u"排他的論理和 XOR 元を示すレジスター名又はアドレス名（ラベル）が必要。",
     u"Either a general register or a label is expected as the 2nd operand. "},
    {u"CPA", u"算術比較命令", u"ComPare Arithmetic",
     u"算術比較 CPA の第2オペランドとしてレジスター名又はアドレス名（ラベル）が必要。",
     u"Compare Arithmetic CPA needs the 2nd operand. It is either a general register or an address constant(or a "
     u"label) . "},
    {u"CPL", u"論理比較命令", u"ComPare Logical", u"論理比較 CPL 元を示すレジスター名又はアドレス名（ラベル）が必要。",
     u"An operand is expected at the right side of the CPL.The operand is either a GRn or an address constant or a "
     u"label. "},
    {u"SLA", u"算術左シフト", u"Shift Right Arithmetic", u"算術左シフト ビット数を示すアドレス定数の記述が必要。",
     u"SLA : An address constant is expected as the 2nd operand. It specifies the number of shift-left arithmetic "
     u"conversion. "},
    {u"SRA", u"算術右シフト命令", u"Shift Right Arithmetic", u"算術右シフト 示すアドレスの記述が必要。",
     u"SRA: An address constant is expected as the 2nd operand of the SRA.  It specifies the number of shift-right "
     u"arithmetic conversion. "},
    {u"SLL", u"論理左シフト命令", u"Shift Left Logical", u"論理左シフト  するビット数を示すアドレスの記述が必要。",
     u"An address constant is expected as the 2nd operand of the SLL, which specifies the number of shift-left "
     u"logical conversion. "},
    {u"SRL", u"論理右シフト", u"Shift Left Logical", u"論理右シフト SRL するビット数を示すアドレスの記述が必要。",
     u"SRL : An address constant is expected as the 2nd operand of the SRL, which specifies the number of "
     u"shift-right logical conversion. "},
}};

// The row of each opcode in kFamily, or -1.
constexpr std::array<int8_t, instr_codes::kOps> MakeRowOf() {
  std::array<int8_t, instr_codes::kOps> t{};
  t.fill(-1);
  const Op ops[] = {Op::LD,  Op::ST,  Op::LAD, Op::ADDA, Op::ADDL, Op::SUBA, Op::SUBL, Op::AND,
                    Op::OR,  Op::XOR, Op::CPA, Op::CPL,  Op::SLA,  Op::SRA,  Op::SLL,  Op::SRL};
  for (int k = 0; k < 16; ++k) t[static_cast<int>(ops[k])] = static_cast<int8_t>(k);
  return t;
}
constexpr auto kRowOf = MakeRowOf();

const FamilyRow& Row(wview m) {
  const int k = kRowOf[static_cast<int>(OpOf(m))];
  return kFamily[k < 0 ? 0 : static_cast<size_t>(k)];
}

// The high byte of an instruction form, from the shared instruction table.
int Code(wview m, OpForm form) {
  int code = InstrCodeOf(OpOf(m), form);
  return code < 0 ? 0 : code << 8;
}

// Steps 1 to 4 of every register rule: the first operand into bits 7-4 and
// the message for a missing second operand. Returns 1 when the rule ends.
int FirstRegister(TCorrectScode& c, int line, const FamilyRow& r) {
  SrcLineW& s = L(line);
  s.first_word = 0;
  if (CkOpRegOprndNW(c, line, r.m, r.nameJ, r.nameE) > 0) return 1;
  s.first_word |= (s.oprnd1ChH[2] - u'0') << 4;
  s.oprnd1ChH.resize(3);
  if (s.oprnd2ChH.empty()) SayJE(c, kError, line, {wstr(r.msgJ)}, {wstr(r.msgE)}, "3B7A0E01");
  return 0;
}

// The address form, from step 6 on: the operand in slot 2 and the index.
int AddressForm(TCorrectScode& c, int line, wview m, bool twoForms) {
  SrcLineW& s = L(line);
  if (CkAdrOperandNWCS(c, line, 2) < 0) return 1;
  if (twoForms && s.word_kazu == 1) s.first_word |= Code(m, OpForm::R1R2);
  if (s.word_kazu == 2) s.first_word |= Code(m, OpForm::RAdrX);
  return RegXNWCS(c, line, 3) != 0 ? 1 : 0;
}

// LD, ADDA, ADDL, SUBA, SUBL, AND, OR, XOR, CPA, CPL. LD takes a register as
// second operand only when the slot is exactly three characters long, so
// that GR1X (and GR1 with a comma) is an address operand.
int RegisterFamily(TCorrectScode& c, int line, wview m) {
  const FamilyRow& r = Row(m);
  if (FirstRegister(c, line, r)) return 1;
  SrcLineW& s = L(line);
  const wstr& o2 = s.oprnd2ChH;
  bool isLd = m == u"LD";
  bool reg = StartsGR(o2, u'0', u'7');
  if (isLd && reg && o2.size() != 3) {
    reg = false;
    s.first_word &= ~0xF;
  }
  if (reg) {
    s.first_word |= o2[2] - u'0';
    if (r2NWCS(c, line) != 0) return 1;
    s.word_kazu = 1;
    s.first_word |= Code(m, OpForm::R1R2);
    if (isLd) s.oprndCount = 2;
    return 0;
  }
  return AddressForm(c, line, m, true);
}

// ST, LAD and the shifts: a register as second operand is the form error.
int AddressOnlyFamily(TCorrectScode& c, int line, wview m) {
  const FamilyRow& r = Row(m);
  if (FirstRegister(c, line, r)) return 1;
  SrcLineW& s = L(line);
  const bool isLad = m == u"LAD";
  if (isLad) AnalystGR89NWCS(c, line, m, u"Warning");
  const wstr& o2 = s.oprnd2ChH;
  const char16_t d = At(o2, 3);
  if (StartsGR(o2, u'0', isLad ? u'7' : u'9') && (d == u'\0' || IsBlankW(d))) {
    if (isLad) AnalystGR89NWCS(c, line, m, u"Warning");
    if (m == u"SRA") {
      SayJE(c, kError, line,
            {u": SRA 命令は " + wstr(u"SRA r1,r2 形式をとらない。"), u"Format1: SRA r1,adr", u"Format2: SRA r1,adr,r2"},
            {u"SRA does not take a format of " + wstr(u"SRA r1, r2. "), u"Format1: SRA r1,adr", u"Format2: SRA r1,adr,r2"},
            "51A2F001", QuoteW(o2));
    } else {
      // The shared message counts the error itself, once.
      DspSyntaxErrorMsgWP(c, line, m);
    }
    return 1;
  }
  s.first_word = Code(m, OpForm::RAdrX) | (s.first_word & 0xF0);
  if (CkAdrOperandNWCS(c, line, 2) < 0) return 1;
  return RegXNWCS(c, line, 3) != 0 ? 1 : 0;
}

// The jump family, PUSH, CALL and SVC. `firstCode` is ORed in before the
// address check, `secondCode` after it.
int JumpFamily(TCorrectScode& c, int line, wview m, wview nameJ, wview nameE, int firstCode, int secondCode,
               const char* fault) {
  SrcLineW& s = L(line);
  s.first_word = 0;
  if (CkOpAdrOprndNW(c, line, m, nameJ, nameE) >= 1) return 1;
  s.first_word |= firstCode;
  if (CkAdrOperandNWCS(c, line, 1) < 0) return 1;
  if (s.word_kazu == 2) {
    s.first_word |= secondCode;
  } else {
    con::out << "line=" << (line + 1) << " " << fault << con::endl;
  }
  if (m == u"SVC") {
    SayJE(c, kWarning, line,
          {u" ソースコードに直接 SVC 命令を記述しないでください。" +
           wstr(u"SVC 1 の場合、COMET2 は暴走します。 （将来のバージョンで修正します。）") +
           u"マクロ命令 IN, OUT の中で使われる SVC1, SVC2 については問題はおこりません。" +
           u"COMET2 の仕様に現在のところ SVC の具体的な記述がなく動作は定まっていません。"},
          {u"Do not write SVC 1 in the source code, " + wstr(u"or the comet2 will run out of control. ") +
           u"SVC 1 expanded in Macro IN and OUT instructions does not " + u"cause this problem. " +
           u"There is not any exact definition about SVC " + u"in the casl2 specification at present. "},
          "5F0C0001");
  }
  return RegXNWCS(c, line, 2) != 0 ? 1 : 0;
}

int Jump(TCorrectScode& c, int line, wview m, wview nameJ, wview nameE, const char* fault) {
  int code = Code(m, OpForm::AdrX);
  return JumpFamily(c, line, m, nameJ, nameE, code, code, fault);
}

}  // namespace

int ld2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"LD"); }
int adda2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"ADDA"); }
int addl2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"ADDL"); }
int suba2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"SUBA"); }
int subl2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"SUBL"); }
int and2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"AND"); }
int or2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"OR"); }
int xor2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"XOR"); }
int cpa2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"CPA"); }
int cpl2NWCS(TCorrectScode& c, int line) { return RegisterFamily(c, line, u"CPL"); }

int st2NWCS(TCorrectScode& c, int line) { return AddressOnlyFamily(c, line, u"ST"); }
int lad2NWCS(TCorrectScode& c, int line) { return AddressOnlyFamily(c, line, u"LAD"); }
int sla2NWCS(TCorrectScode& c, int line) { return AddressOnlyFamily(c, line, u"SLA"); }
int sra2NWCS(TCorrectScode& c, int line) { return AddressOnlyFamily(c, line, u"SRA"); }
int sll2NWCS(TCorrectScode& c, int line) { return AddressOnlyFamily(c, line, u"SLL"); }
int srl2NWCS(TCorrectScode& c, int line) { return AddressOnlyFamily(c, line, u"SRL"); }

int jmi2NWCS(TCorrectScode& c, int line) {
  return Jump(c, line, u"JMI", u"負分岐命令", u"Jump on Minus JMI", "some error about word_kazu[i]; !");
}
// JPL ORs in the code of JMI first and its own after the address check,
// which together give its own code.
int jpl2NWCS(TCorrectScode& c, int line) {
  return JumpFamily(c, line, u"JPL", u"正分岐命令", u"Jump on PLus", Code(u"JMI", OpForm::AdrX),
                    Code(u"JPL", OpForm::AdrX), "some error about word_kazu[i]; !");
}
int jnzRuleNWCS(TCorrectScode& c, int line) {
  return Jump(c, line, u"JNZ", u"非ゼロ分岐命令", u"Jump on Non Zero", "some error about word_kazu[i]; !");
}
int jzeRuleNWCS(TCorrectScode& c, int line) {
  return Jump(c, line, u"JZE", u"ゼロ分岐命令", u"Jump on Zero", "some error about word_kazu[i]; in jze1(i).");
}
int jumpRuleNWCS(TCorrectScode& c, int line) {
  return Jump(c, line, u"JUMP", u"無条件分岐命令", u"Unconditional Jump", "some error about word_kazu.");
}
int jovRuleNWCS(TCorrectScode& c, int line) {
  return Jump(c, line, u"JOV", u"オーバフロー分岐命令", u"Jump on OverFlow", "some error about word_kazu[i]; in jze1(i).");
}
int callRuleNWCS(TCorrectScode& c, int line) {
  return Jump(c, line, u"CALL", u"コール", u"CALL subroutine", "some error about word_kazu[i]. ");
}
int push2NWCS(TCorrectScode& c, int line) {
  return Jump(c, line, u"PUSH", u"プッシュ", u"PUSH", "Some error about word_kazu[i]; !");
}
int svc2NWCS(TCorrectScode& c, int line) {
  return Jump(c, line, u"SVC", u"スーパバイザコール命令", u"SuperVisor Call", "some error about word_kazu[i]; !");
}

int pop2NWCS(TCorrectScode& c, int line) {
  SrcLineW& s = L(line);
  s.first_word = Code(u"POP", OpForm::R);
  if (CkOpPopOprndNW(c, line, u"POP") >= 1) return 1;
  s.first_word |= (s.oprnd1ChH[2] - u'0') << 4;
  s.second_word = 0;
  s.oprndCount = 1;
  s.word_kazu = 1;
  s.oprnd1ChH.resize(3);
  s.oprnd2ChH.clear();
  s.oprnd3ChH.clear();
  s.oprnd4ChH.clear();
  return 0;
}

int OpNoOperandNW(TCorrectScode& c, int line, wview oprnd1) {
  SrcLineW& s = L(line);
  if (!oprnd1.empty()) {
    wstr q = QuoteW(s.opStr);
    SayJE(c, kError, line,
          {q + u"オペランドをとらない命令（NOP, RET, END）の右のコメントには" + u"必ず一個の空白とセミコロン（；）が必要。 " +
           u"例： RET ;コメント (仕様２．１の（４）)   "},
          {q + u"NOP, RET, and END do not take any operand. " + u"One space and a comment mark(;) are expected " +
           u"between the instruction code and a comment description. " + u"Good Example: RET ;Comment " +
           u"(Spec. of CASL2 2.1 (4)) "},
          "0C9E4A01", q);
    return 1;
  }
  s.oprnd1ChH.clear();
  s.oprnd2ChH.clear();
  s.oprnd3ChH.clear();
  s.oprnd4ChH.clear();
  s.oprndCount = 0;
  s.word_kazu = 1;
  s.first_word = s.opStr == u"RET" ? Code(u"RET", OpForm::None) : 0;
  s.second_word = 0;
  return 0;
}
