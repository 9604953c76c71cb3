// The main object, the start-up, the banner and the dispatch over modes.
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/singletons.h"
#include "shell/shell.h"

TGame::TGame() = default;

namespace {

int bannerCount = 0;

// The current directory, or "" when it can't be had.
std::string CurrentDir() {
  std::string buf(4096, '\0');
  for (;;) {
    if (::getcwd(buf.data(), buf.size())) {
      buf.resize(std::strlen(buf.c_str()));
      return buf;
    }
    if (errno != ERANGE || buf.size() > (1u << 20)) return std::string();
    buf.resize(buf.size() * 2);
  }
}

}  // namespace

void ResetBannerCount() { bannerCount = 0; }

void DspBanner(const std::string& modeName) {
  if (bannerCount > 2) {
    con::out << con::endl;
    ++bannerCount;
    return;
  }
  ++bannerCount;
  if (b->SimpleTitleIndex < 0 || b->SimpleTitleIndex > 1) b->SimpleTitleIndex = 0;
  if (b->SimpleTitleIndex == 0) {
    con::out << con::endl << "CASL2/COMET2 Drill  Ver. 4.4.5  " << "x64  " << "R_" << modeName << con::endl;
  } else {
    con::out << "Drill Asm  Ver. 4.4.5  " << "x64  " << "R_" << modeName << con::endl;
  }
  con::out << con::endl;
  con::out << (b->SimpleTitleIndex == 0 ? "Assembler, Linker, and Simulator" : "Assembler & Simulator") << con::endl;
  con::out << "Linux console build, C++20" << con::endl;
  con::out << "Free to use for learning and teaching assembly language." << con::endl;
  con::out << con::endl;
}

void Play(TGame& game) {
  std::string dir = CurrentDir();
  if (dir.empty()) {
    con::out << "iRt=" << 0 << ": Fail to TGame::SetCurrentDirChH()" << con::endl;
  } else {
    game.ProgDir = dir;
    game.ProgDirCh = dir;
  }
  std::string dir2 = CurrentDir();
  if (dir2.empty()) {
    con::out << "_getcwd error: " << std::strerror(errno) << con::endl;
  } else {
    dirHolder->CurrentDir = dir2;
    dirHolder->CurrentDirCh = dir2;
  }

  ReadSettings(b->SettingsPath);

  game.CurrentFile = fileData->LastSrcFile;
  game.CurrentFileCh = fileData->LastSrcFile;

  // The language of the settings goes to every object.
  SetLang(fileData->Lang);
  game.SetLangBoth(fileData->Lang);

  // The silent value of the file stays on modeState only.
  fileData->SilentFlag = static_cast<uint8_t>(game.SilentSetting);

  game.ModeTag = TrimA(fileData->ModeName);
  DispatchFight(game, fileData->ModeName);
}

int DispatchFight(TGame& game, const std::string& mode) {
  int result = 0;
  fileData->ModeName = mode;
  fileData->SilentFlag = static_cast<uint8_t>(game.SilentSetting);
  for (;;) {
    const std::string name = fileData->ModeName;
    if (name == "NH") {
      result = FightNH(game);
    } else if (name == "NWW" || name == "NwW") {
      result = FightNwW(game);
    } else if (name == "NaW") {
      result = FightNaW(game);
    } else if (name == "WP") {
      result = FightWP(game);
    } else if (name == "AP") {
      result = FightAP(game);
    } else if (name == "NA") {
      result = FightNA(game);
    } else if (name == "NewChH" || name == "NewChWH") {
      // Reserved names of dropped modes: result keeps its value.
    } else {
      con::out << "FightNwW(); by default." << con::endl;
      result = FightNwW(game);
    }
    if (result == ExitCode || result == 0) return result;
    if (result == ModeChangeCode) {
      game.ModeTag = TrimA(fileData->ModeName);
      if (fileData->Lang > 1) fileData->SetLangBoth(0);
      game.SetLangBoth(fileData->Lang);
    }
  }
}
