#include "dice/generators.h"

#include <cmath>

void GeneratorDice(DiceSources& d, int32_t /*sessionRolls*/, int& die1, int& die2) {
  switch (d.rngNumber) {
    case 8: {
      // One call gives both dice.
      double x = std::floor(GenrandReal2(d.mt) * 36.0);
      double hi = std::floor(x / 6.0);
      die2 = static_cast<int>(hi) + 1;
      die1 = static_cast<int>(x - 6.0 * hi) + 1;
      return;
    }
    default:
      // #1: two calls of the reference twister, one a die.
      die1 = static_cast<int>(std::floor(GenrandReal2(d.mt) * 6.0)) + 1;
      die2 = static_cast<int>(std::floor(GenrandReal2(d.mt) * 6.0)) + 1;
      return;
  }
}
