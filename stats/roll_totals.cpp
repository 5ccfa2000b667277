#include "stats/roll_totals.h"

#include <fmt/format.h>

#include <cmath>

namespace {

// The cell of the ordered dice in the diamond: row total - 1; column die1 + 1 above the
// middle row, 8 - die2 from it down.
int32_t PlaneCell(const ProbabilityPlane& plane, int die1, int die2) {
  const int y = die1 + die2 - 1;
  const int x = y < 7 ? die1 + 1 : 8 - die2;
  return plane[x][y];
}

bool IsNamedKind(int kind) { return kind >= 0 && kind < kRollKinds && RollKindText(kind)[0] != '\0'; }

// "1234567" -> "1,234,567"; digits only.
std::string GroupThousands(const std::string& digits) {
  std::string out;
  const size_t n = digits.size();
  for (size_t i = 0; i < n; ++i) {
    if (i > 0 && (n - i) % 3 == 0) out += ',';
    out += digits[i];
  }
  return out;
}

// `magnitude` (0 or above) with at least `minDecimals` and at most `maxDecimals`.
std::string FormatDecimals(double magnitude, int minDecimals, int maxDecimals) {
  std::string s = fmt::format("{:.{}f}", magnitude, maxDecimals);
  const size_t dot = s.find('.');
  if (dot == std::string::npos) return GroupThousands(s);
  size_t end = s.size();
  while (end > dot + 1 + static_cast<size_t>(minDecimals) && s[end - 1] == '0') --end;
  if (end == dot + 1) return GroupThousands(s.substr(0, dot));
  return GroupThousands(s.substr(0, dot)) + s.substr(dot, end - dot);
}

std::string DiceLabel(int die1, int die2) { return fmt::format("{}.{}", die1, die2); }

struct DisplayItem {
  int kind;
  std::string label;
};

const std::vector<DisplayItem>& DisplayItems(int display) {
  static const std::array<std::vector<DisplayItem>, 4> kItems = [] {
    std::array<std::vector<DisplayItem>, 4> items;
    for (int d = 0; d < 4; ++d) {
      for (const uint8_t kind : DisplayKinds(d)) {
        // A pair kind is labelled by its dice, lower die first for the 21 combinations.
        std::string label = std::to_string(kind);
        if (d == 3) label = std::to_string(kind > kDie2Kind ? kind - kDie2Kind : kind - kDie1Kind);
        if (d == 1 || d == 2) {
          for (int a = 1; a <= 6; ++a)
            for (int b = d == 1 ? a : 1; b <= 6; ++b)
              if (PairKind(a, b, d == 1) == kind) label = DiceLabel(a, b);
        }
        items[d].push_back({kind, std::move(label)});
      }
    }
    return items;
  }();
  return kItems[display >= 0 && display <= 3 ? display : 0];
}

void FinishTest(ChiSquareTest& t) {
  t.Df = t.Count > 0 ? t.Count - 1 : 0;
  t.P = Chi2Pval(t.Sum, t.Df);
  t.SumText = ChiSquareText(t.Sum);
  t.PText = PValueText(t.P);
}

}  // namespace

namespace {

// The fair ways of every kind and the kind of every pair, worked out once: scripts ask for
// them on every roll ("# rolls since last(3.3)").
struct KindFacts {
  std::array<int, kRollKinds> ways{};
  std::array<std::array<std::array<uint8_t, 2>, 6>, 6> pairKind{};  // [die1 - 1][die2 - 1][either order]
};

const KindFacts& Facts() {
  static const KindFacts kFacts = [] {
    KindFacts f;
    for (int kind = 0; kind < kRollKinds; ++kind) {
      int ways = 0;
      for (int a = 1; a <= 6; ++a)
        for (int b = 1; b <= 6; ++b) ways += KindHasPair(kind, a, b);
      f.ways[kind] = kind == 0 || IsNamedKind(kind) ? ways : 0;
    }
    for (int a = 1; a <= 6; ++a)
      for (int b = 1; b <= 6; ++b)
        for (int either = 0; either < 2; ++either) {
          const int ways = either && a != b ? 2 : 1;
          for (int k = 2; k < kRollKinds; ++k)
            if (f.ways[k] == ways && KindHasPair(k, a, b) && (!either || KindHasPair(k, b, a))) {
              f.pairKind[a - 1][b - 1][either] = static_cast<uint8_t>(k);
              break;
            }
        }
    return f;
  }();
  return kFacts;
}

}  // namespace

int KindWays(int kind) { return kind >= 0 && kind < kRollKinds ? Facts().ways[kind] : 0; }

