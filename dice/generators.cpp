#include "dice/generators.h"

#include <cmath>

namespace {

// #1 and #2 scale their double w / 2^32 by 6 and take the floor. The double holds w / 2^32
// and its product by 6 exactly, so the floor is the integer quotient 6w / 2^32.
inline int DieOfWord(uint32_t w) { return static_cast<int>((uint64_t{w} * 6) >> 32) + 1; }
// #4 and #5 scale their float result by a float 6.
inline int Die(float u) { return static_cast<int>(std::floor(u * 6.0f)) + 1; }

inline int32_t Cell(double u) { return static_cast<int32_t>(std::floor(u * 100000.0)) + 1; }
// The rounding form: half to even and no Int, so u = 1.0 (or just below) gives 100001.
inline int32_t Cell(float u) { return static_cast<int32_t>(std::nearbyint(u * 100000.0)) + 1; }

// #6 and #7 take Ran1 / Ran2 on an even roll count, the twisters on an odd one.
inline bool EvenRoll(int32_t sessionRolls) { return (sessionRolls & 1) == 0; }

}  // namespace

void GeneratorDice(DiceSources& d, int32_t sessionRolls, int& die1, int& die2) {
  switch (d.rngNumber) {
    case 1:
      die1 = DieOfWord(GenrandInt32(d.mt));
      die2 = DieOfWord(GenrandInt32(d.mt));
      return;
    case 2:
      die1 = DieOfWord(RandomMTInt32(d.cokus));
      die2 = DieOfWord(RandomMTInt32(d.cokus));
      return;
    case 3:
      die1 = RanLcg(d.lcgState, 6);
      die2 = RanLcg(d.lcgState, 6);
      return;
    case 4:
      die1 = Die(DrawRan2(d));
      die2 = Die(DrawRan2(d));
      return;
    case 5:
      die1 = Die(DrawRan1(d));
      die2 = Die(DrawRan1(d));
      return;
    case 6:
      if (EvenRoll(sessionRolls)) {
        die1 = Die(DrawRan1(d));
        die2 = Die(DrawRan1(d));
      } else {
        die1 = DieOfWord(GenrandInt32(d.mt));
        die2 = DieOfWord(GenrandInt32(d.mt));
      }
      return;
    case 7:
      if (EvenRoll(sessionRolls)) {
        die1 = Die(DrawRan2(d));
        die2 = Die(DrawRan2(d));
      } else {
        die1 = DieOfWord(RandomMTInt32(d.cokus));
        die2 = DieOfWord(RandomMTInt32(d.cokus));
      }
      return;
    case 8: {
      // One call gives both dice.
      const double x = std::floor(DrawMt(d) * 36.0);
      const double hi = std::floor(x / 6.0);
      die2 = static_cast<int>(hi) + 1;
      die1 = static_cast<int>(x - 6.0 * hi) + 1;
      return;
    }
    default: return;
  }
}

int32_t GeneratorCell(DiceSources& d, int32_t sessionRolls) {
  switch (d.rngNumber) {
    case 1:
    case 8: return Cell(DrawMt(d));
    case 2: return Cell(DrawCokus(d));
    case 3: return RanLcg(d.lcgState, 100000);
    case 4: return Cell(DrawRan2(d));
    case 5: return Cell(DrawRan1(d));
    case 6: return EvenRoll(sessionRolls) ? Cell(DrawRan1(d)) : Cell(DrawMt(d));
    case 7: return EvenRoll(sessionRolls) ? Cell(DrawRan2(d)) : Cell(DrawCokus(d));
    default: return 0;
  }
}

void RemapMissingGenerators(DiceSources& d) {
  if ((d.missingRngLibraries & 1U) && (d.rngNumber == 1 || d.rngNumber == 6 || d.rngNumber == 8)) d.rngNumber = 2;
  if ((d.missingRngLibraries & 2U) && (d.rngNumber == 2 || d.rngNumber == 7)) d.rngNumber = 4;
}
