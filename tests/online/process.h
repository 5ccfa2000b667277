#pragma once
// A program of this project started by a test: its output read line by line with a
// time limit, stopped by its own process id.

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <vector>

extern char** environ;

class Program {
 public:
  explicit Program(std::vector<std::string> args) {
    int out[2], err[2];
    if (pipe(out) != 0 || pipe(err) != 0) return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err[1], 2);
    posix_spawn_file_actions_addclose(&actions, out[0]);
    posix_spawn_file_actions_addclose(&actions, err[0]);
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    if (posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ) != 0) pid_ = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    close(err[1]);
    out_ = out[0];
    err_ = err[0];
    fcntl(out_, F_SETFL, O_NONBLOCK);
    fcntl(err_, F_SETFL, O_NONBLOCK);
  }
  ~Program() {
    Stop(SIGKILL);
    close(out_);
    close(err_);
  }
  bool Started() const { return pid_ > 0; }
  pid_t Pid() const { return pid_; }

  // The next line of standard output, or "" after `ms` without one or at its end.
  std::string Line(int ms = 10000) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    for (;;) {
      const size_t end = stdout_.find('\n');
      if (end != std::string::npos) {
        std::string line = stdout_.substr(0, end);
        stdout_.erase(0, end + 1);
        return line;
      }
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
      if (left.count() <= 0 || !ReadSome(static_cast<int>(left.count()))) return "";
    }
  }
  // The first line that starts with `prefix` ("" when none came in time).
  std::string LineStarting(const std::string& prefix, int ms = 10000) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    for (;;) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
      if (left.count() <= 0) return "";
      std::string line = Line(static_cast<int>(left.count()));
      if (line.rfind(prefix, 0) == 0) return line;
      if (line.empty() && Exited()) return "";
    }
  }
  // Waits for the end; the exit code, or -1 after `ms`.
  int Wait(int ms = 10000) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (std::chrono::steady_clock::now() < until) {
      if (Exited()) return code_;
      ReadSome(20);
    }
    return -1;
  }
  void Stop(int signal = SIGTERM) {
    if (pid_ > 0 && !exited_) kill(pid_, signal);
    if (signal == SIGKILL) Wait(5000);
  }
  std::string Errors() {
    ReadSome(0);
    return stderr_;
  }

 private:
  bool Exited() {
    if (exited_) return true;
    int status = 0;
    if (pid_ <= 0) return exited_ = true;
    if (waitpid(pid_, &status, WNOHANG) == pid_) {
      exited_ = true;
      code_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
      while (ReadSome(0)) {
      }
    }
    return exited_;
  }
  bool ReadSome(int ms) {
    pollfd fds[2] = {{out_, POLLIN, 0}, {err_, POLLIN, 0}};
    if (poll(fds, 2, ms) <= 0) return false;
    bool any = false;
    char buffer[4096];
    for (int k = 0; k < 2; ++k) {
      if (!(fds[k].revents & (POLLIN | POLLHUP))) continue;
      const ssize_t n = read(fds[k].fd, buffer, sizeof buffer);
      if (n > 0) {
        (k == 0 ? stdout_ : stderr_).append(buffer, static_cast<size_t>(n));
        any = true;
      }
    }
    return any;
  }

  pid_t pid_ = -1;
  int out_ = -1, err_ = -1;
  bool exited_ = false;
  int code_ = -1;
  std::string stdout_, stderr_;
};
