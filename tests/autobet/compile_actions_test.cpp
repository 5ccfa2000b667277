#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "autobet/compiler.h"
#include "tests/autobet/records.h"

namespace {

constexpr int kSeat = 2;

using namespace records;

// Only the variable and function records, read or written, in order: what this pass decides.
std::vector<TokenRecord> References(const std::vector<TokenRecord>& records) {
  std::vector<TokenRecord> out;
  for (const TokenRecord& r : records)
    if (r.code == kCodeVariable || r.code == kCodeVariableTarget || r.code == kCodeFunction ||
        r.code == kCodeFunctionTarget)
      out.push_back(r);
  return out;
}

struct ActionCase {
  std::vector<std::string> lines;
  std::vector<TokenRecord> references;
};

std::ostream& operator<<(std::ostream& os, const ActionCase& c) { return records::PrintScript(os, c.lines); }

ActionCase Compiles(std::vector<std::string> lines, std::vector<TokenRecord> references) {
  return {std::move(lines), std::move(references)};
}

// The chain up to and including this pass, so that the cases do not depend on the
// checks of statement form that come after it.
CompileFault CompileUpToActions(const std::vector<std::string>& lines, std::vector<TokenRecord>& records) {
  std::vector<StringEntry> strings;
  CompileFault fault = TokeniseScript(kSeat, lines, std::vector<std::string>{}, records, strings);
  if (!fault.Failed()) fault = CompileMisc(records, strings, lines);
  if (!fault.Failed()) fault = CompileVariablesOrganize(records, lines, kSeat);
  if (!fault.Failed()) fault = CompileThru(records, lines);
  if (!fault.Failed()) CompileVariablesDistribute(records, true);
  if (!fault.Failed()) fault = CompileConvertToAction(records, lines);
  return fault;
}

class CompileConvertToActionTest : public testing::TestWithParam<ActionCase> {};

TEST_P(CompileConvertToActionTest, MarksWhatIsWritten) {
  const ActionCase& c = GetParam();
  std::vector<TokenRecord> records;
  EXPECT_EQ(CompileUpToActions(c.lines, records).message, "");
  EXPECT_EQ(References(records), c.references);
}

const char* const kLabelInCondition =
    "Improper placement of label.\nLabels cannot appear within condition statements (between If and Then).";

INSTANTIATE_TEST_SUITE_P(
    Written, CompileConvertToActionTest,
    testing::Values(  // Assignments: only the head of an assignment is written; the right side is read.
        Compiles({"cs1 = 5"}, {Vt(201)}), Compiles({"cs1 = cs2 + passline"}, {Vt(201), V(202), V(43)}),
        Compiles({"passline = passline + 5"}, {Vt(43), V(43)}),
        Compiles({"passline player4 current hand = 10"}, {Vt(43)}), Compiles({"passline current # = 10"}, {Vt(43)}),
        // Written functions: checkstacks and their names by number, and bets in numbered form.
        Compiles({"cs(2) = cs(3)"}, {Ft(21), F(21)}), Compiles({"csn(2) = \"Reserve\""}, {Ft(800)}),
        Compiles({"place(6) = 12"}, {Ft(6)}), Compiles({"csn5 = \"x\""}, {Vt(805)}),
        // Every setting that may be written.
        Compiles({"autohandle winning bets = \"parlay\""}, {Vt(670)}),
        Compiles({"autohandle losing bets = \"no bet\""}, {Vt(671)}),
        Compiles({"autotake full odds = true : autopass the dice = false"}, {Vt(700), Vt(703)}),
        Compiles({"beginning bankroll = 500 : bankroll = 500"}, {Vt(1300), Vt(1301)}),
        Compiles({"dice roll file next roll = 3"}, {Vt(5006)}), Compiles({"rolls per hr = 100"}, {Vt(5603)}),
        Compiles({"odds allowed factor4 = 3 : odds allowed factor10 = 3"}, {Vt(5612), Vt(5617)}),
        Compiles({"seed = 7 : comp rate = 1"}, {Vt(5655), Vt(5691)}),
        // "select rng" brings its own "=".
        Compiles({"select rng 2"}, {Vt(5672)}),
        // An "=" inside brackets does not make an assignment.
        Compiles({"cs1 (cs2 = 3)"}, {V(201), V(202)}),
        // Between IF and THEN an "=" compares, over as many statements as the condition has.
        Compiles({"If passline = 5 Then : cs1 = 1 : EndIf"}, {V(43), Vt(201)}),
        Compiles({"If cs1 = 1", "cs2 = 2", "Then", "cs3 = 3", "ElseIf point = 4 Then cs4 = 4", "EndIf"},
                 {V(201), V(202), Vt(203), V(5500), Vt(204)}),
        Compiles({"If point is established on 6 Then", "EndIf"}, {V(5500)}),
        // With no THEN to close the condition the label is left for the block linker.
        Compiles({"If cs1 > 1", "\"x\"", "cs2 = 2"}, {V(201), V(202)}),
        // Action targets:
        Compiles({"bet 5 on field"}, {Vt(49)}), Compiles({"bet cs1 on passline"}, {V(201), Vt(43)}),
        // The amount may hold brackets and commas of its own.
        Compiles({"bet sum(cs1, cs2) on field"}, {F(130), V(201), V(202), Vt(49)}),
        Compiles({"add cs1 to cs2"}, {V(201), Vt(202)}), Compiles({"subtract 5 from cs3"}, {Vt(203)}),
        Compiles({"multiply by 2 on hard6"}, {Vt(54)}), Compiles({"round up to the nearest 5 on cs1"}, {Vt(201)}),
        // A plural word writes each bet of its list.
        Compiles({"bet 5 on inside place bets"}, {Vt(32), Vt(33), Vt(34), Vt(35)}),
        // A qualifier is read; only the references after it are written.
        Compiles({"bet 5 on > 10, place4, place5"}, {Vt(31), Vt(32)}),
        Compiles({"bet 5 on = cs1 + 4, place(cs2)"}, {V(201), Ft(6), V(202)}),
        Compiles({"bet 5 on (field, passline)"}, {Vt(49), Vt(43)}),
        // A range writes from its left end; the right end only says how far.
        Compiles({"bet 5 on place4 thru place6"}, {Vt(31), V(33)}),
        // The verbs without an amount write from their first operand on.
        Compiles({"clear field, cs1"}, {Vt(49), Vt(201)}), Compiles({"call off place6"}, {Vt(33)}),
        Compiles({"buy the place bet on place4, place5"}, {Vt(31), Vt(32)}),
        // Buying outside the current scope has its own message, from the shape check.
        Compiles({"buy the place bet on place6 last hand"}, {Vt(33)}), Compiles({"swap cs1, cs2"}, {Vt(201), Vt(202)}),
        // Other statements write nothing.
        Compiles({"cs1 + 5"}, {V(201)}), Compiles({"bet 5 field"}, {V(49)})));

// One case of each message is in compile_messages_test.cpp; these are the further ones.
INSTANTIATE_TEST_SUITE_P(
    CompileReadOnlyRefusals, CompileScriptTest,
    testing::Values(
        Refused("point is established on 6", "Point is a read-only variable and cannot be assigned a value."),
        Refused("available bankroll = 5", "Available bankroll is a read-only variable and cannot be assigned a value."),
        Refused("# rolls since last = 2",
                "# of rolls since last is a read-only variable and cannot be assigned a value."),
        Refused("shooter = 2", "Shooter is a read-only variable and cannot be assigned a value."),
        Refused("high bankroll = 2", "High bankroll is a read-only variable and cannot be assigned a value."),
        Refused("script active = 0", "Script active is a read-only variable and cannot be assigned a value."),
        Refused("player name(2) = \"Al\"", "Player name is a read-only function and cannot be assigned a value."),
        Refused("odds allowed factor(6) = 3",
                "Odds allowed factor is a read-only function and cannot be assigned a value."),
        // A bet is only written as its amount now.
        Refused("passline all sessions = 5",
                "Unable to set the value of a bet that's not in the current hand or session."),
        Refused("place(6) last hand = 5",
                "Unable to set the value of a bet that's not in the current hand or session."),
        Refused("net place(6) = 5", "Only able to set the value of current wagers."),
        Refused("prior roll passline = 5", "Only able to set the current $ value of a bet."),
        // Target verbs refuse the same.
        Refused("bet 5 on passline last hand",
                "Unable to set the value of a bet that's not in the current hand or session."),
        Refused("add 5 to point", "Point is a read-only variable and cannot be assigned a value."),
        Refused("clear bankroll, # hands", "# hands is a read-only variable and cannot be assigned a value."),
        Refused("swap cs1, dice total", "Dice total is a read-only variable and cannot be assigned a value."),
        Refused("bet 5 on > 4, place bets, comps", "Comps is a read-only variable and cannot be assigned a value."),
        // The first statement at fault, and only its own range.
        Faulty({"cs1 = 1", "cs2 = 2 : die1 = 3 : point = 4"},
               "Die1 is a read-only variable and cannot be assigned a value.", 2, 10, 2, 18),
        // Labels cannot stand in a condition.
        Faulty({"If cs1 > 1", "100", "Then", "EndIf"}, kLabelInCondition, 2, 0, 2, 3),
        Faulty({"If cs1 > 1 Then", "ElseIf \"x\" Then", "EndIf"}, kLabelInCondition, 2, 7, 2, 10),
        Faulty({"If point = 6 Then point = 5", "EndIf"},
               "Point is a read-only variable and cannot be assigned a value.", 1, 18, 1, 27)));

// Outside a condition a label stands as before and the script compiles.
TEST(CompileConvertToAction, LabelsOutsideConditionsStay) {
  AutoBetProgram program;
  program.ScriptSource[kSeat] = {"\"Start\"", "If cs1 = 1 Then", "GoTo \"Start\"", "EndIf"};
  const CompileFault fault = CompileAutobets(program, kSeat, std::vector<std::string>{});
  EXPECT_EQ(fault.message, "");
  EXPECT_EQ(References(program.ScriptRecords), (std::vector<TokenRecord>{V(201)}));
}

}  // namespace
