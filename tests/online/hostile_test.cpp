// Hostile and mutated input against a host while a well-behaved client plays on: every
// bad frame is dropped or its connection closed, with a line in the log; the client's
// mirror still equals the host's table, and a new client can still join. Mutated
// messages, seeded so every run is the same, leave the readers and a client's mirror whole.

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "automation/auto_roll.h"
#include "tests/online/invariants.h"
#include "tests/online/online_fixture.h"

namespace {

// The name; whether the peer names itself first and whether it never reads what the host
// sends; the bytes; the fake time to let pass before the verdict; whether the host closes
// the connection (else it drops the message); and the log's words.
using Hostile = std::tuple<const char*, bool, bool, std::string, int, bool, const char*>;

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
  const auto& [name, join, stopsReading, bytes, waitMs, closes, says] = GetParam();
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
  if (stopsReading) t.net.SetReading(*peer.socket, false);
  if (join) peer.Join("Mallory");
  ASSERT_TRUE(peer.Connected());
  const size_t logged = t.log.size();
  peer.Send(bytes);
  t.Run(20 + waitMs);

  EXPECT_EQ(!peer.Connected(), closes);
  bool told = false;
  for (size_t i = logged; i < t.log.size(); ++i) told = told || t.log[i].find(says) != std::string::npos;
  EXPECT_TRUE(told) << "no line says \"" << says << "\"; last: " << (t.log.empty() ? "" : t.log.back());
  // No store took a value of the hostile messages.
  for (int s = 1; s < kSeats; ++s)
    for (int b = 1; b <= kBets; ++b) EXPECT_NE(g.BetAmount[s][b], 500_usd) << s << " " << b;

  t.ExpectPlaysOn(bob);
}

INSTANTIATE_TEST_SUITE_P(Cases, OnlineHostile, testing::ValuesIn(kCases),
                         [](const auto& i) { return std::string(std::get<0>(i.param)); });

// ---- Mutated messages: the readers, a client's mirror and a host --------------------------

// What a host sends of a table with players and bets.
std::vector<std::string> HostCorpus(const Game& g) {
  std::vector<std::string> c = PlayersMessages(g);
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s)) {
      c.push_back(SeatBetsMessage(g, s));
      c.push_back(SeatWorkingMessage(g, s));
    }
  for (const std::string& m : ConfigurationMessages(g)) c.push_back(m);
  c.push_back(BankrollsMessage(g));
  for (const char* m :
       {"~6603412", "~66634",        "~66655",    "~6618",
        "~662",     "~663",          "~6641.5",   "~0115Zed",
        "~700",     "~88512",        "~8863\t",   "~668",
        "~6691-1",  "~120unlimited", "~121500",   "~100quiet",
        "~101",     "~102",          "~103",      "~701",
        "~881",     "~8822",         "~883",      "~884",
        "~670text", "~PING",         "hello Bob", "~0132\tPBob\t1\t0\t5\t-1\t-1\t1\t2\tWCy\t0\t0\t0\t-1\t-1\t1\t3\t"})
    c.push_back(m);
  return c;
}

// What a client sends.
std::vector<std::string> ClientCorpus(const Game& g, int seat) {
  std::vector<std::string> c = {"~0011", "~003sesame", "~004Mallory", "~0085",   "~0091000", "~990", "~991",
                                "~012",  "~6675",      "~668",        "~6695-1", "~0115Mal", "chat"};
  c.push_back(BetRecord(g, seat, bet::PassLine) + BetRecord(g, seat, bet::Field));
  c.push_back(WorkingRecord(g, seat, 31));
  c.push_back(BankrollRecord(g, seat));
  c.push_back(WorkOnComeOutMessage(g));
  for (const std::string& m : ConfigurationMessages(g)) c.push_back(m);
  return c;
}

std::string Mutate(std::string m, std::mt19937& rng) {
  static const char kBytes[] = "0123456789-.\t~ax\x01\xff";
  auto pick = [&](size_t n) { return n == 0 ? size_t{0} : std::uniform_int_distribution<size_t>(0, n - 1)(rng); };
  const int ops = 1 + static_cast<int>(pick(3));
  for (int k = 0; k < ops; ++k) {
    const size_t at = pick(m.size() + 1);
    switch (pick(6)) {
      case 0:
        if (at < m.size()) m[at] = kBytes[pick(sizeof kBytes - 1)];
        break;
      case 1: m.insert(at, 1, kBytes[pick(sizeof kBytes - 1)]); break;
      case 2:
        if (at < m.size()) m.erase(at, 1);
        break;
      case 3: m.resize(at); break;
      case 4: m.insert(at, m.substr(pick(m.size() + 1), pick(40))); break;
      default:
        if (at < m.size()) m.insert(at, "999999999999999");
        break;
    }
  }
  return m;
}

