#include "online/lobby.h"

#include <algorithm>

TableListing ListingOf(const ParsedMessage& m, int r) {
  TableListing t;
  int k = 0;
  auto text = [&] { return std::string(m.At(r, k++).text); };
  auto amount = [&] { return m.At(r, k++).amount; };
  auto number = [&] { return static_cast<int>(m.At(r, k++).number); };
  t.GameName = text();
  t.HostName = text();
  t.Address = text();
  t.Status = text();
  t.MinBet = amount();
  t.MaxBet = amount();
  t.Odds = text();
  t.MinBuyIn = amount();
  t.MaxBuyIn = amount();
  t.PasswordFlag = number();
  for (std::string& p : t.Players) p = text();
  t.PlayerCount = number();
  t.WaitListCount = number();
  t.ObserverCount = number();
  t.Notes = text();
  return t;
}

void PutListing(std::string& m, const TableListing& t) {
  PutText(m, FirstCharacters(t.GameName, 20));
  PutText(m, FirstCharacters(t.HostName, 20));
  PutText(m, FirstCharacters(t.Address, 50));
  PutText(m, FirstCharacters(t.Status, 20));
  PutAmount(m, t.MinBet);
  PutAmount(m, t.MaxBet);
  PutText(m, FirstCharacters(t.Odds, 20));
  PutAmount(m, t.MinBuyIn);
  PutAmount(m, t.MaxBuyIn);
  PutInt(m, t.PasswordFlag);
  for (int s = 0; s < 8; ++s)
    PutText(m, s < static_cast<int>(t.Players.size()) ? FirstCharacters(t.Players[s], 19) : "");
  PutInt(m, t.PlayerCount);
  PutInt(m, t.WaitListCount);
  PutInt(m, t.ObserverCount);
  PutText(m, FirstCharacters(t.Notes, 100));
}

bool SplitAddress(const std::string& address, std::string& host, int& port) {
  const size_t colon = address.rfind(':');
  if (colon == std::string::npos || colon == 0 || colon + 1 == address.size() || address.size() - colon > 6)
    return false;
  int p = 0;
  for (size_t i = colon + 1; i < address.size(); ++i) {
    if (address[i] < '0' || address[i] > '9') return false;
    p = p * 10 + (address[i] - '0');
  }
  if (p < 1 || p > 65535) return false;
  host = address.substr(0, colon);
  port = p;
  return true;
}

LobbyServer::LobbyServer(SocketNetwork& net, Clock& clock, LobbySettings settings)
    : net_(net), clock_(clock), settings_(std::move(settings)) {
  peers_.resize(1);
}

LobbyServer::~LobbyServer() { Close(); }

void LobbyServer::Log(const std::string& text) {
  if (OnLog) OnLog(text);
}

bool LobbyServer::Open() {
  listener_ = net_.NewSocket(*this, 0);
  if (!listener_->Listen(settings_.Address, settings_.Port)) {
    Log("the lobby can't listen on " + settings_.Address + " port " + std::to_string(settings_.Port));
    return false;
  }
  return true;
}

int LobbyServer::Port() const { return listener_ ? listener_->LocalPort() : 0; }

void LobbyServer::Close() {
  if (listener_) listener_->Close();
  for (Peer& p : peers_)
    if (p.link.socket) p.link.socket->Close();
}

int LobbyServer::Peers() const {
  int n = 0;
  for (const Peer& p : peers_) n += p.link.Connected();
  return n;
}

std::vector<TableListing> LobbyServer::Tables() const {
  std::vector<const Peer*> reported;
  for (const Peer& p : peers_)
    if (p.reported && p.link.Connected()) reported.push_back(&p);
  std::sort(reported.begin(), reported.end(), [](const Peer* a, const Peer* b) { return a->order < b->order; });
  std::vector<TableListing> out;
  for (const Peer* p : reported) out.push_back(p->table);
  return out;
}

