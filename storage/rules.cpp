#include "storage/rules.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>

namespace {

constexpr Money kPenny = Money::FromRaw(Money::kScale / 100);

PayoffRow Row(Money x, Money y, Money toFor = Money::Dollars(-1)) {
  PayoffRow r;
  r.PayoffPay = x;
  r.PayoffToFor = toFor;
  r.PayoffFor = y;
  return r;
}

PayoffRow Row(int64_t x, int64_t y, bool forWord = false) {
  return Row(Money::Dollars(x), Money::Dollars(y), forWord ? Money{} : Money::Dollars(-1));
}

// The dice total of each row of FieldPayoff, one row per unordered pair.
constexpr std::array<int, 22> kFieldRowTotal = {0, 2, 3, 4, 4, 5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 10, 10, 11, 12};
// Rows of a pair of equal dice: 1-1, 2-2, 3-3, 4-4, 5-5, 6-6.
constexpr bool IsHardFieldRow(int row) {
  return row == 1 || row == 4 || row == 9 || row == 15 || row == 19 || row == 21;
}
// Field rows named by their pair in the presets.
constexpr int kFieldRow13 = 3, kFieldRow26 = 13, kFieldRow35 = 14, kFieldRow44 = 15;

void SetFieldAll(RuleSet& r, PayoffRow row) {
  for (int i = 1; i <= 21; ++i) r.FieldPayoff[i] = row;
}
void SetFieldTotal(RuleSet& r, int total, PayoffRow row) {
  for (int i = 1; i <= 21; ++i)
    if (kFieldRowTotal[i] == total) r.FieldPayoff[i] = row;
}

void SetDefaultFieldPayoff(RuleSet& r) {
  SetFieldAll(r, Row(-1, 1));
  for (int t : {3, 4, 9, 10, 11}) SetFieldTotal(r, t, Row(1, 1));
  SetFieldTotal(r, 2, Row(2, 1));
  SetFieldTotal(r, 12, Row(2, 1));
}

template <size_t N>
void SetTable(std::array<PayoffRow, N>& table, size_t first, std::initializer_list<int64_t> pays) {
  size_t i = first;
  for (int64_t x : pays) table[i++] = Row(x, 1);
}

void SetPointFamily(RuleSet& r, int firstBet, int64_t x410, int64_t y410, int64_t x59, int64_t y59, int64_t x68,
                    int64_t y68) {
  // Families of six run 4, 5, 6, 8, 9, 10.
  const int64_t xs[6] = {x410, x59, x68, x68, x59, x410};
  const int64_t ys[6] = {y410, y59, y68, y68, y59, y410};
  for (int i = 0; i < 6; ++i) r.BetPayoff[firstBet + i] = Row(xs[i], ys[i]);
}

const std::vector<std::string_view> kFieldPresetNames = {
    "&Field w/ 2x on Two and Twelve",
    "&Pass Line",
    "&Don't Pass (bar 12)",
    "Place &6",
    "Place to &Lose 8",
    "Buy &10 (5 % vig)",
    "Lay &4 (5% vig on win only)",
    "H&ard 8",
    "&Horn",
    "&World",
    "H&op 13",
    "&Midway",
    "&Crapless Craps Pass Line",
};

}  // namespace

