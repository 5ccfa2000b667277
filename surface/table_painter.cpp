#include "surface/table_painter.h"

#include <QFont>
#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <algorithm>
#include <cmath>

#include "surface/captions.h"

namespace {

const QColor kLine(244, 240, 222);  // the cream of the lettering and lines
const QColor kFeltLight(18, 120, 66), kFeltDark(6, 72, 38);
const QColor kRed(206, 34, 34);
const QColor kGold(238, 196, 72);

QRectF R(const TableRect& r) { return QRectF(r.x, r.y, r.w, r.h); }
QString Q(const std::string& s) { return QString::fromStdString(s); }
QString Q(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<int>(s.size())); }

QFont Font(float size, bool bold = true, bool serif = false) {
  QFont f(serif ? "DejaVu Serif" : "DejaVu Sans");
  f.setPixelSize(1);  // the painter scales; the size is set in table units below
  f.setPointSizeF(size);
  f.setBold(bold);
  // Letters are drawn as outlines at the painter's scale, never as a scaled bitmap.
  f.setHintingPreference(QFont::PreferNoHinting);
  f.setStyleStrategy(QFont::PreferOutline);
  return f;
}

// Text fitted into a rectangle: the size shrinks until the widest line fits.
void FitText(QPainter& p, const QRectF& r, const QString& text, float size, bool bold = true, bool serif = false,
             int flags = Qt::AlignCenter, const QColor& colour = kLine) {
  QFont f = Font(size, bold, serif);
  for (int i = 0; i < 12; ++i) {
    QFontMetricsF m(f);
    const QRectF need = m.boundingRect(QRectF(0, 0, 10000, 10000), flags & ~Qt::AlignCenter, text);
    if (need.width() <= r.width() - 2 && need.height() <= r.height()) break;
    f.setPointSizeF(f.pointSizeF() * 0.9);
  }
  p.setFont(f);
  p.setPen(colour);
  p.drawText(r, flags, text);
}

QString Upper(std::string_view s) { return Q(s).toUpper(); }

std::string Payoff(const Game& g, const PayoffRow& row) {
  if (row.PayoffPay.raw < 0) return "";
  if (row.PayoffToFor.raw != 0)
    return Caption(g.LanguageId, "tblPayTo", {MoneyText(row.PayoffPay), MoneyText(row.PayoffFor)});
  return Caption(g.LanguageId, "tblPayFor", {MoneyText(row.PayoffPay + row.PayoffFor), MoneyText(row.PayoffFor)});
}

// ---- Dice.

void PaintDie(QPainter& p, const QRectF& r, int face, bool casino) {
  const float d = r.width();
  QLinearGradient grad(r.topLeft(), r.bottomRight());
  if (casino) {
    grad.setColorAt(0, QColor(235, 60, 60));
    grad.setColorAt(1, QColor(150, 10, 16));
  } else {
    grad.setColorAt(0, QColor(255, 255, 255));
    grad.setColorAt(1, QColor(210, 210, 205));
  }
  p.setPen(QPen(casino ? QColor(90, 0, 0) : QColor(60, 60, 60), d * 0.03));
  p.setBrush(grad);
  p.drawRoundedRect(r, d * 0.18, d * 0.18);
  if (face < 1 || face > 6) {
    FitText(p, r, QString::number(face), d * 0.5, true, false, Qt::AlignCenter, casino ? Qt::white : Qt::black);
    return;
  }
  static const int kPips[7][6][2] = {{},
                                     {{1, 1}},
                                     {{0, 0}, {2, 2}},
                                     {{0, 0}, {1, 1}, {2, 2}},
                                     {{0, 0}, {2, 0}, {0, 2}, {2, 2}},
                                     {{0, 0}, {2, 0}, {1, 1}, {0, 2}, {2, 2}},
                                     {{0, 0}, {2, 0}, {0, 1}, {2, 1}, {0, 2}, {2, 2}}};
  p.setPen(Qt::NoPen);
  p.setBrush(casino ? QColor(250, 250, 250) : QColor(20, 20, 20));
  const float pip = d * 0.17;
  for (int i = 0; i < face; ++i) {
    const float cx = r.x() + d * (0.24 + 0.26 * kPips[face][i][0]);
    const float cy = r.y() + d * (0.24 + 0.26 * kPips[face][i][1]);
    p.drawEllipse(QPointF(cx, cy), pip / 2, pip / 2);
  }
}

void PaintDicePair(QPainter& p, const QRectF& area, int a, int b) {
  const float d = std::min(area.height(), area.width() / 2.3f);
  const float gap = d * 0.2f;
  const float x0 = area.center().x() - d - gap / 2;
  PaintDie(p, QRectF(x0, area.center().y() - d / 2, d, d), a, false);
  PaintDie(p, QRectF(x0 + d + gap, area.center().y() - d / 2, d, d), b, false);
}

// ---- Checks.

