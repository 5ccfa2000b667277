#include <utility>

#include "autobet/compiler.h"

namespace {

// Codes the shape check reads that tokens.h does not name; they are their L numbers.
constexpr std::int32_t kLastRelational = 55;
constexpr std::int32_t kPower = 60;
constexpr std::int32_t kDivide = 62;
constexpr std::int32_t kIntegerDivide = 63;
constexpr std::int32_t kModulus = 64;
constexpr std::int32_t kMinus = 66;
constexpr std::int32_t kNot = 70;
constexpr std::int32_t kAnd = 71;
constexpr std::int32_t kOr = 72;
constexpr std::int32_t kXor = 73;
constexpr std::int32_t kConcatenate = 74;
constexpr int kFromRollString = -15;  // "from roll" of the playback action

const char* const kGotoMessage =
    "Unable to resolve elements.\nThe GoTo command must be followed by the name of a single label. \n"
    "For example:\n      GoTo \"Make bets\"";
const char* const kBuyPlaceMessage =
    "To buy Place bets, enter only:\n     Place bet names\n     Qualifiers (optional)\n     Players (optional)\n"
    "For example:\n     Buy the Place bet on Place10\n     Buy the Place bet on Place4, Place5\n"
    "     Buy the Place bet on Place(cs1) player2\n     Buy the Place bet on > 10, Place bets";
const char* const kListQualifierMessage =
    "Improper qualifier in list.\nAcceptable qualifier format:\n"
    "    =, <>, <, >, <=, or >= followed by an expression.\n    > 5\n    = cs1 + 4";

// What an element evaluates to, as far as form can tell.
enum class Kind { Number, Text, Value, Truth, List, Range };

bool IsValue(Kind k) { return k != Kind::List && k != Kind::Range; }
bool IsNumeric(Kind k) { return k == Kind::Number || k == Kind::Value || k == Kind::Truth; }

// Thrown inside the walk; the first one ends the pass at record `at`.
struct CheckStop {
  std::string message;
  std::size_t at;
};

bool IsRelational(std::int32_t code) { return code >= kCodeEquals && code <= kLastRelational; }
bool IsArithmetic(std::int32_t code) { return code >= kPower && code <= kMinus; }

std::string LogicalName(std::int32_t code) { return code == kAnd ? "AND" : code == kOr ? "OR" : "XOR"; }

// Functions that give text; the rest give numbers.
bool IsTextFunction(int f) { return (f >= 800 && f <= 899) || f == 132 || f == 133; }

// Actions that stand alone: session starts, dice and file switches, steps, seeding.
bool TakesNothing(int action) {
  return (action >= 100 && action <= 103) || (action >= 114 && action <= 116) || action == 118 || action == 119 ||
         action == 130;
}

constexpr int kFirstListFunction = 126, kLastListFunction = 133;
constexpr int kRound = 139;

// Functions that read a list of any length, each item open to a qualifier.
bool IsListFunction(int f) { return f >= kFirstListFunction && f <= kLastListFunction; }

// How many arguments a call takes: a list at least one, Round a value with its optional
// precision and direction, the string functions their fixed places, the rest one.
struct ArgumentCount {
  std::size_t least, most;
};
ArgumentCount Arguments(int f) {
  if (IsListFunction(f)) return {1, SIZE_MAX};
  switch (f) {
    case kRound: return {1, 3};
    case 137:
    case 801:
    case 802:
    case 803:
    case 804:
    case 813: return {2, 2};  // PValue, Left$ ...
    case 203:
    case 805:
    case 806:
    case 809: return {3, 3};  // InStr, Mid$ ...
    default: return {1, 1};
  }
}

// Checks the form of one statement's records [begin, end) and of its expressions.
class ShapeChecker {
 public:
  explicit ShapeChecker(const std::vector<TokenRecord>& records) : r_(records) {}

