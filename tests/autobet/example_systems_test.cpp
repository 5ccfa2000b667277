// The example betting systems play as their comment headers say. Each system sits at
// seat 3, beside an idle player at seat 1 (so that a script naming seat 1 where it means
// its own seat shows), is activated as the table activates a script, and then plays fixed
// dice in Hyper-Drive as dicehall-sim plays it. After chosen rolls the seat's bets,
// checkstacks, working states and bankroll are read from the table's stores.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "app/sim/sim.h"
#include "autobet/actions.h"
#include "autobet/interpreter.h"
#include "autobet/statement_buffer.h"
#include "autobet/variables.h"
#include "engine/game_state.h"
#include "engine/roll_cycle.h"
#include "stats/checkstacks.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

constexpr int kSeat = 3;
constexpr int kPlace5 = bet::Place4 + 1, kPlace6 = bet::Place4 + 2, kPlace8 = bet::Place4 + 3,
              kPlace9 = bet::Place4 + 4;
constexpr int kCome4 = bet::Come4, kCome5 = bet::Come4 + 1, kCome6 = bet::Come4 + 2;
constexpr int kCome4Odds = bet::Come4Odds, kCome5Odds = bet::Come4Odds + 1, kCome6Odds = bet::Come4Odds + 2;

struct Amount {
  int bet;
  double dollars;
};
struct Stack {
  int number;
  double dollars;
};
struct Working {
  int bet;
  int state;  // 0 off, 1 on, 2 called on, -1 called off
};

// One throw of the dice (or none, for the state that activation leaves) and what the
// table holds afterwards.
struct Step {
  Step(const char* promise, int die1, int die2, int times, std::vector<Amount> bets, std::vector<Stack> stacks,
       double bankroll, std::vector<Working> working = {})
      : promise(promise),
        die1(die1),
        die2(die2),
        times(times),
        bets(std::move(bets)),
        stacks(std::move(stacks)),
        bankroll(bankroll),
        working(std::move(working)) {}
  const char* promise;        // what the system's comments say should now be so
  int die1, die2;             // 0 for no roll
  int times;                  // the same dice this many times; the checks follow the last
  std::vector<Amount> bets;   // every bet of the seat: any bet not listed must be empty
  std::vector<Stack> stacks;  // chosen checkstacks
  double bankroll;
  std::vector<Working> working;
};

struct SystemCase {
  SystemCase(const char* name, const char* file, double bankroll, std::vector<Stack> memory, std::vector<Step> steps,
             const char* logFile = nullptr, std::vector<std::string> log = {})
      : name(name),
        file(file),
        bankroll(bankroll),
        memory(std::move(memory)),
        steps(std::move(steps)),
        logFile(logFile),
        log(std::move(log)) {}
  const char* name;
  const char* file;
  double bankroll;
  // Checkstacks set right after activation: the system's memory moved ahead, to reach a
  // state that would otherwise take a long run of dice.
  std::vector<Stack> memory;
  std::vector<Step> steps;
  // A text log the system writes in the program folder, line by line.
  const char* logFile;
  std::vector<std::string> log;
};

// A table in Hyper-Drive with the system seated and activated.
struct SystemTable {
  TestTable t;
  TempDir dir;
  Game& g = t.g;

  explicit SystemTable(const SystemCase& c) {
    g.ProgramFolder = dir.path.string();
    t.Seat(1, "Bob", 1000_usd);
    t.Seat(kSeat, "Ann", Money::FromDouble(c.bankroll));
    // The dice roll for everyone's bets, line bet or not, as the simulator rolls them.
    g.Rules.BetNeededToShoot = 0;
    g.Auto.HyperDrive = true;
    g.SilentMode = true;
    std::vector<std::string> lines;
    EXPECT_TRUE(ReadScriptLines((ExamplesFolder() / c.file).string(), lines)) << c.file;
    g.AutoBet.ScriptSource[kSeat] = lines;
    g.ScriptActive[kSeat] = true;
    g.AutoBet.ScriptsCompiled = false;
  }

