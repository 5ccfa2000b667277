#include "surface/pic_table.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRandomGenerator>
#include <QThread>

PicTable::PicTable(Game& g, QWidget* parent) : QWidget(parent), g_(g), geometry_(DefaultTableGeometry()) {
  setObjectName("picTable");
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(640, 372);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

QPoint PicTable::CentreOf(int id) const {
  const TableRegion* r = geometry_.Find(id);
  if (r == nullptr) return QPoint(-1, -1);
  const TableRect* best = &r->rects.front();
  for (const TableRect& rect : r->rects)
    if (rect.w * rect.h > best->w * best->h) best = &rect;
  return Transform().map(QPointF(best->x + best->w / 2, best->y + best->h / 2)).toPoint();
}

void PicTable::Redraw() {
  stale_ = true;
  update();
}

TableView PicTable::View() const {
  TableView v;
  v.hoverId = input_.HoverId;
  v.selectedPlayer = input_.SelectedPlayer;
  v.selectedCheck = input_.SelectedCheck;
  v.rackRotation = input_.RackRotation;
  v.betsAsNumbers = input_.BetsAsNumbers;
  v.pointer = pointer_;
  v.diceShake = shake_;
  return v;
}

void PicTable::AnimateDice(int milliseconds) {
  if (milliseconds <= 0 || !isVisible()) return;
  const int die1 = g_.Table.Die1, die2 = g_.Table.Die2;
  QElapsedTimer t;
  t.start();
  // Cosmetic faces, from Qt's generator and never from the game's.
  while (t.elapsed() < milliseconds) {
    g_.Table.Die1 = QRandomGenerator::global()->bounded(1, 7);
    g_.Table.Die2 = QRandomGenerator::global()->bounded(1, 7);
    Redraw();
    repaint();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 5);
    QThread::msleep(40);
  }
  g_.Table.Die1 = die1;
  g_.Table.Die2 = die2;
  Redraw();
}

void PicTable::paintEvent(QPaintEvent*) {
  // Hyper-Drive draws nothing: the last picture stays until the run ends.
  if (picture_.size() != size() * devicePixelRatioF() || (stale_ && !g_.SilentMode)) {
    picture_ = QPixmap(size() * devicePixelRatioF());
    picture_.setDevicePixelRatio(devicePixelRatioF());
    picture_.fill(QColor(24, 20, 18));
    QPainter p(&picture_);
    p.setTransform(Transform());
    PaintTable(p, geometry_, g_, View());
    stale_ = false;
  }
  QPainter w(this);
  w.drawPixmap(0, 0, picture_);
}

void PicTable::resizeEvent(QResizeEvent*) {
  map_ = PaintHotspots(geometry_, size());
  Redraw();
}

void PicTable::mouseMoveEvent(QMouseEvent* e) {
  const QPoint at = e->position().toPoint();
  const int before = input_.HoverId;
  LayoutMouseMove(g_, input_, HotspotAt(map_, at.x(), at.y()));
  pointer_ = Transform().inverted().map(QPointF(at));
  if (before != input_.HoverId || hot::IsBet(input_.HoverId)) Redraw();
}

void PicTable::leaveEvent(QEvent*) {
  input_.HoverId = 0;
  pointer_ = QPointF(-1, -1);
  Redraw();
}

void PicTable::mousePressEvent(QMouseEvent* e) {
  const QPoint at = e->position().toPoint();
  const int id = HotspotAt(map_, at.x(), at.y());
  const QPointF t = Transform().inverted().map(QPointF(at));
  int shift = 0;
  if (e->modifiers() & Qt::ShiftModifier) shift |= kShift;
  if (e->modifiers() & Qt::ControlModifier) shift |= kCtrl;
  if (e->modifiers() & Qt::AltModifier) shift |= kAlt;
  const int button = e->button() == Qt::RightButton ? kRightButton : e->button() == Qt::LeftButton ? kLeftButton : 0;
  if (button == 0) return;
  setFocus();
  const ClickEffect effect = LayoutMouseDown(g_, input_, geometry_, button, shift, id, t.x(), t.y());
  LayoutMouseMove(g_, input_, id);
  Redraw();
  if (afterInput) afterInput(effect);
}

void PicTable::keyPressEvent(QKeyEvent* e) {
  TableKey key = TableKey::None;
  switch (e->key()) {
    case Qt::Key_Left: key = TableKey::Left; break;
    case Qt::Key_Right: key = TableKey::Right; break;
    case Qt::Key_Up: key = TableKey::Up; break;
    case Qt::Key_Down: key = TableKey::Down; break;
    case Qt::Key_Space: key = TableKey::Space; break;
    case Qt::Key_C: key = TableKey::C; break;
    case Qt::Key_W: key = TableKey::W; break;
    case Qt::Key_P: key = TableKey::P; break;
    case Qt::Key_Return:
    case Qt::Key_Enter: key = TableKey::Enter; break;
    case Qt::Key_Delete: key = TableKey::Delete; break;
    case Qt::Key_1: key = TableKey::Digit1; break;
    case Qt::Key_2: key = TableKey::Digit2; break;
    case Qt::Key_3: key = TableKey::Digit3; break;
    case Qt::Key_4: key = TableKey::Digit4; break;
    case Qt::Key_5: key = TableKey::Digit5; break;
    default: break;
  }
  int shift = 0;
  if (e->modifiers() & Qt::ShiftModifier) shift |= kShift;
  if (e->modifiers() & Qt::ControlModifier) shift |= kCtrl;
  if (key == TableKey::None || !TableKeyDown(g_, input_, geometry_, key, shift)) {
    QWidget::keyPressEvent(e);
    return;
  }
  // The status box follows the walk of the arrows.
  if (const TableRegion* r = hot::IsBet(input_.HoverId) ? geometry_.Find(input_.HoverId) : nullptr) {
    const TableRect& rect = r->rects.back();
    pointer_ = QPointF(rect.x + rect.w / 2, rect.y + rect.h / 2);
  }
  Redraw();
  if (afterInput) afterInput(ClickEffect::None);
}
