#pragma once
// The host: the true table. It listens for clients, seats them (passwords, seats, buy-in
// bounds, the wait list), sends every bet and roll, times the betting countdown and the
// lockout, keeps each client in step by its roll reports and resyncs those that fall
// behind, serves a client it lets operate the table, reports to the lobby, and holds the
// seat of a client that dropped until it comes back. Socket 0 listens, socket 1 is the
// lobby, sockets from 2 are clients; the array grows and is never shrunk while hosting.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/game_state.h"
#include "online/codes.h"
#include "online/connection.h"
#include "online/mirror.h"
#include "online/restore_file.h"
#include "online/socket_control.h"

// The host panel's values that the game file doesn't keep; the others (password, notes,
// countdown, roll delay, chat and Auto-Bet for newcomers, colours) are the game's
// OnlinePanel, saved with it. Every value is the table owner's to set (and an operator's).
struct HostPanel {
  int MaxPlayers = 8, MaxWaitList = 10, MaxObservers = 20;
  bool AllowClientHosting = true;  // a client may ask to operate the table
};

// How the host keeps time and what it takes from clients.
struct HostSettings {
  std::string Address = "127.0.0.1";
  int Port = 15152;
  std::string ReportAddress;   // the address the lobby shows for this table; "" the listening one
  int CountdownTickMs = 1000;  // one second of the countdown
  int KeepaliveMs = 5000;      // tmrOnline: polling the clients and "~PING"
  int LobbyReportMs = 15000;   // a table reports to the lobby at least this often
  int ClaimMs = 30000;         // a wait lister's claim on a free seat
  int RejoinHoldMs = 300000;   // the seat of a dropped client waits this long for it
  int AckWaitMs = 5000;        // a roll waits this long for the clients' reports of the last one
  PeerLimits Limits{4096, 400, 1u << 20, 90000};
};

struct ClientRecord {
  bool Selected = false;
  char Status = 'O';  // 'P' seated, 'W' wait list, 'O' observer
  std::string ClientName = "New client";
  double TableTime = 0;  // minutes
  bool IsClientHost = false;
  int Seat = 0;
  bool ChatAllowed = true;
  bool AutoBetAllowed = true;
  int ClientLevel = 0;
  int32_t LastRollAck = 0;  // -1: out of sync, sent nothing till resynced
  std::string Notes;
  int Socket = 0;  // -1 a seat played at the host itself, 0 none
  // Beyond the record the host keeps: the stage of the handshake, the address, and the
  // time a dropped player's seat has been held since.
  bool Joined = false, Named = false;
  bool ResyncDue = false;  // a change of its crossed a roll: resynced at its next report
  int WrongPasswords = 0;
  std::string Address;
  bool Held = false;
  uint32_t HeldSince = 0;
};

class Host : public SocketEvents, public OnlineLink {
 public:
  Host(Game& g, SocketNetwork& net, Clock& clock, HostSettings settings = {});
  ~Host() override;
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  HostPanel Panel;
  std::vector<ClientRecord> ClientList;  // index 0 unused; 1..8 the seats; then wait list, observers
  int OnlineState = 0;
  int32_t RollCount = 0;  // rolls sent since the table opened: the clients' clock
  std::vector<std::string> ChatLines;
  // Each line the host logs (a hostile frame, a drop, a resync) also goes here.
  std::function<void(const std::string&)> OnLog;
  // After every roll that went out (the program may place its seats' bets for the next).
  std::function<void()> AfterRoll;
  // Where "restore host.crp" is saved and opened (the game file's calls).
  RestoreFileCalls Restore;
  std::string LobbyLine;  // the lobby's line ("~007")

  // "&Open table": listens and saves "restore host.crp". False when the port is taken.
  bool OpenTable();
  int Port() const;
  // "&Close table": every client is let go; seats of clients are emptied.
  void CloseTable();
  // The same after asking, when clients are connected; false when the user kept it open.
  bool AskToCloseTable();
  void ConnectLobby(const std::string& host, int port);
  // The program's timer, as often as it likes (every 50 to 100 ms): keepalive, polling,
  // countdown, claims, held seats, the lobby's report.
  void Tick();

  void StartCountdown(int seconds);
  void LockoutBets();
  // No more rolls: the countdown ends and the bets are locked out, so the clients' last
  // word is their report of the last roll.
  void StopRolling();
  void AcceptBets();
  // The host's roll button: with a countdown, the lockout now and the roll RollDelay later.
  void RequestRoll();
  bool CountdownRunning() const { return countdownRunning_; }
  int CountdownLeft() const { return countdownLeft_; }

  // The Clients menu on ticked entries (1-based): resync, remove, chat and auto-bet.
  void ResyncClients();
  void RemoveClient(int entry);
  void SetChatAllowed(int entry, bool allowed, const std::string& notice);
  void SetAutoBetAllowed(int entry, bool allowed, const std::string& notice);
  void SendChat(const std::string& text);
  // Sends what changed at the table outside a roll: seats, bankrolls, shooters, counters.
  void SendTableChanges();
  // Runs PollClients (the timer does too).
  void PollClients();
  int Entry(int socket) const;
  // Every client has reported the last roll (none is out of step, waiting for a resync).
  bool AllInStep() const;
  int OperatorSocket() const { return operatorSocket_; }
  int ConnectedClients() const;
  int WaitListCount() const;
  int ObserverCount() const;
  int SeatedCount() const;

