// dicehall-sim's run: a single run on one table, the sessions log and the report of what
// was played; or a run of many independent sessions, a comparison, a merge.

#include "app/sim/sim.h"

#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <ostream>
#include <thread>
#include <vector>

#include "app/sim/data_folder.h"
#include "app/sim/rules_json.h"
#include "app/sim/sim_report.h"
#include "app/sim/sim_sessions.h"
#include "app/sim/sim_table.h"
#include "autobet/interpreter.h"
#include "automation/auto_roll.h"
#include "dice/seeding.h"
#include "engine/roll_cycle.h"
#include "stats/sessions_log.h"

namespace {

extern "C" void OnInterrupt(int) { RequestSimStop(); }

// Ctrl-C goes to the run while it lives.
class InterruptHandler {
 public:
  InterruptHandler() {
    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &previous_);
  }
  ~InterruptHandler() { sigaction(SIGINT, &previous_, nullptr); }

 private:
  struct sigaction previous_ {};
};

// The progress line on a terminal (at most ten times a second), the wait for a pop-up
// roll file, and Ctrl-C, which stops a script cycle as well as the rolls.
class SimUi : public QuietUi {
 public:
  Game* game = nullptr;
  const Runner* runner = nullptr;
  bool progress = false;
  std::string popupFile;

  void Yield() override {
    if (game == nullptr) return;
    if (SimStopRequested()) {
      StopAutoBet(*game);
      StopRolling(*game);
      return;
    }
    const bool waiting = game->Auto.StatusText == "Waiting for Roll File";
    if (waiting) {
      if (!waitShown_) {
        fmt::print(stderr, "{}Waiting for the pop-up roll file {} (Ctrl-C stops)\n", progressShown_ ? "\n" : "",
                   popupFile);
        waitShown_ = true;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      return;
    }
    waitShown_ = false;
    if (progress && runner) ShowProgress();
  }

  void ClearProgress() {
    if (progressShown_) fmt::print(stderr, "\r{:79}\r", "");
    progressShown_ = false;
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point start_ = Clock::now(), last_ = start_;
  bool progressShown_ = false, waitShown_ = false;

  void ShowProgress() {
    const Clock::time_point now = Clock::now();
    if (now - last_ < std::chrono::milliseconds(100)) return;
    last_ = now;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const int64_t done = runner->played, asked = runner->asked;
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    const double share = asked > 0 ? static_cast<double>(done) / static_cast<double>(asked) : 0;
    const int filled = static_cast<int>(share * 20);
    const int64_t left = rate > 0 ? static_cast<int64_t>(static_cast<double>(asked - done) / rate) : 0;
    fmt::print(stderr, "\r[{:<20}] {:3.0f}%  {} of {} rolls  {:.0f} rolls/s  {}:{:02} left ", std::string(filled, '#'),
               100 * share, done, asked, rate, left / 60, left % 60);
    std::fflush(stderr);
    progressShown_ = true;
  }
};

// Each player's sessions log as it stands: the number of sessions it already holds.
std::vector<int32_t> SessionCounts(const Game& g) {
  std::vector<int32_t> counts(kSeats, 0);
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    std::string error;
    int32_t n = 0;
    const std::string path = g.SessionsLogPath[s].empty() ? DefaultSessionsLogPath(g, s) : g.SessionsLogPath[s];
    if (std::filesystem::exists(path) && ReadSessionsCount(path, n, error, "dicehall-sim")) counts[s] = n;
  }
  return counts;
}

// The spread of the sessions this run added to each player's log.
std::vector<SessionSpread> SessionsOfRun(const Game& g, const std::vector<int32_t>& before) {
  std::vector<SessionSpread> spreads(kSeats);
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    SessionsLogFile log;
    std::string error;
    const std::string path = g.SessionsLogPath[s].empty() ? DefaultSessionsLogPath(g, s) : g.SessionsLogPath[s];
    if (!ReadSessionsLog(path, log, error, "dicehall-sim")) continue;
    const size_t from = std::min(log.Records.size(), static_cast<size_t>(before[s]));
    spreads[s] = SpreadOf({log.Records.begin() + static_cast<std::ptrdiff_t>(from), log.Records.end()});
  }
  return spreads;
}

// The rolls of the run. Active scripts are compiled and run once as activation runs
// them, "initializing script" true, before the first roll.
void PlayRun(Game& g, Runner& r) {
  if (r.asked == 0) return;
  StartHyperDrive(g);
  if (!StartScripts(g)) return;
  AfterEachRoll(g, &r);
  if (g.Auto.AutoRollActive) RollDice(g);
  if (SimStopRequested()) r.interrupted = true;
  StopRolling(g);
}

// The rules of a saved game with the options' changes, for --dump-rules.
int DumpGameRules(const SimOptions& o, std::ostream& out, std::ostream& err) {
  auto game = std::make_unique<Game>();
  Game& g = *game;
  QuietUi ui;
  g.Ui = &ui;
  g.Time = &DefaultClock();
  SetDefaultGame(g);  // no folder: a look at the rules writes nothing
  if (!OpenSimGame(g, o.gameFile, err)) return 1;
  RuleSet rules = g.Rules;
  RunFault fault;
  if (!BuildRules(o, rules, fault)) return TellFault(fault, err);
  out << RulesToJson(rules).dump(2) << "\n";
  return 0;
}