TEST(OnlineMutation, ReadersKeepEveryFieldTheyReturnInRange) {
  TestTable t;
  AddPlayer(t.g, 5, "Bob", 1000_usd);
  ChangeBet(t.g, 5, bet::PassLine, 10_usd);
  std::vector<std::string> corpus = HostCorpus(t.g);
  for (const std::string& m : ClientCorpus(t.g, 5)) corpus.push_back(m);
  std::mt19937 rng(2026);
  int read = 0;
  for (int i = 0; i < 60000; ++i) {
    const std::string m = Mutate(corpus[i % corpus.size()], rng);
    for (MessageWay way : {kHostToClient, kClientToHost, kPeerToLobby, kLobbyToPeer}) {
      ParsedMessage p;
      std::string fault;
      if (!ReadMessage(m, way, p, fault)) continue;
      ++read;
      const auto& forms = p.form->group.empty() ? p.form->fields : p.form->group;
      for (int r = 0; r < p.records; ++r)
        for (int f = 0; f < p.width; ++f) {
          const FieldForm& s = forms[static_cast<size_t>(f)];
          const FieldValue& v = p.At(r, f);
          if (s.kind == FieldKind::Int || s.kind == FieldKind::Digit || s.kind == FieldKind::RestInt) {
            ASSERT_TRUE(v.number >= s.min && v.number <= s.max) << m;
          }
        }
    }
  }
  EXPECT_GT(read, 1000) << "the mutations should leave many messages readable";
}

// Plays the host's side of the handshake by hand, then sends what the test gives it.
struct FakeHost : NoEvents {
  std::unique_ptr<SocketControl> listener, link;
  explicit FakeHost(MemoryNetwork& net) : listener(net.NewSocket(*this, 0)), link(net.NewSocket(*this, 1)) {
    listener->Listen("", 0);
  }
  void OnConnectionRequest(int, int request) override { link->Accept(request); }
  void Send(const std::string& m) { link->Send(EncodeFrame(m)); }
};

TEST(OnlineMutation, AClientsMirrorStaysWholeUnderMutatedHostMessages) {
  TempDir home;
  FakeClock clock;
  MemoryNetwork net;
  FakeHost host(net);
  AnsweringUi ui;
  ui.Name = "Bob";
  auto g = NewTable(ui, clock, home.path.string(), 11);
  Client client(*g, net, clock);
  std::vector<std::string> dropped;
  client.OnLog = [&](const std::string& line) { dropped.push_back(line); };
  client.Join("127.0.0.1", host.listener->LocalPort());
  net.Pump();
  // A table to copy from: two players with bets.
  TestTable source;
  AddPlayer(source.g, 1, "Ann", 5000_usd);
  AddPlayer(source.g, 5, "Bob", 1000_usd);
  ChangeBet(source.g, 1, bet::PassLine, 10_usd);
  ChangeBet(source.g, 5, bet::Field, 5_usd);
  for (const char* m : {"~001", "~002Zed\tGame\t", "~004Welcome", "~006Bob\t4\t"}) host.Send(m);
  const std::vector<std::string> corpus = HostCorpus(source.g);
  for (const std::string& m : PlayersMessages(source.g)) host.Send(m);
  host.Send("~0105\t1000\t");
  for (const std::string& m : corpus) host.Send(m);
  while (net.Pump() > 0) continue;
  ASSERT_NE(client.OwnSeat, 0);
  std::mt19937 rng(7);
  for (int i = 0; i < 15000; ++i) {
    clock.tick += 1;  // a thousand messages a second: no flood
    host.Send(i % 10 == 0 ? "~666" + std::to_string(1 + i % 6) + std::to_string(1 + i / 6 % 6)
                          : Mutate(corpus[i % corpus.size()], rng));
    while (net.Pump() > 0) continue;
    ASSERT_EQ(BrokenInvariant(*g), "") << "after message " << i;
  }
  EXPECT_TRUE(client.Connected()) << (dropped.empty() ? "" : dropped.back());
  EXPECT_GT(dropped.size(), 100u) << "mutated messages are dropped with a line";
}

TEST(OnlineMutation, AHostPlaysOnUnderMutatedClientMessages) {
  OnlineTable t;
  Game& g = t.g();
  t.SeatAnn({{bet::PassLine, 10_usd}});
  OnlinePlayer& bob = t.Join("Bob");
  bob.bets = {{bet::Field, 5_usd}, {bet::DontPass, 10_usd}};
  ToggleAutoRoll(g);
  RawPeer mallory(t);
  mallory.Join("Mallory");
  for (const char* m : {"~990", "~0085", "~0091000"}) mallory.Say(m);
  ASSERT_EQ(g.PlayerName[5], "Mallory");
  const std::vector<std::string> corpus = ClientCorpus(g, 5);
  std::mt19937 rng(11);
  for (int i = 0; i < 6000 && mallory.Connected(); ++i) {
    mallory.SendFrame(Mutate(corpus[i % corpus.size()], rng));
    if (i % 20 == 0) t.Run(100);
    t.Settle();
    ASSERT_EQ(BrokenInvariant(g), "") << "after message " << i;
  }
  EXPECT_TRUE(mallory.Connected()) << "whole frames of bad messages are dropped one by one";
  // Last, frames whose bytes are mutated too: the connection may close, the table plays on.
  for (int i = 0; i < 200 && mallory.Connected(); ++i)
    mallory.Send(Mutate(EncodeFrame(corpus[i % corpus.size()]), rng));
  t.ExpectPlaysOn(bob);
  EXPECT_EQ(BrokenInvariant(g), "");
}

}  // namespace
