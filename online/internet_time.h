#pragma once
// GetInternetTime: the date from a time service (RFC 868 on TCP port 37), which answers
// a connection with four bytes, the seconds since 1900 big-endian, and closes. The
// network date is kept as seconds since 1 January 1990. The service's address is the
// user's to give; without one nothing is asked.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "online/socket_control.h"

inline constexpr int kTimeServicePort = 37;

// The network date of a service's answer: exactly four bytes, else nothing.
std::optional<int64_t> NetworkDate(std::string_view answer);

class InternetTime : public SocketEvents {
 public:
  explicit InternetTime(SocketNetwork& net) : net_(net) {}
  // Asks the service; an earlier request still running is dropped.
  void Ask(const std::string& host, int port = kTimeServicePort);
  bool Running() const { return socket_ != nullptr; }
  // The date of the last answer that came whole.
  std::optional<int64_t> Date() const { return date_; }

  void OnConnect(int) override {}
  void OnData(int index, std::string_view bytes) override;
  void OnClose(int index) override;
  void OnConnectionRequest(int, int) override {}

 private:
  SocketNetwork& net_;
  std::unique_ptr<SocketControl> socket_;
  std::string answer_;
  std::optional<int64_t> date_;
  void Finish();
};
