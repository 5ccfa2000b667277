// libFuzzer entry point: the reader of this file kind reads or refuses any bytes, given
// through a file in a folder of the run's own.

#include <cstdlib>

#include "tests/fuzz/readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (!CheckProbabilityReader(Bytes(data, data + size), FuzzFolder()).empty()) std::abort();
  return 0;
}
