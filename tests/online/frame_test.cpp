// The frame, the message table and the time service's four bytes: what a receiver
// takes, waits for and refuses.

#include "online/frame.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "online/codes.h"
#include "online/internet_time.h"
#include "tests/online/online_fixture.h"

namespace {

TEST(OnlineFrame, FramesInOneReadAreTakenInOrderAndHalfAFrameWaits) {
  FrameDecoder d;
  const std::string two = EncodeFrame("~PING") + EncodeFrame("hello");
  d.Feed(two + EncodeFrame("~6663").substr(0, 6));
  std::string m;
  ASSERT_EQ(d.Next(m), FrameResult::Message);
  EXPECT_EQ(m, "~PING");
  ASSERT_EQ(d.Next(m), FrameResult::Message);
  EXPECT_EQ(m, "hello");
  EXPECT_EQ(d.Next(m), FrameResult::NeedMore);
  d.Feed("663");
  ASSERT_EQ(d.Next(m), FrameResult::Message);
  EXPECT_EQ(m, "~6663");
  EXPECT_EQ(d.Pending(), 0u);
  d.Feed("0004");  // four characters are an empty message
  ASSERT_EQ(d.Next(m), FrameResult::Message);
  EXPECT_EQ(m, "");
}

TEST(OnlineFrame, TheEightBitTextOfTheWireIsUtf8InMemory) {
  const std::string frame = EncodeFrame("Zoë");
  EXPECT_EQ(frame, "0007Zo\xEB");
  FrameDecoder d;
  d.Feed(frame);
  std::string m;
  ASSERT_EQ(d.Next(m), FrameResult::Message);
  EXPECT_EQ(m, "Zoë");
  EXPECT_EQ(EncodeFrame(std::string(kMaxFrame - 3, 'a')), "");
}

using BadPrefix = std::pair<const char*, size_t>;  // the bytes, the decoder's limit

class OnlineFramePrefix : public testing::TestWithParam<BadPrefix> {};

TEST_P(OnlineFramePrefix, IsRefusedBeforeItsBodyIsAwaited) {
  const auto& [bytes, limit] = GetParam();
  FrameDecoder d(limit);
  d.Feed(bytes);
  std::string m;
  EXPECT_EQ(d.Next(m), FrameResult::BadPrefix);
  d.Feed(EncodeFrame("~PING"));
  EXPECT_EQ(d.Next(m), FrameResult::BadPrefix) << "a refused stream stays refused";
}

INSTANTIATE_TEST_SUITE_P(Cases, OnlineFramePrefix,
                         testing::Values(BadPrefix{"0003", kMaxFrame}, BadPrefix{"0000", kMaxFrame},
                                         BadPrefix{"-010~PING", kMaxFrame}, BadPrefix{" 009~PING", kMaxFrame},
                                         BadPrefix{"00x9", kMaxFrame}, BadPrefix{"0100", 99}, BadPrefix{"9999", 4096}));

using Reading = std::tuple<const char*, MessageWay, const char*>;  // the message, its way, the fault ("" if none)

class OnlineMessages : public testing::TestWithParam<Reading> {};

TEST_P(OnlineMessages, AreReadOnlyWithEveryFieldInRange) {
  const auto& [message, way, says] = GetParam();
  ParsedMessage m;
  std::string fault;
  EXPECT_EQ(ReadMessage(message, way, m, fault), std::string(says).empty()) << fault;
  EXPECT_NE(fault.find(says), std::string::npos) << fault;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, OnlineMessages,
    testing::Values(Reading{"~7773\t43\t10\t10\t0\t~7773\t44\t20.5\t0\t0\t", kClientToHost, ""},
                    Reading{"~7773\t43\t10\t10\t0\t~7793\t44\t1\t", kClientToHost, "a record of another kind follows"},
                    Reading{"~7773\t43\t10\t10\t0", kClientToHost, "vig: missing or not ended by a tab"},
                    Reading{"~7773\t43\t10.12345\t10\t0\t", kClientToHost, "amount: \"10.12345\" is not an amount"},
                    Reading{"~7773\t43\t-10\t0\t0\t", kClientToHost, "amount: -10 is out of the range"},
                    Reading{"~7770\t43\t10\t0\t0\t", kClientToHost, "seat: 0 is out of the range 1 to 8"},
                    Reading{"~6603412", kHostToClient, ""},
                    Reading{"~6609412", kHostToClient, "die 1: 9 is out of the range"},
                    Reading{"~666", kClientToHost, "die 1: missing"}, Reading{"~6662", kClientToHost, "die 2: missing"},
                    Reading{"~667", kClientToHost, "roll count: \"\" is not a number"},
                    Reading{"~121unlimited", kClientToHost, ""},
                    Reading{"~121limitless", kClientToHost, "is not an amount"},
                    Reading{"~8990\t1111\t", kHostToClient, "not 87 digits"}, Reading{"~011\x31Zed", kClientToHost, ""},
                    Reading{"~0111Z\x02\x65\x64", kClientToHost, "control character"},
                    Reading{"~0041234567890123456789012345678901234567890123456789012345678901234567890123456789"
                            "0123456789012345678901",
                            kClientToHost, "name: longer than 100 characters"},
                    Reading{"~0131\tPBob\t2.5\t0\t3\t-1\t-1\t1\t2\t", kHostToClient, ""},
                    Reading{"~0132\tPBob\t2.5\t0\t3\t-1\t-1\t1\t2\t", kHostToClient, "status and name: missing"},
                    Reading{"~010", kClientToHost, "unknown code"}, Reading{"~555", kClientToHost, "unknown code"},
                    Reading{"~PONGS", kClientToHost, "unknown code"}, Reading{"~PONG", kClientToHost, ""},
                    Reading{"~0011 ", kClientToHost, "is not a number"}));

TEST(OnlineMessages, WritersWriteWhatReadersRead) {
  std::string m = "~887";
  PutInt(m, 5);
  PutAmount(m, Money::FromRaw(-125));
  PutAmount(m, 1000_usd);
  PutAmount(m, Money::FromRaw(10000125));
  ParsedMessage p;
  std::string fault;
  ASSERT_TRUE(ReadMessage(m, kHostToClient, p, fault)) << fault;
  EXPECT_EQ(p.At(0, 1).amount, Money::FromRaw(-125));
  EXPECT_EQ(p.At(0, 3).amount, Money::FromRaw(10000125));
  std::string text = "~127";
  PutText(text, "a\tb");
  EXPECT_EQ(text, "~127a b\t");
}

// ---- The date from a time service: four bytes whole, in one piece or two ------------------

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

TEST(InternetTime, TakesFourBytesWholeAndNothingElse) {
  const std::string start1990("\xA9\x49\x1C\x00", 4), nextDay("\xA9\x4A\x6D\x80", 4);
  // What, the service's pieces, and the date read.
  const std::tuple<const char*, std::vector<std::string>, std::optional<int64_t>> cases[] = {
      {"1 January 1990", {start1990}, 0},
      {"a day later, in two pieces", {nextDay.substr(0, 2), nextDay.substr(2)}, 86400},
      {"the last second of the count", {std::string(4, '\xFF')}, 4294967295LL - 2840140800LL},
      {"three bytes", {start1990.substr(0, 3)}, std::nullopt},
      {"five bytes", {start1990 + "x"}, std::nullopt},
      {"nothing", {}, std::nullopt}};
  for (const auto& [name, pieces, date] : cases) {
    MemoryNetwork net;
    Service service(net);
    service.pieces = pieces;
    InternetTime time(net);
    time.Ask("127.0.0.1");
    EXPECT_TRUE(time.Running()) << name;
    net.Pump();
    EXPECT_EQ(time.Date(), date) << name;
    EXPECT_FALSE(time.Running()) << name;
    service.peer.reset();
    EXPECT_EQ(net.LiveSockets(), 1) << name << ": only the service's listener is left";
  }
}

}  // namespace
