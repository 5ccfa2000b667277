// Random play through the engine's own procedures: bets of every kind and size (on empty
// seats and rows that hold no bet too), players coming, going and moving, the ATM, rule
// changes, handling, scripts and rolls. The table must keep its rules after every step,
// and a saved game must open and play on as the table it was saved from.

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "automation/auto_play.h"
#include "engine/bankroll.h"
#include "engine/consistency.h"
#include "engine/handling.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"
#include "engine/table_tools.h"
#include "storage/game_file.h"
#include "storage/rule_validation.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

struct Play : FolderTable {
  std::mt19937 rng;
  std::vector<std::vector<std::string>> scripts = ExampleScripts();
  std::deque<std::string> steps;  // the last few, to tell what led to a failure

  explicit Play(uint32_t seed) : rng(seed) { g.SilentMode = true; }
  int Pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }
  Money Amount(int dollars) { return Money::FromRaw(static_cast<int64_t>(Pick(-dollars, 2 * dollars)) * 2500); }
  std::string Steps() const {
    std::string text;
    for (const std::string& s : steps) text += "\n  " + s;
    return text;
  }

  void ChangeRules() {
    RuleSet r = g.Rules;
    static const int64_t kUnits[] = {2500, 10000, 50000};
    r.CheckDenom[1] = Money::FromRaw(kUnits[Pick(0, 2)]);
    r.ChargeAllBuy = Pick(0, 1);
    r.ChargeAllLay = Pick(0, 1);
    r.BuyVigPct = Money::FromRaw(Pick(0, 1) * 500);
    r.AllowPennyPayoffs = Pick(0, 1);
    r.AllowPutBets = Pick(0, 1);
    r.BetNeededToShoot = Pick(0, 2);
    r.OddsCalcMethod = Pick(0, 5);
    r.OddsAllowed68 = Money::Dollars(Pick(0, 10));
    r.MinPlacardBet = Money::Dollars(Pick(1, 25));
    r.MaxPlacardBet = Money::Dollars(Pick(50, 5000));
    PayoffRow& row = r.BetPayoff[Pick(1, kBets)];
    row.PayoffPay = Money::Dollars(Pick(1, 30));
    row.PayoffFor = Money::Dollars(Pick(1, 6));
    if (ValidateRules(r, false).ok) ReplaceRules(g, r);
  }

  // Saves, opens the file at another table, and rolls both alike: without scripts (whose
  // text lives in files of their own) they must stay the same seat by seat.
  void SaveAndOpen() {
    ASSERT_TRUE(SaveGame(g, Path("play.crp")));
    FolderTable copy;
    ASSERT_TRUE(OpenGame(copy.g, Path("play.crp"))) << copy.ui.LastText() << Steps();
    ASSERT_EQ(GameIsConsistent(copy.g), "") << Steps();
    for (int s = 1; s < kSeats; ++s)
      if (g.ScriptActive[s] && SeatOccupied(g, s)) return;
    copy.g.SilentMode = true;
    for (int roll = 0; roll < 20; ++roll) {
      const int d1 = Pick(1, 6), d2 = Pick(1, 6);
      copy.Roll(d1, d2);
      Roll(d1, d2);
      for (int s = 1; s < kSeats; ++s) {
        if (!SeatOccupied(g, s)) continue;  // a file holds the seats of players only
        ASSERT_EQ(copy.g.Bankroll[s], g.Bankroll[s]) << "seat " << s << Steps();
        ASSERT_TRUE(copy.g.BetAmount[s] == g.BetAmount[s]) << "seat " << s << Steps();
      }
    }
  }
};

using Operation = std::tuple<int, const char*, std::function<void(Play&, int seat)>>;  // weight, name, what it does

