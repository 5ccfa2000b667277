#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "autobet/compiler.h"
#include "tests/autobet/records.h"

namespace {

constexpr int kSeat = 2;  // the compiled seat: the owner of references that name no player

using namespace records;
const TokenRecord kBet = A(481);

// The comma list a plural word becomes: each bet with the same pieces. An action's
// operands are marked as its targets by the pass after this one.
Records List(const std::vector<int>& bets, const Records& pieces, int code = kCodeVariable) {
  Records out;
  for (int v : bets) {
    if (!out.empty()) out.push_back(kComma);
    out.push_back({code, static_cast<double>(v)});
    out.insert(out.end(), pieces.begin(), pieces.end());
  }
  return out;
}

std::vector<int> Range(int first, int last, std::vector<int> without = {}) {
  std::vector<int> out;
  for (int v = first; v <= last; ++v)
    if (std::find(without.begin(), without.end(), v) == without.end()) out.push_back(v);
  return out;
}

// The owner's current wagers this session: what a bet word means with no pieces written.
const Records kOwnWagers = {P(kSeat), H(3), X(1), Y(34)};

Records Targets(const std::vector<int>& bets, const Records& pieces) { return List(bets, pieces, kCodeVariableTarget); }

// "bet 5 on " before the list.
Records BetFiveOn(const Records& list) { return Records{M(1, 0), kBet, N(5), kOn} + list; }

// "cs1 = " before an expression: the checkstack is the assignment's target.
const Records kCs1Is = {M(1, 0), Vt(201), P(kSeat), Op(50)};

struct DistributeCase {
  std::vector<std::string> lines;
  Records records;  // everything after the header, when it compiles
  int cornerBet = 1;
  const char* message = "";
  int firstLine = 0, firstColumn = 0, lastLine = 0, lastColumn = 0;
};

std::ostream& operator<<(std::ostream& os, const DistributeCase& c) {
  return records::PrintScript(os, c.lines) << "corner " << c.cornerBet;
}

class CompileVariablesDistributeTest : public testing::TestWithParam<DistributeCase> {};

TEST_P(CompileVariablesDistributeTest, PluralWordsBecomeListsOfReferences) {
  const DistributeCase& c = GetParam();
  AutoBetProgram program;
  program.ScriptSource[kSeat] = c.lines;
  program.CornerBet = c.cornerBet;
  const CompileFault fault = CompileAutobets(program, kSeat, std::vector<std::string>{});
  EXPECT_EQ(fault.message, c.message);
  if (std::string(c.message).empty()) {
    ASSERT_FALSE(program.ScriptRecords.empty());
    EXPECT_EQ(program.ScriptRecords.front(), (TokenRecord{kCodeScriptHeader, kSeat}));
    const Records rest(program.ScriptRecords.begin() + 1, program.ScriptRecords.end());
    EXPECT_EQ(rest, c.records);
    return;
  }
  records::ExpectRange(fault, c);
}

DistributeCase Bet(std::string words, std::vector<int> bets, int cornerBet = 1) {
  return DistributeCase{{"bet 5 on " + words}, BetFiveOn(Targets(bets, kOwnWagers)), cornerBet};
}

INSTANTIATE_TEST_SUITE_P(
    Families, CompileVariablesDistributeTest,
    testing::Values(
        // All six numbers, then inside (5, 6, 8, 9), then outside (4 and 10), of each family.
        Bet("lay bets", {1, 2, 3, 4, 5, 6}), Bet("inside lay bets", {2, 3, 4, 5}), Bet("outside lay bets", {1, 6}),
        Bet("dontcome bets", {7, 8, 9, 10, 11, 12}), Bet("inside dontcome bets", {8, 9, 10, 11}),
        Bet("outside dontcome bets", {7, 12}), Bet("dontcomeodds bets", {13, 14, 15, 16, 17, 18}),
        Bet("inside dontcomeodds bets", {14, 15, 16, 17}), Bet("outside dontcomeodds bets", {13, 18}),
        Bet("come bets", {19, 20, 21, 22, 23, 24}), Bet("inside come bets", {20, 21, 22, 23}),
        Bet("outside come bets", {19, 24}), Bet("comeodds bets", {25, 26, 27, 28, 29, 30}),
        Bet("inside comeodds bets", {26, 27, 28, 29}), Bet("outside comeodds bets", {25, 30}),
        Bet("place bets", {31, 32, 33, 34, 35, 36}), Bet("inside place bets", {32, 33, 34, 35}),
        Bet("outside place bets", {31, 36}), Bet("buy bets", {37, 38, 39, 40, 41, 42}),
        Bet("inside buy bets", {38, 39, 40, 41}), Bet("outside buy bets", {37, 42}),
        // The families without inside or outside forms.
        Bet("big bets", {50, 51}), Bet("hard bets", {53, 54, 55, 56}), Bet("hardway bets", {53, 54, 55, 56}),
        Bet("hop bets", Range(64, 80)), Bet("repeater bets", Range(98, 107)),
        // "bets" is every bet, Big 6 and Big 8 only when the corner holds them.
        Bet("bets", Range(1, 107)), Bet("bets", Range(1, 107, {50, 51}), 0), Bet("bets", Range(1, 107, {50, 51}), 2),
        Bet("bets", Range(1, 107, {50, 51}), 3),
        // "big bets" names them outright, whatever the corner.
        Bet("big bets", {50, 51}, 0)));

INSTANTIATE_TEST_SUITE_P(
    Pieces, CompileVariablesDistributeTest,
    testing::Values(
        // Written pieces go with every bet of the list.
        DistributeCase{{"bet 5 on outside place bets player4"},
                       BetFiveOn(Targets({31, 36}, {P(4), H(3), X(1), Y(34)}))},
        DistributeCase{{"cs1 = sum(wins last hand hard bets)"},
                       kCs1Is + Records{F(130), kOpen} + List({53, 54, 55, 56}, {P(kSeat), H(2), X(2), Y(29)}) +
                           Records{kClose, kEnd}},
        // Checkstacks and their names carry only the player.
        DistributeCase{{"cs1 = sum(checkstacks)"},
                       kCs1Is + Records{F(130), kOpen} + List(Range(200, 299), {P(kSeat)}) + Records{kClose, kEnd}},
        DistributeCase{{"cs1 = count(checkstack names player3)"},
                       kCs1Is + Records{F(131), kOpen} + List(Range(800, 899), {P(3)}) + Records{kClose, kEnd}},
        // Single bets and other group words are left as they are, next to a list.
        DistributeCase{{"bet 5 on field, inside place bets, hard6"},
                       BetFiveOn(Targets({49}, kOwnWagers) + Records{kComma} + Targets({32, 33, 34, 35}, kOwnWagers) +
                                 Records{kComma} + Targets({54}, kOwnWagers))},
        DistributeCase{{"cs1 = # points"}, kCs1Is + Records{V(4606), P(0), H(3), X(6), Y(0)}},
        // Two plural words in one statement, and one in each of two statements.
        DistributeCase{
            {"bet 5 on big bets player1, outside lay bets"},
            BetFiveOn(Targets({50, 51}, {P(1), H(3), X(1), Y(34)}) + Records{kComma} + Targets({1, 6}, kOwnWagers))},
        DistributeCase{
            {"bet 5 on big bets : remove outside buy bets"},
            BetFiveOn(Targets({50, 51}, kOwnWagers)) + Records{M(1, 20), A(460)} + Targets({37, 42}, kOwnWagers)},
        // A jump reaches its label where the longer list has put it.
        DistributeCase{{"goto \"x\"", "bet 5 on inside come bets", "\"x\""},
                       Records{M(1, 0), Op(kCodeGoto), S(32), M(2, 0), kBet, N(5), kOn} +
                           Targets({20, 21, 22, 23}, kOwnWagers) + Records{M(3, 0), L(2)}},
        // The range check still sees the plural word: distributing comes after it.
        DistributeCase{
            {"bet 5 on place bets thru place10"}, {}, 1, "Incompatible operand preceding 'thru'.", 1, 0, 1, 32}));

// The pass alone, on organised records: the corner decides only for "bets".
TEST(CompileVariablesDistribute, LeavesBigBetsOutOfBetsOnlyWhenAsked) {
  const Records pieces = {P(1), H(1), X(2), Y(29)};
  for (const bool big : {true, false}) {
    Records records = Records{Head(1), M(1, 0), kBet, N(1), kOn, V(4100)} + pieces;
    CompileVariablesDistribute(records, big);
    const Records expected =
        Records{Head(1), M(1, 0), kBet, N(1), kOn} + List(big ? Range(1, 107) : Range(1, 107, {50, 51}), pieces);
    EXPECT_EQ(records, expected) << "big bets offered: " << big;
  }
}

TEST(CompileVariablesDistribute, ScriptWithoutPluralWordsIsUnchanged) {
  const Records records = {Head(1), M(1, 0), V(201), P(1),    Op(50), V(50), P(1), H(3),
                           X(1),    Y(34),   Op(65), V(4505), P(1),   H(3),  X(0), Y(0)};
  Records copy = records;
  CompileVariablesDistribute(copy, false);
  EXPECT_EQ(copy, records);
}

}  // namespace
