#pragma once
// One check per file reader, shared by the libFuzzer targets and the mutation test of
// the normal suite: the reader gets any bytes and must read them or refuse them, never
// crash or hang, and a refusal leaves what it would have filled as it was. Each returns
// "" or what went wrong. The readers that take a file go through one in `folder`.

#include <cstdint>
#include <string>

#include "storage/file_bytes.h"

// The game file: read into a game of its own; what reads must save to bytes that read.
std::string CheckGameFileReader(const Bytes& bytes, const std::string& folder);
// A .bet file in the record form (or text): never fewer than one line.
std::string CheckScriptFileReader(const Bytes& bytes, const std::string& folder);
// A .hky file: a refusal leaves the list; a file read writes back the same entries.
std::string CheckHotKeysReader(const Bytes& bytes, const std::string& folder);
std::string CheckProbabilityReader(const Bytes& bytes, const std::string& folder);
std::string CheckRollFileReader(const Bytes& bytes, const std::string& folder);
std::string CheckSessionsLogReader(const Bytes& bytes, const std::string& folder);

// A folder of this process's own for the readers that take a file (libFuzzer targets).
const std::string& FuzzFolder();

// Well-formed files to mutate.
Bytes SampleGameFile(const std::string& folder);
Bytes SampleScriptFile(const std::string& folder);
Bytes SampleHotKeysFile(const std::string& folder);
Bytes SampleProbabilityFile(const std::string& folder);
Bytes SampleRollFile(const std::string& folder);
Bytes SampleSessionsLog(const std::string& folder);
