#pragma once
// frmSettleBet: what becomes of a bet that won or lost. The labels and buttons come from
// the engine's request; the two rule rows ("Modify" and "&Bet") write the seat's rules.

#include <QDialog>

#include "engine/game_state.h"

class QLineEdit;
class QPushButton;

class FrmSettleBet : public QDialog {
  Q_OBJECT
 public:
  FrmSettleBet(Game& g, const SettleRequest& request, QWidget* owner);
  int Action() const { return action_; }

 private:
  // A rule row chosen: its values become the seat's rule, then the action.
  void ChooseRule(int action);
  Game& g_;
  SettleRequest request_;
  int action_;
  int modifyOperator_, modifyUnits_, betUnits_;
  QLineEdit* txtModifyAmount_ = nullptr;
  QLineEdit* txtBetAmount_ = nullptr;
  QPushButton* cmdMathOperator_ = nullptr;
  QPushButton* cmdUnits_ = nullptr;
  QPushButton* cmdBetUnits_ = nullptr;
};

// The caption of a units selector: dollars, percent, or a check size.
std::string UnitsCaption(const Game& g, int units);
