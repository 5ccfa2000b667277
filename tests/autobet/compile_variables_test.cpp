#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "autobet/compiler.h"
#include "stats/statistics.h"
#include "tests/autobet/records.h"

namespace {

constexpr int kSeat = 3;  // the compiled seat: the owner of references that name no player

using namespace records;

// "cs1 = ..." starts every expression case: checkstack 1 of the owner, then the operator.
std::vector<TokenRecord> Cs1Is(std::vector<TokenRecord> rest) {
  std::vector<TokenRecord> out = {M(1, 0), Vt(201), P(kSeat), kEq};
  out.insert(out.end(), rest.begin(), rest.end());
  return out;
}

struct OrganiseCase {
  std::vector<std::string> lines;
  std::vector<TokenRecord> records;  // everything after the header
};

std::ostream& operator<<(std::ostream& os, const OrganiseCase& c) { return records::PrintScript(os, c.lines); }

class CompileVariablesOrganizeTest : public testing::TestWithParam<OrganiseCase> {};

TEST_P(CompileVariablesOrganizeTest, GroupsReferences) {
  const OrganiseCase& c = GetParam();
  AutoBetProgram program;
  program.ScriptSource[kSeat] = c.lines;
  const std::vector<std::string> names = {"", "Ann"};
  ASSERT_EQ(CompileAutobets(program, kSeat, names).message, "");
  EXPECT_EQ(program.ScriptRecords.front(), Head(kSeat));
  EXPECT_EQ(std::vector<TokenRecord>(program.ScriptRecords.begin() + 1, program.ScriptRecords.end()), c.records);
}

INSTANTIATE_TEST_SUITE_P(
    References, CompileVariablesOrganizeTest,
    testing::Values(  // A bet alone: the owner's current amount in this session.
        OrganiseCase{{"cs1 = passline"}, Cs1Is({V(43), P(kSeat), H(3), X(1), Y(34)})},
        // Wins are measured on the last roll.
        OrganiseCase{{"cs1 = wins passline"}, Cs1Is({V(43), P(kSeat), H(3), X(2), Y(29)})},
        // Pieces in any order, each written one kept.
        OrganiseCase{{"cs1 = total wins last session field player2"}, Cs1Is({V(49), P(2), H(4), X(2), Y(0)})},
        OrganiseCase{{"cs1 = player2 field last hand losses"}, Cs1Is({V(49), P(2), H(2), X(3), Y(29)})},
        // Shooter and the like stay as run-time players inside a group.
        OrganiseCase{{"cs1 = field shooter"}, Cs1Is({V(49), P(10), H(3), X(1), Y(34)})},
        // "# rolls since last" with a bet measures the bet, in either order and either form.
        OrganiseCase{{"cs1 = # rolls since last hard6"}, Cs1Is({V(54), P(kSeat), H(3), X(1), Y(27)})},
        OrganiseCase{{"cs1 = hard6 wins # rolls since last"}, Cs1Is({V(54), P(kSeat), H(3), X(2), Y(27)})},
        OrganiseCase{{"cs1 = hard(6) # rolls since last"},
                     Cs1Is({F(9), kOpen, N(6), kClose, P(kSeat), H(3), X(1), Y(27)})},
        // Alone it is the dice statistic of the owner.
        OrganiseCase{{"cs1 = # rolls since last"}, Cs1Is({V(4505), P(kSeat), H(3), X(0), Y(0)})},
        // Expected value is known of the net %.
        OrganiseCase{{"cs1 = expected value passline"}, Cs1Is({V(43), P(kSeat), H(3), X(5), Y(32)})},
        OrganiseCase{{"cs1 = expected value net passline"}, Cs1Is({V(43), P(kSeat), H(3), X(4), Y(32)})},
        // Group sizes by V number, with the table-wide counters counting every seat.
        OrganiseCase{{"cs1 = bankroll"}, Cs1Is({V(1301), P(kSeat), H(3)})},
        OrganiseCase{{"cs1 = hrs last session"}, Cs1Is({V(1200), P(0), H(4)})},
        OrganiseCase{{"cs1 = # passes"}, Cs1Is({V(2602), P(0), H(3), Y(34)})},
        OrganiseCase{{"cs1 = # hands last session"}, Cs1Is({V(1500), P(0), H(4)})},
        OrganiseCase{{"cs1 = # rolls since last all sessions"}, Cs1Is({V(4505), P(kSeat), H(5), X(0), Y(0)})},
        OrganiseCase{{"cs1 = # points player2"}, Cs1Is({V(4606), P(2), H(3), X(6), Y(0)})},
        OrganiseCase{{"cs1 = answer"}, Cs1Is({V(5697)})},
        // Functions carry their pieces after the argument; the argument is organised first.
        OrganiseCase{{"bet 5 on place(cs1) player2"},
                     {M(1, 0), A(481), N(5), Op(57), Ft(6), kOpen, V(201), P(kSeat), kClose, P(2), H(3), X(1), Y(34)}},
        OrganiseCase{{"cs1 = # rolls(12) 11 dice totals"},
                     Cs1Is({F(28), kOpen, N(12), kClose, P(0), H(3), X(30), Y(29)})},
        OrganiseCase{{"cs1 = # rolls(8)"}, Cs1Is({F(28), kOpen, N(8), kClose, P(0), H(3), X(0), Y(34)})},
        OrganiseCase{{"cs1 = % points(6)"}, Cs1Is({F(47), kOpen, N(6), kClose, P(0), H(3), X(6), Y(0)})},
        OrganiseCase{{"cs1 = cs(2) player4"}, Cs1Is({F(21), kOpen, N(2), kClose, P(4)})},
        OrganiseCase{{"cs1 = sum(passline, field shooter)"},
                     Cs1Is({F(130), kOpen, V(43), P(kSeat), H(3), X(1), Y(34), kComma, V(49), P(10), H(3), X(1), Y(34),
                            kClose, kEnd})},
        // A player word standing alone is a value: a seat, or who holds a role now.
        OrganiseCase{{"cs1 = player2 + ann"}, Cs1Is({N(2), Op(65), N(2)})},
        OrganiseCase{{"cs1 = shooter * autobettor"}, Cs1Is({V(5200), Op(61), V(5204)})},
        OrganiseCase{{"cs1 = original shooter"}, Cs1Is({V(5202)})},
        // Every statement is organised on its own.
        OrganiseCase{{"cs1 = passline : cs2 = field player1", "", "bet 5 on hard6 shooter"},
                     {M(1, 0),  Vt(201), P(kSeat), kEq,    V(43),  P(kSeat), H(3), X(1), Y(34),
                      M(1, 17), Vt(202), P(kSeat), kEq,    V(49),  P(1),     H(3), X(1), Y(34),
                      M(3, 0),  A(481),  N(5),     Op(57), Vt(54), P(10),    H(3), X(1), Y(34)}},
        // Ranges keep every member's pieces.
        OrganiseCase{{"bet 5 on place4 thru place10 last hand"},
                     {M(1, 0), A(481), N(5), Op(57), Vt(31), P(kSeat), H(3), X(1), Y(34), Op(kCodeThru), V(36),
                      P(kSeat), H(2), X(1), Y(34)}},
        // Dice selections: A scratch script belongs to the seat selected in the editor; with none, a wager has no
        // owner. A number right after X30..X34 selects a total, combination or face: the Y piece of the dice statistic
        // holds its roll kind (0, the default, counts all rolls).
        OrganiseCase{{"cs1 = # rolls die1 face3"}, Cs1Is({V(4504), P(kSeat), H(3), X(33), Y(kDie1Kind + 3)})},
        OrganiseCase{{"cs1 = # rolls die2 faces 6"}, Cs1Is({V(4504), P(kSeat), H(3), X(34), Y(kDie2Kind + 6)})},
        OrganiseCase{{"cs1 = % prob 11 dice totals 7"}, Cs1Is({V(4501), P(kSeat), H(3), X(30), Y(7)})},
        // The 21 combinations in either order, the 36 in die order.
        OrganiseCase{{"cs1 = # rolls 21 combo 3.1"}, Cs1Is({V(4504), P(kSeat), H(3), X(31), Y(26)})},
        OrganiseCase{{"cs1 = # rolls 21 combo 1.3"}, Cs1Is({V(4504), P(kSeat), H(3), X(31), Y(26)})},
        OrganiseCase{{"cs1 = # rolls 21 combo 2.2"}, Cs1Is({V(4504), P(kSeat), H(3), X(31), Y(13)})},
        OrganiseCase{{"cs1 = # rolls 36 combo 3.1"}, Cs1Is({V(4504), P(kSeat), H(3), X(32), Y(25)})},
        // The run goes on past the selection, and may start with it.
        OrganiseCase{{"cs1 = # rolls since last die1 face1 all sessions player2"},
                     Cs1Is({V(4505), P(2), H(5), X(33), Y(kDie1Kind + 1)})},
        OrganiseCase{{"cs1 = 11 dice totals 12 # rolls + 1"},
                     Cs1Is({V(4504), P(kSeat), H(3), X(30), Y(12), Op(65), N(1)})},
        OrganiseCase{{"cs1 = # rolls 11 dice totals total"}, Cs1Is({V(4504), P(kSeat), H(3), X(30), Y(0)})}));

// One case of each message is in compile_messages_test.cpp; these are the further ones.
INSTANTIATE_TEST_SUITE_P(
    OrganizeFaults, CompileScriptTest,
    testing::Values(  // Organize faults:
        Refused("cs1 = # rolls since last # rolls", "Ambiguous variable references"),
        Refused("cs1 = total high wins passline", "Ambiguous variable modifiers"),
        Refused("cs1 = # rolls since last hard6 working", "Ambiguous variable modifiers"),
        // Inside brackets too.
        Refused("bet 5 on place(cs1 cs2)", "Ambiguous variable references"),
        Refused("cs1 = sum(field, passline player1 shooter)", "Ambiguous player references"),
        // Counters of whole hands, and rolls since a total, exist only over longer scopes.
        Refused("cs1 = most rolls in a hand last hand",
                "'Most rolls in a hand' only applies to\ncurrent session, last session, or all sessions.\n"
                "Ambiguous variable references."),
        Refused("cs1 = # rolls since last(6) last session",
                "'# of rolls since last' only applies to\ncurrent session or all sessions.\n"
                "Ambiguous variable references."),
        // Pieces the variable does not take, and pieces with no variable.
        Refused("cs1 = cs2 last session", "Ambiguous variable references"),
        Refused("cs1 = answer player2", "Ambiguous variable references"),
        Refused("cs1 = # passes wins", "Ambiguous variable references"),
        Refused("cs1 = passline 11 dice totals", "Ambiguous variable references"),
        Refused("cs1 = abs(cs2) player2", "Ambiguous variable references"),
        Refused("cs1 = player2 last session", "Ambiguous variable references"),
        Refused("cs1 = wins", "Ambiguous variable references"),
        // Written rolls outside what the statistic counts.
        Refused("cs1 = # rolls(6.7) 21 combo", "Reference to rolls out of limits."),
        Refused("cs1 = % rolls(1) 36 combo", "Reference to rolls out of limits."),
        Refused("cs1 = # rolls(7) die1 faces", "Reference to rolls out of limits."),
        // The range is the statement, not the line.
        Faulty({"cs1 = 1", "cs1 = 2 : cs2 = passline field : cs3 = 3"}, "Ambiguous variable references", 2, 10, 2, 30),
        // Dice selection organize faults:
        Refused("cs1 = # rolls 11 dice totals 13", "Reference to rolls out of limits."),
        Refused("cs1 = # rolls 11 dice totals 1", "Reference to rolls out of limits."),
        Refused("cs1 = # rolls 11 dice totals 6.5", "Reference to rolls out of limits."),
        Refused("cs1 = # rolls 21 combo 1.7", "Reference to rolls out of limits."),
        Refused("cs1 = # rolls 21 combo 13", "Reference to rolls out of limits."),
        Refused("cs1 = # rolls 36 combo 0.5", "Reference to rolls out of limits."),
        Refused("cs1 = # rolls die1 faces 7", "Reference to rolls out of limits."),
        Refused("cs1 = # rolls die2 faces 0", "Reference to rolls out of limits."),
        // The selection is the Y piece: no second one, and only dice statistics take it.
        Refused("cs1 = # rolls die1 face3 total", "Ambiguous variable modifiers"),
        Refused("cs1 = # rolls naturals", "Ambiguous variable references"),
        Refused("cs1 = # points 11 dice totals 6", "Ambiguous variable references"),
        Refused("cs1 = # rolls(7) 11 dice totals 7", "Ambiguous variable references"),
        Refused("cs1 = die1 face3", "Ambiguous variable references")));

TEST(CompileVariablesOrganizeScratch, TheSelectedSeatOwnsAScratchScript) {
  AutoBetProgram program;
  program.ScriptSource[0] = {"cs1 = passline"};
  program.SelectedSeat = 4;
  ASSERT_FALSE(CompileAutobets(program, 0, {}).Failed());
  EXPECT_EQ(program.ScriptRecords[3], P(4));
  EXPECT_EQ(program.ScriptRecords[6], P(4));
}

TEST(CompileVariablesOrganizeScratch, WagersWithNoSingleOwnerAreRefused) {
  AutoBetProgram program;
  program.ScriptSource[0] = {"cs1 = wins passline player2 + place bets"};
  const CompileFault fault = CompileAutobets(program, 0, {});
  EXPECT_EQ(fault.message,
            "Wagers must be referenced by individual players.  If all players are desired then include the "
            "separate players in an expression or function.  For example, \n"
            "Expression: passline player1 + passline player2\n"
            "Function: sum(passline player4, passline player6)");
  EXPECT_EQ(fault.firstLine, 1);
  // Wins need no single owner, nor do wagers that name one.
  program.ScriptSource[0] = {"cs1 = wins passline + sum(place bets player2)"};
  EXPECT_FALSE(CompileAutobets(program, 0, {}).Failed());
}

// Called directly, the pass leaves the header and everything between references alone.
TEST(CompileVariablesOrganizeDirect, KeepsDelimitersAndBracketValues) {
  std::vector<TokenRecord> records = {
      Head(2), M(1, 0), Jump(kCodeListKind, 2), kOpen, N(4), kComma, V(33), kClose, kEnd, Op(71), S(1)};
  const std::vector<std::string> lines = {"any(4, place6) and \"x\""};
  ASSERT_FALSE(CompileVariablesOrganize(records, lines, 2).Failed());
  const std::vector<TokenRecord> expected = {
      Head(2), M(1, 0), Jump(kCodeListKind, 2), kOpen, N(4), kComma, V(33), P(2), H(3), X(1), Y(34), kClose, kEnd,
      Op(71),  S(1)};
  EXPECT_EQ(records, expected);
}

TEST(CompileVariablesOrganizeDirect, AFaultLeavesTheRecordsAsTheyWere) {
  std::vector<TokenRecord> records = {Head(1), M(1, 0), V(43), V(49)};
  const std::vector<TokenRecord> before = records;
  const std::vector<std::string> lines = {"passline field"};
  const CompileFault fault = CompileVariablesOrganize(records, lines, 1);
  EXPECT_EQ(fault.message, "Ambiguous variable references");
  EXPECT_EQ(records, before);
}

}  // namespace
