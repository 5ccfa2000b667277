#include "online/host.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>

#include "automation/auto_roll.h"
#include "engine/bankroll.h"
#include "engine/messages.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "online/mirror.h"
#include "stats/events_log.h"
#include "storage/error_report.h"
#include "storage/paths.h"

namespace {

constexpr int kFirstClient = 2;
constexpr int kFirstListEntry = 9;
constexpr size_t kChatLimit = 500;  // characters of one chat line
constexpr size_t kChatKept = 200;   // lines the host keeps
constexpr int kPasswordTries = 5;

// An entry of a seat nobody sits at, and one of a seat played at the host itself.
ClientRecord EmptyEntry() {
  ClientRecord r;
  r.ClientName.clear();
  return r;
}

ClientRecord LocalEntry(const std::string& name, int seat) {
  ClientRecord r;
  r.Status = 'P';
  r.ClientName = name;
  r.Seat = seat;
  r.Socket = -1;
  return r;
}

// One record of the visitor log: name, address, status and date, blank-padded to 110 bytes.
void LogVisitor(Game& g, const std::string& name, const std::string& address, const std::string& status) {
  if (g.ProgramFolder.empty()) return;
  const LocalDateTime t = g.Time ? g.Time->Now() : LocalDateTime{};
  auto field = [](std::string text, size_t width) {
    text = Utf8ToWindows1252(text);
    text.resize(width, ' ');
    return text;
  };
  auto two = [](int v) {
    v = (v % 100 + 100) % 100;
    return std::string(1, static_cast<char>('0' + v / 10)) + static_cast<char>('0' + v % 10);
  };
  const std::string date = two(t.month) + two(t.day) + two(t.year);
  const std::string record = field(name, 20) + field(address, 20) + field(status, 10) + date + std::string(54, ' ');
  std::ofstream out(std::filesystem::path(g.ProgramFolder) / "DiceHall Visitor Log", std::ios::binary | std::ios::app);
  out.write(record.data(), static_cast<std::streamsize>(record.size()));
}

std::string Digits(int32_t a, int32_t b) { return {static_cast<char>('0' + a), static_cast<char>('0' + b)}; }

std::string Minutes(int minutes) {
  const int h = minutes / 60, m = minutes % 60;
  std::string text;
  if (h > 0) text += std::to_string(h) + (h == 1 ? " hr " : " hrs ");
  text += std::to_string(m) + (m == 1 ? " min" : " mins");
  return text;
}

std::string OddsText(const RuleSet& r, bool words) {
  const Money a = r.OddsAllowed410, b = r.OddsAllowed59, c = r.OddsAllowed68;
  if (words) {
    if (a == b && b == c) return MoneyText(a) + "x odds";
    return MoneyText(a) + "-" + MoneyText(b) + "-" + MoneyText(c) + "x odds";
  }
  if (a == b && b == c) return "x" + MoneyText(a);
  return "x" + MoneyText(a) + " x" + MoneyText(b) + " x" + MoneyText(c);
}

}  // namespace

Host::Host(Game& g, SocketNetwork& net, Clock& clock, HostSettings settings)
    : g_(g), net_(net), clock_(clock), settings_(std::move(settings)) {
  winsock_.resize(kFirstClient);
  ClientList.resize(kFirstListEntry);
  for (auto& e : ClientList) e = EmptyEntry();
  g_.Online = this;
  g_.OnlineRole = kOnlineHost;
  // No pop-up may stop a host.
  g_.Rules.Notices = 0;
  OnlineState = 4;
  TakeBaseline();
}

Host::~Host() {
  for (Connection& c : winsock_)
    if (c.socket) c.socket->Close();
  if (g_.Online == this) g_.Online = nullptr;
  g_.OnlineRole = 0;
}

void Host::Log(const std::string& text) {
  if (g_.RecordEvents) AddEventLine(g_, "    Online: " + text);
  if (OnLog) OnLog(text);
}

int Host::Port() const { return winsock_[0].socket ? winsock_[0].socket->LocalPort() : 0; }

bool Host::OpenTable() {
  if (!winsock_[0].socket) winsock_[0].socket = net_.NewSocket(*this, 0);
  if (!winsock_[0].socket->Listen(settings_.Address, settings_.Port)) {
    Log("the table can't listen on " + settings_.Address + " port " + std::to_string(settings_.Port));
    return false;
  }
  RestoreFile(g_, Restore, kHostRestoreFile, false);
  OnlineState = 4;
  openedAt_ = lastKeepalive_ = clock_.TickMs();
  listChanged_ = true;
  PollClients();
  return true;
}

void Host::CloseTable() {
  for (size_t i = 0; i < winsock_.size(); ++i)
    if (i != 1 && winsock_[i].socket) winsock_[i].socket->Close();
  // Every client's seat ends: nobody is left to come back to it.
  for (int s = 1; s < kFirstListEntry; ++s)
    if (ClientList[s].Socket > 0 || ClientList[s].Held) EndHeldSeat(s);
  ClientList.resize(kFirstListEntry);
  operatorSocket_ = 0;
  countdownRunning_ = rollDue_ = false;
  OnlineState = 0;
  SendTableChanges();
  SendTable2Central();
}

bool Host::AskToCloseTable() {
  if (ConnectedClients() > 0 && g_.Ui != nullptr) {
    MessageRequest request;
    request.Text = "Closing the table will disconnect all clients.\nDo you still want to close?";
    request.Title = "Close table";
    request.Flags = msg::kYesNoQuestion;
    if (g_.Ui->ShowMessage(request).Button != kButtonYes) return false;
  }
  CloseTable();
  return true;
}

void Host::ConnectLobby(const std::string& host, int port) {
  lobbyHost_ = host;
  lobbyPort_ = port;
  lobbyTry_ = clock_.TickMs();
  winsock_[1].socket = net_.NewSocket(*this, 1);
  winsock_[1].socket->Connect(host, port);
}

// ---- Sending. -------------------------------------------------------------------------------

bool Host::Serves(int socket, bool broadcast) const {
  if (socket < kFirstClient || socket >= static_cast<int>(winsock_.size()) || !winsock_[socket].Connected())
    return false;
  const int entry = Entry(socket);
  if (entry == 0) return false;
  const ClientRecord& r = ClientList[entry];
  return r.LastRollAck != -1 && (!broadcast || r.Named);
}

void Host::Send(int socket, const std::string& text) {
  if (!winsock_[socket].Send(text)) Log("a message too long for a frame was not sent (" + text.substr(0, 4) + ")");
}

void Host::SendMsg(int target, const std::string& text) {
  if (target == -1) {
    SendMsgAllX(0, text);
  } else if (target == 1) {
    if (winsock_[1].Connected()) Send(1, text);
  } else if (Serves(target, false)) {
    Send(target, text);
  }
}

void Host::SendMsgAllX(int except, const std::string& text) {
  for (int i = kFirstClient; i < static_cast<int>(winsock_.size()); ++i)
    if (i != except && Serves(i, true)) Send(i, text);
}

// ---- Socket events. -------------------------------------------------------------------------

void Host::OnConnect(int index) {
  if (index != 1) return;
  winsock_[1].Reset(settings_.Limits, clock_.TickMs());
  SendTable2Central();
}

