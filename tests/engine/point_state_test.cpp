// The point state machine as the line bets see it: every total from the come-out and
// from every point, under both bar numbers.

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "engine/handling.h"
#include "tests/engine/line_table.h"

namespace {

constexpr int kShooterSeat = 4;  // Pass Line
constexpr int kDarkSeat = 6;     // Don't Pass
constexpr int kWinsBet = 1, kStands = 0, kLosesBet = -1;

// Both players take their bets down after a decision, so what stands keeps its amount.
struct LineBettors : LineTable {
  LineBettors(int bar) {
    g.Rules.BarNumber = bar;
    Seat(kShooterSeat, "Ann", 1000_usd);
    Seat(kDarkSeat, "Bob", 1000_usd);
    for (int s : {kShooterSeat, kDarkSeat}) g.AutoHandleWin[s] = g.AutoHandleLose[s] = kTakeDown;
    Bet(kShooterSeat, bet::PassLine, 10_usd);
    Bet(kDarkSeat, bet::DontPass, 10_usd);
  }
  // +1 the bet won 10, -1 it lost 10, 0 it still stands untouched.
  int Outcome(int seat, int betId) {
    const Money delta = g.Bankroll[seat] - 1000_usd;
    if (delta == 10_usd && Amount(seat, betId).raw == 0) return kWinsBet;
    if (delta == -10_usd && Amount(seat, betId).raw == 0) return kLosesBet;
    if (delta.raw == 0 && Amount(seat, betId) == 10_usd) return kStands;
    return 99;  // anything else is wrong
  }
};

using Ints = std::vector<int>;

// Point, last point, passes, misses and come-out rolls of the hand, shooter and hand's shooter.
Ints State(const LineBettors& t) {
  const TableState& s = t.g.Table;
  return {s.Point, s.LastPoint, s.PassesInHand, s.MissesInHand, s.ComeOutRollsInHand, s.Shooter, s.HandShooter};
}

// ---- The come-out roll ------------------------------------------------------------------

// Bar, the come-out total, the point after it, passes and misses, the Pass Line's and the
// Don't Pass's outcome.
using ComeOutCase = std::tuple<int, int, int, int, int, int, int>;

class PointStateComeOutTest : public ::testing::TestWithParam<ComeOutCase> {};

TEST_P(PointStateComeOutTest, MovesThePointAndSettlesTheLine) {
  const auto& [bar, total, point, passes, misses, passLine, dontPass] = GetParam();
  LineBettors t(bar);
  t.RollTotal(total);
  // No come-out roll ends the hand or moves the dice.
  EXPECT_EQ(State(t), (Ints{point, 0, passes, misses, 1, kShooterSeat, kShooterSeat}));
  // The table's hand column and the shooter's: one come-out roll of this total, and the
  // natural or craps counted on the total itself.
  for (int col : {kHandScope, kHandScope + kShooterSeat, kSessionScope, kAllScope})
    EXPECT_EQ((Ints{t.g.Stats.HandDecisions[col][total].begin(), t.g.Stats.HandDecisions[col][total].end()}),
              (Ints{1, passes, misses}))
        << "column " << col;
  EXPECT_EQ((Ints{t.Outcome(kShooterSeat, bet::PassLine), t.Outcome(kDarkSeat, bet::DontPass)}),
            (Ints{passLine, dontPass}));
  EXPECT_EQ(t.g.Stats.RollCount[kHandScope][0], 1);
}

INSTANTIATE_TEST_SUITE_P(
    PointState, PointStateComeOutTest,
    ::testing::Values(
        // Bar 12: a 2 wins for the dark side, a 12 is barred.
        ComeOutCase{12, 2, 0, 0, 1, kLosesBet, kWinsBet}, ComeOutCase{12, 3, 0, 0, 1, kLosesBet, kWinsBet},
        ComeOutCase{12, 4, 4, 0, 0, kStands, kStands}, ComeOutCase{12, 5, 5, 0, 0, kStands, kStands},
        ComeOutCase{12, 6, 6, 0, 0, kStands, kStands}, ComeOutCase{12, 7, 0, 1, 0, kWinsBet, kLosesBet},
        ComeOutCase{12, 8, 8, 0, 0, kStands, kStands}, ComeOutCase{12, 9, 9, 0, 0, kStands, kStands},
        ComeOutCase{12, 10, 10, 0, 0, kStands, kStands}, ComeOutCase{12, 11, 0, 1, 0, kWinsBet, kLosesBet},
        ComeOutCase{12, 12, 0, 0, 1, kLosesBet, kStands},
        // Bar 2: the reverse.
        ComeOutCase{2, 2, 0, 0, 1, kLosesBet, kStands}, ComeOutCase{2, 3, 0, 0, 1, kLosesBet, kWinsBet},
        ComeOutCase{2, 4, 4, 0, 0, kStands, kStands}, ComeOutCase{2, 5, 5, 0, 0, kStands, kStands},
        ComeOutCase{2, 6, 6, 0, 0, kStands, kStands}, ComeOutCase{2, 7, 0, 1, 0, kWinsBet, kLosesBet},
        ComeOutCase{2, 8, 8, 0, 0, kStands, kStands}, ComeOutCase{2, 9, 9, 0, 0, kStands, kStands},
        ComeOutCase{2, 10, 10, 0, 0, kStands, kStands}, ComeOutCase{2, 11, 0, 1, 0, kWinsBet, kLosesBet},
        ComeOutCase{2, 12, 0, 0, 1, kLosesBet, kWinsBet}));

// ---- Every total with a point on --------------------------------------------------------

using PointCase = std::tuple<int, int, int>;  // bar, point, total

std::vector<PointCase> AllPointRolls() {
  std::vector<PointCase> cases;
  for (int bar : {2, 12})
    for (int p : {4, 5, 6, 8, 9, 10})
      for (int total = 2; total <= 12; ++total) cases.push_back({bar, p, total});
  return cases;
}

class PointStatePointOnTest : public ::testing::TestWithParam<PointCase> {};

TEST_P(PointStatePointOnTest, OnlyThePointOrASevenDecides) {
  const auto& [bar, point, total] = GetParam();
  LineBettors t(bar);
  t.RollTotal(point);
  ASSERT_EQ(t.g.Table.Point, point);
  t.RollTotal(total);
  const Statistics& st = t.g.Stats;
  const Ints outcomes = {t.Outcome(kShooterSeat, bet::PassLine), t.Outcome(kDarkSeat, bet::DontPass)};

  if (total == point) {
    // A made point: a pass, the hand goes on with the same shooter.
    EXPECT_EQ(State(t), (Ints{0, point, 1, 0, 1, kShooterSeat, kShooterSeat}));
    EXPECT_EQ((Ints{st.HandDecisions[kHandScope][point][1], st.HandDecisions[kHandScope + kShooterSeat][point][1],
                    st.MostPassesInHand[kSessionScope], st.RollCount[kHandScope][0]}),
              (Ints{1, 1, 1, 2}));
    EXPECT_EQ(outcomes, (Ints{kWinsBet, kLosesBet}));
  } else if (total == 7) {
    // A seven-out: a miss; the hand ends, its counters go to "Last hand" and the dice
    // go on to the next player.
    EXPECT_EQ(State(t), (Ints{0, point, 0, 0, 0, kDarkSeat, kDarkSeat}));
    EXPECT_EQ(
        (Ints{st.RollCount[kHandScope][0], st.RollCount[kLastHandScope][0], st.HandDecisions[kLastHandScope][point][2],
              st.HandDecisions[kLastHandScope][point][1], st.HandDecisions[kSessionScope][point][2],
              st.MostMissesInHand[kSessionScope], t.g.Table.LastHandShooter}),
        (Ints{0, 2, 1, 0, 1, 1, kShooterSeat}));
    EXPECT_EQ(outcomes, (Ints{kLosesBet, kWinsBet}));
  } else {
    // Anything else, the bar totals included, decides nothing; a roll with the point on
    // isn't a come-out.
    EXPECT_EQ(State(t), (Ints{point, 0, 0, 0, 1, kShooterSeat, kShooterSeat}));
    EXPECT_EQ(st.HandDecisions[kHandScope][total][0], 0);
    EXPECT_EQ(outcomes, (Ints{kStands, kStands}));
  }
}

INSTANTIATE_TEST_SUITE_P(PointState, PointStatePointOnTest, ::testing::ValuesIn(AllPointRolls()));

// ---- A hand of several decisions ---------------------------------------------------------

TEST(PointStateHand, ComeOutSevensArePassesWithinOneHand) {
  LineBettors t(12);
  for (int s : {kShooterSeat, kDarkSeat}) t.g.AutoHandleWin[s] = t.g.AutoHandleLose[s] = kSameBet;
  t.RollTotal(7);
  t.RollTotal(7);
  t.RollTotal(11);
  const Statistics& st = t.g.Stats;
  EXPECT_EQ(State(t), (Ints{0, 0, 3, 0, 3, kShooterSeat, kShooterSeat}));
  EXPECT_EQ(
      (Ints{st.RollCount[kHandScope][0], st.HandsShot[kSessionScope], st.MostPassesInHand[kSessionScope + kShooterSeat],
            st.HandDecisions[kHandScope][7][1], st.HandDecisions[kHandScope][11][1]}),
      (Ints{3, 1, 3, 2, 1}));
  EXPECT_EQ(t.g.Bankroll[kShooterSeat], 1030_usd);
  EXPECT_EQ(t.g.Bankroll[kDarkSeat], 970_usd);

  // Point 5, made; point 9, seven-out: one hand of two passes after three naturals.
  for (int total : {5, 5, 9, 7}) t.RollTotal(total);
  EXPECT_EQ((Ints{st.HandsShot[kSessionScope], st.RollCount[kLastHandScope][0], st.HandDecisions[kLastHandScope][5][1],
                  st.HandDecisions[kLastHandScope][9][2], st.MostPassesInHand[kSessionScope],
                  st.MostComeOutRollsInHand[kSessionScope], t.g.Table.LastPoint}),
            (Ints{1, 7, 1, 1, 4, 5, 9}));
  EXPECT_EQ(t.g.Bankroll[kShooterSeat], 1030_usd);  // +10 on the 5, -10 at the seven-out
}

}  // namespace
