#pragma once
// One place of a socket array: the socket, its receive buffer, and the guards that keep
// a hostile or broken peer from stalling or flooding the rest: a frame limit, a rate
// limit on frames, a limit on what it leaves unread, and the time of its last data.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "online/frame.h"
#include "online/socket_control.h"

struct PeerLimits {
  size_t maxFrame = kMaxFrame;  // the longest frame the peer may send
  int framesPerSecond = 400;    // frames taken a second, with a burst of twice that
  size_t maxUnread = 1u << 20;  // bytes sent to the peer and not yet taken by it
  uint32_t silenceMs = 90000;   // a peer that sends nothing this long is closed
};

struct Connection {
  std::unique_ptr<SocketControl> socket;
  FrameDecoder decoder;
  uint32_t lastData = 0;  // tick of the last data from the peer
  double tokens = 0;      // frames the peer may still send now
  uint32_t tokenTick = 0;

  bool Connected() const { return socket && socket->State() == kSocketConnected; }
  // A fresh stream: the buffer emptied, the guards reset at `now`.
  void Reset(const PeerLimits& limits, uint32_t now);
  // Frames and sends; false (nothing sent) for a message too long for a frame.
  bool Send(std::string_view message);
  // Takes the next whole message. False when there is none yet (`fault` empty) or when
  // the stream must be closed (`fault` says why).
  bool NextMessage(const PeerLimits& limits, uint32_t now, std::string& message, std::string& fault);
  // Why the peer must be closed though it sent nothing wrong: it leaves too much unread,
  // or has been silent too long; "" when neither.
  std::string Stale(const PeerLimits& limits, uint32_t now) const;
};
