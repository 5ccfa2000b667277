#include "storage/rule_validation.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "engine/bet_limits.h"

namespace {

// The most rolls the simulation may be asked for, by the unit of the rate.
std::string RollRateLimitText(int unit) {
  switch (unit) {
    case kPerMinute: return "600,000.";
    case kPerSecond: return "10,000.";
    default: return "36,000,000.";
  }
}
double RollRateLimit(int unit) {
  switch (unit) {
    case kPerMinute: return 600000;
    case kPerSecond: return 10000;
    default: return 36000000;
  }
}
std::string_view RollRateUnitName(int unit) {
  switch (unit) {
    case kPerMinute: return "minute";
    case kPerSecond: return "second";
    default: return "hour";
  }
}

// Whole dollars without decimals, anything else with exactly two ("0.00"), rounded half
// away from zero as a formatted number is.
std::string TwoPlaceText(Money m) {
  if (m.IsWhole()) return MoneyText(m);
  int64_t cents = (std::llabs(m.raw) + 50) / 100;
  std::string s = m.raw < 0 ? "-" : "";
  std::string frac = std::to_string(cents % 100);
  if (frac.size() < 2) frac = "0" + frac;
  return s + std::to_string(cents / 100) + "." + frac;
}

RuleCheck Fail(std::string message, std::string control, int index = 0) {
  RuleCheck c;
  c.ok = false;
  c.message = std::move(message);
  c.control = std::move(control);
  c.index = index;
  return c;
}

// A minimum of at least one smallest check and a whole number of them.
RuleCheck CheckMinimum(Money minimum, Money u, std::string_view which, const char* control) {
  if (minimum < u)
    return Fail(
        "The minimum " + std::string(which) + " cannot be less than the smallest check denomination of " + MoneyText(u),
        control);
  if (!IsMultipleOf(minimum, u))
    return Fail("The minimum " + std::string(which) +
                    " must be a multiple of the smallest check denomination, such as " + MoneyText(u) + ",  " +
                    MoneyText(u * 2) + ",  " + MoneyText(u * 3) + " ...",
                control);
  return {};
}

// The rows of the payoff list that edit two bets at once, by the bet they are checked at.
std::string_view CombinedRowName(int b) {
  static constexpr std::string_view kPassCome[6] = {"Pass/Come 4", "Pass/Come 5", "Pass/Come 6",
                                                    "Pass/Come 8", "Pass/Come 9", "Pass/Come 10"};
  static constexpr std::string_view kDpDc[6] = {"DP/DC 4", "DP/DC 5", "DP/DC 6", "DP/DC 8", "DP/DC 9", "DP/DC 10"};
  if (b >= bet::DontCome4Odds && b <= bet::DontCome10Odds) return kDpDc[b - bet::DontCome4Odds];
  if (b >= bet::Come4Odds && b <= bet::Come10Odds) return kPassCome[b - bet::Come4Odds];
  if (b == bet::PassLine) return "Passline/Come (c.o.)";
  if (b == bet::DontPass) return "Don't Pass/Come (c.o.)";
  return {};
}

// Rows of BetPayoff that are no payoff of their own, so the positive-pay check passes them by:
// - Pass Line Odds and Don't Pass Odds are paid from the Come and Don't Come odds rows of
//   the point; their own rows are never shown, the "Pass/Come" and "DP/DC" rows stand for them.
// - Come and Don't Come are checked with Pass Line and Don't Pass as their combined rows.
// - Field, Midway, 7 Point 7 and the hand bets are paid from their own tables,
//   which are checked on their own.
// - C and E, Horn and World hold only the wager unit; their wins come from the rows of
//   Eleven, Craps, Two, Three, Seven and Twelve, which are checked as single bets. A pay of
//   0 there changes nothing at the table, so refusing it would only get in the user's way.
bool IsSkippedInPayoffCheck(int b) {
  switch (b) {
    case bet::PassLineOdds:
    case bet::DontPassOdds:
    case bet::Come:
    case bet::DontCome:
    case bet::Field:
    case bet::CAndE:
    case bet::Horn:
    case bet::World:
    case bet::Midway:
    case bet::SevenPoint7:
    case bet::Fire:
    case bet::HotRoller:
    case bet::SharpShooter:
    case bet::RideTheLine: return true;
    default: return false;
  }
}

template <size_t N>
RuleCheck CheckHandTable(const std::array<PayoffRow, N>& table, size_t first, int b, int tableId) {
  const std::string name(BetName(b));
  bool anyWin = false;
  for (size_t i = first; i < N; ++i) {
    if (table[i].PayoffPay < -table[i].PayoffFor)
      return Fail("Any loss on the " + name + " bet cannot exceed the amount wagered.", "txtPayoffs",
                  PayoffCheckIndex(tableId, static_cast<int>(i)));
    if (table[i].PayoffPay.raw > 0) anyWin = true;
  }
  if (!anyWin)
    return Fail("At least one of the " + name + " bet payoffs must be positive.", "txtPayoffs",
                PayoffCheckIndex(tableId, static_cast<int>(first)));
  return {};
}

}  // namespace

