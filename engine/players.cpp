#include "engine/players.h"

#include <string_view>
#include <utility>

#include "engine/bankroll.h"
#include "engine/bet_states.h"
#include "engine/messages.h"
#include "engine/placement.h"
#include "stats/events_log.h"
#include "stats/sessions_log.h"
#include "storage/language_text.h"
#include "storage/paths.h"

namespace {

int Wrap(int s) { return s < 1 ? s + 8 : s; }

}  // namespace

void PassDice(Game& g, int mode) {
  TableState& t = g.Table;
  if (t.NumberOfPlayers == 0) {
    if (mode == kPassAsked)
      Tell(g, "Unable to pass the dice.\n\nThere are no players at the table.", "Pass the Dice", 205,
           msg::kOk | msg::kHelp);
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
    if (g.RecordEvents && (mode == kPassAsked || mode == kPassLogged)) LogDicePassed(g, chosen);
    const int previous = t.Shooter;
    t.Shooter = chosen;
    if (handRunning && mode != kPassAsked && mode != kPassLogged) return;
    if (handRunning && (mode == kPassAsked || mode == kPassLogged)) {
      std::string from = g.PlayerName[previous];
      if (chosen == t.HandShooter)
        Tell(g, from + " is passing the dice back to " + g.PlayerName[chosen] + " who originally started this hand.",
             "Pass the Dice", 205, msg::kOk | msg::kHelp);
      else
        Tell(g,
             from + " is passing the dice to " + g.PlayerName[chosen] +
                 " who may finish the current hand and then roll his/her own hand.",
             "Pass the Dice", 205, msg::kOk | msg::kHelp);
      if (g.Ui && !g.SilentMode) g.Ui->Refresh({"frmHands", "frmRollTotals", "frmSummary"});
    }
    if (!handRunning) t.HandShooter = t.Shooter;
    if (mode == kPassAsked && g.Online) g.Online->DicePassed();
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
      text += wantingButBlocked == 1
                  ? "There's one other player who wants to shoot "
                  : "There are " + std::to_string(wantingButBlocked) + " other players who want to shoot ";
      text +=
          "but can't because a line bet is required and Put bets are not allowed.\n\n"
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
  // Two players of one name can't be told apart, by a script or in the game file.
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s) && SameNameInFiles(g.PlayerName[s], name)) return false;
  g.PlayerName.Set(seat, name);
  ++g.Table.NumberOfPlayers;
  // Scripts may name the new player: they are compiled again before they next run.
  g.AutoBet.ScriptsCompiled = false;
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

namespace {

std::string Piece(const Game& g, int number, int piece = 0) {
  return std::string(LanguageText(g.LanguageId, number, piece));
}

// The question to confirm a removal: who, and what contract bets would be abandoned.
std::string RemovalQuestion(const Game& g, int seat, const std::vector<int>& contracts, Money total) {
  const std::string& name = g.PlayerName[seat];
  std::string q = Piece(g, 18) + name + "?";
  if (contracts.empty()) return q;
  q += "\n\n" + name + Piece(g, 19);
  auto one = [&](int number, int bet) { return Piece(g, number, 0) + std::string(BetName(bet)) + Piece(g, number, 1); };
  if (contracts.size() == 1) {
    q += one(20, contracts[0]);
  } else if (contracts.size() == 2) {
    q += one(20, contracts[0]) + Piece(g, 21) + one(22, contracts[1]);
  } else {
    q += std::to_string(contracts.size()) + Piece(g, 23, 0) + "contract" + Piece(g, 23, 1);
  }
  q += Piece(g, 24) + "\n\n" + Piece(g, 25) + MoneyText(total);
  return q;
}

}  // namespace

