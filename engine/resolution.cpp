#include "engine/resolution.h"

#include <cmath>

#include "engine/handling.h"
#include "engine/placement.h"
#include "stats/events_log.h"

int FieldRow(int d1, int d2) {
  int lo = d1 < d2 ? d1 : d2, hi = d1 < d2 ? d2 : d1;
  static constexpr int kRow[7][7] = {{0, 0, 0, 0, 0, 0, 0},      {0, 1, 2, 3, 5, 7, 10},    {0, 2, 4, 6, 8, 11, 13},
                                     {0, 3, 6, 9, 12, 14, 16},   {0, 5, 8, 12, 15, 17, 18}, {0, 7, 11, 14, 17, 19, 20},
                                     {0, 10, 13, 16, 18, 20, 21}};
  if (lo < 1 || hi > 6) return 0;
  return kRow[lo][hi];
}

namespace {

bool IsHard(const TableState& t) { return t.Die1 == t.Die2; }

double Split(Money amount, const PayoffRow& row, int parts) {
  double a = amount.ToDouble();
  double x = row.PayoffPay.ToDouble(), y = row.PayoffFor.ToDouble();
  if (y == 0) return 0;
  return (a / parts) * x / y - (parts - 1) * a / parts;
}

const PayoffRow kLossRow{Money{}, Money::Dollars(-1), Money{}, Money::Dollars(1)};

}  // namespace

Payout ComputePayoff(const Game& g, int seat, int bet, BetResult result, Money amount) {
  const RuleSet& r = g.Rules;
  const TableState& t = g.Table;
  const int P = t.PriorPoint;
  const bool wins = result == BetResult::Win || result == BetResult::WinOdds;
  const PayoffRow* row = wins ? &r.BetPayoff[bet] : &kLossRow;
  int parts = 0;  // C and E, Horn and World pay one part and lose the rest
  if (wins) {
    switch (bet) {
      case bet::PassLine:
        if (P != 0) row = &r.BetPayoff[PointRow(BetFamily::ComeNumber, P)];
        break;
      case bet::PassLineOdds: row = &r.BetPayoff[PointRow(BetFamily::ComeOdds, P)]; break;
      case bet::DontPass:
        if (P != 0) row = &r.BetPayoff[PointRow(BetFamily::DontComeNumber, P)];
        break;
      case bet::DontPassOdds: row = &r.BetPayoff[PointRow(BetFamily::DontComeOdds, P)]; break;
      case bet::CAndE:
        row = &r.BetPayoff[t.DiceTotal == 11 ? bet::Eleven : bet::Craps];
        parts = 2;
        break;
      case bet::Horn: {
        int b = t.DiceTotal == 2    ? bet::Two
                : t.DiceTotal == 3  ? bet::Three
                : t.DiceTotal == 11 ? bet::Eleven
                                    : bet::Twelve;
        row = &r.BetPayoff[b];
        parts = 4;
        break;
      }
      case bet::World: {
        int b = t.DiceTotal == 2    ? bet::Two
                : t.DiceTotal == 3  ? bet::Three
                : t.DiceTotal == 7  ? bet::Seven
                : t.DiceTotal == 11 ? bet::Eleven
                                    : bet::Twelve;
        row = &r.BetPayoff[b];
        parts = 5;
        break;
      }
      case bet::Midway:
        if (t.DiceTotal == 6) row = &r.MidwayPayoff[IsHard(t) ? 1 : 2];
        else if (t.DiceTotal == 7) row = &r.MidwayPayoff[3];
        else row = &r.MidwayPayoff[IsHard(t) ? 5 : 4];
        break;
      case bet::SevenPoint7: row = &r.SevenPointSevenPayoff[result == BetResult::WinOdds ? 2 : 1]; break;
      case bet::HotRoller: row = &r.HotRollerPayoff[std::min(t.HotRollerCount, 6) + 1]; break;
      case bet::SharpShooter: row = &r.SharpShooterPayoff[t.PointsWon >= 10 ? 11 : t.PointsWon + 1]; break;
      case bet::RideTheLine: row = &r.RideLinePayoff[t.PassesMade >= 11 ? 12 : t.PassesMade + 1]; break;
      case bet::Fire: row = &r.FirePayoff[std::min(t.FireCount, 6)]; break;
      case bet::Field: {
        int fr = FieldRow(t.Die1, t.Die2);
        if (fr == 0) return {};  // dice that have no Field row
        row = &r.FieldPayoff[fr];
        break;
      }
      default: break;
    }
  }

  Payout out;
  out.row = *row;
  Money raw =
      parts ? Money::FromDouble(Split(amount, *row, parts)) : MulDivMoney(amount, row->PayoffPay, row->PayoffFor);
  if (bet >= bet::Lay4 && bet <= bet::Lay10) {
    if (raw.raw > 0 || r.ChargeAllLay) raw -= g.LayVigHeld[seat][bet - bet::Lay4];
  } else if (bet >= bet::Buy4 && bet <= bet::Buy10) {
    if (raw.raw > 0 || r.ChargeAllBuy) raw -= g.BuyVigHeld[seat][bet - bet::Buy4];
  }
  out.unrounded = raw.ToDouble();
  out.payoff = FloorToUnit(raw, PayoffUnit(r));
  return out;
}

