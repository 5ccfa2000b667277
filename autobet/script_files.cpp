#include "autobet/script_files.h"

#include <algorithm>
#include <cstring>

#include "autobet/compiler.h"
#include "autobet/interpreter.h"
#include "engine/messages.h"
#include "storage/error_report.h"
#include "storage/fixed_record.h"
#include "storage/paths.h"
#include "storage/record_io.h"

namespace {

// The word conversion of the record form, applied in this order, each over the whole
// line. The order is the design: " when " first keeps its condition as a comment, and
// the starred words ("w**n", "r*ll") only stop a later pair from converting a word
// twice, until the pair that puts them back. A pair that converts an opening bracket into
// the line gets it closed at the end of the line's conversion. Every `to` is in words the
// compiler knows today, or a comment of the line where the legacy phrase has no meaning
// today, so that the file still loads.
constexpr LegacyWordPair kWordPairs[] = {
    // Punctuation, and the conditions: " when " keeps its condition as a comment of the line.
    {":", ""},
    {". . .", ""},
    {"# ", "#"},
    {"$ ", "$"},
    {" %", "%"},
    {" set ", " "},
    {"value of", ""},
    {" and when ", " and 'and w**n "},
    {" and while ", " and "},
    {" xor when ", " Xor 'xor w**n "},
    {" xor while ", " Xor "},
    {" or when ", " Or 'or w**n "},
    {" or while ", " Or "},
    {" while ", " If "},
    {" when ", " If 'When "},
    {" w**n ", " when "},
    // Checkstacks, and a checkstack that names a bet ("place ref #1") as the bet's bracket.
    {" ref #", "(CheckStack"},
    {" ref#", "(CheckStack"},
    {" ref ", "(CheckStack"},
    {"stack #", "Stack"},
    {"stack#", "Stack"},
    {"stack01", "Stack1"},
    {"stack02", "Stack2"},
    {"stack03", "Stack3"},
    {"stack04", "Stack4"},
    {"stack05", "Stack5"},
    {"stack06", "Stack6"},
    {"stack07", "Stack7"},
    {"stack08", "Stack8"},
    {"stack09", "Stack9"},
    {"chip-stack", "CheckStack"},
    {"chip stack", "CheckStack"},
    // Bet names, in the one-word spelling of today.
    {"pass-line", "PassLine"},
    {"pass line", "PassLine"},
    {"passline odds", "PassLineOdds"},
    // A checkstack's name was compared in words that have no form today.
    {"is not named", "'is not named"},
    {"is named", "'is named"},
    // The don't bets, the odds and the bets on a number.
    {"don't", "dont"},
    {"dont pass", "DontPass"},
    {"dont come", "DontCome"},
    {"come odds", "ComeOdds"},
    {"dontpass odds", "DontPassOdds"},
    {"come 4", "Come4"},
    {"come 5", "Come5"},
    {"come 6", "Come6"},
    {"come 8", "Come8"},
    {"come 9", "Come9"},
    {"come 10", "Come10"},
    {"4 odds", "Odds4"},
    {"5 odds", "Odds5"},
    {"6 odds", "Odds6"},
    {"8 odds", "Odds8"},
    {"9 odds", "Odds9"},
    {"10 odds", "Odds10"},
    {"lay 4", "Lay4"},
    {"lay 5", "Lay5"},
    {"lay 6", "Lay6"},
    {"lay 8", "Lay8"},
    {"lay 9", "Lay9"},
    {"lay 10", "Lay10"},
    {"place 4", "Place4"},
    {"place 5", "Place5"},
    {"place 6", "Place6"},
    {"place 8", "Place8"},
    {"place 9", "Place9"},
    {"place 10", "Place10"},
    {"buy 4", "Buy4"},
    {"buy 5", "Buy5"},
    {"buy 6", "Buy6"},
    {"buy 8", "Buy8"},
    {"buy 9", "Buy9"},
    {"buy 10", "Buy10"},
    {"c and e", "CandE"},
    // Counts and the events of the roll.
    {"game rolls", "# rolls"},
    {"game passes", "# passes"},
    {"shooter passes", "# passes current hand"},
    {"game misses", "# misses"},
    {"shooter misses", "# misses current hand"},
    {"come-out", "comeout"},
    {"on each pass", "If shooter passes"},
    {"on each miss", "If shooter misses"},
    {"on each roll", "If dice total > 0"},
    {"next roll", "next roll"},
    {"last roll", "last roll"},
    {"out roll", "out roll"},
    // Wins and losses; "each" (every one of a run of rolls) has no form today.
    {" over ", " more than "},
    {"have won each", "'won every one"},
    {"have won more than", "total # wins >"},
    {"have won", "wins"},
    {"has won less than", "total # wins <"},
    {"has won more than", "total # wins >"},
    {"has not won each", "'not won every one"},
    {"has won each", "'won every one"},
    {"has not won", "wins = 0"},
    {"has won", "wins"},
    {"have lost each", "'lost every one"},
    {"have lost more than", "total # losses >"},
    {"have lost", "loses"},
    {"has lost less than", "total # losses <"},
    {"has lost more than", "total # losses >"},
    {"has not lost each", "'not lost every one"},
    {"has lost each", "'lost every one"},
    {"has not lost", "losses = 0"},
    {"has lost", "loses"},
    // The seat's aids, messages, files and the bankroll.
    {"auto-lay full odds", "AutoLay full odds"},
    {"auto-take full odds", "AutoTake full odds"},
    {"auto-handle", "AutoHandle"},
    {"auto-remove", "AutoDown"},
    {"autohandle winnings", "AutoHandle winning bets"},
    {"same bet - take winnings", "same bet/take winnings"},
    {"auto-bet", "AutoBet"},
    {"initializing autobet", "initializing script"},
    {"auto-rolling", "AutoRolling"},
    {"hyper-drive", "HyperDrive"},
    {"bets to", "bets ="},
    {"display message", "Show message"},
    {"reset rolls", "reset rolls"},
    {"reset table", "Start new session"},
    {"get input and bet it", "Bet Input()"},
    {"highest of ", "Highest("},
    {"lowest of ", "Lowest("},
    {"average of ", "Average("},
    {"last answer ", "answer "},
    {"die ", "Die"},
    {", face ", " = "},
    {"output to file.", "Output to file"},
    {"open file", "Open/append file for output"},
    {"output to file message", "Output to file"},
    {"new line.", "new line"},
    {"highest bankroll", "high bankroll"},
    {"lowest bankroll", "low bankroll"},
    {"bankroll (", "avg bankroll("},
    {"all roll average", "525"},
    {"roll average", ""},
    {"go to", "GoTo"},
    {"shooter's point", "point"},
    {"for this shooter ", "current hand "},
    {"for the last shooter ", "last hand "},
    {"the #of", "#"},
    // The ATM and the truth values.
    {" in the atm ", " "},
    {" from the atm ", " "},
    {" deposit ", " ATM deposit "},
    {" withdraw ", " ATM withdraw "},
    {" to true ", " = true "},
    {" is true ", " = true "},
    {" to false ", " = false "},
    {" is false ", " = false "},
    // A pair of dice in today's spelling, as Hop (1.3) and the dice statistics take it.
    {"1-1", "(1.1)"},
    {"1-2", "(1.2)"},
    {"1-3", "(1.3)"},
    {"1-4", "(1.4)"},
    {"1-5", "(1.5)"},
    {"1-6", "(1.6)"},
    {"2-1", "(2.1)"},
    {"2-2", "(2.2)"},
    {"2-3", "(2.3)"},
    {"2-4", "(2.4)"},
    {"2-5", "(2.5)"},
    {"2-6", "(2.6)"},
    {"3-1", "(3.1)"},
    {"3-2", "(3.2)"},
    {"3-3", "(3.3)"},
    {"3-4", "(3.4)"},
    {"3-5", "(3.5)"},
    {"3-6", "(3.6)"},
    {"4-1", "(4.1)"},
    {"4-2", "(4.2)"},
    {"4-3", "(4.3)"},
    {"4-4", "(4.4)"},
    {"4-5", "(4.5)"},
    {"4-6", "(4.6)"},
    {"5-1", "(5.1)"},
    {"5-2", "(5.2)"},
    {"5-3", "(5.3)"},
    {"5-4", "(5.4)"},
    {"5-5", "(5.5)"},
    {"5-6", "(5.6)"},
    {"6-1", "(6.1)"},
    {"6-2", "(6.2)"},
    {"6-3", "(6.3)"},
    {"6-4", "(6.4)"},
    {"6-5", "(6.5)"},
    {"6-6", "(6.6)"},
    // Dice totals and combinations as conditions on the last roll.
    {"any 3 ", "(dice total = 3) "},
    {"any 4 ", "(dice total = 4) "},
    {"any 5 ", "(dice total = 5) "},
    {"any 6 ", "(dice total = 6) "},
    {"any 7 ", "(dice total = 7) "},
    {"any 8 ", "(dice total = 8) "},
    {"any 9 ", "(dice total = 9) "},
    {"any 10 ", "(dice total = 10) "},
    {"any 11 ", "(dice total = 11) "},
    {"a 2 ", "(dice total = 2) "},
    {"a 3 ", "(dice total = 3) "},
    {"a 4 ", "(dice total = 4) "},
    {"a hard 4 ", "(dice combo = 2.2) "},
    {"a 5 ", "(dice total = 5) "},
    {"a 6 ", "(dice total = 6) "},
    {"a hard 6 ", "(dice combo = 3.3) "},
    {"a 7 ", "(dice total = 7) "},
    {"a 8 ", "(dice total = 8) "},
    {"a hard 8 ", "(dice combo = 4.4) "},
    {"a 9 ", "(dice total = 9) "},
    {"a 10 ", "(dice total = 10) "},
    {"a hard 10 ", "(dice combo = 5.5) "},
    {"a 11 ", "(dice total = 11) "},
    {"a 12 ", "(dice total = 12) "},
    {"a 2,3,or 12", "(dice total = any(2,3,12))"},
    {"a 2,3,4,9,10,11,or 12", "(dice total = any(2,3,4,9,10,11,12))"},
    {"a 4,5,6,8,9,or 10", "(dice total = any(4,5,6,8,9,10))"},
    {"5, 6, 8, or 9", "(dice total = any(5,6,8,9))"},
    {"4, 5, 9, or 10", "(dice total = any(4,5,9,10))"},
    {"4, 6, 8, or 10", "(dice total = any(4,6,8,10))"},
    {"4, 5, or 6", "(dice total = any(4,5,6))"},
    {"8, 9, or 10", "(dice total = any(8,9,10))"},
    {"number group 4,10", "(dice total = any(4,10))"},
    {"number group 5,9", "(dice total = any(5,9))"},
    {"number group 6,8", "(dice total = any(6,8))"},
    {"number 2,3,4,9,10,11,or 12", "(dice total = any(2,3,4,9,10,11,12))"},
    {"number 4,5,6,8,9,or 10", "(dice total = any(4,5,6,8,9,10))"},
    {"number 2,3,7,11,or 12", "(dice total = any(2,3,7,11,12))"},
    {"number 2,3,11,or 12", "(dice total = any(2,3,11,12))"},
    {"number 5,6,8,or 9", "(dice total = any(5,6,8,9))"},
    {"number 4,5,9,or 10", "(dice total = any(4,5,9,10))"},
    {"number 2,3,or 12", "(dice total = any(2,3,12))"},
    {"number 4,5,or 6", "(dice total = any(4,5,6))"},
    {"number 8,9,or 10", "(dice total = any(8,9,10))"},
    {"number 2 or 12", "(dice total = any(2,12))"},
    {"number 3 or 11", "(dice total = any(3,11))"},
    {"number 4 or 10", "(dice total = any(4,10))"},
    {"number 5 or 9", "(dice total = any(5,9))"},
    {"number 6 or 8", "(dice total = any(6,8))"},
    {"number 2 or 3", "(dice total = any(2,3))"},
    {"number 3 or 12", "(dice total = any(3,12))"},
    {"number 7 or 11", "(dice total = any(7,11))"},
    {"number 11 or 12", "(dice total = any(11,12))"},
    {"number 2 (1.1)", "(dice combo = 1.1)"},
    {"number 3 (1.2) or (2.1)", "(dice combo = 1.2)"},
    {"number 3 (1.2)", "(dice permutation = 1.2)"},
    {"number 3 (2.1)", "(dice permutation = 2.1)"},
    {"number 4 (1.3) or (3.1)", "(dice combo = 1.3)"},
    {"number 4 (1.3)", "(dice permutation = 1.3)"},
    {"number 4 (3.1)", "(dice permutation = 3.1)"},
    {"hard 4 (2.2)", "(dice combo = 2.2)"},
    {"number 5 (1.4) or (4.1)", "(dice combo = 1.4)"},
    {"number 5 (2.3) or (3.2)", "(dice combo = 2.3)"},
    {"number 5 (1.4)", "(dice permutation = 1.4)"},
    {"number 5 (4.1)", "(dice permutation = 4.1)"},
    {"number 5 (2.3)", "(dice permutation = 2.3)"},
    {"number 5 (3.2)", "(dice permutation = 3.2)"},
    {"number 6 (1.5) or (5.1)", "(dice combo = 1.5)"},
    {"number 6 (2.4) or (4.2)", "(dice combo = 2.4)"},
    {"number 6 (1.5)", "(dice permutation = 1.5)"},
    {"number 6 (5.1)", "(dice permutation = 5.1)"},
    {"number 6 (2.4)", "(dice permutation = 2.4)"},
    {"number 6 (4.2)", "(dice permutation = 4.2)"},
    {"hard 6 (3.3)", "(dice combo = 3.3)"},
    {"number 7 (1.6) or (6.1)", "(dice combo = 1.6)"},
    {"number 7 (2.5) or (5.2)", "(dice combo = 2.5)"},
    {"number 7 (3.4) or (4.3)", "(dice combo = 3.4)"},
    {"number 7 (1.6)", "(dice permutation = 1.6)"},
    {"number 7 (6.1)", "(dice permutation = 6.1)"},
    {"number 7 (2.5)", "(dice permutation = 2.5)"},
    {"number 7 (5.2)", "(dice permutation = 5.2)"},
    {"number 7 (3.4)", "(dice permutation = 3.4)"},
    {"number 7 (4.3)", "(dice permutation = 4.3)"},
    {"number 8 (2.6) or (6.2)", "(dice combo = 2.6)"},
    {"number 8 (3.5) or (5.3)", "(dice combo = 3.5)"},
    {"number 8 (2.6)", "(dice permutation = 2.6)"},
    {"number 8 (6.2)", "(dice permutation = 6.2)"},
    {"number 8 (3.5)", "(dice permutation = 3.5)"},
    {"number 8 (5.3)", "(dice permutation = 5.3)"},
    {"hard 8 (4.4)", "(dice combo = 4.4)"},
    {"number 9 (3.6) or (6.3)", "(dice combo = 3.6)"},
    {"number 9 (4.5) or (5.4)", "(dice combo = 4.5)"},
    {"number 9 (3.6)", "(dice permutation = 3.6)"},
    {"number 9 (6.3)", "(dice permutation = 6.3)"},
    {"number 9 (4.5)", "(dice permutation = 4.5)"},
    {"number 9 (5.4)", "(dice permutation = 5.4)"},
    {"number 10 (4.6) or (6.4)", "(dice combo = 4.6)"},
    {"number 10 (4.6)", "(dice permutation = 4.6)"},
    {"number 10 (6.4)", "(dice permutation = 6.4)"},
    {"hard 10 (5.5)", "(dice combo = 5.5)"},
    {"number 11 (5.6) or (6.5)", "(dice combo = 5.6)"},
    {"number 11 (5.6)", "(dice permutation = 5.6)"},
    {"number 11 (6.5)", "(dice permutation = 6.5)"},
    {"number 12 (6.6)", "(dice combo = 6.6)"},
    {"any number", "(dice total = any(4,5,6,8,9,10))"},
    {"hard 4", "Hard4"},
    {"hard 6", "Hard6"},
    {"hard 8", "Hard8"},
    {"hard 10", "Hard10"},
    {"the dice total =", "dice total ="},
    {"the number", "dice total"},
    // Runs of rolls have no form today; the totals' condition stands alone.
    {"has rolled in the last", "'rolled in the last"},
    {"has not rolled in the last", "'not rolled in the last"},
    {"has rolled each", "'rolled every one"},
    {"has not rolled each", "'not rolled every one"},
    {"has rolled more than each", "'rolled more than every one"},
    {"has rolled more than", "'rolled more than"},
    {"has rolled less than each", "'rolled less than every one"},
    {"has rolled less than", "'rolled less than"},
    {"has not rolled", "= false"},
    {"has rolled", ""},
    {"rolls in the game", "# rolls"},
    {"rolls shooter", "# rolls current hand"},
    {"rolls last shooter", "# rolls last hand"},
    // Lists of bets, and their sums and counts.
    {" hop ", " Hop "},
    {"all bets", "bets"},
    {"all lay bets", "lay bets"},
    {"all dontcome bets", "dontcome bets"},
    {"all dontcomeodds bets", "dontcomeodds bets"},
    {"all come bets", "come bets"},
    {"all comeodds bets", "comeodds bets"},
    {"all inside place bets", "inside place bets"},
    {"all outside place bets", "outside place bets"},
    {"all place bets", "place bets"},
    {"all buy bets", "buy bets"},
    {"all checkstacks", "CheckStacks"},
    {"all checkstack names", "CheckStack names"},
    {"any bet", "any(bets)"},
    {"any lay bet", "any(lay bets)"},
    {"any dontcome bet", "any(dontcome bets)"},
    {"any dontcomeodds bet", "any(dontcomeodds bets)"},
    {"any come bet", "any(come bets)"},
    {"any comeodds bet", "any(comeodds bets)"},
    {"any place bet", "any(place bets)"},
    {"any buy bet", "any(buy bets)"},
    {"any checkstacks", "any(CheckStacks)"},
    {"any checkstack names", "any(CheckStack names)"},
    {"total #of current wagers", "Count(> 0, bets)"},
    {"total $of current wagers", "Sum(bets)"},
    {"total #of decided wagers", "Sum(total # resolved bets)"},
    {"total $of decided wagers", "Sum(total $ resolved bets)"},
    {"total bets number more than", "Count(bets) is more than"},
    {"total bets number less than", "Count(bets) is less than"},
    {"total bets number", "Count(bets)"},
    {"total bets", "Sum(bets)"},
    {"total lay bets number more than", "Count(lay bets) is more than"},
    {"total lay bets number less than", "Count(lay bets) is less than"},
    {"total lay bets number", "Count(lay bets)"},
    {"total lay bets", "Sum(lay bets)"},
    {"total dontcome bets number more than", "Count(dontcome bets) is more than"},
    {"total dontcome bets number less than", "Count(dontcome bets) is less than"},
    {"total dontcome bets number", "Count(dontcome bets)"},
    {"total dontcome bets", "Sum(dontcome bets)"},
    {"total dontcomeodds bets number more than", "Count(dontcomeodds bets) is more than"},
    {"total dontcomeodds bets number less than", "Count(dontcomeodds bets) is less than"},
    {"total dontcomeodds bets number", "Count(dontcomeodds bets)"},
    {"total dontcomeodds bets", "Sum(dontcomeodds bets)"},
    {"total come bets number more than", "Count(come bets) is more than"},
    {"total come bets number less than", "Count(come bets) is less than"},
    {"total come bets number", "Count(come bets)"},
    {"total come bets", "Sum(come bets)"},
    {"total comeodds bets number more than", "Count(comeodds bets) is more than"},
    {"total comeodds bets number less than", "Count(comeodds bets) is less than"},
    {"total comeodds bets number", "Count(comeodds bets)"},
    {"total comeodds bets", "Sum(comeodds bets)"},
    {"total inside place bets number more than", "Count(inside place bets) is more than"},
    {"total inside place bets number less than", "Count(inside place bets) is less than"},
    {"total inside place bets number", "Count(inside place bets)"},
    {"total inside place bets", "Sum(inside place bets)"},
    {"total outside place bets number more than", "Count(outside place bets) is more than"},
    {"total outside place bets number less than", "Count(outside place bets) is less than"},
    {"total outside place bets number", "Count(outside place bets)"},
    {"total outside place bets", "Sum(outside place bets)"},
    {"total place bets number more than", "Count(place bets) is more than"},
    {"total place bets number less than", "Count(place bets) is less than"},
    {"total place bets number", "Count(place bets)"},
    {"total place bets", "Sum(place bets)"},
    {"total buy bets number more than", "Count(buy bets) is more than"},
    {"total buy bets number less than", "Count(buy bets) is less than"},
    {"total buy bets number", "Count(buy bets)"},
    {"total buy bets", "Sum(buy bets)"},
    // A verb behind a list goes into its brackets; the starred words keep "roll" from a second conversion.
    {"bets) loses", "bets lose)"},
    {"bets) wins", "bets win)"},
    {" rolls ", " r*lls "},
    {" roll ", " r*ll "},
    {"r*ll", "roll"},
    {" times ", " "},
    {" time ", " "},
    {" each ", " "},
    // Acts with no meaning today, and the flags, which have no store today, become comments.
    {"reset ", "'Reset "},
    {"close file", "'Close file"},
    {"all flags", "'all flags"},
    {"any flag", "'any of the flags"},
    {" flag ", " 'flag "},
};

// A bracket the legacy text held already ("bankroll (") is closed by the text itself.
bool OpensBracket(const LegacyWordPair& pair) {
  const auto open = [](std::string_view s) {
    return std::count(s.begin(), s.end(), '(') - std::count(s.begin(), s.end(), ')');
  };
  return open(pair.to) > open(pair.from);
}

std::string Lower(std::string s) {
  for (char& c : s)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  return s;
}

// Every place of `from` (ignoring case) becomes `to`; the search goes on behind it.
bool ReplaceAll(std::string& line, std::string_view from, std::string_view to) {
  if (from.empty()) return false;
  const std::string key = Lower(std::string(from));
  bool any = false;
  for (size_t at = 0; (at = Lower(line).find(key, at)) != std::string::npos; at += to.size()) {
    line.replace(at, from.size(), to);
    any = true;
  }
  return any;
}

std::string TrimRight(std::string s) {
  while (!s.empty() && (s.back() == ' ' || s.back() == '\0')) s.pop_back();
  return s;
}

std::string Trim(std::string s) {
  s = TrimRight(std::move(s));
  size_t i = 0;
  while (i < s.size() && s[i] == ' ') ++i;
  return s.substr(i);
}

bool HasLegacyMark(const Bytes& bytes) {
  if (bytes.size() < static_cast<size_t>(kFixedRecordBytes)) return false;
  for (std::string_view mark : kLegacyAutoBetMarks)
    if (std::memcmp(bytes.data(), mark.data(), mark.size()) == 0) return true;
  return false;
}

std::vector<std::string> LegacyLines(const Bytes& bytes) {
  std::vector<std::string> lines;
  bool blockOpen = false;
  const size_t records = bytes.size() / kFixedRecordBytes;
  for (size_t k = 1; k < records; ++k) {
    const unsigned char* r = bytes.data() + k * kFixedRecordBytes;
    if (r[0] < 1) continue;  // an empty record
    const int32_t kind = GetInt32(r + kLegacyTextChars);
    const std::string text = GetFixedText(r, kLegacyTextChars);
    if ((kind == 1 || kind == 2 || kind == 13) && blockOpen) {
      lines.push_back(" EndIf");
      blockOpen = false;
    }
    switch (kind) {
      case 1:
      case 2:
        blockOpen = true;
        lines.push_back(ConvertLegacyWords(" " + Trim(text)));
        break;
      case 13: break;
      case 20: lines.push_back(" and" + ConvertLegacyWords(" " + Trim(text))); break;
      case 30: lines.push_back(" :" + ConvertLegacyWords(" " + Trim(text))); break;
      case 90: {
        std::string label = Trim(text);
        ReplaceAll(label, "~+", "");
        lines.push_back(":\"" + label + "\" :");
        break;
      }
      case 99: lines.push_back(text); break;
      default: lines.push_back(ConvertLegacyWords(" " + TrimRight(text))); break;
    }
  }
  if (blockOpen) lines.push_back(" EndIf");
  if (lines.empty()) lines.emplace_back();
  return lines;
}

std::vector<std::string> TextLines(const Bytes& bytes) {
  std::vector<std::string> lines;
  std::string line;
  for (uint8_t b : bytes) {
    if (b == '\n') {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      lines.push_back(std::move(line));
      line.clear();
    } else {
      line += static_cast<char>(b);
    }
  }
  if (!line.empty() || lines.empty()) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
  }
  return lines;
}

