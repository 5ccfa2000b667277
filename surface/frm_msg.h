#pragma once
// frmMsg: the system's own message box. Up to five buttons, a picture, an input field or
// a list, and "Hide" for a class of notices; sized from its text.

#include <QDialog>
#include <array>

#include "engine/user_interface.h"

class QLabel;
class QLineEdit;
class QComboBox;
class QCheckBox;
class QPushButton;

class FrmMsg : public QDialog {
  Q_OBJECT
 public:
  FrmMsg(const MessageRequest& request, int language, QWidget* owner);
  // The reply of the button that closed the box (Cancel when closed otherwise).
  MessageReply Reply() const;

 private:
  void Choose(int button);
  MessageRequest request_;
  int language_;
  int chosen_;
  QLabel* lblMsg_ = nullptr;
  QLineEdit* txtInput_ = nullptr;
  QComboBox* cmbUser_ = nullptr;
  QCheckBox* chkHide_ = nullptr;
  std::array<QPushButton*, 5> cmdButton_{};
};

// The picture of the flags' bits 256..2048, drawn by us; null for none.
class QPixmap MessagePicture(int flags);
// Runs the box modally over `owner` and returns the reply.
MessageReply RunMessageBox(const MessageRequest& request, int language, QWidget* owner);
