#pragma once
// An online table in one thread: a host and its clients, each a Game of its own, on a
// network in memory and one fake clock, driven step by step so nothing is left to timing.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "dice/seeding.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "online/answering_ui.h"
#include "online/client.h"
#include "online/host.h"
#include "online/memory_socket.h"
#include "online/mirror.h"
#include "tests/test_support.h"

using StandingBet = std::pair<int, Money>;  // the bet, its amount

// Each standing bet of the seat that is absent and that the table allows now.
inline void PlaceStandingBets(Game& g, int seat, const std::vector<StandingBet>& bets) {
  for (const auto& [betId, amount] : bets) {
    if (g.BetAmount[seat][betId].raw > 0) continue;
    if ((betId == bet::PassLine || betId == bet::DontPass) && !IsComeOut(g)) continue;
    ChangeBet(g, seat, betId, amount);
  }
}

inline std::unique_ptr<Game> NewTable(UserInterface& ui, Clock& clock, const std::string& folder, int seed) {
  auto g = std::make_unique<Game>();
  g->Ui = &ui;
  g->Time = &clock;
  g->ProgramFolder = folder;
  SetDefaultGame(*g);
  g->Dice.pendingSeed = Money::Dollars(seed);
  SeedRng(*g, true);
  return g;
}

struct OnlinePlayer {
  AnsweringUi ui;
  std::unique_ptr<Game> game;
  std::unique_ptr<Client> client;
  std::vector<StandingBet> bets;
  int seated = 0;
};

inline HostSettings FastHost() {
  HostSettings s;
  s.Port = 0;
  s.CountdownTickMs = 10;
  s.KeepaliveMs = 1000;
  s.AckWaitMs = 200;
  return s;
}

class OnlineTable {
 public:
  TempDir home;
  FakeClock clock;
  MemoryNetwork net;
  HeadlessUi hostUi;
  std::unique_ptr<Game> hostGame;
  std::unique_ptr<Host> host;
  std::vector<std::unique_ptr<OnlinePlayer>> players;
  std::vector<std::string> log;
  std::vector<StandingBet> hostBets;  // for seat 1, the host's own player
  std::function<void()> afterStep;    // another program's timers, run after each step

  explicit OnlineTable(HostSettings settings = FastHost()) {
    hostGame = NewTable(hostUi, clock, home.path.string(), 4242);
    host = std::make_unique<Host>(*hostGame, net, clock, settings);
    host->OnLog = [this](const std::string& line) { log.push_back("host: " + line); };
    host->AfterRoll = [this] {
      if (SeatOccupied(*hostGame, 1)) PlaceStandingBets(*hostGame, 1, hostBets);
    };
    hostGame->OnlinePanel.CountdownToLockout = 1;
    hostGame->OnlinePanel.RollDelay = 1;
    host->OpenTable();
  }
  Game& g() { return *hostGame; }

  OnlinePlayer& Join(const std::string& name, const std::string& seat = "", Money buyIn = Money::Dollars(1000),
                     const std::string& password = "", ClientSettings settings = {}) {
    auto p = std::make_unique<OnlinePlayer>();
    p->ui.Name = name;
    p->ui.Seat = seat;
    p->ui.BuyIn = buyIn;
    p->ui.Password = password;
    p->game = NewTable(p->ui, clock, home.path.string(), 99);
    p->client = std::make_unique<Client>(*p->game, net, clock, settings);
    OnlinePlayer* raw = p.get();
    p->client->OnLog = [this, name](const std::string& line) { log.push_back(name + ": " + line); };
    p->client->OnJoined = [raw] { raw->client->RequestSeat(); };
    p->client->OnSeated = [raw](int s) {
      raw->seated = s;
      if (raw->client->OnlineState == 4) PlaceStandingBets(*raw->game, s, raw->bets);
    };
    auto bet = [raw] {
      if (raw->client->OwnSeat) PlaceStandingBets(*raw->game, raw->client->OwnSeat, raw->bets);
    };
    p->client->AfterRoll = bet;
    p->client->OnBetsOpen = bet;
    p->client->Join("127.0.0.1", host->Port());
    players.push_back(std::move(p));
    Settle();
    return *players.back();
  }

  // Delivers every waiting event.
  void Settle() {
    while (net.Pump() > 0) continue;
  }
  // Lets `ms` of fake time pass in steps of 5 ms, the programs' timers running.
  void Run(int ms) {
    for (int t = 0; t < ms; t += 5) Step();
  }
  void Step() {
    clock.tick += 5;
    if (host) host->Tick();
    for (auto& p : players)
      if (p->client) p->client->Tick();
    Settle();
    if (afterStep) afterStep();
  }
  // Ann at seat 1, the host's own player, with standing bets; no bet is needed to shoot.
  void SeatAnn(std::vector<StandingBet> bets) {
    g().Rules.BetNeededToShoot = 0;
    AddPlayer(g(), 1, "Ann", Money::Dollars(5000));
    hostBets = std::move(bets);
    PlaceStandingBets(g(), 1, hostBets);
  }
  // The table plays on: twenty more rolls leave the client's mirror the host's table, and
  // a newcomer sits down.
  void ExpectPlaysOn(const OnlinePlayer& client) {
    ASSERT_TRUE(RollUntil(host->RollCount + 20));
    Settle();
    EXPECT_EQ(TableDifference(g(), *client.game), "");
    OnlinePlayer& eve = Join("Eve");
    Run(50);
    ASSERT_NE(eve.seated, 0);
    EXPECT_EQ(g().PlayerName[eve.seated], "Eve");
  }
  // Runs until the host has rolled `rolls` times in all; false when it got stuck.
  bool RollUntil(int32_t rolls, int limitMs = 1000000) {
    for (int t = 0; host->RollCount < rolls; t += 5, Step())
      if (t > limitMs) return false;
    return true;
  }
};

// Events that are ignored; a test's peer overrides those it listens for.
struct NoEvents : SocketEvents {
  void OnConnect(int) override {}
  void OnData(int, std::string_view) override {}
  void OnClose(int) override {}
  void OnConnectionRequest(int, int) override {}
};

// A peer that speaks raw bytes: what a hostile or broken client sends, byte for byte.
struct RawPeer : NoEvents {
  OnlineTable& t;
  std::unique_ptr<SocketControl> socket;
  explicit RawPeer(OnlineTable& table) : t(table), socket(table.net.NewSocket(*this, 0)) {
    socket->Connect("127.0.0.1", t.host->Port());
    t.Settle();
  }
  void Send(std::string_view bytes) { socket->Send(bytes); }
  void SendFrame(std::string_view message) { socket->Send(EncodeFrame(message)); }
  // A message the host has taken before the next is sent.
  void Say(const std::string& message) {
    SendFrame(message);
    t.Settle();
  }
  // The handshake of a client that names itself; it is an observer afterwards.
  void Join(const std::string& name) {
    Say("~0011");
    Say("~004" + name);
  }
  bool Connected() const { return socket->State() == kSocketConnected; }
};
