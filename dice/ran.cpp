#include "dice/ran.h"

#include <cmath>

namespace {

constexpr int32_t M1 = 259200, IA1 = 7141, IC1 = 54773;
constexpr int32_t M2 = 134456, IA2 = 8121, IC2 = 28411;
constexpr int32_t M3 = 243000, IA3 = 4561, IC3 = 51349;
constexpr double RM1 = 3.8580247e-6, RM2 = 7.4373773e-6;

constexpr int32_t M = 714025, IA = 1366, IC = 150889;
constexpr double RM = 1.4005112e-6;

// ia × ix + ic in floating point, to an integer, the integer remainder, back to a float.
// The product of two whole numbers below 2^31 is exact in a double, so the conversion
// is exact too.
inline float Step(float ix, int32_t ia, int32_t ic, int32_t m) {
  const auto v = static_cast<int64_t>(static_cast<double>(ia) * ix + ic);
  return static_cast<float>(v % m);
}

inline float Remainder(float ix, int32_t m) { return static_cast<float>(static_cast<int64_t>(ix) % m); }

inline int32_t Step2(int32_t idum) { return static_cast<int32_t>((int64_t{IA} * idum + IC) % M); }

}  // namespace

float Ran1Entry(float ix1, float ix2) { return static_cast<float>((static_cast<double>(ix1) + ix2 * RM2) * RM1); }

float Ran1(Ran1State& s, int32_t& idum, const char*& pendingError) {
  if (idum < 0 || !s.initialised) {
    s.initialised = true;
    // In 64 bits, so that every seed up to 2^31 - 1 starts without overflow.
    s.ix1 = static_cast<float>((int64_t{IC1} - idum) % M1);
    s.ix1 = Step(s.ix1, IA1, IC1, M1);
    s.ix2 = Remainder(s.ix1, M2);
    s.ix1 = Step(s.ix1, IA1, IC1, M1);
    s.ix3 = Remainder(s.ix1, M3);
    for (int j = 1; j <= 97; ++j) {
      s.ix1 = Step(s.ix1, IA1, IC1, M1);
      s.ix2 = Step(s.ix2, IA2, IC2, M2);
      s.r[j] = Ran1Entry(s.ix1, s.ix2);
    }
    idum = 1;
  }
  s.ix1 = Step(s.ix1, IA1, IC1, M1);
  s.ix2 = Step(s.ix2, IA2, IC2, M2);
  s.ix3 = Step(s.ix3, IA3, IC3, M3);
  const double k = std::floor(97.0 * s.ix3 / 243000.0);
  if (k < 0.0 || k > 96.0) {
    pendingError = kRan1ErrorText;
    return static_cast<float>(k);
  }
  const int j = static_cast<int>(k) + 1;
  const float temp = s.r[j];
  s.r[j] = Ran1Entry(s.ix1, s.ix2);
  return temp;
}

float Ran2(Ran2State& s, int32_t& idum, const char*& pendingError) {
  if (idum < 0 || !s.initialised) {
    s.initialised = true;
    s.idum = static_cast<int32_t>((int64_t{IC} - idum) % M);
    for (int j = 1; j <= 97; ++j) {
      s.idum = Step2(s.idum);
      s.ir[j] = s.idum;
    }
    s.idum = Step2(s.idum);
    s.iy = s.idum;
    idum = 1;
  }
  const double k = std::floor(static_cast<double>(int64_t{s.iy} * 97) / 714025.0);
  if (k < 0.0 || k > 96.0) {
    pendingError = kRan2ErrorText;
    return 0.0f;
  }
  const int j = static_cast<int>(k) + 1;
  s.iy = s.ir[j];
  const float result = static_cast<float>(s.iy * RM);
  s.idum = Step2(s.idum);
  s.ir[j] = s.idum;
  return result;
}

int32_t RanLcg(int32_t& lcgState, int32_t n) {
  // Seeds stop at 999999 so that the product stays inside 32 bits; a state loaded from a
  // file may not, and 64 bits give the same result wherever 32 would not overflow.
  lcgState = static_cast<int32_t>((int64_t{lcgState} * 1366 + 150889) % 714025);
  return static_cast<int32_t>(std::floor(lcgState / 714025.0 * n)) + 1;
}
