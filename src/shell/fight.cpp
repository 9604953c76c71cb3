// The Fight: one mode's main loop. It owns the order of everything that
// happens to a source file: the menu, the loading, every analysis stage, the
// link, the two reports, the run and the clean-up between passes. The modes
// differ only by the row of the table below.
#include <cstdlib>

#include "comet2/comet2.h"
#include "comet2/run.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "records/stages.h"
#include "reports/TimeVcl/time_vcl.h"
#include "reports/report.h"
#include "shell/shell.h"

namespace {

// The language of `from` on both fields of game, b and cs.
void SpreadLang(TGame& game, int lang) {
  game.SetLangBoth(lang);
  b->SetLangBoth(lang);
  cs->SetLangBoth(lang);
}

// The editor path of b at its own index into TFileData's slot of that index.
void CopyEditorPath() {
  int i = b->TextEditorIndex;
  if (i < 0 || i > 2) i = 0;
  fileData->TextEditorPath[i] = b->TextEditorPath[i];
  fileData->TextEditorPathCh = b->TextEditorPath[i];
}

void ErrorSummary(TGame& game) { DspWarningKazuE(game, u"", 'h'); }

// The end of a Fight: the line details of both carriers are released.
void LeaveFight() {
  ResetCorrectScode();
  ResetFileData();
  FreeLineDetailsW();
  FreeLineDetailsA();
}

// The report of the mode: with or without the count of executions.
void DspRegMryOfMode(const FightMode& mode, const std::string& name) {
  if (mode.countColumn) {
    DspRegMry70NW(*m, name);
  } else {
    DspRegMry68NA(*m, name);
  }
}

// The programs of the file that have a record.
int PrgKazu() {
  int n = b->GetPrgKazuInFile();
  int records = static_cast<int>(b->vecPrgW.size());
  return n < records ? n : records;
}

}  // namespace

bool AnalyseSource(TDiagBase& game, const FightMode& mode, int loadResult) {
  // The name the reports and the machine show for this source.
  if (b->SrcFileName.empty()) b->SrcFileName = fileData->LastSrcFile;
  CopyRawLinesNW();
  if (editNWB() < 0) return false;
  Sum(game);
  if (game.ErrorKazu > 0) return false;

  if (StartEnd10W() < 0) return false;
  Sum(game);
  if (game.ErrorKazu > 0) return false;
  if (StartEnd20NW() < 0) return false;
  Sum(game);
  if (game.ErrorKazu > 0) return false;

  // Every program is paired and stripped of its comments, whatever the
  // results.
  for (int i = 0; i < PrgKazu(); ++i) {
    StartEndNW(i);
    CutCommentNW(i);
  }
  Sum(game);
  if (game.ErrorKazu != 0) return false;

  IsAnySrcOutsideStartEndNW();
  Sum(game);
  if (game.ErrorKazu > 0) return false;

  for (int i = 0; i < PrgKazu(); ++i) CkPrgNameNW(i);
  Sum(game);
  if (game.ErrorKazu > 0) return false;
  if (CkPrgNameDoubleNW() < 0) return false;
  Sum(game);
  if (game.ErrorKazu > 0) return false;
  if (Fight12NW(game) < 0) return false;
  Sum(game);
  if (game.ErrorKazu > 0) return false;

  CkLabelInUseNW();
  if (mode.warnsUncalledPrg) CkPrgNameInUseNW();
  Sum(game);
  if (game.ErrorKazu > 0 || loadResult != 0) return false;
  Sum(game);
  return game.ErrorKazu == 0;
}

int LinkSource(TDiagBase& game) {
  ResetFileData();
  ResetComet2(*m);
  m->dispLang = b->Lang;
  return Link31NWGM(game);
}

