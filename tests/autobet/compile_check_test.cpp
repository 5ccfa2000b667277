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
    WellFormed, CompileScriptTest,
    testing::Values(Ok({"cs1 = 5"}), Ok({"cs1 = cs2 * (3 + -cs3) ^ 2 mod 4"}), Ok({"csn1 = \"a\" & cs2 & \"b\""}),
                    Ok({"cs1 = -5"}), Ok({"cs1 = 5 / 2 \\ 1"}), Ok({"csn(cs1) = left$(\"abc\", 2)"}),
                    Ok({"cs1 = sum(passline, field, > 5, place bets)"}), Ok({"cs1 = count(lay4 thru lay6)"}),
                    Ok({"If passline > 0 And not field = 5 Or cs1 <> 2 Then", "EndIf"}),
                    Ok({"If dice total = any[4,5,6,8,9,10] Then", "EndIf"}),
                    Ok({"If any(big6, field, checkstacks) Then : EndIf"}), Ok({"If point is established Then : EndIf"}),
                    Ok({"If cs1 = true Then : EndIf"}), Ok({"If", "cs1 > 1", "cs2 > 1", "Then", "EndIf"}),
                    Ok({"bet 5 on field"}), Ok({"bet cs1 * 2 on passline, > 5, place bets"}), Ok({"add 1 to cs1"}),
                    Ok({"subtract 1 from cs1 thru cs3"}), Ok({"clear field"}), Ok({"call off place bets"}),
                    Ok({"swap cs1, cs2"}), Ok({"buy the place bet on place10"}),
                    Ok({"buy the place bet on > 10, place bets"}), Ok({"buy the place bet on place(cs1) player2"}),
                    Ok({"show message \"Hello \" & cs1"}), Ok({"pass the dice"}),
                    Ok({"start new session(preserve checkstacks)"}), Ok({"\"top\"", "GoTo \"top\""}),
                    Ok({"Do : ExitDo : Loop"}), Ok({"\"x\"", "GoSub \"x\" : Return"}),
                    Ok({"If 2 > 1 Then GoTo \"x\"", "EndIf", "\"x\""}), Ok({"cs1 = sqr(4) + int(cs2) + len(\"ab\")"}),
                    Ok({"buy the place bet on place6 current hand"}),
                    // Each function takes its own number of arguments; a list may qualify what follows.
                    Ok({"cs1 = pvalue(cs1, cs2) + round(cs3) + round(cs3, .5) + round(cs3, .5, -1)"}),
                    Ok({"csn1 = mid$(\"abc\", 2, 1) & insert$(\"ac\", 2, \"b\") & string$(3, \"x\")"}),
                    Ok({"cs1 = instr(1, \"abc\", \"b\") + sum(> 5, < 10, place bets) + count(> 0, field)"})));

INSTANTIATE_TEST_SUITE_P(
    Conditions, CompileScriptTest,
    testing::Values(Faulty({"If", "Then", "EndIf"}, "Missing expression between IF and THEN.", 1, 0, 1, 2),
                    Faulty({"If \"a\" & \"b\" Then : EndIf"}, "Result not true or false.", 1, 3, 1, 12),
                    Faulty({"If (cs1, cs2) Then : EndIf"}, "Result not true or false.", 1, 3, 1, 13),
                    Faulty({"If 1 > 0 Then : ElseIf csn1 & \"x\" Then : EndIf"}, "Result not true or false.", 1, 23, 1,
                           33)));

INSTANTIATE_TEST_SUITE_P(Jumps, CompileScriptTest,
                         testing::Values(Faulty({"\"a\"", "GoSub \"a\" + 1"}, kGoto, 2, 0, 2, 13)));