QColor CheckColour(int index) {
  switch (index) {
    case 1: return QColor(240, 240, 236);
    case 2: return QColor(196, 30, 36);
    case 3: return QColor(30, 130, 60);
    case 4: return QColor(28, 28, 30);
    default: return QColor(112, 40, 150);
  }
}

// A check seen from above, with its edge spots and the denomination.
void PaintCheckTop(QPainter& p, const QPointF& c, float radius, int index, const QString& label) {
  const QColor base = CheckColour(index);
  const QColor spot = index == 1 ? QColor(40, 90, 200) : QColor(245, 245, 240);
  p.setPen(QPen(QColor(0, 0, 0, 140), radius * 0.06));
  p.setBrush(base);
  p.drawEllipse(c, radius, radius);
  p.setPen(Qt::NoPen);
  p.setBrush(spot);
  for (int k = 0; k < 6; ++k) {
    const double a = k * M_PI / 3;
    QPointF at(c.x() + std::cos(a) * radius * 0.82, c.y() + std::sin(a) * radius * 0.82);
    p.save();
    p.translate(at);
    p.rotate(a * 180 / M_PI);
    p.drawRect(QRectF(-radius * 0.12, -radius * 0.2, radius * 0.24, radius * 0.4));
    p.restore();
  }
  p.setPen(QPen(spot, radius * 0.06));
  p.setBrush(Qt::NoBrush);
  p.drawEllipse(c, radius * 0.62, radius * 0.62);
  if (!label.isEmpty())
    FitText(p, QRectF(c.x() - radius * 0.55, c.y() - radius * 0.4, radius * 1.1, radius * 0.8), label, radius * 0.7,
            true, false, Qt::AlignCenter, index == 1 ? QColor(20, 20, 20) : QColor(250, 250, 250));
}

// One check of a stack seen from the side: an ellipse with a rim.
void PaintCheckSide(QPainter& p, const QPointF& c, float radius, int index) {
  const QColor base = CheckColour(index);
  const float h = radius * 0.38f, t = radius * 0.2f;
  p.setPen(QPen(QColor(0, 0, 0, 150), radius * 0.05));
  p.setBrush(base.darker(130));
  p.drawRoundedRect(QRectF(c.x() - radius, c.y() - h / 2, 2 * radius, h / 2 + t), radius * 0.3, radius * 0.15);
  p.setBrush(base);
  p.drawEllipse(QPointF(c.x(), c.y() - h / 2 + 0.0), radius, h / 2);
  p.setPen(QPen(index == 1 ? QColor(40, 90, 200) : QColor(245, 245, 240), radius * 0.08));
  for (int k = -1; k <= 1; ++k) {
    const float x = c.x() + k * radius * 0.6f;
    p.drawLine(QPointF(x, c.y() + t * 0.1), QPointF(x, c.y() + t * 0.6));
  }
}

QString AmountLabel(Money m) { return Q(DollarText(m)); }

// A stack of checks for an amount, its base at `c`, with its amount beside it when
// there is room.
void PaintStack(QPainter& p, const Game& g, const QPointF& c, float radius, Money amount, bool asNumber,
                float roomForLabel, bool calledOff) {
  if (asNumber) {
    const QString text = AmountLabel(amount);
    QFont f = Font(radius * 1.15f);
    QFontMetricsF m(f);
    const QRectF box(c.x() - m.horizontalAdvance(text) / 2 - 3, c.y() - radius, m.horizontalAdvance(text) + 6,
                     radius * 1.7f);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 250, 225));
    p.drawRoundedRect(box, 3, 3);
    FitText(p, box, text, radius * 1.15f, true, false, Qt::AlignCenter, calledOff ? QColor(150, 0, 0) : Qt::black);
    return;
  }
  const auto counts = CheckCounts(g.Rules, amount);
  std::vector<int> chips;
  for (int d = 5; d >= 1; --d)
    for (int64_t n = 0; n < counts[d] && chips.size() < 10; ++n) chips.push_back(d);
  if (chips.empty()) chips.push_back(1);  // less than the smallest check still shows
  const float step = radius * 0.26f;
  float y = c.y();
  for (int d : chips) {
    PaintCheckSide(p, QPointF(c.x(), y), radius, d);
    y -= step;
  }
  if (calledOff) {
    // The "OFF" button on top of a bet called off.
    p.setPen(QPen(Qt::black, radius * 0.05));
    p.setBrush(Qt::black);
    const QRectF b(c.x() - radius * 0.7, y - radius * 0.55, radius * 1.4, radius * 0.7);
    p.drawEllipse(b);
    FitText(p, b, Q(Caption(g.LanguageId, "tblOff")), radius * 0.5f, true, false, Qt::AlignCenter, Qt::white);
  }
  {
    // The amount beside the stack, on a dark tab that keeps it readable over the lettering.
    const QString text = AmountLabel(amount);
    QFont f = Font(std::clamp(radius * 0.95f, 11.0f, 14.0f));
    QFontMetricsF m(f);
    const float w = std::min<float>(m.horizontalAdvance(text) + 6, std::max(roomForLabel - radius * 1.1f, 24.0f));
    const QRectF box(c.x() + radius * 1.05f, c.y() - m.height() * 0.8, w, m.height() * 1.05);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 0, 150));
    p.drawRoundedRect(box, 3, 3);
    FitText(p, box, text, f.pointSizeF(), true, false, Qt::AlignCenter, QColor(255, 250, 225));
  }
}

