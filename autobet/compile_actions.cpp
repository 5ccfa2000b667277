#include <map>
#include <optional>

#include "autobet/compiler.h"

namespace {

// Verbs whose operands are written, not read: the amount verbs (Bet, Multiply ... Round
// up) take their targets after "on"/"to"/"from"; the other 450s take them straight after
// the verb; Swap writes both of its operands back.
constexpr int kSwap = 300;
constexpr int kBuyPlace = 450;
bool IsAmountVerb(int action) { return action >= 481 && action <= 489; }
bool IsTargetVerb(int action) { return action >= 450 && action <= 499; }

int Number(const TokenRecord& r) { return static_cast<int>(r.value); }

bool IsWritableVariable(int n) {
  if (n >= 1 && n <= 107) return true;  // bets, with the piece checks below
  if ((n >= 200 && n <= 299) || (n >= 800 && n <= 999)) return true;
  switch (n) {
    case 603:  // no word yields it, but scripts made by other means may hold it
    case 670:
    case 671:
    case 700:
    case 701:
    case 702:
    case 703:
    case 1300:
    case 1301:
    case 5006:
    case 5603:
    case 5655:
    case 5672:
    case 5691: return true;
    default: return n >= 5612 && n <= 5617;
  }
}

bool IsWritableFunction(int n) { return n == 800 || n < 100; }

bool IsBet(const TokenRecord& r) {
  const int n = Number(r);
  return (r.code == kCodeVariable && n >= 1 && n <= 107) || (r.code == kCodeFunction && n >= 1 && n <= 11);
}

class Converter {
 public:
  Converter(std::vector<TokenRecord>& records, std::span<const std::string> lines) : records_(records), lines_(lines) {}

  CompileFault Run() {
    bool inCondition = false;  // between IF or ELSEIF and THEN nothing is written
    // A label after IF is only "between IF and THEN" once a THEN comes; without one the
    // block linker has the better message. 0 is none: the header holds index 0.
    std::size_t labelInCondition = 0;
    for (std::size_t i = 0; i < records_.size();) {
      if (!IsStatementMarker(records_[i])) {
        ++i;
        continue;
      }
      const std::size_t begin = i + 1;
      std::size_t end = begin;
      while (end < records_.size() && !IsStatementMarker(records_[end])) ++end;
      i = end;
      if (begin >= end) continue;
      const TokenRecord& head = records_[begin];
      if (head.code == kCodeIf || head.code == kCodeElseIf) {
        inCondition = true;
        continue;
      }
      if (head.code == kCodeThen) {
        if (inCondition && labelInCondition != 0)
          return StatementFault(
              "Improper placement of label.\n"
              "Labels cannot appear within condition statements (between If and Then).",
              records_, labelInCondition, lines_);
        inCondition = false;
        labelInCondition = 0;
        continue;
      }
      if (inCondition) {
        for (std::size_t k = begin; k < end && labelInCondition == 0; ++k)
          if (records_[k].code == kCodeLabel) labelInCondition = k;
        continue;
      }
      if (CompileFault fault = Statement(begin, end); fault.Failed()) return fault;
    }
    return {};
  }

 private:
  std::size_t MatchingClose(std::size_t open, std::size_t end) const {
    int depth = 0;
    for (std::size_t k = open; k < end; ++k) {
      if (records_[k].code == kCodeOpenBracket) ++depth;
      if (records_[k].code == kCodeCloseBracket && --depth == 0) return k;
    }
    return end - 1;
  }

  // The first record with `code` at the statement's own bracket level, past `from`.
  std::optional<std::size_t> AtDepthZero(std::size_t from, std::size_t end, std::int32_t a, std::int32_t b) const {
    for (std::size_t k = from; k < end; ++k) {
      const std::int32_t code = records_[k].code;
      if (code == kCodeOpenBracket) {
        k = MatchingClose(k, end);
        continue;
      }
      if (code == a || code == b) return k;
    }
    return std::nullopt;
  }

