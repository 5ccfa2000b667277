// A host and three clients play 2,000 rolls with bets from every seat; every mirror must
// end as the host's table is.

#include <gtest/gtest.h>

#include <filesystem>

#include "app/sim/sim.h"
#include "autobet/interpreter.h"
#include "automation/auto_roll.h"
#include "engine/handling.h"
#include "tests/autobet/example_scripts.h"
#include "tests/online/online_fixture.h"

namespace {

TEST(OnlineLoopback, EveryMirrorEndsAsTheHostsTable) {
  OnlineTable t;
  Game& g = t.g();
  // A shooter whose bankroll ran dry must not stop the run: no bet is needed to shoot.
  g.Rules.BetNeededToShoot = 0;
  AddPlayer(g, 1, "Ann", Money::Dollars(5000));
  g.AutoHandleWin[1] = kSameBet;
  t.hostBets = {{bet::PassLine, 10_usd}, {PointRow(BetFamily::Place, 6), 12_usd}, {bet::Hard8, 5_usd}};
  OnlinePlayer& bob = t.Join("Bob", "3L");
  bob.bets = {{PointRow(BetFamily::Place, 8), 12_usd}, {bet::Field, 5_usd}, {bet::Come, 5_usd}};
  bob.game->AutoHandleWin[bob.seated] = kPressUnitOrRemainder;
  OnlinePlayer& cy = t.Join("Cy", "1R");
  cy.bets = {{bet::DontPass, 10_usd}, {bet::Buy4, 20_usd}, {bet::Lay10, 40_usd}};
  OnlinePlayer& dee = t.Join("Dee", "", Money::Dollars(20000));
  dee.bets = {
      {bet::PassLine, 25_usd}, {PointRow(BetFamily::Place, 5), 25_usd}, {bet::Horn, 4_usd}, {bet::DontCome, 10_usd}};
  // Bob makes no line bet and leaves the dice to the others.
  bob.client->SetAutoPass(true);
  for (const OnlinePlayer* p : {&bob, &cy, &dee}) ASSERT_NE(p->seated, 0) << p->ui.Name;
  PlaceStandingBets(g, 1, t.hostBets);
  ToggleAutoRoll(g);
  for (int32_t roll = 1; roll <= 2000; ++roll) {
    ASSERT_TRUE(t.RollUntil(roll)) << "the host stopped rolling at " << t.host->RollCount << ": " << g.StopReason
                                   << t.hostUi.LastText();
    t.Settle();
    for (auto& p : t.players)
      ASSERT_EQ(TableDifference(g, *p->game), "") << p->ui.Name << " differs after roll " << roll << ", dice "
                                                  << g.Table.Die1 << g.Table.Die2 << ", point " << g.Table.Point;
  }
  if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
  t.Run(100);
  for (auto& p : t.players) {
    EXPECT_EQ(TableDifference(g, *p->game), "") << p->ui.Name;
    EXPECT_EQ(TableDigest(g), TableDigest(*p->game)) << p->ui.Name;
    EXPECT_EQ(StatisticsDigest(g), StatisticsDigest(*p->game)) << p->ui.Name;
    EXPECT_EQ(p->client->HostRollCount, t.host->RollCount);
  }
  for (const std::string& line : t.log) ADD_FAILURE() << line;
}

TEST(OnlineLoopback, AClientThatBetsByScriptEndsAsTheHostsTable) {
  OnlineTable t;
  Game& g = t.g();
  t.SeatAnn({{bet::PassLine, 10_usd}});
  OnlinePlayer& bob = t.Join("Bob");
  Game& mirror = *bob.game;
  const int seat = bob.seated;
  std::vector<std::string> lines;
  ASSERT_TRUE(ReadScriptLines((ExamplesFolder() / "martingale_passline.bet").string(), lines));
  // A headless client: silent rolls, no wait after a script cycle.
  mirror.SilentMode = true;
  mirror.Auto.HyperDrive = true;
  mirror.AutoBet.ScriptSource[seat] = lines;
  mirror.ScriptActive[seat] = true;
  mirror.AutoBet.ScriptsCompiled = false;
  ASSERT_TRUE(CompileActiveScripts(mirror));
  mirror.AutoBet.InitializingScript = true;
  RunAutoBet(mirror);
  mirror.AutoBet.InitializingScript = false;
  t.Settle();
  ToggleAutoRoll(g);
  for (int32_t roll = 1; roll <= 500; ++roll) {
    ASSERT_TRUE(t.RollUntil(roll));
    t.Settle();
    ASSERT_EQ(TableDifference(g, mirror), "") << "after roll " << roll;
  }
  EXPECT_NE(g.Bankroll[seat], 1000_usd) << "the script played";
}

}  // namespace