// ---- The layout's lettering.

void PaintRegionOutline(QPainter& p, const TableRegion& r, const QColor& fill) {
  p.setPen(QPen(kLine, 2));
  p.setBrush(fill);
  if (r.rects.size() > 1) {
    // One outline around the union, as the L of the Pass Line.
    QPainterPath all;
    for (const TableRect& rect : r.rects) {
      QPainterPath part;
      part.addRect(R(rect));
      all = all.united(part);
    }
    p.drawPath(all.simplified());
    return;
  }
  for (const TableRect& rect : r.rects) {
    switch (r.shape) {
      case RegionShape::Ellipse: p.drawEllipse(R(rect)); break;
      case RegionShape::Rounded: p.drawRoundedRect(R(rect), 8, 8); break;
      default: p.drawRect(R(rect)); break;
    }
  }
}

QString PointWord(int language, int p) {
  // Five, six and nine are spelled out on a layout; the others stand as figures.
  switch (p) {
    case 5: return Q(Caption(language, "tblFive"));
    case 6: return Q(Caption(language, "tblSix"));
    case 9: return Q(Caption(language, "tblNine"));
    default: return QString::number(p);
  }
}

void PaintFieldLettering(QPainter& p, const Game& g, const QRectF& r) {
  FitText(p, QRectF(r.x(), r.y() + 2, r.width(), r.height() * 0.42), Q(Caption(g.LanguageId, "tblField")), 30);
  // The totals the Field pays on, with their payoffs as the rules set them.
  static const int kPairTotal[22] = {0, 2, 3, 4, 4, 5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 10, 10, 11, 12};
  std::vector<int> totals;
  std::array<const PayoffRow*, 13> best{};
  for (int i = 1; i <= 21; ++i) {
    const PayoffRow& row = g.Rules.FieldPayoff[i];
    if (row.PayoffPay.raw <= 0) continue;
    const int t = kPairTotal[i];
    if (best[t] == nullptr || row.PayoffPay.ToDouble() / std::max(row.PayoffFor.ToDouble(), 1e-9) >
                                  best[t]->PayoffPay.ToDouble() / std::max(best[t]->PayoffFor.ToDouble(), 1e-9))
      best[t] = &row;
  }
  for (int t = 2; t <= 12; ++t)
    if (best[t]) totals.push_back(t);
  if (totals.empty()) return;
  const float w = r.width() / totals.size();
  for (size_t i = 0; i < totals.size(); ++i) {
    const int t = totals[i];
    const QRectF cell(r.x() + i * w, r.y() + r.height() * 0.42, w, r.height() * 0.56);
    const PayoffRow& row = *best[t];
    const bool even = row.PayoffPay == row.PayoffFor;
    if (!even) {
      p.setPen(QPen(kLine, 2));
      p.setBrush(Qt::NoBrush);
      const float d = std::min(cell.height() * 0.62, cell.width() * 0.8);
      p.drawEllipse(QPointF(cell.center().x(), cell.y() + d / 2 + 1), d / 2, d / 2);
      FitText(p, QRectF(cell.x(), cell.y() + 1, cell.width(), d), QString::number(t), d * 0.5f, true, true);
      FitText(p, QRectF(cell.x(), cell.y() + d + 1, cell.width(), cell.height() - d - 1), Q(Payoff(g, row)), 11);
    } else {
      FitText(p, QRectF(cell.x(), cell.y(), cell.width(), cell.height() * 0.7), QString::number(t), 22, true, true,
              Qt::AlignCenter, kGold);
    }
  }
}

