// dicehall-lobby: the central lobby of open tables. Prints "LISTENING <port>" first,
// keeps the list of tables that report to it, and stops on SIGTERM.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>

#include "engine/clock.h"
#include "online/lobby.h"
#include "online/qt_network.h"

int main(int argc, char** argv) {
  CLI::App app{"dicehall-lobby: the lobby where DiceHall hosts list their open tables and players find them.",
               "dicehall-lobby"};
  LobbySettings settings;
  double stale = settings.StaleMs / 1000.0;
  bool quiet = false;
  app.add_option("--port", settings.Port, "port to listen on (default 15153; 0 takes a free port)")
      ->check(CLI::Range(0, 65535));
  app.add_option("--listen", settings.Address, "address to listen on (default 127.0.0.1)");
  app.add_option("--line", settings.Line, "the lobby's line, shown to everyone who connects");
  app.add_option("--terms", settings.Terms, "the terms of service");
  app.add_option("--stale", stale, "seconds without a report before a table leaves the list (default 45)")
      ->check(CLI::Range(0.05, 86400.0));
  app.add_flag("--quiet", quiet, "don't print what happens in the lobby");
  CLI11_PARSE(app, argc, argv);
  settings.StaleMs = static_cast<int>(stale * 1000);

  QtLoop loop;
  QtNetwork net;
  LobbyServer lobby(net, DefaultClock(), settings);
  if (!quiet) lobby.OnLog = [](const std::string& line) { fmt::print(stderr, "dicehall-lobby: {}\n", line); };
  if (!lobby.Open()) {
    fmt::print(stderr, "dicehall-lobby: can't listen on {} port {}\n", settings.Address, settings.Port);
    return 1;
  }
  fmt::print("LISTENING {}\n", lobby.Port());
  std::fflush(stdout);
  loop.Every(100, [&] { lobby.Tick(); });
  loop.OnStopSignal([&] {
    lobby.Close();
    loop.Quit(0);
  });
  return loop.Run();
}
