#include "surface/table_geometry.h"

#include <algorithm>
#include <cmath>

#include "engine/bets.h"

namespace {

constexpr int kPoints[6] = {4, 5, 6, 8, 9, 10};

struct Builder {
  TableGeometry g;
  TableRegion& Add(int id, TableRect r, Lettering l, int number = 0, RegionShape shape = RegionShape::Box) {
    TableRegion region;
    region.id = id;
    region.rects.push_back(r);
    region.lettering = l;
    region.number = number;
    region.shape = shape;
    g.regions.push_back(std::move(region));
    return g.regions.back();
  }
};

// A row of boxes of equal width from x0 to x1 with a gap between them.
TableRect Cell(float x0, float x1, float y, float h, int count, int i, float gap = 4) {
  const float w = (x1 - x0 - gap * (count - 1)) / count;
  return {x0 + i * (w + gap), y, w, h};
}

void AddMainLayout(Builder& b) {
  // The six point boxes, each a column of strips around the big number.
  const float x0 = 170, x1 = 930, top = 56;
  const float strip = 25, place = 88;
  for (int i = 0; i < 6; ++i) {
    const int p = kPoints[i];
    const TableRect col = Cell(x0, x1, top, 0, 6, i, 0);
    float y = top;
    auto next = [&](float h) {
      TableRect r{col.x, y, col.w, h};
      y += h;
      return r;
    };
    b.Add(PointRow(BetFamily::Lay, p), next(strip), Lettering::Lay, p);
    b.Add(PointRow(BetFamily::DontComeNumber, p), next(strip), Lettering::DontComeStrip, p);
    b.Add(PointRow(BetFamily::DontComeOdds, p), next(strip), Lettering::DontComeOdds, p);
    b.Add(PointRow(BetFamily::Place, p), next(place), Lettering::PlaceNumber, p);
    b.Add(PointRow(BetFamily::Buy, p), next(strip), Lettering::BuyStrip, p);
    b.Add(PointRow(BetFamily::ComeNumber, p), next(strip), Lettering::ComeStrip, p);
    b.Add(PointRow(BetFamily::ComeOdds, p), next(strip), Lettering::ComeOdds, p);
  }
  b.Add(bet::DontCome, {52, 56, 110, 120}, Lettering::DontComeBar);
  b.Add(bet::Big6, {52, 182, 55, 112}, Lettering::Big, 6);
  b.Add(bet::Big8, {107, 182, 55, 112}, Lettering::Big, 8);
  b.Add(bet::Come, {x0, 300, x1 - x0, 80}, Lettering::ComeBox);
  b.Add(bet::Field, {x0, 386, x1 - x0, 92}, Lettering::Field);
  const int smallFields[3] = {bet::LeftField, bet::CenterField, bet::RightField};
  for (int i = 0; i < 3; ++i) b.Add(smallFields[i], Cell(x0, x1, 484, 36, 3, i), Lettering::SmallField);
  b.Add(bet::DontPass, {x0, 526, x1 - x0, 40}, Lettering::DontPassBar);
  // The odds lie on the bar's end: the region sits over the bar's own.
  b.Add(bet::DontPassOdds, {x1 - 150, 529, 146, 34}, Lettering::DontPassOdds, 0, RegionShape::Rounded);
  TableRegion& pass = b.Add(bet::PassLine, {52, 300, 110, 332}, Lettering::PassLine);
  pass.rects.push_back({52, 572, x1 - 52, 60});
  b.Add(bet::PassLineOdds, {52, 638, x1 - 52, 52}, Lettering::PassLineOdds);
}

void AddCentre(Builder& b) {
  const float x0 = 1001, x1 = 1548;
  b.Add(bet::CAndE, {945, 56, 50, 434}, Lettering::CAndE);
  b.Add(bet::Seven, {x0, 56, x1 - x0, 36}, Lettering::OneRoll, 7);
  const int hard[4] = {bet::Hard6, bet::Hard10, bet::Hard8, bet::Hard4};
  const int hardTotal[4] = {6, 10, 8, 4};
  for (int i = 0; i < 4; ++i)
    b.Add(hard[i], Cell(x0, x1, 96 + (i / 2) * 54, 50, 2, i % 2), Lettering::Hardway, hardTotal[i]);
  const int ones[4] = {bet::Three, bet::Two, bet::Twelve, bet::Eleven};
  const int oneTotal[4] = {3, 2, 12, 11};
  for (int i = 0; i < 4; ++i) b.Add(ones[i], Cell(x0, x1, 204, 58, 4, i), Lettering::OneRoll, oneTotal[i]);
  b.Add(bet::Horn, {x0, 266, x1 - x0, 34}, Lettering::Horn);
  b.Add(bet::World, {x0, 304, x1 - x0, 34}, Lettering::World);
  b.Add(bet::Craps, {x0, 342, x1 - x0, 34}, Lettering::OneRoll, 0);
  // Hops: 17 pairs in three rows of six; the first cell names the block.
  static const int kHops[17] = {13, 14, 15, 16, 22, 23, 24, 25, 26, 33, 34, 35, 36, 44, 45, 46, 55};
  for (int i = 0; i < 17; ++i) {
    const int cell = i + 1;
    b.Add(bet::Hop13 + i, Cell(x0, x1, 380 + (cell / 6) * 37, 34, 6, cell % 6), Lettering::Hop, kHops[i]);
  }
  const float c0 = 945, c1 = 1548;
  const int row1[3] = {bet::Under7, bet::Midway, bet::Over7};
  const int row2[3] = {bet::AllSmall, bet::MakeAll, bet::AllTall};
  const int row3[4] = {bet::FourRollsNo7, bet::Point7, bet::SevenPoint7, bet::Fire};
  const int row4[3] = {bet::HotRoller, bet::SharpShooter, bet::RideTheLine};
  for (int i = 0; i < 3; ++i) b.Add(row1[i], Cell(c0, c1, 496, 44, 3, i), Lettering::Proposition);
  for (int i = 0; i < 3; ++i) b.Add(row2[i], Cell(c0, c1, 544, 44, 3, i), Lettering::Proposition);
  for (int i = 0; i < 4; ++i) b.Add(row3[i], Cell(c0, c1, 592, 44, 4, i), Lettering::Proposition);
  for (int i = 0; i < 3; ++i) b.Add(row4[i], Cell(c0, c1, 640, 44, 3, i), Lettering::Proposition);
  static const int kRepeat[10] = {2, 3, 4, 5, 6, 8, 9, 10, 11, 12};
  for (int i = 0; i < 10; ++i)
    b.Add(bet::Repeater2 + i, Cell(c0, c1, 688 + (i / 5) * 34, 31, 5, i % 5), Lettering::Repeater, kRepeat[i]);
}

// A seat's panel on the rail: name and bankroll, the five checks, the four stacks.
void AddSeat(Builder& b, int seat, float x) {
  const float w = 176, top = 768;
  b.Add(seat * hot::kSeatBase, {x, top, w, 156}, Lettering::Seat, seat, RegionShape::Rounded);
  const float d = 30, step = 33;
  const float cx0 = x + (w - 4 * step - d) / 2;
  for (int k = 1; k <= 5; ++k)
    b.Add(seat * hot::kSeatBase + k, {cx0 + (k - 1) * step, top + 50, d, d}, Lettering::Check, k, RegionShape::Ellipse);
  const float sw = 38, sstep = 41, sx0 = x + (w - 3 * sstep - sw) / 2;
  for (int k = 0; k < 4; ++k)
    b.Add(seat * hot::kSeatBase + 7 + k, {sx0 + k * sstep, top + 86, sw, 40}, Lettering::Shortcut, k + 1,
          RegionShape::Rounded);
}

TableGeometry Build() {
  Builder b;
  TableGeometry& g = b.g;
  g.felt = {40, 46, 1520, 714};
  g.railTop = {0, 0, 1600, 46};
  g.railBottom = {0, 760, 1600, 170};
  g.dice = {600, 694, 200, 60};
  AddMainLayout(b);
  AddCentre(b);
  for (int s = 1; s <= 4; ++s) AddSeat(b, s, 20 + (s - 1) * 180);
  for (int s = 5; s <= 8; ++s) AddSeat(b, s, 864 + (s - 5) * 180);
  b.Add(hot::kStickman, {740, 768, 120, 156}, Lettering::Stickman, 0, RegionShape::Rounded);
  b.Add(hot::kRack, {560, 4, 480, 38}, Lettering::Rack, 0, RegionShape::Rounded);
  const int tools[3] = {hot::kBuyTool, hot::kCallOffTool, hot::kCallOnTool};
  for (int i = 0; i < 3; ++i) b.Add(tools[i], {1080.0f + i * 48, 5, 40, 36}, Lettering::Tool, 0, RegionShape::Ellipse);
  b.Add(hot::kDisplayOption, {1500, 7, 56, 32}, Lettering::Option, 0, RegionShape::Rounded);
  return g;
}

}  // namespace

