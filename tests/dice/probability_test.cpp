// Percentage dice: the draw, probability files, the edit with rebalancing, the display
// modes and the axis computation.

#include "dice/probability.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "dice/probability_file.h"
#include "tests/test_support.h"

namespace {

ProbabilityTable Default() {
  ProbabilityTable t;
  SetDefaultProbabilities(t);
  return t;
}

std::pair<int, int> Draw(const ProbabilityTable& t, int32_t number) {
  std::minstd_rand plain;
  int d1 = 0, d2 = 0;
  DrawCell(t, number, d1, d2, plain);
  return {d1, d2};
}

// The 36 cells make 100000, none is negative, and the sum column and face rows agree.
void ExpectBalanced(const ProbabilityTable& t) {
  int64_t whole = 0;
  std::array<int64_t, 12> rows{};
  std::array<std::array<int64_t, 7>, 2> faces{};
  for (const DiamondCell& c : kDiamond) {
    const int32_t v = t.Value(c.x, c.y);
    EXPECT_GE(v, 0);
    whole += v;
    rows[c.die1 + c.die2 - 1] += v;
    faces[0][c.die1] += v;
    faces[1][c.die2] += v;
  }
  EXPECT_EQ(whole, 100000);
  for (int y = 1; y <= 11; ++y) EXPECT_EQ(t.Value(1, y), rows[y]) << "row " << y;
  for (int f = 1; f <= 6; ++f) {
    EXPECT_EQ(t.Value(f + 1, 12), faces[0][f]) << "die 1 face " << f;
    EXPECT_EQ(t.Value(f + 1, 13), faces[1][f]) << "die 2 face " << f;
  }
}

// ---- The draw ---------------------------------------------------------------------------

// With every cell at 1, number k lands on the k-th cell of the search.
TEST(ProbabilityDraw, DiamondMapsCellsToDiceInSearchOrder) {
  const std::vector<std::pair<int, int>> expected = {
      {1, 1}, {1, 2}, {1, 3}, {1, 4}, {1, 5}, {1, 6}, {2, 6}, {3, 6}, {4, 6}, {5, 6}, {6, 6},  // column 2
      {2, 1}, {2, 2}, {2, 3}, {2, 4}, {2, 5}, {3, 5}, {4, 5}, {5, 5}, {6, 5},                  // column 3
      {3, 1}, {3, 2}, {3, 3}, {3, 4}, {4, 4}, {5, 4}, {6, 4},                                  // column 4
      {4, 1}, {4, 2}, {4, 3}, {5, 3}, {6, 3},                                                  // column 5
      {5, 1}, {5, 2}, {6, 2},                                                                  // column 6
      {6, 1}};                                                                                 // column 7
  ProbabilityTable t;
  for (int x = 2; x <= 7; ++x)
    for (int y = x - 1; y <= 13 - x; ++y) t.Value(x, y) = 1;
  for (size_t k = 0; k < expected.size(); ++k) EXPECT_EQ(Draw(t, static_cast<int32_t>(k + 1)), expected[k]) << k + 1;
}

// The default table reaches 100000 inside its last cell (6.1), which so has 8 chances in
// 100000 fewer than the others; 100001 from the rounding generators still lands there.
TEST(ProbabilityDraw, DefaultTableShortensOnlyTheLastCell) {
  const ProbabilityTable t = Default();
  std::map<std::pair<int, int>, int> hits;
  for (int32_t n = 1; n <= 100000; ++n) ++hits[Draw(t, n)];
  ASSERT_EQ(hits.size(), 36u);
  for (const auto& [dice, count] : hits) EXPECT_EQ(count, dice == std::make_pair(6, 1) ? 2770 : 2778);
  EXPECT_EQ(Draw(t, 100001), std::make_pair(6, 1));
}

// A number past the table's sum falls back to 1.1, after one plain draw: a table of
// exactly 100000 with 100001, and a table of zeros with any number.
TEST(ProbabilityDraw, BeyondTheTableYieldsOneOne) {
  ProbabilityTable exact = Default();
  exact.Value(7, 6) = 2770;
  const ProbabilityTable zeros;
  for (const auto& [table, number] : {std::pair{exact, 100001}, {zeros, 1}, {zeros, 50000}, {zeros, 100001}}) {
    std::minstd_rand plain, untouched;
    int d1 = 0, d2 = 0;
    DrawCell(table, number, d1, d2, plain);
    EXPECT_EQ(std::make_pair(d1, d2), std::make_pair(1, 1)) << number;
    EXPECT_NE(plain, untouched);
  }
}

// ---- Files ------------------------------------------------------------------------------

TEST(ProbabilityFile, RoundTripIsByteExact) {
  TempDir dir;
  PercentageDice p;
  SetDefaultPercentageDice(p);
  std::string error;
  ASSERT_TRUE(EditCell(p.Table, 3, 5, 9000, error)) << error;
  p.Table.Lock(0, 0) = -7;  // a sign survives
  p.ProbabilityChanged = true;
  ASSERT_TRUE(SaveProbabilityFile(p, dir.path.string(), "skewed.prb", error)) << error;

  const std::string bytes = FileText(dir.path / "skewed.prb");
  ASSERT_EQ(bytes.size(), 1280u);
  EXPECT_EQ(bytes.substr(0, 200), std::string(kProbabilityFileHeader) + std::string(158, ' '));
  EXPECT_EQ(bytes.substr(200, 56), std::string(56, '\0'));
  auto at = [&](int i) {  // the file's numbers are little-endian
    uint32_t u = 0;
    for (int b = 3; b >= 0; --b) u = u << 8 | static_cast<unsigned char>(bytes[256 + 4 * i + b]);
    return static_cast<int32_t>(u);
  };
  EXPECT_EQ(at(0), -7);
  EXPECT_EQ(at(3 * 14 + 5), 128);         // plane 0, x 3, y 5
  EXPECT_EQ(at(112 + 3 * 14 + 5), 9000);  // plane 1
  EXPECT_EQ(at(112 + 7 * 14 + 13), p.Table.Value(7, 13));
  EXPECT_EQ(bytes.substr(1152, 128), bytes.substr(896, 128));  // record 5's tail repeats record 4's

  PercentageDice q;
  q.ProbabilityChanged = true;
  ASSERT_TRUE(LoadProbabilityFile(q, dir.path.string(), "skewed.prb", error)) << error;
  EXPECT_EQ(q.Table, p.Table);
  EXPECT_EQ(q.ProbabilityFileName, "skewed.prb");
  EXPECT_FALSE(q.ProbabilityChanged);
  ASSERT_TRUE(SaveProbabilityFile((dir.path / "again.prb").string(), q.Table, error));
  EXPECT_EQ(FileText(dir.path / "again.prb"), bytes);
}

TEST(ProbabilityFile, WrongHeaderOrMissingFileLeavesTableAlone) {
  TempDir dir;
  std::string good(1280, '\0');
  good.replace(0, 42, kProbabilityFileHeader);
  std::string older = good;
  older[41] = '5';  // Data Format 4.5
  WriteText(dir.path / "older.prb", older);
  WriteText(dir.path / "tiny.prb", "DiceHall");

  PercentageDice p;
  SetDefaultPercentageDice(p);
  p.ProbabilityFileName = "mine.prb";
  p.ProbabilityChanged = true;
  const PercentageDice before = p;
  const std::string wrong =
      "This file is either from an older version, has been corrupted, or is not a true DiceHall Probability File.";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"older.prb", wrong},
      {"tiny.prb", wrong},
      {"absent.prb", "File not found, Error #53\n occurred at: sub Load Probability File"}};
  for (const auto& [name, message] : cases) {
    std::string error;
    EXPECT_FALSE(LoadProbabilityFile(p, dir.path.string(), name, error)) << name;
    EXPECT_EQ(error, message) << name;
    EXPECT_EQ(p.Table, before.Table) << name;
    EXPECT_EQ(p.ProbabilityFileName, "mine.prb");
    EXPECT_TRUE(p.ProbabilityChanged);
  }
}

