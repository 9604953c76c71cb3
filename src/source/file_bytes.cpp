#include "source/file_bytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

bool ReadFileBytes(const std::string& name, std::string& out, size_t maxBytes) {
  out.clear();
  if (name.empty()) return false;
  int fd = ::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return false;
  struct stat st {};
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    ::close(fd);
    return false;
  }
  size_t want = static_cast<size_t>(st.st_size);
  if (want > maxBytes) want = maxBytes;
  out.reserve(want);
  char buf[65536];
  while (out.size() < maxBytes) {
    size_t chunk = sizeof buf;
    if (maxBytes - out.size() < chunk) chunk = maxBytes - out.size();
    ssize_t r = ::read(fd, buf, chunk);
    if (r < 0) {
      if (errno == EINTR) continue;
      ::close(fd);
      out.clear();
      return false;
    }
    if (r == 0) break;
    out.append(buf, static_cast<size_t>(r));
  }
  ::close(fd);
  return true;
}
