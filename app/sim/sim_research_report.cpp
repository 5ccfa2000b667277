#include "app/sim/sim_research_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <ostream>

#include "app/sim/sample_stats.h"
#include "app/sim/sim_report.h"
#include "autobet/variables.h"
#include "stats/roll_totals.h"

namespace {

constexpr std::array<int, 7> kPercentiles = {1, 5, 25, 50, 75, 95, 99};

// A statistic in dollars and cents.
std::string Dollars(double d) { return DollarText(Money::FromDouble(std::round(d * 100) / 100)); }

std::string Share(int64_t part, int64_t whole) {
  return whole == 0 ? "-" : fmt::format("{:.2f}%", 100.0 * static_cast<double>(part) / static_cast<double>(whole));
}

// The dice as rolled over every session against fair dice: the chi-square test of the
// eleven totals, as the single run's report gives it.
ChiSquareTest DiceTestOf(const ResearchTotals& t) {
  ChiSquareTest test;
  static const ProbabilityPlane kNoPlane{};
  const auto kinds = DisplayKinds(0);
  const double rolls = static_cast<double>(t.rolls);
  for (size_t i = 0; i < kinds.size() && i < t.totals.size(); ++i) {
    const double expected = KindPercent(kinds[i], false, kNoPlane) * 0.01 * rolls;
    if (expected <= 0) continue;
    test.Sum += ChiSquareCell(static_cast<double>(t.totals[i]), expected);
    ++test.Count;
  }
  test.Df = test.Count > 0 ? test.Count - 1 : 0;
  test.P = Chi2Pval(test.Sum, test.Df);
  test.SumText = ChiSquareText(test.Sum);
  test.PText = PValueText(test.P);
  return test;
}

std::vector<double> AsDollars(const std::vector<Money>& amounts) {
  std::vector<double> d;
  d.reserve(amounts.size());
  for (Money m : amounts) d.push_back(m.ToDouble());
  return d;
}

// Every player's answers, worked out once for the text and the JSON.
struct PlayerAnswers {
  SampleSummary result;
  std::array<double, kPercentiles.size()> percentiles{};
  double expectedNet = 0, observedNet = 0;  // of the bets with an edge
  std::vector<int> withoutEdge;
  double hours = 0;
};

PlayerAnswers AnswersOf(const ResearchFacts& f, const PlayerTotals& p) {
  PlayerAnswers a;
  std::vector<double> results = AsDollars(p.results);
  a.result = Summarize(results);
  std::sort(results.begin(), results.end());
  for (size_t i = 0; i < kPercentiles.size(); ++i) a.percentiles[i] = Quantile(results, kPercentiles[i] / 100.0);
  for (int b = 1; b <= kBets; ++b) {
    const BetTally& t = p.bets[b];
    if (t.decisions == 0) continue;
    if (!f.hasEdge[b]) {
      a.withoutEdge.push_back(b);
      continue;
    }
    a.expectedNet += f.edge[b] * t.wagered.ToDouble();
    a.observedNet += (t.amountWon - t.amountLost).ToDouble();
  }
  a.hours = f.rollsPerHour > 0 ? static_cast<double>(p.rolls) / f.rollsPerHour : 0;
  return a;
}

std::string BetNames(const std::vector<int>& bets) {
  std::string names;
  for (int b : bets) names += (names.empty() ? "" : ", ") + std::string(BetName(b));
  return names;
}

std::string Bounds(const ResearchFacts& f) {
  std::string bounds;
  if (f.sessionRolls > 0) bounds = fmt::format("{} rolls", f.sessionRolls);
  if (f.sessionHours > 0) bounds += fmt::format("{}{} hours", bounds.empty() ? "" : " or ", f.sessionHours);
  if (f.stopLoss.raw > 0) bounds += ", stop-loss " + DollarText(f.stopLoss);
  if (f.stopWin.raw > 0) bounds += ", stop-win " + DollarText(f.stopWin);
  return bounds;
}

std::string Stopped(const ResearchOutcome& o) {
  if (!o.stopped.empty()) return OneLineText(o.stopped);
  if (o.interrupted) return "Interrupted.";
  return {};
}

}  // namespace

