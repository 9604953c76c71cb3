// The small operating system of the machine: the SVC services IN and OUT,
// the guard of PUSH and the guard of an indexed ST.
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "comet2/control.h"
#include "comet2/run.h"
#include "records/console.h"
#include "records/records.h"
#include "records/singletons.h"
#include "records/text.h"

namespace {

// An indexed ST stops at or above 65000, and its message names 65000; in the
// Fixed run it stops at or above 3499 and the message names 3465.
constexpr int32_t kStoreCeiling = 65000;
constexpr int32_t kFixedStoreStop = 3499;
constexpr int32_t kFixedStoreNamed = 3465;
constexpr uint32_t kStackGuard = 501;  // a push whose cell index reaches this is refused
constexpr int kStackQuoted = 500;      // the stack size the messages quote
constexpr size_t kInMaxBytes = 256;    // IN keeps at most this many typed bytes
constexpr int kInMaxCount = 256;       // the count stored by IN never exceeds this

bool IsJ(const Tcomet2& mc) { return mc.dispLang == 0; }

// Four upper-case hex digits of the low 16 bits, without "#".
std::string HexDigits(uint32_t v) { return Hex4(v).substr(1); }

// A cell index guarded against the storage of Memory.
bool InMemory(int64_t a) { return a >= 0 && a < kMemoryCells; }

// The cell that holds a length word: GR2 as a whole cell, or its low 16 bits
// when the whole cell lies outside the storage.
int32_t LengthCell(const Tcomet2& mc) {
  const int32_t g = mc.GR[2];
  return InMemory(g) ? g : (g & 0xFFFF);
}

MachineIO* g_io = nullptr;

std::optional<std::string> ReadTypedLine(Tcomet2& mc);
void StoreTyped(Tcomet2& mc, const std::optional<std::string>& typed);
wstr OutText(const Tcomet2& mc);

void InputService(Tcomet2& mc) {
  std::optional<std::string> typed;
  if (g_io != nullptr) {
    // A front end's lines: no prompt, and a line cut as a typed one is.
    typed = g_io->readLine ? g_io->readLine() : std::nullopt;
    if (typed && typed->size() > kInMaxBytes) typed->resize(kInMaxBytes);
  } else {
    typed = ReadTypedLine(mc);
  }
  StoreTyped(mc, typed);
}

void OutputService(Tcomet2& mc) {
  if (g_io != nullptr) {
    if (g_io->writeOut) g_io->writeOut(OutText(mc));
    return;
  }
  con::out << con::endl;
  con::out << (IsJ(mc) ? "OS: マクロ命令( OUT )による出力 " : "OS: Output by a Macro Instruction of OUT. ")
           << con::endl;
  con::out << OutText(mc);  // surrogate pairs join, a lone surrogate prints as U+FFFD
  con::out << con::endl;
}

}  // namespace

void SetMachineIO(MachineIO* io) { g_io = io; }
MachineIO* CurrentMachineIO() { return g_io; }

namespace {

std::optional<std::string> ReadTypedLine(Tcomet2& mc) {
  con::out << con::endl;
  if (IsJ(mc)) {
    con::out << "OS: 文字を入力してください。 " << con::endl
             << "マクロ命令( IN )による入力要求。" << con::endl
             << "Enter キイ を押す 又は CTRL + Z を押す と 入力終了。 " << con::endl;
  } else {
    con::out << "OS: Input some letters from your keyboard. " << con::endl
             << "(Input Requirement by a Macro Instruction of IN) " << con::endl
             << "Press Enter key or Ctrl + Z Keys "
             << "at the end of your input. " << con::endl;
  }
  con::Rewind();
  bool cut = false;
  std::optional<std::string> typed = con::ReadLineForIn(kInMaxBytes, cut);
  con::Rewind();
  return typed;
}

void StoreTyped(Tcomet2& mc, const std::optional<std::string>& typed) {
  // The typed bytes are converted as a NUL-terminated text: a NUL byte typed
  // into the line ends it there.
  const wstr units = typed ? Utf8ToU16(std::string_view(*typed).substr(0, typed->find('\0'))) : wstr();
  int count = static_cast<int>(units.size());
  if (count > 255) count = kInMaxCount;

  mc.Memory[LengthCell(mc)] = count;
  const int32_t buf = mc.GR[1] & 0xFFFF;
  for (int i = 0; i < count && buf + i < kMemoryCells; ++i) mc.Memory[buf + i] = units[i];
}

// The characters OUT writes: n cells from GR1, n the whole length cell.
wstr OutText(const Tcomet2& mc) {
  wstr units;
  const int32_t n = mc.Memory[LengthCell(mc)];
  if (n > 0) {
    // A length beyond the storage of Memory writes what the storage holds.
    const int32_t buf = mc.GR[1] & 0xFFFF;
    const int64_t end = std::min<int64_t>(static_cast<int64_t>(buf) + n, kMemoryCells);
    units.reserve(static_cast<size_t>(end - buf));
    for (int64_t a = buf; a < end; ++a) units.push_back(static_cast<char16_t>(mc.Memory[a] & 0xFFFF));
  }
  return units;
}

}  // namespace

