#include "autobet/tokens.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "storage/language_text.h"

namespace {

// The source columns a character of a working line stands for, [begin, end).
struct Span {
  int begin = 0;
  int end = 0;
};

// A working line and its shadow: for every character the columns of the source line it
// came from. Replacements change the text freely, but a statement or a faulty word can
// still be pointed at where the user typed it.
struct ShadowedLine {
  std::string text;
  std::vector<Span> spans;

  void Push(char c, Span s) {
    text.push_back(c);
    spans.push_back(s);
  }
  void Append(std::string_view t, Span s) {
    text.append(t);
    spans.insert(spans.end(), t.size(), s);
  }
  // The columns covered by text[from, to); blanks count only when there is nothing else,
  // since inserted blanks sit between the characters they separate.
  Span Cover(std::size_t from, std::size_t to) const {
    std::optional<Span> cover;
    for (std::size_t i = from; i < to; ++i) {
      if (text[i] == ' ') continue;
      if (!cover) cover = spans[i];
      cover->begin = std::min(cover->begin, spans[i].begin);
      cover->end = std::max(cover->end, spans[i].end);
    }
    if (cover) return *cover;
    return from < spans.size() ? spans[from] : Span{};
  }
};

char LowerAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

std::string LowerAscii(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = LowerAscii(c);
  return out;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A whole word that reads as a number: optional sign, digits with at most one point,
// an optional exponent.
bool IsNumeric(std::string_view w) {
  std::size_t i = 0;
  if (i < w.size() && (w[i] == '+' || w[i] == '-')) ++i;
  std::size_t digits = 0;
  while (i < w.size() && IsDigit(w[i])) ++i, ++digits;
  if (i < w.size() && w[i] == '.') {
    ++i;
    while (i < w.size() && IsDigit(w[i])) ++i, ++digits;
  }
  if (digits == 0) return false;
  if (i < w.size() && (w[i] == 'e' || w[i] == 'E')) {
    ++i;
    if (i < w.size() && (w[i] == '+' || w[i] == '-')) ++i;
    std::size_t exponentDigits = 0;
    while (i < w.size() && IsDigit(w[i])) ++i, ++exponentDigits;
    if (exponentDigits == 0) return false;
  }
  return i == w.size();
}

// The value of a numeric word; nothing for any other word or one out of range.
std::optional<double> NumericValue(std::string_view w) {
  if (!IsNumeric(w)) return std::nullopt;
  if (w.front() == '+') w.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(w.data(), w.data() + w.size(), value);
  if (error != std::errc() || end != w.data() + w.size() || !std::isfinite(value)) return std::nullopt;
  return value;
}

// Shortest plain decimal that reads back as the same value: no exponent, no padding.
std::string PlainDecimal(double value) {
  char buffer[400];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
  return std::string(buffer, result.ptr);
}

constexpr std::string_view kSpacedCharacters = "$:;,(){}[]=^*/\\+-<>&";

// A "$" right after a letter is part of the word: the table knows left$, chr$, current$
// and the like, and spacing them apart would leave those rows unreachable.
bool EndsWord(std::string_view line, std::size_t i) {
  if (line[i] != '$' || i == 0) return false;
  const char before = LowerAscii(line[i - 1]);
  return before >= 'a' && before <= 'z';
}

bool IsComparison(char c) { return c == '<' || c == '>' || c == '='; }

bool JoinsAsOperator(char a, char b) {
  return (a == '<' && (b == '>' || b == '=')) || (a == '=' && (b == '<' || b == '>')) || (a == '>' && b == '=');
}

// NormaliseSpacing keeping the shadow: strings and comments are copied untouched, the
// rest is spaced, its numbers rewritten and its split comparisons joined again.
ShadowedLine NormaliseShadowed(std::string_view line) {
  ShadowedLine spaced;
  std::vector<bool> guarded;  // inside a string or a comment
  auto push = [&](char c, Span s, bool g) {
    spaced.Push(c, s);
    guarded.push_back(g);
  };
  bool inQuote = false;
  bool inComment = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    const int col = static_cast<int>(i);
    const Span here{col, col + 1};
    if (inComment) {
      push(c, here, true);
    } else if (c == '"') {
      inQuote = !inQuote;
      push(c, here, true);
    } else if (inQuote) {
      push(c, here, true);
    } else if (c == '\'') {
      inComment = true;
      push(c, here, true);
    } else if (kSpacedCharacters.find(c) != std::string_view::npos && !EndsWord(line, i)) {
      if (!spaced.text.empty() && spaced.text.back() != ' ') push(' ', {col, col}, false);
      push(c, here, false);
      if (i + 1 < line.size() && line[i + 1] != ' ') push(' ', {col + 1, col + 1}, false);
    } else {
      push(c, here, false);
    }
  }

  // Numbers in plain decimal, so that "5.0", "05" and "5" are one word to the table.
  ShadowedLine numbered;
  std::vector<bool> numberedGuarded;
  for (std::size_t i = 0; i < spaced.text.size();) {
    if (guarded[i] || spaced.text[i] == ' ') {
      numbered.Push(spaced.text[i], spaced.spans[i]);
      numberedGuarded.push_back(guarded[i]);
      ++i;
      continue;
    }
    std::size_t end = i;
    while (end < spaced.text.size() && !guarded[end] && spaced.text[end] != ' ') ++end;
    const std::string_view word(spaced.text.data() + i, end - i);
    if (const auto value = NumericValue(word)) {
      const std::string text = PlainDecimal(*value);
      numbered.Append(text, spaced.Cover(i, end));
      numberedGuarded.insert(numberedGuarded.end(), text.size(), false);
    } else {
      for (std::size_t k = i; k < end; ++k) {
        numbered.Push(spaced.text[k], spaced.spans[k]);
        numberedGuarded.push_back(false);
      }
    }
    i = end;
  }

  // "< >" back to "<>" and so on: the spacing above split the two-character operators.
  ShadowedLine joined;
  const std::string& t = numbered.text;
  for (std::size_t i = 0; i < t.size(); ++i) {
    joined.Push(t[i], numbered.spans[i]);
    if (i + 2 < t.size() && !numberedGuarded[i] && !numberedGuarded[i + 2] && t[i + 1] == ' ' && IsComparison(t[i]) &&
        IsComparison(t[i + 2]) && JoinsAsOperator(t[i], t[i + 2])) {
      joined.Push(t[i + 2], numbered.spans[i + 2]);
      i += 2;
    }
  }

  std::size_t first = joined.text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  std::size_t last = joined.text.find_last_not_of(' ');
  ShadowedLine out;
  out.Push(' ', {joined.spans[first].begin, joined.spans[first].begin});
  for (std::size_t i = first; i <= last; ++i) out.Push(joined.text[i], joined.spans[i]);
  return out;
}

// Drops an apostrophe outside quotes and everything after it; a line left blank is empty.
void StripComment(ShadowedLine& line) {
  bool inQuote = false;
  for (std::size_t i = 0; i < line.text.size(); ++i) {
    if (line.text[i] == '"') inQuote = !inQuote;
    if (line.text[i] == '\'' && !inQuote) {
      line.text.resize(i);
      line.spans.resize(i);
      break;
    }
  }
  if (line.text.find_first_not_of(' ') == std::string::npos) line = {};
}

std::string PoolWord(std::size_t index) {
  std::string digits = std::to_string(index);
  if (digits.size() < 3) digits.insert(0, 3 - digits.size(), '0');
  return " S" + digits + " ";
}

// Cuts each "..." pair out into the pool and lower-cases the rest. Returns the column of
// an opening quote that has no partner.
std::optional<int> ExtractStrings(ShadowedLine& line, std::vector<StringEntry>& strings) {
  ShadowedLine out;
  const std::string& t = line.text;
  for (std::size_t i = 0; i < t.size();) {
    if (t[i] != '"') {
      out.Push(LowerAscii(t[i]), line.spans[i]);
      ++i;
      continue;
    }
    const std::size_t close = t.find('"', i + 1);
    if (close == std::string::npos) return line.spans[i].begin;
    const Span quoted = line.Cover(i, close + 1);
    if (close == i + 1) {
      out.Append(" S0 ", quoted);
    } else {
      strings.push_back({t.substr(i + 1, close - i - 1), 0});
      out.Append(PoolWord(strings.size()), quoted);
    }
    i = close + 1;
  }
  line = std::move(out);
  return std::nullopt;
}

void CollapseBlanks(ShadowedLine& line) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < line.text.size(); ++i) {
    if (line.text[i] == ' ' && kept > 0 && line.text[kept - 1] == ' ') continue;
    line.text[kept] = line.text[i];
    line.spans[kept] = line.spans[i];
    ++kept;
  }
  line.text.resize(kept);
  line.spans.resize(kept);
}