const TableRegion* TableGeometry::Find(int id) const {
  for (const TableRegion& r : regions)
    if (r.id == id) return &r;
  return nullptr;
}

int TableGeometry::RegionAt(float x, float y) const {
  for (auto r = regions.rbegin(); r != regions.rend(); ++r)
    for (const TableRect& rect : r->rects) {
      if (!rect.Contains(x, y)) continue;
      if (r->shape != RegionShape::Ellipse) return r->id;
      const float dx = (x - rect.x - rect.w / 2) / (rect.w / 2), dy = (y - rect.y - rect.h / 2) / (rect.h / 2);
      if (dx * dx + dy * dy < 1) return r->id;
    }
  return 0;
}

const TableGeometry& DefaultTableGeometry() {
  static const TableGeometry geometry = Build();
  return geometry;
}

namespace {

void Centre(const TableRegion& r, float& x, float& y) {
  // The centre of the largest part, so that the L of the Pass Line counts where it is widest.
  const TableRect* best = &r.rects.front();
  for (const TableRect& rect : r.rects)
    if (rect.w * rect.h > best->w * best->h) best = &rect;
  x = best->x + best->w / 2;
  y = best->y + best->h / 2;
}

}  // namespace

int NeighbourBet(const TableGeometry& geometry, int id, int dx, int dy) {
  const TableRegion* from = geometry.Find(id);
  if (from == nullptr || (dx == 0 && dy == 0)) return id;
  float fx, fy;
  Centre(*from, fx, fy);
  int best = id;
  float bestScore = 1e30f;
  for (const TableRegion& r : geometry.regions) {
    if (!hot::IsBet(r.id) || r.id == id) continue;
    float x, y;
    Centre(r, x, y);
    const float along = (x - fx) * dx + (y - fy) * dy;  // distance ahead
    const float across = std::fabs((x - fx) * dy) + std::fabs((y - fy) * dx);
    if (along <= 1) continue;
    // Straight ahead wins over nearer ones off to the side.
    const float score = along + 3 * across;
    if (score < bestScore) {
      bestScore = score;
      best = r.id;
    }
  }
  return best;
}

