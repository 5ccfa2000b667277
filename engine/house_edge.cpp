#include "engine/house_edge.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "engine/bets.h"
#include "engine/resolution.h"

namespace {

constexpr int kOddsNoPoint = 915, kVaryingPayoff = 918, kDivisionByZero = 9999;
constexpr std::array<int, 6> kNumbers = {4, 5, 6, 8, 9, 10};

int Ways(int total) { return 6 - std::abs(7 - total); }

double Dollars(Money m) { return m.ToDouble(); }

// x / y of a row; false for a row "for 0".
bool Ratio(const PayoffRow& row, double& ratio) {
  if (row.PayoffFor.raw == 0) return false;
  ratio = Dollars(row.PayoffPay) / Dollars(row.PayoffFor);
  return true;
}

}  // namespace

double RollsPerHour(const RuleSet& r) {
  switch (r.RollRateUnit) {
    case kPerMinute: return r.RollsPerTime * 60;
    case kPerSecond: return r.RollsPerTime * 3600;
    default: return r.RollsPerTime;
  }
}

const PayoffRow* PaidByRow(const RuleSet& r, int bet, int point, int& fault) {
  fault = 0;
  switch (bet) {
    case bet::PassLineOdds:
    case bet::DontPassOdds:
      if (point == 0) {
        fault = kOddsNoPoint;
        return nullptr;
      }
      return &r.BetPayoff[PointRow(bet == bet::PassLineOdds ? BetFamily::ComeOdds : BetFamily::DontComeOdds, point)];
    case bet::Field:
    case bet::Midway:
    case bet::SevenPoint7:
    case bet::Fire:
    case bet::HotRoller:
    case bet::SharpShooter:
    case bet::RideTheLine: fault = kVaryingPayoff; return nullptr;
    case bet::PassLine: return point != 0 ? &r.BetPayoff[PointRow(BetFamily::ComeNumber, point)] : &r.BetPayoff[bet];
    case bet::DontPass:
      return point != 0 ? &r.BetPayoff[PointRow(BetFamily::DontComeNumber, point)] : &r.BetPayoff[bet];
    default: return &r.BetPayoff[bet];
  }
}

int BetEdge(const RuleSet& rules, int bet, int point, double& edge) {
  if (bet == bet::Field) {
    // A one-roll bet paid by the row of each pair of dice.
    edge = 0;
    for (int d1 = 1; d1 <= 6; ++d1) {
      for (int d2 = 1; d2 <= 6; ++d2) {
        double ratio = 0;
        if (!Ratio(rules.FieldPayoff[static_cast<std::size_t>(FieldRow(d1, d2))], ratio)) return kDivisionByZero;
        edge += ratio / 36;
      }
    }
    return 0;
  }
  double pWin = 0, pLose = 0;
  double vigAlways = 0, vigOnWin = 0;  // parts of a unit
  const auto number = [&](int n, bool right) {
    const double w = Ways(n);
    pWin = right ? w / (w + 6) : 6 / (w + 6);
    pLose = 1 - pWin;
  };
  if (bet >= bet::Lay4 && bet <= bet::DontCome10Odds) {
    number(kNumbers[static_cast<std::size_t>((bet - bet::Lay4) % 6)], false);
  } else if (bet >= bet::Come4 && bet <= bet::Buy10) {
    number(kNumbers[static_cast<std::size_t>((bet - bet::Come4) % 6)], true);
  } else if (bet == bet::PassLine || bet == bet::Come) {
    // A line bet over its whole decision, from the come-out, whatever the point is now.
    pWin = 244.0 / 495;
    pLose = 251.0 / 495;
  } else if (bet == bet::DontPass || bet == bet::DontCome) {
    pWin = 949.0 / 1980;  // the barred craps number pushes
    pLose = 244.0 / 495;
  } else if (bet == bet::PassLineOdds || bet == bet::DontPassOdds) {
    if (point == 0) return kOddsNoPoint;
    number(point, bet == bet::PassLineOdds);
  } else if (bet == bet::Big6 || bet == bet::Big8) {
    number(bet == bet::Big6 ? 6 : 8, true);
  } else if (bet >= bet::Hard4 && bet <= bet::Hard10) {
    pWin = 1.0 / (6 + Ways(4 + 2 * (bet - bet::Hard4)));
    pLose = 1 - pWin;
  } else if (bet >= bet::Two && bet <= bet::Craps) {
    static constexpr std::array<int, 6> kWays = {1, 2, 6, 2, 1, 4};  // 2, 3, 7, 11, 12, craps
    pWin = kWays[static_cast<std::size_t>(bet - bet::Two)] / 36.0;
    pLose = 1 - pWin;
  } else if (bet >= bet::Hop13 && bet <= bet::Hop55) {
    // The hop rows run 1-3 .. 5-5; the pairs among them come one way, the others two.
    static constexpr std::array<bool, 17> kPair = {false, false, false, false, true, false, false, false, false,
                                                   true,  false, false, false, true, false, false, true};
    pWin = (kPair[static_cast<std::size_t>(bet - bet::Hop13)] ? 1 : 2) / 36.0;
    pLose = 1 - pWin;
  } else if (bet == bet::Over7 || bet == bet::Under7) {
    pWin = 15.0 / 36;
    pLose = 1 - pWin;
  } else {
    return kVaryingPayoff;
  }
  double ratio = 0;
  // The line bets are paid by their own row over the whole decision.
  const bool line = bet == bet::PassLine || bet == bet::Come || bet == bet::DontPass || bet == bet::DontCome;
  int fault = 0;
  const PayoffRow* row = line ? &rules.BetPayoff[bet] : PaidByRow(rules, bet, point, fault);
  if (row == nullptr) return fault;
  if (!Ratio(*row, ratio)) return kDivisionByZero;
  if (bet >= bet::Buy4 && bet <= bet::Buy10) {
    (rules.ChargeAllBuy ? vigAlways : vigOnWin) = Dollars(rules.BuyVigPct);
  } else if (bet >= bet::Lay4 && bet <= bet::Lay10) {
    // The lay vig is a share of the win.
    (rules.ChargeAllLay ? vigAlways : vigOnWin) = Dollars(rules.LayVigPct) * ratio;
  }
  edge = pWin * (ratio - vigOnWin) - pLose - vigAlways;
  if (std::abs(edge) < 1e-12) edge = 0;  // true odds, not a rounding's worth of edge
  return 0;
}

bool DecisionEdge(const RuleSet& rules, int bet, double& edge) {
  if (bet == bet::Come || bet == bet::DontCome) {
    // Decided on the come roll: 7 and 11 (8 ways) against 2, 3 and 12 (4 ways); for Don't
    // Come the barred number (2 or 12, one way) pushes and is no decision.
    double ratio = 0;
    if (!Ratio(rules.BetPayoff[bet], ratio)) return false;
    edge = bet == bet::Come ? (8 * ratio - 4) / 12 : (3 * ratio - 8) / 11;
    return true;
  }
  if (bet == bet::PassLineOdds || bet == bet::DontPassOdds) {
    for (size_t i = 0; i < kNumbers.size(); ++i) {
      double e = 0;
      if (BetEdge(rules, bet, kNumbers[i], e) != 0) return false;
      if (i > 0 && std::abs(e - edge) > 1e-12) return false;
      edge = e;
    }
    return true;
  }
  return BetEdge(rules, bet, 0, edge) == 0;
}
