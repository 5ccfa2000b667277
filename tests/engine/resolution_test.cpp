// Every bet on its winning, losing and standing rolls. Each row places bets and rolls
// exact dice at a one-seat table that takes every decided bet down, then reads the
// seat's bankroll change (a win shows its net payoff, a loss its stake, a stand 0) and
// what is left on the table. The figures are worked out by hand from the house rules.

#include "engine/resolution.h"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "engine/handling.h"
#include "tests/engine/line_table.h"

namespace {

constexpr int kSeat = 1;
const Money kStartBankroll = 10000_usd;

using Setup = void (*)(Game&);

struct Case {
  std::string what;
  // In order: dice "1-3" (first die first), a bet "Place 6 $6", a call "Place 6 off" / "Place 6 on".
  std::string acts;
  double net;             // bankroll change over all the acts
  std::string left = "";  // what stays on the table, "Come 5 $10, ..."; every other bet is empty
  Setup setup = nullptr, also = nullptr;
};

// House rules and seat choices that some rows need.
void Bar2(Game& g) { g.Rules.BarNumber = 2; }
void Pennies(Game& g) { g.Rules.AllowPennyPayoffs = true; }
void Check5(Game& g) { g.Rules.CheckDenom[1] = 5_usd; }
void BuyVigOnWin(Game& g) { g.Rules.ChargeAllBuy = false; }
void LayVigOnWin(Game& g) { g.Rules.ChargeAllLay = false; }
void KeepWinners(Game& g) { g.AutoHandleWin[kSeat] = kSameBet; }
void KeepLosers(Game& g) { g.AutoHandleLose[kSeat] = kSameBet; }
PayoffRow Pays(int64_t x, int64_t y) { return PayoffRow{Money{}, Money::Dollars(x), -1_usd, Money::Dollars(y)}; }
// The line's own row differs from the Come (Don't Come) row of the point, so the row that paid shows.
void LineRows(Game& g) {
  g.Rules.BetPayoff[bet::PassLine] = Pays(3, 1);
  g.Rules.BetPayoff[PointRow(BetFamily::ComeNumber, 6)] = Pays(7, 6);
  g.Rules.BetPayoff[bet::DontPass] = Pays(3, 1);
  g.Rules.BetPayoff[PointRow(BetFamily::DontComeNumber, 4)] = Pays(2, 1);
}
void FieldHard4Pays3(Game& g) { g.Rules.FieldPayoff[4] = Pays(3, 1); }  // row 4 is the pair 2-2
void FireTwoPays(Game& g) { g.Rules.FirePayoff[2] = Pays(3, 1); }
void FieldTwoPushes(Game& g) { g.Rules.FieldPayoff[1] = Pays(0, 1); }
void FieldFiveLosesThird(Game& g) { g.Rules.FieldPayoff[5] = Pays(-1, 3); }  // row 5 is the pair 1-4
void NoPut(Game& g) { g.Rules.AllowPutBets = false; }
void AutoDown(Game& g) { g.AutoDownPlace[kSeat] = true; }
// A Horn whose Two pays even money loses on the 2: half of it, and the remainder is bet.
void TwoPaysEven(Game& g) { g.Rules.BetPayoff[bet::Two] = Pays(1, 1); }
void BetRemainder(Game& g) { g.AutoHandleLose[kSeat] = kPressUnitOrRemainder; }

// Sequences of several decisions, and the rules and choices that change one.
const Case kCases[] = {
    // ---- The line bets' own rows, odds rounding and odds called off
    {"pass natural from own row", "Pass Line $10, 3-4", 30, "", LineRows},
    {"pass made 6 from Come 6 row", "Pass Line $12, 2-4, 1-5", 14, "", LineRows},
    {"odds 7 on 5 floors", "Pass Line $10, 1-4, Pass Line Odds $7, 2-3", 20},
    {"odds 7 on 5 pennies", "Pass Line $10, 1-4, Pass Line Odds $7, 2-3", 20.50, "", Pennies},
    {"odds 7 on 8 floors", "Pass Line $10, 2-6, Pass Line Odds $7, 4-4", 18},
    {"odds 7 on 8 pennies", "Pass Line $10, 2-6, Pass Line Odds $7, 4-4", 18.40, "", Pennies},
    {"odds 15 on 5 floors to $5", "Pass Line $10, 1-4, Pass Line Odds $15, 2-3", 30, "", Check5},
    {"odds off point made", "Pass Line $10, 2-4, Pass Line Odds $20, Pass Line Odds off, 1-5", 10},
    {"odds off seven-out", "Pass Line $10, 2-4, Pass Line Odds $20, Pass Line Odds off, 3-4", -10},
    {"odds off stand", "Pass Line $10, 2-4, Pass Line Odds $20, Pass Line Odds off, 3-5", 0,
     "Pass Line $10, Pass Line Odds $20"},
    {"pass odds returned", "Pass Line $10, 2-4, Pass Line Odds $10, 1-5", 22, "Pass Line $10", KeepWinners},
    {"dp come-out from own row", "Don't Pass $10, 1-2", 30, "", LineRows},
    {"dp seven-out from DC 4 row", "Don't Pass $10, 1-3, 3-4", 20, "", LineRows},
    {"lay odds 10 on 6 floors", "Don't Pass $10, 2-4, Don't Pass Odds $10, 3-4", 18},
    {"lay odds 10 on 6 pennies", "Don't Pass $10, 2-4, Don't Pass Odds $10, 3-4", 18.33, "", Pennies},
    {"lay odds off seven-out", "Don't Pass $10, 2-4, Don't Pass Odds $30, Don't Pass Odds off, 3-4", 10},
    {"lay odds off point made", "Don't Pass $10, 2-4, Don't Pass Odds $30, Don't Pass Odds off, 1-5", -10},

    // ---- Come and Don't Come on their numbers through the come-out, summed, returned, moved
    {"come 5 works come-out 7", "1-3, Come $10, 1-4, 2-2, 3-4", -10},
    {"come 5 works come-out 5", "1-3, Come $10, 1-4, 2-2, 2-3", 10},
    {"come summed onto come 5", "1-3, Come $10, 1-4, Come $10, 1-4", 10, "Come 5 $20", KeepWinners},
    {"come odds off come-out 7", "1-3, Come $10, 2-4, Come 6 Odds $10, 2-2, 3-4", -10},
    {"come odds off come-out 6", "1-3, Come $10, 2-4, Come 6 Odds $10, 2-2, 1-5", 10},
    {"come odds called off", "1-3, Come $10, 2-4, Come 6 Odds $10, Come 6 Odds off, 1-5", 10},
    {"come 7 returned", "1-3, Come $10, 3-4", 10, "", KeepWinners},
    {"come 11 stays in the box", "1-3, Come $10, 5-6", 10, "Come $10", KeepWinners},
    {"come odds stay with flat", "1-3, Come $10, 2-4, Come 6 Odds $10, 1-5", 22, "Come 6 $10, Come 6 Odds $10",
     KeepWinners},
    {"come without put returned", "1-3, Come $10, 2-4, Come 6 Odds $10, 1-5", 22, "", NoPut, KeepWinners},
    {"come move takes place down", "1-3, Place 5 $5, Come $10, 1-4", 7, "Come 5 $10", AutoDown, KeepWinners},
    {"come move takes buy down", "1-3, Buy 5 $20, Come $10, 1-4", 29, "Come 5 $10", AutoDown, KeepWinners},
    {"dc 5 works come-out 7", "1-3, Don't Come $10, 1-4, 2-2, 3-4", 10},
    {"dc odds work come-out 7", "1-3, Don't Come $10, 1-4, Don't Come 5 Odds $30, 2-2, 3-4", 30},
    {"dc odds called off", "1-3, Don't Come $10, 1-4, Don't Come 5 Odds $30, Don't Come 5 Odds off, 3-4", 10},
    {"dc number returned", "1-3, Don't Come $10, 1-4, 3-4", 10, "", KeepWinners},

    // ---- Place, Buy, Lay: rounding, vig, called on and off, kept
    {"place 6 $10 floors", "1-3, Place 6 $10, 1-5", 11},
    {"place 6 $10 pennies", "1-3, Place 6 $10, 1-5", 11.66, "", Pennies},
    {"place 6 $15 floors to $5", "1-3, Place 6 $15, 1-5", 15, "", Check5},
    {"place called on come-out 6", "Place 6 $6, Place 6 on, 1-5", 7},
    {"place kept wins twice", "1-3, Place 6 $6, 1-5, 2-4", 14, "Place 6 $6", KeepWinners},
    {"buy vig never free", "1-4, Buy 4 $10, 1-3", 19},
    {"buy vig half rounds down", "1-4, Buy 4 $30, 1-3", 59},
    {"buy vig pennies", "1-4, Buy 4 $25, 1-3", 48.75, "", Pennies},
    {"buy vig to the $5 check", "1-4, Buy 4 $20, 1-3", 35, "", Check5},
    {"buy kept wins twice", "1-4, Buy 4 $20, 1-3, 2-2", 78, "Buy 4 $20", KeepWinners},
    {"lay vig never free", "1-3, Lay 6 $12, 3-4", 9},
    {"lay vig pennies", "1-3, Lay 6 $30, 3-4", 23.75, "", Pennies},
    {"lay vig to the $5 check", "1-4, Lay 4 $40, 3-4", 15, "", Check5},
    {"lay kept", "1-3, Lay 10 $40, 3-4", 19, "Lay 10 $40", KeepWinners},
    {"lay win eaten by vig stands", "Lay 4 $2, 3-4", 0, "Lay 4 $2"},

    // ---- One-roll bets: the Field's rows by pair, pushes, partial losses, remainders
    {"field row of 2-2", "Field $10, 2-2", 30, "", FieldHard4Pays3},
    {"field row of 3-1", "Field $10, 3-1", 10, "", FieldHard4Pays3},
    {"field push", "Field $10, 1-1", 0, "Field $10", FieldTwoPushes},
    {"field third loss floors", "Field $10, 1-4", -4, "", FieldFiveLosesThird},
    {"field third loss pennies", "Field $10, 4-1", -3.34, "", FieldFiveLosesThird, Pennies},
    {"horn $5 on 2 floors", "Horn $5, 1-1", 33},
    {"horn $5 on 2 pennies", "Horn $5, 1-1", 33.75, "", Pennies},
    {"horn remainder", "Horn $20, 1-1", -10, "Horn $10", TwoPaysEven, BetRemainder},
    {"right field 9 kept", "Right Field $10, 4-5", 30, "", KeepLosers},
    {"right field 9 kept twice", "Right Field $10, 4-5, 5-4", 60, "Right Field $10", KeepWinners, KeepLosers},

    // ---- Point 7 and 7 Point 7
    {"7p7 stage 1 at risk", "7 Point 7 $10, 3-4", 20, "7 Point 7 $10", KeepWinners},
    {"7p7 both stages", "7 Point 7 $10, 3-4, 1-3, 3-4", 50, "7 Point 7 $10", KeepWinners},
    {"point 7 loss with a point returned", "Point 7 $10, 1-3, 1-4", -10, "", KeepLosers},
    {"point 7 come-out loss kept", "Point 7 $10, 5-6", -10, "Point 7 $10", KeepLosers},

    // ---- Collected numbers and counts
    {"4 rolls wins", "4 Rolls No 7 $10, 1-3, 1-4, 1-5, 2-6", 10},
    {"4 rolls stands", "4 Rolls No 7 $10, 1-3, 1-4, 1-5", 0, "4 Rolls No 7 $10"},
    {"4 rolls loses 7", "4 Rolls No 7 $10, 1-3, 1-4, 1-5, 3-4", -10},
    {"all small wins", "All Small $10, 1-1, 1-2, 1-3, 1-4, 1-5", 340},
    {"all small stands", "All Small $10, 1-1, 1-2, 1-3, 1-4, 2-6, 3-6, 4-6, 5-6, 6-6", 0, "All Small $10"},
    {"all small loses 7", "All Small $10, 1-1, 1-2, 1-3, 3-4", -10},
    {"all small twice", "All Small $10, 1-1, 1-2, 1-3, 1-4, 1-5, All Small $10, 1-1, 1-2, 1-3, 1-4, 1-5", 680},
    {"all tall wins", "All Tall $10, 2-6, 3-6, 4-6, 5-6, 6-6", 340},
    {"all tall stands", "All Tall $10, 2-6, 3-6, 4-6, 5-6, 1-1, 1-2", 0, "All Tall $10"},
    {"all tall loses 7", "All Tall $10, 2-6, 3-4", -10},
    {"make all wins", "Make All $10, 1-1, 1-2, 1-3, 1-4, 1-5, 2-6, 3-6, 4-6, 5-6, 6-6", 1750},
    {"make all stands on small", "Make All $10, 1-1, 1-2, 1-3, 1-4, 1-5", 0, "Make All $10"},
    {"make all loses 7", "Make All $10, 1-1, 1-2, 1-3, 1-4, 1-5, 3-4", -10},
    {"all small then make all", "All Small $10, Make All $10, 1-1, 1-2, 1-3, 1-4, 1-5, 2-6, 3-6, 4-6, 5-6, 6-6", 2090},
    {"all small kept", "All Small $10, 1-1, 1-2, 1-3, 1-4, 1-5", 340, "All Small $10", KeepWinners},
    {"all small returned under make all", "All Small $10, Make All $10, 1-1, 1-2, 1-3, 1-4, 1-5", 340, "Make All $10",
     KeepWinners},

    // ---- Hand bets
    {"hot roller 2 numbers", "Hot Roller $10, 1-3, 2-2, 1-4, 2-3, 3-4", 50},
    {"hot roller 3 numbers", "Hot Roller $10, 3-1, 2-2, 4-1, 3-2, 5-1, 4-2, 3-3, 3-4", 100},
    {"hot roller 1 number", "Hot Roller $10, 1-3, 2-2, 3-4", -10},
    {"hot roller partial groups", "Hot Roller $10, 1-3, 1-5, 2-4, 4-5, 3-4", -10},
    {"hot roller stands", "Hot Roller $10, 1-3, 2-2, 1-4, 2-3", 0, "Hot Roller $10"},
    {"hot roller 6 numbers",
     "Hot Roller $10, 1-3, 2-2, 1-4, 2-3, 1-5, 2-4, 3-3, 2-6, 3-5, 4-4, 3-6, 4-5, 4-6, 5-5, 3-4", 2000},
    {"fire 4 points", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 1-5, 2-6, 2-6, 1-3, 3-4", 120},
    {"fire 5 points", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 1-5, 2-6, 2-6, 3-6, 3-6, 1-3, 3-4", 1245},
    {"fire 6 points", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 1-5, 2-6, 2-6, 3-6, 3-6, 4-6, 4-6, 1-3, 3-4", 4995},
    {"fire repeated point", "Fire $5, 1-3, 1-3, 1-3, 1-3, 1-4, 1-4, 1-3, 1-3, 1-5, 3-4", -5},
    {"fire 2 points loses", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 3-4", -5},
    {"fire 2 points paying row", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 3-4", 15, "", FireTwoPays},
    {"fire stands come-out 7", "Fire $5, 1-3, 1-3, 3-4", 0, "Fire $5"},
    {"sharp shooter 3 points", "Sharp Shooter $10, 1-3, 1-3, 1-3, 1-3, 1-4, 1-4, 1-5, 3-4", 50},
    {"sharp shooter 2 points", "Sharp Shooter $10, 1-3, 1-3, 1-4, 1-4, 1-5, 3-4", -10},
    {"sharp shooter stands", "Sharp Shooter $10, 3-4, 1-3, 1-3", 0, "Sharp Shooter $10"},
    {"sharp shooter 9 points",
     "Sharp Shooter $10, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, "
     "1-4, 3-4",
     1990},
    {"sharp shooter 11 points",
     "Sharp Shooter $10, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, "
     "1-3, 1-3, 1-3, 1-3, 1-4, 3-4",
     2990},
    {"ride the line 2 passes", "Ride The Line $10, 3-4, 5-6, 1-4, 3-4", -10},
    {"ride the line 3 passes", "Ride The Line $10, 3-4, 5-6, 1-3, 1-3, 1-4, 3-4", 10},
    {"ride the line 4 passes", "Ride The Line $10, 3-4, 3-4, 5-6, 1-3, 1-3, 1-4, 3-4", 20},
    {"ride the line stands", "Ride The Line $10, 3-4, 5-6, 1-3, 1-3", 0, "Ride The Line $10"},
    {"ride the line 10 passes", "Ride The Line $10, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 1-4, 3-4", 400},
    {"ride the line 12 passes",
     "Ride The Line $10, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 5-6, 5-6, 1-4, 3-4", 1000},

    // ---- Repeaters: 40, 50, 65, 80, 90 for 1, whichever pairs make the total
    {"repeater 2", "Repeater 2 $10, 1-1, 1-1", 390},
    {"repeater 3", "Repeater 3 $10, 1-2, 2-1, 1-2", 490},
    {"repeater 4", "Repeater 4 $10, 1-3, 2-2, 3-1, 2-2", 640},
    {"repeater 5", "Repeater 5 $10, 1-4, 2-3, 1-4, 2-3, 4-1", 790},
    {"repeater 6", "Repeater 6 $10, 1-5, 2-4, 3-3, 1-5, 2-4, 3-3", 890},
    {"repeater 8", "Repeater 8 $10, 2-6, 3-5, 4-4, 2-6, 3-5, 4-4", 890},
    {"repeater 9", "Repeater 9 $10, 3-6, 4-5, 3-6, 4-5, 6-3", 790},
    {"repeater 10", "Repeater 10 $10, 4-6, 5-5, 6-4, 5-5", 640},
    {"repeater 11", "Repeater 11 $10, 5-6, 6-5, 5-6", 490},
    {"repeater 12", "Repeater 12 $10, 6-6, 6-6", 390},
    {"repeater count starts over when called off", "Repeater 2 $10, Repeater 2 off, 1-1, 1-1, Repeater 2 on, 1-1, 1-1",
     390},
    {"repeater called off stands", "Repeater 2 $10, Repeater 2 off, 1-1, 1-1, 3-4", 0, "Repeater 2 $10"}};

// ---- Every roll after a set-up: the bets of `before` on the table (a Come or Don't Come
// bet on the number it travelled to),
// then each pair of dice in turn, either die first. Outcomes are given by pair (21) or
// by total (11, the dice a pair that makes no hardway where one exists): a net, "s" for
// a bet that stands untouched, "m" for a Come or Don't Come bet that travels to the
// total. A "/" only groups the pairs of a total.
const int kPairs[21][2] = {{1, 1}, {1, 2}, {1, 3}, {2, 2}, {1, 4}, {2, 3}, {1, 5}, {2, 4}, {3, 3}, {1, 6}, {2, 5},
                           {3, 4}, {2, 6}, {3, 5}, {4, 4}, {3, 6}, {4, 5}, {4, 6}, {5, 5}, {5, 6}, {6, 6}};

struct ByRoll {
  std::string before, outcomes;
  Setup setup = nullptr;
};

const ByRoll kByRoll[] = {
    // Line bets on the come-out and on a point, with their odds on every point.
    {"Pass Line $10", "-10 / -10 / s / s / s / 10 / s / s / s / 10 / -10"},
    {"Pass Line $10, 2-4", "s / s / s / s / 10 / -10 / s / s / s / s / s"},
    {"Don't Pass $10", "10 / 10 / s / s / s / -10 / s / s / s / -10 / s"},
    {"Don't Pass $10", "s / 10 / s / s / s / -10 / s / s / s / -10 / 10", Bar2},
    {"Don't Pass $10, 1-3", "s / s / -10 / s / s / 10 / s / s / s / s / s"},
    {"Pass Line $10, 1-3, Pass Line Odds $10", "s / s / 30 / s / s / -20 / s / s / s / s / s"},
    {"Pass Line $10, 1-4, Pass Line Odds $10", "s / s / s / 25 / s / -20 / s / s / s / s / s"},
    {"Pass Line $10, 2-4, Pass Line Odds $25", "s / s / s / s / 40 / -35 / s / s / s / s / s"},
    {"Pass Line $10, 2-6, Pass Line Odds $10", "s / s / s / s / s / -20 / 22 / s / s / s / s"},
    {"Pass Line $10, 3-6, Pass Line Odds $10", "s / s / s / s / s / -20 / s / 25 / s / s / s"},
    {"Pass Line $10, 4-6, Pass Line Odds $10", "s / s / s / s / s / -20 / s / s / 30 / s / s"},
    {"Don't Pass $10, 1-3, Don't Pass Odds $20", "s / s / -30 / s / s / 20 / s / s / s / s / s"},
    {"Don't Pass $10, 1-4, Don't Pass Odds $30", "s / s / s / -40 / s / 30 / s / s / s / s / s"},
    {"Don't Pass $10, 2-4, Don't Pass Odds $30", "s / s / s / s / -40 / 35 / s / s / s / s / s"},
    {"Don't Pass $10, 3-5, Don't Pass Odds $12", "s / s / s / s / s / 20 / -22 / s / s / s / s"},
    {"Don't Pass $10, 4-5, Don't Pass Odds $15", "s / s / s / s / s / 20 / s / -25 / s / s / s"},
    {"Don't Pass $10, 4-6, Don't Pass Odds $40", "s / s / s / s / s / 30 / s / s / -50 / s / s"},
    // Come and Don't Come in the box, then on each number with odds.
    {"1-3, Come $10", "-10 / -10 / m / m / m / 10 / m / m / m / 10 / -10"},
    {"1-3, Don't Come $10", "10 / 10 / m / m / m / -10 / m / m / m / -10 / s"},
    {"1-3, Don't Come $10", "s / 10 / m / m / m / -10 / m / m / m / -10 / 10", Bar2},
    {"1-4, Come $10, 1-3, Come 4 Odds $10", "s / s / 30 / s / s / -20 / s / s / s / s / s"},
    {"1-3, Come $10, 1-4, Come 5 Odds $10", "s / s / s / 25 / s / -20 / s / s / s / s / s"},
    {"1-3, Come $10, 2-4, Come 6 Odds $10", "s / s / s / s / 22 / -20 / s / s / s / s / s"},
    {"1-3, Come $10, 2-6, Come 8 Odds $10", "s / s / s / s / s / -20 / 22 / s / s / s / s"},
    {"1-3, Come $10, 3-6, Come 9 Odds $10", "s / s / s / s / s / -20 / s / 25 / s / s / s"},
    {"1-3, Come $10, 4-6, Come 10 Odds $10", "s / s / s / s / s / -20 / s / s / 30 / s / s"},
    {"1-4, Don't Come $10, 1-3, Don't Come 4 Odds $20", "s / s / -30 / s / s / 20 / s / s / s / s / s"},
    {"1-3, Don't Come $10, 1-4, Don't Come 5 Odds $30", "s / s / s / -40 / s / 30 / s / s / s / s / s"},
    {"1-3, Don't Come $10, 2-4, Don't Come 6 Odds $30", "s / s / s / s / -40 / 35 / s / s / s / s / s"},
    {"1-3, Don't Come $10, 2-6, Don't Come 8 Odds $30", "s / s / s / s / s / 35 / -40 / s / s / s / s"},
    {"1-3, Don't Come $10, 3-6, Don't Come 9 Odds $30", "s / s / s / s / s / 30 / s / -40 / s / s / s"},
    {"1-3, Don't Come $10, 4-6, Don't Come 10 Odds $40", "s / s / s / s / s / 30 / s / s / -50 / s / s"},
    // Place and Buy work with a point on; Lay works on the come-out too.
    {"1-4, Place 4 $5", "s / s / 9 / s / s / -5 / s / s / s / s / s"},
    {"1-3, Place 5 $5", "s / s / s / 7 / s / -5 / s / s / s / s / s"},
    {"1-3, Place 6 $6", "s / s / s / s / 7 / -6 / s / s / s / s / s"},
    {"1-3, Place 8 $6", "s / s / s / s / s / -6 / 7 / s / s / s / s"},
    {"1-3, Place 9 $5", "s / s / s / s / s / -5 / s / 7 / s / s / s"},
    {"1-3, Place 10 $5", "s / s / s / s / s / -5 / s / s / 9 / s / s"},
    {"Place 6 $6", "s / s / s / s / s / s / s / s / s / s / s"},
    {"1-3, Place 6 $6, Place 6 off", "s / s / s / s / s / s / s / s / s / s / s"},
    {"1-4, Buy 4 $20", "s / s / 39 / s / s / -21 / s / s / s / s / s"},
    {"1-3, Buy 5 $20", "s / s / s / 29 / s / -21 / s / s / s / s / s"},
    {"1-3, Buy 6 $20", "s / s / s / s / 23 / -21 / s / s / s / s / s"},
    {"1-3, Buy 8 $20", "s / s / s / s / s / -21 / 23 / s / s / s / s"},
    {"1-3, Buy 9 $20", "s / s / s / s / s / -21 / s / 29 / s / s / s"},
    {"1-3, Buy 10 $20", "s / s / s / s / s / -21 / s / s / 39 / s / s"},
    {"1-3, Buy 10 $20", "s / s / s / s / s / -20 / s / s / 39 / s / s", BuyVigOnWin},
    {"Buy 6 $20", "s / s / s / s / s / s / s / s / s / s / s"},
    {"Lay 4 $40", "s / s / -41 / s / s / 19 / s / s / s / s / s"},
    {"Lay 5 $30", "s / s / s / -31 / s / 19 / s / s / s / s / s"},
    {"Lay 6 $30", "s / s / s / s / -31 / 24 / s / s / s / s / s"},
    {"Lay 8 $30", "s / s / s / s / s / 24 / -31 / s / s / s / s"},
    {"Lay 9 $30", "s / s / s / s / s / 19 / s / -31 / s / s / s"},
    {"1-3, Lay 10 $40", "s / s / s / s / s / 19 / s / s / -41 / s / s"},
    {"1-3, Lay 10 $40", "s / s / s / s / s / 19 / s / s / -40 / s / s", LayVigOnWin},
    {"1-3, Lay 10 $40, Lay 10 off", "s / s / s / s / s / s / s / s / s / s / s"},
    // One-roll bets, and the Big and hard bets that work on the come-out, by pair.
    {"Field $10", "20 / 10 / 10 10 / -10 -10 / -10 -10 -10 / -10 -10 -10 / -10 -10 -10 / 10 10 / 10 10 / 10 / 20"},
    {"Field $10, Field off", "s / s / s s / s s / s s s / s s s / s s s / s s / s s / s / s"},
    {"Big 6 $10", "s / s / s s / s s / 10 10 10 / -10 -10 -10 / s s s / s s / s s / s / s"},
    {"Big 8 $10", "s / s / s s / s s / s s s / -10 -10 -10 / 10 10 10 / s s / s s / s / s"},
    {"Big 6 $10, Big 6 off", "s / s / s s / s s / s s s / s s s / s s s / s s / s s / s / s"},
    {"Hard 4 $10", "s / s / -10 70 / s s / s s s / -10 -10 -10 / s s s / s s / s s / s / s"},
    {"Hard 6 $10", "s / s / s s / s s / -10 -10 90 / -10 -10 -10 / s s s / s s / s s / s / s"},
    {"Hard 8 $10", "s / s / s s / s s / s s s / -10 -10 -10 / -10 -10 90 / s s / s s / s / s"},
    {"Hard 10 $10", "s / s / s s / s s / s s s / -10 -10 -10 / s s s / s s / -10 70 / s / s"},
    {"Hard 6 $10, Hard 6 off", "s / s / s s / s s / s s s / s s s / s s s / s s / s s / s / s"},
    {"Two $10", "300 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10"},
    {"Three $10", "-10 / 150 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10"},
    {"Seven $10", "-10 / -10 / -10 / -10 / -10 / 40 / -10 / -10 / -10 / -10 / -10"},
    {"Eleven $10", "-10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / 150 / -10"},
    {"Twelve $10", "-10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / 300"},
    {"Craps $10", "70 / 70 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / 70"},
    {"Craps $10", "70 / 70 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / 70", Bar2},
    {"C and E $10", "30 / 30 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / 70 / 30"},
    {"Horn $20", "135 / 60 / -20 / -20 / -20 / -20 / -20 / -20 / -20 / 60 / 135"},
    {"World $10", "52 / 22 / -10 / -10 / -10 / s / -10 / -10 / -10 / 22 / 52"},
    {"Midway $10", "-10 / -10 / -10 -10 / -10 -10 / 10 10 20 / 10 10 10 / 10 10 20 / -10 -10 / -10 -10 / -10 / -10"},
    {"Over 7 $10", "-10 / -10 / -10 / -10 / -10 / -10 / 10 / 10 / 10 / 10 / 10"},
    {"Under 7 $10", "10 / 10 / 10 / 10 / 10 / -10 / -10 / -10 / -10 / -10 / -10"},
    {"Left Field $10", "40 / 40 / 40 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / -10"},
    {"Center Field $10", "-10 / -10 / 20 / -10 / -10 / -10 / -10 / 20 / 20 / -10 / -10"},
    {"Right Field $10", "-10 / -10 / -10 / -10 / -10 / -10 / -10 / -10 / 40 / 40 / 40"},
    {"Hop 22 $10, Hop 22 off", "s / s / s s / s s / s s s / s s s / s s s / s s / s s / s / s"},
    // Point 7 wins on the roll after the come-out point; 7 Point 7 on either.
    {"Point 7 $10", "-10 / -10 / s / s / s / -10 / s / s / s / -10 / -10"},
    {"Point 7 $10, 1-3", "-10 / -10 / -10 / -10 / -10 / 70 / -10 / -10 / -10 / -10 / -10"},
    {"7 Point 7 $10", "-10 / -10 / s / s / s / 20 / s / s / s / -10 / -10"},
    {"7 Point 7 $10, 1-3", "-10 / -10 / -10 / -10 / -10 / 30 / -10 / -10 / -10 / -10 / -10"}};

std::vector<std::string> Items(const std::string& text) {
  std::vector<std::string> out;
  std::stringstream ss(text);
  for (std::string item; std::getline(ss >> std::ws, item, ',');) out.push_back(item);
  return out;
}

struct Item {
  int d1 = 0, d2 = 0;  // dice, when non-zero
  int bet = 0;
  std::string tail;  // "$10", "off" or "on"
};

Item Parse(const std::string& s) {
  if (s.size() == 3 && std::isdigit(static_cast<unsigned char>(s[0])) && s[1] == '-')
    return {s[0] - '0', s[2] - '0', 0, ""};
  const size_t cut = s.rfind(' ');
  return {0, 0, FindBetByName(s.substr(0, cut)), s.substr(cut + 1)};
}

Money AmountOf(const std::string& text) {
  Money m;
  std::string error;
  EXPECT_TRUE(text.size() > 1 && text[0] == '$' && ParseMoney(text.substr(1), m, error)) << text;
  return m;
}

void Play(const Case& c) {
  SCOPED_TRACE(c.what + " [" + c.acts + "]");
  LineTable t;
  Game& g = t.g;
  g.Rules.BetNeededToShoot = 0;
  t.Seat(kSeat, "Ann", kStartBankroll);
  g.AutoHandleWin[kSeat] = g.AutoHandleLose[kSeat] = kTakeDown;
  for (Setup setup : {c.setup, c.also})
    if (setup) setup(g);

  for (const std::string& s : Items(c.acts)) {
    const Item it = Parse(s);
    if (it.d1) {
      t.Roll(it.d1, it.d2);
      continue;
    }
    ASSERT_NE(it.bet, 0) << "no bet in \"" << s << "\"";
    if (it.tail == "off" || it.tail == "on") {
      ASSERT_GT(t.Amount(kSeat, it.bet).raw, 0) << s;
      g.BetWorking[kSeat][it.bet] = it.tail == "off" ? -1 : 2;
      continue;
    }
    const Money want = AmountOf(it.tail);
    ASSERT_EQ(t.Bet(kSeat, it.bet, want), want) << "the table refused \"" << s << "\"";
  }

  EXPECT_EQ(DollarText(g.Bankroll[kSeat] - kStartBankroll), DollarText(Money::FromDouble(c.net)));
  EXPECT_EQ(g.Bankroll[kSessionScope + kSeat], g.Bankroll[kSeat]);
  EXPECT_EQ(g.Bankroll[kAllScope + kSeat], g.Bankroll[kSeat]);

  std::map<int, Money> left;
  for (const std::string& s : Items(c.left)) {
    const Item it = Parse(s);
    ASSERT_NE(it.bet, 0) << s;
    left[it.bet] = AmountOf(it.tail);
  }
  Money onTable;
  for (int b = 1; b <= kBets; ++b) {
    EXPECT_EQ(DollarText(t.Amount(kSeat, b)), DollarText(left.count(b) ? left[b] : Money{})) << BetName(b);
    onTable += t.Amount(kSeat, b);
  }
  // What is on the table, plus vig charged up front on what is still there.
  for (int i = 0; i < 6; ++i) {
    if (g.Rules.ChargeAllBuy) onTable += g.BuyVigHeld[kSeat][i];
    if (g.Rules.ChargeAllLay) onTable += g.LayVigHeld[kSeat][i];
  }
  EXPECT_EQ(DollarText(g.OnTable[kSeat]), DollarText(onTable)) << "on the table";
}

class ResolutionTest : public ::testing::TestWithParam<Case> {};

TEST_P(ResolutionTest, NetAndWhatIsLeft) { Play(GetParam()); }

std::string RowName(const std::string& what, size_t index) {
  std::string name = std::to_string(index) + "_";
  for (char ch : what) name += std::isalnum(static_cast<unsigned char>(ch)) ? ch : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Bets, ResolutionTest, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return RowName(info.param.what, info.index); });

// Hops win on their own pair, 15 for 1 or 30 for 1 on a double; Repeaters only count
// hits on a single roll and lose on a 7.
std::vector<ByRoll> AllRows() {
  std::vector<ByRoll> rows(std::begin(kByRoll), std::end(kByRoll));
  for (int b = bet::Hop13; b <= bet::Hop55; ++b) {
    const std::string name(BetName(b));
    const int lo = name[4] - '0', hi = name[5] - '0';
    std::string outcomes;
    for (const auto& p : kPairs) outcomes += p[0] == lo && p[1] == hi ? (lo == hi ? "300 " : "150 ") : "-10 ";
    rows.push_back({name + " $10", outcomes});
  }
  for (int b = bet::Repeater2; b <= bet::Repeater12; ++b)
    rows.push_back({std::string(BetName(b)) + " $10", "s / s / s / s / s / -10 / s / s / s / s / s"});
  return rows;
}

class ResolutionByRollTest : public ::testing::TestWithParam<ByRoll> {};

TEST_P(ResolutionByRollTest, EveryPairEitherWay) {
  const ByRoll& r = GetParam();
  std::vector<std::string> outcomes;
  std::stringstream ss(r.outcomes);
  for (std::string token; ss >> token;)
    if (token != "/") outcomes.push_back(token);
  ASSERT_TRUE(outcomes.size() == 11 || outcomes.size() == 21) << r.outcomes;
  std::vector<std::string> bets;
  for (const std::string& s : Items(r.before)) {
    const Item it = Parse(s);
    const int total = it.d1 + it.d2;
    if (it.d1 && total != 7 && total >= 4 && total <= 10)
      for (std::string& b : bets)
        if (b.rfind("Come $", 0) == 0 || b.rfind("Don't Come $", 0) == 0)
          b.insert(b.find('$'), std::to_string(total) + " ");
    if (!it.d1 && it.tail[0] == '$') bets.push_back(s);
  }
  std::string standing;
  for (const std::string& b : bets) standing += b + ", ";
  for (size_t k = 0; k < outcomes.size(); ++k) {
    int d1 = kPairs[k][0], d2 = kPairs[k][1];
    if (outcomes.size() == 11) std::tie(d1, d2) = DiceFor(static_cast<int>(k) + 2);
    const bool stands = outcomes[k] == "s" || outcomes[k] == "m";
    std::string left = stands ? standing : "";
    if (outcomes[k] == "m") left.insert(left.find('$'), std::to_string(d1 + d2) + " ");
    const double net = stands ? 0 : std::stod(outcomes[k]);
    for (const auto& [a, b] : {std::pair{d1, d2}, std::pair{d2, d1}}) {
      const std::string dice = std::to_string(a) + "-" + std::to_string(b);
      Play({dice, r.before + ", " + dice, net, left, r.setup});
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Bets, ResolutionByRollTest, ::testing::ValuesIn(AllRows()),
                         [](const auto& info) { return RowName(info.param.before, info.index); });

}  // namespace
