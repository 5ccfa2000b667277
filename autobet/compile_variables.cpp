#include <optional>

#include "autobet/compiler.h"
#include "autobet/variables.h"

namespace {

// Which pieces a reference group carries, always written in this order.
enum PieceBits : unsigned { kTakesPlayer = 1, kTakesTime = 2, kTakesCounted = 4, kTakesModifier = 8 };
constexpr unsigned kTakesAll = kTakesPlayer | kTakesTime | kTakesCounted | kTakesModifier;

constexpr int kRollsSinceLast = 4505;         // "# rolls since last" as a variable
constexpr int kModifierRollsSinceLast = 27;   // ... and as the modifier it becomes on a bet
constexpr int kFirstLoneSeatVariable = 5200;  // shooter, last shooter, original shooter, bettor, autobettor

bool IsVariable(const TokenRecord& r) { return r.code == kCodeVariable; }
bool IsFunction(const TokenRecord& r) { return r.code == kCodeFunction; }
int Number(const TokenRecord& r) { return static_cast<int>(r.value); }

// A variable or function word, or one of its pieces.
bool IsReferenceWord(const TokenRecord& r) {
  return r.code == kCodeVariable || r.code == kCodeFunction || IsReferencePiece(r);
}

// A single bet, by word or by its numbered form; these pair with "# rolls since last".
bool IsSingleBet(const TokenRecord& r) {
  const int n = Number(r);
  return (IsVariable(r) && n >= 1 && n <= 107) || (IsFunction(r) && n >= 1 && n < 21);
}

// Bets in any form, plural words included: their wagers belong to one seat.
bool IsBetReference(const TokenRecord& r) {
  const int n = Number(r);
  return IsSingleBet(r) || (IsVariable(r) && n >= 4000 && n <= 4100);
}

bool IsDiceStatisticFunction(const TokenRecord& r) { return IsFunction(r) && Number(r) >= 25 && Number(r) <= 47; }
bool IsPointCount(const TokenRecord& r) {
  const int n = Number(r);
  return (IsFunction(r) && (n == 46 || n == 47)) || (IsVariable(r) && (n == 4606 || n == 4607));
}
bool IsDiceStatisticVariable(const TokenRecord& r) { return IsVariable(r) && Number(r) >= 4501 && Number(r) <= 4512; }
// X30..X34: the displays of the roll totals, which a written roll right after selects from.
bool IsRollDisplay(const TokenRecord& r) { return r.code == kCodeCounted && Number(r) >= 30 && Number(r) <= 34; }

// The group size follows from the V number alone; a function reads as the variable it
// stands for (a bet, a checkstack, a dice statistic), or takes nothing.
unsigned GroupShape(const TokenRecord& r) {
  const int n = Number(r);
  if (IsFunction(r)) {
    if ((n >= 1 && n <= 11) || (n >= 25 && n <= 47)) return kTakesAll;
    if (n == 21 || n == 22 || n == 800) return kTakesPlayer;
    return 0;
  }
  if (n >= 1 && n <= 107) return kTakesAll;
  if (n >= 108 && n <= 999) return kTakesPlayer;
  if (n >= 1000 && n <= 1999) return kTakesPlayer | kTakesTime;
  if (n >= 2000 && n <= 2999) return kTakesPlayer | kTakesTime | kTakesModifier;
  if (n >= 3000 && n <= 4999) return kTakesAll;
  return 0;
}

// Table-wide counters count every seat unless a player is named.
bool CountsAllPlayers(const TokenRecord& r) {
  const int n = Number(r);
  if (IsFunction(r)) return n >= 25 && n <= 47;
  return (n >= 1500 && n <= 1508) || n == 1200 || n == 4606 || n == 4607 || (n >= 2000 && n <= 2999);
}

// Counters that only exist over whole hands or sessions: asked of another scope, the
// rule that a user can act on, naming the word as it is displayed.
std::optional<std::string> ScopeRule(const TokenRecord& r, int time) {
  const int n = Number(r);
  // Per-hand records and averages are kept by session: a hand has no "most rolls in a hand".
  if (IsVariable(r) && n >= 1500 && n <= 1508 && (time == 1 || time == 2))
    return "'" + VariableDisplayName(n) + "' only applies to\ncurrent session, last session, or all sessions.";
  // Rolls since a total was last seen run on across hands and are not rolled over.
  const bool rollsSince = (IsVariable(r) && n == kRollsSinceLast) || (IsFunction(r) && n == 29);
  if (rollsSince && time != 3 && time != 5)
    return "'" + (IsFunction(r) ? FunctionDisplayName(n) : VariableDisplayName(n)) +
           "' only applies to\ncurrent session or all sessions.";
  return std::nullopt;
}

// One run of reference pieces between delimiters, as written.
struct Reference {
  std::optional<TokenRecord> target;  // the variable or function
  std::vector<TokenRecord> argument;  // a function's bracket, already organised
  std::optional<int> player, time, counted, modifier;
  std::optional<double> selection;  // the total, combination or face after X30..X34
};

class Organiser {
 public:
  Organiser(const std::vector<TokenRecord>& records, std::span<const std::string> lines, int owner)
      : records_(records), lines_(lines), owner_(owner) {}

