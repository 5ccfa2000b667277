#include "storage/append_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace {

int OpenForLines(const std::string& path, bool clear) {
  int flags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;
  if (clear) flags |= O_TRUNC;
  for (;;) {
    const int fd = ::open(path.c_str(), flags, 0666);
    if (fd >= 0 || errno != EINTR) return fd;
  }
}

}  // namespace

AppendFile::AppendFile(AppendFile&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)), path_(std::move(other.path_)) {}

AppendFile& AppendFile::operator=(AppendFile&& other) noexcept {
  if (this != &other) {
    Close();
    fd_ = std::exchange(other.fd_, -1);
    path_ = std::move(other.path_);
  }
  return *this;
}

AppendFile::~AppendFile() { Close(); }

void AppendFile::Close() {
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
}

bool AppendFile::Open(const std::string& path, bool clear) {
  const int fd = OpenForLines(path, clear);
  if (fd < 0) return false;
  Close();
  fd_ = fd;
  path_ = path;
  return true;
}

bool AppendFile::AppendLine(std::string_view text) {
  if (path_.empty()) return false;
  // Removed, or replaced by another file: the path's file now, as a fresh open finds it.
  struct stat st {};
  if (fd_ >= 0 && (::fstat(fd_, &st) != 0 || st.st_nlink == 0)) Close();
  if (fd_ < 0 && (fd_ = OpenForLines(path_, false)) < 0) return false;
  char end = '\n';
  iovec parts[2] = {{const_cast<char*>(text.data()), text.size()}, {&end, 1}};
  int count = 2;
  iovec* part = parts;
  while (count > 0) {
    const ssize_t n = ::writev(fd_, part, count);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      Close();  // the next line tries the path afresh
      return true;
    }
    // A short write (a full disk, a signal) goes on from where it stopped.
    auto done = static_cast<size_t>(n);
    while (count > 0 && done >= part->iov_len) {
      done -= part->iov_len;
      ++part;
      --count;
    }
    if (count > 0) {
      part->iov_base = static_cast<char*>(part->iov_base) + done;
      part->iov_len -= done;
    }
  }
  return true;
}