namespace {

// A settled Buy or Lay gives up its vig: it leaves OnTable when it was charged up front.
Money ReleaseVig(Game& g, int seat, int bet) {
  Money* held = nullptr;
  bool upFront = false;
  if (bet >= bet::Buy4 && bet <= bet::Buy10) {
    held = &g.BuyVigHeld[seat][bet - bet::Buy4];
    upFront = g.Rules.ChargeAllBuy;
  } else if (bet >= bet::Lay4 && bet <= bet::Lay10) {
    held = &g.LayVigHeld[seat][bet - bet::Lay4];
    upFront = g.Rules.ChargeAllLay;
  }
  if (held == nullptr) return {};
  const Money vig = *held;
  if (upFront) g.OnTable[seat] -= vig;
  *held = Money{};
  return vig;
}

// Whether a bet that won or lost must come down rather than stay.
bool MustComeDown(const Game& g, int seat, int bet) {
  const TableState& t = g.Table;
  const int mask = t.AllNumbersMask;
  if ((bet == bet::Come || bet == bet::DontCome) && t.DiceTotal == 7) return true;
  if (bet == bet::PassLineOdds || bet == bet::DontPassOdds) return true;
  if (bet >= bet::DontCome4 && bet <= bet::DontCome10Odds) return true;
  if (bet >= bet::Come4 && bet <= bet::Come10 && !g.Rules.AllowPutBets) return true;
  if (bet >= bet::Come4Odds && bet <= bet::Come10Odds && g.BetAmount[seat][bet - 6].raw <= 0) return true;
  if (bet == bet::AllSmall && (mask & 0x7C)) return true;
  if (bet == bet::AllTall && (mask & 0x1F00)) return true;
  return (bet == bet::Point7 || bet == bet::SevenPoint7) && t.Point > 0;
}

}  // namespace

