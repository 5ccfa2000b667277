// dicehall: the desktop table. Start-up in the table's order: the program folder, the
// generators, the default game or the game named on the command line, the sounds, the
// opening display, and the main window.

#include <CLI/CLI.hpp>
#include <QApplication>
#include <QElapsedTimer>
#include <QPixmap>
#include <QScreen>
#include <QThread>
#include <QTimer>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>

#include "automation/auto_roll.h"
#include "dice/seeding.h"
#include "engine/bankroll.h"
#include "engine/handling.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"
#include "storage/game_file.h"
#include "storage/paths.h"
#include "surface/frm_crap_table.h"
#include "surface/frm_msg.h"
#include "surface/frm_settle_bet.h"
#include "surface/frm_splash.h"
#include "surface/pic_table.h"
#include "surface/qt_ui.h"
#include "surface/sound_bank.h"
#include "surface/start_up_bridge.h"

namespace {

struct Options {
  std::string game;        // the game file of the command line
  std::string screenshot;  // draw the window to this PNG and exit
  std::string size = "1280x800";
  std::string scene;  // a table set up for the pictures of the documentation
  std::string dataDir;
  bool noSound = false;
};

bool ParseSize(const std::string& text, int& w, int& h) {
  const size_t x = text.find('x');
  if (x == std::string::npos) return false;
  try {
    w = std::stoi(text.substr(0, x));
    h = std::stoi(text.substr(x + 1));
  } catch (...) {
    return false;
  }
  return w >= 320 && h >= 240 && w <= 8000 && h <= 8000;
}

// ---- Scenes for the documentation's pictures: fixed dice, four players.

void Dice(Game& g, int a, int b) {
  SetPadRoll(g, a, b);
  RollDice(g);
}

void SeatFour(Game& g, TableInput& in) {
  const char* names[4] = {"Ann", "Bob", "Carmen", "Dieter"};
  const int seats[4] = {2, 4, 5, 7};
  for (int i = 0; i < 4; ++i) AddPlayer(g, seats[i], names[i], Money::Dollars(i == 2 ? 25000 : 5000));
  in.SelectedPlayer = 4;
  in.SelectedCheck = 2;
  // No dialogs: winners stay up, losers come down.
  for (int s = 1; s <= 8; ++s) {
    SetAutoHandling(g, s, true, kSameBet, {});
    SetAutoHandling(g, s, false, kTakeDown, {});
  }
}

void Bet(Game& g, int seat, int bet, int dollars) { ChangeBet(g, seat, bet, Money::Dollars(dollars)); }

// Bets of four players on every area of the layout, a point on.
void MidHand(Game& g, TableInput& in) {
  SeatFour(g, in);
  Bet(g, 2, bet::PassLine, 10);
  Bet(g, 4, bet::PassLine, 25);
  Bet(g, 5, bet::DontPass, 50);
  Bet(g, 7, bet::PassLine, 5);
  Bet(g, 7, bet::Fire, 5);
  Bet(g, 5, bet::SevenPoint7, 5);
  Dice(g, 4, 2);  // the point is 6
  Bet(g, 2, bet::PassLineOdds, 20);
  Bet(g, 4, bet::PassLineOdds, 50);
  Bet(g, 5, bet::DontPassOdds, 60);
  Bet(g, 2, bet::Come, 10);
  Bet(g, 7, bet::DontCome, 10);
  Dice(g, 5, 3);  // Come to 8, Don't Come to 8
  Bet(g, 2, PointRow(BetFamily::ComeOdds, 8), 20);
  Bet(g, 4, bet::Place4 + 1, 10);
  Bet(g, 4, bet::Place10, 25);
  Bet(g, 5, bet::Buy4, 25);
  Bet(g, 5, bet::Lay4 + 4, 40);
  Bet(g, 7, bet::Place4 + 4, 5);
  Bet(g, 2, bet::Big8, 6);
  Bet(g, 4, bet::Hard6, 5);
  Bet(g, 4, bet::Hard8, 1);
  Bet(g, 5, bet::Hard10, 5);
  Bet(g, 7, bet::Seven, 5);
  Bet(g, 2, bet::Eleven, 1);
  Bet(g, 4, bet::CAndE, 2);
  Bet(g, 5, bet::Horn, 4);
  Bet(g, 7, bet::World, 5);
  Bet(g, 2, bet::Hop13 + 7, 1);
  Bet(g, 7, bet::Craps, 1);
  Bet(g, 4, bet::Under7, 5);
  Bet(g, 5, bet::AllTall, 5);
  Bet(g, 2, bet::Repeater2 + 2, 1);
  Bet(g, 7, bet::RightField, 5);
  Bet(g, 2, bet::Field, 5);
}

// --screenshot: the main window, or the box of a scene, drawn to a PNG file without a
// display; the table is set up for the scene first.
int Screenshot(Game& g, QtUi& ui, FrmCrapTable& table, const Options& o, int width, int height) {
  table.animationMs = 0;
  table.resize(width, height);
  table.show();
  TableInput& in = table.Table()->Input();
  ui.answerMessage = [](const MessageRequest&) { return std::optional<MessageReply>(MessageReply{}); };
  QWidget* target = &table;
  std::unique_ptr<QWidget> dialog;
  if (o.scene == "midhand" || o.scene == "settle") MidHand(g, in);
  if (o.scene == "sevenout") {
    MidHand(g, in);
    Dice(g, 3, 4);
  }
  if (o.scene == "message") {
    MessageRequest m;
    m.Text =
        "You may not make a Don't Pass Odds bet unless you also have a Don't Pass bet and a point is "
        "established.";
    m.Title = "Action not allowed";
    m.Flags = msg::kOk | msg::kHelp | msg::kAlertOk | msg::kClass1;
    dialog = std::make_unique<FrmMsg>(m, g.LanguageId, &table);
  }
  if (o.scene == "settle") {
    // The dialog a winning bet opens, as the engine asks it: the first that Bob wins.
    ui.answerSettle = [&](const SettleRequest& r) {
      if (!dialog) dialog = std::make_unique<FrmSettleBet>(g, r, &table);
      return std::optional<int>(2);
    };
    SetAutoHandling(g, 4, true, kAskByDialog, {});
    Dice(g, 4, 1);  // Bob's Under 7 and Place 5 win
  }
  table.Table()->Redraw();
  table.RefreshStatus();
  if (dialog) {
    dialog->show();
    dialog->adjustSize();
    target = dialog.get();
  }
  QApplication::processEvents();
  const QPixmap shot = target->grab();
  if (!shot.save(QString::fromStdString(o.screenshot), "PNG")) {
    std::cerr << "dicehall: can't write " << o.screenshot << ".\n";
    return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Options o;
  CLI::App app{"dicehall: the DiceHall craps table on the desktop.", "dicehall"};
  app.add_option("game", o.game, "GAME.crp: the game file to open (default: the last default game)");
  app.add_option("--screenshot", o.screenshot, "draw the main window to FILE.png without a display, and exit");
  app.add_option("--size", o.size, "with --screenshot: the window's size, WxH (default 1280x800)");
  app.add_option("--scene", o.scene,
                 "with --screenshot: set the table up first: empty, midhand, sevenout, message or settle");
  app.add_option("--data-dir", o.dataDir,
                 "the program folder (default $DICEHALL_HOME, else $XDG_DATA_HOME/dicehall, else "
                 "~/.local/share/dicehall)");
  app.add_flag("--no-sound", o.noSound, "play no sounds");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e);
  }
  int width = 1280, height = 800;
  if (!ParseSize(o.size, width, height)) {
    std::cerr << "dicehall: --size " << o.size << ": expected WxH, e.g. 1280x800.\n";
    return 2;
  }
  if (!o.screenshot.empty() && std::getenv("QT_QPA_PLATFORM") == nullptr) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QApplication qt(argc, argv);
  QApplication::setApplicationName("DiceHall");