std::string DecimalText(Money m) {
  const bool negative = m.raw < 0;
  const uint64_t raw = negative ? 0 - static_cast<uint64_t>(m.raw) : static_cast<uint64_t>(m.raw);
  std::string text = std::to_string(raw / Money::kScale);
  if (const uint64_t part = raw % Money::kScale; part != 0) {
    std::string decimals = fmt::format("{:04}", part);
    while (decimals.back() == '0') decimals.pop_back();
    text += "." + decimals;
  }
  return negative ? "-" + text : text;
}

bool Ruined(const PlayerSession& p) {
  return p.end == SessionEnd::StopLoss || p.end == SessionEnd::Broke || (p.buyIn.raw > 0 && p.result <= -p.buyIn);
}

double ExpectedNet(const ResearchFacts& f, const std::vector<BetTally>& bets) {
  double net = 0;
  for (const BetTally& t : bets)
    if (f.hasEdge[t.bet]) net += f.edge[t.bet] * t.wagered.ToDouble();
  return net;
}

void AddSession(ResearchTotals& t, const ResearchFacts& f, const SessionResult& s) {
  ++t.sessions;
  t.rolls += s.rolls;
  t.hands += s.hands;
  t.passes += s.passes;
  t.misses += s.misses;
  t.pointsMade += s.pointsMade;
  t.longestHand = std::max(t.longestHand, s.longestHand);
  for (size_t i = 0; i < t.totals.size(); ++i) t.totals[i] += s.totals[i];
  t.players.resize(f.players.size());
  for (size_t i = 0; i < s.players.size() && i < t.players.size(); ++i) {
    const PlayerSession& p = s.players[i];
    PlayerTotals& pt = t.players[i];
    if (pt.results.empty()) pt.buyIn = p.buyIn;
    pt.results.push_back(p.result);
    pt.drawdownSum += p.drawdown.ToDouble();
    pt.drawdownWorst = std::max(pt.drawdownWorst, p.drawdown);
    pt.won += p.result.raw > 0;
    pt.ruined += Ruined(p);
    pt.rolls += p.rolls;
    ++pt.ends[static_cast<size_t>(p.end)];
    for (const BetTally& b : p.bets) {
      BetTally& sum = pt.bets[b.bet];
      sum.bet = b.bet;
      sum.decisions += b.decisions;
      sum.won += b.won;
      sum.lost += b.lost;
      sum.wagered += b.wagered;
      sum.amountWon += b.amountWon;
      sum.amountLost += b.amountLost;
    }
    pt.faults += p.faults;
    for (const FaultTally& f : p.firstFaults) {
      auto same = std::find_if(pt.firstFaults.begin(), pt.firstFaults.end(),
                               [&](const FaultTally& k) { return k.code == f.code && k.line == f.line; });
      if (same != pt.firstFaults.end()) same->count += f.count;
      else if (pt.firstFaults.size() < 5) pt.firstFaults.push_back(f);
    }
  }
}