void TellFault(Game& g, const char* procedure) {
  Tell(g, ErrorReport("Path/File access error", 75, procedure), "DiceHall", 0, msg::kAlertOk);
}

}  // namespace

std::string ConvertLegacyWords(std::string line) {
  bool bracketOpened = false;
  for (const LegacyWordPair& pair : kWordPairs)
    if (ReplaceAll(line, pair.from, pair.to) && OpensBracket(pair)) bracketOpened = true;
  if (bracketOpened) {
    const std::string lower = Lower(line);
    for (std::string_view word : {" on ", " to ", " from "}) {
      const size_t at = lower.find(word);
      if (at == std::string::npos) continue;
      line.insert(at, ") ");
      break;
    }
  }
  return line;
}

std::span<const LegacyWordPair> LegacyWordPairs() { return kWordPairs; }

std::vector<std::string> AutoBetLinesFromBytes(const Bytes& bytes) {
  return HasLegacyMark(bytes) ? LegacyLines(bytes) : TextLines(bytes);
}

bool LegacyAutoBetBytes(const std::vector<std::string>& lines, Bytes& out) {
  Bytes bytes((lines.size() + 1) * kFixedRecordBytes, 0);
  PutFixedText(bytes.data(), kLegacyTextChars, std::string(kLegacyAutoBetMarks[2]));
  for (size_t i = 0; i < lines.size(); ++i) {
    if (Utf8ToWindows1252(lines[i]).size() > static_cast<size_t>(kLegacyTextChars)) return false;
    unsigned char* r = bytes.data() + (i + 1) * kFixedRecordBytes;
    PutFixedText(r, kLegacyTextChars, lines[i]);
    PutInt32(r + kLegacyTextChars, 99);
  }
  out = std::move(bytes);
  return true;
}

