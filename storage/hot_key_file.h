#pragma once
// The hot keys: each entry binds a key to a .bet file, with the hot button that can
// stand for it on the table. The HotKeysFile (.hky) holds them as records of 377 bytes,
// byte for byte as an entry lies in memory:
//   key 1 character | script file 256 | description 100 | in use int32 | show button
//   int32 | left float | top float | colour int32     (texts Windows-1252, blank padded)
// Record 1 uses the same fields: the script file field holds the header text and the
// in-use field the number of entries; the description is blank.

#include <cstdint>
#include <string>
#include <vector>

#include "storage/file_bytes.h"

inline constexpr const char* kHotKeysHeader = "DiceHall Hot-keys File, Data Format 2.6k";
inline constexpr const char* kDefaultHotKeysFile = "Hot-keys.hky";
inline constexpr const char* kNotAHotKeysFile =
    "This file is either from an older version, has been corrupted, or is not a true DiceHall Hot-keys File.";
constexpr int kHotKeyRecordBytes = 377;
constexpr int kHotKeyFileChars = 256, kHotKeyDescriptionChars = 100;
constexpr int32_t kMaxHotKeys = 4096;

struct HotKeyRecord {
  char Key = 0;             // see HotKeyChar
  std::string ScriptFile;   // the .bet file
  std::string Description;  // the hot button's caption
  bool InUse = false;
  bool ShowButton = false;
  float Left = 0, Top = 0;  // the hot button's place on the table
  int32_t Colour = 0;       // its background colour
  bool operator==(const HotKeyRecord&) const = default;
};

using HotKeyTable = std::vector<HotKeyRecord>;

// The key character of a key: a letter or digit as typed (letters in upper case); with
// Shift a letter is kept in lower case, with Ctrl it becomes its control code (1..26),
// so that the three forms of a letter are three entries.
char HotKeyChar(char key, bool shift, bool ctrl);
// How cmbKey shows a key character: "A", "Shift+A", "Ctrl+A".
std::string HotKeyLabel(char key);
// The entry in use for a key, or -1.
int FindHotKey(const HotKeyTable& table, char key);

Bytes HotKeyFileBytes(const HotKeyTable& table);
// Reads a whole file's bytes. A wrong header, a count below 0 or above kMaxHotKeys, a
// file shorter than its count or a position that is no number is refused: false, and
// `out` untouched.
bool ParseHotKeyFile(const Bytes& bytes, HotKeyTable& out);
