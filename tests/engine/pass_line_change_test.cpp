// The placement gate for the Pass Line: rounding, the contract while a point is on,
// Put bets, the table's limits and the bankroll.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "engine/handling.h"
#include "tests/engine/line_table.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

const std::string kPutRefused =
    "You may not make or increase a Pass Line bet while a point is established.\n\n"
    "(Unless you check \"Allow Put Bets\" on the Configuration screen.)";
const std::string kNoDecrease = "You may not decrease or remove a Pass Line bet while a point is established.";

Money Cents(int64_t c) { return Money::FromRaw(c * 100); }

struct AnnAtTheLine : LineTable {
  explicit AnnAtTheLine(Money bankroll = 1000_usd) {
    Seat(1, "Ann", bankroll);
    g.AutoHandleWin[1] = g.AutoHandleLose[1] = kTakeDown;
  }
  // The count-th box is the last: from the player at `title`, and it begins with `text`.
  void ExpectBox(int count, const char* title, const std::string& text) {
    ASSERT_EQ(Messages(), count);
    EXPECT_THAT(LastMessage().Text, StartsWith(text));
    EXPECT_EQ(LastMessage().Title, title);
  }
};

// ---- Rounding to checks -------------------------------------------------------------------

using RoundCase = std::tuple<Money, Money, Money>;  // on the line before, asked, applied

class PassLineRoundingTest : public ::testing::TestWithParam<RoundCase> {};

TEST_P(PassLineRoundingTest, AwayFromZeroOnAFiveDollarTable) {
  const auto& [start, request, applied] = GetParam();
  AnnAtTheLine t;
  t.g.Rules.CheckDenom = {Money{}, 5_usd, 25_usd, 100_usd, 500_usd, 1000_usd};
  if (start.raw > 0) {
    ASSERT_EQ(t.Bet(1, bet::PassLine, start), start);
  }
  EXPECT_EQ(t.Bet(1, bet::PassLine, request), applied);
  EXPECT_EQ(t.Amount(1, bet::PassLine), start + applied);
  EXPECT_EQ(t.g.OnTable[1], start + applied);
  EXPECT_EQ(t.Messages(), 0);
}

INSTANTIATE_TEST_SUITE_P(PassLine, PassLineRoundingTest,
                         ::testing::Values(RoundCase{Money{}, 7_usd, 10_usd}, RoundCase{20_usd, -7_usd, -10_usd},
                                           RoundCase{Money{}, 5_usd, 5_usd}, RoundCase{Money{}, Cents(1), 5_usd},
                                           RoundCase{10_usd, -3_usd, -5_usd}, RoundCase{15_usd, -Cents(1), -5_usd},
                                           // a take-down past the amount stops at 0
                                           RoundCase{5_usd, -7_usd, -5_usd}));

// ---- The contract while a point is on ---------------------------------------------------

TEST(PassLineChangeBet, PutBetsOffRefusesAnyIncreaseWithThePointOn) {
  AnnAtTheLine t;
  t.Seat(2, "Bob", 1000_usd);
  t.g.Rules.AllowPutBets = false;
  t.PassLineThen(6);
  ASSERT_EQ(t.g.Table.Point, 6);

  EXPECT_EQ(t.Bet(1, bet::PassLine, 5_usd), Money{});
  EXPECT_EQ(t.Amount(1, bet::PassLine), 10_usd);
  EXPECT_EQ(t.g.OnTable[1], 10_usd);
  t.ExpectBox(1, "Ann", kPutRefused);
  EXPECT_TRUE(t.LastMessage().Flags & msg::kClass1);  // a rule notice the user may hide

  // A player with no line bet can't start one either.
  EXPECT_EQ(t.Bet(2, bet::PassLine, 10_usd), Money{});
  EXPECT_EQ(t.Amount(2, bet::PassLine), Money{});
  t.ExpectBox(2, "Bob", kPutRefused);

  // Nor may the contract come down.
  EXPECT_EQ(TakeDown(t.g, 1, bet::PassLine), Money{});
  EXPECT_EQ(t.Amount(1, bet::PassLine), 10_usd);
  t.ExpectBox(3, "Ann", kNoDecrease);
}

TEST(PassLineChangeBet, APutIncreaseMayComeOffUntilTheNextRoll) {
  AnnAtTheLine t;
  t.PassLineThen(6);

  EXPECT_EQ(t.Bet(1, bet::PassLine, 5_usd), 5_usd);
  EXPECT_EQ(t.Bet(1, bet::PassLine, -5_usd), -5_usd);
  EXPECT_EQ(t.Amount(1, bet::PassLine), 10_usd);
  EXPECT_EQ(t.Messages(), 0);

  // More than the Put increase: only the increase comes off.
  EXPECT_EQ(t.Bet(1, bet::PassLine, 5_usd), 5_usd);
  EXPECT_EQ(t.Bet(1, bet::PassLine, -15_usd), -5_usd);
  EXPECT_EQ(t.Amount(1, bet::PassLine), 10_usd);
  EXPECT_EQ(t.g.OnTable[1], 10_usd);

  // After a roll the increase is part of the contract.
  EXPECT_EQ(t.Bet(1, bet::PassLine, 5_usd), 5_usd);
  const int before = t.Messages();
  t.RollTotal(3);
  ASSERT_EQ(t.g.Table.Point, 6);
  EXPECT_EQ(t.Bet(1, bet::PassLine, -5_usd), Money{});
  EXPECT_EQ(t.Amount(1, bet::PassLine), 15_usd);
  t.ExpectBox(before + 1, "Ann", kNoDecrease);

  // And the whole 15 is paid when the point is made.
  t.RollTotal(6);
  EXPECT_EQ(t.g.Bankroll[1], 1015_usd);
}

