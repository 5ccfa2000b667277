#pragma once
// A table of dicehall-sim set up from the options, and the runner that plays it between
// rolls: the same for a single run and for every session of a run of many.

#include <array>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "app/sim/sim.h"
#include "engine/game_state.h"

// A refusal before anything is written: the message, and the exit code. A script's
// compile fault stands as a compiler prints it, FILE:LINE:COL-LINE:COL: message.
struct RunFault {
  int code = 0;
  std::string text;
  bool ownLine = false;
};
// Says the fault on `err`; returns its exit code.
int TellFault(const RunFault& fault, std::ostream& err);

// What every table of a run is set up from, read and checked once before any table is.
struct SimPrepared {
  RuleSet rules;  // the rules of the options, over the defaults (a saved game brings its own)
  std::vector<std::vector<std::string>> scripts;  // each player's script lines
  std::vector<bool> makesLineBets;                // whether the player's script bets a line
};
// Reads the rules, the scripts and the dice files of the options; false with the fault.
bool PrepareSim(const SimOptions& o, SimPrepared& prepared, RunFault& fault);
// The rules of the options applied over `rules` and validated; false with the fault.
bool BuildRules(const SimOptions& o, RuleSet& rules, RunFault& fault);

// Boxes a script opens (a Yes/No question is asked even in Hyper-Drive) are answered by
// default and not kept: a run of millions of rolls would keep millions of them.
class QuietUi : public HeadlessUi {
 public:
  MessageReply ShowMessage(const MessageRequest& request) override;
};

// Why a player's session ended.
enum class SessionEnd : uint8_t { Rolls, Hours, StopLoss, StopWin, Broke, TableStopped };
inline constexpr int kSessionEnds = 6;
// "rolls", "hours", "stop-loss", "stop-win", "broke", "table stopped".
const char* SessionEndName(SessionEnd end);

struct StandingBet {
  int seat;
  int bet;
  Money amount;
};

// A seat in a session of its own: where its result started, its peak and deepest fall,
// and whether the player is walking away (no new bets) or gone.
struct SeatPlay {
  bool walking = false, left = false;
  SessionEnd end = SessionEnd::Rolls;
  Money startNet, peak, drawdown;
  int32_t startRolls = 0;
};

// The runner between rolls: its standing bets, how far the run is, and why it stopped.
// With session rules the players walk away at the stops or the session's length, and the
// session ends when the last one has left.
struct Runner {
  std::array<StandingBet, 64> bets{};
  int count = 0;
  int64_t asked = 0;
  int64_t played = 0;
  bool primed = false;  // the hook has run once, before the first roll
  bool finished = false;
  bool interrupted = false;
  bool sessionRules = false;
  int64_t limitRolls = 0;  // the session's length in rolls; 0 none
  SessionEnd limitEnd = SessionEnd::Rolls;
  Money stopLoss, stopWin;  // 0 for none
  int32_t longestHand = 0;
  std::array<SeatPlay, kSeats> seats{};
  // At an online table the host passes the dice itself, so that its clients hear of it.
  bool online = false;
};

// Ctrl-C: a single run stops after the roll in progress; a run of sessions after the
// sessions in progress.
bool SimStopRequested();
void ClearSimStop();

// Sets a new table up as the options say, on `folder` ("" for a table that opens and
// writes no file): the program's start (every generator seeded from the clock when
// `clockSeeds`), the default game or the saved game, the rules, the generator, the
// players with their scripts, the standing bets and handling, Auto-Play and the dice
// sources. Returns 0, or the exit code once the reason is said on `err`.
int SetUpSimTable(Game& g, UserInterface& ui, const SimOptions& o, const SimPrepared& p, const std::string& folder,
                  bool clockSeeds, Runner& r, std::ostream& err);

// After every roll's scripts (and once before the first roll): count the roll, end the
// run or the players' sessions when due, and make the bets of the next roll.
void AfterEachRoll(Game& g, void* data);
// Auto-Roll at Hyper-Drive speed, with the runner counting the rolls.
void StartHyperDrive(Game& g);
void StopRolling(Game& g);
// Active scripts compiled and run once as activation runs them ("initializing script"
// true) before the first roll; false when they can't run (the table says why).
bool StartScripts(Game& g);
// The player's result so far: bankroll less what was put in, over every session of the table.
Money NetOf(const Game& g, int seat);
