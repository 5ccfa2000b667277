#pragma once
// The reference Mersenne Twister MT19937: init_genrand seeds it, genrand_real2 gives a
// double on [0, 1) with 32-bit resolution. Its state lives in the game, so two tables
// never share a sequence.

#include <array>
#include <cstdint>

struct Mt19937 {
  static constexpr int N = 624;
  std::array<uint32_t, N> mt{};
  int mti = N + 1;  // N + 1: not seeded yet
};

void InitGenrand(Mt19937& g, uint32_t seed);
// Twists the whole state (seeding it first when nothing did): the draw after N draws.
void TwistGenrand(Mt19937& g);
// Inline: a roll draws twice, and only one draw in N twists.
inline uint32_t GenrandInt32(Mt19937& g) {
  if (g.mti >= Mt19937::N) TwistGenrand(g);
  uint32_t y = g.mt[static_cast<unsigned>(g.mti++)];
  y ^= (y >> 11);
  y ^= (y << 7) & 0x9d2c5680U;
  y ^= (y << 15) & 0xefc60000U;
  y ^= (y >> 18);
  return y;
}
inline double GenrandReal2(Mt19937& g) { return GenrandInt32(g) * (1.0 / 4294967296.0); }
