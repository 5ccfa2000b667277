#include "engine/bankroll.h"

#include "engine/messages.h"
#include "storage/language_text.h"

void BuyIn(Game& g, int seat, Money amount) {
  // 1. A client's own seat keeps within the bankroll limits.
  if (g.OnlineRole == kOnlineClient && seat == g.ClientSeat) {
    if (amount > kMaxBankroll) {
      Tell(g, std::string(LanguageText(g.LanguageId, 10)) + "$" + MoneyText(kMaxBankroll), "Bankroll", 180, msg::kOk);
      amount = kMaxBankroll;
    } else if (amount < -kMaxBankroll) {
      Tell(g, std::string(LanguageText(g.LanguageId, 11)) + "-$" + MoneyText(kMaxBankroll), "Bankroll", 180, msg::kOk);
      amount = -kMaxBankroll;
    }
  }
  // 2. The host's bounds.
  if (g.HostMinBuyIn == g.HostMaxBuyIn && amount != g.HostMinBuyIn) {
    Tell(g, "The required buy-in on this table is $" + MoneyText(g.HostMinBuyIn), "Bankroll", 180,
         msg::kOk | msg::kHelp);
    amount = g.HostMinBuyIn;
  } else if (amount < g.HostMinBuyIn) {
    Tell(g, "The min buy-in on this table is $" + MoneyText(g.HostMinBuyIn), "Bankroll", 180, msg::kOk | msg::kHelp);
    amount = g.HostMinBuyIn;
  } else if (amount > g.HostMaxBuyIn) {
    Tell(g, "The max buy-in on this table is $" + MoneyText(g.HostMaxBuyIn), "Bankroll", 180, msg::kOk | msg::kHelp);
    amount = g.HostMaxBuyIn;
  }
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

namespace {

void AddToBankroll(Game& g, int seat, Money amount) {
  for (int scope : kCountedScopes) {
    g.BuyInTotal[seat + scope] += amount;
    g.Bankroll[seat + scope] += amount;
  }
}

}  // namespace

Money Atm(Game& g, int seat, Money amount) {
  const Money requested = amount;
  const Money bankroll = g.Bankroll[seat];
  const std::string& name = g.PlayerName[seat];
  std::string why;  // the end of the box's sentence, when the amount was cut
  if (amount > Money{}) {
    if (g.OnlineRole == kOnlineClient && g.HostMaxBuyIn < kMaxBankroll &&
        g.BuyInTotal[seat] + amount > g.HostMaxBuyIn) {
      amount = Max(g.HostMaxBuyIn - g.BuyInTotal[seat], Money{});
      why = "it would've caused " + name + "'s buy-in to exceed the host's max buy-in limit of $" +
            MoneyText(g.HostMaxBuyIn);
    }
    if (bankroll + amount > kMaxBankroll) {
      amount = Max(kMaxBankroll - bankroll, Money{});
      why = "it would've caused " + name + "'s bankroll to exceed the max bank limit of $" + MoneyText(kMaxBankroll);
    }
  } else if (amount < Money{}) {
    const Money onTable = g.OnTable[seat];
    if (!g.AllowNegBankroll[seat] && bankroll + amount < onTable) {
      amount = Min(onTable - bankroll, Money{});
      why = name + "'s " +
            (onTable > Money{} ? "bankroll would've dropped below the amount currently wagered."
                               : "bankroll would've become negative.") +
            "\n\nYou can deposit more by checking the box marked, \"Allow negative bankroll\" on the Configuration "
            "screen" +
            (onTable > Money{} ? ", and/or by reducing the amount currently wagered." : ".");
    } else if (g.AllowNegBankroll[seat] && bankroll + amount < -kMaxBankroll) {
      amount = Min(-kMaxBankroll - bankroll, Money{});
      why = "it would've caused " + name + "'s bankroll to drop below the negative bank limit of $" +
            MoneyText(kMaxBankroll);
    }
  }
  if (!why.empty() && (g.ConfigureOpen || (!g.SilentMode && (g.Rules.Notices & kNoticeRules)))) {
    MessageRequest box;
    box.Text = "Requested amount:  $" + MoneyText(Abs(requested)) + "\nAllowed amount:  $" + MoneyText(Abs(amount)) +
               "\n\nThe full amount of this transaction was not allowed because " + why;
    box.Title = requested > Money{} ? "ATM Withdrawal" : "ATM Deposit";
    box.Flags = msg::kOk;
    if (g.Ui) g.Ui->ShowMessage(box);
  }
  AddToBankroll(g, seat, amount);
  if (g.RecordEvents) g.Events.AtmNet[seat] += amount;  // logged at the next roll
  if (g.Ui && !g.SilentMode) g.Ui->Refresh({"frmBankroll"});
  return amount;
}
