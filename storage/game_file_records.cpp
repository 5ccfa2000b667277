// The records of the game file in their order: one pass that writes or reads them.

#include <algorithm>
#include <bit>
#include <cmath>

#include "dice/probability.h"
#include "storage/game_file.h"
#include "storage/paths.h"
#include "storage/record_io.h"

namespace {

using Run = RecordIo::Run;

constexpr int kFileBetRows = 200;  // the rows 0..199 that per-bet blocks of the file hold
constexpr Money kAmountLimit = Money::FromRaw(999999999999999999);  // 99999999999999.9999

// Rows 0..count-1 of a store that may be shorter: rows past it write 0 and are ignored.
template <class T, size_t N, class F>
void Rows(std::array<T, N>& a, int count, F&& f) {
  for (int i = 0; i < count; ++i) {
    T spare{};
    f(static_cast<size_t>(i) < N ? a[static_cast<size_t>(i)] : spare);
  }
}

void Slot(Run& r, WindowSlot& w) {
  r.Int(w.Visible);
  r.Float(w.Top);
  r.Float(w.Left);
  r.Float(w.Height);
  r.Float(w.Width);
}

void Point(Run& r, int32_t& p) {
  r.Int(p, 0, 10);
  if (p != 0 && (p < 4 || p == 7)) r.Fault();
}

// Money as the file keeps a double ("as it stands"): ten-thousandths.
void MoneyOfDouble(Run& r, double& d) {
  Money m = Money::FromDouble(d);
  r.Money(m, Money::FromRaw(-kAmountLimit.raw), kAmountLimit);
  if (r.Reading()) d = m.ToDouble();
}

// A payoff table, field-major: x of rows first..last, then to-for, then y.
template <size_t N>
void Payoffs(RecordIo& io, std::array<PayoffRow, N>& rows, int first, int last) {
  io.Wide([&](Run& r) {
    for (Money PayoffRow::*field : {&PayoffRow::PayoffPay, &PayoffRow::PayoffToFor, &PayoffRow::PayoffFor})
      for (int i = first; i <= last; ++i) {
        PayoffRow spare{};
        PayoffRow& row = static_cast<size_t>(i) < N ? rows[static_cast<size_t>(i)] : spare;
        r.Money(row.*field, Money::FromRaw(-kAmountLimit.raw), kAmountLimit);
      }
  });
}

// ---- Fixed records 2..28.

void WindowRecords(RecordIo& io, DesktopSettings& d) {
  auto& w = d.Windows;
  io.Words([&](Run& r) {
    r.Int(d.MainWindowState);
    r.Float(d.MainTop);
    r.Float(d.MainLeft);
    r.Float(d.MainHeight);
    r.Float(d.MainWidth);
    Slot(r, w[kWinDiceRollFiles]);
    r.Int(w[kWinAutoPlay].Visible);
    r.Float(w[kWinAutoPlay].Top);
    r.Float(w[kWinAutoPlay].Left);
    r.Skip(2);
    for (WindowId id : {kWinAutoBet, kWinRyon, kWinDice, kWinPlayers, kWinBetPossibilities}) Slot(r, w[id]);
    for (float& v : d.RailLeft) r.Float(v);
    for (float& v : d.RailTop) r.Float(v);
    Slot(r, w[kWinOnline]);
  });
  io.Words([&](Run& r) {
    for (WindowId id : {kWinSessions, kWinEventsLog, kWinSummary, kWinBankroll, kWinRollTotals}) Slot(r, w[id]);
    r.Float(d.RollTotalsFactor);
    for (WindowId id : {kWinRollFreqs, kWinBetResults, kWinBetTrends, kWinCheckStacks, kWinHands, kWinHotKeys})
      Slot(r, w[id]);
    WindowSlot& file = w[kWinFile];
    r.Float(file.Top);
    r.Float(file.Left);
    r.Float(file.Height);
    r.Float(file.Width);
    r.Int(file.Visible);
    r.Int(w[kWinMove].Visible);
    r.Float(w[kWinMove].Top);
    r.Float(w[kWinMove].Left);
  });
  io.Words([&](Run& r) { Slot(r, w[kWinRolls]); });
  io.Words([&](Run& r) { r.Ints(d.TableViews); });
  for (std::string& folder : d.LastFolders) io.Text(folder);
}

void OnlineRecords(RecordIo& io, Game& g) {
  OnlineSettings& o = g.OnlinePanel;
  for (std::string* text : {&g.OnlineGameName, &g.HostName, &o.GamePassword, &o.LastPassword, &o.GameNotes})
    io.Text(*text);
  io.Words([&](Run& r) {
    // The buy-in bounds in whole dollars: cents don't survive a save.
    for (Money* bound : {&g.HostMinBuyIn, &g.HostMaxBuyIn}) {
      const int64_t whole = bound->raw / Money::kScale;
      int32_t dollars = static_cast<int32_t>(std::clamp<int64_t>(whole, INT32_MIN, INT32_MAX));
      r.Int(dollars);
      if (r.Reading()) *bound = Money::Dollars(dollars);
    }
    r.Int(o.CountdownToLockout, 0, 3600);
    r.Int(o.RollDelay, 0, 3600);
    r.Bool(o.AllowNewClientsToChat);
    r.Bool(o.AllowNewPlayersToAutobet);
    r.Int(o.ChatFontSize, 0, 200);
    r.Bool(o.ChatItalic);
    r.Bool(o.ChatBold);
    r.Bool(o.ColorScheme);
    r.Int(g.Desktop.TableLeft);
    r.Int(g.Desktop.TableTop);
    r.Int(o.NameAlert);
  });
}

void TableRecord(RecordIo& io, Game& g) {
  TableState& t = g.Table;
  DesktopSettings& d = g.Desktop;
  io.Words([&](Run& r) {
    r.Int(t.NumberOfPlayers, 0, 8);
    r.Int(d.SelectedSeat, 0, 8);
    r.Int(t.Shooter, 0, 8);
    r.Int(t.LastHandShooter, 0, 8);
    r.Int(t.HandShooter, 0, 8);
    Point(r, t.Point);
    Point(r, t.PriorPoint);
    Point(r, t.SecondPriorPoint);
    r.Int(t.Die1, 1, 7);  // a die of 7 is possible from one generator
    r.Int(t.Die2, 1, 7);
    r.Int(g.Dice.lcgState);
    r.Int(g.Dice.lastSeed);
    r.Int(d.DiceAngle);
    r.Int(d.ThrowFigure);
    r.Int(d.SignShown);
    r.Int(d.TableView);
    r.Skip(1);
    r.Bool(d.IntroDone);
    r.Int(t.HotRollerMask);
    r.Int(t.HotRollerCount, 0, INT32_MAX);
    r.Int(t.PointsWon, 0, INT32_MAX);
    r.Int(t.PassesMade, 0, INT32_MAX);
    r.Int(t.AllNumbersMask);
    r.Int(t.FourRollCount, 0, INT32_MAX);
    r.Int(t.FireMask, 0, 63);
    for (int n = 2; n <= 12; ++n) r.Int(t.RepeaterCount[static_cast<size_t>(n)], 0, INT32_MAX);
    r.Ints(d.LastTabs);
    r.Ints(d.CheckColours);
    r.Int(d.PalettePosition);
    r.Ints(d.NewGameChoices);
  });
  if (!io.Reading()) return;
  t.DiceTotal = t.Die1 + t.Die2;
  t.FireCount = std::popcount(static_cast<uint32_t>(t.FireMask));
}

void CompanionRecords(RecordIo& io, GameCompanions& c) {
  io.Text(c.rollHistory.name, c.rollHistory.date);
  io.Text(c.diceRollFile.name, c.diceRollFile.date);
  io.Text(c.diceRollDisplay);
  io.Text(c.probabilityFile.name, c.probabilityFile.date);
  io.Text(c.hotKeysFile.name, c.hotKeysFile.date);
  io.Text(c.eventsLog.name, c.eventsLog.date);
}

// The switches of the events log: on, date, time, bets set, changed, removed, wins,
// losses, CheckStacks, shooter, roll outcome, bankroll, rolls, and clearing per session.
void EventsSwitches(RecordIo& io, Game& g) {
  io.Words([&](Run& r) {
    r.Bool(g.RecordEvents);
    bool always = true;  // the log's lines always carry the date and the time
    r.Bool(always);
    r.Bool(always);
    int32_t& kinds = g.EventsLogCategories;
    auto bit = [&](int32_t mask) {
      bool on = (kinds & mask) != 0;
      r.Bool(on);
      kinds = on ? kinds | mask : kinds & ~mask;
    };
    bool set = (kinds & events::kBetChanges) != 0;
    r.Bool(set);
    bit(events::kBetChanges);
    r.Bool(set);
    for (int32_t mask : {events::kBetsWon, events::kBetsLost, events::kCheckStackChanges, events::kShooterChanges,
                         events::kPassesMisses, events::kBankrollChanges, events::kRolls})
      bit(mask);
    r.Bool(g.Events.ClearLogNewSessions);
  });
}

void SettingsRecord(RecordIo& io, Game& g) {
  DesktopSettings& d = g.Desktop;
  RuleSet& rules = g.Rules;
  io.Wide([&](Run& r) {
    r.Int(g.LanguageId, 0, 5);
    r.Int(d.ConfigurePage);
    r.Int(d.ChecksSelected);
    r.Int(d.CheckSize);
    r.Int(d.DiceSize);
    r.Int(rules.DiceAction);
    MoneyOfDouble(r, rules.RollsPerTime);
    r.Bool(rules.UseCentsSymbol);
    r.Bool(rules.AutoArrangeChips);
    r.Ints(d.Sounds);
    r.Bool(d.AutoBetSoundsOff);
    r.Bool(d.AllSoundsOff);
    r.Int(rules.Notices, 0, 255);
    r.Ints(d.PrintFontSizes);
    r.Bool(rules.SnapMouse);
    r.Int(g.Dice.rngNumber, 1, 8);
    r.Bool(g.Dice.seedByUser);
    r.Bool(g.Dice.reseedSessions);
    r.Int(rules.BasicFontSize, 1, 200);
    r.Int(rules.InfoTips);
    r.Bool(g.Percentage.PercentageDiceOn);
    r.Int(d.PercentageShowMode, 0, 3);
    MoneyOfDouble(r, g.Percentage.RollsOutOf);
  });
}

void RulesRecord(RecordIo& io, Game& g) {
  RuleSet& rules = g.Rules;
  DesktopSettings& d = g.Desktop;
  io.Wide([&](Run& r) {
    for (Money* m : {&rules.MinPlacardBet, &rules.MinPlacardPropBet, &rules.MaxPlacardBet, &rules.MaxPropBetPayoff,
                     &rules.MaxOddsBet, &rules.OddsAllowed410, &rules.OddsAllowed59, &rules.OddsAllowed68})
      r.Money(*m, Money{}, kAmountLimit);
    r.Int(rules.OddsCalcMethod, 0, 5);
    r.Int(rules.BarNumber, 2, 12);
    if (rules.BarNumber != 2 && rules.BarNumber != 12) r.Fault();
    r.Money(rules.LayVigPct, Money{}, Money::Dollars(1));
    r.Int(rules.RoundLayVig, 0, 3);
    r.Bool(rules.ChargeAllLay);
    r.Money(rules.BuyVigPct, Money{}, Money::Dollars(1));
    r.Int(rules.RoundBuyVig, 0, 3);
    r.Bool(rules.ChargeAllBuy);
    r.Bool(rules.AllowPutBets);
    r.Int(rules.BetNeededToShoot, 0, 2);
    r.Int(rules.CornerBet, 0, 3);
    r.Bool(rules.ReturnAbandonedBets);
    r.Ints(d.DicePictures);
    r.Ints(d.PropWindow);
  });
}

// ---- The blocks after the fixed records.

void RuleBlocks(RecordIo& io, Game& g) {
  RuleSet& rules = g.Rules;
  DesktopSettings& d = g.Desktop;
  io.Words([&](Run& r) { Rows(rules.CompBets, kFileBetRows, [&](bool& v) { r.Bool(v); }); });
  io.Wide([&](Run& r) {
    r.Int(rules.BaseComps);
    r.Bool(rules.CompsUseTrueProbs);
    r.Money(rules.CompRate, Money{}, kAmountLimit);
    r.Bool(d.CountZeroOutcomes);
    r.Bool(d.ShowMiscData);
    r.Int(d.AdvantageListPosition);
    r.Int(d.PayoffListPosition);
    r.Bool(rules.AllowPennyPayoffs);
    r.Money(d.Volume);
    r.Int(d.TableView);
    for (int k = 1; k <= 5; ++k) r.Money(rules.CheckDenom[static_cast<size_t>(k)], Money::FromRaw(1), kAmountLimit);
  });
  // Checks never descend (equal neighbours are a table's choice): the smallest is the unit
  // everything is rounded to.
  for (int k = 2; k <= 5; ++k)
    if (rules.CheckDenom[static_cast<size_t>(k)] < rules.CheckDenom[static_cast<size_t>(k - 1)]) io.Fault();
  Payoffs(io, rules.BetPayoff, 0, kFileBetRows - 1);
  Payoffs(io, rules.SevenPointSevenPayoff, 1, 2);
  Payoffs(io, rules.MidwayPayoff, 1, 5);
  Payoffs(io, rules.HotRollerPayoff, 1, 7);
  Payoffs(io, rules.SharpShooterPayoff, 1, 11);
  Payoffs(io, rules.RideLinePayoff, 1, 12);
  Payoffs(io, rules.FirePayoff, 1, 6);  // row 0 stays the default
  Payoffs(io, rules.FieldPayoff, 1, 21);
  io.Words([&](Run& r) { r.Ints(d.TableColours); });
  io.Words([&](Run& r) { r.Ints(d.Textures); });
  io.Words([&](Run& r) {
    for (int b = 0; b < kFileBetRows; ++b) {
      bool spare = false;
      r.Bool(b <= kBets ? rules.WorkOnComeOut[static_cast<size_t>(b)][0] : spare);
    }
  });
}

void StatisticsBlocks(RecordIo& io, Statistics& s) {
  const int32_t kMax = INT32_MAX;
  if (io.Reading()) s.UncheckedRolls = 0;  // counters read from a file are scanned again
  io.Words([&](Run& r) {
    for (auto& column : s.RollCount)
      for (int32_t& v : column) r.Int(v, 0, kMax);
  });
  io.Wide([&](Run& r) {
    std::array<int32_t, kRollKinds> since = s.RollsSince.Values();
    for (int32_t& v : since) {
      int64_t wide = v;
      r.Long(wide, 0, kMax);
      v = static_cast<int32_t>(wide);
    }
    if (io.Reading()) s.RollsSince.Assign(since);
  });
  io.Words([&](Run& r) {
    for (int kind = 1; kind < kRollKinds; ++kind)  // kind 0 never comes up by itself
      for (int32_t& v : s.RollGapHistogram[static_cast<size_t>(kind)]) r.Int(v, 0, kMax);
  });
  io.Words([&](Run& r) {
    for (auto& column : s.HandDecisions)
      for (int total = 2; total <= 12; ++total)
        for (int32_t& v : column[static_cast<size_t>(total)]) r.Int(v, 0, kMax);
  });
  for (auto* table : {&s.HandsShot, &s.SeatRolls, &s.MostRollsInHand, &s.MostComeOutRollsInHand, &s.MostPassesInHand,
                      &s.MostMissesInHand})
    io.Words([&](Run& r) {
      for (int32_t& v : *table) r.Int(v, 0, kMax);
    });
}

// The 36 combinations, then their locks; the sum column and the face rows with their
// locks as two bit masks.
void PercentageBlocks(RecordIo& io, ProbabilityTable& t) {
  auto value = [&](Run& r, int x, int y) { r.Int(t.Value(x, y), 0, kWholeTable); };
  io.Words([&](Run& r) {
    for (const DiamondCell& c : kDiamond) value(r, c.x, c.y);
  });
  io.Words([&](Run& r) {
    for (int y = 1; y <= 11; ++y) value(r, kSumColumn, y);
    for (int row : {kDie1FaceRow, kDie2FaceRow})
      for (int x = 2; x <= 7; ++x) value(r, x, row);
    auto locks = [&](auto&& cells) {
      int32_t mask = 0, bit = 1;
      cells([&](int x, int y) {
        if (t.Lock(x, y) > 0 && (t.Lock(x, y) & kCellLocked)) mask |= bit;
        bit <<= 1;
      });
      r.Int(mask);
      if (!r.Reading()) return;
      bit = 1;
      cells([&](int x, int y) {
        t.Lock(x, y) = (mask & bit) ? kCellLocked : kCellFree;
        bit <<= 1;
      });
    };
    locks([](auto&& f) {
      for (int y = 1; y <= 11; ++y) f(kSumColumn, y);
    });
    locks([](auto&& f) {
      for (int row : {kDie1FaceRow, kDie2FaceRow})
        for (int x = 2; x <= 7; ++x) f(x, row);
    });
  });
  io.Words([&](Run& r) {
    for (const DiamondCell& c : kDiamond) r.Int(t.Lock(c.x, c.y));
  });
}

void PanelBlocks(RecordIo& io, Game& g) {
  DesktopSettings& d = g.Desktop;
  io.Words([&](Run& r) { r.Ints(d.RollTotalsColours); });
  io.Words([&](Run& r) { r.Ints(d.RollTotalsMore); });
  io.LongText(d.CaptionSetting);
  // The main settings: the table's running options first, then the menus of the windows.
  io.Words([&](Run& r) {
    r.Int(g.Rules.RollRateUnit, 0, 2);
    r.Int(g.Rolls.RecorderState, 0, 2);
    r.Int(g.Rolls.NextRollPosition, 1, INT32_MAX);
    r.Int(g.Rolls.LastRollPosition, 0, INT32_MAX);
    r.Int(g.Auto.AutoRollThrottle, 0, 12);
    r.Bool(g.Events.KeepLatestRollOnTop);
    r.Int(g.Events.TopLine, 1, INT32_MAX);
    r.Bool(g.Percentage.UseSkewedProbs);
    r.Bool(g.Percentage.ProbabilityChanged);
    r.Int(g.BankrollGraphIndex, 0, kBankrollGraphSize);
    r.Int(g.BankrollGraphScaleLow);
    r.Int(g.BankrollGraphScaleHigh);
    r.Skip(8);
    for (size_t k = 0; k < 30; ++k) r.Int(d.MainMenus[k]);
  });
  io.Words([&](Run& r) { r.Ints(d.AutoBetGrid); });
  io.LongText(g.RollFormat);
  io.Words([&](Run& r) {
    r.Ints(d.ScriptPanel);
    for (int s = 1; s < kSeats; ++s) r.Ints(d.ScriptPanelSeats[static_cast<size_t>(s)]);
  });
  // The running figures of Auto-Roll and the scripts.
  io.Wide([&](Run& r) {
    r.Money(g.Auto.AutoStopRolls, Money{}, Money::Dollars(kMaxSessionRolls));
    MoneyOfDouble(r, g.Auto.AutoRollDelay);
    if (g.Auto.AutoRollDelay < 0 || g.Auto.AutoRollDelay > 300) r.Fault();
    r.Money(g.Rules.AtmAmount, Money{}, kAmountLimit);
    int64_t rnd = g.AutoBet.RndSeed;
    r.Long(rnd, 0, UINT32_MAX);
    if (r.Reading()) g.AutoBet.RndSeed = static_cast<uint32_t>(rnd);
    r.Skip(1);
  });
  PercentageBlocks(io, g.Percentage.Table);
}

// ---- A seat.

// The stores of seat s, after its options, in the file's order: the amounts and what is
// kept with them (contract bases, held vig, streaks, working states), the CheckStack
// names, the bankroll history, the statistics and bankrolls by scope, the hand's figures.
void SeatStores(RecordIo& io, Game& g, size_t s) {
  // Amounts: rows 1..107 are bets, 108..199 never hold one, 200..299 are CheckStacks.
  for (auto* store : {&g.BetAmount, &g.BetAmountStartOfRoll, &g.BetAmountAfterRoll})
    io.Wide([&](Run& r) {
      for (int row = 0; row < kBetRows; ++row) {
        Money& m = (*store)[s][static_cast<size_t>(row)];
        if (row >= kCheckStackRow) r.Money(m, Money::FromRaw(-kAmountLimit.raw), kAmountLimit);
        else if (row >= 1 && row <= kBets) r.Money(m, Money{}, kAmountLimit);
        else r.Money(m, Money{}, Money{});
      }
    });
  io.Wide([&](Run& r) {
    for (Money& m : g.ContractBase[s]) r.Money(m, Money{}, kAmountLimit);
  });
  io.Wide([&](Run& r) {
    for (Money& m : g.LayVigHeld[s]) r.Money(m, Money{}, kAmountLimit);
    for (Money& m : g.BuyVigHeld[s]) r.Money(m, Money{}, kAmountLimit);
  });
  io.Wide([&](Run& r) {
    for (auto& plane : g.BetStreak) Rows(plane[s], kFileBetRows, [&](int32_t& v) { r.Int(v); });
  });
  io.Words([&](Run& r) {
    for (int b = 0; b < kFileBetRows; ++b) {
      bool spare = false;
      r.Bool(b <= kBets ? g.Rules.WorkOnComeOut[static_cast<size_t>(b)][s] : spare);
    }
  });
  io.Words([&](Run& r) {
    Rows(g.BetWorking[s], kFileBetRows, [&](WorkingState& v) {
      int32_t state = v;
      r.Int(state, -1, 2);
      v = static_cast<WorkingState>(state);
    });
  });
  for (std::string& name : g.CheckStackName[s]) io.LongText(name);
  io.Wide([&](Run& r) {
    for (Money& m : g.BankrollHistory[s]) r.Money(m);
  });
  for (auto* stats : {&g.Stats.BetStats, &g.Stats.BetWinStats, &g.Stats.BetLossStats})
    io.Wide([&](Run& r) {
      for (int group = 0; group < kScopeColumns; group += kSeats)
        Rows((*stats)[static_cast<size_t>(group) + s], kFileBetRows, [&](std::array<Money, 6>& fields) {
          for (Money& m : fields) r.Money(m);
        });
    });
  io.Wide([&](Run& r) {
    for (int group = 0; group < kScopeColumns; group += kSeats)
      for (Money& m : g.Stats.ComeBaseTotal[static_cast<size_t>(group) + s]) r.Money(m);
  });
  io.Wide([&](Run& r) {
    for (Money& m : g.ComeBase[s]) r.Money(m, Money{}, kAmountLimit);
  });
  for (auto* store : {&g.BeginningBankroll, &g.Bankroll, &g.HighBankroll, &g.LowBankroll}) {
    io.Wide([&](Run& r) {
      for (size_t k = 0; k < 32; ++k) r.Money((*store)[k]);
    });
    io.Wide([&](Run& r) {
      for (size_t k = 32; k < kScopeColumns; ++k) r.Money((*store)[k]);
    });
  }
  // The hand's figures (the table's, kept with every seat) and the seat's totals.
  io.Wide([&](Run& r) {
    TableState& t = g.Table;
    r.Int(t.ComeOutRollsInHand, 0, INT32_MAX);
    r.Int(t.PassesInHand, 0, INT32_MAX);
    r.Int(t.MissesInHand, 0, INT32_MAX);
    Point(r, t.LastPoint);
    for (int group = 0; group < kScopeColumns; group += kSeats) r.Money(g.BuyInTotal[static_cast<size_t>(group) + s]);
    for (int group = 0; group < kScopeColumns; group += kSeats) r.Money(g.BankrollSum[static_cast<size_t>(group) + s]);
    r.Money(g.AvailableBankroll[s]);
    r.Bool(g.HasCheckStacks[s]);
    r.Bool(g.ScriptActiveCopy[s]);
  });
}

// One player's block. Writing, `seat` is the seat to write; reading, the seat of the
// block before, and then the seat the block's first value names.
void SeatBlock(RecordIo& io, Game& g, GameCompanions& c, int& seat) {
  const int previous = seat;
  auto at = [&] { return static_cast<size_t>(seat); };
  io.Wide([&](Run& r) {
    int32_t number = seat;
    r.Int(number, previous + 1, 8);
    seat = number;
    r.Money(g.OnTable[at()], Money{}, kAmountLimit);
    r.Bool(g.ScriptActive[at()]);
    bool loaded = !c.scripts[at()].name.empty();
    r.Bool(loaded);
    r.Int(g.AutoHandleWin[at()], 0, 7);
    r.Int(g.AutoHandleLose[at()], 0, 7);
    r.Int(g.SettleRules[at()][1].Operator, 0, 3);
    r.Int(g.SettleRules[at()][3].Operator, 0, 3);
  });
  const size_t s = at();
  std::string name = g.PlayerName[s];
  io.Text(name);
  if (name.empty()) io.Fault();
  g.PlayerName.Set(s, std::move(name));
  io.Text(c.scripts[s].name, c.scripts[s].date);
  io.Text(g.SessionsLogPath[s]);
  io.Text(g.Desktop.CheckStackFiles[s]);
  io.Wide([&](Run& r) {
    r.Bool(g.AllowNegBankroll[s]);
    r.Int(g.BankrollInitType[s], 0, 2);
    r.Money(g.BankrollInitAmount[s]);
    r.Money(g.Rules.AtmAmount, Money{}, kAmountLimit);
    r.Money(g.BankrollStartOfRoll[s]);
    r.Money(g.BankrollAfterRoll[s]);
    // The seat's options: the four aids, the adjustment by kind and its biases, the
    // settle rules, and the four CheckStacks on the rail.
    for (auto* aid : {&g.AutoTakeOdds, &g.AutoLayOdds, &g.AutoDownPlace, &g.AutoPassDice}) r.Bool((*aid)[s]);
    for (int32_t& v : g.AdjustForPayoff[s]) r.Int(v, 0, 2);
    for (int32_t& v : g.AdjustBias[s]) r.Int(v, 0, 2);
    for (size_t row = 0; row < 4; ++row) {
      SettleRule& rule = g.SettleRules[s][row];
      if (row == 0 || row == 2) r.Int(rule.Operator, 0, 3);
      r.Money(rule.Operand, Money::FromRaw(-kAmountLimit.raw), kAmountLimit);
      r.Int(rule.Units, 0, 6);
    }
    for (int32_t& row : g.CheckStackShortcuts[s]) r.Int(row, kCheckStackRow, kBetRows - 1);
  });
  SeatStores(io, g, s);
}

void Transfer(RecordIo& io, Game& g, GameCompanions& c) {
  std::string header = kGameFileHeader;
  io.Text(header);
  WindowRecords(io, g.Desktop);
  OnlineRecords(io, g);
  TableRecord(io, g);
  io.Words([&](Run& r) { r.Ints(g.Desktop.RollsLayout); });
  CompanionRecords(io, c);
  EventsSwitches(io, g);
  SettingsRecord(io, g);
  RulesRecord(io, g);
  RuleBlocks(io, g);
  StatisticsBlocks(io, g.Stats);
  PanelBlocks(io, g);
  int seat = 0;
  if (io.Reading()) {
    for (int k = 0; k < g.Table.NumberOfPlayers; ++k) SeatBlock(io, g, c, seat);
  } else {
    for (int s = 1; s < kSeats; ++s) {
      if (!SeatOccupied(g, s)) continue;
      seat = s;
      SeatBlock(io, g, c, seat);
    }
  }
}

// What a game file can't hold: names twice, dice passed to nobody, a Pass Line Odds
// bet with no point, statistics of a hand that never started.
bool Consistent(const Game& g) {
  for (int a = 1; a < kSeats; ++a)
    for (int b = a + 1; b < kSeats; ++b)
      if (SeatOccupied(g, a) &&
          SameNameInFiles(g.PlayerName[static_cast<size_t>(a)], g.PlayerName[static_cast<size_t>(b)]))
        return false;
  const TableState& t = g.Table;
  for (int32_t who : {t.Shooter, t.HandShooter})
    if (who != 0 && !SeatOccupied(g, who)) return false;
  return true;
}

// Stores that follow from others: who holds which bet, and which rows the copies and
// the hand's statistics touch.
void RebuildDerivedStores(Game& g) {
  g.BetHolders = {};
  g.SeatBets = g.SeatBetsAtStart = g.SeatBetsAtAfter = {};
  g.HeldPropBets = 0;
  for (int s = 0; s < kSeats; ++s) {
    const auto seat = static_cast<size_t>(s);
    for (int b = 1; b <= kBets; ++b) {
      const auto row = static_cast<size_t>(b);
      const uint64_t bit = uint64_t{1} << (b & 63);
      if (g.BetAmount[seat][row].raw > 0) {
        g.BetHolders[row] |= static_cast<uint16_t>(1u << s);
        g.SeatBets[seat][row >> 6] |= bit;
      }
      if (g.BetAmountStartOfRoll[seat][row].raw > 0) g.SeatBetsAtStart[seat][row >> 6] |= bit;
      if (g.BetAmountAfterRoll[seat][row].raw > 0) g.SeatBetsAtAfter[seat][row >> 6] |= bit;
    }
    for (int b = 1; b <= kBets; ++b)
      g.DefaultWorking[seat][static_cast<size_t>(b)] = g.Rules.WorkOnComeOut[static_cast<size_t>(b)][seat] ? 1 : 0;
    // Both copies of a seat with CheckStacks take every row at the next roll.
    const std::array<uint64_t, 2> all = {~uint64_t{0}, (uint64_t{1} << 36) - 1};
    g.CheckStacksSinceStart[seat] = g.CheckStacksSinceAfter[seat] =
        g.HasCheckStacks[seat] ? all : std::array<uint64_t, 2>{};
  }
  for (int b = bet::Field; b <= kBets; ++b) g.HeldPropBets += g.BetHolders[static_cast<size_t>(b)] != 0;
  Statistics& st = g.Stats;
  for (int c = 0; c < 2 * kSeats; ++c) {
    auto& used = st.BetRowsUsed[static_cast<size_t>(c)];
    used.reset();
    for (int b = 0; b < kStatBetRows; ++b) {
      const auto row = static_cast<size_t>(b);
      const auto col = static_cast<size_t>(c);
      const std::array<Money, 6> zero{};
      if (st.BetStats[col][row] != zero || st.BetWinStats[col][row] != zero || st.BetLossStats[col][row] != zero)
        used.set(row);
    }
  }
}

}  // namespace

Bytes GameFileBytes(const Game& g, const GameCompanions& companions) {
  RecordIo io;
  // The writer only reads the stores it is given.
  GameCompanions c = companions;
  Transfer(io, const_cast<Game&>(g), c);
  return io.TakeOutput();
}

GameFileRead ReadGameFileBytes(const Bytes& bytes, Game& scratch, GameCompanions& companions) {
  if (bytes.size() < static_cast<size_t>(256)) return GameFileRead::Corrupt;
  const std::string header = GetFixedText(bytes.data(), RecordIo::kTextChars);
  if (header.find("DiceHall") == std::string::npos) return GameFileRead::NotDiceHall;
  if (header.find(kGameFileHeader) == std::string::npos) return GameFileRead::OtherVersion;
  try {
    RecordIo io(bytes);
    Transfer(io, scratch, companions);
    if (!io.AtEnd() || !Consistent(scratch)) return GameFileRead::Corrupt;
  } catch (const RecordFault&) {
    return GameFileRead::Corrupt;
  }
  RebuildDerivedStores(scratch);
  ComputeBetUnits(scratch.Rules);
  return GameFileRead::Ok;
}
