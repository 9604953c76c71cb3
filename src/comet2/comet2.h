// The COMET II machine: one flat object for the whole life of the program.
// Its cells are 32 bits wide and hold the 16-bit machine value in their low
// half; what the upper half holds depends on who wrote the cell.
#pragma once

#include <array>
#include <cstdint>
#include <string>

// Storage behind the limits of the machine.
constexpr int kMemoryCells = 65635;
constexpr int kLineOfAdrUsed = 65545;
constexpr int kStackCells = 510;

class Tcomet2 {
 public:
  int32_t callDepth = 0;
  std::array<int32_t, kMemoryCells> Memory{};
  std::array<int32_t, kMemoryCells> execCount{};
  int32_t maxExecCount = 0;
  int32_t execCountLog = 0;
  std::array<int32_t, kMemoryCells> lineOfAdr{};
  int32_t tMaxMemory = 0;
  std::array<int32_t, kStackCells> stackArea{};
  std::array<int32_t, 8> GR{};
  int32_t PR = 0;
  int32_t effAdr = 0;
  int32_t SP = 0xFFFF;
  int32_t cmpResult = 0;
  int32_t Fovf = 0;
  int32_t Fsign = 0;
  int32_t Fzero = 0;
  int32_t dispLang = 0;
  std::string srcFileName;
};

// The reset of the machine (dispLang is kept).
void ResetComet2(Tcomet2& mc);

extern Tcomet2* m;
