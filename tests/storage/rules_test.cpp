#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <vector>

#include "engine/bets.h"
#include "storage/rule_validation.h"

namespace {

constexpr int kPlace6 = 33;

Money Cents(int64_t c) { return Money::FromRaw(c * 100); }

RuleSet Defaults() {
  RuleSet r;
  SetDefaultRules(r);
  return r;
}

// ---- Defaults ----------------------------------------------------------------------------

// Every bet's unit is the "for" of its row in $1 checks; only the Repeaters read "for".
TEST(RuleSetTest, DefaultRowsHaveTheirUnitAndWord) {
  RuleSet r = Defaults();
  for (int b = 1; b <= kBets; ++b) {
    const PayoffRow& row = r.BetPayoff[b];
    EXPECT_EQ(row.BetUnit, row.PayoffFor) << BetName(b);
    EXPECT_EQ(row.PayoffToFor.raw == 0, b >= bet::Repeater2) << BetName(b);
  }
}

template <size_t N>
void ExpectTable(const std::array<PayoffRow, N>& table, size_t first, std::vector<int64_t> pays, const char* what) {
  ASSERT_EQ(N - first, pays.size()) << what;
  for (size_t i = first; i < N; ++i) {
    EXPECT_EQ(table[i].PayoffPay, Money::Dollars(pays[i - first])) << what << " row " << i;
    EXPECT_EQ(table[i].PayoffFor, 1_usd) << what << " row " << i;
    EXPECT_NE(table[i].PayoffToFor.raw, 0) << what << " row " << i;
  }
}

TEST(RuleSetTest, SpecialTablesStartAtTheirDefaults) {
  RuleSet r = Defaults();
  ExpectTable(r.FieldPayoff, 1, {2, 1, 1, 1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, 1, 1, 1, 1, 1, 2}, "Field");
  ExpectTable(r.SevenPointSevenPayoff, 1, {2, 3}, "7 Point 7");
  ExpectTable(r.MidwayPayoff, 1, {2, 1, 1, 1, 2}, "Midway");
  ExpectTable(r.HotRollerPayoff, 1, {-1, -1, 5, 10, 20, 50, 200}, "Hot Roller");
  ExpectTable(r.SharpShooterPayoff, 1, {-1, -1, -1, 5, 9, 19, 29, 49, 99, 199, 299}, "Sharp Shooter");
  ExpectTable(r.RideLinePayoff, 1, {-1, -1, -1, 1, 2, 3, 6, 10, 20, 30, 40, 100}, "Ride The Line");
  ExpectTable(r.FirePayoff, 0, {-1, -1, -1, -1, 24, 249, 999}, "Fire");
}

TEST(RuleSetTest, DefaultRulesRestoreEveryFieldAfterChanges) {
  RuleSet r = Defaults();
  r.MaxPlacardBet = 5_usd;
  r.CheckDenom[1] = 5_usd;
  r.BetPayoff[kPlace6] = PayoffRow{};
  r.FirePayoff[0].PayoffPay = 7_usd;
  r.CompBets[bet::Field] = false;
  r.WorkOnComeOut[kPlace6][3] = true;
  r.Notices = 0;
  r.RollsPerTime = 9;
  SetDefaultRules(r);

  // Minimums, maximums, vig, ATM and comp rate; the checks; notices and the roll rate.
  EXPECT_EQ((std::vector<Money>{r.MinPlacardBet, r.MinPlacardPropBet, r.MaxPlacardBet, r.MaxPropBetPayoff, r.MaxOddsBet,
                                r.BuyVigPct, r.LayVigPct, r.AtmAmount, r.CompRate}),
            (std::vector<Money>{1_usd, 1_usd, 1000_usd, 5000_usd, 3000_usd, Cents(5), Cents(5), 500_usd, 30_usd}));
  EXPECT_EQ(r.CheckDenom, (decltype(r.CheckDenom){Money{}, 1_usd, 5_usd, 25_usd, 100_usd, 500_usd}));
  EXPECT_EQ((std::vector<double>{double(r.Notices), r.RollsPerTime, double(r.RollRateUnit)}),
            (std::vector<double>{15, 120, kPerHour}));
  EXPECT_EQ(r.BetPayoff[kPlace6].PayoffPay, 7_usd);
  EXPECT_EQ(r.BetPayoff[kPlace6].BetUnit, 6_usd);
  EXPECT_EQ(r.FirePayoff[0].PayoffPay, -1_usd);
  EXPECT_TRUE(r.CompBets[bet::Field]);
  EXPECT_FALSE(r.CompBets[bet::DontPassOdds]);  // odds carry no edge, so earn no comps
  for (int s = 0; s < kSeats; ++s) {
    EXPECT_FALSE(r.WorkOnComeOut[kPlace6][s]);
    EXPECT_FALSE(r.WorkOnComeOut[bet::DontCome][s]);
    EXPECT_TRUE(r.WorkOnComeOut[bet::Hard4][s]);
  }
}

TEST(RuleSetTest, BetUnitsFollowTheSmallestCheck) {
  RuleSet r = Defaults();
  r.CheckDenom[1] = Cents(25);
  ComputeBetUnits(r);
  EXPECT_EQ(r.BetPayoff[bet::Lay4].BetUnit, Cents(50));
  EXPECT_EQ(r.BetPayoff[34].BetUnit, Cents(150));  // Place 8, 7:6
  EXPECT_EQ(r.FieldPayoff[1].BetUnit, Cents(25));
  SetDefaultDenominations(r);
  EXPECT_EQ(r.BetPayoff[bet::Lay4].BetUnit, 2_usd);
  EXPECT_EQ(PayoffUnit(r), 1_usd);
  r.AllowPennyPayoffs = true;
  EXPECT_EQ(PayoffUnit(r), Cents(1));
}

// ---- The word of a payoff row ----------------------------------------------------------

struct WordCase {
  int64_t x, y;
  bool startFor;
  char key;
  bool accepted;
  int64_t newX;
  bool endFor;
};

class PayoffWordTest : public ::testing::TestWithParam<WordCase> {};

TEST_P(PayoffWordTest, KeepsTheShownNumber) {
  const WordCase& c = GetParam();
  PayoffRow row{1_usd, Money::Dollars(c.x), c.startFor ? Money{} : Money::Dollars(-1), Money::Dollars(c.y)};
  EXPECT_EQ(PayoffWordKey(row, c.key), c.accepted);
  EXPECT_EQ(row.PayoffPay, Money::Dollars(c.newX));
  EXPECT_EQ(row.PayoffToFor.raw == 0, c.endFor);
  EXPECT_EQ(row.PayoffFor, Money::Dollars(c.y));
}

INSTANTIATE_TEST_SUITE_P(RuleSet, PayoffWordTest,
                         ::testing::Values(WordCase{1, 1, false, 'f', true, 0, true},  // 1 to 1 becomes 1 for 1: a push
                                           WordCase{7, 6, false, 'F', true, 1, true},  // 7 to 6 reads 7 for 6
                                           WordCase{39, 1, true, 't', true, 40, false},  // 40 for 1 reads 40 to 1
                                           WordCase{39, 1, true, 'T', true, 40, false},
                                           WordCase{9, 5, false, ' ', true, 4, true},
                                           WordCase{4, 5, true, ' ', true, 9, false},
                                           WordCase{9, 5, false, 't', true, 9, false},  // already "to"
                                           WordCase{39, 1, true, 'f', true, 39, true},  // already "for"
                                           WordCase{9, 5, false, 'x', false, 9, false},
                                           WordCase{9, 5, false, 'o', false, 9, false},
                                           WordCase{39, 1, true, '1', false, 39, true}));

// ---- Field presets ---------------------------------------------------------------------

struct Cell {
  int64_t x = 0, y = 1;
  bool forWord = false;
};

struct PresetCase {
  const char* name;
  std::array<Cell, 21> rows;  // rows 1..21: 1-1, 1-2, 1-3, 2-2, 1-4, 2-3, 1-5, 2-4, 3-3, 1-6,
                              // 2-5, 3-4, 2-6, 3-5, 4-4, 3-6, 4-5, 4-6, 5-5, 5-6, 6-6
};

constexpr Cell L{-1, 1, false}, Z{0, 1, false}, W{1, 1, false};

class FieldPresetTest : public ::testing::TestWithParam<PresetCase> {};

TEST_P(FieldPresetTest, SetsEveryRow) {
  const PresetCase& c = GetParam();
  RuleSet r = Defaults();
  SetFieldPreset(r, "&Pass Line");  // start from something else than the default
  ASSERT_TRUE(SetFieldPreset(r, c.name));
  for (int i = 1; i <= 21; ++i) {
    const Cell& e = c.rows[i - 1];
    EXPECT_EQ(r.FieldPayoff[i].PayoffPay, Money::Dollars(e.x)) << c.name << " row " << i;
    EXPECT_EQ(r.FieldPayoff[i].PayoffFor, Money::Dollars(e.y)) << c.name << " row " << i;
    EXPECT_EQ(r.FieldPayoff[i].PayoffToFor.raw == 0, e.forWord) << c.name << " row " << i;
    EXPECT_EQ(r.FieldPayoff[i].BetUnit, Money::Dollars(e.y)) << c.name << " row " << i;
  }
  // Every preset is a legal Field table.
  EXPECT_TRUE(ValidateRules(r, false).ok) << c.name << ": " << ValidateRules(r, false).message;
}

INSTANTIATE_TEST_SUITE_P(
    RuleSet, FieldPresetTest,
    ::testing::Values(
        PresetCase{"&Field w/ 2x on Two and Twelve",
                   {{{2, 1}, W, W, W, L, L, L, L, L, L, L, L, L, L, L, W, W, W, W, W, {2, 1}}}},
        PresetCase{"&Don't Pass (bar 12)",
                   {{W, W,       {1, 3},  {1, 3},  {1, 5}, {1, 5}, {1, 11}, {1, 11}, {1, 11}, L, L,
                     L, {1, 11}, {1, 11}, {1, 11}, {1, 5}, {1, 5}, {1, 3},  {1, 3},  L,       Z}}},
        PresetCase{"Place to &Lose 8",
                   {{Z, Z, Z, Z, Z, Z, Z, Z, Z, {4, 5}, {4, 5}, {4, 5}, {-5, 5}, {-5, 5}, {-5, 5}, Z, Z, Z, Z, Z, Z}}},
        PresetCase{"H&ard 8", {{Z, Z, Z, Z, Z, Z, Z, Z, Z, L, L, L, L, L, {9, 1}, Z, Z, Z, Z, Z, Z}}},
        PresetCase{"&Horn", {{{27, 4, true}, {12, 4, true}, L, L, L, L, L, L, L, L, L, L, L, L, L, L, L, L, L,
                              {12, 4, true}, {27, 4, true}}}},
        PresetCase{"&World", {{{26, 5, true}, {11, 5, true}, L, L, L, L, L, L, L, {0, 5, true},
                               {0, 5, true},  {0, 5, true},  L, L, L, L, L, L, L, {11, 5, true},
                               {26, 5, true}}}},
        PresetCase{"H&op 13", {{L, L, {15, 1}, L, L, L, L, L, L, L, L, L, L, L, L, L, L, L, L, L, L}}},
        PresetCase{"&Midway", {{L, L, L, L, L, L, W, W, {2, 1}, W, W, W, W, W, {2, 1}, L, L, L, L, L, L}}},
        PresetCase{"&Crapless Craps Pass Line", {{{-5, 7},  {-1, 2},  {-1, 3}, {-1, 3}, {-1, 5}, {-1, 5},  {-1, 11},
                                                  {-1, 11}, {-1, 11}, W,       W,       W,       {-1, 11}, {-1, 11},
                                                  {-1, 11}, {-1, 5},  {-1, 5}, {-1, 3}, {-1, 3}, {-1, 2},  {-5, 7}}}}));

TEST(FieldPresetMenuTest, UnknownNameChangesNothing) {
  RuleSet r = Defaults();
  SetFieldPreset(r, "&Horn");
  RuleSet before = r;
  EXPECT_FALSE(SetFieldPreset(r, "Horn"));
  EXPECT_FALSE(SetFieldPreset(r, ""));
  for (int i = 1; i <= 21; ++i) EXPECT_EQ(r.FieldPayoff[i].PayoffPay, before.FieldPayoff[i].PayoffPay);
}

TEST(FieldPresetMenuTest, SingleNumberPresetsTouchOnlyTheirTotals) {
  const int totals[22] = {0, 2, 3, 4, 4, 5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 10, 10, 11, 12};
  // The preset, the total it wins on, that total's row and the seven's.
  for (auto [name, winTotal, win, seven] : {std::tuple{"Place &6", 6, Cell{7, 6}, L},
                                            {"Buy &10 (5 % vig)", 10, Cell{39, 21}, L},
                                            {"Lay &4 (5% vig on win only)", 4, L, Cell{19, 40}}}) {
    RuleSet r = Defaults();
    ASSERT_TRUE(SetFieldPreset(r, name));
    for (int i = 1; i <= 21; ++i) {
      Cell e = totals[i] == winTotal ? win : totals[i] == 7 ? seven : Z;
      EXPECT_EQ(r.FieldPayoff[i].PayoffPay, Money::Dollars(e.x)) << name << " row " << i;
      EXPECT_EQ(r.FieldPayoff[i].PayoffFor, Money::Dollars(e.y)) << name << " row " << i;
      EXPECT_NE(r.FieldPayoff[i].PayoffToFor.raw, 0) << name << " row " << i;
    }
  }
}

// ---- Vigorish --------------------------------------------------------------------------

struct RoundCase {
  double value, unit;
  int mode;
  double expected;
};

class VigRoundToUnitTest : public ::testing::TestWithParam<RoundCase> {};

TEST_P(VigRoundToUnitTest, Rounds) {
  const RoundCase& c = GetParam();
  EXPECT_NEAR(RoundToUnit(c.value, c.unit, c.mode), c.expected, 1e-12)
      << c.value << " / " << c.unit << " mode " << c.mode;
}

INSTANTIATE_TEST_SUITE_P(Vig, VigRoundToUnitTest,
                         ::testing::Values(RoundCase{2.5, 1, kRoundNormal, 2},  // an exact half rounds down
                                           RoundCase{2.5005, 1, kRoundNormal, 2}, RoundCase{2.502, 1, kRoundNormal, 3},
                                           RoundCase{12.5, 5, kRoundNormal, 10}, RoundCase{12.5, 5, kRoundUp, 15},
                                           RoundCase{12.5, 5, kRoundHalfUp, 15}, RoundCase{2.5, 1, kRoundHalfUp, 3},

                                           RoundCase{15, 5, kRoundUp, 15},  // whole quotients stand in every mode
                                           RoundCase{0.07, 0.01, kRoundUp, 0.07}, RoundCase{-2.5, 1, kRoundDown, -3},
                                           RoundCase{-2.5, 1, kRoundNormal, -3},  // Int floors toward minus infinity
                                           RoundCase{-2.4, 1, kRoundUp, -2}, RoundCase{7, 0, kRoundNormal, 0},
                                           RoundCase{7, 0, kRoundUp, 0}));

struct VigCase {
  int bet;
  int64_t amountCents, smallestCents;
  bool penny;
  int mode;
  int64_t expectedCents;
};

class VigComputeTest : public ::testing::TestWithParam<VigCase> {};

TEST_P(VigComputeTest, BuyAndLay) {
  const VigCase& c = GetParam();
  RuleSet r = Defaults();
  r.CheckDenom[1] = Cents(c.smallestCents);
  r.AllowPennyPayoffs = c.penny;
  r.RoundBuyVig = r.RoundLayVig = c.mode;
  Money vig = c.bet <= bet::Lay10 ? ComputeLayVig(r, c.bet, Cents(c.amountCents))
                                  : ComputeBuyVig(r, c.bet, Cents(c.amountCents));
  EXPECT_EQ(vig, Cents(c.expectedCents)) << BetName(c.bet) << " " << c.amountCents << " cents, mode " << c.mode
                                         << (c.penny ? ", pennies" : "");
}

INSTANTIATE_TEST_SUITE_P(
    Vig, VigComputeTest,
    ::testing::Values(
        // 5% of $1: 0.05 rounds to nothing and so becomes one smallest check.
        VigCase{bet::Buy4, 100, 100, false, kRoundNormal, 100},
        // 5% of $50 is 2.5 checks: normal rounds the half down.
        VigCase{bet::Buy10, 5000, 100, false, kRoundNormal, 200}, VigCase{bet::Buy10, 5000, 100, false, kRoundUp, 300},
        VigCase{bet::Buy10, 5000, 100, false, kRoundDown, 200},
        VigCase{38, 3100, 100, false, kRoundNormal, 200},  // Buy 5: 1.55 rounds up normally
        VigCase{38, 3100, 100, false, kRoundDown, 100},
        VigCase{bet::Buy4, 5000, 500, false, kRoundNormal, 500},  // 2.5 on $5 checks: the unit
        VigCase{bet::Buy4, 20000, 500, false, kRoundUp, 1000},    // 10 on $5 checks is whole
        VigCase{bet::Buy4, 100, 100, true, kRoundNormal, 5},      // pennies: 0.05 as it is
        VigCase{bet::Buy4, 1010, 100, true, kRoundNormal, 50},    // 0.505: the half goes down
        VigCase{bet::Buy4, 1010, 100, true, kRoundUp, 51},
        VigCase{bet::Buy4, 140, 100, true, kRoundUp, 7},     // 0.07 is whole in cents
        VigCase{bet::Buy4, 10, 100, true, kRoundNormal, 1},  // 0.005 is never free: a cent
        // Lay vig is on the win: $100 on the 4 at 1:2 wins 50, vig 2.5 checks.
        VigCase{bet::Lay4, 10000, 100, false, kRoundNormal, 200}, VigCase{bet::Lay4, 10000, 100, false, kRoundUp, 300},
        VigCase{2, 6000, 100, false, kRoundNormal, 200},           // Lay 5, 2:3: win 40, vig 2
        VigCase{3, 6000, 100, false, kRoundNormal, 200},           // Lay 6, 5:6: win 50, vig 2.5
        VigCase{bet::Lay10, 2000, 100, false, kRoundNormal, 100},  // 0.5 becomes the unit
        VigCase{bet::Lay10, 3000, 100, true, kRoundNormal, 75},
        // Bets that carry no vig of that kind.
        VigCase{bet::Place4, 10000, 100, false, kRoundNormal, 0},
        VigCase{bet::Come4, 10000, 100, false, kRoundNormal, 0}, VigCase{bet::Buy4, 0, 100, false, kRoundNormal, 0},
        VigCase{bet::Lay4, 0, 100, false, kRoundUp, 0}));

TEST(VigTest, WrongFamilyOrZeroRateIsFree) {
  RuleSet r = Defaults();
  EXPECT_EQ(ComputeLayVig(r, bet::Buy4, 100_usd), Money{});
  EXPECT_EQ(ComputeBuyVig(r, bet::Lay4, 100_usd), Money{});
  r.BuyVigPct = Money{};
  r.LayVigPct = Money{};
  EXPECT_EQ(ComputeBuyVig(r, bet::Buy4, 100_usd), Money{});
  EXPECT_EQ(ComputeLayVig(r, bet::Lay4, 100_usd), Money{});
}

TEST(VigTest, LayOnALosingRowIsFreeButOnAPushCostsTheUnit) {
  RuleSet r = Defaults();
  r.BetPayoff[bet::Lay4].PayoffPay = -1_usd;
  EXPECT_EQ(ComputeLayVig(r, bet::Lay4, 100_usd), Money{});
  r.BetPayoff[bet::Lay4].PayoffPay = Money{};
  EXPECT_EQ(ComputeLayVig(r, bet::Lay4, 100_usd), 1_usd);
}

// ---- Validation ------------------------------------------------------------------------

const char kZeroCheck[] = "Check values must be greater than zero.";
const char kAscending[] =
    "Checks must be listed in ascending order with the lowest value check in the leftmost position.";
const char kDivisible[] = "All checks must be wholly divisible by the smallest check.";
const char kMinimumMultiple[] =
    "The minimum bet must be a multiple of the smallest check denomination, such as 5,  10,  15 ...";
const char kRateNotPositive[] = "The simulated roll rate must be greater than zero.";

// Rules changed from the defaults, and the first fault validation finds: its message
// (nullptr: the rules pass), the control that gets the focus and, unless -1, its index.
struct CheckCase {
  std::function<void(RuleSet&)> edit;
  const char* message;
  const char* control = "";
  int index = -1;
  bool edited = false;  // the roll rate was edited
};

class RuleValidationTest : public ::testing::TestWithParam<CheckCase> {};

TEST_P(RuleValidationTest, FindsTheFirstFault) {
  const CheckCase& c = GetParam();
  RuleSet r = Defaults();
  c.edit(r);
  const RuleCheck v = ValidateRules(r, c.edited);
  if (c.message == nullptr) {
    EXPECT_TRUE(v.ok) << v.message;
    return;
  }
  EXPECT_FALSE(v.ok);
  EXPECT_EQ(v.message, c.message);
  EXPECT_EQ(v.control, c.control);
  if (c.index >= 0) {
    EXPECT_EQ(v.index, c.index);
  }
}

// The five checks, with the minimums kept out of the way of the later steps.
CheckCase Checks(std::array<int64_t, 5> cents, const char* message = nullptr, int index = 0) {
  return {[cents](RuleSet& r) {
            for (int i = 1; i <= 5; ++i) r.CheckDenom[i] = Cents(cents[i - 1]);
            r.MinPlacardBet = r.MinPlacardPropBet = Max(r.CheckDenom[1], Cents(100));
          },
          message, "txtDenomination", index};
}

// Minimums over checks of 1, 4, 20, 100 and 400 times the smallest.
CheckCase Minimums(int64_t smallestCents, int64_t minCents, int64_t propMinCents, const char* message,
                   const char* control) {
  return {[=](RuleSet& r) {
            for (int i = 1; i <= 5; ++i) r.CheckDenom[i] = Cents(smallestCents * std::array{1, 4, 20, 100, 400}[i - 1]);
            r.MinPlacardBet = Cents(minCents);
            r.MinPlacardPropBet = Cents(propMinCents);
          },
          message, control};
}

// The roll rate is looked at only when it was edited.
CheckCase Rate(double rate, int unit, bool edited, const char* message) {
  return {[=](RuleSet& r) {
            r.RollsPerTime = rate;
            r.RollRateUnit = unit;
          },
          message, "txtRollsPerTime", -1, edited};
}

std::vector<PayoffRow*> TableRows(RuleSet& r, int table) {
  std::vector<PayoffRow*> rows;
  auto add = [&rows](auto& t, size_t first) {
    for (size_t i = first; i < t.size(); ++i) rows.push_back(&t[i]);
  };
  switch (table) {
    case kPayoffTableHotRoller: add(r.HotRollerPayoff, 1); break;
    case kPayoffTableSharpShooter: add(r.SharpShooterPayoff, 1); break;
    case kPayoffTableRideLine: add(r.RideLinePayoff, 1); break;
    case kPayoffTableFire: add(r.FirePayoff, 0); break;
    default: add(r.FieldPayoff, 1); break;
  }
  return rows;
}

// A single bet's payoff set to `pay` dollars; the focus goes to the bet's row of the list,
// or to `row` when the bet shares another's.
CheckCase Pays(int bet, int64_t pay, const char* message, int row = 0) {
  return {[=](RuleSet& r) { r.BetPayoff[bet].PayoffPay = Money::Dollars(pay); }, message, "txtPayoffs",
          PayoffCheckIndex(kPayoffTableBet, row != 0 ? row : bet)};
}

// One row of a table of payoffs set to x for y, on a table whose rows all lose first
// when asked; the index is looked at only when one row was changed.
CheckCase HandRow(int table, int row, int64_t x, int64_t y, bool allLose, const char* message) {
  return {[=](RuleSet& r) {
            std::vector<PayoffRow*> rows = TableRows(r, table);
            if (allLose)
              for (PayoffRow* p : rows) p->PayoffPay = -1_usd;
            PayoffRow* changed = rows[static_cast<size_t>(row - (table == kPayoffTableFire ? 0 : 1))];
            changed->PayoffPay = Money::Dollars(x);
            changed->PayoffFor = Money::Dollars(y);
          },
          message, "txtPayoffs", allLose ? -1 : PayoffCheckIndex(table, row)};
}

INSTANTIATE_TEST_SUITE_P(
    Faults, RuleValidationTest,
    ::testing::Values(                          // Denominations:
        Checks({100, 500, 500, 10000, 50000}),  // equal neighbours pass
        Checks({100, 100, 100, 100, 100}), Checks({100, 500, 400, 10000, 50000}, kAscending, 3),
        Checks({100, 500, 2500, 10000, 5000}, kAscending, 5),
        Checks({500, 300, 2500, 10000, 50000}, kAscending, 2),  // before divisibility
        Checks({200, 500, 2500, 10000, 50000}, kDivisible, 2), Checks({25, 50, 75, 100, 110}, kDivisible, 5),
        Checks({100, 0, 2500, 10000, 50000}, kZeroCheck, 2),
        Checks({100, 500, 0, 10000, 50000}, kZeroCheck, 3),  // zero before ascending
        Checks({0, 500, 2500, 10000, 50000}, kZeroCheck, 1), Checks({-100, 500, 2500, 10000, 50000}, kZeroCheck, 1),
        // Minimums:
        Minimums(500, 300, 500, "The minimum bet cannot be less than the smallest check denomination of 5",
                 "txtMinPlacardBet"),
        Minimums(500, 700, 500, kMinimumMultiple, "txtMinPlacardBet"),
        // The table minimum is looked at before the prop minimum.
        Minimums(500, 700, 300, kMinimumMultiple, "txtMinPlacardBet"),
        Minimums(500, 1000, 300, "The minimum prop bet cannot be less than the smallest check denomination of 5",
                 "txtMinPlacardPropBet"),
        Minimums(25, 100, 110,
                 "The minimum prop bet must be a multiple of the smallest check denomination, such as "
                 "0.25,  0.50,  0.75 ...",
                 "txtMinPlacardPropBet"),
        CheckCase{[](RuleSet& r) { r.MinPlacardBet = r.MaxPlacardBet = 25_usd; }, nullptr},
        CheckCase{[](RuleSet& r) {
                    r.MinPlacardBet = 25_usd;
                    r.MaxPlacardBet = 20_usd;
                  },
                  "The maximum bet must be greater than or equal to the minimum bet.", "txtMaxPlacardBet"},
        // Roll rates:
        Rate(0, kPerHour, false, nullptr), Rate(-5, kPerHour, false, nullptr),
        Rate(0, kPerHour, true, kRateNotPositive), Rate(-1, kPerSecond, true, kRateNotPositive),
        Rate(36000000, kPerHour, true, nullptr),
        Rate(36000001, kPerHour, true, "The maximum simulated hour rate is 36,000,000."),
        Rate(600000, kPerMinute, true, nullptr),
        Rate(600000.5, kPerMinute, true, "The maximum simulated minute rate is 600,000."),
        Rate(10000, kPerSecond, true, nullptr),
        Rate(10001, kPerSecond, true, "The maximum simulated second rate is 10,000."),
        Rate(10001, kPerHour, true, nullptr),
        // Pays: no single bet may pay nothing or lose on a win; some rows are no payoff of their own.
        Pays(33, 0, "The payoff on Place 6 must be positive."), Pays(33, -1, "The payoff on Place 6 must be positive."),
        Pays(bet::Lay4, 0, "The payoff on Lay 4 must be positive."),
        Pays(bet::Come4, 0, "The payoff on Come 4 must be positive."),
        Pays(bet::Hop55, 0, "The payoff on Hop 55 must be positive."),
        Pays(bet::Repeater12, 0, "The payoff on Repeater 12 must be positive."),
        Pays(26, 0, "The payoffs on Pass/Come 5 must be positive."),
        Pays(26, -1, "The payoffs on Pass/Come 5 must be positive."),
        Pays(bet::Come10Odds, 0, "The payoffs on Pass/Come 10 must be positive."),
        Pays(bet::DontCome4Odds, 0, "The payoffs on DP/DC 4 must be positive."),
        Pays(bet::PassLine, 0, "The payoffs on Passline/Come (c.o.) must be positive."),
        Pays(bet::Come, 0, "The payoffs on Passline/Come (c.o.) must be positive.", bet::PassLine),
        Pays(bet::Come, -1, "The payoffs on Passline/Come (c.o.) must be positive.", bet::PassLine),
        Pays(bet::DontCome, 0, "The payoffs on Don't Pass/Come (c.o.) must be positive.", bet::DontPass),
        Pays(bet::DontCome, -1, "The payoffs on Don't Pass/Come (c.o.) must be positive.", bet::DontPass),
        Pays(bet::Field, 0, nullptr), Pays(bet::CAndE, 0, nullptr), Pays(bet::Horn, 0, nullptr),
        Pays(bet::World, 0, nullptr), Pays(bet::PassLineOdds, 0, nullptr), Pays(bet::Fire, 0, nullptr),
        // Hand tables:
        HandRow(kPayoffTableHotRoller, 2, -2, 1, false,
                "Any loss on the Hot Roller bet cannot exceed the amount wagered."),
        HandRow(kPayoffTableHotRoller, 2, -2, 2, false, nullptr),  // a loss of the whole wager
        HandRow(kPayoffTableSharpShooter, 11, -3, 2, false,
                "Any loss on the Sharp Shooter bet cannot exceed the amount wagered."),
        HandRow(kPayoffTableRideLine, 1, -1, 1, true,
                "At least one of the Ride The Line bet payoffs must be positive."),
        HandRow(kPayoffTableFire, 0, -1, 1, true, "At least one of the Fire bet payoffs must be positive."),
        HandRow(kPayoffTableFire, 6, 1, 100, true, nullptr),
        HandRow(kPayoffTableFire, 0, -5, 4, false, "Any loss on the Fire bet cannot exceed the amount wagered."),
        // The Field may lose on every roll, but never more than the wager.
        HandRow(kPayoffTableField, 1, -1, 1, true, nullptr),
        HandRow(kPayoffTableField, 12, -2, 1, false, "Any loss on the Field bet cannot exceed the amount wagered."),
        // 7 Point 7 and Midway rows must win; single bets are looked at before the tables.
        CheckCase{[](RuleSet& r) { r.MidwayPayoff[3].PayoffPay = Money{}; }, "The payoff on Midway must be positive.",
                  "txtPayoffs", PayoffCheckIndex(kPayoffTableMidway, 3)},
        CheckCase{[](RuleSet& r) { r.SevenPointSevenPayoff[2].PayoffPay = -1_usd; },
                  "The payoff on 7 Point 7 must be positive.", "txtPayoffs",
                  PayoffCheckIndex(kPayoffTableSevenPointSeven, 2)},
        CheckCase{[](RuleSet& r) { r.MidwayPayoff[1].PayoffPay = r.BetPayoff[bet::Repeater12].PayoffPay = Money{}; },
                  "The payoff on Repeater 12 must be positive.", "txtPayoffs"},
        // Make All at 175:1 under a 5000 payoff cap takes at most 28, the first prop below 50.
        CheckCase{[](RuleSet& r) { r.MinPlacardPropBet = 50_usd; },
                  "Based on the selected payoffs, the maximum Make All bet is 28.\n"
                  "This is less than the minimum prop bet and must be adjusted.\n"
                  "Please do one or more of the following:\n"
                  "-- lower the minimum prop bet\n"
                  "-- raise the maximum prob bet payoff\n"
                  "-- raise the maximum bet, or\n"
                  "-- raise the individual payoff(s) on Make All",
                  "txtMinPlacardPropBet"}));

TEST(RuleValidationTest, BetUnitsAreRecomputed) {
  RuleSet r = Defaults();
  r.CheckDenom = {Money{}, 5_usd, 25_usd, 100_usd, 500_usd, 1000_usd};
  r.MinPlacardBet = r.MinPlacardPropBet = 5_usd;
  ASSERT_TRUE(ValidateRules(r, false).ok);
  EXPECT_EQ(r.BetPayoff[bet::Lay4].BetUnit, 10_usd);
  EXPECT_EQ(r.FirePayoff[0].BetUnit, 5_usd);
}

TEST(RuleValidationTest, PropMaximumInCentsShowsTwoPlaces) {
  RuleSet r = Defaults();
  r.CheckDenom = {Money{}, Cents(50), 1_usd, 5_usd, 25_usd, 100_usd};
  r.MinPlacardBet = Cents(250);
  r.MinPlacardPropBet = 3_usd;
  r.MaxPropBetPayoff = 10_usd;
  // Hard 4 at 7:1 may take 1 under the cap; the table minimum of 2.50 is the floor.
  RuleCheck v = ValidateRules(r, false);
  EXPECT_EQ(v.message.substr(0, v.message.find('\n')),
            "Based on the selected payoffs, the maximum Hard 4 bet is 2.50.");
}

}  // namespace
