#include "engine/placement.h"

#include "engine/bet_limits.h"
#include "engine/messages.h"

namespace {

// The message that a cut builds up over the stages; nothing is built under SilentMode.
struct Pending {
  bool on = false;  // messages are being built
  std::string text;
  int help = 510;
  int flags = 0;
  bool adjusted = false;  // stage 6 moved the amount

  void Say(std::string s, int helpId, int noticeClass) {
    if (!on) return;
    if (!text.empty()) text += "\n\n";
    text += s;
    help = helpId;
    flags |= noticeClass;
  }
};

constexpr int kRuleClass = msg::kClass1, kLimitClass = msg::kClass2;

bool IsContractBet(int bet) {
  return bet == bet::PassLine || (bet >= bet::Come4 && bet <= bet::Come10) || bet == bet::SevenPoint7;
}

const PayoffRow& RowOf(const Game& g, int bet) { return g.Rules.BetPayoff[bet]; }

Money HeldVig(const Game& g, int seat, int bet) {
  if (bet >= bet::Buy4 && bet <= bet::Buy10) return g.BuyVigHeld[seat][bet - bet::Buy4];
  if (bet >= bet::Lay4 && bet <= bet::Lay10) return g.LayVigHeld[seat][bet - bet::Lay4];
  return Money{};
}

// Vig that the bet would hold at `amount`, counted in OnTable only when charged up front.
Money UpFrontVig(const Game& g, int bet, Money amount) {
  if (bet >= bet::Buy4 && bet <= bet::Buy10)
    return g.Rules.ChargeAllBuy ? ComputeBuyVig(g.Rules, bet, amount) : Money{};
  if (bet >= bet::Lay4 && bet <= bet::Lay10)
    return g.Rules.ChargeAllLay ? ComputeLayVig(g.Rules, bet, amount) : Money{};
  return Money{};
}

Money UpFrontHeld(const Game& g, int seat, int bet) {
  if (bet >= bet::Buy4 && bet <= bet::Buy10) return g.Rules.ChargeAllBuy ? HeldVig(g, seat, bet) : Money{};
  if (bet >= bet::Lay4 && bet <= bet::Lay10) return g.Rules.ChargeAllLay ? HeldVig(g, seat, bet) : Money{};
  return Money{};
}

int HelpTopic(int bet) {
  if (bet == bet::Come || (bet >= bet::Come4 && bet <= bet::Come10Odds)) return 45;
  if (bet == bet::DontPass || bet == bet::DontPassOdds) return 46;
  if (bet == bet::DontCome || (bet >= bet::DontCome4 && bet <= bet::DontCome10Odds)) return 48;
  if (bet == bet::PassLineOdds) return 43;
  return 510;
}

// Pass Line and 7 Point 7 once a point is on, and a Come bet on its number, can't come
// below what was on them when the dice last rolled.
bool IsHeldToBase(const Game& g, int bet) {
  if (bet >= bet::Come4 && bet <= bet::Come10) return true;
  return (bet == bet::PassLine || bet == bet::SevenPoint7) && g.Table.Point != 0;
}

std::string DecreaseText(int bet, bool yours) {
  const std::string who = yours ? "your " : "a ";
  if (bet >= bet::Come4 && bet <= bet::Come10)
    return "You may not decrease or remove " + who + "Come bet which is established on a point.";
  if (bet == bet::SevenPoint7)
    return "You may not decrease or remove " + who + std::string(BetName(bet)) +
           " bet which is established on a point.";
  return "You may not decrease or remove " + who + std::string(BetName(bet)) + " bet while a point is established.";
}

std::string PutBetsNote();

// The seat's adjust setting that governs a bet: Lay, Buy, Place, or all others.
int AdjustKind(int bet) {
  if (bet >= bet::Lay4 && bet <= bet::Lay10) return 0;
  if (bet >= bet::Buy4 && bet <= bet::Buy10) return 1;
  if (bet >= bet::Place4 && bet <= bet::Place10) return 2;
  return 3;
}

// The seat's Auto-Play bias for the bet's family (0 nearest, 1 increase, 2 decrease), or
// -1 for a bet of no biased family.
int AdjustBiasOf(const Game& g, int seat, int bet) {
  if (bet >= bet::Place4 && bet <= bet::Place10) return g.AdjustBias[seat][kBiasPlace];
  if (bet >= bet::Lay4 && bet <= bet::Lay10) return g.AdjustBias[seat][kBiasLay];
  if (bet == bet::PassLineOdds || (bet >= bet::Come4Odds && bet <= bet::Come10Odds))
    return g.AdjustBias[seat][kBiasDoOdds];
  if (bet == bet::DontPassOdds || (bet >= bet::DontCome4Odds && bet <= bet::DontCome10Odds))
    return g.AdjustBias[seat][kBiasDontOdds];
  return -1;
}

// The row a bet will be paid from: the line bets and their odds by the point.
const PayoffRow& ProperRow(const Game& g, int bet) {
  const int p = g.Table.Point;
  const auto& rows = g.Rules.BetPayoff;
  if (p != 0) {
    switch (bet) {
      case bet::PassLine: return rows[PointRow(BetFamily::ComeNumber, p)];
      case bet::DontPass: return rows[PointRow(BetFamily::DontComeNumber, p)];
      case bet::PassLineOdds: return rows[PointRow(BetFamily::ComeOdds, p)];
      case bet::DontPassOdds: return rows[PointRow(BetFamily::DontComeOdds, p)];
      default: break;
    }
  }
  return rows[bet];
}

// Moves the amount to a multiple of the row's y so that a win pays whole: with setting
// 1 to the lower multiple, with 2 to the nearer; a request that reached the maximum
// goes to the lower. The step is y smallest checks; when that gives nothing within the
// limits, the check sizes are tried from the largest down.
Money AdjustForPayoff(Game& g, int seat, int bet, Money amount, Money change, Money minimum, Money maximum,
                      Pending& p) {
  const int setting = g.AdjustForPayoff[seat][AdjustKind(bet)];
  const Money target = amount + change;
  const bool atMaximum = change.raw > 0 && target == maximum;
  if ((setting <= 0 && !atMaximum) || target.raw <= 0) return change;
  const PayoffRow& row = ProperRow(g, bet);
  if (row.PayoffFor.raw <= 0 || row.PayoffPay.raw <= 0 || !row.PayoffFor.IsWhole()) return change;
  const int64_t y = row.PayoffFor.raw / Money::kScale;
  if (IsMultipleOf(target, row.PayoffFor) && IsMultipleOf(target, g.Rules.CheckDenom[1])) return change;
  // With the nearer multiple (setting 2), Auto-Play's bias of the bet's family, when it
  // has one, says which way to go; setting 1 always goes down.
  const int bias = setting == 2 && !atMaximum ? AdjustBiasOf(g, seat, bet) : -1;
  const bool lowerOnly = bias == 2 || (bias < 0 && (setting == 1 || (setting <= 0 && atMaximum)));
  auto pick = [&](Money step) {
    if (step.raw <= 0) return Money{};
    const Money lower = FloorToUnit(target, step), higher = lower + step;
    Money first = lower, second = higher;
    if (bias == 1 || (!lowerOnly && higher - target < target - lower)) std::swap(first, second);
    for (Money c : {first, second}) {
      if (c.raw > 0 && c >= minimum && c <= maximum) return c;
      if (lowerOnly) break;
    }
    return Money{};
  };
  Money chosen = pick(g.Rules.CheckDenom[1] * y);
  for (int d = 5; d >= 1 && chosen.raw == 0; --d) chosen = pick(g.Rules.CheckDenom[d] * y);
  if (chosen.raw > 0) {
    p.adjusted = chosen != target;
    return chosen - amount;
  }
  if (p.on) {
    std::string text = "Unable to auto-adjust bet for proper odds payoff.";
    const Money step = g.Rules.CheckDenom[1] * y;
    if (target >= maximum)
      text += "\nThe maximum bet for proper odds payoff is: $" + MoneyText(FloorToUnit(maximum, step));
    else
      text += "\nThe minimum bet for proper odds payoff is: $" +
              MoneyText(FloorToUnit(minimum + step - Money::FromRaw(1), step));
    p.Say(std::move(text), 510, kLimitClass);
  }
  return change;
}

// Stores the vig that the bet's amount now holds; charged up front, the difference is
// counted in OnTable. At level 4 the change of the charge is told.
void HoldVig(Game& g, int seat, int bet, Pending& p) {
  const bool buy = bet >= bet::Buy4 && bet <= bet::Buy10;
  Money& held = buy ? g.BuyVigHeld[seat][bet - bet::Buy4] : g.LayVigHeld[seat][bet - bet::Lay4];
  const bool upFront = buy ? g.Rules.ChargeAllBuy : g.Rules.ChargeAllLay;
  const Money amount = g.BetAmount[seat][bet];
  const Money vig = buy ? ComputeBuyVig(g.Rules, bet, amount) : ComputeLayVig(g.Rules, bet, amount);
  const Money before = held;
  if (vig == before) return;
  held = vig;
  if (upFront) g.OnTable[seat] += vig - before;
  if (!p.on || !(g.Rules.Notices & kNoticeCharges)) return;
  std::string text;
  if (amount.raw == 0 && upFront) {
    text = "Vig charge returned $" + MoneyText(before);
  } else {
    text = (upFront ? "Total vig charge $" : "If you win, the total vig charge will be $") + MoneyText(vig);
    if (amount.raw > 0 && before.raw > 0)
      text += (vig > before ? "\nVig increased by $" : "\nVig decreased by $") + MoneyText(Abs(vig - before));
  }
  text += "\n" + std::string(BetName(bet));
  p.Say(std::move(text), 510, msg::kClass4);
}

// Says a rule's refusal (when messages are on; the text is made only then) and refuses.
template <class Text>
bool Refuse(Pending& p, Text text, int help) {
  if (p.on) p.Say(text(), help, kRuleClass);
  return true;
}

// The line bets, the Come and Don't Come bets and their odds: when each may be made or
// increased. False for any other bet.
bool RefusesLineAddition(const Game& g, int seat, int bet, bool exceeds, Pending& p) {
  const bool pointOn = g.Table.Point != 0;
  const bool putBets = g.Rules.AllowPutBets;
  switch (bet) {
    case bet::PassLine:
      return pointOn && exceeds && !putBets &&
             Refuse(
                 p,
                 [] {
                   return "You may not make or increase a Pass Line bet while a point is established.\n\n" +
                          PutBetsNote();
                 },
                 HelpTopic(bet));
    case bet::Come:
      return !pointOn &&
             Refuse(
                 p, [] { return std::string("You may not make a Come bet \nuntil a point is established."); }, 45);
    case bet::DontPass:
      return pointOn && exceeds &&
             Refuse(
                 p,
                 [] {
                   return std::string("You may not make or increase a Don't Pass bet while a point is established.");
                 },
                 46);
    case bet::DontCome:
      return !pointOn &&
             Refuse(
                 p, [] { return std::string("You may not make a Don't Come bet until a point is established."); }, 48);
    case bet::PassLineOdds:
      return (g.BetAmount[seat][bet::PassLine].raw <= 0 || !pointOn) &&
             Refuse(
                 p,
                 [] {
                   return std::string(
                       "You may not make a Pass Line Odds bet unless you also have a Pass Line bet and a point is "
                       "established.");
                 },
                 43);
    case bet::DontPassOdds:
      return (g.BetAmount[seat][bet::DontPass].raw <= 0 || !pointOn) &&
             Refuse(
                 p,
                 [] {
                   return std::string(
                       "You may not make a Don't Pass Odds bet unless you also have a Don't Pass bet and a point is "
                       "established.");
                 },
                 46);
    default: break;
  }
  if (bet >= bet::Come4 && bet <= bet::Come10)
    return !g.Moving && exceeds && !putBets &&
           Refuse(
               p,
               [] { return "You may not make or increase a Come bet directly on a point number.\n\n" + PutBetsNote(); },
               45);
  if (bet >= bet::DontCome4 && bet <= bet::DontCome10)
    return !g.Moving && exceeds &&
           Refuse(
               p,
               [] { return std::string("You may not make or increase a Don't Come bet directly on a point number."); },
               48);
  if ((bet >= bet::Come4Odds && bet <= bet::Come10Odds) || (bet >= bet::DontCome4Odds && bet <= bet::DontCome10Odds))
    return g.BetAmount[seat][bet - 6].raw <= 0 && Refuse(
                                                      p,
                                                      [&] {
                                                        return "You may not make a " + std::string(BetName(bet)) +
                                                               " bet until you've established a " +
                                                               std::string(BetName(bet - 6)) + " bet.";
                                                      },
                                                      bet >= bet::Come4Odds ? 45 : 48);
  return false;
}

// The bets whose count, marks or hand has begun: none may be made or increased until it
// starts again. False for any other bet.
bool RefusesMarkedAddition(const Game& g, int bet, bool exceeds, Pending& p) {
  if (!exceeds) return false;
  const TableState& t = g.Table;
  // "You may not make or increase a <bet> bet <why>."
  const auto refuse = [&](const char* why) {
    return Refuse(
        p, [&] { return "You may not make or increase a " + std::string(BetName(bet)) + " bet " + why; }, 510);
  };
  switch (bet) {
    case bet::AllSmall:
    case bet::AllTall:
    case bet::MakeAll: {
      const int marks = bet == bet::AllSmall ? 0x7C : bet == bet::AllTall ? 0x1F00 : 0x1F7C;
      return (t.AllNumbersMask & marks) &&
             Refuse(
                 p,
                 [&] {
                   const char* kind = bet == bet::MakeAll ? "a " : "an ";
                   const char* adjective = bet == bet::AllSmall ? "small " : bet == bet::AllTall ? "tall " : "";
                   return "You may not make or increase " + std::string(kind) + std::string(BetName(bet)) +
                          " bet while any " + adjective + "numbers are marked.";
                 },
                 510);
    }
    case bet::FourRollsNo7: return t.FourRollCount > 0 && refuse("if the count is in progress.");
    case bet::Point7:
    case bet::SevenPoint7: return t.Point != 0 && refuse("unless the shooter is on a come-out roll.");
    case bet::HotRoller:
      return g.Stats.RollCount[kSessionScope][0] > 0 && t.DiceTotal != 7 && refuse("until the next seven rolls.");
    case bet::SharpShooter:
    case bet::RideTheLine:
    case bet::Fire: return g.Stats.RollCount[kHandScope][0] > 0 && refuse("after the shooter has started a hand.");
    default: break;
  }
  if (bet >= bet::Repeater2 && bet <= bet::Repeater12) {
    const int n = bet - bet::Repeater2 + (bet - bet::Repeater2 < 5 ? 2 : 3);
    return t.RepeaterCount[n] > 0 && refuse("while any hits are marked.");
  }
  return false;
}

// The rule of the bet for an added amount; true when it refuses (the message is said).
// A contract bet may not be reduced; then each kind of bet has its own rule.
bool RefusesAddition(const Game& g, int seat, int bet, Money amount, Money base, Money change, Pending& p) {
  const bool pointOn = g.Table.Point != 0;
  if (amount < base && (bet == bet::PassLine || bet == bet::SevenPoint7) && pointOn)
    return Refuse(
        p, [&] { return DecreaseText(bet, false); }, 250);
  if (amount < base && bet >= bet::Come4 && bet <= bet::Come10 && !g.Moving)
    return Refuse(
        p, [&] { return DecreaseText(bet, false); }, 250);
  const bool exceeds = amount + change > base;
  return RefusesLineAddition(g, seat, bet, exceeds, p) || RefusesMarkedAddition(g, bet, exceeds, p);
}

std::string PutBetsNote() { return "(Unless you check \"Allow Put Bets\" on the Configuration screen.)"; }

// CheckStacks are no wagers: none of the table's stages, only their own limit, which is
// all that a message is made for.
constexpr Money kCheckStackLimit = Money::FromRaw(999999999999999999LL);

// A change that the limit cuts, out of line: CheckStackChange stays small.
[[gnu::noinline]] Money CheckStackChangeCut(Game& g, int seat, int row, Money change) {
  const Money now = g.BetAmount[seat][row];
  const Money next = now + change;
  Pending p;
  p.on = !g.SilentMode && g.Ui != nullptr;
  const Money bound = next > kCheckStackLimit ? kCheckStackLimit : -kCheckStackLimit;
  change = bound - now;
  if (p.on) {
    if (bound < Money{}) p.Say("The minimum CheckStack value is:\n" + DollarText(bound), 510, kLimitClass);
    else
      p.Say("The maximum CheckStack #" + std::to_string(row - kCheckStackRow) + " value is:\n" + DollarText(bound), 510,
            kLimitClass);
    p.text += change.raw == 0 ? "\nwhich is already stacked." : "\nwhich is being stacked.";
  }
  g.BetAmount[seat][row] += change;
  NoteCheckStackWrite(g, seat, row);
  if (p.on) Tell(g, p.text, g.PlayerName[seat], p.help, msg::kOk | msg::kHelp | p.flags);
  return change;
}

Money CheckStackChange(Game& g, int seat, int row, Money change) {
  const Money next = g.BetAmount[seat][row] + change;
  if (next > kCheckStackLimit || next < -kCheckStackLimit) return CheckStackChangeCut(g, seat, row, change);
  g.BetAmount[seat][row] = next;
  NoteCheckStackWrite(g, seat, row);
  return change;
}

}  // namespace

