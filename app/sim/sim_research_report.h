#pragma once
// The report of a run of many sessions, folded from the sessions' results in session
// order: the unsharded run and the merge of its shards fold the same results through the
// same code, so their reports agree byte for byte.

#include <array>
#include <cstdint>
#include <fstream>
#include <iosfwd>
#include <string>
#include <vector>

#include "app/sim/sim_sessions.h"

struct PlayerTotals {
  Money buyIn;                 // of the first session
  std::vector<Money> results;  // every session's, in session order
  double drawdownSum = 0;      // summed in session order
  Money drawdownWorst;
  int64_t won = 0, ruined = 0;
  int64_t rolls = 0;
  std::array<int64_t, kSessionEnds> ends{};
  std::array<BetTally, kBets + 1> bets{};
  int64_t faults = 0;
  std::vector<FaultTally> firstFaults;
};

struct ResearchTotals {
  int64_t sessions = 0;
  int64_t rolls = 0, hands = 0, passes = 0, misses = 0, pointsMade = 0, longestHand = 0;
  std::array<int64_t, 11> totals{};
  std::vector<PlayerTotals> players;
};

// Adds one session, the next in order.
void AddSession(ResearchTotals& totals, const ResearchFacts& facts, const SessionResult& session);

// A session that ruined the player: the stop-loss, broke, or the whole buy-in lost.
bool Ruined(const PlayerSession& p);
// The exact expected net of the player's bets of a session (the bets with an edge), and
// the observed net of the same bets.
double ExpectedNet(const ResearchFacts& facts, const std::vector<BetTally>& bets);

void WriteResearchText(const ResearchFacts& facts, const ResearchTotals& totals, const ResearchOutcome& outcome,
                       std::ostream& out);
void WriteResearchJson(const ResearchFacts& facts, const ResearchTotals& totals, const ResearchOutcome& outcome,
                       std::ostream& out);

// One row per session per player, for a notebook: the file opened afresh with its header
// (false when it can't be written), then the rows of each session.
bool StartCsv(const std::string& path, std::ofstream& out);
void WriteCsvRows(const ResearchFacts& facts, const SessionResult& session, std::ostream& out);

// An exact amount as a plain decimal: "-12.5", "1000", "0.0125".
std::string DecimalText(Money m);
