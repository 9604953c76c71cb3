#include "records/records.h"

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"

TDiagBase::TDiagBase()
    : ErrorJW(u"エラー： "),
      WarningJW(u"警告： "),
      NoteJW(u"注意： "),
      MemoJW(u"メモ： "),
      LineJW(u" 行目： "),
      ConstNrJW(u" 番目の定数： "),
      ErrorEW(u"Error : "),
      WarningEW(u"Warning : "),
      NoteEW(u"Note : "),
      MemoEW(u"Note : "),
      LineEW(u"line "),
      ConstNrEW(u" Constant Nr=") {}

int& TDiagBase::Counter(int kind) {
  switch (kind) {
    case kError: return ErrorKazu;
    case kWarning: return WarningKazu;
    case kNote: return NoteKazu;
    case kMemo: return MemoKazu;
    default: return spareKazu1;
  }
}

const wstr& TDiagBase::Prefix(int kind) const {
  bool j = IsJ();
  switch (kind) {
    case kWarning: return j ? WarningJW : WarningEW;
    case kNote: return j ? NoteJW : NoteEW;
    case kMemo: return j ? MemoJW : MemoEW;
    default: return j ? ErrorJW : ErrorEW;
  }
}

TBasicData::TBasicData() { TextEditorPath[0] = "notepad.exe"; }

void TBasicData::SetPrgKazuInFile(int kazu) {
  if (kazu < 0) {
    con::out << "PrgError: kazu is negative. kazu=" << kazu << con::endl
             << "  TBasicData::SetPrgKazuInFile(int)" << con::endl;
  }
  PrgKazuInFile = kazu;
}

void TBasicData::SetTextEdIndex(int index) {
  if (index > 2 || index < 0) {
    con::out << "PrgError: index < 0 || 2 < index\n"
             << "The index was corrected to be zero.\n"
             << "TBasicData::SetTextEdIndex(int)" << con::endl;
    index = 0;
  }
  TextEditorIndex = index;
}

void TBasicData::SetFileName(const std::string& name) {
  FileName = name;
  FileNameW = Utf8ToU16(name);
}

int TBasicData::GetStartLine(int i) {
  if (i >= PrgKazuInFile || i < 0 || static_cast<size_t>(i) >= vecPrgW.size()) {
    con::out << "Prg Error: (b->GetPrgKazuInFile() <= i) GetStartLine()" << con::endl;
    return 0;
  }
  return vecPrgW[i].prgFirstLine;
}

int TBasicData::GetEndLine(int i) {
  if (i >= PrgKazuInFile || i < 0 || static_cast<size_t>(i) >= vecPrgW.size()) {
    con::out << "Prg Error; (b->GetPrgKazuInFile() <= i) GetEndLine()" << con::endl;
    return 0;
  }
  return vecPrgW[i].prgEndLine;
}

TFileData::TFileData()
    : srcLineTable(MaxLine), labelNameTable(MaxLine), opNameTable(MaxLine) {
  for (auto& e : srcLineTable) e.fill(0);
  for (auto& e : labelNameTable) e.fill(0);
  for (auto& e : opNameTable) e.fill(0);
}

void TLabelSpace::Clear() {
  names.clear();
  nameTexts.clear();
  lineNrs.clear();
  adrs.clear();
  used.clear();
  LabelKazuInFile = 0;
  resetFlag1 = resetFlag2 = 0;
}

TCorrectScode::TCorrectScode() { Reset(); }

void TCorrectScode::Reset() {
  for (int k = 0; k < 8; ++k) {
    GRNameA[k] = "GR" + std::to_string(k);
    GRNameW[k] = u"GR" + WNum(k);
    GRStr[k] = GRNameW[k];
  }
  GRNameA[8].clear();
  GRNameW[8].clear();
  GRKazu = 8;
  ErrorJS = "エラー ";
  WarningJS = "警告 ";
  LineJS = "行目 ";
  ErrorES = "Error: ";
  WarningES = "Warning: ";
  LineES = "line= ";
  shortPrefixFlag = 1;
}

void ResetCorrectScode() {
  // Everything of the analysis state goes back to its start; the language
  // and the counters stay with the object.
  int lang = cs->Lang, langCopy = cs->LangCopy;
  int e = cs->ErrorKazu, w = cs->WarningKazu, n = cs->NoteKazu, mm = cs->MemoKazu;
  *cs = TCorrectScode();
  cs->Lang = lang;
  cs->LangCopy = langCopy;
  cs->ErrorKazu = e;
  cs->WarningKazu = w;
  cs->NoteKazu = n;
  cs->MemoKazu = mm;
}

void ResetBasicData() {
  b->GRKazu = 8;
  b->lineKazu = 0;
  b->vecSrcW.clear();
  b->vecSrcW2.clear();
  b->vecWordStore.clear();
  b->wordStoreKazu = 0;
  b->vecPrgA.clear();
  b->vecPrgW.clear();
  b->SrcFileName.clear();
  b->MaxMemory = 0;
  b->PrgKazuInFile = 0;
  b->spare1 = b->spare2 = 0;
}

void ResetBasicDataA() {
  b->vecSrcA.clear();
  b->vecSrcA2.clear();
  b->vecPrgA.clear();
}

void ResetFileData() {
  for (int k = 0; k < MaxLine; ++k) {
    fileData->srcLineTable[k][0] = 0;
    fileData->labelNameTable[k][0] = 0;
    fileData->opNameTable[k][0] = 0;
    fileData->lineNrTable[k] = 0;
  }
  fileData->firstStartLine = 0;
  fileData->firstEndLine = 0;
  fileData->lastLine = 0;
  fileData->lastWordText.clear();
}

void FreeLineDetailsW() {
  for (SrcLineW& l : b->vecSrcW) l.FreeDetails();
  ResetBasicData();
}

void FreeLineDetailsA() {
  for (SrcLineA& l : b->vecSrcA) l.FreeDetails();
  ResetBasicDataA();
  ResetBasicData();
}

void SetLang(int n) {
  modeState->Lang = n;
  fileData->SetLangBoth(n);
  b->SetLangBoth(n);
  cs->SetLangBoth(n);
}
