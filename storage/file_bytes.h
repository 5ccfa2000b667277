#pragma once
// Whole files as bytes: read with a size cap, and written so that a crash or a kill at
// any moment leaves either the old file or the new one, never a mix. The date text of a
// file for the companion records of a game file.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;

// False when the file can't be opened or is larger than `maxBytes`.
bool ReadWholeFile(const std::string& path, Bytes& out, uint64_t maxBytes);

// Writes all `size` bytes to the open file `fd`, going on after a short write or a signal;
// false when the file takes no more.
bool WriteAll(int fd, const void* bytes, size_t size);

// Writes a temporary file beside `path`, flushes it to the disk, renames it over `path`
// and flushes the folder. False (the old file untouched, the temporary removed) on any
// failure.
bool WriteFileAtomically(const std::string& path, const Bytes& bytes);

// The file's last-write date and time as "YYYY-MM-DD HH:MM:SS" in UTC, "" when it
// doesn't exist. Compared as text when a game file is opened.
std::string FileDateText(const std::string& path);

// Copies `from` over `to` (atomically) and gives the copy the date of `from`, so that a
// copy made again from an unchanged file shows the same date.
bool CopyFileKeepingDate(const std::string& from, const std::string& to);

bool RegularFileExists(const std::string& path);
