// The run of the machine: the cycle, the instruction handlers and every stop
// with its sentences.
//
// The loop keeps the machine's hot state (PR, the registers, the flags, SP)
// in locals and writes it back to the machine before any service that reads
// it and when the run ends. Instructions are decoded through kDecode, the one
// instruction table of the system, once per address and again only after a
// write into one of their words.
//
// The loop is a template on the limits it checks in every cycle (the ceiling
// of PR and of the addresses read, and the address from which an indexed ST
// asks its guard), so that each variant of the run compiles them as
// constants; whatever else differs between the variants is read once per run
// or only by the stop texts, from kVariants below.
#include <algorithm>
#include <csignal>
#include <functional>
#include <cmath>
#include <iterator>
#include <string>

#include "codegen/instr_table.h"
#include "comet2/control.h"
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
  Paused,        // a controlled run: its budget or its look stopped it between two instructions
  Interrupted,   // a controlled run: an interrupt was asked for
};

// An interrupt asked for by a signal handler, seen by a controlled run.
volatile std::sig_atomic_t g_interrupt = 0;

// Ctrl+C in the menu program's run. The loop tests nothing for it: the
// signal handler points every entry of the running loop's table of handlers
// at the loop's interrupt handler, so the run stops before its next
// instruction. A second Ctrl+C in the same run, or one outside a run, ends
// the program as it always did.
volatile std::sig_atomic_t g_menuRunActive = 0;
volatile std::sig_atomic_t g_menuRunInterrupted = 0;
void** volatile g_menuRunHandlers = nullptr;
void* volatile g_menuRunInterrupt = nullptr;
int g_menuRunSlots = 0;

void OnMenuRunInterrupt(int sig) {
  if (g_menuRunActive == 0 || g_menuRunInterrupted != 0) {
    con::RestoreTerminal();
    ::signal(sig, SIG_DFL);
    ::raise(sig);
    return;
  }
  g_menuRunInterrupted = 1;
  con::StopWaitingReads();
  // Before the loop has its table, it sees the flag when it starts.
  void** const h = g_menuRunHandlers;
  if (h == nullptr) return;
  void* const target = g_menuRunInterrupt;
  for (int i = 0; i < g_menuRunSlots; ++i) h[i] = target;
}

