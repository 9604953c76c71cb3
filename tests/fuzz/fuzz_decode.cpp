// The decoders of source text and the encoding detection.
//
// The bytes are decoded as a line of UTF-8 and of Shift-JIS (code page 932),
// and taken as UTF-16 units for the encoder to UTF-8: what comes out is
// well-formed UTF-16 and valid UTF-8; valid UTF-8 comes back as it went in;
// a line of ASCII is widened as it stands. Then the bytes as a file go
// through the detection of the encoding (with and without the byte census)
// and the loaders: the detected one and the narrow one with and without the
// limits of the fixed-table mode.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz_support.h"
#include "records/console.h"
#include "records/singletons.h"
#include "records/stages.h"
#include "source/source.h"

namespace {

std::string_view BeforeNul(std::string_view s) { return s.substr(0, s.find('\0')); }

void Decoders(std::string_view bytes) {
  const std::string_view line = BeforeNul(bytes);

  const wstr u = Utf8ToWStr(bytes);
  if (!fuzz::IsWellFormedUtf16(u)) fuzz::Fail("the UTF-8 decoder made a lone surrogate");
  const std::string back = U16ToUtf8(u);
  if (!fuzz::IsValidUtf8(back)) fuzz::Fail("the UTF-8 encoder made invalid UTF-8");
  if (fuzz::IsValidUtf8(line) && back != line) fuzz::Fail("valid UTF-8 did not come back as it went in");
  if (Utf8ToU16(back) != u) fuzz::Fail("decoding what was encoded gave other text");

  const wstr a = AnsiToWStr(bytes);
  if (!fuzz::IsWellFormedUtf16(a)) fuzz::Fail("the Shift-JIS decoder made a lone surrogate");
  if (!fuzz::IsValidUtf8(U16ToUtf8(a))) fuzz::Fail("Shift-JIS text encoded to invalid UTF-8");
  bool ascii = true;
  for (unsigned char c : line) ascii = ascii && c < 0x80;
  if (ascii && a != wstr(line.begin(), line.end())) fuzz::Fail("an ASCII line was not widened as it stands");

  wstr units, clean;
  for (size_t k = 0; k + 1 < bytes.size(); k += 2) {
    units.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[k]) |
                                          (static_cast<unsigned char>(bytes[k + 1]) << 8)));
  }
  for (size_t k = 0; k < units.size(); ++k) {
    const char16_t c = units[k];
    if (c >= 0xD800 && c <= 0xDBFF && k + 1 < units.size() && units[k + 1] >= 0xDC00 && units[k + 1] <= 0xDFFF) {
      clean += c;
      clean += units[++k];
    } else {
      clean += (c >= 0xD800 && c <= 0xDFFF) ? char16_t(0xFFFD) : c;
    }
  }
  const std::string units8 = U16ToUtf8(units);
  if (!fuzz::IsValidUtf8(units8)) fuzz::Fail("UTF-16 units encoded to invalid UTF-8");
  if (Utf8ToU16(units8) != clean) fuzz::Fail("UTF-16 units did not come back with U+FFFD for lone surrogates");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  fuzz::Initialize(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::EnterScratch();
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  Decoders(bytes);

  const std::string file = "enc.txt";
  fuzz::WriteFile(file, data, size);
  const int lang = static_cast<int>(size % 2);
  for (int simple : {0, 1}) {
    fuzz::Fresh(fuzz::ModeOf(0), lang);
    b->SimpleTitleIndex = simple;
    if (ReadSourceW(file) != 0) fuzz::Fail("a written file was not read");
  }
  for (int limits : {0, 1}) {
    fuzz::Fresh(fuzz::ModeOf(limits == 0 ? 2 : 5), lang);
    ReadSourceA(file);
    if (b->vecSrcA.size() != b->vecSrcW.size()) fuzz::Fail("the narrow reader made unequal line tables");
  }
  fuzz::CheckConsole();
  return 0;
}
