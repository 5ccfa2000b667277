#pragma once
// The Auto-Bet compiler: the chain of passes over one seat's token stream, and the join
// of all active seats into the one program the interpreter walks after each roll. Plain
// data and procedures; the engine holds an AutoBetProgram and passes in the seats' facts.

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "autobet/tokens.h"
#include "storage/append_file.h"

struct StatementPlans;  // autobet/reduction.cpp

// Everything the compiler and the interpreter keep between runs. Record lists are
// indexed from 0 with the script header at 0, so a label's or a jump's record index is
// always above 0 and "value above 0" keeps telling a label entry from a literal.
struct AutoBetProgram {
  // Source lines by seat; [0] is the scratch list that hot keys and "Check Script" compile.
  std::array<std::vector<std::string>, kPlayerSeats + 1> ScriptSource{};
  // The lines of the seat selected in the editor, copied back before each full compilation.
  std::vector<std::string> EditorLines;
  std::vector<TokenRecord> ScriptRecords;   // the script being compiled
  std::vector<StringEntry> ScriptStrings;   // its string pool, entry k at [k - 1]
  std::vector<TokenRecord> ProgramRecords;  // all active seats, joined
  std::vector<StringEntry> ProgramStrings;
  std::vector<std::int32_t> ReturnStack;  // [0] is the count
  bool ScriptsCompiled = false;
  // Whose references a scratch script (seat 0) means when it names no player.
  int SelectedSeat = 0;
  // The table's corner bet option (0 none, 1 Big 6 / Big 8, 2 Midway, 3 Over / Under 7):
  // "bets" covers Big 6 and Big 8 only when they are on the layout.
  int CornerBet = 1;

  // ---- The interpreter's state (see autobet/interpreter.h).
  // The statement being reduced: element 0 is unused, 1..StatementLength hold it.
  std::vector<TokenRecord> StatementBuffer = std::vector<TokenRecord>(64);
  std::int32_t StatementLength = 0;
  std::int32_t OpenBracket = 0, CloseBracket = 0;  // the range being reduced, both exclusive
  std::int32_t InstructionPointer = 0;
  std::int32_t StatementStart = 0;  // the record index the statement in the buffer came from
  std::int32_t RunError = 0;
  bool RestartScript = false;
  std::int32_t Bettor = 0;  // seat of the script being run; 0 the selected player
  bool ScriptRunning = false;
  bool InitializingScript = false;
  bool StepPending = false;
  bool ShowSteps = false;
  bool InCondition = false, ConditionResult = false;
  std::int32_t Answer = 0;         // the last Yes/No answer: 6 yes, 7 no
  std::uint32_t RndSeed = 327680;  // the language's own generator (Rnd)
  // Per seat (0 unused): the output file of "Open ... file for output", kept open.
  std::array<AppendFile, kPlayerSeats + 1> OutputFile{};
  // Run-time faults per seat since the tally was cleared: the count, and the first few
  // different faults (by code and source line) with how often each came, so that a
  // headless run can show a misbehaving system.
  struct RunFault {
    std::int32_t code = 0;
    std::int32_t line = 0;
    std::int64_t count = 0;
    friend bool operator==(const RunFault&, const RunFault&) = default;
  };
  static constexpr int kFaultsKept = 5;
  std::array<std::int64_t, kPlayerSeats + 1> FaultCount{};
  std::array<std::vector<RunFault>, kPlayerSeats + 1> FirstFaults{};
  // A cycle that runs more statements than this (restarts included) loops without end:
  // it is stopped, with the seat and the line where it was, so that no script hangs a run.
  // A new session costs far more than a statement (every player's log is written), so
  // restarts have a bound of their own.
  std::int64_t MaxCycleStatements = 10000000;
  std::int32_t MaxCycleRestarts = 1000;
  std::int32_t RunawaySeat = 0, RunawayLine = 0;
  // How each statement of ProgramRecords is reduced, worked out when it first runs and
  // kept with the records it was worked out from (see autobet/reduction.h). Without plans
  // every statement is reduced from its records, the course that plans must match.
  std::shared_ptr<StatementPlans> Plans;
  bool UsePlans = true;
};

