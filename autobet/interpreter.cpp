#include "autobet/interpreter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "autobet/actions.h"
#include "autobet/reduction.h"
#include "autobet/statement_buffer.h"
#include "autobet/variables.h"
#include "automation/auto_roll.h"
#include "engine/game_state.h"
#include "engine/messages.h"
#include "storage/error_report.h"

// ---- The cycle.

namespace {

bool Stepping(const Game& g) { return g.AutoBet.ShowSteps && !g.Auto.HyperDrive && g.Ui != nullptr; }

int SelectedOr(const Game& g, int seat) { return seat != 0 ? seat : g.AutoBet.SelectedSeat; }

// Shows one step with the statement in progress; "Stop Auto-Betting" ends the cycle.
void ShowStepText(Game& g, const char* text, const std::string& detail) {
  AutoBetProgram& p = g.AutoBet;
  StepRequest request;
  request.Text = text;
  if (!detail.empty()) request.Text += "\n" + detail;
  const int seat = SelectedOr(g, p.Bettor);
  request.Seat = seat;
  request.Title = seat > 0 && seat < kSeats && SeatOccupied(g, seat) ? "Auto-Bet Steps (" + g.PlayerName[seat] + ")"
                                                                     : "Auto-Bet Steps";
  const auto& records = p.ProgramRecords;
  // The statement runs from the marker before its first record to the next marker.
  int marker = p.StatementStart - 1;
  while (marker > 0 && !IsStatementMarker(records[marker])) --marker;
  if (marker >= 0 && marker < static_cast<int>(records.size()) && IsStatementMarker(records[marker])) {
    request.FirstLine = records[marker].code - kCodeStatement;
    request.FirstColumn = static_cast<int>(records[marker].value);
    request.LastLine = request.FirstLine;
    int next = p.StatementStart;
    while (next < static_cast<int>(records.size()) && !IsStatementMarker(records[next])) ++next;
    if (next < static_cast<int>(records.size()) && records[next].code == records[marker].code) {
      request.LastColumn = static_cast<int>(records[next].value);
    }
  }
  p.StepPending = true;
  if (!g.Ui->ShowStep(request)) p.ScriptRunning = false;
  p.StepPending = false;
}

// Step texts cost one test when step mode is off, as it is for every roll of Hyper-Drive.
inline void Step(Game& g, const char* text, const std::string& detail = {}) {
  if (g.AutoBet.ShowSteps && Stepping(g)) ShowStepText(g, text, detail);
}

// Files a fault of the statement in progress under the Bettor, for reports of a run.
void RecordFault(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  const int seat = p.Bettor >= 0 && p.Bettor <= kPlayerSeats ? p.Bettor : 0;
  ++p.FaultCount[seat];
  const int line = StatementLine(p.ProgramRecords, p.StatementStart);
  for (auto& fault : p.FirstFaults[seat]) {
    if (fault.code == p.RunError && fault.line == line) {
      ++fault.count;
      return;
    }
  }
  if (static_cast<int>(p.FirstFaults[seat].size()) < AutoBetProgram::kFaultsKept) {
    p.FirstFaults[seat].push_back({p.RunError, line, 1});
  }
}

void Jump(AutoBetProgram& p, double target) { p.InstructionPointer = static_cast<std::int32_t>(target); }

// A GoSub keeps where the cycle goes on from after its Return.
void PushReturn(AutoBetProgram& p) {
  if (p.ReturnStack.empty()) p.ReturnStack.assign(21, 0);
  if (p.ReturnStack[0] + 1 >= static_cast<int>(p.ReturnStack.size()))
    p.ReturnStack.resize(p.ReturnStack.size() + 20, 0);
  p.ReturnStack[++p.ReturnStack[0]] = p.InstructionPointer;
}
// A Return goes on from where its GoSub left, or from `otherwise` with no GoSub open.
int PopReturn(AutoBetProgram& p, int otherwise) {
  return !p.ReturnStack.empty() && p.ReturnStack[0] > 0 ? p.ReturnStack[p.ReturnStack[0]--] : otherwise;
}

const char* TargetStepText(const Game& g) {
  const auto& records = g.AutoBet.ProgramRecords;
  const int ip = g.AutoBet.InstructionPointer;
  if (ip < 0 || ip >= static_cast<int>(records.size())) return nullptr;
  switch (records[ip].code) {
    case kCodeElse: return "Beginning of last action block.";
    case kCodeElseIf: return "Beginning of condition block.";
    case kCodeEndIf: return "End of If/Then structure.";
    default: return nullptr;
  }
}

// Carries out a planned assignment to one target named outright, or an action on a list
// of them, straight from its records; false, with the outcome written to the buffer for
// the action, for any other.
bool CarryOutDirectly(Game& g, const StatementPlan& plan) {
  int at = 0;
  if (const ReferencePieces* to = PlannedAssignment(plan, at)) {
    const TokenRecord value = PlannedRecord(plan, at);
    if (IsValueRecord(value)) {
      AssignTo(g, *to, value);
      return true;
    }
  }
  if (TakePlannedAction(g, plan)) return true;
  WritePlannedOutcome(g, plan);
  return false;
}

// A condition that faults is false.
void ConditionFault(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  p.ConditionResult = false;
  RecordFault(g);
  if (Stepping(g)) Step(g, "Unable to evaluate.", RunErrorText(p.RunError));
}

// A condition once reduced: it holds when its first record counts as true. A planned one
// looks only at that record, read where the plan keeps it.
void JudgeCondition(Game& g, const StatementPlan* plan) {
  AutoBetProgram& p = g.AutoBet;
  if (p.RunError) {
    ConditionFault(g);
    return;
  }
  const bool holds = plan ? PlannedTruth(g, *plan) : p.StatementLength >= 1 && Truthy(g, p.StatementBuffer[1]);
  if (holds) p.ConditionResult = true;
}

void Evaluate(Game& g, const StatementPlan* plan) {
  AutoBetProgram& p = g.AutoBet;
  const bool condition = p.InCondition;
  bool acted = false;
  if (!plan) ReduceStatement(g);
  else if (RunPlanSteps(g, *plan) && !condition) acted = CarryOutDirectly(g, *plan);
  if (condition) {
    JudgeCondition(g, plan);
    return;
  }
  if (p.RunError == 0 && !acted) {
    const int first = p.StatementBuffer[1].code;
    if (first == kCodeAction || first == kCodeVariableTarget) TakeAction(g);
  }
  if (p.RunError) {
    RecordFault(g);
    if (Stepping(g)) Step(g, "No action taken.", RunErrorText(p.RunError));
    return;
  }
  if (p.RestartScript) {
    Step(g, "The table has been reset and the script will now start over.");
    p.InstructionPointer = -1;  // the cycle adds one: the first record comes next
    p.RestartScript = false;
    return;
  }
  Step(g, "Action taken.");
}

}  // namespace

