#include "dice/mt19937.h"

namespace {
constexpr int M = 397;
constexpr uint32_t kMatrixA = 0x9908b0dfU, kUpper = 0x80000000U, kLower = 0x7fffffffU;
}  // namespace

void InitGenrand(Mt19937& g, uint32_t seed) {
  g.mt[0] = seed;
  for (int i = 1; i < Mt19937::N; ++i)
    g.mt[i] = 1812433253U * (g.mt[i - 1] ^ (g.mt[i - 1] >> 30)) + static_cast<uint32_t>(i);
  g.mti = Mt19937::N;
}

void TwistGenrand(Mt19937& g) {
  constexpr int N = Mt19937::N;
  // The reference seeds with 5489 when nothing seeded it.
  if (g.mti == N + 1) InitGenrand(g, 5489U);
  int k = 0;
  for (; k < N - M; ++k) {
    uint32_t y = (g.mt[k] & kUpper) | (g.mt[k + 1] & kLower);
    g.mt[k] = g.mt[k + M] ^ (y >> 1) ^ ((y & 1U) ? kMatrixA : 0U);
  }
  for (; k < N - 1; ++k) {
    uint32_t y = (g.mt[k] & kUpper) | (g.mt[k + 1] & kLower);
    g.mt[k] = g.mt[k + (M - N)] ^ (y >> 1) ^ ((y & 1U) ? kMatrixA : 0U);
  }
  uint32_t y = (g.mt[N - 1] & kUpper) | (g.mt[0] & kLower);
  g.mt[N - 1] = g.mt[M - 1] ^ (y >> 1) ^ ((y & 1U) ? kMatrixA : 0U);
  g.mti = 0;
}