void PaintLettering(QPainter& p, const Game& g, const TableRegion& r) {
  const int lang = g.LanguageId;
  const QRectF box = R(r.rects.front());
  const QString name = Upper(BetName(r.id));
  auto pay = [&] { return Q(Payoff(g, g.Rules.BetPayoff[r.id])); };
  switch (r.lettering) {
    case Lettering::Lay: FitText(p, box, Q(Caption(lang, "tblLay")), 12); break;
    case Lettering::DontComeStrip: FitText(p, box, Q(Caption(lang, "tblDontCome")), 11, false); break;
    case Lettering::DontComeOdds:
    case Lettering::ComeOdds: FitText(p, box, Q(Caption(lang, "tblOdds")), 11, false); break;
    case Lettering::BuyStrip: FitText(p, box, Q(Caption(lang, "tblBuy")), 12); break;
    case Lettering::ComeStrip: FitText(p, box, Q(Caption(lang, "tblCome")), 11, false); break;
    case Lettering::PlaceNumber: {
      const bool word = r.number == 5 || r.number == 6 || r.number == 9;
      FitText(p, box.adjusted(4, 6, -4, -6), PointWord(lang, r.number), word ? 30 : 52, true, true, Qt::AlignCenter,
              r.number == 6 || r.number == 8 ? QColor(250, 236, 200) : kLine);
      break;
    }
    case Lettering::ComeBox: FitText(p, box, Q(Caption(lang, "tblCome")), 50, true, true, Qt::AlignCenter, kRed); break;
    case Lettering::DontComeBar: {
      FitText(p, QRectF(box.x() + 4, box.y() + 4, box.width() - 8, box.height() * 0.4),
              Q(Caption(lang, "tblDontComeBar")).replace(' ', '\n'), 14, true, false,
              Qt::AlignCenter | Qt::TextWordWrap);
      const int die = g.Rules.BarNumber == 2 ? 1 : 6;
      PaintDicePair(p, QRectF(box.x() + 4, box.y() + box.height() * 0.48, 62, box.height() * 0.24), die, die);
      break;
    }
    case Lettering::DontPassBar: {
      const QRectF text(box.x() + 8, box.y(), box.width() - 170, box.height());
      FitText(p, text, Q(Caption(lang, "tblDontPassBar")), 22, true, false, Qt::AlignVCenter | Qt::AlignLeft);
      QFontMetricsF m(p.font());
      const float tx = text.x() + m.horizontalAdvance(Q(Caption(lang, "tblDontPassBar"))) + 14;
      const int die = g.Rules.BarNumber == 2 ? 1 : 6;
      PaintDicePair(p, QRectF(tx, box.y() + 6, 64, box.height() - 12), die, die);
      break;
    }
    case Lettering::DontPassOdds: FitText(p, box, Q(Caption(lang, "tblLayOdds")), 13); break;
    case Lettering::PassLine: {
      FitText(p, R(r.rects.back()), Q(Caption(lang, "tblPassLine")), 34, true, true);
      p.save();
      const QRectF side = R(r.rects.front());
      p.translate(side.center());
      p.rotate(-90);
      FitText(p, QRectF(-side.height() / 2, -side.width() / 2, side.height(), side.width()),
              Q(Caption(lang, "tblPassLine")), 30, true, true);
      p.restore();
      break;
    }
    case Lettering::PassLineOdds: FitText(p, box, Q(Caption(lang, "tblPassLineOdds")), 18, false); break;
    case Lettering::Field: PaintFieldLettering(p, g, box); break;
    case Lettering::SmallField: FitText(p, box, name + "  " + pay(), 13); break;
    case Lettering::Big: {
      FitText(p, QRectF(box.x(), box.y() + 6, box.width(), box.height() * 0.3), Q(Caption(lang, "tblBig")), 13);
      FitText(p, QRectF(box.x(), box.y() + box.height() * 0.32, box.width(), box.height() * 0.64),
              QString::number(r.number), 46, true, true, Qt::AlignCenter, kRed);
      break;
    }
    case Lettering::Hardway: {
      const QRectF dice(box.x() + 6, box.y() + 6, box.height() * 2.1, box.height() - 12);
      PaintDicePair(p, dice, r.number / 2, r.number / 2);
      FitText(p, QRectF(dice.right() + 6, box.y(), box.right() - dice.right() - 10, box.height()), name + "\n" + pay(),
              14);
      break;
    }
    case Lettering::OneRoll: {
      if (r.number == 2 || r.number == 3 || r.number == 11 || r.number == 12) {
        const int a = r.number == 2 ? 1 : r.number == 3 ? 1 : r.number == 11 ? 5 : 6;
        PaintDicePair(p, QRectF(box.x() + 4, box.y() + 4, box.width() - 8, box.height() * 0.5), a, r.number - a);
        FitText(p, QRectF(box.x(), box.y() + box.height() * 0.55, box.width(), box.height() * 0.42), pay(), 13);
      } else {
        const QString word = r.number == 7 ? Q(Caption(lang, "tblSeven")) : Q(Caption(lang, "tblAnyCraps"));
        FitText(p, box, word + "   " + pay(), 17, true, false, Qt::AlignCenter,
                r.number == 7 ? QColor(255, 214, 214) : kLine);
      }
      break;
    }
    case Lettering::Horn: FitText(p, box, Q(Caption(lang, "tblHorn")) + "   2 · 3 · 11 · 12", 16); break;
    case Lettering::World: FitText(p, box, Q(Caption(lang, "tblWorld")) + "   2 · 3 · 7 · 11 · 12", 16); break;
    case Lettering::CAndE: {
      const float d = box.width() - 10;
      p.setBrush(Qt::NoBrush);
      int k = 0;
      for (float y = box.y() + 6; y + d <= box.bottom() - 4; y += d + 6, ++k) {
        const QRectF c(box.x() + 5, y, d, d);
        p.setPen(QPen(kLine, 2));
        p.setBrush(k % 2 ? QColor(196, 30, 36, 120) : QColor(255, 255, 255, 30));
        p.drawEllipse(c);
        FitText(p, c, k % 2 ? "E" : "C", d * 0.6f, true, true);
      }
      break;
    }
    case Lettering::Hop: {
      const int a = r.number / 10, b = r.number % 10;
      PaintDicePair(p, box.adjusted(6, 4, -6, -4), a, b);
      break;
    }
    case Lettering::Proposition: {
      const QString payoff = pay();
      FitText(p, box.adjusted(4, 2, -4, -2), payoff.isEmpty() ? name : name + "\n" + payoff, 14);
      break;
    }
    case Lettering::Repeater: FitText(p, box.adjusted(3, 1, -3, -1), name, 12); break;
    default: break;
  }
}

