// Every bet on its winning, losing and standing rolls. Each row places bets and rolls
// exact dice at a one-seat table that takes every decided bet down, then reads the
// seat's bankroll change (a win shows its net payoff, a loss its stake, a stand 0) and
// what is left on the table. The figures are worked out by hand from the house rules.

#include "engine/resolution.h"

#include <gtest/gtest.h>

#include <cctype>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "engine/handling.h"
#include "tests/engine/line_table.h"

namespace {

constexpr int kSeat = 1;
const Money kStartBankroll = 10000_usd;

using Setup = void (*)(Game&);

struct Case {
  const char* what;
  // In order: dice "1-3" (first die first), a bet "Place 6 $6", a call "Place 6 off" / "Place 6 on".
  const char* acts;
  double net;             // bankroll change over all the acts
  const char* left = "";  // what stays on the table, "Come 5 $10, ..."; every other bet is empty
  Setup setup = nullptr;
};

std::ostream& operator<<(std::ostream& os, const Case& c) { return os << c.what << " [" << c.acts << "]"; }

// House rules and seat choices that some rows need.
void Bar2(Game& g) { g.Rules.BarNumber = 2; }
void Pennies(Game& g) { g.Rules.AllowPennyPayoffs = true; }
void Check5(Game& g) { g.Rules.CheckDenom[1] = 5_usd; }
void BuyVigOnWin(Game& g) { g.Rules.ChargeAllBuy = false; }
void LayVigOnWin(Game& g) { g.Rules.ChargeAllLay = false; }
void KeepWinners(Game& g) { g.AutoHandleWin[kSeat] = kSameBet; }
void KeepLosers(Game& g) { g.AutoHandleLose[kSeat] = kSameBet; }
void KeepAll(Game& g) {
  KeepWinners(g);
  KeepLosers(g);
}
PayoffRow Pays(int64_t x, int64_t y) {
  return PayoffRow{Money{}, Money::Dollars(x), Money::Dollars(-1), Money::Dollars(y)};
}
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
void FieldFiveLosesThirdPennies(Game& g) {
  FieldFiveLosesThird(g);
  Pennies(g);
}
void NoPutKeepWinners(Game& g) {
  g.Rules.AllowPutBets = false;
  KeepWinners(g);
}
void AutoDownKeepWinners(Game& g) {
  g.AutoDownPlace[kSeat] = true;
  KeepWinners(g);
}
// A Horn whose Two pays even money loses on the 2: half of it, and the remainder is bet.
void HornRemainder(Game& g) {
  g.Rules.BetPayoff[bet::Two] = Pays(1, 1);
  g.AutoHandleLose[kSeat] = kPressUnitOrRemainder;
}

const Case kCases[] = {
    // ---- Pass Line and its odds
    {"pass wins come-out 7", "Pass Line $10, 3-4", 10},
    {"pass wins come-out 11", "Pass Line $10, 5-6", 10},
    {"pass loses come-out 2", "Pass Line $10, 1-1", -10},
    {"pass loses come-out 3", "Pass Line $10, 2-1", -10},
    {"pass loses come-out 12", "Pass Line $10, 6-6", -10},
    {"pass stands on a point", "Pass Line $10, 1-3", 0, "Pass Line $10"},
    {"pass wins made 6", "Pass Line $10, 2-4, 1-5", 10},
    {"pass loses seven-out", "Pass Line $10, 2-4, 3-4", -10},
    {"pass stands point on 8", "Pass Line $10, 2-4, 3-5", 0, "Pass Line $10"},
    {"pass stands point on 2", "Pass Line $10, 2-4, 1-1", 0, "Pass Line $10"},
    {"pass stands point on 11", "Pass Line $10, 2-4, 5-6", 0, "Pass Line $10"},
    {"pass stands point on 12", "Pass Line $10, 2-4, 6-6", 0, "Pass Line $10"},
    {"pass natural from own row", "Pass Line $10, 3-4", 30, "", LineRows},
    {"pass made 6 from Come 6 row", "Pass Line $12, 2-4, 1-5", 14, "", LineRows},
    {"odds 2:1 on 4", "Pass Line $10, 1-3, Pass Line Odds $10, 2-2", 30},
    {"odds 3:2 on 5", "Pass Line $10, 1-4, Pass Line Odds $10, 2-3", 25},
    {"odds 6:5 on 6", "Pass Line $10, 2-4, Pass Line Odds $25, 1-5", 40},
    {"odds 6:5 on 8", "Pass Line $10, 2-6, Pass Line Odds $10, 3-5", 22},
    {"odds 3:2 on 9", "Pass Line $10, 3-6, Pass Line Odds $10, 4-5", 25},
    {"odds 2:1 on 10", "Pass Line $10, 4-6, Pass Line Odds $10, 5-5", 30},
    {"odds 7 on 5 floors", "Pass Line $10, 1-4, Pass Line Odds $7, 2-3", 20},
    {"odds 7 on 5 pennies", "Pass Line $10, 1-4, Pass Line Odds $7, 2-3", 20.50, "", Pennies},
    {"odds 7 on 8 floors", "Pass Line $10, 2-6, Pass Line Odds $7, 4-4", 18},
    {"odds 7 on 8 pennies", "Pass Line $10, 2-6, Pass Line Odds $7, 4-4", 18.40, "", Pennies},
    {"odds 15 on 5 floors to $5", "Pass Line $10, 1-4, Pass Line Odds $15, 2-3", 30, "", Check5},
    {"odds lose seven-out", "Pass Line $10, 2-6, Pass Line Odds $20, 3-4", -30},
    {"odds stand", "Pass Line $10, 2-6, Pass Line Odds $20, 1-5", 0, "Pass Line $10, Pass Line Odds $20"},
    {"odds off point made", "Pass Line $10, 2-4, Pass Line Odds $20, Pass Line Odds off, 1-5", 10},
    {"odds off seven-out", "Pass Line $10, 2-4, Pass Line Odds $20, Pass Line Odds off, 3-4", -10},
    {"odds off stand", "Pass Line $10, 2-4, Pass Line Odds $20, Pass Line Odds off, 3-5", 0,
     "Pass Line $10, Pass Line Odds $20"},

    {"pass 30 odds 50 on 6", "Pass Line $30, 2-4, Pass Line Odds $50, 3-3", 90},
    {"pass odds returned", "Pass Line $10, 2-4, Pass Line Odds $10, 1-5", 22, "Pass Line $10", KeepWinners},

    // ---- Don't Pass and its odds
    {"dp wins come-out 2", "Don't Pass $10, 1-1", 10},
    {"dp wins come-out 3", "Don't Pass $10, 1-2", 10},
    {"dp bar 12 stands", "Don't Pass $10, 6-6", 0, "Don't Pass $10"},
    {"dp bar 2 stands on 2", "Don't Pass $10, 1-1", 0, "Don't Pass $10", Bar2},
    {"dp bar 2 wins on 12", "Don't Pass $10, 6-6", 10, "", Bar2},
    {"dp loses come-out 7", "Don't Pass $10, 3-4", -10},
    {"dp loses come-out 11", "Don't Pass $10, 5-6", -10},
    {"dp wins seven-out", "Don't Pass $10, 1-3, 3-4", 10},
    {"dp loses point made", "Don't Pass $10, 1-3, 2-2", -10},
    {"dp stands point on 5", "Don't Pass $10, 1-3, 1-4", 0, "Don't Pass $10"},
    {"dp stands point on 2", "Don't Pass $10, 1-3, 1-1", 0, "Don't Pass $10"},
    {"dp stands point on 3", "Don't Pass $10, 1-3, 1-2", 0, "Don't Pass $10"},
    {"dp stands point on 11", "Don't Pass $10, 1-3, 5-6", 0, "Don't Pass $10"},
    {"dp stands point on 12", "Don't Pass $10, 1-3, 6-6", 0, "Don't Pass $10"},
    {"dp come-out from own row", "Don't Pass $10, 1-2", 30, "", LineRows},
    {"dp seven-out from DC 4 row", "Don't Pass $10, 1-3, 3-4", 20, "", LineRows},
    {"lay odds 1:2 on 4", "Don't Pass $10, 1-3, Don't Pass Odds $20, 3-4", 20},
    {"lay odds 2:3 on 5", "Don't Pass $10, 1-4, Don't Pass Odds $30, 3-4", 30},
    {"lay odds 5:6 on 6", "Don't Pass $10, 2-4, Don't Pass Odds $30, 3-4", 35},
    {"lay odds 5:6 on 8", "Don't Pass $10, 3-5, Don't Pass Odds $12, 3-4", 20},
    {"lay odds 2:3 on 9", "Don't Pass $10, 4-5, Don't Pass Odds $15, 3-4", 20},
    {"lay odds 1:2 on 10", "Don't Pass $10, 4-6, Don't Pass Odds $40, 3-4", 30},
    {"lay odds 10 on 6 floors", "Don't Pass $10, 2-4, Don't Pass Odds $10, 3-4", 18},
    {"lay odds 10 on 6 pennies", "Don't Pass $10, 2-4, Don't Pass Odds $10, 3-4", 18.33, "", Pennies},
    {"lay odds lose point made", "Don't Pass $10, 2-4, Don't Pass Odds $30, 1-5", -40},
    {"lay odds stand", "Don't Pass $10, 2-4, Don't Pass Odds $30, 2-6", 0, "Don't Pass $10, Don't Pass Odds $30"},
    {"lay odds off seven-out", "Don't Pass $10, 2-4, Don't Pass Odds $30, Don't Pass Odds off, 3-4", 10},
    {"lay odds off point made", "Don't Pass $10, 2-4, Don't Pass Odds $30, Don't Pass Odds off, 1-5", -10},

    // ---- Come in the box, on its number, and its odds
    {"come wins 7", "1-3, Come $10, 3-4", 10},
    {"come wins 11", "1-3, Come $10, 5-6", 10},
    {"come loses 2", "1-3, Come $10, 1-1", -10},
    {"come loses 3", "1-3, Come $10, 2-1", -10},
    {"come loses 12", "1-3, Come $10, 6-6", -10},
    {"come moves to 4 on the point", "1-3, Come $10, 2-2", 0, "Come 4 $10"},
    {"come moves to 5", "1-3, Come $10, 1-4", 0, "Come 5 $10"},
    {"come moves to 6", "1-3, Come $10, 2-4", 0, "Come 6 $10"},
    {"come moves to 8", "1-3, Come $10, 3-5", 0, "Come 8 $10"},
    {"come moves to 9", "1-3, Come $10, 3-6", 0, "Come 9 $10"},
    {"come moves to 10", "1-3, Come $10, 4-6", 0, "Come 10 $10"},
    {"come 4 wins", "1-4, Come $10, 1-3, 2-2", 10},
    {"come 5 wins", "1-3, Come $10, 1-4, 2-3", 10},
    {"come 6 wins", "1-3, Come $10, 2-4, 1-5", 10},
    {"come 8 wins", "1-3, Come $10, 2-6, 3-5", 10},
    {"come 9 wins", "1-3, Come $10, 3-6, 4-5", 10},
    {"come 10 wins", "1-3, Come $10, 4-6, 5-5", 10},
    {"come 5 loses 7", "1-3, Come $10, 1-4, 3-4", -10},
    {"come 5 stands", "1-3, Come $10, 1-4, 1-5", 0, "Come 5 $10"},
    {"come 5 works come-out 7", "1-3, Come $10, 1-4, 2-2, 3-4", -10},
    {"come 5 works come-out 5", "1-3, Come $10, 1-4, 2-2, 2-3", 10},
    {"come summed onto come 5", "1-3, Come $10, 1-4, Come $10, 1-4", 10, "Come 5 $20", KeepWinners},
    {"come 4 odds 2:1", "1-4, Come $10, 1-3, Come 4 Odds $10, 1-3", 30},
    {"come 5 odds 3:2", "1-3, Come $10, 1-4, Come 5 Odds $10, 1-4", 25},
    {"come 6 odds 6:5", "1-3, Come $10, 2-4, Come 6 Odds $10, 1-5", 22},
    {"come 8 odds 6:5", "1-3, Come $10, 2-6, Come 8 Odds $10, 2-6", 22},
    {"come 9 odds 3:2", "1-3, Come $10, 3-6, Come 9 Odds $10, 3-6", 25},
    {"come 10 odds 2:1", "1-3, Come $10, 4-6, Come 10 Odds $10, 4-6", 30},
    {"come odds lose 7", "1-3, Come $10, 2-4, Come 6 Odds $10, 3-4", -20},
    {"come odds stand", "1-3, Come $10, 2-4, Come 6 Odds $10, 1-4", 0, "Come 6 $10, Come 6 Odds $10"},
    {"come odds off come-out 7", "1-3, Come $10, 2-4, Come 6 Odds $10, 2-2, 3-4", -10},
    {"come odds off come-out 6", "1-3, Come $10, 2-4, Come 6 Odds $10, 2-2, 1-5", 10},
    {"come odds called off", "1-3, Come $10, 2-4, Come 6 Odds $10, Come 6 Odds off, 1-5", 10},

    {"come 7 returned", "1-3, Come $10, 3-4", 10, "", KeepWinners},
    {"come 11 stays in the box", "1-3, Come $10, 5-6", 10, "Come $10", KeepWinners},
    {"come odds stay with flat", "1-3, Come $10, 2-4, Come 6 Odds $10, 1-5", 22, "Come 6 $10, Come 6 Odds $10",
     KeepWinners},
    {"come without put returned", "1-3, Come $10, 2-4, Come 6 Odds $10, 1-5", 22, "", NoPutKeepWinners},
    {"come move takes place down", "1-3, Place 5 $5, Come $10, 1-4", 7, "Come 5 $10", AutoDownKeepWinners},
    {"come move takes buy down", "1-3, Buy 5 $20, Come $10, 1-4", 29, "Come 5 $10", AutoDownKeepWinners},

    // ---- Don't Come in the box, on its number, and its odds
    {"dc wins 2", "1-3, Don't Come $10, 1-1", 10},
    {"dc wins 3", "1-3, Don't Come $10, 1-2", 10},
    {"dc bar 12 stands", "1-3, Don't Come $10, 6-6", 0, "Don't Come $10"},
    {"dc bar 2 stands on 2", "1-3, Don't Come $10, 1-1", 0, "Don't Come $10", Bar2},
    {"dc bar 2 wins 12", "1-3, Don't Come $10, 6-6", 10, "", Bar2},
    {"dc loses 7", "1-3, Don't Come $10, 3-4", -10},
    {"dc loses 11", "1-3, Don't Come $10, 5-6", -10},
    {"dc moves to 5", "1-3, Don't Come $10, 1-4", 0, "Don't Come 5 $10"},
    {"dc 4 wins 7", "1-4, Don't Come $10, 1-3, 3-4", 10},
    {"dc 5 wins 7", "1-3, Don't Come $10, 1-4, 3-4", 10},
    {"dc 6 wins 7", "1-3, Don't Come $10, 2-4, 3-4", 10},
    {"dc 8 wins 7", "1-3, Don't Come $10, 2-6, 3-4", 10},
    {"dc 9 wins 7", "1-3, Don't Come $10, 3-6, 3-4", 10},
    {"dc 10 wins 7", "1-3, Don't Come $10, 4-6, 3-4", 10},
    {"dc 5 loses 5", "1-3, Don't Come $10, 1-4, 2-3", -10},
    {"dc 5 stands", "1-3, Don't Come $10, 1-4, 1-5", 0, "Don't Come 5 $10"},
    {"dc 5 works come-out 7", "1-3, Don't Come $10, 1-4, 2-2, 3-4", 10},
    {"dc 4 odds 1:2", "1-4, Don't Come $10, 1-3, Don't Come 4 Odds $20, 3-4", 20},
    {"dc 5 odds 2:3", "1-3, Don't Come $10, 1-4, Don't Come 5 Odds $30, 3-4", 30},
    {"dc 6 odds 5:6", "1-3, Don't Come $10, 2-4, Don't Come 6 Odds $30, 3-4", 35},
    {"dc 8 odds 5:6", "1-3, Don't Come $10, 2-6, Don't Come 8 Odds $30, 3-4", 35},
    {"dc 9 odds 2:3", "1-3, Don't Come $10, 3-6, Don't Come 9 Odds $30, 3-4", 30},
    {"dc 10 odds 1:2", "1-3, Don't Come $10, 4-6, Don't Come 10 Odds $40, 3-4", 30},
    {"dc odds lose", "1-3, Don't Come $10, 1-4, Don't Come 5 Odds $30, 2-3", -40},
    {"dc odds work come-out 7", "1-3, Don't Come $10, 1-4, Don't Come 5 Odds $30, 2-2, 3-4", 30},
    {"dc odds called off", "1-3, Don't Come $10, 1-4, Don't Come 5 Odds $30, Don't Come 5 Odds off, 3-4", 10},

    {"dc number returned", "1-3, Don't Come $10, 1-4, 3-4", 10, "", KeepWinners},

    // ---- Place: off on the come-out, on with a point
    {"place 4 9:5", "1-4, Place 4 $5, 1-3", 9},
    {"place 5 7:5", "1-3, Place 5 $5, 1-4", 7},
    {"place 6 7:6", "1-3, Place 6 $6, 1-5", 7},
    {"place 8 7:6", "1-3, Place 8 $6, 2-6", 7},
    {"place 9 7:5", "1-3, Place 9 $5, 3-6", 7},
    {"place 10 9:5", "1-3, Place 10 $5, 4-6", 9},
    {"place 6 $10 floors", "1-3, Place 6 $10, 1-5", 11},
    {"place 6 $10 pennies", "1-3, Place 6 $10, 1-5", 11.66, "", Pennies},
    {"place 6 $15 floors to $5", "1-3, Place 6 $15, 1-5", 15, "", Check5},
    {"place loses 7", "1-3, Place 6 $6, 3-4", -6},
    {"place stands", "1-3, Place 6 $6, 2-6", 0, "Place 6 $6"},
    {"place off come-out 7", "Place 6 $6, 3-4", 0, "Place 6 $6"},
    {"place off come-out 6", "Place 6 $6, 1-5", 0, "Place 6 $6"},
    {"place called on come-out 6", "Place 6 $6, Place 6 on, 1-5", 7},
    {"place called off 6", "1-3, Place 6 $6, Place 6 off, 1-5", 0, "Place 6 $6"},
    {"place called off 7", "1-3, Place 6 $6, Place 6 off, 3-4", 0, "Place 6 $6"},

    {"place kept wins twice", "1-3, Place 6 $6, 1-5, 2-4", 14, "Place 6 $6", KeepWinners},

    // ---- Buy: 5% on the amount, up front or on a win only
    {"buy 4", "1-4, Buy 4 $20, 1-3", 39},
    {"buy 5", "1-3, Buy 5 $20, 1-4", 29},
    {"buy 6", "1-3, Buy 6 $20, 2-4", 23},
    {"buy 8", "1-3, Buy 8 $20, 3-5", 23},
    {"buy 9", "1-3, Buy 9 $20, 3-6", 29},
    {"buy 10", "1-3, Buy 10 $20, 4-6", 39},
    {"buy loses with vig", "1-3, Buy 6 $20, 3-4", -21},
    {"buy vig on win wins", "1-3, Buy 10 $20, 4-6", 39, "", BuyVigOnWin},
    {"buy vig on win loses", "1-3, Buy 10 $20, 3-4", -20, "", BuyVigOnWin},
    {"buy vig never free", "1-4, Buy 4 $10, 1-3", 19},
    {"buy vig half rounds down", "1-4, Buy 4 $30, 1-3", 59},
    {"buy vig pennies", "1-4, Buy 4 $25, 1-3", 48.75, "", Pennies},
    {"buy vig to the $5 check", "1-4, Buy 4 $20, 1-3", 35, "", Check5},
    {"buy stands", "1-3, Buy 6 $20, 1-4", 0, "Buy 6 $20"},
    {"buy off come-out 7", "Buy 6 $20, 3-4", 0, "Buy 6 $20"},

    {"buy kept wins twice", "1-4, Buy 4 $20, 1-3, 2-2", 78, "Buy 4 $20", KeepWinners},

    // ---- Lay: 5% on the win
    {"lay 4", "1-4, Lay 4 $40, 3-4", 19},
    {"lay 5", "1-3, Lay 5 $30, 3-4", 19},
    {"lay 6", "1-3, Lay 6 $30, 3-4", 24},
    {"lay 8", "1-3, Lay 8 $30, 3-4", 24},
    {"lay 9", "1-3, Lay 9 $30, 3-4", 19},
    {"lay 10", "1-3, Lay 10 $40, 3-4", 19},
    {"lay vig never free", "1-3, Lay 6 $12, 3-4", 9},
    {"lay vig pennies", "1-3, Lay 6 $30, 3-4", 23.75, "", Pennies},
    {"lay vig to the $5 check", "1-4, Lay 4 $40, 3-4", 15, "", Check5},
    {"lay loses with vig", "1-3, Lay 10 $40, 4-6", -41},
    {"lay vig on win loses", "1-3, Lay 10 $40, 4-6", -40, "", LayVigOnWin},
    {"lay vig on win wins", "1-3, Lay 10 $40, 3-4", 19, "", LayVigOnWin},
    {"lay works come-out 7", "Lay 4 $40, 3-4", 19},
    {"lay stands", "Lay 4 $40, 1-4", 0, "Lay 4 $40"},
    {"lay called off", "1-3, Lay 10 $40, Lay 10 off, 3-4", 0, "Lay 10 $40"},

    {"lay kept", "1-3, Lay 10 $40, 3-4", 19, "Lay 10 $40", KeepWinners},
    {"lay win eaten by vig stands", "Lay 4 $2, 3-4", 0, "Lay 4 $2"},

    // ---- Every number of the families of six: the losing and the standing roll
    {"lay 4 loses 4", "1-4, Lay 4 $40, 1-3", -41},
    {"lay 4 stands", "1-4, Lay 4 $40, 1-5", 0, "Lay 4 $40"},
    {"place 4 loses 7", "1-4, Place 4 $5, 3-4", -5},
    {"place 4 stands", "1-4, Place 4 $5, 1-5", 0, "Place 4 $5"},
    {"buy 4 loses 7", "1-4, Buy 4 $20, 3-4", -21},
    {"buy 4 stands", "1-4, Buy 4 $20, 1-5", 0, "Buy 4 $20"},
    {"come 4 and odds lose 7", "1-4, Come $10, 1-3, Come 4 Odds $10, 3-4", -20},
    {"come 4 and odds stand", "1-4, Come $10, 1-3, Come 4 Odds $10, 1-5", 0, "Come 4 $10, Come 4 Odds $10"},
    {"dc 4 and odds lose 4", "1-4, Don't Come $10, 1-3, Don't Come 4 Odds $20, 1-3", -30},
    {"dc 4 and odds stand", "1-4, Don't Come $10, 1-3, Don't Come 4 Odds $20, 1-5", 0,
     "Don't Come 4 $10, Don't Come 4 Odds $20"},
    {"lay 5 loses 5", "1-3, Lay 5 $30, 1-4", -31},
    {"lay 5 stands", "1-3, Lay 5 $30, 1-5", 0, "Lay 5 $30"},
    {"place 5 loses 7", "1-3, Place 5 $5, 3-4", -5},
    {"place 5 stands", "1-3, Place 5 $5, 1-5", 0, "Place 5 $5"},
    {"buy 5 loses 7", "1-3, Buy 5 $20, 3-4", -21},
    {"buy 5 stands", "1-3, Buy 5 $20, 1-5", 0, "Buy 5 $20"},
    {"come 5 and odds lose 7", "1-3, Come $10, 1-4, Come 5 Odds $10, 3-4", -20},
    {"come 5 and odds stand", "1-3, Come $10, 1-4, Come 5 Odds $10, 1-5", 0, "Come 5 $10, Come 5 Odds $10"},
    {"dc 5 and odds lose 5", "1-3, Don't Come $10, 1-4, Don't Come 5 Odds $30, 1-4", -40},
    {"dc 5 and odds stand", "1-3, Don't Come $10, 1-4, Don't Come 5 Odds $30, 1-5", 0,
     "Don't Come 5 $10, Don't Come 5 Odds $30"},
    {"lay 6 loses 6", "1-3, Lay 6 $30, 2-4", -31},
    {"lay 6 stands", "1-3, Lay 6 $30, 1-4", 0, "Lay 6 $30"},
    {"place 6 loses 7", "1-3, Place 6 $6, 3-4", -6},
    {"place 6 stands", "1-3, Place 6 $6, 1-4", 0, "Place 6 $6"},
    {"buy 6 loses 7", "1-3, Buy 6 $20, 3-4", -21},
    {"buy 6 stands", "1-3, Buy 6 $20, 1-4", 0, "Buy 6 $20"},
    {"come 6 and odds lose 7", "1-3, Come $10, 2-4, Come 6 Odds $10, 3-4", -20},
    {"come 6 and odds stand", "1-3, Come $10, 2-4, Come 6 Odds $10, 1-4", 0, "Come 6 $10, Come 6 Odds $10"},
    {"dc 6 and odds lose 6", "1-3, Don't Come $10, 2-4, Don't Come 6 Odds $30, 2-4", -40},
    {"dc 6 and odds stand", "1-3, Don't Come $10, 2-4, Don't Come 6 Odds $30, 1-4", 0,
     "Don't Come 6 $10, Don't Come 6 Odds $30"},
    {"lay 8 loses 8", "1-3, Lay 8 $30, 2-6", -31},
    {"lay 8 stands", "1-3, Lay 8 $30, 1-4", 0, "Lay 8 $30"},
    {"place 8 loses 7", "1-3, Place 8 $6, 3-4", -6},
    {"place 8 stands", "1-3, Place 8 $6, 1-4", 0, "Place 8 $6"},
    {"buy 8 loses 7", "1-3, Buy 8 $20, 3-4", -21},
    {"buy 8 stands", "1-3, Buy 8 $20, 1-4", 0, "Buy 8 $20"},
    {"come 8 and odds lose 7", "1-3, Come $10, 2-6, Come 8 Odds $10, 3-4", -20},
    {"come 8 and odds stand", "1-3, Come $10, 2-6, Come 8 Odds $10, 1-4", 0, "Come 8 $10, Come 8 Odds $10"},
    {"dc 8 and odds lose 8", "1-3, Don't Come $10, 2-6, Don't Come 8 Odds $30, 2-6", -40},
    {"dc 8 and odds stand", "1-3, Don't Come $10, 2-6, Don't Come 8 Odds $30, 1-4", 0,
     "Don't Come 8 $10, Don't Come 8 Odds $30"},
    {"lay 9 loses 9", "1-3, Lay 9 $30, 3-6", -31},
    {"lay 9 stands", "1-3, Lay 9 $30, 1-4", 0, "Lay 9 $30"},
    {"place 9 loses 7", "1-3, Place 9 $5, 3-4", -5},
    {"place 9 stands", "1-3, Place 9 $5, 1-4", 0, "Place 9 $5"},
    {"buy 9 loses 7", "1-3, Buy 9 $20, 3-4", -21},
    {"buy 9 stands", "1-3, Buy 9 $20, 1-4", 0, "Buy 9 $20"},
    {"come 9 and odds lose 7", "1-3, Come $10, 3-6, Come 9 Odds $10, 3-4", -20},
    {"come 9 and odds stand", "1-3, Come $10, 3-6, Come 9 Odds $10, 1-4", 0, "Come 9 $10, Come 9 Odds $10"},
    {"dc 9 and odds lose 9", "1-3, Don't Come $10, 3-6, Don't Come 9 Odds $30, 3-6", -40},
    {"dc 9 and odds stand", "1-3, Don't Come $10, 3-6, Don't Come 9 Odds $30, 1-4", 0,
     "Don't Come 9 $10, Don't Come 9 Odds $30"},
    {"lay 10 loses 10", "1-3, Lay 10 $40, 4-6", -41},
    {"lay 10 stands", "1-3, Lay 10 $40, 1-4", 0, "Lay 10 $40"},
    {"place 10 loses 7", "1-3, Place 10 $5, 3-4", -5},
    {"place 10 stands", "1-3, Place 10 $5, 1-4", 0, "Place 10 $5"},
    {"buy 10 loses 7", "1-3, Buy 10 $20, 3-4", -21},
    {"buy 10 stands", "1-3, Buy 10 $20, 1-4", 0, "Buy 10 $20"},
    {"come 10 and odds lose 7", "1-3, Come $10, 4-6, Come 10 Odds $10, 3-4", -20},
    {"come 10 and odds stand", "1-3, Come $10, 4-6, Come 10 Odds $10, 1-4", 0, "Come 10 $10, Come 10 Odds $10"},
    {"dc 10 and odds lose 10", "1-3, Don't Come $10, 4-6, Don't Come 10 Odds $40, 4-6", -50},
    {"dc 10 and odds stand", "1-3, Don't Come $10, 4-6, Don't Come 10 Odds $40, 1-4", 0,
     "Don't Come 10 $10, Don't Come 10 Odds $40"},

    // ---- Field by pair
    {"field 1-1", "Field $10, 1-1", 20},
    {"field 1-2", "Field $10, 1-2", 10},
    {"field 1-3", "Field $10, 1-3", 10},
    {"field 2-2", "Field $10, 2-2", 10},
    {"field 1-4", "Field $10, 1-4", -10},
    {"field 2-3", "Field $10, 2-3", -10},
    {"field 1-5", "Field $10, 1-5", -10},
    {"field 2-4", "Field $10, 2-4", -10},
    {"field 3-3", "Field $10, 3-3", -10},
    {"field 1-6", "Field $10, 1-6", -10},
    {"field 2-5", "Field $10, 2-5", -10},
    {"field 3-4", "Field $10, 3-4", -10},
    {"field 2-6", "Field $10, 2-6", -10},
    {"field 3-5", "Field $10, 3-5", -10},
    {"field 4-4", "Field $10, 4-4", -10},
    {"field 3-6", "Field $10, 3-6", 10},
    {"field 4-5", "Field $10, 4-5", 10},
    {"field 4-6", "Field $10, 4-6", 10},
    {"field 5-5", "Field $10, 5-5", 10},
    {"field 5-6", "Field $10, 5-6", 10},
    {"field 6-6", "Field $10, 6-6", 20},
    {"field row of 2-2", "Field $10, 2-2", 30, "", FieldHard4Pays3},
    {"field row of 3-1", "Field $10, 3-1", 10, "", FieldHard4Pays3},
    {"field called off", "Field $10, Field off, 1-1", 0, "Field $10"},

    {"field push", "Field $10, 1-1", 0, "Field $10", FieldTwoPushes},
    {"field third loss floors", "Field $10, 1-4", -4, "", FieldFiveLosesThird},
    {"field third loss pennies", "Field $10, 4-1", -3.34, "", FieldFiveLosesThirdPennies},

    // ---- Big 6, Big 8, hardways (they work on the come-out)
    {"big 6 wins", "Big 6 $10, 1-5", 10},
    {"big 6 loses", "Big 6 $10, 3-4", -10},
    {"big 6 stands", "Big 6 $10, 2-6", 0, "Big 6 $10"},
    {"big 8 wins", "Big 8 $10, 3-5", 10},
    {"big 8 loses", "Big 8 $10, 3-4", -10},
    {"big 8 stands", "Big 8 $10, 1-5", 0, "Big 8 $10"},
    {"big 6 called off", "Big 6 $10, Big 6 off, 3-4", 0, "Big 6 $10"},
    {"hard 4 wins", "Hard 4 $10, 2-2", 70},
    {"hard 4 easy", "Hard 4 $10, 1-3", -10},
    {"hard 4 seven", "Hard 4 $10, 3-4", -10},
    {"hard 4 stands", "Hard 4 $10, 1-4", 0, "Hard 4 $10"},
    {"hard 6 wins", "Hard 6 $10, 3-3", 90},
    {"hard 6 easy", "Hard 6 $10, 2-4", -10},
    {"hard 6 seven", "Hard 6 $10, 1-6", -10},
    {"hard 8 wins", "Hard 8 $10, 4-4", 90},
    {"hard 8 easy", "Hard 8 $10, 2-6", -10},
    {"hard 8 stands", "Hard 8 $10, 3-3", 0, "Hard 8 $10"},
    {"hard 10 wins", "Hard 10 $10, 5-5", 70},
    {"hard 10 easy", "Hard 10 $10, 6-4", -10},
    {"hard 10 seven", "Hard 10 $10, 2-5", -10},
    {"hard 6 called off", "Hard 6 $10, Hard 6 off, 3-4", 0, "Hard 6 $10"},

    // ---- One-roll bets on a total
    {"two wins", "Two $10, 1-1", 300},
    {"two loses", "Two $10, 1-2", -10},
    {"three wins", "Three $10, 2-1", 150},
    {"three loses", "Three $10, 1-1", -10},
    {"seven wins", "Seven $10, 6-1", 40},
    {"seven loses", "Seven $10, 6-6", -10},
    {"eleven wins", "Eleven $10, 6-5", 150},
    {"eleven loses", "Eleven $10, 3-4", -10},
    {"twelve wins", "Twelve $10, 6-6", 300},
    {"twelve loses", "Twelve $10, 5-6", -10},
    {"craps wins 2", "Craps $10, 1-1", 70},
    {"craps wins 3", "Craps $10, 1-2", 70},
    {"craps wins barred 12", "Craps $10, 6-6", 70},
    {"craps wins 12 bar 2", "Craps $10, 6-6", 70, "", Bar2},
    {"craps loses 7", "Craps $10, 3-4", -10},
    {"craps loses 11", "Craps $10, 5-6", -10},
    {"c and e on 11", "C and E $10, 5-6", 70},
    {"c and e on 2", "C and E $10, 1-1", 30},
    {"c and e on 3", "C and E $10, 2-1", 30},
    {"c and e on 12", "C and E $10, 6-6", 30},
    {"c and e loses 4", "C and E $10, 1-3", -10},
    {"c and e loses 7", "C and E $10, 3-4", -10},
    {"horn on 2", "Horn $20, 1-1", 135},
    {"horn on 3", "Horn $20, 1-2", 60},
    {"horn on 11", "Horn $20, 5-6", 60},
    {"horn on 12", "Horn $20, 6-6", 135},
    {"horn loses 7", "Horn $20, 3-4", -20},
    {"horn loses 10", "Horn $20, 4-6", -20},
    {"horn $5 on 2 floors", "Horn $5, 1-1", 33},
    {"horn $5 on 2 pennies", "Horn $5, 1-1", 33.75, "", Pennies},
    {"world on 2", "World $10, 1-1", 52},
    {"world on 3", "World $10, 1-2", 22},
    {"world pushes on 7", "World $10, 3-4", 0, "World $10"},
    {"world on 11", "World $10, 5-6", 22},
    {"world on 12", "World $10, 6-6", 52},
    {"world loses 6", "World $10, 2-4", -10},
    {"world loses 9", "World $10, 4-5", -10},

    {"horn remainder", "Horn $20, 1-1", -10, "Horn $10", HornRemainder},

    // ---- Hops: each on its own pair, in either order, and losing on another
    {"hop 13", "Hop 13 $10, 3-1", 150},
    {"hop 13 loses", "Hop 13 $10, 2-2", -10},
    {"hop 14", "Hop 14 $10, 1-4", 150},
    {"hop 14 loses", "Hop 14 $10, 2-3", -10},
    {"hop 15", "Hop 15 $10, 5-1", 150},
    {"hop 15 loses", "Hop 15 $10, 2-4", -10},
    {"hop 16", "Hop 16 $10, 6-1", 150},
    {"hop 16 loses", "Hop 16 $10, 2-5", -10},
    {"hop 22", "Hop 22 $10, 2-2", 300},
    {"hop 22 loses", "Hop 22 $10, 1-3", -10},
    {"hop 23", "Hop 23 $10, 3-2", 150},
    {"hop 23 loses", "Hop 23 $10, 4-1", -10},
    {"hop 24", "Hop 24 $10, 4-2", 150},
    {"hop 24 loses", "Hop 24 $10, 3-3", -10},
    {"hop 25", "Hop 25 $10, 2-5", 150},
    {"hop 25 loses", "Hop 25 $10, 3-4", -10},
    {"hop 26", "Hop 26 $10, 6-2", 150},
    {"hop 26 loses", "Hop 26 $10, 4-4", -10},
    {"hop 33", "Hop 33 $10, 3-3", 300},
    {"hop 33 loses", "Hop 33 $10, 1-5", -10},
    {"hop 34", "Hop 34 $10, 4-3", 150},
    {"hop 34 loses", "Hop 34 $10, 1-6", -10},
    {"hop 35", "Hop 35 $10, 5-3", 150},
    {"hop 35 loses", "Hop 35 $10, 2-6", -10},
    {"hop 36", "Hop 36 $10, 3-6", 150},
    {"hop 36 loses", "Hop 36 $10, 4-5", -10},
    {"hop 44", "Hop 44 $10, 4-4", 300},
    {"hop 44 loses", "Hop 44 $10, 3-5", -10},
    {"hop 45", "Hop 45 $10, 5-4", 150},
    {"hop 45 loses", "Hop 45 $10, 6-3", -10},
    {"hop 46", "Hop 46 $10, 6-4", 150},
    {"hop 46 loses", "Hop 46 $10, 5-5", -10},
    {"hop 55", "Hop 55 $10, 5-5", 300},
    {"hop 55 loses", "Hop 55 $10, 4-6", -10},
    {"hop called off", "Hop 22 $10, Hop 22 off, 2-2", 0, "Hop 22 $10"},

    // ---- Midway, Over/Under 7, the three Fields
    {"midway hard 6", "Midway $10, 3-3", 20},
    {"midway easy 6", "Midway $10, 1-5", 10},
    {"midway 7", "Midway $10, 3-4", 10},
    {"midway easy 8", "Midway $10, 2-6", 10},
    {"midway hard 8", "Midway $10, 4-4", 20},
    {"midway loses 5", "Midway $10, 1-4", -10},
    {"midway loses 9", "Midway $10, 4-5", -10},
    {"over 7 wins 8", "Over 7 $10, 3-5", 10},
    {"over 7 wins 12", "Over 7 $10, 6-6", 10},
    {"over 7 loses 7", "Over 7 $10, 3-4", -10},
    {"over 7 loses 2", "Over 7 $10, 1-1", -10},
    {"under 7 wins 2", "Under 7 $10, 1-1", 10},
    {"under 7 wins 6", "Under 7 $10, 3-3", 10},
    {"under 7 loses 7", "Under 7 $10, 3-4", -10},
    {"under 7 loses 8", "Under 7 $10, 4-4", -10},
    {"left field 2", "Left Field $10, 1-1", 40},
    {"left field 3", "Left Field $10, 1-2", 40},
    {"left field 4", "Left Field $10, 2-2", 40},
    {"left field loses 5", "Left Field $10, 1-4", -10},
    {"left field loses 12", "Left Field $10, 6-6", -10},
    {"center field 4", "Center Field $10, 1-3", 20},
    {"center field 9", "Center Field $10, 4-5", 20},
    {"center field 10", "Center Field $10, 5-5", 20},
    {"center field loses 7", "Center Field $10, 3-4", -10},
    {"center field loses 11", "Center Field $10, 5-6", -10},
    {"right field 10", "Right Field $10, 4-6", 40},
    {"right field 11", "Right Field $10, 5-6", 40},
    {"right field 12", "Right Field $10, 6-6", 40},
    {"right field loses 8", "Right Field $10, 4-4", -10},
    {"right field 9 taken down", "Right Field $10, 4-5", -10},
    {"right field 9 kept", "Right Field $10, 4-5", 30, "", KeepLosers},

    {"right field 9 kept twice", "Right Field $10, 4-5, 5-4", 60, "Right Field $10", KeepAll},

    // ---- Point 7 and 7 Point 7
    {"point 7 wins", "Point 7 $10, 1-3, 3-4", 70},
    {"point 7 stands", "Point 7 $10, 1-3", 0, "Point 7 $10"},
    {"point 7 loses come-out 7", "Point 7 $10, 3-4", -10},
    {"point 7 loses come-out 11", "Point 7 $10, 5-6", -10},
    {"point 7 loses come-out 2", "Point 7 $10, 1-1", -10},
    {"point 7 loses next roll", "Point 7 $10, 1-3, 1-4", -10},
    {"point 7 loses point made", "Point 7 $10, 1-3, 2-2", -10},
    {"7p7 stage 1", "7 Point 7 $10, 3-4", 20},
    {"7p7 stage 1 at risk", "7 Point 7 $10, 3-4", 20, "7 Point 7 $10", KeepWinners},
    {"7p7 stage 2", "7 Point 7 $10, 1-3, 3-4", 30},
    {"7p7 both stages", "7 Point 7 $10, 3-4, 1-3, 3-4", 50, "7 Point 7 $10", KeepWinners},
    {"7p7 stands", "7 Point 7 $10, 1-3", 0, "7 Point 7 $10"},
    {"7p7 loses come-out 11", "7 Point 7 $10, 5-6", -10},
    {"7p7 loses come-out 3", "7 Point 7 $10, 1-2", -10},
    {"7p7 loses next roll", "7 Point 7 $10, 1-3, 1-4", -10},

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
    {"fire 4 points", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 1-5, 2-6, 2-6, 1-3, 3-4", 120},
    {"fire repeated point", "Fire $5, 1-3, 1-3, 1-3, 1-3, 1-4, 1-4, 1-3, 1-3, 1-5, 3-4", -5},
    {"fire 2 points loses", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 3-4", -5},
    {"fire 2 points paying row", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 3-4", 15, "", FireTwoPays},
    {"fire stands come-out 7", "Fire $5, 1-3, 1-3, 3-4", 0, "Fire $5"},
    {"sharp shooter 3 points", "Sharp Shooter $10, 1-3, 1-3, 1-3, 1-3, 1-4, 1-4, 1-5, 3-4", 50},
    {"sharp shooter 2 points", "Sharp Shooter $10, 1-3, 1-3, 1-4, 1-4, 1-5, 3-4", -10},
    {"sharp shooter stands", "Sharp Shooter $10, 3-4, 1-3, 1-3", 0, "Sharp Shooter $10"},
    {"ride the line 3 passes", "Ride The Line $10, 3-4, 5-6, 1-3, 1-3, 1-4, 3-4", 10},
    {"ride the line 4 passes", "Ride The Line $10, 3-4, 3-4, 5-6, 1-3, 1-3, 1-4, 3-4", 20},
    {"ride the line 2 passes", "Ride The Line $10, 3-4, 5-6, 1-4, 3-4", -10},
    {"ride the line stands", "Ride The Line $10, 3-4, 5-6, 1-3, 1-3", 0, "Ride The Line $10"},

    {"hot roller 6 numbers",
     "Hot Roller $10, 1-3, 2-2, 1-4, 2-3, 1-5, 2-4, 3-3, 2-6, 3-5, 4-4, 3-6, 4-5, 4-6, 5-5, 3-4", 2000},
    {"fire 5 points", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 1-5, 2-6, 2-6, 3-6, 3-6, 1-3, 3-4", 1245},
    {"fire 6 points", "Fire $5, 1-3, 1-3, 1-4, 1-4, 1-5, 1-5, 2-6, 2-6, 3-6, 3-6, 4-6, 4-6, 1-3, 3-4", 4995},
    {"sharp shooter 9 points",
     "Sharp Shooter $10, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, "
     "1-4, 3-4",
     1990},
    {"sharp shooter 11 points",
     "Sharp Shooter $10, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, 1-3, "
     "1-3, 1-3, 1-3, 1-3, 1-4, 3-4",
     2990},
    {"ride the line 10 passes", "Ride The Line $10, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 1-4, 3-4", 400},
    {"ride the line 12 passes",
     "Ride The Line $10, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 3-4, 5-6, 5-6, 1-4, 3-4", 1000},

    // ---- Repeaters: 40, 50, 65, 80, 90 for 1
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
    {"repeater 2 one hit stands", "Repeater 2 $10, 1-1", 0, "Repeater 2 $10"},
    {"repeater 2 loses 7", "Repeater 2 $10, 1-1, 3-4", -10},
    {"repeater 3 one hit stands", "Repeater 3 $10, 1-2", 0, "Repeater 3 $10"},
    {"repeater 3 loses 7", "Repeater 3 $10, 1-2, 3-4", -10},
    {"repeater 4 one hit stands", "Repeater 4 $10, 1-3", 0, "Repeater 4 $10"},
    {"repeater 4 loses 7", "Repeater 4 $10, 1-3, 3-4", -10},
    {"repeater 5 one hit stands", "Repeater 5 $10, 1-4", 0, "Repeater 5 $10"},
    {"repeater 5 loses 7", "Repeater 5 $10, 1-4, 3-4", -10},
    {"repeater 6 one hit stands", "Repeater 6 $10, 1-5", 0, "Repeater 6 $10"},
    {"repeater 6 loses 7", "Repeater 6 $10, 1-5, 3-4", -10},
    {"repeater 8 one hit stands", "Repeater 8 $10, 2-6", 0, "Repeater 8 $10"},
    {"repeater 8 loses 7", "Repeater 8 $10, 2-6, 3-4", -10},
    {"repeater 9 one hit stands", "Repeater 9 $10, 3-6", 0, "Repeater 9 $10"},
    {"repeater 9 loses 7", "Repeater 9 $10, 3-6, 3-4", -10},
    {"repeater 10 one hit stands", "Repeater 10 $10, 4-6", 0, "Repeater 10 $10"},
    {"repeater 10 loses 7", "Repeater 10 $10, 4-6, 3-4", -10},
    {"repeater 11 one hit stands", "Repeater 11 $10, 5-6", 0, "Repeater 11 $10"},
    {"repeater 11 loses 7", "Repeater 11 $10, 5-6, 3-4", -10},
    {"repeater 12 one hit stands", "Repeater 12 $10, 6-6", 0, "Repeater 12 $10"},
    {"repeater 12 loses 7", "Repeater 12 $10, 6-6, 3-4", -10},
    {"repeater stands", "Repeater 6 $10, 1-5, 1-5, 2-6", 0, "Repeater 6 $10"},
    {"repeater loses 7", "Repeater 6 $10, 1-5, 1-5, 3-4", -10},
    {"repeater count starts over when called off", "Repeater 2 $10, Repeater 2 off, 1-1, 1-1, Repeater 2 on, 1-1, 1-1",
     390},
    {"repeater called off stands", "Repeater 2 $10, Repeater 2 off, 1-1, 1-1, 3-4", 0, "Repeater 2 $10"},
};

std::string Trim(std::string s) {
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.erase(s.begin());
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.pop_back();
  return s;
}

std::vector<std::string> Items(const char* text) {
  std::vector<std::string> out;
  std::stringstream ss(text);
  for (std::string item; std::getline(ss, item, ',');)
    if (!Trim(item).empty()) out.push_back(Trim(item));
  return out;
}

struct Item {
  int d1 = 0, d2 = 0;  // dice, when non-zero
  int bet = 0;
  std::string tail;  // "$10", "off" or "on"
};

Item Parse(const std::string& s) {
  Item it;
  if (s.size() == 3 && std::isdigit(static_cast<unsigned char>(s[0])) && s[1] == '-') {
    it.d1 = s[0] - '0';
    it.d2 = s[2] - '0';
    return it;
  }
  const size_t cut = s.rfind(' ');
  it.bet = FindBetByName(s.substr(0, cut));
  it.tail = s.substr(cut + 1);
  return it;
}

Money AmountOf(const std::string& text) {
  Money m;
  std::string error;
  EXPECT_TRUE(text.size() > 1 && text[0] == '$' && ParseMoney(text.substr(1), m, error)) << text;
  return m;
}

class ResolutionTest : public ::testing::TestWithParam<Case> {};

TEST_P(ResolutionTest, NetAndWhatIsLeft) {
  const Case& c = GetParam();
  LineTable t;
  Game& g = t.g;
  g.Rules.BetNeededToShoot = 0;
  t.Seat(kSeat, "Ann", kStartBankroll);
  g.AutoHandleWin[kSeat] = g.AutoHandleLose[kSeat] = kTakeDown;
  if (c.setup) c.setup(g);

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

std::string RowName(const ::testing::TestParamInfo<Case>& info) {
  std::string name = std::to_string(info.index) + "_";
  for (const char* p = info.param.what; *p; ++p) name += std::isalnum(static_cast<unsigned char>(*p)) ? *p : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Bets, ResolutionTest, ::testing::ValuesIn(kCases), RowName);

}  // namespace
