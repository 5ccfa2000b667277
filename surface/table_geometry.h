#pragma once
// Where everything stands on the table, in table units: the region of every bet, seat,
// check, tool and the rack. Plain data: the picture and the hot-spot id map are both
// drawn from it, so what a player sees and what a click hits can never disagree.

#include <string_view>
#include <vector>

// Hot-spot ids beside the bets 1..107 and the rail positions seat × 1000 (+ part).
namespace hot {
constexpr int kShortcutFirst = 201, kShortcutLast = 204;
constexpr int kBuyTool = 990, kCallOffTool = 991, kCallOnTool = 992;
constexpr int kDisplayOption = 995, kDragHandle = 996, kStickman = 998, kRack = 999;
constexpr int kSeatBase = 1000;
constexpr int SeatOf(int id) { return id >= kSeatBase ? id / kSeatBase : 0; }
constexpr int PartOf(int id) { return id >= kSeatBase ? id % kSeatBase : 0; }
constexpr bool IsBet(int id) { return id >= 1 && id <= 107; }
}  // namespace hot

struct TableRect {
  float x = 0, y = 0, w = 0, h = 0;
  float Right() const { return x + w; }
  float Bottom() const { return y + h; }
  bool Contains(float px, float py) const { return px >= x && px < x + w && py >= y && py < y + h; }
};

enum class RegionShape { Box, Rounded, Ellipse };

// How the picture letters a region; the painter reads it, the id map ignores it.
enum class Lettering {
  None,
  Lay,            // the Lay strip over a point box
  DontComeStrip,  // Don't Come moved to its number
  DontComeOdds,
  PlaceNumber,  // the big number of the place box
  BuyStrip,
  ComeStrip,  // Come moved to its number
  ComeOdds,
  ComeBox,
  DontComeBar,
  DontPassBar,
  DontPassOdds,
  PassLine,
  PassLineOdds,
  Field,
  SmallField,  // Left, Center and Right Field
  Big,
  Hardway,
  OneRoll,  // Two, Three, Seven, Eleven, Twelve, Craps: dice and payoff
  Horn,
  World,
  CAndE,
  Hop,
  Proposition,  // the other bets of the catalogue: name and payoff
  Repeater,
  Seat,
  Check,
  Shortcut,
  Tool,
  Rack,
  Stickman,
  Option,
};

struct TableRegion {
  int id = 0;
  std::vector<TableRect> rects;  // the region is their union
  RegionShape shape = RegionShape::Box;
  Lettering lettering = Lettering::None;
  int number = 0;  // the point, total, hop dice (e.g. 25), check index or stack
  // Where the checks of this bet stand: the part of the region kept for stacks.
  TableRect Stacks() const { return rects.empty() ? TableRect{} : rects.back(); }
};

struct TableGeometry {
  float width = 1600, height = 930;
  TableRect felt;                    // the green cloth
  TableRect railTop, railBottom;     // where the rack and the seats stand
  TableRect dice;                    // the dice, beside the stickman
  std::vector<TableRegion> regions;  // drawn in this order: a later region covers an earlier one

  const TableRegion* Find(int id) const;
  // The id of the region at a point of the table, 0 for none (white space).
  int RegionAt(float x, float y) const;
};

// The one layout of the table.
const TableGeometry& DefaultTableGeometry();

// The bet next to `id` in a direction (dx, dy each -1, 0 or 1): the nearest region whose
// centre lies that way, preferring ones straight ahead; `id` itself when none.
int NeighbourBet(const TableGeometry& geometry, int id, int dx, int dy);
// The arrow keys turn with the table: `rotation` in degrees.
void TurnArrow(int rotation, int& dx, int& dy);

// The placement of checks by a click: where in the region, kept to the seat's half
// (seats 1..4 the left, 5..8 the right), in thousandths of the region's width and height.
struct CheckPlacement {
  int a = 0, b = 0;
};
CheckPlacement PlacementFromClick(const TableRegion& region, int seat, float x, float y, bool snap);
// The centre of the stack of a seat's checks on a region, from its placement values.
void StackCentre(const TableRegion& region, int seat, int placementA, int placementB, float& x, float& y);