  void Condition(std::size_t begin, std::size_t end) {
    pos_ = begin;
    end_ = end;
    const Kind k = Expression();
    Finish();
    if (k == Kind::Text || k == Kind::List || k == Kind::Range || (k == Kind::Number && !lastWasPlain_))
      throw CheckStop{"Result not true or false.", begin};
  }

  void Statement(std::size_t begin, std::size_t end) {
    pos_ = begin;
    end_ = end;
    const TokenRecord& first = r_[begin];
    if (first.code == kCodeAction) return Action(static_cast<int>(first.value));
    if (first.code == kCodeGoto || first.code == kCodeGosub) {
      if (end - begin != 2) throw CheckStop{kGotoMessage, begin};
      return;
    }
    if ((first.code >= 1 && first.code <= 19) || first.code == kCodeLabel) {
      if (end - begin != 1) throw CheckStop{"Unable to resolve expression.", begin + 1};
      return;
    }
    Assignment();
  }

 private:
  bool AtEnd() const { return pos_ >= end_; }
  std::int32_t Code() const { return AtEnd() ? INT32_MIN : r_[pos_].code; }

  void Finish() {
    if (!AtEnd()) throw CheckStop{"Unable to resolve expression.", pos_};
  }

  // target(s) = value; anything else standing alone is no statement.
  void Assignment() {
    const std::int32_t c = Code();
    if (c != kCodeVariableTarget && c != kCodeFunctionTarget && c != kCodeVariable && c != kCodeFunction)
      throw CheckStop{"Improper assignment or expression.", pos_};
    Targets(false);
    if (Code() != kCodeEquals) throw CheckStop{"Improper assignment or expression.", pos_};
    const std::size_t equal = pos_++;
    if (AtEnd()) throw CheckStop{"Missing operand.", equal};
    NoListKinds(pos_, end_);
    const Kind k = Expression();
    Finish();
    if (!IsValue(k)) throw CheckStop{"Improper use of list.", equal};
  }

  // A comma list of references, each optionally behind a qualifier when `qualifiers`.
  void Targets(bool qualifiers) {
    for (;;) {
      if (qualifiers && IsRelational(Code())) {
        const std::size_t q = pos_++;
        if (AtEnd() || Code() == kCodeListSeparator) throw CheckStop{kListQualifierMessage, q};
        const Kind k = Additive();
        if (!IsValue(k)) throw CheckStop{kListQualifierMessage, q};
        if (Code() != kCodeListSeparator) throw CheckStop{"Improper use of list.", pos_};
        ++pos_;
        continue;
      }
      Reference();
      if (Code() == kCodeThru) {
        ++pos_;
        Reference();
      }
      if (Code() != kCodeListSeparator) return;
      ++pos_;
    }
  }

  // One variable or function with its pieces, as a target.
  void Reference() {
    const std::int32_t c = Code();
    if (c == kCodeVariable || c == kCodeVariableTarget) {
      ++pos_;
    } else if (c == kCodeFunction || c == kCodeFunctionTarget) {
      Call();
    } else {
      throw CheckStop{AtEnd() ? "Missing operand." : "Improper assignment or expression.", AtEnd() ? pos_ - 1 : pos_};
    }
    while (!AtEnd() && IsReferencePiece(r_[pos_])) ++pos_;
  }

  // An any/all list is a truth test; as the value set or the targets changed it means nothing.
  // Inside brackets (a function's argument) it is a value like any other.
  void NoListKinds(std::size_t begin, std::size_t end) const {
    int depth = 0;
    for (std::size_t i = begin; i < end; ++i) {
      if (r_[i].code == kCodeOpenBracket) ++depth;
      if (r_[i].code == kCodeCloseBracket) --depth;
      if (r_[i].code == kCodeListKind && depth == 0)
        throw CheckStop{std::string("Lists defined by the keyword \"") + (r_[i].value == 2 ? "Any" : "All") +
                            "\"\ncannot be used to set or modify variables.",
                        i};
    }
  }

