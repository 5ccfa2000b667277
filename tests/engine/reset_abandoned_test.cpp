// A new session while contract bets are on the table: they lose, unless the table
// returns abandoned bets.

#include <gtest/gtest.h>

#include <tuple>

#include "engine/roll_cycle.h"
#include "tests/engine/line_table.h"

namespace {

// What, abandoned bets returned, a point on, the bankroll carried by the sessions log (else by
// buy-in mode 2), and the bankroll's change.
using AbandonCase = std::tuple<const char*, bool, bool, bool, Money>;

class ResetAbandonedTest : public ::testing::TestWithParam<AbandonCase> {};

// Ann: Pass Line 10, and a Come bet of 15 that travelled to the 9.
TEST_P(ResetAbandonedTest, ContractBetsAtANewSession) {
  const auto& [what, returnAbandoned, pointOn, carryBySessionLog, bankrollAfter] = GetParam();
  AnnTable t;
  t.g.Rules.ReturnAbandonedBets = returnAbandoned;
  t.PassLineThen(5);
  t.Bet(1, bet::Come, 15_usd);
  t.RollTotal(9);
  ASSERT_EQ(t.Amount(1, PointRow(BetFamily::ComeNumber, 9)), 15_usd);
  if (!pointOn) {
    t.RollTotal(5);  // the point is made: Pass Line comes down with its win
    t.Bet(1, bet::PassLine, 10_usd);
    ASSERT_EQ(t.g.Table.Point, 0);
  }
  const Money before = t.g.Bankroll[1];
  if (!carryBySessionLog) t.g.BankrollInitType[1] = 2;
  ResetTable(t.g, true, false, carryBySessionLog, 0);
  EXPECT_EQ(t.g.Bankroll[1] - before, bankrollAfter);
  EXPECT_EQ(t.Amount(1, bet::PassLine), Money{});
  EXPECT_EQ(t.Amount(1, PointRow(BetFamily::ComeNumber, 9)), Money{});
  EXPECT_EQ(t.g.OnTable[1], Money{});
  EXPECT_EQ(t.g.Table.Point, 0);
  // A charged bet is a loss in the statistics of the session just ended.
  const Money lineLoss = t.g.Stats.BetLossStats[kLastSessionScope + 1][bet::PassLine][1];
  const Money comeLoss = t.g.Stats.BetLossStats[kLastSessionScope + 1][PointRow(BetFamily::ComeNumber, 9)][1];
  EXPECT_EQ(lineLoss + comeLoss, -bankrollAfter);
}

INSTANTIATE_TEST_SUITE_P(
    ResetTable, ResetAbandonedTest,
    ::testing::Values(AbandonCase{"point on: both lose", false, true, false, -25_usd},
                      AbandonCase{"point on: both lose, carried by the log", false, true, true, -25_usd},
                      AbandonCase{"point on: returned", true, true, false, Money{}},
                      AbandonCase{"point on: returned, carried by the log", true, true, true, Money{}},
                      AbandonCase{"come-out: only the Come bet loses", false, false, false, -15_usd},
                      AbandonCase{"come-out: returned", true, false, false, Money{}}));

TEST(ResetTableAbandoned, WithoutHistoryTheLossIsCarriedIntoTheBuyIn) {
  AnnTable t;
  t.PassLineThen(5);
  ResetTable(t.g, false, false, true, 0);
  // The abandoned bet's loss is in the seat's buy-in carried to the new session.
  EXPECT_EQ(t.g.BankrollInitAmount[1], 990_usd);
  EXPECT_EQ(t.g.Bankroll[1], 990_usd);
}

}  // namespace
