#pragma once
// The report of a run-time failure caught at a procedure's boundary: the description,
// ", Error #", the number, a line break and " occurred at: " with the procedure's label.

#include <string>
#include <string_view>

inline std::string ErrorReport(std::string_view description, int number, std::string_view procedure) {
  return std::string(description) + ", Error #" + std::to_string(number) + "\n occurred at: " + std::string(procedure);
}
