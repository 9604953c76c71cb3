// The labels of a program: duplicates and labels that nothing names.
// CkLabelInUseNW, the stage, is declared in records/stages.h.
#pragma once

#include "records/stages.h"

// Two lines from `first` to `last` (both included) with the same labelStr:
// the first such pair, i before j, and nothing more. Returns 1 when it
// reported one, else 0.
int CkLabelDoubleNW(int first, int last);
