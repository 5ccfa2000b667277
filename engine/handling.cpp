#include "engine/handling.h"

#include <cmath>

#include "engine/messages.h"
#include "engine/placement.h"
#include "storage/language_text.h"

namespace {

const PayoffRow& Row(const Game& g, int bet) { return g.Rules.BetPayoff[bet]; }

// The settle dialog; returns the chosen action.
int AskByDialog(Game& g, const Settlement& s, bool winner, bool notWorking) {
  const int seat = s.seat, bet = s.bet;
  const PayoffRow& row = s.row;
  SettleRequest req;
  req.Title = notWorking ? "wasn't working!" : winner ? "WINNER" : std::string(LanguageText(g.LanguageId, 36));
  req.Labels.push_back(g.PlayerName[seat] + " " + std::string(LanguageText(g.LanguageId, winner ? 35 : 36)));
  req.Labels.push_back(std::string(BetName(bet)) + " " + DollarText(g.BetAmount[seat][bet]));
  if (!notWorking) {
    std::string at = winner ? "Payoff at " : "Loss at ";
    if (row.PayoffToFor.raw != 0) at += MoneyText(row.PayoffPay) + " to " + MoneyText(row.PayoffFor);
    else at += MoneyText(row.PayoffPay + row.PayoffFor) + " for " + MoneyText(row.PayoffFor);
    req.Labels.push_back(at);
    const Money amount = g.BetAmount[seat][bet];
    // The split bets win one part and lose the rest.
    struct Split {
      int bet, parts;
      const char *part, *rest;
    };
    static const Split kSplits[] = {{bet::CAndE, 2, "1/2 of bet:", "Less 1/2 of bet:"},
                                    {bet::Horn, 4, "1/4 of bet:", "Less 3/4 of bet:"},
                                    {bet::World, 5, "1/5 of bet:", "Less 4/5 of bet:"}};
    for (const Split& s : kSplits) {
      if (s.bet != bet || !winner) continue;
      const double part = amount.ToDouble() / s.parts;
      req.Labels.push_back(std::string(s.part) + " " +
                           DollarText(Money::FromDouble(part * row.PayoffPay.ToDouble() / row.PayoffFor.ToDouble())));
      req.Labels.push_back(std::string(s.rest) + " " + DollarText(Money::FromDouble(part * (s.parts - 1))));
    }
    // The hand bets tell their count.
    const TableState& t = g.Table;
    auto count = [&](int n, const char* one, const char* many) {
      req.Labels.push_back("(" + std::to_string(n) + (n == 1 ? one : many));
    };
    if (bet == bet::Fire) count(t.FireCount, " point made)", " points made)");
    if (bet == bet::HotRoller) count(t.HotRollerCount, " points made)", " points made)");
    if (bet == bet::SharpShooter) count(t.PointsWon, " point won)", " points won)");
    if (bet == bet::RideTheLine) count(t.PassesMade, " pass made)", " passes made)");
    // Buy and Lay: the payoff before vig, and the vig.
    const bool buy = bet >= bet::Buy4 && bet <= bet::Buy10, lay = bet >= bet::Lay4 && bet <= bet::Lay10;
    if (buy || lay) {
      const Money held = s.vig;
      const Money pct = buy ? g.Rules.BuyVigPct : g.Rules.LayVigPct;
      req.Labels.push_back("Net payoff: " + DollarText(Abs(s.payoff + held)));
      req.Labels.push_back(MoneyText(MulMoney(pct, Money::Dollars(100))) + "% vig: " + DollarText(held));
    }
    bool rounded = std::fabs(s.unrounded - s.payoff.ToDouble()) > 1e-9;
    std::string head = winner ? (rounded ? "Net payoff (rounded): " : "Net payoff: ")
                              : (rounded ? "Net loss (rounded): " : "Net loss: ");
    req.Labels.push_back(head + DollarText(Abs(s.payoff)));
    if (!winner && (bet == bet::CAndE || bet == bet::Horn || bet == bet::World) && amount + s.payoff > Money{})
      req.Labels.push_back("Remainder: " + DollarText(amount + s.payoff));
  }
  const std::string unit = MoneyText(FindPressUnit(g, seat, bet));
  const bool returned = s.returned;
  auto add = [&](std::string caption, int action) {
    req.Buttons.push_back(std::move(caption));
    req.Actions.push_back(action);
  };
  if (returned) {
    add("&Take Returned Bet", kTakeDown);
  } else if (notWorking) {
    add("&No Bet/Take Back", kTakeDown);
    add("&Same Bet", kSameBet);
    add("Press &1 Unit - Add $" + unit + " to Bet", kPressUnitOrRemainder);
    add("Press - &Double Bet", kPressDoubleOrUnit);
    add("Take M&ax Odds", kTakeMaxOdds);
  } else if (winner) {
    add("Take Bet and Winnings", kTakeDown);
    add("&Same Bet - Take Winnings", kSameBet);
    add("Press 1 &Unit - Add $" + unit + " to Bet", kPressUnitOrRemainder);
    add("Press - Add Winnings to &Double Bet", kPressDoubleOrUnit);
    add("Parlay - Add &All Winnings to Bet", kParlayOrDouble);
  } else {
    add("&No Bet", kTakeDown);
    add("&Same Bet", kSameBet);
    add("Bet &Remainder", kPressUnitOrRemainder);
    add("Press &1 Unit - Add $" + unit, kPressDoubleOrUnit);
    add("&Double Bet", kParlayOrDouble);
  }
  // The rule rows, with the values the seat last used.
  if (!returned) {
    const int base = winner && !notWorking ? kRuleModifyWin : kRuleModifyLose;
    const SettleRule& modify = g.SettleRules[seat][base];
    const SettleRule& set = g.SettleRules[seat][base + 1];
    req.RuleRows = true;
    req.Seat = seat;
    req.RuleRow = base;
    req.ModifyOperator = modify.Operator;
    req.ModifyAmount = modify.Operand;
    req.ModifyUnits = modify.Units;
    req.BetAmount = set.Operand;
    req.BetUnits = set.Units;
  }
  return g.Ui->AskSettle(req);
}

int ChooseAction(Game& g, const Settlement& s, int seatAction, bool winner, bool notWorking) {
  if (seatAction != kAskByDialog) return seatAction;
  // Nobody to ask, or a run that no dialog may stop: the bet comes down.
  if (g.SilentMode || g.Auto.AutoRollActive || g.Ui == nullptr) return kTakeDown;
  return AskByDialog(g, s, winner, notWorking);
}

// A report of an automatic action at message level 4.
void Report(Game& g, int seat, int bet, const char* title, Money before) {
  if (g.SilentMode || !(g.Rules.Notices & kNoticeCharges)) return;
  if (g.AutoHandleWin[seat] == kAskByDialog && g.AutoHandleLose[seat] == kAskByDialog) return;
  Money after = g.BetAmount[seat][bet];
  std::string text = std::string(BetName(bet)) + " bet ";
  if (after > before) text += "increased by: $" + MoneyText(after - before);
  else if (after < before) text += "decreased by: $" + MoneyText(before - after);
  else text += "remains the same.";
  Tell(g, text, title, 500, msg::kOk | msg::kHelp | msg::kClass4);
}

}  // namespace

