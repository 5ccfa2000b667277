// Compiling a script of 1,000 lines, the size of a long betting system.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "autobet/compiler.h"

namespace {

std::vector<std::string> LongScript() {
  static const char* kLines[] = {
      "If a point is established Then",
      "  Bet 10 on PassLineOdds",
      "ElseIf cs1 > 3 Then",
      "  cs1 = cs1 + 1",
      "Else",
      "  Bet 5 on place6, place8",
      "EndIf",
      "cs2 = sum(place bets) + count(> 0, come bets)",
      "Take down buy4 thru buy10",
      "cs3 = net total $ current hand place6 Ann",
  };
  std::vector<std::string> lines;
  while (lines.size() < 1000)
    for (const char* l : kLines) lines.push_back(l);
  lines.resize(1000);
  return lines;
}

void CompileThousandLines(benchmark::State& state) {
  const std::vector<std::string> script = LongScript();
  const std::vector<std::string> names = {"Ann", "", "", "", "", "", "", ""};
  AutoBetProgram program;
  program.ScriptSource[1] = script;
  for (auto _ : state) {
    const CompileFault fault = CompileAutobets(program, 1, names);
    if (fault.Failed()) {
      state.SkipWithError(("the script doesn't compile: " + fault.message).c_str());
      break;
    }
    benchmark::DoNotOptimize(program.ScriptRecords.data());
  }
}
BENCHMARK(CompileThousandLines)->Unit(benchmark::kMillisecond);

}  // namespace
