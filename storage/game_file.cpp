#include "storage/game_file.h"

#include <filesystem>
#include <memory>

#include "autobet/compiler.h"
#include "autobet/script_files.h"
#include "automation/auto_roll.h"
#include "dice/probability_file.h"
#include "dice/roll_files.h"
#include "engine/bankroll.h"
#include "engine/messages.h"
#include "engine/roll_cycle.h"
#include "stats/events_log.h"
#include "stats/sessions_log.h"
#include "storage/error_report.h"
#include "storage/hot_keys.h"
#include "storage/language_text.h"
#include "storage/paths.h"

namespace fs = std::filesystem;

namespace {

constexpr uint64_t kMaxGameFileBytes = uint64_t{64} << 20;

std::string BareName(const std::string& path) { return fs::path(path).filename().string(); }

bool IsWorkingGameFile(const std::string& path) {
  const std::string name = BareName(path);
  return name.empty() || name == kDefaultGameFile || name == kRestoreGameFile || name == kRestoreHostGameFile;
}

std::string Resolved(const Game& g, const std::string& name) { return InProgramFolder(g.ProgramFolder, name); }

NamedFile Dated(const Game& g, const std::string& name) { return {name, FileDateText(Resolved(g, name))}; }

// A name whose file is gone is written blank.
NamedFile DatedIfPresent(const Game& g, const std::string& name) {
  NamedFile f = Dated(g, name);
  return f.date.empty() ? NamedFile{} : f;
}

void TellOk(Game& g, const std::string& text, const std::string& title) { Tell(g, text, title, 0, msg::kOk); }

bool AskYes(Game& g, const std::string& text, const std::string& title) {
  return Tell(g, text, title, 0, msg::kYesNoQuestion).Button == kButtonYes;
}

// The companions of the table as a save names them; the roll history is copied beside
// the game on the way.
GameCompanions GatherCompanions(Game& g, const std::string& file) {
  GameCompanions c;
  RollFiles& rf = g.Rolls;
  if (rf.History.IsOpen()) {
    const std::string copy = RollHistoryCopyName(file);
    const std::string history = RollHistoryPath(g);
    CloseRollHistory(rf);
    const bool copied = CopyFileKeepingDate(history, copy);
    ResumeRollHistory(g, rf);
    if (copied) c.rollHistory = Dated(g, copy);
  }
  if (!rf.RollFileName.empty()) {
    rf.RollFile.Flush();
    c.diceRollFile = Dated(g, rf.RollFileName);
    c.diceRollDisplay = BareName(rf.RollFileName);
  }
  PercentageDice& p = g.Percentage;
  if (p.ProbabilityChanged && BareName(file) == kDefaultGameFile) {
    std::string error;
    SaveProbabilityFile(p, g.ProgramFolder, kDefaultProbabilityFile, error);
  }
  if (!p.ProbabilityFileName.empty()) c.probabilityFile = DatedIfPresent(g, p.ProbabilityFileName);
  c.hotKeysFile = Dated(g, g.HotKeysFileName);
  c.eventsLog = {g.EventsLogFile, FileDateText(EventsLogTextPath(g))};
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s) && !g.ScriptFile[s].empty()) c.scripts[s] = DatedIfPresent(g, g.ScriptFile[s]);
  return c;
}

// The table takes the game that was read; what belongs to this run of the program stays:
// the interface, the clock, the folder, the generators' running sequences, the open roll
// history and the runner's hooks.
void Adopt(Game& g, Game& read) {
  read.Ui = g.Ui;
  read.Time = g.Time;
  read.ProgramFolder = g.ProgramFolder;
  DiceSources& d = read.Dice;
  d.mt = g.Dice.mt;
  d.cokus = g.Dice.cokus;
  d.ran1 = g.Dice.ran1;
  d.ran2 = g.Dice.ran2;
  d.missingRngLibraries = g.Dice.missingRngLibraries;
  read.Percentage.Fallback = g.Percentage.Fallback;
  read.Rolls.EditorRandom = g.Rolls.EditorRandom;
  read.Rolls.EditorRandomSeeded = g.Rolls.EditorRandomSeeded;
  std::swap(read.Rolls.History, g.Rolls.History);
  read.Auto.AfterRoll = g.Auto.AfterRoll;
  read.Auto.AfterRollData = g.Auto.AfterRollData;
  read.AutoBet.EditorLines = g.AutoBet.EditorLines;
  g.Rolls.RollFile.Close();
  g = std::move(read);
}

