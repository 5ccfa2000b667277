// Runs of many independent sessions: the same bytes for any number of threads or shards,
// the answers against known truth, two systems compared, players who walk away at the
// right roll, and the refusals.

#include "app/sim/sim_sessions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <tuple>

#include "app/sim/data_folder.h"
#include "app/sim/sample_stats.h"
#include "dice/roll_files.h"
#include "stats/sessions_log_file.h"
#include "tests/app/sim_args.h"
#include "tests/test_support.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

// The folder's files, each with its bytes, the lock file aside.
std::map<std::string, std::string> Files(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& e : fs::directory_iterator(folder))
    if (e.path().filename() != kFolderLockName) files[e.path().filename().string()] = FileText(e.path());
  return files;
}

// ---- One run, any threads, any shards. -------------------------------------------------

TEST(SimResearch, TheSameRunGivesTheSameBytesForAnyThreadsOrShards) {
  TempDir dir;
  // The script moves the table to another generator: each session still starts on the
  // one of the options, whichever session its worker's table played before.
  WriteText(dir.path / "press.bet",
            "If next roll is a comeout roll and passline = 0 Then Bet 10 on passline\nEndIf\n"
            "If a point is established and place6 = 0 Then Bet 12 on place6\nEndIf\nrng = 4\n");
  const auto run = With(Args("--sessions 90 --session-rolls 300 --seed 2026 --player Ann:300 --player Bob:200 --bet "
                             "'Ann:Pass Line=10' --bet 'Ann:Pass Line Odds=20' --bet Bob:Field=5 --stop-loss 150 "
                             "--stop-win 100 --player"),
                        {"Cy:500:" + (dir.path / "press.bet").string()});
  std::string json1, text1;
  std::map<std::string, std::string> logs1;
  for (const char* threads : {"1", "2", "4"}) {
    const fs::path data = dir.path / (std::string("t") + threads);
    const SimRun r = SimOk(With(run, {"--threads", threads, "--json", "--csv", (data / "rows.csv").string()}),
                           (data / "data").string());
    const auto logs = Files(data / "data");
    if (json1.empty()) {
      json1 = r.out;
      logs1 = logs;
      text1 = FileText(data / "rows.csv");
      continue;
    }
    EXPECT_EQ(r.out, json1) << threads << " threads";
    EXPECT_EQ(logs, logs1) << threads << " threads";
    EXPECT_EQ(FileText(data / "rows.csv"), text1) << threads << " threads";
  }
  ASSERT_EQ(logs1.size(), 3u);
  // One CSV row per session per player, after the header.
  EXPECT_EQ(std::count(text1.begin(), text1.end(), '\n'), 1 + 90 * 3);

  const SimRun whole = SimOk(With(run, {"--threads", "2"}), (dir.path / "whole").string());
  std::vector<std::string> merge{"merge"};
  for (const char* shard : {"3/3", "1/3", "2/3"}) {
    const std::string part = (dir.path / (std::string("part") + shard[0])).string();
    SimOk(With(run, {"--shard", shard, "--partial", part}), (dir.path / "shards").string());
    merge.push_back(part);
  }
  EXPECT_FALSE(fs::exists(dir.path / "shards" / "Ann.slg")) << "a shard writes its partial file only";
  const SimRun merged = SimOk(merge, (dir.path / "merged").string());
  EXPECT_EQ(merged.out, whole.out);
  EXPECT_EQ(Files(dir.path / "merged"), Files(dir.path / "whole"));
  EXPECT_EQ(Files(dir.path / "whole"), logs1);
  const SimRun mergedJson = Sim(With(merge, {"--json"}), (dir.path / "merged-json").string());
  EXPECT_EQ(mergedJson.out, json1);
}

// Without --seed the run takes one from the clock and says it: given back, it plays the
// same run again.
TEST(SimResearch, ARunWithoutASeedSaysItsSeed) {
  TempDir dir;
  const auto run = Args("--sessions 5 --session-rolls 100 --player Ann --bet 'Pass Line=5' --json");
  const SimRun first = SimOk(run, (dir.path / "a").string());
  const std::string seed = std::to_string(json::parse(first.out)["seed"].get<uint32_t>());
  EXPECT_EQ(Sim(With(run, {"--seed", seed}), (dir.path / "b").string()).out, first.out);
}

