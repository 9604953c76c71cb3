#include "codegen/codegen.h"

int SetMryInAtDS_NWCS(int) { return 0; }
int SetMryInAtDC_NWCS(int) { return 0; }
int SetLiteCharConstMryInNWBD(int, wview) { return 0; }
int SetMemoryNW10GM(TDiagBase&, int) { return 0; }
void addressToLineMap() {}
int CkMaxMrySizeNW() { return 0; }
void PrepareMachineForLink() {}
int Link31NWGM(TDiagBase&) { return -1; }
