// The command line of dicehall-sim: every option, and the checks that refuse a run
// before anything is set up or written.

#include <CLI/CLI.hpp>
#include <cctype>
#include <filesystem>
#include <ostream>

#include "app/sim/sim.h"
#include "engine/bets.h"
#include "storage/paths.h"

namespace {

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

// Throws a message for the user; ParseSimOptions prints it and exits 2.
struct OptionFault {
  std::string text;
};
[[noreturn]] void Refuse(std::string text) { throw OptionFault{std::move(text)}; }

const char* const kDescription =
    "dicehall-sim: plays a DiceHall craps table headless, in Hyper-Drive, and prints a report.\n"
    "Players are seated from 4L toward 4R in the order given and buy in with their bankroll.\n"
    "Only players with a standing Pass Line or Don't Pass bet, or a script that bets one of them,\n"
    "shoot; the others pass the dice. A shooter who can no longer make the line bet passes the\n"
    "dice to the next player who can; the run stops early only when nobody can. With no line\n"
    "bettor at all the table needs no line bet to shoot.\n"
    "Before every roll each --bet that is absent is placed again if the table allows it\n"
    "(line bets are made on the come-out only). Bets that win or lose come down and are\n"
    "placed again before the next roll. Every bet of the table is offered by its name, e.g.\n"
    "\"Place 6\", \"Hard 8\", \"Hop 23\", \"Don't Come 4 Odds\"; a bet that its rules refuse at a\n"
    "roll (a Come bet on the come-out, odds without their line bet) waits for a roll that allows it.\n"
    "A single run plays one table for --rolls; its session ends in every player's sessions log\n"
    "(NAME.slg in the data folder, appended to). On a terminal a progress line shows on stderr;\n"
    "Ctrl-C stops after the roll in progress, logs the session so far and prints the report.\n"
    "A run of sessions (--sessions M with M > 1, or any of --threads, --shard, --stop-loss,\n"
    "--stop-win, --session-hours, --csv) plays every session on a table of its own, set up from the\n"
    "options, with the buy-ins, on --threads workers. Session k's dice come from a seed derived from\n"
    "--seed and k alone (without --seed the run's seed comes from the clock and is printed), so the\n"
    "report, --json, --csv and the logs are the same for any number of threads or shards. A player\n"
    "walks away at --session-rolls N, --session-hours H, --stop-loss or --stop-win: no new bets, what\n"
    "may come down comes down, and the player leaves once nothing is at risk (a line or Come bet with\n"
    "its point is decided first, so a session may run a few rolls past N); one who can't make a bet\n"
    "any more leaves broke. The session ends when everyone has left and reaches the logs whole, in\n"
    "session order. A table of a session opens and writes no file: a script's output files are\n"
    "refused (counted as the script's run-time faults in the report); --events-log, --record,\n"
    "--playback, --popup, --reseed-sessions and --save go with single runs. Ctrl-C stops every worker\n"
    "after its session in progress and reports the sessions played.\n"
    "  dicehall-sim compare A.bet B.bet [options]: the two systems, each alone at the table as the\n"
    "same player, play every session on the same dice; the report gives B - A with its confidence.\n"
    "  dicehall-sim merge FILES... [--json] [--csv FILE] [--data-dir DIR]: the partial files of the\n"
    "shards of one run (--shard I/N --partial FILE) make the report of the unsharded run, and their\n"
    "sessions reach the logs.\n"
    "A run holds the data folder's lock (dicehall.lock) while it writes there; a second run on the\n"
    "same folder is refused with exit code 1 rather than mixing its files with the first one's.\n"
    "Exit codes: 0 after the rolls or when the table stops by itself (the report's first line then\n"
    "says how many rolls were played and why), 1 for a script or file fault or a folder in use, 2 for\n"
    "bad options or rules, 130 when interrupted.";

// "[NAME=]ACTION": an action's name or number, with the rule of modify and set.
void ParseHandling(const std::string& text, SimHandling& h) {
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
  if (h.action < 0 || (h.action == 0 && word != "ask" && word != "0"))
    Refuse("\"" + word + "\" is not an action for a bet that " + (h.winning ? "won." : "lost."));
  if (h.action != 6 && h.action != 7) {
    if (!rule.empty()) Refuse("only modify and set take a rule.");
    return;
  }
  if (rule.empty())
    Refuse(h.action == 6 ? "modify needs a rule, e.g. modify:+5." : "set needs an amount, e.g. set:25.");
  if (h.action == 6) {
    const size_t at = std::string("+-*/").find(rule[0]);
    if (at == std::string::npos) Refuse("a rule starts with + - * or /.");
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
  std::string error;
  if (!ParseMoney(rule, h.operand, error)) Refuse(error);
}

// With --game the players are known only once the file is open: any name may be meant.
bool Seated(const SimOptions& o, const std::string& name) {
  if (!o.gameFile.empty()) return true;
  for (const SimPlayer& p : o.players)
    if (p.name == name) return true;
  return false;
}

// "NAME[:BANKROLL[:SCRIPT.bet]]".
void AddPlayers(const std::vector<std::string>& texts, SimOptions& o) {
  for (const std::string& text : texts) {
    SimPlayer sp;
    std::string rest;
    if (!SplitOnce(text, ':', sp.name, rest)) {
      sp.name = text;
    } else {
      std::string amount, script;
      if (!SplitOnce(rest, ':', amount, script)) amount = rest;
      std::string error;
      if (!amount.empty() && !ParseMoney(amount, sp.bankroll, error)) Refuse("--player " + text + ": " + error);
      sp.script = script;
    }
    sp.name = Trim(sp.name);
    if (sp.name.empty()) Refuse("--player " + text + ": the player has no name.");
    // The same name, or one the game file and the sessions logs would keep alike.
    for (const SimPlayer& other : o.players)
      if (SameNameInFiles(other.name, sp.name))
        Refuse("--player " + text + ": there's already a player named " + other.name + ".");
    o.players.push_back(sp);
  }
  if (o.players.size() > 8)
    Refuse("the table has eight seats; " + std::to_string(o.players.size()) + " players were given.");
}

// "[NAME:]BET=AMOUNT".
void AddBets(const std::vector<std::string>& texts, SimOptions& o) {
  for (const std::string& text : texts) {
    SimBet sb;
    std::string lhs, amount;
    if (!SplitOnce(text, '=', lhs, amount)) Refuse("--bet " + text + ": expected [NAME:]BET=AMOUNT.");
    std::string name = lhs, player;
    if (SplitOnce(lhs, ':', player, name)) sb.player = Trim(player);
    sb.bet = FindBetByName(name);
    if (sb.bet == 0) Refuse("--bet " + text + ": there is no bet named \"" + Trim(name) + "\".");
    std::string error;
    if (!ParseMoney(amount, sb.amount, error)) Refuse("--bet " + text + ": " + error);
    if (sb.amount.raw <= 0) Refuse("--bet " + text + ": the amount must be above 0.");
    if (sb.player.empty()) {
      if (o.players.size() != 1 || !o.gameFile.empty())
        Refuse("--bet " + text + ": name the player (NAME:BET=AMOUNT) when " +
               (o.players.empty() ? "no player sits." : "several players sit."));
      sb.player = o.players[0].name;
    }
    if (!Seated(o, sb.player)) Refuse("--bet " + text + ": there's no player named " + sb.player + ".");
    o.bets.push_back(sb);
  }
}

void AddHandling(const std::vector<std::string>& texts, bool winning, SimOptions& o) {
  const std::string option = winning ? "--on-win " : "--on-lose ";
  for (const std::string& text : texts) {
    SimHandling h;
    h.winning = winning;
    try {
      ParseHandling(text, h);
    } catch (const OptionFault& f) {
      Refuse(option + text + ": " + f.text);
    }
    if (!h.player.empty() && !Seated(o, h.player))
      Refuse(option + text + ": there's no player named " + h.player + ".");
    o.handling.push_back(h);
  }
}

void AddAutoPlay(const std::vector<std::string>& texts, SimOptions& o) {
  for (const std::string& text : texts) {
    SimAutoPlay a;
    std::string error;
    if (!ParseAutoPlayOption(text, a, error)) Refuse("--auto-play " + text + ": " + error);
    if (!a.player.empty() && !Seated(o, a.player))
      Refuse("--auto-play " + text + ": there's no player named " + a.player + ".");
    o.autoPlay.push_back(a);
  }
}

// Dice sources exclude each other where the table would take only one of them.
void CheckDiceSources(const SimOptions& o, bool fromRollGiven) {
  const SimDice& d = o.dice;
  if (!d.playbackFile.empty() && !d.popupFile.empty())
    Refuse("--playback and --popup are two sources of dice; give one of them.");
  if (!d.playbackFile.empty() && !d.recordFile.empty())
    Refuse("--playback and --record use the one recorder; record from another run.");
  if (fromRollGiven && d.playbackFile.empty()) Refuse("--from-roll goes with --playback.");
  if (!d.prbFile.empty() && (!d.playbackFile.empty() || !d.popupFile.empty()))
    Refuse("--prb shapes the dice of the generators; with --playback or --popup no generator rolls.");
}

// "AMOUNT" above 0, for the stops.
Money StopAmount(const char* option, const std::string& text) {
  Money m;
  std::string error;
  if (!ParseMoney(text, m, error)) Refuse(std::string(option) + " " + text + ": " + error);
  if (m.raw <= 0) Refuse(std::string(option) + " " + text + ": the amount must be above 0.");
  return m;
}

// "I/N", the I-th of N slices of the sessions.
void ParseShard(const std::string& text, SimOptions& o) {
  std::string left, right;
  const auto number = [](const std::string& t, int& n) {
    if (t.empty() || t.size() > 9 || t.find_first_not_of("0123456789") != std::string::npos) return false;
    n = std::stoi(t);
    return true;
  };
  if (!SplitOnce(text, '/', left, right) || !number(left, o.research.shardIndex) ||
      !number(right, o.research.shardCount) || o.research.shardIndex < 1 ||
      o.research.shardIndex > o.research.shardCount)
    Refuse("--shard " + text + ": expected I/N, the I-th of N slices, 1 <= I <= N (e.g. --shard 2/3).");
  if (o.research.shardCount > o.sessions)
    Refuse("--shard " + text + ": " + std::to_string(o.sessions) + " sessions make fewer than " +
           std::to_string(o.research.shardCount) + " slices.");
}

// The options that set the table of one run only; a run of sessions refuses them.
void RefuseSingleRunOptions(const CLI::App& app) {
  for (const char* option :
       {"--events-log", "--record", "--playback", "--from-roll", "--popup", "--reseed-sessions", "--save"})
    if (app.count(option) > 0)
      Refuse(std::string(option) +
             " goes with a single run: the sessions of a run of many are played on tables of their own, which write "
             "no file (give --sessions 1 and none of --threads, --shard, --stop-loss, --stop-win, --session-hours, "
             "--csv).");
}

// What the options hold before they are checked and put into SimOptions.
struct RawOptions {
  std::vector<std::string> players, bets, onWin, onLose, autoPlay;
  std::string stopLoss, stopWin, shard;
  int64_t seed = -1;
  CLI::Option* fromRoll = nullptr;
  CLI::App* compare = nullptr;
  CLI::App* merge = nullptr;
};

// The players, their bets and handling, a saved game, and the length of a single run.
void AddTableOptions(CLI::App& app, SimOptions& o, RawOptions& raw) {
  app.add_option(
      "--player", raw.players,
      "NAME[:BANKROLL[:SCRIPT.bet]] seat a player (repeatable; bankroll 1000 by default; a negative "
      "bankroll allows a negative bankroll for that seat). Example: --player Ann:500:examples/iron_cross.bet");
  app.add_option("--bet", raw.bets,
                 "[NAME:]BET=AMOUNT a standing bet (repeatable; the name may be left out when one player sits; bet "
                 "names ignore case). Example: --bet \"Ann:Pass Line=10\"");
  app.add_option(
      "--on-win", raw.onWin,
      "[NAME=]ACTION what a player does with a bet that won (repeatable; without a name, every player): "
      "take-down, same-bet, press-unit, press-double, parlay, modify:RULE, set:AMOUNT, or the number 1..7 of "
      "the action. Default take-down, so a standing bet comes down with its winnings and is placed again "
      "before the next roll.");
  app.add_option(
      "--on-lose", raw.onLose,
      "[NAME=]ACTION what a player does with a bet that lost: take-down, same-bet, remainder (bet what the "
      "roll left of it), press-unit, double, modify:RULE, set:AMOUNT, or 1..7.\n"
      "modify:RULE changes the amount the bet had before the roll by an operator + - * / and an amount: "
      "\"modify:+5\" adds $5, \"modify:*2\" doubles it, \"modify:-50%\" takes off half of it, and "
      "\"modify:+1cK\" adds one unit of check size K, the check times the y of the bet's payoff x to y: on "
      "a Place 6 (7 to 6) with the default checks 1, 5, 25, 100, 500, \"modify:+1c2\" adds 1 x $5 x 6 = $30.\n"
      "set:AMOUNT takes the bet down and bets the amount: \"set:25\" bets $25; \"set:NcK\" bets N x the "
      "check K x the x of the payoff x (check K / smallest check): on a Place 6, \"set:3c1\" bets 3 x $1 x 7 "
      "= $21 and \"set:1c2\" bets 1 x $5 x 7 x 5 = $175. Either still goes through the table's limits.");
  app.add_option("--auto-play", raw.autoPlay,
                 "[NAME:]KEY=VALUE an Auto-Play setting of a player (repeatable; without a name, every player): "
                 "adjust=manual|minor|color, place-bias|lay-bias|odds-bias|dont-odds-bias=nearest|increase|decrease, "
                 "take-odds|lay-odds|down-place|pass-dice=on|off, \"work BET\"=yes|no|default. Example: --auto-play "
                 "Ann:adjust=color");
  app.add_option("--game", o.gameFile,
                 "FILE.crp: play on from a saved game, with its rules, players, bets, scripts and statistics "
                 "(--player can't be given with it; --bet, --on-win, --on-lose and --auto-play name its players)");
  app.add_option("--save", o.saveFile,
                 "FILE.crp: save the table to a game file at the end; its session stays open in the game");
  app.add_option("--rolls", o.rolls,
                 "rolls to play in all, whatever sessions a script starts (default 1000; 0 plays none)")
      ->check(CLI::NonNegativeNumber);
}

// Runs of many sessions: their number and length, the session rules, workers and shards.
void AddResearchOptions(CLI::App& app, SimOptions& o, RawOptions& raw) {
  app.add_option("--sessions", o.sessions,
                 "M: play M independent sessions, each on a table of its own, of --session-rolls rolls or "
                 "--session-hours hours (default 1). Example: --sessions 10000 --session-rolls 500")
      ->check(CLI::Range(int64_t{1}, int64_t{1000000000}));
  app.add_option("--session-rolls", o.sessionRolls, "N: the rolls of each session of --sessions")
      ->check(CLI::PositiveNumber);
  app.add_option("--session-hours", o.research.sessionHours,
                 "H: a session lasts H hours at the table's rolls per hour (RollsPerTime, RollRateUnit; 120 an hour "
                 "by default); with --session-rolls, whichever comes first")
      ->check(CLI::PositiveNumber);
  app.add_option("--stop-loss", raw.stopLoss,
                 "AMOUNT: a player walks away once the session's result (bankroll less what the session put in) is "
                 "-AMOUNT or worse. Example: --stop-loss 200");
  app.add_option("--stop-win", raw.stopWin,
                 "AMOUNT: a player walks away once the session's result is AMOUNT or better");
  app.add_option("--threads", o.research.threads,
                 "T: play the sessions on T workers (default: the cores of the machine); the results are the same "
                 "for any T")
      ->check(CLI::Range(1, 1024));
  app.add_option("--shard", raw.shard,
                 "I/N: play the I-th of N equal slices of the sessions (the same sessions the whole run plays) into "
                 "--partial FILE; needs --seed. Example: --shard 2/3 --partial part2.json");
  app.add_option("--partial", o.research.partialFile, "FILE: the partial result file of --shard, for merge");
  app.add_option("--csv", o.research.csvFile,
                 "FILE: one row per session per player (session, player, rolls, result, drawdown, reason, handle, "
                 "expected net...)");
}

// The dice: generator and seed, percentage dice, recorded, played back and pop-up rolls.
void AddDiceOptions(CLI::App& app, SimOptions& o, RawOptions& raw) {
  app.add_option("--seed", raw.seed,
                 "seed of the selected generator, 1 to 2147483647, for #3 1 to 999999 (default: from the time of day)")
      ->check(CLI::Range(int64_t{1}, int64_t{2147483647}));
  app.add_option("--rng", o.dice.rng, "K: roll with generator #K, 1 to 8 (default #1). Example: --rng 5 --seed 42")
      ->check(CLI::Range(1, 8));
  app.add_flag("--reseed-sessions", o.dice.reseedSessions,
               "seed the generator again from the clock at every new session");
  app.add_option("--prb", o.dice.prbFile, "FILE.prb: percentage dice, rolled through that probability table");
  app.add_option("--record", o.dice.recordFile,
                 "FILE.rol: record every roll with its outcome marks (an existing file is replaced)");
  app.add_option("--playback", o.dice.playbackFile,
                 "FILE.rol: play the rolls of a dice roll file; the run stops at its end");
  raw.fromRoll =
      app.add_option("--from-roll", o.dice.fromRoll, "N: with --playback, start at roll N of the file (default 1)")
          ->check(CLI::PositiveNumber);
  app.add_option("--popup", o.dice.popupFile,
                 "FILE: take each roll from a pop-up roll file another program drops there (the first two digits 1 to "
                 "6 are the dice; the file is deleted once read); the run waits for it");
}

// The rules, the data folder, what is written and printed, and the other jobs.
void AddOutputOptions(CLI::App& app, SimOptions& o) {
  app.add_flag("--events-log", o.eventsLog,
               "write \"Events Log.txt\" and \"Events Log.ref\" in the data folder (off by default: it costs speed)");
  app.add_flag("--dump-rules", o.dumpRules,
               "print the whole rule set as JSON (with --rules and --rule applied) and exit. Example: --dump-rules > "
               "r.json");
  app.add_option("--rules", o.rulesFile,
                 "FILE.json: rules to play by; a partial file changes only the keys it names. Example: --rules r.json");
  app.add_option("--rule", o.ruleAssignments,
                 "KEY=VALUE: change one rule (repeatable; after --rules). Example: --rule MaxPlacardBet=2000 --rule "
                 "\"BetPayoff.Place 6.PayoffPay=7\" --rule CheckDenom.1=5");
  app.add_option("--data-dir", o.dataDir,
                 "the program folder (default $DICEHALL_HOME, else $XDG_DATA_HOME/dicehall, else "
                 "~/.local/share/dicehall)");
  app.add_flag("--json", o.json, "print the report as JSON");
  app.add_option("--check", o.checkFile,
                 "FILE.bet: compile the script as the script of seat 1, occupied by the first --player (default Ann), "
                 "and print OK (exit 0) or its first fault as FILE:LINE:COL-LINE:COL: message (exit 1)");
  app.add_flag("--dump", o.dump, "with --check: print the compiled records and string pool");
  app.add_flag("--bench", o.bench, "run the fixed benchmark scenarios and print their speed and signature");
}

// compare A.bet B.bet and merge FILES...
void AddSubcommands(CLI::App& app, SimOptions& o, RawOptions& raw) {
  raw.compare = app.add_subcommand(
      "compare",
      "A.bet B.bet [options]: both systems, each seated alone as the same player (--player NAME[:BANKROLL], default "
      "Player:1000) with the same options, play every session on the same dice; prints B - A with its 95% "
      "confidence interval and which system is ahead with what confidence. Writes no sessions log.");
  raw.compare->add_option("systems", o.files, "A.bet B.bet")->expected(2)->required();
  raw.compare->fallthrough();
  raw.merge = app.add_subcommand(
      "merge",
      "FILES... [--json] [--csv FILE] [--data-dir DIR]: merges the partial files of the shards of one run into the "
      "report of the unsharded run, and appends their sessions to the logs in order");
  raw.merge->add_option("files", o.files, "the partial result files")->required();
  raw.merge->fallthrough();
  app.require_subcommand(0, 1);
}

// Whether this is a run of many sessions, and the lengths and shards such a run needs.
void SettleRunKind(const CLI::App& app, SimOptions& o, const RawOptions& raw) {
  if (raw.compare->parsed()) o.command = SimCommand::Compare;
  SimResearch& r = o.research;
  if (!raw.stopLoss.empty()) r.stopLoss = StopAmount("--stop-loss", raw.stopLoss);
  if (!raw.stopWin.empty()) r.stopWin = StopAmount("--stop-win", raw.stopWin);
  const bool rollsGiven = app.count("--rolls") > 0, sessionRollsGiven = app.count("--session-rolls") > 0;
  r.on = o.command == SimCommand::Compare || o.sessions > 1 || app.count("--threads") > 0 || !raw.shard.empty() ||
         !raw.stopLoss.empty() || !raw.stopWin.empty() || r.sessionHours > 0 || !r.csvFile.empty();
  if (r.on && OnlineMode(o.online))
    Refuse(
        "an online table is one table: --sessions, --threads, --shard, --csv, compare and the session rules "
        "don't go with --host, --join or --lobby.");
  if (sessionRollsGiven && rollsGiven)
    Refuse("--rolls is the run's rolls in all; --session-rolls the rolls of each session: give one of them.");
  if (r.on) {
    RefuseSingleRunOptions(app);
    if (!sessionRollsGiven && r.sessionHours <= 0) {
      if (o.sessions > 1)
        Refuse("--sessions needs --session-rolls N or --session-hours H, the length of each session.");
      o.sessionRolls = o.rolls;  // one session of --rolls
      if (o.sessionRolls == 0) Refuse("--rolls 0 plays no session.");
    } else if (rollsGiven) {
      Refuse("--rolls is a single run's rolls; a session lasts --session-rolls or --session-hours.");
    }
    if (!raw.shard.empty()) {
      ParseShard(raw.shard, o);
      if (r.partialFile.empty()) Refuse("--shard needs --partial FILE, the file its results go to.");
      if (!o.seeded) Refuse("--shard needs --seed S, so that every shard plays the sessions of the same run.");
      if (o.json || !r.csvFile.empty())
        Refuse("--shard writes a partial result file; --json and --csv go with dicehall-sim merge.");
    }
  } else if (sessionRollsGiven) {
    o.rolls = o.sessionRolls;
  }
  if (!r.partialFile.empty() && raw.shard.empty()) Refuse("--partial goes with --shard I/N.");
}

}  // namespace

int ParseSimOptions(int argc, const char* const* argv, SimOptions& o, std::ostream& out, std::ostream& err) {
  CLI::App app{kDescription, "dicehall-sim"};
  app.get_formatter()->column_width(34);
  RawOptions raw;
  AddTableOptions(app, o, raw);
  AddResearchOptions(app, o, raw);
  AddDiceOptions(app, o, raw);
  AddOutputOptions(app, o);
  AddOnlineOptions(app, o.online, raw.players);  // after --rolls, which it reads
  AddSubcommands(app, o, raw);
  app.require_subcommand(0, 1);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    out << app.help();
    return 0;
  } catch (const CLI::ParseError& e) {
    err << "dicehall-sim: " << e.what() << "\n";
    return 2;
  }
  try {
    if (raw.seed > 0) {
      o.seeded = true;
      o.seed = static_cast<uint32_t>(raw.seed);
    }
    if (raw.merge->parsed()) {
      o.command = SimCommand::Merge;
      for (const CLI::Option* option : app.get_options())
        if (option->count() > 0 && option->get_name() != "--json" && option->get_name() != "--csv" &&
            option->get_name() != "--data-dir")
          Refuse(
              "merge takes the partial files, --json, --csv and --data-dir only: the run's options are in "
              "the files.");
      return -1;
    }
    SettleRunKind(app, o, raw);
    if (!o.gameFile.empty() && !raw.players.empty())
      Refuse("--player can't be given with --game: the game brings its players.");
    AddPlayers(raw.players, o);
    if (o.command == SimCommand::Compare) {
      if (!o.gameFile.empty() || !raw.shard.empty())
        Refuse("compare plays its two systems whole: --game and --shard don't go with it.");
      if (o.sessions < 2) Refuse("compare needs --sessions M, M of 2 or more, to tell a difference from luck.");
      if (o.players.size() > 1 || (!o.players.empty() && !o.players[0].script.empty()))
        Refuse("compare seats one player who plays A, then B: give --player NAME[:BANKROLL], without a script.");
      if (o.players.empty()) o.players.push_back({"Player", Money::Dollars(1000), ""});
    }
    AddBets(raw.bets, o);
    AddHandling(raw.onWin, true, o);
    AddHandling(raw.onLose, false, o);
    AddAutoPlay(raw.autoPlay, o);
    CheckDiceSources(o, raw.fromRoll->count() > 0);
  } catch (const OptionFault& f) {
    err << "dicehall-sim: " << f.text << "\n";
    return 2;
  }
  const std::string dir = ResolveDataDir(o.dataDir);
  std::error_code ec;
  if (std::filesystem::exists(dir, ec) && !std::filesystem::is_directory(dir, ec)) {
    err << "dicehall-sim: the data folder " << dir << " is not a folder.\n";
    return 2;
  }
  return -1;
}
