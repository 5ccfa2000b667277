#pragma once
// The desktop table in a test: a game, its Qt interface and the main window on the
// offscreen platform, with clicks and keys as a player makes them.

#include <QApplication>
#include <QPoint>
#include <QTest>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "dice/seeding.h"
#include "engine/game_state.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
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
  explicit DesktopTable(int width = 1280, int height = 800) {
    g.ProgramFolder = folder.path.string();
    g.Ui = &ui;
    g.Time = &DefaultClock();
    SeedAtStartUp(g);
    SetDefaultGame(g);
    g.Dice.pendingSeed = Money::Dollars(4242);
    SeedRng(g, true);
    ui.answerMessage = [this](const MessageRequest& request) -> std::optional<MessageReply> {
      if (!replies.empty()) {
        MessageReply reply = replies.front();
        replies.erase(replies.begin());
        return reply;
      }
      MessageReply first;
      for (int b = kButtonOk; b <= kButtonCancel; ++b)
        if (request.Flags & (1 << b)) {
          first.Button = b;
          break;
        }
      return first;
    };
    window = std::make_unique<FrmCrapTable>(g, ui, nullptr);
    window->animationMs = 0;
    window->resize(width, height);
    window->show();
    QApplication::processEvents();
  }
  ~DesktopTable() {
    window.reset();
    g.Ui = nullptr;
  }
  PicTable& Table() const { return *window->Table(); }
  TableInput& Input() const { return Table().Input(); }

  // Clicks on the centre of a region, or at a pixel of the table.
  void Click(int id, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    ClickAt(Table().CentreOf(id), button, keys);
  }
  void ClickAt(QPoint at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    QTest::mouseMove(&Table(), at);
    QTest::mouseClick(&Table(), button, keys, at);
  }
  void Key(int key, Qt::KeyboardModifiers keys = Qt::NoModifier) { QTest::keyClick(&Table(), Qt::Key(key), keys); }
  // Seats a player by clicking the free rail position and answering the boxes.
  void SeatByClicks(int seat, const std::string& name, const std::string& buyIn) {
    replies = {{kButtonYes, "", false}, {kButtonOk, name, false}, {kButtonOk, buyIn, false}};
    Click(seat * 1000);
  }
  // The same check selected: a click on the seat's check of that index.
  void SelectCheck(int seat, int index) { Click(seat * 1000 + index); }
  // The next roll comes out as these dice.
  void NextDice(int die1, int die2) {
    g.Dice.padPending = true;
    g.Dice.padDie1 = die1;
    g.Dice.padDie2 = die2;
  }
};

constexpr int kAnnSeat = 4;  // 1L

// Ann at 1L with $1000 and her $5 check selected; no bet is needed to shoot.
struct Seated : DesktopTable {
  Seated() {
    g.Rules.BetNeededToShoot = 0;
    AddPlayer(g, kAnnSeat, "Ann", 1000_usd);
    SelectCheck(kAnnSeat, 2);
  }
};