WorkingState RestingState(const Game& g, int seat, int bet) { return IsComeOut(g) ? g.DefaultWorking[seat][bet] : 1; }

void ResetWorkingState(Game& g, int seat, int bet) {
  if (bet < 1 || bet > kBets) return;
  g.BetWorking[seat][bet] = RestingState(g, seat, bet);
}

void SetWorkingState(Game& g, int seat, int bet, WorkingState state) {
  if (seat < 1 || seat >= kSeats || bet < 1 || bet > kBets || g.BetWorking[seat][bet] == state) return;
  g.BetWorking[seat][bet] = state;
  if (g.Online) g.Online->WorkingChanged(seat, bet);
}

void CommitAmount(Game& g, int seat, int bet, Money delta) {
  Money& amount = g.BetAmount[seat][bet];
  amount += delta;
  g.OnTable[seat] += delta;
  if (bet <= kBets) {
    const uint16_t before = g.BetHolders[bet];
    const uint16_t bit = static_cast<uint16_t>(1u << seat);
    uint64_t& word = g.SeatBets[seat][bet >> 6];
    const uint64_t seatBit = uint64_t{1} << (bet & 63);
    if (amount.raw > 0) {
      g.BetHolders[bet] |= bit;
      word |= seatBit;
    } else {
      g.BetHolders[bet] &= static_cast<uint16_t>(~bit);
      word &= ~seatBit;
    }
    if (bet >= bet::Field) g.HeldPropBets += (before == 0) - (g.BetHolders[bet] == 0);
  } else {
    NoteCheckStackWrite(g, seat, bet);
  }
  if (amount.raw == 0) ResetWorkingState(g, seat, bet);
}

