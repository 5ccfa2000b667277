// Function calls of the Auto-Bet interpreter. A call arrives with its arguments already
// reduced to values between its brackets; it leaves one value in place of the function
// record. Numeric functions touch a few cells and allocate nothing; the string functions
// build their text, which lives until the end of the cycle.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include "autobet/statement_buffer.h"
#include "autobet/variables.h"
#include "engine/game_state.h"
#include "engine/messages.h"
#include "stats/roll_totals.h"
#include "storage/paths.h"

namespace {

// The function numbers of the token table.
enum Function : int {
  kLay = 1,
  kBuy = 7,
  kBig = 8,
  kHard = 9,
  kHop = 10,
  kRepeater = 11,
  kCheckStack = 21,
  kAverageBankroll = 22,
  kFirstDiceStatistic = 25,
  kFirstDecision = 40,
  kFirstPointCount = 46,
  kLastDiceStatistic = 47,
  kPlayerAt = 50,
  kSqr = 100,
  kInt = 101,
  kAbs = 102,
  kAsc = 104,
  kVal = 117,
  kLen = 118,
  kInput = 125,
  kHighest = 126,
  kLowest = 127,
  kAverage = 128,
  kStdDev = 129,
  kSum = 130,
  kCount = 131,
  kHighestText = 132,
  kLowestText = 133,
  kPvalue = 137,
  kRound = 139,
  kSister = 141,
  kDie = 190,
  kOddsFactor = 191,
  kInstr = 203,
  kCheckStackName = 800,
  kLeft = 801,
  kRight = 802,
  kRemoveLeft = 803,
  kRemoveRight = 804,
  kMid = 805,
  kRemoveMid = 806,
  kInsert = 809,
  kStr = 810,
  kChr = 811,
  kSpace = 812,
  kStringOf = 813,
  kInputText = 825,
  kPlayerName = 850,
};

constexpr int kNoPlayerThere = 851;
constexpr int kUnexpected = 10000;
constexpr std::size_t kLongestRunString = 256;
constexpr int kFirstCheckStackNameVariable = 800;
constexpr int kFirstOddsFactorVariable = 5612;  // odds allowed on 4; 5, 6, 8, 9, 10 follow

// ---- The call in the buffer.

// Where a call's parts stand: its brackets, the first few arguments (0 where an element
// holds no value), and the reference pieces after the close bracket.
struct Call {
  int open = 0, close = 0;
  int count = 0;  // elements between the brackets
  std::array<int, 4> at{};
  int pieces = 0;
};

Call LocateCallIn(const std::vector<TokenRecord>& b, int length, int position) {
  Call c;
  if (position + 1 > length || b[position + 1].code != kCodeOpenBracket) return c;
  c.open = position + 1;
  int depth = 0, element = 0;
  bool empty = true;
  for (int i = c.open; i <= length; ++i) {
    const TokenRecord& r = b[i];
    if (r.code == kCodeOpenBracket && depth++ == 0) continue;
    if (r.code == kCodeCloseBracket && --depth == 0) {
      c.close = i;
      break;
    }
    if (depth != 1) continue;
    empty = false;
    if (r.code == kCodeListSeparator) {
      ++element;
      continue;
    }
    if (IsValueRecord(r) && element < static_cast<int>(c.at.size()) && c.at[element] == 0) c.at[element] = i;
  }
  if (c.close == 0) return c;
  c.count = empty ? 0 : element + 1;
  while (c.pieces < 4 && c.close + c.pieces + 1 <= length && IsReferencePiece(b[c.close + c.pieces + 1])) ++c.pieces;
  return c;
}

Call LocateCall(const AutoBetProgram& p, int position) {
  return LocateCallIn(p.StatementBuffer, p.StatementLength, position);
}

// The piece of a kind after the close bracket, or `otherwise` when the call has none.
int PieceOf(const AutoBetProgram& p, const Call& c, int code, int otherwise) {
  for (int k = 1; k <= c.pieces; ++k)
    if (p.StatementBuffer[c.close + k].code == code) return static_cast<int>(p.StatementBuffer[c.close + k].value);
  return otherwise;
}

// ---- Arguments.

const TokenRecord kNoValue{kCodeNumber, 0};

const TokenRecord& Argument(const Game& g, const Call& c, int n) {
  return c.at[n] != 0 ? g.AutoBet.StatementBuffer[c.at[n]] : kNoValue;
}
double NumberArgument(const Game& g, const Call& c, int n) { return NumberOf(g, Argument(g, c, n)); }

// A whole number within [low, high], as an index must be.
bool WholeWithin(double v, int low, int high, int& out) {
  if (!(v >= low && v <= high)) return false;  // a NaN too
  const int whole = static_cast<int>(v);
  if (whole != v) return false;
  out = whole;
  return true;
}

// A count or position of the string functions: the nearest whole number, as the
// interpreter rounds the operands of \ and mod.
long long Whole(double v) {
  const double r = std::nearbyint(v);
  if (r > 1e15) return static_cast<long long>(1e15);
  if (r < -1e15) return static_cast<long long>(-1e15);
  return static_cast<long long>(r);
}

// ---- Texts as characters. Scripts speak the table's 8-bit code page: one character is
// one byte there, so lengths and positions count what the player sees.

bool IsAscii(const std::string& s) {
  return std::all_of(s.begin(), s.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}
std::string ToChars(std::string text) { return IsAscii(text) ? text : Utf8ToWindows1252(text); }
std::string FromChars(std::string chars) { return IsAscii(chars) ? chars : Windows1252ToUtf8(chars); }
std::string TextArgument(const Game& g, const Call& c, int n) { return ToChars(TextOf(g, Argument(g, c, n))); }

// ---- Bets and checkstacks by number.

constexpr bool IsPointNumber(int n) { return n == 4 || n == 5 || n == 6 || n == 8 || n == 9 || n == 10; }

// Lay( ) to Buy( ): the row of the family's bet on point n.
constexpr BetFamily kPointFamilies[] = {BetFamily::Lay,        BetFamily::DontComeNumber, BetFamily::DontComeOdds,
                                        BetFamily::ComeNumber, BetFamily::ComeOdds,       BetFamily::Place,
                                        BetFamily::Buy};
constexpr int PointVariable(int f, int n) { return IsPointNumber(n) ? PointRow(kPointFamilies[f - kLay], n) : 0; }

// Hop(): the two dice as 13 or 1.3, in either order; only the hops the layout offers.
int HopVariable(double n) {
  int low = 0, high = 0;
  if (n == std::floor(n)) {
    const int whole = static_cast<int>(n);
    if (whole < 11 || whole > 66) return 0;
    low = whole / 10;
    high = whole % 10;
  } else {
    low = static_cast<int>(std::floor(n));
    high = static_cast<int>(std::lround((n - low) * 10));
    if (std::fabs(n - (low + high / 10.0)) > 1e-9) return 0;
  }
  if (low < 1 || low > 6 || high < 1 || high > 6) return 0;
  if (low > high) std::swap(low, high);
  // The hops off the hop rows are the one-roll bets on 2, 3, 11 and 12.
  switch (low * 10 + high) {
    case 11: return bet::Two;
    case 12: return bet::Three;
    case 56: return bet::Eleven;
    case 66: return bet::Twelve;
    default: break;
  }
  // Rows 64..80 hold the hops 1-3 .. 5-5 in this order.
  static constexpr std::array<int, 17> kHops = {13, 14, 15, 16, 22, 23, 24, 25, 26, 33, 34, 35, 36, 44, 45, 46, 55};
  const int* at = std::find(kHops.begin(), kHops.end(), low * 10 + high);
  return at == kHops.end() ? 0 : bet::Hop13 + static_cast<int>(at - kHops.begin());
}

// The row that a form of a total (Lay( ) to Repeater( ), Hop( ) aside) names with total
// `whole` (2..12), 0 for none.
constexpr int TotalFormVariable(int f, int whole) {
  switch (f) {
    case kBig: return whole == 6 ? bet::Big6 : whole == 8 ? bet::Big8 : 0;
    case kHard: return whole % 2 == 0 && whole >= 4 && whole <= 10 ? bet::Hard4 + (whole - 4) / 2 : 0;
    case kRepeater: return whole == 7 ? 0 : bet::Repeater2 + whole - 2 - (whole > 7);
    default: return f >= kLay && f <= kBuy ? PointVariable(f, whole) : 0;
  }
}
// The same by form and total, looked up: scripts name bets by a number at every roll.
constexpr auto kTotalFormVariables = [] {
  std::array<std::array<std::int16_t, 13>, kRepeater + 1> rows{};
  for (int f = kLay; f <= kRepeater; ++f)
    for (int whole = 2; whole <= 12; ++whole)
      rows[static_cast<std::size_t>(f)][static_cast<std::size_t>(whole)] =
          static_cast<std::int16_t>(f == kHop ? 0 : TotalFormVariable(f, whole));
  return rows;
}();

// The V number that a numbered form names (Lay(4), Hop(1.3), CS(5), ...), 0 when the
// number is none of the family's.
int FormVariable(int f, double n) {
  int whole = 0;
  switch (f) {
    case kCheckStack: return WholeWithin(n, 0, 99, whole) ? kCheckStackRow + whole : 0;
    case kCheckStackName: return WholeWithin(n, 0, 99, whole) ? kFirstCheckStackNameVariable + whole : 0;
    case kHop: return HopVariable(n);
    default: break;
  }
  if (f < kLay || f > kRepeater || !WholeWithin(n, 2, 12, whole)) return 0;
  return kTotalFormVariables[static_cast<std::size_t>(f)][static_cast<std::size_t>(whole)];
}

bool IsNumberedForm(int f) { return (f >= kLay && f <= kRepeater) || f == kCheckStack || f == kCheckStackName; }

// ---- Values of the table.

// The seat's bankroll over its last `rolls` rolls, from the bankroll graph's history;
// the bankroll as it stands when no roll has been kept.
double AverageBankroll(const Game& g, int seat, int rolls) {
  const int index = g.BankrollGraphIndex;
  // The history restarts with the session; once it has wrapped, all of it is this session's.
  const int kept = std::max(index, std::min(TableRolls(g.Stats, kSessionScope), kBankrollGraphSize));
  const int n = std::min(rolls, kept);
  if (n <= 0 || index <= 0) return g.Bankroll[seat].ToDouble();
  Money sum;
  for (int k = 0, at = index; k < n; ++k) {
    sum += g.BankrollHistory[seat][at];
    at = at > 1 ? at - 1 : kBankrollGraphSize;
  }
  return sum.ToDouble() / n;
}

// Round(value, precision, direction): to a multiple of precision, down (direction below
// 0), to the nearest (0) or up (above 0); a value already a multiple stays as it is.
double RoundTo(double value, double precision, double direction) {
  const double q = value / precision;
  if (q == std::floor(q)) return value;
  if (direction < 0) return std::floor(q) * precision;
  if (direction == 0) return std::floor(q + 0.5) * precision;
  return std::floor(q + 1) * precision;
}

// ---- Dice statistics with a roll: # rolls(7), % prob(1.3) 36 combo, # points(6)...

bool RollKindOf(Game& g, double n, int x, int& kind) {
  int limitsFault = 0;
  kind = SelectedRollKind(x, n, limitsFault);
  return kind != 0 || Fault(g, limitsFault);
}

bool ReadDiceStatistic(Game& g, int f, const Call& c, double& out) {
  const AutoBetProgram& p = g.AutoBet;
  const int seat = SeatOfPiece(g, PieceOf(p, c, kCodePlayer, 0));
  if (seat < 0 || seat >= kSeats) return Fault(g, 50);
  const int column = ScopeBase(PieceOf(p, c, kCodeTime, 3)) + seat;
  const int x = PieceOf(p, c, kCodeCounted, 0);
  const double n = NumberArgument(g, c, 0);
  int total = 0;
  if (f >= kFirstPointCount) {
    if (!WholeWithin(n, 4, 10, total) || !IsPointNumber(total)) return Fault(g, 1002);
    out = PointCounter(g, 4606 + f - kFirstPointCount, column, x, total);
    return true;
  }
  if (f >= kFirstDecision) {
    if (!WholeWithin(n, 2, 12, total)) return Fault(g, 1001);
    out = RollCounter(g, 2600 + f - kFirstDecision, column, 0, total);
    return true;
  }
  int kind = 0;
  if (!RollKindOf(g, n, x, kind)) return false;
  out = DiceStatistic(g, 4501 + f - kFirstDiceStatistic, column, x, kind);
  return true;
}

// ---- List functions.

bool IsListFunction(int f) { return (f >= kHighest && f <= kLowestText) || f == kRound; }

}  // namespace

bool IsNumberListFunction(int f) { return f >= kHighest && f <= kCount; }

NumberListTally::NumberListTally(int function)
    : f(function),
      better(function == kHighest  ? 53
             : function == kLowest ? 52
                                   : 0) {}

bool NumberListTally::WantsSquares() {
  if (f != kStdDev || count == 0) return false;
  mean = sum / count;
  return true;
}

double NumberListTally::Value(const Game& g) const {
  switch (f) {
    case kHighest:
    case kLowest: return count > 0 ? NumberOf(g, best) : 0;
    case kAverage: return count > 0 ? sum / count : 0;
    case kSum: return sum;
    case kCount: return count;
    default: return count > 0 ? std::sqrt(squares / count) : 0;  // StdDev
  }
}

namespace {

// Walks the arguments between the brackets, calling `take` with each that passes the
// qualifier in force (a relational operator and a value at the head of an element).
template <class Take>
void PassingArguments(const Game& g, const Call& c, Take&& take) {
  const auto& b = g.AutoBet.StatementBuffer;
  int qualifier = 0;
  int qualifierAt = 0;
  for (int i = c.open + 1; i < c.close; ++i) {
    const TokenRecord& r = b[i];
    if (IsRelational(r) && i + 1 < c.close && IsValueRecord(b[i + 1])) {
      qualifier = r.code;
      qualifierAt = ++i;
      continue;
    }
    if (!IsValueRecord(r)) continue;
    if (qualifier != 0 && !CompareValues(g, r, qualifier, b[qualifierAt])) continue;
    take(r);
  }
}

void ListFunction(Game& g, int f, int position, const Call& c) {
  AutoBetProgram& p = g.AutoBet;
  if (f == kHighestText || f == kLowestText) {
    TokenRecord best{kCodeString, 0};
    std::string bestText;
    bool any = false;
    PassingArguments(g, c, [&](const TokenRecord& r) {
      std::string text = TextOf(g, r);
      if (!any || (f == kHighestText ? text > bestText : text < bestText)) {
        best = r;
        bestText = std::move(text);
      }
      any = true;
    });
    // A string keeps its own record; a number becomes its text.
    if (best.code == kCodeString) p.StatementBuffer[position] = best;
    else PutString(p, position, std::move(bestText));
    return;
  }
  NumberListTally tally(f);
  PassingArguments(g, c, [&](const TokenRecord& r) { tally.Take(g, r); });
  if (tally.WantsSquares()) PassingArguments(g, c, [&](const TokenRecord& r) { tally.TakeSquare(g, r); });
  PutNumber(p, position, tally.Value(g));
}

// ---- String functions.

// The text typed into an input box titled for the Bettor.
std::string AskInput(Game& g, const std::string& prompt) {
  const int seat = SeatOfPiece(g, 14);
  const std::string name = seat >= 1 && seat < kSeats ? g.PlayerName[seat] : std::string();
  return Tell(g, prompt, "Auto-Bet (" + name + ")", 0, msg::kOk | msg::kInput).Input;
}

bool StringFunction(Game& g, int f, int position, const Call& c) {
  AutoBetProgram& p = g.AutoBet;
  // The text worked on, and the count, position or code that goes with it.
  const bool ofNumber = f == kStr || f == kChr || f == kSpace || f == kStringOf;
  const std::string s = ofNumber ? std::string() : TextArgument(g, c, 0);
  const long long len = static_cast<long long>(s.size());
  const long long n = Whole(NumberArgument(g, c, ofNumber ? 0 : 1));
  std::string result;
  switch (f) {
    case kLeft:
    case kRight:
    case kRemoveLeft:
    case kRemoveRight: {
      if (n < 0) return Fault(g, f);
      const std::size_t k = static_cast<std::size_t>(std::min(n, len));
      if (f == kLeft) result = s.substr(0, k);
      else if (f == kRight) result = s.substr(s.size() - k);
      else if (f == kRemoveLeft) result = s.substr(k);
      else result = s.substr(0, s.size() - k);
      break;
    }
    case kMid:
    case kRemoveMid: {
      const long long count = Whole(NumberArgument(g, c, 2));
      if (n < 1 || count < 0) return Fault(g, f);
      const std::size_t from = static_cast<std::size_t>(std::min(n - 1, len));
      const std::size_t k = static_cast<std::size_t>(std::min(count, len - static_cast<long long>(from)));
      result = f == kMid ? s.substr(from, k) : s.substr(0, from) + s.substr(from + k);
      break;
    }
    case kInsert: {
      if (n < 1 || n > len + 1) return Fault(g, f);
      result = s;
      result.insert(static_cast<std::size_t>(n - 1), TextArgument(g, c, 2));
      if (result.size() > kLongestRunString) result.resize(kLongestRunString);
      break;
    }
    case kStr: result = GeneralNumber(NumberArgument(g, c, 0)); break;
    case kChr:
      if (n < 0 || n > 255) return Fault(g, f);
      result.assign(1, static_cast<char>(n));
      break;
    case kSpace:
      if (n < 0 || n > static_cast<long long>(kLongestRunString)) return Fault(g, f);
      result.assign(static_cast<std::size_t>(n), ' ');
      break;
    case kStringOf: {
      // The character: the first of a text, or a code.
      const TokenRecord& what = Argument(g, c, 1);
      long long code = 0;
      if (what.code == kCodeString) {
        const std::string t = ToChars(TextOf(g, what));
        if (t.empty()) return Fault(g, f);
        code = static_cast<unsigned char>(t[0]);
      } else {
        code = Whole(what.value);
      }
      if (code < 0 || code > 255 || n < 0 || n > static_cast<long long>(kLongestRunString)) return Fault(g, f);
      result.assign(static_cast<std::size_t>(n), static_cast<char>(code));
      break;
    }
    default: return Fault(g, kUnexpected);
  }
  PutString(p, position, FromChars(std::move(result)));
  return true;
}

// ---- One call.

// Computes the call's value into the function record at `position`; false on a fault.
bool Evaluate(Game& g, int f, int position, const Call& c) {
  AutoBetProgram& p = g.AutoBet;
  auto& b = p.StatementBuffer;
  const double n = NumberArgument(g, c, 0);
  int whole = 0;
  double value = 0;
  if (IsNumberedForm(f)) {
    // The bet (or checkstack) read as its variable with the pieces after the bracket.
    const int v = FormVariable(f, n);
    if (v == 0) return Fault(g, f);
    if (GroupSize(v) != c.pieces) return Fault(g, kUnexpected);
    b[c.close] = {kCodeVariable, static_cast<double>(v)};
    TokenRecord out{kCodeNumber, 0};
    if (!ReadVariable(g, &b[c.close], out)) return false;
    b[position] = out;
    return true;
  }
  if (IsListFunction(f) && f != kRound) {
    ListFunction(g, f, position, c);
    return true;
  }
  if (f >= kLeft && f <= kStringOf) return StringFunction(g, f, position, c);
  if (f >= kFirstDiceStatistic && f <= kLastDiceStatistic) {
    if (!ReadDiceStatistic(g, f, c, value)) return false;
    PutNumber(p, position, value);
    return true;
  }
  switch (f) {
    case kAverageBankroll: {
      const int seat = SeatOfPiece(g, PieceOf(p, c, kCodePlayer, 14));
      if (!WholeWithin(n, 0, 525, whole)) return Fault(g, f);
      if (seat < 1 || seat >= kSeats) return Fault(g, kPlayerAt);
      value = AverageBankroll(g, seat, whole);
      break;
    }
    case kPlayerAt:
      if (!WholeWithin(n, 1, kPlayerSeats, whole)) return Fault(g, f);
      if (!SeatOccupied(g, whole)) return Fault(g, kNoPlayerThere);
      value = whole;
      break;
    case kPlayerName:
      if (!WholeWithin(n, 1, kPlayerSeats, whole)) return Fault(g, f);
      b[position] = {kCodeString, -900.0 - whole};  // read through StringValue when wanted
      return true;
    case kSqr:
      if (n < 0) return Fault(g, f);
      value = std::sqrt(n);
      break;
    case kInt: value = std::floor(n); break;
    case kAbs: value = std::fabs(n); break;
    case kAsc: {
      const std::string s = TextArgument(g, c, 0);
      value = s.empty() ? 0 : static_cast<unsigned char>(s[0]);
      break;
    }
    case kVal: value = n; break;
    case kLen: value = static_cast<double>(TextArgument(g, c, 0).size()); break;
    case kPvalue: {
      const double df = std::clamp(std::floor(NumberArgument(g, c, 1)), -1.0, 2147483647.0);
      value = Chi2Pval(n, static_cast<int32_t>(df));
      break;
    }
    case kRound: {
      const double precision = c.count >= 2 ? NumberArgument(g, c, 1) : 1;
      const double direction = c.count >= 3 ? NumberArgument(g, c, 2) : 0;
      if (!(precision > 0)) return Fault(g, f);
      value = RoundTo(n, precision, direction);
      break;
    }
    case kSister:
      if (!WholeWithin(std::floor(n), 2, 12, whole) || whole == 7) return Fault(g, f);
      value = 14 - whole;
      break;
    case kDie:
      if (!WholeWithin(n, 1, 2, whole)) return Fault(g, f);
      value = whole == 1 ? g.Table.Die1 : g.Table.Die2;
      break;
    case kOddsFactor: {
      if (!WholeWithin(n, 4, 10, whole) || whole == 7) return Fault(g, f);
      const TokenRecord factor{kCodeVariable, static_cast<double>(kFirstOddsFactorVariable + PointOffset(whole))};
      TokenRecord out{kCodeNumber, 0};
      if (!ReadVariable(g, &factor, out)) return false;
      b[position] = out;
      return true;
    }
    case kInstr: {
      // Instr(start, searched, sought): the position found, 0 for none.
      const long long start = Whole(n);
      const std::string searched = TextArgument(g, c, 1);
      if (start < 1 || start > static_cast<long long>(searched.size())) return Fault(g, f);
      const std::size_t at = searched.find(TextArgument(g, c, 2), static_cast<std::size_t>(start - 1));
      value = at == std::string::npos ? 0 : static_cast<double>(at + 1);
      break;
    }
    case kInput: value = LeadingNumber(AskInput(g, TextOf(g, Argument(g, c, 0)))); break;
    case kInputText: PutString(p, position, AskInput(g, TextOf(g, Argument(g, c, 0)))); return true;
    default: return Fault(g, kUnexpected);
  }
  PutNumber(p, position, value);
  return true;
}

}  // namespace

int SelectedRollKind(int x, double n, int& limitsFault) {
  int whole = 0;
  if (x == 33 || x == 34) {
    limitsFault = 1010;
    return WholeWithin(n, 1, 6, whole) ? (x == 33 ? kDie1Kind : kDie2Kind) + whole : 0;
  }
  const bool pair = x == 31 || x == 32 || (x != 30 && n != std::floor(n));
  if (!pair) {
    limitsFault = 1001;
    return WholeWithin(n, 2, 12, whole) ? whole : 0;
  }
  limitsFault = 1009;
  if (!(n >= 1 && n < 7)) return 0;
  const int die1 = static_cast<int>(std::floor(n));
  const int die2 = static_cast<int>(std::lround((n - die1) * 10));
  if (std::fabs(n - (die1 + die2 / 10.0)) > 1e-9) return 0;
  return PairKind(die1, die2, x != 32);  // 0 unless both are faces
}

namespace {

// The records a call takes after its function record: up to the close bracket, the pieces,
// and the end-of-list record that follows a list function's bracket.
int Consumed(const std::vector<TokenRecord>& b, int length, int position, const Call& c) {
  const int f = static_cast<int>(b[position].value);
  int consumed = c.close - position + c.pieces;
  if (IsListFunction(f) && c.close + 1 <= length && b[c.close + 1].code == kCodeEndOfList) ++consumed;
  return consumed;
}

}  // namespace

CallExtent LocateCallExtent(const std::vector<TokenRecord>& buffer, int length, int position) {
  const Call c = LocateCallIn(buffer, length, position);
  if (c.close == 0) return {};
  return {c.close, c.pieces, Consumed(buffer, length, position, c)};
}

int AssignFunction(Game& g, int position) {
  AutoBetProgram& p = g.AutoBet;
  // A fault met in the arguments (a division by zero) stands for the statement.
  if (p.RunError != 0) return 0;
  const Call c = LocateCall(p, position);
  if (c.close == 0) {
    p.RunError = kUnexpected;
    return 0;
  }
  const int f = static_cast<int>(p.StatementBuffer[position].value);
  const int consumed = Consumed(p.StatementBuffer, p.StatementLength, position, c);
  Evaluate(g, f, position, c);
  return consumed;
}

int NamedVariable(Game& g, int f, double n, int pieces) {
  const int v = FormVariable(f, n);
  if (v == 0) return Fault(g, f), 0;
  if (GroupSize(v) != pieces) return Fault(g, kUnexpected), 0;
  return v;
}

void ResolveTargetFunction(Game& g, int position) {
  AutoBetProgram& p = g.AutoBet;
  if (p.RunError != 0) return;
  const Call c = LocateCall(p, position);
  if (c.close == 0) {
    p.RunError = kUnexpected;
    return;
  }
  const int f = static_cast<int>(p.StatementBuffer[position].value);
  if (!IsNumberedForm(f)) {
    p.RunError = kUnexpected;
    return;
  }
  const int v = NamedVariable(g, f, NumberArgument(g, c, 0), c.pieces);
  if (v == 0) return;
  // The bracket and its number go; the pieces behind them become the group's.
  p.StatementBuffer[position] = {kCodeVariableTarget, static_cast<double>(v)};
  DeleteRecords(p, position + 1, c.close - position);
}
