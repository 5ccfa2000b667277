#pragma once
// The generator settings and state of a table, and the dice drawn from the selected
// generator.

#include <cstdint>

#include "dice/mt19937.h"
#include "engine/money.h"

struct DiceSources {
  int32_t rngNumber = 1;  // 1..8
  bool seedByUser = false;
  bool reseedSessions = false;
  int32_t lastSeed = 0;
  int32_t lcgState = 0;
  Money pendingSeed;                // 0: choose the seed automatically
  uint32_t missingRngLibraries = 0; // bit 0 the reference twister, bit 1 the Cokus form
  Mt19937 mt;
  // Manual roll pad.
  bool padPending = false;
  int padDie1 = 0, padDie2 = 0;
};

// Two dice from the selected generator, die 1 first. `sessionRolls` is the session's
// roll count before this roll (it picks the branch of the alternating generators).
void GeneratorDice(DiceSources& d, int32_t sessionRolls, int& die1, int& die2);
