// Runs of dicehall-sim as a student of systems makes them: dice sources that replay,
// sessions that reach their logs, rules from JSON, the events log, scripts that misbehave,
// and a run that goes on as long as somebody can shoot.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <regex>
#include <thread>

#include "dice/probability_file.h"
#include "stats/sessions_log_file.h"
#include "storage/paths.h"
#include "tests/app/sim_args.h"
#include "tests/test_support.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

std::vector<SessionRecord> Sessions(const fs::path& slg) {
  SessionsLogFile log;
  std::string error;
  EXPECT_TRUE(ReadSessionsLog(slg.string(), log, error, "test")) << error;
  return log.Records;
}

// ---- Dice sources. --------------------------------------------------------------------

class SimGenerators : public testing::TestWithParam<int> {};

TEST_P(SimGenerators, RecordTheSameRollsForTheSameSeedAndPlayThemBack) {
  TempDir dir;
  const std::string rng = std::to_string(GetParam());
  const auto play = Args("--rolls 300 --player Ann:1000 --bet 'Pass Line=5' --json");
  auto record = [&](const char* seed, const std::string& file) {
    return SimOk(With(play, {"--rng", rng, "--seed", seed, "--record", (dir.path / file).string()}), dir.path.string())
        .out;
  };
  const std::string report = record("4242", "a.rol");
  record("4242", "b.rol");
  record("5151", "c.rol");
  const std::string a = FileText(dir.path / "a.rol");
  ASSERT_EQ(a.size(), 300u);
  EXPECT_EQ(a, FileText(dir.path / "b.rol"));
  EXPECT_NE(a, FileText(dir.path / "c.rol"));

  EXPECT_EQ(Sim(With(play, {"--seed", "4242", "--playback", (dir.path / "a.rol").string()}), dir.path.string()).out,
            report);
  SimRun past = SimOk(
      {"--rolls", "400", "--player", "Ann:1000", "--bet", "Pass Line=5", "--playback", (dir.path / "a.rol").string()},
      dir.path.string());
  EXPECT_EQ(past.out.rfind("Played 300 of 400 rolls: Stopped due to end of Dice Roll File reached.\n", 0), 0u)
      << past.out;
}

INSTANTIATE_TEST_SUITE_P(EveryGenerator, SimGenerators, testing::Range(1, 9));

// A table whose sevens weigh twice as much shows them that often.
TEST(SimDice, PercentageDiceRollAsTheirTable) {
  TempDir dir;
  ProbabilityTable table;
  SetDefaultProbabilities(table);
  for (const DiamondCell& c : kDiamond) table.Value(c.x, c.y) = c.die1 + c.die2 == 7 ? 4762 : 2381;
  std::string error;
  ASSERT_TRUE(SaveProbabilityFile((dir.path / "sevens.prb").string(), table, error)) << error;
  // The chance of the sevens as the draw reads the table: cell by cell up to 100000.
  double expected = 0, cumulative = 0;
  for (const DiamondCell& c : kDiamond) {
    const double before = std::min(cumulative, 100000.0);
    cumulative += table.Value(c.x, c.y);
    if (c.die1 + c.die2 == 7) expected += (std::min(cumulative, 100000.0) - before) / 100000.0;
  }
  const int rolls = 1000000;
  SimOk({"--rolls", std::to_string(rolls), "--seed", "17", "--prb", (dir.path / "sevens.prb").string(), "--player",
         "Ann", "--record", (dir.path / "r.rol").string()},
        dir.path.string());
  int sevens = 0;
  for (char b : FileText(dir.path / "r.rol"))
    sevens += ((b >> 2) & 7) + ((static_cast<unsigned char>(b) >> 5) & 7) == 7;
  const double sd = std::sqrt(rolls * expected * (1 - expected));
  EXPECT_NEAR(sevens, rolls * expected, 4 * sd);
  EXPECT_GT(expected, 0.28);
}

// ---- Sessions. ------------------------------------------------------------------------