// The first cell of the hops holds their name; each hop tells its payoff in the status box.
void PaintHopTitle(QPainter& p, const Game& g, const TableGeometry& geo) {
  const TableRegion* first = geo.Find(bet::Hop13);
  const TableRegion* second = geo.Find(bet::Hop13 + 1);
  if (!first || !second) return;
  const TableRect a = first->rects.front(), b = second->rects.front();
  const QRectF cell(a.x - (b.x - a.x), a.y, a.w, a.h);
  FitText(p, cell.adjusted(2, 1, -2, -1), Q(Caption(g.LanguageId, "tblHop")), 16);
}

QColor RegionFill(const TableRegion& r) {
  switch (r.lettering) {
    case Lettering::PlaceNumber: return QColor(0, 0, 0, 0);
    case Lettering::DontComeBar:
    case Lettering::DontPassBar: return QColor(0, 0, 0, 40);
    case Lettering::DontPassOdds: return QColor(255, 255, 255, 28);
    case Lettering::OneRoll: return r.number == 7 ? QColor(150, 20, 20, 120) : QColor(0, 0, 0, 0);
    case Lettering::Hop:
    case Lettering::Repeater:
    case Lettering::Proposition: return QColor(0, 0, 0, 30);
    default: return QColor(0, 0, 0, 0);
  }
}

// ---- The rail.

void PaintRail(QPainter& p, const TableGeometry& geo) {
  const QRectF all(0, 0, geo.width, geo.height);
  QLinearGradient leather(0, 0, 0, geo.height);
  leather.setColorAt(0, QColor(92, 48, 26));
  leather.setColorAt(0.5, QColor(60, 28, 14));
  leather.setColorAt(1, QColor(40, 18, 8));
  p.setPen(QPen(QColor(20, 8, 2), 3));
  p.setBrush(leather);
  p.drawRoundedRect(all.adjusted(2, 2, -2, -2), 48, 48);
  // The wooden edge of the cloth.
  const QRectF felt = R(geo.felt);
  p.setPen(Qt::NoPen);
  QLinearGradient wood(felt.topLeft(), felt.bottomRight());
  wood.setColorAt(0, QColor(168, 112, 58));
  wood.setColorAt(1, QColor(120, 72, 32));
  p.setBrush(wood);
  p.drawRoundedRect(felt.adjusted(-9, -9, 9, 9), 30, 30);
  QRadialGradient cloth(felt.center(), felt.width() * 0.62);
  cloth.setColorAt(0, kFeltLight);
  cloth.setColorAt(1, kFeltDark);
  p.setBrush(cloth);
  p.drawRoundedRect(felt, 24, 24);
}

