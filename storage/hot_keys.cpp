#include "storage/hot_keys.h"

#include "engine/messages.h"
#include "storage/error_report.h"
#include "storage/paths.h"

namespace {

std::string HotKeysPath(const Game& g) { return InProgramFolder(g.ProgramFolder, g.HotKeysFileName); }

}  // namespace

bool LoadHotKeys(Game& g) {
  const std::string path = HotKeysPath(g);
  if (g.ProgramFolder.empty() && path == g.HotKeysFileName && !RegularFileExists(path)) return false;
  if (!RegularFileExists(path)) {
    g.HotKeys.clear();
    return SaveHotkeys(g);
  }
  Bytes bytes;
  HotKeyTable table;
  constexpr uint64_t kMaxBytes = uint64_t{kMaxHotKeys + 1} * kHotKeyRecordBytes;
  if (!ReadWholeFile(path, bytes, kMaxBytes) || !ParseHotKeyFile(bytes, table)) {
    Tell(g, kNotAHotKeysFile, "Hot-keys", 0, msg::kAlertOk);
    return false;
  }
  g.HotKeys = std::move(table);
  if (g.Ui && !g.SilentMode) g.Ui->Refresh({"frmHotKeys"});
  return true;
}

bool SaveHotkeys(Game& g) {
  if (WriteFileAtomically(HotKeysPath(g), HotKeyFileBytes(g.HotKeys))) return true;
  Tell(g, ErrorReport("Path/File access error", 75, "SaveHotkeys"), "DiceHall", 0, msg::kAlertOk);
  return false;
}
