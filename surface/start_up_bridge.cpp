#include "surface/start_up_bridge.h"

#include "engine/roll_cycle.h"
#include "engine/start_up.h"
#include "storage/game_file.h"

void OpenStartGame(Game& g, const std::string& commandLine) {
  SetDefaultGame(g);
  OpenByCommandLine(g, commandLine);
}

void SaveGameAtClose(Game& g) { ExitGame(g); }