  // SocketEvents.
  void OnConnect(int index) override;
  void OnData(int index, std::string_view bytes) override;
  void OnClose(int index) override;
  void OnConnectionRequest(int index, int request) override;

  // OnlineLink.
  OnlineDice TakeDice(int32_t& die1, int32_t& die2) override;
  void DiceRolled(int32_t die1, int32_t die2) override;
  void RollEnded() override;
  void BetChanged(int seat, int bet) override;
  void WorkingChanged(int seat, int bet) override;
  void WorkOnComeOutChanged(int seat) override;
  bool MayChangeBets(int seat) override { return true; }
  BetRefusal RefuseBet(int seat, int bet) override;
  StakeDecision StakeOf(int seat) override;
  void SessionStarted() override;
  void AutoRollSwitched(bool on) override;
  void DicePassed() override;
  void LeaveOwnSeat() override {}

 private:
  void Log(const std::string& text);
  void Send(int socket, const std::string& text);
  void SendMsg(int target, const std::string& text);
  void SendMsgAllX(int except, const std::string& text);
  bool Serves(int socket, bool broadcast) const;
  void DrainAll();
  void Drop(int socket, const std::string& why);
  void ClientLost(int socket);
  // Who sent a message: the client's socket and entry, seated at the table, operating it.
  struct Sender {
    int socket, entry;
    bool seated, operating;
  };
  // A client's message is read and checked here, then handled by its group's procedure,
  // which returns false for a code of another group.
  void ProcessMsgFromClient(int socket, const std::string& message);
  bool JoinRequest(const Sender& from, const ParsedMessage& m, const std::string& message);
  bool PlayRequest(const Sender& from, const ParsedMessage& m, const std::string& message);
  bool WaitListRequest(const Sender& from, const ParsedMessage& m);
  bool OwnsSeat(const Sender& from, int64_t seat) const;
  // Logs the refusal of a client's message; true, as the message is dealt with.
  bool Refuse(const Sender& from, const std::string& what);
  void OperatorMessage(int socket, const ParsedMessage& m, const std::string& message);
  void LobbyMessage(const std::string& message);
  void ClientChat(int socket, int entry, const std::string& text);
  void AddChat(const std::string& text);
  bool ClientSeat(int64_t seat) const;  // a seat of a client, connected or held
  void Named(int socket, int entry, const std::string& typed);
  bool MayTakeSeat(int entry) const;
  void TellFull(int socket, int entry);
  void AskSeat(int socket, int entry, int seat);
  void SeatClient(int socket, int entry, Money amount);
  void OfferSeat(int socket, int entry);
  int MoveClientToWaitList(int entry);
  void MovePlayer2Observer(int seat);
  void EndHeldSeat(int seat);
  void RemoveSeat(int seat);
  void RemoveEntry(int entry);
  void ApplyClientBets(int socket, int entry, const ParsedMessage& m);
  void ApproveOperator(int socket, int entry);
  void TerminateClientHosting();
  void SendPanel(int target);
  void SyncClient(int socket, bool playersOnly);
  void SendConfiguration(int target);
  std::string FreeSeats() const;
  std::string WelcomeText(int entry) const;
  void Check4ClientsOutOfSync();
  bool AcksIn() const;
  void SendOutOfSync();
  void TakeBaseline();
  void RollNow();
  void CountdownTick();
  void SendTable2Central();
  void SendClientList();

  Game& g_;
  SocketNetwork& net_;
  Clock& clock_;
  HostSettings settings_;
  std::vector<Connection> winsock_;
  bool processingMessage_ = false;
  bool polling_ = false;
  int applyingFrom_ = 0;  // the socket whose request is being applied, 0 none
  int operatorSocket_ = 0;
  bool operatorDicePending_ = false;
  int32_t operatorDie1_ = 0, operatorDie2_ = 0;
  bool rollFromOperator_ = false;
  bool rolled_ = false;  // the dice of the roll in progress were rolled
  bool countdownRunning_ = false;
  int countdownLength_ = 0, countdownLeft_ = 0;
  uint32_t nextCountdownTick_ = 0;
  bool rollDue_ = false;
  uint32_t rollDueSince_ = 0;
  bool countdownPending_ = false;  // the next countdown waits for the clients' reports
  uint32_t countdownPendingSince_ = 0;
  uint32_t lastKeepalive_ = 0, lastReport_ = 0, claimSince_ = 0;
  bool claimRunning_ = false;
  bool listChanged_ = true;
  uint32_t openedAt_ = 0;
  double tableMinutes_ = 0;
  bool hostingLeftChanges_ = false;
  ChangedBets changed_;
  std::string lobbyHost_;
  int lobbyPort_ = 0;
  uint32_t lobbyTry_ = 0;
  // What the clients were last told of each seat, so that changes outside a roll go out.
  struct Baseline {
    std::array<std::string, kSeats> names;
    std::array<Money, kSeats> bankroll{}, start{}, invested{};
    int32_t shooter = 0, lastHandShooter = 0, handShooter = 0;
    std::string counters;
  } told_;
};