const std::vector<Operation>& Operations() {
  static const std::vector<Operation> kOperations = {
      {40, "bet",
       [](Play& p, int s) {
         const int row = p.Pick(0, 20) == 0 ? p.Pick(kBets + 1, kBetRows - 1) : p.Pick(1, kBets);
         ChangeBet(p.g, s, row, p.Amount(300));
       }},
      {4, "take the maximum", [](Play& p, int s) { TakeMaximum(p.g, s, p.Pick(1, kBets)); }},
      {3, "call a bet on or off", [](Play& p, int s) { CallBet(p.g, s, p.Pick(1, kBets), p.Pick(0, 1)); }},
      {2, "call all bets", [](Play& p, int s) { CallAllBets(p.g, s, p.Pick(0, 1)); }},
      {2, "buy a place bet", [](Play& p, int s) { BuyPlaceBet(p.g, s, p.Pick(bet::Place4, bet::Place4 + 5)); }},
      {2, "the ATM", [](Play& p, int s) { Atm(p.g, s, Money::Dollars(p.Pick(-300, 300))); }},
      {2, "a player sits down",
       [](Play& p, int s) {
         AddPlayer(p.g, s, "P" + std::to_string(p.Pick(1, 9)), Money::Dollars(p.Pick(0, 3) == 0 ? -1 : 2000));
       }},
      {1, "a player leaves", [](Play& p, int s) { RemovePlayer(p.g, s); }},
      {1, "a player moves", [](Play& p, int s) { MovePlayer(p.g, s, p.Pick(1, 8)); }},
      {1, "a player is renamed", [](Play& p, int s) { RenamePlayer(p.g, s, "R" + std::to_string(p.Pick(1, 9))); }},
      {1, "all bets come down", [](Play& p, int s) { RemoveAllBets(p.g, s); }},
      {1, "the dice are passed", [](Play& p, int) { PassDice(p.g, kPassSilent); }},
      {2, "handling",
       [](Play& p, int s) {
         const SettleRule rule{p.Pick(0, 3), Money::FromRaw(p.Pick(0, 400) * 2500), p.Pick(0, 6)};
         SetAutoHandling(p.g, s, p.Pick(0, 1), p.Pick(0, kSetToAmount), rule);
       }},
      {1, "adjustment", [](Play& p, int s) { SetAdjustMode(p.g, s, p.Pick(0, 2)); }},
      {1, "odds and place aids",
       [](Play& p, int s) {
         p.g.AutoTakeOdds[s] = p.Pick(0, 1);
         p.g.AutoDownPlace[s] = p.Pick(0, 1);
         p.g.AllowNegBankroll[s] = p.Pick(0, 1);
       }},
      {1, "working on the come-out",
       [](Play& p, int s) {
         if (SeatOccupied(p.g, s)) SetWorkOnComeOut(p.g, s, p.Pick(1, 87), p.Pick(0, 1));
       }},
      {2, "rules", [](Play& p, int) { p.ChangeRules(); }},
      {1, "a script",
       [](Play& p, int s) {
         if (SeatOccupied(p.g, s)) SetSeatScript(p.g, s, p.scripts[p.Pick(0, int(p.scripts.size()) - 1)], "", true);
       }},
      {1, "a script stops", [](Play& p, int s) { SetScriptActive(p.g, s, false); }},
      {1, "save and open", [](Play& p, int) { p.SaveAndOpen(); }},
      {30, "roll", [](Play& p, int) {
         p.NextDice(p.Pick(1, 6), p.Pick(1, 6));
         RollDice(p.g);
       }}};
  return kOperations;
}

TEST(RandomPlay, KeepsEveryRuleAndSavesWhatItPlays) {
  std::vector<int> weights;
  for (const auto& [weight, name, run] : Operations()) weights.push_back(weight);
  for (uint32_t seed = 1; seed <= 8; ++seed) {
    Play p(seed);
    std::discrete_distribution<int> choose(weights.begin(), weights.end());
    for (int s = 1; s <= 4; ++s) AddPlayer(p.g, s, "S" + std::to_string(s), Money::Dollars(s == 4 ? -1 : 2000));
    for (int step = 0; step < 2000; ++step) {
      const auto& [weight, name, run] = Operations()[static_cast<size_t>(choose(p.rng))];
      const int seat = p.Pick(1, 8);
      p.steps.push_back(std::string(name) + " (seat " + std::to_string(seat) + ")");
      if (p.steps.size() > 12) p.steps.pop_front();
      run(p, seat);
      if (testing::Test::HasFatalFailure()) return;
      ASSERT_EQ(GameIsConsistent(p.g), "") << "seed " << seed << ", step " << step << p.Steps();
    }
  }
}

}  // namespace
