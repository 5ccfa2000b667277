#pragma once
// The desktop's side of UserInterface: frmMsg, frmFile, frmSettleBet, the sounds, and
// turns of the Qt event loop.

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <optional>

#include "engine/game_state.h"
#include "surface/frm_file.h"

class SoundBank;

class QtUi : public UserInterface {
 public:
  explicit QtUi(Game& g);

  void SetOwner(QWidget* owner) { owner_ = owner; }
  void SetSounds(SoundBank* sounds) { sounds_ = sounds; }
  // The window that redraws itself when the engine asks.
  std::function<void(const std::vector<std::string>&)> onRefresh;
  // Answers in place of a person, for tests and benchmarks: a reply is taken when the
  // function gives one, else the box opens.
  std::function<std::optional<MessageReply>(const MessageRequest&)> answerMessage;
  std::function<std::optional<int>(const SettleRequest&)> answerSettle;
  // Every message shown, for tests.
  std::vector<MessageRequest> shown;

  MessageReply ShowMessage(const MessageRequest& request) override;
  int AskSettle(const SettleRequest& request) override;
  std::string ChooseFile(const std::string& title, const std::string& filter) override;
  void PlaySound(const std::string& file, bool wait) override;
  void Refresh(const std::vector<std::string>& windows) override;
  bool ShowStep(const StepRequest& request) override;
  void Yield() override;

 private:
  Game& g_;
  QPointer<QWidget> owner_;
  SoundBank* sounds_ = nullptr;
  QElapsedTimer sinceYield_;
};
