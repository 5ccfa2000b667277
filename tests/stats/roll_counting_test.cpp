// Counting of roll kinds, gaps and seats, checked against what each kind's name says.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <regex>
#include <string>
#include <tuple>
#include <vector>

#include "stats/statistics.h"

namespace {

// Whether dice a.b belong to a kind, read from the kind's name alone.
bool NameSays(int kind, int a, int b) {
  const std::string text = RollKindText(kind);
  std::smatch m;
  if (std::regex_match(text, m, std::regex("Die ([12]), face ([1-6])")))
    return (m[1] == "1" ? a : b) == std::stoi(m[2]);
  if (std::regex_match(text, m, std::regex("Any ([0-9]+)"))) return a + b == std::stoi(m[1]);
  if (std::regex_match(text, m, std::regex("Numbers ([0-9,]+)"))) {
    const std::string list = "," + std::string(m[1]) + ",";
    return list.find("," + std::to_string(a + b) + ",") != std::string::npos;
  }
  return text.find("(" + std::to_string(a) + "." + std::to_string(b) + ")") != std::string::npos;
}

std::unique_ptr<Statistics> Fresh() { return std::make_unique<Statistics>(); }

TEST(StatsRollKinds, EveryPairCountsExactlyTheKindsItsNamesSay) {
  for (int kind : {0, 1, 90}) EXPECT_STREQ(RollKindText(kind), "");
  for (int a = 1; a <= 6; ++a)
    for (int b = 1; b <= 6; ++b) {
      auto s = Fresh();
      CountRoll(*s, 0, a, b);
      for (int kind = 1; kind < kRollKinds; ++kind)
        EXPECT_EQ(s->RollCount[kAllScope][kind], NameSays(kind, a, b) ? 1 : 0) << a << "." << b << " kind " << kind;
    }
  for (int kind = 2; kind <= 89; ++kind) EXPECT_STRNE(RollKindText(kind), "") << kind;
}

// A die of 7: only the other die's face and the kinds of a total 2..12 count.
TEST(StatsRollKinds, DieOfSevenCountsNothingThatDoesNotExist) {
  const std::tuple<int, int, std::vector<int>> cases[] = {{7, 2, {85, 9, 17, 18, 19, 21, 68, 72}},
                                                          {2, 7, {79, 9, 17, 18, 19, 21, 68, 72}},
                                                          // total 12, but not dice 6.6
                                                          {7, 5, {88, 20, 21, 65, 66, 69, 75, 77}},
                                                          {7, 7, {}}};
  for (const auto& [d1, d2, kinds] : cases) {
    auto s = Fresh();
    CountRoll(*s, 4, d1, d2);
    for (int kind = 1; kind < kRollKinds; ++kind)
      EXPECT_EQ(s->RollCount[kSessionScope + 4][kind], std::count(kinds.begin(), kinds.end(), kind))
          << d1 << "." << d2 << " kind " << kind;
    EXPECT_EQ(s->RollsSince[90], 1);
    CountComeOut(*s, 0, d1 + d2, 1);
    EXPECT_EQ(s->HandDecisions[1], (std::array<std::array<int32_t, 3>, 13>{}));  // nothing spills past total 12
  }
}

TEST(StatsRollCounting, WithoutHandShooterOnlyTableColumnsCountButAllSeatRollsAdvance) {
  auto s = Fresh();
  CountRoll(*s, 0, 3, 4);
  for (int g : {kHandScope, kSessionScope, kAllScope}) {
    EXPECT_EQ(s->RollCount[g][7], 1);
    for (int seat = 1; seat < kSeats; ++seat) {
      EXPECT_EQ(s->RollCount[g + seat], (std::array<int32_t, kRollKinds>{}));
      EXPECT_EQ(s->SeatRolls[g + seat], 1);
    }
  }
}

TEST(StatsRollCounting, RollsSinceAndGaps) {
  auto s = Fresh();
  for (int i = 0; i < 5; ++i) CountRoll(*s, 0, 1, 1);
  for (int kind : {0, 1, 7, 90}) EXPECT_EQ(s->RollsSince[kind], 5) << kind;  // never came up
  EXPECT_EQ(s->RollGapHistogram[2][1], 5);  // a gap of 1 since clearing, then consecutive rolls
  const struct { int between, bin, longSum; } cases[] = {{198, 199, 0}, {199, 200, 200}, {250, 200, 251}};
  for (const auto& c : cases) {
    s->RollGapHistogram[2] = {};
    for (int i = 0; i < c.between; ++i) CountRoll(*s, 0, 3, 4);
    CountRoll(*s, 0, 1, 1);
    EXPECT_EQ(s->RollGapHistogram[2][c.bin], 1) << c.between;
    EXPECT_EQ(s->RollGapHistogram[2][0], c.longSum) << c.between;
  }
}

TEST(StatsRollCounting, OverflowOfRollsSinceSkipsTheRestOfTheRoll) {
  auto s = Fresh();
  std::array<int32_t, kRollKinds> since{};
  since[1] = INT32_MAX;
  since[7] = 5;
  s->RollsSince.Assign(since);
  EXPECT_THROW(CountRoll(*s, 0, 3, 4), StatOverflow);
  EXPECT_EQ(s->RollsSince.Values(), since);
  EXPECT_EQ(s->RollCount[kHandScope][7], 0);
}

// Counting tests the counters only when one is near the limit: each counter a roll adds
// to reaches the limit exactly, a few rolls on, and then stops the roll; a full counter
// that the roll doesn't touch stops nothing.
TEST(StatsRollCounting, EveryCounterOfARollStopsAtTheLimit) {
  // The counter, where it is (none: the rolls since kind 1), and whether the roll adds to it.
  const std::tuple<const char*, int32_t& (*)(Statistics&), bool> cases[] = {
      {"all rolls", [](Statistics& s) -> int32_t& { return s.RollCount[kAllScope][0]; }, true},
      {"shooter's sevens", [](Statistics& s) -> int32_t& { return s.RollCount[kSessionScope + 2][7]; }, true},
      {"empty seat's rolls", [](Statistics& s) -> int32_t& { return s.SeatRolls[kAllScope + 8]; }, true},
      {"gap of one", [](Statistics& s) -> int32_t& { return s.RollGapHistogram[7][1]; }, true},
      {"rolls since", nullptr, true},
      {"twelves", [](Statistics& s) -> int32_t& { return s.RollCount[kAllScope][12]; }, false}};
  for (const auto& [name, at, touched] : cases) {
    auto s = Fresh();
    std::array<int32_t, kRollKinds> since{};
    since[1] = INT32_MAX - 3;
    if (at) at(*s) = INT32_MAX - 3;
    else s->RollsSince.Assign(since);
    const auto value = [&] { return at ? at(*s) : s->RollsSince[1]; };
    for (int i = 0; i < 3; ++i) EXPECT_NO_THROW(CountRoll(*s, 2, 3, 4)) << name;
    EXPECT_EQ(value(), touched ? INT32_MAX : INT32_MAX - 3) << name;
    if (touched) EXPECT_THROW(CountRoll(*s, 2, 3, 4), StatOverflow) << name;
    else EXPECT_NO_THROW(CountRoll(*s, 2, 3, 4)) << name;
    EXPECT_EQ(value(), touched ? INT32_MAX : INT32_MAX - 3) << name;
    // Farther from the limit the rolls counted untested are bounded, not found exactly:
    // never more than any of the counters has room for.
    s = Fresh();
    since[1] = (1 << 30) - 5;
    if (at) at(*s) = since[1];
    else s->RollsSince.Assign(since);
    CountRoll(*s, 2, 3, 4);
    EXPECT_LE(s->UncheckedRolls, INT32_MAX - value()) << name;
  }
}

TEST(StatsRollOver, HandAndSessionMoveEveryKindButNotTheGaps) {
  auto s = Fresh();
  CountRoll(*s, 2, 2, 2);
  RollOverHand(*s, {true, false, true});
  EXPECT_EQ(s->RollCount[kLastHandScope + 2][79], 1);
  EXPECT_EQ(s->RollCount[2][13], 0);
  RollOverSession(*s);
  EXPECT_EQ(s->RollCount[kLastSessionScope][13], 1);
  EXPECT_EQ(s->RollCount[kSessionScope][13], 0);
  EXPECT_EQ(s->RollCount[kAllScope + 2][13], 1);
  EXPECT_EQ(s->RollsSince[7], 1);
  EXPECT_EQ(s->RollGapHistogram[13][1], 1);
}

TEST(StatsSeats, SwapAndClearTakeEveryGroup) {
  auto s = Fresh();
  CountRoll(*s, 2, 5, 5);
  RecordBetResult(*s, 2, bet::Field, 5_usd, 10_usd, Money{});
  SwapSeatStats(*s, 2, 6);
  for (int g : {kHandScope, kSessionScope, kAllScope}) {
    EXPECT_EQ(s->RollCount[g + 6][16], 1);
    EXPECT_EQ(s->RollCount[g + 2][16], 0);
    EXPECT_EQ(s->BetWinStats[g + 6][bet::Field][1], 10_usd);
  }
  RollOverHand(*s, {true, false, false, false, false, false, true});  // moves only rows the seat used
  EXPECT_EQ(s->BetStats[kLastHandScope + 6][bet::Field][1], 5_usd);
  ClearSeatStats(*s, 6);
  for (int g : {kHandScope, kLastHandScope, kSessionScope, kLastSessionScope, kAllScope}) {
    EXPECT_EQ(s->RollCount[g + 6][16], 0);
    EXPECT_EQ(s->BetStats[g + 6][bet::Field][0], Money{});
  }
  EXPECT_EQ(s->RollCount[kAllScope][16], 1);
  int32_t shooter = 2, hand = 6, last = 3;
  SwapShooterSeats(shooter, hand, last, 2, 6);
  EXPECT_EQ((std::array{shooter, hand, last}), (std::array{6, 2, 3}));
}

}  // namespace