// What drives a controlled run (the loop's instantiation with kControlled):
// a budget of instructions, a look before each one, and the state a run
// keeps between its pieces.
struct LoopControl {
  uint64_t budget = 0;  // instructions this piece may begin, 0: no limit
  uint64_t steps = 0;   // instructions begun in this piece
  const std::function<bool(const Tcomet2&)>* before = nullptr;
  bool resume = false;  // go on from the machine's state, not from PR 0
  int64_t guardFrom = 0;
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
    con::Flush();  // seen before the machine starts, the line is not ended
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

// ---- decoding once per address --------------------------------------------
//
// Whatever a cycle would work out from PR and the words at PR and PR+1 alone
// (the handler, the operand, the registers, the register pre-check, the
// ceiling of PR and of an address without an index) is worked out once, when
// PR first reaches the address, and kept in the loop's table of decoded
// instructions. An entry stays right until one of its two words is written:
// every write into Memory during a run puts the entries of the written
// address and of the one before it back to "not decoded".

// The handlers a word decodes to. The ten instructions of two forms have
// three handlers each, in this order: the register form, the memory form
// without an index, the memory form with one; the jumps have two, without an
// index and with one.
#define DRILL_ALU_KINDS(K, op) K(op##_r) K(op##_m0) K(op##_mx)
#define DRILL_JUMP_KINDS(K, op) K(op##_0) K(op##_x)
#define DRILL_KINDS(K)                                                                                   \
  K(nop) K(nop_stop) K(unknown) K(exit) K(load_stop0)                                                    \
  DRILL_ALU_KINDS(K, ld) DRILL_ALU_KINDS(K, adda) DRILL_ALU_KINDS(K, suba) DRILL_ALU_KINDS(K, addl)       \
  DRILL_ALU_KINDS(K, subl) DRILL_ALU_KINDS(K, and) DRILL_ALU_KINDS(K, or) DRILL_ALU_KINDS(K, xor)        \
  DRILL_ALU_KINDS(K, cpa) DRILL_ALU_KINDS(K, cpl)                                                        \
  K(st0) K(stx) K(st_storage) K(lad0) K(ladx) K(sla) K(sra) K(sll) K(srl)                                \
  DRILL_JUMP_KINDS(K, jmi) DRILL_JUMP_KINDS(K, jnz) DRILL_JUMP_KINDS(K, jze) DRILL_JUMP_KINDS(K, jump)   \
  DRILL_JUMP_KINDS(K, jpl) DRILL_JUMP_KINDS(K, jov)                                                      \
  K(push) K(pop) K(call) K(ret) K(svc)

enum class Kind : uint8_t {
#define DRILL_ENUM(n) n,
  DRILL_KINDS(DRILL_ENUM)
#undef DRILL_ENUM
  count
};

constexpr Kind operator+(Kind k, int n) { return static_cast<Kind>(static_cast<int>(k) + n); }

// The index register of an instruction without an index, for the handlers
// that do not have a form of their own for it: a ninth register that holds 0.
constexpr uint8_t kZeroReg = 8;

// One word decoded: its handler, its operand (the low 16 bits of the second
// word, or the whole second cell for ST without an index) and its registers.
struct Decoding {
  Kind kind;
  uint32_t adr = 0;
  uint8_t r = 0;
  uint8_t x = 0;
};

// Decodes the first word `w` with the second word `second` after it, for a
// run whose reads stop above `ceiling`. The register pre-check has passed.
constexpr Decoding DecodeWord(uint32_t w, uint32_t second, uint32_t ceiling) {
  const uint8_t r = static_cast<uint8_t>((w >> 4) & 7u);
  const uint8_t x = static_cast<uint8_t>(w & 7u);
  const uint8_t ix = x != 0 ? x : kZeroReg;
  const uint32_t adr = second & 0xFFFFu;
  const auto alu = [&](Kind regForm) -> Decoding {
    if (w & 0x400u) return {regForm, 0, r, x};  // x is the second register here
    if (x != 0) return {regForm + 2, adr, r, x};
    if (adr > ceiling) return {Kind::load_stop0, adr};
    return {regForm + 1, adr, r};
  };
  const auto jump = [&](Kind noIndex) -> Decoding { return {noIndex + (x != 0 ? 1 : 0), adr, 0, x}; };
  switch (kDecode[(w >> 8) & 0xFFu].exec) {
    case OpExec::Nop: return {w == 0 ? Kind::nop : Kind::nop_stop};  // the whole cell must be 0
    case OpExec::Ld: return alu(Kind::ld_r);
    case OpExec::Adda: return alu(Kind::adda_r);
    case OpExec::Suba: return alu(Kind::suba_r);
    case OpExec::Addl: return alu(Kind::addl_r);
    case OpExec::Subl: return alu(Kind::subl_r);
    case OpExec::And: return alu(Kind::and_r);
    case OpExec::Or: return alu(Kind::or_r);
    case OpExec::Xor: return alu(Kind::xor_r);
    case OpExec::Cpa: return alu(Kind::cpa_r);
    case OpExec::Cpl: return alu(Kind::cpl_r);
    case OpExec::St:
      if (x != 0) return {Kind::stx, adr, r, x};
      // The whole cell is the address.
      if (second >= static_cast<uint32_t>(kMemoryCells)) return {Kind::st_storage, second};
      return {Kind::st0, second, r};
    case OpExec::Lad: return x != 0 ? Decoding{Kind::ladx, adr, r, x} : Decoding{Kind::lad0, adr, r};
    case OpExec::Sla: return {Kind::sla, adr, r, ix};
    case OpExec::Sra: return {Kind::sra, adr, r, ix};
    case OpExec::Sll: return {Kind::sll, adr, r, ix};
    case OpExec::Srl: return {Kind::srl, adr, r, ix};
    case OpExec::Jmi: return jump(Kind::jmi_0);
    case OpExec::Jnz: return jump(Kind::jnz_0);
    case OpExec::Jze: return jump(Kind::jze_0);
    case OpExec::Jump: return jump(Kind::jump_0);
    case OpExec::Jpl: return jump(Kind::jpl_0);
    case OpExec::Jov: return jump(Kind::jov_0);
    case OpExec::Push: return {Kind::push, adr, 0, ix};
    case OpExec::Pop: return {Kind::pop, 0, r};
    case OpExec::Call: return {Kind::call, adr, 0, ix};
    case OpExec::Ret: return {Kind::ret};
    case OpExec::Svc: return {Kind::svc, adr, 0, ix};
    case OpExec::Exit: return {Kind::exit};
    case OpExec::Invalid: break;
  }
  return {Kind::unknown};
}

// The decoded instructions of one instantiation of the loop, by address, in
// columns; slot a + 1 holds address a, so that a write at address 0 can put
// back the entry before it without a test. Addresses above the ceiling are
// never decoded: their "not decoded" handler stops the run.
struct DecodedTable {
  static constexpr int kSlots = kMemoryCells + 1;
  void* handler[kSlots];   // the handler, or the loop's "not decoded" one
  uint32_t adr[kSlots];    // Decoding::adr
  uint8_t r[kSlots];       // Decoding::r
  uint8_t x[kSlots];       // Decoding::x
  void* notDecoded;        // the "not decoded" handler the column was filled with
  int32_t used;            // slots below this may hold a decoded entry
};

// The cycles of a run, from PR 0 until a stop, with the limits of its variant
// as constants: an address above kCeiling is the PR stop or the load stop, an
// indexed ST at or above kStoreStop, or at or above maxMemory for the first
// time in the run, goes to kStoreGuard. The machine holds the hot state when
// it returns.
//
// A cycle is three steps: the count of PR's execution (kept in mc.execCount
// itself, which costs the cycle no more than a count beside the decoded entry
// and is right whenever anything reads it), the jump to the handler decoded
// for PR and, at the handler's end, the move of PR. Every other check stands
// in the decoded entry. A run that steps or traces would be an instantiation
// of its own with its check in NEXT(), leaving this one as it is.
template <int32_t kCeiling, int32_t kStoreStop, int (*kStoreGuard)(Tcomet2&, int32_t), bool kControlled = false>
__attribute__((noinline)) LoopEnd RunLoop(Tcomet2& mc, const int32_t maxMemory, LoopControl* ctl = nullptr) {
  static_assert(kCeiling + 2 < DecodedTable::kSlots, "PR moves on by two words at most before it is checked");
  static void* const kHandler[] = {
#define DRILL_LABEL(n) &&h_##n,
      DRILL_KINDS(DRILL_LABEL)
#undef DRILL_LABEL
  };
  static_assert(std::size(kHandler) == static_cast<size_t>(Kind::count));

  // The table lives as long as the process and is cleared at the start of a
  // run as far as the runs before decoded; a table that holds the handlers
  // of another copy of this function (should the compiler make one) is
  // cleared whole. The address of the table goes through an empty asm so that
  // the compiler keeps it in a register instead of building it again in
  // every handler.
  static DecodedTable table;
  DecodedTable* tb = &table;
  asm("" : "+r"(tb));
  void* const notDecoded = &&h_decode;
  if (tb->notDecoded != notDecoded) {
    std::fill_n(tb->handler, DecodedTable::kSlots, notDecoded);
    tb->notDecoded = notDecoded;
  } else {
    std::fill_n(tb->handler, tb->used, notDecoded);
  }
  tb->used = 0;
  if constexpr (!kControlled) {
    g_menuRunSlots = DecodedTable::kSlots;
    g_menuRunInterrupt = &&h_interrupt;
    g_menuRunHandlers = tb->handler;
  }

  // Hot state in locals; written back by Save(). The sign and zero flags
  // live in one value `fv`: Fsign is fv < 0, Fzero is fv == 0 (no
  // instruction sets both flags at once). Fovf is worked out when it is
  // read: it is 1 when `fx` differs from fv. fx is kOvfAsFound while no
  // instruction has set the flags and Fovf, as found, is neither 0 nor 1.
  // The comparison of the register form of CPA is kept in the same way in
  // `cmpv` (its fv), kNotCompared until there is one.
  constexpr int32_t kOvfAsFound = INT32_MIN;
  constexpr int32_t kNotCompared = INT32_MIN;
  int32_t gr[9];  // gr[kZeroReg] stays 0
  for (int i = 0; i < 8; ++i) gr[i] = mc.GR[i];
  gr[kZeroReg] = 0;
  uint64_t pr = 0;  // a PR from a stack cell below 0 becomes huge here
  uint32_t w = 0;
  uint32_t sp = static_cast<uint32_t>(mc.SP);
  uint64_t ea = 0;  // within 16 bits; as wide as PR, to index without a widening
  int32_t depth = mc.callDepth;
  int32_t fv = mc.Fzero == 1 ? 0 : mc.Fsign == 1 ? -1 : 1;
  const int32_t ovfFound = mc.Fovf;
  int32_t fx = ovfFound == 0 ? fv : ovfFound == 1 ? fv ^ 0x10000 : kOvfAsFound;
  int32_t cmpv = kNotCompared;
  // An indexed ST at or above this asks the guard: the reserved size until
  // the guard has warned once in the run, then kStoreStop alone.
  int64_t guardFrom = std::min<int64_t>(kStoreStop, maxMemory);
  if constexpr (kControlled) {
    if (ctl->resume) {
      pr = static_cast<uint64_t>(static_cast<uint32_t>(mc.PR));
      guardFrom = ctl->guardFrom;
    }
  }
  int32_t stopAdr = 0;  // the address that a stop of the simulator's own names
  Stop stop = Stop::Quiet;

  // Inlined at every call, or the locals it reads would have to live in
  // memory for the whole run.
  auto Save = [&]() __attribute__((always_inline)) {
    for (int i = 0; i < 8; ++i) mc.GR[i] = gr[i];
    mc.PR = static_cast<int32_t>(pr);
    mc.SP = static_cast<int32_t>(sp);
    mc.effAdr = static_cast<int32_t>(ea);
    mc.callDepth = depth;
    mc.Fovf = fx == kOvfAsFound ? ovfFound : fx != fv ? 1 : 0;
    mc.Fsign = fv < 0 ? 1 : 0;
    mc.Fzero = fv == 0 ? 1 : 0;
    if (cmpv != kNotCompared) mc.cmpResult = cmpv > 0 ? 0 : cmpv == 0 ? 1 : 2;
  };

// The columns of the table and the cells of the machine are reached from
// `tb` and `mc` alone, each with a constant offset, so that no more
// registers hold bases.
#define HANDLER(a) tb->handler[(a) + 1]
#define R_ tb->r[pr + 1]
#define X_ tb->x[pr + 1]
#define ADR_ tb->adr[pr + 1]
#define COUNT(a) reinterpret_cast<uint32_t&>(mc.execCount[a])  // it wraps as the cell's 32 bits
// The end of every handler: count the execution at PR and jump to its handler.
// For GCC, the empty asm makes the move of PR happen before the dispatch, so
// that the count and the jump address from the new PR and not, through one
// more register and instruction, from the old one. Clang goes without it: with
// coverage instrumentation (libFuzzer's, or that of a coverage build) clang 14
// leaves out the move of a taken jump's target into the asm's register, and
// the count and the dispatch then use a stale PR.
#if defined(__clang__)
#define PIN_PR()
#else
#define PIN_PR() asm("" : "+r"(pr))
#endif
#define NEXT()            \
  do {                    \
    PIN_PR();             \
    CONTROL();            \
    COUNT(pr) += 1u;      \
    goto* HANDLER(pr);    \
  } while (0)
// A controlled run looks before each instruction (PR within the ceiling): its
// interrupt, its budget and its look may pause it there. Nothing in the loop
// of an uncontrolled run.
#define CONTROL()                                                          \
  do {                                                                     \
    if constexpr (kControlled) {                                           \
      if (pr <= static_cast<uint64_t>(kCeiling)) {                         \
        if (g_interrupt != 0) goto interrupted;                            \
        if (ctl->budget != 0 && ctl->steps >= ctl->budget) goto paused;    \
        if (ctl->before != nullptr) {                                      \
          Save();                                                          \
          if (!(*ctl->before)(mc)) goto paused;                            \
        }                                                                  \
        ++ctl->steps;                                                      \
      }                                                                    \
    }                                                                      \
  } while (0)
// The effective address: u16(A) + u16(GR[x]) with the carry dropped.
#define EFF_ADR() ((ADR_ + static_cast<uint32_t>(gr[X_])) & 0xFFFFu)
// The wide sum of JMI, JZE and JPL: the same without the wrap.
#define WIDE_SUM() (ADR_ + (static_cast<uint32_t>(gr[X_]) & 0xFFFFu))
// A write at address `a` (inside Memory's storage) puts back the entries
// whose words it may have changed.
#define WRITTEN(a)                      \
  do {                                  \
    HANDLER((a) - 1) = notDecoded;      \
    HANDLER(a) = notDecoded;            \
  } while (0)
// The three handlers of an instruction of two forms: the operand `op` from
// GR[x] (PR moves on by one), from u16(A) (decoded within the ceiling) or from
// the effective address (above the ceiling: the load stop, PR at the second
// word); then BODY on `g`, GR[r], with kRegForm telling the form.
#define ALU(name, BODY)                                         \
  h_##name##_r: {                                               \
    [[maybe_unused]] constexpr bool kRegForm = true;            \
    const int32_t op = gr[X_];                                  \
    int32_t& g = gr[R_];                                        \
    BODY;                                                       \
    pr += 1;                                                    \
    NEXT();                                                     \
  }                                                             \
  h_##name##_m0: {                                              \
    [[maybe_unused]] constexpr bool kRegForm = false;           \
    ea = ADR_;                                                  \
    const int32_t op = mc.Memory[ea];                           \
    int32_t& g = gr[R_];                                        \
    BODY;                                                       \
    pr += 2;                                                    \
    NEXT();                                                     \
  }                                                             \
  h_##name##_mx: {                                              \
    [[maybe_unused]] constexpr bool kRegForm = false;           \
    int32_t& g = gr[R_];                                        \
    ea = EFF_ADR();                                             \
    if (ea > static_cast<uint64_t>(kCeiling)) goto load_stop_x; \
    const int32_t op = mc.Memory[ea];                           \
    BODY;                                                       \
    pr += 2;                                                    \
    NEXT();                                                     \
  }
