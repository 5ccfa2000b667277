#pragma once
// Auto-Play, the engine's side of frmAutoPlay: a seat's handling of won and lost bets,
// the adjustment to proper payoffs with its four biases, working on the come-out by bet,
// and the four aids. Every setting is a store of the seat (engine/game_state.h): it
// moves with the player and is saved with the game.

#include <string>
#include <string_view>
#include <vector>

#include "engine/game_state.h"

// "Manual", "Auto w/ minor correction", "Auto w/ color correction".
inline constexpr const char* kAdjustModeTexts[] = {"Manual", "Auto w/ minor correction", "Auto w/ color correction"};

// The adjust mode sets the seat's adjustment of every kind of bet at once (Parlay forces
// it to 2 while it acts); the mode shown is that of the bets of no biased kind. "Minor
// correction" (1) moves an amount down to the multiple below; "color correction" (2) to
// the nearer multiple, or the way the bias of the bet's family leans.
void SetAdjustMode(Game& g, int seat, int mode);
int AdjustMode(const Game& g, int seat);

// The full text of a bias list's entry: "Place bets bias: nearest" ...
std::string BiasText(int family, int bias);

// The seat's choice of working on the come-out for one bet; a bet resting in its default
// state on the come-out follows it at once. `Default` takes the house standard.
void SetWorkOnComeOut(Game& g, int seat, int bet, bool works);
void SetWorkOnComeOutDefault(Game& g, int seat, int bet);

// lblPlayer: "No players selected", "All players selected", or the number with
// "player selected" / "players selected".
std::string SelectedPlayersLabel(const Game& g, const std::vector<int>& selectedSeats);

// One setting by name, as the simulator's --auto-play gives it: adjust (manual, minor,
// color or 0..2), place-bias, lay-bias, odds-bias, dont-odds-bias (nearest, increase,
// decrease), take-odds, lay-odds, down-place, pass-dice (on, off), and "work BET" (yes,
// no, default). False with the reason in `error` and the seat unchanged.
bool ApplyAutoPlay(Game& g, int seat, std::string_view key, std::string_view value, std::string& error);
