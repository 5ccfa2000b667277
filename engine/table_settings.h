#pragma once
// Settings a program changes on a player's behalf, each through one procedure so that the
// stores behind them keep agreeing: the rule set as a whole, what a seat does with bets
// that won or lost, whether it passes the dice.

#include <array>
#include <cstdint>
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

// The seat's script, its lines and the file they came from, switched on ("&Active") or
// off; the scripts are compiled again before they next run.
void SetSeatScript(Game& g, int seat, std::vector<std::string> lines, const std::string& file, bool active = true);
// The seat's script switched on or off.
void SetScriptActive(Game& g, int seat, bool on);

// One row of the seat's settle rules (0 modify winners, 1 set winners, 2 and 3 losers),
// remembered from the settle dialog.
void SetSettleRule(Game& g, int seat, int row, const SettleRule& rule);

// Everything a seat does with its bets that won and lost, taken from one seat and given
// to another.
struct SeatHandling {
  int32_t onWin = 0, onLose = 0;
  std::array<SettleRule, 4> rules{};
};
SeatHandling HandlingOf(const Game& g, int seat);
void SetSeatHandling(Game& g, int seat, const SeatHandling& handling);

// The bet a shooter needs: 0 none, 1 a line bet, 2 any bet.
void SetBetNeededToShoot(Game& g, int32_t need);

// The language of the texts the table shows, 0..5; another id is passed over.
void SetLanguage(Game& g, int language);
