#include "autobet/compiler.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <vector>

namespace {

// Room GoSub returns start with; the interpreter grows it by the same step.
constexpr std::size_t kReturnStackRoom = 20;

// Where the statement's text stops: the comment, then trailing blanks, are not part of it.
int LineEnd(std::string_view line) {
  bool quoted = false;
  std::size_t end = line.size();
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') quoted = !quoted;
    if (line[i] == '\'' && !quoted) {
      end = i;
      break;
    }
  }
  while (end > 0 && line[end - 1] == ' ') --end;
  return static_cast<int>(end);
}

}  // namespace

int StatementLine(const std::vector<TokenRecord>& records, std::size_t index) {
  for (std::size_t i = std::min(index + 1, records.size()); i-- > 0;)
    if (IsStatementMarker(records[i])) return records[i].code - kCodeStatement;
  return 0;
}

CompileFault StatementFault(std::string message, const std::vector<TokenRecord>& records, std::size_t index,
                            std::span<const std::string> lines) {
  std::size_t marker = std::min(index, records.size() - 1);
  while (marker > 0 && !IsStatementMarker(records[marker])) --marker;
  CompileFault fault;
  fault.message = std::move(message);
  if (!IsStatementMarker(records[marker])) {
    // Before any statement: only the header; point at the script's first line.
    fault.firstLine = fault.lastLine = 1;
    return fault;
  }
  const int line = records[marker].code - kCodeStatement;
  fault.firstLine = fault.lastLine = line;
  fault.firstColumn = static_cast<int>(records[marker].value);
  const std::string_view source =
      line >= 1 && line <= static_cast<int>(lines.size()) ? std::string_view(lines[line - 1]) : std::string_view{};
  int end = LineEnd(source);
  for (std::size_t i = marker + 1; i < records.size(); ++i) {
    if (!IsStatementMarker(records[i])) continue;
    if (records[i].code == records[marker].code) {
      // The next statement shares the line: stop before it and the colon between them.
      end = std::min(end, static_cast<int>(records[i].value));
      while (end > fault.firstColumn && (source[end - 1] == ' ' || source[end - 1] == ':')) --end;
    }
    break;
  }
  fault.lastColumn = std::max(end, fault.firstColumn);
  return fault;
}

std::string FunctionDisplayName(int function) {
  static const std::map<int, std::string> names = {
      {1, "Lay"},
      {2, "DontCome"},
      {3, "DontComeOdds"},
      {4, "Come"},
      {5, "ComeOdds"},
      {6, "Place"},
      {7, "Buy"},
      {8, "Big"},
      {9, "Hard"},
      {10, "Hop"},
      {11, "Repeater"},
      {21, "CS"},
      {22, "Avg bankroll"},
      {25, "% of prob"},
      {26, "# of prob"},
      {27, "% of rolls"},
      {28, "# of rolls"},
      {29, "# of rolls since last"},
      {30, "% of prob true"},
      {31, "# of prob true"},
      {32, "# of prob skew"},
      {33, "% of prob skew"},
      {34, "ChiSquare"},
      {40, "# of comeout rolls"},
      {41, "% of comeout rolls"},
      {42, "# of passes"},
      {43, "% of passes"},
      {44, "# of misses"},
      {45, "% of misses"},
      {46, "# of points"},
      {47, "% of points"},
      {50, "Player"},
      {100, "Sqr"},
      {101, "Int"},
      {102, "Abs"},
      {104, "Asc"},
      {117, "Val"},
      {118, "Len"},
      {125, "Input"},
      {126, "Highest"},
      {127, "Lowest"},
      {128, "Avg"},
      {129, "StdDev"},
      {130, "Sum"},
      {131, "Count"},
      {132, "Highest$"},
      {133, "Lowest$"},
      {137, "PValue"},
      {139, "Round"},
      {141, "Sister"},
      {190, "Die"},
      {191, "Odds allowed factor"},
      {203, "InStr"},
      {800, "CSN"},
      {801, "Left$"},
      {802, "Right$"},
      {803, "RemoveLeft$"},
      {804, "RemoveRight$"},
      {805, "Mid$"},
      {806, "RemoveMid$"},
      {809, "Insert$"},
      {810, "Str$"},
      {811, "Chr$"},
      {812, "Space$"},
      {813, "String$"},
      {825, "Input$"},
      {850, "Player name"},
  };
  const auto it = names.find(function);
  return it != names.end() ? it->second : "F" + std::to_string(function);
}

