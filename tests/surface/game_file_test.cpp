// The desktop keeps the table between starts: closing the window writes "default.crp",
// and the next start opens it.

#include <gtest/gtest.h>

#include <QTest>
#include <filesystem>

#include "surface/start_up_bridge.h"
#include "tests/surface/desktop_table.h"

namespace {

TEST(DesktopGameFile, ClosingTheWindowKeepsTheTableForTheNextStart) {
  DesktopTable t;
  t.SeatByClicks(1, "Ann", "5000");
  t.SelectCheck(1, 2);  // the $5 check
  t.Click(bet::PassLine);
  t.NextDice(4, 2);
  t.Click(bet::Field, Qt::RightButton);
  ASSERT_EQ(t.g.Table.Point, 6);
  t.window->close();
  ASSERT_TRUE(std::filesystem::exists(t.folder.path / "default.crp"));

  auto next = std::make_unique<Game>();
  HeadlessUi ui;
  next->Ui = &ui;
  next->Time = &DefaultClock();
  next->ProgramFolder = t.folder.path.string();
  OpenStartGame(*next, "");
  EXPECT_EQ(next->PlayerName[1], "Ann");
  EXPECT_EQ(next->BetAmount[1][bet::PassLine], Money::Dollars(5));
  EXPECT_EQ(next->Table.Point, 6);
  EXPECT_EQ(next->Bankroll[1], t.g.Bankroll[1]);
  EXPECT_EQ(next->Stats.RollCount[kSessionScope][0], 1);
  EXPECT_TRUE(ui.transcript.empty()) << ui.LastText();
}

}  // namespace
