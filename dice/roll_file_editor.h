#pragma once
// The editor of the open dice roll file, as plain operations for the screen
// frmDiceRollFiles. Positions are roll numbers from 1; a selection is first..last.
// Each returns false, with the file unchanged, when no file is open or the positions
// don't fit it. New rolls carry no mark.

#include <cstdint>
#include <string>

#include "dice/roll_files.h"

// The listing reads the file in blocks of this many rolls.
constexpr int32_t kRollListBlock = 30000;

inline constexpr const char* kDefaultRollFormat = "Roll# (Die1.Die2) Total";

int32_t RollFileLength(RollFiles& rf);
// Up to kRollListBlock rolls from `first` into `out`; returns how many.
int32_t ReadRollBlock(RollFiles& rf, int32_t first, uint8_t (&out)[kRollListBlock]);

// A roll from the 36 buttons at `position`, inserted or replacing ("Replace" may also
// add the roll after the last).
bool EnterRoll(RollFiles& rf, int32_t position, int die1, int die2, bool insert);
// "Ran&dom": the same with random dice.
bool EnterRandomRoll(Game& g, RollFiles& rf, int32_t position, bool insert);
bool DeleteRolls(RollFiles& rf, int32_t first, int32_t last);
// The random tools, from the plain generator seeded from the clock.
bool RandomInsert(Game& g, RollFiles& rf, int32_t position, int32_t count);
bool RandomReplace(Game& g, RollFiles& rf, int32_t first, int32_t last, int32_t count);
bool RandomSwap(Game& g, RollFiles& rf, int32_t first, int32_t last, int32_t count);

// Cut, copy and paste through "rollcopyfile.rol" in the program folder.
bool CopyRolls(Game& g, RollFiles& rf, int32_t first, int32_t last);
bool CutRolls(Game& g, RollFiles& rf, int32_t first, int32_t last);
bool PasteRolls(Game& g, RollFiles& rf, int32_t position, bool insert);

// "Copy Dice Rolls To Text File": one line a roll, the words "roll#", "die1", "die2" and
// "total" of `format` (any case) replaced, everything else copied. A selection that
// doesn't begin at roll 1 offers to number the lines from 1.
bool CopyRollsToTextFile(Game& g, RollFiles& rf, int32_t first, int32_t last, const std::string& format,
                         const std::string& path);
