// Every file reader against a few thousand mutations of a well-formed file: each reads
// or refuses, never crashes or hangs, and a refusal leaves its store as it was. The same
// checks are the libFuzzer targets of tests/fuzz.

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "storage/game_file.h"
#include "tests/fuzz/readers.h"
#include "tests/test_support.h"

namespace {

// One to four edits: a byte set, a bit flipped, a 32-bit value of the kind that breaks
// ranges written over a word, the file cut short, or a piece of it doubled.
Bytes Mutate(const Bytes& base, std::mt19937& rng) {
  Bytes b = base;
  const int32_t telling[] = {0, -1, 1, 7, 9, 100001, INT32_MIN, INT32_MAX, 0x7fc00000, 90000, -10000};
  const int edits = 1 + static_cast<int>(rng() % 4);
  for (int e = 0; e < edits && !b.empty(); ++e) {
    const size_t at = rng() % b.size();
    switch (rng() % 5) {
      case 0: b[at] = static_cast<uint8_t>(rng()); break;
      case 1: b[at] ^= static_cast<uint8_t>(1u << (rng() % 8)); break;
      case 2: {
        const size_t word = at & ~size_t{3};
        const int32_t v = telling[rng() % std::size(telling)];
        for (size_t k = 0; k < 4 && word + k < b.size(); ++k) b[word + k] = static_cast<uint8_t>(v >> (8 * k));
        break;
      }
      case 3: b.resize(at); break;
      default: {
        const size_t length = std::min<size_t>(1 + rng() % 600, b.size() - at);
        b.insert(b.begin() + static_cast<std::ptrdiff_t>(at), b.begin() + static_cast<std::ptrdiff_t>(at),
                 b.begin() + static_cast<std::ptrdiff_t>(at + length));
      }
    }
  }
  return b;
}

struct Reader {
  const char* name;
  int inputs;
  std::function<Bytes(const std::string& folder)> sample;
  std::function<std::string(const Bytes&, const std::string& folder)> check;
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
  for (int i = 0; i < r.inputs; ++i) {
    const Bytes input = Mutate(base, rng);
    const std::string fault = r.check(input, folder);
    ASSERT_EQ(fault, "") << r.name << " input " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Readers, MutatedFiles,
    testing::Values(Reader{"game_file", 1500, [](const std::string&) { return SampleGameFile(); },
                           [](const Bytes& b, const std::string&) { return CheckGameFileReader(b); }},
                    Reader{"script_file", 4000, [](const std::string&) { return SampleScriptFile(); },
                           [](const Bytes& b, const std::string&) { return CheckScriptFileReader(b); }},
                    Reader{"hot_keys", 4000, [](const std::string&) { return SampleHotKeysFile(); },
                           [](const Bytes& b, const std::string&) { return CheckHotKeysReader(b); }},
                    Reader{"probability", 3000, SampleProbabilityFile, CheckProbabilityReader},
                    Reader{"roll_file", 2000, [](const std::string&) { return SampleRollFile(); }, CheckRollFileReader},
                    Reader{"sessions_log", 3000, SampleSessionsLog, CheckSessionsLogReader}),
    [](const auto& info) { return std::string(info.param.name); });

// The whole open, table and all, on a sample of mutated game files.
TEST(MutatedFiles, ARefusedGameFileLeavesTheTableAsItWas) {
  TestTable t;
  TempDir dir;
  t.g.ProgramFolder = dir.path.string();
  t.Seat(4, "Dee", 800_usd);
  const Bytes base = SampleGameFile();
  const std::string file = (dir.path / "m.crp").string();
  std::mt19937 rng(7);
  int refused = 0;
  for (int i = 0; i < 150; ++i) {
    ASSERT_TRUE(WriteFileAtomically(file, Mutate(base, rng)));
    const Bytes before = GameFileBytes(t.g, {});  // a file that opened has changed the table
    if (OpenGame(t.g, file)) continue;
    ++refused;
    ASSERT_TRUE(GameFileBytes(t.g, {}) == before) << "input " << i;
  }
  EXPECT_GT(refused, 50);
}

}  // namespace