namespace {

// A fault of the machine itself stops the statement with a report.
void ReportMachineFault(Game& g, const std::exception& e) {
  g.AutoBet.RunError = 10000;
  RecordFault(g);
  if (g.Ui) Tell(g, ErrorReport(e.what(), 10000, "RunAutoBet"), "DiceHall", 0, msg::kOk);
}

// Reduces and acts on a statement that is no keyword: by its plan or, without one, from a
// copy of its records in the buffer.
void EvaluateStatement(Game& g, const TokenRecord* statement, int length, const StatementPlan* plan) {
  AutoBetProgram& p = g.AutoBet;
  try {
    if (!plan && statement != &p.StatementBuffer[1]) {
      auto& buffer = p.StatementBuffer;
      if (length + 2 >= static_cast<int>(buffer.size())) buffer.resize(static_cast<std::size_t>(length) * 2 + 64);
      std::copy(statement, statement + length, buffer.begin() + 1);
      p.StatementLength = length;
    }
    Evaluate(g, plan);
  } catch (const std::exception& e) {
    ReportMachineFault(g, e);
  }
}

// A condition planned to read and compute only, as EvaluateStatement runs it. In the
// cycle itself, which runs most conditions through it.
[[gnu::always_inline]] inline void TestCondition(Game& g, const StatementPlan& plan) {
  g.AutoBet.RunError = 0;
  try {
    switch (RunPlannedCondition(g, plan)) {
      case ConditionOutcome::kFault: ConditionFault(g); break;
      case ConditionOutcome::kHolds: g.AutoBet.ConditionResult = true; break;
      case ConditionOutcome::kFails: break;
    }
  } catch (const std::exception& e) {
    ReportMachineFault(g, e);
  }
}

// Runs the statement whose records are `statement` (length records): keywords from the
// records themselves, anything else by EvaluateStatement.
void ExecuteStatementAt(Game& g, const TokenRecord* statement, int length, const StatementPlan* plan) {
  AutoBetProgram& p = g.AutoBet;
  p.RunError = 0;
  if (!p.ScriptRunning) return;
  const TokenRecord& first = statement[0];
  // A jump's target is its second record.
  const auto second = [&] { return length >= 2 ? statement[1] : p.StatementBuffer[2]; };
  switch (first.code) {
    case kCodeIf:
      p.InCondition = true;
      p.ConditionResult = false;
      Step(g, "Beginning of condition block.");
      return;
    case kCodeThen: {
      p.InCondition = false;
      Step(g, "End of condition block and beginning of action block.");
      if (p.ConditionResult) {
        Step(g, "Conditions were true, so next action block will be performed.");
        return;
      }
      Step(g, "Conditions were false, so next action block will be skipped.");
      Jump(p, first.value);
      const auto& records = p.ProgramRecords;
      if (p.InstructionPointer >= 0 && p.InstructionPointer < static_cast<int>(records.size()) &&
          records[p.InstructionPointer].code == kCodeElseIf) {
        p.InCondition = true;
        p.ConditionResult = false;
      }
      if (Stepping(g)) {
        if (const char* text = TargetStepText(g)) Step(g, text);
      }
      return;
    }
    case kCodeElse:
    case kCodeElseIf:
      Step(g, "End of action block.");
      Jump(p, first.value);
      Step(g, "End of If/Then structure.");
      return;
    case kCodeEndIf: Step(g, "End of If/Then structure."); return;
    case kCodeGosub:
      PushReturn(p);
      Step(g, "A jump will be made to the designated subroutine.");
      Jump(p, second().value);
      Step(g, "Label.");
      return;
    case kCodeGoto:
      Step(g, "A jump will be made to the designated label.");
      Jump(p, second().value);
      Step(g, "Label.");
      return;
    case kCodeReturn:
      Step(g, "Return to place where subroutine was initiated.");
      p.InstructionPointer = PopReturn(p, p.InstructionPointer);
      return;
    case kCodeDo: Step(g, "Beginning of DO/LOOP structure."); return;
    case kCodeLoop:
      Step(g, "End of DO/LOOP structure.");
      Step(g, "A jump will be made back to the associated DO statement.");
      Jump(p, first.value);
      return;
    case kCodeExitDo:
      Step(g, "Exit from DO/LOOP structure.");
      Jump(p, first.value);
      return;
    case kCodeLabel: Step(g, "Label."); return;
    case kCodeScriptHeader: p.Bettor = SelectedOr(g, static_cast<int>(first.value)); return;
    default: break;
  }
  EvaluateStatement(g, statement, length, plan);
}

}  // namespace

