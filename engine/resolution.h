#pragma once
// Which bets win, lose or stand on a roll, in which order, and what a result pays.

#include "engine/game_state.h"

// What a roll does to a bet: it wins or loses; the odds forms also reach a bet that isn't
// working (an odds bet called off is handled rather than left standing).
enum class BetResult { LoseOdds = -2, Lose = -1, Win = 1, WinOdds = 2 };

// The resolution loop's i = 1..8 in the order money is handled: from the far ends in.
constexpr int kSettleSeat[9] = {0, 1, 8, 2, 7, 3, 6, 4, 5};

// Settles `bet` for the seat at position i (1..8) of the settle order.
// The Field's payoff row of a roll: 1 (1-1) .. 21 (6-6) by unordered dice pair, 0 for
// dice outside 1..6.
int FieldRow(int d1, int d2);

void SettleBet(Game& g, int i, BetResult result, int bet);
// Settles `bet` for every seat, in the settle order.
void SettleAll(Game& g, BetResult result, int bet);
// What a result pays: the net payoff, rounded toward minus infinity to the payoff unit,
// the value before rounding, and the payoff row it was read from.
struct Payout {
  Money payoff;
  double unrounded = 0;
  PayoffRow row;
};
Payout ComputePayoff(const Game& g, int seat, int bet, BetResult result, Money amount);
// A Come or Don't Come bet travels to its number.
void MoveBet(Game& g, int seat, int from, int to);
// Steps A to D over the whole table for the roll in TableState (Point already moved).
void ResolveBets(Game& g);
