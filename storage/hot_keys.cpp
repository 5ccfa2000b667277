#include "storage/hot_keys.h"

#include <algorithm>

#include "engine/messages.h"
#include "storage/error_report.h"
#include "storage/paths.h"

namespace {

std::string HotKeysPath(const Game& g) { return InProgramFolder(g.ProgramFolder, g.HotKeysFileName); }

// Pushes the buttons together along one axis: sorted by their place, each one after the
// first stands right behind the one before, so that the row or column has no gaps. Toward
// the low side the first stays; toward the high side the last does.
void Snug(std::vector<HotKeyRecord*>& buttons, float HotKeyRecord::*place, float size, bool towardLow) {
  std::sort(buttons.begin(), buttons.end(), [&](auto* a, auto* b) { return a->*place < b->*place; });
  if (buttons.empty()) return;
  if (towardLow)
    for (size_t k = 1; k < buttons.size(); ++k) buttons[k]->*place = buttons[k - 1]->*place + size;
  else
    for (size_t k = buttons.size() - 1; k-- > 0;) buttons[k]->*place = buttons[k + 1]->*place - size;
}

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

bool MoveHotButtons(Game& g, const std::vector<int>& selected, HotButtonMove how, float width, float height) {
  std::vector<HotKeyRecord*> buttons;
  for (int i : selected)
    if (i >= 0 && static_cast<size_t>(i) < g.HotKeys.size()) buttons.push_back(&g.HotKeys[static_cast<size_t>(i)]);
  if (buttons.empty()) return false;
  const HotKeyRecord first = *buttons.front();
  using M = HotButtonMove;
  const bool left = how == M::SnugLeft || how == M::SnugAllLeftDown || how == M::SnugAllLeftUp;
  const bool right = how == M::SnugRight || how == M::SnugAllRightDown || how == M::SnugAllRightUp;
  const bool up = how == M::SnugUp || how == M::SnugAllLeftUp || how == M::SnugAllRightUp;
  const bool down = how == M::SnugDown || how == M::SnugAllLeftDown || how == M::SnugAllRightDown;
  for (HotKeyRecord* b : buttons) {
    if (how == M::AlignColumn) b->Left = first.Left;
    if (how == M::AlignRow) b->Top = first.Top;
  }
  if (left || right) Snug(buttons, &HotKeyRecord::Left, width, left);
  if (up || down) Snug(buttons, &HotKeyRecord::Top, height, up);
  return SaveHotkeys(g);
}
