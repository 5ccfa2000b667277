#pragma once
// Shared test fixtures: a fresh table with a headless interface and a fake clock, and a
// temporary program folder of the test's own.

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engine/game_state.h"

struct TestTable {
  std::unique_ptr<Game> game = std::make_unique<Game>();
  HeadlessUi ui;
  FakeClock clock;
  Game& g = *game;

  // The default game, seeded, with the headless interface.
  TestTable();
  // Seats a player at `seat` with a bankroll.
  void Seat(int seat, const std::string& name, Money bankroll);
  // The next roll comes out as these dice.
  void NextDice(int die1, int die2);
  // One roll at normal speed.
  void Roll(int die1, int die2);
};

// The session and the run as if `rolls` sevens had been rolled already (the table's
// columns), so that a test of the roll limits starts near two billion with the counts
// agreeing.
void SetSessionRolls(Game& g, int32_t rolls);

// The seat's bankroll brought to `amount` as if it had bought in for the difference: the
// way to a bankroll beyond the limits, which a buy-in refuses.
void SetBankroll(Game& g, int seat, Money amount);

// A temporary folder, removed at the end of the test.
struct TempDir {
  std::filesystem::path path;
  TempDir();
  ~TempDir();
};

// dicehall-sim run in this process on its arguments; its data folder is `dataDir`, else a
// folder of the test program's own (never the user's).
struct SimRun {
  int code;
  std::string out, err;
};
SimRun Sim(std::vector<std::string> args, const std::string& dataDir = "");
// Sim for a run that must succeed: a failing run fails the test with its error text.
SimRun SimOk(std::vector<std::string> args, const std::string& dataDir = "");
// A file's bytes ("" when it can't be read).
std::string FileText(const std::filesystem::path& path);
// Writes the bytes as the whole file.
void WriteText(const std::filesystem::path& path, const std::string& bytes);

// A table whose program folder is a temporary folder of its own, with the hot keys read
// as start-up reads them.
struct FolderTable : TestTable {
  TempDir dir;
  FolderTable();
  std::string Path(const std::string& name) const { return (dir.path / name).string(); }
};

// The whole file; empty (and a failure) when it can't be read.
std::vector<uint8_t> FileBytes(const std::string& path);
