// The generated CASL II source of the benchmarks: 1,000 lines per program.
// The programs call each other, refer to labels further down, use literals
// and register forms; with `warned`, the first one carries a DS with a comma
// behind its operand (one warning, so that the warnings menu can decline the
// run: the programs loop for ever).
#pragma once

#include <cstdio>
#include <string>

inline std::string GeneratedSource(int programs, bool warned) {
  constexpr int kGroups = 99;  // ten lines each
  std::string s;
  char buf[400];
  for (int p = 0; p < programs; ++p) {
    std::snprintf(buf, sizeof buf, "PRG%03d\tSTART\n", p);
    s += buf;
    for (int g = 0; g < kGroups; ++g) {
      std::snprintf(buf, sizeof buf,
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
      s += buf;
    }
    s += "\tRET\n";
    for (int c = 0; c < 7; ++c) s += warned && p == 0 && c == 0 ? "W\tDS\t1,\n" : "; a comment line\n";
    s += "\tEND\n";
  }
  return s;
}
