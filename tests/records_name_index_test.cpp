// The index of names: the first number given for a name stays, as a search
// from the front finds it, however large the index grows.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "records/name_index.h"

namespace {

// The number of the first of `names` equal to `name`, or -1.
int FirstOf(const std::vector<std::u16string>& names, const std::u16string& name) {
  if (name.empty()) return -1;
  for (size_t i = 0; i < names.size(); ++i)
    if (names[i] == name) return static_cast<int>(i);
  return -1;
}

TEST(NameIndex, AgreesWithTheSearchFromTheFront) {
  // Names of many lengths, repeats near and far, names that differ in one
  // character or in length only, empty names; more than the room reserved.
  std::vector<std::u16string> names;
  for (int i = 0; i < 3000; ++i) {
    std::u16string n = u"L" + std::u16string(static_cast<size_t>(i % 9), u'A') + WNum(i % 1100);
    names.push_back(i % 97 == 0 ? u"" : n);
  }
  names.push_back(u"GR1");
  names.push_back(u"GR1 ");
  names.push_back(std::u16string(u"GR1\0", 4));
  for (size_t room : {size_t{0}, size_t{10}, size_t{5000}}) {
    SCOPED_TRACE(room);
    NameIndex index;
    index.Reset(room);
    for (size_t i = 0; i < names.size(); ++i) {
      EXPECT_EQ(index.Insert(names[i], static_cast<int>(i)), names[i].empty() ? static_cast<int>(i) : FirstOf(names, names[i]));
    }
    for (const auto& probe : {u"L0", u"LAAAAAAAA1099", u"LA1", u"L1100", u"GR1", u"GR", u"", u"L"}) {
      EXPECT_EQ(index.Find(probe), FirstOf(names, probe)) << U16ToUtf8(probe);
    }
    EXPECT_EQ(index.Find(std::u16string(u"GR1\0", 4)), static_cast<int>(names.size()) - 1);
    for (size_t i = 0; i < names.size(); i += 7) EXPECT_EQ(index.Find(names[i]), FirstOf(names, names[i]));
  }
  NameIndex never;
  EXPECT_EQ(never.Find(u"A"), -1);
  never.Reset(3);
  EXPECT_EQ(never.Find(u"A") + static_cast<int>(never.size()), -1);
}

}  // namespace
