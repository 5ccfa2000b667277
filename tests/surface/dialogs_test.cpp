// The system's own boxes: frmMsg by its flags, frmSettleBet from the engine's request,
// the players' dialogs, Auto-Roll and Hyper-Drive from the panel, the language and the
// captions in every language.

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <set>
#include <string>
#include <tuple>

#include "engine/handling.h"
#include "engine/messages.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "storage/language_text.h"
#include "surface/captions.h"
#include "surface/frm_file.h"
#include "surface/frm_msg.h"
#include "surface/frm_settle_bet.h"
#include "surface/frm_splash.h"
#include "tests/surface/desktop_table.h"

namespace {

// The flags, the buttons shown, and whether the picture, input, list and hide tick are.
using FlagsCase = std::tuple<int, std::vector<int>, bool, bool, bool, bool>;

class MessageFlagsTest : public ::testing::TestWithParam<FlagsCase> {};

TEST_P(MessageFlagsTest, TheFlagsChooseButtonsPictureInputListAndHide) {
  const auto& [flags, buttons, picture, input, list, hide] = GetParam();
  MessageRequest request;
  request.Text = "Line one\nLine two";
  request.Title = "Title";
  request.Flags = flags;
  request.List = {"Ann", "Bob"};
  FrmMsg box(request, kEnglish, nullptr);
  for (int b = 0; b < 5; ++b)
    EXPECT_EQ(box.findChild<QPushButton*>(QString("cmdButton%1").arg(b)) != nullptr, std::ranges::count(buttons, b) > 0)
        << "button " << b;
  EXPECT_EQ(box.findChild<QLabel*>("imgPicture") != nullptr, picture);
  EXPECT_EQ(box.findChild<QLineEdit*>("txtInput") != nullptr, input);
  EXPECT_EQ(box.findChild<QComboBox*>("cmbUser") != nullptr, list);
  EXPECT_EQ(box.findChild<QCheckBox*>("chkHide") != nullptr, hide);
  EXPECT_EQ(box.findChild<QLabel*>("lblMsg")->text(), "Line one\nLine two");
}

INSTANTIATE_TEST_SUITE_P(Flags, MessageFlagsTest,
                         ::testing::Values(FlagsCase{1, {0}, false, false, false, false},
                                           FlagsCase{513, {0}, true, false, false, false},
                                           FlagsCase{529, {0, 4}, true, false, false, false},
                                           FlagsCase{9222, {1, 2}, true, false, false, false},
                                           FlagsCase{1 | 8 | 16777216, {0, 3}, false, true, false, false},
                                           FlagsCase{1 | 33554432, {0}, false, false, true, false},
                                           FlagsCase{1 | 65536, {0}, false, false, false, true},
                                           FlagsCase{31 | 524288, {0, 1, 2, 3, 4}, false, false, false, true}));

// Clicks a widget of the next modal box once it is open.
void ClickWhenOpen(const char* name, std::function<void(QWidget*)> before = nullptr) {
  QTimer::singleShot(0, [name, before] {
    QWidget* modal = QApplication::activeModalWidget();
    ASSERT_NE(modal, nullptr);
    if (before) before(modal);
    QTest::mouseClick(modal->findChild<QPushButton*>(name), Qt::LeftButton);
  });
}

TEST(MessageBox, TheChosenButtonTheTypedTextAndTheHideTickComeBack) {
  MessageRequest request;
  request.Text = "How much would Ann like to buy-in for?";
  request.Flags = msg::kOk | msg::kCancel | msg::kInput | msg::kClass2;
  request.Input = "1000";
  ClickWhenOpen("cmdButton0", [](QWidget* box) {
    box->findChild<QLineEdit*>("txtInput")->setText("2500");
    box->findChild<QCheckBox*>("chkHide")->setChecked(true);
  });
  MessageReply reply = RunMessageBox(request, kEnglish, nullptr);
  EXPECT_EQ(reply.Button, kButtonOk);
  EXPECT_EQ(reply.Input, "2500");
  EXPECT_TRUE(reply.Hide);
  ClickWhenOpen("cmdButton3");
  EXPECT_EQ(RunMessageBox(request, kEnglish, nullptr).Button, kButtonCancel);
}

TEST(MessageBox, TheWindowIsSizedFromItsText) {
  MessageRequest shortText, longText;
  shortText.Text = "Yes?";
  longText.Text = std::string(300, 'x') + " " + std::string(300, 'y');
  FrmMsg a(shortText, kEnglish, nullptr), b(longText, kEnglish, nullptr);
  a.adjustSize();
  b.adjustSize();
  EXPECT_LT(a.width(), b.width());
  EXPECT_LE(b.findChild<QLabel*>("lblMsg")->maximumWidth(), 460);
}

TEST(MessageBox, AHiddenNoticeClassDoesNotComeAgain) {
  DesktopTable t;
  t.replies = {{kButtonOk, "", true}};
  Tell(t.g, "Vig charge", "Buy", 0, msg::kOk | msg::kClass4);
  Tell(t.g, "Vig charge", "Buy", 0, msg::kOk | msg::kClass4);
  EXPECT_EQ(t.ui.shown.size(), 1u);
}

TEST(FileWindow, FiltersNamesAndTheLastFolderOfEachKind) {
  EXPECT_EQ(FileKindOf("(*.crp)"), kFolderGame);
  EXPECT_EQ(FileKindOf("Auto-bet files (*.bet;*.txt)"), kFolderAutoBet);
  EXPECT_EQ(FileKindOf("(*.rol)"), kFolderRoll);
  EXPECT_EQ(FilterPatterns("Auto-bet files (*.bet;*.txt)"), (std::vector<std::string>{"*.bet", "*.txt"}));
  for (const char* bad : {"a:b.crp", "", "name."}) EXPECT_FALSE(IsFileNameOK(bad)) << bad;
  EXPECT_TRUE(IsFileNameOK("my game.crp"));
  TempDir folder;
  FileFolders folders;
  FrmFile window("Open", "(*.rol)", folder.path.string(), folders, kEnglish, nullptr);
  window.findChild<QLineEdit*>("txtFileName")->setText("session one.rol");
  QTest::mouseClick(window.findChild<QPushButton*>("cmdOK"), Qt::LeftButton);
  EXPECT_EQ(window.Path(), (folder.path / "session one.rol").string());
  EXPECT_EQ(folders[kFolderRoll], std::filesystem::canonical(folder.path).string());
  EXPECT_TRUE(folders[kFolderGame].empty());
}

TEST(SettleDialog, ShowsTheEnginesWordsAndReturnsTheChosenAction) {
  Seated t;
  ChangeBet(t.g, kAnnSeat, bet::Place4 + 2, 12_usd);  // Place 6
  ChangeBet(t.g, kAnnSeat, bet::PassLine, 5_usd);
  t.NextDice(4, 4);
  RollDice(t.g);  // the point is 8
  SettleRequest seen;
  t.ui.answerSettle = [&](const SettleRequest& r) {
    seen = r;
    return std::optional<int>();  // the dialog opens
  };
  ClickWhenOpen("cmdHandle4", [](QWidget* dialog) {
    EXPECT_EQ(dialog->objectName(), "frmSettleBet");
    EXPECT_EQ(dialog->windowTitle(), "WINNER");
    EXPECT_EQ(dialog->findChild<QLabel*>("lblSettle0")->text(), "Ann Won");
    EXPECT_EQ(dialog->findChild<QPushButton*>("cmdHandle4")->text(), "Parlay - Add &All Winnings to Bet");
  });
  t.NextDice(5, 1);
  RollDice(t.g);
  EXPECT_EQ(seen.Buttons.size(), 5u);
  // $12 and its $14 parlayed, brought to the $6 unit that a Place 6 is paid by.
  EXPECT_EQ(t.g.BetAmount[kAnnSeat][bet::Place4 + 2], 24_usd);
}

TEST(SettleDialog, ARuleRowBecomesTheSeatsRuleAndItsAction) {
  DesktopTable t;
  AddPlayer(t.g, 3, "Bob", 1000_usd);
  SettleRequest request;
  request.Title = "WINNER";
  request.Buttons = {"Take Bet and Winnings"};
  request.Actions = {kTakeDown};
  request.RuleRows = true;
  request.Seat = 3;
  request.RuleRow = kRuleModifyWin;
  FrmSettleBet dialog(t.g, request, nullptr);
  QTest::mouseClick(dialog.findChild<QPushButton*>("cmdMathOperator"), Qt::LeftButton);  // + to -
  dialog.findChild<QLineEdit*>("txtModifyAmount")->setText("5");
  QTest::mouseClick(dialog.findChild<QPushButton*>("cmdApplyModify"), Qt::LeftButton);
  EXPECT_EQ(dialog.Action(), kModifyByRule);
  EXPECT_EQ(t.g.SettleRules[3][kRuleModifyWin].Operator, 1);
  EXPECT_EQ(t.g.SettleRules[3][kRuleModifyWin].Operand, 5_usd);
}

TEST(PlayersDialogs, RenameMoveAndTheAtm) {
  DesktopTable t;
  AddPlayer(t.g, 4, "Ann", 1000_usd);
  AddPlayer(t.g, 5, "Bob", 1000_usd);
  t.Input().SelectedPlayer = 4;
  t.replies = {{kButtonOk, "Bob", false}, {kButtonOk, "Annie", false}};  // Bob is taken: asked again
  t.window->RenamePlayerAsked();
  EXPECT_EQ(t.g.PlayerName[4], "Annie");
  EXPECT_EQ(t.ui.shown.back().Text.rfind("There's already a player named Bob", 0), 0u);
  ClickWhenOpen("cmdOK", [](QWidget* move) {
    auto* seats = move->findChild<QComboBox*>("cmbSeat");
    seats->setCurrentIndex(seats->findData(8));
  });
  t.window->MovePlayerAsked();
  EXPECT_EQ(t.g.PlayerName[8], "Annie");
  EXPECT_TRUE(t.g.PlayerName[4].empty());
  EXPECT_EQ(t.Input().SelectedPlayer, 8);
  ClickWhenOpen("cmdOK", [](QWidget* atm) { atm->findChild<QLineEdit*>("txtAmount")->setText("250"); });
  t.window->AtmAsked();
  EXPECT_EQ(t.g.Bankroll[8], 1250_usd);
}

TEST(AutoRoll, RollsAtTheDelayAndStopsByAutoStop) {
  Seated t;
  t.g.Auto.AutoRollDelay = 0;
  t.g.Auto.AutoStopRolls = 5_usd;
  auto* button = t.window->findChild<QPushButton*>("cmdHyperDrive");
  EXPECT_EQ(button->text(), "Start &Auto-Roll");
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(t.g.Stats.RollCount[kSessionScope][0], 5);
  EXPECT_FALSE(t.g.Auto.AutoRollActive);
  EXPECT_EQ(t.ui.shown.back().Text, "Stopped by Auto-Stop");
  EXPECT_EQ(button->text(), "Start &Auto-Roll");
}

TEST(HyperDrive, TheSliderChoosesItAndTheSameButtonStopsIt) {
  Seated t;
  auto* slider = t.window->findChild<QSlider*>("hsbThrottle");
  auto* button = t.window->findChild<QPushButton*>("cmdHyperDrive");
  slider->setValue(3);
  EXPECT_EQ(button->text(), "Start &Hyper-Drive");
  EXPECT_FALSE(t.g.Auto.AutoRollActive);  // the slider alone starts nothing
  // A player presses Stop while the run goes on, and says yes.
  QTimer::singleShot(50, [&] {
    EXPECT_TRUE(t.g.Auto.HyperDrive);
    EXPECT_EQ(button->text(), "Stop &Hyper-Drive");
    QTest::mouseClick(button, Qt::LeftButton);
  });
  t.replies = {{kButtonYes, "", false}};
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_FALSE(t.g.Auto.AutoRollActive);
  EXPECT_FALSE(t.g.SilentMode);
  EXPECT_GT(t.g.Stats.RollCount[kSessionScope][0], 0);
  EXPECT_EQ(t.ui.shown.back().Text, "Do you want to stop the Hyper-Drive?");
  EXPECT_EQ(t.window->windowTitle(), "DiceHall Hyper-Drive Stopped");
  EXPECT_EQ(button->text(), "Start &Hyper-Drive");
}

TEST(Language, AChoiceOnTheOpeningPanelResetsTheCaptions) {
  DesktopTable t;
  FrmSplash splash(t.g, true);
  splash.onLanguage = [&] { t.window->SetMenuCaptions(); };
  QTest::mouseClick(splash.findChild<QPushButton*>("imgLanguage"), Qt::LeftButton);
  auto* list = splash.findChild<QListWidget*>("lstLanguages");
  ASSERT_EQ(list->count(), 6);
  EXPECT_EQ(list->item(4)->text(), "Italiano");
  splash.ChooseLanguage(5);  // "Türk"
  EXPECT_EQ(t.g.LanguageId, kTurkish);
  EXPECT_EQ(t.window->menuBar()->actions().front()->text(), "&Oyun");
  EXPECT_EQ(t.window->findChild<QPushButton*>("cmdHyperDrive")->text().toStdString(),
            std::string(LanguageText(kTurkish, 115)));
}

// ---- The captions in six languages: none empty, none left in English where a translation
// is due, every placeholder kept.

std::multiset<std::string> Placeholders(std::string_view text) {
  std::multiset<std::string> out;
  for (size_t i = 0; i + 1 < text.size(); ++i)
    if (text[i] == '%' && text[i + 1] >= '1' && text[i + 1] <= '9') out.insert(std::string(text.substr(i, 2)));
  return out;
}

int LineBreaks(std::string_view text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }

TEST(Captions, EveryCaptionInEveryLanguage) {
  std::set<std::string_view> names;
  for (const CaptionRow& row : CaptionRows()) {
    EXPECT_TRUE(names.insert(row.name).second) << "twice: " << row.name;
    const std::string_view english = row.text[kEnglish];
    for (int lang = 0; lang < kLanguages; ++lang) {
      SCOPED_TRACE(testing::Message() << row.name << " in language " << lang);
      const std::string_view text = row.text[lang];
      EXPECT_FALSE(text.empty());
      EXPECT_EQ(Placeholders(text), Placeholders(english));
      EXPECT_EQ(LineBreaks(text), LineBreaks(english));
      // A menu's access key stays one per caption.
      EXPECT_EQ(std::count(text.begin(), text.end(), '&') > 0, std::count(english.begin(), english.end(), '&') > 0);
      const bool kept = row.keptEnglish & (1 << lang);
      if (lang != kEnglish) {
        EXPECT_EQ(text == english, kept) << (kept ? "marked as kept but translated" : "left in English");
      }
    }
  }
}

TEST(Captions, ValuesFillThePlaceholdersInTheirOrder) {
  EXPECT_EQ(Caption(kEnglish, "tblPayTo", {"7", "6"}), "7 to 6");
  EXPECT_EQ(Caption(kTurkish, "tblPayFor", {"15", "1"}), "1 için 15");
  EXPECT_EQ(Caption(kGerman, "stsLastRoll", {"8", "5", "3"}), "Letzter Wurf: 8 (5-3)");
  // An unknown name shows itself, so that a missing caption is seen at once.
  EXPECT_EQ(Caption(kSpanish, "noSuchCaption"), "noSuchCaption");
}

}  // namespace