Money FindPressUnit(const Game& g, int seat, int bet) {
  const Money amount = g.BetAmount[seat][bet];
  const Money y = Row(g, bet).PayoffFor;
  Money unit;
  for (int d = 5; d >= 1; --d) {
    unit = MulMoney(g.Rules.CheckDenom[d], y);
    if (unit <= amount && IsMultipleOf(amount, unit)) return unit;
  }
  return unit;
}

namespace {

void SameBet(Game& g, const Settlement& s) {
  Money before = g.BetAmount[s.seat][s.bet];
  ChangeBet(g, s.seat, s.bet, Money{});
  Report(g, s.seat, s.bet, "Same Bet", before);
}

void PressUnit(Game& g, const Settlement& s) {
  Money before = g.BetAmount[s.seat][s.bet];
  ChangeBet(g, s.seat, s.bet, FindPressUnit(g, s.seat, s.bet));
  Report(g, s.seat, s.bet, "Press 1 Unit", before);
}

void PressDouble(Game& g, const Settlement& s) {
  Money before = g.BetAmount[s.seat][s.bet];
  ChangeBet(g, s.seat, s.bet, before);
  Report(g, s.seat, s.bet, "Press Double", before);
}

void Parlay(Game& g, const Settlement& s) {
  Money before = g.BetAmount[s.seat][s.bet];
  std::array<int32_t, 4> saved = g.AdjustForPayoff[s.seat];
  g.AdjustForPayoff[s.seat].fill(2);
  if (s.payoff.raw == 0) TakeMaximum(g, s.seat, s.bet);
  else ChangeBet(g, s.seat, s.bet, s.payoff);
  g.AdjustForPayoff[s.seat] = saved;
  Report(g, s.seat, s.bet, "Parlay", before);
}

double UnitFactor(const Game& g, int bet, const SettleRule& rule, Money prev) {
  if (rule.Units == 0) return 1.0;
  if (rule.Units == 1) return prev.ToDouble() / 100.0;
  int d = std::min(rule.Units - 1, 5);
  return g.Rules.CheckDenom[d].ToDouble() * Row(g, bet).PayoffFor.ToDouble();
}

void ApplyRule(Game& g, const Settlement& s, int row) {
  const int seat = s.seat, bet = s.bet;
  const SettleRule& rule = g.SettleRules[seat][row];
  const Money prev = g.BetAmountStartOfRoll[seat][bet];
  const double p = prev.ToDouble(), op = rule.Operand.ToDouble();
  const double factor = UnitFactor(g, bet, rule, prev);
  double change = 0;
  switch (rule.Operator) {
    case 0: change = op * factor; break;
    case 1: change = -op * factor; break;
    case 2: change = p * op * (rule.Units == 1 ? 0.01 : factor) - p; break;
    case 3: change = op == 0 ? 0 : p / (op * factor) - p; break;
    default: break;
  }
  ChangeBet(g, seat, bet, Money::FromDouble(change));
}

void SetAmount(Game& g, const Settlement& s, int row) {
  const int seat = s.seat, bet = s.bet;
  const SettleRule& rule = g.SettleRules[seat][row];
  TakeDown(g, seat, bet);
  double factor = 1.0;
  if (rule.Units > 0) {
    int d = std::min(std::max(rule.Units - 1, 1), 5);
    double check = g.Rules.CheckDenom[d].ToDouble();
    factor = check * Row(g, bet).PayoffPay.ToDouble() * (check / g.Rules.CheckDenom[1].ToDouble());
  }
  ChangeBet(g, seat, bet, Money::FromDouble(rule.Operand.ToDouble() * factor));
}

// Online, the stake of a seat played at another machine stays until that machine's
// word comes; a bet that must come down comes down everywhere alike.
bool StakeDecidedElsewhere(Game& g, const Settlement& s) {
  return g.Online && !s.returned && g.Online->StakeOf(s.seat) == StakeDecision::Elsewhere;
}

// The chosen action is out of the table's range, or says to take the bet down.
bool TakesDown(const Settlement& s, int action, int highest) {
  return s.returned || action == kTakeDown || action > highest || action < 0;
}

}  // namespace

