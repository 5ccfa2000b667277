#pragma once
// Files of fixed layout: 256-byte records holding little-endian integers, whatever the
// machine's own byte order.

#include <cstdint>

constexpr int kFixedRecordBytes = 256;

inline void PutInt32(unsigned char* at, int32_t v) {
  const auto u = static_cast<uint32_t>(v);
  for (int b = 0; b < 4; ++b) at[b] = static_cast<unsigned char>(u >> (8 * b));
}

inline int32_t GetInt32(const unsigned char* at) {
  uint32_t u = 0;
  for (int b = 0; b < 4; ++b) u |= static_cast<uint32_t>(at[b]) << (8 * b);
  return static_cast<int32_t>(u);
}

inline void PutInt64(unsigned char* at, int64_t v) {
  const auto u = static_cast<uint64_t>(v);
  for (int b = 0; b < 8; ++b) at[b] = static_cast<unsigned char>(u >> (8 * b));
}

inline int64_t GetInt64(const unsigned char* at) {
  uint64_t u = 0;
  for (int b = 0; b < 8; ++b) u |= static_cast<uint64_t>(at[b]) << (8 * b);
  return static_cast<int64_t>(u);
}
