// A save killed at any moment leaves the old game or the new one on the disk, never a
// mix: a process of the test's own saves two games in turn until it is killed.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "storage/game_file.h"
#include "storage/hot_keys.h"
#include "tests/test_support.h"

namespace {

std::unique_ptr<Game> TableOf(const std::string& folder, HeadlessUi& ui, int players) {
  auto g = std::make_unique<Game>();
  g->Ui = &ui;
  g->ProgramFolder = folder;
  SetDefaultGame(*g);
  LoadHotKeys(*g);
  const char* names[] = {"Ann", "Bob", "Cy"};
  for (int s = 1; s <= players; ++s) AddPlayer(*g, s, names[s - 1], Money::Dollars(1000 * s));
  return g;
}

TEST(SaveGameKill, AKilledSaveLeavesTheOldOrTheNewGame) {
  TempDir dir;
  HeadlessUi ui;
  const std::string folder = dir.path.string(), file = (dir.path / "kill.crp").string();
  auto one = TableOf(folder, ui, 1), three = TableOf(folder, ui, 3);
  ASSERT_TRUE(SaveGame(*one, file));
  const Bytes oneBytes = FileBytes(file);
  ASSERT_TRUE(SaveGame(*three, file));
  const Bytes threeBytes = FileBytes(file);
  ASSERT_NE(oneBytes.size(), threeBytes.size());
  for (int round = 0; round < 100; ++round) {
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      for (;;) {
        SaveGame(*one, file);
        SaveGame(*three, file);
      }
    }
    // Spread the kills over the whole of a save, from its first moment on.
    std::this_thread::sleep_for(std::chrono::microseconds(200 + (round * 7919) % 12000));
    ASSERT_EQ(kill(pid, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    const Bytes onDisk = FileBytes(file);
    EXPECT_TRUE(onDisk == oneBytes || onDisk == threeBytes) << "round " << round;
    HeadlessUi readerUi;
    auto reader = TableOf(folder, readerUi, 0);
    ASSERT_TRUE(OpenGame(*reader, file)) << "round " << round << ": " << readerUi.LastText();
    EXPECT_TRUE(reader->Table.NumberOfPlayers == 1 || reader->Table.NumberOfPlayers == 3);
  }
}

}  // namespace
