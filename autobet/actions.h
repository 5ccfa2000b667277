#pragma once
// The actions of the interpreter (actions.cpp): a reduced statement carried out, and a
// value written to a target.

#include <cstdint>
#include <string>
#include <string_view>

#include "autobet/tokens.h"

struct Game;
struct AutoBetProgram;
struct ReferencePieces;

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