// Replaces every occurrence of `key`, left to right without overlap; the replacement
// stands in the shadow for the columns of the text it replaced. False when none was found.
bool ReplaceAll(ShadowedLine& line, std::string_view key, std::string_view replacement) {
  std::size_t at = line.text.find(key);
  if (at == std::string::npos) return false;
  ShadowedLine out;
  std::size_t from = 0;
  while (at != std::string::npos) {
    for (std::size_t i = from; i < at; ++i) out.Push(line.text[i], line.spans[i]);
    out.Append(replacement, line.Cover(at, at + key.size()));
    from = at + key.size();
    at = line.text.find(key, from);
  }
  for (std::size_t i = from; i < line.text.size(); ++i) out.Push(line.text[i], line.spans[i]);
  line = std::move(out);
  return true;
}

// "While the key occurs": keys share their blanks, so " on on " needs a second round.
bool ReplaceWhileFound(ShadowedLine& line, std::string_view key, std::string_view replacement) {
  bool any = false;
  while (ReplaceAll(line, key, replacement)) any = true;
  return any;
}

void RemoveCharacter(ShadowedLine& line, char c) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < line.text.size(); ++i) {
    if (line.text[i] == c) continue;
    line.text[kept] = line.text[i];
    line.spans[kept] = line.spans[i];
    ++kept;
  }
  line.text.resize(kept);
  line.spans.resize(kept);
}

