// Rolls per second of dicehall-sim's Hyper-Drive as a user runs it: one seat on the Pass
// Line with odds, plain, with the events log written, and with the progress line drawn.
// And a run of many sessions as a student makes it: 2,000 sessions of 1,000 rolls on one
// worker and on two, sessions a second by the wall clock, and the peak memory of the
// benchmark's process (getrusage's ru_maxrss), which the run on two workers raises over
// the run on one by what a worker needs.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "app/sim/sim.h"

namespace {

struct Folder {
  std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("dicehall-bench-" + std::to_string(std::random_device{}()));
  Folder() { std::filesystem::create_directories(path); }
  ~Folder() {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
  }
};

// The progress line goes to stderr; while measuring it goes nowhere.
struct QuietStderr {
  int saved = dup(STDERR_FILENO);
  QuietStderr() {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, STDERR_FILENO);
    close(null);
  }
  ~QuietStderr() {
    dup2(saved, STDERR_FILENO);
    close(saved);
  }
};

void SimRun(benchmark::State& state, bool eventsLog, bool progress) {
  Folder folder;
  const int64_t rolls = state.range(0);
  std::vector<std::string> args{"dicehall-sim", "--data-dir", folder.path.string(), "--rolls", std::to_string(rolls),
                                "--seed",       "11",         "--player",           "Ann:-1",  "--bet",
                                "Pass Line=10", "--bet",      "Pass Line Odds=20"};
  if (eventsLog) args.push_back("--events-log");
  std::vector<const char*> argv;
  for (const std::string& a : args) argv.push_back(a.c_str());
  QuietStderr quiet;
  for (auto _ : state) {
    SimOptions o;
    std::ostringstream out, err;
    if (ParseSimOptions(static_cast<int>(argv.size()), argv.data(), o, out, err) != -1) state.SkipWithError("options");
    o.progress = progress;
    if (RunSim(o, out, err) != 0) state.SkipWithError("run");
    std::filesystem::remove(folder.path / "Events Log.txt");
    std::filesystem::remove(folder.path / "Events Log.ref");
  }
  state.SetItemsProcessed(state.iterations() * rolls);
}

void SimPlain(benchmark::State& state) { SimRun(state, false, false); }
void SimEventsLog(benchmark::State& state) { SimRun(state, true, false); }
void SimProgressLine(benchmark::State& state) { SimRun(state, false, true); }

BENCHMARK(SimPlain)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(SimEventsLog)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(SimProgressLine)->Arg(1000000)->Unit(benchmark::kMillisecond);

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;  // kilobytes on Linux
}

void Sessions(benchmark::State& state) {
  Folder folder;
  const auto threads = std::to_string(state.range(0));
  const std::vector<std::string> args{"dicehall-sim", "--data-dir", folder.path.string(),
                                      "--sessions",   "2000",       "--session-rolls",
                                      "1000",         "--seed",     "11",
                                      "--player",     "Ann:-1",     "--bet",
                                      "Pass Line=10", "--bet",      "Pass Line Odds=20",
                                      "--threads",    threads};
  std::vector<const char*> argv;
  for (const std::string& a : args) argv.push_back(a.c_str());
  for (auto _ : state) {
    SimOptions o;
    std::ostringstream out, err;
    if (ParseSimOptions(static_cast<int>(argv.size()), argv.data(), o, out, err) != -1) state.SkipWithError("options");
    if (RunSim(o, out, err) != 0) state.SkipWithError("run");
    std::filesystem::remove(folder.path / "Ann.slg");
  }
  state.SetItemsProcessed(state.iterations() * 2000);
  state.counters["peak_rss_MB"] = PeakMegabytes();
}

// Two shared cores: the wall clock is what a user waits for.
BENCHMARK(Sessions)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
