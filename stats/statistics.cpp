#include "stats/statistics.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace {

constexpr int kGroups[3] = {kHandScope, kSessionScope, kAllScope};

constexpr const char* kKindTexts[kRollKinds] = {
    "",
    "",
    "Number 2 (1.1)",
    "Number 3 (1.2) or (2.1)",
    "Any 4",
    "Any 5",
    "Any 6",
    "Any 7",
    "Any 8",
    "Any 9",
    "Any 10",
    "Number 11 (5.6) or (6.5)",
    "Number 12 (6.6)",
    "Hard 4 (2.2)",
    "Hard 6 (3.3)",
    "Hard 8 (4.4)",
    "Hard 10 (5.5)",
    "Numbers 4,5,6,8,9,10",
    "Numbers 5,6,8,9",
    "Numbers 4,5,9,10",
    "Numbers 2,3,12",
    "Numbers 2,3,4,9,10,11,12",
    "Number 3 (1.2)",
    "Number 3 (2.1)",
    "Number 4 (1.3)",
    "Number 4 (3.1)",
    "Number 4 (1.3) or (3.1)",
    "Number 5 (1.4)",
    "Number 5 (4.1)",
    "Number 5 (2.3)",
    "Number 5 (3.2)",
    "Number 5 (1.4) or (4.1)",
    "Number 5 (2.3) or (3.2)",
    "Number 6 (1.5)",
    "Number 6 (5.1)",
    "Number 6 (2.4)",
    "Number 6 (4.2)",
    "Number 6 (1.5) or (5.1)",
    "Number 6 (2.4) or (4.2)",
    "Number 7 (1.6)",
    "Number 7 (6.1)",
    "Number 7 (2.5)",
    "Number 7 (5.2)",
    "Number 7 (3.4)",
    "Number 7 (4.3)",
    "Number 7 (1.6) or (6.1)",
    "Number 7 (2.5) or (5.2)",
    "Number 7 (3.4) or (4.3)",
    "Number 8 (2.6)",
    "Number 8 (6.2)",
    "Number 8 (3.5)",
    "Number 8 (5.3)",
    "Number 8 (2.6) or (6.2)",
    "Number 8 (3.5) or (5.3)",
    "Number 9 (3.6)",
    "Number 9 (6.3)",
    "Number 9 (4.5)",
    "Number 9 (5.4)",
    "Number 9 (3.6) or (6.3)",
    "Number 9 (4.5) or (5.4)",
    "Number 10 (4.6)",
    "Number 10 (6.4)",
    "Number 10 (4.6) or (6.4)",
    "Number 11 (5.6)",
    "Number 11 (6.5)",
    "Numbers 2,3,7,11,12",
    "Numbers 2,3,11,12",
    "Numbers 4,5,6",
    "Numbers 8,9,10",
    "Numbers 2,12",
    "Numbers 3,11",
    "Numbers 4,10",
    "Numbers 5,9",
    "Numbers 6,8",
    "Numbers 2,3",
    "Numbers 3,12",
    "Numbers 7,11",
    "Numbers 11,12",
    "Die 1, face 1",
    "Die 1, face 2",
    "Die 1, face 3",
    "Die 1, face 4",
    "Die 1, face 5",
    "Die 1, face 6",
    "Die 2, face 1",
    "Die 2, face 2",
    "Die 2, face 3",
    "Die 2, face 4",
    "Die 2, face 5",
    "Die 2, face 6",
    "",
};

