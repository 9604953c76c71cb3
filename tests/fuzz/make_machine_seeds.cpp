// Seeds of the machine's fuzz target from source files: each file that
// assembles in mode NWW gives its memory image in the target's input form
// (machine_input.h), its runs of words that are not 0, once for each variant of the run, with two lines for IN.
//
//   drillasm_fuzz_machine_seeds OUTDIR FILE...
#include <cstdio>
#include <fstream>
#include <string>

#include "comet2/comet2.h"
#include "machine_input.h"
#include "records/console.h"
#include "records/singletons.h"
#include "shell/session.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s OUTDIR FILE...\n", argv[0]);
    return 2;
  }
  const std::string dir = argv[1];
  int made = 0;
  for (int i = 2; i < argc; ++i) {
    const std::string file = argv[i];
    const session::Assembled a = session::AssembleFile(file, FightModeOf("NWW"), 1);
    con::SetDiscard();
    if (!a.assembled) continue;
    std::string stem = file.substr(file.find_last_of('/') + 1);
    for (int variant = 0; variant < 3; ++variant) {
      fuzz::MachineInput in;
      in.control = static_cast<uint8_t>(variant + 3 * (variant % 2));
      in.size = static_cast<uint16_t>(a.words);
      // The memory starts as zeros: the runs of other words are enough.
      for (int w = 0; w < a.words && w < kMemoryCells; ++w) {
        if ((m->Memory[w] & 0xFFFF) == 0) continue;
        if (in.pieces.empty() || in.pieces.back().adr + in.pieces.back().words.size() != static_cast<size_t>(w)) {
          in.pieces.emplace_back();
          in.pieces.back().adr = static_cast<uint16_t>(w);
        }
        in.pieces.back().words.push_back(static_cast<uint16_t>(m->Memory[w]));
      }
      in.lines = {"12", "hello"};
      std::ofstream out(dir + "/" + stem + "-" + std::to_string(variant), std::ios::binary);
      out << fuzz::SerializeMachineInput(in);
      ++made;
    }
  }
  std::fprintf(stderr, "%d machine seeds\n", made);
  return 0;
}
