#include "surface/qt_ui.h"

#include <QApplication>
#include <QThread>

#include "surface/frm_msg.h"
#include "surface/frm_settle_bet.h"
#include "surface/sound_bank.h"

namespace {

// A silent run turns the event loop at most this often; a stop still arrives at once.
constexpr int kSilentYieldMs = 10;

}  // namespace

QtUi::QtUi(Game& g) : g_(g) { sinceYield_.start(); }

MessageReply QtUi::ShowMessage(const MessageRequest& request) {
  shown.push_back(request);
  if (answerMessage)
    if (std::optional<MessageReply> reply = answerMessage(request)) return *reply;
  QWidget* owner = owner_ ? static_cast<QWidget*>(owner_) : QApplication::activeWindow();
  return RunMessageBox(request, g_.LanguageId, owner);
}

int QtUi::AskSettle(const SettleRequest& request) {
  if (answerSettle)
    if (std::optional<int> action = answerSettle(request)) return *action;
  FrmSettleBet dialog(g_, request, owner_);
  dialog.exec();
  return dialog.Action();
}

std::string QtUi::ChooseFile(const std::string& title, const std::string& filter) {
  // The last folder of each kind is kept with the game.
  FrmFile window(title, filter, g_.ProgramFolder, g_.Desktop.LastFolders, g_.LanguageId, owner_);
  if (window.exec() != QDialog::Accepted) return "";
  return window.Path();
}

void QtUi::PlaySound(const std::string& file, bool) {
  if (sounds_ == nullptr || g_.SilentMode) return;
  // The roll cycle's calls by number: 13 a pass, 14 a miss.
  if (file == "13") sounds_->PlayWin();
  else if (file == "14") sounds_->PlayChecks();
  else sounds_->Play(file);
}

void QtUi::Refresh(const std::vector<std::string>& windows) {
  if (g_.SilentMode) return;  // Hyper-Drive draws nothing
  if (onRefresh) onRefresh(windows);
}

bool QtUi::ShowStep(const StepRequest& request) {
  // Until the script workbench exists the step is told in the message box: OK goes on,
  // Cancel stops.
  MessageRequest m;
  m.Text = request.Text;
  m.Title = request.Title;
  m.Flags = msg::kOk | msg::kCancel;
  return ShowMessage(m).Button == kButtonOk;
}

void QtUi::Yield() {
  if (g_.SilentMode) {
    if (sinceYield_.elapsed() < kSilentYieldMs) return;
    sinceYield_.restart();
    QApplication::processEvents(QEventLoop::AllEvents, 5);
    return;
  }
  QApplication::processEvents(QEventLoop::AllEvents, 5);
  // A wait between rolls: sleep a little rather than spin.
  QThread::msleep(2);
}
