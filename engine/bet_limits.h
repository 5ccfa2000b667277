#pragma once
// The limits that follow from the rule set alone: the maximum of a bet that isn't an
// odds bet, and the odds limit over a flat bet. GetMaximum of the placement gate reads
// these and adds what depends on the table.

#include "engine/money.h"
#include "storage/rules.h"

// floor(table maximum / u) × u, then the rule of the bet (Lay, props up to 93, the
// split bets, the hand bets, Repeaters); never above the table maximum, never below the
// table minimum. For an odds bet (13..18, 25..30, 44, 47) this gives the table's part only.
Money RuleMaximum(const RuleSet& rules, int bet);

// The odds allowed on `point` as a multiple of the flat bet (OddsAllowed410, 59 or 68);
// 0 for a number that is no point.
Money OddsMultiple(const RuleSet& rules, int point);

// The odds limit on a flat or line amount `flat` whose number is `point`, for odds bet
// `oddsBet`, under OddsCalcMethod; at most floor(MaxOddsBet / u) × u, a multiple of u.
// For the don't side the result is already × y / x of the odds row.
Money OddsLimit(const RuleSet& rules, int oddsBet, int point, Money flat);
