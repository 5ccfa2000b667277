#include "surface/start_up_bridge.h"

#include "engine/roll_cycle.h"

// This file is the seam for the game file: until the desktop is joined to it, the table
// starts from the default game, a game named on the command line is not read, nothing
// is saved at close, and the Open and Save items stay hidden. Joining it means calling
// the game file's OpenByCommandLine here, its save of "default.crp" in SaveGameAtClose,
// and answering true in GameFilesAvailable.

void OpenStartGame(Game& g, const std::string& commandLine) {
  (void)commandLine;
  SetDefaultGame(g);
}

void SaveGameAtClose(Game& g) { (void)g; }

bool GameFilesAvailable() { return false; }