Money GetMinimum(const Game& g, int bet) {
  const RuleSet& r = g.Rules;
  if (bet >= bet::CAndE) return r.MinPlacardPropBet;
  const PayoffRow& row = RowOf(g, bet);
  if (row.PayoffPay < row.PayoffFor && row.PayoffPay.raw > 0 && !r.AllowPennyPayoffs) {
    Money u = r.CheckDenom[1];
    // So that a win pays at least the table minimum.
    Money m = MulDivMoney(r.MinPlacardBet, row.PayoffFor, row.PayoffPay);
    if (u.raw > 0 && !IsMultipleOf(m, u)) m = FloorToUnit(m, u) + u;
    return m;
  }
  return r.MinPlacardBet;
}

Money GetMaximum(const Game& g, int seat, int bet) {
  int point = 0;
  Money flat;
  switch (bet) {
    case bet::PassLineOdds:
      point = g.Table.Point;
      flat = g.BetAmount[seat][bet::PassLine];
      break;
    case bet::DontPassOdds:
      point = g.Table.Point;
      flat = g.BetAmount[seat][bet::DontPass];
      break;
    default:
      if ((bet >= bet::Come4Odds && bet <= bet::Come10Odds) ||
          (bet >= bet::DontCome4Odds && bet <= bet::DontCome10Odds)) {
        point = PointOfRow(bet);
        flat = g.BetAmount[seat][bet - 6];
      } else {
        return RuleMaximum(g.Rules, bet);
      }
  }
  if (point == 0) return Money{};
  return OddsLimit(g.Rules, bet, point, flat);
}

