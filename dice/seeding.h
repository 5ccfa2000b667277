#pragma once
// Seeding the selected generator.

#include "engine/game_state.h"

// Applies a seed to the selected generator: pendingSeed when scripted, else the user's
// seed (when seedByUser) or an automatic one from the time of day. True when applied.
bool SeedRng(Game& g, bool scripted);
// The largest seed the selected generator takes.
int32_t MaxSeed(const Game& g);