TEST(PassLineChangeBet, OnTheComeOutTheLineComesDownFreely) {
  AnnAtTheLine t;
  t.PassLineThen(7);  // a natural: still the come-out
  t.Bet(1, bet::PassLine, 10_usd);
  EXPECT_EQ(TakeDown(t.g, 1, bet::PassLine), -10_usd);
  EXPECT_EQ(t.Amount(1, bet::PassLine), Money{});
  EXPECT_EQ(t.g.OnTable[1], Money{});
  EXPECT_EQ(t.Messages(), 0);
}

// ---- Limits --------------------------------------------------------------------------------

TEST(PassLineChangeBet, TheMinimumRaisesAnIncreaseAndRemovesADecrease) {
  AnnAtTheLine t;
  t.g.Rules.MinPlacardBet = 10_usd;
  EXPECT_EQ(t.Bet(1, bet::PassLine, 5_usd), 10_usd);
  t.ExpectBox(1, "Ann", "The minimum Pass Line bet is $10");

  t.Bet(1, bet::PassLine, 5_usd);
  EXPECT_EQ(t.Bet(1, bet::PassLine, -10_usd), -15_usd);
  EXPECT_EQ(t.Amount(1, bet::PassLine), Money{});
  EXPECT_EQ(t.g.OnTable[1], Money{});
}

TEST(PassLineChangeBet, TheMaximumCutsTheRequest) {
  AnnAtTheLine t(5000_usd);
  EXPECT_EQ(t.Bet(1, bet::PassLine, 1500_usd), 1000_usd);
  t.ExpectBox(1, "Ann", "The maximum Pass Line bet is $1000");
  EXPECT_THAT(t.LastMessage().Text, Not(HasSubstr("However")));
}

TEST(PassLineChangeBet, AContractAboveALoweredMaximumStaysAsItIs) {
  AnnAtTheLine t(5000_usd);
  t.Bet(1, bet::PassLine, 500_usd);
  t.RollTotal(8);
  t.g.Rules.MaxPlacardBet = 100_usd;
  EXPECT_EQ(t.Bet(1, bet::PassLine, 5_usd), Money{});
  EXPECT_EQ(t.Amount(1, bet::PassLine), 500_usd);
  t.ExpectBox(1, "Ann",
              "The maximum Pass Line bet is $100\n\nHowever, because it's a contract bet and was established at "
              "$500 when a higher limit was allowed, it must remain unchanged until it resolves.");
  // It resolves at its full amount.
  t.RollTotal(8);
  EXPECT_EQ(t.g.Bankroll[1], 5500_usd);
}

// ---- The bankroll ----------------------------------------------------------------------------

// What, the bankroll, a Field bet already down, the minimum, the request, what is placed and
// the box's words.
using BankrollCase = std::tuple<const char*, Money, Money, Money, Money, Money, std::string>;

class PassLineBankrollTest : public ::testing::TestWithParam<BankrollCase> {};

TEST_P(PassLineBankrollTest, CutsToWhatIsLeftAndSaysWhy) {
  const auto& [what, bankroll, fieldBet, minimum, request, placed, text] = GetParam();
  AnnAtTheLine t(bankroll);
  t.g.Rules.MinPlacardBet = minimum;
  if (fieldBet.raw > 0) {
    ASSERT_EQ(t.Bet(1, bet::Field, fieldBet), fieldBet);
  }
  EXPECT_EQ(t.Bet(1, bet::PassLine, request), placed);
  EXPECT_EQ(t.Amount(1, bet::PassLine), placed);
  EXPECT_EQ(t.g.OnTable[1], fieldBet + placed);
  EXPECT_EQ(t.g.Bankroll[1], bankroll);
  t.ExpectBox(1, "Ann", text);
  EXPECT_EQ(t.LastMessage().HelpId, 130);
}

INSTANTIATE_TEST_SUITE_P(
    PassLine, PassLineBankrollTest,
    ::testing::Values(
        BankrollCase{"the rest of an empty rail", 23_usd, Money{}, 1_usd, 50_usd, 23_usd,
                     "You don't have enough bankroll remaining to bet the full amount requested on the Pass Line."
                     "\n\nYour options are: \n      - Make a withdrawal from the ATM.\n"
                     "      - Allow negative bankroll."},
        BankrollCase{"with a Field bet down", 23_usd, 10_usd, 1_usd, 50_usd, 13_usd,
                     "You don't have enough bankroll remaining to bet the full amount requested on the Pass Line."
                     "\n\nYour options are: \n      - Bet less on other bets.\n"
                     "      - Make a withdrawal from the ATM.\n      - Allow negative bankroll."},
        BankrollCase{"less than the minimum", 23_usd, Money{}, 25_usd, 30_usd, Money{},
                     "You don't have enough bankroll remaining to bet the minimum on the Pass Line."
                     "\n\nYour options are: \n      - Make a withdrawal from the ATM.\n"
                     "      - Allow negative bankroll."}));

TEST(PassLineChangeBet, TheBankrollCutIsSilentWithLimitNoticesOff) {
  AnnAtTheLine t(23_usd);
  t.g.Rules.Notices &= ~kNoticeLimits;
  EXPECT_EQ(t.Bet(1, bet::PassLine, 50_usd), 23_usd);
  EXPECT_EQ(t.Messages(), 0);
}

}  // namespace