  bool Activate() {
    if (!CompileActiveScripts(g)) return false;
    g.AutoBet.InitializingScript = true;
    RunAutoBet(g);
    g.AutoBet.InitializingScript = false;
    return true;
  }

  void Check(const Step& step) const {
    for (int b = 1; b <= kBets; ++b) {
      double expected = 0;
      for (const Amount& a : step.bets)
        if (a.bet == b) expected = a.dollars;
      EXPECT_DOUBLE_EQ(g.BetAmount[kSeat][b].ToDouble(), expected) << BetName(b);
    }
    for (const Stack& s : step.stacks)
      EXPECT_DOUBLE_EQ(g.BetAmount[kSeat][kCheckStackRow + s.number].ToDouble(), s.dollars) << "cs" << s.number;
    EXPECT_DOUBLE_EQ(g.Bankroll[kSessionScope + kSeat].ToDouble(), step.bankroll) << "bankroll";
    for (const Working& w : step.working)
      EXPECT_EQ(g.BetWorking[kSeat][w.bet], w.state) << BetName(w.bet) << " working";
  }

  std::string Faults() const {
    std::string text;
    for (const AutoBetProgram::RunFault& f : g.AutoBet.FirstFaults[kSeat])
      text += " line " + std::to_string(f.line) + ": " + RunErrorText(f.code);
    return text;
  }
};

std::vector<std::string> FileLines(const std::filesystem::path& path) {
  std::vector<std::string> lines;
  ReadScriptLines(path.string(), lines);
  return lines;
}

class ExampleSystemTest : public ::testing::TestWithParam<SystemCase> {};

TEST_P(ExampleSystemTest, PlaysAsItsCommentsSay) {
  const SystemCase& c = GetParam();
  SystemTable table(c);
  ASSERT_TRUE(table.Activate()) << c.file << ": " << table.t.ui.LastText();
  for (const Stack& s : c.memory) SetCheckStack(table.g, kSeat, s.number, Money::FromDouble(s.dollars));
  int rolls = 0;
  for (const Step& step : c.steps) {
    for (int i = 0; step.die1 != 0 && i < step.times; ++i) {
      table.t.Roll(step.die1, step.die2);
      ++rolls;
    }
    SCOPED_TRACE(std::string(c.file) + ", roll " + std::to_string(rolls) + ": " + step.promise);
    table.Check(step);
  }
  EXPECT_EQ(table.g.Stats.RollCount[kSessionScope][0], rolls) << "a roll was refused";
  EXPECT_EQ(table.g.AutoBet.FaultCount[kSeat], 0) << table.Faults();
  if (c.logFile != nullptr) {
    EXPECT_EQ(FileLines(table.dir.path / c.logFile), c.log);
  }
}

const SystemCase kMartingale{
    "MartingaleDoublesAfterALossAndResetsAfterAWin",
    "martingale_passline.bet",
    1000,
    {},
    {
        {"one unit on the come-out", 0, 0, 1, {{bet::PassLine, 5}}, {{1, 5}, {2, 5}, {3, 320}}, 1000},
        {"craps loses: the next wager is doubled", 1, 1, 1, {{bet::PassLine, 10}}, {{2, 10}, {4, 1}}, 995},
        {"a point is no decision", 2, 2, 1, {{bet::PassLine, 10}}, {{2, 10}, {4, 1}}, 995},
        {"a seven out loses: doubled again", 3, 4, 1, {{bet::PassLine, 20}}, {{2, 20}, {4, 2}}, 985},
        {"a natural wins: back to one unit", 5, 6, 1, {{bet::PassLine, 5}}, {{2, 5}, {4, 0}}, 1005},
        {"a loss after the win doubles from one unit", 6, 6, 1, {{bet::PassLine, 10}}, {{2, 10}, {4, 1}}, 1000},
        {"the point", 4, 4, 1, {{bet::PassLine, 10}}, {}, 1000},
        {"the point made wins: one unit", 4, 4, 1, {{bet::PassLine, 5}}, {{2, 5}, {4, 0}}, 1010},
    }};

