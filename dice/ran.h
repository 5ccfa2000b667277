#pragma once
// The classic shuffled generators RAN1 and RAN2 (Numerical Recipes, first edition) and
// the plain congruential generator of #3. Their state is kept by the caller (the table's
// DiceSources), so two tables never share a sequence. Nothing here allocates.

#include <array>
#include <cstdint>

struct Ran1State {
  float ix1 = 0, ix2 = 0, ix3 = 0;  // whole numbers below 2^18, exact in a float
  std::array<float, 98> r{};        // used from 1
  bool initialised = false;
};

struct Ran2State {
  int32_t idum = 0, iy = 0;
  std::array<int32_t, 98> ir{};  // used from 1
  bool initialised = false;
};

// The texts stored as the pending error when a table index falls outside 1..97.
inline constexpr const char* kRan1ErrorText = "\nAn error occurred in function Ran1";
inline constexpr const char* kRan2ErrorText = "\nAn error occurred in function Ran2";

// A result on [0, 1]: exactly 1.0 is possible and kept. A negative idum (or the first
// call) re-initialises and leaves idum = 1; a draw passes a variable holding 1.
float Ran1(Ran1State& s, int32_t& idum, const char*& pendingError);
// A result on [0, 1). A negative idum (or the first call) re-initialises and leaves
// idum = 1; the running value is the state's own idum.
float Ran2(Ran2State& s, int32_t& idum, const char*& pendingError);
// One step of lcgState, then a whole number from 1 to n.
int32_t RanLcg(int32_t& lcgState, int32_t n);

// One table entry of Ran1 from its first two values, rounded to a float.
float Ran1Entry(float ix1, float ix2);