bool ReadAutoBetFile(const std::string& path, std::vector<std::string>& lines) {
  Bytes bytes;
  if (!ReadWholeFile(path, bytes, kMaxScriptFileBytes)) return false;
  lines = AutoBetLinesFromBytes(bytes);
  return true;
}

bool WriteAutoBetFile(const std::string& path, const std::vector<std::string>& lines) {
  Bytes bytes;
  for (const std::string& line : lines) {
    bytes.insert(bytes.end(), line.begin(), line.end());
    bytes.push_back('\n');
  }
  return WriteFileAtomically(path, bytes);
}

bool OpenAutoBets(Game& g, int seat, const std::string& path, AutoBetLoad load, int pasteLine) {
  if (seat < 0 || seat > kPlayerSeats) return false;
  const std::string file = InProgramFolder(g.ProgramFolder, path);
  if (!RegularFileExists(file)) return false;
  std::vector<std::string> lines;
  if (!ReadAutoBetFile(file, lines)) {
    TellFault(g, "OpenAutoBets");
    return false;
  }
  AutoBetProgram& p = g.AutoBet;
  std::vector<std::string>& list = p.ScriptSource[load == AutoBetLoad::HotKey ? 0 : seat];
  if (load == AutoBetLoad::Paste) {
    const size_t at = static_cast<size_t>(std::clamp(pasteLine, 0, static_cast<int>(list.size())));
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(at), lines.begin(), lines.end());
    if (g.Ui && !g.SilentMode) g.Ui->Refresh({"frmAutoBet"});
  } else {
    list = std::move(lines);
  }
  if (load == AutoBetLoad::Seat) g.ScriptFile[seat] = path;
  if (load != AutoBetLoad::HotKey) p.ScriptsCompiled = false;
  return true;
}

