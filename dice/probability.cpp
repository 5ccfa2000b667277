#include "dice/probability.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

constexpr int kWays[13] = {0, 0, 1, 2, 3, 4, 5, 6, 5, 4, 3, 2, 1};  // by total

constexpr const char* kNotEditable = "Only the cells of the dice, the sums and the faces can be changed.";
constexpr const char* kCantBalance =
    "This change can't be balanced: the locked cells leave no room for it, or it would take "
    "the table past 100%. Click \"Unlock All Cells\" and try again.";
constexpr const char* kNotANumber = "Please enter a number.";
constexpr const char* kBadRollsOutOf = "The number of rolls must be above 0.";

bool IsLocked(int32_t mark) { return mark > 0 && (mark & kCellLocked) != 0; }

// ---- Rebalancing ------------------------------------------------------------------------
//
// The 36 diamond cells are the unknowns; everything else follows from them. A group is a
// set of diamond cells with a target: the whole table (always, 100000), a row whose sum
// cell is locked, a face of die 1 or die 2 whose face cell is locked. Locked diamond cells
// are fixed.
//
// 1. Proportional fitting in doubles: for each group in turn, the free cells are scaled by
//    one factor so that the group meets its target (spread evenly if they are all 0).
//    Sweeps repeat until every group fits; a group whose fixed cells already exceed its
//    target, or that has no free cell to move, or sweeps that never come near a fit
//    (locks that contradict each other), mean the change can't be balanced. Free cells
//    in no locked group move only with the whole, so they keep their proportions.
// 2. Rounding: each cell to the nearest integer, then unit steps (one cell up or down, or
//    one down and another up) that shrink the groups' total miss, nearest-to-the-fit
//    first, until every group is met exactly.
// 3. The sum column and the face rows are written as the sums of the diamond.
//
// Groups are found afresh from the 128 marks at each edit, so plane 0 never holds the
// working marks (1, 2, 4, -1) between edits.
//
// The first edit of the default table thus also takes the 8 thousandths of its rounding
// out: afterwards the 36 cells make exactly 100000.

constexpr int kGroups = 24;  // 0 the whole, 1..11 the rows, 12..17 die-1 faces, 18..23 die-2 faces

struct Groups {
  std::array<bool, kGroups> bound{};
  std::array<int64_t, kGroups> target{};
  std::array<std::array<int, 4>, 36> of{};  // the four groups of each diamond cell
};

Groups FindGroups(const ProbabilityTable& t) {
  Groups g;
  g.bound[0] = true;
  g.target[0] = kWholeTable;
  for (int y = 1; y <= 11; ++y) {
    g.bound[y] = IsLocked(t.Lock(kSumColumn, y));
    g.target[y] = t.Value(kSumColumn, y);
  }
  for (int f = 1; f <= 6; ++f) {
    g.bound[11 + f] = IsLocked(t.Lock(f + 1, kDie1FaceRow));
    g.target[11 + f] = t.Value(f + 1, kDie1FaceRow);
    g.bound[17 + f] = IsLocked(t.Lock(f + 1, kDie2FaceRow));
    g.target[17 + f] = t.Value(f + 1, kDie2FaceRow);
  }
  for (int k = 0; k < 36; ++k) g.of[k] = {0, kDiamond[k].y, 11 + kDiamond[k].die1, 17 + kDiamond[k].die2};
  return g;
}

bool InGroup(const Groups& g, int k, int group) {
  for (int m : g.of[k])
    if (m == group) return true;
  return false;
}

bool FitInDoubles(const Groups& g, const std::array<bool, 36>& fixed, std::array<double, 36>& v) {
  // A fit that drives cells towards 0 settles slowly; within a unit, the rounding that
  // follows settles it exactly or refuses.
  constexpr int kSweeps = 5000;
  double worst = 0;
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    worst = 0;
    for (int group = 0; group < kGroups; ++group) {
      if (!g.bound[group]) continue;
      double fixedSum = 0, freeSum = 0;
      int freeCount = 0;
      for (int k = 0; k < 36; ++k) {
        if (!InGroup(g, k, group)) continue;
        if (fixed[k]) fixedSum += v[k];
        else {
          freeSum += v[k];
          ++freeCount;
        }
      }
      const double want = static_cast<double>(g.target[group]) - fixedSum;
      if (freeCount == 0) {
        if (std::abs(want) > 1e-9) return false;
        continue;
      }
      if (want < 0) return false;
      worst = std::max(worst, std::abs(freeSum - want));
      for (int k = 0; k < 36; ++k) {
        if (fixed[k] || !InGroup(g, k, group)) continue;
        v[k] = freeSum > 0 ? v[k] * (want / freeSum) : want / freeCount;
      }
    }
    if (worst < 1e-7) return true;
  }
  return worst < 1.0;
}

