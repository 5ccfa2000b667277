#include "tests/test_support.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "app/sim/sim.h"
#include "dice/roll_files.h"
#include "dice/seeding.h"
#include "engine/consistency.h"
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
  EXPECT_EQ(GameIsConsistent(g), "") << "after a roll of " << die1 << "-" << die2;
}

void SetSessionRolls(Game& g, int32_t rolls) {
  for (int column : {kSessionScope, kAllScope}) {
    g.Stats.RollCount[column][0] = rolls;
    g.Stats.RollCount[column][7] = rolls;
  }
}

void SetBankroll(Game& g, int seat, Money amount) {
  const Money delta = amount - g.Bankroll[seat];
  for (int scope : kCountedScopes) {
    g.Bankroll[seat + scope] += delta;
    g.BuyInTotal[seat + scope] += delta;
  }
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

SimRun Sim(std::vector<std::string> args, const std::string& dataDir) {
  static TempDir home;
  bool named = false;
  for (const std::string& a : args) named = named || a == "--data-dir";
  if (!named) args.insert(args.begin(), {"--data-dir", dataDir.empty() ? home.path.string() : dataDir});
  std::vector<const char*> argv{"dicehall-sim"};
  for (const std::string& a : args) argv.push_back(a.c_str());
  SimOptions o;
  std::ostringstream out, err;
  int code = ParseSimOptions(static_cast<int>(argv.size()), argv.data(), o, out, err);
  if (code < 0) code = RunSim(o, out, err);
  return {code, out.str(), err.str()};
}

SimRun SimOk(std::vector<std::string> args, const std::string& dataDir) {
  SimRun r = Sim(std::move(args), dataDir);
  EXPECT_EQ(r.code, 0) << r.err;
  return r;
}

std::string FileText(const std::filesystem::path& path) {
  std::ifstream f(path, std::ios::binary);
  std::ostringstream s;
  s << f.rdbuf();
  return s.str();
}

void WriteText(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
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