void SettleBet(Game& g, int i, BetResult result, int bet) {
  const int seat = kSettleSeat[i];
  const Money amount = g.BetAmount[seat][bet];
  if (amount.raw <= 0) return;

  if (g.BetWorking[seat][bet] <= 0) {
    if (result == BetResult::Win || result == BetResult::Lose) return;  // the bet stands
    HandleNotWorking(g, seat, bet);
    return;
  }

  const Payout paid = ComputePayoff(g, seat, bet, result, amount);
  if (paid.payoff.raw == 0) return;  // a push: the bet stands
  Settlement s;
  s.seat = seat;
  s.bet = bet;
  s.stake = amount;
  s.payoff = paid.payoff;
  s.unrounded = paid.unrounded;
  s.row = paid.row;

  {
    // What was at risk: up-front vig counts as part of the wager.
    Money wagered = amount;
    if (bet >= bet::Lay4 && bet <= bet::Lay10 && g.Rules.ChargeAllLay) wagered += g.LayVigHeld[seat][bet - bet::Lay4];
    if (bet >= bet::Buy4 && bet <= bet::Buy10 && g.Rules.ChargeAllBuy) wagered += g.BuyVigHeld[seat][bet - bet::Buy4];
    Money comeBase = bet >= bet::Come4 && bet <= bet::Come10 ? g.ComeBase[seat][bet - bet::Come4] : Money{};
    RecordBetResult(g.Stats, seat, bet, wagered, s.payoff, comeBase);
  }
  if (bet >= bet::Come4 && bet <= bet::Come10) g.ComeBase[seat][bet - bet::Come4] = Money{};

  if (g.RecordEvents) LogBetResult(g, seat, bet, s.payoff);

  for (int scope : kCountedScopes) g.Bankroll[scope + seat] += s.payoff;
  g.ContractBase[seat][bet] = Money{};
  s.returned = MustComeDown(g, seat, bet);

  int32_t& streak = g.BetStreak[0][seat][bet];
  if (s.payoff.raw > 0) streak = streak < 0 ? 1 : streak + 1;
  else streak = streak > 0 ? -1 : streak - 1;

  s.vig = ReleaseVig(g, seat, bet);
  if (s.payoff.raw > 0) HandleWinner(g, s);
  else HandleLoser(g, s);
}

namespace {

// Kept out of line: resolution calls SettleAll for every bet a roll decides, and most of
// those bets have no holder, so the callers stay small with only the test inline.
[[gnu::noinline]] void SettleHolders(Game& g, BetResult result, int bet) {
  // A seat's bit is set exactly when it has an amount on the bet, the first thing
  // SettleBet tests: seats without one cost a bit test.
  for (int i = 1; i <= 8 && g.BetHolders[bet] != 0; ++i)
    if (g.BetHolders[bet] & (1u << kSettleSeat[i])) SettleBet(g, i, result, bet);
}

}  // namespace

void SettleAll(Game& g, BetResult result, int bet) {
  if (g.BetHolders[bet] != 0) SettleHolders(g, result, bet);
}

void MoveBet(Game& g, int seat, int from, int to) {
  Money amount = g.BetAmount[seat][from];
  if (amount.raw <= 0) return;
  g.Moving = true;
  CommitAmount(g, seat, from, -amount);
  CommitAmount(g, seat, to, amount);
  g.Moving = false;
  // The base leaves the box with the bet: a stale base there would let the rules of
  // the box restore a bet that travelled.
  g.ContractBase[seat][from] = Money{};
  g.ContractBase[seat][to] = amount;
  if (from == bet::Come) {
    int p = PointOfRow(to);
    g.ComeBase[seat][to - bet::Come4] = amount;
    if (g.AutoDownPlace[seat]) {
      TakeDown(g, seat, PointRow(BetFamily::Place, p));
      TakeDown(g, seat, PointRow(BetFamily::Buy, p));
    }
  }
  if (g.RecordEvents) LogBetMoved(g, seat, from, to, amount);
}

