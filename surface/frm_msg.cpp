#include "surface/frm_msg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "surface/captions.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

const char* const kButtonCaptions[5] = {"cmdOK", "cmdYes", "cmdNo", "cmdCancel", "cmdHelp"};

}  // namespace

QPixmap MessagePicture(int flags) {
  const int kind = flags & (msg::kPicture1 | msg::kPicture2 | msg::kPicture3 | msg::kPicture4);
  if (kind == 0) return QPixmap();
  const bool large = (kind & (msg::kPicture1 | msg::kPicture2)) == (msg::kPicture1 | msg::kPicture2);
  const int size = large ? 64 : 40;
  QPixmap pm(size * 2, size * 2);
  pm.setDevicePixelRatio(2);
  pm.fill(Qt::transparent);
  QPainter p(&pm);
  p.setRenderHint(QPainter::Antialiasing);
  const QRectF r(2, 2, size - 4, size - 4);
  QFont f("DejaVu Sans");
  f.setBold(true);
  f.setPixelSize(size * 0.6);
  p.setFont(f);
  if (large || kind & msg::kPicture2) {
    // The alert: a yellow triangle with "!".
    QPainterPath tri;
    tri.moveTo(r.center().x(), r.top());
    tri.lineTo(r.right(), r.bottom());
    tri.lineTo(r.left(), r.bottom());
    tri.closeSubpath();
    p.setPen(QPen(QColor(120, 80, 0), 2));
    p.setBrush(QColor(250, 200, 40));
    p.drawPath(tri);
    p.setPen(Qt::black);
    p.drawText(r.adjusted(0, size * 0.15, 0, 0), Qt::AlignCenter, "!");
  } else if (kind & msg::kPicture4) {
    // The stop: a red octagon.
    QPolygonF oct;
    for (int i = 0; i < 8; ++i) {
      const double a = (i + 0.5) * M_PI / 4;
      oct << QPointF(r.center().x() + std::cos(a) * r.width() / 2, r.center().y() + std::sin(a) * r.height() / 2);
    }
    p.setPen(QPen(QColor(110, 0, 0), 2));
    p.setBrush(QColor(200, 30, 30));
    p.drawPolygon(oct);
    p.setPen(Qt::white);
    p.drawText(r, Qt::AlignCenter, "×");
  } else {
    // Information ("i") or a question ("?") in a blue disc.
    p.setPen(QPen(QColor(10, 50, 120), 2));
    p.setBrush(QColor(40, 110, 210));
    p.drawEllipse(r);
    p.setPen(Qt::white);
    p.drawText(r, Qt::AlignCenter, kind & msg::kPicture3 ? "?" : "i");
  }
  return pm;
}

FrmMsg::FrmMsg(const MessageRequest& request, int language, QWidget* owner)
    : QDialog(owner), request_(request), language_(language) {
  setObjectName("frmMsg");
  setWindowTitle(Q(request.Title));
  setModal(true);
  const int flags = request.Flags;
  chosen_ = flags & (1 << kButtonCancel) ? kButtonCancel : kButtonOk;
  auto* outer = new QVBoxLayout(this);
  auto* top = new QHBoxLayout;
  const QPixmap picture = MessagePicture(flags);
  if (!picture.isNull()) {
    auto* img = new QLabel;
    img->setObjectName("imgPicture");
    img->setPixmap(picture);
    img->setAlignment(Qt::AlignTop);
    top->addWidget(img);
    top->addSpacing(8);
  }
  lblMsg_ = new QLabel(Q(request.Text));
  lblMsg_->setObjectName("lblMsg");
  lblMsg_->setWordWrap(true);
  lblMsg_->setTextFormat(Qt::PlainText);
  lblMsg_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (flags & msg::kCentre) lblMsg_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
  // The width follows the text: its longest line, within bounds, times the width factor.
  const QFontMetrics m(lblMsg_->font());
  int longest = 0;
  for (const QString& line : Q(request.Text).split('\n')) longest = std::max(longest, m.horizontalAdvance(line));
  int width = request.Width > 0 ? request.Width : std::clamp(longest + 8, 220, static_cast<int>(460 * request.Scale));
  lblMsg_->setMinimumWidth(width);
  lblMsg_->setMaximumWidth(std::max(width, request.Width > 0 ? request.Width : static_cast<int>(460 * request.Scale)));
  top->addWidget(lblMsg_, 1);
  outer->addLayout(top);
  if (flags & msg::kInput) {
    txtInput_ = new QLineEdit(Q(request.Input));
    txtInput_->setObjectName("txtInput");
    txtInput_->selectAll();
    outer->addWidget(txtInput_);
  }
  if (flags & msg::kList) {
    cmbUser_ = new QComboBox;
    cmbUser_->setObjectName("cmbUser");
    for (const std::string& item : request.List) cmbUser_->addItem(Q(item));
    outer->addWidget(cmbUser_);
  }
  auto* bottom = new QHBoxLayout;
  if (flags & msg::kClassMask) {
    chkHide_ = new QCheckBox(Q(Caption(language, "chkHide")));
    chkHide_->setObjectName("chkHide");
    bottom->addWidget(chkHide_);
  }
  bottom->addStretch(1);
  bool defaultSet = false;
  for (int i = 0; i < 5; ++i) {
    if (!(flags & (1 << i))) continue;
    auto* b = new QPushButton(Q(Caption(language, kButtonCaptions[i])));
    b->setObjectName(QString("cmdButton%1").arg(i));
    cmdButton_[i] = b;
    if (!defaultSet && i != kButtonHelp) {
      b->setDefault(true);
      defaultSet = true;
    }
    connect(b, &QPushButton::clicked, this, [this, i] { Choose(i); });
    bottom->addWidget(b);
  }
  outer->addLayout(bottom);
  outer->setSizeConstraint(QLayout::SetFixedSize);
  if (txtInput_) txtInput_->setFocus();
}

void FrmMsg::Choose(int button) {
  if (button == kButtonHelp) {
    // The help viewer isn't part of this build: say so and keep the question open.
    MessageRequest help;
    help.Text = Caption(language_, "msgNoHelp", {std::to_string(request_.HelpId)});
    help.Title = request_.Title;
    help.Flags = msg::kOk | msg::kPicture1;
    RunMessageBox(help, language_, this);
    return;
  }
  chosen_ = button;
  accept();
}

MessageReply FrmMsg::Reply() const {
  MessageReply reply;
  reply.Button = chosen_;
  if (txtInput_) reply.Input = txtInput_->text().toStdString();
  else if (cmbUser_) reply.Input = cmbUser_->currentText().toStdString();
  reply.Hide = chkHide_ && chkHide_->isChecked();
  return reply;
}

MessageReply RunMessageBox(const MessageRequest& request, int language, QWidget* owner) {
  FrmMsg box(request, language, owner);
  box.exec();
  return box.Reply();
}
