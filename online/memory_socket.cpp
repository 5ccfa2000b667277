#include "online/memory_socket.h"

struct MemoryNetwork::Endpoint {
  int id = 0;
  int index = 0;
  SocketEvents* events = nullptr;
  int state = kSocketClosed;
  int port = 0;
  int peer = 0;       // id of the joined endpoint
  std::string inbox;  // sent to this endpoint, not yet delivered
  bool reading = true;
  bool dataPosted = false;
};

class MemorySocket : public SocketControl {
 public:
  MemorySocket(MemoryNetwork& net, SocketEvents& events, int index) : net_(net) {
    e_.id = net.nextId_++;
    e_.index = index;
    e_.events = &events;
    net.sockets_[e_.id] = &e_;
  }
  ~MemorySocket() override {
    Close();
    net_.sockets_.erase(e_.id);
  }
  int State() const override { return e_.state; }
  bool Listen(const std::string& address, int port) override {
    Close();
    if (port == 0) port = net_.nextPort_++;
    if (net_.listeners_.count(port)) return false;
    net_.listeners_[port] = e_.id;
    e_.port = port;
    e_.state = kSocketListening;
    return true;
  }
  int LocalPort() const override { return e_.port; }
  std::string RemoteAddress() const override { return e_.peer ? "127.0.0.1" : ""; }
  void Connect(const std::string& host, int port) override {
    Close();
    e_.state = kSocketConnecting;
    auto listener = net_.listeners_.find(port);
    if ((host != "127.0.0.1" && host != "localhost") || listener == net_.listeners_.end()) {
      net_.Post({MemoryNetwork::Event::Close, e_.id});
      return;
    }
    const int request = net_.nextRequest_++;
    net_.requests_[request] = e_.id;
    net_.Post({MemoryNetwork::Event::Request, listener->second, request});
  }
  bool Accept(int request) override {
    auto asked = net_.requests_.find(request);
    if (asked == net_.requests_.end()) return false;
    auto other = net_.sockets_.find(asked->second);
    net_.requests_.erase(asked);
    if (other == net_.sockets_.end() || other->second->state != kSocketConnecting) return false;
    Close();
    e_.peer = other->second->id;
    other->second->peer = e_.id;
    e_.state = kSocketConnected;
    other->second->state = kSocketConnected;
    net_.Post({MemoryNetwork::Event::Connect, other->second->id});
    return true;
  }
  void Send(std::string_view bytes) override {
    if (e_.state != kSocketConnected) return;
    auto other = net_.sockets_.find(e_.peer);
    if (other == net_.sockets_.end()) return;
    other->second->inbox.append(bytes);
    if (!other->second->dataPosted) {
      other->second->dataPosted = true;
      net_.Post({MemoryNetwork::Event::Data, other->second->id});
    }
  }
  size_t PendingOutput() const override {
    auto other = net_.sockets_.find(e_.peer);
    return other == net_.sockets_.end() ? 0 : other->second->inbox.size();
  }
  void Close() override {
    if (e_.state == kSocketListening) net_.listeners_.erase(e_.port);
    if (e_.peer) {
      auto other = net_.sockets_.find(e_.peer);
      if (other != net_.sockets_.end() && other->second->peer == e_.id)
        net_.Post({MemoryNetwork::Event::Close, other->second->id});
    }
    e_.peer = 0;
    e_.port = 0;
    e_.inbox.clear();
    e_.state = kSocketClosed;
  }
  MemoryNetwork::Endpoint& endpoint() { return e_; }

 private:
  MemoryNetwork& net_;
  MemoryNetwork::Endpoint e_;
};

MemoryNetwork::MemoryNetwork() = default;
MemoryNetwork::~MemoryNetwork() = default;

std::unique_ptr<SocketControl> MemoryNetwork::NewSocket(SocketEvents& events, int index) {
  return std::make_unique<MemorySocket>(*this, events, index);
}

void MemoryNetwork::SetReading(SocketControl& socket, bool reading) {
  Endpoint& e = static_cast<MemorySocket&>(socket).endpoint();
  e.reading = reading;
  if (reading && !e.inbox.empty() && !e.dataPosted) {
    e.dataPosted = true;
    Post({Event::Data, e.id});
  }
}

int MemoryNetwork::Pump(int limit) {
  int delivered = 0;
  while (!events_.empty() && delivered < limit) {
    const Event ev = events_.front();
    events_.pop_front();
    auto found = sockets_.find(ev.socket);
    if (found == sockets_.end()) continue;
    Endpoint& e = *found->second;
    ++delivered;
    switch (ev.kind) {
      case Event::Connect: e.events->OnConnect(e.index); break;
      case Event::Request:
        if (e.state == kSocketListening) e.events->OnConnectionRequest(e.index, ev.request);
        // A request nobody took is refused: the socket that asked hears a close.
        if (auto left = requests_.find(ev.request); left != requests_.end()) {
          Post({Event::Close, left->second});
          requests_.erase(left);
        }
        break;
      case Event::Data: {
        e.dataPosted = false;
        if (!e.reading || e.inbox.empty()) break;
        std::string bytes;
        bytes.swap(e.inbox);
        e.events->OnData(e.index, bytes);
        break;
      }
      case Event::Close:
        if (e.state == kSocketClosed) break;
        e.state = kSocketClosed;
        e.peer = 0;
        e.inbox.clear();
        e.events->OnClose(e.index);
        break;
    }
  }
  return delivered;
}