// Every session from the saved game as it stands: its players, their bankrolls and
// scripts; the game's own history counts in no session.
TEST(SimResearch, SessionsFromASavedGame) {
  TempDir dir;
  const std::string game = (dir.path / "evening.crp").string();
  const std::string script = (dir.path / "line.bet").string();
  WriteText(script, "If next roll is a comeout roll and passline = 0 Then Bet 5 on passline\nEndIf\n");
  SimOk(With(Args("--rolls 3000 --seed 9 --player Ann:5000 --bet 'Ann:Pass Line=10' --save"),
             {game, "--player", "Cy:800:" + script}),
        (dir.path / "saved").string());
  const auto run =
      With(Args("--sessions 20 --session-rolls 200 --seed 3 --bet 'Ann:Place 8=12' --json --game"), {game});
  const SimRun one = SimOk(With(run, {"--threads", "1"}), (dir.path / "one").string());
  EXPECT_EQ(Sim(With(run, {"--threads", "2"}), (dir.path / "two").string()).out, one.out);
  EXPECT_EQ(Files(dir.path / "one"), Files(dir.path / "two"));
  const json report = json::parse(one.out);
  ASSERT_EQ(report["players"].size(), 2u);
  EXPECT_GE(report["rolls"].get<int64_t>(), 20 * 200);
  EXPECT_LT(report["rolls"].get<int64_t>(), 20 * 260) << "the game's 3000 rolls aren't the sessions'";
  for (const json& p : report["players"]) EXPECT_EQ(p["sessions"], 20);
  EXPECT_EQ(report["players"][0]["bets"][0]["bet"], "Place 8");
  EXPECT_EQ(report["players"][1]["script"]["file"], script);
}

// ---- Answers with a known truth. -------------------------------------------------------

TEST(SimResearch, PassLineFlatBetsLoseTheExactEdge) {
  TempDir dir;
  const SimRun r =
      SimOk(Args("--sessions 2000 --session-rolls 500 --seed 77 --player Ann:100000 --bet 'Pass Line=10' --json"),
            dir.path.string());
  const json ann = json::parse(r.out)["players"][0];
  const json& line = ann["bets"][0];
  ASSERT_EQ(line["bet"], "Pass Line");
  const double decisions = line["decisions"].get<double>(), wagered = line["wagered"].get<double>();
  const double edge = -7.0 / 495;
  EXPECT_NEAR(line["edge"].get<double>(), edge, 1e-12);
  EXPECT_NEAR(ann["expected_net"].get<double>(), edge * wagered, 1e-6 * wagered);
  // A flat decision wins or loses the stake: the loss per unit has a standard deviation
  // of about 1; four standard errors.
  const double perUnit = line["net"].get<double>() / wagered;
  EXPECT_NEAR(perUnit, edge, 4 / std::sqrt(decisions));
  EXPECT_NEAR(ann["observed_net"].get<double>(), line["net"].get<double>(), 1e-9);
  // The session results' interval holds the exact expectation of a session.
  const double expectedSession = ann["expected_net"].get<double>() / 2000;
  const json& ci = ann["result"]["ci95"];
  const double halfWidth = (ci[1].get<double>() - ci[0].get<double>()) / 2;
  EXPECT_NEAR(ann["result"]["mean"].get<double>(), expectedSession, 2.5 * halfWidth);
  EXPECT_EQ(ann["ended_by"]["rolls"], 2000);
}

