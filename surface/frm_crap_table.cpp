#include "surface/frm_crap_table.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QStatusBar>
#include <QVBoxLayout>
#include <cmath>
#include <filesystem>

#include "automation/auto_roll.h"
#include "engine/messages.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"
#include "engine/table_tools.h"
#include "storage/game_file.h"
#include "storage/language_text.h"
#include "surface/captions.h"
#include "surface/frm_atm.h"
#include "surface/frm_move.h"
#include "surface/frm_new_game.h"
#include "surface/frm_splash.h"
#include "surface/pic_table.h"
#include "surface/qt_ui.h"
#include "surface/sound_bank.h"
#include "surface/start_up_bridge.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

// A question asked even while Hyper-Drive keeps every other box shut.
bool AskYesNo(Game& g, int text, int title) {
  if (g.Ui == nullptr) return false;
  MessageRequest request;
  request.Text = std::string(LanguageText(g.LanguageId, text));
  request.Title = std::string(LanguageText(g.LanguageId, title));
  request.HelpId = 540;
  request.Flags = msg::kYesNoQuestion;
  return g.Ui->ShowMessage(request).Button == kButtonYes;
}

}  // namespace

FrmCrapTable::FrmCrapTable(Game& g, QtUi& ui, SoundBank* sounds) : g_(g), ui_(ui), sounds_(sounds) {
  setObjectName("frmCrapTable");
  auto* centre = new QWidget;
  auto* layout = new QVBoxLayout(centre);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  picTable_ = new PicTable(g, centre);
  layout->addWidget(picTable_, 1);
  setCentralWidget(centre);
  BuildPanel();
  layout->addWidget(findChild<QWidget*>("fraDiceRolls"));
  lblStatus_ = new QLabel;
  lblStatus_->setObjectName("lblStatus");
  statusBar()->addWidget(lblStatus_, 1);
  BuildMenus();
  ui_.SetOwner(this);
  ui_.onRefresh = [this](const std::vector<std::string>& windows) { OnRefresh(windows); };
  picTable_->afterInput = [this](ClickEffect effect) {
    if (effect == ClickEffect::PlayedStick && sounds_) sounds_->Play(sounds_->Chosen(kSoundStick));
    RefreshStatus();
  };
  SetAutoRollThrottle(g_, g_.Auto.AutoRollThrottle);  // the button's caption in the table's language
  SetMenuCaptions();
  resize(1280, 800);
  RefreshStatus();
}

QMenu* FrmCrapTable::Menu(const char* name) {
  QMenu* m = menuBar()->addMenu(name);
  m->setObjectName(name);
  menus_[name] = m;
  return m;
}

QAction* FrmCrapTable::Item(QMenu* menu, const char* name) {
  QAction* a = menu->addAction(name);
  a->setObjectName(name);
  items_[name] = a;
  return a;
}

