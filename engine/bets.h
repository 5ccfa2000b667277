#pragma once
// The bet catalogue: 107 bets numbered for all time (game files and script code hold
// these numbers), their names and families, the seat names and the point-row rule.

#include <array>
#include <string_view>

constexpr int kSeats = 9;      // 0 is the house, 1..8 the rail
constexpr int kBets = 107;     // bets 1..107
constexpr int kBetRows = 300;  // rows 200..299 are CheckStacks 0..99
constexpr int kCheckStackRow = 200;
constexpr int kScopeColumns = 45;  // five groups of nine

// Bet numbers used by name in the engine.
namespace bet {
constexpr int Lay4 = 1, Lay10 = 6;
constexpr int DontCome4 = 7, DontCome10 = 12;
constexpr int DontCome4Odds = 13, DontCome10Odds = 18;
constexpr int Come4 = 19, Come10 = 24;
constexpr int Come4Odds = 25, Come10Odds = 30;
constexpr int Place4 = 31, Place10 = 36;
constexpr int Buy4 = 37, Buy10 = 42;
constexpr int PassLine = 43, PassLineOdds = 44, Come = 45, DontPass = 46, DontPassOdds = 47, DontCome = 48, Field = 49,
              Big6 = 50, Big8 = 51, CAndE = 52;
constexpr int Hard4 = 53, Hard6 = 54, Hard8 = 55, Hard10 = 56;
constexpr int Two = 57, Three = 58, Seven = 59, Eleven = 60, Twelve = 61, Craps = 62, Horn = 63;
constexpr int Hop13 = 64, Hop55 = 80;
constexpr int Midway = 81, Over7 = 82, Under7 = 83, LeftField = 84, CenterField = 85, RightField = 86, World = 87,
              AllSmall = 88, AllTall = 89, MakeAll = 90, FourRollsNo7 = 91, SevenPoint7 = 92, Point7 = 93, Fire = 94,
              HotRoller = 95, SharpShooter = 96, RideTheLine = 97;
constexpr int Repeater2 = 98, Repeater12 = 107;
}  // namespace bet

enum class BetFamily {
  None,
  Lay,
  DontComeNumber,
  DontComeOdds,
  ComeNumber,
  ComeOdds,
  Place,
  Buy,
  Line,
  LineOdds,
  ComeBox,
  OneRoll,
  MultiRoll,
  Hardway,
  CollectNumbers,
  Count,
  TwoStage,
  OneStage,
  Hand,
  Repeat
};

// The name as the catalogue has it; "" for a row that is no bet.
std::string_view BetName(int bet);
BetFamily BetFamilyOf(int bet);
// The bet whose name matches, ignoring case and surrounding blanks; 0 when none does.
int FindBetByName(std::string_view name);

// "4L" ... "4R" for seats 1..8; "" otherwise.
std::string_view SeatName(int seat);

// Offset of a point number within a family of six: 0 for 4 ... 5 for 10.
constexpr int PointOffset(int p) { return p - 4 - p / 7; }
// The row of the Place, Buy, Come, Don't Come or Lay bet on point p (and their odds,
// six rows on from Come and Don't Come).
constexpr int PointRow(BetFamily family, int p) {
  switch (family) {
    case BetFamily::Lay: return 1 + PointOffset(p);
    case BetFamily::DontComeNumber: return p + 3 - p / 7;
    case BetFamily::DontComeOdds: return p + 9 - p / 7;
    case BetFamily::ComeNumber: return p + 15 - p / 7;
    case BetFamily::ComeOdds: return p + 21 - p / 7;
    case BetFamily::Place: return p + 27 - p / 7;
    case BetFamily::Buy: return p + 33 - p / 7;
    default: return 0;
  }
}
// The point number of a row in one of the families of six (1..42); 0 otherwise.
constexpr int PointOfRow(int bet) {
  if (bet < 1 || bet > 42) return 0;
  constexpr int kPoints[6] = {4, 5, 6, 8, 9, 10};
  return kPoints[(bet - 1) % 6];
}
