#pragma once
// One check per file reader, shared by the libFuzzer targets and the mutation test of
// the normal suite: the reader gets any bytes and must read them or refuse them, never
// crash or hang, and a refusal leaves what it would have filled as it was. Each returns
// "" or what went wrong.

#include <cstdint>
#include <string>

#include "storage/file_bytes.h"

// The game file: read into a game of its own; what reads must save to bytes that read.
std::string CheckGameFileReader(const Bytes& bytes);
// A .bet file in the record form (or text): never fewer than one line.
std::string CheckScriptFileReader(const Bytes& bytes);
// A .hky file: a refusal leaves the list; a file read writes back the same entries.
std::string CheckHotKeysReader(const Bytes& bytes);
// The file readers go through a file of their own in `folder`.
std::string CheckProbabilityReader(const Bytes& bytes, const std::string& folder);
std::string CheckRollFileReader(const Bytes& bytes, const std::string& folder);
std::string CheckSessionsLogReader(const Bytes& bytes, const std::string& folder);

// A folder of this process's own for the readers that take a file (libFuzzer targets).
const std::string& FuzzFolder();

// Well-formed files to mutate.
Bytes SampleGameFile();
Bytes SampleScriptFile();
Bytes SampleHotKeysFile();
Bytes SampleProbabilityFile(const std::string& folder);
Bytes SampleRollFile();
Bytes SampleSessionsLog(const std::string& folder);
