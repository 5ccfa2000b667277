#pragma once
// The game object: every store of one table. Procedures are free functions over it;
// each store is written in one place and read by everyone else.

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include "autobet/compiler.h"
#include "dice/generators.h"
#include "dice/probability.h"
#include "dice/roll_file_record.h"
#include "engine/bets.h"
#include "engine/clock.h"
#include "engine/money.h"
#include "engine/online_link.h"
#include "engine/user_interface.h"
#include "stats/events_log_state.h"
#include "stats/statistics.h"
#include "storage/hot_key_file.h"
#include "storage/rules.h"
#include "storage/saved_settings.h"

template <class T>
using BySeat = std::array<T, kSeats>;
// The players' names by seat, "" for an empty seat. Every write goes through Set or Swap,
// which keep the seats that have a player as bits: the roll asks that every roll.
class SeatNames {
 public:
  const std::string& operator[](size_t seat) const { return names_[seat]; }
  void Set(size_t seat, std::string name) {
    const uint32_t bit = 1u << seat;
    seated_ = name.empty() ? seated_ & ~bit : seated_ | bit;
    names_[seat] = std::move(name);
  }
  void Swap(size_t a, size_t b) {
    std::swap(names_[a], names_[b]);
    const uint32_t bits = (1u << a) | (1u << b);
    if (((seated_ >> a) & 1u) != ((seated_ >> b) & 1u)) seated_ ^= bits;
  }
  uint32_t Seated() const { return seated_; }  // bit s for seat s

 private:
  BySeat<std::string> names_{};
  uint32_t seated_ = 0;
};

template <class T>
using ByScope = std::array<T, kScopeColumns>;
template <class T>
using ByBetRow = std::array<std::array<T, kBetRows>, kSeats>;
template <class T>
using ByBet = std::array<std::array<T, kBets + 1>, kSeats>;
using WorkingState = int8_t;
template <class T>
using ByPoint = std::array<std::array<T, 6>, kSeats>;

constexpr Money kMaxBankroll = Money::Dollars(9999999);
constexpr int32_t kMaxSessionRolls = 2000000000;
constexpr int kBankrollGraphSize = 1050;
constexpr int32_t kOnlineHost = 1, kOnlineClient = 3;  // values of Game::OnlineRole

struct TableState {
  int32_t Die1 = 3, Die2 = 4;
  int32_t DiceTotal = 7;
  int32_t Point = 0;
  int32_t PriorPoint = 0;
  int32_t SecondPriorPoint = 0;
  int32_t LastPoint = 0;
  int32_t Shooter = 0;
  int32_t HandShooter = 0;
  int32_t LastHandShooter = 0;
  int32_t NumberOfPlayers = 0;
  int32_t ComeOutRollsInHand = 0;
  int32_t PassesInHand = 0;
  int32_t MissesInHand = 0;
  bool Rolling = false;
  int32_t PendingStopSeat = 0;
  int32_t FireMask = 0, FireCount = 0;
  int32_t HotRollerMask = 0, HotRollerCount = 0;
  int32_t FourRollCount = 0;
  int32_t AllNumbersMask = 0;
  int32_t PointsWon = 0, PassesMade = 0;
  std::array<int32_t, 13> RepeaterCount{};  // totals 2..12
};

// Settle rule of a seat for one purpose row: the dialog's "Modify" and "Bet" rows.
struct SettleRule {
  int Operator = 0;  // 0 add, 1 subtract, 2 multiply, 3 divide
  Money Operand;
  int Units = 0;  // 0 dollars, 1 percent, above 1 the check size selector + 1
};

// Auto-Roll and Hyper-Drive.
struct AutomationState {
  bool AutoRollActive = false;
  bool HyperDrive = false;
  int32_t AutoRollThrottle = 12;  // 12 Auto-Roll, below 12 Hyper-Drive
  Money AutoStopRolls;            // a whole number of rolls, 0 for none
  double AutoRollDelay = 1.0;     // seconds between rolls at normal speed
  std::string ButtonText;         // the caption of cmdHyperDrive (and cmdHyperDriveActive)
  std::string StatusText;
  std::string WindowTitle;
  // Called after each roll's scripts (and once by the runner before the first roll), so
  // that a headless runner can place its standing bets; plain pointer, no allocation.
  void (*AfterRoll)(struct Game&, void*) = nullptr;
  void* AfterRollData = nullptr;
  // When set, a finished session goes here instead of the seat's sessions log, so that a
  // table on a worker thread hands its sessions to the run that owns it.
  void (*SessionSink)(struct Game&, int seat, void*) = nullptr;
  void* SessionSinkData = nullptr;
  uint32_t YieldCounter = 0;
};

