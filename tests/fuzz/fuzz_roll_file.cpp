// libFuzzer entry point: the reader of this file kind reads or refuses any bytes, given
// through a file in a folder of the run's own.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tests/fuzz/readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string folder = [] {
    const auto dir = std::filesystem::temp_directory_path() / ("dicehall-fuzz-" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    return dir.string();
  }();
  if (!CheckRollFileReader(Bytes(data, data + size), folder).empty()) std::abort();
  return 0;
}