struct PlayerRow {
  std::string key;
  std::string replacement;
};

// The seats' own names, tried after every fixed row.
std::vector<PlayerRow> PlayerRows(std::span<const std::string> playerNames) {
  std::vector<PlayerRow> rows;
  const std::size_t seats = std::min<std::size_t>(playerNames.size(), kPlayerSeats);
  for (std::size_t i = 0; i < seats; ++i) {
    if (playerNames[i].empty()) continue;
    rows.push_back({" " + LowerAscii(playerNames[i]) + " ", " P" + std::to_string(i + 1) + " "});
  }
  return rows;
}

CompileFault FaultAt(std::string message, int line, Span span) {
  return {std::move(message), line, span.begin, line, span.end};
}

// The pairs of adjacent characters of a text, each as one of 64 bits. A key with a pair
// that the line lacks can't occur in it: one test of the masks rules out nearly every
// row of the table before any search of the line.
uint64_t PairBits(std::string_view text) {
  uint64_t bits = 0;
  for (std::size_t i = 1; i < text.size(); ++i)
    bits |=
        uint64_t{1} << ((static_cast<unsigned char>(text[i - 1]) * 31u + static_cast<unsigned char>(text[i])) & 63u);
  return bits;
}

// PairBits of every key of the table, in its order.
const std::vector<uint64_t>& TokenKeyPairBits() {
  static const std::vector<uint64_t> bits = [] {
    std::vector<uint64_t> b;
    for (const TokenRow& row : TokenTable()) b.push_back(PairBits(row.key));
    return b;
  }();
  return bits;
}