bool RoundToIntegers(const Groups& g, const std::array<bool, 36>& fixed, const std::array<double, 36>& fit,
                     std::array<int64_t, 36>& v) {
  std::array<int64_t, kGroups> miss{};
  for (int k = 0; k < 36; ++k) {
    v[k] = fixed[k] ? static_cast<int64_t>(fit[k]) : std::llround(fit[k]);
    for (int group : g.of[k]) miss[group] += v[k];
  }
  for (int group = 0; group < kGroups; ++group) miss[group] = g.bound[group] ? miss[group] - g.target[group] : 0;

  // Gain of moving cell k by d: how much the bound groups' total miss shrinks.
  auto gain = [&](int k, int d, std::array<int64_t, kGroups>& m) {
    int64_t sum = 0;
    for (int group : g.of[k]) {
      if (!g.bound[group]) continue;
      sum += std::abs(m[group]) - std::abs(m[group] + d);
      m[group] += d;
    }
    return sum;
  };
  auto strain = [&](int k, int d) { return std::abs(v[k] + d - fit[k]) - std::abs(v[k] - fit[k]); };

  for (int step = 0; step < 100000; ++step) {
    bool done = true;
    for (int64_t m : miss) done = done && m == 0;
    if (done) return true;
    int64_t bestGain = 0;
    double bestStrain = 0;
    int down = -1, up = -1;
    auto consider = [&](int dn, int u) {
      std::array<int64_t, kGroups> m = miss;
      int64_t total = 0;
      double s = 0;
      if (dn >= 0) {
        total += gain(dn, -1, m);
        s += strain(dn, -1);
      }
      if (u >= 0) {
        total += gain(u, +1, m);
        s += strain(u, +1);
      }
      if (total > bestGain || (total == bestGain && total > 0 && s < bestStrain)) {
        bestGain = total;
        bestStrain = s;
        down = dn;
        up = u;
      }
    };
    for (int k = 0; k < 36; ++k) {
      if (fixed[k]) continue;
      if (v[k] > 0) consider(k, -1);
      consider(-1, k);
      if (v[k] == 0) continue;
      for (int m = 0; m < 36; ++m)
        if (m != k && !fixed[m]) consider(k, m);
    }
    if (bestGain <= 0) return false;
    if (down >= 0) {
      --v[down];
      for (int group : g.of[down])
        if (g.bound[group]) --miss[group];
    }
    if (up >= 0) {
      ++v[up];
      for (int group : g.of[up])
        if (g.bound[group]) ++miss[group];
    }
  }
  return false;
}

void WriteSums(ProbabilityTable& t) {
  for (int y = 1; y <= 11; ++y) t.Value(kSumColumn, y) = 0;
  for (int x = 2; x <= 7; ++x) t.Value(x, kDie1FaceRow) = t.Value(x, kDie2FaceRow) = 0;
  for (const DiamondCell& c : kDiamond) {
    const int32_t v = t.Value(c.x, c.y);
    t.Value(kSumColumn, c.y) += v;
    t.Value(c.die1 + 1, kDie1FaceRow) += v;
    t.Value(c.die2 + 1, kDie2FaceRow) += v;
  }
}

bool Rebalance(ProbabilityTable& t) {
  const Groups g = FindGroups(t);
  std::array<bool, 36> fixed{};
  std::array<double, 36> fit{};
  for (int k = 0; k < 36; ++k) {
    const DiamondCell& c = kDiamond[k];
    fixed[k] = IsLocked(t.Lock(c.x, c.y));
    // A negative value (only from a damaged file) can't be scaled: a free one starts at 0.
    fit[k] = fixed[k] ? t.Value(c.x, c.y) : std::max(0, t.Value(c.x, c.y));
  }
  std::array<int64_t, 36> v{};
  if (!FitInDoubles(g, fixed, fit) || !RoundToIntegers(g, fixed, fit, v)) return false;
  for (int k = 0; k < 36; ++k) t.Value(kDiamond[k].x, kDiamond[k].y) = static_cast<int32_t>(v[k]);
  WriteSums(t);
  return true;
}

}  // namespace

void SetDefaultProbabilities(ProbabilityTable& t) {
  t = ProbabilityTable{};
  for (const DiamondCell& c : kDiamond) t.Value(c.x, c.y) = 2778;
  for (int y = 1; y <= 11; ++y)
    t.Value(kSumColumn, y) = static_cast<int32_t>(std::lround(kWays[y + 1] * 100000.0 / 36));
  for (int x = 2; x <= 7; ++x) t.Value(x, kDie1FaceRow) = t.Value(x, kDie2FaceRow) = 16667;
}

void SetDefaultPercentageDice(PercentageDice& p) {
  SetDefaultProbabilities(p.Table);
  p.ProbabilityFileName.clear();
  p.ProbabilityChanged = false;
  p.RollsOutOf = 36.0;
}

