#pragma once
// The rule set: payoffs of every bet, vigorish, limits, odds, the table options and the
// check denominations, with their defaults, the vig arithmetic and validation. Plain
// data; nothing here knows the game state.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "engine/bets.h"
#include "engine/money.h"

struct PayoffRow {
  Money BetUnit;      // smallest check × PayoffFor
  Money PayoffPay;    // x: net win per PayoffFor wagered; negative loses, 0 pushes
  Money PayoffToFor;  // display only: non-zero prints "x to y", 0 prints "(x + y) for y"
  Money PayoffFor;    // y
};

enum RoundMode { kRoundNormal = 0, kRoundDown = 1, kRoundUp = 2, kRoundHalfUp = 3 };
enum RollRateUnit { kPerHour = 0, kPerMinute = 1, kPerSecond = 2 };

// Bits of Notices.
constexpr int kNoticeRules = 1, kNoticeLimits = 2, kNoticeCharges = 4, kNoticeAutoBetNormal = 8,
              kNoticeAutoBetHyper = 16;

struct RuleSet {
  Money MinPlacardBet;
  Money MinPlacardPropBet;
  Money MaxPlacardBet;
  Money MaxPropBetPayoff;
  Money MaxOddsBet;
  Money OddsAllowed410;
  Money OddsAllowed59;
  Money OddsAllowed68;
  int OddsCalcMethod = 0;  // 0..5
  Money BuyVigPct;         // a fraction: 0.05 is 5%
  bool ChargeAllBuy = true;
  int RoundBuyVig = kRoundNormal;
  Money LayVigPct;
  bool ChargeAllLay = true;
  int RoundLayVig = kRoundNormal;
  bool AllowPennyPayoffs = false;
  int BarNumber = 12;        // 2 or 12
  int BetNeededToShoot = 1;  // 0 none, 1 line bet, 2 any bet
  int CornerBet = 1;         // 0..3
  bool AllowPutBets = true;
  bool ReturnAbandonedBets = false;
  std::array<Money, 6> CheckDenom{};  // 1..5, ascending; index 0 unused
  Money CompRate;
  bool CompsUseTrueProbs = true;
  int BaseComps = 0;
  std::array<bool, kBets + 1> CompBets{};
  // Working on the come-out, by bet and seat; seat column 0 is the house standard.
  std::array<std::array<bool, kSeats>, kBets + 1> WorkOnComeOut{};
  Money AtmAmount;

  // Options kept beside the rules in the same window and file.
  int Notices = 15;
  int InfoTips = 1;
  bool SnapMouse = true;
  int BasicFontSize = 11;
  bool UseCentsSymbol = true;
  bool AutoArrangeChips = true;
  int DiceAction = 0;
  double RollsPerTime = 120;
  int RollRateUnit = kPerHour;

  std::array<PayoffRow, kBets + 1> BetPayoff{};      // 1..107 by bet; row 0 holds none
  std::array<PayoffRow, 22> FieldPayoff{};           // 1..21 by unordered dice pair
  std::array<PayoffRow, 6> MidwayPayoff{};           // 1..5
  std::array<PayoffRow, 3> SevenPointSevenPayoff{};  // 1..2
  std::array<PayoffRow, 8> HotRollerPayoff{};        // 1..7
  std::array<PayoffRow, 12> SharpShooterPayoff{};    // 1..11
  std::array<PayoffRow, 13> RideLinePayoff{};        // 1..12
  std::array<PayoffRow, 7> FirePayoff{};             // 0..6
};

// Every field to its default, the payoff tables and the denominations included.
void SetDefaultRules(RuleSet& rules);
// All eight payoff tables to their defaults, then the bet units.
void SetDefaultPayoffs(RuleSet& rules);
// The five checks 1, 5, 25, 100, 500, then the bet units.
void SetDefaultDenominations(RuleSet& rules);
// BetUnit of every row = smallest check × PayoffFor.
void ComputeBetUnits(RuleSet& rules);
// The unit payoffs and vig are rounded to: 0.01 with penny payoffs, else the smallest check.
Money PayoffUnit(const RuleSet& rules);

// q = value / unit; 0 for a unit of 0; value itself when q is whole; otherwise down,
// up, normal (Int(q + 0.499): an exact half rounds down) or half-up (Int(q + 0.5)).
double RoundToUnit(double value, double unit, int mode);

// The only place vig is computed. 0 for other bets, a zero rate or a zero amount.
Money ComputeBuyVig(const RuleSet& rules, int bet, Money amount);
Money ComputeLayVig(const RuleSet& rules, int bet, Money amount);

// The menu texts of the thirteen Field presets, in menu order.
const std::vector<std::string_view>& FieldPresetNames();
// Overwrites all 21 rows of FieldPayoff; false (nothing changed) for an unknown name.
bool SetFieldPreset(RuleSet& rules, std::string_view menuText);

// A key typed in the word cell of a payoff row: t/T "to", f/F "for", blank toggles.
// Going to "to" adds PayoffFor to PayoffPay, going to "for" subtracts it, so the number
// shown stays. Returns false for any other key, which is dropped.
bool PayoffWordKey(PayoffRow& row, char key);

// The default working state on the come-out of a bet for the house and new players.
// Inline: a new table asks it for every bet of every seat.
constexpr bool DefaultWorksOnComeOut(int b) {
  if (b < 1 || b > kBets) return false;
  // Come odds, Place and Buy are off on the come-out, as are the line odds and the Come
  // and Don't Come box bets, which can't be working before they travel.
  if (b >= bet::Come4Odds && b <= bet::Buy10) return false;
  return b != bet::PassLineOdds && b != bet::Come && b != bet::DontPassOdds && b != bet::DontCome;
}
