#include "surface/frm_file.h"

#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <string_view>

#include "engine/user_interface.h"
#include "storage/language_text.h"
#include "surface/captions.h"
#include "surface/frm_msg.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }
QString Q(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<int>(s.size())); }

}  // namespace

FileKind FileKindOf(const std::string& filter) {
  auto has = [&](const char* s) { return filter.find(s) != std::string::npos; };
  if (has(".crp")) return kFolderGame;
  if (has(".rol")) return kFolderRoll;
  if (has(".prb")) return kFolderProbability;
  if (has(".slg")) return kFolderSessionsLog;
  if (has(".bet")) return kFolderAutoBet;
  return kFolderEventsLog;
}

std::vector<std::string> FilterPatterns(const std::string& filter) {
  std::vector<std::string> out;
  const size_t open = filter.rfind('('), close = filter.rfind(')');
  std::string inside = open != std::string::npos && close != std::string::npos && close > open
                           ? filter.substr(open + 1, close - open - 1)
                           : filter;
  size_t start = 0;
  while (start <= inside.size()) {
    size_t end = inside.find(';', start);
    if (end == std::string::npos) end = inside.size();
    std::string p = inside.substr(start, end - start);
    while (!p.empty() && p.front() == ' ') p.erase(p.begin());
    while (!p.empty() && p.back() == ' ') p.pop_back();
    if (!p.empty()) out.push_back(p);
    start = end + 1;
  }
  if (out.empty()) out.push_back("*.*");
  return out;
}

bool IsFileNameOK(const std::string& name) {
  if (name.empty() || name == "." || name == ".." || name.size() > 255) return false;
  for (unsigned char c : name)
    if (c < 32 || std::string_view("\\/:*?\"<>|").find(static_cast<char>(c)) != std::string_view::npos) return false;
  return name.back() != ' ' && name.back() != '.';
}

FrmFile::FrmFile(const std::string& title, const std::string& filter, const std::string& homeFolder,
                 FileFolders& folders, int language, QWidget* owner)
    : QDialog(owner),
      filter_(filter),
      home_(homeFolder),
      folders_(folders),
      kind_(FileKindOf(filter)),
      language_(language) {
  setObjectName("frmFile");
  setWindowTitle(Q(title));
  auto* grid = new QGridLayout(this);
  auto label = [&](const char* caption) { return new QLabel(Q(Caption(language, caption))); };
  drvList_ = new QComboBox;
  drvList_->setObjectName("drvList");
  drvList_->addItem(QDir::rootPath());
  drvList_->addItem(QDir::homePath());
  drvList_->addItem(Q(home_));
  dirList_ = new QListWidget;
  dirList_->setObjectName("dirList");
  filList_ = new QListWidget;
  filList_->setObjectName("filList");
  txtFileName_ = new QLineEdit;
  txtFileName_->setObjectName("txtFileName");
  cmbFilter_ = new QComboBox;
  cmbFilter_->setObjectName("cmbFilter");
  cmbFilter_->addItem(Q(filter));
  if (filter.find("*.*") == std::string::npos) cmbFilter_->addItem(Q(LanguageText(language, 138)) + " (*.*)");
  auto* cmdHome = new QPushButton(Q(Caption(language, "cmdHome")));
  cmdHome->setObjectName("cmdHome");
  cmdHome->setToolTip(Q(LanguageText(language, 132)));
  auto* cmdOK = new QPushButton(Q(Caption(language, "cmdOK")));
  cmdOK->setObjectName("cmdOK");
  cmdOK->setDefault(true);
  auto* cmdCancel = new QPushButton(Q(Caption(language, "cmdCancel")));
  cmdCancel->setObjectName("cmdCancel");
  grid->addWidget(label("lblFileName"), 0, 0);
  grid->addWidget(txtFileName_, 1, 0);
  grid->addWidget(label("lblFolder"), 0, 1);
  grid->addWidget(label("lblFiles"), 2, 0);
  grid->addWidget(filList_, 3, 0);
  grid->addWidget(dirList_, 1, 1, 3, 1);
  grid->addWidget(label("lblFilter"), 4, 0);
  grid->addWidget(cmbFilter_, 5, 0);
  grid->addWidget(label("lblDrive"), 4, 1);
  grid->addWidget(drvList_, 5, 1);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(cmdHome);
  buttons->addStretch(1);
  buttons->addWidget(cmdOK);
  buttons->addWidget(cmdCancel);
  grid->addLayout(buttons, 6, 0, 1, 2);
  resize(620, 420);

  connect(drvList_, &QComboBox::activated, this, [this](int i) { ShowFolder(drvList_->itemText(i)); });
  connect(dirList_, &QListWidget::itemDoubleClicked, this,
          [this](QListWidgetItem* item) { ShowFolder(QDir(folder_).absoluteFilePath(item->text())); });
  connect(filList_, &QListWidget::currentTextChanged, txtFileName_, &QLineEdit::setText);
  connect(filList_, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem*) {
    if (CheckFileName()) accept();
  });
  connect(cmbFilter_, &QComboBox::currentIndexChanged, this, [this](int) { Fill(); });
  connect(cmdHome, &QPushButton::clicked, this, [this] { ShowFolder(Q(home_)); });
  connect(cmdOK, &QPushButton::clicked, this, [this] {
    if (CheckFileName()) accept();
  });
  connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
  const std::string& last = folders_[kind_];
  ShowFolder(Q(last.empty() || !QDir(Q(last)).exists() ? home_ : last));
}

void FrmFile::ShowFolder(const QString& folder) {
  QDir dir(folder);
  if (!dir.exists()) return;
  folder_ = dir.canonicalPath();
  Fill();
}

void FrmFile::Fill() {
  QDir dir(folder_);
  dirList_->clear();
  if (!dir.isRoot()) dirList_->addItem("..");
  for (const QString& d : dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) dirList_->addItem(d);
  filList_->clear();
  QStringList patterns;
  for (const std::string& p : FilterPatterns(cmbFilter_->currentText().toStdString()))
    patterns << (p == "*.*" ? QString("*") : Q(p));
  for (const QString& f : dir.entryList(patterns, QDir::Files, QDir::Name)) filList_->addItem(f);
  setWindowFilePath(folder_);
}

bool FrmFile::CheckFileName() {
  const std::string name = txtFileName_->text().trimmed().toStdString();
  if (!IsFileNameOK(name)) {
    MessageRequest bad;
    bad.Text = Caption(language_, "msgBadFileName", {name});
    bad.Title = windowTitle().toStdString();
    bad.Flags = msg::kAlertOk;
    RunMessageBox(bad, language_, this);
    return false;
  }
  path_ = QDir(folder_).absoluteFilePath(Q(name)).toStdString();
  folders_[kind_] = folder_.toStdString();
  return true;
}
