#include <gtest/gtest.h>

#include "autobet/compiler.h"
#include "tests/autobet/records.h"

namespace {

using namespace records;

const char* const kGoto =
    "Unable to resolve elements.\nThe GoTo command must be followed by the name of a single label. \n"
    "For example:\n      GoTo \"Make bets\"";
const char* const kBuyPlace =
    "To buy Place bets, enter only:\n     Place bet names\n     Qualifiers (optional)\n     Players (optional)\n"
    "For example:\n     Buy the Place bet on Place10\n     Buy the Place bet on Place4, Place5\n"
    "     Buy the Place bet on Place(cs1) player2\n     Buy the Place bet on > 10, Place bets";
const char* const kListQualifier =
    "Improper qualifier in list.\nAcceptable qualifier format:\n"
    "    =, <>, <, >, <=, or >= followed by an expression.\n    > 5\n    = cs1 + 4";

// One case of each message is in compile_messages_test.cpp; these are the further ones.
INSTANTIATE_TEST_SUITE_P(
    Shapes, CompileScriptTest,
    testing::Values(  // Well formed:
        Ok({"cs1 = 5"}), Ok({"cs1 = cs2 * (3 + -cs3) ^ 2 mod 4"}), Ok({"csn1 = \"a\" & cs2 & \"b\""}), Ok({"cs1 = -5"}),
        Ok({"cs1 = 5 / 2 \\ 1"}), Ok({"csn(cs1) = left$(\"abc\", 2)"}),
        Ok({"cs1 = sum(passline, field, > 5, place bets)"}), Ok({"cs1 = count(lay4 thru lay6)"}),
        Ok({"If passline > 0 And not field = 5 Or cs1 <> 2 Then", "EndIf"}),
        Ok({"If dice total = any[4,5,6,8,9,10] Then", "EndIf"}), Ok({"If any(big6, field, checkstacks) Then : EndIf"}),
        Ok({"If point is established Then : EndIf"}), Ok({"If cs1 = true Then : EndIf"}),
        Ok({"If", "cs1 > 1", "cs2 > 1", "Then", "EndIf"}), Ok({"bet 5 on field"}),
        Ok({"bet cs1 * 2 on passline, > 5, place bets"}), Ok({"add 1 to cs1"}), Ok({"subtract 1 from cs1 thru cs3"}),
        Ok({"clear field"}), Ok({"call off place bets"}), Ok({"swap cs1, cs2"}), Ok({"buy the place bet on place10"}),
        Ok({"buy the place bet on > 10, place bets"}), Ok({"buy the place bet on place(cs1) player2"}),
        Ok({"show message \"Hello \" & cs1"}), Ok({"pass the dice"}), Ok({"start new session(preserve checkstacks)"}),
        Ok({"\"top\"", "GoTo \"top\""}), Ok({"Do : ExitDo : Loop"}), Ok({"\"x\"", "GoSub \"x\" : Return"}),
        Ok({"If 2 > 1 Then GoTo \"x\"", "EndIf", "\"x\""}), Ok({"cs1 = sqr(4) + int(cs2) + len(\"ab\")"}),
        Ok({"buy the place bet on place6 current hand"}),
        // Each function takes its own number of arguments; a list may qualify what follows.
        Ok({"cs1 = pvalue(cs1, cs2) + round(cs3) + round(cs3, .5) + round(cs3, .5, -1)"}),
        Ok({"csn1 = mid$(\"abc\", 2, 1) & insert$(\"ac\", 2, \"b\") & string$(3, \"x\")"}),
        Ok({"cs1 = instr(1, \"abc\", \"b\") + sum(> 5, < 10, place bets) + count(> 0, field)"}),
        // Conditions:
        Faulty({"If", "Then", "EndIf"}, "Missing expression between IF and THEN.", 1, 0, 1, 2),
        Faulty("If \"a\" & \"b\" Then : EndIf", "Result not true or false.", 3, 12),
        Faulty("If (cs1, cs2) Then : EndIf", "Result not true or false.", 3, 13),
        Faulty("If 1 > 0 Then : ElseIf csn1 & \"x\" Then : EndIf", "Result not true or false.", 23, 33),
        // Jumps:
        Faulty({"\"a\"", "GoSub \"a\" + 1"}, kGoto, 2, 0, 2, 13),
        // Expressions:
        Ok({"5"}),  // a lone number is a label, not an expression
        Refused("5 + 1", "Improper assignment or expression."), Faulty("cs1 = ", "Missing operand.", 0, 5),
        Refused("cs1 = * 5", "Missing operand."), Refused("cs1 = 1 - csn2", "Improper use of arithmetic operator."),
        Refused("cs1 = cs2 mod 0", "Unable to perform requested math."), Refused("csn1 = \"a\" &", "Missing operand."),
        Faulty("If > 1 Then : EndIf", "Improper use of relational operator", 3, 6),
        Faulty("If (cs1, cs2) > 1 Then : EndIf", "Improper use of relational operator", 3, 17),
        Faulty("If not (cs1, cs2) Then : EndIf", "Improper argument for NOT operation.", 3, 17),
        // Functions:
        Refused("csn1 = left$(\"abc\", 1, 2)", "Too many expressions in Left$"),
        Refused("cs1 = round(cs1, 2, 1, 3)", "Too many expressions in Round"),
        Refused("cs1 = # rolls(4, 5)", "Too many expressions in # of rolls"),
        Refused("cs1 = pvalue(cs1)", "Missing or improper arguments."),
        Refused("csn1 = mid$(\"abc\", 2)", "Missing or improper arguments."),
        Refused("cs1 = instr(\"abc\", \"b\")", "Missing or improper arguments."),
        // Qualifiers, ranges and lists only make sense to the list functions.
        Refused("cs1 = round(> 1)", "Inappropriate expression in Round"),
        Refused("cs1 = abs(cs1 thru cs3)", "Inappropriate expression in Abs"),
        Refused("cs1 = sqr((1, 2))", "Inappropriate expression in Sqr"),
        Refused("bet 5 on place(cs1 thru cs3)", "Inappropriate expression in Place"),
        // A qualifier with nothing after it to pass.
        Refused("cs1 = sum(passline, > 5)", "Missing or inappropriate expression in Sum"),
        Refused("cs1 = count(> 5, > 6)", "Missing or inappropriate expression in Count"),
        // Lists:
        Refused("bet 5 on > , field", kListQualifier),
        Refused("cs1 = sum((1, 2))", "Inappropriate expression in list."),
        // Actions:
        Refused("bet on field", "Missing operand."), Refused("bet 5 field", "Improper assignment or expression."),
        Refused("bet 5 on", "Missing operand."), Refused("bet 5 on 6", "Improper assignment or expression."),
        Refused("clear", "Missing operand."),
        Refused("swap cs1, cs2, cs3", "The swap command only works with two variables at a time."),
        Refused("swap cs1, 5", "The swap command only works with two variables at a time."),
        Refused("buy the place bet on", kBuyPlace),
        Refused("buy the place bet on place(6) last session",
                "You can only buy bets in the current hand or current session."),
        Refused("pass the dice 5", "Unable to resolve expression."),
        Refused("show message (1, 2)", "Improper use of list.")));

}  // namespace