const SystemCase kMartingaleCeiling{
    "MartingaleStartsOverPastItsCeiling",
    "martingale_passline.bet",
    1000,
    {},
    {
        {"six losses in a row reach the ceiling", 1, 1, 6, {{bet::PassLine, 320}}, {{2, 320}, {4, 6}}, 685},
        {"the seventh would pass it: one unit again", 1, 1, 1, {{bet::PassLine, 5}}, {{2, 5}, {4, 0}}, 365},
    }};

const SystemCase kMartingaleShortOfMoney{
    "MartingaleStartsOverWithTooLittleMoney",
    "martingale_passline.bet",
    30,
    {},
    {
        {"doubled while the bankroll covers it", 1, 1, 1, {{bet::PassLine, 10}}, {{2, 10}}, 25},
        {"$15 left can't cover $20: one unit", 1, 1, 1, {{bet::PassLine, 5}}, {{2, 5}, {4, 0}}, 15},
    }};

const SystemCase kMartingaleInDebt{
    "MartingaleKeepsDoublingOnABankrollBelowZero",
    "martingale_passline.bet",
    -1000,
    {},
    {
        {"a table that allows debt sets no bound", 1, 1, 2, {{bet::PassLine, 20}}, {{2, 20}, {4, 2}}, -1015},
        {"and the doubling goes on", 1, 1, 1, {{bet::PassLine, 40}}, {{2, 40}, {4, 3}}, -1035},
    }};

const SystemCase kFibonacci{
    "FibonacciStepsUpOnALossAndTwoBackOnAWin",
    "fibonacci_field.bet",
    1000,
    {},
    {
        {"the sequence is filled and the first step bet",
         0,
         0,
         1,
         {{bet::Field, 5}},
         {{2, 10}, {10, 1}, {11, 1}, {12, 2}, {13, 3}, {14, 5}, {20, 89}, {29, 6765}},
         1000},
        {"a loss: one step up (1)", 2, 5, 1, {{bet::Field, 5}}, {{2, 11}}, 995},
        {"a loss: one step up (2)", 3, 4, 1, {{bet::Field, 10}}, {{2, 12}}, 990},
        {"a loss: one step up (3)", 1, 6, 1, {{bet::Field, 15}}, {{2, 13}}, 980},
        {"a loss: one step up (5)", 4, 4, 1, {{bet::Field, 25}}, {{2, 14}}, 965},
        {"a win: two steps back (2)", 2, 2, 1, {{bet::Field, 10}}, {{2, 12}}, 990},
        {"a win on 2 pays double: two steps back (1)", 1, 1, 1, {{bet::Field, 5}}, {{2, 10}}, 1010},
        {"a win on the first step stays there", 5, 5, 1, {{bet::Field, 5}}, {{2, 10}}, 1015},
    }};

const SystemCase kFibonacciTop{"FibonacciStartsOverAtTheTopOfItsTable",
                               "fibonacci_field.bet",
                               10000,
                               {{2, 28}},
                               {
                                   {"the last step, 6765 units, as far as the table's maximum goes",
                                    2,
                                    5,
                                    1,
                                    {{bet::Field, 1000}},
                                    {{2, 29}},
                                    9995},
                                   {"a loss at the last step starts over", 2, 5, 1, {{bet::Field, 5}}, {{2, 10}}, 8995},
                               }};