void HandleWinner(Game& g, const Settlement& s) {
  if (StakeDecidedElsewhere(g, s)) return;
  const int action = ChooseAction(g, s, g.AutoHandleWin[s.seat], true, false);
  if (TakesDown(s, action, kSetToAmount)) {
    TakeDown(g, s.seat, s.bet);
    return;
  }
  switch (action) {
    case kSameBet: SameBet(g, s); break;
    case kPressUnitOrRemainder: PressUnit(g, s); break;
    case kPressDoubleOrUnit: PressDouble(g, s); break;
    case kParlayOrDouble: Parlay(g, s); break;
    case kModifyByRule: ApplyRule(g, s, kRuleModifyWin); break;
    case kSetToAmount: SetAmount(g, s, kRuleSetWin); break;
    default: TakeDown(g, s.seat, s.bet); break;
  }
}

void HandleLoser(Game& g, const Settlement& s) {
  if (StakeDecidedElsewhere(g, s)) return;
  const int action = ChooseAction(g, s, g.AutoHandleLose[s.seat], false, false);
  if (TakesDown(s, action, kSetToAmount)) {
    TakeDown(g, s.seat, s.bet);
    return;
  }
  switch (action) {
    case kSameBet: SameBet(g, s); break;
    case kPressUnitOrRemainder: {
      // Bet the remainder: what was on it before the roll plus this (negative) result.
      const Money remainder = g.BetAmountStartOfRoll[s.seat][s.bet] + s.payoff;
      TakeDown(g, s.seat, s.bet);
      if (remainder.raw > 0) ChangeBet(g, s.seat, s.bet, remainder);
      break;
    }
    case kPressDoubleOrUnit: PressUnit(g, s); break;
    case kParlayOrDouble: PressDouble(g, s); break;
    case kModifyByRule: ApplyRule(g, s, kRuleModifyLose); break;
    case kSetToAmount: SetAmount(g, s, kRuleSetLose); break;
    default: TakeDown(g, s.seat, s.bet); break;
  }
}

void HandleNotWorking(Game& g, int seat, int bet) {
  int flat = 0;
  if (bet == bet::PassLineOdds) flat = bet::PassLine;
  else if (bet == bet::DontPassOdds) flat = bet::DontPass;
  else if ((bet >= bet::Come4Odds && bet <= bet::Come10Odds) ||
           (bet >= bet::DontCome4Odds && bet <= bet::DontCome10Odds))
    flat = bet - 6;
  Settlement s;
  s.seat = seat;
  s.bet = bet;
  s.stake = g.BetAmount[seat][bet];
  s.row = Row(g, bet);
  s.returned = flat == 0 || g.BetAmount[seat][flat].raw <= 0 || !g.Rules.AllowPutBets;
  if (StakeDecidedElsewhere(g, s)) return;
  const bool asWinner = flat != 0 && g.BetStreak[1][seat][flat] >= 2;
  const int seatAction = asWinner ? g.AutoHandleWin[seat] : g.AutoHandleLose[seat];
  const int action = ChooseAction(g, s, seatAction, asWinner, true);
  if (action != kTakeMaxOdds && TakesDown(s, action, kSetToAmount)) {
    TakeDown(g, seat, bet);
    return;
  }
  if (s.returned) {
    TakeDown(g, seat, bet);
    return;
  }
  switch (action) {
    case kSameBet: SameBet(g, s); break;
    case kPressUnitOrRemainder: PressUnit(g, s); break;
    case kPressDoubleOrUnit:
    case kParlayOrDouble: PressDouble(g, s); break;
    case kTakeMaxOdds: TakeMaximum(g, seat, bet); break;
    case kModifyByRule: ApplyRule(g, s, kRuleModifyLose); break;
    case kSetToAmount: SetAmount(g, s, kRuleSetLose); break;
    default: TakeDown(g, seat, bet); break;
  }
}
