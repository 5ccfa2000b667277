#include "online/mirror.h"

#include <cstring>
#include <type_traits>

#include "engine/placement.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"

namespace {

bool IsBuy(int bet) { return bet >= bet::Buy4 && bet <= bet::Buy10; }
bool IsLay(int bet) { return bet >= bet::Lay4 && bet <= bet::Lay10; }

Money VigOf(const Game& g, int seat, int bet) {
  if (IsBuy(bet)) return g.BuyVigHeld[seat][bet - bet::Buy4];
  if (IsLay(bet)) return g.LayVigHeld[seat][bet - bet::Lay4];
  return Money{};
}

void AddBet(std::string& m, const Game& g, int seat, int bet) {
  m += "~777";
  PutInt(m, seat);
  PutInt(m, bet);
  PutAmount(m, g.BetAmount[seat][bet]);
  PutAmount(m, g.ContractBase[seat][bet]);
  PutAmount(m, VigOf(g, seat, bet));
}

void AddWorking(std::string& m, const Game& g, int seat, int bet) {
  m += "~779";
  PutInt(m, seat);
  PutInt(m, bet);
  PutInt(m, g.BetWorking[seat][bet]);
}

void AddBankroll(std::string& m, const Game& g, int seat) {
  m += "~887";
  PutInt(m, seat);
  PutAmount(m, g.Bankroll[seat]);
  PutAmount(m, g.BeginningBankroll[seat + kSessionScope]);
  PutAmount(m, g.BuyInTotal[seat + kSessionScope]);
}

void AddPayoffRows(std::vector<std::string>& out, std::string_view code, const PayoffRow* rows, int first, int last) {
  std::string m;
  for (int r = first; r <= last; ++r) {
    m += code;
    PutInt(m, r);
    PutAmount(m, rows[r].PayoffPay);
    PutAmount(m, rows[r].PayoffToFor);
    PutAmount(m, rows[r].PayoffFor);
  }
  out.push_back(std::move(m));
}

// The rule tables a payoff code writes, with their first and last row.
template <class Row>
struct PayoffTable {
  std::string_view code;
  Row* rows;
  int first, last;
};

template <class Rules, class Row = std::conditional_t<std::is_const_v<Rules>, const PayoffRow, PayoffRow>>
std::vector<PayoffTable<Row>> PayoffTables(Rules& r) {
  return {{"~909", r.BetPayoff.data(), 1, kBets},         {"~910", r.FieldPayoff.data(), 1, 21},
          {"~911", r.SevenPointSevenPayoff.data(), 1, 2}, {"~912", r.MidwayPayoff.data(), 1, 5},
          {"~913", r.HotRollerPayoff.data(), 1, 7},       {"~914", r.SharpShooterPayoff.data(), 1, 11},
          {"~915", r.RideLinePayoff.data(), 1, 12},       {"~916", r.FirePayoff.data(), 0, 6}};
}

// The rules of one value each, by code: the host writes them and a mirror applies them
// from this one table.
struct SingleRule {
  std::string_view code;
  Money RuleSet::*amount = nullptr;
  int RuleSet::*number = nullptr;
  bool RuleSet::*flag = nullptr;
};

const SingleRule kSingleRules[] = {{"~891", &RuleSet::MinPlacardBet},
                                   {"~892", &RuleSet::MaxPlacardBet},
                                   {"~893", &RuleSet::MinPlacardPropBet},
                                   {"~894", &RuleSet::MaxPropBetPayoff},
                                   {"~895", &RuleSet::MaxOddsBet},
                                   {"~897", nullptr, &RuleSet::OddsCalcMethod},
                                   {"~898", nullptr, &RuleSet::BarNumber},
                                   {"~900", &RuleSet::LayVigPct},
                                   {"~901", nullptr, &RuleSet::RoundLayVig},
                                   {"~902", nullptr, nullptr, &RuleSet::ChargeAllLay},
                                   {"~903", &RuleSet::BuyVigPct},
                                   {"~904", nullptr, &RuleSet::RoundBuyVig},
                                   {"~905", nullptr, nullptr, &RuleSet::ChargeAllBuy},
                                   {"~906", nullptr, &RuleSet::BetNeededToShoot},
                                   {"~907", nullptr, nullptr, &RuleSet::AllowPutBets},
                                   {"~908", nullptr, nullptr, &RuleSet::ReturnAbandonedBets},
                                   {"~917", nullptr, nullptr, &RuleSet::AllowPennyPayoffs}};

std::string SingleRuleMessage(const SingleRule& rule, const RuleSet& r) {
  std::string m(rule.code);
  if (rule.amount) PutAmount(m, r.*rule.amount);
  else if (rule.number) PutInt(m, r.*rule.number);
  else PutFlag(m, r.*rule.flag);
  return m;
}

// The parts a mirror must hold alike, each named, in one walk for the digest and the difference.
template <class F>
void VisitTable(const Game& g, F&& part) {
  auto bytes = [&](const char* name, const auto& v) { part(name, &v, sizeof(v), sizeof(v[0])); };
  for (int s = 1; s < kSeats; ++s) part("player name", g.PlayerName[s].data(), g.PlayerName[s].size(), size_t{1});
  for (int s = 1; s < kSeats; ++s) {
    const Money money[] = {g.Bankroll[s], g.BuyInTotal[s + kSessionScope], g.BeginningBankroll[s + kSessionScope]};
    bytes("bankroll, buy-in and beginning bankroll of a seat", money);
  }
  // Bets, not the CheckStacks behind them: those are the memory of a seat's script and
  // stay with the machine that runs it.
  for (int s = 0; s < kSeats; ++s) part("bets", g.BetAmount[s].data(), sizeof(Money) * (kBets + 1), sizeof(Money));
  bytes("contract bases", g.ContractBase);
  bytes("working states", g.BetWorking);
  bytes("buy vig", g.BuyVigHeld);
  bytes("lay vig", g.LayVigHeld);
  bytes("wagered", g.OnTable);
  bytes("auto-pass", g.AutoPassDice);
  bytes("negative bankroll", g.AllowNegBankroll);
  const TableState& t = g.Table;
  const int32_t table[] = {t.Die1,           t.Die2,      t.DiceTotal,     t.Point,           t.PriorPoint,
                           t.LastPoint,      t.Shooter,   t.HandShooter,   t.LastHandShooter, t.NumberOfPlayers,
                           t.FireMask,       t.FireCount, t.HotRollerMask, t.HotRollerCount,  t.FourRollCount,
                           t.AllNumbersMask, t.PointsWon, t.PassesMade};
  bytes("dice, point, shooters and counters", table);
  bytes("repeater counts", t.RepeaterCount);
  const RuleSet& r = g.Rules;
  const Money money[] = {r.MinPlacardBet, r.MinPlacardPropBet, r.MaxPlacardBet, r.MaxPropBetPayoff,
                         r.MaxOddsBet,    r.OddsAllowed410,    r.OddsAllowed59, r.OddsAllowed68,
                         r.BuyVigPct,     r.LayVigPct,         g.HostMinBuyIn,  g.HostMaxBuyIn};
  bytes("limits, odds, vig and buy-in bounds", money);
  const int32_t options[] = {r.OddsCalcMethod, r.ChargeAllBuy,       r.RoundBuyVig, r.ChargeAllLay,
                             r.RoundLayVig,    r.AllowPennyPayoffs,  r.BarNumber,   r.BetNeededToShoot,
                             r.AllowPutBets,   r.ReturnAbandonedBets};
  bytes("table options", options);
  bytes("checks", r.CheckDenom);
  bytes("working on the come-out", r.WorkOnComeOut);
  bytes("bet payoffs", r.BetPayoff);
  bytes("field payoffs", r.FieldPayoff);
  bytes("midway payoffs", r.MidwayPayoff);
  bytes("seven point seven payoffs", r.SevenPointSevenPayoff);
  bytes("hot roller payoffs", r.HotRollerPayoff);
  bytes("sharp shooter payoffs", r.SharpShooterPayoff);
  bytes("ride the line payoffs", r.RideLinePayoff);
  bytes("fire payoffs", r.FirePayoff);
}

uint64_t Fnv(uint64_t h, const void* data, size_t n) {
  const auto* p = static_cast<const unsigned char*>(data);
  for (size_t i = 0; i < n; ++i) h = (h ^ p[i]) * 1099511628211ull;
  return h;
}

constexpr uint64_t kFnvStart = 14695981039346656037ull;

}  // namespace