void ExecuteStatement(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  ExecuteStatementAt(g, &p.StatementBuffer[1], p.StatementLength, nullptr);
}

namespace {

// A cycle that never ends is stopped as the user would stop it, and says where it was.
void StopRunawayCycle(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  p.ScriptRunning = false;
  p.RunawaySeat = p.Bettor >= 1 && p.Bettor <= kPlayerSeats ? p.Bettor : 0;
  p.RunawayLine = StatementLine(p.ProgramRecords, p.StatementStart);
  std::string who = p.RunawaySeat ? g.PlayerName[p.RunawaySeat] + "'s script" : std::string("A script");
  if (p.RunawaySeat && !g.ScriptFile[p.RunawaySeat].empty()) who += " " + g.ScriptFile[p.RunawaySeat];
  const std::string text = who + " ran more than " + MoneyTextGrouped(Money::Dollars(p.MaxCycleStatements)) +
                           " statements or " + std::to_string(p.MaxCycleRestarts) +
                           " new sessions after one roll and was stopped at line " + std::to_string(p.RunawayLine) +
                           ": it seems to loop without end.";
  // The stop says why whether or not a box can show it.
  g.StopReason = text;
  if (!g.SilentMode) Tell(g, text, "Auto-Bet", 0, msg::kOk);
  if (g.Auto.AutoRollActive) ToggleAutoRoll(g);
}

bool IsThen(StatementKind kind) { return kind == StatementKind::kThen || kind == StatementKind::kThenToElseIf; }
bool IsPlanned(StatementKind kind) { return kind == StatementKind::kPlanned || kind == StatementKind::kReading; }

// An If without step texts: the condition behind it starts, false until it holds.
void RunIf(AutoBetProgram& p) {
  p.RunError = 0;
  p.InCondition = true;
  p.ConditionResult = false;
}

// A Then without step texts: a false condition jumps to what follows its action block,
// and starts the condition of an ElseIf there. Returns where the cycle goes on from.
int RunThen(AutoBetProgram& p, const FoundStatement& then) {
  p.RunError = 0;
  p.InCondition = false;
  if (p.ConditionResult) return then.next;
  if (then.kind == StatementKind::kThenToElseIf) {
    p.InCondition = true;
    p.ConditionResult = false;
  }
  return then.jump;
}

// One cycle of the scripts: how far it has run, when it next looks at the runaway limit
// and the message loop, and the statements worked out so far, read in place.
struct Cycle {
  Game& g;
  AutoBetProgram& p;
  const std::vector<TokenRecord>& records;
  const int last;             // the last record
  const bool turns;           // the interface stays for the cycle
  std::int64_t executed = 0;  // statements run to their end
  std::int32_t restarts = 0;
  // The runaway limit and the message loop's turns are looked at only at the statement that
  // reaches one of them: the limit, or the next turn (after every statement, or in silent
  // mode each 1,024th statement counted with those between rolls). The statements run
  // since are counted there, when the cycle ends, and when silent mode changes.
  std::int64_t checkAt = 0, counted = 0;
  bool countsTurns = false;
  // The statements worked out so far are read in place, and looked up afresh only after a
  // call that may have compiled: an evaluation, a keyword run from its records, a turn of
  // the message loop. Only such a call can also stop the script or turn step mode on
  // (which sends every statement to ExecuteStatementAt); and, unless it is a condition,
  // change silent mode.
  const FoundStatement* table = nullptr;
  std::size_t tableSize = 0;
  bool byRecords = false;

