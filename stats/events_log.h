#pragma once
// The events log: a running text record of the table, kept on disk and never in memory,
// with an index file of 4-byte line positions beside it for random access.
//
// Every writer is called behind `if (g.RecordEvents)` and builds its text only then, so
// that a table with the log off pays one branch per call point. AddEventLine is the only
// writer of the files; it tests neither RecordEvents nor the categories.

#include <string>

#include "stats/events_log_state.h"

struct Game;

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

// "&Record events" switched on while a session runs: the chosen kinds of event from now
// on, starting with the session's header.
void RecordEventsFromNow(Game& g);
// "&Record events" switched off: the log keeps what it has.
void StopRecordingEvents(Game& g);
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
