// The main menu: the learner's only way of steering the program between two
// passes, and the mode selector of its item 7.
#include <cerrno>
#include <cstdlib>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "shell/platform.h"
#include "shell/shell.h"
#include "source/filename.h"

namespace {

int EnterHintCount = 0;

// A decimal number that fills the whole (trimmed) text; 0 when it does not.
long MenuNumber(const std::string& line) {
  std::string t = TrimA(line);
  errno = 0;
  char* end = nullptr;
  long v = std::strtol(t.c_str(), &end, 10);
  if (end != t.c_str() + t.size()) return 0;
  return v;
}

int EditorIndexOf(const TFileData& fd) {
  int i = fd.TextEditorIndex;
  return i < 0 || i > 2 ? 0 : i;
}

// The editor that item 2, 3, 5, 55 and 8 run: the user's own for index 0,
// the configured path for 1 and 2.
void BuildEditorCommand(const TFileData& fd) {
  int i = EditorIndexOf(fd);
  if (i == 0) {
    dirHolder->EditorCommand = shell::UserEditor() + " ";
  } else {
    dirHolder->EditorCommand = TrimA(fd.TextEditorPath[i]) + " ";
  }
}

void ShowThroughEditor(const TFileData& fd, const std::string& file) {
  int i = EditorIndexOf(fd);
  std::string editor = i == 0 ? dirHolder->EditorCommand : NormFilenameStr(fd.TextEditorPath[i]);
  // The name is an argument of its own: no quoting, only '/' for '\'.
  shell::RunEditor(editor, SlashFilenameStr(TrimFilenameStr(file)));
}

void LongMenu(const TFileData& fd) {
  if (fd.IsJ()) {
    con::out << u"メニュー：" << con::endl
             << u" 1.  ファイル名（プログラム名）を指定する。例 : src/pn100.txt" << con::endl
             << u"11.  前回アセンブルまたは開いたファイルを再アセンブルする。" << con::endl
             << u" 2.  アセンブル結果 を表示する。" << fd.AssembledFileName << con::endl
             << u" 3.  実行結果       を表示する。" << fd.ResultantFileName << con::endl
             << u" 4.  指定フォルダの中のファイルリストを表示する。 " << con::endl
             << u" 5.  指定のテキストファイルを表示する。" << con::endl
             << u"55.  前回開いたまたはアセンブルしたファイルを再度開く。 " << con::endl
             << u"123 プログラムを終了する。" << con::endl
             << u"メニュー番号を入力してください。" << con::endl;
  } else {
    con::out << "Menu:" << con::endl
             << " 1.  Input a filename to assemble.   e.g. src/pn100.txt" << con::endl
             << "11.  assembles the previously assembled or opened file once again. " << con::endl
             << " 2.  shows an assembled result of " << fd.AssembledFileName << con::endl
             << " 3.  shows an execution result of " << fd.ResultantFileName << con::endl
             << " 4.  shows a list of files in a specified folder.   e.g.  src" << con::endl
             << " 5.  displays a specified text file.   e.g.  src/list792j.txt" << con::endl
             << "55.  displays the previously opened or assembled text file. " << con::endl
             << "123. Exit " << con::endl
             << "Input a menu number." << con::endl;
  }
}

void ShortMenu(const TFileData& fd) {
  if (fd.IsJ()) {
    con::out << u"メニュー：" << con::endl
             << u" 1.  ファイル名（プログラム名）を指定する。" << con::endl
             << u"11.  前回のファイルを再アセンブルする。" << con::endl
             << u" 2.  " << fd.AssembledFileName << con::endl
             << u" 3.  " << fd.ResultantFileName << con::endl
             << u" 4.  指定フォルダの中のファイルリストを表示 " << con::endl
             << u" 5.  指定のファイルを表示する。" << con::endl
             << u"55.  前回のファイルを再度開く。 " << con::endl
             << u"123 プログラムを終了する。" << con::endl
             << u"メニュー番号を入力してください。" << con::endl;
  } else {
    con::out << "Menu:" << con::endl
             << " 1.  Input a filename to assemble." << con::endl
             << "11.  assembles the previous file once again. " << con::endl
             << " 2.  " << fd.AssembledFileName << con::endl
             << " 3.  " << fd.ResultantFileName << con::endl
             << " 4.  shows a list of files in a specified folder." << con::endl
             << " 5.  displays a specified text file." << con::endl
             << "55.  displays the previous file. " << con::endl
             << "123. Exit" << con::endl
             << "Input a menu number." << con::endl;
  }
}

void ModeList() {
  con::out << "Mode Selector: Input a menu number." << con::endl
           << "1. NWW (Recommended at present)" << con::endl
           << "2. WP" << con::endl
           << "3. AP" << con::endl
           << "4. NA" << con::endl
           << "5. NaW" << con::endl
           << "6. NH" << con::endl
           << "9. NwW by default" << con::endl
           << "33. Cancel" << con::endl;
}

void OpenHelp(const TFileData& fd) {
  std::string help = shell::HelpDocumentPath(fd.IsJ());
  if (help.empty()) {
    std::string where;
    for (const std::string& folder : shell::HelpDocumentFolders()) where += " " + folder;
    if (fd.IsJ()) {
      con::out << u"ガイド help.ja.md が見つかりません。探したフォルダ:" << where << con::endl;
    } else {
      con::out << "The guide help.md is not found. Folders searched:" << where << con::endl;
    }
    return;
  }
  const char* x11 = std::getenv("DISPLAY");
  const char* wayland = std::getenv("WAYLAND_DISPLAY");
  // A desktop opens it with its own viewer; without one (or without
  // xdg-open) the editor shows it.
  if (((x11 && *x11) || (wayland && *wayland)) && shell::RunCommand({"xdg-open", help}) == 0) return;
  shell::RunEditor(shell::UserEditor(), help);
}

}  // namespace

