// Auto-Bet actions: what a reduced statement does to the table. The verbs with targets
// walk their target list; every write of a script goes through TakeActionSetVar, and
// every bet through the placement gate. A walk is checked whole before anything is
// written, so that a refused statement leaves the table as it found it.

#include "autobet/actions.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

#include "autobet/statement_buffer.h"
#include "autobet/variables.h"
#include "automation/auto_play.h"
#include "automation/auto_roll.h"
#include "dice/probability_file.h"
#include "dice/roll_files.h"
#include "dice/seeding.h"
#include "engine/bankroll.h"
#include "engine/game_state.h"
#include "engine/handling.h"
#include "engine/messages.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_tools.h"
#include "stats/checkstacks.h"
#include "storage/paths.h"

namespace {

// Fault codes raised here (their texts are with the variables).
enum : int {
  kErrBuyNotPlace = 12,
  kErrNotBuy = 13,
  kErrNoPlayer = 851,
  kErrOnlineClient = 857,
  kErrOtherSeatOnline = 864,
  kErrWinMode = 860,
  kErrLoseMode = 861,
  kErrAlwaysWorks = 862,
  kErrBankrollLate = 870,
  kErrRollsPerHour = 900,
  kErrSeed = 905,
  kErrRngMissing = 910,
  kErrRngRange = 911,
  kErrCompRate = 912,
  kErrOddsFactor = 914,
  kErrMessagesOff = 990,
  kErrRollFileClosed = 1003,
  kErrOutputClosed = 1004,
  kErrFileNotFound = 1005,
  kErrBadPath = 1006,
  kErrNotRollFile = 1007,
  kErrNotProbabilityFile = 1008,
  kErrNoValue = 1011,
  kErrNoString = 1012,
  kErrOutsideDataFolder = 1013,
  kErrDivideByZero = 9999
};

constexpr int kLastCheckStackName = 899;
constexpr int kLastAutoWorkBet = 87;  // autowork on the come-out is kept for bets up to World

// A script's number as Money: not-a-number is 0, and anything beyond the largest
// CheckStack is held at it, so that no conversion or rounding below can overflow.
Money ToMoney(double value) {
  constexpr int64_t kLimit = 999999999999999999LL;
  if (std::isnan(value)) return Money{};
  const double raw = value * Money::kScale;
  if (raw >= static_cast<double>(kLimit)) return Money::FromRaw(kLimit);
  if (raw <= -static_cast<double>(kLimit)) return Money::FromRaw(-kLimit);
  return Money::FromDouble(value);
}

bool IsWhole(double v) { return std::isfinite(v) && v == std::floor(v); }

// The text of a value record; false (RunError 998 kept) when the string can't be read.
bool ValueText(Game& g, const TokenRecord& value, std::string& out) {
  AutoBetProgram& p = g.AutoBet;
  const int before = p.RunError;
  p.RunError = 0;
  out = TextOf(g, value);
  if (p.RunError != 0) return false;
  p.RunError = before;
  return true;
}

// ---- Targets.

// What a target group names: its pieces, and the seat of its player piece (the Bettor
// when it has none).
struct Target : ReferencePieces {
  int seat = 0;
};

Target TargetOf(const Game& g, const ReferencePieces& pieces) {
  Target t{pieces};
  t.seat = SeatOfPiece(g, t.piece);
  return t;
}
Target ReadTarget(const Game& g, const TokenRecord* group) { return TargetOf(g, ReadPieces(group)); }

// The verbs by number: an amount and its targets (Bet, Add, the roundings), or the
// targets alone (Clear, Buy, Call on and off).
bool IsAmountVerb(int action) { return action >= 481 && action <= 489; }
bool IsTargetVerb(int action) { return action >= 450 && action <= 499 && !IsAmountVerb(action); }

bool IsBet(int v) { return v >= 1 && v <= kBets; }

// The seat a script acts for must hold a player. Permissions to act for other seats
// are options of an online host; a table played offline grants every one of them. At
// an online table a seat played from another machine is that machine's alone.
bool CheckSeat(Game& g, int seat) {
  if (seat < 1 || seat > kPlayerSeats || !SeatOccupied(g, seat)) return Fault(g, kErrNoPlayer);
  if (g.Online != nullptr && !g.Online->MayChangeBets(seat)) return Fault(g, kErrOtherSeatOnline);
  return true;
}

// What only the host of an online table does to the table as a whole: a client's
// script is refused.
bool NotAsOnlineClient(Game& g) { return g.OnlineRole != kOnlineClient || Fault(g, kErrOnlineClient); }

// ---- The modes of handling won and lost bets, as scripts spell them.

struct HandlingMode {
  int action = kAskByDialog;
  bool byRule = false;  // "same bet" with an operator: the seat's rule row is set too
  SettleRule rule;
};

// "same bet" followed by an operator and an amount or a percentage: "+ 5", "x 2",
// "/ 2", "- 10%". `rest` is what follows "same bet".
bool ParseRule(std::string_view rest, SettleRule& rule) {
  std::size_t i = 0;
  auto skipBlanks = [&] {
    while (i < rest.size() && rest[i] == ' ') ++i;
  };
  skipBlanks();
  if (i >= rest.size()) return false;
  switch (rest[i]) {
    case '+': rule.Operator = 0; break;
    case '-': rule.Operator = 1; break;
    case 'x':
    case '*': rule.Operator = 2; break;
    case '/': rule.Operator = 3; break;
    default: return false;
  }
  ++i;
  skipBlanks();
  if (i < rest.size() && rest[i] == '$') ++i;
  const std::size_t start = i;
  while (i < rest.size() && ((rest[i] >= '0' && rest[i] <= '9') || rest[i] == '.')) ++i;
  std::string error;
  if (i == start || !ParseMoney(rest.substr(start, i - start), rule.Operand, error)) return false;
  skipBlanks();
  rule.Units = 0;
  if (i < rest.size() && rest[i] == '%') {
    rule.Units = 1;
    ++i;
    skipBlanks();
  }
  // "/ 0" is taken: the rule itself makes a division by 0 a change of 0.
  return i == rest.size();
}

bool ParseHandlingText(std::string_view text, bool winning, HandlingMode& mode) {
  const std::string s = LowerTrimmed(text);
  struct Spelling {
    const char* text;
    int action;
  };
  static constexpr Spelling kWinning[] = {{"manual", kAskByDialog},
                                          {"take bet and winnings", kTakeDown},
                                          {"same bet/take winnings", kSameBet},
                                          {"same bet / take winnings", kSameBet},
                                          {"same bet", kSameBet},
                                          {"press 1 unit", kPressUnitOrRemainder},
                                          {"press double", kPressDoubleOrUnit},
                                          {"parlay", kParlayOrDouble}};
  static constexpr Spelling kLosing[] = {{"manual", kAskByDialog},
                                         {"no bet/take remainder (if any)", kTakeDown},
                                         {"no bet / take remainder (if any)", kTakeDown},
                                         {"no bet", kTakeDown},
                                         {"no bet/take remainder", kTakeDown},
                                         {"no bet / take remainder", kTakeDown},
                                         {"same bet", kSameBet},
                                         {"bet remainder (if any)", kPressUnitOrRemainder},
                                         {"bet remainder", kPressUnitOrRemainder},
                                         {"same bet plus 1 unit", kPressDoubleOrUnit},
                                         {"double bet", kParlayOrDouble}};
  for (const Spelling& sp : winning ? std::span<const Spelling>(kWinning) : std::span<const Spelling>(kLosing)) {
    if (s == sp.text) {
      mode.action = sp.action;
      return true;
    }
  }
  // Only winning bets have the rule forms: "same bet +", "-", "x", "*", "/" and an amount.
  constexpr std::string_view kSameBetWords = "same bet";
  if (winning && s.starts_with(kSameBetWords) &&
      ParseRule(std::string_view(s).substr(kSameBetWords.size()), mode.rule)) {
    mode.action = kModifyByRule;
    mode.byRule = true;
    return true;
  }
  // A number written as text counts as that number.
  Money number;
  std::string error;
  if (!s.empty() && ParseMoney(s, number, error) && number.IsWhole() && number >= Money{} &&
      number <= Money::Dollars(kSetToAmount)) {
    mode.action = static_cast<int>(number.raw / Money::kScale);
    return true;
  }
  return false;
}

bool ParseHandlingMode(Game& g, const TokenRecord& value, bool winning, HandlingMode& mode) {
  const int fault = winning ? kErrWinMode : kErrLoseMode;
  if (value.code == kCodeNumber) {
    if (!IsWhole(value.value) || value.value < 0 || value.value > static_cast<double>(kSetToAmount))
      return Fault(g, fault);
    mode.action = static_cast<int>(value.value);
    return true;
  }
  std::string text;
  if (!ValueText(g, value, text)) return false;
  if (!ParseHandlingText(text, winning, mode)) return Fault(g, fault);
  return true;
}

// ---- Writing one target.

// The seat's choice of working on the come-out for one bet; a bet resting in its
// default state on the come-out follows it at once.
void SetAutoWork(Game& g, int seat, int bet, bool works) { SetWorkOnComeOut(g, seat, bet, works); }

// Rolls per hour in the unit the rules keep the rate in.
double FromRollsPerHour(const RuleSet& r, double perHour) {
  switch (r.RollRateUnit) {
    case kPerMinute: return perHour / 60;
    case kPerSecond: return perHour / 3600;
    default: return perHour;
  }
}

bool SeedInRange(const Game& g, Money seed) { return seed >= Money::Dollars(1) && seed <= Money::Dollars(MaxSeed(g)); }

// Whether generator `n` can be selected: 0, 910 or 911. Selecting changes nothing but
// the number, which is put back.
int RngFault(Game& g, double n) {
  if (!IsWhole(n) || n < 1 || n > 8) return kErrRngRange;
  const int32_t before = g.Dice.rngNumber;
  const int result = SelectRng(g, static_cast<int32_t>(n));
  g.Dice.rngNumber = before;
  return result == -1 ? kErrRngMissing : result == 0 ? 0 : kErrRngRange;
}

Money& OddsFactorOf(RuleSet& r, int v) {
  switch (v) {
    case 5612:
    case 5617: return r.OddsAllowed410;
    case 5613:
    case 5616: return r.OddsAllowed59;
    default: return r.OddsAllowed68;
  }
}

// WriteTarget for every target but a bet's amount and a CheckStack, of a seat checked
// already; out of line, so that those two take none of its set-up.
[[gnu::noinline]] bool WriteOtherTarget(Game& g, const Target& t, const TokenRecord& value, bool apply) {
  const int v = t.v, seat = t.seat;
  if (IsBet(v)) {  // whether it works on the come-out roll
    const double x = NumberOf(g, value);
    if (v > kLastAutoWorkBet) return Fault(g, kErrAlwaysWorks);
    if (apply) SetAutoWork(g, seat, v, x != 0);
    return true;
  }
  if (v >= 800 && v <= kLastCheckStackName) {
    // Read in place and copied into the name's own storage: no string is made per roll.
    std::string scratch;
    const int before = g.AutoBet.RunError;
    g.AutoBet.RunError = 0;
    const std::string_view text = value.code == kCodeString ? StringView(g, value.code, value.value, scratch)
                                                            : std::string_view(scratch = TextOf(g, value));
    if (g.AutoBet.RunError != 0) return false;
    g.AutoBet.RunError = before;
    if (apply) g.CheckStackName[seat][v - 800].assign(text);
    return true;
  }

  const double x = NumberOf(g, value);
  RuleSet& r = g.Rules;
  switch (v) {
    case 670:
    case 671: {
      const bool winning = v == 670;
      HandlingMode mode;
      if (!ParseHandlingMode(g, value, winning, mode)) return false;
      if (!apply) return true;
      (winning ? g.AutoHandleWin : g.AutoHandleLose)[seat] = mode.action;
      if (mode.byRule) g.SettleRules[seat][winning ? kRuleModifyWin : kRuleModifyLose] = mode.rule;
      return true;
    }
    case 700:
    case 701:
    case 702:
    case 703: {
      if (!apply) return true;
      const bool on = x != 0;
      if (v == 700) g.AutoTakeOdds[seat] = on;
      else if (v == 701) g.AutoLayOdds[seat] = on;
      else if (v == 702) g.AutoDownPlace[seat] = on;
      else g.AutoPassDice[seat] = on;
      return true;
    }
    case 1300:
    case 1301:
      // Later changes of money go through the ATM, so that results stay net of them.
      if (TableRolls(g.Stats, kSessionScope) > 0) return Fault(g, kErrBankrollLate);
      if (apply) BuyIn(g, seat, ToMoney(x));
      return true;
    case 5006:
      if (!g.Rolls.RollFile.IsOpen()) return Fault(g, kErrRollFileClosed);
      if (apply) {
        const double roll = std::isfinite(x) ? std::floor(x) : 1;
        g.Rolls.NextRollPosition = roll < 1 ? 1 : roll > INT32_MAX ? INT32_MAX : static_cast<int32_t>(roll);
        g.Rolls.EndOfFile = false;
      }
      return true;
    case 5603:
      if (!(x >= 0.0001 && x <= 36000000)) return Fault(g, kErrRollsPerHour);
      if (apply) r.RollsPerTime = FromRollsPerHour(r, x);
      return true;
    case 5612:
    case 5613:
    case 5614:
    case 5615:
    case 5616:
    case 5617:
      if (!(x >= 0 && x <= 9999)) return Fault(g, kErrOddsFactor);
      if (apply) OddsFactorOf(r, v) = ToMoney(x);
      return true;
    case 5655: {
      const Money seed = ToMoney(x);
      if (!SeedInRange(g, seed)) return Fault(g, kErrSeed);
      if (apply) {
        g.Dice.pendingSeed = seed;
        SeedRng(g, true);
      }
      return true;
    }
    case 5672:
      if (const int fault = RngFault(g, x)) return Fault(g, fault);
      if (apply) SelectRng(g, static_cast<int32_t>(x));
      return true;
    case 5691:
      if (!(x >= 0 && x <= kMaxBankroll.ToDouble())) return Fault(g, kErrCompRate);
      if (apply) r.CompRate = ToMoney(x);
      return true;
    default:
      // V603 passes the compiler but names nothing the table keeps.
      return true;
  }
}

// Checks the write of `value` to the target group and, with `apply`, makes it. Returns
// false with RunError set when the write is refused; then nothing was changed.
bool WriteTarget(Game& g, const Target& t, const TokenRecord& value, bool apply) {
  const int v = t.v, seat = t.seat;
  // Table settings (V5000 and up) have no player piece and belong to nobody's seat.
  if ((v < 5000 || t.hasPlayer) && !CheckSeat(g, seat)) return false;
  if (IsBet(v) && t.y != 44) {
    if (apply) ChangeBet(g, seat, v, ToMoney(NumberOf(g, value)) - g.BetAmount[seat][v]);
    return true;
  }
  if (v >= kCheckStackRow && v < kBetRows) {
    if (apply) SetCheckStack(g, seat, v - kCheckStackRow, ToMoney(NumberOf(g, value)));
    return true;
  }
  return WriteOtherTarget(g, t, value, apply);
}

bool WriteTarget(Game& g, const TokenRecord* group, const TokenRecord& value, bool apply) {
  return WriteTarget(g, ReadTarget(g, group), value, apply);
}

// ---- The target walk.

// Calls f(group, target) for each target of the list from `start` to `last` that passes
// the qualifier in force, the group read into its parts once. A qualifier (a relational
// operator with its operand) stays until the next one. Stops, returning false, at the first
// refusal of f or fault of a read. A list worked out beforehand (`listed`) is walked as
// the records would be, with no group to hand on, and its qualifiers' operands given in
// their order in `operands`.
template <class F>
bool WalkTargets(Game& g, int start, int last, const TargetList* listed, const TokenRecord* operands, F&& f) {
  AutoBetProgram& p = g.AutoBet;
  int relational = 0;
  TokenRecord operand;
  const auto visit = [&](const TokenRecord* group, const Target& target) {
    bool selected = true;
    if (relational != 0) {
      TokenRecord current;
      if (!ReadReference(g, target, current)) return false;
      selected = CompareValues(g, current, relational, operand);
      if (p.RunError != 0) return false;
    }
    return !selected || f(group, target);
  };
  if (listed) {
    for (const ListedTarget& e : listed->entries) {
      if (e.relational != 0) {
        relational = e.relational;
        operand = *operands++;
        continue;
      }
      if (!visit(nullptr, TargetOf(g, e.target))) return false;
    }
    return true;
  }
  for (int i = start; i <= last;) {
    const TokenRecord& r = p.StatementBuffer[i];
    if (IsRelational(r) && i < last) {
      relational = r.code;
      operand = p.StatementBuffer[i + 1];
      i += 2;
      continue;
    }
    if (r.code != kCodeVariableTarget) {
      ++i;  // commas and the brackets of a target list
      continue;
    }
    const int next = i + 1 + GroupSize(static_cast<int>(r.value));
    if (next > last + 1) return Fault(g, kErrNoValue);
    const TokenRecord* group = &p.StatementBuffer[i];
    if (!visit(group, ReadTarget(g, group))) return false;
    i = next;
  }
  return true;
}

// Whether the list from `start` to `last` names more than one target, stepped as
// WalkTargets steps it.
bool HasSecondTarget(const AutoBetProgram& p, int start, int last, const TargetList* listed) {
  if (listed) return listed->targets > 1;
  int targets = 0;
  for (int i = start; i <= last;) {
    const TokenRecord& r = p.StatementBuffer[i];
    if (IsRelational(r) && i < last) {
      i += 2;
    } else if (r.code != kCodeVariableTarget) {
      ++i;
    } else {
      if (++targets > 1) return true;
      i += 1 + GroupSize(static_cast<int>(r.value));
    }
  }
  return false;
}

// Runs a walk twice: first only checking, then writing, so that a target refused late in
// the list leaves the earlier ones as they were. A fault that doesn't stop the walk (a
// Place-only verb on another bet) is left in RunError after the writes. A verb whose writes
// check no more than the seat (`seatOnly`), on a list of amounts of one seat compared with
// numbers, is refused at its first write or not at all: it walks once.
template <class F>
void CheckedWalk(Game& g, int start, int last, const TargetList* listed, const TokenRecord* operands, bool seatOnly,
                 F&& each) {
  int softFault = 0;
  auto pass = [&](bool apply) {
    softFault = 0;
    return WalkTargets(g, start, last, listed, operands, [&](const TokenRecord* group, const Target& target) {
      return each(group, target, apply, softFault);
    });
  };
  // One target checks as it writes: no earlier write can be left behind by its refusal.
  const auto once = [&] {
    if (!seatOnly || !listed || !listed->amountsOfOneSeat) return false;
    for (int k = 0; k < listed->qualifiers; ++k)
      if (operands[k].code != kCodeNumber) return false;
    return true;
  };
  if (HasSecondTarget(g.AutoBet, start, last, listed) && !once() && !pass(false)) return;
  pass(true);
  if (softFault != 0 && g.AutoBet.RunError == 0) g.AutoBet.RunError = softFault;
}

// value := X rounded by Money arithmetic: 487 to the nearest, 488 down, 489 up.
Money RoundToMultiple(Money value, Money x, int action) {
  if (action == 487) {
    // X times the integer part of (value / X + 0.5), as one exact fraction.
    return Money::FromRaw(FloorDiv(Money::FromRaw(2 * value.raw + x.raw), Money::FromRaw(2 * x.raw)) * x.raw);
  }
  const int64_t down = FloorDiv(value, x);
  if (action == 489 && !IsMultipleOf(value, x)) return Money::FromRaw((down + 1) * x.raw);
  return Money::FromRaw(down * x.raw);
}

// Bet X, Multiply, Divide, Add, Subtract and the roundings: the amount at 2 (`given`;
// nullptr for none), the targets after "on", "to" or "from".
void AmountVerb(Game& g, int action, const TokenRecord* given, const TargetList* listed, const TokenRecord* operands) {
  AutoBetProgram& p = g.AutoBet;
  if (action == 486) return;  // no verb has this number
  if (!given || !IsValueRecord(*given)) {
    Fault(g, kErrNoValue);
    return;
  }
  const TokenRecord amount = *given;
  const double x = NumberOf(g, amount);
  if (action == 483 && x == 0) {
    Fault(g, kErrDivideByZero);
    return;
  }
  const Money xMoney = ToMoney(x);
  const bool rounding = action >= 487 && action <= 489;
  if (rounding && xMoney.raw == 0) return;  // rounding to nothing leaves every target as it is
  CheckedWalk(g, 4, p.StatementLength, listed, operands, true,
              [&](const TokenRecord*, const Target& target, bool apply, int&) {
                if (action == 481) return WriteTarget(g, target, amount, apply);
                TokenRecord current;
                if (!ReadReference(g, target, current)) return false;
                const double v = NumberOf(g, current);
                double result = v;
                switch (action) {
                  case 482: result = v * x; break;
                  case 483: result = v / x; break;
                  case 484: result = v + x; break;
                  case 485: result = v - x; break;
                  default: result = RoundToMultiple(ToMoney(v), xMoney, action).ToDouble(); break;
                }
                return WriteTarget(g, target, {kCodeNumber, result}, apply);
              });
}

// Moves a Place bet to the Buy bet on its number (or back): the amount comes down from
// one and goes up on the other through the gate; whatever the other refuses goes back.
// A bet called on or off stays so.
void MoveBet(Game& g, int seat, int from, int to) {
  const Money amount = g.BetAmount[seat][from];
  if (amount.raw <= 0) return;
  const WorkingState working = g.BetWorking[seat][from];
  const Money down = -ChangeBet(g, seat, from, -amount);
  const Money up = ChangeBet(g, seat, to, down);
  if (up < down) ChangeBet(g, seat, from, down - up);
  if (up.raw > 0 && (working == 2 || working == -1)) SetWorkingState(g, seat, to, working);
}

// The verbs 450..499 without an amount: their targets follow the verb.
void TargetVerb(Game& g, int action, const TargetList* listed, const TokenRecord* operands) {
  const TokenRecord cleared{kCodeNumber, 0}, clearedName{kCodeString, 0};
  CheckedWalk(g, 2, g.AutoBet.StatementLength, listed, operands, action == 460,
              [&](const TokenRecord*, const Target& t, bool apply, int& softFault) {
                const int bet = t.v, seat = t.seat;
                switch (action) {
                  case 460:
                    return WriteTarget(g, t, bet >= 800 && bet <= kLastCheckStackName ? clearedName : cleared, apply);
                  case 450:
                  case 454: {
                    const bool buying = action == 450;
                    const int first = buying ? bet::Place4 : bet::Buy4;
                    if (bet < first || bet > first + 5) {
                      softFault = buying ? kErrBuyNotPlace : kErrNotBuy;
                      return true;
                    }
                    if (!CheckSeat(g, seat)) return false;
                    const int other = buying ? bet + (bet::Buy4 - bet::Place4) : bet - (bet::Buy4 - bet::Place4);
                    if (apply) MoveBet(g, seat, bet, other);
                    return true;
                  }
                  case 451:
                  case 452:
                    if (!CheckSeat(g, seat)) return false;
                    if (!IsBet(bet)) return true;
                    if (BetAlwaysWorks(bet)) return Fault(g, kErrAlwaysWorks);
                    if (apply && g.BetAmount[seat][bet].raw > 0) SetWorkingState(g, seat, bet, action == 452 ? 2 : -1);
                    return true;
                  case 453:
                    if (!CheckSeat(g, seat)) return false;
                    if (apply && IsBet(bet)) SetWorkingState(g, seat, bet, RestingState(g, seat, bet));
                    return true;
                  default: return true;
                }
              });
}

// Swap X, Y: both read, then written back crosswise. A string is copied to a pool entry
// of its own first, since a checkstack name reads as a reference to its stack.
void Swap(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  std::array<int, 2> at{};
  int found = 0;
  for (int i = 2; i <= p.StatementLength && found < 2;) {
    if (p.StatementBuffer[i].code == kCodeVariableTarget) {
      at[found++] = i;
      i += 1 + GroupSize(static_cast<int>(p.StatementBuffer[i].value));
    } else {
      ++i;
    }
  }
  if (found < 2 || at[1] + GroupSize(static_cast<int>(p.StatementBuffer[at[1]].value)) > p.StatementLength) {
    Fault(g, kErrNoValue);
    return;
  }
  std::array<TokenRecord, 2> values;
  for (int k = 0; k < 2; ++k) {
    if (!ReadVariable(g, &p.StatementBuffer[at[k]], values[k])) return;
    if (values[k].code == kCodeString) {
      std::string text;
      if (!ValueText(g, values[k], text)) return;
      values[k] = {kCodeString, static_cast<double>(NewRunString(p, std::move(text)))};
    }
  }
  for (bool apply : {false, true})
    for (int k = 0; k < 2; ++k)
      if (!WriteTarget(g, &p.StatementBuffer[at[k]], values[1 - k], apply)) return;
}

// ---- Actions without targets.

bool MessagesOn(const Game& g) {
  return (g.Rules.Notices & (g.Auto.HyperDrive ? kNoticeAutoBetHyper : kNoticeAutoBetNormal)) != 0;
}

std::string MessageTitle(const Game& g, int bettor) { return "Auto-Bet (" + g.PlayerName[bettor] + ")"; }

// The text at index 2 of an action; false with 1012 when there is none.
bool ActionText(Game& g, std::string& out) {
  const AutoBetProgram& p = g.AutoBet;
  if (p.StatementLength < 2 || !IsValueRecord(p.StatementBuffer[2])) return Fault(g, kErrNoString);
  return ValueText(g, p.StatementBuffer[2], out);
}

bool ActionNumber(Game& g, double& out) {
  const AutoBetProgram& p = g.AutoBet;
  if (p.StatementLength < 2 || !IsValueRecord(p.StatementBuffer[2])) return Fault(g, kErrNoValue);
  out = NumberOf(g, p.StatementBuffer[2]);
  return true;
}

void ShowScriptMessage(Game& g, int bettor, bool question) {
  std::string text;
  if (!ActionText(g, text)) return;
  if (!question && !MessagesOn(g)) {
    Fault(g, kErrMessagesOff);
    return;
  }
  MessageRequest request;
  request.Text = std::move(text);
  request.Title = MessageTitle(g, bettor);
  request.Width = 550;
  request.Flags = question ? msg::kYesNoQuestion : msg::kOk;
  // The box is asked of the interface itself: the option for Hyper-Drive messages
  // overrides the silence of the run. Without an interface the first button answers.
  MessageReply reply;
  reply.Button = question ? kButtonYes : kButtonOk;
  if (g.Ui) reply = g.Ui->ShowMessage(request);
  if (question) g.AutoBet.Answer = reply.Button == kButtonYes ? 6 : 7;
}

// Whether a roll file's every byte holds two dice: it has no header to tell it by.
bool IsRollFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::array<char, 4096> block{};
  while (in) {
    in.read(block.data(), block.size());
    for (std::streamsize i = 0, n = in.gcount(); i < n; ++i) {
      const auto b = static_cast<uint8_t>(block[i]);
      const int d1 = RollByteDie1(b), d2 = RollByteDie2(b);
      if (d1 < 1 || d1 > 6 || d2 < 1 || d2 > 6) return false;
    }
  }
  return true;
}

