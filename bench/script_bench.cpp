// Rolls per second with Auto-Bet scripts playing: one seat running the Pass Line
// Martingale, and eight seats each running a different example system.

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

namespace {

const std::filesystem::path kExamples = std::filesystem::path(__FILE__).parent_path() / ".." / "examples";

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
  explicit ScriptTable(const std::vector<std::string>& scripts) {
    g.Ui = &ui;
    SetDefaultGame(g);
    // Output files of the systems go to a folder of the benchmark's own.
    g.ProgramFolder = (std::filesystem::temp_directory_path() / "dicehall-bench").string();
    std::filesystem::create_directories(g.ProgramFolder);
    g.Dice.pendingSeed = Money::Dollars(20261123);
    SeedRng(g, true);
    for (size_t i = 0; i < scripts.size(); ++i) {
      const int s = static_cast<int>(i) + 1;
      // A negative bankroll is allowed, so that no system goes broke and stops the table.
      AddPlayer(g, s, "P" + std::to_string(s), Money::Dollars(-1));
      g.AutoBet.ScriptSource[s] = Lines(scripts[i]);
      g.ScriptActive[s] = true;
      // Systems without a line bet pass the dice, as the simulator has them do.
      const std::string& n = scripts[i];
      g.AutoPassDice[s] = n.find("passline") == std::string::npos && n.find("dont_pass") == std::string::npos &&
                          n.find("molly") == std::string::npos;
    }
    g.SilentMode = true;
    g.Auto.HyperDrive = true;
    compiled = CompileActiveScripts(g);
    g.AutoBet.InitializingScript = true;
    RunAutoBet(g);
    g.AutoBet.InitializingScript = false;
  }
};

void RollMartingale(benchmark::State& state) {
  ScriptTable t({"martingale_passline.bet"});
  if (!t.compiled) state.SkipWithError("a script doesn't compile");
  for (auto _ : state) RollDice(t.g);
  if (!t.g.StopReason.empty()) state.SkipWithError(t.g.StopReason.c_str());
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(RollMartingale);

void RollEightSystems(benchmark::State& state) {
  ScriptTable t({"martingale_passline.bet", "dont_pass_lay_odds.bet", "fibonacci_field.bet", "hardway_hunter.bet",
                 "inside_regression.bet", "iron_cross.bet", "place_6_8_press.bet", "three_point_molly.bet"});
  if (!t.compiled) state.SkipWithError("a script doesn't compile");
  for (auto _ : state) RollDice(t.g);
  if (!t.g.StopReason.empty()) state.SkipWithError(t.g.StopReason.c_str());
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(RollEightSystems);

}  // namespace
