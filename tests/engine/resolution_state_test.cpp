// The table's own counters that the collected and hand bets read: the Hot Roller bits by
// dice pair, the numbers collected, the four-roll and Repeater counts, and the bases a
// Come bet carries onto a number that already holds one.

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "engine/handling.h"
#include "tests/engine/line_table.h"

namespace {

constexpr int kSeat = 1;
constexpr int kRepeater5 = bet::Repeater2 + 3;

struct Fixture : LineTable {
  Fixture() {
    g.Rules.BetNeededToShoot = 0;
    Seat(kSeat, "Ann", 10000_usd);
    g.AutoHandleWin[kSeat] = g.AutoHandleLose[kSeat] = kTakeDown;
  }
};

// ---- Hot Roller: the bit of each pair, in either order, and the numbers complete --------

using PairBit = std::tuple<int, int, int>;  // low die, high die, bit

class ResolutionHotRollerBitTest : public ::testing::TestWithParam<PairBit> {};

TEST_P(ResolutionHotRollerBitTest, BitOfThePair) {
  const auto& [lo, hi, bit] = GetParam();
  for (bool swapped : {false, true}) {
    Fixture t;
    if (swapped) t.Roll(hi, lo);
    else t.Roll(lo, hi);
    EXPECT_EQ(t.g.Table.HotRollerMask, bit) << (swapped ? "high die first" : "low die first");
  }
}

INSTANTIATE_TEST_SUITE_P(Pairs, ResolutionHotRollerBitTest,
                         ::testing::Values(PairBit{1, 3, 1}, PairBit{2, 2, 2}, PairBit{1, 4, 4}, PairBit{2, 3, 8},
                                           PairBit{1, 5, 16}, PairBit{2, 4, 32}, PairBit{3, 3, 64}, PairBit{2, 6, 128},
                                           PairBit{3, 5, 256}, PairBit{4, 4, 512}, PairBit{3, 6, 1024},
                                           PairBit{4, 5, 2048}, PairBit{4, 6, 4096}, PairBit{5, 5, 8192},
                                           PairBit{1, 1, 0}, PairBit{1, 2, 0}, PairBit{1, 6, 0}, PairBit{2, 5, 0},
                                           PairBit{3, 4, 0}, PairBit{5, 6, 0}, PairBit{6, 6, 0}));

// Every way of the 4, 5, 6, 8, 9 and 10, one roll each.
const std::vector<std::pair<int, int>> kEveryWayOfTheNumbers = {{1, 3}, {2, 2}, {1, 4}, {2, 3}, {1, 5}, {2, 4}, {3, 3},
                                                                {2, 6}, {3, 5}, {4, 4}, {3, 6}, {4, 5}, {4, 6}, {5, 5}};
// What, the dice (no 7), and the numbers complete.
using CompleteCase = std::tuple<const char*, std::vector<std::pair<int, int>>, int>;

class ResolutionHotRollerCountTest : public ::testing::TestWithParam<CompleteCase> {};

TEST_P(ResolutionHotRollerCountTest, NumbersComplete) {
  const auto& [what, dice, complete] = GetParam();
  Fixture t;
  for (auto [d1, d2] : dice) t.Roll(d1, d2);
  EXPECT_EQ(t.g.Table.HotRollerCount, complete) << what;
}

INSTANTIATE_TEST_SUITE_P(
    Counts, ResolutionHotRollerCountTest,
    ::testing::Values(CompleteCase{"one way of the 10", {{4, 6}}, 0}, CompleteCase{"the 4", {{1, 3}, {2, 2}}, 1},
                      CompleteCase{"a way short of the 5, 6 and 8", {{1, 4}, {1, 5}, {4, 2}, {2, 6}, {3, 5}}, 0},
                      CompleteCase{"the 8, 9 and 10", {{2, 6}, {3, 5}, {4, 4}, {3, 6}, {4, 5}, {6, 4}, {5, 5}}, 3},
                      CompleteCase{"all six", kEveryWayOfTheNumbers, 6}));

// ---- Counters kept only while somebody holds the bet ------------------------------------

// What, the bet held at $10 through the rolls (0 for none), the dice, and the numbers
// marked, the four-roll count, a Repeater total and its count.
using CountCase = std::tuple<const char*, int, std::vector<std::pair<int, int>>, int, int, int, int>;

class ResolutionCountTest : public ::testing::TestWithParam<CountCase> {};

TEST_P(ResolutionCountTest, AfterTheRolls) {
  const auto& [what, betId, dice, numbersMask, fourRolls, repeaterTotal, repeaterCount] = GetParam();
  Fixture t;
  if (betId) {
    ASSERT_EQ(t.Bet(kSeat, betId, 10_usd), 10_usd);
  }
  for (auto [d1, d2] : dice) t.Roll(d1, d2);
  EXPECT_EQ(t.g.Table.AllNumbersMask, numbersMask);
  EXPECT_EQ(t.g.Table.FourRollCount, fourRolls);
  EXPECT_EQ(t.g.Table.RepeaterCount[repeaterTotal], repeaterCount);
}

INSTANTIATE_TEST_SUITE_P(
    Counts, ResolutionCountTest,
    ::testing::Values(CountCase{"nothing held", 0, {{1, 1}, {6, 6}, {1, 1}}, 0, 0, 2, 0},
                      CountCase{"all small marks small", bet::AllSmall, {{1, 1}, {1, 2}, {6, 6}}, 4 | 8, 0, 0, 0},
                      CountCase{"all tall marks tall", bet::AllTall, {{1, 1}, {6, 6}, {5, 6}}, 4096 | 2048, 0, 0, 0},
                      CountCase{"make all marks both", bet::MakeAll, {{1, 1}, {6, 6}, {3, 5}}, 4 | 4096 | 256, 0, 0, 0},
                      CountCase{"a 7 clears the marks", bet::MakeAll, {{1, 1}, {6, 6}, {3, 4}}, 0, 0, 0, 0},
                      CountCase{"four rolls counts", bet::FourRollsNo7, {{1, 1}, {6, 6}, {1, 3}}, 0, 3, 0, 0},
                      CountCase{
                          "four rolls back to 0 on 4", bet::FourRollsNo7, {{1, 1}, {6, 6}, {1, 3}, {1, 4}}, 0, 0, 0, 0},
                      CountCase{"repeater counts its total", kRepeater5, {{1, 4}, {2, 3}, {1, 3}}, 0, 0, 5, 2},
                      CountCase{"repeater not other totals", kRepeater5, {{1, 4}, {2, 4}}, 0, 0, 6, 0},
                      CountCase{"repeater count cleared on 7", kRepeater5, {{1, 4}, {2, 3}, {3, 4}}, 0, 0, 5, 0}));

// A Repeater's count goes back to 0 when its condition is met, even with nobody on it.
TEST(ResolutionRepeater, CountClearedWhenMetWithNobodyOnIt) {
  Fixture t;
  t.g.Table.RepeaterCount[2] = 2;
  t.g.Table.RepeaterCount[12] = 1;
  t.Roll(1, 1);
  EXPECT_EQ(t.g.Table.RepeaterCount[2], 0);
  EXPECT_EQ(t.g.Table.RepeaterCount[12], 1);
}

// A Come bet moved onto a number that holds one is summed; the base and come base are
// the moved amount alone.
TEST(ResolutionMove, ComeSummedOntoItsNumber) {
  Fixture t;
  Game& g = t.g;
  g.AutoHandleWin[kSeat] = kSameBet;  // the Come 5 stays after it wins
  const int come5 = PointRow(BetFamily::ComeNumber, 5);
  t.Roll(1, 3);
  ASSERT_EQ(t.Bet(kSeat, bet::Come, 10_usd), 10_usd);
  t.Roll(1, 4);
  ASSERT_EQ(t.Amount(kSeat, come5), 10_usd);
  EXPECT_EQ(g.ContractBase[kSeat][come5], 10_usd);
  EXPECT_EQ(g.ComeBase[kSeat][1], 10_usd);
  ASSERT_EQ(t.Bet(kSeat, bet::Come, 15_usd), 15_usd);
  t.Roll(2, 3);
  EXPECT_EQ(g.Bankroll[kSeat], 10010_usd);
  EXPECT_EQ(t.Amount(kSeat, come5), 25_usd);
  EXPECT_EQ(t.Amount(kSeat, bet::Come), Money{});
  EXPECT_EQ(g.ContractBase[kSeat][come5], 15_usd);
  EXPECT_EQ(g.ContractBase[kSeat][bet::Come], Money{});
  EXPECT_EQ(g.ComeBase[kSeat][1], 15_usd);
}

// Money is handled from the far ends of the rail inward: 4L, 4R, 3L, 3R, 2L, 2R, 1L, 1R.
TEST(ResolutionSeatOrder, FarEndsFirst) {
  LineTable t;
  t.g.Rules.BetNeededToShoot = 0;
  for (int s = 1; s <= 8; ++s) {
    t.Seat(s, "P" + std::to_string(s), 1000_usd);
    ASSERT_EQ(t.Bet(s, bet::Field, 10_usd), 10_usd);
  }
  t.Roll(1, 1);  // every seat wins, and each is asked what to do with its bet
  std::string order;
  for (const SettleRequest& r : t.ui.settles) order += r.Labels.at(0).substr(0, 2) + " ";
  EXPECT_EQ(order, "P1 P8 P2 P7 P3 P6 P4 P5 ");
  for (int s = 1; s <= 8; ++s) EXPECT_EQ(t.g.Bankroll[s], 1020_usd) << s;
}

}  // namespace