  void Action(int action) {
    const std::size_t verb = pos_++;
    if (action == 300) {  // Swap X, Y: two references, nothing else
      std::size_t refs = 0;
      try {
        for (;;) {
          Reference();
          ++refs;
          if (Code() != kCodeListSeparator) break;
          ++pos_;
        }
      } catch (const CheckStop&) {
        throw CheckStop{"The swap command only works with two variables at a time.", verb};
      }
      if (refs != 2 || !AtEnd()) throw CheckStop{"The swap command only works with two variables at a time.", verb};
      return;
    }
    NoListKinds(pos_, end_);
    if (action >= 481 && action <= 489) {  // verb amount on/to/from targets
      if (AtEnd() || Code() == kCodeOnTo || Code() == kCodeFrom) throw CheckStop{"Missing operand.", verb};
      const Kind amount = Additive();
      if (!IsValue(amount)) throw CheckStop{"Improper use of list.", verb};
      if (Code() != kCodeOnTo && Code() != kCodeFrom)
        throw CheckStop{"Improper assignment or expression.", AtEnd() ? verb : pos_};
      const std::size_t to = pos_++;
      if (AtEnd()) throw CheckStop{"Missing operand.", to};
      Targets(true);
      Finish();
      return;
    }
    if (action == 450) return BuyPlace(verb);
    if (action >= 450 && action <= 499) {  // verb targets
      if (AtEnd()) throw CheckStop{"Missing operand.", verb};
      Targets(true);
      Finish();
      return;
    }
    if (TakesNothing(action)) {
      if (!AtEnd()) throw CheckStop{"Unable to resolve expression.", pos_};
      return;
    }
    if (AtEnd()) return;
    if (action == 310) {  // file name, then optionally "from roll" and a roll number
      std::size_t split = pos_;
      while (split < end_ && !(r_[split].code == kCodeString && r_[split].value == kFromRollString)) ++split;
      const std::size_t whole = end_;
      end_ = split;
      ValueOperand();
      end_ = whole;
      if (AtEnd()) return;
      ++pos_;
      if (!AtEnd()) ValueOperand();
      return;
    }
    ValueOperand();
  }

  void ValueOperand() {
    const std::size_t at = pos_;
    const Kind k = Expression();
    Finish();
    if (!IsValue(k)) throw CheckStop{"Improper use of list.", at};
  }

  // Buy the Place bet on: Place bets only, with qualifiers and players, current scope.
  void BuyPlace(std::size_t verb) {
    if (AtEnd()) throw CheckStop{kBuyPlaceMessage, verb};
    try {
      Targets(true);
      Finish();
    } catch (const CheckStop&) {
      throw CheckStop{kBuyPlaceMessage, verb};
    }
    for (std::size_t i = verb + 1; i < end_; ++i) {
      const TokenRecord& t = r_[i];
      const int n = static_cast<int>(t.value);
      const bool isPlace = (t.code == kCodeVariable || t.code == kCodeVariableTarget)   ? n >= 31 && n <= 36
                           : (t.code == kCodeFunction || t.code == kCodeFunctionTarget) ? n == 6
                                                                                        : true;
      if (!isPlace) throw CheckStop{kBuyPlaceMessage, i};
      if (t.code == kCodeTime && n != 1 && n != 3)
        throw CheckStop{"You can only buy bets in the current hand or current session.", i};
      if (t.code == kCodeFunction || t.code == kCodeFunctionTarget) {
        // The bet's number in brackets is free; skip to past its close.
        int depth = 0;
        for (++i; i < end_; ++i) {
          if (r_[i].code == kCodeOpenBracket) ++depth;
          if (r_[i].code == kCodeCloseBracket && --depth == 0) break;
        }
      }
    }
  }

  // ---- Expressions, loosest binding first.

  // A comma list where one may stand: in brackets, as a plural word's expansion.
  Kind Expression() {
    Kind k = Logical();
    if (Code() != kCodeListSeparator) return k;
    while (Code() == kCodeListSeparator) {
      ++pos_;
      ListItem();
    }
    return Kind::List;
  }

