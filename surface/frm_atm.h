#pragma once
// frmAtm: money to the rail from the ATM, or back to it.

#include <QDialog>

#include "engine/game_state.h"

class QLineEdit;
class QRadioButton;

class FrmAtm : public QDialog {
  Q_OBJECT
 public:
  FrmAtm(Game& g, int seat, QWidget* owner);

 private:
  void Apply();
  Game& g_;
  int seat_;
  QLineEdit* txtAmount_ = nullptr;
  QRadioButton* optWithdraw_ = nullptr;
};
