// Stubs of the per-line analysis stages, until their real bodies land.
#include "records/stages.h"
int Fight12NW(TDiagBase&) { return 0; }