  explicit Cycle(Game& game)
      : g(game),
        p(game.AutoBet),
        records(game.AutoBet.ProgramRecords),
        last(static_cast<int>(game.AutoBet.ProgramRecords.size()) - 1),
        turns(game.Ui != nullptr) {
    NextCheck();
    Refresh(false);
  }

  void CountTurns(std::int64_t upTo) {
    if (countsTurns) g.Auto.YieldCounter += static_cast<std::uint32_t>(upTo - counted);
    counted = upTo;
  }

  void NextCheck() {
    countsTurns = turns && g.SilentMode;
    const std::int64_t left = p.MaxCycleStatements > executed ? p.MaxCycleStatements - executed : 0;
    std::int64_t n = std::min<std::int64_t>(left, 1023) + 1;
    if (turns) n = std::min<std::int64_t>(n, g.SilentMode ? 1024 - (g.Auto.YieldCounter & 1023) : 1);
    checkAt = executed + n;
  }

  void Refresh(bool condition) {
    const StatementPlans* c = p.Plans.get();
    const bool valid = c && c->size == records.size();
    table = valid ? c->found.data() : nullptr;
    tableSize = valid ? c->found.size() : 0;
    byRecords = p.ShowSteps || !p.ScriptRunning;
    if (!condition && turns && g.SilentMode != countsTurns) {
      CountTurns(executed);
      NextCheck();
    }
  }

