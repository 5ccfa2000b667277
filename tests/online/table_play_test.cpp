// The host's rules of play: resync of a client that lags, a dropped client coming back
// to its seat, the countdown's lockout, the wait list, names, an operator's roll and the
// snapshots taken around online play.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "automation/auto_roll.h"
#include "engine/table_tools.h"
#include "tests/online/online_fixture.h"

namespace {

bool Logged(const OnlineTable& t, const std::string& text) {
  return std::any_of(t.log.begin(), t.log.end(),
                     [&](const std::string& l) { return l.find(text) != std::string::npos; });
}

bool Asked(const OnlinePlayer& p, const std::string& title) {
  return std::find(p.ui.Titles.begin(), p.ui.Titles.end(), title) != p.ui.Titles.end();
}

// A host with Ann at seat 1.
void StartTable(OnlineTable& t) { t.SeatAnn({{bet::PassLine, 10_usd}, {bet::Field, 5_usd}}); }

class OnlinePlay : public testing::Test {
 protected:
  OnlinePlay() { StartTable(t); }
  OnlineTable t;
};

// `g` rolls these dice, and every machine hears of it.
void RollAs(OnlineTable& t, Game& g, int die1, int die2) {
  g.Dice.padPending = true;
  g.Dice.padDie1 = die1;
  g.Dice.padDie2 = die2;
  RollDice(g);
  t.Settle();
}

TEST_F(OnlinePlay, AClientThatWithholdsItsReportIsResyncedAndEndsIdentical) {
  OnlinePlayer& bob = t.Join("Bob");
  PlaceStandingBets(*bob.game, bob.seated, {{bet::DontPass, 10_usd}});
  ToggleAutoRoll(t.g());
  ASSERT_TRUE(t.RollUntil(5));
  bob.client->WithheldReports = 1;
  ASSERT_TRUE(t.RollUntil(8));
  EXPECT_TRUE(Logged(t, "Bob is out of sync"));
  // The roll sent while it was out of sync never reached it; the "~660" after that roll
  // brought the answer that resynced it.
  EXPECT_EQ(TableRolls(bob.game->Stats, kSessionScope) + 1, TableRolls(t.g().Stats, kSessionScope));
  EXPECT_TRUE(Logged(t, "Bob was resynced."));
  EXPECT_TRUE(Asked(bob, "Resync"));
  ASSERT_TRUE(t.RollUntil(t.host->RollCount + 30));
  t.Settle();
  EXPECT_EQ(TableDifference(t.g(), *bob.game), "");
  EXPECT_EQ(bob.client->HostRollCount, t.host->RollCount);
}

TEST_F(OnlinePlay, ABetThatCrossesARollOnTheWireIsResynced) {
  OnlinePlayer& bob = t.Join("Bob");
  // Bob bets, and the host rolls before the bet reaches it: Bob's mirror plays the roll
  // with the bet, the host's table without.
  ChangeBet(*bob.game, bob.seated, bet::Field, 5_usd);
  RollAs(t, t.g(), 1, 1);
  EXPECT_TRUE(Logged(t, "Bob is out of sync: a change made before it had roll 1"));
  EXPECT_TRUE(Logged(t, "Bob was resynced."));
  EXPECT_EQ(TableDifference(t.g(), *bob.game), "");
  EXPECT_EQ(bob.game->Bankroll[bob.seated], 1000_usd) << "the Field bet the host didn't have won nothing";
}

// A bet called off at one machine is off at every table: a hit on it pays nobody.
TEST(OnlineCalls, ABetCalledOffIsOffAtEveryTable) {
  OnlineTable t;
  t.SeatAnn({});
  OnlinePlayer& bob = t.Join("Bob");
  const int seat = bob.seated;
  RollAs(t, t.g(), 2, 2);  // point 4
  ChangeBet(*bob.game, seat, bet::Place4 + 2, 12_usd);
  ChangeBet(t.g(), 1, bet::Place4 + 3, 12_usd);
  t.Settle();
  ASSERT_TRUE(CallBet(*bob.game, seat, bet::Place4 + 2, false));
  ASSERT_TRUE(CallBet(t.g(), 1, bet::Place4 + 3, false));
  t.Settle();
  EXPECT_EQ(t.g().BetWorking[seat][bet::Place4 + 2], -1);
  EXPECT_EQ(bob.game->BetWorking[1][bet::Place4 + 3], -1);
  const Money bobs = t.g().Bankroll[seat], anns = t.g().Bankroll[1];
  RollAs(t, t.g(), 3, 3);
  RollAs(t, t.g(), 4, 4);
  EXPECT_EQ(t.g().Bankroll[seat], bobs);
  EXPECT_EQ(t.g().Bankroll[1], anns);
  EXPECT_EQ(TableDifference(t.g(), *bob.game), "");
}

TEST_F(OnlinePlay, AClientKilledMidHandGetsItsSeatAndBankrollBack) {
  Game& g = t.g();
  OnlinePlayer& bob = t.Join("Bob", "2R", Money::Dollars(700));
  const int seat = bob.seated;
  bob.bets = {{bet::PassLine, 25_usd}};
  PlaceStandingBets(*bob.game, seat, bob.bets);
  t.Settle();
  ToggleAutoRoll(g);
  // Mid-hand: a point is on and Bob's Pass Line stands on it.
  for (int limit = 0; !(g.Table.Point != 0 && g.BetAmount[seat][bet::PassLine].raw > 0); ++limit) {
    ASSERT_LT(limit, 500);
    ASSERT_TRUE(t.RollUntil(t.host->RollCount + 1));
  }
  ToggleAutoRoll(g);
  t.Run(50);
  const Money bankroll = g.Bankroll[seat], line = g.BetAmount[seat][bet::PassLine];
  bob.client.reset();  // killed: its connection just breaks
  t.Run(1200);
  EXPECT_TRUE(Logged(t, "Bob dropped"));
  EXPECT_EQ(g.PlayerName[seat], "Bob");
  EXPECT_EQ(g.Bankroll[seat], bankroll);
  EXPECT_EQ(g.BetAmount[seat][bet::PassLine], line);

  OnlinePlayer& back = t.Join("Bob");
  t.Run(50);
  EXPECT_EQ(back.client->OwnSeat, seat);
  EXPECT_EQ(back.game->Bankroll[seat], bankroll);
  EXPECT_EQ(back.game->BetAmount[seat][bet::PassLine], line);
  EXPECT_EQ(TableDifference(g, *back.game), "");
  EXPECT_TRUE(Logged(t, "Bob came back to the seat at 2R"));
}

TEST(OnlineTimers, ASeatNobodyComesBackToIsFreedAfterTheHold) {
  HostSettings s = FastHost();
  s.RejoinHoldMs = 5000;
  OnlineTable t(s);
  StartTable(t);
  OnlinePlayer& bob = t.Join("Bob");
  const int seat = bob.seated;
  bob.client.reset();
  t.Run(3000);
  EXPECT_EQ(t.g().PlayerName[seat], "Bob");
  t.Run(3000);
  EXPECT_EQ(t.g().PlayerName[seat], "");
  EXPECT_TRUE(Logged(t, "Bob did not come back"));
}

TEST(OnlineTimers, TheCountdownRefusesALateBet) {
  HostSettings s = FastHost();
  s.CountdownTickMs = 1000;
  OnlineTable t(s);
  StartTable(t);
  OnlinePlayer& bob = t.Join("Bob");
  t.host->StartCountdown(2);
  t.Run(1100);
  // Still open: the bet goes to the host.
  EXPECT_EQ(PlaceBet(*bob.game, bob.seated, bet::Field, 5_usd, 0, 0), 5_usd);
  t.Settle();
  EXPECT_EQ(t.g().BetAmount[bob.seated][bet::Field], 5_usd);
  t.Run(1000);
  ASSERT_EQ(bob.client->OnlineState, 5);
  EXPECT_EQ(PlaceBet(*bob.game, bob.seated, bet::Hard8, 5_usd, 0, 0), Money{});
  EXPECT_EQ(bob.ui.LastText(), "No more bets");
  // A request that arrives after the lockout all the same is refused, and the client
  // hears the amount that stands.
  ChangeBet(*bob.game, bob.seated, bet::Hard8, 5_usd);
  t.Settle();
  EXPECT_EQ(t.g().BetAmount[bob.seated][bet::Hard8], Money{});
  EXPECT_EQ(bob.game->BetAmount[bob.seated][bet::Hard8], Money{});
  EXPECT_TRUE(Logged(t, "Bob: a bet after the lockout; refused"));
}

TEST_F(OnlinePlay, TheWaitListSeatsAWaitingPlayerWhenASeatFrees) {
  t.host->Panel.MaxPlayers = 2;
  OnlinePlayer& bob = t.Join("Bob");
  OnlinePlayer& cy = t.Join("Cy");
  EXPECT_NE(bob.seated, 0);
  EXPECT_EQ(cy.seated, 0);
  EXPECT_TRUE(Asked(cy, "Join wait list"));
  EXPECT_TRUE(Asked(cy, "Wait list"));
  EXPECT_EQ(t.host->WaitListCount(), 1);
  bob.client->LeaveSeat();
  t.Run(1100);
  EXPECT_TRUE(Asked(cy, "Player spot open"));
  EXPECT_NE(cy.seated, 0);
  EXPECT_EQ(t.g().PlayerName[cy.seated], "Cy");
  EXPECT_EQ(t.host->WaitListCount(), 0);
  EXPECT_EQ(bob.client->OwnSeat, 0);
}

class OnlineNames : public OnlinePlay, public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(OnlineNames, ARefusedNameIsAskedAgainWithTheReason) {
  const auto& [name, reason] = GetParam();
  t.Join("Bob");
  OnlinePlayer& p = t.Join(name);
  EXPECT_EQ(p.client->OwnName, "");
  bool told = false;
  for (const auto& e : p.ui.transcript) told = told || e.request.Text.find(reason) != std::string::npos;
  EXPECT_TRUE(told) << reason;
}

INSTANTIATE_TEST_SUITE_P(Cases, OnlineNames,
                         testing::Values(std::pair{"HOST", " is reserved."}, std::pair{"bob", "Name already taken"},
                                         std::pair{"1234", "can't be all numeric"}));

TEST_F(OnlinePlay, APasswordIsAskedAndAWrongOneRefused) {
  t.g().OnlinePanel.GamePassword = "sesame";
  OnlinePlayer& wrong = t.Join("Bob", "", 1000_usd, "open");
  EXPECT_EQ(wrong.client->OwnName, "");
  EXPECT_FALSE(wrong.client->Connected());
  EXPECT_TRUE(Logged(t, "wrong password"));
  // A guesser is let go after five tries.
  RawPeer guesser(t);
  guesser.SendFrame("~0011");
  for (int i = 0; i < 5; ++i) guesser.SendFrame("~003guess" + std::to_string(i));
  t.Settle();
  EXPECT_FALSE(guesser.Connected());
  EXPECT_TRUE(Logged(t, "too many wrong passwords"));
  OnlinePlayer& right = t.Join("Cy", "", 1000_usd, "sesame");
  EXPECT_EQ(right.client->OwnName, "Cy");
  EXPECT_NE(right.seated, 0);
}

TEST_F(OnlinePlay, AnOperatorRollsForTheTable) {
  OnlinePlayer& op = t.Join("Olga");
  OnlinePlayer& bob = t.Join("Bob");
  op.client->AskToOperate();
  t.Settle();
  ASSERT_TRUE(op.client->ClientHosting);
  RollAs(t, *op.game, 3, 4);
  EXPECT_EQ(t.host->RollCount, 1);
  EXPECT_EQ(t.g().Table.DiceTotal, 7);
  EXPECT_EQ(TableDifference(t.g(), *op.game), "");
  EXPECT_EQ(TableDifference(t.g(), *bob.game), "");
  // A plain client may not roll.
  RollDice(*bob.game);
  EXPECT_EQ(bob.ui.LastText(), "You're currently connected to an online game and your host has control over rolling.");
}

TEST_F(OnlinePlay, ThePlayersOwnGameComesBackFromItsSnapshotWhenItLeaves) {
  const std::filesystem::path folder = t.home.path;
  OnlinePlayer p;
  p.game = NewTable(p.ui, t.clock, folder.string(), 7);
  Game& own = *p.game;
  AddPlayer(own, 5, "Zed", Money::Dollars(333));
  own.GameFileName = (folder / "mine.crp").string();
  p.ui.Name = "Bob";
  Client client(own, t.net, t.clock);
  client.Join("127.0.0.1", t.host->Port());
  t.Settle();
  EXPECT_TRUE(std::filesystem::exists(folder / "restore.crp"));
  EXPECT_EQ(own.PlayerName[1], "Ann") << "the mirror holds the host's table";
  client.Leave();
  EXPECT_EQ(own.PlayerName[5], "Zed");
  EXPECT_EQ(own.Bankroll[5], 333_usd);
  EXPECT_FALSE(SeatOccupied(own, 1));
  EXPECT_EQ(own.GameFileName, (folder / "mine.crp").string()) << "a snapshot doesn't rename the game";

  // The host's table as it opened, before Ann sat down, is put back from "restore host.crp".
  Game& host = t.g();
  ASSERT_TRUE(std::filesystem::exists(folder / "restore host.crp"));
  ASSERT_TRUE(RestoreFile(host, t.host->Restore, kHostRestoreFile, true));
  EXPECT_FALSE(SeatOccupied(host, 1));

  // A table without a folder of its own writes no snapshot.
  host.ProgramFolder.clear();
  EXPECT_FALSE(RestoreFile(host, t.host->Restore, kHostRestoreFile, false));
}

TEST_F(OnlinePlay, AMachineThatReportsNoConnectionHasLostItsTable) {
  EXPECT_TRUE(InternetConnectedState("127.0.0.1")) << "the loopback interface is up wherever the tests run";
  ClientSettings offline;
  offline.ConnectedState = [](const std::string&) { return false; };
  Client& client = *t.Join("Bob", "", 1000_usd, "", offline).client;
  ASSERT_EQ(client.OnlineState, 4);
  t.clock.tick += 6000;
  client.Tick();
  t.Settle();
  EXPECT_FALSE(client.Connected());
  ASSERT_FALSE(client.ChatLines.empty());
  EXPECT_EQ(client.ChatLines.back().rfind("Internet connection lost at ", 0), 0u);
}

TEST_F(OnlinePlay, TheHostMayNotBetForAClientsSeatNorAClientForAnotherSeat) {
  OnlinePlayer& bob = t.Join("Bob");
  EXPECT_EQ(PlaceBet(t.g(), bob.seated, bet::Field, 5_usd, 0, 0), Money{});
  EXPECT_EQ(t.hostUi.LastText(),
            "You're currently connected to an online game and are not allowed to bet for online players.");
  EXPECT_EQ(PlaceBet(*bob.game, 1, bet::Field, 5_usd, 0, 0), Money{});
  EXPECT_EQ(
      bob.ui.LastText(),
      "You're currently connected to an online game and are not allowed to add, delete or control other players.");
  EXPECT_EQ(bob.game->BetAmount[1][bet::Field], 5_usd) << "Ann's own Field bet stands in the mirror";
}

TEST_F(OnlinePlay, AClientThatLeavesItsSeatStaysOnAsAnObserver) {
  OnlinePlayer& bob = t.Join("Bob");
  const int seat = bob.seated;
  bob.ui.replies.push_back({kButtonYes, "", false});
  EXPECT_FALSE(RemovePlayer(*bob.game, seat));  // the mirror asks; the host removes
  t.Settle();
  EXPECT_EQ(t.g().PlayerName[seat], "");
  EXPECT_EQ(bob.game->PlayerName[seat], "");
  EXPECT_EQ(bob.client->OwnSeat, 0);
  EXPECT_TRUE(bob.client->Connected());
  EXPECT_TRUE(bob.game->ClientObserver);
  // The visitor log has its record of 110 bytes.
  EXPECT_EQ(std::filesystem::file_size(t.home.path / "DiceHall Visitor Log"), 110u);
}

}  // namespace
