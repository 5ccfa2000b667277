#include "engine/bet_limits.h"

#include <initializer_list>

#include "engine/bets.h"

namespace {

bool IsOddsBet(int b) {
  return (b >= bet::DontCome4Odds && b <= bet::DontCome10Odds) || (b >= bet::Come4Odds && b <= bet::Come10Odds) ||
         b == bet::PassLineOdds || b == bet::DontPassOdds;
}

// True when row a pays more per unit wagered than row b (x / y compared exactly).
bool PaysMore(const PayoffRow& a, const PayoffRow& b) {
  return static_cast<__int128>(a.PayoffPay.raw) * b.PayoffFor.raw >
         static_cast<__int128>(b.PayoffPay.raw) * a.PayoffFor.raw;
}

template <size_t N>
PayoffRow HighestRow(const std::array<PayoffRow, N>& table, size_t first) {
  PayoffRow best = table[first];
  for (size_t i = first + 1; i < N; ++i)
    if (table[i].PayoffFor.raw > 0 && (best.PayoffFor.raw <= 0 || PaysMore(table[i], best))) best = table[i];
  return best;
}

PayoffRow HighestOfBets(const RuleSet& r, std::initializer_list<int> bets) {
  PayoffRow best = r.BetPayoff[*bets.begin()];
  for (int b : bets)
    if (r.BetPayoff[b].PayoffFor.raw > 0 && (best.PayoffFor.raw <= 0 || PaysMore(r.BetPayoff[b], best)))
      best = r.BetPayoff[b];
  return best;
}

// The wager whose win is the maximum prop payoff: P × y / x, times the split of the bet;
// whole dollars below when `whole`. A row that never wins sets no limit of its own.
bool PayoffLimit(const RuleSet& r, const PayoffRow& row, int split, bool whole, Money& out) {
  if (row.PayoffPay.raw <= 0 || row.PayoffFor.raw <= 0) return false;
  Money m = MulDivMoney(r.MaxPropBetPayoff * split, row.PayoffFor, row.PayoffPay);
  out = whole ? FloorToUnit(m, 1_usd) : m;
  return true;
}

// a, or the next multiple of step above it.
Money RaiseToMultiple(Money a, Money step) {
  if (step.raw <= 0 || IsMultipleOf(a, step)) return a;
  return FloorToUnit(a, step) + step;
}

// y rounded up to a whole number of dollars.
Money RoundUpTo(Money y) {
  if (y.IsWhole()) return y;
  return FloorToUnit(y, 1_usd) + 1_usd;
}

// Rules 1 and 4: m × B, floored to each check size d in turn and raised to the next
// multiple of RoundUpTo(y) × d, so that the payoff comes out in whole checks of that size.
// The raise is a rounding, not a further multiple: a candidate reaching (m + 1) × B is
// passed over, and so is a check too big for the amount (floored to 0). The largest candidate left wins; with none the
// plain limit stands.
Money XFlatSingleOdds(const RuleSet& r, Money limit, Money flat, Money m, Money y) {
  const Money bound = MulMoney(m + 1_usd, flat);
  const Money step = RoundUpTo(y);
  Money best = Money::FromRaw(-1);
  for (int k = 1; k <= 5; ++k) {
    Money d = r.CheckDenom[k];
    if (d.raw <= 0) continue;
    Money c = RaiseToMultiple(FloorToUnit(limit, d), MulMoney(step, d));
    if (c.raw > 0 && c < bound && c > best) best = c;
  }
  return best.raw < 0 ? limit : best;
}

// Rule 5: the same raise on the flat bet alone, the single odds (kept below 2 × B), and
// that times m.
Money FlatSingleOddsX(const RuleSet& r, Money limit, Money flat, Money m, Money y) {
  const Money bound = flat * 2;
  const Money step = RoundUpTo(y);
  Money best = Money::FromRaw(-1);
  for (int k = 1; k <= 5; ++k) {
    Money d = r.CheckDenom[k];
    if (d.raw <= 0) continue;
    Money c = RaiseToMultiple(FloorToUnit(flat, d), MulMoney(step, d));
    if (c.raw > 0 && c < bound && c > best) best = c;
  }
  return best.raw < 0 ? limit : MulMoney(best, m);
}

}  // namespace

Money OddsMultiple(const RuleSet& r, int point) {
  switch (point) {
    case 4:
    case 10: return r.OddsAllowed410;
    case 5:
    case 9: return r.OddsAllowed59;
    case 6:
    case 8: return r.OddsAllowed68;
    default: return Money{};
  }
}