void WriteResearchText(const ResearchFacts& f, const ResearchTotals& t, const ResearchOutcome& o, std::ostream& out) {
  const int64_t asked = o.last - o.first + 1;
  if (const std::string stopped = Stopped(o); !stopped.empty())
    out << fmt::format("Played {} of {} sessions: {}\n", o.played, asked, stopped);
  out << fmt::format("Sessions:     {}, each {}; seed {}\n", t.sessions, Bounds(f), f.seed);
  out << fmt::format("Rolls:        {}\n", t.rolls);
  out << fmt::format("Hands:        {}\n", t.hands);
  out << fmt::format("Passes:       {}\n", t.passes);
  out << fmt::format("Misses:       {}\n", t.misses);
  out << fmt::format("Points made:  {}\n", t.pointsMade);
  if (t.hands > 0)
    out << fmt::format("Rolls a hand: {:.2f} (longest {})\n", double(t.rolls) / double(t.hands), t.longestHand);
  if (t.rolls > 0) {
    const ChiSquareTest chi = DiceTestOf(t);
    out << fmt::format("Dice:         chi-square {} on {} degrees of freedom, {}\n", chi.SumText, chi.Df, chi.PText);
  }
  for (size_t i = 0; i < f.players.size() && i < t.players.size(); ++i) {
    const ResearchPlayer& rp = f.players[i];
    const PlayerTotals& p = t.players[i];
    const PlayerAnswers a = AnswersOf(f, p);
    const int64_t n = a.result.count;
    out << fmt::format("{} ({}): {} session{}, buy-in {}\n", rp.name, SeatName(rp.seat), n, n == 1 ? "" : "s",
                       DollarText(p.buyIn));
    if (n < 2) out << fmt::format("  result: {} (one session: no spread)\n", Dollars(a.result.mean));
    else
      out << fmt::format("  result: mean {}, sd {}, 95% confidence {} to {}\n", Dollars(a.result.mean),
                         Dollars(a.result.sd), Dollars(a.result.low), Dollars(a.result.high));
    std::string percentiles;
    for (size_t k = 0; k < kPercentiles.size(); ++k)
      percentiles += fmt::format("{}{}% {}", k ? ", " : "", kPercentiles[k], Dollars(a.percentiles[k]));
    out << "  percentiles: " << percentiles << "\n";
    out << fmt::format("  won {} of the sessions; ruin {} (the stop-loss, broke, or the buy-in lost)\n",
                       Share(p.won, n), Share(p.ruined, n));
    out << fmt::format("  drawdown: mean {}, worst {}\n", Dollars(n ? p.drawdownSum / double(n) : 0),
                       DollarText(p.drawdownWorst));
    out << fmt::format("  hours: {:.2f} a session, {:.2f} in all ({} rolls)\n", n ? a.hours / double(n) : 0, a.hours,
                       p.rolls);
    out << fmt::format("  net of the bets with an exact edge: expected {}, observed {}\n", Dollars(a.expectedNet),
                       Dollars(a.observedNet));
    if (!a.withoutEdge.empty())
      out << "  bets without an exact edge (not counted above): " << BetNames(a.withoutEdge) << "\n";
    std::string ends;
    for (int e = 0; e < kSessionEnds; ++e)
      ends += fmt::format("{}{} {}", e ? ", " : "", SessionEndName(static_cast<SessionEnd>(e)), p.ends[e]);
    out << "  ended by: " << ends << "\n";
    if (!rp.script.empty()) WriteScriptFaults(rp.script, p.faults, p.firstFaults, out);
    for (const BetTally& b : p.bets) {
      if (b.decisions == 0) continue;
      out << "  " << BetLineText(b);
      if (f.hasEdge[b.bet])
        out << fmt::format(", expected {} (edge {:.4f}%)", Dollars(f.edge[b.bet] * b.wagered.ToDouble()),
                           100 * f.edge[b.bet]);
      out << "\n";
    }
  }
}

