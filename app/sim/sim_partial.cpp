// Partial result files of shards, and dicehall-sim merge.

#include "app/sim/sim_partial.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <ostream>

#include "app/sim/data_folder.h"
#include "app/sim/rules_json.h"
#include "app/sim/sim_report.h"
#include "app/sim/sim_research_report.h"
#include "storage/file_bytes.h"
#include "storage/paths.h"

namespace {

using nlohmann::json;

constexpr const char* kPartialKind = "dicehall-sim sessions";
constexpr int kPartialVersion = 1;

// FNV-1a, 64 bits: enough to tell runs apart, which is all it is for.
uint64_t Fnv1a(const std::string& bytes, uint64_t hash = 0xcbf29ce484222325ULL) {
  for (unsigned char c : bytes) {
    hash ^= c;
    hash *= 0x100000001b3ULL;
  }
  return hash;
}

std::string FileHash(const std::string& path) {
  if (path.empty()) return "";
  Bytes bytes;
  if (!ReadWholeFile(path, bytes, uint64_t{1} << 32)) return "unreadable";
  return fmt::format("{:016x}", Fnv1a(std::string(bytes.begin(), bytes.end())));
}

// Reads one field; false when it is missing or of another kind.
template <class T>
bool Get(const json& j, const char* key, T& out) {
  const auto it = j.find(key);
  if (it == j.end()) return false;
  try {
    out = it->get<T>();
    return true;
  } catch (const json::exception&) {
    return false;
  }
}

bool GetMoney(const json& j, const char* key, Money& out) {
  int64_t raw = 0;
  if (!Get(j, key, raw)) return false;
  out = Money::FromRaw(raw);
  return true;
}

struct PartialFile {
  std::string path;
  std::string fingerprint;
  int64_t first = 0, last = 0, played = 0;
  int shard = 0, shards = 0;
  std::string stopped;
  bool ended = false;
  ResearchFacts facts;
};

// The header and the end line of a partial file; the sessions are read as they're folded.
bool ReadPartialHeader(const std::string& path, PartialFile& file, std::string& error) {
  file.path = path;
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    error = path + ": the file can't be read.";
    return false;
  }
  std::string line;
  const std::string notOurs = path + ": this is not a partial result file of dicehall-sim --shard.";
  if (!std::getline(in, line)) {
    error = notOurs;
    return false;
  }
  const json header = json::parse(line, nullptr, false);
  std::string kind;
  int version = 0;
  json shard;
  if (header.is_discarded() || !Get(header, "partial", kind) || kind != kPartialKind ||
      !Get(header, "version", version) || !Get(header, "fingerprint", file.fingerprint) ||
      !Get(header, "first", file.first) || !Get(header, "last", file.last) || !Get(header, "shard", shard) ||
      !header.contains("facts") || !FactsFromJson(header["facts"], file.facts) || !shard.is_array() ||
      shard.size() != 2) {
    error = notOurs;
    return false;
  }
  if (version != kPartialVersion) {
    error = path + ": the file was written by another version of dicehall-sim.";
    return false;
  }
  file.shard = shard[0].get<int>();
  file.shards = shard[1].get<int>();
  std::string last;
  while (std::getline(in, line))
    if (!line.empty()) last = line;
  const json end = json::parse(last, nullptr, false);
  if (!end.is_discarded() && end.contains("end") && end["end"].is_object()) {
    file.ended = Get(end["end"], "played", file.played);
    Get(end["end"], "stopped", file.stopped);
  }
  if (!file.ended) {
    error = path + ": the file is cut short; its shard didn't finish writing it.";
    return false;
  }
  return true;
}

}  // namespace