// Sessions are independent: each starts from the buy-in, and a player walks away at the
// session's length once nothing is at risk (a one-roll bettor at once, a line bettor
// once the line is decided).
TEST(SimSessions, EachSessionReachesEveryPlayersLogAndTheReport) {
  TempDir dir;
  WriteText(dir.path / "unit.bet",
            "If initializing script Then cs1 = 5\nEndIf\n"
            "If next roll is a comeout roll and passline = 0 Then Bet cs1 on passline\nEndIf\n");
  const auto args = With(Args("--sessions 20 --session-rolls 1000 --seed 8 --player Ann:5000 --player Bob:30000 "
                              "--bet 'Ann:Pass Line=10' --bet Bob:Field=5 --json --player"),
                         {"Cy:5000:" + (dir.path / "unit.bet").string()});
  const json report = json::parse(SimOk(args, dir.path.string()).out);
  EXPECT_EQ(report["sessions"]["played"], 20);
  EXPECT_GE(report["rolls"].get<int64_t>(), 20000);
  for (const json& p : report["players"]) {
    const std::string name = p["name"].get<std::string>();
    const std::vector<SessionRecord> records = Sessions(dir.path / (name + ".slg"));
    ASSERT_EQ(records.size(), 20u);
    double sum = 0;
    for (const SessionRecord& s : records) {
      sum += (s[slg::Ending] - s[slg::Invested]).ToDouble();
      EXPECT_EQ(s[slg::Invested].ToDouble(), p["buy_in"].get<double>()) << name << ": every session buys in afresh";
      EXPECT_GT(s[slg::BetsDecided].raw, 0) << "every session was played";
      const int64_t rolls = s[slg::Rolls].raw / Money::kScale;
      if (name == "Bob") EXPECT_EQ(rolls, 1000);
      else EXPECT_TRUE(rolls >= 1000 && rolls < 1100) << name << " " << rolls;
    }
    EXPECT_EQ(p["sessions"], 20);
    EXPECT_NEAR(p["result"]["mean"].get<double>(), sum / 20, 1e-9);
  }
  ASSERT_EQ(Sim(args, dir.path.string()).code, 0);
  EXPECT_EQ(Sessions(dir.path / "Ann.slg").size(), 40u) << "a second run appends";
}

TEST(SimSessions, RollsCountTheWholeRunWhateverSessionsAScriptStarts) {
  TempDir dir;
  WriteText(dir.path / "every100.bet",
            "If not initializing script and not beginning new session Then Add 1 to cs1\nEndIf\n"
            "If cs1 = 100 Then\n  cs1 = 0\n  Start new session\nEndIf\n"
            "If next roll is a comeout roll and passline = 0 Then Bet 5 on passline\nEndIf\n");
  const SimRun r = SimOk(
      With(Args("--rolls 100000 --seed 3 --json --player"), {"Ann:100000:" + (dir.path / "every100.bet").string()}),
      dir.path.string());
  EXPECT_EQ(json::parse(r.out)["rolls"], 100000);
  const std::vector<SessionRecord> records = Sessions(dir.path / "Ann.slg");
  ASSERT_EQ(records.size(), 1000u);
  for (const SessionRecord& s : records) EXPECT_EQ(s[slg::Rolls], Money::Dollars(100));
}

// Ctrl-C: every worker finishes its session in progress; the logs hold the sessions
// played, whole, the same ones for every player.
TEST(SimSessions, AnInterruptedRunLeavesWholeSessionsInTheLogs) {
  TempDir dir;
  const std::string data = dir.path.string();
  const pid_t pid = fork();
  ASSERT_GE(pid, 0);
  if (pid == 0) {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, STDOUT_FILENO);
    execl(DICEHALL_SIM_PATH, "dicehall-sim", "--data-dir", data.c_str(), "--sessions", "1000000", "--session-rolls",
          "997", "--threads", "2", "--player", "Ann:-1", "--player", "Bob:-1", "--bet", "Ann:Pass Line=10", "--bet",
          "Bob:Place 6=12", static_cast<char*>(nullptr));
    _exit(127);
  }
  const fs::path slg = dir.path / "Bob.slg";
  for (int i = 0; i < 500 && (!fs::exists(slg) || fs::file_size(slg) < 256 * 20); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  kill(pid, SIGINT);
  int status = 0;
  ASSERT_EQ(waitpid(pid, &status, 0), pid);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 130);
  const std::vector<SessionRecord> ann = Sessions(dir.path / "Ann.slg"), bob = Sessions(slg);
  EXPECT_GE(bob.size(), 20u);
  EXPECT_EQ(ann.size(), bob.size());
  for (const char* name : {"Ann.slg", "Bob.slg"})
    EXPECT_EQ(fs::file_size(dir.path / name), 256 * (bob.size() + 1)) << name;
  for (const SessionRecord& s : bob) EXPECT_EQ(s[slg::Rolls], Money::Dollars(997)) << "no session is cut short";
  for (const SessionRecord& s : ann) EXPECT_GE(s[slg::Rolls], Money::Dollars(997));
}

