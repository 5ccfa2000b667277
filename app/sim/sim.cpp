// dicehall-sim's run: the table set up from the options, sessions of Hyper-Drive, the
// sessions logs, and the report of what was played.

#include "app/sim/sim.h"

#include <fmt/format.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <thread>
#include <vector>

#include "app/sim/rules_json.h"
#include "app/sim/sim_report.h"
#include "autobet/interpreter.h"
#include "automation/auto_roll.h"
#include "dice/probability_file.h"
#include "dice/roll_files.h"
#include "dice/seeding.h"
#include "engine/game_state.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"
#include "stats/events_log.h"
#include "stats/sessions_log.h"
#include "storage/hot_keys.h"
#include "storage/rule_validation.h"

namespace {

volatile std::sig_atomic_t gStopRequested = 0;

extern "C" void OnInterrupt(int) { gStopRequested = 1; }

struct StandingBet {
  int seat;
  int bet;
  Money amount;
};

// The runner between rolls: its standing bets, how far the run is, and why it stopped.
struct Runner {
  std::array<StandingBet, 64> bets{};
  int count = 0;
  int64_t asked = 0;
  int64_t played = 0;
  int64_t sessionRolls = 0;  // 0: the run is one session
  bool primed = false;       // the hook has run once, before the first roll
  bool sessionOver = false;
  bool finished = false;
  bool interrupted = false;
  // At an online table the host passes the dice itself, so that its clients hear of it.
  bool online = false;
};

// Before every roll: each standing bet that is absent and that the table allows. Line
// bets are made on the come-out, never as put bets.
void PlaceStanding(Game& g, const Runner& r) {
  for (int i = 0; i < r.count; ++i) {
    const StandingBet& b = r.bets[i];
    if (g.BetAmount[b.seat][b.bet].raw > 0) continue;
    if ((b.bet == bet::PassLine || b.bet == bet::DontPass) && !IsComeOut(g)) continue;
    ChangeBet(g, b.seat, b.bet, b.amount);
  }
}

bool HasLineBet(const Game& g, int seat) {
  return seat > 0 && (g.BetAmount[seat][bet::PassLine].raw > 0 || g.BetAmount[seat][bet::DontPass].raw > 0);
}

// A shooter who can't make the line bet (the bankroll is gone, or the script no longer
// bets) hands the dice on, as a player at the table would, until one has it. When nobody
// has, the roll is refused with the table's own stop.
void KeepAShooter(Game& g) {
  if (g.Rules.BetNeededToShoot != 1 || !IsComeOut(g)) return;
  for (int tries = 0; tries < kPlayerSeats && !HasLineBet(g, g.Table.Shooter); ++tries) {
    const int before = g.Table.Shooter;
    PassDice(g, kPassSilent);
    if (g.Table.Shooter == before) break;
  }
}

void StopRolling(Game& g) {
  if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
}

// After every roll's scripts (and once before the first roll): count the roll, end the
// session or the run when due, and make the bets of the next roll.
void AfterEachRoll(Game& g, void* data) {
  Runner& r = *static_cast<Runner*>(data);
  if (r.primed) {
    ++r.played;
    if (gStopRequested) {
      r.interrupted = true;
      StopRolling(g);
    } else if (r.played >= r.asked) {
      r.finished = true;
      StopRolling(g);
    } else if (r.sessionRolls > 0 && r.played % r.sessionRolls == 0) {
      r.sessionOver = true;
      StopRolling(g);
    }
  }
  r.primed = true;
  PlaceStanding(g, r);
  if (!r.online) KeepAShooter(g);
}

// The progress line on a terminal (at most ten times a second), the wait for a pop-up
// roll file, and Ctrl-C, which stops a script cycle as well as the rolls.
class SimUi : public HeadlessUi {
 public:
  Game* game = nullptr;
  const Runner* runner = nullptr;
  bool progress = false;
  std::string popupFile;

  // Boxes a script opens (a Yes/No question is asked even in Hyper-Drive) are answered
  // by default and not kept: a run of millions of rolls would keep millions of them.
  MessageReply ShowMessage(const MessageRequest& request) override {
    MessageReply reply = HeadlessUi::ShowMessage(request);
    transcript.clear();
    return reply;
  }

