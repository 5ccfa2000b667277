#include "dice/seeding.h"

#include <cmath>

#include "engine/messages.h"

int32_t MaxSeed(const Game& g) { return g.Dice.rngNumber == 3 ? 999999 : 2147483647; }

bool SeedRng(Game& g, bool scripted) {
  DiceSources& d = g.Dice;
  const int32_t max = MaxSeed(g);
  if (!scripted) {
    if (d.seedByUser) {
      std::string prefix;
      for (;;) {
        MessageReply reply = Tell(g,
                                  prefix + "Please enter a whole number between 1 and " +
                                      MoneyTextGrouped(Money::Dollars(max)) +
                                      " to seed the random number generator:",
                                  "Random Number Generator", 0, msg::kOk | msg::kCancel | msg::kInput,
                                  std::to_string(d.lastSeed));
        if (reply.Button == kButtonCancel) return false;
        Money typed;
        std::string error;
        if (ParseMoney(reply.Input, typed, error) && typed.IsWhole() && typed >= Money::Dollars(1) &&
            typed <= Money::Dollars(max)) {
          d.pendingSeed = typed;
          break;
        }
        if (g.SilentMode || g.Ui == nullptr) return false;
        prefix = "Your seed value is out of limits.\n\n";
      }
    } else {
      d.pendingSeed = Money{};
    }
  }
  if (d.pendingSeed.raw == 0) {
    // Automatic: the time of day in milliseconds, and for all but #3 the weekday.
    const LocalDateTime now = g.Time ? g.Time->Now() : DefaultClock().Now();
    const double ms = ((now.hour * 60.0 + now.minute) * 60.0 + now.second) * 1000.0 + now.millisecond;
    int64_t seed = static_cast<int64_t>(ms);
    if (d.rngNumber != 3) seed += 100000000LL * now.weekday;
    while (seed > max) seed /= 10;
    // It must differ from the last seed; a step keeps it in range.
    if (seed == d.lastSeed) seed = seed > 1 ? seed - 1 : seed + 1;
    d.pendingSeed = Money::Dollars(seed);
  }
  if (d.pendingSeed < Money::Dollars(1) || d.pendingSeed > Money::Dollars(max)) {
    d.pendingSeed = Money{};
    return false;
  }
  const int32_t seed = static_cast<int32_t>(d.pendingSeed.raw / Money::kScale);
  d.lcgState = seed;
  d.lastSeed = seed;
  // The events log's "RNG # seeded" line is written here once the log exists.
  switch (d.rngNumber) {
    case 1: case 8: InitGenrand(d.mt, static_cast<uint32_t>(seed)); break;
    default: break;  // the other generators come with their own sources
  }
  return true;
}
