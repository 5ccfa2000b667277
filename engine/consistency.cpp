#include "engine/consistency.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>

#include "storage/paths.h"

namespace {

bool IsPointNumber(int n) { return n == 0 || n == 4 || n == 5 || n == 6 || n == 8 || n == 9 || n == 10; }

std::string Seat(const Game& g, int s) { return fmt::format("{} ({})", g.PlayerName[s], SeatName(s)); }

// Money: a seat's bankroll is what it bought in for plus what its bets won and lost, and
// every amount on the table is counted in OnTable.
std::string CheckMoney(const Game& g) {
  const Statistics& st = g.Stats;
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) {
      // An empty seat holds nothing: a player who sits down there starts with a bare layout.
      for (int b = 1; b <= kBets; ++b)
        if (g.BetAmount[s][b].raw != 0)
          return fmt::format("seat {} has no player but holds {} on {}", s, DollarText(g.BetAmount[s][b]), BetName(b));
      if (g.OnTable[s].raw != 0)
        return fmt::format("seat {} has no player but has {} on the table", s, DollarText(g.OnTable[s]));
      continue;
    }
    for (int scope : kCountedScopes)
      if (g.Bankroll[s + scope] != g.Bankroll[s])
        return fmt::format("{}: the bankroll of scope column {} is {}, not {}", Seat(g, s), s + scope,
                           DollarText(g.Bankroll[s + scope]), DollarText(g.Bankroll[s]));
    const int c = kSessionScope + s;
    Money net;
    for (int b = 1; b <= kBets; ++b) net += st.BetWinStats[c][b][1] - st.BetLossStats[c][b][1];
    const Money expected = g.BuyInTotal[c] + net;
    if (g.Bankroll[c] != expected)
      return fmt::format("{}: the bankroll is {} but the buy-ins {} and the bets' results {} make {}", Seat(g, s),
                         DollarText(g.Bankroll[c]), DollarText(g.BuyInTotal[c]), DollarText(net), DollarText(expected));
    Money wagered;
    for (int b = 1; b <= kBets; ++b) {
      if (g.BetAmount[s][b].raw < 0)
        return fmt::format("{}: {} holds {}", Seat(g, s), BetName(b), DollarText(g.BetAmount[s][b]));
      wagered += g.BetAmount[s][b];
    }
    for (int i = 0; i < 6; ++i) {
      if (g.Rules.ChargeAllBuy) wagered += g.BuyVigHeld[s][i];
      if (g.Rules.ChargeAllLay) wagered += g.LayVigHeld[s][i];
    }
    if (g.OnTable[s] != wagered)
      return fmt::format("{}: OnTable is {} but the bets and up-front vig on the table make {}", Seat(g, s),
                         DollarText(g.OnTable[s]), DollarText(wagered));
  }
  return {};
}

// The bets' own stores: rows without a bet stay empty, the holders' marks match the
// amounts, and every working state is one of its four values, resting where it should.
std::string CheckBets(const Game& g) {
  int heldProps = 0;
  for (int b = 1; b <= kBets; ++b) {
    uint16_t holders = 0;
    for (int s = 0; s < kSeats; ++s)
      if (g.BetAmount[s][b].raw > 0) holders |= static_cast<uint16_t>(1u << s);
    if (holders != g.BetHolders[b]) return fmt::format("the holders of {} are not the seats that hold it", BetName(b));
    if (b >= bet::Field && holders != 0) ++heldProps;
  }
  if (heldProps != g.HeldPropBets)
    return fmt::format("{} one-roll and proposition bets are held, not {}", heldProps, g.HeldPropBets);
  for (int s = 0; s < kSeats; ++s) {
    for (int r = kBets + 1; r < kCheckStackRow; ++r)
      if (g.BetAmount[s][r].raw != 0) return fmt::format("seat {} holds an amount on row {}, which is no bet", s, r);
    for (int b = 1; b <= kBets; ++b) {
      const bool marked = (g.SeatBets[s][b >> 6] >> (b & 63)) & 1;
      if (marked != (g.BetAmount[s][b].raw > 0))
        return fmt::format("seat {}'s mark of {} doesn't agree with its amount", s, BetName(b));
      const int32_t w = g.BetWorking[s][b];
      if (w != 0 && w != 1 && w != 2 && w != -1)
        return fmt::format("seat {}'s {} has the working state {}", s, BetName(b), w);
      if (s == 0 || !SeatOccupied(g, s) || w == 2 || w == -1) continue;
      const int32_t resting = IsComeOut(g) ? g.DefaultWorking[s][b] : 1;
      if (w != resting)
        return fmt::format("{}'s {} rests in working state {}, not {}", Seat(g, s), BetName(b), w, resting);
    }
  }
  return {};
}

