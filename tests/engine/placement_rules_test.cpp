// The contract and timing rules of the placement gate for bets other than the line:
// each refusal in the system's words, with the amount left as it was.

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "engine/placement.h"
#include "engine/roll_cycle.h"
#include "tests/engine/line_table.h"

namespace {

// What, the set-up, the bet refused, its words and help.
using RuleCase = std::tuple<const char*, std::function<void(LineTable&)>, int, const char*, int>;

class PlacementRuleTest : public testing::TestWithParam<RuleCase> {};

TEST_P(PlacementRuleTest, RefusesWithItsWords) {
  const auto& [what, setUp, betId, text, help] = GetParam();
  AnnTable t;
  if (setUp) setUp(t);
  const Money before = t.Amount(1, betId);
  const size_t shown = t.ui.transcript.size();
  EXPECT_EQ(t.Bet(1, betId, 10_usd), Money{}) << what;
  EXPECT_EQ(t.Amount(1, betId), before) << what;
  ASSERT_EQ(t.ui.transcript.size(), shown + 1) << what;
  EXPECT_EQ(t.LastMessage().Text, text) << what;
  EXPECT_EQ(t.LastMessage().HelpId, help) << what;
  EXPECT_EQ(t.LastMessage().Title, "Ann");
}

void PointOnSix(LineTable& t) { t.PassLineThen(6); }

INSTANTIATE_TEST_SUITE_P(
    Bets, PlacementRuleTest,
    testing::Values(
        RuleCase{"Come on the come-out", nullptr, bet::Come,
                 "You may not make a Come bet \nuntil a point is established.", 45},
        // The Come bet travels to 6 as the point is made: no base of it is left in the box.
        RuleCase{"Come after one travelled",
                 [](LineTable& t) {
                   t.PassLineThen(6);
                   ASSERT_EQ(t.Bet(1, bet::Come, 10_usd), 10_usd);
                   t.RollTotal(6);
                   ASSERT_EQ(t.g.Table.Point, 0);
                   ASSERT_EQ(t.Amount(1, bet::Come4 + 2), 10_usd);
                 },
                 bet::Come, "You may not make a Come bet \nuntil a point is established.", 45},
        RuleCase{"Don't Come on the come-out", nullptr, bet::DontCome,
                 "You may not make a Don't Come bet until a point is established.", 48},
        RuleCase{"Don't Pass with a point on", PointOnSix, bet::DontPass,
                 "You may not make or increase a Don't Pass bet while a point is established.", 46},
        RuleCase{"Pass Line Odds without a point", nullptr, bet::PassLineOdds,
                 "You may not make a Pass Line Odds bet unless you also have a Pass Line bet and a point is "
                 "established.",
                 43},
        RuleCase{"Don't Pass Odds without the bet", PointOnSix, bet::DontPassOdds,
                 "You may not make a Don't Pass Odds bet unless you also have a Don't Pass bet and a point is "
                 "established.",
                 46},
        RuleCase{"Come odds without the flat bet", PointOnSix, bet::Come4Odds + 2,
                 "You may not make a Come 6 Odds bet until you've established a Come 6 bet.", 45},
        RuleCase{"Don't Come odds without the flat bet", PointOnSix, bet::DontCome4Odds,
                 "You may not make a Don't Come 4 Odds bet until you've established a Don't Come 4 bet.", 48},
        RuleCase{"Come on a number without Put bets", [](LineTable& t) { t.g.Rules.AllowPutBets = false; }, bet::Come4,
                 "You may not make or increase a Come bet directly on a point number.\n\n(Unless you check "
                 "\"Allow Put Bets\" on the Configuration screen.)",
                 45},
        RuleCase{"Don't Come on a number", nullptr, bet::DontCome4,
                 "You may not make or increase a Don't Come bet directly on a point number.", 48},
        RuleCase{"All Small with a small number marked", [](LineTable& t) { t.g.Table.AllNumbersMask = 1 << 4; },
                 bet::AllSmall, "You may not make or increase an All Small bet while any small numbers are marked.",
                 510},
        RuleCase{"All Tall with a tall number marked", [](LineTable& t) { t.g.Table.AllNumbersMask = 1 << 9; },
                 bet::AllTall, "You may not make or increase an All Tall bet while any tall numbers are marked.", 510},
        RuleCase{"Make All with any number marked", [](LineTable& t) { t.g.Table.AllNumbersMask = 1 << 3; },
                 bet::MakeAll, "You may not make or increase a Make All bet while any numbers are marked.", 510},
        RuleCase{"4 Rolls No 7 counting", [](LineTable& t) { t.g.Table.FourRollCount = 2; }, bet::FourRollsNo7,
                 "You may not make or increase a 4 Rolls No 7 bet if the count is in progress.", 510},
        RuleCase{"Point 7 with a point on", PointOnSix, bet::Point7,
                 "You may not make or increase a Point 7 bet unless the shooter is on a come-out roll.", 510},
        RuleCase{"7 Point 7 with a point on", PointOnSix, bet::SevenPoint7,
                 "You may not make or increase a 7 Point 7 bet unless the shooter is on a come-out roll.", 510},
        RuleCase{"Hot Roller after a total other than 7", PointOnSix, bet::HotRoller,
                 "You may not make or increase a Hot Roller bet until the next seven rolls.", 510},
        RuleCase{"Fire once the hand has rolls", PointOnSix, bet::Fire,
                 "You may not make or increase a Fire bet after the shooter has started a hand.", 510},
        RuleCase{"Ride The Line once the hand has rolls", PointOnSix, bet::RideTheLine,
                 "You may not make or increase a Ride The Line bet after the shooter has started a hand.", 510},
        RuleCase{"Repeater with hits marked", [](LineTable& t) { t.g.Table.RepeaterCount[8] = 1; }, bet::Repeater2 + 5,
                 "You may not make or increase a Repeater 8 bet while any hits are marked.", 510}));

TEST(PlacementRules, ComeBetOnItsNumberIsHeldToItsBase) {
  AnnTable t;
  PointOnSix(t);
  ASSERT_EQ(t.Bet(1, bet::Come, 10_usd), 10_usd);
  t.RollTotal(4);  // the Come bet travels to 4
  ASSERT_EQ(t.Amount(1, bet::Come4), 10_usd);
  EXPECT_EQ(t.Bet(1, bet::Come4, -10_usd), Money{});
  EXPECT_EQ(t.LastMessage().Text, "You may not decrease or remove a Come bet which is established on a point.");
  EXPECT_EQ(t.LastMessage().HelpId, 250);
  EXPECT_EQ(t.Amount(1, bet::Come4), 10_usd);
  // A Put increase on it can come off again before the next roll.
  EXPECT_EQ(t.Bet(1, bet::Come4, 5_usd), 5_usd);
  EXPECT_EQ(t.Bet(1, bet::Come4, -15_usd), -5_usd);
  EXPECT_EQ(t.Amount(1, bet::Come4), 10_usd);
}

// A new session opens the Hot Roller whatever total the last session ended on.
TEST(PlacementRules, ANewSessionOpensTheHotRoller) {
  AnnTable t;
  t.PassLineThen(6);
  ResetTable(t.g, true, false, false, 0);
  EXPECT_EQ(t.Bet(1, bet::HotRoller, 10_usd), 10_usd);
}

TEST(PlacementVig, BuyVigIsHeldAndCountedUpFront) {
  AnnTable t;
  ASSERT_EQ(t.Bet(1, bet::Buy4, 20_usd), 20_usd);
  EXPECT_EQ(t.g.BuyVigHeld[1][0], 1_usd);
  EXPECT_EQ(t.g.OnTable[1], 21_usd);
  EXPECT_EQ(t.LastMessage().Text, "Total vig charge $1\nBuy 4");
  t.Bet(1, bet::Buy4, 40_usd);  // 60: 3.00
  EXPECT_EQ(t.LastMessage().Text, "Total vig charge $3\nVig increased by $2\nBuy 4");
  t.Bet(1, bet::Buy4, -60_usd);
  EXPECT_EQ(t.g.OnTable[1], Money{});
  EXPECT_EQ(t.LastMessage().Text, "Vig charge returned $3\nBuy 4");
}

TEST(PlacementVig, VigOnWinOnlyStaysOutOfOnTable) {
  AnnTable t;
  t.g.Rules.ChargeAllLay = false;
  ASSERT_EQ(t.Bet(1, bet::Lay4, 40_usd), 40_usd);
  EXPECT_EQ(t.g.LayVigHeld[1][0], 1_usd);  // 5% of the win of 20
  EXPECT_EQ(t.g.OnTable[1], 40_usd);
  EXPECT_EQ(t.LastMessage().Text, "If you win, the total vig charge will be $1\nLay 4");
}

TEST(PlacementVig, UpFrontVigMustFitTheBankroll) {
  LineTable t;
  t.Seat(1, "Ann", 20_usd);
  t.g.SilentMode = true;
  // $20 on Buy 4 needs $1 of vig as well: the bet falls to what the rail can carry.
  EXPECT_EQ(t.Bet(1, bet::Buy4, 20_usd), 19_usd);
  EXPECT_LE(t.g.OnTable[1], 20_usd);
}

TEST(PlacementRepeater, HitsAreForgottenWhenNobodyHoldsTheBet) {
  AnnTable t;
  ASSERT_EQ(t.Bet(1, bet::Repeater2 + 5, 5_usd), 5_usd);  // Repeater 8
  t.g.Table.RepeaterCount[8] = 2;
  t.Bet(1, bet::Repeater2 + 5, -5_usd);
  EXPECT_EQ(t.g.Table.RepeaterCount[8], 0);
}

using AdjustCase = std::tuple<int, int, int, int>;  // bet, setting, request, expected

class PlacementAdjustTest : public testing::TestWithParam<AdjustCase> {};

TEST_P(PlacementAdjustTest, MovesToAWholePayoff) {
  const auto& [betId, setting, request, expected] = GetParam();
  LineTable t;
  t.Seat(1, "Ann", 100000_usd);
  t.g.Rules.MaxPlacardBet = 1000_usd;
  t.g.AdjustForPayoff[1].fill(setting);
  if (betId == bet::PassLineOdds) t.PassLineThen(5);
  EXPECT_EQ(t.Bet(1, betId, Money::Dollars(request)), Money::Dollars(expected))
      << BetName(betId) << " setting " << setting << " request " << request;
}

INSTANTIATE_TEST_SUITE_P(
    Settings, PlacementAdjustTest,
    testing::Values(AdjustCase{bet::Place4 + 2, 0, 10, 10},     // off: as asked
                    AdjustCase{bet::Place4 + 2, 1, 10, 6},      // 7:6 pays whole on multiples of 6: lower
                    AdjustCase{bet::Place4 + 2, 2, 10, 12},     // nearer
                    AdjustCase{bet::Place4 + 2, 2, 8, 6},       // nearer, downward
                    AdjustCase{bet::Place4 + 2, 1, 12, 12},     // already whole
                    AdjustCase{bet::Place4 + 2, 0, 2000, 996},  // reached the maximum: the lower multiple
                    AdjustCase{bet::Place4 + 1, 1, 12, 10},     // Place 5 at 7:5
                    AdjustCase{bet::PassLineOdds, 1, 15, 14},   // odds on 5 pay 3:2
                    AdjustCase{bet::Place4 + 2, 1, 3, 3}));     // nothing lower is a bet: left as asked, and told

TEST(PlacementAdjust, AnAmountThatCantBeAdjustedIsTold) {
  AnnTable t;
  t.g.AdjustForPayoff[1].fill(1);
  EXPECT_EQ(t.Bet(1, bet::Place4 + 2, 3_usd), 3_usd);
  EXPECT_EQ(t.LastMessage().Text,
            "Unable to auto-adjust bet for proper odds payoff.\nThe minimum bet for proper odds payoff is: $6\n"
            "$3 which will be bet.");
}

}  // namespace
