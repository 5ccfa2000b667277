// A run of many sessions as the user starts it: its sessions played on the workers, its
// logs, CSV rows and report; a shard's partial file; and two systems compared.

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <ostream>

#include "app/sim/data_folder.h"
#include "app/sim/sample_stats.h"
#include "app/sim/sim_partial.h"
#include "app/sim/sim_report.h"
#include "app/sim/sim_research_report.h"
#include "app/sim/sim_sessions.h"
#include "storage/paths.h"

namespace {

int ExitCode(const ResearchOutcome& outcome) {
  if (!outcome.stopped.empty()) return 1;
  return outcome.interrupted ? 130 : 0;
}

// A statistic in dollars and cents.
// A confidence as a percentage; one that rounds to certainty isn't.
std::string Confidence(double c) { return c >= 0.99995 ? "more than 99.99%" : fmt::format("{:.2f}%", 100 * c); }

std::string Dollars(double d) { return DollarText(Money::FromDouble(std::round(d * 100) / 100)); }

// One system of a comparison: its file, its sessions' results and what its bets expect.
struct System {
  std::string file;
  ResearchFacts facts;
  ResearchTotals totals;
  ResearchOutcome outcome;
};

int PlaySystem(const SimOptions& o, System& system, std::ostream& err) {
  SimPrepared p;
  RunFault fault;
  if (!PrepareSim(o, p, fault)) return TellFault(fault, err);
  if (const int code = PrepareResearch(o, p, system.facts, err); code != 0) return code;
  system.outcome = PlaySessions(o, p, system.facts, [&](const SessionResult& s) {
    AddSession(system.totals, system.facts, s);
    return std::string();
  });
  return 0;
}

// The expected net of a system's bets over its sessions, when every bet it made has an
// exact edge.
bool ExpectedOf(const System& s, double& expected) {
  expected = 0;
  if (s.totals.players.empty()) return false;
  const PlayerTotals& p = s.totals.players[0];
  for (int b = 1; b <= kBets; ++b) {
    if (p.bets[b].decisions == 0) continue;
    if (!s.facts.hasEdge[b]) return false;
    expected += s.facts.edge[b] * p.bets[b].wagered.ToDouble();
  }
  return true;
}

}  // namespace

int RunResearch(const SimOptions& o, const SimPrepared& p, std::ostream& out, std::ostream& err) {
  ResearchFacts facts;
  if (const int code = PrepareResearch(o, p, facts, err); code != 0) return code;
  const bool shard = o.research.shardCount > 0;
  std::string folder, error;
  FolderLock lock;
  PartialWriter partial;
  std::ofstream csv;
  if (shard) {
    const int64_t m = o.sessions, i = o.research.shardIndex, n = o.research.shardCount;
    if (!partial.Open(o.research.partialFile, o, facts, (i - 1) * m / n + 1, i * m / n, error)) {
      err << "dicehall-sim: " << error << "\n";
      return 1;
    }
  } else {
    folder = ResolveDataDir(o.dataDir);
    if (!MakeDataFolder(folder, err) || !lock.Take(folder, err)) return 1;
    if (!CheckSessionLogs(folder, facts, error)) {
      err << "dicehall-sim: " << error << "\n";
      return 1;
    }
    if (!o.research.csvFile.empty() && !StartCsv(o.research.csvFile, csv)) {
      err << "dicehall-sim: --csv " << o.research.csvFile << ": the file can't be written.\n";
      return 1;
    }
  }
  ResearchTotals totals;
  const ResearchOutcome outcome = PlaySessions(o, p, facts, [&](const SessionResult& s) -> std::string {
    if (shard) return partial.Add(s) ? "" : "--partial " + o.research.partialFile + ": the file can't be written.";
    if (!AppendSessionLogs(folder, facts, s, error)) return error;
    AddSession(totals, facts, s);
    if (csv.is_open()) WriteCsvRows(facts, s, csv);
    return "";
  });
  if (!outcome.stopped.empty()) err << "dicehall-sim: " << OneLineText(outcome.stopped) << "\n";
  if (shard) {
    if (!partial.Close(outcome, error)) {
      err << "dicehall-sim: " << error << "\n";
      return 1;
    }
    out << fmt::format("Shard {} of {}: sessions {} to {} of {}, {} played, written to {}.\n", o.research.shardIndex,
                       o.research.shardCount, outcome.first, outcome.last, o.sessions, outcome.played,
                       o.research.partialFile);
    return ExitCode(outcome);
  }
  if (o.json) WriteResearchJson(facts, totals, outcome, out);
  else WriteResearchText(facts, totals, outcome, out);
  return ExitCode(outcome);
}