// The two handlers of a jump when `taken` holds: to u16(A) without an index,
// to `to` with one (which may pass 65535, and is checked here).
#define JUMP(name, taken, to)                                  \
  h_##name##_0:                                                \
  ea = ADR_;                                                   \
  pr = (taken) ? ea : pr + 2;                                  \
  NEXT();                                                      \
  h_##name##_x: {                                              \
    ea = EFF_ADR();                                            \
    if (taken) {                                               \
      pr = (to);                                               \
      if (pr > static_cast<uint64_t>(kCeiling)) goto pr_out;   \
    } else {                                                   \
      pr += 2;                                                 \
    }                                                          \
    NEXT();                                                    \
  }

  if constexpr (!kControlled) {
    if (g_menuRunInterrupted != 0) {
      // Ctrl+C came before the table was there: no instruction runs.
      tb->notDecoded = nullptr;
      stop = Stop::Interrupted;
      goto done;
    }
  }
  NEXT();

// Not decoded yet: the dispatch has counted the address already, which the
// stops before the count take back.
h_decode: {
  // Every move of PR that may pass 65535 is checked where it is made.
  if (pr > static_cast<uint64_t>(kCeiling)) {
    COUNT(pr) -= 1u;
    goto pr_out;
  }
  w = static_cast<uint32_t>(mc.Memory[pr]);
  if ((w & 0x88u) != 0 && RegisterStops(w)) {
    COUNT(pr) -= 1u;
    if constexpr (kControlled) --ctl->steps;  // begun, taken back as the count is
    goto register_stop;
  }
  const Decoding d = DecodeWord(w, static_cast<uint32_t>(mc.Memory[pr + 1]), kCeiling);
  HANDLER(pr) = kHandler[static_cast<int>(d.kind)];
  ADR_ = d.adr;
  R_ = d.r;
  X_ = d.x;
  tb->used = std::max(tb->used, static_cast<int32_t>(pr) + 2);
  goto* HANDLER(pr);
}

