#pragma once
// Every call the desktop makes to the game file at start-up and exit, in one place: the
// game named on the command line or the last default game at start, "default.crp" at
// close, and the Open and Save items of the Game menu.

#include <string>

#include "engine/game_state.h"

// Opens the game file named on the command line, else "default.crp", else sets the
// default game.
void OpenStartGame(Game& g, const std::string& commandLine);
// Saves "default.crp" as the main window closes.
void SaveGameAtClose(Game& g);
