// libFuzzer entry point: the reader of this file kind reads or refuses any bytes.

#include <cstdlib>

#include "tests/fuzz/readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (!CheckHotKeysReader(Bytes(data, data + size)).empty()) std::abort();
  return 0;
}
