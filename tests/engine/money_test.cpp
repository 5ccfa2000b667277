#include "engine/money.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

Money M(double d) { return Money::FromDouble(d); }

// The amount, then its text plain, grouped and in dollars.
using TextCase = std::tuple<double, const char*, const char*, const char*>;

class MoneyTextTest : public testing::TestWithParam<TextCase> {};

TEST_P(MoneyTextTest, ShowsWholeTwoOrFourDecimals) {
  const auto& [value, text, grouped, dollars] = GetParam();
  EXPECT_EQ(MoneyText(M(value)), text);
  EXPECT_EQ(MoneyTextGrouped(M(value)), grouped);
  EXPECT_EQ(DollarText(M(value)), dollars);
}

INSTANTIATE_TEST_SUITE_P(Amounts, MoneyTextTest,
                         testing::Values(TextCase{10, "10", "10", "$10"}, TextCase{12.5, "12.50", "12.50", "$12.50"},
                                         TextCase{0.0125, "0.0125", "0.0125", "$0.0125"},
                                         TextCase{0.05, "0.05", "0.05", "$0.05"}, TextCase{0, "0", "0", "$0"},
                                         TextCase{-12.5, "-12.50", "-12.50", "-$12.50"},
                                         TextCase{-0.0001, "-0.0001", "-0.0001", "-$0.0001"},
                                         TextCase{9999999, "9999999", "9,999,999", "$9999999"},
                                         TextCase{2000000000, "2000000000", "2,000,000,000", "$2000000000"},
                                         TextCase{1234.56, "1234.56", "1,234.56", "$1234.56"},
                                         TextCase{100, "100", "100", "$100"}));

TEST(MoneyArithmetic, ProductsAreExactAndRoundHalfToEven) {
  EXPECT_EQ(MulMoney(M(1.5), M(2)), M(3));
  EXPECT_EQ(MulMoney(M(0.0001), M(0.5)), M(0));       // 0.00005 → even 0
  EXPECT_EQ(MulMoney(M(0.0003), M(0.5)), M(0.0002));  // 0.00015 → even 0.0002
  EXPECT_EQ(MulMoney(M(-0.0003), M(0.5)), M(-0.0002));
  // Large amounts don't overflow in the product.
  EXPECT_EQ(MulMoney(Money::Dollars(9000000000LL), M(2)), Money::Dollars(18000000000LL));
  // Past 64 bits the product is formed in 128.
  EXPECT_EQ(MulMoney(Money::FromRaw(999999999999999999LL), M(3.0001)), Money::FromRaw(3000099999999999997LL));
}

TEST(MoneyArithmetic, PayoffRatioFloorsTowardMinusInfinity) {
  EXPECT_EQ(MulDivMoney(M(7), M(3), M(2)), M(10.5));
  EXPECT_EQ(MulDivMoney(M(10), M(1), M(3)), M(3.3333));
  EXPECT_EQ(MulDivMoney(M(10), M(-1), M(3)), M(-3.3334));
  EXPECT_EQ(MulDivMoney(M(10), M(1), M(0)), M(0));
  const Money large = Money::FromRaw(999999999999999999LL);  // a product past 64 bits
  EXPECT_EQ(MulDivMoney(large, M(3), M(2)), Money::FromRaw(1499999999999999998LL));
  EXPECT_EQ(MulDivMoney(-large, M(3), M(2)), Money::FromRaw(-1499999999999999999LL));
}

TEST(MoneyArithmetic, FloorToUnitGoesDownAlsoForLosses) {
  EXPECT_EQ(FloorToUnit(M(10.5), M(1)), M(10));
  EXPECT_EQ(FloorToUnit(M(-10.5), M(1)), M(-11));
  EXPECT_EQ(FloorToUnit(M(-10), M(5)), M(-10));
  EXPECT_EQ(FloorToUnit(M(12.349), M(0.01)), M(12.34));
  EXPECT_EQ(FloorToUnit(M(7), M(0)), M(7));
  EXPECT_TRUE(IsMultipleOf(M(15), M(5)));
  EXPECT_FALSE(IsMultipleOf(M(7), M(5)));
  EXPECT_FALSE(IsMultipleOf(M(7), M(0)));
}

TEST(MoneyArithmetic, FromDoubleRoundsToTheNearestTenThousandth) {
  EXPECT_EQ(Money::FromDouble(-2.5).raw, -25000);
  EXPECT_EQ(Money::FromDouble(10.0 / 3.0).raw, 33333);
  EXPECT_EQ(Money::FromDouble(-10.0 / 3.0).raw, -33333);
  EXPECT_EQ(Money::FromDouble(2.0 / 3.0).raw, 6667);
}

using ParseCase = std::tuple<const char*, bool, double>;  // the text, taken, its value

class MoneyParseTest : public testing::TestWithParam<ParseCase> {};

TEST_P(MoneyParseTest, AcceptsTypedAmountsAndRefusesGarbage) {
  const auto& [text, ok, value] = GetParam();
  Money out = 777_usd;
  std::string error;
  EXPECT_EQ(ParseMoney(text, out, error), ok) << text;
  EXPECT_EQ(out, ok ? M(value) : 777_usd) << text << " (a refused text leaves the amount as it was)";
  if (ok) EXPECT_TRUE(error.empty()) << error;
  else EXPECT_NE(error.find("is not an amount of money"), std::string::npos) << error;
}

INSTANTIATE_TEST_SUITE_P(Texts, MoneyParseTest,
                         testing::Values(ParseCase{"10", true, 10}, ParseCase{" 12.5 ", true, 12.5},
                                         ParseCase{"$1,000.25", true, 1000.25}, ParseCase{"-3", true, -3},
                                         ParseCase{"-$3.10", true, -3.1}, ParseCase{"0.0125", true, 0.0125},
                                         ParseCase{".5", true, 0.5}, ParseCase{"1.50000", true, 1.5},
                                         ParseCase{"", false, 0}, ParseCase{"abc", false, 0},
                                         ParseCase{"12abc", false, 0}, ParseCase{"1.2.3", false, 0},
                                         ParseCase{"0.00001", false, 0}, ParseCase{"1,00", false, 0},
                                         ParseCase{"$", false, 0}, ParseCase{"-", false, 0},
                                         ParseCase{"99999999999999999999", false, 0}, ParseCase{"1 000", false, 0}));

}  // namespace