  void RunAt(int ip);
  bool Next();
};

// 3, in place: statements follow one another here from `ip` for as long as nothing else
// is due: no step texts, no check of the loop on the statement, and no end, restart or
// stop of the cycle behind it. Each runs and counts as it would on its own turn. True
// when the last one run leaves its tail due (the pointer stays on its marker); false
// when `ip` is the statement that RunAt runs next.
bool RunInPlace(Game& g, Cycle& c, int& ip) {
  // The loop's state in locals of its own, which the compiler keeps in registers: the
  // cycle's own fields would be read again after every call. An evaluation or a
  // statement run from its records may change what they copy (the table, step mode, the
  // next check, the script stopped): its tail is then due.
  AutoBetProgram& p = g.AutoBet;
  const std::vector<TokenRecord>& records = p.ProgramRecords;
  const bool turns = c.turns;
  const FoundStatement* const t = c.table;
  const std::size_t size = c.tableSize;
  const StatementPlans* const plans = p.Plans.get();
  const std::int64_t limit = c.checkAt - 1;
  const auto end = static_cast<unsigned>(c.last);
  std::int64_t done = c.executed;
  int next = 0;
  // Runs the statement at `at` by its plan or from its records (`f` may not outlive
  // the call: it can compile). True when something the locals copy changed: new plans
  // or records, step mode, a stop, or silent mode after a statement that isn't a
  // condition.
  const auto run = [&](int at, const FoundStatement& f) {
    const bool condition = p.InCondition;
    if (condition && f.kind == StatementKind::kReading) {
      p.StatementStart = at;
      p.InstructionPointer = f.next;
      TestCondition(g, *f.plan);
      return false;
    }
    const bool planned = IsPlanned(f.kind);
    p.StatementStart = at;
    p.InstructionPointer = f.next;
    c.executed = done;
    if (planned) {
      p.RunError = 0;
      EvaluateStatement(g, records.data() + at, f.end - at, f.plan);
    } else {
      ExecuteStatementAt(g, records.data() + at, f.end - at, f.plan);
    }
    if (p.Plans.get() == plans && records.size() == size && !p.ShowSteps && p.ScriptRunning &&
        ((planned && condition) || !turns || g.SilentMode == c.countsTurns))
      return false;
    c.Refresh(planned && condition);
    return true;
  };
  // Where a jump lands, behind the keyword it names, stands a marker: a statement with
  // no records, which only counts. It is counted with the statement before it when no
  // check falls on it; `target` is where the cycle would go on from.
  const auto land = [&](int target) {
    const int at = target + 1;
    if (static_cast<unsigned>(target) >= end || static_cast<unsigned>(at) >= end || done + 1 >= limit) return target;
    const FoundStatement& e = t[at];
    if (e.kind != StatementKind::kEmpty || e.end < 0) return target;
    ++done;
    return e.next;
  };
  bool tailDue = false;
  while (done < limit) {
    const FoundStatement& f = t[ip];
    next = f.next;
    switch (f.kind) {
      case StatementKind::kEmpty:
        if (f.end < 0) goto general;  // not worked out yet
        break;
      case StatementKind::kPass: p.RunError = 0; break;
      case StatementKind::kJump:
      case StatementKind::kGoto:
        p.RunError = 0;
        next = land(f.jump);
        break;
      case StatementKind::kIf: {
        RunIf(p);
        // The condition and the Then behind it go on in the same dispatch when both
        // are worked out and no check falls on them; each counts as on its own.
        const int at = next + 1;
        if (done + 2 >= limit || static_cast<unsigned>(at) >= end || !IsPlanned(t[at].kind)) break;
        const int then = t[at].next + 1;
        if (static_cast<unsigned>(then) >= end || !IsThen(t[then].kind)) break;
        ++done;  // the If
        ip = at;
        const bool changed = run(at, t[at]);
        next = p.InstructionPointer;
        if (changed) goto tail;
        if (next + 1 != then) break;  // the tail counts the condition
        ++done;                       // the condition
        ip = then;
        next = RunThen(p, t[then]);
        break;
      }
      case StatementKind::kIfReading: {
        // If, condition and Then, each counted as on its own, when no check falls on
        // them: the condition can change nothing else.
        RunIf(p);
        if (done + 2 >= limit) break;
        const int then = f.jump;
        p.StatementStart = next + 1;
        p.InstructionPointer = then - 1;
        TestCondition(g, *f.plan);
        done += 2;
        ip = then;
        next = land(RunThen(p, t[then]));
        break;
      }
      case StatementKind::kThen:
      case StatementKind::kThenToElseIf: next = land(RunThen(p, f)); break;
      case StatementKind::kGosub:
        p.RunError = 0;
        p.InstructionPointer = next;
        PushReturn(p);
        next = land(f.jump);
        break;
      case StatementKind::kReturn:
        p.RunError = 0;
        next = PopReturn(p, next);
        break;
      case StatementKind::kHeader:
        p.RunError = 0;
        p.Bettor = SelectedOr(g, f.jump);
        break;
      case StatementKind::kPlanned:
      case StatementKind::kReading:
      case StatementKind::kRecords: {
        const bool changed = run(ip, f);
        next = p.InstructionPointer;
        if (changed) goto tail;
        break;
      }
    }
    if (static_cast<unsigned>(next) >= end) goto tail;  // a restart, or the end of the cycle
    ++done;
    ip = next + 1;
  }
  goto general;
tail:
  p.StatementStart = ip;
  p.InstructionPointer = next;
  tailDue = true;
general:
  c.executed = done;
  return tailDue;
}

// 3, one statement at `ip`, worked out first when it isn't yet. A planned statement goes
// straight to its evaluation, and the flow of control without step texts is run here, as
// ExecuteStatementAt would run them. The rest, and every statement in step mode or once
// the script is stopped, by ExecuteStatementAt. The pointer is left on the next marker.
void Cycle::RunAt(int ip) {
  p.InstructionPointer = ip;
  p.StatementStart = ip;
  FoundStatement found;
  if (static_cast<std::size_t>(ip) < tableSize && table[ip].end >= 0) {
    found = table[ip];
  } else {
    found = WorkOutStatement(p, ip);
    Refresh(false);
  }
  p.InstructionPointer = found.next;
  StatementKind kind = found.kind;
  if (byRecords && kind != StatementKind::kEmpty) kind = StatementKind::kRecords;
  switch (kind) {
    case StatementKind::kEmpty: break;
    case StatementKind::kPlanned:
    case StatementKind::kReading: {
      const bool condition = p.InCondition;
      p.RunError = 0;
      EvaluateStatement(g, records.data() + ip, found.end - ip, found.plan);
      Refresh(condition);
      break;
    }
    case StatementKind::kIf:
    case StatementKind::kIfReading: RunIf(p); break;
    case StatementKind::kThen:
    case StatementKind::kThenToElseIf: p.InstructionPointer = RunThen(p, found); break;
    case StatementKind::kJump:
      p.RunError = 0;
      p.InstructionPointer = found.jump;
      break;
    case StatementKind::kPass: p.RunError = 0; break;
    case StatementKind::kRecords:
    case StatementKind::kGoto:
    case StatementKind::kGosub:
    case StatementKind::kReturn:
    case StatementKind::kHeader:
      ExecuteStatementAt(g, records.data() + ip, found.end - ip, found.plan);
      Refresh(false);
      break;
  }
}

// The tail of a statement: the stop, the runaway limit, 4 (a turn of the message loop;
// in Hyper-Drive only now and then, as between rolls) and the end of the program. False
// when the cycle ends; else the pointer is on the next statement.
bool Cycle::Next() {
  if (!p.ScriptRunning) {
    CountTurns(executed);
    return false;
  }
  ++executed;
  if ((executed == checkAt && executed > p.MaxCycleStatements) ||
      (p.InstructionPointer < 0 && ++restarts > p.MaxCycleRestarts)) {
    CountTurns(executed - 1);  // the statement stopped here takes no turn
    StopRunawayCycle(g);
    return false;
  }
  if (executed == checkAt) {
    CountTurns(executed);
    if (turns && (!g.SilentMode || (g.Auto.YieldCounter & 1023) == 0)) {
      g.Ui->Yield();
      Refresh(false);
    }
    NextCheck();
  }
  if (p.InstructionPointer >= last) {
    CountTurns(executed);
    return false;
  }
  ++p.InstructionPointer;
  return true;
}

}  // namespace