// A system against itself, and against itself at double stakes, on the same dice.
TEST(SimCompare, ASystemAgainstItselfAndAtDoubleStakes) {
  TempDir dir;
  WriteText(dir.path / "ten.bet", "If next roll is a comeout roll and passline = 0 Then Bet 10 on passline\nEndIf\n");
  WriteText(dir.path / "twenty.bet",
            "If next roll is a comeout roll and passline = 0 Then Bet 20 on passline\nEndIf\n");
  const std::string ten = (dir.path / "ten.bet").string(), twenty = (dir.path / "twenty.bet").string();
  const auto options = Args("--sessions 400 --session-rolls 250 --seed 31 --player Ann:100000 --threads 2");

  SimRun same = SimOk(With({"compare", ten, ten}, options), dir.path.string());
  EXPECT_NE(same.out.find("No difference: A and B ended every session alike."), std::string::npos) << same.out;
  same = Sim(With({"compare", ten, ten, "--json"}, options), dir.path.string());
  const json d = json::parse(same.out)["difference"];
  EXPECT_EQ(d["verdict"], "no difference");
  EXPECT_EQ(d["mean"], 0.0);
  EXPECT_EQ(d["sd"], 0.0);

  const std::string rows = (dir.path / "pairs.csv").string();
  const json report =
      json::parse(SimOk(With({"compare", ten, twenty, "--json", "--csv", rows}, options), dir.path.string()).out);
  const json& diff = report["difference"];
  // On the same dice every session of B is A's at twice the stakes.
  std::istringstream csv(FileText(rows));
  std::string row;
  std::getline(csv, row);
  int sessions = 0;
  while (std::getline(csv, row)) {
    double k, a, b, difference;
    ASSERT_EQ(std::sscanf(row.c_str(), "%lf,%lf,%lf,%lf", &k, &a, &b, &difference), 4) << row;
    EXPECT_EQ(b, 2 * a) << "session " << k;
    EXPECT_EQ(difference, a);
    ++sessions;
  }
  EXPECT_EQ(sessions, 400);
  // The exact edge predicts B - A: -7/495 of the extra stakes; the difference lies within
  // a few standard errors of it.
  const double predicted = diff["expected_mean"].get<double>();
  EXPECT_NEAR(predicted, report["a"]["expected_mean"].get<double>(), 1e-9);
  EXPECT_LT(predicted, 0);
  const double se = diff["sd"].get<double>() / std::sqrt(400.0);
  EXPECT_NEAR(diff["mean"].get<double>(), predicted, 4 * se);
  EXPECT_TRUE(diff["ci95"][0].get<double>() < diff["mean"].get<double>() &&
              diff["mean"].get<double>() < diff["ci95"][1].get<double>());
}

// ---- Walking away at the right roll, on fixed dice. ------------------------------------

// What, the player (with a standing Pass Line of $10) and the options, the dice (die1 * 10 +
// die2), and how the player leaves: the end, the player's rolls and the result.
using WalkCase = std::tuple<const char*, const char*, std::string, std::vector<int>, SessionEnd, int64_t, double>;

class SimWalksAway : public testing::TestWithParam<WalkCase> {};

// The runner's own functions on a table set up from the options, its dice from a roll
// file played back.
TEST_P(SimWalksAway, AtTheRightRoll) {
  const auto& [name, player, options, dice, end, rolls, result] = GetParam();
  TempDir dir;
  std::string bytes;
  for (int d : dice) bytes += static_cast<char>(d % 10 * 32 + d / 10 * 4);
  WriteText(dir.path / "dice.rol", bytes);
  const auto args = Args("dicehall-sim --player " + std::string(player) + " --bet 'Pass Line=10' " + options);
  std::vector<const char*> argv;
  for (const std::string& a : args) argv.push_back(a.c_str());
  SimOptions o;
  std::ostringstream out, err;
  ASSERT_EQ(ParseSimOptions(static_cast<int>(argv.size()), argv.data(), o, out, err), -1) << err.str();
  ASSERT_TRUE(o.research.on);
  SimPrepared p;
  RunFault fault;
  ASSERT_TRUE(PrepareSim(o, p, fault)) << fault.text;
  auto g = std::make_unique<Game>();
  QuietUi ui;
  Runner r;
  ASSERT_EQ(SetUpSimTable(*g, ui, o, p, "", false, r, err), 0) << err.str();
  ASSERT_TRUE(OpenRollFile(*g, g->Rolls, (dir.path / "dice.rol").string()));
  StartPlayback(*g, g->Rolls);
  SetSessionRules(*g, o, r);
  const SessionResult s = PlaySession(*g, r, 1, 1);
  ASSERT_EQ(s.players.size(), 1u);
  const PlayerSession& ann = s.players[0];
  EXPECT_EQ(SessionEndName(ann.end), std::string(SessionEndName(end)));
  EXPECT_EQ(ann.rolls, rolls);
  EXPECT_EQ(ann.result, Money::FromDouble(result));
  ASSERT_EQ(ann.records.size(), 1u) << "the player's session reaches the log as the player leaves";
  EXPECT_EQ(ann.records[0][slg::Ending] - ann.records[0][slg::Invested], ann.result);
  EXPECT_FALSE(SeatOccupied(*g, 1));
}

