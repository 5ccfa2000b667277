#pragma once
// The game file (.crp): the whole table in 256-byte records, the program's only settings
// store. SaveGame and OpenGame are one pass over the records (storage/record_io.h), so the
// order of the records is written down once.
//
// Opening is all or nothing: the file is read into a game of its own and checked, and
// only then takes the table's place. Saving builds the file in memory and puts it on
// the disk in one rename, so that a crash leaves either the old file or the new one.

#include <array>
#include <string>

#include "engine/game_state.h"
#include "storage/file_bytes.h"

inline constexpr const char* kGameFileHeader = "DiceHall Pro Game File, Data Format 3.0";
inline constexpr const char* kDefaultGameFile = "default.crp";
inline constexpr const char* kRestoreGameFile = "restore.crp";
inline constexpr const char* kRestoreHostGameFile = "restore host.crp";
inline constexpr const char* kRollHistoryCopySuffix = " - roll history.rol";
inline constexpr const char* kDefaultProbabilityFile = "default.prb";

// The records with a fixed number. Blocks without a number follow record 27.
namespace gamefile {
constexpr int kHeader = 1, kMainWindows = 2, kReportWindows = 3, kRollsWindow = 4, kTableViews = 5, kLastFolders = 6,
              kOnlineTexts = 12, kOnline = 17, kTable = 18, kRollsLayout = 19, kRollHistory = 20, kDiceRollFile = 21,
              kDiceRollDisplay = 22, kProbabilityFile = 23, kHotKeysFile = 24, kEventsLog = 25, kEventsSwitches = 26,
              kSettings = 27, kRules = 28;
constexpr int kFixedRecords = 28;
}  // namespace gamefile

// A companion file named in a game file, with its date and time as text ("" for none).
struct NamedFile {
  std::string name, date;
};

// The companion files of a game file: named in it, tested when it is opened.
struct GameCompanions {
  NamedFile rollHistory;  // the copy of the roll history saved beside the game
  NamedFile diceRollFile;
  std::string diceRollDisplay;
  NamedFile probabilityFile;
  NamedFile hotKeysFile;
  NamedFile eventsLog;
  std::array<NamedFile, kSeats> scripts;  // the seats' scripts, 1..8
};

// Saves the table to `path` with its companion roll history, and remembers the name
// for Save. A failure is told ("Path/File access error" at "SaveGame") and leaves the
// old file as it was.
bool SaveGame(Game& g, const std::string& path);

// Opens a game file. A file that is missing, of another kind or version, short, or
// holding a value out of range is refused with the system's message and the table is
// exactly as it was. `atStartUp`: an old "default.crp" is passed over silently.
bool OpenGame(Game& g, const std::string& path, bool atStartUp = false);

// The limit stop for the first seat whose saved bankroll is beyond 9999999 (start-up
// calls it once the window shows; OpenGame at other times itself).
void StopAtBankrollLimit(Game& g);

// ---- The parts, for tests and the fuzz targets.

// The file's bytes for a table and the companions already settled.
Bytes GameFileBytes(const Game& g, const GameCompanions& companions);

enum class GameFileRead { Ok, NotDiceHall, OtherVersion, Corrupt };
// Reads the bytes into `scratch`, which must hold the default game; on anything but Ok
// `scratch` is left half-filled and must be thrown away.
GameFileRead ReadGameFileBytes(const Bytes& bytes, Game& scratch, GameCompanions& companions);

// "DiceHall", or "DiceHall (" + name + ")" for a file other than the three working ones.
std::string GameCaption(const std::string& path);
// The name of a game's roll history copy: the path without ".crp" and the suffix.
std::string RollHistoryCopyName(const std::string& gamePath);