void SetDefaultRules(RuleSet& rules) {
  rules = RuleSet{};
  rules.MinPlacardBet = 1_usd;
  rules.MinPlacardPropBet = 1_usd;
  rules.MaxPlacardBet = 1000_usd;
  rules.MaxPropBetPayoff = 5000_usd;
  rules.MaxOddsBet = 3000_usd;
  rules.OddsAllowed410 = 3_usd;
  rules.OddsAllowed59 = 4_usd;
  rules.OddsAllowed68 = 5_usd;
  rules.OddsCalcMethod = 0;
  rules.BuyVigPct = Money::FromRaw(500);  // 0.05
  rules.ChargeAllBuy = true;
  rules.RoundBuyVig = kRoundNormal;
  rules.LayVigPct = Money::FromRaw(500);
  rules.ChargeAllLay = true;
  rules.RoundLayVig = kRoundNormal;
  rules.AllowPennyPayoffs = false;
  rules.BarNumber = 12;
  rules.BetNeededToShoot = 1;
  rules.CornerBet = 1;
  rules.AllowPutBets = true;
  rules.ReturnAbandonedBets = false;
  rules.CompRate = 30_usd;
  rules.CompsUseTrueProbs = true;
  rules.BaseComps = 0;
  for (int b = 1; b <= kBets; ++b) {
    // The odds bets carry no house edge, so they earn no comps.
    bool odds = (b >= bet::DontCome4Odds && b <= bet::DontCome10Odds) ||
                (b >= bet::Come4Odds && b <= bet::Come10Odds) || b == bet::PassLineOdds || b == bet::DontPassOdds;
    rules.CompBets[b] = !odds;
    for (int s = 0; s < kSeats; ++s) rules.WorkOnComeOut[b][s] = DefaultWorksOnComeOut(b);
  }
  rules.AtmAmount = 500_usd;

  rules.Notices = 15;
  rules.InfoTips = 1;
  rules.SnapMouse = true;
  rules.BasicFontSize = 11;
  rules.UseCentsSymbol = true;
  rules.AutoArrangeChips = true;
  rules.DiceAction = 0;
  rules.RollsPerTime = 120;
  rules.RollRateUnit = kPerHour;

  SetDefaultDenominations(rules);
  SetDefaultPayoffs(rules);
}

void SetDefaultPayoffs(RuleSet& r) {
  for (auto& row : r.BetPayoff) row = Row(1, 1);

  SetPointFamily(r, bet::Lay4, 1, 2, 2, 3, 5, 6);
  SetPointFamily(r, bet::DontCome4Odds, 1, 2, 2, 3, 5, 6);
  SetPointFamily(r, bet::Come4Odds, 2, 1, 3, 2, 6, 5);
  SetPointFamily(r, bet::Buy4, 2, 1, 3, 2, 6, 5);
  SetPointFamily(r, bet::Place4, 9, 5, 7, 5, 7, 6);

  r.BetPayoff[bet::CAndE] = Row(1, 2);
  r.BetPayoff[bet::Hard4] = r.BetPayoff[bet::Hard10] = Row(7, 1);
  r.BetPayoff[bet::Hard6] = r.BetPayoff[bet::Hard8] = Row(9, 1);
  r.BetPayoff[bet::Two] = r.BetPayoff[bet::Twelve] = Row(30, 1);
  r.BetPayoff[bet::Three] = r.BetPayoff[bet::Eleven] = Row(15, 1);
  r.BetPayoff[bet::Seven] = Row(4, 1);
  r.BetPayoff[bet::Craps] = Row(7, 1);
  r.BetPayoff[bet::Horn] = Row(1, 4);
  for (int b = bet::Hop13; b <= bet::Hop55; ++b) r.BetPayoff[b] = Row(15, 1);
  // Looked up by name once: every new table sets its payoffs.
  static const std::array<int, 4> kPairHops = {FindBetByName("Hop 22"), FindBetByName("Hop 33"),
                                               FindBetByName("Hop 44"), FindBetByName("Hop 55")};
  for (int hop : kPairHops) r.BetPayoff[hop] = Row(30, 1);
  r.BetPayoff[bet::LeftField] = r.BetPayoff[bet::RightField] = Row(4, 1);
  r.BetPayoff[bet::CenterField] = Row(2, 1);
  r.BetPayoff[bet::World] = Row(1, 5);
  r.BetPayoff[bet::AllSmall] = r.BetPayoff[bet::AllTall] = Row(34, 1);
  r.BetPayoff[bet::MakeAll] = Row(175, 1);
  r.BetPayoff[bet::Point7] = Row(7, 1);
  // Repeaters read "for": a net 39 on 1 shows as 40 for 1.
  const int64_t repeater[10] = {39, 49, 64, 79, 89, 89, 79, 64, 49, 39};
  for (int i = 0; i < 10; ++i) r.BetPayoff[bet::Repeater2 + i] = Row(repeater[i], 1, true);

  SetDefaultFieldPayoff(r);
  SetTable(r.SevenPointSevenPayoff, 1, {2, 3});
  SetTable(r.MidwayPayoff, 1, {2, 1, 1, 1, 2});
  SetTable(r.HotRollerPayoff, 1, {-1, -1, 5, 10, 20, 50, 200});
  SetTable(r.SharpShooterPayoff, 1, {-1, -1, -1, 5, 9, 19, 29, 49, 99, 199, 299});
  SetTable(r.RideLinePayoff, 1, {-1, -1, -1, 1, 2, 3, 6, 10, 20, 30, 40, 100});
  SetTable(r.FirePayoff, 0, {-1, -1, -1, -1, 24, 249, 999});

  ComputeBetUnits(r);
}

