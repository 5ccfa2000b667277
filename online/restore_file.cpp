#include "online/restore_file.h"

#include <filesystem>

#include "engine/game_state.h"

GameName NameOf(const Game& g) { return {g.GameFileName, g.Desktop.Caption, g.GameChanged}; }

void Rename(Game& g, const GameName& n) {
  g.GameFileName = n.file;
  g.Desktop.Caption = n.caption;
  g.GameChanged = n.changed;
}

bool SaveSnapshot(Game& g, const std::string& path) {
  const GameName name = NameOf(g);
  const bool saved = SaveGame(g, path);
  Rename(g, name);
  return saved;
}

bool OpenSnapshot(Game& g, const std::string& path) {
  const GameName name = NameOf(g);
  const bool opened = OpenGame(g, path);
  if (opened) Rename(g, name);
  return opened;
}

bool RestoreFile(Game& g, const RestoreFileCalls& calls, const char* name, bool open) {
  // A table without a folder of its own writes no file.
  if (g.ProgramFolder.empty()) return false;
  const std::string path = (std::filesystem::path(g.ProgramFolder) / name).string();
  if (open) return calls.Open != nullptr && calls.Open(g, path);
  return calls.Save != nullptr && calls.Save(g, path);
}
