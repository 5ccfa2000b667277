#include "stats/sessions_stats.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>

namespace {

// The largest magnitude a Money holds, in dollars.
constexpr double kMoneyLimit = static_cast<double>(INT64_MAX) / Money::kScale;

bool FitsMoney(double dollars) { return std::isfinite(dollars) && std::fabs(dollars) < kMoneyLimit; }

// (a + b) / 2 to the ten-thousandth, ties to even, without overflowing the sum.
Money HalfSum(Money a, Money b) {
  const __int128 s = static_cast<__int128>(a.raw) + b.raw;
  __int128 q = s / 2;
  if (s % 2 != 0) {
    if (s < 0) q -= 1;  // floor
    if (q & 1) q += 1;  // the tie goes to the even neighbour
  }
  return Money::FromRaw(static_cast<int64_t>(q));
}

std::string_view Trim(std::string_view t) {
  while (!t.empty() && std::isspace(static_cast<unsigned char>(t.front()))) t.remove_prefix(1);
  while (!t.empty() && std::isspace(static_cast<unsigned char>(t.back()))) t.remove_suffix(1);
  return t;
}

}  // namespace

bool ParseBreakPoint(std::string_view text, BreakPoint& out, std::string& error) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const size_t to = lower.find(" to ");
  Money low, high;
  if (to == std::string::npos) {
    if (!ParseMoney(Trim(text), low, error)) return false;
    high = low;
  } else {
    if (!ParseMoney(Trim(text.substr(0, to)), low, error) || !ParseMoney(Trim(text.substr(to + 4)), high, error))
      return false;
    if (high < low) std::swap(low, high);
  }
  out = {low, high};
  return true;
}

SessionOutcome OutcomeOf(Money outcome, const BreakPoint& bp) {
  if (outcome > bp.High) return kSessionWon;
  if (outcome < bp.Low) return kSessionLost;
  return kSessionEven;
}

bool ComputeSessionsStats(const std::vector<SessionRecord>& records, const SessionsFilter& filter, SessionsStats& out) {
  out = SessionsStats{};
  const auto field = static_cast<size_t>(std::clamp(filter.Field, 0, kSessionFields - 1));
  const auto outcomeField = static_cast<size_t>(std::clamp(filter.OutcomeField, 0, kSessionFields - 1));
  std::vector<Money> x;
  x.reserve(records.size());
  for (const SessionRecord& r : records) {
    const SessionOutcome o = OutcomeOf(r[outcomeField], filter.Break);
    ++out.Sessions[o];
    if (filter.Include[o]) x.push_back(r[field]);
  }
  out.Total = static_cast<int32_t>(records.size());
  for (int k = 0; k < 3; ++k)
    out.SessionsPct[static_cast<size_t>(k)] =
        out.Total ? 100.0 * out.Sessions[static_cast<size_t>(k)] / out.Total : 0.0;

  out.N = static_cast<int32_t>(x.size());
  if (x.empty()) return true;
  const double n = static_cast<double>(x.size());

  __int128 sum = 0;
  for (Money v : x) sum += v.raw;
  if (sum > INT64_MAX || sum < INT64_MIN) return false;
  out.Sum = Money::FromRaw(static_cast<int64_t>(sum));
  out.Mean = Money::FromDouble(static_cast<double>(sum) / Money::kScale / n);

  std::sort(x.begin(), x.end());
  out.Low = x.front();
  out.High = x.back();
  const __int128 range = static_cast<__int128>(out.High.raw) - out.Low.raw;
  if (range > INT64_MAX) return false;
  out.Range = Money::FromRaw(static_cast<int64_t>(range));
  out.Mid = HalfSum(out.High, out.Low);
  const size_t m = x.size() / 2;
  out.Median = x.size() % 2 ? x[m] : HalfSum(x[m - 1], x[m]);
  // Ties of the mode go to the lowest value: the sorted run met first.
  for (size_t i = 0; i < x.size();) {
    size_t j = i;
    while (j < x.size() && x[j] == x[i]) ++j;
    if (static_cast<int32_t>(j - i) > out.ModeCount) {
      out.ModeCount = static_cast<int32_t>(j - i);
      out.Mode = x[i];
    }
    i = j;
  }

  // Each power is held as Money, so a square or its sum out of range is a fault.
  const double mean = out.Mean.ToDouble();
  double squares = 0;
  for (Money v : x) {
    const double d = v.ToDouble() - mean;
    if (!FitsMoney(d * d)) return false;
    squares += d * d;
    if (!FitsMoney(squares)) return false;
  }
  out.Variance = Money::FromDouble(squares / n);
  out.StdDev = Money::FromDouble(std::sqrt(out.Variance.ToDouble()));
  if (out.StdDev.raw == 0) return false;  // Skew and Kurtosis would divide by 0

  const double sd = out.StdDev.ToDouble();
  double cubes = 0, fourths = 0;
  for (Money v : x) {
    const double z = (v.ToDouble() - mean) / sd;
    cubes += z * z * z;
    fourths += z * z * z * z;
    if (!FitsMoney(cubes) || !FitsMoney(fourths)) return false;
  }
  out.Skew = Money::FromDouble(cubes / n);
  out.Kurtosis = Money::FromDouble(fourths / n);
  return true;
}
