#include <unistd.h>

#include <iostream>

#include "app/sim/sim.h"

int main(int argc, char** argv) {
  SimOptions options;
  int code = ParseSimOptions(argc, argv, options, std::cout, std::cerr);
  if (code >= 0) return code;
  options.progress = isatty(STDERR_FILENO) != 0;
  return RunSim(options, std::cout, std::cerr);
}
