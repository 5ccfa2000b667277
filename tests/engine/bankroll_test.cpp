// Money entering and leaving a seat outside of bets: the ATM's cuts and the buy-in bounds.

#include "engine/bankroll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "tests/engine/line_table.h"

namespace {

// What, the bankroll, the Pass Line on the table, the ATM request, a negative bankroll
// allowed, what goes through, and how the box ends ("" when the full amount goes through).
using AtmCase = std::tuple<const char*, double, double, double, bool, double, const char*>;

class BankrollAtmTest : public testing::TestWithParam<AtmCase> {};

TEST_P(BankrollAtmTest, CutsToTheLimitsAndSaysWhy) {
  const auto& [what, bankroll, onTable, request, negativeAllowed, wantAllowed, boxEnds] = GetParam();
  LineTable t;
  t.Seat(1, "Ann", Money::FromDouble(bankroll));
  t.g.AllowNegBankroll[1] = negativeAllowed;
  if (onTable > 0) {
    ASSERT_EQ(t.Bet(1, bet::PassLine, Money::FromDouble(onTable)), Money::FromDouble(onTable));
  }
  const size_t shown = t.ui.transcript.size();
  EXPECT_EQ(Atm(t.g, 1, Money::FromDouble(request)), Money::FromDouble(wantAllowed)) << what;
  EXPECT_EQ(t.g.Bankroll[1], Money::FromDouble(bankroll + wantAllowed)) << what;
  EXPECT_EQ(t.g.Bankroll[1 + 36], t.g.Bankroll[1]);
  ASSERT_EQ(t.ui.transcript.size(), shown + (*boxEnds ? 1 : 0)) << what;
  if (*boxEnds == 0) return;
  const MessageRequest& box = t.LastMessage();
  EXPECT_EQ(box.Title, request > 0 ? "ATM Withdrawal" : "ATM Deposit");
  EXPECT_THAT(box.Text, testing::StartsWith("Requested amount:  $"));
  EXPECT_THAT(box.Text, testing::EndsWith(boxEnds));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BankrollAtmTest,
    testing::Values(
        AtmCase{"a deposit that would dip into the wagers", 100, 60, -80, false, -40,
                "because Ann's bankroll would've dropped below the amount currently wagered.\n\nYou can deposit more "
                "by checking the box marked, \"Allow negative bankroll\" on the Configuration screen, and/or by "
                "reducing the amount currently wagered."},
        AtmCase{"a deposit that would go negative", 100, 0, -150, false, -100,
                "bankroll would've become negative.\n\nYou can deposit more by checking the box marked, \"Allow "
                "negative bankroll\" on the Configuration screen."},
        AtmCase{"a deposit with negative bankroll allowed", 100, 0, -150, true, -150, ""},
        AtmCase{"a deposit past the negative limit", -9999000, 0, -5000, true, -999,
                "bankroll to drop below the negative bank limit of $9999999"},
        AtmCase{"a withdrawal past the bank limit", 9999000, 0, 5000, false, 999,
                "bankroll to exceed the max bank limit of $9999999"},
        AtmCase{"a withdrawal within it", 500, 0, 500, false, 500, ""}));

// The host's minimum and maximum, the buy-in asked, the bankroll after and the box.
using BuyInCase = std::tuple<double, double, double, double, const char*>;

class BankrollBuyInTest : public testing::TestWithParam<BuyInCase> {};

TEST_P(BankrollBuyInTest, HostBoundsHold) {
  const auto& [min, max, request, result, text] = GetParam();
  LineTable t;
  t.Seat(1, "Ann", 100_usd);
  t.g.HostMinBuyIn = Money::FromDouble(min);
  t.g.HostMaxBuyIn = Money::FromDouble(max);
  BuyIn(t.g, 1, Money::FromDouble(request));
  EXPECT_EQ(t.g.Bankroll[1], Money::FromDouble(result));
  ASSERT_EQ(t.Messages(), *text ? 1 : 0);
  if (*text == 0) return;
  EXPECT_EQ(t.LastMessage().Text, text);
  EXPECT_EQ(t.LastMessage().Title, "Bankroll");
  EXPECT_EQ(t.LastMessage().HelpId, 180);
}

INSTANTIATE_TEST_SUITE_P(Bounds, BankrollBuyInTest,
                         testing::Values(BuyInCase{500, 500, 300, 500, "The required buy-in on this table is $500"},
                                         BuyInCase{200, 1000, 100, 200, "The min buy-in on this table is $200"},
                                         BuyInCase{200, 1000, 5000, 1000, "The max buy-in on this table is $1000"},
                                         BuyInCase{-9999999, 9999999, 2500, 2500, ""}));

}  // namespace
