#pragma once
// frmCrapTable: the main window. The table picture, the menus, the dice-rolls panel with
// Auto-Roll and Hyper-Drive, and the status line.

#include <QMainWindow>
#include <map>
#include <string>
#include <vector>

#include "engine/game_state.h"

class PicTable;
class QtUi;
class SoundBank;
class QAction;
class QLabel;
class QMenu;
class QPushButton;
class QSlider;

class FrmCrapTable : public QMainWindow {
  Q_OBJECT
 public:
  FrmCrapTable(Game& g, QtUi& ui, SoundBank* sounds);

  PicTable* Table() const { return picTable_; }
  // Every caption of the menus, the panel and the window for the game's language.
  void SetMenuCaptions();
  // The status line, the Auto-Roll button and the window title from the stores.
  void RefreshStatus();
  // How long the dice tumble before a roll shows, in milliseconds; 0 for none.
  int animationMs = 350;

  // The actions of the menus and the panel, callable by tests as a click would.
  void RollTheDice();
  void StartOrStopAutoRoll();
  void SetAutoStopAsked();
  void SetDelayAsked();
  void NewGameAsked();
  void OpenGameAsked();
  void SaveGameAsked(bool askName);
  void AddPlayerAsked();
  void RemovePlayerAsked();
  void RenamePlayerAsked();
  void MovePlayerAsked();
  void AtmAsked();
  void ChooseLanguageAsked();
  void AutoSizeAsked();

 protected:
  void closeEvent(class QCloseEvent* e) override;

 private:
  void BuildMenus();
  void BuildPanel();
  void OnRefresh(const std::vector<std::string>& windows);
  void SetOneShot(int mode);
  int SelectedSeat(bool tell);
  QAction* Item(QMenu* menu, const char* name);
  QMenu* Menu(const char* name);

  Game& g_;
  QtUi& ui_;
  SoundBank* sounds_;
  PicTable* picTable_ = nullptr;
  QLabel* lblStatus_ = nullptr;
  QPushButton* cmdRollDice_ = nullptr;
  QPushButton* cmdPassDice_ = nullptr;
  QPushButton* cmdHyperDrive_ = nullptr;
  QPushButton* cmdAutoStop_ = nullptr;
  QPushButton* cmdDelay_ = nullptr;
  QSlider* hsbThrottle_ = nullptr;
  QLabel* lblAutoRoll_ = nullptr;
  QLabel* lblHyperDrive_ = nullptr;
  std::map<std::string, QAction*> items_;
  std::map<std::string, QMenu*> menus_;
};