void SetDefaultDenominations(RuleSet& rules) {
  rules.CheckDenom = {Money{}, 1_usd, 5_usd, 25_usd, 100_usd, 500_usd};
  ComputeBetUnits(rules);
}

void ComputeBetUnits(RuleSet& r) {
  const Money u = r.CheckDenom[1];
  auto unit = [u](auto& table) {
    for (auto& row : table) row.BetUnit = MulMoney(u, row.PayoffFor);
  };
  unit(r.BetPayoff);
  unit(r.FieldPayoff);
  unit(r.MidwayPayoff);
  unit(r.SevenPointSevenPayoff);
  unit(r.HotRollerPayoff);
  unit(r.SharpShooterPayoff);
  unit(r.RideLinePayoff);
  unit(r.FirePayoff);
}

Money PayoffUnit(const RuleSet& rules) { return rules.AllowPennyPayoffs ? kPenny : rules.CheckDenom[1]; }

double RoundToUnit(double value, double unit, int mode) {
  if (unit == 0) return 0;
  double q = value / unit;
  // A quotient that is whole but for the last bits of a double counts as whole, so that
  // 7 cents rounded up to cents stays 7 cents and isn't taken for 7.000000000000001.
  double nearest = std::nearbyint(q);
  if (q == nearest || std::fabs(q - nearest) <= 1e-9 * std::fmax(1.0, std::fabs(q))) return value;
  switch (mode) {
    case kRoundDown: return std::floor(q) * unit;
    case kRoundUp: return std::floor(q + 1) * unit;
    case kRoundHalfUp: return std::floor(q + 0.5) * unit;
    default: return std::floor(q + 0.499) * unit;  // an exact half rounds down, on purpose
  }
}

namespace {

// The vig of a base already computed: rounded to the payoff unit and never free.
Money RoundVig(const RuleSet& r, double base, int mode) {
  double unit = PayoffUnit(r).ToDouble();
  double vig = RoundToUnit(base, unit, mode);
  if (!(vig > 0)) vig = unit;
  return Money::FromDouble(vig);
}

}  // namespace

Money ComputeBuyVig(const RuleSet& rules, int betId, Money amount) {
  if (rules.BuyVigPct.raw == 0 || amount.raw == 0 || betId < bet::Buy4 || betId > bet::Buy10) return Money{};
  double base = amount.ToDouble() * rules.BuyVigPct.ToDouble();
  return RoundVig(rules, base, rules.RoundBuyVig);
}

Money ComputeLayVig(const RuleSet& rules, int betId, Money amount) {
  if (rules.LayVigPct.raw == 0 || amount.raw == 0 || betId < bet::Lay4 || betId > bet::Lay10) return Money{};
  const PayoffRow& row = rules.BetPayoff[betId];
  double y = row.PayoffFor.ToDouble();
  // The vig is on the win, not on the wager.
  double base = y == 0 ? 0 : amount.ToDouble() * row.PayoffPay.ToDouble() / y * rules.LayVigPct.ToDouble();
  if (base < 0) return Money{};
  return RoundVig(rules, base, rules.RoundLayVig);
}

const std::vector<std::string_view>& FieldPresetNames() { return kFieldPresetNames; }