INSTANTIATE_TEST_SUITE_P(
    FixedDice, SimWalksAway,
    testing::Values(
        // Craps twice: $20 down on the come-out, nothing at risk.
        WalkCase("StopLoss", "Ann:100", "--stop-loss 20", {11, 12, 61}, SessionEnd::StopLoss, 2, -20),
        // A natural and an eleven.
        WalkCase("StopWin", "Ann:100", "--stop-win 20", {52, 56, 61}, SessionEnd::StopWin, 2, 20),
        // The Field loses twice ($20) while the Pass Line waits on its 5: the player bets
        // no more and leaves when the 5 comes.
        WalkCase("StopLossWaitsForTheLine", "Ann:100", "--bet Field=10 --stop-loss 20", {32, 42, 44, 41, 61},
                 SessionEnd::StopLoss, 4, -10),
        // The Place 6 wins $14 with the point on 4: it comes down, the line is decided later.
        WalkCase("StopWinTakesDownThePlaceBet", "Ann:100", "--bet 'Place 6=12' --stop-win 10", {22, 33, 41, 31, 61},
                 SessionEnd::StopWin, 4, 24),
        // The session's length with a point on: one roll more, to the seven-out.
        WalkCase("Rolls", "Ann:100", "--threads 1 --session-rolls 2", {22, 54, 43, 61}, SessionEnd::Rolls, 3, -10),
        // 0.025 hours at 120 rolls an hour: three rolls.
        WalkCase("Hours", "Ann:100", "--session-hours 0.025", {52, 56, 61, 61}, SessionEnd::Hours, 3, 30),
        // Nothing left for a line bet after craps.
        WalkCase("Broke", "Ann:10", "--threads 1 --session-rolls 50", {11, 61}, SessionEnd::Broke, 1, -10),
        // The roll file ends with the point on: the table stops and the line bet is lost.
        WalkCase("TableStopped", "Ann:100", "--threads 1 --session-rolls 100", {52, 22}, SessionEnd::TableStopped, 2,
                 0)));

// ---- Nothing shared by accident. -------------------------------------------------------

// A session's table has no folder: a script's output file is a fault counted in the
// report, and nothing but the logs lands in the data folder.
TEST(SimResearch, ASessionsTableWritesNoFile) {
  TempDir dir;
  WriteText(dir.path / "writer.bet", "Open/append file for output \"notes.txt\"\nOutput to file \"roll\"\n");
  const SimRun r = SimOk(With(Args("--sessions 3 --session-rolls 10 --seed 4 --json --player"),
                              {"Ann:100:" + (dir.path / "writer.bet").string()}),
                         (dir.path / "data").string());
  const json script = json::parse(r.out)["players"][0]["script"];
  ASSERT_FALSE(script["first_faults"].empty());
  EXPECT_EQ(script["first_faults"][0]["code"], 1013);
  EXPECT_EQ(script["first_faults"][0]["count"], 3 * 11) << "the activation and ten rolls, three sessions";
  std::vector<std::string> names;
  for (const auto& [name, bytes] : Files(dir.path / "data")) names.push_back(name);
  EXPECT_EQ(names, std::vector<std::string>{"Ann.slg"});
}

// A second run on a folder in use is refused before it writes anything.
TEST(SimResearch, ASecondRunOnTheSameFolderIsRefused) {
  TempDir dir;
  const std::string data = (dir.path / "data").string();
  fs::create_directories(data);
  const auto runs = {Args("--rolls 10 --player Ann --bet 'Pass Line=5'"),
                     Args("--sessions 2 --session-rolls 10 --player Ann --bet 'Pass Line=5'")};
  {
    FolderLock held;
    std::ostringstream err;
    ASSERT_TRUE(held.Take(data, err)) << err.str();
    for (const auto& run : runs) {
      const SimRun r = Sim(run, data);
      EXPECT_EQ(r.code, 1);
      EXPECT_NE(r.err.find("is in use by another run"), std::string::npos) << r.err;
    }
    EXPECT_TRUE(Files(data).empty());
  }
  for (const auto& run : runs) EXPECT_EQ(Sim(run, data).code, 0) << "the folder is free again";
}

