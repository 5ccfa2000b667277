// Every file reader against a few thousand mutations of a well-formed file: each reads
// or refuses, never crashes or hangs, and a refusal leaves its store as it was. The same
// checks are the libFuzzer targets of tests/fuzz.

#include <gtest/gtest.h>

#include <random>

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
  for (int i = 0; i < r.inputs; ++i) {
    const Bytes input = Mutate(base, rng);
    const std::string fault = r.check(input, folder);
    ASSERT_EQ(fault, "") << r.name << " input " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Readers, MutatedFiles,
                         testing::Values(Reader{"game_file", 1500, SampleGameFile, CheckGameFileReader},
                                         Reader{"script_file", 4000, SampleScriptFile, CheckScriptFileReader},
                                         Reader{"hot_keys", 4000, SampleHotKeysFile, CheckHotKeysReader},
                                         Reader{"probability", 3000, SampleProbabilityFile, CheckProbabilityReader},
                                         Reader{"roll_file", 2000, SampleRollFile, CheckRollFileReader},
                                         Reader{"sessions_log", 3000, SampleSessionsLog, CheckSessionsLogReader}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