const SystemCase kIronCross{
    "IronCrossCoversEveryTotalButSevenWhileThePointIsOn",
    "iron_cross.bet",
    1000,
    {},
    {
        {"nothing on the come-out", 0, 0, 1, {}, {}, 1000},
        {"the point: Field, Place 5, 6 and 8",
         2,
         2,
         1,
         {{bet::Field, 5}, {kPlace5, 5}, {kPlace6, 6}, {kPlace8, 6}},
         {},
         1000},
        {"5 wins $7 and stays; the Field lost $5 and is renewed",
         2,
         3,
         1,
         {{bet::Field, 5}, {kPlace5, 5}, {kPlace6, 6}, {kPlace8, 6}},
         {},
         1002},
        {"3: the Field wins", 1, 2, 1, {{bet::Field, 5}, {kPlace5, 5}, {kPlace6, 6}, {kPlace8, 6}}, {}, 1007},
        {"6 wins $7, Field renewed", 3, 3, 1, {{bet::Field, 5}, {kPlace5, 5}, {kPlace6, 6}, {kPlace8, 6}}, {}, 1009},
        {"the point made on a Field number: the Field comes down, Place bets stay off",
         2,
         2,
         1,
         {{kPlace5, 5}, {kPlace6, 6}, {kPlace8, 6}},
         {},
         1014,
         {{kPlace5, 0}, {kPlace6, 0}, {kPlace8, 0}}},
        {"a come-out seven touches nothing", 3, 4, 1, {{kPlace5, 5}, {kPlace6, 6}, {kPlace8, 6}}, {}, 1014},
        {"a new point: the Field again, Place bets working",
         4,
         4,
         1,
         {{bet::Field, 5}, {kPlace5, 5}, {kPlace6, 6}, {kPlace8, 6}},
         {},
         1014,
         {{kPlace5, 1}, {kPlace6, 1}, {kPlace8, 1}}},
        {"the seven out ends it all", 3, 4, 1, {}, {}, 992},
    }};

const SystemCase kPlacePress{
    "Place68PressesFromTheThirdHitAndCallsOffAtTheTarget",
    "place_6_8_press.bet",
    1000,
    {},
    {
        {"nothing on the come-out", 0, 0, 1, {}, {}, 1000},
        {"the point: 6 and 8 placed", 2, 2, 1, {{kPlace6, 6}, {kPlace8, 6}}, {{3, 0}}, 1000},
        {"first hit collected", 3, 3, 1, {{kPlace6, 6}, {kPlace8, 6}}, {{3, 1}}, 1007},
        {"second hit collected", 4, 4, 1, {{kPlace6, 6}, {kPlace8, 6}}, {{3, 2}}, 1014},
        {"third hit: the 6 pressed one unit", 3, 3, 1, {{kPlace6, 12}, {kPlace8, 6}}, {{3, 3}}, 1021},
        {"fourth hit: the 8 pressed",
         4,
         4,
         1,
         {{kPlace6, 12}, {kPlace8, 12}},
         {{3, 4}},
         1028,
         {{kPlace6, 1}, {kPlace8, 1}}},
        {"the hand nets $42: pressed, then both called off",
         3,
         3,
         1,
         {{kPlace6, 18}, {kPlace8, 12}},
         {{3, 5}},
         1042,
         {{kPlace6, -1}, {kPlace8, -1}}},
        {"off: a 6 pays nothing", 3, 3, 1, {{kPlace6, 18}, {kPlace8, 12}}, {{3, 5}}, 1042},
        {"the point made", 2, 2, 1, {{kPlace6, 18}, {kPlace8, 12}}, {}, 1042},
        {"still off for the rest of the hand",
         5,
         5,
         1,
         {{kPlace6, 18}, {kPlace8, 12}},
         {},
         1042,
         {{kPlace6, -1}, {kPlace8, -1}}},
        {"the seven out takes them down unharmed", 3, 4, 1, {}, {}, 1042},
        {"a new hand starts afresh",
         3,
         3,
         1,
         {{kPlace6, 6}, {kPlace8, 6}},
         {{3, 0}},
         1042,
         {{kPlace6, 1}, {kPlace8, 1}}},
    }};

const SystemCase kPlacePressLimit{
    "Place68PressesNoFurtherThanItsLimit",
    "place_6_8_press.bet",
    1000,
    {{4, 1000}},  // a target out of reach
    {
        {"the point", 2, 2, 1, {{kPlace6, 6}, {kPlace8, 6}}, {}, 1000},
        {"two hits collected, four pressed: $30", 3, 3, 6, {{kPlace6, 30}, {kPlace8, 6}}, {{3, 6}}, 1084},
        {"the limit holds", 3, 3, 1, {{kPlace6, 30}, {kPlace8, 6}}, {{3, 7}}, 1119},
    }};

