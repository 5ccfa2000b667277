#pragma once
// A text file that lines are appended to, kept open between them: opening, seeking and
// closing it for every line cost several times the line itself. Each line goes to the
// file at once, whole, so a crash loses none and a reader sees every line written.

#include <string>
#include <string_view>

class AppendFile {
 public:
  AppendFile() = default;
  AppendFile(const AppendFile&) = delete;
  AppendFile& operator=(const AppendFile&) = delete;
  AppendFile(AppendFile&& other) noexcept;
  AppendFile& operator=(AppendFile&& other) noexcept;
  ~AppendFile();

  // Opens (creating it when missing) the file at `path` for lines, emptied first when
  // `clear`; false, with the file opened before kept, when it can't be.
  bool Open(const std::string& path, bool clear);
  // Appends `text` and a line end to the file opened last. A file that was removed or
  // replaced since is opened again at its path, as it would have been for each line.
  // False when there is none, or it can't be opened again; a failed write is not told.
  bool AppendLine(std::string_view text);
  const std::string& Path() const { return path_; }

 private:
  void Close();
  int fd_ = -1;
  std::string path_;  // empty: no file opened
  std::string line_;  // the line being written, kept for its room
};
