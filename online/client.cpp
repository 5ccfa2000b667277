#include "online/client.h"

#include <exception>

#include "autobet/interpreter.h"
#include "engine/bankroll.h"
#include "engine/messages.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "online/mirror.h"
#include "stats/events_log.h"
#include "storage/error_report.h"

namespace {

int SeatByName(std::string name) {
  name = TrimBlanks(name);
  for (char& c : name) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  for (int s = 1; s <= 8; ++s) {
    const std::string_view seat = SeatName(s);  // "4L", ...; "L4" is taken too
    if (name == seat || (name.size() == 2 && name[0] == seat[1] && name[1] == seat[0])) return s;
  }
  return 0;
}

}  // namespace

Client::Client(Game& g, SocketNetwork& net, Clock& clock, ClientSettings settings)
    : g_(g), net_(net), clock_(clock), settings_(std::move(settings)) {
  winsock_.resize(2);
}

Client::~Client() {
  for (Connection& c : winsock_)
    if (c.socket) c.socket->Close();
  if (g_.Online == this) {
    g_.Online = nullptr;
    g_.OnlineRole = 0;
  }
}

void Client::Log(const std::string& text) {
  if (g_.RecordEvents) AddEventLine(g_, "    Online: " + text);
  if (OnLog) OnLog(text);
}

MessageReply Client::Ask(const std::string& text, const std::string& title, int flags, const std::string& input) {
  MessageRequest request;
  request.Text = text;
  request.Title = title;
  request.Flags = flags;
  request.Input = input;
  if (g_.Ui == nullptr) return MessageReply{kButtonCancel, "", false};
  return g_.Ui->ShowMessage(request);
}

bool Client::Connected() const { return winsock_[0].Connected(); }

void Client::SendMsg(int target, const std::string& text) {
  Connection& c = winsock_[target == 1 ? 1 : 0];
  if (c.Connected() && !c.Send(text)) Log("a message too long for a frame was not sent (" + text.substr(0, 4) + ")");
}

void Client::Join(const std::string& host, int port) {
  // The player's own game waits in "restore.crp" while the mirror takes the table.
  if (!restoreSaved_) {
    ownGame_ = NameOf(g_);
    restoreSaved_ = RestoreFile(g_, Restore, kClientRestoreFile, false);
  }
  stateBeforeConnect_ = OnlineState;
  tableAddress_ = host;
  winsock_[0].socket = net_.NewSocket(*this, 0);
  OnlineState = 2;
  winsock_[0].socket->Connect(host, port);
}

void Client::Leave() {
  if (winsock_[0].socket) winsock_[0].socket->Close();
  ConnectionLost(false);
}

void Client::ConnectLobby(const std::string& host, int port) {
  lobbyAddress_ = host;
  lobbyPort_ = port;
  winsock_[1].socket = net_.NewSocket(*this, 1);
  winsock_[1].socket->Connect(host, port);
}

bool Client::ChooseTable(const TableListing& table) {
  if (table.Status == "Closed") {
    Ask("The selected table is closed.", "Pit", msg::kOk);
    return false;
  }
  std::string host;
  int port = 0;
  if (!SplitAddress(table.Address, host, port)) return false;
  for (TableListing& t : Tables) t.Chosen = t.GameName == table.GameName && t.Address == table.Address;
  Join(host, port);
  return true;
}

void Client::RequestSeat() {
  if (OwnSeat != 0) {
    Ask("You're already playing in the game as " + OwnName + " at spot " + std::string(SeatName(OwnSeat)),
        "Online play", msg::kOk);
    return;
  }
  SendMsg(0, "~990");
}

void Client::RequestWaitList() { SendMsg(0, "~991"); }

void Client::LeaveSeat() {
  if (OwnSeat != 0) SendMsg(0, "~992" + std::to_string(OwnSeat));
}

void Client::AskToOperate() { SendMsg(0, "~012"); }

