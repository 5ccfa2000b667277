#pragma once
// Auto-Roll and Hyper-Drive: rolling without a hand on the mouse.

#include "engine/game_state.h"

// Starts Auto-Roll (throttle 12) or Hyper-Drive (below 12) when off, stops it when on.
// Starting only sets the flags; the caller (the roll timer, or the runner) calls RollDice,
// which in Hyper-Drive keeps rolling until the flag is cleared.
void ToggleAutoRoll(Game& g);
// Moves the slider: a running table changes mode at once, an idle one only its caption.
void SetAutoRollThrottle(Game& g, int throttle);
// Auto-Stop after a whole number of rolls (a fraction is dropped; 0 for none); false,
// and nothing changed, for a negative count.
bool SetAutoStopRolls(Game& g, Money rolls);
// The seconds between rolls at normal speed, 0 to 300; false, and nothing changed,
// outside them.
bool SetAutoRollDelay(Game& g, Money seconds);
// Stops play for the seat whose bankroll passed a limit; the table stays frozen until
// a new session.
void LimitStop(Game& g, int seat);
