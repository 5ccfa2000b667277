#include "autobet/statement_buffer.h"

#include <charconv>

#include "engine/game_state.h"

void DeleteRecords(AutoBetProgram& p, int position, int count) {
  if (count <= 0) return;
  auto& b = p.StatementBuffer;
  const int last = p.StatementLength;
  for (int i = position; i + count <= last; ++i) b[i] = b[i + count];
  p.StatementLength -= count;
  if (p.CloseBracket > position) p.CloseBracket -= count;
}

bool Fault(Game& g, int code) {
  g.AutoBet.RunError = code;
  return false;
}

void PutNumber(AutoBetProgram& p, int position, double value) { p.StatementBuffer[position] = {kCodeNumber, value}; }

int NewRunString(AutoBetProgram& p, std::string text) {
  p.ProgramStrings.push_back({std::move(text), 0});
  return static_cast<int>(p.ProgramStrings.size());
}

void PutString(AutoBetProgram& p, int position, std::string text) {
  p.StatementBuffer[position] = {kCodeString, static_cast<double>(NewRunString(p, std::move(text)))};
}

double LeadingNumber(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  // A leading '+' is accepted as a sign; from_chars takes only '-'.
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
    negative = text[i] == '-';
    ++i;
  }
  // No exponent or hex forms: only digits with one decimal point are read.
  std::size_t end = i;
  bool point = false;
  while (end < text.size() && ((text[end] >= '0' && text[end] <= '9') || (text[end] == '.' && !point))) {
    point = point || text[end] == '.';
    ++end;
  }
  double value = 0;
  if (end > i) {
    const auto [ptr, ec] = std::from_chars(text.data() + i, text.data() + end, value, std::chars_format::fixed);
    if (ec != std::errc()) value = 0;
  }
  return negative ? -value : value;
}