void Client::OperatorCommand(const std::string& message) {
  if (ClientHosting && !message.empty() && message[0] == '~') SendMsg(0, message);
}

void Client::SetAutoPass(bool on) {
  if (OwnSeat == 0) return;
  g_.AutoPassDice[OwnSeat] = on;
  SendMsg(0, "~669" + std::to_string(OwnSeat) + (on ? "-1" : "0"));
}

void Client::Chat(const std::string& text) {
  if (!ChatAllowed || text.empty() || text[0] == '~') return;
  SendMsg(0, text);
}

// ---- Socket events. -------------------------------------------------------------------------

void Client::OnConnect(int index) {
  const uint32_t now = clock_.TickMs();
  winsock_[index].Reset(settings_.Limits, now);
  if (index == 1) {
    if (OnlineState < 2) OnlineState = 1;
    SendMsg(1, "~007");
    SendMsg(1, "~501");
    return;
  }
  // At a table now: the lobby hears this client left it.
  SendMsg(1, "~510");
  OnlineState = 3;
  g_.Online = this;
  g_.OnlineRole = kOnlineClient;
}

void Client::OnData(int index, std::string_view bytes) {
  if (index < 0 || index > 1) return;
  winsock_[index].decoder.Feed(bytes);
  winsock_[index].lastData = clock_.TickMs();
  if (processingMessage_) return;
  DrainAll();
}

void Client::DrainAll() {
  for (bool progress = true; progress;) {
    progress = false;
    for (int i = 0; i < 2; ++i) {
      std::string message, fault;
      while (winsock_[i].Connected() && winsock_[i].NextMessage(settings_.Limits, clock_.TickMs(), message, fault)) {
        processingMessage_ = true;
        try {
          if (i == 1) ProcessMsgFromLobby(message);
          else ProcessMsgFromHost(0, message);
        } catch (const std::exception& e) {
          Log(ErrorReport(e.what(), 5, "ProcessMsgFromHost"));
        }
        processingMessage_ = false;
        progress = true;
      }
      if (!fault.empty()) {
        Log(std::string(i == 1 ? "the lobby" : "the host") + ": " + fault + "; connection closed");
        winsock_[i].socket->Close();
        if (i == 0) ConnectionLost(true);
      }
    }
  }
  SendOwnBankroll();
}

void Client::OnClose(int index) {
  if (index == 1) {
    if (winsock_[1].socket) winsock_[1].socket->Close();
    if (OnlineState == 1) OnlineState = 0;
    return;
  }
  if (winsock_[0].socket) winsock_[0].socket->Close();
  if (OnlineState == 2) {
    for (TableListing& t : Tables) t.Chosen = false;
    Ask("Selected table unavailable at this time.", "Online play", msg::kOk);
    OnlineState = stateBeforeConnect_;
    if (OnLeft) OnLeft();
    return;
  }
  ConnectionLost(true);
}

void Client::ConnectionLost(bool tellUser, bool offline) {
  const int state = OnlineState;
  if (state >= 4 && g_.RecordEvents) AddEventLine(g_, " Online session ended " + DayText(g_) + " @ " + ClockText(g_));
  if (offline && state < 4) {
    Ask("Please check your connections", "Online play", msg::kOk);
  } else if (offline) {
    ChatLines.push_back("Internet connection lost at " + ClockText(g_));
  } else if (tellUser && state >= 2) {
    Ask(state == 0 ? "Unable to connect" : "Connection lost", "Online play", msg::kOk);
    ChatLines.push_back("Disconnected at " + ClockText(g_));
  }
  if (state >= 2)
    Log(offline    ? "the machine reports no connection"
        : tellUser ? "the connection to the host was lost"
                   : "left the table");
  ClientHosting = false;
  OnlineState = winsock_[1].Connected() ? 1 : 0;
  OwnSeat = 0;
  OwnName.clear();
  g_.ClientSeat = 0;
  g_.ClientObserver = false;
  if (g_.Online == this) {
    g_.Online = nullptr;
    g_.OnlineRole = 0;
  }
  // The player's own game comes back.
  if (restoreSaved_) {
    if (RestoreFile(g_, Restore, kClientRestoreFile, true)) Rename(g_, ownGame_);
    restoreSaved_ = false;
  }
  if (state >= 2 && OnLeft) OnLeft();
}

