// Sessions of a run of many: each one played on a table of its own by a worker, its
// results handed over in session order.

#include "app/sim/sim_sessions.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <ostream>
#include <sstream>
#include <thread>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "app/sim/sim_partial.h"
#include "app/sim/sim_report.h"
#include "dice/seeding.h"
#include "engine/house_edge.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "stats/roll_totals.h"
#include "stats/sessions_log.h"

namespace {

// What the sessions log sink keeps of each seat as it leaves (or as a script starts a new
// session): the record, and the player's tallies of the whole session so far.
struct Capture {
  Runner* runner = nullptr;
  SessionResult* result = nullptr;
  std::array<int, kSeats> index{};  // the seat's place among the run's players; -1 none
  std::array<std::vector<BetTally>, kSeats> start{};
};

// `now` less what a saved game had counted before the session.
std::vector<BetTally> Since(std::vector<BetTally> now, const std::vector<BetTally>& before) {
  for (const BetTally& b : before)
    for (BetTally& n : now)
      if (n.bet == b.bet) {
        n.decisions -= b.decisions;
        n.won -= b.won;
        n.lost -= b.lost;
        n.wagered -= b.wagered;
        n.amountWon -= b.amountWon;
        n.amountLost -= b.amountLost;
      }
  std::erase_if(now, [](const BetTally& t) { return t.decisions == 0; });
  return now;
}

void CaptureSeat(Game& g, int seat, void* data) {
  Capture& c = *static_cast<Capture*>(data);
  const int i = c.index[seat];
  if (i < 0) return;
  PlayerSession& p = c.result->players[static_cast<size_t>(i)];
  const SeatPlay& play = c.runner->seats[seat];
  p.records.push_back(SessionRecordOf(g, seat));
  p.result = NetOf(g, seat) - play.startNet;
  p.rolls = g.Stats.SeatRolls[kAllScope + seat] - play.startRolls;
  p.bets = Since(BetTallies(g, kAllScope + seat), c.start[seat]);
  p.faults = g.AutoBet.FaultCount[seat];
  p.firstFaults = FaultTallies(g, seat);
}

// The table's counters over every session of the table.
struct TableCounts {
  int64_t rolls = 0, hands = 0, passes = 0, misses = 0, pointsMade = 0;
  std::array<int64_t, 11> totals{};
};

TableCounts CountsOf(const Game& g) {
  const Statistics& st = g.Stats;
  TableCounts t;
  t.rolls = st.RollCount[kAllScope][0];
  t.hands = st.HandsShot[kAllScope];
  t.passes = SumDecisions(st, kAllScope, 1, false);
  t.misses = SumDecisions(st, kAllScope, 2, false);
  t.pointsMade = SumDecisions(st, kAllScope, 1, true);
  const auto kinds = DisplayKinds(0);
  for (size_t i = 0; i < kinds.size() && i < t.totals.size(); ++i) t.totals[i] = st.RollCount[kAllScope][kinds[i]];
  return t;
}

// Every generator seeded from the session's seed, the selected one last.
void SeedSession(Game& g, uint32_t runSeed, int64_t k) {
  uint64_t state = (static_cast<uint64_t>(runSeed) << 32) + static_cast<uint64_t>(k);
  const uint64_t own = SplitMix64(state);
  const int32_t selected = g.Dice.rngNumber;
  for (int32_t n = 1; n <= 8; ++n) {
    if (SelectRng(g, n) != 0) continue;
    SeedRngWith(g, static_cast<int32_t>(1 + SplitMix64(state) % static_cast<uint64_t>(MaxSeed(g))));
  }
  SelectRng(g, selected);
  SeedRngWith(g, static_cast<int32_t>(1 + own % static_cast<uint64_t>(MaxSeed(g))));
}

class ProgressLine {
 public:
  explicit ProgressLine(bool on) : on_(on) {}
  ~ProgressLine() {
    if (shown_) std::fprintf(stderr, "\r%79s\r", "");
  }
  void Show(int64_t done, int64_t asked) {
    if (!on_) return;
    const Clock::time_point now = Clock::now();
    if (shown_ && now - last_ < std::chrono::milliseconds(100)) return;
    last_ = now;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    const double share = asked > 0 ? static_cast<double>(done) / static_cast<double>(asked) : 0;
    const int64_t left = rate > 0 ? static_cast<int64_t>(static_cast<double>(asked - done) / rate) : 0;
    fmt::print(stderr, "\r[{:<20}] {:3.0f}%  {} of {} sessions  {:.0f} sessions/s  {}:{:02} left ",
               std::string(static_cast<size_t>(share * 20), '#'), 100 * share, done, asked, rate, left / 60, left % 60);
    std::fflush(stderr);
    shown_ = true;
  }

