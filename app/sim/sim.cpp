#include "app/sim/sim.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <vector>

#include "autobet/actions.h"
#include "autobet/interpreter.h"
#include "autobet/statement_buffer.h"
#include "autobet/variables.h"
#include "automation/auto_roll.h"
#include "dice/seeding.h"
#include "engine/game_state.h"
#include "engine/handling.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "stats/roll_totals.h"

namespace {

struct StandingBet {
  int seat;
  int bet;
  Money amount;
};

struct Standing {
  StandingBet bets[64];
  int count = 0;
};

// Before every roll: each standing bet that is absent and that the table allows. Line
// bets are made on the come-out, never as put bets.
void PlaceStanding(Game& g, void* data) {
  const Standing& s = *static_cast<const Standing*>(data);
  for (int i = 0; i < s.count; ++i) {
    const StandingBet& b = s.bets[i];
    if (g.BetAmount[b.seat][b.bet].raw > 0) continue;
    if ((b.bet == bet::PassLine || b.bet == bet::DontPass) && !IsComeOut(g)) continue;
    ChangeBet(g, b.seat, b.bet, b.amount);
  }
}

// Reports progress on a terminal about once a second; silent otherwise.
class SimUi : public HeadlessUi {
 public:
  const Game* game = nullptr;
  int64_t target = 0;
  bool tty = false;
  std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();
  // Boxes a script opens (a Yes/No question is asked even in Hyper-Drive) are answered
  // by default and not kept: a run of millions of rolls would keep millions of them.
  MessageReply ShowMessage(const MessageRequest& request) override {
    MessageReply reply = HeadlessUi::ShowMessage(request);
    transcript.clear();
    return reply;
  }
  void Yield() override {
    if (!tty || game == nullptr) return;
    auto now = std::chrono::steady_clock::now();
    if (now - last < std::chrono::seconds(1)) return;
    last = now;
    const int64_t done = game->Stats.RollCount[kSessionScope][0];
    fmt::print(stderr, "\r{} of {} rolls ({:.0f}%)", done, target, target ? 100.0 * done / target : 0.0);
    std::fflush(stderr);
  }
};

bool SplitOnce(const std::string& s, char c, std::string& left, std::string& right) {
  size_t at = s.find(c);
  if (at == std::string::npos) return false;
  left = s.substr(0, at);
  right = s.substr(at + 1);
  return true;
}

std::string Trim(std::string s) {
  while (!s.empty() && s.front() == ' ') s.erase(s.begin());
  while (!s.empty() && s.back() == ' ') s.pop_back();
  return s;
}

int32_t SumDecisions(const Statistics& st, int column, int which, bool pointsOnly) {
  int32_t n = 0;
  for (int t = 2; t <= 12; ++t) {
    if (pointsOnly && (t == 2 || t == 3 || t == 7 || t == 11 || t == 12)) continue;
    n += st.HandDecisions[column][t][which];
  }
  return n;
}

struct BetLine {
  int bet;
  int64_t decisions, won, lost;  // counts
  Money wagered, amountWon, amountLost;
};

// The seat's bets that had decisions this session, in bet order.
std::vector<BetLine> BetLines(const Game& g, int seat) {
  std::vector<BetLine> lines;
  const Statistics& st = g.Stats;
  const int c = kSessionScope + seat;
  for (int b = 1; b <= kBets; ++b) {
    const auto& w = st.BetStats[c][b];
    if (w[0].raw == 0) continue;
    lines.push_back({b, w[0].raw / Money::kScale, st.BetWinStats[c][b][0].raw / Money::kScale,
                     st.BetLossStats[c][b][0].raw / Money::kScale, w[1], st.BetWinStats[c][b][1],
                     st.BetLossStats[c][b][1]});
  }
  return lines;
}

// The dice as rolled against fair dice: the chi-square test of the eleven totals.
ChiSquareTest DiceTest(const Game& g) {
  RollTotalsRequest request;
  request.Display = 0;
  request.ScopeBase = kSessionScope;
  return ComputeRollTotals(g.Stats, request).Chi;
}

std::string Percent(double part, double whole) {
  return whole == 0 ? "-" : fmt::format("{:.2f}%", 100.0 * part / whole);
}

// The run-time faults of a seat's script: the count and the first few different ones.
struct ScriptFaults {
  int64_t count = 0;
  std::vector<AutoBetProgram::RunFault> first;
};
ScriptFaults FaultsOf(const Game& g, int seat) { return {g.AutoBet.FaultCount[seat], g.AutoBet.FirstFaults[seat]}; }

std::string OneLineText(std::string text) {
  for (char& c : text)
    if (c == '\n') c = ' ';
  return text;
}

void WriteTextReport(const Game& g, const std::string& stopped, std::ostream& out) {
  const Statistics& st = g.Stats;
  const int32_t rolls = st.RollCount[kSessionScope][0];
  const int32_t hands = st.HandsShot[kSessionScope];
  out << fmt::format("Rolls:        {}\n", rolls);
  out << fmt::format("Hands:        {}\n", hands);
  out << fmt::format("Passes:       {}\n", SumDecisions(st, kSessionScope, 1, false));
  out << fmt::format("Misses:       {}\n", SumDecisions(st, kSessionScope, 2, false));
  out << fmt::format("Points made:  {}\n", SumDecisions(st, kSessionScope, 1, true));
  if (hands > 0)
    out << fmt::format("Rolls a hand: {:.2f} (longest {})\n", double(rolls) / hands, st.MostRollsInHand[kSessionScope]);
  if (rolls > 0) {
    const ChiSquareTest chi = DiceTest(g);
    out << fmt::format("Dice:         chi-square {} on {} degrees of freedom, {}\n", chi.SumText, chi.Df, chi.PText);
  }
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    const Money bankroll = g.Bankroll[kSessionScope + s];
    const Money net = bankroll - g.BuyInTotal[kSessionScope + s];
    out << fmt::format("{} ({}): bankroll {}, net {}\n", g.PlayerName[s], SeatName(s), DollarText(bankroll),
                       DollarText(net));
    out << fmt::format("  bought in {}, high {}, low {}\n", DollarText(g.BuyInTotal[kSessionScope + s]),
                       DollarText(g.HighBankroll[kSessionScope + s]), DollarText(g.LowBankroll[kSessionScope + s]));
    if (g.ScriptActive[s] || !g.ScriptFile[s].empty()) {
      const ScriptFaults f = FaultsOf(g, s);
      out << fmt::format("  script {}: {} run-time fault{}\n", g.ScriptFile[s], f.count, f.count == 1 ? "" : "s");
      for (const auto& fault : f.first)
        out << fmt::format("    line {}: {} ({}), {} time{}\n", fault.line, OneLineText(RunErrorText(fault.code)),
                           fault.code, fault.count, fault.count == 1 ? "" : "s");
    }
    for (const BetLine& l : BetLines(g, s)) {
      const Money netBet = l.amountWon - l.amountLost;
      out << fmt::format("  {}: {} decisions, wagered {}, won {}, lost {}, net {} ({} of wagered; {} won)\n",
                         BetName(l.bet), l.decisions, DollarText(l.wagered), DollarText(l.amountWon),
                         DollarText(l.amountLost), DollarText(netBet), Percent(netBet.ToDouble(), l.wagered.ToDouble()),
                         Percent(double(l.won), double(l.decisions)));
    }
  }
  if (!stopped.empty()) out << "Stopped: " << stopped << "\n";
}

