#include "engine/roll_cycle.h"

#include <cmath>
#include <cstring>
#include <new>
#include <utility>

#include "autobet/interpreter.h"
#include "automation/auto_roll.h"
#include "dice/roll_files.h"
#include "dice/seeding.h"
#include "engine/bankroll.h"
#include "engine/bet_states.h"
#include "engine/consistency.h"
#include "engine/messages.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/resolution.h"
#include "stats/events_log.h"
#include "stats/sessions_log.h"
#include "storage/error_report.h"
#include "storage/language_text.h"

namespace {

// What a new game keeps of the one before it: the interface and clock it works with, the
// program folder, the generators (which keep running across games) and the runner's hooks.
struct CarriedOver {
  UserInterface* ui = nullptr;
  Clock* time = nullptr;
  std::string folder;
  DiceSources dice;
  AutomationState autoState;
};

CarriedOver TakeCarriedOver(Game& g) { return {g.Ui, g.Time, std::move(g.ProgramFolder), g.Dice, g.Auto}; }

void GiveCarriedOver(Game& g, CarriedOver c) {
  g.ProgramFolder = std::move(c.folder);
  g.Ui = c.ui;
  g.Time = c.time;
  g.Dice = c.dice;
  g.Dice.reseedSessions = false;
  g.Auto.AfterRoll = c.autoState.AfterRoll;
  g.Auto.AfterRollData = c.autoState.AfterRollData;
  g.Auto.AutoRollThrottle = c.autoState.AutoRollThrottle;
}

}  // namespace

void ForgetCarriedOver(Game& g) { GiveCarriedOver(g, {}); }

void SetDefaultGame(Game& g) {
  CarriedOver kept = TakeCarriedOver(g);
  // A fresh game in place: a second one to move from would be made and copied in full,
  // and a game is large (a run of sessions starts one per session). Every member has its
  // initializer, so it is made member by member, without zeroing the whole of it first.
  // Made so it can't be left half made: memory that runs out on the way ends the program.
  [](Game& fresh) noexcept {
    fresh.~Game();
    new (&fresh) Game;
  }(g);
  GiveCarriedOver(g, std::move(kept));
  g.PlayerName.Set(0, "House");
  SetDefaultPercentageDice(g.Percentage);
  SetDefaultRules(g.Rules);
  for (int s = 0; s < kSeats; ++s) BareSeatWorking(g, s);
  g.Auto.AutoRollDelay = 1.0;
  ReopenRollHistory(g, g.Rolls);
}

void EndHand(Game& g) {
  std::array<bool, kSeats> occupied{};
  for (int s = 0; s < kSeats; ++s) occupied[s] = SeatOccupied(g, s);
  RollOverHand(g.Stats, occupied);
  for (int c = 0; c < kSeats; ++c) {
    if (!occupied[c] && c != 0) continue;
    g.BeginningBankroll[c + kLastHandScope] = g.BeginningBankroll[c];
    g.HighBankroll[c + kLastHandScope] = g.HighBankroll[c];
    g.LowBankroll[c + kLastHandScope] = g.LowBankroll[c];
    g.Bankroll[c + kLastHandScope] = g.Bankroll[c];
    g.BeginningBankroll[c] = g.HighBankroll[c] = g.LowBankroll[c] = g.Bankroll[c];
  }
  g.Table.ComeOutRollsInHand = g.Table.PassesInHand = g.Table.MissesInHand = 0;
}