// Kinds counted by the ordered dice: die1.die2, and with `either` also die2.die1.
struct PairKindDef {
  uint8_t kind, die1, die2;
  bool either;
};
constexpr PairKindDef kPairKindDefs[] = {
    {2, 1, 1, false},  {12, 6, 6, false}, {13, 2, 2, false}, {14, 3, 3, false}, {15, 4, 4, false}, {16, 5, 5, false},
    {22, 1, 2, false}, {23, 2, 1, false}, {24, 1, 3, false}, {25, 3, 1, false}, {26, 1, 3, true},  {27, 1, 4, false},
    {28, 4, 1, false}, {29, 2, 3, false}, {30, 3, 2, false}, {31, 1, 4, true},  {32, 2, 3, true},  {33, 1, 5, false},
    {34, 5, 1, false}, {35, 2, 4, false}, {36, 4, 2, false}, {37, 1, 5, true},  {38, 2, 4, true},  {39, 1, 6, false},
    {40, 6, 1, false}, {41, 2, 5, false}, {42, 5, 2, false}, {43, 3, 4, false}, {44, 4, 3, false}, {45, 1, 6, true},
    {46, 2, 5, true},  {47, 3, 4, true},  {48, 2, 6, false}, {49, 6, 2, false}, {50, 3, 5, false}, {51, 5, 3, false},
    {52, 2, 6, true},  {53, 3, 5, true},  {54, 3, 6, false}, {55, 6, 3, false}, {56, 4, 5, false}, {57, 5, 4, false},
    {58, 3, 6, true},  {59, 4, 5, true},  {60, 4, 6, false}, {61, 6, 4, false}, {62, 4, 6, true},  {63, 5, 6, false},
    {64, 6, 5, false},
};

// Kinds counted by the total: bit t for total t.
constexpr int Totals(std::initializer_list<int> totals) {
  int mask = 0;
  for (int t : totals) mask |= 1 << t;
  return mask;
}
struct TotalKindDef {
  uint8_t kind;
  int totals;
};
constexpr TotalKindDef kTotalKindDefs[] = {
    {3, Totals({3})},
    {4, Totals({4})},
    {5, Totals({5})},
    {6, Totals({6})},
    {7, Totals({7})},
    {8, Totals({8})},
    {9, Totals({9})},
    {10, Totals({10})},
    {11, Totals({11})},
    {17, Totals({4, 5, 6, 8, 9, 10})},
    {18, Totals({5, 6, 8, 9})},
    {19, Totals({4, 5, 9, 10})},
    {20, Totals({2, 3, 12})},
    {21, Totals({2, 3, 4, 9, 10, 11, 12})},
    {65, Totals({2, 3, 7, 11, 12})},
    {66, Totals({2, 3, 11, 12})},
    {67, Totals({4, 5, 6})},
    {68, Totals({8, 9, 10})},
    {69, Totals({2, 12})},
    {70, Totals({3, 11})},
    {71, Totals({4, 10})},
    {72, Totals({5, 9})},
    {73, Totals({6, 8})},
    {74, Totals({2, 3})},
    {75, Totals({3, 12})},
    {76, Totals({7, 11})},
    {77, Totals({11, 12})},
};

struct KindLists {
  std::array<std::array<PairKinds, 6>, 6> byPair{};
  std::array<PairKinds, 13> byTotal{};  // the total's kinds alone, for a die outside 1..6
};

constexpr void Append(PairKinds& list, int kind) { list.Kinds[list.Count++] = static_cast<uint8_t>(kind); }

constexpr KindLists MakeKindLists() {
  KindLists l{};
  for (int t = 2; t <= 12; ++t)
    for (const TotalKindDef& d : kTotalKindDefs)
      if (d.totals & (1 << t)) Append(l.byTotal[t], d.kind);
  for (int a = 1; a <= 6; ++a)
    for (int b = 1; b <= 6; ++b) {
      PairKinds& list = l.byPair[a - 1][b - 1];
      Append(list, kDie1Kind + a);
      Append(list, kDie2Kind + b);
      for (const PairKindDef& d : kPairKindDefs)
        if ((d.die1 == a && d.die2 == b) || (d.either && d.die1 == b && d.die2 == a)) Append(list, d.kind);
      const PairKinds& total = l.byTotal[a + b];
      for (int i = 0; i < total.Count; ++i) Append(list, total.Kinds[i]);
    }
  return l;
}
constexpr KindLists kKindLists = MakeKindLists();

void RaiseMost(std::array<int32_t, kScopeColumns>& most, int column, int32_t value) {
  for (int g : kGroups)
    if (most[g + column] < value) most[g + column] = value;
}

