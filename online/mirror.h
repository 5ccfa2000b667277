#pragma once
// The table on the wire: the records a host sends of its table (players, bets, working
// states, bankrolls, shooters, rules and running counters), and how a mirror applies
// them. The client and an operator's rule edits at the host share these; the state
// machines around them decide who may send what.

#include <cstdint>
#include <string>
#include <vector>

#include "engine/game_state.h"
#include "online/codes.h"

// One bet: "~777" seat, bet, amount, contract base, vig.
std::string BetRecord(const Game& g, int seat, int bet);
// One working state: "~779" seat, bet, state.
std::string WorkingRecord(const Game& g, int seat, int bet);
// Bets changed while a roll runs: what a later step of the same roll does to them (a
// Come bet travelling to its number) happens on both sides alike, so only their amounts
// at the roll's end go out.
class ChangedBets {
 public:
  void Mark(int seat, int bet) { marked_[seat][bet] = true; }
  void MarkWorking(int seat, int bet) { working_[seat][bet] = true; }
  void MarkComeOut(int seat) { comeOut_[seat] = true; }
  bool Any() const;
  // The "~777" messages of the marked bets as they stand now, then the "~779" messages of
  // the marked working states, each within one frame, then the "~899" of the seats whose
  // working on the come-out changed; clears the marks.
  std::vector<std::string> Take(const Game& g);

 private:
  std::array<std::array<bool, kBets + 1>, kSeats> marked_{}, working_{};
  std::array<bool, kSeats> comeOut_{};
};

// All 107 bets of a seat in one message, and their working states in another.
std::string SeatBetsMessage(const Game& g, int seat);
std::string SeatWorkingMessage(const Game& g, int seat);
// Working on the come-out of the house and of each taken seat ("~899"), and of one seat.
std::string WorkOnComeOutMessage(const Game& g);
std::string WorkOnComeOutRecord(const Game& g, int seat);
// The players: "~888" for taken seats, "~886" for free ones, "~889" the shooters; empty
// messages are left out.
std::vector<std::string> PlayersMessages(const Game& g);
std::string ShootersMessage(const Game& g);
// "~887" seat, bankroll, session's beginning bankroll, buy-in total.
std::string BankrollRecord(const Game& g, int seat);
std::string BankrollsMessage(const Game& g);  // every taken seat; "" with none
// The rules, "~890" to "~918" in code order, then the running counters "~919".
std::vector<std::string> ConfigurationMessages(const Game& g);
std::string CountersMessage(const Game& g);

// Applying what the host sent. Each takes a message read by ReadMessage and returns
// false, with the fault in words and the game as it was, for a value that is in range
// but not one the table can hold.
void ApplyBetRecords(Game& g, const ParsedMessage& m);
void ApplyWorkingRecords(Game& g, const ParsedMessage& m);
void ApplyBankrollRecords(Game& g, const ParsedMessage& m);
void ApplyShooters(Game& g, const ParsedMessage& m);
// False (nothing applied) when a point field holds a number that is no point.
bool ApplyCounters(Game& g, const ParsedMessage& m, std::string& fault);
// The rule codes "~890" to "~918"; false for another code too.
bool IsRuleCode(std::string_view code);
bool ApplyRuleMessage(Game& g, const ParsedMessage& m, std::string& fault);

// While it lives no box opens at the table: what runs is another machine's doing.
class NoBoxes {
 public:
  explicit NoBoxes(Game& g) : g_(g), was_(g.SilentMode) { g.SilentMode = true; }
  ~NoBoxes() { g_.SilentMode = was_; }
  NoBoxes(const NoBoxes&) = delete;
  NoBoxes& operator=(const NoBoxes&) = delete;

 private:
  Game& g_;
  bool was_;
};

// The time of the table's clock as the chat and the logs show it: "h:mm am"; its date "m/d/yyyy".
std::string ClockText(const Game& g);
std::string DayText(const Game& g);

// A checksum of what a mirror must hold as the host does: players, bankrolls, bets with
// their bases, vig and working states, dice, point, shooters, counters and rules.
uint64_t TableDigest(const Game& g);
// A checksum of the statistics a client counts for itself while it sees every roll.
uint64_t StatisticsDigest(const Game& g);
// The first part in which two tables differ, in words ("" when none): for test messages.
std::string TableDifference(const Game& a, const Game& b);