namespace {

// Steps 8 to 17 of a pass, for a file that was read. Returns when the pass
// is over, at a gate or after the clean-up.
void RunStages(TGame& game, const FightMode& mode, int loadResult) {
  game.CurrentFileCh = fileData->LastSrcFile;
  game.CurrentFile = fileData->LastSrcFile;
  if (!AnalyseSource(game, mode, loadResult)) return;

  // The assembly is clean.
  timeVcl->stampAssembleEnd();
  if (game.WarningKazu != 0) {
    if (game.IsJ()) {
      DspWarningKazuJ(game, u"");
    } else {
      DspWarningKazuE(game, u"", 'f');
    }
  }
  int linked = LinkSource(game);
  timeVcl->stampLinkEnd();
  timeVcl->DspReadAssembleLinkTime(mode.tag);

  if (linked >= 0) {
    labelSpace->Clear();
    game.SrcFileNameCh = b->SrcFileName;
    m->srcFileName = b->SrcFileName;
    int lang = modeState->Lang > 1 ? 0 : modeState->Lang;
    game.SetLangBoth(lang);

    con::out << (game.IsJ() ? u"アセンブル成功 " : u"Successfully Assembled! ");
    DspReportHintNW(game.Lang, ReportKind::Assembled, game.AssembledFileName);
    DspRegMryOfMode(mode, game.AssembledFileName);

    bool run = true;
    if (game.WarningKazu != 0) {
      run = DspWarningsMenu(game);
    }
    if (run) {
      RunComet2(*m, mode.run);
      RunStatistics(*m);
      DspReportHintNW(game.Lang, ReportKind::Resultant, game.ResultantFileName);
      DspRegMryOfMode(mode, game.ResultantFileName);
    }
  }

  // The clean-up of a pass that reached the link.
  labelSpace->Clear();
  ResetCorrectScode();
  FreeLineDetailsW();
  FreeLineDetailsA();
}

}  // namespace

void CopyRawLinesNW() {
  for (SrcLineW& l : b->vecSrcW) l.editStr = l.rawStr;
}

int Fight(TGame& game, const FightMode& mode) {
  ResetBasicData();
  ResetFileData();
  ResetCorrectScode();
  SetCurrentMode(mode);
  if (mode.clearLogAtEntry) msgLog->ClearMsgLog();
  fileData->ModeLetter = mode.ModeLetter;
  if (mode.CarrierName) fileData->CarrierName = mode.CarrierName;
  DspBanner(mode.name);

  if (fileData->Lang > 1) fileData->SetLangBoth(0);
  SpreadLang(game, fileData->Lang);

  game.TextEditorIndex = fileData->TextEditorIndex;
  if (game.TextEditorIndex > 2 || game.TextEditorIndex < 0) {
    if (mode.reportEditorIndex) {
      con::out << "Error: TextEditorFlag is out of range. " << con::endl
               << "TextEditorIndex=" << game.TextEditorIndex << con::endl
               << "TextEditorIndex is corrected to be 0. " << con::endl;
    }
    game.TextEditorIndex = 0;
    fileData->TextEditorIndex = 0;
  }
  CopyEditorPath();

  std::string fileName;
  for (;;) {
    // The head of a pass.
    Sum(game);
    Sum(game);
    if (game.ErrorKazu > 0) {
      timeVcl->stampAssembleEnd();
      if (mode.repeatLog) msgLog->DspMsgLog();
      timeVcl->DspReadAssembleTime(mode.tag, mode.clockNameAfterErrors);
    }
    if (game.ErrorKazu > 0) ErrorSummary(game);

    ResetBasicData();
    game.ZeroCounters();
    fileData->ZeroCounters();
    cs->ZeroCounters();
    b->ZeroCounters();
    ResetFileData();
    if (mode.clearLogAtHead) msgLog->ClearMsgLog();

    fileData->TextEditorIndex = b->TextEditorIndex;
    CopyEditorPath();
    game.CurrentFile = fileData->LastSrcFile;
    b->SetFileName(fileData->LastSrcFile);

    int loadResult = LoadSource(fileName);
    timeVcl->stampAssembleStart();
    SpreadLang(game, fileData->Lang);

    bool leave = mode.compare8888 ? loadResult > ModeChangeCode
                                  : static_cast<unsigned>(loadResult) > 9000u;
    if (leave) {
      LeaveFight();
      return 0;
    }
    if (loadResult == ModeChangeCode) {
      game.ModeTag = TrimA(fileData->ModeName);
      LeaveFight();
      return ModeChangeCode;
    }
    int noAssemblyTop = mode.compare8888 ? ModeChangeCode - 1 : 6999;
    if (loadResult >= 1 && loadResult <= noAssemblyTop) continue;

    RunStages(game, mode, loadResult);
  }
}

int FightNwW(TGame& game) { return Fight(game, FightModeOf("NWW")); }
int FightWP(TGame& game) { return Fight(game, FightModeOf("WP")); }
int FightAP(TGame& game) { return Fight(game, FightModeOf("AP")); }
int FightNA(TGame& game) { return Fight(game, FightModeOf("NA")); }
int FightNaW(TGame& game) { return Fight(game, FightModeOf("NaW")); }
int FightNH(TGame& game) { return Fight(game, FightModeOf("NH")); }