namespace {

// 1. A change is a whole number of the smallest check, rounded away from zero, and never
// takes more than the bet holds.
Money RoundToChecks(const Game& g, Money amount, Money change) {
  const Money u = g.Rules.CheckDenom[1];
  if (u.raw > 0 && !IsMultipleOf(change, u))
    change = change.raw > 0 ? FloorToUnit(change, u) + u : FloorToUnit(change, u);
  if (amount + change < Money{}) change = -amount;
  return change;
}

// 2 and 3. Contract and timing rules: what of the change they allow; `ended` when they
// leave nothing to do.
Money ApplyContractRules(const Game& g, int seat, int bet, Money amount, Money change, Pending& p, bool& ended) {
  const Money base = g.ContractBase[seat][bet];
  if (change.raw > 0) {
    if (RefusesAddition(g, seat, bet, amount, base, change, p)) {
      change = base - amount;
      if (change.raw == 0) ended = true;
    }
  } else if (IsHeldToBase(g, bet)) {
    if (change.raw < 0) {
      if (amount == base) {
        if (p.on) p.Say(DecreaseText(bet, false), 250, kRuleClass);
        change = Money{};
        ended = true;
      } else if (amount + change < base) {
        // A Put increase can come off until the next roll makes it part of the base.
        change = base - amount;
      }
    } else if (amount < base) {
      if (p.on) p.Say(DecreaseText(bet, true), 250, kRuleClass);
      change = base - amount;
    }
  }
  return change;
}

// 4. Minimum: an increase below it goes up to it, a decrease below it takes the bet down.
Money ApplyMinimum(int bet, Money amount, Money change, Money minimum, Pending& p) {
  const Money next = amount + change;
  if (next.raw <= 0 || next >= minimum) return change;
  if (change.raw <= 0) return -amount;
  if (p.on) p.Say("The minimum " + std::string(BetName(bet)) + " bet is $" + MoneyText(minimum), 510, kLimitClass);
  return minimum - amount;
}

// 5. Maximum: a contract bet made under a higher limit stays as it was made.
Money ApplyMaximum(const Game& g, int seat, int bet, Money amount, Money change, Money maximum, Pending& p) {
  if (amount + change <= maximum) return change;
  const Money base = g.ContractBase[seat][bet];
  std::string text;
  if (p.on) text = "The maximum " + std::string(BetName(bet)) + " bet is $" + MoneyText(maximum);
  if (IsContractBet(bet) && bet != bet::SevenPoint7 && base > maximum) {
    change = base - amount;
    if (p.on)
      text += "\n\nHowever, because it's a contract bet and was established at $" + MoneyText(base) +
              " when a higher limit was allowed, it must remain unchanged until it resolves.";
  } else if (maximum - amount < change) {
    change = maximum - amount;
  }
  if (p.on) p.Say(std::move(text), 510, kLimitClass);
  return change;
}

// Whether the seat's bankroll covers its bets with the change made, up-front vig included.
bool FitsBankroll(const Game& g, int seat, int bet, Money amount, Money change) {
  return g.OnTable[seat] + change + UpFrontVig(g, bet, amount + change) - UpFrontHeld(g, seat, bet) <= g.Bankroll[seat];
}

// 7. Bankroll: what the seat's free bankroll allows, up-front vig included, in whole checks
// and never below the minimum (worked out here when the caller has none).
Money FitBankroll(const Game& g, int seat, int bet, Money amount, Money change, const Money* knownMinimum, Pending& p) {
  if (g.AllowNegBankroll[seat]) return change;
  const Money u = g.Rules.CheckDenom[1];
  const Money held = UpFrontHeld(g, seat, bet);
  const Money bankroll = g.Bankroll[seat];
  if (FitsBankroll(g, seat, bet, amount, change)) return change;
  const Money minimum = knownMinimum ? *knownMinimum : GetMinimum(g, bet);
  const bool hadOthers = g.OnTable[seat] - amount - held > Money{};
  change = bankroll - g.OnTable[seat];
  if (amount + change < Money{}) change = -amount;
  while (u.raw > 0 && amount + change > Money{} && !FitsBankroll(g, seat, bet, amount, change)) change -= u;
  if (amount + change < Money{}) change = -amount;
  const bool belowMin = amount + change > Money{} && amount + change < minimum;
  if (belowMin) change = -amount;
  if (p.on) {
    const std::string name(BetName(bet));
    std::string t = "You don't have enough bankroll remaining to bet the ";
    t += belowMin || amount + change == Money{} ? "minimum on the " + name + "."
                                                : "full amount requested on the " + name + ".";
    t += "\n\nYour options are: \n";
    if (hadOthers) t += "      - Bet less on other bets.\n";
    t += "      - Make a withdrawal from the ATM.\n      - Allow negative bankroll.";
    p.Say(std::move(t), 130, kLimitClass);
  }
  return change;
}

// A change that leaves nothing on the bet (taking it down) meets no limit: the minimum bounds
// only an amount above 0, the maximum is never below 0 (an odds limit never is; any other
// bet's is at least the table minimum, when that isn't below 0), and the payoff adjustment
// works only on an amount above 0. Limits then needn't be worked out at all.
bool ComesDown(const Game& g, int bet, Money amount, Money change) {
  if (change.raw > 0 || (amount + change).raw > 0) return false;
  const bool odds = bet == bet::PassLineOdds || bet == bet::DontPassOdds ||
                    (bet >= bet::Come4Odds && bet <= bet::Come10Odds) ||
                    (bet >= bet::DontCome4Odds && bet <= bet::DontCome10Odds);
  return odds || g.Rules.MinPlacardBet.raw >= 0;
}

// After a cut by a limit, the tail tells what came of the request.
void TellOutcome(Money amount, Money change, Pending& p) {
  if (!p.on || !(p.flags & kLimitClass)) return;
  const Money result = amount + change;
  if (change.raw == 0) p.text += "\n" + DollarText(result) + " which is already bet.";
  else if (p.adjusted) p.text += "\nwhich will be bet and auto-adjusted to " + DollarText(result) + ".";
  else p.text += "\n" + DollarText(result) + " which will be bet.";
}

// Steps 1 to 7: what of the requested change rounding, the contract rules, the limits and
// the bankroll allow.
Money AllowedChange(Game& g, int seat, int bet, Money amount, Money change, Pending& p) {
  change = RoundToChecks(g, amount, change);
  bool ended = false;
  change = ApplyContractRules(g, seat, bet, amount, change, p, ended);
  if (!ended && ComesDown(g, bet, amount, change)) {
    // Nothing to bound: 4 to 6 leave the change as it is.
    change = FitBankroll(g, seat, bet, amount, change, nullptr, p);
  } else if (!ended) {
    const Money minimum = GetMinimum(g, bet);
    change = ApplyMinimum(bet, amount, change, minimum, p);
    const Money maximum = GetMaximum(g, seat, bet);
    change = ApplyMaximum(g, seat, bet, amount, change, maximum, p);
    // 6. Proper odds payoff.
    change = AdjustForPayoff(g, seat, bet, amount, change, minimum, maximum, p);
    change = FitBankroll(g, seat, bet, amount, change, &minimum, p);
  }
  TellOutcome(amount, change, p);
  return change;
}

// The whole bet coming down (nothing, for an empty one) where no contract holds it and the
// bets left fit the bankroll: steps 1 to 7 leave such a change as it is and say nothing.
// Decided bets come down so, and the Place and Buy bets on each new point, mostly empty.
bool PlainTakeDown(const Game& g, int seat, int bet, Money amount, Money change) {
  if (amount.raw < 0 || change.raw != -amount.raw || IsHeldToBase(g, bet) || !ComesDown(g, bet, amount, change))
    return false;
  return g.AllowNegBankroll[seat] || FitsBankroll(g, seat, bet, amount, change);
}

// The stages of a change to a wager of an occupied seat that may change it; out of line,
// so that a CheckStack write takes none of its set-up.
[[gnu::noinline]] Money ChangeWager(Game& g, int seat, int bet, Money change) {
  Pending p;
  p.on = !g.SilentMode && g.Ui != nullptr;
  const Money amount = g.BetAmount[seat][bet];

  if (!PlainTakeDown(g, seat, bet, amount, change)) change = AllowedChange(g, seat, bet, amount, change, p);

  // 8. Apply.
  if (change.raw != 0) CommitAmount(g, seat, bet, change);

  // 9. Vigorish of Buy and Lay, held at the new amount.
  if ((bet >= bet::Buy4 && bet <= bet::Buy10) || (bet >= bet::Lay4 && bet <= bet::Lay10)) HoldVig(g, seat, bet, p);

  // 10. A Repeater's hits are forgotten when nobody holds it any more.
  if (bet >= bet::Repeater2 && bet <= bet::Repeater12 && !AnySeatHolds(g, bet)) {
    const int i = bet - bet::Repeater2;
    g.Table.RepeaterCount[i < 5 ? i + 2 : i + 3] = 0;
  }

  if (p.on && !p.text.empty()) Tell(g, p.text, g.PlayerName[seat], p.help, msg::kOk | msg::kHelp | p.flags);
  // 11. The other side of an online table hears of it; the windows that show bets follow.
  if (change.raw != 0 && g.Online) g.Online->BetChanged(seat, bet);
  if (change.raw != 0 && p.on) g.Ui->Refresh({"frmBetResults", "frmCheckStacks"});
  return change;
}

}  // namespace

