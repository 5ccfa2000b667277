#include "engine/bet_states.h"

#include <algorithm>
#include <array>

#include "engine/placement.h"

void AbandonBet(Game& g, int seat, int bet) {
  const Money amount = g.BetAmount[seat][bet];
  if (amount.raw <= 0) return;
  const Money loss = -amount;
  RecordBetResult(g.Stats, seat, bet, amount, loss,
                  bet >= bet::Come4 && bet <= bet::Come10 ? g.ComeBase[seat][bet - bet::Come4] : Money{});
  for (int scope : kCountedScopes) g.Bankroll[seat + scope] += loss;
  CommitAmount(g, seat, bet, -amount);
  g.ContractBase[seat][bet] = Money{};
}

// Every bet that the player hasn't called on or off rests in the seat's default state
// on the come-out and works while a point is on.
void RestWorkingStates(Game& g) {
  const bool comeOut = IsComeOut(g);
  ForSeats(PlayerSeats(g), [&](int s) {
    // Every row is written, each with its own state or the rest state: a loop without
    // branches, which the compiler turns into vector operations (it runs at every change
    // of the point).
    auto& working = g.BetWorking[s];
    const auto& rest = g.DefaultWorking[s];
    for (int b = 1; b <= kBets; ++b) {
      const WorkingState w = working[b], restState = comeOut ? rest[b] : WorkingState{1};
      working[b] = w == 2 || w == -1 ? w : restState;
    }
  });
}

void FollowWorkOnComeOut(Game& g, int seat, int bet) {
  g.DefaultWorking[seat][bet] = g.Rules.WorkOnComeOut[bet][seat] ? 1 : 0;
  const WorkingState w = g.BetWorking[seat][bet];
  if (IsComeOut(g) && w != 2 && w != -1) g.BetWorking[seat][bet] = g.DefaultWorking[seat][bet];
}

void BareSeatWorking(Game& g, int seat) {
  // Worked out once: a new table bares every seat.
  static constexpr auto kDefault = [] {
    std::array<WorkingState, kBets + 1> states{};
    for (int b = 1; b <= kBets; ++b) states[static_cast<size_t>(b)] = DefaultWorksOnComeOut(b) ? 1 : 0;
    return states;
  }();
  for (int b = 1; b <= kBets; ++b) g.Rules.WorkOnComeOut[b][seat] = kDefault[static_cast<size_t>(b)] != 0;
  std::copy(kDefault.begin() + 1, kDefault.end(), g.DefaultWorking[seat].begin() + 1);
  std::copy(kDefault.begin() + 1, kDefault.end(), g.BetWorking[seat].begin() + 1);
}
