// Whether a shot may be made at all: the bet needed to shoot and the session's roll
// limit; and the bankroll graph that every roll advances.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>

#include "engine/handling.h"
#include "tests/engine/line_table.h"

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kNote = "Note: This requirement can be changed on the 'Bets tab' of the configuration screen.";

// ---- Bet needed to shoot -------------------------------------------------------------------

// What; the setting; players: Ann (seat 3, the shooter), then Bob (seat 7); a point set first
// with the requirement off; the bet Ann has (0 none); whether the dice roll; the box's
// title and text when refused; the stop text under SilentMode.
using ShotCase = std::tuple<const char*, int, int, bool, int, bool, std::string, std::string, std::string>;

struct ShotTable : LineTable {
  explicit ShotTable(const ShotCase& c) {
    const auto& [what, setting, players, pointOn, shooterBet, rolls, title, text, stop] = c;
    if (players >= 1) Seat(3, "Ann", 1000_usd);
    if (players >= 2) Seat(7, "Bob", 1000_usd);
    g.Rules.BetNeededToShoot = 0;
    if (pointOn) RollTotal(5);
    if (shooterBet != 0) Bet(3, shooterBet, 10_usd);
    g.Rules.BetNeededToShoot = setting;
    ui.transcript.clear();
  }
};

class ShotGateTest : public ::testing::TestWithParam<ShotCase> {};

TEST_P(ShotGateTest, TheBoxAndTheDice) {
  const auto& [what, setting, players, pointOn, shooterBet, rolls, title, text, stop] = GetParam();
  ShotTable t(GetParam());
  const int32_t rollsBefore = t.g.Stats.RollCount[kSessionScope][0];
  const int die1 = t.g.Table.Die1, die2 = t.g.Table.Die2;
  t.Roll(6, 6);
  // Refused, the dice don't move and nothing is counted.
  EXPECT_EQ(t.g.Stats.RollCount[kSessionScope][0], rollsBefore + (rolls ? 1 : 0));
  EXPECT_EQ(t.g.Table.Die1, rolls ? 6 : die1);
  EXPECT_EQ(t.g.Table.Die2, rolls ? 6 : die2);
  ASSERT_EQ(t.Messages(), rolls ? 0 : 1);
  if (rolls) return;
  EXPECT_FALSE(t.g.Table.Rolling);
  EXPECT_EQ(t.LastMessage().Title, title);
  if (setting == 1 && players > 0) {
    EXPECT_EQ(t.LastMessage().HelpId, 130);
  }
  if (players == 0) EXPECT_THAT(t.LastMessage().Text, StartsWith(text));
  else EXPECT_EQ(t.LastMessage().Text, text);
}

TEST_P(ShotGateTest, SilentlyOnlyAStopText) {
  const auto& [what, setting, players, pointOn, shooterBet, rolls, title, text, stop] = GetParam();
  ShotTable t(GetParam());
  const int32_t rollsBefore = t.g.Stats.RollCount[kSessionScope][0];
  t.g.SilentMode = true;
  t.Roll(6, 6);
  EXPECT_EQ(t.Messages(), 0);
  EXPECT_EQ(t.g.Stats.RollCount[kSessionScope][0], rollsBefore + (rolls ? 1 : 0));
  EXPECT_EQ(t.g.StopReason, rolls ? "" : stop);
}

const std::string kLine = "A line bet is required to shoot.\n\n";
const std::string kAny = "A bet is required to shoot.\n\n";

INSTANTIATE_TEST_SUITE_P(
    ShotGate, ShotGateTest,
    ::testing::Values(
        ShotCase{"no requirement", 0, 1, false, 0, true, "", "", ""},
        ShotCase{"no requirement, empty table", 0, 0, false, 0, true, "", "", ""},
        ShotCase{"line bet, Pass Line", 1, 1, false, bet::PassLine, true, "", "", ""},
        ShotCase{"line bet, Don't Pass", 1, 2, false, bet::DontPass, true, "", "", ""},
        ShotCase{"line bet, alone", 1, 1, false, 0, false, "Line Bet Required",
                 kLine + "Ann must make a Pass Line bet or a Don't Pass bet.\n\n" + kNote, "Shooter has no line bet."},
        ShotCase{"line bet, only a Place bet", 1, 1, false, PointRow(BetFamily::Place, 6), false, "Line Bet Required",
                 kLine + "Ann must make a Pass Line bet or a Don't Pass bet.\n\n" + kNote, "Shooter has no line bet."},
        ShotCase{"line bet, two players on the come-out", 1, 2, false, 0, false, "Line Bet Required",
                 kLine + "Ann must make a Pass Line bet, a Don't Pass bet, or pass the dice.\n\n" + kNote,
                 "Shooter has no line bet."},
        ShotCase{"line bet, two players, point on", 1, 2, true, 0, false, "Line Bet Required",
                 kLine + "Ann must make a Pass Line bet or pass the dice.\n\n" + kNote, "Shooter has no line bet."},
        ShotCase{"any bet, Field", 2, 1, false, bet::Field, true, "", "", ""},
        ShotCase{"any bet, none", 2, 2, false, 0, false, "Any Bet Required",
                 kAny + "Ann must make any bet or pass the dice.\n\n" + kNote, "Shooter has no bet."},
        ShotCase{"line bet, empty table", 1, 0, false, 0, false, "Bet required", "No players are available to bet.",
                 "No players are available to bet."},
        ShotCase{"any bet, empty table", 2, 0, false, 0, false, "Bet required", "No players are available to bet.",
                 "No players are available to bet."}));

