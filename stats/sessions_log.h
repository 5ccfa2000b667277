#pragma once
// The sessions log of each player: a record of every finished session, made from the
// seat's "Current session" stores, and what frmSessions does with the log. The path of
// a seat's log is kept by the caller per seat and filled here when it is still empty.
//
// Every failure is told to the user (", Error #" reports, or the refusal of a file that
// is no true log) and leaves the log and the path as they were.

#include <string>
#include <vector>

#include "engine/game_state.h"
#include "stats/sessions_log_file.h"
#include "stats/sessions_stats.h"

inline constexpr const char* kSessionsLogErrorTitle = "Sessions Log Error";
inline constexpr const char* kSessionsStandby = "Standby ...";
inline constexpr const char* kSessionsCalculating = "calculating statistics";

// The program folder, the player's name and ".slg"; "" with no program folder, so that
// a table without one (a test, a bare simulation) never writes a log.
std::string DefaultSessionsLogPath(const Game& g, int seat);

// The 32 fields of the seat's current session, in file order.
SessionRecord SessionRecordOf(const Game& g, int seat);

// Appends the seat's session to its log, creating the log when the file is missing.
// An empty `path` takes the default first. Does nothing for an empty seat. With the
// table's SessionSink set, the session goes to the sink instead and no file is touched.
// Label "AddSessionRecord".
bool AddSessionRecord(Game& g, int seat, std::string& path);

// A new session with no session written: the seat's log starts afresh. An existing
// true log is kept only for an online player who answers yes to resuming it; a file
// that is no true log is refused and left alone.
bool StartSessionsLog(Game& g, int seat, std::string& path, bool online);

// "&New": a log with no sessions at `path`. Label "CreateNewSessionsLog".
bool CreateNewSessionsLog(Game& g, const std::string& path);
// "&Open ...": the seat takes `chosen` only if it is a true log.
bool OpenSessionsLog(Game& g, std::string& path, const std::string& chosen);
// "&Merge ...": appends the sessions of `other`.
bool MergeSessionsLog(Game& g, const std::string& path, const std::string& other);
// "&Delete all sessions", after the player's yes.
bool DeleteAllSessions(Game& g, int seat, const std::string& path);
// "&Delete selected sessions ...": 0-based session numbers.
bool DeleteSelectedSessions(Game& g, const std::string& path, const std::vector<int32_t>& sessions);

// The text shown when the statistics fail for `player`; `dataCaption` is the caption
// of the option button that shows the records.
std::string SessionsStatsErrorText(const std::string& player, const std::string& dataCaption = "Data");

// Reads the seat's log and computes the statistics for frmSessions. A file fault is
// reported with the label "UpdateSessionsLog"; a fault of the calculation shows
// SessionsStatsErrorText under "Sessions Log Error" (the records can still be shown).
bool UpdateSessionsLog(Game& g, int seat, const std::string& path, const SessionsFilter& filter, SessionsStats& out);
