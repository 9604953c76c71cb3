// The built program on a pseudo-terminal: what a learner types at a real
// terminal (Enter, Tab, cursor keys, Ctrl+C, Ctrl+Z) and what the terminal
// shows.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace pty_test {

class Pty {
 public:
  // Starts `exe` in a fresh scratch folder holding `files`.
  Pty(const std::string& exe, const std::map<std::string, std::string>& files) {
    std::string tmpl = (std::filesystem::temp_directory_path() / "drillasm-pty-XXXXXX").string();
    dir_ = mkdtemp(tmpl.data());
    for (const auto& [rel, bytes] : files) {
      std::filesystem::path p = std::filesystem::path(dir_) / rel;
      std::filesystem::create_directories(p.parent_path());
      std::ofstream(p, std::ios::binary) << bytes;
    }
    struct winsize ws {};
    ws.ws_row = 40;
    ws.ws_col = 200;
    pid_ = forkpty(&fd_, nullptr, nullptr, &ws);
    if (pid_ == 0) {
      if (chdir(dir_.c_str()) != 0) _exit(127);
      setenv("LANG", "C.UTF-8", 1);
      setenv("EDITOR", "cat", 1);
      setenv("SOURCE_DATE_EPOCH", "0", 1);
      setenv("TERM", "xterm", 1);
      unsetenv("LC_ALL");
      execl(exe.c_str(), exe.c_str(), static_cast<char*>(nullptr));
      _exit(127);
    }
  }
  ~Pty() {
    if (pid_ > 0 && !done_) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
    if (fd_ >= 0) close(fd_);
    std::error_code ec;
    std::filesystem::remove_all(dir_, ec);
  }

  // Reads until `text` has appeared since `from` (default: since the last
  // match) or the time is up.
  bool WaitFor(const std::string& text, double seconds = 10) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    for (;;) {
      size_t at = out_.find(text, mark_);
      if (at != std::string::npos) {
        mark_ = at + text.size();
        return true;
      }
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
      if (left.count() <= 0 || !ReadSome(static_cast<int>(left.count()))) return false;
    }
  }
  void Send(const std::string& s) {
    if (write(fd_, s.data(), s.size()) < 0) return;
  }
  // The exit status (-1 killed by a signal, -2 still running after the time).
  int Wait(double seconds = 10) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < end) {
      int st = 0;
      pid_t r = waitpid(pid_, &st, WNOHANG);
      if (r == pid_) {
        done_ = true;
        while (ReadSome(50)) {
        }
        signal_ = WIFSIGNALED(st) ? WTERMSIG(st) : 0;
        return WIFEXITED(st) ? WEXITSTATUS(st) : -1;
      }
      ReadSome(50);
    }
    return -2;
  }
  int Signal() const { return signal_; }
  // The terminal's settings as the program has them now.
  bool Modes(struct termios& t) const {
    int s = open(ptsname(fd_), O_RDWR | O_NOCTTY);
    if (s < 0) return false;
    bool ok = tcgetattr(s, &t) == 0;
    close(s);
    return ok;
  }
  const std::string& Out() const { return out_; }
  std::string File(const std::string& rel) const {
    std::ifstream f(std::filesystem::path(dir_) / rel, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
  }

 private:
  bool ReadSome(int ms) {
    struct pollfd p {fd_, POLLIN, 0};
    if (poll(&p, 1, ms) <= 0) return false;
    char buf[4096];
    ssize_t n = read(fd_, buf, sizeof buf);
    if (n <= 0) return false;
    out_.append(buf, static_cast<size_t>(n));
    return true;
  }
  std::string dir_;
  int fd_ = -1;
  pid_t pid_ = -1;
  bool done_ = false;
  int signal_ = 0;
  std::string out_;
  size_t mark_ = 0;
};

}  // namespace pty_test
