#pragma once
// What a table's rules promise, worked out exactly: the payoff row a bet is paid by, the
// expected net of a unit on a bet (its edge), and the rolls of an hour at the table's
// roll rate. Plain functions over the rule set, for the scripts' "expected value" and the
// simulator's expected loss alike.

#include "storage/rules.h"

// The roll rate as rolls per hour, whatever unit the rules keep it in.
double RollsPerHour(const RuleSet& rules);

// The payoff row `bet` is paid by while the point is `point` (0 on the come-out): the
// line bets by their point's Come row, the line odds by the point's odds row. nullptr
// with `fault` 915 for line odds without a point, 918 for bets paid by several rows.
const PayoffRow* PaidByRow(const RuleSet& rules, int bet, int point, int& fault);

// The expected net of one unit wagered on `bet`, decision by decision: its payoff as the
// table pays it with the point at `point`, against the odds of the dice, less the vig
// where one is charged. A line bet counts over its whole decision from the come-out.
// Returns 0, or the scripts' fault code when the edge can't be given: 915 line odds
// without a point, 918 a bet whose payoff varies or whose decision has more than two
// outcomes besides a push, 9999 a payoff "for 0".
int BetEdge(const RuleSet& rules, int bet, int point, double& edge);

// The edge of one decision as the bet statistics count it, for the expected loss of the
// bets made: as BetEdge, except that the Come and Don't Come rows hold only the bets
// decided on their first roll (those that travel are counted on their numbers), and the
// line odds hold every point's decisions, so they have an edge only when every point
// gives the same. False when there is none to give.
bool DecisionEdge(const RuleSet& rules, int bet, double& edge);
