// The headless program as a user runs it: options, exit codes, the summary and its
// reproducibility.

#include "app/sim/sim.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/app/sim_args.h"
#include "tests/test_support.h"

namespace {

long long Field(const std::string& text, const std::string& label) {
  std::smatch m;
  return std::regex_search(text, m, std::regex(label + R"(:\s+(-?\d+))")) ? std::stoll(m[1]) : -1;
}

struct Refusal {
  std::string args;  // DIR: a folder of the test's own
  const char* says;
  int code = 2;
};

std::ostream& operator<<(std::ostream& os, const Refusal& r) { return os << r.says; }

class SimRefuses : public testing::TestWithParam<Refusal> {};

// Options that can't make a run, and a run that can't start, are told before anything is
// written.
TEST_P(SimRefuses, WithAClearMessageAndNothingWritten) {
  TempDir dir;
  WriteText(dir.path / "bad.rol", std::string("\x2c\x00\x2c", 3));  // roll 2 has no dice
  WriteText(dir.path / "junk.prb", "not a probability file");
  WriteText(dir.path / "file", "");
  WriteText(dir.path / "colour.json", R"({"MidwayPayoff": {"1": {"PayoffPay": 2, "Colour": 1}}})");
  WriteText(dir.path / "negative.json", R"({"BetPayoff": {"Seven": {"PayoffPay": -1}}})");
  WriteText(dir.path / "bad.json", "{ not json");
  WriteText(dir.path / "broken.bet", "If passline > 0 Then\n  Bet 5 on field\n");
  std::vector<std::string> args;
  for (std::string a : Args(GetParam().args))
    args.push_back(std::regex_replace(a, std::regex("DIR"), dir.path.string()));
  const std::filesystem::path data = dir.path / "data";
  const SimRun r = Sim(args, data.string());
  EXPECT_EQ(r.code, GetParam().code);
  EXPECT_NE(r.err.find(GetParam().says), std::string::npos) << r.err;
  EXPECT_TRUE(r.out.empty());
  EXPECT_FALSE(std::filesystem::exists(data));
}

INSTANTIATE_TEST_SUITE_P(
    Options, SimRefuses,
    testing::Values(
        Refusal{"--player Ann --bet 'Pass Lane=10'", "there is no bet named \"Pass Lane\""},
        Refusal{"--player Ann --bet 'Pass Line=ten'", "is not an amount of money"},
        Refusal{"--player Ann --bet 'Pass Line=0'", "must be above 0"},
        Refusal{"--player Ann --bet 'Bob:Pass Line=5'", "no player named Bob"},
        Refusal{"--player Ann --player Bob --bet 'Pass Line=5'", "name the player"},
        Refusal{"--player Ann:lots", "is not an amount of money"},
        Refusal{"--player Ann --player Ann", "already a player named Ann"},
        // Both are "Ann?" in the game file and the sessions logs.
        Refusal{"--player Ann\xE2\x98\x80 --player Ann\xE2\x98\x81", "already a player named Ann\xE2\x98\x80"},
        Refusal{"--player Ann --bet 'Pass Line'", "expected [NAME:]BET=AMOUNT"}, Refusal{"--rolls -5", "--rolls"},
        Refusal{"--seed 0", "--seed"}, Refusal{"--frobnicate", "frobnicate"},
        Refusal{"--player Ann --on-lose bogus", "is not an action for a bet that lost"},
        Refusal{"--player Ann --on-win remainder", "is not an action for a bet that won"},
        Refusal{"--player Ann --on-win Bob=same-bet", "no player named Bob"},
        Refusal{"--player Ann --on-win modify:%5", "starts with + - * or /"},
        Refusal{"--player Ann --on-win modify", "modify needs a rule"},
        Refusal{"--player Ann --on-win same-bet:5", "only modify and set take a rule"},
        Refusal{"--data-dir DIR/file --player Ann", "is not a folder"},
        Refusal{"--game DIR/none.crp", "Game file not found.", 1}, Refusal{"--game DIR/file", "may be corrupted", 1}));

INSTANTIATE_TEST_SUITE_P(
    Research, SimRefuses,
    testing::Values(
        Refusal{"--sessions 3 --player Ann", "--sessions needs --session-rolls N or --session-hours H"},
        Refusal{"--sessions 3 --session-rolls 9 --events-log --player Ann", "--events-log goes with a single run"},
        Refusal{"--stop-win 50 --playback x.rol --player Ann", "--playback goes with a single run"},
        Refusal{"--threads 2 --save x.crp --player Ann", "--save goes with a single run"},
        Refusal{"--stop-loss 0 --player Ann", "--stop-loss 0: the amount must be above 0."},
        Refusal{"--stop-win lots --player Ann", "is not an amount of money"},
        Refusal{"--sessions 3 --session-rolls 9 --rolls 50", "give one of them"},
        Refusal{"--sessions 3 --session-hours 1 --rolls 50", "--rolls is a single run's rolls"},
        Refusal{"--sessions 3 --session-rolls 9 --seed 1 --shard 2/3", "--shard needs --partial FILE"},
        Refusal{"--sessions 3 --session-rolls 9 --shard 2/3 --partial p", "--shard needs --seed S"},
        Refusal{"--sessions 3 --session-rolls 9 --seed 1 --shard 4/3 --partial p", "expected I/N"},
        Refusal{"--sessions 2 --session-rolls 9 --seed 1 --shard 1/3 --partial p",
                "2 sessions make fewer than 3 slices"},
        Refusal{"--partial p --player Ann", "--partial goes with --shard I/N"},
        Refusal{"--sessions 3 --session-rolls 9 --seed 1 --shard 1/3 --partial p --json",
                "--json and --csv go with dicehall-sim merge"},
        Refusal{"compare a.bet b.bet --session-rolls 9", "compare needs --sessions M"},
        Refusal{"compare a.bet b.bet --sessions 5 --session-rolls 9 --player Ann:9:c.bet", "compare seats one player"},
        Refusal{"merge p1 --sessions 4", "merge takes the partial files"},
        Refusal{"--sessions 3 --session-rolls 9", "needs a player at the table"}));

INSTANTIATE_TEST_SUITE_P(
    Rules, SimRefuses,
    testing::Values(Refusal{"--player Ann --rule MinPlacardBet=2000",
                            "The maximum bet must be greater than or equal to the minimum bet."},
                    Refusal{"--player Ann --rule OddsAllowed68=10000",
                            "Odds allowed factor out of limits. Acceptable values 0-9999"},
                    Refusal{"--player Ann --rule Frobnicate=1", "rule \"Frobnicate\" is not a rule"},
                    Refusal{"--player Ann --rule BarNumber=7", "must be 2 or 12"},
                    Refusal{"--player Ann --rule AllowPutBets=maybe", "must be true or false"},
                    Refusal{"--player Ann --rule CheckDenom.1=0", "Check values must be greater than zero."},
                    Refusal{"--player Ann --rule CheckDenom.6=5", "they are numbered 1 to 5"},
                    Refusal{"--player Ann --rule 'BetPayoff.Place 6.PayoffFor=0'", "must be above 0"},
                    Refusal{"--player Ann --rule 'BetPayoff.Place 66.PayoffPay=1'", "names no bet"},
                    Refusal{"--player Ann --rule FirePayoff.7.PayoffPay=1", "numbered 0 to 6"},
                    Refusal{"--player Ann --rule NoEquals", "expected KEY=VALUE"},
                    Refusal{"--player Ann --rules DIR/colour.json", "\"MidwayPayoff.1.Colour\""},
                    Refusal{"--player Ann --rules DIR/negative.json", "The payoff on Seven must be positive."},
                    Refusal{"--player Ann --rules DIR/bad.json", "this is not JSON"}));

INSTANTIATE_TEST_SUITE_P(
    Files, SimRefuses,
    testing::Values(Refusal{"--player Ann:100:DIR/system.bet --rolls 10", "system.bet", 1},
                    Refusal{"--player Ann:100:DIR/broken.bet --rolls 10",
                            "/broken.bet:1:1-1:2: Missing ENDIF statement.\n", 1},
                    Refusal{"--check DIR/none.bet", "can't be read", 1},

                    Refusal{"--game DIR/none.crp --player Ann", "the game brings its players"},
                    Refusal{"--player Ann --auto-play Ann:place-bias=up", "nearest, increase or decrease"},
                    Refusal{"--player Ann --auto-play Bob:adjust=minor", "no player named Bob"},

                    Refusal{"--player Ann --rolls 10 --playback DIR/bad.rol", "out of limits (roll 2)", 1},
                    Refusal{"--player Ann --rolls 10 --playback DIR/none.rol", "can't be read", 1},
                    Refusal{"--player Ann --rolls 10 --playback DIR/bad.rol --from-roll 9", "there is no roll 9", 1},
                    Refusal{"--player Ann --rolls 10 --prb DIR/junk.prb", "not a true DiceHall Probability File", 1},
                    Refusal{"--player Ann --rolls 10 --record DIR/nowhere/x.rol", "doesn't exist", 1},
                    Refusal{"--player Ann --rolls 10 --rng 3 --seed 1000000", "Seed value out of limits."},
                    Refusal{"--player Ann --rolls 10 --rng 9", "--rng"},
                    Refusal{"--player Ann --rolls 10 --from-roll 3", "--from-roll goes with --playback"},
                    Refusal{"--player Ann --rolls 10 --playback DIR/bad.rol --popup DIR/p.txt", "give one of them"}));

// The option, its text, and the seat's action, rule operator, units and operand.
using HandlingCase = std::tuple<const char*, const char*, int, int, int, double>;

class SimHandlingOptions : public testing::TestWithParam<HandlingCase> {};

TEST_P(SimHandlingOptions, NamesAndRulesBecomeTheSeatsActions) {
  const auto& [option, text, action, op, units, operand] = GetParam();
  const char* argv[] = {"dicehall-sim", "--player", "Ann", option, text};
  SimOptions o;
  std::ostringstream out, err;
  ASSERT_EQ(ParseSimOptions(5, argv, o, out, err), -1) << err.str();
  ASSERT_EQ(o.handling.size(), 1u);
  const SimHandling& h = o.handling[0];
  EXPECT_EQ(h.action, action);
  EXPECT_EQ(h.op, op);
  EXPECT_EQ(h.units, units);
  EXPECT_EQ(h.operand, Money::FromDouble(operand));
}

INSTANTIATE_TEST_SUITE_P(Actions, SimHandlingOptions,
                         testing::Values(HandlingCase{"--on-win", "press-unit", 3, 0, 0, 0},
                                         HandlingCase{"--on-lose", "press-unit", 4, 0, 0, 0},
                                         HandlingCase{"--on-win", "Ann=parlay", 5, 0, 0, 0},
                                         HandlingCase{"--on-lose", "remainder", 3, 0, 0, 0},
                                         HandlingCase{"--on-lose", "double", 5, 0, 0, 0},
                                         HandlingCase{"--on-win", "2", 2, 0, 0, 0},
                                         HandlingCase{"--on-win", "modify:-50%", 6, 1, 1, 50},
                                         HandlingCase{"--on-lose", "modify:*2", 6, 2, 0, 2},
                                         HandlingCase{"--on-win", "modify:+1c2", 6, 0, 3, 1},
                                         HandlingCase{"--on-lose", "set:25", 7, 0, 0, 25}));

TEST(SimProgram, PressingOnWinsWagersMoreThanFlatBetting) {
  const auto base = Args("--rolls 50000 --seed 9 --player Ann:-1 --bet 'Pass Line=5' --bet 'Place 6=12'");
  auto wagered = [](const std::string& out) {
    std::smatch m;
    EXPECT_TRUE(std::regex_search(out, m, std::regex(R"(Place 6: (\d+) decisions, wagered \$(\d+))")));
    return std::make_pair(std::stoll(m[1]), std::stoll(m[2]));
  };
  const SimRun flat = SimOk(base), pressed = SimOk(With(base, {"--on-win", "press-unit"}));
  auto [flatDecisions, flatWagered] = wagered(flat.out);
  auto [pressedDecisions, pressedWagered] = wagered(pressed.out);
  EXPECT_EQ(flatDecisions, pressedDecisions) << "the same dice decide the same bets";
  EXPECT_EQ(flatWagered, 12 * flatDecisions);
  EXPECT_GT(pressedWagered, flatWagered);
}

TEST(SimProgram, HelpListsEveryOption) {
  const SimRun r = SimOk({"--help"});
  for (const char* option :
       {"--player", "--bet", "--rolls", "--seed", "--data-dir", "--bench", "--threads", "--stop-loss", "--stop-win",
        "--session-hours", "--shard", "--partial", "--csv", "compare", "merge"})
    EXPECT_NE(r.out.find(option), std::string::npos) << option;
}

// A script plays the seat, every roll; its run-time faults are silent at the table, so
// the report counts them with the first few.
TEST(SimProgram, ScriptsPlayTheirSeatsAndTheirFaultsAreReported) {
  TempDir dir;
  const std::string line = (dir.path / "line.bet").string();
  std::ofstream(line) << "' Pass Line, one unit, and a count of rolls\n"
                         "If initializing script Then cs1 = 10 : EndIf\n"
                         "If next roll is a comeout roll and passline = 0 Then Bet cs1 on passline\n"
                         "EndIf\n"
                         "cs2 = cs2 + 1\n";
  const std::string faulty = (dir.path / "faulty.bet").string();
  std::ofstream(faulty) << "cs1 = 5\ncs3 = cs1 / cs2\n";
  SimRun r = SimOk({"--rolls", "500", "--seed", "11", "--player", "Ann:5000:" + line, "--player", "Bob:100:" + faulty});
  EXPECT_EQ(Field(r.out, "Rolls"), 500);
  EXPECT_TRUE(std::regex_search(
      r.out,
      std::regex(
          R"(Ann \(4L\)[^\n]*\n[^\n]*\n  script [^\n]*line\.bet: 0 run-time faults\n  Pass Line: \d+ decisions)")))
      << r.out;
  // The activation's cycle and one cycle after each roll, every one a division by zero.
  EXPECT_NE(r.out.find("faulty.bet: 501 run-time faults\n    line 2: Division by zero. (9999), 501 times\n"),
            std::string::npos)
      << r.out;

  r = SimOk({"--rolls", "50", "--seed", "11", "--json", "--player", "Bob:100:" + faulty});
  EXPECT_NE(r.out.find("\"faults\": 51"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("\"text\": \"Division by zero.\""), std::string::npos) << r.out;
}

// The text and the JSON report of one run: the same seed plays the same dice, the
// decisions add up, and the house keeps the edge of the line.
TEST(SimProgram, TextAndJsonReportTheSameRunAndItsDecisionsAddUp) {
  const auto args = Args("--rolls 200000 --seed 7 --player Ann:100000 --bet 'Pass Line=10' --bet 'Hard 8=5'");
  const SimRun text = SimOk(args);
  const SimRun json = SimOk(With(args, {"--json"}));
  const nlohmann::json r = nlohmann::json::parse(json.out);
  EXPECT_EQ(Field(text.out, "Rolls"), 200000);
  EXPECT_EQ(r["rolls"], 200000);
  const long long passes = Field(text.out, "Passes"), misses = Field(text.out, "Misses");
  EXPECT_EQ(r["passes"].get<long long>(), passes);
  EXPECT_EQ(r["misses"].get<long long>(), misses);
  EXPECT_FALSE(r.contains("stopped"));
  EXPECT_GT(r["dice"]["p"].get<double>(), 0.0001) << "fair dice";
  ASSERT_EQ(r["players"].size(), 1u);
  const auto& ann = r["players"][0];
  EXPECT_EQ(ann["name"], "Ann");
  EXPECT_EQ(ann["seat"], "4L");
  ASSERT_EQ(ann["bets"].size(), 2u);
  double net = 0;
  for (const auto& b : ann["bets"]) net += b["net"].get<double>();
  EXPECT_DOUBLE_EQ(ann["net"].get<double>(), net) << "the bets' nets add up to the player's";
  std::smatch m;
  ASSERT_TRUE(std::regex_search(text.out, m, std::regex(R"(Ann \(4L\): bankroll \$(\d+), net (-?)\$(\d+))")));
  EXPECT_DOUBLE_EQ(std::stod(m[1]) - 100000, net);
  EXPECT_DOUBLE_EQ((m[2] == "-" ? -1.0 : 1.0) * std::stod(m[3]), net);
  ASSERT_TRUE(std::regex_search(text.out, m, std::regex(R"(Pass Line: (\d+) decisions)")));
  EXPECT_EQ(passes + misses, std::stoll(m[1]));
  // The house keeps 7/495 of the line stake per decision; four standard errors of a
  // decision's ±1 stake over this many decisions.
  const auto& line = ann["bets"][0];
  ASSERT_EQ(line["bet"], "Pass Line");
  const double decisions = static_cast<double>(passes + misses);
  EXPECT_NEAR(line["net"].get<double>() / 10.0 / decisions, -7.0 / 495.0, 4.0 / std::sqrt(decisions));
}

TEST(SimProgram, ATableThatBreaksTheBankStopsByItself) {
  const SimRun r = SimOk(Args("--rolls 100000 --seed 3 --player Ann:100 --bet 'Pass Line=50'"));
  // Ann can't cover the line bet long: the table stops for want of a line bet.
  EXPECT_EQ(r.out.rfind(
                "Played " + std::to_string(Field(r.out, "Rolls")) + " of 100000 rolls: Shooter has no line bet.\n", 0),
            0u)
      << r.out;
  EXPECT_LT(Field(r.out, "Rolls"), 100000);
}

TEST(SimProgram, DataFolderFollowsOptionThenEnvironment) {
  EXPECT_EQ(ResolveDataDir("/tmp/x"), "/tmp/x");
  TempDir dir;
  setenv("DICEHALL_HOME", dir.path.c_str(), 1);
  EXPECT_EQ(ResolveDataDir(""), dir.path.string());
  unsetenv("DICEHALL_HOME");
  setenv("XDG_DATA_HOME", "/tmp/xdg", 1);
  EXPECT_EQ(ResolveDataDir(""), "/tmp/xdg/dicehall");
  unsetenv("XDG_DATA_HOME");
}

TEST(SimProgram, TheRollHistoryGoesToTheDataFolderOnly) {
  TempDir dir;
  const std::filesystem::path data = dir.path / "data";
  SimOk({"--data-dir", data.string(), "--rolls", "1234", "--seed", "4", "--player", "Ann", "--bet", "Pass Line=5"});
  // One byte a roll, in the folder made for it, and nothing else beside it.
  EXPECT_EQ(std::filesystem::file_size(data / "current roll history.rol"), 1234u);
  int files = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(dir.path)) ++files;
  EXPECT_EQ(files, 1);
}

// The script, the exit code, and the line printed (after "FILE:" for a fault).
using CheckCase = std::tuple<const char*, int, const char*>;

class SimCheck : public testing::TestWithParam<CheckCase> {};

TEST_P(SimCheck, SaysOkOrWhereTheFirstFaultIs) {
  const auto& [script, code, says] = GetParam();
  TempDir dir;
  const std::string file = (dir.path / "system.bet").string();
  std::ofstream(file) << script;
  SimRun r = Sim({"--check", file});
  EXPECT_EQ(r.code, code) << r.out << r.err;
  EXPECT_EQ(r.out, code == 0 ? std::string(says) + "\n" : file + ":" + says + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, SimCheck,
    testing::Values(CheckCase{"If a point is established Then\n  Bet 10 on PassLineOdds\nEndIf\n", 0, "OK"},
                    CheckCase{"bet 5 on field\n\"unterminated\n", 1, "2:1-2:13: Missing quotation mark."},
                    CheckCase{"If (1 = 1 Then\nEndIf\n", 1, "1:4-1:9: Missing or improperly placed parenthesis."},
                    CheckCase{"Bet 10 on Pass Line Odds\r\n", 1, "1:11-1:14: Unknown or misplaced element: Pass"}));

TEST(SimProgram, CheckDumpsTheRecords) {
  TempDir dir;
  const std::string file = (dir.path / "s.bet").string();
  std::ofstream(file) << "Bet 5 on Field\n";
  const SimRun r = SimOk({"--check", file, "--dump"});
  EXPECT_NE(r.out.find("Records:\n"), std::string::npos);
  EXPECT_NE(r.out.find("A481"), std::string::npos) << r.out;
}

}  // namespace
