#include "tests/surface/desktop_table.h"

#include <QApplication>
#include <QTest>

#include "dice/seeding.h"
#include "engine/roll_cycle.h"

DesktopTable::DesktopTable(int width, int height) {
  g.ProgramFolder = folder.path.string();
  g.Ui = &ui;
  g.Time = &DefaultClock();
  SeedAtStartUp(g);
  SetDefaultGame(g);
  g.Dice.pendingSeed = Money::Dollars(4242);
  SeedRng(g, true);
  ui.answerMessage = [this](const MessageRequest& request) -> std::optional<MessageReply> {
    if (replies.empty()) {
      MessageReply first;
      for (int b = kButtonOk; b <= kButtonCancel; ++b)
        if (request.Flags & (1 << b)) {
          first.Button = b;
          break;
        }
      return first;
    }
    MessageReply reply = replies.front();
    replies.erase(replies.begin());
    return reply;
  };
  window = std::make_unique<FrmCrapTable>(g, ui, nullptr);
  window->animationMs = 0;
  window->resize(width, height);
  window->show();
  QApplication::processEvents();
}

DesktopTable::~DesktopTable() {
  window.reset();
  g.Ui = nullptr;
}

void DesktopTable::ClickAt(QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
  QTest::mouseMove(&Table(), at);
  QTest::mouseClick(&Table(), button, keys, at);
}

void DesktopTable::Click(int id, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
  ClickAt(Table().CentreOf(id), button, keys);
}

void DesktopTable::Key(int key, Qt::KeyboardModifiers keys) { QTest::keyClick(&Table(), Qt::Key(key), keys); }

void DesktopTable::SeatByClicks(int seat, const std::string& name, const std::string& buyIn) {
  replies = {{kButtonYes, "", false}, {kButtonOk, name, false}, {kButtonOk, buyIn, false}};
  Click(seat * 1000);
}

void DesktopTable::NextDice(int die1, int die2) {
  g.Dice.padPending = true;
  g.Dice.padDie1 = die1;
  g.Dice.padDie2 = die2;
}

std::vector<std::string> DesktopTable::Titles() const {
  std::vector<std::string> titles;
  for (const MessageRequest& m : ui.shown) titles.push_back(m.Title);
  return titles;
}