std::string RunFingerprint(const SimOptions& o, const SimPrepared& p, const RuleSet& rules, uint32_t seed) {
  json j;
  json players = json::array();
  for (size_t i = 0; i < o.players.size(); ++i) {
    const SimPlayer& sp = o.players[i];
    players.push_back({sp.name, sp.bankroll.raw, i < p.scripts.size() ? p.scripts[i] : std::vector<std::string>{}});
  }
  j["players"] = std::move(players);
  json bets = json::array();
  for (const SimBet& b : o.bets) bets.push_back({b.player, b.bet, b.amount.raw});
  j["bets"] = std::move(bets);
  json handling = json::array();
  for (const SimHandling& h : o.handling)
    handling.push_back({h.player, h.winning, h.action, h.op, h.operand.raw, h.units});
  j["handling"] = std::move(handling);
  json autoPlay = json::array();
  for (const SimAutoPlay& a : o.autoPlay) autoPlay.push_back({a.player, a.key, a.value});
  j["auto_play"] = std::move(autoPlay);
  j["sessions"] = o.sessions;
  j["session_rolls"] = o.sessionRolls;
  j["session_hours"] = o.research.sessionHours;
  j["stop_loss"] = o.research.stopLoss.raw;
  j["stop_win"] = o.research.stopWin.raw;
  j["seed"] = seed;
  j["rng"] = o.dice.rng;
  j["prb"] = FileHash(o.dice.prbFile);
  j["game"] = FileHash(o.gameFile);
  j["rules"] = RulesToJson(rules);
  return fmt::format("{:016x}", Fnv1a(j.dump()));
}

json FactsToJson(const ResearchFacts& f) {
  json players = json::array();
  for (const ResearchPlayer& p : f.players)
    players.push_back({{"seat", p.seat}, {"name", p.name}, {"script", p.script}});
  json edges = json::array();
  for (int b = 0; b <= kBets; ++b) edges.push_back(f.hasEdge[b] ? json(f.edge[b]) : json());
  return {{"players", std::move(players)},   {"seed", f.seed},
          {"sessions", f.sessions},          {"session_rolls", f.sessionRolls},
          {"session_hours", f.sessionHours}, {"stop_loss", f.stopLoss.raw},
          {"stop_win", f.stopWin.raw},       {"rolls_per_hour", f.rollsPerHour},
          {"edges", std::move(edges)},       {"fingerprint", f.fingerprint}};
}

bool FactsFromJson(const json& j, ResearchFacts& f) {
  if (!j.is_object() || !j.contains("players") || !j["players"].is_array()) return false;
  f.players.clear();
  for (const json& p : j["players"]) {
    ResearchPlayer rp;
    if (!p.is_object() || !Get(p, "seat", rp.seat) || !Get(p, "name", rp.name) || !Get(p, "script", rp.script))
      return false;
    f.players.push_back(rp);
  }
  json edges;
  if (!Get(j, "seed", f.seed) || !Get(j, "sessions", f.sessions) || !Get(j, "session_rolls", f.sessionRolls) ||
      !Get(j, "session_hours", f.sessionHours) || !GetMoney(j, "stop_loss", f.stopLoss) ||
      !GetMoney(j, "stop_win", f.stopWin) || !Get(j, "rolls_per_hour", f.rollsPerHour) || !Get(j, "edges", edges) ||
      !Get(j, "fingerprint", f.fingerprint) || !edges.is_array() || edges.size() != kBets + 1)
    return false;
  for (int b = 0; b <= kBets; ++b) {
    f.hasEdge[b] = edges[b].is_number();
    f.edge[b] = f.hasEdge[b] ? edges[b].get<double>() : 0;
  }
  return true;
}

json SessionToJson(const SessionResult& s) {
  json players = json::array();
  for (const PlayerSession& p : s.players) {
    json bets = json::array();
    for (const BetTally& b : p.bets)
      bets.push_back({b.bet, b.decisions, b.won, b.lost, b.wagered.raw, b.amountWon.raw, b.amountLost.raw});
    json faults = json::array();
    for (const FaultTally& f : p.firstFaults) faults.push_back({f.code, f.line, f.count});
    json records = json::array();
    for (const SessionRecord& r : p.records) {
      json fields = json::array();
      for (Money m : r) fields.push_back(m.raw);
      records.push_back(std::move(fields));
    }
    players.push_back({{"buy_in", p.buyIn.raw},
                       {"result", p.result.raw},
                       {"drawdown", p.drawdown.raw},
                       {"rolls", p.rolls},
                       {"end", static_cast<int>(p.end)},
                       {"bets", std::move(bets)},
                       {"faults", p.faults},
                       {"first_faults", std::move(faults)},
                       {"records", std::move(records)}});
  }
  json j = {{"n", s.number},
            {"rolls", s.rolls},
            {"hands", s.hands},
            {"passes", s.passes},
            {"misses", s.misses},
            {"points_made", s.pointsMade},
            {"longest", s.longestHand},
            {"totals", s.totals},
            {"players", std::move(players)}};
  if (!s.runaway.empty()) j["runaway"] = s.runaway;
  return j;
}

