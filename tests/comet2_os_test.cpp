// The small operating system: IN, OUT, other SVC numbers, the guards of PUSH and of an indexed ST,
// and the simulator's own stops at the end of the stack's storage.
#include "comet2_fixture.h"

namespace comet2_test {
namespace {

class Comet2Os : public Comet2Test {};

// `n` INs (svc 1) or OUTs (svc 2) as the macros expand, of the buffer at 100 and the length word at 99, then RET.
std::vector<int32_t> Services(int svc, int n) {
  std::vector<int32_t> w = {0};
  for (int i = 0; i < n; ++i)
    w.insert(w.end(), {0x7001, 0, 0x7002, 0, 0x1210, 100, 0x1220, 99, 0xF000, svc, 0x7120, 0x7110});
  w.push_back(kRet);
  return w;
}
// The parts `more` and the cells from `at` holding `text`, one unit a cell.
Parts Cells(int at, const std::u16string& text, Parts more = {}) {
  for (size_t i = 0; i < text.size(); ++i) more.push_back({"M" + std::to_string(at + i), text[i]});
  return more;
}
Parts J(Parts p) {  // in Japanese
  p.push_back({"LANG", 0});
  return p;
}

const std::string kOutE = "OS: Output by a Macro Instruction of OUT. \n";

TEST_F(Comet2Os, InputOfTypedLinesEmptyLinesTheEndLongLinesAndWideCharacters) {
  const std::string a300(300, 'A'), bc300 = a300.substr(0, 255) + "BC" + a300.substr(0, 43);
  std::string a100;
  for (int i = 0; i < 100; ++i) a100 += "あ";
  RunTable({
      {"a typed line", Services(1, 1), {{"M103", 77}, {"GR1", 11}, {"GR2", 22}},
       Cells(100, u"ABC", {{"M99", 3}, {"M103", 77}, {"GR1", 11}, {"GR2", 22}, {"SP", 0xFFFF}}),
       {"The comet2 starts running, please wait for a moment ...,\n\nOS: Input some letters from your keyboard. \n"
        "(Input Requirement by a Macro Instruction of IN) \nPress Enter key or Ctrl + Z Keys at the end of your "
        "input. \n" + kEndE}, {}, "ABC\n"},
      {"the prompt in Japanese", Services(1, 1), {{"LANG", 0}}, {},
       {"COMET2 実行中 \nOS: 文字を入力してください。 \nマクロ命令( IN )による入力要求。\n"
        "Enter キイ を押す 又は CTRL + Z を押す と 入力終了。 \n--> 終了\n"}, {}, "x\n"},
      {"an empty line, then the end of the input", Services(1, 2), {{"M99", 9}, {"M100", 'Q'}},
       {{"M99", 0}, {"M100", 'Q'}, {"PR", 25}}, {}, {}, "\n"},
      {"the end of the input at once", Services(1, 1), {{"M99", 9}}, {{"M99", 0}}, {}, {}, ""},
      {"300 characters keep 256, the rest is dropped", Services(1, 2), {},
       Cells(100, u"XYZ", {{"M99", 3}, {"M355", 'B'}, {"M356", 0}}), {}, {}, bc300 + "\nXYZ\n"},
      {"300 characters count 256", Services(1, 1), {}, {{"M99", 256}}, {}, {}, a300 + "\n"},
      {"Japanese characters", Services(1, 1), {}, Cells(100, u"日本語", {{"M99", 3}}), {}, {}, "日本語\r\n"},
      {"a surrogate pair", Services(1, 1), {}, Cells(100, u"a\xD83D\xDE00", {{"M99", 3}}), {}, {}, "a\U0001F600\n"},
      {"a NUL byte ends the text", Services(1, 1), {{"M102", 'Q'}}, Cells(100, u"ab", {{"M99", 2}, {"M102", 'Q'}}),
       {}, {}, std::string("ab\0cd\n", 6)},
      // The cut at 256 bytes keeps 85 whole characters of three bytes and a broken last one.
      {"100 characters of three bytes", Services(1, 1), {}, {{"M99", 86}, {"M184", u'あ'}, {"M185", 0xFFFD}}, {},
       {}, a100 + "\n"},
      {"near the top of memory the storage ends it", {0, Op(0xF0), 1, kRet}, {{"GR1", 0xFFF0}, {"GR2", 50}},
       {{"M50", 200}, {"M65520", 'z'}, {"M" + std::to_string(kMemoryCells - 1), 'z'}}, {}, {},
       std::string(200, 'z') + "\n"},
  });
}

TEST_F(Comet2Os, OutputAndOtherSvcNumbers) {
  std::u16string abc300;
  for (int i = 0; i < 300; ++i) abc300 += static_cast<char16_t>('a' + i % 26);
  // The low 16 bits of a cell count.
  const Parts hi = Cells(100, u"Hi 日本", {{"M99", 5}, {"M101", 'i' | 0x10000}});
  Parts regs = {{"F", 10}, {"PR", 3}};
  for (int i = 0; i < 8; ++i) regs.push_back({"GR" + std::to_string(i), 10 + i});
  const std::vector<int32_t> svc3 = {0, Op(0xF0), 3, kRet};
  RunTable({
      {"characters", Services(2, 1), hi, {}, {"...,\n\n" + kOutE + "Hi 日本\n" + kEndE}},
      {"characters, Japanese", Services(2, 1), J(hi), {},
       {"COMET2 実行中 \nOS: マクロ命令( OUT )による出力 \nHi 日本\n--> 終了\n"}},
      {"length 0", Services(2, 1), {{"M100", 'X'}}, {}, {kOutE + "\n" + kEndE}},
      {"length -1", Services(2, 1), {{"M100", 'X'}, {"M99", -1}}, {}, {kOutE + "\n" + kEndE}},
      {"no limit of 256", Services(2, 1), Cells(100, abc300, {{"M99", 300}}), {},
       {kOutE + U16ToUtf8(abc300) + "\n" + kEndE}},
      {"surrogates joined or replaced", Services(2, 1), Cells(100, u"\xD83D\xDE00x\xD800y\xDC00", {{"M99", 6}}), {},
       {kOutE + "\xF0\x9F\x98\x80x\xEF\xBF\xBDy\xEF\xBF\xBD\n"}},
      {"a length beyond the memory", {0, Op(0xF0), 2, kRet},
       {{"GR1", 0xFFFF}, {"GR2", 50}, {"M50", 0x7FFFFFFF}, {"M65535", 'E'}}, {}, {kOutE + "E", kEndE}},
      {"svc 3", svc3, regs, regs,
       {"...,\n3 works as NOP does. Because there is no description about 3 in Spec.of CASL2. " + kEndE}},
      {"svc 3, Japanese", svc3, {{"LANG", 0}}, {},
       {"svc 3 は仕様に記述がないので、NOP と同じ動作をするものとした。 --> 終了\n"}},
  });
}

// LAD GR1,n ; 3: PUSH 7 ; SUBA GR1,ONE ; JNZ 3 ; POP GR2 ; RET ; ONE at 20.
std::vector<int32_t> Pushes(int n) {
  return {0, Op(0x12, 1), n, Op(0x70), 7, Op(0x21, 1), 20, Op(0x62), 3, Op(0x71, 2), kRet};
}
const std::string kPushE =
    "The virtual OS has terminated the comet2. Because the comet2 was going to save a data into an inappropriate "
    "memory area beyond the so-called stack area. It has happened when an opcode at address of #0003 is executed. "
    "The stack area is allocated between #FFFF and (#FFFF(hex)-500(dec)) in memory. ";
const std::string kPushJ =
    "スタックエリア（このシミレイターでは 500 個）をこえてスタックしようとしたので実行を中止しました。"
    "#0003=Dec3番地の実行で発生。";
const std::string kLeftStack = "The Stack Pointer(SP) has left the stack area of this simulator (510 words). ";

TEST_F(Comet2Os, TheStackGuardGoesOnAndTheEndsOfTheStorageStopWithoutACrash) {
  const Parts one = {{"M20", 1}, {"GR2", 99}};
  const std::vector<int32_t> callSelf = {0, Op(0x80), 1};  // 1: CALL 1, for ever
  const auto outs = RunTable({
      {"500 pushes fit", Pushes(500), one, {{"S500", 7}, {"GR2", 7}}, {kEndE}, {"stack area"}},
      // The 501st is refused, the run goes on and the POP reads the cell past the last one written.
      {"the 501st push", Pushes(501), one, {{"GR2", 0}, {"SP", 65535 - 501 + 1}, {"PR", 10}}, {kPushE, kEndE}},
      {"the 501st and 502nd, Japanese", Pushes(502), J(one), {}, {kPushJ, kEndJ}},
      {"a deep call chain", callSelf, {}, {{"CD", 509}, {"SP", 65535 - 509}, {"PR", 1}},
       {"Runtime Error: The comet2 is terminated! \n" + kLeftStack + "Calls may be nested too deeply, or data is "
        "popped that was never pushed. \nIt has happened when an opcode at address of #0001 (1(dec)) is executed. "
        "SP=#FE02\n" + kEndE}},
      {"a deep call chain, Japanese", callSelf, {{"LANG", 0}}, {},
       {"\n実行時エラー：実行途中停止！\nスタックポインター(SP)がこのシミレーターのスタック領域（510 語）の外側を"
        "指したので実行を中止しました。 CALL が深すぎるか、PUSH していないデータを POP しています。\n"
        "#0001 = 1 （10進数）番地の命令の実行時に発生。 SP=#FE02\n--> 終了\n"}},
      {"POP beyond the storage", {0, Op(0x71, 1), Op(0x64), 1}, {}, {{"SP", 0x10000}, {"X1", 2}}, {kLeftStack}},
      {"refused pushes, then a POP below the storage", Pushes(600), one, {{"PR", 9}}, {kLeftStack}},
      // CALL 10 ; RET ; 10: POP GR1 ; POP GR1 ; RET
      {"RET with SP past the top", {0, Op(0x80), 10, kRet},
       {{"M10", Op(0x71, 1)}, {"M11", Op(0x71, 1)}, {"M12", kRet}}, {{"PR", 12}, {"CD", 0}},
       {"SP=#10000 An unknown error has happened in Tcomet2::ret581(), ret681. " + kEndE}},
  });
  EXPECT_EQ(e2e::count_occurrences(outs[1], kPushE), 1u);
  EXPECT_EQ(e2e::count_occurrences(outs[2], kPushJ), 2u);
  EXPECT_EQ(e2e::count_occurrences(outs[6], "beyond the so-called stack area."), 100u);
}

// LAD GR3,3 ; LAD GR2,0 ; 5: ST GR1,15,GR2 ; LAD GR2,10,GR2 ; SUBA GR3,ONE ; JNZ 5 ; RET ; ONE at 19.
// The stores go to 15, 25 and 35; 20 words are reserved.
const std::vector<int32_t> kStores = {0,  Op(0x12, 3), 3, Op(0x12, 2), 0, Op(0x11, 1, 2), 15, Op(0x12, 2, 2), 10,
                                      Op(0x21, 3), 19, Op(0x62), 5, kRet};

TEST_F(Comet2Os, AnIndexedStoreWarnsOnceBeyondTheReservedAreaAndStopsAt65000) {
  const Parts stores = {{"GR1", 77}, {"M19", 1}, {"MAX", 20}};
  // ST GR1,20,GR2 (warns) ; ST GR1,0,GR4 (stops) ; RET
  const std::vector<int32_t> stop = {0, Op(0x11, 1, 2), 20, Op(0x11, 1, 4), 0, kRet};
  const Parts stopRegs = {{"GR1", 77}, {"GR2", 10}, {"GR4", 65000}};
  const auto outs = RunTable({
      {"warning", kStores, stores, {{"M15", 77}, {"M25", 77}, {"M35", 77}},
       {"\nWarning: Out of Range\nYour reserved memory is 20 words in size. \n"
        "A data has stored in an address of 25(Dec).\nThe address is out of the reserved area.\n"
        "Is this your intention?  It has occured when a machine code of \n(Address, Machine Code)=(#0005, #1112)\n"
        "is done at the 2nd execution. \n", kEndE}},
      {"warning, Japanese", kStores, J(stores), {},
       {"\n\n 警告： 確保した（comet2の）メモリ領域以外への書き込み！\n"
        "あなたのプログラムが確保したメモリ領域は 19 （10進数）番地までです。\n"
        "これを超えて 25 （10進数）番地にデータがストア（ST）されました。\nこれはあなたが意図したものですか。\n"
        "(Address, Machine Code）=（#0005, #1112）を\n2回目に実行した時に発生しました。 \n"}},
      {"stop after the warning", stop, stopRegs, {{"M65000", 0}, {"PR", 4}, {"EA", 65000}},
       {"Warning: Out of Range",
        "Terminated!\nThe COMET2 has 65536 words in memory. \nWhen an opcode at #0003 was executed, a virtual OS "
        "in drillasm has detected the comet2 was going to store a data beyond the maximam address of 65000. "
        "So the OS has terminated the comet2;  otherwise the comet2 would get out of control. \n" + kEndE}},
      {"stop, Japanese", stop, J(stopRegs), {},
       {"実行時エラー：　中止\n#0003 = 3 （10進数）番地の命令の実行時 65000 番地を超えてデータを"
        "ストア（ＳＴ）しようとしました。これは危険なので暴走をしないように実行を停止させました。\n--> 終了\n"}},
  });
  EXPECT_EQ(e2e::count_occurrences(outs[0], "Warning: Out of Range"), 1u);
  EXPECT_EQ(e2e::count_occurrences(outs[1], "警告："), 1u);
  for (auto [n, text] : {std::pair{1, "1st"}, {2, "2nd"}, {3, "3rd"}, {4, "4th"}, {11, "11th"}, {21, "21th"}})
    EXPECT_EQ(OrdinalA(n), text);
}

}  // namespace
}  // namespace comet2_test
