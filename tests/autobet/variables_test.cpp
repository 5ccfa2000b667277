// Variable reads and function calls: references and expressions written as a player
// writes them, compiled, and read against a table whose statistics come from known dice
// with bets on the layout.

#include "autobet/variables.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "autobet/compiler.h"
#include "autobet/interpreter.h"
#include "autobet/statement_buffer.h"
#include "engine/handling.h"
#include "engine/placement.h"
#include "engine/roll_cycle.h"
#include "stats/checkstacks.h"
#include "tests/autobet/records.h"
#include "tests/test_support.h"

namespace {

using namespace records;

constexpr int kAnn = 1, kBob = 2;

// Ann keeps every bet where it is, won or lost, and plays Pass Line $10, Field $5 and
// Place 6 $12 through one hand:
//   3-4 come-out 7: Pass wins 10, Field loses 5
//   2-2 point 4:    Field wins 5
//   3-3:            Place 6 wins 14, Field loses 5
//   1-3 point made: Pass wins 10, Field wins 5
//   2-4 point 6:    Field loses 5 (Place 6 is off on the come-out)
//   4-3 seven-out:  Pass loses 10, Place 6 loses 12, Field loses 5
// Bankroll 1000 -> 1005, 1010, 1019, 1034, 1029, 1002.
struct PlayedTable : TestTable {
  // `script`, if any, is Ann's, active and run after every roll.
  explicit PlayedTable(const std::vector<std::string>& script = {}) {
    g.Rules.RollsPerTime = 120;
    g.Rules.RollRateUnit = kPerHour;
    Seat(kAnn, "Ann", 1000_usd);
    Seat(kBob, "Bob", 500_usd);
    g.AutoHandleWin[kAnn] = kSameBet;
    g.AutoHandleLose[kAnn] = kSameBet;
    if (!script.empty()) {
      g.AutoBet.ScriptSource[kAnn] = script;
      g.ScriptActive[kAnn] = true;
    }
    ChangeBet(g, kAnn, bet::PassLine, 10_usd);
    ChangeBet(g, kAnn, bet::Field, 5_usd);
    ChangeBet(g, kAnn, bet::Place4 + 2, 12_usd);
    for (auto [d1, d2] : {std::pair{3, 4}, {2, 2}, {3, 3}, {1, 3}, {2, 4}, {4, 3}}) Roll(d1, d2);
    g.AutoBet.Bettor = kAnn;
  }
};

// Compiles Ann's lines and loads the buffer as the core hands a statement over: the
// records of the first statement, from the first of `code` on when one is given.
void Load(Game& g, const std::vector<std::string>& lines, int code = 0) {
  AutoBetProgram scratch;
  scratch.ScriptSource[kAnn] = lines;
  const CompileFault fault = CompileAutobets(scratch, kAnn, std::vector<std::string>{"Ann", "Bob"});
  ASSERT_FALSE(fault.Failed()) << lines[0] << ": " << fault.message;
  const auto& r = scratch.ScriptRecords;
  std::size_t at = 2;
  while (code != 0 && at < r.size() && r[at].code != code) ++at;
  ASSERT_LT(at, r.size()) << lines[0];
  AutoBetProgram& p = g.AutoBet;
  p.ProgramStrings = scratch.ScriptStrings;
  p.StatementLength = 0;
  for (std::size_t i = at; i < r.size() && !IsStatementMarker(r[i]); ++i) p.StatementBuffer[++p.StatementLength] = r[i];
  p.CloseBracket = p.StatementLength + 1;
  p.RunError = 0;
}

// The reference group of `If <reference> = 0 Then` at buffer index 1, the rest after it.
void LoadReference(Game& g, const std::string& reference) {
  Load(g, {"If " + reference + " = 0 Then", "EndIf"}, kCodeVariable);
}

struct Read {
  double value = 0;
  int fault = 0;
};

Read ReadReference(Game& g, const std::string& reference) {
  LoadReference(g, reference);
  g.AutoBet.RunError = 0;
  DeleteRecords(g.AutoBet, 2, AssignVariable(g, 1));
  const TokenRecord& r = g.AutoBet.StatementBuffer[1];
  EXPECT_EQ(r.code, kCodeNumber) << reference;
  return {r.value, g.AutoBet.RunError};
}

struct Case {
  const char* reference;
  double value;  // when no fault
  int fault = 0;
};

std::ostream& operator<<(std::ostream& os, const Case& c) { return os << c.reference; }

class PlayedReadTest : public testing::TestWithParam<Case> {};

TEST_P(PlayedReadTest, ReadsTheStoreOfThePeriod) {
  const Case& c = GetParam();
  PlayedTable t;
  // Standing now, after the last roll: a new Place 8, a CheckStack, a called-off bet.
  ChangeBet(t.g, kAnn, bet::Place4 + 3, 18_usd);
  t.g.BetWorking[kAnn][bet::Place4 + 3] = -1;
  ChangeBet(t.g, kAnn, kCheckStackRow + 5, 25_usd);
  ChangeBet(t.g, kAnn, bet::Lay4, 40_usd);
  const Read r = ReadReference(t.g, c.reference);
  EXPECT_EQ(r.fault, c.fault);
  if (c.fault == 0) {
    EXPECT_NEAR(r.value, c.value, 1e-9);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Reads, PlayedReadTest,
    testing::Values(  // Bets: amounts now and at the start of the last roll.
        Case{"passline", 10}, Case{"place8", 18}, Case{"current # place8", 1}, Case{"current # place5", 0},
        Case{"prior roll $ place6", 12}, Case{"prior roll # place8", 0}, Case{"passline player2", 0},
        // The last roll's results and the period's totals.
        Case{"wins passline", 0}, Case{"losses passline", 10}, Case{"last roll # losses place6", 1},
        Case{"total # wins passline", 2}, Case{"total $ wins passline", 20}, Case{"total $ resolved passline", 30},
        Case{"total # losses field", 4}, Case{"avg $ wins field", 5}, Case{"high $ wins place6", 14},
        Case{"low $ losses place6", 12}, Case{"last $ wins passline", 10}, Case{"# rolls since last wins passline", 2},
        Case{"# rolls since last losses field", 0}, Case{"total $ net field", -10},
        Case{"total $ net % field", -100.0 / 3}, Case{"last $ net place6", -12}, Case{"high $ net field", 5},
        Case{"net passline", -10}, Case{"total $ net passline", 10}, Case{"net field player2", 0},
        Case{"low $ net field", -5}, Case{"avg $/hour wins field", 200}, Case{"avg #/hour losses field", 80},
        // Scopes: the seven-out moved the hand to "last hand".
        Case{"total $ wins passline last hand", 20}, Case{"total # wins passline current hand", 0},
        Case{"losses passline last hand", 10}, Case{"net field all sessions", -5}, Case{"wins place6 last hand", 0},
        Case{"total $ wins passline all sessions", 20}, Case{"total # resolved passline last session", 0},
        Case{"high $ wins passline current hand", 0, 301}, Case{"avg $ resolved passline current hand", 0, 300},
        Case{"last $ losses field current hand", 0, 302}, Case{"last $ wins passline last session", 0, 301},
        // States of the bet and its payoff row.
        Case{"working place6", 0}, Case{"called off place8", -1}, Case{"called on place8", 0},
        Case{"autowork on comeout place6", 0}, Case{"vig lay4", 1}, Case{"vig passline", 0, 1000},
        Case{"payoff ratio place6", 7.0 / 6}, Case{"payoff numerator place6", 7}, Case{"payoff denominator place6", 6},
        Case{"payoff ratio passlineodds", 0, 915}, Case{"payoff numerator dontpassodds", 0, 916},
        Case{"payoff denominator passlineodds", 0, 917}, Case{"payoff ratio field", 0, 918},
        Case{"payoff numerator fire", 0, 919}, Case{"payoff denominator midway", 0, 920},
        // Seats:
        Case{"cs5", 25}, Case{"cs5 player2", 0}, Case{"bankroll", 1002}, Case{"beginning bankroll", 1000},
        Case{"high bankroll", 1034}, Case{"low bankroll", 1000}, Case{"bankroll last hand", 1002},
        // 1002 less the 10 + 5 + 12 + 18 + 40 (and the lay's 1 vig) standing now; 1029 - 27 before the last roll.
        Case{"available bankroll", 916}, Case{"last available bankroll", 1002},
        Case{"autohandle winning bets", kSameBet}, Case{"autotake full odds", 0}, Case{"script active", 0},
        Case{"hrs", 0.05}, Case{"hrs current hand", 0}, Case{"comps", 0},
        // Counters:
        Case{"# hands", 1}, Case{"# hands player2", 0}, Case{"most rolls in a hand", 6}, Case{"avg rolls per hand", 6},
        Case{"most comeout rolls in a hand", 3}, Case{"avg passes per hand", 2}, Case{"most misses in a hand", 1},
        Case{"# comeout rolls", 3}, Case{"% comeout rolls", 50}, Case{"# passes", 2}, Case{"# misses", 1},
        Case{"% passes", 200.0 / 3}, Case{"# seven outs", 1}, Case{"# passes naturals", 1},
        Case{"% comeout rolls points", 200.0 / 3}, Case{"# comeout rolls last hand", 3},
        Case{"# comeout rolls current hand", 0}, Case{"# points", 2}, Case{"# points passed", 1},
        Case{"% points missed", 50}, Case{"% points", 200.0 / 3},
        // Ann shot all six rolls: totals 7, 4, 6, 4, 6, 7; die 1 showed 3, 2, 3, 1, 2, 4.
        Case{"# rolls", 6}, Case{"# rolls player2", 0}, Case{"% rolls", 100}, Case{"chisquare", 10.8},
        // The tail past 10.8 with 10 degrees of freedom: e^-5.4 (1 + 5.4 + 5.4^2/2 + 5.4^3/6 + 5.4^4/24).
        Case{"pvalue", 0.37331077128214174}, Case{"degrees of freedom", 10}, Case{"chisquare die1 faces", 4},
        Case{"degrees of freedom 21 combo", 20}));

// A total, combination or face written after the display selects the rolls counted, as
// the numbered function forms do (the same values in functions_test.cpp).
class DiceSelectionTest : public testing::TestWithParam<Case> {};

TEST_P(DiceSelectionTest, CountsTheSelectedRollsOnly) {
  PlayedTable t;
  const EvaluationResult r = EvaluateExpression(t.g, kAnn, GetParam().reference);
  ASSERT_EQ(r.compileFault, "");
  ASSERT_TRUE(r.ok) << r.runError;
  EXPECT_NEAR(r.number, GetParam().value, 1e-9);
}

// Dice: 3-4, 2-2, 3-3, 1-3, 2-4, 4-3.
INSTANTIATE_TEST_SUITE_P(
    Selections, DiceSelectionTest,
    testing::Values(Case{"# rolls die1 face3", 2}, Case{"# rolls die1 face5", 0}, Case{"# rolls die2 face4", 2},
                    // The phrase for die 2's face 3 names face 5.
                    Case{"# rolls die2 face3", 0}, Case{"# rolls die2 faces 3", 3}, Case{"# rolls 11 dice totals 7", 2},
                    Case{"% rolls 11 dice totals 6", 100.0 / 3}, Case{"# rolls 21 combo 4.3", 2},
                    Case{"# rolls 36 combo 4.3", 1}, Case{"# rolls 36 combo 1.3", 1}, Case{"# rolls 36 combo 3.1", 0},
                    Case{"% prob 11 dice totals 7", 100.0 / 6}, Case{"# rolls since last die1 face1", 2},
                    // The other pieces still count: the hand rolled over at the seven-out, Bob rolled nothing.
                    Case{"# rolls die1 face3 last hand", 2}, Case{"# rolls die1 face3 current hand", 0},
                    Case{"player2 # rolls die1 face3", 0},
                    // Without a selection every roll counts.
                    Case{"# rolls 11 dice totals", 6}, Case{"# rolls die1 faces", 6}));

// ---- Table facts.

struct FactCase {
  const char* reference;
  double value;
  std::function<void(Game&)> setup = nullptr;
};

std::ostream& operator<<(std::ostream& os, const FactCase& c) { return os << c.reference; }

class TableFactTest : public testing::TestWithParam<FactCase> {};

TEST_P(TableFactTest, ReadsTheTable) {
  const FactCase& c = GetParam();
  PlayedTable t;
  t.clock.now = {2026, 3, 9, 14, 5, 7, 500, 2};
  if (c.setup) c.setup(t.g);
  const Read r = ReadReference(t.g, c.reference);
  EXPECT_EQ(r.fault, 0);
  EXPECT_NEAR(r.value, c.value, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Facts, TableFactTest,
                         testing::Values(  // After a seven out:
                             FactCase{"dice total", 7}, FactCase{"dice combo", 3.4}, FactCase{"dice perm", 4.3},
                             FactCase{"die1", 4}, FactCase{"die2", 3}, FactCase{"point", 0}, FactCase{"last point", 6},
                             FactCase{"seven out", -1}, FactCase{"shooter misses", -1}, FactCase{"shooter passes", 0},
                             FactCase{"point is decided", -1}, FactCase{"point is established", 0},
                             FactCase{"next roll is a comeout roll", -1}, FactCase{"last roll was a comeout roll", 0},
                             FactCase{"last roll was not a comeout roll", -1}, FactCase{"beginning new hand", -1},
                             FactCase{"beginning new session", 0}, FactCase{"initializing script", 0},
                             FactCase{"initializing script", -1, [](Game& g) { g.AutoBet.InitializingScript = true; }},
                             FactCase{"shooter", kBob}, FactCase{"last shooter", kAnn}, FactCase{"autobettor", kAnn},
                             FactCase{"bettor", 4, [](Game& g) { g.AutoBet.SelectedSeat = 4; }},
                             FactCase{"dice roll file end reached", 0}, FactCase{"dice roll file next roll", 1},
                             FactCase{"dice roll file length", 0}, FactCase{"online", 0},
                             FactCase{"online", -1, [](Game& g) { g.OnlineRole = 1; }},
                             // Rules and clock:
                             FactCase{"rolls per hr", 120},
                             FactCase{"rolls per hr", 150,
                                      [](Game& g) {
                                        g.Rules.RollsPerTime = 2.5;
                                        g.Rules.RollRateUnit = kPerMinute;
                                      }},
                             FactCase{"minimum bet", 7, [](Game& g) { g.Rules.MinPlacardBet = 7_usd; }},
                             FactCase{"maximum bet", 3000, [](Game& g) { g.Rules.MaxPlacardBet = 3000_usd; }},
                             FactCase{"odds allowed factor5", 4, [](Game& g) { g.Rules.OddsAllowed59 = 4_usd; }},
                             FactCase{"odds allowed factor10", 3, [](Game& g) { g.Rules.OddsAllowed410 = 3_usd; }},
                             FactCase{"odds allowed factor8", 5, [](Game& g) { g.Rules.OddsAllowed68 = 5_usd; }},
                             FactCase{"bar", 2, [](Game& g) { g.Rules.BarNumber = 2; }}, FactCase{"seed", 12345},
                             FactCase{"rng", 5, [](Game& g) { g.Dice.rngNumber = 5; }},
                             FactCase{"comp rate", 0.25, [](Game& g) { g.Rules.CompRate = Money::FromDouble(0.25); }},
                             FactCase{"date/time", 46090 + 50707.5 / 86400}, FactCase{"timer", 50707.5},
                             FactCase{"answer", 7, [](Game& g) { g.AutoBet.Answer = 7; }}));

TEST(VariablesTest, PointFactsWhileAPointIsOn) {
  PlayedTable t;
  Game& g = t.g;
  g.Table.Shooter = kAnn;  // the dice went to Bob, who has no line bet
  t.Roll(3, 3);
  ASSERT_EQ(g.Table.Point, 6);
  for (auto [reference, value] :
       {std::pair{"point", 6.0}, std::pair{"point is established", -1.0},
        std::pair{"last roll was a comeout roll", -1.0}, std::pair{"point is decided", 0.0},
        std::pair{"payoff ratio passlineodds", 6.0 / 5}, std::pair{"payoff ratio dontpassodds", 5.0 / 6}})
    EXPECT_EQ(ReadReference(g, reference).value, value) << reference;
}

TEST(VariablesTest, RndIsReproducibleAndAdvances) {
  TestTable a, b;
  std::vector<double> first, second;
  for (int i = 0; i < 3; ++i) {
    first.push_back(ReadReference(a.g, "rnd").value);
    second.push_back(ReadReference(b.g, "rnd").value);
  }
  EXPECT_EQ(first, second);
  EXPECT_NEAR(first[0], 0.7055475115776062, 1e-15);
  EXPECT_NE(first[0], first[1]);
  for (double x : first) {
    EXPECT_GE(x, 0);
    EXPECT_LT(x, 1);
  }
}

TEST(VariablesTest, AScriptReadsAfterEveryRoll) {
  PlayedTable t({"cs1 = total $ wins passline", "cs2 = cs2 + last roll # losses field",
                 "If seven out and shooter misses Then cs3 = dice perm", "EndIf",
                 "cs4 = high $ wins passline current hand",  // no win in the new hand: fault 301
                 "If csn5 = \"\" Then cs5 = cs5 + 1",        // an unnamed stack: every roll
                 "EndIf"});
  const Game& g = t.g;
  auto cs = [&](int n) { return g.BetAmount[kAnn][kCheckStackRow + n].ToDouble(); };
  // cs4 holds the win of the rolls before the seven-out.
  for (auto [n, value] : {std::pair{1, 20.0}, {2, 4.0}, {3, 4.3}, {4, 10.0}, {5, 6.0}}) EXPECT_EQ(cs(n), value) << n;
  EXPECT_EQ(g.AutoBet.FaultCount[kAnn], 1);
  ASSERT_EQ(g.AutoBet.FirstFaults[kAnn].size(), 1u);
  EXPECT_EQ(g.AutoBet.FirstFaults[kAnn][0].code, 301);
  EXPECT_EQ(g.AutoBet.FirstFaults[kAnn][0].line, 5);
}

// ---- Groups in the buffer.

TEST(VariablesTest, AssignVariableReplacesTheRecordAndCountsItsPieces) {
  PlayedTable t;
  LoadReference(t.g, "total $ wins passline player1 last hand");
  AutoBetProgram& p = t.g.AutoBet;
  ASSERT_EQ(p.StatementLength, 7);  // V P H X Y = 0
  const std::size_t strings = p.ProgramStrings.size();
  EXPECT_EQ(AssignVariable(t.g, 1), 4);  // P H X Y, for the reduction to delete
  EXPECT_EQ(p.StatementLength, 7);
  EXPECT_EQ(p.StatementBuffer[1], (TokenRecord{kCodeNumber, 20}));
  EXPECT_EQ(p.StatementBuffer[2].code, kCodePlayer);
  // A number read makes no string.
  EXPECT_EQ(p.ProgramStrings.size(), strings);
}

TEST(VariablesTest, CheckStackNamesAreStringsOfTheirSeat) {
  PlayedTable t;
  Game& g = t.g;
  g.CheckStackName[kAnn][5] = "Nest egg";
  g.CheckStackName[kBob][99] = "Bob's last";
  LoadReference(g, "csn5");
  DeleteRecords(g.AutoBet, 2, AssignVariable(g, 1));
  const TokenRecord ann = g.AutoBet.StatementBuffer[1];
  EXPECT_EQ(ann, (TokenRecord{kCodeString, -1805}));
  EXPECT_EQ(TextOf(g, ann), "Nest egg");
  LoadReference(g, "csn99 player2");
  DeleteRecords(g.AutoBet, 2, AssignVariable(g, 1));
  EXPECT_EQ(TextOf(g, g.AutoBet.StatementBuffer[1]), "Bob's last");
  EXPECT_EQ(g.AutoBet.RunError, 0);
}

TEST(VariablesTest, PiecesOutsideTheSeatsFault) {
  PlayedTable t;
  const TokenRecord group[] = {V(43), P(9), H(3), X(1), Y(34)};
  TokenRecord out;
  EXPECT_FALSE(ReadVariable(t.g, group, out));
  EXPECT_EQ(t.g.AutoBet.RunError, 50);
  t.g.AutoBet.RunError = 0;
  const TokenRecord list[] = {V(980), P(1)};
  EXPECT_FALSE(ReadVariable(t.g, list, out));
  EXPECT_EQ(t.g.AutoBet.RunError, 10000);
}

TEST(VariablesTest, SeatOfPieceFollowsTheTable) {
  PlayedTable t;
  Game& g = t.g;
  g.Table.Shooter = 3;
  g.Table.LastHandShooter = 4;
  g.Table.HandShooter = 5;
  g.AutoBet.SelectedSeat = 6;
  g.AutoBet.Bettor = 7;
  for (auto [piece, seat] : {std::pair{1, 1}, {8, 8}, {10, 3}, {11, 4}, {12, 5}, {13, 6}, {14, 7}, {15, 0}, {0, 0}})
    EXPECT_EQ(SeatOfPiece(g, piece), seat) << piece;
  g.AutoBet.Bettor = 0;  // the table's selected player
  EXPECT_EQ(SeatOfPiece(g, 14), 6);
}

// The reader takes as many pieces after a variable as the compiler puts there.
TEST(VariablesTest, GroupSizeIsWhatTheCompilerGroups) {
  for (const char* ref : {"passline", "repeater12", "cs5", "bankroll", "hrs last session", "# hands", "# passes",
                          "# points player2", "# rolls since last", "answer"}) {
    AutoBetProgram p;
    p.ScriptSource[kAnn] = {std::string("cs1 = ") + ref};
    ASSERT_FALSE(CompileAutobets(p, kAnn, std::vector<std::string>{"Ann", "Bob"}).Failed()) << ref;
    const std::vector<TokenRecord>& r = p.ScriptRecords;
    size_t v = 0, n = 0;
    while (r[v].code != kCodeVariable) ++v;
    while (v + 1 + n < r.size() && IsReferencePiece(r[v + 1 + n])) ++n;
    EXPECT_EQ(GroupSize(static_cast<int>(r[v].value)), static_cast<int>(n)) << ref;
  }
}

// ---- Strings.

struct StringCase {
  int code;
  double value;
  const char* text;
  int fault = 0;
};

TEST(VariablesTest, StringValueOfPoolAndSpecialStrings) {
  PlayedTable t;
  Game& g = t.g;
  t.clock.now = {2026, 3, 9, 14, 5, 7, 500, 2};
  g.AutoBet.ProgramStrings = {{"Make bets", 0}, {"Press", 0}};
  g.CheckStackName[kAnn][5] = "Nest egg";
  g.CheckStackName[8][0] = "Last seat";

  for (const StringCase& c :
       {StringCase{kCodeString, 2, "Press"}, StringCase{kCodeString, 0, ""}, StringCase{kCodeString, -15, ""},
        StringCase{kCodeString, -1, "3/9/2026"}, StringCase{kCodeString, -2, "2:05:07 PM"},
        StringCase{kCodeString, -10, "Please enter a value"}, StringCase{kCodeString, -11, "Please enter a string"},
        StringCase{kCodeString, -901, "Ann"}, StringCase{kCodeString, -902, "Bob"}, StringCase{kCodeString, -903, ""},
        StringCase{kCodeString, -1805, "Nest egg"}, StringCase{kCodeString, -8800, "Last seat"},
        StringCase{kCodeVariableTarget, 805, "Nest egg"}, StringCase{kCodeNumber, 3.5, "3.5"},
        // No string of that number: a fault.
        StringCase{kCodeString, 3, "", 998}, StringCase{kCodeString, -3, "", 998},
        StringCase{kCodeString, -1900, "", 998}, StringCase{kCodeString, -9800, "", 998},
        StringCase{kCodeVariableTarget, 900, "", 998}, StringCase{kCodeVariable, 805, "", 998}}) {
    g.AutoBet.RunError = 0;
    EXPECT_EQ(StringValue(g, c.code, c.value), c.text) << c.code << " " << c.value;
    EXPECT_EQ(g.AutoBet.RunError, c.fault) << c.code << " " << c.value;
  }
  t.clock.now.hour = 0;
  EXPECT_EQ(StringValue(g, kCodeString, -2), "12:05:07 AM");
}

TEST(VariablesTest, RunErrorTexts) {
  const std::pair<int, const char*> cases[] = {
      {0, ""},
      {1, "Reference to Lay bet out of limits.\nAcceptable values 4,5,6,8,9,10"},
      {813,
       "Reference to String$ function out of limits.\nAcceptable values for the first argument are 0-256\n"
       "Acceptable values for the second argument are 0-255"},
      {905, "Seed value out of limits.\nAcceptable values 1 to 2147483647 (RNG#3: 1 to 999999)"},
      {801, "Reference to Left$ function out of limits."},
      {812, "Reference to Space$ function out of limits."},
      {1005, "Unable to open file"},
      {4242, ""}};
  for (const auto& [code, text] : cases) EXPECT_EQ(RunErrorText(code), text) << code;
}

// Expected value: the payoff the table pays now against the odds of the dice, a unit's
// share as net %, the resolved wagers' share as net.
TEST(VariablesTest, ExpectedValueIsTheHousesShare) {
  PlayedTable t;
  const auto read = [&](const std::string& e) { return EvaluateExpression(t.g, kAnn, e); };
  const auto ratio = [&](const std::string& bet) { return read("payoff ratio " + bet).number; };
  struct Case {
    const char* bet;
    double pWin, pLose;
  };
  for (const Case& c :
       {Case{"passline", 244.0 / 495, 251.0 / 495}, Case{"dontpass", 949.0 / 1980, 976.0 / 1980},
        Case{"place4", 3.0 / 9, 6.0 / 9}, Case{"place6", 5.0 / 11, 6.0 / 11}, Case{"comeodds5", 4.0 / 10, 6.0 / 10},
        Case{"dontcomeodds9", 6.0 / 10, 4.0 / 10}, Case{"hard8", 1.0 / 11, 10.0 / 11}, Case{"hard4", 1.0 / 9, 8.0 / 9},
        Case{"big6", 5.0 / 11, 6.0 / 11}, Case{"seven", 6.0 / 36, 30.0 / 36}, Case{"craps", 4.0 / 36, 32.0 / 36},
        Case{"hop33", 1.0 / 36, 35.0 / 36}, Case{"hop16", 2.0 / 36, 34.0 / 36}, Case{"over7", 15.0 / 36, 21.0 / 36}}) {
    const std::string bet = c.bet;
    const double r = bet == "passline" || bet == "dontpass" ? 1.0 : ratio(bet);
    const EvaluationResult ev = read("expected value net % " + bet);
    ASSERT_TRUE(ev.ok) << bet << " " << ev.runError;
    EXPECT_NEAR(ev.number, 100 * (c.pWin * r - c.pLose), 1e-9) << bet;
  }
  EXPECT_NEAR(read("expected value net % passline").number, -700.0 / 495, 1e-9);
  // Three Pass Line decisions of $10 were resolved this session.
  EXPECT_NEAR(read("expected value net passline").number, -7.0 / 495 * 30, 1e-9);
  // The buy vig comes off every decision when it is charged up front.
  const double buy = read("expected value net % buy4").number;
  EXPECT_NEAR(buy, 100 * (3.0 / 9 * ratio("buy4") - 6.0 / 9 - t.g.Rules.BuyVigPct.ToDouble()), 1e-9);
  // The default Field pays double on 2 and 12: it keeps 2/36 of a unit.
  EXPECT_NEAR(read("expected value net % field").number, -200.0 / 36, 1e-9);
  for (auto [expression, code] :
       {std::pair{"expected value net % midway", 918}, std::pair{"expected value net % passlineodds", 915},
        std::pair{"expected value net hard6", 300}}) {
    const EvaluationResult r = read(expression);
    EXPECT_FALSE(r.ok) << expression;
    EXPECT_EQ(r.runError, code) << expression;
  }
}

// ---- Function calls, on the same hand with bets on the layout for the numbered forms.

struct FunctionTable : PlayedTable {
  FunctionTable() {
    ChangeBet(g, kAnn, bet::Hop13, 2_usd);
    ChangeBet(g, kAnn, bet::Hard4 + 3, 3_usd);
    ChangeBet(g, kAnn, bet::Big8, 4_usd);
    SetCheckStack(g, kAnn, 5, 7_usd);
    g.CheckStackName[kAnn][3] = "Target";
  }
};

struct Expected {
  const char* expression;
  double number = 0;
  const char* text = nullptr;  // a string result when set
  int runError = 0;
};

std::ostream& operator<<(std::ostream& os, const Expected& e) { return os << e.expression; }
Expected Is(const char* expression, double number) { return {expression, number}; }
Expected Says(const char* expression, const char* text) { return {expression, 0, text}; }
Expected Fails(const char* expression, int runError) { return {expression, 0, nullptr, runError}; }

class FunctionValueTest : public testing::TestWithParam<Expected> {};

TEST_P(FunctionValueTest, GivesItsValueOrFault) {
  const Expected& e = GetParam();
  FunctionTable t;
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
    Calls, FunctionValueTest,
    testing::Values(  // Numeric:
        Is("sqr(16)", 4), Fails("sqr(-4)", 100), Is("int(-2.5)", -3), Is("int(2.7)", 2), Is("abs(-3)", 3),
        Is("asc(\"A\")", 65), Is("asc(\"é\")", 233), Is("asc(\"\")", 0), Is("val(\"12abc\")", 12), Is("val(\"x\")", 0),
        Is("len(\"café\")", 4), Is("round(2.5)", 3), Is("round(-2.5)", -2), Is("round(7, 5)", 5),
        Is("round(7, 5, 3)", 10), Is("round(7, 5, -1)", 5), Is("round(10, 5, 1)", 10), Fails("round(2.5, 0)", 139),
        Fails("round(2.5, -1)", 139), Is("sister(4)", 10), Is("sister(6.5)", 8), Fails("sister(7)", 141),
        Fails("sister(13)", 141), Fails("sister(1)", 141), Is("die(1)", 4), Is("die(2)", 3), Fails("die(3)", 190),
        Is("odds allowed factor(10)", 3), Fails("odds allowed factor(7)", 191), Fails("odds allowed factor(11)", 191),
        Is("instr(1, \"abcabc\", \"c\")", 3), Is("instr(4, \"abcabc\", \"c\")", 6), Is("instr(1, \"abc\", \"x\")", 0),
        Fails("instr(0, \"abc\", \"a\")", 203), Fails("instr(4, \"abc\", \"a\")", 203), Is("player(2)", 2),
        Fails("player(3)", 851), Fails("player(9)", 50), Fails("player(1.5)", 50), Says("player name(2)", "Bob"),
        Says("player name(3)", ""), Fails("player name(0)", 850), Fails("sqr(1 / (cs5 - 7))", 9999),
        // With two degrees of freedom the tail is e^(-x/2); none leaves all of it.
        Is("pvalue(3.5, 2)", 0.17377394345044514), Is("pvalue(3.5, 0)", 1),
        // Lists:
        Is("sum(1, 2, 3)", 6), Is("sum(> 1, 1, 2, 3)", 5), Is("sum(1, > 2, 3, 1)", 4), Is("count(>= 2, 1, 2, 3)", 2),
        Is("count(> 5, 1, 2)", 0), Is("count(= 2, 2, 1, 2)", 2), Is("avg(2, 4)", 3), Is("avg(> 5, 1)", 0),
        Is("stddev(2, 4, 4, 4, 5, 5, 7, 9)", 2), Is("stddev(< 0, 1)", 0), Is("highest(3, 10, 2)", 10),
        Is("lowest(3, 10, 2)", 2), Is("highest(< 10, 3, 10, 2)", 3), Is("highest(> 10, 3)", 0),
        Says("highest$(\"b\", \"abc\", \"a\")", "b"), Says("lowest$(\"b\", \"abc\", \"a\")", "a"),
        Says("highest$(9, 10)", "9"), Is("sum(place bets)", 12), Is("count(> 0, place(4) thru place(10))", 1),
        // Strings:
        Says("left$(\"abcdef\", 2)", "ab"), Says("left$(\"ab\", 5)", "ab"), Fails("left$(\"ab\", -1)", 801),
        Says("right$(\"abcdef\", 2)", "ef"), Fails("right$(\"ab\", -1)", 802),
        Says("removeleft$(\"abcdef\", 2)", "cdef"), Fails("removeleft$(\"ab\", -1)", 803),
        Says("removeright$(\"abcdef\", 2)", "abcd"), Fails("removeright$(\"ab\", -1)", 804),
        Says("mid$(\"abcdef\", 2, 3)", "bcd"), Says("mid$(\"abc\", 5, 1)", ""), Fails("mid$(\"abc\", 0, 1)", 805),
        Fails("mid$(\"abc\", 1, -1)", 805), Says("removemid$(\"abcdef\", 2, 3)", "aef"),
        Fails("removemid$(\"abc\", 0, 1)", 806), Says("insert$(\"abc\", 2, \"XY\")", "aXYbc"),
        Says("insert$(\"abc\", 4, \"d\")", "abcd"), Fails("insert$(\"abc\", 5, \"d\")", 809),
        Is("len(insert$(space$(256), 1, \"x\"))", 256), Says("str$(2.5)", "2.5"), Says("chr$(65)", "A"),
        Says("chr$(233)", "é"), Fails("chr$(256)", 811), Fails("chr$(-1)", 811), Says("space$(3)", "   "),
        Fails("space$(257)", 812), Says("string$(3, \"xyz\")", "xxx"), Says("string$(2, 65)", "AA"),
        Fails("string$(257, \"x\")", 813), Fails("string$(2, 256)", 813), Fails("string$(2, \"\")", 813),
        Says("left$(\"café\", 4)", "café"), Is("len(cr)", 2),
        // Numbered forms:
        Is("place(6)", 12), Is("place(cs5 - 1)", 12), Is("hop(31)", 2), Is("hop(1.3)", 2), Is("hard(10)", 3),
        Is("big(8)", 4), Is("cs(5)", 7), Says("csn(3)", "Target"), Fails("lay(7)", 1), Fails("dontcome(3)", 2),
        Fails("dontcomeodds(11)", 3), Fails("come(2)", 4), Fails("comeodds(12)", 5), Fails("place(7)", 6),
        Fails("buy(4.5)", 7), Fails("big(7)", 8), Fails("hard(5)", 9), Fails("hop(1.7)", 10), Fails("hop(10)", 10),
        Fails("hop(77)", 10), Fails("repeater(7)", 11), Fails("repeater(13)", 11), Fails("cs(100)", 21),
        Fails("cs(2.5)", 21), Fails("csn(0 - 1)", 800),
        // Table counts:
        Is("avg bankroll(2)", 1015.5), Is("avg bankroll(6)", 1016.5), Is("avg bankroll(525)", 1016.5),
        Is("avg bankroll(0)", 1002), Is("avg bankroll(2) player2", 500), Fails("avg bankroll(526)", 22),
        Fails("avg bankroll(0 - 1)", 22), Is("# comeout rolls(7)", 1), Is("# comeout rolls(5)", 0),
        Is("% comeout rolls(4)", 100.0 / 3), Is("# passes(4)", 1), Is("% passes(4)", 100), Is("# misses(6)", 1),
        Is("% misses(6)", 100), Is("% misses(4)", 0), Fails("# passes(cs5 + 6)", 1001), Is("# points(4)", 1),
        Is("# points(6) missed", 1), Is("% points(6) missed", 100), Is("% points(4)", 100.0 / 3),
        Fails("# points(7)", 1002), Is("# rolls(7)", 2), Is("# rolls(1.3)", 1), Is("# rolls(3.1) 36 combo", 0),
        Is("# rolls(1.3) 36 combo last hand", 1), Is("# rolls(2.2) 21 combo", 1), Is("# rolls(3) die1 faces", 2),
        Is("# rolls(3) die2 faces", 3), Is("% rolls(7)", 100.0 / 3), Is("% prob(1.3)", 200.0 / 36), Is("# prob(7)", 1),
        Is("# rolls since last(4)", 2), Fails("# rolls(cs5 + 6)", 1001), Fails("# rolls(cs5 / 10)", 1009),
        Fails("# rolls(cs5) die1 faces", 1010)));

// Input boxes speak for the Bettor and give back what was typed.
TEST(FunctionInputTest, AsksInABoxTitledForTheBettor) {
  FunctionTable t;
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

std::vector<TokenRecord> Buffer(const AutoBetProgram& p) {
  return {p.StatementBuffer.begin() + 1, p.StatementBuffer.begin() + 1 + p.StatementLength};
}

TEST(FunctionTargetTest, NumberedFormBecomesTheTargetGroup) {
  FunctionTable t;
  Load(t.g, {"place(6) player2 = 5"});
  ResolveTargetFunction(t.g, 1);
  EXPECT_EQ(t.g.AutoBet.RunError, 0);
  EXPECT_EQ(Buffer(t.g.AutoBet), (Records{Vt(bet::Place4 + 2), P(2), H(3), X(1), Y(34), kEq, N(5)}));

  Load(t.g, {"csn(42) = \"x\""});
  ResolveTargetFunction(t.g, 1);
  EXPECT_EQ(Buffer(t.g.AutoBet), (Records{Vt(842), P(kAnn), kEq, S(1)}));
}

TEST(FunctionTargetTest, BadNumberFaultsAndLeavesTheStatement) {
  FunctionTable t;
  Load(t.g, {"hop(67) = 5"});
  const std::vector<TokenRecord> before = Buffer(t.g.AutoBet);
  ResolveTargetFunction(t.g, 1);
  EXPECT_EQ(t.g.AutoBet.RunError, 10);
  EXPECT_EQ(Buffer(t.g.AutoBet), before);
}

// The caller deletes what the call consumed: brackets, arguments, the end of a list and
// the pieces of a numbered form.
TEST(FunctionCallTest, ReportsWhatTheCallConsumed) {
  for (auto [line, consumed] : {std::pair{"cs1 = place(6) + 1", 7},
                                {"cs1 = sum(1, 2) + 1", 6},
                                {"cs1 = sqr(4) + 1", 3},
                                {"cs1 = cs(5) player2 + 1", 4},
                                {"cs1 = avg bankroll(2) + 1", 4}}) {
    FunctionTable t;
    Load(t.g, {line});
    // The statement is "cs1 P1 = f ...": the call stands at 4.
    EXPECT_EQ(AssignFunction(t.g, 4), consumed) << line;
    EXPECT_EQ(t.g.AutoBet.RunError, 0) << line;
    EXPECT_TRUE(IsValueRecord(t.g.AutoBet.StatementBuffer[4])) << line;
  }
}

TEST(FunctionCallTest, KeepsAFaultMetInTheArguments) {
  FunctionTable t;
  Load(t.g, {"cs1 = sqr(4)"});
  t.g.AutoBet.RunError = 9999;
  AssignFunction(t.g, 4);
  EXPECT_EQ(t.g.AutoBet.RunError, 9999);
}

// The hops that are not on the hop rows are the one-roll bets on 2, 3, 11 and 12; a
// chi-square with a number is that item's own cell.
TEST(FunctionValueTest, HopsOffTheRowsAndOneChiSquareCell) {
  FunctionTable t;
  for (const auto& [form, bet] : {std::pair{"hop(11)", bet::Two}, std::pair{"hop(2.1)", bet::Three},
                                  std::pair{"hop(65)", bet::Eleven}, std::pair{"hop(6.6)", bet::Twelve}}) {
    t.g.AutoBet.ProgramStrings.clear();
    Load(t.g, {std::string(form) + " = 5"});
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
