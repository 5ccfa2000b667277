#pragma once
// Selecting and seeding the generators.

#include "engine/game_state.h"

// Selects generator `number`: 0 done, -1 its library is missing, -2 out of range.
// Library checks come first (1, 6, 8 then 2, 7), then the range 0..8; 0 passes it, so
// callers never pass 0. Selecting does not seed.
int SelectRng(Game& g, int32_t number);

// Applies a seed to the selected generator: pendingSeed when scripted, else the user's
// seed (when seedByUser) or an automatic one from the time of day. True when applied;
// false leaves every generator as it was and pendingSeed 0 (or, on Cancel, everything).
bool SeedRng(Game& g, bool scripted);

// Seeds the selected generator with `seed`, as "Seed RNG with X" does; false (nothing
// seeded) for a seed out of the generator's range.
bool SeedRngWith(Game& g, int32_t seed);

// The manual roll pad: the next roll comes out as these dice, whatever the other sources.
void SetPadRoll(Game& g, int die1, int die2);

// "Re-seed new sessions" (chkReSeed).
void SetReseedSessions(Game& g, bool on);

// The largest seed the selected generator takes.
int32_t MaxSeed(const Game& g);

// Start-up: seeds every generator that can be selected, #3, #4, #5, #2, #1, each with its
// own automatic seed, and so leaves #1 selected unless its library is missing.
void SeedAtStartUp(Game& g);
