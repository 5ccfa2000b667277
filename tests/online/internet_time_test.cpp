// The date from a time service: four bytes whole, in one piece or two; anything else
// gives no date and leaves no socket behind.

#include "online/internet_time.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/online/online_fixture.h"

namespace {

// A time service on 127.0.0.1 that answers each connection with its pieces and closes.
struct Service : NoEvents {
  MemoryNetwork& net;
  std::unique_ptr<SocketControl> listener, peer;
  std::vector<std::string> pieces;
  explicit Service(MemoryNetwork& n) : net(n), listener(n.NewSocket(*this, 0)) {
    listener->Listen("127.0.0.1", kTimeServicePort);
  }
  void OnConnectionRequest(int, int request) override {
    peer = net.NewSocket(*this, 1);
    ASSERT_TRUE(peer->Accept(request));
    for (const std::string& p : pieces) peer->Send(p);
    peer->Close();
  }
};

struct Case {
  const char* name;
  std::vector<std::string> pieces;
  std::optional<int64_t> date;
};

TEST(InternetTime, TakesFourBytesWholeAndNothingElse) {
  const std::string start1990("\xA9\x49\x1C\x00", 4), nextDay("\xA9\x4A\x6D\x80", 4);
  const Case cases[] = {{"1 January 1990", {start1990}, 0},
                        {"a day later, in two pieces", {nextDay.substr(0, 2), nextDay.substr(2)}, 86400},
                        {"the last second of the count", {std::string(4, '\xFF')}, 4294967295LL - 2840140800LL},
                        {"three bytes", {start1990.substr(0, 3)}, std::nullopt},
                        {"five bytes", {start1990 + "x"}, std::nullopt},
                        {"nothing", {}, std::nullopt}};
  for (const Case& c : cases) {
    MemoryNetwork net;
    Service service(net);
    service.pieces = c.pieces;
    InternetTime time(net);
    time.Ask("127.0.0.1");
    EXPECT_TRUE(time.Running()) << c.name;
    net.Pump();
    EXPECT_EQ(time.Date(), c.date) << c.name;
    EXPECT_FALSE(time.Running()) << c.name;
    service.peer.reset();
    EXPECT_EQ(net.LiveSockets(), 1) << c.name << ": only the service's listener is left";
  }
}

}  // namespace
