// The run of the machine: the cycle, the instruction handlers and every stop
// with its sentences.
//
// The loop keeps the machine's hot state (PR, the registers, the flags, SP)
// in locals and writes it back to the machine before any service that reads
// it and when the run ends. Instructions are decoded through kDecode, the one
// instruction table of the system.
//
// The loop is a template on the limits it checks in every cycle (the ceiling
// of PR and of the addresses read, and the address from which an indexed ST
// asks its guard), so that each variant of the run compiles them as
// constants; whatever else differs between the variants is read once per run
// or only by the stop texts, from kVariants below.
#include <algorithm>
#include <cmath>
#include <string>

#include "codegen/instr_table.h"
#include "comet2/run.h"
#include "records/console.h"
#include "records/records.h"
#include "records/singletons.h"
#include "records/text.h"
#include "reports/TimeVcl/time_vcl.h"

int bootShown[kRunVariants] = {-99, -99, -99};

namespace {

constexpr int32_t kPrTop = 65535;        // PR above this ends the run quietly
constexpr int kExecCountCleared = 65000;  // counts cleared at the start of a Wide run
constexpr int kExecCountScanned = 65035;  // counts the statistics scan

// The figures of one variant of the run.
struct VariantFigures {
  int32_t ceiling;    // PR above this stops; a load above this stops
  int32_t storeStop;  // an indexed ST at or above this asks the guard, which stops it
  int (*storeGuard)(Tcomet2&, int32_t);
  bool reserveOfMachine;  // the reserved size is mc.tMaxMemory, not b->MaxMemory
  bool clearsCounts;      // the first kExecCountCleared counts cleared at the start
  // The PR stop: its numbers (the Japanese one, the two English ones) and its
  // openings.
  int prLimitJ, prLimitE, prMemoriesE;
  const char* prOpeningJ;
  const char* prOpeningE;
};

// clang-format off
constexpr VariantFigures kVariants[kRunVariants] = {
  // ceiling storeStop guard   tMax   clear  PR stop numbers
  {65000,   65000,    st511NW, false, true,  64700, 64500, 64000,   // Wide
   "実行時エラー：実行途中停止！\n", "Runtime Error: The comet2 is terminated！\n"},
  {65000,   65000,    st511NW, false, false, 64700, 64500, 64000,   // Narrow
   "--> 中止！\n", "Runtime Error: The comet2 is terminated！\n"},
  {3500,    3499,     st511,   true,  false, 3200,  3200,  3200,    // Fixed
   "--> 中止！\n", "--> The comet2 is terminated！\n"},
};
// clang-format on
constexpr int Ix(RunVariant v) { return static_cast<int>(v); }
static_assert(Ix(RunVariant::Wide) == 0 && Ix(RunVariant::Narrow) == 1 && Ix(RunVariant::Fixed) == 2,
              "kVariants and bootShown are indexed by the variant");

// How a run ended.
enum class Stop : uint8_t {
  Quiet,         // PR passed 65535 after a wide jump
  PrStop,        // PR above the ceiling
  Register,      // a register nibble above 7
  Nop,           // code #00 in a cell that is not 0
  Unknown,       // a code outside the instruction table
  Load,          // an operand address above the ceiling
  Store,         // the guard refused an indexed ST
  Ret,           // RET at the top level
  Exit,          // the EXIT word #8800
  RetError,      // ret581 found SP at #10000 or above
  StackStorage,  // POP, CALL or RET reached beyond the stack's storage
  StoreStorage,  // ST without an index named a cell beyond Memory's storage
};

bool IsJ(const Tcomet2& mc) { return mc.dispLang == 0; }

// Four upper-case hex digits of the low 16 bits, without "#".
std::string HexDigits(uint32_t v) { return Hex4(v).substr(1); }

// Upper-case hex of the whole value, at least four digits, without "#".
std::string HexWide(uint32_t v) {
  static const char kDigits[] = "0123456789ABCDEF";
  std::string s;
  do {
    s.insert(s.begin(), kDigits[v & 0xF]);
    v >>= 4;
  } while (v != 0);
  while (s.size() < 4) s.insert(s.begin(), '0');
  return s;
}

inline int32_t Sext16(uint32_t v) { return static_cast<int32_t>(static_cast<int16_t>(v & 0xFFFFu)); }

// The register pre-check: true when a nibble above 7 stops the run for this
// word. Called only when r or x is above 7.
bool RegisterStops(uint32_t w) {
  const uint32_t r = (w >> 4) & 0xF;
  const uint32_t x = w & 0xF;
  switch (kDecode[(w >> 8) & 0xFF].exec) {
    case OpExec::Nop:
    case OpExec::Ret:
      return false;
    case OpExec::Push:
    case OpExec::Call:
    case OpExec::Svc:
    case OpExec::Jmi:
    case OpExec::Jnz:
    case OpExec::Jze:
    case OpExec::Jump:
    case OpExec::Jpl:
    case OpExec::Jov:
      return x > 7;
    case OpExec::Pop:
      return r > 7;
    default:
      return true;
  }
}

// ---- the opening and the ending -----------------------------------------

void SayOpening(const Tcomet2& mc, RunVariant variant) {
  if (IsJ(mc)) {
    con::out << "\n演算実行 開始、しばらくお待ちください。\n"
             << "COMET2 実行中 ";
    return;
  }
  int& shown = bootShown[Ix(variant)];
  if (shown == -99) {
    con::out << "\nA small OS has been implemented in drillasm. " << con::endl
             << "The OS starts booting comet2.\n";
    ++shown;
  }
  con::out << "The comet2 starts running, please wait for a moment ...,\n";
}

void SayTimeLine(const Tcomet2& mc) {
  con::out << timeVcl->DetTimeDiff_GeneralW("RunTime") << (IsJ(mc) ? " 実行時間 " : ". ");
}

void EndNormally(const Tcomet2& mc) {
  timeVcl->stampRunEnd();
  if (IsJ(mc)) {
    con::out << "--> 終了\n";
  } else {
    con::out << "and it has come to an end of the program\n"
             << "in ";
  }
  SayTimeLine(mc);
}

// ---- the stops ----------------------------------------------------------

void SayPrStop(const Tcomet2& mc, const VariantFigures& v) {
  const int32_t pr = mc.PR;
  if (IsJ(mc)) {
    con::out << v.prOpeningJ
             << "プログラムレジスター(PR)が この COMET2 シミレーター の "
             << "最大メモリー " << v.prLimitJ << " 番地を超えました。 "
             << "さらに、最大アドレスを超えてメモリにアクセスしようとしたので"
             << "実行を中止しました。  "
             << "本来の COMET2 では もちろん "
             << "PR = 65535 までアクセス可能ですが、Drill Asm では制限を設けています。"
             << "プログラムを工夫修正してご利用ください。 "
             << "PR = #" << HexDigits(pr) << " = " << pr << "（十進数）番地 Run. "
             << "おそらく、プログラムの定義域を飛び出して、メモリ後半にある "
             << "NOP=#0000 の連続部分が実行されたものと考えられます。";
  } else {
    con::out << v.prOpeningE
             << "Because the Program Register(PR) has exceeded the maximum memory address "
             << "of " << v.prLimitE << ". "
             << "Your program cannnot access any address over there. "
             << "It might haved executed a lot of opcodes in vain "
             << "in the higher address area. "
             << "The comet2 has 65536 words in memory in truth. "
             << "But this simulator has only " << v.prMemoriesE << " memories for the sake of simplicity. "
             << "PR = #" << HexDigits(pr) << " = " << pr << "(dec) " << con::endl;
  }
}

void SayRegisterStop(const Tcomet2& mc, int32_t w) {
  const int32_t pr = mc.PR;
  if (IsJ(mc)) {
    con::out << "実行時エラー：実行途中停止" << con::endl
             << "機械語命令が GR0-GR7 以外のレジスターを指定している。 "
             << "あるいは、機械語命令が実行中に変更された。 "
             << "命令コード #" << HexDigits(w) << " を実行しようとしたのでCOMET2を停止させました。 "
             << "Program Register(PR)=#" << HexDigits(pr) << "= " << pr << " （十進数）番地  ";
  } else {
    con::out << "Runtime Error: The comet2 is terminated! "
             << "There is a machine code to specify "
             << "a non-general register excluding GR0-GR7. "
             << " Or the instruction code has been rewriten "
             << "during the execution of the comet2. "
             << "The comet2 has been terminated "
             << "because an opcode of #" << HexDigits(w) << " is going to be executed. "
             << "Program Register(PR)=#" << HexDigits(pr) << "= " << pr
             << "(Address in Decimal Number).  ";
  }
}

void SayNopStop(const Tcomet2& mc, int32_t w) {
  if (IsJ(mc)) {
    con::out << "\n実行時エラー：COMET2 を強制終了させました。" << con::endl
             << "ソースコードを見直してください。" << con::endl;
  } else {
    con::out << "\nRuntime Error: Forced Termination of comet2 by OS:" << con::endl;
  }
  con::out << "An unknown error has happened while comet2 is running. "
           << "The comet2 is going to "
           << "execute #" << HexDigits(w) << " at an address of " << mc.PR << " (Dec). "
           << "It is strange. Because NOP machine code is not #" << HexDigits(w)
           << " but #0000. Please check your source code carefully, "
           << "you will find out this main cause in it.\n"
           << con::endl;
}

void SayUnknownCode(const Tcomet2& mc, int32_t w) {
  const int32_t pr = mc.PR;
  if (IsJ(mc)) {
    con::out << "\n実行時エラー： comet2 を強制終了させました。" << con::endl
             << "登録されていない命令コード "
             << "#" << HexDigits(w) << " を実行しようとしたので実行を中止しました。" << con::endl
             << "Program Register(pr)=#" << HexDigits(pr) << "=dec" << pr << con::endl
             << " An unknown error has happened in Tcomet2::Run(). ";
  } else {
    con::out << "\nRuntime Error: "
             << "The comet2 has been terminated by OS.  "
             << "Because a non-registered machine code of "
             << "#" << HexDigits(w) << " is going to be executed.  "
             << "Program Register(pr)=#" << HexDigits(pr) << "=dec" << pr << " " << con::endl
             << "An unknown error has happened in Tcomet2::Run(). ";
  }
}

// PR stands at the instruction's second word.
void SayLoadStop(const Tcomet2& mc) {
  const int32_t p1 = mc.PR - 1;
  const int32_t p2 = mc.PR;
  const int32_t w1 = mc.Memory[p1];
  const int32_t w2 = mc.Memory[p2];
  if (IsJ(mc)) {
    con::out << "\n実行時エラー：途中中止：  tMaxMemory を超えてロードしようとしたので"
             << "実行を中止しました。 " << con::endl
             << "PR=" << p1 << " 番地の " << "Memory[" << p1 << "]=#" << HexDigits(w1) << "=" << w1
             << "(dec) " << "と " << con::endl
             << "PR=" << p2 << " 番地の " << "Memory[" << p2 << "]=#" << HexDigits(w2) << "=" << w2
             << "(dec)\n"
             << " を実行により発生。 " << con::endl;
  } else {
    con::out << "\nRuntime Error: --> OS: Forced Termination of the comet2.  "
             << "The virtual OS has detected that the comet2 "
             << "is going to access a memory beyond tMaxMemory. " << con::endl
             << "PR=" << p1 << " (address), " << "Memory[" << p1 << "]=#" << HexDigits(w1) << "="
             << w1 << "(dec) and " << con::endl
             << "PR=" << p2 << " (address), " << "Memory[" << p2 << "]=#" << HexDigits(w2) << "="
             << w2 << "(dec) " << con::endl;
  }
  const int32_t named = w2 & 0xFFFF;
  const int32_t v = mc.Memory[named];
  con::out << "Memory[" << named << "]=#" << HexDigits(v) << "=" << v << "(dec). " << con::endl;
}

void SayRetError(const Tcomet2& mc) {
  con::out << "SP=#" << HexWide(static_cast<uint32_t>(mc.SP)) << " "
           << "An unknown error has happened "
           << "in Tcomet2::ret581(), ret681. ";
}

// The simulator's own stop: POP, CALL or RET reached a stack cell beyond the
// storage behind the stack. `p` is the instruction's address.
void SayStackStorageStop(const Tcomet2& mc, int32_t p) {
  if (IsJ(mc)) {
    con::out << "\n実行時エラー：実行途中停止！" << con::endl
             << "スタックポインター(SP)がこのシミレーターのスタック領域（" << kStackCells
             << " 語）の外側を指したので実行を中止しました。 "
             << "CALL が深すぎるか、PUSH していないデータを POP しています。" << con::endl
             << "#" << HexDigits(p) << " = " << p << " （10進数）番地の命令の実行時に発生。 "
             << "SP=#" << HexWide(static_cast<uint32_t>(mc.SP)) << con::endl;
  } else {
    con::out << "\nRuntime Error: The comet2 is terminated! " << con::endl
             << "The Stack Pointer(SP) has left the stack area of this simulator ("
             << kStackCells << " words). "
             << "Calls may be nested too deeply, or data is popped that was never pushed. " << con::endl
             << "It has happened when an opcode at address of #" << HexDigits(p) << " (" << p
             << "(dec)) is executed. "
             << "SP=#" << HexWide(static_cast<uint32_t>(mc.SP)) << con::endl;
  }
}

// The simulator's own stop: ST without an index named a cell that lies
// outside the storage of Memory. PR stands at the ST's second word.
void SayStoreStorageStop(const Tcomet2& mc, int32_t adr) {
  const int32_t p = mc.PR - 1;
  if (IsJ(mc)) {
    con::out << "\n実行時エラー：実行途中停止！" << con::endl
             << "#" << HexDigits(p) << " = " << p << " （10進数）番地の ST 命令のアドレス " << adr
             << " （10進数）は COMET2 のメモリーの外側なので、実行を中止しました。" << con::endl;
  } else {
    con::out << "\nRuntime Error: The comet2 is terminated! " << con::endl
             << "The ST at #" << HexDigits(p) << " (" << p << "(dec)) was going to store a data "
             << "at " << adr << "(dec), which lies outside the memory of the comet2." << con::endl;
  }
}

}  // namespace

