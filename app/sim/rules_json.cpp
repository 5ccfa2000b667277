#include "app/sim/rules_json.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cctype>
#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>

#include "engine/bets.h"

namespace {

using nlohmann::json;

struct MoneyField {
  const char* name;
  Money RuleSet::*field;
  double lo, hi;
  const char* outOfRange;  // the refusal, after the key's name
};
struct IntField {
  const char* name;
  int RuleSet::*field;
  std::initializer_list<int> allowed;  // empty: lo..hi
  int lo, hi;
};
struct BoolField {
  const char* name;
  bool RuleSet::*field;
};

constexpr double kMaxAmount = 9999999;
const char* const kNotNegative = "must be an amount from 0 to 9,999,999.";

const MoneyField kMoneyFields[] = {
    {"MinPlacardBet", &RuleSet::MinPlacardBet, 0, kMaxAmount, kNotNegative},
    {"MinPlacardPropBet", &RuleSet::MinPlacardPropBet, 0, kMaxAmount, kNotNegative},
    {"MaxPlacardBet", &RuleSet::MaxPlacardBet, 0, kMaxAmount, kNotNegative},
    {"MaxPropBetPayoff", &RuleSet::MaxPropBetPayoff, 0, kMaxAmount, kNotNegative},
    {"MaxOddsBet", &RuleSet::MaxOddsBet, 0, kMaxAmount, kNotNegative},
    {"OddsAllowed410", &RuleSet::OddsAllowed410, 0, 9999,
     "Odds allowed factor out of limits. Acceptable values 0-9999"},
    {"OddsAllowed59", &RuleSet::OddsAllowed59, 0, 9999, "Odds allowed factor out of limits. Acceptable values 0-9999"},
    {"OddsAllowed68", &RuleSet::OddsAllowed68, 0, 9999, "Odds allowed factor out of limits. Acceptable values 0-9999"},
    {"BuyVigPct", &RuleSet::BuyVigPct, 0, 1, "is a fraction from 0 to 1 (0.05 is 5%)."},
    {"LayVigPct", &RuleSet::LayVigPct, 0, 1, "is a fraction from 0 to 1 (0.05 is 5%)."},
    {"CompRate", &RuleSet::CompRate, 0, kMaxAmount, kNotNegative},
    {"AtmAmount", &RuleSet::AtmAmount, 0, kMaxAmount, kNotNegative},
};

const IntField kIntFields[] = {
    {"OddsCalcMethod", &RuleSet::OddsCalcMethod, {}, 0, 5},
    {"RoundBuyVig", &RuleSet::RoundBuyVig, {}, 0, 2},
    {"RoundLayVig", &RuleSet::RoundLayVig, {}, 0, 2},
    {"BarNumber", &RuleSet::BarNumber, {2, 12}, 2, 12},
    {"BetNeededToShoot", &RuleSet::BetNeededToShoot, {}, 0, 2},
    {"CornerBet", &RuleSet::CornerBet, {}, 0, 3},
    {"BaseComps", &RuleSet::BaseComps, {}, 0, 2},
    {"Notices", &RuleSet::Notices, {}, 0, 31},
    {"InfoTips", &RuleSet::InfoTips, {}, 0, 1},
    {"BasicFontSize", &RuleSet::BasicFontSize, {9, 11, 13}, 9, 13},
    {"DiceAction", &RuleSet::DiceAction, {}, 0, 2},
    {"RollRateUnit", &RuleSet::RollRateUnit, {}, 0, 2},
};

const BoolField kBoolFields[] = {
    {"ChargeAllBuy", &RuleSet::ChargeAllBuy},
    {"ChargeAllLay", &RuleSet::ChargeAllLay},
    {"AllowPennyPayoffs", &RuleSet::AllowPennyPayoffs},
    {"AllowPutBets", &RuleSet::AllowPutBets},
    {"ReturnAbandonedBets", &RuleSet::ReturnAbandonedBets},
    {"CompsUseTrueProbs", &RuleSet::CompsUseTrueProbs},
    {"SnapMouse", &RuleSet::SnapMouse},
    {"UseCentsSymbol", &RuleSet::UseCentsSymbol},
    {"AutoArrangeChips", &RuleSet::AutoArrangeChips},
};

// The payoff tables keyed by row number, from their first row.
struct RowTable {
  const char* name;
  std::span<PayoffRow> (*rows)(RuleSet&);
  int first;
};
template <std::size_t N>
std::span<PayoffRow> Span(std::array<PayoffRow, N>& a) {
  return {a.data(), N};
}
const RowTable kRowTables[] = {
    {"FieldPayoff", [](RuleSet& r) { return Span(r.FieldPayoff); }, 1},
    {"SevenPointSevenPayoff", [](RuleSet& r) { return Span(r.SevenPointSevenPayoff); }, 1},
    {"MidwayPayoff", [](RuleSet& r) { return Span(r.MidwayPayoff); }, 1},
    {"HotRollerPayoff", [](RuleSet& r) { return Span(r.HotRollerPayoff); }, 1},
    {"SharpShooterPayoff", [](RuleSet& r) { return Span(r.SharpShooterPayoff); }, 1},
    {"RideLinePayoff", [](RuleSet& r) { return Span(r.RideLinePayoff); }, 1},
    {"FirePayoff", [](RuleSet& r) { return Span(r.FirePayoff); }, 0},
};

// Four decimals at most, so that a dump reads back to the same amount.
double Amount(Money m) { return m.ToDouble(); }

json RowToJson(const PayoffRow& row) {
  return {{"PayoffPay", Amount(row.PayoffPay)},
          {"PayoffToFor", Amount(row.PayoffToFor)},
          {"PayoffFor", Amount(row.PayoffFor)}};
}

// Reading keeps the path of the key in hand for the message.
struct Reader {
  std::string& error;