bool SessionFromJson(const json& j, SessionResult& s) {
  json players;
  if (!j.is_object() || !Get(j, "n", s.number) || !Get(j, "rolls", s.rolls) || !Get(j, "hands", s.hands) ||
      !Get(j, "passes", s.passes) || !Get(j, "misses", s.misses) || !Get(j, "points_made", s.pointsMade) ||
      !Get(j, "longest", s.longestHand) || !Get(j, "totals", s.totals) || !Get(j, "players", players) ||
      !players.is_array())
    return false;
  Get(j, "runaway", s.runaway);
  s.players.clear();
  try {
    for (const json& pj : players) {
      PlayerSession p;
      int end = 0;
      if (!GetMoney(pj, "buy_in", p.buyIn) || !GetMoney(pj, "result", p.result) ||
          !GetMoney(pj, "drawdown", p.drawdown) || !Get(pj, "rolls", p.rolls) || !Get(pj, "end", end) || end < 0 ||
          end >= kSessionEnds || !Get(pj, "faults", p.faults))
        return false;
      p.end = static_cast<SessionEnd>(end);
      for (const json& b : pj.at("bets")) {
        const int bet = b.at(0).get<int>();
        if (bet < 1 || bet > kBets) return false;
        p.bets.push_back({bet, b.at(1).get<int64_t>(), b.at(2).get<int64_t>(), b.at(3).get<int64_t>(),
                          Money::FromRaw(b.at(4).get<int64_t>()), Money::FromRaw(b.at(5).get<int64_t>()),
                          Money::FromRaw(b.at(6).get<int64_t>())});
      }
      for (const json& f : pj.at("first_faults"))
        p.firstFaults.push_back({f.at(0).get<int32_t>(), f.at(1).get<int32_t>(), f.at(2).get<int64_t>()});
      for (const json& r : pj.at("records")) {
        if (!r.is_array() || r.size() != kSessionFields) return false;
        SessionRecord record{};
        for (size_t k = 0; k < record.size(); ++k) record[k] = Money::FromRaw(r[k].get<int64_t>());
        p.records.push_back(record);
      }
      s.players.push_back(std::move(p));
    }
  } catch (const json::exception&) {
    return false;
  }
  return true;
}

bool PartialWriter::Open(const std::string& path, const SimOptions& o, const ResearchFacts& facts, int64_t first,
                         int64_t last, std::string& error) {
  path_ = path;
  temporary_ = path + ".part";
  out_.open(temporary_, std::ios::binary | std::ios::trunc);
  if (!out_) {
    error = "--partial " + path + ": the file can't be written.";
    return false;
  }
  const json header = {{"partial", kPartialKind},
                       {"version", kPartialVersion},
                       {"fingerprint", facts.fingerprint},
                       {"shard", {o.research.shardIndex, o.research.shardCount}},
                       {"first", first},
                       {"last", last},
                       {"facts", FactsToJson(facts)}};
  out_ << header.dump() << "\n";
  return static_cast<bool>(out_);
}

bool PartialWriter::Add(const SessionResult& s) {
  out_ << SessionToJson(s).dump() << "\n";
  return static_cast<bool>(out_);
}

bool PartialWriter::Close(const ResearchOutcome& outcome, std::string& error) {
  json end = {{"played", outcome.played}};
  if (outcome.interrupted) end["stopped"] = "Interrupted.";
  else if (!outcome.stopped.empty()) end["stopped"] = outcome.stopped;
  out_ << json{{"end", std::move(end)}}.dump() << "\n";
  out_.close();
  std::error_code ec;
  if (!out_ || (std::filesystem::rename(temporary_, path_, ec), ec)) {
    error = "--partial " + path_ + ": the file can't be written.";
    std::filesystem::remove(temporary_, ec);
    return false;
  }
  return true;
}