// Steps 1 to 7 of line normalising. A blank line comes back empty.
ShadowedLine TranslateShadowed(std::string_view source, int lineNumber, const std::vector<PlayerRow>& players,
                               std::vector<StringEntry>& strings, CompileFault& fault) {
  ShadowedLine line = NormaliseShadowed(source);
  StripComment(line);
  if (line.text.empty()) return line;
  if (const auto column = ExtractStrings(line, strings)) {
    fault = FaultAt("Missing quotation mark.", lineNumber, {*column, static_cast<int>(source.size())});
    return {};
  }
  line.text.insert(line.text.begin(), ' ');
  line.spans.insert(line.spans.begin(), line.spans.empty() ? Span{} : line.spans.front());
  line.Push(' ', line.spans.back());
  CollapseBlanks(line);

  const std::span<const TokenRow> table = TokenTable();
  const std::vector<uint64_t>& keyBits = TokenKeyPairBits();
  uint64_t lineBits = PairBits(line.text);
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (keyBits[i] & ~lineBits) continue;
    if (ReplaceWhileFound(line, table[i].key, table[i].replacement)) {
      CollapseBlanks(line);
      lineBits = PairBits(line.text);
    }
  }
  for (const PlayerRow& row : players)
    if (ReplaceWhileFound(line, row.key, row.replacement)) CollapseBlanks(line);

  // Fillers last: keys that hold them ("most rolls in a hand", "current $") have matched.
  ReplaceWhileFound(line, " the ", " ");
  ReplaceWhileFound(line, " a ", " ");
  RemoveCharacter(line, '$');
  RemoveCharacter(line, '#');
  CollapseBlanks(line);
  if (line.text.find_first_not_of(' ') == std::string::npos) return {};
  return line;
}

struct Word {
  std::string text;
  Span span;
};

std::vector<Word> SplitWords(const ShadowedLine& line) {
  std::vector<Word> words;
  const std::string& t = line.text;
  for (std::size_t i = 0; i < t.size();) {
    if (t[i] == ' ') {
      ++i;
      continue;
    }
    std::size_t end = t.find(' ', i);
    if (end == std::string::npos) end = t.size();
    words.push_back({t.substr(i, end - i), line.Cover(i, end)});
    i = end;
  }
  return words;
}

// Block keywords that stand as statements of their own; GOTO and GOSUB need the label after them.
bool IsStatementKeyword(int code) { return code >= 1 && code <= 19 && code != kCodeGoto && code != kCodeGosub; }

int ClassCode(char letter) {
  switch (letter) {
    case 'F': return kCodeFunction;
    case 'V': return kCodeVariable;
    case 'P': return kCodePlayer;
    case 'H': return kCodeTime;
    case 'X': return kCodeCounted;
    case 'Y': return kCodeModifier;
    case 'I': return kCodeListKind;
    case 'A': return kCodeAction;
    case 'S': return kCodeString;
    default: return 0;
  }
}

std::string UnknownWordMessage(const Word& word, std::string_view source) {
  if (word.text == "playername")
    return "Unknown player\nPlease enter actual name of player or refer to player's position such as player1, "
           "player2, etc.";
  if (word.text == "session") return "Please specify:\ncurrent session, last session, or all sessions.";
  if (word.text == "hand") return "Please specify:\ncurrent hand, last hand, or all hands.";
  // The word as the user typed it, where the shadow can still find it.
  std::string typed;
  if (word.span.begin >= 0 && word.span.end <= static_cast<int>(source.size()) && word.span.end > word.span.begin)
    typed = std::string(source.substr(word.span.begin, word.span.end - word.span.begin));
  if (typed.empty()) typed = word.text;
  return "Unknown or misplaced element:\n" + typed;
}

// Writes records, holding a statement marker back until something follows it on its
// line, so that no statement is empty and the line's first marker keeps column 0.
class RecordWriter {
 public:
  explicit RecordWriter(std::vector<TokenRecord>& records) : records_(records) {}

  void StartLine(int line) {
    line_ = line;
    pending_ = true;
    pendingColumn_ = 0;
    pendingIsLineStart_ = true;
  }
  void Marker(int column) {
    if (pending_) {
      if (!pendingIsLineStart_) pendingColumn_ = column;
      return;
    }
    pending_ = true;
    pendingColumn_ = column;
    pendingIsLineStart_ = false;
  }
  void Write(TokenRecord record) {
    if (pending_) records_.push_back({kCodeStatement + line_, static_cast<double>(pendingColumn_)});
    pending_ = false;
    records_.push_back(record);
  }

