// What a Pass Line decision pays: the rows it reads and the rounding of the result.

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "engine/handling.h"
#include "engine/resolution.h"
#include "tests/engine/line_table.h"

namespace {

PayoffRow RowOf(int64_t x, int64_t y) {
  PayoffRow r;
  r.PayoffPay = Money::Dollars(x);
  r.PayoffToFor = Money::Dollars(-1);
  r.PayoffFor = Money::Dollars(y);
  return r;
}

Money Cents(int64_t c) { return Money::FromRaw(c * 100); }

// ---- ComputePayoff over odd rows --------------------------------------------------------

struct PayoffCase {
  const char* what;
  int priorPoint;
  BetResult result;
  Money amount;
  int64_t lineX, lineY;  // the Pass Line's own row
  int64_t comeX, comeY;  // the row of Come on the prior point (if any)
  Money unit;            // the smallest check
  bool pennies;
  Money expected;
};

std::ostream& operator<<(std::ostream& os, const PayoffCase& c) { return os << c.what; }

class PassLinePayoffTest : public ::testing::TestWithParam<PayoffCase> {};

TEST_P(PassLinePayoffTest, RowAndRounding) {
  const PayoffCase& c = GetParam();
  LineTable t;
  RuleSet& r = t.g.Rules;
  r.CheckDenom[1] = c.unit;
  r.AllowPennyPayoffs = c.pennies;
  r.BetPayoff[bet::PassLine] = RowOf(c.lineX, c.lineY);
  // Every Come row gets a row that would be wrong, then the point's own row.
  for (int b = bet::Come4; b <= bet::Come10; ++b) r.BetPayoff[b] = RowOf(5, 1);
  if (c.priorPoint != 0) r.BetPayoff[PointRow(BetFamily::ComeNumber, c.priorPoint)] = RowOf(c.comeX, c.comeY);
  t.g.Table.PriorPoint = c.priorPoint;
  EXPECT_EQ(ComputePayoff(t.g, 1, bet::PassLine, c.result, c.amount).payoff, c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    PassLine, PassLinePayoffTest,
    ::testing::Values(
        PayoffCase{"even money natural", 0, BetResult::Win, 10_usd, 1, 1, 0, 0, 1_usd, false, 10_usd},
        PayoffCase{"3 to 2 on 7 floors to the dollar", 0, BetResult::Win, 7_usd, 3, 2, 0, 0, 1_usd, false, 10_usd},
        PayoffCase{"3 to 2 on 7 in pennies", 0, BetResult::Win, 7_usd, 3, 2, 0, 0, 1_usd, true, Cents(1050)},
        PayoffCase{"3 to 2 on 9 floors to the $5 check", 0, BetResult::Win, 9_usd, 3, 2, 0, 0, 5_usd, false, 10_usd},
        PayoffCase{"made 6 reads Come 6 at 7 to 6", 6, BetResult::Win, 10_usd, 1, 1, 7, 6, 1_usd, false, 11_usd},
        PayoffCase{"made 6 at 7 to 6 in pennies floors", 6, BetResult::Win, 10_usd, 1, 1, 7, 6, 1_usd, true,
                   Cents(1166)},
        PayoffCase{"made 4 ignores its own 3 to 1 row", 4, BetResult::Win, 10_usd, 3, 1, 1, 1, 1_usd, false, 10_usd},
        PayoffCase{"made 10 reads Come 10 at 2 to 1", 10, BetResult::Win, 25_usd, 1, 1, 2, 1, 5_usd, false, 50_usd},
        PayoffCase{"negative row floors away from zero", 0, BetResult::Win, 7_usd, -3, 2, 0, 0, 1_usd, false, -11_usd},
        PayoffCase{"negative row in pennies", 0, BetResult::Win, 7_usd, -3, 2, 0, 0, 1_usd, true, Cents(-1050)},
        PayoffCase{"negative row to the $5 check", 0, BetResult::Win, 7_usd, -3, 2, 0, 0, 5_usd, false, -15_usd},
        PayoffCase{"a loss takes the amount", 0, BetResult::Lose, 10_usd, 3, 2, 0, 0, 1_usd, false, -10_usd},
        PayoffCase{"a seven-out takes the amount", 8, BetResult::Lose, 25_usd, 1, 1, 7, 6, 5_usd, false, -25_usd}));

// ---- Payoffs through the roll ------------------------------------------------------------

struct RollPayoffCase {
  const char* what;
  std::vector<int> totals;
  Money net;  // the shooter's bankroll change over the rolls
};

std::ostream& operator<<(std::ostream& os, const RollPayoffCase& c) { return os << c.what; }

class PassLineRollPayoffTest : public ::testing::TestWithParam<RollPayoffCase> {};

// Pass Line $12 with the house rows changed, so that each decision shows which row paid:
// the line's own row 2 to 1 on the come-out; Come 6 at 7 to 6; Come 8 at 3 to 1.
TEST_P(PassLineRollPayoffTest, NetOverTheRolls) {
  const RollPayoffCase& c = GetParam();
  LineTable t;
  t.g.Rules.BetPayoff[bet::PassLine] = RowOf(2, 1);
  t.g.Rules.BetPayoff[PointRow(BetFamily::ComeNumber, 6)] = RowOf(7, 6);
  t.g.Rules.BetPayoff[PointRow(BetFamily::ComeNumber, 8)] = RowOf(3, 1);
  t.Seat(1, "Ann", 1000_usd);
  t.g.AutoHandleWin[1] = t.g.AutoHandleLose[1] = kTakeDown;
  t.Bet(1, bet::PassLine, 12_usd);
  for (int total : c.totals) t.RollTotal(total);
  EXPECT_EQ(t.g.Bankroll[1] - 1000_usd, c.net);
  EXPECT_EQ(t.g.Bankroll[kSessionScope + 1] - 1000_usd, c.net);
  EXPECT_EQ(t.g.Bankroll[kAllScope + 1] - 1000_usd, c.net);
  EXPECT_EQ(t.Amount(1, bet::PassLine), Money{});
  EXPECT_EQ(t.g.OnTable[1], Money{});
}

INSTANTIATE_TEST_SUITE_P(
    PassLine, PassLineRollPayoffTest,
    ::testing::Values(RollPayoffCase{"come-out 7", {7}, 24_usd}, RollPayoffCase{"come-out 11", {11}, 24_usd},
                      RollPayoffCase{"come-out 2", {2}, -12_usd}, RollPayoffCase{"come-out 3", {3}, -12_usd},
                      RollPayoffCase{"come-out 12", {12}, -12_usd}, RollPayoffCase{"6 made", {6, 5, 6}, 14_usd},
                      RollPayoffCase{"8 made", {8, 11, 2, 8}, 36_usd},
                      RollPayoffCase{"seven-out on 6", {6, 7}, -12_usd},
                      RollPayoffCase{"seven-out on 8", {8, 12, 7}, -12_usd}));

}  // namespace