inline BySeat<std::array<int32_t, 4>> MakeShortcuts() {
  BySeat<std::array<int32_t, 4>> s{};
  for (auto& seat : s) seat = {201, 202, 203, 204};
  return s;
}

struct Game {
  RuleSet Rules;
  TableState Table;
  Statistics Stats;
  DiceSources Dice;
  PercentageDice Percentage;
  RollFiles Rolls;
  AutomationState Auto;

  int32_t LanguageId = 0;
  std::string ProgramFolder;                           // the data folder; bare file names are taken in it
  std::string CheckSound;                              // the chosen "*.chp" file; "" plays none
  std::string RollFormat = "Roll# (Die1.Die2) Total";  // roll-format text of dice-roll reports
  // Events log settings: off by default, every category selected once it's on.
  bool RecordEvents = false;
  int32_t EventsLogCategories = -1;
  std::string EventsLogFile = "Events Log.txt";
  EventsLog Events;  // the log's own settings, view and working values
  std::string OnlineGameName = "DiceHall Online";
  std::string HostName = "Host";
  // Online role of this table: 0 offline, kOnlineHost or kOnlineClient; a client's own
  // seat. The host's buy-in bounds hold at every table.
  int32_t OnlineRole = 0;
  int32_t ClientSeat = 0;
  bool ClientObserver = false;
  Money HostMinBuyIn = -kMaxBankroll, HostMaxBuyIn = kMaxBankroll;
  bool ConfigureOpen = false;  // the configuration screen is open: ATM boxes always show

  // Per seat and bet row (rows 200..299 are the CheckStacks).
  ByBetRow<Money> BetAmount{};
  // Bit s set when seat s has an amount on the bet: resolution skips an empty bet with
  // one test. Kept by CommitAmount, the only writer of bet amounts.
  std::array<uint16_t, kBets + 1> BetHolders{};
  // Bets each seat holds now (bit b of word b / 64), and held when the start-of-roll and
  // after-roll copies were last taken: the copies touch only those rows, every other
  // row being 0 in both the amount and its copy.
  BySeat<std::array<uint64_t, 2>> SeatBets{}, SeatBetsAtStart{}, SeatBetsAtAfter{};
  // How many of the bets 49..107 anybody holds: the one-roll step is skipped when none.
  int32_t HeldPropBets = 0;
  BySeat<bool> HasCheckStacks{};  // set once a CheckStack of the seat changes
  // The CheckStacks of a seat (bit n for CheckStack n) written since the start-of-roll
  // copy, and since the after-roll copy, last took them: each copy takes only those rows,
  // every other row standing as the copy has it. All of them when HasCheckStacks came
  // from elsewhere (a game file).
  BySeat<std::array<uint64_t, 2>> CheckStacksSinceStart{}, CheckStacksSinceAfter{};
  ByBetRow<Money> BetAmountStartOfRoll{};
  ByBetRow<Money> BetAmountAfterRoll{};
  std::array<std::array<Money, 200>, kSeats> ContractBase{};
  // 0 off, 1 on, 2 called on, -1 called off. A byte each: the roll copies and rests a
  // seat's whole row of them.
  ByBet<WorkingState> BetWorking{};
  ByBet<WorkingState> BetWorkingBeforeRoll{};
  ByBet<WorkingState> DefaultWorking{};
  std::array<ByBet<int32_t>, 2> BetStreak{};  // the run, and its copy from the start of the roll
  ByBetRow<int32_t> PlacementA{}, PlacementB{};
  ByPoint<Money> BuyVigHeld{}, LayVigHeld{}, ComeBase{};
  // CheckStacks: a name per seat and stack, and the four stacks that stand on the rail.
  BySeat<std::array<std::string, kBetRows - kCheckStackRow>> CheckStackName{};
  BySeat<std::array<int32_t, 4>> CheckStackShortcuts = MakeShortcuts();

