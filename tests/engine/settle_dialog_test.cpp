// The settle dialog as the player sees it: its labels and its buttons for the bet at hand.

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/handling.h"
#include "tests/engine/line_table.h"

namespace {

bool Has(const std::vector<std::string>& v, const std::string& s) {
  return std::find(v.begin(), v.end(), s) != v.end();
}

const SettleRequest* DialogFor(const LineTable& t, const std::string& betLabel) {
  for (const SettleRequest& r : t.ui.settles)
    if (r.Labels.size() > 1 && r.Labels[1] == betLabel) return &r;
  return nullptr;
}

TEST(SettleDialog, ASplitBetTellsItsParts) {
  AnnTable t;
  t.g.AutoHandleWin[1] = 0;  // ask by dialog
  t.Bet(1, bet::PassLine, 10_usd);
  t.Bet(1, bet::CAndE, 2_usd);
  t.Roll(5, 6);
  const SettleRequest* d = DialogFor(t, "C and E $2");
  ASSERT_NE(d, nullptr);
  EXPECT_EQ(d->Title, "WINNER");
  EXPECT_EQ(d->Labels[0], "Ann Won");
  EXPECT_TRUE(Has(d->Labels, "Payoff at 15 to 1")) << "the Eleven row pays the C and E on 11";
  EXPECT_TRUE(Has(d->Labels, "1/2 of bet: $15"));
  EXPECT_TRUE(Has(d->Labels, "Less 1/2 of bet: $1"));
  EXPECT_TRUE(Has(d->Labels, "Net payoff: $14"));
  EXPECT_TRUE(Has(d->Buttons, "Parlay - Add &All Winnings to Bet"));
  EXPECT_EQ(t.g.Bankroll[1], Money::Dollars(1000 + 14 + 10));
}

TEST(SettleDialog, ABuyBetShowsThePayoffBeforeVigAndTheVig) {
  AnnTable t;
  t.PassLineThen(6);  // a point, so that the Buy bet works
  t.Bet(1, bet::Buy4, 20_usd);
  t.Roll(1, 3);
  const SettleRequest* d = DialogFor(t, "Buy 4 $20");
  ASSERT_NE(d, nullptr);
  EXPECT_TRUE(Has(d->Labels, "Payoff at 2 to 1"));
  EXPECT_TRUE(Has(d->Labels, "Net payoff: $40"));
  EXPECT_TRUE(Has(d->Labels, "5% vig: $1"));
}

TEST(SettleDialog, AReturnedBetOffersOnlyToTakeIt) {
  AnnTable t;
  t.PassLineThen(6);
  t.Bet(1, bet::PassLineOdds, 10_usd);
  t.RollTotal(6);
  const SettleRequest* d = DialogFor(t, "Pass Line Odds $10");
  ASSERT_NE(d, nullptr);
  EXPECT_TRUE(Has(d->Labels, "Payoff at 6 to 5"));
  ASSERT_EQ(d->Buttons.size(), 1u);
  EXPECT_EQ(d->Buttons[0], "&Take Returned Bet");
  EXPECT_EQ(t.Amount(1, bet::PassLineOdds), Money{});
}

TEST(SettleDialog, TheSeatsChoiceRuns) {
  AnnTable t;
  t.PassLineThen(6);
  t.Bet(1, bet::Place4 + 2, 12_usd);
  // The point is made: the Pass Line is settled first and taken down, then the Place 6
  // wins and is pressed by one unit, 6 on a bet paid 7 for 6.
  t.ui.settleReplies.push_back(kTakeDown);
  t.ui.settleReplies.push_back(kPressUnitOrRemainder);
  t.Roll(3, 3);
  EXPECT_EQ(t.Amount(1, bet::Place4 + 2), 18_usd);
}

}  // namespace