void Client::Tick() {
  const uint32_t now = clock_.TickMs();
  if (now - lastKeepalive_ < static_cast<uint32_t>(settings_.KeepaliveMs)) return;
  lastKeepalive_ = now;
  // 1. A machine that reports no connection has lost its table, whatever the socket says.
  if (OnlineState >= 2 && !settings_.ConnectedState(tableAddress_)) {
    if (winsock_[0].socket) winsock_[0].socket->Close();
    ConnectionLost(true, true);
    return;
  }
  // 2, 3. The lobby comes back when it was lost; in the lobby the list is asked again.
  if (!lobbyAddress_.empty() && !winsock_[1].Connected() &&
      (!winsock_[1].socket || winsock_[1].socket->State() != kSocketConnecting))
    ConnectLobby(lobbyAddress_, lobbyPort_);
  if (OnlineState == 1 && winsock_[1].Connected()) SendMsg(1, "~501");
  // A host that has said nothing for so long is gone.
  if (OnlineState >= 3 && !ClientHosting && now - winsock_[0].lastData >= static_cast<uint32_t>(settings_.StaleMs)) {
    Log("nothing from the host for " + std::to_string(settings_.StaleMs / 1000) + " seconds");
    if (winsock_[0].socket) winsock_[0].socket->Close();
    ConnectionLost(true);
  }
}

// ---- The lobby. -----------------------------------------------------------------------------

void Client::ProcessMsgFromLobby(const std::string& message) {
  if (message == "~516") {
    Tables.clear();
    return;
  }
  ParsedMessage m;
  std::string fault;
  if (!ReadMessage(message, kLobbyToPeer, m, fault)) {
    Log("the lobby: " + fault + "; message dropped");
    return;
  }
  const std::string_view code = m.form->code;
  if (code == "~500") {
    SendMsg(1, "~500DiceHall client " + OwnName);
  } else if (code == "~007" || code == "~501") {
    LobbyLine = std::string(m.At(0, m.width - 1).text);
  } else if (code == "~503") {
    Ask(std::string(m.At(0, 0).text), "Terms of Service", msg::kOk);
  } else if (code == "~504") {
    Ask("Please read and agree to the\nnew terms of service.", "Terms of service", msg::kOk);
  } else if (code == "~516") {
    std::vector<TableListing> tables;
    for (int r = 0; r < m.records; ++r) tables.push_back(ListingOf(m, r));
    Tables = std::move(tables);
  }
}

namespace {

// Field k of a message's first record.
std::string FieldText(const ParsedMessage& m, int k) { return std::string(m.At(0, k).text); }
int FieldNumber(const ParsedMessage& m, int k) { return static_cast<int>(m.At(0, k).number); }

}  // namespace

// ---- Messages from the host. ----------------------------------------------------------------

void Client::ProcessMsgFromHost(int socket, const std::string& message) {
  if (message.empty() || message[0] != '~') {
    // Chat. A line that names this player rings.
    ChatLines.push_back(message);
    if (g_.RecordEvents) AddEventLine(g_, "    Chat: " + message);
    if (!OwnName.empty()) {
      std::string lower = message, name = OwnName;
      for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      if ((lower.find(" " + name) != std::string::npos || lower.find("\x01" + name) != std::string::npos) && g_.Ui &&
          !g_.SilentMode)
        g_.Ui->PlaySound("DING.WIN", false);
    }
    return;
  }
  if (message == "~PING") {
    SendMsg(0, "~PONG");
    return;
  }
  ParsedMessage m;
  std::string fault;
  if (!ReadMessage(message, kHostToClient, m, fault)) {
    Log("the host: " + fault + "; message dropped");
    return;
  }
  TableMessage(m);
}

