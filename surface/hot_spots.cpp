#include "surface/hot_spots.h"

#include "autobet/interpreter.h"
#include "automation/auto_roll.h"
#include "engine/bankroll.h"
#include "engine/messages.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_tools.h"
#include "storage/error_report.h"
#include "storage/language_text.h"
#include "surface/captions.h"

namespace {

std::string Text(const Game& g, int number, int piece = 0) {
  return std::string(LanguageText(g.LanguageId, number, piece));
}

// A question that must be asked even while Hyper-Drive keeps every other box shut.
bool AskYesNo(Game& g, const std::string& text, const std::string& title, int help) {
  if (g.Ui == nullptr) return false;
  MessageRequest request;
  request.Text = text;
  request.Title = title;
  request.HelpId = help;
  request.Flags = msg::kYesNoQuestion;
  return g.Ui->ShowMessage(request).Button == kButtonYes;
}

bool IsBetSpot(int id) { return hot::IsBet(id) || (id >= hot::kShortcutFirst && id <= hot::kShortcutLast); }

bool SeatReady(const Game& g, const TableInput& in) {
  return in.SelectedPlayer >= 1 && in.SelectedPlayer <= 8 && SeatOccupied(g, in.SelectedPlayer);
}

// Step 7: no bettor to act for.
void TellNoBettor(Game& g) {
  const int lang = g.LanguageId;
  if (g.Table.NumberOfPlayers == 0) Tell(g, Caption(lang, "msgNoPlayers"), Caption(lang, "ttlNoPlayers"), 0, msg::kOk);
  else Tell(g, Caption(lang, "msgNoBettor"), Caption(lang, "ttlNoBettor"), 0, msg::kOk);
}

ClickEffect AskToStop(Game& g) {
  if (g.AutoBet.ScriptRunning) {
    if (AskYesNo(g, Text(g, 145), Text(g, 121), 0)) StopAutoBet(g);
    return ClickEffect::StopAsked;
  }
  if (g.Auto.HyperDrive) {
    if (AskYesNo(g, Text(g, 118), Text(g, 114), 540) && g.Auto.AutoRollActive) ToggleAutoRoll(g);
    return ClickEffect::StopAsked;
  }
  if (AskYesNo(g, Text(g, 119), Text(g, 117), 540) && g.Auto.AutoRollActive) ToggleAutoRoll(g);
  return ClickEffect::StopAsked;
}

ClickEffect Roll(Game& g) {
  if (g.Auto.AutoRollActive) return AskToStop(g);
  if (g.Table.Rolling) return ClickEffect::None;
  RollDice(g);
  return ClickEffect::Rolled;
}

// The one-shot modes of the menu: the next click on a bet calls, buys or removes it.
void OneShot(Game& g, TableInput& in, int id) {
  const int mode = in.OneShotMode;
  in.OneShotMode = 0;
  in.Status.clear();
  if (!IsBetSpot(id)) return;
  if (!SeatReady(g, in)) {
    TellNoBettor(g);
    return;
  }
  const int seat = in.SelectedPlayer;
  const int target = ClickTarget(g, seat, id, mode == kModeRemove);
  switch (mode) {
    case kModeCallOn: CallBet(g, seat, target, true); break;
    case kModeCallOff: CallBet(g, seat, target, false); break;
    case kModeBuy: BuyPlaceBet(g, seat, target); break;
    case kModeRemove: TakeDown(g, seat, target); break;
    default: break;
  }
}

// Alt-click: the amount taken down is offered again, to be typed in anew.
void OfferReEntry(Game& g, int seat, int bet, Money remembered) {
  MessageReply reply = Tell(g, Text(g, 45) + ": " + std::string(BetName(bet)), std::string(BetName(bet)), 0,
                            msg::kOk | msg::kCancel | msg::kInput, MoneyText(remembered));
  if (reply.Button != kButtonOk) return;
  Money amount;
  std::string error;
  if (!ParseMoney(reply.Input, amount, error)) {
    Tell(g, error, std::string(BetName(bet)), 0, msg::kOk);
    return;
  }
  if (amount.raw > 0) PlaceBet(g, seat, bet, amount - g.BetAmount[seat][bet], 0, 0);
}

void ClickRail(Game& g, TableInput& in, int id) {
  const int seat = hot::SeatOf(id), part = hot::PartOf(id);
  if (seat < 1 || seat > 8) return;
  if (in.OneShotMode > kModeMove) {
    const int from = in.OneShotMode - kModeMove;
    in.OneShotMode = 0;
    in.Status.clear();
    if (from != seat && SeatOccupied(g, from)) {
      MovePlayer(g, from, seat);
      in.SelectedPlayer = seat;
    }
    return;
  }
  if (!SeatOccupied(g, seat)) {
    if (AskToAddPlayer(g, seat)) {
      in.SelectedPlayer = seat;
      in.SelectedCheck = 1;
    }
    return;
  }
  const bool other = in.SelectedPlayer != seat;
  in.SelectedPlayer = seat;
  if (part >= 1 && part <= 5) in.SelectedCheck = part;
  else if (part >= 7 && part <= 10) in.SelectedCheck = part;
  else if (other && in.SelectedCheck > 10) in.SelectedCheck = 1;  // a tool is chosen again per seat
}

void ClickBet(Game& g, TableInput& in, const TableGeometry& geo, int shift, int id, float x, float y) {
  if (!SeatReady(g, in)) {
    TellNoBettor(g);
    return;
  }
  if (g.Table.Rolling) {
    in.Status = Caption(g.LanguageId, "stsWaitRoll");
    return;
  }
  const int seat = in.SelectedPlayer;
  const TableRegion* region = geo.Find(id);
  const CheckPlacement at = region ? PlacementFromClick(*region, seat, x, y, g.Rules.SnapMouse) : CheckPlacement{};
  if (shift & (kShift | kAlt)) {
    const int target = ClickTarget(g, seat, id, true);
    const Money before = g.BetAmount[seat][target];
    if (shift & kAlt) in.RememberedAmount = before;
    PlaceBet(g, seat, target, -before, at.a, at.b);
    if ((shift & kAlt) && g.BetAmount[seat][target] != before && in.RememberedAmount.raw > 0)
      OfferReEntry(g, seat, target, in.RememberedAmount);
    return;
  }
  switch (in.SelectedCheck) {
    case hot::kBuyTool: BuyPlaceBet(g, seat, ClickTarget(g, seat, id, false)); return;
    case hot::kCallOffTool: CallBet(g, seat, ClickTarget(g, seat, id, false), false); return;
    case hot::kCallOnTool: CallBet(g, seat, ClickTarget(g, seat, id, false), true); return;
    default: break;
  }
  Money amount = SelectedAmount(g, in);
  if (amount.raw <= 0) return;
  if (shift & kCtrl) amount = -amount;
  const int target = ClickTarget(g, seat, id, amount.raw < 0);
  PlaceBet(g, seat, target, amount, at.a, at.b);
}

}  // namespace

