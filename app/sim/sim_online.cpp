#include "app/sim/sim_online.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <ostream>

#include "app/sim/sim.h"
#include "autobet/interpreter.h"
#include "automation/auto_roll.h"
#include "engine/game_state.h"
#include "engine/placement.h"
#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "engine/table_settings.h"
#include "online/answering_ui.h"
#include "online/client.h"
#include "online/host.h"
#include "online/lobby.h"
#include "online/mirror.h"
#include "online/qt_network.h"

namespace {

struct OwnBet {
  int bet;
  Money amount;
};

// Each standing bet of the seat that is absent and that the table allows; line bets on
// the come-out only. At a client these go to the host as the player's requests.
void PlaceOwnBets(Game& g, int seat, const std::vector<OwnBet>& bets) {
  for (const OwnBet& b : bets) {
    if (g.BetAmount[seat][b.bet].raw > 0) continue;
    if ((b.bet == bet::PassLine || b.bet == bet::DontPass) && !IsComeOut(g)) continue;
    ChangeBet(g, seat, b.bet, b.amount);
  }
}

void PrintTable(const Game& g, int32_t rolls, std::ostream& out) {
  out << "Rolls: " << rolls << "\n";
  out << fmt::format("Table: {:016x}\n", TableDigest(g));
  out << fmt::format("Statistics: {:016x}\n", StatisticsDigest(g));
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s))
      out << fmt::format("{} ({}): bankroll {}\n", g.PlayerName[s], SeatName(s), DollarText(g.Bankroll[s]));
  out.flush();
}

bool Address(const std::string& option, const std::string& text, std::string& host, int& port, std::ostream& err) {
  if (SplitAddress(text, host, port)) return true;
  err << "dicehall-sim: " << option << " " << text << ": expected HOST:PORT.\n";
  return false;
}

int RunHost(Game& g, const SimOptions& o, std::ostream& out, std::ostream& err) {
  const OnlineOptions& on = o.online;
  QtLoop loop;
  QtNetwork net;
  HostSettings settings;
  settings.Address = on.listen;
  settings.Port = on.port;
  // One roll each interval: half of it for bets, half locked out before the dice fly.
  settings.CountdownTickMs = std::max(5, static_cast<int>(on.rollInterval * 500));
  settings.AckWaitMs = std::max(2000, settings.CountdownTickMs * 4);
  Host host(g, net, DefaultClock(), settings);
  g.OnlinePanel.CountdownToLockout = 1;
  g.OnlinePanel.RollDelay = 1;
  g.OnlinePanel.GamePassword = on.password;
  // A server has no owner at hand to let a client operate it.
  host.Panel.AllowClientHosting = false;
  if (!on.name.empty()) g.HostName = on.name;
  host.OnLog = [&err](const std::string& line) { err << "dicehall-sim: " << line << "\n" << std::flush; };
  if (!host.OpenTable()) {
    err << "dicehall-sim: can't listen on " << on.listen << " port " << on.port << ".\n";
    return 1;
  }
  out << "LISTENING " << host.Port() << "\n" << std::flush;
  if (!on.lobby.empty()) {
    std::string lobbyHost;
    int lobbyPort = 0;
    if (!Address("--lobby", on.lobby, lobbyHost, lobbyPort, err)) return 2;
    host.ConnectLobby(lobbyHost, lobbyPort);
  }
  // The host's seats bet before the first roll as before every other.
  if (g.Auto.AfterRoll) g.Auto.AfterRoll(g, g.Auto.AfterRollData);
  // Nobody watches a server: its Auto-Roll runs as Hyper-Drive does, no box opens and no
  // script cycle waits to be read. The countdown still times each roll.
  SetAutoRollThrottle(g, 0);
  ToggleAutoRoll(g);

  bool stopping = false, closed = false;
  uint32_t stopAt = 0, restartAt = 0, closedAt = 0;
  auto stop = [&] {
    if (stopping) return;
    stopping = true;
    stopAt = DefaultClock().TickMs();
    if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
    host.StopRolling();
  };
  loop.OnStopSignal(stop);
  loop.Every(std::clamp(settings.CountdownTickMs / 4, 2, 50), [&] {
    host.Tick();
    const uint32_t now = DefaultClock().TickMs();
    if (on.rollsGiven && host.RollCount >= o.rolls) stop();
    if (!stopping && !g.Auto.AutoRollActive && static_cast<int32_t>(now - restartAt) >= 0) {
      // A refused shot switched Auto-Roll off: a shooter who can't shoot passes the dice,
      // and the server goes on.
      restartAt = now + 1000;
      PassDice(g, kPassAsked);
      ToggleAutoRoll(g);
    }
    // Every client has the last roll (or won't have it): the table closes.
    if (stopping && !closed && !g.Table.Rolling && (host.AllInStep() || now - stopAt > 5000)) {
      PrintTable(g, host.RollCount, out);
      host.CloseTable();
      closedAt = now;
      closed = true;
    }
    // What was sent last reaches the clients before the program ends.
    if (closed && (net.Closing() == 0 || now - closedAt > 6000)) loop.Quit(0);
  });
  return loop.Run();
}

