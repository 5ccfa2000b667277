#pragma once
// Where the example betting systems live, for the tests that load them.

#include <filesystem>

inline std::filesystem::path ExamplesFolder() {
  return std::filesystem::path(__FILE__).parent_path() / ".." / ".." / "examples";
}