bool SetFieldPreset(RuleSet& r, std::string_view menuText) {
  int preset = -1;
  for (size_t i = 0; i < kFieldPresetNames.size(); ++i)
    if (kFieldPresetNames[i] == menuText) preset = static_cast<int>(i);
  if (preset < 0) return false;

  switch (preset) {
    case 0:  // the plain Field
      SetDefaultFieldPayoff(r);
      break;
    case 1:  // Pass Line
      for (int t : {2, 3, 12}) SetFieldTotal(r, t, Row(-1, 1));
      for (int t : {4, 10}) SetFieldTotal(r, t, Row(-1, 3));
      for (int t : {5, 9}) SetFieldTotal(r, t, Row(-1, 5));
      for (int t : {6, 8}) SetFieldTotal(r, t, Row(-1, 11));
      for (int t : {7, 11}) SetFieldTotal(r, t, Row(1, 1));
      break;
    case 2:  // Don't Pass, bar 12
      for (int t : {2, 3}) SetFieldTotal(r, t, Row(1, 1));
      for (int t : {4, 10}) SetFieldTotal(r, t, Row(1, 3));
      for (int t : {5, 9}) SetFieldTotal(r, t, Row(1, 5));
      for (int t : {6, 8}) SetFieldTotal(r, t, Row(1, 11));
      for (int t : {7, 11}) SetFieldTotal(r, t, Row(-1, 1));
      SetFieldTotal(r, 12, Row(0, 1));
      break;
    case 3:  // Place 6
      SetFieldAll(r, Row(0, 1));
      SetFieldTotal(r, 6, Row(7, 6));
      SetFieldTotal(r, 7, Row(-1, 1));
      break;
    case 4:  // Place to lose 8
      SetFieldAll(r, Row(0, 1));
      SetFieldTotal(r, 7, Row(4, 5));
      SetFieldTotal(r, 8, Row(-5, 5));
      break;
    case 5:  // Buy 10
      SetFieldAll(r, Row(0, 1));
      SetFieldTotal(r, 7, Row(-1, 1));
      SetFieldTotal(r, 10, Row(39, 21));
      break;
    case 6:  // Lay 4
      SetFieldAll(r, Row(0, 1));
      SetFieldTotal(r, 4, Row(-1, 1));
      SetFieldTotal(r, 7, Row(19, 40));
      break;
    case 7:  // Hard 8
      SetFieldAll(r, Row(0, 1));
      r.FieldPayoff[kFieldRow44] = Row(9, 1);
      r.FieldPayoff[kFieldRow26] = Row(-1, 1);
      r.FieldPayoff[kFieldRow35] = Row(-1, 1);
      SetFieldTotal(r, 7, Row(-1, 1));
      break;
    case 8:  // Horn
      SetFieldAll(r, Row(-1, 1));
      for (int t : {2, 12}) SetFieldTotal(r, t, Row(27, 4, true));
      for (int t : {3, 11}) SetFieldTotal(r, t, Row(12, 4, true));
      break;
    case 9:  // World
      SetFieldAll(r, Row(-1, 1));
      for (int t : {2, 12}) SetFieldTotal(r, t, Row(26, 5, true));
      for (int t : {3, 11}) SetFieldTotal(r, t, Row(11, 5, true));
      SetFieldTotal(r, 7, Row(0, 5, true));
      break;
    case 10:  // Hop 13
      SetFieldAll(r, Row(-1, 1));
      r.FieldPayoff[kFieldRow13] = Row(15, 1);
      break;
    case 11:  // Midway
      SetFieldAll(r, Row(-1, 1));
      for (int t : {6, 8})
        for (int i = 1; i <= 21; ++i)
          if (kFieldRowTotal[i] == t) r.FieldPayoff[i] = IsHardFieldRow(i) ? Row(2, 1) : Row(1, 1);
      SetFieldTotal(r, 7, Row(1, 1));
      break;
    case 12:  // Crapless Craps Pass Line
      for (int t : {2, 12}) SetFieldTotal(r, t, Row(-5, 7));
      for (int t : {3, 11}) SetFieldTotal(r, t, Row(-1, 2));
      for (int t : {4, 10}) SetFieldTotal(r, t, Row(-1, 3));
      for (int t : {5, 9}) SetFieldTotal(r, t, Row(-1, 5));
      for (int t : {6, 8}) SetFieldTotal(r, t, Row(-1, 11));
      SetFieldTotal(r, 7, Row(1, 1));
      break;
  }
  ComputeBetUnits(r);
  return true;
}

bool PayoffWordKey(PayoffRow& row, char key) {
  bool isFor = row.PayoffToFor.raw == 0;
  bool wantFor;
  switch (key) {
    case 't':
    case 'T': wantFor = false; break;
    case 'f':
    case 'F': wantFor = true; break;
    case ' ': wantFor = !isFor; break;
    default: return false;
  }
  if (wantFor == isFor) return true;
  // The number shown stays: "to" shows x, "for" shows x + y.
  if (wantFor) {
    row.PayoffPay -= row.PayoffFor;
    row.PayoffToFor = Money{};
  } else {
    row.PayoffPay += row.PayoffFor;
    row.PayoffToFor = Money::Dollars(-1);
  }
  return true;
}