void FrmCrapTable::BuildMenus() {
  QMenu* game = Menu("mnuGame");
  connect(Item(game, "mnuNew"), &QAction::triggered, this, &FrmCrapTable::NewGameAsked);
  connect(Item(game, "mnuOpen"), &QAction::triggered, this, &FrmCrapTable::OpenGameAsked);
  connect(Item(game, "mnuSave"), &QAction::triggered, this, [this] { SaveGameAsked(false); });
  connect(Item(game, "mnuSaveAs"), &QAction::triggered, this, [this] { SaveGameAsked(true); });
  connect(Item(game, "mnuShowPath"), &QAction::triggered, this, [this] {
    Tell(g_, Caption(g_.LanguageId, "msgShowPath", {g_.ProgramFolder}), std::string(LanguageText(g_.LanguageId, 131)),
         0, msg::kOk | msg::kPicture1);
  });
  connect(Item(game, "mnuLanguage"), &QAction::triggered, this, &FrmCrapTable::ChooseLanguageAsked);
  QMenu* position = game->addMenu("mnuTablePosition");
  position->setObjectName("mnuTablePosition");
  menus_["mnuTablePosition"] = position;
  connect(Item(position, "mnuAutoSize"), &QAction::triggered, this, &FrmCrapTable::AutoSizeAsked);
  game->addSeparator();
  connect(Item(game, "mnuExit"), &QAction::triggered, this, &QWidget::close);

  QMenu* players = Menu("mnuPlayers");
  connect(Item(players, "mnuPlayerAdd"), &QAction::triggered, this, &FrmCrapTable::AddPlayerAsked);
  connect(Item(players, "mnuPlayerDelete"), &QAction::triggered, this, &FrmCrapTable::RemovePlayerAsked);
  connect(Item(players, "mnuPlayerMove"), &QAction::triggered, this, &FrmCrapTable::MovePlayerAsked);
  connect(Item(players, "mnuPlayerRename"), &QAction::triggered, this, &FrmCrapTable::RenamePlayerAsked);
  players->addSeparator();
  connect(Item(players, "mnuPlayerAtm"), &QAction::triggered, this, &FrmCrapTable::AtmAsked);

  QMenu* action = Menu("mnuAction");
  connect(Item(action, "mnuRollDice"), &QAction::triggered, this, &FrmCrapTable::RollTheDice);
  connect(Item(action, "mnuPassDice"), &QAction::triggered, this, [this] {
    if (!g_.Table.Rolling) PassDice(g_, kPassAsked);
    RefreshStatus();
    picTable_->Redraw();
  });
  action->addSeparator();
  connect(Item(action, "mnuBuyPlaceBet"), &QAction::triggered, this, [this] { SetOneShot(kModeBuy); });
  connect(Item(action, "mnuCallBetOn"), &QAction::triggered, this, [this] { SetOneShot(kModeCallOn); });
  connect(Item(action, "mnuCallAllBetsOn"), &QAction::triggered, this, [this] {
    if (int seat = SelectedSeat(true)) CallAllBets(g_, seat, true);
    picTable_->Redraw();
  });
  connect(Item(action, "mnuCallBetOff"), &QAction::triggered, this, [this] { SetOneShot(kModeCallOff); });
  connect(Item(action, "mnuCallAllBetsOff"), &QAction::triggered, this, [this] {
    if (int seat = SelectedSeat(true)) CallAllBets(g_, seat, false);
    picTable_->Redraw();
  });
  connect(Item(action, "mnuRemoveBet"), &QAction::triggered, this, [this] { SetOneShot(kModeRemove); });
  connect(Item(action, "mnuRemoveAllBets"), &QAction::triggered, this, [this] {
    if (int seat = SelectedSeat(true)) RemoveAllBets(g_, seat);
    picTable_->Redraw();
    RefreshStatus();
  });
  action->addSeparator();
  QAction* numbers = Item(action, "mnuDisplayBetAmounts");
  numbers->setCheckable(true);
  connect(numbers, &QAction::toggled, this, [this](bool on) {
    picTable_->Input().BetsAsNumbers = on;
    picTable_->Redraw();
  });
}

void FrmCrapTable::BuildPanel() {
  auto* panel = new QWidget(this);
  panel->setObjectName("fraDiceRolls");
  auto* row = new QHBoxLayout(panel);
  row->setContentsMargins(8, 4, 8, 4);
  auto button = [&](const char* name) {
    auto* b = new QPushButton(panel);
    b->setObjectName(name);
    b->setFocusPolicy(Qt::NoFocus);
    row->addWidget(b);
    return b;
  };
  cmdRollDice_ = button("cmdRollDice");
  cmdPassDice_ = button("cmdPassDice");
  row->addSpacing(16);
  lblAutoRoll_ = new QLabel(panel);
  row->addWidget(lblAutoRoll_);
  hsbThrottle_ = new QSlider(Qt::Horizontal, panel);
  hsbThrottle_->setObjectName("hsbThrottle");
  hsbThrottle_->setRange(0, 12);
  hsbThrottle_->setInvertedAppearance(true);  // Auto-Roll at the left, Hyper-Drive to the right
  hsbThrottle_->setValue(g_.Auto.AutoRollThrottle);
  hsbThrottle_->setFixedWidth(160);
  hsbThrottle_->setFocusPolicy(Qt::NoFocus);
  row->addWidget(hsbThrottle_);
  lblHyperDrive_ = new QLabel(panel);
  row->addWidget(lblHyperDrive_);
  cmdHyperDrive_ = button("cmdHyperDrive");
  cmdHyperDrive_->setMinimumWidth(150);
  row->addStretch(1);
  cmdAutoStop_ = button("cmdAutoStop");
  cmdDelay_ = button("cmdDelay");
  connect(cmdRollDice_, &QPushButton::clicked, this, &FrmCrapTable::RollTheDice);
  connect(cmdPassDice_, &QPushButton::clicked, this, [this] {
    if (!g_.Table.Rolling && !g_.SilentMode) PassDice(g_, kPassAsked);
    picTable_->Redraw();
    RefreshStatus();
  });
  connect(hsbThrottle_, &QSlider::valueChanged, this, [this](int v) {
    SetAutoRollThrottle(g_, v);
    if (!g_.SilentMode) picTable_->Redraw();
    RefreshStatus();
  });
  connect(cmdHyperDrive_, &QPushButton::clicked, this, &FrmCrapTable::StartOrStopAutoRoll);
  connect(cmdAutoStop_, &QPushButton::clicked, this, &FrmCrapTable::SetAutoStopAsked);
  connect(cmdDelay_, &QPushButton::clicked, this, &FrmCrapTable::SetDelayAsked);
}

