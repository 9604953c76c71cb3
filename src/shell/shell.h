// The program shell: the main object, start-up, the mode dispatch, the Fight
// loop of one mode, the main menu and the settings file.
#pragma once

#include <array>
#include <string>

#include "records/mode.h"
#include "records/records.h"

// The main object. It lives on the stack of main.
class TGame : public TDiagBase {
 public:
  TGame();

  int TextEditorIndex = 0;  // 0, 1 or 2
  std::string ProgDirCh;      // the current directory at start
  std::string SrcFileNameCh;  // name of the linked source, shown in the reports
  std::string CurrentFileCh;  // the file of the current pass
  std::array<std::string, 5> TextEditorNames;
  std::string workStr1;
  std::string CurrentFile;  // same as CurrentFileCh; a Fight writes both
  std::string ProgDir;      // same as ProgDirCh
  std::string workStr2;
  int SettingsValue = 0;
  std::string ModeTag = "NWW";  // the mode's name after trimming
  std::string workStr3;
  int SilentSetting = 0;
  int spareInt1 = 0, spareInt2 = 0;
};

// What a Fight returns to the dispatch.
constexpr int ModeChangeCode = 8888;
constexpr int ExitCode = 123123;

// Start-up: the current directory, the settings, the language; then the
// dispatch.
void Play(TGame& game);

// Runs the Fight of `mode`, and another one after each change of mode.
int DispatchFight(TGame& game, const std::string& mode);

// The banner of a Fight's entry; after three banners, one empty line.
void DspBanner(const std::string& modeName);
// For tests: the banner counter back to 0.
void ResetBannerCount();

// Steps of one pass on a file that ReadSource has read, for the Fight and
// for any other front end. AnalyseSource runs the analysis stages, each
// behind its gate, and tells whether the file is clean and goes on to the
// link; LinkSource makes the machine ready and links (the result of
// Link31NWGM: 0 or above when the image is loaded).
bool AnalyseSource(TDiagBase& game, const FightMode& mode, int loadResult);
int LinkSource(TDiagBase& game);

// The Fight loop of one mode: 0 for the end of the program, 8888 for a
// change of mode.
int Fight(TGame& game, const FightMode& mode);
int FightNwW(TGame& game);
int FightWP(TGame& game);
int FightAP(TGame& game);
int FightNA(TGame& game);
int FightNaW(TGame& game);
int FightNH(TGame& game);

// The main menu, once per pass: 0 when `fileName` is to be loaded, 8888 for
// a change of mode, 123123 to leave, any other value for a carried-out item.
int MainMenu(TFileData& fd, std::string& fileName);

// The mode selector of menu item 7: 8888 when the mode changed, else -1.
int ModeSelector(TFileData& fd);

// The settings file.
void ReadSettings(const std::string& path);
void WriteSettings(const std::string& path);
void WriteDefaultSettings(const std::string& path);