std::string CheckTable(const Game& g) {
  const TableState& t = g.Table;
  for (int p : {t.Point, t.PriorPoint, t.SecondPriorPoint, t.LastPoint})
    if (!IsPointNumber(p)) return fmt::format("the point (or a memory of it) is {}, which is no point", p);
  int players = 0;
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    ++players;
    for (int other = s + 1; other < kSeats; ++other)
      if (SeatOccupied(g, other) && SameNameInFiles(g.PlayerName[s], g.PlayerName[other]))
        return fmt::format("seats {} and {} hold players of the same name, {}", s, other, g.PlayerName[s]);
  }
  if (players != t.NumberOfPlayers) return fmt::format("{} players sit, not {}", players, t.NumberOfPlayers);
  if (players > 0 && !SeatOccupied(g, t.Shooter)) return fmt::format("the shooter's seat {} is empty", t.Shooter);
  return {};
}

// Statistics: a column counts every roll once, by its total; a bet's decisions are its
// wins and its losses; the current hand lies within the session and the session within
// all sessions.
std::string CheckStatistics(const Game& g) {
  const Statistics& st = g.Stats;
  for (int c = 0; c < kScopeColumns; ++c) {
    int64_t byTotal = 0;
    for (int total = 2; total <= 12; ++total) byTotal += st.RollCount[c][total];
    if (byTotal != st.RollCount[c][0])
      return fmt::format("column {} counts {} rolls but {} by their totals", c, st.RollCount[c][0], byTotal);
    for (int b = 1; b <= kBets; ++b) {
      const Money decided = st.BetStats[c][b][0], won = st.BetWinStats[c][b][0], lost = st.BetLossStats[c][b][0];
      if (decided != won + lost)
        return fmt::format("column {}: {} has {} decisions but {} wins and {} losses", c, BetName(b),
                           decided.raw / Money::kScale, won.raw / Money::kScale, lost.raw / Money::kScale);
    }
  }
  for (int c = 0; c < kSeats; ++c)
    for (int k = 0; k < kRollKinds; ++k) {
      const int32_t hand = st.RollCount[kHandScope + c][k], session = st.RollCount[kSessionScope + c][k],
                    all = st.RollCount[kAllScope + c][k];
      if (hand > session || session > all)
        return fmt::format("column {}: roll kind {} counts {} in the hand, {} in the session, {} in all sessions", c, k,
                           hand, session, all);
    }
  return {};
}

}  // namespace

std::string GameIsConsistent(const Game& g) {
  for (auto check : {CheckTable, CheckMoney, CheckBets, CheckStatistics})
    if (std::string broken = check(g); !broken.empty()) return broken;
  return {};
}

#ifdef DICEHALL_CHECK_ROLLS
void AssertGameIsConsistent(const Game& g) {
  // A client's mirror holds what the host said, bankrolls and working states included,
  // without the history behind them: the host's own table is the one checked.
  if (g.OnlineRole == kOnlineClient) return;
  const std::string broken = GameIsConsistent(g);
  if (broken.empty()) return;
  std::fprintf(stderr, "The table broke a rule after roll %d: %s\n", g.Stats.RollCount[kAllScope][0], broken.c_str());
  std::abort();
}
#endif
