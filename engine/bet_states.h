#pragma once
// What becomes of bets between resolutions: contract bets abandoned when a session ends or
// a player leaves, and the working state bets rest in.

#include "engine/game_state.h"

// A contract bet left on the table at a new session or by a leaving player: it loses.
void AbandonBet(Game& g, int seat, int bet);
// Every bet not called on or off rests in the seat's default state on the come-out and
// works while a point is on.
void RestWorkingStates(Game& g);
// A seat's default for a bet follows what the rules say works on the come-out; the bet,
// resting on the come-out, follows it at once.
void FollowWorkOnComeOut(Game& g, int seat, int bet);
// A seat nobody has played: every bet works on the come-out as the table's defaults have
// it and rests so, none called on or off. Left so by a player who goes, it is the same at
// every table that mirrors it.
void BareSeatWorking(Game& g, int seat);
