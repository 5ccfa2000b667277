// Hostile input against a host while a well-behaved client plays on: every bad frame
// is dropped or its connection closed, with a line in the log; the client's mirror
// still equals the host's table, and a new client can still join.

#include <gtest/gtest.h>

#include "automation/auto_roll.h"
#include "tests/online/online_fixture.h"

namespace {

struct Hostile {
  const char* name;
  bool join;          // the peer names itself first
  bool stopsReading;  // the peer never reads what the host sends
  std::string bytes;
  int waitMs;   // fake time to let pass before the verdict
  bool closes;  // the host closes the connection (else it drops the message)
  const char* says;
};

std::string Frames(const std::string& message, int n) {
  std::string out;
  for (int i = 0; i < n; ++i) out += EncodeFrame(message);
  return out;
}

const Hostile kCases[] = {
    {"LengthBeyondLimit", false, false, "9000~0011", 0, true, "a frame with a length it cannot have"},
    {"SeatOutOfRange", true, false, EncodeFrame("~77712\t43\t500\t0\t0\t"), 0, false, "seat: 12 is out of the range"},
    {"BetOutOfRange", true, false, EncodeFrame("~7775\t300\t500\t0\t0\t"), 0, false, "bet: 300 is out of the range"},
    {"NegativeCount", true, false, EncodeFrame("~667-5"), 0, false, "roll count: -5 is out of the range"},
    {"AmountNotANumber", true, false, EncodeFrame("~0099e99"), 0, false, "is not an amount"},
    {"UnknownCode", true, false, EncodeFrame("~432"), 0, false, "unknown code"},
    {"BetForAnotherSeat", true, false, EncodeFrame("~7771\t43\t500\t0\t0\t"), 0, false, "not its own"},
    {"WorkingStateOfAnotherSeat", true, false, EncodeFrame("~7791\t1\t-1\t"), 0, false,
     "a working state of a seat not its own"},
    {"AutoPassOfAnotherSeat", true, false, EncodeFrame("~6691-1"), 0, false, "auto-pass of a seat not its own"},
    {"BankrollOfAnotherSeat", true, false, EncodeFrame("~8871\t500\t500\t500\t"), 0, false,
     "a bankroll of a seat not its own"},
    {"RenameOfAnotherSeat", true, false, EncodeFrame("~0111Mallory"), 0, false, "a rename of a seat not its own"},
    {"DicePassedByAnother", true, false, EncodeFrame("~668"), 0, false, "a pass of dice it doesn't hold"},
    {"HalfFrameThenSilence", false, false, "0050~00", 4000, true, "half a frame and then silence"},
    {"Flood", true, false, Frames("~PONG", 5000), 0, true, "a flood of frames"},
    {"NeverReads", true, true, "", 100, true, "leaves what is sent to it unread"}};

class OnlineHostile : public testing::TestWithParam<Hostile> {};

TEST_P(OnlineHostile, IsDroppedOrClosedAndTheTablePlaysOn) {
  const Hostile& c = GetParam();
  HostSettings settings = FastHost();
  settings.Limits.silenceMs = 3000;
  settings.Limits.maxUnread = 8192;
  OnlineTable t(settings);
  Game& g = t.g();
  t.SeatAnn({{bet::PassLine, 10_usd}});
  OnlinePlayer& bob = t.Join("Bob");
  bob.bets = {{bet::Field, 5_usd}, {bet::DontPass, 10_usd}};
  ToggleAutoRoll(g);
  ASSERT_TRUE(t.RollUntil(10));

  RawPeer peer(t);
  if (c.stopsReading) t.net.SetReading(*peer.socket, false);
  if (c.join) peer.Join("Mallory");
  ASSERT_TRUE(peer.Connected());
  const size_t logged = t.log.size();
  peer.Send(c.bytes);
  t.Run(20 + c.waitMs);

  EXPECT_EQ(!peer.Connected(), c.closes);
  bool told = false;
  for (size_t i = logged; i < t.log.size(); ++i) told = told || t.log[i].find(c.says) != std::string::npos;
  EXPECT_TRUE(told) << "no line says \"" << c.says << "\"; last: " << (t.log.empty() ? "" : t.log.back());
  // No store took a value of the hostile messages.
  for (int s = 1; s < kSeats; ++s)
    for (int b = 1; b <= kBets; ++b) EXPECT_NE(g.BetAmount[s][b], 500_usd) << s << " " << b;

  t.ExpectPlaysOn(bob);
}

INSTANTIATE_TEST_SUITE_P(Cases, OnlineHostile, testing::ValuesIn(kCases),
                         [](const testing::TestParamInfo<Hostile>& i) { return std::string(i.param.name); });

}  // namespace
