#include "autobet/reduction.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "autobet/actions.h"
#include "autobet/statement_buffer.h"
#include "autobet/variables.h"
#include "engine/game_state.h"

// ---- The operations, shared by the live reduction and by plans.

namespace {

bool IsBetFamilyFunction(int f) { return (f >= 1 && f <= 11) || f == 21 || f == 800; }

template <class R>
bool IsValue(const R& r) {
  return r.code == kCodeNumber || r.code == kCodeString;
}
template <class R>
bool IsRelationalCode(const R& r) {
  return r.code >= 50 && r.code <= 55;
}
// The head of a reference group, a variable or a target: a value fills in its variable.
template <class R>
bool IsGroupHead(const R& r) {
  return r.code == kCodeVariable || r.code == kCodeVariableTarget;
}

// A truth value as the logical operators use it: a rounded 32-bit integer. The truth
// values of comparisons (-1 and 0) and other whole numbers need no rounding.
std::int32_t LogicalValue(double x) {
  if (x >= -2147483648.0 && x <= 2147483647.0) {
    const auto whole = static_cast<std::int32_t>(x);
    if (whole == x) return whole;
  }
  const double v = std::nearbyint(x);
  if (v >= 2147483647.0) return INT32_MAX;
  if (v <= -2147483648.0) return INT32_MIN;
  return static_cast<std::int32_t>(v);
}
std::int32_t LogicalOf(const Game& g, const TokenRecord& r) { return LogicalValue(NumberOf(g, r)); }

// Each binary operator writes its result to `out` (which may be the left operand);
// false, with `out` left as it was, when it faulted.
bool ApplyArithmetic(Game& g, int code, const TokenRecord& left, const TokenRecord& right, TokenRecord& out) {
  AutoBetProgram& p = g.AutoBet;
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
  out = {kCodeNumber, r};
  return true;
}

void ApplyConcatenation(Game& g, const TokenRecord& left, const TokenRecord& right, TokenRecord& out) {
  std::string text = TextOf(g, left);
  text += TextOf(g, right);
  out = {kCodeString, static_cast<double>(NewRunString(g.AutoBet, std::move(text)))};
}

void ApplyRelation(Game& g, int code, const TokenRecord& left, const TokenRecord& right, TokenRecord& out) {
  const bool holds = CompareValues(g, left, code, right);
  out = {kCodeNumber, holds ? -1.0 : 0.0};
}

void ApplyLogic(Game& g, int code, const TokenRecord& left, const TokenRecord& right, TokenRecord& out) {
  const std::int32_t a = LogicalOf(g, left), r = LogicalOf(g, right);
  out = {kCodeNumber, static_cast<double>(code == kCodeAnd ? (a & r) : code == kCodeOr ? (a | r) : (a ^ r))};
}

TokenRecord Negated(const Game& g, const TokenRecord& r) { return {kCodeNumber, -NumberOf(g, r)}; }
TokenRecord Inverted(const Game& g, const TokenRecord& r) {
  return {kCodeNumber, static_cast<double>(~LogicalOf(g, r))};
}

// Evaluates an any/all list whose elements stand between `first` and `last` of the buffer
// (exclusive of the brackets). `relational`/`side` give a comparison with `operand` (side
// -1: operand on the left, +1: on the right, 0: none).
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

// ---- The reduction, over any machine: the live buffer, or a plan being made.
//
// A machine M has records (M::Rec, with a code and a value) at 1..Length(), the range being
// reduced (Open(), Close()), the fault (Error()), the edits of the buffer, and one call per
// operation; the reduction decides from the records' codes alone which operation comes
// next and where.

template <class M>
class Reduction {
 public:
  explicit Reduction(M& m) : m_(m) {}

  void Statement() {
    for (;;) {
      // The innermost pair not yet handled: the last open before the first close.
      int open = 0, close = 0;
      for (int i = 1; i <= m_.Length(); ++i) {
        if (m_.B(i).value != 0) continue;  // a pair already reduced keeps value 1
        if (m_.B(i).code == kCodeOpenBracket) open = i;
        if (m_.B(i).code == kCodeCloseBracket) {
          close = i;
          break;
        }
      }
      if (open == 0 || close == 0 || close < open) break;
      m_.Open() = open;
      m_.Close() = close;
      Range();
      if (m_.Error()) return;
      close = m_.Close();
      const int owner = open > 1 ? m_.B(open - 1).code : 0;
      bool holdsTarget = false;
      for (int k = open + 1; k < close; ++k) holdsTarget = holdsTarget || m_.B(k).code == kCodeVariableTarget;
      const bool owned = owner == kCodeFunction || owner == kCodeFunctionTarget || owner == kCodeListKind;
      if (!owned && (holdsTarget || (close == open + 2 && IsValue(m_.B(open + 1))))) {
        // Grouping brackets: a value, or targets that the action walks as a list.
        m_.Delete(close, 1);
        m_.Delete(open, 1);
      } else {
        m_.B(open).value = 1;
        m_.B(close).value = 1;
      }
    }
    m_.Open() = 0;
    m_.Close() = m_.Length() + 1;
    Range();
  }

 private:
  using Rec = typename M::Rec;

  // Records that belong to the reference group starting at `i` (0 for anything else).
  int PiecesAfter(const Rec& r) { return IsGroupHead(r) ? GroupSize(static_cast<int>(r.value)) : 0; }

  // The binary operators of one class, left to right across the range.
  template <class Apply>
  void BinaryPass(std::initializer_list<int> codes, Apply apply) {
    for (int i = m_.Open() + 2; i < m_.Close() - 1 && m_.Error() == 0;) {
      bool match = false;
      for (int c : codes) match = match || m_.B(i).code == c;
      if (match && IsValue(m_.B(i - 1)) && IsValue(m_.B(i + 1))) {
        if (apply(m_.B(i).code, i - 1, i + 1)) {
          m_.Delete(i, 2);
          continue;  // the result may be the left operand of the next operator
        }
        return;
      }
      ++i;
    }
  }

  void Arithmetic(std::initializer_list<int> codes) {
    BinaryPass(codes, [&](int code, int left, int right) { return m_.Arithmetic(code, left, right); });
  }

  // Unary operators (minus, not) right to left, so that chains apply innermost first.
  void UnaryPass(int code) {
    for (int i = m_.Close() - 2; i > m_.Open(); --i) {
      if (m_.B(i).code != code || !IsValue(m_.B(i + 1))) continue;
      if (code == kCodeMinus && i - 1 > m_.Open() && IsValue(m_.B(i - 1))) continue;  // a subtraction
      if (code == kCodeMinus) m_.Negate(i, i + 1);
      else m_.Invert(i, i + 1);
      m_.Delete(i + 1, 1);
    }
  }

