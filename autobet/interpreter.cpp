#include "autobet/interpreter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "autobet/actions.h"
#include "autobet/statement_buffer.h"
#include "autobet/variables.h"
#include "automation/auto_roll.h"
#include "engine/game_state.h"
#include "engine/messages.h"
#include "storage/error_report.h"

// ---- Reduction.

namespace {

// Records that belong to the reference group starting at `i` (0 for anything else).
int PiecesAfter(const TokenRecord& r) {
  return (r.code == kCodeVariable || r.code == kCodeVariableTarget) ? GroupSize(static_cast<int>(r.value)) : 0;
}

bool IsBetFamilyFunction(int f) { return (f >= 1 && f <= 11) || f == 21 || f == 800; }

// A truth value as the logical operators use it: a rounded 32-bit integer.
std::int32_t LogicalOf(const Game& g, const TokenRecord& r) {
  const double v = std::nearbyint(NumberOf(g, r));
  if (v >= 2147483647.0) return INT32_MAX;
  if (v <= -2147483648.0) return INT32_MIN;
  return static_cast<std::int32_t>(v);
}

// Replaces left, operator and right (at i - 1, i, i + 1) by one record already written to
// i - 1.
void CollapseBinary(AutoBetProgram& p, int i) { DeleteRecords(p, i, 2); }

bool Truthy(const Game& g, const TokenRecord& r) {
  if (r.code == kCodeNumber) return r.value != 0;
  if (r.code == kCodeString) {
    std::string scratch;
    return StringView(g, r.code, r.value, scratch).find_first_not_of(" \t") != std::string_view::npos;
  }
  return false;
}

// The arithmetic operators of one class, left to right across the range.
template <class Op>
void BinaryPass(Game& g, std::initializer_list<int> codes, Op op) {
  AutoBetProgram& p = g.AutoBet;
  auto& b = p.StatementBuffer;
  for (int i = p.OpenBracket + 2; i < p.CloseBracket - 1 && p.RunError == 0;) {
    bool match = false;
    for (int c : codes) match = match || b[i].code == c;
    if (match && IsValueRecord(b[i - 1]) && IsValueRecord(b[i + 1])) {
      if (op(b[i].code, b[i - 1], b[i + 1])) {
        CollapseBinary(p, i);
        continue;  // the result may be the left operand of the next operator
      }
      return;
    }
    ++i;
  }
}

void Arithmetic(Game& g, std::initializer_list<int> codes) {
  AutoBetProgram& p = g.AutoBet;
  BinaryPass(g, codes, [&](int code, TokenRecord& left, const TokenRecord& right) {
    const double a = NumberOf(g, left), c = NumberOf(g, right);
    double r = 0;
    switch (code) {
      case 60: r = std::pow(a, c); break;
      case 61: r = a * c; break;
      case 62:
        if (c == 0) return p.RunError = 9999, false;
        r = a / c;
        break;
      case 63:
      case 64: {
        const double x = std::nearbyint(a), y = std::nearbyint(c);
        if (y == 0) return p.RunError = 9999, false;
        r = code == 63 ? std::trunc(x / y) : std::fmod(x, y);
        break;
      }
      case 65: r = a + c; break;
      case 66: r = a - c; break;
      default: break;
    }
    left = {kCodeNumber, r};
    return true;
  });
}

// Unary operators (minus, not) right to left, so that chains apply innermost first.
void UnaryPass(Game& g, int code) {
  AutoBetProgram& p = g.AutoBet;
  auto& b = p.StatementBuffer;
  for (int i = p.CloseBracket - 2; i > p.OpenBracket; --i) {
    if (b[i].code != code || !IsValueRecord(b[i + 1])) continue;
    if (code == kCodeMinus && i - 1 > p.OpenBracket && IsValueRecord(b[i - 1])) continue;  // a subtraction
    if (code == kCodeMinus) {
      b[i] = {kCodeNumber, -NumberOf(g, b[i + 1])};
    } else {
      b[i] = {kCodeNumber, static_cast<double>(~LogicalOf(g, b[i + 1]))};
    }
    DeleteRecords(p, i + 1, 1);
  }
}

// Ranges: `a thru b` of one family becomes a, a+1 .. b (or down), each a copy of a's group.
void ExpandRanges(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  auto& b = p.StatementBuffer;
  for (int i = p.OpenBracket + 1; i < p.CloseBracket && p.RunError == 0; ++i) {
    const int pieces = PiecesAfter(b[i]);
    if (pieces == 0 && b[i].code != kCodeVariable && b[i].code != kCodeVariableTarget) continue;
    const int thru = i + 1 + pieces;
    const int right = thru + 1;
    if (thru >= p.CloseBracket || b[thru].code != kCodeThru || right >= p.CloseBracket) {
      i += pieces;
      continue;
    }
    if (b[right].code != kCodeVariable && b[right].code != kCodeVariableTarget) {
      i += pieces;
      continue;
    }
    const int rightPieces = PiecesAfter(b[right]);
    for (int k = 1; k <= pieces && k <= rightPieces; ++k) {
      const TokenRecord& l = b[i + k];
      const TokenRecord& r = b[right + k];
      if (l.code != r.code || l.value == r.value) continue;
      p.RunError = l.code == kCodePlayer ? 51 : l.code == kCodeTime ? 52 : 53;
      return;
    }
    const int from = static_cast<int>(b[i].value), to = static_cast<int>(b[right].value);
    const int count = std::abs(to - from) + 1;
    const int groupLength = 1 + pieces;
    // The right group and the thru go; count - 1 commas and copies come in their place.
    const int removed = 1 + 1 + rightPieces;
    const int added = (count - 1) * (1 + groupLength);
    const int tailFrom = thru + removed;
    const int newLength = p.StatementLength - removed + added;
    if (static_cast<int>(b.size()) <= newLength + 1) b.resize(newLength + 64);
    std::copy_backward(b.begin() + tailFrom, b.begin() + p.StatementLength + 1,
                       b.begin() + p.StatementLength + 1 - removed + added);
    const int step = to >= from ? 1 : -1;
    int w = thru;
    for (int n = 1; n < count; ++n) {
      b[w++] = {kCodeListSeparator, 0};
      b[w] = b[i];
      b[w].value = from + n * step;
      for (int k = 1; k <= pieces; ++k) b[w + k] = b[i + k];
      w += groupLength;
    }
    p.StatementLength = newLength;
    p.CloseBracket += added - removed;
    i = w - 1;
  }
}

// The extent of the list that a list kind at `i` heads: its open bracket at i + 1, and
// the index of its end-of-list record. 0 when the shape isn't a list.
int ListEnd(const AutoBetProgram& p, int i) {
  const auto& b = p.StatementBuffer;
  if (i + 1 >= p.CloseBracket || b[i + 1].code != kCodeOpenBracket) return 0;
  int depth = 0;
  for (int k = i + 1; k < p.CloseBracket; ++k) {
    if (b[k].code == kCodeOpenBracket) ++depth;
    if (b[k].code == kCodeCloseBracket && --depth == 0) {
      return (k + 1 < p.CloseBracket && b[k + 1].code == kCodeEndOfList) ? k + 1 : k;
    }
  }
  return 0;
}

// Evaluates an any/all list whose elements stand between `first` and `last` (exclusive of
// the brackets). `relational`/`side` give a comparison with `operand` (side -1: operand on
// the left, +1: on the right, 0: none).
bool EvaluateList(Game& g, int kind, int first, int last, int relational, int side, const TokenRecord& operand) {
  const auto& b = g.AutoBet.StatementBuffer;
  int qualifier = 0;
  TokenRecord qualifierValue;
  const bool any = kind == 2;
  for (int k = first; k <= last; ++k) {
    const TokenRecord& r = b[k];
    if (r.code == kCodeListSeparator) continue;
    if (IsRelational(r) && k + 1 <= last && IsValueRecord(b[k + 1])) {
      qualifier = r.code;
      qualifierValue = b[k + 1];
      ++k;
      continue;
    }
    if (!IsValueRecord(r)) continue;
    const bool qualifies = qualifier == 0 || CompareValues(g, r, qualifier, qualifierValue);
    bool pass;
    if (side == 0) {
      // On its own the list tests each element by the qualifier, or by its truth.
      pass = qualifier != 0 ? qualifies : Truthy(g, r);
    } else if (!qualifies) {
      continue;  // compared only when it passes the qualifier
    } else {
      pass = side < 0 ? CompareValues(g, operand, relational, r) : CompareValues(g, r, relational, operand);
    }
    if (any && pass) return true;
    if (!any && !pass) return false;
  }
  return !any;
}

void ListKinds(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  auto& b = p.StatementBuffer;
  for (int i = p.OpenBracket + 1; i < p.CloseBracket && p.RunError == 0; ++i) {
    if (b[i].code != kCodeListKind) continue;
    const int end = ListEnd(p, i);
    if (end == 0) continue;
    const int close = b[end].code == kCodeEndOfList ? end - 1 : end;
    bool holdsTarget = false;
    for (int k = i + 2; k < close; ++k) holdsTarget = holdsTarget || b[k].code == kCodeVariableTarget;
    if (holdsTarget) {
      i = end;
      continue;
    }
    const int kind = static_cast<int>(b[i].value);
    int from = i, to = end, side = 0, relational = 0;
    TokenRecord operand;
    if (i - 2 > p.OpenBracket && IsRelational(b[i - 1]) && IsValueRecord(b[i - 2])) {
      side = -1;
      relational = b[i - 1].code;
      operand = b[i - 2];
      from = i - 2;
    } else if (end + 2 < p.CloseBracket && IsRelational(b[end + 1]) && IsValueRecord(b[end + 2])) {
      side = 1;
      relational = b[end + 1].code;
      operand = b[end + 2];
      to = end + 2;
    }
    const bool result = EvaluateList(g, kind, i + 2, close - 1, relational, side, operand);
    b[from] = {kCodeNumber, result ? -1.0 : 0.0};
    DeleteRecords(p, from + 1, to - from);
    i = from;
  }
}

// Applies every operator class across (OpenBracket, CloseBracket), stopping at a fault.
void ReduceRange(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  auto& b = p.StatementBuffer;
  // One look at what the range holds, so that each class with nothing to do costs a bit
  // test: this runs for every statement of every script after every roll. Reads and calls
  // only ever leave values behind, so the operators found now are all there will be.
  std::uint64_t ops = 0;  // bit c - 50 for the operator codes 50..113
  bool calls = false, reads = false, lists = false;
  for (int i = p.OpenBracket + 1; i < p.CloseBracket; ++i) {
    const int c = b[i].code;
    if (c >= 50 && c < 114) {
      ops |= std::uint64_t{1} << (c - 50);
    } else if (c == kCodeFunction || c == kCodeFunctionTarget) {
      calls = true;
    } else if (c == kCodeVariable || c == kCodeVariableTarget) {
      reads = true;
    } else if (c == kCodeListKind) {
      lists = true;
    }
  }
  const auto has = [ops](int code) { return (ops >> (code - 50)) & 1; };
  constexpr std::uint64_t kRelational = 0x3F;  // 50..55
  // 1. Functions. The bet-family forms become the group of the variable they name, read
  // in 3 (or expanded by a range in 2).
  for (int i = p.OpenBracket + 1; calls && i < p.CloseBracket && p.RunError == 0; ++i) {
    if (b[i].code == kCodeFunction || b[i].code == kCodeFunctionTarget) {
      const bool target = b[i].code == kCodeFunctionTarget;
      const int f = static_cast<int>(b[i].value);
      if (target || IsBetFamilyFunction(f)) {
        ResolveTargetFunction(g, i);
        if (!target && b[i].code == kCodeVariableTarget) b[i].code = kCodeVariable;
        i += PiecesAfter(b[i]);
      } else {
        const int consumed = AssignFunction(g, i);
        DeleteRecords(p, i + 1, consumed);
      }
    }
  }
  if (p.RunError) return;
  reads = reads || calls;  // a bet-family call becomes a variable group
  // 2. Ranges.
  if (has(kCodeThru)) ExpandRanges(g);
  if (p.RunError) return;
  // 3. Variable reads; targets stay for the action.
  // One sweep that reads and closes up behind itself, rather than shifting the tail at
  // every read.
  if (reads) {
    int w = p.OpenBracket + 1;
    int i = w;
    while (i < p.CloseBracket) {
      int length = 1;
      if (b[i].code == kCodeVariable) {
        const int pieces = AssignVariable(g, i);
        if (p.RunError) return;
        b[w++] = b[i];
        i += 1 + pieces;
        continue;
      }
      if (b[i].code == kCodeVariableTarget) length += PiecesAfter(b[i]);
      for (int k = 0; k < length; ++k) b[w++] = b[i++];
    }
    const int removed = i - w;
    if (removed > 0) {
      for (int k = i; k <= p.StatementLength; ++k) b[w++] = b[k];
      p.StatementLength -= removed;
      p.CloseBracket -= removed;
    }
  }
  // 4. Power; a unary minus right behind it binds to its operand first.
  if (has(kCodePower)) {
    for (int i = p.OpenBracket + 2; i + 2 < p.CloseBracket; ++i) {
      if (b[i].code == kCodePower && b[i + 1].code == kCodeMinus && IsValueRecord(b[i + 2])) {
        b[i + 1] = {kCodeNumber, -NumberOf(g, b[i + 2])};
        DeleteRecords(p, i + 2, 1);
      }
    }
    Arithmetic(g, {kCodePower});
  }
  // 5. Unary minus.
  if (p.RunError == 0 && has(kCodeMinus)) UnaryPass(g, kCodeMinus);
  // 6, 7, 8. Multiply and divide; integer divide; modulus; add and subtract.
  if (p.RunError == 0 && (has(kCodeTimes) || has(kCodeDivide))) Arithmetic(g, {kCodeTimes, kCodeDivide});
  if (p.RunError == 0 && has(kCodeIntegerDivide)) Arithmetic(g, {kCodeIntegerDivide});
  if (p.RunError == 0 && has(kCodeMod)) Arithmetic(g, {kCodeMod});
  if (p.RunError == 0 && (has(kCodePlus) || has(kCodeMinus))) Arithmetic(g, {kCodePlus, kCodeMinus});
  if (p.RunError) return;
  // 9. Concatenation.
  if (has(kCodeConcatenate))
    BinaryPass(g, {kCodeConcatenate}, [&](int, TokenRecord& left, const TokenRecord& right) {
      std::string text = TextOf(g, left);
      text += TextOf(g, right);
      left = {kCodeString, static_cast<double>(NewRunString(p, std::move(text)))};
      return true;
    });
  // 10. Relational operators; a list on either side waits for 11.
  if (ops & kRelational)
    BinaryPass(g, {50, 51, 52, 53, 54, 55}, [&](int code, TokenRecord& left, const TokenRecord& right) {
      left = {kCodeNumber, CompareValues(g, left, code, right) ? -1.0 : 0.0};
      return true;
    });
  // 11. any / all.
  if (lists) ListKinds(g);
  // 12. not; and; or; xor.
  if (has(kCodeNot)) UnaryPass(g, kCodeNot);
  for (int code : {kCodeAnd, kCodeOr, kCodeXor}) {
    if (!has(code)) continue;
    BinaryPass(g, {code}, [&](int c, TokenRecord& left, const TokenRecord& right) {
      const std::int32_t a = LogicalOf(g, left), r = LogicalOf(g, right);
      left = {kCodeNumber, static_cast<double>(c == kCodeAnd ? (a & r) : c == kCodeOr ? (a | r) : (a ^ r))};
      return true;
    });
  }
}

}  // namespace

