#include "surface/frm_move.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "surface/captions.h"

FrmMove::FrmMove(const Game& g, int seat, QWidget* owner) : QDialog(owner) {
  setObjectName("frmMove");
  const int lang = g.LanguageId;
  setWindowTitle(QString::fromStdString(Caption(lang, "ttlMove")));
  auto* layout = new QVBoxLayout(this);
  auto* label = new QLabel(QString::fromStdString(Caption(lang, "lblMoveTo", {g.PlayerName[seat]})));
  label->setObjectName("lblMoveTo");
  layout->addWidget(label);
  cmbSeat_ = new QComboBox;
  cmbSeat_->setObjectName("cmbSeat");
  for (int s = 1; s <= 8; ++s) {
    if (s == seat) continue;
    const std::string code(SeatName(s));
    const std::string text = SeatOccupied(g, s) ? Caption(lang, "lblTakenSeat", {code, g.PlayerName[s]})
                                                : Caption(lang, "lblFreeSeat", {code});
    cmbSeat_->addItem(QString::fromStdString(text), s);
  }
  layout->addWidget(cmbSeat_);
  auto* buttons = new QDialogButtonBox;
  auto* ok = buttons->addButton(QString::fromStdString(Caption(lang, "cmdOK")), QDialogButtonBox::AcceptRole);
  ok->setObjectName("cmdOK");
  auto* cancel = buttons->addButton(QString::fromStdString(Caption(lang, "cmdCancel")), QDialogButtonBox::RejectRole);
  cancel->setObjectName("cmdCancel");
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

int FrmMove::Destination() const { return cmbSeat_->currentData().toInt(); }
