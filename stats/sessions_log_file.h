#pragma once
// The sessions log on disk (.slg): one player's finished sessions, one fixed record
// each, so that any session can be read directly.
//
// Random-access records of 256 bytes:
//   record 1  bytes 0..91 the format line padded with blanks, 92..95 the number of
//             session records (int32 little-endian), 96..255 kept as read;
//   record n + 1  session n: 32 Money fields (int64 little-endian ten-thousandths).
// The count in the header governs: records past it are ignored.
//
// Nothing here knows the game; every failure is a message in `error` and leaves the
// file as it was.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/money.h"

inline constexpr const char* kSessionsLogHeader = "DiceHall Sessions Log, Data Format 5.0";
inline constexpr const char* kNotASessionsLog =
    "This file is either from an older version, has been corrupted, or is not a true DiceHall Sessions Log.";
constexpr int kSessionRecordBytes = 256;
constexpr int kSessionFields = 32;
constexpr int kSessionStacks = 20;  // CheckStacks 0..19; higher ones are not recorded

using SessionRecord = std::array<Money, kSessionFields>;

// Fields of a session record, in file order.
namespace slg {
constexpr int Rolls = 0, BetsDecided = 1, BetsWon = 2, BetsLost = 3, BetsNet = 4, Handle = 5, AmountWon = 6,
              AmountLost = 7, AmountNet = 8, PercentWonLost = 9, Invested = 10, Ending = 11, FirstStack = 12;
}

// The cmbStat entries of fields 0..11; fields 12..31 take the stack's name.
inline constexpr std::array<const char*, slg::FirstStack> kSessionFieldNames = {"# Rolls",
                                                                                "# Bets Decided",
                                                                                "# Bets Won",
                                                                                "# Bets Lost",
                                                                                "# Bets Won/Lost (Net)",
                                                                                "$ Bets Decided (Handle)",
                                                                                "$ Bets Won",
                                                                                "$ Bets Lost",
                                                                                "$ Bets Won/Lost (Net)",
                                                                                "% Won or Lost (HA)",
                                                                                "Invested bankroll",
                                                                                "Ending bankroll"};

struct SessionsLogFile {
  std::array<unsigned char, kSessionRecordBytes - 96> Unused{};  // header bytes 96..255
  std::vector<SessionRecord> Records;
};

// Writes a header with count 0, replacing whatever the file held. `label` names the
// procedure in the error report.
bool CreateNewSessionsLog(const std::string& path, std::string& error, const char* label = "CreateNewSessionsLog");
// Reads the header and the records it counts. A wrong header, a count below 0 or a file
// shorter than the count are refused with kNotASessionsLog; `out` is then untouched.
bool ReadSessionsLog(const std::string& path, SessionsLogFile& out, std::string& error, const char* label);
// The count from the header alone, for scrolling a long log.
bool ReadSessionsCount(const std::string& path, int32_t& count, std::string& error, const char* label);
// Session `index` (0-based) read directly.
bool ReadSessionRecord(const std::string& path, int32_t index, SessionRecord& out, std::string& error,
                       const char* label);
// Writes the record after the last counted one, then the header's new count: a crash
// between the two leaves the log as it was.
bool AppendSessionRecord(const std::string& path, const SessionRecord& record, std::string& error,
                         const char* label = "AddSessionRecord");
// Replaces the whole file: written beside it first, then moved over it, so a failure
// leaves the old log.
bool WriteSessionsLog(const std::string& path, const SessionsLogFile& log, std::string& error, const char* label);
// Appends the records of `other` to the log at `path`. Both must be true logs.
bool MergeSessionsLogs(const std::string& path, const std::string& other, std::string& error,
                       const char* label = "MergeSessionsLog");
// Removes the sessions of the given 0-based numbers; numbers outside the log are ignored.
// The header's unused bytes stay as they were.
bool DeleteSessions(const std::string& path, const std::vector<int32_t>& sessions, std::string& error,
                    const char* label = "DeleteSessions");
bool DeleteAllSessions(const std::string& path, std::string& error, const char* label = "DeleteSessions");
