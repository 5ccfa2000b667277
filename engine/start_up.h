#pragma once
// Start-up and exit, shared by the programs: the desktop passes the steps that need its
// window as hooks; the headless programs leave them empty. The interface and the clock
// are the ones the Game holds.

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/game_state.h"

inline constexpr const char* kPrivateFontFile = "CPF Serif Pro-Bold.otf";
inline constexpr const char* kPrivateFontName = "CheapProFonts Serif Pro";
inline constexpr const char* kFallbackFontName = "Arial";
inline constexpr const char* kHelpFile = "dicehall.chm";

// The four sound lists, by pattern: stickman's calls, dice, winnings, checks.
inline constexpr std::array<const char*, 4> kSoundPatterns = {".stk", ".dce", ".win", ".chp"};
using SoundLists = std::array<std::vector<std::string>, 4>;

// The steps of start-up that belong to the program with the window; any may be empty.
struct StartUpHooks {
  std::function<bool(const std::string& fontPath)> LoadFont;  // true when the font could be loaded
  std::function<void()> SetUpTable;                           // hot spots, stacks of checks, the picture
  std::function<void(const SoundLists&)> FillSoundLists;
  std::function<void()> PrepareSeatPanels;
  std::function<void()> ShowMainWindow;  // and close the opening display
  std::function<int()> RunEventLoop;     // the exit code
};

// What start-up found, for the window to use.
struct StartUpFacts {
  std::string HelpFile;
  std::string FontName;
  int32_t SpeedCount = 0;
  SoundLists Sounds;
};

// Loop rounds the machine makes in 100 milliseconds of `clock`, divided by 10; measured
// once per process.
int32_t MeasureSpeedCount(Clock& clock);
// The files of the program folder that end in `pattern`, in name order ("" folder: none).
std::vector<std::string> ListSoundFiles(const std::string& folder, const std::string& pattern);

// Opens the game file named on the command line (trimmed, quotes stripped) when it is
// one; otherwise says so and opens "default.crp", or sets the default game.
bool OpenByCommandLine(Game& g, const std::string& commandLine);

// The start-up steps in their order, from the program folder to the open game file and
// the window; a failure of a step asks whether to go on. Returns the event loop's exit
// code (0 with no loop), or 1 when the user chose to stop.
int Main(Game& g, const std::string& programFolder, const std::string& commandLine, const StartUpHooks& hooks,
         StartUpFacts* facts = nullptr);

// Closing the main window: Auto-Roll stops and the table is saved as "default.crp".
bool ExitGame(Game& g);
