#pragma once
// The first stage of the Auto-Bet compiler: script text to the token stream. Plain
// data and functions; the seats' player names come in as a list, not from a Game.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// One element of every compiled list. `code` is the record's kind (or 100 + source line
// for a statement marker); `value` is a number, a table index, a jump target or a column.
struct TokenRecord {
  std::int32_t code = 0;
  double value = 0;
  friend bool operator==(const TokenRecord&, const TokenRecord&) = default;
};

// Copies a record field by field. Records are often written one field at a time, and a
// plain copy just after reads the pair as one 16-byte piece, which the processor cannot
// take from the two smaller writes: it waits for them to reach the cache instead.
inline void CopyRecord(TokenRecord& to, const TokenRecord& from) {
  to.code = from.code;
  to.value = from.value;
}

// Record codes that the tokeniser writes (keywords and operators use their L number).
enum TokenCode : std::int32_t {
  kCodeEndOfList = 0,
  kCodeIf = 1,
  kCodeThen = 9,
  kCodeElse = 10,
  kCodeElseIf = 11,
  kCodeEndIf = 12,
  kCodeReturn = 13,
  kCodeGoto = 14,
  kCodeGosub = 15,
  kCodeDo = 16,
  kCodeLoop = 17,
  kCodeExitDo = 18,
  kCodeOpenBracket = 20,
  kCodeCloseBracket = 21,
  kCodeEquals = 50,
  kCodeOnTo = 57,
  kCodeThru = 58,
  kCodeFrom = 59,
  kCodePower = 60,
  kCodeTimes = 61,
  kCodeDivide = 62,
  kCodeIntegerDivide = 63,
  kCodeMod = 64,
  kCodePlus = 65,
  kCodeMinus = 66,
  kCodeNot = 70,
  kCodeAnd = 71,
  kCodeOr = 72,
  kCodeXor = 73,
  kCodeConcatenate = 74,
  kCodeListSeparator = 75,
  kCodeStatement = 100,  // plus the source line
  kCodeFunction = -1,
  kCodeFunctionTarget = -2,
  kCodeScriptHeader = -3,
  kCodeVariable = -11,
  kCodeVariableTarget = -12,
  kCodePlayer = -13,
  kCodeTime = -14,
  kCodeCounted = -15,
  kCodeModifier = -16,
  kCodeNumber = -31,
  kCodeString = -51,
  kCodeAction = -61,
  kCodeLabel = -71,
  kCodeListKind = -81,
};

// A player, time, X or Y piece of a reference group.
inline bool IsReferencePiece(const TokenRecord& r) { return r.code >= kCodeModifier && r.code <= kCodePlayer; }

// An entry of the string pool. Pool index k (from 1) is element k - 1 of the vector.
struct StringEntry {
  std::string text;
  double value = 0;
  friend bool operator==(const StringEntry&, const StringEntry&) = default;
};

// The first fault of a compilation: the message and its source range. Lines count from
// 1, columns from 0 in the source line as typed; the last column is one past the end.
struct CompileFault {
  std::string message;
  int firstLine = 0;
  int firstColumn = 0;
  int lastLine = 0;
  int lastColumn = 0;
  bool Failed() const { return firstLine > 0; }
};

// A row of the token table: every occurrence of `key` in a line becomes `replacement`.
struct TokenRow {
  std::string_view key;
  std::string_view replacement;
};

constexpr int kTokenTableRoom = 1100;
constexpr int kTokenTableFixedAndGenerated = 1037;
constexpr int kPlayerSeats = 8;

// The fixed rows with the generated checkstack rows at their places, in precedence order.
std::span<const TokenRow> TokenTable();

// Operator spacing outside quotes and comments, numbers in plain decimal, two-character
// comparisons joined again, one leading blank. Also used by the editor.
std::string NormaliseSpacing(std::string_view line);

// The token words of one source line (after the table and the fillers), wrapped in
// single blanks; "" for a blank line. String literals are appended to `strings`.
// `playerNames[i]` is the name of seat i + 1. An unclosed quote fills `fault` (line 1).
std::string TranslateLine(std::string_view line, std::span<const std::string> playerNames,
                          std::vector<StringEntry>& strings, CompileFault& fault);

// Tokenises the lines of `player` (1..8, or 0 for a hot key's or a checked script) into
// `records` (header, statement markers, one record per word) and `strings`. On a fault
// both lists are left empty and the fault is returned.
CompileFault TokeniseScript(int player, std::span<const std::string> lines, std::span<const std::string> playerNames,
                            std::vector<TokenRecord>& records, std::vector<StringEntry>& strings);

// What the probe becomes when a name is refused.
inline constexpr std::string_view kReservedWordMark = ">>>reserved word<<<";

// Whether `name` may be a player or checkstack name: a refused name sets `probe` to
// kReservedWordMark and returns the message to show; an accepted one returns "" and
// leaves `probe` alone.
std::string ProbeReservedWord(std::string_view name, int language, std::string& probe);

// A number in the general format of labels, messages and Str$: up to 15 significant
// digits, no padding ("100", "0.25", "2.3", "1e+20").
std::string GeneralNumber(double value);
