#pragma once
// Ran1 and Ran2 states set by hand, for the results a test cannot wait for.

#include <cstdint>

#include "dice/ran.h"

// The step before `target` of ix = (a ix + c) mod m, by search.
inline int32_t RecurrencePredecessor(int64_t a, int64_t c, int32_t m, int32_t target) {
  for (int64_t p = 0; p < m; ++p)
    if ((a * p + c) % m == target) return static_cast<int32_t>(p);
  return -1;
}

// After this the next Ran1 draw is exactly 1.0: the largest ix1 with the largest ix2
// makes a table entry that rounds to 1.0f, and ix3 is set to pick it again.
inline void CraftRan1One(Ran1State& s) {
  s.initialised = true;
  s.ix1 = static_cast<float>(RecurrencePredecessor(7141, 54773, 259200, 259199));
  s.ix2 = static_cast<float>(RecurrencePredecessor(8121, 28411, 134456, 134455));
  s.ix3 = 0;
  s.r.fill(0.5f);
  const char* error = nullptr;
  int32_t one = 1;
  Ran1(s, one, error);  // stores the new entry where ix3 points
  s.ix3 = 0;
}

// Every Ran1 draw returns u until the table is refilled.
inline void CraftRan1Constant(Ran1State& s, float u) {
  s.initialised = true;
  s.ix1 = s.ix2 = s.ix3 = 0;
  s.r.fill(u);
}

// The next Ran2 draw is its largest value, 714024 × 1.4005112e-6.
inline void CraftRan2Top(Ran2State& s) {
  s.initialised = true;
  s.ir.fill(714024);
  s.iy = 0;
  s.idum = 0;
}
