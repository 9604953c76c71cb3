// The link: the second address pass over all programs of a file, the memory
// budget and the loader, one after the other.
#include "codegen/codegen.h"
#include "comet2/comet2.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/mode.h"
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
int CkMaxMemory() {
  long long dcds = 0, literal = 0, total = 0;
  for (const SrcLineW& L : b->vecSrcW) {
    if (L.opStr == u"DC" || L.opStr == u"DS") dcds += L.word_kazu;
    for (const LiteConstT<wstr>& lc : L.vecLiteConst) literal += lc.liteWordKazu;
  }
  for (const PrgDataW& p : b->vecPrgW) total += p.prgWordSize;
  int result = 0;
  // The two areas; their messages are English in every language.
  if (dcds > MaxMemoryDCDS) {
    Say(*b, kError, 0,
        {u"Linker Error: Prg Error: MaxMemoryDCDS < max_rl_memory_d",
         u"Reduce your reserved DC and DS memory size\u3000by " + WNum(dcds - MaxMemoryDCDS) + u". "},
        "785E3A85", {}, Head::None);
    result = -1;
  }
  if (literal > MaxMemoryLiteral) {
    Say(*b, kError, 0,
        {u"Linker Error: Prg Error: MaxMemoryLiteral < max_rl_memory_l",
         u"Reduce Your litereal word size by " + WNum(literal - MaxMemoryLiteral) + u". "},
        "729E3A74", {}, Head::None);
    result = -1;
  }
  // The whole image.
  const bool j = b->IsJ();
  if (total > 65536) {
    if (j) {
      Say(*b, kError, 0, {u"必要な全メモリ数は " + WNum(total) + u" 個です。 ", u"65536 個を超えるメモリ領域は確保できない。 "},
          "785E3A86", {}, Head::ClassOnly);
    } else {
      Say(*b, kError, 0,
          {u"Your program needs " + WNum(total) + u" words in memory. ", u"The comet2 is a 16-bit machine. ",
           u"So it has 65536 words in all. ", u"More than 65537 words cannot be reserved. "},
          "785E3A86", {}, Head::ClassOnly);
    }
    return 1;
  }
  if (total > MaxMemoryDCDS) {
    const wstr limit = WNum(MaxMemoryDCDS);
    if (j) {
      Say(*b, kError, 0,
          {u"必要なメモリ数は、少なくても " + WNum(total) + u" 個です。 ",
           u"しかし、このシミレータで用意されている全メモリ数は " + limit + u" 個（パソコンのメモリの節約のため ）なので",
           u"制限をこえています。 必要なメモリ数が少なくなるように", u"プログラムを修正してご利用ください。"},
          "785E3A87", {}, Head::ClassOnly);
    } else {
      Say(*b, kError, 0,
          {u"Your program needs " + WNum(total) + u" words in memory. ",
           u"This simulator has only " + limit + u" words " + u"for the sake of simplicity. ",
           u"So more than " + limit + u" words " + u"cannot be assiged to your program. ",
           u"Reduce the memory size reserved on your source code. "},
          "785E3A87", {}, Head::ClassOnly);
    }
    return 2;
  }
  return result;
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

  // The budget counts its error on b; the link counts it once more. The
  // fixed-table mode has a budget of its own.
  if (CurrentMode().fixedBudget ? CkMaxMemory() != 0 : CkMaxMrySizeNW() < 0) {
    Sum(game);
    game.ErrorKazu += 1;
    return -2;
  }

  addressToLineMap();
  for (int p = 0; p < n; ++p) SetMemoryNW10GM(game, p);
  m->tMaxMemory = b->MaxMemory;
  return 0;
}
