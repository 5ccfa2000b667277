// Fuzz target: the frame decoder fed in pieces of every size, and each message it takes
// read every way. Built only with clang (cmake -DDICEHALL_FUZZ=ON).

#include <cstddef>
#include <cstdint>
#include <string>

#include "online/codes.h"
#include "online/frame.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  // The first byte sets the size of the pieces the stream arrives in, and the limit.
  const size_t piece = 1 + data[0] % 64;
  FrameDecoder decoder(data[0] & 0x80 ? 4096 : kMaxFrame);
  std::string message;
  for (size_t at = 1; at < size; at += piece) {
    decoder.Feed(std::string_view(reinterpret_cast<const char*>(data) + at, std::min(piece, size - at)));
    for (FrameResult r; (r = decoder.Next(message)) == FrameResult::Message;) {
      if (message.size() + kFramePrefix > kMaxFrame * 3) __builtin_trap();
      for (MessageWay way : {kHostToClient, kClientToHost, kPeerToLobby, kLobbyToPeer}) {
        ParsedMessage parsed;
        std::string fault;
        if (ReadMessage(message, way, parsed, fault) &&
            parsed.fields.size() != static_cast<size_t>(parsed.width * parsed.records))
          __builtin_trap();
      }
    }
  }
  return 0;
}
