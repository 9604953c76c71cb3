// DC and DS lines.
#include "constants/constants.h"

int OprndAtDCtoChH_NWCS(TCorrectScode&, int, int) { return 0; }
int OprndAtDC_NWCS(TCorrectScode&, int) { return 0; }
int dc45NWCS(TCorrectScode&, int) { return 0; }
int TakeOutOprndsAtDC(TCorrectScode&, int) { return 0; }
int CkDC33NW(TCorrectScode&, int) { return 0; }
int SetWordKazuAtDC_NWCS(TCorrectScode&, int) { return 0; }
int OprndAtDS_NWCS(TCorrectScode&, int) { return 0; }
int SetWordKazuAtDS_NWCS(TCorrectScode&, int) { return 0; }
