#pragma once
// The report of a dicehall-sim run, as text or JSON: the run's rolls and hands over all its
// sessions, the dice against fair dice, and per player the bankroll, the spread of the
// session results, the script's faults and every bet's decisions.

#include <cstdint>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "engine/game_state.h"
#include "stats/sessions_log_file.h"

// What the runner knows beyond the table: how far it got and why it stopped.
struct RunOutcome {
  int64_t asked = 0;    // rolls asked for
  int64_t played = 0;   // rolls played
  std::string stopped;  // why the run ended before `asked`; "" when it didn't
  std::optional<uint32_t> seed;
};

// The spread of one player's session results (ending bankroll less the bankroll put in),
// from the records this run added to the player's sessions log.
struct SessionSpread {
  int64_t count = 0;
  double mean = 0, sd = 0, min = 0, max = 0;
  double wonShare = 0;  // sessions that ended ahead, as a fraction
};
SessionSpread SpreadOf(const std::vector<SessionRecord>& records);

// The hands' decisions of a statistics column: passes (which 1) or misses (2), on any
// total or on the points only.
int32_t SumDecisions(const Statistics& st, int column, int which, bool pointsOnly);
// One bet row's decisions, as the statistics count them.
struct BetTally {
  int bet = 0;
  int64_t decisions = 0, won = 0, lost = 0;
  Money wagered, amountWon, amountLost;
};
// The seat's bet rows with decisions in a statistics column (seat + scope), in bet order.
std::vector<BetTally> BetTallies(const Game& g, int column);

// A kind of script fault and how often it came.
struct FaultTally {
  int32_t code = 0, line = 0;
  int64_t count = 0;
};
std::vector<FaultTally> FaultTallies(const Game& g, int seat);

// A bet's line of the report: its decisions, what was wagered, won and lost; and the same
// in JSON.
std::string BetLineText(const BetTally& bet);
nlohmann::json BetJson(const BetTally& bet);
// A script's faults: the count and the first few different ones, as text lines and JSON.
void WriteScriptFaults(const std::string& file, int64_t faults, const std::vector<FaultTally>& first,
                       std::ostream& out);
nlohmann::json ScriptJson(const std::string& file, int64_t faults, const std::vector<FaultTally>& first);
// The text of a report line: line breaks become spaces and runs of spaces one.
std::string OneLineText(std::string text);

void WriteTextReport(const Game& g, const RunOutcome& run, const std::vector<SessionSpread>& sessions,
                     std::ostream& out);
void WriteJsonReport(const Game& g, const RunOutcome& run, const std::vector<SessionSpread>& sessions,
                     std::ostream& out);