void FrmCrapTable::SetMenuCaptions() {
  const int lang = g_.LanguageId;
  for (auto& [name, menu] : menus_) menu->setTitle(Q(Caption(lang, name)));
  for (auto& [name, item] : items_) item->setText(Q(Caption(lang, name)));
  cmdRollDice_->setText(Q(Caption(lang, "cmdRollDice")));
  cmdPassDice_->setText(Q(Caption(lang, "cmdPassDice")));
  cmdAutoStop_->setText(Q(Caption(lang, "cmdAutoStop")));
  cmdDelay_->setText(Q(Caption(lang, "cmdDelay")));
  lblAutoRoll_->setText(Q(Caption(lang, "lblAutoRoll")));
  lblHyperDrive_->setText(Q(Caption(lang, "lblHyperDrive")));
  // The button's text follows the slider in the new language.
  if (!g_.Auto.AutoRollActive) SetAutoRollThrottle(g_, g_.Auto.AutoRollThrottle);
  RefreshStatus();
  picTable_->Redraw();
}

void FrmCrapTable::RefreshStatus() {
  const int lang = g_.LanguageId;
  const TableState& t = g_.Table;
  QStringList parts;
  if (g_.Auto.HyperDrive && !g_.Auto.StatusText.empty()) parts << Q(g_.Auto.StatusText);
  parts << (t.Point == 0 ? Q(Caption(lang, "stsComeOut")) : Q(Caption(lang, "stsPoint", {std::to_string(t.Point)})));
  parts << (t.Shooter > 0 ? Q(Caption(lang, "stsShooter", {g_.PlayerName[t.Shooter]}))
                          : Q(Caption(lang, "stsNoShooter")));
  const int32_t rolls = g_.Stats.RollCount[kSessionScope][0];
  if (rolls > 0) {
    parts << Q(
        Caption(lang, "stsLastRoll", {std::to_string(t.DiceTotal), std::to_string(t.Die1), std::to_string(t.Die2)}));
    parts << Q(Caption(lang, "stsRolls", {std::to_string(rolls)}));
  }
  const std::string& note = picTable_->Input().Status;
  if (!note.empty()) parts << Q(note);
  lblStatus_->setText(parts.join("     "));
  QString button = Q(g_.Auto.ButtonText);
  cmdHyperDrive_->setText(button);
  if (hsbThrottle_->value() != g_.Auto.AutoRollThrottle) {
    const QSignalBlocker block(hsbThrottle_);
    hsbThrottle_->setValue(g_.Auto.AutoRollThrottle);
  }
  // A stopped Hyper-Drive says so; otherwise the caption names the game file.
  const std::string& title = !g_.Auto.WindowTitle.empty() ? g_.Auto.WindowTitle : g_.Desktop.Caption;
  setWindowTitle(title.empty() ? QString("DiceHall") : Q(title));
}

void FrmCrapTable::OnRefresh(const std::vector<std::string>& windows) {
  auto asked = [&](const char* name) {
    for (const std::string& w : windows)
      if (w == name) return true;
    return false;
  };
  if (asked("dice")) {
    // The dice leave the stickman, tumble, and the stickman calls the total.
    if (sounds_) sounds_->PlayDice();
    picTable_->AnimateDice(animationMs);
    if (sounds_) sounds_->PlayStick(g_.Table.DiceTotal);
  }
  if (asked("frmBankroll") && g_.Table.Rolling && sounds_) {
    bool won = false;
    for (int s = 1; s < kSeats; ++s) won = won || (SeatOccupied(g_, s) && g_.Bankroll[s] > g_.BankrollStartOfRoll[s]);
    if (won) sounds_->PlayWin();
  }
  picTable_->Redraw();
  RefreshStatus();
}

void FrmCrapTable::RollTheDice() {
  LayoutMouseDown(g_, picTable_->Input(), picTable_->Geometry(), kRightButton, 0, 0, 0, 0);
  picTable_->Redraw();
  RefreshStatus();
}

