#pragma once
// The seam for the game file. Online play keeps two working snapshots in the program
// folder: "restore.crp", a client's own game, saved as it joins a table and put back when
// it leaves; and "restore host.crp", the host's table as it opened, put back when a
// client that operated the table has gone. The game file's SaveGame and OpenGame are
// wired into RestoreFile (the one place that calls them); until then `calls` carries
// them, empty by default, and RestoreFile says nothing was saved.

#include <string>

struct Game;

inline constexpr const char* kClientRestoreFile = "restore.crp";
inline constexpr const char* kHostRestoreFile = "restore host.crp";

struct RestoreFileCalls {
  bool (*Save)(Game& g, const std::string& path) = nullptr;
  bool (*Open)(Game& g, const std::string& path) = nullptr;
};

// Saves (open false) or reopens (open true) the snapshot `name` in the program folder;
// false when no game file is wired or the file failed.
bool RestoreFile(Game& g, const RestoreFileCalls& calls, const char* name, bool open);