  // Ranges: `a thru b` of one family becomes a, a+1 .. b (or down), each a copy of a's group.
  void ExpandRanges() {
    for (int i = m_.Open() + 1; i < m_.Close() && m_.Error() == 0; ++i) {
      const int pieces = PiecesAfter(m_.B(i));
      if (pieces == 0 && !IsGroupHead(m_.B(i))) continue;
      const int thru = i + 1 + pieces;
      const int right = thru + 1;
      if (thru >= m_.Close() || m_.B(thru).code != kCodeThru || right >= m_.Close()) {
        i += pieces;
        continue;
      }
      if (m_.B(right).code != kCodeVariable && m_.B(right).code != kCodeVariableTarget) {
        i += pieces;
        continue;
      }
      // The ends must be known now: a group that a function named by a value has no plan.
      if (!m_.Known(i) || !m_.Known(right)) return;
      const int rightPieces = PiecesAfter(m_.B(right));
      for (int k = 1; k <= pieces && k <= rightPieces; ++k) {
        const Rec& l = m_.B(i + k);
        const Rec& r = m_.B(right + k);
        if (l.code != r.code || l.value == r.value) continue;
        m_.SetError(l.code == kCodePlayer ? 51 : l.code == kCodeTime ? 52 : 53);
        return;
      }
      const int from = static_cast<int>(m_.B(i).value), to = static_cast<int>(m_.B(right).value);
      const int count = std::abs(to - from) + 1;
      const int groupLength = 1 + pieces;
      // The right group and the thru go; count - 1 commas and copies come in their place.
      const int removed = 1 + 1 + rightPieces;
      const int added = (count - 1) * (1 + groupLength);
      const int tailFrom = thru + removed;
      const int newLength = m_.Length() - removed + added;
      m_.Reserve(newLength);
      m_.Move(tailFrom, m_.Length() + 1, tailFrom - removed + added);
      const int step = to >= from ? 1 : -1;
      int w = thru;
      for (int n = 1; n < count; ++n) {
        m_.B(w++) = Rec{kCodeListSeparator, 0};
        m_.B(w) = m_.B(i);
        m_.B(w).value = from + n * step;
        for (int k = 1; k <= pieces; ++k) m_.B(w + k) = m_.B(i + k);
        w += groupLength;
      }
      m_.Length() = newLength;
      m_.Close() += added - removed;
      i = w - 1;
    }
  }

  // The extent of the list that a list kind at `i` heads: its open bracket at i + 1, and
  // the index of its end-of-list record. 0 when the shape isn't a list.
  int ListEnd(int i) {
    if (i + 1 >= m_.Close() || m_.B(i + 1).code != kCodeOpenBracket) return 0;
    int depth = 0;
    for (int k = i + 1; k < m_.Close(); ++k) {
      if (m_.B(k).code == kCodeOpenBracket) ++depth;
      if (m_.B(k).code == kCodeCloseBracket && --depth == 0) {
        return (k + 1 < m_.Close() && m_.B(k + 1).code == kCodeEndOfList) ? k + 1 : k;
      }
    }
    return 0;
  }

  void ListKinds() {
    for (int i = m_.Open() + 1; i < m_.Close() && m_.Error() == 0; ++i) {
      if (m_.B(i).code != kCodeListKind) continue;
      const int end = ListEnd(i);
      if (end == 0) continue;
      const int close = m_.B(end).code == kCodeEndOfList ? end - 1 : end;
      bool holdsTarget = false;
      for (int k = i + 2; k < close; ++k) holdsTarget = holdsTarget || m_.B(k).code == kCodeVariableTarget;
      if (holdsTarget) {
        i = end;
        continue;
      }
      const int kind = static_cast<int>(m_.B(i).value);
      int from = i, to = end, side = 0, relational = 0, operand = 0;
      if (i - 2 > m_.Open() && IsRelationalCode(m_.B(i - 1)) && IsValue(m_.B(i - 2))) {
        side = -1;
        relational = m_.B(i - 1).code;
        operand = i - 2;
        from = i - 2;
      } else if (end + 2 < m_.Close() && IsRelationalCode(m_.B(end + 1)) && IsValue(m_.B(end + 2))) {
        side = 1;
        relational = m_.B(end + 1).code;
        operand = end + 2;
        to = end + 2;
      }
      m_.List(from, kind, i + 2, close - 1, relational, side, operand);
      m_.Delete(from + 1, to - from);
      i = from;
    }
  }

  // 1. Functions across (Open, Close). The bet-family forms become the group of the
  // variable they name, read in 3 (or expanded by a range in 2).
  void Calls() {
    for (int i = m_.Open() + 1; i < m_.Close() && m_.Error() == 0; ++i) {
      if (m_.B(i).code == kCodeFunction || m_.B(i).code == kCodeFunctionTarget) {
        const bool target = m_.B(i).code == kCodeFunctionTarget;
        const int f = static_cast<int>(m_.B(i).value);
        if (target || IsBetFamilyFunction(f)) {
          m_.ResolveTarget(i);
          if (!target && m_.B(i).code == kCodeVariableTarget) m_.B(i).code = kCodeVariable;
          i += PiecesAfter(m_.B(i));
        } else {
          const int consumed = m_.Call(i);
          m_.Delete(i + 1, consumed);
        }
      }
    }
  }

  // 3. Variable reads across (Open, Close); targets stay for the action. One sweep that
  // reads and closes up behind itself, rather than shifting the tail at every read.
  void Reads() {
    int w = m_.Open() + 1;
    int i = w;
    while (i < m_.Close()) {
      int length = 1;
      if (m_.B(i).code == kCodeVariable) {
        const int pieces = m_.Read(i);
        if (m_.Error()) return;
        m_.B(w++) = m_.B(i);
        i += 1 + pieces;
        continue;
      }
      if (m_.B(i).code == kCodeVariableTarget) length += PiecesAfter(m_.B(i));
      for (int k = 0; k < length; ++k) m_.B(w++) = m_.B(i++);
    }
    const int removed = i - w;
    if (removed > 0) {
      for (int k = i; k <= m_.Length(); ++k) m_.B(w++) = m_.B(k);
      m_.Length() -= removed;
      m_.Close() -= removed;
    }
  }

  // Applies every operator class across (Open, Close), stopping at a fault.
  void Range() {
    // One look at what the range holds, so that each class with nothing to do costs a bit
    // test. Reads and calls only ever leave values behind, so the operators found now are
    // all there will be.
    std::uint64_t ops = 0;  // bit c - 50 for the operator codes 50..113
    bool calls = false, reads = false, lists = false;
    for (int i = m_.Open() + 1; i < m_.Close(); ++i) {
      const int c = m_.B(i).code;
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
    // 1. Functions.
    if (calls) Calls();
    if (m_.Error()) return;
    reads = reads || calls;  // a bet-family call becomes a variable group
    // 2. Ranges.
    if (has(kCodeThru)) ExpandRanges();
    if (m_.Error()) return;
    // 3. Variable reads.
    if (reads) Reads();
    if (m_.Error()) return;
    // 4. Power; a unary minus right behind it binds to its operand first.
    if (has(kCodePower)) {
      for (int i = m_.Open() + 2; i + 2 < m_.Close(); ++i) {
        if (m_.B(i).code == kCodePower && m_.B(i + 1).code == kCodeMinus && IsValue(m_.B(i + 2))) {
          m_.Negate(i + 1, i + 2);
          m_.Delete(i + 2, 1);
        }
      }
      Arithmetic({kCodePower});
    }
    // 5. Unary minus.
    if (m_.Error() == 0 && has(kCodeMinus)) UnaryPass(kCodeMinus);
    // 6, 7, 8. Multiply and divide; integer divide; modulus; add and subtract.
    if (m_.Error() == 0 && (has(kCodeTimes) || has(kCodeDivide))) Arithmetic({kCodeTimes, kCodeDivide});
    if (m_.Error() == 0 && has(kCodeIntegerDivide)) Arithmetic({kCodeIntegerDivide});
    if (m_.Error() == 0 && has(kCodeMod)) Arithmetic({kCodeMod});
    if (m_.Error() == 0 && (has(kCodePlus) || has(kCodeMinus))) Arithmetic({kCodePlus, kCodeMinus});
    if (m_.Error()) return;
    // 9. Concatenation.
    if (has(kCodeConcatenate))
      BinaryPass({kCodeConcatenate}, [&](int, int left, int right) {
        m_.Concatenate(left, right);
        return true;
      });
    // 10. Relational operators; a list on either side waits for 11.
    if (ops & kRelational)
      BinaryPass({50, 51, 52, 53, 54, 55}, [&](int code, int left, int right) {
        m_.Relate(code, left, right);
        return true;
      });
    // 11. any / all.
    if (lists) ListKinds();
    // 12. not; and; or; xor.
    if (has(kCodeNot)) UnaryPass(kCodeNot);
    for (int code : {kCodeAnd, kCodeOr, kCodeXor}) {
      if (!has(code)) continue;
      BinaryPass({code}, [&](int c, int left, int right) {
        m_.Logic(c, left, right);
        return true;
      });
    }
  }

  M& m_;
};

// The machine of the live reduction: the statement buffer itself.
class LiveMachine {
 public:
  using Rec = TokenRecord;
  explicit LiveMachine(Game& g) : g_(g), p_(g.AutoBet) {}