void Host::OnConnectionRequest(int index, int request) {
  if (index != 0 || OnlineState < 4) return;
  PollClients();
  const int room = Panel.MaxPlayers + Panel.MaxWaitList + Panel.MaxObservers;
  if (ConnectedClients() >= room) {
    Log("a connection was turned away: the table, the wait list and the observers are full");
    return;
  }
  // The lowest closed socket that no entry names.
  int s = kFirstClient;
  while (s < static_cast<int>(winsock_.size()) && (winsock_[s].Connected() || Entry(s) != 0)) ++s;
  if (s == static_cast<int>(winsock_.size())) winsock_.emplace_back();
  Connection& c = winsock_[s];
  if (!c.socket) c.socket = net_.NewSocket(*this, s);
  if (!c.socket->Accept(request)) return;
  c.Reset(settings_.Limits, clock_.TickMs());
  ClientRecord r;
  r.ChatAllowed = g_.OnlinePanel.AllowNewClientsToChat;
  r.AutoBetAllowed = g_.OnlinePanel.AllowNewPlayersToAutobet;
  r.LastRollAck = RollCount;
  r.Socket = s;
  r.Address = c.socket->RemoteAddress();
  ClientList.push_back(r);
  listChanged_ = true;
  SendMsg(s, "~001");
}

void Host::OnData(int index, std::string_view bytes) {
  if (index < 1 || index >= static_cast<int>(winsock_.size())) return;
  winsock_[index].decoder.Feed(bytes);
  winsock_[index].lastData = clock_.TickMs();
  // A handler that turned the event loop: the outer loop takes this message up.
  if (processingMessage_) return;
  DrainAll();
}

void Host::OnClose(int index) {
  if (index == 0) {
    if (OnlineState >= 4 && winsock_[0].socket && winsock_[0].socket->Listen(settings_.Address, settings_.Port))
      Log("Listening reset at " + ClockText(g_));
    return;
  }
  if (index == 1 || index >= static_cast<int>(winsock_.size())) return;
  winsock_[index].socket->Close();
  winsock_[index].decoder.Clear();
  ClientLost(index);
}

void Host::DrainAll() {
  for (bool progress = true; progress;) {
    progress = false;
    for (int i = 1; i < static_cast<int>(winsock_.size()); ++i) {
      std::string message, fault;
      while (winsock_[i].Connected() && winsock_[i].NextMessage(settings_.Limits, clock_.TickMs(), message, fault)) {
        processingMessage_ = true;
        try {
          if (i == 1) LobbyMessage(message);
          else ProcessMsgFromClient(i, message);
        } catch (const std::exception& e) {
          Log(ErrorReport(e.what(), 5, "ProcessMsgFromClient"));
        }
        processingMessage_ = false;
        progress = true;
      }
      if (!fault.empty()) Drop(i, fault);
    }
  }
  SendTableChanges();
}

void Host::Drop(int socket, const std::string& why) {
  if (socket == 1) {
    Log("the lobby: " + why + "; connection closed");
    winsock_[1].socket->Close();
    return;
  }
  const int entry = Entry(socket);
  Log((entry ? ClientList[entry].ClientName : std::string("a client")) + ": " + why + "; connection closed");
  winsock_[socket].socket->Close();
  winsock_[socket].decoder.Clear();
  ClientLost(socket);
}

void Host::ClientLost(int socket) {
  const int entry = Entry(socket);
  if (entry == 0) return;
  if (socket == operatorSocket_) TerminateClientHosting();
  ClientRecord& r = ClientList[entry];
  if (entry < kFirstListEntry) {
    // The player may come back: the seat and its bets wait for it.
    r.Socket = 0;
    r.Held = true;
    r.HeldSince = clock_.TickMs();
    Log(r.ClientName + " dropped; the seat at " + std::string(SeatName(entry)) + " is held");
  } else {
    RemoveEntry(entry);
  }
  listChanged_ = true;
}

// ---- Messages from clients. ---------------------------------------------------------------

void Host::ProcessMsgFromClient(int socket, const std::string& message) {
  const int entry = Entry(socket);
  if (entry == 0 || message == "~PONG") return;
  ClientRecord& r = ClientList[entry];
  if (message.empty() || message[0] != '~') {
    ClientChat(socket, entry, message);
    return;
  }
  ParsedMessage m;
  std::string fault;
  if (!ReadMessage(message, kClientToHost, m, fault)) {
    Log(r.ClientName + ": " + fault + "; message dropped");
    return;
  }
  const std::string_view code = m.form->code;
  // Out of sync, a client is heard only for its roll report.
  if (r.LastRollAck == -1 && code != "~667") return;
  const bool handshake = code == "~001" || code == "~003" || code == "~004" || code == "~007";
  if ((!r.Joined && code != "~001" && code != "~003") || (!r.Named && !handshake)) {
    Log(r.ClientName + ": " + std::string(code) + " before joining; message dropped");
    return;
  }
  const Sender from{socket, entry, r.Status == 'P' && entry < kFirstListEntry, socket == operatorSocket_};
  // A change made before its client had the last roll crossed that roll on the wire: the
  // client's mirror played the roll with it, this table without. It still counts as the
  // player's word; a resync at the client's next report mends the mirror.
  const bool changesTable =
      code == "~777" || code == "~779" || code == "~887" || code == "~669" || code == "~899" || code == "~668";
  if (changesTable && !from.operating && r.Named && !r.ResyncDue && r.LastRollAck != RollCount) {
    r.ResyncDue = true;
    Log(r.ClientName + " is out of sync: a change made before it had roll " + std::to_string(RollCount));
  }
  if (JoinRequest(from, m, message) || PlayRequest(from, m, message) || WaitListRequest(from, m)) return;
  if (!from.operating) Refuse(from, std::string(code) + " is the operator's");
  else OperatorMessage(socket, m, message);
}

bool Host::OwnsSeat(const Sender& from, int64_t seat) const {
  return (from.seated && seat == from.entry) || (from.operating && !ClientSeat(seat));
}

bool Host::Refuse(const Sender& from, const std::string& what) {
  Log(ClientList[from.entry].ClientName + ": " + what + "; message dropped");
  return true;
}

// Joining: the handshake, the password, the name, a seat and its buy-in, a rename and
// the wish to host.
bool Host::JoinRequest(const Sender& from, const ParsedMessage& m, const std::string& message) {
  const std::string_view code = m.form->code;
  const int socket = from.socket;
  const int entry = from.entry;
  ClientRecord& r = ClientList[from.entry];
  const bool seated = from.seated;
  if (code == "~001") {
    r.ClientLevel = static_cast<int>(m.At(0, 0).number);
    std::string hello = "~002";
    PutText(hello, g_.HostName);
    PutText(hello, g_.OnlineGameName);
    SendMsg(socket, hello);
    if (g_.OnlinePanel.GamePassword.empty()) {
      r.Joined = true;
      SendMsg(socket, "~004" + WelcomeText(entry));
    } else {
      SendMsg(socket, "~003");
    }
  } else if (code == "~003") {
    if (r.Joined) return true;
    if (TrimBlanks(m.At(0, 0).text) != TrimBlanks(g_.OnlinePanel.GamePassword)) {
      Log(r.ClientName + " (" + r.Address + "): wrong password");
      // A password is not guessed here.
      if (++r.WrongPasswords >= kPasswordTries) {
        Drop(socket, "too many wrong passwords");
        return true;
      }
      SendMsg(socket, "~003Wrong password.\r\r");
      return true;
    }
    r.Joined = true;
    SendMsg(socket, "~004" + WelcomeText(entry));
  } else if (code == "~004") {
    if (!r.Named) Named(socket, entry, std::string(m.At(0, 0).text));
  } else if (code == "~007") {
    SendMsg(socket, "~007" + WelcomeText(entry));
  } else if (code == "~008") {
    AskSeat(socket, entry, static_cast<int>(m.At(0, 0).number));
  } else if (code == "~009") {
    SeatClient(socket, entry, m.At(0, 0).amount);
  } else if (code == "~011") {
    const int seat = static_cast<int>(m.At(0, 0).number);
    const std::string name = TrimBlanks(m.At(0, 1).text);
    if (!OwnsSeat(from, seat) || !SeatOccupied(g_, seat)) return Refuse(from, "a rename of a seat not its own");
    if (name.empty() || !PlayerNameFault(g_, name).empty() || SameName(name, g_.HostName) || SameName(name, "host"))
      return Refuse(from, "a name the table can't use");
    g_.PlayerName.Set(seat, name);
    told_.names[seat] = name;
    if (seated && seat == entry) r.ClientName = name;
    SendMsgAllX(socket, message);
    listChanged_ = true;
  } else if (code == "~012") {
    if (Panel.AllowClientHosting && operatorSocket_ == 0) {
      ApproveOperator(socket, entry);
    } else {
      SendMsg(socket, "~0120");
    }
  } else {
    return false;
  }
  return true;
}

