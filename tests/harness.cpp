#include "harness.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef DRILLASM_EXE
#error "DRILLASM_EXE must name the drillasm binary"
#endif
#ifndef DRILLASM_SOURCE_DIR
#error "DRILLASM_SOURCE_DIR must name the source tree"
#endif

extern char** environ;

namespace fs = std::filesystem;

namespace e2e {
namespace {

// Output beyond this is drained and dropped, so a runaway loop cannot eat memory.
constexpr std::size_t kMaxOutput = 32u << 20;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error("e2e harness: " + what + ": " + std::strerror(errno));
}

void write_file(const fs::path& path, const std::string& bytes) {
    if (path.has_parent_path()) fs::create_directories(path.parent_path());
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!f) throw std::runtime_error("e2e harness: cannot write " + path.string());
}

// Standard input comes from an unlinked temporary file, so the child sees a
// plain file that ends after `input` and the parent never blocks feeding it.
int input_fd(const std::string& input) {
    std::string tmpl = (fs::temp_directory_path() / "drillasm-e2e-in-XXXXXX").string();
    int fd = mkstemp(tmpl.data());
    if (fd < 0) fail("mkstemp");
    unlink(tmpl.c_str());
    std::size_t done = 0;
    while (done < input.size()) {
        ssize_t n = write(fd, input.data() + done, input.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            close(fd);
            fail("write input");
        }
        done += static_cast<std::size_t>(n);
    }
    if (lseek(fd, 0, SEEK_SET) != 0) {
        close(fd);
        fail("lseek input");
    }
    return fd;
}

std::vector<std::string> child_environment(const RunSpec& spec) {
    std::map<std::string, std::string> env;
    for (char** e = environ; e && *e; ++e) {
        std::string kv = *e;
        auto eq = kv.find('=');
        if (eq == std::string::npos) continue;
        env[kv.substr(0, eq)] = kv.substr(eq + 1);
    }
    for (const char* name : {"VISUAL", "LC_ALL", "DISPLAY", "WAYLAND_DISPLAY", "E2E_KEEP"})
        env.erase(name);
    env["EDITOR"] = "cat";
    env["SOURCE_DATE_EPOCH"] = "0";
    env["LANG"] = "C.UTF-8";
    for (const auto& [k, v] : spec.env) env[k] = v;

    std::vector<std::string> out;
    out.reserve(env.size());
    for (const auto& [k, v] : env) out.push_back(k + "=" + v);
    return out;
}

std::vector<char*> c_strings(std::vector<std::string>& v) {
    std::vector<char*> p;
    p.reserve(v.size() + 1);
    for (auto& s : v) p.push_back(s.data());
    p.push_back(nullptr);
    return p;
}

void collect_files(const fs::path& dir, std::map<std::string, std::string>& files) {
    std::error_code ec;
    for (fs::recursive_directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
        std::error_code sec;
        if (!it->is_regular_file(sec) || it->is_symlink(sec)) continue;
        std::ifstream f(it->path(), std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
        files[fs::relative(it->path(), dir).generic_string()] = std::move(bytes);
    }
}

}  // namespace

