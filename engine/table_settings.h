#pragma once
// Settings a program changes on a player's behalf, each through one procedure so that the
// stores behind them keep agreeing: the rule set as a whole, what a seat does with bets
// that won or lost, whether it passes the dice.

#include <string>
#include <vector>

#include "engine/game_state.h"

// Installs a rule set that has passed validation; the bet units follow the new checks.
void ReplaceRules(Game& g, const RuleSet& rules);

// What the seat does with a bet that won (`winning`) or lost: the action of the handling
// table, and for "modify" (6) and "set" (7) the rule kept in the matching settle-rule row.
void SetAutoHandling(Game& g, int seat, bool winning, int action, const SettleRule& rule);

// "Autopass the dice": the seat lets the dice go by.
void SetAutoPassDice(Game& g, int seat, bool on);

// The seat's script, its lines and the file they came from, switched on ("&Active"); the
// scripts are compiled again before they next run.
void SetSeatScript(Game& g, int seat, std::vector<std::string> lines, const std::string& file);
