#include "engine/handling.h"

#include <cmath>

#include "engine/messages.h"
#include "engine/placement.h"
#include "storage/language_text.h"

namespace {

const PayoffRow& Row(const Game& g, int bet) { return g.Rules.BetPayoff[bet]; }

// The settle dialog; returns the chosen action.
int AskByDialog(Game& g, int seat, bool winner, bool notWorking) {
  const int bet = g.BetInHand;
  // The row that paid, as settling left it in the scratch row.
  const PayoffRow& row = notWorking ? Row(g, bet) : g.Rules.BetPayoff[0];
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
      const Money held = g.VigInHand;
      const Money pct = buy ? g.Rules.BuyVigPct : g.Rules.LayVigPct;
      req.Labels.push_back("Net payoff: " + DollarText(Abs(g.Payoff + held)));
      req.Labels.push_back(MoneyText(MulMoney(pct, Money::Dollars(100))) + "% vig: " + DollarText(held));
    }
    bool rounded = std::fabs(g.PayoffUnrounded - g.Payoff.ToDouble()) > 1e-9;
    std::string head = winner ? (rounded ? "Net payoff (rounded): " : "Net payoff: ")
                              : (rounded ? "Net loss (rounded): " : "Net loss: ");
    req.Labels.push_back(head + DollarText(Abs(g.Payoff)));
    if (!winner && (bet == bet::CAndE || bet == bet::Horn || bet == bet::World) && amount + g.Payoff > Money{})
      req.Labels.push_back("Remainder: " + DollarText(amount + g.Payoff));
  }
  const std::string unit = MoneyText(FindPressUnit(g, seat, bet));
  const bool returned = g.Returned;
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

int ChooseAction(Game& g, int seat, int seatAction, bool winner, bool notWorking) {
  if (seatAction != kAskByDialog) return seatAction;
  if (g.SilentMode || g.Ui == nullptr) return kTakeDown;  // nobody to ask
  return AskByDialog(g, seat, winner, notWorking);
}

// A report of an automatic action at message level 4.
void Report(Game& g, int seat, const char* title, Money before) {
  if (g.SilentMode || !(g.Rules.Notices & kNoticeCharges)) return;
  if (g.AutoHandleWin[seat] == kAskByDialog && g.AutoHandleLose[seat] == kAskByDialog) return;
  const int bet = g.BetInHand;
  Money after = g.BetAmount[seat][bet];
  std::string text = std::string(BetName(bet)) + " bet ";
  if (after > before) text += "increased by: $" + MoneyText(after - before);
  else if (after < before) text += "decreased by: $" + MoneyText(before - after);
  else text += "remains the same.";
  Tell(g, text, title, 500, msg::kOk | msg::kHelp | msg::kClass4);
}

