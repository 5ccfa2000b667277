#pragma once
// The engine's one door to an online table, held by the game and null at a table played
// alone. The online layer implements it for a host and for a client; the engine calls it
// only where an online table plays differently: where the dice come from, the bets, calls
// and rolls the other side must hear of, a new session, Auto-Roll switched, the dice
// passed by hand, and what a person at this machine may not do.

#include <cstdint>
#include <string>

// Where the dice of a roll come from at an online table.
enum class OnlineDice {
  Local,    // this table's own sources, as offline
  Remote,   // the dice came over the wire: the roll runs as the other side's did
  Refused,  // no roll here (the text has been told)
};

// Who decides what becomes of a settled bet's stake.
enum class StakeDecision {
  Here,      // the seat's own action or the settle dialog
  Elsewhere  // the machine that plays the seat decides and sends its word; the stake stays till then
};

struct BetRefusal {
  std::string text;  // "" when the bet may be placed
  std::string title;
};

class OnlineLink {
 public:
  virtual ~OnlineLink() = default;
  // Called as a roll starts: the dice when they came over the wire.
  virtual OnlineDice TakeDice(int32_t& die1, int32_t& die2) = 0;
  // The dice of the roll in progress are known.
  virtual void DiceRolled(int32_t die1, int32_t die2) = 0;
  // RollDice has run to its end (with or without dice rolled).
  virtual void RollEnded() = 0;
  // The amount (and with it the base or vig) of a bet of a seat changed.
  virtual void BetChanged(int seat, int bet) = 0;
  // A player called a bet of a seat on or off, or back to its rest.
  virtual void WorkingChanged(int seat, int bet) = 0;
  // A seat's choice of the bets that work on the come-out changed.
  virtual void WorkOnComeOutChanged(int seat) = 0;
  // Whether this machine changes the seat's bets at all; a refused change is dropped silently.
  virtual bool MayChangeBets(int seat) = 0;
  // A bet placed by a person at this table: the refusal to tell, or an empty text.
  virtual BetRefusal RefuseBet(int seat, int bet) = 0;
  virtual StakeDecision StakeOf(int seat) = 0;
  // A new session has started (the table was reset).
  virtual void SessionStarted() = 0;
  virtual void AutoRollSwitched(bool on) = 0;
  // The dice were passed at a person's request.
  virtual void DicePassed() = 0;
  // The player of this machine asked to leave its seat and stay on as an observer.
  virtual void LeaveOwnSeat() = 0;
};
