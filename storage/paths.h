#pragma once
// The program folder (the data folder) and the names taken in it, and the 8-bit code
// page of fixed-layout files.

#include <string>
#include <string_view>

// The folder the program keeps its files in: `option` (--data-dir) when given, else
// $DICEHALL_HOME, else $XDG_DATA_HOME/dicehall, else ~/.local/share/dicehall.
std::string ResolveDataDir(const std::string& option);

// A name inside the program (scripts, game files, roll files...): a bare file name is
// taken in the program folder; a name with a folder part stands as it is.
std::string InProgramFolder(const std::string& programFolder, const std::string& name);

// Where a name that an untrusted source (a script) gives for writing lands: a path inside
// `folder`, links followed, or "" when it would lead out of it (an absolute path, "..", a
// link that points elsewhere) or is empty.
std::string InsideFolder(const std::string& folder, const std::string& name);

// Fixed-layout files hold Windows-1252 on disk and UTF-8 in memory.
std::string Windows1252ToUtf8(std::string_view bytes);
// Characters that the code page lacks become "?".
std::string Utf8ToWindows1252(std::string_view text);
// Two names a file keeps alike: the same once written in the code page ("Ann😀" and
// "Ann😁" are both "Ann?" there), so a table must not hold both.
inline bool SameNameInFiles(std::string_view a, std::string_view b) {
  return Utf8ToWindows1252(a) == Utf8ToWindows1252(b);
}