const SystemCase kMolly{
    "ThreePointMollyKeepsThreeNumbersWithDoubleOdds",
    "three_point_molly.bet",
    1000,
    {},
    {
        {"the Pass Line on the come-out", 0, 0, 1, {{bet::PassLine, 10}}, {}, 1000},
        {"the point: double odds and a Come bet",
         3,
         3,
         1,
         {{bet::PassLine, 10}, {bet::PassLineOdds, 20}, {bet::Come, 10}},
         {},
         1000},
        {"the Come bet travels to 4 and gets its odds; another Come bet",
         2,
         2,
         1,
         {{bet::PassLine, 10}, {bet::PassLineOdds, 20}, {kCome4, 10}, {kCome4Odds, 20}, {bet::Come, 10}},
         {},
         1000},
        {"to 5 with odds: three numbers, no new Come bet",
         1,
         4,
         1,
         {{bet::PassLine, 10}, {bet::PassLineOdds, 20}, {kCome4, 10}, {kCome4Odds, 20}, {kCome5, 10}, {kCome5Odds, 20}},
         {},
         1000},
        {"no decision, nothing new",
         5,
         5,
         1,
         {{bet::PassLine, 10}, {bet::PassLineOdds, 20}, {kCome4, 10}, {kCome4Odds, 20}, {kCome5, 10}, {kCome5Odds, 20}},
         {},
         1000},
        {"the 4 wins $10 and $40: a Come bet replaces it",
         2,
         2,
         1,
         {{bet::PassLine, 10}, {bet::PassLineOdds, 20}, {kCome5, 10}, {kCome5Odds, 20}, {bet::Come, 10}},
         {},
         1050},
        {"the point made: the Come bet goes to 6 with its odds at once, off for the come-out",
         3,
         3,
         1,
         {{bet::PassLine, 10}, {kCome5, 10}, {kCome5Odds, 20}, {kCome6, 10}, {kCome6Odds, 20}},
         {},
         1084,
         {{kCome5Odds, 0}, {kCome6Odds, 0}}},
        {"a come-out seven: the line wins, the Come bets lose, their odds come back",
         3,
         4,
         1,
         {{bet::PassLine, 10}},
         {},
         1074},
    }};

const SystemCase kDontPass{
    "DontPassLaysOddsToWinAFlatUnitAndRestsAfterThreeLosses",
    "dont_pass_lay_odds.bet",
    1000,
    {},
    {
        {"the Don't Pass on the come-out", 0, 0, 1, {{bet::DontPass, 10}}, {}, 1000},
        {"against 4: twice the flat bet", 2, 2, 1, {{bet::DontPass, 10}, {bet::DontPassOdds, 20}}, {}, 1000},
        {"the seven out wins $10 and $10", 2, 5, 1, {{bet::DontPass, 10}}, {{3, 0}}, 1020},
        {"against 5: one and a half times", 2, 3, 1, {{bet::DontPass, 10}, {bet::DontPassOdds, 15}}, {}, 1020},
        {"the 5 made: a first loss", 2, 3, 1, {{bet::DontPass, 10}}, {{3, 1}, {4, 0}}, 995},
        {"against 6: six fifths", 3, 3, 1, {{bet::DontPass, 10}, {bet::DontPassOdds, 12}}, {}, 995},
        {"the 6 made: a second loss", 3, 3, 1, {{bet::DontPass, 10}}, {{3, 2}, {4, 0}}, 973},
        {"12 on the come-out stands", 6, 6, 1, {{bet::DontPass, 10}}, {{3, 2}, {4, 0}}, 973},
        {"a come-out seven: the third loss, the system rests", 3, 4, 1, {{bet::DontPass, 10}}, {{3, 3}, {4, 1}}, 963},
        {"resting: no odds", 4, 4, 1, {{bet::DontPass, 10}}, {{4, 1}}, 963},
        {"the 8 made: still resting", 4, 4, 1, {{bet::DontPass, 10}}, {{3, 4}, {4, 1}}, 953},
        {"no odds against 10 either", 5, 5, 1, {{bet::DontPass, 10}}, {{4, 1}}, 953},
        {"the seven out ends the shooter's hand and the rest", 3, 4, 1, {{bet::DontPass, 10}}, {{3, 0}, {4, 0}}, 963},
        {"odds again", 2, 2, 1, {{bet::DontPass, 10}, {bet::DontPassOdds, 20}}, {}, 963},
    }};

