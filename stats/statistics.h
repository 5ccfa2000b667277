#pragma once
// The statistics stores, by scope column (five groups of nine: hand, last hand,
// session, last session, all sessions), and the counting of rolls and hands that the
// roll cycle calls. Flat arrays: this runs on every roll of Hyper-Drive.

#include <array>
#include <bitset>
#include <cstdint>

#include "engine/bets.h"
#include "engine/money.h"

constexpr int kHandScope = 0, kLastHandScope = 9, kSessionScope = 18, kLastSessionScope = 27,
              kAllScope = 36;
constexpr int kRollKinds = 91;
constexpr int kStatBetRows = 200;

struct Statistics {
  // (column, kind); kind 0 is all rolls.
  std::array<std::array<int32_t, kRollKinds>, kScopeColumns> RollCount{};
  std::array<int32_t, kScopeColumns> HandsShot{};
  std::array<int32_t, kScopeColumns> SeatRolls{};
  std::array<int32_t, kScopeColumns> MostRollsInHand{};
  std::array<int32_t, kScopeColumns> MostComeOutRollsInHand{};
  std::array<int32_t, kScopeColumns> MostPassesInHand{};
  std::array<int32_t, kScopeColumns> MostMissesInHand{};
  // (column, bet row, field 1..6 at 0..5): events, total, highest, lowest (0 none yet),
  // roll number of the last event, last amount.
  using BetRows = std::array<std::array<std::array<Money, 6>, kStatBetRows>, kScopeColumns>;
  BetRows BetStats{}, BetWinStats{}, BetLossStats{};
  std::array<std::array<Money, 6>, kScopeColumns> ComeBaseTotal{};
  // Bet rows that hold anything in a column of the hand groups, so that the hand's
  // rollover moves only those (it runs at every seven-out).
  std::array<std::bitset<kStatBetRows>, 2 * kSeats> BetRowsUsed{};
  // (column, total 0..12, 0 come-out rolls / 1 passes / 2 misses): the table of
  // come-out totals and the passes and misses per point.
  std::array<std::array<std::array<int32_t, 3>, 13>, kScopeColumns> HandDecisions{};
};

// Something overflowed 32 bits. The roll cycle reports it as a fault of the procedure
// and skips the rest of that roll's statistics, as for any run-time failure.
struct StatOverflow {
  const char* procedure;
};

// Adds one to a counter, refusing to wrap.
inline void Bump(int32_t& counter, const char* procedure) {
  if (counter == INT32_MAX) throw StatOverflow{procedure};
  ++counter;
}

// The table's all-rolls count of a scope group (hand 0, session 18, all 36).
inline int32_t TableRolls(const Statistics& s, int scope) { return s.RollCount[scope][0]; }

// Counts one roll: a new hand when the hand has no rolls, all rolls in the table's and
// the hand shooter's columns, the most-rolls records and every column's seat rolls.
void CountRoll(Statistics& s, int handShooter);
// A come-out roll of total t; `handCount` is the hand's come-out counter after counting.
void CountComeOut(Statistics& s, int handShooter, int total, int32_t handCount);
// A pass or a miss decided on `total` (the point, or the come-out total).
void CountPass(Statistics& s, int handShooter, int total, int32_t handPasses);
void CountMiss(Statistics& s, int handShooter, int total, int32_t handMisses);
// Hand and session rollovers; `occupied[c]` says whether seat c has a player.
void RollOverHand(Statistics& s, const std::array<bool, kSeats>& occupied);
void RollOverSession(Statistics& s);
void ClearAllStatistics(Statistics& s);
// A resolved bet: `wagered` what was at risk (up-front vig included by the caller),
// `result` the net payoff; `comeBase` the come base of a Come number that ended. A push
// (result 0) counts nowhere.
void RecordBetResult(Statistics& s, int seat, int bet, Money wagered, Money result, Money comeBase);
