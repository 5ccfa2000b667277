#pragma once
// Money entering and leaving a seat outside of bets: buy-in and the limit stop.

#include "engine/game_state.h"

// Sets up the seat's bankroll for a session.
void BuyIn(Game& g, int seat, Money amount);
// The ATM: a positive amount is a withdrawal from it (money to the rail), a negative
// one a deposit to it. Cut to the limits with a box that tells why; returns what was
// allowed.
Money Atm(Game& g, int seat, Money amount);
// Whether a bankroll is beyond either limit.
inline bool BeyondBankrollLimit(Money bankroll) { return Abs(bankroll) > kMaxBankroll; }
