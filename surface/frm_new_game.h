#pragma once
// The New game choice: a new session at the same table, or the default game.

#include <QDialog>

class QRadioButton;

class FrmNewGame : public QDialog {
  Q_OBJECT
 public:
  FrmNewGame(int language, QWidget* owner);
  // True for the default game, false for a new session.
  bool DefaultGame() const;

 private:
  QRadioButton* optNewDefault_ = nullptr;
};