void Client::TableMessage(const ParsedMessage& m) {
  // "~013" (the client list), "~122" to "~130" and the colours "~922" to "~926" are the
  // operator's panel and the table's look: this mirror keeps none of them.
  JoinMessage(m) || NoticeMessage(m) || RollMessage(m) || WaitListMessage(m) || MirrorMessage(m);
}

// Joining the table: the handshake, the password, the name, the seat and the buy-in,
// and what the host says of this player afterwards.
bool Client::JoinMessage(const ParsedMessage& m) {
  const std::string_view code = m.form->code;
  if (code == "~001") {
    ClearTable();
    SendMsg(0, "~0011");
  } else if (code == "~002") {
    hostName_ = FieldText(m, 0);
    gameName_ = FieldText(m, 1);
    g_.HostName = hostName_;
    g_.OnlineGameName = gameName_;
  } else if (code == "~003") {
    AskPassword(FieldText(m, 0));
  } else if (code == "~004") {
    Welcome = FieldText(m, 0);
    g_.Percentage.PercentageDiceOn = false;
    AskName("");
  } else if (code == "~005") {
    AskName(FieldText(m, 0) + "\n\n");
  } else if (code == "~006") {
    OwnName = FieldText(m, 0);
    OnlineState = FieldNumber(m, 1) >= 4 ? FieldNumber(m, 1) : 4;
    g_.ClientObserver = OwnSeat == 0;
    if (g_.RecordEvents) LogSessionHeader(g_);
    if (OnJoined) OnJoined();
  } else if (code == "~007") {
    Welcome = FieldText(m, 0);
    Ask(Welcome, "Welcome", msg::kOk);
  } else if (code == "~008") {
    AskSeat(FieldText(m, 0));
  } else if (code == "~009") {
    AskBuyIn();
  } else if (code == "~010") {
    const int seat = FieldNumber(m, 0);
    if (SeatOccupied(g_, seat) && g_.PlayerName[seat] != OwnName) {
      Log("the host: seat " + std::to_string(seat) + " is another player's; message dropped");
      return true;
    }
    OwnSeat = seat;
    g_.ClientSeat = seat;
    g_.ClientObserver = false;
    if (!SeatOccupied(g_, seat)) {
      NoBoxes quiet(g_);
      AddPlayer(g_, seat, OwnName, m.At(0, 1).amount);
    }
    toldInvested_ = g_.BuyInTotal[seat + kSessionScope];
    SendMsg(0, "~669" + std::to_string(seat) + (g_.AutoPassDice[seat] ? "-1" : "0"));
    if (OnSeated) OnSeated(seat);
    Ask("Good luck!", "Let's play!", msg::kOk);
  } else if (code == "~011") {
    const int seat = FieldNumber(m, 0);
    const std::string name = TrimBlanks(FieldText(m, 1));
    if (!SeatOccupied(g_, seat) || name.empty()) return true;
    g_.PlayerName.Set(seat, name);
    if (seat == OwnSeat) {
      OwnName = name;
      Ask("The host has renamed you to:\n" + name, "Renamed", msg::kOk);
    }
  } else if (code == "~012") {
    ClientHosting = FieldNumber(m, 0) != 0;
    Ask(ClientHosting ? "You're approved to host the table."
                      : "Sorry, hosting has been taken or is temporarily unavailable.",
        "Hosting", msg::kOk);
  } else if (code == "~014") {
    LastPassword = FieldText(m, 0);
  } else {
    return false;
  }
  return true;
}