void StopAutoBet(Game& g) { g.AutoBet.ScriptRunning = false; }

void RunAutoBet(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  if (!p.ScriptsCompiled || p.ProgramRecords.empty() || p.ScriptRunning) return;
  // 1.
  if (p.ReturnStack.empty()) p.ReturnStack.assign(21, 0);
  p.ReturnStack[0] = 0;
  p.ScriptRunning = true;
  p.InCondition = false;
  p.ConditionResult = false;
  const bool hyper = g.Auto.HyperDrive;
  if (!hyper) g.Auto.StatusText = "Auto-Betting";
  const bool waits = !hyper && !g.SilentMode && g.Time && g.Ui;
  const std::uint32_t start = waits ? g.Time->TickMs() : 0;
  const std::size_t stringsMark = p.ProgramStrings.size();
  PreparePlans(p);
  // 2.
  p.InstructionPointer = 0;
  Cycle cycle(g);
  // 3 and 4. The statement runs to the next marker, where the pointer stays: a keyword as
  // it stands, anything else by its plan (or copied to the buffer and reduced there).
  for (;;) {
    int ip = p.InstructionPointer;
    const bool ran = !cycle.byRecords && static_cast<std::size_t>(ip) < cycle.tableSize && RunInPlace(g, cycle, ip);
    if (!ran) cycle.RunAt(ip);
    if (!cycle.Next()) break;
  }
  // 5. Strings made in the cycle go with it.
  p.ProgramStrings.resize(stringsMark);
  // 6. Long enough for the status text to be read.
  if (waits) {
    for (;;) {
      const auto elapsed = static_cast<std::int32_t>(g.Time->TickMs() - start);
      if (elapsed < 0 || elapsed >= 300 || !p.ScriptRunning) break;
      g.Ui->Yield();
    }
  }
  // 7.
  p.ScriptRunning = false;
  if (!hyper) g.Auto.StatusText.clear();
}

