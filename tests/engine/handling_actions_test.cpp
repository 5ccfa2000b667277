// What each automatic action does to a won or lost stake, a Place 6 of $12 paid 7 for 6.

#include <gtest/gtest.h>

#include <tuple>

#include "engine/handling.h"
#include "tests/engine/line_table.h"

namespace {

// What, a win, the action, its rule, and the dollars on the Place 6 after the roll.
using ActionCase = std::tuple<const char*, bool, int, SettleRule, int>;

class HandlingActions : public testing::TestWithParam<ActionCase> {};

TEST_P(HandlingActions, LeaveTheStakeAsTheActionSays) {
  const auto& [what, win, action, rule, expected] = GetParam();
  AnnTable t;
  t.g.Rules.BetNeededToShoot = 0;
  t.RollTotal(5);  // a point, so that the Place bet works
  ASSERT_EQ(t.Bet(1, bet::Place4 + 2, 12_usd), 12_usd);
  (win ? t.g.AutoHandleWin : t.g.AutoHandleLose)[1] = action;
  t.g.SettleRules[1][win ? (action == 7 ? kRuleSetWin : kRuleModifyWin)
                         : (action == 7 ? kRuleSetLose : kRuleModifyLose)] = rule;
  if (win) t.Roll(2, 4);
  else t.Roll(3, 4);
  EXPECT_EQ(t.Amount(1, bet::Place4 + 2), Money::Dollars(expected)) << what;
  EXPECT_EQ(t.g.Bankroll[1], Money::Dollars(1000 + (win ? 14 : -12))) << what << ": the result is paid either way";
}

INSTANTIATE_TEST_SUITE_P(
    Actions, HandlingActions,
    testing::Values(
        ActionCase{"win, take down", true, kTakeDown, {}, 0}, ActionCase{"win, same bet", true, kSameBet, {}, 12},
        ActionCase{"win, press one unit of 6", true, kPressUnitOrRemainder, {}, 18},
        ActionCase{"win, press to double", true, kPressDoubleOrUnit, {}, 24},
        // Parlay adds the 14 won and adjusts to the nearer whole payoff: 26 → 24.
        ActionCase{"win, parlay", true, kParlayOrDouble, {}, 24},
        ActionCase{"win, modify +5 dollars", true, kModifyByRule, {0, 5_usd, 0}, 17},
        ActionCase{"win, modify x150 percent", true, kModifyByRule, {2, 150_usd, 1}, 18},
        ActionCase{"win, modify -1 unit of the smallest check", true, kModifyByRule, {1, 1_usd, 2}, 6},
        ActionCase{"win, set to 30 dollars", true, kSetToAmount, {0, 30_usd, 0}, 30},
        ActionCase{"loss, take down", false, kTakeDown, {}, 0}, ActionCase{"loss, same bet", false, kSameBet, {}, 12},
        ActionCase{"loss, bet the remainder: nothing is left of a lost bet", false, kPressUnitOrRemainder, {}, 0},
        ActionCase{"loss, press one unit", false, kPressDoubleOrUnit, {}, 18},
        ActionCase{"loss, double", false, kParlayOrDouble, {}, 24},
        ActionCase{"loss, modify /2", false, kModifyByRule, {3, 2_usd, 0}, 6},
        ActionCase{"loss, set to 6", false, kSetToAmount, {0, 6_usd, 0}, 6}));

TEST(HandlingPressUnit, TheLargestCheckThatDividesTheBet) {
  LineTable t;
  t.Seat(1, "Ann", 10000_usd);
  t.g.Rules.BetNeededToShoot = 0;
  t.RollTotal(5);
  t.Bet(1, bet::Place4 + 2, 150_usd);
  EXPECT_EQ(FindPressUnit(t.g, 1, bet::Place4 + 2), 150_usd) << "a $25 check times 6";
  t.Bet(1, bet::Place4 + 2, -140_usd);  // $10: no size divides it, the smallest stays
  EXPECT_EQ(FindPressUnit(t.g, 1, bet::Place4 + 2), 6_usd);
}

}  // namespace
