#pragma once
// The socket control: one TCP endpoint with the states of the platform's control (0
// closed, 2 listening, 7 connected), the methods listen, connect, accept, send and
// close, and events for connect, data, close and a connection request. The host, the
// client and the lobby speak only to this; the Qt adapter implements it over
// QTcpServer/QTcpSocket and the in-memory network implements it for tests.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

enum SocketState : int {
  kSocketClosed = 0,
  kSocketListening = 2,
  kSocketConnecting = 6,
  kSocketConnected = 7,
  kSocketError = 9
};

// What a socket tells its owner; `index` is the socket's place in the owner's array.
class SocketEvents {
 public:
  virtual ~SocketEvents() = default;
  virtual void OnConnect(int index) = 0;
  virtual void OnData(int index, std::string_view bytes) = 0;
  // The peer closed, the connection broke, or a connect failed.
  virtual void OnClose(int index) = 0;
  // A listener has a connection waiting; `request` is passed to Accept.
  virtual void OnConnectionRequest(int index, int request) = 0;
};

class SocketControl {
 public:
  virtual ~SocketControl() = default;
  virtual int State() const = 0;
  // Listens on the address ("" for 127.0.0.1) and port (0 takes a free one).
  virtual bool Listen(const std::string& address, int port) = 0;
  virtual int LocalPort() const = 0;
  // The address of the peer, without the port.
  virtual std::string RemoteAddress() const = 0;
  virtual void Connect(const std::string& host, int port) = 0;
  // Takes a waiting connection on this (closed) socket.
  virtual bool Accept(int request) = 0;
  virtual void Send(std::string_view bytes) = 0;
  // Bytes sent and not yet taken by the peer: a peer that never reads shows here.
  virtual size_t PendingOutput() const = 0;
  // Closes at once; no event follows for this socket.
  virtual void Close() = 0;
};

// Makes the sockets of one event loop.
class SocketNetwork {
 public:
  virtual ~SocketNetwork() = default;
  virtual std::unique_ptr<SocketControl> NewSocket(SocketEvents& events, int index) = 0;
  // Sockets alive now, for the leak checks of the tests.
  virtual int LiveSockets() const = 0;
};
