#include "engine/table_settings.h"

#include "engine/bet_states.h"
#include "engine/handling.h"
#include "storage/language_text.h"

void ReplaceRules(Game& g, const RuleSet& rules) {
  // Vig held on a standing Buy or Lay stays as it was charged, but it is part of what the
  // seat has on the table only while the rules charge it up front: when that changes, it
  // moves in or out of OnTable, as settling it will take it.
  const bool buyMoves = rules.ChargeAllBuy != g.Rules.ChargeAllBuy;
  const bool layMoves = rules.ChargeAllLay != g.Rules.ChargeAllLay;
  for (int s = 1; s < kSeats; ++s)
    for (int i = 0; i < 6; ++i) {  // the six points: 4, 5, 6, 8, 9, 10
      if (buyMoves) g.OnTable[s] += rules.ChargeAllBuy ? g.BuyVigHeld[s][i] : -g.BuyVigHeld[s][i];
      if (layMoves) g.OnTable[s] += rules.ChargeAllLay ? g.LayVigHeld[s][i] : -g.LayVigHeld[s][i];
    }
  const auto before = g.Rules.WorkOnComeOut;
  g.Rules = rules;
  ComputeBetUnits(g.Rules);
  for (int s = 1; s < kSeats; ++s)
    for (int b = 1; b <= kBets; ++b)
      if (g.Rules.WorkOnComeOut[b][s] != before[b][s]) FollowWorkOnComeOut(g, s, b);
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

void SetSeatScript(Game& g, int seat, std::vector<std::string> lines, const std::string& file, bool active) {
  if (seat < 1 || seat >= kSeats) return;
  g.AutoBet.ScriptSource[seat] = std::move(lines);
  g.ScriptFile[seat] = file;
  g.ScriptActive[seat] = active;
  g.AutoBet.ScriptsCompiled = false;
}

void SetScriptActive(Game& g, int seat, bool on) {
  if (seat < 1 || seat >= kSeats || g.ScriptActive[seat] == on) return;
  g.ScriptActive[seat] = on;
  g.AutoBet.ScriptsCompiled = false;
}

void SetSettleRule(Game& g, int seat, int row, const SettleRule& rule) {
  if (seat >= 1 && seat < kSeats && row >= 0 && row < static_cast<int>(g.SettleRules[seat].size()))
    g.SettleRules[seat][static_cast<size_t>(row)] = rule;
}

SeatHandling HandlingOf(const Game& g, int seat) {
  if (seat < 1 || seat >= kSeats) return {};
  return {g.AutoHandleWin[seat], g.AutoHandleLose[seat], g.SettleRules[seat]};
}

void SetSeatHandling(Game& g, int seat, const SeatHandling& h) {
  if (seat < 1 || seat >= kSeats) return;
  const auto valid = [](int32_t action) { return action >= kAskByDialog && action <= kSetToAmount; };
  if (valid(h.onWin)) g.AutoHandleWin[seat] = h.onWin;
  if (valid(h.onLose)) g.AutoHandleLose[seat] = h.onLose;
  g.SettleRules[seat] = h.rules;
}

void SetBetNeededToShoot(Game& g, int32_t need) {
  if (need >= 0 && need <= 2) g.Rules.BetNeededToShoot = need;
}

void SetLanguage(Game& g, int language) {
  if (language >= 0 && language < kLanguages) g.LanguageId = language;
}
