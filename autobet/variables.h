#pragma once
// The values of the interpreter: variables (variables.cpp) and functions (functions.cpp),
// read from reference groups and calls in the statement buffer.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "autobet/statement_buffer.h"
#include "autobet/tokens.h"
#include "engine/game_state.h"

// A record read as a number: numbers as they are, strings by the numeric value at the
// head of their text (Val), anything else 0.
double NumberOfText(const Game& g, const TokenRecord& r);
inline double NumberOf(const Game& g, const TokenRecord& r) {
  return r.code == kCodeNumber ? r.value : NumberOfText(g, r);
}
// A record read as text: numbers in general format, strings through StringValue.
std::string TextOf(const Game& g, const TokenRecord& r);
// Compares two value records by a relational code 50..55: numeric when the left is a
// number, else binary text compare.
bool CompareTexts(const Game& g, const TokenRecord& left, int relational, const TokenRecord& right);
// A relational operator's code (50 = to 55 >=) applied to two values of one kind.
template <class T>
bool RelateValues(const T& a, int relational, const T& b) {
  switch (relational) {
    case 50: return a == b;
    case 51: return a != b;
    case 52: return a < b;
    case 53: return a > b;
    case 54: return a <= b;
    case 55: return a >= b;
    default: return false;
  }
}
inline bool CompareValues(const Game& g, const TokenRecord& left, int relational, const TokenRecord& right) {
  if (left.code == kCodeString) return CompareTexts(g, left, relational, right);
  return RelateValues(NumberOf(g, left), relational, NumberOf(g, right));
}

// The text of a string record's value: a pool entry above 0, the special strings at or
// below it. An unknown special sets RunError 998 and gives "".
std::string StringValue(const Game& g, int code, double value);
// The same text without a copy where it is kept (the pool, names); `scratch` holds what
// has to be made (numbers, the date and time). Comparisons use it: no string is built
// for them on the per-roll path.
std::string_view StringView(const Game& g, int code, double value, std::string& scratch);

// The seat that a player piece names: 10 shooter, 11 last shooter, 12 original shooter,
// 13 the selected player, 14 the Bettor, 15 no one (0), otherwise the piece itself.
inline int SeatOfPiece(const Game& g, int piece) {
  const int selected = g.AutoBet.SelectedSeat;
  switch (piece) {
    case 10: return g.Table.Shooter;
    case 11: return g.Table.LastHandShooter;
    case 12: return g.Table.HandShooter;
    case 13: return selected;
    case 14: return g.AutoBet.Bettor != 0 ? g.AutoBet.Bettor : selected;
    case 15: return 0;
    default: return piece;
  }
}

// How many piece records follow a variable record of V number `v` (0, 1, 2, 3 or 4).
inline int GroupSize(int v) {
  if (v >= 1 && v <= 107) return 4;
  if (v >= 108 && v <= 999) return 1;
  if (v >= 1000 && v <= 1999) return 2;
  if (v >= 2000 && v <= 2999) return 3;
  if (v >= 3000 && v <= 4999) return 4;
  return 0;
}

// A reference group (a variable or target record and the GroupSize(v) pieces after it)
// read into its parts. The compiler writes every piece the V number takes; a piece a
// group leaves out keeps the default here.
struct ReferencePieces {
  int v = 0;
  int piece = 14;          // the Bettor
  int time = 3;            // current session
  int x = 1;               // wagered
  int y = 34;              // current $
  bool hasPlayer = false;  // a player piece was written
};
inline ReferencePieces ReadPieces(const TokenRecord* group) {
  ReferencePieces r;
  r.v = static_cast<int>(group[0].value);
  const int n = GroupSize(r.v);
  for (int i = 1; i <= n; ++i) {
    const int value = static_cast<int>(group[i].value);
    switch (group[i].code) {
      case kCodePlayer:
        r.piece = value;
        r.hasPlayer = true;
        break;
      case kCodeTime: r.time = value; break;
      case kCodeCounted: r.x = value; break;
      case kCodeModifier: r.y = value; break;
      default: break;
    }
  }
  return r;
}

// H1..H5 to the base column of their scope group: current hand, last hand, current
// session (also "all hands"), last session, all sessions.
inline int ScopeBase(int time) {
  switch (time) {
    case 1: return kHandScope;
    case 2: return kLastHandScope;
    case 4: return kLastSessionScope;
    case 5: return kAllScope;
    default: return kSessionScope;
  }
}

// `part` as a percentage of `whole`; 0 of nothing.
double Share(double part, double whole);