EvaluationResult EvaluateExpression(Game& g, int seat, std::string_view expression) {
  EvaluationResult result;
  AutoBetProgram& p = g.AutoBet;
  const int selected = p.SelectedSeat;
  p.SelectedSeat = seat;
  std::array<std::string, kPlayerSeats> names{};
  for (int s = 1; s <= kPlayerSeats; ++s) names[s - 1] = g.PlayerName[s];
  // As the value of an assignment; a condition (a list, say) as the test of an If.
  p.ScriptSource[0] = {"cs0 = " + std::string(expression)};
  CompileFault fault = CompileAutobets(p, 0, names);
  bool condition = false;
  if (fault.Failed()) {
    p.ScriptSource[0] = {"If " + std::string(expression) + " Then", "EndIf"};
    const CompileFault asCondition = CompileAutobets(p, 0, names);
    condition = !asCondition.Failed();
    if (condition) fault = asCondition;
  }
  p.SelectedSeat = selected;
  if (fault.Failed()) {
    result.compileFault = fault.message;
    return result;
  }
  // The expression's records: behind "cs0 =", or behind the If's own statement.
  const auto& r = p.ScriptRecords;
  std::size_t i = 1;
  const int start = condition ? kCodeIf : kCodeEquals;
  while (i < r.size() && r[i].code != start) ++i;
  i += condition ? 2 : 1;
  const auto savedStrings = p.ProgramStrings;
  p.ProgramStrings = p.ScriptStrings;
  int length = 0;
  for (; i < r.size() && r[i].code < kCodeStatement; ++i) {
    if (length + 2 >= static_cast<int>(p.StatementBuffer.size()))
      p.StatementBuffer.resize(p.StatementBuffer.size() * 2);
    p.StatementBuffer[++length] = r[i];
  }
  p.StatementLength = length;
  p.RunError = 0;
  const int bettor = p.Bettor;
  p.Bettor = seat;
  ReduceStatement(g);
  p.Bettor = bettor;
  result.runError = p.RunError;
  if (p.RunError == 0 && p.StatementLength == 1 && IsValueRecord(p.StatementBuffer[1])) {
    result.ok = true;
    result.isString = p.StatementBuffer[1].code == kCodeString;
    result.number = NumberOf(g, p.StatementBuffer[1]);
    result.text = TextOf(g, p.StatementBuffer[1]);
  }
  p.ProgramStrings = savedStrings;
  return result;
}