// How a variable is called in messages, by the words of the token table ("Point", "# hands").
std::string VariableDisplayName(int variable) {
  static const std::map<int, std::string> names = {
      {651, "Available bankroll"},
      {655, "Last available bankroll"},
      {710, "Script active"},
      {1100, "Comps"},
      {1200, "Simulated hrs"},
      {1302, "High bankroll"},
      {1303, "Low bankroll"},
      {1500, "# hands"},
      {1501, "Most rolls in a hand"},
      {1502, "Avg rolls per hand"},
      {1503, "Most comeout rolls in a hand"},
      {1504, "Avg comeout rolls per hand"},
      {1505, "Most passes in a hand"},
      {1506, "Avg passes per hand"},
      {1507, "Most misses in a hand"},
      {1508, "Avg misses per hand"},
      {2600, "# of comeout rolls"},
      {2601, "% of comeout rolls"},
      {2602, "# of passes"},
      {2603, "% of passes"},
      {2604, "# of misses"},
      {2605, "% of misses"},
      {4000, "Lay bets"},
      {4001, "Inside lay bets"},
      {4002, "Outside lay bets"},
      {4010, "DontCome bets"},
      {4011, "Inside DontCome bets"},
      {4012, "Outside DontCome bets"},
      {4020, "DontComeOdds bets"},
      {4021, "Inside DontComeOdds bets"},
      {4022, "Outside DontComeOdds bets"},
      {4030, "Come bets"},
      {4031, "Inside Come bets"},
      {4032, "Outside Come bets"},
      {4040, "ComeOdds bets"},
      {4041, "Inside ComeOdds bets"},
      {4042, "Outside ComeOdds bets"},
      {4050, "Place bets"},
      {4051, "Inside Place bets"},
      {4052, "Outside Place bets"},
      {4060, "Buy bets"},
      {4061, "Inside Buy bets"},
      {4062, "Outside Buy bets"},
      {4070, "Big bets"},
      {4071, "Hard bets"},
      {4072, "Hop bets"},
      {4073, "Repeater bets"},
      {4100, "Bets"},
      {4501, "% of prob"},
      {4502, "# of prob"},
      {4503, "% of rolls"},
      {4504, "# of rolls"},
      {4505, "# of rolls since last"},
      {4506, "% of prob true"},
      {4507, "# of prob true"},
      {4508, "# of prob skew"},
      {4509, "% of prob skew"},
      {4510, "ChiSquare"},
      {4511, "PValue"},
      {4512, "Degrees of freedom"},
      {4606, "# of points"},
      {4607, "% of points"},
      {5000, "Initializing script"},
      {5001, "Beginning new session"},
      {5002, "Beginning new hand"},
      {5005, "Dice roll file end reached"},
      {5007, "Dice roll file length"},
      {5200, "Shooter"},
      {5201, "Last shooter"},
      {5202, "Original shooter"},
      {5203, "Bettor"},
      {5204, "Autobettor"},
      {5210, "Selected check"},
      {5211, "Online"},
      {5300, "Shooter passes"},
      {5301, "Shooter misses"},
      {5500, "Point"},
      {5501, "Last point"},
      {5510, "Dice total"},
      {5511, "Dice combo"},
      {5512, "Die1"},
      {5513, "Die2"},
      {5514, "Dice perm"},
      {5610, "Minimum bet"},
      {5611, "Maximum bet"},
      {5630, "Bar"},
      {5693, "Date/time"},
      {5696, "Timer"},
      {5697, "Answer"},
      {5698, "Rnd"},
      {5704, "Next roll is a comeout roll"},
      {5705, "Next roll is not a comeout roll"},
      {5706, "Last roll was a comeout roll"},
      {5707, "Last roll was not a comeout roll"},
      {5708, "Seven out"},
      {5709, "Point is decided"},
      {5710, "Point is established"},
      {5711, "Point is not established"},
  };
  const auto it = names.find(variable);
  return it != names.end() ? it->second : "V" + std::to_string(variable);
}

CompileFault CompileAutobets(AutoBetProgram& program, int player, std::span<const std::string> playerNames) {
  program.ScriptRecords.clear();
  program.ScriptStrings.clear();
  program.ReturnStack.assign(kReturnStackRoom + 1, 0);
  if (player < 0 || player > kPlayerSeats) player = 0;
  const std::vector<std::string>& lines = program.ScriptSource[player];

  CompileFault fault = TokeniseScript(player, lines, playerNames, program.ScriptRecords, program.ScriptStrings);
  if (!fault.Failed()) fault = CompileMisc(program.ScriptRecords, program.ScriptStrings, lines);
  if (!fault.Failed())
    fault = CompileVariablesOrganize(program.ScriptRecords, lines, player ? player : program.SelectedSeat);
  if (!fault.Failed()) fault = CompileThru(program.ScriptRecords, lines);
  if (!fault.Failed()) CompileVariablesDistribute(program.ScriptRecords, program.CornerBet == 1);
  if (!fault.Failed()) fault = CompileConvertToAction(program.ScriptRecords, lines);
  if (!fault.Failed()) fault = CompileLogic(program.ScriptRecords, program.ScriptStrings, lines);
  if (!fault.Failed()) fault = CompileCheck(program.ScriptRecords, lines);
  if (fault.Failed()) {
    program.ScriptRecords.clear();
    program.ScriptStrings.clear();
  }
  return fault;
}