bool ChangedBets::Any() const {
  for (const auto* marks : {&marked_, &working_})
    for (const auto& seat : *marks)
      for (bool b : seat)
        if (b) return true;
  for (bool s : comeOut_)
    if (s) return true;
  return false;
}

std::vector<std::string> ChangedBets::Take(const Game& g) {
  std::vector<std::string> out;
  for (auto [marks, record] : {std::pair{&marked_, &BetRecord}, std::pair{&working_, &WorkingRecord}}) {
    std::string m;
    for (int s = 0; s < kSeats; ++s)
      for (int b = 1; b <= kBets; ++b) {
        if (!(*marks)[s][b]) continue;
        (*marks)[s][b] = false;
        std::string one = record(g, s, b);
        if (m.size() + one.size() + 4 > 9000) out.push_back(std::move(m)), m.clear();
        m += one;
      }
    if (!m.empty()) out.push_back(std::move(m));
  }
  std::string m;
  for (int s = 0; s < kSeats; ++s)
    if (comeOut_[s]) {
      comeOut_[s] = false;
      m += WorkOnComeOutRecord(g, s);
    }
  if (!m.empty()) out.push_back(std::move(m));
  return out;
}

std::string BetRecord(const Game& g, int seat, int bet) {
  std::string m;
  AddBet(m, g, seat, bet);
  return m;
}

