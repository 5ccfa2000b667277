// Hyper-Drive from the window against the simulator's run on the same table: rolls per
// second of each, and how soon the window's Stop button ends a run.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "automation/auto_roll.h"
#include "dice/seeding.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "surface/frm_crap_table.h"
#include "surface/qt_ui.h"

namespace {

constexpr int64_t kRolls = 2000000;

// Eight seats with $10 on the Pass Line at every come-out, as the simulator's benchmark.
void Rebet(Game& g, void*) {
  if (!IsComeOut(g)) return;
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s) && g.BetAmount[s][bet::PassLine].raw == 0) ChangeBet(g, s, bet::PassLine, 10_usd);
}

void SetUpTable(Game& g) {
  g.Time = &DefaultClock();
  SetDefaultGame(g);
  g.Dice.pendingSeed = Money::Dollars(20261123);
  SeedRng(g, true);
  static const char* kNames[] = {"", "Ann", "Bob", "Cat", "Dan", "Eve", "Fay", "Gus", "Hal"};
  for (int s = 1; s < kSeats; ++s) AddPlayer(g, s, kNames[s], Money::Dollars(-1));  // negative bankroll allowed
  for (int s = 1; s < kSeats; ++s) g.AutoHandleWin[s] = g.AutoHandleLose[s] = 2;
  g.Auto.AfterRoll = &Rebet;
  Rebet(g, nullptr);
}

void BM_SimulatorHyperDrive(benchmark::State& state) {
  int64_t rolls = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto game = std::make_unique<Game>();
    HeadlessUi ui;
    game->Ui = &ui;
    SetUpTable(*game);
    game->Auto.AutoStopRolls = Money::Dollars(kRolls);
    game->Auto.AutoRollThrottle = 0;
    state.ResumeTiming();
    ToggleAutoRoll(*game);
    RollDice(*game);
    rolls += game->Stats.RollCount[kSessionScope][0];
  }
  state.counters["rolls_per_second"] = benchmark::Counter(static_cast<double>(rolls), benchmark::Counter::kIsRate);
}

// The window's table: the same game, with the window's interface, started by its button.
struct WindowTable {
  std::unique_ptr<Game> game = std::make_unique<Game>();
  QtUi ui{*game};
  std::unique_ptr<FrmCrapTable> window;
  WindowTable() {
    game->Ui = &ui;
    game->ProgramFolder = std::filesystem::temp_directory_path().string();
    SetUpTable(*game);
    ui.answerMessage = [](const MessageRequest&) {
      MessageReply yes;
      yes.Button = kButtonYes;
      return std::optional<MessageReply>(yes);
    };
    window = std::make_unique<FrmCrapTable>(*game, ui, nullptr);
    window->resize(1280, 800);
    window->show();
    window->findChild<QSlider*>("hsbThrottle")->setValue(0);
    QApplication::processEvents();
  }
  QPushButton* Button() const { return window->findChild<QPushButton*>("cmdHyperDrive"); }
};

void BM_WindowHyperDrive(benchmark::State& state) {
  int64_t rolls = 0;
  for (auto _ : state) {
    state.PauseTiming();
    WindowTable t;
    t.game->Auto.AutoStopRolls = Money::Dollars(kRolls);
    state.ResumeTiming();
    t.Button()->click();
    rolls += t.game->Stats.RollCount[kSessionScope][0];
  }
  state.counters["rolls_per_second"] = benchmark::Counter(static_cast<double>(rolls), benchmark::Counter::kIsRate);
}

// From the click on Stop to the end of the run, while the run goes on by itself.
void BM_WindowStopButton(benchmark::State& state) {
  for (auto _ : state) {
    WindowTable t;
    QElapsedTimer sinceStop;
    QTimer::singleShot(200, [&] {
      sinceStop.start();
      t.Button()->click();
    });
    t.Button()->click();
    state.SetIterationTime(sinceStop.nsecsElapsed() / 1e9);
  }
}

}  // namespace

BENCHMARK(BM_SimulatorHyperDrive)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(BM_WindowHyperDrive)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(BM_WindowStopButton)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

int main(int argc, char** argv) {
  if (std::getenv("QT_QPA_PLATFORM") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