  CompileFault Statement(std::size_t begin, std::size_t end) {
    const TokenRecord& head = records_[begin];
    // Buying has its own word for a bet outside the current scope, given by the shape check.
    buying_ = head.code == kCodeAction && Number(head) == kBuyPlace;
    if (head.code == kCodeVariable || head.code == kCodeFunction) {
      // Everything before the "=" is written: one reference, or a list ("css = 0",
      // "cs1, cs2 = 5", "place bets = 6").
      if (const auto equals = AtDepthZero(begin + 1, end, kCodeEquals, kCodeEquals)) return Targets(begin, *equals);
      return {};
    }
    if (head.code != kCodeAction) return {};
    const int action = Number(head);
    if (IsAmountVerb(action)) {
      // The amount may itself hold brackets; the targets follow the first "on", "to" or "from".
      if (const auto on = AtDepthZero(begin + 1, end, kCodeOnTo, kCodeFrom)) return Targets(*on + 1, end);
      return {};
    }
    if (IsTargetVerb(action) || action == kSwap) return Targets(begin + 1, end);
    return {};
  }

  // A target list: comma-separated elements, each a reference whose head is written, a
  // qualifier (a comparison and its operand, only read), or a bracketed list of the same.
  CompileFault Targets(std::size_t begin, std::size_t end) {
    std::size_t element = begin;
    while (element < end) {
      std::size_t next = element;
      while (next < end && records_[next].code != kCodeListSeparator) {
        if (records_[next].code == kCodeOpenBracket) next = MatchingClose(next, end);
        ++next;
      }
      const TokenRecord& head = records_[element];
      if (head.code == kCodeVariable || head.code == kCodeFunction) {
        if (CompileFault fault = Target(element, next); fault.Failed()) return fault;
      } else if (head.code == kCodeOpenBracket && MatchingClose(element, next) + 1 == next) {
        if (CompileFault fault = Targets(element + 1, next - 1); fault.Failed()) return fault;
      }
      element = next + 1;
    }
    return {};
  }

  // The piece of `code` in the reference group of the target at `at`: past a function's
  // argument, among the piece records that follow.
  std::optional<int> Piece(std::size_t at, std::size_t end, std::int32_t code) const {
    std::size_t k = at + 1;
    if (records_[at].code == kCodeFunction && k < end && records_[k].code == kCodeOpenBracket)
      k = MatchingClose(k, end) + 1;
    for (; k < end && records_[k].code >= kCodeModifier && records_[k].code <= kCodePlayer; ++k)
      if (records_[k].code == code) return Number(records_[k]);
    return std::nullopt;
  }

  // Checks that the reference at `at` may be written and turns it into its target form.
  CompileFault Target(std::size_t at, std::size_t end) {
    TokenRecord& target = records_[at];
    const int n = Number(target);
    const bool variable = target.code == kCodeVariable;
    if (variable ? !IsWritableVariable(n) : !IsWritableFunction(n)) {
      const std::string message =
          variable ? VariableDisplayName(n) + " is a read-only variable and cannot be assigned a value."
                   : FunctionDisplayName(n) + " is a read-only function and cannot be assigned a value.";
      return StatementFault(message, records_, at, lines_);
    }
    if (IsBet(target)) {
      // A bet can only be placed now: its amount on the table, in this hand or session.
      const int time = Piece(at, end, kCodeTime).value_or(3);
      if (time != 1 && time != 3 && !buying_)
        return StatementFault("Unable to set the value of a bet that's not in the current hand or session.", records_,
                              at, lines_);
      const int counted = Piece(at, end, kCodeCounted).value_or(1);
      if (counted != 0 && counted != 1)
        return StatementFault("Only able to set the value of current wagers.", records_, at, lines_);
      const int modifier = Piece(at, end, kCodeModifier).value_or(34);
      if (modifier != 33 && modifier != 34 && modifier != 44)
        return StatementFault("Only able to set the current $ value of a bet.", records_, at, lines_);
    }
    target.code = variable ? kCodeVariableTarget : kCodeFunctionTarget;
    return {};
  }

  std::vector<TokenRecord>& records_;
  std::span<const std::string> lines_;
  bool buying_ = false;  // the statement is "Buy the Place bet on ..."
};

}  // namespace

CompileFault CompileConvertToAction(std::vector<TokenRecord>& records, std::span<const std::string> lines) {
  return Converter(records, lines).Run();
}
