// libFuzzer entry point, built once per reader (FUZZ_READER names its check): the reader
// reads or refuses any bytes; anything else stops the run.

#include <cstdlib>

#include "tests/fuzz/readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (!FUZZ_READER(Bytes(data, data + size), FuzzFolder()).empty()) std::abort();
  return 0;
}
