#pragma once
// frmSplash: the opening display. Its language picture opens the list of languages; a
// choice sets the game's language and the captions follow.

#include <QDialog>
#include <functional>

#include "engine/game_state.h"

class QLabel;
class QListWidget;
class QPushButton;

class FrmSplash : public QDialog {
  Q_OBJECT
 public:
  // `chooser`: opened from the menu to choose a language (with a Play button), rather
  // than shown for a moment at start-up.
  FrmSplash(Game& g, bool chooser, QWidget* owner = nullptr);
  std::function<void()> onLanguage;
  // The click on imgLanguage: shows or hides lstLanguages.
  void ToggleLanguages();
  void ChooseLanguage(int row);

 private:
  void SetCaptions();
  Game& g_;
  QLabel* lblSubtitle_ = nullptr;
  QLabel* lblPreparing_ = nullptr;
  QPushButton* imgLanguage_ = nullptr;
  QListWidget* lstLanguages_ = nullptr;
  QPushButton* cmdPlay_ = nullptr;
};
