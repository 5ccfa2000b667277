#include "dice/roll_files.h"

#include <cstdio>

#include "automation/auto_roll.h"
#include "engine/messages.h"
#include "stats/events_log.h"
#include "storage/error_report.h"
#include "storage/paths.h"

namespace {

constexpr const char* kOutOfLimits = "A dice roll value has been found to be out of limits. ";
constexpr const char* kOutOfLimitsStop = "Stopped due to Dice Roll File value out of limits.";
constexpr const char* kEndOfFileStop = "Stopped due to end of Dice Roll File reached.";
constexpr const char* kRollFileErrorTitle = "Dice roll file error";
constexpr int kRollFileErrorHelp = 210;
constexpr uint32_t kPopupTestMs = 500;

// No roll: the stop text, and Auto-Roll off (which in Hyper-Drive shows the text).
void StopPlay(Game& g, const char* stopText) {
  g.StopReason = stopText;
  if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
}

void TellRollFileError(Game& g, const char* second) {
  if (!g.SilentMode)
    Tell(g, std::string(kOutOfLimits) + "\n\n" + second, kRollFileErrorTitle, kRollFileErrorHelp, msg::kAlertOkHelp);
}

bool FileExists(const std::string& path) {
  // fopen rather than a filesystem path: nothing is allocated on each roll's test.
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return false;
  std::fclose(f);
  return true;
}

bool AskYes(Game& g, const char* text, const char* title) {
  return Tell(g, text, title, 0, msg::kYesNoQuestion).Button == kButtonYes;
}

}  // namespace

bool WaitForPopupFile(Game& g, RollFiles& rf) {
  if (!rf.PopupActive || g.Dice.padPending || FileExists(rf.PopupFileName)) return true;
  if (g.Ui == nullptr) return false;  // nothing could turn the event loop while we wait
  const bool wasAutoRolling = g.Auto.AutoRollActive;
  const std::string status = g.Auto.StatusText;
  g.Auto.StatusText = "Waiting for Roll File";
  if (!g.SilentMode) g.Ui->Refresh({"status"});
  uint32_t tested = g.Time ? g.Time->TickMs() : 0;
  bool goOn = true;
  for (;;) {
    g.Ui->Yield();
    if (wasAutoRolling && !g.Auto.AutoRollActive) {
      goOn = false;
      break;
    }
    // The source was closed or the pad was used meanwhile: the roll takes its dice elsewhere.
    if (!rf.PopupActive || g.Dice.padPending) break;
    if (g.Time) {
      const uint32_t now = g.Time->TickMs();
      if (now - tested < kPopupTestMs) continue;
      tested = now;
    }
    if (FileExists(rf.PopupFileName)) break;
  }
  g.Auto.StatusText = status;
  if (!g.SilentMode) g.Ui->Refresh({"status"});
  return goOn;
}

bool ReadPopupRoll(Game& g, RollFiles& rf) {
  int dice[2] = {0, 0};
  int found = 0;
  if (std::FILE* f = std::fopen(rf.PopupFileName.c_str(), "rb")) {
    int c;
    while (found < 2 && (c = std::fgetc(f)) != EOF)
      if (c >= '1' && c <= '6') dice[found++] = c - '0';
    std::fclose(f);
  }
  if (found < 2) {
    // A file not yet complete reads as too few dice; it stays for the user to check.
    TellRollFileError(g, "Play has stopped so that you can check the pop-up file or continue without it.");
    StopPlay(g, kOutOfLimitsStop);
    return false;
  }
  std::remove(rf.PopupFileName.c_str());
  g.Table.Die1 = dice[0];
  g.Table.Die2 = dice[1];
  if (g.RecordEvents) LogRollLine(g, RollSource::PopupFile);
  return true;
}

bool ReadRollFromFile(Game& g, RollFiles& rf) {
  const int byte = rf.RollFile.Read(static_cast<int64_t>(rf.NextRollPosition) - 1);
  if (byte < 0) {
    rf.EndOfFile = true;
    StopPlay(g, kEndOfFileStop);
    return false;
  }
  const int die1 = RollByteDie1(static_cast<uint8_t>(byte));
  const int die2 = RollByteDie2(static_cast<uint8_t>(byte));
  if (die1 < 1 || die1 > 6 || die2 < 1 || die2 > 6) {
    // The file stays open at this roll, so that the user can mend it and go on.
    rf.RecorderState = 0;
    TellRollFileError(g,
                      "Playback of this Dice Roll File has stopped so that "
                      "you can check the file or continue without it.");
    StopPlay(g, kOutOfLimitsStop);
    return false;
  }
  g.Table.Die1 = die1;
  g.Table.Die2 = die2;
  rf.LastRollPosition = rf.NextRollPosition++;
  if (g.RecordEvents) LogRollLine(g, RollSource::RollFile);
  return true;
}

