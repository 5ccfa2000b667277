// The sessions log: the file byte for byte, refusal of files that are no true log, the
// record made from a seat's session, the statistics, merge and delete.

#include "stats/sessions_log.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "tests/test_support.h"

namespace {

std::string Le(uint64_t v, int n) {
  std::string s;
  for (int i = 0; i < n; ++i) s += static_cast<char>((v >> (8 * i)) & 0xFF);
  return s;
}

std::string Header(int32_t count, char fill = '\0') {
  std::string h = "DiceHall Sessions Log, Data Format 5.0";
  h.resize(92, ' ');
  return h + Le(static_cast<uint32_t>(count), 4) + std::string(160, fill);
}

// A record whose field 8 (net won) is `net` and field 0 is `rolls`.
SessionRecord Net(Money net, int64_t rolls = 0) {
  SessionRecord r{};
  r[slg::AmountNet] = net;
  r[slg::Rolls] = Money::Dollars(rolls);
  return r;
}

std::vector<SessionRecord> Read(const std::string& path) {
  SessionsLogFile log;
  std::string error;
  EXPECT_TRUE(ReadSessionsLog(path, log, error, "test")) << error;
  return log.Records;
}

std::vector<Money> Nets(const std::string& path) {
  std::vector<Money> v;
  for (const SessionRecord& r : Read(path)) v.push_back(r[slg::AmountNet]);
  return v;
}

TEST(SessionsLogFile, RoundTripIsByteExact) {
  TempDir d;
  const std::string p = (d.path / "Ann.slg").string();
  std::string error;
  ASSERT_TRUE(CreateNewSessionsLog(p, error)) << error;
  EXPECT_EQ(FileText(p), Header(0));

  SessionRecord a = Net(Money::FromRaw(-125000), 37);
  a[31] = Money::FromRaw(INT64_MIN);
  ASSERT_TRUE(AppendSessionRecord(p, a, error)) << error;
  ASSERT_TRUE(AppendSessionRecord(p, Net(5_usd), error)) << error;

  std::string recA = Le(370000, 8) + std::string(56, '\0') + Le(static_cast<uint64_t>(-125000), 8) +
                     std::string(22 * 8, '\0') + Le(0x8000000000000000ULL, 8);
  std::string recB = std::string(64, '\0') + Le(50000, 8) + std::string(23 * 8, '\0');
  EXPECT_EQ(FileText(p), Header(2) + recA + recB);

  EXPECT_EQ(Read(p), (std::vector<SessionRecord>{a, Net(5_usd)}));
  SessionRecord second;
  ASSERT_TRUE(ReadSessionRecord(p, 1, second, error, "test")) << error;
  EXPECT_EQ(second, Net(5_usd));
  EXPECT_FALSE(ReadSessionRecord(p, 2, second, error, "test"));  // past the count
}

class SessionsLogRefusal : public ::testing::TestWithParam<std::string> {};

// Nothing is read and nothing is written: the file, the seat's path and what the caller
// held stay as they were.
TEST_P(SessionsLogRefusal, LeavesFileAndRecords) {
  FolderTable t;
  t.Seat(1, "Ann", 100_usd);
  const std::string p = (t.dir.path / "Ann.slg").string();
  WriteText(p, GetParam());
  SessionsLogFile held;
  held.Records.push_back(Net(7_usd));
  std::string error, path;
  EXPECT_FALSE(ReadSessionsLog(p, held, error, "test"));
  EXPECT_EQ(error, kNotASessionsLog);
  EXPECT_EQ(held.Records, std::vector<SessionRecord>{Net(7_usd)});
  EXPECT_FALSE(AddSessionRecord(t.g, 1, path));
  EXPECT_FALSE(StartSessionsLog(t.g, 1, path, false));
  EXPECT_FALSE(DeleteAllSessions(p, error));
  EXPECT_EQ(t.ui.LastText(), kNotASessionsLog);
  EXPECT_TRUE(path.empty());
  EXPECT_EQ(FileText(p), GetParam());
}

// An older format, a cut-off header, a count beyond the records, a negative count, text
// after the format line.
INSTANTIATE_TEST_SUITE_P(SessionsLog, SessionsLogRefusal,
                         ::testing::Values("DiceHall Sessions Log, Data Format 4.0" + std::string(218, ' '),
                                           Header(0).substr(0, 200), Header(2) + std::string(256, '\0'), Header(-1),
                                           "DiceHall Sessions Log, Data Format 5.0x" + std::string(217, ' ')));

TEST(SessionsLogFile, CountGovernsAndUnusedBytesStay) {
  TempDir d;
  const std::string p = (d.path / "long.slg").string();
  // One counted session, one surplus record, and marks in the unused header bytes.
  WriteText(p, Header(1, 'x') + std::string(256, '\0') + std::string(256, '\x7f'));
  EXPECT_EQ(Nets(p), std::vector<Money>{Money{}});
  std::string error;
  ASSERT_TRUE(AppendSessionRecord(p, Net(3_usd), error)) << error;  // over the surplus
  EXPECT_EQ(Nets(p), (std::vector<Money>{Money{}, 3_usd}));
  ASSERT_TRUE(DeleteSessions(p, {0}, error)) << error;
  EXPECT_EQ(FileText(p).size(), 512u);
  EXPECT_EQ(FileText(p).substr(0, 256), Header(1, 'x'));
  EXPECT_EQ(Nets(p), std::vector<Money>{3_usd});
}

TEST(SessionsLog, RecordOfTheSeatsSession) {
  TempDir d;
  TestTable t;
  t.Seat(2, "Bea", 500_usd);
  std::string path;
  EXPECT_FALSE(AddSessionRecord(t.g, 2, path));  // a table without a folder keeps no log
  t.g.ProgramFolder = d.path.string();
  Statistics& s = t.g.Stats;
  const int c = 2 + kSessionScope;
  s.SeatRolls[c] = 40;
  s.BetStats[c][bet::PassLine] = {3_usd, 150_usd};
  s.BetStats[c][bet::Field] = {1_usd, 50_usd};
  s.BetWinStats[c][bet::PassLine] = {1_usd, 50_usd};
  s.BetLossStats[c][bet::PassLine] = {2_usd, 100_usd};
  s.BetLossStats[c][bet::Field] = {1_usd, 53_usd};
  s.BetStats[2 + kAllScope][bet::Field] = {9_usd, 900_usd};  // another scope: not taken
  t.g.BuyInTotal[c] = 600_usd;
  t.g.Bankroll[2] = 397_usd;
  t.g.BetAmount[2][kCheckStackRow] = 11_usd;
  t.g.BetAmount[2][kCheckStackRow + 19] = 19_usd;
  t.g.BetAmount[2][kCheckStackRow + 20] = 20_usd;

  ASSERT_TRUE(AddSessionRecord(t.g, 2, path));
  EXPECT_EQ(path, (d.path / "Bea.slg").string());
  // Rolls, bets decided / won / lost / net, handle, won, lost, net, -51.5 %, invested,
  // ending, stack 0; stack 19 is the last one kept.
  SessionRecord want = {40_usd,  4_usd,   1_usd,   3_usd,    -2_usd,
                        200_usd, 50_usd,  153_usd, -103_usd, Money::FromRaw(-515000),
                        600_usd, 397_usd, 11_usd};
  want[31] = 19_usd;
  EXPECT_EQ(Read(path), std::vector<SessionRecord>{want});
}

using StartCase = std::tuple<bool, int, size_t>;  // online, the reply, the sessions after

class SessionsLogStart : public ::testing::TestWithParam<StartCase> {};

TEST_P(SessionsLogStart, ExistingLog) {
  const auto& [online, reply, sessionsAfter] = GetParam();
  FolderTable t;
  t.Seat(1, "Ann", 100_usd);
  std::string path;
  ASSERT_TRUE(AddSessionRecord(t.g, 1, path));
  t.ui.replies.push_back({reply, "", false});
  ASSERT_TRUE(StartSessionsLog(t.g, 1, path, online));
  EXPECT_EQ(Nets(path).size(), sessionsAfter);
  if (online) {
    EXPECT_EQ(t.ui.LastText(),
              "Ann has an older Sessions Log available.  Would you like to resume this log?\n\n"
              "If not, then a new log will be created and the old one deleted.");
  }
}

INSTANTIATE_TEST_SUITE_P(SessionsLog, SessionsLogStart,
                         ::testing::Values(StartCase{false, kButtonYes, 0}, StartCase{true, kButtonYes, 1},
                                           StartCase{true, kButtonNo, 0}));

std::vector<SessionRecord> Records(const std::vector<Money>& nets) {
  std::vector<SessionRecord> v;
  for (Money m : nets) v.push_back(Net(m));
  return v;
}

// 2 4 4 4 5 5 7 9: mean 5, deviations -3 -1 -1 -1 0 0 2 4, squares sum 32, variance over
// n 4, sd 2; z cubes sum 5.25 -> skew 0.65625, fourths sum 22.25 -> kurtosis 2.78125,
// both kept to the ten-thousandth (ties to even).
TEST(SessionsLogStats, HandComputedSet) {
  SessionsStats s;
  ASSERT_TRUE(ComputeSessionsStats(Records({9_usd, 4_usd, 2_usd, 5_usd, 4_usd, 7_usd, 4_usd, 5_usd}), {}, s));
  EXPECT_EQ((std::vector<int32_t>{s.N, s.ModeCount}), (std::vector<int32_t>{8, 3}));
  // Sum, mean, high, low, range, mid, median, mode, variance, standard deviation, skew, kurtosis.
  EXPECT_EQ((std::vector<Money>{s.Sum, s.Mean, s.High, s.Low, s.Range, s.Mid, s.Median, s.Mode, s.Variance, s.StdDev,
                                s.Skew, s.Kurtosis}),
            (std::vector<Money>{40_usd, 5_usd, 9_usd, 2_usd, 7_usd, Money::FromRaw(55000), Money::FromRaw(45000), 4_usd,
                                4_usd, 2_usd, Money::FromRaw(6562), Money::FromRaw(27812)}));

  ASSERT_TRUE(ComputeSessionsStats(Records({7_usd, 2_usd, 4_usd, 5_usd, 4_usd, 5_usd, 4_usd}), {}, s));
  EXPECT_EQ(s.Median, 4_usd);  // odd count: the middle value
  ASSERT_TRUE(ComputeSessionsStats(Records({3_usd, 1_usd, 3_usd, 1_usd, 8_usd}), {}, s));
  EXPECT_EQ(s.Mode, 1_usd);  // a tie goes to the lower value
  // Squares beyond what Money holds: the calculation's fault.
  EXPECT_FALSE(ComputeSessionsStats(Records({-50000000000_usd, 50000000000_usd}), {}, s));
}

// The break point, the kinds included, the sessions won, even and lost over the whole log,
// and the count and sum of those included.
using BreakCase = std::tuple<const char*, std::array<bool, 3>, std::array<int32_t, 3>, int32_t, Money>;

class SessionsBreakPoint : public ::testing::TestWithParam<BreakCase> {};

TEST_P(SessionsBreakPoint, SortsAndFilters) {
  const auto& [breakPoint, include, sessions, n, sum] = GetParam();
  SessionsFilter f;
  std::string error;
  ASSERT_TRUE(ParseBreakPoint(breakPoint, f.Break, error)) << error;
  f.Include = include;
  SessionsStats s;
  ComputeSessionsStats(Records({-10_usd, 0_usd, 0_usd, 5_usd, 20_usd}), f, s);
  EXPECT_EQ(s.Sessions, sessions);
  EXPECT_EQ(s.Total, 5);
  EXPECT_DOUBLE_EQ(s.SessionsPct[0], 20.0 * sessions[0]);
  EXPECT_EQ(s.N, n);
  EXPECT_EQ(s.Sum, sum);
}

INSTANTIATE_TEST_SUITE_P(SessionsLog, SessionsBreakPoint,
                         ::testing::Values(BreakCase{"0", {true, true, true}, {2, 2, 1}, 5, 15_usd},
                                           BreakCase{"$5 to -10", {true, true, true}, {1, 4, 0}, 5, 15_usd},
                                           BreakCase{"0", {true, true, false}, {2, 2, 1}, 4, 25_usd},
                                           BreakCase{"-1", {false, true, true}, {4, 0, 1}, 1, -10_usd},
                                           BreakCase{"20", {false, true, false}, {0, 1, 4}, 1, 20_usd}));

TEST(SessionsLogStats, OneSessionFailsWithTheSystemsWords) {
  FolderTable t;
  t.Seat(3, "Cy", 100_usd);
  std::string path;
  ASSERT_TRUE(AddSessionRecord(t.g, 3, path));
  SessionsStats s;
  EXPECT_FALSE(UpdateSessionsLog(t.g, 3, path, {}, s));
  ASSERT_FALSE(t.ui.transcript.empty());
  EXPECT_EQ(t.ui.transcript.back().request.Title, "Sessions Log Error");
  EXPECT_EQ(t.ui.LastText(),
            "An error has occurred in calculating the statistics for Cy.\n\n"
            "This may have been due to excessive variance or corruption in your data.  "
            "You should be able to view the actual data by selecting the Data option button.");
  EXPECT_EQ(s.N, 1);  // the figures before the fault stand
  EXPECT_EQ(s.Variance, Money{});
}

TEST(SessionsLog, MergeAndDelete) {
  TempDir d;
  TestTable t;
  t.Seat(1, "Ann", 100_usd);
  const std::string a = (d.path / "a").string(), b = (d.path / "b").string(), junk = (d.path / "j").string();
  std::string error;
  ASSERT_TRUE(CreateNewSessionsLog(a, error) && CreateNewSessionsLog(b, error)) << error;
  for (Money m : {1_usd, 2_usd}) ASSERT_TRUE(AppendSessionRecord(a, Net(m), error));
  for (Money m : {3_usd, 4_usd}) ASSERT_TRUE(AppendSessionRecord(b, Net(m), error));
  WriteText(junk, Header(0).substr(0, 100));

  const std::string before = FileText(a);
  EXPECT_FALSE(MergeSessionsLog(t.g, a, junk));
  EXPECT_EQ(t.ui.LastText(), kNotASessionsLog);
  EXPECT_EQ(FileText(a), before);

  ASSERT_TRUE(MergeSessionsLog(t.g, a, b));
  EXPECT_EQ(Nets(a), (std::vector<Money>{1_usd, 2_usd, 3_usd, 4_usd}));
  ASSERT_TRUE(DeleteSelectedSessions(t.g, a, {0, 2, 9}));
  EXPECT_EQ(Nets(a), (std::vector<Money>{2_usd, 4_usd}));

  t.ui.replies.push_back({kButtonNo, "", false});
  EXPECT_FALSE(DeleteAllSessions(t.g, 1, a));
  EXPECT_EQ(t.ui.LastText(), "Are you sure you want to delete ALL of Ann's recorded sessions?");
  EXPECT_EQ(Nets(a).size(), 2u);
  t.ui.replies.push_back({kButtonYes, "", false});
  ASSERT_TRUE(DeleteAllSessions(t.g, 1, a));
  EXPECT_EQ(FileText(a), Header(0));
}

}  // namespace
