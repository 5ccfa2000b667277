#pragma once
// The rules every store of a table keeps between rolls, checked as a whole: money is
// neither made nor lost but by bets and buy-ins, every amount on the table is counted in
// OnTable, every working state is one of its four values, the point is a point, and the
// statistics agree with themselves scope by scope.

#include <string>

#include "engine/game_state.h"

// "" when the table keeps every rule; otherwise the first rule broken, in words.
std::string GameIsConsistent(const Game& g);

// Debug builds check the table after every roll (DICEHALL_CHECK_ROLLS); a broken rule
// stops the program there, with the rule.
#ifdef DICEHALL_CHECK_ROLLS
void AssertGameIsConsistent(const Game& g);
#define DICEHALL_ASSERT_CONSISTENT(g) AssertGameIsConsistent(g)
#else
#define DICEHALL_ASSERT_CONSISTENT(g) ((void)0)
#endif
