// Rolls per second of fixed scenarios. Each is set so that it never drifts into a
// refusal or a limit: no bet needed to shoot on the empty table; a negative bankroll
// allowed and same-bet handling on the line.

#include <benchmark/benchmark.h>

#include <memory>

#include "dice/seeding.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"

namespace {

struct Table {
  std::unique_ptr<Game> game = std::make_unique<Game>();
  HeadlessUi ui;
  Game& g = *game;
  explicit Table(int passLineSeats) {
    g.Ui = &ui;
    SetDefaultGame(g);
    g.Dice.pendingSeed = Money::Dollars(20261123);
    SeedRng(g, true);
    if (passLineSeats == 0) g.Rules.BetNeededToShoot = 0;
    for (int s = 1; s <= passLineSeats; ++s) {
      AddPlayer(g, s, "P" + std::to_string(s), Money::Dollars(-1));  // negative bankroll allowed
      g.AutoHandleWin[s] = g.AutoHandleLose[s] = 2;                  // same bet
      ChangeBet(g, s, bet::PassLine, Money::Dollars(10));
    }
    g.SilentMode = true;
  }
};

void RollEmptyTable(benchmark::State& state) {
  Table t(0);
  for (auto _ : state) RollDice(t.g);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(RollEmptyTable);

void RollPassLineSeats(benchmark::State& state) {
  Table t(static_cast<int>(state.range(0)));
  for (auto _ : state) RollDice(t.g);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(RollPassLineSeats)->Arg(1)->Arg(8);

}  // namespace