// ---- Rules. ---------------------------------------------------------------------------

TEST(SimRules, ADumpReadBackPlaysAsTheDefaults) {
  TempDir dir;
  const SimRun dump = SimOk({"--dump-rules"}, dir.path.string());
  const json rules = json::parse(dump.out);
  EXPECT_EQ(rules["OddsAllowed68"], 5);
  EXPECT_EQ(rules["BetPayoff"]["Place 6"]["PayoffPay"], 7);
  EXPECT_EQ(rules["FieldPayoff"]["21"]["PayoffPay"], 2);
  WriteText(dir.path / "r.json", dump.out);
  const auto play = Args("--rolls 3000 --seed 5 --player Ann --bet 'Pass Line=10' --bet 'Place 6=12' --json");
  EXPECT_EQ(Sim(With(play, {"--rules", (dir.path / "r.json").string()}), dir.path.string()).out,
            Sim(play, dir.path.string()).out);

  WriteText(dir.path / "part.json", R"({"MaxPlacardBet": 2000, "BetPayoff": {"place 6": {"PayoffPay": 6}}})");
  const SimRun changed = SimOk(
      {"--dump-rules", "--rules", (dir.path / "part.json").string(), "--rule", "CheckDenom.5=1000"}, dir.path.string());
  json expected = rules;
  expected["MaxPlacardBet"] = 2000;
  expected["BetPayoff"]["Place 6"]["PayoffPay"] = 6;
  expected["CheckDenom"]["5"] = 1000;
  EXPECT_EQ(json::parse(changed.out), expected) << "a partial file and a --rule change only what they name";
}

// ---- The events log, as its layout puts it. -------------------------------------------

TEST(SimEventsLog, AShortRunWritesTheLinesOfItsLayout) {
  TempDir dir;
  // 2 (craps), 5 (point), 7 (seven-out): the lines of a played roll are the events log's
  // own; these are the run's (the roll file, the shooter's hand that ends the run). Bob
  // bets nothing and so can't shoot.
  const int dice[][2] = {{1, 1}, {4, 1}, {6, 1}};
  std::string bytes;
  for (const auto& d : dice) bytes += static_cast<char>(d[1] * 32 + d[0] * 4);
  WriteText(dir.path / "seven.rol", bytes);
  const std::string rol = (dir.path / "seven.rol").string();
  SimOk(With(Args("--rolls 3 --seed 7 --player Ann:100 --player Bob:200 --bet 'Ann:Pass Line=10' --playback"),
             {rol, "--events-log"}),
        dir.path.string());
  const std::vector<std::string> golden = {
      " New session started DATE @ TIME",
      "    Players:",
      "      Ann at stick 4-left with $100",
      "      Bob at stick 3-left with $200",
      "    Dice roll file playback activated (" + rol + ")",
      "----New shooter (Ann) coming out----------",
      "    RNG #1 seeded: 7",
      "    Bets:",
      "      Ann bet $10 on Pass Line",
      " Roll #1:  2 (1.1) from roll file",
      "    Miss (craps natural)",
      "    Wins/losses:",
      "      Ann lost $10 on Pass Line",
      "    Bankroll:",
      "      Ann decreased to $90 ($10 loss)",
      " Roll #2:  5 (4.1) from roll file",
      "    Point established",
      " Roll #3:  7 (6.1) from roll file",
      "    Miss (seven-out)",
      "    Wins/losses:",
      "      Ann lost $10 on Pass Line",
      "    Bankroll:",
      "      Ann decreased to $80 ($10 loss)",
      "----Same shooter (Ann) coming out----------",
  };
  const std::string written = FileText(dir.path / "Events Log.txt");
  std::string expected, index;
  for (const std::string& line : golden) expected += line + "\r\n";
  ASSERT_EQ(
      std::regex_replace(written, std::regex(R"(started \d+/\d+/\d{4} @ \d+:\d\d:\d\d [AP]M)"), "started DATE @ TIME"),
      expected);
  // The index holds each line's first byte in the file as written, from 1.
  for (size_t at = 0; at < written.size(); at = written.find("\r\n", at) + 2) {
    const uint32_t place = static_cast<uint32_t>(at) + 1;
    index.append(reinterpret_cast<const char*>(&place), 4);
  }
  EXPECT_EQ(FileText(dir.path / "Events Log.ref"), index);
}