h_nop:
  pr += 1;
  NEXT();

h_nop_stop:
  w = static_cast<uint32_t>(mc.Memory[pr]);
  goto nop_stop;

h_load_stop0:
  ea = ADR_;
  pr += 1;
  goto load_stop;

  ALU(ld, {
    g = fv = Sext16(static_cast<uint32_t>(op));
    fx = fv;
  })
  ALU(adda, {
    const int32_t t = Sext16(static_cast<uint32_t>(g)) + Sext16(static_cast<uint32_t>(op));
    g = fv = Sext16(static_cast<uint32_t>(t));
    fx = t;  // overflow: t does not fit in 16 bits
  })
  ALU(suba, {
    const int32_t t = Sext16(static_cast<uint32_t>(g)) - Sext16(static_cast<uint32_t>(op));
    g = fv = Sext16(static_cast<uint32_t>(t));
    fx = t;
  })
  ALU(addl, {
    const uint32_t t = (static_cast<uint32_t>(g) & 0xFFFFu) + (static_cast<uint32_t>(op) & 0xFFFFu);
    g = static_cast<int32_t>(t & 0xFFFFu);
    fv = Sext16(t);
    fx = fv ^ static_cast<int32_t>(t & 0x10000u);  // overflow: the carry out of 16 bits
  })
  ALU(subl, {
    const uint32_t t = (static_cast<uint32_t>(g) & 0xFFFFu) - (static_cast<uint32_t>(op) & 0xFFFFu);
    g = static_cast<int32_t>(t & 0xFFFFu);
    fv = Sext16(t);
    fx = fv ^ static_cast<int32_t>(t & 0x10000u);  // the difference was below 0
  })
  ALU(and, {
    g &= op;  // on the full cells
    fx = fv = Sext16(static_cast<uint32_t>(g));
  })
  ALU(or, {
    g |= op;
    fx = fv = Sext16(static_cast<uint32_t>(g));
  })
  ALU(xor, {
    g ^= op;
    fx = fv = Sext16(static_cast<uint32_t>(g));
  })
  ALU(cpa, {
    fx = fv = Sext16(static_cast<uint32_t>(g)) - Sext16(static_cast<uint32_t>(op));  // less: Fsign; equal: Fzero
    if (kRegForm) cmpv = fv;
  })
  ALU(cpl, {
    fx = fv = (g & 0xFFFF) - (op & 0xFFFF);
  })