// ---- Refusals. -------------------------------------------------------------------------

using Refusal = std::tuple<const char*, const char*>;  // the files merged, what is said

class SimMergeRefuses : public testing::TestWithParam<Refusal> {};

// Files that don't make one whole run are refused, and nothing is written.
TEST_P(SimMergeRefuses, FilesThatDontMakeOneRun) {
  const auto& [files, says] = GetParam();
  TempDir dir;
  const auto run = Args("--sessions 30 --session-rolls 50 --player Ann --bet 'Pass Line=5' --partial");
  for (const char* shard : {"1/3", "2/3", "3/3"}) {
    const std::string file = (dir.path / (std::string("p") + shard[0])).string();
    ASSERT_EQ(Sim(With(run, {file, "--seed", "1", "--shard", shard})).code, 0);
  }
  ASSERT_EQ(Sim(With(run, {(dir.path / "other").string(), "--seed", "2", "--shard", "2/3"})).code, 0);
  const std::string p2 = FileText(dir.path / "p2");
  WriteText(dir.path / "cut", p2.substr(0, p2.rfind('\n', p2.size() - 2) + 1));
  std::string damaged = p2;
  damaged.replace(damaged.find("\n") + 1, 8, "garbage!");
  WriteText(dir.path / "damaged", damaged);
  WriteText(dir.path / "junk", "DiceHall Sessions Log, Data Format 5.0\n");
  std::vector<std::string> args{"merge"};
  for (const std::string& name : Args(files)) args.push_back((dir.path / name).string());
  const fs::path data = dir.path / "data";
  const SimRun r = Sim(args, data.string());
  EXPECT_EQ(r.code, 1);
  EXPECT_NE(r.err.find(says), std::string::npos) << r.err;
  EXPECT_FALSE(fs::exists(data / "Ann.slg"));
}

INSTANTIATE_TEST_SUITE_P(Files, SimMergeRefuses,
                         testing::Values(Refusal{"p1 p2", "sessions 21 to 30 of 30 are missing"},
                                         Refusal{"p1 p3", "sessions 11 to 20 of 30 are missing"},
                                         Refusal{"p1 p2 p2 p3", "repeats sessions 11 to 20"},
                                         Refusal{"p1 other p3", "belong to different runs"},
                                         Refusal{"p1 cut p3", "the file is cut short"},
                                         Refusal{"p1 damaged p3", "session 11 can't be read"},
                                         Refusal{"p1 junk", "not a partial result file"},
                                         Refusal{"p1 none", "none: the file can't be read"}));

// ---- The statistics of the answers. ----------------------------------------------------

TEST(SampleStats, StudentsTAndTheQuantiles) {
  // Two-sided 95% points of t from the tables.
  const struct { double df, t; } points[] = {{1, 12.7062}, {4, 2.7764}, {10, 2.2281}, {30, 2.0423}, {1e6, 1.9600}};
  for (const auto& p : points) EXPECT_NEAR(StudentTQuantile(0.975, p.df), p.t, 1e-4) << p.df;
  EXPECT_NEAR(StudentTCdf(2.2281, 10), 0.975, 1e-5);
  const std::vector<double> sorted{1, 2, 3, 4, 10};
  EXPECT_DOUBLE_EQ(Quantile(sorted, 0.5), 3);
  EXPECT_DOUBLE_EQ(Quantile(sorted, 0.25), 2);
  EXPECT_DOUBLE_EQ(Quantile(sorted, 0.95), 8.8);  // between 4 and 10
  EXPECT_DOUBLE_EQ(Quantile(sorted, 0.01), 1.04);
  const SampleSummary s = Summarize({2, 4, 4, 4, 5, 5, 7, 9});
  EXPECT_DOUBLE_EQ(s.mean, 5);
  EXPECT_NEAR(s.sd, 2.13809, 1e-5);
  EXPECT_NEAR(s.high - s.mean, 2.3646 * 2.13809 / std::sqrt(8.0), 1e-3);
}

}  // namespace
