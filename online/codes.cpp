#include "online/codes.h"

#include <limits>

namespace {

constexpr int64_t kBankrollRange = 99999999999;  // a bankroll can pass its limit by a payoff before the stop
constexpr int64_t kBetRange = 9999999;
constexpr int64_t kCountRange = std::numeric_limits<int32_t>::max();

FieldForm Digit(int64_t min, int64_t max, const char* name) { return {FieldKind::Digit, min, max, name}; }
FieldForm Int(int64_t min, int64_t max, const char* name) { return {FieldKind::Int, min, max, name}; }
FieldForm Amount(int64_t min, int64_t max, const char* name) { return {FieldKind::Amount, min, max, name}; }
FieldForm Flag(const char* name) { return {FieldKind::Flag, -1, 0, name}; }
FieldForm Text(int64_t max, const char* name) { return {FieldKind::Text, 0, max, name}; }
FieldForm Bits(int64_t length, const char* name) { return {FieldKind::Bits, length, length, name}; }
FieldForm RestInt(int64_t min, int64_t max, const char* name) { return {FieldKind::RestInt, min, max, name}; }
FieldForm RestAmount(int64_t min, int64_t max, const char* name) { return {FieldKind::RestAmount, min, max, name}; }
FieldForm RestFlag(const char* name) { return {FieldKind::RestFlag, -1, 0, name}; }
FieldForm RestText(int64_t max, const char* name) { return {FieldKind::RestText, 0, max, name}; }
FieldForm RestBuyIn(const char* name) { return {FieldKind::RestBuyIn, -kBetRange - 1, kBetRange + 1, name}; }

constexpr uint8_t kBoth = kHostToClient | kClientToHost;

std::vector<FieldForm> Listing() {
  std::vector<FieldForm> f = {Text(20, "game name"),
                              Text(20, "host name"),
                              Text(50, "address"),
                              Text(20, "status"),
                              Amount(0, kBetRange, "minimum bet"),
                              Amount(0, kBetRange, "maximum bet"),
                              Text(20, "odds"),
                              Amount(-kBetRange - 1, kBetRange + 1, "minimum buy-in"),
                              Amount(-kBetRange - 1, kBetRange + 1, "maximum buy-in"),
                              Int(0, 1, "password flag")};
  for (int s = 0; s < 8; ++s) f.push_back(Text(19, "player name"));
  f.push_back(Int(0, 10000, "players"));
  f.push_back(Int(0, 10000, "wait list"));
  f.push_back(Int(0, 10000, "observers"));
  f.push_back(Text(100, "notes"));
  return f;
}

std::vector<FieldForm> PayoffRecord(int firstRow, int lastRow) {
  return {Int(firstRow, lastRow, "row"), Amount(-1000000, 1000000, "pay"), Amount(-1000000, 1000000, "to or for"),
          Amount(0, 1000000, "per")};
}

std::vector<FieldForm> TableCounters() {
  std::vector<FieldForm> f = {Int(0, 10, "point"),
                              Int(0, 10, "prior point"),
                              Int(0, 10, "second prior point"),
                              Int(0, 10, "last point"),
                              Int(0, 65535, "hot roller mask"),
                              Int(0, 6, "hot roller count"),
                              Int(0, 65535, "all numbers mask"),
                              Int(0, kCountRange, "four roll count"),
                              Int(0, 65535, "fire mask"),
                              Int(0, 6, "fire count"),
                              Int(0, kCountRange, "points won"),
                              Int(0, kCountRange, "passes made")};
  for (int t = 2; t <= 12; ++t) f.push_back(Int(0, kCountRange, "repeater count"));
  return f;
}

std::vector<MessageForm> BuildTable() {
  std::vector<MessageForm> t;
  auto add = [&](std::string_view code, uint8_t ways, bool repeated, std::vector<FieldForm> fields,
                 std::vector<FieldForm> group = {}) {
    t.push_back({code, ways, repeated, fields, group});
  };
  // Handshake and seats.
  add("~001", kHostToClient, false, {});
  add("~001", kClientToHost, false, {RestInt(0, 999, "level")});
  add("~002", kHostToClient, false, {Text(50, "host name"), Text(50, "game name")});
  add("~003", kHostToClient, false, {RestText(1000, "prompt")});
  add("~003", kClientToHost, false, {RestText(50, "password")});
  add("~004", kHostToClient, false, {RestText(4000, "welcome text")});
  add("~004", kClientToHost, false, {RestText(100, "name")});
  add("~005", kHostToClient, false, {RestText(1000, "reason")});
  add("~006", kHostToClient, false, {Text(20, "name"), Int(0, 6, "state")});
  add("~007", kHostToClient, false, {RestText(4000, "welcome text")});
  add("~007", kClientToHost | kPeerToLobby, false, {});
  add("~007", kLobbyToPeer, false, {RestText(1000, "lobby line")});
  add("~008", kHostToClient, false, {RestText(100, "free seats")});
  add("~008", kClientToHost, false, {RestInt(1, 8, "seat")});
  add("~009", kHostToClient, false, {});
  add("~009", kClientToHost, false, {RestAmount(-kBetRange, kBetRange, "buy-in")});
  add("~010", kHostToClient, false, {Int(1, 8, "seat"), Amount(-kBetRange, kBetRange, "buy-in")});
  add("~011", kBoth, false, {Digit(1, 8, "seat"), RestText(20, "name")});
  add("~012", kClientToHost, false, {});
  add("~012", kHostToClient, false, {RestFlag("approved")});
  add("~013", kHostToClient, false, {Int(0, 10000, "count")},
      {Text(21, "status and name"), Amount(0, 100000000, "table time"), Flag("operates"), Int(0, 8, "seat"),
       Flag("chat allowed"), Flag("auto-bet allowed"), Int(0, 999, "level"), Int(-1, 100000, "socket")});
  add("~014", kBoth, false, {RestText(50, "password")});
  add("~015", kClientToHost, false, {});
  for (std::string_view code : {"~100", "~101", "~102", "~103"}) {
    add(code, kHostToClient, false, {RestText(1000, "notice")});
    add(code, kClientToHost, false, {RestInt(1, 10000, "entry")});
  }
  add("~104", kClientToHost, false, {RestInt(1, 10000, "entry")});
  // The host panel.
  add("~120", kBoth, false, {RestBuyIn("minimum buy-in")});
  add("~121", kBoth, false, {RestBuyIn("maximum buy-in")});
  add("~122", kBoth, false, {RestInt(0, 3600, "countdown")});
  add("~123", kBoth, false, {RestInt(0, 3600, "roll delay")});
  add("~124", kBoth, false, {RestFlag("new clients chat")});
  add("~125", kBoth, false, {RestFlag("new players auto-bet")});
  add("~126", kBoth, false, {RestFlag("colour scheme")});
  add("~127", kBoth, false, {RestText(1000, "notes")});
  add("~128", kHostToClient, false, {RestAmount(0, 100000000, "table time")});
  add("~129", kHostToClient, false, {Int(0, 10000, "players"), Int(0, 10000, "wait list"), Int(0, 10000, "observers")});
  add("~130", kBoth, false, {Int(0, 8, "max players"), Int(0, 10000, "max wait list"), Int(0, 10000, "max observers")});
  // The lobby.
  add("~500", kLobbyToPeer, false, {});
  add("~500", kPeerToLobby, false, {RestText(100, "identity")});
  add("~501", kPeerToLobby, false, {});
  add("~501", kLobbyToPeer, false, {Digit(0, 9, "level"), RestText(1000, "lobby line")});
  add("~503", kPeerToLobby, false, {});
  add("~503", kLobbyToPeer, false, {RestText(8000, "terms")});
  add("~504", kPeerToLobby, false, {RestFlag("agreed")});
  add("~504", kLobbyToPeer, false, {});
  add("~510", kPeerToLobby, false, {});
  add("~516", kLobbyToPeer, true, Listing());
  add("~555", kPeerToLobby, false, Listing());
  // Table state.
  add("~660", kHostToClient, false,
      {Digit(1, 7, "die 1"), Digit(1, 7, "die 2"), RestInt(0, kCountRange, "roll count")});
  add("~661", kBoth, false, {RestInt(0, 3600, "seconds")});
  add("~662", kBoth, false, {});
  add("~663", kBoth, false, {});
  add("~664", kBoth, false, {RestAmount(0, 300, "delay")});
  add("~666", kBoth, false, {Digit(1, 7, "die 1"), Digit(1, 7, "die 2")});
  add("~667", kClientToHost, false, {RestInt(0, kCountRange, "roll count")});
  add("~668", kBoth, false, {});
  add("~669", kBoth, false, {Digit(1, 8, "seat"), RestFlag("auto-pass")});
  add("~670", kHostToClient, false, {RestText(8000, "clipboard text")});
  add("~700", kBoth, false, {});
  add("~701", kHostToClient, false, {});
  add("~701", kClientToHost, false, {RestInt(1, 10000, "entry")});
  add("~777", kBoth, true,
      {Int(1, 8, "seat"), Int(1, kBets, "bet"), Amount(0, kBetRange, "amount"), Amount(0, kBetRange, "contract base"),
       Amount(0, kBetRange, "vig")});
  add("~779", kBoth, true, {Int(1, 8, "seat"), Int(1, kBets, "bet"), Int(-1, 2, "working")});
  add("~881", kHostToClient, false, {});
  add("~882", kHostToClient, false, {RestInt(1, 10000, "position")});
  add("~883", kHostToClient, false, {});
  add("~884", kHostToClient, false, {});
  add("~885", kBoth, false, {Digit(1, 8, "from seat"), Digit(1, 8, "to seat")});
  add("~886", kBoth, true, {Int(1, 8, "seat")});
  add("~887", kBoth, true,
      {Int(1, 8, "seat"), Amount(-kBankrollRange, kBankrollRange, "bankroll"),
       Amount(-kBankrollRange, kBankrollRange, "session start"), Amount(-kBankrollRange, kBankrollRange, "invested")});
  add("~888", kHostToClient, true,
      {Int(1, 8, "seat"), Text(20, "name"), Amount(-kBankrollRange, kBankrollRange, "bankroll")});
  add("~889", kHostToClient, false,
      {Int(0, 8, "shooter"), Int(0, 8, "last hand's shooter"), Int(0, 8, "hand shooter")});
  // The rules, as the host sends them and as an operator edits them.
  add("~890", kBoth, true, {Digit(1, 5, "check"), Amount(0, 1000000, "denomination")});
  add("~891", kBoth, false, {Amount(0, kBetRange, "minimum bet")});
  add("~892", kBoth, false, {Amount(0, kBetRange, "maximum bet")});
  add("~893", kBoth, false, {Amount(0, kBetRange, "minimum proposition bet")});
  add("~894", kBoth, false, {Amount(0, kBankrollRange, "maximum proposition payoff")});
  add("~895", kBoth, false, {Amount(0, kBankrollRange, "maximum odds bet")});
  add("~896", kBoth, true, {Digit(4, 6, "point"), Amount(0, 9999, "odds multiple")});
  add("~897", kBoth, false, {Int(0, 5, "odds rule")});
  add("~898", kBoth, false, {Int(2, 12, "bar number")});
  add("~899", kBoth, true, {Int(0, 8, "seat"), Bits(87, "working on the come-out")});
  add("~900", kBoth, false, {Amount(0, 1, "lay vig")});
  add("~901", kBoth, false, {Int(0, 3, "lay vig rounding")});
  add("~902", kBoth, false, {Flag("lay vig up front")});
  add("~903", kBoth, false, {Amount(0, 1, "buy vig")});
  add("~904", kBoth, false, {Int(0, 3, "buy vig rounding")});
  add("~905", kBoth, false, {Flag("buy vig up front")});
  add("~906", kBoth, false, {Int(0, 2, "bet needed to shoot")});
  add("~907", kBoth, false, {Flag("put bets")});
  add("~908", kBoth, false, {Flag("abandoned bets returned")});
  add("~909", kBoth, true, PayoffRecord(1, kBets));
  add("~910", kBoth, true, PayoffRecord(1, 21));
  add("~911", kBoth, true, PayoffRecord(1, 2));
  add("~912", kBoth, true, PayoffRecord(1, 5));
  add("~913", kBoth, true, PayoffRecord(1, 7));
  add("~914", kBoth, true, PayoffRecord(1, 11));
  add("~915", kBoth, true, PayoffRecord(1, 12));
  add("~916", kBoth, true, PayoffRecord(0, 6));
  add("~917", kBoth, false, {Flag("penny payoffs")});
  add("~918", kBoth, true, {Int(1, 8, "seat"), Flag("negative bankroll")});
  add("~919", kBoth, false, TableCounters());
  {
    std::vector<FieldForm> colours(49, Int(0, 16777215, "colour"));
    add("~922", kBoth, false, colours);
    add("~923", kBoth, false, std::vector<FieldForm>(5, Int(0, 1000, "texture")));
    add("~924", kBoth, false, {Int(0, 1000, "spotlight")});
    add("~925", kBoth, false, std::vector<FieldForm>(8, Int(0, 16777215, "check colour")));
    add("~926", kBoth, false, {});
  }
  add("~990", kClientToHost, false, {});
  add("~991", kClientToHost, false, {});
  add("~992", kClientToHost, false, {RestInt(1, 8, "seat")});
  for (std::string_view code : {"~995", "~996", "~998"}) add(code, kHostToClient, false, {RestText(500, "address")});
  add("~PING", kBoth, false, {});
  add("~PONG", kBoth, false, {});
  return t;
}

bool IsRest(FieldKind k) {
  return k == FieldKind::RestInt || k == FieldKind::RestAmount || k == FieldKind::RestFlag ||
         k == FieldKind::RestText || k == FieldKind::RestBuyIn;
}

// A whole number of at most 15 digits, with an optional "-".
bool ParseWhole(std::string_view s, int64_t& out) {
  bool negative = !s.empty() && s[0] == '-';
  if (negative) s.remove_prefix(1);
  if (s.empty() || s.size() > 15) return false;
  int64_t v = 0;
  for (char c : s) {
    if (c < '0' || c > '9') return false;
    v = v * 10 + (c - '0');
  }
  out = negative ? -v : v;
  return true;
}

// An amount as the writers put it: "-12.5", "10", "0.0125"; at most four decimals.
bool ParseAmount(std::string_view s, Money& out) {
  bool negative = !s.empty() && s[0] == '-';
  if (negative) s.remove_prefix(1);
  const size_t dot = s.find('.');
  std::string_view whole = s.substr(0, dot), part = dot == std::string_view::npos ? "" : s.substr(dot + 1);
  if (whole.empty() || whole.size() > 14 || part.size() > 4 || (dot != std::string_view::npos && part.empty()))
    return false;
  int64_t w = 0, f = 0;
  for (char c : whole) {
    if (c < '0' || c > '9') return false;
    w = w * 10 + (c - '0');
  }
  for (size_t i = 0; i < 4; ++i) {
    const char c = i < part.size() ? part[i] : '0';
    if (c < '0' || c > '9') return false;
    f = f * 10 + (c - '0');
  }
  out = Money::FromRaw((negative ? -1 : 1) * (w * Money::kScale + f));
  return true;
}

// Texts may hold line breaks and the marker ahead of a name (character 1), no other control.
bool CleanText(std::string_view s) {
  for (unsigned char c : s)
    if (c < 32 && c != '\r' && c != '\n' && c != 1) return false;
  return true;
}

// Characters, not bytes: the wire's 8-bit text arrives here as UTF-8.
int64_t Characters(std::string_view s) {
  int64_t n = 0;
  for (unsigned char c : s) n += (c & 0xC0) != 0x80;
  return n;
}

bool ReadField(std::string_view& rest, const FieldForm& f, FieldValue& v, std::string& fault) {
  auto refuse = [&](const std::string& why) {
    fault = std::string(f.name) + ": " + why;
    return false;
  };
  std::string_view text;
  if (f.kind == FieldKind::Digit) {
    if (rest.empty()) return refuse("missing");
    text = rest.substr(0, 1);
    rest.remove_prefix(1);
  } else if (IsRest(f.kind)) {
    text = rest;
    rest = {};
  } else {
    const size_t tab = rest.find('\t');
    if (tab == std::string_view::npos) return refuse("missing or not ended by a tab");
    text = rest.substr(0, tab);
    rest.remove_prefix(tab + 1);
  }
  switch (f.kind) {
    case FieldKind::Digit:
    case FieldKind::Int:
    case FieldKind::Flag:
    case FieldKind::RestInt:
    case FieldKind::RestFlag:
      if (!ParseWhole(text, v.number)) return refuse("\"" + std::string(text.substr(0, 20)) + "\" is not a number");
      if (v.number < f.min || v.number > f.max)
        return refuse(std::to_string(v.number) + " is out of the range " + std::to_string(f.min) + " to " +
                      std::to_string(f.max));
      return true;
    case FieldKind::Amount:
    case FieldKind::RestAmount:
    case FieldKind::RestBuyIn:
      if (f.kind == FieldKind::RestBuyIn && text == "unlimited") {
        v.unlimited = true;
        return true;
      }
      if (!ParseAmount(text, v.amount)) return refuse("\"" + std::string(text.substr(0, 20)) + "\" is not an amount");
      if (v.amount < Money::Dollars(f.min) || v.amount > Money::Dollars(f.max))
        return refuse(MoneyText(v.amount) + " is out of the range " + std::to_string(f.min) + " to " +
                      std::to_string(f.max));
      return true;
    case FieldKind::Text:
    case FieldKind::RestText:
      if (Characters(text) > f.max) return refuse("longer than " + std::to_string(f.max) + " characters");
      if (!CleanText(text)) return refuse("holds a control character");
      v.text = text;
      return true;
    case FieldKind::Bits:
      if (static_cast<int64_t>(text.size()) != f.max) return refuse("not " + std::to_string(f.max) + " digits");
      for (char c : text)
        if (c != '0' && c != '1') return refuse("holds a digit other than 0 and 1");
      v.text = text;
      return true;
  }
  return refuse("unknown kind");
}

bool ReadFields(std::string_view& rest, const std::vector<FieldForm>& forms, ParsedMessage& out, std::string& fault) {
  for (const FieldForm& f : forms) {
    FieldValue v;
    if (!ReadField(rest, f, v, fault)) return false;
    out.fields.push_back(v);
  }
  return true;
}

}  // namespace

