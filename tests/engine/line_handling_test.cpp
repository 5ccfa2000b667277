// What becomes of a decided Pass Line bet, by the seat's action or by the settle
// dialog; and who gets the dice afterwards.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "engine/handling.h"
#include "engine/players.h"
#include "tests/engine/line_table.h"

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::StartsWith;

// ---- Winner and loser actions ----------------------------------------------------------------

// What, the rolls that decide the $10 line bet, the seat's action for this result, silent,
// the actions chosen in the settle dialog, the dialogs shown, the amount and bankroll after.
using ActionCase = std::tuple<const char*, std::vector<int>, int, bool, std::vector<int>, int, Money, Money>;

class LineSettleActionTest : public ::testing::TestWithParam<ActionCase> {};

TEST_P(LineSettleActionTest, TheStakeAfterTheDecision) {
  const auto& [what, totals, action, silent, dialogReply, dialogs, amountAfter, bankrollAfter] = GetParam();
  AnnTable t;
  t.g.AutoHandleWin[1] = t.g.AutoHandleLose[1] = action;
  t.Bet(1, bet::PassLine, 10_usd);
  for (int a : dialogReply) t.ui.settleReplies.push_back(a);
  t.g.SilentMode = silent;
  for (int total : totals) t.RollTotal(total);
  EXPECT_EQ(static_cast<int>(t.ui.settles.size()), dialogs);
  EXPECT_TRUE(t.ui.faults.empty());
  EXPECT_EQ(t.Amount(1, bet::PassLine), amountAfter);
  EXPECT_EQ(t.g.OnTable[1], amountAfter);
  EXPECT_EQ(t.g.Bankroll[1], bankrollAfter);
}

INSTANTIATE_TEST_SUITE_P(
    PassLine, LineSettleActionTest,
    ::testing::Values(
        ActionCase{"win, dialog: same bet", {7}, kAskByDialog, false, {kSameBet}, 1, 10_usd, 1010_usd},
        ActionCase{"win, dialog: take down", {7}, kAskByDialog, false, {kTakeDown}, 1, Money{}, 1010_usd},
        ActionCase{"win, dialog under SilentMode takes down", {7}, kAskByDialog, true, {}, 0, Money{}, 1010_usd},
        ActionCase{"loss, dialog: same bet", {3}, kAskByDialog, false, {kSameBet}, 1, 10_usd, 990_usd},
        ActionCase{"loss, dialog: no bet", {3}, kAskByDialog, false, {kTakeDown}, 1, Money{}, 990_usd},
        ActionCase{"loss, dialog under SilentMode takes down", {3}, kAskByDialog, true, {}, 0, Money{}, 990_usd},
        ActionCase{"seven-out, same bet", {6, 7}, kSameBet, false, {}, 0, 10_usd, 990_usd}));

TEST(LineSettleDialog, AWinnersDialog) {
  AnnTable t;
  t.PassLineThen(11);
  ASSERT_EQ(t.ui.settles.size(), 1u);
  const SettleRequest& d = t.ui.settles[0];
  EXPECT_EQ(d.Title, "WINNER");
  EXPECT_THAT(d.Buttons,
              ElementsAre("Take Bet and Winnings", "&Same Bet - Take Winnings", "Press 1 &Unit - Add $5 to Bet",
                          "Press - Add Winnings to &Double Bet", "Parlay - Add &All Winnings to Bet"));
  EXPECT_THAT(d.Labels, Contains("Payoff at 1 to 1"));
  EXPECT_THAT(d.Labels, Contains("Net payoff: $10"));
  // Nothing chosen: the first button answers.
  EXPECT_EQ(t.Amount(1, bet::PassLine), Money{});
}

TEST(LineSettleDialog, ARoundedPayoffSaysSo) {
  LineTable t;
  t.g.Rules.BetPayoff[bet::PassLine].PayoffPay = 3_usd;
  t.g.Rules.BetPayoff[bet::PassLine].PayoffFor = 2_usd;
  t.Seat(1, "Ann", 1000_usd);
  t.Bet(1, bet::PassLine, 7_usd);
  t.RollTotal(7);
  ASSERT_EQ(t.ui.settles.size(), 1u);
  EXPECT_THAT(t.ui.settles[0].Labels, Contains("Payoff at 3 to 2"));
  EXPECT_THAT(t.ui.settles[0].Labels, Contains("Net payoff (rounded): $10"));
  EXPECT_EQ(t.g.Bankroll[1], 1010_usd);
}