void FrmCrapTable::StartOrStopAutoRoll() {
  if (g_.Auto.AutoRollActive) {
    // The same button stops, after asking.
    if (AskYesNo(g_, g_.Auto.HyperDrive ? 118 : 119, g_.Auto.HyperDrive ? 114 : 117) && g_.Auto.AutoRollActive)
      ToggleAutoRoll(g_);
    RefreshStatus();
    return;
  }
  if (g_.Table.Rolling) return;
  g_.Auto.WindowTitle.clear();
  ToggleAutoRoll(g_);
  RefreshStatus();
  if (!g_.Auto.AutoRollActive) return;
  // The button now reads "Stop": let it show before the run takes the loop.
  cmdHyperDrive_->repaint();
  lblStatus_->repaint();
  RollDice(g_);
  if (g_.Auto.AutoRollActive) ToggleAutoRoll(g_);  // a roll refused ends the run
  picTable_->Redraw();
  RefreshStatus();
}

void FrmCrapTable::SetAutoStopAsked() {
  const int lang = g_.LanguageId;
  std::string typed = std::to_string(g_.Auto.AutoStopRolls.raw / Money::kScale);
  for (;;) {
    MessageReply reply = Tell(g_, Caption(lang, "msgAutoStop"), Caption(lang, "ttlAutoStop"), 540,
                              msg::kOk | msg::kCancel | msg::kInput | msg::kPicture3, typed);
    if (reply.Button != kButtonOk) return;
    Money rolls;
    std::string error;
    if (ParseMoney(reply.Input, rolls, error) && SetAutoStopRolls(g_, rolls)) return;
    Tell(g_, Caption(lang, "msgWholeNumber"), Caption(lang, "ttlAutoStop"), 540, msg::kAlertOk);
    typed = reply.Input;
  }
}

void FrmCrapTable::SetDelayAsked() {
  const int lang = g_.LanguageId;
  char text[32];
  std::snprintf(text, sizeof text, "%g", g_.Auto.AutoRollDelay);
  std::string typed = text;
  for (;;) {
    MessageReply reply = Tell(g_, std::string(LanguageText(lang, 155, 0)), std::string(LanguageText(lang, 155, 1)), 540,
                              msg::kOk | msg::kCancel | msg::kInput | msg::kPicture3, typed);
    if (reply.Button != kButtonOk) return;
    Money seconds;
    std::string error;
    if (ParseMoney(reply.Input, seconds, error) && SetAutoRollDelay(g_, seconds)) return;
    Tell(g_, Caption(lang, "msgDelayRange"), std::string(LanguageText(lang, 155, 1)), 540, msg::kAlertOk);
    typed = reply.Input;
  }
}

void FrmCrapTable::NewGameAsked() {
  if (g_.Table.Rolling) return;
  FrmNewGame choice(g_.LanguageId, this);
  if (choice.exec() != QDialog::Accepted) return;
  if (choice.DefaultGame()) {
    const int language = g_.LanguageId;  // the language is the player's, not the game's
    SetDefaultGame(g_);
    SetLanguage(g_, language);
    picTable_->Input() = TableInput{};
  } else {
    ResetTable(g_, true, false, true, 0);
  }
  picTable_->Redraw();
  RefreshStatus();
}

namespace {

// The filter of the file window for game files: its kind's name and pattern.
std::string GameFilter(int language) { return std::string(LanguageText(language, 124)) + " (*.crp)"; }

}  // namespace

void FrmCrapTable::OpenGameAsked() {
  if (g_.Table.Rolling || g_.Auto.AutoRollActive) return;
  const std::string path = ui_.ChooseFile(Caption(g_.LanguageId, "ttlOpenGame"), GameFilter(g_.LanguageId));
  if (path.empty() || !OpenGame(g_, path)) return;
  picTable_->Input() = TableInput{};
  SetMenuCaptions();
  picTable_->Redraw();
  RefreshStatus();
}

void FrmCrapTable::SaveGameAsked(bool askName) {
  if (g_.Table.Rolling) return;
  std::string path = g_.GameFileName;
  // The default game and the restore files are the program's own: Save asks for a name.
  const std::string base = std::filesystem::path(path).filename().string();
  if (askName || path.empty() || base == kDefaultGameFile || base == kRestoreGameFile || base == kRestoreHostGameFile) {
    path = ui_.ChooseFile(Caption(g_.LanguageId, "ttlSaveGame"), GameFilter(g_.LanguageId));
    if (path.empty()) return;
    if (std::filesystem::path(path).extension() != ".crp") path += ".crp";
  }
  SaveGame(g_, path);
  RefreshStatus();
}