RunResult run(const RunSpec& spec) {
    RunResult result;

    std::string tmpl = (fs::temp_directory_path() / "drillasm-e2e-XXXXXX").string();
    if (!mkdtemp(tmpl.data())) fail("mkdtemp");
    const fs::path dir = tmpl;
    result.dir = dir.string();

    if (!spec.no_ini) write_file(dir / "drillasm.ini", spec.ini);
    for (const auto& [rel, bytes] : spec.files) write_file(dir / rel, bytes);
    for (const std::string& rel : spec.executables)
        fs::permissions(dir / rel, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                       fs::perms::others_read | fs::perms::others_exec);

    // Everything the child needs is prepared before fork: after it, only
    // async-signal-safe calls are made.
    std::vector<std::string> argv_s = spec.argv;
    if (argv_s.empty()) argv_s.push_back(DRILLASM_EXE);
    std::vector<std::string> env_s = child_environment(spec);
    std::vector<char*> argv_p = c_strings(argv_s);
    std::vector<char*> env_p = c_strings(env_s);
    const std::string cwd = dir.string();

    int in = input_fd(spec.input);
    int pipefd[2];
    if (pipe2(pipefd, O_CLOEXEC) != 0) {
        close(in);
        fail("pipe");
    }

    pid_t pid = fork();
    if (pid < 0) {
        close(in);
        close(pipefd[0]);
        close(pipefd[1]);
        fail("fork");
    }
    if (pid == 0) {
        setpgid(0, 0);  // own group, so a timeout also kills whatever it started
        if (dup2(in, 0) < 0 || dup2(pipefd[1], 1) < 0 || dup2(pipefd[1], 2) < 0) _exit(126);
        if (chdir(cwd.c_str()) != 0) _exit(126);
        if (argv_s[0].find('/') != std::string::npos)
            execve(argv_p[0], argv_p.data(), env_p.data());
        else
            execvpe(argv_p[0], argv_p.data(), env_p.data());
        const char msg[] = "e2e harness: exec failed\n";
        ssize_t ignored = write(2, msg, sizeof msg - 1);
        (void)ignored;
        _exit(127);
    }
    setpgid(pid, pid);  // also from this side, so the group exists before any kill
    close(in);
    close(pipefd[1]);

    using clock = std::chrono::steady_clock;
    const auto deadline = clock::now() + std::chrono::duration_cast<clock::duration>(
                                             std::chrono::duration<double>(spec.timeout_seconds));
    int wstatus = 0;
    bool reaped = false;
    bool eof = false;
    char buf[65536];
    // Read until the pipe closes and the child is gone. A grandchild that
    // keeps the pipe open after the child exited is killed with the group.
    while (!(eof && reaped)) {
        auto now = clock::now();
        if (now >= deadline && !result.timed_out) {
            result.timed_out = true;
            kill(-pid, SIGKILL);
            kill(pid, SIGKILL);
        }
        // Something that left the group may still hold the pipe: give up on it.
        if (result.timed_out && reaped && now >= deadline + std::chrono::seconds(2)) break;
        if (!reaped) {
            pid_t w = waitpid(pid, &wstatus, result.timed_out ? 0 : WNOHANG);
            if (w == pid) {
                reaped = true;
                if (!eof) kill(-pid, SIGKILL);  // leftovers holding the pipe
            }
        }
        if (eof) continue;
        int wait_ms = 50;
        if (!result.timed_out) {
            auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - now).count();
            if (left < wait_ms) wait_ms = left > 0 ? static_cast<int>(left) : 0;
        }
        pollfd p{pipefd[0], POLLIN, 0};
        int r = poll(&p, 1, wait_ms);
        if (r < 0 && errno != EINTR) break;
        if (r > 0) {
            ssize_t n = read(pipefd[0], buf, sizeof buf);
            if (n > 0) {
                std::size_t room = kMaxOutput - std::min(kMaxOutput, result.out.size());
                result.out.append(buf, std::min(room, static_cast<std::size_t>(n)));
            } else if (n == 0 || (errno != EINTR && errno != EAGAIN)) {
                eof = true;
            }
        }
    }
    close(pipefd[0]);
    if (!reaped) waitpid(pid, &wstatus, 0);

    if (WIFEXITED(wstatus)) {
        result.status = WEXITSTATUS(wstatus);
    } else {
        result.signaled = true;
        result.status = -1;
    }

    collect_files(dir, result.files);

    if (std::getenv("E2E_KEEP")) {
        std::cerr << "e2e: kept " << result.dir << "\n";
    } else {
        std::error_code ec;
        fs::remove_all(dir, ec);
    }
    return result;
}

std::string read_file(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    if (!f) throw std::runtime_error("cannot read " + path);
    std::ostringstream ss;
    ss << f.rdbuf();
    return ss.str();
}

std::size_t count_occurrences(const std::string& haystack, const std::string& needle) {
    if (needle.empty()) return 0;
    std::size_t count = 0;
    for (auto pos = haystack.find(needle); pos != std::string::npos;
         pos = haystack.find(needle, pos + needle.size()))
        ++count;
    return count;
}

std::string Ini(std::string mode, int lang, std::string extra) {
    return "[Mode]\nLangStr=" + std::string(lang ? "ENU" : "JPN") + "\nLangInt=" + std::to_string(lang) +
           "\nFightFunc=" + mode +
           "\nTimeFuncStr=QPC\nTimeFuncInt=0\nSimpleTitleIndex=0\nBusyModeIndex=1\nSilentModeIndex=0\n" + extra +
           "[Src]\nLastSrcFile=src\\pn1000.txt\n[Editor]\nTextEditorIndex=0\nTextEditorPath1=\nTextEditorPath2=\n";
}

std::string source_path(const std::string& relative) {
    return (fs::path(DRILLASM_SOURCE_DIR) / relative).string();
}

}  // namespace e2e