void ReduceStatement(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  auto& b = p.StatementBuffer;
  for (;;) {
    // The innermost pair not yet handled: the last open before the first close.
    int open = 0, close = 0;
    for (int i = 1; i <= p.StatementLength; ++i) {
      if (b[i].value != 0) continue;  // a pair already reduced keeps value 1
      if (b[i].code == kCodeOpenBracket) open = i;
      if (b[i].code == kCodeCloseBracket) {
        close = i;
        break;
      }
    }
    if (open == 0 || close == 0 || close < open) break;
    p.OpenBracket = open;
    p.CloseBracket = close;
    ReduceRange(g);
    if (p.RunError) return;
    close = p.CloseBracket;
    const int owner = open > 1 ? b[open - 1].code : 0;
    bool holdsTarget = false;
    for (int k = open + 1; k < close; ++k) holdsTarget = holdsTarget || b[k].code == kCodeVariableTarget;
    const bool owned = owner == kCodeFunction || owner == kCodeFunctionTarget || owner == kCodeListKind;
    if (!owned && (holdsTarget || (close == open + 2 && IsValueRecord(b[open + 1])))) {
      // Grouping brackets: a value, or targets that the action walks as a list.
      DeleteRecords(p, close, 1);
      DeleteRecords(p, open, 1);
    } else {
      b[open].value = 1;
      b[close].value = 1;
    }
  }
  p.OpenBracket = 0;
  p.CloseBracket = p.StatementLength + 1;
  ReduceRange(g);
}

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