// What the compiler needs to know of the seats; index i is seat i + 1.
struct SeatFacts {
  std::array<std::string, kPlayerSeats> names{};
  std::array<bool, kPlayerSeats> active{};
  int selectedSeat = 0;  // the seat shown in the editor, 0 for none
};

// Compiles seat `player` (0: the scratch list) into ScriptRecords and ScriptStrings,
// stopping at the first fault. On a fault both lists are left empty.
CompileFault CompileAutobets(AutoBetProgram& program, int player, std::span<const std::string> playerNames);

// The outcome of a full compilation: the seat whose script failed (0 when none), its
// fault with the range, and the box the player is shown.
struct CompileAllResult {
  int seat = 0;
  CompileFault fault;
  std::string title;
  std::string message;
  bool Failed() const { return fault.Failed(); }
};

// Compiles every active seat (player 0) or the one seat `player`, and joins them into
// ProgramRecords and ProgramStrings. ScriptsCompiled is set only when all succeeded.
CompileAllResult CompileALLAutobets(AutoBetProgram& program, int player, const SeatFacts& seats);

// Appends one compiled script to a program, shifting its record indices and pool indices
// past what is already there.
void JoinScript(std::vector<TokenRecord>& programRecords, std::vector<StringEntry>& programStrings,
                std::span<const TokenRecord> records, std::span<const StringEntry> strings);

// ---- The passes, in chain order. Each reports its first fault with the statement's range.

// Brackets, function arguments, list ends, list kinds, labels and duplicate labels.
CompileFault CompileMisc(std::vector<TokenRecord>& records, std::vector<StringEntry>& strings,
                         std::span<const std::string> lines);

// Free reference words into fixed groups (variable, then player, time, X, Y pieces with
// their defaults); `owner` is the seat a reference without a player belongs to.
CompileFault CompileVariablesOrganize(std::vector<TokenRecord>& records, std::span<const std::string> lines, int owner);

// Both sides of every `thru` are numbered bets of one family.
CompileFault CompileThru(const std::vector<TokenRecord>& records, std::span<const std::string> lines);

// Plural bet and checkstack words into comma lists of single references, each with the
// word's pieces; "bets" leaves out Big 6 and Big 8 unless `bigBetsOffered`.
void CompileVariablesDistribute(std::vector<TokenRecord>& records, bool bigBetsOffered);

// Marks what assignments and target verbs write (-12, -2) and refuses what cannot be
// written; a label between IF and THEN is refused here too.
CompileFault CompileConvertToAction(std::vector<TokenRecord>& records, std::span<const std::string> lines);

// Links IF/THEN/ELSEIF/ELSE/ENDIF and DO/EXITDO/LOOP by the record indices they jump to,
// and points each GOTO/GOSUB reference at its label's record (label entries are first
// brought up to where their records now stand). With `indentLines` (the editor's lines of
// this script, auto-indent on) a cleanly linked script is re-indented three blanks per
// block depth, statement columns follow, and `lineDepths` gets the depths.
CompileFault CompileLogic(std::vector<TokenRecord>& records, std::vector<StringEntry>& strings,
                          std::span<const std::string> lines, std::vector<std::string>* indentLines = nullptr,
                          std::vector<int>* lineDepths = nullptr);

// The shape of every statement and the operands of every operator; changes nothing.
CompileFault CompileCheck(const std::vector<TokenRecord>& records, std::span<const std::string> lines);

// ---- Helpers shared by the passes.

inline bool IsStatementMarker(const TokenRecord& r) { return r.code >= kCodeStatement; }

// The fault `message` over the statement that holds record `index`: from the statement's
// column to where the next statement starts on the same line, or to the end of the line.
CompileFault StatementFault(std::string message, const std::vector<TokenRecord>& records, std::size_t index,
                            std::span<const std::string> lines);

// The source line (from 1) of the statement that holds record `index`; 0 before the first.
int StatementLine(const std::vector<TokenRecord>& records, std::size_t index);

// A label's text as labels are compared: blanks around it dropped, letters in lower case.
std::string LowerTrimmed(std::string_view s);
// How a function is called in messages, as the user writes it ("Lay", "DontComeOdds", "Sum").
std::string FunctionDisplayName(int function);
// How a variable is called in messages ("Available bankroll", "# of rolls since last").
std::string VariableDisplayName(int variable);