// ---- Scripts that misbehave. ----------------------------------------------------------

TEST(SimScripts, WriteNothingOutsideTheDataFolder) {
  TempDir dir;
  const fs::path data = dir.path / "data", outside = dir.path / "outside";
  fs::create_directories(data);
  fs::create_directories(outside);
  fs::create_directory_symlink(outside, data / "link");
  WriteText(dir.path / "escape.bet",
            "Open/clear file for output \"../x.txt\"\nOutput to file \"one\"\n"
            "Open/append file for output \"" +
                (outside / "y.txt").string() +
                "\"\nOutput to file \"two\"\n"
                "Open/append file for output \"link/z.txt\"\nOutput to file \"three\"\n"
                "Open/append file for output \"ok.txt\"\nOutput to file \"inside\"\n");
  SimRun r =
      SimOk({"--rolls", "20", "--seed", "2", "--player", "Ann:100:" + (dir.path / "escape.bet").string(), "--json"},
            data.string());
  EXPECT_TRUE(fs::is_empty(outside));
  EXPECT_FALSE(fs::exists(dir.path / "x.txt"));
  EXPECT_NE(FileText(data / "ok.txt").find("inside"), std::string::npos);
  const json script = json::parse(r.out)["players"][0]["script"];
  // Each escape is refused on each of the 20 rolls and at the activation.
  std::vector<int> refusedLines;
  for (const json& f : script["first_faults"])
    if (f["code"] == 1013 && f["count"] == 21) refusedLines.push_back(f["line"]);
  EXPECT_EQ(refusedLines, (std::vector<int>{1, 3, 5}));
}

TEST(SimScripts, AnEndlessCycleStopsTheRunWithItsLine) {
  TempDir dir;
  WriteText(dir.path / "loop.bet", "' counts for ever\nDo\n  Add 1 to cs1\nLoop\n");
  WriteText(dir.path / "restart.bet", "If bankroll < 100 Then Start new session\nEndIf\n");
  for (const char* file : {"loop.bet", "restart.bet"}) {
    SimRun r = Sim({"--rolls", "1000", "--player", "Ann:50:" + (dir.path / file).string()}, dir.path.string());
    EXPECT_EQ(r.code, 1) << file;
    EXPECT_NE(r.err.find("Ann's script " + (dir.path / file).string() + " ran more than"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find(std::string("at line ") + (file[0] == 'l' ? "3" : "1")), std::string::npos) << r.err;
  }
}

// ---- The dice go on while somebody can shoot. -----------------------------------------

TEST(SimShooters, APlayerWhoCannotBetTheLinePassesTheDice) {
  const SimRun r =
      SimOk(Args("--player Ann:15 --player Bob:100000 --bet 'Ann:Pass Line=10' --bet 'Bob:Pass Line=10' "
                 "--rolls 100000 --seed 5 --json"));
  const json report = json::parse(r.out);
  EXPECT_EQ(report["rolls"], 100000);
  EXPECT_FALSE(report.contains("stopped"));
  EXPECT_GT(report["hands"].get<int>(), 10000) << "Bob went on shooting";
  EXPECT_LT(report["players"][0]["bankroll"].get<double>(), 10.0) << "Ann could no longer bet the line";
}

// ---- Names a script gives for writing. ------------------------------------------------

TEST(InsideFolder, KeepsEveryNameInTheFolder) {
  TempDir dir;
  fs::create_directories(dir.path / "sub");
  fs::create_directory_symlink("/tmp", dir.path / "out");
  const std::string base = fs::weakly_canonical(dir.path).string();
  // Where each name lands, "" when it is refused.
  const std::pair<const char*, const char*> cases[] = {
      {"x.txt", "/x.txt"},     {"sub/x.txt", "/sub/x.txt"}, {"new/x.txt", "/new/x.txt"}, {"../x.txt", ""},
      {"sub/../../x.txt", ""}, {"/etc/passwd", ""},         {"out/x.txt", ""},           {"", ""},
      {"sub/..", ""}};
  for (const auto& [name, lands] : cases)
    EXPECT_EQ(InsideFolder(dir.path.string(), name), *lands ? base + lands : "") << name;
}

}  // namespace
