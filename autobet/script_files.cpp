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

struct WordPair {
  std::string_view from, to;
};

// The word conversion of the record form, applied in this order, each over the whole
// line. The order is the design: " when " first keeps its condition as a comment, and
// the starred words ("w**n", "r*ll") only stop a later pair from converting a word
// twice, until the pair that puts them back. Pairs whose `to` opens a bracket get it
// closed at the end of the line's conversion.
constexpr WordPair kWordPairs[] = {
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
    {" ref #", "(CheckStack"},
    {" ref#", "(CheckStack"},
    {" ref ", "(CheckStack "},
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
    {"chip-stack", "checkstack"},
    {"chip stack", "checkstack"},
    {"pass-line", "pass line"},
    {"passline odds", "pass line odds"},
    {"dont pass", "don't pass"},
    {"dont come", "don't come"},
    {"dontpass odds", "don't pass odds"},
    {"c and e", "C and E"},
    {"come-out", "come out"},
    {"auto-lay full odds", "autolay full odds"},
    {"auto-take full odds", "autotake full odds"},
    {"auto-handle", "autohandle"},
    {"auto-bet", "autobet"},
    {"auto-rolling", "autorolling"},
    {"hyper-drive", "hyperdrive"},
    {"display message", "show message"},
    {"highest of ", "Highest("},
    {"lowest of ", "Lowest("},
    {"average of ", "Average("},
    {" in the atm ", " atm "},
    {" from the atm ", " atm "},
    {" deposit ", " atm deposit "},
    {" withdraw ", " atm withdraw "},
    {" to true ", " = true "},
    {" is true ", " = true "},
    {" to false ", " = false "},
    {" is false ", " = false "},
    {"any number", "any(numbers)"},
    {"total bets number more than", "Count(bets) is more than"},
    {"total bets number less than", "Count(bets) is less than"},
    {"total bets number", "Count(bets)"},
    {"total bets", "Sum(bets)"},
    {"any checkstacks", "any(CheckStacks)"},
    {"bets) loses", "bets lose)"},
    {"bets) wins", "bets win)"},
    {" rolls ", " r*lls "},
    {" roll ", " r*ll "},
    {"r*ll", "roll"},
    {"reset ", "'Reset "},
    {"close file", "'Close file"},
};

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
  for (const WordPair& pair : kWordPairs)
    if (ReplaceAll(line, pair.from, pair.to) && pair.to.find('(') != std::string_view::npos &&
        pair.to.find(')') == std::string_view::npos)
      bracketOpened = true;
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
