#pragma once
// The Auto-Bet interpreter: one cycle over the joined program after each roll. Each
// statement is copied to AutoBetProgram::StatementBuffer and reduced in place, operator
// class by operator class, until one value (or an action with its targets) is left.
// Values (autobet/variables.h) and actions (autobet/actions.h) stand below the cycle;
// both work on the buffer through autobet/statement_buffer.h.

#include <cstdint>
#include <string>
#include <string_view>

#include "autobet/tokens.h"

struct Game;
struct AutoBetProgram;

// Runs one cycle of ProgramRecords. Does nothing unless ScriptsCompiled. A cycle of more
// than MaxCycleStatements statements is stopped (RunawaySeat, RunawayLine, the stop text)
// and Auto-Roll with it.
void RunAutoBet(Game& g);
// The user's stop of a running cycle: it ends after the statement in progress.
void StopAutoBet(Game& g);

// Runs the one statement now in the buffer (1..StatementLength): keywords excepted, it
// is reduced and then taken as a condition, an action or an assignment. Used by the
// cycle; tests call it to run a statement they built.
void ExecuteStatement(Game& g);

// Evaluates one expression as the script of `seat` would, outside any cycle: what a
// watch on a value shows, and how tests read a value. It is compiled as the scratch
// script (seat 0), as a hot key's is; strings made go with the call.
struct EvaluationResult {
  bool ok = false;
  bool isString = false;
  double number = 0;
  std::string text;
  int runError = 0;
  std::string compileFault;
};
EvaluationResult EvaluateExpression(Game& g, int seat, std::string_view expression);
