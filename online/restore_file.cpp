#include "online/restore_file.h"

#include <filesystem>

#include "engine/game_state.h"

bool RestoreFile(Game& g, const RestoreFileCalls& calls, const char* name, bool open) {
  const std::string path = (std::filesystem::path(g.ProgramFolder) / name).string();
  if (open) return calls.Open != nullptr && calls.Open(g, path);
  return calls.Save != nullptr && calls.Save(g, path);
}