  // 1. The program folder.
  auto game = std::make_unique<Game>();
  Game& g = *game;
  g.ProgramFolder = ResolveDataDir(o.dataDir);
  std::error_code ec;
  std::filesystem::create_directories(g.ProgramFolder, ec);
  QtUi ui(g);
  g.Ui = &ui;
  g.Time = &DefaultClock();
  // 5. The generators, seeded.
  SeedAtStartUp(g);
  // 7. and 10. The default game, or the game file of the command line.
  OpenStartGame(g, o.game);
  // 9. The sound lists: the program folder first, then the sounds made with the program.
  const bool sound = !o.noSound && o.screenshot.empty();
  SoundBank sounds({g.ProgramFolder, DICEHALL_SOUND_DIR}, sound);
  if (g.CheckSound.empty()) g.CheckSound = sounds.Chosen(kSoundChecks);

  FrmCrapTable table(g, ui, &sounds);
  if (!o.screenshot.empty()) return Screenshot(g, ui, table, o, width, height);

  // 12. The opening display, for a moment.
  FrmSplash splash(g, false);
  splash.show();
  QElapsedTimer shown;
  shown.start();
  while (shown.elapsed() < 300) {
    QApplication::processEvents(QEventLoop::AllEvents, 20);
    QThread::msleep(10);
  }
  // 13. The main window, centred.
  if (const QScreen* screen = QApplication::primaryScreen()) {
    const QRect area = screen->availableGeometry();
    table.resize(std::min(width, area.width()), std::min(height, area.height()));
    table.move(area.center() - QPoint(table.width() / 2, table.height() / 2));
  }
  table.show();
  splash.close();
  // 14. A saved bankroll beyond the limits stops play at once.
  StopAtBankrollLimit(g);
  return qt.exec();
}
