#include "engine/table_settings.h"

#include "engine/handling.h"

void ReplaceRules(Game& g, const RuleSet& rules) {
  g.Rules = rules;
  ComputeBetUnits(g.Rules);
}

void SetAutoHandling(Game& g, int seat, bool winning, int action, const SettleRule& rule) {
  if (seat < 1 || seat >= kSeats || action < kAskByDialog || action > kSetToAmount) return;
  (winning ? g.AutoHandleWin : g.AutoHandleLose)[seat] = action;
  if (action != kModifyByRule && action != kSetToAmount) return;
  const int row = winning ? (action == kSetToAmount ? kRuleSetWin : kRuleModifyWin)
                          : (action == kSetToAmount ? kRuleSetLose : kRuleModifyLose);
  g.SettleRules[seat][row] = rule;
}

void SetAutoPassDice(Game& g, int seat, bool on) {
  if (seat >= 1 && seat < kSeats) g.AutoPassDice[seat] = on;
}

void SetSeatScript(Game& g, int seat, std::vector<std::string> lines, const std::string& file) {
  if (seat < 1 || seat >= kSeats) return;
  g.AutoBet.ScriptSource[seat] = std::move(lines);
  g.ScriptFile[seat] = file;
  g.ScriptActive[seat] = true;
  g.AutoBet.ScriptsCompiled = false;
}
