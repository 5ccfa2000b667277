#pragma once
// picTable: the table picture of the main window, and its hidden id map.

#include <QImage>
#include <QPixmap>
#include <QWidget>
#include <functional>

#include "engine/game_state.h"
#include "surface/hot_spots.h"
#include "surface/table_painter.h"

class PicTable : public QWidget {
  Q_OBJECT
 public:
  PicTable(Game& g, QWidget* parent = nullptr);

  TableInput& Input() { return input_; }
  const TableGeometry& Geometry() const { return geometry_; }
  const QImage& HotspotMap() const { return map_; }
  // Table units to widget pixels and back.
  QTransform Transform() const { return TableTransform(geometry_, size()); }
  // The widget pixel at the centre of a region's largest part.
  QPoint CentreOf(int id) const;
  // Redraws the picture from the stores.
  void Redraw();
  // The dice tumble for a moment before they show the roll.
  void AnimateDice(int milliseconds);
  // Called after every click or key, so that the window refreshes its status.
  std::function<void(ClickEffect)> afterInput;

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void mouseMoveEvent(QMouseEvent*) override;
  void mousePressEvent(QMouseEvent*) override;
  void keyPressEvent(QKeyEvent*) override;
  void leaveEvent(QEvent*) override;

 private:
  TableView View() const;
  Game& g_;
  TableGeometry geometry_;
  TableInput input_;
  QImage map_;
  QPixmap picture_;
  bool stale_ = true;
  QPointF pointer_{-1, -1};
  int shake_ = 0;
  int shakeDie1_ = 1, shakeDie2_ = 1;
};
