// A table of dicehall-sim: read and checked once, set up from the options, and played
// between rolls by the runner's hook.

#include "app/sim/sim_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <ostream>

#include "app/sim/rules_json.h"
#include "app/sim/sim_game.h"
#include "autobet/interpreter.h"
#include "automation/auto_roll.h"
#include "dice/probability_file.h"
#include "dice/roll_files.h"
#include "dice/seeding.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"
#include "engine/table_tools.h"
#include "stats/events_log.h"
#include "storage/hot_keys.h"
#include "storage/rule_validation.h"

namespace {

// Lock-free, so that the signal handler may set it and every worker read it.
std::atomic<bool> gStopRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free);

// Before every roll: each standing bet that is absent and that the table allows. Line
// bets are made on the come-out, never as put bets. A player walking away makes none.
void PlaceStanding(Game& g, const Runner& r) {
  for (int i = 0; i < r.count; ++i) {
    const StandingBet& b = r.bets[i];
    if (r.seats[b.seat].walking || !SeatOccupied(g, b.seat)) continue;
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

bool AtRisk(const Game& g, int seat) { return (g.SeatBets[seat][0] | g.SeatBets[seat][1]) != 0; }

// The least a seat can bet: its smallest standing bet, or for a script the table's minimum.
Money LeastBet(const Game& g, const Runner& r, int seat) {
  Money least = g.ScriptActive[seat] ? std::min(g.Rules.MinPlacardBet, g.Rules.MinPlacardPropBet) : Money{};
  for (int i = 0; i < r.count; ++i)
    if (r.bets[i].seat == seat && (least.raw == 0 || r.bets[i].amount < least)) least = r.bets[i].amount;
  return least;
}

// A player who reached a stop or the session's end makes no new bet: the script and the
// standing bets stop for the seat and what may come down comes down.
void WalkAway(Game& g, SeatPlay& seat, int s, SessionEnd end) {
  seat.walking = true;
  seat.end = end;
  SetScriptActive(g, s, false);
}

// The session's rules after a roll, seat by seat; true while somebody sits.
bool KeepSessionRules(Game& g, Runner& r) {
  if (r.primed) r.longestHand = std::max(r.longestHand, g.Stats.RollCount[kHandScope][0]);
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    SeatPlay& seat = r.seats[s];
    const Money net = NetOf(g, s) - seat.startNet;
    seat.peak = std::max(seat.peak, net);
    seat.drawdown = std::max(seat.drawdown, seat.peak - net);
    if (!seat.walking && r.primed) {
      if (r.stopLoss.raw > 0 && net <= -r.stopLoss) WalkAway(g, seat, s, SessionEnd::StopLoss);
      else if (r.stopWin.raw > 0 && net >= r.stopWin) WalkAway(g, seat, s, SessionEnd::StopWin);
      else if (r.limitRolls > 0 && r.played >= r.limitRolls) WalkAway(g, seat, s, r.limitEnd);
    }
    if (seat.walking) {
      RemoveAllBets(g, s);
      if (!AtRisk(g, s)) {
        seat.left = true;
        RemovePlayer(g, s);
      }
    }
  }
  PlaceStanding(g, r);
  // A player who can no longer bet anything leaves broke.
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s) || r.seats[s].walking || AtRisk(g, s) || g.AllowNegBankroll[s]) continue;
    const Money least = LeastBet(g, r, s);
    if (least.raw > 0 && g.Bankroll[s] < least) {
      WalkAway(g, r.seats[s], s, SessionEnd::Broke);
      r.seats[s].left = true;
      RemovePlayer(g, s);
    }
  }
  bool anyLeft = false, allWalking = true;
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    anyLeft = true;
    allWalking = allWalking && r.seats[s].walking;
  }
  // Those still at the table only wait for their bets to be decided: others shoot for them.
  if (anyLeft && allWalking) SetBetNeededToShoot(g, 0);
  return anyLeft;
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
void SeatPlayers(Game& g, const SimOptions& o, const SimPrepared& p) {
  int seat = 1;
  for (const SimPlayer& sp : o.players) AddPlayer(g, seat++, sp.name, sp.bankroll);
  for (size_t i = 0; i < o.players.size(); ++i) {
    const int s = static_cast<int>(i) + 1;
    if (!o.players[i].script.empty()) SetSeatScript(g, s, p.scripts[i], o.players[i].script);
    const bool line = StandingLineBet(o, o.players[i].name) || (!o.players[i].script.empty() && p.makesLineBets[i]);
    SetAutoPassDice(g, s, !line);
  }
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

// A table without a folder shares no file with another table: a saved game's recording,
// pop-up roll file and events log stay off on it.
void KeepToItself(Game& g) {
  ClosePopupSource(g.Rolls);
  if (g.Rolls.RecorderState == 1) {
    StopRecorder(g, g.Rolls);
    CloseRollFile(g.Rolls);
  }
  StopRecordingEvents(g);
}

}  // namespace

