#pragma once
// The lobby: a directory of open tables. Hosts report their table ("~555") on every
// change and at least once a report interval; clients ask for the list ("~501") and get
// it as "~516" records. A table that stops reporting, or whose connection closes, leaves
// the list.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/clock.h"
#include "engine/money.h"
#include "online/codes.h"
#include "online/connection.h"
#include "online/socket_control.h"

constexpr int kLobbyPort = 15153;

struct TableListing {
  std::string GameName, HostName, Address, Status;
  Money MinBet, MaxBet;
  std::string Odds;
  Money MinBuyIn, MaxBuyIn;
  int PasswordFlag = 0;
  std::vector<std::string> Players = std::vector<std::string>(8);
  int PlayerCount = 0, WaitListCount = 0, ObserverCount = 0;
  std::string Notes;
  bool Chosen = false;  // local: the client connects to this one
};

// The listing of record `r` of a "~516" or "~555" message read by ReadMessage.
TableListing ListingOf(const ParsedMessage& m, int r);
// Appends the fields of a listing (after its code).
void PutListing(std::string& m, const TableListing& t);
// "HOST:PORT" to its parts; false when it isn't one.
bool SplitAddress(const std::string& address, std::string& host, int& port);

struct LobbySettings {
  std::string Address = "127.0.0.1";
  int Port = kLobbyPort;
  std::string Line = "Welcome to the DiceHall lobby.";
  std::string Terms = "Play fair and be kind at the tables.";
  int StaleMs = 45000;  // a table not reported this long leaves the list
  int MaxPeers = 1000;
  PeerLimits Limits{kMaxFrame, 50, 1u << 20, 180000};
};

class LobbyServer : public SocketEvents {
 public:
  LobbyServer(SocketNetwork& net, Clock& clock, LobbySettings settings = {});
  ~LobbyServer() override;
  bool Open();
  int Port() const;
  void Close();
  // Drops stale tables and dead or hostile peers; from the program's timer.
  void Tick();
  // The tables in the list now, in the order they first reported.
  std::vector<TableListing> Tables() const;
  int Peers() const;
  std::function<void(const std::string&)> OnLog;

  void OnConnect(int) override {}
  void OnData(int index, std::string_view bytes) override;
  void OnClose(int index) override;
  void OnConnectionRequest(int index, int request) override;

 private:
  struct Peer {
    Connection link;
    bool reported = false;
    TableListing table;
    uint32_t reportedAt = 0;
    uint64_t order = 0;
    std::string identity;
  };
  void Log(const std::string& text);
  void Drop(int index, const std::string& why);
  void Process(int index, const std::string& message);
  std::string ListMessage() const;

  SocketNetwork& net_;
  Clock& clock_;
  LobbySettings settings_;
  std::unique_ptr<SocketControl> listener_;
  std::vector<Peer> peers_;  // index 0 unused
  uint64_t nextOrder_ = 1;
};
