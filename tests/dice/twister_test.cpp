// Both twisters against the standard library's MT19937, which shares their recurrence
// and tempering: the reference through its own seeding, the Cokus form through its
// 69069 seeding fed in as a seed sequence.

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

#include "dice/cokus_mt.h"
#include "dice/mt19937.h"

namespace {

constexpr int kWords = 2000;  // past three reloads of the 624-word state
constexpr uint32_t kSeeds[] = {0U, 1U, 4356U, 4357U, 5489U, 19650218U, 2147483647U, 4294967295U};

// Fills the engine's state as the Cokus form seeds: x0 = seed | 1, x(i+1) = 69069 x(i).
struct CokusSeedSequence {
  using result_type = uint32_t;
  uint32_t seed;
  template <class It>
  void generate(It first, It last) {
    uint32_t x = seed | 1U;
    for (; first != last; ++first, x *= 69069U) *first = x;
  }
};

TEST(RngTwisterTest, ReferenceMatchesTheStandardEngineWordForWord) {
  for (uint32_t seed : kSeeds) {
    SCOPED_TRACE(seed);
    Mt19937 mine;
    InitGenrand(mine, seed);
    std::mt19937 standard(seed);
    for (int i = 0; i < kWords; ++i) {
      const uint32_t word = standard();
      Mt19937 copy = mine;
      ASSERT_EQ(GenrandReal2(copy), word / 4294967296.0) << "word " << i;
      ASSERT_EQ(GenrandInt32(mine), word) << "word " << i;
    }
  }
}

TEST(RngTwisterTest, CokusMatchesTheStandardEngineFromItsSeeding) {
  for (uint32_t seed : kSeeds) {
    SCOPED_TRACE(seed);
    CokusMt mine;
    SrandMT(mine, seed);
    CokusSeedSequence sequence{seed};
    std::mt19937 standard(sequence);
    for (int i = 0; i < kWords; ++i) {
      const uint32_t word = standard();
      CokusMt copy = mine;
      ASSERT_EQ(RandomMT(copy), word / 4294967296.0) << "word " << i;
      ASSERT_EQ(RandomMTInt32(mine), word) << "word " << i;
    }
  }
}

}  // namespace
