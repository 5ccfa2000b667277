// Variable reads of the Auto-Bet interpreter: every reference group becomes a number
// (or a string record) from the stores the engine keeps. This runs for every statement
// after every roll, so a number read touches a few array cells and allocates nothing;
// only a string value builds text.

#include "autobet/variables.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "autobet/statement_buffer.h"
#include "engine/bet_limits.h"
#include "engine/game_state.h"
#include "engine/house_edge.h"
#include "engine/resolution.h"
#include "stats/roll_totals.h"
#include "storage/language_text.h"

namespace {

double Truth(bool b) { return b ? -1.0 : 0.0; }
double Dollars(Money m) { return m.ToDouble(); }
// Counts and roll numbers in the bet statistics are kept as whole dollars of Money.
double Whole(Money m) { return static_cast<double>(m.raw / Money::kScale); }

// Simulated hours of a scope column: the rolls the table made in that period at the
// rule's roll rate.
double Hours(const Game& g, int column) {
  const double rate = RollsPerHour(g.Rules);
  return rate > 0 ? g.Stats.SeatRolls[column] / rate : 0;
}

LocalDateTime Now(const Game& g) { return g.Time ? g.Time->Now() : DefaultClock().Now(); }

// Days from 1970-01-01 of a civil date (proleptic Gregorian).
int64_t DaysFromCivil(int64_t y, int m, int d) {
  y -= m <= 2;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const int64_t yoe = y - era * 400;
  const int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468;
}

double SecondsSinceMidnight(const LocalDateTime& t) {
  return t.hour * 3600.0 + t.minute * 60.0 + t.second + t.millisecond / 1000.0;
}

// ---- Bets V1..V107.

// The roll number that the bet statistics' field 5 of a column is comparable with: the
// session count for the hand and session groups, the last session's own count for the
// last session, the all-sessions count for all sessions.
int32_t RollNumberNow(const Statistics& s, int column) {
  if (column >= kAllScope) return s.RollCount[kAllScope][0];
  if (column >= kLastSessionScope) return s.RollCount[kLastSessionScope][0];
  return s.RollCount[kSessionScope][0];
}

using BetRow = std::array<Money, 6>;

// Whether the row's last event came on the roll just made.
bool DecidedOnLastRoll(const Statistics& s, const BetRow& row, int column) {
  return Whole(row[0]) > 0 && Whole(row[4]) == RollNumberNow(s, column);
}

// The total (Y22, or no Y), which most reads want, and the last roll's amount (Y29): the
// statistics of a row that can't fault.
double RowFigure(const Statistics& s, const BetRow& row, int column, int y) {
  if (y != 29) return Dollars(row[1]);
  return DecidedOnLastRoll(s, row, column) ? Dollars(row[5]) : 0;
}

// One statistic (Y21..Y31) of one store row: resolved wagers, wins or losses. `none` is
// the fault when the period has no event to give a value.
bool RowStatistic(Game& g, const BetRow& row, int column, int y, int none, double& v) {
  if (y == 0 || y == 22 || y == 29) {
    v = RowFigure(g.Stats, row, column, y);
    return true;
  }
  const double count = Whole(row[0]);
  switch (y) {
    case 21: v = count; return true;
    case 28: v = DecidedOnLastRoll(g.Stats, row, column) ? 1 : 0; return true;
    case 30:
    case 31: {
      const double hours = Hours(g, column);
      v = hours > 0 ? (y == 30 ? count : Dollars(row[1])) / hours : 0;
      return true;
    }
    default: break;
  }
  if (count <= 0) return Fault(g, none);
  switch (y) {
    case 23: v = Dollars(row[2]); return true;
    case 24: v = Dollars(row[3]); return true;
    case 25: v = Dollars(row[1]) / count; return true;
    case 26: v = Dollars(row[5]); return true;
    case 27: v = RollNumberNow(g.Stats, column) - Whole(row[4]); return true;
    default: v = 0; return true;
  }
}

// Payoff ratio, numerator or denominator (k = 0, 1, 2) of the row the bet is paid by now.
bool BetPayoffRead(Game& g, int bet, int k, double& v) {
  int fault = 0;
  const PayoffRow* row = PaidByRow(g.Rules, bet, g.Table.Point, fault);
  if (row == nullptr) return Fault(g, fault + k);
  const double x = Dollars(row->PayoffPay), y = Dollars(row->PayoffFor);
  if (k == 1) v = x;
  else if (k == 2) v = y;
  else if (y == 0) return Fault(g, 9999);
  else v = x / y;
  return true;
}

// The edge of a unit on `bet` as the table pays it now.
bool BetEdge(Game& g, int bet, double& edge) {
  const int fault = BetEdge(g.Rules, bet, g.Table.Point, edge);
  return fault == 0 || Fault(g, fault);
}

// Net (wins less losses) of a statistic.
bool NetStatistic(Game& g, int bet, const BetRow& win, const BetRow& loss, const BetRow& all, int column, int y,
                  double& v) {
  const bool anyWin = win[0].raw > 0, anyLoss = loss[0].raw > 0;
  switch (y) {
    case 23:  // the best single result
      if (!anyWin && !anyLoss) return Fault(g, 300);
      v = anyWin ? Dollars(win[2]) : -Dollars(loss[3]);
      return true;
    case 24:  // the worst single result
      if (!anyWin && !anyLoss) return Fault(g, 300);
      v = anyLoss ? -Dollars(loss[2]) : Dollars(win[3]);
      return true;
    case 25:
      if (all[0].raw <= 0) return Fault(g, 300);
      v = (Dollars(win[1]) - Dollars(loss[1])) / Whole(all[0]);
      return true;
    case 26:  // the signed amount of the later of the last win and the last loss
      if (!anyWin && !anyLoss) return Fault(g, 300);
      v = anyWin && (!anyLoss || win[4] >= loss[4]) ? Dollars(win[5]) : -Dollars(loss[5]);
      return true;
    case 27: return RowStatistic(g, all, column, y, 300, v);
    case 32: {  // what the house expects of the resolved wagers of the period
      double edge = 0;
      if (!BetEdge(g, bet, edge)) return false;
      if (all[0].raw <= 0) return Fault(g, 300);
      v = edge * Dollars(all[1]);
      return true;
    }
    default: {
      double w = 0, l = 0;
      RowStatistic(g, win, column, y, 301, w);
      RowStatistic(g, loss, column, y, 302, l);
      v = w - l;
      return true;
    }
  }
}

bool ReadBet(Game& g, const ReferencePieces& r, int seat, double& v) {
  const int bet = r.v;
  const int column = ScopeBase(r.time) + seat;
  switch (r.y) {
    case 33: v = g.BetAmount[seat][bet].raw > 0 ? 1 : 0; return true;
    case 34: v = Dollars(g.BetAmount[seat][bet]); return true;
    case 35: v = g.BetAmountStartOfRoll[seat][bet].raw > 0 ? 1 : 0; return true;
    case 36: v = Dollars(g.BetAmountStartOfRoll[seat][bet]); return true;
    case 37: v = Truth(g.BetWorking[seat][bet] == 1 || g.BetWorking[seat][bet] == 2); return true;
    case 38: v = Truth(g.BetWorking[seat][bet] == 2); return true;
    case 39: v = Truth(g.BetWorking[seat][bet] == -1); return true;
    case 40:
      if (bet >= bet::Lay4 && bet <= bet::Lay10) v = Dollars(g.LayVigHeld[seat][bet - bet::Lay4]);
      else if (bet >= bet::Buy4 && bet <= bet::Buy10) v = Dollars(g.BuyVigHeld[seat][bet - bet::Buy4]);
      else return Fault(g, 1000);
      return true;
    case 41:
    case 42:
    case 43: return BetPayoffRead(g, bet, r.y - 41, v);
    case 44: v = Truth(g.DefaultWorking[seat][bet] == 1); return true;
    default: break;
  }
  const Statistics& s = g.Stats;
  const BetRow& all = s.BetStats[column][bet];
  const BetRow& win = s.BetWinStats[column][bet];
  const BetRow& loss = s.BetLossStats[column][bet];
  switch (r.x) {
    case 2: return RowStatistic(g, win, column, r.y, 301, v);
    case 3: return RowStatistic(g, loss, column, r.y, 302, v);
    case 4: return NetStatistic(g, bet, win, loss, all, column, r.y, v);
    case 5: {
      if (r.y == 32) {  // the expectation of a unit, as a percentage
        double edge = 0;
        if (!BetEdge(g, bet, edge)) return false;
        v = edge * 100;
        return true;
      }
      double net = 0, wagered = 0;
      if (!NetStatistic(g, bet, win, loss, all, column, r.y, net)) return false;
      // The same statistic of the resolved wagers is the base of the percentage.
      if (!RowStatistic(g, all, column, r.y, 300, wagered)) return false;
      if (wagered == 0) {
        if (r.y >= 21 && r.y <= 27) return Fault(g, 300);
        v = 0;
        return true;
      }
      v = net / wagered * 100;
      return true;
    }
    default: return RowStatistic(g, all, column, r.y, 300, v);
  }
}

// ---- Counters by scope column.

// Come-out rolls (0), passes (1) or misses (2) of a column decided on one total (2..12),
// or with total 0 over the totals Y names: all (Y0), the come-out's own decisions (Y14:
// naturals, and craps for misses) or those of points (Y15).
double Decisions(const Statistics& s, int column, int kind, int y, int total) {
  const auto& d = s.HandDecisions[column];
  if (total != 0) return d[total][kind];
  auto sum = [&](std::initializer_list<int> totals) {
    double n = 0;
    for (int t : totals) n += d[t][kind];
    return n;
  };
  if (y == 15) return sum({4, 5, 6, 8, 9, 10});
  if (y == 14) return kind == 2 ? sum({2, 3, 12}) : sum({7, 11});
  return sum({2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
}

double HandCounter(const Game& g, int v, int column) {
  const Statistics& s = g.Stats;
  const double hands = s.HandsShot[column];
  auto perHand = [&](double n) { return hands > 0 ? n / hands : 0; };
  switch (v) {
    case 1500: return hands;
    case 1501: return s.MostRollsInHand[column];
    case 1502: return perHand(s.RollCount[column][0]);
    case 1503: return s.MostComeOutRollsInHand[column];
    case 1504: return perHand(Decisions(s, column, 0, 0, 0));
    case 1505: return s.MostPassesInHand[column];
    case 1506: return perHand(Decisions(s, column, 1, 0, 0));
    case 1507: return s.MostMissesInHand[column];
    default: return perHand(Decisions(s, column, 2, 0, 0));
  }
}

// ---- Dice statistics.

// The chi-square test of the roll totals screen for one column: X30 (or none) the 11
// totals, X31 the 21 combinations, X32 the 36, X33 die 1's faces, X34 die 2's.
void ChiSquare(const Game& g, int column, int x, double& sum, int& df) {
  const int display = x == 31 ? 1 : x == 32 ? 2 : x == 33 || x == 34 ? 3 : 0;
  const std::span<const uint8_t> kinds = DisplayKinds(display);
  std::size_t first = 0, last = kinds.size();
  if (x == 33) last = 6;
  if (x == 34) first = 6;
  const bool skewed = g.Percentage.UseSkewedProbs && g.Percentage.PercentageDiceOn;
  const ProbabilityPlane& plane = g.Percentage.Table.Cells[1];
  const double total = g.Stats.RollCount[column][0];
  sum = 0;
  int count = 0;
  for (std::size_t i = first; i < last; ++i) {
    const int kind = kinds[i];
    const double expected = KindPercent(kind, skewed, plane) * 0.01 * total;
    if (expected <= 0) continue;
    sum += ChiSquareCell(g.Stats.RollCount[column][kind], expected);
    ++count;
  }
  df = count > 0 ? count - 1 : 0;
}

// ---- Table facts V5000 and up.

bool SessionHasRolls(const Game& g) { return g.Stats.RollCount[kSessionScope][0] > 0; }

// The outcome of the last roll for the shooter: a pass (naturals and points made) or a
// miss (craps on the come-out and seven-outs), as the hand counters count them.
bool JustPassed(const Game& g) {
  const TableState& t = g.Table;
  if (!SessionHasRolls(g)) return false;
  if (t.PriorPoint != 0) return t.DiceTotal == t.PriorPoint;
  return t.DiceTotal == 7 || t.DiceTotal == 11;
}
bool JustMissed(const Game& g) {
  const TableState& t = g.Table;
  if (!SessionHasRolls(g)) return false;
  if (t.PriorPoint != 0) return t.DiceTotal == 7;
  return t.DiceTotal == 2 || t.DiceTotal == 3 || t.DiceTotal == 12;
}
// The point the last roll decided, won or lost; 0 when it decided none.
int JustDecided(const Game& g) {
  const TableState& t = g.Table;
  if (!SessionHasRolls(g) || t.PriorPoint == 0) return 0;
  return t.DiceTotal == t.PriorPoint || t.DiceTotal == 7 ? t.PriorPoint : 0;
}

// The language's own Rnd: the 24-bit linear congruential generator of the old BASIC
// dialects, so that a seeded script draws the same numbers on every machine.
double NextRnd(AutoBetProgram& p) {
  p.RndSeed = (p.RndSeed * 0x43FD43FDu + 0xC39EC3u) & 0xFFFFFFu;
  return p.RndSeed / 16777216.0;
}

bool TableFact(Game& g, int v, double& out) {
  const TableState& t = g.Table;
  const RuleSet& r = g.Rules;
  const int selected = g.AutoBet.SelectedSeat;
  switch (v) {
    case 5000: out = Truth(g.AutoBet.InitializingScript); return true;
    case 5001: out = Truth(!SessionHasRolls(g)); return true;
    case 5002: out = Truth(g.Stats.RollCount[kHandScope][0] == 0); return true;
    case 5005: out = Truth(g.Rolls.EndOfFile); return true;
    case 5006: out = g.Rolls.NextRollPosition; return true;
    case 5007: out = g.Rolls.RollFile.IsOpen() ? static_cast<double>(g.Rolls.RollFile.Size()) : 0; return true;
    case 5200: out = t.Shooter; return true;
    case 5201: out = t.LastHandShooter; return true;
    case 5202: out = t.HandShooter; return true;
    case 5203: out = selected; return true;
    case 5204: out = g.AutoBet.Bettor != 0 ? g.AutoBet.Bettor : selected; return true;
    case 5210: out = 0; return true;  // the surface keeps no selected check yet
    case 5211: out = Truth(g.OnlineRole != 0); return true;
    case 5300: out = Truth(JustPassed(g)); return true;
    case 5301: out = Truth(JustMissed(g)); return true;
    case 5500: out = t.Point; return true;
    case 5501: out = t.LastPoint; return true;
    case 5502: out = JustDecided(g); return true;
    case 5510: out = t.DiceTotal; return true;
    case 5511: out = std::min(t.Die1, t.Die2) + std::max(t.Die1, t.Die2) / 10.0; return true;
    case 5512: out = t.Die1; return true;
    case 5513: out = t.Die2; return true;
    case 5514: out = t.Die1 + t.Die2 / 10.0; return true;
    case 5603: out = RollsPerHour(r); return true;
    case 5610: out = Dollars(r.MinPlacardBet); return true;
    case 5611: out = Dollars(r.MaxPlacardBet); return true;
    case 5612: out = Dollars(OddsMultiple(r, 4)); return true;
    case 5613: out = Dollars(OddsMultiple(r, 5)); return true;
    case 5614: out = Dollars(OddsMultiple(r, 6)); return true;
    case 5615: out = Dollars(OddsMultiple(r, 8)); return true;
    case 5616: out = Dollars(OddsMultiple(r, 9)); return true;
    case 5617: out = Dollars(OddsMultiple(r, 10)); return true;
    case 5630: out = r.BarNumber; return true;
    case 5655: out = g.Dice.lastSeed; return true;
    case 5672: out = g.Dice.rngNumber; return true;
    case 5691: out = Dollars(r.CompRate); return true;
    case 5693: {
      // Days since 30 December 1899 with the time of day as the fraction.
      const LocalDateTime now = Now(g);
      out = static_cast<double>(DaysFromCivil(now.year, now.month, now.day) - DaysFromCivil(1899, 12, 30)) +
            SecondsSinceMidnight(now) / 86400.0;
      return true;
    }
    case 5696: out = SecondsSinceMidnight(Now(g)); return true;
    case 5697: out = g.AutoBet.Answer; return true;
    case 5698: out = NextRnd(g.AutoBet); return true;
    case 5704: out = Truth(t.Point == 0); return true;
    case 5705: out = Truth(t.Point != 0); return true;
    case 5706: out = Truth(SessionHasRolls(g) && t.PriorPoint == 0); return true;
    case 5707: out = Truth(SessionHasRolls(g) && t.PriorPoint != 0); return true;
    case 5708: out = Truth(SessionHasRolls(g) && t.PriorPoint != 0 && t.DiceTotal == 7); return true;
    case 5709: out = Truth(JustDecided(g) != 0); return true;
    case 5710: out = Truth(t.Point != 0); return true;
    case 5711: out = Truth(t.Point == 0); return true;
    default: return Fault(g, 10000);
  }
}

// ---- Strings.

std::string DateText(const LocalDateTime& t) { return fmt::format("{}/{}/{}", t.month, t.day, t.year); }
std::string TimeText(const LocalDateTime& t) {
  const int h = t.hour % 12 == 0 ? 12 : t.hour % 12;
  return fmt::format("{}:{:02}:{:02} {}", h, t.minute, t.second, t.hour < 12 ? "AM" : "PM");
}

// The string record of a checkstack name: seats 1..8 by their special value, read when
// the text is wanted; the house's (seat 0) as a run-time string.
TokenRecord CheckStackNameRecord(Game& g, int seat, int stack) {
  if (seat >= 1 && seat <= kPlayerSeats) return {kCodeString, -(seat * 1000.0 + 800 + stack)};
  return {kCodeString, static_cast<double>(NewRunString(g.AutoBet, g.CheckStackName[seat][stack]))};
}

struct ErrorText {
  int code;
  const char* text;
};

constexpr ErrorText kErrorTexts[] = {
    {1, "Reference to Lay bet out of limits.\nAcceptable values 4,5,6,8,9,10"},
    {2, "Reference to Don't Come bet out of limits."},
    {3, "Reference to Don't Come Odds bet out of limits."},
    {4, "Reference to Come bet out of limits."},
    {5, "Reference to Come Odds bet out of limits."},
    {6, "Reference to Place bet out of limits."},
    {7, "Reference to Buy bet out of limits."},
    {8, "Reference to Big bet out of limits.\nAcceptable values 6,8"},
    {9, "Reference to Hard bet out of limits.\nAcceptable values 4,6,8,10"},
    {10, "Reference to Hop bet out of limits.\nAcceptable values 11-66 or 1.1-6.6"},
    {11, "Reference to Repeater bet out of limits.\nAcceptable values 2,3,4,5,6,8,9,10,11,12"},
    {12, "Inappropriate reference to Place bet.\nAcceptable values Place4, Place5, Place6, Place8, Place9, Place10"},
    {13, "Inappropriate reference to Buy bet.\nAcceptable values Buy4, Buy5, Buy6, Buy8, Buy9, Buy10"},
    {21, "Reference to checkstack out of limits.\nAcceptable values 0-99"},
    {22, "Number of rolls out of limits for moving average.\nAcceptable values 0-525"},
    {50, "Reference to player out of limits.\nAcceptable values 1-8"},
    {51, "Reference to player must match on both sides of 'thru'."},
    {52, "Reference to hand/session must match on both sides of 'thru'."},
    {53, "Reference to modifiers must match on both sides of 'thru'."},
    {100, "Can't take square root of negative number."},
    {110, "Reference to bankroll average out of limits."},
    {139, "Reference to Round function out of limits.\nPrecison must be greater than 0"},
    {141, "Reference to Sister number out of limits."},
    {190, "Reference to die out of limits.\nAcceptable values 1-2"},
    {191, "Reference to odds allowed factor out of limits."},
    {203, "Instr starting point out of limits."},
    {300, "No resolved wagers recorded for selected timed period."},
    {301, "No wins recorded for selected timed period."},
    {302, "No losses recorded for selected timed period."},
    {800, "Reference to checkstack name out of limits."},
    {813,
     "Reference to String$ function out of limits.\nAcceptable values for the first argument are 0-256\n"
     "Acceptable values for the second argument are 0-255"},
    {850, "Reference to player name out of limits."},
    {851, "No player at designated position."},
    {852, "Player not allowed to perform actions for other players.\nSee Options - Permissions."},
    {853, "Player not allowed to start new sessions.\nSee Options - Permissions."},
    {854, "Player not allowed to activate/deactivate probability files.\nSee Options - Permissions."},
    {855, "Player is not the shooter and not allowed to pass the dice for the shooter.  See Options - Permissions."},
    {856, "Player not allowed to activate/deactivate roll files.\nSee Options - Permissions."},
    {857, "Action not allowed when connected as online client."},
    {859, "Manual not allowed when connected as online client."},
    {860, "Reference to AutoHandle Winning Bets out of limits."},
    {861, "Reference to AutoHandle Losing Bets out of limits."},
    {862, "Bet always works and can't be called ON or OFF."},
    {864, "Not allowed to perform actions for other players while online."},
    {870,
     "Bankroll can only be set at the beginning of a session.  To make adjustments later, use ATM deposits / "
     "withdrawals."},
    {900, "Rolls per hour value out of limits.\nAcceptable values 0.0001 to 36000000"},
    {905, "Seed value out of limits.\nAcceptable values 1 to 2147483647 (RNG#3: 1 to 999999)"},
    {910, "Referenced RNG currently unavailable."},
    {911, "Reference to RNG out of limits."},
    {912, "Comp rate out of limits."},
    {914, "Odds allowed factor out of limits.\nAcceptable values 0-9999"},
    {915, "Odds ratio not known until point is established."},
    {916, "Odds payoff numerator not known until point is established."},
    {917, "Odds payoff denominator not known until point is established."},
    {918, "Payoff ratios of variable-payoff bets not implemented at this time."},
    {919, "Payoff numerators of variable-payoff bets not implemented at this time."},
    {920, "Payoff denominators of variable-payoff bets not implemented at this time."},
    {990, "Display of auto-bet messages turned off.\nSee Options menu."},
    {992, "Playing of sounds turned off.\nSee Configure - Sound."},
    {998, "Error extracting string."},
    {1000, "Vig not referenced to Lay or Buy bet."},
    {1001, "Reference to rolls out of limits.\nAcceptable values 1-12"},
    {1002, "Reference to # of points out of limits."},
    {1003, "Dice roll file not open."},
    {1004, "Output file not open."},
    {1006, "Bad path and/or file name."},
    {1007, "File is not a valid dice roll file."},
    {1008, "File not found or file is not a valid probability file."},
    {1009, "Reference to rolls out of limits.\nAcceptable values 1.1-6.6"},
    {1010, "Reference to rolls out of limits.\nAcceptable values 1-6"},
    {1011, "No value to assign."},
    {1012, "No string to assign."},
    {1013, "A script may only write files inside the data folder."},
    {9999, "Division by zero."},
};

}  // namespace

// ---- The interface of the interpreter.

double RollCounter(const Game& g, int v, int column, int y, int total) {
  const Statistics& s = g.Stats;
  switch (v) {
    case 2600: return Decisions(s, column, 0, y, total);
    case 2601: {
      // Of all rolls; naturals, points and one total of the come-out rolls.
      const double whole = total != 0 || y == 14 || y == 15 ? Decisions(s, column, 0, 0, 0) : s.RollCount[column][0];
      return Share(Decisions(s, column, 0, y, total), whole);
    }
    case 2602: return Decisions(s, column, 1, y, total);
    case 2604: return Decisions(s, column, 2, y, total);
    default: {
      // Passes or misses of the decisions of that kind.
      const double passes = Decisions(s, column, 1, y, total), misses = Decisions(s, column, 2, y, total);
      return Share(v == 2603 ? passes : misses, passes + misses);
    }
  }
}

double PointCounter(const Game& g, int v, int column, int x, int total) {
  const Statistics& s = g.Stats;
  const double established = Decisions(s, column, 0, 15, total);
  const double n = x == 7   ? Decisions(s, column, 1, 15, total)
                   : x == 8 ? Decisions(s, column, 2, 15, total)
                            : established;
  if (v == 4606) return n;
  return Share(n, x == 7 || x == 8 ? established : Decisions(s, column, 0, 0, 0));
}

// The chi-square family (V4510..V4512) takes its display from X; with a kind, the
// chi-square is that item's own cell.
double DiceStatistic(const Game& g, int v, int column, int x, int kind) {
  if (kind < 0 || kind >= kRollKinds) kind = 0;
  const Statistics& s = g.Stats;
  const ProbabilityPlane& plane = g.Percentage.Table.Cells[1];
  const bool skewed = g.Percentage.UseSkewedProbs && g.Percentage.PercentageDiceOn;
  const double rolls = s.RollCount[column][0];
  switch (v) {
    case 4501: return KindPercent(kind, skewed, plane);
    case 4502: return KindPercent(kind, skewed, plane) * 0.01 * rolls;
    case 4503: return Share(s.RollCount[column][kind], rolls);
    case 4504: return s.RollCount[column][kind];
    case 4505: return s.RollsSince[kind];
    case 4506: return KindPercent(kind, false, plane);
    case 4507: return KindPercent(kind, false, plane) * 0.01 * rolls;
    case 4508: return KindPercent(kind, true, plane) * 0.01 * rolls;
    case 4509: return KindPercent(kind, true, plane);
    default: {
      if (v == 4510 && kind != 0) {
        const double expected = KindPercent(kind, skewed, plane) * 0.01 * rolls;
        return expected > 0 ? ChiSquareCell(s.RollCount[column][kind], expected) : 0;
      }
      double sum = 0;
      int df = 0;
      ChiSquare(g, column, x, sum, df);
      if (v == 4510) return sum;
      if (v == 4511) return Chi2Pval(sum, df);
      return df;
    }
  }
}

double Share(double part, double whole) { return whole > 0 ? part / whole * 100 : 0; }

bool ReadVariable(Game& g, const TokenRecord* group, TokenRecord& out) {
  return ReadReference(g, ReadPieces(group), out);
}

bool FactValue(Game& g, int piece, int v, double& value) {
  const int seat = SeatOfPiece(g, piece);
  if (seat < 0 || seat >= kSeats) return Fault(g, 50);
  return TableFact(g, v, value);
}

bool ReadFact(Game& g, int piece, int v, TokenRecord& out) {
  double value = 0;
  if (!FactValue(g, piece, v, value)) return false;
  out = {kCodeNumber, value};
  return true;
}

bool BetRowValue(Game& g, const ReferencePieces& r, double& value) {
  const int seat = SeatOfPiece(g, r.piece);
  if (seat < 0 || seat >= kSeats) return Fault(g, 50);
  const int column = ScopeBase(r.time) + seat;
  const Statistics& s = g.Stats;
  const auto figure = [&](const auto& rows) { return RowFigure(s, rows[column][r.v], column, r.y); };
  switch (r.x) {
    case 2: value = figure(s.BetWinStats); break;
    case 3: value = figure(s.BetLossStats); break;
    case 4: value = figure(s.BetWinStats) - figure(s.BetLossStats); break;
    default: value = figure(s.BetStats); break;
  }
  return true;
}

bool ReadReference(Game& g, const ReferencePieces& r, TokenRecord& out) {
  if (IsAmountRead(r)) return ReadAmount(g, r.piece, r.v, out);
  if (IsBetRowRead(r)) {
    double value = 0;
    if (!BetRowValue(g, r, value)) return false;
    out = {kCodeNumber, value};
    return true;
  }
  if (r.v >= 5000) return ReadFact(g, r.piece, r.v, out);
  const int seat = SeatOfPiece(g, r.piece);
  if (seat < 0 || seat >= kSeats) return Fault(g, 50);
  const int v = r.v;
  const int column = ScopeBase(r.time) + seat;
  double value = 0;
  bool ok = true;

  if (v >= 1 && v <= kBets) {
    ok = ReadBet(g, r, seat, value);
  } else if (v >= kCheckStackRow && v < kBetRows) {
    value = Dollars(g.BetAmount[seat][v]);
  } else if (v >= 800 && v <= 899) {
    out = CheckStackNameRecord(g, seat, v - 800);
    return true;
  } else {
    switch (v) {
      case 651: value = Dollars(g.Bankroll[seat] - g.OnTable[seat]); break;
      case 655: value = Dollars(g.AvailableBankroll[seat]); break;
      case 670: value = g.AutoHandleWin[seat]; break;
      case 671: value = g.AutoHandleLose[seat]; break;
      case 700: value = Truth(g.AutoTakeOdds[seat]); break;
      case 701: value = Truth(g.AutoLayOdds[seat]); break;
      case 702: value = Truth(g.AutoDownPlace[seat]); break;
      case 703: value = Truth(g.AutoPassDice[seat]); break;
      case 710: value = Truth(g.ScriptActive[seat]); break;
      case 1100: value = Dollars(g.Comps[column]); break;
      case 1200: value = Hours(g, column); break;
      case 1300: value = Dollars(g.BeginningBankroll[column]); break;
      case 1301: value = Dollars(g.Bankroll[column]); break;
      case 1302: value = Dollars(g.HighBankroll[column]); break;
      case 1303: value = Dollars(g.LowBankroll[column]); break;
      case 4606:
      case 4607: value = PointCounter(g, v, column, r.x, 0); break;
      default:
        if (v >= 1500 && v <= 1508) value = HandCounter(g, v, column);
        else if (v >= 2600 && v <= 2605) value = RollCounter(g, v, column, r.y, 0);
        else if (v >= 4501 && v <= 4512) value = DiceStatistic(g, v, column, r.x, r.y);
        else if (v >= 5000) ok = TableFact(g, v, value);
        else ok = Fault(g, 10000);  // lists (V980, V990, V4000..) are expanded by the compiler
        break;
    }
  }
  if (!ok) return false;
  out = {kCodeNumber, value};
  return true;
}

int AssignVariable(Game& g, int position) {
  AutoBetProgram& p = g.AutoBet;
  const int pieces = std::min(GroupSize(static_cast<int>(p.StatementBuffer[position].value)),
                              std::max(0, p.StatementLength - position));
  TokenRecord out{kCodeNumber, 0};
  ReadVariable(g, &p.StatementBuffer[position], out);
  p.StatementBuffer[position] = out;
  return pieces;  // the caller deletes them
}

std::string_view StringView(const Game& g, int code, double value, std::string& scratch) {
  // A fault of extraction is the statement's fault: RunError is the interpreter's state
  // even where the caller only reads the game.
  auto fail = [&]() {
    const_cast<Game&>(g).AutoBet.RunError = 998;
    return std::string_view();
  };
  if (code == kCodeNumber) return scratch = GeneralNumber(value);
  const int n = static_cast<int>(value);
  if (code == kCodeVariableTarget) {
    if (n < 800 || n > 899) return fail();
    return g.CheckStackName[SeatOfPiece(g, 14)][n - 800];
  }
  if (code != kCodeString) return fail();
  if (n > 0) {
    const auto& pool = g.AutoBet.ProgramStrings;
    if (static_cast<std::size_t>(n) > pool.size()) return fail();
    return pool[static_cast<std::size_t>(n - 1)].text;
  }
  switch (n) {
    case 0:
    case -15: return {};
    case -1: return scratch = DateText(Now(g));
    case -2: return scratch = TimeText(Now(g));
    case -10: return "Please enter a value";
    case -11: return "Please enter a string";
    default: break;
  }
  if (n <= -901 && n >= -908) return g.PlayerName[-n - 900];
  if (n <= -1800 && n >= -8899) {
    const int seat = -n / 1000, stack = -n % 1000 - 800;
    if (stack >= 0 && stack <= 99) return g.CheckStackName[seat][stack];
  }
  return fail();
}

std::string StringValue(const Game& g, int code, double value) {
  std::string scratch;
  return std::string(StringView(g, code, value, scratch));
}

std::string RunErrorText(int code) {
  if ((code >= 801 && code <= 806) || (code >= 809 && code <= 812))
    return "Reference to " + FunctionDisplayName(code) + " function out of limits.";
  if (code == 1005) return std::string(LanguageText(kEnglish, 55));
  for (const ErrorText& e : kErrorTexts)
    if (e.code == code) return e.text;
  return {};
}

// ---- Values read from records.

double NumberOfText(const Game& g, const TokenRecord& r) {
  if (r.code == kCodeNumber) return r.value;
  if (r.code == kCodeString) {
    std::string scratch;
    return LeadingNumber(StringView(g, r.code, r.value, scratch));
  }
  return 0;
}

std::string TextOf(const Game& g, const TokenRecord& r) {
  if (r.code == kCodeNumber) return GeneralNumber(r.value);
  if (r.code == kCodeString) return StringValue(g, r.code, r.value);
  return {};
}

bool CompareTexts(const Game& g, const TokenRecord& left, int relational, const TokenRecord& right) {
  // Binary, case-sensitive: string_view compares bytes as unsigned char.
  std::string leftScratch, rightScratch;
  return RelateValues(StringView(g, left.code, left.value, leftScratch), relational,
                      StringView(g, right.code, right.value, rightScratch));
}
