#pragma once
// Script files (.bet): today's plain text, one source line a text line, and the record
// form of earlier data formats, whose lines are converted into current source as they
// are read so that every script ever saved still compiles. Hot keys run their .bet file
// through the same reader.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/game_state.h"
#include "storage/file_bytes.h"

// The marks of the record form, each compared over exactly its own length.
inline constexpr std::string_view kLegacyAutoBetMarks[] = {
    "Ivoryhouse AutoBets, Data Format 5.0", "DiceHall AutoBets, Data Format 3.9", "DiceHall AutoBets, Data Format 5.0"};
constexpr int kLegacyTextChars = 128;
constexpr uint64_t kMaxScriptFileBytes = uint64_t{16} << 20;

// The source lines of a file's bytes: the record form converted when record 1 has a
// mark, otherwise text (line ends of either kind). Never fewer than one line.
std::vector<std::string> AutoBetLinesFromBytes(const Bytes& bytes);
// The word conversion of a plain statement of the record form.
std::string ConvertLegacyWords(std::string line);
// A pair of that conversion: every place of `from` (ignoring case) becomes `to`.
struct LegacyWordPair {
  std::string_view from, to;
};
// The conversion's pairs in the order they are applied.
std::span<const LegacyWordPair> LegacyWordPairs();
// The record form of `lines`, each kept as it stands (kind 99) under the latest mark.
// False for a line longer than a record's text.
bool LegacyAutoBetBytes(const std::vector<std::string>& lines, Bytes& out);

// The lines of a script file; false when the file can't be read.
bool ReadAutoBetFile(const std::string& path, std::vector<std::string>& lines);
// Writes the lines as text, each ended by a line break, replacing the file at once.
bool WriteAutoBetFile(const std::string& path, const std::vector<std::string>& lines);

enum class AutoBetLoad { Seat, Paste, HotKey };
// Loads the file into the seat's source list and names it the seat's script file; with
// Paste inserts its lines into the seat's list before line `pasteLine` (from 0) instead;
// with HotKey loads the scratch list (seat 0) and names nothing. A missing file does
// nothing (false); one that can't be read is told under "OpenAutoBets".
bool OpenAutoBets(Game& g, int seat, const std::string& path, AutoBetLoad load = AutoBetLoad::Seat, int pasteLine = 0);
// Writes the seat's list to its script file, told under "SaveAutoBets" when it fails.
bool SaveAutoBets(Game& g, int seat);

// A hot key pressed on the table: the entry's script is loaded, compiled as the scratch
// script and run once as a program of its own; the seats' compiled scripts stay as they
// are. False when the key has no entry, its file is missing or it doesn't compile (told).
bool RunHotKey(Game& g, char key);
