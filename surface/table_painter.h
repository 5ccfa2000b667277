#pragma once
// The table picture and its hidden id map, both painted from one TableGeometry. The
// picture is vector drawing scaled to the widget, so it is sharp at any size.

#include <QImage>
#include <QPointF>
#include <QSize>
#include <QTransform>

#include "engine/game_state.h"
#include "surface/table_geometry.h"

class QPainter;

// What the picture shows beside the stores of the game: the surface's own state.
struct TableView {
  int hoverId = 0;         // the region under the pointer (after any fall-back)
  int selectedPlayer = 0;  // seat 0..8
  int selectedCheck = 1;   // 1..5 a check, 7..10 a stack, 990..992 a tool
  int rackRotation = 0;
  bool betsAsNumbers = false;  // amounts as figures instead of stacks of checks
  bool statusBox = true;       // the box that tells the hovered bet
  QPointF pointer{-1, -1};     // in table units; negative when off the table
  int diceShake = 0;           // a rolling animation's frame, 0 when still
};

// Table units to widget pixels: the whole table, centred, aspect kept.
QTransform TableTransform(const TableGeometry& geometry, QSize widget);

void PaintTable(QPainter& p, const TableGeometry& geometry, const Game& g, const TableView& view);
// The id map: each region in the solid colour of its id, white elsewhere, no smoothing.
QImage PaintHotspots(const TableGeometry& geometry, QSize widget);
// The id at a pixel of the map: white (no region) reads as 0.
int HotspotAt(const QImage& map, int x, int y);

// The checks of an amount from the largest denomination down: count per index 1..5.
std::array<int64_t, 6> CheckCounts(const RuleSet& rules, Money amount);