  Rec& B(int i) { return p_.StatementBuffer[static_cast<std::size_t>(i)]; }
  int& Length() { return p_.StatementLength; }
  int& Open() { return p_.OpenBracket; }
  int& Close() { return p_.CloseBracket; }
  int Error() const { return p_.RunError; }
  void SetError(int code) { p_.RunError = code; }
  bool Known(int) const { return true; }

  void Delete(int position, int count) { DeleteRecords(p_, position, count); }
  void Reserve(int length) {
    auto& b = p_.StatementBuffer;
    if (static_cast<int>(b.size()) <= length + 1) b.resize(static_cast<std::size_t>(length) + 64);
  }
  // Records [from, to) to `at`, overlapping or not.
  void Move(int from, int to, int at) {
    if (to > from) std::memmove(&B(at), &B(from), sizeof(Rec) * static_cast<std::size_t>(to - from));
  }

  int Call(int i) { return AssignFunction(g_, i); }
  void ResolveTarget(int i) { ResolveTargetFunction(g_, i); }
  int Read(int i) { return AssignVariable(g_, i); }
  bool Arithmetic(int code, int left, int right) { return ApplyArithmetic(g_, code, B(left), B(right), B(left)); }
  void Concatenate(int left, int right) { ApplyConcatenation(g_, B(left), B(right), B(left)); }
  void Relate(int code, int left, int right) { ApplyRelation(g_, code, B(left), B(right), B(left)); }
  void Logic(int code, int left, int right) { ApplyLogic(g_, code, B(left), B(right), B(left)); }
  void Negate(int at, int operand) { B(at) = Negated(g_, B(operand)); }
  void Invert(int at, int operand) { B(at) = Inverted(g_, B(operand)); }
  void List(int at, int kind, int first, int last, int relational, int side, int operand) {
    const TokenRecord value = operand != 0 ? B(operand) : TokenRecord{};
    B(at) = {kCodeNumber, EvaluateList(g_, kind, first, last, relational, side, value) ? -1.0 : 0.0};
  }

 private:
  Game& g_;
  AutoBetProgram& p_;
};

}  // namespace

bool TruthyText(const Game& g, const TokenRecord& r) {
  if (r.code == kCodeNumber) return r.value != 0;
  if (r.code == kCodeString) {
    std::string scratch;
    return StringView(g, r.code, r.value, scratch).find_first_not_of(" \t") != std::string_view::npos;
  }
  return false;
}

void ReduceStatement(Game& g) {
  LiveMachine m(g);
  Reduction<LiveMachine>(m).Statement();
}

// ---- Plans.

// A record of a step's template or of the reduced statement: as it stands, or (slot 0 and
// up) the value a step computes, or a group whose variable a step names.
struct PlanItem {
  TokenRecord record;
  std::int32_t slot = -1;
};

struct PlanStep {
  enum Kind : std::uint8_t {
    kRead,         // a group read into `out`
    kReadAmount,   // the same for a bet's amount or a checkstack: row `code`, player piece `a`
    kReadFact,     // the same for a table fact: variable `code`, player piece `a`
    kReadBetRow,   // the same for a bet's statistic that can't fault (IsBetRowRead), pieces[b]
    kReadNamed,    // the same for a group whose variable a call named: variable in slot `a`
    kCall,         // a function call, its records the template [a, a + n)
    kTarget,       // a bet or checkstack named by a number: its group head into `out`
    kTargetNamed,  // the same for a call of one value: form `code`, argument slot `a`, `n` pieces
    kArithmetic,   // out = a (code) b
    kConcatenate,  // out = a & b
    kRelation,     // out = a (code) b
    kLogic,        // out = a (code) b
    kNegate,       // out = -a
    kInvert,       // out = not a
    kList,         // out = the list kind `code` over the template [a, a + n)
    kNumberList,   // out = list function `code` of the plan's list arguments [a, a + n)
    kFault,        // the statement faults with `code`
  };
  // Small, so that the steps a statement runs share few cache lines.
  Kind kind = kFault;
  std::int8_t side = 0;  // lists: the comparison with operand slot `b`
  std::int16_t relational = 0;
  std::int32_t code = 0;
  std::int32_t out = 0;
  std::int32_t a = 0, b = 0, n = 0;  // kRead, kReadNamed, kReadBetRow: the group's pieces are the plan's pieces[b]
  std::int32_t filled = -1;          // its template as records to fill (kCall, kTarget, kList, kNumberList)
};

// An argument of a list function that runs from its slots: the slot, and the qualifier in
// force (a relational code, 0 for none) with its operand's slot.
struct ListArgument {
  std::int32_t slot = 0;
  std::int32_t qualifier = 0, operand = 0;
};

// Records as a plan writes them to the buffer: those that stand as they are, and where
// this run's values go.
struct FilledRecords {
  struct Fill {
    std::int32_t at = 0, slot = 0;
    bool valueOnly = false;  // a group head: its code stays, the variable comes from the slot
  };
  std::vector<TokenRecord> records;
  std::vector<Fill> fills;
};

struct StatementPlan {
  std::vector<PlanStep> steps;
  std::vector<ReferencePieces> pieces;  // of the groups the steps read
  std::vector<PlanItem> items;          // the templates of the steps
  std::vector<PlanItem> outcome;        // the buffer after reduction, from 1
  std::int32_t openBracket = 0, closeBracket = 0;
  // The constants of the statement, then what the steps compute; the second part is
  // written afresh by every run.
  mutable std::vector<TokenRecord> values;
  // An assignment to one target named outright: the target read into its parts, and
  // where its value stands in the outcome (0: the statement is something else).
  ReferencePieces assignTo;
  std::int32_t assignedValue = 0;
  // The outcome and the steps' templates as records to fill.
  FilledRecords outcomeFilled;
  std::vector<FilledRecords> templates;
  // The arguments of the kNumberList steps.
  std::vector<ListArgument> listArguments;
  // An action's target list, when every target in it is named outright.
  bool listed = false;
  TargetList targets;
  // The slot whose value is the first record of the outcome, when it is one (-1: none).
  std::int32_t truthSlot = -1;
  // A condition of a shape that scripts test most, run as a condition without the loop of
  // steps: a table fact on its own, or an amount compared with a number.
  // Or a condition on numbers alone: reads (of groups, and of the groups that numbers
  // name), the statement's numbers, and the operators that can't fault on numbers. Its
  // steps run on a file of numbers (`numbers`, the constants in place) without the
  // records' codes: the reads first, in order, as only they can fault; then the rest
  // (`numberSteps`).
  enum class Shape : std::uint8_t { kSteps, kFact, kAmountAgainstNumber, kNumbers } shape = Shape::kSteps;
  std::vector<PlanStep> numberSteps;
  std::size_t numberReads = 0;
  mutable std::vector<double> numbers;
};

namespace {

PlanStep MakeStep(PlanStep::Kind kind, int code = 0) {
  PlanStep s;
  s.kind = kind;
  s.code = code;
  return s;
}

// A record of the reduction that makes a plan: a value's slot, or the slot that will
// hold the variable of a group head that a call named; -1 for a record as it stands.
struct PlanRecord {
  std::int32_t code = 0;
  double value = 0;
  std::int32_t slot = -1;
};

// A group head that a call named gets this variable while the plan is made: one with as
// many pieces, so that the reduction steps over them as it will at run time.
int StandInVariable(int pieces) {
  static constexpr int kByPieces[5] = {5000, 200, 1000, 2000, 1};
  return kByPieces[std::clamp(pieces, 0, 4)];
}

// The machine that makes a plan: it reduces a copy of the statement in which every value
// is a slot, and writes down each operation where the live reduction would perform it.
class PlanMachine {
 public:
  using Rec = PlanRecord;
  PlanMachine(std::span<const TokenRecord> statement, StatementPlan& plan) : plan_(plan) {
    b_.resize(statement.size() + 64);
    for (std::size_t i = 0; i < statement.size(); ++i) {
      const TokenRecord& r = statement[i];
      b_[i + 1] = {r.code, r.value, IsValue(r) ? Constant(r) : -1};
    }
    length_ = static_cast<int>(statement.size());
  }

