// The macro instructions IN, OUT, RPUSH and RPOP.
#include "operands/adr_const.h"

int macro2NWCS(TCorrectScode&, int) { return 0; }
int macroR2NWCS(TCorrectScode&, int) { return 0; }
int InOut1NWCS(TCorrectScode&, int, int) { return 0; }
int InOut1NWCS(TCorrectScode&, int) { return 0; }
int ExpandRPushNW(int, int&, int&) { return 0; }
int ExpandRPopNW(int, int&, int&) { return 0; }
