// check: assemble each file and print its diagnostics, one line each, in the
// form that compilers use and editors read, or as one JSON document.
#include "cli/cli.h"
#include "records/console.h"

namespace cli {

namespace {

std::string Plural(int n, const char* word) {
  return std::to_string(n) + " " + word + (n == 1 ? "" : "s");
}

nlohmann::ordered_json LineOrNull(int line) { return line > 0 ? nlohmann::ordered_json(line) : nlohmann::ordered_json(nullptr); }

}  // namespace

int Combine(int a, int b) {
  for (int s : {kUsage, kErrors, kMachineStop, kStepLimit}) {
    if (a == s || b == s) return s;
  }
  return kOk;
}

std::string KindWord(int kind, bool color) {
  const char* word = session::KindName(kind);
  if (!color) return word;
  const char* c = kind == 100 ? "\x1b[1;31m" : kind == 200 ? "\x1b[1;35m" : kind == 400 ? "\x1b[1;36m" : "\x1b[1;34m";
  return std::string(c) + word + "\x1b[0m";
}

std::string FileText(const std::string& file, const session::Assembled& a, bool color) {
  std::string s;
  if (!a.readable) return file + ": " + KindWord(100, color) + ": " + a.readError + "\n";
  for (const session::Diagnostic& d : a.diagnostics) {
    s += file;
    if (d.line > 0) s += ":" + std::to_string(d.line);
    s += ": " + KindWord(d.kind, color) + ": " + d.text + "\n";
  }
  s += file + ": " + Plural(a.errors, "error") + ", " + Plural(a.warnings, "warning");
  if (a.notes > 0) s += ", " + Plural(a.notes, "note");
  if (a.memos > 0) s += ", " + Plural(a.memos, "memo");
  s += "\n";
  return s;
}

nlohmann::ordered_json FileJson(const std::string& file, const session::Assembled& a) {
  nlohmann::ordered_json f;
  f["file"] = file;
  if (!a.readable) f["error"] = a.readError;
  f["encoding"] = a.readable ? nlohmann::ordered_json(a.encoding) : nlohmann::ordered_json(nullptr);
  nlohmann::ordered_json diags = nlohmann::ordered_json::array();
  for (const session::Diagnostic& d : a.diagnostics) {
    diags.push_back({{"line", LineOrNull(d.line)}, {"kind", session::KindName(d.kind)}, {"code", d.code}, {"text", d.text}});
  }
  f["diagnostics"] = diags;
  f["errors"] = a.errors;
  f["warnings"] = a.warnings;
  f["notes"] = a.notes;
  f["memos"] = a.memos;
  f["assembled"] = a.assembled;
  f["words"] = a.assembled ? nlohmann::ordered_json(a.words) : nlohmann::ordered_json(nullptr);
  f["run"] = nullptr;
  return f;
}

std::string Document(const Options& o, const nlohmann::ordered_json& files) {
  nlohmann::ordered_json doc;
  doc["tool"] = "drillasm-cli";
  doc["version"] = kVersion;
  doc["mode"] = o.mode;
  doc["lang"] = o.lang == 0 ? "ja" : "en";
  doc["files"] = files;
  // Texts may hold bytes of file names that are no UTF-8: they are replaced,
  // so the document stays valid.
  return doc.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

int CheckStatus(const session::Assembled& a, bool werror) {
  if (!a.readable) return kUsage;
  if (a.errors > 0 || !a.assembled || (werror && a.warnings > 0)) return kErrors;
  return kOk;
}

int Check(const Options& o) {
  const FightMode& mode = FightModeOf(o.mode);
  int status = kOk;
  nlohmann::ordered_json files = nlohmann::ordered_json::array();
  for (const std::string& file : o.files) {
    session::Assembled a = session::AssembleFile(file, mode, o.lang);
    status = Combine(status, CheckStatus(a, o.werror));
    if (o.json) {
      files.push_back(FileJson(file, a));
    } else {
      con::Print(FileText(file, a, o.color));
    }
  }
  if (o.json) con::Print(Document(o, files));
  return status;
}

}  // namespace cli