// The host's notices and settings for its clients: chat and scripts allowed, the buy-in
// bounds, text for the clipboard and links.
bool Client::NoticeMessage(const ParsedMessage& m) {
  const std::string_view code = m.form->code;
  if (code == "~100" || code == "~101") {
    ChatAllowed = code == "~101";
    if (!FieldText(m, 0).empty()) Ask(FieldText(m, 0), "Host notice", msg::kOk);
  } else if (code == "~102" || code == "~103") {
    AllowAutoBet = code == "~103";
    if (!AllowAutoBet && OwnSeat != 0) g_.ScriptActive[OwnSeat] = false;
    if (!FieldText(m, 0).empty()) Ask(FieldText(m, 0), "Host notice", msg::kOk);
  } else if (code == "~120" || code == "~121") {
    const FieldValue& v = m.At(0, 0);
    if (code == "~120") g_.HostMinBuyIn = v.unlimited ? -kMaxBankroll : v.amount;
    else g_.HostMaxBuyIn = v.unlimited ? kMaxBankroll : v.amount;
  } else if (code == "~670") {
    ClipboardText = FieldText(m, 0);
    Ask("The host has just sent text to your clipboard.", "Clipboard", msg::kOk);
  } else if (code == "~995" || code == "~996" || code == "~998") {
    Ask("The host has sent you a link to the following website:\n" + FieldText(m, 0) +
            "\nWould like to open it with your browser?",
        "Open browser", msg::kYesNoQuestion);
  } else {
    return false;
  }
  return true;
}

// The roll's cycle as the host runs it: the dice, the betting window, the shooter's
// passes, a new table and a resync.
bool Client::RollMessage(const ParsedMessage& m) {
  const std::string_view code = m.form->code;
  if (code == "~660") {
    g_.Table.Die1 = FieldNumber(m, 0);
    g_.Table.Die2 = FieldNumber(m, 1);
    g_.Table.DiceTotal = g_.Table.Die1 + g_.Table.Die2;
    HostRollCount = static_cast<int32_t>(m.At(0, 2).number);
    SendMsg(0, "~667" + std::to_string(HostRollCount));
  } else if (code == "~661" || code == "~663") {
    if (OnlineState < 4) return true;
    const bool opened = OnlineState == 5;
    OnlineState = 4;
    if (opened && OnBetsOpen) OnBetsOpen();
  } else if (code == "~662") {
    if (OnlineState >= 4) OnlineState = 5;
  } else if (code == "~664") {
    g_.Auto.AutoRollDelay = m.At(0, 0).amount.ToDouble();
  } else if (code == "~666") {
    if (OnlineState >= 4) RunHostRoll(FieldNumber(m, 0), FieldNumber(m, 1));
  } else if (code == "~668") {
    NoBoxes quiet(g_);
    ++applyingHost_;
    PassDice(g_, kPassLogged);
    --applyingHost_;
  } else if (code == "~669") {
    g_.AutoPassDice[FieldNumber(m, 0)] = FieldNumber(m, 1) != 0;
  } else if (code == "~700") {
    const int state = OnlineState;
    OnlineState = 6;
    {
      NoBoxes quiet(g_);
      ++applyingHost_;
      ResetTable(g_, true, false, true, 0);
      --applyingHost_;
    }
    OnlineState = state;
  } else if (code == "~701") {
    Ask("You've been resynced by the host because you missed one or more rolls.\nYou may have gotten out of sync due "
        "to a delayed response. \nThe players, bets, and table conditions may have changed.",
        "Resync", msg::kOk);
    Log(OwnName + " was resynced to the host's table.");
  } else {
    return false;
  }
  return true;
}