// Play at the table: the roll's report, the dice passed, bets, working states, leaving a
// seat, the bankroll and working rules of the client's own seats.
bool Host::PlayRequest(const Sender& from, const ParsedMessage& m, const std::string& message) {
  const std::string_view code = m.form->code;
  const int socket = from.socket;
  const int entry = from.entry;
  ClientRecord& r = ClientList[from.entry];
  const bool seated = from.seated;
  const bool operating = from.operating;
  std::string fault;
  if (code == "~667") {
    const int32_t count = static_cast<int32_t>(m.At(0, 0).number);
    if (r.LastRollAck == -1 || (r.ResyncDue && count == RollCount)) {
      if (count != RollCount) return true;
      r.LastRollAck = count;
      r.ResyncDue = false;
      SyncClient(socket, false);
      SendMsg(socket, "~701");
      Log(r.ClientName + " was resynced.");
    } else {
      r.LastRollAck = count;
    }
  } else if (code == "~668") {
    if (!(seated && entry == g_.Table.Shooter) && !operating) return Refuse(from, "a pass of dice it doesn't hold");
    applyingFrom_ = socket;
    PassDice(g_, kPassLogged);
    applyingFrom_ = 0;
    SendMsgAllX(socket, message);
  } else if (code == "~669") {
    if (!OwnsSeat(from, m.At(0, 0).number)) return Refuse(from, "auto-pass of a seat not its own");
    g_.AutoPassDice[m.At(0, 0).number] = m.At(0, 1).number != 0;
    SendMsg(-1, message);
  } else if (code == "~777") {
    ApplyClientBets(socket, entry, m);
  } else if (code == "~779") {
    for (int i = 0; i < m.records; ++i)
      if (!OwnsSeat(from, m.At(i, 0).number)) return Refuse(from, "a working state of a seat not its own");
    ApplyWorkingRecords(g_, m);
    SendMsg(-1, message);
  } else if (code == "~886" || code == "~992") {
    const int seat = static_cast<int>(m.At(0, 0).number);
    if (!seated || seat != entry) return Refuse(from, "a seat not its own left");
    MovePlayer2Observer(seat);
  } else if (code == "~887") {
    // Money comes to a seat only through the host's own ATM, cut to its limits.
    for (int i = 0; i < m.records; ++i) {
      const int seat = static_cast<int>(m.At(i, 0).number);
      if (!OwnsSeat(from, seat) || !SeatOccupied(g_, seat)) return Refuse(from, "a bankroll of a seat not its own");
      const Money change = m.At(i, 3).amount - g_.BuyInTotal[seat + kSessionScope];
      if (change.raw != 0) {
        NoBoxes quiet(g_);
        Atm(g_, seat, change);
      }
      SendMsg(socket, BankrollRecord(g_, seat));  // what the ATM allowed
    }
  } else if (code == "~899") {
    for (int i = 0; i < m.records; ++i)
      if (!OwnsSeat(from, m.At(i, 0).number)) return Refuse(from, "working rules of a seat not its own");
    if (!ApplyRuleMessage(g_, m, fault)) return Refuse(from, fault);
    SendMsgAllX(socket, message);
  } else {
    return false;
  }
  return true;
}

// The wait list: a seat offered to a waiting client, and a place on the list.
bool Host::WaitListRequest(const Sender& from, const ParsedMessage& m) {
  const std::string_view code = m.form->code;
  const int socket = from.socket;
  const int entry = from.entry;
  ClientRecord& r = ClientList[from.entry];
  if (code == "~990") {
    OfferSeat(socket, entry);
  } else if (code == "~991") {
    if (r.Status == 'O' && WaitListCount() < Panel.MaxWaitList) {
      const int position = MoveClientToWaitList(entry);
      SendMsg(socket, "~882" + std::to_string(position));
    } else if (r.Status == 'O') {
      SendMsg(socket, "~883");
    }
  } else {
    return false;
  }
  return true;
}

void Host::ClientChat(int socket, int entry, const std::string& text) {
  ClientRecord& r = ClientList[entry];
  // An empty frame is chat that says nothing.
  if (!r.Named || !r.ChatAllowed || text.empty()) return;
  if (FirstCharacters(text, kChatLimit).size() < text.size()) {
    Log(r.ClientName + ": a chat line longer than " + std::to_string(kChatLimit) + " characters; dropped");
    return;
  }
  for (unsigned char c : text)
    if (c < 32 && c != 1) {
      Log(r.ClientName + ": a chat line with a control character; dropped");
      return;
    }
  SendMsg(-1, text);
  AddChat(text);
}

void Host::AddChat(const std::string& text) {
  ChatLines.push_back(text);
  if (ChatLines.size() > kChatKept) ChatLines.erase(ChatLines.begin());
  if (g_.RecordEvents) AddEventLine(g_, "    Chat: " + text);
}

void Host::SendChat(const std::string& text) {
  const std::string line = g_.HostName + ": " + text;
  SendMsg(-1, line);
  AddChat(line);
}

bool Host::ClientSeat(int64_t seat) const {
  return seat >= 1 && seat < kFirstListEntry && (ClientList[seat].Socket > 0 || ClientList[seat].Held);
}

void Host::Named(int socket, int entry, const std::string& typed) {
  ClientRecord& r = ClientList[entry];
  const std::string name = TrimBlanks(FirstCharacters(TrimBlanks(typed), 20));
  if (name.empty()) return;
  // A dropped player coming back from the same address takes its seat again.
  for (int s = 1; s < kFirstListEntry; ++s) {
    ClientRecord& held = ClientList[s];
    if (!held.Held || !SameName(held.ClientName, name) || held.Address != r.Address) continue;
    held.Held = false;
    held.Socket = socket;
    held.Joined = held.Named = true;
    held.LastRollAck = RollCount;
    held.ClientLevel = r.ClientLevel;
    RemoveEntry(entry);
    std::string hello = "~006";
    PutText(hello, held.ClientName);
    PutInt(hello, OnlineState);
    SendMsg(socket, hello);
    SyncClient(socket, false);
    std::string seatMsg = "~010";
    PutInt(seatMsg, s);
    PutAmount(seatMsg, g_.Bankroll[s]);
    SendMsg(socket, seatMsg);
    Log(held.ClientName + " came back to the seat at " + std::string(SeatName(s)));
    listChanged_ = true;
    return;
  }
  std::string reason;
  if (SameName(name, g_.HostName) || SameName(name, "host")) reason = "Name used by host.";
  for (size_t k = 1; k < ClientList.size() && reason.empty(); ++k)
    if (static_cast<int>(k) != entry && SameName(ClientList[k].ClientName, name))
      reason = "Name already taken at this table.";
  if (reason.empty()) reason = PlayerNameFault(g_, name);
  if (!reason.empty()) {
    SendMsg(socket, "~005" + reason);
    return;
  }
  r.ClientName = name;
  r.Named = true;
  r.LastRollAck = RollCount;
  LogVisitor(g_, name, r.Address, "Observer");
  std::string hello = "~006";
  PutText(hello, name);
  PutInt(hello, OnlineState);
  SendMsg(socket, hello);
  SyncClient(socket, false);
  listChanged_ = true;
  SendClientList();
}

