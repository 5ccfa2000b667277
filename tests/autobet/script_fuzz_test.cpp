// Scripts are untrusted: thousands of mutated example scripts, with fixed seeds, must each
// compile to a result or to a fault with a sane range, and those that still compile play a
// few rolls each without harm. A cycle that runs away is stopped the way a user stops it,
// and every cycle leaves the string pool as it found it.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "autobet/compiler.h"
#include "autobet/interpreter.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

namespace {

// Example script number `round` (in turn), changed by one to `maxEdits` random edits.
std::vector<std::string> Mutated(const std::vector<std::vector<std::string>>& scripts, int round, int maxEdits,
                                 std::mt19937& rng) {
  std::vector<std::string> lines = scripts[static_cast<size_t>(round) % scripts.size()];
  const int edits = 1 + static_cast<int>(rng() % static_cast<unsigned>(maxEdits));
  for (int e = 0; e < edits; ++e) Mutate(lines, rng);
  return lines;
}

TEST(CompilerFuzz, MutatedScriptsEndInAResultOrASaneFault) {
  const auto scripts = ExampleScripts();
  ASSERT_FALSE(scripts.empty());
  std::mt19937 rng(20261123);
  const std::vector<std::string> names = {"Ann", "Bob", "", "", "", "", "", ""};
  int faults = 0;
  for (int round = 0; round < 3000; ++round) {
    const std::vector<std::string> lines = Mutated(scripts, round, 4, rng);
    AutoBetProgram program;
    program.ScriptSource[1] = lines;
    const CompileFault fault = CompileAutobets(program, 1, names);
    if (!fault.Failed()) {
      EXPECT_FALSE(program.ScriptRecords.empty()) << "round " << round;
      continue;
    }
    ++faults;
    EXPECT_FALSE(fault.message.empty()) << "round " << round;
    EXPECT_GE(fault.firstLine, 1);
    EXPECT_LE(fault.lastLine, static_cast<int>(lines.size()) + 1) << "round " << round << ": " << fault.message;
    EXPECT_LE(fault.firstLine, fault.lastLine) << "round " << round << ": " << fault.message;
    EXPECT_TRUE(program.ScriptRecords.empty()) << "a failed compile keeps nothing";
  }
  EXPECT_GT(faults, 300) << "mutations that break scripts are found";
}

// Stops a cycle after many turns of the event loop, as the user's "Stop Auto-Betting".
class StoppingUi : public HeadlessUi {
 public:
  Game* game = nullptr;
  int turns = 0;
  void Yield() override {
    HeadlessUi::Yield();
    if (game != nullptr && ++turns > 64) game->AutoBet.ScriptRunning = false;
  }
};

void NewRoll(Game&, void* data) { static_cast<StoppingUi*>(data)->turns = 0; }

TEST(InterpreterFuzz, MutatedScriptsThatCompileRunWithoutHarm) {
  const auto scripts = ExampleScripts();
  ASSERT_FALSE(scripts.empty());
  std::mt19937 rng(20261124);
  int ran = 0;
  for (int round = 0; round < 400; ++round) {
    const std::vector<std::string> lines = Mutated(scripts, round, 3, rng);
    TestTable t;
    TempDir dir;
    StoppingUi ui;
    ui.game = &t.g;
    Game& g = t.g;
    g.Ui = &ui;
    g.ProgramFolder = dir.path.string();
    g.Rules.BetNeededToShoot = 0;
    AddPlayer(g, 1, "Ann", Money::Dollars(-1));
    AddPlayer(g, 2, "Bob", Money::Dollars(500));
    g.AutoBet.ScriptSource[1] = lines;
    g.ScriptActive[1] = true;
    if (!CompileActiveScripts(g)) continue;
    ++ran;
    const size_t strings = g.AutoBet.ProgramStrings.size();
    g.SilentMode = true;
    g.Auto.HyperDrive = true;
    g.Auto.AfterRoll = &NewRoll;
    g.Auto.AfterRollData = &ui;
    g.AutoBet.InitializingScript = true;
    RunAutoBet(g);
    g.AutoBet.InitializingScript = false;
    for (int roll = 0; roll < 12; ++roll) {
      ui.turns = 0;
      RollDice(g);
      if (!g.AutoBet.ScriptsCompiled) break;  // a script that reset the table may need compiling again
      EXPECT_EQ(g.AutoBet.ProgramStrings.size(), strings) << "round " << round;
      EXPECT_FALSE(g.AutoBet.ScriptRunning) << "round " << round;
    }
  }
  EXPECT_GT(ran, 50) << "enough mutations still compile to exercise the interpreter";
}

}  // namespace