  // Per seat.
  SeatNames PlayerName;
  ByScope<Money> Bankroll{}, BeginningBankroll{}, HighBankroll{}, LowBankroll{}, BankrollSum{};
  ByScope<Money> BuyInTotal{}, Comps{};
  BySeat<Money> OnTable{}, AvailableBankroll{};
  BySeat<Money> BankrollStartOfRoll{}, BankrollAfterRoll{};
  BySeat<bool> AutoTakeOdds{}, AutoLayOdds{}, AutoDownPlace{}, AutoPassDice{};
  BySeat<int32_t> AutoHandleWin{}, AutoHandleLose{};
  BySeat<int32_t> BankrollInitType{};  // buy-in mode: 0 amount, 1 ask, 2 carry forward
  BySeat<Money> BankrollInitAmount{};
  BySeat<bool> AllowNegBankroll{};
  // Adjust for proper payoff by kind of bet: 0 Lay, 1 Buy, 2 Place, 3 others.
  BySeat<std::array<int32_t, 4>> AdjustForPayoff{};
  // Auto-Play's direction of that adjustment for Place, Lay, do odds and don't odds
  // bets: 0 nearest, 1 increase, 2 decrease (kBiasPlace...).
  BySeat<std::array<int32_t, 4>> AdjustBias{};
  BySeat<std::array<SettleRule, 4>> SettleRules{};  // 0 modify winners, 1 set winners, 2, 3 losers
  BySeat<bool> ScriptActive{}, ScriptActiveCopy{};
  BySeat<std::string> ScriptFile{};
  BySeat<std::string> SessionsLogPath{};  // the seat's sessions log; "" for the player's default name
  AutoBetProgram AutoBet;                 // the seats' scripts, compiled and joined

  // Bankroll graph: index 1..1050, scale.
  int32_t BankrollGraphIndex = 0;
  int32_t BankrollGraphScaleLow = 1, BankrollGraphScaleHigh = 150;
  std::array<std::array<Money, kBankrollGraphSize + 1>, kSeats> BankrollHistory{};

  // Working values of the roll cycle.
  bool SilentMode = false;
  std::string StopReason;
  bool Moving = false;  // a Come or Don't Come bet travelling to its number

  // The game file: what the screens and the online panel keep in it, the hot keys it
  // names, the name Save writes to, and whether anything changed since.
  DesktopSettings Desktop;
  OnlineSettings OnlinePanel;
  std::string HotKeysFileName = kDefaultHotKeysFile;
  HotKeyTable HotKeys;
  std::string GameFileName;
  bool GameChanged = false;

  // Boundaries.
  UserInterface* Ui = nullptr;
  Clock* Time = nullptr;
  OnlineLink* Online = nullptr;  // null at a table played alone
};

enum AdjustBiasFamily { kBiasPlace = 0, kBiasLay = 1, kBiasDoOdds = 2, kBiasDontOdds = 3 };

// Scope columns a change of a seat touches: seat + 0, + 18, + 36.
constexpr std::array<int, 3> kCountedScopes = {0, 18, 36};

// Any seat number, a peer's included: one outside 0..8 has nobody.
inline bool SeatOccupied(const Game& g, int seat) {
  return static_cast<unsigned>(seat) < kSeats && ((g.PlayerName.Seated() >> seat) & 1u);
}
// The player seats 1..8 that have a player, as bits 1..8: the roll walks only those.
inline uint32_t PlayerSeats(const Game& g) { return g.PlayerName.Seated() & ~1u; }
// Calls f(seat) for each seat of a PlayerSeats mask, lowest first.
template <class F>
void ForSeats(uint32_t seats, F&& f) {
  for (; seats != 0; seats &= seats - 1) f(__builtin_ctz(seats));
}
inline bool IsComeOut(const Game& g) { return g.Table.Point == 0; }
inline bool AnySeatHolds(const Game& g, int bet) { return g.BetHolders[bet] != 0; }
// A CheckStack row (200..299) of the seat is written: HasCheckStacks, and the row is due
// to both copies.
inline void NoteCheckStackWrite(Game& g, int seat, int row) {
  g.HasCheckStacks[seat] = true;
  const int n = row - kCheckStackRow;
  if (n < 0 || n >= kBetRows - kCheckStackRow) return;
  const uint64_t bit = uint64_t{1} << (n & 63);
  g.CheckStacksSinceStart[seat][n >> 6] |= bit;
  g.CheckStacksSinceAfter[seat][n >> 6] |= bit;
}

// Calls f(bet) for each bet 1..107 on which the seat has an amount, in bet order.
template <class F>
void PresentBets(const Game& g, int seat, F&& f) {
  for (int w = 0; w < 2; ++w) {
    uint64_t bits = g.SeatBets[seat][w];
    while (bits) {
      f(w * 64 + __builtin_ctzll(bits));
      bits &= bits - 1;
    }
  }
}