void CountDecision(Statistics& s, int handShooter, int total, int which, const char* proc) {
  if (total < 2 || total > 12) return;  // a die of 7 makes totals that have no row
  for (int g : kGroups) Bump(s.HandDecisions[g][total][which], proc);
  if (handShooter > 0)
    for (int g : kGroups) Bump(s.HandDecisions[g + handShooter][total][which], proc);
}

}  // namespace

std::array<int32_t, kRollKinds> RollsSinceStore::Values() const {
  std::array<int32_t, kRollKinds> v{};
  for (int k = 0; k < kRollKinds; ++k) v[k] = (*this)[k];
  return v;
}

void RollsSinceStore::Assign(const std::array<int32_t, kRollKinds>& values) {
  rolls_ = std::max(0, *std::max_element(values.begin(), values.end()));
  for (int k = 0; k < kRollKinds; ++k) lastSeen_[k] = rolls_ - std::max(0, values[k]);
}

const char* RollKindText(int kind) { return kind >= 0 && kind < kRollKinds ? kKindTexts[kind] : ""; }

const PairKinds& KindsOfPair(int die1, int die2) { return kKindLists.byPair[die1 - 1][die2 - 1]; }

bool KindHasPair(int kind, int die1, int die2) {
  if (kind == 0) return true;
  const PairKinds& list = KindsOfPair(die1, die2);
  return std::find(list.Kinds.begin(), list.Kinds.begin() + list.Count, kind) != list.Kinds.begin() + list.Count;
}

namespace {

inline void CountKind(Statistics& s, int handShooter, int kind, const char* proc) {
  for (int g : kGroups) Bump(s.RollCount[g][kind], proc);
  if (handShooter > 0)
    for (int g : kGroups) Bump(s.RollCount[g + handShooter][kind], proc);
  const int32_t since = s.RollsSince.Take(kind);
  if (since < kLongGap) {
    Bump(s.RollGapHistogram[kind][since], proc);
  } else {
    Bump(s.RollGapHistogram[kind][kLongGap], proc);
    AddTo(s.RollGapHistogram[kind][0], since, proc);
  }
}

}  // namespace

void CountRollKind(Statistics& s, int handShooter, int kind) { CountKind(s, handShooter, kind, "sub Count Roll Kind"); }

namespace {

// Every roll, tested counter by counter: near the limit, or with a die outside 1..6.
void CountRollChecked(Statistics& s, int handShooter, int die1, int die2) {
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
      s.MostRollsInHand[g + handShooter] = std::max(s.MostRollsInHand[g + handShooter], s.RollCount[handShooter][0]);
  }
  for (int c = 0; c < kSeats; ++c)
    for (int g : kGroups) Bump(s.SeatRolls[g + c], proc);
  // Every kind ages by one before the kinds of this roll are filed, so a kind that comes
  // up on consecutive rolls has gap 1.
  s.RollsSince.Age(proc);

  const bool die1Known = die1 >= 1 && die1 <= 6, die2Known = die2 >= 1 && die2 <= 6;
  if (die1Known && die2Known) {
    const PairKinds& list = kKindLists.byPair[die1 - 1][die2 - 1];
    const int n = list.Count;  // a local: the counters' stores could alias a byte
    for (int i = 0; i < n; ++i) CountKind(s, handShooter, list.Kinds[i], proc);
    return;
  }
  if (die1Known) CountKind(s, handShooter, kDie1Kind + die1, proc);
  if (die2Known) CountKind(s, handShooter, kDie2Kind + die2, proc);
  const int total = die1 + die2;
  if (total >= 2 && total <= 12) {
    const PairKinds& list = kKindLists.byTotal[total];
    for (int i = 0; i < list.Count; ++i) CountKind(s, handShooter, list.Kinds[i], proc);
  }
}

// Calls f(first, count) for each run of the counters that counting a roll adds one to:
// those of the hand, session and all-sessions groups, the gap bins and the rolls since.
template <class F>
void ForCountedRuns(const Statistics& s, F&& f) {
  const int32_t rolls = s.RollsSince.Rolls();
  f(&rolls, 1);
  for (int g : kGroups) {
    f(&s.HandsShot[g], kSeats);
    f(&s.SeatRolls[g], kSeats);
    for (int c = g; c < g + kSeats; ++c) f(s.RollCount[c].data(), kRollKinds);
  }
  for (const auto& bins : s.RollGapHistogram) f(&bins[1], kLongGap);
}