void RestoreRollHistory(Game& g, const NamedFile& saved) {
  RollFiles& rf = g.Rolls;
  const std::string copy = Resolved(g, saved.name);
  const std::string opening = "The Roll History file that was in use when this game ";
  bool keep = !saved.name.empty();
  if (keep && !RegularFileExists(copy)) {
    TellOk(g, opening + "was saved, was not found.", "Missing roll history file");
    keep = false;
  } else if (keep && FileDateText(copy) != saved.date) {
    keep = !AskYes(g, opening + "was saved, has been changed.\n\nWould you like to abandon it?",
                   "Altered roll history file");
  }
  if (keep && !g.ProgramFolder.empty()) {
    CloseRollHistory(rf);
    if (CopyFileKeepingDate(copy, RollHistoryPath(g)) && ResumeRollHistory(g, rf)) return;
  }
  ReopenRollHistory(g, rf);
}

// Tests a companion that has a date: true to keep it. A missing one is told, a changed
// one offered for abandoning.
bool KeepDatedFile(Game& g, const NamedFile& saved, const std::string& opening, const std::string& kind) {
  const std::string file = Resolved(g, saved.name);
  if (!RegularFileExists(file)) {
    TellOk(g, opening + "was saved) was not found:\n" + saved.name, "Missing " + kind);
    return false;
  }
  if (FileDateText(file) == saved.date) return true;
  return !AskYes(g, opening + "was saved) has been changed:\n" + saved.name + "\n\nWould you like to abandon it?",
                 "Altered " + kind);
}

void RestoreDiceRollFile(Game& g, const GameCompanions& c) {
  RollFiles& rf = g.Rolls;
  const NamedFile& saved = c.diceRollFile;
  rf.RollFileName.clear();
  const bool keep =
      !saved.name.empty() &&
      KeepDatedFile(g, saved, "The following Dice Roll file (that was in use when this game ", "dice roll file") &&
      rf.RollFile.Open(Resolved(g, saved.name), false);
  if (keep) {
    rf.RollFileName = saved.name;
    return;
  }
  rf.RecorderState = 0;
  rf.NextRollPosition = 1;
  rf.LastRollPosition = 0;
}

void RestoreProbabilityFile(Game& g, const GameCompanions& c) {
  PercentageDice& p = g.Percentage;
  p.ProbabilityFileName = c.probabilityFile.name;
  if (p.ProbabilityFileName.empty()) return;
  if (KeepDatedFile(g, c.probabilityFile, "The following Probability file (that was in use when this game ",
                    "probability file"))
    return;
  // The table stands as the game kept it, with no file behind it.
  p.ProbabilityFileName.clear();
  p.ProbabilityChanged = true;
}

void RestoreHotKeys(Game& g, const GameCompanions& c) {
  g.HotKeysFileName = c.hotKeysFile.name.empty() ? kDefaultHotKeysFile : c.hotKeysFile.name;
  if (!RegularFileExists(Resolved(g, g.HotKeysFileName)) && !c.hotKeysFile.date.empty()) {
    TellOk(g,
           "The following Hot-keys file (that was open when this game was saved) was not found.\n" + g.HotKeysFileName +
               "\n\nThe following default file will be opened or created instead: " + kDefaultHotKeysFile,
           "Missing hot-keys file");
    g.HotKeysFileName = kDefaultHotKeysFile;
  }
  LoadHotKeys(g);
}

void RestoreEventsLog(Game& g, const GameCompanions& c) {
  g.EventsLogFile = c.eventsLog.name.empty() ? "Events Log.txt" : c.eventsLog.name;
  if (c.eventsLog.date.empty() || RegularFileExists(EventsLogTextPath(g))) return;
  TellOk(g, "The following Events Log (that was open when this game was saved) was not found.\n" + g.EventsLogFile,
         "Missing events log");
  g.EventsLogFile = "Events Log.txt";
}

void RestoreScript(Game& g, int seat, const NamedFile& saved) {
  const std::string& name = g.PlayerName[seat];
  g.ScriptFile[seat] = saved.name;
  g.AutoBet.ScriptSource[seat].clear();
  if (saved.name.empty()) return;
  const std::string file = Resolved(g, saved.name);
  if (!RegularFileExists(file)) {
    TellOk(g, name + "'s auto-bet file was not found:\n" + saved.name, "Auto-bet file not found");
    g.ScriptFile[seat].clear();
    g.ScriptActive[seat] = false;
    return;
  }
  if (FileDateText(file) != saved.date)
    TellOk(g, name + "'s auto-Bet file has been changed:\n" + saved.name, "Auto-bet file changed");
  OpenAutoBets(g, seat, saved.name);
  std::array<std::string, kPlayerSeats> names{};
  for (int s = 1; s <= kPlayerSeats; ++s) names[static_cast<size_t>(s - 1)] = g.PlayerName[s];
  const CompileFault fault = CompileAutobets(g.AutoBet, seat, names);
  if (fault.Failed())
    TellOk(g,
           "An error occurred while attempting to load " + name + "'s auto-bet file:\n" + saved.name + "\n\n" +
               fault.message,
           "Auto-Bet Script Error");
}

