// Stub of the report writer, until its real body lands.
#include "records/stages.h"
int DspRegMry70NW(Tcomet2&, const std::string&) { return 0; }