void JoinScript(std::vector<TokenRecord>& programRecords, std::vector<StringEntry>& programStrings,
                std::span<const TokenRecord> records, std::span<const StringEntry> strings) {
  const double recordShift = static_cast<double>(programRecords.size());
  const double stringShift = static_cast<double>(programStrings.size());
  for (StringEntry entry : strings) {
    if (entry.value > 0) entry.value += recordShift;  // a label's record index
    programStrings.push_back(std::move(entry));
  }
  bool jumpTarget = false;  // the record after GOTO or GOSUB holds a record index, not a pool index
  for (TokenRecord record : records) {
    const bool target = jumpTarget;
    jumpTarget = record.code == kCodeGoto || record.code == kCodeGosub;
    if (target) {
      if (record.value > 0) record.value += recordShift;
    } else if (record.code >= 1 && record.code <= 19 && !jumpTarget) {
      if (record.value > 0) record.value += recordShift;
    } else if (record.code == kCodeString || record.code == kCodeLabel) {
      if (record.value > 0) record.value += stringShift;
    }
    programRecords.push_back(record);
  }
}

namespace {

// The last script each seat compiled on this thread, with what it was compiled against. A
// run of sessions sets up its table afresh for every session and compiles the same scripts
// for the same names again: those are taken from here. A fault isn't kept.
struct SeatCompilation {
  bool valid = false;
  bool cornerBet = false;
  std::vector<std::string> lines;
  std::vector<std::string> names;
  std::vector<TokenRecord> records;
  std::vector<StringEntry> strings;
};

CompileFault CompileSeat(AutoBetProgram& program, int seat, std::span<const std::string> names) {
  thread_local std::array<SeatCompilation, kPlayerSeats + 1> last;
  SeatCompilation& kept = last[static_cast<std::size_t>(seat)];
  const std::vector<std::string>& lines = program.ScriptSource[seat];
  const bool cornerBet = program.CornerBet == 1;
  if (kept.valid && kept.cornerBet == cornerBet && std::ranges::equal(kept.lines, lines) &&
      std::ranges::equal(kept.names, names)) {
    program.ScriptRecords = kept.records;
    program.ScriptStrings = kept.strings;
    program.ReturnStack.assign(kReturnStackRoom + 1, 0);
    return {};
  }
  kept.valid = false;
  const CompileFault fault = CompileAutobets(program, seat, names);
  if (fault.Failed()) return fault;
  kept = {true, cornerBet, lines, {names.begin(), names.end()}, program.ScriptRecords, program.ScriptStrings};
  return fault;
}

}  // namespace

CompileAllResult CompileALLAutobets(AutoBetProgram& program, int player, const SeatFacts& seats) {
  program.ScriptsCompiled = false;
  if (seats.selectedSeat >= 1 && seats.selectedSeat <= kPlayerSeats)
    program.ScriptSource[seats.selectedSeat] = program.EditorLines;
  program.ProgramRecords.clear();
  program.ProgramStrings.clear();
  program.Plans = nullptr;  // worked out for the records that were here

  const int first = player >= 1 && player <= kPlayerSeats ? player : 1;
  const int last = player >= 1 && player <= kPlayerSeats ? player : kPlayerSeats;
  CompileAllResult result;
  for (int seat = first; seat <= last; ++seat) {
    if (!seats.active[seat - 1]) continue;
    const CompileFault fault = CompileSeat(program, seat, seats.names);
    if (fault.Failed()) {
      const std::string& name = seats.names[seat - 1];
      result.seat = seat;
      result.fault = fault;
      result.title = "Auto-bet script error";
      result.message = name +
                       "'s auto-bet script contains an error which must be corrected before you can run it.\n\n"
                       "Select " +
                       name + " on the auto-bet screen and click the \"Check Script\" button to see the error.";
      program.ProgramRecords.clear();
      program.ProgramStrings.clear();
      return result;
    }
    JoinScript(program.ProgramRecords, program.ProgramStrings, program.ScriptRecords, program.ScriptStrings);
  }
  program.ScriptsCompiled = true;
  return result;
}

std::string LowerTrimmed(std::string_view s) {
  const std::size_t first = s.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  s = s.substr(first, s.find_last_not_of(" \t") - first + 1);
  std::string out(s);
  for (char& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return out;
}