TEST(ProbabilityFile, ShortFileGivesZerosForMissingValues) {
  TempDir dir;
  std::string bytes(256 + 6, '\0');
  bytes.replace(0, 42, kProbabilityFileHeader);
  bytes[256] = 5;  // value 0
  bytes[260] = 1;  // value 1, whose upper bytes are missing
  bytes[261] = 1;
  WriteText(dir.path / "short.prb", bytes);
  ProbabilityTable t = Default();
  std::string error;
  ASSERT_TRUE(LoadProbabilityFile((dir.path / "short.prb").string(), t, error)) << error;
  ProbabilityTable expected;
  expected.Cells[0][0][0] = 5;
  expected.Cells[0][0][1] = 257;
  EXPECT_EQ(t, expected);
}

// ---- Editing ----------------------------------------------------------------------------

// An edit balances the table and holds the edited cell and every cell locked before it:
// a diamond cell, one in a locked row, a negative entry, a sum cell, a face of each die.
TEST(ProbabilityEdit, KeepsWholeSumsAndLocks) {
  for (auto [x, y, value] :
       {std::tuple{2, 1, 10000}, {3, 3, 6000}, {2, 7, -500}, {1, 6, 30000}, {4, 12, 25000}, {7, 13, 0}}) {
    SCOPED_TRACE(testing::Message() << x << "," << y);
    ProbabilityTable t = Default();
    std::string error;
    ASSERT_TRUE(EditCell(t, 6, 7, 4000, error)) << error;  // 6.2 locked first
    ASSERT_TRUE(EditCell(t, 1, 3, 9000, error)) << error;  // total 4 locked
    ASSERT_TRUE(EditCell(t, x, y, value, error)) << error;
    ExpectBalanced(t);
    EXPECT_EQ(t.Value(x, y), std::max(value, 0));
    EXPECT_EQ(t.Lock(x, y), 128);
    EXPECT_EQ(t.Value(6, 7), 4000);
    EXPECT_EQ(t.Value(1, 3), 9000);
  }
}