h_st0: {
  // The whole cell is the address, decoded within Memory's storage: no
  // bound, no effAdr, no warning.
  const uint64_t a = ADR_;
  mc.Memory[a] = gr[R_];
  WRITTEN(a);
  pr += 2;
  NEXT();
}

h_st_storage:
  stopAdr = static_cast<int32_t>(ADR_);
  pr += 1;
  goto store_storage;

h_stx: {
  ea = EFF_ADR();
  if (static_cast<int64_t>(ea) >= guardFrom) goto st_guard;
st_store:
  mc.Memory[ea] = gr[R_];
  WRITTEN(ea);
  pr += 2;
  NEXT();
}

st_guard:  // out of the handler's way, or the compiler prepares for it there
  Save();
  mc.PR = static_cast<int32_t>(pr + 1);
  if (ea < static_cast<uint64_t>(kStoreStop)) guardFrom = kStoreStop;  // the warning once
  if (kStoreGuard(mc, static_cast<int32_t>(ea)) == 999) {
    pr += 1;
    goto store_stop;
  }
  goto st_store;

h_lad0:
  gr[R_] = static_cast<int32_t>(ADR_);  // no flags, no effAdr
  pr += 2;
  NEXT();

h_ladx:
  gr[R_] = static_cast<int32_t>(EFF_ADR());
  pr += 2;
  NEXT();

