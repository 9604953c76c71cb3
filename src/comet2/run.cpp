// The run of the machine: the cycle, the instruction handlers and every stop
// with its sentences.
//
// The loop keeps the machine's hot state (PR, the registers, the flags, SP)
// in locals and writes it back to the machine before any service that reads
// it and when the run ends. Instructions are decoded through kDecode, the one
// instruction table of the system.
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

int bootShown = -99;

namespace {

constexpr int32_t kPrCeiling = 65000;    // PR above this stops; a load above this stops
constexpr int32_t kPrTop = 65535;        // PR above this ends the run quietly
constexpr int kExecCountCleared = 65000;  // counts cleared at the start of a run
constexpr int kExecCountScanned = 65035;  // counts the statistics scan

// How a run ended.
enum class Stop : uint8_t {
  Quiet,         // PR passed 65535 after a wide jump
  PrStop,        // PR above 65000
  Register,      // a register nibble above 7
  Nop,           // code #00 in a cell that is not 0
  Unknown,       // a code outside the instruction table
  Load,          // an operand address above 65000
  Store,         // st511NW refused an indexed ST
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

void SayOpening(const Tcomet2& mc) {
  if (IsJ(mc)) {
    con::out << "\n演算実行 開始、しばらくお待ちください。\n"
             << "COMET2 実行中 ";
    return;
  }
  if (bootShown == -99) {
    con::out << "\nA small OS has been implemented in drillasm. " << con::endl
             << "The OS starts booting comet2.\n";
    ++bootShown;
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

void SayPrStop(const Tcomet2& mc) {
  const int32_t pr = mc.PR;
  if (IsJ(mc)) {
    con::out << "実行時エラー：実行途中停止！\n"
             << "プログラムレジスター(PR)が この COMET2 シミレーター の "
             << "最大メモリー " << 64700 << " 番地を超えました。 "
             << "さらに、最大アドレスを超えてメモリにアクセスしようとしたので"
             << "実行を中止しました。  "
             << "本来の COMET2 では もちろん "
             << "PR = 65535 までアクセス可能ですが、Drill Asm では制限を設けています。"
             << "プログラムを工夫修正してご利用ください。 "
             << "PR = #" << HexDigits(pr) << " = " << pr << "（十進数）番地 Run. "
             << "おそらく、プログラムの定義域を飛び出して、メモリ後半にある "
             << "NOP=#0000 の連続部分が実行されたものと考えられます。";
  } else {
    con::out << "Runtime Error: The comet2 is terminated！\n"
             << "Because the Program Register(PR) has exceeded the maximum memory address "
             << "of " << 64500 << ". "
             << "Your program cannnot access any address over there. "
             << "It might haved executed a lot of opcodes in vain "
             << "in the higher address area. "
             << "The comet2 has 65536 words in memory in truth. "
             << "But this simulator has only " << 64000 << " memories for the sake of simplicity. "
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

int Run3NW(Tcomet2& mc) {
  SayOpening(mc);
  mc.effAdr = 0;
  mc.PR = 0;
  std::fill_n(mc.execCount.data(), kExecCountCleared, 0);
  mc.maxExecCount = 0;
  timeVcl->stampRunStart();

  // Hot state in locals; written back by Save().
  int32_t* const mem = mc.Memory.data();
  int32_t* const cnt = mc.execCount.data();
  int32_t* const stk = mc.stackArea.data();
  const int32_t maxMemory = b->MaxMemory;
  int32_t gr[8];
  for (int i = 0; i < 8; ++i) gr[i] = mc.GR[i];
  int32_t pr = 0;
  uint32_t sp = static_cast<uint32_t>(mc.SP);
  uint32_t ea = 0;
  int32_t depth = mc.callDepth;
  int32_t fovf = mc.Fovf, fsign = mc.Fsign, fzero = mc.Fzero;
  bool storeWarned = false;  // the out-of-range warning of ST, once per run
  int32_t w = 0;
  int32_t stopAdr = 0;  // the address that a stop of the simulator's own names
  Stop stop = Stop::Quiet;

  auto Save = [&] {
    for (int i = 0; i < 8; ++i) mc.GR[i] = gr[i];
    mc.PR = pr;
    mc.SP = static_cast<int32_t>(sp);
    mc.effAdr = static_cast<int32_t>(ea);
    mc.callDepth = depth;
    mc.Fovf = fovf;
    mc.Fsign = fsign;
    mc.Fzero = fzero;
  };

// The effective address: u16(A) + u16(GR[x]) with the carry dropped; x 0
// adds nothing.
#define EFF_ADR() ((static_cast<uint32_t>(mem[pr + 1]) + (x ? static_cast<uint32_t>(gr[x]) : 0u)) & 0xFFFFu)
// The wide sum of JMI, JZE and JPL: the same without the wrap.
#define WIDE_SUM() \
  static_cast<int32_t>((static_cast<uint32_t>(mem[pr + 1]) & 0xFFFFu) + (x ? (static_cast<uint32_t>(gr[x]) & 0xFFFFu) : 0u))
// The operand of an instruction that reads memory or, in the register form,
// GR[x]. Moves PR to the next instruction; an address above 65000 is the load
// stop, with PR at the second word.
#define FETCH_OPERAND(op)                    \
  if (d.form == OpForm::R1R2) {              \
    op = gr[x];                              \
    pr += 1;                                 \
  } else {                                   \
    ea = EFF_ADR();                          \
    if (ea > static_cast<uint32_t>(kPrCeiling)) { \
      pr += 1;                               \
      stop = Stop::Load;                     \
      goto done;                             \
    }                                        \
    op = mem[ea];                            \
    pr += 2;                                 \
  }
#define SET_FLAGS16(v)                     \
  fsign = static_cast<int32_t>(((v) >> 15) & 1u); \
  fzero = (((v) & 0xFFFFu) == 0) ? 1 : 0;

  for (;;) {
    if (static_cast<uint32_t>(pr) > static_cast<uint32_t>(kPrCeiling)) [[unlikely]] {
      stop = pr > kPrTop ? Stop::Quiet : Stop::PrStop;
      break;
    }
    w = mem[pr];
    const uint32_t uw = static_cast<uint32_t>(w);
    if (uw & 0x88u) [[unlikely]] {
      if (RegisterStops(uw)) {
        stop = Stop::Register;
        break;
      }
    }
    cnt[pr] = static_cast<int32_t>(static_cast<uint32_t>(cnt[pr]) + 1u);
    const uint32_t r = (uw >> 4) & 7u;
    const uint32_t x = uw & 7u;
    const DecodeEntry& d = kDecode[(uw >> 8) & 0xFFu];
    switch (d.exec) {
      case OpExec::Nop:
        if (w != 0) {
          stop = Stop::Nop;
          goto done;
        }
        pr += 1;
        break;

      case OpExec::Ld: {
        int32_t op;
        FETCH_OPERAND(op);
        const uint32_t v = static_cast<uint32_t>(op) & 0xFFFFu;
        gr[r] = Sext16(v);
        fovf = 0;
        SET_FLAGS16(v);
        break;
      }

      case OpExec::St: {
        const int32_t a = mem[pr + 1];
        if (x == 0) {
          // The whole cell is the address: no bound, no effAdr, no warning.
          if (static_cast<uint32_t>(a) >= static_cast<uint32_t>(kMemoryCells)) [[unlikely]] {
            pr += 1;
            stopAdr = a;
            stop = Stop::StoreStorage;
            goto done;
          }
          mem[a] = gr[r];
        } else {
          ea = EFF_ADR();
          if (ea >= static_cast<uint32_t>(kPrCeiling) ||
              (static_cast<int32_t>(ea) >= maxMemory && !storeWarned)) [[unlikely]] {
            Save();
            mc.PR = pr + 1;
            if (ea < static_cast<uint32_t>(kPrCeiling)) storeWarned = true;
            if (st511NW(mc, static_cast<int32_t>(ea)) == 999) {
              pr += 1;
              stop = Stop::Store;
              goto done;
            }
          }
          mem[ea] = gr[r];
        }
        pr += 2;
        break;
      }

      case OpExec::Lad:
        gr[r] = static_cast<int32_t>(EFF_ADR());
        pr += 2;
        break;

      case OpExec::Adda:
      case OpExec::Suba: {
        int32_t op;
        FETCH_OPERAND(op);
        const int32_t t = d.exec == OpExec::Adda ? Sext16(static_cast<uint32_t>(gr[r])) + Sext16(static_cast<uint32_t>(op))
                                                 : Sext16(static_cast<uint32_t>(gr[r])) - Sext16(static_cast<uint32_t>(op));
        const uint32_t v = static_cast<uint32_t>(t) & 0xFFFFu;
        gr[r] = Sext16(v);
        fovf = (t < -32768 || t > 32767) ? 1 : 0;
        SET_FLAGS16(v);
        break;
      }

      case OpExec::Addl:
      case OpExec::Subl: {
        int32_t op;
        FETCH_OPERAND(op);
        const int32_t a16 = gr[r] & 0xFFFF;
        const int32_t b16 = op & 0xFFFF;
        const int32_t t = d.exec == OpExec::Addl ? a16 + b16 : a16 - b16;
        const uint32_t v = static_cast<uint32_t>(t) & 0xFFFFu;
        gr[r] = static_cast<int32_t>(v);
        fovf = (t < 0 || t > 65535) ? 1 : 0;
        SET_FLAGS16(v);
        break;
      }

      case OpExec::And:
      case OpExec::Or:
      case OpExec::Xor: {
        int32_t op;
        FETCH_OPERAND(op);
        const int32_t res = d.exec == OpExec::And ? (gr[r] & op) : d.exec == OpExec::Or ? (gr[r] | op) : (gr[r] ^ op);
        gr[r] = res;
        const uint32_t v = static_cast<uint32_t>(res);
        fovf = 0;
        SET_FLAGS16(v);
        break;
      }

      case OpExec::Cpa:
      case OpExec::Cpl: {
        const bool regForm = d.form == OpForm::R1R2;
        int32_t op;
        FETCH_OPERAND(op);
        int32_t lhs, rhs;
        if (d.exec == OpExec::Cpa) {
          lhs = Sext16(static_cast<uint32_t>(gr[r]));
          rhs = Sext16(static_cast<uint32_t>(op));
          if (regForm) mc.cmpResult = lhs > rhs ? 0 : lhs == rhs ? 1 : 2;
        } else {
          lhs = gr[r] & 0xFFFF;
          rhs = op & 0xFFFF;
        }
        fovf = 0;
        fsign = lhs < rhs ? 1 : 0;
        fzero = lhs == rhs ? 1 : 0;
        break;
      }

      case OpExec::Sla: {
        ea = EFF_ADR();
        const uint32_t n = ea > 15u ? 16u : ea;
        const uint32_t old = static_cast<uint32_t>(gr[r]) & 0xFFFFu;
        const uint32_t bit15 = old & 0x8000u;
        const uint32_t raw = ((old << n) & 0xFFFFu) | bit15;
        gr[r] = bit15 ? Sext16(raw) : static_cast<int32_t>(raw & 0x7FFFu);
        fovf = (n >= 1 && n <= 15) ? static_cast<int32_t>((old >> (15 - n)) & 1u) : 0;
        fsign = bit15 ? 1 : 0;
        fzero = raw == 0 ? 1 : 0;
        pr += 2;
        break;
      }

      case OpExec::Sra: {
        ea = EFF_ADR();
        const uint32_t n = ea > 15u ? 16u : ea;
        const uint32_t old = static_cast<uint32_t>(gr[r]) & 0xFFFFu;
        const int32_t res = Sext16(old) >> n;  // arithmetic: n 16 gives 0 or -1
        gr[r] = Sext16(static_cast<uint32_t>(res));
        fovf = n >= 1 ? static_cast<int32_t>((old >> (n - 1)) & 1u) : 0;
        fsign = static_cast<int32_t>(old >> 15);
        fzero = (static_cast<uint32_t>(res) & 0xFFFFu) == 0 ? 1 : 0;
        pr += 2;
        break;
      }

      case OpExec::Sll:
      case OpExec::Srl: {
        ea = EFF_ADR();
        const uint32_t n = ea;
        if (n > 16u) {
          gr[r] = 0;
          fovf = 0;
          fsign = 0;
          fzero = 1;
        } else {
          const uint32_t old = static_cast<uint32_t>(gr[r]) & 0xFFFFu;
          uint32_t v;
          if (d.exec == OpExec::Sll) {
            v = (old << n) & 0xFFFFu;
            gr[r] = static_cast<int32_t>(v);
            fovf = n >= 1 ? static_cast<int32_t>((old >> (16 - n)) & 1u) : 0;
          } else {
            v = old >> n;
            gr[r] = Sext16(v);
            fovf = n >= 1 ? static_cast<int32_t>((old >> (n - 1)) & 1u) : 0;
          }
          SET_FLAGS16(v);
        }
        pr += 2;
        break;
      }

      case OpExec::Jmi:
        ea = EFF_ADR();
        pr = fsign == 1 ? WIDE_SUM() : pr + 2;
        break;
      case OpExec::Jnz:
        ea = EFF_ADR();
        pr = fzero == 0 ? static_cast<int32_t>(ea) : pr + 2;
        break;
      case OpExec::Jze:
        ea = EFF_ADR();
        pr = fzero == 1 ? WIDE_SUM() : pr + 2;
        break;
      case OpExec::Jump:
        ea = EFF_ADR();
        pr = static_cast<int32_t>(ea);
        break;
      case OpExec::Jpl:
        ea = EFF_ADR();
        pr = (fsign == 0 && fzero == 0) ? WIDE_SUM() : pr + 2;
        break;
      case OpExec::Jov:
        ea = EFF_ADR();
        pr = fovf == 1 ? static_cast<int32_t>(ea) : pr + 2;
        break;

      case OpExec::Push:
        ea = EFF_ADR();
        mc.SP = static_cast<int32_t>(sp);
        mc.PR = pr + 1;
        stackPush(mc, static_cast<int32_t>(ea));  // a refusal is told and the run goes on
        sp = static_cast<uint32_t>(mc.SP);
        pr += 2;
        break;

      case OpExec::Pop: {
        // No check for an empty stack; only the storage behind it is guarded.
        const uint32_t i = 65535u - sp;
        if (i >= static_cast<uint32_t>(kStackCells)) [[unlikely]] {
          stopAdr = pr;
          stop = Stop::StackStorage;
          goto done;
        }
        gr[r] = stk[i];
        sp += 1;
        pr += 1;
        break;
      }

      case OpExec::Call: {
        // No check against the stack limit; only the storage is guarded.
        ea = EFF_ADR();
        const uint32_t i = 65535u - (sp - 1u);
        if (i >= static_cast<uint32_t>(kStackCells)) [[unlikely]] {
          stopAdr = pr;
          stop = Stop::StackStorage;
          goto done;
        }
        depth += 1;
        sp -= 1;
        stk[i] = pr + 2;
        pr = static_cast<int32_t>(ea);
        break;
      }

      case OpExec::Ret: {
        if (depth == 0) {
          stop = Stop::Ret;  // PR stays at the RET
          goto done;
        }
        if (depth < 0) [[unlikely]] {
          // CALL and RET alone change the depth, so this cannot happen; the
          // depth is set right and the same RET then ends the run.
          con::out << "An unknown error has happened at RET in Run. " << "OS is negative. B359DD93";
          depth = 0;
          break;
        }
        depth -= 1;
        // ret581
        if (sp >= 0x10000u) [[unlikely]] {
          stop = Stop::RetError;
          goto done;
        }
        const uint32_t i = 65535u - sp;
        if (i >= static_cast<uint32_t>(kStackCells)) [[unlikely]] {
          stopAdr = pr;
          stop = Stop::StackStorage;
          goto done;
        }
        pr = stk[i];
        sp += 1;
        break;
      }

      case OpExec::Svc:
        ea = EFF_ADR();
        Save();
        svcService(mc, static_cast<int32_t>(ea));
        pr += 2;
        break;

      case OpExec::Exit:
        stop = Stop::Exit;  // PR stays at the word
        goto done;

      case OpExec::Invalid:
      default:
        stop = Stop::Unknown;
        goto done;
    }
  }
done:
#undef EFF_ADR
#undef WIDE_SUM
#undef FETCH_OPERAND
#undef SET_FLAGS16
  Save();

  switch (stop) {
    case Stop::Unknown:
      SayUnknownCode(mc, w);
      return 0;  // no stamp, no ending, no time line
    case Stop::Load:
      timeVcl->stampRunEnd();
      SayLoadStop(mc);
      SayTimeLine(mc);
      return 0;
    case Stop::PrStop:
      SayPrStop(mc);
      break;
    case Stop::Register:
      SayRegisterStop(mc, w);
      break;
    case Stop::Nop:
      SayNopStop(mc, w);
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
