// A host and three clients play 2,000 rolls with bets from every seat, and then random
// play: bets called on and off, dice passed, seats left and taken, clients dropped and
// back, while the host rolls under Auto-Roll. Whenever the table comes to rest every
// connected mirror must be the host's table, which keeps its rules after every step.

#include <gtest/gtest.h>

#include <deque>
#include <random>

#include "app/sim/sim.h"
#include "autobet/interpreter.h"
#include "automation/auto_play.h"
#include "automation/auto_roll.h"
#include "engine/consistency.h"
#include "engine/handling.h"
#include "engine/table_tools.h"
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

// ---- Random play --------------------------------------------------------------------------

struct RandomTable : OnlineTable {
  std::mt19937 rng;
  std::deque<std::string> steps;  // the last few, to tell what led to a failure
  const std::vector<std::string> names = {"Bob", "Cy", "Dee"};

  explicit RandomTable(uint32_t seed) : rng(seed) {
    SeatAnn({});
    for (const std::string& name : names) Join(name);
  }
  int Pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); }
  std::string Steps() const {
    std::string text;
    for (const std::string& s : steps) text += "\n  " + s;
    return text;
  }
  // A random bet of the seat played at `table`. Right Field is left out: on a 9 it loses
  // and then wins what handling left on it, and a mirror can't know what the seat's own
  // machine decided in between.
  void Bet(Game& table, int seat) {
    int bet = Pick(1, kBets);
    if (bet == bet::RightField) bet = bet::Field;
    ChangeBet(table, seat, bet, Money::FromRaw(static_cast<int64_t>(Pick(-20, 60)) * 2500));
  }
  void Rejoin(size_t k) {
    Join(names[k]);
    std::swap(players[k], players.back());  // the newcomer takes the old one's place
    players.pop_back();
  }
  void ExpectMirrorsAtRest(uint32_t seed) {
    if (g().Auto.AutoRollActive) ToggleAutoRoll(g());
    Run(3000);
    for (const auto& p : players) {
      if (p->client && p->client->OnlineState >= 3) {
        ASSERT_EQ(TableDifference(g(), *p->game), "") << "seed " << seed << ", " << p->ui.Name << Steps();
      }
    }
  }
};

TEST(RandomOnlinePlay, EveryMirrorEndsAsTheHostsTable) {
  for (uint32_t seed = 1; seed <= 60; ++seed) {
    RandomTable t(seed);
    for (int step = 0; step < 300; ++step) {
      const int op = t.Pick(0, 99);
      const size_t k = static_cast<size_t>(t.Pick(0, 2));
      OnlinePlayer& p = *t.players[k];
      const int seat = p.client ? p.client->OwnSeat : 0;
      std::string what;
      if (op < 20) {
        what = "Ann bets";
        t.Bet(t.g(), 1);
      } else if (op < 40 && seat != 0) {
        what = p.ui.Name + " bets";
        t.Bet(*p.game, seat);
      } else if (op < 45 && seat != 0) {
        what = p.ui.Name + " calls a bet";
        CallBet(*p.game, seat, t.Pick(1, kBets), t.Pick(0, 1));
      } else if (op < 47) {
        what = "Ann calls a bet";
        CallBet(t.g(), 1, t.Pick(1, kBets), t.Pick(0, 1));
      } else if (op < 48 && seat != 0) {
        what = p.ui.Name + " changes what works on the come-out";
        SetWorkOnComeOut(*p.game, seat, t.Pick(1, 87), t.Pick(0, 1));
      } else if (op < 49) {
        what = "Ann changes what works on the come-out";
        SetWorkOnComeOut(t.g(), 1, t.Pick(1, 87), t.Pick(0, 1));
      } else if (op < 50 && p.client) {
        what = p.ui.Name + " sets auto-pass";
        p.client->SetAutoPass(t.Pick(0, 1));
      } else if (op < 51 && p.client) {
        what = p.ui.Name + " leaves the seat";
        p.client->LeaveSeat();
      } else if (op < 53 && p.client) {
        what = p.ui.Name + " asks for a seat";
        p.client->RequestSeat();
      } else if (op < 54 && p.client) {
        what = p.ui.Name + " drops";
        p.client.reset();
      } else if (op < 56 && !p.client) {
        what = p.ui.Name + " rejoins";
        t.Rejoin(k);
      } else if (op < 60) {
        what = "Auto-Roll switched";
        ToggleAutoRoll(t.g());
      } else {
        what = "time passes";
        t.Run(t.Pick(5, 400));
      }
      t.steps.push_back(what);
      if (t.steps.size() > 15) t.steps.pop_front();
      ASSERT_EQ(GameIsConsistent(t.g()), "") << "seed " << seed << ", step " << step << t.Steps();
      if (step % 60 == 59) {
        t.ExpectMirrorsAtRest(seed);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

}  // namespace
