#include "online/frame.h"

#include "storage/paths.h"

std::string EncodeFrame(std::string_view message) {
  const std::string bytes = Utf8ToWindows1252(message);
  const size_t length = bytes.size() + kFramePrefix;
  if (length > kMaxFrame) return {};
  std::string frame(kFramePrefix, '0');
  size_t n = length;
  for (size_t i = kFramePrefix; i-- > 0; n /= 10) frame[i] = static_cast<char>('0' + n % 10);
  return frame + bytes;
}

FrameResult FrameDecoder::Next(std::string& message) {
  if (refused_) return FrameResult::BadPrefix;
  if (Pending() < kFramePrefix) return FrameResult::NeedMore;
  size_t length = 0;
  for (size_t i = 0; i < kFramePrefix; ++i) {
    const char c = buffer_[start_ + i];
    if (c < '0' || c > '9') {
      refused_ = true;
      return FrameResult::BadPrefix;
    }
    length = length * 10 + static_cast<size_t>(c - '0');
  }
  if (length < kFramePrefix || length > limit_) {
    refused_ = true;
    return FrameResult::BadPrefix;
  }
  if (Pending() < length) return FrameResult::NeedMore;
  message = Windows1252ToUtf8(std::string_view(buffer_).substr(start_ + kFramePrefix, length - kFramePrefix));
  start_ += length;
  // Taken bytes are dropped once they are the larger part, so a stream never grows the buffer.
  if (start_ == buffer_.size()) {
    buffer_.clear();
    start_ = 0;
  } else if (start_ > buffer_.size() / 2) {
    buffer_.erase(0, start_);
    start_ = 0;
  }
  return FrameResult::Message;
}

void FrameDecoder::Clear() {
  buffer_.clear();
  start_ = 0;
  refused_ = false;
}