Money RuleMaximum(const RuleSet& r, int b) {
  const Money u = r.CheckDenom[1];
  const Money start = FloorToUnit(r.MaxPlacardBet, u);
  // Odds are bounded by the max odds bet (OddsLimit), which may well be above the table
  // maximum; only the table's part is given here.
  if (b < 1 || b > kBets || IsOddsBet(b)) return start;

  Money maximum = start;
  Money limited;
  if (b >= bet::Lay4 && b <= bet::Lay10) {
    const PayoffRow& row = r.BetPayoff[b];
    if (row.PayoffPay.raw > 0) maximum = MulDivMoney(start, row.PayoffFor, row.PayoffPay);
  } else if (b == bet::CAndE) {
    // "(payoff / row) × 2, less 0.5" taken to whole dollars is the whole dollars below.
    if (PayoffLimit(r, HighestOfBets(r, {bet::Eleven, bet::Craps}), 2, true, limited)) maximum = limited;
  } else if (b == bet::Horn) {
    if (PayoffLimit(r, HighestOfBets(r, {bet::Two, bet::Three, bet::Eleven, bet::Twelve}), 4, true, limited))
      maximum = limited;
  } else if (b == bet::World) {
    if (PayoffLimit(r, HighestOfBets(r, {bet::Two, bet::Three, bet::Seven, bet::Eleven, bet::Twelve}), 5, true,
                    limited))
      maximum = limited;
  } else if (b == bet::Midway) {
    if (PayoffLimit(r, HighestRow(r.MidwayPayoff, 1), 1, true, limited)) maximum = limited;
  } else if (b == bet::SevenPoint7) {
    if (PayoffLimit(r, HighestRow(r.SevenPointSevenPayoff, 1), 1, true, limited)) maximum = limited;
  } else if (b > bet::CAndE && b <= bet::Point7) {
    if (PayoffLimit(r, r.BetPayoff[b], 1, true, limited)) maximum = limited;
  } else if (b >= bet::Fire && b <= bet::RideTheLine) {
    // The hand bets take the best row of their table, in whole dollars as the props do.
    PayoffRow best;
    switch (b) {
      case bet::Fire: best = HighestRow(r.FirePayoff, 0); break;
      case bet::HotRoller: best = HighestRow(r.HotRollerPayoff, 1); break;
      case bet::SharpShooter: best = HighestRow(r.SharpShooterPayoff, 1); break;
      default: best = HighestRow(r.RideLinePayoff, 1); break;
    }
    if (PayoffLimit(r, best, 1, true, limited)) maximum = limited;
  } else if (b >= bet::Repeater2) {
    // Exactly P × y / x; the Repeaters aren't taken to whole dollars.
    if (PayoffLimit(r, r.BetPayoff[b], 1, false, limited)) maximum = limited;
  }
  // Place, Buy, the line and come bets, Field, Big 6 and Big 8 keep the table maximum.

  // A Lay is limited by what it wins (the table maximum × y / x), so a Lay 4 at 1:2 may
  // hold twice the table maximum; everything else stays within the table maximum.
  const bool lay = b >= bet::Lay4 && b <= bet::Lay10;
  if (!lay) maximum = Min(maximum, start);
  // A limit is always a whole number of checks.
  if (u.raw > 0) maximum = FloorToUnit(maximum, u);
  return Max(maximum, r.MinPlacardBet);
}

Money OddsLimit(const RuleSet& r, int oddsBet, int point, Money flat) {
  bool dont;
  int row;
  int number;
  if (oddsBet == bet::PassLineOdds || oddsBet == bet::DontPassOdds) {
    // The line odds are paid from the Come or Don't Come odds row of the point.
    dont = oddsBet == bet::DontPassOdds;
    number = point;
    if (number < 4 || number > 10 || number == 7) return Money{};
    row = PointRow(dont ? BetFamily::DontComeOdds : BetFamily::ComeOdds, number);
  } else if (IsOddsBet(oddsBet)) {
    dont = oddsBet <= bet::DontCome10Odds;
    row = oddsBet;
    number = PointOfRow(oddsBet);
  } else {
    return Money{};
  }
  const Money m = OddsMultiple(r, number);
  if (m.raw <= 0 || flat.raw <= 0) return Money{};

  const Money u = r.CheckDenom[1];
  const PayoffRow& odds = r.BetPayoff[row];
  // The don't side is limited by its win (m × B) and works on the win's scale: there a
  // whole payoff comes in steps of x of the lay row (5 of 5:6 on the 6), the y of the
  // matching right-side row, and the wager is the win × y / x at the end.
  const Money y = dont ? odds.PayoffPay : odds.PayoffFor;
  const Money plain = MulMoney(m, flat);
  const Money next = MulMoney(m + 1_usd, flat);

  Money limit = plain;
  switch (r.OddsCalcMethod) {
    case 1:  // "X Flat - No Push": the arithmetic of rule 4
    case 4:  // "X Flat - Single Odds"
      limit = XFlatSingleOdds(r, plain, flat, m, y);
      break;
    case 2: {  // "X Flat w/ Minor Push"
      Money step = MulMoney(u, y);
      if (step.raw > 0) {
        limit = FloorToUnit(plain, step);
        if (limit < plain && limit + step <= next) limit += step;
        if (limit.raw == 0) limit = plain;
      }
      break;
    }
    case 3:  // "X Flat w/ Color Push"
      if (!IsMultipleOf(plain, u)) {
        // The test as it stands: B + u × m ≤ (m + 1) × B holds whenever B is a check or more.
        if (flat + MulMoney(u, m) <= next) limit = RaiseToMultiple(plain, MulMoney(u, y));
      }
      break;
    case 5:  // "Flat - Single Odds X"
      limit = FlatSingleOddsX(r, plain, flat, m, y);
      break;
    default:  // 0 "Automatic", and any value out of range
      // Single, double and triple odds get the raise of a full odds table; of the two
      // ways to raise, the player gets the larger.
      if (m == 1_usd || m == 2_usd || m == 3_usd)
        limit = Max(plain, Max(XFlatSingleOdds(r, plain, flat, m, y), FlatSingleOddsX(r, plain, flat, m, y)));
      break;
  }

  if (dont && odds.PayoffPay.raw > 0) limit = MulDivMoney(limit, odds.PayoffFor, odds.PayoffPay);
  limit = Min(limit, FloorToUnit(r.MaxOddsBet, u));
  limit = FloorToUnit(limit, u);
  return Max(limit, Money{});
}