const SystemCase kHardways{
    "HardwayHunterBuysTheOutsideBetsOverdueHardwaysAndLogsHands",
    "hardway_hunter.bet",
    1000,
    {},
    {
        {"nothing on the come-out", 0, 0, 1, {}, {{1, 1}, {2, 36}, {3, 25}}, 1000},
        {"a point: 4 and 10 bought", 4, 4, 1, {{bet::Buy4, 25}, {bet::Buy10, 25}}, {}, 1000},
        {"36 rolls without a hard 8 are not yet overdue",
         2,
         3,
         36,
         {{bet::Buy4, 25}, {bet::Buy10, 25}, {bet::Hard6, 1}},
         {},
         1000},
        {"37 are", 2, 3, 1, {{bet::Buy4, 25}, {bet::Buy10, 25}, {bet::Hard6, 1}, {bet::Hard8, 1}}, {}, 1000},
        {"the hard 6 wins 9 and is no longer overdue",
         3,
         3,
         1,
         {{bet::Buy4, 25}, {bet::Buy10, 25}, {bet::Hard8, 1}},
         {},
         1009},
        {"a won buy bet is bought again", 2, 2, 1, {{bet::Buy4, 25}, {bet::Buy10, 25}, {bet::Hard8, 1}}, {}, 1058},
        {"the point made the easy way: the buy bets come down", 2, 6, 1, {}, {}, 1057},
        {"a new point: bought again; the hard 8 is still overdue",
         3,
         3,
         1,
         {{bet::Buy4, 25}, {bet::Buy10, 25}, {bet::Hard8, 1}},
         {},
         1057},
        {"the seven out: one hand logged", 3, 4, 1, {}, {{4, 1}}, 1004},
        {"a second hand", 5, 5, 1, {{bet::Buy4, 25}, {bet::Buy10, 25}}, {}, 1004},
        {"the 10 made wins; the buy bets come down", 5, 5, 1, {}, {}, 1053},
        {"a new point: bought, and the hard 8 still overdue",
         3,
         3,
         1,
         {{bet::Buy4, 25}, {bet::Buy10, 25}, {bet::Hard8, 1}},
         {},
         1053},
        {"the seven out: a second hand logged", 1, 6, 1, {}, {{4, 2}}, 1000},
    },
    "hardway_hunter.txt",
    // 1 seven in 43 rolls, rounded to a tenth, reads as 2.3 whatever binary value the
    // rounding leaves behind.
    {"Hand log of Ann from 1/1/2000 12:00:00 AM", "Hand 1\tnet 4\tsevens 2.3%",
     "Hand 2\tnet -4\tsevens 4.3%  (losing hand)"}};

