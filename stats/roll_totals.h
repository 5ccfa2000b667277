#pragma once
// What the roll totals and roll frequencies screens show: the expected share of each
// roll kind, fair or from the percentage dice, the chi-square test of what was rolled,
// and the gaps between appearances of one kind. Plain values in and out; the screens
// only draw them.

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "stats/statistics.h"

// The values plane of the percentage dice, [x][y] as the table keeps it: rows 1..11
// the totals 2..12, the combinations in a diamond of columns 2..7, thousandths of a
// percent.
using ProbabilityPlane = std::array<std::array<int32_t, 14>, 8>;

// Fair combinations of the 36 in a kind: 0 for kinds never counted.
int KindWays(int kind);
// The kind that counts exactly the dice die1.die2 (each 1..6): that ordered pair, or with
// `eitherOrder` the pair in both orders (1.1, 3, Any 4 (1.3) or (3.1), ...); 0 for none.
int PairKind(int die1, int die2, bool eitherOrder);
// The expected percentage of a kind: ways x 100 / 36, or with `skewed` the sum of the
// kind's cells of the plane / 1000. A kind without a name (0, 1, 90, unknown) yields 100.
double KindPercent(int kind, bool skewed, const ProbabilityPlane& plane);

// Rounds to `decimals` places and prints with thousands separators; a positive value
// that rounds to 0 prints as the smallest that can be shown ("<0.01" for 2).
std::string FormatPrecision(double value, int decimals);

// (rolled - expected)^2 / expected, rounded to 20 decimals; expected must be above 0.
double ChiSquareCell(double rolled, double expected);
// A cell or a sum as the screen prints it: 4 decimals, or ">100".
std::string ChiSquareText(double value);
// Upper tail of the chi-square distribution by its series. Never 0: a vanishing term
// gives 0.001 and the smallest result is 1e-18.
double Chi2Pval(double chi2, int32_t df);
// "p=100%", "p<0.01%" (below 0.01, not 0.01%), or "p=" and the percentage.
std::string PValueText(double p);

// One chi-square test of the roll totals screen.
struct ChiSquareTest {
  std::string Title;  // "chisquare", or "chi-square" for die 1 of the dice faces
  double Sum = 0;
  int Count = 0;  // items with an expected count above 0
  int Df = 0;
  double P = 1;
  std::string SumText, PText;
};

struct RollTotalsItem {
  int Kind = 0;
  std::string Label;  // "2", "1.1", or the face "1".."6"
  double Rolled = 0;
  double ProbablePercent = 0;
  double Expected = 0;
  double PercentRolled = 0;
  int32_t RollsSinceLast = -1;  // -1 where the scope shows "---"
  bool InTest = false;          // expected above 0: a chi-square cell
  double ChiCell = 0;
  std::string ChiText;
};

struct RollTotalsRequest {
  int Display = 0;                // 0 totals, 1 the 21 combinations, 2 the 36, 3 dice faces
  int ScopeBase = kSessionScope;  // cmbHand's ListIndex x 9
  bool PlayerList = false;        // lstPlayer has entries; else the table's column
  std::array<bool, kSeats> Selected{};
  bool Skewed = false;  // UseSkewedProbs with percentage dice on
  const ProbabilityPlane* Plane = nullptr;
  bool LastHandShooterGone = false;
};

struct RollTotalsView {
  std::string Heading;     // "DICE TOTALS", "COMBINATIONS", or "" for the faces
  std::string ScopeNote;   // lblExplain
  std::string PlayerNote;  // lblPlayer: "No players selected" or ""
  double TotalRolls = 0;
  std::vector<RollTotalsItem> Items;
  ChiSquareTest Chi;  // lblChi2: all items, or die 2 of the faces
  bool HasDie1Test = false;
  ChiSquareTest Die1Chi;  // lblChi2Die1
};

RollTotalsView ComputeRollTotals(const Statistics& s, const RollTotalsRequest& r);

// The roll kinds a display lists, in order: 0 the 11 totals, 1 the 21 combinations, 2
// the 36, 3 die 1's faces then die 2's.
std::span<const uint8_t> DisplayKinds(int display);

// The 88 named kinds in the order of cmbFreqNum.
const std::array<uint8_t, 88>& RollFreqsKinds();

struct RollFreqsView {
  int Kind = 0;
  double TotalSessionRolls = 0;  // "Total session rolls:"
  double SelectionRolls = 0;     // "Total rolls this selection:"
  int32_t RollsSinceLast = 0;    // "# rolls since last rolled:"
  double ActualPercent = 0;      // "Actual % rolled:"
  std::string ProbableCaption;   // "True probable %:" or "Skewed probable %:"
  double ProbablePercent = 0;
  double AverageRolls = 0;  // "Average # of rolls:", 0 for a kind of no chance
  // Bars for gaps 1..199 at [g] and 200 or more at [200]; [0] unused. As counts and
  // as percentages of the kind's filed gaps.
  std::array<int32_t, kLongGap + 1> GapCount{};
  std::array<double, kLongGap + 1> GapPercent{};
  int32_t LongGapSum = 0;  // the sum of the gaps of 200 or more
};

RollFreqsView ComputeRollFreqs(const Statistics& s, int kind, bool skewed, const ProbabilityPlane& plane);
// A bar's percentage as printed: 3 decimals, "< 0.001" for a positive value below that.
std::string GapPercentText(double percent);