void WriteJsonReport(const Game& g, const SimOptions& o, const std::string& stopped, std::ostream& out) {
  using nlohmann::json;
  const Statistics& st = g.Stats;
  auto money = [](Money m) { return m.ToDouble(); };
  json report;
  report["rolls"] = st.RollCount[kSessionScope][0];
  report["hands"] = st.HandsShot[kSessionScope];
  report["passes"] = SumDecisions(st, kSessionScope, 1, false);
  report["misses"] = SumDecisions(st, kSessionScope, 2, false);
  report["points_made"] = SumDecisions(st, kSessionScope, 1, true);
  if (o.seeded) report["seed"] = o.seed;
  const ChiSquareTest chi = DiceTest(g);
  report["dice"] = {{"chi_square", chi.Sum}, {"degrees_of_freedom", chi.Df}, {"p", chi.P}};
  json players = json::array();
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    json p;
    p["name"] = g.PlayerName[s];
    p["seat"] = std::string(SeatName(s));
    p["bankroll"] = money(g.Bankroll[kSessionScope + s]);
    p["bought_in"] = money(g.BuyInTotal[kSessionScope + s]);
    p["net"] = money(g.Bankroll[kSessionScope + s] - g.BuyInTotal[kSessionScope + s]);
    p["high"] = money(g.HighBankroll[kSessionScope + s]);
    p["low"] = money(g.LowBankroll[kSessionScope + s]);
    json bets = json::array();
    for (const BetLine& l : BetLines(g, s))
      bets.push_back({{"bet", std::string(BetName(l.bet))},
                      {"decisions", l.decisions},
                      {"won", l.won},
                      {"lost", l.lost},
                      {"wagered", money(l.wagered)},
                      {"amount_won", money(l.amountWon)},
                      {"amount_lost", money(l.amountLost)},
                      {"net", money(l.amountWon - l.amountLost)}});
    p["bets"] = std::move(bets);
    if (!g.ScriptFile[s].empty()) {
      const ScriptFaults f = FaultsOf(g, s);
      json first = json::array();
      for (const auto& fault : f.first)
        first.push_back(
            {{"code", fault.code}, {"line", fault.line}, {"text", RunErrorText(fault.code)}, {"count", fault.count}});
      p["script"] = {{"file", g.ScriptFile[s]}, {"faults", f.count}, {"first_faults", std::move(first)}};
    }
    players.push_back(std::move(p));
  }
  report["players"] = std::move(players);
  if (!stopped.empty()) report["stopped"] = stopped;
  out << report.dump(2) << "\n";
}

