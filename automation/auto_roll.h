#pragma once
// Auto-Roll and Hyper-Drive: rolling without a hand on the mouse.

#include "engine/game_state.h"

// Starts Auto-Roll (throttle 12) or Hyper-Drive (below 12) when off, stops it when on.
// Starting only sets the flags; the caller (the roll timer, or the runner) calls RollDice,
// which in Hyper-Drive keeps rolling until the flag is cleared.
void ToggleAutoRoll(Game& g);
// Moves the slider: a running table changes mode at once, an idle one only its caption.
void SetAutoRollThrottle(Game& g, int throttle);
// Stops play for the seat whose bankroll passed a limit; the table stays frozen until
// a new session.
void LimitStop(Game& g, int seat);
