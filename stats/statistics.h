#pragma once
// The statistics stores, by scope column (five groups of nine: hand, last hand,
// session, last session, all sessions), and the counting of rolls and hands that the
// roll cycle calls. Flat arrays: this runs on every roll of Hyper-Drive.

#include <array>
#include <bitset>
#include <cstdint>

#include "engine/bets.h"
#include "engine/money.h"

constexpr int kHandScope = 0, kLastHandScope = 9, kSessionScope = 18, kLastSessionScope = 27, kAllScope = 36;
constexpr int kRollKinds = 91;
// Row 0 and the bets: the rows of the per-bet statistics.
constexpr int kStatBetRows = kBets + 1;
constexpr int kLongGap = 200;                  // the gap histogram's last bin: gaps of 200 or more
constexpr int kDie1Kind = 77, kDie2Kind = 83;  // + face: the die-face kinds 78..83, 84..89

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

// Adds an amount to a counter, refusing to wrap.
inline void AddTo(int32_t& counter, int32_t amount, const char* procedure) {
  if (__builtin_add_overflow(counter, amount, &counter)) throw StatOverflow{procedure};
}

// Rolls since each kind last came up, not by scope: read as RollsSince[kind]. Kept as
// a roll counter and the count at each kind's last appearance, so that a roll ages all
// 91 kinds with one add. Kinds 0, 1 and 90 never come up, so the counter is the largest
// value and overflows exactly when a value would.
class RollsSinceStore {
 public:
  int32_t operator[](int kind) const { return rolls_ - lastSeen_[kind]; }
  std::array<int32_t, kRollKinds> Values() const;
  // All kinds at once, as a game file holds them.
  void Assign(const std::array<int32_t, kRollKinds>& values);
  // One more roll for every kind.
  void Age(const char* procedure) { Bump(rolls_, procedure); }
  void AgeUnchecked() { ++rolls_; }
  // The rolls counted since the store was cleared: the largest value it holds.
  int32_t Rolls() const { return rolls_; }
  // The kind came up: its rolls since, which start again from 0.
  int32_t Take(int kind) {
    const int32_t since = rolls_ - lastSeen_[kind];
    lastSeen_[kind] = rolls_;
    return since;
  }

 private:
  int32_t rolls_ = 0;
  std::array<int32_t, kRollKinds> lastSeen_{};
};

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
  // Not by scope: rolls since each kind last came up, and how often it came up after a
  // gap of g rolls (bin 200 for 200 or more, whose gaps are summed at gap 0).
  RollsSinceStore RollsSince;
  std::array<std::array<int32_t, kLongGap + 1>, kRollKinds> RollGapHistogram{};
  // Rolls that CountRoll may count without testing each counter it adds one to: at most
  // the room left below the 32-bit limit in the fullest of them, found by a scan when it
  // runs out.
  // Counting a roll adds at most one to each, so the test of every counter at every roll
  // is needed only near the limit. Whatever raises one of them other than by counting a
  // roll sets this to 0 (a game file is read into fresh stores, where it is 0).
  int32_t UncheckedRolls = 0;
};

// Calls f(bytes, size) over a store of bet rows as digests take it: 200 rows a column,
// the rows past the bets zero, as the store was once laid out, so that a digest stays
// what it was.
template <class F>
void ForLaidOutBytes(const Statistics::BetRows& rows, F&& f) {
  static constexpr std::array<std::array<Money, 6>, 200 - kStatBetRows> kZeros{};
  for (const auto& column : rows) {
    f(column.data(), sizeof column);
    f(kZeros.data(), sizeof kZeros);
  }
}

// The name of a roll kind as the frequency list shows it; "" for 0, 1, 90 and unknown.
const char* RollKindText(int kind);
// The kinds a roll of die1.die2 (each 1..6) counts as, beyond all rolls: die 1's face,
// die 2's face, the ordered pair's kinds, then the total's kinds, each once.
struct PairKinds {
  uint8_t Count;
  std::array<uint8_t, 12> Kinds;
};
const PairKinds& KindsOfPair(int die1, int die2);
// Whether a roll of die1.die2 counts as `kind` (0 counts every roll).
bool KindHasPair(int kind, int die1, int die2);

// The table's all-rolls count of a scope group (hand 0, session 18, all 36).
inline int32_t TableRolls(const Statistics& s, int scope) { return s.RollCount[scope][0]; }

// Counts one roll: a new hand when the hand has no rolls, all rolls in the table's and
// the hand shooter's columns, the most-rolls records, every column's seat rolls, the
// rolls since each kind, and then every kind the dice make. A die outside 1..6 (a
// generator that returned exactly 1.0) counts only the kinds that exist for it.
void CountRoll(Statistics& s, int handShooter, int die1, int die2);
// One kind came up: the table's columns and the hand shooter's, then its gap is filed.
void CountRollKind(Statistics& s, int handShooter, int kind);
// A come-out roll of total t; `handCount` is the hand's come-out counter after counting.
void CountComeOut(Statistics& s, int handShooter, int total, int32_t handCount);
// A pass or a miss decided on `total` (the point, or the come-out total).
void CountPass(Statistics& s, int handShooter, int total, int32_t handPasses);
void CountMiss(Statistics& s, int handShooter, int total, int32_t handMisses);
// Hand and session rollovers; `occupied[c]` says whether seat c has a player.
void RollOverHand(Statistics& s, const std::array<bool, kSeats>& occupied);
void RollOverSession(Statistics& s);
void ClearAllStatistics(Statistics& s);
// A player leaves: every store by scope of the seat (all five groups) is zeroed.
void ClearSeatStats(Statistics& s, int seat);
// A player moves: the two seats exchange every store by scope. The shooter numbers live
// in the table state; SwapShooterSeats exchanges those.
void SwapSeatStats(Statistics& s, int seatA, int seatB);
void SwapShooterSeats(int32_t& shooter, int32_t& handShooter, int32_t& lastHandShooter, int seatA, int seatB);
// A resolved bet: `wagered` what was at risk (up-front vig included by the caller),
// `result` the net payoff; `comeBase` the come base of a Come number that ended. A push
// (result 0) counts nowhere.
void RecordBetResult(Statistics& s, int seat, int bet, Money wagered, Money result, Money comeBase);