// With --lobby, at each tick until a table is joined: the lobby's open tables listed
// (without --table), or the one named chosen; `code` 1 when it can't be.
void WatchLobby(QtLoop& loop, Client& client, const OnlineOptions& on, std::ostream& out, std::ostream& err,
                int& code) {
  const uint32_t since = DefaultClock().TickMs();
  loop.Every(50, [&loop, &client, &on, &out, &err, &code, since, listed = false]() mutable {
    client.Tick();
    if (client.OnlineState >= 2) return;
    const bool waited = DefaultClock().TickMs() - since > (on.table.empty() ? 3000u : 30000u);
    if (on.table.empty()) {
      if (!client.Tables.empty() || waited) {
        for (const TableListing& t : client.Tables)
          out << fmt::format("{}\t{}\t{}\t{}\t{} players\n", t.GameName, t.HostName, t.Address, t.Status,
                             t.PlayerCount);
        out << std::flush;
        loop.Quit(0);
      }
      return;
    }
    for (const TableListing& t : client.Tables)
      if (!listed && t.GameName == on.table) {
        listed = true;
        if (!client.ChooseTable(t)) {
          code = 1;
          loop.Quit(1);
        }
        return;
      }
    if (waited && !listed) {
      err << "dicehall-sim: the lobby lists no open table named " << on.table << ".\n";
      loop.Quit(1);
    }
  });
}

