// The point state machine as the line bets see it: every total from the come-out and
// from every point, under both bar numbers.

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "engine/handling.h"
#include "engine/roll_cycle.h"
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

// ---- The come-out roll ------------------------------------------------------------------

struct ComeOutCase {
  int bar;
  int total;
  int point;  // Point after the roll
  int passes, misses;
  int passLine, dontPass;
};

std::ostream& operator<<(std::ostream& os, const ComeOutCase& c) {
  return os << "bar " << c.bar << ", come-out " << c.total;
}

class PointStateComeOutTest : public ::testing::TestWithParam<ComeOutCase> {};

TEST_P(PointStateComeOutTest, MovesThePointAndSettlesTheLine) {
  const ComeOutCase& c = GetParam();
  LineBettors t(c.bar);
  t.RollTotal(c.total);
  const TableState& s = t.g.Table;
  EXPECT_EQ(s.Point, c.point);
  EXPECT_EQ(s.PassesInHand, c.passes);
  EXPECT_EQ(s.MissesInHand, c.misses);
  EXPECT_EQ(s.ComeOutRollsInHand, 1);
  EXPECT_EQ(s.LastPoint, 0);
  // The table's hand column and the shooter's: one come-out roll of this total, and the
  // natural or craps counted on the total itself.
  for (int col : {kHandScope, kHandScope + kShooterSeat, kSessionScope, kAllScope}) {
    EXPECT_EQ(t.g.Stats.HandDecisions[col][c.total][0], 1) << "column " << col;
    EXPECT_EQ(t.g.Stats.HandDecisions[col][c.total][1], c.passes) << "column " << col;
    EXPECT_EQ(t.g.Stats.HandDecisions[col][c.total][2], c.misses) << "column " << col;
  }
  EXPECT_EQ(t.Outcome(kShooterSeat, bet::PassLine), c.passLine);
  EXPECT_EQ(t.Outcome(kDarkSeat, bet::DontPass), c.dontPass);
  // No come-out roll ends the hand or moves the dice.
  EXPECT_EQ(s.Shooter, kShooterSeat);
  EXPECT_EQ(s.HandShooter, kShooterSeat);
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

struct PointCase {
  int bar;
  int point;
  int total;
};

std::ostream& operator<<(std::ostream& os, const PointCase& c) {
  return os << "bar " << c.bar << ", point " << c.point << ", total " << c.total;
}

std::vector<PointCase> AllPointRolls() {
  std::vector<PointCase> cases;
  for (int bar : {2, 12})
    for (int p : {4, 5, 6, 8, 9, 10})
      for (int total = 2; total <= 12; ++total) cases.push_back({bar, p, total});
  return cases;
}

class PointStatePointOnTest : public ::testing::TestWithParam<PointCase> {};

TEST_P(PointStatePointOnTest, OnlyThePointOrASevenDecides) {
  const PointCase& c = GetParam();
  LineBettors t(c.bar);
  t.RollTotal(c.point);
  ASSERT_EQ(t.g.Table.Point, c.point);
  t.RollTotal(c.total);
  const TableState& s = t.g.Table;
  const Statistics& st = t.g.Stats;

  if (c.total == c.point) {
    // A made point: a pass, the hand goes on with the same shooter.
    EXPECT_EQ(s.Point, 0);
    EXPECT_EQ(s.LastPoint, c.point);
    EXPECT_EQ(s.PassesInHand, 1);
    EXPECT_EQ(s.MissesInHand, 0);
    EXPECT_EQ(st.HandDecisions[kHandScope][c.point][1], 1);
    EXPECT_EQ(st.HandDecisions[kHandScope + kShooterSeat][c.point][1], 1);
    EXPECT_EQ(st.MostPassesInHand[kSessionScope], 1);
    EXPECT_EQ(st.RollCount[kHandScope][0], 2);
    EXPECT_EQ(t.Outcome(kShooterSeat, bet::PassLine), kWinsBet);
    EXPECT_EQ(t.Outcome(kDarkSeat, bet::DontPass), kLosesBet);
    EXPECT_EQ(s.Shooter, kShooterSeat);
  } else if (c.total == 7) {
    // A seven-out: a miss; the hand ends and its counters go to "Last hand".
    EXPECT_EQ(s.Point, 0);
    EXPECT_EQ(s.LastPoint, c.point);
    EXPECT_EQ(st.RollCount[kHandScope][0], 0);
    EXPECT_EQ(st.RollCount[kLastHandScope][0], 2);
    EXPECT_EQ(st.HandDecisions[kLastHandScope][c.point][2], 1);
    EXPECT_EQ(st.HandDecisions[kLastHandScope][c.point][1], 0);
    EXPECT_EQ(st.HandDecisions[kSessionScope][c.point][2], 1);
    EXPECT_EQ(st.MostMissesInHand[kSessionScope], 1);
    EXPECT_EQ(s.PassesInHand, 0);
    EXPECT_EQ(s.MissesInHand, 0);
    EXPECT_EQ(s.ComeOutRollsInHand, 0);
    EXPECT_EQ(t.Outcome(kShooterSeat, bet::PassLine), kLosesBet);
    EXPECT_EQ(t.Outcome(kDarkSeat, bet::DontPass), kWinsBet);
    EXPECT_EQ(s.LastHandShooter, kShooterSeat);
    EXPECT_EQ(s.Shooter, kDarkSeat);  // the dice went on to the next player
  } else {
    // Anything else, the bar totals included, decides nothing.
    EXPECT_EQ(s.Point, c.point);
    EXPECT_EQ(s.LastPoint, 0);
    EXPECT_EQ(s.PassesInHand, 0);
    EXPECT_EQ(s.MissesInHand, 0);
    EXPECT_EQ(s.ComeOutRollsInHand, 1);  // a roll with the point on isn't a come-out
    EXPECT_EQ(st.HandDecisions[kHandScope][c.total][0], 0);
    EXPECT_EQ(t.Outcome(kShooterSeat, bet::PassLine), kStands);
    EXPECT_EQ(t.Outcome(kDarkSeat, bet::DontPass), kStands);
    EXPECT_EQ(s.Shooter, kShooterSeat);
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
  const TableState& s = t.g.Table;
  const Statistics& st = t.g.Stats;
  EXPECT_EQ(s.PassesInHand, 3);
  EXPECT_EQ(s.ComeOutRollsInHand, 3);
  EXPECT_EQ(st.RollCount[kHandScope][0], 3);
  EXPECT_EQ(st.HandsShot[kSessionScope], 1);
  EXPECT_EQ(st.MostPassesInHand[kSessionScope + kShooterSeat], 3);
  EXPECT_EQ(st.HandDecisions[kHandScope][7][1], 2);
  EXPECT_EQ(st.HandDecisions[kHandScope][11][1], 1);
  EXPECT_EQ(s.Shooter, kShooterSeat);
  EXPECT_EQ(s.HandShooter, kShooterSeat);
  EXPECT_EQ(t.g.Bankroll[kShooterSeat], 1030_usd);
  EXPECT_EQ(t.g.Bankroll[kDarkSeat], 970_usd);

  // Point 5, made; point 9, seven-out: one hand of two passes after three naturals.
  t.RollTotal(5);
  t.RollTotal(5);
  t.RollTotal(9);
  t.RollTotal(7);
  EXPECT_EQ(st.HandsShot[kSessionScope], 1);
  EXPECT_EQ(st.RollCount[kLastHandScope][0], 7);
  EXPECT_EQ(st.HandDecisions[kLastHandScope][5][1], 1);
  EXPECT_EQ(st.HandDecisions[kLastHandScope][9][2], 1);
  EXPECT_EQ(st.MostPassesInHand[kSessionScope], 4);
  EXPECT_EQ(st.MostComeOutRollsInHand[kSessionScope], 5);
  EXPECT_EQ(s.LastPoint, 9);
  EXPECT_EQ(t.g.Bankroll[kShooterSeat], 1030_usd);  // +10 on the 5, -10 at the seven-out
}

}  // namespace
