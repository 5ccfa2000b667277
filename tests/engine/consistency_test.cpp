// The table's rules checked as a whole: a played table keeps them, and each kind of
// damage done behind the procedures' back is named.

#include "engine/consistency.h"

#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "automation/auto_roll.h"
#include "dice/seeding.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

// A table two players have played a few rolls on, with bets on the layout.
struct PlayedTable : TestTable {
  PlayedTable() {
    Seat(1, "Ann", 500_usd);
    Seat(2, "Bob", 300_usd);
    ChangeBet(g, 1, bet::PassLine, 10_usd);
    ChangeBet(g, 2, bet::Field, 5_usd);
    Roll(4, 2);
    ChangeBet(g, 1, bet::PassLineOdds, 20_usd);
    ChangeBet(g, 2, bet::Buy4, 20_usd);
    Roll(3, 3);
    Roll(5, 5);
  }
};

using Damage = std::tuple<const char*, std::function<void(Game&)>, const char*>;  // what, the damage, the words

class BrokenTables : public testing::TestWithParam<Damage> {};

TEST_P(BrokenTables, AreCaughtWithTheRuleTheyBreak) {
  PlayedTable t;
  ASSERT_EQ(GameIsConsistent(t.g), "");
  const auto& [what, apply, says] = GetParam();
  apply(t.g);
  EXPECT_NE(GameIsConsistent(t.g).find(says), std::string::npos) << what << ": " << GameIsConsistent(t.g);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BrokenTables,
    testing::Values(
        Damage{"a bankroll changed behind ChangeBet's back",
               [](Game& g) {
                 for (int scope : kCountedScopes) g.Bankroll[1 + scope] += 5_usd;
               },
               "but the buy-ins"},
        Damage{"one scope of a bankroll", [](Game& g) { g.Bankroll[1 + kAllScope] += 1_usd; },
               "the bankroll of scope column"},
        Damage{"a bet amount without its OnTable", [](Game& g) { g.BetAmount[1][bet::PassLine] += 5_usd; },
               "OnTable is"},
        Damage{"vig held without its OnTable", [](Game& g) { g.BuyVigHeld[2][0] += 1_usd; }, "OnTable is"},
        Damage{"an amount on a row that holds no bet", [](Game& g) { g.BetAmount[1][150] = 5_usd; }, "row 150"},
        Damage{"a working state of 3", [](Game& g) { g.BetWorking[1][bet::Place4 + 2] = 3; }, "working state 3"},
        Damage{"a bet resting in the wrong state", [](Game& g) { g.BetWorking[1][bet::Hard4] = 0; }, "rests in"},
        Damage{"a point of 7", [](Game& g) { g.Table.Point = 7; }, "which is no point"},
        Damage{"a roll count off by one", [](Game& g) { ++g.Stats.RollCount[kSessionScope][0]; }, "by their totals"},
        Damage{"a hand that outnumbers its session",
               [](Game& g) {
                 ++g.Stats.RollCount[kHandScope][0];
                 ++g.Stats.RollCount[kHandScope][6];
               },
               "in the hand"},
        Damage{"a decision without its win or loss",
               [](Game& g) { g.Stats.BetStats[kSessionScope + 1][bet::PassLine][0] += 1_usd; }, "decisions but"},
        Damage{"a holder's mark without the amount", [](Game& g) { g.BetHolders[bet::Hard8] |= 2; }, "holders of"},
        Damage{"a shooter in an empty seat", [](Game& g) { g.Table.Shooter = 7; }, "shooter's seat"},
        Damage{"a bet left on an empty seat", [](Game& g) { g.BetAmount[5][bet::Field] = 5_usd; },
               "seat 5 has no player but holds $5"},
        Damage{"two players whose names a file can't tell apart",
               [](Game& g) {
                 g.PlayerName.Set(2, "Ann\xF0\x9F\x98\x80");
                 g.PlayerName.Set(1, "Ann\xF0\x9F\x98\x81");
               },
               "same name"}));

// Eight seats each playing one of the example systems, a million seeded rolls, the table
// checked after every one of them.
TEST(Consistency, HoldsAfterEveryRollOfEightSystems) {
  TestTable t;
  Game& g = t.g;
  SeedRngWith(g, 2026);
  const std::vector<std::vector<std::string>> scripts = ExampleScripts();
  ASSERT_EQ(scripts.size(), 8u);
  for (int s = 1; s <= 8; ++s) {
    AddPlayer(g, s, std::string("P") + char('0' + s), -1000000_usd);  // never broke
    SetSeatScript(g, s, scripts[s - 1], "");
  }
  struct Check {
    int64_t rolls = 0;
    std::string first;
  } check;
  g.Auto.AfterRoll = [](Game& table, void* data) {
    Check& c = *static_cast<Check*>(data);
    if (!c.first.empty()) return;
    c.first = GameIsConsistent(table);
    if (!c.first.empty()) c.first = "roll " + std::to_string(c.rolls) + ": " + c.first;
    ++c.rolls;
  };
  g.Auto.AfterRollData = &check;
  g.Auto.AutoStopRolls = 1000000_usd;
  g.Auto.AutoRollThrottle = 0;
  ToggleAutoRoll(g);
  RuleSet rules = g.Rules;
  rules.BetNeededToShoot = 0;  // the dice roll whoever holds them
  ReplaceRules(g, rules);
  ASSERT_TRUE(ActivateScripts(g));
  RollDice(g);
  EXPECT_EQ(check.first, "");
  EXPECT_EQ(g.Stats.RollCount[kSessionScope][0], 1000000) << g.StopReason;
}

}  // namespace
