// What trace and debug show of the machine.
#include "cli/machine_view.h"

#include <cstdio>

#include "codegen/instr_table.h"
#include "records/console.h"
#include "records/singletons.h"
#include "records/text.h"

namespace cli {

namespace {

std::string Signed(int32_t v) { return std::to_string(static_cast<int16_t>(v & 0xFFFF)); }

std::string Reg(const char* name, int32_t v) { return std::string(name) + "=" + Hex4(v) + "(" + Signed(v) + ")"; }

std::string Pad(std::string s, size_t n) {
  if (s.size() < n) s.append(n - s.size(), ' ');
  return s;
}

const char* kGr[8] = {"GR0", "GR1", "GR2", "GR3", "GR4", "GR5", "GR6", "GR7"};

}  // namespace

std::string RegistersText(const Tcomet2& mc) {
  std::string s = Reg("PR", mc.PR);
  for (int k = 0; k < 8; ++k) s += " " + Reg(kGr[k], mc.GR[k]);
  s += " " + Reg("SP", mc.SP);
  s += " OF=" + std::to_string(mc.Fovf) + " SF=" + std::to_string(mc.Fsign) + " ZF=" + std::to_string(mc.Fzero);
  return s;
}

int LineOfAdr(int32_t adr) {
  if (adr < 0 || adr >= kLineOfAdrUsed) return -1;
  int line = m->lineOfAdr[adr];
  return line >= 0 && line < static_cast<int>(b->vecSrcW.size()) ? line : -1;
}

std::string LabelOf(int line) {
  if (line < 0 || line >= static_cast<int>(b->vecSrcW.size())) return "";
  return U16ToUtf8(b->vecSrcW[line].labelStr);
}

std::string SourceText(int line) {
  if (line < 0 || line >= static_cast<int>(b->vecSrcW.size())) return "";
  const SrcLineW& s = b->vecSrcW[line];
  std::string t = U16ToUtf8(s.opStr);
  if (!s.oprndComStr.empty()) t += " " + U16ToUtf8(s.oprndComStr);
  return t;
}

Snapshot Snapshot::Before(const Tcomet2& mc) {
  Snapshot s;
  s.pr = mc.PR;
  s.sp = mc.SP;
  for (int k = 0; k < 8; ++k) s.gr[k] = mc.GR[k];
  s.of = mc.Fovf, s.sf = mc.Fsign, s.zf = mc.Fzero;
  if (mc.PR < 0 || mc.PR + 1 >= kMemoryCells) return s;
  const uint32_t w = static_cast<uint32_t>(mc.Memory[mc.PR]);
  const uint32_t x = w & 0xF;
  const int32_t second = mc.Memory[mc.PR + 1];
  auto add = [&](int64_t a) {
    if (a >= 0 && a < kMemoryCells) s.words.emplace_back(static_cast<int32_t>(a), mc.Memory[a]);
  };
  switch (kDecode[(w >> 8) & 0xFF].exec) {
    case OpExec::St:
      // Without an index the whole second word is the address.
      add(x == 0 ? static_cast<int64_t>(second)
                 : (static_cast<int64_t>(second & 0xFFFF) + (x < 8 ? (mc.GR[x] & 0xFFFF) : 0)) & 0xFFFF);
      break;
    case OpExec::Svc: {
      // IN writes its length word and up to 256 characters.
      const int64_t ea = (static_cast<int64_t>(second & 0xFFFF) + (x != 0 && x < 8 ? (mc.GR[x] & 0xFFFF) : 0)) & 0xFFFF;
      if (ea == 1) {
        add(mc.GR[2]);
        for (int64_t k = 0; k < 256; ++k) add((mc.GR[1] & 0xFFFF) + k);
      }
      break;
    }
    default:
      break;
  }
  return s;
}

std::string Snapshot::ChangesText(const Tcomet2& mc) const {
  std::string s;
  auto item = [&](const std::string& t) {
    if (!s.empty()) s += "  ";
    s += t;
  };
  for (int k = 0; k < 8; ++k) {
    if (mc.GR[k] != gr[k]) item(std::string(kGr[k]) + "=" + Hex4(mc.GR[k]));
  }
  if (mc.SP != sp) item("SP=" + Hex4(mc.SP));
  for (const auto& [a, v] : words) {
    if (mc.Memory[a] != v) item("[" + Hex4(a) + "]=" + Hex4(mc.Memory[a]));
  }
  if (mc.Fovf != of || mc.Fsign != sf || mc.Fzero != zf) {
    item("ZF=" + std::to_string(mc.Fzero) + " SF=" + std::to_string(mc.Fsign) + " OF=" + std::to_string(mc.Fovf));
  }
  return s;
}

nlohmann::ordered_json Snapshot::ChangesJson(const Tcomet2& mc) const {
  nlohmann::ordered_json j = nlohmann::ordered_json::object();
  for (int k = 0; k < 8; ++k) {
    if (mc.GR[k] != gr[k]) j[kGr[k]] = mc.GR[k] & 0xFFFF;
  }
  if (mc.SP != sp) j["SP"] = mc.SP & 0xFFFF;
  nlohmann::ordered_json mem = nlohmann::ordered_json::object();
  for (const auto& [a, v] : words) {
    if (mc.Memory[a] != v) mem[std::to_string(a)] = mc.Memory[a] & 0xFFFF;
  }
  if (!mem.empty()) j["memory"] = mem;
  if (mc.Fovf != of || mc.Fsign != sf || mc.Fzero != zf) {
    j["ZF"] = mc.Fzero;
    j["SF"] = mc.Fsign;
    j["OF"] = mc.Fovf;
  }
  return j;
}

std::string Tracer::Line(uint64_t step, int32_t adr, const std::string& changes) {
  char head[40];
  std::snprintf(head, sizeof head, "%6llu  ", static_cast<unsigned long long>(step));
  const int line = LineOfAdr(adr);
  std::string s = head + Hex4(adr) + "  " + Pad(line >= 0 ? "L" + std::to_string(line + 1) : "", 6) +
                  Pad(LabelOf(line), 9) + Pad(SourceText(line), 24) + changes;
  while (!s.empty() && s.back() == ' ') s.pop_back();
  return s + "\n";
}

void Tracer::Flush(const Tcomet2& mc) {
  if (!pending_) return;
  pending_ = false;
  if (json_) {
    const int line = LineOfAdr(adr_);
    nlohmann::ordered_json j;
    j["step"] = step_;
    j["address"] = adr_;
    j["line"] = line >= 0 ? nlohmann::ordered_json(line + 1) : nlohmann::ordered_json(nullptr);
    j["label"] = LabelOf(line);
    j["source"] = SourceText(line);
    j["changes"] = snap_.ChangesJson(mc);
    con::Print(j.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
  } else {
    con::Print(Line(step_, adr_, snap_.ChangesText(mc)));
  }
}

bool Tracer::Before(const Tcomet2& mc) {
  Flush(mc);
  pending_ = true;
  ++step_;
  adr_ = mc.PR;
  snap_ = Snapshot::Before(mc);
  return true;
}

void Tracer::Finish(const Tcomet2& mc) { Flush(mc); }

}  // namespace cli