void RecordRoll(Game& g, RollFiles& rf) {
  if (!rf.RollFile.IsOpen() || rf.NextRollPosition < 1) return;
  rf.RollFile.Write(rf.NextRollPosition - 1, EncodeRoll(g.Table.Die1, g.Table.Die2, 0));
  rf.LastRollPosition = rf.NextRollPosition++;
}

void MarkRecordedRoll(Game& g, RollFiles& rf, int mark) {
  if (mark == 0 || !rf.RollFile.IsOpen() || rf.LastRollPosition < 1) return;
  rf.RollFile.Write(rf.LastRollPosition - 1, EncodeRoll(g.Table.Die1, g.Table.Die2, mark));
}

void WriteRollHistory(Game& g, RollFiles& rf, int mark) {
  if (rf.History.IsOpen()) rf.History.Append(EncodeRoll(g.Table.Die1, g.Table.Die2, mark));
}

void StopPlayback(Game& g, RollFiles& rf) {
  rf.EndOfFile = false;
  if (rf.RecorderState == 2) rf.RecorderState = 0;
  if (!rf.RollFile.IsOpen()) return;
  if (AskYes(g, "Rewind for playback?", "Dice Roll File")) {
    rf.NextRollPosition = 1;
    rf.LastRollPosition = 0;
  }
}

bool OpenRollFile(Game& g, RollFiles& rf, const std::string& path) {
  std::string name = path;
  if (name.empty()) {
    if (g.Ui == nullptr) return false;
    name = g.Ui->ChooseFile(kOpenRollFileTitle, kRollFileFilter);
    if (name.empty()) return false;
  }
  name = InProgramFolder(g.ProgramFolder, name);
  RollByteFile file;
  if (!file.Open(name, false)) {
    Tell(g, "Bad path and/or file name.", "Dice Roll File", 0, msg::kAlertOk);
    return false;
  }
  CloseRollFile(rf);
  rf.RollFile = std::move(file);
  rf.RollFileName = name;
  return true;
}

void CloseRollFile(RollFiles& rf) {
  rf.RollFile.Close();
  rf.RollFileName.clear();
  rf.RecorderState = 0;
  rf.NextRollPosition = 1;
  rf.LastRollPosition = 0;
  rf.EndOfFile = false;
}

bool StartRecording(Game& g, RollFiles& rf) {
  if (!rf.RollFile.IsOpen() && !OpenRollFile(g, rf, "")) return false;
  rf.RecorderState = 1;
  rf.EndOfFile = false;
  return true;
}

bool StartPlayback(Game& g, RollFiles& rf) {
  if (!rf.RollFile.IsOpen() && !OpenRollFile(g, rf, "")) return false;
  rf.RollFile.Flush();
  rf.RecorderState = 2;
  rf.EndOfFile = false;
  return true;
}

void StopRecorder(Game& g, RollFiles& rf) {
  if (rf.PopupActive && AskYes(g, "Would you like to close the pop-up roll file?", "Pop-up Roll File"))
    rf.PopupActive = false;
  if (rf.RecorderState == 2) {
    StopPlayback(g, rf);
  } else {
    rf.RecorderState = 0;
    rf.RollFile.Flush();
  }
}

void ClosePopupSource(RollFiles& rf) { rf.PopupActive = false; }

void OpenPopupSource(Game& g, RollFiles& rf, const std::string& path) {
  rf.PopupFileName = InProgramFolder(g.ProgramFolder, path);
  rf.PopupActive = !path.empty();
}

void SetNextRollPosition(RollFiles& rf, int32_t position) {
  rf.NextRollPosition = position < 1 ? 1 : position;
  rf.LastRollPosition = rf.NextRollPosition - 1;
  rf.EndOfFile = false;
}

void ApplyDiceFileMode(RollFiles& rf, int diceFileMode) {
  if (diceFileMode == 2) return;
  if (diceFileMode != 1) {
    CloseRollFile(rf);
    return;
  }
  if (!rf.RollFile.IsOpen()) return;
  rf.RollFile.Flush();
  rf.RecorderState = 2;
  rf.NextRollPosition = 1;
  rf.LastRollPosition = 0;
  rf.EndOfFile = false;
}

std::string RollHistoryPath(const Game& g) { return InProgramFolder(g.ProgramFolder, kRollHistoryName); }

namespace {

bool OpenHistory(Game& g, RollFiles& rf, bool truncate, const char* where) {
  rf.History.Close();
  if (g.ProgramFolder.empty()) return false;
  if (rf.History.Open(RollHistoryPath(g), truncate)) return true;
  Tell(g, ErrorReport("Path/File access error", 75, where), "DiceHall", 0, msg::kAlertOk);
  return false;
}

}  // namespace

bool ReopenRollHistory(Game& g, RollFiles& rf) { return OpenHistory(g, rf, true, "ReopenRollHistory"); }

void CloseRollHistory(RollFiles& rf) { rf.History.Close(); }

bool ResumeRollHistory(Game& g, RollFiles& rf) { return OpenHistory(g, rf, false, "ResumeRollHistory"); }