// The roll cycle of a set-up game, `rolls` rolls of Hyper-Drive.
// Active scripts are compiled and run once as activation runs them, "initializing script"
// true, before the first roll.
void RunHyperDrive(Game& g, int64_t rolls) {
  g.Auto.AutoStopRolls = Money::Dollars(rolls);
  g.Auto.AutoRollThrottle = 0;
  ToggleAutoRoll(g);
  if (AnyScriptActive(g)) {
    if (!CompileActiveScripts(g)) return;
    g.AutoBet.InitializingScript = true;
    RunAutoBet(g);
    g.AutoBet.InitializingScript = false;
  }
  if (g.Auto.AfterRoll) g.Auto.AfterRoll(g, g.Auto.AfterRollData);
  RollDice(g);
}

void SetUpGame(Game& g, UserInterface& ui, const std::string& folder, bool seeded, uint32_t seed) {
  g.Ui = &ui;
  g.ProgramFolder = folder;
  g.Time = &DefaultClock();
  // As the program starts: every generator seeded, then the default game.
  SeedAtStartUp(g);
  SetDefaultGame(g);
  if (seeded) {
    g.Dice.pendingSeed = Money::Dollars(seed);
    SeedRng(g, true);
  }
}

// "[NAME=]ACTION": an action's name or number, with the rule of modify and set.
bool ParseHandling(const std::string& text, SimHandling& h, std::string& error) {
  std::string action = text;
  std::string name;
  if (SplitOnce(text, '=', name, action)) h.player = Trim(name);
  action = Trim(action);
  std::string rule;
  std::string word = action;
  SplitOnce(action, ':', word, rule);
  for (char& c : word) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  struct Named {
    const char* word;
    int win, lose;  // the action number, 0 where the word doesn't apply
  };
  static const Named kActions[] = {
      {"take-down", 1, 1}, {"same-bet", 2, 2}, {"press-unit", 3, 4}, {"press-double", 4, 0}, {"parlay", 5, 0},
      {"remainder", 0, 3}, {"double", 0, 5},   {"modify", 6, 6},     {"set", 7, 7},          {"ask", 0, 0}};
  h.action = -1;
  if (word.size() == 1 && word[0] >= '0' && word[0] <= '7') h.action = word[0] - '0';
  for (const Named& n : kActions)
    if (word == n.word) h.action = h.winning ? n.win : n.lose;
  if (word == "ask") h.action = 0;
  if (h.action < 0 || (h.action == 0 && word != "ask" && word != "0")) {
    error = "\"" + word + "\" is not an action for a bet that " + (h.winning ? "won." : "lost.");
    return false;
  }
  if (h.action != 6 && h.action != 7) {
    if (!rule.empty()) {
      error = "only modify and set take a rule.";
      return false;
    }
    return true;
  }
  if (rule.empty()) {
    error = h.action == 6 ? "modify needs a rule, e.g. modify:+5." : "set needs an amount, e.g. set:25.";
    return false;
  }
  if (h.action == 6) {
    const std::string ops = "+-*/";
    size_t at = ops.find(rule[0]);
    if (at == std::string::npos) {
      error = "a rule starts with + - * or /.";
      return false;
    }
    h.op = static_cast<int>(at);
    rule.erase(0, 1);
  }
  h.units = 0;
  if (!rule.empty() && rule.back() == '%') {
    h.units = 1;
    rule.pop_back();
  } else if (rule.size() >= 2 && rule[rule.size() - 2] == 'c' && rule.back() >= '1' && rule.back() <= '5') {
    h.units = rule.back() - '0' + 1;
    rule.resize(rule.size() - 2);
  }
  if (!ParseMoney(rule, h.operand, error)) return false;
  return true;
}

}  // namespace

