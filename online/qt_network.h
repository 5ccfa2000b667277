#pragma once
// The sockets and the event loop of the programs, over Qt Network: QTcpServer for a
// listener and QTcpSocket for a connection. Nothing of Qt shows here, so the programs
// and the state machines stay free of it.

#include <functional>
#include <map>
#include <memory>

#include "online/socket_control.h"

class QtNetwork : public SocketNetwork {
 public:
  QtNetwork();
  ~QtNetwork() override;
  std::unique_ptr<SocketControl> NewSocket(SocketEvents& events, int index) override;
  int LiveSockets() const override { return live_; }
  // Connections closed with data still going out (the loop must turn for them to end).
  int Closing() const;

  struct Impl;

 private:
  friend class QtSocket;
  std::unique_ptr<Impl> impl_;
  int live_ = 0;
};

// The event loop of a headless program (or a test): timers, and SIGTERM or SIGINT turned
// into a call on the loop's own thread.
class QtLoop {
 public:
  QtLoop();  // makes the process's QCoreApplication when there is none
  ~QtLoop();
  void Every(int ms, std::function<void()> tick);
  // SIGTERM and SIGINT call this on the loop (once per signal); without it they quit.
  void OnStopSignal(std::function<void()> stop);
  int Run();
  void Quit(int code = 0);
  // Turns the loop for about `ms` milliseconds, or until `done` says so.
  void Turn(int ms, const std::function<bool()>& done = {});

  struct Impl;

 private:
  std::unique_ptr<Impl> impl_;
};