void DrawCell(const ProbabilityTable& t, int32_t number, int& die1, int& die2, std::minstd_rand& fallback) {
  int64_t running = 0, previous = 0;  // 64 bits: a damaged file may hold any values
  for (const DiamondCell& c : kDiamond) {
    running += t.Cells[1][c.x][c.y];
    if (running >= number && number > previous) {
      die1 = c.die1;
      die2 = c.die2;
      return;
    }
    previous = running;
  }
  // Beyond the table's sum. The search restarts with a fresh plain number but the running
  // sum kept, already at the table's total, so the first cell takes it: 1.1. That is the
  // result for every table, also one whose sum is short of the fresh number (a zero table
  // would otherwise never end).
  fallback.discard(1);  // the fresh number, Int(plain x 100000) + 1, whatever it is
  die1 = 1;
  die2 = 1;
}

bool EditCell(ProbabilityTable& t, int x, int y, int32_t newValue, std::string& error) {
  if (!IsEditableCell(x, y)) {
    error = kNotEditable;
    return false;
  }
  ProbabilityTable w = t;
  w.Value(x, y) = std::max(0, newValue);
  w.Lock(x, y) = kCellLocked;
  if (!Rebalance(w)) {
    error = kCantBalance;
    return false;
  }
  t = w;
  return true;
}

void UnlockAll(ProbabilityTable& t) {
  for (auto& column : t.Cells[0]) column.fill(kCellFree);
}

double TrueValue(int x, int y) {
  if (IsDiamondCell(x, y)) return kWholeTable / 36.0;
  if (x == kSumColumn && y >= 1 && y <= 11) return kWays[y + 1] * (kWholeTable / 36.0);
  if ((y == kDie1FaceRow || y == kDie2FaceRow) && x >= 2 && x <= 7) return kWholeTable / 6.0;
  return 0;
}

double ShownValue(int32_t stored, int x, int y, ProbabilityView view, double rollsOutOf) {
  switch (view) {
    case ProbabilityView::Percent: return stored / 1000.0;
    case ProbabilityView::PercentFromTrue: return (stored - TrueValue(x, y)) / 1000.0;
    case ProbabilityView::RollsOutOf: return stored * rollsOutOf / kWholeTable;
    case ProbabilityView::RollsFromTrue: return (stored - TrueValue(x, y)) * rollsOutOf / kWholeTable;
  }
  return 0;
}

bool StoredValue(double shown, int x, int y, ProbabilityView view, double rollsOutOf, int32_t& stored) {
  const bool rolls = view == ProbabilityView::RollsOutOf || view == ProbabilityView::RollsFromTrue;
  if (!std::isfinite(shown) || (rolls && !(rollsOutOf > 0 && std::isfinite(rollsOutOf)))) return false;
  double v = rolls ? shown * kWholeTable / rollsOutOf : shown * 1000.0;
  if (view == ProbabilityView::PercentFromTrue || view == ProbabilityView::RollsFromTrue) v += TrueValue(x, y);
  v = std::nearbyint(v);
  if (v > std::numeric_limits<int32_t>::max()) return false;
  stored = v < 0 ? 0 : static_cast<int32_t>(v);
  return true;
}

bool CommitProbabilityEntry(PercentageDice& p, int x, int y, std::string_view text, ProbabilityView view,
                            std::string& error) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double shown = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), shown);
  if (text.empty() || ec != std::errc() || end != text.data() + text.size()) {
    error = kNotANumber;
    return false;
  }
  int32_t stored = 0;
  if (!StoredValue(shown, x, y, view, p.RollsOutOf, stored)) {
    const bool rolls = view == ProbabilityView::RollsOutOf || view == ProbabilityView::RollsFromTrue;
    error = rolls && !(p.RollsOutOf > 0) ? kBadRollsOutOf : kCantBalance;
    return false;
  }
  if (!EditCell(p.Table, x, y, stored, error)) return false;
  p.ProbabilityChanged = true;
  return true;
}

bool ComputeAboutAxes(PercentageDice& p, const AxisChoice& die1, const AxisChoice& die2, std::string& error) {
  ProbabilityTable w = p.Table;
  UnlockAll(w);
  const AxisChoice* dice[2] = {&die1, &die2};
  for (int d = 0; d < 2; ++d) {
    const double percent = std::min(dice[d]->Effectiveness, 100.0);
    const float se = static_cast<float>(percent / 100.0);
    const float share = (1.0f - se) / 6.0f;
    const double face = std::nearbyint(static_cast<double>(share) * 100000.0);
    if (!std::isfinite(face) || std::abs(face) > 1e9) {
      error = kCantBalance;
      return false;
    }
    for (int option = 0; option < 3; ++option) {
      if (!dice[d]->Options[option]) continue;
      if (!EditCell(w, 2 + option, kDie1FaceRow + d, static_cast<int32_t>(face), error)) return false;
    }
  }
  p.Table = w;
  p.ProbabilityChanged = true;
  return true;
}
