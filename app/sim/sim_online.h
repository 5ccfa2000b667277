#pragma once
// dicehall-sim at an online table: a host that plays its seats by the usual options and
// rolls every --roll-interval seconds, or a client that joins a table (directly or
// through the lobby) and bets by its --bet options or script.

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace CLI {
class App;
}
struct Game;
struct SimOptions;

struct OnlineOptions {
  bool host = false;
  std::string join;   // HOST:PORT of a table
  std::string lobby;  // HOST:PORT of the lobby
  std::string table;  // the game name to join through the lobby
  int port = 15152;
  std::string listen = "127.0.0.1";
  std::string password;
  std::string name;
  std::string seat;
  double rollInterval = 2.0;
  bool rollsGiven = false;  // --rolls was given: the table stops after them
};

// Registers the online options; call it last, after every other option. `players` is
// the --player list: a client's --name seats a player of that name when none is given.
void AddOnlineOptions(CLI::App& app, OnlineOptions& o, std::vector<std::string>& players);
bool OnlineMode(const OnlineOptions& o);
// Runs the set-up game at the online table until it ends or SIGTERM; prints
// "LISTENING <port>" first as a host. Returns the exit code.
int RunOnline(Game& g, const SimOptions& options, std::ostream& out, std::ostream& err);
