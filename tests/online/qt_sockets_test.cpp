// The Qt adapter on real sockets of 127.0.0.1: a hundred clients that connect and drop
// leave no descriptor and no connection object behind.

#include <gtest/gtest.h>

#include <filesystem>

#include "online/qt_network.h"
#include "tests/online/online_fixture.h"

namespace {

int OpenDescriptors() {
  int n = 0;
  for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator("/proc/self/fd")) ++n;
  return n;
}

struct Quiet : NoEvents {
  bool connected = false;
  void OnConnect(int) override { connected = true; }
};

// A host of real sockets on a free port of 127.0.0.1, with its event loop.
class OnlineQt : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(host.OpenTable()); }
  QtLoop loop;
  QtNetwork net;
  TempDir home;
  HeadlessUi ui;
  std::unique_ptr<Game> game = NewTable(ui, DefaultClock(), home.path.string(), 3);
  Host host{*game, net, DefaultClock(), FastHost()};
};

TEST_F(OnlineQt, AHundredConnectAndDropCyclesLeaveNoSocketBehind) {
  // Each cycle drops in its own way: after a greeting, after half a frame, at once.
  auto cycle = [&](int k) {
    Quiet events;
    auto peer = net.NewSocket(events, 0);
    peer->Connect("127.0.0.1", host.Port());
    loop.Turn(5000, [&] { return events.connected && host.ConnectedClients() == 1; });
    if (k % 3 == 0) peer->Send(EncodeFrame("~0011"));
    if (k % 3 == 1) peer->Send("0050~00");
    loop.Turn(5);
    peer.reset();
    loop.Turn(5000, [&] { return host.ConnectedClients() == 0 && host.ClientList.size() == 9; });
  };
  cycle(0);
  const int descriptors = OpenDescriptors(), live = net.LiveSockets();
  for (int k = 1; k <= 100; ++k) cycle(k);
  loop.Turn(50);
  EXPECT_EQ(host.ConnectedClients(), 0);
  EXPECT_EQ(host.ClientList.size(), 9u);
  EXPECT_EQ(net.LiveSockets(), live);
  EXPECT_EQ(OpenDescriptors(), descriptors);
}

TEST_F(OnlineQt, ANewConnectionTakesTheLowestClosedSocket) {
  Quiet a, b, c;
  auto first = net.NewSocket(a, 0), second = net.NewSocket(b, 0);
  first->Connect("127.0.0.1", host.Port());
  loop.Turn(5000, [&] { return host.ConnectedClients() == 1; });
  second->Connect("127.0.0.1", host.Port());
  loop.Turn(5000, [&] { return host.ConnectedClients() == 2; });
  ASSERT_EQ(host.ClientList.size(), 11u);
  EXPECT_EQ(host.ClientList[9].Socket, 2);
  EXPECT_EQ(host.ClientList[10].Socket, 3);
  first->Close();
  loop.Turn(5000, [&] { return host.ConnectedClients() == 1; });
  auto third = net.NewSocket(c, 0);
  third->Connect("127.0.0.1", host.Port());
  loop.Turn(5000, [&] { return host.ConnectedClients() == 2; });
  ASSERT_EQ(host.ClientList.size(), 11u);
  EXPECT_EQ(host.ClientList[10].Socket, 2);
}

}  // namespace
