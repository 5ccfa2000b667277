#pragma once
// The actions of the interpreter (actions.cpp): a reduced statement carried out, and a
// value written to a target.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "autobet/tokens.h"
#include "autobet/variables.h"

struct Game;
struct AutoBetProgram;

// A verb's target list worked out before the statement runs, when every target in it is
// named outright: what the walk meets from record `first` on, in order. An entry is a
// qualifier (its relational code, and the record where its operand stands) or a target
// read into its parts.
struct ListedTarget {
  std::int32_t relational = 0;  // 0: a target
  std::int32_t operand = 0;
  ReferencePieces target;
};
struct TargetList {
  std::int32_t first = 0;
  std::int32_t targets = 0, qualifiers = 0;
  std::vector<ListedTarget> entries;
  // Every target an amount (a bet's or a CheckStack) of one player piece: reading one
  // can't fault, and the only check of a write to one, the seat's, comes out the same for all.
  bool amountsOfOneSeat = false;
};
// The most qualifiers a list worked out beforehand has: their operands are handed on in an
// array of this size.
constexpr int kListedQualifiers = 8;
// The record a verb's target list starts from in its reduced statement: 4 behind an
// amount and "on", 2 right behind the verb; 0 for an action that walks no list.
int TargetListStart(int action);

// Carries out a verb whose target list was worked out beforehand, as TakeAction would carry
// out its statement, without the buffer: `amount` is the record behind the verb (nullptr
// for none), `operands` the operands of the list's qualifiers in their order.
void TakeListedAction(Game& g, int action, const TokenRecord* amount, const TargetList& listed,
                      const TokenRecord* operands);

// Carries out the reduced buffer as an action (first record -61) or an assignment (first
// record a -12 target group followed by '='). Sets RunError on a refusal.
void TakeAction(Game& g);

// Writes one value (a number or string record's code and value) to the target group at
// buffer index `position`, which is moved past the group. `playerFromContext` is the seat
// the action runs for (the Bettor). Checks the permission and range of the target.
void TakeActionSetVar(Game& g, int& position, int valueCode, double valueValue, int playerFromContext);

// Writes a value record to the one target that `to` names, as an assignment to that target
// alone does. Sets RunError on a refusal.
void AssignTo(Game& g, const ReferencePieces& to, const TokenRecord& value);
