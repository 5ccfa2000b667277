// A seeded session played in the window by clicks and keys ends with the same stores
// as dicehall-sim playing the same seed and the same standing bets; closing the window
// writes "default.crp", and the next start opens it.

#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <sstream>
#include <tuple>

#include "app/sim/sim.h"
#include "app/sim/sim_report.h"
#include "dice/seeding.h"
#include "surface/start_up_bridge.h"
#include "tests/surface/desktop_table.h"

namespace {

// A person at the table: every settle dialog is answered with its first button ("Take
// Bet and Winnings", "No Bet"), as the simulator's players take their bets down.
struct DialogPlayer {
  QTimer timer;
  int answered = 0;
  DialogPlayer() {
    QObject::connect(&timer, &QTimer::timeout, [this] {
      QWidget* modal = QApplication::activeModalWidget();
      if (modal == nullptr) return;
      if (auto* first = modal->findChild<QPushButton*>("cmdHandle0")) {
        ++answered;
        QTest::mouseClick(first, Qt::LeftButton);
        return;
      }
      // Any other box: its first button, so that a stray message fails the test, not hangs it.
      for (int b = 0; b < 4; ++b)
        if (auto* button = modal->findChild<QPushButton*>(QString("cmdButton%1").arg(b))) {
          QTest::mouseClick(button, Qt::LeftButton);
          return;
        }
    });
    timer.start(1);
  }
};

TEST(DesktopSession, TwoHundredRollsByClicksAndKeysEndAsTheSimulatorEnds) {
  constexpr int kRolls = 200;
  constexpr uint32_t kSeed = 8086;
  // The same session in the simulator: two players and their standing bets.
  TempDir simFolder;
  const SimRun sim = SimOk({"--rolls", "200", "--seed", "8086", "--json", "--player", "Ann:5000", "--player",
                            "Bob:3000", "--bet", "Ann:Pass Line=5", "--bet", "Ann:Field=1", "--bet",
                            "Bob:Don't Pass=25", "--bet", "Bob:Hard 8=5", "--bet", "Bob:Place 5=10"},
                           simFolder.path.string());

  DesktopTable t;
  t.g.Dice.pendingSeed = Money::Dollars(kSeed);
  SeedRng(t.g, true);
  t.SeatByClicks(1, "Ann", "5000");
  t.SeatByClicks(2, "Bob", "3000");
  t.ui.answerMessage = nullptr;  // from here on the boxes open, and the player answers them
  t.ui.shown.clear();
  ASSERT_EQ(t.g.PlayerName[1], "Ann");
  ASSERT_EQ(t.g.PlayerName[2], "Bob");
  // The seat, the bet, the check whose clicks make the amount, and the clicks.
  const std::tuple<int, int, int, int> standing[] = {{1, bet::PassLine, 2, 1},
                                                     {1, bet::Field, 1, 1},
                                                     {2, bet::DontPass, 3, 1},
                                                     {2, bet::Hard8, 2, 1},
                                                     {2, bet::Place4 + 1, 2, 2}};
  // Before every roll each standing bet that is absent is put back, line bets on the
  // come-out only: by a click on the seat's check, then on the bet, or with the keys.
  int keyed = 0;
  auto replace = [&] {
    for (const auto& [seat, betId, check, clicks] : standing) {
      if (t.g.BetAmount[seat][betId].raw > 0) continue;
      if ((betId == bet::PassLine || betId == bet::DontPass) && t.g.Table.Point != 0) continue;
      t.SelectCheck(seat, check);
      for (int k = 0; k < clicks; ++k) {
        if (betId == bet::Field && (keyed++ % 2) == 0) {
          QTest::mouseMove(&t.Table(), t.Table().CentreOf(betId));
          t.Key(Qt::Key_Return);
        } else {
          t.Click(betId);
        }
      }
    }
  };
  DialogPlayer player;
  for (int roll = 0; roll < kRolls; ++roll) {
    replace();
    if (roll % 2 == 0) t.Click(bet::Field, Qt::RightButton);
    else t.Key(Qt::Key_Space);
  }
  replace();
  ASSERT_EQ(t.g.Stats.RollCount[kSessionScope][0], kRolls);
  EXPECT_GT(player.answered, 0);
  EXPECT_TRUE(t.ui.shown.empty()) << t.ui.shown.front().Title << ": " << t.ui.shown.front().Text;

  std::ostringstream deskOut;
  RunOutcome outcome;
  outcome.asked = outcome.played = kRolls;
  outcome.seed = kSeed;
  WriteJsonReport(t.g, outcome, {}, deskOut);
  EXPECT_EQ(deskOut.str(), sim.out);
}

// The desktop keeps the table between starts.
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

  TestTable next;
  next.g.ProgramFolder = t.folder.path.string();
  OpenStartGame(next.g, "");
  EXPECT_EQ(next.g.PlayerName[1], "Ann");
  EXPECT_EQ(next.g.BetAmount[1][bet::PassLine], Money::Dollars(5));
  EXPECT_EQ(next.g.Table.Point, 6);
  EXPECT_EQ(next.g.Bankroll[1], t.g.Bankroll[1]);
  EXPECT_EQ(next.g.Stats.RollCount[kSessionScope][0], 1);
  EXPECT_TRUE(next.ui.transcript.empty()) << next.ui.LastText();
}

}  // namespace