void PlaybackRollFile(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  std::string name;
  if (!ActionText(g, name)) return;
  // "from roll # X" leaves X as the last value of the statement.
  double from = 1;
  if (p.StatementLength >= 3 && IsValueRecord(p.StatementBuffer[p.StatementLength]))
    from = NumberOf(g, p.StatementBuffer[p.StatementLength]);
  const std::string path = InProgramFolder(g.ProgramFolder, name);
  std::error_code ec;
  if (name.empty() || !std::filesystem::is_regular_file(path, ec)) {
    Fault(g, kErrFileNotFound);
    return;
  }
  if (!IsRollFile(path)) {
    Fault(g, kErrNotRollFile);
    return;
  }
  if (!OpenRollFile(g, g.Rolls, path)) {
    Fault(g, kErrBadPath);
    return;
  }
  StartPlayback(g, g.Rolls);
  const double roll = std::isfinite(from) ? std::floor(from) : 1;
  SetNextRollPosition(g.Rolls, roll < 1 ? 1 : roll > INT32_MAX ? INT32_MAX : static_cast<int32_t>(roll));
}

// "Open ... file for output": the file becomes the Bettor's, emptied first when asked,
// and stays open for its lines.
void OpenOutputFile(Game& g, int bettor, bool clear) {
  std::string name;
  if (!ActionText(g, name)) return;
  if (name.empty()) {
    Fault(g, kErrBadPath);
    return;
  }
  // A script never writes (or empties) a file outside the data folder.
  const std::string path = InsideFolder(g.ProgramFolder, name);
  if (path.empty()) {
    Fault(g, kErrOutsideDataFolder);
    return;
  }
  if (!g.AutoBet.OutputFile[bettor].Open(path, clear)) Fault(g, kErrBadPath);
}

