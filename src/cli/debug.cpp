// debug: an interactive session on one run, in the manner of gdb.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <sstream>

#include "cli/cli.h"
#include "cli/input_lines.h"
#include "cli/machine_view.h"
#include "codegen/instr_table.h"
#include "comet2/comet2.h"
#include "comet2/control.h"
#include "comet2/run.h"
#include "records/console.h"
#include "records/singletons.h"
#include "records/text.h"
#include "shell/session.h"

namespace cli {

namespace {

const char* kHelp =
    "Commands:\n"
    "  break LABEL|PRG.LABEL|LINE|#ADDR (b)   a breakpoint\n"
    "  delete [N]                             remove breakpoint or watch N, or all\n"
    "  info breakpoints                       list them\n"
    "  watch LABEL|#ADDR                      stop when that memory word changes\n"
    "  run (r)                                run from the start\n"
    "  continue (c)                           go on to the next breakpoint, watch, stop or end\n"
    "  step [N] (s)                           execute N instructions, entering calls\n"
    "  next [N] (n)                           as step, but a CALL runs to its return\n"
    "  finish                                 run until the current subroutine returns\n"
    "  regs                                   registers and flags\n"
    "  x ADDR|LABEL [N]                       N memory words\n"
    "  stack                                  the words between SP and the top of the stack\n"
    "  list                                   the source around PR\n"
    "  quit (q)                               leave\n";

struct Point {
  int number;
  bool watch;
  int32_t adr;
  std::string what;  // as the user gave it
  int32_t last = 0;  // a watch: the value last seen
};

std::vector<std::string> Words(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> w;
  for (std::string s; in >> s;) w.push_back(s);
  return w;
}

// A count of 1 or more; nullopt for a bad one.
std::optional<uint64_t> Count(const std::vector<std::string>& w, size_t at) {
  if (w.size() <= at) return 1;
  const std::string& t = w[at];
  if (t.empty() || t.size() > 18 || !std::all_of(t.begin(), t.end(), [](char c) { return c >= '0' && c <= '9'; }))
    return std::nullopt;
  uint64_t n = std::stoull(t);
  if (n == 0) return std::nullopt;
  return n;
}

class Session {
 public:
  Session(const Options& o, const std::string& file) : o_(o), file_(file) {}

  // 0 at quit or at the end of the commands.
  int Loop() {
    image_ = std::make_unique<Tcomet2>(*m);
    Say("drillasm-cli debug: " + file_ + " is assembled (" + std::to_string(b->MaxMemory) +
        " words). Type help for the commands.\n");
    for (;;) {
      std::optional<std::string> line = con::ReadCommand("(drillasm) ");
      if (!line) return kOk;
      std::vector<std::string> w = Words(*line);
      if (w.empty()) continue;
      if (w[0] == "quit" || w[0] == "q") return kOk;
      Command(w);
    }
  }

 private:
  void Say(const std::string& s) { con::Print(s); }

  // The address of LABEL, PRG.LABEL, a source line or #ADDR.
  std::optional<int32_t> Where(const std::string& t, bool lineAllowed) {
    if (t.size() > 1 && t[0] == '#') {
      char* end = nullptr;
      long v = std::strtol(t.c_str() + 1, &end, 16);
      if (*end != '\0' || v < 0 || v > 0xFFFF || t.size() > 5) {
        Say("Not an address: " + t + " (#0000 to #FFFF)\n");
        return std::nullopt;
      }
      return static_cast<int32_t>(v);
    }
    if (lineAllowed && std::all_of(t.begin(), t.end(), [](char c) { return c >= '0' && c <= '9'; })) {
      long n = t.size() > 9 ? -1 : std::atol(t.c_str());
      for (int32_t a = 0; n > 0 && a < b->MaxMemory; ++a) {
        if (LineOfAdr(a) == n - 1) return a;
      }
      Say("No code at line " + t + ".\n");
      return std::nullopt;
    }
    std::string prg, label = t;
    size_t dot = t.find('.');
    if (dot != std::string::npos) prg = t.substr(0, dot), label = t.substr(dot + 1);
    std::vector<int32_t> found;
    for (const PrgDataW& p : b->vecPrgW) {
      if (!prg.empty() && U16ToUtf8(p.PrgName) != prg) continue;
      for (int i = p.prgFirstLine; i < p.prgEndLine && i < static_cast<int>(b->vecSrcW.size()); ++i) {
        if (i >= 0 && U16ToUtf8(b->vecSrcW[i].labelStr) == label) found.push_back(b->vecSrcW[i].abAdr);
      }
    }
    if (found.empty()) {
      Say("No label " + t + ".\n");
      return std::nullopt;
    }
    if (found.size() > 1) {
      Say("The label " + t + " stands in several programs: write PRG." + label + ".\n");
      return std::nullopt;
    }
    return found.front();
  }

  std::string Place(int32_t adr) {
    int line = LineOfAdr(adr);
    return Hex4(adr) + (line >= 0 ? " (line " + std::to_string(line + 1) + ")" : "");
  }

