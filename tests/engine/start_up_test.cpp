// Start-up and exit: the command line's game file, the default game at exit and again
// at the next start, and the limit stop for a saved bankroll beyond the limit.

#include "engine/start_up.h"

#include <gtest/gtest.h>

#include <tuple>

#include "engine/players.h"
#include "storage/game_file.h"
#include "tests/test_support.h"

namespace {

struct Program : TestTable {
  int Start(const std::string& folder, const std::string& commandLine) { return Main(g, folder, commandLine, {}); }
  bool Told(const std::string& part) const {
    for (const auto& e : ui.transcript)
      if (e.request.Text.find(part) != std::string::npos) return true;
    return false;
  }
};

TEST(StartUp, TheCommandLineOpensItsGameOrSaysWhyNot) {
  TempDir dir;
  const std::string folder = dir.path.string();
  {
    Program first;
    first.Start(folder, "");  // no default game: the defaults stand, and nothing is said
    EXPECT_TRUE(first.ui.transcript.empty());
    AddPlayer(first.g, 1, "Ann", 100_usd);
    ASSERT_TRUE(ExitGame(first.g));  // "default.crp"
    AddPlayer(first.g, 2, "Bob", 100_usd);
    ASSERT_TRUE(SaveGame(first.g, (dir.path / "my table.crp").string()));
  }
  const std::string named = (dir.path / "my table.crp").string();
  // The command line; players 1 from "default.crp", 2 from "my table.crp"; what is told.
  const std::tuple<std::string, int, const char*> cases[] = {
      {"", 1, ""},
      {"  \" " + named + " \"  ", 2, ""},
      {"notes.txt", 1,
       "This is not a recognized DiceHall game file.\nThe last default game file will be opened instead."},
      {(dir.path / "gone.crp").string(), 1, "Game file not found."}};
  for (const auto& [line, players, told] : cases) {
    Program p;
    EXPECT_EQ(p.Start(folder, line), 0);
    EXPECT_EQ(p.g.Table.NumberOfPlayers, players) << line;
    if (*told) EXPECT_TRUE(p.Told(told)) << line << ": " << p.ui.LastText();
    else EXPECT_TRUE(p.ui.transcript.empty()) << line << ": " << p.ui.LastText();
    EXPECT_EQ(p.g.Desktop.Caption, players == 2 ? "DiceHall (my table.crp)" : "DiceHall");
  }
}

TEST(StartUp, ASavedBankrollBeyondTheLimitStopsPlayOnceTheWindowShows) {
  TempDir dir;
  {
    Program first;
    first.Start(dir.path.string(), "");
    AddPlayer(first.g, 3, "Cy", 9000000_usd);
    for (int column : {3, 21, 39}) first.g.Bankroll[column] = 10000000_usd;  // a lucky night
    ASSERT_TRUE(ExitGame(first.g));
  }
  Program p;
  bool shown = false;
  StartUpHooks hooks;
  hooks.ShowMainWindow = [&] { shown = p.ui.transcript.empty(); };
  Main(p.g, dir.path.string(), "", hooks);
  EXPECT_TRUE(shown);
  EXPECT_TRUE(p.Told("Cy broke the max bankroll limit of $9,999,999"));
  EXPECT_EQ(p.g.Table.PendingStopSeat, 3);
}

}  // namespace
