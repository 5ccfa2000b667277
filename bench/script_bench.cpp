// Rolls per second with Auto-Bet scripts playing: one seat running the Pass Line
// Martingale, one running Iron Cross, and eight seats each running a different example
// system.

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "autobet/actions.h"
#include "autobet/interpreter.h"
#include "autobet/statement_buffer.h"
#include "autobet/variables.h"
#include "dice/seeding.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"

namespace {

const std::filesystem::path kExamples = DICEHALL_EXAMPLES_DIR;

// A script's lines; none when the file can't be read, which the table reports.
std::vector<std::string> Lines(const std::string& name) {
  std::ifstream f(kExamples / name);
  std::vector<std::string> lines;
  for (std::string line; std::getline(f, line);) lines.push_back(line);
  return lines;
}

struct ScriptTable {
  std::unique_ptr<Game> game = std::make_unique<Game>();
  HeadlessUi ui;
  Game& g = *game;
  bool compiled = false;
  std::string missing;  // a script that couldn't be read
  explicit ScriptTable(const std::vector<std::string>& scripts) {
    g.Ui = &ui;
    SetDefaultGame(g);
    // Output files of the systems go to a folder of the benchmark's own.
    g.ProgramFolder = (std::filesystem::temp_directory_path() / "dicehall-bench").string();
    std::filesystem::create_directories(g.ProgramFolder);
    g.Dice.pendingSeed = Money::Dollars(20261123);
    SeedRng(g, true);
    bool lineBettor = false;
    for (size_t i = 0; i < scripts.size(); ++i) {
      const int s = static_cast<int>(i) + 1;
      // A negative bankroll is allowed, so that no system goes broke and stops the table.
      AddPlayer(g, s, "P" + std::to_string(s), Money::Dollars(-1));
      g.AutoBet.ScriptSource[s] = Lines(scripts[i]);
      if (g.AutoBet.ScriptSource[s].empty()) missing = (kExamples / scripts[i]).string();
      g.ScriptActive[s] = true;
      // Systems without a line bet pass the dice, as the simulator has them do.
      const std::string& n = scripts[i];
      g.AutoPassDice[s] = n.find("passline") == std::string::npos && n.find("dont_pass") == std::string::npos &&
                          n.find("molly") == std::string::npos;
      lineBettor = lineBettor || !g.AutoPassDice[s];
    }
    // With nobody on the line the table needs no line bet to shoot, as in the simulator.
    if (!lineBettor) {
      RuleSet rules = g.Rules;
      rules.BetNeededToShoot = 0;
      ReplaceRules(g, rules);
    }
    g.SilentMode = true;
    g.Auto.HyperDrive = true;
    compiled = CompileActiveScripts(g);
    g.AutoBet.InitializingScript = true;
    RunAutoBet(g);
    g.AutoBet.InitializingScript = false;
  }
};

void RollScripts(benchmark::State& state, const std::vector<std::string>& scripts) {
  ScriptTable t(scripts);
  if (!t.missing.empty()) state.SkipWithError(("can't read " + t.missing).c_str());
  else if (!t.compiled) state.SkipWithError("a script doesn't compile");
  for (auto _ : state) RollDice(t.g);
  if (!t.g.StopReason.empty()) state.SkipWithError(t.g.StopReason.c_str());
  state.SetItemsProcessed(state.iterations());
}

void RollMartingale(benchmark::State& state) { RollScripts(state, {"martingale_passline.bet"}); }
BENCHMARK(RollMartingale);

// Iron Cross bets the Field and three Place bets at every roll while a point is on; the
// table needs no line bet from its shooter.
void RollIronCross(benchmark::State& state) { RollScripts(state, {"iron_cross.bet"}); }
BENCHMARK(RollIronCross);

void RollEightSystems(benchmark::State& state) {
  RollScripts(state, {"martingale_passline.bet", "dont_pass_lay_odds.bet", "fibonacci_field.bet", "hardway_hunter.bet",
                      "inside_regression.bet", "iron_cross.bet", "place_6_8_press.bet", "three_point_molly.bet"});
}
BENCHMARK(RollEightSystems);

}  // namespace
