#include "automation/auto_roll.h"

#include "engine/bankroll.h"
#include "engine/messages.h"
#include "storage/language_text.h"

namespace {

std::string Text(const Game& g, int number) { return std::string(LanguageText(g.LanguageId, number)); }

}  // namespace

namespace {

void SwitchAutoRoll(Game& g) {
  if (!g.Auto.AutoRollActive) {
    // A table stopped by a bankroll limit only repeats that stop.
    if (g.Table.PendingStopSeat != 0) {
      LimitStop(g, g.Table.PendingStopSeat);
      return;
    }
    // The button pressed while a script cycle runs (the cycle turns the event loop after
    // each statement): the user may stop the scripts; nothing starts either way.
    if (g.AutoBet.ScriptRunning) {
      const int seat = g.AutoBet.Bettor;
      const std::string name = seat > 0 && seat < kSeats ? g.PlayerName[seat] : std::string();
      MessageRequest request;
      request.Text = Text(g, 145) + "\n" + name + "'s script processing.";
      request.Title = "Auto-Bet Active";
      request.Flags = msg::kYesNoQuestion;
      if (ShowMessage(g, std::move(request)).Button == kButtonYes) g.AutoBet.ScriptRunning = false;
      return;
    }
    g.Auto.AutoRollActive = true;
    if (g.Auto.AutoRollThrottle >= 12) {
      g.Auto.HyperDrive = false;
      g.SilentMode = false;
      g.Auto.ButtonText = Text(g, 116);
    } else {
      g.Auto.HyperDrive = true;
      g.SilentMode = true;
      g.Auto.StatusText = Text(g, 114);
      g.Auto.ButtonText = Text(g, 113);
    }
    return;
  }
  g.Auto.AutoRollActive = false;
  if (!g.Auto.HyperDrive) {
    g.Auto.ButtonText = Text(g, 115);
    return;
  }
  g.Auto.HyperDrive = false;
  g.SilentMode = false;
  g.Auto.ButtonText = Text(g, 112);
  g.Auto.WindowTitle = "DiceHall Hyper-Drive Stopped";
  if (!g.StopReason.empty()) {
    MessageRequest request;
    request.Text = g.StopReason;
    request.Title = "Hyper-Drive Stopped";
    request.Flags = msg::kOk;
    request.Width = 540;
    ShowMessage(g, std::move(request));
  }
  if (g.Ui) g.Ui->Refresh({"table", "frmRolls"});
}

}  // namespace

void ToggleAutoRoll(Game& g) {
  SwitchAutoRoll(g);
  // An online table hears of it: a host's countdown times the rolls of Auto-Roll.
  if (g.Online) g.Online->AutoRollSwitched(g.Auto.AutoRollActive);
}

void SetAutoRollThrottle(Game& g, int throttle) {
  g.Auto.AutoRollThrottle = throttle < 0 ? 0 : throttle > 12 ? 12 : throttle;
  const bool hyper = g.Auto.AutoRollThrottle < 12;
  if (!g.Auto.AutoRollActive) {
    g.Auto.ButtonText = Text(g, hyper ? 112 : 115);
    return;
  }
  g.Auto.HyperDrive = hyper;
  g.SilentMode = hyper;
  g.Auto.ButtonText = Text(g, hyper ? 113 : 116);
  if (hyper) g.Auto.StatusText = Text(g, 114);
  else if (g.Ui) g.Ui->Refresh({"table"});
}

bool SetAutoStopRolls(Game& g, Money rolls) {
  if (rolls.raw < 0) return false;
  g.Auto.AutoStopRolls = Money::Dollars(rolls.raw / Money::kScale);
  return true;
}

bool SetAutoRollDelay(Game& g, Money seconds) {
  if (seconds.raw < 0 || seconds > Money::Dollars(300)) return false;
  g.Auto.AutoRollDelay = seconds.ToDouble();
  return true;
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
      Tell(g,
           "Sorry ... \n\n" + g.PlayerName[seat] + " has exceeded the negative bankroll limit of -$9,999,999\n\n" +
               advice,
           "DiceHall", 0, msg::kOk);
    }
  }
  if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
  g.Table.PendingStopSeat = seat;
}
