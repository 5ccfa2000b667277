#pragma once
// Sockets in memory: a network of endpoints joined in pairs, whose events wait in one
// queue until Pump delivers them, in order. Tests play a host, clients and a lobby on it
// in one thread, with nothing left to timing; a peer can stop reading to play a client
// that never reads.

#include <cstdint>
#include <deque>
#include <map>
#include <string>

#include "online/socket_control.h"

class MemoryNetwork : public SocketNetwork {
 public:
  MemoryNetwork();
  ~MemoryNetwork() override;
  std::unique_ptr<SocketControl> NewSocket(SocketEvents& events, int index) override;
  int LiveSockets() const override { return static_cast<int>(sockets_.size()); }
  // Delivers waiting events until none is left or `limit` were delivered; returns how many.
  int Pump(int limit = 1000000);
  // A socket that doesn't read leaves what is sent to it with the sender (PendingOutput).
  void SetReading(SocketControl& socket, bool reading);

  struct Endpoint;  // one socket's side, known to the network by its id

 private:
  friend class MemorySocket;
  struct Event {
    enum Kind { Connect, Data, Close, Request } kind;
    int socket;
    int request = 0;
  };
  void Post(Event e) { events_.push_back(e); }
  std::map<int, Endpoint*> sockets_;
  std::map<int, int> listeners_;  // port to socket id
  std::map<int, int> requests_;   // request to the id of the socket that asked
  std::deque<Event> events_;
  int nextId_ = 1, nextPort_ = 40000, nextRequest_ = 1;
};
