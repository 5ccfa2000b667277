// The events log: every line at its place in a played session, the kinds of event each
// dropped on its own, the index and Find, and a file that can't be written.

#include "stats/events_log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>
#include <vector>

#include "dice/seeding.h"
#include "engine/bankroll.h"
#include "engine/handling.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "tests/test_support.h"

namespace {

using namespace events;

struct LogTable : TestTable {
  TempDir dir;
  LogTable() {
    g.ProgramFolder = dir.path.string();
    clock.now = {2026, 3, 9, 14, 5, 7, 0, 2};
    g.RecordEvents = true;
  }
  std::vector<std::string> Lines() const {
    const std::string text = FileText(dir.path / "Events Log.txt");
    std::vector<std::string> lines;
    for (size_t at = 0, end; (end = text.find("\r\n", at)) != std::string::npos; at = end + 2)
      lines.push_back(text.substr(at, end - at));
    return lines;
  }
};

// Two players; wins and losses keep the same bet, so that only the players change bets.
void PlaySession(LogTable& t) {
  Game& g = t.g;
  t.Seat(1, "Ann", 1000_usd);
  t.Seat(8, "Bob", 500_usd);
  for (int s : {1, 8}) g.AutoHandleWin[s] = g.AutoHandleLose[s] = kSameBet;
  ResetTable(g, true, false, false, 0);
  g.Dice.pendingSeed = 777_usd;
  SeedRng(g, true);
  ChangeBet(g, 1, bet::PassLine, 10_usd);
  ChangeBet(g, 8, bet::DontPass, 5_usd);
  t.Roll(3, 4);
  t.Roll(2, 4);
  ChangeBet(g, 1, bet::Come, 5_usd);
  Atm(g, 1, 100_usd);
  ChangeBet(g, 8, bet::Place4 + 3, 6_usd);
  g.BetWorking[8][bet::Place4 + 3] = -1;
  t.Roll(5, 3);  // the Come bet travels to 8; Place 8 is off
  g.BetWorking[8][bet::Place4 + 3] = 1;
  ChangeBet(g, 1, kCheckStackRow, 25_usd);
  t.Roll(3, 3);
  t.Roll(2, 2);
  t.Roll(1, 6);  // seven-out: the dice go to Bob
  PassDice(g, kPassAsked);
  MovePlayer(g, 8, 6);
  t.ui.replies.push_back({kButtonYes, "", false});
  RemovePlayer(g, 6);
}

constexpr int32_t kAlways = 0, kResults = kBetsWon | kBetsLost;

// The session's lines, each with the kind that chooses it.
const std::vector<std::pair<int32_t, std::string>> kSession = {
    {kAlways, " New session started 3/9/2026 @ 2:05:07 PM"},
    {kAlways, "    Players:"},
    {kAlways, "      Ann at stick 4-left with $1000"},
    {kAlways, "      Bob at stick 4-right with $500"},
    {kAlways, "----New shooter (Ann) coming out----------"},
    {kAlways, "    RNG #1 seeded: 777"},
    {kBetChanges, "    Bets:"},
    {kBetChanges, "      Ann bet $10 on Pass Line"},
    {kBetChanges, "      Bob bet $5 on Don't Pass"},
    {kRolls, " Roll #1:  7 (3.4) from manual roll pad"},
    {kPassesMisses, "    Pass (natural)"},
    {kResults, "    Wins/losses:"},
    {kBetsLost, "      Bob lost $5 on Don't Pass"},
    {kBetsWon, "      Ann won $10 on Pass Line"},
    {kBankrollChanges, "    Bankroll:"},
    {kBankrollChanges, "      Ann increased to $1010 ($10 gain)"},
    {kBankrollChanges, "      Bob decreased to $495 ($5 loss)"},
    {kRolls, " Roll #2:  6 (2.4) from manual roll pad"},
    {kPassesMisses, "    Point established"},
    {kBankrollChanges, "    Bankroll:"},
    {kBankrollChanges, "      Ann increased to $1110 ($100 ATM withdrawal)"},
    {kBetChanges, "    Bets:"},
    {kBetChanges, "      Ann bet $5 on Come"},
    {kBetChanges, "      Bob bet $6 on Place 8"},
    {kBetChanges, "      Bob called OFF Place 8"},
    {kRolls, " Roll #3:  8 (5.3) from manual roll pad"},
    {kBetChanges, "    Ann's Come bet moved to Come 8"},
    {kBetChanges, "    Bets:"},  // the Come bet that travelled is no change
    {kBetChanges, "      Bob's Place 8 bet working normally again"},
    {kCheckStackChanges, "    CheckStacks:"},
    {kCheckStackChanges, "      Ann increased CheckStack0 to 25"},
    {kRolls, " Roll #4:  6 (3.3) from manual roll pad"},
    {kPassesMisses, "    Pass (point rolled)"},
    {kResults, "    Wins/losses:"},
    {kBetsLost, "      Bob lost $5 on Don't Pass"},
    {kBetsWon, "      Ann won $10 on Pass Line"},
    {kBankrollChanges, "    Bankroll:"},
    {kBankrollChanges, "      Ann increased to $1120 ($10 gain)"},
    {kBankrollChanges, "      Bob decreased to $490 ($5 loss)"},
    {kRolls, " Roll #5:  4 (2.2) from manual roll pad"},
    {kPassesMisses, "    Point established"},
    {kRolls, " Roll #6:  7 (1.6) from manual roll pad"},
    {kPassesMisses, "    Miss (seven-out)"},
    {kResults, "    Wins/losses:"},
    {kBetsLost, "      Ann lost $10 on Pass Line"},
    {kBetsLost, "      Ann lost $5 on Come 8"},
    {kBetsLost, "      Bob lost $6 on Place 8"},
    {kBetsWon, "      Bob won $5 on Don't Pass"},
    {kBankrollChanges, "    Bankroll:"},
    {kBankrollChanges, "      Ann decreased to $1105 ($15 loss)"},
    {kBankrollChanges, "      Bob decreased to $489 ($1 loss)"},
    {kPassesMisses, "----New shooter (Bob) coming out----------"},
    {kShooterChanges, "    The dice were passed to Ann"},
    {kAlways, "    Bob moved to stick 2-right"},
    {kAlways, "    Bob cashed out with $489 ($11 loss)"},
};

std::vector<std::string> Expected(int32_t kinds) {
  std::vector<std::string> lines;
  for (const auto& [kind, text] : kSession) {
    if (kind == kResults) {
      if ((kinds & kResults) == kResults) lines.push_back(text);
      else if (kinds & kResults) lines.push_back(kinds & kBetsWon ? "    Wins:" : "    Losses:");
    } else if (kind == kAlways || (kinds & kind)) {
      lines.push_back(text);
    }
  }
  return lines;
}

class EventKinds : public testing::TestWithParam<int32_t> {};

TEST_P(EventKinds, EachKindDropsOnlyItsOwnLines) {
  LogTable t;
  const int32_t kinds = kAllKinds & ~GetParam();
  t.g.EventsLogCategories = kinds;
  PlaySession(t);
  const std::vector<std::string> expected = Expected(kinds);
  EXPECT_EQ(t.Lines(), expected);
  ASSERT_EQ(EventsLogLineCount(t.g), static_cast<int32_t>(expected.size()));
  for (size_t n = 0; n < expected.size(); ++n)
    EXPECT_EQ(EventsLogLine(t.g, static_cast<int32_t>(n + 1)), expected[n]) << "index record " << n + 1;
}

INSTANTIATE_TEST_SUITE_P(Log, EventKinds,
                         testing::Values(0, kRolls, kBetChanges, kCheckStackChanges, kShooterChanges, kBetsWon,
                                         kBetsLost, kPassesMisses, kBankrollChanges));

TEST(EventsLog, OffWritesNothing) {
  LogTable t;
  t.g.RecordEvents = false;
  PlaySession(t);
  EXPECT_FALSE(std::filesystem::exists(t.dir.path / "Events Log.txt"));
  EXPECT_FALSE(std::filesystem::exists(t.dir.path / kEventsLogIndexName));
}

TEST(EventsLog, NextSessionIsSeparatedOrStartsAfresh) {
  for (bool clear : {false, true}) {
    LogTable t;
    t.g.Rules.BetNeededToShoot = 0;
    t.g.Events.ClearLogNewSessions = clear;
    t.Seat(1, "Ann", 100_usd);
    ResetTable(t.g, true, false, false, 0);  // a fresh log: no separator
    t.Roll(2, 2);
    ResetTable(t.g, true, false, false, 0);
    const std::vector<std::string> lines = t.Lines();
    // Four lines of header, then a roll of two lines, the separator and the next header.
    ASSERT_EQ(lines.size(), clear ? 4u : 11u);
    EXPECT_EQ(lines[0], " New session started 3/9/2026 @ 2:05:07 PM");
    if (!clear) {
      EXPECT_EQ(lines[6], std::string(53, '='));
    }
    EXPECT_EQ(EventsLogLineCount(t.g), static_cast<int32_t>(lines.size()));
  }
}

TEST(EventsLog, SevenOutAfterTheShooterLeftStartsANewHand) {
  LogTable t;
  t.g.Rules.BetNeededToShoot = 0;
  t.Seat(1, "Ann", 100_usd);
  t.Seat(2, "Bob", 100_usd);
  t.Roll(2, 2);
  t.ui.replies.push_back({kButtonYes, "", false});
  RemovePlayer(t.g, 1);  // the hand's shooter leaves; Bob finishes the hand
  t.Roll(3, 4);
  EXPECT_EQ(t.Lines().back(), "----New hand, come-out roll----------");
}

TEST(EventsLog, NewRollsScrollToTheTopOnlyWhenAsked) {
  LogTable t;
  t.g.Events.KeepLatestRollOnTop = true;
  for (const char* line : {"first", " Roll #1:  4 (2.2) from manual roll pad", "      Ann won $10 on Pass Line"})
    AddEventLine(t.g, line);
  EXPECT_EQ(t.g.Events.TopLine, 2);
}

using FindCase = std::tuple<int32_t, int32_t, const char*, int32_t>;  // top, direction, text, top after

class FindInLogCases : public testing::TestWithParam<FindCase> {};

TEST_P(FindInLogCases, StepsAndWraps) {
  LogTable t;
  for (const char* line : {"alpha one", "beta", "gamma", "ALPHA two"}) AddEventLine(t.g, line);
  const auto& [top, direction, text, expectedTop] = GetParam();
  t.g.Events.TopLine = top;
  t.g.Events.FindText = text;
  EXPECT_EQ(FindInLog(t.g, direction), expectedTop != top);
  EXPECT_EQ(t.g.Events.TopLine, expectedTop);
}

INSTANTIATE_TEST_SUITE_P(Log, FindInLogCases,
                         testing::Values(FindCase{4, 1, "alpha", 1},    // past the last line to line 1
                                         FindCase{1, -1, "alpha", 4},   // past line 1 to the last
                                         FindCase{1, 1, "Alpha", 4},    // not the line it starts on
                                         FindCase{2, 1, "missing", 2},  // a whole pass, nothing moves
                                         FindCase{3, -1, "BETA", 2}));

TEST(EventsLog, FindAsksForItsText) {
  LogTable t;
  for (const char* line : {"one", "two"}) AddEventLine(t.g, line);
  t.ui.replies.push_back({kButtonCancel, "two", false});
  EXPECT_FALSE(FindInLogAsk(t.g));
  t.ui.replies.push_back({kButtonOk, "TWO", false});
  EXPECT_TRUE(FindInLogAsk(t.g));
  EXPECT_EQ(t.ui.LastText(),
            "Enter the text you'd like to find.\n\nIf found, the line will scroll to the top of the events log.");
  EXPECT_EQ(t.g.Events.TopLine, 2);
}

TEST(EventsLog, IndexIsRebuiltFromAnyTextFile) {
  LogTable t;
  WriteText(t.dir.path / "Events Log.txt", "one\r\ntwo\nthree");
  WriteText(t.dir.path / kEventsLogIndexName, "junk");
  ASSERT_TRUE(BuildEventsLogIndex(t.g));
  ASSERT_EQ(EventsLogLineCount(t.g), 3);
  EXPECT_EQ(EventsLogLine(t.g, 2), "two");
  EXPECT_EQ(EventsLogLine(t.g, 3), "three");
  AddEventLine(t.g, "four");  // follows on from the end, unended line or not
  EXPECT_EQ(EventsLogLine(t.g, 4), "four");
}

TEST(EventsLog, AFileThatCantBeWrittenIsToldOnceAndPlayGoesOn) {
  LogTable t;
  t.g.EventsLogFile = (t.dir.path / "no such folder" / "log.txt").string();
  t.Seat(1, "Ann", 100_usd);
  t.g.Rules.BetNeededToShoot = 0;
  for (int k = 0; k < 3; ++k) t.Roll(2, 3);
  EXPECT_EQ(t.g.Stats.RollCount[kSessionScope][0], 3);
  ASSERT_EQ(t.ui.transcript.size(), 1u);
  EXPECT_EQ(t.ui.LastText(), "Path/File access error, Error #75\n occurred at: sub Add Event Line");
  EXPECT_FALSE(std::filesystem::exists(t.dir.path / kEventsLogIndexName));
}

}  // namespace