bool RemovePlayer(Game& g, int seat) {
  if (seat < 1 || seat > 8 || !SeatOccupied(g, seat)) return false;
  const std::string name = g.PlayerName[seat];
  if (g.OnlineRole == kOnlineClient) {
    // A client asks the host; only its own seat, and never as an observer.
    if (g.ClientObserver)
      Tell(g,
           "You're currently connected to an online game as an observer and are not allowed to add, delete, or "
           "control players.",
           "Online connection", 0, msg::kOk);
    else if (seat == g.ClientSeat) {
      const MessageReply reply =
          Tell(g,
               "You're currently connected to an online game as " + name +
                   ".\n\nWould you like to remove yourself from playing at the table and stay on as an observer?\n\n"
                   "Note: to remove yourself entirely, select Lobby from the Online menu or close the Online window.",
               "Remove online player", 0, msg::kYesNoQuestion);
      if (reply.Button == kButtonYes && g.Online) g.Online->LeaveOwnSeat();
    } else
      Tell(g,
           "You're currently connected to an online game and are not allowed to add, delete, or control other "
           "players.",
           "Online connection", 0, msg::kOk);
    return false;
  }

  // 2. What leaving costs.
  std::vector<int> contracts;
  Money total;
  if (g.Table.Point != 0 && g.BetAmount[seat][bet::PassLine].raw > 0) contracts.push_back(bet::PassLine);
  for (int b = bet::Come4; b <= bet::Come10; ++b)
    if (g.BetAmount[seat][b].raw > 0 && g.ContractBase[seat][b].raw > 0) contracts.push_back(b);
  for (int b : contracts) total += g.BetAmount[seat][b];
  if (!g.SilentMode && g.Ui) {
    MessageReply reply =
        Tell(g, RemovalQuestion(g, seat, contracts, total), Piece(g, 26), 180, msg::kYes | msg::kNo | msg::kHelp);
    if (reply.Button != kButtonYes) return false;
  }

  // 3. Contract bets are abandoned unless returned; everything else goes back.
  if (!g.Rules.ReturnAbandonedBets)
    for (int b : contracts) AbandonBet(g, seat, b);
  for (int b = 1; b <= kBets; ++b)
    if (g.BetAmount[seat][b].raw != 0) CommitAmount(g, seat, b, -g.BetAmount[seat][b]);
  g.ContractBase[seat] = {};
  g.BuyVigHeld[seat] = {};
  g.LayVigHeld[seat] = {};
  g.OnTable[seat] = Money{};
  // 4. The events log's cashing-out line.
  if (g.RecordEvents) LogCashedOut(g, seat, g.Rules.ReturnAbandonedBets ? Money{} : total);

  // 5. The session goes to the player's log; the seat is emptied.
  AddSessionRecord(g, seat, g.SessionsLogPath[seat]);
  g.SessionsLogPath[seat].clear();
  g.ScriptActive[seat] = false;
  g.ScriptFile[seat].clear();
  g.AutoBet.ScriptSource[seat].clear();
  g.AutoBet.ScriptsCompiled = false;
  ClearSeatStats(g.Stats, seat);
  for (auto* store :
       {&g.Bankroll, &g.BeginningBankroll, &g.HighBankroll, &g.LowBankroll, &g.BankrollSum, &g.BuyInTotal, &g.Comps})
    for (int k = 0; k < kScopeColumns; k += kSeats) (*store)[k + seat] = Money{};
  g.BankrollHistory[seat] = {};
  // Whoever sits here next starts bare: no calls on or off, and none of the leaver's leave
  // to go below zero or to pass the dice. Every table that mirrors this one does the same.
  BareSeatWorking(g, seat);
  g.AllowNegBankroll[seat] = false;
  g.AutoPassDice[seat] = false;
  g.PlayerName.Set(seat, "");
  --g.Table.NumberOfPlayers;

  // 6. The dice.
  TableState& t = g.Table;
  if (t.NumberOfPlayers == 0) {
    t.Point = t.PriorPoint = t.SecondPriorPoint = 0;
    t.ComeOutRollsInHand = t.PassesInHand = t.MissesInHand = 0;
    t.Shooter = t.HandShooter = 0;
    RestWorkingStates(g);
  } else if (t.Shooter == seat) {
    PassDice(g, kPassSilent);
  }
  if (t.HandShooter == seat) t.HandShooter = 0;
  return true;
}

namespace {

template <class T>
void SwapScope(std::array<T, kScopeColumns>& a, int x, int y) {
  for (int k = 0; k < kScopeColumns; k += kSeats) std::swap(a[k + x], a[k + y]);
}

}  // namespace