void TurnArrow(int rotation, int& dx, int& dy) {
  rotation = ((rotation % 360) + 360) % 360;
  int turns = 0;
  if (rotation > 45 && rotation <= 135) turns = 1;
  else if (rotation > 135 && rotation <= 225) turns = 2;
  else if (rotation > 225 && rotation <= 315) turns = 3;
  for (int i = 0; i < turns; ++i) {
    // A quarter turn: left becomes up, up becomes right.
    const int x = dx;
    dx = -dy;
    dy = x;
  }
}

CheckPlacement PlacementFromClick(const TableRegion& region, int seat, float x, float y, bool snap) {
  const TableRect r = region.Stacks();
  CheckPlacement p;
  if (snap || r.w <= 0 || r.h <= 0) return p;  // 0 means the seat's own slot
  float fx = (x - r.x) / r.w, fy = (y - r.y) / r.h;
  // Each side keeps to its half of the layout.
  if (seat <= 4) fx = std::clamp(fx, 0.05f, 0.45f);
  else fx = std::clamp(fx, 0.55f, 0.95f);
  fy = std::clamp(fy, 0.1f, 0.9f);
  p.a = std::max(1, static_cast<int>(fx * 1000));
  p.b = std::max(1, static_cast<int>(fy * 1000));
  return p;
}

void StackCentre(const TableRegion& region, int seat, int placementA, int placementB, float& x, float& y) {
  const TableRect r = region.Stacks();
  if (placementA > 0 && placementB > 0) {
    x = r.x + r.w * placementA / 1000.0f;
    y = r.y + r.h * placementB / 1000.0f;
    return;
  }
  // The seat's own slot: four across each half, in rail order.
  const int slot = seat - 1;
  x = r.x + r.w * (slot + 0.5f) / 8.0f;
  y = r.y + r.h * 0.5f;
}