bool svcService(Tcomet2& mc, int32_t effAdr) {
  if (effAdr == 1) {
    InputService(mc);
    return true;
  }
  if (effAdr == 2) {
    OutputService(mc);
  } else if (IsJ(mc)) {
    con::out << "svc " << effAdr << " は仕様に記述がないので、NOP と同じ動作をするものとした。 ";
  } else {
    con::out << effAdr << " works as NOP does. "
             << "Because there is no description about " << effAdr << " "
             << "in Spec.of CASL2. ";
  }
  return false;
}

int stackPush(Tcomet2& mc, int32_t effAdr) {
  mc.SP = static_cast<int32_t>(static_cast<uint32_t>(mc.SP) - 1u);
  const uint32_t i = 65535u - static_cast<uint32_t>(mc.SP);
  if (i < kStackGuard) {
    mc.stackArea[i] = effAdr & 0xFFFF;
    return 0;
  }
  const int32_t p = mc.PR - 1;
  if (IsJ(mc)) {
    con::out << "スタックエリア（このシミレイターでは " << kStackQuoted << " 個）をこえて"
             << "スタックしようとしたので実行を中止しました。"
             << "#" << HexDigits(p) << "=Dec" << p << "番地の実行で発生。";
  } else {
    con::out << "The virtual OS has terminated the comet2. "
             << "Because the comet2 was going to save a data "
             << "into an inappropriate memory area "
             << "beyond the so-called stack area. "
             << "It has happened when an opcode at address "
             << "of #" << HexDigits(p) << " is executed. "
             << "The stack area is allocated between "
             << "#FFFF and (#FFFF(hex)-500(dec)) in memory. ";
  }
  return 9999;
}

std::string OrdinalA(int n) {
  if (n == 1) return "1st";
  if (n == 2) return "2nd";
  if (n == 3) return "3rd";
  return std::to_string(n) + "th";
}

namespace {

// The guard of an indexed ST: the stop at or above `stopAt`, whose message
// names `named`, and the warning at or above `maxMemory`, the reserved size.
int StoreGuard(Tcomet2& mc, int32_t adr, int32_t stopAt, int32_t named, int32_t maxMemory) {
  const int32_t p = mc.PR - 1;
  if (adr >= stopAt) {
    if (IsJ(mc)) {
      con::out << "実行時エラー：　中止" << con::endl
               << "#" << HexDigits(p) << " = " << p << " （10進数）番地の命令の実行時 " << named
               << " 番地を超えてデータを"
               << "ストア（ＳＴ）しようとしました。"
               << "これは危険なので暴走をしないように実行を停止させました。" << con::endl;
    } else {
      con::out << "Terminated!" << con::endl
               << "The COMET2 has 65536 words in memory. " << con::endl
               << "When an opcode at " << "#" << HexDigits(p) << " was executed, "
               << "a virtual OS in drillasm has detected the comet2 was "
               << "going to store a data beyond the maximam address "
               << "of " << named << ". "
               << "So the OS has terminated the comet2; "
               << " otherwise the comet2 would get out of control. " << con::endl;
    }
    return 999;
  }
  if (adr < maxMemory) return 0;
  const bool pIn = InMemory(p);
  const int32_t n = pIn ? mc.execCount[p] : 0;
  const int32_t word = pIn ? mc.Memory[p] : 0;
  if (IsJ(mc)) {
    con::out << con::endl << con::endl
             << " 警告： 確保した（comet2の）メモリ領域以外への書き込み！\n"
             << "あなたのプログラムが確保したメモリ領域は " << maxMemory - 1 << " （10進数）番地までです。\n"
             << "これを超えて " << adr << " （10進数）番地にデータがストア（ST）されました。\n"
             << "これはあなたが意図したものですか。" << con::endl
             << "(Address, Machine Code）=（#" << HexDigits(p) << ", #" << HexDigits(word) << "）を\n"
             << n << "回目に"
             << "実行した時に発生しました。 " << con::endl;
  } else {
    con::out << con::endl
             << "Warning: Out of Range" << con::endl
             << "Your reserved memory is " << maxMemory << " words in size. " << con::endl
             << "A data has stored in an address of " << adr << "(Dec)." << con::endl
             << "The address is out of the reserved area." << con::endl
             << "Is this your intention?  "
             << "It has occured when a machine code of \n"
             << "(Address, Machine Code)=(#" << HexDigits(p) << ", #" << HexDigits(word) << ")\n"
             << "is done at the " << OrdinalA(n) << " execution. " << con::endl;
  }
  return 0;
}

}  // namespace

int st511NW(Tcomet2& mc, int32_t adr) { return StoreGuard(mc, adr, kStoreCeiling, kStoreCeiling, b->MaxMemory); }

int st511(Tcomet2& mc, int32_t adr) { return StoreGuard(mc, adr, kFixedStoreStop, kFixedStoreNamed, mc.tMaxMemory); }
