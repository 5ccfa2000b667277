#include "app/sim/sim_game.h"

#include <filesystem>
#include <memory>
#include <ostream>

#include "automation/auto_play.h"
#include "engine/game_state.h"
#include "storage/game_file.h"

namespace {

std::string Trim(std::string s) {
  while (!s.empty() && s.back() == ' ') s.pop_back();
  while (!s.empty() && s.front() == ' ') s.erase(s.begin());
  return s;
}

// A command-line path stands for itself, never for a name in the program folder.
std::string CommandLinePath(const std::string& file) {
  std::error_code ec;
  const std::filesystem::path p = std::filesystem::absolute(file, ec);
  return ec ? file : p.string();
}

std::string OneLine(std::string text) {
  for (char& c : text)
    if (c == '\n') c = ' ';
  return text;
}

// Runs `action` with the table's messages kept, and says them on `err` after
// "dicehall-sim: OPTION FILE: ", one a line, when it fails or `always`.
template <class F>
bool Telling(Game& g, const std::string& option, const std::string& file, std::ostream& err, F&& action) {
  HeadlessUi keeper;
  UserInterface* ui = g.Ui;
  g.Ui = &keeper;
  const bool ok = action();
  g.Ui = ui;
  for (const HeadlessUi::Entry& e : keeper.transcript)
    err << "dicehall-sim: " << option << " " << file << ": " << OneLine(e.request.Text) << "\n";
  return ok;
}

}  // namespace

bool ParseAutoPlayOption(const std::string& text, SimAutoPlay& setting, std::string& error) {
  const size_t eq = text.find('=');
  if (eq == std::string::npos) {
    error = "expected [NAME:]KEY=VALUE.";
    return false;
  }
  std::string lhs = text.substr(0, eq);
  setting.value = Trim(text.substr(eq + 1));
  const size_t colon = lhs.find(':');
  if (colon != std::string::npos) {
    setting.player = Trim(lhs.substr(0, colon));
    lhs = lhs.substr(colon + 1);
  }
  setting.key = Trim(lhs);
  // The setting is tried on a table of its own, so that a bad one is told at once.
  auto trial = std::make_unique<Game>();
  trial->PlayerName.Set(1, "trial");
  return ApplyAutoPlay(*trial, 1, setting.key, setting.value, error);
}

bool OpenSimGame(Game& g, const std::string& file, std::ostream& err) {
  return Telling(g, "--game", file, err, [&] { return OpenGame(g, CommandLinePath(file)); });
}

bool SaveSimGame(Game& g, const std::string& file, std::ostream& err) {
  return Telling(g, "--save", file, err, [&] { return SaveGame(g, CommandLinePath(file)); });
}

bool SimPlayerSeated(const Game& g, const std::string& name) {
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s) && g.PlayerName[s] == name) return true;
  return false;
}

bool ApplySimAutoPlay(Game& g, const std::vector<SimAutoPlay>& settings, std::ostream& err) {
  for (const SimAutoPlay& a : settings) {
    if (!a.player.empty() && !SimPlayerSeated(g, a.player)) {
      err << "dicehall-sim: --auto-play: there's no player named " << a.player << ".\n";
      return false;
    }
    for (int s = 1; s < kSeats; ++s) {
      if (!SeatOccupied(g, s) || (!a.player.empty() && g.PlayerName[s] != a.player)) continue;
      std::string error;
      if (!ApplyAutoPlay(g, s, a.key, a.value, error)) {
        err << "dicehall-sim: --auto-play " << a.key << "=" << a.value << ": " << error << "\n";
        return false;
      }
    }
  }
  return true;
}