namespace {

void ResetBankrollStores(Game& g, int scopeBase) {
  for (int c = scopeBase; c < scopeBase + kSeats; ++c) {
    g.BeginningBankroll[c] = g.HighBankroll[c] = g.LowBankroll[c] = Money{};
    g.BankrollSum[c] = Money{};
  }
}

Money AskBeginningBankroll(Game& g, int seat) {
  std::string typed = MoneyText(g.BankrollInitAmount[seat]);
  for (;;) {
    MessageReply reply = Tell(g, "Enter " + g.PlayerName[seat] + "'s beginning bankroll:", "Beginning Bankroll", 310,
                              msg::kOk | msg::kHelp | msg::kInput, typed);
    Money amount;
    std::string error;
    if (ParseMoney(reply.Input, amount, error)) return amount;
    if (g.SilentMode || g.Ui == nullptr) return g.BankrollInitAmount[seat];
    Tell(g, error, "Beginning Bankroll", 310, msg::kOk);
    typed = reply.Input;
  }
}

// ---- The steps of a new session.

// 1. Abandoned contract bets lose, unless the option returns them.
void AbandonContractBets(Game& g) {
  if (g.Rules.ReturnAbandonedBets) return;
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    if (g.Table.Point != 0) {
      AbandonBet(g, s, bet::PassLine);
      AbandonBet(g, s, bet::SevenPoint7);
    }
    for (int b = bet::Come4; b <= bet::Come10; ++b) AbandonBet(g, s, b);
  }
}

// 2. Sessions log: the session ends in each player's log and the bankroll is carried
// into the buy-in amount; or the log starts afresh.
void EndSessionLogs(Game& g, bool writeSessionLog) {
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    if (writeSessionLog) {
      AddSessionRecord(g, s, g.SessionsLogPath[s]);
      g.BankrollInitAmount[s] = g.Bankroll[s];
    } else {
      StartSessionsLog(g, s, g.SessionsLogPath[s], g.OnlineRole != 0);
    }
  }
}

// 3. Statistics: the session's columns move to "Last session", or everything is erased.
void RollOverStatistics(Game& g, bool keepHistory) {
  if (keepHistory) {
    if (g.Stats.RollCount[kHandScope][0] > 0) EndHand(g);
    const bool sessionHadRolls = g.Stats.RollCount[kSessionScope][0] > 0;
    RollOverSession(g.Stats);
    for (int c = 0; c < kSeats && sessionHadRolls; ++c) {
      const int from = kSessionScope + c, to = kLastSessionScope + c;
      g.Bankroll[to] = g.Bankroll[from];
      g.BeginningBankroll[to] = g.BeginningBankroll[from];
      g.HighBankroll[to] = g.HighBankroll[from];
      g.LowBankroll[to] = g.LowBankroll[from];
      g.BankrollSum[to] = g.BankrollSum[from];
    }
    ResetBankrollStores(g, kHandScope);
    ResetBankrollStores(g, kSessionScope);
    return;
  }
  ClearAllStatistics(g.Stats);
  // The current bankroll stays: a seat that carries its bankroll forward buys in with it.
  const auto current = g.Bankroll;
  g.Bankroll = {};
  for (int s = 1; s < kSeats; ++s)
    for (int scope : kCountedScopes) g.Bankroll[s + scope] = current[s];
  g.BeginningBankroll = g.HighBankroll = g.LowBankroll = g.BankrollSum = {};
  g.BuyInTotal = {};
  ReopenRollHistory(g, g.Rolls);
}

// 4. The bets' runs of wins and losses, and what a script cycle keeps between statements:
// a script that starts a new session starts over with nothing pending.
void EraseHitsAndRunState(Game& g) {
  g.BetStreak = {};
  AutoBetProgram& p = g.AutoBet;
  if (!p.ReturnStack.empty()) p.ReturnStack[0] = 0;
  p.InCondition = p.ConditionResult = false;
  p.StepPending = false;
}

// 5. Counters of the hand.
void ClearHandCounters(TableState& t) {
  t.ComeOutRollsInHand = t.PassesInHand = t.MissesInHand = 0;
  t.AllNumbersMask = 0;
  t.FourRollCount = 0;
  t.PointsWon = t.PassesMade = 0;
  t.FireMask = t.FireCount = 0;
  t.HotRollerMask = t.HotRollerCount = 0;
  t.RepeaterCount = {};
}

