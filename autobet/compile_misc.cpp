#include <algorithm>
#include <charconv>
#include <optional>

#include "autobet/compiler.h"

namespace {

constexpr int kFunctionRound = 139;

bool IsListFunction(int function) { return (function >= 126 && function <= 133) || function == kFunctionRound; }

bool IsNumericText(std::string_view s) {
  if (s.empty()) return false;
  double parsed = 0;
  const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), parsed);
  return ec == std::errc() && end == s.data() + s.size();
}

// The column of the statement's first bracket as typed, outside strings and comments.
std::optional<int> FirstBracketColumn(const CompileFault& statement, std::span<const std::string> lines) {
  if (statement.firstLine < 1 || statement.firstLine > static_cast<int>(lines.size())) return std::nullopt;
  const std::string& line = lines[statement.firstLine - 1];
  bool quoted = false;
  for (int c = statement.firstColumn; c < statement.lastColumn && c < static_cast<int>(line.size()); ++c) {
    const char ch = line[c];
    if (ch == '"') quoted = !quoted;
    if (quoted) continue;
    if (ch == '\'') break;
    if (ch == '(' || ch == ')' || ch == '[' || ch == ']' || ch == '{' || ch == '}') return c;
  }
  return std::nullopt;
}

CompileFault BracketFault(const std::vector<TokenRecord>& records, std::size_t index,
                          std::span<const std::string> lines) {
  CompileFault fault = StatementFault("Missing or improperly placed parenthesis.", records, index, lines);
  if (const auto column = FirstBracketColumn(fault, lines)) fault.firstColumn = *column;
  return fault;
}

// Step 1: every statement closes what it opens, and never closes first.
CompileFault CheckBrackets(const std::vector<TokenRecord>& records, std::span<const std::string> lines) {
  int depth = 0;
  std::size_t statement = 0;
  for (std::size_t i = 0; i < records.size(); ++i) {
    const TokenRecord& r = records[i];
    if (IsStatementMarker(r)) {
      if (depth != 0) return BracketFault(records, statement, lines);
      statement = i;
    } else if (r.code == kCodeOpenBracket) {
      ++depth;
    } else if (r.code == kCodeCloseBracket && --depth < 0) {
      return BracketFault(records, i, lines);
    }
  }
  if (depth != 0) return BracketFault(records, statement, lines);
  return {};
}

// The close bracket that matches the open bracket at `open`; brackets are balanced by now.
std::size_t MatchingClose(const std::vector<TokenRecord>& records, std::size_t open) {
  int depth = 0;
  for (std::size_t i = open; i < records.size(); ++i) {
    if (records[i].code == kCodeOpenBracket) ++depth;
    if (records[i].code == kCodeCloseBracket && --depth == 0) return i;
  }
  return records.size() - 1;
}

bool OpenBracketAt(const std::vector<TokenRecord>& records, std::size_t i) {
  return i < records.size() && records[i].code == kCodeOpenBracket;
}

// Step 2: a function takes its argument in brackets; list functions end their list.
CompileFault CheckFunctions(std::vector<TokenRecord>& records, std::span<const std::string> lines) {
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (records[i].code != kCodeFunction) continue;
    const int function = static_cast<int>(records[i].value);
    if (!OpenBracketAt(records, i + 1))
      return StatementFault(
          "Missing or inappropriate reference to " + FunctionDisplayName(function) + (function < 20 ? " bet." : "."),
          records, i, lines);
    if (IsListFunction(function)) {
      const std::size_t close = MatchingClose(records, i + 1);
      records.insert(records.begin() + static_cast<std::ptrdiff_t>(close) + 1, TokenRecord{kCodeEndOfList, 0});
    }
  }
  return {};
}

std::string ListKindMessage(bool any) {
  if (any)
    return "Lists defined by \"Any\" must be enclosed in brackets.\nFor example:\n"
           "      Any(Big6, Field, Checkstacks)\n      Any[4,5,6,8,9,10]";
  return "Lists defined by \"All\" must be enclosed in brackets.\nFor example:\n"
         "      All(inside place bets)\n      All[Field, PassLine, Hard4]";
}

// Step 3: `any` and `all` take a bracketed list, which then ends like a list function's.
CompileFault CheckListKinds(std::vector<TokenRecord>& records, std::span<const std::string> lines) {
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (records[i].code != kCodeListKind) continue;
    if (!OpenBracketAt(records, i + 1))
      return StatementFault(ListKindMessage(records[i].value == 2), records, i, lines);
    const std::size_t close = MatchingClose(records, i + 1);
    records.insert(records.begin() + static_cast<std::ptrdiff_t>(close) + 1, TokenRecord{kCodeEndOfList, 0});
  }
  return {};
}

// Step 4: a statement that is only a string or only a number names its own place.
void MarkLabels(std::vector<TokenRecord>& records, std::vector<StringEntry>& strings) {
  for (std::size_t i = 0; i + 1 < records.size(); ++i) {
    if (!IsStatementMarker(records[i])) continue;
    const std::size_t only = i + 1;
    if (only + 1 < records.size() && !IsStatementMarker(records[only + 1])) continue;
    TokenRecord& r = records[only];
    const double index = static_cast<double>(only);
    if (r.code == kCodeString && r.value > 0 && r.value <= static_cast<double>(strings.size())) {
      // The empty string and the special strings have no entry to hold a place.
      r.code = kCodeLabel;
      strings[static_cast<std::size_t>(r.value) - 1].value = index;
    } else if (r.code == kCodeNumber) {
      strings.push_back({GeneralNumber(r.value), index});
      r = {kCodeLabel, static_cast<double>(strings.size())};
    }
  }
}