  void Break(const std::vector<std::string>& w, bool watch) {
    if (w.size() != 2) {
      Say(std::string("Usage: ") + (watch ? "watch LABEL|#ADDR" : "break LABEL|PRG.LABEL|LINE|#ADDR") + "\n");
      return;
    }
    std::optional<int32_t> a = Where(w[1], !watch);
    if (!a) return;
    Point p{next_++, watch, *a, w[1], *a < kMemoryCells ? m->Memory[*a] : 0};
    points_.push_back(p);
    Say(std::string(watch ? "Watchpoint " : "Breakpoint ") + std::to_string(p.number) + " at " + Place(p.adr) +
        (watch ? ": [" + Hex4(p.adr) + "] = " + Hex4(p.last) : "") + "\n");
  }

  void Delete(const std::vector<std::string>& w) {
    if (w.size() == 1) {
      points_.clear();
      Say("All breakpoints and watchpoints are deleted.\n");
      return;
    }
    std::optional<uint64_t> n = Count(w, 1);
    auto it = std::find_if(points_.begin(), points_.end(),
                           [&](const Point& p) { return n && static_cast<uint64_t>(p.number) == *n; });
    if (it == points_.end()) {
      Say("No breakpoint number " + w[1] + ".\n");
      return;
    }
    points_.erase(it);
    Say("Deleted " + w[1] + ".\n");
  }

  void Info() {
    if (points_.empty()) Say("No breakpoints or watchpoints.\n");
    for (const Point& p : points_) {
      Say(std::to_string(p.number) + "  " + (p.watch ? "watch  " : "break  ") + Place(p.adr) + "  " + p.what + "\n");
    }
  }

  // Starts the run again from the loaded image.
  void Restart() {
    *m = *image_;
    run_ = std::make_unique<ControlledRun>(*m, FightModeOf(o_.mode).run);
    io_.readLine = input_();
    io_.writeOut = [this](const std::u16string& t) { Say(U16ToUtf8(t) + "\n"); };
    SetMachineIO(&io_);
    for (Point& p : points_) p.last = p.adr < kMemoryCells ? m->Memory[p.adr] : 0;
  }

  bool Started() {
    if (run_ && run_->End() == RunEnd::Running) return true;
    Say(run_ ? "The program is not running; use run to start it again.\n"
             : "The program is not running; use run to start it.\n");
    return false;
  }

  // Runs with `stopHere` deciding before each instruction (after the first)
  // whether to stop; breakpoints and watches stop too. Then tells why.
  void Go(uint64_t steps, const std::function<bool(const Tcomet2&)>& stopHere, const std::string& reason) {
    Snapshot before = Snapshot::Before(*m);
    std::string why = reason;
    bool first = true;
    RunEnd end = run_->Go(steps, [&](const Tcomet2& mc) {
      if (first) {
        first = false;
        return true;
      }
      for (Point& p : points_) {
        if (p.watch && p.adr < kMemoryCells && mc.Memory[p.adr] != p.last) {
          why = "Watchpoint " + std::to_string(p.number) + ": [" + Hex4(p.adr) + "] " + Hex4(p.last) + " -> " +
                Hex4(mc.Memory[p.adr]);
          p.last = mc.Memory[p.adr];
          return false;
        }
        if (!p.watch && p.adr == mc.PR) {
          why = "Breakpoint " + std::to_string(p.number) + " at " + Place(p.adr);
          return false;
        }
      }
      if (stopHere && stopHere(mc)) return false;
      return true;
    });
    if (end == RunEnd::Running) {
      Say(why + "\n");
    } else {
      std::string msg = run_->Message();
      while (!msg.empty() && (msg.back() == '\n' || msg.back() == ' ')) msg.pop_back();
      Say(std::string("The program stopped: ") + RunEndName(end) + " after " + std::to_string(run_->Steps()) +
          " steps.\n" + (msg.empty() ? "" : msg + "\n"));
      RunStatistics(*m);
    }
    Say(Tracer::Line(run_->Steps(), m->PR, ""));
    std::string changes = before.ChangesText(*m);
    if (!changes.empty()) Say("  " + changes + "\n");
  }

  void Regs() { Say(RegistersText(*m) + "\n"); }

  void Examine(const std::vector<std::string>& w) {
    if (w.size() < 2 || w.size() > 3) {
      Say("Usage: x ADDR|LABEL [N]\n");
      return;
    }
    std::optional<int32_t> a = Where(w[1], false);
    if (!a) return;
    std::optional<uint64_t> n = Count(w, 2);
    if (!n) {
      Say("Not a count: " + w[2] + "\n");
      return;
    }
    uint64_t last = std::min<uint64_t>(static_cast<uint64_t>(*a) + *n, 65536);
    for (uint64_t adr = static_cast<uint64_t>(*a); adr < last; ++adr) {
      int32_t v = m->Memory[adr];
      Say(Hex4(static_cast<uint32_t>(adr)) + ": " + Hex4(v) + "  " + std::to_string(v & 0xFFFF) + "  " +
          std::to_string(static_cast<int16_t>(v & 0xFFFF)) + "\n");
    }
    if (static_cast<uint64_t>(*a) + *n > 65536) Say("(the memory ends at #FFFF)\n");
  }