int RunCompare(const SimOptions& o, std::ostream& out, std::ostream& err) {
  std::array<System, 2> systems;
  SimOptions each = o;
  each.command = SimCommand::Run;
  if (!each.seeded) {
    each.seeded = true;  // both systems meet the same dice
    each.seed = ClockSeed();
  }
  for (size_t i = 0; i < systems.size(); ++i) {
    systems[i].file = o.files[i];
    each.players[0].script = o.files[i];
    if (const int code = PlaySystem(each, systems[i], err); code != 0) return code;
    if (systems[i].outcome.interrupted || !systems[i].outcome.stopped.empty()) {
      if (!systems[i].outcome.stopped.empty())
        err << "dicehall-sim compare: " << o.files[i] << ": " << OneLineText(systems[i].outcome.stopped) << "\n";
      return ExitCode(systems[i].outcome);
    }
  }
  const System &a = systems[0], &b = systems[1];
  const std::vector<Money>& ra = a.totals.players[0].results;
  const std::vector<Money>& rb = b.totals.players[0].results;
  const size_t n = std::min(ra.size(), rb.size());
  std::vector<double> difference(n), resultA(n), resultB(n);
  bool same = true;
  for (size_t k = 0; k < n; ++k) {
    resultA[k] = ra[k].ToDouble();
    resultB[k] = rb[k].ToDouble();
    difference[k] = (rb[k] - ra[k]).ToDouble();
    same = same && rb[k] == ra[k];
  }
  const SampleSummary da = Summarize(resultA), db = Summarize(resultB), d = Summarize(difference);
  double expectedA = 0, expectedB = 0;
  const bool expected = ExpectedOf(a, expectedA) && ExpectedOf(b, expectedB) && n > 0;
  const double perSession = n > 0 ? 1.0 / static_cast<double>(n) : 0;
  std::string verdict, ahead;
  double confidence = 0;
  if (same) {
    verdict = "no difference";
  } else {
    ahead = d.mean > 0 ? "B" : "A";
    confidence = d.mean > 0 ? d.aheadConfidence : 1 - d.aheadConfidence;
    verdict = d.low <= 0 && d.high >= 0 ? "within noise" : ahead + " ahead";
  }
  const ResearchPlayer& player = a.facts.players[0];
  if (o.json) {
    using nlohmann::json;
    auto side = [&](const System& s, const SampleSummary& sum, bool known, double exp) {
      json j = {{"file", s.file}, {"mean", sum.mean}, {"sd", sum.sd}, {"ci95", {sum.low, sum.high}}};
      if (known) j["expected_mean"] = exp * perSession;
      return j;
    };
    json diff = {{"mean", d.mean}, {"sd", d.sd}, {"ci95", {d.low, d.high}}, {"verdict", verdict}};
    if (!ahead.empty()) {
      diff["ahead"] = ahead;
      diff["confidence"] = confidence;
    }
    if (expected) diff["expected_mean"] = (expectedB - expectedA) * perSession;
    json report = {{"sessions", n},
                   {"seed", a.facts.seed},
                   {"player", player.name},
                   {"buy_in", a.totals.players[0].buyIn.ToDouble()},
                   {"a", side(a, da, expected, expectedA)},
                   {"b", side(b, db, expected, expectedB)},
                   {"difference", std::move(diff)}};
    out << report.dump(2) << "\n";
  } else {
    out << fmt::format("Compare: {} sessions on the same dice (seed {}), {} with a buy-in of {}\n", n, a.facts.seed,
                       player.name, DollarText(a.totals.players[0].buyIn));
    for (const auto& [label, s, sum, exp] :
         {std::tuple{"A", &a, &da, expectedA}, std::tuple{"B", &b, &db, expectedB}}) {
      out << fmt::format("{} {}: mean {} a session, 95% confidence {} to {}", label, s->file, Dollars(sum->mean),
                         Dollars(sum->low), Dollars(sum->high));
      if (expected) out << fmt::format("; the exact edge expects {}", Dollars(exp * perSession));
      out << "\n";
    }
    out << fmt::format("B - A: mean {} a session, sd {}, 95% confidence {} to {}\n", Dollars(d.mean), Dollars(d.sd),
                       Dollars(d.low), Dollars(d.high));
    if (expected)
      out << fmt::format("The exact edge of the bets made expects B - A = {} a session.\n",
                         Dollars((expectedB - expectedA) * perSession));
    if (same) out << "No difference: A and B ended every session alike.\n";
    else if (verdict == "within noise")
      out << fmt::format(
          "Within noise: the 95% confidence interval of B - A holds 0 ({} is ahead with {} confidence only).\n", ahead,
          Confidence(confidence));
    else out << fmt::format("{} is ahead, with {} confidence.\n", ahead, Confidence(confidence));
  }
  if (!o.research.csvFile.empty()) {
    std::ofstream csv(o.research.csvFile, std::ios::binary | std::ios::trunc);
    csv << "session,a,b,difference\n";
    for (size_t k = 0; k < n; ++k)
      csv << fmt::format("{},{},{},{}\n", k + 1, DecimalText(ra[k]), DecimalText(rb[k]), DecimalText(rb[k] - ra[k]));
    if (!csv) {
      err << "dicehall-sim compare: --csv " << o.research.csvFile << ": the file can't be written.\n";
      return 1;
    }
  }
  return 0;
}