// 6. Bets come off the table; CheckStacks stay unless they are cleared too.
void ClearBets(Game& g, bool clearCheckStacks) {
  for (int s = 0; s < kSeats; ++s) {
    for (int b = 0; b <= kBets; ++b) {
      g.BetAmount[s][b] = g.BetAmountStartOfRoll[s][b] = g.BetAmountAfterRoll[s][b] = Money{};
      g.ContractBase[s][b] = Money{};
    }
    if (clearCheckStacks) {
      for (int r = kCheckStackRow; r < kBetRows; ++r) g.BetAmount[s][r] = Money{};
    }
    g.BuyVigHeld[s] = {};
    g.LayVigHeld[s] = {};
    g.ComeBase[s] = {};
    g.OnTable[s] = Money{};
  }
  g.BetHolders = {};
  g.SeatBets = g.SeatBetsAtStart = g.SeatBetsAtAfter = {};
  g.HeldPropBets = 0;
  if (clearCheckStacks) {
    g.HasCheckStacks = {};
    g.CheckStacksSinceStart = g.CheckStacksSinceAfter = {};
    g.CheckStackName = {};
  }
}

// 8. Buy-in, by each seat's mode.
void BuyInSeats(Game& g) {
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    switch (g.BankrollInitType[s]) {
      case 1: {
        const Money amount = AskBeginningBankroll(g, s);
        g.BankrollInitAmount[s] = amount;
        BuyIn(g, s, amount);
        break;
      }
      case 2: BuyIn(g, s, g.Bankroll[s]); break;
      default: BuyIn(g, s, g.BankrollInitAmount[s]); break;
    }
  }
}

}  // namespace

void ResetTable(Game& g, bool keepHistory, bool clearCheckStacks, bool writeSessionLog, int diceFileMode) {
  TableState& t = g.Table;
  AbandonContractBets(g);              // 1
  EndSessionLogs(g, writeSessionLog);  // 2
  RollOverStatistics(g, keepHistory);  // 3
  EraseHitsAndRunState(g);             // 4
  ClearHandCounters(t);                // 5
  ClearBets(g, clearCheckStacks);      // 6

  // 7. Working states back to the seat's defaults (the table is about to come out).
  t.Point = 0;
  for (int s = 0; s < kSeats; ++s)
    for (int b = 1; b <= kBets; ++b) g.BetWorking[s][b] = g.DefaultWorking[s][b];

  BuyInSeats(g);  // 8

  // 9. Bankroll graph.
  g.BankrollGraphIndex = 0;
  g.BankrollGraphScaleLow = 1;
  g.BankrollGraphScaleHigh = 150;
  g.StopReason.clear();

  // 10. Events log: a new file per session when asked.
  if (g.RecordEvents) StartEventsLogSession(g);
  t.Point = t.PriorPoint = t.SecondPriorPoint = t.LastPoint = 0;
  t.HandShooter = t.Shooter;

  // 11. Dice roll file.
  ApplyDiceFileMode(g.Rolls, diceFileMode);

  // 12. The session's header in the events log.
  if (g.RecordEvents) LogSessionHeader(g);

  // 13. Seeding per session.
  if (g.Dice.reseedSessions) SeedRng(g, false);

  // 14.
  t.PendingStopSeat = 0;
  if (g.Online) g.Online->SessionStarted();
  if (g.Ui && !g.SilentMode) g.Ui->Refresh({});
}

