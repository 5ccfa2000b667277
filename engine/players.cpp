#include "engine/players.h"

#include "engine/bankroll.h"
#include "engine/messages.h"

namespace {

int Wrap(int s) { return s < 1 ? s + 8 : s; }

}  // namespace

void PassDice(Game& g, int mode) {
  TableState& t = g.Table;
  if (t.NumberOfPlayers == 0) {
    if (mode == kPassAsked)
      Tell(g, "Unable to pass the dice.\n\nThere are no players at the table.", "Pass the Dice", 205, msg::kOk | msg::kHelp);
    t.Shooter = 0;
    t.HandShooter = 0;
    return;
  }
  int next = 0;
  for (int k = 1; k <= 7 && next == 0; ++k)
    if (SeatOccupied(g, Wrap(t.Shooter - k))) next = Wrap(t.Shooter - k);
  const bool handRunning = g.Stats.RollCount[kHandScope][0] > 0;
  if (t.NumberOfPlayers == 1 || next == 0) {
    if (mode == kPassAsked)
      Tell(g, "Unable to pass the dice.\n\nThere are no other players at the table.", "Pass the Dice", 205,
           msg::kOk | msg::kHelp);
    if (mode == kPassSilent) {
      if (next == 0) {
        for (int s = 1; s < kSeats && next == 0; ++s)
          if (SeatOccupied(g, s)) next = s;
      }
      t.Shooter = next;
      if (!handRunning) t.HandShooter = t.Shooter;
    }
    return;
  }

  const bool lineRequired = !g.Rules.AllowPutBets && g.Rules.BetNeededToShoot == 1 && t.Point != 0;
  int chosen = 0, wantingButBlocked = 0;
  for (int k = 1; k <= 7 && chosen == 0; ++k) {
    int s = Wrap(t.Shooter - k);
    if (!SeatOccupied(g, s) || g.AutoPassDice[s]) continue;
    if (lineRequired && g.BetAmount[s][bet::PassLine].raw <= 0 && g.BetAmount[s][bet::DontPass].raw <= 0) {
      ++wantingButBlocked;
      continue;
    }
    chosen = s;
  }

  if (chosen != 0) {
    // Events log: "    The dice were passed to " + name, for modes 1 and 4.
    const int previous = t.Shooter;
    t.Shooter = chosen;
    if (handRunning && mode != kPassAsked && mode != kPassLogged) return;
    if (handRunning && (mode == kPassAsked || mode == kPassLogged)) {
      std::string from = g.PlayerName[previous];
      if (chosen == t.HandShooter)
        Tell(g, from + " is passing the dice back to " + g.PlayerName[chosen] + " who originally started this hand.",
             "Pass the Dice", 205, msg::kOk | msg::kHelp);
      else
        Tell(g, from + " is passing the dice to " + g.PlayerName[chosen] +
                    " who may finish the current hand and then roll his/her own hand.",
             "Pass the Dice", 205, msg::kOk | msg::kHelp);
      if (g.Ui && !g.SilentMode) g.Ui->Refresh({"frmHands", "frmRollTotals", "frmSummary"});
    }
    if (!handRunning) t.HandShooter = t.Shooter;
    return;
  }

  if (mode == kPassSilent) {
    t.Shooter = next;
    if (!handRunning) t.HandShooter = t.Shooter;
    return;
  }
  if (mode == kPassAsked && !g.SilentMode) {
    std::string text = "Unable to pass the dice at this time.\n\n";
    if (wantingButBlocked > 0) {
      text += wantingButBlocked == 1 ? "There's one other player who wants to shoot "
                                     : "There are " + std::to_string(wantingButBlocked) + " other players who want to shoot ";
      text += "but can't because a line bet is required and Put bets are not allowed.\n\n"
              "Please wait for a come-out roll or check the 'Allow Put bets' option on the 'Bets tab' of the "
              "configuration screen.";
    } else if (t.NumberOfPlayers == 2 && t.Shooter != 0) {
      text += g.PlayerName[next] + " doesn't want to shoot.";
    } else {
      text += "None of the other players want to shoot.";
    }
    Tell(g, text, "Pass the Dice", 205, msg::kOk | msg::kHelp);
  }
}

bool AddPlayer(Game& g, int seat, const std::string& name, Money bankroll) {
  if (seat < 1 || seat > 8 || SeatOccupied(g, seat) || name.empty()) return false;
  g.PlayerName[seat] = name;
  ++g.Table.NumberOfPlayers;
  for (int b = 1; b <= kBets; ++b) {
    g.Rules.WorkOnComeOut[b][seat] = g.Rules.WorkOnComeOut[b][0];
    g.DefaultWorking[seat][b] = g.Rules.WorkOnComeOut[b][0] ? 1 : 0;
    g.BetWorking[seat][b] = IsComeOut(g) ? g.DefaultWorking[seat][b] : 1;
  }
  g.BankrollInitType[seat] = 0;
  g.BankrollInitAmount[seat] = bankroll;
  BuyIn(g, seat, bankroll);
  g.OnTable[seat] = Money{};
  if (g.Table.Shooter == 0) PassDice(g, kPassSilent);
  return true;
}
