#include "dice/roll_file_record.h"

#include <filesystem>
#include <system_error>

RollByteFile& RollByteFile::operator=(RollByteFile&& other) noexcept {
  if (this == &other) return *this;
  Close();
  file_ = other.file_;
  path_ = std::move(other.path_);
  end_ = other.end_;
  readPos_ = other.readPos_;
  pendingStart_ = other.pendingStart_;
  pendingCount_ = other.pendingCount_;
  pending_ = other.pending_;
  other.file_ = nullptr;
  other.pendingCount_ = 0;
  other.end_ = 0;
  return *this;
}

bool RollByteFile::Open(const std::string& path, bool truncate) {
  Close();
  std::error_code ec;
  const bool exists = std::filesystem::exists(path, ec);
  if (truncate || !exists) {
    file_ = std::fopen(path.c_str(), "w+b");
  } else {
    file_ = std::fopen(path.c_str(), "r+b");
    if (!file_) file_ = std::fopen(path.c_str(), "rb");  // a read-only file still plays back
  }
  if (!file_) return false;
  path_ = path;
  readPos_ = -1;
  pendingCount_ = 0;
  end_ = 0;
  if (std::fseek(file_, 0, SEEK_END) == 0) {
    const long size = std::ftell(file_);
    end_ = size > 0 ? size : 0;
  }
  return true;
}

bool RollByteFile::Close() {
  if (!file_) return true;
  const bool written = Flush();
  const bool closed = std::fclose(file_) == 0;
  file_ = nullptr;
  path_.clear();
  end_ = 0;
  readPos_ = -1;
  return written && closed;
}

bool RollByteFile::Flush() {
  if (!file_ || pendingCount_ == 0) return true;
  readPos_ = -1;  // a read after a write needs a seek
  const size_t count = static_cast<size_t>(pendingCount_);
  pendingCount_ = 0;
  if (std::fseek(file_, static_cast<long>(pendingStart_), SEEK_SET) != 0) return false;
  // On to the disk as well: the editor and a saved game's copy read the file by name.
  const bool written = std::fwrite(pending_.data(), 1, count, file_) == count;
  return std::fflush(file_) == 0 && written;
}

void RollByteFile::Write(int64_t offset, uint8_t value) {
  if (!file_ || offset < 0) return;
  if (pendingCount_ > 0 && offset >= pendingStart_ && offset < pendingStart_ + pendingCount_) {
    pending_[static_cast<size_t>(offset - pendingStart_)] = value;
  } else if (pendingCount_ > 0 && offset == pendingStart_ + pendingCount_ &&
             pendingCount_ < static_cast<int32_t>(pending_.size())) {
    pending_[static_cast<size_t>(pendingCount_++)] = value;
  } else {
    Flush();
    pendingStart_ = offset;
    pending_[0] = value;
    pendingCount_ = 1;
  }
  if (offset >= end_) end_ = offset + 1;
}

int RollByteFile::Read(int64_t offset) {
  if (!file_ || offset < 0) return -1;
  if (pendingCount_ > 0) Flush();
  if (offset != readPos_ && std::fseek(file_, static_cast<long>(offset), SEEK_SET) != 0) {
    readPos_ = -1;
    return -1;
  }
  const int c = std::fgetc(file_);
  if (c == EOF) {
    std::clearerr(file_);
    readPos_ = -1;
    return -1;
  }
  readPos_ = offset + 1;
  if (readPos_ > end_) end_ = readPos_;
  return c;
}

int64_t RollByteFile::ReadBlock(int64_t offset, uint8_t* out, int64_t count) {
  if (!file_ || offset < 0 || count <= 0) return 0;
  if (pendingCount_ > 0) Flush();
  readPos_ = -1;
  if (std::fseek(file_, static_cast<long>(offset), SEEK_SET) != 0) return 0;
  const size_t got = std::fread(out, 1, static_cast<size_t>(count), file_);
  std::clearerr(file_);
  return static_cast<int64_t>(got);
}

bool RollByteFile::Rewrite(const std::vector<uint8_t>& bytes) {
  if (!file_) return false;
  pendingCount_ = 0;
  readPos_ = -1;
  if (std::fseek(file_, 0, SEEK_SET) != 0) return false;
  if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) return false;
  if (std::fflush(file_) != 0) return false;
  std::error_code ec;
  std::filesystem::resize_file(path_, bytes.size(), ec);
  end_ = static_cast<int64_t>(bytes.size());
  return !ec;
}