int PairKind(int die1, int die2, bool eitherOrder) {
  if (die1 < 1 || die1 > 6 || die2 < 1 || die2 > 6) return 0;
  return Facts().pairKind[die1 - 1][die2 - 1][eitherOrder ? 1 : 0];
}

double KindPercent(int kind, bool skewed, const ProbabilityPlane& plane) {
  if (!IsNamedKind(kind) || kind == 0) return 100;
  if (!skewed) return KindWays(kind) * 100.0 / 36;
  int64_t sum = 0;
  for (int a = 1; a <= 6; ++a)
    for (int b = 1; b <= 6; ++b)
      if (KindHasPair(kind, a, b)) sum += PlaneCell(plane, a, b);
  return static_cast<double>(sum) / 1000;
}

std::string FormatPrecision(double value, int decimals) {
  const double scale = std::pow(10.0, decimals);
  const double r = std::floor(scale * value + 0.5) / scale;
  if (decimals > 0 && r == 0)
    return value <= 0 ? "0" : "<0." + std::string(static_cast<size_t>(decimals - 1), '0') + "1";
  if (r == 0) return "0";
  const std::string sign = r < 0 ? "-" : "";
  if (r == std::floor(r)) return sign + FormatDecimals(std::fabs(r), 0, 0);
  return sign + FormatDecimals(std::fabs(r), 1, 8);
}

double ChiSquareCell(double rolled, double expected) {
  const double cell = (rolled - expected) * (rolled - expected) / expected;
  return std::floor(1e20 * cell + 0.5) / 1e20;
}

std::string ChiSquareText(double value) { return value > 100 ? ">100" : FormatPrecision(value, 4); }

double Chi2Pval(double x, int32_t df) {
  if (x <= 0 || df < 1) return 1;
  double a = df / 2.0;
  const int odd = df - 2 * (df / 2);
  double w = 1;
  if (odd >= 0.3) {
    w = std::sqrt(4 * std::atan(1.0));
    for (;;) {
      a -= 1;
      if (a < 0.3) break;
      w *= a;
    }
  } else {
    for (;;) {
      a -= 1;
      if (a < 1.8) break;
      w *= a;
    }
  }
  double t = std::exp(-x / 2) * std::pow(x / 2, df / 2.0) / (w * x);
  if (t == 0) return 0.001;
  t = 2 * t * x / df;
  double i = df, term = 1, sum = 0, prev = 0;
  for (;;) {
    i += 2;
    term = term * x / i;
    sum += term;
    // A sum past the largest double would never settle; its p is below the floor anyway.
    if (!std::isfinite(sum) || std::fabs(sum - prev) < 1e-18) break;
    prev = sum;
  }
  const double p = 1 - (sum + 1) * t;
  return p < 1e-18 ? 1e-18 : p;
}

std::string PValueText(double p) {
  if (p == 1) return "p=100%";
  if (p > 0 && p < 0.01) return "p<0.01%";
  if (p == 0) return "p=0%";
  return "p=" + FormatDecimals(std::fabs(p) * 100, 1, 2) + "%";
}

std::span<const uint8_t> DisplayKinds(int display) {
  struct Kinds {
    std::array<std::array<uint8_t, 36>, 4> kinds{};
    std::array<std::size_t, 4> count{};
  };
  static const Kinds kKinds = [] {
    Kinds k;
    auto add = [&](int d, int kind) { k.kinds[d][k.count[d]++] = static_cast<uint8_t>(kind); };
    for (int t = 2; t <= 12; ++t) add(0, t);
    for (int a = 1; a <= 6; ++a)
      for (int b = a; b <= 6; ++b) add(1, PairKind(a, b, true));
    for (int a = 1; a <= 6; ++a)
      for (int b = 1; b <= 6; ++b) add(2, PairKind(a, b, false));
    for (int base : {kDie1Kind, kDie2Kind})
      for (int f = 1; f <= 6; ++f) add(3, base + f);
    return k;
  }();
  const int d = display >= 0 && display <= 3 ? display : 0;
  return {kKinds.kinds[d].data(), kKinds.count[d]};
}

