#pragma once
// Settings that a game file keeps for the screens and the online panel: where each
// window stood, the last folders of the file windows, colours and choices. The engine
// never reads them; the desktop and the online panel do, and the game file carries them
// so that a table comes back as it was left.

#include <array>
#include <cstdint>
#include <string>

#include "engine/money.h"

// A window's place: the visible flag (-1 or 1 for an open window, 0 closed), then top,
// left, height and width in twips.
struct WindowSlot {
  int32_t Visible = 0;
  float Top = 0, Left = 0, Height = 0, Width = 0;
  bool operator==(const WindowSlot&) const = default;
};

// The windows that have a slot, in no particular order; the game file fixes where each
// slot is written.
enum WindowId {
  kWinDiceRollFiles,
  kWinAutoPlay,  // visible, top and left only
  kWinAutoBet,
  kWinRyon,
  kWinDice,
  kWinPlayers,
  kWinBetPossibilities,
  kWinOnline,
  kWinSessions,
  kWinEventsLog,
  kWinSummary,
  kWinBankroll,
  kWinRollTotals,
  kWinRollFreqs,
  kWinBetResults,
  kWinBetTrends,
  kWinCheckStacks,
  kWinHands,
  kWinHotKeys,
  kWinFile,  // top, left, height, width, then its flag
  kWinMove,  // flag, top and left only
  kWinRolls,
  kWindowCount
};

// The kinds of file the file window remembers a last folder for.
enum FileKind { kFolderGame, kFolderAutoBet, kFolderRoll, kFolderProbability, kFolderEventsLog, kFolderSessionsLog };
constexpr int kFileKinds = 6;

struct DesktopSettings {
  int32_t MainWindowState = 0;
  float MainTop = 0, MainLeft = 0, MainHeight = 0, MainWidth = 0;
  std::array<WindowSlot, kWindowCount> Windows{};
  std::array<float, 8> RailLeft{}, RailTop{};  // the eight rail pictures
  float RollTotalsFactor = 0.36f;              // a setting of frmRollTotals
  std::array<int32_t, 40> TableViews{};        // 10 saved zoom steps of frmMove, 4 words each
  std::array<std::string, kFileKinds> LastFolders{};
  int32_t TableLeft = 0, TableTop = 0;  // the table picture's place
  int32_t SelectedSeat = 0;
  int32_t DiceAngle = 0, ThrowFigure = 0, SignShown = 0, TableView = 0;
  bool IntroDone = false;                 // the introductions of first use have been shown
  std::array<int32_t, 10> LastTabs{};     // frmAutoPlay, frmSummary, frmBetResults, frmBetTrends, frmCheckStacks,
                                          // frmConfigure, frmBankroll, frmAutoBet, frmSessions, frmHands
  std::array<int32_t, 9> CheckColours{};  // the players' check colours, seats 0..8
  int32_t PalettePosition = 0;
  std::array<int32_t, 6> NewGameChoices{};  // frmNew
  std::array<int32_t, 16> RollsLayout{};    // frmRolls: 8 settings, 7 column colours, 1 more
  // Record 27's presentation values.
  int32_t ConfigurePage = 0, ChecksSelected = 0, CheckSize = 0, DiceSize = 0;
  std::array<int32_t, 4> Sounds{};  // stick, dice, check, win: the choice in each list
  bool AutoBetSoundsOff = false, AllSoundsOff = false;
  std::array<int32_t, 3> PrintFontSizes{10, 10, 10};
  int32_t PercentageShowMode = 0;
  std::array<int32_t, 5> DicePictures{};
  std::array<int32_t, 3> PropWindow{};
  Money Volume = Money::Dollars(100);
  int32_t AdvantageListPosition = 0, PayoffListPosition = 0;
  bool CountZeroOutcomes = false, ShowMiscData = false;
  std::array<int32_t, 49> TableColours{};
  std::array<int32_t, 6> Textures{};            // 5 texture indices, then the spotlight level
  std::array<int32_t, 46> RollTotalsColours{};  // 10 settings, then 36 colours
  std::array<int32_t, 27> RollTotalsMore{};
  std::string CaptionSetting;
  std::array<int32_t, 50> MainMenus{};    // option menus of the main window, frmHotKeys, frmBankroll, frmBetResults
  std::array<int32_t, 37> AutoBetGrid{};  // 1 word, then 36 colours
  std::array<int32_t, 9> ScriptPanel{};   // the script panel's own settings
  std::array<std::array<int32_t, 3>, 9> ScriptPanelSeats{};  // three flags per seat 1..8
  std::array<std::string, 9> CheckStackFiles{};              // the last text file of each seat's CheckStacks
  std::string Caption = "DiceHall";                          // the main window's caption
  bool operator==(const DesktopSettings&) const = default;
};

// The host panel's settings (the game and host names are kept by the table itself).
struct OnlineSettings {
  std::string GamePassword, LastPassword, GameNotes;
  int32_t CountdownToLockout = 8;
  int32_t RollDelay = 2;
  bool AllowNewClientsToChat = true;
  bool AllowNewPlayersToAutobet = true;
  int32_t ChatFontSize = 10;
  bool ChatItalic = false, ChatBold = false;
  bool ColorScheme = false;
  int32_t NameAlert = 0;
  bool operator==(const OnlineSettings&) const = default;
};