  Kind Logical() {
    Kind left = Negation();
    while (Code() == kAnd || Code() == kOr || Code() == kXor) {
      const std::size_t op = pos_;
      const std::string name = LogicalName(Code());
      if (!IsValue(left)) throw CheckStop{"Missing or inappropriate expression before logical " + name, op};
      ++pos_;
      if (AtEnd() || Code() == kCodeListSeparator || Code() == kCodeCloseBracket)
        throw CheckStop{"Missing expression after logical " + name, op};
      if (!IsValue(Negation())) throw CheckStop{"Missing or inappropriate expression after logical " + name, op};
      left = Kind::Truth;
    }
    return left;
  }

  Kind Negation() {
    const std::int32_t c = Code();
    if (c == kAnd || c == kOr || c == kXor)
      throw CheckStop{"Missing expression before logical " + LogicalName(c), pos_};
    if (c != kNot) return Relation();
    const std::size_t op = pos_++;
    if (AtEnd() || Code() == kCodeListSeparator || Code() == kCodeCloseBracket)
      throw CheckStop{"Improper argument for NOT operation.", op};
    if (!IsValue(Negation())) throw CheckStop{"Improper argument for NOT operation.", op};
    return Kind::Truth;
  }

  Kind Relation() {
    if (IsRelational(Code())) throw CheckStop{"Improper use of relational operator", pos_};
    Kind left = Concatenation();
    while (IsRelational(Code())) {
      const std::size_t op = pos_++;
      if (!IsValue(left)) throw CheckStop{"Improper use of relational operator", op};
      if (AtEnd() || Code() == kCodeListSeparator || Code() == kCodeCloseBracket || IsRelational(Code()))
        throw CheckStop{"Improper use of relational operator", op};
      Concatenation();  // a value or a list on the right
      left = Kind::Truth;
    }
    return left;
  }

  Kind Concatenation() {
    Kind left = Additive();
    while (Code() == kConcatenate) {
      const std::size_t op = pos_++;
      if (!IsValue(left)) throw CheckStop{"Unable to concatenate elements.", op};
      if (AtEnd() || Code() == kCodeListSeparator || Code() == kCodeCloseBracket)
        throw CheckStop{"Missing operand.", op};
      if (!IsValue(Additive())) throw CheckStop{"Unable to concatenate elements.", op};
      left = Kind::Text;
    }
    return left;
  }

  // All arithmetic, one level: its form check does not depend on precedence.
  Kind Additive() {
    Kind left = Unary();
    while (IsArithmetic(Code())) {
      const std::size_t op = pos_++;
      const std::int32_t code = r_[op].code;
      if (!IsNumeric(left)) throw CheckStop{"Improper use of arithmetic operator.", op};
      if (AtEnd() || Code() == kCodeListSeparator || Code() == kCodeCloseBracket || IsRelational(Code()) ||
          Code() == kConcatenate || Code() == kAnd || Code() == kOr || Code() == kXor)
        throw CheckStop{"Missing operand.", op};
      const bool zero = Code() == kCodeNumber && r_[pos_].value == 0;
      if (!IsNumeric(Unary())) throw CheckStop{"Improper use of arithmetic operator.", op};
      if (zero && (code == kDivide || code == kIntegerDivide || code == kModulus))
        throw CheckStop{"Unable to perform requested math.", op};
      left = Kind::Number;
      lastWasPlain_ = false;
    }
    return left;
  }

  Kind Unary() {
    if (Code() == kMinus) {
      const std::size_t op = pos_++;
      if (AtEnd() || Code() == kCodeListSeparator || Code() == kCodeCloseBracket)
        throw CheckStop{"Missing operand.", op};
      if (!IsNumeric(Unary())) throw CheckStop{"Improper use of arithmetic operator.", op};
      lastWasPlain_ = false;
      return Kind::Number;
    }
    if (IsArithmetic(Code())) throw CheckStop{"Missing operand.", pos_};
    return Primary();
  }