  bool Fail(const std::string& key, const std::string& why) {
    // The system's own sentences stand after a colon; our phrases go on from the key.
    const bool sentence = !why.empty() && std::isupper(static_cast<unsigned char>(why[0]));
    error = "rule \"" + key + (sentence ? "\": " : "\" ") + why;
    return false;
  }

  bool ReadMoney(const std::string& key, const json& v, double lo, double hi, const char* outOfRange, Money& out) {
    if (!v.is_number()) return Fail(key, "must be a number.");
    const double d = v.get<double>();
    if (!std::isfinite(d) || d < lo || d > hi) return Fail(key, outOfRange);
    out = Money::FromDouble(d);
    return true;
  }

  bool ReadRow(const std::string& key, const json& v, PayoffRow& row) {
    if (!v.is_object()) return Fail(key, "must be an object with PayoffPay, PayoffToFor and PayoffFor.");
    for (auto it = v.begin(); it != v.end(); ++it) {
      const std::string sub = key + "." + it.key();
      Money* target = it.key() == "PayoffPay"     ? &row.PayoffPay
                      : it.key() == "PayoffToFor" ? &row.PayoffToFor
                      : it.key() == "PayoffFor"   ? &row.PayoffFor
                                                  : nullptr;
      if (target == nullptr) return Fail(sub, "is not a rule (a payoff row has PayoffPay, PayoffToFor, PayoffFor).");
      if (!ReadMoney(sub, it.value(), -kMaxAmount, kMaxAmount, "must be an amount from -9,999,999 to 9,999,999.",
                     *target))
        return false;
    }
    // A win nets PayoffPay for every PayoffFor wagered: nothing is wagered in 0 units.
    if (row.PayoffFor.raw <= 0) return Fail(key + ".PayoffFor", "must be above 0.");
    return true;
  }

  // A bet named as the catalogue names it (any case).
  bool ReadBetKey(const std::string& table, const std::string& name, int& bet) {
    bet = FindBetByName(name);
    if (bet < 1 || bet > kBets) return Fail(table + "." + name, "names no bet.");
    return true;
  }

  bool ReadScalar(const std::string& key, const json& v, RuleSet& r, bool& rollRate) {
    for (const MoneyField& f : kMoneyFields)
      if (key == f.name) return ReadMoney(key, v, f.lo, f.hi, f.outOfRange, r.*(f.field));
    for (const IntField& f : kIntFields) {
      if (key != f.name) continue;
      if (!v.is_number_integer()) return Fail(key, "must be a whole number.");
      const int64_t n = v.get<int64_t>();
      bool ok = n >= f.lo && n <= f.hi;
      if (f.allowed.size() != 0) {
        ok = false;
        for (int a : f.allowed) ok = ok || n == a;
      }
      if (!ok) {
        std::string range = fmt::format("{} to {}", f.lo, f.hi);
        if (f.allowed.size() != 0) range = fmt::format("{}", fmt::join(f.allowed, " or "));
        return Fail(key, "must be " + range + ".");
      }
      r.*(f.field) = static_cast<int>(n);
      return true;
    }
    for (const BoolField& f : kBoolFields) {
      if (key != f.name) continue;
      if (!v.is_boolean()) return Fail(key, "must be true or false.");
      r.*(f.field) = v.get<bool>();
      return true;
    }
    if (key == "RollsPerTime") {
      if (!v.is_number() || !std::isfinite(v.get<double>())) return Fail(key, "must be a number.");
      r.RollsPerTime = v.get<double>();
      rollRate = true;
      return true;
    }
    return Fail(key, "is not a rule (--dump-rules lists them all).");
  }

