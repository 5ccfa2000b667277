#include "online/connection.h"

void Connection::Reset(const PeerLimits& limits, uint32_t now) {
  decoder = FrameDecoder(limits.maxFrame);
  lastData = now;
  tokens = 2.0 * limits.framesPerSecond;
  tokenTick = now;
}

bool Connection::Send(std::string_view message) {
  const std::string frame = EncodeFrame(message);
  if (frame.empty() || !socket) return false;
  socket->Send(frame);
  return true;
}

bool Connection::NextMessage(const PeerLimits& limits, uint32_t now, std::string& message, std::string& fault) {
  fault.clear();
  const FrameResult r = decoder.Next(message);
  if (r == FrameResult::NeedMore) return false;
  if (r == FrameResult::BadPrefix) {
    fault = "a frame with a length it cannot have";
    return false;
  }
  const double burst = 2.0 * limits.framesPerSecond;
  tokens += (now - tokenTick) / 1000.0 * limits.framesPerSecond;
  if (tokens > burst) tokens = burst;
  tokenTick = now;
  if (tokens < 1.0) {
    fault = "a flood of frames";
    return false;
  }
  tokens -= 1.0;
  return true;
}

std::string Connection::Stale(const PeerLimits& limits, uint32_t now) const {
  if (!Connected()) return "";
  if (socket->PendingOutput() > limits.maxUnread) return "it leaves what is sent to it unread";
  if (now - lastData >= limits.silenceMs) {
    return decoder.Pending() > 0 ? "half a frame and then silence" : "silence";
  }
  return "";
}
