// The lobby lists a host within a report interval, keeps it while it reports, lets a
// client join through the list, and drops the table once it stops.

#include "online/lobby.h"

#include <gtest/gtest.h>

#include "tests/online/online_fixture.h"

namespace {

LobbySettings QuickLobby() { return LobbySettings{.Port = 0, .StaleMs = 3000}; }

TEST(OnlineLobby, ListsAReportingHostAndDropsItAfterItStops) {
  HostSettings s = FastHost();
  s.LobbyReportMs = 1000;
  OnlineTable t(s);
  t.g().HostName = "Zed";
  AddPlayer(t.g(), 1, "Ann", 500_usd);
  LobbyServer lobby(t.net, t.clock, QuickLobby());
  ASSERT_TRUE(lobby.Open());
  t.afterStep = [&] { lobby.Tick(); };
  t.host->ConnectLobby("127.0.0.1", lobby.Port());
  t.Run(1000);
  ASSERT_EQ(lobby.Tables().size(), 1u);
  TableListing listed = lobby.Tables()[0];
  EXPECT_EQ(listed.GameName, "DiceHall Online");
  EXPECT_EQ(listed.HostName, "Zed");
  EXPECT_EQ(listed.Address, "127.0.0.1:" + std::to_string(t.host->Port()));
  EXPECT_EQ(listed.Status, "Open");
  EXPECT_EQ(listed.Players[0], "Ann");
  // Reports keep it listed long past the time a silent table is dropped.
  t.Run(10000);
  EXPECT_EQ(lobby.Tables().size(), 1u);

  // A client finds it in the list and joins through it.
  AnsweringUi ui;
  ui.Name = "Bob";
  auto game = NewTable(ui, t.clock, t.home.path.string(), 5);
  Client client(*game, t.net, t.clock);
  client.OnJoined = [&] { client.RequestSeat(); };
  client.ConnectLobby("127.0.0.1", lobby.Port());
  t.Run(100);
  ASSERT_EQ(client.Tables.size(), 1u);
  EXPECT_EQ(client.Tables[0].Players[0], "Ann");
  ASSERT_TRUE(client.ChooseTable(client.Tables[0]));
  t.Run(1100);
  EXPECT_NE(client.OwnSeat, 0);
  EXPECT_EQ(lobby.Tables()[0].PlayerCount, 2);

  // Closed, the table reports so with no names; gone, it leaves the list.
  t.host->CloseTable();
  t.Run(10);
  ASSERT_EQ(lobby.Tables().size(), 1u);
  EXPECT_EQ(lobby.Tables()[0].Status, "Closed");
  EXPECT_EQ(lobby.Tables()[0].Players[0], "");
  t.host.reset();
  t.Run(10);
  EXPECT_TRUE(lobby.Tables().empty());
}

TEST(OnlineLobby, ATableThatStopsReportingLeavesTheList) {
  OnlineTable t;
  LobbyServer lobby(t.net, t.clock, QuickLobby());
  std::vector<std::string> said;
  lobby.OnLog = [&](const std::string& line) { said.push_back(line); };
  ASSERT_TRUE(lobby.Open());
  t.afterStep = [&] { lobby.Tick(); };
  NoEvents events;
  auto peer = t.net.NewSocket(events, 1);
  peer->Connect("127.0.0.1", lobby.Port());
  t.Settle();
  TableListing report;
  report.GameName = "Quiet table";
  report.Address = "0.0.0.0:5000";
  report.Status = "Open";
  std::string m = "~555";
  PutListing(m, report);
  peer->Send(EncodeFrame(m));
  t.Run(100);
  ASSERT_EQ(lobby.Tables().size(), 1u);
  // Listening on every address, the table is reached by the address it reported from.
  EXPECT_EQ(lobby.Tables()[0].Address, "127.0.0.1:5000");
  t.Run(3000);
  EXPECT_TRUE(lobby.Tables().empty());
  ASSERT_FALSE(said.empty());
  EXPECT_EQ(said.back(), "the table Quiet table left the list: no report for 3 seconds");
}

}  // namespace