RollTotalsView ComputeRollTotals(const Statistics& s, const RollTotalsRequest& r) {
  RollTotalsView v;
  v.Heading = r.Display == 0 ? "DICE TOTALS" : r.Display == 3 ? "" : "COMBINATIONS";
  if (r.ScopeBase == kLastHandScope && r.LastHandShooterGone)
    v.ScopeNote = "The last hand was shot by a player who is no longer at the table.";

  std::array<int, kSeats> columns{};
  int nColumns = 0;
  if (r.PlayerList) {
    for (int seat = 1; seat < kSeats; ++seat)
      if (r.Selected[seat]) columns[nColumns++] = r.ScopeBase + seat;
    if (nColumns == 0) v.PlayerNote = "No players selected";
  } else {
    columns[nColumns++] = r.ScopeBase;
  }
  auto rolled = [&](int kind) {
    double sum = 0;
    for (int i = 0; i < nColumns; ++i) sum += s.RollCount[columns[i]][kind];
    return sum;
  };
  v.TotalRolls = rolled(0);

  const bool showsSince = r.ScopeBase == kSessionScope || r.ScopeBase == kAllScope;
  static const ProbabilityPlane kNoPlane{};
  const ProbabilityPlane& plane = r.Plane ? *r.Plane : kNoPlane;
  const bool skewed = r.Skewed && r.Plane != nullptr;

  v.Chi.Title = "chisquare";
  v.HasDie1Test = r.Display == 3;
  if (v.HasDie1Test) v.Die1Chi.Title = "chi-square";
  const std::vector<DisplayItem>& items = DisplayItems(r.Display);
  for (size_t n = 0; n < items.size(); ++n) {
    RollTotalsItem item;
    item.Kind = items[n].kind;
    item.Label = items[n].label;
    item.Rolled = rolled(item.Kind);
    item.ProbablePercent = KindPercent(item.Kind, skewed, plane);
    item.Expected = item.ProbablePercent * 0.01 * v.TotalRolls;
    item.PercentRolled = v.TotalRolls > 0 ? item.Rolled / v.TotalRolls * 100 : 0;
    if (showsSince) item.RollsSinceLast = s.RollsSince[item.Kind];
    if (item.Expected > 0) {
      item.InTest = true;
      item.ChiCell = ChiSquareCell(item.Rolled, item.Expected);
      item.ChiText = ChiSquareText(item.ChiCell);
      ChiSquareTest& test = v.HasDie1Test && n < 6 ? v.Die1Chi : v.Chi;
      test.Sum += item.ChiCell;
      ++test.Count;
    }
    v.Items.push_back(std::move(item));
  }
  FinishTest(v.Chi);
  if (v.HasDie1Test) FinishTest(v.Die1Chi);
  return v;
}

const std::array<uint8_t, 88>& RollFreqsKinds() {
  // Each number's single ways, its pairs, its hard way, its "Any"; then the groups; then
  // the faces.
  static constexpr std::array<uint8_t, 88> kOrder = {
      2,  22, 23, 3,  24, 25, 26, 13, 4,  27, 28, 29, 30, 31, 32, 5,  33, 34, 35, 36, 37, 38,
      14, 6,  39, 40, 41, 42, 43, 44, 45, 46, 47, 7,  48, 49, 50, 51, 52, 53, 15, 8,  54, 55,
      56, 57, 58, 59, 9,  60, 61, 62, 16, 10, 63, 64, 11, 12, 21, 17, 65, 66, 18, 19, 20, 67,
      68, 69, 70, 71, 72, 73, 74, 75, 76, 77, 78, 79, 80, 81, 82, 83, 84, 85, 86, 87, 88, 89,
  };
  return kOrder;
}

RollFreqsView ComputeRollFreqs(const Statistics& s, int kind, bool skewed, const ProbabilityPlane& plane) {
  RollFreqsView v;
  if (kind < 0 || kind >= kRollKinds) return v;
  v.Kind = kind;
  v.TotalSessionRolls = s.RollCount[kSessionScope][0];
  v.SelectionRolls = s.RollCount[kSessionScope][kind];
  v.RollsSinceLast = s.RollsSince[kind];
  v.ActualPercent = v.TotalSessionRolls > 0 ? v.SelectionRolls / v.TotalSessionRolls * 100 : 0;
  v.ProbableCaption = skewed ? "Skewed probable %:" : "True probable %:";
  v.ProbablePercent = KindPercent(kind, skewed, plane);
  v.AverageRolls = v.ProbablePercent > 0 ? 100 / v.ProbablePercent : 0;
  const auto& bins = s.RollGapHistogram[kind];
  double filed = 0;
  for (int g = 1; g <= kLongGap; ++g) {
    v.GapCount[g] = bins[g];
    filed += bins[g];
  }
  if (filed > 0)
    for (int g = 1; g <= kLongGap; ++g) v.GapPercent[g] = bins[g] / filed * 100;
  v.LongGapSum = bins[0];
  return v;
}

std::string GapPercentText(double percent) {
  const std::string text = FormatPrecision(percent, 3);
  return text[0] == '<' ? "< 0.001" : text;
}