void PaintSeat(QPainter& p, const Game& g, const TableGeometry& geo, const TableView& view, int seat) {
  const TableRegion* panel = geo.Find(seat * hot::kSeatBase);
  if (panel == nullptr) return;
  const QRectF box = R(panel->rects.front());
  const bool occupied = SeatOccupied(g, seat);
  const bool selected = view.selectedPlayer == seat && occupied;
  p.setPen(QPen(selected ? kGold : QColor(0, 0, 0, 160), selected ? 3.5 : 1.5));
  p.setBrush(occupied ? QColor(20, 12, 6, 150) : QColor(255, 255, 255, 18));
  p.drawRoundedRect(box, 10, 10);
  const int lang = g.LanguageId;
  const QString code = Q(SeatName(seat));
  if (!occupied) {
    FitText(p, QRectF(box.x(), box.y() + 6, box.width(), 26), code, 16, true, false, Qt::AlignCenter,
            QColor(230, 210, 170));
    FitText(p, box.adjusted(10, 40, -10, -40), Q(LanguageText(lang, 2)), 15, false, false,
            Qt::AlignCenter | Qt::TextWordWrap, QColor(230, 210, 170, 200));
    return;
  }
  const bool shooter = g.Table.Shooter == seat;
  QString title = Q(g.PlayerName[seat]);
  FitText(p, QRectF(box.x() + 8, box.y() + 4, box.width() - 50, 24), title, 16, true, false,
          Qt::AlignLeft | Qt::AlignVCenter, QColor(255, 240, 200));
  FitText(p, QRectF(box.right() - 44, box.y() + 4, 38, 24), code, 12, false, false, Qt::AlignRight | Qt::AlignVCenter,
          QColor(230, 210, 170));
  FitText(p, QRectF(box.x() + 8, box.y() + 26, box.width() - 16, 20),
          Q(MoneyTextGrouped(g.Bankroll[seat])).prepend('$'), 15, true, false, Qt::AlignLeft | Qt::AlignVCenter,
          QColor(160, 230, 160));
  if (shooter) {
    // The shooter's mark: a small pair of dice by the bankroll.
    PaintDicePair(p, QRectF(box.right() - 46, box.y() + 28, 40, 16), g.Table.Die1, g.Table.Die2);
  }
  for (int k = 1; k <= 5; ++k) {
    const TableRegion* check = geo.Find(seat * hot::kSeatBase + k);
    if (!check) continue;
    const QRectF c = R(check->rects.front());
    const bool chosen = selected && view.selectedCheck == k;
    if (chosen) {
      p.setPen(QPen(kGold, 3));
      p.setBrush(Qt::NoBrush);
      p.drawEllipse(c.adjusted(-3, -3, 3, 3));
    }
    PaintCheckTop(p, c.center(), c.width() / 2, k, Q(MoneyText(g.Rules.CheckDenom[k])));
  }
  for (int k = 0; k < 4; ++k) {
    const TableRegion* stack = geo.Find(seat * hot::kSeatBase + 7 + k);
    if (!stack) continue;
    const QRectF c = R(stack->rects.front());
    const bool chosen = selected && view.selectedCheck == 7 + k;
    p.setPen(QPen(chosen ? kGold : QColor(200, 170, 120), chosen ? 3 : 1));
    p.setBrush(QColor(0, 0, 0, 90));
    p.drawRoundedRect(c, 5, 5);
    const int row = g.CheckStackShortcuts[seat][k];
    FitText(p, QRectF(c.x(), c.y() + 1, c.width(), c.height() * 0.45),
            Q(Caption(lang, "tblStack", {std::to_string(k + 1)})), 10, false, false, Qt::AlignCenter,
            QColor(230, 210, 170));
    const Money amount = row >= kCheckStackRow && row < kBetRows ? g.BetAmount[seat][row] : Money{};
    FitText(p, QRectF(c.x() + 1, c.y() + c.height() * 0.45, c.width() - 2, c.height() * 0.5), Q(DollarText(amount)), 11,
            true, false, Qt::AlignCenter, QColor(255, 250, 225));
  }
  FitText(p, QRectF(box.x() + 8, box.bottom() - 26, box.width() - 16, 22),
          Q(Caption(lang, "tblOnTable", {DollarText(g.OnTable[seat])})), 13, false, false, Qt::AlignCenter,
          QColor(230, 210, 170));
}

