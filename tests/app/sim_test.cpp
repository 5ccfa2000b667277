// The headless program as a user runs it: options, exit codes, the summary and its
// reproducibility.

#include "app/sim/sim.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/test_support.h"

namespace {

long long Field(const std::string& text, const std::string& label) {
  std::smatch m;
  std::regex re(label + R"(:\s+(-?\d+))");
  if (!std::regex_search(text, m, re)) return -1;
  return std::stoll(m[1]);
}

struct BadOption {
  std::vector<std::string> args;
  const char* says;
};

class SimBadOptions : public testing::TestWithParam<BadOption> {};

TEST_P(SimBadOptions, ExitTwoWithAClearMessage) {
  SimRun r = Sim(GetParam().args);
  EXPECT_EQ(r.code, 2);
  EXPECT_NE(r.err.find(GetParam().says), std::string::npos) << r.err;
  EXPECT_TRUE(r.out.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SimBadOptions,
    testing::Values(BadOption{{"--player", "Ann", "--bet", "Pass Lane=10"}, "there is no bet named \"Pass Lane\""},
                    BadOption{{"--player", "Ann", "--bet", "Pass Line=ten"}, "is not an amount of money"},
                    BadOption{{"--player", "Ann", "--bet", "Pass Line=0"}, "must be above 0"},
                    BadOption{{"--player", "Ann", "--bet", "Bob:Pass Line=5"}, "no player named Bob"},
                    BadOption{{"--player", "Ann", "--player", "Bob", "--bet", "Pass Line=5"}, "name the player"},
                    BadOption{{"--player", "Ann:lots"}, "is not an amount of money"},
                    BadOption{{"--player", "Ann", "--player", "Ann"}, "already a player named Ann"},
                    BadOption{{"--player", "Ann", "--bet", "Pass Line"}, "expected [NAME:]BET=AMOUNT"},
                    BadOption{{"--rolls", "-5"}, "--rolls"}, BadOption{{"--seed", "0"}, "--seed"},
                    BadOption{{"--frobnicate"}, "frobnicate"},
                    BadOption{{"--player", "Ann", "--on-lose", "bogus"}, "is not an action for a bet that lost"},
                    BadOption{{"--player", "Ann", "--on-win", "remainder"}, "is not an action for a bet that won"},
                    BadOption{{"--player", "Ann", "--on-win", "Bob=same-bet"}, "no player named Bob"},
                    BadOption{{"--player", "Ann", "--on-win", "modify:%5"}, "starts with + - * or /"},
                    BadOption{{"--player", "Ann", "--on-win", "modify"}, "modify needs a rule"},
                    BadOption{{"--player", "Ann", "--on-win", "same-bet:5"}, "only modify and set take a rule"}));

struct HandlingCase {
  const char* option;
  const char* text;
  int action, op, units;
  double operand;
};

class SimHandlingOptions : public testing::TestWithParam<HandlingCase> {};

TEST_P(SimHandlingOptions, NamesAndRulesBecomeTheSeatsActions) {
  const HandlingCase& c = GetParam();
  const char* argv[] = {"dicehall-sim", "--player", "Ann", c.option, c.text};
  SimOptions o;
  std::ostringstream out, err;
  ASSERT_EQ(ParseSimOptions(5, argv, o, out, err), -1) << err.str();
  ASSERT_EQ(o.handling.size(), 1u);
  const SimHandling& h = o.handling[0];
  EXPECT_EQ(h.action, c.action);
  EXPECT_EQ(h.op, c.op);
  EXPECT_EQ(h.units, c.units);
  EXPECT_EQ(h.operand, Money::FromDouble(c.operand));
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
  std::vector<std::string> base{"--rolls", "50000", "--seed",      "9",     "--player",
                                "Ann:-1",  "--bet", "Pass Line=5", "--bet", "Place 6=12"};
  auto wagered = [](const std::string& out) {
    std::smatch m;
    EXPECT_TRUE(std::regex_search(out, m, std::regex(R"(Place 6: (\d+) decisions, wagered \$(\d+))")));
    return std::make_pair(std::stoll(m[1]), std::stoll(m[2]));
  };
  SimRun flat = Sim(base);
  std::vector<std::string> pressing = base;
  pressing.insert(pressing.end(), {"--on-win", "press-unit"});
  SimRun pressed = Sim(pressing);
  ASSERT_EQ(flat.code, 0);
  ASSERT_EQ(pressed.code, 0);
  auto [flatDecisions, flatWagered] = wagered(flat.out);
  auto [pressedDecisions, pressedWagered] = wagered(pressed.out);
  EXPECT_EQ(flatDecisions, pressedDecisions) << "the same dice decide the same bets";
  EXPECT_EQ(flatWagered, 12 * flatDecisions);
  EXPECT_GT(pressedWagered, flatWagered);
}

TEST(SimProgram, HelpListsEveryOption) {
  SimRun r = Sim({"--help"});
  EXPECT_EQ(r.code, 0);
  for (const char* option :
       {"--player", "--bet", "--rolls", "--seed", "--data-dir", "--bench", "--threads", "--stop-loss", "--stop-win",
        "--session-hours", "--shard", "--partial", "--csv", "compare", "merge"})
    EXPECT_NE(r.out.find(option), std::string::npos) << option;
}

TEST(SimProgram, AScriptThatCantRunIsAFileFault) {
  SimRun r = Sim({"--player", "Ann:100:system.bet", "--rolls", "10"});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.err.find("system.bet"), std::string::npos);

  TempDir dir;
  const std::string broken = (dir.path / "broken.bet").string();
  std::ofstream(broken) << "If passline > 0 Then\n  Bet 5 on field\n";
  r = Sim({"--player", "Ann:100:" + broken, "--rolls", "10"});
  EXPECT_EQ(r.code, 1);
  EXPECT_EQ(r.err, broken + ":1:1-1:2: Missing ENDIF statement.\n");
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
  SimRun r = Sim({"--rolls", "500", "--seed", "11", "--player", "Ann:5000:" + line, "--player", "Bob:100:" + faulty});
  ASSERT_EQ(r.code, 0) << r.err;
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

  r = Sim({"--rolls", "50", "--seed", "11", "--json", "--player", "Bob:100:" + faulty});
  ASSERT_EQ(r.code, 0) << r.err;
  EXPECT_NE(r.out.find("\"faults\": 51"), std::string::npos) << r.out;
  EXPECT_NE(r.out.find("\"text\": \"Division by zero.\""), std::string::npos) << r.out;
}

TEST(SimProgram, SameSeedSameOutputAndDecisionsAddUp) {
  std::vector<std::string> args{"--rolls",  "200000",     "--seed", "7",
                                "--player", "Ann:100000", "--bet",  "Ann:Pass Line=10"};
  SimRun a = Sim(args), b = Sim(args);
  ASSERT_EQ(a.code, 0) << a.err;
  EXPECT_EQ(a.out, b.out);
  EXPECT_EQ(Field(a.out, "Rolls"), 200000);
  const long long passes = Field(a.out, "Passes"), misses = Field(a.out, "Misses");
  std::smatch m;
  ASSERT_TRUE(std::regex_search(a.out, m, std::regex(R"(Pass Line: (\d+) decisions)")));
  EXPECT_EQ(passes + misses, std::stoll(m[1]));
  ASSERT_TRUE(std::regex_search(a.out, m, std::regex(R"(Ann \(4L\): bankroll \$(\d+), net (-?)\$(\d+))")));
  const double net = (m[2] == "-" ? -1.0 : 1.0) * std::stod(m[3]);
  EXPECT_DOUBLE_EQ(std::stod(m[1]) - 100000, net);
  // The house keeps 7/495 of the line stake per decision; four standard errors of a
  // decision's ±1 stake over this many decisions.
  const double decisions = static_cast<double>(passes + misses);
  const double perDecision = net / 10.0 / decisions;
  EXPECT_NEAR(perDecision, -7.0 / 495.0, 4.0 / std::sqrt(decisions));
}

TEST(SimProgram, ATableThatBreaksTheBankStopsByItself) {
  SimRun r = Sim({"--rolls", "100000", "--seed", "3", "--player", "Ann:100", "--bet", "Pass Line=50"});
  EXPECT_EQ(r.code, 0);
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

TEST(SimProgram, ADataFolderThatIsAFileIsRefused) {
  TempDir dir;
  std::string file = (dir.path / "not-a-folder").string();
  std::FILE* f = std::fopen(file.c_str(), "w");
  ASSERT_NE(f, nullptr);
  std::fclose(f);
  SimRun r = Sim({"--data-dir", file, "--player", "Ann"});
  EXPECT_EQ(r.code, 2);
  EXPECT_NE(r.err.find("is not a folder"), std::string::npos);
}

}  // namespace

namespace {

TEST(SimProgram, TheRollHistoryGoesToTheDataFolderOnly) {
  TempDir dir;
  const std::filesystem::path data = dir.path / "data";
  SimRun r =
      Sim({"--data-dir", data.string(), "--rolls", "1234", "--seed", "4", "--player", "Ann", "--bet", "Pass Line=5"});
  ASSERT_EQ(r.code, 0) << r.err;
  // One byte a roll, in the folder made for it, and nothing else beside it.
  EXPECT_EQ(std::filesystem::file_size(data / "current roll history.rol"), 1234u);
  int files = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(dir.path)) ++files;
  EXPECT_EQ(files, 1);
}

}  // namespace

