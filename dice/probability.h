#pragma once
// Percentage dice: the table of chances of the 36 ordered combinations, the draw of a
// roll from it, the edit with rebalancing, the display modes and the axis computation.

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

// Two planes of 8 columns (x) by 14 rows (y). Plane 1 holds thousandths of a percent
// (100000 is 100%), plane 0 the lock state of each cell.
//   Rows 1..11 are the totals 2..12; column 1 is the sum of the row, columns 2..7 the
//   combinations in a diamond (column x is used for y = x - 1 .. 13 - x).
//   Rows 12 and 13, columns 2..7: the chance of faces 1..6 of die 1 and of die 2.
struct ProbabilityTable {
  static constexpr int kPlanes = 2, kColumns = 8, kRows = 14;
  std::array<std::array<std::array<int32_t, kRows>, kColumns>, kPlanes> Cells{};

  int32_t& Value(int x, int y) { return Cells[1][x][y]; }
  int32_t Value(int x, int y) const { return Cells[1][x][y]; }
  int32_t& Lock(int x, int y) { return Cells[0][x][y]; }
  int32_t Lock(int x, int y) const { return Cells[0][x][y]; }
  bool operator==(const ProbabilityTable&) const = default;
};

inline constexpr int32_t kCellFree = 0;
inline constexpr int32_t kCellLocked = 128;  // a cell the user fixed
inline constexpr int32_t kWholeTable = 100000;
inline constexpr int kSumColumn = 1;
inline constexpr int kDie1FaceRow = 12, kDie2FaceRow = 13;

// One cell of the diamond, in the order the draw searches it (x 2..7, then y).
struct DiamondCell {
  int8_t x, y, die1, die2;
};
constexpr std::array<DiamondCell, 36> MakeDiamond() {
  std::array<DiamondCell, 36> d{};
  int k = 0;
  for (int x = 2; x <= 7; ++x)
    for (int y = x - 1; y <= 13 - x; ++y) {
      const int die1 = y < 7 ? x - 1 : x + y - 7;
      const int die2 = y < 7 ? y - x + 2 : 8 - x;
      d[k++] = {static_cast<int8_t>(x), static_cast<int8_t>(y), static_cast<int8_t>(die1), static_cast<int8_t>(die2)};
    }
  return d;
}
inline constexpr std::array<DiamondCell, 36> kDiamond = MakeDiamond();

constexpr bool IsDiamondCell(int x, int y) { return x >= 2 && x <= 7 && y >= x - 1 && y <= 13 - x; }
// The cells a user may edit: the diamond, the sum column of rows 1..11, the face rows.
constexpr bool IsEditableCell(int x, int y) {
  return IsDiamondCell(x, y) || (x == kSumColumn && y >= 1 && y <= 11) ||
         ((y == kDie1FaceRow || y == kDie2FaceRow) && x >= 2 && x <= 7);
}

// Everything percentage dice keep for a table.
struct PercentageDice {
  ProbabilityTable Table;
  bool PercentageDiceOn = false;
  std::string ProbabilityFileName;  // "" for an untitled table
  bool ProbabilityChanged = false;  // the table differs from its file
  bool UseSkewedProbs = false;
  double RollsOutOf = 36.0;
  // The plain random number of the draw's fall-back. Kept apart from the eight
  // generators so that the fall-back never moves their sequences.
  std::minstd_rand Fallback;
};

// cmdProbabilityActive: every roll from the generators goes through the table, or not.
inline void UsePercentageDice(PercentageDice& p, bool on) { p.PercentageDiceOn = on; }

// Fair dice: each diamond cell 2778, the sum column the rounded fair sums, each face
// 16667, every cell free. The 36 cells add up to 100008; that rounding is kept.
void SetDefaultProbabilities(ProbabilityTable& t);
// The default game's percentage dice: the default table, no file, rolls-out-of 36.
void SetDefaultPercentageDice(PercentageDice& p);

// The dice of cell number `number` (1..100000, or 100001 from the rounding generators):
// the first cell in search order whose running sum reaches the number. A number beyond
// the table's sum yields 1.1, after one draw from `fallback`. No allocation.
void DrawCell(const ProbabilityTable& t, int32_t number, int& die1, int& die2, std::minstd_rand& fallback);

// ---- Editing ----------------------------------------------------------------------------

// Sets an editable cell to `newValue` (negative becomes 0), marks it 128 and rebalances
// the free cells so that the 36 cells make 100000 and the sum column and face rows agree
// with the diamond; locked cells keep their values. False with the reason in `error` and
// the table untouched when the cell can't be edited or the change can't be balanced.
bool EditCell(ProbabilityTable& t, int x, int y, int32_t newValue, std::string& error);
// "Unlock All Cells": every mark cleared.
void UnlockAll(ProbabilityTable& t);

// ---- Display modes (optProbability) -----------------------------------------------------

enum class ProbabilityView { Percent = 0, PercentFromTrue = 1, RollsOutOf = 2, RollsFromTrue = 3 };
inline constexpr std::array<const char*, 4> kProbabilityViewCaptions = {
    "Show as percentage", "Show as +/- from true %", "Show as # rolls out of:", "Show as +/- from true rolls out of:"};

// The fair value of a cell in thousandths of a percent, unrounded (2777.78 for a diamond
// cell); 0 where the cell has no meaning.
double TrueValue(int x, int y);
// The figure shown for a stored value.
double ShownValue(int32_t stored, int x, int y, ProbabilityView view, double rollsOutOf);
// The stored value of a shown figure, rounded half to even; negative becomes 0. False for
// a figure that isn't finite, is out of range, or a rolls view with rolls-out-of not
// above 0.
bool StoredValue(double shown, int x, int y, ProbabilityView view, double rollsOutOf, int32_t& stored);

// The commit of txtPercent: parses the entry, converts it back, edits the cell and sets
// ProbabilityChanged. False with a message and everything untouched for a bad entry.
bool CommitProbabilityEntry(PercentageDice& p, int x, int y, std::string_view text, ProbabilityView view,
                            std::string& error);

// ---- Computing the table about an axis (picAxis) ---------------------------------------

struct AxisChoice {
  // "About the 3-4 axis", "About the 2-5 axis", "About the 1-6 axis".
  std::array<bool, 3> Options{};
  double Effectiveness = 0;  // "Shooter's effectiveness:", a percentage
};
// "Accept": unlocks all cells, then sets the face of each selected option (columns 2, 3,
// 4 in option order) to Round((1 - SE) / 6 x 100000), die 1 in row 12, then die 2 in
// row 13, each as an edit with mark 128. Sets ProbabilityChanged. False with everything
// untouched when a face can't be balanced.
bool ComputeAboutAxes(PercentageDice& p, const AxisChoice& die1, const AxisChoice& die2, std::string& error);

inline constexpr const char* kProbabilitiesNotSaved = "These probabilities have not been saved.";
inline constexpr const char* kSaveProbabilitiesTitle = "Save Probabilities?";