Money ChangeBet(Game& g, int seat, int bet, Money change) {
  // Rows 108..199 hold no bet, nothing lies beyond the CheckStacks, and nobody bets for an
  // empty seat.
  if (seat < 0 || seat >= kSeats || bet < 1 || (bet > kBets && bet < kCheckStackRow) || bet >= kBetRows ||
      !SeatOccupied(g, seat))
    return {};
  // Online, a seat played at another machine changes only by that machine's word.
  if (g.Online && !g.Online->MayChangeBets(seat)) return {};
  if (bet >= kCheckStackRow) return CheckStackChange(g, seat, bet, change);
  return ChangeWager(g, seat, bet, change);
}

Money PlaceBet(Game& g, int seat, int bet, Money change, int32_t placementA, int32_t placementB) {
  if (g.Online) {
    const BetRefusal refused = g.Online->RefuseBet(seat, bet);
    if (!refused.text.empty()) {
      Tell(g, refused.text, refused.title, 0, msg::kOk);
      return Money{};
    }
  }
  g.PlacementA[seat][bet] = placementA;
  g.PlacementB[seat][bet] = placementB;
  const Money applied = ChangeBet(g, seat, bet, change);
  if (applied.raw != 0 && !g.SilentMode && g.Ui) {
    if (!g.CheckSound.empty()) g.Ui->PlaySound(g.CheckSound, false);
    g.Ui->Refresh({"table"});
  }
  return applied;
}

Money TakeDown(Game& g, int seat, int bet) { return ChangeBet(g, seat, bet, -g.BetAmount[seat][bet]); }

Money TakeMaximum(Game& g, int seat, int bet) {
  Money before = g.BetAmount[seat][bet];
  bool silent = g.SilentMode;
  g.SilentMode = true;  // every message off
  ChangeBet(g, seat, bet, -before);
  ChangeBet(g, seat, bet, Money::Dollars(9999999));
  g.SilentMode = silent;
  return g.BetAmount[seat][bet] - before;
}
