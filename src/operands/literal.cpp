// Literals: their syntax checks before the operands are split.
#include "operands/adr_const.h"

int CkLiteral15NW(int) { return 0; }
int CkStrConstLiteralNW10CS(int) { return 0; }
int DetStrConstGL10CS(int&, wview) { return 0; }
