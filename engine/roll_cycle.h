#pragma once
// The roll cycle, a new session and the default game.

#include "engine/game_state.h"

// Everything to the defaults of a new game; seats empty. The interface, the clock, the
// program folder, the generators and the runner's hooks carry over.
void SetDefaultGame(Game& g);
// What SetDefaultGame carries over, as a game just made has it: a table used before then
// starts as a new one would (a worker's table, set up again for its next session).
void ForgetCarriedOver(Game& g);
// Starts a new session. diceFileMode: 1 start playback at the first record, 2 leave
// it, other values close the dice roll file.
void ResetTable(Game& g, bool keepHistory, bool clearCheckStacks, bool writeSessionLog, int diceFileMode);
// One roll, from the shot test to the next wait; under Auto-Roll in SilentMode it goes
// on rolling until Auto-Roll is switched off.
void RollDice(Game& g);
// A contract base told by another table (an online mirror's word): the next start-of-roll
// copy takes the bet in, as it takes in every bet held, so a base left on a bet that is
// gone is cleared there as at the table that told it.
void SetContractBase(Game& g, int seat, int bet, Money base);

// Compiles the scripts of the active seats when they aren't compiled; a fault is told
// (or becomes the stop text) and the roll may not go on.
bool CompileActiveScripts(Game& g);
// Activation: the active seats' scripts compiled and run once with "initializing script"
// true, before the rolls they play. False when a script doesn't compile (told, or the
// stop text under SilentMode).
bool ActivateScripts(Game& g);
// Whether an occupied seat has its script switched on.
bool AnyScriptActive(const Game& g);
// The hand has ended: its columns go to "Last hand", bankroll marks start again.
void EndHand(Game& g);