// The wait list: offers of a place on it and of a seat coming free.
bool Client::WaitListMessage(const ParsedMessage& m) {
  const std::string_view code = m.form->code;
  if (code == "~881") {
    if (Ask("Unfortunately, all available spots on the table are taken or reserved.\nWould you like to be put on the "
            "wait list?",
            "Join wait list", msg::kYesNoQuestion)
            .Button == kButtonYes)
      SendMsg(0, "~991");
  } else if (code == "~882") {
    Ask(std::to_string(FieldNumber(m, 0)) + " on the wait list.", "Wait list", msg::kOk);
  } else if (code == "~883") {
    Ask("Unfortunately, there are no available spots on either the table or the wait list at this time. Please try "
        "again later.",
        "Table full", msg::kOk);
  } else if (code == "~884") {
    if (Ask("Good news!\nA spot is open on the table.\nClick OK within 30 secs to claim your spot.", "Player spot open",
            msg::kOk | msg::kCancel)
            .Button == kButtonOk)
      SendMsg(0, "~990");
  } else {
    return false;
  }
  return true;
}

// The host's word on the table this mirror holds: bets, working states, players,
// bankrolls, shooters, counters and rules.
bool Client::MirrorMessage(const ParsedMessage& m) {
  const std::string_view code = m.form->code;
  if (code == "~777") {
    ApplyBetRecords(g_, m);
  } else if (code == "~779") {
    ApplyWorkingRecords(g_, m);
  } else if (code == "~885") {
    const int from = FieldNumber(m, 0), to = FieldNumber(m, 1);
    MovePlayer(g_, from, to);
    if (OwnSeat == from) OwnSeat = g_.ClientSeat = to;
    else if (OwnSeat == to) OwnSeat = g_.ClientSeat = from;
  } else if (code == "~886") {
    for (int r = 0; r < m.records; ++r) {
      const int seat = static_cast<int>(m.At(r, 0).number);
      if (!SeatOccupied(g_, seat)) continue;
      // The host's word: the mirror removes the player as the host did, without asking.
      const int role = g_.OnlineRole;
      g_.OnlineRole = 0;
      {
        NoBoxes quiet(g_);
        ++applyingHost_;
        RemovePlayer(g_, seat);
        --applyingHost_;
      }
      g_.OnlineRole = role;
      if (seat == OwnSeat) {
        OwnSeat = g_.ClientSeat = 0;
        g_.ClientObserver = true;
      }
    }
  } else if (code == "~887") {
    ApplyBankrollRecords(g_, m);
    if (OwnSeat) toldInvested_ = g_.BuyInTotal[OwnSeat + kSessionScope];
  } else if (code == "~888") {
    for (int r = 0; r < m.records; ++r) {
      const int seat = static_cast<int>(m.At(r, 0).number);
      const std::string name = TrimBlanks(m.At(r, 1).text);
      if (name.empty() || g_.PlayerName[seat] == name) continue;
      if (SeatOccupied(g_, seat)) {
        Log("the host: seat " + std::to_string(seat) + " is taken in this mirror; resync expected");
        continue;
      }
      // The host's bounds were the host's to apply: the mirror takes the bankroll as it is.
      const Money low = g_.HostMinBuyIn, high = g_.HostMaxBuyIn;
      g_.HostMinBuyIn = -kMaxBankroll * 10;
      g_.HostMaxBuyIn = kMaxBankroll * 10;
      const int role = g_.OnlineRole;
      g_.OnlineRole = 0;
      {
        NoBoxes quiet(g_);
        AddPlayer(g_, seat, name, m.At(r, 2).amount);
      }
      g_.OnlineRole = role;
      g_.HostMinBuyIn = low;
      g_.HostMaxBuyIn = high;
    }
  } else if (code == "~889") {
    ApplyShooters(g_, m);
  } else if (code == "~919") {
    std::string fault;
    if (!ApplyCounters(g_, m, fault)) Log("the host: " + fault + "; message dropped");
  } else if (IsRuleCode(code)) {
    std::string fault;
    if (!ApplyRuleMessage(g_, m, fault)) Log("the host: " + fault + "; message dropped");
  } else {
    return false;
  }
  return true;
}
void Client::ClearTable() {
  OnlineLink* link = g_.Online;
  const int32_t role = g_.OnlineRole;
  const bool events = g_.RecordEvents;
  const int32_t categories = g_.EventsLogCategories;
  const std::string eventsFile = g_.EventsLogFile;
  const bool silent = g_.SilentMode, hyper = g_.Auto.HyperDrive;
  SetDefaultGame(g_);
  g_.SilentMode = silent;
  g_.Auto.HyperDrive = hyper;
  g_.Online = link;
  g_.OnlineRole = role;
  g_.RecordEvents = events;
  g_.EventsLogCategories = categories;
  g_.EventsLogFile = eventsFile;
  OwnSeat = 0;
  g_.ClientSeat = 0;
  HostRollCount = 0;
}