int ParseSimOptions(int argc, const char* const* argv, SimOptions& o, std::ostream& out, std::ostream& err) {
  CLI::App app{
      "dicehall-sim: plays a DiceHall craps table headless, in Hyper-Drive, and prints a summary.\n"
      "Players are seated from 4L toward 4R in the order given and buy in with their bankroll.\n"
      "Only players with a standing Pass Line or Don't Pass bet, or a script that bets one of them,\n"
      "shoot; the others pass the dice. With no such player the table needs no line bet to shoot.\n"
      "Before every roll each --bet that is absent is placed again if the table allows it\n"
      "(line bets are made on the come-out only). Bets that win or lose come down and are\n"
      "placed again before the next roll. Every bet of the table is offered by its name, e.g.\n"
      "\"Place 6\", \"Hard 8\", \"Hop 23\", \"Don't Come 4 Odds\"; a bet that its rules refuse at a\n"
      "roll (a Come bet on the come-out, odds without their line bet) waits for a roll that allows it.\n"
      "Exit codes: 0 after the rolls or when the table stops by itself (its reason printed as\n"
      "\"Stopped: <text>\"), 1 for a script or file fault, 2 for bad options.",
      "dicehall-sim"};
  std::vector<std::string> players, bets, onWin, onLose;
  int64_t rolls = 1000;
  int64_t seed = -1;
  app.add_option("--player", players,
                 "NAME[:BANKROLL[:SCRIPT.bet]] seat a player (repeatable; bankroll 1000 by default; a negative "
                 "bankroll allows a negative bankroll for that seat)");
  app.add_option("--bet", bets,
                 "[NAME:]BET=AMOUNT a standing bet, e.g. \"Ann:Pass Line=10\" (repeatable; the name may be left out "
                 "when one player sits; bet names ignore case)");
  app.add_option("--rolls", rolls, "number of rolls to play (default 1000)")->check(CLI::PositiveNumber);
  app.add_option("--seed", seed, "seed of the dice generator, 1 to 2147483647 (default: from the time of day)")
      ->check(CLI::Range(int64_t{1}, int64_t{2147483647}));
  app.add_option("--data-dir", o.dataDir,
                 "the program folder (default $DICEHALL_HOME, else $XDG_DATA_HOME/dicehall, else "
                 "~/.local/share/dicehall)");
  app.add_option("--on-win", onWin,
                 "[NAME=]ACTION what a player does with a bet that won (repeatable; without a name, every "
                 "player): take-down, same-bet, press-unit, press-double, parlay, modify:RULE, set:AMOUNT, or the "
                 "number 1..7 of the action. Default take-down, so a standing bet comes down with its winnings "
                 "and is placed again before the next roll.");
  app.add_option("--on-lose", onLose,
                 "[NAME=]ACTION what a player does with a bet that lost: take-down, same-bet, remainder (bet what "
                 "the roll left of it), press-unit, double, modify:RULE, set:AMOUNT, or 1..7. RULE is an operator "
                 "+ - * / and an amount: \"modify:+5\" adds $5, \"modify:*2\" doubles the amount before the "
                 "roll, \"modify:-50%\" takes off half of it, \"modify:+1c2\" adds one unit of the second "
                 "check size (its value times the bet's payoff denominator). AMOUNT for set: \"set:25\" in dollars, "
                 "\"set:3c1\" in units of a check size. The bet still goes through the table's limits.");
  app.add_flag("--json", o.json, "print the report as JSON");
  app.add_option("--check", o.checkFile,
                 "FILE.bet: compile the script as the script of seat 1, occupied by the first --player (default "
                 "Ann), and print OK (exit 0) or its first fault as FILE:LINE:COL-LINE:COL: message (exit 1)");
  app.add_flag("--dump", o.dump, "with --check: print the compiled records and string pool");
  app.add_flag("--bench", o.bench, "run the fixed benchmark scenarios and print their speed and signature");
  AddOnlineOptions(app, o.online, players);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    out << app.help();
    return 0;
  } catch (const CLI::ParseError& e) {
    err << "dicehall-sim: " << e.what() << "\n";
    return 2;
  }
  o.rolls = rolls;
  if (seed > 0) {
    o.seeded = true;
    o.seed = static_cast<uint32_t>(seed);
  }
  for (const std::string& p : players) {
    SimPlayer sp;
    std::string rest;
    if (!SplitOnce(p, ':', sp.name, rest)) {
      sp.name = p;
    } else {
      std::string amount, script;
      if (!SplitOnce(rest, ':', amount, script)) amount = rest;
      std::string error;
      if (!amount.empty() && !ParseMoney(amount, sp.bankroll, error)) {
        err << "dicehall-sim: --player " << p << ": " << error << "\n";
        return 2;
      }
      sp.script = script;
    }
    sp.name = Trim(sp.name);
    if (sp.name.empty()) {
      err << "dicehall-sim: --player " << p << ": the player has no name.\n";
      return 2;
    }
    for (const SimPlayer& other : o.players)
      if (other.name == sp.name) {
        err << "dicehall-sim: --player " << p << ": there's already a player named " << sp.name << ".\n";
        return 2;
      }
    o.players.push_back(sp);
  }
  if (o.players.size() > 8) {
    err << "dicehall-sim: the table has eight seats; " << o.players.size() << " players were given.\n";
    return 2;
  }
  for (const std::string& b : bets) {
    SimBet sb;
    std::string lhs, amount;
    if (!SplitOnce(b, '=', lhs, amount)) {
      err << "dicehall-sim: --bet " << b << ": expected [NAME:]BET=AMOUNT.\n";
      return 2;
    }
    std::string name = lhs, player;
    if (SplitOnce(lhs, ':', player, name)) sb.player = Trim(player);
    sb.bet = FindBetByName(name);
    if (sb.bet == 0) {
      err << "dicehall-sim: --bet " << b << ": there is no bet named \"" << Trim(name) << "\".\n";
      return 2;
    }
    std::string error;
    if (!ParseMoney(amount, sb.amount, error)) {
      err << "dicehall-sim: --bet " << b << ": " << error << "\n";
      return 2;
    }
    if (sb.amount.raw <= 0) {
      err << "dicehall-sim: --bet " << b << ": the amount must be above 0.\n";
      return 2;
    }
    if (sb.player.empty()) {
      if (o.players.size() != 1) {
        err << "dicehall-sim: --bet " << b << ": name the player (NAME:BET=AMOUNT) when "
            << (o.players.empty() ? "no player sits." : "several players sit.") << "\n";
        return 2;
      }
      sb.player = o.players[0].name;
    }
    bool known = false;
    for (const SimPlayer& p : o.players) known = known || p.name == sb.player;
    if (!known) {
      err << "dicehall-sim: --bet " << b << ": there's no player named " << sb.player << ".\n";
      return 2;
    }
    o.bets.push_back(sb);
  }
  for (int pass = 0; pass < 2; ++pass) {
    for (const std::string& text : pass == 0 ? onWin : onLose) {
      const char* option = pass == 0 ? "--on-win" : "--on-lose";
      SimHandling h;
      h.winning = pass == 0;
      std::string error;
      if (!ParseHandling(text, h, error)) {
        err << "dicehall-sim: " << option << " " << text << ": " << error << "\n";
        return 2;
      }
      bool known = h.player.empty();
      for (const SimPlayer& sp : o.players) known = known || sp.name == h.player;
      if (!known) {
        err << "dicehall-sim: " << option << " " << text << ": there's no player named " << h.player << ".\n";
        return 2;
      }
      o.handling.push_back(h);
    }
  }
  const std::string dir = ResolveDataDir(o.dataDir);
  std::error_code ec;
  if (std::filesystem::exists(dir, ec) && !std::filesystem::is_directory(dir, ec)) {
    err << "dicehall-sim: the data folder " << dir << " is not a folder.\n";
    return 2;
  }
  return -1;
}

