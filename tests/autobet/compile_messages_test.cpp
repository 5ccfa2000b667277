// One small script for every message the compiler can give, pass by pass, with the range
// the user is shown. The passes' own tests hold the further cases of each message; a
// message belongs here once, so that a new message without a script stands out.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "autobet/compiler.h"
#include "tests/autobet/records.h"

namespace {

using namespace records;

TEST_P(CompileScriptTest, GivesTheFirstFaultOverItsRangeAndKeepsNothingOrCompiles) {
  const ScriptCase& c = GetParam();
  AutoBetProgram program;
  program.ScriptSource[c.seat] = c.lines;
  const std::vector<std::string> names = {"Ann", "", "", "", "", "", "", ""};
  const CompileFault fault = CompileAutobets(program, c.seat, names);
  EXPECT_EQ(fault.message, c.message);
  if (std::string(c.message).empty()) {
    ASSERT_FALSE(program.ScriptRecords.empty());
    EXPECT_EQ(program.ScriptRecords[0], Head(c.seat));
    EXPECT_EQ(program.ReturnStack.size(), 21u);
    return;
  }
  ExpectRange(fault, c);
  EXPECT_TRUE(program.ScriptRecords.empty());
  EXPECT_TRUE(program.ScriptStrings.empty());
}

INSTANTIATE_TEST_SUITE_P(
    EveryMessage, CompileScriptTest,
    testing::Values(  // Tokeniser: it points at the word it could not read.
        Faulty("x = \"a\" & \"b", "Missing quotation mark.", 10, 12),
        Faulty({"", "Bet 5 on the Feild"}, "Unknown or misplaced element:\nFeild", 2, 13, 2, 18),
        Faulty("if wins session field > 0 then", "Please specify:\ncurrent session, last session, or all sessions.", 8,
               15),
        Faulty("if wins hand field > 0 then", "Please specify:\ncurrent hand, last hand, or all hands.", 8, 12),
        Faulty("bet 5 on field playername",
               "Unknown player\nPlease enter actual name of player or refer to player's position such as player1, "
               "player2, etc.",
               15, 25),
        // Misc:
        Faulty("bet 5 on (field", "Missing or improperly placed parenthesis.", 9, 15),
        Refused("bet 5 on lay", "Missing or inappropriate reference to Lay bet."),
        Refused("cs1 = sum", "Missing or inappropriate reference to Sum."),
        Faulty({"if any field then", "endif"},
               "Lists defined by \"Any\" must be enclosed in brackets.\nFor example:\n"
               "      Any(Big6, Field, Checkstacks)\n      Any[4,5,6,8,9,10]",
               1, 3, 1, 12),
        Faulty({"if all [field] and all place6 then", "endif"},
               "Lists defined by \"All\" must be enclosed in brackets.\nFor example:\n"
               "      All(inside place bets)\n      All[Field, PassLine, Hard4]",
               1, 3, 1, 29),
        Faulty({"\"Start\"", "bet 5 on field", "\"start \""}, "A duplicate label exists in line 1", 3, 0, 3, 8),
        Faulty({"100", "bet 5 on field", "100.0"}, "A duplicate line number exists in line 1", 3, 0, 3, 5),
        // Variables organize:
        Refused("cs1 = passline field", "Ambiguous variable references"),
        Refused("cs1 = passline player1 player2", "Ambiguous player references"),
        Refused("cs1 = passline last hand last session", "Ambiguous hand references"),
        Refused("cs1 = wins losses passline", "Ambiguous variable modifiers"),
        ScriptCase({"bet 5 on field"},
                   "Wagers must be referenced by individual players.  If all players are desired then include the "
                   "separate players in an expression or function.  For example, \n"
                   "Expression: passline player1 + passline player2\n"
                   "Function: sum(passline player4, passline player6)",
                   1, 0, 1, 14, 0),
        Refused("cs1 = total $ wagers field",
                "Ambiguous variable references\n'Total' only applies to resolved wagers."),
        Refused("cs1 = high passline", "Ambiguous variable references\n'High' only applies to resolved wagers."),
        Refused("cs1 = low $ field", "Ambiguous variable references\n'Low' only applies to resolved wagers."),
        Refused("cs1 = avg $ passline", "Ambiguous variable references\n'Average' only applies to resolved wagers."),
        Refused("cs1 = # rolls since last net passline",
                "Ambiguous variable references\n'# rolls since last' only applies to wagers, wins, and losses."),
        Refused("cs1 = expected value wins passline",
                "Ambiguous variable references\n'Expected value' only available as net or net %"),
        Refused("cs1 = working passline last session", "'Working' only applies to current hand or session."),
        Refused("cs1 = called on place6 last hand", "'Called on' only applies to current hand or session."),
        Refused("cs1 = called off place6 all sessions", "'Called off' only applies to current hand or session."),
        Refused("cs1 = vig buy4 last hand", "'Vig' only applies to current hand or session."),
        Refused("cs1 = autowork on comeout roll place6 last session",
                "'Work on comeout roll' only applies to current hand or session."),
        Refused("cs1 = prior wins passline", "'Prior' only applies to tendered wagers."),
        Refused("cs1 = prior passline last session",
                "'Prior' only applies to current hand, current session, or all sessions."),
        Refused("cs1 = current losses passline", "'Current' only applies to tendered wagers."),
        Refused("cs1 = current $ passline last hand",
                "'Current' only applies to\ncurrent hand, current session, or all sessions."),
        Refused("cs1 = # hands current hand",
                "'# hands' only applies to\ncurrent session, last session, or all sessions.\n"
                "Ambiguous variable references."),
        Refused("cs1 = # rolls since last last hand",
                "'# of rolls since last' only applies to\ncurrent session or all sessions.\n"
                "Ambiguous variable references."),
        Refused("cs1 = # rolls(13) 11 dice totals", "Reference to rolls out of limits."),
        // Thru:
        Refused("bet 5 on place4 thru", "Missing operand following 'thru'."),
        Refused("bet 5 on place4 thru 6", "Missing or incompatible operand following 'thru'."),
        Refused("bet 5 on place4 thru field", "Incompatible operand following 'thru'."),
        Faulty({"cs1 = 1", "thru place6"}, "Missing operand preceding 'thru'.", 2, 0, 2, 11),
        Refused("bet 5 on thru place6", "Missing or incompatible operand preceding 'thru'."),
        Refused("bet 5 on passline thru place6", "Incompatible operand preceding 'thru'."),
        Refused("bet 5 on lay4 thru place6",
                "Incompatible operands surrounding 'thru'.\n"
                "Variables to the left and right of 'thru' should be similar bet types, checkstacks, or checkstack "
                "names.\nFor example:\n     Lay4 thru Lay6\n     cs5 thru cs10\n     DontComeOdds5 thru DontComeOdds9"),
        // Convert to action:
        Faulty({"If \"abc\" Then", "EndIf"},
               "Improper placement of label.\nLabels cannot appear within condition statements (between If and Then).",
               1, 3, 1, 8),
        Refused("passline last session = 5",
                "Unable to set the value of a bet that's not in the current hand or session."),
        Refused("wins passline = 5", "Only able to set the value of current wagers."),
        Refused("last roll $ passline = 5", "Only able to set the current $ value of a bet."),
        Refused("point = 6", "Point is a read-only variable and cannot be assigned a value."),
        Refused("sum(cs1) = 5", "Sum is a read-only function and cannot be assigned a value."),
        // Logic:
        Faulty("If 2 > 1 If", "IF out of position.", 9, 11), Faulty("cs1 = 1 Then", "THEN out of position.", 8, 12),
        Refused("Else", "Expected THEN before ELSE."), Faulty("ElseIf 2 > 1 Then", "ELSEIF out of position.", 0, 6),
        Faulty({"If 2 > 1 Then", "Else", "ElseIf 3 > 1 Then", "EndIf"},
               "ELSEIF out of position.\nCannot be placed after ELSE within the same IF/THEN statement.", 3, 0, 3, 6),
        Faulty("If 2 > 1 EndIf", "Missing THEN between IF and ENDIF.", 9, 14),
        Faulty({"If 2 > 1 Then", "Do", "EndIf"}, "Missing or out of position LOOP statement.", 3, 0, 3, 5),
        Refused("EndIf", "Unassociated ENDIF."), Faulty("If 2 > 1 Do", "DO statement out of position.", 9, 11),
        Refused("Loop", "Missing DO statement or LOOP statement out of position."),
        Faulty({"Do : If 2 > 1 Then", "Loop"}, "ENDIF missing or out of position, or \nLOOP statement out of position.",
               2, 0, 2, 4),
        Refused("ExitDo", "EXIT DO statement outside of DO/LOOP."),
        Faulty({"Do", "If 2 > 1 ExitDo"}, "EXIT DO statement out of position.", 2, 9, 2, 15),
        Faulty({"If 2 > 1 GoTo \"x\"", "\"x\""}, "GOTO out of position.", 1, 3, 1, 17),
        Refused("GoTo", "GOTO missing reference."), Refused("GoTo cs1", "Improper reference after GOTO"),
        Faulty({"cs1 = 1 GoTo \"x\"", "\"x\""}, "GOTO here should be preceded with a colon :", 1, 0, 1, 16),
        Faulty({"\"x\"", "GoSub \"nowhere\""}, "Label \"nowhere\" not found.", 2, 0, 2, 15),
        Faulty("If 2 > 1", "Missing THEN statement.", 0, 2),
        Faulty({"If 1 < 2 Then", "If 2 > 1 Then", "EndIf"}, "Missing ENDIF statement.", 1, 0, 1, 2),
        Faulty({"Do", "Do : Loop"}, "Missing LOOP statement.", 1, 0, 1, 2),
        // Check: The shape check, family by family.
        // Conditions and GoTo.
        Faulty({"If Then", "EndIf"}, "Missing expression between IF and THEN.", 1, 0, 1, 2),
        Faulty("If cs1 + 1 Then : EndIf", "Result not true or false.", 3, 10),
        Faulty({"\"a\"", "GoTo \"a\" \"b\""},
               "Unable to resolve elements.\nThe GoTo command must be followed by the name of a single label. \n"
               "For example:\n      GoTo \"Make bets\"",
               2, 0, 2, 12),
        // Expressions.
        Refused("cs1 = 5 5", "Unable to resolve expression."), Refused("cs1 = 5 +", "Missing operand."),
        Refused("cs1", "Improper assignment or expression."),
        Refused("cs1 = \"a\" + 1", "Improper use of arithmetic operator."),
        Refused("cs1 = 5 / 0", "Unable to perform requested math."),
        Refused("csn1 = \"a\" & (cs1, cs2)", "Unable to concatenate elements."),
        Faulty("If cs1 > Then : EndIf", "Improper use of relational operator", 3, 8),
        Faulty("If not Then : EndIf", "Improper argument for NOT operation.", 3, 6),
        // Logic.
        Faulty("If and cs1 > 1 Then : EndIf", "Missing expression before logical AND", 3, 14),
        Faulty("If cs1 > 1 or Then : EndIf", "Missing expression after logical OR", 3, 13),
        Faulty("If (cs1, cs2) xor cs1 Then : EndIf", "Missing or inappropriate expression before logical XOR", 3, 21),
        Faulty("If cs1 > 1 and (cs1, cs2) Then : EndIf", "Missing or inappropriate expression after logical AND", 3,
               25),
        // Functions.
        Refused("cs1 = sqr()", "Missing argument."), Refused("cs1 = sqr(\"a\")", "Improper argument."),
        Refused("csn1 = left$(\"abc\")", "Missing or improper arguments."),
        Refused("cs1 = sqr(4 5)", "Improper expression in Sqr"), Refused("cs1 = abs(5 ,)", "Missing expression in Abs"),
        Refused("cs1 = sqr(4, 5)", "Too many expressions in Sqr"),
        Refused("cs1 = sqr(> 4)", "Inappropriate expression in Sqr"),
        Refused("cs1 = sum(> 5)", "Missing or inappropriate expression in Sum"),
        Refused("cs1 = sum(> \"a\", place bets)",
                "Missing or improper qualifier in Sum function.\nExpected qualifier format:\n"
                ">, <, or = followed by number or non-string variable"),
        // Lists.
        Faulty("If dice total = any(> , 4) Then : EndIf",
               "Improper qualifier in list.\nAcceptable qualifier format:\n"
               "    =, <>, <, >, <=, or >= followed by an expression.\n    > 5\n    = cs1 + 4",
               3, 26),
        Faulty("If any(cs1, , cs2) Then : EndIf", "Inappropriate expression in list.", 3, 18),
        Refused("cs1 = (1, 2)", "Improper use of list."),
        Refused("cs1 = any(cs2, cs3)",
                "Lists defined by the keyword \"Any\"\ncannot be used to set or modify variables."),
        Refused("bet 5 on all(place bets)",
                "Lists defined by the keyword \"All\"\ncannot be used to set or modify variables."),
        // Swap and buying.
        Refused("swap cs1", "The swap command only works with two variables at a time."),
        Refused("buy the place bet on field",
                "To buy Place bets, enter only:\n     Place bet names\n     Qualifiers (optional)\n"
                "     Players (optional)\nFor example:\n     Buy the Place bet on Place10\n"
                "     Buy the Place bet on Place4, Place5\n     Buy the Place bet on Place(cs1) player2\n"
                "     Buy the Place bet on > 10, Place bets"),
        Refused("buy the place bet on place6 last hand",
                "You can only buy bets in the current hand or current session.")));

}  // namespace