int HoverTarget(const Game& g, const TableInput& in, int id) {
  const int seat = in.SelectedPlayer;
  if (seat < 1 || seat > 8) return id;
  if (id >= bet::DontCome4Odds && id <= bet::DontCome10Odds && g.BetAmount[seat][id - 6].raw <= 0) return id - 6;
  if (id == bet::DontPassOdds && g.BetAmount[seat][bet::DontPass].raw <= 0) return bet::DontPass;
  return id;
}

void LayoutMouseMove(const Game& g, TableInput& in, int id) { in.HoverId = HoverTarget(g, in, id); }

int ClickTarget(const Game& g, int seat, int id, bool removing) {
  if (seat < 1 || seat > 8) return id;
  if (id >= hot::kShortcutFirst && id <= hot::kShortcutLast)
    return g.CheckStackShortcuts[seat][id - hot::kShortcutFirst];
  const auto& a = g.BetAmount[seat];
  if (id == bet::DontPassOdds && a[id].raw <= 0 && (removing || a[bet::DontPass].raw <= 0 || IsComeOut(g)))
    return bet::DontPass;
  if (id >= bet::DontCome4Odds && id <= bet::DontCome10Odds && a[id].raw <= 0 && (removing || a[id - 6].raw <= 0))
    return id - 6;
  return id;
}

Money SelectedAmount(const Game& g, const TableInput& in) {
  const int seat = in.SelectedPlayer, k = in.SelectedCheck;
  if (k >= 1 && k <= 5) return g.Rules.CheckDenom[k];
  if (k >= 7 && k <= 10 && seat >= 1 && seat <= 8) {
    const int row = g.CheckStackShortcuts[seat][k - 7];
    if (row >= kCheckStackRow && row < kBetRows) return g.BetAmount[seat][row];
  }
  return Money{};
}

