#pragma once
// frmFile: the system's own file window. A drive list, a folder list, a file list and a
// name box under a filter; it remembers a last folder for each kind of file.

#include <QDialog>
#include <array>
#include <string>

#include "storage/saved_settings.h"

class QComboBox;
class QListWidget;
class QLineEdit;

// The last folder of each kind of file, kept with the game.
using FileFolders = std::array<std::string, kFileKinds>;

// The kind a filter names ("(*.crp)" a game, "(*.bet;*.txt)" a script ...).
FileKind FileKindOf(const std::string& filter);
// The patterns of a filter: "Auto-bet files (*.bet;*.txt)" gives *.bet and *.txt.
std::vector<std::string> FilterPatterns(const std::string& filter);
// Whether a name can be a file's name here; IsFileNameOK serves the same test elsewhere.
bool IsFileNameOK(const std::string& name);

class FrmFile : public QDialog {
  Q_OBJECT
 public:
  FrmFile(const std::string& title, const std::string& filter, const std::string& homeFolder, FileFolders& folders,
          int language, QWidget* owner);
  // The chosen full path, "" for Cancel.
  std::string Path() const { return path_; }
  void ShowFolder(const QString& folder);

 private:
  void Fill();
  bool CheckFileName();
  std::string filter_, home_;
  FileFolders& folders_;
  FileKind kind_;
  int language_;
  QString folder_;
  std::string path_;
  QComboBox* drvList_ = nullptr;
  QListWidget* dirList_ = nullptr;
  QListWidget* filList_ = nullptr;
  QLineEdit* txtFileName_ = nullptr;
  QComboBox* cmbFilter_ = nullptr;
};