namespace {

constexpr int kHotRollerBit[7][7] = {{0, 0, 0, 0, 0, 0, 0},          {0, 0, 0, 1, 4, 16, 0},
                                     {0, 0, 2, 8, 32, 0, 128},       {0, 1, 8, 64, 0, 256, 1024},
                                     {0, 4, 32, 0, 512, 2048, 4096}, {0, 16, 0, 256, 2048, 8192, 0},
                                     {0, 0, 128, 1024, 4096, 0, 0}};

// The Hot Roller's numbers whose every way has come, counted from its mask by halves: the
// 4 (bits 0-1), 5 (2-3) and 6 (4-6) in the low seven bits, the 8 (7-9), 9 (10-11) and
// 10 (12-13) in the high seven. A table because it runs at every roll.
constexpr std::array<uint8_t, 128> HotRollerPairsTable(std::array<int, 3> groups) {
  std::array<uint8_t, 128> counts{};
  for (int m = 0; m < 128; ++m)
    for (int group : groups) counts[m] += (m & group) == group;
  return counts;
}
constexpr std::array<uint8_t, 128> kHotRollerPairsLow = HotRollerPairsTable({0x3, 0xC, 0x70});
constexpr std::array<uint8_t, 128> kHotRollerPairsHigh = HotRollerPairsTable({0x380 >> 7, 0xC00 >> 7, 0x3000 >> 7});

// Calls f(row) for every bet held now or at the last copy (`since`), then takes the
// present set as the new `since`.
template <class F>
void ForChangedBets(const Game& g, int seat, std::array<uint64_t, 2>& since, F f) {
  for (int w = 0; w < 2; ++w) {
    uint64_t bits = g.SeatBets[seat][w] | since[w];
    while (bits) {
      f(w * 64 + __builtin_ctzll(bits));
      bits &= bits - 1;
    }
  }
  since = g.SeatBets[seat];
}

// The CheckStacks of a seat written since `copy` last took them (`since`), copied to it.
void CopyCheckStacks(Game& g, int s, ByBetRow<Money>& copy, std::array<uint64_t, 2>& since) {
  for (int w = 0; w < 2; ++w) {
    for (uint64_t bits = since[w]; bits; bits &= bits - 1) {
      const int row = kCheckStackRow + w * 64 + __builtin_ctzll(bits);
      copy[s][row] = g.BetAmount[s][row];
    }
    since[w] = 0;
  }
}

// The start-of-roll copy: amounts of bets and CheckStacks, streaks, contract bases.
void TakeStartOfRollCopy(Game& g, int s) {
  ForChangedBets(g, s, g.SeatBetsAtStart[s], [&](int b) {
    g.BetAmountStartOfRoll[s][b] = g.BetAmount[s][b];
    g.BetStreak[1][s][b] = g.BetStreak[0][s][b];
    g.ContractBase[s][b] = g.BetAmount[s][b];
  });
  CopyCheckStacks(g, s, g.BetAmountStartOfRoll, g.CheckStacksSinceStart[s]);
}

}  // namespace

void SetContractBase(Game& g, int seat, int bet, Money base) {
  if (seat < 0 || seat >= kSeats || bet < 1 || bet > kBets) return;
  g.ContractBase[seat][bet] = base;
  g.SeatBetsAtStart[seat][bet >> 6] |= uint64_t{1} << (bet & 63);
}