h_sla: {
  // The sign bit stays out of the shift; Fzero is taken from the raw value
  // before bit 15 is cleared.
  ea = EFF_ADR();
  const uint32_t n = ea > 15u ? 16u : static_cast<uint32_t>(ea);
  int32_t& g = gr[R_];
  const uint32_t old = static_cast<uint32_t>(g) & 0xFFFFu;
  const uint32_t bit15 = old & 0x8000u;
  const uint32_t raw = ((old << n) & 0xFFFFu) | bit15;
  g = bit15 ? Sext16(raw) : static_cast<int32_t>(raw & 0x7FFFu);
  const uint32_t ovf = (n >= 1 && n <= 15) ? (old >> (15 - n)) & 1u : 0u;
  fv = bit15 ? -1 : raw != 0 ? 1 : 0;  // Fsign is the old bit 15, Fzero from raw
  fx = fv ^ static_cast<int32_t>(ovf << 16);
  pr += 2;
  NEXT();
}

h_sra: {
  ea = EFF_ADR();
  const uint32_t n = ea > 15u ? 16u : static_cast<uint32_t>(ea);
  int32_t& g = gr[R_];
  const uint32_t old = static_cast<uint32_t>(g) & 0xFFFFu;
  g = fv = Sext16(old) >> n;  // arithmetic: n 16 gives 0 or -1
  const uint32_t ovf = n >= 1 ? (old >> (n - 1)) & 1u : 0u;
  fx = fv ^ static_cast<int32_t>(ovf << 16);
  pr += 2;
  NEXT();
}

h_sll: {
  ea = EFF_ADR();
  int32_t& g = gr[R_];
  if (ea > 16u) {
    g = fv = fx = 0;
  } else {
    const uint32_t old = static_cast<uint32_t>(g) & 0xFFFFu;
    const uint32_t v = (old << ea) & 0xFFFFu;
    g = static_cast<int32_t>(v);
    fv = Sext16(v);
    const uint32_t ovf = ea >= 1 ? (old >> (16 - ea)) & 1u : 0u;
    fx = fv ^ static_cast<int32_t>(ovf << 16);
  }
  pr += 2;
  NEXT();
}

