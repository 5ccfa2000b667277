#pragma once
// The one gate through which any amount on a bet or CheckStack changes.

#include "engine/game_state.h"

// Cuts the requested change down to what the rules, the limits and the bankroll allow,
// tells the cut (outside SilentMode), applies what is left and returns it.
Money ChangeBet(Game& g, int seat, int bet, Money change);
// The most the seat may have on the bet now.
Money GetMaximum(const Game& g, int seat, int bet);
// The least a bet may hold (the proposition minimum, or the payoff-raised minimum).
Money GetMinimum(const Game& g, int bet);
// A bet placed at the table: the gate, then the sound of checks and the picture. The
// placement values say where the checks stand on the table picture.
Money PlaceBet(Game& g, int seat, int bet, Money change, int32_t placementA, int32_t placementB);
Money TakeDown(Game& g, int seat, int bet);
// Full odds: with every message off, take the bet down, then ask for 9999999.
Money TakeMaximum(Game& g, int seat, int bet);
// Sets an amount with no rule at all: only the moves of Come and Don't Come use it.
void CommitAmount(Game& g, int seat, int bet, Money delta);
// The rest state of a bet whose amount came to 0.
void ResetWorkingState(Game& g, int seat, int bet);
// The state a bet not called on or off rests in now: the seat's default on the come-out,
// working while a point is on.
WorkingState RestingState(const Game& g, int seat, int bet);
// A player's call of a bet: on (2), off (-1), or back to its rest; the other side of an
// online table hears of it.
void SetWorkingState(Game& g, int seat, int bet, WorkingState state);
