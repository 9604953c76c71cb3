#include "fuzz_support.h"

#include <fcntl.h>
#include <ftw.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "comet2/control.h"
#include "records/console.h"
#include "records/singletons.h"
#include "reports/TimeVcl/time_vcl.h"
#include "reports/report.h"
#include "shell/session.h"
#include "shell/shell.h"

namespace fuzz {

namespace {

std::string g_scratch;
std::vector<std::string> g_args;
std::vector<char*> g_argv;

// The flags of libFuzzer whose value is a path (or, for -artifact_prefix, the
// head of one).
const char* const kPathFlags[] = {"-artifact_prefix=",   "-exact_artifact_path=", "-dict=",
                                  "-merge_control_file=", "-features_dir=",        "-stop_file=",
                                  "-data_flow_trace=",    "-mutation_graph_file=", "-seed_inputs="};

std::string Absolute(const std::string& cwd, const std::string& path) {
  if (path.empty() || path[0] == '/') return path;
  return cwd + "/" + path;
}

// -seed_inputs= is a comma-separated list (or @FILE of one).
std::string AbsoluteList(const std::string& cwd, const std::string& list) {
  if (!list.empty() && list[0] == '@') return "@" + Absolute(cwd, list.substr(1));
  std::string out;
  size_t from = 0;
  for (;;) {
    const size_t comma = list.find(',', from);
    out += Absolute(cwd, list.substr(from, comma == std::string::npos ? std::string::npos : comma - from));
    if (comma == std::string::npos) return out;
    out += ',';
    from = comma + 1;
  }
}

void AbsoluteArguments(int* argc, char*** argv, const std::string& cwd) {
  g_args.assign(*argv, *argv + *argc);
  bool artifactPrefix = false;
  for (size_t i = 1; i < g_args.size(); ++i) {
    std::string& a = g_args[i];
    if (a.empty()) continue;
    if (a[0] != '-') {
      a = Absolute(cwd, a);
      continue;
    }
    for (const char* flag : kPathFlags) {
      const size_t n = std::strlen(flag);
      if (a.compare(0, n, flag) != 0) continue;
      if (std::strcmp(flag, "-artifact_prefix=") == 0 || std::strcmp(flag, "-exact_artifact_path=") == 0)
        artifactPrefix = true;
      const std::string value = a.substr(n);
      a = flag + (std::strcmp(flag, "-seed_inputs=") == 0 ? AbsoluteList(cwd, value) : Absolute(cwd, value));
    }
  }
  // Findings land where the program was started, not in the scratch folder.
  if (!artifactPrefix) g_args.push_back("-artifact_prefix=" + cwd + "/");
  g_argv.clear();
  for (std::string& a : g_args) g_argv.push_back(a.data());
  *argc = static_cast<int>(g_args.size());
  g_argv.push_back(nullptr);
  *argv = g_argv.data();
}

int RemoveEntry(const char* path, const struct stat*, int, struct FTW*) {
  ::remove(path);
  return 0;
}

void RemoveScratch() {
  if (g_scratch.empty()) return;
  // Out of the folder before it goes.
  if (::chdir("/") != 0) return;
  ::nftw(g_scratch.c_str(), RemoveEntry, 16, FTW_DEPTH | FTW_PHYS);
}

}  // namespace

void Fail(const std::string& what) {
  std::fprintf(stderr, "\n==drillasm fuzz== %s\n", what.c_str());
  std::fflush(stderr);
  std::abort();
}

void Initialize(int* argc, char*** argv) {
  std::string cwd;
  if (char* c = ::getcwd(nullptr, 0)) {
    cwd = c;
    std::free(c);
  }
  AbsoluteArguments(argc, argv, cwd);

  // In TMPDIR, else in memory (/dev/shm), where replacing a file by a
  // rename costs no write-back to a disk, else in /tmp.
  const char* tmp = std::getenv("TMPDIR");
  std::string base = tmp != nullptr && *tmp != '\0' ? tmp : ::access("/dev/shm", W_OK | X_OK) == 0 ? "/dev/shm" : "/tmp";
  std::string tmpl = base + "/drillasm-fuzz-XXXXXX";
  if (::mkdtemp(tmpl.data()) == nullptr) {
    std::perror("drillasm fuzz: scratch folder");
    std::exit(1);
  }
  g_scratch = tmpl;
  std::atexit(RemoveScratch);

  // Report time stamps that do not move.
  ::setenv("SOURCE_DATE_EPOCH", "0", 1);

  // Standard output into a file that must stay empty.
  int out = ::open((g_scratch + "/stdout.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (out < 0 || ::dup2(out, 1) < 0) {
    std::perror("drillasm fuzz: standard output");
    std::exit(1);
  }
  ::close(out);
  // Standard input a pipe holding one byte that must stay unread.
  int p[2];
  if (::pipe(p) != 0 || ::write(p[1], "x", 1) != 1 || ::dup2(p[0], 0) < 0) {
    std::perror("drillasm fuzz: standard input");
    std::exit(1);
  }
  ::close(p[0]);
  ::close(p[1]);

  for (int k = 0; k < kModes; ++k) {
    static const char* const kNames[kModes] = {"NWW", "WP", "AP", "NA", "NaW", "NH"};
    if (std::strcmp(ModeOf(static_cast<uint8_t>(k)).name, kNames[k]) != 0) Fail("the table of modes has changed");
  }
}

void EnterScratch() {
  static bool inside = false;
  if (inside) return;
  if (::chdir(g_scratch.c_str()) != 0) Fail("cannot enter the scratch folder " + g_scratch);
  inside = true;
}

const FightMode& ModeOf(uint8_t byte) {
  static const char* const kNames[kModes] = {"NWW", "WP", "AP", "NA", "NaW", "NH"};
  return FightModeOf(kNames[byte % kModes]);
}

void Fresh(const FightMode& mode, int lang, bool start) {
  con::SetDiscard();
  if (start) session::FreshStart(mode, lang);
  *timeVcl = TimeVcl();
  *dirHolder = TDirHolder();
  ResetBannerCount();
  ResetReportHintCounts();
  con::SetFrontCapture(nullptr);
  con::SetInputForTest("", false);
  con::StopWaitingReads(false);
  SetMachineIO(nullptr);
}

void CheckConsole() {
  con::Flush();
  struct stat st {};
  if (::fstat(1, &st) == 0 && S_ISREG(st.st_mode) && st.st_size != 0) Fail("the library wrote to standard output");
  int unread = 0;
  if (::ioctl(0, FIONREAD, &unread) == 0 && unread != 1) Fail("the library read standard input");
}

void WriteFile(const std::string& name, std::string_view text) {
  int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (fd < 0) Fail("cannot write " + name + ": " + std::strerror(errno));
  size_t done = 0;
  while (done < text.size()) {
    ssize_t w = ::write(fd, text.data() + done, text.size() - done);
    if (w < 0) {
      if (errno == EINTR) continue;
      Fail("cannot write " + name + ": " + std::strerror(errno));
    }
    done += static_cast<size_t>(w);
  }
  ::close(fd);
}

void WriteFile(const std::string& name, const uint8_t* data, size_t size) {
  WriteFile(name, std::string_view(reinterpret_cast<const char*>(data), size));
}

Split SplitAt(std::string_view data, std::string_view sep) {
  const size_t at = data.find(sep);
  if (at == std::string_view::npos) return {data, {}};
  return {data.substr(0, at), data.substr(at + sep.size())};
}

bool IsValidUtf8(std::string_view s) {
  const auto* p = reinterpret_cast<const unsigned char*>(s.data());
  const size_t n = s.size();
  for (size_t i = 0; i < n;) {
    const unsigned char c = p[i];
    if (c < 0x80) {
      ++i;
      continue;
    }
    size_t len = 0;
    uint32_t cp = 0, minCp = 0;
    if ((c & 0xE0) == 0xC0) {
      len = 2, cp = c & 0x1F, minCp = 0x80;
    } else if ((c & 0xF0) == 0xE0) {
      len = 3, cp = c & 0x0F, minCp = 0x800;
    } else if ((c & 0xF8) == 0xF0) {
      len = 4, cp = c & 0x07, minCp = 0x10000;
    } else {
      return false;
    }
    if (i + len > n) return false;
    for (size_t k = 1; k < len; ++k) {
      if ((p[i + k] & 0xC0) != 0x80) return false;
      cp = (cp << 6) | (p[i + k] & 0x3F);
    }
    if (cp < minCp || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return false;
    i += len;
  }
  return true;
}

bool IsWellFormedUtf16(wview s) {
  for (size_t i = 0; i < s.size(); ++i) {
    const char16_t c = s[i];
    if (c >= 0xD800 && c <= 0xDBFF) {
      if (i + 1 >= s.size() || s[i + 1] < 0xDC00 || s[i + 1] > 0xDFFF) return false;
      ++i;
    } else if (c >= 0xDC00 && c <= 0xDFFF) {
      return false;
    }
  }
  return true;
}

}  // namespace fuzz
