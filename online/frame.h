#pragma once
// The frame of every message on the wire: four decimal digits giving the length of the
// whole frame (the four digits included), then the message in 8-bit text (Windows-1252
// on the wire, UTF-8 in memory). A receiver checks the prefix before it waits for the
// body, so a lying or oversized length closes the connection instead of stalling it.

#include <cstddef>
#include <string>
#include <string_view>

constexpr size_t kFramePrefix = 4;
constexpr size_t kMaxFrame = 9999;  // what four digits can say

// The frame of a message, or "" when the message is too long for one.
std::string EncodeFrame(std::string_view message);

enum class FrameResult {
  Message,   // a whole message was taken
  NeedMore,  // a part of a frame waits for the rest
  BadPrefix  // the first four characters are not a length a frame can have
};

class FrameDecoder {
 public:
  // Frames longer than `limit` (at most kMaxFrame) are refused like a lying prefix.
  explicit FrameDecoder(size_t limit = kMaxFrame) : limit_(limit < kMaxFrame ? limit : kMaxFrame) {}
  void Feed(std::string_view bytes) { buffer_.append(bytes); }
  // Takes the next message into `message`; after BadPrefix the decoder stays refused.
  FrameResult Next(std::string& message);
  // Bytes received and not yet taken.
  size_t Pending() const { return buffer_.size() - start_; }
  void Clear();

 private:
  std::string buffer_;
  size_t start_ = 0;  // taken bytes stay in front until the buffer is compacted
  size_t limit_;
  bool refused_ = false;
};
