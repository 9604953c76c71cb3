// The long-lived objects of the program and the line and program records
// they hold. Every object exists once, is built before main runs, lives to
// the end of the process and is reset, never rebuilt, between passes.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "records/text.h"

// ---------------------------------------------------------------------------
// Limits
constexpr int MaxLine = 330;           // fixed line tables, label table of cs
constexpr int MaxMemoryDCDS = 3500;    // DC and DS words of the fixed-table mode
constexpr int MaxMemoryLiteral = 300;  // literal words of the fixed-table mode
constexpr int GRKazuConst = 8;         // general registers
constexpr int OprndChHSize = 250;      // characters of an operand slot
constexpr int OprndChHUsed = 225;      // characters used of oprndComChH

// Classes of a diagnostic.
enum MsgKind : int { kError = 100, kWarning = 200, kNote = 400, kMemo = 500 };

// ---------------------------------------------------------------------------
// The base of every object that writes messages: its language, the report
// names, the message prefixes in both languages and the four counters.
class TDiagBase {
 public:
  TDiagBase();

  int Lang = 0;      // 0 Japanese, 1 English
  int LangCopy = 0;  // the second language field; every change writes both
  std::string AssembledFileName = "aaAssembledRegMry.txt";
  std::string ResultantFileName = "aaResultantRegMry.txt";
  std::string SettingsFileName = "DrillAsm.ini";
  wstr AssembledFileNameW = u"aaAssembledRegMry.txt";
  wstr ResultantFileNameW = u"aaResultantRegMry.txt";
  wstr SettingsFileNameW = u"DrillAsm.ini";
  uint8_t MenuShownFlag = 1;

  wstr ErrorJW, WarningJW, NoteJW, MemoJW, LineJW, ConstNrJW;
  wstr ErrorEW, WarningEW, NoteEW, MemoEW, LineEW, ConstNrEW;
  wstr ConstantEW = u" constant: ";

  int ErrorKazu = 0;
  int WarningKazu = 0;
  int NoteKazu = 0;
  int MemoKazu = 0;
  int spareKazu1 = 0;
  int spareKazu2 = 0;

  // Writes both language fields.
  void SetLangBoth(int n) { Lang = n; LangCopy = n; }
  bool IsJ() const { return Lang == 0; }
  void ZeroCounters() { ErrorKazu = WarningKazu = NoteKazu = MemoKazu = spareKazu1 = spareKazu2 = 0; }
  // The counter of a message class.
  int& Counter(int kind);
  // The console prefix of a message class in this object's language.
  const wstr& Prefix(int kind) const;
};

// ---------------------------------------------------------------------------
// Line and program records. The wide record is the one the assembler uses;
// the narrow twin exists for the narrow carriers of the family.
template <class S>
struct WordRecT {
  int32_t wordCode = 0;
  int32_t rlAdr = 0;
  int32_t abAdr = 0;
  int32_t line = 0;
  // e.g. "An operand of START": always a text of the program itself, so the
  // record holds a view of it.
  std::basic_string_view<typename S::value_type> wordNote;
};

template <class S>
struct LiteCharT {
  int32_t charValue = 0;
  int32_t charAbAdr = 0;
};

template <class S>
struct LiteConstT {
  int32_t liteValue = 0;
  int32_t liteRlAdr = 0;
  int32_t liteAbAdr = 0;
  std::vector<LiteCharT<S>> liteChars;
  S liteText;               // the literal as written, with its "="
  int32_t liteWordKazu = 0;  // 1 for a number, the characters of a string
  std::string liteKind;     // "LiteDecConst", "LiteHexConst", "LiteCharConst"
};

template <class S>
struct OprndAtDCT {
  int32_t oprndValue = 0;
  int32_t oprndAbAdr = 0;
  std::vector<LiteCharT<S>> oprndChars;
  std::string DataTypeStrFlag;  // "Dec", "Hex", "Label", "AdrConst", "MoziRetuConst", "CharConst"
  S oprndText;                  // the operand as written
};

template <class S>
struct SrcLineT {
  S rawStr;   // the line as read
  S editStr;  // the working copy each stage reads and rewrites
  int32_t rlAdr = 0;  // address of the first word, relative to the program
  int32_t abAdr = 0;  // the same, absolute
  S labelStr;
  S opStr;
  int32_t hasLiteral = 0;
  S oprndComStr;  // operand and comment text behind the opcode
  S oprndComChH;  // oprndComStr cut to 225 characters
  S oprnd1ChH, oprnd2ChH, oprnd3ChH, oprnd4ChH;  // split operands
  S commentStr;
  int32_t oprndCount = 0;
  int32_t word_kazu = 0;
  int32_t first_word = 0;
  int32_t second_word = 0;
  std::vector<WordRecT<S>> vecWord;
  std::vector<LiteConstT<S>> vecLiteConst;
  std::vector<OprndAtDCT<S>> vecOprndAtDC;
  uint8_t labelUsed = 0;  // set when an operand names this line's label
  int32_t prgNr = 0;      // the program the line belongs to (written by StartEndNW)

  // Empties the vectors of the record.
  void FreeDetails() {
    vecWord.clear();
    vecLiteConst.clear();
    vecOprndAtDC.clear();
  }
};

using SrcLineW = SrcLineT<wstr>;
using SrcLineA = SrcLineT<std::string>;