// Reads the reference group at `group` (a -11 or -12 record followed by its pieces) into
// a number or string record. Sets RunError (and returns false) on a fault.
bool ReadVariable(Game& g, const TokenRecord* group, TokenRecord& out);
// The same for a group already read into its parts (ReadVariable is ReadPieces, then this).
bool ReadReference(Game& g, const ReferencePieces& r, TokenRecord& out);
// The reads scripts make most, kept apart so that a plan makes them without the whole
// dispatch: the amount of bet row `row` (a bet read with Y34, or a checkstack) of the seat
// that player piece `piece` names.
inline bool AmountValue(Game& g, int piece, int row, double& value) {
  const int seat = SeatOfPiece(g, piece);
  if (seat < 0 || seat >= kSeats) return Fault(g, 50);
  value = g.BetAmount[seat][row].ToDouble();
  return true;
}
inline bool ReadAmount(Game& g, int piece, int row, TokenRecord& out) {
  double value = 0;
  if (!AmountValue(g, piece, row, value)) return false;
  out = {kCodeNumber, value};
  return true;
}
// A table fact (V5000 and up), which names no seat but still wants the player piece's to
// be one.
bool FactValue(Game& g, int piece, int v, double& value);
bool ReadFact(Game& g, int piece, int v, TokenRecord& out);
inline bool IsAmountRead(const ReferencePieces& r) {
  return (r.v >= 200 && r.v < 300) || (r.v >= 1 && r.v <= 107 && r.y == 34);
}
// A bet's statistic that can't fault: the total (Y22, or no Y) or the last roll's amount
// (Y29) of its resolved wagers, wins, losses or net (any X but the percentage, X5).
// Scripts read these by the hundred, summing them over "bets" at the end of a hand.
inline bool IsBetRowRead(const ReferencePieces& r) {
  return r.v >= 1 && r.v <= 107 && r.x != 5 && (r.y == 0 || r.y == 22 || r.y == 29);
}
// Its value, as ReadReference gives it; faults only on a seat out of limits.
bool BetRowValue(Game& g, const ReferencePieces& r, double& value);

// The list functions over numbers: Highest, Lowest, Average, StdDev, Sum, Count.
bool IsNumberListFunction(int f);
// One of them taken over the arguments that pass their qualifiers, in their order; StdDev
// then takes them again, for the squares of their distances from the mean.
struct NumberListTally {
  explicit NumberListTally(int function);
  int f = 0;
  int better = 0;  // Highest and Lowest: the relation by which an argument becomes the best
  TokenRecord best{kCodeNumber, 0};
  double sum = 0, squares = 0, mean = 0;
  int count = 0;
  void Take(const Game& g, const TokenRecord& r) {
    if (count == 0 || (better != 0 && CompareValues(g, r, better, best))) best = r;
    sum += NumberOf(g, r);
    ++count;
  }
  bool WantsSquares();  // and then takes the mean
  void TakeSquare(const Game& g, const TokenRecord& r) {
    const double d = NumberOf(g, r) - mean;
    squares += d * d;
  }
  double Value(const Game& g) const;
};

// Replaces the variable record at buffer index `position` by its value. Returns the number
// of piece records that follow it, which the caller then removes.
int AssignVariable(Game& g, int position);

// Replaces the function call at buffer index `position` (its arguments already reduced to
// values within its brackets, an end-of-list record after a list function's bracket) by
// its value. Returns the number of records the call consumed after the function record.
int AssignFunction(Game& g, int position);

// A function in target form (-2: a bet family with its number, CS( ), CSN( )) becomes
// the -12 group of the variable it names, its pieces kept. Sets RunError on a bad number.
void ResolveTargetFunction(Game& g, int position);

// Where the call at `position` of a buffer (records 1..length) ends: its close bracket (0
// when it has none), the reference pieces after it, and how many records AssignFunction
// consumes after the function record. Reads the records' codes only.
struct CallExtent {
  int close = 0;
  int pieces = 0;
  int consumed = 0;
};
CallExtent LocateCallExtent(const std::vector<TokenRecord>& buffer, int length, int position);
// The variable that numbered form `f` (a bet family, CS, CSN) names with argument `n`, its
// group to have `pieces` pieces: 0, with RunError set, when it names none. What
// ResolveTargetFunction makes of a call with one argument.
int NamedVariable(Game& g, int f, double n, int pieces);

// The roll counters V2600..V2605 of a scope column: come-out rolls, passes and misses,
// each as a count and a share. With `total` 0 over the totals Y names (Y0 all, Y14
// naturals and craps, Y15 points); else decided on that total (2..12) alone, a share of
// come-out rolls then being one of all come-out rolls.
double RollCounter(const Game& g, int v, int column, int y, int total);

// # of points (V4606) and % of points (V4607) of a scope column: established (X6, and any
// other X), passed (X7) or missed (X8), on all points (`total` 0) or on one.
double PointCounter(const Game& g, int v, int column, int x, int total);

// The roll kind a written roll names under X: a total 2..12 (X30), a combination
// die1.die2 in either order (X31) or in die order (X32), a face 1..6 of die 1 or die 2
// (X33, X34); under any other X a whole number is a total and die1.die2 a combination in
// either order. 0 when it names none, `limitsFault` then the run-time fault of the range
// (1001 totals, 1009 combinations, 1010 faces).
int SelectedRollKind(int x, double n, int& limitsFault);

// The dice statistic `v` (4501..4512) of roll kind `kind` (0 all rolls) in a statistics
// column, the chi-square family over the display X names: shared by the V4501.. words,
// whose Y piece holds the kind they select, and their function forms.
double DiceStatistic(const Game& g, int v, int column, int x, int kind);

// The text of a run-time fault code, lines joined by a line end; "" for 0.
std::string RunErrorText(int code);
