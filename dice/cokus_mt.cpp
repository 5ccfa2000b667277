#include "dice/cokus_mt.h"

void SrandMT(CokusMt& g, uint32_t seed) {
  // The Cokus seeding forces the seed odd, so 2k and 2k + 1 give the same sequence.
  uint32_t x = seed | 1U;
  g.state.mt[0] = x;
  for (int i = 1; i < Mt19937::N; ++i) g.state.mt[i] = (x *= 69069U);
  g.state.mti = Mt19937::N;  // the first draw twists the whole state
}

uint32_t RandomMTInt32(CokusMt& g) {
  // Unseeded, the Cokus form starts from 4357, not from the reference's 5489.
  if (g.state.mti == Mt19937::N + 1) SrandMT(g, 4357U);
  return GenrandInt32(g.state);
}
