#pragma once
// A point of the table picture or a key becomes a thing of the game: a placement, a
// removal, a call on or off, a roll, a selection. Plain procedures over the game and the
// surface's own input state; the widget only reads the id map and calls these.

#include "engine/game_state.h"
#include "surface/table_geometry.h"

// The input state of the table: who is selected, what a left click puts down.
struct TableInput {
  int HoverId = 0;         // the region at the pointer, after the Don't Come Odds fall-back
  int SelectedPlayer = 0;  // seat 0..8
  int SelectedCheck = 1;   // 1..5 a check, 7..10 a shortcut CheckStack, 990..992 a tool
  int OneShotMode = 0;     // 0 none, 1 call on, 2 call off, 3 buy, 4 remove; 10 + seat moves that seat
  Money RememberedAmount;  // the amount an Alt-click took down
  int RackRotation = 0;
  bool BetsAsNumbers = false;
  std::string Status;  // a line for the status bar, "" for none
};

// Mouse buttons and modifier keys as the table reads them.
constexpr int kLeftButton = 1, kRightButton = 2;
constexpr int kShift = 1, kCtrl = 2, kAlt = 4;

// Modes of the one-shot menu items.
constexpr int kModeCallOn = 1, kModeCallOff = 2, kModeBuy = 3, kModeRemove = 4, kModeMove = 10;

// The hovered id with the fall-back of the Don't Come Odds boxes (to their flat bet when
// the selected player has none on it).
int HoverTarget(const Game& g, const TableInput& in, int id);
void LayoutMouseMove(const Game& g, TableInput& in, int id);

// The bet a click on `id` acts on for the seat: the odds regions fall back to the bet
// underneath while they hold nothing and can't take odds; `removing` falls back whenever
// there are no odds. Ids 201..204 map through the seat's shortcut table.
int ClickTarget(const Game& g, int seat, int id, bool removing);

// What a click asks of the window beyond the stores it changed.
enum class ClickEffect { None, Rolled, StartRollRequested, StopAsked, PlayedStick };

// A click at (x, y) in table units on region `id`. Rolls, places, removes, calls, selects
// and adds players as the table's rules say; every refusal is told through the game's
// interface.
ClickEffect LayoutMouseDown(Game& g, TableInput& in, const TableGeometry& geo, int button, int shift, int id, float x,
                            float y);

// Keys of the table, independent of the windowing system's codes.
enum class TableKey {
  None,
  Left,
  Right,
  Up,
  Down,
  Space,
  C,
  W,
  P,
  Enter,
  Delete,
  Digit1,
  Digit2,
  Digit3,
  Digit4,
  Digit5
};
// Returns whether the key was the table's.
bool TableKeyDown(Game& g, TableInput& in, const TableGeometry& geo, TableKey key, int shift);

// The amount a left click puts down with the selected check: a check's denomination, or
// the value of a shortcut CheckStack; 0 for a tool.
Money SelectedAmount(const Game& g, const TableInput& in);