std::string Host::FreeSeats() const {
  std::string list;
  for (int s = 1; s < kFirstListEntry; ++s) {
    if (SeatOccupied(g_, s) || ClientList[s].Socket != 0 || ClientList[s].Held) continue;
    if (!list.empty()) list += ", ";
    list += SeatName(s);
  }
  return list;
}

void Host::TellFull(int socket, int entry) {
  ClientRecord& r = ClientList[entry];
  if (r.Status == 'W') SendMsg(socket, "~882" + std::to_string(MoveClientToWaitList(entry)));
  else if (WaitListCount() < Panel.MaxWaitList) SendMsg(socket, "~881");
  else SendMsg(socket, "~883");
}

bool Host::MayTakeSeat(int entry) const {
  return SeatedCount() < Panel.MaxPlayers && (WaitListCount() == 0 || (entry == kFirstListEntry && claimRunning_));
}

void Host::AskSeat(int socket, int entry, int seat) {
  ClientRecord& r = ClientList[entry];
  if (r.Status == 'P') return;
  if (!MayTakeSeat(entry)) return TellFull(socket, entry);
  if (SeatOccupied(g_, seat) || ClientList[seat].Socket != 0 || ClientList[seat].Held) {
    SendMsg(socket, "~008" + FreeSeats());
    return;
  }
  r.Seat = seat;
  if (g_.HostMinBuyIn == g_.HostMaxBuyIn) SeatClient(socket, entry, g_.HostMinBuyIn);
  else SendMsg(socket, "~009");
}

void Host::SeatClient(int socket, int entry, Money amount) {
  ClientRecord& r = ClientList[entry];
  const int seat = r.Seat;
  if (r.Status == 'P' || seat == 0) return;
  if (SeatOccupied(g_, seat) || ClientList[seat].Socket != 0 || ClientList[seat].Held || !MayTakeSeat(entry)) {
    r.Seat = 0;
    SendMsg(socket, "~008" + FreeSeats());
    return;
  }
  {
    NoBoxes quiet(g_);
    if (!AddPlayer(g_, seat, r.ClientName, amount)) return;
  }
  ClientRecord seated = r;
  seated.Status = 'P';
  seated.TableTime = 0;
  if (entry == kFirstListEntry) claimRunning_ = false;
  RemoveEntry(entry);
  ClientList[seat] = seated;
  std::string joined = "~010";
  PutInt(joined, seat);
  PutAmount(joined, g_.Bankroll[seat]);
  SendMsg(socket, joined);
  SendTableChanges();
  const std::string line =
      "\x01 " + g_.HostName + ": " + seated.ClientName + " joined the game at spot " + std::string(SeatName(seat));
  SendMsg(-1, line);
  AddChat(line);
  listChanged_ = true;
}

void Host::OfferSeat(int socket, int entry) {
  if (ClientList[entry].Status == 'P') return;
  if (MayTakeSeat(entry)) SendMsg(socket, "~008" + FreeSeats());
  else TellFull(socket, entry);
}

int Host::MoveClientToWaitList(int entry) {
  ClientRecord& r = ClientList[entry];
  int place = kFirstListEntry;
  if (r.Status == 'W') return entry - kFirstListEntry + 1;
  if (r.Status != 'O') return 0;
  while (place < static_cast<int>(ClientList.size()) && ClientList[place].Status == 'W') ++place;
  ClientRecord moved = r;
  moved.Status = 'W';
  ClientList.erase(ClientList.begin() + entry);
  ClientList.insert(ClientList.begin() + place, moved);
  listChanged_ = true;
  return place - kFirstListEntry + 1;
}

void Host::MovePlayer2Observer(int seat) {
  ClientRecord observer = ClientList[seat];
  if (observer.Socket <= 0) return;
  observer.Status = 'O';
  observer.Seat = 0;
  ClientList.push_back(observer);
  ClientList[seat] = EmptyEntry();
  RemoveSeat(seat);
}

void Host::EndHeldSeat(int seat) {
  ClientList[seat] = EmptyEntry();
  RemoveSeat(seat);
}

void Host::RemoveSeat(int seat) {
  SendMsg(-1, "~886" + std::to_string(seat) + "\t");
  told_.names[seat].clear();
  {
    NoBoxes quiet(g_);
    RemovePlayer(g_, seat);
  }
  listChanged_ = true;
}

void Host::RemoveEntry(int entry) {
  if (entry >= kFirstListEntry) ClientList.erase(ClientList.begin() + entry);
  else ClientList[entry] = EmptyEntry();
}

void Host::ApplyClientBets(int socket, int entry, const ParsedMessage& m) {
  ClientRecord& r = ClientList[entry];
  for (int i = 0; i < m.records; ++i) {
    const int seat = static_cast<int>(m.At(i, 0).number), bet = static_cast<int>(m.At(i, 1).number);
    const bool own = (r.Status == 'P' && entry < kFirstListEntry && seat == entry) ||
                     (socket == operatorSocket_ && !ClientSeat(seat));
    if (!own || !SeatOccupied(g_, seat)) {
      Log(r.ClientName + ": a bet for seat " + std::to_string(seat) + ", not its own; dropped");
      continue;
    }
    const Money requested = m.At(i, 2).amount, before = g_.BetAmount[seat][bet];
    // Too late: the bets are locked out, or the dice are rolling. The client hears the truth.
    if (OnlineState == 5 || g_.Table.Rolling) {
      SendMsg(socket, BetRecord(g_, seat, bet));
      if (requested != before) Log(r.ClientName + ": a bet after the lockout; refused");
      continue;
    }
    {
      NoBoxes quiet(g_);
      ChangeBet(g_, seat, bet, requested - before);
    }
    // Everyone hears a change, the sender too: its mirror may have moved on since (a
    // resync between its request and this answer); an unchanged bet it hears alone.
    if (g_.BetAmount[seat][bet] == before) SendMsg(socket, BetRecord(g_, seat, bet));
  }
}

// ---- The operator. --------------------------------------------------------------------------

void Host::ApproveOperator(int socket, int entry) {
  operatorSocket_ = socket;
  ClientList[entry].IsClientHost = true;
  hostingLeftChanges_ = true;
  if (g_.Auto.AutoRollActive) ToggleAutoRoll(g_);
  SendPanel(socket);
  SendClientList();
  SendMsg(socket, "~012-1");
  Log(ClientList[entry].ClientName + " operates the table");
}

void Host::TerminateClientHosting() {
  const int entry = Entry(operatorSocket_);
  if (entry) ClientList[entry].IsClientHost = false;
  if (operatorSocket_ && winsock_[operatorSocket_].Connected()) SendMsg(operatorSocket_, "~0120");
  operatorSocket_ = 0;
}

