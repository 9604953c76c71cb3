// Encoding detection: the byte order mark, and without one the byte census
// that tells Shift-JIS from UTF-8; then the reading banner.
#include <string>

#include "records/console.h"
#include "records/singletons.h"
#include "source/file_bytes.h"
#include "source/source.h"

namespace {

void SetName(const char* name) {
  moziCode->codeName = name;
  moziCode->codeNameW = Utf8ToU16(name);
}

}  // namespace

std::string DetBOM_MzC(const std::string& fileName) {
  if (fileName.empty()) {
    con::out << "fname is empty." << con::endl;
    return "";
  }
  std::string head;
  if (!ReadFileBytes(fileName, head, 3)) {
    con::out << "Error: Fail to open " << fileName << "." << con::endl;
    return "";
  }
  con::out << con::endl;
  auto at = [&](size_t k) { return k < head.size() ? static_cast<unsigned char>(head[k]) : -1; };
  if (at(0) == 0xEF) {
    if (at(1) == 0xBB && at(2) == 0xBF) {
      moziCode->bomKind = 3;
      moziCode->bomTag = "EFBBBF";
      moziCode->codePage = 65001;
      SetName("utf-8 with bom(EF BB BF)");
      return moziCode->bomTag;
    }
  } else if (at(0) == 0xFF) {
    if (at(1) == 0xFE) {
      moziCode->bomKind = 2;
      moziCode->bomTag = "FFFE";
      moziCode->codePage = 1200;
      SetName("utf-16 le(FF FE)");
      return moziCode->bomTag;
    }
  } else if (at(0) == 0xFE) {
    if (at(1) == 0xFF) {
      moziCode->bomKind = 2;
      moziCode->bomTag = "FEFF";
      moziCode->codePage = 1201;
      SetName("utf-16 be(FE FF)");
      return moziCode->bomTag;
    }
  }
  SetName("utf-8 or sjis");
  moziCode->bomKind = 0;
  return "";
}

int Det_sjisMzC(const std::string& fileName) {
  std::string bytes;
  if (!ReadFileBytes(fileName, bytes)) {
    con::out << "Fail to open " << fileName << "." << con::endl;
    return -1;
  }
  long long ascii = 0, sjis = 0, non = 0;
  // The lead-byte ranges stop at 0x97 on purpose: 0x98-0x9F and the 1-byte
  // katakana count as non, so such a file is taken for UTF-8.
  for (size_t k = 0; k < bytes.size(); ++k) {
    unsigned c = static_cast<unsigned char>(bytes[k]);
    if (c <= 0x7E) {
      ++ascii;
    } else if ((c >= 0x80 && c <= 0x97) || (c >= 0xE0 && c <= 0xFC)) {
      ++sjis;
      ++k;  // the second byte goes unexamined
    } else {
      ++non;
    }
  }
  con::out << "MoziKazu(ascii, sjis, non)=(" << ascii << ", " << sjis << ", " << non << ")" << con::endl;
  if (non < 1) {
    moziCode->codePage = 932;
    SetName("sjis");
  } else {
    moziCode->codePage = 65001;
    SetName("utf-8");
  }
  return 0;
}

void DetTextCodeW(TFileData& fd, const std::string& fileName) {
  if (b->SimpleTitleIndex != 0 && b->SimpleTitleIndex != 1) b->SimpleTitleIndex = 0;
  int simple = b->SimpleTitleIndex;
  std::string tag = DetBOM_MzC(fileName);
  if (tag.empty() && simple == 0) Det_sjisMzC(fileName);
  con::out << con::endl;
  if (fd.Lang != 1) {
    con::out << "'" << fileName << "'    ";
    if (simple == 0) {
      con::out << moziCode->codeNameW;
      con::Flush();
    } else {
      con::out << u" を読み込みます。 " << con::endl;
    }
  } else {
    con::out << "* Reading " << fileName;
    if (simple == 0) con::out << "   " << moziCode->codeNameW;
    con::out << con::endl << con::endl;
  }
}
