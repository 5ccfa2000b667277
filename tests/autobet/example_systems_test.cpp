// The example betting systems play as their comment headers say. Each system sits at
// seat 3, beside an idle player at seat 1 (so that a script naming seat 1 where it means
// its own seat shows), is activated as the table activates a script, and then plays fixed
// dice in Hyper-Drive as dicehall-sim plays it. After chosen rolls the seat's bets,
// checkstacks, working states and bankroll are read from the table's stores.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "app/sim/sim.h"
#include "autobet/interpreter.h"
#include "autobet/variables.h"
#include "engine/game_state.h"
#include "engine/roll_cycle.h"
#include "stats/checkstacks.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

constexpr int kSeat = 3;

// One throw of the dice (or none, for the state that activation leaves) and what the
// table holds afterwards.
struct Step {
  const char* promise;  // what the system's comments say should now be so
  int dice;             // die1 * 10 + die2, 0 for no roll
  std::string bets;     // every bet of the seat, "Field $5, Place 6 $6": any bet not listed must be empty
  const char* stacks;   // chosen checkstacks, "2=10 4=1"
  double bankroll;
  const char* working = "";  // working states, "Place 6 -1": 0 off, 1 on, 2 called on, -1 called off
  int times = 1;             // the same dice this many times; the checks follow the last
};

struct SystemCase {
  const char* name;
  const char* file;
  double bankroll;
  // Checkstacks set right after activation: the system's memory moved ahead, to reach a
  // state that would otherwise take a long run of dice.
  const char* memory;
  std::vector<Step> steps;
  // A text log the system writes in the program folder, line by line.
  const char* logFile = nullptr;
  std::vector<std::string> log = {};
};

// "Name $5, ..." or "Name 1, ..." as bets and the number after each name.
std::vector<std::pair<int, double>> Named(const std::string& text) {
  std::vector<std::pair<int, double>> out;
  std::stringstream ss(text);
  for (std::string item; std::getline(ss, item, ',');) {
    const size_t cut = item.rfind(' ');
    const size_t first = item.find_first_not_of(' ');
    const int bet = FindBetByName(item.substr(first, cut - first));
    EXPECT_NE(bet, 0) << item;
    out.push_back({bet, std::stod(item.substr(item[cut + 1] == '$' ? cut + 2 : cut + 1))});
  }
  return out;
}