// One table played for the run's rolls, on the data folder.
int RunSingle(const SimOptions& o, const SimPrepared& p, std::ostream& out, std::ostream& err) {
  // A saved game is tried first on a table that writes nothing, so that one that can't be
  // opened, or lacks a player the options name, is refused before the folder is made.
  if (!o.gameFile.empty()) {
    auto trial = std::make_unique<Game>();
    QuietUi quiet;
    Runner r;
    if (const int code = SetUpSimTable(*trial, quiet, o, p, "", false, r, err); code != 0) return code;
  }
  const std::string folder = ResolveDataDir(o.dataDir);
  if (!MakeDataFolder(folder, err)) return 1;
  // The table writes its roll history and the logs in the folder from its first moment.
  FolderLock lock;
  if (!lock.Take(folder, err)) return 1;
  auto game = std::make_unique<Game>();
  Game& g = *game;
  SimUi ui;
  Runner runner;
  runner.asked = o.rolls;
  if (const int code = SetUpSimTable(g, ui, o, p, folder, true, runner, err); code != 0) return code;
  if (o.seeded) {
    if (!SeedRngWith(g, static_cast<int32_t>(o.seed))) {
      err << "dicehall-sim: --seed " << o.seed
          << ": Seed value out of limits. Acceptable values 1 to 2147483647 (RNG#3: 1 to 999999)\n";
      return 2;
    }
  }
  const std::vector<int32_t> before = SessionCounts(g);

  if (OnlineMode(o.online)) {
    // An online table plays until its --rolls have gone out, or until it is stopped.
    if (!o.online.rollsGiven) runner.asked = INT64_MAX;
    runner.online = true;
    g.Auto.AfterRoll = &AfterEachRoll;
    g.Auto.AfterRollData = &runner;
    return RunOnline(g, o, out, err);
  }
  ui.game = &g;
  ui.runner = &runner;
  ui.progress = o.progress;
  ui.popupFile = o.dice.popupFile;
  // The game keeps its own Auto-Roll settings; the run borrows them.
  const Money autoStop = g.Auto.AutoStopRolls;
  const int throttle = g.Auto.AutoRollThrottle;
  g.Auto.AfterRoll = &AfterEachRoll;
  g.Auto.AfterRollData = &runner;
  PlayRun(g, runner);
  ui.ClearProgress();
  g.Auto.AfterRoll = nullptr;
  g.Auto.AfterRollData = nullptr;
  g.Auto.AutoStopRolls = autoStop;
  SetAutoRollThrottle(g, throttle);

  // The session in progress ends in the logs too, unless a saved game carries it on; and
  // every file is flushed.
  if (o.saveFile.empty() && g.Stats.RollCount[kSessionScope][0] > 0)
    for (int s = 1; s < kSeats; ++s)
      if (SeatOccupied(g, s)) AddSessionRecord(g, s, g.SessionsLogPath[s]);
  g.Rolls.RollFile.Flush();
  g.Rolls.History.Flush();

  RunOutcome outcome;
  outcome.asked = runner.asked;
  outcome.played = runner.played;
  if (o.seeded) outcome.seed = o.seed;
  if (runner.interrupted) outcome.stopped = "Interrupted.";
  else if (runner.played < runner.asked)
    outcome.stopped = g.StopReason.empty() ? std::string("The table stopped.") : g.StopReason;
  const std::vector<SessionSpread> spreads = SessionsOfRun(g, before);
  if (o.json) WriteJsonReport(g, outcome, spreads, out);
  else WriteTextReport(g, outcome, spreads, out);
  if (!o.saveFile.empty() && !SaveSimGame(g, o.saveFile, err)) return 1;

  if (g.AutoBet.RunawaySeat != 0) {
    err << "dicehall-sim: " << g.StopReason << "\n";
    return 1;
  }
  if (runner.interrupted) return 130;
  if (g.StopReason == "Stopped due to Dice Roll File value out of limits.") return 1;
  return 0;
}

}  // namespace

int RunSim(const SimOptions& o, std::ostream& out, std::ostream& err) {
  if (o.bench) return RunSimBench(out);
  if (!o.checkFile.empty()) return RunCheck(o, out, err);
  if (o.command == SimCommand::Merge) return RunMerge(o, out, err);
  ClearSimStop();
  InterruptHandler interrupts;
  if (o.command == SimCommand::Compare) return RunCompare(o, out, err);
  RunFault fault;
  SimPrepared prepared;
  // Everything that can be refused is, before anything is written; a saved game's rules
  // are known once it is open.
  if (!PrepareSim(o, prepared, fault)) return TellFault(fault, err);
  if (o.dumpRules) {
    if (!o.gameFile.empty()) return DumpGameRules(o, out, err);
    out << RulesToJson(prepared.rules).dump(2) << "\n";
    return 0;
  }
  if (o.research.on) return RunResearch(o, prepared, out, err);
  return RunSingle(o, prepared, out, err);
}
