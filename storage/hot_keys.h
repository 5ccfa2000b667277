#pragma once
// The table's hot keys: loaded from the HotKeysFile the game names, saved after every
// change of the list or of a button's place. The desktop draws the buttons from
// Game::HotKeys; running a key is RunHotKey (autobet/script_files.h).

#include <vector>

#include "engine/game_state.h"

// Reads g.HotKeysFileName (a bare name in the program folder). A missing file is made
// empty. A file that is no true hot-keys file is refused with kNotAHotKeysFile and the
// list stays as it was.
bool LoadHotKeys(Game& g);
// Writes the list to g.HotKeysFileName at once; told under "SaveHotkeys" when it fails.
bool SaveHotkeys(Game& g);

// The hot buttons' menus: line the selected buttons up on the first one's column or row,
// or push them together, closing the gaps, toward a side (or two sides at once).
enum class HotButtonMove {
  AlignColumn,       // mnuHotButtonAlignCol
  AlignRow,          // mnuHotButtonAlignRow
  SnugUp,            // mnuHotButtonSnugUp
  SnugDown,          // mnuHotButtonSnugDown
  SnugLeft,          // mnuHotButtonSnugLeft
  SnugRight,         // mnuHotButtonSnugRight
  SnugAllLeftDown,   // mnuHotButtonSnugAllLD
  SnugAllLeftUp,     // mnuHotButtonSnugAllLU
  SnugAllRightDown,  // mnuHotButtonSnugAllRD
  SnugAllRightUp     // mnuHotButtonSnugAllRU
};
// Moves the selected entries' buttons (indices into g.HotKeys; a button is `width` by
// `height` on the table) and saves the file with their new places.
bool MoveHotButtons(Game& g, const std::vector<int>& selected, HotButtonMove how, float width, float height);
