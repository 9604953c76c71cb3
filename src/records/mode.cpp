// The table of modes: every difference between the six modes stands in the
// row of its mode.
//
// Two differences of the family are not fields, because they print the same
// words in every mode: the warnings menu (inside the Fight in NWW, NaW, NA
// and AP, the function DspWarningsMenu in WP and NH) and the error summary
// (written by the Fight, or by DspWarningKazuE with "h" in NH).
#include "records/mode.h"

namespace {

using R = SourceReader;
using V = RunVariant;

// clang-format off
const FightMode kModes[] = {
  // name   tag         letter carrier
  //   reader      line  lines  prgs  dcds  EXIT   uncalled  fixed  count  run
  //   log@entry log@head repeat editorIx 8888   "the"  clock
  {"NWW", "FightNWW", 'W', nullptr,
     R::Detected, 0,    0,     0,    0,    false, true,     false, true,  V::Wide,
     false,    false,   false, false,   false, false, true},
  {"WP",  "FightWP",  'W', "std::wstring<--UTF16",
     R::Detected, 0,    0,     0,    0,    false, true,     false, true,  V::Wide,
     true,     false,   true,  true,    true,  false, true},
  {"AP",  "FightAP",  'A', "std::string",
     R::Narrow,   0,    0,     0,    0,    false, true,     false, false, V::Narrow,
     true,     true,    true,  true,    true,  false, true},
  {"NA",  "FightNA",  'A', "std::string",
     R::Narrow,   0,    0,     0,    0,    false, true,     false, false, V::Narrow,
     true,     true,    true,  true,    true,  false, true},
  {"NaW", "FightNaW", 'w', "std::wstring",
     R::Narrow,   0,    0,     0,    0,    false, true,     false, true,  V::Wide,
     true,     true,    true,  true,    true,  false, true},
  {"NH",  "FightNH",  'H', "char chH[]",
     R::Narrow,   80,   310,   6,    55,   true,  false,    true,  false, V::Fixed,
     false,    false,   false, true,    true,  true,  false},
};
// clang-format on

const FightMode* current = &kModes[0];

}  // namespace

const FightMode& FightModeOf(const std::string& name) {
  if (name == "NwW") return kModes[0];
  for (const FightMode& f : kModes) {
    if (name == f.name) return f;
  }
  return kModes[0];
}

const FightMode& CurrentMode() { return *current; }

void SetCurrentMode(const FightMode& mode) { current = &mode; }
