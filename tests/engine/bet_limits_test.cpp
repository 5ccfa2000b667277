#include "engine/bet_limits.h"

#include <gtest/gtest.h>

#include <tuple>

#include "engine/bets.h"
#include "storage/rules.h"

namespace {

RuleSet DefaultRules() {
  RuleSet r;
  SetDefaultRules(r);
  return r;
}

// ---- Maximum by bet --------------------------------------------------------------------

using MaximumCase = std::tuple<int, int64_t>;  // the bet, its maximum in ten-thousandths

class BetLimitsMaximumTest : public ::testing::TestWithParam<MaximumCase> {};

TEST_P(BetLimitsMaximumTest, AtTheDefaults) {
  const auto& [betId, expectedRaw] = GetParam();
  EXPECT_EQ(RuleMaximum(DefaultRules(), betId), Money::FromRaw(expectedRaw)) << BetName(betId);
}

constexpr int64_t D = Money::kScale;
constexpr int kPlace6 = 33;

// Table maximum 1000, prop payoff cap 5000.
INSTANTIATE_TEST_SUITE_P(
    BetLimits, BetLimitsMaximumTest,
    ::testing::Values(MaximumCase{kPlace6, 1000 * D}, MaximumCase{bet::PassLine, 1000 * D},
                      MaximumCase{bet::Lay4, 2000 * D},  // lays to win the table maximum: 1000 × 2 / 1
                      MaximumCase{bet::Hard4, 714 * D},  // floor(5000 / 7)
                      MaximumCase{bet::Eleven, 333 * D},
                      MaximumCase{bet::Seven, 1000 * D},  // 1250, held to the table maximum
                      MaximumCase{bet::Hop55, 166 * D}, MaximumCase{bet::MakeAll, 28 * D},
                      MaximumCase{bet::Point7, 714 * D},
                      MaximumCase{bet::CAndE, 666 * D},         // Eleven at 15: 5000 / 15 × 2 = 666.67
                      MaximumCase{bet::Horn, 666 * D},          // Two at 30: 5000 / 30 × 4
                      MaximumCase{bet::World, 833 * D},         // Two at 30: 5000 / 30 × 5
                      MaximumCase{bet::Midway, 1000 * D},       // best row 2:1 gives 2500
                      MaximumCase{bet::SevenPoint7, 1000 * D},  // best row 3:1 gives 1666
                      MaximumCase{bet::HotRoller, 25 * D},      // 200:1
                      MaximumCase{bet::SharpShooter, 16 * D},   // 299:1
                      MaximumCase{bet::RideTheLine, 50 * D},    // 100:1
                      MaximumCase{bet::Fire, 5 * D},            // 999:1 gives 5.005
                      MaximumCase{bet::Repeater2, 128 * D},     // 5000 / 39 = 128.2051..., in whole checks
                      MaximumCase{102, 56 * D},                 // Repeater 6: 5000 / 89 = 56.18
                      MaximumCase{bet::PassLineOdds, 1000 * D}));

TEST(BetLimitsTest, TableMaximumIsWholeChecksAndCapsEveryPayoffLimit) {
  RuleSet r = DefaultRules();
  r.CheckDenom[1] = 5_usd;
  r.MaxPlacardBet = 1003_usd;
  EXPECT_EQ(RuleMaximum(r, kPlace6), 1000_usd);
  r.MaxPlacardBet = 20_usd;
  EXPECT_EQ(RuleMaximum(r, bet::Hard4), 20_usd);
  EXPECT_EQ(RuleMaximum(r, bet::Repeater2), 20_usd);
  EXPECT_EQ(RuleMaximum(r, 3 /* Lay 6 */), 20_usd);
}

TEST(BetLimitsTest, TableMinimumIsTheFloor) {
  RuleSet r = DefaultRules();
  r.MinPlacardBet = 50_usd;
  EXPECT_EQ(RuleMaximum(r, bet::Fire), 50_usd);
  EXPECT_EQ(RuleMaximum(r, bet::MakeAll), 50_usd);
  EXPECT_EQ(RuleMaximum(r, bet::Hard4), 714_usd);
}

TEST(BetLimitsTest, LayPayingMoreThanEvenTakesLessThanTheTableMaximum) {
  RuleSet r = DefaultRules();
  r.BetPayoff[bet::Lay4].PayoffPay = 2_usd;
  r.BetPayoff[bet::Lay4].PayoffFor = 1_usd;
  EXPECT_EQ(RuleMaximum(r, bet::Lay4), 500_usd);
}

TEST(BetLimitsTest, PayoffLimitsFollowTheBestRow) {
  RuleSet r = DefaultRules();
  r.BetPayoff[bet::Craps].PayoffPay = 20_usd;  // now above Eleven's 15
  EXPECT_EQ(RuleMaximum(r, bet::CAndE), 500_usd);
  r.BetPayoff[bet::Eleven].PayoffPay = 49_usd;
  r.BetPayoff[bet::Eleven].PayoffFor = 2_usd;  // 24.5 to 1 still below Two's 30
  EXPECT_EQ(RuleMaximum(r, bet::Horn), 666_usd);
  r.MidwayPayoff[5].PayoffPay = 10_usd;
  EXPECT_EQ(RuleMaximum(r, bet::Midway), 500_usd);
  r.HotRollerPayoff[7].PayoffPay = 1_usd;  // the best row is now 50:1
  EXPECT_EQ(RuleMaximum(r, bet::HotRoller), 100_usd);
  r.FirePayoff[5].PayoffPay = 49_usd;
  r.FirePayoff[6].PayoffFor = 10_usd;  // 999 to 10 is now the best: 5000 × 10 / 999 = 50.05
  EXPECT_EQ(RuleMaximum(r, bet::Fire), 50_usd);
}

// ---- Odds limit ------------------------------------------------------------------------

// The method, the odds bet, the point (for the line odds), the flat bet in dollars, the
// multiple in hundredths (0: the default), the limit in cents, and why.
using OddsCase = std::tuple<int, int, int, int64_t, int64_t, int64_t, const char*>;

class BetLimitsOddsTest : public ::testing::TestWithParam<OddsCase> {};

TEST_P(BetLimitsOddsTest, Limit) {
  const auto& [method, oddsBet, point, flat, multipleHundredths, expectedCents, why] = GetParam();
  RuleSet r = DefaultRules();
  r.OddsCalcMethod = method;
  if (multipleHundredths != 0)
    r.OddsAllowed410 = r.OddsAllowed59 = r.OddsAllowed68 = Money::FromRaw(multipleHundredths * 100);
  EXPECT_EQ(OddsLimit(r, oddsBet, point, Money::Dollars(flat)), Money::FromRaw(expectedCents * 100)) << why;
}

constexpr int kComeOdds5 = 26, kComeOdds6 = 27, kDcOdds5 = 14, kDcOdds6 = 15;

INSTANTIATE_TEST_SUITE_P(
    BetLimits, BetLimitsOddsTest,
    ::testing::Values(
        // 0 Automatic: 3, 4, 5 times by number.
        OddsCase{0, bet::PassLineOdds, 5, 10, 0, 4000, "full odds on a $10 line bet on 5"},
        OddsCase{0, bet::PassLineOdds, 4, 10, 0, 3000, "3 times on 4"},
        OddsCase{0, bet::PassLineOdds, 8, 10, 0, 5000, "5 times on 8"},
        OddsCase{0, kComeOdds6, 0, 7, 0, 3500, "the number of a Come odds bet is its row"},
        OddsCase{0, bet::Come10Odds, 6, 5, 0, 1500, "the point doesn't matter off the line"},
        OddsCase{0, bet::PassLineOdds, 5, 5, 300, 1800, "triple odds: single odds 6 on $5, times 3"},
        OddsCase{0, bet::PassLineOdds, 6, 15, 100, 2500, "full single odds on the 6"},
        OddsCase{0, bet::PassLineOdds, 5, 5, 400, 2000, "4 times isn't raised"},
        OddsCase{0, bet::PassLineOdds, 5, 5, 150, 700, "a fractional multiple is floored to the check"},
        // Don't side: the win is limited, the wager is win × y / x.
        OddsCase{0, bet::DontCome4Odds, 0, 10, 0, 6000, "lay 60 to win 30 on the 4"},
        OddsCase{0, kDcOdds6, 0, 10, 0, 6000, "lay 60 to win 50 on the 6"},
        OddsCase{0, bet::DontPassOdds, 5, 10, 0, 6000, "lay 60 to win 40 on the 5"},
        // 1 and 4: m × B raised to a whole payoff in some check size, below (m + 1) × B.
        OddsCase{1, bet::PassLineOdds, 5, 5, 300, 1600, "15 on the 5 becomes 16"},
        OddsCase{4, bet::PassLineOdds, 5, 5, 300, 1600, "rule 4 is rule 1"},
        OddsCase{4, bet::PassLineOdds, 6, 15, 100, 2500, "a $5 check pays 6 for 5"},
        OddsCase{4, bet::PassLineOdds, 6, 10, 100, 1000, "25 would reach double odds"},
        OddsCase{4, bet::PassLineOdds, 6, 1, 100, 100, "no candidate fits: the plain limit"},
        OddsCase{4, bet::PassLineOdds, 4, 5, 300, 1500, "2 to 1 is always whole"},
        // 2: floored to u × y, then one step more while under (m + 1) × B.
        OddsCase{2, bet::PassLineOdds, 5, 5, 300, 1600, "14 and a step of 2"},
        OddsCase{2, kComeOdds6, 0, 7, 200, 1500, "10 and a step of 5"},
        OddsCase{2, bet::PassLineOdds, 6, 3, 200, 500, "a further step would pass 9"},
        OddsCase{2, bet::PassLineOdds, 6, 1, 100, 100, "a result of 0 reverts"},
        OddsCase{2, bet::PassLineOdds, 5, 10, 300, 3000, "already whole: no step added"},
        OddsCase{2, kDcOdds5, 0, 5, 300, 2400, "don't side: win 16 in steps of 2, wager 24"},
        // 3: whole in checks stands, otherwise up to a step of u × y.
        OddsCase{3, bet::PassLineOdds, 5, 5, 300, 1500, "15 stands"},
        OddsCase{3, bet::PassLineOdds, 5, 5, 150, 800, "7.5 goes up to 8"},
        OddsCase{3, kComeOdds6, 0, 5, 250, 1500, "12.5 goes up to 15"},
        // 5: single odds on the flat bet, times m.
        OddsCase{5, bet::PassLineOdds, 6, 15, 200, 5000, "full double odds: 25 × 2"},
        OddsCase{5, kComeOdds5, 0, 5, 200, 1200, "6 × 2"},
        OddsCase{5, bet::PassLineOdds, 4, 5, 300, 1500, "on the 4 nothing to raise"},
        // Nothing to lay odds against.
        OddsCase{0, bet::PassLineOdds, 7, 10, 0, 0, "no point"},
        OddsCase{0, bet::PassLineOdds, 0, 10, 0, 0, "no point"},
        OddsCase{0, bet::PassLineOdds, 6, 0, 0, 0, "no line bet"},
        OddsCase{0, kPlace6, 6, 10, 0, 0, "not an odds bet"}));

TEST(BetLimitsTest, OddsAreCappedByTheMaxOddsBetNotTheTableMaximum) {
  RuleSet r = DefaultRules();
  EXPECT_EQ(OddsLimit(r, bet::PassLineOdds, 6, 500_usd), 2500_usd);  // above the table maximum
  r.MaxOddsBet = 103_usd;
  r.CheckDenom[1] = 5_usd;
  EXPECT_EQ(OddsLimit(r, bet::PassLineOdds, 6, 100_usd), 100_usd);
  EXPECT_EQ(OddsLimit(r, bet::DontCome4Odds, 0, 100_usd), 100_usd);  // the wager, not the win
}

TEST(BetLimitsTest, OddsLimitIsAMultipleOfTheSmallestCheck) {
  RuleSet r = DefaultRules();
  r.CheckDenom = {Money{}, 5_usd, 25_usd, 100_usd, 500_usd, 1000_usd};
  for (int method = 0; method <= 5; ++method) {
    r.OddsCalcMethod = method;
    for (int64_t flat : {5, 10, 15, 25, 35})
      for (int point : {4, 5, 6, 8, 9, 10})
        for (int b : {bet::PassLineOdds, bet::DontPassOdds}) {
          Money limit = OddsLimit(r, b, point, Money::Dollars(flat));
          EXPECT_TRUE(IsMultipleOf(limit, 5_usd)) << method << " " << flat << " " << point << " " << b;
          EXPECT_GT(limit, Money{}) << method << " " << flat << " " << point << " " << b;
        }
  }
}

}  // namespace
