#pragma once
// Descriptive statistics over one field of a sessions log, with the sessions sorted into
// won, broke even and lost against a break-point.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/money.h"
#include "stats/sessions_log_file.h"

// A session whose outcome is above High won, below Low lost, else broke even. A single
// break-point has Low == High.
struct BreakPoint {
  Money Low, High;
};

// "0", "-$25", or a range "-10 to 10" (either order).
bool ParseBreakPoint(std::string_view text, BreakPoint& out, std::string& error);

enum SessionOutcome { kSessionWon = 0, kSessionEven = 1, kSessionLost = 2 };
SessionOutcome OutcomeOf(Money outcome, const BreakPoint& bp);

struct SessionsFilter {
  int Field = slg::AmountNet;         // the cmbStat field
  int OutcomeField = slg::AmountNet;  // what decides won or lost
  BreakPoint Break;
  std::array<bool, 3> Include = {true, true, true};  // chkInclude: won, broke even, lost
};

struct SessionsStats {
  int32_t N = 0;  // sessions included
  Money Sum, Mean, High, Low, Range, Mid, Median, Mode;
  int32_t ModeCount = 0;  // how often the mode occurs; 1 means no value repeats
  Money Variance, StdDev, Skew, Kurtosis;
  // Over every session of the log, included or not: won, broke even, lost.
  std::array<int32_t, 3> Sessions{};
  int32_t Total = 0;
  std::array<double, 3> SessionsPct{};  // 0..100; 0 with no sessions
};

// Fills `out` for the included sessions. Results are Money, as the log keeps them: a
// power past its range, or a standard deviation of 0 (a single session, or all alike)
// under Skew and Kurtosis, is the calculation's fault and returns false, with `out`
// complete up to the fault. No sessions included leaves every statistic 0.
bool ComputeSessionsStats(const std::vector<SessionRecord>& records, const SessionsFilter& filter, SessionsStats& out);
