#include "autobet/compiler.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/autobet/records.h"

namespace {

using namespace records;

CompileFault CompileSeat(AutoBetProgram& program, const std::vector<std::string>& lines,
                         std::vector<std::string> names = {}) {
  program.ScriptSource[1] = lines;
  return CompileAutobets(program, 1, names);
}

const char* const kSurroundingMessage =
    "Incompatible operands surrounding 'thru'.\n"
    "Variables to the left and right of 'thru' should be similar bet types, checkstacks, or checkstack names.\n"
    "For example:\n     Lay4 thru Lay6\n     cs5 thru cs10\n     DontComeOdds5 thru DontComeOdds9";

// Messages of the shape check.
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
    FurtherCases, CompileScriptTest,
    testing::Values(  // Misc and thru:
                      // Scripts that pass every pass in the chain.
        Ok({"Bet 5 on Field"}), Ok({"If PassLine > 0 Then Bet 10 on Place6", "EndIf"}),
        ScriptCase{{"cs1 = sum(passline, highest[field, 2]) + round{cs2}"}, ""},
        Ok({"if any(big6, field) and all[place6, place8] then", "endif"}),
        Ok({"\"Make bets\"", "", "100", "bet 5 on field ' \"Make bets\""}),
        Ok({"bet 5 on place4 thru place10", "bet 5 on Lay(4) thru Lay(6)", "cs5 thru cs10 = 0"}),
        Ok({"bet 5 on csn5 thru csn(9)", "bet 5 on place(cs1) player2 thru place10"}),
        Ok({"show message \"(\" & \")\""}),  // brackets in strings are text
        // Bracket balance: from the statement's first bracket to its end.
        Faulty({"bet 5 on field", "cs1 = 5 : bet 5 on field)"}, "Missing or improperly placed parenthesis.", 2, 24, 2,
               25),
        Faulty("cs1 = (5 : bet 5 on field)", "Missing or improperly placed parenthesis.", 6, 8),
        Faulty("cs1 = ) 5 (", "Missing or improperly placed parenthesis.", 6, 11),
        Faulty("cs1 = sum(1, (2) ' ((", "Missing or improperly placed parenthesis.", 9, 16),
        // Function arguments.
        Faulty({"bet 5 on field", "bet 5 on hard : cs1 = 2"}, "Missing or inappropriate reference to Hard bet.", 2, 0,
               2, 13),
        Refused("cs1 = 5 + cs", "Missing or inappropriate reference to CS."),
        // Duplicate labels, reported at the later one with the line of the earlier.
        Faulty({"bet 5 on field : 100", "\"100\""}, "A duplicate line number exists in line 1", 2, 0, 2, 5),
        Faulty({"\"b\"", "\"a\" : bet 5 on field", "cs1 = 1 : \"A\""}, "A duplicate label exists in line 2", 3, 10, 3,
               13),
        // Thru.
        Faulty("bet 5 on place4 thru : cs1 = 1", "Missing operand following 'thru'.", 0, 20),
        Refused("bet 5 on place4 thru player2", "Missing or incompatible operand following 'thru'."),
        Refused("bet 5 on place bets thru place6", "Incompatible operand preceding 'thru'."),
        Refused("bet 5 on cs1 thru csn2", kSurroundingMessage),
        Refused("bet 5 on hard(4) thru hop(2.2)", kSurroundingMessage),
        // The tokeniser's faults still come first and keep their own range.
        Faulty({"bet 5 on (field", "say \"x"}, "Missing quotation mark.", 2, 4, 2, 6),
        // The shape check: scripts well formed, then faulty ones.
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

// ---- What CompileMisc leaves in the records ----

TEST(CompileMiscRecords, ListFunctionsAndListKindsEndTheirListsAfterTheClosingBracket) {
  AutoBetProgram program;
  ASSERT_FALSE(CompileSeat(program, {"cs1 = sum(highest(field, 2)) + abs(any[1])"}).Failed());
  const std::vector<TokenRecord> expected = {
      Head(1), M(1, 0), Vt(201), P(1), kEq,    F(130), kOpen,  F(126), kOpen,  V(49),  P(1),  H(3),
      X(1),    Y(34),   kComma,  N(2), kClose, kEnd,   kClose, kEnd,   Op(65), F(102), kOpen, Jump(kCodeListKind, 2),
      kOpen,   N(1),    kClose,  kEnd, kClose};
  EXPECT_EQ(program.ScriptRecords, expected);
}

TEST(CompileMiscRecords, LoneStringsAndNumbersBecomeLabelsThatKnowTheirRecord) {
  AutoBetProgram program;
  ASSERT_FALSE(CompileSeat(program, {"\"Make bets\"", "bet 5 on field : 100", "show message \"hi\""}).Failed());
  const std::vector<TokenRecord>& r = program.ScriptRecords;
  ASSERT_EQ(r.size(), 17u);
  EXPECT_EQ(r[2], (TokenRecord{kCodeLabel, 1}));
  EXPECT_EQ(r[13], (TokenRecord{kCodeLabel, 3}));
  EXPECT_EQ(r[16], (TokenRecord{kCodeString, 2}));  // a string with company stays a string
  const std::vector<StringEntry> strings = {{"Make bets", 2}, {"hi", 0}, {"100", 13}};
  EXPECT_EQ(program.ScriptStrings, strings);
}

TEST(CompileMiscRecords, EmptyAndSpecialStringsAloneAreNoLabels) {
  // A lone string that is no label is no statement either, so this stops after CompileMisc.
  const std::vector<std::string> lines = {"\"\"", "date$"};
  std::vector<TokenRecord> records;
  std::vector<StringEntry> strings;
  ASSERT_FALSE(TokeniseScript(1, lines, {}, records, strings).Failed());
  ASSERT_FALSE(CompileMisc(records, strings, lines).Failed());
  EXPECT_EQ(records[2], (TokenRecord{kCodeString, 0}));
  EXPECT_EQ(records[4], (TokenRecord{kCodeString, -1}));
  EXPECT_TRUE(strings.empty());
}

TEST(CompileMiscRecords, FractionalNumberLabelsKeepTheirDigits) {
  AutoBetProgram program;
  ASSERT_FALSE(CompileSeat(program, {"1.5", "15"}).Failed());
  const std::vector<StringEntry> strings = {{"1.5", 2}, {"15", 4}};
  EXPECT_EQ(program.ScriptStrings, strings);
}

// ---- Joining the seats ----

TEST(CompileJoin, ShiftsRecordIndicesAndPoolIndicesPastWhatIsJoined) {
  std::vector<TokenRecord> program = {Head(1), M(1, 0), L(1)};
  std::vector<StringEntry> strings = {{"a", 2}};
  const std::vector<TokenRecord> script = {
      Head(2), M(1, 0), L(1),   M(2, 0),        Op(kCodeIf), M(2, 5), Jump(kCodeThen, 9), Op(kCodeGoto), S(2), N(7),
      S(3),    S(0),    S(-15), Op(kCodeGosub), S(2),        F(130),  Jump(17, 4),        kEnd};
  const std::vector<StringEntry> scriptStrings = {{"b", 2}, {"", 0}, {"x", 0}};
  JoinScript(program, strings, script, scriptStrings);
  const std::vector<TokenRecord> expected = {
      Head(1),       M(1, 0), L(1), Head(2), M(1, 0), L(2),   M(2, 0),        Op(kCodeIf), M(2, 5), Jump(kCodeThen, 12),
      Op(kCodeGoto), S(5),    N(7), S(4),    S(0),    S(-15), Op(kCodeGosub), S(5),        F(130),  Jump(17, 7),
      kEnd};
  EXPECT_EQ(program, expected);
  const std::vector<StringEntry> joined = {{"a", 2}, {"b", 5}, {"", 0}, {"x", 0}};
  EXPECT_EQ(strings, joined);
}

// After the references are organised, pieces follow the variable or the function's argument.
struct ThruShapeCase {
  std::vector<TokenRecord> records;
  const char* message;
};

class CompileThruShapes : public testing::TestWithParam<ThruShapeCase> {};

TEST_P(CompileThruShapes, FindsTheOperandPastItsPieces) {
  const std::vector<std::string> lines = {"bet 5 on it"};
  EXPECT_EQ(CompileThru(GetParam().records, lines).message, GetParam().message);
}

const TokenRecord kHead = Head(1), kLine1 = M(1, 0), kThru = Op(kCodeThru);
const TokenRecord kP14 = P(14), kH3 = H(3), kX1 = X(1), kY34 = Y(34);

INSTANTIATE_TEST_SUITE_P(
    OrganisedReferences, CompileThruShapes,
    testing::Values(
        ThruShapeCase{{kHead, kLine1, V(31), kP14, kH3, kX1, kY34, kThru, V(36), kP14, kH3, kX1, kY34}, ""},
        ThruShapeCase{{kHead, kLine1, F(6), kOpen, N(4), kClose, kP14, kH3, kX1, kY34, kThru, V(36), kP14}, ""},
        ThruShapeCase{{kHead, kLine1, V(205), kP14, kThru, V(31), kP14}, kSurroundingMessage},
        ThruShapeCase{{kHead, kLine1, kOpen, V(205), kClose, kThru, V(210)},
                      "Missing or incompatible operand preceding 'thru'."},
        ThruShapeCase{{kHead, kLine1, kP14, kThru, V(210)}, "Missing or incompatible operand preceding 'thru'."},
        ThruShapeCase{{kHead, kLine1, V(205), kThru, M(2, 0), V(210)}, "Missing operand following 'thru'."}));

SeatFacts Seats(std::initializer_list<int> active) {
  SeatFacts seats;
  for (int i = 0; i < kPlayerSeats; ++i) seats.names[i] = "Player " + std::to_string(i + 1);
  seats.names[1] = "Ann";
  for (int seat : active) seats.active[seat - 1] = true;
  return seats;
}

TEST(CompileAll, JoinsTheActiveSeatsInSeatOrder) {
  AutoBetProgram program;
  program.ScriptSource[2] = {"\"top\"", "bet 5 on field"};
  program.ScriptSource[5] = {"\"top\"", "bet 5 on field ann"};  // labels of different seats never clash
  program.ScriptSource[3] = {"this is no script"};              // inactive: not compiled
  const CompileAllResult result = CompileALLAutobets(program, 0, Seats({2, 5}));
  ASSERT_FALSE(result.Failed()) << result.fault.message;
  EXPECT_TRUE(program.ScriptsCompiled);
  const std::vector<TokenRecord> expected = {Head(2), M(1, 0), L(1), M(2, 0), A(481),  N(5),    kOn,  Vt(49),
                                             P(2),    H(3),    X(1), Y(34),   Head(5), M(1, 0), L(2), M(2, 0),
                                             A(481),  N(5),    kOn,  Vt(49),  P(2),    H(3),    X(1), Y(34)};
  EXPECT_EQ(program.ProgramRecords, expected);
  const std::vector<StringEntry> strings = {{"top", 2}, {"top", 14}};
  EXPECT_EQ(program.ProgramStrings, strings);
}

TEST(CompileAll, OneSeatCompilesOnlyThatSeat) {
  AutoBetProgram program;
  program.ScriptSource[2] = {"bet 5 on field"};
  program.ScriptSource[5] = {"bet 5 on (field"};
  const CompileAllResult result = CompileALLAutobets(program, 2, Seats({2, 5}));
  ASSERT_FALSE(result.Failed()) << result.fault.message;
  EXPECT_EQ(program.ProgramRecords.front(), (TokenRecord{kCodeScriptHeader, 2}));
  EXPECT_EQ(program.ProgramRecords.size(), 10u);
}

TEST(CompileAll, AFaultNamesThePlayerAndKeepsNoProgram) {
  AutoBetProgram program;
  program.ProgramRecords = {Head(1)};
  program.ScriptsCompiled = true;
  program.ScriptSource[1] = {"bet 5 on field"};
  program.ScriptSource[2] = {"bet 5 on field", "bet 5 on lay"};
  const CompileAllResult result = CompileALLAutobets(program, 0, Seats({1, 2}));
  ASSERT_TRUE(result.Failed());
  EXPECT_EQ(result.seat, 2);
  EXPECT_EQ(result.fault.message, "Missing or inappropriate reference to Lay bet.");
  EXPECT_EQ(result.fault.firstLine, 2);
  EXPECT_EQ(result.title, "Auto-bet script error");
  EXPECT_EQ(result.message,
            "Ann's auto-bet script contains an error which must be corrected before you can run it.\n\n"
            "Select Ann on the auto-bet screen and click the \"Check Script\" button to see the error.");
  EXPECT_FALSE(program.ScriptsCompiled);
  EXPECT_TRUE(program.ProgramRecords.empty());
  EXPECT_TRUE(program.ProgramStrings.empty());
}

TEST(CompileAll, TheEditorsLinesGoBackToTheSelectedSeatFirst) {
  AutoBetProgram program;
  program.ScriptSource[4] = {"bet 5 on field"};
  program.EditorLines = {"bet 5 on lay"};
  SeatFacts seats = Seats({4});
  seats.selectedSeat = 4;
  const CompileAllResult result = CompileALLAutobets(program, 0, seats);
  EXPECT_EQ(program.ScriptSource[4], program.EditorLines);
  EXPECT_EQ(result.seat, 4);
  EXPECT_EQ(result.fault.message, "Missing or inappropriate reference to Lay bet.");
}

// A seat's script compiled again for the same names is taken from the last compilation;
// any change of what it is compiled against compiles it again.
TEST(CompileAll, ACompilationAgainGivesWhatCompilingAfreshGives) {
  struct Variant {
    const char* name;
    std::vector<std::string> lines;
    int annSeat;
    int cornerBet;
  };
  const std::vector<std::string> lines = {"bet 5 on field ann", "cs2 = count(> 0, bets)"};
  const std::vector<Variant> variants = {
      {"as first compiled", lines, 2, 0},          {"a line changed", {"bet 6 on field ann", lines[1]}, 2, 0},
      {"Ann at another seat", lines, 3, 0},        {"Big 6 and Big 8 among the bets", lines, 2, 1},
      {"with a fault", {"bet 5 on (field"}, 2, 0},
  };
  struct Compiled {
    bool failed = false;
    std::vector<TokenRecord> records;
    std::vector<StringEntry> strings;
  };
  const auto compile = [](const Variant& v) {
    AutoBetProgram program;
    program.ScriptSource[2] = v.lines;
    program.CornerBet = v.cornerBet;
    SeatFacts seats = Seats({2});
    std::swap(seats.names[1], seats.names[v.annSeat - 1]);
    Compiled c;
    c.failed = CompileALLAutobets(program, 0, seats).Failed();
    c.records = program.ProgramRecords;
    c.strings = program.ProgramStrings;
    return c;
  };
  // What each compiles to on a thread of its own, where nothing was compiled before.
  std::vector<Compiled> fresh(variants.size());
  for (std::size_t i = 0; i < variants.size(); ++i) std::thread([&] { fresh[i] = compile(variants[i]); }).join();
  for (std::size_t i = 1; i + 1 < variants.size(); ++i)
    EXPECT_NE(fresh[i].records, fresh[0].records) << variants[i].name << " compiles as the first";
  EXPECT_TRUE(fresh.back().failed);
  for (int round = 0; round < 2; ++round)
    for (std::size_t i = 0; i < variants.size(); ++i)
      for (std::size_t v : {i, std::size_t{0}}) {
        const Compiled c = compile(variants[v]);
        EXPECT_EQ(c.failed, fresh[v].failed) << variants[v].name << " after " << variants[i].name;
        EXPECT_EQ(c.records, fresh[v].records) << variants[v].name << " after " << variants[i].name;
        EXPECT_EQ(c.strings, fresh[v].strings) << variants[v].name << " after " << variants[i].name;
      }
}

TEST(CompileAll, NoActiveSeatIsAnEmptyCompiledProgram) {
  AutoBetProgram program;
  program.ScriptSource[1] = {"bet 5 on (field"};
  EXPECT_FALSE(CompileALLAutobets(program, 0, Seats({})).Failed());
  EXPECT_TRUE(program.ScriptsCompiled);
  EXPECT_TRUE(program.ProgramRecords.empty());
}

}  // namespace