namespace {

void MoveAll(Game& g, int p) {
  if (g.BetHolders[bet::Come] == 0 && g.BetHolders[bet::DontCome] == 0) return;
  for (int i = 1; i <= 8; ++i) {
    int seat = kSettleSeat[i];
    MoveBet(g, seat, bet::Come, PointRow(BetFamily::ComeNumber, p));
  }
  for (int i = 1; i <= 8; ++i) {
    int seat = kSettleSeat[i];
    MoveBet(g, seat, bet::DontCome, PointRow(BetFamily::DontComeNumber, p));
  }
}

// A Repeater on total n wins when its count reached `needed`; the count is cleared
// then, whether or not anybody holds the bet.
void RepeaterWin(Game& g, int total, int needed) {
  int betId = bet::Repeater2 + (total < 7 ? total - 2 : total - 3);
  if (g.Table.RepeaterCount[total] == needed) {
    SettleAll(g, BetResult::Win, betId);
    g.Table.RepeaterCount[total] = 0;
  }
}

void StepA(Game& g) {
  TableState& t = g.Table;
  const int P = t.PriorPoint, total = t.DiceTotal;
  const bool hard = IsHard(t);
  if (P != 0 && total == P) {
    SettleAll(g, BetResult::Lose, bet::DontPass);
    SettleAll(g, BetResult::LoseOdds, bet::DontPassOdds);
  }
  auto numberLosers = [&](int p, int hardBet) {
    SettleAll(g, BetResult::Lose, PointRow(BetFamily::DontComeNumber, p));
    SettleAll(g, BetResult::LoseOdds, PointRow(BetFamily::DontComeOdds, p));
    SettleAll(g, BetResult::Lose, PointRow(BetFamily::Lay, p));
    if (hardBet && !hard) SettleAll(g, BetResult::Lose, hardBet);
  };
  switch (total) {
    case 2:
    case 3:
    case 12:
      if (P == 0) SettleAll(g, BetResult::Lose, bet::PassLine);
      SettleAll(g, BetResult::Lose, bet::Come);
      break;
    case 4: numberLosers(4, bet::Hard4); break;
    case 5: numberLosers(5, 0); break;
    case 6: numberLosers(6, bet::Hard6); break;
    case 8: numberLosers(8, bet::Hard8); break;
    case 9: numberLosers(9, 0); break;
    case 10: numberLosers(10, bet::Hard10); break;
    case 11:
      if (P == 0) SettleAll(g, BetResult::Lose, bet::DontPass);
      SettleAll(g, BetResult::Lose, bet::DontCome);
      break;
    case 7: {
      if (P == 0) {
        SettleAll(g, BetResult::Lose, bet::DontPass);
      } else {
        SettleAll(g, BetResult::Lose, bet::PassLine);
        SettleAll(g, BetResult::LoseOdds, bet::PassLineOdds);
        if (g.Rules.FirePayoff[std::min(t.FireCount, 6)].PayoffPay.raw < 0) {
          SettleAll(g, BetResult::Lose, bet::Fire);
          t.FireCount = 0;
          t.FireMask = 0;
        }
      }
      for (int b = bet::Come4; b <= bet::Come10; ++b) {
        SettleAll(g, BetResult::Lose, b);
        SettleAll(g, BetResult::LoseOdds, b + 6);
      }
      SettleAll(g, BetResult::Lose, bet::DontCome);
      SettleAll(g, BetResult::Lose, bet::Big6);
      SettleAll(g, BetResult::Lose, bet::Big8);
      for (int b = bet::Hard4; b <= bet::Hard10; ++b) SettleAll(g, BetResult::Lose, b);
      for (int b = bet::Place4; b <= bet::Buy10; ++b) SettleAll(g, BetResult::Lose, b);
      t.AllNumbersMask = 0;
      SettleAll(g, BetResult::Lose, bet::AllSmall);
      SettleAll(g, BetResult::Lose, bet::AllTall);
      SettleAll(g, BetResult::Lose, bet::MakeAll);
      SettleAll(g, BetResult::Lose, bet::FourRollsNo7);
      if (g.Rules.HotRollerPayoff[std::min(t.HotRollerCount, 6) + 1].PayoffPay.raw < 0) {
        SettleAll(g, BetResult::Lose, bet::HotRoller);
        t.HotRollerCount = 0;
        t.HotRollerMask = 0;
      }
      for (int b = bet::Repeater2; b <= bet::Repeater12; ++b) SettleAll(g, BetResult::Lose, b);
      for (int n = 2; n <= 12; ++n) t.RepeaterCount[n] = 0;
      break;
    }
    default: break;
  }
}

void StepB(Game& g) {
  if (g.HeldPropBets == 0) return;  // nothing here changes the table's own state
  const TableState& t = g.Table;
  const int total = t.DiceTotal, P = t.PriorPoint;
  SettleAll(g, BetResult::Win, bet::Field);
  if (total < 6 || total > 8) SettleAll(g, BetResult::Lose, bet::Midway);
  if (total != 2) SettleAll(g, BetResult::Lose, bet::Two);
  if (total != 3) SettleAll(g, BetResult::Lose, bet::Three);
  if (total != 7) SettleAll(g, BetResult::Lose, bet::Seven);
  if (total != 11) SettleAll(g, BetResult::Lose, bet::Eleven);
  if (total != 12) SettleAll(g, BetResult::Lose, bet::Twelve);
  if (total >= 4 && total <= 11) SettleAll(g, BetResult::Lose, bet::Craps);
  if (total >= 4 && total <= 10) {
    SettleAll(g, BetResult::Lose, bet::CAndE);
    SettleAll(g, BetResult::Lose, bet::Horn);
    if (total != 7) SettleAll(g, BetResult::Lose, bet::World);
  }
  if (total < 8) SettleAll(g, BetResult::Lose, bet::Over7);
  else SettleAll(g, BetResult::Win, bet::Over7);
  if (total > 6) SettleAll(g, BetResult::Lose, bet::Under7);
  else SettleAll(g, BetResult::Win, bet::Under7);

  // Hops: each loses unless the dice are its pair.
  int lo = std::min(t.Die1, t.Die2), hi = std::max(t.Die1, t.Die2);
  static constexpr int kHops[17][2] = {{1, 3}, {1, 4}, {1, 5}, {1, 6}, {2, 2}, {2, 3}, {2, 4}, {2, 5}, {2, 6},
                                       {3, 3}, {3, 4}, {3, 5}, {3, 6}, {4, 4}, {4, 5}, {4, 6}, {5, 5}};
  for (int h = 0; h < 17; ++h)
    if (!(kHops[h][0] == lo && kHops[h][1] == hi)) SettleAll(g, BetResult::Lose, bet::Hop13 + h);

  if (total > 4) SettleAll(g, BetResult::Lose, bet::LeftField);
  else SettleAll(g, BetResult::Win, bet::LeftField);
  if (total == 4 || total == 9 || total == 10) SettleAll(g, BetResult::Win, bet::CenterField);
  else SettleAll(g, BetResult::Lose, bet::CenterField);
  // Right Field overlaps on 9: it first loses, then what handling left on it wins.
  if (total < 10) SettleAll(g, BetResult::Lose, bet::RightField);
  if (total >= 9) SettleAll(g, BetResult::Win, bet::RightField);

  bool established = total == 4 || total == 5 || total == 6 || total == 8 || total == 9 || total == 10;
  if (P == 0 && !established) {
    SettleAll(g, BetResult::Lose, bet::Point7);
    if (total != 7) SettleAll(g, BetResult::Lose, bet::SevenPoint7);
  }
  if (P != 0 && total != 7 && t.SecondPriorPoint == 0) {
    SettleAll(g, BetResult::Lose, bet::Point7);
    SettleAll(g, BetResult::Lose, bet::SevenPoint7);
  }
}

void NumberWinners(Game& g, int p) {
  SettleAll(g, BetResult::Win, PointRow(BetFamily::ComeNumber, p));
  SettleAll(g, BetResult::WinOdds, PointRow(BetFamily::ComeOdds, p));
  SettleAll(g, BetResult::Win, PointRow(BetFamily::Place, p));
  SettleAll(g, BetResult::Win, PointRow(BetFamily::Buy, p));
}

// The hop bet of a roll, by the dice low and high; 0 for the rolls that have none here
// (1-1, 1-2, 5-6 and 6-6 are the one-roll bets Two, Three, Eleven and Twelve).
int HopBet(int lo, int hi) {
  // A table rather than tests: the dice are random, and a test of them is a branch the
  // processor guesses wrong as often as not.
  static constexpr int kHop[7][7] = {
      {0, 0, 0, 0, 0, 0, 0},
      {0, 0, 0, bet::Hop13, bet::Hop13 + 1, bet::Hop13 + 2, bet::Hop13 + 3},
      {0, 0, bet::Hop13 + 4, bet::Hop13 + 5, bet::Hop13 + 6, bet::Hop13 + 7, bet::Hop13 + 8},
      {0, 0, 0, bet::Hop13 + 9, bet::Hop13 + 10, bet::Hop13 + 11, bet::Hop13 + 12},
      {0, 0, 0, 0, bet::Hop13 + 13, bet::Hop13 + 14, bet::Hop13 + 15},
      {0, 0, 0, 0, 0, bet::Hop13 + 16, 0},
      {0, 0, 0, 0, 0, 0, 0}};
  if (lo < 1 || hi > 6) return 0;
  return kHop[lo][hi];
}

// A point made: the line wins with its odds, and the hand bets count it.
void PointMadeWinners(Game& g) {
  TableState& t = g.Table;
  SettleAll(g, BetResult::Win, bet::PassLine);
  SettleAll(g, BetResult::WinOdds, bet::PassLineOdds);
  const int bit = 1 << PointOffset(t.PriorPoint);
  if (!(t.FireMask & bit)) {
    t.FireMask |= bit;
    ++t.FireCount;
  }
  ++t.PointsWon;
  ++t.PassesMade;
}

// 2, 3 and 12: the don't side wins off the bar, the craps bets win.
void CrapsWinners(Game& g, int total) {
  const bool dontWins = total == 3 || total != g.Rules.BarNumber;
  if (g.Table.PriorPoint == 0 && dontWins) SettleAll(g, BetResult::Win, bet::DontPass);
  const int own = total == 2 ? bet::Two : total == 3 ? bet::Three : bet::Twelve;
  for (int b : {own, bet::Craps, bet::CAndE, bet::Horn, bet::World}) SettleAll(g, BetResult::Win, b);
  if (dontWins) SettleAll(g, BetResult::Win, bet::DontCome);
  RepeaterWin(g, total, total < 7 ? total : 14 - total);
}

// 4, 5, 6, 8, 9, 10: the number's bets, the corner and hard bets, the hop; Come and
// Don't Come travel.
void NumberRollWinners(Game& g, int total, int hop, bool hard) {
  NumberWinners(g, total);
  if (total == 6 || total == 8) {
    SettleAll(g, BetResult::Win, total == 6 ? bet::Big6 : bet::Big8);
    SettleAll(g, BetResult::Win, bet::Midway);
  }
  if (hard) SettleAll(g, BetResult::Win, bet::Hard4 + (total - 4) / 2);
  SettleAll(g, BetResult::Win, hop);
  RepeaterWin(g, total, total < 7 ? total : 14 - total);
  MoveAll(g, total);
}

void SevenWinners(Game& g, int hop) {
  TableState& t = g.Table;
  const int P = t.PriorPoint;
  if (P == 0) {
    SettleAll(g, BetResult::Win, bet::PassLine);
    ++t.PassesMade;
  } else {
    SettleAll(g, BetResult::Win, bet::Come);
    SettleAll(g, BetResult::Win, bet::DontPass);
    SettleAll(g, BetResult::WinOdds, bet::DontPassOdds);
  }
  for (int b = bet::DontCome4; b <= bet::DontCome10; ++b) {
    SettleAll(g, BetResult::Win, b);
    SettleAll(g, BetResult::WinOdds, b + 6);
  }
  for (int b = bet::Lay4; b <= bet::Lay10; ++b) SettleAll(g, BetResult::Win, b);
  for (int b : {bet::Midway, bet::Seven, bet::World, hop}) SettleAll(g, BetResult::Win, b);
  if (P == 0) SettleAll(g, BetResult::Win, bet::SevenPoint7);
  if (P != 0 && t.SecondPriorPoint == 0) {
    SettleAll(g, BetResult::Win, bet::Point7);
    SettleAll(g, BetResult::WinOdds, bet::SevenPoint7);
  }
  if (P != 0 && g.Rules.FirePayoff[std::min(t.FireCount, 6)].PayoffPay.raw > 0) {
    SettleAll(g, BetResult::Win, bet::Fire);
    t.FireMask = 0;
    t.FireCount = 0;
  }
  if (g.Rules.HotRollerPayoff[std::min(t.HotRollerCount, 6) + 1].PayoffPay.raw > 0) {
    SettleAll(g, BetResult::Win, bet::HotRoller);
    t.HotRollerMask = 0;
  }
  t.HotRollerCount = 0;
}

void ElevenWinners(Game& g) {
  if (g.Table.PriorPoint == 0) {
    SettleAll(g, BetResult::Win, bet::PassLine);
    ++g.Table.PassesMade;
  }
  for (int b : {bet::Eleven, bet::CAndE, bet::Come, bet::Horn, bet::World}) SettleAll(g, BetResult::Win, b);
  RepeaterWin(g, 11, 3);
}

// Step C: winners by total.
void StepC(Game& g) {
  const TableState& t = g.Table;
  const int total = t.DiceTotal;
  if (t.PriorPoint != 0 && total == t.PriorPoint) PointMadeWinners(g);
  const int hop = HopBet(std::min(t.Die1, t.Die2), std::max(t.Die1, t.Die2));
  switch (total) {
    case 2:
    case 3:
    case 12: CrapsWinners(g, total); break;
    case 7: SevenWinners(g, hop); break;
    case 11: ElevenWinners(g); break;
    case 4:
    case 5:
    case 6:
    case 8:
    case 9:
    case 10: NumberRollWinners(g, total, hop, IsHard(t)); break;
    default: break;
  }
}

void StepD(Game& g) {
  TableState& t = g.Table;
  constexpr int kSmall = 0x7C, kTall = 0x1F00;
  if ((t.AllNumbersMask & (kSmall | kTall)) == (kSmall | kTall)) {
    t.AllNumbersMask = 0;
    SettleAll(g, BetResult::Win, bet::AllSmall);
    SettleAll(g, BetResult::Win, bet::AllTall);
    SettleAll(g, BetResult::Win, bet::MakeAll);
  } else if ((t.AllNumbersMask & kSmall) == kSmall) {
    if (!AnySeatHolds(g, bet::MakeAll)) t.AllNumbersMask &= ~kSmall;
    SettleAll(g, BetResult::Win, bet::AllSmall);
  } else if ((t.AllNumbersMask & kTall) == kTall) {
    if (!AnySeatHolds(g, bet::MakeAll)) t.AllNumbersMask &= ~kTall;
    SettleAll(g, BetResult::Win, bet::AllTall);
  }
  if (t.FourRollCount == 4) {
    t.FourRollCount = 0;
    SettleAll(g, BetResult::Win, bet::FourRollsNo7);
  }
  if (t.DiceTotal == 7 && t.PriorPoint > 0) {
    SettleAll(g, BetResult::Win, bet::SharpShooter);
    t.PointsWon = 0;
    SettleAll(g, BetResult::Win, bet::RideTheLine);
    t.PassesMade = 0;
  }
}

}  // namespace

void ResolveBets(Game& g) {
  StepA(g);
  StepB(g);
  StepC(g);
  StepD(g);
}
