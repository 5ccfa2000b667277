// Every example betting system under examples/ must compile as the script of seat 1,
// played by "Ann", and the folder must hold at least six of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "app/sim/sim.h"
#include "autobet/compiler.h"
#include "tests/autobet/example_scripts.h"

namespace {

std::vector<std::filesystem::path> ExampleScripts() {
  std::vector<std::filesystem::path> scripts;
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(ExamplesFolder(), ec)) {
    if (!entry.is_regular_file()) continue;
    std::string ext = entry.path().extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
    if (ext == ".bet") scripts.push_back(entry.path());
  }
  std::sort(scripts.begin(), scripts.end());
  return scripts;
}

std::string OneLine(std::string message) {
  std::replace(message.begin(), message.end(), '\n', ' ');
  return message;
}

TEST(ExampleScripts, TheFolderHoldsAtLeastSixSystems) {
  ASSERT_TRUE(std::filesystem::is_directory(ExamplesFolder())) << ExamplesFolder();
  EXPECT_GE(ExampleScripts().size(), 6u) << "in " << ExamplesFolder();
}

TEST(ExampleScripts, EveryScriptCompilesAsSeatOnePlayedByAnn) {
  const std::vector<std::filesystem::path> scripts = ExampleScripts();
  ASSERT_FALSE(scripts.empty()) << "no .bet files in " << ExamplesFolder();
  for (const std::filesystem::path& script : scripts) {
    SCOPED_TRACE(script.filename().string());
    std::vector<std::string> lines;
    ReadScriptLines(script.string(), lines);
    ASSERT_FALSE(lines.empty()) << script.filename().string() << " is empty or unreadable";
    // Each system starts with a comment header that says what it does.
    EXPECT_EQ(lines.front().rfind('\'', 0), 0u) << script.filename().string() << " has no comment header";

    AutoBetProgram program;
    program.ScriptSource[1] = lines;
    std::vector<std::string> names(kPlayerSeats);
    names[0] = "Ann";
    const CompileFault fault = CompileAutobets(program, 1, names);
    EXPECT_FALSE(fault.Failed()) << script.filename().string() << ":" << fault.firstLine << ":" << fault.firstColumn + 1
                                 << "-" << fault.lastLine << ":" << fault.lastColumn << ": " << OneLine(fault.message);
    if (!fault.Failed()) {
      ASSERT_FALSE(program.ScriptRecords.empty()) << script.filename().string();
      EXPECT_EQ(program.ScriptRecords[0], (TokenRecord{kCodeScriptHeader, 1})) << script.filename().string();
    }
  }
}

}  // namespace