std::string WorkingRecord(const Game& g, int seat, int bet) {
  std::string m;
  AddWorking(m, g, seat, bet);
  return m;
}

std::string SeatBetsMessage(const Game& g, int seat) {
  std::string m;
  for (int b = 1; b <= kBets; ++b) AddBet(m, g, seat, b);
  return m;
}

std::string SeatWorkingMessage(const Game& g, int seat) {
  std::string m;
  for (int b = 1; b <= kBets; ++b) AddWorking(m, g, seat, b);
  return m;
}

std::string WorkOnComeOutRecord(const Game& g, int seat) {
  std::string m = "~899";
  PutInt(m, seat);
  for (int b = 1; b <= 87; ++b) m += g.Rules.WorkOnComeOut[b][seat] ? '1' : '0';
  m += '\t';
  return m;
}

std::string WorkOnComeOutMessage(const Game& g) {
  std::string m;
  for (int s = 0; s < kSeats; ++s)
    if (s == 0 || SeatOccupied(g, s)) m += WorkOnComeOutRecord(g, s);
  return m;
}

std::vector<std::string> PlayersMessages(const Game& g) {
  std::string taken, free;
  for (int s = 1; s < kSeats; ++s) {
    if (SeatOccupied(g, s)) {
      taken += "~888";
      PutInt(taken, s);
      PutText(taken, g.PlayerName[s]);
      PutAmount(taken, g.Bankroll[s]);
    } else {
      free += "~886";
      PutInt(free, s);
    }
  }
  std::vector<std::string> out;
  if (!taken.empty()) out.push_back(std::move(taken));
  if (!free.empty()) out.push_back(std::move(free));
  out.push_back(ShootersMessage(g));
  return out;
}