  // The plan, or false when the statement's course depends on a value.
  bool Finish() {
    if (unplannable_) return false;
    plan_.outcome.clear();
    for (int i = 1; i <= length_; ++i) plan_.outcome.push_back(Item(b_[static_cast<std::size_t>(i)]));
    plan_.openBracket = open_;
    plan_.closeBracket = close_;
    return true;
  }

  Rec& B(int i) { return b_[static_cast<std::size_t>(i)]; }
  int& Length() { return length_; }
  int& Open() { return open_; }
  int& Close() { return close_; }
  int Error() const { return error_; }
  void SetError(int code) {
    if (error_ == 0) Add(MakeStep(PlanStep::kFault, code));
    error_ = code;
  }
  bool Known(int i) {
    if (b_[static_cast<std::size_t>(i)].slot < 0) return true;
    Unplannable();
    return false;
  }

  void Delete(int position, int count) {
    if (count <= 0) return;
    for (int i = position; i + count <= length_; ++i) B(i) = B(i + count);
    length_ -= count;
    if (close_ > position) close_ -= count;
  }
  void Reserve(int length) {
    if (static_cast<int>(b_.size()) <= length + 1) b_.resize(static_cast<std::size_t>(length) + 64);
  }
  void Move(int from, int to, int at) {
    if (to > from) std::memmove(&B(at), &B(from), sizeof(Rec) * static_cast<std::size_t>(to - from));
  }

  int Call(int i) {
    const CallExtent c = Extent(i);
    if (c.close == 0) {
      SetError(10000);  // as AssignFunction finds it
      return 0;
    }
    PlanStep s = MakeStep(PlanStep::kCall);
    s.a = Template(i, i + c.consumed, s.n);
    s.out = Result(i);
    Add(s);
    return c.consumed;
  }

  void ResolveTarget(int i) {
    const CallExtent c = Extent(i);
    const int f = static_cast<int>(B(i).value);
    const bool numbered = (f >= 1 && f <= 11) || f == 21 || f == 800;
    if (c.close == 0 || !numbered) {
      SetError(10000);  // as ResolveTargetFunction finds it
      return;
    }
    PlanStep s = MakeStep(PlanStep::kTarget);
    if (c.close == i + 3 && IsValue(B(i + 2))) {
      // One value between the brackets: the call's argument.
      s = MakeStep(PlanStep::kTargetNamed, f);
      s.a = B(i + 2).slot;
      s.n = c.pieces;
    } else {
      s.a = Template(i, c.close + c.pieces, s.n);
    }
    s.out = NewSlot();
    Add(s);
    // The group's variable comes at run time; the bracket and its number go.
    B(i) = {kCodeVariableTarget, static_cast<double>(StandInVariable(c.pieces)), s.out};
    Delete(i + 1, c.close - i);
  }

  int Read(int i) {
    const Rec head = B(i);
    const int size = GroupSize(static_cast<int>(head.value));
    const int pieces = std::min(size, std::max(0, length_ - i));
    // A group cut short by the end of the statement would read past it.
    if (pieces < size) {
      Unplannable();
      return pieces;
    }
    PlanStep s = MakeStep(head.slot < 0 ? PlanStep::kRead : PlanStep::kReadNamed);
    // The pieces are read now; a named group's variable comes at run time, with as many
    // pieces as the stand-in that is there now.
    std::vector<TokenRecord> group;
    for (int k = 0; k <= pieces; ++k) group.push_back({B(i + k).code, B(i + k).value});
    const ReferencePieces r = ReadPieces(group.data());
    if (head.slot < 0 && (IsAmountRead(r) || r.v >= 5000)) {
      s = MakeStep(r.v >= 5000 ? PlanStep::kReadFact : PlanStep::kReadAmount, r.v);
      s.a = r.piece;
    } else {
      if (head.slot >= 0) s.a = head.slot;
      else if (IsBetRowRead(r)) s.kind = PlanStep::kReadBetRow;
      s.b = static_cast<std::int32_t>(plan_.pieces.size());
      plan_.pieces.push_back(r);
    }
    s.out = Result(i);
    Add(s);
    return pieces;
  }

  bool Arithmetic(int code, int left, int right) {
    Binary(PlanStep::kArithmetic, code, left, right);
    return true;  // a division by zero at run time stops the plan there
  }
  void Concatenate(int left, int right) { Binary(PlanStep::kConcatenate, 0, left, right); }
  void Relate(int code, int left, int right) { Binary(PlanStep::kRelation, code, left, right); }
  void Logic(int code, int left, int right) { Binary(PlanStep::kLogic, code, left, right); }
  void Negate(int at, int operand) { Unary(PlanStep::kNegate, at, operand); }
  void Invert(int at, int operand) { Unary(PlanStep::kInvert, at, operand); }
  void List(int at, int kind, int first, int last, int relational, int side, int operand) {
    PlanStep s = MakeStep(PlanStep::kList, kind);
    s.a = Template(first, last, s.n);
    s.relational = static_cast<std::int16_t>(relational);
    s.side = static_cast<std::int8_t>(side);
    s.b = operand != 0 ? B(operand).slot : -1;
    s.out = Result(at);
    Add(s);
  }

