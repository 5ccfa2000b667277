#include "surface/frm_atm.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "engine/bankroll.h"
#include "engine/messages.h"
#include "surface/captions.h"

namespace {
QString Q(const std::string& s) { return QString::fromStdString(s); }
}  // namespace

FrmAtm::FrmAtm(Game& g, int seat, QWidget* owner) : QDialog(owner), g_(g), seat_(seat) {
  setObjectName("frmAtm");
  const int lang = g.LanguageId;
  setWindowTitle(Q(Caption(lang, "ttlAtm")));
  auto* layout = new QVBoxLayout(this);
  auto* who = new QLabel(Q(Caption(lang, "lblAtmBankroll",
                                   {g.PlayerName[seat], DollarText(g.Bankroll[seat]), DollarText(g.OnTable[seat])})));
  who->setObjectName("lblAtmBankroll");
  layout->addWidget(who);
  optWithdraw_ = new QRadioButton(Q(Caption(lang, "optWithdraw")));
  optWithdraw_->setObjectName("optWithdraw");
  optWithdraw_->setChecked(true);
  auto* deposit = new QRadioButton(Q(Caption(lang, "optDeposit")));
  deposit->setObjectName("optDeposit");
  layout->addWidget(optWithdraw_);
  layout->addWidget(deposit);
  layout->addWidget(new QLabel(Q(Caption(lang, "lblAmount"))));
  txtAmount_ = new QLineEdit(Q(MoneyText(g.Rules.AtmAmount.raw > 0 ? g.Rules.AtmAmount : Money::Dollars(100))));
  txtAmount_->setObjectName("txtAmount");
  layout->addWidget(txtAmount_);
  auto* buttons = new QDialogButtonBox;
  auto* ok = buttons->addButton(Q(Caption(lang, "cmdOK")), QDialogButtonBox::AcceptRole);
  ok->setObjectName("cmdOK");
  auto* cancel = buttons->addButton(Q(Caption(lang, "cmdCancel")), QDialogButtonBox::RejectRole);
  cancel->setObjectName("cmdCancel");
  connect(buttons, &QDialogButtonBox::accepted, this, &FrmAtm::Apply);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

void FrmAtm::Apply() {
  Money amount;
  std::string error;
  if (!ParseMoney(txtAmount_->text().toStdString(), amount, error) || amount.raw <= 0) {
    if (error.empty()) error = "\"" + txtAmount_->text().toStdString() + "\"";
    Tell(g_, error, windowTitle().toStdString(), 0, msg::kAlertOk);
    return;
  }
  Atm(g_, seat_, optWithdraw_->isChecked() ? amount : -amount);
  accept();
}
