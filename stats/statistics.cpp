#include "stats/statistics.h"

#include <algorithm>

namespace {

constexpr int kGroups[3] = {kHandScope, kSessionScope, kAllScope};

void RaiseMost(std::array<int32_t, kScopeColumns>& most, int column, int32_t value) {
  for (int g : kGroups)
    if (most[g + column] < value) most[g + column] = value;
}

void CountDecision(Statistics& s, int handShooter, int total, int which, const char* proc) {
  for (int g : kGroups) Bump(s.HandDecisions[g][total][which], proc);
  if (handShooter > 0)
    for (int g : kGroups) Bump(s.HandDecisions[g + handShooter][total][which], proc);
}

}  // namespace

void CountRoll(Statistics& s, int handShooter) {
  const char* proc = "sub Count Roll";
  if (s.RollCount[kHandScope][0] == 0) {
    s.HandsShot[kHandScope] = 1;
    Bump(s.HandsShot[kSessionScope], proc);
    Bump(s.HandsShot[kAllScope], proc);
    if (handShooter > 0) {
      s.HandsShot[handShooter] = 1;
      Bump(s.HandsShot[kSessionScope + handShooter], proc);
      Bump(s.HandsShot[kAllScope + handShooter], proc);
    }
  }
  for (int g : kGroups) Bump(s.RollCount[g][0], proc);
  for (int g : {kSessionScope, kAllScope})
    s.MostRollsInHand[g] = std::max(s.MostRollsInHand[g], s.RollCount[kHandScope][0]);
  if (handShooter > 0) {
    for (int g : kGroups) Bump(s.RollCount[g + handShooter][0], proc);
    for (int g : {kSessionScope, kAllScope})
      s.MostRollsInHand[g + handShooter] =
          std::max(s.MostRollsInHand[g + handShooter], s.RollCount[handShooter][0]);
  }
  for (int c = 0; c < kSeats; ++c)
    for (int g : kGroups) Bump(s.SeatRolls[g + c], proc);
}

void CountComeOut(Statistics& s, int handShooter, int total, int32_t handCount) {
  CountDecision(s, handShooter, total, 0, "sub Count Come-out");
  RaiseMost(s.MostComeOutRollsInHand, 0, handCount);
  if (handShooter > 0) RaiseMost(s.MostComeOutRollsInHand, handShooter, handCount);
}

void CountPass(Statistics& s, int handShooter, int total, int32_t handPasses) {
  CountDecision(s, handShooter, total, 1, "sub Count Pass");
  RaiseMost(s.MostPassesInHand, 0, handPasses);
  if (handShooter > 0) RaiseMost(s.MostPassesInHand, handShooter, handPasses);
}

void CountMiss(Statistics& s, int handShooter, int total, int32_t handMisses) {
  CountDecision(s, handShooter, total, 2, "sub Count Miss");
  RaiseMost(s.MostMissesInHand, 0, handMisses);
  if (handShooter > 0) RaiseMost(s.MostMissesInHand, handShooter, handMisses);
}

void RollOverHand(Statistics& s, const std::array<bool, kSeats>& occupied) {
  for (int c = 0; c < kSeats; ++c) {
    // A column counts kind 0 with every roll it counts at all, so two columns without
    // rolls are all zero and have nothing to move.
    if (s.RollCount[c][0] != 0 || s.RollCount[c + kLastHandScope][0] != 0) {
      s.RollCount[c + kLastHandScope] = s.RollCount[c];
      s.RollCount[c].fill(0);
    }
    if (occupied[c]) {
      // Rows used in either column; every other row is zero in both already.
      const std::bitset<kStatBetRows> rows = s.BetRowsUsed[c] | s.BetRowsUsed[c + kLastHandScope];
      s.BetRowsUsed[c + kLastHandScope] = s.BetRowsUsed[c];
      s.BetRowsUsed[c].reset();
      for (int b = 1; b <= kBets; ++b) {
        if (!rows.test(static_cast<size_t>(b))) continue;
        s.BetStats[c + kLastHandScope][b] = s.BetStats[c][b];
        s.BetWinStats[c + kLastHandScope][b] = s.BetWinStats[c][b];
        s.BetLossStats[c + kLastHandScope][b] = s.BetLossStats[c][b];
        s.BetStats[c][b] = {};
        s.BetWinStats[c][b] = {};
        s.BetLossStats[c][b] = {};
      }
      s.ComeBaseTotal[c + kLastHandScope] = s.ComeBaseTotal[c];
      s.ComeBaseTotal[c] = {};
    }
    if (occupied[c] || c == 0) {
      s.HandDecisions[c + kLastHandScope] = s.HandDecisions[c];
      s.HandDecisions[c] = {};
      s.SeatRolls[c + kLastHandScope] = s.SeatRolls[c];
      s.SeatRolls[c] = 0;
      s.HandsShot[c + kLastHandScope] = s.HandsShot[c];
      s.HandsShot[c] = 0;
    }
  }
}

namespace {

// Current session to last session (when the session had rolls), then the hand and
// session columns are zeroed. All sessions is never touched here.
template <class Store>
void RollSessionStore(Store& store, bool copy) {
  if (copy)
    for (int c = kSessionScope; c < kSessionScope + kSeats; ++c) store[c + 9] = store[c];
  for (int c = 0; c < kSeats; ++c) {
    store[c] = {};
    store[c + kSessionScope] = {};
  }
}

}  // namespace

void RollOverSession(Statistics& s) {
  bool copy = s.RollCount[kSessionScope][0] > 0;
  RollSessionStore(s.RollCount, copy);
  RollSessionStore(s.HandsShot, copy);
  RollSessionStore(s.SeatRolls, copy);
  RollSessionStore(s.MostRollsInHand, copy);
  RollSessionStore(s.MostComeOutRollsInHand, copy);
  RollSessionStore(s.MostPassesInHand, copy);
  RollSessionStore(s.MostMissesInHand, copy);
  RollSessionStore(s.HandDecisions, copy);
  RollSessionStore(s.BetStats, copy);
  RollSessionStore(s.BetWinStats, copy);
  RollSessionStore(s.BetLossStats, copy);
  RollSessionStore(s.ComeBaseTotal, copy);
  for (int c = 0; c < kSeats; ++c) s.BetRowsUsed[c].reset();
}

void ClearAllStatistics(Statistics& s) { s = Statistics{}; }

namespace {

void RecordEvent(std::array<Money, 6>& f, Money value, Money rollNumber) {
  f[0] += Money::Dollars(1);
  f[1] += value;
  if (value > f[2]) f[2] = value;
  if ((f[3].raw == 0 || value < f[3]) && value.raw > 0) f[3] = value;
  f[4] = rollNumber;
  f[5] = value;
}

}  // namespace

void RecordBetResult(Statistics& s, int seat, int bet, Money wagered, Money result, Money comeBase) {
  if (result.raw == 0) return;
  for (int g : kGroups) {
    const int c = g + seat;
    // The roll number of the session, or of all sessions for the all-sessions group.
    Money roll = Money::Dollars(c < kAllScope ? s.RollCount[kSessionScope][0] : s.RollCount[kAllScope][0]);
    if (g == kHandScope) s.BetRowsUsed[seat].set(static_cast<size_t>(bet));
    RecordEvent(s.BetStats[c][bet], wagered, roll);
    if (result.raw > 0) RecordEvent(s.BetWinStats[c][bet], result, roll);
    else RecordEvent(s.BetLossStats[c][bet], -result, roll);
    if (bet >= bet::Come4 && bet <= bet::Come10) s.ComeBaseTotal[c][bet - bet::Come4] += comeBase;
  }
}