namespace {

void TakeAfterRollCopy(Game& g, int s) {
  ForChangedBets(g, s, g.SeatBetsAtAfter[s], [&](int b) { g.BetAmountAfterRoll[s][b] = g.BetAmount[s][b]; });
  CopyCheckStacks(g, s, g.BetAmountAfterRoll, g.CheckStacksSinceAfter[s]);
}

// Step 3, refused or with a bet of any kind required: see ShooterMayRoll.
[[gnu::noinline]] bool ShooterMayRollChecked(Game& g) {
  const TableState& t = g.Table;
  const int setting = g.Rules.BetNeededToShoot;
  if (setting == 0) return true;
  if (t.NumberOfPlayers == 0) {
    if (g.SilentMode) g.StopReason = "No players are available to bet.";
    else
      Tell(g, std::string(LanguageText(g.LanguageId, 110)), std::string(LanguageText(g.LanguageId, 111)), 0, msg::kOk);
    return false;
  }
  const int s = t.Shooter;
  const char* note = "Note: This requirement can be changed on the 'Bets tab' of the configuration screen.";
  if (setting == 1) {
    if (s > 0 && (g.BetAmount[s][bet::PassLine].raw > 0 || g.BetAmount[s][bet::DontPass].raw > 0)) return true;
    if (g.SilentMode) {
      g.StopReason = "Shooter has no line bet.";
    } else {
      const std::string name = g.PlayerName[s];
      std::string who;
      if (t.NumberOfPlayers == 1) who = name + " must make a Pass Line bet or a Don't Pass bet.";
      else if (t.Point == 0) who = name + " must make a Pass Line bet, a Don't Pass bet, or pass the dice.";
      else who = name + " must make a Pass Line bet or pass the dice.";
      Tell(g, "A line bet is required to shoot.\n\n" + who + "\n\n" + note, "Line Bet Required", 130,
           msg::kOk | msg::kHelp);
    }
    return false;
  }
  if (s > 0)
    for (int b = 1; b <= kBets; ++b)
      if (g.BetAmount[s][b].raw > 0) return true;
  if (g.SilentMode) {
    g.StopReason = "Shooter has no bet.";
  } else {
    Tell(g,
         "A bet is required to shoot.\n\n" + g.PlayerName[s] + " must make any bet or pass the dice.\n\n" +
             std::string(note),
         "Any Bet Required", 130, msg::kOk | msg::kHelp);
  }
  return false;
}

// Step 3: the shooter must have the bet the table requires. The usual case, no bet needed
// or a shooter with a line bet, is told here without a call.
inline bool ShooterMayRoll(Game& g) {
  const int setting = g.Rules.BetNeededToShoot, s = g.Table.Shooter;
  if (setting == 0) return true;
  if (setting == 1 && s > 0 && g.Table.NumberOfPlayers != 0 &&
      (g.BetAmount[s][bet::PassLine].raw > 0 || g.BetAmount[s][bet::DontPass].raw > 0))
    return true;
  return ShooterMayRollChecked(g);
}

void CountPointStateMachine(Game& g) {
  TableState& t = g.Table;
  Statistics& st = g.Stats;
  const int total = t.DiceTotal;
  auto pass = [&](int on) {
    ++t.PassesInHand;
    CountPass(st, t.HandShooter, on, t.PassesInHand);
    if (!g.SilentMode && g.Ui) g.Ui->PlaySound("13", false);
  };
  auto miss = [&](int on) {
    ++t.MissesInHand;
    CountMiss(st, t.HandShooter, on, t.MissesInHand);
    if (!g.SilentMode && g.Ui) g.Ui->PlaySound("14", false);
  };
  if (t.Point != 0) {
    if (total == t.Point) {
      pass(t.Point);
      t.LastPoint = t.Point;
      t.Point = 0;
    } else if (total == 7) {
      miss(t.Point);
      t.LastPoint = t.Point;
      t.Point = 0;
    }
    return;
  }
  switch (total) {
    case 7:
    case 11: pass(total); break;
    case 4:
    case 5:
    case 6:
    case 8:
    case 9:
    case 10: t.Point = total; break;
    case 2:
    case 3:
    case 12: miss(total); break;  // on the bar total Don't Pass stands
    default: break;
  }
  ++t.ComeOutRollsInHand;
  CountComeOut(st, t.HandShooter, total, t.ComeOutRollsInHand);
}

// `rollSeats`: the PlayerSeats of the roll's snapshots. Resolution seats and removes nobody;
// online the link may, while the dice are out or a box is open, so there the seats are
// taken afresh at each step.
void AfterResolution(Game& g, int pointBefore, uint32_t rollSeats, bool online) {
  TableState& t = g.Table;
  const auto seats = [&] { return online ? PlayerSeats(g) : rollSeats; };
  ForSeats(seats(), [&](int s) {
    for (int scope : kCountedScopes) {
      const Money b = g.Bankroll[s + scope];
      g.BankrollSum[s + scope] += b;
      if (b > g.HighBankroll[s + scope]) g.HighBankroll[s + scope] = b;
      if (b < g.LowBankroll[s + scope]) g.LowBankroll[s + scope] = b;
    }
  });
  if (t.DiceTotal == 7 && t.PriorPoint > 0) {
    EndHand(g);
    t.LastHandShooter = t.HandShooter;
    if (t.Shooter == t.HandShooter) PassDice(g, kPassFromRoll);
    else t.HandShooter = t.Shooter;
  }
  if (t.Point != pointBefore) {
    RestWorkingStates(g);
    if (pointBefore == 0 && t.Point != 0) {
      ForSeats(seats(), [&](int s) {
        if (g.BetAmount[s][bet::PassLine].raw > 0) {
          if (g.AutoTakeOdds[s]) TakeMaximum(g, s, bet::PassLineOdds);
          if (g.AutoDownPlace[s]) {
            TakeDown(g, s, PointRow(BetFamily::Place, t.Point));
            TakeDown(g, s, PointRow(BetFamily::Buy, t.Point));
          }
        }
        if (g.BetAmount[s][bet::DontPass].raw > 0 && g.AutoLayOdds[s]) TakeMaximum(g, s, bet::DontPassOdds);
      });
    }
  }
  if (g.RecordEvents) LogRollEnd(g);
  if (++g.BankrollGraphIndex > kBankrollGraphSize) g.BankrollGraphIndex = 1;
  ForSeats(seats(), [&](int s) {
    g.BankrollHistory[s][g.BankrollGraphIndex] = g.Bankroll[s];
    g.BetWorkingBeforeRoll[s] = g.BetWorking[s];
  });
}

// Step 9, the dice: those from the wire, the manual pad, a pop-up roll file, a dice roll
// file in playback, else the selected generator, through the percentage table when that
// is on. False when a file source stops the roll.
bool DrawTheDice(Game& g, OnlineDice online, int32_t wireDie1, int32_t wireDie2) {
  TableState& t = g.Table;
  if (online == OnlineDice::Remote) {
    t.Die1 = wireDie1;
    t.Die2 = wireDie2;
    if (g.RecordEvents) LogRollLine(g, RollSource::OnlineHost);
  } else if (g.Dice.padPending) {
    g.Dice.padPending = false;
    t.Die1 = g.Dice.padDie1;
    t.Die2 = g.Dice.padDie2;
    if (g.RecordEvents) LogRollLine(g, RollSource::ManualPad);
  } else if (g.Rolls.PopupActive) {
    if (!ReadPopupRoll(g, g.Rolls)) return false;
  } else if (g.Rolls.RecorderState == 2) {
    if (!ReadRollFromFile(g, g.Rolls)) return false;
  } else if (g.Percentage.PercentageDiceOn) {
    DrawCell(g.Percentage.Table, GeneratorCell(g.Dice, g.Stats.RollCount[kSessionScope][0]), t.Die1, t.Die2,
             g.Percentage.Fallback);
    if (g.RecordEvents) LogRollLine(g, RollSource::Generator);
  } else {
    GeneratorDice(g.Dice, g.Stats.RollCount[kSessionScope][0], t.Die1, t.Die2);
    if (g.RecordEvents) LogRollLine(g, RollSource::Generator);
  }
  return true;
}

// Step 12, the numbers the collecting bets mark: All Small, All Tall and Make All, the
// 4 Rolls No 7 count, the Hot Roller's pairs and the Repeaters' hits.
void MarkCollectedNumbers(Game& g) {
  TableState& t = g.Table;
  const int total = t.DiceTotal;
  if (!AnySeatHolds(g, bet::MakeAll) && !AnySeatHolds(g, bet::AllSmall)) t.AllNumbersMask &= ~0x7C;
  else if (total < 7) t.AllNumbersMask |= 1 << total;
  if (!AnySeatHolds(g, bet::MakeAll) && !AnySeatHolds(g, bet::AllTall)) t.AllNumbersMask &= ~0x1F00;
  else if (total > 7 && total <= 12) t.AllNumbersMask |= 1 << total;
  if (total == 7 || !AnySeatHolds(g, bet::FourRollsNo7)) t.FourRollCount = 0;
  else ++t.FourRollCount;
  t.HotRollerCount = kHotRollerPairsLow[t.HotRollerMask & 0x7F] + kHotRollerPairsHigh[(t.HotRollerMask >> 7) & 0x7F];
  if (total >= 2 && total <= 12 && total != 7) {
    int rb = bet::Repeater2 + (total < 7 ? total - 2 : total - 3);
    if (AnySeatHolds(g, rb)) ++t.RepeaterCount[total];
  }
}

// Steps 3 to 17 of one roll; false when the roll was refused or the table stopped.
bool OneRoll(Game& g) {
  TableState& t = g.Table;
  // Online, dice that came over the wire are rolled as the other side rolled them.
  int32_t wireDie1 = 0, wireDie2 = 0;
  const OnlineDice online = g.Online ? g.Online->TakeDice(wireDie1, wireDie2) : OnlineDice::Local;
  if (online == OnlineDice::Refused || (online == OnlineDice::Local && !ShooterMayRoll(g))) return false;

  // 4. Limits.
  if (g.Stats.RollCount[kSessionScope][0] >= kMaxSessionRolls) {
    const std::string advice = "Select \"New\" from the \"Game\" menu to reset the table.";
    TellOrStop(g, "Stopped due to reaching the maximum limit of 2,000,000,000 rolls.\n" + advice,
               "Sorry ... the maximum limit of 2,000,000,000 rolls has been reached.\n" + advice,
               "Reached Maximum Roll Limit", 0, msg::kOk);
    return false;
  }
  if (g.Rolls.PopupActive && !WaitForPopupFile(g, g.Rolls)) return false;

  // 5. Available bankroll.
  for (int s = 1; s < kSeats; ++s) g.AvailableBankroll[s] = g.Bankroll[s] - g.OnTable[s];

  // 6. What changed since the last roll, to the events log.
  if (g.RecordEvents) LogChangesSinceLastRoll(g);

  // 7. Snapshots.
  const bool onlineAtSnapshots = g.Online != nullptr;
  const uint32_t rollSeats = PlayerSeats(g);
  ForSeats(rollSeats, [&](int s) {
    g.BankrollStartOfRoll[s] = g.Bankroll[s];
    TakeStartOfRollCopy(g, s);
  });

  // 8. Point memory.
  t.SecondPriorPoint = t.PriorPoint;
  t.PriorPoint = t.Point;

  // 9. The dice.
  if (!DrawTheDice(g, online, wireDie1, wireDie2)) return false;

  if (g.Online) g.Online->DiceRolled(t.Die1, t.Die2);

  // 10. Total and recording.
  t.DiceTotal = t.Die1 + t.Die2;
  if (g.Rolls.RecorderState == 1) RecordRoll(g, g.Rolls);

  // 11. Counters.
  if (!g.SilentMode && g.Ui) g.Ui->Refresh({"dice"});
  CountRoll(g.Stats, t.HandShooter, t.Die1, t.Die2);
  if (t.Die1 >= 1 && t.Die1 <= 6 && t.Die2 >= 1 && t.Die2 <= 6) t.HotRollerMask |= kHotRollerBit[t.Die1][t.Die2];

  // 12. Collected numbers.
  MarkCollectedNumbers(g);

  // 13. Point state machine.
  const int pointBefore = t.Point;
  CountPointStateMachine(g);
  if (g.RecordEvents) LogOutcome(g, pointBefore);
  {
    // The roll's effect is known: its mark goes to the recording and the history.
    const int mark = RollMark(pointBefore, t.DiceTotal);
    if (g.Rolls.RecorderState == 1) MarkRecordedRoll(g, g.Rolls, mark);
    WriteRollHistory(g, g.Rolls, mark);
  }

  // 14. Bets.
  ResolveBets(g);

  // 15. After resolution.
  AfterResolution(g, pointBefore, rollSeats, onlineAtSnapshots || g.Online != nullptr);

  // 16. The active seats' scripts, one cycle; then the runner's own bets.
  if (g.AutoBet.ScriptsCompiled && AnyScriptActive(g)) RunAutoBet(g);
  if (g.Auto.AfterRoll) g.Auto.AfterRoll(g, g.Auto.AfterRollData);
  // Scripts and the runner may have seated or removed players.
  const uint32_t seats = PlayerSeats(g);
  ForSeats(seats, [&](int s) {
    g.BankrollAfterRoll[s] = g.Bankroll[s];
    TakeAfterRollCopy(g, s);
    g.ScriptActiveCopy[s] = g.ScriptActive[s];
  });
  if (!g.SilentMode && g.Ui) g.Ui->Refresh({"frmBankroll", "frmSummary", "frmRollTotals", "frmHands"});

  DICEHALL_ASSERT_CONSISTENT(g);

  // 17. Bankroll limit: the first seat beyond it stops the table.
  int beyond = 0;
  ForSeats(seats, [&](int s) {
    if (beyond == 0 && BeyondBankrollLimit(g.Bankroll[s])) beyond = s;
  });
  if (beyond == 0) return true;
  LimitStop(g, beyond);
  return false;
}

}  // namespace

