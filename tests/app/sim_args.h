#pragma once
// dicehall-sim's arguments written as a command line: split at spaces, a part in single
// quotes is one argument, spaces and all.

#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

inline std::vector<std::string> Args(const std::string& line) {
  std::vector<std::string> args;
  std::istringstream in(line);
  for (std::string a; in >> std::quoted(a, '\'');) args.push_back(a);
  return args;
}

inline std::vector<std::string> With(std::vector<std::string> args, const std::vector<std::string>& more) {
  args.insert(args.end(), more.begin(), more.end());
  return args;
}