int RunClient(Game& g, const SimOptions& o, std::ostream& out, std::ostream& err) {
  const OnlineOptions& on = o.online;
  // The player of this program, as the usual options seated it at seat 1.
  const std::string name = on.name.empty() ? g.PlayerName[1] : on.name;
  std::vector<OwnBet> bets;
  for (const SimBet& b : o.bets)
    if (b.player == g.PlayerName[1]) bets.push_back({b.bet, b.amount});
  const std::vector<std::string> script = g.AutoBet.ScriptSource[1];
  const std::string scriptFile = g.ScriptFile[1];
  const bool scripted = g.ScriptActive[1];
  const SeatHandling handling = HandlingOf(g, 1);
  const bool shoots = !g.AutoPassDice[1];
  g.Auto.AfterRoll = nullptr;
  // Nobody watches this mirror either: its rolls run silent, its scripts without the wait
  // that lets a person read the status.
  g.SilentMode = true;
  g.Auto.HyperDrive = true;

  QtLoop loop;
  QtNetwork net;
  AnsweringUi ui;
  ui.Name = name;
  ui.Password = on.password;
  ui.Seat = on.seat;
  ui.BuyIn = g.BankrollInitAmount[1];
  g.Ui = &ui;
  Client client(g, net, DefaultClock());
  // The headless client reports the mirror it played: its own game isn't put back.
  client.Restore = {nullptr, nullptr};
  client.OnLog = [&err](const std::string& line) { err << "dicehall-sim: " << line << "\n" << std::flush; };
  client.OnJoined = [&] { client.RequestSeat(); };
  bool seatedOnce = false;
  client.OnSeated = [&](int seat) {
    SetSeatScript(g, seat, script, scriptFile, scripted && client.AllowAutoBet);
    SetSeatHandling(g, seat, handling);
    client.SetAutoPass(!shoots);
    // A script starts as its activation starts it: one run with "initializing script" true.
    ActivateScripts(g);
    if (client.OnlineState == 4) PlaceOwnBets(g, seat, bets);
    if (!seatedOnce) out << "SEATED " << SeatName(seat) << "\n" << std::flush;
    seatedOnce = true;
  };
  client.OnBetsOpen = [&] {
    if (client.OwnSeat != 0) PlaceOwnBets(g, client.OwnSeat, bets);
  };
  client.AfterRoll = [&] {
    if (client.OwnSeat != 0 && client.OnlineState == 4) PlaceOwnBets(g, client.OwnSeat, bets);
    if (on.rollsGiven && client.HostRollCount >= o.rolls) client.Leave();
  };
  int code = 0;
  bool ended = false;
  client.OnLeft = [&] {
    if (ended) return;
    ended = true;
    if (!seatedOnce) {
      err << "dicehall-sim: no seat at the table" << (on.join.empty() ? "" : " at " + on.join)
          << (client.OwnName.empty() && ui.Titles.empty() ? ": it can't be reached.\n" : ".\n");
      code = 1;
    }
    PrintTable(g, client.HostRollCount, out);
    loop.Quit(code);
  };
  loop.OnStopSignal([&] {
    if (client.Connected()) client.Leave();
    else loop.Quit(0);
  });

  std::string host;
  int port = 0;
  if (!on.join.empty()) {
    if (!Address("--join", on.join, host, port, err)) return 2;
    client.Join(host, port);
  } else {
    if (!Address("--lobby", on.lobby, host, port, err)) return 2;
    client.ConnectLobby(host, port);
    WatchLobby(loop, client, on, out, err, code);
    return loop.Run();
  }
  loop.Every(50, [&] { client.Tick(); });
  return loop.Run();
}

}  // namespace

void AddOnlineOptions(CLI::App& app, OnlineOptions& o, std::vector<std::string>& players) {
  app.add_flag("--host", o.host,
               "host an online table: seat the --player options at it and roll every --roll-interval seconds until "
               "--rolls have gone out or SIGTERM; prints LISTENING <port> first");
  app.add_option("--join", o.join, "HOST:PORT join the online table there and play the --name player's --bet options");
  app.add_option("--lobby", o.lobby,
                 "HOST:PORT the lobby: a host reports its table there; a client lists its tables, or joins --table");
  app.add_option("--table", o.table, "GAME with --lobby: join the lobby's open table of this game name");
  app.add_option("--port", o.port, "with --host: the port to listen on (default 15152; 0 takes a free port)")
      ->check(CLI::Range(0, 65535));
  app.add_option("--listen", o.listen, "with --host: the address to listen on (default 127.0.0.1)");
  app.add_option("--password", o.password, "the table's password (a host sets it, a client gives it)");
  app.add_option("--name", o.name, "a client's name at the table (a host's: its host name)");
  app.add_option("--seat", o.seat, "with --join: the seat to ask for, 4L..4R or 1..8 (default the first free)");
  app.add_option("--roll-interval", o.rollInterval, "with --host: seconds from one roll to the next (default 2)")
      ->check(CLI::Range(0.01, 3600.0));
  CLI::Option* rolls = app.get_option("--rolls");
  app.parse_complete_callback([&o, &players, rolls] {
    o.rollsGiven = rolls != nullptr && rolls->count() > 0;
    const bool client = !o.join.empty() || (!o.lobby.empty() && !o.host);
    if (client && players.empty()) players.push_back(o.name.empty() ? std::string("Player") : o.name);
  });
}

bool OnlineMode(const OnlineOptions& o) { return o.host || !o.join.empty() || !o.lobby.empty(); }

int RunOnline(Game& g, const SimOptions& options, std::ostream& out, std::ostream& err) {
  const OnlineOptions& on = options.online;
  if (on.host && !on.join.empty()) {
    err << "dicehall-sim: --host and --join can't be given together.\n";
    return 2;
  }
  if (on.host) return RunHost(g, options, out, err);
  return RunClient(g, options, out, err);
}
