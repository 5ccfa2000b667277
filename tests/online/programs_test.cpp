// The headless programs over real TCP on 127.0.0.1: a lobby, a host that reports to it
// and three clients that join, bet and end with the host's table.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "tests/autobet/example_scripts.h"
#include "tests/test_support.h"

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;
using Ms = std::chrono::milliseconds;

Clock::time_point After(int ms) { return Clock::now() + Ms(ms); }
int MsLeft(Clock::time_point until) {
  return std::max(0, static_cast<int>(std::chrono::duration_cast<Ms>(until - Clock::now()).count()));
}

void Pause() { std::this_thread::sleep_for(Ms(5)); }

// A program of this project started by a test, its output and errors written to files
// beside `files`; its output read line by line with a time limit; stopped by its own
// process id.
class Program {
 public:
  Program(std::vector<std::string> args, const std::filesystem::path& files)
      : out_(files.string() + ".out"), err_(files.string() + ".err") {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, out_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, err_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    if (posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ) != 0) pid_ = -1;
    posix_spawn_file_actions_destroy(&actions);
  }
  ~Program() { Stop(SIGKILL); }

  // The next line of standard output, or "" after `ms` without one or at its end.
  std::string Line(int ms = 10000) {
    for (const Clock::time_point until = After(ms);; Pause()) {
      const bool ended = Exited();  // then all it wrote is in the file
      const std::string out = FileText(out_);
      const size_t end = out.find('\n', taken_);
      if (end != std::string::npos) {
        std::string line = out.substr(taken_, end - taken_);
        taken_ = end + 1;
        return line;
      }
      if (ended || MsLeft(until) == 0) return "";
    }
  }
  // The first line that starts with `prefix` ("" when none came in time).
  std::string LineStarting(const std::string& prefix, int ms = 10000) {
    for (const Clock::time_point until = After(ms); MsLeft(until) > 0;) {
      std::string line = Line(MsLeft(until));
      if (line.rfind(prefix, 0) == 0) return line;
      if (line.empty() && Exited()) return "";
    }
    return "";
  }
  // Waits for the end; the exit code, or -1 after `ms`.
  int Wait(int ms = 10000) {
    for (const Clock::time_point until = After(ms); MsLeft(until) > 0; Pause())
      if (Exited()) return code_;
    return -1;
  }
  void Stop(int signal = SIGTERM) {
    if (pid_ > 0 && !exited_) kill(pid_, signal);
    if (signal == SIGKILL) Wait(5000);
  }
  std::string Errors() const { return FileText(err_); }

 private:
  bool Exited() {
    int status = 0;
    if (!exited_ && (pid_ <= 0 || waitpid(pid_, &status, WNOHANG) == pid_)) {
      exited_ = true;
      code_ = pid_ <= 0 ? -1 : WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    return exited_;
  }

  std::string out_, err_;
  size_t taken_ = 0;  // bytes of the output already returned as lines
  pid_t pid_ = -1;
  bool exited_ = false;
  int code_ = -1;
};

std::string Bin(const char* name) { return std::string(DICEHALL_BIN_DIR) + "/" + name; }

std::string PortOf(Program& p) {
  const std::string line = p.Line(10000);
  return line.rfind("LISTENING ", 0) == 0 ? line.substr(10) : "";
}

// dicehall-sim with a data folder of its own in `home`.
Program Sim(const TempDir& home, const std::string& who, std::vector<std::string> args) {
  args.insert(args.begin(), {Bin("dicehall-sim"), "--data-dir", (home.path / who).string()});
  return Program(args, home.path / who);
}

TEST(OnlinePrograms, ClientsOfALobbyListedHostEndWithItsTable) {
  TempDir home;
  Program lobby({Bin("dicehall-lobby"), "--port", "0", "--quiet"}, home.path / "lobby");
  const std::string lobbyPort = PortOf(lobby);
  ASSERT_NE(lobbyPort, "") << lobby.Errors();
  Program host =
      Sim(home, "host",
          {"--host", "--port", "0", "--roll-interval", "0.02", "--rolls", "300", "--player", "Ann:5000", "--bet",
           "Ann:Pass Line=10", "--bet", "Ann:Place 6=12", "--lobby", "127.0.0.1:" + lobbyPort, "--name", "Zed"});
  const std::string hostPort = PortOf(host);
  ASSERT_NE(hostPort, "") << host.Errors();
  const std::string table = "127.0.0.1:" + hostPort;
  Program bob = Sim(home, "bob", {"--join", table, "--name", "Bob", "--bet", "Place 8=12", "--bet", "Field=5"});
  Program cy = Sim(home, "cy", {"--join", table, "--name", "Cy", "--seat", "1R", "--bet", "Don't Pass=10"});
  // The third finds the table in the lobby by its game name, and bets by script.
  const std::string script = (ExamplesFolder() / "iron_cross.bet").string();
  Program dee = Sim(home, "dee",
                    {"--lobby", "127.0.0.1:" + lobbyPort, "--table", "DiceHall Online", "--player",
                     "Dee:2000:" + script, "--bet", "Dee:Hard 6=5"});
  for (Program* p : {&bob, &cy, &dee}) EXPECT_NE(p->LineStarting("SEATED "), "") << p->Errors();

  // The lobby lists the table with its host and players while it plays.
  Program list = Sim(home, "list", {"--lobby", "127.0.0.1:" + lobbyPort});
  const std::string listed = list.Line();
  EXPECT_NE(listed.find("DiceHall Online\tZed\t" + table + "\tOpen"), std::string::npos) << listed;
  EXPECT_EQ(list.Wait(), 0);

  ASSERT_EQ(host.Wait(120000), 0) << host.Errors();
  EXPECT_EQ(host.Line(), "Rolls: 300");
  const std::string hostTable = host.Line();
  for (Program* p : {&bob, &cy, &dee}) {
    ASSERT_EQ(p->Wait(20000), 0) << p->Errors();
    EXPECT_EQ(p->LineStarting("Rolls: "), "Rolls: 300");
    EXPECT_EQ(p->Line(), hostTable) << p->Errors() << host.Errors();
  }
  // Once the host has stopped, its table is gone from the list.
  Program after = Sim(home, "after", {"--lobby", "127.0.0.1:" + lobbyPort});
  EXPECT_EQ(after.Line(5000), "");
  EXPECT_EQ(after.Wait(), 0);
  lobby.Stop();
  EXPECT_EQ(lobby.Wait(), 0);
}

TEST(OnlinePrograms, AServerStopsCleanlyOnSigterm) {
  TempDir home;
  Program host =
      Sim(home, "host",
          {"--host", "--port", "0", "--roll-interval", "0.05", "--player", "Ann:500", "--bet", "Ann:Pass Line=5"});
  ASSERT_NE(PortOf(host), "");
  EXPECT_EQ(host.Wait(300), -1) << "the host stopped by itself";
  host.Stop();
  EXPECT_EQ(host.Wait(), 0) << host.Errors();
  EXPECT_EQ(host.LineStarting("Rolls: ").empty(), false);
}

}  // namespace