void Host::SendPanel(int target) {
  SendMsg(target, "~128" + MoneyText(Money::FromDouble(tableMinutes_)));
  SendMsg(target, "~014" + g_.OnlinePanel.GamePassword);
  SendMsg(target, "~122" + std::to_string(g_.OnlinePanel.CountdownToLockout));
  SendMsg(target, "~123" + std::to_string(g_.OnlinePanel.RollDelay));
  SendMsg(target, std::string("~124") + (g_.OnlinePanel.AllowNewClientsToChat ? "-1" : "0"));
  SendMsg(target, std::string("~125") + (g_.OnlinePanel.AllowNewPlayersToAutobet ? "-1" : "0"));
  SendMsg(target, std::string("~126") + (g_.OnlinePanel.ColorScheme ? "-1" : "0"));
  SendMsg(target, "~127" + g_.OnlinePanel.GameNotes);
  SendMsg(target, "~664" + MoneyText(Money::FromDouble(g_.Auto.AutoRollDelay)));
}

void Host::OperatorMessage(int socket, const ParsedMessage& m, const std::string& message) {
  const std::string_view code = m.form->code;
  auto entryOf = [&](int64_t n) { return n >= 1 && n < static_cast<int64_t>(ClientList.size()) ? int(n) : 0; };
  std::string fault;
  if (code == "~014") {
    g_.OnlinePanel.GamePassword = std::string(m.At(0, 0).text);
  } else if (code == "~015") {
    TerminateClientHosting();
  } else if (code >= "~100" && code <= "~104") {
    const int entry = entryOf(m.At(0, 0).number);
    if (entry == 0) return;
    if (code == "~104") RemoveClient(entry);
    else if (code <= "~101") SetChatAllowed(entry, code == "~101", "");
    else SetAutoBetAllowed(entry, code == "~103", "");
  } else if (code == "~120" || code == "~121") {
    const FieldValue& v = m.At(0, 0);
    if (code == "~120") g_.HostMinBuyIn = v.unlimited ? -kMaxBankroll : v.amount;
    else g_.HostMaxBuyIn = v.unlimited ? kMaxBankroll : v.amount;
    SendMsgAllX(socket, message);
  } else if (code == "~122") {
    g_.OnlinePanel.CountdownToLockout = static_cast<int>(m.At(0, 0).number);
  } else if (code == "~123") {
    g_.OnlinePanel.RollDelay = static_cast<int>(m.At(0, 0).number);
  } else if (code == "~124") {
    g_.OnlinePanel.AllowNewClientsToChat = m.At(0, 0).number != 0;
  } else if (code == "~125") {
    g_.OnlinePanel.AllowNewPlayersToAutobet = m.At(0, 0).number != 0;
  } else if (code == "~127") {
    g_.OnlinePanel.GameNotes = std::string(m.At(0, 0).text);
  } else if (code == "~130") {
    Panel.MaxPlayers = static_cast<int>(m.At(0, 0).number);
    Panel.MaxWaitList = static_cast<int>(m.At(0, 1).number);
    Panel.MaxObservers = static_cast<int>(m.At(0, 2).number);
  } else if (code == "~661") {
    if (OnlineState >= 4) StartCountdown(static_cast<int>(m.At(0, 0).number));
  } else if (code == "~662") {
    if (OnlineState >= 4) LockoutBets();
  } else if (code == "~663") {
    if (OnlineState >= 4) AcceptBets();
  } else if (code == "~664") {
    g_.Auto.AutoRollDelay = m.At(0, 0).amount.ToDouble();
  } else if (code == "~666") {
    if (OnlineState < 4) return;
    operatorDicePending_ = true;
    operatorDie1_ = static_cast<int32_t>(m.At(0, 0).number);
    operatorDie2_ = static_cast<int32_t>(m.At(0, 1).number);
    RollNow();
    operatorDicePending_ = false;
  } else if (code == "~700") {
    applyingFrom_ = socket;
    const int state = OnlineState;
    OnlineState = 6;
    ResetTable(g_, true, false, true, 0);
    OnlineState = state;
    applyingFrom_ = 0;
  } else if (code == "~701") {
    const int entry = entryOf(m.At(0, 0).number);
    if (entry && ClientList[entry].Socket > 0) {
      ClientList[entry].LastRollAck = RollCount;
      SyncClient(ClientList[entry].Socket, false);
      SendMsg(ClientList[entry].Socket, "~701");
    }
  } else if (code == "~885") {
    const int from = static_cast<int>(m.At(0, 0).number), to = static_cast<int>(m.At(0, 1).number);
    if (ClientSeat(from) || ClientSeat(to)) return Log("the operator: a move of a client's seat; dropped");
    MovePlayer(g_, from, to);
    std::swap(ClientList[from], ClientList[to]);
    told_.names[from] = g_.PlayerName[from];
    told_.names[to] = g_.PlayerName[to];
    SendMsgAllX(socket, message);
  } else if (IsRuleCode(code)) {
    if (!ApplyRuleMessage(g_, m, fault)) return Log("the operator: " + fault + "; dropped");
    SendMsgAllX(socket, message);
  } else if (code >= "~922" && code <= "~926") {
    g_.OnlinePanel.ColorScheme = code != "~926";
    SendMsgAllX(socket, message);
  } else {
    Log("the operator: " + std::string(code) + " is not the operator's; dropped");
  }
}

// ---- The Clients menu. ----------------------------------------------------------------------

void Host::ResyncClients() {
  for (size_t k = 1; k < ClientList.size(); ++k) {
    ClientRecord& r = ClientList[k];
    if (!r.Selected || r.Socket <= 0 || !r.Named) continue;
    r.LastRollAck = RollCount;
    SyncClient(r.Socket, false);
    SendMsg(r.Socket, "~701");
  }
}

void Host::RemoveClient(int entry) {
  if (entry < 1 || entry >= static_cast<int>(ClientList.size())) return;
  const int socket = ClientList[entry].Socket;
  if (entry < kFirstListEntry && (socket > 0 || ClientList[entry].Held)) {
    EndHeldSeat(entry);
    if (socket > 0) {
      Log("removed by the host");
      winsock_[socket].socket->Close();
    }
  } else if (socket > 0) {
    Drop(socket, "removed by the host");
  }
}

void Host::SetChatAllowed(int entry, bool allowed, const std::string& notice) {
  if (entry < 1 || entry >= static_cast<int>(ClientList.size())) return;
  ClientList[entry].ChatAllowed = allowed;
  if (ClientList[entry].Socket > 0) SendMsg(ClientList[entry].Socket, (allowed ? "~101" : "~100") + notice);
  listChanged_ = true;
}

void Host::SetAutoBetAllowed(int entry, bool allowed, const std::string& notice) {
  if (entry < 1 || entry >= static_cast<int>(ClientList.size())) return;
  ClientList[entry].AutoBetAllowed = allowed;
  if (ClientList[entry].Socket > 0) SendMsg(ClientList[entry].Socket, (allowed ? "~103" : "~102") + notice);
  listChanged_ = true;
}

// ---- Keeping the clients in step. --------------------------------------------------------

void Host::SyncClient(int socket, bool playersOnly) {
  for (const std::string& m : PlayersMessages(g_)) SendMsg(socket, m);
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g_, s)) SendMsg(socket, SeatBetsMessage(g_, s));
  const std::string bankrolls = BankrollsMessage(g_);
  if (!bankrolls.empty()) SendMsg(socket, bankrolls);
  SendConfiguration(socket);
  // The working states come last: seating a player and the rules of the come-out put the
  // seat's bets at rest for the point the mirror held then; these are the host's own.
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g_, s)) SendMsg(socket, SeatWorkingMessage(g_, s));
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g_, s)) SendMsg(socket, "~669" + std::to_string(s) + (g_.AutoPassDice[s] ? "-1" : "0"));
  const int entry = Entry(socket);
  const bool chat = entry ? ClientList[entry].ChatAllowed : true;
  const bool autoBet = entry ? ClientList[entry].AutoBetAllowed : true;
  SendMsg(socket, chat ? "~101" : "~100");
  SendMsg(socket, autoBet ? "~103" : "~102");
  SendMsg(socket, "~926");
  if (playersOnly) return;
  if (countdownRunning_ && countdownLeft_ > 0) {
    SendMsg(socket, countdownLeft_ >= 6 ? "~661" + std::to_string(countdownLeft_ - 2) : "~662");
  } else {
    SendMsg(socket, OnlineState == 5 ? "~662" : "~663");
  }
  SendMsg(socket, "~660" + Digits(g_.Table.Die1, g_.Table.Die2) + std::to_string(RollCount));
}