// Where validation shows several sentences in one box, they are joined with one line break
// each, as the box would show them on separate lines.
RuleCheck ValidateRules(RuleSet& r, bool rollRateEdited) {
  // 1. Check denominations, left to right.
  const Money u = r.CheckDenom[1];
  for (int i = 1; i <= 5; ++i) {
    Money d = r.CheckDenom[i];
    if (d.raw <= 0) return Fail("Check values must be greater than zero.", "txtDenomination", i);
    if (i > 1 && d < r.CheckDenom[i - 1])
      return Fail(
          "Checks must be listed in ascending order with the lowest value check in the leftmost "
          "position.",
          "txtDenomination", i);
    if (!IsMultipleOf(d, u))
      return Fail("All checks must be wholly divisible by the smallest check.", "txtDenomination", i);
  }

  // 2, 3. The minimums.
  if (RuleCheck c = CheckMinimum(r.MinPlacardBet, u, "bet", "txtMinPlacardBet"); !c.ok) return c;
  if (RuleCheck c = CheckMinimum(r.MinPlacardPropBet, u, "prop bet", "txtMinPlacardPropBet"); !c.ok) return c;

  // 4.
  if (r.MaxPlacardBet < r.MinPlacardBet)
    return Fail("The maximum bet must be greater than or equal to the minimum bet.", "txtMaxPlacardBet");

  // 5. The simulated roll rate, only when it was touched.
  if (rollRateEdited) {
    if (!(r.RollsPerTime > 0)) return Fail("The simulated roll rate must be greater than zero.", "txtRollsPerTime");
    if (r.RollsPerTime > RollRateLimit(r.RollRateUnit))
      return Fail("The maximum simulated " + std::string(RollRateUnitName(r.RollRateUnit)) + " rate is " +
                      RollRateLimitText(r.RollRateUnit),
                  "txtRollsPerTime");
  }

  // 6. Payoffs that must win.
  ComputeBetUnits(r);
  for (int b = 1; b <= kBets; ++b) {
    if (IsSkippedInPayoffCheck(b)) continue;
    std::string_view combined = CombinedRowName(b);
    if (!combined.empty()) {
      bool bad = r.BetPayoff[b].PayoffPay.raw <= 0;
      if (b == bet::PassLine) bad = bad || r.BetPayoff[bet::Come].PayoffPay.raw <= 0;
      if (b == bet::DontPass) bad = bad || r.BetPayoff[bet::DontCome].PayoffPay.raw <= 0;
      if (bad)
        return Fail("The payoffs on " + std::string(combined) + " must be positive.", "txtPayoffs",
                    PayoffCheckIndex(kPayoffTableBet, b));
      continue;
    }
    if (r.BetPayoff[b].PayoffPay.raw <= 0)
      return Fail("The payoff on " + std::string(BetName(b)) + " must be positive.", "txtPayoffs",
                  PayoffCheckIndex(kPayoffTableBet, b));
  }
  // The two tables whose every row is a win; the message names the bet.
  for (int i = 1; i <= 2; ++i)
    if (r.SevenPointSevenPayoff[i].PayoffPay.raw <= 0)
      return Fail("The payoff on " + std::string(BetName(bet::SevenPoint7)) + " must be positive.", "txtPayoffs",
                  PayoffCheckIndex(kPayoffTableSevenPointSeven, i));
  for (int i = 1; i <= 5; ++i)
    if (r.MidwayPayoff[i].PayoffPay.raw <= 0)
      return Fail("The payoff on " + std::string(BetName(bet::Midway)) + " must be positive.", "txtPayoffs",
                  PayoffCheckIndex(kPayoffTableMidway, i));

  // 7. The hand bets: a row may lose, but never more than the wager, and one must win.
  if (RuleCheck c = CheckHandTable(r.HotRollerPayoff, 1, bet::HotRoller, kPayoffTableHotRoller); !c.ok) return c;
  if (RuleCheck c = CheckHandTable(r.SharpShooterPayoff, 1, bet::SharpShooter, kPayoffTableSharpShooter); !c.ok)
    return c;
  if (RuleCheck c = CheckHandTable(r.RideLinePayoff, 1, bet::RideTheLine, kPayoffTableRideLine); !c.ok) return c;
  if (RuleCheck c = CheckHandTable(r.FirePayoff, 0, bet::Fire, kPayoffTableFire); !c.ok) return c;

  // 8. The Field: the loss test only; it may well have no winning row.
  for (int i = 1; i <= 21; ++i)
    if (r.FieldPayoff[i].PayoffPay < -r.FieldPayoff[i].PayoffFor)
      return Fail("Any loss on the " + std::string(BetName(bet::Field)) + " bet cannot exceed the amount wagered.",
                  "txtPayoffs", PayoffCheckIndex(kPayoffTableField, i));

  // 9. Every prop must take at least the prop minimum under the payoff limit.
  for (int b = bet::Hard4; b <= kBets; ++b) {
    Money maximum = RuleMaximum(r, b);
    if (maximum < r.MinPlacardPropBet) {
      const std::string name(BetName(b));
      return Fail("Based on the selected payoffs, the maximum " + name + " bet is " + TwoPlaceText(maximum) + ".\n" +
                      "This is less than the minimum prop bet and must be adjusted.\n"
                      "Please do one or more of the following:\n"
                      "-- lower the minimum prop bet\n"
                      "-- raise the maximum prob bet payoff\n"
                      "-- raise the maximum bet, or\n"
                      "-- raise the individual payoff(s) on " +
                      name,
                  "txtMinPlacardPropBet");
    }
  }
  return {};
}