h_srl: {
  ea = EFF_ADR();
  int32_t& g = gr[R_];
  if (ea > 16u) {
    g = fv = fx = 0;
  } else {
    const uint32_t old = static_cast<uint32_t>(g) & 0xFFFFu;
    g = fv = Sext16(old >> ea);  // sign-extended from 16 bits
    const uint32_t ovf = ea >= 1 ? (old >> (ea - 1)) & 1u : 0u;
    fx = fv ^ static_cast<int32_t>(ovf << 16);
  }
  pr += 2;
  NEXT();
}

  // JMI, JZE and JPL with an index jump to the wide sum, which may pass 65535.
  JUMP(jmi, fv < 0, WIDE_SUM())
  JUMP(jnz, fv != 0, ea)
  JUMP(jze, fv == 0, WIDE_SUM())
  JUMP(jump, true, ea)
  JUMP(jpl, fv > 0, WIDE_SUM())
  // Fovf is 1: as found, it is neither 0 nor 1.
  JUMP(jov, fx != fv && fx != kOvfAsFound, ea)

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
  gr[R_] = mc.stackArea[i];
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
  mc.stackArea[i] = static_cast<int32_t>(pr + 2);
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
  pr = static_cast<uint64_t>(static_cast<int64_t>(mc.stackArea[i]));
  sp += 1;
  if (pr > static_cast<uint64_t>(kCeiling)) goto pr_out;
  NEXT();
}

h_svc:
  ea = EFF_ADR();
  Save();
  if (svcService(mc, static_cast<int32_t>(ea))) {
    // IN wrote into Memory: nothing decoded may stand.
    std::fill_n(tb->handler, tb->used, notDecoded);
  }
  pr += 2;
  NEXT();

h_exit:
  stop = Stop::Exit;  // PR stays at the word
  goto done;

// Ctrl+C pointed the table here: the instruction at PR was counted and is
// not run; the next run fills the whole table afresh.
h_interrupt: __attribute__((unused));
  COUNT(pr) -= 1u;
  tb->notDecoded = nullptr;
  stop = Stop::Interrupted;
  goto done;

h_unknown:
  w = static_cast<uint32_t>(mc.Memory[pr]);
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
load_stop_x:  // PR at the second word
  pr += 1;
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

paused: __attribute__((unused));
  stop = Stop::Paused;
  goto done;
interrupted: __attribute__((unused));
  g_interrupt = 0;
  stop = Stop::Interrupted;
  goto done;

#undef NEXT
#undef PIN_PR
#undef CONTROL
#undef HANDLER
#undef COUNT
#undef R_
#undef X_
#undef ADR_
#undef EFF_ADR
#undef WIDE_SUM
#undef WRITTEN
#undef ALU
#undef JUMP
done:
  Save();
  if constexpr (kControlled) ctl->guardFrom = guardFrom;
  return {stop, w, stopAdr};
}

#undef DRILL_ALU_KINDS
#undef DRILL_JUMP_KINDS
#undef DRILL_KINDS

}  // namespace

int RunComet2(Tcomet2& mc, RunVariant variant) {
  const VariantFigures& fig = kVariants[Ix(variant)];
  // Ctrl+C stops the run from here on, its opening included.
  struct sigaction onInt {}, before {};
  onInt.sa_handler = OnMenuRunInterrupt;  // no SA_RESTART: a waiting IN ends
  sigemptyset(&onInt.sa_mask);
  g_menuRunHandlers = nullptr;
  g_menuRunInterrupted = 0;
  g_menuRunActive = 1;
  ::sigaction(SIGINT, &onInt, &before);
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
  g_menuRunActive = 0;
  g_menuRunHandlers = nullptr;
  ::sigaction(SIGINT, &before, nullptr);
  con::StopWaitingReads(false);

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
    case Stop::Interrupted:
      if (IsJ(mc)) {
        con::out << "実行を中断しました（Ctrl+C）。 PR = " << Hex4(static_cast<uint32_t>(mc.PR)) << con::endl;
      } else {
        con::out << "Runtime stop: interrupted by Ctrl+C at PR = " << Hex4(static_cast<uint32_t>(mc.PR)) << "."
                 << con::endl;
      }
      break;
    case Stop::Paused:  // only a controlled run pauses
      break;
  }
  EndNormally(mc);
  return 0;
}

// ---- a run driven from outside ---------------------------------------------