void Evaluate(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  ReduceStatement(g);
  if (p.InCondition) {
    if (p.RunError) {
      p.ConditionResult = false;
      RecordFault(g);
      if (Stepping(g)) Step(g, "Unable to evaluate.", RunErrorText(p.RunError));
      return;
    }
    if (p.StatementLength >= 1 && Truthy(g, p.StatementBuffer[1])) p.ConditionResult = true;
    return;
  }
  if (p.RunError == 0) {
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

void ExecuteStatement(Game& g) {
  AutoBetProgram& p = g.AutoBet;
  p.RunError = 0;
  if (!p.ScriptRunning) return;
  const TokenRecord& first = p.StatementBuffer[1];
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
      if (p.ReturnStack.empty()) p.ReturnStack.assign(21, 0);
      if (p.ReturnStack[0] + 1 >= static_cast<int>(p.ReturnStack.size())) {
        p.ReturnStack.resize(p.ReturnStack.size() + 20, 0);
      }
      p.ReturnStack[++p.ReturnStack[0]] = p.InstructionPointer;
      Step(g, "A jump will be made to the designated subroutine.");
      Jump(p, p.StatementBuffer[2].value);
      Step(g, "Label.");
      return;
    case kCodeGoto:
      Step(g, "A jump will be made to the designated label.");
      Jump(p, p.StatementBuffer[2].value);
      Step(g, "Label.");
      return;
    case kCodeReturn:
      Step(g, "Return to place where subroutine was initiated.");
      if (!p.ReturnStack.empty() && p.ReturnStack[0] > 0) p.InstructionPointer = p.ReturnStack[p.ReturnStack[0]--];
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
  try {
    Evaluate(g);
  } catch (const std::exception& e) {
    p.RunError = 10000;
    RecordFault(g);
    if (g.Ui) Tell(g, ErrorReport(e.what(), 10000, "RunAutoBet"), "DiceHall", 0, msg::kOk);
  }
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
  const std::uint32_t start = g.Time ? g.Time->TickMs() : 0;
  const std::size_t stringsMark = p.ProgramStrings.size();
  const auto& records = p.ProgramRecords;
  const int last = static_cast<int>(records.size()) - 1;
  auto& buffer = p.StatementBuffer;
  // 2.
  p.InstructionPointer = 0;
  std::int64_t executed = 0;
  std::int32_t restarts = 0;
  for (;;) {
    // 3. The statement runs to the next marker; the pointer stays on that marker.
    p.StatementStart = p.InstructionPointer;
    int end = p.InstructionPointer;
    // A script header stands alone: the next seat's script follows the last statement of
    // the one before with no marker between them.
    while (end <= last && records[end].code < kCodeStatement &&
           (records[end].code != kCodeScriptHeader || end == p.InstructionPointer)) {
      ++end;
    }
    const int length = end - p.InstructionPointer;
    if (length + 2 >= static_cast<int>(buffer.size())) buffer.resize(static_cast<std::size_t>(length) * 2 + 64);
    std::copy(records.begin() + p.InstructionPointer, records.begin() + end, buffer.begin() + 1);
    p.StatementLength = length;
    // The pointer stays on the marker behind the statement; before a header, one short of
    // it, so that the cycle's step comes to the header next.
    p.InstructionPointer = end <= last && records[end].code == kCodeScriptHeader ? end - 1 : end;
    if (length > 0) ExecuteStatement(g);
    if (!p.ScriptRunning) break;
    if (++executed > p.MaxCycleStatements || (p.InstructionPointer < 0 && ++restarts > p.MaxCycleRestarts)) {
      StopRunawayCycle(g);
      break;
    }
    // 4. A turn of the message loop; in Hyper-Drive only now and then, as between rolls.
    if (g.Ui && (!g.SilentMode || (++g.Auto.YieldCounter & 1023) == 0)) g.Ui->Yield();
    if (p.InstructionPointer >= last) break;
    ++p.InstructionPointer;
  }
  // 5. Strings made in the cycle go with it.
  p.ProgramStrings.resize(stringsMark);
  // 6. Long enough for the status text to be read.
  if (!hyper && !g.SilentMode && g.Time && g.Ui) {
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
