// Actions and assignments of scripts: each verb against the stores it changes, the
// qualifiers of a target walk, and the faults that leave the table as it was.

#include "autobet/actions.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "autobet/interpreter.h"
#include "dice/probability_file.h"
#include "engine/game_state.h"
#include "engine/handling.h"
#include "engine/roll_cycle.h"
#include "storage/paths.h"
#include "tests/autobet/records.h"
#include "tests/test_support.h"

namespace {

using namespace records;

constexpr int kAnn = 1, kBob = 2;
constexpr int kPlace6 = bet::Place4 + 2, kBuy6 = bet::Buy4 + 2, kPlace8 = bet::Place4 + 3;

// Ann (seat 1) and Bob (seat 2) at a table whose program folder is a folder of the test's
// own; Ann's script runs one cycle at a time.
struct ActionTable {
  TestTable t;
  TempDir dir;
  Game& g = t.g;
  ActionTable() {
    g.ProgramFolder = dir.path.string();
    t.Seat(kAnn, "Ann", 1000_usd);
    t.Seat(kBob, "Bob", 1000_usd);
  }
  // Runs the lines as Ann's script once; returns the first fault of the run, 0 for none.
  int Run(const std::vector<std::string>& lines) {
    AutoBetProgram& p = g.AutoBet;
    p.FaultCount = {};
    p.FirstFaults = {};
    p.ScriptSource[kAnn] = lines;
    g.ScriptActive[kAnn] = true;
    p.ScriptsCompiled = false;
    EXPECT_TRUE(CompileActiveScripts(g)) << t.ui.LastText();
    RunAutoBet(g);
    return p.FirstFaults[kAnn].empty() ? 0 : p.FirstFaults[kAnn][0].code;
  }
  // Takes a statement built by hand, as the reduction would leave it.
  void Take(const std::vector<TokenRecord>& records) {
    AutoBetProgram& p = g.AutoBet;
    p.RunError = 0;
    p.Bettor = kAnn;
    for (std::size_t i = 0; i < records.size(); ++i) p.StatementBuffer[i + 1] = records[i];
    p.StatementLength = static_cast<int>(records.size());
    TakeAction(g);
  }
  double Cs(int n) const { return g.BetAmount[kAnn][kCheckStackRow + n].ToDouble(); }
  double Bet(int bet, int seat = kAnn) const { return g.BetAmount[seat][bet].ToDouble(); }
  std::string File(const std::string& name) const { return (dir.path / name).string(); }
};

// Ann's bet as a target group.
Records BetTarget(int bet) { return {Vt(bet), P(kAnn), H(3), X(1), Y(34)}; }

// ---- Verbs over checkstacks: arithmetic, Money rounding, qualifiers.

struct VerbCase {
  std::vector<std::string> lines;
  double cs1, cs2 = 0, cs3 = 0;
};

class VerbTest : public testing::TestWithParam<VerbCase> {};

TEST_P(VerbTest, LeavesTheCheckstacks) {
  ActionTable a;
  const VerbCase& c = GetParam();
  ASSERT_EQ(a.Run(c.lines), 0);
  EXPECT_DOUBLE_EQ(a.Cs(1), c.cs1);
  EXPECT_DOUBLE_EQ(a.Cs(2), c.cs2);
  EXPECT_DOUBLE_EQ(a.Cs(3), c.cs3);
}

INSTANTIATE_TEST_SUITE_P(
    Checkstacks, VerbTest,
    testing::Values(VerbCase{{"cs1 = 10", "multiply by 3 on cs1"}, 30},
                    VerbCase{{"cs1 = 10", "divide by 4 on cs1"}, 2.5}, VerbCase{{"cs1 = 10", "add 5 to cs1"}, 15},
                    VerbCase{{"cs1 = 10", "subtract 15 from cs1"}, -5},
                    VerbCase{{"cs1 = 10", "bet 7 on cs1, cs2"}, 7, 7}, VerbCase{{"cs1 = 10", "clear cs1"}, 0},
                    VerbCase{{"cs1 = 10", "round to the nearest 4 on cs1"}, 12},
                    VerbCase{{"cs1 = 10", "round down to the nearest 4 on cs1"}, 8},
                    VerbCase{{"cs1 = 10", "round up to the nearest 4 on cs1"}, 12},
                    VerbCase{{"cs1 = 10", "round up to the nearest 5 on cs1"}, 10},
                    VerbCase{{"cs1 = 10", "round to the nearest 0 on cs1"}, 10},
                    VerbCase{{"cs1 = -10", "round to the nearest 4 on cs1"}, -8},
                    VerbCase{{"cs1 = -10", "round down to the nearest 4 on cs1"}, -12},
                    // 0.35 / 0.1 in doubles falls just short of 3.5; in Money it is exact.
                    VerbCase{{"cs1 = 0.35", "round to the nearest 0.1 on cs1"}, 0.4},
                    VerbCase{{"cs2 = 4", "add cs2 * 2 to cs1"}, 8, 4},
                    VerbCase{{"cs1 = 2", "cs2 = 3", "swap cs1, cs2"}, 3, 2}, VerbCase{{"cs1 thru cs3 = 4"}, 4, 4, 4},
                    // A qualifier holds until the next one; targets before any are always taken.
                    VerbCase{{"cs1 = 5", "cs2 = 15", "cs3 = 25", "add 1 to > 10, cs1, cs2, cs3"}, 5, 16, 26},
                    VerbCase{{"cs1 = 5", "cs2 = 15", "cs3 = 25", "add 1 to cs1, > 10, cs2, < 20, cs3"}, 6, 16, 25},
                    VerbCase{{"cs1 = 5", "cs2 = 15", "cs3 = 25", "clear = 15, cs1, cs2, cs3"}, 5, 0, 25}));

TEST(ActionNames, StringsAreClearedQualifiedAndSwappedByTheirOwnCopies) {
  ActionTable a;
  ASSERT_EQ(a.Run({"csn1 = \"a\"", "csn2 = \"b\"", "csn3 = \"a\"", "clear = \"a\", csn1, csn2", "swap csn2, csn3"}), 0);
  for (auto [n, name] : {std::pair{1, ""}, {2, "a"}, {3, "b"}}) EXPECT_EQ(a.g.CheckStackName[kAnn][n], name) << n;
}

// ---- Bets through the placement gate, and their working switches.

constexpr int kAnyWorking = 99;

struct BetCase {
  std::vector<std::string> lines;
  int seat, bet;
  double amount;
  int working = kAnyWorking;
};

class BetVerbTest : public testing::TestWithParam<BetCase> {};

TEST_P(BetVerbTest, LeavesTheBet) {
  ActionTable a;
  const BetCase& c = GetParam();
  ASSERT_EQ(a.Run(c.lines), 0);
  EXPECT_DOUBLE_EQ(a.Bet(c.bet, c.seat), c.amount);
  if (c.working != kAnyWorking) {
    EXPECT_EQ(a.g.BetWorking[c.seat][c.bet], c.working);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Bets, BetVerbTest,
    testing::Values(
        BetCase{{"bet 6 on place6"}, kAnn, kPlace6, 6},
        BetCase{{"bet 6 on place6", "add 6 to place6"}, kAnn, kPlace6, 12},
        BetCase{{"bet 5 on field", "bet 0 on field"}, kAnn, bet::Field, 0},
        BetCase{{"bet 5 on field", "clear field"}, kAnn, bet::Field, 0},
        BetCase{{"bet 5 on place6 player2"}, kBob, kPlace6, 5},
        // The table's rules cut a bet; the script goes on without a fault.
        BetCase{{"bet 10 on come"}, kAnn, bet::Come, 0},
        BetCase{{"bet 6 on place6", "buy the place bet on place6"}, kAnn, kBuy6, 6},
        BetCase{{"bet 6 on place6", "buy the place bet on place6"}, kAnn, kPlace6, 0},
        BetCase{{"bet 6 on buy6", "remove buy button from buy6"}, kAnn, kPlace6, 6},
        BetCase{{"bet 6 on place6", "call off place6", "buy the place bet on place6"}, kAnn, kBuy6, 6, -1},
        BetCase{{"bet 6 on place6", "call on place6"}, kAnn, kPlace6, 6, 2},
        BetCase{{"bet 6 on place6", "call off place6"}, kAnn, kPlace6, 6, -1},
        BetCase{{"bet 6 on place6", "call off place6", "remove on/off button from place6"}, kAnn, kPlace6, 6, 0},
        BetCase{{"place6 autowork on comeout = true"}, kAnn, kPlace6, 0, 1},
        BetCase{{"field autowork on comeout = false"}, kAnn, bet::Field, 0, 0}));

// Place-only and Buy-only verbs fault on another bet but finish the walk.
TEST(ActionBets, BuyingAnotherBetFaultsWithoutStoppingTheWalk) {
  ActionTable a;
  ASSERT_EQ(a.Run({"bet 6 on place6", "bet 5 on field"}), 0);
  a.Take(Records{A(450)} + BetTarget(bet::Field) + Records{kComma} + BetTarget(kPlace6));
  EXPECT_EQ(a.g.AutoBet.RunError, 12);
  EXPECT_DOUBLE_EQ(a.Bet(kBuy6), 6);
  EXPECT_DOUBLE_EQ(a.Bet(bet::Field), 5);
  a.Take(Records{A(454)} + BetTarget(bet::Field));
  EXPECT_EQ(a.g.AutoBet.RunError, 13);
}

// ---- Settings written by assignment.

// What a statement may change, read back as a number.
double WinMode(const Game& g) { return g.AutoHandleWin[kAnn]; }
double LoseMode(const Game& g) { return g.AutoHandleLose[kAnn]; }
double Place8(const Game& g) { return g.BetAmount[kAnn][kPlace8].ToDouble(); }
double Cs1(const Game& g) { return g.BetAmount[kAnn][kCheckStackRow + 1].ToDouble(); }
double Messages(const Game& g) { return double(static_cast<const HeadlessUi*>(g.Ui)->transcript.size()); }
double Place6Working(const Game& g) { return g.BetWorking[kAnn][kPlace6]; }
double HotRollerWorking(const Game& g) { return g.DefaultWorking[kAnn][bet::HotRoller]; }
double Place6ComeOut(const Game& g) { return g.DefaultWorking[kAnn][kPlace6]; }
double Place6HouseComeOut(const Game& g) { return g.Rules.WorkOnComeOut[kPlace6][kAnn]; }
double Bankroll(const Game& g) { return g.Bankroll[kAnn].ToDouble(); }
double RollRate(const Game& g) { return g.Rules.RollsPerTime; }
double Odds410(const Game& g) { return g.Rules.OddsAllowed410.ToDouble(); }
double Seed(const Game& g) { return g.Dice.lastSeed; }
double Rng(const Game& g) { return g.Dice.rngNumber; }
double CompRate(const Game& g) { return g.Rules.CompRate.ToDouble(); }
double NextRoll(const Game& g) { return g.Rolls.NextRollPosition; }
double Recorder(const Game& g) { return g.Rolls.RecorderState; }
double OutputFiles(const Game& g) { return double(g.AutoBet.OutputFile[kAnn].Path().size()); }
double PercentageDice(const Game& g) { return g.Percentage.PercentageDiceOn; }
void Rolled(Game& g) { g.Stats.RollCount[kSessionScope][0] = 1; }
void NoNormalNotices(Game& g) { g.Rules.Notices &= ~kNoticeAutoBetNormal; }
void Hyper(Game& g) { g.Auto.HyperDrive = true; }
void NoMtLibrary(Game& g) { g.Dice.missingRngLibraries = 1; }
double AutoTakeOdds(const Game& g) { return g.AutoTakeOdds[kAnn]; }
double AutoPassDice(const Game& g) { return g.AutoPassDice[kAnn]; }
double BeginningBankroll(const Game& g) { return g.BeginningBankroll[kAnn + kSessionScope].ToDouble(); }
double Odds59(const Game& g) { return g.Rules.OddsAllowed59.ToDouble(); }

// A script's statements, the fault they end in (0 for none) and the store they leave.
struct RunCase {
  std::vector<std::string> lines;
  int code;
  double (*probe)(const Game&);
  double value;
  void (*setup)(Game&) = nullptr;
};

class RunTest : public testing::TestWithParam<RunCase> {};

TEST_P(RunTest, FaultsOrNotAndLeavesTheStore) {
  ActionTable a;
  const RunCase& c = GetParam();
  if (c.setup) c.setup(a.g);
  EXPECT_EQ(a.Run(c.lines), c.code) << c.lines.back();
  EXPECT_DOUBLE_EQ(c.probe(a.g), c.value) << c.lines.back();
}

// Winning bets take "same bet" with an operator and an amount (the seat's modify rule);
// losing bets have no such form.
TEST(ActionSettings, SameBetWithAnOperatorSetsTheSeatsRule) {
  ActionTable a;
  ASSERT_EQ(a.Run({"autohandle winning bets = \"same bet x 150%\""}), 0);
  const SettleRule& win = a.g.SettleRules[kAnn][kRuleModifyWin];
  EXPECT_EQ(win.Operator, 2);
  EXPECT_EQ(win.Operand, 150_usd);
  EXPECT_EQ(win.Units, 1);
  ASSERT_EQ(a.Run({"autohandle winning bets = \"same bet / 0\""}), 0);
  EXPECT_EQ(a.g.SettleRules[kAnn][kRuleModifyWin].Operator, 3);
  EXPECT_EQ(a.g.SettleRules[kAnn][kRuleModifyWin].Operand, Money{});
  const SettleRule before = a.g.SettleRules[kAnn][kRuleModifyLose];
  EXPECT_EQ(a.Run({"autohandle losing bets = \"same bet - $5\""}), 861);
  EXPECT_EQ(a.g.SettleRules[kAnn][kRuleModifyLose].Operand, before.Operand);
}

// ---- Faults: the code, and the store the statement would have changed, untouched.

// A client of an online table whose own seat is Ann's.
struct AnnsMachine : OnlineLink {
  OnlineDice TakeDice(int32_t&, int32_t&) override { return OnlineDice::Local; }
  void DiceRolled(int32_t, int32_t) override {}
  void RollEnded() override {}
  void BetChanged(int, int) override {}
  void WorkingChanged(int, int) override {}
  void WorkOnComeOutChanged(int) override {}
  bool MayChangeBets(int seat) override { return seat == kAnn; }
  BetRefusal RefuseBet(int, int) override { return {}; }
  StakeDecision StakeOf(int) override { return StakeDecision::Here; }
  void SessionStarted() override {}
  void AutoRollSwitched(bool) override {}
  void DicePassed() override {}
  void LeaveOwnSeat() override {}
} anns;
void OnlineClient(Game& g) {
  g.Online = &anns;
  g.OnlineRole = kOnlineClient;
  g.ClientSeat = kAnn;
  Rolled(g);
}
double BobPlace6(const Game& g) { return g.BetAmount[kBob][kPlace6].ToDouble(); }
double Shooter(const Game& g) { return g.Table.Shooter; }
double RollsCounted(const Game& g) { return g.Stats.RollCount[kSessionScope][0]; }
void BadRollFile(Game& g) { std::ofstream(InProgramFolder(g.ProgramFolder, "bad.rol"), std::ios::binary) << '\0'; }
void ProbabilityFile(Game& g) {
  ProbabilityTable table;
  SetDefaultProbabilities(table);
  std::string error;
  EXPECT_TRUE(SaveProbabilityFile(InProgramFolder(g.ProgramFolder, "p.prb"), table, error)) << error;
}

INSTANTIATE_TEST_SUITE_P(
    Statements, RunTest,
    testing::Values(  // Settings:
        RunCase{{"rolls per hr = 360"}, 0, RollRate, 360}, RunCase{{"odds allowed factor5 = 10"}, 0, Odds59, 10},
        RunCase{{"comp rate = 12.5"}, 0, CompRate, 12.5}, RunCase{{"select rng 3"}, 0, Rng, 3},
        RunCase{{"seed = 777"}, 0, Seed, 777}, RunCase{{"seed rng with 4321"}, 0, Seed, 4321},
        RunCase{{"autotake full odds = true"}, 0, AutoTakeOdds, 1},
        RunCase{{"autopass the dice = 1"}, 0, AutoPassDice, 1}, RunCase{{"bankroll = 500"}, 0, Bankroll, 500},
        RunCase{{"bankroll = 500"}, 0, BeginningBankroll, 500},
        RunCase{{"autohandle winning bets = \"Parlay\""}, 0, WinMode, kParlayOrDouble},
        RunCase{{"autohandle winning bets = \" Same Bet / Take Winnings \""}, 0, WinMode, kSameBet},
        RunCase{{"autohandle winning bets = 3"}, 0, WinMode, 3},
        RunCase{{"autohandle losing bets = \"no bet / take remainder (if any)\""}, 0, LoseMode, kTakeDown},
        RunCase{{"autohandle losing bets = \"bet remainder\""}, 0, LoseMode, kPressUnitOrRemainder},
        RunCase{{"autohandle losing bets = \"same bet plus 1 unit\""}, 0, LoseMode, kPressDoubleOrUnit},
        RunCase{{"autohandle losing bets = \"double bet\""}, 0, LoseMode, kParlayOrDouble},
        RunCase{{"place6 autowork on comeout = true"}, 0, Place6ComeOut, 1},
        RunCase{{"place6 autowork on comeout = true"}, 0, Place6HouseComeOut, 1},
        RunCase{{"atm deposit 100", "atm withdraw 30"}, 0, Bankroll, 930}, RunCase{{"pass the dice"}, 0, Shooter, kBob},
        RunCase{{"activate probability file \"p.prb\""}, 0, PercentageDice, 1, ProbabilityFile},
        RunCase{{"activate probability file \"p.prb\"", "deactivate probability file"},
                0,
                PercentageDice,
                0,
                ProbabilityFile},
        // Faults: the walk is checked whole before anything is written.
        RunCase{{"bet 6 on place8, place6 player3"}, 851, Place8, 0},
        RunCase{{"bet 6 on place6", "call off place6, passline"}, 862, Place6Working, 0},
        RunCase{{"hotroller autowork on comeout = true"}, 862, HotRollerWorking, 1},
        RunCase{{"bankroll = 500"}, 870, Bankroll, 1000, Rolled},
        RunCase{{"autohandle winning bets = \"sometimes\""}, 860, WinMode, 0},
        RunCase{{"autohandle winning bets = \"same bet %\""}, 860, WinMode, 0},
        RunCase{{"autohandle losing bets = 9"}, 861, LoseMode, 0}, RunCase{{"rolls per hr = 0"}, 900, RollRate, 120},
        RunCase{{"odds allowed factor4 = 10000"}, 914, Odds410, 3}, RunCase{{"seed rng with 0"}, 905, Seed, 12345},
        RunCase{{"seed = 2147483648"}, 905, Seed, 12345},
        RunCase{{"select rng 3", "seed rng with 1000000"}, 905, Seed, 12345}, RunCase{{"select rng 9"}, 911, Rng, 1},
        RunCase{{"select rng 6"}, 910, Rng, 1, NoMtLibrary}, RunCase{{"comp rate = -1"}, 912, CompRate, 30},
        RunCase{{"show message \"hi\""}, 990, Messages, 0, NoNormalNotices},
        RunCase{{"show message \"hi\""}, 990, Messages, 0, Hyper},
        RunCase{{"dice roll file next roll = 3"}, 1003, NextRoll, 1}, RunCase{{"output to file \"x\""}, 1004, Cs1, 0},
        RunCase{{"playback dice roll file \"missing.rol\""}, 1005, Recorder, 0},
        RunCase{{"playback dice roll file \"bad.rol\""}, 1007, Recorder, 0, BadRollFile},
        RunCase{{"open/append file for output \"no such folder/out.txt\""}, 1006, OutputFiles, 0},
        RunCase{{"activate probability file \"missing.prb\""}, 1008, PercentageDice, 0},
        RunCase{{"cs1 = 4", "divide by 0 on cs1"}, 9999, Cs1, 4},
        // A client's script plays its own seat, and leaves the table as a whole to the host.
        RunCase{{"bet 5 on place6 player2"}, 864, BobPlace6, 0, OnlineClient},
        RunCase{{"start new session"}, 857, RollsCounted, 1, OnlineClient},
        RunCase{{"pass the dice"}, 857, Shooter, kAnn, OnlineClient},
        RunCase{{"activate probability file \"missing.prb\""}, 857, PercentageDice, 0, OnlineClient}));

TEST(ActionFaults, AnAssignmentWithoutItsValueAssignsNothing) {
  ActionTable a;
  a.Take({Vt(201), P(kAnn), kEq});
  EXPECT_EQ(a.g.AutoBet.RunError, 1011);
  a.Take({Vt(801), P(kAnn), kEq});
  EXPECT_EQ(a.g.AutoBet.RunError, 1012);
}

// ---- Actions without targets.

TEST(ActionMessages, ShowTheTextUnderTheBettorsTitleAndAskYesOrNo) {
  ActionTable a;
  ASSERT_EQ(a.Run({"show message \"Pressing now\""}), 0);
  ASSERT_FALSE(a.t.ui.transcript.empty());
  const MessageRequest& shown = a.t.ui.transcript.back().request;
  EXPECT_EQ(shown.Text, "Pressing now");
  EXPECT_EQ(shown.Title, "Auto-Bet (Ann)");
  EXPECT_EQ(shown.Width, 550);
  // Hyper-Drive shows script messages only with their own option on.
  a.g.Auto.HyperDrive = a.g.SilentMode = true;
  a.g.Rules.Notices |= kNoticeAutoBetHyper;
  ASSERT_EQ(a.Run({"show message \"fast\""}), 0);
  EXPECT_EQ(a.t.ui.LastText(), "fast");
  a.t.ui.replies.push_back({kButtonNo, "", false});
  ASSERT_EQ(a.Run({"yes/no question \"Again?\""}), 0);
  EXPECT_EQ(a.g.AutoBet.Answer, 7);
  ASSERT_EQ(a.Run({"yes/no question \"Again?\""}), 0);
  EXPECT_EQ(a.g.AutoBet.Answer, 6);
}

TEST(ActionSounds, PlayFromTheProgramFolderExceptInHyperDrive) {
  ActionTable a;
  ASSERT_EQ(a.Run({"play sound \"chips.wav\""}), 0);
  ASSERT_EQ(a.t.ui.sounds.size(), 1u);
  EXPECT_EQ(a.t.ui.sounds.back(), a.File("chips.wav"));
  a.g.Auto.HyperDrive = true;
  ASSERT_EQ(a.Run({"play sound \"chips.wav\""}), 0);
  EXPECT_EQ(a.t.ui.sounds.size(), 1u);
}

TEST(ActionFiles, OutputFilesAppendOrStartEmpty) {
  ActionTable a;
  auto content = [&] { return FileText(a.File("out.txt")); };

  ASSERT_EQ(a.Run({"open/clear file for output \"out.txt\"", "output to file \"roll \" & 1", "output to file 2.5"}), 0);
  EXPECT_EQ(content(), "roll 1\n2.5\n");
  ASSERT_EQ(a.Run({"open/append file for output \"out.txt\"", "output to file \"more\""}), 0);
  EXPECT_EQ(content(), "roll 1\n2.5\nmore\n");
  ASSERT_EQ(a.Run({"open/clear file for output \"out.txt\""}), 0);
  EXPECT_EQ(content(), "");
}

TEST(ActionFiles, PlaybackStartsAtTheRollAskedFor) {
  ActionTable a;
  std::ofstream(a.File("r.rol"), std::ios::binary)
      << char(EncodeRoll(1, 1, 0)) << char(EncodeRoll(5, 2, 0)) << char(EncodeRoll(6, 6, 0));
  ASSERT_EQ(a.Run({"playback dice roll file \"r.rol\" from roll 2"}), 0);
  EXPECT_EQ(a.g.Rolls.RecorderState, 2);
  a.g.Rules.BetNeededToShoot = 0;
  a.g.ScriptActive[kAnn] = false;
  RollDice(a.g);
  EXPECT_EQ(a.g.Table.Die1, 5);
  EXPECT_EQ(a.g.Table.Die2, 2);
  ASSERT_EQ(a.Run({"dice roll file next roll = 1", "deactivate dice roll file"}), 0);
  EXPECT_EQ(a.g.Rolls.NextRollPosition, 1);
  EXPECT_EQ(a.g.Rolls.RecorderState, 0);
}

TEST(ActionTable, StopAutoRollingAndSeedFromTheClock) {
  ActionTable a;
  a.g.Auto.AutoRollActive = true;
  ASSERT_EQ(a.Run({"stop autoroll/hyperdrive", "seed rng"}), 0);
  EXPECT_FALSE(a.g.Auto.AutoRollActive);
  EXPECT_EQ(a.g.StopReason, "Stopped by Auto-Bet command.");
  EXPECT_NE(a.g.Dice.lastSeed, 12345);
}

TEST(ActionSessions, NewSessionClearsCheckstacksAndRestartsTheScript) {
  ActionTable a;
  ASSERT_EQ(a.Run({"cs1 = 5"}), 0);
  a.Take({A(100)});
  EXPECT_DOUBLE_EQ(a.Cs(1), 0);
  EXPECT_TRUE(a.g.AutoBet.RestartScript);
}

}  // namespace
