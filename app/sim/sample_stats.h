#pragma once
// The statistics of a sample of session results: the mean with its confidence interval
// from Student's t, the standard deviation, percentiles. Plain values in and out.

#include <cstdint>
#include <vector>

// The distribution function of Student's t with `df` degrees of freedom.
double StudentTCdf(double t, double df);
// The t with P(T <= t) = p, for 0 < p < 1.
double StudentTQuantile(double p, double df);

struct SampleSummary {
  int64_t count = 0;
  double mean = 0;
  double sd = 0;               // with n - 1
  double low = 0, high = 0;    // the 95% confidence interval of the mean; equal to it for n < 2
  double aheadConfidence = 0;  // P(the true mean is above 0), one-sided from t; 0.5 when unknown
};
// The sample's summary, summed in the order given so that the result never depends on
// how the sample was gathered.
SampleSummary Summarize(const std::vector<double>& values);

// The p-th quantile (0..1) of sorted values, by linear interpolation between the closest
// ranks: h = (n - 1) p, x[floor h] + (h - floor h) (x[floor h + 1] - x[floor h]); the
// definition most statistics packages use by default.
double Quantile(const std::vector<double>& sorted, double p);