void Client::AskPassword(const std::string& before) {
  std::string text = before + "Welcome to " + gameName_ + "\n";
  if (!hostName_.empty() && !SameName(hostName_, "host")) text += "Hosted by " + hostName_ + "\n";
  text += "This table requires a password:";
  const MessageReply reply = Ask(text, "Password", msg::kOk | msg::kCancel | msg::kInput, LastPassword);
  if (reply.Button == kButtonCancel) {
    Leave();
    return;
  }
  LastPassword = reply.Input;
  SendMsg(0, "~003" + reply.Input);
}

void Client::AskName(const std::string& before) {
  std::string prompt = before + Welcome + "\n\nWhat's your name?";
  // An interface that keeps typing a refused name gets nowhere: it leaves.
  for (int tries = 0; tries < 20; ++tries) {
    const MessageReply reply = Ask(prompt, "Welcome!", msg::kOk | msg::kCancel | msg::kInput);
    if (reply.Button == kButtonCancel) break;
    const std::string name = TrimBlanks(reply.Input);
    std::string fault = name.empty() ? std::string("What's your name?") : PlayerNameFault(g_, name);
    if (fault.empty() && (SameName(name, hostName_) || SameName(name, "host"))) fault = name + " is reserved.";
    if (fault.empty()) {
      SendMsg(0, "~004" + name);
      return;
    }
    prompt = fault + "\n\n" + Welcome + "\n\nWhat's your name?";
  }
  Leave();
}

void Client::AskSeat(const std::string& list) {
  const MessageReply reply = Ask("Please select from the following\navailable spots:\n" + list, "Table position",
                                 msg::kOk | msg::kCancel | msg::kInput);
  if (reply.Button == kButtonCancel) return;
  const int seat = SeatByName(reply.Input);
  if (seat != 0) SendMsg(0, "~008" + std::to_string(seat));
}

void Client::AskBuyIn() {
  std::string text;
  if (g_.HostMinBuyIn > -kMaxBankroll) text += "Minimum buy-in is $" + MoneyText(g_.HostMinBuyIn) + "\n";
  if (g_.HostMaxBuyIn < kMaxBankroll) text += "Maximum buy-in is $" + MoneyText(g_.HostMaxBuyIn) + "\n";
  text += "How much would you like to buy-in for?";
  for (int tries = 0; tries < 20; ++tries) {
    const MessageReply reply = Ask(text, "Buy-in", msg::kOk | msg::kCancel | msg::kInput);
    if (reply.Button == kButtonCancel) return;
    Money amount;
    std::string error;
    if (ParseMoney(reply.Input, amount, error) && Abs(amount) <= kMaxBankroll) {
      SendMsg(0, "~009" + MoneyText(amount));
      return;
    }
  }
}

void Client::RunHostRoll(int32_t die1, int32_t die2) {
  OnlineState = 4;
  // The roll must run as the host's did: a script that doesn't compile sits this one out.
  if (!CompileActiveScripts(g_)) {
    for (int s = 1; s < kSeats; ++s) g_.ScriptActive[s] = false;
    Log("the seat's script doesn't compile; it is switched off");
  }
  diceWaiting_ = true;
  die1_ = die1;
  die2_ = die2;
  RollDice(g_);
  if (diceWaiting_) {
    diceWaiting_ = false;
    Log("the host's roll could not be rolled here; a resync will follow");
  }
}