const SystemCase kInside{
    "InsideRegressionCutsAfterTheFirstHitAndPressesFromTheThird",
    "inside_regression.bet",
    1000,
    {},
    {
        {"nothing on the come-out", 0, 0, 1, {}, {}, 1000},
        {"the point: the inside at double units",
         2,
         2,
         1,
         {{kPlace5, 12}, {kPlace6, 12}, {kPlace8, 12}, {kPlace9, 12}},
         {},
         1000},
        {"first hit: all cut in half, in whole units",
         3,
         3,
         1,
         {{kPlace5, 5}, {kPlace6, 6}, {kPlace8, 6}, {kPlace9, 5}},
         {{2, 1}},
         1014},
        {"second hit collected", 4, 4, 1, {{kPlace5, 5}, {kPlace6, 6}, {kPlace8, 6}, {kPlace9, 5}}, {{2, 2}}, 1021},
        {"third hit on the 9: pressed, and the larger bet moved to the 8",
         4,
         5,
         1,
         {{kPlace5, 5}, {kPlace6, 6}, {kPlace8, 12}, {kPlace9, 5}},
         {{2, 3}},
         1028},
        {"the 6 pressed half again, up to whole units",
         3,
         3,
         1,
         {{kPlace5, 5}, {kPlace6, 12}, {kPlace8, 12}, {kPlace9, 5}},
         {{2, 4}},
         1035},
        {"the 5 pressed, not past the 6",
         2,
         3,
         1,
         {{kPlace5, 10}, {kPlace6, 12}, {kPlace8, 12}, {kPlace9, 5}},
         {{2, 5}},
         1042},
        {"the point made after a long hand: the 6 and 8 work on the come-out",
         2,
         2,
         1,
         {{kPlace5, 10}, {kPlace6, 12}, {kPlace8, 12}, {kPlace9, 5}},
         {{2, 5}, {3, 1}},
         1042,
         {{kPlace5, 0}, {kPlace6, 1}, {kPlace8, 1}, {kPlace9, 0}}},
        {"an 8 on the come-out wins and is pressed",
         4,
         4,
         1,
         {{kPlace5, 10}, {kPlace6, 12}, {kPlace8, 18}, {kPlace9, 5}},
         {{2, 6}},
         1056},
        {"everything lost at the seven out", 3, 4, 1, {}, {{2, 0}}, 1011},
        {"a new hand", 2, 2, 1, {{kPlace5, 12}, {kPlace6, 12}, {kPlace8, 12}, {kPlace9, 12}}, {}, 1011},
        {"a short hand: the 6 and 8 are off on the come-out again; a second point of 4",
         2,
         2,
         1,
         {{kPlace5, 12}, {kPlace6, 12}, {kPlace8, 12}, {kPlace9, 12}},
         {{2, 0}, {3, 2}},
         1011,
         {{kPlace5, 0}, {kPlace6, 0}, {kPlace8, 0}, {kPlace9, 0}}},
        {"two points of 4 or 10 made: the 4 and 10 are placed and bought",
         3,
         3,
         1,
         {{kPlace5, 12}, {kPlace6, 12}, {kPlace8, 12}, {kPlace9, 12}, {bet::Buy4, 25}, {bet::Buy10, 25}},
         {},
         1011},
        {"the bought 4 wins and stays as it was",
         1,
         3,
         1,
         {{kPlace5, 12}, {kPlace6, 12}, {kPlace8, 12}, {kPlace9, 12}, {bet::Buy4, 25}, {bet::Buy10, 25}},
         {},
         1060},
        {"and again, without growing",
         1,
         3,
         1,
         {{kPlace5, 12}, {kPlace6, 12}, {kPlace8, 12}, {kPlace9, 12}, {bet::Buy4, 25}, {bet::Buy10, 25}},
         {},
         1109},
        {"everything lost at the seven out", 3, 4, 1, {}, {}, 1009},
    }};

INSTANTIATE_TEST_SUITE_P(Examples, ExampleSystemTest,
                         ::testing::Values(kMartingale, kMartingaleCeiling, kMartingaleShortOfMoney, kMartingaleInDebt,
                                           kFibonacci, kFibonacciTop, kIronCross, kPlacePress, kPlacePressLimit, kMolly,
                                           kDontPass, kHardways, kInside),
                         [](const ::testing::TestParamInfo<SystemCase>& info) { return std::string(info.param.name); });

// Every system in the folder is played above.
TEST(ExampleSystems, EveryExampleIsPlayed) {
  std::vector<std::string> played;
  for (const SystemCase& c : {kMartingale, kFibonacci, kIronCross, kPlacePress, kMolly, kDontPass, kHardways, kInside})
    played.push_back(c.file);
  for (const auto& entry : std::filesystem::directory_iterator(ExamplesFolder())) {
    if (entry.path().extension() != ".bet") continue;
    const std::string file = entry.path().filename().string();
    EXPECT_NE(std::find(played.begin(), played.end(), file), played.end()) << file << " has no test of its play";
  }
}

}  // namespace
