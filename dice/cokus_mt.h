#pragma once
// The Cokus formulation of MT19937: the same twist and tempering as the reference, but
// seeded by the older 69069-multiplier recurrence, so the same seed gives another
// sequence. srandMT seeds it, randomMT gives a double on [0, 1) with 32-bit resolution.

#include <cstdint>

#include "dice/mt19937.h"

struct CokusMt {
  Mt19937 state;  // mti N + 1 until seeded
};

void SrandMT(CokusMt& g, uint32_t seed);
uint32_t RandomMTInt32(CokusMt& g);
inline double RandomMT(CokusMt& g) { return RandomMTInt32(g) * (1.0 / 4294967296.0); }