void Host::SendConfiguration(int target) {
  for (const std::string& m : ConfigurationMessages(g_)) SendMsg(target, m);
  std::string low = "~120", high = "~121";
  PutBuyIn(low, g_.HostMinBuyIn, -kMaxBankroll);
  PutBuyIn(high, g_.HostMaxBuyIn, kMaxBankroll);
  SendMsg(target, low);
  SendMsg(target, high);
}

void Host::Check4ClientsOutOfSync() {
  for (size_t k = 1; k < ClientList.size(); ++k) {
    ClientRecord& r = ClientList[k];
    if (r.Socket <= 0 || r.Socket == operatorSocket_ || !r.Named) continue;
    if (r.LastRollAck > -1 && r.LastRollAck != RollCount) {
      r.LastRollAck = -1;
      Log(r.ClientName + " is out of sync");
    }
  }
}

bool Host::AcksIn() const {
  for (size_t k = 1; k < ClientList.size(); ++k) {
    const ClientRecord& r = ClientList[k];
    if (r.Socket <= 0 || r.Socket == operatorSocket_ || !r.Named || r.LastRollAck == -1) continue;
    if (winsock_[r.Socket].Connected() && r.LastRollAck != RollCount) return false;
  }
  return true;
}

bool Host::AllInStep() const {
  for (size_t k = 1; k < ClientList.size(); ++k) {
    const ClientRecord& r = ClientList[k];
    if (r.Socket > 0 && r.Socket != operatorSocket_ && r.Named && winsock_[r.Socket].Connected() &&
        r.LastRollAck != RollCount)
      return false;
  }
  return true;
}

void Host::SendOutOfSync() {
  // The mark is lifted for this one message: the client answers with the count it holds.
  const std::string dice = "~660" + Digits(g_.Table.Die1, g_.Table.Die2) + std::to_string(RollCount);
  for (size_t k = 1; k < ClientList.size(); ++k) {
    const ClientRecord& r = ClientList[k];
    if (r.Socket > 0 && r.LastRollAck == -1 && winsock_[r.Socket].Connected()) Send(r.Socket, dice);
  }
}

void Host::TakeBaseline() {
  for (int s = 1; s < kSeats; ++s) {
    told_.names[s] = g_.PlayerName[s];
    told_.bankroll[s] = g_.Bankroll[s];
    told_.start[s] = g_.BeginningBankroll[s + kSessionScope];
    told_.invested[s] = g_.BuyInTotal[s + kSessionScope];
  }
  told_.shooter = g_.Table.Shooter;
  told_.lastHandShooter = g_.Table.LastHandShooter;
  told_.handShooter = g_.Table.HandShooter;
  told_.counters = CountersMessage(g_);
}

void Host::SendTableChanges() {
  if (g_.Table.Rolling) return;
  std::string removed, added, bankrolls;
  for (int s = 1; s < kSeats; ++s) {
    const std::string& name = g_.PlayerName[s];
    ClientRecord& e = ClientList[s];
    // A seat played here fills its entry; one that emptied clears it.
    if (e.Socket <= 0 && !e.Held) {
      if (!name.empty() && (e.Socket != -1 || e.ClientName != name)) {
        e = LocalEntry(name, s);
        listChanged_ = true;
      } else if (name.empty() && e.Socket == -1) {
        e = EmptyEntry();
        listChanged_ = true;
      }
    }
    if (name != told_.names[s]) {
      if (!told_.names[s].empty()) removed += "~886" + std::to_string(s) + "\t";
      if (!name.empty()) {
        added += "~888";
        PutInt(added, s);
        PutText(added, name);
        PutAmount(added, g_.Bankroll[s]);
      }
      told_.names[s] = name;
      told_.bankroll[s] = Money::FromRaw(INT64_MIN);  // its bankroll follows
    }
    if (name.empty()) continue;
    if (g_.Bankroll[s] != told_.bankroll[s] || g_.BeginningBankroll[s + kSessionScope] != told_.start[s] ||
        g_.BuyInTotal[s + kSessionScope] != told_.invested[s]) {
      bankrolls += BankrollRecord(g_, s);
      told_.bankroll[s] = g_.Bankroll[s];
      told_.start[s] = g_.BeginningBankroll[s + kSessionScope];
      told_.invested[s] = g_.BuyInTotal[s + kSessionScope];
    }
  }
  if (!removed.empty()) SendMsg(-1, removed);
  if (!added.empty()) SendMsg(-1, added);
  if (!bankrolls.empty()) SendMsg(-1, bankrolls);
  const TableState& t = g_.Table;
  if (t.Shooter != told_.shooter || t.LastHandShooter != told_.lastHandShooter || t.HandShooter != told_.handShooter) {
    SendMsg(-1, ShootersMessage(g_));
    told_.shooter = t.Shooter;
    told_.lastHandShooter = t.LastHandShooter;
    told_.handShooter = t.HandShooter;
  }
  std::string counters = CountersMessage(g_);
  if (counters != told_.counters) {
    SendMsg(-1, counters);
    told_.counters = std::move(counters);
  }
}

// ---- Polling, the countdown and the roll. ---------------------------------------------------

int Host::Entry(int socket) const {
  if (socket <= 0) return 0;
  for (size_t k = 1; k < ClientList.size(); ++k)
    if (ClientList[k].Socket == socket) return static_cast<int>(k);
  return 0;
}

int Host::ConnectedClients() const {
  int n = 0;
  for (size_t i = kFirstClient; i < winsock_.size(); ++i) n += winsock_[i].Connected();
  return n;
}

int Host::WaitListCount() const {
  int n = 0;
  for (size_t k = kFirstListEntry; k < ClientList.size(); ++k) n += ClientList[k].Status == 'W';
  return n;
}

int Host::ObserverCount() const { return static_cast<int>(ClientList.size()) - kFirstListEntry - WaitListCount(); }

int Host::SeatedCount() const { return g_.Table.NumberOfPlayers; }

