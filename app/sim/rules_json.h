#pragma once
// The rule set as JSON, for dicehall-sim: every field under the name the rules are known
// by, check denominations and payoff rows keyed by their numbers, bets by their names.
//
//   {"MinPlacardBet": 5, "OddsAllowed68": 5, "CheckDenom": {"1": 1, ..., "5": 500},
//    "BetPayoff": {"Place 6": {"PayoffPay": 7, "PayoffToFor": -1, "PayoffFor": 6}, ...},
//    "FieldPayoff": {"1": {...}, ..., "21": {...}}, "WorkOnComeOut": {"Place 6": false, ...}}
//
// Amounts are numbers of dollars (up to four decimals), options true/false, choices their
// number. BetUnit is not a key: it follows from the checks and the payoffs.

#include <nlohmann/json.hpp>
#include <string>

#include "storage/rules.h"

nlohmann::json RulesToJson(const RuleSet& rules);

// Applies the keys `json` names to `rules` (a partial object changes only those keys).
// Unknown keys, values of the wrong kind or out of their range are refused with a message
// in `error`; `rules` is then left as it was. `rollRateTouched` is set when the roll rate
// was among the keys, for validation.
bool ApplyRulesJson(RuleSet& rules, const nlohmann::json& json, std::string& error, bool& rollRateTouched);

// "KEY=VALUE", KEY a path of keys joined by dots ("MaxPlacardBet", "CheckDenom.2",
// "BetPayoff.Place 6.PayoffPay"), VALUE a number, true/false, or text: the same as a JSON
// object holding only that key.
bool ApplyRuleAssignment(RuleSet& rules, const std::string& assignment, std::string& error, bool& rollRateTouched);