  Kind Primary() {
    lastWasPlain_ = true;
    if (AtEnd()) throw CheckStop{"Missing operand.", pos_ - 1};
    const TokenRecord& t = r_[pos_];
    switch (t.code) {
      case kCodeNumber: ++pos_; return Kind::Number;
      case kCodeString: ++pos_; return Kind::Text;
      case kCodePlayer: ++pos_; return Kind::Number;
      case kCodeVariable:
      case kCodeVariableTarget: {
        const int n = static_cast<int>(t.value);
        ++pos_;
        while (!AtEnd() && IsReferencePiece(r_[pos_])) ++pos_;
        if (Code() == kCodeThru) {
          ++pos_;
          Reference();
          return Kind::Range;
        }
        return n >= 800 && n <= 999 ? Kind::Text : Kind::Value;
      }
      case kCodeFunction:
      case kCodeFunctionTarget: {
        const int f = static_cast<int>(t.value);
        Call();
        while (!AtEnd() && IsReferencePiece(r_[pos_])) ++pos_;
        if (Code() == kCodeThru) {
          ++pos_;
          Reference();
          return Kind::Range;
        }
        return IsTextFunction(f) ? Kind::Text : Kind::Value;
      }
      case kCodeListKind: {
        const std::size_t kind = pos_++;
        Bracketed(kind, true);
        if (Code() == kCodeEndOfList) ++pos_;
        return Kind::Truth;
      }
      case kCodeOpenBracket: {
        const Kind k = Bracketed(pos_, false);
        return k;
      }
      default: throw CheckStop{"Unable to resolve expression.", pos_};
    }
  }

  // ( items ) at pos_; a list when it holds a comma, a qualifier or a range.
  Kind Bracketed(std::size_t owner, bool list) {
    const std::string outer = std::exchange(qualifierOf_, std::string());
    const Kind k = BracketedItems(owner, list);
    qualifierOf_ = outer;
    return k;
  }

  Kind BracketedItems(std::size_t owner, bool list) {
    if (Code() != kCodeOpenBracket) throw CheckStop{"Improper use of list.", owner};
    const std::size_t open = pos_++;
    if (Code() == kCodeCloseBracket) throw CheckStop{list ? "Improper use of list." : "Missing operand.", open};
    const bool qualified = IsRelational(Code());
    Kind k = ListItem();
    std::size_t items = 1;
    while (Code() == kCodeListSeparator) {
      ++pos_;
      ListItem();
      ++items;
    }
    if (Code() != kCodeCloseBracket) throw CheckStop{"Unable to resolve expression.", AtEnd() ? open : pos_};
    ++pos_;
    if (items > 1 || qualified || k == Kind::Range) return Kind::List;
    return k;
  }

  // One element of a list: an expression, or a qualifier and its operand.
  Kind ListItem() {
    if (AtEnd() || Code() == kCodeListSeparator || Code() == kCodeCloseBracket)
      throw CheckStop{"Inappropriate expression in list.", pos_ - 1};
    if (IsRelational(Code())) {
      const std::size_t q = pos_++;
      if (AtEnd() || Code() == kCodeListSeparator || Code() == kCodeCloseBracket || IsRelational(Code()))
        throw CheckStop{kListQualifierMessage, q};
      const Kind operand = Concatenation();
      if (!qualifierOf_.empty() && operand == Kind::Text)
        throw CheckStop{"Missing or improper qualifier in " + qualifierOf_ +
                            " function.\nExpected qualifier format:\n"
                            ">, <, or = followed by number or non-string variable",
                        q};
      if (!IsValue(operand)) throw CheckStop{kListQualifierMessage, q};
      return Kind::Value;
    }
    const std::size_t at = pos_;
    const Kind k = Logical();
    if (k == Kind::List) throw CheckStop{"Inappropriate expression in list.", at};
    return k;
  }