void MovePlayer(Game& g, int from, int to) {
  if (from == to || from < 1 || from > 8 || to < 1 || to > 8) return;
  auto seat = [&](auto& store) { std::swap(store[from], store[to]); };
  g.PlayerName.Swap(from, to);
  seat(g.BetAmount);
  seat(g.BetAmountStartOfRoll);
  seat(g.BetAmountAfterRoll);
  seat(g.ContractBase);
  seat(g.BetWorking);
  seat(g.BetWorkingBeforeRoll);
  seat(g.DefaultWorking);
  seat(g.BetStreak[0]);
  seat(g.BetStreak[1]);
  seat(g.PlacementA);
  seat(g.PlacementB);
  seat(g.BuyVigHeld);
  seat(g.LayVigHeld);
  seat(g.ComeBase);
  seat(g.SeatBets);
  seat(g.SeatBetsAtStart);
  seat(g.SeatBetsAtAfter);
  seat(g.HasCheckStacks);
  seat(g.CheckStacksSinceStart);
  seat(g.CheckStacksSinceAfter);
  seat(g.OnTable);
  seat(g.AvailableBankroll);
  seat(g.BankrollStartOfRoll);
  seat(g.BankrollAfterRoll);
  seat(g.AutoTakeOdds);
  seat(g.AutoLayOdds);
  seat(g.AutoDownPlace);
  seat(g.AutoPassDice);
  seat(g.AutoHandleWin);
  seat(g.AutoHandleLose);
  seat(g.BankrollInitType);
  seat(g.BankrollInitAmount);
  seat(g.AllowNegBankroll);
  seat(g.AdjustForPayoff);
  seat(g.AdjustBias);
  seat(g.SettleRules);
  seat(g.ScriptActive);
  seat(g.ScriptActiveCopy);
  seat(g.ScriptFile);
  seat(g.SessionsLogPath);
  seat(g.CheckStackName);
  seat(g.AutoBet.ScriptSource);
  g.AutoBet.ScriptsCompiled = false;
  seat(g.CheckStackShortcuts);
  seat(g.Desktop.CheckStackFiles);
  seat(g.Desktop.ScriptPanelSeats);
  seat(g.BankrollHistory);
  for (auto* store :
       {&g.Bankroll, &g.BeginningBankroll, &g.HighBankroll, &g.LowBankroll, &g.BankrollSum, &g.BuyInTotal, &g.Comps})
    SwapScope(*store, from, to);
  for (auto& row : g.Rules.WorkOnComeOut) std::swap(row[from], row[to]);
  // The holders of each bet follow their seats.
  const uint16_t a = static_cast<uint16_t>(1u << from), b = static_cast<uint16_t>(1u << to);
  for (uint16_t& holders : g.BetHolders) {
    const bool hasA = holders & a, hasB = holders & b;
    holders = static_cast<uint16_t>((holders & ~(a | b)) | (hasA ? b : 0) | (hasB ? a : 0));
  }
  SwapSeatStats(g.Stats, from, to);
  SwapShooterSeats(g.Table.Shooter, g.Table.HandShooter, g.Table.LastHandShooter, from, to);
  if (g.RecordEvents) LogPlayerMoved(g, from, to);
  if (g.Ui && !g.SilentMode)
    g.Ui->Refresh({"frmBetResults", "frmHands", "frmSummary", "frmRollTotals", "frmCheckStacks", "frmBetTrends"});
}

std::string PlayerNameFault(const Game& g, const std::string& name) {
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s) && SameNameInFiles(g.PlayerName[s], name)) return Piece(g, 6) + g.PlayerName[s];
  bool numeric = !name.empty();
  for (char c : name) numeric = numeric && ((c >= '0' && c <= '9') || c == '.' || c == '-' || c == ' ');
  if (numeric) return Piece(g, 7);
  // The name names the player's files (the sessions log), so it must be a file name.
  for (char c : name)
    if (std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos || static_cast<unsigned char>(c) < 32)
      return name + Piece(g, 186);
  return "";
}

bool AskToAddPlayer(Game& g, int seat) {
  if (seat < 1 || seat > 8 || SeatOccupied(g, seat) || g.SilentMode || g.Ui == nullptr) return false;
  if (Tell(g, Piece(g, 3), Piece(g, 5), 180, msg::kYesNoQuestion).Button != kButtonYes) return false;
  std::string name;
  std::string prompt = Piece(g, 4);
  // An interface that keeps answering the same refused text gets nowhere: give up.
  constexpr int kTries = 20;
  for (int tries = 0;; ++tries) {
    if (tries == kTries) return false;
    MessageReply reply = Tell(g, prompt, Piece(g, 5), 180, msg::kOk | msg::kCancel | msg::kInput, name);
    if (reply.Button == kButtonCancel) return false;
    name = reply.Input;
    while (!name.empty() && name.front() == ' ') name.erase(name.begin());
    while (!name.empty() && name.back() == ' ') name.pop_back();
    if (name.empty()) return false;  // nothing typed: as Cancel
    const std::string fault = PlayerNameFault(g, name);
    if (fault.empty()) break;
    prompt = fault + "\n\n" + Piece(g, 4);
  }
  Money amount = Money::Dollars(1000);  // the buy-in offered first
  std::string typed = MoneyText(amount);
  for (int tries = 0;; ++tries) {
    if (tries == kTries) return false;
    MessageReply reply =
        Tell(g, Piece(g, 9, 0) + name + Piece(g, 9, 1), Piece(g, 5), 180, msg::kOk | msg::kCancel | msg::kInput, typed);
    if (reply.Button == kButtonCancel) return false;
    std::string error;
    if (ParseMoney(reply.Input, amount, error)) break;
    Tell(g, error, Piece(g, 5), 180, msg::kOk);
    typed = reply.Input;
  }
  return AddPlayer(g, seat, name, amount);
}
