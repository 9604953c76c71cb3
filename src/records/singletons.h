// The global pointers to the long-lived objects.
#pragma once

#include "records/records.h"

class TCorrectScode;
class TMsgLog;
class Tcomet2;
class TimeVcl;

extern TModeState* modeState;
extern TMoziCode* moziCode;
extern TimeVcl* timeVcl;
extern TDirHolder* dirHolder;
extern TFileData* fileData;
extern Tcomet2* m;
extern TCorrectScode* cs;
extern TLabelSpace* labelSpace;
extern TBasicData* b;
extern TBasicData* b2;  // a second name of the same object
extern TMsgLog* msgLog;