  bool ReadObject(const std::string& key, const json& v, RuleSet& r) {
    if (!v.is_object()) return Fail(key, "must be an object.");
    for (auto it = v.begin(); it != v.end(); ++it) {
      const std::string sub = key + "." + it.key();
      if (key == "CheckDenom") {
        const std::string& k = it.key();
        if (k.size() != 1 || k[0] < '1' || k[0] > '5') return Fail(sub, "is not a check: they are numbered 1 to 5.");
        if (!ReadMoney(sub, it.value(), 0, kMaxAmount, kNotNegative, r.CheckDenom[k[0] - '0'])) return false;
        continue;
      }
      if (key == "CompBets" || key == "WorkOnComeOut") {
        int bet = 0;
        if (!ReadBetKey(key, it.key(), bet)) return false;
        if (!it.value().is_boolean()) return Fail(sub, "must be true or false.");
        if (key == "CompBets") r.CompBets[bet] = it.value().get<bool>();
        else r.WorkOnComeOut[bet][0] = it.value().get<bool>();
        continue;
      }
      if (key == "BetPayoff") {
        int bet = 0;
        if (!ReadBetKey(key, it.key(), bet) || !ReadRow(sub, it.value(), r.BetPayoff[bet])) return false;
        continue;
      }
      const RowTable* table = nullptr;
      for (const RowTable& t : kRowTables)
        if (key == t.name) table = &t;
      if (table == nullptr) return Fail(key, "is not a rule (--dump-rules lists them all).");
      std::span<PayoffRow> rows = table->rows(r);
      int row = -1;
      const std::string& k = it.key();
      if (!k.empty() && k.size() <= 2 && std::isdigit(static_cast<unsigned char>(k[0])) &&
          std::isdigit(static_cast<unsigned char>(k.back())))
        row = std::stoi(k);
      if (row < table->first || row >= static_cast<int>(rows.size()))
        return Fail(sub, fmt::format("is not a row: they are numbered {} to {}.", table->first, rows.size() - 1));
      if (!ReadRow(sub, it.value(), rows[row])) return false;
    }
    return true;
  }
};

bool IsObjectKey(const std::string& key) {
  if (key == "CheckDenom" || key == "CompBets" || key == "WorkOnComeOut" || key == "BetPayoff") return true;
  for (const RowTable& t : kRowTables)
    if (key == t.name) return true;
  return false;
}

}  // namespace

json RulesToJson(const RuleSet& rules) {
  RuleSet r = rules;  // the row tables are read through the same accessors that write them
  json out = json::object();
  for (const MoneyField& f : kMoneyFields) out[f.name] = Amount(r.*(f.field));
  for (const IntField& f : kIntFields) out[f.name] = r.*(f.field);
  for (const BoolField& f : kBoolFields) out[f.name] = r.*(f.field);
  out["RollsPerTime"] = r.RollsPerTime;
  json denoms = json::object();
  for (int d = 1; d <= 5; ++d) denoms[std::to_string(d)] = Amount(r.CheckDenom[d]);
  out["CheckDenom"] = denoms;
  json comps = json::object(), work = json::object(), payoffs = json::object();
  for (int b = 1; b <= kBets; ++b) {
    const std::string name(BetName(b));
    comps[name] = r.CompBets[b];
    work[name] = r.WorkOnComeOut[b][0];
    payoffs[name] = RowToJson(r.BetPayoff[b]);
  }
  out["CompBets"] = comps;
  out["WorkOnComeOut"] = work;
  out["BetPayoff"] = payoffs;
  for (const RowTable& t : kRowTables) {
    json rows = json::object();
    std::span<PayoffRow> span = t.rows(r);
    for (int i = t.first; i < static_cast<int>(span.size()); ++i) rows[std::to_string(i)] = RowToJson(span[i]);
    out[t.name] = rows;
  }
  return out;
}

bool ApplyRulesJson(RuleSet& rules, const json& in, std::string& error, bool& rollRateTouched) {
  if (!in.is_object()) {
    error = "a rules file holds one JSON object of rules.";
    return false;
  }
  RuleSet r = rules;
  bool rollRate = false;
  Reader reader{error};
  for (auto it = in.begin(); it != in.end(); ++it) {
    const bool ok = IsObjectKey(it.key()) ? reader.ReadObject(it.key(), it.value(), r)
                                          : reader.ReadScalar(it.key(), it.value(), r, rollRate);
    if (!ok) return false;
  }
  rules = r;
  rollRateTouched = rollRateTouched || rollRate;
  return true;
}

bool ApplyRuleAssignment(RuleSet& rules, const std::string& assignment, std::string& error, bool& rollRateTouched) {
  const std::size_t eq = assignment.find('=');
  if (eq == std::string::npos || eq == 0) {
    error = "expected KEY=VALUE, e.g. MaxPlacardBet=2000 or \"BetPayoff.Place 6.PayoffPay=7\".";
    return false;
  }
  const std::string key = assignment.substr(0, eq), text = assignment.substr(eq + 1);
  json value = json::parse(text, nullptr, false);
  if (value.is_discarded()) value = text;
  // "A.B.C=v" is {"A": {"B": {"C": v}}}.
  std::vector<std::string> path;
  std::size_t start = 0;
  for (;;) {
    const std::size_t dot = key.find('.', start);
    path.push_back(key.substr(start, dot == std::string::npos ? std::string::npos : dot - start));
    if (dot == std::string::npos) break;
    start = dot + 1;
  }
  for (const std::string& part : path)
    if (part.empty()) {
      error = "rule \"" + key + "\" has an empty part between its dots.";
      return false;
    }
  json object = value;
  for (auto it = path.rbegin(); it != path.rend(); ++it) object = json{{*it, object}};
  return ApplyRulesJson(rules, object, error, rollRateTouched);
}
