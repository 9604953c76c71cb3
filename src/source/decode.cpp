// Decoders of one source line: UTF-8, and Shift-JIS (code page 932) through
// iconv. Bytes that do not decode become U+FFFD; decoding never stops. A
// line is taken as a zero-ended text: a NUL byte ends it.
#include <iconv.h>

#include <cerrno>
#include <string>

#include "records/console.h"
#include "source/source.h"

namespace {

std::string_view ZeroEnded(std::string_view s) {
  size_t z = s.find('\0');
  return z == std::string_view::npos ? s : s.substr(0, z);
}

int g_openErrno = 0;

// One converter for the life of the process (one thread).
iconv_t Cp932() {
  static iconv_t cd = [] {
    iconv_t c = iconv_open("UTF-16LE", "CP932");
    if (c == reinterpret_cast<iconv_t>(-1)) g_openErrno = errno;
    return c;
  }();
  return cd;
}

}  // namespace

wstr Utf8ToWStr(std::string_view line) { return Utf8ToU16(ZeroEnded(line)); }

wstr AnsiToWStr(std::string_view line0) {
  std::string_view line = ZeroEnded(line0);
  wstr out;
  if (line.empty()) return out;
  iconv_t cd = Cp932();
  if (cd == reinterpret_cast<iconv_t>(-1)) {
    // No converter: said once, in the words of the conversion failure; then
    // ASCII passes and every other byte is undecodable.
    static bool said = false;
    if (!said) {
      said = true;
      con::out << "in function utf_16_to_shift_jis, WideCharToMultiByte fail. cause: unknown(" << g_openErrno << ")"
               << con::endl;
    }
    for (unsigned char c : line) out.push_back(c < 0x80 ? char16_t(c) : char16_t(0xFFFD));
    return out;
  }
  // Code page 932 maps every byte from 0x01 to 0x7F to the same code point,
  // so a line of such bytes alone is widened as it stands.
  out.resize(line.size());
  unsigned char any = 0;
  for (size_t k = 0; k < line.size(); ++k) {
    const unsigned char c = static_cast<unsigned char>(line[k]);
    any |= c;
    out[k] = c;
  }
  if (any < 0x80) return out;
  out.clear();
  iconv(cd, nullptr, nullptr, nullptr, nullptr);
  std::string buf(line.size() * 4 + 16, '\0');
  char* in = const_cast<char*>(line.data());
  size_t inLeft = line.size();
  auto flush = [&](char* start, char* end) {
    for (char* p = start; p + 1 < end; p += 2) {
      out.push_back(static_cast<char16_t>(static_cast<unsigned char>(p[0]) |
                                          (static_cast<unsigned char>(p[1]) << 8)));
    }
  };
  while (inLeft > 0) {
    char* o = buf.data();
    size_t oLeft = buf.size();
    size_t r = iconv(cd, &in, &inLeft, &o, &oLeft);
    flush(buf.data(), o);
    if (r != static_cast<size_t>(-1)) break;
    if (errno == E2BIG) continue;
    // EILSEQ (a byte that does not decode) or EINVAL (a lead byte at the
    // end): one U+FFFD for the byte, and go on behind it.
    out.push_back(0xFFFD);
    ++in;
    --inLeft;
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
  }
  return out;
}
