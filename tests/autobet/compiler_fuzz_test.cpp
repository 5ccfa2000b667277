// The compiler takes whatever a user types: thousands of mutated example scripts, with
// a fixed seed, must each end in a result or a fault with a sane range, never a crash.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "autobet/compiler.h"
#include "tests/autobet/example_scripts.h"

namespace {

TEST(CompilerFuzz, MutatedScriptsEndInAResultOrASaneFault) {
  const auto scripts = ExampleScripts();
  ASSERT_FALSE(scripts.empty());
  std::mt19937 rng(20261123);
  const std::vector<std::string> names = {"Ann", "Bob", "", "", "", "", "", ""};
  int faults = 0;
  for (int round = 0; round < 3000; ++round) {
    std::vector<std::string> lines = scripts[static_cast<size_t>(round) % scripts.size()];
    const int edits = 1 + static_cast<int>(rng() % 4);
    for (int e = 0; e < edits; ++e) Mutate(lines, rng);
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

}  // namespace
