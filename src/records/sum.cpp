#include "records/correct_scode.h"
#include "records/singletons.h"
#include "records/stages.h"

void Sum(TDiagBase& game) {
  game.ErrorKazu = fileData->ErrorKazu + b->ErrorKazu + cs->ErrorKazu;
  game.WarningKazu = fileData->WarningKazu + b->WarningKazu + cs->WarningKazu;
  game.NoteKazu = fileData->NoteKazu + b->NoteKazu + cs->NoteKazu;
  game.MemoKazu = fileData->MemoKazu + b->MemoKazu + cs->MemoKazu;
}