// The room below the limit of the fullest of those counters.
int32_t CountingHeadroom(const Statistics& s) {
  // Counters are never below 0, so the bits of all of them together bound the fullest
  // from above, by less than twice: a smaller room, which only brings the next scan
  // nearer, found with one OR a counter (a scan runs at least once on every new table).
  // Near the limit, or with a counter below 0, the room is the exact one.
  uint32_t bits = 0;
  ForCountedRuns(s, [&bits](const int32_t* first, int n) {
    for (int i = 0; i < n; ++i) bits |= static_cast<uint32_t>(first[i]);
  });
  if (bits < (1u << 30)) return INT32_MAX - static_cast<int32_t>(bits);
  int32_t most = 0;
  ForCountedRuns(s, [&most](const int32_t* first, int n) {
    for (int i = 0; i < n; ++i) most = std::max(most, first[i]);
  });
  return INT32_MAX - most;
}

// Adds one to a counter that has room for it.
inline void AddOne(int32_t& counter) { counter = static_cast<int32_t>(static_cast<uint32_t>(counter) + 1u); }

// Adds one to the nine counters of a scope's seats: two runs of four at once and the last.
// Written out, because the compiler builds each run of four from single loads.
inline void AddOneToEach(int32_t* seats) {
  using Four = uint32_t __attribute__((vector_size(16)));
  static_assert(kSeats == 9);
  for (int i = 0; i < 8; i += 4) {
    Four v;
    std::memcpy(&v, seats + i, sizeof v);
    v += 1u;
    std::memcpy(seats + i, &v, sizeof v);
  }
  AddOne(seats[8]);
}

}  // namespace

