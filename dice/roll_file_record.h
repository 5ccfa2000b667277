#pragma once
// The record of dice roll files, kept in the game: the recorder's state, the open roll
// file and roll history, and the byte form of a roll. Knows nothing of the game, so
// that the game can hold it.
//
// A roll byte is Die2 x 32 + Die1 x 4 + mark; the mark (bits 0-1) is 1 for a decision
// of the point, 2 for a point established, and is ignored by every reader.

#include <array>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

inline constexpr const char* kRollHistoryName = "current roll history.rol";
inline constexpr const char* kRollCopyFileName = "rollcopyfile.rol";
inline constexpr const char* kRollFileFilter = "Dice Roll Files (*.rol)";
inline constexpr const char* kOpenRollFileTitle = "Open Dice Roll File or Enter Name For A New File";

constexpr uint8_t EncodeRoll(int die1, int die2, int mark) {
  return static_cast<uint8_t>(((die2 & 7) << 5) | ((die1 & 7) << 2) | (mark & 3));
}
constexpr int RollByteDie1(uint8_t b) { return (b >> 2) & 7; }
constexpr int RollByteDie2(uint8_t b) { return (b >> 5) & 7; }

// The outcome mark of a roll from the point before it and the total.
constexpr int RollMark(int priorPoint, int total) {
  if (priorPoint != 0) return total == 7 || total == priorPoint ? 1 : 0;
  return total >= 4 && total <= 10 && total != 7 ? 2 : 0;
}

// A file of roll bytes held open for the whole run. Writes gather in a small buffer, so
// that recording a byte and rewriting it with its mark in the same roll costs no seek;
// the buffer goes to disk when it fills, before any read, and on close.
class RollByteFile {
 public:
  RollByteFile() = default;
  RollByteFile(const RollByteFile&) = delete;
  RollByteFile& operator=(const RollByteFile&) = delete;
  RollByteFile(RollByteFile&& other) noexcept { *this = std::move(other); }
  RollByteFile& operator=(RollByteFile&& other) noexcept;
  ~RollByteFile() { Close(); }

  // Opens for reading and writing, creating a missing file; `truncate` starts it empty.
  // A file that may only be read is opened for reading.
  bool Open(const std::string& path, bool truncate);
  // False when bytes still waiting could not be written.
  bool Close();
  bool IsOpen() const { return file_ != nullptr; }
  const std::string& Path() const { return path_; }
  // The byte at `offset` (from 0), or -1 past the end.
  int Read(int64_t offset);
  void Write(int64_t offset, uint8_t value);
  void Append(uint8_t value) {
    // The byte after those pending, with room for it: the roll history at every roll.
    if (file_ && pendingCount_ > 0 && pendingStart_ + pendingCount_ == end_ &&
        pendingCount_ < static_cast<int32_t>(pending_.size())) {
      pending_[static_cast<size_t>(pendingCount_++)] = value;
      ++end_;
      return;
    }
    Write(end_, value);
  }
  int64_t Size() const { return end_; }
  bool Flush();
  // Up to `count` bytes from `offset` into `out`; returns how many were read.
  int64_t ReadBlock(int64_t offset, uint8_t* out, int64_t count);
  // Replaces the whole content.
  bool Rewrite(const std::vector<uint8_t>& bytes);

 private:
  std::FILE* file_ = nullptr;
  std::string path_;
  int64_t end_ = 0;       // size, counting bytes not yet written
  int64_t readPos_ = -1;  // where the stream stands for the next read; -1 unknown
  int64_t pendingStart_ = 0;
  int32_t pendingCount_ = 0;
  std::array<uint8_t, 4096> pending_{};
};

struct RollFiles {
  int32_t RecorderState = 0;  // 0 stopped, 1 record, 2 playback
  int32_t NextRollPosition = 1;
  int32_t LastRollPosition = 0;
  std::string RollFileName;  // "" when none is open
  bool PopupActive = false;
  std::string PopupFileName;
  bool EndOfFile = false;  // set by the read past the last roll; the roll's end stops playback
  RollByteFile RollFile;
  RollByteFile History;
  // The editor's random tools: cosmetic, never one of the table's generators.
  std::minstd_rand EditorRandom;
  bool EditorRandomSeeded = false;
};