  void Yield() override {
    if (game == nullptr) return;
    if (gStopRequested) {
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

// A refusal before anything is written: the message, and the exit code. A script's
// compile fault stands as a compiler prints it, FILE:LINE:COL-LINE:COL: message.
struct RunFault {
  int code;
  std::string text;
  bool ownLine = false;
};

bool Readable(const std::string& path) {
  std::ifstream f(path, std::ios::binary);
  return static_cast<bool>(f);
}

// The rules of the run: those it starts from (the defaults, or a saved game's), the file,
// then each --rule; validated as the configuration window validates them when it closes.
bool BuildRules(const SimOptions& o, RuleSet& rules, RunFault& fault) {
  bool rollRate = false;
  std::string error;
  if (!o.rulesFile.empty()) {
    std::ifstream f(o.rulesFile);
    if (!f) {
      fault = {1, "--rules " + o.rulesFile + ": the file can't be read."};
      return false;
    }
    nlohmann::json json = nlohmann::json::parse(f, nullptr, false);
    if (json.is_discarded()) {
      fault = {2, "--rules " + o.rulesFile + ": this is not JSON."};
      return false;
    }
    if (!ApplyRulesJson(rules, json, error, rollRate)) {
      fault = {2, "--rules " + o.rulesFile + ": " + error};
      return false;
    }
  }
  for (const std::string& assignment : o.ruleAssignments)
    if (!ApplyRuleAssignment(rules, assignment, error, rollRate)) {
      fault = {2, "--rule " + assignment + ": " + error};
      return false;
    }
  const RuleCheck check = ValidateRules(rules, rollRate);
  if (!check.ok) {
    fault = {2, "the rules are refused: " + check.message};
    return false;
  }
  return true;
}

// Every dice file the run reads is read once before the table is set up, so that a bad
// one is told with nothing written.
bool CheckDiceFiles(const SimOptions& o, RunFault& fault) {
  const SimDice& d = o.dice;
  namespace fs = std::filesystem;
  std::error_code ec;
  if (!d.prbFile.empty()) {
    ProbabilityTable table;
    std::string error;
    if (!LoadProbabilityFile(d.prbFile, table, error)) {
      fault = {1, "--prb " + d.prbFile + ": " + error};
      return false;
    }
  }
  if (!d.playbackFile.empty()) {
    std::ifstream f(d.playbackFile, std::ios::binary);
    if (!f) {
      fault = {1, "--playback " + d.playbackFile + ": the file can't be read."};
      return false;
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(f)), std::istreambuf_iterator<char>());
    if (static_cast<int64_t>(bytes.size()) < d.fromRoll) {
      fault = {1, fmt::format("--playback {}: the file has {} rolls; there is no roll {}.", d.playbackFile,
                              bytes.size(), d.fromRoll)};
      return false;
    }
    for (size_t i = static_cast<size_t>(d.fromRoll - 1); i < bytes.size(); ++i) {
      const auto b = static_cast<uint8_t>(bytes[i]);
      const int d1 = RollByteDie1(b), d2 = RollByteDie2(b);
      if (d1 < 1 || d1 > 6 || d2 < 1 || d2 > 6) {
        fault = {1, fmt::format("--playback {}: A dice roll value has been found to be out of limits (roll {}).",
                                d.playbackFile, i + 1)};
        return false;
      }
    }
  }
  for (const std::string* file : {&d.recordFile, &d.popupFile}) {
    if (file->empty()) continue;
    const fs::path parent = fs::absolute(*file, ec).parent_path();
    if (!fs::is_directory(parent, ec)) {
      fault = {1, (file == &d.recordFile ? "--record " : "--popup ") + *file + ": the folder " + parent.string() +
                      " doesn't exist."};
      return false;
    }
  }
  if (d.rng == 3 && o.seeded && o.seed > 999999) {
    fault = {2, "--seed " + std::to_string(o.seed) +
                    ": Seed value out of limits. Acceptable values 1 to 2147483647 (RNG#3: 1 to 999999)"};
    return false;
  }
  return true;
}

// Scripts are read and compiled before anything is set up, so that a fault is told the
// way --check tells it. Returns each player's lines, and whether the script bets a line.
bool ReadScripts(const SimOptions& o, std::vector<std::vector<std::string>>& scripts, std::vector<bool>& makesLineBets,
                 RunFault& fault) {
  scripts.assign(o.players.size(), {});
  makesLineBets.assign(o.players.size(), false);
  std::vector<std::string> names(kPlayerSeats);
  for (size_t k = 0; k < o.players.size(); ++k) names[k] = o.players[k].name;
  for (size_t i = 0; i < o.players.size(); ++i) {
    const SimPlayer& p = o.players[i];
    if (p.script.empty()) continue;
    if (!ReadScriptLines(p.script, scripts[i])) {
      fault = {1, p.name + "'s script " + p.script + ": the file can't be read."};
      return false;
    }
    AutoBetProgram program;
    program.ScriptSource[i + 1] = scripts[i];
    const CompileFault compiled = CompileAutobets(program, static_cast<int>(i) + 1, names);
    if (compiled.Failed()) {
      fault = {1, FaultLine(p.script, compiled), true};
      return false;
    }
    for (const TokenRecord& r : program.ScriptRecords)
      makesLineBets[i] =
          makesLineBets[i] || (r.code == kCodeVariableTarget && (r.value == bet::PassLine || r.value == bet::DontPass));
  }
  return true;
}

bool StandingLineBet(const SimOptions& o, const std::string& player) {
  for (const SimBet& b : o.bets)
    if (b.player == player && (b.bet == bet::PassLine || b.bet == bet::DontPass)) return true;
  return false;
}

// The players of the options with their scripts; a player without a line bet, standing
// or scripted, doesn't want to shoot.
void SeatPlayers(Game& g, const SimOptions& o, const std::vector<std::vector<std::string>>& scripts,
                 const std::vector<bool>& makesLineBets) {
  int seat = 1;
  for (const SimPlayer& p : o.players) AddPlayer(g, seat++, p.name, p.bankroll);
  for (size_t i = 0; i < o.players.size(); ++i) {
    const int s = static_cast<int>(i) + 1;
    if (!o.players[i].script.empty()) {
      g.AutoBet.ScriptSource[s] = scripts[i];
      g.ScriptFile[s] = o.players[i].script;
      g.ScriptActive[s] = true;
    }
    const bool line = StandingLineBet(o, o.players[i].name) || (!o.players[i].script.empty() && makesLineBets[i]);
    SetAutoPassDice(g, s, !line);
  }
  g.AutoBet.ScriptsCompiled = false;
  if (SeatOccupied(g, g.Table.Shooter) && g.AutoPassDice[g.Table.Shooter]) PassDice(g, kPassSilent);
}

// The standing bets and the handling of won and lost bets, by the players' names.
void SetUpPlay(Game& g, const SimOptions& o, Runner& r) {
  for (const SimBet& b : o.bets)
    for (int s = 1; s < kSeats; ++s)
      if (g.PlayerName[s] == b.player && r.count < static_cast<int>(r.bets.size()))
        r.bets[r.count++] = {s, b.bet, b.amount};
  for (const SimHandling& h : o.handling)
    for (int s = 1; s < kSeats; ++s) {
      if (!SeatOccupied(g, s) || (!h.player.empty() && g.PlayerName[s] != h.player)) continue;
      SetAutoHandling(g, s, h.winning, h.action, {h.op, h.operand, h.units});
    }
}

// The dice sources of the options, on a table that has its players.
void SetUpDice(Game& g, const SimOptions& o) {
  namespace fs = std::filesystem;
  const SimDice& d = o.dice;
  std::error_code ec;
  std::string error;
  if (!d.prbFile.empty()) {
    LoadProbabilityFile(g.Percentage, g.ProgramFolder, fs::absolute(d.prbFile, ec).string(), error);
    UsePercentageDice(g.Percentage, true);
  }
  if (!d.recordFile.empty()) {
    const std::string path = fs::absolute(d.recordFile, ec).string();
    fs::remove(path, ec);  // the recording of this run, not the tail of an older one
    if (OpenRollFile(g, g.Rolls, path)) StartRecording(g, g.Rolls);
  }
  if (!d.playbackFile.empty() && OpenRollFile(g, g.Rolls, fs::absolute(d.playbackFile, ec).string())) {
    StartPlayback(g, g.Rolls);
    SetNextRollPosition(g.Rolls, static_cast<int32_t>(d.fromRoll));
  }
  if (!d.popupFile.empty()) OpenPopupSource(g, g.Rolls, fs::absolute(d.popupFile, ec).string());
  SetReseedSessions(g, d.reseedSessions);
}

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

void StartHyperDrive(Game& g) {
  g.Auto.AutoStopRolls = Money{};  // the runner counts the run's rolls itself
  SetAutoRollThrottle(g, 0);
  if (!g.Auto.AutoRollActive) ToggleAutoRoll(g);
}

// The rolls of the run, session after session. Active scripts are compiled and run once
// as activation runs them, "initializing script" true, before the first roll.
void PlayRun(Game& g, Runner& r) {
  if (r.asked == 0) return;
  StartHyperDrive(g);
  if (AnyScriptActive(g)) {
    if (!CompileActiveScripts(g)) return;
    g.AutoBet.InitializingScript = true;
    RunAutoBet(g);
    g.AutoBet.InitializingScript = false;
    if (!g.Auto.AutoRollActive) return;  // a script that loops without end from the start
  }
  AfterEachRoll(g, &r);
  for (;;) {
    RollDice(g);
    if (gStopRequested) r.interrupted = true;
    if (!r.sessionOver || r.interrupted || !g.StopReason.empty()) break;
    r.sessionOver = false;
    ResetTable(g, true, false, true, 2);  // a script keeps its CheckStacks, its memory
    // As after a script's own "Start new session": the scripts run again at once, with
    // "beginning new session" true, and make the new session's first bets.
    if (AnyScriptActive(g)) RunAutoBet(g);
    PlaceStanding(g, r);
    KeepAShooter(g);
    StartHyperDrive(g);
  }
  StopRolling(g);
}

// A new table as the program starts one: every generator seeded, the default game, the
// hot keys; or the saved game of --game.
bool SetUpTable(Game& g, SimUi& ui, const SimOptions& o, const std::string& folder, std::ostream& err) {
  g.Ui = &ui;
  g.ProgramFolder = folder;
  g.Time = &DefaultClock();
  SeedAtStartUp(g);
  SetDefaultGame(g);
  LoadHotKeys(g);
  if (o.gameFile.empty()) return true;
  if (!OpenSimGame(g, o.gameFile, err)) return false;
  for (const SimBet& b : o.bets)
    if (!SimPlayerSeated(g, b.player)) {
      err << "dicehall-sim: --bet: there's no player named " << b.player << " in " << o.gameFile << ".\n";
      return false;
    }
  return true;
}

int Refuse(const RunFault& fault, std::ostream& err) {
  err << (fault.ownLine ? "" : "dicehall-sim: ") << fault.text << "\n";
  return fault.code;
}

}  // namespace

void RequestSimStop() { gStopRequested = 1; }

int RunSim(const SimOptions& o, std::ostream& out, std::ostream& err) {
  if (o.bench) return RunSimBench(out);
  if (!o.checkFile.empty()) return RunCheck(o, out, err);
  gStopRequested = 0;
  const bool fromGame = !o.gameFile.empty();
  RunFault fault{0, {}};
  RuleSet rules;
  SetDefaultRules(rules);
  std::vector<std::vector<std::string>> scripts;
  std::vector<bool> makesLineBets;
  // Everything that can be refused is, before anything is written; a saved game's rules
  // are known once it is open.
  if (!fromGame && !BuildRules(o, rules, fault)) return Refuse(fault, err);
  if (!ReadScripts(o, scripts, makesLineBets, fault) || !CheckDiceFiles(o, fault)) return Refuse(fault, err);
  if (o.dumpRules && !fromGame) {
    out << RulesToJson(rules).dump(2) << "\n";
    return 0;
  }

  const std::string folder = ResolveDataDir(o.dataDir);
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  if (ec) {
    err << "dicehall-sim: the data folder " << folder << " can't be made: " << ec.message() << "\n";
    return 1;
  }
  auto game = std::make_unique<Game>();
  Game& g = *game;
  SimUi ui;
  if (!SetUpTable(g, ui, o, folder, err)) return 1;
  if (fromGame) {
    rules = g.Rules;
    if (!BuildRules(o, rules, fault)) return Refuse(fault, err);
    if (o.dumpRules) {
      out << RulesToJson(rules).dump(2) << "\n";
      return 0;
    }
  } else {
    // With nobody to make a line bet, the dice are thrown for the table's other bets.
    bool anyShooter = false;
    for (size_t i = 0; i < o.players.size(); ++i)
      anyShooter = anyShooter || StandingLineBet(o, o.players[i].name) || makesLineBets[i];
    if (!anyShooter) rules.BetNeededToShoot = 0;
  }
  ReplaceRules(g, rules);
  if (o.dice.rng != 0 && SelectRng(g, o.dice.rng) != 0) {
    err << "dicehall-sim: Unfortunately, RNG #" << o.dice.rng << " is currently unavailable.\n";
    return 2;
  }

  Runner runner;
  runner.asked = o.rolls;
  runner.sessionRolls = o.sessionRolls;
  if (!fromGame) SeatPlayers(g, o, scripts, makesLineBets);
  SetUpPlay(g, o, runner);
  if (!ApplySimAutoPlay(g, o.autoPlay, err)) return 1;
  SetUpDice(g, o);
  if (o.eventsLog) RecordEventsFromNow(g);
  if (o.seeded) {
    g.Dice.pendingSeed = Money::Dollars(o.seed);
    if (!SeedRng(g, true)) {
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
  struct sigaction action {
  }, previous{};
  action.sa_handler = OnInterrupt;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, &previous);
  PlayRun(g, runner);
  sigaction(SIGINT, &previous, nullptr);
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
