// dicehall-sim with saved games: --save after a run, --game to play on, --rolls 0 as a
// pure round trip, and --auto-play.

#include <gtest/gtest.h>

#include "app/sim/sim.h"
#include "storage/file_bytes.h"
#include "tests/app/sim_args.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

// dicehall-sim with its data folder in the test's folder.
SimRun SimIn(const TempDir& home, const std::vector<std::string>& args) {
  return Sim(args, (home.path / "home").string());
}

TEST(SimGame, SavedGamesRoundTripAndPlayOnTheSame) {
  TempDir dir;
  const std::string a = (dir.path / "a.crp").string(), b = (dir.path / "b.crp").string();
  const std::string script = (ExamplesFolder() / "martingale_passline.bet").string();
  SimRun first = SimIn(dir, With(Args("--seed 31 --rolls 3000 --player Ann:5000 --bet 'Ann:Pass Line=10' --bet "
                                      "'Ann:Place 6=12' --on-win Ann=same-bet --auto-play Ann:adjust=color "
                                      "--auto-play Ann:place-bias=increase --player"),
                                 {"Cy:20000:" + script, "--save", a}));
  ASSERT_EQ(first.code, 0) << first.err;
  SimRun copy = SimIn(dir, {"--game", a, "--rolls", "0", "--save", b});
  ASSERT_EQ(copy.code, 0) << copy.err;
  EXPECT_NE(copy.out.find("Rolls:        3000"), std::string::npos) << copy.out;
  const Bytes before = FileBytes(b);
  ASSERT_EQ(SimIn(dir, {"--game", b, "--rolls", "0", "--save", b}).code, 0);
  EXPECT_TRUE(FileBytes(b) == before) << "saved again under its own name, the file is the same";
  // Standing bets belong to a run, not to the table: they are given again.
  auto on = [&](const std::string& game) {
    return SimIn(dir, With(Args("--rolls 10000 --seed 5 --json --bet 'Ann:Pass Line=10' --game"), {game}));
  };
  SimRun fromA = on(a), fromB = on(b);
  ASSERT_EQ(fromA.code, 0) << fromA.err;
  EXPECT_EQ(fromA.out, fromB.out);
  EXPECT_NE(fromA.out.find("\"rolls\": 13000"), std::string::npos);
}

}  // namespace
