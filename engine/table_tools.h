#pragma once
// What the table's tools do to a seat's bets: calling a bet on or off, buying a Place
// bet, and renaming a player. The desktop and the keys call these; the rules stay here.

#include <string>

#include "engine/game_state.h"

// The bets that always work and can't be called on or off: the line bets, the come
// boxes and the Come and Don't Come bets on their numbers.
bool BetAlwaysWorks(int bet);

// The Call On (on = true) or Call Off tool on one bet of the seat. A bet called the
// other way returns to its rest state; a bet at rest is called. Refused (with text 59)
// for a bet that always works; nothing happens to a bet without an amount. Returns
// whether the state changed.
bool CallBet(Game& g, int seat, int bet, bool on);
// The same for every bet of the seat that has an amount and can be called.
void CallAllBets(Game& g, int seat, bool on);
// The Buy tool: the amount of a Place bet moves to the Buy bet on its number, through
// the gate, and what the Buy bet refuses stays on the Place bet. Any other bet is refused
// with text 57. Returns the amount that moved.
Money BuyPlaceBet(Game& g, int seat, int bet);
// Takes down every bet of the seat that may come down.
void RemoveAllBets(Game& g, int seat);

// Renames the seat's player: the name is checked as a new player's is (text 6, 7, 186).
// Returns "" when renamed, else why not, in the system's words.
std::string RenamePlayer(Game& g, int seat, const std::string& name);