// ---- The link from the engine. -----------------------------------------------------------

OnlineDice Client::TakeDice(int32_t& die1, int32_t& die2) {
  if (diceWaiting_) {
    diceWaiting_ = false;
    rollFromHost_ = true;
    die1 = die1_;
    die2 = die2_;
    return OnlineDice::Remote;
  }
  if (ClientHosting) return OnlineDice::Local;
  Ask("You're currently connected to an online game and your host has control over rolling.", "Online connection",
      msg::kOk);
  return OnlineDice::Refused;
}

void Client::DiceRolled(int32_t die1, int32_t die2) {
  diceRolled_ = true;
  // An operator's own roll goes to the host, which rolls it for everyone else.
  if (!rollFromHost_ && ClientHosting) SendMsg(0, "~666" + std::to_string(die1) + std::to_string(die2));
}

void Client::RollEnded() {
  const bool fromHost = rollFromHost_ && diceRolled_;
  rollFromHost_ = diceRolled_ = false;
  // The report comes first: what this player does after it belongs to the next roll, and
  // the host can tell a bet that crossed a roll on the wire from one that didn't.
  if (fromHost) {
    ++HostRollCount;
    if (WithheldReports > 0) --WithheldReports;
    else SendMsg(0, "~667" + std::to_string(HostRollCount));
  }
  for (const std::string& m : changed_.Take(g_)) SendMsg(0, m);
  if (fromHost && AfterRoll) AfterRoll();
}

void Client::BetChanged(int seat, int bet) {
  // This player's own decisions go to the host; what the host's word changed it knows.
  if (applyingHost_ > 0 || (seat != OwnSeat && !ClientHosting) || bet < 1 || bet > kBets) return;
  if (g_.Table.Rolling) changed_.Mark(seat, bet);
  else SendMsg(0, BetRecord(g_, seat, bet));
}

void Client::WorkingChanged(int seat, int bet) {
  // As with the amounts: this player's own calls go to the host.
  if (applyingHost_ > 0 || (seat != OwnSeat && !ClientHosting) || bet < 1 || bet > kBets) return;
  if (g_.Table.Rolling) changed_.MarkWorking(seat, bet);
  else SendMsg(0, WorkingRecord(g_, seat, bet));
}

void Client::WorkOnComeOutChanged(int seat) {
  if (applyingHost_ > 0 || (seat != OwnSeat && !ClientHosting)) return;
  if (g_.Table.Rolling) changed_.MarkComeOut(seat);
  else SendMsg(0, WorkOnComeOutRecord(g_, seat));
}

bool Client::MayChangeBets(int seat) { return seat == OwnSeat || ClientHosting || applyingHost_ > 0; }

BetRefusal Client::RefuseBet(int seat, int bet) {
  if (OwnSeat == 0 || seat != OwnSeat)
    return {"You're currently connected to an online game and are not allowed to add, delete or control other players.",
            "Online connection"};
  if (OnlineState != 4) return {"No more bets", "Online connection"};
  return {};
}

StakeDecision Client::StakeOf(int seat) { return seat == OwnSeat ? StakeDecision::Here : StakeDecision::Elsewhere; }

void Client::SessionStarted() {
  if (applyingHost_ == 0 && ClientHosting) SendMsg(0, "~700");
}

void Client::DicePassed() {
  if (applyingHost_ == 0) SendMsg(0, "~668");
}

void Client::SendOwnBankroll() {
  // Money the player brought to the seat (the ATM) goes to the host, which allows it or cuts it.
  if (OwnSeat == 0 || !SeatOccupied(g_, OwnSeat) || g_.BuyInTotal[OwnSeat + kSessionScope] == toldInvested_) return;
  toldInvested_ = g_.BuyInTotal[OwnSeat + kSessionScope];
  SendMsg(0, BankrollRecord(g_, OwnSeat));
}