namespace {

// The sentences of a stop of the machine, without the ending and the time
// line of the menu program's run.
void SayStopText(const Tcomet2& mc, const LoopEnd& e, const VariantFigures& fig) {
  switch (e.stop) {
    case Stop::Unknown: SayUnknownCode(mc, static_cast<int32_t>(e.w)); break;
    case Stop::Load: SayLoadStop(mc); break;
    case Stop::PrStop: SayPrStop(mc, fig); break;
    case Stop::Register: SayRegisterStop(mc, static_cast<int32_t>(e.w)); break;
    case Stop::Nop: SayNopStop(mc, static_cast<int32_t>(e.w)); break;
    case Stop::RetError: SayRetError(mc); break;
    case Stop::StackStorage: SayStackStorageStop(mc, e.stopAdr); break;
    case Stop::StoreStorage: SayStoreStorageStop(mc, e.stopAdr); break;
    default: break;
  }
}

RunEnd EndOf(Stop s) {
  switch (s) {
    case Stop::Quiet: case Stop::Ret: return RunEnd::End;
    case Stop::PrStop: return RunEnd::PrLimit;
    case Stop::Register: return RunEnd::Register;
    case Stop::Nop: return RunEnd::Nop;
    case Stop::Unknown: return RunEnd::UnknownCode;
    case Stop::Load: return RunEnd::LoadLimit;
    case Stop::Store: return RunEnd::StoreGuard;
    case Stop::Exit: return RunEnd::Exit;
    case Stop::RetError: return RunEnd::RetError;
    case Stop::StackStorage: return RunEnd::Stack;
    case Stop::StoreStorage: return RunEnd::StoreStorage;
    case Stop::Interrupted: return RunEnd::Interrupted;
    case Stop::Paused: break;
  }
  return RunEnd::Running;
}

}  // namespace

const char* RunEndName(RunEnd e) {
  switch (e) {
    case RunEnd::Running: return "running";
    case RunEnd::End: return "end";
    case RunEnd::PrLimit: return "pr-limit";
    case RunEnd::Register: return "register";
    case RunEnd::Nop: return "nop";
    case RunEnd::UnknownCode: return "unknown-code";
    case RunEnd::LoadLimit: return "load-limit";
    case RunEnd::StoreGuard: return "store-guard";
    case RunEnd::Exit: return "exit";
    case RunEnd::RetError: return "ret-error";
    case RunEnd::Stack: return "stack";
    case RunEnd::StoreStorage: return "store-storage";
    case RunEnd::StepLimit: return "step-limit";
    case RunEnd::Interrupted: return "interrupted";
  }
  return "running";
}

struct ControlledRun::State {
  LoopControl ctl;
  bool started = false;
};

ControlledRun::ControlledRun(Tcomet2& mc, RunVariant variant) : mc_(mc), variant_(variant), state_(new State) {
  const VariantFigures& fig = kVariants[Ix(variant)];
  mc.effAdr = 0;
  mc.PR = 0;
  if (fig.clearsCounts) std::fill_n(mc.execCount.data(), kExecCountCleared, 0);
  mc.maxExecCount = 0;
  g_interrupt = 0;
}

ControlledRun::~ControlledRun() { delete state_; }

void ControlledRun::RequestInterrupt() { g_interrupt = 1; }

RunEnd ControlledRun::Go(uint64_t steps, const std::function<bool(const Tcomet2&)>& before) {
  if (end_ != RunEnd::Running) return end_;
  const VariantFigures& fig = kVariants[Ix(variant_)];
  constexpr VariantFigures kWide = kVariants[Ix(RunVariant::Wide)];
  constexpr VariantFigures kFixed = kVariants[Ix(RunVariant::Fixed)];
  LoopControl& ctl = state_->ctl;
  ctl.budget = steps;
  ctl.steps = 0;
  ctl.before = before ? &before : nullptr;
  ctl.resume = state_->started;
  state_->started = true;
  const int32_t maxMemory = fig.reserveOfMachine ? mc_.tMaxMemory : b->MaxMemory;
  // What the machine says while it runs (its notes and warnings) goes where
  // the console goes; the sentences of its stop are kept.
  const LoopEnd e = variant_ == RunVariant::Fixed
                        ? RunLoop<kFixed.ceiling, kFixed.storeStop, kFixed.storeGuard, true>(mc_, maxMemory, &ctl)
                        : RunLoop<kWide.ceiling, kWide.storeStop, kWide.storeGuard, true>(mc_, maxMemory, &ctl);
  steps_ += ctl.steps;
  end_ = EndOf(e.stop);
  if (end_ != RunEnd::Running && end_ != RunEnd::End && end_ != RunEnd::Interrupted) {
    std::string text;
    const con::Target was = con::CurrentTarget();
    con::SetCapture(&text);
    SayStopText(mc_, e, fig);
    con::SetTarget(was);
    message_ = text;
  }
  return end_;
}

int Run3NW(Tcomet2& mc) { return RunComet2(mc, RunVariant::Wide); }
