#include "app/sim/data_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <ostream>

#include "app/sim/sim_sessions.h"
#include "stats/sessions_log_file.h"

namespace {

std::string LogPath(const std::string& folder, const std::string& player) {
  return (std::filesystem::path(folder) / (player + ".slg")).string();
}

}  // namespace

FolderLock::~FolderLock() {
  if (fd_ >= 0) close(fd_);  // closing lets the lock go
}

bool FolderLock::Take(const std::string& folder, std::ostream& err) {
  const std::string path = (std::filesystem::path(folder) / kFolderLockName).string();
  fd_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (fd_ < 0) {
    err << "dicehall-sim: the data folder " << folder << " can't be locked: " << path << " can't be opened.\n";
    return false;
  }
  if (flock(fd_, LOCK_EX | LOCK_NB) == 0) return true;
  close(fd_);
  fd_ = -1;
  err << "dicehall-sim: the data folder " << folder
      << " is in use by another run; wait until it ends, or give this run another --data-dir.\n";
  return false;
}

bool MakeDataFolder(const std::string& folder, std::ostream& err) {
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  if (!ec) return true;
  err << "dicehall-sim: the data folder " << folder << " can't be made: " << ec.message() << "\n";
  return false;
}

bool CheckSessionLogs(const std::string& folder, const ResearchFacts& facts, std::string& error) {
  for (const ResearchPlayer& p : facts.players) {
    const std::string path = LogPath(folder, p.name);
    std::error_code ec;
    if (!std::filesystem::exists(path, ec)) continue;
    int32_t count = 0;
    std::string why;
    if (!ReadSessionsCount(path, count, why, "dicehall-sim")) {
      error = p.name + "'s sessions log " + path + ": " + kNotASessionsLog;
      return false;
    }
  }
  return true;
}

bool AppendSessionLogs(const std::string& folder, const ResearchFacts& facts, const SessionResult& session,
                       std::string& error) {
  for (size_t i = 0; i < session.players.size() && i < facts.players.size(); ++i) {
    const std::string path = LogPath(folder, facts.players[i].name);
    for (const SessionRecord& record : session.players[i].records) {
      std::error_code ec;
      if (!std::filesystem::exists(path, ec) && !CreateNewSessionsLog(path, error, "dicehall-sim")) return false;
      if (!AppendSessionRecord(path, record, error, "dicehall-sim")) return false;
    }
  }
  return true;
}
