#include "autobet/interpreter.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <span>
#include <string>
#include <tuple>
#include <vector>

#include "engine/game_state.h"
#include "engine/roll_cycle.h"
#include "tests/test_support.h"

namespace {

struct Expr {
  const char* expression;
  double number;
};

class ExpressionTest : public ::testing::TestWithParam<Expr> {};

// Precedence follows the reduction order: functions, ranges, reads, ^, unary minus,
// * and /, \, mod, + and -, &, relations, lists, not, and, or, xor.
TEST_P(ExpressionTest, ReducesToTheValue) {
  TestTable t;
  t.Seat(1, "Ann", Money::Dollars(1000));
  for (int n = 1; n <= 5; ++n) t.g.BetAmount[1][kCheckStackRow + n] = Money::Dollars(n * 10);
  const Expr& c = GetParam();
  const EvaluationResult r = EvaluateExpression(t.g, 1, c.expression);
  ASSERT_EQ(r.compileFault, "") << c.expression;
  ASSERT_EQ(r.runError, 0) << c.expression;
  ASSERT_TRUE(r.ok) << c.expression;
  EXPECT_DOUBLE_EQ(r.number, c.number) << c.expression;
}

INSTANTIATE_TEST_SUITE_P(
    Values, ExpressionTest,
    ::testing::Values(  // Operators:
        Expr{"1 + 2 * 3", 7}, Expr{"(1 + 2) * 3", 9}, Expr{"2 ^ 3 ^ 2", 64}, Expr{"-2 ^ 2", -4}, Expr{"2 ^ -1", 0.5},
        Expr{"10 - 4 - 3", 3}, Expr{"12 / 4 / 3", 1}, Expr{"7 \\ 2", 3}, Expr{"-7 \\ 2", -3}, Expr{"7 mod 3", 1},
        Expr{"-7 mod 3", -1}, Expr{"7.6 \\ 2.4", 4}, Expr{"2 + 7 mod 4 * 2", 9}, Expr{"2 * 3 \\ 4", 1},
        Expr{"- - 5", 5}, Expr{"3 - -2", 5}, Expr{"50%", 0.5}, Expr{"1 + 2 = 3", -1}, Expr{"2 < 1", 0},
        Expr{"2 >= 2", -1}, Expr{"5 = \"5\"", -1}, Expr{"\"b\" > \"a\"", -1}, Expr{"\"B\" > \"a\"", 0},
        Expr{"\"10\" < \"9\"", -1}, Expr{"10 < \"9\"", 0}, Expr{"not 0", -1}, Expr{"not -1", 0}, Expr{"not 5", -6},
        Expr{"1 = 1 and 2 = 2", -1}, Expr{"1 = 2 or 2 = 2", -1}, Expr{"-1 xor -1", 0}, Expr{"6 and 3", 2},
        // Truth values are rounded to whole numbers and held within 32 bits.
        Expr{"1.5 and 3", 2}, Expr{"not 0.6", -2}, Expr{"3000000000 and 1", 1}, Expr{"not 1 = 2 and 3 = 3", -1},
        Expr{"1 = 1 or 1 = 1 and 1 = 2", -1}, Expr{"any(4, 5, 6)", -1}, Expr{"all(4, 0, 6)", 0},
        Expr{"6 = any[4, 5, 6]", -1}, Expr{"7 = any[4, 5, 6]", 0}, Expr{"5 < all(6, 7, 8)", -1},
        Expr{"5 < all(6, 4, 8)", 0}, Expr{"any(> 5, 1, 2, 6)", -1}, Expr{"all(> 5, 6, 7)", -1},
        Expr{"all(> 5, 6, 2)", 0},
        // The qualifier picks which elements are compared; the others don't count.
        Expr{"9 > all(> 5, 1, 2, 6, 7)", -1}, Expr{"3 > all(> 5, 1, 2, 6)", 0}, Expr{"any(4, 5, 6) = 7", 0},
        Expr{"any(4, 5, 6) = 5", -1}, Expr{"((((2))))", 2}, Expr{"[2 + {3 * (1 + 1)}]", 8},
        // Ranges: Ranges run either way and read each member; cs1..cs5 hold 10..50.
        Expr{"sum(cs1 thru cs5)", 150}, Expr{"sum(cs5 thru cs2)", 140}, Expr{"count(cs3 thru cs3)", 1},
        Expr{"highest(cs4 thru cs1)", 40}, Expr{"count(> 25, cs1 thru cs5)", 3},
        Expr{"sum(place(4) thru place(10))", 0}, Expr{"any(cs1 thru cs5) = 30", -1}));

TEST(Expression, ConcatenationMakesTextAndDivisionByZeroFaults) {
  TestTable t;
  t.Seat(1, "Ann", Money::Dollars(1000));
  EvaluationResult r = EvaluateExpression(t.g, 1, "\"a\" & 1 + 2 & \"b\"");
  ASSERT_TRUE(r.ok);
  EXPECT_TRUE(r.isString);
  EXPECT_EQ(r.text, "a3b");
  r = EvaluateExpression(t.g, 1, "2.5 & \"\"");
  EXPECT_EQ(r.text, "2.5");
  // Division by nothing faults; so does a range whose ends name another player, period or measure.
  for (auto [expression, code] :
       {std::pair{"1 / cs9", 9999}, std::pair{"1 \\ cs9", 9999}, std::pair{"5 mod cs9", 9999},
        std::pair{"(3 + 1 / cs9) * 2", 9999}, std::pair{"sqr(2 / cs9)", 9999},
        std::pair{"sum(cs1 thru cs3 player2)", 51}, std::pair{"sum(place4 current hand thru place6)", 52},
        std::pair{"sum(wins place4 thru place6)", 53}}) {
    r = EvaluateExpression(t.g, 1, expression);
    EXPECT_FALSE(r.ok) << expression;
    EXPECT_EQ(r.compileFault, "") << expression;
    EXPECT_EQ(r.runError, code) << expression;
  }
}

// A table with Ann at seat 1 (and Bob at 2 when a second script is given), whose scripts
// run one cycle as activation runs them.
struct ScriptRun {
  TestTable t;
  explicit ScriptRun(const std::vector<std::string>& ann, const std::vector<std::string>& bob = {}) {
    t.Seat(1, "Ann", Money::Dollars(1000));
    t.g.AutoBet.ScriptSource[1] = ann;
    t.g.ScriptActive[1] = true;
    if (!bob.empty()) {
      t.Seat(2, "Bob", Money::Dollars(1000));
      t.g.AutoBet.ScriptSource[2] = bob;
      t.g.ScriptActive[2] = true;
    }
  }
  void Cycle() {
    ASSERT_TRUE(CompileActiveScripts(t.g)) << t.ui.LastText();
    RunAutoBet(t.g);
  }
  double Cs(int n, int seat = 1) const { return t.g.BetAmount[seat][kCheckStackRow + n].ToDouble(); }
};

struct FlowCase {
  std::vector<std::string> script;
  double cs1;
};

class FlowTest : public ::testing::TestWithParam<FlowCase> {};

// Once its statements are worked out, a silent cycle runs a condition in the turn of its
// If; otherwise each statement has a turn of its own.
TEST_P(FlowTest, LeavesTheCheckstack) {
  for (bool silent : {false, true}) {
    ScriptRun run(GetParam().script);
    run.t.g.SilentMode = silent;
    run.Cycle();
    if (silent) {
      for (Money& stack : std::span(&run.t.g.BetAmount[1][kCheckStackRow], 100)) stack = {};
      RunAutoBet(run.t.g);
    }
    EXPECT_DOUBLE_EQ(run.Cs(1), GetParam().cs1) << (silent ? "silent" : "");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Blocks, FlowTest,
    ::testing::Values(
        FlowCase{{"If 1 = 1 Then", "cs1 = 1", "Else", "cs1 = 2", "EndIf"}, 1},
        FlowCase{{"If 1 = 2 Then", "cs1 = 1", "Else", "cs1 = 2", "EndIf"}, 2},
        FlowCase{{"If 1 = 2 Then", "cs1 = 1", "ElseIf 2 = 2 Then", "cs1 = 3", "Else", "cs1 = 2", "EndIf"}, 3},
        FlowCase{{"If 1 = 2 Then", "cs1 = 1", "ElseIf 2 = 3 Then", "cs1 = 3", "Else", "cs1 = 2", "EndIf"}, 2},
        FlowCase{{"If 1 = 1 Then", "cs1 = 1", "ElseIf 2 = 2 Then", "cs1 = 3", "EndIf"}, 1},
        FlowCase{{"If 1 = 2 Then cs1 = 5 : EndIf", "cs1 = cs1 + 1"}, 1},
        FlowCase{{"If 1 = 1 Then", "  If 2 = 3 Then", "    cs1 = 1", "  Else", "    cs1 = 4", "  EndIf", "EndIf"}, 4},
        // Two expression statements between If and Then act as "or".
        FlowCase{{"If 1 = 2 : 2 = 2 Then", "cs1 = 7", "EndIf"}, 7},
        FlowCase{{"If 2 = 2 : 1 = 2 Then", "cs1 = 7", "EndIf"}, 7},
        // A fault in the condition makes it false: the Else branch runs.
        FlowCase{{"If 1 / cs9 = 1 Then", "cs1 = 1", "Else", "cs1 = 2", "EndIf"}, 2},
        // A fault in an action takes no action and the run goes on.
        FlowCase{{"cs1 = 1 / cs9", "cs1 = cs1 + 3"}, 3},
        FlowCase{{"GoTo \"skip\"", "cs1 = 1", "\"skip\"", "cs1 = cs1 + 2"}, 2},
        FlowCase{{"GoTo 100", "cs1 = 1", "100", "cs1 = cs1 + 2"}, 2},
        // Out of a loop and into the middle of a block.
        FlowCase{{"Do", "cs1 = cs1 + 1", "If cs1 = 3 Then GoTo \"out\"", "EndIf", "Loop", "\"out\""}, 3},
        FlowCase{{"GoTo \"in\"", "If 1 = 2 Then", "cs1 = 9", "\"in\"", "cs1 = cs1 + 1", "EndIf"}, 1},
        FlowCase{{"Do", "cs1 = cs1 + 1", "If cs1 >= 5 Then ExitDo", "EndIf", "Loop", "cs1 = cs1 * 10"}, 50},
        FlowCase{{"Do", "cs1 = cs1 + 1", "Do", "cs2 = cs2 + 1", "If cs2 >= 2 Then ExitDo", "EndIf", "Loop", "cs2 = 0",
                  "If cs1 >= 3 Then ExitDo", "EndIf", "Loop"},
                 3},
        // GoSub nesting, and a Return with nothing to return to is ignored.
        FlowCase{{"GoSub \"a\"", "cs1 = cs1 * 10", "GoTo \"end\"", "\"a\"", "cs1 = cs1 + 1", "GoSub \"b\"",
                  "cs1 = cs1 + 100", "Return", "\"b\"", "cs1 = cs1 + 1000", "Return", "\"end\""},
                 11010},
        FlowCase{{"Return", "cs1 = 4"}, 4}, FlowCase{{"cs1 = 1 : cs1 = cs1 + 1 : cs1 = cs1 * 3"}, 6}));

TEST(Cycle, EachScriptRunsForItsOwnSeatAndJumpsStayInIt) {
  ScriptRun run({"GoTo \"x\"", "cs1 = 99", "\"x\"", "cs1 = cs1 + 1"},
                {"cs1 = 5", "GoTo \"x\"", "cs1 = 99", "\"x\"", "cs2 = cs1 + 1"});
  run.Cycle();
  for (auto [n, seat, value] : {std::tuple{1, 1, 1}, {1, 2, 5}, {2, 2, 6}, {2, 1, 0}})
    EXPECT_DOUBLE_EQ(run.Cs(n, seat), value) << "cs" << n << " of seat " << seat;
}

TEST(Cycle, StringsMadeInACycleGoWithIt) {
  ScriptRun run({"csn1 = \"unit \" & 5", "cs1 = len(\"ab\" & \"cd\")"});
  run.Cycle();
  const size_t strings = run.t.g.AutoBet.ProgramStrings.size();
  RunAutoBet(run.t.g);
  EXPECT_EQ(run.t.g.AutoBet.ProgramStrings.size(), strings);
  EXPECT_EQ(run.t.g.CheckStackName[1][1], "unit 5");
  EXPECT_DOUBLE_EQ(run.Cs(1), 4);
}

TEST(Cycle, RunsAfterEveryRollAndCountsFaultsByScript) {
  ScriptRun run({"cs1 = cs1 + 1", "cs2 = 1 / cs9"});
  run.t.g.Rules.BetNeededToShoot = 0;
  ASSERT_TRUE(CompileActiveScripts(run.t.g));
  run.t.Roll(2, 3);
  run.t.Roll(4, 4);
  EXPECT_DOUBLE_EQ(run.Cs(1), 2);
  EXPECT_EQ(run.t.g.AutoBet.FaultCount[1], 2);
  ASSERT_FALSE(run.t.g.AutoBet.FirstFaults[1].empty());
  EXPECT_EQ(run.t.g.AutoBet.FirstFaults[1][0].code, 9999);
  EXPECT_EQ(run.t.g.AutoBet.FirstFaults[1][0].line, 2);
}

TEST(Cycle, StopInStepModeEndsTheCycle) {
  ScriptRun stopped({"cs1 = 1", "cs1 = 2", "cs1 = 3"});
  stopped.t.g.AutoBet.ShowSteps = true;
  stopped.t.ui.stepReplies = {true, false};
  stopped.Cycle();
  EXPECT_DOUBLE_EQ(stopped.Cs(1), 2);
  EXPECT_FALSE(stopped.t.g.AutoBet.ScriptRunning);
}

// Step mode turned on, or the script stopped, by a statement takes effect at the next one,
// in a cycle that works its statements out as it goes and in one that runs them worked out.
TEST(Cycle, StepsOrAStopFromAStatementTakeEffectAtTheNext) {
  // In silent mode, where statements run on between the turns of the message loop.
  ScriptRun steps({"cs1 = 1", "Show steps", "If cs1 = 1 Then", "cs2 = 2", "EndIf"});
  ASSERT_TRUE(CompileActiveScripts(steps.t.g));
  steps.t.g.SilentMode = true;
  std::array<std::size_t, 2> shown{};
  for (std::size_t& n : shown) {
    steps.t.g.AutoBet.ShowSteps = false;
    steps.t.ui.steps.clear();
    RunAutoBet(steps.t.g);
    n = steps.t.ui.steps.size();
  }
  EXPECT_GT(shown[0], 0u);
  EXPECT_EQ(shown[0], shown[1]);
  // A message box whose answer stops Auto-Betting, the second time it is shown: the
  // statement after it, worked out in the first cycle, doesn't run in the second.
  struct StopAtMessage : HeadlessUi {
    Game* game = nullptr;
    int shown = 0;
    MessageReply ShowMessage(const MessageRequest& request) override {
      if (++shown == 2) StopAutoBet(*game);
      return HeadlessUi::ShowMessage(request);
    }
  } ui;
  ScriptRun stops({"cs1 = cs1 + 1", "Show message \"Stop\"", "cs2 = cs2 + 1"});
  ui.game = &stops.t.g;
  stops.t.g.Ui = &ui;
  stops.t.g.SilentMode = true;
  ASSERT_TRUE(CompileActiveScripts(stops.t.g));
  for (int cycle = 1; cycle <= 2; ++cycle) {
    RunAutoBet(stops.t.g);
    EXPECT_DOUBLE_EQ(stops.Cs(1), cycle);
    EXPECT_DOUBLE_EQ(stops.Cs(2), 1) << cycle;
  }
}

// Every statement counts towards the runaway limit and, in silent mode, the turns of the
// message loop: a condition run together with its If and Then as well.
TEST(Cycle, EveryStatementCountsTowardsTheLimitAndTheTurns) {
  // A cycle that ends counts its statements too, as the limit counts them: 6 stop it, 7 don't.
  const std::vector<std::string> loop{"Do", "cs1 = cs1 + 1", "If cs1 > 1000000 Then ExitDo", "EndIf", "Loop"},
      ends{"cs1 = 1", "If cs1 = 1 Then cs1 = 2", "EndIf"};
  const std::tuple<const std::vector<std::string>*, int, int, int> cases[] = {
      {&loop, 1, 0, 1}, {&loop, 2, 1, 2},      {&loop, 4, 1, 3}, {&loop, 5, 1, 3}, {&loop, 6, 1, 5},
      {&loop, 9, 2, 2}, {&loop, 2000, 286, 3}, {&ends, 6, 2, 3}, {&ends, 7, 2, 0}};
  // One cycle of `script` under `limit`, 24 statements before a turn of the message loop.
  const auto cycle = [](const std::vector<std::string>& script, int limit) {
    auto run = std::make_unique<ScriptRun>(script);
    Game& g = run->t.g;
    EXPECT_TRUE(CompileActiveScripts(g));
    g.SilentMode = true;
    g.Auto.YieldCounter = 1000;
    g.AutoBet.MaxCycleStatements = limit;
    RunAutoBet(g);
    EXPECT_EQ(g.Auto.YieldCounter, 1000u + limit) << limit;
    EXPECT_EQ(run->t.ui.yields, (1000 + limit) / 1024) << limit;
    return run;
  };
  for (auto [script, limit, cs1, line] : cases) {
    const auto run = cycle(*script, limit);
    EXPECT_DOUBLE_EQ(run->Cs(1), cs1) << limit;
    EXPECT_EQ(run->t.g.AutoBet.RunawayLine, line) << limit;
  }
  // Wherever the limit falls in the loop, the markers that its jumps land on included.
  for (int limit = 2000; limit < 2007; ++limit) EXPECT_GT(cycle(loop, limit)->t.g.AutoBet.RunawayLine, 0) << limit;
  // Hyper-Drive stopped by the script: the statements after it each take a turn.
  ScriptRun stops({"cs1 = 1", "Stop autoroll/hyperdrive", "cs1 = 2", "cs1 = 3"});
  ASSERT_TRUE(CompileActiveScripts(stops.t.g));
  stops.t.g.Auto.AutoRollActive = stops.t.g.Auto.HyperDrive = stops.t.g.SilentMode = true;
  RunAutoBet(stops.t.g);
  EXPECT_FALSE(stops.t.g.SilentMode);
  EXPECT_EQ(stops.t.g.Auto.YieldCounter, 2u);
  EXPECT_EQ(stops.t.ui.yields, 3);
  // The same stop in a cycle that runs statements worked out by the cycle before: the
  // turns after it are counted as in a cycle that works them out as it goes.
  std::array<std::pair<std::uint32_t, int>, 2> turns{};
  for (int worked = 0; worked < 2; ++worked) {
    ScriptRun again({"cs1 = 1", "Stop autoroll/hyperdrive", "cs2 = 2", "cs3 = 3"});
    Game& g = again.t.g;
    ASSERT_TRUE(CompileActiveScripts(g));
    for (int cycle = 0; cycle <= worked; ++cycle) {
      g.Auto.AutoRollActive = g.Auto.HyperDrive = g.SilentMode = true;
      g.Auto.YieldCounter = 0;
      again.t.ui.yields = 0;
      RunAutoBet(g);
    }
    EXPECT_DOUBLE_EQ(again.Cs(3), 3);
    turns[static_cast<std::size_t>(worked)] = {g.Auto.YieldCounter, again.t.ui.yields};
  }
  EXPECT_EQ(turns[0], turns[1]);
  // A turn of the message loop that stops the script: nothing runs after it.
  struct StopAtTurn : HeadlessUi {
    Game* game = nullptr;
    void Yield() override { game->AutoBet.ScriptRunning = false; }
  } ui;
  ScriptRun run({"cs1 = 1", "cs1 = 2"});
  ui.game = &run.t.g;
  run.t.g.Ui = &ui;
  run.Cycle();
  EXPECT_DOUBLE_EQ(run.Cs(1), 0);
}

// "Start new session" resets the table and the script starts over in the same cycle,
// where "beginning new session" is now true; the checkstacks are kept as asked.
TEST(Cycle, StartNewSessionRestartsTheScriptInTheSameCycle) {
  ScriptRun run({"cs1 = cs1 + 1", "If beginning new session Then cs2 = cs2 + 1", "EndIf",
                 "If cs1 = 2 Then Start new session(preserve checkstacks)", "EndIf"});
  run.t.g.Rules.BetNeededToShoot = 0;
  ASSERT_TRUE(CompileActiveScripts(run.t.g));
  run.t.Roll(2, 3);
  EXPECT_DOUBLE_EQ(run.Cs(1), 1);
  EXPECT_DOUBLE_EQ(run.Cs(2), 0);
  run.t.Roll(2, 2);
  EXPECT_DOUBLE_EQ(run.Cs(1), 3);
  EXPECT_DOUBLE_EQ(run.Cs(2), 1);
  EXPECT_EQ(run.t.g.Stats.RollCount[kSessionScope][0], 0);
  EXPECT_EQ(run.t.g.AutoBet.FaultCount[1], 0);
}

struct StepCase {
  std::vector<std::string> script, texts;
};

class StepTextTest : public ::testing::TestWithParam<StepCase> {};

TEST_P(StepTextTest, EachEventShowsItsText) {
  ScriptRun run(GetParam().script);
  run.t.g.AutoBet.ShowSteps = true;
  run.Cycle();
  std::vector<std::string> texts;
  for (const StepRequest& s : run.t.ui.steps) texts.push_back(s.Text);
  EXPECT_EQ(texts, GetParam().texts);
  ASSERT_FALSE(run.t.ui.steps.empty());
  EXPECT_EQ(run.t.ui.steps[0].Title, "Auto-Bet Steps (Ann)");
  EXPECT_EQ(run.t.ui.steps[0].FirstLine, 1);
}

INSTANTIATE_TEST_SUITE_P(
    Keywords, StepTextTest,
    ::testing::Values(
        // A fault in the last action block is told, and the next statement runs.
        StepCase{{"If 1 = 2 Then", "cs1 = 1", "Else", "cs1 = 1 / cs9", "EndIf", "cs2 = 1"},
                 {"Beginning of condition block.", "End of condition block and beginning of action block.",
                  "Conditions were false, so next action block will be skipped.", "Beginning of last action block.",
                  "No action taken.\nDivision by zero.", "End of If/Then structure.", "Action taken."}},
        StepCase{{"GoSub \"s\"", "GoTo \"e\"", "\"s\"", "Return", "\"e\""},
                 {"A jump will be made to the designated subroutine.", "Label.",
                  "Return to place where subroutine was initiated.", "A jump will be made to the designated label.",
                  "Label."}},
        StepCase{{"Do", "ExitDo", "Loop"}, {"Beginning of DO/LOOP structure.", "Exit from DO/LOOP structure."}},
        StepCase{
            {"Do", "cs1 = cs1 + 1", "If cs1 = 2 Then ExitDo", "EndIf", "Loop"},
            {"Beginning of DO/LOOP structure.", "Action taken.", "Beginning of condition block.",
             "End of condition block and beginning of action block.",
             "Conditions were false, so next action block will be skipped.", "End of If/Then structure.",
             "End of DO/LOOP structure.", "A jump will be made back to the associated DO statement.", "Action taken.",
             "Beginning of condition block.", "End of condition block and beginning of action block.",
             "Conditions were true, so next action block will be performed.", "Exit from DO/LOOP structure."}},
        StepCase{{"If 1 = 2 Then", "ElseIf 1 = 1 Then", "cs1 = 1", "Else", "EndIf"},
                 {"Beginning of condition block.", "End of condition block and beginning of action block.",
                  "Conditions were false, so next action block will be skipped.", "Beginning of condition block.",
                  "End of condition block and beginning of action block.",
                  "Conditions were true, so next action block will be performed.", "Action taken.",
                  "End of action block.", "End of If/Then structure."}},
        StepCase{{"If cs1 / cs2 = 1 Then", "EndIf"},
                 {"Beginning of condition block.", "Unable to evaluate.\nDivision by zero.",
                  "End of condition block and beginning of action block.",
                  "Conditions were false, so next action block will be skipped.", "End of If/Then structure."}}));

// Everything before the "=" of an assignment is written: a plural word, a list, a range.
TEST(Cycle, AnAssignmentWritesEveryTargetBeforeItsEquals) {
  ScriptRun run({"css = 5", "cs1, cs2 = 7", "cs3 thru cs4 = 9", "csns = \"x\"", "csn2 = \"y\""});
  run.Cycle();
  for (auto [n, value] : {std::pair{0, 5}, {99, 5}, {1, 7}, {2, 7}, {3, 9}, {4, 9}})
    EXPECT_DOUBLE_EQ(run.Cs(n), value) << "cs" << n;
  for (auto [n, name] : {std::pair{0, "x"}, {99, "x"}, {2, "y"}}) EXPECT_EQ(run.t.g.CheckStackName[1][n], name) << n;
  EXPECT_EQ(run.t.g.AutoBet.FaultCount[1], 0);
}

}  // namespace
