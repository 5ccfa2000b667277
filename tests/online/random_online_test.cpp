// Random play at an online table: the host's player and three clients bet, call bets on
// and off, pass the dice, leave their seats and come back, drop and rejoin, while the host
// rolls under Auto-Roll. Whenever the table comes to rest, every connected mirror must be
// the host's table, and the host's table must keep its rules after every step.

#include <gtest/gtest.h>

#include <deque>
#include <random>

#include "automation/auto_play.h"
#include "automation/auto_roll.h"
#include "engine/consistency.h"
#include "engine/table_tools.h"
#include "tests/online/online_fixture.h"

namespace {

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
