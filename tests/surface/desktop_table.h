#pragma once
// The desktop table in a test: a game, its Qt interface and the main window on the
// offscreen platform, with clicks and keys as a player makes them.

#include <QPoint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "engine/game_state.h"
#include "surface/frm_crap_table.h"
#include "surface/pic_table.h"
#include "surface/qt_ui.h"
#include "tests/test_support.h"

// Amounts read as money in a failure.
inline void PrintTo(const Money& m, std::ostream* os) { *os << DollarText(m); }

struct DesktopTable {
  TempDir folder;
  std::unique_ptr<Game> game = std::make_unique<Game>();
  Game& g = *game;
  QtUi ui{g};
  std::unique_ptr<FrmCrapTable> window;
  // The replies a person would give, in order; when none is left the box's first button.
  std::vector<MessageReply> replies;

  // The table as the program starts it, seeded, at the window size given.
  explicit DesktopTable(int width = 1280, int height = 800);
  ~DesktopTable();
  PicTable& Table() const { return *window->Table(); }
  TableInput& Input() const { return Table().Input(); }

  // Clicks on the centre of a region, or at a pixel of the table.
  void Click(int id, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = Qt::NoModifier);
  void ClickAt(QPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = Qt::NoModifier);
  void Key(int key, Qt::KeyboardModifiers keys = Qt::NoModifier);
  // Seats a player by clicking the free rail position and answering the boxes.
  void SeatByClicks(int seat, const std::string& name, const std::string& buyIn);
  // The same check selected: a click on the seat's check of that index.
  void SelectCheck(int seat, int index) { Click(seat * 1000 + index); }
  // The next roll comes out as these dice.
  void NextDice(int die1, int die2);
  std::vector<std::string> Titles() const;
};
