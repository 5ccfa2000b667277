#pragma once
// What becomes of a bet's stake once its result has been paid: it comes down, stays,
// grows or shrinks, by the settle dialog or by the seat's automatic action.

#include "engine/game_state.h"

// Actions for winning and losing bets (the same numbers mean different things).
enum HandleActionValue {
  kAskByDialog = 0,
  kTakeDown = 1,
  kSameBet = 2,
  kPressUnitOrRemainder = 3,
  kPressDoubleOrUnit = 4,
  kParlayOrDouble = 5,
  kModifyByRule = 6,
  kSetToAmount = 7,
  kTakeMaxOdds = 8  // only from the dialog of an odds bet that wasn't working
};

// Rows of the seat's settle rules.
constexpr int kRuleModifyWin = 0, kRuleSetWin = 1, kRuleModifyLose = 2, kRuleSetLose = 3;

// What settling a bet leaves for its handling: the bet in hand, what it paid and from
// which row, the vig it gave up, and whether it must come down.
struct Settlement {
  int seat = 0;
  int bet = 0;
  Money stake;            // the amount on the bet when it was settled
  Money payoff;           // net, rounded to the payoff unit; 0 for a bet that wasn't working
  double unrounded = 0;   // the payoff before rounding
  PayoffRow row;          // the row that paid (the bet's own row when it wasn't working)
  Money vig;              // the vig a settled Buy or Lay gave up
  bool returned = false;  // the bet may not stay on the table
};

// The stake of a bet that won or lost: by the seat's automatic action, or by the settle
// dialog when the seat handles its bets by hand and there is someone to ask.
void HandleWinner(Game& g, const Settlement& s);
void HandleLoser(Game& g, const Settlement& s);
// An odds bet that wasn't working on a roll that decided it.
void HandleNotWorking(Game& g, int seat, int bet);

// The unit of "Press 1 unit": the largest check times the payoff's y that divides the bet.
Money FindPressUnit(const Game& g, int seat, int bet);
