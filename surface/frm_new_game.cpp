#include "surface/frm_new_game.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "surface/captions.h"

FrmNewGame::FrmNewGame(int language, QWidget* owner) : QDialog(owner) {
  setObjectName("frmNewGame");
  auto q = [&](const char* name) { return QString::fromStdString(Caption(language, name)); };
  setWindowTitle(q("ttlNewGame"));
  auto* layout = new QVBoxLayout(this);
  auto* session = new QRadioButton(q("optNewSession"));
  session->setObjectName("optNewSession");
  session->setChecked(true);
  optNewDefault_ = new QRadioButton(q("optNewDefault"));
  optNewDefault_->setObjectName("optNewDefault");
  layout->addWidget(session);
  layout->addWidget(optNewDefault_);
  auto* buttons = new QDialogButtonBox;
  auto* ok = buttons->addButton(q("cmdOK"), QDialogButtonBox::AcceptRole);
  ok->setObjectName("cmdOK");
  auto* cancel = buttons->addButton(q("cmdCancel"), QDialogButtonBox::RejectRole);
  cancel->setObjectName("cmdCancel");
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

bool FrmNewGame::DefaultGame() const { return optNewDefault_->isChecked(); }
