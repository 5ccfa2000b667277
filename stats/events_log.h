#pragma once
// The events log: a running text record of the table, kept on disk and never in memory,
// with an index file of 4-byte line positions beside it for random access.
//
// Every writer is called behind `if (g.RecordEvents)` and builds its text only then, so
// that a table with the log off pays one branch per call point. AddEventLine is the only
// writer of the files; it tests neither RecordEvents nor the categories.

#include <array>
#include <cstdint>
#include <string>

#include "engine/bets.h"
#include "engine/money.h"

struct Game;

// Bits of Game::EventsLogCategories: the eight kinds of event that can be chosen.
namespace events {
constexpr int32_t kRolls = 1, kBetChanges = 2, kCheckStackChanges = 4, kShooterChanges = 8, kBetsWon = 16,
                  kBetsLost = 32, kPassesMisses = 64, kBankrollChanges = 128;
constexpr int32_t kAllKinds = 255;
}  // namespace events

inline constexpr const char* kEventsLogIndexName = "Events Log.ref";

// Where the dice of a roll came from, for the suffix of the roll line.
enum class RollSource { OnlineHost, ManualPad, PopupFile, RollFile, Generator };

struct EventsLog {
  bool ClearLogNewSessions = false;  // "&Clear log when new sessions start"
  bool KeepLatestRollOnTop = false;  // "&Scroll new rolls to the top"
  int32_t TopLine = 1;               // the line shown at the top of the view
  std::string FindText;              // what Find looked for last

  // Working values between the writers of one roll and the next.
  bool ResultHeaderWritten = false;    // "    Wins/losses:" once per roll
  bool FailureReported = false;        // a failing file is told once, until a line goes in again
  std::array<Money, kSeats> AtmNet{};  // ATM since the last roll's log: + withdrawal, - deposit
  // Come and Don't Come flats that travelled to their numbers at the last roll: the bets
  // section counts that as no change. 0..5 Come 4..10, 6..11 Don't Come 4..10.
  std::array<std::array<Money, 12>, kSeats> Moved{};
  std::array<bool, kSeats> SeatLeft{};  // the seat's copies belong to a player who left
};

// ---- The files. ----------------------------------------------------------------------------

// The text file (EventsLogFile in the program folder) and the index (always in the
// program folder); "" with no program folder, where no log is kept.
std::string EventsLogTextPath(const Game& g);
std::string EventsLogIndexPath(const Game& g);
// Appends one line and its index record; both files are opened and closed each time.
bool AddEventLine(Game& g, const std::string& text);
// The index from the text file, for a log that came from elsewhere.
bool BuildEventsLogIndex(Game& g);
// Deletes both files; the view goes back to line 1.
bool ClearEventsLog(Game& g);
int32_t EventsLogLineCount(const Game& g);
// Line n (from 1) without its line end; "" outside the log.
std::string EventsLogLine(const Game& g, int32_t n);

// Find: asks for the text ("" or Cancel does nothing) and searches forward.
bool FindInLogAsk(Game& g);
// Find next (+1) or previous (-1) with the same text, wrapping round the log; asks
// first when there is no text yet. A hit becomes TopLine.
bool FindInLog(Game& g, int direction);

// ---- The lines, each at its place in the engine. -----------------------------------------

[[gnu::cold]] void StartEventsLogSession(Game& g);  // a new session: clear if asked, fresh working values
[[gnu::cold]] void LogSessionHeader(Game& g);
[[gnu::cold]] void LogChangesSinceLastRoll(Game& g);
[[gnu::cold]] void LogRollLine(Game& g, RollSource source);
[[gnu::cold]] void LogOutcome(Game& g, int pointBefore);
[[gnu::cold]] void LogBetResult(Game& g, int seat, int bet, Money payoff);
[[gnu::cold]] void LogBetMoved(Game& g, int seat, int from, int to, Money amount);
[[gnu::cold]] void LogRollEnd(Game& g);  // bankroll lines and, at a seven-out, the hand line
[[gnu::cold]] void LogSeeded(Game& g, int rng, int32_t seed);
[[gnu::cold]] void LogDicePassed(Game& g, int seat);
[[gnu::cold]] void LogCashedOut(Game& g, int seat, Money abandoned);
[[gnu::cold]] void LogPlayerMoved(Game& g, int from, int to);
