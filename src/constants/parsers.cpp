// The parsers of decimal, hexadecimal and string constants.
#include "constants/constants.h"

int CkDecConstG(TDiagBase&, int, int, wview, const char*) { return 0; }
int32_t DecStrToIntG(TDiagBase&, int, int, wview) { return 0; }
int CkHexConstG(TDiagBase&, int, int, wview) { return 0; }
int32_t HexStrToIntG(wview) { return 0; }
int IsStrConstClosedGL10CS(TDiagBase&, int, wview, int) { return 0; }
int CountWordKazuAtCharConst_NAWCS(wview) { return 0; }
wstr OrdinalW(int n) { return WNum(n); }