void CountRoll(Statistics& s, int handShooter, int die1, int die2) {
  const bool known = die1 >= 1 && die1 <= 6 && die2 >= 1 && die2 <= 6;
  if (known && s.UncheckedRolls <= 0) s.UncheckedRolls = CountingHeadroom(s);
  if (!known || s.UncheckedRolls <= 0) {
    CountRollChecked(s, handShooter, die1, die2);
    return;
  }
  // The same counting as CountRollChecked, in the same order; only a sum of long gaps,
  // which grows by more than one, is still tested.
  --s.UncheckedRolls;
  const int shooter = handShooter > 0 ? handShooter : 0;
  if (s.RollCount[kHandScope][0] == 0) {
    s.HandsShot[kHandScope] = 1;
    AddOne(s.HandsShot[kSessionScope]);
    AddOne(s.HandsShot[kAllScope]);
    if (shooter) {
      s.HandsShot[shooter] = 1;
      AddOne(s.HandsShot[kSessionScope + shooter]);
      AddOne(s.HandsShot[kAllScope + shooter]);
    }
  }
  for (int g : kGroups) AddOne(s.RollCount[g][0]);
  for (int g : {kSessionScope, kAllScope})
    s.MostRollsInHand[g] = std::max(s.MostRollsInHand[g], s.RollCount[kHandScope][0]);
  if (shooter) {
    for (int g : kGroups) AddOne(s.RollCount[g + shooter][0]);
    for (int g : {kSessionScope, kAllScope})
      s.MostRollsInHand[g + shooter] = std::max(s.MostRollsInHand[g + shooter], s.RollCount[shooter][0]);
  }
  for (int g : kGroups) AddOneToEach(&s.SeatRolls[g]);
  s.RollsSince.AgeUnchecked();

  const PairKinds& list = kKindLists.byPair[die1 - 1][die2 - 1];
  const int n = list.Count;
  for (int i = 0; i < n; ++i) {
    const int kind = list.Kinds[i];
    for (int g : kGroups) AddOne(s.RollCount[g][kind]);
    if (shooter)
      for (int g : kGroups) AddOne(s.RollCount[g + shooter][kind]);
    const int32_t since = s.RollsSince.Take(kind);
    if (since < kLongGap) {
      AddOne(s.RollGapHistogram[kind][since]);
    } else {
      AddOne(s.RollGapHistogram[kind][kLongGap]);
      AddTo(s.RollGapHistogram[kind][0], since, "sub Count Roll");
    }
  }
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
      for (size_t b = rows._Find_next(0); b <= kBets; b = rows._Find_next(b)) {
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

// Every store by scope (45 columns). RollsSince and the gap histogram are not by scope.
template <class F>
void ForEachScopeStore(Statistics& s, F&& f) {
  f(s.RollCount);
  f(s.HandsShot);
  f(s.SeatRolls);
  f(s.MostRollsInHand);
  f(s.MostComeOutRollsInHand);
  f(s.MostPassesInHand);
  f(s.MostMissesInHand);
  f(s.HandDecisions);
  f(s.BetStats);
  f(s.BetWinStats);
  f(s.BetLossStats);
  f(s.ComeBaseTotal);
}

constexpr int kAllGroups[5] = {kHandScope, kLastHandScope, kSessionScope, kLastSessionScope, kAllScope};

bool IsRailSeat(int seat) { return seat >= 1 && seat < kSeats; }

}  // namespace

void RollOverSession(Statistics& s) {
  // Current session to last session (when the session had rolls), then the hand and
  // session columns are zeroed. All sessions is never touched here.
  const bool copy = s.RollCount[kSessionScope][0] > 0;
  ForEachScopeStore(s, [copy](auto& store) {
    if (copy)
      for (int c = kSessionScope; c < kSessionScope + kSeats; ++c) store[c + 9] = store[c];
    for (int c = 0; c < kSeats; ++c) {
      store[c] = {};
      store[c + kSessionScope] = {};
    }
  });
  for (int c = 0; c < kSeats; ++c) s.BetRowsUsed[c].reset();
}

void ClearAllStatistics(Statistics& s) {
  // The stores are large: the empty set is made on the heap, not on the stack.
  s = *std::make_unique<Statistics>();
}

void ClearSeatStats(Statistics& s, int seat) {
  if (!IsRailSeat(seat)) return;
  ForEachScopeStore(s, [seat](auto& store) {
    for (int g : kAllGroups) store[g + seat] = {};
  });
  s.BetRowsUsed[seat].reset();
  s.BetRowsUsed[seat + kLastHandScope].reset();
}

void SwapSeatStats(Statistics& s, int seatA, int seatB) {
  if (!IsRailSeat(seatA) || !IsRailSeat(seatB) || seatA == seatB) return;
  ForEachScopeStore(s, [seatA, seatB](auto& store) {
    for (int g : kAllGroups) std::swap(store[g + seatA], store[g + seatB]);
  });
  std::swap(s.BetRowsUsed[seatA], s.BetRowsUsed[seatB]);
  std::swap(s.BetRowsUsed[seatA + kLastHandScope], s.BetRowsUsed[seatB + kLastHandScope]);
}

void SwapShooterSeats(int32_t& shooter, int32_t& handShooter, int32_t& lastHandShooter, int seatA, int seatB) {
  for (int32_t* field : {&shooter, &handShooter, &lastHandShooter}) {
    if (*field == seatA) *field = seatB;
    else if (*field == seatB) *field = seatA;
  }
}

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
  // Win or loss decided once: it is as random as the dice.
  const bool won = result.raw > 0;
  auto& outcomes = won ? s.BetWinStats : s.BetLossStats;
  const Money size = won ? result : -result;
  for (int g : kGroups) {
    const int c = g + seat;
    // The roll number of the session, or of all sessions for the all-sessions group.
    Money roll = Money::Dollars(c < kAllScope ? s.RollCount[kSessionScope][0] : s.RollCount[kAllScope][0]);
    if (g == kHandScope) s.BetRowsUsed[seat].set(static_cast<size_t>(bet));
    RecordEvent(s.BetStats[c][bet], wagered, roll);
    RecordEvent(outcomes[c][bet], size, roll);
    if (bet >= bet::Come4 && bet <= bet::Come10) s.ComeBaseTotal[c][bet - bet::Come4] += comeBase;
  }
}
