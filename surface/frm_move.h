#pragma once
// frmMove: where a player moves to; a taken seat is an exchange.

#include <QDialog>

#include "engine/game_state.h"

class QComboBox;

class FrmMove : public QDialog {
  Q_OBJECT
 public:
  FrmMove(const Game& g, int seat, QWidget* owner);
  // The seat chosen, 0 for none.
  int Destination() const;

 private:
  QComboBox* cmbSeat_ = nullptr;
};