TEST(LineSettleDialog, ALosersDialog) {
  AnnTable t;
  t.Bet(1, bet::PassLine, 25_usd);
  t.RollTotal(12);
  ASSERT_EQ(t.ui.settles.size(), 1u);
  EXPECT_THAT(t.ui.settles[0].Buttons, ElementsAre("&No Bet", "&Same Bet", "Bet &Remainder",
                                                   StartsWith("Press &1 Unit - Add $25"), "&Double Bet"));
  EXPECT_THAT(t.ui.settles[0].Labels, Contains("Net loss: $25"));
}

TEST(LineSettleDialog, AChoiceTheDialogDidNotOfferIsRefused) {
  AnnTable t;
  t.Bet(1, bet::PassLine, 10_usd);
  t.ui.settleReplies.push_back(kTakeMaxOdds);  // offered only for an odds bet that wasn't working
  t.RollTotal(7);
  EXPECT_EQ(t.ui.faults.size(), 1u);
  EXPECT_EQ(t.Amount(1, bet::PassLine), Money{});
  EXPECT_EQ(t.g.Bankroll[1], 1010_usd);
}

// ---- Passing the dice ----------------------------------------------------------------------

// Seats 5, 1 and 8, seated in that order: 5 has the dice first, and they go down and round.
struct ThreeAtTheTable : LineTable {
  ThreeAtTheTable() {
    g.Rules.BetNeededToShoot = 0;
    Seat(5, "Ann", 1000_usd);
    Seat(1, "Bob", 1000_usd);
    Seat(8, "Cid", 1000_usd);
  }
  void SevenOut() {
    RollTotal(6);
    RollTotal(7);
  }
};

// A player who passes (seat 1, or nobody) is skipped.
TEST(PassDiceRotation, SevenOutsMoveTheDiceDownAndRound) {
  for (const auto& [passer, order] : {std::pair{0, std::vector{1, 8, 5, 1}}, std::pair{1, std::vector{8, 5, 8, 5}}}) {
    ThreeAtTheTable t;
    if (passer) t.g.AutoPassDice[passer] = true;
    ASSERT_EQ(t.g.Table.Shooter, 5);
    std::vector<int> shooters;
    for (int hand = 0; hand < 4; ++hand) {
      const int before = t.g.Table.Shooter;
      t.SevenOut();
      EXPECT_EQ(t.g.Table.LastHandShooter, before);
      EXPECT_EQ(t.g.Table.HandShooter, t.g.Table.Shooter);
      shooters.push_back(t.g.Table.Shooter);
    }
    EXPECT_EQ(shooters, order) << "seat " << passer << " passes";
  }
}

TEST(PassDiceRotation, SilentPassBetweenHandsAndWithinOne) {
  ThreeAtTheTable t;
  PassDice(t.g, kPassSilent);
  EXPECT_EQ(t.g.Table.Shooter, 1);
  EXPECT_EQ(t.g.Table.HandShooter, 1);
  EXPECT_EQ(t.Messages(), 0);

  t.RollTotal(8);
  PassDice(t.g, kPassSilent);
  EXPECT_EQ(t.g.Table.Shooter, 8);  // 1 − 1 wraps to 8
  EXPECT_EQ(t.g.Table.HandShooter, 1);
  EXPECT_EQ(t.Messages(), 0);
}

TEST(PassDiceRotation, AMidHandTakerKeepsTheDiceAtHisSevenOut) {
  ThreeAtTheTable t;
  t.RollTotal(9);
  PassDice(t.g, kPassAsked);
  EXPECT_EQ(t.g.Table.Shooter, 1);
  EXPECT_EQ(t.g.Table.HandShooter, 5);
  ASSERT_EQ(t.Messages(), 1);
  EXPECT_EQ(t.LastMessage().Title, "Pass the Dice");
  EXPECT_EQ(t.LastMessage().Text,
            "Ann is passing the dice to Bob who may finish the current hand and then roll his/her own hand.");

  t.RollTotal(7);
  EXPECT_EQ(t.g.Table.Shooter, 1);
  EXPECT_EQ(t.g.Table.HandShooter, 1);
  EXPECT_EQ(t.g.Table.LastHandShooter, 5);

  // Bob's own hand ends: now the dice go on.
  t.SevenOut();
  EXPECT_EQ(t.g.Table.Shooter, 8);
  EXPECT_EQ(t.g.Table.LastHandShooter, 1);
}

TEST(PassDiceRotation, PassingBackToTheHandsShooter) {
  ThreeAtTheTable t;
  t.RollTotal(9);
  PassDice(t.g, kPassAsked);  // to Bob
  PassDice(t.g, kPassAsked);  // to Cid
  PassDice(t.g, kPassAsked);  // back to Ann
  EXPECT_EQ(t.g.Table.Shooter, 5);
  ASSERT_EQ(t.Messages(), 3);
  EXPECT_EQ(t.LastMessage().Text, "Cid is passing the dice back to Ann who originally started this hand.");
}

}  // namespace
