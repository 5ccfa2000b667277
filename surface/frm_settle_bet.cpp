#include "surface/frm_settle_bet.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "engine/messages.h"
#include "engine/table_settings.h"
#include "surface/captions.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

const char* const kOperators[4] = {"+", "-", "×", "÷"};

}  // namespace

std::string UnitsCaption(const Game& g, int units) {
  if (units == 0) return Caption(g.LanguageId, "unitDollars");
  if (units == 1) return Caption(g.LanguageId, "unitPercent");
  const int d = std::min(units - 1, 5);
  return Caption(g.LanguageId, "unitCheck", {DollarText(g.Rules.CheckDenom[d])});
}

FrmSettleBet::FrmSettleBet(Game& g, const SettleRequest& request, QWidget* owner)
    : QDialog(owner),
      g_(g),
      request_(request),
      action_(request.Actions.empty() ? 1 : request.Actions.front()),
      modifyOperator_(request.ModifyOperator),
      modifyUnits_(request.ModifyUnits),
      betUnits_(request.BetUnits) {
  setObjectName("frmSettleBet");
  setWindowTitle(Q(request.Title));
  setModal(true);
  const int lang = g.LanguageId;
  auto* outer = new QVBoxLayout(this);
  auto* title = new QLabel(Q(request.Title));
  title->setObjectName("lblTitle");
  QFont big = title->font();
  big.setPointSizeF(big.pointSizeF() * 1.6);
  big.setBold(true);
  title->setFont(big);
  title->setAlignment(Qt::AlignCenter);
  outer->addWidget(title);
  for (size_t i = 0; i < request.Labels.size(); ++i) {
    auto* l = new QLabel(Q(request.Labels[i]));
    l->setObjectName(QString("lblSettle%1").arg(i));
    if (i == 0) {
      QFont f = l->font();
      f.setBold(true);
      l->setFont(f);
    }
    outer->addWidget(l);
  }
  auto* line = new QFrame;
  line->setFrameShape(QFrame::HLine);
  outer->addWidget(line);
  for (size_t i = 0; i < request.Buttons.size(); ++i) {
    auto* b = new QPushButton(Q(request.Buttons[i]));
    b->setObjectName(QString("cmdHandle%1").arg(i));
    if (i == 0) b->setDefault(true);
    const int action = i < request.Actions.size() ? request.Actions[i] : 1;
    connect(b, &QPushButton::clicked, this, [this, action] {
      action_ = action;
      accept();
    });
    outer->addWidget(b);
  }
  if (request.RuleRows) {
    auto* grid = new QGridLayout;
    auto cycle = [this](QPushButton* b, int& value, int count, auto caption) {
      connect(b, &QPushButton::clicked, this, [b, &value, count, caption] {
        value = (value + 1) % count;
        b->setText(caption(value));
      });
    };
    grid->addWidget(new QLabel(Q(Caption(lang, "lblModify"))), 0, 0);
    cmdMathOperator_ = new QPushButton(kOperators[std::clamp(modifyOperator_, 0, 3)]);
    cmdMathOperator_->setObjectName("cmdMathOperator");
    cycle(cmdMathOperator_, modifyOperator_, 4, [](int v) { return QString(kOperators[v]); });
    txtModifyAmount_ = new QLineEdit(Q(MoneyText(request.ModifyAmount)));
    txtModifyAmount_->setObjectName("txtModifyAmount");
    cmdUnits_ = new QPushButton(Q(UnitsCaption(g, modifyUnits_)));
    cmdUnits_->setObjectName("cmdUnits");
    cycle(cmdUnits_, modifyUnits_, 7, [this](int v) { return Q(UnitsCaption(g_, v)); });
    auto* applyModify = new QPushButton(Q(Caption(lang, "cmdApplyModify")));
    applyModify->setObjectName("cmdApplyModify");
    connect(applyModify, &QPushButton::clicked, this, [this] { ChooseRule(6); });
    grid->addWidget(cmdMathOperator_, 0, 1);
    grid->addWidget(txtModifyAmount_, 0, 2);
    grid->addWidget(cmdUnits_, 0, 3);
    grid->addWidget(applyModify, 0, 4);
    auto* betLabel = new QLabel(Q(Caption(lang, "lblBetRow")));
    grid->addWidget(betLabel, 1, 0);
    txtBetAmount_ = new QLineEdit(Q(MoneyText(request.BetAmount)));
    txtBetAmount_->setObjectName("txtBetAmount");
    betLabel->setBuddy(txtBetAmount_);
    cmdBetUnits_ = new QPushButton(Q(UnitsCaption(g, betUnits_)));
    cmdBetUnits_->setObjectName("cmdBetUnits");
    // The Bet row sets an amount: in dollars or in checks, not in percent.
    connect(cmdBetUnits_, &QPushButton::clicked, this, [this] {
      betUnits_ = betUnits_ == 0 ? 2 : (betUnits_ + 1) % 7;
      if (betUnits_ == 1) betUnits_ = 2;
      cmdBetUnits_->setText(Q(UnitsCaption(g_, betUnits_)));
    });
    auto* applyBet = new QPushButton(Q(Caption(lang, "cmdApplyBet")));
    applyBet->setObjectName("cmdApplyBet");
    connect(applyBet, &QPushButton::clicked, this, [this] { ChooseRule(7); });
    grid->addWidget(txtBetAmount_, 1, 2);
    grid->addWidget(cmdBetUnits_, 1, 3);
    grid->addWidget(applyBet, 1, 4);
    outer->addLayout(grid);
  }
  outer->setSizeConstraint(QLayout::SetFixedSize);
}

void FrmSettleBet::ChooseRule(int action) {
  QLineEdit* field = action == 6 ? txtModifyAmount_ : txtBetAmount_;
  Money amount;
  std::string error;
  if (!ParseMoney(field->text().toStdString(), amount, error)) {
    Tell(g_, error, request_.Title, 0, msg::kAlertOk);
    field->setFocus();
    return;
  }
  // Each row's values are remembered for the seat, as the rules of its automatic action.
  const int seat = request_.Seat;
  if (seat >= 1 && seat < kSeats && request_.RuleRow >= 0 && request_.RuleRow + 1 < 4) {
    SettleRule rule;
    rule.Operand = amount;
    rule.Operator = action == 6 ? modifyOperator_ : 0;
    rule.Units = action == 6 ? modifyUnits_ : betUnits_;
    SetSettleRule(g_, seat, request_.RuleRow + (action == 7 ? 1 : 0), rule);
  }
  action_ = action;
  accept();
}