 private:
  int NewSlot() {
    plan_.values.push_back({kCodeNumber, 0});
    return static_cast<int>(plan_.values.size()) - 1;
  }
  int Constant(const TokenRecord& r) {
    plan_.values.push_back(r);
    return static_cast<int>(plan_.values.size()) - 1;
  }
  // A new value at `i`: a number as far as the reduction's course goes (it asks only
  // whether a record is a value).
  int Result(int i) {
    const int slot = NewSlot();
    B(i) = {kCodeNumber, 0, slot};
    return slot;
  }
  void Add(PlanStep s) { plan_.steps.push_back(s); }
  void Unplannable() {
    unplannable_ = true;
    if (error_ == 0) error_ = -1;  // the reduction stops at once
  }
  PlanItem Item(const Rec& r) const { return {{r.code, r.value}, r.slot}; }
  // Records [first, last] as a template: where it starts among the items; `n` its length.
  int Template(int first, int last, std::int32_t& n) {
    const int at = static_cast<int>(plan_.items.size());
    for (int k = first; k <= last; ++k) plan_.items.push_back(Item(B(k)));
    n = std::max(0, last - first + 1);
    return at;
  }
  void Binary(PlanStep::Kind kind, int code, int left, int right) {
    PlanStep s = MakeStep(kind, code);
    s.a = B(left).slot;
    s.b = B(right).slot;
    s.out = Result(left);
    Add(s);
  }
  void Unary(PlanStep::Kind kind, int at, int operand) {
    PlanStep s = MakeStep(kind);
    s.a = B(operand).slot;
    s.out = Result(at);
    Add(s);
  }
  // Where the call at `i` ends, found in the records as AssignFunction will find them.
  CallExtent Extent(int i) {
    std::vector<TokenRecord> view(static_cast<std::size_t>(length_) + 1);
    for (int k = 1; k <= length_; ++k) view[static_cast<std::size_t>(k)] = {B(k).code, B(k).value};
    return LocateCallExtent(view, length_, i);
  }

