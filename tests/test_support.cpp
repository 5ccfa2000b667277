#include "tests/test_support.h"

#include <gtest/gtest.h>

#include <random>

#include "dice/roll_files.h"
#include "dice/seeding.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "storage/file_bytes.h"
#include "storage/hot_keys.h"

TestTable::TestTable() {
  g.Ui = &ui;
  g.Time = &clock;
  ui.advance = &clock;
  SetDefaultGame(g);
  g.Dice.pendingSeed = Money::Dollars(12345);
  SeedRng(g, true);
}

void TestTable::Seat(int seat, const std::string& name, Money bankroll) { AddPlayer(g, seat, name, bankroll); }

void TestTable::NextDice(int die1, int die2) {
  g.Dice.padPending = true;
  g.Dice.padDie1 = die1;
  g.Dice.padDie2 = die2;
}

void TestTable::Roll(int die1, int die2) {
  NextDice(die1, die2);
  RollDice(g);
}

TempDir::TempDir() {
  std::random_device rd;
  path = std::filesystem::temp_directory_path() / ("dicehall-test-" + std::to_string(rd()));
  std::filesystem::create_directories(path);
}

TempDir::~TempDir() {
  std::error_code ec;
  std::filesystem::remove_all(path, ec);
}

FolderTable::FolderTable() {
  g.ProgramFolder = dir.path.string();
  ReopenRollHistory(g, g.Rolls);
  LoadHotKeys(g);
}

std::vector<uint8_t> FileBytes(const std::string& path) {
  Bytes b;
  EXPECT_TRUE(ReadWholeFile(path, b, uint64_t{1} << 30)) << path;
  return b;
}
