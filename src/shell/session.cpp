// One file through the pipeline for a front end other than the menu program.
#include "shell/session.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "comet2/comet2.h"
#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "records/stages.h"
#include "records/text.h"
#include "reports/report.h"
#include "shell/shell.h"

namespace session {

namespace {

// Why a file cannot be read, or "" when it can.
std::string ReadProblem(const std::string& path) {
  struct stat st {};
  if (::stat(path.c_str(), &st) != 0) return std::strerror(errno);
  if (S_ISDIR(st.st_mode)) return std::strerror(EISDIR);
  int fd = ::open(path.c_str(), O_RDONLY);
  if (fd < 0) return std::strerror(errno);
  ::close(fd);
  return std::string();
}

bool StartsWith(wview s, wview head) { return s.size() >= head.size() && s.substr(0, head.size()) == head; }

wview SkipBlanks(wview s) {
  while (!s.empty() && (s.front() == u' ' || s.front() == u'\t')) s.remove_prefix(1);
  return s;
}

wview SkipDigits(wview s) {
  while (!s.empty() && s.front() >= u'0' && s.front() <= u'9') s.remove_prefix(1);
  return s;
}

// A message that composes its own head (the class word and the line number)
// into its first sentence loses it here too.
wview DropComposedHead(wview s, const TDiagBase& w, int kind) {
  for (int lang : {1, 0}) {
    TDiagBase probe;
    probe.SetLangBoth(lang);
    const wstr& prefix = probe.Prefix(kind);
    if (!StartsWith(s, prefix)) continue;
    wview rest = s.substr(prefix.size());
    if (lang == 1 && StartsWith(rest, w.LineEW)) {
      rest = SkipDigits(rest.substr(w.LineEW.size()));
      if (StartsWith(rest, u":")) rest.remove_prefix(1);
      return rest;
    }
    wview digits = SkipDigits(rest);
    if (lang == 0 && digits.size() < rest.size() && StartsWith(digits, w.LineJW)) return digits.substr(w.LineJW.size());
    return rest;
  }
  return s;
}

Diagnostic FromRecord(const TMsgRec& r) {
  Diagnostic d;
  d.kind = r.kind;
  d.code = r.code;
  // A message of no line: the class word alone in front, or no head and the
  // first line of the file given.
  const bool lineless = (r.headSize > 0 && r.msgLines[0].size() >= r.headSize &&
                         r.msgLines[0].substr(0, r.headSize) == b->Prefix(r.kind)) ||
                        (r.headSize == 0 && r.line == 0);
  d.line = lineless ? 0 : r.line + 1;
  wstr text;
  for (size_t k = 0; k < r.msgLines.size() && !r.msgLines[k].empty(); ++k) {
    wview part = r.msgLines[k];
    if (k == 0) part = SkipBlanks(DropComposedHead(part.substr(std::min(r.headSize, part.size())), *b, r.kind));
    if (k > 0) text += u' ';
    text += part;
  }
  std::replace(text.begin(), text.end(), u'\n', u' ');
  d.text = U16ToUtf8(text);
  return d;
}

// The log in the order of printing: each quiet record stands behind the
// logged records that were printed before it.
std::vector<Diagnostic> Diagnostics() {
  std::vector<Diagnostic> all;
  const std::vector<TMsgRec>& logged = msgLog->WideLog;
  const std::vector<TMsgRec>& quiet = msgLog->QuietLog;
  size_t q = 0;
  for (size_t i = 0; i <= logged.size(); ++i) {
    for (; q < quiet.size() && quiet[q].before <= i; ++q) {
      if (quiet[q].kind != 0) all.push_back(FromRecord(quiet[q]));
    }
    if (i < logged.size() && logged[i].kind != 0) all.push_back(FromRecord(logged[i]));
  }
  return all;
}

}  // namespace

const char* KindName(int kind) {
  switch (kind) {
    case kError: return "error";
    case kWarning: return "warning";
    case kNote: return "note";
    default: return "memo";
  }
}

void FreshStart(const FightMode& mode, int lang) {
  *b = TBasicData();
  *cs = TCorrectScode();
  *fileData = TFileData();
  *moziCode = TMoziCode();
  *modeState = TModeState();
  msgLog->ClearMsgLog();
  msgLog->ZeroCounters();
  labelSpace->Clear();
  ResetComet2(*m);
  m->Memory.fill(0);
  m->execCount.fill(0);
  m->lineOfAdr.fill(0);
  m->stackArea.fill(0);
  m->srcFileName.clear();
  SetLang(lang);
  fileData->ModeName = mode.name;
  fileData->ModeLetter = mode.ModeLetter;
  if (mode.CarrierName) fileData->CarrierName = mode.CarrierName;
  SetCurrentMode(mode);
}

Assembled AssembleFile(const std::string& path, const FightMode& mode, int lang) {
  FreshStart(mode, lang);
  Assembled a;
  a.readError = ReadProblem(path);
  if (!a.readError.empty()) return a;
  a.readable = true;

  TGame game;
  game.SetLangBoth(lang);
  fileData->LastSrcFile = path;
  b->SetFileName(path);
  con::SetDiscard();
  const int loaded = ReadSource(path);
  a.encoding = mode.reader == SourceReader::Narrow ? "cp932" : moziCode->codeName;
  if (loaded == 0) {
    bool clean = AnalyseSource(game, mode, 0);
    Sum(game);
    a.warnings = game.WarningKazu;
    a.notes = game.NoteKazu;
    a.memos = game.MemoKazu;
    if (clean) {
      const int linked = LinkSource(game);
      a.assembled = linked >= 0;
      if (a.assembled) {
        m->srcFileName = b->SrcFileName;
        a.words = b->MaxMemory;
      }
      Sum(game);
    }
    a.errors = game.ErrorKazu;
  }
  con::SetCapture(nullptr);
  // A file that the reader refused has its reason among the diagnostics.
  a.diagnostics = Diagnostics();
  return a;
}

bool WriteReport(const FightMode& mode, const std::string& path, bool resultant) {
  const TDiagBase names;
  return WriteRegMryFile(*m, path, resultant ? names.ResultantFileName : names.AssembledFileName,
                         mode.countColumn) == 0;
}

}  // namespace session
