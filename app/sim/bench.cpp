// The fixed seeded scenarios of `dicehall-sim --bench`: their speed, and a signature of
// the stores they leave, so that a change meant to be pure speed can show it changed
// no result.

#include <fmt/format.h>

#include <chrono>
#include <memory>
#include <ostream>

#include "app/sim/sim.h"
#include "automation/auto_roll.h"
#include "dice/seeding.h"
#include "engine/handling.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"

namespace {

struct Scenario {
  const char* name;
  int seats;  // players on the Pass Line; 0 for an empty table
  int64_t rolls;
};

void Rebet(Game& g, void*) {
  if (!IsComeOut(g)) return;
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s) && g.BetAmount[s][bet::PassLine].raw == 0)
      ChangeBet(g, s, bet::PassLine, Money::Dollars(10));
}

uint64_t Fnv(uint64_t h, const void* data, size_t n) {
  const unsigned char* p = static_cast<const unsigned char*>(data);
  for (size_t i = 0; i < n; ++i) h = (h ^ p[i]) * 1099511628211ULL;
  return h;
}

uint64_t Signature(const Game& g) {
  uint64_t h = 1469598103934665603ULL;
  h = Fnv(h, &g.Stats.RollCount, sizeof g.Stats.RollCount);
  h = Fnv(h, &g.Stats.HandsShot, sizeof g.Stats.HandsShot);
  h = Fnv(h, &g.Stats.HandDecisions, sizeof g.Stats.HandDecisions);
  for (const auto* rows : {&g.Stats.BetStats, &g.Stats.BetWinStats, &g.Stats.BetLossStats})
    ForLaidOutBytes(*rows, [&](const void* data, size_t n) { h = Fnv(h, data, n); });
  h = Fnv(h, &g.Bankroll, sizeof g.Bankroll);
  h = Fnv(h, &g.BetAmount, sizeof g.BetAmount);
  h = Fnv(h, &g.Table, sizeof(int32_t) * 6);
  return h;
}

}  // namespace

int RunSimBench(std::ostream& out) {
  static const Scenario kScenarios[] = {
      {"empty table, no bet needed", 0, 2000000},
      {"one seat, Pass Line $10", 1, 2000000},
      {"eight seats, Pass Line $10", 8, 1000000},
  };
  uint64_t all = 1469598103934665603ULL;
  for (const Scenario& sc : kScenarios) {
    auto game = std::make_unique<Game>();
    Game& g = *game;
    HeadlessUi ui;
    g.Ui = &ui;
    SetDefaultGame(g);
    SeedRngWith(g, 20261123);
    if (sc.seats == 0) {
      RuleSet rules = g.Rules;
      rules.BetNeededToShoot = 0;
      ReplaceRules(g, rules);
    }
    static const char* kNames[] = {"", "Ann", "Bob", "Cat", "Dan", "Eve", "Fay", "Gus", "Hal"};
    for (int s = 1; s <= sc.seats; ++s) AddPlayer(g, s, kNames[s], Money::Dollars(-1));  // negative bankroll allowed
    for (int s = 1; s <= sc.seats; ++s)                                                  // same bet
      for (bool winning : {true, false}) SetAutoHandling(g, s, winning, kSameBet, {});
    g.Auto.AfterRoll = &Rebet;
    SetAutoStopRolls(g, Money::Dollars(sc.rolls));
    SetAutoRollThrottle(g, 0);
    Rebet(g, nullptr);
    auto t0 = std::chrono::steady_clock::now();
    ToggleAutoRoll(g);
    RollDice(g);
    double secs = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    uint64_t sig = Signature(g);
    all = Fnv(all, &sig, sizeof sig);
    out << fmt::format("{:<30} {:>9} rolls  {:>12.0f} rolls/s  signature {:016x}\n", sc.name,
                       g.Stats.RollCount[kSessionScope][0], g.Stats.RollCount[kSessionScope][0] / secs, sig);
  }
  out << fmt::format("signature {:016x}\n", all);
  return 0;
}