bool SaveAutoBets(Game& g, int seat) {
  if (seat < 1 || seat > kPlayerSeats || g.ScriptFile[seat].empty()) return false;
  if (WriteAutoBetFile(InProgramFolder(g.ProgramFolder, g.ScriptFile[seat]), g.AutoBet.ScriptSource[seat])) return true;
  TellFault(g, "SaveAutoBets");
  return false;
}

bool RunHotKey(Game& g, char key) {
  const int entry = FindHotKey(g.HotKeys, key);
  if (entry < 0) return false;
  const std::string file = InProgramFolder(g.ProgramFolder, g.HotKeys[static_cast<size_t>(entry)].ScriptFile);
  if (!RegularFileExists(file)) {
    Tell(g,
         "The Auto-bet file assigned to that Hot-key was not found in the specified location.\n\n"
         "Please check the path and file name on the Hot-key screen.",
         "Hot-key", 0, msg::kOk);
    return false;
  }
  if (!OpenAutoBets(g, 0, file, AutoBetLoad::HotKey)) return false;
  AutoBetProgram& p = g.AutoBet;
  std::array<std::string, kPlayerSeats> names{};
  for (int s = 1; s <= kPlayerSeats; ++s) names[static_cast<size_t>(s - 1)] = g.PlayerName[s];
  if (CompileAutobets(p, 0, names).Failed()) {
    Tell(g, "The Auto-Bet script for this hot-key contains a syntax error which must be corrected before you can ",
         "Auto-Bet Script Error", 0, msg::kOk);
    return false;
  }
  // The hot key's program runs in place of the seats' joined one, which comes back after.
  std::vector<TokenRecord> records, seatsRecords = std::move(p.ProgramRecords);
  std::vector<StringEntry> strings, seatsStrings = std::move(p.ProgramStrings);
  auto seatsPlans = std::move(p.Plans);
  JoinScript(records, strings, p.ScriptRecords, p.ScriptStrings);
  const bool compiled = p.ScriptsCompiled;
  p.ProgramRecords = std::move(records);
  p.ProgramStrings = std::move(strings);
  p.ScriptsCompiled = true;
  RunAutoBet(g);
  p.ProgramRecords = std::move(seatsRecords);
  p.ProgramStrings = std::move(seatsStrings);
  p.Plans = std::move(seatsPlans);
  p.ScriptsCompiled = compiled;
  return true;
}