  void Stack() {
    uint32_t sp = static_cast<uint32_t>(m->SP) & 0xFFFF;
    if (sp >= 0xFFFF) {
      Say("The stack is empty (SP=#FFFF).\n");
      return;
    }
    for (uint32_t a = sp; a < 0xFFFF; ++a) {
      uint32_t i = 65535u - a;
      if (i >= static_cast<uint32_t>(kStackCells)) break;
      int32_t v = m->stackArea[i];
      // A return address stands right behind a CALL.
      uint32_t back = static_cast<uint32_t>(v & 0xFFFF);
      bool ret = back >= 2 && back - 2 < static_cast<uint32_t>(kMemoryCells) &&
                 kDecode[(static_cast<uint32_t>(m->Memory[back - 2]) >> 8) & 0xFF].exec == OpExec::Call;
      Say(Hex4(a) + ": " + Hex4(v) + (ret ? "  return to " + Place(static_cast<int32_t>(back)) : "") + "\n");
    }
  }

  void List() {
    int at = LineOfAdr(m->PR);
    if (at < 0) {
      Say("No source line at PR=" + Hex4(m->PR) + ".\n");
      return;
    }
    int from = std::max(0, at - 3), to = std::min(static_cast<int>(b->vecSrcW.size()) - 1, at + 3);
    for (int i = from; i <= to; ++i) {
      Say(std::string(i == at ? "=> " : "   ") + std::to_string(i + 1) + "\t" + U16ToUtf8(b->vecSrcW[i].rawStr) + "\n");
    }
  }

  void Command(const std::vector<std::string>& w) {
    const std::string& c = w[0];
    if (c == "help" || c == "h") {
      Say(kHelp);
    } else if (c == "break" || c == "b") {
      Break(w, false);
    } else if (c == "watch") {
      Break(w, true);
    } else if (c == "delete" || c == "d") {
      Delete(w);
    } else if (c == "info" && w.size() == 2 && (w[1] == "breakpoints" || w[1] == "b")) {
      Info();
    } else if (c == "run" || c == "r") {
      Restart();
      Go(0, nullptr, "");
    } else if (c == "continue" || c == "c") {
      if (Started()) Go(0, nullptr, "");
    } else if (c == "step" || c == "s" || c == "next" || c == "n") {
      std::optional<uint64_t> n = Count(w, 1);
      if (!n) {
        Say(c + ": not a count: " + w[1] + "\n");
        return;
      }
      if (!run_) Restart();
      if (!Started()) return;
      if (c[0] == 's') {
        Go(*n, nullptr, "Stepped.");
        return;
      }
      // next: a CALL runs until its depth is back.
      for (uint64_t k = 0; k < *n && run_->End() == RunEnd::Running; ++k) {
        const bool call =
            kDecode[(static_cast<uint32_t>(m->Memory[m->PR & 0xFFFF]) >> 8) & 0xFF].exec == OpExec::Call;
        const int32_t depth = m->callDepth;
        if (call) {
          Go(0, [depth](const Tcomet2& mc) { return mc.callDepth <= depth; }, "Stepped over the call.");
        } else {
          Go(1, nullptr, "Stepped.");
        }
      }
    } else if (c == "finish") {
      if (!Started()) return;
      const int32_t depth = m->callDepth;
      if (depth <= 0) {
        Say("Not in a subroutine: finish runs to the end.\n");
      }
      Go(0, [depth](const Tcomet2& mc) { return mc.callDepth < depth; }, "Returned.");
    } else if (c == "regs") {
      Regs();
    } else if (c == "x") {
      Examine(w);
    } else if (c == "stack") {
      Stack();
    } else if (c == "list" || c == "l") {
      List();
    } else {
      Say("Unknown command: " + c + ". Type help for the commands.\n");
    }
  }

 public:
  std::function<LineReader()> input_;

 private:
  const Options& o_;
  std::string file_;
  std::unique_ptr<Tcomet2> image_;
  std::unique_ptr<ControlledRun> run_;
  MachineIO io_;
  std::vector<Point> points_;
  int next_ = 1;
};

}  // namespace

int Debug(const Options& o) {
  const FightMode& mode = FightModeOf(o.mode);
  const std::string& file = o.files.front();
  session::Assembled a = session::AssembleFile(file, mode, o.lang);
  if (!a.assembled) {
    con::Print(FileText(file, a, o.color));
    return a.readable ? kErrors : kUsage;
  }
  // IN reads --input when given, else the terminal (or the command stream).
  InputLines input(o, true);
  if (!input.Error().empty()) {
    con::PrintErr(input.Error());
    return kUsage;
  }
  Session s(o, file);
  s.input_ = [&input]() { return input.Reader(); };
  int status = s.Loop();
  SetMachineIO(nullptr);
  return status;
}

}  // namespace cli
