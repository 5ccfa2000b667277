#include "dice/rng_texts.h"

#include "engine/money.h"

std::string RngListText(int n) {
  static constexpr const char* kList[] = {"RNG #1",
                                          "RNG #2",
                                          "RNG #3",
                                          "RNG #4",
                                          "RNG #5",
                                          "RNG #6 (#1 and #5)",
                                          "RNG #7 (#2 and #4)",
                                          "RNG #8 (#1 single call)"};
  return n >= 1 && n <= 8 ? kList[n - 1] : "";
}

std::string MissingLibrariesNotice(uint32_t mask) {
  std::string text;
  if (mask & 1U)
    text +=
        "Unable to locate a support file called MT19937AR.DLL\n"
        "This file is needed to operate random number generators #1, #6, and #8.";
  if (mask & 2U) {
    if (!text.empty()) text += "\n\n";
    text +=
        "Unable to locate a support file called COKUS.DLL\n"
        "This file is needed to operate random number generators #2 and #7.";
  }
  if (text.empty()) return text;
  // Both support files are built into this program, so only a damaged build can lack
  // one; the advice to get the program again is therefore left out.
  text +=
      "\n\n"
      "This problem usually happens when a user drags DiceHall' main game file out of its "
      "installed location and drops it on the desktop to create a shortcut.\n\n"
      "Don't worry, you can still play the game with one of the remaining random number generators.  "
      "However, if the main game file remains isolated then it'll be unable to access "
      "other support files such as sound files.\n\n"
      "A better solution is to return the "
      "main game file to its originally installed location together with all the other installed files.  ";
  return text;
}

std::string UnavailableRngNotice(int n) {
  return "Unfortunately, RNG #" + std::to_string(n) + " is currently unavailable.";
}

std::string SeededNotice(int n) { return "RNG #" + std::to_string(n) + " has now been seeded."; }

std::string SeedPrompt(int32_t max, bool refused) {
  return std::string(refused ? "Your seed value is out of limits.\n\n" : "") +
         "Please enter a whole number between 1 and " + MoneyTextGrouped(Money::Dollars(max)) +
         " to seed the random number generator:";
}
