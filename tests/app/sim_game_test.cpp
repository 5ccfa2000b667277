// dicehall-sim with saved games: --save after a run, --game to play on, --rolls 0 as a
// pure round trip, and --auto-play.

#include <gtest/gtest.h>

#include "app/sim/sim.h"
#include "storage/file_bytes.h"
#include "tests/app/sim_args.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

TEST(SimGame, SavedGamesRoundTripAndPlayOnTheSame) {
  TempDir dir;
  const std::string home = (dir.path / "home").string();
  const std::string a = (dir.path / "a.crp").string(), b = (dir.path / "b.crp").string();
  const std::string script = (ExamplesFolder() / "martingale_passline.bet").string();
  SimOk(With(Args("--seed 31 --rolls 3000 --player Ann:5000 --bet 'Ann:Pass Line=10' --bet "
                  "'Ann:Place 6=12' --on-win Ann=same-bet --auto-play Ann:adjust=color "
                  "--auto-play Ann:place-bias=increase --player"),
             {"Cy:20000:" + script, "--save", a}),
        home);
  const SimRun copy = SimOk({"--game", a, "--rolls", "0", "--save", b}, home);
  EXPECT_NE(copy.out.find("Rolls:        3000"), std::string::npos) << copy.out;
  const Bytes before = FileBytes(b);
  SimOk({"--game", b, "--rolls", "0", "--save", b}, home);
  EXPECT_TRUE(FileBytes(b) == before) << "saved again under its own name, the file is the same";
  // Standing bets belong to a run, not to the table: they are given again.
  auto on = [&](const std::string& game) {
    return SimOk(With(Args("--rolls 10000 --seed 5 --json --bet 'Ann:Pass Line=10' --game"), {game}), home);
  };
  const SimRun fromA = on(a), fromB = on(b);
  EXPECT_EQ(fromA.out, fromB.out);
  EXPECT_NE(fromA.out.find("\"rolls\": 13000"), std::string::npos);
}

}  // namespace
