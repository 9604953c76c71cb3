// The link: the second address pass over all programs of a file, the memory
// budget and the loader, one after the other.
#include "codegen/codegen.h"
#include "comet2/comet2.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "operands/adr_const.h"
#include "records/singletons.h"
#include "records/stages.h"

// ---------------------------------------------------------------------------
int CkMaxMrySizeNW() {
  long long total = 0;
  for (const PrgDataW& p : b->vecPrgW) total += p.prgWordSize;
  // English in every display language, with the English prefix in front.
  wstr head = b->ErrorEW + u": Your program needs " + WNum(total) + u" words in memory. ";
  if (total > 65535) {
    Say(*b, kError, 0,
        {head, WNum(65535) + u" words cannot be reserved, because the come2 is a 16-bit machine. "}, "8401MX01E",
        {}, Head::None);
    return -1;
  }
  if (total >= 65036) {
    Say(*b, kError, 0,
        {head, u"The comet2 is a 16-bit machine. So it has 65536 words in all. ",
         WNum(65035) + u" words cannot be reserved, because 500 words has been prereserved for Stack Area in comet2. "},
        "8402MX02E", {}, Head::None);
    return -2;
  }
  return 0;
}

// ---------------------------------------------------------------------------
void PrepareMachineForLink() {
  ResetComet2(*m);
  m->dispLang = b->Lang;
  m->GR.fill(0);
  m->SP = 0xFFFF;
  m->Fovf = m->Fsign = m->Fzero = 0;
  m->PR = 0;
  for (int a = 0; a < 1000; ++a) m->Memory[a] = 0;
  for (int a = 65035; a < 65035 + 500; ++a) m->Memory[a] = 0;
}

// ---------------------------------------------------------------------------
int Link31NWGM(TDiagBase& game) {
  int n = b->GetPrgKazuInFile();
  if (n > static_cast<int>(b->vecPrgW.size())) n = static_cast<int>(b->vecPrgW.size());
  if (n < 0) n = 0;

  // Every DC line again, now that the first pass has left every line with an
  // address: a label further down is known.
  for (int p = 0; p < n; ++p) SetMryInAtDC_NWCS(p);

  // The second address pass settles forward references and the names of
  // later programs. The first program with errors ends the link.
  for (int p = 0; p < n; ++p) {
    AdrCk53NWCS(p);
    Sum(game);
    if (game.ErrorKazu > 0) return ~p;
  }

  if (n > 0) b->vecPrgW[0].prgRlAtStart = 0;

  // The budget counts its error on b; the link counts it once more.
  if (CkMaxMrySizeNW() < 0) {
    Sum(game);
    game.ErrorKazu += 1;
    return -2;
  }

  addressToLineMap();
  for (int p = 0; p < n; ++p) SetMemoryNW10GM(game, p);
  return 0;
}
