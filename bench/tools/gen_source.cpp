// Writes a generated CASL II source of 1,000 lines per program to standard
// output, for the whole-process measurements of the benchmark table:
//
//   drillasm_gen_source PROGRAMS > big.cas
#include <cstdio>
#include <cstdlib>

#include "source_text.h"

int main(int argc, char** argv) {
  const int programs = argc > 1 ? std::atoi(argv[1]) : 0;
  if (programs < 1 || programs > 999) {
    std::fprintf(stderr, "usage: drillasm_gen_source PROGRAMS (1 to 999); writes 1000 lines per program\n");
    return 2;
  }
  const std::string s = GeneratedSource(programs, true);
  std::fwrite(s.data(), 1, s.size(), stdout);
  return 0;
}
