#include "stats/checkstacks.h"

#include <fmt/format.h>

#include <fstream>

#include "engine/messages.h"
#include "engine/placement.h"
#include "storage/error_report.h"
#include "storage/paths.h"

std::vector<CheckStackLine> ListCheckStacks(const Game& g, int seat, bool displayZero) {
  std::vector<CheckStackLine> lines;
  for (int n = 0; n < kCheckStacks; ++n) {
    const Money v = g.BetAmount[seat][kCheckStackRow + n];
    if (v.raw == 0 && !displayZero) continue;
    lines.push_back({n, v, g.CheckStackName[seat][n]});
  }
  return lines;
}

std::string CheckStacksText(const std::vector<CheckStackLine>& lines) {
  // The value column stands under "Value", the name under "Name".
  std::string out = " #    Value                  Name\n";
  for (const CheckStackLine& l : lines) out += fmt::format("{:>2}    {:<23}{}\n", l.number, MoneyText(l.value), l.name);
  return out;
}

std::string CheckStacksTsv(const std::vector<CheckStackLine>& lines) {
  std::string out = "#\tValue\tName\n";
  for (const CheckStackLine& l : lines) out += fmt::format("{}\t{}\t{}\n", l.number, MoneyText(l.value), l.name);
  return out;
}

std::string CheckStacksCsv(const std::vector<CheckStackLine>& lines) {
  auto quoted = [](const std::string& s) {
    if (s.find_first_of(",\"\n") == std::string::npos) return s;
    std::string q = "\"";
    for (char c : s) q += c == '"' ? std::string("\"\"") : std::string(1, c);
    return q + "\"";
  };
  std::string out = "#,Value,Name\n";
  for (const CheckStackLine& l : lines) out += fmt::format("{},{},{}\n", l.number, MoneyText(l.value), quoted(l.name));
  return out;
}

bool WriteCheckStacksFile(const std::string& path, const std::string& text, std::string& error) {
  std::ofstream f(path, std::ios::binary | std::ios::trunc);
  if (f) f << text;
  if (!f) {
    error = ErrorReport("Path/File access error", 75, "sub Copy CheckStacks To Text File");
    return false;
  }
  return true;
}

Money SetCheckStack(Game& g, int seat, int number, Money value) {
  if (number < 0 || number >= kCheckStacks) return Money{};
  const int row = kCheckStackRow + number;
  return ChangeBet(g, seat, row, value - g.BetAmount[seat][row]);
}

int FindCheckStack(const Game& g, int seat, const std::string& name) {
  if (name.empty()) return -1;
  for (int n = 0; n < kCheckStacks; ++n)
    if (g.CheckStackName[seat][n] == name) return n;
  return -1;
}

namespace {

bool Confirmed(Game& g, const std::string& text, const std::string& title) {
  return Tell(g, text, title, 0, msg::kYesNoQuestion).Button == kButtonYes;
}

void ZeroValues(Game& g, int seat) {
  for (int n = 0; n < kCheckStacks; ++n) SetCheckStack(g, seat, n, Money{});
}

}  // namespace

bool DeleteAllCheckStacks(Game& g, int seat) {
  if (!Confirmed(g, "Are you sure you want to delete ALL the CheckStack values and names for " + g.PlayerName[seat],
                 "Delete All"))
    return false;
  ZeroValues(g, seat);
  g.CheckStackName[seat] = {};
  return true;
}

bool DeleteAllCheckStackValues(Game& g, int seat) {
  if (!Confirmed(g, "Are you sure you want to delete ALL the CheckStack values for " + g.PlayerName[seat],
                 "Delete All Values"))
    return false;
  ZeroValues(g, seat);
  return true;
}

bool DeleteAllCheckStackNames(Game& g, int seat) {
  if (!Confirmed(g, "Are you sure you want to delete ALL the CheckStack names for " + g.PlayerName[seat],
                 "Delete All Names"))
    return false;
  g.CheckStackName[seat] = {};
  return true;
}

namespace {

CheckStackSnapshot Take(const Game& g, int seat) {
  CheckStackSnapshot s{seat, {}, g.CheckStackName[seat]};
  for (int n = 0; n < kCheckStacks; ++n) s.values[n] = g.BetAmount[seat][kCheckStackRow + n];
  return s;
}

void Restore(Game& g, const CheckStackSnapshot& s) {
  for (int n = 0; n < kCheckStacks; ++n) SetCheckStack(g, s.seat, n, s.values[n]);
  g.CheckStackName[s.seat] = s.names;
}

}  // namespace

void SaveUndo(const Game& g, int seat, CheckStackUndo& list) {
  list.undo.push_back(Take(g, seat));
  list.redo.clear();
}

bool Undo(Game& g, CheckStackUndo& list) {
  if (list.undo.empty()) return false;
  CheckStackSnapshot s = std::move(list.undo.back());
  list.undo.pop_back();
  list.redo.push_back(Take(g, s.seat));
  Restore(g, s);
  return true;
}

bool Redo(Game& g, CheckStackUndo& list) {
  if (list.redo.empty()) return false;
  CheckStackSnapshot s = std::move(list.redo.back());
  list.redo.pop_back();
  list.undo.push_back(Take(g, s.seat));
  Restore(g, s);
  return true;
}
