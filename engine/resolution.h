#pragma once
// Which bets win, lose or stand on a roll, in which order, and what a result pays.

#include "engine/game_state.h"

// Result codes of SettleBet.
constexpr int kWin = 1, kWinOdds = 2, kLose = -1, kLoseOdds = -2;

// The resolution loop's i = 1..8 in the order money is handled: from the far ends in.
constexpr int kSettleSeat[9] = {0, 1, 8, 2, 7, 3, 6, 4, 5};

// Settles `bet` for the seat at position i (1..8) of the settle order.
// The Field's payoff row of a roll: 1 (1-1) .. 21 (6-6) by unordered dice pair, 0 for
// dice outside 1..6.
int FieldRow(int d1, int d2);

void SettleBet(Game& g, int i, int result, int bet);
// Settles `bet` for every seat, in the settle order.
void SettleAll(Game& g, int result, int bet);
// The net payoff, rounded toward minus infinity to the payoff unit; the unrounded
// value goes to g.PayoffUnrounded.
Money ComputePayoff(Game& g, int seat, int bet, int result, Money amount);
// A Come or Don't Come bet travels to its number.
void MoveBet(Game& g, int seat, int from, int to);
// Steps A to D over the whole table for the roll in TableState (Point already moved).
void ResolveBets(Game& g);
