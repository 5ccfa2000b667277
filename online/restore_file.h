#pragma once
// Online play keeps two working snapshots in the program folder: "restore.crp", a
// client's own game, saved as it joins a table and put back when it leaves; and
// "restore host.crp", the host's table as it opened, put back when a client that
// operated the table has gone. They are game files; taking or reopening one leaves the
// name of the game being played as it was.

#include <string>

#include "storage/game_file.h"

struct Game;

inline constexpr const char* kClientRestoreFile = kRestoreGameFile;
inline constexpr const char* kHostRestoreFile = kRestoreHostGameFile;

// The name of the game being played, its changed mark and caption: a snapshot keeps them.
struct GameName {
  std::string file, caption;
  bool changed = false;
};
GameName NameOf(const Game& g);
void Rename(Game& g, const GameName& name);

// The game file's save and open as a snapshot uses them.
bool SaveSnapshot(Game& g, const std::string& path);
bool OpenSnapshot(Game& g, const std::string& path);

// How the snapshots are taken: the game file by default; tests put their own, and a
// program that keeps no game of its own (the headless client) none.
struct RestoreFileCalls {
  bool (*Save)(Game& g, const std::string& path) = &SaveSnapshot;
  bool (*Open)(Game& g, const std::string& path) = &OpenSnapshot;
};

// Saves (open false) or reopens (open true) the snapshot `name` in the program folder;
// false when there is no program folder, no call, or the file failed.
bool RestoreFile(Game& g, const RestoreFileCalls& calls, const char* name, bool open);
