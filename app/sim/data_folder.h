#pragma once
// What a run of dicehall-sim does to the data folder: it holds the folder's lock while it
// writes there, so that two runs never interleave their logs or overwrite each other's
// roll history, and it appends its sessions to the players' logs in session order.

#include <iosfwd>
#include <string>

struct ResearchFacts;
struct SessionResult;

inline constexpr const char* kFolderLockName = "dicehall.lock";

// An advisory lock (flock) on the lock file of the data folder, held until destroyed. A
// second run that can't take it says so and goes no further.
class FolderLock {
 public:
  FolderLock() = default;
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;
  ~FolderLock();
  // False, with the reason said on `err`, when another run holds the folder.
  bool Take(const std::string& folder, std::ostream& err);

 private:
  int fd_ = -1;
};

// The folder made if it is missing; false with the reason said on `err`.
bool MakeDataFolder(const std::string& folder, std::ostream& err);

// Every player's sessions log in the folder is a true log, or missing; false with the
// reason otherwise, before anything is played.
bool CheckSessionLogs(const std::string& folder, const ResearchFacts& facts, std::string& error);
// Appends the session's records to each player's log in the folder (NAME.slg).
bool AppendSessionLogs(const std::string& folder, const ResearchFacts& facts, const SessionResult& session,
                       std::string& error);
