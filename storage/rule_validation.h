#pragma once
// Validation of a rule set, as the configuration window does it when it closes: the first
// failure with its message in the system's words and the control that gets the focus.

#include <string>

#include "storage/rules.h"

// Which payoff table a failing row of validation is in. RuleCheck.index of a "txtPayoffs"
// failure is PayoffCheckIndex(table, row): for BetPayoff simply the bet number.
enum PayoffTable {
  kPayoffTableBet = 0,
  kPayoffTableField,
  kPayoffTableSevenPointSeven,
  kPayoffTableMidway,
  kPayoffTableHotRoller,
  kPayoffTableSharpShooter,
  kPayoffTableRideLine,
  kPayoffTableFire
};
constexpr int PayoffCheckIndex(int table, int row) { return table * 1000 + row; }

struct RuleCheck {
  bool ok = true;
  std::string message;  // the system's words
  std::string control;  // the control that gets the focus, e.g. "txtMinPlacardBet"
  int index = 0;        // index within a control array or list row, where there is one
};
// The checks of the configuration window in their order; the first failure is returned.
// BetUnit is recomputed on the way (step 6), hence the non-const rule set.
RuleCheck ValidateRules(RuleSet& rules, bool rollRateEdited);