std::string ShootersMessage(const Game& g) {
  std::string m = "~889";
  PutInt(m, g.Table.Shooter);
  PutInt(m, g.Table.LastHandShooter);
  PutInt(m, g.Table.HandShooter);
  return m;
}

std::string BankrollRecord(const Game& g, int seat) {
  std::string m;
  AddBankroll(m, g, seat);
  return m;
}

std::string BankrollsMessage(const Game& g) {
  std::string m;
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s)) AddBankroll(m, g, s);
  return m;
}

std::vector<std::string> ConfigurationMessages(const Game& g) {
  const RuleSet& r = g.Rules;
  std::vector<std::string> out;
  std::string checks;
  for (int d = 1; d <= 5; ++d) {
    checks += "~890";
    PutDigit(checks, d);
    PutAmount(checks, r.CheckDenom[d]);
  }
  out.push_back(std::move(checks));
  // The single rules between two codes, in code order.
  auto singles = [&](std::string_view from, std::string_view to) {
    for (const SingleRule& rule : kSingleRules)
      if (rule.code >= from && rule.code <= to) out.push_back(SingleRuleMessage(rule, r));
  };
  singles("~891", "~895");
  std::string odds;
  const Money multiples[] = {r.OddsAllowed410, r.OddsAllowed59, r.OddsAllowed68};
  for (int k = 0; k < 3; ++k) {
    odds += "~896";
    PutDigit(odds, 4 + k);
    PutAmount(odds, multiples[k]);
  }
  out.push_back(std::move(odds));
  singles("~897", "~898");
  out.push_back(WorkOnComeOutMessage(g));
  singles("~900", "~908");
  for (const auto& t : PayoffTables(r)) AddPayoffRows(out, t.code, t.rows, t.first, t.last);
  singles("~917", "~917");
  std::string negative;
  for (int s = 1; s < kSeats; ++s) {
    negative += "~918";
    PutInt(negative, s);
    PutFlag(negative, g.AllowNegBankroll[s]);
  }
  out.push_back(std::move(negative));
  out.push_back(CountersMessage(g));
  return out;
}

std::string CountersMessage(const Game& g) {
  const TableState& t = g.Table;
  std::string m = "~919";
  for (int32_t v : {t.Point, t.PriorPoint, t.SecondPriorPoint, t.LastPoint, t.HotRollerMask, t.HotRollerCount,
                    t.AllNumbersMask, t.FourRollCount, t.FireMask, t.FireCount, t.PointsWon, t.PassesMade})
    PutInt(m, v);
  for (int total = 2; total <= 12; ++total) PutInt(m, t.RepeaterCount[total]);
  return m;
}

void ApplyBetRecords(Game& g, const ParsedMessage& m) {
  for (int r = 0; r < m.records; ++r) {
    const int seat = static_cast<int>(m.At(r, 0).number), bet = static_cast<int>(m.At(r, 1).number);
    const Money amount = m.At(r, 2).amount;
    if (amount != g.BetAmount[seat][bet]) CommitAmount(g, seat, bet, amount - g.BetAmount[seat][bet]);
    SetContractBase(g, seat, bet, m.At(r, 3).amount);
    // Vig is held by Buy and Lay only; charged up front it is part of what the seat wagers.
    if (IsBuy(bet) || IsLay(bet)) {
      Money& held = IsBuy(bet) ? g.BuyVigHeld[seat][bet - bet::Buy4] : g.LayVigHeld[seat][bet - bet::Lay4];
      const bool upFront = IsBuy(bet) ? g.Rules.ChargeAllBuy : g.Rules.ChargeAllLay;
      const Money vig = m.At(r, 4).amount;
      if (upFront) g.OnTable[seat] += vig - held;
      held = vig;
    }
  }
}

void ApplyWorkingRecords(Game& g, const ParsedMessage& m) {
  for (int r = 0; r < m.records; ++r)
    g.BetWorking[m.At(r, 0).number][m.At(r, 1).number] = static_cast<WorkingState>(m.At(r, 2).number);
}

