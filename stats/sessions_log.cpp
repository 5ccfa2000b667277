#include "stats/sessions_log.h"

#include <filesystem>
#include <system_error>

#include "engine/messages.h"
#include "stats/events_log.h"

namespace {

void Report(Game& g, const std::string& text) { Tell(g, text, "DiceHall", 0, msg::kAlertOk); }

bool FileExists(const std::string& path) {
  std::error_code ec;
  return !path.empty() && std::filesystem::exists(path, ec);
}

}  // namespace

std::string DefaultSessionsLogPath(const Game& g, int seat) {
  if (g.ProgramFolder.empty() || seat < 1 || seat >= kSeats || g.PlayerName[seat].empty()) return {};
  return (std::filesystem::path(g.ProgramFolder) / (g.PlayerName[seat] + ".slg")).string();
}

SessionRecord SessionRecordOf(const Game& g, int seat) {
  const int c = seat + kSessionScope;
  const Statistics& s = g.Stats;
  // Totals over every bet of the seat; the shared scratch row is left to the screens.
  Money decided, won, lost, handle, amountWon, amountLost;
  for (int b = 1; b <= kBets; ++b) {
    decided += s.BetStats[c][b][0];
    won += s.BetWinStats[c][b][0];
    lost += s.BetLossStats[c][b][0];
    handle += s.BetStats[c][b][1];
    amountWon += s.BetWinStats[c][b][1];
    amountLost += s.BetLossStats[c][b][1];
  }
  SessionRecord r{};
  r[slg::Rolls] = Money::Dollars(s.SeatRolls[c]);
  r[slg::BetsDecided] = decided;
  r[slg::BetsWon] = won;
  r[slg::BetsLost] = lost;
  r[slg::BetsNet] = won - lost;
  r[slg::Handle] = handle;
  r[slg::AmountWon] = amountWon;
  r[slg::AmountLost] = amountLost;
  r[slg::AmountNet] = amountWon - amountLost;
  if (handle.raw != 0)
    r[slg::PercentWonLost] =
        Money::FromDouble(100.0 * static_cast<double>(r[slg::AmountNet].raw) / static_cast<double>(handle.raw));
  r[slg::Invested] = g.BuyInTotal[c];
  r[slg::Ending] = g.Bankroll[seat];
  for (int k = 0; k < kSessionStacks; ++k)
    r[static_cast<size_t>(slg::FirstStack + k)] = g.BetAmount[seat][kCheckStackRow + k];
  return r;
}

bool AddSessionRecord(Game& g, int seat, std::string& path) {
  constexpr const char* kLabel = "AddSessionRecord";
  if (seat < 1 || seat >= kSeats || !SeatOccupied(g, seat)) return false;
  if (g.Auto.SessionSink) {
    g.Auto.SessionSink(g, seat, g.Auto.SessionSinkData);
    return true;
  }
  const std::string target = path.empty() ? DefaultSessionsLogPath(g, seat) : path;
  if (target.empty()) return false;
  std::string error;
  if (!FileExists(target) && !CreateNewSessionsLog(target, error, kLabel)) {
    Report(g, error);
    return false;
  }
  if (!AppendSessionRecord(target, SessionRecordOf(g, seat), error, kLabel)) {
    Report(g, error);
    return false;
  }
  path = target;
  return true;
}

bool StartSessionsLog(Game& g, int seat, std::string& path, bool online) {
  constexpr const char* kLabel = "CreateNewSessionsLog";
  if (seat < 1 || seat >= kSeats || !SeatOccupied(g, seat)) return false;
  const std::string target = path.empty() ? DefaultSessionsLogPath(g, seat) : path;
  if (target.empty()) return false;
  std::string error;
  if (FileExists(target)) {
    // Never replace a file that isn't ours.
    int32_t count = 0;
    if (!ReadSessionsCount(target, count, error, kLabel)) {
      Report(g, error);
      return false;
    }
    if (online) {
      const MessageReply reply =
          Tell(g,
               g.PlayerName[seat] + " has an older Sessions Log available.  Would you like to resume this log?\n\n" +
                   "If not, then a new log will be created and the old one deleted.",
               "DiceHall", 0, msg::kYes | msg::kNo);
      if (reply.Button == kButtonYes) {
        path = target;
        return true;
      }
    }
  }
  if (!CreateNewSessionsLog(target, error, kLabel)) {
    Report(g, error);
    return false;
  }
  path = target;
  return true;
}

bool CreateNewSessionsLog(Game& g, const std::string& path) {
  std::string error;
  if (CreateNewSessionsLog(path, error, "CreateNewSessionsLog")) return true;
  Report(g, error);
  return false;
}

bool OpenSessionsLog(Game& g, std::string& path, const std::string& chosen) {
  std::string error;
  int32_t count = 0;
  if (!ReadSessionsCount(chosen, count, error, "OpenSessionsLog")) {
    Report(g, error);
    return false;
  }
  path = chosen;
  return true;
}

bool MergeSessionsLog(Game& g, const std::string& path, const std::string& other) {
  std::string error;
  if (MergeSessionsLogs(path, other, error, "MergeSessionsLog")) return true;
  Report(g, error);
  return false;
}

bool DeleteAllSessions(Game& g, int seat, const std::string& path) {
  // Nobody to say yes: nothing is deleted.
  if (g.SilentMode || g.Ui == nullptr) return false;
  const MessageReply reply =
      Tell(g, "Are you sure you want to delete ALL of " + g.PlayerName[seat] + "'s recorded sessions?", "DiceHall", 0,
           msg::kYes | msg::kNo);
  if (reply.Button != kButtonYes) return false;
  std::string error;
  if (DeleteAllSessions(path, error, "DeleteAllSessions")) return true;
  Report(g, error);
  return false;
}

bool DeleteSelectedSessions(Game& g, const std::string& path, const std::vector<int32_t>& sessions) {
  std::string error;
  if (DeleteSessions(path, sessions, error, "DeleteSelectedSessions")) return true;
  Report(g, error);
  return false;
}

std::string SessionsStatsErrorText(const std::string& player, const std::string& dataCaption) {
  return "An error has occurred in calculating the statistics for " + player + ".\n\n" +
         "This may have been due to excessive variance or corruption in your data.  " +
         "You should be able to view the actual data by selecting the " + dataCaption + " option button.";
}

bool UpdateSessionsLog(Game& g, int seat, const std::string& path, const SessionsFilter& filter, SessionsStats& out) {
  SessionsLogFile log;
  std::string error;
  if (!ReadSessionsLog(path, log, error, "UpdateSessionsLog")) {
    Report(g, error);
    return false;
  }
  if (ComputeSessionsStats(log.Records, filter, out)) return true;
  const std::string player = seat >= 0 && seat < kSeats ? g.PlayerName[seat] : std::string();
  Tell(g, SessionsStatsErrorText(player), kSessionsLogErrorTitle, 0, msg::kAlertOk);
  return false;
}