  // A function and its bracketed arguments; list functions end with an end-of-list record.
  void Call() {
    const std::size_t call = pos_++;
    const int f = static_cast<int>(r_[call].value);
    const std::string name = FunctionDisplayName(f);
    const std::size_t open = pos_;
    if (Code() != kCodeOpenBracket) throw CheckStop{"Missing argument.", call};
    ++pos_;
    if (Code() == kCodeCloseBracket) throw CheckStop{"Missing argument.", call};
    std::size_t arguments = 0;
    bool qualifierPending = false;  // a qualifier with no item after it yet
    for (;;) {
      if (AtEnd() || Code() == kCodeListSeparator || Code() == kCodeCloseBracket)
        throw CheckStop{"Missing expression in " + name, call};
      const bool qualifier = IsRelational(Code());
      const std::size_t at = pos_;
      // Only a list has items for a qualifier to pass or hold back, and only a list
      // reads a range or a nested list as several values.
      if (qualifier && !IsListFunction(f)) throw CheckStop{"Inappropriate expression in " + name, call};
      Kind k;
      if (IsListFunction(f)) {
        const std::string outer = std::exchange(qualifierOf_, name);
        k = ListItem();
        qualifierOf_ = outer;
      } else {
        const std::string outer = std::exchange(qualifierOf_, std::string());
        k = Logical();
        qualifierOf_ = outer;
        if (!IsValue(k)) throw CheckStop{"Inappropriate expression in " + name, at};
      }
      qualifierPending = qualifier;
      ++arguments;
      if (f >= 100 && f < 800 && !IsListFunction(f) && k == Kind::Text && f != 104 && f != 117 && f != 118 &&
          f != 125 && f != 203)
        throw CheckStop{"Improper argument.", call};
      if (Code() != kCodeListSeparator) break;
      ++pos_;
    }
    if (Code() != kCodeCloseBracket) throw CheckStop{"Improper expression in " + name, AtEnd() ? open : pos_};
    ++pos_;
    if (qualifierPending) throw CheckStop{"Missing or inappropriate expression in " + name, call};
    const ArgumentCount count = Arguments(f);
    if (arguments < count.least) throw CheckStop{"Missing or improper arguments.", call};
    if (arguments > count.most) throw CheckStop{"Too many expressions in " + name, call};
    if (Code() == kCodeEndOfList) ++pos_;
  }

  const std::vector<TokenRecord>& r_;
  std::size_t pos_ = 0;
  std::size_t end_ = 0;
  bool lastWasPlain_ = true;  // the last operand was a single element, not a computed number
  std::string qualifierOf_;   // the function whose argument list is being read, if any
};

}  // namespace

CompileFault CompileCheck(const std::vector<TokenRecord>& records, std::span<const std::string> lines) {
  ShapeChecker checker(records);
  bool inCondition = false;  // between IF or ELSEIF and THEN
  std::size_t opener = 0;    // the IF or ELSEIF of the condition in progress
  bool hadCondition = false;
  try {
    for (std::size_t i = 0; i < records.size(); ++i) {
      if (!IsStatementMarker(records[i])) continue;
      std::size_t end = i + 1;
      while (end < records.size() && !IsStatementMarker(records[end]) && records[end].code != kCodeScriptHeader) ++end;
      if (end == i + 1) continue;
      const std::int32_t code = records[i + 1].code;
      if (code == kCodeIf || code == kCodeElseIf) {
        inCondition = true;
        hadCondition = false;
        opener = i + 1;
      } else if (code == kCodeThen) {
        if (inCondition && !hadCondition) throw CheckStop{"Missing expression between IF and THEN.", opener};
        inCondition = false;
      } else if (inCondition) {
        checker.Condition(i + 1, end);
        hadCondition = true;
      } else {
        checker.Statement(i + 1, end);
      }
      i = end - 1;
    }
  } catch (const CheckStop& stop) {
    return StatementFault(stop.message, records, stop.at, lines);
  }
  return {};
}