void WriteResearchJson(const ResearchFacts& f, const ResearchTotals& t, const ResearchOutcome& o, std::ostream& out) {
  using nlohmann::json;
  auto money = [](Money m) { return m.ToDouble(); };
  json report;
  json sessions = {{"asked", o.last - o.first + 1}, {"played", t.sessions}};
  if (f.sessionRolls > 0) sessions["session_rolls"] = f.sessionRolls;
  if (f.sessionHours > 0) sessions["session_hours"] = f.sessionHours;
  if (f.stopLoss.raw > 0) sessions["stop_loss"] = money(f.stopLoss);
  if (f.stopWin.raw > 0) sessions["stop_win"] = money(f.stopWin);
  report["sessions"] = std::move(sessions);
  report["seed"] = f.seed;
  report["rolls"] = t.rolls;
  report["hands"] = t.hands;
  report["passes"] = t.passes;
  report["misses"] = t.misses;
  report["points_made"] = t.pointsMade;
  report["longest_hand"] = t.longestHand;
  const ChiSquareTest chi = DiceTestOf(t);
  report["dice"] = {{"chi_square", chi.Sum}, {"degrees_of_freedom", chi.Df}, {"p", chi.P}};
  json players = json::array();
  for (size_t i = 0; i < f.players.size() && i < t.players.size(); ++i) {
    const ResearchPlayer& rp = f.players[i];
    const PlayerTotals& p = t.players[i];
    const PlayerAnswers a = AnswersOf(f, p);
    const auto n = static_cast<double>(a.result.count);
    json j;
    j["name"] = rp.name;
    j["seat"] = std::string(SeatName(rp.seat));
    j["buy_in"] = money(p.buyIn);
    j["sessions"] = a.result.count;
    json percentiles;
    for (size_t k = 0; k < kPercentiles.size(); ++k) percentiles[std::to_string(kPercentiles[k])] = a.percentiles[k];
    j["result"] = {{"mean", a.result.mean},
                   {"sd", a.result.sd},
                   {"ci95", {a.result.low, a.result.high}},
                   {"percentiles", std::move(percentiles)}};
    j["won_share"] = n > 0 ? double(p.won) / n : 0;
    j["ruin_share"] = n > 0 ? double(p.ruined) / n : 0;
    j["drawdown"] = {{"mean", n > 0 ? p.drawdownSum / n : 0}, {"worst", money(p.drawdownWorst)}};
    j["hours"] = {{"mean", n > 0 ? a.hours / n : 0}, {"total", a.hours}, {"rolls", p.rolls}};
    j["expected_net"] = a.expectedNet;
    j["observed_net"] = a.observedNet;
    json without = json::array();
    for (int b : a.withoutEdge) without.push_back(std::string(BetName(b)));
    j["bets_without_edge"] = std::move(without);
    json ends;
    for (int e = 0; e < kSessionEnds; ++e) ends[SessionEndName(static_cast<SessionEnd>(e))] = p.ends[e];
    j["ended_by"] = std::move(ends);
    json bets = json::array();
    for (const BetTally& b : p.bets) {
      if (b.decisions == 0) continue;
      json bj = BetJson(b);
      if (f.hasEdge[b.bet]) {
        bj["edge"] = f.edge[b.bet];
        bj["expected_net"] = f.edge[b.bet] * b.wagered.ToDouble();
      }
      bets.push_back(std::move(bj));
    }
    j["bets"] = std::move(bets);
    if (!rp.script.empty()) j["script"] = ScriptJson(rp.script, p.faults, p.firstFaults);
    players.push_back(std::move(j));
  }
  report["players"] = std::move(players);
  if (const std::string stopped = Stopped(o); !stopped.empty()) report["stopped"] = stopped;
  out << report.dump(2) << "\n";
}

bool StartCsv(const std::string& path, std::ofstream& out) {
  out.open(path, std::ios::binary | std::ios::trunc);
  out << "session,player,seat,rolls,hours,buy_in,result,max_drawdown,reason,decisions,handle,expected_net,"
         "bets_without_edge\n";
  return static_cast<bool>(out);
}

void WriteCsvRows(const ResearchFacts& f, const SessionResult& s, std::ostream& out) {
  for (size_t i = 0; i < s.players.size() && i < f.players.size(); ++i) {
    const PlayerSession& p = s.players[i];
    int64_t decisions = 0;
    Money handle;
    std::vector<int> without;
    for (const BetTally& b : p.bets) {
      decisions += b.decisions;
      handle += b.wagered;
      if (!f.hasEdge[b.bet]) without.push_back(b.bet);
    }
    // Names are quoted as CSV quotes them: doubled quotation marks inside.
    std::string name = f.players[i].name, quoted;
    for (char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    const double hours = f.rollsPerHour > 0 ? static_cast<double>(p.rolls) / f.rollsPerHour : 0;
    out << fmt::format("{},\"{}\",{},{},{},{},{},{},{},{},{},{},\"{}\"\n", s.number, quoted,
                       SeatName(f.players[i].seat), p.rolls, hours, DecimalText(p.buyIn), DecimalText(p.result),
                       DecimalText(p.drawdown), SessionEndName(p.end), decisions, DecimalText(handle),
                       ExpectedNet(f, p.bets), BetNames(without));
  }
}
