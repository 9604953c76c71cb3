// The records of the assembler back to their start, for the tests and the
// benchmarks that drive the stages in this process: the basic data, the
// analysis state and the file data, the counters of all three, and the
// message log.
#pragma once

#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/records.h"
#include "records/singletons.h"

inline void FreshRecords() {
  ResetBasicData();
  ResetCorrectScode();
  ResetFileData();
  fileData->ZeroCounters();
  b->ZeroCounters();
  cs->ZeroCounters();
  msgLog->ClearMsgLog();
}