// ---- The session's roll limit ----------------------------------------------------------------

TEST(ShotGateRollLimit, TheTwoBillionthRollIsTheLast) {
  AnnTable t;
  t.g.Rules.BetNeededToShoot = 0;
  SetSessionRolls(t.g, 1999999999);
  t.Roll(2, 3);
  EXPECT_EQ(t.g.Stats.RollCount[kSessionScope][0], 2000000000);
  EXPECT_EQ(t.g.Table.Point, 5);
  EXPECT_EQ(t.Messages(), 0);

  t.Roll(6, 6);
  EXPECT_EQ(t.g.Stats.RollCount[kSessionScope][0], 2000000000);
  EXPECT_EQ(t.g.Table.DiceTotal, 5);
  EXPECT_EQ(t.g.Table.Point, 5);
  ASSERT_EQ(t.Messages(), 1);
  EXPECT_EQ(t.LastMessage().Title, "Reached Maximum Roll Limit");
  EXPECT_THAT(t.LastMessage().Text, StartsWith("Sorry ... the maximum limit of 2,000,000,000 rolls has been reached."));
  EXPECT_THAT(t.LastMessage().Text, HasSubstr("\"New\""));
  EXPECT_THAT(t.LastMessage().Text, HasSubstr("\"Game\""));
}

// ---- The bankroll limit after a roll at normal speed -------------------------------------

TEST(ShotGateBankrollLimit, CelebratesOnceThenRepeatsTheStop) {
  AnnTable t;
  t.g.Rules.BetNeededToShoot = 0;
  SetBankroll(t.g, 1, 10000000_usd);
  t.Roll(1, 2);
  EXPECT_EQ(t.g.Stats.RollCount[kSessionScope][0], 1);
  EXPECT_EQ(t.g.Table.PendingStopSeat, 1);
  ASSERT_EQ(t.Messages(), 1);
  EXPECT_EQ(t.LastMessage().Title, "DiceHall");
  EXPECT_THAT(t.LastMessage().Text, StartsWith("Congratulations!\n\nAnn broke the max bankroll limit of $"));
  EXPECT_THAT(t.LastMessage().Text, HasSubstr("Select \"New\" from the \"Game\" menu to reset the table."));
  const auto chips = [&] { return std::count(t.ui.sounds.begin(), t.ui.sounds.end(), "Chips.win"); };
  EXPECT_EQ(chips(), 1);

  t.Roll(1, 2);
  EXPECT_EQ(t.g.Stats.RollCount[kSessionScope][0], 1);
  EXPECT_EQ(t.Messages(), 2);
  EXPECT_EQ(chips(), 1);
}

// ---- The bankroll graph ----------------------------------------------------------------------

TEST(ShotGateBankrollGraph, WrapsFrom1050To1) {
  LineTable t;
  t.Seat(2, "Ann", 1000_usd);
  t.g.AutoHandleWin[2] = kSameBet;
  t.Bet(2, bet::PassLine, 10_usd);
  t.g.BankrollGraphIndex = 1049;
  // The total rolled, the graph's index after it and the bankroll kept there.
  const std::tuple<int, int, Money> steps[] = {{7, 1050, 1010_usd}, {11, 1, 1020_usd}, {7, 2, 1030_usd}};
  for (const auto& [total, index, bankroll] : steps) {
    t.RollTotal(total);
    EXPECT_EQ(t.g.BankrollGraphIndex, index);
    EXPECT_EQ(t.g.BankrollHistory[2][index], bankroll);
  }
}

TEST(ShotGateScripts, AScriptThatDoesNotCompileStopsTheRoll) {
  LineTable t;
  t.Seat(1, "Ann", 100_usd);
  t.g.Rules.BetNeededToShoot = 0;
  t.g.ScriptActive[1] = true;
  t.g.AutoBet.ScriptSource[1] = {"bet 5 on feild"};
  t.g.SilentMode = true;
  t.Roll(3, 4);
  EXPECT_EQ(t.g.Stats.RollCount[18][0], 0) << "the dice don't move";
  EXPECT_EQ(t.g.StopReason.rfind("Ann's auto-bet script contains an error", 0), 0u) << t.g.StopReason;
  EXPECT_FALSE(t.g.AutoBet.ScriptsCompiled);
  // Mended, the script compiles once and the table rolls.
  t.g.AutoBet.ScriptSource[1] = {"bet 5 on field"};
  t.Roll(3, 4);
  EXPECT_EQ(t.g.Stats.RollCount[18][0], 1);
  EXPECT_TRUE(t.g.AutoBet.ScriptsCompiled);
}

}  // namespace
