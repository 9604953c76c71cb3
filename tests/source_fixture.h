// Shared set-up of the source, scanner and structure tests: fresh singletons,
// captured output, the front stages gated as the pipeline gates them, files
// built byte by byte, and one runner for tables of messages.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "records/console.h"
#include "records/correct_scode.h"
#include "records/diag.h"
#include "records/singletons.h"
#include "records/stages.h"

#include "fresh_records.h"

namespace srctest {

using Texts = std::vector<std::u16string>;
using Codes = std::vector<std::string>;

// UTF-16 with its mark, little- or big-endian.
inline std::string Utf16(const std::u16string& s, bool be = false) {
  std::string r = be ? "\xFE\xFF" : "\xFF\xFE";
  for (char16_t c : s) r += {static_cast<char>(be ? c >> 8 : c & 0xFF), static_cast<char>(be ? c & 0xFF : c >> 8)};
  return r;
}

// A call, its result (a negative one as -1), the counts it leaves, its whole English output, the
// codes of its records, and a part of its Japanese output (none: English only).
struct Row { std::function<int()> call; int ret, errors, warnings; std::string en; Codes codes; std::string ja = ""; };

class Fixture : public ::testing::Test {
 protected:
  std::string out;
  std::filesystem::path dir;

  void Fresh(int lang = 1) {
    FreshRecords();
    SetLang(lang);
    b->SimpleTitleIndex = 0;
    fileData->LastSrcFile = "t.txt";
    out.clear();
  }
  void SetUp() override {
    Fresh();
    *moziCode = TMoziCode{};
    char tmpl[] = "/tmp/srctestXXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    dir = tmpl;
    con::SetCapture(&out);
  }
  void TearDown() override {
    con::SetCapture(nullptr);
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
    Fresh();
  }

  std::string Write(const std::string& name, const std::string& bytes) {
    std::ofstream((dir / name).string(), std::ios::binary) << bytes;
    return (dir / name).string();
  }
  static void Lines(const Texts& lines) {
    b->vecSrcW.clear();
    for (const auto& l : lines) b->vecSrcW.emplace_back().rawStr = l;
  }
  // One field of every record.
  template <class T, class M>
  static std::vector<M> Map(const std::vector<T>& v, M T::*m) {
    std::vector<M> r;
    for (const auto& x : v) r.push_back(x.*m);
    return r;
  }
  static Texts F(wstr SrcLineW::*field) { return Map(b->vecSrcW, field); }
  static Texts Raw() { return F(&SrcLineW::rawStr); }
  static Codes LogCodes() { return Map(msgLog->WideLog, &TMsgRec::code); }
  static int Errors() { return b->ErrorKazu + cs->ErrorKazu + fileData->ErrorKazu; }
  static int PrgKazu() { return std::min<int>(b->GetPrgKazuInFile(), static_cast<int>(b->vecPrgW.size())); }

  // editNWB to CkPrgNameDoubleNW, gated as the pipeline gates them: the stage
  // that stopped (1 editNWB ... 3 StartEnd20NW, 4 StartEndNW, 5 text between
  // programs, 6 names, 7 duplicate names), or 0.
  static int Front(const Texts& lines) {
    Lines(lines);
    if (editNWB() < 0 || Errors() > 0) return 1;
    if (StartEnd10W() < 0 || Errors() > 0) return 2;
    if (StartEnd20NW() < 0 || Errors() > 0) return 3;
    for (int i = 0; i < PrgKazu(); ++i) StartEndNW(i), CutCommentNW(i);
    if (Errors() != 0) return 4;
    IsAnySrcOutsideStartEndNW();
    if (Errors() != 0) return 5;
    for (int i = 0; i < PrgKazu(); ++i) CkPrgNameNW(i);
    if (Errors() != 0) return 6;
    return CkPrgNameDoubleNW() < 0 || Errors() != 0 ? 7 : 0;
  }
  // A file that passes the front stages, their messages gone; and a call on it.
  void Prog(const Texts& lines) {
    ASSERT_EQ(Front(lines), 0) << out;
    out.clear();
    msgLog->ClearMsgLog();
  }
  std::function<int()> On(const Texts& lines, std::function<int()> f) {
    return [=, this] { return Prog(lines), f(); };
  }

  void Check(const std::vector<Row>& rows) {
    for (const Row& r : rows) {
      for (int lang : {1, 0}) {
        if (!lang && r.ja.empty()) continue;
        SCOPED_TRACE(lang ? r.en : r.ja);
        Fresh(lang);
        EXPECT_EQ(std::max(r.call(), -1), r.ret);
        EXPECT_EQ(lang || out.find(r.ja) == std::string::npos ? out : r.ja, lang ? r.en : r.ja);
        EXPECT_EQ(Errors(), r.errors);
        EXPECT_EQ(b->WarningKazu + cs->WarningKazu + fileData->WarningKazu, r.warnings);
        EXPECT_EQ(LogCodes(), r.codes);
      }
    }
  }
};

}  // namespace srctest
