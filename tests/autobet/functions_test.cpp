// Function calls: expressions written as a player writes them, compiled and reduced
// against a table with known players, bets and dice.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "autobet/actions.h"
#include "autobet/compiler.h"
#include "autobet/interpreter.h"
#include "autobet/statement_buffer.h"
#include "autobet/variables.h"
#include "engine/handling.h"
#include "engine/placement.h"
#include "engine/roll_cycle.h"
#include "stats/checkstacks.h"
#include "tests/test_support.h"

namespace {

constexpr int kAnn = 1, kBob = 2;

// Ann keeps every bet where it is and plays Pass Line $10, Field $5 and Place 6 $12
// through one hand: come-out 7 (a natural), point 4 made, point 6 missed. Her bankroll
// after each roll: 1005, 1010, 1019, 1034, 1029, 1002. Bob sits out with 500.
struct PlayedTable : TestTable {
  PlayedTable() {
    Seat(kAnn, "Ann", 1000_usd);
    Seat(kBob, "Bob", 500_usd);
    g.AutoHandleWin[kAnn] = kSameBet;
    g.AutoHandleLose[kAnn] = kSameBet;
    ChangeBet(g, kAnn, bet::PassLine, 10_usd);
    ChangeBet(g, kAnn, bet::Field, 5_usd);
    ChangeBet(g, kAnn, bet::Place4 + 2, 12_usd);
    for (auto [d1, d2] : {std::pair{3, 4}, {2, 2}, {3, 3}, {1, 3}, {2, 4}, {4, 3}}) Roll(d1, d2);
    // Bets on the layout now, for the numbered forms to read.
    ChangeBet(g, kAnn, bet::Hop13, 2_usd);
    ChangeBet(g, kAnn, bet::Hard4 + 3, 3_usd);
    ChangeBet(g, kAnn, bet::Big8, 4_usd);
    SetCheckStack(g, kAnn, 5, 7_usd);
    g.CheckStackName[kAnn][3] = "Target";
    g.AutoBet.Bettor = kAnn;
  }
};

struct Expected {
  const char* expression;
  double number = 0;
  const char* text = nullptr;  // a string result when set
  int runError = 0;
};

std::ostream& operator<<(std::ostream& os, const Expected& e) { return os << e.expression; }

class FunctionValueTest : public testing::TestWithParam<Expected> {};

TEST_P(FunctionValueTest, GivesItsValueOrFault) {
  const Expected& e = GetParam();
  PlayedTable t;
  const EvaluationResult r = EvaluateExpression(t.g, kAnn, e.expression);
  ASSERT_EQ(r.compileFault, "");
  EXPECT_EQ(r.runError, e.runError);
  if (e.runError != 0) return;
  ASSERT_TRUE(r.ok);
  if (e.text != nullptr) {
    EXPECT_TRUE(r.isString);
    EXPECT_EQ(r.text, e.text);
  } else {
    EXPECT_FALSE(r.isString);
    EXPECT_NEAR(r.number, e.number, 1e-9);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Numeric, FunctionValueTest,
    testing::Values(Expected{"sqr(16)", 4}, Expected{"sqr(-4)", 0, nullptr, 100}, Expected{"int(-2.5)", -3},
                    Expected{"int(2.7)", 2}, Expected{"abs(-3)", 3}, Expected{"asc(\"A\")", 65},
                    Expected{"asc(\"é\")", 233}, Expected{"asc(\"\")", 0}, Expected{"val(\"12abc\")", 12},
                    Expected{"val(\"x\")", 0}, Expected{"len(\"café\")", 4}, Expected{"round(2.5)", 3},
                    Expected{"round(-2.5)", -2}, Expected{"round(7, 5)", 5}, Expected{"round(7, 5, 3)", 10},
                    Expected{"round(7, 5, -1)", 5}, Expected{"round(10, 5, 1)", 10},
                    Expected{"round(2.5, 0)", 0, nullptr, 139}, Expected{"round(2.5, -1)", 0, nullptr, 139},
                    Expected{"sister(4)", 10}, Expected{"sister(6.5)", 8}, Expected{"sister(7)", 0, nullptr, 141},
                    Expected{"sister(13)", 0, nullptr, 141}, Expected{"sister(1)", 0, nullptr, 141},
                    Expected{"die(1)", 4}, Expected{"die(2)", 3}, Expected{"die(3)", 0, nullptr, 190},
                    Expected{"odds allowed factor(10)", 3}, Expected{"odds allowed factor(7)", 0, nullptr, 191},
                    Expected{"odds allowed factor(11)", 0, nullptr, 191}, Expected{"instr(1, \"abcabc\", \"c\")", 3},
                    Expected{"instr(4, \"abcabc\", \"c\")", 6}, Expected{"instr(1, \"abc\", \"x\")", 0},
                    Expected{"instr(0, \"abc\", \"a\")", 0, nullptr, 203},
                    Expected{"instr(4, \"abc\", \"a\")", 0, nullptr, 203}, Expected{"player(2)", 2},
                    Expected{"player(3)", 0, nullptr, 851}, Expected{"player(9)", 0, nullptr, 50},
                    Expected{"player(1.5)", 0, nullptr, 50}, Expected{"player name(2)", 0, "Bob"},
                    Expected{"player name(3)", 0, ""}, Expected{"player name(0)", 0, nullptr, 850},
                    Expected{"sqr(1 / (cs5 - 7))", 0, nullptr, 9999},
                    // With two degrees of freedom the tail is e^(-x/2); none leaves all of it.
                    Expected{"pvalue(3.5, 2)", 0.17377394345044514}, Expected{"pvalue(3.5, 0)", 1}));

INSTANTIATE_TEST_SUITE_P(Lists, FunctionValueTest,
                         testing::Values(Expected{"sum(1, 2, 3)", 6}, Expected{"sum(> 1, 1, 2, 3)", 5},
                                         Expected{"sum(1, > 2, 3, 1)", 4}, Expected{"count(>= 2, 1, 2, 3)", 2},
                                         Expected{"count(> 5, 1, 2)", 0}, Expected{"count(= 2, 2, 1, 2)", 2},
                                         Expected{"avg(2, 4)", 3}, Expected{"avg(> 5, 1)", 0},
                                         Expected{"stddev(2, 4, 4, 4, 5, 5, 7, 9)", 2}, Expected{"stddev(< 0, 1)", 0},
                                         Expected{"highest(3, 10, 2)", 10}, Expected{"lowest(3, 10, 2)", 2},
                                         Expected{"highest(< 10, 3, 10, 2)", 3}, Expected{"highest(> 10, 3)", 0},
                                         Expected{"highest$(\"b\", \"abc\", \"a\")", 0, "b"},
                                         Expected{"lowest$(\"b\", \"abc\", \"a\")", 0, "a"},
                                         Expected{"highest$(9, 10)", 0, "9"}, Expected{"sum(place bets)", 12},
                                         Expected{"count(> 0, place(4) thru place(10))", 1}));

INSTANTIATE_TEST_SUITE_P(
    Strings, FunctionValueTest,
    testing::Values(
        Expected{"left$(\"abcdef\", 2)", 0, "ab"}, Expected{"left$(\"ab\", 5)", 0, "ab"},
        Expected{"left$(\"ab\", -1)", 0, nullptr, 801}, Expected{"right$(\"abcdef\", 2)", 0, "ef"},
        Expected{"right$(\"ab\", -1)", 0, nullptr, 802}, Expected{"removeleft$(\"abcdef\", 2)", 0, "cdef"},
        Expected{"removeleft$(\"ab\", -1)", 0, nullptr, 803}, Expected{"removeright$(\"abcdef\", 2)", 0, "abcd"},
        Expected{"removeright$(\"ab\", -1)", 0, nullptr, 804}, Expected{"mid$(\"abcdef\", 2, 3)", 0, "bcd"},
        Expected{"mid$(\"abc\", 5, 1)", 0, ""}, Expected{"mid$(\"abc\", 0, 1)", 0, nullptr, 805},
        Expected{"mid$(\"abc\", 1, -1)", 0, nullptr, 805}, Expected{"removemid$(\"abcdef\", 2, 3)", 0, "aef"},
        Expected{"removemid$(\"abc\", 0, 1)", 0, nullptr, 806}, Expected{"insert$(\"abc\", 2, \"XY\")", 0, "aXYbc"},
        Expected{"insert$(\"abc\", 4, \"d\")", 0, "abcd"}, Expected{"insert$(\"abc\", 5, \"d\")", 0, nullptr, 809},
        Expected{"len(insert$(space$(256), 1, \"x\"))", 256}, Expected{"str$(2.5)", 0, "2.5"},
        Expected{"chr$(65)", 0, "A"}, Expected{"chr$(233)", 0, "é"}, Expected{"chr$(256)", 0, nullptr, 811},
        Expected{"chr$(-1)", 0, nullptr, 811}, Expected{"space$(3)", 0, "   "},
        Expected{"space$(257)", 0, nullptr, 812}, Expected{"string$(3, \"xyz\")", 0, "xxx"},
        Expected{"string$(2, 65)", 0, "AA"}, Expected{"string$(257, \"x\")", 0, nullptr, 813},
        Expected{"string$(2, 256)", 0, nullptr, 813}, Expected{"string$(2, \"\")", 0, nullptr, 813},
        Expected{"left$(\"café\", 4)", 0, "café"}, Expected{"len(cr)", 2}));

INSTANTIATE_TEST_SUITE_P(NumberedForms, FunctionValueTest,
                         testing::Values(Expected{"place(6)", 12}, Expected{"place(cs5 - 1)", 12},
                                         Expected{"hop(31)", 2}, Expected{"hop(1.3)", 2}, Expected{"hard(10)", 3},
                                         Expected{"big(8)", 4}, Expected{"cs(5)", 7}, Expected{"csn(3)", 0, "Target"},
                                         Expected{"lay(7)", 0, nullptr, 1}, Expected{"dontcome(3)", 0, nullptr, 2},
                                         Expected{"dontcomeodds(11)", 0, nullptr, 3},
                                         Expected{"come(2)", 0, nullptr, 4}, Expected{"comeodds(12)", 0, nullptr, 5},
                                         Expected{"place(7)", 0, nullptr, 6}, Expected{"buy(4.5)", 0, nullptr, 7},
                                         Expected{"big(7)", 0, nullptr, 8}, Expected{"hard(5)", 0, nullptr, 9},
                                         Expected{"hop(1.7)", 0, nullptr, 10}, Expected{"hop(10)", 0, nullptr, 10},
                                         Expected{"hop(77)", 0, nullptr, 10}, Expected{"repeater(7)", 0, nullptr, 11},
                                         Expected{"repeater(13)", 0, nullptr, 11}, Expected{"cs(100)", 0, nullptr, 21},
                                         Expected{"cs(2.5)", 0, nullptr, 21}, Expected{"csn(0 - 1)", 0, nullptr, 800}));

INSTANTIATE_TEST_SUITE_P(
    TableCounts, FunctionValueTest,
    testing::Values(
        Expected{"avg bankroll(2)", 1015.5}, Expected{"avg bankroll(6)", 1016.5}, Expected{"avg bankroll(525)", 1016.5},
        Expected{"avg bankroll(0)", 1002}, Expected{"avg bankroll(2) player2", 500},
        Expected{"avg bankroll(526)", 0, nullptr, 22}, Expected{"avg bankroll(0 - 1)", 0, nullptr, 22},
        Expected{"# comeout rolls(7)", 1}, Expected{"# comeout rolls(5)", 0}, Expected{"% comeout rolls(4)", 100.0 / 3},
        Expected{"# passes(4)", 1}, Expected{"% passes(4)", 100}, Expected{"# misses(6)", 1},
        Expected{"% misses(6)", 100}, Expected{"% misses(4)", 0}, Expected{"# passes(cs5 + 6)", 0, nullptr, 1001},
        Expected{"# points(4)", 1}, Expected{"# points(6) missed", 1}, Expected{"% points(6) missed", 100},
        Expected{"% points(4)", 100.0 / 3}, Expected{"# points(7)", 0, nullptr, 1002}, Expected{"# rolls(7)", 2},
        Expected{"# rolls(1.3)", 1}, Expected{"# rolls(3.1) 36 combo", 0},
        Expected{"# rolls(1.3) 36 combo last hand", 1}, Expected{"# rolls(2.2) 21 combo", 1},
        Expected{"# rolls(3) die1 faces", 2}, Expected{"# rolls(3) die2 faces", 3}, Expected{"% rolls(7)", 100.0 / 3},
        Expected{"% prob(1.3)", 200.0 / 36}, Expected{"# prob(7)", 1}, Expected{"# rolls since last(4)", 2},
        Expected{"# rolls(cs5 + 6)", 0, nullptr, 1001}, Expected{"# rolls(cs5 / 10)", 0, nullptr, 1009},
        Expected{"# rolls(cs5) die1 faces", 0, nullptr, 1010}));

// Input boxes speak for the Bettor and give back what was typed.
TEST(FunctionInputTest, AsksInABoxTitledForTheBettor) {
  PlayedTable t;
  t.ui.replies.push_back({kButtonOk, "12.5 dollars"});
  const EvaluationResult number = EvaluateExpression(t.g, kAnn, "input(\"How much?\") + 1");
  EXPECT_EQ(number.number, 13.5);
  ASSERT_FALSE(t.ui.transcript.empty());
  EXPECT_EQ(t.ui.transcript.back().request.Title, "Auto-Bet (Ann)");
  EXPECT_EQ(t.ui.transcript.back().request.Text, "How much?");
  EXPECT_NE(t.ui.transcript.back().request.Flags & msg::kInput, 0);

  t.ui.replies.push_back({kButtonOk, "Bob's turn"});
  const EvaluationResult text = EvaluateExpression(t.g, kAnn, "input$()");
  EXPECT_TRUE(text.isString);
  EXPECT_EQ(text.text, "Bob's turn");
}

// A script after a roll: functions feed its conditions and assignments, and a call that
// faults takes no action.
TEST(FunctionScriptTest, RunsInTheCycleAfterARoll) {
  TestTable t;
  t.Seat(kAnn, "Ann", 1000_usd);
  t.g.Rules.BetNeededToShoot = 0;
  ChangeBet(t.g, kAnn, bet::Place4 + 2, 12_usd);
  t.g.AutoBet.ScriptSource[kAnn] = {"cs3 = 5",
                                    "If # rolls(7) > 0 And Sister(6) = 8 Then",
                                    "  cs1 = place(sister(8)) + round(7, 5, 1)",
                                    "  csn2 = left$(player name(1), 2) & str$(die(1))",
                                    "  cs3 = lay(7)",
                                    "EndIf"};
  t.g.ScriptActive[kAnn] = true;
  ASSERT_TRUE(CompileActiveScripts(t.g)) << t.ui.LastText();
  t.Roll(3, 4);
  EXPECT_EQ(t.g.BetAmount[kAnn][kCheckStackRow + 1], 22_usd);
  EXPECT_EQ(t.g.CheckStackName[kAnn][2], "An3");
  EXPECT_EQ(t.g.BetAmount[kAnn][kCheckStackRow + 3], 5_usd);
  ASSERT_EQ(t.g.AutoBet.FirstFaults[kAnn].size(), 1u);
  EXPECT_EQ(t.g.AutoBet.FirstFaults[kAnn][0].code, 1);
}

// The buffer as the core hands a statement over: the records of its first statement.
void Load(Game& g, const std::string& line) {
  AutoBetProgram scratch;
  scratch.ScriptSource[kAnn] = {line};
  const std::vector<std::string> names = {"Ann", "Bob"};
  const CompileFault fault = CompileAutobets(scratch, kAnn, names);
  ASSERT_FALSE(fault.Failed()) << line << ": " << fault.message;
  AutoBetProgram& p = g.AutoBet;
  p.ProgramStrings = scratch.ScriptStrings;
  p.StatementLength = 0;
  for (std::size_t i = 2; i < scratch.ScriptRecords.size() && !IsStatementMarker(scratch.ScriptRecords[i]); ++i)
    p.StatementBuffer[++p.StatementLength] = scratch.ScriptRecords[i];
  p.RunError = 0;
}

std::vector<TokenRecord> Buffer(const AutoBetProgram& p) {
  return {p.StatementBuffer.begin() + 1, p.StatementBuffer.begin() + 1 + p.StatementLength};
}

TEST(FunctionTargetTest, NumberedFormBecomesTheTargetGroup) {
  PlayedTable t;
  Load(t.g, "place(6) player2 = 5");
  ResolveTargetFunction(t.g, 1);
  EXPECT_EQ(t.g.AutoBet.RunError, 0);
  EXPECT_EQ(Buffer(t.g.AutoBet), (std::vector<TokenRecord>{{kCodeVariableTarget, bet::Place4 + 2},
                                                           {kCodePlayer, 2},
                                                           {kCodeTime, 3},
                                                           {kCodeCounted, 1},
                                                           {kCodeModifier, 34},
                                                           {kCodeEquals, 0},
                                                           {kCodeNumber, 5}}));

  Load(t.g, "csn(42) = \"x\"");
  ResolveTargetFunction(t.g, 1);
  EXPECT_EQ(
      Buffer(t.g.AutoBet),
      (std::vector<TokenRecord>{{kCodeVariableTarget, 842}, {kCodePlayer, kAnn}, {kCodeEquals, 0}, {kCodeString, 1}}));
}

TEST(FunctionTargetTest, BadNumberFaultsAndLeavesTheStatement) {
  PlayedTable t;
  Load(t.g, "hop(67) = 5");
  const std::vector<TokenRecord> before = Buffer(t.g.AutoBet);
  ResolveTargetFunction(t.g, 1);
  EXPECT_EQ(t.g.AutoBet.RunError, 10);
  EXPECT_EQ(Buffer(t.g.AutoBet), before);
}

// The caller deletes what the call consumed: brackets, arguments, the end of a list and
// the pieces of a numbered form.
TEST(FunctionCallTest, ReportsWhatTheCallConsumed) {
  struct Case {
    const char* line;
    int consumed;
  };
  for (const Case& c : {Case{"cs1 = place(6) + 1", 7}, Case{"cs1 = sum(1, 2) + 1", 6}, Case{"cs1 = sqr(4) + 1", 3},
                        Case{"cs1 = cs(5) player2 + 1", 4}, Case{"cs1 = avg bankroll(2) + 1", 4}}) {
    PlayedTable t;
    Load(t.g, c.line);
    // The statement is "cs1 P1 = f ...": the call stands at 4.
    EXPECT_EQ(AssignFunction(t.g, 4), c.consumed) << c.line;
    EXPECT_EQ(t.g.AutoBet.RunError, 0) << c.line;
    EXPECT_TRUE(IsValueRecord(t.g.AutoBet.StatementBuffer[4])) << c.line;
  }
}

TEST(FunctionCallTest, KeepsAFaultMetInTheArguments) {
  PlayedTable t;
  Load(t.g, "cs1 = sqr(4)");
  t.g.AutoBet.RunError = 9999;
  AssignFunction(t.g, 4);
  EXPECT_EQ(t.g.AutoBet.RunError, 9999);
}

// The hops that are not on the hop rows are the one-roll bets on 2, 3, 11 and 12; a
// chi-square with a number is that item's own cell.
TEST(FunctionValueTest, HopsOffTheRowsAndOneChiSquareCell) {
  PlayedTable t;
  for (const auto& [form, bet] : {std::pair{"hop(11)", bet::Two}, std::pair{"hop(2.1)", bet::Three},
                                  std::pair{"hop(65)", bet::Eleven}, std::pair{"hop(6.6)", bet::Twelve}}) {
    t.g.AutoBet.ProgramStrings.clear();
    Load(t.g, std::string(form) + " = 5");
    ResolveTargetFunction(t.g, 1);
    ASSERT_EQ(t.g.AutoBet.RunError, 0) << form;
    EXPECT_EQ(t.g.AutoBet.StatementBuffer[1].code, kCodeVariableTarget) << form;
    EXPECT_EQ(t.g.AutoBet.StatementBuffer[1].value, bet) << form;
  }
  const EvaluationResult whole = EvaluateExpression(t.g, 1, "chisquare");
  const EvaluationResult seven = EvaluateExpression(t.g, 1, "chisquare(7)");
  const EvaluationResult two = EvaluateExpression(t.g, 1, "chisquare(2)");
  ASSERT_TRUE(whole.ok && seven.ok && two.ok);
  EXPECT_LT(seven.number, whole.number);
  EXPECT_NE(seven.number, two.number);
  std::string cells = "chisquare(2)";
  for (int total = 3; total <= 12; ++total) cells += " + chisquare(" + std::to_string(total) + ")";
  const EvaluationResult sum = EvaluateExpression(t.g, 1, cells);
  ASSERT_TRUE(sum.ok) << sum.compileFault << sum.runError;
  EXPECT_NEAR(whole.number, sum.number, 1e-9);
}

}  // namespace