void Host::PollClients() {
  if (polling_) return;
  polling_ = true;
  const uint32_t now = clock_.TickMs();
  // 1. Seats: a client whose connection died keeps its seat for a while; then it ends.
  for (int s = 1; s < kFirstListEntry; ++s) {
    ClientRecord& e = ClientList[s];
    if (e.Held && now - e.HeldSince >= static_cast<uint32_t>(settings_.RejoinHoldMs)) {
      Log(e.ClientName + " did not come back; the seat at " + std::string(SeatName(s)) + " is free");
      EndHeldSeat(s);
    } else if (e.Socket > 0 && !winsock_[e.Socket].Connected()) {
      ClientLost(e.Socket);
    }
  }
  // 2. Wait listers and observers whose connection died.
  for (size_t k = kFirstListEntry; k < ClientList.size();) {
    const int socket = ClientList[k].Socket;
    if (socket > 0 && winsock_[socket].Connected()) {
      ++k;
      continue;
    }
    if (socket == operatorSocket_) TerminateClientHosting();
    ClientList.erase(ClientList.begin() + static_cast<long>(k));
    listChanged_ = true;
  }
  SendTableChanges();
  // 3. A free seat goes to the first wait lister; a claim not taken in time passes on.
  const int waiting = WaitListCount();
  if (SeatedCount() < Panel.MaxPlayers && waiting > 0) {
    if (!claimRunning_) {
      claimRunning_ = true;
      claimSince_ = now;
      SendMsg(ClientList[kFirstListEntry].Socket, "~884");
    } else if (now - claimSince_ >= static_cast<uint32_t>(settings_.ClaimMs) && waiting > 1) {
      ClientRecord first = ClientList[kFirstListEntry];
      ClientList.erase(ClientList.begin() + kFirstListEntry);
      ClientList.insert(ClientList.begin() + kFirstListEntry + waiting - 1, first);
      claimSince_ = now;
      SendMsg(ClientList[kFirstListEntry].Socket, "~884");
      listChanged_ = true;
    }
  } else {
    claimRunning_ = false;
  }
  // 4. The lobby and an operator hear of a change.
  if (listChanged_) {
    SendTable2Central();
    SendClientList();
    listChanged_ = false;
  }
  // 5. After a client operated the table and everyone has gone, the table as it opened.
  if (hostingLeftChanges_ && operatorSocket_ == 0 && ConnectedClients() == 0) {
    hostingLeftChanges_ = false;
    if (RestoreFile(g_, Restore, kHostRestoreFile, true)) {
      TakeBaseline();
      SendTable2Central();
    }
  }
  polling_ = false;
}

void Host::Tick() {
  const uint32_t now = clock_.TickMs();
  for (int i = kFirstClient; i < static_cast<int>(winsock_.size()); ++i) {
    const std::string why = winsock_[i].Stale(settings_.Limits, now);
    if (!why.empty()) Drop(i, why);
  }
  if (now - lastKeepalive_ >= static_cast<uint32_t>(settings_.KeepaliveMs)) {
    const double minutes = (now - lastKeepalive_) / 60000.0;
    lastKeepalive_ = now;
    tableMinutes_ += minutes;
    for (size_t k = 1; k < ClientList.size(); ++k)
      if (ClientList[k].Socket > 0) ClientList[k].TableTime += minutes;
    PollClients();
    SendMsg(-1, "~PING");
    SendOutOfSync();
  }
  if (countdownRunning_ && static_cast<int32_t>(now - nextCountdownTick_) >= 0) {
    nextCountdownTick_ += static_cast<uint32_t>(settings_.CountdownTickMs);
    CountdownTick();
  }
  if (countdownPending_ && (AcksIn() || now - countdownPendingSince_ >= static_cast<uint32_t>(settings_.AckWaitMs))) {
    countdownPending_ = false;
    if (g_.Auto.AutoRollActive && !countdownRunning_ && !rollDue_) StartCountdown(g_.OnlinePanel.CountdownToLockout);
  }
  if (rollDue_ && (AcksIn() || now - rollDueSince_ >= static_cast<uint32_t>(settings_.AckWaitMs))) {
    rollDue_ = false;
    RollNow();
  }
  if (!lobbyHost_.empty() && !winsock_[1].Connected() && winsock_[1].socket &&
      winsock_[1].socket->State() != kSocketConnecting &&
      now - lobbyTry_ >= static_cast<uint32_t>(settings_.LobbyReportMs))
    ConnectLobby(lobbyHost_, lobbyPort_);
  if (now - lastReport_ >= static_cast<uint32_t>(settings_.LobbyReportMs)) SendTable2Central();
}

void Host::StartCountdown(int seconds) {
  countdownLength_ = countdownLeft_ = seconds;
  countdownRunning_ = true;
  nextCountdownTick_ = clock_.TickMs() + static_cast<uint32_t>(settings_.CountdownTickMs);
  if (seconds > 0) {
    OnlineState = 4;
    SendMsgAllX(operatorSocket_, "~661" + std::to_string(seconds));
  } else {
    OnlineState = 5;
    SendMsgAllX(operatorSocket_, "~662");
  }
}

void Host::CountdownTick() {
  if (--countdownLeft_ == 0) {
    OnlineState = 5;
    SendMsgAllX(operatorSocket_, "~662");
  }
  // The roll comes RollDelay seconds after the lockout, once the clients have reported the last one.
  if (countdownLeft_ <= -g_.OnlinePanel.RollDelay) {
    countdownRunning_ = false;
    rollDue_ = true;
    rollDueSince_ = clock_.TickMs();
  }
}

void Host::LockoutBets() {
  OnlineState = 5;
  countdownLeft_ = 0;
  if (!g_.Auto.AutoRollActive) countdownRunning_ = false;
  SendMsgAllX(operatorSocket_, "~662");
}

void Host::StopRolling() {
  countdownRunning_ = rollDue_ = countdownPending_ = false;
  countdownLeft_ = 0;
  OnlineState = 5;
  SendMsgAllX(operatorSocket_, "~662");
  SendOutOfSync();  // a client out of step is resynced now, not at the next keepalive
}

void Host::AcceptBets() {
  OnlineState = 4;
  countdownLeft_ = 0;
  countdownRunning_ = rollDue_ = countdownPending_ = false;
  SendMsgAllX(operatorSocket_, "~663");
}

void Host::RequestRoll() {
  if (g_.Table.Rolling || rollDue_ || OnlineState < 4) return;
  if (g_.OnlinePanel.RollDelay == 0) {
    rollDue_ = true;
    rollDueSince_ = clock_.TickMs();
    return;
  }
  if (OnlineState != 5) {
    OnlineState = 5;
    SendMsgAllX(operatorSocket_, "~662");
  }
  countdownLength_ = countdownLeft_ = 0;
  countdownRunning_ = true;
  nextCountdownTick_ = clock_.TickMs() + static_cast<uint32_t>(settings_.CountdownTickMs);
}

void Host::RollNow() {
  if (g_.Table.Rolling || OnlineState < 4) return;
  Check4ClientsOutOfSync();
  SendTableChanges();
  const int32_t before = RollCount;
  RollDice(g_);
  if (RollCount == before) {
    // No roll (the shot was refused): betting opens again.
    const int shooter = g_.Table.Shooter;
    Log("no roll: " + (shooter ? g_.PlayerName[shooter] : std::string("nobody")) + " has the dice" +
        (g_.StopReason.empty() ? std::string() : "; " + g_.StopReason));
    AcceptBets();
    if (g_.Auto.AutoRollActive) StartCountdown(g_.OnlinePanel.CountdownToLockout);
  }
}

// ---- The link from the engine. -----------------------------------------------------------

OnlineDice Host::TakeDice(int32_t& die1, int32_t& die2) {
  if (!operatorDicePending_) return OnlineDice::Local;
  operatorDicePending_ = false;
  rollFromOperator_ = true;
  die1 = operatorDie1_;
  die2 = operatorDie2_;
  return OnlineDice::Remote;
}

void Host::DiceRolled(int32_t die1, int32_t die2) {
  rolled_ = true;
  ++RollCount;
  const std::string dice = "~666" + Digits(die1, die2);
  if (rollFromOperator_) SendMsgAllX(operatorSocket_, dice);
  else SendMsg(-1, dice);
}

