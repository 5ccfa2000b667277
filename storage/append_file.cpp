#include "storage/append_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "storage/file_bytes.h"

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
  // The line goes in one write, so that another writer's line can't land inside it.
  line_.assign(text);
  line_ += '\n';
  if (!WriteAll(fd_, line_.data(), line_.size())) Close();  // the next line tries the path afresh
  return true;
}
