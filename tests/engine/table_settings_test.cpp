// Settings a program changes for a player: a value in range is taken, any other is
// refused and the setting stays as it was.

#include "engine/table_settings.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <tuple>

#include "automation/auto_roll.h"
#include "engine/consistency.h"
#include "engine/handling.h"
#include "engine/placement.h"
#include "tests/test_support.h"

namespace {

// What; the change, with what the procedure returned if anything; whether the value was taken;
// whether it should be.
using Case = std::tuple<const char*, std::function<std::optional<bool>(Game&)>, std::function<bool(const Game&)>, bool>;

const SettleRule kRule{2, 3_usd, 1};

std::vector<Case> Cases() {
  return {{"language 5", [](Game& g) { return SetLanguage(g, 5), std::nullopt; },
           [](const Game& g) { return g.LanguageId == 5; }, true},
          {"language 6", [](Game& g) { return SetLanguage(g, 6), std::nullopt; },
           [](const Game& g) { return g.LanguageId == 6; }, false},
          {"bet to shoot 2", [](Game& g) { return SetBetNeededToShoot(g, 2), std::nullopt; },
           [](const Game& g) { return g.Rules.BetNeededToShoot == 2; }, true},
          {"bet to shoot 3", [](Game& g) { return SetBetNeededToShoot(g, 3), std::nullopt; },
           [](const Game& g) { return g.Rules.BetNeededToShoot == 3; }, false},
          {"settle rule row 3", [](Game& g) { return SetSettleRule(g, 2, 3, kRule), std::nullopt; },
           [](const Game& g) { return g.SettleRules[2][3].Operand == 3_usd; }, true},
          {"settle rule of seat 0", [](Game& g) { return SetSettleRule(g, 0, 3, kRule), std::nullopt; },
           [](const Game& g) { return g.SettleRules[0][3].Operand == 3_usd; }, false},
          {"handling set to amount",
           [](Game& g) {
             return SetSeatHandling(g, 3, {kSetToAmount, kModifyByRule, {kRule, kRule, kRule, kRule}}), std::nullopt;
           },
           [](const Game& g) {
             return g.AutoHandleWin[3] == kSetToAmount && g.AutoHandleLose[3] == kModifyByRule &&
                    g.SettleRules[3][1].Operator == 2;
           },
           true},
          {"handling beyond the table",
           [](Game& g) {
             return SetSeatHandling(g, 3, {kSetToAmount + 1, -1, {}}), std::nullopt;
           },
           [](const Game& g) { return g.AutoHandleWin[3] == kSetToAmount + 1 || g.AutoHandleLose[3] == -1; }, false},
          {"auto-stop 12.75 rolls", [](Game& g) { return SetAutoStopRolls(g, Money::FromDouble(12.75)); },
           [](const Game& g) { return g.Auto.AutoStopRolls == 12_usd; }, true},
          {"auto-stop -1 rolls", [](Game& g) { return SetAutoStopRolls(g, -1_usd); },
           [](const Game& g) { return g.Auto.AutoStopRolls == -1_usd; }, false},
          {"delay 300 s", [](Game& g) { return SetAutoRollDelay(g, 300_usd); },
           [](const Game& g) { return g.Auto.AutoRollDelay == 300.0; }, true},
          {"delay 300.01 s", [](Game& g) { return SetAutoRollDelay(g, Money::FromDouble(300.01)); },
           [](const Game& g) { return g.Auto.AutoRollDelay > 300.0; }, false}};
}

TEST(TableSettings, TakeValuesInRangeAndRefuseTheRest) {
  for (const auto& [name, change, taken, accepted] : Cases()) {
    TestTable t;
    const std::optional<bool> returned = change(t.g);
    if (returned) {
      EXPECT_EQ(*returned, accepted) << name;
    }
    EXPECT_EQ(taken(t.g), accepted) << name;
  }
}

TEST(TableSettings, AScriptSwitchedOffIsCompiledAgainBeforeItRuns) {
  TestTable t;
  SetSeatScript(t.g, 1, {"Bet $5 on Pass Line"}, "mine.bet", false);
  EXPECT_FALSE(t.g.ScriptActive[1]);
  t.g.AutoBet.ScriptsCompiled = true;
  SetScriptActive(t.g, 1, true);
  EXPECT_TRUE(t.g.ScriptActive[1]);
  EXPECT_FALSE(t.g.AutoBet.ScriptsCompiled);
  // The handling taken from one seat and given to another is the same.
  SetAutoHandling(t.g, 1, true, kSetToAmount, kRule);
  SetSeatHandling(t.g, 4, HandlingOf(t.g, 1));
  EXPECT_EQ(t.g.AutoHandleWin[4], kSetToAmount);
  EXPECT_EQ(t.g.SettleRules[4][1].Operand, 3_usd);
}

// Vig held on a standing Buy counts as wagered only while the rules charge it up front: a
// change of the rule moves it out of OnTable, and the bet then loses without it.
TEST(TableSettings, HeldVigFollowsTheRuleThatCharges) {
  TestTable t;
  t.Seat(1, "Ann", 1000_usd);
  t.g.SilentMode = true;
  ChangeBet(t.g, 1, bet::PassLine, 10_usd);
  t.Roll(2, 3);  // point 5
  ChangeBet(t.g, 1, bet::Buy4, 20_usd);
  ASSERT_EQ(t.g.BuyVigHeld[1][0], 1_usd);
  ASSERT_EQ(t.g.OnTable[1], 31_usd);
  RuleSet rules = t.g.Rules;
  rules.ChargeAllBuy = false;
  ReplaceRules(t.g, rules);
  EXPECT_EQ(t.g.OnTable[1], 30_usd);
  EXPECT_EQ(GameIsConsistent(t.g), "");
  t.Roll(3, 4);  // seven out: the line and the Buy lose, the vig isn't charged
  EXPECT_EQ(t.g.Bankroll[1], 970_usd);
  EXPECT_EQ(t.g.OnTable[1], Money{});
  // And back: vig held when the rule changes is wagered again.
  ChangeBet(t.g, 1, bet::Buy10, 20_usd);
  rules.ChargeAllBuy = true;
  ReplaceRules(t.g, rules);
  EXPECT_EQ(t.g.OnTable[1], 21_usd);
  EXPECT_EQ(GameIsConsistent(t.g), "");
}

// New rules of what works on the come-out are the seats' defaults at once: a bet resting on
// the come-out follows, a bet called on or off keeps its call.
TEST(TableSettings, BetsRestingOnTheComeOutFollowNewRules) {
  TestTable t;
  t.Seat(1, "Ann", 1000_usd);
  const int place6 = bet::Place4 + 2, place8 = bet::Place4 + 3;
  ChangeBet(t.g, 1, place6, 12_usd);
  ChangeBet(t.g, 1, place8, 12_usd);
  t.g.BetWorking[1][place8] = -1;  // called off
  ASSERT_EQ(t.g.BetWorking[1][place6], 0);
  RuleSet rules = t.g.Rules;
  rules.WorkOnComeOut[place6][1] = rules.WorkOnComeOut[place8][1] = true;
  ReplaceRules(t.g, rules);
  EXPECT_EQ(t.g.DefaultWorking[1][place6], 1);
  EXPECT_EQ(t.g.BetWorking[1][place6], 1);
  EXPECT_EQ(t.g.BetWorking[1][place8], -1);
  EXPECT_EQ(GameIsConsistent(t.g), "");
}

}  // namespace