void OutputToFile(Game& g, int bettor) {
  std::string text;
  if (!ActionText(g, text)) return;
  AppendFile& file = g.AutoBet.OutputFile[bettor];
  if (file.Path().empty()) {
    Fault(g, kErrOutputClosed);
    return;
  }
  if (!file.AppendLine(text)) Fault(g, kErrBadPath);
}

// An assignment: one target, or a list of them (a range is one), then '=' and the value.
void Assign(Game& g) {
  const AutoBetProgram& p = g.AutoBet;
  int equals = 1;
  while (equals <= p.StatementLength) {
    const TokenRecord& r = p.StatementBuffer[equals];
    if (r.code == kCodeVariableTarget) equals += 1 + GroupSize(static_cast<int>(r.value));
    else if (r.code == kCodeListSeparator || r.code == kCodeOpenBracket || r.code == kCodeCloseBracket) ++equals;
    else break;
  }
  if (equals + 1 > p.StatementLength || p.StatementBuffer[equals].code != kCodeEquals ||
      !IsValueRecord(p.StatementBuffer[equals + 1])) {
    const int v = static_cast<int>(p.StatementBuffer[1].value);
    Fault(g, v >= 800 && v <= kLastCheckStackName ? kErrNoString : kErrNoValue);
    return;
  }
  const TokenRecord value = p.StatementBuffer[equals + 1];
  CheckedWalk(
      g, 1, equals - 1, nullptr, nullptr, false,
      [&](const TokenRecord*, const Target& target, bool apply, int&) { return WriteTarget(g, target, value, apply); });
}

