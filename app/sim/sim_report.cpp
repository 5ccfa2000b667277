#include "app/sim/sim_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <ostream>

#include "autobet/variables.h"
#include "stats/roll_totals.h"

namespace {

// The run is every session it played: the "All sessions" columns.
constexpr int kRun = kAllScope;

// The dice as rolled against fair dice: the chi-square test of the eleven totals.
ChiSquareTest DiceTest(const Game& g) {
  RollTotalsRequest request;
  request.Display = 0;
  request.ScopeBase = kRun;
  return ComputeRollTotals(g.Stats, request).Chi;
}

std::string Percent(double part, double whole) {
  return whole == 0 ? "-" : fmt::format("{:.2f}%", 100.0 * part / whole);
}

std::string Dollars(double d) { return DollarText(Money::FromDouble(d)); }

}  // namespace

std::vector<BetTally> BetTallies(const Game& g, int c) {
  std::vector<BetTally> tallies;
  const Statistics& st = g.Stats;
  for (int b = 1; b <= kBets; ++b) {
    const auto& w = st.BetStats[c][b];
    if (w[0].raw == 0) continue;
    tallies.push_back({b, w[0].raw / Money::kScale, st.BetWinStats[c][b][0].raw / Money::kScale,
                       st.BetLossStats[c][b][0].raw / Money::kScale, w[1], st.BetWinStats[c][b][1],
                       st.BetLossStats[c][b][1]});
  }
  return tallies;
}

std::vector<FaultTally> FaultTallies(const Game& g, int seat) {
  std::vector<FaultTally> faults;
  for (const auto& f : g.AutoBet.FirstFaults[seat]) faults.push_back({f.code, f.line, f.count});
  return faults;
}

std::string BetLineText(const BetTally& b) {
  const Money net = b.amountWon - b.amountLost;
  return fmt::format("{}: {} decisions, wagered {}, won {}, lost {}, net {} ({} of wagered; {} won)", BetName(b.bet),
                     b.decisions, DollarText(b.wagered), DollarText(b.amountWon), DollarText(b.amountLost),
                     DollarText(net), Percent(net.ToDouble(), b.wagered.ToDouble()),
                     Percent(double(b.won), double(b.decisions)));
}

nlohmann::json BetJson(const BetTally& b) {
  return {{"bet", std::string(BetName(b.bet))},
          {"decisions", b.decisions},
          {"won", b.won},
          {"lost", b.lost},
          {"wagered", b.wagered.ToDouble()},
          {"amount_won", b.amountWon.ToDouble()},
          {"amount_lost", b.amountLost.ToDouble()},
          {"net", (b.amountWon - b.amountLost).ToDouble()}};
}

void WriteScriptFaults(const std::string& file, int64_t faults, const std::vector<FaultTally>& first,
                       std::ostream& out) {
  out << fmt::format("  script {}: {} run-time fault{}\n", file, faults, faults == 1 ? "" : "s");
  for (const FaultTally& f : first)
    out << fmt::format("    line {}: {} ({}), {} time{}\n", f.line, OneLineText(RunErrorText(f.code)), f.code, f.count,
                       f.count == 1 ? "" : "s");
}

nlohmann::json ScriptJson(const std::string& file, int64_t faults, const std::vector<FaultTally>& first) {
  nlohmann::json list = nlohmann::json::array();
  for (const FaultTally& f : first)
    list.push_back({{"code", f.code}, {"line", f.line}, {"text", RunErrorText(f.code)}, {"count", f.count}});
  return {{"file", file}, {"faults", faults}, {"first_faults", std::move(list)}};
}

std::string OneLineText(std::string text) {
  for (char& c : text)
    if (c == '\n') c = ' ';
  // The paragraphs of a stop text come with blank lines between them.
  std::string out;
  for (char c : text)
    if (!(c == ' ' && !out.empty() && out.back() == ' ')) out += c;
  return out;
}

int32_t SumDecisions(const Statistics& st, int column, int which, bool pointsOnly) {
  int32_t n = 0;
  for (int t = 2; t <= 12; ++t) {
    if (pointsOnly && (t == 2 || t == 3 || t == 7 || t == 11 || t == 12)) continue;
    n += st.HandDecisions[column][t][which];
  }
  return n;
}

SessionSpread SpreadOf(const std::vector<SessionRecord>& records) {
  SessionSpread s;
  s.count = static_cast<int64_t>(records.size());
  if (records.empty()) return s;
  double sum = 0, won = 0;
  s.min = s.max = (records[0][slg::Ending] - records[0][slg::Invested]).ToDouble();
  for (const SessionRecord& r : records) {
    const double x = (r[slg::Ending] - r[slg::Invested]).ToDouble();
    sum += x;
    s.min = std::min(s.min, x);
    s.max = std::max(s.max, x);
    if (x > 0) ++won;
  }
  s.mean = sum / static_cast<double>(s.count);
  double squares = 0;
  for (const SessionRecord& r : records) {
    const double d = (r[slg::Ending] - r[slg::Invested]).ToDouble() - s.mean;
    squares += d * d;
  }
  s.sd = s.count > 1 ? std::sqrt(squares / static_cast<double>(s.count - 1)) : 0;
  s.wonShare = won / static_cast<double>(s.count);
  return s;
}

