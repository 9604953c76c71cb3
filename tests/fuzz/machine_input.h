// The input of the machine's fuzz target: a memory image, the registers and
// the lines that IN reads. The seed maker writes the images of assembled
// sources in the same form.
//
//   byte 0        the run variant (byte % 3), the language of the machine's
//                 messages ((byte / 3) % 2), whether words and registers with
//                 bit 15 set are held sign-extended ((byte / 6) % 2)
//   bytes 1-16    GR0 to GR7, 16 bits each, high byte first
//   byte 17       the flags: bit 0 OF, bit 1 SF, bit 2 ZF
//   bytes 18-19   the depth of the stack: SP = #FFFF - (value % 512)
//   bytes 20-21   the size of the image in words (b->MaxMemory, tMaxMemory)
//   then          pieces of the image: an address (2 bytes), a count n
//                 (1 byte), n words (2 bytes each); a count of 0 ends them
//   then          the lines IN reads, each ended by a line feed
// Missing bytes read as 0.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace fuzz {

constexpr size_t kMachineHeader = 22;

struct MachinePiece {
  uint16_t adr = 0;
  std::vector<uint16_t> words;  // at most 255
};

struct MachineInput {
  uint8_t control = 0;
  uint16_t gr[8] = {};
  uint8_t flags = 0;
  uint16_t stackDepth = 0;
  uint16_t size = 0;
  std::vector<MachinePiece> pieces;
  std::vector<std::string> lines;
};

class ByteReader {
 public:
  ByteReader(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  uint8_t U8() { return pos_ < size_ ? data_[pos_++] : (pos_++, 0); }
  uint16_t U16() {
    const uint16_t hi = U8();
    return static_cast<uint16_t>((hi << 8) | U8());
  }
  bool AtEnd() const { return pos_ >= size_; }
  size_t Pos() const { return pos_; }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t pos_ = 0;
};

inline MachineInput ParseMachineInput(const uint8_t* data, size_t size) {
  MachineInput in;
  ByteReader r(data, size);
  in.control = r.U8();
  for (uint16_t& g : in.gr) g = r.U16();
  in.flags = r.U8();
  in.stackDepth = r.U16();
  in.size = r.U16();
  while (!r.AtEnd()) {
    MachinePiece p;
    p.adr = r.U16();
    const uint8_t n = r.U8();
    if (n == 0) break;
    for (uint8_t k = 0; k < n; ++k) p.words.push_back(r.U16());
    in.pieces.push_back(std::move(p));
  }
  std::string line;
  for (size_t k = r.Pos(); k < size; ++k) {
    if (data[k] == '\n') {
      in.lines.push_back(line);
      line.clear();
    } else {
      line.push_back(static_cast<char>(data[k]));
    }
  }
  if (!line.empty()) in.lines.push_back(line);
  return in;
}

inline std::string SerializeMachineInput(const MachineInput& in) {
  std::string s;
  auto u8 = [&](uint8_t v) { s.push_back(static_cast<char>(v)); };
  auto u16 = [&](uint16_t v) {
    u8(static_cast<uint8_t>(v >> 8));
    u8(static_cast<uint8_t>(v & 0xFF));
  };
  u8(in.control);
  for (uint16_t g : in.gr) u16(g);
  u8(in.flags);
  u16(in.stackDepth);
  u16(in.size);
  for (const MachinePiece& p : in.pieces) {
    for (size_t from = 0; from < p.words.size(); from += 255) {
      const size_t n = std::min<size_t>(255, p.words.size() - from);
      u16(static_cast<uint16_t>(p.adr + from));
      u8(static_cast<uint8_t>(n));
      for (size_t k = 0; k < n; ++k) u16(p.words[from + k]);
    }
  }
  u16(0);
  u8(0);
  for (const std::string& l : in.lines) s += l + "\n";
  return s;
}

}  // namespace fuzz
