#include "engine/start_up.h"

#include <algorithm>
#include <exception>
#include <filesystem>

#include "automation/auto_roll.h"
#include "dice/seeding.h"
#include "engine/messages.h"
#include "engine/roll_cycle.h"
#include "storage/game_file.h"
#include "storage/hot_keys.h"
#include "storage/language_text.h"
#include "storage/paths.h"

namespace fs = std::filesystem;

namespace {

std::string Trim(std::string s) {
  const auto blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!s.empty() && blank(s.back())) s.pop_back();
  size_t i = 0;
  while (i < s.size() && blank(s[i])) ++i;
  return s.substr(i);
}

bool EndsWith(const std::string& s, const std::string& tail) {
  return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

// A failing step: the user chooses to go on (true) or to stop.
bool GoOnAfter(Game& g, const std::exception& e) {
  const MessageReply reply = Tell(g,
                                  std::string("The following error occurred while initilizing DiceHall.\n\n") +
                                      e.what() + "\n\nWould you like to continue initialization?",
                                  "Notice", 0, msg::kYes | msg::kNo);
  return reply.Button == kButtonYes;
}

}  // namespace

int32_t MeasureSpeedCount(Clock& clock) {
  static const int32_t count = [&clock] {
    // A clock that never moves (a test's) stops the count at a bound.
    constexpr int64_t kMostRounds = int64_t{1} << 24;
    const uint32_t start = clock.TickMs();
    int64_t rounds = 0;
    while (clock.TickMs() - start < 100 && rounds < kMostRounds) ++rounds;
    return static_cast<int32_t>(rounds / 10);
  }();
  return count;
}

std::vector<std::string> ListSoundFiles(const std::string& folder, const std::string& pattern) {
  std::vector<std::string> names;
  std::error_code ec;
  if (folder.empty() || !fs::is_directory(folder, ec)) return names;
  for (const auto& entry : fs::directory_iterator(folder, ec)) {
    const std::string name = entry.path().filename().string();
    if (entry.is_regular_file(ec) && EndsWith(name, pattern)) names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

bool OpenByCommandLine(Game& g, const std::string& commandLine) {
  std::string name = Trim(commandLine);
  if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = Trim(name.substr(1, name.size() - 2));
  const std::string fileName = fs::path(name).filename().string();
  if (!name.empty() && fileName.find(".crp") != std::string::npos && EndsWith(name, ".crp") && OpenGame(g, name, false))
    return true;
  const std::string defaultGame = InProgramFolder(g.ProgramFolder, kDefaultGameFile);
  const bool haveDefault = !g.ProgramFolder.empty() && fs::is_regular_file(defaultGame);
  if (!name.empty()) {
    std::string text = name + "\nThis is not a recognized DiceHall game file.";
    if (haveDefault) text += "\nThe last default game file will be opened instead.";
    Tell(g, text, std::string(LanguageText(g.LanguageId, 55)), 105, msg::kOk | msg::kHelp);
  }
  if (haveDefault && !OpenGame(g, kDefaultGameFile, true)) SetDefaultGame(g);
  return false;
}

int Main(Game& g, const std::string& programFolder, const std::string& commandLine, const StartUpHooks& hooks,
         StartUpFacts* factsOut) {
  StartUpFacts facts;
  // Each step runs on its own: a failure is told and the user may go on with the next.
  auto step = [&](auto&& body) {
    try {
      body();
      return true;
    } catch (const std::exception& e) {
      return GoOnAfter(g, e);
    }
  };
  const bool ran = step([&] {
                     g.ProgramFolder = programFolder;
                     facts.HelpFile = InProgramFolder(programFolder, kHelpFile);
                   }) &&
                   step([&] {
                     const std::string font = InProgramFolder(programFolder, kPrivateFontFile);
                     const bool loaded = hooks.LoadFont && fs::is_regular_file(font) && hooks.LoadFont(font);
                     facts.FontName = loaded ? kPrivateFontName : kFallbackFontName;
                   }) &&
                   step([&] { facts.SpeedCount = g.Time ? MeasureSpeedCount(*g.Time) : 0; }) &&
                   step([&] { SeedAtStartUp(g); }) && step([&] {
                     SetDefaultGame(g);
                     LoadHotKeys(g);
                   }) &&
                   step([&] {
                     if (hooks.SetUpTable) hooks.SetUpTable();
                   }) &&
                   step([&] {
                     for (size_t k = 0; k < kSoundPatterns.size(); ++k)
                       facts.Sounds[k] = ListSoundFiles(programFolder, kSoundPatterns[k]);
                     if (hooks.FillSoundLists) hooks.FillSoundLists(facts.Sounds);
                   }) &&
                   step([&] { OpenByCommandLine(g, commandLine); }) && step([&] {
                     if (hooks.PrepareSeatPanels) hooks.PrepareSeatPanels();
                     if (hooks.ShowMainWindow) hooks.ShowMainWindow();
                   }) &&
                   step([&] { StopAtBankrollLimit(g); });
  if (factsOut) *factsOut = facts;
  if (!ran) return 1;
  return hooks.RunEventLoop ? hooks.RunEventLoop() : 0;
}

bool ExitGame(Game& g) {
  if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
  if (g.ProgramFolder.empty()) return false;
  return SaveGame(g, kDefaultGameFile);
}
