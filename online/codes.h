#pragma once
// Every message code of the online tables in one table: who sends it to whom, and the
// fields of its records with the range of each. A reader checks every field against the
// table before a handler sees it, so a store is never touched by a value out of range;
// the writers build records field by field.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/bets.h"
#include "engine/money.h"

// Who sends a message to whom; a code may mean different things each way.
enum MessageWay : uint8_t { kHostToClient = 1, kClientToHost = 2, kPeerToLobby = 4, kLobbyToPeer = 8 };

enum class FieldKind : uint8_t {
  Digit,    // one character, no tab
  Int,      // a whole number ended by a tab
  Amount,   // an amount of money ended by a tab
  Flag,     // -1 or 0 ended by a tab
  Text,     // text ended by a tab
  Bits,     // a row of '0' and '1' ended by a tab; `max` is its length
  RestInt,  // a whole number that is the rest of the message
  RestAmount,
  RestFlag,
  RestText,
  RestBuyIn  // an amount, or "unlimited" (the bound is open)
};

struct FieldForm {
  FieldKind kind;
  int64_t min = 0;  // for amounts in dollars; for texts the least length
  int64_t max = 0;  // for texts and bits the greatest length
  const char* name = "";
};

struct MessageForm {
  std::string_view code;  // "~777", or "~PING"
  uint8_t ways;           // MessageWay bits
  bool repeated;          // records of this code may follow one another in one message
  std::vector<FieldForm> fields;
  // A group of fields repeated to the end of the message after the fields above, its
  // count given by the first field (the client list of "~013").
  std::vector<FieldForm> group;
};

// The table row of a message going the given way: from its first four characters ("~PING"
// and "~PONG" whole); null for chat (no leading "~") and for an unknown code.
const MessageForm* FindMessageForm(std::string_view message, MessageWay way);
// The whole table, for tests and the fuzz targets.
const std::vector<MessageForm>& MessageTable();

struct FieldValue {
  int64_t number = 0;  // Int, Digit, Flag, RestInt, RestFlag, Bits as read
  Money amount;        // Amount, RestAmount, RestBuyIn
  bool unlimited = false;
  std::string_view text;  // Text, RestText, Bits; a view into the message
};

// A message read and checked: its fields record after record (then group after group).
struct ParsedMessage {
  const MessageForm* form = nullptr;
  int width = 0;  // fields in one record (the group's width for a grouped message)
  int records = 0;
  std::vector<FieldValue> fields;
  const FieldValue& At(int record, int field) const { return fields[static_cast<size_t>(record * width + field)]; }
};

// Reads every record of a message going the given way. False with the fault in words
// (the field and why) for an unknown code, a missing or extra part, a malformed field
// or one out of range; `out` then holds nothing to act on.
bool ReadMessage(std::string_view message, MessageWay way, ParsedMessage& out, std::string& fault);

// ---- Writers: a message is its code, then its fields in order. -------------------------

void PutInt(std::string& m, int64_t v);          // and a tab
void PutAmount(std::string& m, Money v);         // and a tab
void PutFlag(std::string& m, bool v);            // -1 or 0, and a tab
void PutText(std::string& m, std::string_view);  // a tab inside becomes a blank; and a tab
void PutDigit(std::string& m, int v);            // one character
// "unlimited" at or beyond the bound of the side, else the amount (no tab: the rest).
void PutBuyIn(std::string& m, Money v, Money bound);

// ---- Texts from the wire. ----------------------------------------------------------------

// Without leading and trailing blanks.
std::string TrimBlanks(std::string_view s);
// The first `n` characters of a UTF-8 text.
std::string FirstCharacters(std::string_view s, size_t n);
// Equal when case is ignored (ASCII letters).
bool SameName(std::string_view a, std::string_view b);