void ApplyBankrollRecords(Game& g, const ParsedMessage& m) {
  for (int r = 0; r < m.records; ++r) {
    const int seat = static_cast<int>(m.At(r, 0).number);
    const Money bankroll = m.At(r, 1).amount, invested = m.At(r, 3).amount;
    for (int scope : kCountedScopes) g.Bankroll[seat + scope] = bankroll;
    // What came in since the buy-in counts in all sessions as well, as the ATM counts it.
    g.BuyInTotal[seat + kAllScope] += invested - g.BuyInTotal[seat + kSessionScope];
    g.BuyInTotal[seat] = g.BuyInTotal[seat + kSessionScope] = invested;
    g.BeginningBankroll[seat + kSessionScope] = m.At(r, 2).amount;
  }
}

void ApplyShooters(Game& g, const ParsedMessage& m) {
  g.Table.Shooter = static_cast<int32_t>(m.At(0, 0).number);
  g.Table.LastHandShooter = static_cast<int32_t>(m.At(0, 1).number);
  g.Table.HandShooter = static_cast<int32_t>(m.At(0, 2).number);
}

bool ApplyCounters(Game& g, const ParsedMessage& m, std::string& fault) {
  for (int k = 0; k < 4; ++k) {
    const int64_t p = m.At(0, k).number;
    if (p != 0 && (p < 4 || p > 10 || p == 7)) {
      fault = std::to_string(p) + " is no point";
      return false;
    }
  }
  TableState& t = g.Table;
  int32_t* fields[] = {&t.Point,         &t.PriorPoint,     &t.SecondPriorPoint, &t.LastPoint,
                       &t.HotRollerMask, &t.HotRollerCount, &t.AllNumbersMask,   &t.FourRollCount,
                       &t.FireMask,      &t.FireCount,      &t.PointsWon,        &t.PassesMade};
  int k = 0;
  for (int32_t* f : fields) *f = static_cast<int32_t>(m.At(0, k++).number);
  for (int total = 2; total <= 12; ++total) t.RepeaterCount[total] = static_cast<int32_t>(m.At(0, k++).number);
  return true;
}

bool IsRuleCode(std::string_view code) { return code >= "~890" && code <= "~918" && code.size() == 4; }

bool ApplyRuleMessage(Game& g, const ParsedMessage& m, std::string& fault) {
  const std::string_view code = m.form->code;
  if (!IsRuleCode(code)) {
    fault = "not a rule";
    return false;
  }
  RuleSet r = g.Rules;
  const SingleRule* single = nullptr;
  for (const SingleRule& rule : kSingleRules)
    if (rule.code == code) single = &rule;
  if (single) {
    if (single->amount) r.*single->amount = m.At(0, 0).amount;
    else if (single->number) r.*single->number = static_cast<int>(m.At(0, 0).number);
    else r.*single->flag = m.At(0, 0).number != 0;
    if (r.BarNumber != 2 && r.BarNumber != 12) {
      fault = "the bar number is 2 or 12";
      return false;
    }
  } else if (code == "~890") {
    for (int i = 0; i < m.records; ++i) r.CheckDenom[m.At(i, 0).number] = m.At(i, 1).amount;
    for (int d = 1; d <= 5; ++d)
      if (r.CheckDenom[d].raw <= 0 || (d > 1 && r.CheckDenom[d] < r.CheckDenom[d - 1])) {
        fault = "the checks must be above 0 and ascending";
        return false;
      }
  } else if (code == "~896") {
    for (int i = 0; i < m.records; ++i) {
      Money* to[] = {&r.OddsAllowed410, &r.OddsAllowed59, &r.OddsAllowed68};
      *to[m.At(i, 0).number - 4] = m.At(i, 1).amount;
    }
  } else if (code == "~899") {
    for (int i = 0; i < m.records; ++i) {
      const int seat = static_cast<int>(m.At(i, 0).number);
      const std::string_view bits = m.At(i, 1).text;
      for (int b = 1; b <= 87; ++b) r.WorkOnComeOut[b][seat] = bits[b - 1] == '1';
    }
  } else if (code == "~918") {
    for (int i = 0; i < m.records; ++i) g.AllowNegBankroll[m.At(i, 0).number] = m.At(i, 1).number != 0;
    return true;
  } else {
    for (const auto& t : PayoffTables(r)) {
      if (t.code != code) continue;
      for (int i = 0; i < m.records; ++i) {
        const int row = static_cast<int>(m.At(i, 0).number);
        if (row < t.first || row > t.last || m.At(i, 3).amount.raw <= 0) {
          fault = "row " + std::to_string(row) + " is no row of the table or pays per nothing";
          return false;
        }
        t.rows[row].PayoffPay = m.At(i, 1).amount;
        t.rows[row].PayoffToFor = m.At(i, 2).amount;
        t.rows[row].PayoffFor = m.At(i, 3).amount;
      }
    }
  }
  ReplaceRules(g, r);
  return true;
}

