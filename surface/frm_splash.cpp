#include "surface/frm_splash.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "engine/table_settings.h"
#include "storage/language_text.h"
#include "surface/captions.h"

namespace {
QString Q(const std::string& s) { return QString::fromStdString(s); }
QString Q(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<int>(s.size())); }
}  // namespace

FrmSplash::FrmSplash(Game& g, bool chooser, QWidget* owner) : QDialog(owner), g_(g) {
  setObjectName("frmSplash");
  setWindowTitle("DiceHall");
  setStyleSheet(
      "QDialog { background: qradialgradient(cx:0.5, cy:0.4, radius:0.9, stop:0 #12784a, stop:1 #063f22); }"
      "QLabel { color: #f4f0de; } QListWidget { background: #0b2a18; color: #f4f0de; }"
      "QPushButton { color: #1a1a1a; }");
  auto* layout = new QVBoxLayout(this);
  auto* title = new QLabel("DiceHall");
  title->setObjectName("lblTitle");
  QFont f = title->font();
  f.setPointSizeF(f.pointSizeF() * 3);
  f.setBold(true);
  f.setFamily("DejaVu Serif");
  title->setFont(f);
  title->setAlignment(Qt::AlignCenter);
  layout->addWidget(title);
  lblSubtitle_ = new QLabel;
  lblSubtitle_->setAlignment(Qt::AlignCenter);
  layout->addWidget(lblSubtitle_);
  imgLanguage_ = new QPushButton;
  imgLanguage_->setObjectName("imgLanguage");
  connect(imgLanguage_, &QPushButton::clicked, this, &FrmSplash::ToggleLanguages);
  layout->addWidget(imgLanguage_, 0, Qt::AlignCenter);
  lstLanguages_ = new QListWidget;
  lstLanguages_->setObjectName("lstLanguages");
  for (const LanguageItem& item : LanguageList()) {
    auto* row = new QListWidgetItem(Q(item.text));
    row->setData(Qt::UserRole, item.id);
    lstLanguages_->addItem(row);
  }
  lstLanguages_->setVisible(false);
  lstLanguages_->setMaximumHeight(150);
  connect(lstLanguages_, &QListWidget::itemClicked, this,
          [this](QListWidgetItem* item) { ChooseLanguage(lstLanguages_->row(item)); });
  layout->addWidget(lstLanguages_);
  lblPreparing_ = new QLabel;
  lblPreparing_->setAlignment(Qt::AlignCenter);
  lblPreparing_->setVisible(!chooser);
  layout->addWidget(lblPreparing_);
  cmdPlay_ = new QPushButton;
  cmdPlay_->setObjectName("cmdPlay");
  cmdPlay_->setVisible(chooser);
  connect(cmdPlay_, &QPushButton::clicked, this, &QDialog::accept);
  layout->addWidget(cmdPlay_, 0, Qt::AlignCenter);
  if (chooser) lstLanguages_->setVisible(true);
  setMinimumWidth(440);
  SetCaptions();
}

void FrmSplash::SetCaptions() {
  const int lang = g_.LanguageId;
  lblSubtitle_->setText(Q(Caption(lang, "lblSubtitle")));
  lblPreparing_->setText(Q(Caption(lang, "lblPreparing")));
  cmdPlay_->setText(Q(Caption(lang, "cmdPlay")));
  QString current;
  for (const LanguageItem& item : LanguageList())
    if (item.id == lang) current = Q(item.text);
  imgLanguage_->setText("🌐  " + Q(Caption(lang, "lblLanguage")) + ": " + current);
}

void FrmSplash::ToggleLanguages() { lstLanguages_->setVisible(!lstLanguages_->isVisible()); }

void FrmSplash::ChooseLanguage(int row) {
  QListWidgetItem* item = lstLanguages_->item(row);
  if (item == nullptr) return;
  SetLanguage(g_, item->data(Qt::UserRole).toInt());
  lstLanguages_->setVisible(false);
  SetCaptions();
  if (onLanguage) onLanguage();
}
