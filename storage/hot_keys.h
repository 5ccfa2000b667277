#pragma once
// The table's hot keys: loaded from the HotKeysFile the game names, saved after every
// change of the list or of a button's place. The desktop draws the buttons from
// Game::HotKeys; running a key is RunHotKey (autobet/script_files.h).

#include "engine/game_state.h"

// Reads g.HotKeysFileName (a bare name in the program folder). A missing file is made
// empty. A file that is no true hot-keys file is refused with kNotAHotKeysFile and the
// list stays as it was.
bool LoadHotKeys(Game& g);
// Writes the list to g.HotKeysFileName at once; told under "SaveHotkeys" when it fails.
bool SaveHotkeys(Game& g);