 private:
  using Clock = std::chrono::steady_clock;
  bool on_;
  bool shown_ = false;
  Clock::time_point start_ = Clock::now(), last_ = start_;
};

// Tables are made and dropped by the thousand, each of a megabyte and more: their memory
// stays with the process instead of being mapped and unmapped for every session.
void KeepTableMemory() {
#if defined(__GLIBC__)
  mallopt(M_MMAP_THRESHOLD, 64 << 20);
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
#endif
}

}  // namespace

uint64_t SplitMix64(uint64_t& state) {
  uint64_t z = (state += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

uint32_t ClockSeed() {
  uint64_t state = static_cast<uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
  return static_cast<uint32_t>(1 + SplitMix64(state) % 999999);
}

uint32_t SessionSeed(uint32_t runSeed, int64_t k, int32_t maxSeed) {
  uint64_t state = (static_cast<uint64_t>(runSeed) << 32) + static_cast<uint64_t>(k);
  return static_cast<uint32_t>(1 + SplitMix64(state) % static_cast<uint64_t>(maxSeed));
}

void SetSessionRules(Game& g, const SimOptions& o, Runner& r) {
  r.sessionRules = true;
  r.asked = 0;
  r.limitRolls = o.sessionRolls;
  r.limitEnd = SessionEnd::Rolls;
  if (o.research.sessionHours > 0) {
    const auto hours =
        std::max<int64_t>(1, static_cast<int64_t>(std::floor(o.research.sessionHours * RollsPerHour(g.Rules) + 1e-9)));
    if (r.limitRolls == 0 || hours <= r.limitRolls) {
      r.limitRolls = hours;
      r.limitEnd = SessionEnd::Hours;
    }
  }
  r.stopLoss = o.research.stopLoss;
  r.stopWin = o.research.stopWin;
}

SessionResult PlaySession(Game& g, Runner& r, uint32_t runSeed, int64_t k) {
  SessionResult result;
  result.number = k;
  Capture capture;
  capture.runner = &r;
  capture.result = &result;
  capture.index.fill(-1);
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    capture.index[s] = static_cast<int>(result.players.size());
    capture.start[s] = BetTallies(g, kAllScope + s);
    PlayerSession p;
    p.buyIn = g.Bankroll[s];
    result.players.push_back(std::move(p));
  }
  const TableCounts before = CountsOf(g);
  SeedSession(g, runSeed, k);
  g.Auto.AfterRoll = &AfterEachRoll;
  g.Auto.AfterRollData = &r;
  g.Auto.SessionSink = &CaptureSeat;
  g.Auto.SessionSinkData = &capture;

  StartHyperDrive(g);
  if (StartScripts(g)) {
    AfterEachRoll(g, &r);
    if (g.Auto.AutoRollActive) RollDice(g);
  }
  StopRolling(g);
  if (g.AutoBet.RunawaySeat != 0) result.runaway = g.StopReason;
  // The table stopped by itself: whoever still sits leaves as the table's rules say.
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    if (!r.seats[s].walking) r.seats[s].end = SessionEnd::TableStopped;
    r.seats[s].left = true;
    RemovePlayer(g, s);
  }
  for (int s = 1; s < kSeats; ++s) {
    if (capture.index[s] < 0) continue;
    PlayerSession& p = result.players[static_cast<size_t>(capture.index[s])];
    const SeatPlay& play = r.seats[s];
    p.end = play.end;
    // Leaving may cost what was still at risk: that fall counts too.
    p.drawdown = std::max(play.drawdown, play.peak - p.result);
  }
  const TableCounts after = CountsOf(g);
  result.rolls = after.rolls - before.rolls;
  result.hands = after.hands - before.hands;
  result.passes = after.passes - before.passes;
  result.misses = after.misses - before.misses;
  result.pointsMade = after.pointsMade - before.pointsMade;
  for (size_t i = 0; i < result.totals.size(); ++i) result.totals[i] = after.totals[i] - before.totals[i];
  result.longestHand = r.longestHand;
  g.Auto.AfterRoll = nullptr;
  g.Auto.AfterRollData = nullptr;
  g.Auto.SessionSink = nullptr;
  g.Auto.SessionSinkData = nullptr;
  return result;
}

