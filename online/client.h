#pragma once
// The client: a mirror of the host's table built only from the host's messages. It
// joins (password, name, seat, buy-in, each asked through the UserInterface under the
// system's own titles), rolls when the host's dice come and reports each roll, sends its
// own seat's bets to the host, refuses what an online player may not do, takes a resync,
// and leaves cleanly. Socket 0 is the table, socket 1 the lobby.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/game_state.h"
#include "online/codes.h"
#include "online/connection.h"
#include "online/lobby.h"
#include "online/mirror.h"
#include "online/net_state.h"
#include "online/restore_file.h"
#include "online/socket_control.h"

struct ClientSettings {
  int KeepaliveMs = 5000;  // tmrOnline
  int StaleMs = 30000;     // no data from the host this long: the connection is lost
  // Whether the machine is online for an address (InternetConnectedState).
  bool (*ConnectedState)(const std::string& address) = &InternetConnectedState;
  PeerLimits Limits{kMaxFrame, 4000, 8u << 20, 0xFFFFFFFFu};
};

class Client : public SocketEvents, public OnlineLink {
 public:
  Client(Game& g, SocketNetwork& net, Clock& clock, ClientSettings settings = {});
  ~Client() override;
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  int OnlineState = 0;
  int OwnSeat = 0;
  std::string OwnName;
  bool AllowAutoBet = true;
  bool ChatAllowed = true;
  bool ClientHosting = false;
  int32_t HostRollCount = 0;
  std::string Welcome;        // the host's welcome text
  std::string LobbyLine;      // the lobby's line
  std::string ClipboardText;  // "~670"
  std::vector<TableListing> Tables;
  std::vector<std::string> ChatLines;
  std::string LastPassword;  // the last password typed
  // Each line the client logs (a dropped message, a resync, a lost connection).
  std::function<void(const std::string&)> OnLog;
  // When the host has welcomed this client by its name (it is an observer now).
  std::function<void()> OnJoined;
  // When the host has given this client its seat (the program puts its player there).
  std::function<void(int seat)> OnSeated;
  // After each roll of the host's dice, before it is reported.
  std::function<void()> AfterRoll;
  // When the host opens the bets again ("~661", "~663") without a roll.
  std::function<void()> OnBetsOpen;
  // When the table's connection has ended.
  std::function<void()> OnLeft;
  RestoreFileCalls Restore;
  // Reports of rolls not to send: a client that seems to lag (for tests of the resync).
  int WithheldReports = 0;

  // Connects socket 0 to a table; the handshake follows by itself.
  void Join(const std::string& host, int port);
  // Leaves the table: the connection is closed and "restore.crp" put back.
  void Leave();
  void ConnectLobby(const std::string& host, int port);
  // Connects to the table of a lobby listing; false when it's closed ("The selected
  // table is closed." is told) or its address can't be read.
  bool ChooseTable(const TableListing& table);
  void Tick();

  // The Play menu and the chat.
  void RequestSeat();         // "~990"
  void RequestWaitList();     // "~991"
  void LeaveSeat();           // "~992"
  void AskToOperate();        // "~012"
  void SetAutoPass(bool on);  // "~669": the own seat passes the dice
  // An operator's command for the host's panel ("~661" ...); only while operating.
  void OperatorCommand(const std::string& message);
  void Chat(const std::string& text);
  bool Connected() const;

  // SocketEvents.
  void OnConnect(int index) override;
  void OnData(int index, std::string_view bytes) override;
  void OnClose(int index) override;
  void OnConnectionRequest(int, int) override {}

  // OnlineLink.
  OnlineDice TakeDice(int32_t& die1, int32_t& die2) override;
  void DiceRolled(int32_t die1, int32_t die2) override;
  void RollEnded() override;
  void BetChanged(int seat, int bet) override;
  void WorkingChanged(int seat, int bet) override;
  void WorkOnComeOutChanged(int seat) override;
  bool MayChangeBets(int seat) override;
  BetRefusal RefuseBet(int seat, int bet) override;
  StakeDecision StakeOf(int seat) override;
  void SessionStarted() override;
  void AutoRollSwitched(bool) override {}
  void DicePassed() override;
  void LeaveOwnSeat() override { LeaveSeat(); }

 private:
  void Log(const std::string& text);
  void SendMsg(int target, const std::string& text);
  void DrainAll();
  void ProcessMsgFromHost(int socket, const std::string& message);
  void ProcessMsgFromLobby(const std::string& message);
  // One message of the host by its code, each group by its own procedure; false when
  // the group has no such code.
  void TableMessage(const ParsedMessage& m);
  bool JoinMessage(const ParsedMessage& m);
  bool NoticeMessage(const ParsedMessage& m);
  bool RollMessage(const ParsedMessage& m);
  bool WaitListMessage(const ParsedMessage& m);
  bool MirrorMessage(const ParsedMessage& m);
  void ClearTable();
  void AskPassword(const std::string& before);
  void AskName(const std::string& before);
  void AskSeat(const std::string& list);
  void AskBuyIn();
  void RunHostRoll(int32_t die1, int32_t die2);
  void ConnectionLost(bool tellUser, bool offline = false);
  MessageReply Ask(const std::string& text, const std::string& title, int flags, const std::string& input = {});
  void SendOwnBankroll();

  Game& g_;
  SocketNetwork& net_;
  Clock& clock_;
  ClientSettings settings_;
  std::vector<Connection> winsock_;
  bool processingMessage_ = false;
  int applyingHost_ = 0;  // nested depth of applying the host's word
  bool diceWaiting_ = false;
  int32_t die1_ = 0, die2_ = 0;
  bool rollFromHost_ = false;
  bool diceRolled_ = false;  // the dice of the roll in progress were rolled
  uint32_t lastKeepalive_ = 0;
  int stateBeforeConnect_ = 0;
  bool restoreSaved_ = false;
  GameName ownGame_;  // the name of the player's own game, given back with it
  Money toldInvested_;
  ChangedBets changed_;
  std::string hostName_, gameName_;
  std::string tableAddress_, lobbyAddress_;
  int lobbyPort_ = 0;
};
