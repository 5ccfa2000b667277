#pragma once
// The reduction of a statement in the interpreter's buffer, operator class by operator
// class, and its plans.
//
// A statement's reduction takes the same course on every cycle: which records meet, in
// which order, depends on the records' codes, not on the values read. A plan is that course
// worked out once, by running the same reduction over the statement with each value left
// open: the reads, calls and operations it performs, in the order it performs them, and
// the buffer it leaves. Running a plan performs those steps on this cycle's values with
// the same procedures, stops at the first fault as the reduction does, and leaves the
// same buffer, without searching the records again. A statement whose course depends on
// a value (a range whose ends a function names) has no plan and is reduced as it stands.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "autobet/compiler.h"
#include "autobet/tokens.h"

struct Game;
struct AutoBetProgram;
struct ReferencePieces;

// Reduces the whole buffer (brackets innermost first, then the outer range). Leaves
// RunError set on a fault.
void ReduceStatement(Game& g);

// Whether a value record counts as true in a condition: a number other than 0, a string
// that isn't blank.
bool TruthyText(const Game& g, const TokenRecord& r);
inline bool Truthy(const Game& g, const TokenRecord& r) {
  return r.code == kCodeNumber ? r.value != 0 : TruthyText(g, r);
}

// Plans are kept for one program: ProgramRecords as it stands at the start of a cycle.
// Whatever writes ProgramRecords drops them (AutoBetProgram::Plans = nullptr), as the
// compiler does; a program of another length, place or first and last record drops them
// here as well.
void PreparePlans(AutoBetProgram& p);

// The statement that starts at record `start` of ProgramRecords: the index of the record
// behind it (its end marker, or the end of the program), where the cycle goes on from
// (that marker, or one short of a script header), and its plan when it is an expression
// or an action that has one (an If run with its condition keeps the condition's). A
// statement is worked out the first time it runs; the condition and the Then behind an
// If, with the If.
struct StatementPlan;
// How the cycle runs a statement when no step is shown: by its plan, as one of the
// keywords of conditions, loops and jumps (to `jump`), or from its records; kEmpty for a
// statement with no records, and for one not worked out yet. A script header keeps its
// seat in `jump`. kReading is planned too, with steps that only read and compute: as a
// condition it changes nothing but the condition's result and the faults. kIfReading is an
// If with such a condition and its Then behind it: it keeps the condition's plan, and
// where the Then stands in `jump`.
enum class StatementKind : std::uint8_t {
  kEmpty,
  kPlanned,
  kReading,
  kIfReading,
  kIf,
  kThen,
  kThenToElseIf,
  kJump,
  kPass,
  kRecords,
  kGoto,
  kGosub,
  kReturn,
  kHeader
};
struct FoundStatement {
  int end = -1;
  int next = 0;
  const StatementPlan* plan = nullptr;
  std::int32_t jump = 0;
  StatementKind kind = StatementKind::kEmpty;
};
struct StatementPlans {
  const TokenRecord* data = nullptr;
  std::size_t size = 0;
  TokenRecord first, last;
  std::vector<FoundStatement> found;  // by start; end -1: not worked out yet
  std::vector<std::unique_ptr<StatementPlan>> plans;
  bool withPlans = true;  // false: none is made
  ~StatementPlans();
};
// The statement at `start`, worked out now if it wasn't; the cycle reads those already
// worked out from `found` itself.
FoundStatement WorkOutStatement(AutoBetProgram& p, int start);

// A planned statement runs in two halves: its steps, which compute this cycle's values
// (false at the first fault, RunError set), and then what the reduction leaves of it,
// read record by record or written to the buffer as ReduceStatement would leave it. A
// condition, an assignment to one target named outright and an action on a list of them
// are run from the records without the buffer.
bool RunPlanSteps(Game& g, const StatementPlan& plan);
TokenRecord PlannedRecord(const StatementPlan& plan, int k);  // k from 0
// Whether a planned condition holds: its first record counts as true.
bool PlannedTruth(const Game& g, const StatementPlan& plan);
// A planned condition run whole: its steps, then its truth.
enum class ConditionOutcome : std::uint8_t { kFault, kHolds, kFails };
ConditionOutcome RunPlannedCondition(Game& g, const StatementPlan& plan);
void WritePlannedOutcome(Game& g, const StatementPlan& plan);
// Carries out a planned action on a target list worked out with the plan from the plan's
// records, as TakeAction would from the buffer; false, with nothing done, for any other
// statement.
bool TakePlannedAction(Game& g, const StatementPlan& plan);
// The target of a planned assignment to one target named outright, with `value` the
// index of its value among the records; nullptr for any other statement.
const ReferencePieces* PlannedAssignment(const StatementPlan& plan, int& value);
