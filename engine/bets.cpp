#include "engine/bets.h"

#include <cctype>

namespace {

constexpr std::array<std::string_view, kBets + 1> kBetNames = {
    "",
    "Lay 4",
    "Lay 5",
    "Lay 6",
    "Lay 8",
    "Lay 9",
    "Lay 10",
    "Don't Come 4",
    "Don't Come 5",
    "Don't Come 6",
    "Don't Come 8",
    "Don't Come 9",
    "Don't Come 10",
    "Don't Come 4 Odds",
    "Don't Come 5 Odds",
    "Don't Come 6 Odds",
    "Don't Come 8 Odds",
    "Don't Come 9 Odds",
    "Don't Come 10 Odds",
    "Come 4",
    "Come 5",
    "Come 6",
    "Come 8",
    "Come 9",
    "Come 10",
    "Come 4 Odds",
    "Come 5 Odds",
    "Come 6 Odds",
    "Come 8 Odds",
    "Come 9 Odds",
    "Come 10 Odds",
    "Place 4",
    "Place 5",
    "Place 6",
    "Place 8",
    "Place 9",
    "Place 10",
    "Buy 4",
    "Buy 5",
    "Buy 6",
    "Buy 8",
    "Buy 9",
    "Buy 10",
    "Pass Line",
    "Pass Line Odds",
    "Come",
    "Don't Pass",
    "Don't Pass Odds",
    "Don't Come",
    "Field",
    "Big 6",
    "Big 8",
    "C and E",
    "Hard 4",
    "Hard 6",
    "Hard 8",
    "Hard 10",
    "Two",
    "Three",
    "Seven",
    "Eleven",
    "Twelve",
    "Craps",
    "Horn",
    "Hop 13",
    "Hop 14",
    "Hop 15",
    "Hop 16",
    "Hop 22",
    "Hop 23",
    "Hop 24",
    "Hop 25",
    "Hop 26",
    "Hop 33",
    "Hop 34",
    "Hop 35",
    "Hop 36",
    "Hop 44",
    "Hop 45",
    "Hop 46",
    "Hop 55",
    "Midway",
    "Over 7",
    "Under 7",
    "Left Field",
    "Center Field",
    "Right Field",
    "World",
    "All Small",
    "All Tall",
    "Make All",
    "4 Rolls No 7",
    "7 Point 7",
    "Point 7",
    "Fire",
    "Hot Roller",
    "Sharp Shooter",
    "Ride The Line",
    "Repeater 2",
    "Repeater 3",
    "Repeater 4",
    "Repeater 5",
    "Repeater 6",
    "Repeater 8",
    "Repeater 9",
    "Repeater 10",
    "Repeater 11",
    "Repeater 12",
};

constexpr std::array<std::string_view, kSeats> kSeatNames = {"", "4L", "3L", "2L", "1L", "1R", "2R", "3R", "4R"};

bool SameIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  return true;
}

}  // namespace

std::string_view BetName(int bet) {
  return bet >= 1 && bet <= kBets ? kBetNames[static_cast<size_t>(bet)] : std::string_view{};
}

BetFamily BetFamilyOf(int bet) {
  using namespace bet;
  if (bet >= Lay4 && bet <= Lay10) return BetFamily::Lay;
  if (bet >= DontCome4 && bet <= DontCome10) return BetFamily::DontComeNumber;
  if (bet >= DontCome4Odds && bet <= DontCome10Odds) return BetFamily::DontComeOdds;
  if (bet >= Come4 && bet <= Come10) return BetFamily::ComeNumber;
  if (bet >= Come4Odds && bet <= Come10Odds) return BetFamily::ComeOdds;
  if (bet >= Place4 && bet <= Place10) return BetFamily::Place;
  if (bet >= Buy4 && bet <= Buy10) return BetFamily::Buy;
  switch (bet) {
    case PassLine:
    case DontPass: return BetFamily::Line;
    case PassLineOdds:
    case DontPassOdds: return BetFamily::LineOdds;
    case Come:
    case DontCome: return BetFamily::ComeBox;
    case Big6:
    case Big8: return BetFamily::MultiRoll;
    case AllSmall:
    case AllTall:
    case MakeAll: return BetFamily::CollectNumbers;
    case FourRollsNo7: return BetFamily::Count;
    case SevenPoint7: return BetFamily::TwoStage;
    case Point7: return BetFamily::OneStage;
    case Fire:
    case HotRoller:
    case SharpShooter:
    case RideTheLine: return BetFamily::Hand;
    default: break;
  }
  if (bet >= Hard4 && bet <= Hard10) return BetFamily::Hardway;
  if (bet >= Repeater2 && bet <= Repeater12) return BetFamily::Repeat;
  if (bet >= Field && bet <= World) return BetFamily::OneRoll;
  return BetFamily::None;
}

int FindBetByName(std::string_view name) {
  while (!name.empty() && name.front() == ' ') name.remove_prefix(1);
  while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
  for (int b = 1; b <= kBets; ++b)
    if (SameIgnoringCase(name, kBetNames[static_cast<size_t>(b)])) return b;
  return 0;
}

std::string_view SeatName(int seat) {
  return seat >= 1 && seat <= 8 ? kSeatNames[static_cast<size_t>(seat)] : std::string_view{};
}
