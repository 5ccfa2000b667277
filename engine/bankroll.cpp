#include "engine/bankroll.h"

#include "automation/auto_roll.h"
#include "engine/messages.h"

void BuyIn(Game& g, int seat, Money amount) {
  if (amount < Money{}) g.AllowNegBankroll[seat] = true;
  const bool noRolls = g.Stats.RollCount[kAllScope][0] == 0;
  g.BuyInTotal[seat] = g.BuyInTotal[seat + kSessionScope] = amount;
  if (noRolls) g.BuyInTotal[seat + kAllScope] = amount;
  for (int scope : {kHandScope, kSessionScope}) {
    g.BeginningBankroll[seat + scope] = amount;
    g.HighBankroll[seat + scope] = amount;
    g.LowBankroll[seat + scope] = amount;
  }
  if (noRolls) g.BeginningBankroll[seat + kAllScope] = amount;
  for (int scope : kCountedScopes) g.Bankroll[seat + scope] = amount;
  Money& hi = g.HighBankroll[seat + kAllScope];
  Money& lo = g.LowBankroll[seat + kAllScope];
  if (noRolls || amount > hi) hi = amount;
  if (noRolls || amount < lo) lo = amount;
}

void LimitStop(Game& g, int seat) {
  const Money bankroll = g.Bankroll[seat];
  const std::string advice = "Select \"New\" from the \"Game\" menu to reset the table.";
  if (bankroll > Money{}) {
    if (g.SilentMode) {
      g.StopReason = "Stopped by breaking the max bankroll limit of $9,999,999\n\n" + advice;
    } else {
      if (g.Table.PendingStopSeat == 0 && g.Ui) g.Ui->PlaySound("Chips.win", false);
      Tell(g, "Congratulations!\n\n" + g.PlayerName[seat] + " broke the max bankroll limit of $9,999,999\n\n" + advice,
           "DiceHall", 0, msg::kOk);
    }
  } else {
    if (g.SilentMode) {
      g.StopReason = "Stopped by exceeding the negative bankroll limit of -$9,999,999\n\n" + advice;
    } else {
      Tell(g, "Sorry ... \n\n" + g.PlayerName[seat] + " has exceeded the negative bankroll limit of -$9,999,999\n\n" +
                  advice, "DiceHall", 0, msg::kOk);
    }
  }
  if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
  g.Table.PendingStopSeat = seat;
}
