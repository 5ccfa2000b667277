#pragma once
// The events log's settings and the working values its writers keep between the calls
// of one roll: plain data, held by the game.

#include <array>
#include <cstdint>
#include <string>

#include "engine/bets.h"
#include "engine/money.h"

struct Game;

// Bits of Game::EventsLogCategories: the eight kinds of event that can be chosen.
namespace events {
constexpr int32_t kRolls = 1, kBetChanges = 2, kCheckStackChanges = 4, kShooterChanges = 8, kBetsWon = 16,
                  kBetsLost = 32, kPassesMisses = 64, kBankrollChanges = 128;
constexpr int32_t kAllKinds = 255;
}  // namespace events

inline constexpr const char* kEventsLogIndexName = "Events Log.ref";

// Where the dice of a roll came from, for the suffix of the roll line.
enum class RollSource { OnlineHost, ManualPad, PopupFile, RollFile, Generator };

struct EventsLog {
  bool ClearLogNewSessions = false;  // "&Clear log when new sessions start"
  bool KeepLatestRollOnTop = false;  // "&Scroll new rolls to the top"
  int32_t TopLine = 1;               // the line shown at the top of the view
  std::string FindText;              // what Find looked for last

  // Working values between the writers of one roll and the next.
  bool ResultHeaderWritten = false;    // "    Wins/losses:" once per roll
  bool FailureReported = false;        // a failing file is told once, until a line goes in again
  std::array<Money, kSeats> AtmNet{};  // ATM since the last roll's log: + withdrawal, - deposit
  // Come and Don't Come flats that travelled to their numbers at the last roll: the bets
  // section counts that as no change. 0..5 Come 4..10, 6..11 Don't Come 4..10.
  std::array<std::array<Money, 12>, kSeats> Moved{};
  std::array<bool, kSeats> SeatLeft{};  // the seat's copies belong to a player who left
};