int FrmCrapTable::SelectedSeat(bool tell) {
  const int seat = picTable_->Input().SelectedPlayer;
  if (seat >= 1 && seat <= 8 && SeatOccupied(g_, seat)) return seat;
  if (tell)
    Tell(g_, std::string(LanguageText(g_.LanguageId, g_.Table.NumberOfPlayers == 0 ? 100 : 101)),
         std::string(LanguageText(g_.LanguageId, 98)), 0, msg::kOk);
  return 0;
}

void FrmCrapTable::SetOneShot(int mode) {
  if (!SelectedSeat(true)) return;
  picTable_->Input().OneShotMode = mode;
  picTable_->Input().Status = Caption(g_.LanguageId, "stsOneShot");
  RefreshStatus();
}

void FrmCrapTable::AddPlayerAsked() {
  // The rail order from the stickman outward: 1L, 1R, 2L, 2R ...
  static const int kOrder[8] = {4, 5, 3, 6, 2, 7, 1, 8};
  for (int seat : kOrder) {
    if (SeatOccupied(g_, seat)) continue;
    if (AskToAddPlayer(g_, seat)) {
      picTable_->Input().SelectedPlayer = seat;
      picTable_->Input().SelectedCheck = 1;
    }
    picTable_->Redraw();
    RefreshStatus();
    return;
  }
  Tell(g_, std::string(LanguageText(g_.LanguageId, 105)), std::string(LanguageText(g_.LanguageId, 2)), 180, msg::kOk);
}

void FrmCrapTable::RemovePlayerAsked() {
  const int seat = SelectedSeat(true);
  if (seat == 0 || g_.Table.Rolling) return;
  if (RemovePlayer(g_, seat)) {
    TableInput& in = picTable_->Input();
    in.SelectedPlayer = 0;
    for (int s = 1; s <= 8 && in.SelectedPlayer == 0; ++s)
      if (SeatOccupied(g_, s)) in.SelectedPlayer = s;
  }
  picTable_->Redraw();
  RefreshStatus();
}

void FrmCrapTable::RenamePlayerAsked() {
  const int seat = SelectedSeat(true);
  if (seat == 0) return;
  const int lang = g_.LanguageId;
  std::string prompt = std::string(LanguageText(lang, 13)) + g_.PlayerName[seat];
  std::string typed = g_.PlayerName[seat];
  for (int tries = 0; tries < 20; ++tries) {
    MessageReply reply =
        Tell(g_, prompt, std::string(LanguageText(lang, 14)), 180, msg::kOk | msg::kCancel | msg::kInput, typed);
    if (reply.Button != kButtonOk) return;
    const std::string fault = RenamePlayer(g_, seat, reply.Input);
    if (fault.empty()) break;
    prompt = fault + "\n\n" + std::string(LanguageText(lang, 13)) + g_.PlayerName[seat];
    typed = reply.Input;
  }
  picTable_->Redraw();
  RefreshStatus();
}

void FrmCrapTable::MovePlayerAsked() {
  const int seat = SelectedSeat(true);
  if (seat == 0 || g_.Table.Rolling) return;
  FrmMove move(g_, seat, this);
  if (move.exec() != QDialog::Accepted) return;
  const int to = move.Destination();
  if (to < 1 || to > 8) return;
  MovePlayer(g_, seat, to);
  picTable_->Input().SelectedPlayer = to;
  picTable_->Redraw();
  RefreshStatus();
}

void FrmCrapTable::AtmAsked() {
  const int seat = SelectedSeat(true);
  if (seat == 0) return;
  FrmAtm atm(g_, seat, this);
  atm.exec();
  picTable_->Redraw();
}

void FrmCrapTable::ChooseLanguageAsked() {
  FrmSplash splash(g_, true, this);
  splash.onLanguage = [this] { SetMenuCaptions(); };
  splash.exec();
}

void FrmCrapTable::AutoSizeAsked() {
  const QScreen* screen = this->screen();
  if (screen == nullptr) return;
  const QRect area = screen->availableGeometry();
  // The largest window of the table's shape that fits, centred.
  const QSize frame = frameGeometry().size() - size();
  const int chrome = menuBar()->height() + statusBar()->height() + findChild<QWidget*>("fraDiceRolls")->height();
  const double scale =
      std::min((area.width() - frame.width()) / 1600.0, (area.height() - frame.height() - chrome) / 930.0);
  const QSize want(static_cast<int>(1600 * scale), static_cast<int>(930 * scale) + chrome);
  resize(want);
  move(area.center() - QPoint(want.width() / 2, want.height() / 2));
}

void FrmCrapTable::closeEvent(QCloseEvent* e) {
  if (g_.Auto.AutoRollActive) ToggleAutoRoll(g_);
  SaveGameAtClose(g_);
  e->accept();
}
