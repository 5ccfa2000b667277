#pragma once
// CheckStacks as frmCheckStacks shows and edits them: the list of a seat's stacks, the
// text outputs, the delete-all questions and the undo list. Amounts change only through
// the placement gate (rows 200..299 skip the table's rules and keep their own limit).

#include <string>
#include <vector>

#include "engine/game_state.h"

constexpr int kCheckStacks = kBetRows - kCheckStackRow;  // 100 a seat

struct CheckStackLine {
  int number;  // 0..99
  Money value;
  std::string name;
};

// The seat's stacks in number order; stacks of value 0 only with `displayZero`.
std::vector<CheckStackLine> ListCheckStacks(const Game& g, int seat, bool displayZero);

// "mnuCopy2TextFile": a header and one line a stack, in columns.
std::string CheckStacksText(const std::vector<CheckStackLine>& lines);
// "mnuTxtTSV": tabs between the columns.
std::string CheckStacksTsv(const std::vector<CheckStackLine>& lines);
// "mnuClipboardCSV": commas, names quoted where they need it.
std::string CheckStacksCsv(const std::vector<CheckStackLine>& lines);
// Writes one of the texts to a file; false with the error report when it can't.
bool WriteCheckStacksFile(const std::string& path, const std::string& text, std::string& error);

// Sets a stack through the placement gate; returns the change applied.
Money SetCheckStack(Game& g, int seat, int number, Money value);
// Stack number `number` of the seat by name ("" never matches); -1 when none has it.
int FindCheckStack(const Game& g, int seat, const std::string& name);

// The delete-all menu entries, each after the player's yes. Return whether they acted.
bool DeleteAllCheckStacks(Game& g, int seat);
bool DeleteAllCheckStackValues(Game& g, int seat);
bool DeleteAllCheckStackNames(Game& g, int seat);

// The undo list of the window: a seat's stacks, values and names, before each edit.
struct CheckStackSnapshot {
  int seat;
  std::array<Money, kCheckStacks> values;
  std::array<std::string, kCheckStacks> names;
};
struct CheckStackUndo {
  std::vector<CheckStackSnapshot> undo, redo;
};
void SaveUndo(const Game& g, int seat, CheckStackUndo& list);
// Puts back the last saved state (keeping the present one for redo); false when empty.
bool Undo(Game& g, CheckStackUndo& list);
bool Redo(Game& g, CheckStackUndo& list);
