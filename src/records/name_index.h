// An index from names to numbers (a line, a program) that keeps the first
// number given for each name: what a search from the front finds. It holds
// views of the names, so the texts must stay as they are while it is used;
// its table is one block that the next build reuses.
#pragma once

#include <cstdint>
#include <vector>

#include "records/text.h"

class NameIndex {
 public:
  // Empties the index, with room for `n` names.
  void Reset(size_t n) {
    size_t want = 16;
    while (want < 2 * n) want <<= 1;
    slots_.assign(want, Slot{});
    mask_ = want - 1;
    count_ = 0;
  }

  // Adds `name` with `value` unless the name is there already. Returns the
  // value the name stands for afterwards. An empty name is not kept.
  int Insert(wview name, int value) {
    if (name.empty()) return value;
    if (2 * (count_ + 1) > slots_.size()) Grow();
    Slot& s = slots_[IndexOf(name)];
    if (s.text == nullptr) {
      s = Slot{name.data(), static_cast<uint32_t>(name.size()), value};
      ++count_;
    }
    return s.value;
  }

  // The value of `name`, or -1.
  int Find(wview name) const {
    if (slots_.empty() || name.empty()) return -1;
    const Slot& s = slots_[IndexOf(name)];
    return s.text == nullptr ? -1 : s.value;
  }

  size_t size() const { return count_; }

 private:
  struct Slot {
    const char16_t* text = nullptr;
    uint32_t len = 0;
    int value = -1;
  };

  static size_t Hash(wview s) {
    uint64_t h = 1469598103934665603ULL;
    for (char16_t c : s) h = (h ^ c) * 1099511628211ULL;
    return static_cast<size_t>(h ^ (h >> 29));
  }

  // The slot of `name`, or the empty slot where it would go.
  size_t IndexOf(wview name) const {
    size_t i = Hash(name) & mask_;
    for (;;) {
      const Slot& s = slots_[i];
      if (s.text == nullptr || (s.len == name.size() && wview(s.text, s.len) == name)) return i;
      i = (i + 1) & mask_;
    }
  }

  void Grow() {
    std::vector<Slot> old;
    old.swap(slots_);
    Reset(old.empty() ? 8 : old.size());
    for (const Slot& s : old)
      if (s.text != nullptr) Insert(wview(s.text, s.len), s.value);
  }

  std::vector<Slot> slots_;
  size_t mask_ = 0;
  size_t count_ = 0;
};
