#pragma once
// Who holds the dice, and players who come.

#include <string>

#include "engine/game_state.h"

// Modes of PassDice: 0 from the roll cycle, 1 asked by the user or a script, 2 silent
// (the table changed), 4 logged and silent.
constexpr int kPassFromRoll = 0, kPassAsked = 1, kPassSilent = 2, kPassLogged = 4;
void PassDice(Game& g, int mode);

// Seats a player on a free rail position with a buy-in: the name, the buy-in (mode
// and amount), the house's standards for working on the come-out; the dice come to the
// seat when nobody had them. Returns false when the seat is taken or the name empty.
bool AddPlayer(Game& g, int seat, const std::string& name, Money bankroll);

// A click on a free rail position: asks whether to add a player there, the name (told
// again until it is one the table can use) and the buy-in. Returns whether one sat down.
bool AskToAddPlayer(Game& g, int seat);
// "" when `name` can be a player's name, else why not in the system's words.
std::string PlayerNameFault(const Game& g, const std::string& name);

// A player leaves after saying yes: contract bets still at risk are abandoned (they
// lose unless the option returns them), the rest goes back to the rail, the session
// goes to the player's log. Returns whether the player left.
bool RemovePlayer(Game& g, int seat);

// Exchanges everything kept by seat between two seats; a move to a free seat is an
// exchange with nobody.
void MovePlayer(Game& g, int from, int to);