const std::vector<MessageForm>& MessageTable() {
  static const std::vector<MessageForm> table = BuildTable();
  return table;
}

const MessageForm* FindMessageForm(std::string_view message, MessageWay way) {
  if (message.empty() || message[0] != '~') return nullptr;
  const bool keepalive = message == "~PING" || message == "~PONG";
  const std::string_view code = keepalive ? message : message.substr(0, 4);
  for (const MessageForm& s : MessageTable())
    if (s.code == code && (s.ways & way)) return &s;
  return nullptr;
}

bool ReadMessage(std::string_view message, MessageWay way, ParsedMessage& out, std::string& fault) {
  out = ParsedMessage{};
  const MessageForm* form = FindMessageForm(message, way);
  if (form == nullptr) {
    fault = "unknown code \"" + std::string(message.substr(0, 5)) + "\"";
    return false;
  }
  out.form = form;
  std::string_view rest = message.substr(form->code.size());
  if (!form->group.empty()) {
    if (!ReadFields(rest, form->fields, out, fault)) return false;
    const int64_t count = out.fields[0].number;
    out.fields.clear();
    out.width = static_cast<int>(form->group.size());
    for (int64_t k = 0; k < count; ++k) {
      if (!ReadFields(rest, form->group, out, fault)) return false;
      ++out.records;
    }
  } else {
    out.width = static_cast<int>(form->fields.size());
    for (;;) {
      if (!ReadFields(rest, form->fields, out, fault)) return false;
      ++out.records;
      if (rest.empty() || !form->repeated) break;
      if (rest.substr(0, form->code.size()) != form->code) {
        fault = "a record of another kind follows";
        return false;
      }
      rest.remove_prefix(form->code.size());
    }
  }
  if (!rest.empty()) {
    fault = "more than the message's fields";
    return false;
  }
  return true;
}

void PutInt(std::string& m, int64_t v) {
  m += std::to_string(v);
  m += '\t';
}

void PutAmount(std::string& m, Money v) {
  m += MoneyText(v);
  m += '\t';
}

void PutFlag(std::string& m, bool v) { m += v ? "-1\t" : "0\t"; }

void PutText(std::string& m, std::string_view text) {
  for (char c : text) m += c == '\t' ? ' ' : c;
  m += '\t';
}

void PutDigit(std::string& m, int v) { m += static_cast<char>('0' + (v < 0 ? 0 : v > 9 ? 9 : v)); }

void PutBuyIn(std::string& m, Money v, Money bound) {
  const bool open = bound.raw < 0 ? v <= bound : v >= bound;
  m += open ? std::string("unlimited") : MoneyText(v);
}

std::string TrimBlanks(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\r' || s.front() == '\n')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\r' || s.back() == '\n')) s.remove_suffix(1);
  return std::string(s);
}

std::string FirstCharacters(std::string_view s, size_t n) {
  size_t count = 0, i = 0;
  for (; i < s.size(); ++i) {
    if ((static_cast<unsigned char>(s[i]) & 0xC0) != 0x80 && count++ == n) break;
  }
  return std::string(s.substr(0, i));
}

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}
