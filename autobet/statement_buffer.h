#pragma once
// The statement buffer of the interpreter: the few edits that the cycle, the values and
// the actions all make on it, and the run-time fault.

#include <cstdint>
#include <string>
#include <string_view>

#include "autobet/tokens.h"

struct Game;
struct AutoBetProgram;

// Sets the statement's run-time fault; false, so that a reader can `return Fault(g, n);`.
bool Fault(Game& g, int code);

inline bool IsValueRecord(const TokenRecord& r) { return r.code == kCodeNumber || r.code == kCodeString; }
inline bool IsRelational(const TokenRecord& r) { return r.code >= 50 && r.code <= 55; }

// Removes `count` records from `position` on, shifting the tail left and shortening
// StatementLength and CloseBracket.
void DeleteRecords(AutoBetProgram& p, int position, int count);
// Puts a number record, or a new run-time string with a string record, at `position`.
void PutNumber(AutoBetProgram& p, int position, double value);
void PutString(AutoBetProgram& p, int position, std::string text);
// A run-time string: appended to ProgramStrings, dropped at the end of the cycle.
// Returns its pool index (from 1).
int NewRunString(AutoBetProgram& p, std::string text);

// Val: the number at the head of a text ("12abc" 12, " -3.5" -3.5, "x" 0).
double LeadingNumber(std::string_view text);
