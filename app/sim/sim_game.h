#pragma once
// dicehall-sim and saved games: --game plays on from a game file, --save writes the
// table at the end, --auto-play sets a seat's Auto-Play settings by name.

#include <iosfwd>
#include <string>
#include <vector>

struct Game;

struct SimAutoPlay {
  std::string player;  // "" for every player
  std::string key, value;
};

// "[NAME:]KEY=VALUE"; false with the reason in `error`.
bool ParseAutoPlayOption(const std::string& text, SimAutoPlay& setting, std::string& error);

// Opens the game file (a path as on any command line). The table's message, if the file
// is refused, goes to `err`.
bool OpenSimGame(Game& g, const std::string& file, std::ostream& err);
// Saves the table; a failure is said on `err`.
bool SaveSimGame(Game& g, const std::string& file, std::ostream& err);
// Applies the settings in order to the seats they name; false at an unknown player or a
// bad setting, said on `err`.
bool ApplySimAutoPlay(Game& g, const std::vector<SimAutoPlay>& settings, std::ostream& err);
// Whether a player of that name sits at the table.
bool SimPlayerSeated(const Game& g, const std::string& name);
