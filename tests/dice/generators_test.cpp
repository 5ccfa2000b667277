// Dice and percentage-dice cells from each of the eight generators.

#include "dice/generators.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "dice/seeding.h"
#include "tests/dice/crafted_state.h"
#include "tests/test_support.h"

namespace {

void Seed(Game& g, int rng, int32_t seed) {
  ASSERT_EQ(SelectRng(g, rng), 0);
  g.Dice.pendingSeed = Money::Dollars(seed);
  ASSERT_TRUE(SeedRng(g, true));
}

bool SameSources(const DiceSources& a, const DiceSources& b) {
  return a.mt.mt == b.mt.mt && a.mt.mti == b.mt.mti && a.cokus.state.mt == b.cokus.state.mt &&
         a.cokus.state.mti == b.cokus.state.mti && a.ran1.r == b.ran1.r && a.ran1.ix1 == b.ran1.ix1 &&
         a.ran1.ix2 == b.ran1.ix2 && a.ran1.ix3 == b.ran1.ix3 && a.ran2.ir == b.ran2.ir && a.ran2.iy == b.ran2.iy &&
         a.ran2.idum == b.ran2.idum && a.lcgState == b.lcgState;
}

// ---- Which source each generator draws from ------------------------------------------

enum Source { kMt, kCokus, kLcg, kRan1, kRan2 };

struct SourceCase {
  int rng;
  int32_t sessionRolls;
  Source source;
};

// One draw of the source made a die (n 6) or a cell (n 100000) as the generators make
// them: the twisters and the Ran dice floor, the Ran cells round.
int32_t Expected(DiceSources& c, Source s, int32_t n) {
  if (s == kLcg) return RanLcg(c.lcgState, n);
  if (s == kMt || s == kCokus) return static_cast<int32_t>(std::floor((s == kMt ? DrawMt(c) : DrawCokus(c)) * n)) + 1;
  const float u = s == kRan1 ? DrawRan1(c) : DrawRan2(c);
  return static_cast<int32_t>(n == 6 ? std::floor(u * 6.0f) : std::nearbyint(u * 100000.0)) + 1;
}

class DiceSourceTest : public ::testing::TestWithParam<SourceCase> {};

// The dice and the cell come from the named source only: every other source is left
// exactly where it was.
TEST_P(DiceSourceTest, DrawsFromItsSourceAlone) {
  const SourceCase& c = GetParam();
  TestTable t;
  for (int rng : {3, 4, 5, 2, 1}) Seed(t.g, rng, 1000 + rng);
  ASSERT_EQ(SelectRng(t.g, c.rng), 0);
  DiceSources& d = t.g.Dice;
  for (int i = 0; i < 50; ++i) {
    DiceSources copy = d;
    const int e1 = Expected(copy, c.source, 6), e2 = Expected(copy, c.source, 6);
    const int32_t cell = Expected(copy, c.source, 100000);
    int d1 = 0, d2 = 0;
    GeneratorDice(d, c.sessionRolls, d1, d2);
    ASSERT_EQ(d1, e1);
    ASSERT_EQ(d2, e2);
    ASSERT_EQ(GeneratorCell(d, c.sessionRolls), cell);
    ASSERT_TRUE(SameSources(d, copy));
  }
}

INSTANTIATE_TEST_SUITE_P(DiceByGeneratorAndRollParity, DiceSourceTest,
                         ::testing::Values(SourceCase{1, 0, kMt}, SourceCase{2, 0, kCokus}, SourceCase{3, 0, kLcg},
                                           SourceCase{4, 0, kRan2}, SourceCase{5, 0, kRan1}, SourceCase{6, 0, kRan1},
                                           SourceCase{6, 1, kMt}, SourceCase{6, 1000, kRan1}, SourceCase{7, 0, kRan2},
                                           SourceCase{7, 1, kCokus}, SourceCase{7, 999, kCokus}));

// ---- #8: both dice from one call -------------------------------------------------------

TEST(DiceGeneratorTest, EightSplitsOneCallIntoBothDice) {
  TestTable t;
  Seed(t.g, 8, 31337);
  std::set<std::pair<int, int>> pairs;
  for (int i = 0; i < 2000; ++i) {
    DiceSources copy = t.g.Dice;
    const int x = static_cast<int>(std::floor(DrawMt(copy) * 36.0));
    int d1 = 0, d2 = 0;
    GeneratorDice(t.g.Dice, i, d1, d2);
    ASSERT_EQ(d2, x / 6 + 1);  // the high part is die 2
    ASSERT_EQ(d1, x % 6 + 1);
    ASSERT_TRUE(SameSources(t.g.Dice, copy)) << "one call per roll";
    pairs.insert({d1, d2});
  }
  EXPECT_EQ(pairs.size(), 36u);
}

// ---- The twisters' dice at the edges of each face ---------------------------------------

// The state word that the twister's tempering turns into `word`.
uint32_t Untempered(uint32_t word) {
  uint32_t y = word;
  y ^= y >> 18;
  y ^= (y << 15) & 0xefc60000U;
  uint32_t x = y;
  for (int i = 0; i < 5; ++i) x = y ^ ((x << 7) & 0x9d2c5680U);
  y = x;
  for (int i = 0; i < 3; ++i) x = y ^ (x >> 11);
  return x;
}

// A word just below and at each sixth of 2^32 makes the die the double w / 2^32 makes.
TEST(DiceGeneratorTest, TwisterWordsAtTheFaceEdgesMakeTheDiceOfTheirDouble) {
  std::vector<uint32_t> words = {0, 0xffffffffU};
  for (uint64_t k = 1; k < 6; ++k) {
    const auto edge = static_cast<uint32_t>((k * (uint64_t{1} << 32) + 5) / 6);  // the least word of face k + 1
    words.insert(words.end(), {edge - 1, edge});
  }
  for (int rng : {1, 2}) {
    TestTable t;
    Seed(t.g, rng, 5);
    Mt19937& state = rng == 1 ? t.g.Dice.mt : t.g.Dice.cokus.state;
    for (uint32_t w : words) {
      state.mt[0] = state.mt[1] = Untempered(w);
      state.mti = 0;
      int d1 = 0, d2 = 0;
      GeneratorDice(t.g.Dice, 0, d1, d2);
      const int expected = static_cast<int>(std::floor(w / 4294967296.0 * 6.0)) + 1;
      EXPECT_EQ(d1, expected) << "rng " << rng << " word " << w;
      EXPECT_EQ(d2, expected) << "rng " << rng << " word " << w;
    }
  }
}

// ---- Crafted results: 1.0 from Ran1, the top of Ran2, and ties ------------------------

TEST(DiceGeneratorTest, RanOneOfExactlyOneGivesADieOfSeven) {
  TestTable t;
  Seed(t.g, 5, 1);
  CraftRan1One(t.g.Dice.ran1);
  int d1 = 0, d2 = 0;
  GeneratorDice(t.g.Dice, 0, d1, d2);
  EXPECT_EQ(d1, 7);
}

enum Craft { kRan1One, kRan2Top, kRan1Tie1, kRan1Tie3 };

struct CellCase {
  int rng;
  int32_t sessionRolls;
  Craft craft;
  int32_t cell;
};

class DiceCellTest : public ::testing::TestWithParam<CellCase> {};

TEST_P(DiceCellTest, RoundingFormGoesToNearestEvenAndMayGive100001) {
  const CellCase& c = GetParam();
  TestTable t;
  Seed(t.g, c.rng, 1);
  DiceSources& d = t.g.Dice;
  switch (c.craft) {
    case kRan1One: CraftRan1One(d.ran1); break;
    case kRan2Top: CraftRan2Top(d.ran2); break;
    case kRan1Tie1: CraftRan1Constant(d.ran1, 1.0f / 64); break;  // 1562.5
    case kRan1Tie3: CraftRan1Constant(d.ran1, 3.0f / 64); break;  // 4687.5
  }
  EXPECT_EQ(GeneratorCell(d, c.sessionRolls), c.cell);
}

INSTANTIATE_TEST_SUITE_P(DiceCrafted, DiceCellTest,
                         ::testing::Values(CellCase{5, 0, kRan1One, 100001}, CellCase{6, 2, kRan1One, 100001},
                                           CellCase{4, 0, kRan2Top, 100001}, CellCase{7, 4, kRan2Top, 100001},
                                           CellCase{5, 0, kRan1Tie1, 1563}, CellCase{5, 0, kRan1Tie3, 4689}));

}  // namespace
