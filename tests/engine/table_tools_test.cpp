// The table's tools on a seat's bets: Call On and Call Off with their rest states, the
// Buy tool moving a Place bet, and renaming a player.

#include "engine/table_tools.h"

#include <gtest/gtest.h>

#include <tuple>

#include "tests/engine/line_table.h"

namespace {

constexpr int kPlace6 = bet::Place4 + 2, kBuy6 = bet::Buy4 + 2;

TEST(TableTools, CallingABetOnAndOffReturnsItToItsRestState) {
  // A Place bet rests off on the come-out (0) and working with a point (1).
  // What, a point on, the calls in order (true On, false Off), the state the bet ends in and
  // whether the last call changed it.
  const std::tuple<const char*, bool, std::vector<bool>, int, bool> cases[] = {
      {"on, come-out", false, {true}, 2, true},
      {"on twice", false, {true, true}, 2, false},
      {"on then off, come-out", false, {true, false}, 0, true},
      {"off, point on", true, {false}, -1, true},
      {"off then on, point on", true, {false, true}, 1, true}};
  for (const auto& [name, pointOn, calls, working, lastChanged] : cases) {
    AnnTable t;
    t.Bet(1, bet::PassLine, 10_usd);
    if (pointOn) t.RollTotal(6);
    ASSERT_EQ(t.g.Table.Point, pointOn ? 6 : 0) << name;
    t.Bet(1, kPlace6, 12_usd);
    bool changed = false;
    for (bool on : calls) changed = CallBet(t.g, 1, kPlace6, on);
    EXPECT_EQ(t.g.BetWorking[1][kPlace6], working) << name;
    EXPECT_EQ(changed, lastChanged) << name;
  }
}

TEST(TableTools, ABetThatAlwaysWorksOrHasNoAmountIsNotCalled) {
  AnnTable t;
  t.Bet(1, bet::PassLine, 10_usd);
  const int32_t working = t.g.BetWorking[1][bet::PassLine];
  EXPECT_FALSE(CallBet(t.g, 1, bet::PassLine, false));
  EXPECT_NE(t.LastMessage().Text.find("Pass Line"), std::string::npos);
  EXPECT_EQ(t.g.BetWorking[1][bet::PassLine], working);
  const int told = t.Messages();
  EXPECT_FALSE(CallBet(t.g, 1, kPlace6, true)) << "no amount on Place 6";
  EXPECT_EQ(t.Messages(), told);
}

TEST(TableTools, TheBuyToolMovesAPlaceBetAndItsCall) {
  AnnTable t;
  t.PassLineThen(6);
  t.Bet(1, kPlace6, 30_usd);
  CallBet(t.g, 1, kPlace6, false);
  EXPECT_EQ(BuyPlaceBet(t.g, 1, kPlace6), 30_usd);
  EXPECT_EQ(t.Amount(1, kPlace6), 0_usd);
  EXPECT_EQ(t.Amount(1, kBuy6), 30_usd);
  EXPECT_EQ(t.g.BetWorking[1][kBuy6], -1) << "called off on its new row";
  // Any other bet is refused and nothing moves.
  t.Bet(1, bet::Field, 5_usd);
  EXPECT_EQ(BuyPlaceBet(t.g, 1, bet::Field), 0_usd);
  EXPECT_EQ(t.Amount(1, bet::Field), 5_usd);
}

TEST(TableTools, ARenamedPlayerKeepsAFreeNameOnly) {
  AnnTable t;
  t.Seat(2, "Bob", 100_usd);
  EXPECT_EQ(RenamePlayer(t.g, 1, " Annie "), "");
  EXPECT_EQ(t.g.PlayerName[1], "Annie");
  EXPECT_NE(RenamePlayer(t.g, 1, "Bob"), "");
  EXPECT_EQ(t.g.PlayerName[1], "Annie");
}

}  // namespace
