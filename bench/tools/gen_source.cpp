// Writes a generated CASL II source of 1,000 lines per program to standard
// output, for the whole-process measurements of the benchmark table:
//
//   drillasm_gen_source PROGRAMS > big.cas
//
// The programs call each other, refer to labels further down, use literals
// and register forms, and the first one carries a DS with a comma behind its
// operand: one warning, so that the warnings menu can decline the run (the
// programs loop for ever).
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  const int programs = argc > 1 ? std::atoi(argv[1]) : 0;
  if (programs < 1 || programs > 999) {
    std::fprintf(stderr, "usage: drillasm_gen_source PROGRAMS (1 to 999); writes 1000 lines per program\n");
    return 2;
  }
  constexpr int kGroups = 99;  // ten lines each
  for (int p = 0; p < programs; ++p) {
    std::printf("PRG%03d\tSTART\n", p);
    for (int g = 0; g < kGroups; ++g) {
      std::printf(
          "A%03d\tLD\tGR1,B%03d\t; a label further down\n"
          "\tADDA\tGR1,=5\n"
          "\tST\tGR1,B%03d\n"
          "\tLD\tGR2,GR1\n"
          "\tCPA\tGR1,GR2\n"
          "\tJZE\tC%03d\n"
          "\tCALL\tPRG%03d\n"
          "C%03d\tSUBA\tGR2,GR1\n"
          "\tJUMP\tA%03d\n"
          "B%03d\tDC\t0\n",
          g, g, g, g, (p + 1) % programs, g, g, g);
    }
    std::printf("\tRET\n");
    for (int c = 0; c < 7; ++c) std::printf(p == 0 && c == 0 ? "W\tDS\t1,\n" : "; a comment line\n");
    std::printf("\tEND\n");
  }
  return 0;
}