  StatementPlan& plan_;
  std::vector<Rec> b_;
  int length_ = 0, open_ = 0, close_ = 0;
  int error_ = 0;
  bool unplannable_ = false;
};

bool IsKeyword(int code) {
  switch (code) {
    case kCodeIf:
    case kCodeThen:
    case kCodeElse:
    case kCodeElseIf:
    case kCodeEndIf:
    case kCodeGosub:
    case kCodeGoto:
    case kCodeReturn:
    case kCodeDo:
    case kCodeLoop:
    case kCodeExitDo:
    case kCodeLabel:
    case kCodeScriptHeader: return true;
    default: return false;
  }
}

// The reference group whose records are `items`, read into its parts when they all stand
// as they are; false when a call names one of them at run time.
bool StandingGroup(std::span<const PlanItem> items, ReferencePieces& out) {
  std::vector<TokenRecord> group;
  for (const PlanItem& item : items) {
    if (item.slot >= 0) return false;
    group.push_back(item.record);
  }
  out = ReadPieces(group.data());
  return true;
}

// Marks a plan whose outcome is a target group whose records all stand as they are,
// '=' and a value: the assignment the action makes of it, with nothing to find at run time.
void FindAssignment(StatementPlan& plan) {
  const auto& o = plan.outcome;
  if (o.empty() || o[0].record.code != kCodeVariableTarget) return;
  const int pieces = GroupSize(static_cast<int>(o[0].record.value));
  const int equals = 1 + pieces;
  if (static_cast<int>(o.size()) < equals + 2 || o[equals].record.code != kCodeEquals || o[equals].slot >= 0) return;
  const PlanItem& value = o[static_cast<std::size_t>(equals + 1)];
  if (value.record.code != kCodeNumber && value.record.code != kCodeString) return;
  if (!StandingGroup(std::span(o).first(static_cast<std::size_t>(equals)), plan.assignTo)) return;
  plan.assignedValue = equals + 1;
}

// Works out an action's target list as the walk will meet it in the outcome, when each
// target in it is a group whose records all stand as they are, the list ends whole, and
// its qualifiers' operands fit the array they are handed on in.
void ListTargets(StatementPlan& plan) {
  const auto& o = plan.outcome;
  if (o.empty() || o[0].record.code != kCodeAction || o[0].slot >= 0) return;
  TargetList list;
  list.first = TargetListStart(static_cast<int>(o[0].record.value));
  if (list.first == 0) return;
  const int last = static_cast<int>(o.size());  // the outcome stands at 1..last
  const auto item = [&](int i) -> const PlanItem& { return o[static_cast<std::size_t>(i - 1)]; };
  for (int i = list.first; i <= last;) {
    const PlanItem& r = item(i);
    if (IsRelational(r.record) && i < last) {
      if (++list.qualifiers > kListedQualifiers) return;
      list.entries.push_back({r.record.code, i + 1, {}});
      i += 2;
      continue;
    }
    if (r.record.code != kCodeVariableTarget) {
      ++i;
      continue;
    }
    const int next = i + 1 + GroupSize(static_cast<int>(r.record.value));
    if (next > last + 1) return;  // the walk faults on it
    ListedTarget target;
    if (!StandingGroup(std::span(o).subspan(static_cast<std::size_t>(i - 1), static_cast<std::size_t>(next - i)),
                       target.target))
      return;
    list.entries.push_back(target);
    ++list.targets;
    i = next;
  }
  const auto first =
      std::find_if(list.entries.begin(), list.entries.end(), [](const ListedTarget& e) { return e.relational == 0; });
  list.amountsOfOneSeat = std::all_of(list.entries.begin(), list.entries.end(), [&](const ListedTarget& e) {
    return e.relational != 0 || (IsAmountRead(e.target) && e.target.piece == first->target.piece);
  });
  plan.targets = std::move(list);
  plan.listed = true;
}

FilledRecords Filled(std::span<const PlanItem> items) {
  FilledRecords f;
  for (std::size_t k = 0; k < items.size(); ++k) {
    const PlanItem& item = items[k];
    f.records.push_back(item.record);
    if (item.slot < 0) continue;
    f.fills.push_back({static_cast<std::int32_t>(k), item.slot, IsGroupHead(item.record)});
  }
  return f;
}

// Whether a condition is on numbers alone. Its reads (of groups, and of a group a number
// names: the named target first) run before the rest and in order, as only they can
// fault: each may use only a constant or what a read before it left.
void FindNumbers(StatementPlan& plan) {
  enum Left : std::uint8_t { kConstant, kRead, kTarget, kComputed };
  std::vector<Left> left(plan.values.size(), kConstant);
  const auto at = [&](std::int32_t slot) { return left[static_cast<std::size_t>(slot)]; };
  const auto number = [&](std::int32_t slot) {
    return at(slot) == kConstant ? plan.values[static_cast<std::size_t>(slot)].code == kCodeNumber
                                 : at(slot) != kTarget;
  };
  std::vector<PlanStep> reads, rest;
  for (const PlanStep& s : plan.steps) {
    Left leaves = kComputed;
    switch (s.kind) {
      case PlanStep::kReadAmount:
      case PlanStep::kReadFact:
      case PlanStep::kReadBetRow:
      case PlanStep::kRead: leaves = kRead; break;
      case PlanStep::kTargetNamed:
        if (!number(s.a) || at(s.a) == kComputed) return;
        leaves = kTarget;
        break;
      case PlanStep::kReadNamed:
        if (at(s.a) != kTarget) return;
        leaves = kRead;
        break;
      case PlanStep::kArithmetic:
        // + - * and ^ can't fault; / \ and mod can.
        if (s.code != kCodePlus && s.code != kCodeMinus && s.code != kCodeTimes && s.code != kCodePower) return;
        [[fallthrough]];
      case PlanStep::kRelation:
      case PlanStep::kLogic:
        if (!number(s.a) || !number(s.b)) return;
        break;
      case PlanStep::kNegate:
      case PlanStep::kInvert:
        if (!number(s.a)) return;
        break;
      default: return;
    }
    (leaves == kComputed ? rest : reads).push_back(s);
    left[static_cast<std::size_t>(s.out)] = leaves;
  }
  plan.shape = StatementPlan::Shape::kNumbers;
  plan.numberReads = reads.size();
  plan.numberSteps = std::move(reads);
  plan.numberSteps.insert(plan.numberSteps.end(), rest.begin(), rest.end());
  plan.numbers.resize(plan.values.size());
  for (std::size_t k = 0; k < plan.values.size(); ++k) plan.numbers[k] = plan.values[k].value;
}

// Whether a condition's plan has one of the shapes that run without the loop of steps:
// their last step leaves the value that decides.
void FindShape(StatementPlan& plan) {
  const auto& steps = plan.steps;
  if (plan.truthSlot < 0 || steps.empty() || steps.back().out != plan.truthSlot) return;
  if (steps.size() == 1 && steps[0].kind == PlanStep::kReadFact) {
    plan.shape = StatementPlan::Shape::kFact;
    return;
  }
  if (steps.size() == 2 && steps[0].kind == PlanStep::kReadAmount && steps[1].kind == PlanStep::kRelation) {
    // The other operand is a number no step writes: a constant of the statement.
    const PlanStep& relation = steps[1];
    const int amount = steps[0].out;
    const int other = relation.a == amount ? relation.b : relation.b == amount ? relation.a : -1;
    if (other >= 0 && other != amount && other != relation.out &&
        plan.values[static_cast<std::size_t>(other)].code == kCodeNumber) {
      plan.shape = StatementPlan::Shape::kAmountAgainstNumber;
      return;
    }
  }
  FindNumbers(plan);
}

// A call of a list function over numbers whose arguments are values and qualifiers alone
// runs from their slots, without the buffer; the call's records stay for a run in which
// one of them isn't a number.
void FindNumberList(StatementPlan& plan, PlanStep& s) {
  const auto items = std::span(plan.items).subspan(static_cast<std::size_t>(s.a), static_cast<std::size_t>(s.n));
  if (items.size() < 3 || items[1].record.code != kCodeOpenBracket) return;
  const int f = static_cast<int>(items[0].record.value);
  if (!IsNumberListFunction(f)) return;
  std::vector<ListArgument> arguments;
  // A qualifier is a relational operator followed by a value, and stays until the next.
  ListArgument next;
  const auto isValue = [&](std::size_t k) {
    return k < items.size() && items[k].slot >= 0 && IsValue(items[k].record);
  };
  for (std::size_t k = 2; k < items.size(); ++k) {
    const TokenRecord& r = items[k].record;
    if (r.code == kCodeCloseBracket) {
      s.kind = PlanStep::kNumberList;
      s.code = f;
      s.a = static_cast<std::int32_t>(plan.listArguments.size());
      s.n = static_cast<std::int32_t>(arguments.size());
      plan.listArguments.insert(plan.listArguments.end(), arguments.begin(), arguments.end());
      return;
    }
    if (IsRelationalCode(r) && isValue(k + 1)) {
      next.qualifier = r.code;
      next.operand = items[++k].slot;
    } else if (isValue(k)) {
      next.slot = items[k].slot;
      arguments.push_back(next);
    } else if (r.code != kCodeListSeparator) {
      return;  // a bracket or a group: the records' own way
    }
  }
}

// Whether the plan of `statement` could be made.
bool MakePlan(std::span<const TokenRecord> statement, StatementPlan& plan) {
  PlanMachine m(statement, plan);
  Reduction<PlanMachine>(m).Statement();
  if (!m.Finish()) return false;
  FindAssignment(plan);
  ListTargets(plan);
  if (!plan.outcome.empty()) {
    const PlanItem& first = plan.outcome.front();
    if (first.slot >= 0 && !IsGroupHead(first.record)) plan.truthSlot = first.slot;
  }
  FindShape(plan);
  plan.outcomeFilled = Filled(plan.outcome);
  for (PlanStep& s : plan.steps) {
    if (s.kind != PlanStep::kCall && s.kind != PlanStep::kTarget && s.kind != PlanStep::kList) continue;
    s.filled = static_cast<std::int32_t>(plan.templates.size());
    plan.templates.push_back(
        Filled(std::span(plan.items).subspan(static_cast<std::size_t>(s.a), static_cast<std::size_t>(s.n))));
    if (s.kind == PlanStep::kCall) FindNumberList(plan, s);
  }
  return true;
}

// Writes records into the buffer from 1 with this run's values filled in.
void PutFilled(AutoBetProgram& p, const FilledRecords& f, const std::vector<TokenRecord>& values) {
  auto& b = p.StatementBuffer;
  const int n = static_cast<int>(f.records.size());
  if (static_cast<int>(b.size()) < n + 2) b.resize(static_cast<std::size_t>(n) + 64);
  std::copy(f.records.begin(), f.records.end(), b.begin() + 1);
  for (const FilledRecords::Fill& fill : f.fills) {
    TokenRecord& r = b[static_cast<std::size_t>(fill.at + 1)];
    const TokenRecord& value = values[static_cast<std::size_t>(fill.slot)];
    if (fill.valueOnly) r.value = value.value;
    else CopyRecord(r, value);
  }
  p.StatementLength = n;
}

}  // namespace

StatementPlans::~StatementPlans() = default;

namespace {

bool SameBits(const TokenRecord& a, const TokenRecord& b) {
  return a.code == b.code && std::memcmp(&a.value, &b.value, sizeof a.value) == 0;
}

// The statement at `start`, worked out now: its end, and its plan.
FoundStatement WorkOut(StatementPlans& c, const std::vector<TokenRecord>& records, int start) {
  const int last = static_cast<int>(records.size()) - 1;
  // A script header stands alone: the next seat's script follows the last statement of
  // the one before with no marker between them.
  int end = start;
  while (end <= last && records[static_cast<std::size_t>(end)].code < kCodeStatement &&
         (records[static_cast<std::size_t>(end)].code != kCodeScriptHeader || end == start))
    ++end;
  FoundStatement found;
  found.end = end;
  found.next = end <= last && records[static_cast<std::size_t>(end)].code == kCodeScriptHeader ? end - 1 : end;
  if (start < 0 || start > last) return found;
  const std::span<const TokenRecord> statement(records.data() + start, static_cast<std::size_t>(end - start));
  if (statement.empty()) return found;
  found.kind = StatementKind::kRecords;
  const TokenRecord& first = statement[0];
  if (!IsKeyword(first.code)) {
    if (!c.withPlans) return found;
    auto plan = std::make_unique<StatementPlan>();
    if (MakePlan(statement, *plan)) {
      found.plan = plan.get();
      // A call may ask the user, and so turn the message loop; reads and operators can't.
      const bool reads = std::none_of(plan->steps.begin(), plan->steps.end(),
                                      [](const PlanStep& s) { return s.kind == PlanStep::kCall; });
      found.kind = reads ? StatementKind::kReading : StatementKind::kPlanned;
      c.plans.push_back(std::move(plan));
    }
    return found;
  }
  switch (first.code) {
    case kCodeIf: found.kind = StatementKind::kIf; break;
    case kCodeThen: {
      found.jump = static_cast<std::int32_t>(first.value);
      // A false condition that jumps to an ElseIf starts that condition.
      const bool toElseIf =
          found.jump >= 0 && found.jump <= last && records[static_cast<std::size_t>(found.jump)].code == kCodeElseIf;
      found.kind = toElseIf ? StatementKind::kThenToElseIf : StatementKind::kThen;
      break;
    }
    case kCodeElse:
    case kCodeElseIf:
    case kCodeLoop:
    case kCodeExitDo:
      found.jump = static_cast<std::int32_t>(first.value);
      found.kind = StatementKind::kJump;
      break;
    case kCodeEndIf:
    case kCodeDo:
    case kCodeLabel: found.kind = StatementKind::kPass; break;
    case kCodeGoto:
    case kCodeGosub:
      // The target is the second record; a jump without one stays with the records.
      if (statement.size() < 2) break;
      found.jump = static_cast<std::int32_t>(statement[1].value);
      found.kind = first.code == kCodeGoto ? StatementKind::kGoto : StatementKind::kGosub;
      break;
    case kCodeReturn: found.kind = StatementKind::kReturn; break;
    case kCodeScriptHeader:
      found.jump = static_cast<std::int32_t>(first.value);
      found.kind = StatementKind::kHeader;
      break;
    default: break;
  }
  return found;
}

}  // namespace

void PreparePlans(AutoBetProgram& p) {
  const auto& records = p.ProgramRecords;
  if (p.Plans && p.Plans->withPlans == p.UsePlans && p.Plans->data == records.data() &&
      p.Plans->size == records.size() &&
      (records.empty() || (SameBits(p.Plans->first, records.front()) && SameBits(p.Plans->last, records.back()))))
    return;
  p.Plans = std::make_shared<StatementPlans>();
  StatementPlans& c = *p.Plans;
  c.data = records.data();
  c.size = records.size();
  c.withPlans = p.UsePlans;
  if (!records.empty()) {
    c.first = records.front();
    c.last = records.back();
  }
  c.found.assign(records.size(), FoundStatement{});
}

namespace {

FoundStatement& Found(StatementPlans& c, const std::vector<TokenRecord>& records, int start) {
  FoundStatement& f = c.found[static_cast<std::size_t>(start)];
  if (f.end < 0) f = WorkOut(c, records, start);
  return f;
}

// An If whose condition only reads and computes, with its Then right behind, runs as one
// statement of the cycle's: the condition and the Then are worked out with it.
void FuseIf(StatementPlans& c, const std::vector<TokenRecord>& records, FoundStatement& f) {
  const int last = static_cast<int>(records.size()) - 1;
  const int at = f.next + 1;
  if (at < 0 || at >= last) return;
  const FoundStatement& condition = Found(c, records, at);
  if (condition.kind != StatementKind::kReading) return;
  const int then = condition.next + 1;
  if (then < 0 || then >= last) return;
  const StatementKind kind = Found(c, records, then).kind;
  if (kind != StatementKind::kThen && kind != StatementKind::kThenToElseIf) return;
  f.kind = StatementKind::kIfReading;
  f.plan = condition.plan;
  f.jump = then;
}

}  // namespace

FoundStatement WorkOutStatement(AutoBetProgram& p, int start) {
  if (!p.Plans || p.Plans->size != p.ProgramRecords.size() || p.Plans->withPlans != p.UsePlans) PreparePlans(p);
  StatementPlans& c = *p.Plans;
  if (start < 0 || static_cast<std::size_t>(start) >= c.found.size()) return WorkOut(c, p.ProgramRecords, start);
  FoundStatement& f = c.found[static_cast<std::size_t>(start)];
  if (f.end < 0) {
    f = WorkOut(c, p.ProgramRecords, start);
    if (f.kind == StatementKind::kIf) FuseIf(c, p.ProgramRecords, f);
  }
  return f;
}

namespace {

// A list function run from its slots: false, with nothing done, when one of its arguments
// or qualifiers isn't a number.
[[gnu::noinline]] bool RunNumberList(const Game& g, const StatementPlan& plan, const PlanStep& s) {
  auto& v = plan.values;
  const auto arguments =
      std::span(plan.listArguments).subspan(static_cast<std::size_t>(s.a), static_cast<std::size_t>(s.n));
  for (const ListArgument& e : arguments)
    if (v[static_cast<std::size_t>(e.slot)].code != kCodeNumber ||
        (e.qualifier != 0 && v[static_cast<std::size_t>(e.operand)].code != kCodeNumber))
      return false;
  // Numbers alone: a qualifier is a comparison of two numbers, which nothing else affects.
  const auto passing = [&](auto&& take) {
    for (const ListArgument& e : arguments) {
      const TokenRecord& r = v[static_cast<std::size_t>(e.slot)];
      if (e.qualifier == 0 || RelateValues(r.value, e.qualifier, v[static_cast<std::size_t>(e.operand)].value)) take(r);
    }
  };
  NumberListTally tally(s.code);
  passing([&](const TokenRecord& r) { tally.Take(g, r); });
  if (tally.WantsSquares()) passing([&](const TokenRecord& r) { tally.TakeSquare(g, r); });
  v[static_cast<std::size_t>(s.out)] = {kCodeNumber, tally.Value(g)};
  return true;
}

inline bool RunSteps(Game& g, const StatementPlan& plan) {
  AutoBetProgram& p = g.AutoBet;
  auto& v = plan.values;
  const auto at = [&](std::int32_t slot) -> TokenRecord& { return v[static_cast<std::size_t>(slot)]; };
  for (const PlanStep& s : plan.steps) {
    switch (s.kind) {
      case PlanStep::kRead: {
        TokenRecord out{kCodeNumber, 0};
        ReadReference(g, plan.pieces[static_cast<std::size_t>(s.b)], out);
        CopyRecord(at(s.out), out);
        break;
      }
      // The steps that can fault only by saying so go on at once when they didn't.
      case PlanStep::kReadAmount:
        if (ReadAmount(g, s.a, s.code, at(s.out))) continue;
        break;
      case PlanStep::kReadFact:
        if (ReadFact(g, s.a, s.code, at(s.out))) continue;
        break;
      case PlanStep::kReadBetRow: {
        double value = 0;
        if (!BetRowValue(g, plan.pieces[static_cast<std::size_t>(s.b)], value)) break;
        at(s.out) = {kCodeNumber, value};
        continue;
      }
      case PlanStep::kReadNamed: {
        ReferencePieces r = plan.pieces[static_cast<std::size_t>(s.b)];
        r.v = static_cast<int>(at(s.a).value);
        TokenRecord out{kCodeNumber, 0};
        ReadReference(g, r, out);
        CopyRecord(at(s.out), out);
        break;
      }
      case PlanStep::kNumberList:
        if (RunNumberList(g, plan, s)) continue;
        [[fallthrough]];
      case PlanStep::kCall:
        PutFilled(p, plan.templates[static_cast<std::size_t>(s.filled)], v);
        AssignFunction(g, 1);
        CopyRecord(at(s.out), p.StatementBuffer[1]);
        break;
      case PlanStep::kTarget:
        PutFilled(p, plan.templates[static_cast<std::size_t>(s.filled)], v);
        ResolveTargetFunction(g, 1);
        CopyRecord(at(s.out), p.StatementBuffer[1]);
        break;
      case PlanStep::kTargetNamed:
        at(s.out) = {kCodeVariableTarget, static_cast<double>(NamedVariable(g, s.code, NumberOf(g, at(s.a)), s.n))};
        break;
      // A step's result goes to a slot of its own, never one of its operands.
      // On two numbers the operators fault only by saying so; a string's text can fault
      // on the way.
      case PlanStep::kArithmetic: {
        const bool numbers = at(s.a).code == kCodeNumber && at(s.b).code == kCodeNumber;
        if (ApplyArithmetic(g, s.code, at(s.a), at(s.b), at(s.out)) && numbers) continue;
        break;
      }
      case PlanStep::kConcatenate: ApplyConcatenation(g, at(s.a), at(s.b), at(s.out)); break;
      case PlanStep::kRelation: {
        const TokenRecord &a = at(s.a), &b = at(s.b);
        if (a.code == kCodeNumber && b.code == kCodeNumber) {
          at(s.out) = {kCodeNumber, RelateValues(a.value, s.code, b.value) ? -1.0 : 0.0};
          continue;
        }
        ApplyRelation(g, s.code, a, b, at(s.out));
        break;
      }
      case PlanStep::kLogic: {
        const bool numbers = at(s.a).code == kCodeNumber && at(s.b).code == kCodeNumber;
        ApplyLogic(g, s.code, at(s.a), at(s.b), at(s.out));
        if (numbers) continue;
        break;
      }
      case PlanStep::kNegate: at(s.out) = Negated(g, at(s.a)); break;
      case PlanStep::kInvert: at(s.out) = Inverted(g, at(s.a)); break;
      case PlanStep::kList: {
        const TokenRecord operand = s.b >= 0 ? at(s.b) : TokenRecord{};
        PutFilled(p, plan.templates[static_cast<std::size_t>(s.filled)], v);
        at(s.out) = {kCodeNumber, EvaluateList(g, s.code, 1, s.n, s.relational, s.side, operand) ? -1.0 : 0.0};
        break;
      }
      case PlanStep::kFault: p.RunError = s.code; break;
    }
    if (p.RunError != 0) return false;
  }
  return true;
}

}  // namespace

bool RunPlanSteps(Game& g, const StatementPlan& plan) { return RunSteps(g, plan); }

TokenRecord PlannedRecord(const StatementPlan& plan, int k) {
  const PlanItem& item = plan.outcome[static_cast<std::size_t>(k)];
  if (item.slot < 0) return item.record;
  const TokenRecord& value = plan.values[static_cast<std::size_t>(item.slot)];
  if (IsGroupHead(item.record)) return {item.record.code, value.value};
  return value;
}

bool PlannedTruth(const Game& g, const StatementPlan& plan) {
  if (plan.truthSlot >= 0) return Truthy(g, plan.values[static_cast<std::size_t>(plan.truthSlot)]);
  return !plan.outcome.empty() && Truthy(g, PlannedRecord(plan, 0));
}

namespace {

// Out of line, so that the shapes below take no more than they need.
[[gnu::noinline]] ConditionOutcome RunConditionSteps(Game& g, const StatementPlan& plan) {
  if (!RunSteps(g, plan)) return ConditionOutcome::kFault;
  return PlannedTruth(g, plan) ? ConditionOutcome::kHolds : ConditionOutcome::kFails;
}

ConditionOutcome Outcome(bool holds) { return holds ? ConditionOutcome::kHolds : ConditionOutcome::kFails; }

// A condition on numbers: what its steps compute, on the numbers alone.
[[gnu::noinline]] ConditionOutcome RunNumbers(Game& g, const StatementPlan& plan) {
  double* const n = plan.numbers.data();
  const PlanStep* s = plan.numberSteps.data();
  const PlanStep* const reads = s + plan.numberReads;
  const PlanStep* const end = s + plan.numberSteps.size();
  for (; s != reads; ++s) {
    switch (s->kind) {
      case PlanStep::kReadAmount:
        if (!AmountValue(g, s->a, s->code, n[s->out])) return ConditionOutcome::kFault;
        break;
      case PlanStep::kReadFact:
        if (!FactValue(g, s->a, s->code, n[s->out])) return ConditionOutcome::kFault;
        break;
      case PlanStep::kReadBetRow:
        if (!BetRowValue(g, plan.pieces[static_cast<std::size_t>(s->b)], n[s->out])) return ConditionOutcome::kFault;
        break;
      case PlanStep::kTargetNamed:
        n[s->out] = NamedVariable(g, s->code, n[s->a], s->n);
        if (g.AutoBet.RunError != 0) return ConditionOutcome::kFault;
        break;
      default: {  // kRead, kReadNamed
        ReferencePieces r = plan.pieces[static_cast<std::size_t>(s->b)];
        if (s->kind == PlanStep::kReadNamed) r.v = static_cast<int>(n[s->a]);
        // A number names a bet most often for its amount.
        if (IsAmountRead(r)) {
          if (!AmountValue(g, r.piece, r.v, n[s->out])) return ConditionOutcome::kFault;
          break;
        }
        TokenRecord out{kCodeNumber, 0};
        ReadReference(g, r, out);
        if (g.AutoBet.RunError != 0) return ConditionOutcome::kFault;
        // A text: the steps run as they are, from the first read on, which takes nothing.
        if (out.code != kCodeNumber) return RunConditionSteps(g, plan);
        n[s->out] = out.value;
        break;
      }
    }
  }
  for (; s != end; ++s) {
    const double a = n[s->a], b = n[s->b];  // b unused by the unary steps, but a slot still
    double& out = n[s->out];
    switch (s->kind) {
      case PlanStep::kRelation: out = RelateValues(a, s->code, b) ? -1.0 : 0.0; break;
      case PlanStep::kLogic: {
        const std::int32_t x = LogicalValue(a), y = LogicalValue(b);
        out = s->code == kCodeAnd ? (x & y) : s->code == kCodeOr ? (x | y) : (x ^ y);
        break;
      }
      case PlanStep::kArithmetic:
        out = s->code == kCodePlus    ? a + b
              : s->code == kCodeMinus ? a - b
              : s->code == kCodeTimes ? a * b
                                      : std::pow(a, b);
        break;
      case PlanStep::kNegate: out = -a; break;
      default: out = ~LogicalValue(a); break;  // kInvert
    }
  }
  return Outcome(n[plan.truthSlot] != 0);
}

}  // namespace

// The shapes make the same reads and comparisons as their steps, and look at the same truth.
ConditionOutcome RunPlannedCondition(Game& g, const StatementPlan& plan) {
  TokenRecord* const v = plan.values.data();
  switch (plan.shape) {
    case StatementPlan::Shape::kFact: {
      const PlanStep& read = plan.steps[0];
      if (!ReadFact(g, read.a, read.code, v[read.out])) return ConditionOutcome::kFault;
      return Outcome(v[read.out].value != 0);
    }
    case StatementPlan::Shape::kAmountAgainstNumber: {
      const PlanStep &read = plan.steps[0], &relation = plan.steps[1];
      if (!ReadAmount(g, read.a, read.code, v[read.out])) return ConditionOutcome::kFault;
      return Outcome(RelateValues(v[relation.a].value, relation.code, v[relation.b].value));
    }
    case StatementPlan::Shape::kNumbers: return RunNumbers(g, plan);
    case StatementPlan::Shape::kSteps: break;
  }
  return RunConditionSteps(g, plan);
}

void WritePlannedOutcome(Game& g, const StatementPlan& plan) {
  AutoBetProgram& p = g.AutoBet;
  PutFilled(p, plan.outcomeFilled, plan.values);
  p.OpenBracket = plan.openBracket;
  p.CloseBracket = plan.closeBracket;
}

bool TakePlannedAction(Game& g, const StatementPlan& plan) {
  if (!plan.listed) return false;
  std::array<TokenRecord, kListedQualifiers> operands;
  std::size_t n = 0;
  for (const ListedTarget& e : plan.targets.entries)
    if (e.relational != 0) operands[n++] = PlannedRecord(plan, e.operand - 1);
  // A listed action's verb stands as it is at the head of the outcome.
  const int action = static_cast<int>(plan.outcome.front().record.value);
  if (plan.outcome.size() < 2) {
    TakeListedAction(g, action, nullptr, plan.targets, operands.data());
    return true;
  }
  const TokenRecord amount = PlannedRecord(plan, 1);
  TakeListedAction(g, action, &amount, plan.targets, operands.data());
  return true;
}

const ReferencePieces* PlannedAssignment(const StatementPlan& plan, int& value) {
  value = plan.assignedValue;
  return value > 0 ? &plan.assignTo : nullptr;
}