void PaintRailParts(QPainter& p, const Game& g, const TableGeometry& geo, const TableView& view) {
  const int lang = g.LanguageId;
  if (const TableRegion* rack = geo.Find(hot::kRack)) {
    const QRectF box = R(rack->rects.front());
    p.setPen(QPen(QColor(30, 14, 4), 2));
    p.setBrush(QColor(120, 72, 32));
    p.drawRoundedRect(box, 8, 8);
    const float w = box.width() / 6;
    for (int i = 0; i < 6; ++i) {
      const int d = (i + view.rackRotation) % 5 + 1;
      const QRectF tube(box.x() + i * w + 4, box.y() + 4, w - 8, box.height() - 8);
      p.setPen(Qt::NoPen);
      p.setBrush(QColor(70, 38, 16));
      p.drawRoundedRect(tube, 6, 6);
      // The checks lie on their edges in the tube.
      for (float x = tube.x() + 3; x + 5 <= tube.right() - 3; x += 6) {
        p.setPen(QPen(QColor(0, 0, 0, 120), 0.8));
        p.setBrush(CheckColour(d));
        p.drawRoundedRect(QRectF(x, tube.y() + 2, 5, tube.height() - 4), 2, 2);
      }
    }
  }
  struct ToolLook {
    int id;
    const char* caption;
    QColor fill, ink;
  };
  const ToolLook tools[3] = {{hot::kBuyTool, "tblBuy", QColor(240, 200, 60), Qt::black},
                             {hot::kCallOffTool, "tblOff", QColor(20, 20, 20), Qt::white},
                             {hot::kCallOnTool, "tblOn", QColor(250, 250, 250), Qt::black}};
  for (const ToolLook& t : tools) {
    const TableRegion* r = geo.Find(t.id);
    if (!r) continue;
    const QRectF c = R(r->rects.front());
    const bool chosen = view.selectedPlayer != 0 && view.selectedCheck == t.id;
    p.setPen(QPen(chosen ? kGold : QColor(0, 0, 0), chosen ? 3 : 1.5));
    p.setBrush(t.fill);
    p.drawEllipse(c);
    FitText(p, c.adjusted(3, 3, -3, -3), Q(Caption(lang, t.caption)), 12, true, false, Qt::AlignCenter, t.ink);
  }
  if (const TableRegion* r = geo.Find(hot::kDisplayOption)) {
    const QRectF c = R(r->rects.front());
    p.setPen(QPen(view.betsAsNumbers ? kGold : QColor(0, 0, 0), 1.5));
    p.setBrush(QColor(255, 250, 225));
    p.drawRoundedRect(c, 8, 8);
    FitText(p, c.adjusted(2, 2, -2, -2), view.betsAsNumbers ? "$ 12" : "$", 16, true, false, Qt::AlignCenter,
            Qt::black);
  }
  if (const TableRegion* r = geo.Find(hot::kStickman)) {
    const QRectF box = R(r->rects.front());
    p.setPen(QPen(QColor(0, 0, 0, 160), 1.5));
    p.setBrush(QColor(20, 12, 6, 150));
    p.drawRoundedRect(box, 10, 10);
    FitText(p, QRectF(box.x(), box.y() + 4, box.width(), 22), Q(Caption(lang, "tblStickman")), 13, true, false,
            Qt::AlignCenter, QColor(230, 210, 170));
    // The stick itself, with its hook.
    p.setPen(QPen(QColor(196, 150, 90), 5, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(box.x() + 16, box.bottom() - 12), QPointF(box.right() - 26, box.y() + 40));
    p.drawArc(QRectF(box.right() - 38, box.y() + 28, 24, 24), 0, 180 * 16);
    const int total = g.Table.DiceTotal;
    FitText(p, QRectF(box.x(), box.y() + 56, box.width(), 60), QString::number(total), 44, true, true, Qt::AlignCenter,
            QColor(255, 240, 200));
  }
}

// The puck: ON over the point's box, OFF in the Don't Come bar on the come-out.
void PaintPuck(QPainter& p, const Game& g, const TableGeometry& geo) {
  const int point = g.Table.Point;
  QRectF spot;
  if (point != 0) {
    const TableRegion* r = geo.Find(PointRow(BetFamily::Place, point));
    if (!r) return;
    const QRectF box = R(r->rects.front());
    spot = QRectF(box.right() - 40, box.y() + 4, 36, 36);
  } else {
    const TableRegion* r = geo.Find(bet::DontCome);
    if (!r) return;
    const QRectF box = R(r->rects.front());
    spot = QRectF(box.right() - 40, box.bottom() - 40, 36, 36);
  }
  const bool on = point != 0;
  p.setPen(QPen(Qt::black, 1.5));
  QRadialGradient grad(spot.center() - QPointF(6, 6), spot.width());
  grad.setColorAt(0, on ? QColor(255, 255, 255) : QColor(80, 80, 80));
  grad.setColorAt(1, on ? QColor(200, 200, 200) : QColor(10, 10, 10));
  p.setBrush(grad);
  p.drawEllipse(spot);
  FitText(p, spot.adjusted(4, 4, -4, -4), Q(Caption(g.LanguageId, on ? "tblOn" : "tblOff")), 12, true, false,
          Qt::AlignCenter, on ? Qt::black : Qt::white);
}

// The stacks of every seat on every bet.
void PaintBets(QPainter& p, const Game& g, const TableGeometry& geo, const TableView& view) {
  for (const TableRegion& r : geo.regions) {
    if (!hot::IsBet(r.id)) continue;
    const TableRect stacks = r.Stacks();
    int left = 0, right = 0;
    for (int s = 1; s < kSeats; ++s) {
      if (g.BetAmount[s][r.id].raw <= 0) continue;
      (s <= 4 ? left : right)++;
    }
    if (left + right == 0) continue;
    const float radius = std::clamp(std::min(stacks.h * 0.46f, stacks.w / 7.0f), 7.0f, 17.0f);
    int li = 0, ri = 0;
    for (int s = 1; s < kSeats; ++s) {
      const Money amount = g.BetAmount[s][r.id];
      if (amount.raw <= 0) continue;
      const bool leftSide = s <= 4;
      const int count = leftSide ? left : right, index = leftSide ? li++ : ri++;
      float x, y;
      const float half = stacks.w / 2;
      float room = half / count;
      if (g.PlacementA[s][r.id] > 0) {
        StackCentre(r, s, g.PlacementA[s][r.id], g.PlacementB[s][r.id], x, y);
      } else {
        x = stacks.x + (leftSide ? 0 : half) + room * index + std::min(room / 2, radius * 1.6f);
        y = stacks.y + stacks.h * 0.5f;
      }
      const float base = std::min(y + radius * 0.9f, stacks.y + stacks.h - radius * 0.35f);
      const bool off = g.BetWorking[s][r.id] == -1;  // called off by the player
      PaintStack(p, g, QPointF(x, base), radius, amount, view.betsAsNumbers, room, off);
    }
  }
}

void PaintStatusBox(QPainter& p, const Game& g, const TableGeometry& geo, const TableView& view) {
  if (!view.statusBox || !hot::IsBet(view.hoverId) || view.pointer.x() < 0) return;
  const int bet = view.hoverId, seat = view.selectedPlayer;
  const int lang = g.LanguageId;
  QStringList lines;
  lines << Q(BetName(bet));
  const std::string payoff = Payoff(g, g.Rules.BetPayoff[bet]);
  if (!payoff.empty()) lines << Q(Caption(lang, "stsPays", {payoff}));
  if (seat > 0 && SeatOccupied(g, seat)) {
    const Money amount = g.BetAmount[seat][bet];
    lines << Q(g.PlayerName[seat] + ": " + DollarText(amount));
    if (amount.raw > 0) {
      const int w = g.BetWorking[seat][bet];
      lines << Q(Caption(lang, w == 1 || w == 2 ? "stsWorking" : "stsNotWorking"));
    }
  } else {
    lines << Q(LanguageText(lang, 101));
  }
  QFont f = Font(14, false);
  QFontMetricsF m(f);
  float w = 0;
  for (const QString& l : lines) w = std::max<float>(w, m.horizontalAdvance(l));
  const float h = m.height() * lines.size() + 10;
  w += 16;
  float x = view.pointer.x() + 18, y = view.pointer.y() + 18;
  if (x + w > geo.width - 8) x = view.pointer.x() - w - 12;
  if (y + h > geo.height - 8) y = view.pointer.y() - h - 12;
  const QRectF box(x, y, w, h);
  p.setPen(QPen(kGold, 1.5));
  p.setBrush(QColor(16, 16, 20, 225));
  p.drawRoundedRect(box, 6, 6);
  p.setFont(f);
  p.setPen(QColor(250, 245, 230));
  for (int i = 0; i < lines.size(); ++i) {
    if (i == 0) p.setFont(Font(14, true));
    else p.setFont(f);
    p.drawText(QRectF(x + 8, y + 5 + i * m.height(), w - 16, m.height()), Qt::AlignLeft | Qt::AlignVCenter, lines[i]);
  }
}

}  // namespace