bool AnyScriptActive(const Game& g) {
  for (int s = 1; s < kSeats; ++s) {
    if (g.ScriptActive[s] && SeatOccupied(g, s)) return true;
  }
  return false;
}

bool CompileActiveScripts(Game& g) {
  if (g.AutoBet.ScriptsCompiled) return true;
  if (!AnyScriptActive(g)) return true;
  // "bets" covers Big 6 and Big 8 only when the layout has them.
  g.AutoBet.CornerBet = g.Rules.CornerBet;
  SeatFacts facts;
  for (int s = 1; s < kSeats; ++s) {
    facts.names[s - 1] = g.PlayerName[s];
    facts.active[s - 1] = SeatOccupied(g, s) && g.ScriptActive[s];
  }
  const CompileAllResult result = CompileALLAutobets(g.AutoBet, 0, facts);
  if (!result.Failed()) return true;
  TellOrStop(g, result.message, result.message, result.title, 0, msg::kOk);
  return false;
}

bool ActivateScripts(Game& g) {
  if (!AnyScriptActive(g)) return true;
  if (!CompileActiveScripts(g)) return false;
  g.AutoBet.InitializingScript = true;
  RunAutoBet(g);
  g.AutoBet.InitializingScript = false;
  return true;
}

void RollDice(Game& g) {
  TableState& t = g.Table;
  // 1. Missing generators.
  RemapMissingGenerators(g.Dice);

  // 2. Pending stops; the scripts of the active seats compiled when they aren't.
  if (t.PendingStopSeat != 0) {
    LimitStop(g, t.PendingStopSeat);
    return;
  }
  if (!CompileActiveScripts(g)) {
    if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
    return;
  }
  g.StopReason.clear();
  t.Rolling = true;
  uint32_t started = g.Time ? g.Time->TickMs() : 0;

  try {
    for (;;) {
      bool rolled = OneRoll(g);
      if (!rolled) {
        if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
        break;
      }
      // Online, each roll is timed by the table's countdown: one roll per call.
      if (g.Online) break;
      // 18. Wait or loop.
      const int64_t every = g.Auto.AutoStopRolls.raw / Money::kScale;
      const int32_t sessionRolls = g.Stats.RollCount[kSessionScope][0];
      const bool autoStop = every > 0 && sessionRolls > 0 && sessionRolls % every == 0;
      if (g.SilentMode) {
        // One turn of the event loop, throttled so that it costs nothing per roll.
        if ((++g.Auto.YieldCounter & 1023) == 0 && g.Ui) g.Ui->Yield();
        if (autoStop && g.Auto.AutoRollActive) {
          if (g.StopReason.empty()) g.StopReason = "Stopped by Auto-Stop.";
          ToggleAutoRoll(g);
        }
        if (!g.Auto.AutoRollActive) break;
        continue;
      }
      if (g.Ui) g.Ui->Refresh({"table", "status"});
      if (!g.Auto.AutoRollActive) break;
      if (autoStop) {
        ToggleAutoRoll(g);
        Tell(g, "Stopped by Auto-Stop", "Auto-Roll Stopped", 540, msg::kOk | msg::kHelp);
        break;
      }
      if (g.Time && g.Ui) {
        const uint32_t wait = static_cast<uint32_t>(1000.0 * g.Auto.AutoRollDelay);
        while (g.Auto.AutoRollActive && g.Time->TickMs() - started < wait) g.Ui->Yield();
      }
      if (!g.Auto.AutoRollActive) break;
      started = g.Time ? g.Time->TickMs() : 0;
    }
  } catch (const StatOverflow& e) {
    t.Rolling = false;
    if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
    TellOrStop(g, ErrorReport("Overflow", 6, "sub Roll Dice"), ErrorReport("Overflow", 6, e.procedure), "DiceHall", 0,
               msg::kOk);
    return;
  }
  if (g.Rolls.EndOfFile) StopPlayback(g, g.Rolls);
  t.Rolling = false;
  if (g.Online) g.Online->RollEnded();
}
