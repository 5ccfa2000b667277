// Expected shares, the chi-square test and its texts, and the two screens' data.

#include "stats/roll_totals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <tuple>

namespace {

// Every diamond cell holds 10 x die1 + die2, placed by the table's own layout rule.
ProbabilityPlane NumberedPlane() {
  ProbabilityPlane p{};
  for (int x = 2; x <= 7; ++x)
    for (int y = x - 1; y <= 13 - x; ++y) p[x][y] = y < 7 ? 10 * (x - 1) + (y - x + 2) : 10 * (x + y - 7) + (8 - x);
  return p;
}

TEST(RollTotalsKinds, FairAndSkewedPercentages) {
  EXPECT_EQ(KindWays(17), 24);
  EXPECT_EQ(KindWays(21), 16);
  const ProbabilityPlane numbered = NumberedPlane();
  const std::tuple<int, double, double> kinds[] = {{7, 100.0 / 6, 0.231},   {22, 100.0 / 36, 0.012},
                                                   {40, 100.0 / 36, 0.061}, {12, 100.0 / 36, 0.066},
                                                   {78, 100.0 / 6, 0.081},  {90, 100, 100}};
  for (const auto& [kind, fair, skewed] : kinds) {
    EXPECT_NEAR(KindPercent(kind, false, numbered), fair, 1e-12) << kind;
    EXPECT_NEAR(KindPercent(kind, true, numbered), skewed, 1e-12) << kind;
  }
}

TEST(RollTotalsChi, PValueOnKnownValues) {
  // x, degrees of freedom, p and the tolerance. The last three: far below what the series
  // can resolve; a series past the largest double still ends; a vanishing term, the odd
  // branch.
  using Chi = std::tuple<double, int, double, double>;
  for (const auto& [x, df, p, tol] :
       {Chi{3.841, 1, 0.05, 1e-4}, Chi{6.635, 1, 0.01, 1e-4}, Chi{11.070, 5, 0.05, 1e-4}, Chi{18.307, 10, 0.05, 1e-4},
        Chi{2, 2, std::exp(-1.0), 1e-12}, Chi{6, 4, 4 * std::exp(-3.0), 1e-12}, Chi{0, 5, 1, 0}, Chi{5, 0, 1, 0},
        Chi{200, 10, 0, 1e-15}, Chi{1440, 1, 1e-18, 0}, Chi{2000, 10, 0.001, 0}})
    EXPECT_NEAR(Chi2Pval(x, df), p, tol) << x << " df " << df;
}

TEST(RollTotalsChi, Texts) {
  const std::pair<double, const char*> pTexts[] = {{1, "p=100%"},        {0.005, "p<0.01%"},   {1e-18, "p<0.01%"},
                                                   {0.001, "p<0.01%"},   {0.01, "p=1.0%"},     {0.05, "p=5.0%"},
                                                   {0.1234, "p=12.34%"}, {0.99999, "p=100.0%"}};
  for (const auto& [p, text] : pTexts) EXPECT_EQ(PValueText(p), text) << p;
  using Fp = std::tuple<double, int, const char*>;
  for (const auto& [v, d, text] :
       {Fp{3.14159, 2, "3.14"}, Fp{2, 2, "2"}, Fp{1234567.891, 2, "1,234,567.89"}, Fp{-1234.5, 1, "-1,234.5"},
        Fp{0.00004, 4, "<0.0001"}, Fp{0, 4, "0"}, Fp{-0.00001, 4, "0"}, Fp{2.5, 0, "3"}, Fp{-2.5, 0, "-2"},
        Fp{0.4, 0, "0"}, Fp{999.99996, 4, "1,000"}})
    EXPECT_EQ(FormatPrecision(v, d), text) << v << " " << d;
  EXPECT_EQ(ChiSquareText(100), "100");
  EXPECT_EQ(ChiSquareText(100.00001), ">100");
  EXPECT_EQ(ChiSquareCell(1 + 3e-11, 1), 0);  // 9e-22 rounds away at 20 decimals
  EXPECT_EQ(GapPercentText(0.0004), "< 0.001");
  EXPECT_EQ(GapPercentText(12.5), "12.5");
}

// All 36 pairs once (seat 3 shooting), then 36 more sevens as 3.4: the seven is rolled
// 42 times for 12 expected, and each face 3 of die 1 and 4 of die 2 likewise.
std::unique_ptr<Statistics> SevensHeavy() {
  auto s = std::make_unique<Statistics>();
  for (int a = 1; a <= 6; ++a)
    for (int b = 1; b <= 6; ++b) CountRoll(*s, 3, a, b);
  for (int i = 0; i < 36; ++i) CountRoll(*s, 0, 3, 4);
  return s;
}

TEST(RollTotalsScreen, ChiSquareTestsByDisplay) {
  auto s = SevensHeavy();
  ProbabilityPlane plane = NumberedPlane();
  plane[2][1] = 0;  // 1.1 never comes
  // Display, scope, players listed, skewed; the items, the chi-square sum (-1: not checked),
  // its degrees of freedom and its p (none: not checked).
  const std::tuple<int, int, bool, bool, size_t, double, int, const char*> cases[] = {
      {0, kSessionScope, false, false, 11, 90, 10, "p<0.01%"},  // 75 for the seven, w / 2 for the rest
      {3, kSessionScope, false, false, 12, 90, 5, "p<0.01%"},   // die 2: 75 and five faces at 3
      {1, kSessionScope, true, false, 21, 0, 20, "p=100%"},     // seat 3 rolled each pair once
      {2, kLastHandScope, false, false, 36, 0, 0, "p=100%"},    // no rolls: nothing in the test
      {0, kSessionScope, false, true, 11, -1, 9, nullptr},      // a zero cell drops out of df
  };
  for (const auto& [display, scope, players, skewed, items, sum, df, p] : cases) {
    RollTotalsRequest r{
        .Display = display, .ScopeBase = scope, .PlayerList = players, .Skewed = skewed, .Plane = &plane};
    r.Selected[3] = true;
    const RollTotalsView v = ComputeRollTotals(*s, r);
    ASSERT_EQ(v.Items.size(), items);
    if (sum >= 0) {
      EXPECT_NEAR(v.Chi.Sum, sum, 1e-9) << display;
    }
    EXPECT_EQ(v.Chi.Df, df) << display;
    if (p) {
      EXPECT_EQ(v.Chi.PText, p) << display;
    }
    EXPECT_EQ(v.Items[0].RollsSinceLast, scope == kSessionScope ? s->RollsSince[v.Items[0].Kind] : -1);
  }
  RollTotalsRequest faces;
  faces.Display = 3;
  const RollTotalsView v = ComputeRollTotals(*s, faces);
  EXPECT_EQ(v.Die1Chi.Title + " " + v.Die1Chi.SumText + " " + v.Chi.Title, "chi-square 90 chisquare");
  faces.Display = 2;
  EXPECT_EQ(ComputeRollTotals(*s, faces).Items[1].Kind, 22);  // 1.2 alone
  faces.Display = 1;
  EXPECT_EQ(ComputeRollTotals(*s, faces).Items[1].Kind, 3);  // 1.2 either way round
  faces.PlayerList = true;
  EXPECT_EQ(ComputeRollTotals(*s, faces).PlayerNote, "No players selected");
}

TEST(RollTotalsFreqs, ListOrderAndView) {
  const auto& kinds = RollFreqsKinds();
  std::array<int, kRollKinds> seen{};
  for (uint8_t k : kinds) ++seen[k];
  for (int k = 0; k < kRollKinds; ++k) EXPECT_EQ(seen[k], k >= 2 && k <= 89 ? 1 : 0) << k;
  EXPECT_STREQ(RollKindText(kinds[58]), "Numbers 2,3,4,9,10,11,12");
  EXPECT_STREQ(RollKindText(kinds[75]), "Numbers 11,12");

  auto s = SevensHeavy();
  const RollFreqsView v = ComputeRollFreqs(*s, 7, false, NumberedPlane());
  EXPECT_DOUBLE_EQ(v.AverageRolls, 6);
  // Sevens at rolls 6, 11, 16, 21, 26, 31, then 37 to 72.
  EXPECT_EQ((std::array{v.GapCount[1], v.GapCount[5], v.GapCount[6]}), (std::array{35, 5, 2}));
  EXPECT_DOUBLE_EQ(v.GapPercent[1], 35.0 / 42 * 100);
}

}  // namespace