int ModeSelector(TFileData& fd) {
  ModeList();
  long n = MenuNumber(con::ReadLine(14));
  while (n == 0) {
    if (fd.IsJ()) {
      con::out << u"メニュー番号以外の入力がありましたのでもう一度！" << con::endl;
    } else {
      con::out << "You are expected to input a happy menu number." << con::endl;
    }
    ModeList();
    n = MenuNumber(con::ReadLine(14));
  }
  std::string kept = fd.ModeName;
  switch (n) {
    case 1: fd.ModeName = "NWW"; break;
    case 2: fd.ModeName = "WP"; break;
    case 3: fd.ModeName = "AP"; break;
    case 4: fd.ModeName = "NA"; break;
    case 5: fd.ModeName = "NaW"; break;
    case 6: fd.ModeName = "NH"; break;
    case 9: fd.ModeName = "NWW"; break;  // labelled "NwW", stored as the recommended name
    case 33: return -1;
    default: fd.ModeName = "NWW"; break;
  }
  return fd.ModeName == kept ? -1 : ModeChangeCode;
}

int MainMenu(TFileData& fd, std::string& fileName) {
  BuildEditorCommand(fd);
  fd.MenuShownFlag = 1;

  // The pause: the learner reads what the last pass printed.
  if (fd.IsJ()) {
    con::out << u"\n入力（Enter）キィを押すと次へ進む。";
  } else if (CurrentMode().enterHintAlwaysThe) {
    // The twin of the fixed-table mode keeps no count of its pauses.
    con::out << "\nPress the Enter key to go next. ";
  } else {
    con::out << (EnterHintCount == 0 ? "\nPress your Enter key to go next. " : "\nPress the Enter key to go next. ");
    ++EnterHintCount;
  }
  con::ReadLine(44);

  for (;;) {
    if (modeState->SilentModeIndex == 0 && modeState->SimpleTitleIndex == 0) {
      LongMenu(fd);
    } else {
      ShortMenu(fd);
    }
    long item = MenuNumber(con::ReadLine(40));
    if (item == 0) {
      if (fd.IsJ()) {
        con::out << u"メニュー番号以外の入力がありましたのでもう一度！" << con::endl;
      } else {
        con::out << "You are expected to input a good menu number." << con::endl;
      }
      continue;
    }
    switch (item) {
      case 1:
        con::out << con::endl;
        if (fd.IsJ()) {
          con::out << u"ファイル名(拡張子省略可) を入力してください。 " << con::endl;
        } else {
          con::out << "Input a filename (with no extension). " << con::endl;
        }
        fileName = GetFilenameWithExtStr();
        msgLog->ClearMsgLog();
        return 0;
      case 11:
        fileName = SlashFilenameStr(fd.LastSrcFile);
        b->SetFileName(fileName);
        msgLog->ClearMsgLog();
        return 0;
      case 2:
        ShowThroughEditor(fd, fd.AssembledFileName);
        return 2;
      case 3:
        ShowThroughEditor(fd, fd.ResultantFileName);
        return 3;
      case 4: {
        if (fd.IsJ()) {
          con::out << u"フォルダ名を入力してください。　例１： src  例２：　src/example" << con::endl;
        } else {
          con::out << "Input a folder name.  eg1:  src     eg2:  src/example" << con::endl;
        }
        std::string folder = GetFilenameStrA_TPO();
        if (folder.empty()) {
          shell::RunCommand({"ls", "-l"});
        } else {
          shell::RunCommand({"ls", "-l", "--", SlashFilenameStr(folder)});
        }
        return 4;
      }
      case 5: {
        if (fd.IsJ()) {
          con::out << u"テキスト名を入力してください。　例１： src\\pn3035  　例２: src/list792j" << con::endl;
        } else {
          con::out << "Input a text filename to edit. " << con::endl;
        }
        std::string name = GetFilenameWithExtStr();
        if (!name.empty()) ShowThroughEditor(fd, name);
        return 52;
      }
      case 55:
        ShowThroughEditor(fd, fd.LastSrcFile);
        return 550;
      case 7:
        if (ModeSelector(fd) < 0) continue;
        return ModeChangeCode;
      case 8:
        // The settings file opens in the user's editor whatever the index.
        shell::RunEditor(shell::UserEditor(), "drillasm.ini");
        ReadSettings(b->SettingsPath);
        return 88;
      case 9:
        SetLang(fd.Lang == 0 ? 1 : 0);
        continue;
      case 10:
        OpenHelp(fd);
        return 11;
      case 85:
      case 88:
        shell::RunCommand({"rm", "-i", "drillasm.ini"});
        continue;
      case 123:
        WriteSettings(b->SettingsPath);
        return ExitCode;
      default:
        if (fd.IsJ()) {
          con::out << u"もう一度" << con::endl;
        } else {
          con::out << "Try it again!" << con::endl;
        }
        continue;
    }
  }
}