std::array<int64_t, 6> CheckCounts(const RuleSet& rules, Money amount) {
  std::array<int64_t, 6> counts{};
  Money left = amount;
  for (int d = 5; d >= 1; --d) {
    const Money denom = rules.CheckDenom[d];
    if (denom.raw <= 0) continue;
    counts[d] = FloorDiv(left, denom);
    if (counts[d] < 0) counts[d] = 0;
    left -= denom * counts[d];
  }
  return counts;
}

QTransform TableTransform(const TableGeometry& geometry, QSize widget) {
  const double s = std::min(widget.width() / geometry.width, widget.height() / geometry.height);
  const double dx = (widget.width() - geometry.width * s) / 2, dy = (widget.height() - geometry.height * s) / 2;
  QTransform t;
  t.translate(dx, dy);
  t.scale(s, s);
  return t;
}

void PaintTable(QPainter& p, const TableGeometry& geo, const Game& g, const TableView& view) {
  p.setRenderHint(QPainter::Antialiasing, true);
  p.setRenderHint(QPainter::TextAntialiasing, true);
  p.setRenderHint(QPainter::SmoothPixmapTransform, true);
  PaintRail(p, geo);
  for (const TableRegion& r : geo.regions) {
    if (!hot::IsBet(r.id)) continue;
    PaintRegionOutline(p, r, RegionFill(r));
    // Lettering under checks steps back, so that the amounts read first.
    p.setOpacity(AnySeatHolds(g, r.id) ? 0.55 : 1.0);
    PaintLettering(p, g, r);
    p.setOpacity(1.0);
  }
  PaintHopTitle(p, g, geo);
  // The hovered bet lights up.
  if (const TableRegion* r = hot::IsBet(view.hoverId) ? geo.Find(view.hoverId) : nullptr) {
    p.setPen(QPen(kGold, 3));
    p.setBrush(QColor(255, 230, 120, 40));
    for (const TableRect& rect : r->rects) p.drawRect(R(rect));
  }
  PaintDicePair(p, R(geo.dice), g.Table.Die1, g.Table.Die2);
  for (int s = 1; s <= 8; ++s) PaintSeat(p, g, geo, view, s);
  PaintRailParts(p, g, geo, view);
  PaintPuck(p, g, geo);
  PaintBets(p, g, geo, view);
  PaintStatusBox(p, g, geo, view);
}

QImage PaintHotspots(const TableGeometry& geo, QSize widget) {
  QImage map(widget, QImage::Format_RGB32);
  map.fill(Qt::white);
  QPainter p(&map);
  p.setRenderHint(QPainter::Antialiasing, false);
  p.setTransform(TableTransform(geo, widget));
  p.setPen(Qt::NoPen);
  for (const TableRegion& r : geo.regions) {
    p.setBrush(QColor::fromRgb(static_cast<QRgb>(r.id) & 0xFFFFFF));
    for (const TableRect& rect : r.rects) {
      if (r.shape == RegionShape::Ellipse) p.drawEllipse(R(rect));
      else p.drawRect(R(rect));
    }
  }
  return map;
}

int HotspotAt(const QImage& map, int x, int y) {
  if (x < 0 || y < 0 || x >= map.width() || y >= map.height()) return 0;
  const int id = static_cast<int>(map.pixel(x, y) & 0xFFFFFF);
  return id == 0xFFFFFF ? 0 : id;
}