void RunStatistics(Tcomet2& mc) {
  int32_t mx = 0;
  for (int a = 0; a < kExecCountScanned; ++a) mx = std::max(mx, mc.execCount[a]);
  mc.maxExecCount = mx;
  mc.execCountLog = mx > 0 ? static_cast<int32_t>(std::lround(std::log10(static_cast<double>(mx)))) : 0;
}

// The handlers test the register form by bit 2 of the code: the table keeps
// the register forms of the two-form instructions exactly there.
constexpr bool RegisterFormBitHolds() {
  for (const InstrForm& f : kInstrTable) {
    switch (f.exec) {
      case OpExec::Ld: case OpExec::Adda: case OpExec::Suba: case OpExec::Addl: case OpExec::Subl:
      case OpExec::And: case OpExec::Or: case OpExec::Xor: case OpExec::Cpa: case OpExec::Cpl:
        if (((f.code & 0x04) != 0) != (f.form == OpForm::R1R2)) return false;
        break;
      default:
        break;
    }
  }
  return true;
}
static_assert(RegisterFormBitHolds(), "register forms must have bit 2 of the code set");

namespace {

// Every handler ends in a dispatch of its own (one indirect jump per handler,
// which the branch predictor tells apart by where it stands). Left alone, GCC
// merges the identical tails of the handlers into one shared jump when the
// loop is instantiated twice, and the run gets a quarter slower: this file is
// built with -fno-crossjumping (CMakeLists.txt).

// How the loop ended: the stop, the word at PR and the address that a stop
// of the simulator's own names.
struct LoopEnd {
  Stop stop;
  uint32_t w;
  int32_t stopAdr;
};

// The cycles of a run, from PR 0 until a stop, with the limits of its variant
// as constants: an address above kCeiling is the PR stop or the load stop, an
// indexed ST at or above kStoreStop, or at or above maxMemory for the first
// time in the run, goes to kStoreGuard. The machine holds the hot state when
// it returns.
template <int32_t kCeiling, int32_t kStoreStop, int (*kStoreGuard)(Tcomet2&, int32_t)>
LoopEnd RunLoop(Tcomet2& mc, const int32_t maxMemory) {
  // The handler of each kind of instruction, by the decode table's kind.
  void* handler[static_cast<int>(OpExec::Exit) + 1];
  for (void*& h : handler) h = &&h_unknown;
  handler[static_cast<int>(OpExec::Nop)] = &&h_nop;
  handler[static_cast<int>(OpExec::Ld)] = &&h_ld;
  handler[static_cast<int>(OpExec::St)] = &&h_st;
  handler[static_cast<int>(OpExec::Lad)] = &&h_lad;
  handler[static_cast<int>(OpExec::Adda)] = &&h_adda;
  handler[static_cast<int>(OpExec::Suba)] = &&h_suba;
  handler[static_cast<int>(OpExec::Addl)] = &&h_addl;
  handler[static_cast<int>(OpExec::Subl)] = &&h_subl;
  handler[static_cast<int>(OpExec::And)] = &&h_and;
  handler[static_cast<int>(OpExec::Or)] = &&h_or;
  handler[static_cast<int>(OpExec::Xor)] = &&h_xor;
  handler[static_cast<int>(OpExec::Cpa)] = &&h_cpa;
  handler[static_cast<int>(OpExec::Cpl)] = &&h_cpl;
  handler[static_cast<int>(OpExec::Sla)] = &&h_sla;
  handler[static_cast<int>(OpExec::Sra)] = &&h_sra;
  handler[static_cast<int>(OpExec::Sll)] = &&h_sll;
  handler[static_cast<int>(OpExec::Srl)] = &&h_srl;
  handler[static_cast<int>(OpExec::Jmi)] = &&h_jmi;
  handler[static_cast<int>(OpExec::Jnz)] = &&h_jnz;
  handler[static_cast<int>(OpExec::Jze)] = &&h_jze;
  handler[static_cast<int>(OpExec::Jump)] = &&h_jump;
  handler[static_cast<int>(OpExec::Jpl)] = &&h_jpl;
  handler[static_cast<int>(OpExec::Jov)] = &&h_jov;
  handler[static_cast<int>(OpExec::Push)] = &&h_push;
  handler[static_cast<int>(OpExec::Pop)] = &&h_pop;
  handler[static_cast<int>(OpExec::Call)] = &&h_call;
  handler[static_cast<int>(OpExec::Ret)] = &&h_ret;
  handler[static_cast<int>(OpExec::Svc)] = &&h_svc;
  handler[static_cast<int>(OpExec::Exit)] = &&h_exit;
  // The handler of each code, so that a cycle finds it with one load.
  void* byCode[256];
  for (int c = 0; c < 256; ++c) byCode[c] = handler[static_cast<uint8_t>(kDecode[c].exec)];

  // Hot state in locals; written back by Save(). The sign and zero flags
  // live in one value `fv`: Fsign is fv < 0, Fzero is fv == 0 (no
  // instruction sets both flags at once).
  int32_t* const mem = mc.Memory.data();
  int32_t* const cnt = mc.execCount.data();
  int32_t* const stk = mc.stackArea.data();
  int32_t gr[8];
  for (int i = 0; i < 8; ++i) gr[i] = mc.GR[i];
  uint64_t pr = 0;  // a PR from a stack cell below 0 becomes huge here
  uint32_t w = 0;
  uint32_t sp = static_cast<uint32_t>(mc.SP);
  uint32_t ea = 0;
  int32_t depth = mc.callDepth;
  int32_t fovf = mc.Fovf;
  int32_t fv = mc.Fzero == 1 ? 0 : mc.Fsign == 1 ? -1 : 1;
  bool storeWarned = false;  // the out-of-range warning of ST, once per run
  int32_t stopAdr = 0;       // the address that a stop of the simulator's own names
  Stop stop = Stop::Quiet;

  // Inlined at every call, or the locals it reads would have to live in
  // memory for the whole run.
  auto Save = [&]() __attribute__((always_inline)) {
    for (int i = 0; i < 8; ++i) mc.GR[i] = gr[i];
    mc.PR = static_cast<int32_t>(pr);
    mc.SP = static_cast<int32_t>(sp);
    mc.effAdr = static_cast<int32_t>(ea);
    mc.callDepth = depth;
    mc.Fovf = fovf;
    mc.Fsign = fv < 0 ? 1 : 0;
    mc.Fzero = fv == 0 ? 1 : 0;
  };

// One cycle: the PR checks, the word, the register pre-check, the count and
// the jump to the handler of the word's kind.
#define NEXT()                                                                  \
  do {                                                                          \
    if (pr > static_cast<uint64_t>(kCeiling)) goto pr_out;                      \
    w = static_cast<uint32_t>(mem[pr]);                                         \
    if (w & 0x88u) goto pre_check;                                              \
    cnt[pr] = static_cast<int32_t>(static_cast<uint32_t>(cnt[pr]) + 1u);        \
    goto* byCode[(w >> 8) & 0xFFu];                                             \
  } while (0)
#define R_ (((w) >> 4) & 7u)
#define X_ ((w) & 7u)
// The effective address: u16(A) + u16(GR[x]) with the carry dropped; x 0
// adds nothing.
#define EFF_ADR() \
  ((static_cast<uint32_t>(mem[pr + 1]) + (X_ ? static_cast<uint32_t>(gr[X_]) : 0u)) & 0xFFFFu)
// The wide sum of JMI, JZE and JPL: the same without the wrap.
#define WIDE_SUM() \
  ((static_cast<uint32_t>(mem[pr + 1]) & 0xFFFFu) + (X_ ? (static_cast<uint32_t>(gr[X_]) & 0xFFFFu) : 0u))
// The operand of an instruction that reads memory or, in the register form,
// GR[x]. Moves PR to the next instruction; an address above the ceiling is the
// load stop, with PR at the second word.
#define FETCH_OPERAND(op)                          \
  int32_t op;                                      \
  if (w & 0x400u) {                                \
    op = gr[X_];                                   \
    pr += 1;                                       \
  } else {                                         \
    ea = EFF_ADR();                                \
    if (ea > static_cast<uint32_t>(kCeiling)) {    \
      pr += 1;                                     \
      goto load_stop;                              \
    }                                              \
    op = mem[ea];                                  \
    pr += 2;                                       \
  }

  NEXT();

pre_check:
  if (RegisterStops(w)) goto register_stop;
  cnt[pr] = static_cast<int32_t>(static_cast<uint32_t>(cnt[pr]) + 1u);
  goto* byCode[(w >> 8) & 0xFFu];

h_nop:
  if (w != 0) goto nop_stop;  // the whole cell must be 0
  pr += 1;
  NEXT();

h_ld: {
  FETCH_OPERAND(op);
  gr[R_] = fv = Sext16(static_cast<uint32_t>(op));
  fovf = 0;
  NEXT();
}

h_st: {
  const int32_t a = mem[pr + 1];
  if (X_ == 0) {
    // The whole cell is the address: no bound, no effAdr, no warning.
    if (static_cast<uint32_t>(a) >= static_cast<uint32_t>(kMemoryCells)) {
      pr += 1;
      stopAdr = a;
      goto store_storage;
    }
    mem[a] = gr[R_];
  } else {
    ea = EFF_ADR();
    if (ea >= static_cast<uint32_t>(kStoreStop) || (static_cast<int32_t>(ea) >= maxMemory && !storeWarned)) {
      Save();
      mc.PR = static_cast<int32_t>(pr + 1);
      if (ea < static_cast<uint32_t>(kStoreStop)) storeWarned = true;
      if (kStoreGuard(mc, static_cast<int32_t>(ea)) == 999) {
        pr += 1;
        goto store_stop;
      }
    }
    mem[ea] = gr[R_];
  }
  pr += 2;
  NEXT();
}

h_lad:
  gr[R_] = static_cast<int32_t>(EFF_ADR());  // no flags, no effAdr
  pr += 2;
  NEXT();

h_adda: {
  FETCH_OPERAND(op);
  const int32_t t = Sext16(static_cast<uint32_t>(gr[R_])) + Sext16(static_cast<uint32_t>(op));
  gr[R_] = fv = Sext16(static_cast<uint32_t>(t));
  fovf = fv != t ? 1 : 0;
  NEXT();
}

h_suba: {
  FETCH_OPERAND(op);
  const int32_t t = Sext16(static_cast<uint32_t>(gr[R_])) - Sext16(static_cast<uint32_t>(op));
  gr[R_] = fv = Sext16(static_cast<uint32_t>(t));
  fovf = fv != t ? 1 : 0;
  NEXT();
}

h_addl: {
  FETCH_OPERAND(op);
  const uint32_t t = (static_cast<uint32_t>(gr[R_]) & 0xFFFFu) + (static_cast<uint32_t>(op) & 0xFFFFu);
  gr[R_] = static_cast<int32_t>(t & 0xFFFFu);
  fv = Sext16(t);
  fovf = t > 0xFFFFu ? 1 : 0;
  NEXT();
}

h_subl: {
  FETCH_OPERAND(op);
  const uint32_t t = (static_cast<uint32_t>(gr[R_]) & 0xFFFFu) - (static_cast<uint32_t>(op) & 0xFFFFu);
  gr[R_] = static_cast<int32_t>(t & 0xFFFFu);
  fv = Sext16(t);
  fovf = t > 0xFFFFu ? 1 : 0;  // the difference was below 0
  NEXT();
}

h_and: {
  FETCH_OPERAND(op);
  gr[R_] &= op;  // on the full cells
  fv = Sext16(static_cast<uint32_t>(gr[R_]));
  fovf = 0;
  NEXT();
}

h_or: {
  FETCH_OPERAND(op);
  gr[R_] |= op;
  fv = Sext16(static_cast<uint32_t>(gr[R_]));
  fovf = 0;
  NEXT();
}

h_xor: {
  FETCH_OPERAND(op);
  gr[R_] ^= op;
  fv = Sext16(static_cast<uint32_t>(gr[R_]));
  fovf = 0;
  NEXT();
}

h_cpa: {
  const bool regForm = (w & 0x400u) != 0;
  FETCH_OPERAND(op);
  const int32_t lhs = Sext16(static_cast<uint32_t>(gr[R_]));
  const int32_t rhs = Sext16(static_cast<uint32_t>(op));
  fv = lhs - rhs;  // less: Fsign; equal: Fzero
  fovf = 0;
  if (regForm) mc.cmpResult = lhs > rhs ? 0 : lhs == rhs ? 1 : 2;
  NEXT();
}

h_cpl: {
  FETCH_OPERAND(op);
  fv = (gr[R_] & 0xFFFF) - (op & 0xFFFF);
  fovf = 0;
  NEXT();
}

h_sla: {
  // The sign bit stays out of the shift; Fzero is taken from the raw value
  // before bit 15 is cleared.
  ea = EFF_ADR();
  const uint32_t n = ea > 15u ? 16u : ea;
  const uint32_t old = static_cast<uint32_t>(gr[R_]) & 0xFFFFu;
  const uint32_t bit15 = old & 0x8000u;
  const uint32_t raw = ((old << n) & 0xFFFFu) | bit15;
  gr[R_] = bit15 ? Sext16(raw) : static_cast<int32_t>(raw & 0x7FFFu);
  fovf = (n >= 1 && n <= 15) ? static_cast<int32_t>((old >> (15 - n)) & 1u) : 0;
  fv = bit15 ? -1 : raw != 0 ? 1 : 0;  // Fsign is the old bit 15, Fzero from raw
  pr += 2;
  NEXT();
}

h_sra: {
  ea = EFF_ADR();
  const uint32_t n = ea > 15u ? 16u : ea;
  const uint32_t old = static_cast<uint32_t>(gr[R_]) & 0xFFFFu;
  gr[R_] = fv = Sext16(old) >> n;  // arithmetic: n 16 gives 0 or -1
  fovf = n >= 1 ? static_cast<int32_t>((old >> (n - 1)) & 1u) : 0;
  pr += 2;
  NEXT();
}

h_sll: {
  ea = EFF_ADR();
  if (ea > 16u) {
    gr[R_] = 0;
    fovf = 0;
    fv = 0;
  } else {
    const uint32_t old = static_cast<uint32_t>(gr[R_]) & 0xFFFFu;
    const uint32_t v = (old << ea) & 0xFFFFu;
    gr[R_] = static_cast<int32_t>(v);
    fv = Sext16(v);
    fovf = ea >= 1 ? static_cast<int32_t>((old >> (16 - ea)) & 1u) : 0;
  }
  pr += 2;
  NEXT();
}

h_srl: {
  ea = EFF_ADR();
  if (ea > 16u) {
    gr[R_] = 0;
    fovf = 0;
    fv = 0;
  } else {
    const uint32_t old = static_cast<uint32_t>(gr[R_]) & 0xFFFFu;
    gr[R_] = fv = Sext16(old >> ea);  // sign-extended from 16 bits
    fovf = ea >= 1 ? static_cast<int32_t>((old >> (ea - 1)) & 1u) : 0;
  }
  pr += 2;
  NEXT();
}

h_jmi:
  ea = EFF_ADR();
  pr = fv < 0 ? WIDE_SUM() : pr + 2;
  NEXT();

h_jnz:
  ea = EFF_ADR();
  pr = fv != 0 ? ea : pr + 2;
  NEXT();

h_jze:
  ea = EFF_ADR();
  pr = fv == 0 ? WIDE_SUM() : pr + 2;
  NEXT();

h_jump:
  ea = EFF_ADR();
  pr = ea;
  NEXT();

h_jpl:
  ea = EFF_ADR();
  pr = fv > 0 ? WIDE_SUM() : pr + 2;
  NEXT();

h_jov:
  ea = EFF_ADR();
  pr = fovf == 1 ? ea : pr + 2;
  NEXT();

h_push:
  ea = EFF_ADR();
  mc.SP = static_cast<int32_t>(sp);
  mc.PR = static_cast<int32_t>(pr + 1);
  stackPush(mc, static_cast<int32_t>(ea));  // a refusal is told and the run goes on
  sp = static_cast<uint32_t>(mc.SP);
  pr += 2;
  NEXT();

h_pop: {
  // No check for an empty stack; only the storage behind it is guarded.
  const uint32_t i = 65535u - sp;
  if (i >= static_cast<uint32_t>(kStackCells)) {
    stopAdr = static_cast<int32_t>(pr);
    goto stack_storage;
  }
  gr[R_] = stk[i];
  sp += 1;
  pr += 1;
  NEXT();
}

h_call: {
  // No check against the stack limit; only the storage is guarded.
  ea = EFF_ADR();
  const uint32_t i = 65535u - (sp - 1u);
  if (i >= static_cast<uint32_t>(kStackCells)) {
    stopAdr = static_cast<int32_t>(pr);
    goto stack_storage;
  }
  depth += 1;
  sp -= 1;
  stk[i] = static_cast<int32_t>(pr + 2);
  pr = ea;
  NEXT();
}

h_ret: {
  if (depth == 0) {
    stop = Stop::Ret;  // PR stays at the RET
    goto done;
  }
  if (depth < 0) {
    // CALL and RET alone change the depth, so this cannot happen; the depth
    // is set right and the same RET then ends the run.
    con::out << "An unknown error has happened at RET in Run. " << "OS is negative. B359DD93";
    depth = 0;
    NEXT();
  }
  depth -= 1;
  // ret581
  if (sp >= 0x10000u) {
    stop = Stop::RetError;
    goto done;
  }
  const uint32_t i = 65535u - sp;
  if (i >= static_cast<uint32_t>(kStackCells)) {
    stopAdr = static_cast<int32_t>(pr);
    goto stack_storage;
  }
  pr = static_cast<uint64_t>(static_cast<int64_t>(stk[i]));
  sp += 1;
  NEXT();
}

h_svc:
  ea = EFF_ADR();
  Save();
  svcService(mc, static_cast<int32_t>(ea));
  pr += 2;
  NEXT();

h_exit:
  stop = Stop::Exit;  // PR stays at the word
  goto done;

h_unknown:
  stop = Stop::Unknown;
  goto done;

pr_out:
  stop = static_cast<int64_t>(pr) > kPrTop ? Stop::Quiet : Stop::PrStop;
  goto done;
register_stop:
  stop = Stop::Register;
  goto done;
nop_stop:
  stop = Stop::Nop;
  goto done;
load_stop:
  stop = Stop::Load;
  goto done;
store_stop:
  stop = Stop::Store;
  goto done;
store_storage:
  stop = Stop::StoreStorage;
  goto done;
stack_storage:
  stop = Stop::StackStorage;
  goto done;

#undef NEXT
#undef R_
#undef X_
#undef EFF_ADR
#undef WIDE_SUM
#undef FETCH_OPERAND
done:
  Save();
  return {stop, w, stopAdr};
}

}  // namespace