int TellFault(const RunFault& fault, std::ostream& err) {
  err << (fault.ownLine ? "" : "dicehall-sim: ") << fault.text << "\n";
  return fault.code;
}

MessageReply QuietUi::ShowMessage(const MessageRequest& request) {
  MessageReply reply = HeadlessUi::ShowMessage(request);
  transcript.clear();
  return reply;
}

const char* SessionEndName(SessionEnd end) {
  static constexpr const char* kNames[kSessionEnds] = {"rolls",    "hours", "stop-loss",
                                                       "stop-win", "broke", "table stopped"};
  return kNames[static_cast<int>(end)];
}

bool SimStopRequested() { return gStopRequested.load(std::memory_order_relaxed); }
void ClearSimStop() { gStopRequested.store(false); }
void RequestSimStop() { gStopRequested.store(true); }

Money NetOf(const Game& g, int seat) { return g.Bankroll[kAllScope + seat] - g.BuyInTotal[kAllScope + seat]; }

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

bool PrepareSim(const SimOptions& o, SimPrepared& p, RunFault& fault) {
  SetDefaultRules(p.rules);
  // A saved game's rules are known once it is open.
  if (o.gameFile.empty() && !BuildRules(o, p.rules, fault)) return false;
  return ReadScripts(o, p.scripts, p.makesLineBets, fault) && CheckDiceFiles(o, fault);
}

int SetUpSimTable(Game& g, UserInterface& ui, const SimOptions& o, const SimPrepared& p, const std::string& folder,
                  bool clockSeeds, Runner& r, std::ostream& err) {
  // A new table as the program starts one: the generators seeded, the default game, the
  // hot keys (read only where there is a folder to read them from); or the saved game.
  g.Ui = &ui;
  g.ProgramFolder = folder;
  g.Time = &DefaultClock();
  if (clockSeeds) SeedAtStartUp(g);
  SetDefaultGame(g);
  if (!folder.empty()) LoadHotKeys(g);
  const bool fromGame = !o.gameFile.empty();
  RuleSet rules = p.rules;
  if (fromGame) {
    if (!OpenSimGame(g, o.gameFile, err)) return 1;
    for (const SimBet& b : o.bets)
      if (!SimPlayerSeated(g, b.player)) {
        err << "dicehall-sim: --bet: there's no player named " << b.player << " in " << o.gameFile << ".\n";
        return 1;
      }
    if (folder.empty()) KeepToItself(g);
    rules = g.Rules;
    RunFault fault;
    if (!BuildRules(o, rules, fault)) return TellFault(fault, err);
  } else {
    // With nobody to make a line bet, the dice are thrown for the table's other bets.
    bool anyShooter = false;
    for (size_t i = 0; i < o.players.size(); ++i)
      anyShooter = anyShooter || StandingLineBet(o, o.players[i].name) || p.makesLineBets[i];
    if (!anyShooter) rules.BetNeededToShoot = 0;
  }
  ReplaceRules(g, rules);
  if (o.dice.rng != 0 && SelectRng(g, o.dice.rng) != 0) {
    err << "dicehall-sim: Unfortunately, RNG #" << o.dice.rng << " is currently unavailable.\n";
    return 2;
  }
  if (!fromGame) SeatPlayers(g, o, p);
  SetUpPlay(g, o, r);
  if (!ApplySimAutoPlay(g, o.autoPlay, err)) return 1;
  SetUpDice(g, o);
  if (o.eventsLog) RecordEventsFromNow(g);
  for (int s = 1; s < kSeats; ++s)
    r.seats[s] = {false, false, SessionEnd::Rolls, NetOf(g, s), {}, {}, g.Stats.SeatRolls[kAllScope + s]};
  return 0;
}

void StopRolling(Game& g) {
  if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
}

void StartHyperDrive(Game& g) {
  g.Auto.AutoStopRolls = Money{};  // the runner counts the run's rolls itself
  SetAutoRollThrottle(g, 0);
  if (!g.Auto.AutoRollActive) ToggleAutoRoll(g);
}

bool StartScripts(Game& g) {
  if (!ActivateScripts(g)) return false;
  return g.Auto.AutoRollActive;  // a script that loops without end from the start stops it
}

void AfterEachRoll(Game& g, void* data) {
  Runner& r = *static_cast<Runner*>(data);
  if (r.primed) {
    ++r.played;
    // A run of sessions finishes the session in progress whatever Ctrl-C says.
    if (!r.sessionRules && SimStopRequested()) {
      r.interrupted = true;
      StopRolling(g);
    } else if (r.asked > 0 && r.played >= r.asked) {
      r.finished = true;
      StopRolling(g);
    }
  }
  if (r.sessionRules && !KeepSessionRules(g, r)) {
    r.finished = true;
    StopRolling(g);
  }
  r.primed = true;
  if (!r.sessionRules) PlaceStanding(g, r);
  if (!r.online) KeepAShooter(g);
}