void StartNewSession(Game& g, int action) {
  const bool keepCheckStacks = action == 101 || action == 103;
  const bool keepRollFile = action == 102 || action == 103;
  // Without its position kept, a dice roll file in use plays again from its first roll.
  ResetTable(g, true, !keepCheckStacks, true, keepRollFile ? 2 : 1);
  g.AutoBet.RestartScript = true;
}

}  // namespace

void AssignTo(Game& g, const ReferencePieces& to, const TokenRecord& value) {
  WriteTarget(g, TargetOf(g, to), value, true);
}

void TakeActionSetVar(Game& g, int& position, int valueCode, double valueValue, int playerFromContext) {
  AutoBetProgram& p = g.AutoBet;
  const TokenRecord* group = &p.StatementBuffer[position];
  position += 1 + GroupSize(static_cast<int>(group->value));
  // The seat the script runs for matters only for permissions, which a table played
  // offline grants in full.
  (void)playerFromContext;
  WriteTarget(g, group, {valueCode, valueValue}, true);
}

int TargetListStart(int action) { return IsAmountVerb(action) ? 4 : IsTargetVerb(action) ? 2 : 0; }

void TakeListedAction(Game& g, int action, const TokenRecord* amount, const TargetList& listed,
                      const TokenRecord* operands) {
  if (IsAmountVerb(action)) AmountVerb(g, action, amount, &listed, operands);
  else if (IsTargetVerb(action)) TargetVerb(g, action, &listed, operands);
}