int RunComet2(Tcomet2& mc, RunVariant variant) {
  const VariantFigures& fig = kVariants[Ix(variant)];
  SayOpening(mc, variant);
  mc.effAdr = 0;
  mc.PR = 0;
  if (fig.clearsCounts) std::fill_n(mc.execCount.data(), kExecCountCleared, 0);
  mc.maxExecCount = 0;
  timeVcl->stampRunStart();

  constexpr VariantFigures kWide = kVariants[Ix(RunVariant::Wide)];
  constexpr VariantFigures kNarrow = kVariants[Ix(RunVariant::Narrow)];
  constexpr VariantFigures kFixed = kVariants[Ix(RunVariant::Fixed)];
  static_assert(kNarrow.ceiling == kWide.ceiling && kNarrow.storeStop == kWide.storeStop &&
                    kNarrow.storeGuard == kWide.storeGuard,
                "the Narrow run shares the loop of the Wide run");
  const int32_t maxMemory = fig.reserveOfMachine ? mc.tMaxMemory : b->MaxMemory;
  const auto [stop, w, stopAdr] =
      variant == RunVariant::Fixed ? RunLoop<kFixed.ceiling, kFixed.storeStop, kFixed.storeGuard>(mc, maxMemory)
                                   : RunLoop<kWide.ceiling, kWide.storeStop, kWide.storeGuard>(mc, maxMemory);

  switch (stop) {
    case Stop::Unknown:
      SayUnknownCode(mc, static_cast<int32_t>(w));
      return 0;  // no stamp, no ending, no time line
    case Stop::Load:
      timeVcl->stampRunEnd();
      SayLoadStop(mc);
      SayTimeLine(mc);
      return 0;
    case Stop::PrStop:
      SayPrStop(mc, fig);
      break;
    case Stop::Register:
      SayRegisterStop(mc, static_cast<int32_t>(w));
      break;
    case Stop::Nop:
      SayNopStop(mc, static_cast<int32_t>(w));
      break;
    case Stop::RetError:
      SayRetError(mc);
      break;
    case Stop::StackStorage:
      SayStackStorageStop(mc, stopAdr);
      break;
    case Stop::StoreStorage:
      SayStoreStorageStop(mc, stopAdr);
      break;
    case Stop::Quiet:
    case Stop::Store:
    case Stop::Ret:
    case Stop::Exit:
      break;
  }
  EndNormally(mc);
  return 0;
}

int Run3NW(Tcomet2& mc) { return RunComet2(mc, RunVariant::Wide); }
