#include "shell/platform.h"

#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "records/console.h"
#include "records/text.h"

extern char** environ;

namespace shell {

int RunCommand(const std::vector<std::string>& argv) {
  if (argv.empty()) return -1;
  con::Flush();
  std::vector<std::string> args = argv;
  std::vector<char*> p;
  p.reserve(args.size() + 1);
  for (std::string& a : args) p.push_back(a.data());
  p.push_back(nullptr);
  // As system() does: while the command runs, an interrupt from the
  // keyboard goes to the command alone; the command gets the defaults back.
  struct sigaction ignore {}, oldInt {}, oldQuit {};
  ignore.sa_handler = SIG_IGN;
  sigemptyset(&ignore.sa_mask);
  ::sigaction(SIGINT, &ignore, &oldInt);
  ::sigaction(SIGQUIT, &ignore, &oldQuit);
  posix_spawnattr_t attr;
  posix_spawnattr_init(&attr);
  sigset_t defaults;
  sigemptyset(&defaults);
  sigaddset(&defaults, SIGINT);
  sigaddset(&defaults, SIGQUIT);
  posix_spawnattr_setsigdefault(&attr, &defaults);
  posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETSIGDEF);

  pid_t pid = 0;
  int status = 0;
  int rc = ::posix_spawnp(&pid, p[0], nullptr, &attr, p.data(), environ);
  posix_spawnattr_destroy(&attr);
  if (rc == 0) {
    while (::waitpid(pid, &status, 0) < 0) {
      if (errno != EINTR) {
        rc = -1;
        break;
      }
    }
  }
  ::sigaction(SIGINT, &oldInt, nullptr);
  ::sigaction(SIGQUIT, &oldQuit, nullptr);
  if (rc != 0) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

namespace {

// True when an executable of that name stands in a folder of PATH.
bool OnPath(const std::string& name) {
  const char* path = std::getenv("PATH");
  if (path == nullptr) return false;
  std::string all(path);
  for (size_t start = 0; start <= all.size();) {
    size_t end = all.find(':', start);
    if (end == std::string::npos) end = all.size();
    std::string candidate = end > start ? all.substr(start, end - start) : std::string(".");
    candidate.push_back('/');
    candidate.append(name);
    if (::access(candidate.c_str(), X_OK) == 0) return true;
    start = end + 1;
  }
  return false;
}

}  // namespace

std::string UserEditor() {
  for (const char* name : {"VISUAL", "EDITOR"}) {
    const char* v = std::getenv(name);
    if (v && !TrimA(v).empty()) return v;
  }
  // A beginner should not land in vi when another editor is at hand.
  for (const char* name : {"sensible-editor", "editor", "nano", "vi"}) {
    if (OnPath(name)) return name;
  }
  return "vi";
}

int RunEditor(const std::string& editor, const std::string& file) {
  if (TrimA(editor).empty()) return -1;
  return RunCommand({"/bin/sh", "-c", TrimA(editor) + " \"$1\"", "sh", file});
}

namespace {
bool IsFile(const std::string& path) {
  struct stat st {};
  return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}
}  // namespace

namespace {
// The folder of the running program, "" when the system does not tell.
std::string ExeDir() {
  std::string exe(4096, '\0');
  ssize_t n = ::readlink("/proc/self/exe", exe.data(), exe.size() - 1);
  if (n <= 0) return std::string();
  exe.resize(static_cast<size_t>(n));
  size_t slash = exe.find_last_of('/');
  return slash == std::string::npos ? std::string() : exe.substr(0, slash);
}
}  // namespace

std::vector<std::string> HelpDocumentFolders() {
  std::vector<std::string> folders;
  std::string exe = ExeDir();
  if (!exe.empty()) {
    folders.push_back(exe + "/../share/doc/drillasm");  // installed, wherever the prefix is
    folders.push_back(exe + "/../docs");                // a build folder inside the source tree
  }
#ifdef DRILLASM_INSTALLED_DOCDIR
  folders.push_back(DRILLASM_INSTALLED_DOCDIR);  // a program copied out of its prefix
#endif
  folders.push_back("docs");
  folders.push_back(".");
  return folders;
}

std::string HelpDocumentPath(bool japanese) {
  const char* own = japanese ? "help.ja.md" : "help.md";
  const char* other = japanese ? "help.md" : "help.ja.md";
  std::vector<std::string> folders = HelpDocumentFolders();
  // The guide of the learner's language wherever it is; the other one only
  // when no folder has it.
  for (const char* name : {own, other}) {
    for (const std::string& folder : folders) {
      std::string p = folder + "/" + name;
      if (IsFile(p)) return p;
    }
  }
  return std::string();
}

}  // namespace shell