void TakeAction(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  if (p.StatementLength < 1) return;
  const TokenRecord& head = p.StatementBuffer[1];
  const int bettor = SeatOfPiece(g, 14);

  if (head.code == kCodeVariableTarget) {
    Assign(g);
    return;
  }
  if (head.code != kCodeAction) return;

  const int action = static_cast<int>(head.value);
  if (IsAmountVerb(action)) {
    AmountVerb(g, action, p.StatementLength >= 2 ? &p.StatementBuffer[2] : nullptr, nullptr, nullptr);
    return;
  }
  if (IsTargetVerb(action)) {
    TargetVerb(g, action, nullptr, nullptr);
    return;
  }

  double x = 0;
  std::string text;
  const bool tableWide = (action >= 100 && action <= 103) || action == 114 || action == 118 || action == 119 ||
                         action == 213 || action == 310;
  if (tableWide && !NotAsOnlineClient(g)) return;
  switch (action) {
    case 100:
    case 101:
    case 102:
    case 103: StartNewSession(g, action); break;
    case 114: g.Percentage.PercentageDiceOn = false; break;
    case 115:
      g.StopReason = "Stopped by Auto-Bet command.";
      if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
      break;
    case 116: p.ShowSteps = true; break;
    case 118: PassDice(g, kPassAsked); break;
    case 119:
      // Playback and recording stop; the file stays open where it stands.
      g.Rolls.RecorderState = 0;
      g.Rolls.EndOfFile = false;
      g.Rolls.RollFile.Flush();
      break;
    case 130:
      g.Dice.pendingSeed = Money{};  // seeded from the clock
      SeedRng(g, true);
      break;
    case 210:
    case 211: ShowScriptMessage(g, bettor, action == 211); break;
    case 212:
      if (!ActionText(g, text) || text.empty() || g.Auto.HyperDrive || g.Ui == nullptr) break;
      g.Ui->PlaySound(InProgramFolder(g.ProgramFolder, text), false);
      break;
    case 213: {
      if (!ActionText(g, text)) break;
      std::string error;
      if (text.empty() || !LoadProbabilityFile(g.Percentage, g.ProgramFolder, text, error)) {
        Fault(g, kErrNotProbabilityFile);
        break;
      }
      g.Percentage.PercentageDiceOn = true;
      break;
    }
    case 220:
    case 221: OpenOutputFile(g, bettor, action == 221); break;
    case 223: OutputToFile(g, bettor); break;
    case 225:
    case 226:
      if (!ActionNumber(g, x) || !CheckSeat(g, bettor)) break;
      // The ATM takes a withdrawal as a positive amount and a deposit as a negative one.
      Atm(g, bettor, action == 226 ? ToMoney(x) : -ToMoney(x));
      break;
    case 230: {
      if (!ActionNumber(g, x)) break;
      const Money seed = ToMoney(x);
      if (!SeedInRange(g, seed)) {
        Fault(g, kErrSeed);
        break;
      }
      g.Dice.pendingSeed = seed;
      if (!SeedRng(g, true)) Fault(g, kErrSeed);
      break;
    }
    case 300: Swap(g); break;
    case 310: PlaybackRollFile(g); break;
    default: break;
  }
}
