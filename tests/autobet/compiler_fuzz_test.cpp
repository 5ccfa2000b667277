// The compiler takes whatever a user types: thousands of mutated example scripts, with
// a fixed seed, must each end in a result or a fault with a sane range, never a crash.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "autobet/compiler.h"

namespace {

std::vector<std::vector<std::string>> ExampleScripts() {
  std::vector<std::vector<std::string>> scripts;
  const auto folder = std::filesystem::path(__FILE__).parent_path() / "../../examples";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".bet") continue;
    std::ifstream f(entry.path());
    std::vector<std::string> lines;
    for (std::string line; std::getline(f, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      lines.push_back(line);
    }
    scripts.push_back(lines);
  }
  return scripts;
}

// One random edit of the kinds a typist makes: a character dropped, doubled, swapped
// or replaced, a line dropped or repeated, a word of the language dropped in.
void Mutate(std::vector<std::string>& lines, std::mt19937& rng) {
  static const char kChars[] = "()[]{}\",:=<>+-*/\\^&$%#!?.;' \t0123456789abcxyz";
  static const char* kWords[] = {"if ", " then", "else", "endif", "do", "loop", "exitdo", "goto ", "gosub ",
                                 "return", " thru ", " any(", " all[", "\"", "bet 5 on ", " player3 ", " cs1 ",
                                 "(", ")", " = ", " and ", "last session ", " place bets ", "left$(", "#"};
  if (lines.empty()) lines.push_back("");
  std::uniform_int_distribution<size_t> pickLine(0, lines.size() - 1);
  std::string& line = lines[pickLine(rng)];
  const int kind = static_cast<int>(rng() % 7);
  const size_t at = line.empty() ? 0 : rng() % (line.size() + 1);
  switch (kind) {
    case 0: if (!line.empty() && at < line.size()) line.erase(at, 1); break;
    case 1: if (at < line.size()) line.insert(at, 1, line[at]); break;
    case 2: if (at + 1 < line.size()) std::swap(line[at], line[at + 1]); break;
    case 3: line.insert(at, 1, kChars[rng() % (sizeof kChars - 1)]); break;
    case 4: lines.erase(lines.begin() + static_cast<long>(pickLine(rng))); break;
    case 5: lines.insert(lines.begin() + static_cast<long>(pickLine(rng)), line); break;
    default: line.insert(at, kWords[rng() % (sizeof kWords / sizeof kWords[0])]); break;
  }
}

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