ClickEffect LayoutMouseDown(Game& g, TableInput& in, const TableGeometry& geo, int button, int shift, int id, float x,
                            float y) {
  try {
    // 1. A limit stop holds the table.
    if (g.Table.PendingStopSeat != 0) {
      LimitStop(g, g.Table.PendingStopSeat);
      return ClickEffect::None;
    }
    // 2. A silent run or a script in progress: a click only asks to stop.
    if (g.SilentMode || g.AutoBet.ScriptRunning) return AskToStop(g);
    // 3. The right button rolls.
    if (button == kRightButton && in.OneShotMode == 0) return Roll(g);
    // 4. A one-shot mode takes the click.
    if (in.OneShotMode >= kModeCallOn && in.OneShotMode <= kModeRemove) {
      OneShot(g, in, id);
      return ClickEffect::None;
    }
    if (button != kLeftButton) return ClickEffect::None;
    // 5. The rail's parts.
    switch (id) {
      case hot::kRack: {
        const TableRegion* rack = geo.Find(id);
        const bool left = rack && x < rack->rects.front().x + rack->rects.front().w / 2;
        in.RackRotation = (in.RackRotation + (left ? 5 : 1)) % 6;
        return ClickEffect::None;
      }
      case hot::kStickman: return ClickEffect::PlayedStick;
      case hot::kBuyTool:
      case hot::kCallOffTool:
      case hot::kCallOnTool:
        if (!SeatReady(g, in)) TellNoBettor(g);
        else in.SelectedCheck = id;
        return ClickEffect::None;
      case hot::kDisplayOption: in.BetsAsNumbers = !in.BetsAsNumbers; return ClickEffect::None;
      case hot::kDragHandle: return ClickEffect::None;
      default: break;
    }
    // 6. The rail positions.
    if (id >= hot::kSeatBase) {
      ClickRail(g, in, id);
      return ClickEffect::None;
    }
    if (in.OneShotMode > kModeMove) {
      in.OneShotMode = 0;  // a move ends with a click anywhere but the rail
      in.Status.clear();
    }
    // 7.-11. A bet.
    if (IsBetSpot(id)) ClickBet(g, in, geo, shift, id, x, y);
  } catch (const std::exception& e) {
    Tell(g, ErrorReport(e.what(), 5, "LayoutMouseDown"), "DiceHall", 0, msg::kOk);
  }
  return ClickEffect::None;
}

bool TableKeyDown(Game& g, TableInput& in, const TableGeometry& geo, TableKey key, int shift) {
  auto walk = [&](int dx, int dy) {
    TurnArrow(0, dx, dy);
    const int from = hot::IsBet(in.HoverId) ? in.HoverId : bet::PassLine;
    in.HoverId = hot::IsBet(in.HoverId) ? NeighbourBet(geo, from, dx, dy) : from;
    return true;
  };
  const int bet = in.HoverId;
  switch (key) {
    case TableKey::Left: return walk(-1, 0);
    case TableKey::Right: return walk(1, 0);
    case TableKey::Up: return walk(0, -1);
    case TableKey::Down: return walk(0, 1);
    case TableKey::Space: LayoutMouseDown(g, in, geo, kRightButton, 0, bet, 0, 0); return true;
    case TableKey::P:
      if (!g.SilentMode && !g.Table.Rolling) PassDice(g, kPassAsked);
      return true;
    case TableKey::Digit1:
    case TableKey::Digit2:
    case TableKey::Digit3:
    case TableKey::Digit4:
    case TableKey::Digit5:
      if (SeatReady(g, in)) in.SelectedCheck = 1 + static_cast<int>(key) - static_cast<int>(TableKey::Digit1);
      return true;
    default: break;
  }
  if (!hot::IsBet(bet)) return false;
  // The keys that act on the hovered bet act as the clicks would, at the seat's own place.
  const TableRegion* region = geo.Find(bet);
  float x = 0, y = 0;
  if (region) StackCentre(*region, in.SelectedPlayer, 0, 0, x, y);
  switch (key) {
    case TableKey::Enter: LayoutMouseDown(g, in, geo, kLeftButton, shift & kCtrl, bet, x, y); return true;
    case TableKey::Delete:
    case TableKey::W: LayoutMouseDown(g, in, geo, kLeftButton, kShift, bet, x, y); return true;
    case TableKey::C: {
      if (!SeatReady(g, in)) {
        TellNoBettor(g);
        return true;
      }
      const int seat = in.SelectedPlayer, target = ClickTarget(g, seat, bet, false);
      const int32_t w = g.BetWorking[seat][target];
      CallBet(g, seat, target, w == -1 || w == 0);
      return true;
    }
    default: return false;
  }
}