int RunSim(const SimOptions& o, std::ostream& out, std::ostream& err) {
  if (o.bench) return RunSimBench(out);
  if (!o.checkFile.empty()) return RunCheck(o, out, err);
  // Scripts are read and compiled before anything is set up, so that a fault is told
  // the way --check tells it.
  std::vector<std::vector<std::string>> scripts(o.players.size());
  std::vector<bool> makesLineBets(o.players.size());
  for (size_t i = 0; i < o.players.size(); ++i) {
    const SimPlayer& p = o.players[i];
    if (p.script.empty()) continue;
    if (!ReadScriptLines(p.script, scripts[i])) {
      err << "dicehall-sim: " << p.name << "'s script " << p.script << ": the file can't be read.\n";
      return 1;
    }
    AutoBetProgram program;
    program.ScriptSource[i + 1] = scripts[i];
    std::vector<std::string> names(kPlayerSeats);
    for (size_t k = 0; k < o.players.size(); ++k) names[k] = o.players[k].name;
    const CompileFault fault = CompileAutobets(program, static_cast<int>(i) + 1, names);
    if (fault.Failed()) {
      err << FaultLine(p.script, fault) << "\n";
      return 1;
    }
    for (const TokenRecord& r : program.ScriptRecords)
      makesLineBets[i] =
          makesLineBets[i] || (r.code == kCodeVariableTarget && (r.value == bet::PassLine || r.value == bet::DontPass));
  }
  auto game = std::make_unique<Game>();
  Game& g = *game;
  SimUi ui;
  ui.game = &g;
  ui.target = o.rolls;
  ui.tty = isatty(STDERR_FILENO);
  const std::string folder = ResolveDataDir(o.dataDir);
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  if (ec) {
    err << "dicehall-sim: the data folder " << folder << " can't be made: " << ec.message() << "\n";
    return 1;
  }
  SetUpGame(g, ui, folder, o.seeded, o.seed);
  int seat = 1;
  for (const SimPlayer& p : o.players) AddPlayer(g, seat++, p.name, p.bankroll);
  for (size_t i = 0; i < o.players.size(); ++i) {
    if (o.players[i].script.empty()) continue;
    const int s = static_cast<int>(i) + 1;
    g.AutoBet.ScriptSource[s] = scripts[i];
    g.ScriptFile[s] = o.players[i].script;
    g.ScriptActive[s] = true;
  }
  g.AutoBet.ScriptsCompiled = false;

  Standing standing;
  for (const SimBet& b : o.bets) {
    int s = 0;
    for (int i = 1; i < kSeats; ++i)
      if (g.PlayerName[i] == b.player) s = i;
    if (standing.count < 64) standing.bets[standing.count++] = {s, b.bet, b.amount};
  }
  // A player without a standing line bet doesn't want to shoot and passes the dice on,
  // so that the shooter is one who can meet the table's bet needed to shoot.
  bool anyShooter = false;
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    bool line = false;
    for (int i = 0; i < standing.count; ++i)
      line = line || (standing.bets[i].seat == s &&
                      (standing.bets[i].bet == bet::PassLine || standing.bets[i].bet == bet::DontPass));
    // A script that bets the Pass Line or Don't Pass shoots; one that never does passes.
    if (g.ScriptActive[s] && makesLineBets[s - 1]) line = true;
    g.AutoPassDice[s] = !line;
    anyShooter = anyShooter || line;
  }
  // With nobody to make a line bet, the dice are thrown for the table's other bets.
  if (!anyShooter) g.Rules.BetNeededToShoot = 0;
  if (anyShooter && g.AutoPassDice[g.Table.Shooter]) {
    for (int s = 1; s < kSeats; ++s)
      if (SeatOccupied(g, s) && !g.AutoPassDice[s]) {
        g.Table.Shooter = g.Table.HandShooter = s;
        break;
      }
  }
  for (const SimHandling& h : o.handling) {
    for (int s = 1; s < kSeats; ++s) {
      if (!SeatOccupied(g, s) || (!h.player.empty() && g.PlayerName[s] != h.player)) continue;
      (h.winning ? g.AutoHandleWin : g.AutoHandleLose)[s] = h.action;
      SettleRule& rule = g.SettleRules[s][h.winning ? (h.action == 7 ? kRuleSetWin : kRuleModifyWin)
                                                    : (h.action == 7 ? kRuleSetLose : kRuleModifyLose)];
      rule.Operator = h.op;
      rule.Operand = h.operand;
      rule.Units = h.units;
    }
  }
  g.Auto.AfterRoll = &PlaceStanding;
  g.Auto.AfterRollData = &standing;
  if (OnlineMode(o.online)) return RunOnline(g, o, out, err);
  RunHyperDrive(g, o.rolls);
  if (ui.tty) fmt::print(stderr, "\r{:40}\r", "");

  const bool finished = g.StopReason == "Stopped by Auto-Stop." && g.Stats.RollCount[kSessionScope][0] == o.rolls;
  const std::string stopped = !finished ? g.StopReason : std::string();
  if (o.json) WriteJsonReport(g, o, stopped, out);
  else WriteTextReport(g, stopped, out);
  return 0;
}
