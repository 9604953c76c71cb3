// The long-lived objects, defined in one place so that they are built in
// this order before main runs.
#include "records/singletons.h"

#include "comet2/comet2.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "reports/TimeVcl/time_vcl.h"

namespace {
TModeState g_modeState;
TMoziCode g_moziCode;
TimeVcl g_timeVcl;
TDirHolder g_dirHolder;
TFileData g_fileData;
Tcomet2 g_comet2;
TCorrectScode g_cs;
TLabelSpace g_labelSpace;
TBasicData g_b;
TMsgLog g_msgLog;
}  // namespace

TModeState* modeState = &g_modeState;
TMoziCode* moziCode = &g_moziCode;
TimeVcl* timeVcl = &g_timeVcl;
TDirHolder* dirHolder = &g_dirHolder;
TFileData* fileData = &g_fileData;
Tcomet2* m = &g_comet2;
TCorrectScode* cs = &g_cs;
TLabelSpace* labelSpace = &g_labelSpace;
TBasicData* b = &g_b;
TBasicData* b2 = &g_b;
TMsgLog* msgLog = &g_msgLog;
