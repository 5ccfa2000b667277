// The congruential generator of #3, the shuffled generators Ran1 and Ran2, and both
// twisters against the standard library's MT19937, which shares their recurrence and
// tempering: the reference through its own seeding, the Cokus form through its 69069
// seeding fed in as a seed sequence.

#include "dice/ran.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <set>
#include <vector>

#include "dice/cokus_mt.h"
#include "dice/mt19937.h"
#include "tests/dice/crafted_state.h"

namespace {

// ---- RanLcg, worked by hand ---------------------------------------------------------

struct LcgCase {
  int32_t state, n, nextState, result;
};

class RngLcgTest : public ::testing::TestWithParam<LcgCase> {};

TEST_P(RngLcgTest, StepsTheStateAndScalesIt) {
  const LcgCase& c = GetParam();
  int32_t state = c.state;
  EXPECT_EQ(RanLcg(state, c.n), c.result);
  EXPECT_EQ(state, c.nextState);
}

INSTANTIATE_TEST_SUITE_P(RngByHand, RngLcgTest,
                         ::testing::Values(LcgCase{12345, 6, 591584, 5}, LcgCase{591584, 6, 692358, 6},
                                           LcgCase{0, 6, 150889, 2}, LcgCase{1, 100000, 152255, 21324},
                                           // the largest seed of #3 must not overflow
                                           LcgCase{999999, 100000, 219698, 30769}));

// ---- Ran1 and Ran2 alike --------------------------------------------------------------

template <class State, float (*Ran)(State&, int32_t&, const char*&)>
struct Shuffled {
  State s;
  const char* error = nullptr;
  float Draw(int32_t& idum) { return Ran(s, idum, error); }
};
using Ran1Source = Shuffled<Ran1State, Ran1>;
using Ran2Source = Shuffled<Ran2State, Ran2>;

template <class Source>
std::vector<float> Draws(Source& source, int32_t seed, int count) {
  int32_t idum = -seed;
  std::vector<float> out{source.Draw(idum)};
  EXPECT_EQ(idum, 1) << "the set-up leaves idum 1";
  for (int32_t one = 1; static_cast<int>(out.size()) < count;) out.push_back(source.Draw(one));
  return out;
}

template <class Source>
class RngShuffledTest : public ::testing::Test {};
using ShuffledSources = ::testing::Types<Ran1Source, Ran2Source>;
TYPED_TEST_SUITE(RngShuffledTest, ShuffledSources);

TYPED_TEST(RngShuffledTest, ANegativeSeedRestartsTheSequence) {
  TypeParam a, b;
  const std::vector<float> first = Draws(a, 2147483647, 500);
  Draws(b, 99, 321);  // b has run on elsewhere: the negative seed must forget it
  EXPECT_EQ(Draws(b, 2147483647, 500), first);
  EXPECT_NE(Draws(b, 2147483646, 500), first);
  for (float u : first) ASSERT_TRUE(u >= 0.0f && u <= 1.0f) << u;
  EXPECT_EQ(a.error, nullptr);
}

// Ran2 is a shuffle of #3's congruential stream: every result is a state of that stream
// already produced (scaled), and none comes twice.
TEST(RngRan2Test, DealsTheCongruentialStreamWithoutRepeats) {
  const int32_t seed = 4242;
  int32_t state = (150889 + seed) % 714025;
  std::set<int32_t> produced, dealt;
  for (int i = 0; i < 98; ++i) produced.insert((RanLcg(state, 1), state));
  Ran2Source r;
  for (float u : Draws(r, seed, 5000)) {
    const auto iy = static_cast<int32_t>(std::lround(u / 1.4005112e-6));
    ASSERT_TRUE(produced.count(iy)) << iy;
    ASSERT_TRUE(dealt.insert(iy).second) << iy;
    produced.insert((RanLcg(state, 1), state));
  }
}

// Ran1 against a model in plain 64-bit integers: the three streams, the table of 97
// entries (ix1 + ix2 × RM2) × RM1 and the pick by ix3.
TEST(RngRan1Test, FollowsTheThreeStreamsAndTheShuffle) {
  auto step = [](int64_t& x, int64_t a, int64_t c, int64_t m) { x = (a * x + c) % m; };
  auto entry = [](int64_t ix1, int64_t ix2) { return float((ix1 + ix2 * 7.4373773e-6) * 3.8580247e-6); };
  for (int64_t seed : {1, 99, 2147483647}) {  // the largest seed must not overflow
    int64_t ix1 = (54773 + seed) % 259200;
    step(ix1, 7141, 54773, 259200);
    int64_t ix2 = ix1 % 134456;
    step(ix1, 7141, 54773, 259200);
    int64_t ix3 = ix1 % 243000;
    std::array<float, 98> table{};
    for (int j = 1; j <= 97; ++j) {
      step(ix1, 7141, 54773, 259200);
      step(ix2, 8121, 28411, 134456);
      table[j] = entry(ix1, ix2);
    }
    Ran1Source r;
    const std::vector<float> got = Draws(r, static_cast<int32_t>(seed), 5000);
    for (size_t i = 0; i < got.size(); ++i) {
      step(ix1, 7141, 54773, 259200);
      step(ix2, 8121, 28411, 134456);
      step(ix3, 4561, 51349, 243000);
      const int64_t j = 97 * ix3 / 243000 + 1;
      ASSERT_EQ(got[i], table[j]) << "seed " << seed << ", draw " << i;
      table[j] = entry(ix1, ix2);
    }
  }
}

// The largest ix1 with a large ix2 makes a table entry of exactly 1.0, which Ran1
// returns as it stands.
TEST(RngRan1Test, ReturnsExactlyOneFromACraftedState) {
  Ran1Source r;
  CraftRan1One(r.s);
  int32_t one = 1;
  EXPECT_EQ(r.Draw(one), 1.0f);
  EXPECT_EQ(Ran1Entry(259199.0f, 134455.0f), 1.0f);
  EXPECT_LT(Ran1Entry(259199.0f, 0.0f), 1.0f);
}

TEST(RngRan1Test, AnIndexOutOfTheTableReportsAndKeepsTheTable) {
  Ran1Source r;
  Draws(r, 7, 1);
  r.s.ix3 = -100000;  // steps to a negative value: j below 1
  const auto table = r.s.r;
  int32_t one = 1;
  const float got = r.Draw(one);
  EXPECT_STREQ(r.error, "\nAn error occurred in function Ran1");
  EXPECT_EQ(got, static_cast<float>(std::floor(97.0 * r.s.ix3 / 243000.0)));
  EXPECT_LT(got, 0.0f);
  EXPECT_EQ(r.s.r, table);
}

TEST(RngRan2Test, AnIndexOutOfTheTableReportsAndReturnsZero) {
  Ran2Source r;
  Draws(r, 7, 1);
  r.s.iy = -5;
  const Ran2State before = r.s;
  int32_t one = 1;
  EXPECT_EQ(r.Draw(one), 0.0f);
  EXPECT_STREQ(r.error, "\nAn error occurred in function Ran2");
  EXPECT_EQ(r.s.ir, before.ir);
  EXPECT_EQ(r.s.idum, before.idum);
}

// ---- The twisters ------------------------------------------------------------------

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

// The twister's words and doubles are the standard engine's, seeded alike.
template <class Twister>
void ExpectStandardWords(Twister& mine, std::mt19937 standard, uint32_t (*word)(Twister&), double (*real)(Twister&)) {
  for (int i = 0; i < kWords; ++i) {
    const uint32_t expected = standard();
    Twister copy = mine;
    ASSERT_EQ(real(copy), expected / 4294967296.0) << "word " << i;
    ASSERT_EQ(word(mine), expected) << "word " << i;
  }
}

TEST(RngTwisterTest, BothMatchTheStandardEngineWordForWord) {
  for (uint32_t seed : kSeeds) {
    SCOPED_TRACE(seed);
    Mt19937 reference;
    InitGenrand(reference, seed);
    ExpectStandardWords(reference, std::mt19937(seed), GenrandInt32, GenrandReal2);
    CokusMt cokus;
    SrandMT(cokus, seed);
    CokusSeedSequence sequence{seed};
    ExpectStandardWords(cokus, std::mt19937(sequence), RandomMTInt32, RandomMT);
  }
}

}  // namespace