namespace {

// The shards' files are one whole run: the same run, each file complete, and together
// every session once. Sorted by their first session; false (said on err) when not.
bool FormOneRun(std::vector<PartialFile>& files, std::ostream& err) {
  const PartialFile& one = files.front();
  for (const PartialFile& f : files) {
    if (f.fingerprint != one.fingerprint || f.facts.sessions != one.facts.sessions) {
      err << "dicehall-sim merge: " << f.path << " and " << one.path
          << " belong to different runs (their options, rules, scripts or seed differ).\n";
      return false;
    }
    if (f.played != f.last - f.first + 1) {
      err << "dicehall-sim merge: " << f.path
          << fmt::format(" holds {} of the sessions {} to {}", f.played, f.first, f.last)
          << (f.stopped.empty() ? "" : ": its shard stopped (" + OneLineText(f.stopped) + ")") << ".\n";
      return false;
    }
  }
  std::sort(files.begin(), files.end(), [](const PartialFile& a, const PartialFile& b) { return a.first < b.first; });
  int64_t expected = 1;
  for (const PartialFile& f : files) {
    if (f.first < expected) {
      err << "dicehall-sim merge: " << f.path
          << fmt::format(" repeats sessions {} to {}", f.first, std::min(f.last, expected - 1))
          << " that another file holds.\n";
      return false;
    }
    if (f.first > expected) {
      err << "dicehall-sim merge: "
          << fmt::format("sessions {} to {} of {} are missing", expected, f.first - 1, one.facts.sessions)
          << " (a shard's file wasn't given).\n";
      return false;
    }
    expected = f.last + 1;
  }
  if (expected <= one.facts.sessions) {
    err << "dicehall-sim merge: "
        << fmt::format("sessions {} to {} of {} are missing", expected, one.facts.sessions, one.facts.sessions)
        << " (a shard's file wasn't given).\n";
    return false;
  }
  return true;
}

}  // namespace

int RunMerge(const SimOptions& o, std::ostream& out, std::ostream& err) {
  std::vector<PartialFile> files;
  for (const std::string& path : o.files) {
    PartialFile f;
    std::string error;
    if (!ReadPartialHeader(path, f, error)) {
      err << "dicehall-sim merge: " << error << "\n";
      return 1;
    }
    files.push_back(std::move(f));
  }
  if (files.empty()) {
    err << "dicehall-sim merge: give the partial result files of the shards.\n";
    return 2;
  }
  if (!FormOneRun(files, err)) return 1;
  const PartialFile& one = files.front();

  // Every session is read to check it before anything is written, so that a damaged
  // file changes nothing; then again to be folded, one at a time.
  const auto eachSession = [&](const std::function<bool(const SessionResult&)>& use) {
    for (const PartialFile& f : files) {
      std::ifstream in(f.path, std::ios::binary);
      std::string line;
      std::getline(in, line);  // the header
      for (int64_t k = f.first; k <= f.last; ++k) {
        SessionResult s;
        if (!std::getline(in, line) || !SessionFromJson(json::parse(line, nullptr, false), s) || s.number != k ||
            s.players.size() != one.facts.players.size()) {
          err << "dicehall-sim merge: " << f.path << ": session " << k << " can't be read.\n";
          return false;
        }
        if (!use(s)) return false;
      }
    }
    return true;
  };
  if (!eachSession([](const SessionResult&) { return true; })) return 1;

  const std::string folder = ResolveDataDir(o.dataDir);
  if (!MakeDataFolder(folder, err)) return 1;
  FolderLock lock;
  if (!lock.Take(folder, err)) return 1;
  std::string error;
  if (!CheckSessionLogs(folder, one.facts, error)) {
    err << "dicehall-sim merge: " << error << "\n";
    return 1;
  }
  std::ofstream csv;
  if (!o.research.csvFile.empty() && !StartCsv(o.research.csvFile, csv)) {
    err << "dicehall-sim merge: --csv " << o.research.csvFile << ": the file can't be written.\n";
    return 1;
  }
  ResearchTotals totals;
  int64_t merged = 0;
  const bool folded = eachSession([&](const SessionResult& s) {
    if (!AppendSessionLogs(folder, one.facts, s, error)) {
      err << "dicehall-sim merge: " << error << "\n";
      return false;
    }
    AddSession(totals, one.facts, s);
    if (csv.is_open()) WriteCsvRows(one.facts, s, csv);
    ++merged;
    return true;
  });
  if (!folded) return 1;
  ResearchOutcome outcome;
  outcome.first = 1;
  outcome.last = one.facts.sessions;
  outcome.played = merged;
  if (o.json) WriteResearchJson(one.facts, totals, outcome, out);
  else WriteResearchText(one.facts, totals, outcome, out);
  return 0;
}