ResearchFacts FactsOf(const Game& g, const SimOptions& o, uint32_t seed) {
  ResearchFacts f;
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s)) f.players.push_back({s, g.PlayerName[s], g.ScriptFile[s]});
  f.seed = seed;
  f.sessions = o.sessions;
  f.sessionRolls = o.sessionRolls;
  f.sessionHours = o.research.sessionHours;
  f.stopLoss = o.research.stopLoss;
  f.stopWin = o.research.stopWin;
  f.rollsPerHour = RollsPerHour(g.Rules);
  for (int b = 1; b <= kBets; ++b) f.hasEdge[b] = DecisionEdge(g.Rules, b, f.edge[b]);
  return f;
}

int PrepareResearch(const SimOptions& o, const SimPrepared& p, ResearchFacts& facts, std::ostream& err) {
  auto trial = std::make_unique<Game>();
  QuietUi ui;
  Runner r;
  if (const int code = SetUpSimTable(*trial, ui, o, p, "", false, r, err); code != 0) return code;
  bool anyone = false;
  for (int s = 1; s < kSeats; ++s) anyone = anyone || SeatOccupied(*trial, s);
  if (!anyone) {
    err << "dicehall-sim: a run of sessions needs a player at the table (--player).\n";
    return 2;
  }
  facts = FactsOf(*trial, o, o.seeded ? o.seed : ClockSeed());
  facts.fingerprint = RunFingerprint(o, p, trial->Rules, facts.seed);
  return 0;
}

ResearchOutcome PlaySessions(const SimOptions& o, const SimPrepared& p, const ResearchFacts& facts,
                             const TakeSession& take) {
  ResearchOutcome outcome;
  outcome.first = 1;
  outcome.last = o.sessions;
  if (o.research.shardCount > 0) {
    // The I-th of N contiguous slices, as equal as whole sessions make them.
    const int64_t m = o.sessions, i = o.research.shardIndex, n = o.research.shardCount;
    outcome.first = (i - 1) * m / n + 1;
    outcome.last = i * m / n;
  }
  KeepTableMemory();
  const int64_t count = outcome.last - outcome.first + 1;
  int64_t threads = o.research.threads > 0 ? o.research.threads : std::max(1U, std::thread::hardware_concurrency());
  threads = std::clamp<int64_t>(threads, 1, std::max<int64_t>(count, 1));

  std::mutex mutex;
  std::condition_variable ready;
  std::map<int64_t, SessionResult> done;  // finished and not yet handed over
  std::atomic<int64_t> next{outcome.first}, finished{0};
  std::atomic<bool> stop{false};
  std::atomic<int> working{static_cast<int>(threads)};
  auto work = [&] {
    // One table a worker, set up afresh for each session: a game is large to make.
    const auto g = std::make_unique<Game>();
    for (;;) {
      if (stop.load() || SimStopRequested()) break;
      const int64_t k = next.fetch_add(1);
      if (k > outcome.last) break;
      ForgetCarriedOver(*g);
      QuietUi ui;
      Runner r;
      std::ostringstream quiet;  // the trial table has said whatever there is to say
      SessionResult result;
      if (SetUpSimTable(*g, ui, o, p, "", false, r, quiet) == 0) {
        SetSessionRules(*g, o, r);
        result = PlaySession(*g, r, facts.seed, k);
      } else {
        result.number = k;
        result.runaway = "The table of session " + std::to_string(k) + " couldn't be set up.";
      }
      ++finished;
      std::lock_guard lock(mutex);
      done.emplace(k, std::move(result));
      ready.notify_one();
    }
    --working;
    std::lock_guard lock(mutex);
    ready.notify_one();
  };
  std::vector<std::thread> pool;
  for (int64_t t = 0; t < threads; ++t) pool.emplace_back(work);

  ProgressLine progress(o.progress);
  int64_t expected = outcome.first;
  bool ended = false;
  std::unique_lock lock(mutex);
  while (!ended) {
    ready.wait_for(lock, std::chrono::milliseconds(100));
    for (auto it = done.find(expected); !ended && it != done.end(); it = done.find(expected)) {
      SessionResult result = std::move(it->second);
      done.erase(it);
      lock.unlock();
      const std::string refused = take(result);
      ++outcome.played;
      ++expected;
      if (!result.runaway.empty() || !refused.empty()) {
        outcome.stopped = refused.empty() ? result.runaway : refused;
        stop = true;
        ended = true;
      }
      lock.lock();
    }
    if (SimStopRequested() && !outcome.interrupted && expected <= outcome.last) {
      outcome.interrupted = true;
      stop = true;
    }
    if (expected > outcome.last || (working.load() == 0 && done.find(expected) == done.end())) ended = true;
    lock.unlock();
    progress.Show(finished.load(), count);
    lock.lock();
  }
  lock.unlock();
  for (std::thread& t : pool) t.join();
  if (outcome.played == count) outcome.interrupted = false;  // every session got played anyway
  return outcome;
}
