#pragma once
// Helpers for the Pass Line table tests: readable money in failures, dice for a total,
// and a table with named players.

#include <ostream>
#include <utility>

#include "engine/money.h"
#include "engine/placement.h"
#include "tests/test_support.h"

// gtest finds this by argument lookup; internal linkage keeps each test file its own copy.
static inline void PrintTo(const Money& m, std::ostream* os) { *os << DollarText(m); }

// A pair of dice for a total, never a pair that makes a hardway unless it must.
inline std::pair<int, int> DiceFor(int total) {
  const int d1 = total / 2 - (total % 2 == 0 && total > 2 && total < 12 ? 1 : 0);
  return {d1, total - d1};
}

struct LineTable : TestTable {
  void RollTotal(int total) { Roll(DiceFor(total).first, DiceFor(total).second); }
  Money Bet(int seat, int bet, Money change) { return ChangeBet(g, seat, bet, change); }
  // Seat 1's Pass Line of $10, then a roll of the total.
  void PassLineThen(int total) {
    Bet(1, bet::PassLine, 10_usd);
    RollTotal(total);
  }
  Money Amount(int seat, int bet) const { return g.BetAmount[seat][bet]; }
  int Messages() const { return static_cast<int>(ui.transcript.size()); }
  // The last box shown; an empty one when none was, so that a failed count stays a failure.
  const MessageRequest& LastMessage() const {
    static const MessageRequest kNone;
    return ui.transcript.empty() ? kNone : ui.transcript.back().request;
  }
};

// Ann at seat 1 with $1000.
struct AnnTable : LineTable {
  AnnTable() { Seat(1, "Ann", 1000_usd); }
};
