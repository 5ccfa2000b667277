// The exact edge of the bets against the house edges worked out by hand from the dice.

#include "engine/house_edge.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

#include "engine/bets.h"

namespace {

// The bet, the point, and the edges of BetEdge and of DecisionEdge (none when there is none).
using EdgeCase = std::tuple<const char*, int, std::optional<double>, std::optional<double>>;

class HouseEdge : public testing::TestWithParam<EdgeCase> {};

TEST_P(HouseEdge, IsTheEdgeOfTheDice) {
  const auto& [name, point, wantEdge, wantDecision] = GetParam();
  RuleSet rules;
  SetDefaultRules(rules);
  const int bet = FindBetByName(name);
  ASSERT_NE(bet, 0) << name;
  double edge = 99;
  EXPECT_EQ(BetEdge(rules, bet, point, edge) == 0, wantEdge.has_value()) << name;
  if (wantEdge) {
    EXPECT_NEAR(edge, *wantEdge, 1e-12) << name;
  }
  double decision = 99;
  EXPECT_EQ(DecisionEdge(rules, bet, decision), wantDecision.has_value()) << name;
  if (wantDecision) {
    EXPECT_NEAR(decision, *wantDecision, 1e-12) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(
    DefaultRules, HouseEdge,
    testing::Values(EdgeCase{"Pass Line", 0, -7.0 / 495, -7.0 / 495}, EdgeCase{"Don't Pass", 0, -3.0 / 220, -3.0 / 220},
                    // The Come row keeps the bets decided on their first roll: 7 and 11 win, 2, 3 and 12 lose.
                    EdgeCase{"Come", 0, -7.0 / 495, 1.0 / 3}, EdgeCase{"Don't Come", 0, -3.0 / 220, -5.0 / 11},
                    EdgeCase{"Place 6", 0, -1.0 / 66, -1.0 / 66}, EdgeCase{"Place 5", 0, -1.0 / 25, -1.0 / 25},
                    EdgeCase{"Place 10", 0, -1.0 / 15, -1.0 / 15}, EdgeCase{"Big 8", 0, -1.0 / 11, -1.0 / 11},
                    EdgeCase{"Field", 0, -1.0 / 18, -1.0 / 18}, EdgeCase{"Hard 8", 0, -1.0 / 11, -1.0 / 11},
                    EdgeCase{"Hard 4", 0, -1.0 / 9, -1.0 / 9}, EdgeCase{"Seven", 0, -1.0 / 6, -1.0 / 6},
                    EdgeCase{"Two", 0, -5.0 / 36, -5.0 / 36},
                    // The lay vig of 5% of the win is charged up front, a part of the unit.
                    EdgeCase{"Lay 4", 0, -0.025, -0.025},
                    // True odds: no edge on any point, so none over all of them either.
                    EdgeCase{"Pass Line Odds", 4, 0.0, 0.0}, EdgeCase{"Don't Pass Odds", 0, std::nullopt, 0.0},
                    EdgeCase{"Fire", 0, std::nullopt, std::nullopt},
                    EdgeCase{"7 Point 7", 0, std::nullopt, std::nullopt}));

TEST(HouseEdge, FollowsTheTablesPayoffs) {
  RuleSet rules;
  SetDefaultRules(rules);
  const int place6 = FindBetByName("Place 6"), odds = FindBetByName("Pass Line Odds");
  rules.BetPayoff[place6].PayoffPay = 6_usd;  // even money for 6 to 6
  double edge = 0;
  ASSERT_EQ(BetEdge(rules, place6, 0, edge), 0);
  EXPECT_NEAR(edge, -1.0 / 11, 1e-12);
  // Odds paid short on the 4 only: the odds row then has no single edge.
  rules.BetPayoff[PointRow(BetFamily::ComeOdds, 4)].PayoffPay = 3_usd;
  rules.BetPayoff[PointRow(BetFamily::ComeOdds, 4)].PayoffFor = 2_usd;
  ASSERT_EQ(BetEdge(rules, odds, 4, edge), 0);
  EXPECT_NEAR(edge, 1.0 / 3 * 1.5 - 2.0 / 3, 1e-12);
  ASSERT_EQ(BetEdge(rules, odds, 10, edge), 0);
  EXPECT_NEAR(edge, 0, 1e-12);
  EXPECT_FALSE(DecisionEdge(rules, odds, edge));
  rules.BetPayoff[place6].PayoffFor = Money{};
  EXPECT_EQ(BetEdge(rules, place6, 0, edge), 9999) << "a payoff for 0";
}

TEST(HouseEdge, RollsPerHourInEveryUnit) {
  RuleSet rules;
  SetDefaultRules(rules);
  EXPECT_DOUBLE_EQ(RollsPerHour(rules), 120);
  const std::tuple<int, double, double> rates[] = {{kPerHour, 90, 90}, {kPerMinute, 2.5, 150}, {kPerSecond, 0.5, 1800}};
  for (const auto& [unit, perTime, hour] : rates) {
    rules.RollRateUnit = unit;
    rules.RollsPerTime = perTime;
    EXPECT_DOUBLE_EQ(RollsPerHour(rules), hour) << unit;
  }
}

}  // namespace
