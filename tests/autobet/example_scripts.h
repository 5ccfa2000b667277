#pragma once
// Where the example betting systems live, for the tests that load them.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

// The folder comes from the build, since a compiler cache may make __FILE__ relative.
inline std::filesystem::path ExamplesFolder() { return DICEHALL_EXAMPLES_DIR; }

// Every example as its lines, in the order of their file names.
inline std::vector<std::vector<std::string>> ExampleScripts() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(ExamplesFolder()))
    if (entry.path().extension() == ".bet") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  std::vector<std::vector<std::string>> scripts;
  for (const auto& file : files) {
    std::ifstream f(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(f, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      lines.push_back(line);
    }
    scripts.push_back(lines);
  }
  return scripts;
}

// One random edit of the kinds a typist makes: a character dropped, doubled, swapped
// or replaced, a line dropped or repeated, a word of the language dropped in.
inline void Mutate(std::vector<std::string>& lines, std::mt19937& rng) {
  static const char kChars[] = "()[]{}\",:=<>+-*/\\^&$%#!?.;' \t0123456789abcxyz";
  static const char* kWords[] = {"if ",           " then",        "else",   "endif",  "do",    "loop",  "exitdo",
                                 "goto ",         "gosub ",       "return", " thru ", " any(", " all[", "\"",
                                 "bet 5 on ",     " player3 ",    " cs1 ",  "(",      ")",     " = ",   " and ",
                                 "last session ", " place bets ", "left$(", "#"};
  if (lines.empty()) lines.push_back("");
  std::uniform_int_distribution<size_t> pickLine(0, lines.size() - 1);
  std::string& line = lines[pickLine(rng)];
  const int kind = static_cast<int>(rng() % 7);
  const size_t at = line.empty() ? 0 : rng() % (line.size() + 1);
  switch (kind) {
    case 0:
      if (!line.empty() && at < line.size()) line.erase(at, 1);
      break;
    case 1:
      if (at < line.size()) line.insert(at, 1, line[at]);
      break;
    case 2:
      if (at + 1 < line.size()) std::swap(line[at], line[at + 1]);
      break;
    case 3: line.insert(at, 1, kChars[rng() % (sizeof kChars - 1)]); break;
    case 4: lines.erase(lines.begin() + static_cast<long>(pickLine(rng))); break;
    case 5: lines.insert(lines.begin() + static_cast<long>(pickLine(rng)), line); break;
    default: line.insert(at, kWords[rng() % (sizeof kWords / sizeof kWords[0])]); break;
  }
}