// Step 5: no two labels alike, without regard to case or surrounding blanks.
CompileFault CheckDuplicateLabels(const std::vector<TokenRecord>& records, const std::vector<StringEntry>& strings,
                                  std::span<const std::string> lines) {
  for (std::size_t a = 0; a < strings.size(); ++a) {
    if (strings[a].value <= 0) continue;
    const std::string first = LowerTrimmed(strings[a].text);
    for (std::size_t b = a + 1; b < strings.size(); ++b) {
      if (strings[b].value <= 0 || LowerTrimmed(strings[b].text) != first) continue;
      // Entry order is not source order (number labels are added last): report at the later one.
      const auto earlier = static_cast<std::size_t>(std::min(strings[a].value, strings[b].value));
      const auto later = static_cast<std::size_t>(std::max(strings[a].value, strings[b].value));
      const std::string message =
          std::string(IsNumericText(first) ? "A duplicate line number exists " : "A duplicate label exists ") +
          "in line " + std::to_string(StatementLine(records, earlier));
      return StatementFault(message, records, later, lines);
    }
  }
  return {};
}

// The operand on one side of `thru`: the variable or function, past any reference pieces
// and, to the left, past a function's bracketed argument. Nothing when the statement ends.
std::optional<std::size_t> ThruOperand(const std::vector<TokenRecord>& records, std::size_t thru, bool right) {
  auto ends = [&](std::size_t i) {
    return i >= records.size() || IsStatementMarker(records[i]) || records[i].code == kCodeScriptHeader;
  };
  auto isPiece = [&](std::size_t i) { return IsReferencePiece(records[i]); };
  if (right) {
    if (ends(thru + 1)) return std::nullopt;
    std::size_t i = thru + 1;
    while (!ends(i + 1) && isPiece(i)) ++i;
    return i;
  }
  if (thru == 0 || ends(thru - 1)) return std::nullopt;
  std::size_t i = thru - 1;
  while (!ends(i - 1) && isPiece(i)) --i;
  if (records[i].code == kCodeCloseBracket) {
    int depth = 0;
    for (; !ends(i); --i) {
      if (records[i].code == kCodeCloseBracket) ++depth;
      if (records[i].code == kCodeOpenBracket && --depth == 0) break;
    }
    if (!ends(i) && records[i - 1].code == kCodeFunction) --i;
  }
  return i;
}

// The family of a numbered bet, checkstack or checkstack name, by its function number; 0 for none.
int ThruFamily(const TokenRecord& r) {
  const int n = static_cast<int>(r.value);
  if (r.code == kCodeFunction) return (n >= 1 && n <= 11) || n == 21 || n == 800 ? n : 0;
  if (r.code != kCodeVariable) return 0;
  struct Range {
    int low, high, family;
  };
  static constexpr Range kFamilies[] = {{1, 6, 1},     {7, 12, 2},     {13, 18, 3},    {19, 24, 4}, {25, 30, 5},
                                        {31, 36, 6},   {37, 42, 7},    {50, 51, 8},    {53, 56, 9}, {64, 80, 10},
                                        {98, 107, 11}, {200, 299, 21}, {800, 899, 800}};
  for (const Range& range : kFamilies)
    if (n >= range.low && n <= range.high) return range.family;
  return 0;
}

bool IsVariableOrFunction(const TokenRecord& r) { return r.code == kCodeVariable || r.code == kCodeFunction; }

}  // namespace

CompileFault CompileMisc(std::vector<TokenRecord>& records, std::vector<StringEntry>& strings,
                         std::span<const std::string> lines) {
  if (records.empty()) return {};
  if (CompileFault fault = CheckBrackets(records, lines); fault.Failed()) return fault;
  if (CompileFault fault = CheckFunctions(records, lines); fault.Failed()) return fault;
  if (CompileFault fault = CheckListKinds(records, lines); fault.Failed()) return fault;
  MarkLabels(records, strings);
  return CheckDuplicateLabels(records, strings, lines);
}

CompileFault CompileThru(const std::vector<TokenRecord>& records, std::span<const std::string> lines) {
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (records[i].code != kCodeThru) continue;
    const auto right = ThruOperand(records, i, true);
    if (!right) return StatementFault("Missing operand following 'thru'.", records, i, lines);
    if (!IsVariableOrFunction(records[*right]))
      return StatementFault("Missing or incompatible operand following 'thru'.", records, i, lines);
    const int rightFamily = ThruFamily(records[*right]);
    if (rightFamily == 0) return StatementFault("Incompatible operand following 'thru'.", records, i, lines);
    const auto left = ThruOperand(records, i, false);
    if (!left) return StatementFault("Missing operand preceding 'thru'.", records, i, lines);
    if (!IsVariableOrFunction(records[*left]))
      return StatementFault("Missing or incompatible operand preceding 'thru'.", records, i, lines);
    const int leftFamily = ThruFamily(records[*left]);
    if (leftFamily == 0) return StatementFault("Incompatible operand preceding 'thru'.", records, i, lines);
    if (leftFamily != rightFamily)
      return StatementFault(
          "Incompatible operands surrounding 'thru'.\n"
          "Variables to the left and right of 'thru' should be similar bet types, checkstacks, or checkstack "
          "names.\nFor example:\n     Lay4 thru Lay6\n     cs5 thru cs10\n     DontComeOdds5 thru DontComeOdds9",
          records, i, lines);
  }
  return {};
}