template <class S>
struct LabelRecT {
  S name;
  int32_t line = 0;
  int32_t rlAdr = 0;
};

template <class S>
struct PrgDataT {
  int32_t prgWordSize = 0;
  int32_t prgRlAtStart = 0;
  int32_t AbAdrAtStart = 0;
  int32_t prgLiteStart = 0;
  int32_t prgLastAdr = 0;
  int32_t work1 = 0, work2 = 0, work3 = 0;
  std::vector<LabelRecT<S>> labels;
  S PrgName;
  int32_t prgFirstLine = 0;  // line index of START
  int32_t prgEndLine = 0;    // line index of END, not included
  int32_t startLine = 0;     // START and END line of the pairing stage
  int32_t endLine = 0;
  uint8_t prgUsed = 0;  // set when an operand names this program
};

using PrgDataW = PrgDataT<wstr>;
using PrgDataA = PrgDataT<std::string>;

// ---------------------------------------------------------------------------
class TModeState {
 public:
  int Lang = 0;
  int SimpleTitleIndex = 0;
  int SilentModeIndex = 0;
  int BusyModeIndex = 0;
  std::string DefaultMode1 = "WP";
  std::string DefaultMode2 = "WP";
};

// ---------------------------------------------------------------------------
// The source of the current file: lines, programs, settings values.
class TBasicData : public TDiagBase {
 public:
  TBasicData();

  int GRKazu = 8;
  std::string SettingsPath = "drillasm.ini";
  std::array<std::string, 5> TextEditorPath;  // entry 0 is the default editor
  int TextEditorIndex = 0;
  int SimpleTitleIndex = 0;
  int BusyModeIndex = 0;
  std::string FileName;
  wstr FileNameW;
  std::vector<SrcLineA> vecSrcA, vecSrcA2;
  std::vector<SrcLineW> vecSrcW, vecSrcW2;
  std::vector<WordRecT<wstr>> vecWordStore;
  int wordStoreKazu = 0;
  std::vector<PrgDataA> vecPrgA;
  std::vector<PrgDataW> vecPrgW;
  int lineKazu = 0;
  std::string SrcFileName;
  int MaxMemory = 0;
  int PrgKazuInFile = 0;
  int spare1 = 0, spare2 = 0;

  int GetPrgKazuInFile() const { return PrgKazuInFile; }
  void SetPrgKazuInFile(int kazu);
  int GetTextEdIndex() const { return TextEditorIndex; }
  // Stores 0 for an index outside 0 to 2, with three lines of complaint.
  void SetTextEdIndex(int index);
  void SetFileName(const std::string& name);
  // The first and END line of program i, guarded against a bad index.
  int GetStartLine(int i);
  int GetEndLine(int i);
};

// ---------------------------------------------------------------------------
// The menu's object: current file names, mode name, language, editor path,
// and the fixed line tables of the fixed-table mode.
class TFileData : public TDiagBase {
 public:
  TFileData();

  int GRKazu = 8;
  std::array<int32_t, MaxLine> lineNrTable{};
  std::vector<std::array<char, 81>> srcLineTable;    // MaxLine entries
  std::vector<std::array<char, 21>> labelNameTable;  // MaxLine entries
  std::vector<std::array<char, 21>> opNameTable;     // MaxLine entries
  std::string ModeName = "WP";
  std::string CarrierName;
  char ModeLetter = 'W';
  int firstStartLine = 0;
  int firstEndLine = 0;
  int endLineCount = 0;
  int lastLine = 0;
  int startLine = 0;  // the last START and END found by the pairing stages
  int endLine = 0;
  std::string LastSrcFile;
  wstr LastSrcFileW;
  std::string LastSrcFileCh;  // the fixed copy, written only for a non-empty name
  int TextEditorIndex = 0;
  std::string TextEditorPathCh;
  std::array<std::string, 5> TextEditorPath;
  uint8_t SilentFlag = 0;
  std::string lastWordText;
};

// ---------------------------------------------------------------------------
// The detected encoding of the last file opened.
class TMoziCode {
 public:
  int bomKind = 0;  // 0 none, 2 UTF-16 mark, 3 UTF-8 mark
  std::string bomTag;
  int codePage = 0;  // 932, 1200, 1201, 65001; 0 at start
  std::string codeName;
  wstr codeNameW;
};

// ---------------------------------------------------------------------------
// The directory holder: the start directory, the last source file, the
// editor index and the editor command.
class TDirHolder {
 public:
  std::string CurrentDir;
  std::string CurrentDirCh;
  std::string LastSrcFile;
  int TextEditorIndex = 0;
  std::string EditorCommand;
};

// ---------------------------------------------------------------------------
// The label table of the fixed-table mode.
class TLabelSpace {
 public:
  uint8_t resetFlag1 = 0, resetFlag2 = 0;
  std::vector<std::string> names;
  std::vector<std::array<char, 15>> nameTexts;
  std::vector<int32_t> lineNrs;
  std::vector<int32_t> adrs;
  std::vector<uint8_t> used;
  int LabelKazuInFile = 0;

  void Clear();  // counts and tables emptied, capacity kept
};

// ---------------------------------------------------------------------------
// Resets between passes.
void ResetBasicData();
void ResetBasicDataA();
void ResetFileData();
void FreeLineDetailsW();
void FreeLineDetailsA();

// Sets the language on the mode state and on both language fields of
// TFileData, b and cs.
void SetLang(int n);
