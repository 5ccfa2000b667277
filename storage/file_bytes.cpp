#include "storage/file_bytes.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

void SyncFolder(const fs::path& folder) {
  const int fd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY);
  if (fd < 0) return;
  ::fsync(fd);
  ::close(fd);
}

}  // namespace

bool WriteAll(int fd, const void* bytes, size_t size) {
  const auto* data = static_cast<const uint8_t*>(bytes);
  while (size > 0) {
    const ssize_t n = ::write(fd, data, size);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    data += n;
    size -= static_cast<size_t>(n);
  }
  return true;
}

bool ReadWholeFile(const std::string& path, Bytes& out, uint64_t maxBytes) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return false;
  Bytes bytes;
  uint8_t buffer[65536];
  bool ok = true;
  for (;;) {
    const size_t n = std::fread(buffer, 1, sizeof buffer, f);
    if (n == 0) break;
    if (bytes.size() + n > maxBytes) {
      ok = false;
      break;
    }
    bytes.insert(bytes.end(), buffer, buffer + n);
  }
  ok = ok && !std::ferror(f);
  std::fclose(f);
  if (ok) out = std::move(bytes);
  return ok;
}

namespace {

// The write of WriteFileAtomically; `date`, when given, becomes the file's date before it
// takes the name, so that the name never shows the new bytes with another date.
bool WriteAtomically(const std::string& path, const Bytes& bytes, const struct timespec* date) {
  const fs::path target(path);
  std::error_code ec;
  if (path.empty() || fs::is_directory(target, ec)) return false;
  // The temporary is in the same folder, so that the rename never crosses file systems.
  fs::path temp = target;
  temp += fmt::format(".{}.tmp", ::getpid());
  const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return false;
  bool ok = WriteAll(fd, bytes.data(), bytes.size());
  if (ok && date) {
    const struct timespec times[2] = {*date, *date};
    ok = ::futimens(fd, times) == 0;
  }
  ok = ok && ::fsync(fd) == 0;
  ok = ::close(fd) == 0 && ok;
  if (ok) ok = ::rename(temp.c_str(), target.c_str()) == 0;
  if (!ok) {
    fs::remove(temp, ec);
    return false;
  }
  SyncFolder(target.parent_path());
  return true;
}

}  // namespace

bool WriteFileAtomically(const std::string& path, const Bytes& bytes) { return WriteAtomically(path, bytes, nullptr); }

std::string FileDateText(const std::string& path) {
  struct stat st {};
  if (path.empty() || ::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return "";
  std::tm tm{};
  const std::time_t t = st.st_mtim.tv_sec;
  gmtime_r(&t, &tm);
  return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}", tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour,
                     tm.tm_min, tm.tm_sec);
}

bool CopyFileKeepingDate(const std::string& from, const std::string& to) {
  struct stat st {};
  Bytes bytes;
  constexpr uint64_t kMaxCopy = uint64_t{1} << 32;
  if (::stat(from.c_str(), &st) != 0 || !ReadWholeFile(from, bytes, kMaxCopy)) return false;
  return WriteAtomically(to, bytes, &st.st_mtim);
}

bool RegularFileExists(const std::string& path) {
  std::error_code ec;
  return !path.empty() && fs::is_regular_file(path, ec);
}