void RestoreSessionsLog(Game& g, int seat) {
  std::string& path = g.SessionsLogPath[seat];
  if (path.empty() || RegularFileExists(Resolved(g, path))) return;
  const std::string fallback = DefaultSessionsLogPath(g, seat);
  const bool exists = RegularFileExists(fallback);
  TellOk(g,
         "The following Sessions Log for " + g.PlayerName[seat] + " was not found: " + path + "\n\n" +
             (exists ? "The following existing Sessions Log will be opened instead:"
                     : "The following new Sessions Log will be created and opened instead:") +
             "\n" + fallback,
         "Sessions log not found");
  path = fallback;
  if (!exists && !fallback.empty()) CreateNewSessionsLog(g, fallback);
}

void ApplyCompanions(Game& g, const GameCompanions& c) {
  RestoreRollHistory(g, c.rollHistory);
  RestoreDiceRollFile(g, c);
  RestoreProbabilityFile(g, c);
  RestoreHotKeys(g, c);
  RestoreEventsLog(g, c);
  for (int s = 1; s < kSeats; ++s) {
    if (!SeatOccupied(g, s)) continue;
    RestoreScript(g, s, c.scripts[s]);
    RestoreSessionsLog(g, s);
  }
  g.AutoBet.ScriptsCompiled = false;
}

void Named(Game& g, const std::string& file) {
  g.GameFileName = file;
  g.GameChanged = false;
  g.Desktop.Caption = GameCaption(file);
}

}  // namespace

std::string GameCaption(const std::string& path) {
  return IsWorkingGameFile(path) ? "DiceHall" : "DiceHall (" + BareName(path) + ")";
}

std::string RollHistoryCopyName(const std::string& gamePath) {
  std::string base = gamePath;
  if (base.size() >= 4 && base.compare(base.size() - 4, 4, ".crp") == 0) base.resize(base.size() - 4);
  return base + kRollHistoryCopySuffix;
}

bool SaveGame(Game& g, const std::string& path) {
  const std::string file = Resolved(g, path);
  const GameCompanions companions = GatherCompanions(g, file);
  if (!WriteFileAtomically(file, GameFileBytes(g, companions))) {
    Tell(g, ErrorReport("Path/File access error", 75, "SaveGame"), "DiceHall", 0, msg::kAlertOk);
    return false;
  }
  Named(g, file);
  return true;
}

bool OpenGame(Game& g, const std::string& path, bool atStartUp) {
  const std::string file = Resolved(g, path);
  const std::string title(LanguageText(g.LanguageId, 55));
  if (!RegularFileExists(file)) {
    TellOk(g, "Game file not found.", title);
    return false;
  }
  Bytes bytes;
  auto scratch = std::make_unique<Game>();
  scratch->Time = g.Time;
  SetDefaultGame(*scratch);  // no folder: the table's own history isn't touched
  GameCompanions companions;
  const GameFileRead read = ReadWholeFile(file, bytes, kMaxGameFileBytes)
                                ? ReadGameFileBytes(bytes, *scratch, companions)
                                : GameFileRead::Corrupt;
  switch (read) {
    case GameFileRead::Ok: break;
    case GameFileRead::NotDiceHall: TellOk(g, "This is not a DiceHall game file.", title); return false;
    case GameFileRead::OtherVersion:
      // An old default game at start-up is passed over: the defaults stand.
      if (!(atStartUp && BareName(file) == kDefaultGameFile))
        TellOk(g, "This file appears to be from an incompatible version.", title);
      return false;
    case GameFileRead::Corrupt:
      TellOk(g,
             "An error occurred while attempting to open:\n" + file +
                 "\n\nIt may be corrupted or not a true DiceHall game file. ",
             title);
      return false;
  }
  Adopt(g, *scratch);
  ApplyCompanions(g, companions);
  Named(g, file);
  if (g.Ui && !g.SilentMode) g.Ui->Refresh({});
  if (!atStartUp) StopAtBankrollLimit(g);
  return true;
}

void StopAtBankrollLimit(Game& g) {
  for (int s = 1; s < kSeats; ++s)
    if (SeatOccupied(g, s) && BeyondBankrollLimit(g.Bankroll[s])) {
      LimitStop(g, s);
      return;
    }
}
