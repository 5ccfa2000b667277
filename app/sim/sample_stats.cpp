#include "app/sim/sample_stats.h"

#include <cmath>
#include <limits>

namespace {

// The continued fraction of the incomplete beta function (modified Lentz).
double BetaFraction(double a, double b, double x) {
  constexpr double kTiny = 1e-300, kEpsilon = 1e-15;
  const double qab = a + b, qap = a + 1, qam = a - 1;
  double c = 1, d = 1 - qab * x / qap;
  if (std::fabs(d) < kTiny) d = kTiny;
  d = 1 / d;
  double h = d;
  for (int m = 1; m <= 1000; ++m) {
    const int m2 = 2 * m;
    double aa = m * (b - m) * x / ((qam + m2) * (a + m2));
    d = 1 + aa * d;
    if (std::fabs(d) < kTiny) d = kTiny;
    c = 1 + aa / c;
    if (std::fabs(c) < kTiny) c = kTiny;
    d = 1 / d;
    h *= d * c;
    aa = -(a + m) * (qab + m) * x / ((a + m2) * (qap + m2));
    d = 1 + aa * d;
    if (std::fabs(d) < kTiny) d = kTiny;
    c = 1 + aa / c;
    if (std::fabs(c) < kTiny) c = kTiny;
    d = 1 / d;
    const double step = d * c;
    h *= step;
    if (std::fabs(step - 1) < kEpsilon) break;
  }
  return h;
}

// The regularized incomplete beta function I_x(a, b).
double IncompleteBeta(double a, double b, double x) {
  if (x <= 0) return 0;
  if (x >= 1) return 1;
  const double front =
      std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) + a * std::log(x) + b * std::log1p(-x));
  if (x < (a + 1) / (a + b + 2)) return front * BetaFraction(a, b, x) / a;
  return 1 - front * BetaFraction(b, a, 1 - x) / b;
}

}  // namespace

double StudentTCdf(double t, double df) {
  if (std::isinf(t)) return t > 0 ? 1 : 0;
  const double tail = 0.5 * IncompleteBeta(df / 2, 0.5, df / (df + t * t));
  return t > 0 ? 1 - tail : tail;
}

double StudentTQuantile(double p, double df) {
  if (p == 0.5) return 0;
  if (p < 0.5) return -StudentTQuantile(1 - p, df);
  double low = 0, high = 1;
  while (StudentTCdf(high, df) < p && high < 1e12) high *= 2;
  for (int i = 0; i < 200 && high - low > 1e-12 * high; ++i) {
    const double mid = (low + high) / 2;
    (StudentTCdf(mid, df) < p ? low : high) = mid;
  }
  return (low + high) / 2;
}

SampleSummary Summarize(const std::vector<double>& values) {
  SampleSummary s;
  s.count = static_cast<int64_t>(values.size());
  s.aheadConfidence = 0.5;
  if (values.empty()) return s;
  double sum = 0;
  for (double v : values) sum += v;
  s.mean = sum / static_cast<double>(s.count);
  s.low = s.high = s.mean;
  if (s.count < 2) return s;
  double squares = 0;
  for (double v : values) squares += (v - s.mean) * (v - s.mean);
  s.sd = std::sqrt(squares / static_cast<double>(s.count - 1));
  const double df = static_cast<double>(s.count - 1);
  const double se = s.sd / std::sqrt(static_cast<double>(s.count));
  if (se == 0) {
    s.aheadConfidence = s.mean > 0 ? 1 : s.mean < 0 ? 0 : 0.5;
    return s;
  }
  const double t = StudentTQuantile(0.975, df);
  s.low = s.mean - t * se;
  s.high = s.mean + t * se;
  s.aheadConfidence = StudentTCdf(s.mean / se, df);
  return s;
}

double Quantile(const std::vector<double>& sorted, double p) {
  if (sorted.empty()) return std::numeric_limits<double>::quiet_NaN();
  const double h = static_cast<double>(sorted.size() - 1) * p;
  const auto below = static_cast<size_t>(std::floor(h));
  if (below + 1 >= sorted.size()) return sorted.back();
  return sorted[below] + (h - static_cast<double>(below)) * (sorted[below + 1] - sorted[below]);
}
