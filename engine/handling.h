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

void HandleWinner(Game& g, int seat);
void HandleLoser(Game& g, int seat);
void HandleNotWorking(Game& g, int seat);

Money FindPressUnit(const Game& g, int seat, int bet);
void TakeBet(Game& g, int seat);
void SameBet(Game& g, int seat);
void PressUnit(Game& g, int seat);
void PressDouble(Game& g, int seat);
void Parlay(Game& g, int seat);
void ApplyRule(Game& g, int seat, int row);
void SetAmount(Game& g, int seat, int row);
