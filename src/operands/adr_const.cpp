// Address operands and the address pass.
#include "operands/adr_const.h"

int CkAdrOperandNWCS(TCorrectScode&, int, int) { return 0; }
int AdrCk53NWCS(int) { return 0; }
int CkAdrConst20NWCS(TCorrectScode&, int, int) { return 0; }
void ResetAdrLookupNW() {}
