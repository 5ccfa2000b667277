// Auto-Roll and Hyper-Drive: the modes the toggle sets, and every way a silent run stops.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "automation/auto_roll.h"
#include "engine/handling.h"
#include "engine/roll_cycle.h"
#include "tests/engine/line_table.h"

namespace {

using ::testing::StartsWith;

const std::string kSelectNew = "Select \"New\" from the \"Game\" menu to reset the table.";

// The runner's hook after every roll: an optional standing bet of $10 on the Pass Line at
// every come-out, and a user who stops a run that has gone on far too long, so that a
// missed stop fails the test instead of hanging it.
struct Runner {
  bool keepLineBet = false;
  int budget = 10000, rolls = 0;
};

void AfterEachRoll(Game& g, void* data) {
  Runner& r = *static_cast<Runner*>(data);
  if (r.keepLineBet && g.Table.Point == 0 && g.BetAmount[1][bet::PassLine].raw == 0)
    ChangeBet(g, 1, bet::PassLine, 10_usd);
  if (++r.rolls >= r.budget && g.Auto.AutoRollActive) ToggleAutoRoll(g);
}

struct HyperTable : LineTable {
  Runner runner;
  HyperTable() {
    Seat(1, "Ann", 100000_usd);
    g.Auto.AutoRollThrottle = 0;
    g.Auto.AfterRoll = AfterEachRoll;
    g.Auto.AfterRollData = &runner;
  }
  void Run() {
    ToggleAutoRoll(g);
    RollDice(g);
  }
  int32_t SessionRolls() const { return g.Stats.RollCount[kSessionScope][0]; }
  // The run is over and the table speaks again.
  void ExpectStoppedWith(const std::string& reason) {
    EXPECT_FALSE(g.Auto.AutoRollActive);
    EXPECT_FALSE(g.Auto.HyperDrive);
    EXPECT_FALSE(g.SilentMode);
    EXPECT_FALSE(g.Table.Rolling);
    EXPECT_EQ(g.Auto.ButtonText, "Start &Hyper-Drive");
    EXPECT_EQ(g.Auto.WindowTitle, "DiceHall Hyper-Drive Stopped");
    ASSERT_EQ(Messages(), 1);
    EXPECT_EQ(LastMessage().Title, "Hyper-Drive Stopped");
    EXPECT_EQ(LastMessage().Text, reason);
  }
};

// ---- The toggle ------------------------------------------------------------------------------

TEST(HyperDriveToggle, BelowTwelveIsHyperDriveAndSilentTwelveIsAutoRollThatDrawsAndSpeaks) {
  for (int throttle = 0; throttle <= 12; ++throttle) {
    HyperTable t;
    t.g.Auto.AutoRollThrottle = throttle;
    ToggleAutoRoll(t.g);
    const bool hyper = throttle < 12;
    EXPECT_TRUE(t.g.Auto.AutoRollActive);
    EXPECT_EQ(t.g.Auto.HyperDrive, hyper) << throttle;
    EXPECT_EQ(t.g.SilentMode, hyper) << throttle;
    EXPECT_EQ(t.g.Auto.ButtonText, hyper ? "Stop &Hyper-Drive" : "Stop &Auto-Roll");
    if (hyper) {
      EXPECT_EQ(t.g.Auto.StatusText, "Hyper-Drive Active");
      continue;
    }
    ToggleAutoRoll(t.g);
    EXPECT_FALSE(t.g.Auto.AutoRollActive);
    EXPECT_EQ(t.g.Auto.ButtonText, "Start &Auto-Roll");
    EXPECT_EQ(t.Messages(), 0);
  }
}

// At normal speed the wait between rolls turns the event loop: time passes there, and
// a user who has waited long enough stops the run, so a missed Auto-Stop can't hang.
struct PatientUser : HeadlessUi {
  Game* g = nullptr;
  FakeClock* clock = nullptr;
  void Yield() override {
    ++yields;
    clock->tick += 100;
    if (yields == 1000 && g->Auto.AutoRollActive) ToggleAutoRoll(*g);
  }
};

TEST(HyperDriveToggle, AutoRollStopsAtItsAutoStopWithABox) {
  HyperTable t;
  PatientUser user;
  user.g = &t.g;
  user.clock = &t.clock;
  t.g.Ui = &user;
  t.g.Auto.AutoRollThrottle = 12;
  t.g.Rules.BetNeededToShoot = 0;
  t.g.Auto.AutoStopRolls = 3_usd;
  t.Run();
  EXPECT_EQ(t.SessionRolls(), 3);
  EXPECT_FALSE(t.g.Auto.AutoRollActive);
  ASSERT_EQ(user.transcript.size(), 1u);
  EXPECT_EQ(user.transcript[0].request.Title, "Auto-Roll Stopped");
  EXPECT_EQ(user.transcript[0].request.Text, "Stopped by Auto-Stop");
  EXPECT_EQ(user.transcript[0].request.HelpId, 540);
  EXPECT_EQ(t.g.Auto.ButtonText, "Start &Auto-Roll");
}

// ---- Auto-Stop -------------------------------------------------------------------------------

// The session's rolls before the run, the Auto-Stop and the rolls after.
using AutoStopCase = std::tuple<int32_t, int64_t, int32_t>;

class HyperDriveAutoStopTest : public ::testing::TestWithParam<AutoStopCase> {};

TEST_P(HyperDriveAutoStopTest, StopsAtTheNextMultiple) {
  const auto& [rollsBefore, every, rollsAfter] = GetParam();
  HyperTable t;
  t.runner.keepLineBet = true;
  t.Bet(1, bet::PassLine, 10_usd);
  SetSessionRolls(t.g, rollsBefore);
  t.g.Auto.AutoStopRolls = Money::Dollars(every);
  t.Run();
  EXPECT_EQ(t.SessionRolls(), rollsAfter);
  EXPECT_EQ(t.g.StopReason, "Stopped by Auto-Stop.");
  t.ExpectStoppedWith("Stopped by Auto-Stop.");
  // Every decision of the run was taken without a dialog.
  EXPECT_TRUE(t.ui.settles.empty());
}

INSTANTIATE_TEST_SUITE_P(HyperDrive, HyperDriveAutoStopTest,
                         ::testing::Values(AutoStopCase{0, 1, 1}, AutoStopCase{0, 7, 7}, AutoStopCase{0, 500, 500},
                                           AutoStopCase{3, 5, 5}, AutoStopCase{10, 5, 15}));

TEST(HyperDriveAutoStop, ZeroNeverStopsByItself) {
  HyperTable t;
  t.g.Rules.BetNeededToShoot = 0;
  t.g.Auto.AutoStopRolls = Money{};
  SetSessionRolls(t.g, 2000000000 - 1500);
  t.Run();
  EXPECT_EQ(t.SessionRolls(), 2000000000);
  EXPECT_THAT(t.g.StopReason, StartsWith("Stopped due to reaching the maximum limit of 2,000,000,000 rolls."));
  t.ExpectStoppedWith(t.g.StopReason);
}

TEST(HyperDriveAutoStop, ARefusedShotStopsTheRun) {
  HyperTable t;
  t.Run();  // no line bet
  EXPECT_EQ(t.SessionRolls(), 0);
  t.ExpectStoppedWith("Shooter has no line bet.");
}

// ---- Bankroll limits -----------------------------------------------------------------------

// What, the bankroll, the session's rolls after, the stop and whether the table waits on it.
using LimitCase = std::tuple<const char*, Money, int32_t, std::string, bool>;

class HyperDriveLimitTest : public ::testing::TestWithParam<LimitCase> {};

TEST_P(HyperDriveLimitTest, StopsBeyondTheLimitOnly) {
  const auto& [what, bankroll, rollsAfter, reason, pending] = GetParam();
  HyperTable t;
  t.g.Rules.BetNeededToShoot = 0;
  t.g.AllowNegBankroll[1] = true;
  SetBankroll(t.g, 1, bankroll);
  t.g.Auto.AutoStopRolls = 3_usd;
  t.Run();
  EXPECT_EQ(t.SessionRolls(), rollsAfter);
  t.ExpectStoppedWith(reason);
  EXPECT_EQ(t.g.Table.PendingStopSeat, pending ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    HyperDrive, HyperDriveLimitTest,
    ::testing::Values(LimitCase{"exactly the limit", 9999999_usd, 3, "Stopped by Auto-Stop.", false},
                      LimitCase{"a cent above", 9999999_usd + Money::FromRaw(100), 1,
                                "Stopped by breaking the max bankroll limit of $9,999,999\n\n" + kSelectNew, true},
                      LimitCase{"exactly the negative limit", -9999999_usd, 3, "Stopped by Auto-Stop.", false},
                      LimitCase{"a cent below", -9999999_usd - Money::FromRaw(100), 1,
                                "Stopped by exceeding the negative bankroll limit of -$9,999,999\n\n" + kSelectNew,
                                true}));

TEST(HyperDriveLimit, AStoppedTableStaysStoppedUntilANewSession) {
  HyperTable t;
  t.g.Rules.BetNeededToShoot = 0;
  SetBankroll(t.g, 1, 10000000_usd);
  t.Run();
  ASSERT_EQ(t.SessionRolls(), 1);

  // Neither a roll nor the toggle starts anything; both repeat the stop.
  t.Roll(3, 4);
  EXPECT_EQ(t.SessionRolls(), 1);
  ToggleAutoRoll(t.g);
  EXPECT_FALSE(t.g.Auto.AutoRollActive);
  ASSERT_GE(t.Messages(), 3);
  EXPECT_THAT(t.LastMessage().Text, StartsWith("Congratulations!\n\nAnn broke the max bankroll limit of $"));
  EXPECT_EQ(t.LastMessage().Title, "DiceHall");

  t.g.BankrollInitAmount[1] = 1000_usd;
  ResetTable(t.g, true, false, false, 0);
  EXPECT_EQ(t.g.Table.PendingStopSeat, 0);
  t.Roll(3, 4);
  EXPECT_EQ(t.SessionRolls(), 1);  // the new session's first roll
}

// The button pressed while a script cycle runs asks whether to stop the scripts; Yes ends
// the cycle, No leaves everything as it was, and nothing starts either way.
TEST(HyperDriveToggle, PressedDuringAScriptCycleOffersToStopIt) {
  for (const int answer : {kButtonYes, kButtonNo}) {
    TestTable t;
    t.Seat(2, "Bob", 100_usd);
    t.g.AutoBet.ScriptRunning = true;
    t.g.AutoBet.Bettor = 2;
    t.ui.replies.push_back(MessageReply{.Button = answer, .Input = {}});
    ToggleAutoRoll(t.g);
    ASSERT_FALSE(t.ui.transcript.empty());
    EXPECT_EQ(t.ui.transcript.back().request.Title, "Auto-Bet Active");
    EXPECT_EQ(t.ui.transcript.back().request.Text, "Do you want to stop auto-betting?\nBob's script processing.");
    EXPECT_EQ(t.g.AutoBet.ScriptRunning, answer == kButtonNo);
    EXPECT_FALSE(t.g.Auto.AutoRollActive);
  }
}

}  // namespace