// A settled Buy or Lay gives up its vig: it leaves OnTable when it was charged up front.
void ReleaseVig(Game& g, int seat) {
  const int bet = g.BetInHand;
  g.VigInHand = Money{};
  Money* held = nullptr;
  bool upFront = false;
  if (bet >= bet::Buy4 && bet <= bet::Buy10) {
    held = &g.BuyVigHeld[seat][bet - bet::Buy4];
    upFront = g.Rules.ChargeAllBuy;
  } else if (bet >= bet::Lay4 && bet <= bet::Lay10) {
    held = &g.LayVigHeld[seat][bet - bet::Lay4];
    upFront = g.Rules.ChargeAllLay;
  }
  if (held == nullptr) return;
  if (upFront) g.OnTable[seat] -= *held;
  g.VigInHand = *held;
  *held = Money{};
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

void TakeBet(Game& g, int seat) {
  TakeDown(g, seat, g.BetInHand);
  g.Returned = false;
}

void SameBet(Game& g, int seat) {
  Money before = g.BetAmount[seat][g.BetInHand];
  ChangeBet(g, seat, g.BetInHand, Money{});
  Report(g, seat, "Same Bet", before);
}

void PressUnit(Game& g, int seat) {
  Money before = g.BetAmount[seat][g.BetInHand];
  ChangeBet(g, seat, g.BetInHand, FindPressUnit(g, seat, g.BetInHand));
  Report(g, seat, "Press 1 Unit", before);
}

void PressDouble(Game& g, int seat) {
  Money before = g.BetAmount[seat][g.BetInHand];
  ChangeBet(g, seat, g.BetInHand, before);
  Report(g, seat, "Press Double", before);
}

void Parlay(Game& g, int seat) {
  const int bet = g.BetInHand;
  Money before = g.BetAmount[seat][bet];
  std::array<int32_t, 4> saved = g.AdjustForPayoff[seat];
  g.AdjustForPayoff[seat].fill(2);
  if (g.Payoff.raw == 0) TakeMaximum(g, seat, bet);
  else ChangeBet(g, seat, bet, g.Payoff);
  g.AdjustForPayoff[seat] = saved;
  Report(g, seat, "Parlay", before);
}

namespace {

double UnitFactor(const Game& g, int bet, const SettleRule& rule, Money prev) {
  if (rule.Units == 0) return 1.0;
  if (rule.Units == 1) return prev.ToDouble() / 100.0;
  int d = std::min(rule.Units - 1, 5);
  return g.Rules.CheckDenom[d].ToDouble() * Row(g, bet).PayoffFor.ToDouble();
}

}  // namespace

void ApplyRule(Game& g, int seat, int row) {
  const int bet = g.BetInHand;
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

void SetAmount(Game& g, int seat, int row) {
  const int bet = g.BetInHand;
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

void HandleWinner(Game& g, int seat) {
  ReleaseVig(g, seat);
  int action = ChooseAction(g, seat, g.AutoHandleWin[seat], true, false);
  if (g.Returned || action == kTakeDown || action > kSetToAmount || action < 0) {
    TakeBet(g, seat);
    return;
  }
  switch (action) {
    case kSameBet: SameBet(g, seat); break;
    case kPressUnitOrRemainder: PressUnit(g, seat); break;
    case kPressDoubleOrUnit: PressDouble(g, seat); break;
    case kParlayOrDouble: Parlay(g, seat); break;
    case kModifyByRule: ApplyRule(g, seat, kRuleModifyWin); break;
    case kSetToAmount: SetAmount(g, seat, kRuleSetWin); break;
    default: TakeBet(g, seat); break;
  }
}

void HandleLoser(Game& g, int seat) {
  const int bet = g.BetInHand;
  ReleaseVig(g, seat);
  int action = ChooseAction(g, seat, g.AutoHandleLose[seat], false, false);
  if (g.Returned || action == kTakeDown || action > kSetToAmount || action < 0) {
    TakeBet(g, seat);
    return;
  }
  switch (action) {
    case kSameBet: SameBet(g, seat); break;
    case kPressUnitOrRemainder: {
      // Bet the remainder: what was on it before the roll plus this (negative) result.
      Money remainder = g.BetAmountStartOfRoll[seat][bet] + g.Payoff;
      TakeDown(g, seat, bet);
      if (remainder.raw > 0) ChangeBet(g, seat, bet, remainder);
      break;
    }
    case kPressDoubleOrUnit: PressUnit(g, seat); break;
    case kParlayOrDouble: PressDouble(g, seat); break;
    case kModifyByRule: ApplyRule(g, seat, kRuleModifyLose); break;
    case kSetToAmount: SetAmount(g, seat, kRuleSetLose); break;
    default: TakeBet(g, seat); break;
  }
}

void HandleNotWorking(Game& g, int seat) {
  const int bet = g.BetInHand;
  int flat = 0;
  if (bet == bet::PassLineOdds) flat = bet::PassLine;
  else if (bet == bet::DontPassOdds) flat = bet::DontPass;
  else if ((bet >= bet::Come4Odds && bet <= bet::Come10Odds) ||
           (bet >= bet::DontCome4Odds && bet <= bet::DontCome10Odds))
    flat = bet - 6;
  g.Returned = flat == 0 || g.BetAmount[seat][flat].raw <= 0 || !g.Rules.AllowPutBets;
  g.Payoff = Money{};
  const bool asWinner = flat != 0 && g.BetStreak[1][seat][flat] >= 2;
  int seatAction = asWinner ? g.AutoHandleWin[seat] : g.AutoHandleLose[seat];
  int action = ChooseAction(g, seat, seatAction, asWinner, true);
  if (g.Returned || action == kTakeDown || (action > kSetToAmount && action != kTakeMaxOdds) || action < 0) {
    TakeBet(g, seat);
    return;
  }
  switch (action) {
    case kSameBet: SameBet(g, seat); break;
    case kPressUnitOrRemainder: PressUnit(g, seat); break;
    case kPressDoubleOrUnit:
    case kParlayOrDouble: PressDouble(g, seat); break;
    case kTakeMaxOdds: TakeMaximum(g, seat, g.BetInHand); break;
    case kModifyByRule: ApplyRule(g, seat, kRuleModifyLose); break;
    case kSetToAmount: SetAmount(g, seat, kRuleSetLose); break;
    default: TakeBet(g, seat); break;
  }
}
