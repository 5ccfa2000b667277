// Files that come to harm. Every reader against a few thousand mutations of a well-formed
// file: each reads or refuses, never crashes or hangs, and a refusal leaves its store as
// it was (the same checks are the libFuzzer targets of tests/fuzz). And a save killed at
// any moment leaves the old game or the new one on the disk, never a mix: a process of the
// test's own saves two games in turn until it is killed.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <thread>

#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "storage/game_file.h"
#include "storage/hot_keys.h"
#include "tests/fuzz/readers.h"
#include "tests/test_support.h"

namespace {

// One to four edits: a byte set, a bit flipped, a 32-bit value of the kind that breaks
// ranges written over a word, or the file cut short.
Bytes Mutate(const Bytes& base, std::mt19937& rng) {
  Bytes b = base;
  const int32_t telling[] = {0, -1, 1, 7, 9, 100001, INT32_MIN, INT32_MAX, 0x7fc00000, 90000, -10000};
  const int edits = 1 + static_cast<int>(rng() % 4);
  for (int e = 0; e < edits && !b.empty(); ++e) {
    const size_t at = rng() % b.size();
    switch (rng() % 4) {
      case 0: b[at] = static_cast<uint8_t>(rng()); break;
      case 1: b[at] ^= static_cast<uint8_t>(1u << (rng() % 8)); break;
      case 2: {
        const size_t word = at & ~size_t{3};
        const int32_t v = telling[rng() % std::size(telling)];
        for (size_t k = 0; k < 4 && word + k < b.size(); ++k) b[word + k] = static_cast<uint8_t>(v >> (8 * k));
        break;
      }
      default: b.resize(at); break;
    }
  }
  return b;
}

struct Reader {
  const char* name;
  int inputs;
  Bytes (*sample)(const std::string& folder);
  std::string (*check)(const Bytes&, const std::string& folder);
};

class MutatedFiles : public testing::TestWithParam<Reader> {};

TEST_P(MutatedFiles, AreReadOrRefusedNeverHalfTaken) {
  const Reader& r = GetParam();
  TempDir dir;
  const std::string folder = dir.path.string();
  const Bytes base = r.sample(folder);
  ASSERT_FALSE(base.empty());
  EXPECT_EQ(r.check(base, folder), "") << "the well-formed file";
  std::mt19937 rng(2026);
  for (int i = 0; i < r.inputs; ++i) ASSERT_EQ(r.check(Mutate(base, rng), folder), "") << r.name << " input " << i;
}

INSTANTIATE_TEST_SUITE_P(Readers, MutatedFiles,
                         testing::Values(Reader{"game_file", 1500, SampleGameFile, CheckGameFileReader},
                                         Reader{"script_file", 4000, SampleScriptFile, CheckScriptFileReader},
                                         Reader{"hot_keys", 4000, SampleHotKeysFile, CheckHotKeysReader},
                                         Reader{"probability", 3000, SampleProbabilityFile, CheckProbabilityReader},
                                         Reader{"roll_file", 2000, SampleRollFile, CheckRollFileReader},
                                         Reader{"sessions_log", 3000, SampleSessionsLog, CheckSessionsLogReader}),
                         [](const auto& info) { return std::string(info.param.name); });

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