TEST(ProbabilityEdit, UnbalanceableEditIsRefusedUntouched) {
  ProbabilityTable t = Default();
  std::string error;
  for (int x = 2; x <= 6; ++x) ASSERT_TRUE(EditCell(t, x, 12, 16000, error)) << error;  // die-1 faces 1..5
  const ProbabilityTable before = t;
  // Faces past 100%, faces short of it, not a cell of the table, a cell past 100%.
  for (const auto& [x, y, value] : {std::tuple{7, 12, 30000}, {7, 12, 0}, {1, 12, 100}, {2, 1, 150000}}) {
    error.clear();
    EXPECT_FALSE(EditCell(t, x, y, value, error)) << x << "," << y;
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(t, before);
  }
  UnlockAll(t);
  EXPECT_TRUE(EditCell(t, 7, 12, 30000, error)) << error;
  ExpectBalanced(t);
}

TEST(ProbabilityEdit, GarbageEntryIsRefused) {
  PercentageDice p;
  SetDefaultPercentageDice(p);
  std::string error;
  int32_t v = -1;
  EXPECT_FALSE(StoredValue(1.0, 2, 1, ProbabilityView::RollsOutOf, 0.0, v));  // rolls out of 0
  for (const char* text : {"", "abc", "2.5x", "--1"}) {
    EXPECT_FALSE(CommitProbabilityEntry(p, 2, 1, text, ProbabilityView::Percent, error)) << text;
    EXPECT_EQ(error, "Please enter a number.");
  }
  EXPECT_FALSE(p.ProbabilityChanged);
  ASSERT_TRUE(CommitProbabilityEntry(p, 2, 1, " 5.5 ", ProbabilityView::Percent, error)) << error;
  EXPECT_EQ(p.Table.Value(2, 1), 5500);
  EXPECT_TRUE(p.ProbabilityChanged);
  ASSERT_TRUE(CommitProbabilityEntry(p, 2, 2, "-9", ProbabilityView::PercentFromTrue, error)) << error;
  EXPECT_EQ(p.Table.Value(2, 2), 0);  // below nothing is nothing
}

// ---- Display modes ----------------------------------------------------------------------

TEST(ProbabilityView, ConvertsBothWays) {
  for (auto [view, x, y, stored, shown] : {std::tuple{ProbabilityView::Percent, 2, 1, 2778, 2.778},
                                           {ProbabilityView::PercentFromTrue, 1, 6, 20000, 20.0 - 600.0 / 36},
                                           {ProbabilityView::PercentFromTrue, 3, 12, 0, -100.0 / 6},
                                           {ProbabilityView::RollsOutOf, 2, 1, 2778, 1.00008},
                                           {ProbabilityView::RollsFromTrue, 1, 1, 5556, 1.00016}}) {
    EXPECT_NEAR(ShownValue(stored, x, y, view, 36.0), shown, 1e-9) << stored;
    int32_t back = -1;
    ASSERT_TRUE(StoredValue(shown, x, y, view, 36.0, back));
    EXPECT_EQ(back, stored);
  }
}

// ---- Axis -------------------------------------------------------------------------------

TEST(ProbabilityAxis, EffectivenessDrivesSelectedFaces) {
  for (auto [effectiveness, face] : {std::pair{0.0, 16667}, {50.0, 8333}, {100.0, 0}, {250.0, 0}}) {
    PercentageDice p;
    SetDefaultPercentageDice(p);
    std::string error;
    ASSERT_TRUE(EditCell(p.Table, 2, 1, 9000, error));  // a lock the axis clears
    const AxisChoice die1{{true, true, false}, effectiveness}, die2{{false, false, true}, effectiveness};
    ASSERT_TRUE(ComputeAboutAxes(p, die1, die2, error)) << effectiveness << error;
    ExpectBalanced(p.Table);
    EXPECT_EQ(p.Table.Lock(2, 1), 0);
    for (int x : {2, 3}) EXPECT_EQ(p.Table.Value(x, 12), face) << effectiveness;
    EXPECT_EQ(p.Table.Value(4, 13), face);
    EXPECT_EQ(p.Table.Lock(4, 12), 0);
    EXPECT_EQ(p.Table.Lock(4, 13), 128);
    // The free faces share the rest, up to the rounding of their six cells in each edit.
    for (int x = 4; x <= 7; ++x) EXPECT_NEAR(p.Table.Value(x, 12), (100000 - 2 * face) / 4.0, 6.0);
    EXPECT_TRUE(p.ProbabilityChanged);
  }
}

}  // namespace
