#pragma once
// Dice roll files: the recorder (record and playback of one byte a roll), the pop-up
// roll file dropped by another program, and the roll history kept of every roll.

#include <string>

#include "dice/roll_file_record.h"
#include "engine/game_state.h"

// ---- The roll cycle. Each returns whether the roll may go on. ----------------------------

// Before the dice are taken: while a pop-up source is in force, no pad dice are pending and the file isn't
// there, waits with the status "Waiting for Roll File", testing every half second.
// False when Auto-Roll was switched off meanwhile (or no interface can wait).
bool WaitForPopupFile(Game& g, RollFiles& rf);
// A pop-up source gives the dice: the first two characters "1".."6" of the pop-up file are the dice; the file
// is then deleted. Too few stop play and leave the file for the user to check.
bool ReadPopupRoll(Game& g, RollFiles& rf);
// Playback gives the dice: the roll at NextRollPosition. Past the end, or out of limits, no roll.
bool ReadRollFromFile(Game& g, RollFiles& rf);
// Once the dice are known, when recording: the dice without mark at NextRollPosition.
void RecordRoll(Game& g, RollFiles& rf);
// Once the point has moved: the recorded roll again, with its mark.
void MarkRecordedRoll(Game& g, RollFiles& rf, int mark);
// Every roll: the dice with their mark at the end of the roll history.
void WriteRollHistory(Game& g, RollFiles& rf, int mark);
// At the end of a roll that read past the last roll, and the user's stop: playback off, and the offer
// to rewind.
void StopPlayback(Game& g, RollFiles& rf);

// ---- The recorder. --------------------------------------------------------------------------

// Opens (or creates) a roll file; an empty path asks for one. The recorder stops at
// roll 1 of it. False on Cancel or a name that can't be opened (told).
bool OpenRollFile(Game& g, RollFiles& rf, const std::string& path);
void CloseRollFile(RollFiles& rf);
// "&RECORD" and "&PLAYBACK": with no file open, one is asked for first.
bool StartRecording(Game& g, RollFiles& rf);
bool StartPlayback(Game& g, RollFiles& rf);
// The recorder's stop: offers to close a pop-up source, then stops recording or playback.
void StopRecorder(Game& g, RollFiles& rf);
void OpenPopupSource(Game& g, RollFiles& rf, const std::string& path);
// The pop-up roll file no longer waited for.
void ClosePopupSource(RollFiles& rf);
// The roll the recorder reads or writes next, from 1 (txtNextRollNum).
void SetNextRollPosition(RollFiles& rf, int32_t position);
// A new session: 1 plays from the first roll, 2 leaves the file, others close it.
void ApplyDiceFileMode(RollFiles& rf, int diceFileMode);

// ---- The roll history. ----------------------------------------------------------------------

std::string RollHistoryPath(const Game& g);
// Starts the history empty (the default game, a session without kept history). With
// no program folder no history is kept.
bool ReopenRollHistory(Game& g, RollFiles& rf);
// Around the copy a saved game takes: close, then open again for appending.
void CloseRollHistory(RollFiles& rf);
bool ResumeRollHistory(Game& g, RollFiles& rf);