void LobbyServer::OnConnectionRequest(int index, int request) {
  if (index != 0 || Peers() >= settings_.MaxPeers) return;
  size_t i = 1;
  while (i < peers_.size() && peers_[i].link.Connected()) ++i;
  if (i == peers_.size()) peers_.emplace_back();
  Peer& p = peers_[i];
  if (!p.link.socket) p.link.socket = net_.NewSocket(*this, static_cast<int>(i));
  if (!p.link.socket->Accept(request)) return;
  p.link.Reset(settings_.Limits, clock_.TickMs());
  p.reported = false;
  p.identity.clear();
  p.link.Send("~500");
}

void LobbyServer::OnData(int index, std::string_view bytes) {
  if (index < 1 || index >= static_cast<int>(peers_.size())) return;
  Peer& p = peers_[index];
  p.link.decoder.Feed(bytes);
  p.link.lastData = clock_.TickMs();
  std::string message, fault;
  while (p.link.Connected() && p.link.NextMessage(settings_.Limits, clock_.TickMs(), message, fault))
    Process(index, message);
  if (!fault.empty()) Drop(index, fault);
}

void LobbyServer::OnClose(int index) {
  if (index < 1 || index >= static_cast<int>(peers_.size())) return;
  Peer& p = peers_[index];
  if (p.reported) Log("the table " + p.table.GameName + " left the list: its connection closed");
  p.link.socket->Close();
  p.reported = false;
}

void LobbyServer::Drop(int index, const std::string& why) {
  Peer& p = peers_[index];
  Log((p.reported ? "the table " + p.table.GameName : std::string("a peer")) + ": " + why + "; connection closed");
  p.link.socket->Close();
  p.reported = false;
}

void LobbyServer::Process(int index, const std::string& message) {
  Peer& p = peers_[index];
  ParsedMessage m;
  std::string fault;
  if (!ReadMessage(message, kPeerToLobby, m, fault)) {
    Log("a peer: " + fault + "; message dropped");
    return;
  }
  const std::string_view code = m.form->code;
  if (code == "~007") {
    p.link.Send("~007" + settings_.Line);
  } else if (code == "~500") {
    p.identity = std::string(m.At(0, 0).text);
  } else if (code == "~501") {
    p.link.Send("~5011" + settings_.Line);
    p.link.Send(ListMessage());
  } else if (code == "~503") {
    p.link.Send("~503" + settings_.Terms);
  } else if (code == "~555") {
    TableListing t = ListingOf(m, 0);
    // A table listening on every address is reached by the address it reports from.
    std::string host;
    int port = 0;
    if (!SplitAddress(t.Address, host, port) || host == "0.0.0.0" || host == "::")
      t.Address = p.link.socket->RemoteAddress() + ":" + std::to_string(port);
    if (!p.reported) {
      p.order = nextOrder_++;
      Log("the table " + t.GameName + " at " + t.Address + " is listed");
    }
    p.table = std::move(t);
    p.reported = true;
    p.reportedAt = clock_.TickMs();
  }
}

std::string LobbyServer::ListMessage() const {
  std::string m;
  for (const TableListing& t : Tables()) {
    std::string record = "~516";
    PutListing(record, t);
    // One frame holds the list; the tables that don't fit wait for a shorter one.
    if (m.size() + record.size() + kFramePrefix > kMaxFrame) break;
    m += record;
  }
  return m.empty() ? "~516" : m;
}

void LobbyServer::Tick() {
  const uint32_t now = clock_.TickMs();
  for (size_t i = 1; i < peers_.size(); ++i) {
    Peer& p = peers_[i];
    if (!p.link.Connected()) continue;
    if (p.reported && now - p.reportedAt >= static_cast<uint32_t>(settings_.StaleMs)) {
      Log("the table " + p.table.GameName + " left the list: no report for " +
          std::to_string(settings_.StaleMs / 1000) + " seconds");
      p.reported = false;
    }
    const std::string why = p.link.Stale(settings_.Limits, now);
    if (!why.empty()) Drop(static_cast<int>(i), why);
  }
}
