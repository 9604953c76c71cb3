#include "comet2/comet2.h"

void ResetComet2(Tcomet2& mc) {
  mc.callDepth = 0;
  mc.PR = 0;
  mc.tMaxMemory = 0;
  mc.SP = 0xFFFF;
  for (int a = 0; a < kLineOfAdrUsed; ++a) {
    mc.Memory[a] = 0;
    mc.execCount[a] = 0;
    mc.lineOfAdr[a] = -1;
  }
  mc.maxExecCount = 0;
  mc.execCountLog = 0;
  for (int k = 0; k < 500; ++k) mc.stackArea[k] = 0;
  mc.GR.fill(0);
  mc.cmpResult = 0;
  mc.Fovf = mc.Fsign = mc.Fzero = 0;
  mc.srcFileName.clear();
}