INSTANTIATE_TEST_SUITE_P(
    Expressions, CompileScriptTest,
    testing::Values(Ok({"5"}),  // a lone number is a label, not an expression
                    Faulty({"5 + 1"}, "Improper assignment or expression.", 1, 0, 1, 5),
                    Faulty({"cs1 = "}, "Missing operand.", 1, 0, 1, 5),
                    Faulty({"cs1 = * 5"}, "Missing operand.", 1, 0, 1, 9),
                    Faulty({"cs1 = 1 - csn2"}, "Improper use of arithmetic operator.", 1, 0, 1, 14),
                    Faulty({"cs1 = cs2 mod 0"}, "Unable to perform requested math.", 1, 0, 1, 15),
                    Faulty({"csn1 = \"a\" &"}, "Missing operand.", 1, 0, 1, 12),
                    Faulty({"If > 1 Then : EndIf"}, "Improper use of relational operator", 1, 3, 1, 6),
                    Faulty({"If (cs1, cs2) > 1 Then : EndIf"}, "Improper use of relational operator", 1, 3, 1, 17),
                    Faulty({"If not (cs1, cs2) Then : EndIf"}, "Improper argument for NOT operation.", 1, 3, 1, 17)));

INSTANTIATE_TEST_SUITE_P(
    Functions, CompileScriptTest,
    testing::Values(Faulty({"csn1 = left$(\"abc\", 1, 2)"}, "Too many expressions in Left$", 1, 0, 1, 25),
                    Faulty({"cs1 = round(cs1, 2, 1, 3)"}, "Too many expressions in Round", 1, 0, 1, 25),
                    Faulty({"cs1 = # rolls(4, 5)"}, "Too many expressions in # of rolls", 1, 0, 1, 19),
                    Faulty({"cs1 = pvalue(cs1)"}, "Missing or improper arguments.", 1, 0, 1, 17),
                    Faulty({"csn1 = mid$(\"abc\", 2)"}, "Missing or improper arguments.", 1, 0, 1, 21),
                    Faulty({"cs1 = instr(\"abc\", \"b\")"}, "Missing or improper arguments.", 1, 0, 1, 23),
                    // Qualifiers, ranges and lists only make sense to the list functions.
                    Faulty({"cs1 = round(> 1)"}, "Inappropriate expression in Round", 1, 0, 1, 16),
                    Faulty({"cs1 = abs(cs1 thru cs3)"}, "Inappropriate expression in Abs", 1, 0, 1, 23),
                    Faulty({"cs1 = sqr((1, 2))"}, "Inappropriate expression in Sqr", 1, 0, 1, 17),
                    Faulty({"bet 5 on place(cs1 thru cs3)"}, "Inappropriate expression in Place", 1, 0, 1, 28),
                    // A qualifier with nothing after it to pass.
                    Faulty({"cs1 = sum(passline, > 5)"}, "Missing or inappropriate expression in Sum", 1, 0, 1, 24),
                    Faulty({"cs1 = count(> 5, > 6)"}, "Missing or inappropriate expression in Count", 1, 0, 1, 21)));

INSTANTIATE_TEST_SUITE_P(Lists, CompileScriptTest,
                         testing::Values(Faulty({"bet 5 on > , field"}, kListQualifier, 1, 0, 1, 18),
                                         Faulty({"cs1 = sum((1, 2))"}, "Inappropriate expression in list.", 1, 0, 1,
                                                17)));

INSTANTIATE_TEST_SUITE_P(
    Actions, CompileScriptTest,
    testing::Values(Faulty({"bet on field"}, "Missing operand.", 1, 0, 1, 12),
                    Faulty({"bet 5 field"}, "Improper assignment or expression.", 1, 0, 1, 11),
                    Faulty({"bet 5 on"}, "Missing operand.", 1, 0, 1, 8),
                    Faulty({"bet 5 on 6"}, "Improper assignment or expression.", 1, 0, 1, 10),
                    Faulty({"clear"}, "Missing operand.", 1, 0, 1, 5),
                    Faulty({"swap cs1, cs2, cs3"}, "The swap command only works with two variables at a time.", 1, 0, 1,
                           18),
                    Faulty({"swap cs1, 5"}, "The swap command only works with two variables at a time.", 1, 0, 1, 11),
                    Faulty({"buy the place bet on"}, kBuyPlace, 1, 0, 1, 20),
                    Faulty({"buy the place bet on place(6) last session"},
                           "You can only buy bets in the current hand or current session.", 1, 0, 1, 42),
                    Faulty({"pass the dice 5"}, "Unable to resolve expression.", 1, 0, 1, 15),
                    Faulty({"show message (1, 2)"}, "Improper use of list.", 1, 0, 1, 19)));

}  // namespace