 private:
  std::vector<TokenRecord>& records_;
  int line_ = 0;
  bool pending_ = false;
  int pendingColumn_ = 0;
  bool pendingIsLineStart_ = false;
};

// One record per word; false with `fault` filled at the first word that is none of the classes.
bool BuildRecords(const std::vector<Word>& words, int lineNumber, std::string_view source, RecordWriter& writer,
                  CompileFault& fault) {
  writer.StartLine(lineNumber);
  for (std::size_t w = 0; w < words.size(); ++w) {
    const Word& word = words[w];
    // A statement after a colon or a keyword starts at the next word on the line.
    const int nextColumn = w + 1 < words.size() ? words[w + 1].span.begin : word.span.end;
    if (const auto number = NumericValue(word.text)) {
      writer.Write({kCodeNumber, *number});
      continue;
    }
    const char letter = word.text.front();
    std::string_view rest = std::string_view(word.text).substr(1);
    if (letter == 'U') {
      writer.Write({});
      continue;
    }
    if (letter == 'F' || letter == 'V') rest = rest.substr(0, rest.find('.'));
    const auto value = NumericValue(rest);
    if (letter == 'L' && value) {
      const int code = static_cast<int>(*value);
      if (code == kCodeStatement) {
        writer.Marker(nextColumn);
      } else if (IsStatementKeyword(code)) {
        writer.Marker(word.span.begin);
        writer.Write({code, 0});
        writer.Marker(nextColumn);
      } else {
        writer.Write({code, 0});
      }
      continue;
    }
    if (const int code = ClassCode(letter); code != 0 && value) {
      writer.Write({code, *value});
      continue;
    }
    fault = FaultAt(UnknownWordMessage(word, source), lineNumber, word.span);
    return false;
  }
  return true;
}

}  // namespace

std::string NormaliseSpacing(std::string_view line) { return NormaliseShadowed(line).text; }

std::string TranslateLine(std::string_view line, std::span<const std::string> playerNames,
                          std::vector<StringEntry>& strings, CompileFault& fault) {
  return TranslateShadowed(line, 1, PlayerRows(playerNames), strings, fault).text;
}

CompileFault TokeniseScript(int player, std::span<const std::string> lines, std::span<const std::string> playerNames,
                            std::vector<TokenRecord>& records, std::vector<StringEntry>& strings) {
  records.clear();
  strings.clear();
  const std::vector<PlayerRow> players = PlayerRows(playerNames);
  records.push_back({kCodeScriptHeader, static_cast<double>(player)});
  RecordWriter writer(records);
  CompileFault fault;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const int lineNumber = static_cast<int>(i) + 1;
    const ShadowedLine line = TranslateShadowed(lines[i], lineNumber, players, strings, fault);
    if (fault.Failed() || !BuildRecords(SplitWords(line), lineNumber, lines[i], writer, fault)) {
      records.clear();
      strings.clear();
      return fault;
    }
  }
  return fault;
}

std::string ProbeReservedWord(std::string_view name, int language, std::string& probe) {
  const std::size_t first = name.find_first_not_of(' ');
  const std::string_view trimmed =
      first == std::string_view::npos ? std::string_view{} : name.substr(first, name.find_last_not_of(' ') - first + 1);
  if (IsNumeric(trimmed)) {
    probe = kReservedWordMark;
    return std::string(LanguageText(language, 7));
  }
  const std::string wrapped = " " + LowerAscii(name) + " ";
  const bool holdsKey = std::any_of(TokenTable().begin(), TokenTable().end(),
                                    [&](const TokenRow& row) { return wrapped.find(row.key) != std::string::npos; });
  const bool hasLetter =
      std::any_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) >= 'A'; });
  if (holdsKey || !hasLetter) {
    probe = kReservedWordMark;
    return "\"" + std::string(name) + "\"" + std::string(LanguageText(language, 8));
  }
  return {};
}

std::string GeneralNumber(double value) {
  // Fifteen significant digits at most, so that a rounded 2.3 shows as "2.3" and not its
  // binary neighbour.
  char buffer[64];
  const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 15);
  return ec == std::errc() ? std::string(buffer, end) : std::to_string(value);
}
