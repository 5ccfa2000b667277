#pragma once
// dicehall-sim: seats players with standing bets or scripts, plays Hyper-Drive sessions
// from any dice source and reports.

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "app/sim/sim_game.h"
#include "app/sim/sim_online.h"
#include "engine/money.h"
#include "storage/paths.h"

struct SimPlayer {
  std::string name;
  Money bankroll = Money::Dollars(1000);
  std::string script;  // a .bet file, or ""
};

struct SimBet {
  std::string player;  // "" when the only player is meant
  int bet = 0;
  Money amount;
};

// What a seat does with a bet that won or lost: the action of the handling table and,
// for "modify" and "set", the rule.
struct SimHandling {
  std::string player;  // "" for every player
  bool winning = true;
  int action = 1;
  int op = 0;  // 0 add, 1 subtract, 2 multiply, 3 divide
  Money operand;
  int units = 0;  // 0 dollars, 1 percent, k + 1 for check size k
};

// Where the dice come from: the selected generator (through a probability table when one
// is given), a dice roll file played back, or a pop-up roll file; and what is recorded.
struct SimDice {
  int rng = 0;  // 1..8; 0 keeps the generator the program starts with (#1)
  bool reseedSessions = false;
  std::string prbFile;
  std::string recordFile;
  std::string playbackFile;
  int64_t fromRoll = 1;
  std::string popupFile;
};

// What a run of many sessions adds: the session rules, the workers, the shard it plays,
// and the files it writes beside the report.
struct SimResearch {
  bool on = false;  // the sessions are independent, each on a table of its own
  int threads = 0;  // 0: the cores of the machine
  Money stopLoss;   // 0 for none
  Money stopWin;    // 0 for none
  double sessionHours = 0;
  int shardIndex = 0;  // 1..shardCount; 0 plays every session
  int shardCount = 0;
  std::string partialFile;
  std::string csvFile;
};

// dicehall-sim's commands besides a run.
enum class SimCommand { Run, Compare, Merge };

struct SimOptions {
  SimCommand command = SimCommand::Run;
  std::vector<std::string> files;  // compare: the two systems; merge: the partial result files
  SimResearch research;
  std::vector<SimPlayer> players;
  std::vector<SimBet> bets;
  std::vector<SimHandling> handling;
  int64_t rolls = 1000;      // the run's rolls in all, whatever sessions a script starts
  int64_t sessions = 1;      // the runner's sessions, of sessionRolls each
  int64_t sessionRolls = 0;  // 0: one session of `rolls` (or of --session-hours)
  bool seeded = false;
  uint32_t seed = 0;
  SimDice dice;
  bool eventsLog = false;
  bool dumpRules = false;
  std::string rulesFile;
  std::vector<std::string> ruleAssignments;
  std::string dataDir;
  bool bench = false;
  bool json = false;
  std::string checkFile;  // --check: compile this script and say where it fails
  bool dump = false;
  bool progress = false;  // a progress line on stderr (set when stderr is a terminal)
  std::string gameFile;   // --game: play on from a saved game
  std::string saveFile;   // --save: save the table at the end
  std::vector<SimAutoPlay> autoPlay;
  OnlineOptions online;
};

// Parses the command line. Returns -1 to go on, else the exit code (0 for --help,
// 2 for bad options), with what to say written to `out` or `err`.
int ParseSimOptions(int argc, const char* const* argv, SimOptions& options, std::ostream& out, std::ostream& err);
// Runs the sessions and prints the report (or the benchmark, the script check, the rules).
// Returns the exit code: 0 done or stopped by the table, 1 a script or file fault, 2 bad
// options or rules, 130 interrupted.
int RunSim(const SimOptions& options, std::ostream& out, std::ostream& err);
// Compiles the script of --check as seat 1's, occupied by the first --player (else
// "Ann"); prints "OK" or FILE:LINE:COL-LINE:COL: message. Returns the exit code.
int RunCheck(const SimOptions& options, std::ostream& out, std::ostream& err);
// The lines of a script file (line ends of either kind); false when it can't be read.
bool ReadScriptLines(const std::string& path, std::vector<std::string>& lines);
// A compile fault as FILE:LINE:COL-LINE:COL: message, on one line.
std::string FaultLine(const std::string& file, const struct CompileFault& fault);
// The fixed seeded scenarios with their speed and signature.
int RunSimBench(std::ostream& out);

// Ctrl-C: a single run stops after the roll in progress (a script cycle in progress
// stops too); a run of sessions after the sessions in progress. Set by the program's
// signal handler (it is safe there); tests may set it.
void RequestSimStop();