  CompileFault Run(std::vector<TokenRecord>& out) {
    std::size_t i = 0;
    while (i < records_.size() && !IsStatementMarker(records_[i])) out.push_back(records_[i++]);
    while (i < records_.size()) {
      statement_ = i;
      std::size_t end = i + 1;
      while (end < records_.size() && !IsStatementMarker(records_[end])) ++end;
      out.push_back(records_[i]);
      if (!Level(i + 1, end, out)) return fault_;
      i = end;
    }
    return {};
  }

 private:
  struct Item {
    std::vector<TokenRecord> records;  // one record, or a whole organised bracket pair
    bool bracket = false;
  };

  bool Fail(std::string message) {
    fault_ = StatementFault(std::move(message), records_, statement_, lines_);
    return false;
  }

  std::size_t MatchingClose(std::size_t open, std::size_t end) const {
    int depth = 0;
    for (std::size_t i = open; i < end; ++i) {
      if (records_[i].code == kCodeOpenBracket) ++depth;
      if (records_[i].code == kCodeCloseBracket && --depth == 0) return i;
    }
    return end - 1;  // brackets were balanced by the pass before
  }

  // Organises one bracket level: the levels inside first, then the runs at this one.
  bool Level(std::size_t begin, std::size_t end, std::vector<TokenRecord>& out) {
    std::vector<Item> items;
    for (std::size_t i = begin; i < end; ++i) {
      if (records_[i].code != kCodeOpenBracket) {
        items.push_back({{records_[i]}, false});
        continue;
      }
      const std::size_t close = MatchingClose(i, end);
      Item item{{records_[i]}, true};
      if (!Level(i + 1, close, item.records)) return false;
      item.records.push_back(records_[close]);
      items.push_back(std::move(item));
      i = close;
    }
    // A bracket belongs to a run only as the argument of the function just before it, a
    // number only as the selection of the X30..X34 piece just before it.
    auto follows = [&](std::size_t k, bool (*piece)(const TokenRecord&)) {
      return k > 0 && !items[k - 1].bracket && piece(items[k - 1].records.front());
    };
    auto inRun = [&](std::size_t k) {
      if (items[k].bracket) return follows(k, IsFunction);
      const TokenRecord& r = items[k].records.front();
      return IsReferenceWord(r) || (r.code == kCodeNumber && follows(k, IsRollDisplay));
    };
    for (std::size_t k = 0; k < items.size();) {
      if (!inRun(k)) {
        out.insert(out.end(), items[k].records.begin(), items[k].records.end());
        ++k;
        continue;
      }
      std::size_t last = k;
      while (last < items.size() && inRun(last)) ++last;
      if (!Organise(std::span(items).subspan(k, last - k), out)) return false;
      k = last;
    }
    return true;
  }

  bool Note(std::optional<int>& slot, int value, const char* ambiguity) {
    if (slot) return Fail(ambiguity);
    slot = value;
    return true;
  }

  bool NoteTarget(Reference& ref, const TokenRecord& r) {
    if (!ref.target) {
      ref.target = r;
      return true;
    }
    // "# rolls since last" next to a bet says how it is measured, not what.
    const bool firstIsCount = IsVariable(*ref.target) && Number(*ref.target) == kRollsSinceLast;
    const bool secondIsCount = IsVariable(r) && Number(r) == kRollsSinceLast;
    if ((firstIsCount && IsSingleBet(r)) || (secondIsCount && IsSingleBet(*ref.target))) {
      if (firstIsCount) ref.target = r;
      return Note(ref.modifier, kModifierRollsSinceLast, "Ambiguous variable modifiers");
    }
    return Fail("Ambiguous variable references");
  }

