#pragma once
// Runs of many independent sessions: each session on a table of its own, on as many
// worker threads as asked, its dice from a seed of its own; the results merged in
// session order, so that the report, the logs and the partial files are the same for any
// number of threads or shards.
//
// Session k's seed is derived from the run's seed and k alone (SplitMix64):
//   state = run seed x 2^32 + k; z = SplitMix64(state)
//   the selected generator's seed = 1 + z mod S, S = 2147483647 (999999 for #3);
// the next outputs seed generators #1..#8 in turn the same way, then the selected one
// takes its seed again, so that a script that changes generator still rolls the same.

#include <array>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "app/sim/sim_report.h"
#include "app/sim/sim_table.h"
#include "engine/money.h"
#include "stats/sessions_log_file.h"

// One player's session, as the player left the table.
struct PlayerSession {
  Money buyIn;     // the bankroll the player sat down with
  Money result;    // bankroll less what was put in, at the end, less the same at the start
  Money drawdown;  // the deepest fall of the result from its peak, after any roll
  int64_t rolls = 0;
  SessionEnd end = SessionEnd::Rolls;
  std::vector<BetTally> bets;  // rows with decisions, in bet order
  int64_t faults = 0;
  std::vector<FaultTally> firstFaults;
  std::vector<SessionRecord> records;  // for the player's sessions log, in the order made
};

struct SessionResult {
  int64_t number = 0;  // 1..M
  int64_t rolls = 0, hands = 0, passes = 0, misses = 0, pointsMade = 0, longestHand = 0;
  std::array<int64_t, 11> totals{};    // rolls of each total 2..12
  std::vector<PlayerSession> players;  // in the order of the run's players
  std::string runaway;                 // a script that looped without end: the stop text; the run ends here
};

struct ResearchPlayer {
  int seat = 0;
  std::string name, script;
};

// What the report of a run of sessions needs besides the sessions: who played, how the
// sessions were bounded, and the exact edge of every bet under the table's rules.
struct ResearchFacts {
  std::vector<ResearchPlayer> players;
  uint32_t seed = 0;
  int64_t sessions = 0;  // asked for, in the whole run
  int64_t sessionRolls = 0;
  double sessionHours = 0;
  Money stopLoss, stopWin;
  double rollsPerHour = 0;
  std::array<bool, kBets + 1> hasEdge{};
  std::array<double, kBets + 1> edge{};
  std::string fingerprint;  // of everything that decides the results
};

uint64_t SplitMix64(uint64_t& state);
// The seed of session k's selected generator, 1..maxSeed.
uint32_t SessionSeed(uint32_t runSeed, int64_t k, int32_t maxSeed);

// The session's bounds on a table set up by SetUpSimTable: its length, the stops.
void SetSessionRules(Game& g, const SimOptions& o, Runner& r);
// Plays session k on a table set up for it and returns what happened; the table is left
// empty. The dice come from SessionSeed(runSeed, k) unless the table has a roll file.
SessionResult PlaySession(Game& g, Runner& r, uint32_t runSeed, int64_t k);

// The facts of a run from a table set up for it (before it plays).
ResearchFacts FactsOf(const Game& g, const SimOptions& o, uint32_t seed);

// How far a run got: the sessions played (always 1..played of the slice) and why it ended
// early, if it did.
struct ResearchOutcome {
  int64_t first = 1, last = 0;  // the slice asked for
  int64_t played = 0;
  bool interrupted = false;
  std::string stopped;  // why the run stopped before its last session: a script or a file
};

// Checks that a run of sessions can be played and takes its facts from a trial table set
// up as every session's will be. Returns 0, or the exit code of a refusal said on `err`.
int PrepareResearch(const SimOptions& o, const SimPrepared& p, ResearchFacts& facts, std::ostream& err);

// Plays the sessions of the options: every session, or the shard's slice, on the workers.
// Each result is handed to `take` in session order on the calling thread, as soon as
// every session before it is done; `take` returns "" to go on, or why the run must stop.
// A script that loops without end ends the run after its session too. Shows the progress
// line when the options ask for it.
using TakeSession = std::function<std::string(const SessionResult&)>;
ResearchOutcome PlaySessions(const SimOptions& o, const SimPrepared& p, const ResearchFacts& facts,
                             const TakeSession& take);
// A run seed from the clock, for a run without --seed; within every generator's range.
uint32_t ClockSeed();

// The runs of many sessions: dicehall-sim with --sessions M (M > 1), --threads, --shard,
// --stop-loss, --stop-win, --session-hours or --csv; and the compare and merge commands.
int RunResearch(const SimOptions& o, const SimPrepared& p, std::ostream& out, std::ostream& err);
int RunCompare(const SimOptions& o, std::ostream& out, std::ostream& err);
int RunMerge(const SimOptions& o, std::ostream& out, std::ostream& err);
