#pragma once
// The generator settings and state of a table, and the dice drawn from the selected
// generator.

#include <cstdint>

#include "dice/cokus_mt.h"
#include "dice/mt19937.h"
#include "dice/ran.h"
#include "engine/money.h"

struct DiceSources {
  int32_t rngNumber = 1;  // 1..8
  bool seedByUser = false;
  bool reseedSessions = false;
  int32_t lastSeed = 0;
  int32_t lcgState = 0;              // the running state of #3, saved with the game
  Money pendingSeed;                 // 0: choose the seed automatically
  uint32_t missingRngLibraries = 0;  // bit 0 the reference twister, bit 1 the Cokus form
  // The four sources behind the eight generators; never saved. #1, #6 and #8 share the
  // reference twister, #2 and #7 the Cokus form, #5 and #6 Ran1, #4 and #7 Ran2.
  Mt19937 mt;
  CokusMt cokus;
  Ran1State ran1;
  Ran2State ran2;
  // Set by Ran1 or Ran2 when a table index falls outside 1..97 (a static text, so the
  // draw never allocates); whoever reports it clears it.
  const char* pendingErrorText = nullptr;
  // Manual roll pad.
  bool padPending = false;
  int padDie1 = 0, padDie2 = 0;
};

// Two dice from the selected generator, die 1 first. `sessionRolls` is the session's
// roll count before this roll (it picks the branch of the alternating generators).
// A die of 7 is possible from Ran1 and is passed on unclamped. An unknown generator
// number leaves the dice as they were.
void GeneratorDice(DiceSources& d, int32_t sessionRolls, int& die1, int& die2);

// The percentage-dice cell number from the selected generator: 1..100000, or 1..100001
// for the rounding form of #4 and #5 (and their branches of #6 and #7). 0 for an
// unknown generator number.
int32_t GeneratorCell(DiceSources& d, int32_t sessionRolls);

// At the start of a roll: a generator whose library is missing falls back, 1, 6, 8 to 2
// and then 2, 7 to 4, so that with both missing #1 ends as #4.
void RemapMissingGenerators(DiceSources& d);

// One uniform number from each source, as the generators draw them.
inline double DrawMt(DiceSources& d) { return GenrandReal2(d.mt); }
inline double DrawCokus(DiceSources& d) { return RandomMT(d.cokus); }
inline float DrawRan1(DiceSources& d) {
  int32_t one = 1;
  return Ran1(d.ran1, one, d.pendingErrorText);
}
inline float DrawRan2(DiceSources& d) {
  int32_t one = 1;
  return Ran2(d.ran2, one, d.pendingErrorText);
}