  bool Organise(std::span<Item> run, std::vector<TokenRecord>& out) {
    Reference ref;
    for (const Item& item : run) {
      if (item.bracket) {
        ref.argument = item.records;
        continue;
      }
      const TokenRecord& r = item.records.front();
      const int n = Number(r);
      bool ok = true;
      switch (r.code) {
        case kCodeVariable:
        case kCodeFunction: ok = NoteTarget(ref, r); break;
        case kCodePlayer: ok = Note(ref.player, n, "Ambiguous player references"); break;
        case kCodeTime: ok = Note(ref.time, n, "Ambiguous hand references"); break;
        case kCodeCounted: ok = Note(ref.counted, n, "Ambiguous variable modifiers"); break;
        case kCodeNumber: ref.selection = r.value; break;
        default: ok = Note(ref.modifier, n, "Ambiguous variable modifiers"); break;
      }
      if (!ok) return false;
    }
    if (!ref.target) return LonePieces(ref, out);
    return Validate(ref) && Select(ref) && Emit(ref, out);
  }

  // Pieces with no variable: a lone player word is a value, anything else has no owner.
  bool LonePieces(const Reference& ref, std::vector<TokenRecord>& out) {
    if (ref.time || ref.counted || ref.modifier || !ref.player) return Fail("Ambiguous variable references");
    const int p = *ref.player;
    if (p >= 10 && p <= 14) out.push_back({kCodeVariable, static_cast<double>(kFirstLoneSeatVariable + p - 10)});
    else out.push_back({kCodeNumber, static_cast<double>(p)});
    return true;
  }

  int Player(const Reference& ref) const {
    if (ref.player) return *ref.player;
    return CountsAllPlayers(*ref.target) ? 0 : owner_;
  }
  int Counted(const Reference& ref) const {
    if (ref.counted) return *ref.counted;
    if (ref.modifier == 32) return 5;  // expected value is only known of the net
    if (IsPointCount(*ref.target)) return 6;
    if (IsDiceStatisticFunction(*ref.target) || IsDiceStatisticVariable(*ref.target)) return 0;
    return 1;
  }
  int Modifier(const Reference& ref, int counted) const {
    if (ref.modifier) return *ref.modifier;
    if (IsPointCount(*ref.target) || IsDiceStatisticVariable(*ref.target)) return 0;
    return counted == 0 || counted == 1 ? 34 : 29;
  }

