// The headless program as a user runs it: options, exit codes, the summary and its
// reproducibility.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "app/sim/sim.h"
#include "tests/test_support.h"

namespace {

struct SimRun {
  int code;
  std::string out, err;
};

SimRun Sim(std::vector<std::string> args) {
  std::vector<const char*> argv{"dicehall-sim"};
  for (const std::string& a : args) argv.push_back(a.c_str());
  SimOptions o;
  std::ostringstream out, err;
  int code = ParseSimOptions(static_cast<int>(argv.size()), argv.data(), o, out, err);
  if (code < 0) code = RunSim(o, out, err);
  return {code, out.str(), err.str()};
}

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
                    BadOption{{"--frobnicate"}, "frobnicate"}));

TEST(SimProgram, HelpListsEveryOption) {
  SimRun r = Sim({"--help"});
  EXPECT_EQ(r.code, 0);
  for (const char* option : {"--player", "--bet", "--rolls", "--seed", "--data-dir", "--bench"})
    EXPECT_NE(r.out.find(option), std::string::npos) << option;
}

TEST(SimProgram, AScriptThatCantRunIsAFileFault) {
  SimRun r = Sim({"--player", "Ann:100:system.bet", "--rolls", "10"});
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.err.find("system.bet"), std::string::npos);
}

TEST(SimProgram, SameSeedSameOutputAndDecisionsAddUp) {
  std::vector<std::string> args{"--rolls", "200000", "--seed", "7", "--player", "Ann:100000", "--bet",
                                "Ann:Pass Line=10"};
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
  EXPECT_NE(r.out.find("Stopped: Shooter has no line bet."), std::string::npos) << r.out;
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