void WriteTextReport(const Game& g, const RunOutcome& run, const std::vector<SessionSpread>& sessions,
                     std::ostream& out) {
  const Statistics& st = g.Stats;
  if (!run.stopped.empty())
    out << fmt::format("Played {} of {} rolls: {}\n", run.played, run.asked, OneLineText(run.stopped));
  const int32_t rolls = st.RollCount[kRun][0];
  const int32_t hands = st.HandsShot[kRun];
  out << fmt::format("Rolls:        {}\n", rolls);
  out << fmt::format("Hands:        {}\n", hands);
  out << fmt::format("Passes:       {}\n", SumDecisions(st, kRun, 1, false));
  out << fmt::format("Misses:       {}\n", SumDecisions(st, kRun, 2, false));
  out << fmt::format("Points made:  {}\n", SumDecisions(st, kRun, 1, true));
  if (hands > 0)
    out << fmt::format("Rolls a hand: {:.2f} (longest {})\n", double(rolls) / hands, st.MostRollsInHand[kRun]);
  if (rolls > 0) {
    const ChiSquareTest chi = DiceTest(g);
    out << fmt::format("Dice:         chi-square {} on {} degrees of freedom, {}\n", chi.SumText, chi.Df, chi.PText);
  }
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    const Money bankroll = g.Bankroll[s];
    const Money net = g.Bankroll[kRun + s] - g.BuyInTotal[kRun + s];
    out << fmt::format("{} ({}): bankroll {}, net {}\n", g.PlayerName[s], SeatName(s), DollarText(bankroll),
                       DollarText(net));
    out << fmt::format("  bought in {}, high {}, low {}\n", DollarText(g.BuyInTotal[kRun + s]),
                       DollarText(g.HighBankroll[kRun + s]), DollarText(g.LowBankroll[kRun + s]));
    if (static_cast<size_t>(s) < sessions.size() && sessions[s].count > 1) {
      const SessionSpread& d = sessions[s];
      out << fmt::format("  sessions: {}, result mean {}, sd {}, min {}, max {}, {:.2f}% won\n", d.count,
                         Dollars(d.mean), Dollars(d.sd), Dollars(d.min), Dollars(d.max), 100.0 * d.wonShare);
    }
    if (g.ScriptActive[s] || !g.ScriptFile[s].empty())
      WriteScriptFaults(g.ScriptFile[s], g.AutoBet.FaultCount[s], FaultTallies(g, s), out);
    for (const BetTally& b : BetTallies(g, kRun + s)) out << "  " << BetLineText(b) << "\n";
  }
}

void WriteJsonReport(const Game& g, const RunOutcome& run, const std::vector<SessionSpread>& sessions,
                     std::ostream& out) {
  using nlohmann::json;
  const Statistics& st = g.Stats;
  auto money = [](Money m) { return m.ToDouble(); };
  json report;
  report["rolls"] = st.RollCount[kRun][0];
  report["hands"] = st.HandsShot[kRun];
  report["passes"] = SumDecisions(st, kRun, 1, false);
  report["misses"] = SumDecisions(st, kRun, 2, false);
  report["points_made"] = SumDecisions(st, kRun, 1, true);
  if (run.seed) report["seed"] = *run.seed;
  const ChiSquareTest chi = DiceTest(g);
  report["dice"] = {{"chi_square", chi.Sum}, {"degrees_of_freedom", chi.Df}, {"p", chi.P}};
  json players = json::array();
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    json p;
    p["name"] = g.PlayerName[s];
    p["seat"] = std::string(SeatName(s));
    p["bankroll"] = money(g.Bankroll[s]);
    p["bought_in"] = money(g.BuyInTotal[kRun + s]);
    p["net"] = money(g.Bankroll[kRun + s] - g.BuyInTotal[kRun + s]);
    p["high"] = money(g.HighBankroll[kRun + s]);
    p["low"] = money(g.LowBankroll[kRun + s]);
    if (static_cast<size_t>(s) < sessions.size() && sessions[s].count > 1) {
      const SessionSpread& d = sessions[s];
      p["sessions"] = {{"count", d.count}, {"mean", d.mean}, {"sd", d.sd},
                       {"min", d.min},     {"max", d.max},   {"won_share", d.wonShare}};
    }
    json bets = json::array();
    for (const BetTally& b : BetTallies(g, kRun + s)) bets.push_back(BetJson(b));
    p["bets"] = std::move(bets);
    if (!g.ScriptFile[s].empty())
      p["script"] = ScriptJson(g.ScriptFile[s], g.AutoBet.FaultCount[s], FaultTallies(g, s));
    players.push_back(std::move(p));
  }
  report["players"] = std::move(players);
  if (!run.stopped.empty()) {
    report["played"] = run.played;
    report["asked"] = run.asked;
    report["stopped"] = run.stopped;
  }
  out << report.dump(2) << "\n";
}