// "2=10 4=1" as checkstack numbers and amounts.
std::vector<std::pair<int, double>> Stacks(const std::string& text) {
  std::vector<std::pair<int, double>> out;
  std::stringstream ss(text);
  for (std::string item; ss >> item;) out.push_back({std::stoi(item), std::stod(item.substr(item.find('=') + 1))});
  return out;
}

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
    const auto bets = Named(step.bets);
    for (int b = 1; b <= kBets; ++b) {
      double expected = 0;
      for (const auto& [bet, dollars] : bets)
        if (bet == b) expected = dollars;
      EXPECT_DOUBLE_EQ(g.BetAmount[kSeat][b].ToDouble(), expected) << BetName(b);
    }
    for (const auto& [n, dollars] : Stacks(step.stacks))
      EXPECT_DOUBLE_EQ(g.BetAmount[kSeat][kCheckStackRow + n].ToDouble(), dollars) << "cs" << n;
    EXPECT_DOUBLE_EQ(g.Bankroll[kSessionScope + kSeat].ToDouble(), step.bankroll) << "bankroll";
    for (const auto& [bet, state] : Named(step.working))
      EXPECT_EQ(g.BetWorking[kSeat][bet], state) << BetName(bet) << " working";
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
  for (const auto& [n, dollars] : Stacks(c.memory)) SetCheckStack(table.g, kSeat, n, Money::FromDouble(dollars));
  int rolls = 0;
  for (const Step& step : c.steps) {
    for (int i = 0; step.dice != 0 && i < step.times; ++i) {
      table.t.Roll(step.dice / 10, step.dice % 10);
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

// Bets that stand together through several steps of a system.
const std::string kAcross = "Place 5 $5, Place 6 $6, Place 8 $6", kFieldAcross = "Field $5, " + kAcross;
const std::string kInside12 = "Place 5 $12, Place 6 $12, Place 8 $12, Place 9 $12", kBuy410 = "Buy 4 $25, Buy 10 $25";
const std::string kLineWithOdds = "Pass Line $10, Pass Line Odds $20", kCome4 = "Come 4 $10, Come 4 Odds $20",
                  kCome5 = "Come 5 $10, Come 5 Odds $20";

const SystemCase kMartingale("MartingaleDoublesAfterALossAndResetsAfterAWin", "martingale_passline.bet", 1000, "",
                             {{"one unit on the come-out", 0, "Pass Line $5", "1=5 2=5 3=320", 1000},
                              {"craps loses: the next wager is doubled", 11, "Pass Line $10", "2=10 4=1", 995},
                              {"a point is no decision", 22, "Pass Line $10", "2=10 4=1", 995},
                              {"a seven out loses: doubled again", 34, "Pass Line $20", "2=20 4=2", 985},
                              {"a natural wins: back to one unit", 56, "Pass Line $5", "2=5 4=0", 1005},
                              {"a loss after the win doubles from one unit", 66, "Pass Line $10", "2=10 4=1", 1000},
                              {"the point", 44, "Pass Line $10", "", 1000},
                              {"the point made wins: one unit", 44, "Pass Line $5", "2=5 4=0", 1010}});

const SystemCase kMartingaleCeiling(
    "MartingaleStartsOverPastItsCeiling", "martingale_passline.bet", 1000, "",
    {{"six losses in a row reach the ceiling", 11, "Pass Line $320", "2=320 4=6", 685, "", 6},
     {"the seventh would pass it: one unit again", 11, "Pass Line $5", "2=5 4=0", 365}});

const SystemCase kMartingaleShortOfMoney("MartingaleStartsOverWithTooLittleMoney", "martingale_passline.bet", 30, "",
                                         {{"doubled while the bankroll covers it", 11, "Pass Line $10", "2=10", 25},
                                          {"$15 left can't cover $20: one unit", 11, "Pass Line $5", "2=5 4=0", 15}});

const SystemCase kMartingaleInDebt("MartingaleKeepsDoublingOnABankrollBelowZero", "martingale_passline.bet", -1000, "",
                                   {{"a table that allows debt sets no bound", 11, "Pass Line $20", "2=20 4=2", -1015,
                                     "", 2},
                                    {"and the doubling goes on", 11, "Pass Line $40", "2=40 4=3", -1035}});

const SystemCase kFibonacci("FibonacciStepsUpOnALossAndTwoBackOnAWin", "fibonacci_field.bet", 1000, "",
                            {{"the sequence is filled and the first step bet", 0, "Field $5",
                              "2=10 10=1 11=1 12=2 13=3 14=5 20=89 29=6765", 1000},
                             {"a loss: one step up (1)", 25, "Field $5", "2=11", 995},
                             {"a loss: one step up (2)", 34, "Field $10", "2=12", 990},
                             {"a loss: one step up (3)", 16, "Field $15", "2=13", 980},
                             {"a loss: one step up (5)", 44, "Field $25", "2=14", 965},
                             {"a win: two steps back (2)", 22, "Field $10", "2=12", 990},
                             {"a win on 2 pays double: two steps back (1)", 11, "Field $5", "2=10", 1010},
                             {"a win on the first step stays there", 55, "Field $5", "2=10", 1015}});

const SystemCase kFibonacciTop("FibonacciStartsOverAtTheTopOfItsTable", "fibonacci_field.bet", 10000, "2=28",
                               {{"the last step, 6765 units, as far as the table's maximum goes", 25, "Field $1000",
                                 "2=29", 9995},
                                {"a loss at the last step starts over", 25, "Field $5", "2=10", 8995}});

const SystemCase kIronCross("IronCrossCoversEveryTotalButSevenWhileThePointIsOn", "iron_cross.bet", 1000, "",
                            {{"nothing on the come-out", 0, "", "", 1000},
                             {"the point: Field, Place 5, 6 and 8", 22, kFieldAcross, "", 1000},
                             {"5 wins $7 and stays; the Field lost $5 and is renewed", 23, kFieldAcross, "", 1002},
                             {"3: the Field wins", 12, kFieldAcross, "", 1007},
                             {"6 wins $7, Field renewed", 33, kFieldAcross, "", 1009},
                             {"the point made on a Field number: the Field comes down, Place bets stay off", 22,
                              kAcross, "", 1014, "Place 5 0, Place 6 0, Place 8 0"},
                             {"a come-out seven touches nothing", 34, kAcross, "", 1014},
                             {"a new point: the Field again, Place bets working", 44, kFieldAcross, "", 1014,
                              "Place 5 1, Place 6 1, Place 8 1"},
                             {"the seven out ends it all", 34, "", "", 992}});

const SystemCase kPlacePress(
    "Place68PressesFromTheThirdHitAndCallsOffAtTheTarget", "place_6_8_press.bet", 1000, "",
    {{"nothing on the come-out", 0, "", "", 1000},
     {"the point: 6 and 8 placed", 22, "Place 6 $6, Place 8 $6", "3=0", 1000},
     {"first hit collected", 33, "Place 6 $6, Place 8 $6", "3=1", 1007},
     {"second hit collected", 44, "Place 6 $6, Place 8 $6", "3=2", 1014},
     {"third hit: the 6 pressed one unit", 33, "Place 6 $12, Place 8 $6", "3=3", 1021},
     {"fourth hit: the 8 pressed", 44, "Place 6 $12, Place 8 $12", "3=4", 1028, "Place 6 1, Place 8 1"},
     {"the hand nets $42: pressed, then both called off", 33, "Place 6 $18, Place 8 $12", "3=5", 1042,
      "Place 6 -1, Place 8 -1"},
     {"off: a 6 pays nothing", 33, "Place 6 $18, Place 8 $12", "3=5", 1042},
     {"the point made", 22, "Place 6 $18, Place 8 $12", "", 1042},
     {"still off for the rest of the hand", 55, "Place 6 $18, Place 8 $12", "", 1042, "Place 6 -1, Place 8 -1"},
     {"the seven out takes them down unharmed", 34, "", "", 1042},
     {"a new hand starts afresh", 33, "Place 6 $6, Place 8 $6", "3=0", 1042, "Place 6 1, Place 8 1"}});

const SystemCase kPlacePressLimit("Place68PressesNoFurtherThanItsLimit", "place_6_8_press.bet", 1000, "4=1000",
                                  {{"the point", 22, "Place 6 $6, Place 8 $6", "", 1000},
                                   {"two hits collected, four pressed: $30", 33, "Place 6 $30, Place 8 $6", "3=6", 1084,
                                    "", 6},
                                   {"the limit holds", 33, "Place 6 $30, Place 8 $6", "3=7", 1119}});

const SystemCase kMolly(
    "ThreePointMollyKeepsThreeNumbersWithDoubleOdds", "three_point_molly.bet", 1000, "",
    {{"the Pass Line on the come-out", 0, "Pass Line $10", "", 1000},
     {"the point: double odds and a Come bet", 33, "Pass Line $10, Pass Line Odds $20, Come $10", "", 1000},
     {"the Come bet travels to 4 and gets its odds; another Come bet", 22, kLineWithOdds + ", " + kCome4 + ", Come $10",
      "", 1000},
     {"to 5 with odds: three numbers, no new Come bet", 14, kLineWithOdds + ", " + kCome4 + ", " + kCome5, "", 1000},
     {"no decision, nothing new", 55, kLineWithOdds + ", " + kCome4 + ", " + kCome5, "", 1000},
     {"the 4 wins $10 and $40: a Come bet replaces it", 22, kLineWithOdds + ", " + kCome5 + ", Come $10", "", 1050},
     {"the point made: the Come bet goes to 6 with its odds at once, off for the come-out", 33,
      "Pass Line $10, " + kCome5 + ", Come 6 $10, Come 6 Odds $20", "", 1084, "Come 5 Odds 0, Come 6 Odds 0"},
     {"a come-out seven: the line wins, the Come bets lose, their odds come back", 34, "Pass Line $10", "", 1074}});

const SystemCase kDontPass(
    "DontPassLaysOddsToWinAFlatUnitAndRestsAfterThreeLosses", "dont_pass_lay_odds.bet", 1000, "",
    {{"the Don't Pass on the come-out", 0, "Don't Pass $10", "", 1000},
     {"against 4: twice the flat bet", 22, "Don't Pass $10, Don't Pass Odds $20", "", 1000},
     {"the seven out wins $10 and $10", 25, "Don't Pass $10", "3=0", 1020},
     {"against 5: one and a half times", 23, "Don't Pass $10, Don't Pass Odds $15", "", 1020},
     {"the 5 made: a first loss", 23, "Don't Pass $10", "3=1 4=0", 995},
     {"against 6: six fifths", 33, "Don't Pass $10, Don't Pass Odds $12", "", 995},
     {"the 6 made: a second loss", 33, "Don't Pass $10", "3=2 4=0", 973},
     {"12 on the come-out stands", 66, "Don't Pass $10", "3=2 4=0", 973},
     {"a come-out seven: the third loss, the system rests", 34, "Don't Pass $10", "3=3 4=1", 963},
     {"resting: no odds", 44, "Don't Pass $10", "4=1", 963},
     {"the 8 made: still resting", 44, "Don't Pass $10", "3=4 4=1", 953},
     {"no odds against 10 either", 55, "Don't Pass $10", "4=1", 953},
     {"the seven out ends the shooter's hand and the rest", 34, "Don't Pass $10", "3=0 4=0", 963},
     {"odds again", 22, "Don't Pass $10, Don't Pass Odds $20", "", 963}});

const SystemCase kHardways(
    "HardwayHunterBuysTheOutsideBetsOverdueHardwaysAndLogsHands", "hardway_hunter.bet", 1000, "",
    {{"nothing on the come-out", 0, "", "1=1 2=36 3=25", 1000},
     {"a point: 4 and 10 bought", 44, kBuy410, "", 1000},
     {"36 rolls without a hard 8 are not yet overdue", 23, kBuy410 + ", Hard 6 $1", "", 1000, "", 36},
     {"37 are", 23, kBuy410 + ", Hard 6 $1, Hard 8 $1", "", 1000},
     {"the hard 6 wins 9 and is no longer overdue", 33, kBuy410 + ", Hard 8 $1", "", 1009},
     {"a won buy bet is bought again", 22, kBuy410 + ", Hard 8 $1", "", 1058},
     {"the point made the easy way: the buy bets come down", 26, "", "", 1057},
     {"a new point: bought again; the hard 8 is still overdue", 33, kBuy410 + ", Hard 8 $1", "", 1057},
     {"the seven out: one hand logged", 34, "", "4=1", 1004},
     {"a second hand", 55, kBuy410, "", 1004},
     {"the 10 made wins; the buy bets come down", 55, "", "", 1053},
     {"a new point: bought, and the hard 8 still overdue", 33, kBuy410 + ", Hard 8 $1", "", 1053},
     {"the seven out: a second hand logged", 16, "", "4=2", 1000}},
    "hardway_hunter.txt",
    // 1 seven in 43 rolls, rounded to a tenth, reads as 2.3 whatever binary value the
    // rounding leaves behind.
    {"Hand log of Ann from 1/1/2000 12:00:00 AM", "Hand 1\tnet 4\tsevens 2.3%",
     "Hand 2\tnet -4\tsevens 4.3%  (losing hand)"});

const SystemCase kInside(
    "InsideRegressionCutsAfterTheFirstHitAndPressesFromTheThird", "inside_regression.bet", 1000, "",
    {{"nothing on the come-out", 0, "", "", 1000},
     {"the point: the inside at double units", 22, kInside12, "", 1000},
     {"first hit: all cut in half, in whole units", 33, "Place 5 $5, Place 6 $6, Place 8 $6, Place 9 $5", "2=1", 1014},
     {"second hit collected", 44, "Place 5 $5, Place 6 $6, Place 8 $6, Place 9 $5", "2=2", 1021},
     {"third hit on the 9: pressed, and the larger bet moved to the 8", 45,
      "Place 5 $5, Place 6 $6, Place 8 $12, Place 9 $5", "2=3", 1028},
     {"the 6 pressed half again, up to whole units", 33, "Place 5 $5, Place 6 $12, Place 8 $12, Place 9 $5", "2=4",
      1035},
     {"the 5 pressed, not past the 6", 23, "Place 5 $10, Place 6 $12, Place 8 $12, Place 9 $5", "2=5", 1042},
     {"the point made after a long hand: the 6 and 8 work on the come-out", 22,
      "Place 5 $10, Place 6 $12, Place 8 $12, Place 9 $5", "2=5 3=1", 1042,
      "Place 5 0, Place 6 1, Place 8 1, Place 9 0"},
     {"an 8 on the come-out wins and is pressed", 44, "Place 5 $10, Place 6 $12, Place 8 $18, Place 9 $5", "2=6", 1056},
     {"everything lost at the seven out", 34, "", "2=0", 1011},
     {"a new hand", 22, kInside12, "", 1011},
     {"a short hand: the 6 and 8 are off on the come-out again; a second point of 4", 22, kInside12, "2=0 3=2", 1011,
      "Place 5 0, Place 6 0, Place 8 0, Place 9 0"},
     {"two points of 4 or 10 made: the 4 and 10 are placed and bought", 33, kInside12 + ", " + kBuy410, "", 1011},
     {"the bought 4 wins and stays as it was", 13, kInside12 + ", " + kBuy410, "", 1060},
     {"and again, without growing", 13, kInside12 + ", " + kBuy410, "", 1109},
     {"everything lost at the seven out", 34, "", "", 1009}});

INSTANTIATE_TEST_SUITE_P(Examples, ExampleSystemTest,
                         ::testing::Values(kMartingale, kMartingaleCeiling, kMartingaleShortOfMoney, kMartingaleInDebt,
                                           kFibonacci, kFibonacciTop, kIronCross, kPlacePress, kPlacePressLimit, kMolly,
                                           kDontPass, kHardways, kInside),
                         [](const ::testing::TestParamInfo<SystemCase>& info) { return std::string(info.param.name); });

// The folder holds at least six systems, each opening with a comment that says what it
// does, and every one is played above.
TEST(ExampleSystems, EveryExampleIsPlayed) {
  std::vector<std::string> played;
  for (const SystemCase& c : {kMartingale, kFibonacci, kIronCross, kPlacePress, kMolly, kDontPass, kHardways, kInside})
    played.push_back(c.file);
  int examples = 0;
  for (const auto& entry : std::filesystem::directory_iterator(ExamplesFolder())) {
    if (entry.path().extension() != ".bet") continue;
    ++examples;
    const std::string file = entry.path().filename().string();
    EXPECT_NE(std::find(played.begin(), played.end(), file), played.end()) << file << " has no test of its play";
    const std::vector<std::string> lines = FileLines(entry.path());
    EXPECT_TRUE(!lines.empty() && lines.front().rfind('\'', 0) == 0) << file << " has no comment header";
  }
  EXPECT_GE(examples, 6);
}

}  // namespace
