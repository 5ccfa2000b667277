// Fuzz target: a message read as a host would send it and, when it reads, applied to a
// mirror as a client applies it; the mirror must stay whole. Built only with clang
// (cmake -DDICEHALL_FUZZ=ON).

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "engine/players.h"
#include "engine/roll_cycle.h"
#include "online/codes.h"
#include "online/mirror.h"
#include "tests/online/invariants.h"

namespace {

Game& Mirror() {
  static std::unique_ptr<Game> g = [] {
    auto game = std::make_unique<Game>();
    SetDefaultGame(*game);
    AddPlayer(*game, 1, "Ann", Money::Dollars(1000));
    AddPlayer(*game, 5, "Bob", Money::Dollars(1000));
    return game;
  }();
  return *g;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string message(reinterpret_cast<const char*>(data), size);
  ParsedMessage m;
  std::string fault;
  if (!ReadMessage(message, kHostToClient, m, fault)) return 0;
  Game& g = Mirror();
  const std::string_view code = m.form->code;
  if (code == "~777") ApplyBetRecords(g, m);
  else if (code == "~779") ApplyWorkingRecords(g, m);
  else if (code == "~887") ApplyBankrollRecords(g, m);
  else if (code == "~889") ApplyShooters(g, m);
  else if (code == "~919") ApplyCounters(g, m, fault);
  else if (IsRuleCode(code)) ApplyRuleMessage(g, m, fault);
  if (!BrokenInvariant(g).empty()) __builtin_trap();
  return 0;
}
