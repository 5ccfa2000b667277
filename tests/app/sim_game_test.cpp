// dicehall-sim with saved games: --save after a run, --game to play on, --rolls 0 as a
// pure round trip, and --auto-play.

#include <gtest/gtest.h>

#include <sstream>

#include "app/sim/sim.h"
#include "storage/file_bytes.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

struct SimResult {
  int code;
  std::string out, err;
};

SimResult SimIn(const TempDir& home, std::vector<std::string> args) {
  args.insert(args.begin(), {"dicehall-sim", "--data-dir", (home.path / "home").string()});
  std::vector<const char*> argv;
  for (const std::string& a : args) argv.push_back(a.c_str());
  SimOptions o;
  std::ostringstream out, err;
  int code = ParseSimOptions(static_cast<int>(argv.size()), argv.data(), o, out, err);
  if (code < 0) code = RunSim(o, out, err);
  return {code, out.str(), err.str()};
}

TEST(SimGame, SavedGamesRoundTripAndPlayOnTheSame) {
  TempDir dir;
  const std::string a = (dir.path / "a.crp").string(), b = (dir.path / "b.crp").string();
  const std::string script = (ExamplesFolder() / "martingale_passline.bet").string();
  SimResult first = SimIn(dir, {"--seed",      "31",
                                "--rolls",     "3000",
                                "--player",    "Ann:5000",
                                "--player",    "Cy:20000:" + script,
                                "--bet",       "Ann:Pass Line=10",
                                "--bet",       "Ann:Place 6=12",
                                "--on-win",    "Ann=same-bet",
                                "--auto-play", "Ann:adjust=color",
                                "--auto-play", "Ann:place-bias=increase",
                                "--save",      a});
  ASSERT_EQ(first.code, 0) << first.err;
  SimResult copy = SimIn(dir, {"--game", a, "--rolls", "0", "--save", b});
  ASSERT_EQ(copy.code, 0) << copy.err;
  EXPECT_NE(copy.out.find("Rolls:        3000"), std::string::npos) << copy.out;
  const Bytes before = FileBytes(b);
  ASSERT_EQ(SimIn(dir, {"--game", b, "--rolls", "0", "--save", b}).code, 0);
  EXPECT_TRUE(FileBytes(b) == before) << "saved again under its own name, the file is the same";
  // Standing bets belong to a run, not to the table: they are given again.
  const std::vector<std::string> playOn = {"--rolls", "10000", "--seed", "5", "--json", "--bet", "Ann:Pass Line=10"};
  auto on = [&](const std::string& game) {
    std::vector<std::string> args = playOn;
    args.insert(args.end(), {"--game", game});
    return SimIn(dir, args);
  };
  SimResult fromA = on(a), fromB = on(b);
  ASSERT_EQ(fromA.code, 0) << fromA.err;
  EXPECT_EQ(fromA.out, fromB.out);
  EXPECT_NE(fromA.out.find("\"rolls\": 13000"), std::string::npos);
}

TEST(SimGame, BadGameOptionsAreRefused) {
  TempDir dir;
  const std::string missing = (dir.path / "none.crp").string();
  const std::tuple<std::vector<std::string>, int, const char*> cases[] = {
      {{"--game", missing}, 1, "Game file not found."},
      {{"--game", missing, "--player", "Ann"}, 2, "the game brings its players"},
      {{"--player", "Ann", "--auto-play", "Ann:place-bias=up"}, 2, "nearest, increase or decrease"},
      {{"--player", "Ann", "--auto-play", "Bob:adjust=minor"}, 2, "no player named Bob"}};
  for (const auto& [args, code, says] : cases) {
    const SimResult r = SimIn(dir, args);
    EXPECT_EQ(r.code, code) << args[1];
    EXPECT_NE(r.err.find(says), std::string::npos) << r.err;
  }
}

}  // namespace