#include <nlohmann/json.hpp>

namespace {

TEST(SimProgram, JsonReportAgreesWithTheText) {
  std::vector<std::string> args{"--rolls", "20000", "--seed",       "12",    "--player",
                                "Ann:-1",  "--bet", "Pass Line=10", "--bet", "Hard 8=5"};
  SimRun text = Sim(args);
  args.push_back("--json");
  SimRun json = Sim(args);
  ASSERT_EQ(json.code, 0) << json.err;
  const nlohmann::json r = nlohmann::json::parse(json.out);
  EXPECT_EQ(r["rolls"], 20000);
  EXPECT_EQ(r["passes"].get<long long>(), Field(text.out, "Passes"));
  EXPECT_EQ(r["misses"].get<long long>(), Field(text.out, "Misses"));
  ASSERT_EQ(r["players"].size(), 1u);
  const auto& ann = r["players"][0];
  EXPECT_EQ(ann["name"], "Ann");
  EXPECT_EQ(ann["seat"], "4L");
  double net = 0;
  for (const auto& b : ann["bets"]) net += b["net"].get<double>();
  EXPECT_DOUBLE_EQ(ann["net"].get<double>(), net) << "the bets' nets add up to the player's";
  EXPECT_EQ(ann["bets"].size(), 2u);
  EXPECT_FALSE(r.contains("stopped"));
  EXPECT_GT(r["dice"]["p"].get<double>(), 0.0001) << "fair dice";
}

}  // namespace

