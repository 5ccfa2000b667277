#pragma once
// What a table holds whatever came over the wire: amounts within the table's limits and
// their bookkeeping in step, seats and shooters that exist, points that are points, and
// checks that ascend.

#include <string>

#include "engine/game_state.h"

inline std::string BrokenInvariant(const Game& g) {
  int players = 0;
  for (int s = 0; s < kSeats; ++s) {
    if (s > 0 && SeatOccupied(g, s)) ++players;
    if (g.PlayerName[s].size() > 80) return "a name of " + std::to_string(g.PlayerName[s].size()) + " bytes";
    for (int b = 1; b <= kBets; ++b) {
      const Money a = g.BetAmount[s][b];
      if (a.raw < 0 || a > Money::Dollars(9999999)) return "bet " + std::to_string(b) + " holds " + MoneyText(a);
      if (((g.BetHolders[b] >> s) & 1) != (a.raw > 0)) return "the holders of bet " + std::to_string(b);
      if (g.BetWorking[s][b] < -1 || g.BetWorking[s][b] > 2) return "a working state of bet " + std::to_string(b);
    }
  }
  if (players != g.Table.NumberOfPlayers) return "the number of players";
  const TableState& t = g.Table;
  for (int seat : {t.Shooter, t.HandShooter, t.LastHandShooter})
    if (seat < 0 || seat > 8) return "a shooter's seat";
  for (int p : {t.Point, t.PriorPoint, t.SecondPriorPoint, t.LastPoint})
    if (p != 0 && (p < 4 || p > 10 || p == 7)) return "a point of " + std::to_string(p);
  for (int d = 1; d <= 5; ++d)
    if (g.Rules.CheckDenom[d].raw <= 0 || (d > 1 && g.Rules.CheckDenom[d] < g.Rules.CheckDenom[d - 1]))
      return "the checks";
  if (g.Rules.BarNumber != 2 && g.Rules.BarNumber != 12) return "the bar number";
  return "";
}
