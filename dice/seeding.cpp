#include "dice/seeding.h"

#include <cmath>

#include "dice/rng_texts.h"
#include "stats/events_log.h"

namespace {

// Reads of a clock that shows the same instant before it counts as stopped (a fake
// clock). A real clock moves within a millisecond, far fewer reads than this.
constexpr int kStalledReads = 100000;
// Refused answers before the prompt gives up as a Cancel: a person never gets there, an
// interface that answers by itself would otherwise ask for ever.
constexpr int kPromptRounds = 100;

bool SameInstant(const LocalDateTime& a, const LocalDateTime& b) {
  return a.hour == b.hour && a.minute == b.minute && a.second == b.second && a.millisecond == b.millisecond &&
         a.weekday == b.weekday;
}

int64_t AutomaticSeed(const LocalDateTime& now, int32_t rng, int32_t max) {
  int64_t seed = ((now.hour * 60LL + now.minute) * 60 + now.second) * 1000 + now.millisecond;
  if (rng != 3) seed += 100000000LL * now.weekday;
  while (seed > max) seed /= 10;
  return seed;
}

// The automatic seed must differ from the last one; the time of day is its source, so
// read the clock again until it does.
int64_t FreshAutomaticSeed(Game& g, int32_t max) {
  Clock& clock = g.Time ? *g.Time : DefaultClock();
  const DiceSources& d = g.Dice;
  LocalDateTime last = clock.Now();
  int64_t seed = AutomaticSeed(last, d.rngNumber, max);
  int stalled = 0;
  while (seed == d.lastSeed) {
    const LocalDateTime now = clock.Now();
    if (SameInstant(now, last)) {
      if (++stalled < kStalledReads) continue;
      return seed - 1;  // a clock that never moves
    }
    stalled = 0;
    last = now;
    seed = AutomaticSeed(now, d.rngNumber, max);
  }
  return seed;
}

// The seed prompt. It is an input box, not a message box, so it comes up under
// SilentMode too: a new session of Auto-Roll stops for it. False on Cancel.
bool AskSeed(Game& g, int32_t max) {
  DiceSources& d = g.Dice;
  if (g.Ui == nullptr) return false;
  MessageRequest request;
  request.Title = kRngTitle;
  request.Flags = msg::kOk | msg::kCancel | msg::kInput;
  request.Input = std::to_string(d.lastSeed);
  for (int round = 0; round < kPromptRounds; ++round) {
    request.Text = SeedPrompt(max, round > 0);
    const MessageReply reply = g.Ui->ShowMessage(request);
    if (reply.Button != kButtonOk) return false;
    Money typed;
    std::string error;
    if (ParseMoney(reply.Input, typed, error) && typed.IsWhole() && typed >= Money::Dollars(1) &&
        typed <= Money::Dollars(max)) {
      d.pendingSeed = typed;
      return true;
    }
  }
  return false;
}

}  // namespace

void SetReseedSessions(Game& g, bool on) { g.Dice.reseedSessions = on; }

bool SeedRngWith(Game& g, int32_t seed) {
  g.Dice.pendingSeed = Money::Dollars(seed);
  return SeedRng(g, true);
}

void SetPadRoll(Game& g, int die1, int die2) {
  g.Dice.padPending = true;
  g.Dice.padDie1 = die1;
  g.Dice.padDie2 = die2;
}

int32_t MaxSeed(const Game& g) { return g.Dice.rngNumber == 3 ? 999999 : 2147483647; }

int SelectRng(Game& g, int32_t number) {
  DiceSources& d = g.Dice;
  if ((d.missingRngLibraries & 1U) && (number == 1 || number == 6 || number == 8)) return -1;
  if ((d.missingRngLibraries & 2U) && (number == 2 || number == 7)) return -1;
  if (number < 0 || number > 8) return -2;
  d.rngNumber = number;
  return 0;
}

bool SeedRng(Game& g, bool scripted) {
  DiceSources& d = g.Dice;
  const int32_t max = MaxSeed(g);
  if (!scripted) {
    if (d.seedByUser) {
      if (!AskSeed(g, max)) return false;
    } else {
      d.pendingSeed = Money{};
    }
  }
  if (d.pendingSeed.raw == 0) d.pendingSeed = Money::Dollars(FreshAutomaticSeed(g, max));
  if (d.pendingSeed < Money::Dollars(1) || d.pendingSeed > Money::Dollars(max)) {
    d.pendingSeed = Money{};
    return false;
  }
  // A script may leave a fraction: it goes to the whole number half to even.
  const auto seed = static_cast<int32_t>(std::nearbyint(d.pendingSeed.ToDouble()));
  d.lcgState = seed;
  d.lastSeed = seed;
  if (g.RecordEvents) LogSeeded(g, d.rngNumber, seed);
  int32_t negative = -seed;
  switch (d.rngNumber) {
    case 1:
    case 8: InitGenrand(d.mt, static_cast<uint32_t>(seed)); break;
    case 2: SrandMT(d.cokus, static_cast<uint32_t>(seed)); break;
    case 3: RanLcg(d.lcgState, 6); break;
    case 4: Ran2(d.ran2, negative, d.pendingErrorText); break;
    case 5: Ran1(d.ran1, negative, d.pendingErrorText); break;
    case 6:
      InitGenrand(d.mt, static_cast<uint32_t>(seed));
      Ran1(d.ran1, negative, d.pendingErrorText);
      break;
    case 7:
      SrandMT(d.cokus, static_cast<uint32_t>(seed));
      Ran2(d.ran2, negative, d.pendingErrorText);
      break;
    default: break;
  }
  return true;
}

void SeedAtStartUp(Game& g) {
  DiceSources& d = g.Dice;
  const bool byUser = d.seedByUser;
  d.seedByUser = false;
  for (int32_t n : {3, 4, 5, 2, 1}) {
    if (SelectRng(g, n) == 0) SeedRng(g, false);
  }
  d.seedByUser = byUser;
}