namespace {

struct CheckCase {
  const char* script;
  int code;
  const char* says;  // the line printed, after "FILE:" for a fault
};

class SimCheck : public testing::TestWithParam<CheckCase> {};

TEST_P(SimCheck, SaysOkOrWhereTheFirstFaultIs) {
  const CheckCase& c = GetParam();
  TempDir dir;
  const std::string file = (dir.path / "system.bet").string();
  std::ofstream(file) << c.script;
  SimRun r = Sim({"--check", file});
  EXPECT_EQ(r.code, c.code) << r.out << r.err;
  const std::string expected = c.code == 0 ? std::string(c.says) + "\n" : file + ":" + c.says + "\n";
  EXPECT_EQ(r.out, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Scripts, SimCheck,
    testing::Values(CheckCase{"If a point is established Then\n  Bet 10 on PassLineOdds\nEndIf\n", 0, "OK"},
                    CheckCase{"bet 5 on field\n\"unterminated\n", 1, "2:1-2:13: Missing quotation mark."},
                    CheckCase{"If (1 = 1 Then\nEndIf\n", 1, "1:4-1:9: Missing or improperly placed parenthesis."},
                    CheckCase{"Bet 10 on Pass Line Odds\r\n", 1, "1:11-1:14: Unknown or misplaced element: Pass"}));

TEST(SimProgram, CheckDumpsTheRecordsAndAMissingFileIsAFileFault) {
  TempDir dir;
  const std::string file = (dir.path / "s.bet").string();
  std::ofstream(file) << "Bet 5 on Field\n";
  SimRun r = Sim({"--check", file, "--dump"});
  EXPECT_EQ(r.code, 0);
  EXPECT_NE(r.out.find("Records:\n"), std::string::npos);
  EXPECT_NE(r.out.find("A481"), std::string::npos) << r.out;
  SimRun missing = Sim({"--check", (dir.path / "none.bet").string()});
  EXPECT_EQ(missing.code, 1);
  EXPECT_NE(missing.err.find("can't be read"), std::string::npos);
}

}  // namespace