void Host::RollEnded() {
  rollFromOperator_ = false;
  if (!rolled_) return;
  rolled_ = false;
  for (const std::string& m : changed_.Take(g_)) SendMsg(-1, m);
  // The clients rolled the same roll: what it changed they know.
  TakeBaseline();
  SendOutOfSync();
  OnlineState = 4;
  // Under Auto-Roll the next countdown starts once the clients have reported this roll:
  // their bets for the next one come before their reports, so none of them is late.
  if (g_.Auto.AutoRollActive) {
    countdownPending_ = true;
    countdownPendingSince_ = clock_.TickMs();
  }
  if (AfterRoll) AfterRoll();
}

void Host::BetChanged(int seat, int bet) {
  if (seat < 1 || seat >= kSeats || bet < 1 || bet > kBets) return;
  if (g_.Table.Rolling) {
    changed_.Mark(seat, bet);
    return;
  }
  SendMsg(-1, BetRecord(g_, seat, bet));
}

void Host::WorkingChanged(int seat, int bet) {
  if (seat < 1 || seat >= kSeats || bet < 1 || bet > kBets) return;
  if (g_.Table.Rolling) changed_.MarkWorking(seat, bet);
  else SendMsg(-1, WorkingRecord(g_, seat, bet));
}

void Host::WorkOnComeOutChanged(int seat) {
  if (seat < 1 || seat >= kSeats) return;
  if (g_.Table.Rolling) changed_.MarkComeOut(seat);
  else SendMsg(-1, WorkOnComeOutRecord(g_, seat));
}

BetRefusal Host::RefuseBet(int seat, int bet) {
  if (OnlineState == 5) return {"No more bets", "Online connection"};
  if (ClientSeat(seat))
    return {"You're currently connected to an online game and are not allowed to bet for online players.",
            "Online connection"};
  return {};
}

StakeDecision Host::StakeOf(int seat) { return ClientSeat(seat) ? StakeDecision::Elsewhere : StakeDecision::Here; }

void Host::SessionStarted() {
  SendMsgAllX(applyingFrom_, "~700");
  const std::string bankrolls = BankrollsMessage(g_);
  if (!bankrolls.empty()) SendMsg(-1, bankrolls);
  TakeBaseline();
}

void Host::AutoRollSwitched(bool on) {
  if (on && OnlineState >= 4 && !countdownRunning_ && !rollDue_ && !countdownPending_)
    StartCountdown(g_.OnlinePanel.CountdownToLockout);
}

void Host::DicePassed() { SendMsgAllX(applyingFrom_, "~668"); }

// ---- The lobby. -------------------------------------------------------------------------------

void Host::LobbyMessage(const std::string& message) {
  ParsedMessage m;
  std::string fault;
  if (!ReadMessage(message, kLobbyToPeer, m, fault)) {
    Log("the lobby: " + fault + "; message dropped");
    return;
  }
  if (m.form->code == "~500") SendMsg(1, "~500DiceHall host " + g_.HostName);
  else if (m.form->code == "~007") LobbyLine = std::string(m.At(0, 0).text);
}

void Host::SendTable2Central() {
  lastReport_ = clock_.TickMs();
  if (!winsock_[1].Connected()) return;
  const bool open = winsock_[0].socket && winsock_[0].socket->State() == kSocketListening;
  const std::string address =
      settings_.ReportAddress.empty() ? settings_.Address + ":" + std::to_string(Port()) : settings_.ReportAddress;
  std::string m = "~555";
  PutText(m, FirstCharacters(g_.OnlineGameName, 20));
  PutText(m, FirstCharacters(g_.HostName, 20));
  PutText(m, FirstCharacters(address, 50));
  PutText(m, open ? "Open" : "Closed");
  PutAmount(m, g_.Rules.MinPlacardBet);
  PutAmount(m, g_.Rules.MaxPlacardBet);
  PutText(m, FirstCharacters(OddsText(g_.Rules, false), 20));
  PutAmount(m, Max(g_.HostMinBuyIn, -kMaxBankroll));
  PutAmount(m, Min(g_.HostMaxBuyIn, kMaxBankroll));
  PutInt(m, g_.OnlinePanel.GamePassword.empty() ? 0 : 1);
  for (int s = 1; s < kSeats; ++s) PutText(m, open ? FirstCharacters(g_.PlayerName[s], 19) : "");
  PutInt(m, SeatedCount());
  PutInt(m, WaitListCount());
  PutInt(m, ObserverCount());
  PutText(m, FirstCharacters(g_.OnlinePanel.GameNotes, 100));
  SendMsg(1, m);
}

void Host::SendClientList() {
  if (operatorSocket_ == 0) return;
  std::string list = "~013";
  int count = 0;
  std::string groups;
  for (size_t k = 1; k < ClientList.size(); ++k) {
    const ClientRecord& r = ClientList[k];
    if (r.Socket == 0 && !r.Held) continue;
    ++count;
    PutText(groups, std::string(1, r.Status) + FirstCharacters(r.ClientName, 20));
    PutAmount(groups, Money::FromDouble(r.TableTime));
    PutFlag(groups, r.IsClientHost);
    PutInt(groups, r.Seat);
    PutFlag(groups, r.ChatAllowed);
    PutFlag(groups, r.AutoBetAllowed);
    PutInt(groups, r.ClientLevel);
    PutInt(groups, r.Socket);
  }
  PutInt(list, count);
  SendMsg(operatorSocket_, list + groups);
  std::string counts = "~129";
  PutInt(counts, SeatedCount());
  PutInt(counts, WaitListCount());
  PutInt(counts, ObserverCount());
  SendMsg(operatorSocket_, counts);
  std::string maxima = "~130";
  PutInt(maxima, Panel.MaxPlayers);
  PutInt(maxima, Panel.MaxWaitList);
  PutInt(maxima, Panel.MaxObservers);
  SendMsg(operatorSocket_, maxima);
}

std::string Host::WelcomeText(int entry) const {
  const ClientRecord& r = ClientList[entry];
  std::string t = "Welcome to " + g_.OnlineGameName + "\n";
  if (!g_.HostName.empty() && !SameName(g_.HostName, "host")) t += "Hosted by " + g_.HostName + "\n";
  t += "\n";
  if (r.Status == 'P')
    t += "You're playing in the game as " + r.ClientName + " at spot " + std::string(SeatName(entry)) + "\n";
  else if (r.Status == 'W')
    t += "You're observing the game as number " + std::to_string(entry - kFirstListEntry + 1) + " on the wait list.\n";
  else t += "You're currently an observer but may change your status by clicking the Play menu.\n";
  const int open = static_cast<int>((clock_.TickMs() - openedAt_) / 60000);
  t += open < 1 ? std::string("The table just opened.\n") : "The table's been open for " + Minutes(open) + "\n";
  t += "You've been here for " + Minutes(static_cast<int>(r.TableTime)) + "\n\n";
  t += "Min bet $" + MoneyText(g_.Rules.MinPlacardBet) + "\n";
  t += "Max bet $" + MoneyText(g_.Rules.MaxPlacardBet) + "\n";
  t += OddsText(g_.Rules, true) + "\n";
  const bool lowOpen = g_.HostMinBuyIn <= -kMaxBankroll, highOpen = g_.HostMaxBuyIn >= kMaxBankroll;
  if (lowOpen && highOpen) t += "Unlimited buy-in\n";
  else if (g_.HostMinBuyIn == g_.HostMaxBuyIn) t += "Required buy-in $" + MoneyText(g_.HostMinBuyIn) + "\n";
  else {
    if (!lowOpen) t += "Min buy-in $" + MoneyText(g_.HostMinBuyIn) + "\n";
    if (!highOpen) t += "Max buy-in $" + MoneyText(g_.HostMaxBuyIn) + "\n";
  }
  if (!g_.OnlinePanel.GameNotes.empty()) t += "\n" + g_.OnlinePanel.GameNotes;
  return t;
}
