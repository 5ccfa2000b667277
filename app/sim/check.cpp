// dicehall-sim --check: compiles a script file as the script of seat 1 and says "OK" or
// where its first fault is, the way a compiler does; --dump shows what it compiled to.

#include <fmt/format.h>

#include <fstream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "app/sim/sim.h"
#include "autobet/compiler.h"

bool ReadScriptLines(const std::string& path, std::vector<std::string>& lines) {
  std::ifstream f(path, std::ios::binary);
  if (!f) return false;
  std::string line;
  while (std::getline(f, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return !f.bad();
}

namespace {

std::string OneLine(std::string message) {
  for (char& c : message)
    if (c == '\n') c = ' ';
  return message;
}

std::string Number(double v) {
  std::string s = fmt::format("{}", v);
  return s;
}

// A record as its word of the token stream reads.
std::string RecordText(const TokenRecord& r) {
  const int v = static_cast<int>(r.value);
  if (r.code >= kCodeStatement) return fmt::format("statement, line {}, column {}", r.code - kCodeStatement, v + 1);
  switch (r.code) {
    case kCodeScriptHeader: return fmt::format("script of seat {}", v);
    case kCodeEndOfList: return "end of list";
    case kCodeFunction: return fmt::format("F{:03}", v);
    case kCodeFunctionTarget: return fmt::format("F{:03} (set)", v);
    case kCodeVariable: return fmt::format("V{:03}", v);
    case kCodeVariableTarget: return fmt::format("V{:03} (set)", v);
    case kCodePlayer: return fmt::format("P{}", v);
    case kCodeTime: return fmt::format("H{}", v);
    case kCodeCounted: return fmt::format("X{}", v);
    case kCodeModifier: return fmt::format("Y{}", v);
    case kCodeNumber: return Number(r.value);
    case kCodeString: return fmt::format("S{:03}", v);
    case kCodeAction: return fmt::format("A{:03}", v);
    case kCodeLabel: return fmt::format("label {}", Number(r.value));
    case kCodeListKind: return fmt::format("I{:03}", v);
    default: break;
  }
  if (r.code > 0)
    return r.value != 0 ? fmt::format("L{:03} -> {}", r.code, Number(r.value)) : fmt::format("L{:03}", r.code);
  return fmt::format("code {} value {}", r.code, Number(r.value));
}

}  // namespace

std::string FaultLine(const std::string& file, const CompileFault& fault) {
  const int lastColumn = fault.lastLine == fault.firstLine ? std::max(fault.lastColumn, fault.firstColumn + 1)
                                                           : std::max(fault.lastColumn, 1);
  return fmt::format("{}:{}:{}-{}:{}: {}", file, fault.firstLine, fault.firstColumn + 1, fault.lastLine, lastColumn,
                     OneLine(fault.message));
}

int RunCheck(const SimOptions& o, std::ostream& out, std::ostream& err) {
  std::vector<std::string> lines;
  if (!ReadScriptLines(o.checkFile, lines)) {
    err << "dicehall-sim: " << o.checkFile << ": the file can't be read.\n";
    return 1;
  }
  const std::string player = o.players.empty() ? std::string("Ann") : o.players.front().name;
  AutoBetProgram program;
  program.ScriptSource[1] = lines;
  std::vector<std::string> names(kPlayerSeats);
  names[0] = player;
  const CompileFault fault = CompileAutobets(program, 1, names);
  if (fault.Failed()) {
    out << FaultLine(o.checkFile, fault) << "\n";
    return 1;
  }
  out << "OK\n";
  if (o.dump) {
    out << "Records:\n";
    for (size_t i = 0; i < program.ScriptRecords.size(); ++i)
      out << fmt::format("{:5}  {}\n", i, RecordText(program.ScriptRecords[i]));
    out << "Strings:\n";
    for (size_t k = 0; k < program.ScriptStrings.size(); ++k)
      out << fmt::format("{:5}  \"{}\"{}\n", k + 1, program.ScriptStrings[k].text,
                         program.ScriptStrings[k].value != 0 ? " = " + Number(program.ScriptStrings[k].value) : "");
  }
  return 0;
}
