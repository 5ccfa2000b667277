#pragma once
// Probability files (.prb): the percentage-dice table on disk.
//
// 1280 bytes in five records of 256:
//   record 1  the 42-character header, padded with blanks to 200 characters, then 56
//             zero bytes (the rest of the record is never read);
//   records 2..4 and the first half of record 5: the 224 values as little-endian int32,
//             plane 0 then plane 1, within a plane x 0..7 and for each x y 0..13;
//   the second half of record 5: what the 64-value record buffer still held, the second
//             half of record 4 (values 160..191). Readers ignore it.

#include <string>

#include "dice/probability.h"

inline constexpr const char* kProbabilityFileHeader = "DiceHall Probability File, Data Format 4.6";
inline constexpr int kProbabilityFileSize = 1280;
inline constexpr const char* kNotAProbabilityFile =
    "This file is either from an older version, has been corrupted, or is not a true DiceHall Probability File.";

// Reads the table from `path` as it stands. A wrong header gives kNotAProbabilityFile, a
// missing or unreadable file the error report ("File not found, Error #53" a line break
// and " occurred at: sub Load Probability File"); either way false with the table
// untouched. A short file with the right header gives zeros for the missing values.
bool LoadProbabilityFile(const std::string& path, ProbabilityTable& t, std::string& error);
// Writes the 1280 bytes. False with the error report when the file can't be written.
bool SaveProbabilityFile(const std::string& path, const ProbabilityTable& t, std::string& error);

// The same for the table of a game: a bare file name is taken in the program folder. On
// success the file name is remembered as given and ProbabilityChanged cleared.
bool LoadProbabilityFile(PercentageDice& p, const std::string& programFolder, const std::string& name,
                         std::string& error);
bool SaveProbabilityFile(PercentageDice& p, const std::string& programFolder, const std::string& name,
                         std::string& error);
