// The headless programs over real TCP on 127.0.0.1: a lobby, a host that reports to it
// and three clients that join, bet and end with the host's table.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/autobet/example_scripts.h"
#include "tests/online/process.h"
#include "tests/test_support.h"

namespace {

std::string Bin(const char* name) { return std::string(DICEHALL_BIN_DIR) + "/" + name; }

std::string PortOf(Program& p) {
  const std::string line = p.Line(10000);
  return line.rfind("LISTENING ", 0) == 0 ? line.substr(10) : "";
}

std::vector<std::string> Sim(const TempDir& home, const std::string& who, std::vector<std::string> args) {
  args.insert(args.begin(), {Bin("dicehall-sim"), "--data-dir", (home.path / who).string()});
  return args;
}

TEST(OnlinePrograms, ClientsOfALobbyListedHostEndWithItsTable) {
  TempDir home;
  Program lobby({Bin("dicehall-lobby"), "--port", "0", "--quiet"});
  const std::string lobbyPort = PortOf(lobby);
  ASSERT_NE(lobbyPort, "") << lobby.Errors();
  Program host(
      Sim(home, "host",
          {"--host", "--port", "0", "--roll-interval", "0.02", "--rolls", "300", "--player", "Ann:5000", "--bet",
           "Ann:Pass Line=10", "--bet", "Ann:Place 6=12", "--lobby", "127.0.0.1:" + lobbyPort, "--name", "Zed"}));
  const std::string hostPort = PortOf(host);
  ASSERT_NE(hostPort, "") << host.Errors();
  const std::string table = "127.0.0.1:" + hostPort;
  Program bob(Sim(home, "bob", {"--join", table, "--name", "Bob", "--bet", "Place 8=12", "--bet", "Field=5"}));
  Program cy(Sim(home, "cy", {"--join", table, "--name", "Cy", "--seat", "1R", "--bet", "Don't Pass=10"}));
  // The third finds the table in the lobby by its game name, and bets by script.
  const std::string script = (ExamplesFolder() / "iron_cross.bet").string();
  Program dee(Sim(home, "dee",
                  {"--lobby", "127.0.0.1:" + lobbyPort, "--table", "DiceHall Online", "--player", "Dee:2000:" + script,
                   "--bet", "Dee:Hard 6=5"}));
  for (Program* p : {&bob, &cy, &dee}) EXPECT_NE(p->LineStarting("SEATED "), "") << p->Errors();

  // The lobby lists the table with its host and players while it plays.
  Program list(Sim(home, "list", {"--lobby", "127.0.0.1:" + lobbyPort}));
  const std::string listed = list.Line();
  EXPECT_NE(listed.find("DiceHall Online\tZed\t" + table + "\tOpen"), std::string::npos) << listed;
  EXPECT_EQ(list.Wait(), 0);

  ASSERT_EQ(host.Wait(120000), 0) << host.Errors();
  EXPECT_EQ(host.Line(), "Rolls: 300");
  const std::string hostTable = host.Line();
  for (Program* p : {&bob, &cy, &dee}) {
    ASSERT_EQ(p->Wait(20000), 0) << p->Errors();
    EXPECT_EQ(p->LineStarting("Rolls: "), "Rolls: 300");
    EXPECT_EQ(p->Line(), hostTable) << p->Errors() << host.Errors();
  }
  // Once the host has stopped, its table is gone from the list.
  Program after(Sim(home, "after", {"--lobby", "127.0.0.1:" + lobbyPort}));
  EXPECT_EQ(after.Line(5000), "");
  EXPECT_EQ(after.Wait(), 0);
  lobby.Stop();
  EXPECT_EQ(lobby.Wait(), 0);
}

TEST(OnlinePrograms, AServerStopsCleanlyOnSigterm) {
  TempDir home;
  Program host(
      Sim(home, "host",
          {"--host", "--port", "0", "--roll-interval", "0.05", "--player", "Ann:500", "--bet", "Ann:Pass Line=5"}));
  ASSERT_NE(PortOf(host), "");
  EXPECT_EQ(host.Wait(300), -1) << "the host stopped by itself";
  host.Stop();
  EXPECT_EQ(host.Wait(), 0) << host.Errors();
  EXPECT_EQ(host.LineStarting("Rolls: ").empty(), false);
}

}  // namespace