std::string ClockText(const Game& g) {
  const LocalDateTime t = g.Time ? g.Time->Now() : LocalDateTime{};
  const int h = t.hour % 12 == 0 ? 12 : t.hour % 12;
  return std::to_string(h) + ":" + (t.minute < 10 ? "0" : "") + std::to_string(t.minute) +
         (t.hour < 12 ? " am" : " pm");
}

std::string DayText(const Game& g) {
  const LocalDateTime t = g.Time ? g.Time->Now() : LocalDateTime{};
  return std::to_string(t.month) + "/" + std::to_string(t.day) + "/" + std::to_string(t.year);
}

uint64_t TableDigest(const Game& g) {
  uint64_t h = kFnvStart;
  VisitTable(g, [&](const char*, const void* data, size_t n, size_t) { h = Fnv(h, data, n); });
  return h;
}

uint64_t StatisticsDigest(const Game& g) {
  const Statistics& s = g.Stats;
  uint64_t h = kFnvStart;
  h = Fnv(h, &s.RollCount, sizeof(s.RollCount));
  h = Fnv(h, &s.HandsShot, sizeof(s.HandsShot));
  h = Fnv(h, &s.SeatRolls, sizeof(s.SeatRolls));
  for (const auto* rows : {&s.BetStats, &s.BetWinStats, &s.BetLossStats})
    ForLaidOutBytes(*rows, [&](const void* data, size_t n) { h = Fnv(h, data, n); });
  h = Fnv(h, &s.HandDecisions, sizeof(s.HandDecisions));
  return h;
}

std::string TableDifference(const Game& a, const Game& b) {
  struct Part {
    const char* name;
    std::string bytes;
    size_t row;  // bytes of one element of the part's outer array
  };
  auto collect = [](const Game& g) {
    std::vector<Part> parts;
    VisitTable(g, [&](const char* name, const void* data, size_t n, size_t row) {
      parts.push_back({name, std::string(static_cast<const char*>(data), n), row});
    });
    return parts;
  };
  const std::vector<Part> pa = collect(a), pb = collect(b);
  for (size_t i = 0; i < pa.size() && i < pb.size(); ++i) {
    if (pa[i].bytes == pb[i].bytes) continue;
    size_t at = 0;
    while (at < pa[i].bytes.size() && at < pb[i].bytes.size() && pa[i].bytes[at] == pb[i].bytes[at]) ++at;
    // Per seat and bet, the seat and the element; elsewhere the element.
    const size_t row = pa[i].row ? pa[i].row : 1;
    const size_t outer = at / row, inner = (at % row) / sizeof(int64_t);
    return std::string(pa[i].name) + " [" + std::to_string(outer) + "][" + std::to_string(inner) + "]";
  }
  return "";
}
