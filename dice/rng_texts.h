#pragma once
// What the generators and their seeding say to the user, in the system's own words.

#include <cstdint>
#include <string>

inline constexpr const char* kRngTitle = "Random Number Generator";
inline constexpr const char* kMissingSupportFileTitle = "Missing Support File";
// Script faults of Select RNG and Seed RNG.
inline constexpr const char* kReferencedRngUnavailable = "Referenced RNG currently unavailable.";
inline constexpr const char* kRngOutOfLimits = "Reference to RNG out of limits.";
inline constexpr const char* kSeedOutOfLimits =
    "Seed value out of limits.\nAcceptable values 1 to 2147483647 (RNG#3: 1 to 999999)";

// The entry of generator n (1..8) in cmbRNG; "" outside.
std::string RngListText(int n);
// The start-up notice for the missing-libraries mask; "" when nothing is missing.
std::string MissingLibrariesNotice(uint32_t mask);
// cmbRNG on a generator whose library is missing.
std::string UnavailableRngNotice(int n);
// Seed RNG now, after a seed was applied.
std::string SeededNotice(int n);
// The seed prompt for a largest seed of max; `refused` after an answer out of limits.
std::string SeedPrompt(int32_t max, bool refused);