  bool Validate(const Reference& ref) {
    const TokenRecord& target = *ref.target;
    const unsigned shape = GroupShape(target);
    const int time = ref.time.value_or(3);
    const int counted = Counted(ref);
    const bool tendered = counted == 0 || counted == 1;

    if ((shape & kTakesPlayer) && IsBetReference(target) && tendered && Player(ref) == 0)
      return Fail(
          "Wagers must be referenced by individual players.  If all players are desired "
          "then include the separate players in an expression or function.  For example, \n"
          "Expression: passline player1 + passline player2\n"
          "Function: sum(passline player4, passline player6)");

    if ((shape & kTakesModifier) && ref.modifier) {
      const int y = *ref.modifier;
      const bool handOrSession = time == 1 || time == 3;
      const bool notLast = time == 1 || time == 3 || time == 5;
      switch (y) {
        case 22:
        case 23:
        case 24:
        case 25:
          if (tendered) {
            static constexpr const char* kWords[] = {"'Total'", "'High'", "'Low'", "'Average'"};
            return Fail(std::string("Ambiguous variable references\n") + kWords[y - 22] +
                        " only applies to resolved wagers.");
          }
          break;
        case 27:
          if (counted < 1 || counted > 3)
            return Fail(
                "Ambiguous variable references\n'# rolls since last' only applies to wagers, wins, and losses.");
          break;
        case 32:
          if (counted != 4 && counted != 5)
            return Fail("Ambiguous variable references\n'Expected value' only available as net or net %");
          break;
        case 37:
          if (!handOrSession) return Fail("'Working' only applies to current hand or session.");
          break;
        case 38:
          if (!handOrSession) return Fail("'Called on' only applies to current hand or session.");
          break;
        case 39:
          if (!handOrSession) return Fail("'Called off' only applies to current hand or session.");
          break;
        case 40:
          if (!handOrSession) return Fail("'Vig' only applies to current hand or session.");
          break;
        case 41:
        case 42:
        case 43:
          if (!handOrSession) return Fail("Ambiguous variable references");
          break;
        case 44:
          if (!handOrSession) return Fail("'Work on comeout roll' only applies to current hand or session.");
          break;
        case 35:
        case 36:
          if (!tendered) return Fail("'Prior' only applies to tendered wagers.");
          if (!notLast) return Fail("'Prior' only applies to current hand, current session, or all sessions.");
          break;
        case 33:
        case 34:
          if (!tendered) return Fail("'Current' only applies to tendered wagers.");
          if (!notLast) return Fail("'Current' only applies to\ncurrent hand, current session, or all sessions.");
          break;
        default: break;
      }
    }

    if (ref.time)
      if (const auto rule = ScopeRule(target, *ref.time)) return Fail(*rule + "\nAmbiguous variable references.");

    const bool betCounts =
        !ref.counted || !IsBetReference(target) || (*ref.counted >= 0 && *ref.counted <= 5) || *ref.counted == 10;
    if ((ref.player && !(shape & kTakesPlayer)) || (ref.time && !(shape & kTakesTime)) ||
        (ref.counted && !(shape & kTakesCounted)) || (ref.modifier && !(shape & kTakesModifier)) || !betCounts)
      return Fail("Ambiguous variable references");

    // A dice statistic asked of a written total, combination or face.
    if (IsDiceStatisticFunction(target) && Number(target) <= 34 && ref.counted && *ref.counted >= 30 &&
        *ref.counted <= 34 && ref.argument.size() == 3 && ref.argument[1].code == kCodeNumber) {
      const double roll = ref.argument[1].value;
      const int x = *ref.counted;
      const bool inside = x == 30   ? roll >= 2 && roll <= 12
                          : x <= 32 ? roll >= 1.1 && roll <= 6.6  // combinations, die 1 before die 2
                                    : roll >= 1 && roll <= 6;     // faces of one die
      if (!inside) return Fail("Reference to rolls out of limits.");
    }
    return true;
  }

  // The Y piece of a dice statistic is the roll kind it counts, 0 for all rolls: a
  // selection becomes that kind, and no other Y can stand there.
  bool Select(Reference& ref) {
    const bool statistic = IsDiceStatisticVariable(*ref.target);
    if (!ref.selection) {
      if (statistic && ref.modifier && *ref.modifier != 0) return Fail("Ambiguous variable references");
      return true;
    }
    if (!statistic) return Fail("Ambiguous variable references");
    if (ref.modifier) return Fail("Ambiguous variable modifiers");
    int limitsFault = 0;
    const int kind = SelectedRollKind(*ref.counted, *ref.selection, limitsFault);
    if (kind == 0) return Fail("Reference to rolls out of limits.");
    ref.modifier = kind;
    return true;
  }

  bool Emit(const Reference& ref, std::vector<TokenRecord>& out) {
    out.push_back(*ref.target);
    out.insert(out.end(), ref.argument.begin(), ref.argument.end());
    const unsigned shape = GroupShape(*ref.target);
    const int counted = Counted(ref);
    if (shape & kTakesPlayer) out.push_back({kCodePlayer, static_cast<double>(Player(ref))});
    if (shape & kTakesTime) out.push_back({kCodeTime, static_cast<double>(ref.time.value_or(3))});
    if (shape & kTakesCounted) out.push_back({kCodeCounted, static_cast<double>(counted)});
    if (shape & kTakesModifier) out.push_back({kCodeModifier, static_cast<double>(Modifier(ref, counted))});
    return true;
  }

  const std::vector<TokenRecord>& records_;
  std::span<const std::string> lines_;
  int owner_;
  std::size_t statement_ = 0;
  CompileFault fault_;
};

}  // namespace

CompileFault CompileVariablesOrganize(std::vector<TokenRecord>& records, std::span<const std::string> lines,
                                      int owner) {
  std::vector<TokenRecord> organised;
  organised.reserve(records.size() * 2);
  CompileFault fault = Organiser(records, lines, owner).Run(organised);
  if (!fault.Failed()) records = std::move(organised);
  return fault;
}
